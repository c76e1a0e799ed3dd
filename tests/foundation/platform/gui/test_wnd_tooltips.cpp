// Tooltips of a window through EnableToolTips: tools found under the pointer, the text
// asked of the window with TTN_NEEDTEXT, the delays, and what puts the tip away.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

struct Request {
    HWND from;
    UINT_PTR id;
    UINT flags;
    bool tipClass;
};

// A host window that answers tip requests as an image frame does: through its message map
// with the tooltip's id 0, only one child (the bar) gets a text, and the first request sets
// the control's delays once.
class TipHost : public CWnd {
public:
    HWND bar = nullptr;
    std::vector<Request> requests;

    BOOL OnTip(UINT, NMHDR* hdr, LRESULT* result) {
        auto* info = reinterpret_cast<TOOLTIPTEXT*>(hdr);
        char cls[32] = {};
        ::GetClassNameA(hdr->hwndFrom, cls, sizeof cls);
        requests.push_back(Request{hdr->hwndFrom, hdr->idFrom, info->uFlags, std::strcmp(cls, "tooltips_class32") == 0});
        if (requests.size() == 1) {
            ::SendMessageA(hdr->hwndFrom, TTM_SETDELAYTIME, TTDT_INITIAL, 20);
            ::SendMessageA(hdr->hwndFrom, TTM_SETDELAYTIME, TTDT_AUTOPOP, 3000);
        }
        if ((info->uFlags & TTF_IDISHWND) && reinterpret_cast<HWND>(hdr->idFrom) == bar)
            std::snprintf(info->szText, sizeof info->szText, "%s", "Bar: 0 .. 255");
        *result = 0;
        return TRUE;
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(TipHost, CWnd)
    ON_NOTIFY_EX(TTN_NEEDTEXT, 0, OnTip)
END_MESSAGE_MAP()

// Tools that are parts of the window rather than children, with their texts given at once.
class PartsHost : public CWnd {
public:
    INT_PTR OnToolHitTest(CPoint pt, TOOLINFOA* ti) const override {
        static char left[] = "left half", right[] = "right half";
        const bool isLeft = pt.x < 100;
        ti->hwnd = m_hWnd;
        ti->uId = isLeft ? 1 : 2;
        ti->rect = isLeft ? RECT{0, 0, 100, 100} : RECT{100, 0, 200, 100};
        ti->lpszText = isLeft ? left : right;
        return static_cast<INT_PTR>(ti->uId);
    }
};

class ToolTips : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_OVERLAPPED | WS_VISIBLE | WS_CLIPCHILDREN, CRect(100, 100, 400, 300),
                                  nullptr, 0));
        ASSERT_TRUE(bar.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 10, 60, 110), &host, 5));
        ASSERT_TRUE(other.Create(nullptr, nullptr, WS_VISIBLE, CRect(100, 10, 150, 110), &host, 6));
        host.bar = bar.m_hWnd;
        Pump();
    }
    // The tooltip control of the host, once it has asked for a text.
    HWND Tip() const { return host.requests.empty() ? nullptr : host.requests.front().from; }
    std::string TipText() const {
        char buf[100] = {};
        if (Tip()) ::GetWindowTextA(Tip(), buf, sizeof buf);
        return buf;
    }
    bool TipShown() const { return Tip() && ::IsWindowVisible(Tip()); }

    TipHost host;
    CWnd bar, other;
};

