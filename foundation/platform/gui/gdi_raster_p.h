// Private to the drawing layer: the pixel algorithms, free of device contexts and of Qt.
// Pixels are 32-bit 0xAARRGGBB words (the layout of the window surfaces); raster operations
// work on the low 24 bits and leave alpha at 0xFF.
#pragma once

#include <cstdint>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::gdi {

constexpr std::uint32_t kAlpha = 0xFF000000u;

// COLORREF (red in the low byte) <-> surface pixel (red in bits 16..23).
constexpr std::uint32_t ToPixel(COLORREF c) {
    return kAlpha | ((c & 0xFFu) << 16) | (c & 0xFF00u) | ((c >> 16) & 0xFFu);
}
constexpr COLORREF ToColorref(std::uint32_t p) {
    return ((p >> 16) & 0xFFu) | (p & 0xFF00u) | ((p & 0xFFu) << 16);
}

// A line raster operation (R2_BLACK..R2_WHITE) as four masks over (pen, destination):
// result = m11&P&D | m10&P&~D | m01&~P&D | m00&~P&~D. Built once per call so that the
// per-pixel work has no branch on the mode.
struct Rop2 {
    std::uint32_t m11 = 0, m10 = 0, m01 = 0, m00 = 0;
    explicit Rop2(int mode);
    std::uint32_t Apply(std::uint32_t pen, std::uint32_t dst) const {
        return kAlpha | (((m11 & pen & dst) | (m10 & pen & ~dst) | (m01 & ~pen & dst) | (m00 & ~pen & ~dst)) & 0x00FFFFFFu);
    }
    bool IsCopy() const { return m11 == ~0u && m10 == ~0u && m01 == 0 && m00 == 0; }
    bool IsNop() const { return m11 == ~0u && m01 == ~0u && m10 == 0 && m00 == 0; }
};

// A ternary raster operation over pattern, source and destination (the truth-table byte
// of a blit code).
struct Rop3 {
    std::uint32_t m[8] = {};  // m[p<<2 | s<<1 | d]
    explicit Rop3(DWORD code);
    std::uint8_t table = 0;
    bool UsesSource() const { return ((table >> 2) & 0x33) != (table & 0x33); }
    bool UsesPattern() const { return ((table >> 4) & 0x0F) != (table & 0x0F); }
    std::uint32_t Apply(std::uint32_t p, std::uint32_t s, std::uint32_t d) const {
        std::uint32_t r = (m[7] & p & s & d) | (m[6] & p & s & ~d) | (m[5] & p & ~s & d) | (m[4] & p & ~s & ~d) |
                          (m[3] & ~p & s & d) | (m[2] & ~p & s & ~d) | (m[1] & ~p & ~s & d) | (m[0] & ~p & ~s & ~d);
        return kAlpha | (r & 0x00FFFFFFu);
    }
};

// The pixels of a one-pixel line from (x0,y0) towards (x1,y1), its end pixel left out:
// max(|dx|,|dy|) pixels. The minor coordinate of step i is the major-axis fraction rounded
// half away from the start. Appends to out (x, y pairs).
void LinePixels(int x0, int y0, int x1, int y1, std::vector<POINT>& out);

// On/off rhythm of a cosmetic pen style (PS_DASH, PS_DOT, PS_DASHDOT, PS_DASHDOTDOT,
// PS_ALTERNATE): lengths of alternating on and off runs, starting with on. Empty for
// styles drawn solid.
const std::vector<int>& DashPattern(int style);
// True when step `pos` of the rhythm is an "on" pixel.
bool DashOn(const std::vector<int>& pattern, long long pos);

// A horizontal run of pixels [x0, x1) on row y.
struct Span {
    int y, x0, x1;
};
// The pixels inside the ellipse that fits the box [l, r) x [t, b): rows t..b-1, each a
// centred run; empty for a box under one pixel wide or high. A pixel is in when its
// centre lies inside the ellipse through the box's outer pixel centres, widened by half a
// pixel so that thin ellipses keep their ends.
void EllipseSpans(int l, int t, int r, int b, std::vector<Span>& out);
// The outline of a set of row spans: the pixels of the set with a 4-neighbour outside it.
void SpanOutline(const std::vector<Span>& spans, std::vector<POINT>& out);

// Nearest-neighbour sampling map: for each of dstLen destination pixels, the source index
// in [0, srcLen) sampled at the destination pixel's centre; mirrored when asked.
void StretchMap(int dstLen, int srcLen, bool mirror, std::vector<int>& out);
// The same for the destination pixels from .. to - 1 only, out[0] being pixel `from`: a
// stretch clipped to a narrow part of a wide destination maps (and allocates) only that
// part.
void StretchMap(int dstLen, int srcLen, bool mirror, std::vector<int>& out, int from, int to);

// 8x8 hatch pattern bit (x, y in 0..7) of an HS_* style.
bool HatchBit(int style, int x, int y);

// Angle of (x, y) from the centre (cx, cy) counter-clockwise from the +x axis, with y down
// on the screen, in radians [0, 2pi).
double ScreenAngle(double cx, double cy, double x, double y);
// True when angle a lies on the counter-clockwise sweep from start to end (equal start and
// end: the whole turn).
bool AngleInSweep(double a, double start, double end);

}  // namespace orlex::gdi
