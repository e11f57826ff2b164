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
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
HERE = pathlib.Path(__file__).resolve().parent
SYSTEM = {"x86_64": "C:\\windows\\system32", "i686": "C:\\windows\\syswow64"}
LOCALES = ("pt_BR.UTF-8", "en_US.UTF-8")
YES, NO = "6", "7"
ICON_BITS = 0xF0
SCRIPT_ERRORS = "-all,fixme+wscript,fixme+vbscript,fixme+jscript"

HEADER = (
    "Sr(a) usuário(a), entre em contato com a empresa\r\nresponsável pela geração do arquivo Pré-Formatado\r\n"
    "e informe a mensagem abaixo : \r\n\r\n"
)
MISSING_DATABASE = "53 - Arquivo não encontrado"

results = {"passed": 0, "failed": 0}


def check(label, good, detail=""):
    results["passed" if good else "failed"] += 1
    print(("ok      " if good else "FAILED  ") + label, flush=True)
    if not good and detail:
        print("    " + "\n    ".join(str(detail).splitlines()[:40]), flush=True)


def wine(*command, locale=LOCALES[0], debug="-all", **more):
    environment = os.environ | {"TEST_LOCALE": locale, "WINEDEBUG": debug} | more
    return subprocess.run([ROOT / "cmake" / "wine-run", *map(str, command)], env=environment,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, errors="replace")


def regsvr32(architecture, library, *options):
    return wine(SYSTEM[architecture] + "\\regsvr32.exe", "/s", *options, f"Z:{library}").returncode


class Story:
    """One import: a file, the answer to what is asked, whether the host makes the temporary database."""

    def __init__(self, file, answer=YES, prepares=True):
        self.file, self.answer, self.prepares = file, answer, prepares
        self.name = file.stem + ("-nao" if answer == NO else "") + ("" if prepares else "-sem-banco")
        self.expected = None

    def line(self, journal):
        return f"Z:{self.file}|{self.answer}|{int(self.prepares)}|Z:{journal}\r\n"


def stories():
    samples = sorted((ROOT / "samples").glob("*.txt"))
    asking = [Story(file, NO) for file in samples if file.stem.startswith("pergunta")]
    return [Story(file) for file in samples] + asking + [Story(ROOT / "samples/aceito.txt", prepares=False)]


def objects(text):
    return [json.loads(line) for line in text.splitlines()]


def told_by_command_line(cli, story, work):
    """What the command line tells of the same file, but for what only it can tell."""
    folder = work / "oracle" / story.name
    answer = "sim" if story.answer == YES else "nao"
    run = subprocess.run([cli, "importar", story.file, "--json", "--pasta", folder, "--responder", answer],
                         stdout=subprocess.PIPE, text=True)
    seen = [each for each in objects(run.stdout) if each["tipo"] in
            ("mensagem", "evento", "banco", "consulta", "gravacao", "fim")]
    if story.prepares:
        return seen
    prepared = seen.index({"tipo": "banco", "operacao": "Preparar"})
    ended = {"tipo": "banco", "operacao": "Encerrar"}
    return seen[: prepared + 1] + [
        ended,
        {"tipo": "mensagem", "texto": HEADER + MISSING_DATABASE + "\r\nLinha nº 0", "estilo": 0, "titulo": "",
         "resposta": 1},
        {"tipo": "evento", "nome": "Fechar"},
        ended,
        {"tipo": "fim", "bolRetMonitora": True, "NroLinha": 0, "Mensagem": MISSING_DATABASE},
    ]


def difference(expected, seen):
    lines = [[json.dumps(each, ensure_ascii=False, sort_keys=True) for each in side] for side in (expected, seen)]
    return "\n".join(difflib.unified_diff(*lines, "command line", "client", lineterm="", n=1))


def engine_is_used_well(journal, folder):
    """The look-ups of one run: opened by the full path, as snapshots, with accents, and closed again."""
    calls = [(each["operacao"], each["texto"]) for each in journal if each["tipo"] == "motor"]
    opened = [text for name, text in calls if name == "OpenDatabase"]
    queries = [text for name, text in calls if name == "OpenRecordset"]
    closed = [text for name, text in calls if name == "Close"]
    return (
        len(closed) == len(opened) + len(queries)
        and set(opened) == {f"Z:{folder}\\tblFixas.fix".replace("/", "\\")}
        and all(query.startswith("4 SELECT") or query.startswith("4 Select") for query in queries)
        and any("tblQuadroOcorrências" in query for query in queries)
        and any("CódSubItem" in query for query in queries)
    )


