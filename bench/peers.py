"""The programs that the validator is measured against: what people would use instead, all of which do less.

Each prints a line "CODE COUNT" for each record code and a line "sum N", the third field of CR=10 in cents.
"""
import dataclasses
import pathlib
import shlex
import shutil
import subprocess

import layout

TEMPLATES = pathlib.Path(__file__).resolve().parent / "peers"


@dataclasses.dataclass
class Peer:
    name: str
    command: list  # the files follow


def widths(cuts):
    return [end - first for first, end in cuts]


def cobol(code, cuts):
    lines = [f"01 registro-{code}."]
    for number, width in enumerate(widths(cuts), 1):
        picture = "9" if (code, number) == ("10", 3) else "x"
        lines.append(f"   02 campo-{code}-{number} pic {picture}({width}).")
    return "\n".join(lines)


def script(code, cuts):
    fields = ", ".join(f"['field{n}', {first}, {end}]" for n, (first, end) in enumerate(cuts, 1))
    return f"  '{code}': [{fields}],"


# How each program writes the layout of one record kind, in place of its line @LAYOUT@.
LAYOUT_LINE = {
    ".awk": lambda code, cuts: f'  widths["{code}"] = "{" ".join(map(str, widths(cuts)))}"',
    ".pl": lambda code, cuts: f"  '{code}' => '{' '.join(f'a{width}' for width in widths(cuts))}',",
    ".py": lambda code, cuts: f'    b"{code}": {cuts},',
    ".mjs": script,
    ".cob": cobol,
}


def write_programs(work):
    """Puts the programs, each with the layout written into it, into the folder `work`."""
    for template in TEMPLATES.iterdir():
        lines = "\n".join(LAYOUT_LINE[template.suffix](*kind) for kind in layout.kinds().items())
        program = template.read_text(encoding="utf-8").replace("@LAYOUT@", lines)
        (work / template.name).write_text(program, encoding="utf-8")


def prepare(work):
    """Writes and compiles the programs; returns the peers that can be run here."""
    write_programs(work)
    subprocess.run(["cobc", "-x", "-O2", "-free", "-o", work / "records", work / "records.cob"], check=True)
    peers = [
        Peer("gawk, FIELDWIDTHS", ["gawk", "-b", "-f", work / "split.awk"]),
        Peer("perl, unpack", ["perl", work / "split.pl"]),
        Peer("GnuCOBOL, records", [work / "records"]),
        Peer("python3, slices", ["python3", "-I", work / "split.py"]),
        Peer("pandas.read_fwf", ["python3", work / "frames.py"]),
    ]
    for package, program in (("fixed-width-parser", "fixed_width_parser.mjs"),
                             ("@evologi/fixed-width", "evologi_fixed_width.mjs")):
        if (work.parent / "node_modules" / package).is_dir():
            peers.append(Peer(f"npm {package}", ["node", work / program]))
        else:
            print(f"  left out: npm {package} is not installed")
    return peers


def sqlite_lines(work, label, files, database=":memory:"):
    """The command that imports the lines of `files` into a table of one column and answers from it."""
    program = work / f"lines-{label}.sql"
    imports = [f".import {shlex.quote(str(file))} linhas" for file in files]
    program.write_text("\n".join([
        "BEGIN;", "CREATE TABLE linhas (linha TEXT);", ".mode ascii", '.separator "\\037" "\\n"', *imports, "COMMIT;",
        ".mode list", '.separator " " "\\n"',
        "SELECT substr(linha, 1, 2), count(*) FROM linhas GROUP BY 1;",
        "SELECT 'sum', sum(CAST(substr(linha, 9, 15) AS INTEGER)) FROM linhas WHERE linha LIKE '10%';", ""]))
    return [shutil.which("sqlite3"), "-batch", database, f".read {program}"]
