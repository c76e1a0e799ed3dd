// Pixel algorithms of the drawing layer: raster operation masks, the one-pixel line,
// cosmetic dash rhythms, ellipse rows, nearest-neighbour maps, hatch patterns.
#include "foundation/platform/gui/gdi_raster_p.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>

#include "foundation/platform/afxgdi.h"

namespace orlex::gdi {

Rop2::Rop2(int mode) {
    if (mode < R2_BLACK || mode > R2_WHITE) mode = R2_COPYPEN;
    const unsigned t = static_cast<unsigned>(mode - 1);  // truth table over (pen, dst)
    m11 = (t & 8) ? ~0u : 0u;
    m10 = (t & 4) ? ~0u : 0u;
    m01 = (t & 2) ? ~0u : 0u;
    m00 = (t & 1) ? ~0u : 0u;
}

Rop3::Rop3(DWORD code) {
    table = static_cast<std::uint8_t>((code >> 16) & 0xFF);
    for (int i = 0; i < 8; ++i) m[i] = (table >> i) & 1 ? ~0u : 0u;
}

void LinePixels(int x0, int y0, int x1, int y1, std::vector<POINT>& out) {
    const int dx = std::abs(x1 - x0), dy = std::abs(y1 - y0);
    const int sx = x1 >= x0 ? 1 : -1, sy = y1 >= y0 ? 1 : -1;
    if (dx == 0 && dy == 0) return;
    if (dx >= dy) {
        // err tracks 2*dmajor*(true minor - drawn minor) shifted so that a tie steps.
        long long err = 2LL * dy - dx;
        int y = y0;
        out.reserve(out.size() + static_cast<std::size_t>(dx));
        for (int i = 0, x = x0; i < dx; ++i, x += sx) {
            out.push_back(POINT{x, y});
            if (err >= 0) { y += sy; err -= 2LL * dx; }
            err += 2LL * dy;
        }
    } else {
        long long err = 2LL * dx - dy;
        int x = x0;
        out.reserve(out.size() + static_cast<std::size_t>(dy));
        for (int i = 0, y = y0; i < dy; ++i, y += sy) {
            out.push_back(POINT{x, y});
            if (err >= 0) { x += sx; err -= 2LL * dy; }
            err += 2LL * dx;
        }
    }
}

const std::vector<int>& DashPattern(int style) {
    // Cosmetic rhythms in device pixels: dash 18/6 (3:1), dot 1/1, dash-dot 9/6/3/6,
    // dash-dot-dot 9/3/3/3/3/3, alternate 1/1.
    static const std::vector<int> none;
    static const std::vector<int> dash{18, 6};
    static const std::vector<int> dot{1, 1};
    static const std::vector<int> dashDot{9, 6, 3, 6};
    static const std::vector<int> dashDotDot{9, 3, 3, 3, 3, 3};
    switch (style & PS_STYLE_MASK) {
    case PS_DASH: return dash;
    case PS_DOT: return dot;
    case PS_DASHDOT: return dashDot;
    case PS_DASHDOTDOT: return dashDotDot;
    case PS_ALTERNATE: return dot;
    default: return none;
    }
}

bool DashOn(const std::vector<int>& pattern, long long pos) {
    if (pattern.empty()) return true;
    int period = 0;
    for (int v : pattern) period += v;
    long long p = pos % period;
    if (p < 0) p += period;
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (p < pattern[i]) return (i & 1) == 0;
        p -= pattern[i];
    }
    return false;
}

