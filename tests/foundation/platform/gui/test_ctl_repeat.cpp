// Scroll arrows, page areas and spin buttons held down: the repeated steps their parent gets
// on the layer clock, and the end at release.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/ctl_scroll_p.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;
using orlex::detail::kScrollRepeatDelay;
using orlex::detail::kScrollRepeatPeriod;
using orlex::detail::kSpinRepeatDelay;
using orlex::detail::kSpinRepeatPeriod;

// A host that records scroll codes and, when asked, moves a scroll bar as an application does.
class Host : public CWnd {
public:
    std::vector<UINT> codes;
    CScrollBar* follow = nullptr;  // the bar the host moves by its line and page steps
    int line = 1, page = 10;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_HSCROLL || m == WM_VSCROLL) {
            codes.push_back(LOWORD(wp));
            if (follow && reinterpret_cast<HWND>(lp) == follow->m_hWnd) {
                int pos = follow->GetScrollPos();
                switch (LOWORD(wp)) {
                case SB_LINELEFT: pos -= line; break;
                case SB_LINERIGHT: pos += line; break;
                case SB_PAGELEFT: pos -= page; break;
                case SB_PAGERIGHT: pos += page; break;
                default: break;
                }
                follow->SetScrollPos(pos);
            }
        }
        return CWnd::WindowProc(m, wp, lp);
    }
    size_t Count(UINT code) const { return static_cast<size_t>(std::count(codes.begin(), codes.end(), code)); }
};

class Repeat : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "repeat", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 500, 400), nullptr, 0));
        Pump();
    }
    Host host;
};

TEST(RepeatMath, SpinAcceleratesAfterTwoAndFiveSeconds) {
    const struct { ULONGLONG held; int step; } cases[] = {{0, 1}, {1999, 1}, {2000, 5}, {4999, 5}, {5000, 20}, {60000, 20}};
    for (const auto& c : cases) EXPECT_EQ(orlex::detail::UpDownAcceleration(c.held), c.step) << c.held;
}

TEST_F(Repeat, HeldArrowRepeatsAfterTheDelayThenAtTheRate) {
    CScrollBar bar;
    ASSERT_TRUE(bar.Create(WS_VISIBLE | SBS_HORZ, CRect(10, 10, 210, 27), &host, 90));
    bar.SetScrollRange(0, 100);
    Pump();
    host.codes.clear();
    MouseDown(bar.m_hWnd, POINT{5, 8});
    EXPECT_EQ(host.codes, std::vector<UINT>{SB_LINELEFT});
    AdvanceClock(kScrollRepeatDelay - 1);
    EXPECT_EQ(host.codes.size(), 1u);
    AdvanceClock(1);
    EXPECT_EQ(host.codes.size(), 2u);
    AdvanceClock(kScrollRepeatPeriod * 3);
    EXPECT_EQ(host.codes.size(), 5u);
    // Off the arrow the repeats wait; back on it they go on at the rate.
    MouseMove(bar.m_hWnd, POINT{100, 8});
    AdvanceClock(kScrollRepeatPeriod * 4);
    EXPECT_EQ(host.codes.size(), 5u);
    MouseMove(bar.m_hWnd, POINT{6, 8});
    AdvanceClock(kScrollRepeatPeriod);
    EXPECT_EQ(host.codes.size(), 6u);
    MouseUp(bar.m_hWnd, POINT{6, 8});
    EXPECT_EQ(host.codes.back(), static_cast<UINT>(SB_ENDSCROLL));
    AdvanceClock(1000);
    EXPECT_EQ(host.Count(SB_LINELEFT), 6u);
    EXPECT_EQ(host.codes.size(), 7u);
}

