#!/usr/bin/env python3
"""Compares what the board's display shows with what this machine draws.

  screenshots.py BOARD_GALLERY GALLERY_FOLDER [--keep FOLDER]

Runs the program board-gallery step by step on QEMU, has QEMU save the picture of its display for every scene, and compares
each pixel of it with the PNG that kanvo-gallery has written for the same scene into GALLERY_FOLDER: red, green and blue, as a
display has no alpha. Around the scene there must be one colour. --keep leaves the screenshots in a folder to look at.

Last line: "N passed, M failed". Exit status 1 where anything failed.
"""

import argparse
import json
import os
import socket
import struct
import subprocess
import sys
import tempfile
import zlib
from pathlib import Path

AROUND = bytes((0x20, 0x30, 0x40))
SECONDS = 180  # for all scenes together


def read_ppm(path):
    """Width, height and the bytes r, g, b of every pixel."""
    data = path.read_bytes()
    magic, width, height, depth, pixels = data.split(maxsplit=4) if data[:2] == b"P6" else (b"", 0, 0, 0, b"")
    if magic != b"P6" or depth != b"255":
        raise ValueError(f"{path}: not a picture as QEMU writes it")
    # split() would also eat pixels that look like white space: count from the end instead
    size = int(width) * int(height) * 3
    return int(width), int(height), data[len(data) - size:]


def read_png(path):
    """The same of a PNG file with 8 bits per channel, without interlace, as kanvo-gallery writes them."""
    data = path.read_bytes()
    if data[:8] != b"\x89PNG\r\n\x1a\n":
        raise ValueError(f"{path}: not a PNG file")
    at, packed, header = 8, b"", None
    while at < len(data):
        (length,) = struct.unpack(">I", data[at:at + 4])
        kind, body = data[at + 4:at + 8], data[at + 8:at + 8 + length]
        at += length + 12
        if kind == b"IHDR":
            header = struct.unpack(">IIBBBBB", body)
        elif kind == b"IDAT":
            packed += body
    width, height, depth, colours, _, _, interlace = header
    if depth != 8 or colours not in (2, 6) or interlace:
        raise ValueError(f"{path}: a kind of PNG file that this does not read")
    step = 4 if colours == 6 else 3
    raw, stride = zlib.decompress(packed), width * step
    before, rows = bytearray(stride), []
    for y in range(height):
        start = y * (stride + 1)
        row = unfiltered(raw[start], bytearray(raw[start + 1:start + 1 + stride]), before, step)
        rows.append(bytes(row) if step == 3 else b"".join(bytes(row[x:x + 3]) for x in range(0, stride, 4)))
        before = row
    return width, height, b"".join(rows)


def unfiltered(kind, row, above, step):
    """One row of a PNG file, in which each byte is the difference to a prediction from its neighbours."""
    if kind == 2:
        return bytearray((a + b) & 255 for a, b in zip(row, above))
    if kind == 0:
        return row
    for x, value in enumerate(row):
        left = row[x - step] if x >= step else 0
        up = above[x]
        corner = above[x - step] if x >= step else 0
        if kind == 1:
            guess = left
        elif kind == 3:
            guess = (left + up) // 2
        else:
            by_left, by_up, by_corner = abs(up - corner), abs(left - corner), abs(left + up - 2 * corner)
            guess = left if by_left <= by_up and by_left <= by_corner else up if by_up <= by_corner else corner
        row[x] = (value + guess) & 255
    return row


def difference(shown, drawn):
    """Empty where the screen shows the drawing in its middle, with one colour around it; else what is wrong."""
    width, height, screen = shown
    inner_width, inner_height, picture = drawn
    left, top = (width - inner_width) // 2, (height - inner_height) // 2
    wrong, first = 0, ""
    for y in range(height):
        if top <= y < top + inner_height:
            row = y - top
            middle = picture[row * inner_width * 3:(row + 1) * inner_width * 3]
            right = width - left - inner_width
            expected = AROUND * left + middle + AROUND * right
        else:
            expected = AROUND * width
        got = screen[y * width * 3:(y + 1) * width * 3]
        if got == expected:
            continue
        for x in range(width):
            pixel, wanted = got[3 * x:3 * x + 3], expected[3 * x:3 * x + 3]
            if pixel != wanted:
                wrong += 1
                first = first or f"({x}, {y}) of the screen is {pixel.hex()}, expected {wanted.hex()}"
    return f"{wrong} pixels differ: {first}" if wrong else ""


class Machine:
    """QEMU's own control channel."""

    def __init__(self, path):
        self.socket = socket.socket(socket.AF_UNIX)
        self.socket.settimeout(30)
        self.socket.connect(path)
        self.lines = self.socket.makefile("rwb")
        self.lines.readline()  # the greeting
        self.do("qmp_capabilities")

    def do(self, command, **arguments):
        self.lines.write(json.dumps({"execute": command, "arguments": arguments}).encode() + b"\n")
        self.lines.flush()
        while True:
            answer = json.loads(self.lines.readline())
            if "error" in answer:
                raise RuntimeError(f"QEMU: {answer['error']}")
            if "return" in answer:
                return


def main():
    options = argparse.ArgumentParser()
    options.add_argument("program", type=Path)
    options.add_argument("gallery", type=Path)
    options.add_argument("--keep", type=Path)
    options = options.parse_args()

    passed = failed = 0
    with tempfile.TemporaryDirectory() as scratch:
        keep = options.keep or Path(scratch)
        keep.mkdir(parents=True, exist_ok=True)
        control = f"{scratch}/qmp"
        environment = dict(os.environ, KANVO_BOARD_SECONDS=str(SECONDS), KANVO_BOARD_SERIAL="stdio",
                           KANVO_QEMU_OPTIONS=f"-qmp unix:{control},server=on,wait=off")
        board = subprocess.Popen([str(Path(__file__).resolve().parent / "qemu-a9"), str(options.program), "--step"],
                                 stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=environment)
        machine = None
        for line in board.stdout:
            words = line.decode().split()
            if not words or words[0] == "#":
                continue
            name = words[0]
            machine = machine or Machine(control)  # the board waits now, until it gets a byte
            reason = compare(machine, name, keep, options.gallery)
            passed, failed = (passed + 1, failed) if not reason else (passed, failed + 1)
            if reason:
                print(f"{name}: {reason}")
            board.stdin.write(b"\n")
            board.stdin.flush()
        if board.wait() != 0:
            print(f"board-gallery: exit status {board.returncode}")
            failed += 1
    print(f"{passed} passed, {failed} failed")
    return 0 if failed == 0 and passed > 0 else 1


def compare(machine, name, keep, gallery):
    shot = (keep / f"{name}.ppm").resolve()
    machine.do("screendump", filename=str(shot))
    return difference(read_ppm(shot), read_png(gallery / f"{name}.optimised.png"))  # what the board has drawn last


if __name__ == "__main__":
    sys.exit(main())
