#!/usr/bin/env python3
"""Shows that the NEON bodies are what drew: looks at the instructions that an emulated program came to.

  check_neon.py COMMAND ...     COMMAND runs a program in QEMU: qemu-arm, qemu-aarch64 or board/qemu-a9

Every row function must have executed NEON instructions on pixels inside its body in rows_neon.cpp, and every loop over rows must
have been entered in the shape that is made of these bodies. That a function was selected, or was compiled for NEON, would not
say so. COMMAND is meant to be the tests of the rows, which call all of them (test_levels); its own failure is one, too.

Last line: "N passed, M failed", counted in functions. Exit status 1 where any failed.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

FOLDER = Path(__file__).resolve().parent.parent / "comps/Kanvo/code/Kanvo_NEON"

# Only NEON loads and stores several elements at once, and only NEON computes with bytes and half words side by side: in the
# spelling of 32 and of 64 bits, where whole registers are called q.
ON_PIXELS = re.compile(r"\bv(ld|st)[1-4]\.|\bv\w+\.[iusp]?(8|16)\b|\bv\d+\.(8b|16b|4h|8h)\b|\b(ldr|ldp|ldur|str|stp|stur)\s+q\d")


def not_neon():
    """Row functions whose NEON body is the portable one, on purpose: CopyBytes, and those that call other row functions."""
    compound = re.search(r"^#define KANVO_COMPOUND_ROW_LIST\(ROW\)(.*)", (FOLDER / "rows.h").read_text(), re.M).group(1)
    return {"CopyBytes", *re.findall(r"ROW\((\w+)\)", compound)}


def names(header, of):
    """The static functions of a struct."""
    text = (FOLDER / header).read_text()
    begin = re.search(rf"^struct {of}\n", text, re.M).end()
    return set(re.findall(r"^    static (?:void|Tov_Bool) (\w+)\(", text[begin:text.index("\n};", begin)], re.M))


def executed(command):
    """Name of the function and text of every instruction that the program came to, once each."""
    with tempfile.TemporaryDirectory() as scratch:
        trace = f"{scratch}/trace"
        environment = dict(os.environ, QEMU_LOG="in_asm", QEMU_LOG_FILENAME=trace,
                           KANVO_QEMU_OPTIONS=f"-d in_asm -D {trace}")
        done = subprocess.run(command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, env=environment)
        if done.returncode != 0:
            sys.exit(f"{done.stdout[-2000:]}\ncheck_neon.py: {command[0]} ended with {done.returncode}")
        found, inside = [], False
        for line in Path(trace).read_text(errors="replace").splitlines():
            if line.startswith("IN: "):
                symbol = line[4:]
                inside = "RowsNEON" in symbol
            elif inside and line.startswith("0x"):
                found.append((symbol, line.partition(":")[2]))
    symbols = sorted({symbol for symbol, _ in found})
    plain = subprocess.run(["c++filt"], input="\n".join(symbols), check=True, capture_output=True, text=True).stdout
    name = dict(zip(symbols, plain.splitlines()))
    return [(name[symbol], text) for symbol, text in found]


def main():
    if len(sys.argv) < 2:
        sys.exit(__doc__)
    trace = executed(sys.argv[1:])
    rows = names("rows.h", "Kanvo_RowsReference") - not_neon()
    loops = names("neonloops_rects.h", "Kanvo_LoopRects")
    missing = [f"row function {row}: no NEON instruction of it was executed" for row in sorted(rows)
               if not any(re.search(rf"RowsNEON::{row}\(", name) and ON_PIXELS.search(text) for name, text in trace)]
    missing += [f"loop {loop}: was not entered with NEON rows" for loop in sorted(loops)
                if not any(re.search(rf"LoopRects<.*RowsNEON>::{loop}\(", name) for name, _ in trace)]
    print("\n".join([*missing, f"{sum(1 for _, text in trace if ON_PIXELS.search(text))} NEON instructions on pixels were executed"]))
    total = len(rows) + len(loops)
    print(f"{total - len(missing)} passed, {len(missing)} failed")
    return 1 if missing or not rows or not loops else 0


if __name__ == "__main__":
    sys.exit(main())
