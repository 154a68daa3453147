#!/usr/bin/env python3
"""Makes the byte tables of the line and dot code, comps/Kanvo/code/Kanvo_Library/Kanvo_Tables.cpp.

  make_tables.py --write  writes the file
  make_tables.py --check  fails if the file is not what this program makes (part of ./dev lint)

The numbers are shipped, not the formulas: erf and pow differ in their last bits between C libraries.
"""

import math
import sys
from pathlib import Path

TARGET = Path(__file__).resolve().parent.parent / "comps/Kanvo/code/Kanvo_Library/Kanvo_Tables.cpp"


def rounded(value):
    return int(math.floor(value + 0.5))


def line_filter():
    """A line one pixel wide, box-filtered, convolved with a Gauss of sigma 1/2, sampled every 1/32 pixel."""
    scale = 0.5 * math.sqrt(2.0)

    def profile(distance):
        return (math.erf((distance + 0.5) / scale) - math.erf((distance - 0.5) / scale)) / 2.0

    exact = [255.0 * profile(i / 32.0) for i in range(65)]
    table = [rounded(value) for value in exact]
    # The four taps of phase f, which are also those of phase 32 - f, must sum to one pixel: where rounding each by itself
    # misses 255, the entries whose fractions are largest are rounded up and the others down.
    for phase in range(1, 16):
        taps = [phase, 32 - phase, phase + 32, 64 - phase]
        for i in taps:
            table[i] = int(exact[i])
        by_fraction = sorted(taps, key=lambda i: (int(exact[i]) - exact[i], i))
        for i in by_fraction[:255 - sum(table[i] for i in taps)]:
            table[i] += 1
    table[64] = 0
    table[0] = 255 - 2 * table[32]
    for phase in range(32):  # phase 16 has two pairs of equal taps, so its sum is even
        taps = table[phase + 32] + table[phase] + table[32 - phase] + table[64 - phase]
        assert taps == (256 if phase == 16 else 255), (phase, taps)
    assert all(a >= b for a, b in zip(table, table[1:]))
    return table


def gamma_ramp():
    table = [rounded(255.0 * (i / 255.0) ** (1.0 / 1.4)) for i in range(256)]
    assert table[0] == 0 and table[255] == 255 and all(a <= b for a, b in zip(table, table[1:]))
    return table


def rows(table):
    lines = [", ".join("%3d" % v for v in table[i:i + 16]) for i in range(0, len(table), 16)]
    return ",\n".join("    " + line for line in lines)


def text():
    return "\n".join([
        "// Kanvo_Tables: made by tools/make_tables.py, which explains the numbers. Do not edit.",
        '#include "Kanvo_Tables.h"',
        "",
        "// clang-format off",
        "const Tov_UByte g_Kanvo_ubFilter[65] = {",
        rows(line_filter()),
        "};",
        "",
        "const Tov_UByte g_Kanvo_ubGammaRamp[256] = {",
        rows(gamma_ramp()),
        "};",
        "// clang-format on",
        "",
    ])


def main(arguments):
    if arguments == ["--write"]:
        TARGET.write_text(text(), encoding="ascii")
        return 0
    if arguments == ["--check"]:
        if TARGET.is_file() and TARGET.read_text(encoding="ascii") == text():
            return 0
        print("%s is not what tools/make_tables.py makes" % TARGET.name, file=sys.stderr)
        return 1
    print(__doc__.strip(), file=sys.stderr)
    return 2


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
