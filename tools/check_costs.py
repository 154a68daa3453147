#!/usr/bin/env python3
"""Checks that drawing costs no more instructions than the table bench/COSTS says.

  check_costs.py PROGRAM                       counts with PROGRAM, which is kanvo-cost, and compares with the table
  check_costs.py --write [--note WHY] PROGRAM  counts and writes the table
  check_costs.py --self-test                   proves that each kind of difference is found

An operation that costs more than 3 % more fails. Where that is right, say why: --write refuses it without --note, and
the note then stands beside the figure. One that costs more than 3 % less fails too, until --write has put the lower
figure into the table: only so will its loss be noticed.

Counting takes valgrind. Counts depend on the compiler, its options and the C library, which the table names: exit code
77, "skipped", where they are others, or where there is no valgrind.
"""

import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

TABLE = Path(__file__).resolve().parent.parent / "bench/COSTS"
TOLERANCE = 0.03 + 1e-9
SKIPPED = 77

HEADER = """\
# Instructions that an operation costs: per pixel, for lines, polygons and dots per shape, the call included. Counted by
# valgrind, compared by every test run and written by tools/check_costs.py (./dev costs --write). A figure that rose by
# more than 3 % has a note behind it that says why.
#
# The level comes first: portable is the same on every machine; plain is the same with OPTIMIZED_BLIT off; others are
# compared where the machine has them. Then the case of kanvo-bench.
"""

ROW = re.compile(r"^(\S+)\s+([0-9.]+)\s+(pixel|shape)(?:\s+#\s*(.*))?$")

# The C library chooses its memset and memcpy by the processor; without these instructions it is the same choice
# everywhere.
ENVIRONMENT = {"GLIBC_TUNABLES": "glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX2,-AVX,-ERMS,-FSRM,-SSSE3,"
                                 "-AVX_Fast_Unaligned_Load"}


class Row:
    def __init__(self, cost, unit, note=""):
        self.cost, self.unit, self.note = cost, unit, note


def parse_table(text):
    """The build line, and rows by name. Raises ValueError for a line that is neither."""
    build, rows = "", {}
    for number, line in enumerate(text.splitlines(), 1):
        if not line.strip() or line.startswith("#"):
            continue
        if line.startswith("build "):
            build = line[len("build "):].strip()
            continue
        match = ROW.match(line)
        if not match or match.group(1) in rows:
            raise ValueError(f"line {number} is not understood: {line}")
        rows[match.group(1)] = Row(float(match.group(2)), match.group(3), match.group(4) or "")
    return build, rows


def format_table(build, rows):
    lines = [HEADER, f"build {build}", ""]
    level = None
    for name, row in rows.items():
        if level not in (None, name.split("/")[0]):
            lines.append("")
        level = name.split("/")[0]
        figure = f"{row.cost:.3f}" if row.unit == "pixel" else f"{row.cost:.1f}"
        lines.append(f"{name:<42} {figure:>12} {row.unit}" + (f"  # {row.note}" if row.note else ""))
    return "\n".join(lines) + "\n"


def parse_counts(printed, dumps):
    """The build line and rows of what the program printed and the texts of callgrind's files."""
    counts = {}
    for text in dumps:
        name = re.search(r"^desc: Trigger: Client Request: (\S+)$", text, re.MULTILINE)
        total = re.search(r"^summary: (\d+)", text, re.MULTILINE)
        if name and total:
            counts[name.group(1)] = int(total.group(1))
    build, rows = "", {}
    for line in printed.splitlines():
        if line.startswith("build "):
            build = line[len("build "):].strip()
        match = re.match(r"^cost (\S+) (\d+) (pixel|shape)$", line)
        if match:
            if match.group(1) not in counts:
                raise ValueError(f"nothing was counted for {match.group(1)}")
            rows[match.group(1)] = Row(counts[match.group(1)] / int(match.group(2)), match.group(3))
    return build, rows


