#!/usr/bin/env python3
"""Checks that includes in comps point down the rows of the house (docs/ARCHITECTURE.md), never up.

A drawing call falls through rows, from the virtual entry to the pixel, and never climbs back. Every file is given
its row in the table below; a file without a row is an error, so that newcomers are placed deliberately. Inside one
row files may include each other as long as no circle arises.

  check_layers.py              check comps beside this script
  check_layers.py --self-test  prove that each kind of mistake is found
"""

import re
import sys
from pathlib import Path

from self_test import self_test_cases

# From the top down. A file may include its own row and everything below.
ROWS = [
    "UMBRELLA",
    "ENTRY",
    "WORKERS",
    "WALKS",
    "SPANS",
    "PIXELS",
    "KANVO_LIBRARY",  # GROUND is these three, in this order
    "TRAK",
    "TOV",
]

# Stems of comps/Kanvo/code. Several files share a stem: Kanvo_BitmapARGB32_Blit.cpp has a line of its own.
STEMS = {
    "UMBRELLA": "Kanvo",
    "ENTRY": """
        Kanvo_BitmapARGB32 Kanvo_BitmapARGB32_Blit Kanvo_BitmapARGB32_Stretch Kanvo_BitmapARGB32_Rot
        Kanvo_BitmapARGB32_Draw Kanvo_BitmapARGB32_Entry""",
    "WORKERS": """
        Kanvo_Blit Kanvo_RLECompressedBlits Kanvo_StretchBlit Kanvo_RotBlit
        Kanvo_Linedraw Kanvo_Dotdraw Kanvo_Polydraw Kanvo_PolydrawAA Kanvo_Print""",
    "WALKS": """
        Kanvo_BlitScan Kanvo_StretchScan Kanvo_RotScan Kanvo_Sampler Kanvo_SampleStrips Kanvo_Linedraw_Octant
        Kanvo_Thinline Kanvo_Wideline Kanvo_Rasterline Kanvo_PolyScan""",
    "SPANS": """
        Kanvo_Spandraw Kanvo_SpandrawTex
        Kanvo_SpanRender Kanvo_SpanRender_AA Kanvo_SpanRender_HQ_AA
        Kanvo_HSpanRender Kanvo_HSpanRender_AA Kanvo_HSpanRender_HQ_AA
        Kanvo_VSpanRender Kanvo_VSpanRender_AA Kanvo_VSpanRender_HQ_AA""",
    "PIXELS": """
        Kanvo_PixelARGB32_Access Kanvo_BitmapRGB32 Kanvo_BitmapRGB565 Kanvo_BitmapA8
        Kanvo_PixelAddress Kanvo_PixelAndMap Kanvo_ColorMath Kanvo_PrecompiledImageInfo""",
}

# Stems of comps/Kanvo/code/Kanvo_NEON: scaled rectangles lie beside the workers, whole ones beside the spans, single
# rows beside the pixels, and with them the template that each instruction set's rows are put together by.
NEON_STEMS = {
    "WORKERS": "neonloops_stretch",
    "SPANS": "neonloops",
    "PIXELS": """
        rows rows_reference rows_neon rows_avx2 neonloops_rects
        scaled_rows scaled_rows_reference scaled_rows_avx2 scaled_rows_neon""",
}

# Folders whose files all lie in one row.
FOLDERS = {
    "comps/Kanvo/code/Kanvo_Library": "KANVO_LIBRARY",
    "comps/Trak/code": "TRAK",
    "comps/Tov/code": "TOV",
}

# Includes that point up all the same: (file, included stem) and why that is right.
EXCEPTIONS = {
    ("comps/Kanvo/code/Kanvo_Library/*", "Kanvo_ColorMath"):
        "a leaf of pure arithmetic that includes nothing above Tov; colours are computed in one place only",
    ("comps/Kanvo/code/Kanvo_Library/*", "Kanvo_PrecompiledImageInfo"):
        "a stored form, and the decoder of its tokens: the layout that both the check and the blitters read",
}

INCLUDE = re.compile(r'^[ \t]*#[ \t]*include[ \t]*(?:"([^"]+)"|<([^>]+)>)', re.MULTILINE)
SUFFIXES = {".h", ".hpp", ".inl", ".c", ".cpp"}


def row_of(path):
    """The row of a file given by its path below the root, or None."""
    folder, stem = str(path.parent), path.stem
    if folder in FOLDERS:
        return FOLDERS[folder]
    table = {"comps/Kanvo/code": STEMS, "comps/Kanvo/code/Kanvo_NEON": NEON_STEMS}.get(folder, {})
    for row, stems in table.items():
        if stem in stems.split():
            return row
    return None


def is_exception(path, stem):
    return (str(path), stem) in EXCEPTIONS or (f"{path.parent}/*", stem) in EXCEPTIONS


def find_circle(graph):
    """One circle of includes as a list of paths, or None."""
    done = set()

    def walk(node, trail):
        if node in trail:
            return trail[trail.index(node):] + [node]
        if node in done:
            return None
        for following in graph[node]:
            circle = walk(following, trail + [node])
            if circle:
                return circle
        done.add(node)
        return None

    for node in sorted(graph):
        circle = walk(node, [])
        if circle:
            return circle
    return None


