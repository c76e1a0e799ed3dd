// Zoom and pan driven as a user drives them: zoom boxes as a box cursor reports them, the
// wheel, double clicks and drags through the harness; the registered messages that reach
// the frame and the host, with their parameters.
#include <gtest/gtest.h>

#include <vector>

#include "test_imageview_util.h"

using Gdiplus::RectF;
using ivtest::Received;
using ivtest::Recorder;
using ivtest::StandInFrame;
using orlex::view::PackPoint;

namespace {

DPOINT Scan(double x = 1e-6)
{
    DPOINT d;
    d.x = x;
    d.y = x;
    return d;
}

class ZoomTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        ASSERT_TRUE(host.CreateHost(420, 320));
        ASSERT_TRUE(frame.CreateFrame(&host, CRect(10, 10, 400, 300)));
        table = ivtest::TestTable();
    }
    void TearDown() override
    {
        CImageView::m_bPanTracking = 0;
        if (view.GetSafeHwnd()) view.DestroyWindow();
        frame.DestroyWindow();
        host.DestroyWindow();
    }
    // A view of `size` data pixels square in a client of `client` pixels, in the frame.
    void Show(int size, int client, bool oneZoom)
    {
        data.assign(static_cast<size_t>(size) * size, 0);
        for (size_t i = 0; i < data.size(); ++i) data[i] = static_cast<int>(i % 251) * 1000;
        frame.view = &view;
        ASSERT_TRUE(view.Create(nullptr, "view", WS_CHILD | WS_VISIBLE, CRect(0, 0, client, client), &frame, 100));
        view.SetOneZoom(oneZoom ? 1 : 0);
        view.DrawImage(data.data(), size, size, Scan(), table.data(), 1.0, 0, 251000, {});
        Settle();
    }
    void Settle()
    {
        orlex::test::Pump();
        frame.Clear();
        host.Clear();
    }
    // A zoom box as the box cursor reports its release, in units of the whole image.
    void Box(int x1, int y1, int x2, int y2, int zoomFlag = 0)
    {
        CURSOR_POS pos{};
        pos.type = 7;
        pos.x1 = x1;
        pos.y1 = y1;
        pos.x2 = x2;
        pos.y2 = y2;
        pos.nZoomFlag = zoomFlag;
        view.SendMessage(MESSAGE_CURSOR_NOTIFY_STR, 514, reinterpret_cast<LPARAM>(&pos));
        orlex::test::Pump();
    }
    static void ExpectRectF(const RectF& r, float x, float y, float w, float h)
    {
        EXPECT_NEAR(r.X, x, 1e-3);
        EXPECT_NEAR(r.Y, y, 1e-3);
        EXPECT_NEAR(r.Width, w, 1e-3);
        EXPECT_NEAR(r.Height, h, 1e-3);
    }
    HWND V() const { return view.GetSafeHwnd(); }

    Recorder host;
    StandInFrame frame;
    CImageView view{false};
    std::vector<int> data;
    std::vector<tagRGBQUAD> table;
};

TEST_F(ZoomTest, ListModeBoxesAddRecordsButtonsStepAndAZoomFromTheMiddleDropsTheTail)
{
    Show(64, 128, false);
    frame.zoomButton = 1;
    Box(8, 8, 40, 40);
    EXPECT_EQ(view.GetZoomCount(), 2);
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 40, 40));
    EXPECT_EQ(frame.panEnabled, 1);
    // The frame hears of the zoom by a posted event; the host gets the box's record.
    auto zooms = frame.Of(MESSAGE_ZOOM_EVENT_STR);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].wp, 514u);
    auto notes = host.Of(MESSAGE_CURSOR_NOTIFY_STR);
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0].wp, 514u);
    EXPECT_EQ(notes[0].pos.x2, 40);

    // A box inside the zoom is relative to the whole window: half scale here.
    Box(0, 0, 32, 32);
    EXPECT_EQ(view.GetZoomCount(), 3);
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 24, 24));
    EXPECT_EQ(view.GetZoomIndex(), 2u);

    // The zoom buttons step back; a new box from there replaces the tail.
    Settle();
    view.ZoomTo(1, 1);
    orlex::test::Pump();
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 40, 40));
    zooms = frame.Of(MESSAGE_ZOOM_EVENT_STR);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].wp, 1u);
    EXPECT_EQ(zooms[0].lp, 0);
    Box(32, 32, 64, 64);
    EXPECT_EQ(view.GetZoomCount(), 3);
    EXPECT_EQ(view.GetZoomRect(), CRect(24, 24, 40, 40));

    // Too small a box from the middle: nothing added, the tail gone all the same.
    view.ZoomTo(1, 0);
    Settle();
    Box(0, 0, 4, 4);
    EXPECT_EQ(view.GetZoomCount(), 2);
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 40, 40));
    EXPECT_TRUE(frame.Of(MESSAGE_ZOOM_EVENT_STR).empty());

    // A step to a record that isn't there still posts the event.
    view.ZoomTo(5, 1);
    orlex::test::Pump();
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 40, 40));
    zooms = frame.Of(MESSAGE_ZOOM_EVENT_STR);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].wp, 5u);

    // A double click returns to the whole image; with the pan button down the measure
    // button is pushed.
    frame.zoomButton = 0;
    frame.panButton = 1;
    Settle();
    orlex::test::DoubleClick(V(), CPoint(50, 50));
    EXPECT_EQ(view.GetZoomCount(), 1);
    EXPECT_EQ(view.GetZoomRect(), CRect(0, 0, 64, 64));
    EXPECT_EQ(frame.panEnabled, 0);
    EXPECT_EQ(frame.pushMeasureCalls, 1);
    zooms = frame.Of(MESSAGE_ZOOM_EVENT_STR);
    ASSERT_FALSE(zooms.empty());
    EXPECT_EQ(zooms.back().wp, 0u);
    EXPECT_EQ(zooms.back().lp, 0);
}

