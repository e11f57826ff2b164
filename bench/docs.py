"""docs/bench.svg and the tables of docs/speed.md and docs/scale.md, from measured results."""
import html
import math
import pathlib
import re

import report

DOCS = pathlib.Path(__file__).resolve().parent.parent / "docs"

LEFT, WIDTH, RIGHT, ROW, BAR = 280, 430, 70, 24, 15  # pixels: names, bars, numbers; a row and its bar
LOW, HIGH = 0.01, 100  # ends of the axis
OURS, THEIRS, GRID, INK = "#1f6f5c", "#9fb3c8", "#d9dee4", "#22303c"


def x_of(ratio):
    share = math.log10(ratio / LOW) / math.log10(HIGH / LOW)
    return LEFT + WIDTH * min(max(share, 0), 1)


def text(x, y, words, anchor="start", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" {extra}>{html.escape(words)}</text>'


def panel(top, title, times, base):
    """The elements of one panel, and the y below it: a bar for each program, the slowest last."""
    ticks = [10.0 ** power for power in range(round(math.log10(LOW)), round(math.log10(HIGH)) + 1)]
    rows = sorted(report.ratios(times, base).items(), key=lambda row: row[1])
    axis = top + 34 + ROW * len(rows)
    parts = [text(16, top + 16, title, extra='font-weight="bold"')]
    for tick in ticks:
        colour = INK if tick == 1 else GRID
        parts.append(f'<line x1="{x_of(tick):.1f}" y1="{top + 28}" x2="{x_of(tick):.1f}" y2="{axis}" stroke="{colour}"/>')
        parts.append(text(x_of(tick), axis + 16, f"{tick:g}", "middle", 'font-size="11"'))
    for place, (name, ratio) in enumerate(rows):
        y = top + 34 + ROW * place
        ours = name == base
        number = f"1 ({1000 * times[name]:.0f} ms)" if ours else report.short(ratio)
        parts.append(text(LEFT - 38, y + 12, name, "end", 'font-weight="bold"' if ours else ""))
        from_x, to_x = sorted((x_of(1), x_of(ratio)))
        parts.append(f'<rect x="{from_x - 1:.1f}" y="{y}" width="{to_x - from_x + 2:.1f}" height="{BAR}" '
                     f'fill="{OURS if ours else THEIRS}"/>')
        beyond = (from_x - 6, "end") if ratio < 1 else (to_x + 6, "start")
        parts.append(text(beyond[0], y + 12, number, beyond[1]))
    legend = f"time by that of {base} (logarithmic; left of 1 is faster)"
    parts.append(text(LEFT + WIDTH / 2, axis + 34, legend, "middle", 'font-size="12"'))
    return parts, axis + 54


def chart(results):
    label, many = report.largest(results), report.small_files(results)
    panels = [(f"One file of {label} records: validating it, and what others take to read or split it",
               results["validar"][label], report.PROGRAM),
              (f"{many} of one declaration each, in one call",
               {name: time for name, time in results["validar"][many].items() if "all cores" not in name}, report.PROGRAM),
              (f"Importing {label} records into a new database", results["importar"][label], report.IMPORT)]
    parts, y = [], 10
    for title, times, base in panels:
        drawn, y = panel(y, title, times, base)
        parts += drawn
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" width="{LEFT + WIDTH + RIGHT}" height="{y}" '
        f'viewBox="0 0 {LEFT + WIDTH + RIGHT} {y}" font-family="sans-serif" font-size="13" fill="{INK}">',
        '<title>Time of validar and importar beside that of other programs</title>',
        '<rect width="100%" height="100%" fill="#ffffff"/>', *parts, "</svg>", ""])


def markdown(rows):
    head, *body = [[cell.replace("|", "\\|") for cell in row] for row in rows]
    lines = ["| " + " | ".join(head) + " |", "|---" + "|---:" * (len(head) - 1) + "|"]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in body])


def put(page, name, content):
    """Replaces what stands between the marks of `name` in a page."""
    path = DOCS / page
    marks = f"<!-- {name}: written by ./dev bench --docs -->", f"<!-- end of {name} -->"
    between = re.compile(re.escape(marks[0]) + ".*?" + re.escape(marks[1]), re.DOTALL)
    written, found = between.subn(lambda _: f"{marks[0]}\n{content}\n{marks[1]}", path.read_text(encoding="utf-8"))
    if found != 1:
        raise SystemExit(f"bench: docs/{page} has no marks for {name}")
    path.write_text(written, encoding="utf-8")


def scale(results):
    many = report.small_files(results)
    of_set, times = results["sets"][many], results["validar"][many]
    count, cores = of_set["files"], results["cores"]
    rows = [["", "files a second", "a million files"]]
    for title, seconds, busy in (("one core (`--paralelo 1`)", times[report.PROGRAM], 1),
                                 (f"{cores} cores (the default)", times[report.ALL_CORES], cores)):
        per_second = count / seconds
        minutes = 1e6 / per_second / 60
        rows.append([title, f"{per_second:,.0f}", f"{minutes:.1f} minutes, {busy * minutes / 60:.2f} core-hours"])
    size = f"Files of {of_set['lines'] / count:.0f} records and {of_set['bytes'] / count / 1000:.1f} kB on average:"
    return f"{size}\n\n{markdown(rows)}"


def write(results):
    (DOCS / "bench.svg").write_text(chart(results), encoding="utf-8")
    put("speed.md", "validar", markdown(report.validar_table(results)))
    put("speed.md", "importar", markdown(report.importar_table(results)))
    verdicts = ([what, measured, target if met else f"{target} (not met)"]
                for what, measured, target, met in report.targets(results))
    put("speed.md", "targets", markdown([["", "measured", "target"], *verdicts]))
    put("scale.md", "scale", scale(results))
    print("written: docs/bench.svg, the tables of docs/speed.md and docs/scale.md")
