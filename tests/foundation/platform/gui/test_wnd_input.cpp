// Input: the messages that pointer and keyboard input become, capture, focus, pointer
// shape requests, leave tracking, clipping and the toolkit's events on the presenter.
#include <gtest/gtest.h>

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

#include <vector>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"
#include "support/orlex_test.h"

namespace {

struct Msg {
    HWND hwnd;
    UINT msg;
    WPARAM wp;
    LPARAM lp;
    bool operator==(const Msg& o) const { return hwnd == o.hwnd && msg == o.msg && wp == o.wp && lp == o.lp; }
};
std::vector<Msg> g_msgs;

bool Interesting(UINT m) {
    return (m >= WM_MOUSEFIRST && m <= WM_MOUSELAST) || (m >= WM_KEYFIRST && m <= WM_KEYLAST) || m == WM_SETCURSOR ||
           m == WM_SETFOCUS || m == WM_KILLFOCUS || m == WM_CAPTURECHANGED || m == WM_MOUSELEAVE ||
           m == WM_NCLBUTTONDOWN || m == WM_NCMOUSEMOVE;
}

// Records every input message with its parameters, then lets the default handling run.
class Probe : public CWnd {
public:
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (Interesting(m)) g_msgs.push_back(Msg{m_hWnd, m, wp, lp});
        return CWnd::WindowProc(m, wp, lp);
    }
};

std::vector<Msg> Only(UINT m) {
    std::vector<Msg> out;
    for (const Msg& x : g_msgs)
        if (x.msg == m) out.push_back(x);
    return out;
}

LPARAM Pt(int x, int y) { return MAKELPARAM(static_cast<WORD>(x), static_cast<WORD>(y)); }

class Input : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        ASSERT_TRUE(top.CreateEx(0, nullptr, "input", WS_OVERLAPPED | WS_VISIBLE, CRect(200, 100, 500, 400), nullptr, 0));
        ASSERT_TRUE(a.Create(nullptr, nullptr, WS_VISIBLE, CRect(10, 10, 110, 110), &top, 1));
        ASSERT_TRUE(b.Create(nullptr, nullptr, WS_VISIBLE | WS_BORDER, CRect(150, 10, 250, 110), &top, 2));
        orlex::test::Pump();
        g_msgs.clear();
    }
    Probe top, a, b;
};

TEST_F(Input, PressMoveReleaseCarryFlagsAndPackedPoints) {
    using namespace orlex::test;
    KeyDown(VK_CONTROL);
    MouseDown(a.m_hWnd, POINT{5, 7});
    MouseMove(a.m_hWnd, POINT{6, 9});
    MouseUp(a.m_hWnd, POINT{6, 9});
    KeyUp(VK_CONTROL);
    Click(a.m_hWnd, POINT{1, 2}, Button::Right);
    MouseDown(a.m_hWnd, POINT{3, 3}, Button::Middle);
    const std::vector<Msg> want = {
        {a.m_hWnd, WM_MOUSEMOVE, MK_CONTROL, Pt(5, 7)},
        {a.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_CONTROL, Pt(5, 7)},
        {a.m_hWnd, WM_MOUSEMOVE, MK_LBUTTON | MK_CONTROL, Pt(6, 9)},
        {a.m_hWnd, WM_LBUTTONUP, MK_CONTROL, Pt(6, 9)},
        {a.m_hWnd, WM_MOUSEMOVE, 0, Pt(1, 2)},
        {a.m_hWnd, WM_RBUTTONDOWN, MK_RBUTTON, Pt(1, 2)},
        {a.m_hWnd, WM_RBUTTONUP, 0, Pt(1, 2)},
        {a.m_hWnd, WM_MOUSEMOVE, 0, Pt(3, 3)},
        {a.m_hWnd, WM_MBUTTONDOWN, MK_MBUTTON, Pt(3, 3)},
    };
    std::vector<Msg> got;
    for (const Msg& m : g_msgs)
        if (m.msg >= WM_MOUSEFIRST && m.msg <= WM_MOUSELAST) got.push_back(m);
    EXPECT_EQ(got, want);
}