void EllipseSpans(int l, int t, int r, int b, std::vector<Span>& out) {
    if (r < l) std::swap(l, r);
    if (b < t) std::swap(t, b);
    const int w = r - l, h = b - t;
    if (w < 1 || h < 1) return;
    // Centres of the outer pixels lie on the ellipse's axes ends; the radii get half a pixel
    // so that every row and column of the box holds at least its middle pixel.
    const double cx = l + (w - 1) * 0.5, cy = t + (h - 1) * 0.5;
    const double a = w * 0.5, bb = h * 0.5;
    for (int y = t; y < b; ++y) {
        const double fy = (y - cy) / bb;
        const double q = 1.0 - fy * fy;
        if (q <= 0) continue;
        const double half = a * std::sqrt(q);
        // Pixels whose centre x satisfies |x - cx| < half.
        int x0 = static_cast<int>(std::ceil(cx - half + 1e-9));
        int x1 = static_cast<int>(std::floor(cx + half - 1e-9)) + 1;
        if (x0 < l) x0 = l;
        if (x1 > r) x1 = r;
        if (x1 > x0) out.push_back(Span{y, x0, x1});
    }
}

void SpanOutline(const std::vector<Span>& spans, std::vector<POINT>& out) {
    // Spans arrive one per row, rows increasing. A pixel is on the outline when it ends its
    // run or when the row above or below does not cover it: per row, the run less the
    // neighbours' runs, worked out on intervals so that wide shapes cost their outline only.
    for (std::size_t i = 0; i < spans.size(); ++i) {
        const Span& s = spans[i];
        std::vector<std::pair<int, int>> parts;  // [a, b) intervals on the outline
        parts.emplace_back(s.x0, s.x0 + 1);
        parts.emplace_back(s.x1 - 1, s.x1);
        auto uncovered = [&](bool have, const Span& n) {
            if (!have) { parts.emplace_back(s.x0, s.x1); return; }
            if (n.x0 > s.x0) parts.emplace_back(s.x0, std::min(n.x0, s.x1));
            if (n.x1 < s.x1) parts.emplace_back(std::max(n.x1, s.x0), s.x1);
        };
        uncovered(i > 0 && spans[i - 1].y == s.y - 1, i > 0 ? spans[i - 1] : s);
        uncovered(i + 1 < spans.size() && spans[i + 1].y == s.y + 1, i + 1 < spans.size() ? spans[i + 1] : s);
        std::sort(parts.begin(), parts.end());
        int next = s.x0;  // first x not yet emitted; parts are sorted by their start
        for (const auto& [a, b] : parts) {
            for (int x = std::max(a, next); x < b; ++x) out.push_back(POINT{x, s.y});
            next = std::max(next, b);
        }
    }
}

void StretchMap(int dstLen, int srcLen, bool mirror, std::vector<int>& out) {
    StretchMap(dstLen, srcLen, mirror, out, 0, dstLen);
}

void StretchMap(int dstLen, int srcLen, bool mirror, std::vector<int>& out, int from, int to) {
    from = std::max(0, from);
    to = std::min(dstLen, to);
    out.resize(to > from ? static_cast<std::size_t>(to - from) : 0);
    if (srcLen <= 0) return;
    const long long twoDst = 2LL * dstLen;
    for (int i = from; i < to; ++i) {
        int j = static_cast<int>(((2LL * i + 1) * srcLen) / twoDst);
        if (j >= srcLen) j = srcLen - 1;
        out[static_cast<std::size_t>(i - from)] = mirror ? srcLen - 1 - j : j;
    }
}

bool HatchBit(int style, int x, int y) {
    switch (style) {
    case HS_HORIZONTAL: return y == 7;
    case HS_VERTICAL: return x == 7;
    case HS_FDIAGONAL: return x == y;
    case HS_BDIAGONAL: return x + y == 7;
    case HS_CROSS: return x == 7 || y == 7;
    case HS_DIAGCROSS: return x == y || x + y == 7;
    default: return false;
    }
}

double ScreenAngle(double cx, double cy, double x, double y) {
    double a = std::atan2(cy - y, x - cx);
    if (a < 0) a += 2 * M_PI;
    return a;
}

bool AngleInSweep(double a, double start, double end) {
    if (std::fabs(start - end) < 1e-12) return true;
    double sweep = end - start;
    if (sweep < 0) sweep += 2 * M_PI;
    double d = a - start;
    if (d < 0) d += 2 * M_PI;
    return d <= sweep + 1e-9;
}

}  // namespace orlex::gdi
