#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>
#include <vector>

#include "foundation/FFTransform.h"
#include "foundation/Matrix.h"
#include "plot/Curve.h"

namespace {

using Pts = std::vector<std::pair<float, float>>;

Curve Make(Pts const &pts)
{
    Curve c;
    for (auto const &p : pts)
        c.AddPoint(p.first, p.second);
    return c;
}

Curve Make(std::vector<float> const &x, std::vector<float> const &y)
{
    Curve c;
    for (size_t i = 0; i < x.size(); ++i)
        c.AddPoint(x[i], y[i]);
    return c;
}

std::vector<float> Range(int n)
{
    std::vector<float> v(n);
    for (int i = 0; i < n; ++i)
        v[i] = float(i);
    return v;
}

void ExpectConverted(Curve const &c, Pts const &expected)
{
    ASSERT_EQ(c.CGetNumPts(), int(expected.size()));
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_FLOAT_EQ(c.ConvertedData[i].first, expected[i].first) << "x of output " << i;
        EXPECT_FLOAT_EQ(c.ConvertedData[i].second, expected[i].second) << "y of output " << i;
    }
}

enum : unsigned { kWhole = 1, kMax = 4, kMin = 8, kMean = 16, kMedian = 32 };

struct RuleCase {
    const char *name;
    std::vector<float> x, y;
    float xFrom, xTo;
    int numPts;
    unsigned flags;
    std::vector<float> outY; // outputs stand at i * step + xFrom
};

// 13 points on 0..12 reduced to 5: step 3, edges 1.5, 4.5, 7.5, 10.5 (13.5 for the median's
// last bin). The first bin is half a bin wide: {0, 1}, then {2, 3, 4}, {5, 6, 7}, {8, 9, 10}, {11, 12}.
const std::vector<float> kY13 = {4, 1, 9, 2, 3, 0, 8, 7, 5, 5, 1, 6, 2};

const RuleCase kRules[] = {
    {"max, bins of 2 and 3", Range(13), kY13, 0, 0, 5, kWhole | kMax, {4, 9, 8, 5, 6}},
    {"min, bins of 2 and 3", Range(13), kY13, 0, 0, 5, kWhole | kMin, {1, 2, 0, 1, 2}},
    {"mean, bins of 2 and 3", Range(13), kY13, 0, 0, 5, kWhole | kMean, {2.5f, 14.0f / 3, 5, 11.0f / 3, 4}},
    {"median, bins of 2 and 3", Range(13), kY13, 0, 0, 5, kWhole | kMedian, {2.5f, 3, 7, 5, 4}},
    {"bits above 7 are not looked at", Range(13), kY13, 0, 0, 5, 256 | kWhole | kMax, {4, 9, 8, 5, 6}},

    // Mean with two points per bin on y = 0, 2, 4...: the first bin holds one point.
    {"mean, half first bin", Range(9), {0, 2, 4, 6, 8, 10, 12, 14, 16}, 0, 0, 5, kWhole | kMean, {0, 3, 7, 11, 15}},

    // A point exactly on an edge (1.5 and 4.5 here) belongs to the next bin.
    {"max, points on edges", {0, 1.5f, 3, 4.5f, 6}, {1, 2, 3, 4, 5}, 0, 0, 3, kWhole | kMax, {1, 3, 5}},
    {"mean, points on edges", {0, 1.5f, 3, 4.5f, 6}, {1, 2, 3, 4, 5}, 0, 0, 3, kWhole | kMean, {1, 2.5f, 4.5f}},
    {"median, points on edges", {0, 1.5f, 3, 4.5f, 6}, {1, 2, 3, 4, 5}, 0, 0, 3, kWhole | kMedian, {1, 2.5f, 4.5f}},

    // Empty bins (edges 1, 3, 5, 7): an empty bin shows the next point's y without taking it,
    // so bin 3 still sees the point at 5 (which sits on edge 5).
    {"max, empty bins", {0, 5, 6, 8}, {1, 7, 2, 3}, 0, 0, 5, kWhole | kMax, {1, 7, 7, 7, 3}},
    {"min, empty bins", {0, 5, 6, 8}, {1, 7, 2, 3}, 0, 0, 5, kWhole | kMin, {1, 7, 7, 2, 3}},
    {"mean, empty bins", {0, 5, 6, 8}, {1, 7, 2, 3}, 0, 0, 5, kWhole | kMean, {1, 7, 7, 4.5f, 3}},
    {"median, empty bins", {0, 5, 6, 8}, {1, 7, 2, 3}, 0, 0, 5, kWhole | kMedian, {1, 7, 7, 4.5f, 3}},

    // xTo below the last x: the last output of max, min and mean takes every remaining
    // point; the median's last bin stops at its edge 9.
    {"max, last bin to the end", Range(11), Range(11), 0, 8, 5, kMax, {0, 2, 4, 6, 10}},
    {"min, last bin to the end", Range(11), Range(11), 0, 8, 5, kMin, {0, 1, 3, 5, 7}},
    {"mean, last bin to the end", Range(11), Range(11), 0, 8, 5, kMean, {0, 1.5f, 3.5f, 5.5f, 8.5f}},
    {"median, last bin at its edge", Range(11), Range(11), 0, 8, 5, kMedian, {0, 1.5f, 3.5f, 5.5f, 7.5f}},

    // xFrom past the first point: the walk starts at the first x >= xFrom.
    {"mean from inside", Range(11), Range(11), 2, 8, 4, kMean, {2, 3.5f, 5.5f, 8.5f}},
    {"max from between points", Range(11), Range(11), 1.5f, 7.5f, 3, kMax, {2, 5, 10}},

    // x folding back inside the range (edges 1, 3): a bin ends at the first point not below
    // its edge, so the point at 0.5 falls in the second bin although it is below the first edge.
    {"max, x folds back", {0, 2, 0.5f, 3, 4}, {10, 20, 30, 40, 50}, 0, 0, 3, kWhole | kMax, {10, 30, 50}},
    {"mean, x folds back", {0, 2, 0.5f, 3, 4}, {10, 20, 30, 40, 50}, 0, 0, 3, kWhole | kMean, {10, 25, 45}},
    {"median, x folds back", {0, 2, 0.5f, 3, 4}, {10, 20, 30, 40, 50}, 0, 0, 3, kWhole | kMedian, {10, 25, 45}},
};

