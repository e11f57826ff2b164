#!/usr/bin/env python3
"""Measures `validar` and `importar` against the peers, all on one core and with their files in the cache.

usage: bench.py TREMVIK ALLOCATIONS WORK [--cpu | --docs]     (the two programs; a folder to work in)
Prints ratios of times of the same run and the targets: of elapsed time, with --cpu of processor time. With --docs it
rewrites the tables of docs/speed.md and docs/scale.md too. Exit status 1 where the program allocates for each record.
"""
import os
import pathlib
import shutil
import subprocess
import sys

import files
import imports
import measure
import peers
import report


def right_peers(of_set, commands):
    """Those of {name: command} that answer rightly on one file set, with its files."""
    right = {}
    for name, command in commands.items():
        if files.parse_answer(measure.output([*command, *of_set.files])) == of_set.answer:
            right[name] = [*command, *of_set.files]
        else:
            print(f"  left out: {name} answers wrongly")
    return right


def validar(tremvik, of_set, work, commands):
    """{name: seconds} of all programs on one file set."""
    program = [tremvik, "validar", "--pasta", work / "folder"]
    one_core = [*program, "--paralelo", 1]
    if files.program_answer(one_core, of_set.files) != of_set.answer:
        sys.exit(f"bench: tremvik answers wrongly on {of_set.label}")
    calls = {report.PROGRAM: [*one_core, *of_set.files]}
    if of_set.label == files.START:
        return measure.times(calls, work)
    calls["tremvik validar --json"] = [*one_core, "--json", *of_set.files]
    times = measure.times(calls | right_peers(of_set, commands), work)
    if len(of_set.files) > 1:
        times |= measure.times({report.ALL_CORES: [*program, *of_set.files]}, work, one_core=False)
    return times


def memory(tremvik, of_set, work):
    """Bytes resident at most beyond those of a run that does nothing."""
    bare = measure.peak_memory([tremvik, "--versao"])
    return {verb: measure.peak_memory([tremvik, verb, "--pasta", work / "folder", *of_set.files]) - bare
            for verb in ("validar", "importar")}


def main():
    tremvik, allocations, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    for folder in (work / "folder", *work.glob("import-*")):
        shutil.rmtree(folder, ignore_errors=True)
    (work / "peers").mkdir(parents=True, exist_ok=True)
    commands = peers.prepare(work / "peers")
    sets = files.generate(tremvik, work)
    cores = len(os.sched_getaffinity(0))
    results = {"sets": sets, "peers": list(commands), "cores": cores, "validar": {}, "importar": {}}
    for of_set in sets:
        print(f"  validar: {of_set.label} ({of_set.lines:,} lines, {of_set.bytes / 1e6:.1f} MB)", flush=True)
        results["validar"][of_set.label] = validar(tremvik, of_set, work, commands)
    for of_set in sets[1:-1]:
        results["importar"][of_set.label] = imports.compare(tremvik, of_set, work / f"import-{of_set.lines}")
    results["memory"] = memory(tremvik, sets[-2], work)
    results["allocates"] = subprocess.run([allocations], check=False).returncode
    print("\n" + report.text(results))
    if "--docs" in sys.argv[4:]:
        report.write_docs(results)
    return results["allocates"]


if __name__ == "__main__":
    try:
        sys.exit(main())
    except subprocess.CalledProcessError as failed:
        sys.exit(f"bench: status {failed.returncode} from: {' '.join(map(str, failed.cmd))[:300]}")
