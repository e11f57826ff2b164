#!/usr/bin/env python3
"""Runs clang-tidy over the project's own sources of a build, several at a time. A source that passed is not
looked at again until it, a header that it includes, its command or the configuration changes.

usage: tidy.py BUILD_DIR [CLANG_TIDY]      (BUILD_DIR holds compile_commands.json)
Prints what clang-tidy says of each source that fails; exit status 1 if any does.
"""
import concurrent.futures
import hashlib
import json
import os
import pathlib
import subprocess
import sys

import check_includes

ROOT = pathlib.Path(__file__).resolve().parent.parent


def own_sources(build):
    """The (source, command) of each source of the project itself, generated ones left out."""
    for entry in json.loads((build / "compile_commands.json").read_text()):
        source = pathlib.Path(entry["directory"], entry["file"]).resolve()
        if source.is_relative_to(ROOT) and not source.is_relative_to(build):
            yield source, entry["command"]


def reach(source):
    """`source` and every file of the project that it includes, directly or not."""
    reached, todo = set(), [source]
    while todo:
        path = todo.pop()
        if path in reached:
            continue
        reached.add(path)
        todo += [ROOT / quoted for _, quoted, _ in check_includes.includes(path) if quoted and (ROOT / quoted).is_file()]
    return reached


def key(source, command, tidy_version):
    """What the verdict on `source` depends on, as one text."""
    configurations = [folder / ".clang-tidy" for folder in source.parents if (folder / ".clang-tidy").is_file()]
    digest = hashlib.sha256((tidy_version + command).encode())
    for path in sorted(reach(source)) + configurations:
        digest.update(path.read_bytes())
    return digest.hexdigest()


def examine(source, clang_tidy, build, passed):
    """What clang-tidy says of `source`, or an empty text when it passed; that is noted in the file `passed`."""
    run = subprocess.run([clang_tidy, "-p", str(build), "--quiet", str(source)], capture_output=True, text=True)
    if run.returncode == 0:
        passed.touch()
        return ""
    return run.stdout + (run.stderr if not run.stdout else "")


def main():
    build = pathlib.Path(sys.argv[1]).resolve()
    clang_tidy = sys.argv[2] if len(sys.argv) > 2 else "clang-tidy"
    version = subprocess.run([clang_tidy, "--version"], check=True, capture_output=True, text=True).stdout
    passed = build / "tidy-passed"
    passed.mkdir(exist_ok=True)
    keys = {source: key(source, command, version) for source, command in own_sources(build)}
    todo = sorted(source for source in keys if not (passed / keys[source]).exists())

    failures = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        said = pool.map(lambda source: examine(source, clang_tidy, build, passed / keys[source]), todo)
        for source, faults in zip(todo, said):
            if faults:
                failures += 1
                print(f"{source.relative_to(ROOT)}:\n{faults}", flush=True)
    print(f"clang-tidy: {len(keys)} sources, {len(todo)} examined, {failures} failed")
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
