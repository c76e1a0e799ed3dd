// The frame as a host drives it: a finished image with its colour table and limits, the
// colour notices in order, the live road after a resize, and the notices the frame passes
// to its parent.
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "colour/ColorTable.h"
#include "foundation/OrlexUI.h"
#include "cursors/TipCursor.h"
#include "frame_test_util.h"

namespace {

using frametest::Host;

COLORREF FromQuad(const tagRGBQUAD& q) { return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue); }

class FrameImage : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        OrlexUI::Initialize(false);
        ASSERT_TRUE(grand.CreateHost(420, 420));
        ASSERT_TRUE(parent.Create(nullptr, "parent", WS_CHILD | WS_VISIBLE, CRect(0, 0, 400, 400), &grand, 3));
    }
    void TearDown() override { grand.DestroyWindow(); }
    COLORREF ViewPixel(CBorderCon& f, int x, int y)
    {
        orlex::test::Pump();
        return orlex::test::Pixel(f.GetImageView()->GetSafeHwnd(), CPoint(x, y));
    }
    Host grand, parent;
};

TEST_F(FrameImage, FinishedImageRoad)
{
    CBorderCon frame(false, 0);
    CRect rect(0, 0, 302, 302);
    ASSERT_TRUE(frame.Create(7, &parent, 0, &rect, 0));
    parent.log.clear();
    grand.log.clear();
    frame.SetColorTable(3, 0);
    tagRGBQUAD* table = frame.GetColorTable();
    // The table to the parent first, then the colour notice to the parent and its parent.
    ASSERT_EQ(parent.log.size(), 2u);
    EXPECT_EQ(parent.log[0].msg, MESSAGE_COLOR_CTRL_STR);
    EXPECT_EQ(parent.log[0].wp, 0u);
    EXPECT_EQ(parent.log[0].lp, reinterpret_cast<LPARAM>(table));
    EXPECT_EQ(parent.log[1].msg, UINT(WM_NOTIFY));
    EXPECT_EQ(parent.log[1].nm.code, MESSAGE_COLOR_CTRL_STR);
    EXPECT_EQ(parent.log[1].nm.hwndFrom, frame.m_hWnd);
    EXPECT_EQ(parent.log[1].nm.idFrom, 7u);
    EXPECT_EQ(grand.NotifyCodes(), std::vector<int>{int(MESSAGE_COLOR_CTRL_STR)});
    // An unchanged contrast sends nothing; a new one derives and sends again.
    frame.SetContrast(0, 1);
    EXPECT_EQ(parent.log.size(), 2u);
    frame.SetContrast(3, 1);
    EXPECT_EQ(parent.Of(MESSAGE_COLOR_CTRL_STR).size(), 2u);
    frame.SetContrast(0, 1);

    // Off-line limits come from the data scale mode: value 100 between 100 and 300 is the
    // table's first entry; with both limits 0 nothing is built and the view shows the
    // grey of system colour 17.
    std::vector<int> data(32 * 32, 100);
    struct Case {
        __int64 low, high;
        COLORREF want;
    } cases[] = {
        {100, 300, FromQuad(table[0])},
        {0, 0, GetSysColor(17)},
        {-300, 100, FromQuad(table[255])},
    };
    for (const Case& c : cases) {
        frame.SetDataScaleMode(0.0, 1.0, 1.0, c.low, c.high);
        frame.DrawImage(data.data(), 32, 32, 1e-5, 1.0, 1.0, 1.0, "m", {});
        EXPECT_EQ(ViewPixel(frame, 10, 10), c.want) << c.low << " " << c.high;
    }
    // A colour change rebuilds from the kept data and shows at once.
    frame.SetColorTable(5, 0);
    EXPECT_EQ(ViewPixel(frame, 10, 10), FromQuad(frame.GetColorTable()[255]));
    // The size text follows the zoom.
    CString text;
    frame.GetSizeStr(text);
    EXPECT_EQ(text, "10.0 \xB5m");
    CRect half(0, 0, 16, 16);
    frame.GetImageView()->AddZoomRecord(half, 0);
    frame.GetSizeStr(text);
    EXPECT_EQ(text, "5.0 \xB5m");

    // Bad values tell the user and the image still comes.
    orlex::ModalScript::Reset();
    frame.SetDataScaleMode(0.0, 1.0, 1.0, 100, 300);
    frame.DrawImage(data.data(), 32, 32, 1e-5, 1.0, -1.0, 1.0, "m", {});  // a negative z scale
    ASSERT_EQ(orlex::test::ModalLog().size(), 1u);
    EXPECT_EQ(orlex::test::ModalLog()[0].text, "CBorderCon::DrawImage - bad parameter passed\n");
    EXPECT_EQ(ViewPixel(frame, 0, 0), FromQuad(frame.GetColorTable()[0]));
}

