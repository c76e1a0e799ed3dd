// The view's pictures: pixels of the window against the nearest-neighbour stretch of the
// data computed here, the live-scan strips and their rate limit, colour changes, resizing,
// the one-copy paint, setPixels, the invalid-data display and the refusals of bad calls.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "imageview/BitmapData.h"
#include "imageview/DrawParameters.h"
#include "test_imageview_util.h"

using ivtest::Recorder;
using ivtest::StandInFrame;

namespace {

constexpr double kHalfScale = 4294967295.0 * 0.5;

DPOINT Scan(double x = 1e-6)
{
    DPOINT d;
    d.x = x;
    d.y = x;
    return d;
}

// Distinct values rising along rows and columns.
std::vector<int> Ramp(int rows, int cols)
{
    std::vector<int> d(static_cast<size_t>(rows) * cols);
    for (int r = 0; r < rows; ++r)
        for (int c = 0; c < cols; ++c) d[static_cast<size_t>(r) * cols + c] = (r * 97 + c * 31) * 1000 - 2000000;
    return d;
}

COLORREF FromQuad(const RGBQUAD& q) { return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue); }

// The window an off-line view should show: each client pixel samples the zoom rectangle at
// its centre; display rows count from the top, data rows from the bottom.
std::vector<COLORREF> ExpectedOffline(const std::vector<int>& data, int rows, int cols, const CRect& z, int w, int h,
                                      std::vector<tagRGBQUAD>& table, double low, double high, bool reserveTop,
                                      const std::vector<int>& invalid = {}, COLORREF invalidColour = 0)
{
    std::vector<COLORREF> out;
    for (int y = 0; y < h; ++y) {
        const int t = z.top + static_cast<int>((2LL * y + 1) * z.Height() / (2LL * h));
        for (int x = 0; x < w; ++x) {
            const int c = z.left + static_cast<int>((2LL * x + 1) * z.Width() / (2LL * w));
            const int p = (rows - 1 - t) * cols + c;
            bool bad = false;
            for (int i : invalid) bad = bad || i == p;
            out.push_back(bad ? invalidColour
                              : FromQuad(TableInterpolation::LinearFit24Bit(table.data(), double(data[p]), low, high,
                                                                            reserveTop)));
        }
    }
    return out;
}

// The index a live line's value gets with symmetric limits of scale z and 255 levels.
int LiveIndex(int v, double z)
{
    const double h = z * kHalfScale;
    const double t = (double(v) + h) * 255.0 / (2 * h);
    if (t < 0) return 0;
    return t >= 255 ? 254 : static_cast<int>(t);
}

// Counts the pixels that differ and describes the first.
int Mismatches(const std::vector<COLORREF>& got, const std::vector<COLORREF>& want, int w, std::string& first)
{
    int n = 0;
    for (size_t i = 0; i < got.size() && i < want.size(); ++i) {
        if (got[i] != want[i]) {
            if (n++ == 0) {
                char b[96];
                std::snprintf(b, sizeof b, "at (%d,%d): %06lX, want %06lX", int(i % w), int(i / w),
                              static_cast<unsigned long>(got[i]), static_cast<unsigned long>(want[i]));
                first = b;
            }
        }
    }
    return n + static_cast<int>(got.size() != want.size());
}

class ImageViewTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        ASSERT_TRUE(host.CreateHost(420, 320));
    }
    void TearDown() override
    {
        CImageView::m_bPanTracking = 0;
        CImageView::SetScanLineInfo(1, 0xFFFF00);
        host.DestroyWindow();
    }
    bool MakeView(CImageView& v, CWnd* parent, int w, int h)
    {
        const bool ok = v.Create(nullptr, "view", WS_CHILD | WS_VISIBLE, CRect(0, 0, w, h), parent, 100) != FALSE;
        orlex::test::Pump();
        return ok;
    }
    std::vector<COLORREF> Window(CImageView& v, int w, int h)
    {
        orlex::test::Pump();
        return orlex::test::Pixels(v.GetSafeHwnd(), CRect(0, 0, w, h));
    }
    Recorder host;
};