TEST_F(ZoomTest, ZoomRepeatedByTheHostIsScaledAndSilent)
{
    Show(64, 128, false);
    frame.zoomButton = 1;
    view.SetCursorScaleRatio(0.5, 0.25);
    Box(16, 32, 80, 160, 1);
    EXPECT_EQ(view.GetZoomRect(), CRect(8, 8, 40, 40));
    EXPECT_TRUE(frame.Of(MESSAGE_ZOOM_EVENT_STR).empty());
    EXPECT_TRUE(host.Of(MESSAGE_CURSOR_NOTIFY_STR).empty());
    // The factors went back to 1.
    view.ZoomTo(0, 0);
    Box(16, 32, 48, 64, 1);
    EXPECT_EQ(view.GetZoomRect(), CRect(16, 32, 48, 64));
}

TEST_F(ZoomTest, OneZoomWheelSnapsToRoundWidthsAndTheParentMayTakeIt)
{
    Show(256, 256, true);  // 1000 nm over 256 columns
    orlex::test::Wheel(V(), CPoint(128, 128), 120);
    auto wheels = frame.Of(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR);
    ASSERT_EQ(wheels.size(), 1u);
    EXPECT_EQ(wheels[0].wp, 1u);
    EXPECT_EQ(wheels[0].point, CPoint(128, 128));
    ExpectRectF(view.GetZoomRectF(), 12.8f, 12.8f, 230.4f, 230.4f);  // 900 nm
    EXPECT_EQ(view.GetZoomCount(), 2);
    EXPECT_EQ(view.GetZoomRect(), CRect(13, 13, 243, 243));
    EXPECT_EQ(frame.panEnabled, 1);
    auto zooms = frame.Of(MESSAGE_ZOOM_EVENT_STR);
    ASSERT_EQ(zooms.size(), 1u);
    EXPECT_EQ(zooms[0].wp, 0u);
    EXPECT_EQ(zooms[0].lp, reinterpret_cast<LPARAM>(&view));

    orlex::test::Wheel(V(), CPoint(128, 128), 120);
    ExpectRectF(view.GetZoomRectF(), 25.6f, 25.6f, 204.8f, 204.8f);  // 800 nm
    EXPECT_EQ(view.GetZoomCount(), 2);

    // A parent that answers the wheel keeps the view as it is.
    frame.wheelAnswer = 1;
    orlex::test::Wheel(V(), CPoint(128, 128), 120);
    ExpectRectF(view.GetZoomRectF(), 25.6f, 25.6f, 204.8f, 204.8f);
    frame.wheelAnswer = 0;

    // Out again: 900 nm, then the whole image with one record.
    Settle();
    orlex::test::Wheel(V(), CPoint(128, 128), -120);
    wheels = frame.Of(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR);
    ASSERT_EQ(wheels.size(), 1u);
    EXPECT_EQ(wheels[0].wp, 0u);
    ExpectRectF(view.GetZoomRectF(), 12.8f, 12.8f, 230.4f, 230.4f);
    orlex::test::Wheel(V(), CPoint(128, 128), -120);
    ExpectRectF(view.GetZoomRectF(), 0, 0, 256, 256);
    EXPECT_EQ(view.GetZoomCount(), 1);
    EXPECT_EQ(frame.panEnabled, 0);
    // Further out changes nothing and tells nobody.
    Settle();
    orlex::test::Wheel(V(), CPoint(128, 128), -240);
    EXPECT_TRUE(frame.Of(MESSAGE_ZOOM_EVENT_STR).empty());
}

