// Zoom arithmetic on worked examples: snapping to round widths, record conversion, pan
// limits, relative boxes, the setPixels block and the strips of a live scan.
#include <gtest/gtest.h>

#include "imageview/ViewGeometry.h"

using Gdiplus::RectF;
namespace geo = orlex::view;

namespace {

// 512 columns over 1000 nm: 1.953125 nm a pixel.
constexpr double kScan1000nm = 1e-6;

TEST(ViewGeometrySnap, StepsThroughTheTableAboutTheCentre)
{
    struct Case {
        const char* what;
        float width;  // of a square rectangle centred in a 512 x 512 image
        int steps;
        double expectNm;
    } cases[] = {
        {"1000 nm one step in wraps to 900 nm", 512.0f, 1, 900.0},
        {"1000 nm one step out goes to 1100 nm, limited to the image", 512.0f, -1, 1000.0},
        {"200 nm in goes to 180 nm", 102.4f, 1, 180.0},
        {"200 nm out goes to 230 nm", 102.4f, -1, 230.0},
        {"stride 5 from 200 nm looks at 9.0, 4.0, 2.5, 1.4", 102.4f, 5, 140.0},
        {"steps above 5 count as 5", 102.4f, 9, 140.0},
        {"stride -5 from 200 nm looks at 1.1, 2.0, 3.5", 102.4f, -5, 350.0},
        {"500 nm stride 5 stops at 450 nm", 256.0f, 5, 450.0},
        {"120 nm stride 5 wraps into the lower decade at 80 nm", 61.44f, 5, 80.0},
    };
    for (const Case& c : cases) {
        RectF r((512.0f - c.width) / 2, (512.0f - c.width) / 2, c.width, c.width);
        const float cx = r.X + r.Width / 2;
        geo::SnapToNext2DigitRect(r, c.steps, 1.0f, 512, 512, kScan1000nm);
        EXPECT_NEAR(r.Width * 1000.0 / 512.0, c.expectNm, 1e-3) << c.what;
        EXPECT_NEAR(r.Height, r.Width, 1e-3) << c.what;
        if (r.Width < 512.0f) EXPECT_NEAR(r.X + r.Width / 2, cx, 1e-3) << c.what;
        EXPECT_GE(r.X, 0.0f) << c.what;
        EXPECT_LE(r.X + r.Width, 512.0f + 1e-3f) << c.what;
    }
}

TEST(ViewGeometrySnap, RatioAndRefusals)
{
    RectF r(0, 0, 512, 512);
    geo::SnapToNext2DigitRect(r, 1, 0.5f, 512, 512, kScan1000nm);
    EXPECT_NEAR(r.Width, 460.8f, 1e-3);
    EXPECT_NEAR(r.Height, 230.4f, 1e-3);
    EXPECT_NEAR(r.X, 25.6f, 1e-3);
    EXPECT_NEAR(r.Y, 140.8f, 1e-3);

    const RectF before(10, 10, 100, 100);
    for (int cols : {0, -3}) {
        RectF s = before;
        geo::SnapToNext2DigitRect(s, 1, 1.0f, cols, 512, kScan1000nm);
        EXPECT_TRUE(s.Equals(before));
    }
    RectF s = before;
    geo::SnapToNext2DigitRect(s, 0, 1.0f, 512, 512, kScan1000nm);
    EXPECT_TRUE(s.Equals(before));
    RectF z(10, 10, 0, 100);
    geo::SnapToNext2DigitRect(z, 1, 1.0f, 512, 512, kScan1000nm);
    EXPECT_EQ(z.Width, 0.0f);
}

TEST(ViewGeometry, RecordFromRectFRoundsTheOriginAndTruncatesTheSize)
{
    struct Case {
        RectF in;
        CRect out;
    } cases[] = {
        {RectF(0, 0, 64, 32), CRect(0, 0, 64, 32)},
        {RectF(1.5f, 2.49f, 10.9f, 3.99f), CRect(2, 2, 12, 5)},
        {RectF(25.6f, 25.6f, 460.8f, 460.8f), CRect(26, 26, 486, 486)},
        {RectF(-0.7f, -1.2f, 5.5f, 5.5f), CRect(0, 0, 5, 5)},  // trunc(-0.2) is 0, trunc(-0.7) 0
    };
    for (const Case& c : cases) EXPECT_EQ(geo::RecordFromRectF(c.in), c.out);
}

TEST(ViewGeometry, CheckPanKeepsTheSizeAndStaysInside)
{
    struct Case {
        RectF in;
        RectF out;
    } cases[] = {
        {RectF(-5, -7, 10, 20), RectF(0, 0, 10, 20)},
        {RectF(95, 85, 10, 20), RectF(90, 80, 10, 20)},
        {RectF(40, 30, 10, 20), RectF(40, 30, 10, 20)},
        {RectF(-5, 85, 10, 20), RectF(0, 80, 10, 20)},
    };
    for (const Case& c : cases) {
        RectF r = c.in;
        geo::CheckPan(r, 100, 100);
        EXPECT_TRUE(r.Equals(c.out)) << r.X << "," << r.Y;
    }
}

TEST(ViewGeometry, RelativeBoxIsMappedIntoTheCurrentRecord)
{
    struct Case {
        CRect box, first, current, out;
        bool accepted;
    } cases[] = {
        // The first zoom: current is the whole image.
        {CRect(10, 20, 30, 50), CRect(0, 0, 64, 64), CRect(0, 0, 64, 64), CRect(10, 20, 30, 50), true},
        // Inside a zoom of (16,8)-(48,40): half the size.
        {CRect(10, 20, 30, 50), CRect(0, 0, 64, 64), CRect(16, 8, 48, 40), CRect(21, 18, 31, 33), true},
        // 4 units at half scale are 2 pixels: refused.
        {CRect(10, 20, 14, 50), CRect(0, 0, 64, 64), CRect(16, 8, 48, 40), CRect(21, 18, 23, 33), false},
    };
    for (const Case& c : cases) {
        CRect r = c.box;
        EXPECT_EQ(geo::MapRelativeRecord(r, c.first, c.current), c.accepted);
        EXPECT_EQ(r, c.out);
    }
}

TEST(ViewGeometry, MapRelativeRectFScalesIntoTheStoredRectangle)
{
    const RectF r = geo::MapRelativeRectF(RectF(64, 32, 128, 64), RectF(100, 50, 256, 128), 512, 256);
    EXPECT_FLOAT_EQ(r.X, 132.0f);
    EXPECT_FLOAT_EQ(r.Y, 66.0f);
    EXPECT_FLOAT_EQ(r.Width, 64.0f);
    EXPECT_FLOAT_EQ(r.Height, 32.0f);
}

TEST(ViewGeometry, ZoomStep)
{
    const RECT client{0, 0, 256, 256};
    // Square image, wheel in at the centre: snaps to 900 nm about the centre.
    RectF r(0, 0, 512, 512);
    POINT mid{128, 128};
    ASSERT_TRUE(geo::ZoomStepRect(r, 1, &mid, client, 1.0, false, 512, 512, kScan1000nm));
    EXPECT_NEAR(r.X, 25.6f, 1e-3);
    EXPECT_NEAR(r.Width, 460.8f, 1e-3);
    EXPECT_NEAR(r.Height, 460.8f, 1e-3);

    // Off centre, without `centre`, the data under the mouse stays under it.
    RectF s(156, 156, 200, 200);
    POINT at{64, 192};
    const double dataX = 156 + 64.0 * 200 / 256, dataY = 156 + 192.0 * 200 / 256;
    ASSERT_TRUE(geo::ZoomStepRect(s, 1, &at, client, 1.0, false, 512, 512, kScan1000nm));
    EXPECT_NEAR(s.Width, 179.2f, 1e-3);
    EXPECT_NEAR(s.X + at.x * s.Width / 256, dataX, 1e-3);
    EXPECT_NEAR(s.Y + at.y * s.Height / 256, dataY, 1e-3);

    // Step 0 with `centre` moves the point to the middle, clamped to the image.
    RectF t(100, 100, 200, 200);
    POINT p{192, 64};
    ASSERT_TRUE(geo::ZoomStepRect(t, 0, &p, client, 1.0, true, 512, 512, kScan1000nm));
    EXPECT_FLOAT_EQ(t.X, 150.0f);
    EXPECT_FLOAT_EQ(t.Y, 50.0f);
    EXPECT_FLOAT_EQ(t.Width, 200.0f);

    // A wide frame: the first zoom only narrows the whole image, whatever the steps.
    RectF w(0, 0, 512, 512);
    ASSERT_TRUE(geo::ZoomStepRect(w, 3, nullptr, client, 2.0, false, 512, 512, kScan1000nm));
    EXPECT_FLOAT_EQ(w.Width, 256.0f);
    EXPECT_FLOAT_EQ(w.X, 128.0f);
    EXPECT_FLOAT_EQ(w.Height, 512.0f);

    // At one data pixel there is no closer zoom.
    RectF one(10, 10, 1.0f, 1.0f);
    EXPECT_FALSE(geo::ZoomStepRect(one, 1, nullptr, client, 1.0, false, 512, 512, kScan1000nm));
    // Zooming out past the image gives the whole image.
    RectF big(0, 0, 500, 500);
    ASSERT_TRUE(geo::ZoomStepRect(big, -1, nullptr, client, 1.0, false, 512, 512, kScan1000nm));
    EXPECT_TRUE(big.Equals(RectF(0, 0, 512, 512)));
}

TEST(ViewGeometry, PanMovesAgainstTheDragAndStopsAtTheEdges)
{
    const RectF start(100, 100, 200, 200);
    struct Case {
        POINT from, to;
        RectF out;
    } cases[] = {
        {{100, 100}, {110, 95}, RectF(80, 110, 200, 200)},     // right and up: rectangle left and down
        {{100, 100}, {300, 100}, RectF(0, 100, 200, 200)},     // past the left edge
        {{100, 100}, {-400, -400}, RectF(312, 312, 200, 200)}, // past the right and bottom edges
    };
    for (const Case& c : cases) {
        const RectF r = geo::PanRect(start, c.from, c.to, 2.0f, 2.0f, 512, 512);
        EXPECT_TRUE(r.Equals(c.out)) << r.X << "," << r.Y;
    }
    EXPECT_EQ(geo::UnwrapPackedCoord(0xFFFF), 0);
    EXPECT_EQ(geo::UnwrapPackedCoord(32767), 32767);
    EXPECT_EQ(geo::UnwrapPackedCoord(32768), -32767);
    EXPECT_EQ(geo::PackPoint(-1, 3), LPARAM(0x0003FFFF));
}

TEST(ViewGeometry, NearestStretchSamplesPixelCentres)
{
    // 3 source pixels over 8: 0 0 0 1 1 2 2 2 (sampled at (2i+1)/16 * 3).
    const int expect[8] = {0, 0, 0, 1, 1, 2, 2, 2};
    for (int i = 0; i < 8; ++i) EXPECT_EQ(geo::NearestSource(i, 8, 3), expect[i]) << i;
    // Shrinking 8 to 3 picks 1, 4, 6.
    EXPECT_EQ(geo::NearestSource(0, 3, 8), 1);
    EXPECT_EQ(geo::NearestSource(1, 3, 8), 4);
    EXPECT_EQ(geo::NearestSource(2, 3, 8), 6);
}

TEST(ViewGeometry, SetPixelsBlock)
{
    const CRect client(0, 0, 200, 100);
    struct Case {
        int x1, y, x2;
        CRect zoom;
        bool inside;
        CRect block;
    } cases[] = {
        // Whole 100 x 50 image over 200 x 100: 2 x 2 screen pixels a data pixel, plus one.
        {10, 5, 12, CRect(0, 0, 100, 50), true, CRect(20, 10, 25, 13)},
        // Run clipped by the zoom's left edge and by the client's right edge.
        {0, 30, 99, CRect(50, 25, 100, 50), true, CRect(0, 20, 197, 25)},
        {0, 30, 120, CRect(50, 25, 100, 50), true, CRect(0, 20, 200, 25)},
        {10, 5, 12, CRect(50, 25, 100, 50), false, CRect()},  // row above the zoom
        {0, 30, 40, CRect(50, 25, 100, 50), false, CRect()},  // run left of the zoom
    };
    for (const Case& c : cases) {
        CRect b;
        EXPECT_EQ(geo::PixelRunBlock(c.x1, c.y, c.x2, c.zoom, client, b), c.inside);
        if (c.inside) EXPECT_EQ(b, c.block);
    }
}

TEST(ViewGeometry, ScanStrip)
{
    const CRect client(0, 0, 128, 128);
    struct Case {
        int line, lines, direction, zLo, zHi;
        geo::ScanStrip out;
    } cases[] = {
        // 64 rows over 128 pixels, upwards from line 10 for 2 lines: rows 10..12.
        {10, 2, 0, 0, 64, {10, 12, 104, 108}},
        // Downwards: ends at line 10 + 1, reaches to lower rows.
        {10, 2, 1, 0, 64, {9, 11, 106, 110}},
        // Clamped to the shown rows of a zoom.
        {33, 4, 0, 16, 36, {33, 36, 0, 20}},
    };
    for (const Case& c : cases) {
        const geo::ScanStrip s = geo::ComputeScanStrip(c.line, c.lines, c.direction, c.zLo, c.zHi, client);
        EXPECT_EQ(s.first, c.out.first);
        EXPECT_EQ(s.last, c.out.last);
        EXPECT_EQ(s.yTop, c.out.yTop);
        EXPECT_EQ(s.yBot, c.out.yBot);
    }
}

}  // namespace