TEST_F(ImageViewTest, OfflineWindowIsTheNearestStretchOfTheZoomRectangle)
{
    const int rows = 48, cols = 64;
    std::vector<int> data = Ramp(rows, cols);
    auto table = ivtest::TestTable();
    const double low = -2000000.0, high = (47 * 97 + 63 * 31) * 1000.0 - 2000000.0;
    struct Case {
        const char* what;
        CSize client;
        CRect zoom;
        bool inFrame;
        CSize madeAt;  // when set, the view is made at this size and then resized
    } cases[] = {
        {"whole image enlarged", {200, 150}, {0, 0, 64, 48}, false, {}},
        {"whole image shrunk", {40, 30}, {0, 0, 64, 48}, false, {}},
        {"zoomed part", {200, 150}, {8, 4, 40, 36}, false, {}},
        {"3 x 3 data pixels over an odd size", {97, 61}, {30, 20, 33, 23}, false, {}},
        {"zoomed part through the frame's paint", {180, 120}, {20, 10, 52, 34}, true, {}},
        {"resized: a new memory bitmap of the new size", {150, 47}, {0, 0, 64, 48}, false, {100, 80}},
    };
    for (const Case& c : cases) {
        StandInFrame frame;
        CWnd* parent = &host;
        if (c.inFrame) {
            ASSERT_TRUE(frame.CreateFrame(&host, CRect(10, 10, 400, 300)));
            parent = &frame;
        }
        CImageView view(false);
        frame.view = &view;
        const CSize made = c.madeAt.cx ? c.madeAt : c.client;
        ASSERT_TRUE(MakeView(view, parent, made.cx, made.cy));
        view.DrawImage(data.data(), rows, cols, Scan(), table.data(), 1.0, low, high, {});
        if (c.madeAt.cx) {
            view.MoveWindow(0, 0, c.client.cx, c.client.cy);
            BITMAP bm{};
            ASSERT_NE(view.GetMemBitmap()->GetBitmap(&bm), 0);
            EXPECT_EQ(CSize(bm.bmWidth, bm.bmHeight), c.client);
            view.Invalidate(FALSE);
        }
        if (c.zoom != CRect(0, 0, cols, rows)) {
            CRect z = c.zoom;
            ASSERT_EQ(view.AddZoomRecord(z, 0), 1);
            view.UpdateImage();
        }
        std::string first;
        const auto want = ExpectedOffline(data, rows, cols, c.zoom, c.client.cx, c.client.cy, table, low, high, false);
        EXPECT_EQ(Mismatches(Window(view, c.client.cx, c.client.cy), want, c.client.cx, first), 0) << c.what << " " << first;
        if (c.inFrame) {
            // Each redraw of the memory bitmap is told to the frame's parent, with the frame.
            const auto mdc = host.Of(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT);
            ASSERT_FALSE(mdc.empty());
            EXPECT_EQ(mdc.back().wp, 0u);
            EXPECT_EQ(mdc.back().lp, reinterpret_cast<LPARAM>(&frame));
        }
        view.DestroyWindow();
        if (c.inFrame) frame.DestroyWindow();
        host.Clear();
    }
}

TEST_F(ImageViewTest, LiveLinesFillTheWindowFromTheBottom)
{
    const int rows = 32, cols = 64;
    auto table = ivtest::TestTable();
    std::vector<int> blank(static_cast<size_t>(rows) * cols, INT32_MIN);
    CImageView view(true);
    ASSERT_TRUE(MakeView(view, &host, 128, 64));
    const double z = 1.0;
    view.DrawImage(blank.data(), rows, cols, Scan(), table.data(), z, -z * kHalfScale, z * kHalfScale, {});
    EXPECT_FALSE(view.HasData());  // a live view keeps no data pointer
    view.Enable6HzUpdateImageLine(false);
    std::vector<int> line(cols);
    for (int k = 0; k < 12; ++k) {
        for (int c = 0; c < cols; ++c) line[c] = (c * 64 + k * 1000) * 65536 - 1000000000;
        ASSERT_EQ(view.DrawLine(line.data(), k, cols, Scan(), 0, z, {}), 0);
        // Line k is display row rows-1-k, two screen rows high; every column is one
        // data column over two screen columns.
        const int y = 2 * (rows - 1 - k);
        for (int c = 0; c < cols; c += 7) {
            const COLORREF want = FromQuad(table[LiveIndex(line[c], z)]);
            orlex::test::Pump();
            EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(2 * c + 1, y)), want) << "line " << k << " col " << c;
            EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(2 * c, y + 1)), want) << "line " << k << " col " << c;
        }
    }
    // Lines not scanned yet still show the blank image.
    EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(5, 2)), FromQuad(table[0]));

    // A colour change rewrites the palette only: the indices stay, the window shows them
    // through the new table.
    auto other = ivtest::TestTable(77);
    const auto* b = reinterpret_cast<const BYTE*>(view.LockBitmap());
    const std::vector<BYTE> before(b + kBitmap8BitPixelOffset, b + kBitmap8BitPixelOffset + rows * cols);
    view.UnLockBitmap();
    view.SetColorTable(other.data());
    b = reinterpret_cast<const BYTE*>(view.LockBitmap());
    EXPECT_EQ(0, std::memcmp(b + kBitmap8BitPixelOffset, before.data(), before.size()));
    EXPECT_EQ(0, std::memcmp(b + 40, other.data(), 1024));
    view.UnLockBitmap();
    orlex::test::Pump();
    for (int c = 0; c < cols; c += 9)
        EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(2 * c, 2 * (rows - 1 - 11))), FromQuad(other[before[11 * cols + c]]));
}