def check(root):
    """All mistakes below root/comps as lines of text, and the number of files looked at."""
    mistakes = []
    files = sorted(p.relative_to(root) for p in (root / "comps").rglob("*") if p.suffix in SUFFIXES)
    by_name = {}
    for path in files:
        if path.name in by_name:
            mistakes.append(f"{path}: same file name as {by_name[path.name]}, but includes go by bare name")
        by_name[path.name] = path
        if row_of(path) is None:
            mistakes.append(f"{path}: has no row; give it one in tools/check_layers.py")

    graph = {path: [] for path in files}
    for path in files:
        text = (root / path).read_text(encoding="utf-8")
        for match in INCLUDE.finditer(text):
            name = match.group(1) or match.group(2)
            line = text.count("\n", 0, match.start()) + 1
            included = by_name.get(name)
            if included is None:
                if match.group(1):
                    mistakes.append(f'{path}:{line}: "{name}" is no file of comps (ours go by bare name in quotes)')
                continue
            if match.group(2):
                mistakes.append(f'{path}:{line}: <{name}> is ours and goes in quotes')
            graph[path].append(included)
            above, below = row_of(path), row_of(included)
            if above is None or below is None:
                continue
            if ROWS.index(below) < ROWS.index(above) and not is_exception(path, included.stem):
                mistakes.append(f"{path}:{line}: {above} includes {name} of {below}: points upwards")

    circle = find_circle(graph)
    if circle:
        mistakes.append("circle of includes: " + " -> ".join(str(p) for p in circle))
    return mistakes, len(files)


def self_test():
    """Draws up small source trees, each with one mistake, and expects it to be named."""
    flat, library = "comps/Kanvo/code/", "comps/Kanvo/code/Kanvo_Library/"
    good = {
        flat + "Kanvo.h": '#include "Kanvo_BitmapARGB32.h"\n#include <cstdint>\n',
        flat + "Kanvo_BitmapARGB32.h": '#include "Kanvo_Bitmap.h"\n#include "Kanvo_PixelARGB32_Access.h"\n',
        flat + "Kanvo_PixelARGB32_Access.h": '#include "Kanvo_ColorMath.h"\n',
        flat + "Kanvo_ColorMath.h": '#include "Tov_Types.h"\n',
        flat + "Kanvo_NEON/neonloops.cpp": '#include "rows.h"\n',
        flat + "Kanvo_NEON/rows.h": '#include "Kanvo_ColorMath.h"\n',
        library + "Kanvo_Bitmap.h": '#include "Trak_Assert.h"\n#include "Kanvo_ColorMath.h"\n',
        "comps/Trak/code/Trak_Assert.h": '#include "Tov_Types.h"\n',
        "comps/Tov/code/Tov_Types.h": "",
    }
    cases = [
        ("a sound tree", {}, None),
        ("ground includes entry", {library + "Kanvo_Bitmap.h": '#include "Kanvo_BitmapARGB32.h"\n'}, "points upwards"),
        ("rows include loops", {flat + "Kanvo_NEON/rows.h": '  #  include "neonloops.h"\n',
                                flat + "Kanvo_NEON/neonloops.h": ""}, "points upwards"),
        ("pixels include a walk", {flat + "Kanvo_ColorMath.h": '#include "Kanvo_BlitScan.h"\n',
                                   flat + "Kanvo_BlitScan.h": ""}, "points upwards"),
        ("tov includes trak", {"comps/Tov/code/Tov_Types.h": '#include "Trak_Assert.h"\n'}, "points upwards"),
        ("entry includes the umbrella", {flat + "Kanvo_BitmapARGB32.h": '#include "Kanvo.h"\n'}, "points upwards"),
        ("an exception is for its target alone",
         {library + "Kanvo_Bitmap.h": '#include "Kanvo_PixelARGB32_Access.h"\n'}, "points upwards"),
        ("an unknown file", {flat + "Kanvo_Newcomer.h": ""}, "has no row"),
        ("a file in an unknown folder", {"comps/Other/code/Tov_Types2.h": ""}, "has no row"),
        ("a circle in one row", {library + "Kanvo_Bitmap.h": '#include "Kanvo_Screen.h"\n',
                                 library + "Kanvo_Screen.h": '#include "Kanvo_Bitmap.h"\n'}, "circle"),
        ("an include by path", {flat + "Kanvo.h": '#include "Kanvo_Library/Kanvo_Bitmap.h"\n'}, "is no file of comps"),
        ("ours in angle brackets", {flat + "Kanvo.h": "#include <Kanvo_Bitmap.h>\n"}, "goes in quotes"),
        ("two files of one name", {flat + "Kanvo_NEON/Kanvo.h": ""}, "same file name"),
    ]
    return self_test_cases("check_layers", check, good, cases)


def main():
    if sys.argv[1:] == ["--self-test"]:
        return self_test()
    if len(sys.argv) > 1:
        print(__doc__)
        return 2
    mistakes, count = check(Path(__file__).resolve().parent.parent)
    if count == 0:
        mistakes.append("comps holds no source file")
    for mistake in mistakes:
        print(mistake)
    return 1 if mistakes else 0


if __name__ == "__main__":
    sys.exit(main())