def count(program):
    with tempfile.TemporaryDirectory() as folder:
        done = subprocess.run(
            ["valgrind", "--quiet", "--tool=callgrind", "--instr-atstart=no", "--collect-atstart=no",
             f"--callgrind-out-file={folder}/out", program],
            env={**os.environ, **ENVIRONMENT}, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)
        if done.returncode != 0:
            raise ValueError(f"{program} under valgrind failed:\n{done.stdout}{done.stderr}")
        return parse_counts(done.stdout, [p.read_text(encoding="utf-8") for p in sorted(Path(folder).iterdir())])


def level_of(name):
    return name.split("/")[0]


def change(before, now, slack):
    """+0.05 for 5 % more; 0 for what rounding makes of equal counts, which is at most slack."""
    if abs(now - before) <= slack:
        return 0
    return now / before - 1 if before else 1


def compare(table, counted, tolerance=TOLERANCE, slack=0):
    """What is wrong, as lines of text. Levels that this machine does not have are not missed."""
    levels = {level_of(name) for name in counted}
    lines = []
    for name, row in counted.items():
        if name not in table:
            lines.append(f"{name}: not in the table; write it")
            continue
        by = change(table[name].cost, row.cost, slack)
        figures = f"{table[name].cost:g} -> {row.cost:.4g} instructions per {row.unit}, {100 * by:+.1f} %"
        if by > tolerance:
            lines.append(f"{name}: costs more: {figures}")
        elif by < -tolerance:
            lines.append(f"{name}: costs less, write the table to keep that: {figures}")
    lines += [f"{name}: in the table, but no longer counted; write it"
              for name in table if level_of(name) in levels and name not in counted]
    return lines


def update(table, counted, note, tolerance=TOLERANCE, slack=0):
    """The new rows, and the names of those that rose without a note. Rows of levels not counted here stay."""
    levels = {level_of(name) for name in counted}
    rows, risen = {}, []
    for name, row in counted.items():
        before = table.get(name)
        kept = before.note if before else ""
        if before:
            by = change(before.cost, row.cost, slack)
            if by > tolerance:
                kept = f"was {before.cost:g}: {note}"
                if not note:
                    risen.append(f"{name}: {before.cost:g} -> {row.cost:.4g}, {100 * by:+.1f} %")
            elif by < -tolerance:
                kept = ""
        rows[name] = Row(row.cost, row.unit, kept)
    for name, row in table.items():
        if level_of(name) not in levels:
            rows[name] = row
    return rows, risen