TEST_F(ToolTips, HoverOverAChildAsksTheWindowAfterTheInitialDelay) {
    ASSERT_TRUE(host.EnableToolTips(TRUE));
    MouseMove(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(490);
    EXPECT_TRUE(host.requests.empty());  // the control's default initial delay is 500 ms
    AdvanceClock(20);
    ASSERT_EQ(host.requests.size(), 1u);
    const Request& r = host.requests[0];
    EXPECT_TRUE(r.tipClass);
    EXPECT_EQ(reinterpret_cast<HWND>(r.id), bar.m_hWnd);
    EXPECT_TRUE(r.flags & TTF_IDISHWND);
    EXPECT_TRUE(TipShown());
    EXPECT_EQ(TipText(), "Bar: 0 .. 255");
    // The tip stands below the pointer.
    RECT tr;
    ::GetWindowRect(Tip(), &tr);
    POINT cursor;
    ::GetCursorPos(&cursor);
    EXPECT_EQ(tr.left, cursor.x);
    EXPECT_GT(tr.top, cursor.y);
    // The delays the first request set hold for the rest: it goes 3000 ms after it showed
    // (it showed 10 ms ago)...
    EXPECT_EQ(::SendMessageA(Tip(), TTM_GETDELAYTIME, TTDT_AUTOPOP, 0), 3000);
    AdvanceClock(2980);
    EXPECT_TRUE(TipShown());
    AdvanceClock(20);
    EXPECT_FALSE(TipShown());
    // ...and moving within the same tool does not bring it back.
    MouseMove(bar.m_hWnd, POINT{8, 9});
    AdvanceClock(600);
    EXPECT_FALSE(TipShown());
    EXPECT_EQ(host.requests.size(), 1u);
}

TEST_F(ToolTips, MovingOffTheToolHidesTheTipAndTheNextToolWaitsItsDelay) {
    ASSERT_TRUE(host.EnableToolTips());
    MouseMove(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    ASSERT_TRUE(TipShown());
    // The host's own client area has no tool: the tip hides at once.
    MouseMove(host.m_hWnd, POINT{250, 150});
    Pump();
    EXPECT_FALSE(TipShown());
    // Back over the bar: the short initial delay set by the first request.
    MouseMove(bar.m_hWnd, POINT{6, 6});
    AdvanceClock(10);
    EXPECT_FALSE(TipShown());
    AdvanceClock(10);
    EXPECT_TRUE(TipShown());
    ASSERT_EQ(host.requests.size(), 2u);
    // Straight to another child: asked with that child, which gets no text, so nothing shows.
    MouseMove(other.m_hWnd, POINT{5, 5});
    AdvanceClock(200);
    ASSERT_EQ(host.requests.size(), 3u);
    EXPECT_EQ(reinterpret_cast<HWND>(host.requests[2].id), other.m_hWnd);
    EXPECT_FALSE(TipShown());
}

TEST_F(ToolTips, PressesAndKeysPutTheTipAway) {
    ASSERT_TRUE(host.EnableToolTips());
    MouseMove(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    ASSERT_TRUE(TipShown());
    MouseDown(bar.m_hWnd, POINT{5, 5});
    EXPECT_FALSE(TipShown());
    MouseUp(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    EXPECT_FALSE(TipShown());
    // Leaving and coming back starts over; a key before the delay ends stops it.
    MouseMove(host.m_hWnd, POINT{250, 150});
    MouseMove(bar.m_hWnd, POINT{5, 5});
    bar.SetFocus();
    Key(VK_SPACE);
    AdvanceClock(100);
    EXPECT_FALSE(TipShown());
}

TEST_F(ToolTips, TurningTipsOffStopsRequestsAndEndsTheControl) {
    ASSERT_TRUE(host.EnableToolTips());
    EXPECT_TRUE(host.m_nFlags & WF_TOOLTIPS);
    MouseMove(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    ASSERT_TRUE(TipShown());
    const HWND tip = Tip();
    ASSERT_TRUE(host.EnableToolTips(FALSE));
    EXPECT_FALSE(host.m_nFlags & WF_TOOLTIPS);
    EXPECT_FALSE(::IsWindow(tip));
    MouseMove(host.m_hWnd, POINT{250, 150});
    MouseMove(bar.m_hWnd, POINT{7, 7});
    AdvanceClock(1000);
    EXPECT_EQ(host.requests.size(), 1u);
    // On again: a new control, with the default delays again.
    ASSERT_TRUE(host.EnableToolTips());
    MouseMove(bar.m_hWnd, POINT{8, 8});
    AdvanceClock(500);
    ASSERT_EQ(host.requests.size(), 2u);
    EXPECT_NE(host.requests[1].from, tip);
}

TEST_F(ToolTips, TheControlGoesWithItsWindow) {
    ASSERT_TRUE(host.EnableToolTips());
    MouseMove(bar.m_hWnd, POINT{5, 5});
    AdvanceClock(500);
    const HWND tip = Tip();
    ASSERT_TRUE(::IsWindow(tip));
    host.DestroyWindow();
    EXPECT_FALSE(::IsWindow(tip));
}

TEST_F(ToolTips, AWindowsOwnHitTestGivesPartsWithTheirTexts) {
    PartsHost parts;
    ASSERT_TRUE(parts.CreateEx(0, nullptr, "parts", WS_OVERLAPPED | WS_VISIBLE, CRect(500, 100, 700, 200), nullptr, 0));
    ASSERT_TRUE(parts.EnableToolTips());
    MouseMove(parts.m_hWnd, POINT{20, 20});
    AdvanceClock(500);
    auto shown = [] {
        // The tip is the visible tooltip window; read its text.
        for (HWND h = ::GetTopWindow(nullptr); h; h = ::GetWindow(h, GW_HWNDNEXT)) {
            char cls[32] = {};
            ::GetClassNameA(h, cls, sizeof cls);
            if (std::strcmp(cls, "tooltips_class32") == 0 && ::IsWindowVisible(h)) {
                char buf[64] = {};
                ::GetWindowTextA(h, buf, sizeof buf);
                return std::string(buf);
            }
        }
        return std::string();
    };
    EXPECT_EQ(shown(), "left half");
    // Within the same part nothing changes; into the other part the tip follows after the
    // control's short reshow delay.
    MouseMove(parts.m_hWnd, POINT{60, 30});
    Pump();
    EXPECT_EQ(shown(), "left half");
    MouseMove(parts.m_hWnd, POINT{150, 30});
    Pump();
    EXPECT_EQ(shown(), "");
    AdvanceClock(100);
    EXPECT_EQ(shown(), "right half");
}

}  // namespace
