#!/usr/bin/env python3
"""Runs the automation library under Wine with real clients and compares what they see with the command line.

usage: run.py --cli PROGRAM --work FOLDER --build ARCHITECTURE=FOLDER [--build ...]

The environment names the Wine prefix (WINEPREFIX, WINEDLLPATH). Prints a line for each check; exit status 1 if
one failed. FOLDER keeps every journal of the last run.
"""
import argparse
import difflib
import json
import os
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent
SYSTEM = {"x86_64": "C:\\windows\\system32", "i686": "C:\\windows\\syswow64"}
LOCALES = ("pt_BR.UTF-8", "en_US.UTF-8")
YES, NO = "6", "7"
ICON_BITS = 0xF0
SCRIPT_ERRORS = "-all,fixme+wscript,fixme+vbscript,fixme+jscript"
CLASSES = ("TestHost.Journal", "DAO.DBEngine.36", "DAO.DBEngine.120") + tuple("Brunsel." + name for name in (
    "BancoTemporario", "ConsultaDeclaracoes", "ValidadorDocumentos",
    *(f"GravadorCR{code}" for code in ("05", "07", "10", "14", "18", "20", "25", "26", "27", "28", "30", "31"))))

# The system's queries: table, key and what follows the key's value.
PLAIN = "Select {0} From {1} Where {0} = '?'"
QUERIES = [PLAIN.format(key, table) for key, table in (
    ("CNAE", "tblCNAEsRegimeDispensado"), ("CFOP", "tblTodosCFOPs"), ("Código", "tblEstados"),
    ("CódMunicípio", "tblMunicípiosZFM_ALC"), ("CódSubItem", "tblQuadroOcorrências"),
    ("código", "tblcódigosdipam"), ("Códmunicípio", "tblmunicípios"))]
QUERIES += [PLAIN.format("CódSubItem", "tblQuadroOcorrências") + more for more in (" and OpPróprias", " and NOT OpPróprias")]
for conjunto in (" > '1'", *(f" = '{digit}'" for digit in "0123")):
    QUERIES.append(f"SELECT CFOP FROM tblTodosCFOPs WHERE CFOP = '?' and Conjunto{conjunto} AND GRUPO = 0")
    QUERIES.append(
        "SELECT tblQuadroCFOPs.Descrição FROM tblQuadroCFOPs WHERE ((tblQuadroCFOPs.[Grupo 15]='?') OR "
        "(tblQuadroCFOPs.[Grupo 26]='?') OR (tblQuadroCFOPs.[Grupo 37]='?')) AND "
        f"(tblQuadroCFOPs.Conjunto{conjunto.replace(' = ', '=').lstrip()})")

results = {"passed": 0, "failed": 0}


def check(label, good, detail=""):
    results["passed" if good else "failed"] += 1
    print(("ok      " if good else "FAILED  ") + label, flush=True)
    if not good and detail:
        print("    " + "\n    ".join(str(detail).splitlines()[:40]), flush=True)


def difference(before, after, names=("before", "after")):
    return "\n".join(difflib.unified_diff(before, after, *names, lineterm="", n=0))


