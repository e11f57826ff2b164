"""Times and memory of commands."""
import json
import os
import shlex
import statistics
import subprocess
import sys

# Debian's own programs come first, not what stands for them in a home directory.
ENVIRONMENT = {**os.environ, "LC_ALL": "C", "PATH": "/usr/bin:/bin:" + os.environ["PATH"]}


def seconds_of(result):
    """Of a result of hyperfine: the median time, or with --cpu the mean of processor time, less disturbed by others."""
    return result["user"] + result["system"] if "--cpu" in sys.argv else statistics.median(result["times"])


def words(command):
    return [str(word) for word in command]


def output(command):
    """What a command that must succeed prints."""
    return subprocess.run(words(command), check=True, stdout=subprocess.PIPE, env=ENVIRONMENT).stdout.decode()


def times(commands, work, before=None, one_core=True):
    """{name: seconds} of {name: command}, each started without a shell; `before` runs ahead of each run."""
    report = work / "times.json"
    call = ["hyperfine", "-N", "--style", "none", "--warmup", 2, "--runs", 10, "--export-json", report]
    if one_core:
        call = ["taskset", "-c", max(os.sched_getaffinity(0)), *call]
    if before:
        call += ["--prepare", shlex.join(words(before))]
    for name, command in commands.items():
        call += ["--command-name", name, shlex.join(words(command))]
    with open(work / "hyperfine.log", "a", encoding="utf-8") as log:
        subprocess.run(words(call), check=True, stdout=log, stderr=log, env=ENVIRONMENT)
    return {result["command"]: seconds_of(result) for result in json.loads(report.read_text())["results"]}


def peak_memory(command):
    """Greatest resident memory of one run, in bytes."""
    run = subprocess.run(words(["/usr/bin/time", "-f", "%M", *command]), check=True, stdout=subprocess.DEVNULL,
                         stderr=subprocess.PIPE, env=ENVIRONMENT)
    return int(run.stderr.decode().split()[-1]) * 1024
