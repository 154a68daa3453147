#!/usr/bin/env python3
"""Writes docs/PERFORMANCE.md and the charts in docs/performance from the figures of kanvo-bench.

  performance.py FILE          from what `kanvo-bench --peers --json FILE` wrote (./dev performance does both)
  performance.py --self-test   proves how figures become verdicts, tables and charts

Targets and the reasons for missing them come from bench/TARGETS, which is kept by hand.
"""

import fnmatch
import json
import math
import sys
import tempfile
import xml.dom.minidom
from pathlib import Path
from xml.sax.saxutils import escape

ROOT = Path(__file__).resolve().parent.parent

INTRODUCTION = """\
# Performance

How fast Kanvo draws on a desktop processor, beside what the same machine reaches with `memset` and `memcpy`, and beside
other drawing libraries in the same process and the same rounds. Written by `tools/performance.py`; `./dev performance`
measures again and rewrites this page, `./dev bench --filter over` prints single figures.

## How to read this

- **Mpx/s** are million pixels per second, **ns** nanoseconds per shape; the best of all rounds, in thread CPU time.
  Every contender has its turn in every round, so that what disturbs one disturbs all.
- **ratio** is pixels per second divided by those of `memset` (fills, lines, shapes) or `memcpy` (everything that reads)
  for the same rectangle at the same places: 1 is as fast as memory can be written or copied.
- **Kanvo** has columns for the instruction set that this machine selects by itself and for the portable code, both with
  the optimised loops (`OPTIMIZED_BLIT`) on and off. Lines, polygons and dots do not ask for these loops. A map over an
  ARGB32 picture is read with the loops off only, one over an RGB565 picture with the loops on.
- **Best peer** is the fastest that does what the case asks for. What is drawn is checked before it is timed, area and
  colour: a figure with `~` belongs to a result that is recognisably less exact, one with `†` to a result that does less
  than was asked (no blending, no anti-aliasing); the latter is never best. Peers are what Debian
  packages; libraries that are not are not compared with, since a ratio counts in one run only.
- Peers blend premultiplied pixels, which saves them a division per pixel, except SDL2 and AGG. Kanvo blends straight
  alpha, and its results are the same bytes in every column.

| Case | |
|---|---|
| `/1` `/16` `/64` `/480x272` `/1920x1080` | side of a rectangle in pixels. Small ones go to 256 places of a 480 x 272 target; that one fits the second cache, the largest does not |
| `_random` `_icon` `_opaque` | alpha of the source: random per pixel; discs with soft edges, runs of opaque and of transparent pixels; none |
| `_ga128` | times a global alpha of 128 |
| `mask_a8` | one colour through an alpha map; `over_mask` an ARGB32 picture, `over565_mask` an RGB565 picture through one |
| `rle` | a run-length-encoded picture, in the form each library has |
| `stretch_*` | to the size named, by the factor named; `_over` blended |
| `rotate30_*` | squares of the side named, blended; pixels are those of the source |
| `line*` | 1000 random lines, the long ones of 170 pixels in the mean, the short ones up to 16 along each axis; `5`: five pixels wide; `dash`: 4 on, 4 off |
| `poly_*` | stars and circles of so many corners and such a radius; `tex`: filled from a repeating turned texture |
| `circle_aa` | round dots, anti-aliased |
"""

# ---- figures --------------------------------------------------------------------------------------------------------


def read_targets(text):
    """(pattern, times best peer, times memory or None, reason) in the order of the file."""
    targets = []
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        parts = [part.strip() for part in line.split("|", 3)]
        if len(parts) != 4:
            raise ValueError(f"TARGETS, line {number}: expected three bars: {line}")
        targets.append((parts[0], float(parts[1]), None if parts[2] == "-" else float(parts[2]), parts[3]))
    return targets


def target_of(targets, name):
    return next((target for target in targets if fnmatch.fnmatchcase(name, target[0])), None)


