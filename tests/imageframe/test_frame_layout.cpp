// Where the frame puts its parts: the arithmetic alone, then Create's three ways to a
// rectangle and the children it makes, read back from the windows.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

#include "frame_test_util.h"
#include "imageframe/FrameLayout.h"

namespace {

using namespace orlex::frame;

TEST(FrameLayout, Arithmetic)
{
    const Margins off = DefaultMargins(false), rt = DefaultMargins(true);
    EXPECT_EQ(SizeableFrameRect(CRect(0, 0, 300, 400), off), CRect(5, 23, 295, 313));  // 354 high cut to 290
    EXPECT_EQ(SizeableFrameRect(CRect(0, 0, 500, 300), off), CRect(5, 23, 259, 277));  // right edge moves in
    EXPECT_EQ(SquaredFrameRect(CRect(10, 20, 310, 100), off), CRect(10, 20, 310, 20 + 300 - 52 - 5 + 55 + 23));
    // The image area keeps one pixel of each far margin; a disabled bar with a square image
    // rounds the side to a multiple of 4; a frame smaller than its margins has no area.
    EXPECT_EQ(ImageArea(CSize(300, 300), rt, false, 1.0), CRect(5, 23, 269, 261));
    EXPECT_EQ(ImageArea(CSize(300, 300), off, true, 1.0), CRect(5, 23, 5 + 244, 23 + 244));  // 242 -> 244
    EXPECT_EQ(ImageArea(CSize(300, 300), off, true, 2.0), CRect(5, 23, 247, 244));
    EXPECT_EQ(ImageArea(CSize(20, 10), off, true, 1.0), CRect(5, 23, 5, 23));

    const CRect g(5, 23, 205, 123);  // 200 x 100
    struct Fit {
        double aspect;
        CRect want;
    } fits[] = {
        {1.0, g},
        {2.0, CRect(5, 48, 205, 98)},      // 50 high, centred
        {0.5, CRect(55, 23, 155, 123)},    // 100 wide, centred
        {0.0, CRect(105, 23, 105, 123)},   // nothing wide
        {-3.0, CRect(105, 23, 105, 123)},  // never a negative size
        {std::nan(""), CRect(105, 23, 105, 123)},
        {1e300, CRect(5, 73, 205, 73)},
        {std::numeric_limits<double>::infinity(), CRect(5, 73, 205, 73)},
    };
    for (const Fit& f : fits) EXPECT_EQ(FitAspect(g, f.aspect, off), f.want) << f.aspect;

    // The mark of a line: rows from the bottom, the zoom's rows from the top; any number.
    const CRect r(5, 23, 105, 123);
    EXPECT_EQ(LineMarkY(50, 0, CRect(0, 0, 50, 50), r), 123);        // first line at the bottom
    EXPECT_EQ(LineMarkY(50, 24, CRect(0, 0, 50, 50), r), 26 * 2 + 23);  // below its display row
    EXPECT_EQ(LineMarkY(50, 30, CRect(0, 10, 50, 35), r), 23 + 9 * 4 + 4);  // 25 rows zoomed over 100
    EXPECT_EQ(LineMarkY(50, INT_MIN, CRect(0, 0, 50, 50), r), 123);
    EXPECT_EQ(LineMarkY(50, INT_MAX, CRect(0, 0, 50, 50), r), 23);
    EXPECT_EQ(LineMarkY(50, 3, CRect(0, 0, 0, 0), r), 23);  // no zoom record

    EXPECT_EQ(TitleText("", 0, 2), "Channel 1 of 2");
    EXPECT_EQ(TitleText("", 4, 1), "Channel 5");
    EXPECT_EQ(TitleText("Height", 2, 3), "3: Height");
    EXPECT_EQ(TitleText("Height", 2, 1), "Height");
    EXPECT_EQ(ZLabel(0.25, "UNIT"), "0.250");
    EXPECT_EQ(ZLabel(-1.5, ""), "-1.500");
    EXPECT_EQ(ZLabel(2e-9, "m"), "2.0 nm");
    EXPECT_EQ(PlaceTitle(161, false, 9999), TitlePlace::Below);
    EXPECT_EQ(PlaceTitle(160, true, 159), TitlePlace::Below);
    EXPECT_EQ(PlaceTitle(160, true, 160), TitlePlace::None);
    EXPECT_EQ(PlaceTitle(160, false, 10), TitlePlace::Top);
    EXPECT_EQ(RightMargin(true, off, "x", "y"), 30);
    EXPECT_EQ(RightMargin(false, off, "1.0 nm", "-10.0 nm"), 4 * 8 + 20);
    EXPECT_EQ(ColorBarLayoutRect(CSize(300, 400), off, false), CRect(274, 53, 294, 317));
    EXPECT_EQ(ColorBarLayoutRect(CSize(300, 400), off, true), CRect(274, 23, 294, 377));
    EXPECT_EQ(TruncSat(std::nan("")), 0);
    EXPECT_EQ(TruncSat(-1e300), INT_MIN);
}

class FrameCreate : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        ASSERT_TRUE(host.CreateHost(300, 400));
    }
    void TearDown() override { host.DestroyWindow(); }
    CRect ChildRect(CWnd& w, CWnd& parent)
    {
        CRect r;
        w.GetWindowRect(&r);
        parent.ScreenToClient(&r);
        return r;
    }
    frametest::Host host;
};