TEST_F(Input, SetCursorComesBeforeEachMouseMessage) {
    orlex::test::MouseMove(b.m_hWnd, POINT{4, 4});
    ASSERT_GE(g_msgs.size(), 2u);
    EXPECT_EQ(g_msgs[0], (Msg{b.m_hWnd, WM_SETCURSOR, reinterpret_cast<WPARAM>(b.m_hWnd), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE)}));
    // b has a border: its client (4,4) is one pixel further in.
    EXPECT_EQ(g_msgs.back(), (Msg{b.m_hWnd, WM_MOUSEMOVE, 0, Pt(4, 4)}));
    g_msgs.clear();
    // On the border: the non-client form with the hit code and the screen point.
    CRect wr;
    b.GetWindowRect(&wr);
    ::SetCursorPos(wr.left, wr.top);
    orlex::test::Pump();
    EXPECT_EQ(g_msgs.back(), (Msg{b.m_hWnd, WM_NCMOUSEMOVE, static_cast<WPARAM>(HTBORDER), Pt(wr.left, wr.top)}));
}

TEST_F(Input, CaptureGetsEveryMouseMessageInItsOwnCoordinates) {
    using namespace orlex::test;
    MouseMove(a.m_hWnd, POINT{50, 50});
    a.SetCapture();
    g_msgs.clear();
    MouseMove(b.m_hWnd, POINT{10, 10});  // over b, but a holds the capture
    POINT inA{10, 10};
    ::MapWindowPoints(b.m_hWnd, a.m_hWnd, &inA, 1);
    EXPECT_EQ(g_msgs, (std::vector<Msg>{{a.m_hWnd, WM_MOUSEMOVE, 0, Pt(inA.x, inA.y)}}));
    g_msgs.clear();
    MouseMove(top.m_hWnd, POINT{0, 0});  // left of and above a: negative coordinates
    EXPECT_EQ(g_msgs, (std::vector<Msg>{{a.m_hWnd, WM_MOUSEMOVE, 0, Pt(-10, -10)}}));
    g_msgs.clear();
    b.SetCapture();  // taking it away tells the old holder
    EXPECT_EQ(g_msgs, (std::vector<Msg>{{a.m_hWnd, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(b.m_hWnd)}}));
    g_msgs.clear();
    ::ReleaseCapture();
    EXPECT_EQ(g_msgs, (std::vector<Msg>{{b.m_hWnd, WM_CAPTURECHANGED, 0, 0}}));
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
}

TEST_F(Input, WheelDeltaInStepsWithScreenPoint) {
    orlex::test::KeyDown(VK_SHIFT);
    orlex::test::Wheel(a.m_hWnd, POINT{20, 30}, -240);
    orlex::test::KeyUp(VK_SHIFT);
    auto w = Only(WM_MOUSEWHEEL);
    // a does not take it: the default handling passes it up to the parent unchanged.
    ASSERT_EQ(w.size(), 2u);
    EXPECT_EQ(w[1], (Msg{top.m_hWnd, WM_MOUSEWHEEL, w[0].wp, w[0].lp}));
    EXPECT_EQ(GET_WHEEL_DELTA_WPARAM(w[0].wp), -240);
    EXPECT_EQ(GET_KEYSTATE_WPARAM(w[0].wp), MK_SHIFT);
    EXPECT_EQ(w[0].lp, Pt(200 + 10 + 20, 100 + 10 + 30));  // screen coordinates
}

struct DblCase {
    ULONGLONG gapMs;
    int dx;
    UINT second;  // the message of the second press
};

TEST_F(Input, DoubleClicksByTimeAndDistance) {
    const DblCase cases[] = {
        {100, 0, WM_LBUTTONDBLCLK}, {500, 2, WM_LBUTTONDBLCLK}, {501, 0, WM_LBUTTONDOWN}, {100, 3, WM_LBUTTONDOWN},
    };
    for (const auto& c : cases) {
        orlex::test::AdvanceClock(2000);  // forget the last press
        g_msgs.clear();
        orlex::test::Click(a.m_hWnd, POINT{40, 40});
        orlex::test::AdvanceClock(c.gapMs);
        orlex::test::Click(a.m_hWnd, POINT{40 + c.dx, 40});
        auto downs = std::vector<UINT>();
        for (const Msg& m : g_msgs)
            if (m.msg == WM_LBUTTONDOWN || m.msg == WM_LBUTTONDBLCLK) downs.push_back(m.msg);
        EXPECT_EQ(downs, (std::vector<UINT>{WM_LBUTTONDOWN, c.second})) << c.gapMs << " " << c.dx;
    }
}

