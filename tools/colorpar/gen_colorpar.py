#!/usr/bin/env python3
"""Writes resources/color.par, the text of the 18 smooth colour tables 4..21.

Each plane of a table is a smooth curve through its control points: the five pinned
entries 0, 60, 120, 180, 239 and, where a table needs a particular start, a few more.
The curve is a blend of two monotone C1 curves through the same points, a monotone
cubic (Fritsch-Carlson) and an ease that leaves and reaches each point flat and lingers
near the lower value; neither overshoots its neighbouring control points, so all values
stay within 0..255. One blend weight serves all tables; it is chosen so that the text
has its documented size of 48576 bytes. Edit marks (value - 32768) go on the pinned entries first,
in the order of PREFERRED_MARKS (the first entry late: entries 0..7 of a stored table
are edit points anyway), until each plane has its count.

Usage: gen_colorpar.py [output]   (default: resources/color.par beside this tool's repo)
"""
import os
import sys

ENTRIES = 240
PINNED = (0, 60, 120, 180, 239)

# table: (pinned (r, g, b) at the entries of PINNED, marks per plane (r, g, b))
TABLES = {
    4: (((5, 9, 9), (0, 0, 0), (103, 0, 0), (222, 192, 191), (225, 225, 226)), (5, 7, 7)),
    5: (((14, 16, 16), (110, 131, 50), (198, 173, 4), (106, 153, 149), (227, 234, 225)), (6, 4, 7)),
    6: (((0, 0, 0), (113, 52, 177), (218, 117, 186), (249, 181, 173), (246, 245, 254)), (4, 2, 4)),
    7: (((0, 0, 0), (0, 0, 0), (119, 119, 119), (250, 250, 250), (255, 255, 255)), (4, 4, 4)),
    8: (((0, 0, 1), (105, 25, 20), (37, 142, 158), (150, 215, 0), (225, 232, 230)), (11, 7, 12)),
    9: (((226, 0, 0), (255, 141, 0), (127, 255, 12), (26, 64, 89), (255, 0, 250)), (5, 4, 3)),
    10: (((0, 0, 0), (31, 0, 0), (144, 0, 0), (255, 117, 255), (255, 254, 255)), (2, 2, 2)),
    11: (((221, 221, 0), (247, 230, 39), (228, 115, 97), (127, 0, 156), (0, 0, 213)), (3, 3, 2)),
    12: (((0, 0, 0), (50, 0, 0), (118, 48, 0), (186, 152, 70), (253, 255, 253)), (2, 2, 2)),
    13: (((50, 183, 0), (43, 36, 112), (63, 161, 207), (134, 194, 218), (239, 103, 173)), (3, 4, 3)),
    14: (((69, 6, 8), (29, 91, 0), (31, 149, 0), (107, 156, 61), (228, 129, 188)), (3, 3, 3)),
    15: (((101, 101, 101), (78, 78, 78), (103, 103, 103), (240, 240, 240), (0, 0, 0)), (13, 13, 13)),
    16: (((0, 0, 0), (3, 0, 189), (188, 46, 109), (227, 149, 199), (255, 250, 255)), (6, 2, 6)),
    17: (((255, 40, 0), (255, 0, 0), (50, 255, 14), (113, 0, 100), (172, 1, 255)), (4, 6, 3)),
    18: (((31, 26, 37), (116, 20, 139), (93, 141, 151), (125, 166, 28), (213, 255, 255)), (7, 7, 5)),
    19: (((0, 0, 0), (0, 0, 0), (124, 124, 124), (196, 196, 196), (248, 248, 248)), (4, 4, 4)),
    20: (((0, 1, 2), (152, 44, 46), (150, 99, 101), (40, 171, 172), (255, 251, 250)), (4, 3, 3)),
    21: (((138, 119, 29), (143, 153, 52), (164, 117, 142), (205, 55, 224), (253, 55, 0)), (4, 5, 5)),
}

# Extra control points (entry: (r, g, b)) and marks that come before the preferred ones.
# Table 4 opens with a quick fall from its first grey, the third entry being an edit
# point in all planes.
EXTRA_POINTS = {4: {1: (4, 6, 6), 2: (3, 3, 4), 3: (1, 0, 1)}}
EXTRA_MARKS = {4: (2,)}

TEXT_SIZE = 48576

PREFERRED_MARKS = (120, 60, 180, 239, 30, 90, 150, 210, 0, 15, 45, 75, 105, 135, 165, 195, 225)