def self_test():
    def table_of(**costs):
        return {name.replace("__", "/"): Row(cost, "pixel") for name, cost in costs.items()}

    failures = 0

    def expect(title, is_right, got):
        nonlocal failures
        if not is_right:
            failures += 1
            print(f"self-test: {title}: got {got}")

    both = table_of(portable__a=2.0, portable__b=100.0, avx2__a=1.0)
    cases = [
        ("equal counts", both, table_of(portable__a=2.0, portable__b=100.0, avx2__a=1.0), []),
        ("3 % either way", both, table_of(portable__a=2.06, portable__b=97.0, avx2__a=1.0), []),
        ("dearer", both, table_of(portable__a=2.07, portable__b=100.0, avx2__a=1.0), ["portable/a: costs more"]),
        ("cheaper", both, table_of(portable__a=2.0, portable__b=96.9, avx2__a=1.0), ["portable/b: costs less"]),
        ("a level that the machine lacks", both, table_of(portable__a=2.0, portable__b=100.0), []),
        ("not in the table", both, table_of(portable__a=2.0, portable__b=100.0, avx2__a=1.0, avx2__c=1.0),
         ["avx2/c: not in the table"]),
        ("no longer counted", both, table_of(portable__a=2.0, avx2__a=1.0), ["portable/b: in the table, but"]),
        ("from nothing to something", table_of(portable__a=0.0), table_of(portable__a=1.0), ["portable/a: costs more"]),
    ]
    expect("rounding is no change", compare(table_of(portable__a=0.7), table_of(portable__a=0.8), slack=0.15) == [], "some")
    for title, table, counted, expected in cases:
        lines = compare(table, counted)
        expect(title, len(lines) == len(expected) and all(l.startswith(e) for l, e in zip(lines, expected)), lines)

    rows, risen = update(both, table_of(portable__a=3.0, portable__b=50.0), "")
    expect("a rise without note is refused", len(risen) == 1 and risen[0].startswith("portable/a"), risen)
    expect("levels not counted stay", rows["avx2/a"].cost == 1.0, rows)
    rows, risen = update(both, table_of(portable__a=3.0, portable__b=50.0), "exact now")
    text = format_table("gcc 1", rows)
    again = parse_table(text)
    expect("a rise with note is written", rows["portable/a"].note == "was 2: exact now", rows["portable/a"].note)
    expect("nothing gets lost on the way through the file",
           again[0] == "gcc 1" and {n: (r.cost, r.unit, r.note) for n, r in again[1].items()} ==
           {n: (r.cost, r.unit, r.note) for n, r in rows.items()}, text)
    lines = compare(again[1], table_of(portable__a=3.0, portable__b=50.0))
    expect("what was written compares equal", lines == [], lines)
    rows, _ = update(again[1], table_of(portable__a=3.05, portable__b=50.0), "")
    expect("a note stays while the figure does", rows["portable/a"].note == "was 2: exact now", rows["portable/a"].note)
    rows, _ = update(again[1], table_of(portable__a=1.0, portable__b=50.0), "")
    expect("a note goes when the figure falls", rows["portable/a"].note == "", rows["portable/a"].note)

    printed = "build gcc 1\ncost portable/a 4 pixel\ncost portable/b 2 shape\n"
    dump = "version: 1\ndesc: Trigger: Client Request: {}\nsummary: {}\n".format
    build, rows = parse_counts(printed, [dump("portable/a", 10), "no dump", dump("portable/b", 7)])
    expect("counts are divided", build == "gcc 1" and rows["portable/a"].cost == 2.5 and
           (rows["portable/b"].cost, rows["portable/b"].unit) == (3.5, "shape"), rows)
    for title, action in (("a count is missing", lambda: parse_counts(printed, [dump("portable/a", 10)])),
                          ("a line is garbled", lambda: parse_table("portable/a many pixel\n")),
                          ("a name comes twice", lambda: parse_table("a/b 1 pixel\na/b 1 pixel\n"))):
        try:
            action()
            expect(title, False, "no complaint")
        except ValueError:
            pass
    print("check_costs self-test: " + (f"{failures} wrong" if failures else "all right"))
    return 1 if failures else 0


def main():
    arguments = sys.argv[1:]
    if arguments == ["--self-test"]:
        return self_test()
    write, note = "--write" in arguments, ""
    if write:
        arguments.remove("--write")
    if "--note" in arguments[:-1]:
        at = arguments.index("--note")
        note = arguments[at + 1].replace("\n", " ")
        del arguments[at:at + 2]
    if len(arguments) != 1 or arguments[0].startswith("-") or (note and not write):
        print(__doc__)
        return 2
    if shutil.which("valgrind") is None:
        print("skipped: valgrind was not found (Debian package valgrind)")
        return SKIPPED

    try:
        build, table = parse_table(TABLE.read_text(encoding="utf-8") if TABLE.exists() else "")
        counted_build, counted = count(arguments[0])
        if not counted:
            raise ValueError("nothing was counted")
    except ValueError as error:
        print(error)
        return 1

    if write:
        if build != counted_build:
            table = {}  # figures of another compiler say nothing about these
        rows, risen = update(table, counted, note)
        if risen:
            print("Cost more than before; --note \"why that is right\" writes them:", *risen, sep="\n  ")
            return 1
        TABLE.write_text(format_table(counted_build, rows), encoding="utf-8")
        print(f"{len(counted)} costs written to {TABLE}")
        return 0

    if build != counted_build:
        print(f"skipped: the table is of another build\n  table: {build}\n  this:  {counted_build}")
        return SKIPPED
    lines = compare(table, counted)
    for line in lines:
        print(line)
    print(f"{len(counted)} costs counted, {len(lines)} not as bench/COSTS says")
    return 1 if lines else 0


if __name__ == "__main__":
    sys.exit(main())
