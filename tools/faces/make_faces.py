#!/usr/bin/env python3
"""Draws the faces of the panel controls that the demo and the tests use, as a host would
ship them: 24-bit BMP files, one per bitmap id, and a header that names the ids.

The library holds no bitmap of its own: a host registers these under its own module
(orlex::RegisterResource with GetModuleHandleA(nullptr)) and gives the ids to the controls.
Every face has a marker colour at a pixel named in the header (its centre, or for a track
its left and right halves), so a test can tell from one pixel which face is showing.

    python3 tools/faces/make_faces.py   # writes tools/faces/bmp/*.bmp, faces.list, faces.h

Only the standard library is used; the output is the same bytes on every run.
"""

import os
import struct

HERE = os.path.dirname(os.path.abspath(__file__))
DARK = (40, 40, 48)


class Face:
    def __init__(self, width, height, fill):
        self.w, self.h = width, height
        self.px = [[fill] * width for _ in range(height)]

    def rect(self, x0, y0, x1, y1, colour):
        """Fills pixels x0..x1-1, y0..y1-1 (clipped)."""
        for y in range(max(0, y0), min(self.h, y1)):
            for x in range(max(0, x0), min(self.w, x1)):
                self.px[y][x] = colour

    def frame(self, x0, y0, x1, y1, colour):
        """The one-pixel outline of x0..x1-1, y0..y1-1."""
        self.rect(x0, y0, x1, y0 + 1, colour)
        self.rect(x0, y1 - 1, x1, y1, colour)
        self.rect(x0, y0, x0 + 1, y1, colour)
        self.rect(x1 - 1, y0, x1, y1, colour)

    def bevel(self, light, shadow, sunken=False):
        """A dark outline with a raised (or sunken) edge inside it."""
        if sunken:
            light, shadow = shadow, light
        self.frame(0, 0, self.w, self.h, DARK)
        self.rect(1, 1, self.w - 1, 2, light)
        self.rect(1, 1, 2, self.h - 1, light)
        self.rect(1, self.h - 2, self.w - 1, self.h - 1, shadow)
        self.rect(self.w - 2, 1, self.w - 1, self.h - 1, shadow)

    def bmp(self):
        """A BMP file: file header, BITMAPINFOHEADER, bottom-up rows of blue, green, red
        padded to four bytes."""
        stride = (self.w * 3 + 3) & ~3
        rows = []
        for row in reversed(self.px):
            data = b"".join(bytes((b, g, r)) for (r, g, b) in row)
            rows.append(data + b"\0" * (stride - len(data)))
        pixels = b"".join(rows)
        info = struct.pack("<IiiHHIIiiII", 40, self.w, self.h, 1, 24, 0, len(pixels), 2835, 2835, 0, 0)
        head = struct.pack("<2sIHHI", b"BM", 14 + len(info) + len(pixels), 0, 0, 14 + len(info))
        return head + info + pixels


def shade(c, f):
    return tuple(max(0, min(255, int(round(v * f)))) for v in c)


def button(fill, sunken=False):
    f = Face(48, 24, fill)
    f.bevel(shade(fill, 1.45), shade(fill, 0.55), sunken)
    f.rect(8, 5, 16, 7, shade(fill, 1.3))      # a small light mark, away from the centre
    return f


