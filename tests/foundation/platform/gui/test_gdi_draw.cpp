// Pixel-exact drawing on memory contexts: line end pixels, raster operations, dash rhythms,
// shapes, clipping, blits, DIB stretching, map modes, saved states, regions.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// A memory context with a w x h bitmap filled with one colour.
struct Canvas {
    CDC dc;
    CBitmap bmp;
    CBitmap* old = nullptr;
    int w, h;
    Canvas(int width, int height, COLORREF fill = kWhite) : w(width), h(height) {
        dc.CreateCompatibleDC(nullptr);
        bmp.CreateCompatibleBitmap(&dc, w, h);
        old = dc.SelectObject(&bmp);
        dc.FillSolidRect(0, 0, w, h, fill);
    }
    ~Canvas() { dc.SelectObject(old); }
    // Reads device pixels whatever clip and mapping the test left selected.
    COLORREF At(int x, int y) const {
        CDC& d = const_cast<CDC&>(dc);
        const int saved = d.SaveDC();
        d.SelectClipRgn(nullptr);
        d.SetMapMode(MM_TEXT);
        d.SetWindowOrg(0, 0);
        d.SetViewportOrg(0, 0);
        const COLORREF c = d.GetPixel(x, y);
        d.RestoreDC(saved);
        return c;
    }
    // The picture as rows of characters: '.' white, '#' black, 'r' red, 'b' blue, '?' other.
    std::string Grid() const {
        std::string s;
        for (int y = 0; y < h; ++y) {
            for (int x = 0; x < w; ++x) {
                const COLORREF c = At(x, y);
                s += c == kWhite ? '.' : c == kBlack ? '#' : c == kRed ? 'r' : c == kBlue ? 'b' : '?';
            }
            s += '\n';
        }
        return s;
    }
    std::vector<COLORREF> Pixels() const {
        std::vector<COLORREF> v;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) v.push_back(At(x, y));
        return v;
    }
    std::vector<POINT> Black() const {
        std::vector<POINT> v;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                if (At(x, y) == kBlack) v.push_back(POINT{x, y});
        return v;
    }
};

std::string Rows(std::initializer_list<const char*> rows) {
    std::string s;
    for (const char* r : rows) (s += r) += '\n';
    return s;
}

bool SamePoints(std::vector<POINT> a, std::vector<POINT> b) {
    auto key = [](const POINT& p) { return std::make_pair(p.y, p.x); };
    std::sort(a.begin(), a.end(), [&](auto& l, auto& r) { return key(l) < key(r); });
    std::sort(b.begin(), b.end(), [&](auto& l, auto& r) { return key(l) < key(r); });
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].x != b[i].x || a[i].y != b[i].y) return false;
    return true;
}

// Lines ----------------------------------------------------------------------------------------
struct LineCase {
    const char* name;
    POINT from, to;
    std::vector<POINT> pixels;
};

TEST(GdiLines, LineToLeavesOutTheEndPixel) {
    const LineCase cases[] = {
        {"horizontal", {1, 1}, {5, 1}, {{1, 1}, {2, 1}, {3, 1}, {4, 1}}},
        {"leftwards", {4, 1}, {1, 1}, {{4, 1}, {3, 1}, {2, 1}}},
        {"vertical", {2, 0}, {2, 3}, {{2, 0}, {2, 1}, {2, 2}}},
        {"upwards", {2, 5}, {2, 3}, {{2, 5}, {2, 4}}},
        {"diagonal", {0, 0}, {3, 3}, {{0, 0}, {1, 1}, {2, 2}}},
        {"shallow", {0, 0}, {4, 2}, {{0, 0}, {1, 1}, {2, 1}, {3, 2}}},
        {"steep", {0, 0}, {1, 3}, {{0, 0}, {0, 1}, {1, 2}}},
        {"zero length", {3, 3}, {3, 3}, {}},
    };
    for (const LineCase& c : cases) {
        Canvas cv(8, 8);
        cv.dc.MoveTo(c.from);
        cv.dc.LineTo(c.to);
        EXPECT_TRUE(SamePoints(cv.Black(), c.pixels)) << c.name << "\n" << cv.Grid();
        EXPECT_EQ(cv.dc.GetCurrentPosition(), c.to) << c.name;
    }
}

TEST(GdiLines, InvertedClosedOutlineCoversEachCornerOnceAndUndoes) {
    Canvas cv(8, 6);
    cv.dc.SetROP2(R2_NOT);
    auto outline = [&] {
        cv.dc.MoveTo(1, 1);
        cv.dc.LineTo(6, 1);
        cv.dc.LineTo(6, 4);
        cv.dc.LineTo(1, 4);
        cv.dc.LineTo(1, 1);
    };
    outline();
    EXPECT_EQ(cv.Grid(), Rows({"........", ".######.", ".#....#.", ".#....#.", ".######.", "........"}));
    outline();
    EXPECT_EQ(cv.Grid(), Rows({"........", "........", "........", "........", "........", "........"}));
}

// The 16 line raster operations on a known destination, against their definitions.
TEST(GdiLines, EveryLineRasterOperation) {
    const COLORREF pen = RGB(0xC0, 0xA0, 0x50), dst = RGB(0x33, 0x66, 0x99);
    using F = std::function<DWORD(DWORD, DWORD)>;
    const std::pair<int, F> ops[] = {
        {R2_BLACK, [](DWORD, DWORD) { return 0u; }},
        {R2_NOTMERGEPEN, [](DWORD p, DWORD d) { return ~(p | d); }},
        {R2_MASKNOTPEN, [](DWORD p, DWORD d) { return ~p & d; }},
        {R2_NOTCOPYPEN, [](DWORD p, DWORD) { return ~p; }},
        {R2_MASKPENNOT, [](DWORD p, DWORD d) { return p & ~d; }},
        {R2_NOT, [](DWORD, DWORD d) { return ~d; }},
        {R2_XORPEN, [](DWORD p, DWORD d) { return p ^ d; }},
        {R2_NOTMASKPEN, [](DWORD p, DWORD d) { return ~(p & d); }},
        {R2_MASKPEN, [](DWORD p, DWORD d) { return p & d; }},
        {R2_NOTXORPEN, [](DWORD p, DWORD d) { return ~(p ^ d); }},
        {R2_NOP, [](DWORD, DWORD d) { return d; }},
        {R2_MERGENOTPEN, [](DWORD p, DWORD d) { return ~p | d; }},
        {R2_COPYPEN, [](DWORD p, DWORD) { return p; }},
        {R2_MERGEPENNOT, [](DWORD p, DWORD d) { return p | ~d; }},
        {R2_MERGEPEN, [](DWORD p, DWORD d) { return p | d; }},
        {R2_WHITE, [](DWORD, DWORD) { return 0xFFFFFFu; }},
    };
    for (const auto& [mode, f] : ops) {
        Canvas cv(4, 1, dst);
        CPen p(PS_SOLID, 1, pen);
        cv.dc.SelectObject(&p);
        cv.dc.SetROP2(mode);
        cv.dc.MoveTo(1, 0);
        cv.dc.LineTo(3, 0);  // pixels 1 and 2
        EXPECT_EQ(cv.dc.GetPixel(1, 0), f(pen, dst) & 0xFFFFFF) << "mode " << mode;
        EXPECT_EQ(cv.dc.GetPixel(3, 0), dst) << "mode " << mode;
        cv.dc.SelectStockObject(BLACK_PEN);
    }
}

