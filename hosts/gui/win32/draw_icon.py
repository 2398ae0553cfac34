#!/usr/bin/env python3
"""Draws the icon of zenfo-gui in all sizes.

    draw_icon.py ICO

A lens over two lines of text, one of which it has found. Shapes are given by
their distance from a point, so each size is drawn by itself and not shrunk.
"""

import math
import struct
import sys
import zlib

SIZES = (16, 20, 24, 32, 40, 48, 64, 128, 256)
PAGE, INK, FOUND = (250, 250, 247), (96, 110, 122), (255, 176, 71)
LENS, GLASS = (20, 83, 116), (222, 238, 246)


def box(x, y, left, top, right, bottom, radius):
    """Distance from a rectangle with round corners."""
    dx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
    dy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def stroke(x, y, ax, ay, bx, by, half):
    """Distance from a line with round ends."""
    t = ((x - ax) * (bx - ax) + (y - ay) * (by - ay))
    t = min(max(t / ((bx - ax) ** 2 + (by - ay) ** 2), 0), 1)
    return math.hypot(x - ax - t * (bx - ax), y - ay - t * (by - ay)) - half


def ring(x, y, cx, cy, radius, half):
    return abs(math.hypot(x - cx, y - cy) - radius) - half


# In a square of 1; later ones cover earlier ones.
LAYERS = (
    (lambda x, y: box(x, y, .06, .04, .80, .96, .09), INK),
    (lambda x, y: box(x, y, .10, .08, .76, .92, .06), PAGE),
    (lambda x, y: stroke(x, y, .21, .22, .62, .22, .035), INK),
    (lambda x, y: stroke(x, y, .21, .78, .44, .78, .035), INK),
    (lambda x, y: math.hypot(x - .52, y - .52) - .25, GLASS),
    (lambda x, y: box(x, y, .34, .46, .70, .58, .03), FOUND),
    (lambda x, y: stroke(x, y, .72, .72, .92, .92, .06), LENS),
    (lambda x, y: ring(x, y, .52, .52, .25, .045), LENS),
)


def pixel(x, y, size):
    red = green = blue = alpha = 0.0
    for distance, colour in LAYERS:
        cover = min(max(.5 - distance(x, y) * size, 0), 1)
        rest = alpha * (1 - cover)
        total = cover + rest
        if total > 0:
            red, green, blue = (
                (new * cover + old * rest) / total
                for new, old in zip(colour, (red, green, blue)))
        alpha = total
    return bytes(round(part) for part in (red, green, blue, alpha * 255))


def chunk(kind, data):
    return (struct.pack(">I", len(data)) + kind + data
            + struct.pack(">I", zlib.crc32(kind + data)))


def png(size):
    rows = b"".join(
        b"\0" + b"".join(pixel((x + .5) / size, (y + .5) / size, size)
                         for x in range(size))
        for y in range(size))
    return (b"\x89PNG\r\n\x1a\n"
            + chunk(b"IHDR", struct.pack(">IIBBBBB", size, size, 8, 6, 0, 0, 0))
            + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b""))


def main():
    pictures = [png(size) for size in SIZES]
    offset = 6 + 16 * len(SIZES)
    icon = struct.pack("<HHH", 0, 1, len(SIZES))
    for size, picture in zip(SIZES, pictures):
        icon += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32,
                            len(picture), offset)
        offset += len(picture)
    with open(sys.argv[1], "wb") as file:
        file.write(icon + b"".join(pictures))


main()
