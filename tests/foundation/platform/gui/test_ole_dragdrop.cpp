// Drag and drop through the modal drag loop: the calls a target hears with their points,
// key states and effects, the start threshold, cancelling, a source that is its own target,
// registration, pointer feedback. Input comes from the harness inside the modal-loop hook,
// or is queued before the drag starts.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxole.h"
#include "foundation/platform/gui/wnd_p.h"
#include "support/orlex_test.h"

namespace {

using orlex::test::KeyDown;
using orlex::test::KeyUp;
using orlex::test::MouseDown;
using orlex::test::MouseMove;
using orlex::test::MouseUp;

bool g_inDrag = false;

// Answers as the grid does: Ctrl copies, else move. Logs each call with its parameters.
class LogTarget : public COleDropTarget {
public:
    LogTarget(std::vector<std::string>& log, const char* name) : log_(log), name_(name) {}
    bool logScroll = false;
    bool inDragAlways = true;  // every call came while DoDragDrop was running
    std::string dropped;       // the CF_TEXT bytes a drop received

    DROPEFFECT OnDragEnter(CWnd* wnd, COleDataObject* data, DWORD k, CPoint p) override {
        Note(wnd, "enter", p, k);
        return data->IsDataAvailable(CF_TEXT) ? Effect(k) : DROPEFFECT_NONE;
    }
    DROPEFFECT OnDragOver(CWnd* wnd, COleDataObject*, DWORD k, CPoint p) override {
        Note(wnd, "over", p, k);
        return Effect(k);
    }
    DROPEFFECT OnDragScroll(CWnd* wnd, DWORD k, CPoint p) override {
        if (logScroll) Note(wnd, "scroll", p, k);
        return DROPEFFECT_NONE;
    }
    void OnDragLeave(CWnd* wnd) override {
        inDragAlways &= g_inDrag;
        log_.push_back(name_ + " leave" + (wnd && wnd->m_hWnd == m_hWnd ? "" : " (wrong window)"));
    }
    BOOL OnDrop(CWnd* wnd, COleDataObject* data, DROPEFFECT e, CPoint p) override {
        Note(wnd, "drop", p, e);
        if (HGLOBAL h = data->GetGlobalData(CF_TEXT)) {
            const char* s = static_cast<const char*>(GlobalLock(h));
            dropped.assign(s, s + GlobalSize(h));
            GlobalUnlock(h);
            GlobalFree(h);
        }
        return TRUE;
    }

private:
    static DROPEFFECT Effect(DWORD k) { return (k & MK_CONTROL) ? DROPEFFECT_COPY : DROPEFFECT_MOVE; }
    void Note(CWnd* wnd, const char* what, CPoint p, DWORD n) {
        inDragAlways &= g_inDrag;
        std::string s = name_ + " " + what + " " + std::to_string(p.x) + "," + std::to_string(p.y) + " " +
                        std::to_string(n);
        if (!wnd || wnd->m_hWnd != m_hWnd) s += " (wrong window)";
        log_.push_back(s);
    }
    std::vector<std::string>& log_;
    std::string name_;
};

using Log = std::vector<std::string>;

class OleDrag : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        AfxOleInit();
        ASSERT_TRUE(src.CreateEx(0, nullptr, "src", WS_POPUP | WS_VISIBLE, CRect(100, 100, 300, 300), nullptr, 0));
        ASSERT_TRUE(dst.CreateEx(0, nullptr, "dst", WS_POPUP | WS_VISIBLE, CRect(400, 100, 600, 300), nullptr, 0));
        ASSERT_TRUE(other.CreateEx(0, nullptr, "other", WS_POPUP | WS_VISIBLE, CRect(700, 100, 900, 300), nullptr, 0));
        ASSERT_TRUE(child.Create(nullptr, "child", WS_CHILD | WS_VISIBLE, CRect(50, 50, 150, 150), &dst, 1));
        orlex::test::Pump();
        data.CacheGlobalData(CF_TEXT, Text(std::string("A1\tB1\r\nA2\tB2\0", 13)));
    }
    void TearDown() override {
        orlex::SetModalLoopHook({});
        g_inDrag = false;
    }
    static HGLOBAL Text(const std::string& bytes) {
        HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, bytes.size());
        std::memcpy(GlobalLock(h), bytes.data(), bytes.size());
        GlobalUnlock(h);
        return h;
    }
    // Presses at (20, 20) of the source and runs the drag; `steps` act inside the loop.
    DROPEFFECT Drag(std::function<void()> steps, DWORD allowed = DROPEFFECT_COPY | DROPEFFECT_MOVE) {
        MouseDown(src.m_hWnd, POINT{20, 20});
        hookRan = false;
        orlex::SetModalLoopHook([this, steps](CWnd*) {
            hookRan = true;
            steps();
        });
        g_inDrag = true;
        const DROPEFFECT e = data.DoDragDrop(allowed);
        g_inDrag = false;
        return e;
    }

    CWnd src, dst, other, child;
    COleDataSource data;
    Log log;
    bool hookRan = false;
};