TEST(CurveConvert, RulesOnHandWorkedCurves)
{
    for (auto const &c : kRules) {
        SCOPED_TRACE(c.name);
        Curve curve = Make(c.x, c.y);
        ASSERT_EQ(curve.Convert(c.xFrom, c.xTo, c.numPts, c.flags), c.numPts);
        EXPECT_EQ(curve.Converted, 1);
        EXPECT_EQ(curve.GetNumPts(), int(c.x.size()));
        const float from = (c.flags & kWhole) ? c.x.front() : c.xFrom;
        const float to = (c.flags & kWhole) ? c.x.back() : c.xTo;
        const float step = (to - from) / float(c.numPts - 1);
        Pts expected;
        for (int i = 0; i < c.numPts; ++i)
            expected.emplace_back(float(i) * step + from, c.outY[i]);
        ExpectConverted(curve, expected);
    }
}

TEST(CurveConvert, MeanKeepsConvertedLimits)
{
    Curve c = Make(Range(13), kY13);
    c.SetYTranslation(100);
    ASSERT_EQ(c.Convert(0, 0, 5, kWhole | kMean), 5);
    EXPECT_FLOAT_EQ(c.CMinRange, 2.5f);
    EXPECT_FLOAT_EQ(c.CMaxRange, 5.0f);
    // The converted points are stored without the Y translation, like the points.
    EXPECT_FLOAT_EQ(c.CGety(0), 102.5f);
    EXPECT_FLOAT_EQ(c.CGetMaxRange(), 105.0f);
}

TEST(CurveConvert, RefusalsAndWhatTheyLeave)
{
    enum Leaves { kUnchanged, kEmptied };
    struct Case {
        const char *name;
        float xFrom, xTo;
        unsigned flags;
        Leaves leaves;
        int convertedAfter;
    };
    const Case cases[] = {
        {"xFrom below the first x", -1, 10, kMean, kUnchanged, 1},
        {"xTo above the last x", 0, 10.5f, kMax, kUnchanged, 1},
        {"span of zero", 5, 5, kMean, kEmptied, 0},
        {"span below zero", 6, 4, kMedian, kEmptied, 0},
        {"two types at once", 0, 10, 6, kEmptied, 1},
        {"no type", 0, 10, kWhole, kEmptied, 1},
        {"flags zero", 0, 10, 0, kEmptied, 1},
        {"unknown type 64", 0, 10, 64, kEmptied, 1},
        {"mean and median", 0, 10, kMean | kMedian, kEmptied, 1},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        Curve curve = Make(Range(11), Range(11));
        ASSERT_EQ(curve.Convert(0, 0, 3, kWhole | kMean), 3);
        const Pts before = curve.ConvertedData;
        EXPECT_EQ(curve.Convert(c.xFrom, c.xTo, 4, c.flags), 0);
        EXPECT_EQ(curve.Converted, c.convertedAfter);
        if (c.leaves == kUnchanged)
            EXPECT_EQ(curve.ConvertedData, before);
        else
            EXPECT_TRUE(curve.ConvertedData.empty());
    }
}

