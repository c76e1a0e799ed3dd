// What the frame paints around its view: background, the x scale, texts (compared with
// what the layer itself draws for the same calls), z labels, the red flag and the zoom
// step buttons' states.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "frame_test_util.h"

namespace {

using frametest::LayerDrawing;
using frametest::SelectArial;
using frametest::Shown;

constexpr COLORREF kWhite = 0xFFFFFF, kBlack = 0;

class FramePaint : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        ASSERT_TRUE(host.CreateHost(420, 420));
    }
    void TearDown() override { host.DestroyWindow(); }
    // A frame of this client size at the host's top left, showing a w x h image.
    void Make(CBorderCon& frame, int cx, int cy, double aspect = 1.0, int w = 32, int h = 32)
    {
        CRect rect(0, 0, cx + 2, cy + 2);
        ASSERT_TRUE(frame.Create(7, &host, 0, &rect, 0));
        data.assign(std::size_t(w) * h, 0);
        frame.SetDataScaleMode(-1e-9, 2e-9, 1.0, -10, 10);
        frame.DrawImage(data.data(), h, w, 1e-5, aspect, 1.0, 2e-3, "V", {});
        orlex::test::Pump();
    }
    CRect ViewRect(CBorderCon& frame)
    {
        CRect r;
        frame.GetImageView()->GetWindowRect(&r);
        frame.ScreenToClient(&r);
        return r;
    }
    COLORREF At(CBorderCon& frame, int x, int y)
    {
        orlex::test::Pump();
        return orlex::test::Pixel(frame.GetSafeHwnd(), CPoint(x, y));
    }
    frametest::Host host;
    std::vector<int> data;
};

TEST_F(FramePaint, BackgroundsAndTheAdjustmentFlag)
{
    struct Case {
        bool realTime;
        int selected;
        COLORREF back;
    } cases[] = {
        {false, 0, kWhite},
        {true, 0, kWhite},
        {false, 1, 0xFFD2D2},
        {true, 1, GetSysColor(COLOR_HIGHLIGHT)},
    };
    for (const Case& c : cases) {
        CBorderCon frame(c.realTime, 0);
        Make(frame, 300, 300);
        frame.SetSelected(c.selected);
        frame.Invalidate();
        EXPECT_EQ(At(frame, 2, 150), c.back) << c.realTime << c.selected;
    }
    CBorderCon frame(false, 0);
    Make(frame, 300, 300);
    EXPECT_EQ(frame.SendMessage(MESSAGE_BORDERCON_ADJUST_FOCUS_STR, 1, 0), 1);
    EXPECT_EQ(At(frame, 0, 0), 0x0000FFu);
    EXPECT_EQ(At(frame, 4, 22), 0x0000FFu);
    EXPECT_EQ(At(frame, 5, 22), kWhite);
    EXPECT_EQ(frame.SendMessage(MESSAGE_BORDERCON_ADJUST_FOCUS_STR, 0, 0), 0);
    EXPECT_EQ(At(frame, 0, 0), kWhite);
}

TEST_F(FramePaint, BracketOrArrowsBelowTheImage)
{
    struct Case {
        double aspect;
        int showScale;
        bool bracket, arrows;
    } cases[] = {
        {1.0, 1, true, false},
        {1.0, 0, false, false},
        {0.5, 1, false, true},
        {0.5, 0, false, true},  // the arrows show the image's width whatever the setting
    };
    for (const Case& c : cases) {
        CBorderCon frame(false, 0);
        frame.SetShowXScale(c.showScale);
        Make(frame, 300, 300, c.aspect);
        const CRect r = ViewRect(frame), g = frame.GetImageWndSize();
        const int y = r.bottom + 8;
        auto black = [&](int x, int yy) { return At(frame, x, yy) == kBlack; };
        EXPECT_EQ(black(g.left, y + 6), c.bracket || c.arrows) << c.aspect << c.showScale;
        EXPECT_EQ(black((g.left + g.right) / 2, y), c.bracket) << c.aspect << c.showScale;
        EXPECT_EQ(black(r.left - 1, y), c.arrows);   // arrow heads at the view's edges
        EXPECT_EQ(black(r.left - 5, y + 2), c.arrows);
        EXPECT_EQ(black(r.right + 1, y), c.arrows);
        EXPECT_EQ(black(r.left, r.bottom + 2), c.arrows);  // ticks up to the view
        EXPECT_FALSE(black(r.left, r.bottom + 1));
    }
}

