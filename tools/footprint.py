#!/usr/bin/env python3
"""What the library takes on a Cortex-A9: flash, RAM, stack, and what it needs of the C library. Writes docs/FOOTPRINT.md.

  footprint.py BUILDDIR           builds the library for the bare target there, checks the limits, and that docs/FOOTPRINT.md has
                                  the figures of this build: all of them, for its compiler gives the same ones everywhere
  footprint.py BUILDDIR --write   checks the limits and writes docs/FOOTPRINT.md

Limits: no virtual operation of the ARGB32 bitmap takes more than STACK_LIMIT bytes of stack, nothing in them is recursive, no
frame has a size that is known only at run time, and no file asks for a symbol that is not on its list below. An indirect call
counts as the deepest function it can lead to: of row functions and loops over rows all levels, of a virtual operation every
class of the library, of another function pointer every function of the same file whose address is taken.

Another version of the compiler than the page's has other figures: then that is said, and only the limits are checked.

Last line: "N passed, M failed", counted in checks. Exit status 1 where a limit is exceeded or the page is of another build.
"""

import argparse
import difflib
import os
import re
import subprocess
import sys
from collections import defaultdict
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent
PAGE = ROOT / "docs/FOOTPRINT.md"
TOOL = "arm-none-eabi-"
STACK_LIMIT = 2048
LIBRARY_CALL = 64  # what a function of the C library that drawing may call is taken to need at most

# Parts of the library by the beginnings of the names of their files, the longest fitting one counts.
PARTS = {
    "Bitmap, clear, fill, colours": ["Kanvo_BitmapARGB32", "Kanvo_Bitmap", "Kanvo_Geometry", "Kanvo_RenderState"],
    "Blits: plain, colour, map": ["Kanvo_BitmapARGB32_Blit"],
    "Scaled blits": ["Kanvo_BitmapARGB32_Stretch", "Kanvo_StretchBlitParam", "neonloops_stretch"],
    "Rotated blits": ["Kanvo_BitmapARGB32_Rot", "Kanvo_RotBlitParam"],
    "Run-length-encoded images": ["Kanvo_RLECompressedBlits", "Kanvo_BitmapRLE", "Kanvo_ImageCheck"],
    "Lines, dots and their patterns": ["Kanvo_Linedraw", "Kanvo_Pattern", "Kanvo_BitmapARGB32_Draw"],
    "Polygons and textures": ["Kanvo_Poly", "Kanvo_Texture"],
    "Clipping of lines and polygons": ["Kanvo_Clipper"],
    "Primitives": ["Kanvo_Primitive"],
    "Tables of anti-aliasing": ["Kanvo_Tables"],
    "Debug font and text": ["Kanvo_DebugFont", "Kanvo_Print"],
    "Source bitmaps": ["Kanvo_SourceBitmap", "Kanvo_BitmapA8", "Kanvo_BitmapRGB32", "Kanvo_BitmapRGB565"],
    "Rows of pixels: portable": ["rows_reference", "scaled_rows_reference"],
    "Rows of pixels: NEON": ["rows_neon", "scaled_rows_neon"],
    "Choice of a level": ["neonloops"],
    "Library object": ["Kanvo_Object"],
    "Assertions and counters": ["Trak_Assert", "Trak_Counters"],
    "Profiler (linked where it is used)": ["Trak_Profiler"],
}

# What every file may ask for, and the few that may ask for more, with the reason.
FOR_ALL = {"memcpy", "memset", "sqrtf", "floorf", "ceilf"}
FOR_FILES = {
    "Kanvo_Object": ({"malloc", "free"}, "the library object hands out memory, never while something is drawn"),
    "Trak_Assert": ({"vsnprintf", "fprintf", "_impure_ptr"}, "formats the message of a failed assertion; the default handler prints it"),
    "Trak_Profiler": ({"fopen", "fclose", "fprintf", "fwrite", "ferror", "remove", "rename", "snprintf", "strcmp"},
                      "writes traces to files; a program that does not call it does not link it"),
    "neonloops": ({"strcmp", "getenv"}, "compares the names of levels"),
}
COMPILER = re.compile(r"^__aeabi_(?!unwind)\w+$")                      # arithmetic that the processor lacks
CXX = re.compile(r"^(_Zd[la]Pvj?|__cxa_pure_virtual|_ZTVN10__cxxabiv1\w+)$")  # what virtual destructors and pure functions name
CXX_PROFILER = re.compile(r"^(_Zn[wa]jRKSt9nothrow_t|_Zd[la]Pv(RKSt9nothrow_t)?|_ZSt7nothrow|_ZNSt6chrono\w+)$")