TEST(GdiLines, CosmeticDashRhythms) {
    struct Case {
        int style;
        int bkMode;
        const char* row;  // the first 40 pixels of a line from x = 0
    };
    const Case cases[] = {
        {PS_DOT, TRANSPARENT, "#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#."},
        {PS_DASH, TRANSPARENT, "##################......##################"},
        {PS_DASHDOT, TRANSPARENT, "#########......###......#########......###"},
        {PS_DASHDOTDOT, TRANSPARENT, "#########...###...###...#########...###..."},
        {PS_DOT, OPAQUE, "#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r#r"},
        {PS_SOLID, OPAQUE, "########################################"},
    };
    for (const Case& c : cases) {
        Canvas cv(40, 1);
        CPen pen(c.style, 0, kBlack);
        cv.dc.SelectObject(&pen);
        cv.dc.SetBkMode(c.bkMode);
        cv.dc.SetBkColor(kRed);
        cv.dc.MoveTo(0, 0);
        cv.dc.LineTo(40, 0);
        EXPECT_EQ(cv.Grid(), std::string(c.row).substr(0, 40) + "\n") << "style " << c.style << " mode " << c.bkMode;
        cv.dc.SelectStockObject(BLACK_PEN);
    }
}

TEST(GdiLines, DotRhythmRunsOnAcrossPolylineSegments) {
    Canvas cv(10, 5);
    CPen pen(PS_DOT, 0, kBlack);
    cv.dc.SelectObject(&pen);
    cv.dc.SetBkMode(TRANSPARENT);
    const POINT pts[] = {{0, 0}, {5, 0}, {5, 4}};
    cv.dc.Polyline(pts, 3);
    // 5 pixels along the top (on at 0, 2, 4), then down from (5,0): step 5 is off.
    EXPECT_EQ(cv.Grid(), Rows({"#.#.#.....", ".....#....", "..........", ".....#....", ".........."}));
    cv.dc.SelectStockObject(BLACK_PEN);
}

// Shapes ------------------------------------------------------------------------------------------
TEST(GdiShapes, RectanglesLeaveOutRightAndBottom) {
    CBrush red(kRed);
    struct Case {
        const char* name;
        std::function<void(CDC&)> draw;
        std::string grid;
    };
    const Case cases[] = {
        {"Rectangle with pen and brush", [&](CDC& dc) { dc.SelectObject(&red); dc.Rectangle(1, 1, 6, 5); },
         Rows({".......", ".#####.", ".#rrr#.", ".#rrr#.", ".#####.", "......."})},
        {"Rectangle with the null pen is a pixel smaller",
         [&](CDC& dc) { dc.SelectObject(&red); dc.SelectStockObject(NULL_PEN); dc.Rectangle(1, 1, 6, 5); },
         Rows({".......", ".rrrr..", ".rrrr..", ".rrrr..", ".......", "......."})},
        {"FillRect", [&](CDC& dc) { RECT r{1, 1, 6, 5}; dc.FillRect(&r, &red); },
         Rows({".......", ".rrrrr.", ".rrrrr.", ".rrrrr.", ".rrrrr.", "......."})},
        {"FrameRect", [&](CDC& dc) { RECT r{1, 1, 6, 5}; dc.FrameRect(&r, &red); },
         Rows({".......", ".rrrrr.", ".r...r.", ".r...r.", ".rrrrr.", "......."})},
        {"FillSolidRect", [&](CDC& dc) { dc.FillSolidRect(2, 1, 3, 2, kBlue); },
         Rows({".......", "..bbb..", "..bbb..", ".......", ".......", "......."})},
        {"Rectangle with a hollow brush", [&](CDC& dc) { dc.SelectStockObject(HOLLOW_BRUSH); dc.Rectangle(1, 1, 4, 4); },
         Rows({".......", ".###...", ".#.#...", ".###...", ".......", "......."})},
    };
    for (const Case& c : cases) {
        Canvas cv(7, 6);
        const int saved = cv.dc.SaveDC();
        c.draw(cv.dc);
        cv.dc.RestoreDC(saved);
        EXPECT_EQ(cv.Grid(), c.grid) << c.name;
    }
}

TEST(GdiShapes, EllipseStaysInItsBoxAndIsSymmetric) {
    Canvas cv(9, 9);
    cv.dc.SelectStockObject(HOLLOW_BRUSH);
    cv.dc.Ellipse(0, 0, 7, 7);
    const std::string g = cv.Grid();
    std::vector<std::string> rows;
    for (std::size_t p = 0; p < g.size(); p = g.find('\n', p) + 1) rows.push_back(g.substr(p, 9));
    for (int y = 0; y < 9; ++y) {
        EXPECT_EQ(rows[y][7], '.') << g;
        EXPECT_EQ(rows[y][8], '.') << g;
        for (int x = 0; x < 7; ++x) {
            if (y < 7) {
                EXPECT_EQ(rows[y][x], rows[6 - y][x]) << g;
                EXPECT_EQ(rows[y][x], rows[y][6 - x]) << g;
            }
        }
    }
    EXPECT_EQ(rows[7], ".........");
    // The four extreme points of the box are on the outline.
    EXPECT_EQ(rows[0][3], '#');
    EXPECT_EQ(rows[3][0], '#');
    EXPECT_EQ(rows[6][3], '#');
    EXPECT_EQ(rows[3][6], '#');
    EXPECT_EQ(rows[3][3], '.');
}

TEST(GdiShapes, ArcWithEqualEndsIsTheWholeOutline) {
    Canvas a(12, 12), b(12, 12);
    b.dc.SelectStockObject(HOLLOW_BRUSH);
    b.dc.Ellipse(1, 1, 11, 10);
    a.dc.Arc(1, 1, 11, 10, 11, 5, 11, 5);
    EXPECT_EQ(a.Grid(), b.Grid());
    // A quarter from the right ray to the top ray (counter-clockwise): only the upper right.
    Canvas q(12, 12);
    q.dc.Arc(1, 1, 11, 10, 20, 5, 5, -20);
    for (const POINT& p : q.Black()) {
        EXPECT_GE(p.x, 5);
        EXPECT_LE(p.y, 5);
    }
    EXPECT_FALSE(q.Black().empty());
}

