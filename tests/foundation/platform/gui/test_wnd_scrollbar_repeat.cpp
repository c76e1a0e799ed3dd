// A window's own scroll bars held down: arrows and page parts repeat on the layer clock
// while the button stays down, an arrow waits while the pointer is off it, paging stops at
// the thumb, and the release ends the gesture with one SB_ENDSCROLL.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/ctl_scroll_p.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;
using orlex::detail::kScrollRepeatDelay;
using orlex::detail::kScrollRepeatPeriod;

// A window with both bars (no border, so client and window coordinates agree) that logs
// what its bars send and, when asked, moves a bar by its steps as an application does.
class Host : public CWnd {
public:
    struct Scroll {
        UINT msg, code, pos;
        bool operator==(const Scroll&) const = default;
    };
    std::vector<Scroll> log;
    int timers = 0;        // WM_TIMER messages that reached the window's procedure
    int follow = -1;       // the bar (SB_HORZ / SB_VERT) moved by the steps, or -1
    int line = 1, page = 10;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_TIMER) ++timers;
        if (m == WM_HSCROLL || m == WM_VSCROLL) {
            log.push_back(Scroll{m, LOWORD(wp), HIWORD(wp)});
            const int bar = m == WM_VSCROLL ? SB_VERT : SB_HORZ;
            if (bar == follow) {
                int pos = ::GetScrollPos(m_hWnd, bar);
                switch (LOWORD(wp)) {
                case SB_LINEUP: pos -= line; break;
                case SB_LINEDOWN: pos += line; break;
                case SB_PAGEUP: pos -= page; break;
                case SB_PAGEDOWN: pos += page; break;
                default: break;
                }
                ::SetScrollPos(m_hWnd, bar, pos, TRUE);
            }
        }
        return CWnd::WindowProc(m, wp, lp);
    }
    std::vector<UINT> Codes() const {
        std::vector<UINT> c;
        for (const Scroll& s : log) c.push_back(s.code);
        return c;
    }
    size_t Count(UINT code) const {
        return static_cast<size_t>(std::count_if(log.begin(), log.end(), [&](const Scroll& s) { return s.code == code; }));
    }
};

constexpr int kSize = 200, kBar = 17, kClient = kSize - kBar;  // 183: each bar's length

class BarRepeat : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "bars", WS_POPUP | WS_VISIBLE | WS_VSCROLL | WS_HSCROLL,
                                  CRect(100, 100, 100 + kSize, 100 + kSize), nullptr, 0));
        for (int bar : {SB_HORZ, SB_VERT}) {
            SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, 109, 10, 50, 0};
            ::SetScrollInfo(host.m_hWnd, bar, &si, TRUE);
        }
        Pump();
        host.log.clear();
    }
    // A point on a bar `along` pixels from its start, in client coordinates.
    static POINT On(int bar, int along) {
        return bar == SB_VERT ? POINT{kClient + kBar / 2, along} : POINT{along, kClient + kBar / 2};
    }
    Host host;
};

struct ArrowCase {
    const char* name;
    int bar;
    int along;  // pixels from the bar's start
    UINT msg, code;
};
const ArrowCase kArrows[] = {
    {"up", SB_VERT, 5, WM_VSCROLL, SB_LINEUP},
    {"down", SB_VERT, kClient - 5, WM_VSCROLL, SB_LINEDOWN},
    {"left", SB_HORZ, 3, WM_HSCROLL, SB_LINELEFT},
    {"right", SB_HORZ, kClient - 1, WM_HSCROLL, SB_LINERIGHT},
};

