#!/usr/bin/env python3
"""Makes line.bmp, the thin rule between the pages of a document: 640 x 3 pixels, grey, fading at both ends.

Usage: make_line_bmp.py [OUTPUT]   (default: line.bmp beside this script)
"""

import pathlib
import struct
import sys

WIDTH, HEIGHT = 640, 3
FADE = 80  # pixels
INK = (150, 200, 150)  # darkness of the rows: white is 255, so that the middle one is the darkest
HEADERS = 14 + 40


def grey(column, ink):
    strength = min(1.0, (column + 1) / FADE, (WIDTH - column) / FADE)
    return 255 - round(ink / 2 * strength)


def main():
    here = pathlib.Path(__file__).resolve().parent
    target = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else here / "line.bmp"
    rows = b"".join(bytes(grey(x, ink) for x in range(WIDTH) for _ in "bgr") for ink in INK)
    header = struct.pack("<2sIHHI", b"BM", HEADERS + len(rows), 0, 0, HEADERS)
    # 24 bits a pixel, uncompressed, 96 pixels an inch (3780 a metre)
    info = struct.pack("<IiiHHIIiiII", 40, WIDTH, HEIGHT, 1, 24, 0, len(rows), 3780, 3780, 0, 0)
    target.write_bytes(header + info + rows)


if __name__ == "__main__":
    main()
