// How the plot chooses its axes and lays itself out: nice steps per axis, logarithmic and
// polar limits, the visible part of a curve, the borders, translations, a dropped zoom.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "map_host.h"
#include "plot/PlotGeometry.h"

namespace {

using namespace orlex::plot;
using plot_test::Scene;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(PlotAxes, XAndYChooseStepsFromTheirOwnTables)
{
    const struct {
        int axis;
        double lo, hi, start, end, step;
        int count;
    } cases[] = {
        {kAxisX, 0, 10, 0, 10, 1, 10},        {kAxisY, 0, 10, 0, 10, 1, 10},
        {kAxisX, 0, 2.5, 0, 2.5, 0.5, 5},     {kAxisY, 0, 2.5, 0, 2.5, 0.5, 5},
        {kAxisX, 0, 4, 0, 4, 0.5, 8},         {kAxisY, 0, 4, 0, 4, 1, 4},
        {kAxisX, 0, 1.5, 0, 1.6, 0.2, 8},     {kAxisY, 0, 1.5, 0, 1.5, 0.5, 3},
        {kAxisY, 0.13, 0.87, 0.1, 0.9, 0.1, 8}, {kAxisX, -1, 1, -1, 1, 0.2, 10},
        {kAxisY, 4.9999, 5.0001, 4.9999, 5.0001, 0.00005, 4}, {kAxisX, 0, 0.1, 0, 0.1, 0.01, 10},
    };
    for (const auto& c : cases) {
        const Divisions d = ChooseDivisions(c.axis, c.lo, c.hi);
        ASSERT_TRUE(d.ok) << c.axis << " " << c.lo << ".." << c.hi;
        EXPECT_NEAR(d.step, c.step, c.step * 1e-9) << c.lo << ".." << c.hi;
        EXPECT_NEAR(d.start, c.start, c.step * 1e-6) << c.lo << ".." << c.hi;
        EXPECT_NEAR(d.end, c.end, c.step * 1e-6) << c.lo << ".." << c.hi;
        EXPECT_EQ(d.count, c.count) << c.lo << ".." << c.hi;
    }
    for (auto [lo, hi] : {std::pair{1.0, 1.0}, {2.0, 1.0}, {kNaN, 1.0}, {0.0, kNaN}, {-kInf, 1.0}, {0.0, kInf},
                          {1e17, 1e17 + 1}, {-1.7e308, 1.7e308}})
        EXPECT_FALSE(ChooseDivisions(kAxisY, lo, hi).ok) << lo << ".." << hi;
}

TEST(PlotAxes, LogarithmicPolarAndLabelRules)
{
    const LogLimits a = ChooseLogLimits(1.0, 1000.0), b = ChooseLogLimits(0.037, 4210.0);
    EXPECT_TRUE(a.ok);
    EXPECT_DOUBLE_EQ(a.start, 1.0);
    EXPECT_DOUBLE_EQ(a.end, 1000.0);
    EXPECT_NEAR(b.start, 0.03, 1e-15);
    EXPECT_NEAR(b.end, 5000.0, 1e-9);
    for (auto [lo, hi] : {std::pair{0.0, 10.0}, {-1.0, 10.0}, {kNaN, 10.0}, {1.0, kInf}, {1.0, -5.0}})
        EXPECT_FALSE(ChooseLogLimits(lo, hi).ok) << lo << ".." << hi;

    // Rings of 10 dB; flat, reversed and NaN spans draw one ring, more than ten are refused.
    const std::pair<double, int> rings[] = {{60, 6}, {59.5, 6}, {60.0000001, 7}, {105, 11}, {1e9, 11},
                                            {0, 1}, {-20, 1}, {kNaN, 1}};
    for (auto [span, n] : rings)
        EXPECT_EQ(PolarRingCount(span), n) << span;

    EXPECT_EQ(GuardZero(1e-17, 0.2), 0.0);
    EXPECT_EQ(GuardZero(-0.17, 0.2), 0.0);
    EXPECT_EQ(GuardZero(0.19, 0.2), 0.19);
    // The digits a decade labels at 166, 300, 400 and 600 pixels a decade.
    const char* labelled[] = {"13", "1236", "123468", "123456789"};
    const double perDecade[] = {166, 300, 400, 600};
    for (int k = 0; k < 4; ++k) {
        std::string got;
        for (int d = 0; d <= 10; ++d)
            if (SemiLogLabelled(d, perDecade[k], 1.0))
                got += char('0' + d);
        EXPECT_EQ(got, labelled[k]) << perDecade[k];
    }
    EXPECT_FALSE(SemiLogLabelled(2, 400, 2.0)); // a printer's dots raise the thresholds
}

TEST(PlotAxes, VisibleRangeTakesOnePointBeyondEachEdge)
{
    std::vector<Curve::Point> up, down;
    for (int i = 0; i <= 10; ++i) {
        up.emplace_back(float(i), 0.0f);
        down.emplace_back(float(10 - i), 0.0f);
    }
    const struct {
        const std::vector<Curve::Point>* pts;
        double xStart, xEnd;
        int lo, hi;
    } cases[] = {
        {&up, 0, 10, 0, 10}, {&up, 3.5, 6.5, 3, 7}, {&up, 3, 7, 3, 7}, {&up, -5, 20, 0, 10}, {&up, 20, 30, 10, 10},
        {&down, 0, 10, 0, 10}, {&down, 3.5, 6.5, 3, 7}, {&down, -5, 20, 0, 10},
    };
    for (const auto& c : cases) {
        int lo = -1, hi = -1;
        VisibleRange(c.pts->data(), int(c.pts->size()), c.xStart, c.xEnd, lo, hi);
        EXPECT_EQ(lo, c.lo) << c.xStart << ".." << c.xEnd << (c.pts == &down ? " falling" : "");
        EXPECT_EQ(hi, c.hi) << c.xStart << ".." << c.xEnd;
    }
}

TEST(PlotLayout, BordersFollowTheLabelsAndThePlotOnlySwitch)
{
    const struct {
        bool plotOnly;
        const char* xLabel;
        RECT borders;
        RECT bound;
    } cases[] = {
        {false, "", {60, 12, 15, 16}, {60, 12, 385, 284}},
        {false, "Time", {60, 12, 15, 28}, {60, 12, 385, 272}},
        {true, "", {5, 5, 5, 7}, {5, 5, 395, 293}},
        {true, "Time", {5, 5, 5, 12}, {5, 5, 395, 288}},
    };
    for (const auto& c : cases) {
        MapClass map(nullptr);
        map.SetPlotOnly(c.plotOnly);
        map.SetAxisLabels(c.xLabel, nullptr);
        map.MapType = 100;
        map.MapWidth = 400;
        map.MapHeight = 300;
        map.SetBound();
        const RECT b = map.GetBound(), w = map.GetBorderWidths();
        EXPECT_EQ((std::array{w.left, w.top, w.right, w.bottom}),
                  (std::array{c.borders.left, c.borders.top, c.borders.right, c.borders.bottom}))
            << c.plotOnly << " " << c.xLabel;
        EXPECT_EQ((std::array{b.left, b.top, b.right, b.bottom}),
                  (std::array{c.bound.left, c.bound.top, c.bound.right, c.bound.bottom}));
    }
}

TEST(PlotLayout, OneToOneShrinksTheLongerAxisToEqualUnits)
{
    Scene s(475, 300);
    Curve c;
    c.AddPoint(0, 0);
    c.AddPoint(10, 2);
    s.Show(0, &c);
    s.map().SetUnits("m", "s", 1, 1, true, nullptr);
    s.map().SetAutoScale(DAUTOSCALE{1, 1, 0, 0});
    s.Repaint();
    const RECT unequal = s.map().GetBound();
    s.map().SetUnits("m", "m", 1, 1, true, nullptr);
    s.Repaint();
    const RECT b = s.map().GetBound();
    EXPECT_EQ(unequal.top, 12); // units that differ leave the plot as it was
    EXPECT_EQ(unequal.bottom, 284);
    const double perX = (b.right - b.left) / (s.map().XEnd - s.map().XStart);
    const double perY = (b.bottom - b.top) / (s.map().YEnd - s.map().YStart);
    EXPECT_NEAR(perX, perY, 1.0);
    EXPECT_LT(b.bottom - b.top, unequal.bottom - unequal.top);
}

TEST(PlotLayout, YTranslationMovesTheFixedScaleAndBackExactly)
{
    MapClass map(nullptr);
    map.SetAutoScale(DAUTOSCALE{0, 0, -0.3, 0.7});
    map.SetYTranslation(1e-7);
    EXPECT_DOUBLE_EQ(map.GetAutoScale().MinY, -0.3 + 1e-7);
    map.SetYTranslation(0.0);
    EXPECT_EQ(map.GetAutoScale().MinY, -0.3);
    EXPECT_EQ(map.GetAutoScale().MaxY, 0.7);
}

TEST(PlotZoom, AnAxisThatCannotBeMadeDropsTheZoomAndShowsTheWholePlot)
{
    Curve c;
    for (int i = 0; i <= 10; ++i)
        c.AddPoint(float(i), float(i % 3));
    Scene whole, zoomed;
    whole.Show(0, &c);
    whole.Repaint();
    zoomed.Show(0, &c);
    {
        MapClass& m = zoomed.map();
        m.ZoomState = 1;
        m.ZoomArmed = 0;
        m.ZoomXMin = m.ZoomXMax = 5.0; // a band of no width
        m.ZoomYMin = 0.0;
        m.ZoomYMax = 1.0;
    }
    zoomed.Repaint();
    EXPECT_EQ(zoomed.map().GetZoomState(), 0);
    EXPECT_EQ(zoomed.map().ZoomArmed, 1);
    ASSERT_EQ(zoomed.parent.notes.size(), 1u);
    const plot_test::Note& n = zoomed.parent.notes[0];
    EXPECT_EQ(n.message, MESSAGE_GRID_NOTIFY);
    EXPECT_EQ(n.wParam, WPARAM(MESSAGE_GRID_ZOOM_EVENT));
    GRID_NOTIFY only{};
    only.Wnd = zoomed.host.m_hWnd;
    EXPECT_EQ(std::memcmp(&n.grid, &only, sizeof only), 0);
    const RECT all{0, 0, 400, 300};
    EXPECT_EQ(orlex::test::Pixels(zoomed.host.m_hWnd, all), orlex::test::Pixels(whole.host.m_hWnd, all));
}

}  // namespace