TEST_F(BarRepeat, HeldArrowStepsAtThePressThenAfterTheDelayThenEachPeriod) {
    for (const ArrowCase& c : kArrows) {
        SCOPED_TRACE(c.name);
        host.log.clear();
        MouseDown(host.m_hWnd, On(c.bar, c.along));
        EXPECT_EQ(::GetCapture(), host.m_hWnd);
        // Steps counted at total hold times: one at the press, none more until the delay.
        struct Tick { ULONGLONG at; size_t steps; };
        const Tick ticks[] = {
            {0, 1},
            {kScrollRepeatDelay - 1, 1},
            {kScrollRepeatDelay, 2},
            {kScrollRepeatDelay + kScrollRepeatPeriod - 1, 2},
            {kScrollRepeatDelay + kScrollRepeatPeriod, 3},
            {kScrollRepeatDelay + 10 * kScrollRepeatPeriod, 12},
        };
        ULONGLONG now = 0;
        for (const Tick& t : ticks) {
            AdvanceClock(t.at - now);
            now = t.at;
            EXPECT_EQ(host.log.size(), t.steps) << "at " << t.at;
        }
        MouseUp(host.m_hWnd, On(c.bar, c.along));
        AdvanceClock(1000);
        std::vector<Host::Scroll> want(12, Host::Scroll{c.msg, c.code, 0});
        want.push_back(Host::Scroll{c.msg, SB_ENDSCROLL, 0});
        EXPECT_EQ(host.log, want);
        EXPECT_EQ(::GetCapture(), nullptr);
    }
    // The repeat timer is the layer's own: the window never hears it.
    EXPECT_EQ(host.timers, 0);
}

TEST_F(BarRepeat, ArrowWaitsWhileThePointerIsOffItAndGoesOnWhenItComesBack) {
    const POINT arrow = On(SB_VERT, 5);
    MouseDown(host.m_hWnd, arrow);
    AdvanceClock(kScrollRepeatDelay);
    ASSERT_EQ(host.log.size(), 2u);
    // Off the arrow: onto the track of the same bar, then out of the window altogether.
    for (POINT off : {On(SB_VERT, 90), POINT{-40, 300}}) {
        MouseMove(host.m_hWnd, off);
        AdvanceClock(kScrollRepeatPeriod * 4);
        EXPECT_EQ(host.log.size(), 2u);
    }
    MouseMove(host.m_hWnd, POINT{arrow.x + 2, arrow.y + 3});
    AdvanceClock(kScrollRepeatPeriod);
    EXPECT_EQ(host.log.size(), 3u);
    // Released off the arrow the gesture still ends, once.
    MouseMove(host.m_hWnd, On(SB_VERT, 90));
    MouseUp(host.m_hWnd, On(SB_VERT, 90));
    AdvanceClock(1000);
    EXPECT_EQ(host.Codes(), (std::vector<UINT>{SB_LINEUP, SB_LINEUP, SB_LINEUP, SB_ENDSCROLL}));
}

// Where paging from `start` towards a pointer `along` pixels down the bar stops: the first
// position whose thumb covers the pointer, and the pages it took.
struct PageStop {
    int pos;
    size_t pages;
};
PageStop ExpectedStop(int start, int along, int step) {
    PageStop s{start, 0};
    for (;;) {
        const auto g = orlex::detail::ComputeScroll(kClient, kBar, 0, 109, 10, s.pos);
        if (along >= g.thumbStart && along < g.thumbEnd) return s;
        s.pos += step;
        ++s.pages;
    }
}

TEST_F(BarRepeat, HeldPageAreaStopsWhenTheThumbReachesThePointer) {
    struct Case {
        int bar, start, along;
        UINT code;
        int step;
    };
    const Case cases[] = {
        {SB_VERT, 0, 160, SB_PAGEDOWN, 10},
        {SB_VERT, 100, 25, SB_PAGEUP, -10},
        {SB_HORZ, 0, 150, SB_PAGERIGHT, 10},
        {SB_HORZ, 90, 40, SB_PAGELEFT, -10},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "bar " << c.bar << " from " << c.start << " to " << c.along);
        ::SetScrollPos(host.m_hWnd, c.bar, c.start, TRUE);
        host.follow = c.bar;
        host.log.clear();
        const PageStop stop = ExpectedStop(c.start, c.along, c.step);
        ASSERT_GT(stop.pages, 2u);
        MouseDown(host.m_hWnd, On(c.bar, c.along));
        AdvanceClock(kScrollRepeatDelay + kScrollRepeatPeriod * 30);
        EXPECT_EQ(host.Count(c.code), stop.pages);
        EXPECT_EQ(::GetScrollPos(host.m_hWnd, c.bar), stop.pos);
        EXPECT_EQ(host.log.size(), stop.pages);  // nothing else while held
        MouseUp(host.m_hWnd, On(c.bar, c.along));
        EXPECT_EQ(host.Codes().back(), static_cast<UINT>(SB_ENDSCROLL));
        EXPECT_EQ(host.Count(SB_ENDSCROLL), 1u);
    }
}

