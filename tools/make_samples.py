#!/usr/bin/env python3
"""Makes the spoiled files of samples/ out of samples/aceito.txt, one change each, with what the import must
answer to them: esperado.json for programs and the table of README.md for people.

The expectations below are written from the rules, not taken from a run.

Usage: tools/make_samples.py [FOLDER]      (default: samples/ beside this script's folder)
"""

import json
import pathlib
import sys

CRLF = "\r\n"
CONTACT = ("Sr(a) usuário(a), entre em contato com a empresa" + CRLF +
           "responsável pela geração do arquivo Pré-Formatado" + CRLF +
           "e informe a mensagem abaixo : " + CRLF + CRLF)


# Changes: each takes the file's lines (bytes without their ends) and changes them in place.

def put(line, column, text):
    def change(lines):
        old = lines[line - 1]
        new = text.encode("cp1252")
        assert old[column - 1:column - 1 + len(new)] != new and len(old) >= column - 1 + len(new)
        lines[line - 1] = old[:column - 1] + new + old[column - 1 + len(new):]
    return change


def cut(line):
    def change(lines):
        lines[line - 1] = lines[line - 1][:-1]
    return change


def swap(line):
    def change(lines):
        lines[line - 1], lines[line] = lines[line], lines[line - 1]
    return change


def remove(first, last):
    def change(lines):
        del lines[first - 1:last]
    return change


def insert_copy(of, before):
    def change(lines):
        lines.insert(before - 1, lines[of - 1])
    return change


def everything(lines):
    lines.clear()


# Message boxes: text, style, title.

def fault(line, first, second=None):
    text = first if second is None else first + CRLF + second
    return {"texto": f"{CONTACT}{text}{CRLF}Linha nº {line}", "estilo": 64, "titulo": "Atenção"}


def box(text, style, title):
    return {"texto": text, "estilo": style, "titulo": title}


def at(line, record, field, column):
    return {"linha": line, "registro": record, "campo": field, "posicao": column}


SUCCESS = box("A importação foi concluída com sucesso!", 64, "Arquivo Pré-Formatado")
QUESTION = box(CONTACT + "Tabela 03, CR=10, Campo - Imposto" + CRLF + "Inconsistente, Posição 39, Linha nº 93" +
               CRLF + "Deseja continuar Sim/Não ? ", 324, "Atenção")
DIFFERS = "Quantidade de registros CR={} informado diverge do apurado." + CRLF
NOT_IN_TABLE = "Campo CFOP Inválido (CFOP de Grupo ou não localizado na tabela para a referência informada): "

