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
CLASSES = ("TestHost.Journal", "DAO.DBEngine.36", "DAO.DBEngine.120", "ADODB.Stream") + tuple("Brunsel." + name for name in (
    "BancoTemporario", "ConsultaDeclaracoes", "ValidadorDocumentos",
    *(f"GravadorCR{code}" for code in ("05", "07", "10", "14", "18", "20", "25", "26", "27", "28", "30", "31"))))

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


def make_desktop_tables(architecture, folder):
    """The tables for the desktop engine, made by the script of the distribution, have the rows of those for SQLite."""
    file = folder / "desktop.fix"
    # Script and stand-in read and write Windows-1252, as scripts do.
    run = cscript(architecture, f"{ROOT}/dist/criar-tblFixas.vbs", f"Z:{ROOT}/dist/tabelas", f"Z:{file}")
    check(f"{architecture} makes the desktop engine's tables", "Feito: " in run.stdout and file.exists(), run.stdout)
    again = cscript(architecture, f"{ROOT}/dist/criar-tblFixas.vbs", f"Z:{ROOT}/dist/tabelas", f"Z:{file}")
    check(f"{architecture} leaves tables that are there", again.returncode == 1, again.stdout)
    made, built = (sqlite3.connect(folder / name) for name in ("rows.sqlite", "sqlite.fix"))
    for table, in built.execute("select name from sqlite_master where type = 'table'").fetchall():
        rows = [sorted(["" if value is None else str(value) for value in row] for row in each.execute(f'select * from "{table}"'))
                for each in (made, built)]
        check(f"{architecture} {table} has the same rows", rows[0] == rows[1] and rows[0])


def use_tables(folder, kind):
    shutil.copy(folder / f"{kind}.fix", folder / "tblFixas.fix")


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


def check_calls(label, journal, folder, desktop):
    """What one run asked of the engine and gave its components, beyond what the command line tells."""
    calls = [each for each in journal if each["tipo"] == "chamada"]
    asked = {name: [each["argumentos"] for each in calls if each["membro"] == name] for name in
             ("OpenDatabase", "OpenRecordset", "Close", "CaminhoBase", "Abrir")}
    windows = f"Z:{folder}\\".replace("/", "\\")
    queries = [query for query, kind in asked["OpenRecordset"] if kind == "4"]
    check(f"{label}, database engine",  # opened once, each question asked once, and each answer closed
          asked["OpenDatabase"] == [[windows + "tblFixas.fix"]] * desktop
          and len(asked["OpenRecordset"]) == len(set(queries)) == len(asked["Close"]) - desktop
          and any("tblQuadroOcorrências" in query for query in queries) == desktop, asked)
    paths = asked["Abrir"] + asked["CaminhoBase"]
    check(f"{label}, temporary database", len(paths) > 2 and all(given == [windows + "BDTempPrf.fix"] for given in paths),
          paths)
    made = {(each["membro"], each["atribui"], len(each["argumentos"])) for each in calls
            if each["objeto"].startswith("Brunsel.")}
    check(f"{label}, published members", made and made <= contract(), made - contract())


def run_client(architecture, client, locale, wanted, folder, work, desktop):
    use_tables(folder, "desktop" if desktop else "sqlite")
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
            check_calls(f"{label}: {story.name}", lines, folder, desktop)


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


def check_example(architecture, label, example, steps):
    """An example imports files, ends as it promises and says how it is used."""
    for sample, status, told in ((None, 2, "Uso: "), ("aceito", 0, f"Aceito ({steps} passos)"),
                                 ("recusado-soma", 1, "Recusado na linha ")):
        run = example(*([f"Z:{ROOT}/samples/{sample}.txt"] if sample else []), TEST_HOST_ANSWER=YES)
        good = run.returncode == status and told in run.stdout and "OnScriptError" not in run.stdout
        check(f"{architecture} example in {label}: {sample or 'usage'}", good, f"{run.returncode}\n{run.stdout}")


def check_examples(architecture, folder):
    """In C++ before the library is registered, by the manifests beside it; in VBScript after it."""
    use_tables(folder, "sqlite")
    check_example(architecture, "C++", lambda *files, **more: wine(folder / "importar.exe", *files, **more), 44)
    check(f"{architecture} registers again", regsvr32(architecture, folder / "DllTremvik.dll") == 0)
    # Wine's script host cannot bind events, so there the object is made without; the rest is the example's own.
    script = (ROOT / "dist/exemplos/importar.vbs").read_text(encoding="ascii")
    plain = script.replace('WScript.CreateObject("DllTremvik.Tremvik", "tremvik_")', 'CreateObject("DllTremvik.Tremvik")')
    (folder / "importar.vbs").write_text(plain, encoding="ascii", newline="\r\n")
    check_example(architecture, "VBScript",
                  lambda *files, **more: cscript(architecture, folder / "importar.vbs", *files, **more), 0)


def check_cases(label, folder, locale, *options):
    """The program's own cases, each a check."""
    run = wine(folder / "com_test.exe", *options, locale=locale, WINE_TIMEOUT="300")
    for verdict, case in re.findall(r"^\[ +(OK|FAILED) +\] (\w+\.\w+) \(", run.stdout, re.MULTILINE):
        check(f"{label}: {case}", verdict == "OK")
    # Wine may end with 0 after a crash.
    check(f"{label}: ran to its end", run.returncode == 0 and "[  PASSED  ]" in run.stdout, run.stdout[-6000:])


def stage(architecture, build, work):
    """A folder with what is distributed and the clients that try it."""
    folder = work / architecture
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(ROOT / "samples", folder / "samples", ignore=shutil.ignore_patterns("*.md", "*.json"))
    clients = [build / "tests/com" / file for file in ("TestHost.dll", "com_test.exe", "importar.exe")]
    samples = [ROOT / f"samples/{name}.txt" for name in ("aceito", "pergunta", "recusado-vazio", "recusado-versao")]
    for file in (*(ROOT / "dist" / architecture).iterdir(), ROOT / "dist/exemplos/importar.exe.manifest", *clients,
                 *HERE.glob("*.vbs"), *samples):
        shutil.copy(file, folder)
    (folder / "tblFixas.fix").rename(folder / "sqlite.fix")
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
    folders = {architecture: stage(architecture, build, work) for architecture, build in builds.items()}
    subprocess.run(["wineserver", "-p"], check=False)  # one server for all that follows
    try:
        check_registration(folders)
        everything = stories(cli, work / "oracle")
        for architecture, folder in folders.items():
            check(f"{architecture} registers the host's classes", register_host(architecture, folder) == 0)
            make_desktop_tables(architecture, folder)
            check_examples(architecture, folder)
            for locale in LOCALES:
                run_client(architecture, "com_test.exe", locale, everything, folder, work, False)
                run_client(architecture, "client.vbs", locale, everything, folder, work, True)
                # A count of cycles in one locale is enough.
                cycles = () if locale == LOCALES[0] else ("--gtest_filter=-*Cycles*:Lookups*",)
                check_cases(f"{architecture} {locale[:5]} com_test", folder, locale, *cycles)
    finally:
        subprocess.run(["wineserver", "-k"], check=False)
    print(f"{results['passed']} passed, {results['failed']} failed")
    return 1 if results["failed"] else 0


if __name__ == "__main__":
    sys.exit(main())
