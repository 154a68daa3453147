#!/usr/bin/env python3
"""Builds the scenes for many machines and settings and compares what each draws with scenes/CHECKSUMS.

  check_checksums.py OUTDIR --image-program PATH [--only NAME ...] [--jobs N]

Compilers and processors are to agree on every byte, unoptimised and optimised: host with gcc and clang, Cortex-A9 and 64-bit
ARM on QEMU, and the bare board. Only the library, the scenes and one small program are built. --image-program: kanvo-image of
this machine, which encodes the pictures. --only picks builds by the beginning of their names; --list shows all names.

The level each build draws with is checked as well: on ARM it must be NEON, or this would say nothing about those bodies.

Last line: "N passed, M failed", counted in builds. Exit status 1 where any failed.
"""

import argparse
import os
import subprocess
import sys
import time
from pathlib import Path

ROOT = Path(__file__).resolve().parent.parent

HOST_LEVEL = None  # depends on the machine
MACHINES = {
    "gcc": (["-DCMAKE_CXX_COMPILER=g++"], "kanvo-checksums", HOST_LEVEL),
    "clang": (["-DCMAKE_CXX_COMPILER=clang++"], "kanvo-checksums", HOST_LEVEL),
    "armhf": ([f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/armhf-a9.cmake"], "kanvo-checksums", "neon"),
    "aarch64": ([f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/aarch64.cmake"], "kanvo-checksums", "neon"),
    "board": ([f"-DCMAKE_TOOLCHAIN_FILE={ROOT}/cmake/bare-a9.cmake", "-DKANVO_BUILD_TESTS=ON", "-DKANVO_RTTI=ON"],
              "board-gallery", "neon"),  # `./dev target` builds the board's tests in its folder
}
EMULATORS = {
    "armhf": ["qemu-arm", "-cpu", "cortex-a9", "-L", "/usr/arm-linux-gnueabihf"],
    "aarch64": ["qemu-aarch64", "-cpu", "cortex-a53", "-L", "/usr/aarch64-linux-gnu"],
    "board": [str(ROOT / "board/qemu-a9")],
}
BUILDS = [(machine, flag) for machine in ("gcc", "clang", "armhf", "aarch64") for flag in ("-O0", "-O2", "-O3")]
BUILDS += [("board", flag) for flag in ("-O2", "-Os", "-O3")]


def lines_of(text):
    """The list without comments, and what the comment on the level says."""
    level = [line.split()[-1] for line in text.splitlines() if line.startswith("# level:")]
    return [line for line in text.splitlines() if line and not line.startswith("#")], level[-1] if level else None


def run(command, log, **more):
    with open(log, "ab") as file:
        return subprocess.run(command, stdin=subprocess.DEVNULL, stdout=file, stderr=subprocess.STDOUT, **more).returncode


def build(machine, flag, folder, options):
    """The program, or None where it did not build."""
    settings, program, _ = MACHINES[machine]
    log = folder / "build.log"
    configure = ["cmake", "-G", "Ninja", "-S", str(ROOT), "-B", str(folder), "-DCMAKE_BUILD_TYPE=None",
                 f"-DCMAKE_CXX_FLAGS_NONE={flag}", f"-DCMAKE_C_FLAGS_NONE={flag}", f"-DKANVO_IMAGE_PROGRAM={options.image_program}",
                 *(f"-DKANVO_BUILD_{part}=OFF" for part in ("TESTS", "TOOLS", "BENCH", "EXAMPLES", "FUZZ")), *settings]
    make = ["cmake", "--build", str(folder), "--target", program, "-j", str(options.jobs)]
    if run(configure, log) != 0 or run(make, log) != 0:
        return None
    return next(path for path in (folder / "board" / program, folder / "scenes" / program) if path.exists())


def check(machine, flag, folder, options, wanted):
    """Empty where the build draws what is wanted, else what is wrong."""
    program = build(machine, flag, folder, options)
    if program is None:
        return f"did not build (whole output in {folder}/build.log)"
    drawn = subprocess.run([*EMULATORS.get(machine, []), str(program)], stdin=subprocess.DEVNULL, capture_output=True,
                           text=True, timeout=600)
    (folder / "CHECKSUMS").write_text(drawn.stdout)
    if drawn.returncode != 0:
        return f"exit status {drawn.returncode}: {drawn.stderr.strip()[-400:]}"
    lines, level = lines_of(drawn.stdout)
    wanted_level = MACHINES[machine][2]
    if wanted_level is not None and level != wanted_level:
        return f"drawn with level {level}, not {wanted_level}"
    if lines == wanted:
        return ""
    different = [line for line in lines if line not in wanted] + \
                [f"missing: {line}" for line in wanted if line.split()[0] not in {mine.split()[0] for mine in lines}]
    return "\n    ".join([f"{len(different)} scenes differ", *different]) if different else "another order of the scenes"


def main():
    options = argparse.ArgumentParser()
    options.add_argument("folder", type=Path, nargs="?")
    options.add_argument("--image-program", type=Path)
    options.add_argument("--only", nargs="+", default=[""])
    options.add_argument("--jobs", type=int, default=os.cpu_count())
    options.add_argument("--list", action="store_true")
    options = options.parse_args()
    chosen = [(machine, flag) for machine, flag in BUILDS if (machine + flag).startswith(tuple(options.only))]
    if options.list:
        print("\n".join(machine + flag for machine, flag in chosen))
        return 0
    if options.folder is None or options.image_program is None or not chosen:
        sys.exit("check_checksums.py: needs a folder, --image-program and at least one build, see --help")
    options.image_program = options.image_program.resolve()

    wanted, _ = lines_of((ROOT / "scenes/CHECKSUMS").read_text())
    failed = 0
    for machine, flag in chosen:
        name, begin = machine + flag, time.monotonic()
        folder = options.folder.resolve() / name
        folder.mkdir(parents=True, exist_ok=True)
        reason = check(machine, flag, folder, options, wanted)
        failed += 1 if reason else 0
        print(f"{name}: {reason or f'{len(wanted)} scenes as listed'} ({time.monotonic() - begin:.0f} s)", flush=True)
    print(f"{len(chosen) - failed} passed, {failed} failed")
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
