#!/usr/bin/env python3
"""Puts the page together: one HTML file with the module, the worker, the script and the style in it.

usage: assemble.py FOLDER MODULE PAGE      FOLDER holds page.html and what it is made of
"""
import base64
import gzip
import hashlib
import pathlib
import sys


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

    script, style, worker = read("page.js"), read("page.css"), read("worker.js")
    for name, text in (("page.js", script), ("worker.js", worker)):
        if "</script" in text.lower():
            raise SystemExit(f"{name} must not hold the end of a script element")
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
