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

TEST(ViewGeometry, SetPixelsBlock)
{
    const CRect client(0, 0, 200, 100);
    struct Case { int x1, y, x2; CRect zoom; bool inside; CRect block; } cases[] = {
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
    struct Case { int line, lines, direction, zLo, zHi; geo::ScanStrip out; } cases[] = {
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
