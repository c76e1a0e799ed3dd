// Windows: creation and destruction order, geometry, stacking and hit testing, painting.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

std::vector<std::string> g_log;

class Logged : public CWnd {
public:
    std::string name;
    bool selfDelete = false;
    bool* deleted = nullptr;
    COLORREF fill = RGB(0, 0, 0);
    bool transparent = false;  // paints only a one-pixel outline, like a measuring cursor
    explicit Logged(std::string n = "w") : name(std::move(n)) {}
    ~Logged() override {
        if (deleted) *deleted = true;
    }
    int OnCreate(LPCREATESTRUCT cs) override {
        g_log.push_back(name + ":create " + std::to_string(cs->cx) + "x" + std::to_string(cs->cy));
        return 0;
    }
    void OnSize(UINT, int cx, int cy) override { g_log.push_back(name + ":size " + std::to_string(cx) + "x" + std::to_string(cy)); }
    void OnShowWindow(BOOL show, UINT) override { g_log.push_back(name + (show ? ":show" : ":hide")); }
    void OnDestroy() override { g_log.push_back(name + ":destroy"); }
    void OnNcDestroy() override {
        g_log.push_back(name + ":ncdestroy");
        CWnd::OnNcDestroy();
    }
    void PostNcDestroy() override {
        g_log.push_back(name + ":post");
        if (selfDelete) delete this;
    }
    BOOL OnEraseBkgnd(CDC*) override { return TRUE; }
    void OnPaint() override {
        CPaintDC dc(this);
        g_log.push_back(name + ":paint");
        CRect rc;
        GetClientRect(&rc);
        if (transparent) {
            CBrush b(fill);
            dc.FrameRect(&rc, &b);
        } else {
            dc.FillSolidRect(&rc, fill);
        }
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Logged, CWnd)
    ON_WM_CREATE()
    ON_WM_SIZE()
    ON_WM_SHOWWINDOW()
    ON_WM_DESTROY()
    ON_WM_NCDESTROY()
    ON_WM_ERASEBKGND()
    ON_WM_PAINT()
END_MESSAGE_MAP()

class Windows : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        g_log.clear();
        ASSERT_TRUE(top.CreateEx(0, nullptr, "top", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 50, 300, 250), nullptr, 0));
        orlex::test::Pump();
        g_log.clear();
    }
    Logged top{"top"};
};

TEST_F(Windows, CreationMessagesInOrder) {
    Logged c("c");
    ASSERT_TRUE(c.Create(nullptr, nullptr, WS_VISIBLE | WS_BORDER, CRect(10, 10, 50, 40), &top, 5));
    // WS_BORDER takes one pixel each side from the client area.
    EXPECT_EQ(g_log, (std::vector<std::string>{"c:create 40x30", "c:size 38x28", "c:show"}));
    EXPECT_EQ(c.GetDlgCtrlID(), 5);
    EXPECT_EQ(top.GetDlgItem(5), &c);
    EXPECT_EQ(c.GetParent(), &top);
    EXPECT_TRUE(c.GetStyle() & WS_CHILD);  // Create makes a child
}

class Refuses : public Logged {
public:
    Refuses() : Logged("r") {}
    int OnCreate(LPCREATESTRUCT) override { return -1; }
};

TEST_F(Windows, CreateAnsweringMinusOneFails) {
    Refuses r;
    EXPECT_FALSE(r.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 5, 5), &top, 1));
    EXPECT_EQ(r.m_hWnd, nullptr);
    EXPECT_EQ(top.GetDlgItem(1), nullptr);
    EXPECT_EQ(g_log, (std::vector<std::string>{"r:destroy", "r:ncdestroy", "r:post"}));
}

TEST_F(Windows, DestroyOrderAndSelfDeletingObjects) {
    auto* parent = new Logged("p");
    auto* child = new Logged("k");
    bool parentGone = false, childGone = false;
    parent->selfDelete = child->selfDelete = true;
    parent->deleted = &parentGone;
    child->deleted = &childGone;
    ASSERT_TRUE(parent->Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 100, 100), &top, 1));
    ASSERT_TRUE(child->Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 10, 10), parent, 2));
    HWND ph = parent->m_hWnd, ch = child->m_hWnd;
    g_log.clear();
    parent->DestroyWindow();
    // WM_DESTROY goes to the window first, then its children; WM_NCDESTROY children first.
    EXPECT_EQ(g_log, (std::vector<std::string>{"p:destroy", "k:destroy", "k:ncdestroy", "k:post", "p:ncdestroy", "p:post"}));
    EXPECT_TRUE(parentGone);
    EXPECT_TRUE(childGone);
    EXPECT_FALSE(::IsWindow(ph));
    EXPECT_FALSE(::IsWindow(ch));
    EXPECT_EQ(top.GetDlgItem(1), nullptr);
}

