// A live scan through the frame on the harness clock: strips at most every 160 ms, the
// scan line marker drawn into the view, the frame's red mark of the current line, the
// tick counter's wrap, and the marker's configuration dialog.
#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <vector>

#include "foundation/OrlexUI.h"
#include "frame_test_util.h"
#include "imageframe/ScanLineCfgDlg.h"

namespace {

using frametest::Shown;

constexpr COLORREF kRed = 0x0000FF, kWhite = 0xFFFFFF, kMarker = RGB(255, 0, 255);

class FrameScan : public ::testing::Test {
protected:
    void SetUp() override { Start(100000); }
    void TearDown() override
    {
        CImageView::SetScanLineInfo(1, 0xFFFF00);
        host.DestroyWindow();
    }
    void Start(ULONGLONG clock)
    {
        orlex::test::Init(clock);
        OrlexUI::Initialize(true);
        ASSERT_TRUE(host.CreateHost(1100, 420));
    }
    // A live frame whose view is vw x vh showing a rows x rows image, the lines to come blank.
    void Make(CBorderCon& frame, int vw, int vh, int rows, bool limit)
    {
        CRect rect(0, 0, vw + 5 + 30 + 1 + 2, vh + 23 + 38 + 1 + 2);
        ASSERT_TRUE(frame.Create(7, &host, 0, &rect, 0));
        frame.EnableScanLine(1);
        n = rows;
        std::vector<int> blank(std::size_t(rows) * rows, INT32_MIN);
        frame.DrawImage(blank.data(), rows, rows, 1e-5, 1.0, 1.0, 1.0, "V", {});
        frame.GetImageView()->Enable6HzUpdateImageLine(limit);
        line.assign(rows, 0);
        orlex::test::Pump();
    }
    int Line(CBorderCon& frame, int k, int direction)
    {
        return frame.DrawLine(line.data(), k, n, 1e-5, direction, 1.0, 1.0, 1.0, "V", {});
    }
    COLORREF ViewAt(CBorderCon& frame, int x, int y)
    {
        orlex::test::Pump();
        return orlex::test::Pixel(frame.GetImageView()->GetSafeHwnd(), CPoint(x, y));
    }
    COLORREF FrameAt(CBorderCon& frame, int x, int y)
    {
        orlex::test::Pump();
        return orlex::test::Pixel(frame.GetSafeHwnd(), CPoint(x, y));
    }
    frametest::Host host;
    std::vector<int> line;
    int n = 0;
};

TEST_F(FrameScan, AStripAtMostEvery160Milliseconds)
{
    CBorderCon frame(true, 0);
    Make(frame, 128, 128, 128, true);
    CImageView::SetScanLineInfo(0, 0);
    const COLORREF blank = ViewAt(frame, 5, 127);
    int strips = 0;
    for (int k = 0; k < 100; ++k) {  // a line every 10 ms for a second
        const std::vector<COLORREF> before = Shown(host, CRect(0, 0, 200, 220));
        ASSERT_EQ(Line(frame, k, 1), 0);
        if (ViewAt(frame, 5, 127 - k) != blank) {
            ++strips;
        } else {
            // Inside the limit nothing on the screen changes: neither the view nor the mark.
            EXPECT_EQ(Shown(host, CRect(0, 0, 200, 220)), before) << k;
        }
        orlex::test::AdvanceClock(10);
    }
    EXPECT_GE(strips, 6);
    EXPECT_LE(strips, 7);
}

TEST_F(FrameScan, MarkerStylesOnlyWhereTheFrameAllowsThem)
{
    struct Case {
        int type, enabled, width;
        int from, to;  // columns in the marker's colour; the rest not
        bool dashed;
    } cases[] = {
        {1, 1, 160, 0, 160, false},  {2, 1, 160, 0, 160, true}, {3, 1, 1000, 0, 30, false},
        {3, 1, 160, 0, 20, false},   {1, 0, 160, 0, 0, false},  {0, 1, 160, 0, 0, false},
        {-1, 1, 160, 0, 0, false},   {7, 1, 160, 0, 160, false},
    };
    for (const Case& c : cases) {
        CBorderCon frame(true, 0);
        Make(frame, c.width, 100, 100, false);
        frame.EnableScanLine(c.enabled);
        CImageView::SetScanLineInfo(c.type, kMarker);
        ASSERT_EQ(Line(frame, 50, 1), 0);
        // 100 rows over 100 pixels: the strip of line 50 upwards ends at row 49, its
        // leading edge, where the marker stands.
        int marked = 0, runs = 0;
        bool in = false;
        for (int x = 0; x < c.width; ++x) {
            const bool m = ViewAt(frame, x, 49) == kMarker;
            marked += m;
            runs += m && !in;
            in = m;
            if (!c.dashed) EXPECT_EQ(m, x >= c.from && x < c.to) << c.type << " x " << x;
        }
        if (c.dashed) {
            EXPECT_GT(runs, 4) << "dashes";
            EXPECT_LT(marked, c.width * 9 / 10) << "gaps";
        }
        EXPECT_NE(ViewAt(frame, 0, 48), kMarker) << c.type;
        frame.DestroyWindow();
    }
}

TEST_F(FrameScan, TheLineMarkFollowsTheScan)
{
    CBorderCon frame(true, 0);
    Make(frame, 128, 128, 64, false);
    frame.SetSelected(1);  // the mark's column is white whatever the background
    frame.Invalidate();
    const COLORREF selected = FrameAt(frame, 2, 5);
    // Line 20 downwards: below the line's two rows, y = 23 + 2 * 44; the point goes down.
    ASSERT_EQ(Line(frame, 20, 0), 0);
    EXPECT_EQ(FrameAt(frame, 1, 111 + 3), kRed);
    EXPECT_EQ(FrameAt(frame, 1, 111 - 3), kWhite);
    EXPECT_EQ(FrameAt(frame, 4, 111), kRed);
    EXPECT_EQ(FrameAt(frame, 2, 5), selected);
    // Line 40 upwards: y = 23 + 2 * 24, the point up; the old mark is gone.
    ASSERT_EQ(Line(frame, 40, 1), 0);
    EXPECT_EQ(FrameAt(frame, 1, 71 - 3), kRed);
    EXPECT_EQ(FrameAt(frame, 1, 71 + 3), kWhite);
    EXPECT_EQ(FrameAt(frame, 1, 111 + 3), kWhite);
    // Zoomed on block rows 32..48: the line just past the shown part moves only the mark
    // (to the top of the view), two past nothing at all.
    CRect z(0, 16, 64, 32);
    frame.GetImageView()->AddZoomRecord(z, 0);
    frame.GetImageView()->UpdateImage();
    const std::vector<COLORREF> view = Shown(*frame.GetImageView(), CRect(0, 0, 128, 128));
    ASSERT_EQ(Line(frame, 49, 1), 0);
    EXPECT_EQ(Shown(*frame.GetImageView(), CRect(0, 0, 128, 128)), view);
    EXPECT_EQ(FrameAt(frame, 1, 71 - 3), kWhite);
    EXPECT_EQ(FrameAt(frame, 1, 23 - 3), kRed);
    const std::vector<COLORREF> all = Shown(frame, CRect(0, 0, 166, 192));
    ASSERT_EQ(Line(frame, 50, 1), 0);
    EXPECT_EQ(Shown(frame, CRect(0, 0, 166, 192)), all);
}

TEST_F(FrameScan, TheLimitRunsAcrossTheTickCountersWrap)
{
    host.DestroyWindow();
    Start(0x100000000ULL - 160);
    CBorderCon frame(true, 0);
    Make(frame, 128, 128, 128, true);
    CImageView::SetScanLineInfo(0, 0);
    const COLORREF blank = ViewAt(frame, 5, 127);
    std::vector<int> strips;
    for (int k = 0; k < 40; ++k) {
        ASSERT_EQ(Line(frame, k, 1), 0);
        if (ViewAt(frame, 5, 127 - k) != blank) strips.push_back(k);
        orlex::test::AdvanceClock(10);
    }
    // At -160 ms, at 0 (which is kept as 1), and 160 ms after that.
    EXPECT_EQ(strips, (std::vector<int>{0, 16, 33}));
}

TEST_F(FrameScan, MarkerDialogTakesEachClickAtOnce)
{
    CBorderCon frame(true, 0);
    Make(frame, 128, 128, 64, false);
    CImageView::SetScanLineInfo(1, 0xFFFF00);
    std::vector<int> seen;
    int startChecked = -1;
    orlex::SetModalLoopHook([&](CWnd* wnd) {
        auto* dlg = static_cast<CDialog*>(wnd);
        startChecked = dlg->GetCheckedRadioButton(IDC_SCANLINE_NONE, IDC_SCANLINE_TICK);
        for (int id : {10082, 10080, 10083}) {
            orlex::test::Click(dlg->GetDlgItem(id)->m_hWnd, CPoint(3, 3));
            int type = 0;
            DWORD colour = 0;
            CImageView::GetScanLineInfo(type, colour);
            seen.push_back(type);
        }
        orlex::test::ScriptAnswer("ColorDialog", -1);  // cancelled: the colour stays
        orlex::test::Click(dlg->GetDlgItem(IDC_SCANLINE_COLOR)->m_hWnd, CPoint(3, 3));
        orlex::test::ScriptAnswer("ColorDialog", 0x123456);
        orlex::test::Click(dlg->GetDlgItem(IDC_SCANLINE_COLOR)->m_hWnd, CPoint(3, 3));
        orlex::test::Click(dlg->GetDlgItem(IDOK)->m_hWnd, CPoint(3, 3));
    });
    frame.SendMessage(WM_COMMAND, ID_CFG_SCANLINE, 0);
    orlex::SetModalLoopHook(nullptr);
    EXPECT_EQ(startChecked, 10081);
    EXPECT_EQ(seen, (std::vector<int>{2, 0, 3}));
    EXPECT_EQ(CImageView::m_nScanLineType, 3);
    EXPECT_EQ(CImageView::m_ScanLineColor, 0x123456u);
    const auto& log = orlex::test::ModalLog();
    ASSERT_GE(log.size(), 1u);
    EXPECT_EQ(log.front().kind, "Dialog");
    EXPECT_EQ(log.front().text, "Configure Scan Line Marker");
}

}  // namespace