TEST_F(FrameCreate, ThreeWaysToTheRectangle)
{
    {
        CBorderCon frame(false, 0);
        ASSERT_TRUE(frame.Create(7, &host, 1, nullptr, 0));
        EXPECT_EQ(ChildRect(frame, host), CRect(5, 23, 295, 313));
        EXPECT_EQ(frame.GetStyle(), 0x52800000u);
    }
    {
        CRect given(1, 2, 201, 302);
        CBorderCon frame(false, 0);
        ASSERT_TRUE(frame.Create(7, &host, 0, &given, 1));
        EXPECT_EQ(ChildRect(frame, host), given);  // a given rectangle is never squared
    }
    for (bool realTime : {false, true}) {
        CStatic placeholder;
        ASSERT_TRUE(placeholder.Create("", WS_CHILD | WS_VISIBLE, CRect(10, 20, 210, 100), &host, 9));
        CBorderCon frame(realTime, 0);
        ASSERT_TRUE(frame.Create(9, &host, 0, nullptr, 1));
        EXPECT_FALSE(::IsWindow(placeholder.m_hWnd));
        EXPECT_EQ(host.GetDlgItem(9)->GetSafeHwnd(), frame.m_hWnd);
        // Squared only off-line: 200 wide gives 200 - 52 - 5 + 55 + 23 high.
        EXPECT_EQ(ChildRect(frame, host), realTime ? CRect(10, 20, 210, 100) : CRect(10, 20, 210, 241));
    }
    CBorderCon orphan(false, 0), noPlaceholder(false, 0);
    EXPECT_EQ(orphan.Create(7, nullptr, 1, nullptr, 0), 0);
    EXPECT_EQ(noPlaceholder.Create(12, &host, 0, nullptr, 0), 0);
}

