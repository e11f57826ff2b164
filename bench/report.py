"""What the measurements say: ratios, and the targets."""
import files

PROGRAM = "tremvik validar"
BARE = "tremvik --versao"
ALL_CORES = "tremvik validar, all cores"
IMPORT = "tremvik importar"
SAME_ROWS = "sqlite3 .import, the same rows"


def largest(results):
    return max((label for label in results["importar"]), key=lambda label: results["sets"][label]["lines"])


def small_files(results):
    return next(label for label, of_set in results["sets"].items() if of_set["files"] > 1)


def once_started(results):
    """Bytes a second of `validar` after its start: the time of the smallest file, with its lines, is taken off."""
    label = largest(results)
    seconds = results["validar"][label][PROGRAM] - results["validar"][files.START][PROGRAM]
    return (results["sets"][label]["bytes"] - results["sets"][files.START]["bytes"]) / seconds


def files_per_second(results):
    """Small files of one declaration, in one call on one core."""
    label = small_files(results)
    return results["sets"][label]["files"] / results["validar"][label][PROGRAM]


def line_times(results):
    """{"1,000 to 10,000": microseconds} that each further line takes, between the lengths measured."""
    points = [(label, results["sets"][label]["lines"], results["validar"][label][PROGRAM]) for label in results["importar"]]
    return {f"{less} to {more}": 1e6 * (slower - faster) / (lines - fewer)
            for (less, fewer, faster), (more, lines, slower) in zip(points, points[1:])}


def ratios(times, base):
    return {name: seconds / times[base] for name, seconds in times.items()}


def short(ratio):
    return f"{ratio:.2f}" if ratio < 10 else f"{ratio:.0f}"


def table(measured, base):
    """Rows of text: the times of `base` in milliseconds, then every other program's time by that of `base`."""
    rows = [["", *measured], [f"{base}, ms", *(f"{1000 * times[base]:.1f}" for times in measured.values())]]
    names = dict.fromkeys(name for times in measured.values() for name in times if name != base)
    for name in names:
        by_set = (ratios(times, base).get(name) for times in measured.values())
        rows.append([name, *("" if ratio is None else short(ratio) for ratio in by_set)])
    return rows


def validar_table(results):
    measured = {label: times for label, times in results["validar"].items() if label != files.START}
    rows = table(measured, PROGRAM)
    speeds = (results["sets"][label]["bytes"] / times[PROGRAM] / 1e6 for label, times in measured.items())
    rows.insert(2, [f"{PROGRAM}, MB/s", *(f"{speed:.0f}" for speed in speeds)])
    return rows


def importar_table(results):
    return table(results["importar"], IMPORT)


def targets(results):
    """(what, measured, target, met) of each target."""
    label = largest(results)
    times = results["validar"][label]
    splitting = {name: times[name] for name in results["splitting"] if name in times}
    fastest = min(splitting, key=splitting.get)
    speed = splitting[fastest] / times[PROGRAM]
    per_line = line_times(results)
    shorter, longer = list(per_line.values())[0], list(per_line.values())[-1]
    start = 1000 * results["validar"][files.START][PROGRAM]
    rows = [(f"validar, times as fast as the fastest that splits ({fastest})", short(speed), "1 or more", speed >= 1),
            ("validar once started, MB/s", f"{once_started(results) / 1e6:.0f}", "200 or more", once_started(results) >= 200e6),
            ("validar, a small file, start included, ms", f"{start:.1f}", "under 15", start < 15),
            ("validar, µs for a further line, " + ", ".join(per_line), ", ".join(f"{time:.2f}" for time in per_line.values()),
             "the last at most 1.5 times the first", longer <= 1.5 * shorter)]
    if SAME_ROWS in results["importar"][label]:
        by_rows = 1 / ratios(results["importar"][label], IMPORT)[SAME_ROWS]
        rows.append(("importar, time by that of .import of the same rows", short(by_rows), "2 or less", by_rows <= 2))
    for verb, extra in results["memory"].items():
        rows.append((f"{verb}, resident beyond the bare process, MiB", f"{extra / 2**20:.1f}", "under 10", extra < 10 * 2**20))
    rows.append(("allocations for an accepted record", "none" if results["allocations"]["none"] else "some", "none",
                 results["allocations"]["none"]))
    return rows


def aligned(rows):
    widths = [max(map(len, column)) for column in zip(*rows)]
    return "\n".join("  " + "  ".join(cell.ljust(width) if place == 0 else cell.rjust(width)
                                      for place, (cell, width) in enumerate(zip(row, widths))) for row in rows)


def text(results, measured):
    """The whole report; `measured` says what was taken of the runs."""
    per_second = files_per_second(results)
    smallest = results["validar"][files.START]
    verdicts = [["", "measured", "target", ""]]
    verdicts += [[what, measured, target, "met" if met else "NOT MET"] for what, measured, target, met in targets(results)]
    return "\n".join([
        "Time of each program by that of `tremvik validar`, which checks every rule; the others only read or split.",
        f"One core, files in the cache, {measured} of 10 runs; columns: lines in one file, then all small files in one call.",
        aligned(validar_table(results)),
        "",
        "Time of each program by that of `tremvik importar`, into a new database.",
        aligned(importar_table(results)),
        "",
        f"Small files: {per_second:,.0f} a second on one core; a million in {1e6 / per_second / 3600:.2f} core-hours.",
        f"Smallest file: {1000 * smallest[PROGRAM]:.1f} ms, of which the bare process ({BARE}) takes {1000 * smallest[BARE]:.1f}.",
        results["allocations"]["text"],
        "",
        aligned(verdicts),
    ])