# Indirect calls into what the product brings along; its stack comes on top.
PRODUCTS = {"Start": "counters", "Stop": "counters", "Add": "counters", "pfnClock": "clock", "g_pfnHandler": "assertion handler",
            "m_apCallback": "render state callbacks"}


# Calls that go round, but not for ever: functions, how often one chain can meet them, and why.
BOUNDED = [(re.compile(r"HalfPlane::(Put|Close)\("), 4, "an outline goes through the four sides of the clip rectangle")]


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


# ---- building -------------------------------------------------------------------------------------------------------

def build(folder, flags, *options):
    """Objects of the library, by the names of their files."""
    folder.mkdir(parents=True, exist_ok=True)
    log = folder / "build.log"
    configure = ["cmake", "-G", "Ninja", "-S", str(ROOT), "-B", str(folder), "-DCMAKE_BUILD_TYPE=None",
                 f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/bare-a9.cmake", f"-DCMAKE_CXX_FLAGS_NONE={flags}", *options,
                 *(f"-DKANVO_BUILD_{part}=OFF" for part in ("TESTS", "TOOLS", "SCENES", "BOARD", "BENCH", "EXAMPLES"))]
    with open(log, "w") as file:
        for command in configure, ["cmake", "--build", str(folder), "--target", "kanvo", "-j", str(os.cpu_count())]:
            if subprocess.run(command, stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT).returncode != 0:
                sys.exit(f"{log.read_text()[-3000:]}\nfootprint.py: the library did not build, see {log}")
    return {path.name.split(".")[0]: path for path in sorted((folder / "comps").glob("**/*.cpp.obj"))}


def part_of(name):
    fitting = [(len(prefix), part) for part, prefixes in PARTS.items() for prefix in prefixes if name.startswith(prefix)]
    if not fitting:
        sys.exit(f"footprint.py: {name} belongs to no part; put it into PARTS")
    return max(fitting)[1]


# ---- flash and RAM --------------------------------------------------------------------------------------------------

def sizes(objects):
    """Part: [flash, RAM]. What several files have in common, as inline functions do, counts in the first."""
    result, seen = {part: [0, 0] for part in PARTS}, set()
    for name, path in objects.items():
        for line in output(TOOL + "readelf", "-SW", str(path)).splitlines():
            found = re.match(r"\s*\[\s*\d+\]\s+(\S+)\s+(\w+)\s+\w+\s+\w+\s+(\w+)\s+\w+\s+(\w*)\s", line)
            if not found or "A" not in found[4] or found[1].startswith((".ARM.ex", ".rel")):
                continue
            section, kind, size, flags = found[1], found[2], int(found[3], 16), found[4]
            if "G" in flags:
                if section in seen:
                    continue
                seen.add(section)
            if kind != "NOBITS":
                result[part_of(name)][0] += size
            if "W" in flags and not section.startswith((".data.rel.ro", ".init_array")):
                result[part_of(name)][1] += size
    return result


def linked(folder, *options):
    """Flash of the smallest program that draws, with the library as these options make it."""
    build(folder, "-O2", *options)
    program = folder / "smallest.cpp"
    program.write_text("#include <Kanvo.h>\nint main()\n{\n    Kanvo library;\n    Kanvo_Screen screen(&library);\n"
                       "    Kanvo_BitmapARGB32 target(&screen, 480, 272);\n    target.Lock();\n    target.Clear(0xFF000000U);\n}\n")
    headers = [f"-I{path}" for path in sorted((ROOT / "comps").glob("**/")) if "/code" in str(path)]
    output(TOOL + "g++", "-std=c++17", "-O2", "-mcpu=cortex-a9", "-mfpu=neon", "-mfloat-abi=hard", "-marm", "-fno-exceptions",
           "-fno-rtti", "-fno-threadsafe-statics", *headers, str(program), str(folder / "comps/libkanvo.a"),
           "--specs=nosys.specs", "-Wl,--gc-sections", "-o", str(folder / "smallest.elf"))
    text, data = output(TOOL + "size", str(folder / "smallest.elf")).splitlines()[1].split()[:2]
    return int(text) + int(data)