// The texts around the image as the layer draws the same calls: "0.0" and the size text
// in the GUI font, the title in bold Arial 16 (centred below, or at the top), the z
// labels in Arial 14 at the right.
TEST_F(FramePaint, TextsAsTheLayerDrawsThem)
{
    struct Case {
        const char* what;
        bool realTime;
        int width, channels, channel;
        const char* title;
        bool hideButtons, relative;
        const char* units;
    } cases[] = {
        {"two channels, no title", false, 300, 2, 0, "", false, false, "m"},
        {"titled third channel", true, 300, 3, 2, "Phase", false, false, "V"},
        {"narrow, buttons hidden: title at the top", true, 150, 1, 0, "", true, false, "V"},
        {"relative bar, no units", false, 300, 1, 0, "Z", false, true, "UNIT"},
    };
    for (const Case& c : cases) {
        CBorderCon frame(c.realTime, c.channel);
        frame.SetChannelNum(c.channels);
        frame.SetTitle(c.title);
        if (c.relative) frame.SetRelativeColorBar(true);
        Make(frame, c.width, 300);
        frame.SetZoomButsShow(!c.hideButtons);
        frame.ResetZScale(2e-3, c.units, true);
        const CRect r = ViewRect(frame), g = frame.GetImageWndSize();
        const CSize size(c.width, 300);
        CString title = orlex::frame::TitleText(c.title, c.channel, c.channels), sizeText;
        frame.GetSizeStr(sizeText);
        EXPECT_EQ(sizeText, "10.0 \xB5m") << c.what;
        const bool top = c.hideButtons;
        // Below the image: the scale's texts and the title, between the bracket and the bottom.
        const CRect below(0, r.bottom + 16, c.width - 27, 300);  // left of the bar
        auto drawBelow = [&](CDC& dc) {
            dc.TextOut(g.left, r.bottom + 16, "0.0", 3);
            dc.SetTextAlign(TA_RIGHT);
            dc.TextOut(g.right, r.bottom + 16, sizeText);
            CFont f;
            SelectArial(dc, f, 16, FW_BOLD);
            TEXTMETRIC tm{};
            dc.GetTextMetrics(&tm);
            dc.SetTextAlign(TA_LEFT);
            if (top) {
                dc.TextOut(r.left, 4, title);
            } else {
                CRect box(r.left + 3 * tm.tmAveCharWidth, r.bottom + 16,
                          r.right - sizeText.GetLength() * tm.tmAveCharWidth, r.bottom + 16 + tm.tmHeight);
                dc.DrawText(title, &box, DT_CENTER);
            }
            dc.SelectStockObject(DEFAULT_GUI_FONT);
        };
        EXPECT_EQ(frametest::Diff(Shown(frame, below), LayerDrawing(size, below, kWhite, drawBelow), below), "") << c.what;
        if (top) {
            const CRect head(r.left, 4, c.width / 2, 22);
            EXPECT_EQ(frametest::Diff(Shown(frame, head), LayerDrawing(size, head, kWhite, drawBelow), head), "") << c.what;
        }
        // The z labels right-aligned at the frame's right, over and under the bar.
        auto drawLabels = [&](CDC& dc) {
            CFont f;
            SelectArial(dc, f, 14, FW_NORMAL);
            dc.SetTextAlign(TA_RIGHT);
            const int x = c.width - 5;
            if (c.relative) {
                dc.TextOut(x, 4, CString("0.000"));  // max - min, 3e-9, without units
            } else if (!c.realTime) {
                dc.TextOut(x, 34, CString("2.0 nm"));
                dc.TextOut(x, 300 - 23 - 52, CString("-1.0 nm"));
            } else {
                dc.TextOut(x, 4, CString("2.0 mV"));
            }
            dc.SelectStockObject(DEFAULT_GUI_FONT);
        };
        const CRect labels(g.right + 2, 0, c.width - 27, 300);  // left of the bar
        EXPECT_EQ(frametest::Diff(Shown(frame, labels), LayerDrawing(size, labels, kWhite, drawLabels), labels), "") << c.what;
    }
}