TEST_F(FrameImage, LiveLinesAfterAResizeAndBadLines)
{
    CBorderCon frame(true, 0);
    ASSERT_TRUE(frame.Create(7, &parent, 1, nullptr, 0));
    std::vector<int> blank(16 * 16, 0), line(16, 5);
    EXPECT_EQ(frame.DrawLine(line.data(), 0, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", {}), 1);  // no image yet
    frame.DrawImage(blank.data(), 16, 16, 1e-5, 1.0, 1.0, 1.0, "V", {});
    EXPECT_EQ(frame.DrawLine(line.data(), 0, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", {}), 0);
    EXPECT_EQ(frame.DrawLine(line.data(), 1, 16, 1e-5, 0, 2.0, 1.0, 1.0, "V", {}), 2);  // another aspect
    frame.MoveWindow(CRect(5, 23, 300, 330));
    EXPECT_EQ(frame.DrawLine(line.data(), 1, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", {}), 2);
    EXPECT_EQ(frame.DrawLine(line.data(), 1, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", {}), 0);
    EXPECT_EQ(frame.GetCurrentLine(), 1);
    // A line number the view refuses is still the frame's current line.
    EXPECT_EQ(frame.DrawLine(line.data(), 1 << 30, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", {}), 2);
    EXPECT_EQ(frame.GetCurrentLine(), 1 << 30);
    frame.DrawLineMark();
    orlex::ModalScript::Reset();
    std::vector<int> invalid{1, 2};
    EXPECT_EQ(frame.DrawLine(nullptr, 2, 16, 1e-5, 0, 1.0, 1.0, 1.0, "V", invalid), 0);
    EXPECT_EQ(frame.DrawLine(line.data(), 2, 16, 1e-5, 0, std::nan(""), 1.0, 1.0, "V", {}), 0);
    ASSERT_EQ(orlex::test::ModalLog().size(), 2u);
    EXPECT_EQ(orlex::test::ModalLog()[1].text, "CBorderCon::DrawLine - bad parameter passed\n");
}

TEST_F(FrameImage, NoticesToTheParent)
{
    CBorderCon frame(false, 0);
    CRect rect(0, 0, 302, 302);
    ASSERT_TRUE(frame.Create(7, &parent, 0, &rect, 0));
    parent.log.clear();
    // Pan and zoom events are posted on as they came.
    frame.SendMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 3, 4);
    frame.SendMessage(MESSAGE_ZOOM_EVENT_STR, 514, 6);
    EXPECT_TRUE(parent.log.empty());
    orlex::test::Pump();
    ASSERT_EQ(parent.Of(MESSAGE_IMAGEVIEW_PAN_EVENT).size(), 1u);
    EXPECT_EQ(parent.Of(MESSAGE_IMAGEVIEW_PAN_EVENT)[0].wp, 3u);
    EXPECT_EQ(parent.Of(MESSAGE_IMAGEVIEW_PAN_EVENT)[0].lp, 4);
    EXPECT_EQ(parent.Of(MESSAGE_ZOOM_EVENT_STR)[0].wp, 514u);
    // A press on the frame itself.
    orlex::test::Click(frame.m_hWnd, CPoint(2, 150));
    ASSERT_EQ(parent.NotifyCodes(), std::vector<int>{-2});
    EXPECT_EQ(parent.Of(WM_NOTIFY)[0].nm.hwndFrom, frame.m_hWnd);
    EXPECT_EQ(parent.Of(WM_NOTIFY)[0].wp, 7u);
    // A channel change is told once.
    frame.SetCurChannel(1, true);
    frame.SetCurChannel(1, true);
    orlex::test::Pump();
    ASSERT_EQ(parent.Of(MESSAGE_USER_CONTROL_MSG).size(), 1u);
    EXPECT_EQ(parent.Of(MESSAGE_USER_CONTROL_MSG)[0].wp, 100u);
    EXPECT_EQ(parent.Of(MESSAGE_USER_CONTROL_MSG)[0].lp, reinterpret_cast<LPARAM>(&frame));
    // The relative bar asks the parent to lay out again.
    frame.SetRelativeColorBar(true);
    ASSERT_EQ(parent.Of(WM_SIZE).size(), 1u);
    EXPECT_EQ(parent.Of(WM_SIZE)[0].lp, MAKELPARAM(400, 400));
    // The bar's tooltip: its text, the delays set by the first request, the request
    // passed to the parent first.
    parent.log.clear();
    orlex::test::MouseMove(frame.GetColorCtrl()->m_hWnd, CPoint(5, 50));
    orlex::test::AdvanceClock(600);
    const auto asked = parent.Of(WM_NOTIFY);
    ASSERT_FALSE(asked.empty());
    EXPECT_EQ(int(asked[0].nm.code), int(TTN_NEEDTEXT));
    const HWND tip = asked[0].nm.hwndFrom;
    char text[64] = {};
    ::GetWindowTextA(tip, text, sizeof text);
    CString want;
    want.Format("Table: %d", frame.GetColorTableIdx());
    EXPECT_EQ(CString(text), want);
    EXPECT_EQ(::SendMessageA(tip, TTM_GETDELAYTIME, TTDT_INITIAL, 0), 20);
    EXPECT_EQ(::SendMessageA(tip, TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 3000);
}

TEST_F(FrameImage, CursorsAndTheTipThroughTheFrame)
{
    CBorderCon frame(false, 0);
    CRect rect(0, 0, 302, 302);
    ASSERT_TRUE(frame.Create(7, &parent, 0, &rect, 0));
    std::vector<int> data(64 * 64, 0);
    frame.SetDataScaleMode(0.0, 1.0, 1.0, -10, 10);
    frame.DrawImage(data.data(), 64, 64, 1e-6, 1.0, 1.0, 1.0, "m", {});
    CImageView& view = *frame.GetImageView();
    CRect c;
    view.GetClientRect(&c);  // 242 x 221
    // The attributes set the view: one cursor, crosses.
    IMAGE_ATTRIBUTES a = frame.GetImageAttributes();
    a.m_nAllowableCursors = 1;
    a.m_nMode = kCursorCross;
    frame.SetImageAttributes(a);
    EXPECT_EQ(view.GetAllowableCursors(), 1);
    EXPECT_EQ(view.GetMode(), kCursorCross);
    ASSERT_NE(view.AddCursor(nullptr, kCursorCross, 0.0, CPoint(50, 50)), nullptr);
    EXPECT_EQ(view.AddCursor(nullptr, kCursorCross, 0.0, CPoint(80, 50)), nullptr);  // the limit
    EXPECT_EQ(frame.GetNumCursors(kCursorCross), 1);
    // A press on the view is told to the host through the frame; the drag's end reaches it.
    a.m_nAllowableCursors = 0;  // no limit
    frame.SetImageAttributes(a);
    view.ClearAllCursors(0, 1);
    parent.log.clear();
    orlex::test::Drag(view.m_hWnd, CPoint(60, 60), CPoint(100, 80), 3);
    EXPECT_EQ(parent.NotifyCodes().front(), -2);
    ASSERT_EQ(parent.Of(MESSAGE_CURSOR_NOTIFY_STR).size(), 1u);
    EXPECT_EQ(parent.Of(MESSAGE_CURSOR_NOTIFY_STR)[0].wp, 514u);
    EXPECT_EQ(frame.GetNumCursors(kCursorCross), 1);

    // The tip: shown by the host at a place in metres; a new scan width scales its read-out
    // and clears the user's cursors.
    CTipCursor* tip = view.GetTipCursor();
    frame.SetTipColor(RGB(0, 0, 255));
    frame.ShowTipCursor(1);
    frame.SetTipCursorPos(0.5e-6, 0.5e-6);
    EXPECT_TRUE(tip->IsWindowVisible());
    EXPECT_EQ(tip->GetCenterPos(), CPoint(121, 111));  // the middle of 242 x 221
    frame.DrawImage(data.data(), 64, 64, 2e-6, 1.0, 1.0, 1.0, "m", {});
    EXPECT_DOUBLE_EQ(tip->GetXScale(), 2e-6 / c.Width());
    EXPECT_EQ(frame.GetNumCursors(kCursorCross), 0);
}

}  // namespace