TEST_F(Windows, DeletingTheObjectDestroysItsWindow) {
    HWND h;
    {
        Logged w("d");
        ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 10, 10), &top, 3));
        h = w.m_hWnd;
    }
    EXPECT_FALSE(::IsWindow(h));
}

// A parent that deletes its child objects while it is being destroyed (an image view and its
// cursors): the children's windows, already on their way out, hear nothing more of them.
TEST_F(Windows, ChildObjectsDeletedInTheParentsDestroyAreForgotten) {
    struct Owner : Logged {
        Logged* kid = nullptr;
        void OnDestroy() override {
            Logged::OnDestroy();
            delete kid;
            kid = nullptr;
        }
    } owner;
    owner.name = "o";
    owner.kid = new Logged("k");
    ASSERT_TRUE(owner.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 100, 100), &top, 1));
    ASSERT_TRUE(owner.kid->Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 10, 10), &owner, 2));
    const HWND kh = owner.kid->m_hWnd;
    g_log.clear();
    owner.DestroyWindow();
    EXPECT_EQ(g_log, (std::vector<std::string>{"o:destroy", "o:ncdestroy", "o:post"}));
    EXPECT_FALSE(::IsWindow(kh));
}

struct GeometryCase {
    DWORD style, exStyle;
    RECT client;  // expected client rectangle of a 100x80 window
    POINT origin; // expected screen point of client (0,0) for a window at (10,20) in top's client
};

TEST_F(Windows, ClientAreaAndCoordinatesFollowTheFrame) {
    const GeometryCase cases[] = {
        {0, 0, {0, 0, 100, 80}, {110, 70}},
        {WS_BORDER, 0, {0, 0, 98, 78}, {111, 71}},
        {0, WS_EX_CLIENTEDGE, {0, 0, 96, 76}, {112, 72}},
        {WS_BORDER | WS_VSCROLL, 0, {0, 0, 81, 78}, {111, 71}},
        {WS_HSCROLL | WS_VSCROLL, WS_EX_STATICEDGE, {0, 0, 81, 61}, {111, 71}},
    };
    for (const auto& c : cases) {
        CWnd w;
        ASSERT_TRUE(w.CreateEx(c.exStyle, nullptr, nullptr, WS_CHILD | WS_VISIBLE | c.style, CRect(10, 20, 110, 100), &top, 9));
        CRect rc;
        w.GetClientRect(&rc);
        EXPECT_EQ(rc, CRect(c.client)) << c.style;
        CPoint p(0, 0);
        w.ClientToScreen(&p);
        EXPECT_EQ(p, CPoint(c.origin)) << c.style;
        CRect wr;
        w.GetWindowRect(&wr);
        EXPECT_EQ(wr, CRect(110, 70, 210, 150));
        w.ScreenToClient(&p);
        EXPECT_EQ(p, CPoint(0, 0));
        w.DestroyWindow();
    }
}

TEST_F(Windows, StackingDecidesHitTesting) {
    CWnd a, b;
    ASSERT_TRUE(a.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 60, 60), &top, 1));
    ASSERT_TRUE(b.Create(nullptr, nullptr, WS_VISIBLE, CRect(30, 30, 90, 90), &top, 2));
    // New children go below their older siblings.
    EXPECT_EQ(top.GetWindow(GW_CHILD), &a);
    EXPECT_EQ(a.GetWindow(GW_HWNDNEXT), &b);
    EXPECT_EQ(top.ChildWindowFromPoint(CPoint(40, 40)), &a);
    b.SetWindowPos(&a, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);  // b below a: no change
    b.SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(top.ChildWindowFromPoint(CPoint(40, 40)), &b);
    EXPECT_EQ(top.GetWindow(GW_CHILD), &b);
    b.SetWindowPos(&CWnd::wndBottom, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    EXPECT_EQ(top.ChildWindowFromPoint(CPoint(40, 40)), &a);
    // Screen hit testing finds the deepest visible window; hidden ones are passed by.
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(100 + 40, 50 + 40)), &a);
    a.ShowWindow(SW_HIDE);
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(100 + 40, 50 + 40)), &b);
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(100 + 5, 50 + 5)), &top);
    EXPECT_EQ(CWnd::WindowFromPoint(CPoint(5, 5)), nullptr);
}

