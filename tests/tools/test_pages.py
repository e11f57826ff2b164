"""The pages tell the truth: commands print what they show, the code is the example's, links lead somewhere.

usage: test_pages.py ROOT TREMVIK     (TREMVIK: the program)
In README.md and docs/json.md each block that begins with "$ tremvik ..." is run from ROOT; each cpp and cmake block
stands in examples/cpp_host.
"""
import difflib
import os
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

root, program = pathlib.Path(sys.argv[1]), sys.argv[2]
pages = "".join((root / page).read_text(encoding="utf-8") for page in ("README.md", "docs/json.md"))
blocks = re.findall(r"^```(\w*)\n(.*?)^```$", pages, re.MULTILINE | re.DOTALL)
faults = []


def run(command, home):
    environment = {"PATH": os.environ["PATH"], "HOME": home, "LANG": "C.UTF-8"}
    done = subprocess.run([program, *shlex.split(command)], cwd=root, env=environment, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
    return done.stdout.decode()


def compare(title, shown, found):
    shown, found = ([line.rstrip() for line in text.splitlines()] for text in (shown, found))
    faults.extend(difflib.unified_diff(shown, found, "the page", title, lineterm=""))


examples = {"cpp": (root / "examples/cpp_host/main.cpp").read_text(encoding="utf-8"),
            "cmake": (root / "examples/cpp_host/CMakeLists.txt").read_text(encoding="utf-8")}
runs = 0
with tempfile.TemporaryDirectory() as home:
    for language, text in blocks:
        if text.startswith("$ tremvik "):
            command, _, shown = text.partition("\n")
            compare(command, shown, run(command.removeprefix("$ tremvik "), home))
            runs += 1
        elif language in examples and text not in examples[language]:
            compare(f"examples/cpp_host, {language}", text, examples[language])
if not runs:
    faults.append("the pages show no run of the program")
for page in [*root.glob("*.md"), *root.glob("[a-z]*/*.md"), *root.glob("[a-z]*/[a-z]*/*.md")]:
    if page.relative_to(root).parts[0].startswith("build"):
        continue
    for link in re.findall(r"\]\((?!https?:|#)([^)#\s]+)", page.read_text(encoding="utf-8")):
        if not (page.parent / link).exists():
            faults.append(f"{page.relative_to(root)}: there is no {link}")
sys.exit("\n".join(faults) or 0)
