"""Times and memory of commands."""
import json
import os
import shlex
import statistics
import subprocess
import sys

WARM_UP, RUNS = 2, 10
# Debian's own programs come first, not what stands for them in a home directory.
ENVIRONMENT = {**os.environ, "LC_ALL": "C", "PATH": "/usr/bin:/bin:" + os.environ["PATH"]}


def seconds_of(result, processor):
    """The median time of a result of hyperfine, or the mean of its processor time, which a busy machine changes less."""
    return result["user"] + result["system"] if processor else statistics.median(result["times"])


def words(command):
    return [str(word) for word in command]


def output(command):
    """What a command that must succeed prints."""
    return subprocess.run(words(command), check=True, stdout=subprocess.PIPE, env=ENVIRONMENT).stdout.decode()


def pinned():
    """The words in front of a command that keep it on one core, the last one that this process may use."""
    return ["taskset", "-c", str(max(os.sched_getaffinity(0)))]


def times(commands, work, before=None, one_core=True):
    """{name: seconds} of {name: command}, each started without a shell; `before` runs ahead of each run."""
    if not commands:
        return {}
    report = work / "times.json"
    call = ["hyperfine", "-N", "--style", "none", "--warmup", WARM_UP, "--runs", RUNS, "--export-json", report]
    if before:
        call += ["--prepare", shlex.join(words(before))]
    for name, command in commands.items():
        call += ["--command-name", name, shlex.join(words(command))]
    with open(work / "hyperfine.log", "a", encoding="utf-8") as log:
        subprocess.run(words([*(pinned() if one_core else []), *call]), check=True, stdout=log, stderr=log, env=ENVIRONMENT)
    results = json.loads(report.read_text())["results"]
    return {result["command"]: seconds_of(result, "--cpu" in sys.argv) for result in results}


def peak_memory(command):
    """Greatest resident memory of one run, in bytes."""
    run = subprocess.run(words(["/usr/bin/time", "-f", "%M", *command]), check=True, stdout=subprocess.DEVNULL,
                         stderr=subprocess.PIPE, env=ENVIRONMENT)
    return int(run.stderr.decode().split()[-1]) * 1024
