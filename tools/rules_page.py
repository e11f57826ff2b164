#!/usr/bin/env python3
"""Writes docs/regras.md from the catalogue of rules, data/regras.csv.

usage: rules_page.py [ROOT] > docs/regras.md      (default: the project that holds this script)
"""
import csv
import pathlib
import sys

HEAD = """<!-- Gerada de data/regras.csv por `./dev docs`; não edite. -->

# Regras

Cada recusa do programa tem um código, que não muda de uma versão para outra e nunca passa a outra regra. `CRnn-NN` é
uma regra do registro nn, na ordem em que são aplicadas; `ARQ-NN`, uma do arquivo inteiro; `ERR-N`, um erro de execução.
Nas mensagens, `{}` está no lugar de um valor do arquivo. As colunas que elas citam são, em alguns casos, as de leiautes
antigos; as explicações dizem as verdadeiras.
"""


def title_of(kind):
    return {"ARQ": "O arquivo inteiro", "ERR": "Erros de execução"}.get(kind, f"Registro {kind[2:]}")


def page(root):
    lines, last = [HEAD], None
    with open(root / "data" / "regras.csv", encoding="utf-8", newline="") as file:
        for rule in csv.DictReader(file):
            kind = rule["codigo"].split("-")[0]
            if kind != last:
                lines.append(f"\n## {title_of(kind)}\n")
                last = kind
            message = "<br>".join(text for text in (rule["texto1"], rule["texto2"]) if text)
            lines.append(f"\n### {rule['codigo']}: {rule['titulo']}\n\n> {message}\n\n{rule['explicacao']}\n")
            lines.append(f"\n**Como corrigir:** {rule['como_mendar']}\n")
            if rule["campos"]:
                lines.append(f"\nOutros campos: {', '.join(rule['campos'].split())}.\n")
    return "".join(lines)


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent.parent
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(page(pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here))
