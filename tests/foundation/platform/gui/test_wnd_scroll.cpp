// RedrawWindow's erase flags (RDW_ERASE, RDW_NOERASE, RDW_ERASENOW) and ScrollWindow moving
// child windows along with the contents when no scroll rectangle is given.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

using orlex::test::Pixel;

constexpr COLORREF kGrey = RGB(200, 200, 200);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kGreen = RGB(0, 160, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

std::vector<std::string> g_log;

// Erases its background with `back` (WM_ERASEBKGND) and paints its client with `fill` only
// when told to (paintFill); both are logged.
class Canvas : public CWnd {
public:
    Canvas(const char* n, COLORREF b, COLORREF f) : name(n), back(b), fill(f) {}
    std::string name;
    COLORREF back, fill;
    bool paintFill = true;
    std::vector<POINT> moves;
    BOOL OnEraseBkgnd(CDC* dc) override {
        g_log.push_back(name + ":erase");
        CRect c;
        GetClientRect(&c);
        dc->FillSolidRect(&c, back);
        return TRUE;
    }
    void OnPaint() override {
        CPaintDC dc(this);
        g_log.push_back(name + ":paint");
        if (paintFill) {
            CRect c;
            GetClientRect(&c);
            dc.FillSolidRect(&c, fill);
        }
    }
    void OnMove(int x, int y) override {
        moves.push_back(POINT{x, y});
        CWnd::OnMove(x, y);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Canvas, CWnd)
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
    ON_WM_MOVE()
END_MESSAGE_MAP()

class Scroll : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        ASSERT_TRUE(top.CreateEx(0, nullptr, "scroll", WS_POPUP | WS_VISIBLE, 0, 0, 200, 150, nullptr, nullptr));
        orlex::test::Pump();
        g_log.clear();
    }
    CWnd top;
};

// Erase flags ------------------------------------------------------------------------------------

struct EraseCase {
    const char* name;
    BOOL invalidateErase;  // an InvalidateRect(erase) before the call; -1: none
    UINT flags;
    std::vector<std::string> log;  // what the call (and a pump) brings
    COLORREF pixel;                // of the window after it, painting only the background
};

TEST_F(Scroll, RedrawWindowErasesOnlyWhenAsked) {
    const EraseCase cases[] = {
        {"RDW_ERASE erases", -1, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW, {"w:erase", "w:paint"}, kRed},
        {"no RDW_ERASE: no erase", -1, RDW_INVALIDATE | RDW_UPDATENOW, {"w:paint"}, kGrey},
        {"RDW_NOERASE over RDW_ERASE", -1, RDW_INVALIDATE | RDW_ERASE | RDW_NOERASE | RDW_UPDATENOW, {"w:paint"}, kGrey},
        {"RDW_NOERASE drops a pending erase", TRUE, RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW, {"w:paint"}, kGrey},
        {"a pending erase stays without it", TRUE, RDW_INVALIDATE | RDW_UPDATENOW, {"w:erase", "w:paint"}, kRed},
        {"RDW_ERASENOW erases now, paints later", -1, RDW_INVALIDATE | RDW_ERASE | RDW_ERASENOW, {"w:erase"}, kRed},
    };
    for (const EraseCase& c : cases) {
        SCOPED_TRACE(c.name);
        Canvas w("w", kRed, kGreen);
        w.paintFill = false;
        ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 40, 30), &top, 1));
        orlex::test::Pump();
        {
            CClientDC dc(&w);
            dc.FillSolidRect(0, 0, 40, 30, kGrey);
        }
        if (c.invalidateErase >= 0) w.InvalidateRect(nullptr, c.invalidateErase);
        g_log.clear();
        w.RedrawWindow(nullptr, nullptr, c.flags);
        EXPECT_EQ(g_log, c.log);
        EXPECT_EQ(Pixel(w.m_hWnd, POINT{20, 15}), c.pixel);
        if (c.flags & RDW_ERASENOW) {
            // The paint is still due, without a second erase.
            g_log.clear();
            orlex::test::Pump();
            EXPECT_EQ(g_log, std::vector<std::string>{"w:paint"});
        }
    }
}

TEST_F(Scroll, NoEraseReachesTheChildrenItRedraws) {
    Canvas parent("p", kRed, kGreen), child("c", kBlue, kGreen);
    ASSERT_TRUE(parent.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 100, 60), &top, 1));
    ASSERT_TRUE(child.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 10, 30, 30), &parent, 2));
    orlex::test::Pump();
    parent.InvalidateRect(nullptr, TRUE);  // reaches the child too: no WS_CLIPCHILDREN
    g_log.clear();
    parent.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW);
    EXPECT_EQ(g_log, (std::vector<std::string>{"p:paint", "c:paint"}));
    // With RDW_NOCHILDREN the child keeps its erase.
    parent.InvalidateRect(nullptr, TRUE);
    g_log.clear();
    parent.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_NOERASE | RDW_UPDATENOW | RDW_NOCHILDREN);
    child.UpdateWindow();
    EXPECT_EQ(g_log, (std::vector<std::string>{"p:paint", "c:erase", "c:paint"}));
}

// ScrollWindow and children ----------------------------------------------------------------------

struct ScrollCase {
    const char* name;
    bool withRect;       // a scroll rectangle (the whole client) is given
    int dx, dy;
    CRect childAfter;    // in the parent's client coordinates
    size_t moves;        // WM_MOVE heard by the child
};