TEST(GdiShapes, InvertingShapesTwiceRestoresThePicture) {
    const std::function<void(CDC&)> shapes[] = {
        [](CDC& dc) { dc.Rectangle(2, 2, 15, 11); },
        [](CDC& dc) { dc.Ellipse(1, 2, 18, 13); },
        [](CDC& dc) { const POINT p[] = {{2, 2}, {16, 4}, {9, 13}, {3, 9}}; dc.Polygon(p, 4); },
        [](CDC& dc) { dc.Pie(1, 1, 18, 14, 18, 7, 9, 0); },
        [](CDC& dc) { dc.Chord(1, 1, 18, 14, 18, 7, 9, 0); },
        [](CDC& dc) { const POINT p[] = {{0, 0}, {17, 3}, {4, 12}, {19, 13}}; dc.Polyline(p, 4); },
        [](CDC& dc) { RECT r{3, 3, 12, 9}; dc.DrawFocusRect(&r); },
    };
    int i = 0;
    for (const auto& draw : shapes) {
        Canvas cv(20, 15);
        // A varied background.
        for (int y = 0; y < 15; ++y)
            for (int x = 0; x < 20; ++x) cv.dc.SetPixelV(x, y, RGB(x * 12, y * 17, (x * y) & 0xFF));
        const auto before = cv.Pixels();
        CBrush brush(RGB(0x12, 0x34, 0x56));
        CPen pen(PS_SOLID, 0, RGB(0x80, 0x40, 0x20));
        cv.dc.SelectObject(&brush);
        cv.dc.SelectObject(&pen);
        cv.dc.SetROP2(R2_XORPEN);
        draw(cv.dc);
        EXPECT_NE(cv.Pixels(), before) << "shape " << i;
        draw(cv.dc);
        EXPECT_EQ(cv.Pixels(), before) << "shape " << i;
        cv.dc.SelectStockObject(BLACK_PEN);
        cv.dc.SelectStockObject(WHITE_BRUSH);
        ++i;
    }
}

TEST(GdiShapes, HatchedBrushDrawsOnlyItsLinesWhenTransparent) {
    Canvas cv(8, 8);
    CBrush hatch(HS_CROSS, kBlack);
    RECT r{0, 0, 8, 8};
    cv.dc.SetBkMode(TRANSPARENT);
    cv.dc.FillRect(&r, &hatch);
    const std::string g = cv.Grid();
    int black = 0;
    for (char c : g) black += c == '#';
    EXPECT_EQ(black, 15) << g;  // one row and one column of the 8x8 cell
    cv.dc.SetBkMode(OPAQUE);
    cv.dc.SetBkColor(kRed);
    cv.dc.FillRect(&r, &hatch);
    int red = 0;
    for (char c : cv.Grid()) red += c == 'r';
    EXPECT_EQ(red, 64 - 15);
}

// Clipping ---------------------------------------------------------------------------------------------
TEST(GdiClip, ClipRectanglesAndRegions) {
    CBrush red(kRed);
    RECT all{0, 0, 6, 4};
    struct Case {
        const char* name;
        std::function<void(CDC&)> clip;
        std::string grid;
        RECT box;
    };
    const Case cases[] = {
        {"none", [](CDC&) {}, Rows({"rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr"}), {0, 0, 6, 4}},
        {"intersect", [](CDC& dc) { dc.IntersectClipRect(1, 1, 4, 3); }, Rows({"......", ".rrr..", ".rrr..", "......"}),
         {1, 1, 4, 3}},
        {"exclude", [](CDC& dc) { dc.ExcludeClipRect(1, 0, 5, 4); }, Rows({"r....r", "r....r", "r....r", "r....r"}),
         {0, 0, 6, 4}},
        {"region", [](CDC& dc) { CRgn r; r.CreateRectRgn(2, 0, 3, 4); dc.SelectClipRgn(&r); },
         Rows({"..r...", "..r...", "..r...", "..r..."}), {2, 0, 3, 4}},
        {"region removed", [](CDC& dc) { dc.IntersectClipRect(0, 0, 1, 1); dc.SelectClipRgn(nullptr); },
         Rows({"rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr"}), {0, 0, 6, 4}},
    };
    for (const Case& c : cases) {
        Canvas cv(6, 4);
        c.clip(cv.dc);
        RECT box;
        cv.dc.GetClipBox(&box);
        EXPECT_TRUE(EqualRect(&box, &c.box)) << c.name << " " << box.left << "," << box.top << "," << box.right << "," << box.bottom;
        cv.dc.FillRect(&all, &red);
        EXPECT_EQ(cv.Grid(), c.grid) << c.name;
    }
}

TEST(GdiClip, EmptyClipReportsNullRegionAndDrawsNothing) {
    Canvas cv(4, 4);
    cv.dc.IntersectClipRect(0, 0, 2, 2);
    cv.dc.IntersectClipRect(2, 2, 4, 4);
    RECT box;
    EXPECT_EQ(cv.dc.GetClipBox(&box), NULLREGION);
    cv.dc.FillSolidRect(0, 0, 4, 4, kRed);
    EXPECT_EQ(cv.Grid(), Rows({"....", "....", "....", "...."}));
}

// Blits --------------------------------------------------------------------------------------------------
TEST(GdiBlit, TernaryOperationsOnKnownPixels) {
    const COLORREF s = RGB(0xF0, 0xCC, 0x0F), d = RGB(0x3C, 0xAA, 0x55), p = RGB(0x0F, 0x5A, 0xFF);
    using F = std::function<DWORD(DWORD, DWORD, DWORD)>;
    const std::pair<DWORD, F> ops[] = {
        {SRCCOPY, [](DWORD, DWORD s, DWORD) { return s; }},
        {SRCPAINT, [](DWORD, DWORD s, DWORD d) { return s | d; }},
        {SRCAND, [](DWORD, DWORD s, DWORD d) { return s & d; }},
        {SRCINVERT, [](DWORD, DWORD s, DWORD d) { return s ^ d; }},
        {SRCERASE, [](DWORD, DWORD s, DWORD d) { return s & ~d; }},
        {NOTSRCCOPY, [](DWORD, DWORD s, DWORD) { return ~s; }},
        {NOTSRCERASE, [](DWORD, DWORD s, DWORD d) { return ~(s | d); }},
        {MERGECOPY, [](DWORD p, DWORD s, DWORD) { return p & s; }},
        {MERGEPAINT, [](DWORD, DWORD s, DWORD d) { return ~s | d; }},
        {PATCOPY, [](DWORD p, DWORD, DWORD) { return p; }},
        {PATPAINT, [](DWORD p, DWORD s, DWORD d) { return p | ~s | d; }},
        {PATINVERT, [](DWORD p, DWORD, DWORD d) { return p ^ d; }},
        {DSTINVERT, [](DWORD, DWORD, DWORD d) { return ~d; }},
        {BLACKNESS, [](DWORD, DWORD, DWORD) { return 0u; }},
        {WHITENESS, [](DWORD, DWORD, DWORD) { return 0xFFFFFFu; }},
    };
    for (const auto& [rop, f] : ops) {
        Canvas src(3, 3, s), dst(3, 3, d);
        CBrush brush(p);
        dst.dc.SelectObject(&brush);
        EXPECT_TRUE(dst.dc.BitBlt(1, 1, 1, 1, &src.dc, 0, 0, rop));
        EXPECT_EQ(dst.dc.GetPixel(1, 1), f(p, s, d) & 0xFFFFFF) << std::hex << rop;
        EXPECT_EQ(dst.dc.GetPixel(0, 0), d) << std::hex << rop;
        EXPECT_EQ(dst.dc.GetPixel(2, 1), d) << std::hex << rop;
        dst.dc.SelectStockObject(WHITE_BRUSH);
    }
}

