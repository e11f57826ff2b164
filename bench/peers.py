"""The programs that the validator is measured against: what people would use instead, all of which do less.

Each prints a line "CODE COUNT" for each record code and a line "sum N", the third field of CR=10 in cents.
"""
import pathlib
import re
import subprocess

HERE = pathlib.Path(__file__).resolve().parent


def layouts():
    """{record code: [(first, end)]}: columns from 0 of each field but the line end, from docs/layout.md."""
    found, cuts = {}, []
    for line in (HERE.parent / "docs/layout.md").read_text(encoding="utf-8").splitlines():
        if heading := re.fullmatch(r"## CR=(\d\d)", line):
            cuts = found[heading[1]] = []
        elif field := re.match(r"\| (?!Separadores)\S+ \| (\d+)(?:-\d+)? \| (\d+) \|", line):
            cuts.append((int(field[1]) - 1, int(field[1]) - 1 + int(field[2])))
    return found


def widths(cuts):
    return [end - first for first, end in cuts]


def cobol(code, cuts):
    fields = (f"   02 campo-{code}-{number} pic {'9' if (code, number) == ('10', 3) else 'x'}({width})."
              for number, width in enumerate(widths(cuts), 1))
    return "\n".join([f"01 registro-{code}.", *fields])


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


def prepare(work):
    """Writes the programs, with the layouts in them, into the folder `work`; {name: command} of those that run here."""
    for template in (HERE / "peers").iterdir():
        lines = "\n".join(LAYOUT_LINE[template.suffix](*kind) for kind in layouts().items())
        program = template.read_text(encoding="utf-8").replace("@LAYOUT@", lines)
        (work / template.name).write_text(program, encoding="utf-8")
    subprocess.run(["cobc", "-x", "-O2", "-free", "-o", work / "records", work / "records.cob"], check=True)
    commands = {
        "gawk, FIELDWIDTHS": ["gawk", "-b", "-f", work / "split.awk"],
        "perl, unpack": ["perl", work / "split.pl"],
        "GnuCOBOL, records": [work / "records"],
        "python3, slices": ["python3", "-I", work / "split.py"],
        "pandas.read_fwf": ["python3", work / "frames.py"],
        "npm @evologi/fixed-width": ["node", work / "evologi_fixed_width.mjs"],
    }
    if not (work.parent / "node_modules/@evologi/fixed-width").is_dir():
        print("  left out: npm @evologi/fixed-width is not installed")
        del commands["npm @evologi/fixed-width"]
    return commands
