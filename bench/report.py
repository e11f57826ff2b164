"""What the measurements say, as text and in docs/: ratios, and the targets."""
import pathlib
import re

import files

PROGRAM = "tremvik validar"
ALL_CORES = "tremvik validar, all cores"
IMPORT = "tremvik importar"
SAME_ROWS = "sqlite3 .import, the same rows"
DOCS = pathlib.Path(__file__).resolve().parent.parent / "docs"


def short(ratio):
    return f"{ratio:.2f}" if ratio < 10 else f"{ratio:.0f}"


def table(measured, base):
    """Rows of text: the times of `base` in milliseconds, then every other program's time by that of `base`."""
    rows = [["", *measured], [f"{base}, ms", *(f"{1000 * times[base]:.1f}" for times in measured.values())]]
    for name in dict.fromkeys(name for times in measured.values() for name in times if name != base):
        ratios = (short(times[name] / times[base]) if name in times else "" for times in measured.values())
        rows.append([name, *ratios])
    return rows


def validar_table(results):
    measured = {of_set.label: results["validar"][of_set.label] for of_set in results["sets"][1:]}
    rows = table(measured, PROGRAM)
    speeds = (of_set.bytes / measured[of_set.label][PROGRAM] / 1e6 for of_set in results["sets"][1:])
    rows.insert(2, [f"{PROGRAM}, MB/s", *(f"{speed:.0f}" for speed in speeds)])
    return rows


def targets(results):
    """Rows (what, measured, target, met) of each target."""
    start, *single, _ = results["sets"]
    seconds = {label: times[PROGRAM] for label, times in results["validar"].items()}
    largest = single[-1]
    peers = results["validar"][largest.label]
    fastest = min((name for name in results["peers"] if name in peers), key=peers.get)
    speed = peers[fastest] / seconds[largest.label]
    once_started = (largest.bytes - start.bytes) / (seconds[largest.label] - seconds[files.START]) / 1e6
    # Microseconds that each further line takes, between the lengths measured.
    lengths = [f"{less.label} to {more.label}" for less, more in zip(single, single[1:])]
    per_line = [1e6 * (seconds[more.label] - seconds[less.label]) / (more.lines - less.lines)
                for less, more in zip(single, single[1:])]
    small = 1000 * seconds[files.START]
    imported = results["importar"][largest.label]
    by_rows = imported[IMPORT] / imported[SAME_ROWS]
    rows = [(f"validar, times as fast as the fastest that splits ({fastest})", short(speed), "1 or more", speed >= 1),
            ("validar once started, MB/s", f"{once_started:.0f}", "200 or more", once_started >= 200),
            ("validar, a small file, start included, ms", f"{small:.1f}", "under 15", small < 15),
            (f"validar, µs for a further line, {', '.join(lengths)}", ", ".join(f"{time:.2f}" for time in per_line),
             "the last at most 1.5 times the first", per_line[-1] <= 1.5 * per_line[0]),
            ("importar, time by that of .import of the same rows", short(by_rows), "2 or less", by_rows <= 2)]
    rows += [(f"{verb}, resident beyond the bare process, MiB", f"{extra / 2**20:.1f}", "under 10", extra < 10 * 2**20)
             for verb, extra in results["memory"].items()]
    none = results["allocates"] == 0
    return [*rows, ("allocations for an accepted record", "none" if none else "some", "none", none)]


def scale(results):
    """What many small files cost on one core and on all."""
    of_set = results["sets"][-1]
    count, times = len(of_set.files), results["validar"][of_set.label]
    rows = [["", "files a second", "a million files"]]
    for title, name, busy in (("one core (`--paralelo 1`)", PROGRAM, 1),
                              (f"{results['cores']} cores (the default)", ALL_CORES, results["cores"])):
        minutes = 1e6 * times[name] / count / 60
        a_million = f"{minutes:.1f} minutes, {busy * minutes / 60:.2f} core-hours"
        rows.append([title, f"{count / times[name]:,.0f}", a_million])
    return f"Files of {of_set.lines / count:.0f} records and {of_set.bytes / count / 1000:.1f} kB on average:", rows


def aligned(rows):
    widths = [max(map(len, column)) for column in zip(*rows)]
    return "\n".join("  " + "  ".join(cell.ljust(width) if place == 0 else cell.rjust(width)
                                      for place, (cell, width) in enumerate(zip(row, widths))) for row in rows)


def text(results):
    verdicts = [(*row, "met" if met else "NOT MET") for *row, met in targets(results)]
    of_small, costs = scale(results)
    return "\n".join([
        f"Time of each program by that of `{PROGRAM}`; columns: lines in one file, then all small files in one call.",
        aligned(validar_table(results)), "",
        f"Time of each program by that of `{IMPORT}`, into a new database.",
        aligned(table(results["importar"], IMPORT)), "",
        of_small, aligned(costs), "",
        aligned([("", "measured", "target", ""), *verdicts])])


def markdown(rows):
    head, *body = ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join([head, "|---" + "|---:" * (len(rows[0]) - 1) + "|", *body])


def put(page, name, content):
    """Replaces what stands between the marks of `name` in a page."""
    path = DOCS / page
    begin, end = f"<!-- {name}: written by ./dev bench --docs -->", f"<!-- end of {name} -->"
    between = re.compile(re.escape(begin) + ".*?" + re.escape(end), re.DOTALL)
    written, found = between.subn(lambda _: f"{begin}\n{content}\n{end}", path.read_text(encoding="utf-8"))
    if found != 1:
        raise SystemExit(f"bench: docs/{page} has no marks for {name}")
    path.write_text(written, encoding="utf-8")


def write_docs(results):
    put("speed.md", "validar", markdown(validar_table(results)))
    put("speed.md", "importar", markdown(table(results["importar"], IMPORT)))
    verdicts = ((*row, target if met else f"{target} (not met)") for *row, target, met in targets(results))
    put("speed.md", "targets", markdown([("", "measured", "target"), *verdicts]))
    of_small, costs = scale(results)
    put("scale.md", "scale", f"{of_small}\n\n{markdown(costs)}")