def switches():
    """The CMake options that leave out a feature."""
    return [f"KANVO_WITH_{path.stem.split('_')[1].upper()}" for path in sorted((ROOT / "features").glob("*.cpp"))]


def savings(folder):
    """Switch: what its feature takes of the smallest program; what that takes with all features, and without any."""
    on = [f"-D{switch}=ON" for switch in switches()]
    whole = linked(folder, *on)
    saved = {switch: whole - linked(folder, *on, f"-D{switch}=OFF") for switch in switches()}
    return saved, whole, linked(folder, *(f"-D{switch}=OFF" for switch in switches()))


# ---- what is asked for ----------------------------------------------------------------------------------------------

def undefined(objects):
    """File: symbols that the library itself does not have."""
    listing = {name: output(TOOL + "nm", str(path)).splitlines() for name, path in objects.items()}
    own = {line.split()[-1] for lines in listing.values() for line in lines if line.split()[-2] not in "Uw"}
    return {name: {line.split()[-1] for line in lines if line.split()[-2] == "U"} - own for name, lines in listing.items()}


def check_undefined(asked):
    """Complaints, and (symbol, files that ask for it) of all others."""
    wrong, fine = [], defaultdict(list)
    for name, symbols in asked.items():
        for symbol in sorted(symbols):
            allowed = FOR_ALL | FOR_FILES.get(name, (set(), ""))[0]
            if symbol in allowed or COMPILER.match(symbol) or CXX.match(symbol) or \
                    (name == "Trak_Profiler" and CXX_PROFILER.match(symbol)):
                fine[symbol].append(name)
            else:
                wrong.append(f"{name} asks for {symbol}, which is not on its list")
    return wrong, fine


# ---- stack ----------------------------------------------------------------------------------------------------------

