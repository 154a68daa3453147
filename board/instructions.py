#!/usr/bin/env python3
"""Compares the instructions that drawing takes on the board with board/INSTRUCTIONS.

  instructions.py BOARD_INSTRUCTIONS            fails where anything takes more than 2 % more than the list says
  instructions.py BOARD_INSTRUCTIONS --write    writes the list, after a change that was meant to cost or to save

QEMU makes every instruction one nanosecond, so that each run counts the same. What has become more than 2 % cheaper is named,
but is no failure. Last line: "N passed, M failed". Exit status 1 where anything failed.
"""

import os
import subprocess
import sys
from pathlib import Path

HERE = Path(__file__).resolve().parent
LIST = HERE / "INSTRUCTIONS"
LIMIT = 0.02
ROUNDING = 0.15  # counts are tenths, in steps of ten instructions over all units


def entries(text):
    """Name: (unit, portable, optimised)."""
    lines = [line.split() for line in text.splitlines() if line and not line.startswith("#")]
    return {name: (unit, float(portable), float(optimised)) for name, unit, portable, optimised in lines}


def main():
    if len(sys.argv) not in (2, 3) or sys.argv[2:] not in ([], ["--write"]):
        sys.exit(__doc__)
    environment = dict(os.environ, KANVO_QEMU_OPTIONS="-icount shift=0,sleep=off")
    counted = subprocess.run([str(HERE / "qemu-a9"), sys.argv[1]], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                             env=environment)
    if counted.returncode != 0:
        sys.exit(f"{counted.stderr}\ninstructions.py: {sys.argv[1]} ended with {counted.returncode}")
    now = entries(counted.stdout)
    if len(sys.argv) == 3:
        width = max(map(len, now))
        table = "".join(f"{name:<{width}}  {unit:<9}  {portable:>9.1f}  {optimised:>9.1f}\n"
                        for name, (unit, portable, optimised) in now.items())
        LIST.write_text("# instructions per unit on the bare Cortex-A9: what, unit, portable, optimised; written by "
                        "board/instructions.py\n" + table)
        print(f"{len(now)} passed, 0 failed")
        return 0

    before = entries(LIST.read_text())
    failures = [f"{name}: no longer counted" for name in before if name not in now]
    for name, (unit, *counts) in now.items():
        if name not in before:
            failures.append(f"{name}: not in {LIST}")
            continue
        for path, old, new in zip(("portable", "optimised"), before[name][1:], counts):
            told = f"{name}, {path}: {new:.1f} instructions per {unit}, {old:.1f} in the list"
            if new > old * (1 + LIMIT) + ROUNDING:
                failures.append(f"{told} ({100 * (new / old - 1) if old else 100:+.1f} %)")
            elif new < old * (1 - LIMIT) - ROUNDING:
                print(f"{told}: cheaper")
    print("\n".join([*failures, f"{max(len(now) - len(failures), 0)} passed, {len(failures)} failed"]))
    return 1 if failures or not now else 0


if __name__ == "__main__":
    sys.exit(main())