def without_icons(expected, lines):
    """`expected` as it looks where the boxes of the journal `lines` could not show their icons."""
    if all(each.get("icones", True) for each in lines):
        return expected
    return [each | {"estilo": each["estilo"] & ~ICON_BITS} if "estilo" in each else each for each in expected]


def run_client(architecture, client, locale, wanted, folder, work):
    journals = work / "journals" / f"{architecture}-{client}-{locale}"
    shutil.rmtree(journals, ignore_errors=True)
    journals.mkdir(parents=True)
    list_file = journals / "list"
    list_file.write_text("".join(story.line(journals / story.name) for story in wanted), newline="")
    label = f"{architecture} {locale[:5]} {client}"
    if client == "client.exe":
        run = wine(folder / client, f"Z:{list_file}", locale=locale)
    else:
        cscript = SYSTEM[architecture] + "\\cscript.exe"
        run = wine(cscript, "//nologo", f"Z:{folder / client}", f"Z:{list_file}", locale=locale, debug=SCRIPT_ERRORS)
    # A script that fails ends silently with status 0, so its last line and the debug channel tell.
    finished = "DONE" in run.stdout and "OnScriptError" not in run.stdout
    check(f"{label}: ran to its end", run.returncode == 0 and finished, run.stdout)
    for story in wanted:
        journal = journals / story.name
        lines = objects(journal.read_text(encoding="utf-8")) if journal.exists() else []
        seen = [{key: value for key, value in each.items() if key != "icones"} for each in lines
                if each["tipo"] not in ("motor", "caminho")]
        # Wine's script host cannot subscribe to events.
        expected = [each for each in story.expected if client == "client.exe" or each["tipo"] != "evento"]
        expected = without_icons(expected, lines)
        check(f"{label}: {story.name}", seen == expected, difference(expected, seen))
        if story.name == "aceito" and locale == LOCALES[0]:
            check(f"{label}: {story.name}, database engine", engine_is_used_well(lines, folder))
            path = {"tipo": "caminho", "valor": f"Z:{folder}\\BDTempPrf.fix".replace("/", "\\")}
            check(f"{label}: {story.name}, temporary database", path in lines, f"no {path}")


def registry():
    """The classes of machine and user, as the registry exports them."""
    text = ""
    for root in ("HKLM", "HKCU"):
        file = pathlib.Path(os.environ["WINEPREFIX"]) / "export.reg"
        file.unlink(missing_ok=True)
        wine("reg", "export", root + "\\Software\\Classes", f"Z:{file}", "/y")
        text += file.read_text(encoding="utf-16") if file.exists() else ""
    return sorted(block for block in text.split("\n\n") if block.startswith("["))


def changes(before, after):
    return "\n".join(difflib.unified_diff(before, after, lineterm="", n=0))


def check_registration(folders):
    for architecture, folder in folders.items():  # what an earlier run left
        regsvr32(architecture, folder / "DllTremvik.dll", "/u")
        # The script host registers itself when it is first used.
        wine(SYSTEM[architecture] + "\\cscript.exe", "//nologo", f"Z:{folder / 'create.vbs'}")
    wine("reg", "add", "HKCU\\Software\\Classes", "/f")
    before = registry()
    for architecture, folder in folders.items():
        library = folder / "DllTremvik.dll"
        check(f"{architecture} registers", regsvr32(architecture, library) == 0)
    check("registration changes the registry", registry() != before)
    for architecture, folder in folders.items():
        check(f"{architecture} is removed", regsvr32(architecture, folder / "DllTremvik.dll", "/u") == 0)
        left = [other for other in folders if list(folders).index(other) > list(folders).index(architecture)]
        for other in left:
            script = wine(SYSTEM[other] + "\\cscript.exe", "//nologo", f"Z:{folders[other] / 'create.vbs'}")
            check(f"{other} works on after the removal of {architecture}", "CREATED" in script.stdout, script.stdout)
    after = registry()
    check("registration and removal leave the registry as it was", before == after, changes(before, after))
    for architecture, folder in folders.items():
        library = folder / "DllTremvik.dll"
        user = ("/n", "/i:user")
        check(f"{architecture} registers for the user", regsvr32(architecture, library, *user) == 0)
        added = set(registry()) - set(before)
        mine = added and all(block.startswith("[HKEY_CURRENT_USER\\") for block in added)
        check(f"{architecture} for the user: only the user's part changes", bool(mine), "\n".join(sorted(added)))
        check(f"{architecture} is removed for the user", regsvr32(architecture, library, "/u", *user) == 0)
    after = registry()
    check("the user's part is as it was", before == after, changes(before, after))