class Graph:
    """Who calls whom, out of the .ci files that gcc's -fcallgraph-info=su writes."""

    def __init__(self, objects):
        self.frame, self.label, self.calls, self.unit = {}, {}, defaultdict(set), {}
        self.dynamic, self.unresolved, self.products = [], [], set()
        self.sources, indirect = {}, []
        taken = {}
        for name, path in objects.items():
            text = path.with_suffix("").with_suffix(".cpp.ci")
            text = text if text.exists() else path.parent / (path.name[:-len(".obj")] + ".ci")
            taken[name] = self.address_taken(path)
            for line in text.read_text().splitlines():
                self.read(line, name, indirect)
        self.methods = defaultdict(set)
        for title, label in self.label.items():
            if label.startswith("virtual ") and (found := re.search(r"::(~?\w+)\(", label)):
                self.methods[found[1]].add(title)
        for caller, name, place in indirect:
            self.resolve(caller, name, place, taken[name])

    def read(self, line, name, indirect):
        if line.startswith("node:"):
            title, label = re.match(r'node: \{ title: "([^"]*)" label: "([^"]*)"', line).groups()
            title = self.plain(title)
            stack = re.search(r"\\n(\d+) bytes \((\w+)", label)
            if stack:
                self.frame[title] = max(self.frame.get(title, 0), int(stack[1]))
                self.unit.setdefault(title, name)
                if stack[2] != "static":
                    self.dynamic.append(label.split("\\n")[0])
            if stack or title not in self.label:
                self.label[title] = label.split("\\n")[0]
        elif line.startswith("edge:"):
            source, target = re.match(r'edge: \{ sourcename: "([^"]*)" targetname: "([^"]*)"', line).groups()
            source, target = self.plain(source), self.plain(target)
            place = re.search(r'label: "([^"]*)"', line)
            if target == "__indirect_call":
                indirect.append((source, name, place[1] if place else ""))
            else:
                self.calls[source].add(target)

    @staticmethod
    def plain(title):
        """Without the file in front, which gcc also writes where a template is instantiated for others."""
        name = title.split(":")[-1]
        return title if "_GLOBAL__N_" in name else name

    @staticmethod
    def address_taken(path):
        """Section: functions that it refers to other than by a call. Virtual tables are not meant: see methods."""
        symbols, within = defaultdict(set), ""
        for line in output(TOOL + "readelf", "-rW", str(path)).splitlines():
            if line.startswith("Relocation section"):
                within = line.split("'")[1].removeprefix(".rel")
            found = re.match(r"\w+\s+\w+\s+(?:R_ARM_(?:ABS32|MOVW_ABS_NC|REL32|TARGET1))\s+\w+\s+(\S+)", line)
            if found and "_ZTV" not in within and ".debug" not in within and ".ARM.ex" not in within:
                symbols[within].add(found[1])
        return symbols

    def called_names(self, place):
        """What may be called at a place in the sources: the name in front of its bracket, else all in the line."""
        path, line, column = place.rsplit(":", 2)
        text = self.sources.setdefault(path, Path(path).read_text().splitlines())[int(line) - 1]
        found = re.search(r"(\w+)(?:\[\w+\])?\s*$", text[:int(column) - 1])
        return ([found[1]] if found else []) + re.findall(r"(\w+)(?:\[\w+\])?\(", text) + re.findall(r"\bpfn\w+", text) + \
            (["delete"] if "delete " in text else []), text

    def resolve(self, caller, name, place, taken):
        names, text = self.called_names(place) if place else ([], "")
        targets = set()
        for called in names:
            if called in PRODUCTS:
                self.products.add(PRODUCTS[called])
                return
            targets = self.targets(called, text)
            if targets and not re.search(rf"(->|\.){called}\(", text):  # on the object itself: its own class, where it has one
                own = re.search(r"(\w+)::~?\w+\(", self.label.get(caller, ""))
                targets = {title for title in targets if own and f" {own[1]}::" in self.label[title]} or targets
            if targets:
                break
        if not targets:
            targets = self.pointers(caller, name, taken)
        if not targets:
            self.unresolved.append(f"{place}: {text.strip()}")
        self.calls[caller] |= targets

    def targets(self, called, text):
        """Where a call by a name leads that the library gives to its row functions, loops or virtual operations."""
        rows = "|".join(re.findall(r"\bpfn([A-Z]\w+)", text))  # a choice between two stands in one line
        if re.match(r"neonloops_\w+$", called):
            pattern = r"Kanvo_LoopRects<"
        elif rows and "g_Kanvo_pkBodies" in text:
            pattern = rf"Kanvo_LoopRects<.*::({rows})\("
        elif rows and re.search(r"g_Kanvo_pk(Scaled)?Rows\b|\bkRows\.", text):
            pattern = rf"(RowsNEON|ScaledRowsNEON|Kanvo_RowsReference|Kanvo_ScaledRowsReference)::({rows})\("
        elif called == "delete":
            return {title for method, titles in self.methods.items() if method.startswith("~") for title in titles}
        else:
            return {title for title in self.methods.get(called, ()) if title in self.frame}
        return {title for title, label in self.label.items() if title in self.frame and re.search(pattern, label)}

    def pointers(self, caller, name, taken):
        """Where a pointer leads: to what the function itself takes the address of, else what its callers take, who may have
        passed it on, and so on; else to anything that the file takes the address of, as for a table."""
        def among(symbols):
            return {title for title in self.frame if self.unit[title] == name and title != caller and
                    title.split(":")[-1] in symbols}

        seen, level = set(), {caller}
        while level:
            seen |= level
            targets = among(set().union(*(taken.get(f".text.{title.split(':')[-1]}", set()) for title in level)))
            if targets:
                return targets
            level = {source for source, called in self.calls.items() if called & level} - seen
        return among(set().union(*taken.values())) if taken else set()

    def depth(self, title, path=(), cache=None):
        """(bytes, chain of titles) of the deepest chain of calls. A failed assertion is an end: see the page."""
        cache = self.cache if cache is None else cache
        for pattern, most, _ in BOUNDED:
            if pattern.search(self.label.get(title, "")):
                met, cache = sum(1 for part in path if pattern.search(self.label.get(part, ""))), {}
                if met >= most:
                    return 0, ()
                break
        else:
            most = 0
        if title in path and not most:
            raise RecursionError(" -> ".join(self.short(part) for part in path[path.index(title):] + (title,)))
        if title not in cache:
            if title not in self.frame:
                cache[title] = (LIBRARY_CALL, (title,))
            else:
                deepest = (0, ())
                for called in sorted(self.calls[title]):
                    if "Trak_Report" not in called:
                        deepest = max(deepest, self.depth(called, path + (title,), cache), key=lambda chain: chain[0])
                cache[title] = (self.frame[title] + deepest[0], (title,) + deepest[1])
        return cache[title]

    cache = {}

    def short(self, title):
        """A name without return type, arguments and template parameters."""
        text = self.label.get(title, title)
        text = re.sub(r" \[with .*", "", text.replace("{anonymous}::", "").replace("(anonymous namespace)::", ""))
        while (less := re.sub(r"<[^<>]*>", "", text)) != text:
            text = less
        text = re.sub(r"\(.*", "", text) if "lambda" not in text else re.sub(r"\(.*::", "::", text)
        return text.split()[-1] if text.split() else title

    def entries(self):
        """The virtual operations of the ARGB32 bitmap, its own and those it inherits."""
        found = {}
        for title, label in self.label.items():
            method = re.match(r"virtual .*?\b(Kanvo_BitmapARGB32|Kanvo_Bitmap)::(~?\w+)\(", label)
            if method and title in self.frame:
                found[title] = method[2]
        return found