TEST(CurveConvert, FallingDataAreNotReduced)
{
    Curve c = Make({8, 6, 4, 2, 0}, {1, 2, 3, 4, 5});
    for (unsigned type : {unsigned(kMax), unsigned(kMin), unsigned(kMean), unsigned(kMedian), 2u}) {
        SCOPED_TRACE(type);
        EXPECT_EQ(c.Convert(0, 0, 3, kWhole | type), 0);
        EXPECT_EQ(c.Converted, 0);
        EXPECT_EQ(c.CGetNumPts(), 0);
    }
    Curve empty;
    EXPECT_EQ(empty.Convert(0, 0, 3, kWhole | kMean), 0);
    EXPECT_EQ(empty.CGetNumPts(), 0);
}

// 10000 rising points to 8192, the maximum rule: the global maximum survives.
TEST(CurveConvert, LongCurveKeepsItsMaximum)
{
    Curve c(10000);
    std::mt19937 rng(7);
    std::uniform_real_distribution<float> noise(-1, 1);
    for (int i = 0; i < 10000; ++i)
        c.AddPoint(0.25f * i + 3, noise(rng));
    c.Sety(6789, 5.0f);
    ASSERT_EQ(c.Convert(0, 0, 8192, 5), 8192);
    EXPECT_EQ(c.GetNumPts(), 10000);
    EXPECT_EQ(c.CGetNumPts(), 8192);
    EXPECT_EQ(c.CGetx(0), c.Getx(0));
    EXPECT_NEAR(c.CGetx(8191), c.Getx(9999), 1e-3);
    float best = -10;
    for (int i = 0; i < 8192; ++i)
        best = std::max(best, c.CGety(i));
    EXPECT_EQ(best, 5.0f);
}

// The median of every bin is the middle of the sorted values (mean of the two middles for
// even counts), for small bins and for large ones, on spread, clustered and repeated data.
TEST(CurveConvert, MedianIsExactOnRandomBins)
{
    struct Case {
        const char *name;
        int points, numPts;
        float (*value)(std::mt19937 &);
    };
    const Case cases[] = {
        {"small bins, repeats", 5000, 97,
         [](std::mt19937 &r) { return float(int(r() % 81) - 40) * 0.37f; }},
        {"large bins, spread over both signs", 30000, 9,
         [](std::mt19937 &r) { return std::uniform_real_distribution<float>(-1e6f, 1e6f)(r); }},
        {"large bins, narrow noise", 30000, 12,
         [](std::mt19937 &r) { return 1000.0f + std::uniform_real_distribution<float>(0, 1e-3f)(r); }},
        {"large bins, clustered with outliers", 30000, 8,
         [](std::mt19937 &r) {
             const unsigned v = r() % 1000;
             return v == 0 ? 3e38f : v == 1 ? -3e38f : float(v % 3) + 0.5f;
         }},
        {"large bins, nearly constant", 30000, 5,
         [](std::mt19937 &r) { return r() % 500 == 0 ? 7.0f : 2.0f; }},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        std::mt19937 rng(11);
        std::uniform_real_distribution<float> gap(0.0f, 2.0f);
        std::vector<float> x, y;
        float at = 0;
        for (int i = 0; i < c.points; ++i) {
            at += gap(rng);
            x.push_back(at);
            y.push_back(c.value(rng));
        }
        Curve curve = Make(x, y);
        ASSERT_EQ(curve.Convert(0, 0, c.numPts, kWhole | kMedian), c.numPts);

        const float step = (x.back() - x.front()) / float(c.numPts - 1);
        const float halfFrom = step * 0.5f + x.front();
        size_t k = 0;
        for (int i = 0; i < c.numPts; ++i) {
            const float edge = float(i) * step + halfFrom;
            std::vector<double> bin;
            while (k < x.size() && edge > x[k])
                bin.push_back(y[k++]);
            ASSERT_FALSE(bin.empty());
            std::sort(bin.begin(), bin.end());
            const size_t m = bin.size() / 2;
            const float expected = bin.size() % 2 ? float(bin[m]) : float((bin[m - 1] + bin[m]) * 0.5);
            EXPECT_EQ(curve.CGety(i), expected) << "bin " << i << " of " << bin.size();
        }
    }
}