TEST(GdiBlit, CopyWithOffsetsOverlapAndInvertTwice) {
    Canvas src(4, 3), dst(6, 5);
    src.dc.SetPixelV(0, 0, kRed);
    src.dc.SetPixelV(3, 2, kBlue);
    src.dc.SetPixelV(1, 1, kBlack);
    dst.dc.BitBlt(2, 1, 4, 3, &src.dc, 0, 0, SRCCOPY);
    EXPECT_EQ(dst.Grid(), Rows({"......", "..r...", "...#..", ".....b", "......"}));
    // Within one bitmap, overlapping: the source is read before it is overwritten.
    dst.dc.BitBlt(1, 1, 5, 3, &dst.dc, 2, 1, SRCCOPY);
    EXPECT_EQ(dst.Grid(), Rows({"......", ".r....", "..#...", "....bb", "......"}));
    const auto before = dst.Pixels();
    dst.dc.BitBlt(0, 0, 4, 3, &src.dc, 0, 0, SRCINVERT);
    dst.dc.BitBlt(0, 0, 4, 3, &src.dc, 0, 0, SRCINVERT);
    EXPECT_EQ(dst.Pixels(), before);
}

TEST(GdiBlit, StretchBltNearestAndMirrored) {
    Canvas src(2, 2), dst(4, 4);
    src.dc.SetPixelV(0, 0, kRed);
    src.dc.SetPixelV(1, 1, kBlue);
    dst.dc.StretchBlt(0, 0, 4, 4, &src.dc, 0, 0, 2, 2, SRCCOPY);
    EXPECT_EQ(dst.Grid(), Rows({"rr..", "rr..", "..bb", "..bb"}));
    dst.dc.StretchBlt(4, 0, -4, 4, &src.dc, 0, 0, 2, 2, SRCCOPY);  // mirrored left-right
    EXPECT_EQ(dst.Grid(), Rows({"..rr", "..rr", "bb..", "bb.."}));
}

TEST(GdiBlit, StretchBltClippedToANarrowPartSamplesAsTheWholeDoes) {
    // Only the clipped columns are mapped; each must take the source pixel it takes in a
    // copy without clip (a thumb repainting part of a wide stretched track).
    Canvas src(3, 1), whole(12, 1);
    src.dc.SetPixelV(0, 0, kRed);
    src.dc.SetPixelV(2, 0, kBlue);
    whole.dc.StretchBlt(0, 0, 12, 1, &src.dc, 0, 0, 3, 1, SRCCOPY);
    ASSERT_EQ(whole.Grid(), Rows({"rrrr....bbbb"}));
    for (const auto& [x0, x1, grid] : {std::tuple{3, 5, "...r........"}, std::tuple{7, 9, "........b..."}}) {
        Canvas part(12, 1);
        part.dc.IntersectClipRect(x0, 0, x1, 1);
        part.dc.StretchBlt(0, 0, 12, 1, &src.dc, 0, 0, 3, 1, SRCCOPY);
        EXPECT_EQ(part.Grid(), Rows({grid})) << x0;
    }
}

// DIBs -----------------------------------------------------------------------------------------------------
// An 8-bit bottom-up block of the library's layout: header, 256 colours, unpadded rows.
std::vector<unsigned char> Block8(int cols, int rows, const std::vector<BYTE>& pixelsBottomUp,
                                  const std::vector<COLORREF>& palette) {
    std::vector<unsigned char> b(1064 + pixelsBottomUp.size(), 0);
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biWidth = cols;
    h.biHeight = rows;
    h.biPlanes = 1;
    h.biBitCount = 8;
    h.biSizeImage = static_cast<DWORD>(rows * cols);
    std::memcpy(b.data(), &h, 40);
    for (std::size_t i = 0; i < palette.size(); ++i) {
        b[40 + i * 4] = GetBValue(palette[i]);
        b[40 + i * 4 + 1] = GetGValue(palette[i]);
        b[40 + i * 4 + 2] = GetRValue(palette[i]);
    }
    std::memcpy(b.data() + 1064, pixelsBottomUp.data(), pixelsBottomUp.size());
    return b;
}

TEST(GdiDib, EightBitBlockToLargerAndSmallerRectangles) {
    // 4 x 2, bottom row first: bottom = 0 1 2 3, top = 3 2 1 0 (0 white, 1 black, 2 red, 3 blue).
    const auto block = Block8(4, 2, {0, 1, 2, 3, 3, 2, 1, 0}, {kWhite, kBlack, kRed, kBlue});
    const auto* info = reinterpret_cast<const BITMAPINFO*>(block.data());
    struct Case {
        int x, y, w, h, xs, ys, ws, hs;
        std::string grid;
    };
    const Case cases[] = {
        {0, 0, 4, 2, 0, 0, 4, 2, Rows({"br#.....", ".#rb....", "........", "........"})},
        {0, 0, 8, 4, 0, 0, 4, 2, Rows({"bbrr##..", "bbrr##..", "..##rrbb", "..##rrbb"})},
        {0, 0, 2, 1, 0, 0, 4, 2, Rows({"#b......", "........", "........", "........"})},
        // Source y counts from the bottom: the bottom row alone.
        {0, 0, 4, 1, 0, 0, 4, 1, Rows({".#rb....", "........", "........", "........"})},
        // A negative destination height turns the picture over.
        {0, 2, 4, -2, 0, 0, 4, 2, Rows({".#rb....", "br#.....", "........", "........"})},
    };
    for (const Case& c : cases) {
        Canvas cv(8, 4);
        cv.dc.SetStretchBltMode(COLORONCOLOR);
        EXPECT_GT(StretchDIBits(cv.dc.m_hDC, c.x, c.y, c.w, c.h, c.xs, c.ys, c.ws, c.hs, block.data() + 1064, info,
                                DIB_RGB_COLORS, SRCCOPY), 0);
        EXPECT_EQ(cv.Grid(), c.grid) << c.w << "x" << c.h;
    }
}