# ---- the page -------------------------------------------------------------------------------------------------------

def page(results, saved, stacks, fine, graph, report):
    arm, thumb, small, silent = results
    lines = ["# Footprint", "",
             f"What the library takes on a Cortex-A9, bare metal, gcc {compiler()}. Written by `tools/footprint.py BUILDDIR --write`; "
             "`./dev target` checks the limits, and that the figures are those of the build.", "",
             "## Flash", "",
             "Code, constants and initial values in bytes, `-ffunction-sections`, before the linker leaves out what is not "
             "used. All operations of a bitmap are virtual: whoever draws at all links all of drawing; the profiler, the source "
             "formats and the check of stored images stay out when they are not used.", "",
             "| Part | ARM -O2 | Thumb -O2 | Thumb -Os |", "|---|---:|---:|---:|"]
    for part in PARTS:
        lines.append(f"| {part} | " + " | ".join(f"{sizes[part][0]:,}" for sizes in (arm, thumb, small)) + " |")
    lines.append("| **All** | " + " | ".join(f"**{sum(flash for flash, _ in sizes.values()):,}**"
                                              for sizes in (arm, thumb, small)) + " |")
    saved_by, whole, bare = saved
    lines += ["", "What a product does not need can be left out by a CMake option. Its operations stay and assert, and draw nothing. "
              f"The smallest program that draws, ARM -O2, linked with the C library, has {whole:,} bytes; so much less with:", "",
              "| Option | Bytes saved |", "|---|---:|"]
    lines += [f"| `-D{switch}=OFF` | {size:,} |" for switch, size in sorted(saved_by.items(), key=lambda entry: -entry[1])]
    lines += [f"| all of these | {whole - bare:,} |"]
    lines += ["", f"With `-DKANVO_ASSERT=OFF` ARM -O2 comes to {sum(flash for flash, _ in silent.values()):,} bytes.", "",
              "## RAM", "", "Static memory in bytes. The pixels of a bitmap come on top: its width times its height times the bytes "
              "of a pixel, and up to 72 bytes for the record and the alignment. Drawing allocates nothing.", "",
              "| Part | Bytes |", "|---|---:|"]
    lines += [f"| {part} | {ram:,} |" for part, (_, ram) in arm.items() if ram]
    lines += [f"| **All** | **{sum(ram for _, ram in arm.values()):,}** |", "",
              "The polygons' share serves 512 corners and 2048 rows; `Kanvo::ReservePolygons` asks for more.", "",
              "## Stack", "",
              f"The deepest chain of calls below each virtual operation, in bytes, ARM -O2; the limit is {STACK_LIMIT:,}. Nothing is "
              "recursive (" + "; ".join(f"{reason}: counted {most} times" for _, most, reason in BOUNDED) + ") and every frame has a "
              "fixed size. An indirect call counts as the deepest function it can lead to, a "
              f"function of the C library as {LIBRARY_CALL} bytes. Not counted is what the product brings along "
              f"({', '.join(sorted(graph.products))}), and a failed assertion: its report takes {report:,} bytes and a `vsnprintf`.", "",
              "| Operation | Bytes | Deepest chain |", "|---|---:|---|"]
    for name, (size, chain) in stacks:
        lines.append(f"| `{name}` | {size:,} | {' → '.join(f'`{graph.short(title)}`' for title in chain[1:]) or '-'} |")
    lines += ["", "## What it needs of the C library", "",
              "| Symbol | Asked for by |", "|---|---|"]
    for symbol, names in sorted(fine.items()):
        if not COMPILER.match(symbol) and symbol in FOR_ALL:
            lines.append(f"| `{symbol}` | {', '.join(sorted(names))} |")
    lines += ["", "Integer division and 64-bit conversions, which the processor lacks, are calls of the compiler's own library: " +
              ", ".join(f"`{symbol}`" for symbol in sorted(fine) if COMPILER.match(symbol)) + ". Virtual destructors and pure "
              "functions name `operator delete` and `__cxa_pure_virtual`; bitmaps on the stack never call them. Further:", ""]
    for name, (_, reason) in FOR_FILES.items():
        used = sorted(symbol for symbol, names in fine.items() if name in names and symbol in FOR_FILES[name][0])
        if used:
            lines.append(f"- {', '.join(f'`{symbol}`' for symbol in used)} in {name}: {reason}.")
    return "\n".join(lines) + "\n"


