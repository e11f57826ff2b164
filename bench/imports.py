"""`importar` against `sqlite3 .import` of the rows that it stores, tables and columns the same."""
import sys

import files
import measure
import report


def sqlite(*arguments):
    return ["sqlite3", "-batch", *arguments]


def answer_of(store, tables):
    """{table: rows}, and the sum of a column of cents."""
    queries = [f"SELECT '{table}', count(*) FROM {table};" for table in tables]
    queries.append("SELECT 'sum', sum(valor_contabil_centavos) FROM cfop;")
    return files.parse_answer(measure.output(sqlite(store, " ".join(queries))), "|")


def export(store, work):
    """Writes each table's rows to a file of its own; returns the tables and the script that imports them again."""
    names = "SELECT name FROM sqlite_schema WHERE type = 'table' ORDER BY rowid;"
    tables = measure.output(sqlite(store, names)).split()
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


def compare(tremvik, of_set, folder):
    """{name: seconds} of one import of the file set into a store that does not exist yet."""
    folder.mkdir()
    store, same = folder / "tremvik.db", folder / "same-rows.db"
    importar = [tremvik, "importar", "--pasta", folder, *of_set.files]
    measure.output(importar)
    tables, program = export(store, folder)
    stored = answer_of(store, tables)
    if (stored["cfop"], stored["sum"]) != (of_set.answer["10"], of_set.answer["sum"]):
        sys.exit(f"bench: tremvik stores wrongly what {of_set.label} lines say")
    measure.output(sqlite(same, f".read {program}"))
    if answer_of(same, tables) != stored:
        sys.exit("bench: sqlite3 .import of the same rows stores others")
    commands = {report.IMPORT: importar, report.SAME_ROWS: sqlite(same, f".read {program}")}
    return measure.times(commands, folder, before=["rm", "-f", store, same])