TEST_F(Windows, InvalidateThenUpdatePaintsAtOnceParentFirst) {
    Logged view("view"), cursor("cursor");
    view.fill = RGB(0, 0, 255);
    cursor.fill = RGB(255, 0, 0);
    cursor.transparent = true;
    ASSERT_TRUE(view.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 100, 100), &top, 1));
    ASSERT_TRUE(cursor.Create(nullptr, nullptr, WS_VISIBLE, CRect(20, 20, 40, 40), &view, 2));
    orlex::test::Pump();
    g_log.clear();
    view.Invalidate(FALSE);
    view.UpdateWindow();
    // The view has no WS_CLIPCHILDREN: its paint covers the cursor, which paints after it.
    EXPECT_EQ(g_log, (std::vector<std::string>{"view:paint", "cursor:paint"}));
    using orlex::test::Pixel;
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{20, 20}), RGB(255, 0, 0));  // outline
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{30, 30}), RGB(0, 0, 255));  // the view shows through
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{39, 39}), RGB(255, 0, 0));
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{40, 40}), RGB(0, 0, 255));
    // Moving the cursor repaints the view under its old place, so no outline stays there.
    cursor.MoveWindow(50, 50, 20, 20);
    orlex::test::Pump();
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{20, 20}), RGB(0, 0, 255));
    EXPECT_EQ(Pixel(view.m_hWnd, POINT{50, 50}), RGB(255, 0, 0));
}

TEST_F(Windows, ClipChildrenKeepsTheParentOffItsChildren) {
    Logged frame("frame"), inner("inner");
    frame.fill = RGB(0, 255, 0);
    inner.fill = RGB(10, 10, 10);
    ASSERT_TRUE(frame.Create(nullptr, nullptr, WS_VISIBLE | WS_CLIPCHILDREN, CRect(0, 0, 100, 100), &top, 1));
    ASSERT_TRUE(inner.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 10, 30, 30), &frame, 2));
    orlex::test::Pump();
    g_log.clear();
    frame.Invalidate(FALSE);
    frame.UpdateWindow();
    EXPECT_EQ(g_log, std::vector<std::string>{"frame:paint"});
    EXPECT_EQ(orlex::test::Pixel(frame.m_hWnd, POINT{15, 15}), RGB(10, 10, 10));
    EXPECT_EQ(orlex::test::Pixel(frame.m_hWnd, POINT{5, 5}), RGB(0, 255, 0));
}

TEST_F(Windows, WindowTextRoundTrip) {
    top.SetWindowText("R\xB5m 3\xB2");
    CString s;
    top.GetWindowText(s);
    EXPECT_STREQ(s, "R\xB5m 3\xB2");
    char small[3];
    EXPECT_EQ(top.GetWindowText(small, 3), 2);
    EXPECT_STREQ(small, "R\xB5");
}

}  // namespace

namespace {

class Paint : public Windows {};

TEST_F(Paint, ValidatedAreaIsNotPaintedAgain) {
    Logged w("w");
    ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 40, 30), &top, 1));
    orlex::test::Pump();
    g_log.clear();
    CRect half(0, 0, 20, 30);
    CRect all(0, 0, 40, 30);
    w.InvalidateRect(&all, FALSE);
    w.ValidateRect(&half);
    CRect u;
    EXPECT_TRUE(w.GetUpdateRect(&u));
    EXPECT_EQ(u, CRect(20, 0, 40, 30));
    w.ValidateRect(nullptr);
    EXPECT_FALSE(w.GetUpdateRect(&u));
    orlex::test::Pump();
    EXPECT_TRUE(g_log.empty());
    // Posted paints wait for the queue; UpdateWindow paints now.
    w.Invalidate(FALSE);
    EXPECT_TRUE(g_log.empty());
    orlex::test::Pump();
    EXPECT_EQ(g_log, std::vector<std::string>{"w:paint"});
}

TEST_F(Paint, ScrollWindowMovesPixelsAndRepaintsTheUncoveredStrip) {
    Logged w("w");
    w.fill = RGB(200, 200, 200);
    ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 40, 30), &top, 1));
    orlex::test::Pump();
    {
        CClientDC dc(&w);
        dc.FillSolidRect(0, 0, 40, 10, RGB(255, 0, 0));  // a red band at the top
    }
    g_log.clear();
    w.ScrollWindow(0, 5);
    using orlex::test::Pixel;
    EXPECT_EQ(Pixel(w.m_hWnd, POINT{3, 12}), RGB(255, 0, 0));  // the band moved down
    EXPECT_EQ(Pixel(w.m_hWnd, POINT{3, 16}), RGB(200, 200, 200));
    CRect u;
    EXPECT_TRUE(w.GetUpdateRect(&u));
    EXPECT_EQ(u, CRect(0, 0, 40, 5));
    w.UpdateWindow();
    EXPECT_EQ(g_log, std::vector<std::string>{"w:paint"});
    EXPECT_EQ(Pixel(w.m_hWnd, POINT{3, 2}), RGB(200, 200, 200));
}

struct SiblingCase {
    DWORD lowerStyle;
    COLORREF atOverlap;  // what the lower sibling's own drawing leaves where the upper one lies
};