TEST_F(Input, NoDoubleClicksWithoutTheClassStyle) {
    WNDCLASSA wc{};
    wc.lpszClassName = "NoDblClk";
    AfxRegisterClass(&wc);
    Probe plain;
    ASSERT_TRUE(plain.Create("NoDblClk", nullptr, WS_VISIBLE, CRect(10, 150, 60, 200), &top, 3));
    orlex::test::DoubleClick(plain.m_hWnd, POINT{5, 5});
    EXPECT_EQ(Only(WM_LBUTTONDOWN).size(), 2u);
    EXPECT_TRUE(Only(WM_LBUTTONDBLCLK).empty());
}

TEST_F(Input, KeysGoToTheFocusWithCharactersAndKeyState) {
    a.SetFocus();
    g_msgs.clear();
    orlex::test::TypeText("aB");
    const LPARAM down = MAKELPARAM(1, 0x1E), up = static_cast<LPARAM>(static_cast<LONG>(0xC01E0001u));
    const LPARAM shiftDown = MAKELPARAM(1, 0x2A), bDown = MAKELPARAM(1, 0x30);
    std::vector<Msg> keys;
    for (const Msg& m : g_msgs)
        if (m.msg >= WM_KEYFIRST && m.msg <= WM_KEYLAST) keys.push_back(m);
    const std::vector<Msg> want = {
        {a.m_hWnd, WM_KEYDOWN, 'A', down},
        {a.m_hWnd, WM_CHAR, 'a', down},
        {a.m_hWnd, WM_KEYUP, 'A', up},
        {a.m_hWnd, WM_KEYDOWN, VK_SHIFT, shiftDown},
        {a.m_hWnd, WM_KEYDOWN, 'B', bDown},
        {a.m_hWnd, WM_CHAR, 'B', bDown},
        {a.m_hWnd, WM_KEYUP, 'B', static_cast<LPARAM>(static_cast<LONG>(0xC0300001u))},
        {a.m_hWnd, WM_KEYUP, VK_SHIFT, static_cast<LPARAM>(static_cast<LONG>(0xC02A0001u))},
    };
    EXPECT_EQ(keys, want);
    orlex::test::KeyDown(VK_CONTROL);
    EXPECT_LT(::GetKeyState(VK_CONTROL), 0);
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_GE(::GetKeyState(VK_CONTROL), 0);
}

TEST_F(Input, FocusMessagesNameTheOtherWindow) {
    a.SetFocus();
    g_msgs.clear();
    EXPECT_EQ(b.SetFocus(), &a);
    EXPECT_EQ(g_msgs, (std::vector<Msg>{{a.m_hWnd, WM_KILLFOCUS, reinterpret_cast<WPARAM>(b.m_hWnd), 0},
                                        {b.m_hWnd, WM_SETFOCUS, reinterpret_cast<WPARAM>(a.m_hWnd), 0}}));
    EXPECT_EQ(CWnd::GetFocus(), &b);
    g_msgs.clear();
    b.DestroyWindow();  // the focus leaves a window that goes
    EXPECT_EQ(::GetFocus(), nullptr);
}

TEST_F(Input, MouseLeaveOnceAfterTracking) {
    orlex::test::MouseMove(a.m_hWnd, POINT{5, 5});
    TRACKMOUSEEVENT tme{sizeof tme, TME_LEAVE, a.m_hWnd, HOVER_DEFAULT};
    EXPECT_TRUE(_TrackMouseEvent(&tme));
    orlex::test::MouseMove(a.m_hWnd, POINT{6, 6});
    EXPECT_TRUE(Only(WM_MOUSELEAVE).empty());
    orlex::test::MouseMove(b.m_hWnd, POINT{5, 5});
    orlex::test::MouseMove(b.m_hWnd, POINT{6, 6});
    EXPECT_EQ(Only(WM_MOUSELEAVE), (std::vector<Msg>{{a.m_hWnd, WM_MOUSELEAVE, 0, 0}}));
}