def compiler():
    return output(TOOL + "g++", "-dumpfullversion").strip()


def check_page(text):
    """Empty where docs/FOOTPRINT.md is what this build would write, else what differs."""
    before = PAGE.read_text() if PAGE.exists() else ""
    if before == text:
        return ""
    version = re.search(r"bare metal, gcc ([\w.]+?)\.? ", before)
    if version and version[1] != compiler():
        print(f"docs/FOOTPRINT.md is of gcc {version[1]}, this is {compiler()}: its figures are not compared")
        return ""
    changes = [line for line in difflib.unified_diff(before.splitlines(), text.splitlines(), n=0, lineterm="")
               if re.match(r"[-+](?![-+])", line)]
    more = [f"... and {len(changes) - 20} lines more"] if len(changes) > 20 else []
    return "\n    ".join(["docs/FOOTPRINT.md (-) is not what this build gives (+); if it is meant to be so: ./dev target --record",
                          *changes[:20], *more])


def main():
    options = argparse.ArgumentParser()
    options.add_argument("folder", type=Path)
    options.add_argument("--write", action="store_true")
    options = options.parse_args()
    folder = options.folder.resolve()

    objects = build(folder / "arm-O2", "-O2 -fcallgraph-info=su")
    graph, failures = Graph(objects), []
    stacks, deepest = [], {}
    try:
        for title, name in graph.entries().items():
            size, chain = graph.depth(title)
            if size > deepest.get(name, (0, ()))[0]:
                deepest[name] = (size, chain)
        stacks = sorted(deepest.items(), key=lambda entry: (-entry[1][0], entry[0]))
    except RecursionError as chain:
        failures.append(f"recursion: {chain}")
    checks = 3 + len(objects) + len(stacks)
    if len(stacks) < 30:
        failures.append(f"only {len(stacks)} virtual operations were found: is the call graph complete?")
    if graph.dynamic:
        failures.append(f"frames whose size is not fixed: {', '.join(graph.dynamic)}")
    failures += [f"{name} takes {size} bytes of stack, more than {STACK_LIMIT}: "
                 f"{' -> '.join(f'{graph.short(title)} {graph.frame.get(title, LIBRARY_CALL)}' for title in chain)}"
                 for name, (size, chain) in stacks if size > STACK_LIMIT]
    failures += [f"nobody knows where this leads: {place}" for place in sorted(set(graph.unresolved))]
    asked = undefined(objects)
    strangers = {called for calls in graph.calls.values() for called in calls} - set(graph.frame) - set().union(*asked.values())
    failures += [f"{stranger} is called, and no file of the library says what it takes" for stranger in sorted(strangers)]
    wrong, fine = check_undefined(asked)
    failures += wrong

    # What a product may switch off is compiled and linked for it.
    if not failures:
        report = max(frame for title, frame in graph.frame.items() if "Trak_Report" in title)
        results = [sizes(objects), sizes(build(folder / "thumb-O2", "-O2 -mthumb")),
                   sizes(build(folder / "thumb-Os", "-Os -mthumb")),
                   sizes(build(folder / "silent", "-O2", "-DKANVO_ASSERT=OFF"))]
        text = page(results, savings(folder / "switches"), stacks, fine, graph, report)
        if options.write:
            PAGE.write_text(text)
        elif complaint := check_page(text):
            failures.append(complaint)
        checks += 1
    if stacks:
        name, (size, _) = stacks[0]
        print(f"deepest stack: {size} bytes ({name}); {len(stacks)} virtual operations, {len(objects)} files")
    print("\n".join(failures + [f"{max(checks - len(failures), 0)} passed, {len(failures)} failed"]))
    return 1 if failures else 0


if __name__ == "__main__":
    sys.exit(main())
