#!/usr/bin/env python3
"""Measures `validar` and `importar` against the peers, all on one core and with their files in the cache.

usage: bench.py TREMVIK ALLOCATIONS WORK [--cpu | --docs]     (the two programs; a folder to work in)
Prints ratios of times of the same run and the targets: of elapsed time, with --cpu of processor time. With --docs it
rewrites docs/bench.svg and the tables of docs/speed.md and docs/scale.md too. Exit status 1 where the program itself answers wrongly or allocates for each record.
"""
import json
import os
import pathlib
import shutil
import subprocess
import sys

import docs
import files
import imports
import measure
import peers
import report


def right(name, found, expected):
    if found == expected:
        return True
    print(f"  left out: {name} answers wrongly")
    return False


def right_peers(of_set, work, the_peers):
    """{name: command} of those that answer rightly on one file set."""
    commands = {}
    for peer in the_peers:
        command = [*peer.command, *of_set.files]
        if right(peer.name, files.parse_answer(measure.output(command)), of_set.answer):
            commands[peer.name] = command
    lines = peers.sqlite_lines(work, of_set.lines, of_set.files)
    if right("sqlite3 .import", files.parse_answer(measure.output(lines)), of_set.answer):
        commands["sqlite3 .import, the lines"] = lines
    floor = ["wc", "-l", *of_set.files]
    if right("wc -l", int(measure.output(floor).splitlines()[-1].split()[0]), of_set.lines):
        commands["wc -l"] = floor
    return commands


def validar(tremvik, of_set, work, the_peers):
    """{name: seconds} of all programs on one file set."""
    program = [tremvik, "validar", "--pasta", work / "folder"]
    one_at_a_time = [*program, "--paralelo", 1] if of_set.many else program
    if files.program_answer(one_at_a_time, of_set.files) != of_set.answer:
        sys.exit(f"bench: tremvik answers wrongly on {of_set.label}")
    commands = {report.PROGRAM: [*one_at_a_time, *of_set.files]}
    if of_set.label == files.START:
        return measure.times(commands | {report.BARE: [tremvik, "--versao"]}, work)
    commands["tremvik validar --json"] = [*one_at_a_time, "--json", *of_set.files]
    times = measure.times(commands | right_peers(of_set, work, the_peers), work)
    if of_set.many:
        times |= measure.times({report.ALL_CORES: [*program, *of_set.files]}, work, one_core=False)
    return times


def memory(tremvik, of_set, work):
    """Bytes resident at most beyond those of a run that does nothing."""
    bare = measure.peak_memory([tremvik, "--versao"])
    folder = imports.folder_of(of_set, work)
    calls = {"validar": [tremvik, "validar", "--pasta", work / "folder", *of_set.files],
             "importar": [tremvik, "importar", "--pasta", folder, *of_set.files]}
    (folder / "tremvik.db").unlink(missing_ok=True)
    return {verb: measure.peak_memory(call) - bare for verb, call in calls.items()}


def main():
    tremvik, allocations, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    programs = work / "peers"
    programs.mkdir(parents=True, exist_ok=True)
    for folder in (work / "folder", *work.glob("import-*")):
        shutil.rmtree(folder, ignore_errors=True)
    sets = files.generate(tremvik, work)
    the_peers = peers.prepare(programs)
    results = {"cores": len(os.sched_getaffinity(0)), "sets": {}, "validar": {}}
    for of_set in sets:
        print(f"  validar: {of_set.label} ({of_set.lines:,} lines, {of_set.bytes / 1e6:.1f} MB)", flush=True)
        results["sets"][of_set.label] = {"files": len(of_set.files), "lines": of_set.lines, "bytes": of_set.bytes}
        results["validar"][of_set.label] = validar(tremvik, of_set, work, the_peers)
    print("  importar", flush=True)
    single = [of_set for of_set in sets[1:] if not of_set.many]
    results["importar"] = imports.compare(tremvik, single, work)
    results["memory"] = memory(tremvik, single[-1], work)
    counted = subprocess.run([allocations], stdout=subprocess.PIPE, text=True, check=False)
    results["allocations"] = {"text": counted.stdout.strip(), "none": counted.returncode == 0}
    results["splitting"] = [peer.name for peer in the_peers]
    (work / "results.json").write_text(json.dumps(results, indent=1))

    print("\n" + report.text(results, "mean processor time" if "--cpu" in sys.argv else "median"))
    if "--docs" in sys.argv[4:]:
        docs.write(results)
    return counted.returncode


if __name__ == "__main__":
    try:
        sys.exit(main())
    except subprocess.CalledProcessError as failed:
        sys.exit(f"bench: status {failed.returncode} from: {' '.join(map(str, failed.cmd))[:300]}")