class Case:
    """One case of the run: who reached which speed."""

    def __init__(self, case, peers):
        self.name, self.group, self.is_shape = case["name"], case["group"], case["shape"]
        self.pixels, self.memory, self.memory_name = case["pixels"], case["memory_mpixels"], case["memory"]
        self.ours, self.peers, self.marks = {}, {}, {}
        for result in case["results"]:
            name = result["contender"]
            (self.peers if name in peers else self.ours)[name] = result["mpixels"]
            self.marks[name] = "†" if result["less"] else "" if result["exact"] else "~"
        eligible = {name: speed for name, speed in self.peers.items() if self.marks[name] != "†"}
        self.best = max(eligible, key=eligible.get) if eligible else None

    def our_name(self):
        """What users get: the fast instruction set, its loops where they take part. Contenders come in this order."""
        return next(iter(self.ours), None)

    def our_speed(self):
        return self.ours[self.our_name()]

    def versus_best(self):
        return self.our_speed() / self.peers[self.best] if self.best else None

    def ratio(self):
        return self.our_speed() / self.memory


# ---- text -----------------------------------------------------------------------------------------------------------


def number(value):
    """Three digits that count."""
    if value >= 100:
        return f"{value:.0f}"
    return f"{value:.1f}" if value >= 10 else f"{value:.2f}"


def speed_text(case, speed):
    """Million pixels per second, for shapes nanoseconds, and the ratio where it says something."""
    if case.is_shape:
        return number(case.pixels / speed * 1000)
    return f"{number(speed)} ({speed / case.memory:.2f})"


def table(header, rows):
    lines = ["| " + " | ".join(header) + " |", "|---|" + "---:|" * (len(header) - 1)]
    return "\n".join(lines + ["| " + " | ".join(row) + " |" for row in rows]) + "\n"


def group_tables(cases):
    """Kanvo's own columns with the best peer, then all peers."""
    ours = list(dict.fromkeys(name for case in cases for name in case.ours))
    peers = list(dict.fromkeys(name for case in cases for name in case.peers))
    unit = "ns" if cases[0].is_shape else "Mpx/s (ratio)"
    own_rows, peer_rows = [], []
    for case in cases:
        own = [f"`{case.name}`", number(case.memory)]
        own += [speed_text(case, case.ours[name]) + case.marks[name] if name in case.ours else "" for name in ours]
        best = f"{case.best} {speed_text(case, case.peers[case.best])}{case.marks[case.best]}" if case.best else ""
        own += [best, f"{case.versus_best():.2f}" if case.best else ""]
        own_rows.append(own)
        cells = []
        for name in peers:
            text = speed_text(case, case.peers[name]) + case.marks[name] if name in case.peers else ""
            cells.append(f"**{text}**" if name == case.best else text)
        peer_rows.append([f"`{case.name}`"] + cells)
    text = table(["case, " + unit, "memory, Mpx/s"] + ours + ["best peer", "ours / best"], own_rows)
    if peers:
        text += f"\n<details><summary>All peers, {unit}</summary>\n\n{table(['case'] + peers, peer_rows)}\n</details>\n"
    return text


def verdict(case, target):
    """Whether the speed beside the best peer is reached; None where there is nobody to compare with."""
    if not case.best:
        return None
    return case.versus_best() >= target[1]


def target_section(cases, targets):
    rows, missed, met, silent = [], [], 0, []
    for case in cases:
        target = target_of(targets, case.name)
        if not target or not case.ours or verdict(case, target) is None:
            continue
        is_met = verdict(case, target)
        met += is_met
        measured, wanted = f"{case.versus_best():.2f}", f"{target[1]:g}"
        rows.append([f"`{case.name}`", case.best + case.marks[case.best], wanted, measured,
                     "-" if target[2] is None else f"{target[2]:g}", f"{case.ratio():.3g}",
                     "met" if is_met else "**not met**"])
        if not is_met:
            missed.append(f"- `{case.name}`: {measured} of {wanted}. {target[3] or 'No reason known.'}")
            if not target[3]:
                silent.append(case.name)
    text = (f"## Targets\n\n{met} of {len(rows)} are met. Each is a speed relative to the best peer; the ratio to memory "
            "stands beside it for orientation.\n\n"
            "![Speed relative to the best peer, with the targets](performance/targets.svg)\n\n")
    text += table(["case", "best peer", "target", "measured", "ratio to memory: target", "measured", ""], rows)
    if missed:
        text += "\n## What falls short, and why\n\n" + "\n".join(missed) + "\n"
    return text, silent