# name, what was changed, changes, boxes, true places
REFUSED = [
    ("vazio", "no line at all", [everything],
     [box("Arquivo vazio ou inválido !", 16, "Mensagem...")], []),
    ("tamanho", "a payment is one character short", [cut(47)],
     [box("Tamanho do registro inválido.  CR = 07  -  Linha 47", 16, "Mensagem...")],
     [at(47, "07", "Tamanho", 26)]),
    ("codigo", "an unknown record code, 29", [put(98, 1, "29")],
     [box("Código de Registro inválido! CR = 29  -  Linha 98", 16, "Mensagem...")],
     [at(98, "", "CR", 1)]),
    ("quantidades", "the header announces one payment less and one DIPAM record more than follow",
     [put(46, 146, "0004"), put(46, 158, "0003")],
     [box(DIFFERS.format("07") + DIFFERS.format("30"), 16, "Atenção")],
     [at(46, "05", "Q07", 146), at(46, "05", "Q30", 158)]),
    ("segundo-mestre", "a second master record before the third declaration", [insert_copy(1, 20)],
     [box("Informado mais de um Registro mestre CR=01", 16, "Atenção")], [at(20, "01", "CR", 1)]),
    ("data-geracao", "generated on a 30th of February", [put(1, 5, "20150230")],
     [fault(1, "Tabela 01, CR=01, Campo - DataGeração", "Inconsistente, Posição 5 ")],
     [at(1, "01", "DataGeração", 5)]),
    ("versao", "layout version 0211", [put(1, 23, "0211")],
     [fault(1, "Tabela 01, CR=01, Campo - VersãoPref", "Inconsistente, Posição 23")],
     [at(1, "01", "VersãoPref", 23)]),
    ("ie-digito", "the last check digit of the declaration's IE", [put(46, 14, "8")],
     [fault(46, "Tabela 2, CR=05, Campo - IE", "Inválido, Posição 3")], [at(46, "05", "IE", 3)]),
    ("cnae", "a CNAE that is not zeros", [put(46, 29, "6201500")],
     [fault(46, "CNAE 6201500 Inconsistente.", "Tabela 2, CR=05, Posição 29.")], [at(46, "05", "CNAE", 29)]),
    ("regime-4", "the simplified regime after 12/2005", [put(2, 38, "200601")],
     [fault(2, "Tabela 2, CR=05, Campo - Ref", "Inconsistente, Posição 38")], [at(2, "05", "Ref", 38)]),
    ("antes-de-2012", "a taxpayer registered under 8 before 01/2012", [put(103, 38, "201112")],
     [fault(103, "Só é permitida a importação de referências a partir de 01/2012.")], [at(103, "05", "Ref", 38)]),
    ("declaracao-repetida", "IE and reference of the declaration before it",
     [put(103, 3, "439180564971"), put(103, 38, "200301")],
     [fault(103, "Tabela 2, CR=05, Campo - IE_x_Ref", "Duplicado ou fora de seqüência. Posição 3_x_18")],
     [at(103, "05", "IE", 3)]),
    ("pagamento-periodo", "a payment of 04/2014 dated 01/07/2014, a day too late", [put(50, 19, "20140701")],
     [fault(50, "Tabela 20, CR=07, Campo - Data", "Período Inválido, Posição 19")], [at(50, "07", "Data", 19)]),
    ("cfop-tabela", "a CFOP of three digits in 01/2003", [put(85, 3, "111000")],
     [fault(85, "Tabela 3, CR=10, Posição 3:", NOT_IN_TABLE + "111000")], [at(85, "10", "CFOP", 3)]),
    ("cfop-periodo", "CFOP 7.667, of 07/2009, in 01/2005", [put(36, 3, "766700")],
     [fault(36, "Tabela 03, CR=10, Campo - CFOP_x_Referencia", "Inconsistente ")], [at(36, "10", "CFOP", 3)]),
    ("cfop-interestadual", "interstate details under CFOP 1.506", [put(108, 3, "150600")],
     [fault(108, "Tabela 03, CR=10, Campo - CFOP_x_Q14", "Inconsistente, Posição 3_x_114 (B)")],
     [at(108, "10", "Q14", 144)]),
    ("letra-em-valor", "a letter O in place of a zero in BaseCálculo", [put(96, 25, "O")],
     [fault(96, "Tabela 3, CR=10, Campo - BaseCálculo", "Inconsistente, Posição 24 ")],
     [at(96, "10", "BaseCálculo", 24)]),
    ("imposto-zero", "a base without tax", [put(85, 39, "000000000000000")],
     [fault(85, "Tabela 03, CR=10, Campo - Imposto", "Inconsistente, Posição 39.")], [at(85, "10", "Imposto", 39)]),
    ("imposto-retido", "tax withheld under CFOP 7.501", [put(36, 113, "1")],
     [fault(36, "Tabela 03, CR=10, Campo - CFOP_x_ImpRetSubstitutoST_x_ImpRetSubstituÍdo",
            "Inconsistente, Posição 3_x_99_x_114 (ImpRetSubstituido: Ref > 200312 e Ref <= 200712)")],
     [at(36, "10", "ImpRetSubstitutoST", 99)]),
    ("dipam", "a communication CFOP without DIPAM records", [put(84, 158, "0000"), remove(99, 100)],
     [fault(94, "Tabela 2, CR=05, Campo - Q30 ou CFOP Inconsistentes",
            "Posições 122 ou 03 respectivamente (Comunicações: Ref > 200212)")], [at(94, "10", "CFOP", 3)]),
    ("subitem-periodo", "sub-item 007.01 of own operations after 12/2011", [put(69, 23, "0")],
     [fault(69, "Tabela 06, CR=20, Campo - CódSubitem", "inconsistente para esta referencia, Posição 3")],
     [at(69, "20", "CódSubItem", 3)]),
    ("subitem-repetido", "sub-item 002.20 twice", [put(65, 3, "00220")],
     [fault(65, "Tabela 6, CR=20, Campo - CódSubitem", "duplicado ou fora de sequência, Posição 3")],
     [at(65, "20", "CódSubItem", 3)]),
    ("texto", "a sub-item 99 whose legal basis has no letter", [put(68, 24, "123" + " " * 97)],
     [fault(68, "Tabela 06, CR=20, Campo - CódSubitem",
            "Falta informação (Flegal e ou Ocorrência), Posição 24 e ou 124 ")], [at(68, "20", "FLegal", 24)]),
    ("soma", "the details sum up to a cent more than their occurrence", [put(61, 50, "1")],
     [fault(62, "Tabela: 06, CR 20, Campo: Valor, Posição: 8",
            "O campo Valor é diferente da somatória do campo Valor dos CR=25 ou 26 ou 27. ")],
     [at(59, "20", "Valor", 8)]),
    ("ie-detalhe", "the last check digit of an IE under an occurrence", [put(73, 14, "1")],
     [fault(73, "Tabela 07, CR=25, Campo - IE", "Inválida, Posição 3")], [at(73, "25", "IE", 3)]),
    ("nota-fiscal", "no invoice under sub-item 002.10", [put(60, 15, "000000000")],
     [fault(60, "Tabela 6_x_16, CRs 20_x_26, Campo - NF", "Inconsistente, Posição 3_x_15")],
     [at(60, "26", "NF", 15)]),
    ("substituido-ordem", "two substituted taxpayers in the wrong order", [swap(70)],
     [fault(71, "Tabela 17, CR=27 Campo - IESubstituído_x_NF", "inconsistente, Posição 3_x_15")],
     [at(71, "27", "IESubstituído", 3)]),
    ("autorizacao", "the letter of another sub-item in an authorization code", [put(66, 6, "d")],
     [fault(66, "Tabela 18, CR=28 Campo - CodAutorizacao", "inconsistente, Posição 3")],
     [at(66, "28", "CodAutorizacao", 3)]),
    ("re-ordem", "two export registrations in the wrong order", [swap(82)],
     [fault(83, "Tabela 18, CR=31 Campo - RE", "inconsistente, Posição 3")], [at(83, "31", "RE", 3)]),
]