TEST_F(ImageViewTest, LiveStripsAreLimitedToOneIn160Milliseconds)
{
    const int rows = 32, cols = 32;
    auto table = ivtest::TestTable();
    std::vector<int> blank(static_cast<size_t>(rows) * cols, INT32_MIN);
    CImageView view(true);
    ASSERT_TRUE(MakeView(view, &host, 64, 64));
    view.DrawImage(blank.data(), rows, cols, Scan(), table.data(), 1.0, -kHalfScale, kHalfScale, {});
    std::vector<int> line(cols, 0);  // index 127
    const COLORREF lit = FromQuad(table[127]), dark = FromQuad(table[0]);
    auto shows = [&](int k) {
        orlex::test::Pump();
        return orlex::test::Pixel(view.GetSafeHwnd(), CPoint(10, 2 * (rows - 1 - k))) == lit;
    };
    // The first line of a view always passes the limit.
    ASSERT_EQ(view.DrawLine(line.data(), 0, cols, Scan(), 1, 1.0, {}), 0);
    EXPECT_TRUE(shows(0));
    // Within 160 ms the next line is scaled into the block but not shown.
    orlex::test::AdvanceClock(100);
    ASSERT_EQ(view.DrawLine(line.data(), 1, cols, Scan(), 1, 1.0, {}), 0);
    EXPECT_FALSE(shows(1));
    EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(10, 2 * (rows - 1 - 1))), dark);
    // The next strip after the limit reaches back over the skipped line.
    orlex::test::AdvanceClock(100);
    ASSERT_EQ(view.DrawLine(line.data(), 2, cols, Scan(), 1, 1.0, {}), 0);
    EXPECT_TRUE(shows(2));
    EXPECT_TRUE(shows(1));
    EXPECT_FALSE(shows(3));
}

TEST_F(ImageViewTest, PaintCopiesTheMemoryBitmapAndSetPixelsDrawsThere)
{
    const int rows = 48, cols = 64;
    std::vector<int> data = Ramp(rows, cols);
    auto table = ivtest::TestTable();
    CImageView view(false);
    ASSERT_TRUE(MakeView(view, &host, 128, 96));
    view.DrawImage(data.data(), rows, cols, Scan(), table.data(), 1.0, -2e6, 5e6, {});
    const HWND w = view.GetSafeHwnd();
    const COLORREF before = orlex::test::Pixel(w, CPoint(21, 11));

    // setPixels changes the memory bitmap only; the next paint copies it unchanged.
    view.setPixels(10, 5, 12, RGB(9, 8, 7));
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(w, CPoint(21, 11)), before);
    view.Invalidate(FALSE);
    orlex::test::Pump();
    // Data pixels 10..12 of row 5 at 2x2 a pixel: columns 20..24, rows 10..12.
    for (CPoint p : {CPoint(20, 10), CPoint(24, 12), CPoint(22, 11)}) EXPECT_EQ(orlex::test::Pixel(w, p), RGB(9, 8, 7));
    for (CPoint p : {CPoint(19, 10), CPoint(25, 10), CPoint(20, 13), CPoint(20, 9)})
        EXPECT_NE(orlex::test::Pixel(w, p), RGB(9, 8, 7));

    // Outside the zoom rectangle nothing is drawn.
    CRect z(32, 24, 64, 48);
    ASSERT_EQ(view.AddZoomRecord(z, 0), 1);
    view.UpdateImage();
    const auto zoomed = Window(view, 128, 96);
    view.setPixels(0, 5, 63, RGB(1, 2, 3));
    view.Invalidate(FALSE);
    EXPECT_EQ(Window(view, 128, 96), zoomed);
}