def machine_section(run):
    lines = [f"- {run['processor']}, {run['date']}; compiled with {run['compiler']}",
             f"- {run['rounds']} rounds of {run['milliseconds']:g} ms per contender"]
    peers = [f"{c['name']} {c['version']}" for c in run["contenders"] if c["peer"]]
    if peers:
        lines.append("- Peers: " + ", ".join(peers))
    return "## The machine\n\n" + "\n".join(lines) + "\n"


# ---- charts ---------------------------------------------------------------------------------------------------------

FONT = "font-family='Helvetica, Arial, sans-serif'"
INK, FAINT, OURS, PORTABLE, PEER, MISSED = "#222222", "#d8d8d8", "#1f5fa8", "#9ec5ea", "#e39b3b", "#c0504d"


def svg(width, height, body):
    size = f"width='{width}' height='{height}' viewBox='0 0 {width} {height}'"
    return (f"<svg xmlns='http://www.w3.org/2000/svg' {size}>\n"
            f"<rect width='{width}' height='{height}' fill='#ffffff'/>\n" + "\n".join(body) + "\n</svg>\n")


def svg_text(x, y, text, size=11, anchor="start", fill=INK, weight="normal"):
    return (f"<text x='{x:.1f}' y='{y:.1f}' font-size='{size}' text-anchor='{anchor}' fill='{fill}' "
            f"font-weight='{weight}' {FONT}>{escape(text)}</text>")


def svg_bar(x, y, width, height, fill):
    return f"<rect x='{x:.1f}' y='{y:.1f}' width='{max(width, 0.5):.1f}' height='{height}' fill='{fill}'/>"


def nice_step(most):
    """A round number of which three to six fit."""
    power = 10.0 ** math.floor(math.log10(most / 4))
    return next(power * factor for factor in (1, 2, 2.5, 5, 10) if power * factor >= most / 5)


def bar_chart(title, axis, rows, legend):
    """rows: (label, [(fill, value, text)])."""
    left, plot, bar, gap, top = 230, 430, 9, 9, 74
    most = max((value for _, bars in rows for _, value, _ in bars), default=1) * 1.02
    height = top + sum(bar * len(bars) + gap for _, bars in rows) + 12
    body = [svg_text(16, 24, title, 15, weight="bold"), svg_text(16, 44, axis, 11)]
    x = 16
    for fill, name in legend:
        body += [svg_bar(x, 54, 10, 10, fill), svg_text(x + 14, 63, name)]
        x += 30 + 6.4 * len(name)
    step = nice_step(most)
    for i in range(int(most / step) + 1):
        at = left + i * step / most * plot
        body.append(f"<line x1='{at:.1f}' y1='{top}' x2='{at:.1f}' y2='{height - 8}' stroke='{FAINT}'/>")
        body.append(svg_text(at, top - 2, f"{i * step:g}", 9, "middle", "#777777"))
    y = top + gap / 2
    for label, bars in rows:
        body.append(svg_text(left - 8, y + bar * len(bars) / 2 + 4, label, 11, "end"))
        for fill, value, text in bars:
            length = value / most * plot
            body += [svg_bar(left, y, length, bar - 1, fill),
                     svg_text(left + length + 4, y + bar - 2, text, 8.5, fill="#555555")]
            y += bar
        y += gap
    return svg(left + plot + 130, height, body)


def group_chart(title, cases):
    """Bars for Kanvo, its portable code, the best peer: ratio to memory, for shapes speed beside the best peer."""
    # Only the sizes that say most: an icon and a small screen, where a case has sizes at all.
    shown = [c for c in cases if c.is_shape or c.name.startswith("rotate") or c.name.endswith(("/64", "/480x272"))]
    shown = [c for c in shown if c.ours and (c.best or not c.is_shape)]
    rows = []
    for case in shown:
        unit = case.peers[case.best] if case.is_shape else case.memory
        words = ((lambda v, c=case: f"{number(c.pixels / v * 1000)} ns") if case.is_shape else
                 (lambda v: f"{number(v)} Mpx/s"))
        bars = [(OURS, case.our_speed() / unit, words(case.our_speed()))]
        portable = next((speed for name, speed in case.ours.items() if "portable" in name), None)
        if portable:
            bars.append((PORTABLE, portable / unit, words(portable)))
        if case.best:
            bars.append((PEER, case.peers[case.best] / unit, f"{case.best}, {words(case.peers[case.best])}"))
        rows.append((case.name, bars))
    if not rows:
        return None
    axis = ("Speed, the best peer being 1. Longer is faster." if shown[0].is_shape else
            "Pixels per second, memset or memcpy of the same rectangle being 1. Longer is faster.")
    legend = [(OURS, shown[0].our_name()), (PORTABLE, "Kanvo portable"), (PEER, "best peer")]
    return bar_chart(title, axis, rows, legend)


