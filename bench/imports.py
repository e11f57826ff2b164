"""`importar` against `sqlite3 .import` of the rows that it stores, tables and columns the same."""
import shutil
import sys

import measure
import peers


def folder_of(file_set, work):
    """The program's folder for the imports of a file set; its reference tables are made by the first of them."""
    return work / f"import-{file_set.lines}"


def sqlite(*arguments):
    return [shutil.which("sqlite3"), "-batch", *arguments]


def answer_of(store, tables):
    """{table: rows}, and the sum of a column of cents."""
    queries = [f"SELECT '{table}', count(*) FROM {table};" for table in tables]
    queries.append("SELECT 'sum', sum(valor_contabil_centavos) FROM cfop;")
    lines = measure.output(sqlite(store, " ".join(queries))).splitlines()
    return {name: int(number) for name, number in (line.split("|") for line in lines)}


def export(store, work):
    """Writes each table's rows to a file of its own; returns the tables and the script that imports them again."""
    tables = measure.output(sqlite(store, "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid;")).split()
    script = ["BEGIN;", measure.output(sqlite(store, ".schema")), ".mode ascii"]
    for table in tables:
        rows = work / f"{table}.rows"
        rows.write_bytes(b"")
        measure.output(sqlite("-ascii", store, f".output {rows}", f"SELECT * FROM {table};"))
        if rows.stat().st_size:
            script.append(f".import {rows} {table}")
    program = work / "same-rows.sql"
    program.write_text("\n".join([*script, "COMMIT;", ""]), encoding="utf-8")
    return tables, program


def compare(tremvik, files, work):
    """{label: {name: seconds}} of one import of each file set into a store that does not exist yet."""
    results = {}
    for files_of in files:
        folder = folder_of(files_of, work)
        folder.mkdir(exist_ok=True)
        stores = [folder / "tremvik.db", folder / "same-rows.db", folder / "lines.db"]
        clear = ["rm", "-f", *stores]
        importar = [tremvik, "importar", "--pasta", folder, *files_of.files]
        measure.output(clear)
        measure.output(importar)
        tables, program = export(stores[0], folder)
        stored = answer_of(stores[0], tables)
        if (stored["cfop"], stored["sum"]) != (files_of.answer["10"], files_of.answer["sum"]):
            sys.exit(f"bench: tremvik stores wrongly what {files_of.label} lines say")
        commands = {
            "tremvik importar": importar,
            "sqlite3 .import, the same rows": sqlite(stores[1], f".read {program}"),
            "sqlite3 .import, the lines": peers.sqlite_lines(folder, "import", files_of.files, stores[2]),
        }
        measure.output(commands["sqlite3 .import, the same rows"])
        if answer_of(stores[1], tables) != stored:
            print("  left out: sqlite3 .import of the same rows stores others")
            del commands["sqlite3 .import, the same rows"]
        results[files_of.label] = measure.times(commands, folder, before=clear)
    return results
