#!/usr/bin/env python3
"""Draws the pointer shapes of the paint editor and writes them into Cursors/ as .cur files (32 x 32 pixels with
alpha, one picture each). Run it after a change here and commit the files; only the standard library is needed.

The format: a directory of ICONDIR and ICONDIRENTRY records, the type 2 and the hot spot in the entry, then a bitmap
with a header of 40 bytes, twice as high as the picture, pixels bottom-up, and a mask of one bit a pixel."""

import pathlib
import struct

SIZE = 32
BLACK, WHITE = (0, 0, 0, 255), (255, 255, 255, 255)


class Picture:
    def __init__(self):
        self.pixels = {}

    def dot(self, x, y, colour=BLACK):
        if 0 <= x < SIZE and 0 <= y < SIZE:
            self.pixels[x, y] = colour

    def line(self, x1, y1, x2, y2, colour=BLACK):
        steps = max(abs(x2 - x1), abs(y2 - y1), 1)
        for i in range(steps + 1):
            self.dot(round(x1 + (x2 - x1) * i / steps), round(y1 + (y2 - y1) * i / steps), colour)

    def path(self, *points, colour=BLACK):
        for (x1, y1), (x2, y2) in zip(points, points[1:]):
            self.line(x1, y1, x2, y2, colour)

    def polygon(self, *points, fill=WHITE, edge=BLACK):
        for y in range(SIZE):
            for x in range(SIZE):
                inside = False
                for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1]):
                    if (y1 > y) != (y2 > y) and x < (x2 - x1) * (y - y1) / (y2 - y1) + x1:
                        inside = not inside
                if inside:
                    self.dot(x, y, fill)
        self.path(*points, points[0], colour=edge)

    def ring(self, cx, cy, radius, fill=WHITE):
        for y in range(SIZE):
            for x in range(SIZE):
                distance = ((x - cx) ** 2 + (y - cy) ** 2) ** 0.5
                if distance < radius + 0.5:
                    self.dot(x, y, BLACK if distance > radius - 0.9 else fill)

    def outlined(self):
        """With a white edge around everything, so that it is seen on a dark picture."""
        result = Picture()
        for x, y in self.pixels:
            for dx in (-1, 0, 1):
                for dy in (-1, 0, 1):
                    result.dot(x + dx, y + dy, WHITE)
        result.pixels.update(self.pixels)
        return result

    def cur(self, hot_x, hot_y):
        rows = bytearray()
        mask = bytearray()
        for y in reversed(range(SIZE)):
            bits = 0
            for x in range(SIZE):
                red, green, blue, alpha = self.pixels.get((x, y), (0, 0, 0, 0))
                rows += bytes((blue, green, red, alpha))
                bits = bits << 1 | (alpha == 0)
            mask += struct.pack(">I", bits)
        header = struct.pack("<IiiHHIIiiII", 40, SIZE, 2 * SIZE, 1, 32, 0, len(rows) + len(mask), 0, 0, 0, 0)
        body = header + rows + mask
        return (
            struct.pack("<HHH", 0, 2, 1)
            + struct.pack("<BBBBHHII", SIZE, SIZE, 0, 0, hot_x, hot_y, len(body), 22)
            + body
        )


def cross():
    p = Picture()
    p.line(15, 4, 15, 26)
    p.line(4, 15, 26, 15)
    return p.outlined(), 15, 15


def pencil():
    p = Picture()
    p.polygon((3, 28), (5, 21), (21, 5), (26, 10), (10, 26))
    p.path((5, 21), (10, 26))
    p.polygon((3, 28), (4, 25), (6, 27), fill=BLACK)
    return p, 3, 28


def eraser():
    p = Picture()
    p.polygon((4, 20), (16, 6), (26, 13), (14, 27), (9, 27))
    p.path((9, 14), (20, 21))
    return p, 9, 27


def fill():
    p = Picture()
    p.polygon((8, 14), (17, 5), (26, 14), (17, 23))
    p.path((13, 3), (18, 8))
    p.path((8, 14), (26, 14))
    p.polygon((8, 14), (5, 18), (4, 24), (5, 27), (7, 24), (8, 19), fill=BLACK)
    return p, 5, 27


def pick():
    p = Picture()
    p.polygon((3, 28), (4, 24), (15, 13), (18, 16), (7, 27))
    p.polygon((14, 10), (17, 13), (22, 5), (26, 4), (27, 9), (21, 14), (21, 17), (19, 19), (12, 12), fill=BLACK)
    return p, 3, 28


def text():
    p = Picture()
    p.path((11, 4), (14, 6), (15, 6), (16, 6), (19, 4))
    p.path((15, 6), (15, 26))
    p.path((11, 28), (14, 26), (15, 26), (16, 26), (19, 28))
    return p.outlined(), 15, 15


def airbrush():
    p = Picture()
    p.polygon((14, 14), (25, 14), (25, 29), (14, 29))
    p.polygon((17, 9), (22, 9), (22, 14), (17, 14))
    for x, y in ((13, 9), (10, 6), (10, 9), (10, 12), (6, 4), (6, 8), (6, 11), (6, 14)):
        p.dot(x, y)
        p.dot(x + 1, y)
    return p.outlined(), 8, 9


def brush():
    p = Picture()
    p.polygon((14, 15), (25, 3), (28, 6), (17, 18))
    p.polygon((13, 16), (16, 19), (12, 26), (4, 28), (8, 24), (9, 19), fill=(220, 38, 38, 255))
    return p, 4, 28


def filter_brush():
    p = Picture()
    p.polygon((16, 5), (27, 16), (22, 21), (11, 10))
    p.polygon((11, 10), (22, 21), (15, 26), (4, 28), (6, 24), (7, 17), fill=(167, 139, 250, 255))
    return p, 4, 28


def zoom():
    p = Picture()
    p.ring(12, 12, 8)
    p.polygon((18, 17), (28, 26), (26, 28), (17, 19), fill=BLACK)
    p.line(8, 12, 16, 12)
    p.line(12, 8, 12, 16)
    return p.outlined(), 12, 12


def hand_flat():
    p = Picture()
    p.polygon((10, 29), (4, 20), (3, 16), (6, 15), (10, 19), (9, 6), (11, 4), (13, 6), (14, 14), (14, 3), (16, 2),
              (18, 3), (18, 14), (20, 5), (22, 4), (23, 6), (22, 15), (25, 9), (27, 9), (28, 11), (25, 23), (22, 29))
    return p, 15, 15


def hand_grab():
    p = Picture()
    p.polygon((10, 27), (5, 20), (6, 16), (9, 17), (9, 11), (12, 10), (14, 11), (16, 9), (18, 11), (20, 10),
              (22, 12), (24, 12), (26, 14), (25, 22), (22, 27))
    p.line(13, 12, 13, 16)
    p.line(17, 11, 17, 16)
    p.line(21, 12, 21, 16)
    return p, 15, 15


FILES = {
    "airbrush": airbrush, "brush": brush, "cross": cross, "eraser": eraser, "fill": fill, "filter": filter_brush,
    "handflat": hand_flat, "handgrab": hand_grab, "pencil": pencil, "pick": pick, "text": text, "zoom": zoom,
}

if __name__ == "__main__":
    folder = pathlib.Path(__file__).parent / "Cursors"
    folder.mkdir(exist_ok=True)
    for name, draw in FILES.items():
        picture, x, y = draw()
        (folder / f"{name}.cur").write_bytes(picture.cur(x, y))