TEST(GdiDib, TwentyFourBitBlockStretchedBothWays) {
    // 4 x 2 (row pitch 12, which needs no padding), bottom row first.
    const COLORREF bottom[4] = {kRed, kRed, kBlue, kBlue}, top[4] = {kBlack, kWhite, kBlack, kWhite};
    std::vector<unsigned char> b(44 + 24, 0);
    BITMAPINFOHEADER h{40, 4, 2, 1, 24, 0, 24, 0, 0, 0, 0};
    std::memcpy(b.data(), &h, 40);
    for (int x = 0; x < 4; ++x) {
        unsigned char* p0 = b.data() + 44 + x * 3;
        unsigned char* p1 = b.data() + 44 + 12 + x * 3;
        p0[0] = GetBValue(bottom[x]); p0[1] = GetGValue(bottom[x]); p0[2] = GetRValue(bottom[x]);
        p1[0] = GetBValue(top[x]); p1[1] = GetGValue(top[x]); p1[2] = GetRValue(top[x]);
    }
    const auto* info = reinterpret_cast<const BITMAPINFO*>(b.data());
    Canvas big(8, 4);
    StretchDIBits(big.dc.m_hDC, 0, 0, 8, 4, 0, 0, 4, 2, b.data() + 44, info, DIB_RGB_COLORS, SRCCOPY);
    EXPECT_EQ(big.Grid(), Rows({"##..##..", "##..##..", "rrrrbbbb", "rrrrbbbb"}));
    Canvas small(2, 1);
    StretchDIBits(small.dc.m_hDC, 0, 0, 2, 1, 0, 0, 4, 2, b.data() + 44, info, DIB_RGB_COLORS, SRCCOPY);
    EXPECT_EQ(small.Grid(), Rows({"rb"}));
}

TEST(GdiDib, HalftoneSamplesTheNearestPixelLikeColorOnColor) {
    // 4 x 2 to 2 x 1 and to 8 x 4: both modes pick the same pixels, shrinking or enlarging,
    // so one-pixel features of an image keep their exact colour.
    const auto block = Block8(4, 2, {0, 1, 2, 2, 0, 1, 3, 3},
                              {RGB(200, 100, 0), RGB(0, 0, 0), RGB(255, 0, 0), RGB(0, 0, 255)});
    const auto* info = reinterpret_cast<const BITMAPINFO*>(block.data());
    for (const CSize size : {CSize(2, 1), CSize(8, 4), CSize(3, 2)}) {
        std::vector<COLORREF> seen[2];
        for (int m = 0; m < 2; ++m) {
            Canvas cv(size.cx, size.cy);
            cv.dc.SetStretchBltMode(m ? HALFTONE : COLORONCOLOR);
            StretchDIBits(cv.dc.m_hDC, 0, 0, size.cx, size.cy, 0, 0, 4, 2, block.data() + 1064, info,
                          DIB_RGB_COLORS, SRCCOPY);
            for (int y = 0; y < size.cy; ++y)
                for (int x = 0; x < size.cx; ++x) seen[m].push_back(cv.At(x, y));
        }
        EXPECT_EQ(seen[0], seen[1]) << size.cx << " x " << size.cy;
    }
    Canvas small(2, 1);
    small.dc.SetStretchBltMode(HALFTONE);
    StretchDIBits(small.dc.m_hDC, 0, 0, 2, 1, 0, 0, 4, 2, block.data() + 1064, info, DIB_RGB_COLORS, SRCCOPY);
    // Pixel centres at 1/2 of the height and 1/4, 3/4 of the width: the bottom row (the
    // block's first), columns 1 and 3.
    EXPECT_EQ(small.At(0, 0), RGB(0, 0, 0));
    EXPECT_EQ(small.At(1, 0), RGB(255, 0, 0));
}

TEST(GdiDib, ShortUnpaddedBlockIsNotReadPastItsEnd) {
    // 3 columns: the platform's rows are 4 bytes apart, the block holds 3 per row and says
    // so in its image size. The top row would need bytes 4..6 of a 6-byte block.
    auto block = Block8(3, 2, {1, 1, 1, 2, 2, 2}, {kWhite, kBlack, kRed});
    block.resize(1064 + 6);
    Canvas cv(3, 2);
    StretchDIBits(cv.dc.m_hDC, 0, 0, 3, 2, 0, 0, 3, 2, block.data() + 1064,
                  reinterpret_cast<const BITMAPINFO*>(block.data()), DIB_RGB_COLORS, SRCCOPY);
    EXPECT_EQ(cv.Grid(), Rows({"...", "###"}));
}

TEST(GdiDib, BadHeadersAreRefused) {
    auto block = Block8(2, 2, {0, 0, 0, 0}, {kWhite});
    auto* h = reinterpret_cast<BITMAPINFOHEADER*>(block.data());
    Canvas cv(2, 2);
    const std::function<void()> breaks[] = {
        [&] { h->biSize = 12; }, [&] { h->biWidth = 0; }, [&] { h->biHeight = 0; },
        [&] { h->biBitCount = 7; }, [&] { h->biCompression = 1; },
    };
    for (const auto& br : breaks) {
        auto copy = block;
        h = reinterpret_cast<BITMAPINFOHEADER*>(copy.data());
        br();
        EXPECT_EQ(StretchDIBits(cv.dc.m_hDC, 0, 0, 2, 2, 0, 0, 2, 2, copy.data() + 1064,
                                reinterpret_cast<const BITMAPINFO*>(copy.data()), DIB_RGB_COLORS, SRCCOPY),
                  0);
    }
    EXPECT_EQ(StretchDIBits(cv.dc.m_hDC, 0, 0, 2, 2, 0, 0, 2, 2, nullptr, nullptr, DIB_RGB_COLORS, SRCCOPY), 0);
}