TEST_F(Repeat, HeldPageAreaStopsWhenTheThumbReachesThePointer) {
    CScrollBar bar;
    ASSERT_TRUE(bar.Create(WS_VISIBLE | SBS_HORZ, CRect(10, 10, 210, 27), &host, 91));
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, 109, 10, 0, 0};
    bar.SetScrollInfo(&si);
    host.follow = &bar;
    Pump();
    host.codes.clear();
    const int x = 150;
    // Where the pages should stop: the first position whose thumb covers x.
    int expectPos = 0;
    size_t expectPages = 0;
    for (;;) {
        const auto g = orlex::detail::ComputeScroll(200, 17, 0, 109, 10, expectPos);
        if (x >= g.thumbStart && x < g.thumbEnd) break;
        expectPos += 10;
        ++expectPages;
    }
    ASSERT_GT(expectPages, 2u);
    MouseDown(bar.m_hWnd, POINT{x, 8});
    AdvanceClock(kScrollRepeatDelay + kScrollRepeatPeriod * 20);
    EXPECT_EQ(host.Count(SB_PAGERIGHT), expectPages);
    EXPECT_EQ(bar.GetScrollPos(), expectPos);
    MouseUp(bar.m_hWnd, POINT{x, 8});
    EXPECT_EQ(host.codes.back(), static_cast<UINT>(SB_ENDSCROLL));
    EXPECT_EQ(host.Count(SB_ENDSCROLL), 1u);
}

TEST_F(Repeat, TrackbarPagesTowardsTheHeldPointer) {
    CSliderCtrl slider;
    ASSERT_TRUE(slider.Create(WS_VISIBLE, CRect(10, 10, 206, 40), &host, 92));
    slider.SetRange(0, 180);
    slider.SetPageSize(20);
    slider.SetPos(0);
    Pump();
    host.codes.clear();
    const int x = 150;
    MouseDown(slider.m_hWnd, POINT{x, 12});
    EXPECT_EQ(slider.GetPos(), 20);
    AdvanceClock(kScrollRepeatDelay);
    EXPECT_EQ(slider.GetPos(), 40);
    AdvanceClock(kScrollRepeatPeriod * 20);
    // It pages until the thumb (11 pixels wide) covers the pointer, and no further.
    const int centre = orlex::detail::TrackbarThumbCenter(196, 0, 180, slider.GetPos());
    EXPECT_LE(std::abs(centre - x), orlex::detail::kTrackThumb / 2);
    EXPECT_EQ(host.Count(TB_PAGEDOWN), static_cast<size_t>(slider.GetPos() / 20));
    MouseUp(slider.m_hWnd, POINT{x, 12});
    EXPECT_EQ(host.codes.back(), static_cast<UINT>(TB_ENDTRACK));
    const size_t n = host.codes.size();
    AdvanceClock(1000);
    EXPECT_EQ(host.codes.size(), n);
}

TEST_F(Repeat, HeldSpinRepeatsAndSpeedsUp) {
    CSpinButtonCtrl spin;
    ASSERT_TRUE(spin.Create(WS_VISIBLE, CRect(10, 10, 26, 32), &host, 93));
    spin.SetRange32(0, 1000);
    spin.SetPos32(0);
    Pump();
    host.codes.clear();
    MouseDown(spin.m_hWnd, POINT{8, 3});
    // Positions after the press at the given total hold times: one step at the press, the
    // first repeat after the delay, then one each period; steps of 5 from 2 s, of 20 from 5 s.
    struct Case { ULONGLONG at; int pos; };
    const Case cases[] = {
        {0, 1},
        {kSpinRepeatDelay - 1, 1},
        {kSpinRepeatDelay, 2},
        {1900, 2 + (1900 - kSpinRepeatDelay) / kSpinRepeatPeriod},
        {2000, 2 + (1900 - kSpinRepeatDelay) / kSpinRepeatPeriod + 5},
        {5000, 2 + (1900 - kSpinRepeatDelay) / kSpinRepeatPeriod + 5 + 5 * ((4900 - 2000) / kSpinRepeatPeriod) + 20},
    };
    ULONGLONG now = 0;
    for (const Case& c : cases) {
        AdvanceClock(c.at - now);
        now = c.at;
        EXPECT_EQ(spin.GetPos32(), c.pos) << "at " << c.at;
    }
    MouseUp(spin.m_hWnd, POINT{8, 3});
    EXPECT_EQ(host.codes.back(), static_cast<UINT>(SB_ENDSCROLL));
    const int pos = spin.GetPos32();
    AdvanceClock(1000);
    EXPECT_EQ(spin.GetPos32(), pos);
    // Each step was announced as a position.
    EXPECT_EQ(host.Count(SB_THUMBPOSITION), host.codes.size() - 1);
}

}  // namespace