TEST_F(ZoomTest, OneZoomDoubleClickBringsThePointToTheCentre)
{
    Show(256, 256, true);
    view.ZoomTo(1, 1);  // stride 4 through the table: 800 nm
    ExpectRectF(view.GetZoomRectF(), 25.6f, 25.6f, 204.8f, 204.8f);
    Settle();
    orlex::test::DoubleClick(V(), CPoint(160, 96));
    const auto clicks = frame.Of(MESSAGE_IMAGEVIEW_DBL_CLICK_STR);
    ASSERT_EQ(clicks.size(), 1u);
    EXPECT_EQ(clicks[0].point, CPoint(160, 96));
    ExpectRectF(view.GetZoomRectF(), 51.2f, 0.0f, 204.8f, 204.8f);
    // The parent may take the double click.
    frame.dblClickAnswer = 1;
    orlex::test::DoubleClick(V(), CPoint(10, 10));
    ExpectRectF(view.GetZoomRectF(), 51.2f, 0.0f, 204.8f, 204.8f);
    // The zoom-out button at index 0 resets, and tells the frame.
    Settle();
    view.ZoomTo(0, 1);
    orlex::test::Pump();
    ExpectRectF(view.GetZoomRectF(), 0, 0, 256, 256);
    EXPECT_EQ(view.GetZoomCount(), 1);
    ASSERT_EQ(frame.Of(MESSAGE_ZOOM_EVENT_STR).size(), 1u);
}

TEST_F(ZoomTest, MiddleDragPansInOneZoomModeOnly)
{
    Show(256, 256, true);
    view.ZoomTo(1, 0);  // (25.6, 25.6) 204.8 square: 0.8 data pixels a screen pixel
    Settle();
    orlex::test::Drag(V(), CPoint(100, 100), CPoint(80, 120), 4, orlex::test::Button::Middle);
    ExpectRectF(view.GetZoomRectF(), 41.6f, 9.6f, 204.8f, 204.8f);
    EXPECT_EQ(view.GetZoomRect(), CRect(42, 10, 246, 214));
    EXPECT_FALSE(CImageView::IsPanTracking());
    // An off-line view tells the frame the start and the end; its moves go to the host as
    // the source of a pan.
    const auto pans = frame.Of(MESSAGE_IMAGEVIEW_PAN_EVENT);
    ASSERT_EQ(pans.size(), 2u);
    EXPECT_EQ(pans.front().wp, 513u);
    EXPECT_EQ(pans.front().lp, PackPoint(100, 100));
    EXPECT_EQ(pans.back().wp, 514u);
    EXPECT_EQ(pans.back().lp, PackPoint(80, 120));
    const auto moves = host.Of(UPDATE_PAN_SRC_STR);
    ASSERT_FALSE(moves.empty());
    for (const Received& m : moves) EXPECT_EQ(m.wp, reinterpret_cast<WPARAM>(&frame));

    // At the edge further drags change nothing.
    orlex::test::Drag(V(), CPoint(200, 100), CPoint(0, 100), 4, orlex::test::Button::Middle);
    ExpectRectF(view.GetZoomRectF(), 51.2f, 9.6f, 204.8f, 204.8f);
    orlex::test::Drag(V(), CPoint(200, 100), CPoint(0, 100), 4, orlex::test::Button::Middle);
    ExpectRectF(view.GetZoomRectF(), 51.2f, 9.6f, 204.8f, 204.8f);

    // List mode: the middle button does nothing.
    view.SetOneZoom(0);
    const CRect before = view.GetZoomRect();
    Settle();
    orlex::test::Drag(V(), CPoint(100, 100), CPoint(50, 50), 4, orlex::test::Button::Middle);
    EXPECT_EQ(view.GetZoomRect(), before);
    EXPECT_TRUE(frame.Of(MESSAGE_IMAGEVIEW_PAN_EVENT).empty());
}