TEST(GdiDib, GetDIBitsFillsTheHeaderThenTheRowsBottomUp) {
    Canvas cv(3, 2);
    cv.dc.SetPixelV(0, 0, kRed);   // top left
    cv.dc.SetPixelV(2, 1, kBlue);  // bottom right
    cv.dc.SelectObject(cv.old);    // a bitmap is read while not selected
    BITMAPINFO bi{};
    bi.bmiHeader = BITMAPINFOHEADER{40, 3, 2, 1, 24, 0, 0, 0, 0, 0, 0};
    ASSERT_EQ(GetDIBits(cv.dc.m_hDC, cv.bmp, 0, 2, nullptr, &bi, DIB_RGB_COLORS), 2);
    EXPECT_EQ(bi.bmiHeader.biSizeImage, 24u);  // rows of 9 bytes padded to 12
    std::vector<unsigned char> px(24, 0xEE);
    ASSERT_EQ(GetDIBits(cv.dc.m_hDC, cv.bmp, 0, 2, px.data(), &bi, DIB_RGB_COLORS), 2);
    const std::vector<unsigned char> expect = {255, 255, 255, 255, 255, 255, 255, 0, 0, 0, 0, 0,   // bottom row
                                               0, 0, 255, 255, 255, 255, 255, 255, 255, 0, 0, 0};  // top row
    EXPECT_EQ(px, expect);
    cv.old = cv.dc.SelectObject(&cv.bmp);
}

// Coordinates and state -------------------------------------------------------------------------------
TEST(GdiMapping, MapModesTransformBothWays) {
    struct Case {
        const char* name;
        std::function<void(CDC&)> setup;
        POINT logical, device;
    };
    const Case cases[] = {
        {"text with origins", [](CDC& dc) { dc.SetWindowOrg(5, 5); dc.SetViewportOrg(1, 2); }, {10, 10}, {6, 7}},
        {"low english: 100 units an inch, y up", [](CDC& dc) { dc.SetMapMode(MM_LOENGLISH); }, {100, -200}, {96, 192}},
        {"low metric", [](CDC& dc) { dc.SetMapMode(MM_LOMETRIC); }, {254, -127}, {96, 48}},
        {"anisotropic", [](CDC& dc) {
             dc.SetMapMode(MM_ANISOTROPIC);
             dc.SetWindowExt(1000, 1000);
             dc.SetViewportExt(100, 50);
             dc.SetViewportOrg(10, 10);
         }, {500, 500}, {60, 35}},
        {"isotropic keeps the smaller scale", [](CDC& dc) {
             dc.SetMapMode(MM_ISOTROPIC);
             dc.SetWindowExt(100, 100);
             dc.SetViewportExt(200, 50);
         }, {100, 100}, {50, 50}},
    };
    for (const Case& c : cases) {
        Canvas cv(4, 4);
        c.setup(cv.dc);
        POINT p = c.logical;
        cv.dc.LPtoDP(&p);
        EXPECT_EQ(p.x, c.device.x) << c.name;
        EXPECT_EQ(p.y, c.device.y) << c.name;
        cv.dc.DPtoLP(&p);
        EXPECT_EQ(p.x, c.logical.x) << c.name;
        EXPECT_EQ(p.y, c.logical.y) << c.name;
    }
}

TEST(GdiMapping, DrawingGoesThroughTheTransform) {
    Canvas cv(8, 8);
    cv.dc.SetMapMode(MM_ANISOTROPIC);
    cv.dc.SetWindowExt(10, 10);
    cv.dc.SetViewportExt(5, 5);
    cv.dc.SetWindowOrg(-2, -2);
    cv.dc.MoveTo(0, 2);
    cv.dc.LineTo(8, 2);  // device (1,2) -> (5,2)
    EXPECT_EQ(cv.Grid(), Rows({"........", "........", ".####...", "........", "........", "........", "........", "........"}));
}

TEST(GdiState, SaveAndRestoreBringBackAttributesObjectsAndClip) {
    Canvas cv(4, 4);
    CPen red(PS_SOLID, 0, kRed);
    const int level = cv.dc.SaveDC();
    ASSERT_GT(level, 0);
    CPen* old = cv.dc.SelectObject(&red);
    EXPECT_EQ(old->m_hObject, GetStockObject(BLACK_PEN));
    cv.dc.SetBkMode(TRANSPARENT);
    cv.dc.SetTextColor(kBlue);
    cv.dc.SetROP2(R2_NOT);
    cv.dc.SetMapMode(MM_LOENGLISH);
    cv.dc.IntersectClipRect(0, 0, 1, -1);
    EXPECT_EQ(cv.dc.SaveDC(), level + 1);
    cv.dc.SetTextColor(kRed);
    EXPECT_TRUE(cv.dc.RestoreDC(-1));
    EXPECT_EQ(cv.dc.GetTextColor(), kBlue);
    EXPECT_TRUE(cv.dc.RestoreDC(level));
    EXPECT_EQ(cv.dc.GetBkMode(), OPAQUE);
    EXPECT_EQ(cv.dc.GetTextColor(), kBlack);
    EXPECT_EQ(cv.dc.GetROP2(), R2_COPYPEN);
    EXPECT_EQ(cv.dc.GetMapMode(), MM_TEXT);
    EXPECT_EQ(cv.dc.GetCurrentPen()->m_hObject, GetStockObject(BLACK_PEN));
    RECT box;
    cv.dc.GetClipBox(&box);
    EXPECT_EQ(CRect(box), CRect(0, 0, 4, 4));
    EXPECT_FALSE(cv.dc.RestoreDC(level));  // nothing saved any more
}

TEST(GdiObjects, DeletingSelectedOrStockObjects) {
    Canvas cv(4, 1);
    EXPECT_FALSE(DeleteObject(GetStockObject(BLACK_PEN)));
    {
        CPen pen(PS_SOLID, 0, kRed);
        cv.dc.SelectObject(&pen);
    }  // deleted while selected: still drawn with until replaced
    cv.dc.MoveTo(0, 0);
    cv.dc.LineTo(2, 0);
    EXPECT_EQ(cv.Grid(), Rows({"rr.."}));
    cv.dc.SelectStockObject(BLACK_PEN);
    EXPECT_EQ(SelectObject(cv.dc.m_hDC, reinterpret_cast<HGDIOBJ>(0x1234)), nullptr);
    EXPECT_EQ(GetPixel(reinterpret_cast<HDC>(0x1234), 0, 0), CLR_INVALID);
    LOGPEN lp{};
    CPen p2(PS_DASH, 3, kBlue);
    ASSERT_EQ(p2.GetLogPen(&lp), static_cast<int>(sizeof lp));
    EXPECT_EQ(lp.lopnStyle, static_cast<UINT>(PS_DASH));
    EXPECT_EQ(lp.lopnWidth.x, 3);
    EXPECT_EQ(lp.lopnColor, kBlue);
}

