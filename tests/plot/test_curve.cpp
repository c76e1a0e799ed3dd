// Curve: limits, translations, copies, statistics and searches on curves small enough
// to check by hand.
#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <vector>

#include "plot/Curve.h"

namespace {

struct Pt {
    float x, y;
};

Curve make(std::initializer_list<Pt> pts)
{
    Curve c;
    for (const Pt& p : pts)
        c.AddPoint(p.x, p.y);
    return c;
}

struct Limits {
    float minDomain, maxDomain, minRange, maxRange;
};

void expectLimits(const Curve& c, const Limits& l, const char* what)
{
    EXPECT_EQ(c.GetMinDomain(), l.minDomain) << what;
    EXPECT_EQ(c.GetMaxDomain(), l.maxDomain) << what;
    EXPECT_EQ(c.GetMinRange(), l.minRange) << what;
    EXPECT_EQ(c.GetMaxRange(), l.maxRange) << what;
}

TEST(Curve, AddPointKeepsTheLimits)
{
    const struct {
        const char* name;
        std::vector<Pt> pts;
        bool overRide;
        Limits preset;
        Limits expected;
        int count;
    } cases[] = {
        {"first point sets all", {{2, 5}}, false, {-9, 9, -9, 9}, {2, 2, 5, 5}, 1},
        {"later points widen", {{2, 5}, {-1, 7}, {4, -3}, {3, 0}}, false, {}, {-1, 4, -3, 7}, 4},
        {"override keeps preset", {{2, 5}}, true, {-9, 9, -9, 9}, {-9, 9, -9, 9}, 1},
        {"override widens preset", {{2, 5}, {20, -30}}, true, {-9, 9, -9, 9}, {-9, 20, -30, 9}, 2},
    };
    for (const auto& c : cases) {
        Curve k;
        k.SetMinDomain(c.preset.minDomain);
        k.SetMaxDomain(c.preset.maxDomain);
        k.SetMinRange(c.preset.minRange);
        k.SetMaxRange(c.preset.maxRange);
        k.SetOverRide(c.overRide);
        int n = 0;
        for (const Pt& p : c.pts)
            n = k.AddPoint(p.x, p.y);
        EXPECT_EQ(n, c.count) << c.name;
        expectLimits(k, c.expected, c.name);
    }
}

TEST(Curve, ReadsOutOfRangeGiveZero)
{
    Curve k = make({{1, 2}, {3, 4}});
    k.SetYTranslation(10);
    k.AddPOI(2.5);
    k.ConvertedData = {{1, 6}};
    const struct {
        int i;
        float x, y, cx, cy, poi;
    } cases[] = {
        {-1, 0, 0, 0, 0, 0},
        {0, 1, 12, 1, 16, 2.5f},
        {1, 3, 14, 0, 0, 0},
        {2, 0, 0, 0, 0, 0},
        {1 << 30, 0, 0, 0, 0, 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(k.Getx(c.i), c.x) << c.i;
        EXPECT_EQ(k.Gety(c.i), c.y) << c.i;
        EXPECT_EQ(k.CGetx(c.i), c.cx) << c.i;
        EXPECT_EQ(k.CGety(c.i), c.cy) << c.i;
        EXPECT_EQ(k.GetPoi(c.i), c.poi) << c.i;
    }
}

TEST(Curve, SetxAndSetyKeepTheLimits)
{
    // Points x = 0, 1, 2, 3 with y = 5, 9, 1, 4: limits x 0..3, y 1..9.
    const struct {
        const char* name;
        bool onX;
        int i;
        float v;
        int result;
        Limits expected;
    } cases[] = {
        {"interior inside", false, 3, 6, 1, {0, 3, 1, 9}},
        {"interior widens max", false, 0, 12, 1, {0, 3, 1, 12}},
        {"interior widens min", false, 3, -2, 1, {0, 3, -2, 9}},
        {"max moves out", false, 1, 11, 1, {0, 3, 1, 11}},
        {"max moves in: rescan", false, 1, 3, 1, {0, 3, 1, 5}},
        {"max moves below min", false, 1, -1, 1, {0, 3, -1, 5}},
        {"min moves out", false, 2, 0, 1, {0, 3, 0, 9}},
        {"min moves in: rescan", false, 2, 6, 1, {0, 3, 4, 9}},
        {"min moves above max", false, 2, 20, 1, {0, 3, 4, 20}},
        {"x max moves in", true, 3, 0.5f, 1, {0, 2, 1, 9}},
        {"x min moves in", true, 0, 2.5f, 1, {1, 3, 1, 9}},
        {"x interior out", true, 1, 7, 1, {0, 7, 1, 9}},
        {"index at the end", false, 4, 100, 0, {0, 3, 1, 9}},
        {"x index at the end", true, 4, 100, 0, {0, 3, 1, 9}},
    };
    for (const auto& c : cases) {
        Curve k = make({{0, 5}, {1, 9}, {2, 1}, {3, 4}});
        EXPECT_EQ(c.onX ? k.Setx(c.i, c.v) : k.Sety(c.i, c.v), c.result) << c.name;
        expectLimits(k, c.expected, c.name);
        if (c.result) {
            EXPECT_EQ(c.onX ? k.Getx(c.i) : k.Gety(c.i), c.v) << c.name;
        }
    }
}

TEST(Curve, SetOnAValueAtBothLimitsIsTheMinimum)
{
    // One point: its y is both limits. Raising it widens the maximum and rescans the
    // minimum; lowering it moves only the minimum (the maximum stays where it was).
    Curve up = make({{0, 5}});
    up.Sety(0, 8);
    expectLimits(up, {0, 0, 8, 8}, "raised");
    Curve down = make({{0, 5}});
    down.Sety(0, 2);
    expectLimits(down, {0, 0, 2, 5}, "lowered");
}

TEST(Curve, TranslationsMoveXAndReadY)
{
    Curve k = make({{1, 10}, {2, 20}, {3, 30}});
    k.SetYTranslation(5);
    EXPECT_EQ(k.GetMaxRange(), 35.0f);
    EXPECT_EQ(k.GetMinRange(), 15.0f);
    EXPECT_EQ(k.Gety(0), 15.0f);
    EXPECT_EQ(k.GetCurveData()[0].second, 10.0f); // not stored
    EXPECT_EQ(k.IsYTranslated(), 1);

    k.ConvertedData = {{1, 1}};
    k.SetXTranslation(5);
    EXPECT_EQ(k.IsXTranslated(), 1);
    EXPECT_EQ(k.Getx(0), 6.0f);
    EXPECT_EQ(k.GetMinDomain(), 6.0f);
    EXPECT_EQ(k.GetMaxDomain(), 8.0f);
    EXPECT_EQ(k.CGetx(0), 1.0f); // converted points stay
    k.SetXTranslation(5);        // the same value: nothing
    EXPECT_EQ(k.Getx(0), 6.0f);
    // From one value straight to another adds the new value to the moved data.
    k.SetXTranslation(2);
    EXPECT_EQ(k.Getx(0), 8.0f);
    EXPECT_EQ(k.GetXTranslation(), 2.0f);
    // Back to 0 takes away only the last value.
    k.SetXTranslation(0);
    EXPECT_EQ(k.Getx(0), 6.0f);
    EXPECT_EQ(k.IsXTranslated(), 0);

    Curve r = make({{0.1f, 0}, {0.7f, 0}});
    r.SetXTranslation(5);
    r.SetXTranslation(0);
    // Restored up to float rounding of the way through 5.
    EXPECT_NEAR(r.Getx(0), 0.1f, 1e-6);
    EXPECT_NEAR(r.Getx(1), 0.7f, 1e-6);
    EXPECT_NEAR(r.GetMinDomain(), 0.1f, 1e-6);
}

TEST(Curve, AddOffsetMovesStoredAndConvertedY)
{
    for (int converted : {0, 1}) {
        Curve k = make({{0, 1}, {1, 3}});
        k.ConvertedData = {{0, 2}};
        k.CMinRange = 2;
        k.CMaxRange = 2;
        k.Converted = (unsigned char)converted;
        k.SetYTranslation(100);
        k.AddOffset(0.5);
        EXPECT_EQ(k.Gety(0), 101.5f);
        EXPECT_EQ(k.GetMaxRange(), 103.5f);
        EXPECT_EQ(k.GetMinRange(), 101.5f);
        EXPECT_EQ(k.GetYTranslation(), 100.0f);
        EXPECT_EQ(k.CGety(0), converted ? 102.5f : 102.0f);
        EXPECT_EQ(k.CGetMaxRange(), converted ? 102.5f : 102.0f);
        EXPECT_EQ(k.CGetMinRange(), converted ? 102.5f : 102.0f);
    }
}

TEST(Curve, SortAndFlip)
{
    Curve k = make({{3, 1}, {1, 2}, {2, 9}, {1, 0}});
    k.ConvertedData = {{5, 5}, {4, 4}};
    k.Sort();
    const std::vector<Curve::Point> sorted = {{1, 0}, {1, 2}, {2, 9}, {3, 1}};
    EXPECT_EQ(k.GetCurveData(), sorted);
    EXPECT_EQ(k.CGetx(0), 5.0f); // converted points not sorted

    Curve f = make({{0, 1}, {1, 2}, {2, 3}});
    f.ConvertedData = {{0, 7}, {1, 8}};
    f.Flip();
    const std::vector<Curve::Point> flipped = {{0, 3}, {1, 2}, {2, 1}};
    EXPECT_EQ(f.GetCurveData(), flipped);
    const std::vector<Curve::Point> cflipped = {{0, 8}, {1, 7}};
    EXPECT_EQ(f.GetConvertedData(), cflipped);
    expectLimits(f, {0, 2, 1, 3}, "flip keeps limits");

    Curve empty;
    empty.Flip();
    empty.Sort();
    EXPECT_EQ(empty.GetNumPts(), 0);
}

TEST(Curve, ValidateLimitsOpensEqualLimits)
{
    Curve zero = make({{0, 0}});
    zero.ValidateLimits();
    expectLimits(zero, {-1e-14f, 1e-14f, -1e-14f, 1e-14f}, "zero");
    Curve big = make({{5, 7}});
    big.ValidateLimits();
    expectLimits(big, {5, 5, 7, 7}, "too small a change to show");
    Curve open = make({{0, 0}, {1, 1}});
    open.ValidateLimits();
    expectLimits(open, {0, 1, 0, 1}, "already open");
}

TEST(Curve, ClearKeepsFlagsLimitsAndCapacity)
{
    Curve k = make({{1, 2}, {5, 6}});
    k.AddPOI(3);
    k.Converted = 1;
    k.ConvertedData = {{1, 2}};
    k.B = {1};
    k.SetXTranslation(1);
    const size_t capacity = k.GetCurveData().capacity();
    k.Clear();
    EXPECT_EQ(k.GetNumPts() + k.CGetNumPts() + k.GetPOINumPts() + int(k.B.size()), 0);
    EXPECT_EQ(k.Converted, 1);
    EXPECT_EQ(k.GetXTranslation(), 1.0f);
    expectLimits(k, {2, 6, 2, 6}, "after Clear");
    EXPECT_EQ(k.GetCurveData().capacity(), capacity);
    k.AddPoint(0, 0);
    expectLimits(k, {0, 0, 0, 0}, "next AddPoint restarts");
}

TEST(Curve, CopyTakesPoisAssignmentKeepsThem)
{
    Curve src = make({{1, 2}, {3, 4}});
    src.AddPOI(1.5);
    src.ConvertedData = {{1, 3}};
    src.B = {0.5};
    src.SetYTranslation(2);

    Curve copy(src);
    EXPECT_EQ(copy.GetPOINumPts(), 1);
    EXPECT_EQ(copy.CGetNumPts(), 1);
    EXPECT_EQ(copy.B.size(), 1u);

    Curve target = make({{9, 9}});
    target.AddPOI(7);
    target.AddPOI(8);
    target.ConvertedData = {{9, 9}, {9, 9}};
    target.B = {4, 4};
    target = src; // neither converted nor splined: those arrays stay the target's
    EXPECT_EQ(target.GetPOINumPts(), 2);
    EXPECT_EQ(target.GetPoi(0), 7.0f);
    EXPECT_EQ(target.GetNumPts(), 2);
    EXPECT_EQ(target.Gety(1), 6.0f);
    EXPECT_EQ(target.CGetNumPts(), 2);
    EXPECT_EQ(target.B.size(), 2u);
    expectLimits(target, {1, 3, 4, 6}, "assigned");

    src.Converted = 1;
    src.Splined = 1;
    target = src;
    EXPECT_EQ(target.CGetNumPts(), 1);
    EXPECT_EQ(target.B.size(), 1u);
    EXPECT_EQ(target.Converted, 1);
    EXPECT_EQ(target.Splined, 1);
    EXPECT_EQ(target.GetPOINumPts(), 2);
}

TEST(Curve, MeanAndMedian)
{
    const struct {
        std::vector<float> y;
        float yTranslation;
        double mean, median;
    } cases[] = {
        {{1, 2, 3, 10}, 0, 4.0, 2.5},
        {{1, 2, 10}, 0, 13.0 / 3.0, 2.0},
        {{10, 1, 2}, 0, 13.0 / 3.0, 2.0},
        {{7}, 0, 7.0, 7.0},
        {{-4, 4}, 1, 1.0, 1.0},
        {{3, 3, 3, 1, 9, 9}, 0, 14.0 / 3.0, 3.0},
        {{5, -1, 2, 8, 0, 1, 4}, 0.5f, 19.0 / 7.0 + 0.5, 2.5},
    };
    for (const auto& c : cases) {
        Curve k;
        for (size_t i = 0; i < c.y.size(); ++i)
            k.AddPoint(float(i), c.y[i]);
        k.SetYTranslation(c.yTranslation);
        EXPECT_DOUBLE_EQ(k.ComputeMean(), c.mean) << c.y.size();
        EXPECT_DOUBLE_EQ(k.ComputeMedian(), c.median) << c.y.size();
    }
    // The sum is taken in double from float terms (y + translation in float).
    Curve f = make({{0, 0.1f}, {1, 0.2f}});
    f.SetYTranslation(0.3f);
    EXPECT_EQ(f.ComputeMean(), (double(0.1f + 0.3f) + double(0.2f + 0.3f)) / 2.0);
    // Converted points stand for the data when Converted is set.
    Curve c = make({{0, 1}, {1, 2}});
    c.ConvertedData = {{0, 10}, {1, 20}, {2, 60}};
    EXPECT_DOUBLE_EQ(c.ComputeMean(), 1.5);
    c.Converted = 1;
    EXPECT_DOUBLE_EQ(c.ComputeMean(), 30.0);
    EXPECT_DOUBLE_EQ(c.ComputeMedian(), 20.0);
    // Empty: 0, without reading anything.
    Curve empty;
    EXPECT_EQ(empty.ComputeMean(), 0.0);
    EXPECT_EQ(empty.ComputeMedian(), 0.0);
}

TEST(Curve, NumberOfIntervalsBetweenTwoX)
{
    const Curve k = make({{0, 0}, {1, 0}, {2, 0}, {3, 0}, {4, 0}});
    const struct {
        float from, to;
        int expected;
    } cases[] = {
        {0.5f, 3.5f, 3}, {0, 4, 3},    // 4 lies on the last interval (index 3)
        {1, 2, 1},                     // 1 lies on interval 0 first, 2 on interval 1
        {2, 2, 0},       {3, 1, 0},    // empty or reversed span
        {-1, 3, 0},                    // xFrom on no interval
        {0.5f, 9, 4},                  // xTo on no interval: n - 1
        {3.5f, 3.75f, 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(k.GetNumPts(c.from, c.to), c.expected) << c.from << ".." << c.to;
    EXPECT_EQ(Curve().GetNumPts(0.0f, 1.0f), 0);
    EXPECT_EQ(make({{0, 0}}).GetNumPts(0.0f, 1.0f), 0);
}

TEST(Curve, FindPointBisectsBothDirections)
{
    const Curve rising = make({{0, 10}, {1, 11}, {2, 12}, {3, 13}, {4, 14}, {5, 15}});
    const Curve falling = make({{5, 15}, {4, 14}, {3, 13}, {2, 12}, {1, 11}, {0, 10}});
    const struct {
        double x;
        int found;
        double y; // the same point on both curves
    } cases[] = {
        {2, 1, 12},   {0, 1, 10},   {5, 1, 15},  {2.4, 1, 12},  {2.6, 1, 13},
        {4.9, 1, 15}, {0.1, 1, 10}, {1.2, 1, 11}, {3.8, 1, 14}, {-0.1, 0, 0},
        {5.01, 0, 0},
    };
    for (const auto& c : cases) {
        for (const Curve* k : {&rising, &falling}) {
            const FINDPOINT r = k->FindPoint(c.x, 0);
            EXPECT_EQ(r.found, c.found) << c.x;
            if (!c.found)
                continue;
            EXPECT_EQ(r.y, c.y) << c.x;
            EXPECT_EQ(k->Getx(r.index) == float(r.y - 10), true) << c.x;
        }
    }
    // x exactly halfway between two points takes the higher index, so a different point
    // on rising and on falling data.
    const struct {
        double x;
        int risingIndex, fallingIndex;
    } ties[] = {{2.5, 3, 3}, {0.5, 1, 5}, {4.5, 5, 1}};
    for (const auto& t : ties) {
        EXPECT_EQ(rising.FindPoint(t.x, 0).index, t.risingIndex) << t.x;
        EXPECT_EQ(falling.FindPoint(t.x, 0).index, t.fallingIndex) << t.x;
    }
    EXPECT_EQ(rising.FindPoint(2.5, 0).y, 13.0);
    EXPECT_EQ(falling.FindPoint(2.5, 0).y, 12.0);
}

TEST(Curve, FindPointEdgeCurves)
{
    Curve one = make({{3, 7}});
    one.SetYTranslation(1);
    EXPECT_EQ(one.FindPoint(3, 0).found, 1);
    EXPECT_EQ(one.FindPoint(3, 0).y, 8.0);
    EXPECT_EQ(one.FindPoint(3.5, 0).found, 0);
    EXPECT_EQ(one.FindPoint(2.5, 0).found, 0);

    Curve empty;
    EXPECT_EQ(empty.FindPoint(0, 0).found, 0);
    EXPECT_EQ(empty.FindPoint(0, 1).found, 0);

    // The converted points are searched with the direction of the stored points.
    Curve conv = make({{0, 0}, {10, 100}});
    conv.ConvertedData = {{0, 1}, {2.5f, 2}, {5, 3}, {7.5f, 4}, {10, 5}};
    EXPECT_EQ(conv.CGetNumPts(), 5);
    const FINDPOINT r = conv.FindPoint(6.0, 1);
    EXPECT_EQ(r.found, 1);
    EXPECT_EQ(r.index, 2);
    EXPECT_EQ(r.y, 3.0);
    EXPECT_EQ(conv.FindPoint(6.0, 0).index, 1);
    // No converted points: not found.
    Curve plain = make({{0, 0}, {10, 100}});
    EXPECT_EQ(plain.FindPoint(5.0, 1).found, 0);
    // The y of an exact hit is formed in float, of a nearest point in double.
    Curve t = make({{0, 0.1f}, {1, 0.1f}, {2, 0.1f}, {3, 0.1f}});
    t.SetYTranslation(0.2f);
    EXPECT_EQ(t.FindPoint(1.0, 0).y, double(0.1f + 0.2f));
    EXPECT_EQ(t.FindPoint(2.9, 0).y, double(0.1f) + double(0.2f));
}

} // namespace