// Hostile data: every rule answers with numPts points or a refusal, reads nothing outside
// the points (checked by the sanitizer build) and does not hang.
TEST(CurveConvert, OddDataNeverBreakTheWalk)
{
    const float nan = std::nanf(""), inf = INFINITY;
    struct Case {
        const char *name;
        std::vector<float> x, y;
        float xFrom, xTo;
        unsigned whole;
    };
    const Case cases[] = {
        {"NaN in x", {0, nan, 2, 3}, {1, 2, 3, 4}, 0, 0, kWhole},
        {"NaN and infinity in y", {0, 1, 2, 3}, {nan, inf, -inf, 4}, 0, 0, kWhole},
        {"NaN limits", {0, 1, 2, 3}, {1, 2, 3, 4}, nan, nan, 0},
        {"infinite last x", {0, 1, 2, inf}, {1, 2, 3, 4}, 0, 0, kWhole},
        {"repeated x", {1, 1, 1, 2}, {5, 6, 7, 8}, 0, 0, kWhole},
        {"one point", {1}, {5}, 0, 0, kWhole},
        {"huge first x, tiny step", {1e7f, 1e7f + 1, 1e7f + 2}, {1, 2, 3}, 0, 0, kWhole},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        for (unsigned type : {2u, 4u, 8u, 16u, 32u}) {
            Curve curve = Make(c.x, c.y);
            const int made = curve.Convert(c.xFrom, c.xTo, 1000, c.whole | type);
            EXPECT_TRUE(made == 0 || made == 1000) << type;
            EXPECT_EQ(curve.CGetNumPts(), made) << type;
        }
        Curve curve = Make(c.x, c.y);
        curve.EqualSpace(7, 0, Curve::LowHit);
        EXPECT_EQ(curve.CGetNumPts(), 7);
        curve.Solve(0, 1.0, 1e-6, 0);
        curve.Interpolate(1.5f, 0);
    }
}

TEST(CurveConvert, SplineRuleFollowsInterpolate)
{
    Curve c = Make({0, 1, 2, 3}, {0, 1, 0, 5});
    ASSERT_EQ(c.Convert(0, 0, 7, kWhole | 2), 7);
    EXPECT_EQ(c.Splined, 1);
    const float expected[] = {0, 0.6875f, 1, 0.6875f, 0, 0, 0};
    for (int i = 0; i < 7; ++i) {
        EXPECT_FLOAT_EQ(c.CGetx(i), 0.5f * i);
        EXPECT_FLOAT_EQ(c.CGety(i), expected[i]) << i;
    }
    EXPECT_FLOAT_EQ(c.CMinRange, 0.0f);
    EXPECT_FLOAT_EQ(c.CMaxRange, 1.0f);
}

// (0,0), (1,1), (2,0), (3,5): the natural spline through the first three points,
// S0 = 1.5 d - 0.5 d^3 and S1 = 1 - 1.5 d^2 + 0.5 d^3, then constant over the last interval.
TEST(CurveSpline, WorkedCoefficientsAndValues)
{
    Curve c = Make({0, 1, 2, 3}, {0, 1, 0, 5});
    c.Spline();
    ASSERT_EQ(c.Splined, 1);
    const std::vector<double> b = {1.5, 0, 0}, cc = {0, -1.5, 0}, d = {-0.5, 0.5, 0};
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(c.B[i], b[i], 1e-12) << i;
        EXPECT_NEAR(c.C[i], cc[i], 1e-12) << i;
        EXPECT_NEAR(c.D[i], d[i], 1e-12) << i;
    }

    struct Case {
        float x;
        int valid;
        float value;
    };
    const Case cases[] = {
        {0, 1, 0},     {0.5f, 1, 0.6875f}, {1, 1, 1},   {1.5f, 1, 0.6875f}, {2, 1, 0},
        {2.5f, 1, 0},  {3, 1, 0},          // the last interval is constant at y[n-2]
        {-0.1f, 0, 0}, {3.1f, 0, 0},
    };
    for (auto const &k : cases) {
        SCOPED_TRACE(k.x);
        const CRESULT r = c.Interpolate(k.x);
        EXPECT_EQ(r.valid, k.valid);
        if (k.valid) {
            EXPECT_FLOAT_EQ(r.value, k.value);
        }
    }
}