TEST(GdiRegions, CombiningAndTesting) {
    CRgn a, b, r;
    a.CreateRectRgn(0, 0, 10, 10);
    b.CreateRectRgn(5, 5, 15, 15);
    r.CreateRectRgn(0, 0, 0, 0);
    struct Case {
        int mode;
        int kind;
        RECT box;
        std::vector<std::pair<POINT, bool>> points;
    };
    const Case cases[] = {
        {RGN_AND, SIMPLEREGION, {5, 5, 10, 10}, {{{5, 5}, true}, {{9, 9}, true}, {{10, 10}, false}, {{4, 4}, false}}},
        {RGN_OR, COMPLEXREGION, {0, 0, 15, 15}, {{{0, 0}, true}, {{14, 14}, true}, {{12, 2}, false}}},
        {RGN_XOR, COMPLEXREGION, {0, 0, 15, 15}, {{{7, 7}, false}, {{2, 2}, true}, {{12, 12}, true}}},
        {RGN_DIFF, COMPLEXREGION, {0, 0, 10, 10}, {{{7, 7}, false}, {{2, 2}, true}, {{9, 4}, true}}},
        {RGN_COPY, SIMPLEREGION, {0, 0, 10, 10}, {{{9, 9}, true}, {{10, 9}, false}}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(r.CombineRgn(&a, &b, c.mode), c.kind) << c.mode;
        RECT box;
        r.GetRgnBox(&box);
        EXPECT_EQ(CRect(box), CRect(c.box)) << c.mode;
        for (const auto& [p, in] : c.points) EXPECT_EQ(r.PtInRegion(p) != 0, in) << c.mode << " " << p.x << "," << p.y;
    }
    EXPECT_EQ(r.OffsetRgn(100, 0), SIMPLEREGION);
    EXPECT_TRUE(r.PtInRegion(100, 0));
    RECT probe{105, 5, 106, 6}, away{0, 0, 5, 5};
    EXPECT_TRUE(r.RectInRegion(&probe));
    EXPECT_FALSE(r.RectInRegion(&away));
    CRgn e;
    e.CreateEllipticRgn(0, 0, 10, 10);
    EXPECT_TRUE(e.PtInRegion(5, 5));
    EXPECT_FALSE(e.PtInRegion(0, 0));
    EXPECT_FALSE(e.PtInRegion(10, 5));
    EXPECT_EQ(CombineRgn(nullptr, a, b, RGN_AND), ERROR);
}

TEST(GdiMisc, MulDivRoundsHalfAwayFromZero) {
    const int cases[][4] = {{10, 3, 4, 8}, {-10, 3, 4, -8}, {5, 1, 2, 3}, {-5, 1, 2, -3}, {7, 0, 3, 0}, {1, 1, 0, -1},
                            {2000000000, 2, 4, 1000000000}};
    for (const auto& c : cases) EXPECT_EQ(MulDiv(c[0], c[1], c[2]), c[3]) << c[0] << "*" << c[1] << "/" << c[2];
}

}  // namespace

// Icons and system parameters -------------------------------------------------------------------

namespace {

// A 2x2 icon file of 32-bit pixels with alpha: top row opaque red, clear; bottom row
// half-covering blue, opaque black.
std::vector<unsigned char> IconFile() {
    std::vector<unsigned char> f;
    auto u16 = [&](unsigned v) { f.push_back(v & 0xFF); f.push_back((v >> 8) & 0xFF); };
    auto u32 = [&](unsigned v) { u16(v & 0xFFFF); u16(v >> 16); };
    u16(0); u16(1); u16(1);                            // directory: an icon, one entry
    f.push_back(2); f.push_back(2); f.push_back(0); f.push_back(0);
    u16(1); u16(32); u32(40 + 16 + 8); u32(22);        // entry
    u32(40); u32(2); u32(4); u16(1); u16(32); u32(0); u32(0); u32(0); u32(0); u32(0); u32(0);
    const unsigned char rows[16] = {255, 0, 0, 128, 0, 0, 0, 255,     // bottom: blue half, black
                                    0, 0, 255, 255, 0, 0, 0, 0};      // top: red, clear
    f.insert(f.end(), rows, rows + 16);
    for (int i = 0; i < 8; ++i) f.push_back(0);        // mask: all drawn by alpha
    return f;
}

TEST(GdiIcons, IconsBlendByTheirTransparency) {
    orlex::EnsureApplication();
    const auto file = IconFile();
    HMODULE self = GetModuleHandleA(nullptr);
    ASSERT_TRUE(orlex::RegisterResource(self, RT_GROUP_ICON, MAKEINTRESOURCE(4321), file.data(),
                                        static_cast<DWORD>(file.size())));
    HICON icon = static_cast<HICON>(LoadImageA(self, MAKEINTRESOURCE(4321), IMAGE_ICON, 0, 0, 0));
    ASSERT_NE(icon, nullptr);
    SIZE s{0, 0};
    ASSERT_TRUE(GetIconSize(icon, &s));
    EXPECT_EQ(s.cx, 2);
    EXPECT_EQ(s.cy, 2);
    Canvas cv(4, 3);
    EXPECT_TRUE(DrawIconEx(cv.dc.m_hDC, 1, 1, icon, 0, 0, 0, nullptr, DI_NORMAL));
    EXPECT_EQ(cv.At(1, 1), kRed);
    EXPECT_EQ(cv.At(2, 1), kWhite);
    const COLORREF half = cv.At(1, 2);
    EXPECT_NEAR(GetRValue(half), 127, 1);
    EXPECT_NEAR(GetGValue(half), 127, 1);
    EXPECT_EQ(GetBValue(half), 255);
    EXPECT_EQ(cv.At(2, 2), kBlack);
    EXPECT_EQ(cv.At(0, 0), kWhite);
    // Scaled to 4x2 the red pixel covers two columns.
    EXPECT_TRUE(DrawIconEx(cv.dc.m_hDC, 0, 0, icon, 4, 2, 0, nullptr, DI_NORMAL));
    EXPECT_EQ(cv.At(1, 0), kRed);
    EXPECT_TRUE(DestroyIcon(icon));
    EXPECT_FALSE(DestroyIcon(icon));
    EXPECT_FALSE(DrawIcon(cv.dc.m_hDC, 0, 0, icon));
    EXPECT_EQ(LoadImageA(self, MAKEINTRESOURCE(4322), IMAGE_ICON, 0, 0, 0), nullptr);
}

TEST(GdiSystem, NonClientMetricsGiveTheMessageFont) {
    NONCLIENTMETRICS m{};
    m.cbSize = sizeof m;
    ASSERT_TRUE(SystemParametersInfo(SPI_GETNONCLIENTMETRICS, sizeof m, &m, 0));
    EXPECT_LT(m.lfMessageFont.lfHeight, 0);
    EXPECT_STRNE(m.lfMessageFont.lfFaceName, "");
    m.cbSize = 100;
    EXPECT_FALSE(SystemParametersInfo(SPI_GETNONCLIENTMETRICS, 100, &m, 0));
    UINT lines = 0;
    ASSERT_TRUE(SystemParametersInfo(SPI_GETWHEELSCROLLLINES, 0, &lines, 0));
    EXPECT_EQ(lines, 3u);
}

}  // namespace