def wine(*command, locale=LOCALES[0], debug="-all", **more):
    environment = os.environ | {"TEST_LOCALE": locale, "WINEDEBUG": debug} | more
    return subprocess.run([ROOT / "cmake" / "wine-run", *map(str, command)], env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")


def regsvr32(architecture, library, *options):
    return wine(SYSTEM[architecture] + "\\regsvr32.exe", "/s", *options, f"Z:{library}").returncode


def cscript(architecture, file, *arguments, **more):
    return wine(SYSTEM[architecture] + "\\cscript.exe", "//nologo", f"Z:{file}", *arguments, debug=SCRIPT_ERRORS, **more)


def register_host(architecture, folder):
    """The classes of the pretended host and of the engine, all in one library."""
    lines = ["REGEDIT4", ""]
    for number, name in enumerate(CLASSES):
        clsid = f"{{3f6b1c52-7a0d-4e8e-9b41-521d60aa70{number:02x}}}"
        root = "[HKEY_LOCAL_MACHINE\\Software\\Classes\\"
        server = f"Z:{folder}/TestHost.dll".replace("/", "\\").replace("\\", "\\\\")
        lines += [f"{root}{name}\\CLSID]", f'@="{clsid}"', f"{root}CLSID\\{clsid}\\ProgID]", f'@="{name}"',
                  f"{root}CLSID\\{clsid}\\InprocServer32]", f'@="{server}"', '"ThreadingModel"="Both"']
    file = folder / "host.reg"
    file.write_text("\r\n".join(lines) + "\r\n", encoding="ascii", newline="")
    return wine(SYSTEM[architecture] + "\\reg.exe", "import", f"Z:{file}").returncode


def write_answers(database, file):
    """Whatever the system's queries can find, for the engine that the tests bring along."""
    connection = sqlite3.connect(database)
    lines = []
    for query in QUERIES:
        table = re.search("from (\\S+)", query, re.IGNORECASE)[1]
        keys = re.findall(r"(?:\w+\.)?(\[[^]]+\]|\w+) ?= ?'\?'", query)
        values = {value for key in keys for value, in connection.execute(f"select {key} from {table}") if value}
        for value in sorted(map(str, values)):
            filled = query.replace("?", value)
            row = connection.execute(filled).fetchone()
            lines += [f"{filled}\t{row[0]}\n"] if row else []
    file.write_text("".join(lines), encoding="utf-8", newline="")


class Story:
    """One import: a file and the answer to what is asked."""

    def __init__(self, cli, folder, file, answer):
        self.file, self.answer, self.name = file, answer, file.stem + ("-nao" if answer == NO else "")
        # What the command line tells of the same file, but for what only it can tell.
        run = subprocess.run([cli, "importar", file, "--json", "--pasta", folder / self.name, "--responder",
                              "sim" if answer == YES else "nao"], stdout=subprocess.PIPE, text=True)
        self.expected = [{key: value for key, value in each.items() if key not in ("arquivo", "estado", "saida")}
                         for each in objects(run.stdout) if each["tipo"] in
                         ("mensagem", "evento", "banco", "consulta", "gravacao", "fim")]


def stories(cli, folder):
    samples = sorted((ROOT / "samples").glob("*.txt"))
    asking = [file for file in samples if file.stem.startswith("pergunta")]
    return [Story(cli, folder, file, YES) for file in samples] + [Story(cli, folder, file, NO) for file in asking]


def objects(text):
    return [json.loads(line) for line in text.splitlines()]


def told_by_client(journal):
    """The calls and boxes of a journal, as the command line tells them."""
    told, fields = [], {}
    for each in journal:
        called, given = each.get("membro"), each.get("argumentos")
        if each["tipo"] == "mensagem":
            told.append({key: value for key, value in each.items() if key != "icones"})
        elif each["objeto"] == "Brunsel.BancoTemporario":
            told.append({"tipo": "banco", "operacao": called})
        elif called == "Existe":
            names = ("ie", "uf", "regime", "referencia", "referenciaInicial")
            told.append({"tipo": "consulta", **dict(zip(names, given)), "existe": False})
        elif called == "Campo":
            fields[given[0]] = given[1]
        elif called == "Gravar":
            told.append({"tipo": "gravacao", "registro": each["objeto"][-2:], "campos": fields})
            fields = {}
        elif called == "Event":
            told.append({"tipo": "evento", "nome": given[0]})
        elif called == "End":
            told.append({"tipo": "fim", "bolRetMonitora": given[0] == "-1", "NroLinha": int(given[1]),
                         "Mensagem": given[2]})
    return told


def contract():
    """The members of the host's classes as published: of each its kind of call and number of arguments."""
    text = re.sub("//.*", "", (ROOT / "docs/componentes.idl").read_text(encoding="utf-8"))
    return {(name, "propput" in kind, given.count("[in")) for kind, name, given in
            re.findall(r"\[(id\(\d+\)[^]]*)\] HRESULT (\w+)\(([^;]*)\);", text)}


def check_calls(label, journal, folder):
    """What one run asked of the engine and gave its components, beyond what the command line tells."""
    calls = [each for each in journal if each["tipo"] == "chamada"]
    asked = {name: [each["argumentos"] for each in calls if each["membro"] == name] for name in
             ("OpenDatabase", "OpenRecordset", "Close", "CaminhoBase", "Abrir")}
    windows = f"Z:{folder}\\".replace("/", "\\")
    known = {re.sub("'[^']*'", "'?'", query) for query in QUERIES}
    check(f"{label}, database engine",
          asked["OpenDatabase"] == [[windows + "tblFixas.fix"]]
          and len(asked["Close"]) == 1 + len(asked["OpenRecordset"]) == 1 + len(set(map(str, asked["OpenRecordset"])))
          and all(kind == "4" and re.sub("'[^']*'", "'?'", query) in known for query, kind in asked["OpenRecordset"])
          and any("tblQuadroOcorrências" in query and "CódSubItem" in query for query, _ in asked["OpenRecordset"]))
    paths = asked["Abrir"] + asked["CaminhoBase"]
    check(f"{label}, temporary database", len(paths) > 2 and all(given == [windows + "BDTempPrf.fix"] for given in paths),
          paths)
    made = {(each["membro"], each["atribui"], len(each["argumentos"])) for each in calls
            if each["objeto"].startswith("Brunsel.")}
    check(f"{label}, published members", made and made <= contract(), made - contract())


def run_client(architecture, client, locale, wanted, folder, work):
    journals = work / "journals" / f"{architecture}-{client}-{locale}"
    shutil.rmtree(journals, ignore_errors=True)
    journals.mkdir(parents=True)
    list_file = journals / "list"
    list_file.write_text("".join(f"Z:{story.file}|{story.answer}||Z:{journals / story.name}\r\n" for story in wanted),
                         newline="")
    label = f"{architecture} {locale[:5]} {client}"
    compiled = client == "com_test.exe"
    if compiled:
        run = wine(folder / client, f"--stories=Z:{list_file}", locale=locale)
    else:
        run = cscript(architecture, folder / client, f"Z:{list_file}", locale=locale)
    # A script that fails ends silently with status 0, so its last line and the debug channel tell.
    finished = "DONE" in run.stdout and "OnScriptError" not in run.stdout
    check(f"{label}: ran to its end", run.returncode == 0 and finished, run.stdout)
    for story in wanted:
        journal = journals / story.name
        lines = objects(journal.read_text(encoding="utf-8")) if journal.exists() else []
        # Wine's script host cannot subscribe to events, and its 32-bit boxes have no icons.
        expected = [each for each in story.expected if compiled or each["tipo"] != "evento"]
        if not all(each.get("icones", True) for each in lines):
            expected = [each | {"estilo": each["estilo"] & ~ICON_BITS} if "estilo" in each else each for each in expected]
        sides = [[json.dumps(each, ensure_ascii=False, sort_keys=True) for each in side]
                 for side in (expected, told_by_client(lines))]
        check(f"{label}: {story.name}", sides[0] == sides[1], difference(*sides, ("command line", "client")))
        if story.name == "aceito" and locale == LOCALES[0]:
            check_calls(f"{label}: {story.name}", lines, folder)


def registry():
    """The classes of machine and user, as the registry exports them."""
    text = ""
    for root in ("HKLM", "HKCU"):
        file = pathlib.Path(os.environ["WINEPREFIX"]) / "export.reg"
        file.unlink(missing_ok=True)
        wine("reg", "export", root + "\\Software\\Classes", f"Z:{file}", "/y")
        text += file.read_text(encoding="utf-16") if file.exists() else ""
    return sorted(block for block in text.split("\n\n") if block.startswith("["))


def check_registration(folders):
    for architecture, folder in folders.items():  # what an earlier run left
        regsvr32(architecture, folder / "DllTremvik.dll", "/u")
        cscript(architecture, folder / "create.vbs")  # the script host registers itself when it is first used
    wine("reg", "add", "HKCU\\Software\\Classes", "/f")
    before = registry()
    for architecture, folder in folders.items():
        check(f"{architecture} registers", regsvr32(architecture, folder / "DllTremvik.dll") == 0)
    check("registration changes the registry", registry() != before)
    left = dict(folders)
    for architecture, folder in folders.items():
        check(f"{architecture} is removed", regsvr32(architecture, folder / "DllTremvik.dll", "/u") == 0)
        del left[architecture]
        for other in left:
            script = cscript(other, folders[other] / "create.vbs")
            check(f"{other} works on after the removal of {architecture}", "CREATED" in script.stdout, script.stdout)
    after = registry()
    check("registration and removal leave the registry as it was", before == after, difference(before, after))
    for architecture, folder in folders.items():
        library, user = folder / "DllTremvik.dll", ("/n", "/i:user")
        check(f"{architecture} registers for the user", regsvr32(architecture, library, *user) == 0)
        added = set(registry()) - set(before)
        mine = added and all(block.startswith("[HKEY_CURRENT_USER\\") for block in added)
        check(f"{architecture} for the user: only the user's part changes", bool(mine), "\n".join(sorted(added)))
        check(f"{architecture} is removed for the user", regsvr32(architecture, library, "/u", *user) == 0)
    after = registry()
    check("the user's part is as it was", before == after, difference(before, after))


def check_examples(architecture, folder):
    """The examples import files, end as they promise and say how they are used."""
    # Wine's script host cannot bind events, so there the object is made without; the rest is the example's own.
    script = (ROOT / "examples/windows/importar.vbs").read_text(encoding="ascii")
    plain = script.replace('WScript.CreateObject("DllTremvik.Tremvik", "tremvik_")', 'CreateObject("DllTremvik.Tremvik")')
    (folder / "importar.vbs").write_text(plain, encoding="ascii", newline="\r\n")
    compiled = lambda *files: wine(folder / "importar.exe", *files, TEST_HOST_ANSWER=YES)
    script = lambda *files: cscript(architecture, folder / "importar.vbs", *files, TEST_HOST_ANSWER=YES)
    for label, example, steps in (("C++", compiled, 44), ("VBScript", script, 0)):
        for sample, status, told in ((None, 2, "Uso: "), ("aceito", 0, f"Aceito ({steps} passos)"),
                                     ("recusado-soma", 1, "Recusado na linha ")):
            run = example(*([f"Z:{ROOT}/samples/{sample}.txt"] if sample else []))
            good = run.returncode == status and told in run.stdout and "OnScriptError" not in run.stdout
            check(f"{architecture} example in {label}: {sample or 'usage'}", good, f"{run.returncode}\n{run.stdout}")


def check_cases(label, folder, locale, *options):
    """The program's own cases, each a check."""
    run = wine(folder / "com_test.exe", *options, locale=locale, WINE_TIMEOUT="300")
    for verdict, case in re.findall(r"^\[ +(OK|FAILED) +\] (\w+\.\w+) \(", run.stdout, re.MULTILINE):
        check(f"{label}: {case}", verdict == "OK")
    check(f"{label}: ran to its end", run.returncode == 0, run.stdout[-6000:])


def stage(architecture, build, cli, work):
    """A folder with the library and all that it and its clients need."""
    folder = work / architecture
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    clients = [build / "tests/com" / file for file in ("TestHost.dll", "com_test.exe", "importar.exe")]
    samples = [ROOT / f"samples/{name}.txt" for name in ("aceito", "pergunta", "recusado-vazio", "recusado-versao")]
    for file in (build / "adapters/com/DllTremvik.dll", *clients, *HERE.glob("*.vbs"), *HERE.glob("*.js"), *samples):
        shutil.copy(file, folder)
    subprocess.run([cli, "tabelas", "construir", folder / "tblFixas.fix"], check=True, stdout=subprocess.DEVNULL)
    write_answers(folder / "tblFixas.fix", folder / "answers.tsv")
    return folder


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--cli", type=pathlib.Path, required=True)
    parser.add_argument("--work", type=pathlib.Path, required=True)
    parser.add_argument("--build", action="append", required=True, metavar="ARCHITECTURE=FOLDER")
    options = parser.parse_args()
    work, cli = options.work.resolve(), options.cli.resolve()
    builds = {name: pathlib.Path(folder).resolve() for name, folder in (each.split("=") for each in options.build)}
    shutil.rmtree(work / "oracle", ignore_errors=True)
    folders = {architecture: stage(architecture, build, cli, work) for architecture, build in builds.items()}
    subprocess.run(["wineserver", "-p"], check=False)  # one server for all that follows
    try:
        check_registration(folders)
        everything = stories(cli, work / "oracle")
        for architecture, folder in folders.items():
            check(f"{architecture} registers again", regsvr32(architecture, folder / "DllTremvik.dll") == 0)
            check(f"{architecture} registers the host's classes", register_host(architecture, folder) == 0)
            check_examples(architecture, folder)
            for locale in LOCALES:
                for client in ("com_test.exe", "client.vbs", "client.js"):
                    run_client(architecture, client, locale, everything, folder, work)
                # A count of cycles in one locale is enough.
                cycles = () if locale == LOCALES[0] else ("--gtest_filter=-*Cycles*",)
                check_cases(f"{architecture} {locale[:5]} com_test", folder, locale, *cycles)
    finally:
        subprocess.run(["wineserver", "-k"], check=False)
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())