TEST_F(ImageViewTest, InvalidPointsShowInTheDisplayColourAfterUpdate)
{
    const int rows = 8, cols = 8;
    std::vector<int> data = Ramp(rows, cols);
    auto table = ivtest::TestTable();
    CImageView view(false);
    ASSERT_TRUE(MakeView(view, &host, 32, 32));
    const std::vector<int> invalid = {0, 9, 63};
    view.DrawImage(data.data(), rows, cols, Scan(), table.data(), 1.0, -2e6, 7e6, invalid);
    std::string first;
    auto want = ExpectedOffline(data, rows, cols, CRect(0, 0, cols, rows), 32, 32, table, -2e6, 7e6, false);
    EXPECT_EQ(Mismatches(Window(view, 32, 32), want, 32, first), 0) << first;

    view.SetAllowInvalidDataDisp(true);
    view.SetInvalidDataDisp(1);
    view.UpdateInvalidPointDisplay();
    want = ExpectedOffline(data, rows, cols, CRect(0, 0, cols, rows), 32, 32, table, -2e6, 7e6, true, invalid,
                           RGB(255, 0, 0));
    EXPECT_EQ(Mismatches(Window(view, 32, 32), want, 32, first), 0) << first;
    // A new table rebuilds the block from the kept data.
    auto other = ivtest::TestTable(100);
    view.SetColorTable(other.data());
    want = ExpectedOffline(data, rows, cols, CRect(0, 0, cols, rows), 32, 32, other, -2e6, 7e6, true, invalid,
                           RGB(255, 0, 0));
    EXPECT_EQ(Mismatches(Window(view, 32, 32), want, 32, first), 0) << first;
}

TEST_F(ImageViewTest, NewImagesKeepOrResetTheZoom)
{
    std::vector<int> a(16 * 16, 5), b(8 * 16, 5);
    CImageView view(false);
    ASSERT_TRUE(MakeView(view, &host, 32, 32));
    view.DrawImage(nullptr, 16, 16, Scan(), nullptr, 1.0, 0, 10, {});
    EXPECT_EQ(view.GetZoomCount(), 1);
    EXPECT_EQ(view.LockBitmap(), nullptr);  // data null makes no block
    view.DrawImage(a.data(), 16, 16, Scan(), nullptr, 1.0, 0, 10, {});
    CRect z(2, 2, 10, 10);
    ASSERT_EQ(view.AddZoomRecord(z, 0), 1);
    view.DrawImage(nullptr, 16, 16, Scan(), nullptr, 1.0, 0, 10, {});  // same size: still zoomed
    EXPECT_EQ(view.GetZoomRect(), CRect(2, 2, 10, 10));
    EXPECT_NE(view.LockBitmap(), nullptr);  // and the block is kept
    view.UnLockBitmap();
    view.DrawImage(b.data(), 8, 16, Scan(), nullptr, 1.0, 0, 10, {});  // another size: whole image
    EXPECT_EQ(view.GetZoomCount(), 1);
    EXPECT_EQ(view.GetZoomRect(), CRect(0, 0, 16, 8));
    view.FlushImage(false);  // forgets the rows, not the columns
    EXPECT_EQ(view.GetDataSize0(), CSize(16, 0));
    EXPECT_FALSE(view.IsValidImage(0, 0));
}

