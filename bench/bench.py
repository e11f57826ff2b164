#!/usr/bin/env python3
"""Measures `validar` and `importar` against the peers, all on one core and with their files in the cache.

usage: bench.py TREMVIK ALLOCATIONS WORK [--docs]     (the two programs; a folder to work in)
Prints ratios of times of the same run and the targets; with --docs rewrites docs/bench.svg and the tables of
docs/speed.md too. Exit status 1 where the program itself answers wrongly or allocates for each record.
"""
import json
import os
import pathlib
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


def validar(tremvik, of_set, work, the_peers):
    """{name: median seconds} of all programs that answer rightly on one file set."""
    program = [tremvik, "validar", "--pasta", work / "folder"]
    one_at_a_time = [*program, "--paralelo", 1] if of_set.many else program
    if files.program_answer(one_at_a_time, of_set.files) != of_set.answer:
        sys.exit(f"bench: tremvik answers wrongly on {of_set.label}")
    commands = {"tremvik validar": [*one_at_a_time, *of_set.files],
                "tremvik validar --json": [*one_at_a_time, "--json", *of_set.files]}
    if of_set.label == "start":
        return measure.times({"tremvik validar": commands["tremvik validar"], "tremvik --versao": [tremvik, "--versao"]}, work)
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
    times = measure.times(commands, work)
    if of_set.many:
        all_cores = {report.ALL_CORES: [*program, *of_set.files]}
        times |= measure.times(all_cores, work, one_core=False)
    return times


def memory(tremvik, of_set, work):
    """Bytes resident at most beyond those of a run that does nothing."""
    bare = measure.peak_memory([tremvik, "--versao"])
    folder = work / "memory"
    calls = {"validar": [tremvik, "validar", "--pasta", work / "folder", *of_set.files],
             "importar": [tremvik, "importar", "--pasta", folder, *of_set.files]}
    (folder / "tremvik.db").unlink(missing_ok=True)
    return {verb: measure.peak_memory(call) - bare for verb, call in calls.items()}


def main():
    tremvik, allocations, work = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
    programs = work / "peers"
    programs.mkdir(parents=True, exist_ok=True)
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

    print("\n" + report.text(results))
    if "--docs" in sys.argv[4:]:
        docs.write(results)
    return counted.returncode


if __name__ == "__main__":
    sys.exit(main())