TEST_F(Input, ClipCursorKeepsThePointerInside) {
    RECT clip{300, 200, 320, 220};
    ::ClipCursor(&clip);
    ::SetCursorPos(100, 500);
    POINT p;
    ::GetCursorPos(&p);
    EXPECT_EQ(CPoint(p), CPoint(300, 219));
    ::ClipCursor(nullptr);
    ::SetCursorPos(100, 500);
    ::GetCursorPos(&p);
    EXPECT_EQ(CPoint(p), CPoint(100, 500));
}

TEST_F(Input, StandardPointerShapesAreStableHandles) {
    HCURSOR arrow = ::LoadCursorA(nullptr, IDC_ARROW);
    HCURSOR size = ::LoadCursorA(nullptr, IDC_SIZEWE);
    EXPECT_NE(arrow, nullptr);
    EXPECT_NE(arrow, size);
    EXPECT_EQ(::LoadCursorA(nullptr, IDC_ARROW), arrow);
    EXPECT_EQ(::LoadCursorA(nullptr, ORLEX_INTRESOURCE(12345)), nullptr);
    ::SetCursor(size);
    EXPECT_EQ(::SetCursor(arrow), size);
    // The default child class shows the arrow when the pointer moves in.
    ::SetCursor(nullptr);
    orlex::test::MouseMove(a.m_hWnd, POINT{3, 3});
    EXPECT_EQ(::GetCursor(), arrow);
}

TEST_F(Input, ToolkitEventsOnThePresenterTakeTheSameRoad) {
    QWidget* w = orlex::test::PresenterOf(top.m_hWnd);
    ASSERT_NE(w, nullptr);
    QPointF local(10 + 7, 10 + 8);  // a's client (7, 8)
    QMouseEvent press(QEvent::MouseButtonPress, local, w->mapToGlobal(local), Qt::LeftButton, Qt::LeftButton,
                      Qt::ShiftModifier);
    QApplication::sendEvent(w, &press);
    a.SetFocus();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Left, Qt::NoModifier);
    QApplication::sendEvent(w, &key);
    g_msgs.clear();
    orlex::test::Pump();
    auto downs = Only(WM_LBUTTONDOWN);
    ASSERT_EQ(downs.size(), 1u);
    EXPECT_EQ(downs[0], (Msg{a.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON | MK_SHIFT, Pt(7, 8)}));
    // Shift, held with the press, went down first (to the window that had the focus then).
    auto keys = Only(WM_KEYDOWN);
    ASSERT_EQ(keys.size(), 2u);
    EXPECT_EQ(keys[0], (Msg{top.m_hWnd, WM_KEYDOWN, VK_SHIFT, MAKELPARAM(1, 0x2A)}));
    keys.erase(keys.begin());
    EXPECT_EQ(keys[0].wp, static_cast<WPARAM>(VK_LEFT));
    EXPECT_EQ(keys[0].lp & (1 << 24), 1 << 24);  // an extended key
}

}  // namespace

