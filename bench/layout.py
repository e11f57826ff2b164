"""The record layouts, read from docs/layout.md, which is made from those that the program uses."""
import pathlib
import re

PAGE = pathlib.Path(__file__).resolve().parent.parent / "docs/layout.md"


def kinds():
    """{record code: [(first, end)]}: columns from 0 of each field, those of the line end left out."""
    found, code = {}, None
    for line in PAGE.read_text(encoding="utf-8").splitlines():
        if heading := re.fullmatch(r"## CR=(\d\d)", line):
            code = heading[1]
            found[code] = []
        elif field := re.match(r"\| (\S+) \| (\d+)(?:-\d+)? \| (\d+) \|", line):
            if code and field[1] != "Separadores":
                first = int(field[2]) - 1
                found[code].append((first, first + int(field[3])))
    return found