TEST_F(FrameCreate, ChildrenAndTheirStates)
{
    struct Button {
        UINT id;
        CRect rect;
        DWORD style;
        int check, enabled, visible;
    };
    for (bool realTime : {false, true}) {
        CRect rect(0, 0, 302, 402);  // client 300 x 400
        CBorderCon frame(realTime, 0);
        ASSERT_TRUE(frame.Create(7, &host, 0, &rect, 0));
        const int right = realTime ? 30 : 52, bottom = realTime ? 38 : 55;
        CImageView& view = *frame.GetImageView();
        EXPECT_EQ(ChildRect(view, frame), CRect(5, 23, 300 - right - 1, 400 - bottom - 1));
        EXPECT_EQ(view.GetStyle(), 0x50000000u);
        EXPECT_EQ(view.GetDlgCtrlID(), 7);
        EXPECT_EQ(ChildRect(*frame.GetColorCtrl(), frame), CRect(274, 23, 294, 377));
        EXPECT_EQ(frame.GetColorCtrl()->GetDlgCtrlID(), 7);
        EXPECT_EQ(frame.GetColorCtrl()->m_bRealTime, realTime);
        const DWORD tool = 0x10001043 | WS_CHILD, step = 0x10000040 | WS_CHILD;
        const Button buttons[] = {
            {10062, CRect(5, 2, 30, 22), tool, 1, 1, 1},       {10061, CRect(31, 2, 56, 22), tool, 0, 0, 1},
            {10060, CRect(57, 2, 82, 22), tool, 0, 1, 1},      {10063, CRect(83, 2, 108, 22), step, 0, 0, 1},
            {10064, CRect(109, 2, 134, 22), step, 0, 0, 1},
            {10069, CRect(135, 2, 160, 22), realTime ? step : tool, 0, !realTime, !realTime},
        };
        for (const Button& b : buttons) {
            auto* w = static_cast<CButton*>(frame.GetDlgItem(static_cast<int>(b.id)));
            ASSERT_NE(w, nullptr) << b.id;
            EXPECT_EQ(ChildRect(*w, frame), b.rect) << b.id;
            EXPECT_EQ(w->GetStyle() & ~(WS_VISIBLE | WS_DISABLED), b.style & ~WS_VISIBLE) << b.id;
            EXPECT_EQ(w->GetCheck(), b.check) << b.id;
            EXPECT_EQ(w->IsWindowEnabled() != FALSE, b.enabled != 0) << b.id;
            EXPECT_EQ(w->IsWindowVisible() != FALSE, b.visible != 0) << b.id;
        }
        // Hidden zoom buttons take the 3D button along only off-line.
        frame.SetZoomButsShow(0);
        for (UINT id : {10060u, 10061u, 10062u, 10063u, 10064u, 10069u})
            EXPECT_FALSE(frame.GetDlgItem(int(id))->IsWindowVisible()) << id;
        frame.SetZoomButsShow(1);
        EXPECT_EQ(frame.GetDlgItem(10069)->IsWindowVisible() != FALSE, !realTime);
    }
}

TEST_F(FrameCreate, TheViewFollowsTheAspectAndABarDisabledSquaresIt)
{
    CRect rect(0, 0, 302, 402);
    CBorderCon frame(false, 0);
    ASSERT_TRUE(frame.Create(7, &host, 0, &rect, 0));
    CImageView& view = *frame.GetImageView();
    const CRect g = frame.GetImageWndSize();  // 5, 23, 247, 344: 242 x 321
    struct Case {
        double aspect;
        CRect want;
    } cases[] = {
        {2.0, CRect(5, 103, 247, 264)},  // 161 high, centred
        {0.5, CRect(65, 23, 186, 344)},  // 121 wide, centred
        {std::nan(""), CRect(126, 23, 126, 344)},
        {-1.0, CRect(126, 23, 126, 344)},
        {1e300, CRect(5, 183, 247, 183)},
        {1.0, g},
    };
    for (const Case& c : cases) {
        frame.SetWindowSize(c.aspect);
        EXPECT_EQ(ChildRect(view, frame), c.want) << c.aspect;
    }
    EXPECT_FALSE(frame.SetWindowSize(1.0));  // an unchanged size moves nothing
    frame.EnableColorCtrl(0);
    EXPECT_TRUE(frame.SetWindowSize(1.0));
    EXPECT_EQ(ChildRect(view, frame), CRect(5, 23, 5 + 244, 23 + 244));
}

}  // namespace
