#!/usr/bin/env python3
"""Puts the page together: one HTML file with the module, the worker, the script and the style in it.

usage: assemble.py FOLDER MODULE PAGE      FOLDER holds page.html and what it is made of
"""
import base64
import gzip
import hashlib
import pathlib
import sys


# The page's script in the order in which its parts use each other; all of them share one scope of their own.
SCRIPTS = ("elements.js", "engine.js", "files.js", "findings.js", "tree.js", "page.js")


def digest(text):
    return "'sha256-" + base64.b64encode(hashlib.sha256(text.encode()).digest()).decode() + "'"


def policy(script, style):
    """Nothing may be fetched or sent; only this page's own script and style count, and the worker made of it."""
    return (
        f"default-src 'none'; script-src {digest(script)} 'wasm-unsafe-eval'; style-src {digest(style)}; "
        "worker-src blob:; base-uri 'none'; form-action 'none'"
    )


def assemble(folder, module):
    def read(name):
        return (folder / name).read_text(encoding="utf-8")

    script = "'use strict';\n(() => {\n" + "\n".join(map(read, SCRIPTS)) + "})();\n"
    style, worker = read("page.css"), read("worker.js")
    if "</script" in (script + worker).lower():
        raise SystemExit("no script may hold the end of a script element")
    parts = {
        "@POLICY@": policy(script, style),
        "@STYLE@": style,
        "@MODULE@": base64.b64encode(gzip.compress(module, 9, mtime=0)).decode(),
        "@WORKER@": worker,
        "@SCRIPT@": script,
    }
    page = read("page.html")
    for mark, text in parts.items():
        page = page.replace(mark, text, 1)
    return page


def main():
    folder, module, page = map(pathlib.Path, sys.argv[1:])
    page.write_text(assemble(folder, module.read_bytes()), encoding="utf-8", newline="\n")


if __name__ == "__main__":
    main()