def targets_chart(cases, targets):
    """Speed beside the best peer on a scale of factors; a tick where the target is."""
    left, plot, row, top = 230, 430, 13, 74
    rows = [(case, target_of(targets, case.name)) for case in cases if case.ours and case.best]
    rows = [(case, target) for case, target in rows if target]
    low, high = 1 / 16, 16

    def at(value):
        return left + plot * math.log(min(max(value, low), high) / low) / math.log(high / low)

    height = top + row * len(rows) + 12
    body = [svg_text(16, 24, "Speed relative to the best peer", 15, weight="bold"),
            svg_text(16, 44, "1 is as fast as the fastest of them; from line to line it is twice as fast. Black: targets.")]
    for x, fill, name in ((16, OURS, "target met"), (116, MISSED, "not met")):
        body += [svg_bar(x, 54, 10, 10, fill), svg_text(x + 14, 63, name)]
    for power in range(-4, 5):
        x = at(2.0 ** power)
        stroke = "#777777" if power == 0 else FAINT
        body.append(f"<line x1='{x:.1f}' y1='{top}' x2='{x:.1f}' y2='{height - 8}' stroke='{stroke}'/>")
        body.append(svg_text(x, top - 2, f"{2 ** power}" if power >= 0 else f"1/{2 ** -power}", 9, "middle", "#777777"))
    for i, (case, target) in enumerate(rows):
        y, x = top + 3 + i * row, at(case.versus_best())
        body.append(svg_text(left - 8, y + 9, case.name, 10, "end"))
        body.append(svg_bar(min(x, at(1)), y + 1, abs(x - at(1)), row - 4, OURS if verdict(case, target) else MISSED))
        body.append(svg_bar(at(target[1]) - 1, y - 1, 2, row - 1, "#000000"))
        body.append(svg_text(left + plot + 12, y + 9, f"{case.versus_best():.2f}  {case.best}", 10, fill="#555555"))
    return svg(left + plot + 130, height, body)


# ---- page -----------------------------------------------------------------------------------------------------------


def slug(group):
    return "".join(c if c.isalnum() else "_" for c in group.lower()).strip("_").replace("__", "_")


def build(run, targets):
    """The page, charts by file name, and cases that miss their target without a reason."""
    peers = {c["name"] for c in run["contenders"] if c["peer"]}
    cases = [Case(case, peers) for case in run["cases"]]
    section, silent = target_section(cases, targets)
    page = INTRODUCTION + "\n" + machine_section(run) + "\n" + section
    charts = {"targets.svg": targets_chart(cases, targets)}
    for group in dict.fromkeys(case.group for case in cases):
        members = [case for case in cases if case.group == group]
        page += f"\n## {group}\n\n"
        chart = group_chart(group, members)
        if chart:
            charts[slug(group) + ".svg"] = chart
            page += f"![{group}](performance/{slug(group)}.svg)\n\n"
        page += group_tables(members)
    return page, charts, silent


