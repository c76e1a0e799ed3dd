#!/usr/bin/env python3
"""Draws the library's own mouse pointers and writes them as CURSOR resources.

Each pointer is a 32 by 32 picture in black, white and transparent: shapes filled white
with a one-pixel black outline. The resource format is the one the window layer loads: the
hot spot (x, then y, each a 16-bit little-endian word) followed by a PNG image.

    python3 tools/pointers/make_pointers.py      # writes resources/pointers/<id>.cur

Only the standard library is used (zlib and struct), so the files can be made again
anywhere; the output is the same bytes on every run.
"""

import os
import struct
import zlib

SIZE = 32
CLEAR, BLACK, WHITE = 0, 1, 2


# Shapes, tested at pixel centres.

def capsule(x0, y0, x1, y1, r):
    """A stroke of radius r from (x0, y0) to (x1, y1) with round ends."""
    dx, dy = x1 - x0, y1 - y0
    ll = dx * dx + dy * dy

    def inside(px, py):
        t = 0.0 if ll == 0 else max(0.0, min(1.0, ((px - x0) * dx + (py - y0) * dy) / ll))
        qx, qy = x0 + t * dx - px, y0 + t * dy - py
        return qx * qx + qy * qy <= r * r
    return inside


def ellipse(cx, cy, rx, ry):
    return lambda px, py: ((px - cx) / rx) ** 2 + ((py - cy) / ry) ** 2 <= 1.0


def box(x0, y0, x1, y1):
    """Pixels x0..x1, y0..y1 (inclusive)."""
    return lambda px, py: x0 <= px - 0.5 <= x1 and y0 <= py - 0.5 <= y1


def polygon(points):
    def inside(px, py):
        hit = False
        n = len(points)
        for i in range(n):
            (ax, ay), (bx, by) = points[i], points[(i + 1) % n]
            if (ay > py) != (by > py):
                if px < ax + (py - ay) * (bx - ax) / (by - ay):
                    hit = not hit
        return hit
    return inside


class Picture:
    def __init__(self):
        self.px = [[CLEAR] * SIZE for _ in range(SIZE)]

    def layer(self, *shapes):
        """Paints the union of the shapes over what is there: white inside, black on its
        edge (inside pixels with a neighbour outside, or on the picture's border)."""
        mask = [[any(s(x + 0.5, y + 0.5) for s in shapes) for x in range(SIZE)] for y in range(SIZE)]
        for y in range(SIZE):
            for x in range(SIZE):
                if not mask[y][x]:
                    continue
                edge = False
                for nx, ny in ((x - 1, y), (x + 1, y), (x, y - 1), (x, y + 1)):
                    if not (0 <= nx < SIZE and 0 <= ny < SIZE) or not mask[ny][nx]:
                        edge = True
                self.px[y][x] = BLACK if edge else WHITE

    def line(self, x0, y0, x1, y1):
        """A black line of single pixels (horizontal, vertical or diagonal)."""
        n = max(abs(x1 - x0), abs(y1 - y0))
        for i in range(n + 1):
            x = x0 + (x1 - x0) * i // max(n, 1)
            y = y0 + (y1 - y0) * i // max(n, 1)
            self.px[y][x] = BLACK

    def png(self):
        colours = {CLEAR: b"\0\0\0\0", BLACK: b"\0\0\0\xff", WHITE: b"\xff\xff\xff\xff"}
        raw = b"".join(b"\0" + b"".join(colours[c] for c in row) for row in self.px)

        def chunk(kind, data):
            body = kind + data
            return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body) & 0xFFFFFFFF)
        return (b"\x89PNG\r\n\x1a\n"
                + chunk(b"IHDR", struct.pack(">IIBBBBB", SIZE, SIZE, 8, 6, 0, 0, 0))
                + chunk(b"IDAT", zlib.compress(raw, 9))
                + chunk(b"IEND", b""))


ARROW = [(1, 0.5), (1, 18), (5.5, 14.5), (8.5, 21.5), (11.5, 20.3), (8.5, 13.5), (13.5, 13.5)]


def arrow_with(sign):
    """The arrow with a small plus or minus sign at its lower right (polyline ends)."""
    p = Picture()
    p.layer(polygon(ARROW))
    p.layer(box(19, 19, 29, 29))
    p.line(21, 24, 27, 24)
    if sign == "+":
        p.line(24, 21, 24, 27)
    return p


def open_hand():
    """An open hand, fingers spread, seen from the palm side."""
    p = Picture()
    p.layer(capsule(4, 17, 10, 23, 2.2))                     # thumb
    p.layer(capsule(11.5, 16, 8.5, 5, 2.0),                  # index
            capsule(15.5, 15, 15, 3, 2.0),                   # middle
            capsule(19.5, 15, 21.5, 4, 2.0),                 # ring
            capsule(22.5, 18, 26.5, 9, 1.8),                 # little
            ellipse(16.5, 22.5, 8.0, 7.5))                   # palm
    return p


def closed_hand():
    """A closed hand gripping: the fist with the knuckles of four bent fingers on top."""
    p = Picture()
    p.layer(ellipse(16.5, 20.5, 9.0, 8.5),
            ellipse(10.5, 12.5, 2.6, 3.0), ellipse(14.5, 11.5, 2.6, 3.0),
            ellipse(18.5, 11.5, 2.6, 3.0), ellipse(22.5, 12.5, 2.6, 3.0))
    for x in (12, 16, 20):                                   # the gaps between the fingers
        p.line(x, 11, x, 15)
    p.layer(capsule(7, 21, 14, 18, 2.2))                     # thumb folded over
    return p


def pointing_hand():
    """A hand with the index finger up; its tip is at (9, 1), the hot spot."""
    p = Picture()
    p.layer(capsule(9.5, 3.8, 9.5, 16, 2.3),                 # index finger
            box(7, 14, 20, 27),                              # the back of the hand
            ellipse(20.5, 16.5, 2.5, 2.5),                   # three bent fingers' knuckles
            ellipse(20.5, 20.5, 2.5, 2.5),
            ellipse(20.5, 24.5, 2.5, 2.5),
            ellipse(14.5, 27.5, 7.0, 3.5))
    for y in (18, 22):                                       # the gaps between them
        p.line(13, y, 22, y)
    p.layer(capsule(4, 17, 8, 22, 2.0))                      # thumb
    return p


POINTERS = [
    (10004, (1, 1), arrow_with("+")),     # a press adds a point at this end of a polyline
    (10008, (1, 1), arrow_with("-")),     # a release takes the point away
    (10032, (16, 16), open_hand()),       # over a view with the pan button down
    (10033, (16, 16), closed_hand()),     # while panning
    (10050, (9, 1), pointing_hand()),     # the panel controls
]


def main():
    out = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "resources", "pointers")
    os.makedirs(out, exist_ok=True)
    for ident, (hx, hy), picture in POINTERS:
        with open(os.path.join(out, "%d.cur" % ident), "wb") as f:
            f.write(struct.pack("<HH", hx, hy) + picture.png())


if __name__ == "__main__":
    main()