TEST_F(OleDrag, MoveToRegisteredWindowEntersMovesAndDrops) {
    LogTarget target(log, "dst");
    target.logScroll = true;
    ASSERT_TRUE(target.Register(&dst));
    const DROPEFFECT e = Drag([&] {
        MouseMove(src.m_hWnd, POINT{60, 20});
        MouseMove(dst.m_hWnd, POINT{10, 20});
        MouseMove(dst.m_hWnd, POINT{30, 40});
        MouseUp(dst.m_hWnd, POINT{30, 40});
    });
    EXPECT_EQ(e, DROPEFFECT_MOVE);
    EXPECT_EQ(log, (Log{"dst enter 10,20 1", "dst scroll 30,40 1", "dst over 30,40 1", "dst drop 30,40 2"}));
    EXPECT_TRUE(target.inDragAlways);
    EXPECT_EQ(target.dropped, std::string("A1\tB1\r\nA2\tB2\0", 13));
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(OleDrag, CtrlHeldCopies) {
    LogTarget target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    KeyDown(VK_CONTROL);
    const DROPEFFECT e = Drag([&] {
        MouseMove(dst.m_hWnd, POINT{10, 20});
        MouseMove(dst.m_hWnd, POINT{11, 20});
        MouseUp(dst.m_hWnd, POINT{11, 20});
    });
    KeyUp(VK_CONTROL);
    EXPECT_EQ(e, DROPEFFECT_COPY);
    EXPECT_EQ(log, (Log{"dst enter 10,20 9", "dst over 11,20 9", "dst drop 11,20 1"}));
}

TEST_F(OleDrag, EffectFollowsCtrlOverTheSamePoint) {
    LogTarget target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    HCURSOR overMove = nullptr, overCopy = nullptr;
    const DROPEFFECT e = Drag([&] {
        MouseMove(dst.m_hWnd, POINT{10, 20});
        overMove = ::GetCursor();
        KeyDown(VK_CONTROL);
        // The loop polls the keys: the pointer has not moved.
        orlex::test::AdvanceClock(60);
        overCopy = ::GetCursor();
        MouseUp(dst.m_hWnd, POINT{10, 20});
    });
    KeyUp(VK_CONTROL);
    EXPECT_EQ(e, DROPEFFECT_COPY);
    EXPECT_EQ(log, (Log{"dst enter 10,20 1", "dst over 10,20 9", "dst drop 10,20 1"}));
    EXPECT_EQ(overMove, ::LoadCursor(nullptr, IDC_SIZEALL));
    EXPECT_EQ(overCopy, ::LoadCursor(nullptr, IDC_CROSS));
}

TEST_F(OleDrag, LeavingOneTargetForAnotherAndChildPoints) {
    LogTarget a(log, "dst"), b(log, "other");
    ASSERT_TRUE(a.Register(&dst));
    ASSERT_TRUE(b.Register(&other));
    HCURSOR overNothing = nullptr;
    const DROPEFFECT e = Drag([&] {
        // Over a child without a target of its own: its parent's target, in the parent's
        // client coordinates.
        MouseMove(child.m_hWnd, POINT{5, 5});
        MouseMove(::GetDesktopWindow(), POINT{350, 500});
        overNothing = ::GetCursor();
        MouseMove(other.m_hWnd, POINT{7, 8});
        MouseUp(other.m_hWnd, POINT{7, 8});
    });
    EXPECT_EQ(e, DROPEFFECT_MOVE);
    EXPECT_EQ(log, (Log{"dst enter 55,55 1", "dst leave", "other enter 7,8 1", "other drop 7,8 2"}));
    EXPECT_EQ(overNothing, ::LoadCursor(nullptr, IDC_NO));
}

// Each way a drag over a target ends with nothing: the target hears enter, then leave.
TEST_F(OleDrag, CancelledOrRefusedDragsLeaveTheTarget) {
    const POINT at{10, 20};
    struct Case {
        const char* name;
        DWORD allowed;
        std::function<void()> after;  // once the pointer is over the target
    } cases[] = {
        {"Escape", DROPEFFECT_COPY | DROPEFFECT_MOVE,
         [&] {
             orlex::test::Key(VK_ESCAPE);
             orlex::test::AdvanceClock(60);  // the loop polls the keys
             MouseUp(dst.m_hWnd, at);
         }},
        {"another button", DROPEFFECT_COPY | DROPEFFECT_MOVE,
         [&] {
             MouseDown(dst.m_hWnd, at, orlex::test::Button::Right);
             MouseUp(dst.m_hWnd, at);
             MouseUp(dst.m_hWnd, at, orlex::test::Button::Right);
         }},
        // The target answers move, which the source does not allow.
        {"effect not allowed", DROPEFFECT_COPY, [&] { MouseUp(dst.m_hWnd, at); }},
        // Headless, the input ran out with the button still down: nobody could end it.
        {"no more input", DROPEFFECT_COPY | DROPEFFECT_MOVE, [] {}},
    };
    LogTarget target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    for (const Case& c : cases) {
        log.clear();
        const DROPEFFECT e = Drag(
            [&] {
                MouseMove(dst.m_hWnd, at);
                c.after();
            },
            c.allowed);
        EXPECT_TRUE(hookRan) << c.name;
        EXPECT_EQ(e, DROPEFFECT_NONE) << c.name;
        EXPECT_EQ(log, (Log{"dst enter 10,20 1", "dst leave"})) << c.name;
        EXPECT_EQ(::GetCapture(), nullptr) << c.name;
        MouseUp(dst.m_hWnd, at);
    }
}

// A source that is its own target, released at points around the press at (20, 20): the
// drag starts only once the pointer is out of the press point widened by SM_CXDRAG (4).
TEST_F(OleDrag, StartThresholdWithTheSourceAsItsOwnTarget) {
    struct Case {
        POINT to;
        DROPEFFECT want;
        Log log;
    } cases[] = {
        {{23, 20}, DROPEFFECT_NONE, {}},
        {{16, 16}, DROPEFFECT_NONE, {}},
        {{23, 23}, DROPEFFECT_NONE, {}},
        {{24, 20}, DROPEFFECT_MOVE, {"src enter 24,20 1", "src drop 24,20 2"}},
        {{20, 15}, DROPEFFECT_MOVE, {"src enter 20,15 1", "src drop 20,15 2"}},
    };
    ASSERT_EQ(GetSystemMetrics(SM_CXDRAG), 4);
    LogTarget self(log, "src");
    ASSERT_TRUE(self.Register(&src));
    for (const Case& c : cases) {
        log.clear();
        const DROPEFFECT e = Drag([&] {
            MouseMove(src.m_hWnd, c.to);
            MouseUp(src.m_hWnd, c.to);
        });
        EXPECT_EQ(e, c.want) << c.to.x << "," << c.to.y;
        EXPECT_EQ(log, c.log) << c.to.x << "," << c.to.y;
    }
    EXPECT_TRUE(self.inDragAlways);
}

TEST_F(OleDrag, RevokedWindowIsNoTarget) {
    LogTarget target(log, "dst"), second(log, "second");
    ASSERT_TRUE(target.Register(&dst));
    EXPECT_FALSE(target.Register(&dst));
    EXPECT_FALSE(second.Register(&dst));  // one target a window
    EXPECT_FALSE(second.Register(nullptr));
    target.Revoke();
    EXPECT_EQ(target.GetRegisteredWindow(), nullptr);
    const DROPEFFECT e = Drag([&] {
        MouseMove(dst.m_hWnd, POINT{10, 20});
        MouseUp(dst.m_hWnd, POINT{10, 20});
    });
    EXPECT_EQ(e, DROPEFFECT_NONE);
    EXPECT_TRUE(log.empty());
    EXPECT_TRUE(second.Register(&dst));
}

TEST_F(OleDrag, DropExAnswerIsTheResult) {
    struct LinkTarget : LogTarget {
        using LogTarget::LogTarget;
        DROPEFFECT OnDropEx(CWnd*, COleDataObject*, DROPEFFECT dropDefault, DROPEFFECT list, CPoint) override {
            seen = {dropDefault, list};
            return DROPEFFECT_LINK;
        }
        std::pair<DROPEFFECT, DROPEFFECT> seen;
    } target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    const DROPEFFECT e = Drag([&] {
        MouseMove(dst.m_hWnd, POINT{10, 20});
        MouseUp(dst.m_hWnd, POINT{10, 20});
    });
    EXPECT_EQ(e, DROPEFFECT_LINK);
    EXPECT_EQ(target.seen, std::make_pair(DROPEFFECT_MOVE, DROPEFFECT_COPY | DROPEFFECT_MOVE));
    EXPECT_EQ(log, (Log{"dst enter 10,20 1"}));  // OnDrop is not asked
}

TEST_F(OleDrag, NoButtonDownMeansNoDrag) {
    bool ran = false;
    orlex::SetModalLoopHook([&](CWnd*) { ran = true; });
    EXPECT_EQ(data.DoDragDrop(DROPEFFECT_COPY), DROPEFFECT_NONE);
    EXPECT_FALSE(ran);
}

TEST_F(OleDrag, InputQueuedBeforeTheCallDrivesTheLoop) {
    LogTarget target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    MouseDown(src.m_hWnd, POINT{20, 20});
    POINT p{10, 20}, press{20, 20};
    ::ClientToScreen(dst.m_hWnd, &p);
    ::ClientToScreen(src.m_hWnd, &press);
    // The pointer has run ahead of the press being handled: the start rectangle is given.
    const RECT start{press.x - 4, press.y - 4, press.x + 4, press.y + 4};
    // Queued, not yet handled: the loop takes them whichever window they were meant for.
    orlex::detail::InjectMouseMove(QPoint(p.x, p.y));
    orlex::detail::InjectKey(VK_CONTROL, true);
    orlex::detail::InjectMouseButton(orlex::detail::MouseButton::Left, false, QPoint(p.x, p.y));
    orlex::detail::InjectKey(VK_CONTROL, false);
    const DROPEFFECT e = data.DoDragDrop(DROPEFFECT_COPY | DROPEFFECT_MOVE, &start);
    EXPECT_EQ(e, DROPEFFECT_COPY);
    EXPECT_EQ(log, (Log{"dst enter 10,20 1", "dst over 10,20 9", "dst drop 10,20 1"}));
    orlex::test::Pump();
}

// A window that starts the drag from its own mouse-move handler, as a grid does, and is a
// target itself: the drag runs inside the handler, the capture it held goes to the loop.
class DragSourceWnd : public CWnd {
public:
    std::vector<std::string>* log = nullptr;
    DROPEFFECT result = 0xFF;
    int mode = 0;

    void OnLButtonDown(UINT, CPoint) override { SetCapture(); }
    void OnMouseMove(UINT flags, CPoint p) override {
        if (!(flags & MK_LBUTTON) || mode != 0 || p.x < 25) return;
        auto* source = new COleDataSource;
        HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, 2);
        std::memcpy(GlobalLock(h), "x", 2);
        GlobalUnlock(h);
        source->CacheGlobalData(CF_TEXT, h);
        mode = 12;
        g_inDrag = true;
        result = source->DoDragDrop(DROPEFFECT_COPY | DROPEFFECT_MOVE);
        g_inDrag = false;
        log->push_back("returned " + std::to_string(result));
        delete source;
    }
    void OnCaptureChanged(CWnd*) override {
        log->push_back("capture changed");
        if (mode == 12) mode = 0;
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(DragSourceWnd, CWnd)
    ON_WM_LBUTTONDOWN()
    ON_WM_MOUSEMOVE()
    ON_WM_CAPTURECHANGED()
END_MESSAGE_MAP()

TEST_F(OleDrag, DragStartedInAMouseHandlerOntoTheSameWindow) {
    DragSourceWnd grid;
    grid.log = &log;
    ASSERT_TRUE(grid.CreateEx(0, nullptr, "grid", WS_POPUP | WS_VISIBLE, CRect(100, 400, 300, 600), nullptr, 0));
    LogTarget target(log, "grid");
    ASSERT_TRUE(target.Register(&grid));
    orlex::SetModalLoopHook([&](CWnd*) {
        MouseMove(grid.m_hWnd, POINT{60, 60});
        MouseUp(grid.m_hWnd, POINT{60, 60});
    });
    MouseDown(grid.m_hWnd, POINT{20, 20});
    MouseMove(grid.m_hWnd, POINT{30, 20});
    EXPECT_EQ(grid.result, DROPEFFECT_MOVE);
    EXPECT_EQ(grid.mode, 0);
    EXPECT_EQ(log, (Log{"capture changed", "grid enter 60,60 1", "grid drop 60,60 2", "returned 2"}));
    EXPECT_TRUE(target.inDragAlways);
    EXPECT_EQ(::GetCapture(), nullptr);
}

TEST_F(OleDrag, TargetRevokedDuringTheDragHearsNoMore) {
    struct Quitter : LogTarget {
        using LogTarget::LogTarget;
        DROPEFFECT OnDragOver(CWnd* wnd, COleDataObject* data, DWORD k, CPoint p) override {
            const DROPEFFECT e = LogTarget::OnDragOver(wnd, data, k, p);
            Revoke();
            return e;
        }
    } target(log, "dst");
    ASSERT_TRUE(target.Register(&dst));
    const DROPEFFECT e = Drag([&] {
        MouseMove(dst.m_hWnd, POINT{10, 20});
        MouseMove(dst.m_hWnd, POINT{12, 20});
        MouseMove(dst.m_hWnd, POINT{14, 20});
        MouseUp(dst.m_hWnd, POINT{14, 20});
    });
    EXPECT_EQ(e, DROPEFFECT_NONE);
    EXPECT_EQ(log, (Log{"dst enter 10,20 1", "dst over 12,20 1"}));
}

}  // namespace
