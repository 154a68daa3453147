#!/usr/bin/env python3
"""Compares the instructions that drawing takes on the board with board/INSTRUCTIONS.

  instructions.py BOARD_INSTRUCTIONS                        fails where anything takes 2 % more or less than the list says
  instructions.py BOARD_INSTRUCTIONS --write [--note WHY]   writes the list; what has risen needs the note, which is kept

QEMU makes every instruction one nanosecond, so that each run counts the same. Last line: "N passed, M failed". Exit status
1 where anything failed.
"""

import os
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tools"))
from check_costs import Row, compare, update  # noqa: E402  pylint: disable=wrong-import-position

LIST = HERE / "INSTRUCTIONS"
LIMITS = {"tolerance": 0.02, "slack": 0.15}  # counts are tenths, in steps of ten instructions over all units
PATHS = ("portable", "optimised")
HEADER = "# instructions per unit on the bare Cortex-A9: what, unit, portable, optimised; written by board/instructions.py\n"


def parse(text):
    """A row for each path: "portable/Fill"."""
    rows = {}
    for line in text.splitlines():
        figures, _, note = line.partition("#")
        if figures.strip():
            name, unit, *costs = figures.split()
            rows.update({f"{path}/{name}": Row(float(cost), unit, note.strip()) for path, cost in zip(PATHS, costs)})
    return rows


def table(rows):
    names = [name.partition("/")[2] for name in rows if name.startswith(PATHS[0])]
    width = max(map(len, names))
    lines = []
    for name in names:
        both = [rows[f"{path}/{name}"] for path in PATHS]
        note = next((f"  # {row.note}" for row in both if row.note), "")
        lines.append(f"{name:<{width}}  {both[0].unit:<9}  " + "  ".join(f"{row.cost:>9.1f}" for row in both) + note)
    return HEADER + "\n".join(lines) + "\n"


def main():
    arguments = sys.argv[1:]
    write = arguments[1:2] == ["--write"]
    note = arguments[3] if write and len(arguments) == 4 and arguments[2] == "--note" else ""
    if len(arguments) != 1 + write + 2 * bool(note):
        sys.exit(__doc__)
    environment = dict(os.environ, KANVO_QEMU_OPTIONS="-icount shift=0,sleep=off")
    counted = subprocess.run([str(HERE / "qemu-a9"), arguments[0]], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                             env=environment)
    if counted.returncode != 0:
        sys.exit(f"{counted.stderr}\ninstructions.py: {arguments[0]} ended with {counted.returncode}")
    now, before = parse(counted.stdout), parse(LIST.read_text())
    if write:
        rows, risen = update(before, now, note, **LIMITS)
        if risen:
            sys.exit("\n  ".join(["Cost more than before; --note \"why that is right\" writes them:", *risen]))
        LIST.write_text(table(rows))
        print(f"{len(rows)} passed, 0 failed")
        return 0
    lines = compare(before, now, **LIMITS)
    print("\n".join([*lines, f"{max(len(now) - len(lines), 0)} passed, {len(lines)} failed"]))
    return 1 if lines or not now else 0


if __name__ == "__main__":
    sys.exit(main())
