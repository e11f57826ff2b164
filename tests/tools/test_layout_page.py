"""The layout page is what its generator prints now.   usage: test_layout_page.py GENERATOR PAGE"""
import difflib
import pathlib
import subprocess
import sys

generator, page = sys.argv[1:]
wanted = subprocess.run([generator], check=True, capture_output=True, text=True, encoding="utf-8").stdout
found = pathlib.Path(page).read_text(encoding="utf-8")
changes = list(difflib.unified_diff(found.splitlines(), wanted.splitlines(), page, "generated", lineterm=""))
if changes:
    print("\n".join(changes))
    sys.exit("the page is stale: run ./dev docs")