TEST_F(Paint, SiblingsClipOnlyWithClipSiblings) {
    const SiblingCase cases[] = {{0, RGB(1, 2, 3)}, {WS_CLIPSIBLINGS, RGB(9, 9, 9)}};
    for (const auto& c : cases) {
        Logged upper("upper"), lower("lower");
        upper.fill = RGB(9, 9, 9);
        lower.fill = RGB(1, 2, 3);
        ASSERT_TRUE(upper.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 20, 20), &top, 1));
        ASSERT_TRUE(lower.Create(nullptr, nullptr, WS_VISIBLE | c.lowerStyle, CRect(10, 10, 30, 30), &top, 2));
        orlex::test::Pump();
        lower.Invalidate(FALSE);
        lower.UpdateWindow();  // the lower one paints last
        EXPECT_EQ(orlex::test::Pixel(top.m_hWnd, POINT{15, 15}), c.atOverlap) << c.lowerStyle;
        EXPECT_EQ(orlex::test::Pixel(top.m_hWnd, POINT{25, 25}), RGB(1, 2, 3));
    }
}

TEST_F(Paint, FrameIsDrawnAroundTheClient) {
    Logged w("w");
    w.fill = RGB(255, 255, 0);
    ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE | WS_BORDER, CRect(10, 10, 50, 40), &top, 1));
    orlex::test::Pump();
    // The border is the window frame colour, one pixel, just outside the client.
    COLORREF frame = ::GetSysColor(COLOR_WINDOWFRAME);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{-1, -1}), frame);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{37, 27}), RGB(255, 255, 0));  // client is 38x28
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{37, 28}), frame);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{38, 27}), frame);
}

TEST_F(Windows, HierarchyWalksAndReparenting) {
    CWnd a, b, c;
    ASSERT_TRUE(a.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 10, 10), &top, 1));
    ASSERT_TRUE(b.Create(nullptr, nullptr, WS_VISIBLE, CRect(20, 0, 30, 10), &top, 2));
    ASSERT_TRUE(c.Create(nullptr, nullptr, WS_VISIBLE, CRect(1, 2, 5, 5), &a, 3));
    EXPECT_EQ(a.GetWindow(GW_HWNDLAST), &b);
    EXPECT_EQ(b.GetWindow(GW_HWNDPREV), &a);
    EXPECT_EQ(b.GetWindow(GW_HWNDFIRST), &a);
    EXPECT_EQ(c.GetTopLevelParent(), &top);
    EXPECT_TRUE(top.IsChild(&c));
    POINT p{0, 0};
    int packed = ::MapWindowPoints(c.m_hWnd, b.m_hWnd, &p, 1);
    EXPECT_EQ(CPoint(p), CPoint(1 - 20, 2));
    EXPECT_EQ(packed, MAKELONG(static_cast<WORD>(-19), 2));
    EXPECT_EQ(c.SetParent(&b), &a);
    EXPECT_EQ(b.GetWindow(GW_CHILD), &c);
    EXPECT_EQ(a.GetWindow(GW_CHILD), nullptr);
    EXPECT_EQ(b.SetParent(&c), nullptr);  // never under its own descendant
    EXPECT_EQ(c.SetParent(&c), nullptr);  // nor under itself
    EXPECT_EQ(c.GetParent(), &b);
}

}  // namespace

namespace {

struct BackgroundCase {
    const char* cls;
    HBRUSH brush;      // the class background: a system colour + 1, a brush, or none
    COLORREF expect;   // after the window is shown and pumped
};

TEST_F(Windows, DefaultEraseFillsWithTheClassBackground) {
    static CBrush red(RGB(255, 0, 0));
    const BackgroundCase cases[] = {
        {"BgFace", reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_3DFACE + 1)), ::GetSysColor(COLOR_3DFACE)},
        {"BgInfo", reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_INFOBK + 1)), ::GetSysColor(COLOR_INFOBK)},
        {"BgRed", static_cast<HBRUSH>(red.GetSafeHandle()), RGB(255, 0, 0)},
    };
    for (const auto& c : cases) {
        WNDCLASSA wc{};
        wc.style = CS_HREDRAW | CS_VREDRAW | CS_DBLCLKS;
        wc.lpfnWndProc = ::DefWindowProcA;
        wc.hbrBackground = c.brush;
        wc.lpszClassName = c.cls;
        ASSERT_TRUE(AfxRegisterClass(&wc));
        CWnd w;
        ASSERT_TRUE(w.Create(c.cls, nullptr, WS_VISIBLE, CRect(0, 0, 30, 20), &top, 1));
        orlex::test::Pump();
        EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{29, 19}), c.expect) << c.cls;
        w.DestroyWindow();
    }
}

}  // namespace