namespace {

// Coordinates far outside, degenerate boxes and huge fonts: each call returns, nothing
// outside the bitmap is touched, and what can be seen is right.
TEST(GdiRobustness, FarAndDegenerateInputs) {
    Canvas cv(40, 3);
    CPen dot(PS_DOT, 0, kBlack);
    cv.dc.SelectObject(&dot);
    cv.dc.SetBkMode(TRANSPARENT);
    // A dotted line from far away: the rhythm counts the pixels outside too (x = 0 is
    // pixel 100001 of the line, an off pixel).
    cv.dc.MoveTo(-100001, 1);
    cv.dc.LineTo(40, 1);
    const std::string row = cv.Grid().substr(41, 40);
    EXPECT_EQ(row, ".#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#");
    cv.dc.SelectStockObject(BLACK_PEN);
    const std::function<void(CDC&)> calls[] = {
        [](CDC& dc) { dc.MoveTo(-2000000000, -2000000000); dc.LineTo(2000000000, 2000000000); },
        [](CDC& dc) { dc.Ellipse(-1000000000, -1000000000, 1000000000, 1000000000); },
        [](CDC& dc) { dc.Arc(-1000000000, -5, 1000000000, 5, 0, 0, 0, 0); },
        [](CDC& dc) { const POINT p[] = {{-900000000, 0}, {900000000, 1}, {0, 900000000}}; dc.Polygon(p, 3); },
        [](CDC& dc) { dc.Rectangle(30, 2, 5, 1); },
        [](CDC& dc) { dc.Ellipse(3, 3, 3, 3); },
        [](CDC& dc) { RECT r{10, 10, -10, -10}; dc.InvertRect(&r); },
        [](CDC& dc) { dc.BitBlt(0, 0, -5, -5, &dc, 2, 2, SRCCOPY); },
        [](CDC& dc) { dc.StretchBlt(0, 0, 1 << 20, 1 << 20, &dc, 0, 0, 1, 1, SRCCOPY); },
        [](CDC& dc) { CPen wide(PS_SOLID, 5000, kRed); dc.SelectObject(&wide); dc.MoveTo(0, 0); dc.LineTo(1 << 29, 7);
                      dc.SelectStockObject(BLACK_PEN); },
        [](CDC& dc) { CFont f; f.CreateFont(-1000000, 0, 900, 900, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
                      dc.SelectObject(&f); dc.TextOut(0, 0, "big", 3); dc.SelectStockObject(SYSTEM_FONT); },
        [](CDC& dc) { dc.TextOut(0, 0, nullptr, 5); dc.DrawText(nullptr, -1, nullptr, 0); },
        [](CDC& dc) { dc.SetPixel(-1, -1, kRed); dc.SetPixel(1 << 30, 0, kRed); },
    };
    orlex::EnsureApplication();
    for (const auto& call : calls) call(cv.dc);
    EXPECT_EQ(cv.At(39, 2) == CLR_INVALID, false);
}

}  // namespace

namespace {

TEST(GdiShapes, ChordAndPieFillTheSideOfTheArc) {
    struct Case {
        const char* name;
        bool pie;
        POINT start, end;
        std::vector<std::pair<POINT, bool>> filled;
    };
    const Case cases[] = {
        {"chord, upper half", false, {21, 10}, {0, 10}, {{{10, 3}, true}, {{10, 17}, false}}},
        {"chord, lower half", false, {0, 10}, {21, 10}, {{{10, 3}, false}, {{10, 17}, true}}},
        {"pie, upper right", true, {21, 10}, {10, 0}, {{{15, 5}, true}, {{5, 5}, false}, {{15, 15}, false}}},
        {"pie, three quarters", true, {10, 0}, {21, 10}, {{{15, 5}, false}, {{5, 5}, true}, {{15, 15}, true}}},
    };
    for (const Case& c : cases) {
        Canvas cv(22, 22);
        CBrush blue(kBlue);
        cv.dc.SelectObject(&blue);
        if (c.pie) cv.dc.Pie(0, 0, 21, 21, c.start.x, c.start.y, c.end.x, c.end.y);
        else cv.dc.Chord(0, 0, 21, 21, c.start.x, c.start.y, c.end.x, c.end.y);
        for (const auto& [p, in] : c.filled) EXPECT_EQ(cv.At(p.x, p.y) == kBlue, in) << c.name << " " << p.x << "," << p.y;
        cv.dc.SelectStockObject(WHITE_BRUSH);
    }
}

}  // namespace

namespace {

TEST(GdiFrames, ScrollArrowsPointTheirWay) {
    // The arrow's widest row (or column) lies opposite its tip.
    struct Case { UINT state; bool vertical; bool tipFirst; };
    const Case cases[] = {{DFCS_SCROLLDOWN, true, false}, {DFCS_SCROLLUP, true, true},
                          {DFCS_SCROLLLEFT, false, true}, {DFCS_SCROLLRIGHT, false, false}};
    for (const Case& c : cases) {
        Canvas cv(17, 17);
        RECT r{0, 0, 17, 17};
        cv.dc.DrawFrameControl(&r, DFC_SCROLL, c.state);
        // Count arrow (black) pixels per row or column inside the frame.
        std::vector<int> count(17, 0);
        for (int y = 2; y < 15; ++y)
            for (int x = 2; x < 15; ++x)
                if (cv.At(x, y) == kBlack) ++count[c.vertical ? y : x];
        int first = -1, last = -1;
        for (int i = 0; i < 17; ++i)
            if (count[i]) { if (first < 0) first = i; last = i; }
        ASSERT_GE(first, 0) << c.state;
        EXPECT_EQ(count[c.tipFirst ? first : last], 1) << c.state;
        EXPECT_GT(count[c.tipFirst ? last : first], 1) << c.state;
    }
}

}  // namespace

namespace {

TEST(GdiObjects, ReleasedContextHandlesStayInvalid) {
    HDC first = CreateCompatibleDC(nullptr);
    ASSERT_NE(first, nullptr);
    EXPECT_TRUE(DeleteDC(first));
    HDC second = CreateCompatibleDC(nullptr);
    EXPECT_NE(second, first);
    EXPECT_EQ(SetBkColor(first, kRed), CLR_INVALID);
    EXPECT_EQ(GetBkColor(second), kWhite);
    EXPECT_FALSE(DeleteDC(first));
    EXPECT_TRUE(DeleteDC(second));
}

}  // namespace
