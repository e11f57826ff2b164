#!/usr/bin/env python3
"""Runs clang-tidy over the project's own sources of a build, several at a time. A source that passed is not
looked at again until it, a header that it includes, its command or the configuration changes.

usage: tidy.py BUILD_DIR [CLANG_TIDY [FOLDER...]]      (BUILD_DIR holds compile_commands.json)
With FOLDERs, only the sources in them. A build for Windows is read as its own compiler reads it.
Prints what clang-tidy says of each source that fails; exit status 1 if any does.
"""
import concurrent.futures
import functools
import hashlib
import json
import os
import pathlib
import re
import subprocess
import sys

import check_includes

ROOT = pathlib.Path(__file__).resolve().parent.parent


def own_sources(build, folders):
    """The (source, command) of each C++ source of the project itself in `folders`, generated ones left out."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if source.suffix != ".cpp" or source.is_relative_to(build):
            continue
        if any(source.is_relative_to(ROOT / folder) for folder in folders):
            yield source, entry["command"]


@functools.cache
def cross_arguments(compiler):
    """What makes clang read a source as `compiler` does, where that compiles for Windows: target and headers."""
    target = re.match(r"\w+-w64-mingw32", pathlib.Path(compiler).name)
    if not target:
        return []
    said = subprocess.run([compiler, "-E", "-v", "-x", "c++", os.devnull], check=True, capture_output=True, text=True)
    listed = re.search(r"#include <...> search starts here:\n(.*)End of search list", said.stderr, re.DOTALL)
    folders = [pathlib.Path(line.strip()).resolve() for line in listed[1].splitlines()]
    # lib/gcc/TARGET/VERSION/include belongs to that compiler alone; clang brings the like along.
    system = [f"--extra-arg=-isystem{folder}" for folder in folders if folder.parents[2].name != "gcc"]
    return [f"--extra-arg-before=--target={target[0]}", "--extra-arg=-nostdinc++", *system]


def reach(source):
    """`source` and every file of the project that it includes, directly or not."""
    reached, todo = set(), [source]
    while todo:
        path = todo.pop()
        if path in reached:
            continue
        reached.add(path)
        quoted = [quoted for _, quoted, _ in check_includes.includes(path) if quoted]
        near = [folder / name for name in quoted for folder in (path.parent, ROOT)]
        todo += [found for found in near if found.is_file()]
    return reached


def key(source, command, tidy_version):
    """What the verdict on `source` depends on, as one text."""
    configurations = [folder / ".clang-tidy" for folder in source.parents if (folder / ".clang-tidy").is_file()]
    digest = hashlib.sha256((tidy_version + command).encode())
    for path in sorted(reach(source)) + configurations:
        digest.update(path.read_bytes())
    return digest.hexdigest()


def examine(source, command, build, passed):
    """What `command` says of `source`, or an empty text when it passed; that is noted in the file `passed`."""
    run = subprocess.run([*command, "-p", str(build), "--quiet", str(source)], capture_output=True, text=True)
    if run.returncode == 0:
        passed.touch()
        return ""
    return run.stdout + (run.stderr if not run.stdout else "")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    clang_tidy = sys.argv[2] if len(sys.argv) > 2 else "clang-tidy"
    commands = dict(own_sources(build, sys.argv[3:] or ["."]))
    version = subprocess.run([clang_tidy, "--version"], check=True, capture_output=True, text=True).stdout
    passed = build / "tidy-passed"
    passed.mkdir(exist_ok=True)
    keys = {source: key(source, command, version) for source, command in commands.items()}
    tools = {source: [clang_tidy, *cross_arguments(command.split()[0])] for source, command in commands.items()}
    todo = sorted(source for source in keys if not (passed / keys[source]).exists())

    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        said = pool.map(lambda source: examine(source, tools[source], build, passed / keys[source]), todo)
        for source, faults in zip(todo, said):
            if faults:
                failures += 1
                print(f"{source.relative_to(ROOT)}:\n{faults}", flush=True)
    print(f"clang-tidy: {len(keys)} sources, {len(todo)} examined, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
