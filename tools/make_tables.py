#!/usr/bin/env python3
"""Makes the tables of the line, dot and polygon code, comps/Kanvo/code/Kanvo_Library/Kanvo_Tables.cpp.

  make_tables.py --write  writes the file
  make_tables.py --check  fails if the file is not what this program makes (part of ./dev lint)

The numbers are shipped, not the formulas: erf and pow differ in their last bits between C libraries.
"""

import math
import sys
from fractions import Fraction
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


# What a polygon side covers of a pixel: 65 directions of its normal, spread over 180 degrees, times 32 signed distances of
# the pixel's centre. Normals are scaled so that |n.x| + |n.y| = 1: then a side touches a pixel up to distance 1/2, whatever
# its direction, and one step of the index is 1/24 of a pixel for all. All of it is computed in fractions, exactly.
DIRECTIONS = 65
STEPS = 32
STEPS_PER_PIXEL = 24

# One sub-sample per row j of thirty, at this column of thirty: a pattern found by annealing on random triangles.
SAMPLES = [8, 23, 15, 28, 2, 19, 6, 12, 26, 9, 22, 3, 14, 20, 27, 7, 0, 13, 25, 17, 11, 4, 24, 18, 10, 1, 21, 16, 29, 5]


def normal(direction):
    y = Fraction(2 * direction, DIRECTIONS - 1) - 1
    return 1 - abs(y), y


def edge_area(direction, step):
    """Area of the pixel to the right of a side: the integral of a trapezium, normalised to the pixel."""
    x, y = normal(direction)
    large, small = max(x, abs(y)), min(x, abs(y))
    s = Fraction(step if step < STEPS // 2 else step - STEPS, STEPS_PER_PIXEL) + Fraction(1, 2)
    if s <= 0:
        return Fraction(0)
    if s >= 1:
        return Fraction(1)
    if s <= small:
        return s * s / (2 * large * small)
    if s <= large:
        return (s - small / 2) / large
    return 1 - (1 - s) * (1 - s) / (2 * large * small)


def edge_areas():
    """Rounded; index -i is the complement of i, so that two polygons at a shared side add up to 255."""
    table = []
    for k in range(DIRECTIONS):
        right = [math.floor(255 * edge_area(k, i) + Fraction(1, 2)) for i in range(STEPS // 2)]
        table += right + [0] + [255 - right[STEPS - i] for i in range(STEPS // 2 + 1, STEPS)]
    for index, value in enumerate(table):
        assert abs(value - 255 * edge_area(index // STEPS, index % STEPS)) <= Fraction(1, 2), index
    return table


def edge_masks():
    """As many sub-samples as the area asks for, those farthest to the right of the side first."""
    assert sorted(SAMPLES) == list(range(30))
    table = []
    for k in range(DIRECTIONS):
        x, y = normal(k)
        ranked = sorted(range(30), key=lambda j: (-(x * (2 * SAMPLES[j] + 1) + y * (2 * j + 1)), j))
        for i in range(STEPS):
            count = math.floor(30 * edge_area(k, i) + Fraction(1, 2))
            table.append(sum(1 << j for j in ranked[:count]))
    assert all(mask < 1 << 30 for mask in table)
    return table


def pop_lookup():
    return [(255 * min(n, 30) * 2 + 30) // 60 for n in range(33)]


def rows(table, form="%3d", per_row=16):
    lines = [", ".join(form % v for v in table[i:i + per_row]) for i in range(0, len(table), per_row)]
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
        "",
        "const Tov_UInt g_auiEdgemasks[KANVO_EDGE_DIRECTIONS * KANVO_EDGE_STEPS] = {",
        rows(edge_masks(), "0x%08X", 8),
        "};",
        "",
        "const Tov_UByte g_aucEdgeArea[KANVO_EDGE_DIRECTIONS * KANVO_EDGE_STEPS] = {",
        rows(edge_areas()),
        "};",
        "",
        "const Tov_UByte g_aucPoplookup[33] = {",
        rows(pop_lookup()),
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