TEST_F(FramePaint, ZoomStepButtonsFollowTheZoomList)
{
    CBorderCon frame(false, 0);
    Make(frame, 300, 300);
    CImageView& view = *frame.GetImageView();
    CWnd* in = frame.GetDlgItem(10063);
    CWnd* out = frame.GetDlgItem(10064);
    auto states = [&]() {
        frame.Invalidate();
        orlex::test::Pump();
        return std::make_pair(in->IsWindowEnabled() != FALSE, out->IsWindowEnabled() != FALSE);
    };
    EXPECT_EQ(states(), std::make_pair(false, false));  // one record
    CRect z1(0, 0, 16, 16), z2(0, 0, 8, 8);
    view.AddZoomRecord(z1, 0);
    view.AddZoomRecord(z2, 0);
    EXPECT_EQ(states(), std::make_pair(false, true));  // at the last of three
    view.ZoomTo(1, 0);
    EXPECT_EQ(states(), std::make_pair(true, true));
    view.ZoomTo(0, 0);
    EXPECT_EQ(states(), std::make_pair(true, false));
    // A click on the zoom-out button steps back and tells the host.
    view.ZoomTo(2, 0);
    host.log.clear();
    orlex::test::Click(out->GetSafeHwnd(), CPoint(5, 5));
    EXPECT_EQ(frame.GetZoomIndex(), 1u);
    ASSERT_EQ(host.Of(ZOOM_OUT_STR).size(), 1u);
    EXPECT_EQ(host.Of(ZOOM_OUT_STR)[0].lp, 0xFFFF);
    view.SetOneZoom(1);
    view.ZoomTo(0, 0);
    EXPECT_TRUE(states().first);  // one-zoom mode can always zoom in
}

TEST_F(FramePaint, BadSizesAndRanges)
{
    // A frame smaller than its margins paints only itself.
    const std::vector<COLORREF> around = Shown(host, CRect(0, 0, 60, 60));
    {
        CBorderCon tiny(false, 0);
        CRect rect(10, 10, 30, 25);
        ASSERT_TRUE(tiny.Create(7, &host, 0, &rect, 0));
        std::vector<int> d(16, 1);
        tiny.DrawImage(d.data(), 4, 4, 1e-5, 0.5, 1.0, 1.0, "m", {});
        std::vector<COLORREF> after = Shown(host, CRect(0, 0, 60, 60)), before = around;
        for (int y = 10; y < 25; ++y)
            for (int x = 10; x < 30; ++x) after[std::size_t(y) * 60 + x] = before[std::size_t(y) * 60 + x] = 0;
        EXPECT_EQ(after, before);
    }
    // A z range of infinity or NaN is not taken: the label stays.
    CBorderCon frame(true, 0);
    Make(frame, 300, 300);
    const CRect label(200, 0, 273, 22);
    frame.ResetZScale(2e-3, "V", true);
    const std::vector<COLORREF> shown = Shown(frame, label);
    for (double bad : {std::numeric_limits<double>::infinity(), std::nan(""), 1e39}) {
        frame.ResetZScale(bad, "V", true);
        EXPECT_EQ(Shown(frame, label), shown) << bad;
    }
    frame.ResetZScale(3e-3, "V", true);
    EXPECT_NE(Shown(frame, label), shown);
}

}  // namespace