# Those whose change is of the line ends: name, what was changed, function of the bytes, boxes, true places.
LINE_ENDS = [
    ("fim-de-linha-lf", "lines that end in a bare LF", lambda data: data.replace(b"\r\n", b"\n"),
     [fault(1, "Tabela 01, CR=01, Campo - Separadores", "Inconsistente, Posição 31")],
     [at(1, "01", "Separadores", 31)]),
    ("ultimo-fim", "the end of the last line is missing", lambda data: data[:-2],
     [fault(114, "Tabela 2, CR=05 Campo - Q30", "inconsistente, Posição 158")], [at(103, "05", "Q30", 158)]),
]


def case(name, change, boxes, places=(), exit_status=1, answer=None):
    expected = {"arquivo": name, "mudanca": change, "saida": exit_status, "mensagens": boxes,
                "inconsistencias": list(places)}
    if answer:
        expected["responder"] = answer
    return expected


def make(accepted):
    """The files by name and the expectations."""
    assert accepted.endswith(b"\r\n") and accepted.count(b"\r\n") == 114
    files, cases = {}, [case("aceito.txt", "none", [SUCCESS], exit_status=0)]

    def spoil(name, changes):
        lines = accepted.split(b"\r\n")[:-1]
        for change in changes:
            change(lines)
        files[name] = b"".join(line + b"\r\n" for line in lines)

    doubt = "pergunta.txt"
    spoil(doubt, [put(93, 39, "000000020047183")])
    why = "a tax one cent above 25 % of its base"
    cases.append(case(doubt, why, [QUESTION, SUCCESS], exit_status=0, answer="sim"))
    cases.append(case(doubt, why, [QUESTION], [at(93, "10", "Imposto", 39)], answer="nao"))
    for name, change, changes, boxes, places in REFUSED:
        spoil(f"recusado-{name}.txt", changes)
        cases.append(case(f"recusado-{name}.txt", change, boxes, places))
    for name, change, function, boxes, places in LINE_ENDS:
        files[f"recusado-{name}.txt"] = function(accepted)
        cases.append(case(f"recusado-{name}.txt", change, boxes, places))
    return files, cases


def readme_row(expected):
    words = expected["mensagens"][0]["texto"].removeprefix(CONTACT).rstrip().split(CRLF)
    message = "<br>".join(w for w in words if not w.startswith("Linha nº"))
    places = "<br>".join(f"line {p['linha']}, column {p['posicao']} ({p['campo']})"
                         for p in expected["inconsistencias"])
    answer = f" (answer {expected['responder']})" if "responder" in expected else ""
    return (f"| [{expected['arquivo']}]({expected['arquivo']}){answer} | {expected['mudanca']} | "
            f"{expected['saida']} | {message} | {places} |")


def update_readme(text, cases):
    begin, end = "<!-- cases -->\n", "<!-- /cases -->"
    head, rest = text.split(begin)
    table = ["| File | Changed | Exit | Message | Where it really is |", "|---|---|---|---|---|"]
    table += [readme_row(expected) for expected in cases]
    return head + begin + "\n".join(table) + "\n" + end + rest.split(end)[1]


def main():
    beside = pathlib.Path(__file__).resolve().parent.parent / "samples"
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else beside
    files, cases = make((folder / "aceito.txt").read_bytes())
    for name, data in files.items():
        (folder / name).write_bytes(data)
    text = json.dumps(cases, ensure_ascii=False, indent=1) + "\n"
    (folder / "esperado.json").write_text(text, encoding="utf-8", newline="\n")
    readme = folder / "README.md"
    readme.write_text(update_readme(readme.read_text(encoding="utf-8"), cases), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