def thumb(width, height, fill):
    f = Face(width, height, fill)
    f.bevel(shade(fill, 1.35), shade(fill, 0.6))
    for x in (width // 2 - 3, width // 2 + 3):  # grip lines either side of the centre
        f.rect(x, 4, x + 1, height - 4, shade(fill, 0.7))
    return f


def track(width, height, left, right):
    """Left half one colour, right half another, a dark line along top and bottom."""
    f = Face(width, height, left)
    f.rect(width // 2, 0, width, height, right)
    f.rect(0, 0, width, 1, DARK)
    f.rect(0, height - 1, width, height, DARK)
    return f


def switch(body, lever_left):
    """A slide switch: a body with its lever in the left or the right half; the marker is
    the body's colour at the centre, between the two lever places."""
    f = Face(40, 20, body)
    f.bevel(shade(body, 1.4), shade(body, 0.55))
    x0 = 4 if lever_left else 24
    f.rect(x0, 4, x0 + 12, 16, (236, 236, 232))
    f.frame(x0, 4, x0 + 12, 16, DARK)
    return f


def lamp(colour):
    f = Face(16, 16, colour)
    f.frame(0, 0, 16, 16, DARK)
    f.rect(4, 3, 7, 5, shade(colour, 1.6))  # a glint, away from the centre
    return f


def group_button(fill, minus):
    """The collapse button: a plus (collapsed) or a minus (expanded), the marker at (2, 2)
    inside the outline; the sign crosses the centre."""
    f = Face(14, 14, fill)
    f.frame(0, 0, 14, 14, DARK)
    f.rect(3, 6, 11, 8, (250, 250, 250))
    if not minus:
        f.rect(6, 3, 8, 11, (250, 250, 250))
    return f


def solid(width, height, colour):
    return Face(width, height, colour)


# (constant name, id, face, marker, accent): the marker is the colour at the centre (for a
# track: of its left half; for the group's button: at (2, 2)), the accent that of a
# track's right half, else the outline.
BLUE, LIGHT_BLUE, DEEP_BLUE = (70, 110, 160), (96, 156, 216), (36, 64, 104)
ORANGE, GREEN = (212, 124, 44), (60, 164, 92)
AMBER, DEEP_AMBER = (224, 168, 48), (150, 100, 20)
PLUM, DEEP_PLUM = (150, 96, 160), (92, 48, 104)
STEEL = (150, 160, 176)
FACES = [
    ("kButtonNormal", 20001, button(BLUE), BLUE, DARK),
    ("kButtonRollover", 20002, button(LIGHT_BLUE), LIGHT_BLUE, DARK),
    ("kButtonClick", 20003, button(DEEP_BLUE, sunken=True), DEEP_BLUE, DARK),
    ("kLargeThumb", 20010, thumb(16, 24, ORANGE), ORANGE, DARK),
    ("kSmallThumb", 20011, thumb(10, 14, GREEN), GREEN, DARK),
    ("kLargeTrack", 20012, track(64, 12, (120, 132, 204), (204, 132, 120)), (120, 132, 204), (204, 132, 120)),
    ("kSmallTrack", 20013, track(60, 8, (150, 200, 150), (200, 200, 110)), (150, 200, 150), (200, 200, 110)),
    ("kSwitchOff", 20020, switch((120, 120, 128), False), (120, 120, 128), DARK),
    ("kSwitchOn", 20021, switch((72, 150, 88), True), (72, 150, 88), DARK),
    ("kLampOff", 20022, lamp((96, 24, 24)), (96, 24, 24), DARK),
    ("kLampOn", 20023, lamp((250, 60, 40)), (250, 60, 40), DARK),
    ("kToggleNormal", 20030, button(AMBER), AMBER, DARK),
    ("kToggleClick", 20031, button(DEEP_AMBER, sunken=True), DEEP_AMBER, DARK),
    ("kThreeStateNormal", 20032, button(PLUM), PLUM, DARK),
    ("kThreeStateClick", 20033, button(DEEP_PLUM, sunken=True), DEEP_PLUM, DARK),
    # Sizes a drop list (four rows of 15 pixels and its outline); never drawn.
    ("kListSize", 20040, solid(96, 61, (255, 0, 255)), (255, 0, 255), (255, 0, 255)),
    ("kGroupCollapsed", 20050, group_button(STEEL, False), STEEL, DARK),
    ("kGroupExpanded", 20051, group_button((110, 122, 140), True), (110, 122, 140), DARK),
    # The group's frame: pieces of slightly different greys, so that a test tells each one
    # by its colour where they overlap; the top piece holds the collapse button and label.
    ("kBorderLeft", 20060, solid(8, 16, (112, 120, 136)), (112, 120, 136), (112, 120, 136)),
    ("kBorderRight", 20061, solid(8, 16, (113, 120, 136)), (113, 120, 136), (113, 120, 136)),
    ("kBorderTop", 20062, solid(16, 30, (196, 204, 216)), (196, 204, 216), (196, 204, 216)),
    ("kBorderBottom", 20063, solid(16, 8, (114, 120, 136)), (114, 120, 136), (114, 120, 136)),
    ("kBorderTopLeft", 20064, solid(6, 28, (197, 204, 216)), (197, 204, 216), (197, 204, 216)),
    ("kBorderTopRight", 20065, solid(6, 28, (198, 204, 216)), (198, 204, 216), (198, 204, 216)),
    ("kBorderBottomLeft", 20066, solid(6, 6, (115, 120, 136)), (115, 120, 136), (115, 120, 136)),
    ("kBorderBottomRight", 20067, solid(6, 6, (116, 120, 136)), (116, 120, 136), (116, 120, 136)),
]


def colorref(c):
    return c[0] | (c[1] << 8) | (c[2] << 16)


def main():
    out = os.path.join(HERE, "bmp")
    os.makedirs(out, exist_ok=True)
    manifest = ["# Generated by make_faces.py: the faces a host registers, as 'type id file'."]
    header = [
        "// Generated by tools/faces/make_faces.py. Do not edit.",
        "//",
        "// The panel faces of the demo and the tests: bitmap ids a host registers under its own",
        "// module, their sizes, and the marker colours a test reads (the centre pixel; for a track",
        "// `marker` is its left half and `accent` its right half, for the others the outline; the",
        "// group's buttons have their marker at (2, 2)).",
        "#pragma once",
        "",
        '#include "foundation/platform/wintypes.h"',
        "",
        "namespace faces {",
        "",
        "struct Face {",
        "    UINT id;",
        "    int width;",
        "    int height;",
        "    COLORREF marker;",
        "    COLORREF accent;",
        "};",
        "",
    ]
    for name, ident, face, marker, accent in FACES:
        if name.startswith("kGroup"):
            at = (2, 2)
        else:
            at = (face.w // 4 if name.endswith("Track") else face.w // 2, face.h // 2)
        assert face.px[at[1]][at[0]] == marker, name
        file = "%d.bmp" % ident
        with open(os.path.join(out, file), "wb") as f:
            f.write(face.bmp())
        manifest.append("BITMAP %d bmp/%s" % (ident, file))
        header.append("constexpr Face %s{%d, %d, %d, 0x%06X, 0x%06X};" % (
            name, ident, face.w, face.h, colorref(marker), colorref(accent)))
    header += [
        "",
        "// Registers every face under GetModuleHandleA(nullptr); false if one was refused.",
        "bool RegisterFaces();",
        "",
        "}  // namespace faces",
        "",
    ]
    with open(os.path.join(HERE, "faces.list"), "w", newline="\n") as f:
        f.write("\n".join(manifest) + "\n")
    with open(os.path.join(HERE, "faces.h"), "w", newline="\n") as f:
        f.write("\n".join(header))


if __name__ == "__main__":
    main()