TEST_F(ZoomTest, PanButtonDragOfAnOfflineViewIsRepeatedByFollowers)
{
    Show(64, 128, false);
    frame.zoomButton = 1;
    Box(16, 16, 48, 48);
    ASSERT_EQ(view.GetZoomRect(), CRect(16, 16, 48, 48));
    frame.zoomButton = 0;
    frame.measureButton = 0;
    frame.panButton = 1;
    Settle();
    orlex::test::Drag(V(), CPoint(64, 64), CPoint(32, 80), 4);
    // 0.25 data pixels a screen pixel: 32 right-to-left is 8, 16 down is -4.
    EXPECT_EQ(view.GetZoomRect(), CRect(24, 12, 56, 44));
    EXPECT_FALSE(CImageView::IsPanTracking());
    ASSERT_EQ(host.Of(ACTIVATE_VIEW_STR).size(), 1u);
    const auto src = host.Of(UPDATE_PAN_SRC_STR);
    ASSERT_GE(src.size(), 3u);
    EXPECT_EQ(src.front().wp, 513u);
    EXPECT_EQ(src.front().lp, PackPoint(32, 32));  // data units: half the window pixels
    for (size_t i = 1; i + 1 < src.size(); ++i) EXPECT_EQ(src[i].wp, reinterpret_cast<WPARAM>(&frame));
    EXPECT_EQ(src.back().wp, 514u);
    EXPECT_EQ(src.back().lp, PackPoint(16, 40));
    // The frame hears only the end, without a point.
    const auto pans = frame.Of(MESSAGE_IMAGEVIEW_PAN_EVENT);
    ASSERT_EQ(pans.size(), 1u);
    EXPECT_EQ(pans[0].wp, 0u);
    EXPECT_EQ(pans[0].lp, 0);

    // A follower of another size repeats it from the data units the host passes on.
    CImageView follower(false);
    ASSERT_TRUE(follower.Create(nullptr, "follower", WS_CHILD | WS_VISIBLE, CRect(0, 200, 64, 264), &host, 102));
    follower.DrawImage(data.data(), 64, 64, Scan(), table.data(), 1.0, 0, 251000, {});
    CRect z(16, 16, 48, 48);
    follower.SetZoomRect(z);
    follower.AddZoomRecord(z, 0);
    Settle();
    follower.StartPanOffline(CPoint(32, 32), 1);
    EXPECT_TRUE(CImageView::IsPanTracking());
    follower.UpdatePan(CPoint(24, 36), 1);
    follower.StopPan(CPoint(16, 40));
    EXPECT_EQ(follower.GetZoomRect(), CRect(24, 12, 56, 44));
    EXPECT_FALSE(CImageView::IsPanTracking());
    EXPECT_TRUE(host.log.empty());
    // A packed -1 counts as 0, not -1.
    follower.StartPanOffline(CPoint(0, 0), 1);
    follower.StopPan(CPoint(0xFFFF, 0));
    EXPECT_EQ(follower.GetZoomRect(), CRect(24, 12, 56, 44));
    follower.DestroyWindow();
}

TEST_F(ZoomTest, LiveViewPanButtonDragPostsPointsAndNoSourceMessages)
{
    CImageView live(true);
    frame.view = &live;
    ASSERT_TRUE(live.Create(nullptr, "live", WS_CHILD | WS_VISIBLE, CRect(0, 0, 128, 128), &frame, 101));
    std::vector<int> d(64 * 64, 0);
    live.DrawImage(d.data(), 64, 64, Scan(), table.data(), 1.0, -1e9, 1e9, {});
    CRect z(16, 16, 48, 48);
    live.AddZoomRecord(z, 0);
    frame.measureButton = 0;
    frame.panButton = 1;
    Settle();
    orlex::test::Drag(live.GetSafeHwnd(), CPoint(64, 64), CPoint(32, 80), 4);
    EXPECT_EQ(live.GetZoomRect(), CRect(24, 12, 56, 44));
    const auto pans = frame.Of(MESSAGE_IMAGEVIEW_PAN_EVENT);
    ASSERT_GE(pans.size(), 3u);
    EXPECT_EQ(pans.front().wp, 513u);
    EXPECT_EQ(pans.front().lp, PackPoint(64, 64));
    EXPECT_EQ(pans.back().wp, 514u);
    EXPECT_EQ(pans.back().lp, PackPoint(32, 80));
    EXPECT_TRUE(host.Of(UPDATE_PAN_SRC_STR).empty());
    EXPECT_EQ(host.Of(ACTIVATE_VIEW_STR).size(), 1u);
    live.DestroyWindow();
}

}  // namespace