TEST_F(BarRepeat, HeldPartLooksPressedWhileThePointerIsOnIt) {
    const COLORREF face = ::GetSysColor(COLOR_3DFACE), shadow = ::GetSysColor(COLOR_3DSHADOW),
                   dark = ::GetSysColor(COLOR_3DDKSHADOW), track = ::GetSysColor(COLOR_SCROLLBAR);
    ASSERT_NE(face, shadow);
    ASSERT_NE(dark, track);
    // Inside the up arrow, clear of its outline and its triangle; in the page area below the
    // thumb (position 50 of 0..109 puts it in the middle).
    const POINT arrowPixel{kClient + 2, 2}, pagePixel{kClient + 2, 140};
    struct Step {
        const char* what;
        POINT pointer;
        int action;  // 0 press, 1 move, 2 release
        COLORREF arrow, page;
    };
    const Step steps[] = {
        {"arrow held", On(SB_VERT, 5), 0, shadow, track},
        {"pointer off it", On(SB_VERT, 60), 1, face, track},
        {"back on it", On(SB_VERT, 6), 1, shadow, track},
        {"released", On(SB_VERT, 6), 2, face, track},
        {"page held", On(SB_VERT, 150), 0, face, dark},
        {"pointer on the thumb", On(SB_VERT, 90), 1, face, track},
        {"back in the page", On(SB_VERT, 130), 1, face, dark},
        {"released", On(SB_VERT, 130), 2, face, track},
    };
    for (const Step& st : steps) {
        if (st.action == 0) MouseDown(host.m_hWnd, st.pointer);
        else if (st.action == 1) MouseMove(host.m_hWnd, st.pointer);
        else MouseUp(host.m_hWnd, st.pointer);
        EXPECT_EQ(Pixel(host.m_hWnd, arrowPixel), st.arrow) << st.what;
        EXPECT_EQ(Pixel(host.m_hWnd, pagePixel), st.page) << st.what;
    }
}

TEST_F(BarRepeat, ChildWithABorderRepeatsAndFollowsThePointer) {
    // A child window framed by a one-pixel border: its bar lies past the client's right
    // edge and one pixel down, so client points reach it shifted by the border.
    Host child;
    ASSERT_TRUE(child.CreateEx(0, nullptr, "child", WS_CHILD | WS_VISIBLE | WS_BORDER | WS_VSCROLL, CRect(20, 20, 122, 142),
                               &host, 7));
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, 99, 10, 0, 0};
    ::SetScrollInfo(child.m_hWnd, SB_VERT, &si, TRUE);
    Pump();
    CRect client;
    child.GetClientRect(&client);
    ASSERT_EQ(client.Width(), 100 - kBar);
    ASSERT_EQ(client.Height(), 120);
    const POINT down{client.right + 8, client.bottom - 3};  // on the down arrow
    MouseDown(child.m_hWnd, down);
    AdvanceClock(kScrollRepeatDelay + kScrollRepeatPeriod);
    EXPECT_EQ(child.log.size(), 3u);
    // Just above the arrow (in the page part) the arrow waits; on its top row it goes on.
    MouseMove(child.m_hWnd, POINT{down.x, client.bottom - kBar - 1});
    AdvanceClock(kScrollRepeatPeriod * 3);
    EXPECT_EQ(child.log.size(), 3u);
    MouseMove(child.m_hWnd, POINT{down.x, client.bottom - kBar});
    AdvanceClock(kScrollRepeatPeriod);
    EXPECT_EQ(child.log.size(), 4u);
    MouseUp(child.m_hWnd, down);
    EXPECT_EQ(child.Codes(), (std::vector<UINT>{SB_LINEDOWN, SB_LINEDOWN, SB_LINEDOWN, SB_LINEDOWN, SB_ENDSCROLL}));
    EXPECT_TRUE(host.log.empty());
}

