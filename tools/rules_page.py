#!/usr/bin/env python3
"""Writes docs/regras.md from the catalogue of rules, data/regras.csv, and the kit of their examples.

usage: rules_page.py TREMVIK [ROOT] > docs/regras.md
(TREMVIK: the program, which makes the examples; ROOT: the project, by default the one that holds this script)
"""
import csv
import json
import pathlib
import re
import subprocess
import sys
import tempfile

HEAD = """<!-- Gerada de data/regras.csv e data/exemplos.csv por `./dev docs`; não edite. -->

# Regras

Cada recusa do programa tem um código, que não muda de uma versão para outra e nunca passa a outra regra. `CRnn-NN` é
uma regra do registro nn, na ordem em que são aplicadas; `ARQ-NN`, uma do arquivo inteiro; `ERR-N`, um erro de execução.
Nas mensagens, `{}` está no lugar de um valor do arquivo. As colunas que elas citam são, em alguns casos, as de leiautes
antigos; as explicações dizem as verdadeiras.

Os exemplos são de arquivos pequenos e válidos em que só essa regra é quebrada; `tremvik exemplo --regra CR10-11`
escreve o de uma regra, `tremvik exemplo --todas-as-regras PASTA` os de todas. Entre parênteses está como foram feitos:
os registros depois do CR=01 (`07*2` são dois CR=07) e os campos alterados; `cut` tira bytes do fim do arquivo.
"""
LONGEST = 100  # lines of an example that is shown


def title_of(kind):
    return {"ARQ": "O arquivo inteiro", "ERR": "Erros de execução"}.get(kind, f"Registro {kind[2:]}")


def rows_of(root, name):
    with open(root / "data" / name, encoding="utf-8", newline="") as file:
        return list(csv.DictReader(file))


def kit_of(program):
    """The examples by code: what an import must answer, and the lines of the file with their ends."""
    with tempfile.TemporaryDirectory() as folder:
        subprocess.run([program, "exemplo", "--todas-as-regras", folder], check=True, stdout=subprocess.DEVNULL)
        cases = json.loads(pathlib.Path(folder, "esperado.json").read_text(encoding="utf-8"))
        return {case["regra"]: (case, (pathlib.Path(folder) / case["arquivo"]).read_bytes().decode("cp1252")
                                .splitlines(keepends=True)) for case in cases}


def example(case, lines):
    """How the example is made, and the line that breaks the rule, its first wrong column marked."""
    made = "; ".join(f"`{part}`" for part in (case["registros"], case["edicoes"]) if part)
    text = f"\n**Exemplo** ({made})"
    place = (case["inconsistencias"] or [None])[0]
    cited = re.search(r"Linha nº (\d+)", case["mensagens"][0]["texto"])
    number = place["linha"] if place else int(cited[1]) if cited else 0
    if not 0 < number <= min(len(lines), LONGEST):
        return text + (".\n" if lines else ": o arquivo fica vazio.\n")
    line = lines[number - 1]
    if place and place["campo"] == "Separadores":
        line = line.replace("\r", "␍").replace("\n", "␊")
    mark = " " * (place["posicao"] - 1) + "^\n" if place else ""
    figures = f"\n{case['porque'][0].upper()}{case['porque'][1:]}.\n" if case["porque"] else ""
    return f"{text}, linha {number}:\n\n```text\n{line.rstrip()}\n{mark}```\n{figures}"


def page(root, program):
    kit = kit_of(program)
    reasons = {row["codigo"]: row["motivo"] for row in rows_of(root, "exemplos.csv")}
    lines, last = [HEAD], None
    for rule in rows_of(root, "regras.csv"):
        code = rule["codigo"]
        kind = code.split("-")[0]
        if kind != last:
            lines.append(f"\n## {title_of(kind)}\n")
            last = kind
        message = "<br>".join(text for text in (rule["texto1"], rule["texto2"]) if text)
        lines.append(f"\n### {code}: {rule['titulo']}\n\n> {message}\n\n{rule['explicacao']}\n")
        lines.append(f"\n**Como corrigir:** {rule['como_mendar']}\n")
        if rule["campos"]:
            lines.append(f"\nOutros campos: {', '.join(rule['campos'].split())}.\n")
        lines.append(example(*kit[code]) if code in kit else f"\n**Sem exemplo:** {reasons[code]}\n")
    return "".join(lines)


if __name__ == "__main__":
    here = pathlib.Path(__file__).resolve().parent.parent
    sys.stdout.reconfigure(encoding="utf-8")
    sys.stdout.write(page(pathlib.Path(sys.argv[2]) if len(sys.argv) > 2 else here, sys.argv[1]))