namespace {

// A pointer resource: hot spot (x, y as 16-bit little-endian words), then a PNG image.
std::vector<BYTE> PointerResource(int w, int h, int hotX, int hotY) {
    QImage img(w, h, QImage::Format_ARGB32);
    img.fill(Qt::black);
    QByteArray png;
    QBuffer buf(&png);
    buf.open(QIODevice::WriteOnly);
    img.save(&buf, "PNG");
    std::vector<BYTE> out = {static_cast<BYTE>(hotX), static_cast<BYTE>(hotX >> 8), static_cast<BYTE>(hotY),
                             static_cast<BYTE>(hotY >> 8)};
    out.insert(out.end(), png.begin(), png.end());
    return out;
}

struct PointerCase {
    WORD id;
    size_t keep;  // bytes of the resource kept (0: all)
    bool loads;
};

TEST(Pointers, LibraryPointersFromResources) {
    orlex::test::Init();
    HMODULE mod = ::GetModuleHandleA(nullptr);
    std::vector<BYTE> good = PointerResource(32, 32, 9, 1);
    const PointerCase cases[] = {
        {41050, 0, true},    // whole: loads
        {41051, 3, false},   // shorter than the hot spot
        {41052, 40, false},  // a PNG cut short
        {41053, 4, false},   // no image at all
    };
    for (const auto& c : cases) {
        size_t n = c.keep ? c.keep : good.size();
        ASSERT_TRUE(orlex::RegisterResource(mod, RT_CURSOR, MAKEINTRESOURCEA(c.id), good.data(), static_cast<DWORD>(n)));
        HCURSOR h = ::LoadCursorA(mod, MAKEINTRESOURCEA(c.id));
        EXPECT_EQ(h != nullptr, c.loads) << c.id;
        if (h) EXPECT_EQ(::LoadCursorA(mod, MAKEINTRESOURCEA(c.id)), h);  // loaded once, kept
    }
    EXPECT_EQ(::LoadCursorA(mod, MAKEINTRESOURCEA(41999)), nullptr);  // no such resource
}

class Routing : public Input {};

TEST_F(Routing, DisabledWindowsTakeNoPointerInput) {
    a.EnableWindow(FALSE);
    g_msgs.clear();
    orlex::test::Click(a.m_hWnd, POINT{5, 5});
    for (const Msg& m : g_msgs) EXPECT_NE(m.hwnd, a.m_hWnd) << m.msg;
    a.EnableWindow(TRUE);
    orlex::test::Click(a.m_hWnd, POINT{5, 5});
    EXPECT_EQ(Only(WM_LBUTTONDOWN).size(), 1u);
}

// A window that lets the pointer through to its parent.
class SeeThrough : public Probe {
public:
    LRESULT OnNcHitTest(CPoint) override { return HTTRANSPARENT; }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(SeeThrough, Probe)
    ON_WM_NCHITTEST()
END_MESSAGE_MAP()

TEST_F(Routing, TransparentHitGoesToTheParent) {
    SeeThrough tip;
    ASSERT_TRUE(tip.Create(nullptr, nullptr, WS_VISIBLE, CRect(5, 5, 50, 50), &a, 7));
    g_msgs.clear();
    orlex::test::Click(tip.m_hWnd, POINT{1, 1});
    auto downs = Only(WM_LBUTTONDOWN);
    ASSERT_EQ(downs.size(), 1u);
    EXPECT_EQ(downs[0], (Msg{a.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, Pt(6, 6)}));
}

TEST_F(Routing, PressActivatesAnInactiveTopLevelWindow) {
    Probe other;
    ASSERT_TRUE(other.CreateEx(0, nullptr, "other", WS_OVERLAPPED | WS_VISIBLE, CRect(600, 100, 700, 200), nullptr, 0));
    EXPECT_EQ(::GetActiveWindow(), other.m_hWnd);
    g_msgs.clear();
    orlex::test::Click(a.m_hWnd, POINT{5, 5});
    EXPECT_EQ(::GetActiveWindow(), top.m_hWnd);
    // The focus moved with the activation, before the press arrived.
    auto focus = Only(WM_SETFOCUS);
    ASSERT_EQ(focus.size(), 1u);
    EXPECT_EQ(focus[0].hwnd, top.m_hWnd);
    // A popup that goes hands the activation back to its owner.
    Probe popup;
    ASSERT_TRUE(popup.CreateEx(0, nullptr, "popup", WS_POPUP | WS_VISIBLE, CRect(0, 0, 50, 50), &other, 0));
    EXPECT_EQ(::GetActiveWindow(), popup.m_hWnd);
    popup.DestroyWindow();
    EXPECT_EQ(::GetActiveWindow(), other.m_hWnd);
}

}  // namespace

namespace {

TEST(Pointers, WaitPointerNestsAndRestoresTheOldShape) {
    orlex::test::Init();
    HCURSOR arrow = ::LoadCursorA(nullptr, IDC_ARROW), wait = ::LoadCursorA(nullptr, IDC_WAIT);
    ::SetCursor(arrow);
    {
        CWaitCursor outer;
        EXPECT_EQ(::GetCursor(), wait);
        {
            CWaitCursor inner;
            ::SetCursor(arrow);  // something else changed it
            inner.Restore();
            EXPECT_EQ(::GetCursor(), wait);
        }
        EXPECT_EQ(::GetCursor(), wait);  // still inside the outer one
    }
    EXPECT_EQ(::GetCursor(), arrow);
}

}  // namespace