def self_test():
    def result(name, mpixels, exact=True, less=False):
        return {"contender": name, "mpixels": mpixels, "exact": exact, "less": less}

    def case(name, results, shape=False):
        return {"name": name, "group": "Lines" if shape else "Copy and convert", "shape": shape, "pixels": 10.0,
                "memory": "memcpy", "memory_mpixels": 1000.0, "results": results}

    fast, slow = "Kanvo fast", "Kanvo portable"
    run = {"date": "2000-01-01", "processor": "P & Q", "compiler": "cc", "rounds": 1, "milliseconds": 1,
           "contenders": [{"name": fast, "version": "", "peer": False}, {"name": slow, "version": "", "peer": False}] +
           [{"name": name, "version": "1", "peer": True} for name in ("A", "B")],
           "cases": [case("copy/64", [result(fast, 900.0), result(slow, 90.0), result("A", 300.0), result("B", 600.0)]),
                     case("over/64", [result(fast, 100.0), result("A", 200.0), result("B", 999.0, less=True)]),
                     case("line/long", [result(fast, 50.0), result(slow, 50.0), result("A", 100.0, exact=False)], True),
                     case("alone/64", [result(fast, 5.0)])]}
    targets = read_targets("# comment\n\nline/* | 0.4 | - | \ncopy/64 | 1.5 | 0.8 | \n*/64 | 0.9 | - | because of A\n")
    page, charts, silent = build(run, targets)

    failures = 0

    def expect(title, is_right):
        nonlocal failures
        if not is_right:
            failures += 1
            print(f"self-test: {title}")

    expect("the first line that fits counts", target_of(targets, "copy/64")[1] == 1.5)
    expect("others take a later one", target_of(targets, "x/64")[1] == 0.9)
    expect("or none", target_of(targets, "x/1") is None)
    expect("a target that is met", "| `copy/64` | B | 1.5 | 1.50 | 0.8 | 0.9 | met |" in page)
    expect("one that does less is not best", "| `over/64` | A | 0.9 | 0.50 | - | 0.1 | **not met** |" in page)
    expect("its reason is given", "- `over/64`: 0.50 of 0.9. because of A" in page)
    expect("two of three are met", "2 of 3 are met" in page)
    expect("who is less exact is marked", "| `line/long` | A~ |" in page)
    expect("shapes are in nanoseconds", "| `line/long` | 1000 | 200 | 200 | A 100~ | 0.50 |" in page)
    expect("rectangles in Mpx/s and ratio",
           "| `copy/64` | 1000 | 900 (0.90) | 90.0 (0.09) | B 600 (0.60) | 1.50 |" in page)
    expect("without peers there is no best", "| `alone/64` | 1000 | 5.00 (0.01) |  |  |  |" in page)
    expect("nothing misses without a reason", silent == [])
    expect("a reason that lacks is named", build(run, read_targets("copy/64 | 9 | - |"))[2] == ["copy/64"])
    expect("there is a chart for every group", set(charts) == {"targets.svg", "copy_and_convert.svg", "lines.svg"})
    expect("charts are named in the page", all(f"(performance/{name})" in page for name in charts))
    expect("steps of axes are round", [nice_step(m) for m in (1, 3.7, 40)] == [0.2, 1, 10])
    try:
        read_targets("copy/64 1.5\n")
        expect("a target without bars is refused", False)
    except ValueError:
        pass
    for text in charts.values():
        xml.dom.minidom.parseString(text)  # raises what is no XML
    with tempfile.TemporaryDirectory() as folder:
        write(page, charts, Path(folder))
        expect("the page is written", (Path(folder) / "PERFORMANCE.md").read_text(encoding="utf-8") == page)
        expect("charts are written", len(list((Path(folder) / "performance").glob("*.svg"))) == len(charts))
    print("performance self-test: " + (f"{failures} wrong" if failures else "all right"))
    return 1 if failures else 0


def write(page, charts, folder):
    (folder / "performance").mkdir(parents=True, exist_ok=True)
    for old in (folder / "performance").glob("*.svg"):
        old.unlink()
    for name, text in charts.items():
        (folder / "performance" / name).write_text(text, encoding="utf-8")
    (folder / "PERFORMANCE.md").write_text(page, encoding="utf-8")


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if len(sys.argv) != 2 or sys.argv[1].startswith("-"):
        print(__doc__)
        return 2
    run = json.loads(Path(sys.argv[1]).read_text(encoding="utf-8"))
    targets = read_targets((ROOT / "bench/TARGETS").read_text(encoding="utf-8"))
    page, charts, silent = build(run, targets)
    write(page, charts, ROOT / "docs")
    print(f"docs/PERFORMANCE.md and {len(charts)} charts written")
    for name in silent:
        print(f"bench/TARGETS gives no reason for missing {name}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