TEST_F(BarRepeat, DisabledBarIgnoresPresses) {
    ::EnableScrollBar(host.m_hWnd, SB_VERT, ESB_DISABLE_BOTH);
    for (int along : {5, 90, kClient - 5}) {
        MouseDown(host.m_hWnd, On(SB_VERT, along));
        EXPECT_EQ(::GetCapture(), nullptr) << along;
        AdvanceClock(kScrollRepeatDelay + kScrollRepeatPeriod * 4);
        MouseUp(host.m_hWnd, On(SB_VERT, along));
    }
    EXPECT_TRUE(host.log.empty());
    // Disabled while held (its range no longer needs it), the bar stops stepping; the
    // release still ends the gesture.
    ::EnableScrollBar(host.m_hWnd, SB_VERT, ESB_ENABLE_BOTH);
    MouseDown(host.m_hWnd, On(SB_VERT, 5));
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_DISABLENOSCROLL, 0, 9, 10, 0, 0};
    ::SetScrollInfo(host.m_hWnd, SB_VERT, &si, TRUE);
    AdvanceClock(kScrollRepeatDelay + kScrollRepeatPeriod * 4);
    MouseUp(host.m_hWnd, On(SB_VERT, 5));
    EXPECT_EQ(host.Codes(), (std::vector<UINT>{SB_LINEUP, SB_ENDSCROLL}));
    host.log.clear();
    // The other bar still works.
    Click(host.m_hWnd, On(SB_HORZ, 5));
    EXPECT_EQ(host.Codes(), (std::vector<UINT>{SB_LINELEFT, SB_ENDSCROLL}));
}

TEST_F(BarRepeat, ThumbDragTracksAndEndsWithoutRepeating) {
    ::SetScrollPos(host.m_hWnd, SB_VERT, 0, TRUE);
    const auto g = orlex::detail::ComputeScroll(kClient, kBar, 0, 109, 10, 0);
    const int grab = g.thumbStart + 3;
    MouseDown(host.m_hWnd, On(SB_VERT, grab));
    EXPECT_EQ(::GetCapture(), host.m_hWnd);
    AdvanceClock(kScrollRepeatDelay * 3);
    EXPECT_TRUE(host.log.empty());
    // The thumb moved by `d` pixels shows the position that start gives.
    const int d = 40;
    const int pos = orlex::detail::ScrollPosFromThumb(g, g.thumbStart + d, 0, 109, 10);
    MouseMove(host.m_hWnd, On(SB_VERT, grab + d));
    MouseUp(host.m_hWnd, On(SB_VERT, grab + d));
    AdvanceClock(1000);
    const std::vector<Host::Scroll> want = {{WM_VSCROLL, SB_THUMBTRACK, static_cast<UINT>(pos)},
                                            {WM_VSCROLL, SB_THUMBPOSITION, static_cast<UINT>(pos)},
                                            {WM_VSCROLL, SB_ENDSCROLL, 0}};
    EXPECT_EQ(host.log, want);
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(BarRepeat, CaptureTakenAwayEndsTheGesture) {
    CWnd other;
    ASSERT_TRUE(other.CreateEx(0, nullptr, "other", WS_POPUP | WS_VISIBLE, CRect(400, 100, 500, 200), nullptr, 0));
    MouseDown(host.m_hWnd, On(SB_HORZ, 5));
    AdvanceClock(kScrollRepeatDelay);
    ASSERT_EQ(host.log.size(), 2u);
    other.SetCapture();
    AdvanceClock(kScrollRepeatPeriod * 5);
    EXPECT_EQ(host.Codes(), (std::vector<UINT>{SB_LINELEFT, SB_LINELEFT, SB_ENDSCROLL}));
    ::ReleaseCapture();
    MouseUp(host.m_hWnd, On(SB_HORZ, 5));
    EXPECT_EQ(host.Count(SB_ENDSCROLL), 1u);
}

TEST_F(BarRepeat, WindowDestroyedWhileHeldStopsQuietly) {
    MouseDown(host.m_hWnd, On(SB_VERT, 5));
    host.DestroyWindow();
    AdvanceClock(kScrollRepeatDelay * 3);
    EXPECT_EQ(host.log.size(), 1u);
    EXPECT_EQ(::GetCapture(), nullptr);
}

}  // namespace