def check_examples(architecture, folder):
    """The examples import files, end as they promise and say how they are used."""
    # Wine's script host cannot bind events, so there the object is made without; the rest is the example's own.
    script = (ROOT / "examples/windows/importar.vbs").read_text(encoding="ascii")
    plain = script.replace('WScript.CreateObject("DllTremvik.Tremvik", "tremvik_")', 'CreateObject("DllTremvik.Tremvik")')
    (folder / "importar.vbs").write_text(plain, encoding="ascii", newline="\r\n")
    cscript = (SYSTEM[architecture] + "\\cscript.exe", "//nologo", f"Z:{folder / 'importar.vbs'}")
    for label, command, steps in (("C++", (folder / "importar.exe",), 44), ("VBScript", cscript, 0)):
        calls = ((), 2, "Uso: "), (("aceito",), 0, f"Aceito ({steps} passos)"), (("recusado-soma",), 1, "Recusado na linha ")
        for samples, status, told in calls:
            files = [f"Z:{ROOT}/samples/{name}.txt" for name in samples]
            run = wine(*command, *files, debug=SCRIPT_ERRORS, TESTE_HOST_RESPOSTA=YES)
            good = run.returncode == status and told in run.stdout and "OnScriptError" not in run.stdout
            check(f"{architecture} example in {label}: {samples[0] if samples else 'usage'}", good,
                  f"{run.returncode}\n{run.stdout}")


def check_cases(label, folder, locale, *options):
    """The program's own cases, each a check."""
    run = wine(folder / "com_test.exe", *options, locale=locale, WINE_TIMEOUT="300")
    for verdict, case in re.findall(r"^\[ +(OK|FAILED) +\] (\w+\.\w+) \(", run.stdout, re.MULTILINE):
        check(f"{label}: {case}", verdict == "OK")
    check(f"{label}: ran to its end", run.returncode == 0, run.stdout[-6000:])


def stage(architecture, builds, cli, work):
    """A folder with the library and all that it and its clients need."""
    folder = work / architecture
    shutil.rmtree(folder, ignore_errors=True)
    folder.mkdir(parents=True)
    build = builds[architecture]
    for file in ("adapters/com/DllTremvik.dll", "tests/com/TesteHost.dll", "tests/com/client.exe",
                 "tests/com/com_test.exe", "tests/com/importar.exe"):
        shutil.copy(build / file, folder)
    shutil.copy(builds["x86_64"] / "tests/com/sql_server.exe", folder)
    for script in ("client.vbs", "client.js", "create.vbs"):
        shutil.copy(HERE / script, folder)
    for sample in ("aceito", "pergunta", "recusado-vazio", "recusado-versao"):
        shutil.copy(ROOT / "samples" / f"{sample}.txt", folder)
    subprocess.run([cli, "tabelas", "construir", folder / "tblFixas.fix"], check=True, stdout=subprocess.DEVNULL)
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
    folders = {architecture: stage(architecture, builds, cli, work) for architecture in builds}
    subprocess.run(["wineserver", "-p"], check=False)  # one server for all that follows
    try:
        check_registration(folders)
        everything = stories()
        for story in everything:
            story.expected = told_by_command_line(cli, story, work)
        for architecture, folder in folders.items():
            for library in ("DllTremvik.dll", "TesteHost.dll"):
                check(f"{architecture} registers {library}", regsvr32(architecture, folder / library) == 0)
            check_examples(architecture, folder)
            for locale in LOCALES:
                for client in ("client.exe", "client.vbs", "client.js"):
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