TEST_F(Scroll, ChildrenMoveOnlyWithoutAScrollRectangle) {
    const ScrollCase cases[] = {
        {"no rectangle: down", false, 0, 12, CRect(20, 22, 50, 42), 1},
        {"no rectangle: left and up", false, -15, -4, CRect(5, 6, 35, 26), 1},
        {"with a rectangle they stay", true, 0, 12, CRect(20, 10, 50, 30), 0},
        {"no move, no message", false, 0, 0, CRect(20, 10, 50, 30), 0},
    };
    for (const ScrollCase& c : cases) {
        SCOPED_TRACE(c.name);
        Canvas parent("p", kGrey, kGrey), child("c", kBlue, kBlue);
        ASSERT_TRUE(parent.Create(nullptr, nullptr, WS_VISIBLE | WS_CLIPCHILDREN, CRect(0, 0, 120, 80), &top, 1));
        ASSERT_TRUE(child.Create(nullptr, nullptr, WS_VISIBLE, CRect(20, 10, 50, 30), &parent, 2));
        orlex::test::Pump();
        child.moves.clear();
        const RECT all{0, 0, 120, 80};
        parent.ScrollWindow(c.dx, c.dy, c.withRect ? &all : nullptr);
        CRect r;
        child.GetWindowRect(&r);
        parent.ScreenToClient(&r);
        EXPECT_EQ(r, c.childAfter);
        ASSERT_EQ(child.moves.size(), c.moves);
        if (c.moves) EXPECT_EQ(CPoint(child.moves[0]), c.childAfter.TopLeft());
        // The child's pixels are where the child is, before and after painting.
        orlex::test::Pump();
        EXPECT_EQ(Pixel(parent.m_hWnd, POINT{c.childAfter.left + 1, c.childAfter.top + 1}), kBlue);
        EXPECT_EQ(Pixel(parent.m_hWnd, POINT{c.childAfter.right - 2, c.childAfter.bottom - 2}), kBlue);
    }
}

TEST_F(Scroll, AChildScrolledInFromOutsideIsPaintedWhole) {
    // The child hangs below the parent's client area; scrolling up brings its lower part in,
    // which the copy could not bring: the uncovered strip repaints it, WS_CLIPCHILDREN or not.
    Canvas parent("p", kGrey, kGrey), child("c", kBlue, kBlue);
    ASSERT_TRUE(parent.Create(nullptr, nullptr, WS_VISIBLE | WS_CLIPCHILDREN, CRect(0, 0, 100, 60), &top, 1));
    ASSERT_TRUE(child.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 40, 40, 90), &parent, 2));
    orlex::test::Pump();
    g_log.clear();
    parent.ScrollWindow(0, -30);
    CRect u;
    EXPECT_TRUE(parent.GetUpdateRect(&u));
    EXPECT_EQ(u, CRect(0, 30, 100, 60));
    orlex::test::Pump();
    EXPECT_EQ(g_log, (std::vector<std::string>{"p:erase", "p:paint", "c:erase", "c:paint"}));
    for (int y : {11, 29, 31, 55}) EXPECT_EQ(Pixel(parent.m_hWnd, POINT{20, y}), kBlue) << y;
    EXPECT_EQ(Pixel(parent.m_hWnd, POINT{50, 45}), kGrey);
}

TEST_F(Scroll, MovedChildrenOutsideTheClipRectangleRepaint) {
    Canvas parent("p", kGrey, kGrey), child("c", kBlue, kBlue);
    ASSERT_TRUE(parent.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 100, 60), &top, 1));
    ASSERT_TRUE(child.Create(nullptr, nullptr, WS_VISIBLE, CRect(60, 10, 80, 30), &parent, 2));
    orlex::test::Pump();
    const RECT clip{0, 0, 50, 60};  // the child lies outside it, right of x = 50
    parent.ScrollWindow(0, 10, nullptr, &clip);
    orlex::test::Pump();
    EXPECT_EQ(Pixel(parent.m_hWnd, POINT{65, 15}), kGrey);  // its old place, now uncovered
    EXPECT_EQ(Pixel(parent.m_hWnd, POINT{65, 25}), kBlue);
    EXPECT_EQ(Pixel(parent.m_hWnd, POINT{65, 38}), kBlue);
}

}  // namespace

// A window's bar set with redraw --------------------------------------------------------------

namespace {

// Counts its paints and frame paints.
class BarOwner : public CWnd {
public:
    int paints = 0, frames = 0;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_PAINT) ++paints;
        if (m == WM_NCPAINT) ++frames;
        return CWnd::WindowProc(m, wp, lp);
    }
};

TEST(ScrollBarRedraw, RedrawsTheBarNowAndLeavesTheClientToItsPaint) {
    orlex::test::Init();
    BarOwner w;
    ASSERT_TRUE(w.CreateEx(0, nullptr, "bar", WS_POPUP | WS_VISIBLE | WS_VSCROLL, 0, 0, 200, 150, nullptr, nullptr));
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE | SIF_POS, 0, 99, 10, 0, 0};
    ::SetScrollInfo(w.m_hWnd, SB_VERT, &si, TRUE);
    orlex::test::Pump();
    w.paints = w.frames = 0;
    w.Invalidate();
    si.fMask = SIF_POS;
    si.nPos = 40;
    ::SetScrollInfo(w.m_hWnd, SB_VERT, &si, TRUE);
    EXPECT_EQ(w.frames, 1);
    EXPECT_EQ(w.paints, 0);
    CRect update;
    EXPECT_TRUE(w.GetUpdateRect(&update));
    // Without redraw the bar waits too; the pump then paints both, the client once.
    si.nPos = 60;
    ::SetScrollInfo(w.m_hWnd, SB_VERT, &si, FALSE);
    EXPECT_EQ(w.frames, 1);
    orlex::test::Pump();
    EXPECT_EQ(w.paints, 1);
    EXPECT_EQ(w.frames, 2);
    w.DestroyWindow();
}

}  // namespace