TEST_F(ImageViewTest, DrawLineResults)
{
    std::vector<int> data(16 * 16, 0), line(16, 0);
    auto table = ivtest::TestTable();
    CImageView live(true), offline(false);
    ASSERT_TRUE(MakeView(live, &host, 32, 32));
    ASSERT_TRUE(MakeView(offline, &host, 32, 32));
    EXPECT_EQ(live.DrawLine(line.data(), 0, 16, Scan(), 0, 1.0, {}), 1);  // no image yet
    live.DrawImage(data.data(), 16, 16, Scan(), table.data(), 1.0, -kHalfScale, kHalfScale, {});
    offline.DrawImage(data.data(), 16, 16, Scan(), table.data(), 1.0, -kHalfScale, kHalfScale, {});
    struct Case {
        const char* what;
        CImageView* view;
        int* line;
        int number;
        int cols;
        double z;
        int result;
    } cases[] = {
        {"fits", &live, line.data(), 15, 16, 1.0, 0},
        {"line number equal to the rows", &live, line.data(), 16, 16, 1.0, 2},
        {"other width", &live, line.data(), 3, 12, 1.0, 2},
        {"null line", &live, nullptr, 3, 16, 1.0, 3},
        {"zero width", &live, line.data(), 3, 0, 1.0, 3},
        {"negative line number", &live, line.data(), -1, 16, 1.0, 3},
        {"scale not above 0", &live, line.data(), 3, 16, 0.0, 3},
        {"an off-line block takes no lines", &offline, line.data(), 3, 16, 1.0, 3},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.view->DrawLine(c.line, c.number, c.cols, Scan(), 0, c.z, {1, 2}), c.result) << c.what;
}

TEST_F(ImageViewTest, ScanMarkerAndLineMarkThroughTheFrame)
{
    StandInFrame frame;
    ASSERT_TRUE(frame.CreateFrame(&host, CRect(0, 0, 300, 200)));
    CImageView view(true);
    frame.view = &view;
    ASSERT_TRUE(MakeView(view, &frame, 64, 64));
    const int rows = 32, cols = 32;
    auto table = ivtest::TestTable();
    std::vector<int> blank(rows * cols, INT32_MIN), line(cols, 0);
    view.DrawImage(blank.data(), rows, cols, Scan(), table.data(), 1.0, -kHalfScale, kHalfScale, {});
    view.Enable6HzUpdateImageLine(false);
    CImageView::SetScanLineInfo(1, RGB(0, 255, 255));
    ASSERT_EQ(view.DrawLine(line.data(), 10, cols, Scan(), 0, 1.0, {}), 0);
    EXPECT_EQ(frame.lineMarkCalls, 1);
    // Upwards from line 10 over 2 lines: rows 10..12 end at client row 64 - 2*10 = 44, the
    // strip's leading (top) edge is 64 - 2*12 = 40 and the marker lies at its bottom, 44.
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(5, 44)), RGB(0, 255, 255));
    EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(5, 43)), FromQuad(table[127]));
    // With the frame's marker switched off the strip shows the data only.
    frame.scanLine = FALSE;
    ASSERT_EQ(view.DrawLine(line.data(), 20, cols, Scan(), 0, 1.0, {}), 0);
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(view.GetSafeHwnd(), CPoint(5, 24)), FromQuad(table[0]));
    // A zoomed view: a line just past the shown part moves the mark only.
    CRect z(0, 8, 32, 16);  // block rows 16..24
    ASSERT_EQ(view.AddZoomRecord(z, 0), 1);
    const int marks = frame.lineMarkCalls;
    EXPECT_EQ(view.DrawLine(line.data(), 25, cols, Scan(), 0, 1.0, {}), 0);
    EXPECT_EQ(frame.lineMarkCalls, marks + 1);
    EXPECT_EQ(view.DrawLine(line.data(), 26, cols, Scan(), 0, 1.0, {}), 0);
    EXPECT_EQ(frame.lineMarkCalls, marks + 1);
    view.DestroyWindow();
    frame.DestroyWindow();
}

