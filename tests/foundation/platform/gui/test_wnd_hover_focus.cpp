// Hover tracking (_TrackMouseEvent with TME_HOVER) on the layer clock, and focus changes
// made from inside WM_KILLFOCUS handlers.
#include <gtest/gtest.h>

#include <functional>
#include <vector>

#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

struct Msg {
    HWND hwnd;
    UINT msg;
    WPARAM wp;
    LPARAM lp;
    bool operator==(const Msg& o) const { return hwnd == o.hwnd && msg == o.msg && wp == o.wp && lp == o.lp; }
};
std::vector<Msg> g_log;

// Logs hover, leave and focus messages; a focus handler can be given to act inside
// WM_KILLFOCUS.
class Probe : public CWnd {
public:
    std::function<void()> onKill;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_MOUSEHOVER || m == WM_MOUSELEAVE || m == WM_SETFOCUS || m == WM_KILLFOCUS)
            g_log.push_back(Msg{m_hWnd, m, wp, lp});
        if (m == WM_KILLFOCUS && onKill) onKill();
        return CWnd::WindowProc(m, wp, lp);
    }
};

std::vector<Msg> Of(UINT m) {
    std::vector<Msg> out;
    for (const Msg& x : g_log)
        if (x.msg == m) out.push_back(x);
    return out;
}

LPARAM Pt(int x, int y) { return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)); }

class HoverFocus : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(top.CreateEx(0, nullptr, "hover", WS_OVERLAPPED | WS_VISIBLE, CRect(200, 100, 500, 400), nullptr, 0));
        ASSERT_TRUE(a.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 10, 110, 110), &top, 1));
        ASSERT_TRUE(b.Create(nullptr, nullptr, WS_VISIBLE, CRect(150, 10, 250, 110), &top, 2));
        ASSERT_TRUE(c.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 150, 110, 250), &top, 3));
        Pump();
        g_log.clear();
    }
    void TearDown() override {
        a.onKill = b.onKill = c.onKill = nullptr;
    }
    static BOOL Track(HWND hwnd, DWORD flags, DWORD ms = HOVER_DEFAULT) {
        TRACKMOUSEEVENT tme{sizeof tme, flags, hwnd, ms};
        return _TrackMouseEvent(&tme);
    }
    Probe top, a, b, c;
};

// Hover ---------------------------------------------------------------------------------------

TEST_F(HoverFocus, HoverComesOnceAfterTheDefaultTimeAtRest) {
    MouseMove(a.m_hWnd, POINT{5, 6});
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER));
    AdvanceClock(399);
    EXPECT_TRUE(Of(WM_MOUSEHOVER).empty());
    AdvanceClock(1);
    EXPECT_EQ(Of(WM_MOUSEHOVER), (std::vector<Msg>{{a.m_hWnd, WM_MOUSEHOVER, 0, Pt(5, 6)}}));
    // One notice per request.
    AdvanceClock(2000);
    EXPECT_EQ(Of(WM_MOUSEHOVER).size(), 1u);
}

TEST_F(HoverFocus, SmallMovesKeepTheWaitLargeOnesStartItAgain) {
    struct Case {
        POINT moveTo;      // at 60 ms of a 100 ms hover time
        ULONGLONG firesAt;  // ms after the request
    };
    const Case cases[] = {
        {{7, 8}, 100},    // within the 4-pixel hover rectangle about (5, 6)
        {{3, 4}, 100},
        {{8, 6}, 160},    // three pixels off: the wait starts at the move
        {{5, 30}, 160},
    };
    for (const Case& k : cases) {
        g_log.clear();
        MouseMove(a.m_hWnd, POINT{5, 6});
        ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER, 100));
        const ULONGLONG t0 = Now();
        AdvanceClock(60);
        MouseMove(a.m_hWnd, k.moveTo);
        AdvanceClock(k.firesAt - 61);
        EXPECT_TRUE(Of(WM_MOUSEHOVER).empty()) << k.moveTo.x << "," << k.moveTo.y;
        AdvanceClock(1);
        ASSERT_EQ(Of(WM_MOUSEHOVER).size(), 1u) << k.moveTo.x << "," << k.moveTo.y;
        EXPECT_EQ(Now() - t0, k.firesAt);
        EXPECT_EQ(Of(WM_MOUSEHOVER)[0].lp, Pt(k.moveTo.x, k.moveTo.y));
    }
}

TEST_F(HoverFocus, HoverCarriesTheKeysAndEndsWhenThePointerLeaves) {
    MouseMove(a.m_hWnd, POINT{5, 5});
    KeyDown(VK_CONTROL);
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER | TME_LEAVE, 50));
    AdvanceClock(50);
    KeyUp(VK_CONTROL);
    EXPECT_EQ(Of(WM_MOUSEHOVER), (std::vector<Msg>{{a.m_hWnd, WM_MOUSEHOVER, MK_CONTROL, Pt(5, 5)}}));
    // The leave request outlives the hover notice.
    MouseMove(b.m_hWnd, POINT{5, 5});
    EXPECT_EQ(Of(WM_MOUSELEAVE), (std::vector<Msg>{{a.m_hWnd, WM_MOUSELEAVE, 0, 0}}));
    // Over another window the hover request is gone.
    g_log.clear();
    MouseMove(a.m_hWnd, POINT{5, 5});
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER, 50));
    MouseMove(b.m_hWnd, POINT{6, 6});
    MouseMove(a.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    EXPECT_TRUE(Of(WM_MOUSEHOVER).empty());
}