def pchip(xs, ys):
    """Values at 0..ENTRIES-1 of the monotone cubic through (xs, ys)."""
    n = len(xs)
    h = [xs[k + 1] - xs[k] for k in range(n - 1)]
    delta = [(ys[k + 1] - ys[k]) / h[k] for k in range(n - 1)]
    m = [0.0] * n
    m[0], m[-1] = delta[0], delta[-1]
    for k in range(1, n - 1):
        if delta[k - 1] * delta[k] <= 0:
            m[k] = 0.0
        else:  # weighted harmonic mean keeps the piece monotone
            w1, w2 = 2 * h[k] + h[k - 1], h[k] + 2 * h[k - 1]
            m[k] = (w1 + w2) / (w1 / delta[k - 1] + w2 / delta[k])
    for k in (0, n - 1):  # one-sided ends must not overshoot either
        d = delta[0] if k == 0 else delta[-1]
        if m[k] * d <= 0:
            m[k] = 0.0
        elif abs(m[k]) > 3 * abs(d):
            m[k] = 3 * d
    out = []
    seg = 0
    for x in range(ENTRIES):
        while seg < n - 2 and x > xs[seg + 1]:
            seg += 1
        t = (x - xs[seg]) / h[seg]
        t2, t3 = t * t, t * t * t
        v = ((2 * t3 - 3 * t2 + 1) * ys[seg] + (t3 - 2 * t2 + t) * h[seg] * m[seg]
             + (-2 * t3 + 3 * t2) * ys[seg + 1] + (t3 - t2) * h[seg] * m[seg + 1])
        out.append(v)
    return out


def ease(xs, ys):
    """Values at 0..ENTRIES-1 of the flat-ended ease through (xs, ys): within a piece, the
    lower end plus the rise times smoothstep(u)^2, u measured from the lower end."""
    out = []
    seg = 0
    for x in range(ENTRIES):
        while seg < len(xs) - 2 and x > xs[seg + 1]:
            seg += 1
        t = (x - xs[seg]) / (xs[seg + 1] - xs[seg])
        a, b = ys[seg], ys[seg + 1]
        u = t if b >= a else 1 - t
        w = (3 * u * u - 2 * u * u * u) ** 2
        out.append(min(a, b) + abs(b - a) * w)
    return out


def curve(xs, ys, weight):
    """The blend, rounded to whole values."""
    return [min(255, max(0, int((1 - weight) * p + weight * e + 0.5))) for p, e in zip(pchip(xs, ys), ease(xs, ys))]


def table_text(number, weight):
    pinned, counts = TABLES[number]
    points = {PINNED[k]: pinned[k] for k in range(len(PINNED))}
    points.update(EXTRA_POINTS.get(number, {}))
    xs = sorted(points)
    planes = []
    for c in range(3):
        values = curve(xs, [points[x][c] for x in xs], weight)
        for x in xs:
            assert values[x] == points[x][c], (number, c, x)
        order = list(EXTRA_MARKS.get(number, ())) + [e for e in PREFERRED_MARKS
                                                     if e not in EXTRA_MARKS.get(number, ())]
        marks = set(order[:counts[c]])
        assert len(marks) == counts[c]
        planes.append([v - 32768 if e in marks else v for e, v in enumerate(values)])
    lines = ["Color Table %d" % number, ""]
    lines += ["%d %d %d" % (planes[0][e], planes[1][e], planes[2][e]) for e in range(ENTRIES)]
    return "".join(line + "\r\n" for line in lines)


def make_text(weight):
    return "".join(table_text(n, weight) for n in range(4, 22)) + "\x1a"


def find_weight():
    """The blend weight that gives the documented size: the size falls, by steps of a
    byte or so, as the weight grows, so halve the interval until it is met."""
    lo, hi = 0.0, 1.0
    for _ in range(60):
        mid = (lo + hi) / 2
        size = len(make_text(mid))
        if size == TEXT_SIZE:
            return mid
        if size > TEXT_SIZE:
            lo = mid
        else:
            hi = mid
    raise SystemExit("no blend weight gives %d bytes" % TEXT_SIZE)


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    target = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "..", "resources", "color.par")
    text = make_text(find_weight())
    with open(target, "wb") as f:
        f.write(text.encode("ascii"))
    print("%s: %d bytes" % (os.path.normpath(target), len(text)))


if __name__ == "__main__":
    main()