TEST_F(ImageViewTest, CoordinateTooltipShowsTheHostsTextUntilTheMouseLeaves)
{
    StandInFrame frame;
    ASSERT_TRUE(frame.CreateFrame(&host, CRect(0, 0, 300, 200)));
    CImageView view(false);
    frame.view = &view;
    ASSERT_TRUE(MakeView(view, &frame, 100, 100));
    const HWND w = view.GetSafeHwnd();
    view.setCoordinateDisplay(true);
    ASSERT_NE(view.GetCoordinateTip(), nullptr);
    orlex::test::MouseMove(w, CPoint(20, 30));
    const auto asked = host.Of(MESSAGE_UPDATE_TOOL_TIP);
    ASSERT_EQ(asked.size(), 1u);
    EXPECT_EQ(asked[0].wp, 0u);
    EXPECT_EQ(asked[0].point, CPoint(20, 30));
    EXPECT_STREQ(view.GetCoordinateTip()->GetShownText().GetString(), "x=20 y=30");
    // A drag with the left button alone hides it and asks nothing.
    orlex::test::MouseDown(w, CPoint(20, 30));
    const size_t asks = host.Of(MESSAGE_UPDATE_TOOL_TIP).size();
    orlex::test::MouseMove(w, CPoint(25, 30));
    EXPECT_STREQ(view.GetCoordinateTip()->GetShownText().GetString(), "");
    EXPECT_EQ(host.Of(MESSAGE_UPDATE_TOOL_TIP).size(), asks);
    orlex::test::MouseUp(w, CPoint(25, 30));
    orlex::test::MouseMove(w, CPoint(40, 41));
    EXPECT_STREQ(view.GetCoordinateTip()->GetShownText().GetString(), "x=40 y=41");
    // Once the mouse has left, the next tick of the tooltip's timer hides it.
    orlex::test::MouseMove(frame.GetSafeHwnd(), CPoint(250, 150));
    orlex::test::AdvanceClock(1000);
    EXPECT_STREQ(view.GetCoordinateTip()->GetShownText().GetString(), "");
    view.setCoordinateDisplay(false);
    EXPECT_EQ(view.GetCoordinateTip(), nullptr);

    view.DestroyWindow();
    frame.DestroyWindow();
}

TEST_F(ImageViewTest, BadParametersOfTheDrawingCallsTellTheUser)
{
    const char* imageText = "CBorderCon::DrawImage - bad parameter passed\n";
    const char* lineText = "CBorderCon::DrawLine - bad parameter passed\n";
    int line[4] = {};
    struct Case {
        const char* what;
        bool isLine;
        const int* line;
        int cols;
        double z, aspect, scan;
        bool bad;
        const char* shown;
    } cases[] = {
        {"good image", false, nullptr, 64, 1.0, 1.0, 1e-6, false, nullptr},
        {"no columns", false, nullptr, 0, 1.0, 1.0, 1e-6, true, imageText},
        {"scale 0", false, nullptr, 64, 0.0, 1.0, 1e-6, true, imageText},
        {"negative aspect", false, nullptr, 64, 1.0, -1.0, 1e-6, true, imageText},
        {"NaN scale", false, nullptr, 64, std::nan(""), 1.0, 1e-6, true, imageText},
        {"scan 0: refused silently", false, nullptr, 0, 1.0, 1.0, 0.0, true, nullptr},
        {"good line", true, line, 4, 1.0, 1.0, 1e-6, false, nullptr},
        {"null line", true, nullptr, 4, 1.0, 1.0, 1e-6, true, lineText},
        {"line scale 0", true, line, 4, 0.0, 1.0, 1e-6, true, lineText},
        {"line with scan 0: silently", true, line, 4, 1.0, 1.0, 0.0, true, nullptr},
    };
    for (const Case& c : cases) {
        orlex::ModalScript::Reset();
        orlex::test::ScriptAnswer("MessageBox", IDOK);
        const bool bad = c.isLine ? orlex::view::CheckDrawLineParameters(c.line, c.cols, c.z, c.aspect, c.scan)
                                  : orlex::view::CheckDrawImageParameters(c.cols, c.z, c.aspect, c.scan);
        EXPECT_EQ(bad, c.bad) << c.what;
        const auto& log = orlex::test::ModalLog();
        if (c.shown) {
            ASSERT_EQ(log.size(), 1u) << c.what;
            EXPECT_EQ(log[0].kind, "MessageBox");
            EXPECT_EQ(log[0].text, c.shown) << c.what;
        } else {
            EXPECT_TRUE(log.empty()) << c.what;
        }
    }
    // The view itself survives what the frame would let through.
    CImageView view(false);
    ASSERT_TRUE(MakeView(view, &host, 16, 16));
    std::vector<int> d(4, 1);
    view.DrawImage(d.data(), -2, 2, Scan(), nullptr, 1.0, 0, 1, {});
    view.DrawImage(d.data(), 2, 2, Scan(), nullptr, 1.0, 5, 5, {});  // equal limits: no block
    EXPECT_EQ(view.LockBitmap(), nullptr);
    view.SetColorTable(nullptr);
    view.UpdateInvalidPointDisplay();
}

}  // namespace
