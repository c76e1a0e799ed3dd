// Curves in a plot as a user sees them: points of interest, reduction of long curves, the
// visible part of a zoomed curve, clamping, colours chosen in the colour dialog, the
// marked point, the text list, and what bad input gets.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>

#include "foundation/platform/afxdlgs.h"
#include "map_host.h"
#include "plot/MarkerMan.h"

namespace {

using plot_test::Scene;

// Curve-coloured pixels of the plot rectangle.
int CurvePixels(Scene& s, int slot = 0)
{
    const RECT b = s.map().GetBound();
    int n = 0;
    for (int y = b.top; y <= b.bottom; ++y)
        for (int x = b.left; x <= b.right; ++x)
            n += s.At(x, y) == s.map().GetCurveColor(slot);
    return n;
}

POINT PixelOf(Scene& s, double x, double y)
{
    const MapClass& m = s.map();
    const RECT b = m.GetBound();
    return POINT{b.left + int((x - m.XStart) / (m.XEnd - m.XStart) * (b.right - b.left) + 0.5),
                 b.bottom - int((y - m.YStart) / (m.YEnd - m.YStart) * (b.bottom - b.top) + 0.5)};
}

bool DiamondAt(Scene& s, POINT p)
{
    const COLORREF c = s.map().GetCurveColor(0);
    for (auto [dx, dy] : {std::pair{0, -3}, {3, 0}, {0, 3}, {-3, 0}, {1, -2}, {-2, -1}})
        if (s.At(p.x + dx, p.y + dy) != c)
            return false;
    return true;
}

TEST(PlotCurves, PointsOfInterestGetDiamondsOnTheFirstPointAtOrBeyondThem)
{
    Scene s;
    Curve c;
    for (int i = 0; i <= 10; ++i)
        c.AddPoint(float(i), float(i));
    c.AddPOI(0.7);
    c.AddPOI(5.0);
    s.map().SetDrawStyle(0, 2);
    s.Show(0, &c);
    s.Repaint();
    EXPECT_EQ(s.map().Slots[0].POICount, 2);
    EXPECT_TRUE(DiamondAt(s, PixelOf(s, 1, 1)));
    EXPECT_TRUE(DiamondAt(s, PixelOf(s, 5, 5)));
    EXPECT_FALSE(DiamondAt(s, PixelOf(s, 3, 3)));
    c.AddPOI(8.0); // after the arrays were made: no room until the curve is taken in anew
    s.Repaint();
    EXPECT_FALSE(DiamondAt(s, PixelOf(s, 8, 8)));
    s.map().DrawNew(0);
    s.Repaint();
    EXPECT_TRUE(DiamondAt(s, PixelOf(s, 8, 8)));
}

TEST(PlotCurves, ALongCurveIsDrawnReducedFromTheNextRepaintOn)
{
    Scene s;
    Curve c;
    for (int i = 0; i < 5000; ++i)
        c.AddPoint(float(i), i == 2500 ? 100.0f : 0.0f);
    s.Show(0, &c);
    s.Repaint();
    const POINT spike = PixelOf(s, 2500, 100);
    EXPECT_EQ(s.map().Slots[0].Converted, 0);
    EXPECT_EQ(s.At(spike.x, spike.y), s.map().GetCurveColor(0));
    s.map().SetMaxPoints(1); // refused
    EXPECT_EQ(s.map().GetMaxPoints(), 8192);
    s.map().SetMaxPoints(100); // repaints at once
    EXPECT_EQ(s.map().Slots[0].Converted, 1);
    EXPECT_EQ(s.map().Slots[0].NumPoints, 100);
    EXPECT_EQ(c.CGetNumPts(), 100);
    EXPECT_NE(s.At(spike.x, spike.y), s.map().GetCurveColor(0)); // the mean of its bin is low

    // Falling x can't be reduced: the stored points are drawn, not an empty reduction.
    Curve down;
    for (int i = 0; i < 300; ++i)
        down.AddPoint(float(300 - i), float(i % 7));
    s.Show(0, &down);
    s.Repaint();
    EXPECT_EQ(s.map().Slots[0].Converted, 0);
    EXPECT_EQ(s.map().Slots[0].Drawn, 300);
    const POINT origin = PixelOf(s, 0, 0);
    EXPECT_NE(s.At(origin.x + 1, origin.y), s.map().GetCurveColor(0));
}

TEST(PlotCurves, ZoomedIntoTheMiddleTheLineRunsOutToTheClipEdge)
{
    Scene s;
    Curve c;
    for (int i = 0; i <= 10; ++i)
        c.AddPoint(float(i) + 0.3f, float(i));
    s.Show(0, &c);
    MapClass& m = s.map();
    m.ZoomState = 1;
    m.ZoomXMin = 3.05, m.ZoomXMax = 6.95, m.ZoomYMin = 0.0, m.ZoomYMax = 10.0;
    s.Repaint();
    EXPECT_EQ(m.XStart, 3.0);
    EXPECT_EQ(m.XEnd, 7.0);
    EXPECT_EQ(m.Slots[0].Drawn, 6); // 2.3 to 7.3
    const RECT b = m.GetBound();
    const POINT in = PixelOf(s, 3, 2.7), out = PixelOf(s, 7, 6.7);
    EXPECT_EQ(in.x, b.left);
    EXPECT_EQ(out.x, b.right);
    auto near = [&](POINT p) {
        return s.At(p.x, p.y - 1) == m.GetCurveColor(0) || s.At(p.x, p.y) == m.GetCurveColor(0) ||
               s.At(p.x, p.y + 1) == m.GetCurveColor(0);
    };
    EXPECT_TRUE(near(in));
    EXPECT_TRUE(near(out));
    EXPECT_EQ(s.At(out.x + 1, out.y - 1), m.GetBkColor());
}

TEST(PlotCurves, StoredValuesAboveTheScaleArePinnedReducedOnesCut)
{
    Scene s;
    Curve c;
    for (int i = 0; i <= 100; ++i)
        c.AddPoint(float(i) * 0.1f, i < 10 ? 0.5f : 5.0f);
    s.map().SetAutoScale(DAUTOSCALE{0, 0, 0.0, 1.0});
    s.Show(0, &c);
    s.Repaint();
    const RECT b = s.map().GetBound();
    EXPECT_EQ(s.At((b.left + b.right) / 2, b.top), s.map().GetCurveColor(0));
    s.map().SetMaxPoints(50);
    EXPECT_EQ(s.map().Slots[0].Converted, 1);
    EXPECT_NE(s.At((b.left + b.right) / 2, b.top), s.map().GetCurveColor(0));
    EXPECT_GT(CurvePixels(s), 0); // the part at 0.5 still shows
}

TEST(PlotColours, TheColourDialogChangesOneColourAndTellsTheParent)
{
    enum Tells { Nothing, Repaint, MarkersOnly };
    const struct {
        int code;
        long long answer; // -1: cancel
        Tells tells;
    } cases[] = {
        {500, 0x123456, Repaint}, {600, 0x00FF00, Repaint}, {700, 0x0000FF, Repaint}, {749, 0x0000FE, Repaint},
        {800, 0x101010, Repaint}, {850, 0xFAFAFA, Repaint}, {751, 0x00FFFF, MarkersOnly},
        {752, 0x00FFFE, MarkersOnly}, {753, 0x808000, Repaint}, {758, 0x008080, Repaint},
        {759, 0x404040, Repaint}, {500, -1, Nothing}, {750, 0x111111, Nothing}, {650, 0x111111, Nothing},
    };
    for (const auto& c : cases) {
        Scene s;
        Curve curve;
        curve.AddPoint(0, 0);
        curve.AddPoint(1, 1);
        s.Show(0, &curve);
        s.Repaint();
        const DEFCOLOR before = s.map().GetCurrentColors();
        orlex::test::ScriptAnswer("ColorDialog", c.answer);
        const size_t dialogs = orlex::test::ModalLog().size();
        const int paints = s.host.paints;
        s.map().SetColor(c.code);
        const DEFCOLOR after = s.map().GetCurrentColors();
        const bool opened = c.code != 750 && c.code != 650;
        ASSERT_EQ(orlex::test::ModalLog().size(), dialogs + (opened ? 1 : 0)) << c.code;
        if (opened) {
            const orlex::ModalRecord& r = orlex::test::ModalLog().back();
            EXPECT_EQ(r.kind, "ColorDialog");
            EXPECT_EQ(r.style & (CC_FULLOPEN | CC_RGBINIT | CC_ENABLEHOOK), CC_FULLOPEN | CC_RGBINIT | CC_ENABLEHOOK);
        }
        // Exactly the colours of the code changed.
        DEFCOLOR want = before;
        const COLORREF v = COLORREF(c.answer);
        if (c.tells != Nothing) {
            switch (c.code) {
            case 500: want.Grid = v; break;
            case 600: want.Text = v; break;
            case 800: want.Minor = v; break;
            case 850: want.Background = v; break;
            case 751: want.MarkerActive = v; break;
            case 752: want.MarkerNormal = v; break;
            default:
                if (c.code < 750)
                    want.Curve[c.code - 700] = v;
                else if (c.code - 753 < 6)
                    want.Marker[2 * (c.code - 753)] = want.Marker[2 * (c.code - 753) + 1] = v;
            }
        }
        EXPECT_EQ(std::memcmp(&after, &want, sizeof want), 0) << c.code;
        const auto& notes = s.parent.notes;
        if (c.tells == Repaint) {
            ASSERT_EQ(notes.size(), 1u) << c.code;
            EXPECT_EQ(notes[0].message, MESSAGE_COLOR_CHANGE);
            EXPECT_EQ(notes[0].wParam, WPARAM(c.code));
            EXPECT_EQ(notes[0].colours.Chosen, v);
            EXPECT_EQ(notes[0].colours.Wnd, s.host.m_hWnd);
            EXPECT_EQ(std::memcmp(&notes[0].colours.Colors, &want, sizeof want), 0);
            EXPECT_EQ(notes[0].paintsBefore, paints + 1) << "the plot repaints before the parent hears";
        } else {
            EXPECT_TRUE(notes.empty()) << c.code;
            EXPECT_EQ(s.host.paints, paints) << c.code;
        }
    }
}

TEST(PlotColours, DefaultColoursGoIntoForceWithoutARepaint)
{
    Scene s;
    Curve curve;
    curve.AddPoint(0, 0);
    curve.AddPoint(1, 1);
    s.Show(0, &curve);
    s.Repaint();
    DEFCOLOR d = s.map().GetDefColors();
    d.Grid = 0x0000AA;
    d.Curve[3] = 0x00AA00;
    d.Marker[11] = 0xAA0000;
    s.map().SetDefColors(d);
    const int paints = s.host.paints;
    s.map().ApplyDefColors();
    EXPECT_EQ(s.host.paints, paints);
    const DEFCOLOR now = s.map().GetCurrentColors();
    EXPECT_EQ(std::memcmp(&now, &d, sizeof d), 0);
    ASSERT_EQ(s.parent.notes.size(), 1u);
    EXPECT_EQ(s.parent.notes[0].wParam, WPARAM(900));
    EXPECT_EQ(s.parent.notes[0].colours.Chosen, 0u);
}

TEST(PlotCurves, MarkingAPointTwiceRestoresTheWindow)
{
    Scene s;
    Curve c;
    for (int i = 0; i <= 10; ++i)
        c.AddPoint(float(i), float(i % 4));
    s.Show(0, &c);
    s.Repaint();
    const RECT all{0, 0, 400, 300};
    const auto before = orlex::test::Pixels(s.host.m_hWnd, all);
    s.map().MarkPoint(4);
    EXPECT_NE(orlex::test::Pixels(s.host.m_hWnd, all), before);
    s.map().MarkPoint(4);
    EXPECT_EQ(orlex::test::Pixels(s.host.m_hWnd, all), before);
    s.map().SetPoint(-1); // forgets the diamond that the second call took away
    s.map().MarkPoint(6);
    s.map().MarkPoint(-1);
    s.map().MarkPoint(-1);
    EXPECT_EQ(orlex::test::Pixels(s.host.m_hWnd, all), before);
    s.map().MarkPoint(500); // beyond what was drawn: nothing to invert
    EXPECT_EQ(s.map().GetPoint(), 500);
    EXPECT_EQ(orlex::test::Pixels(s.host.m_hWnd, all), before);
}

TEST(PlotTextList, KeysAndScrollCodesStopAtBothEndsAndScrollTheRows)
{
    Scene s(400, 300, 0);
    Curve c;
    for (int i = 0; i < 100; ++i)
        c.AddPoint(float(i) * 0.5f, float(i) * 2.0f);
    s.map().MapText(nullptr, 1, 0, 0);
    s.Show(0, &c);
    s.Repaint();
    MapClass& m = s.map();
    const int lh = m.TextMap.LineHeight, max = 100 - 300 / lh;
    ASSERT_EQ(m.TextMap.ScrollMax, max);
    // Rows one line apart at the window font's size: a row and the next differ, and the
    // picture of row k stands k line heights down.
    const auto row = [&](int y) { return orlex::test::Pixels(s.host.m_hWnd, RECT{0, y, 400, y + lh}); };
    const auto firstRow = row(0), secondRow = row(lh);
    EXPECT_NE(firstRow, secondRow);
    const struct {
        UINT message;
        WPARAM w;
        LPARAM l;
        int pos;
    } steps[] = {
        {256, 40, 0, 1},  {256, 38, 0, 0},   {256, 38, 0, 0},      {256, 34, 0, 20},    {256, 33, 0, 0},
        {256, 35, 0, max}, {256, 40, 0, max}, {277, 3, 0, max},    {277, 2, 0, max - 20}, {256, 36, 0, 0},
        {277, 5, 0x10007, 7}, {277, 40000, 1000, max}, {277, 5, 0, 0}, {277, 40000, -5, 0}, {277, 9, 0, 0},
        {256, 65, 0, 0},
    };
    for (const auto& st : steps) {
        m.MapText(nullptr, st.message, st.w, st.l);
        orlex::test::Pump();
        EXPECT_EQ(m.TextMap.ScrollPos, st.pos) << st.message << " " << st.w;
        EXPECT_EQ(GetScrollPos(s.host.m_hWnd, SB_VERT), st.pos) << st.message << " " << st.w;
    }
    m.MapText(nullptr, 256, 40, 0); // one line down: the second row now stands first
    orlex::test::Pump();
    EXPECT_EQ(row(0), secondRow);
}

TEST(PlotBadInput, NothingCrashesAndTheWindowStaysSound)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    const struct {
        const char* what;
        int mapType;
        std::vector<std::pair<float, float>> points;
        std::function<void(MapClass&)> set;
        bool drawsCurve;
    } cases[] = {
        {"no curve", 100, {}, nullptr, false},
        {"one x", 100, {{3, 1}, {3, 2}}, nullptr, false},
        {"flat polar", 200, {{-10, -5}, {-1, -5}}, nullptr, false},
        {"polar with max under min", 400, {{-10, -5}, {-1, -8}}, [](MapClass& m) { m.SetAutoScale(DAUTOSCALE{0, 0, 0, -20}); }, false},
        {"semi-log start equals end", 300, {{5, 1}, {5, 2}}, nullptr, false},
        {"NaN and infinite points", 100, {{0, 1}, {nan, 2}, {2, inf}, {3, -inf}, {4, nan}, {5, 1}}, nullptr, false},
        {"NaN fixed scale", 100, {{0, 1}, {1, 2}}, [](MapClass& m) { m.SetAutoScale(DAUTOSCALE{0, 0, std::nan(""), 1}); }, false},
        {"deep zoom", 100, {{0, 0}, {1, 1e30f}, {2, -1e30f}, {3, 0}},
         [](MapClass& m) { m.ZoomState = 1, m.ZoomXMin = 1.0, m.ZoomXMax = 1.0 + 1e-9, m.ZoomYMin = 0, m.ZoomYMax = 1e-9; }, true},
        {"narrow fixed scale over reduced data", 100, {}, [](MapClass& m) { m.SetAutoScale(DAUTOSCALE{0, 0, -1e-12, 1e-12}); m.SetMaxPoints(10); }, true},
        {"zero-size window", 100, {{0, 0}, {1, 1}}, [](MapClass& m) { m.SetBorderWidths(RECT{300, 300, 300, 300}); }, false},
        {"text list of long rows", 0, {{1e30f, -1e30f}, {2e30f, 3e30f}}, [](MapClass& m) { m.SetUnits("abcdefghijklmnopqrstuvwxyz0123456789", "abcdefghijklmnopqrstuvwxyz0123456789", 1, 1, true, nullptr); }, false},
    };
    for (const auto& c : cases) {
        Scene s(400, 300, c.mapType);
        Curve curve;
        for (auto [x, y] : c.points)
            curve.AddPoint(x, y);
        if (std::string(c.what).find("reduced") != std::string::npos)
            for (int i = 0; i < 100; ++i)
                curve.AddPoint(float(i), float(i - 50));
        if (c.set)
            c.set(s.map());
        if (!c.points.empty() || curve.GetNumPts() > 0)
            s.Show(0, &curve);
        s.Repaint();
        s.map().MarkPoint(3);
        s.map().MarkPoint(-1);
        if (c.mapType == 100)
            EXPECT_EQ(CurvePixels(s) > 0, c.drawsCurve) << c.what;
    }
    // Slots out of range are ignored by every setter and getter; a style above 7 is 0.
    MapClass m(nullptr);
    for (int slot : {-1, 2000, 5000}) {
        m.SetDrawStyle(slot, 3);
        m.SetCurveColor(slot, 0x123456, 1);
        m.SetLegendText(slot, "x", 0);
        m.DrawNew(slot);
        EXPECT_EQ(m.GetDrawStyle(slot), 0u);
        EXPECT_EQ(m.GetCurveColor(slot), 0u);
        EXPECT_EQ(m.GetSlotCurve(slot), nullptr);
    }
    m.SetDrawStyle(7, 9);
    EXPECT_EQ(m.GetDrawStyle(7), 0u);
    m.SetDrawStyle(7, 7);
    EXPECT_EQ(m.GetDrawStyle(7), 7u);
    const std::string longText(200, 'a');
    m.SetLegendText(1, longText.c_str(), 0);
    m.SetAxisLabels(longText.c_str(), longText.c_str());
    EXPECT_EQ(std::strlen(m.LegendText[1]), 79u);
    EXPECT_EQ(std::strlen(m.XLabel), 79u);
    EXPECT_EQ(std::strlen(m.YLabel), 79u);
}

TEST(PlotBadInput, AnAssignedMapFreesNothingTwiceAndRebuildsItsArrays)
{
    Scene a, b;
    Curve c;
    for (int i = 0; i < 20; ++i)
        c.AddPoint(float(i), float(i % 5));
    a.Show(0, &c);
    a.Repaint();
    b.Show(0, &c);
    b.Repaint();
    CMarkerMan* own = b.map().GetMarkerMan();
    HWND wnd = b.map().GetWnd();
    static_cast<MapClass&>(b.map()) = a.map();
    EXPECT_EQ(b.map().GetMarkerMan(), own);
    EXPECT_EQ(own->Map, &b.map());
    for (int i = 0; i < kMapSlots; ++i)
        ASSERT_EQ(b.map().Slots[i].DrawNew, 1);
    b.map().m_hWnd = wnd;
    b.Repaint();
    a.Repaint();
    EXPECT_EQ(orlex::test::Pixels(a.host.m_hWnd, RECT{0, 0, 400, 300}), orlex::test::Pixels(b.host.m_hWnd, RECT{0, 0, 400, 300}));
}

}  // namespace