// Irregular data: inside [x0, x[n-2]] the spline is the natural cubic spline of the first
// n-1 points, solved here as a full system for the second derivatives.
TEST(CurveSpline, MatchesNaturalSplineOfAllButTheLastPoint)
{
    const std::vector<float> x = {0, 0.5f, 1.75f, 2, 3.5f, 4, 6, 7.25f};
    const std::vector<float> y = {1, -2, 0.5f, 3, 2, -1, 4, 9};
    Curve c = Make(x, y);

    const int m = int(x.size()) - 1; // knots 0..m-1
    Matrix a(m, m);
    std::vector<double> rhs(m, 0.0);
    a(0, 0) = 1;
    a(m - 1, m - 1) = 1;
    for (int i = 1; i < m - 1; ++i) {
        const double h0 = x[i] - x[i - 1], h1 = x[i + 1] - x[i];
        a(i, i - 1) = h0;
        a(i, i) = 2 * (h0 + h1);
        a(i, i + 1) = h1;
        rhs[i] = 6 * ((y[i + 1] - y[i]) / h1 - (y[i] - y[i - 1]) / h0);
    }
    a.LU();
    a.BKSub(rhs.data()); // second derivatives M

    for (int i = 0; i < m - 1; ++i) {
        const double h = x[i + 1] - x[i];
        for (double t : {0.0, 0.2, 0.5, 0.9}) {
            const double xv = x[i] + t * h;
            const double A = (x[i + 1] - xv) / h, B = (xv - x[i]) / h;
            const double s = A * y[i] + B * y[i + 1] +
                             ((A * A * A - A) * rhs[i] + (B * B * B - B) * rhs[i + 1]) * h * h / 6;
            const CRESULT r = c.Interpolate(float(xv));
            ASSERT_EQ(r.valid, 1) << xv;
            EXPECT_NEAR(r.value, s, 1e-4) << "x = " << xv;
        }
    }
    EXPECT_FLOAT_EQ(c.Interpolate(6.5f).value, y[m - 1]);
    EXPECT_FLOAT_EQ(c.Interpolate(7.25f).value, y[m - 1]);
}

TEST(CurveSpline, TooFewPointsAndChangedData)
{
    Curve two = Make({0, 1}, {3, 4});
    EXPECT_EQ(two.Interpolate(0.5f).valid, 0);
    EXPECT_EQ(two.Splined, 0);
    EXPECT_EQ(two.Solve(0, 3.5, 1e-6, 0).valid, 0);

    // Points added after a spline: the next evaluation splines the new data.
    Curve c = Make({0, 1, 2}, {0, 1, 0});
    ASSERT_EQ(c.Interpolate(0.5f).valid, 1);
    c.AddPoint(3, 5);
    const CRESULT r = c.Interpolate(2.5f);
    EXPECT_EQ(r.valid, 1);
    EXPECT_FLOAT_EQ(r.value, 0.0f);
    EXPECT_FLOAT_EQ(c.Interpolate(0.5f).value, 0.6875f);
    EXPECT_EQ(c.B.size(), 3u);
}

TEST(CurveInterpolate, RememberedInterval)
{
    Curve c = Make({0, 1, 2, 3, 4, 5}, {0, 2, 1, 3, 2, 4});
    // A rising run gives the plain values.
    const float run[] = {0, 0.3f, 1, 1.7f, 2.2f, 3.9f, 4, 5};
    for (size_t i = 0; i < std::size(run); ++i) {
        const CRESULT a = c.Interpolate(run[i], i == 0 ? 1 : 0);
        const CRESULT b = c.Interpolate(run[i]);
        EXPECT_EQ(a.valid, 1) << run[i];
        EXPECT_EQ(a.value, b.value) << run[i];
    }
    // Going back within the run: not found; with a reset: found.
    EXPECT_EQ(c.Interpolate(4.5f, 1).valid, 1);
    EXPECT_EQ(c.Interpolate(1.5f, 0).valid, 0);
    EXPECT_EQ(c.Interpolate(1.5f, 1).valid, 1);

    // The interval is shared: one left far out by a longer curve finds nothing on a short
    // one until a reset, and reads nothing outside it.
    Curve longer = Make(Range(50), Range(50));
    EXPECT_EQ(longer.Interpolate(45.5f, 1).valid, 1);
    EXPECT_EQ(c.Interpolate(0.5f, 0).valid, 0);
    EXPECT_EQ(c.Interpolate(0.5f, 1).valid, 1);
}

