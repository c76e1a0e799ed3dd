// What a plot shows, read back from the window as the plot control paints it: grid lines,
// numbers and titles against the same texts written by the layer, the drawing styles,
// points of interest, reduction and clipping of curves, colours by the colour dialog, the
// marked point, the text list, and what bad input gets.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <string>

#include "foundation/platform/afxdlgs.h"
#include "map_host.h"
#include "plot/MarkerMan.h"
#include "plot/PlotGeometry.h"

namespace {

using plot_test::Scene;

// One text of a picture: TextOut at (x, y), or DrawText into rect with fmt != 0.
struct Text {
    int size, align, rotation, x, y;
    std::string text;
    COLORREF colour = 0;
    RECT rect{};
    UINT fmt = 0;
};

// A w x h picture as the layer draws it: background, what `under` draws, then the texts.
std::vector<COLORREF> Picture(int w, int h, COLORREF bk, const std::vector<Text>& texts,
                              const std::function<void(HDC)>& under = {})
{
    HDC screen = GetDC(nullptr);
    HDC dc = CreateCompatibleDC(screen);
    HBITMAP bmp = CreateCompatibleBitmap(screen, w, h);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(dc, bmp);
    RECT all{0, 0, w, h};
    HBRUSH brush = CreateSolidBrush(bk);
    FillRect(dc, &all, brush);
    DeleteObject(brush);
    SetBkMode(dc, TRANSPARENT);
    if (under)
        under(dc);
    for (const Text& t : texts) {
        HFONT f = CreateFontA(-t.size, 0, t.rotation, t.rotation, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
        HGDIOBJ of = SelectObject(dc, f);
        SetTextAlign(dc, UINT(t.align));
        SetTextColor(dc, t.colour);
        RECT r = t.rect;
        if (t.fmt != 0)
            DrawTextA(dc, t.text.c_str(), -1, &r, t.fmt);
        else
            TextOutA(dc, t.x, t.y, t.text.c_str(), int(t.text.size()));
        SelectObject(dc, of);
        DeleteObject(f);
    }
    std::vector<DWORD> bits(size_t(w) * size_t(h));
    GetBitmapBits(bmp, LONG(bits.size() * 4), bits.data());
    SelectObject(dc, old);
    DeleteObject(bmp);
    DeleteDC(dc);
    std::vector<COLORREF> out;
    for (DWORD b : bits)
        out.push_back(RGB(BYTE(b >> 16), BYTE(b >> 8), BYTE(b)));
    return out;
}

// Font metrics of an "Arial" font of `size` pixels as the layer gives them.
TEXTMETRIC Metrics(int size)
{
    HDC dc = GetDC(nullptr);
    HFONT f = CreateFontA(-size, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
    HGDIOBJ old = SelectObject(dc, f);
    TEXTMETRIC tm{};
    GetTextMetrics(dc, &tm);
    SelectObject(dc, old);
    DeleteObject(f);
    ReleaseDC(nullptr, dc);
    return tm;
}

int TextWidth(int size, const std::string& s)
{
    HDC dc = GetDC(nullptr);
    HFONT f = CreateFontA(-size, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
    HGDIOBJ old = SelectObject(dc, f);
    RECT r{0, 0, 0, 0};
    DrawTextA(dc, s.c_str(), -1, &r, DT_CALCRECT | DT_NOCLIP | DT_SINGLELINE);
    SelectObject(dc, old);
    DeleteObject(f);
    ReleaseDC(nullptr, dc);
    return r.right - r.left;
}

std::string Num(const char* fmt, double v)
{
    char b[64];
    std::snprintf(b, sizeof b, fmt, v);
    return b;
}

// Pixels differing between two pictures of width w, outside (or, with inside, within) r.
int Differences(const std::vector<COLORREF>& a, const std::vector<COLORREF>& b, int w, RECT r, bool inside = false)
{
    int n = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        const int x = int(i % size_t(w)), y = int(i / size_t(w));
        const bool in = x >= r.left && x <= r.right && y >= r.top && y <= r.bottom;
        n += in == inside && a[i] != b[i];
    }
    return n;
}

Curve Line(std::initializer_list<std::pair<float, float>> pts)
{
    Curve c;
    for (auto [x, y] : pts)
        c.AddPoint(x, y);
    return c;
}

TEST(PlotGrid, MajorAndMinorLinesStandWhereTheDivisionsPutThem)
{
    // Ranges on both axes, and plot sizes that give 10, 24, 25 and 50 pixels a division.
    const struct {
        float lo, hi;
        int w, h;
    } cases[] = {{0, 10, 175, 128}, {0, 10, 315, 268}, {0, 10, 325, 278}, {0, 10, 575, 528},
                 {0, 2.5f, 400, 300}, {0, 4, 400, 300}, {0.13f, 0.87f, 400, 300}};
    for (const auto& c : cases) {
        Scene s(c.w, c.h);
        Curve curve = Line({{c.lo, c.lo}, {c.lo, c.hi}, {c.hi, c.lo}});
        s.map().SetDrawStyle(0, 2);
        s.Show(0, &curve);
        s.Repaint();
        const MapClass& m = s.map();
        const RECT b = m.GetBound();
        // Offsets of the lines across one axis: majors win over minors.
        auto lines = [](int n, double p) {
            std::map<int, char> at;
            if (const int k = orlex::plot::MinorSubdivisions(p))
                for (int i = 0; i <= n * k; ++i)
                    at[int(i * p * orlex::plot::MinorFactor(k) + 0.5)] = 'm';
            for (int i = 0; i <= n; ++i)
                at[int(i * p + 0.5)] = 'M';
            return at;
        };
        const auto vx = lines(m.NumMajorX, m.XMajorPixels), hy = lines(m.NumMajorY, m.YMajorPixels);
        int y0 = b.top + 1, x0 = b.left + 1;
        while (hy.count(y0 - b.top) || y0 == b.bottom)
            ++y0;
        while (vx.count(x0 - b.left))
            ++x0;
        auto expect = [&](const std::map<int, char>& at, int off) {
            auto it = at.find(off);
            return it == at.end() ? m.GetBkColor() : it->second == 'M' ? m.GridColor : m.MinorColor;
        };
        std::string where = std::to_string(c.lo) + ".." + std::to_string(c.hi) + " in " + std::to_string(c.w);
        for (int x = b.left; x <= b.right; ++x)
            ASSERT_EQ(s.At(x, y0), expect(vx, x - b.left)) << where << " column " << x;
        for (int y = b.top; y <= b.bottom; ++y)
            ASSERT_EQ(s.At(x0, y), expect(hy, y - b.top)) << where << " row " << y;
        EXPECT_EQ(s.At(b.right, b.top), m.GetBkColor()) << where; // both lines end short of it
        EXPECT_EQ(s.At(b.right, b.top + 1), m.GridColor) << where;
        EXPECT_EQ(s.At(b.right - 1, b.top), m.GridColor) << where;
    }
}

// The texts of a rectangular plot at the points, fonts and alignments of its labels.
std::vector<Text> RectangularTexts(const MapClass& m, const char* xTitle, const char* yTitle)
{
    const RECT b = m.GetBound();
    const COLORREF tc = m.TextColor;
    std::vector<Text> t;
    for (int i = 1; i < m.NumMajorX; ++i)
        t.push_back({11, 6, 0, b.left + int(i * m.XMajorPixels), b.bottom + 1,
                     Num("%.7g", orlex::plot::GuardZero(i * m.XStep + m.XStart, m.XStep) * m.XFactor), tc});
    const TEXTMETRIC tm = Metrics(11);
    for (int i = 1; i <= m.NumMajorY; ++i) {
        const std::string s = Num("%.7g", orlex::plot::GuardZero(i * m.YStep + m.YStart, m.YStep) * m.YFactor);
        const int bottom = b.bottom + 1 + tm.tmAscent / 2 - int(i * m.YMajorPixels);
        t.push_back({11, 0, 0, 0, 0, s, tc, {0, bottom - tm.tmHeight, b.left, bottom},
                     UINT(DT_SINGLELINE | (TextWidth(11, s) <= b.left ? DT_RIGHT : DT_LEFT))});
    }
    if (m.XLabel[0] != '\0')
        t.push_back({13, 14, 0, (b.left + b.right) / 2, b.bottom + m.BorderWidths.bottom, xTitle, tc});
    else
        t.push_back({13, 6, 0, b.right - 5, b.bottom + 1, xTitle, tc});
    if (m.YLabel[0] != '\0')
        t.push_back({13, 6, 900, 0, (b.top + b.bottom) / 2, yTitle, tc});
    else
        t.push_back({13, 2, 0, b.left - 5, b.bottom - tm.tmAscent / 2 - 1, yTitle, tc});
    return t;
}

TEST(PlotLabels, NumbersTitlesAndLegendAreTheLayersOwnTextsAtTheirPoints)
{
    const struct {
        const char *xLabel, *yLabel, *domain, *range;
        float y0, y1;
        int rightBorder;
        bool plotOnly;
        const char *xTitle, *yTitle;
    } cases[] = {
        {"Time", "Height", "s", "m", 0.0f, 2.5f, 15, false, "Time ( s)", "Height ( m)"},
        {"Time", "", " ", "%", 0.1234511f, 0.1234589f, 10, false, "Time", " %"}, // a long Y number from x = 0
        {"", "Height", "s", "V", -0.003f, 0.002f, 15, false, " s", "Height (mV)"},
        {"Time", "Height", "s", "m", 0.0f, 2.5f, 15, true, "", ""},
    };
    for (const auto& c : cases) {
        Scene s(400, 300);
        Curve curve = Line({{0, c.y0}, {10, c.y1}});
        s.map().SetBorderWidths(RECT{45, 12, c.rightBorder, 20});
        s.map().SetPlotOnly(c.plotOnly);
        s.map().SetAxisLabels(c.xLabel, c.yLabel);
        s.map().SetUnits(c.domain, c.range, 1, 1, true, nullptr);
        // The last flag given holds for both texts.
        s.map().SetLegendText(1, "second", 0);
        s.map().SetLegendText(0, "first curve", c.plotOnly ? 1 : 0);
        s.Show(0, &curve);
        s.Repaint();
        const MapClass& m = s.map();
        const RECT b = m.GetBound();
        std::vector<Text> texts;
        if (!c.plotOnly)
            texts = RectangularTexts(m, c.xTitle, c.yTitle);
        texts.push_back({11, 8, 0, b.left, b.top - 1, "first curve", c.plotOnly ? m.TextColor : m.GetCurveColor(0)});
        texts.push_back({11, 10, 0, b.right, b.top - 1, "second", c.plotOnly ? m.TextColor : m.GetCurveColor(1)});
        const auto shown = orlex::test::Pixels(s.host.m_hWnd, RECT{0, 0, 400, 300});
        EXPECT_EQ(Differences(shown, Picture(400, 300, m.GetBkColor(), texts), 400, b), 0) << c.xTitle << c.plotOnly;
    }
}

TEST(PlotLabels, SemiLogAxisOver1To1000In500PixelsLabelsOnly1And3)
{
    Scene s(500, 300, 300);
    Curve curve = Line({{1, 0}, {1000, 1}});
    s.map().SetUnits("s", "m", 1, 1, true, nullptr);
    s.Show(0, &curve);
    s.Repaint();
    const MapClass& m = s.map();
    ASSERT_EQ(m.GetMapType(), 300);
    const RECT b = m.GetBound();
    std::vector<Text> texts;
    for (double x : {1.0, 3.0, 10.0, 30.0, 100.0, 300.0})
        texts.push_back({11, 6, 0, b.left + int(std::log10(x) * m.XMajorPixels + 0.5), b.bottom + 1, Num("%g", x), m.TextColor});
    texts.push_back({13, 6, 0, b.right, b.bottom + 1, " s", m.TextColor});
    const auto shown = orlex::test::Pixels(s.host.m_hWnd, RECT{0, 0, 500, 300});
    EXPECT_EQ(Differences(shown, Picture(500, 300, m.GetBkColor(), texts), 500, b), 0);
}

TEST(PlotPolar, SixRingsWithTheirSpokesLabelsAndPrintedTicks)
{
    for (int type : {200, 400}) {
        Scene s(460, 360, type);
        Curve curve = Line({{-50, 0}, {-10, -30}, {0, -60}});
        s.Show(0, &curve);
        s.Repaint();
        plot_test::TestMap& m = s.map();
        ASSERT_EQ(m.GetMapType(), type);
        ASSERT_EQ(m.PolarRings, 6);
        const RECT b = m.GetBound();
        const int D = b.right - b.left, g = D / 12, cx = b.left + D / 2, cy = type == 200 ? b.bottom : b.top + D / 2;
        EXPECT_EQ(m.SpokeEnds[9].x, cx);
        EXPECT_EQ(m.SpokeEnds[9].y, cy - D / 2);
        std::vector<Text> texts;
        auto at = [&](int spoke, const char* text, int dx, int dy) {
            texts.push_back({10, 30, 0, m.SpokeEnds[spoke].x + dx, m.SpokeEnds[spoke].y + dy, text, m.TextColor});
        };
        if (type == 200) {
            for (int i = 0; i <= 4; ++i)
                texts.push_back({10, 6, 0, b.right - i * g, b.bottom + 1, std::to_string(-10 * i), m.TextColor});
            at(3, "60\xB0", 10, -2), at(5, "40\xB0", 7, -4), at(7, "20\xB0", 4, -5);
            at(11, "-20\xB0", -4, -5), at(13, "-40\xB0", -7, -4), at(15, "-60\xB0", -10, -2);
            texts.push_back({10, 6, 0, b.right - 5 * g, b.bottom + 1, "-50 dB", m.TextColor});
        } else {
            const char* angle[12] = {"90", "60", "30", "0", "330", "300", "270", "240", "210", "180", "150", "120"};
            const int dx[12] = {12, 12, 6, 2, -8, -12, -13, -14, -10, 0, 9, 13}, dy[12] = {4, 1, -3, -2, -3, 1, 4, 8, 12, 10, 12, 8};
            for (int i = 0; i < 12; ++i)
                at(3 * i, (std::string(angle[i]) + "\xB0").c_str(), dx[i], dy[i]);
            texts.push_back({10, 30, 0, (b.left + b.right) / 2 - 1, b.bottom - 3 - g, "-10 dB", m.TextColor});
        }
        // The grid as the map draws it, with the labels on top as the layer writes them.
        const auto expected = Picture(460, 360, m.GetBkColor(), texts, [&](HDC dc) {
            HPEN pen = CreatePen(PS_SOLID, 1, m.GridColor);
            HGDIOBJ old = SelectObject(dc, pen);
            type == 200 ? m.HalfPolarGrid(dc) : m.PolarGrid(dc);
            SelectObject(dc, old);
            DeleteObject(pen);
        });
        const auto shown = orlex::test::Pixels(s.host.m_hWnd, RECT{0, 0, 460, 360});
        EXPECT_EQ(Differences(shown, expected, 460, RECT{-1, -1, -1, -1}), 0) << type;
        // Between the rings at 45 degrees the background shows; on a ring the grid.
        const double r45 = std::sqrt(0.5);
        for (int i = 1; i <= 4; ++i) {
            const int r = D / 2 - i * g - g / 2;
            EXPECT_EQ(s.At(cx + int(r * r45), cy - int(r * r45)), m.GetBkColor()) << i;
        }
        // Degree ticks only on paper: the 5 degree tick between the outer rings.
        const int r = D / 2 - g / 2;
        const POINT tick{cx + int(r * std::cos(M_PI / 36) + 0.5), cy - int(r * std::sin(M_PI / 36) + 0.5)};
        EXPECT_EQ(s.At(tick.x, tick.y), m.GetBkColor());
        m.Printing = 1;
        s.Repaint();
        EXPECT_EQ(s.At(tick.x, tick.y), m.GridColor);
    }
}

TEST(PlotPolar, MoreThanTenRingsWarnsAndFallsBackToTheRectangularPlot)
{
    Scene s(400, 300, 200);
    Curve curve = Line({{-20, 0}, {-10, -105}});
    s.Show(0, &curve);
    s.Repaint();
    EXPECT_EQ(s.map().GetMapType(), 100);
    ASSERT_FALSE(orlex::test::ModalLog().empty());
    const orlex::ModalRecord& box = orlex::test::ModalLog().back();
    EXPECT_EQ(box.text, "Data exceeds -100dB.");
    EXPECT_EQ(box.style, UINT(MB_OK | MB_ICONWARNING));
    const RECT b = s.map().GetBound();
    EXPECT_EQ(s.At(b.left, b.bottom - 1), s.map().GridColor);
}

// Offsets around a point where a style puts the curve's colour, as rows of '#' from -4 to 4.
struct StyleCase {
    int style;
    const char* rows[9];
};

TEST(PlotCurves, EachStyleStrokesItsShapeWithEndPixelsLeftOut)
{
    const StyleCase cases[] = {
        {1, {".........", ".........", ".........", ".........", ".........", "....#....", "....#....", "....#....", "....#...."}},
        {2, {".........", ".........", ".........", ".........", "....#....", ".........", ".........", ".........", "........."}},
        {3, {".........", ".........", "...###...", "..#...#..", "..#...#..", "..#...#..", "...###...", ".........", "........."}},
        {4, {".........", ".........", "..#####..", "..#...#..", "..#...#..", "..#...#..", "..#####..", ".........", "........."}},
        {5, {".........", ".........", ".........", "....#....", "...#.#...", "..#####..", ".........", ".........", "........."}},
        {6, {".........", "....#....", "...#.#...", "..#...#..", ".#.....#.", "..#...#..", "...#.#...", "....#....", "........."}},
        {7, {".........", ".........", "....#....", "....#....", "..#####..", "....#....", "....#....", ".........", "........."}},
    };
    for (const StyleCase& c : cases) {
        Scene s;
        Curve curve = Line({{0, 0}, {4.3f, 6.7f}, {10, 10}});
        s.map().SetDrawStyle(0, c.style);
        s.Show(0, &curve);
        s.Repaint();
        const RECT b = s.map().GetBound();
        const int px = b.left + int(0.43 * (b.right - b.left) + 0.5), py = b.bottom - int(0.67 * (b.bottom - b.top) + 0.5);
        std::string got;
        for (int dy = -4; dy <= 4; ++dy) {
            for (int dx = -4; dx <= 4; ++dx)
                got += s.At(px + dx, py + dy) == s.map().GetCurveColor(0) ? '#' : '.';
            got += '\n';
        }
        std::string want;
        for (const char* r : c.rows)
            want += std::string(r) + "\n";
        EXPECT_EQ(got, want) << "style " << c.style;
    }
}

}  // namespace
