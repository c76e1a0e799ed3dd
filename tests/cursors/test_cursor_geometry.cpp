// The arithmetic of the cursors on its own: view pixels to data pixels and metres and back,
// distances to lines and segments, turning points, keeping windows near the view; and the
// small records and switches of the base.
#include <climits>
#include <cmath>

#include "cursor_test_util.h"
#include "cursors/CursorGeometry.h"

using namespace orlex::cursors;

TEST(CursorGeometry, MappingRoundTripsAndAppliesTheCursorScaleAfterTheDivision)
{
    CursorMapping m;
    m.W = 200;
    m.H = 100;
    m.DX = 512;
    m.DY = 256;
    m.S = 1e-6;
    m.A = 0.5;
    CURSOR_POS pos{};
    m.FillPoint(pos, POINT{50, 25}, false);
    EXPECT_EQ(pos.x1, 128);
    EXPECT_EQ(pos.y1, 64);
    EXPECT_DOUBLE_EQ(pos.dX1, 128 * 1e-6 / 512);
    EXPECT_DOUBLE_EQ(pos.dY1, 64 * 1e-6 / 256 / 0.5);
    POINT back{};
    ASSERT_TRUE(m.ViewPoint(POINT{128, 64}, back));
    EXPECT_EQ(back.x, 50);
    EXPECT_EQ(back.y, 25);
    // Data saved on an image half the size: the scale of 2 multiplies after dividing by DX.
    m.cx = m.cy = 2.0;
    ASSERT_TRUE(m.ViewPoint(POINT{100, 3}, back));
    EXPECT_EQ(back.x, 78);  // trunc(200 * 100 / 512 * 2 + 0.5)
    // Unusable views and zero scales leave the point alone.
    for (auto change : {+[](CursorMapping& k) { k.W = 1; }, +[](CursorMapping& k) { k.xr = 0; },
                        +[](CursorMapping& k) { k.DY = 0; }}) {
        CursorMapping k = m;
        change(k);
        POINT p{-7, -7};
        EXPECT_FALSE(k.ViewPoint(POINT{1, 1}, p));
        EXPECT_EQ(p.x, -7);
    }
    EXPECT_EQ(TruncSat(std::nan("")), 0);
    EXPECT_EQ(TruncSat(1e300), INT_MAX);
    EXPECT_EQ(TruncSat(-2.7), -2);
}

TEST(CursorGeometry, DistancesToLinesAndSegments)
{
    struct Case {
        POINT p, a, b;
        double line, segment;
    };
    const Case cases[] = {
        {{3, 5}, {0, 0}, {0, 10}, 3.0, 3.0},             // vertical, between the ends
        {{3, 14}, {0, 0}, {0, 10}, 5.0, 5.0},            // vertical, past an end
        {{5, 4}, {0, 0}, {10, 0}, 4.0, 4.0},             // horizontal
        {{14, 3}, {0, 0}, {10, 0}, 3.0, 5.0},            // horizontal, the segment ends at b
        {{0, 10}, {0, 0}, {10, 10}, 7.0710678, 7.0710678},  // diagonal, foot inside
        {{20, 20}, {0, 0}, {10, 10}, 0.0, 14.0},         // on the line, past the end
    };
    for (const Case& c : cases) {
        EXPECT_NEAR(LineDistance(c.p, c.a, c.b), c.line, 1e-6) << c.p.x << "," << c.p.y;
        EXPECT_NEAR(SegmentDistance(c.p, c.a, c.b), c.segment, 1e-6) << c.p.x << "," << c.p.y;
    }
    EXPECT_EQ(RoundedDistance(POINT{0, 0}, POINT{3, 4}), 5u);
    EXPECT_DOUBLE_EQ(AngleDegrees(0, 10), 90.0);
    POINT pts[2] = {{10, 0}, {-10, 0}};
    RotatePoints(POINT{0, 0}, pts, 2, 90.0);
    EXPECT_EQ(pts[0].x, 0);
    EXPECT_EQ(pts[0].y, -10);  // counter-clockwise on the screen
    EXPECT_EQ(pts[1].y, 10);
}

TEST(CursorGeometry, WindowsKeepNearTheViewTopAndLeftFirst)
{
    const RECT client{0, 0, 100, 80};
    struct Case {
        RECT in, out;
    };
    const Case cases[] = {
        {{-20, -30, 0, -10}, {-5, -5, 15, 15}},     // pushed down and right to -selzone
        {{90, 70, 120, 95}, {74, 59, 104, 84}},     // pushed up and left to one pixel inside
        {{10, 10, 30, 30}, {10, 10, 30, 30}},       // inside: untouched
        {{-20, -30, 200, 300}, {-5, -5, 215, 325}}, // too big: the top left wins
    };
    for (const Case& c : cases) {
        const RECT r = KeepWindowNearView(c.in, client, 5);
        EXPECT_EQ(CRect(r), CRect(c.out)) << c.in.left << "," << c.in.top;
    }
    EXPECT_EQ(CRect(RectAround(POINT{INT_MAX, 0}, -4)), CRect(kCursorCoordLimit, 0, kCursorCoordLimit, 0));
}

TEST(CursorGeometry, CursorTypeFlagsAndLabels)
{
    IMAGE_CURSOR_TYPES t;
    t.SetCursorType(kCursorCross, 1);
    t.SetCursorType(kCursorTip, 1);
    EXPECT_EQ(t.IsCursorTypeSet(kCursorCross), 1);
    EXPECT_EQ(t.m_nTypes[12], 1);
    EXPECT_EQ(t.IsCursorTypeSet(kCursorTip), 0);
    EXPECT_EQ(t.IsCursorTypeSet(kCursorRemoved), 0);
    t.m_strLabels[12] = "X";
    IMAGE_CURSOR_TYPES copy = t;
    t.Reset();
    EXPECT_EQ(t.IsCursorTypeSet(kCursorCross), 0);
    EXPECT_STREQ(t.GetLabel(kCursorCross), "X");
    EXPECT_EQ(copy.IsCursorTypeSet(kCursorCross), 1);
    EXPECT_STREQ(IMAGE_CURSOR_TYPES().GetLabel(kCursorHorzLinked), "&Horz Linked Line");
}

class BaseTest : public curtest::CursorScene {};

TEST_F(BaseTest, SmartCornersAndHighlightSections)
{
    Show(64, 128, false);
    curtest::ProbeKind kind;
    CRect r(20, 20, 70, 60);
    auto* p = static_cast<ProbeCursor*>(view->AddCursor(&r, ProbeCursor::kType, 0.0, nullptr, 0));
    ASSERT_NE(p, nullptr);
    orlex::test::Pump();
    // Corners of the shape (25, 25)-(65, 55): 6 x 6 squares from corner - 3 to corner + 2.
    for (POINT c : {POINT{25, 25}, POINT{65, 25}, POINT{25, 55}, POINT{65, 55}}) {
        for (int d : {-3, 2}) {
            EXPECT_EQ(orlex::test::Pixel(V(), POINT{c.x + d, c.y + d}), RGB(255, 0, 255)) << c.x << "," << c.y;
        }
        EXPECT_NE(orlex::test::Pixel(V(), POINT{c.x + 3, c.y + 3}), RGB(255, 0, 255));
    }
    EXPECT_EQ(p->IsSubSectionHilited(-1), 0);
    EXPECT_EQ(p->SetHilited(1, 2), 0);
    EXPECT_EQ(p->IsSubSectionHilited(-1), 1);
    EXPECT_EQ(p->IsSubSectionHilited(2), 1);
    EXPECT_EQ(p->IsSubSectionHilited(3), 0);
}