TEST(CurveSolve, NewtonFromTheLeftEnd)
{
    Curve c = Make({0, 1, 2, 3}, {0, 1, 0, 5});
    struct Case {
        const char *name;
        int interval;
        double y, tol;
        int maxIt;
        int valid;
        float value;
    };
    const Case cases[] = {
        // S0 = 1.5 d - 0.5 d^3 takes 0.6875 at 0.5.
        {"converges", 0, 0.6875, 1e-9, 0, 1, 0.5f},
        // One step from 0 reaches 0.6875 / 1.5; the second exceeds the limit.
        {"runs out of iterations", 0, 0.6875, 1e-9, 1, 0, 0.6875f / 1.5f},
        // S1 starts flat (B = 0) and S2 is flat throughout: the derivative at the left end
        // is 0 and the iteration fails at once at x[i].
        {"derivative vanishes", 1, 0.5, 1e-9, 0, 0, 1.0f},
        {"flat last interval", 2, 0.5, 1e-9, 0, 0, 2.0f},
        {"interval out of range", 3, 0.5, 1e-9, 0, 0, 0.0f},
        {"negative interval", -1, 0.5, 1e-9, 0, 0, 0.0f},
    };
    for (auto const &k : cases) {
        SCOPED_TRACE(k.name);
        const CRESULT r = c.Solve(k.interval, k.y, k.tol, k.maxIt);
        EXPECT_EQ(r.valid, k.valid);
        EXPECT_NEAR(r.value, k.value, 1e-6);
    }
}

// A fold in x: (0,0)-(4,4) rises, (4,4)-(2,8) runs back (never a hit), (2,8)-(6,0) rises
// again, so x = 3 lies on two pieces with values 3 and 6.
TEST(CurveEqualSpace, FoldingPolyline)
{
    struct Case {
        const char *name;
        Pts pts;
        int numPts;
        float xMax;
        Curve::hitStyle style;
        Pts out;
    };
    const Pts fold = {{0, 0}, {4, 4}, {2, 8}, {6, 0}};
    const Case cases[] = {
        {"high", fold, 3, 6, Curve::HighHit, {{1, 1}, {3, 6}, {5, 2}}},
        {"low", fold, 3, 6, Curve::LowHit, {{1, 1}, {3, 3}, {5, 2}}},
        {"xMax from the last x", fold, 3, 0, Curve::LowHit, {{1, 1}, {3, 3}, {5, 2}}},
        // Past the data no interval hits: the output repeats the previous one.
        {"no hit repeats", fold, 4, 8, Curve::HighHit, {{1, 1}, {3, 6}, {5, 2}, {7, 2}}},
        // Before the data: the first y.
        {"no hit at the start", {{2, 5}, {6, 9}}, 3, 6, Curve::HighHit, {{1, 5}, {3, 6}, {5, 8}}},
    };
    for (auto const &k : cases) {
        SCOPED_TRACE(k.name);
        Curve c = Make(k.pts);
        c.Convert(0, 0, 2, kWhole | kMean); // something to replace
        c.ConvertedData.resize(10);
        const unsigned char converted = c.Converted;
        const float cmin = c.CMinRange;
        c.EqualSpace(k.numPts, k.xMax, k.style);
        ExpectConverted(c, k.out);
        EXPECT_EQ(c.Converted, converted);
        EXPECT_EQ(c.CMinRange, cmin);
    }
    Curve c = Make(fold);
    c.EqualSpace(0, 6, Curve::HighHit);
    EXPECT_EQ(c.CGetNumPts(), 0);
}

TEST(CurveSpectrum, ThousandPointsUseFiveHundredTwelve)
{
    Curve c(1000);
    const double pi = std::acos(-1.0);
    for (int i = 0; i < 1000; ++i)
        c.AddPoint(float(i), float(3.0 * std::sin(2 * pi * 32 * i / 512.0)));
    {
        FFTransform none(&c); // not converted yet: nothing to transform
        EXPECT_EQ(none.GetNumPts(), 0);
        EXPECT_EQ(none.GetMod(0), 0.0);
    }
    // One point per bin: the converted data are the points.
    ASSERT_EQ(c.Convert(0, 0, 1000, kWhole | kMean), 1000);
    FFTransform f(&c);
    ASSERT_EQ(f.GetNumPts(), 512);
    EXPECT_NEAR(f.GetMod(32), 3.0, 1e-3);
    for (int k = 1; k < 256; ++k)
        if (k != 32) {
            EXPECT_LT(f.GetMod(k), f.GetMod(32)) << k;
        }
}

} // namespace