TEST_F(HoverFocus, HoverCanBeQueriedAndCancelled) {
    MouseMove(a.m_hWnd, POINT{5, 5});
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER, 250));
    TRACKMOUSEEVENT q{sizeof q, TME_QUERY, nullptr, 0};
    ASSERT_TRUE(_TrackMouseEvent(&q));
    EXPECT_EQ(q.dwFlags, TME_HOVER);
    EXPECT_EQ(q.hwndTrack, a.m_hWnd);
    EXPECT_EQ(q.dwHoverTime, 250u);
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER | TME_CANCEL));
    AdvanceClock(1000);
    EXPECT_TRUE(Of(WM_MOUSEHOVER).empty());
    // Asked for a window the pointer is not over: nothing comes.
    ASSERT_TRUE(Track(b.m_hWnd, TME_HOVER, 10));
    AdvanceClock(1000);
    EXPECT_TRUE(Of(WM_MOUSEHOVER).empty());
    // A window that goes while waiting takes its request with it.
    ASSERT_TRUE(Track(a.m_hWnd, TME_HOVER, 10));
    a.DestroyWindow();
    AdvanceClock(1000);
    EXPECT_TRUE(Of(WM_MOUSEHOVER).empty());
    EXPECT_FALSE(Track(a.m_hWnd, TME_HOVER));
}

// Focus changed from WM_KILLFOCUS ---------------------------------------------------------------

TEST_F(HoverFocus, AWindowThatTakesTheFocusBackHearsOneKillFocus) {
    a.SetFocus();
    g_log.clear();
    a.onKill = [this] { a.SetFocus(); };
    b.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &a);
    ASSERT_EQ(g_log.size(), 2u);
    EXPECT_EQ(g_log[0], (Msg{a.m_hWnd, WM_KILLFOCUS, reinterpret_cast<WPARAM>(b.m_hWnd), 0}));
    EXPECT_EQ(g_log[1].hwnd, a.m_hWnd);
    EXPECT_EQ(g_log[1].msg, static_cast<UINT>(WM_SETFOCUS));
    // b never held the focus, so it hears neither message.
    for (const Msg& m : g_log) EXPECT_NE(m.hwnd, b.m_hWnd);
}

TEST_F(HoverFocus, TwoWindowsThatBothRefuseToLetGoDoNotLoop) {
    a.SetFocus();
    g_log.clear();
    a.onKill = [this] { a.SetFocus(); };
    b.onKill = [this] { b.SetFocus(); };
    b.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &a);
    EXPECT_EQ(Of(WM_KILLFOCUS).size(), 1u);
    EXPECT_EQ(Of(WM_SETFOCUS).size(), 1u);
    // Later changes work as usual.
    a.onKill = nullptr;
    g_log.clear();
    c.SetFocus();
    EXPECT_EQ(g_log, (std::vector<Msg>{{a.m_hWnd, WM_KILLFOCUS, reinterpret_cast<WPARAM>(c.m_hWnd), 0},
                                       {c.m_hWnd, WM_SETFOCUS, reinterpret_cast<WPARAM>(a.m_hWnd), 0}}));
}

TEST_F(HoverFocus, AFocusMovedElsewhereFromKillFocusStands) {
    a.SetFocus();
    g_log.clear();
    // An editor ending itself: it hands the focus on while it hears that it loses it.
    a.onKill = [this] { c.SetFocus(); };
    b.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &c);
    EXPECT_EQ(Of(WM_KILLFOCUS).size(), 1u);
    EXPECT_EQ(Of(WM_SETFOCUS).size(), 1u);
    EXPECT_EQ(Of(WM_SETFOCUS)[0].hwnd, c.m_hWnd);
    // Handing it to the window that was getting it anyway changes nothing: one WM_SETFOCUS.
    g_log.clear();
    c.onKill = [this] { top.SetFocus(); };
    top.SetFocus();
    EXPECT_EQ(g_log, (std::vector<Msg>{{c.m_hWnd, WM_KILLFOCUS, reinterpret_cast<WPARAM>(top.m_hWnd), 0},
                                       {top.m_hWnd, WM_SETFOCUS, reinterpret_cast<WPARAM>(c.m_hWnd), 0}}));
}

TEST_F(HoverFocus, KillFocusIsNotReenteredByLaterMovesFromTheSameHandler) {
    a.SetFocus();
    g_log.clear();
    int kills = 0;
    a.onKill = [&] {
        if (++kills > 5) return;  // a loop would show here as more than one
        a.SetFocus();
        c.SetFocus();
    };
    b.SetFocus();
    EXPECT_EQ(kills, 1);
    EXPECT_EQ(CWnd::GetFocus(), &c);
    // c holds the focus for real: it hears the next change.
    a.onKill = nullptr;
    g_log.clear();
    b.SetFocus();
    EXPECT_EQ(Of(WM_KILLFOCUS), (std::vector<Msg>{{c.m_hWnd, WM_KILLFOCUS, reinterpret_cast<WPARAM>(b.m_hWnd), 0}}));
}

}  // namespace
