// Message system: sends, posts, threads, and dispatch through message maps.
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/process.h"
#include "support/orlex_test.h"

namespace {

using orlex::test::Pump;

std::vector<std::string> g_log;
UINT g_regMsg = 0;  // filled after the maps exist: registered messages match by value at dispatch

// A child that records what reaches it and answers a few messages with known results.
class Recorder : public CWnd {
public:
    HWND forwardTo = nullptr;
    LRESULT OnUser(WPARAM wp, LPARAM lp) {
        g_log.push_back(std::string(name) + ":user" + std::to_string(wp));
        if (forwardTo) return ::SendMessageA(forwardTo, WM_USER, wp + 1, lp) + 1;  // nested send
        return static_cast<LRESULT>(wp) * 10;
    }
    LRESULT OnReg(WPARAM wp, LPARAM) { g_log.push_back("reg" + std::to_string(wp)); return 77; }
    void OnOne() { g_log.push_back("cmd100"); }
    void OnRange(UINT id) { g_log.push_back("range" + std::to_string(id)); }
    void OnUpdate(CCmdUI* ui) { ui->Enable(FALSE); g_log.push_back("update100"); }
    void OnClicked() { g_log.push_back("clicked7"); }
    void OnNotifyClick(NMHDR* h, LRESULT* r) { g_log.push_back("notify" + std::to_string(h->idFrom)); *r = -5; }
    BOOL OnNotifyEx(UINT id, NMHDR*, LRESULT*) { g_log.push_back("ex" + std::to_string(id)); return id == 4; }
    void OnNotifyFallback(NMHDR* h, LRESULT*) { g_log.push_back("fallback" + std::to_string(h->idFrom)); }
    void OnTimer(UINT_PTR id) override { g_log.push_back("timer" + std::to_string(id)); }
    const char* name = "w";
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Recorder, CWnd)
    ON_MESSAGE(WM_USER, OnUser)
    ON_REGISTERED_MESSAGE(g_regMsg, OnReg)
    ON_COMMAND(100, OnOne)
    ON_COMMAND_RANGE(200, 210, OnRange)
    ON_UPDATE_COMMAND_UI(100, OnUpdate)
    ON_BN_CLICKED(7, OnClicked)
    ON_NOTIFY(NM_CLICK, 3, OnNotifyClick)
    ON_NOTIFY_EX(NM_RCLICK, 4, OnNotifyEx)
    ON_NOTIFY_EX(NM_RCLICK, 5, OnNotifyEx)
    ON_NOTIFY(NM_RCLICK, 5, OnNotifyFallback)
    ON_WM_TIMER()
END_MESSAGE_MAP()

// A derived class: its map comes first, then the base map.
class Derived : public Recorder {
public:
    void OnOneHere() { g_log.push_back("derived100"); }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Derived, Recorder)
    ON_COMMAND(100, OnOneHere)
END_MESSAGE_MAP()

// A control that handles its own notifications when the parent reflects them.
class Reflecting : public CWnd {
public:
    void OnDrop() { g_log.push_back("reflected-dropdown"); }
    void OnClick(NMHDR*, LRESULT* r) { g_log.push_back("reflected-click"); *r = 9; }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Reflecting, CWnd)
    ON_CONTROL_REFLECT(CBN_DROPDOWN, OnDrop)
    ON_NOTIFY_REFLECT(NM_CLICK, OnClick)
END_MESSAGE_MAP()

class Messages : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        g_log.clear();
        ASSERT_TRUE(top.CreateEx(0, nullptr, "top", WS_OVERLAPPED, CRect(0, 0, 200, 150), nullptr, 0));
        ASSERT_TRUE(a.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 50, 50), &top, 1));
        ASSERT_TRUE(b.Create(nullptr, nullptr, WS_VISIBLE, CRect(50, 0, 100, 50), &top, 2));
        a.name = "a";
        b.name = "b";
    }
    CWnd top;
    Recorder a;
    Derived b;
};

TEST_F(Messages, NestedSendsReturnThroughEachLevel) {
    a.forwardTo = b.m_hWnd;
    // a answers b's answer + 1; b answers wp * 10 with wp = 2.
    EXPECT_EQ(::SendMessageA(a.m_hWnd, WM_USER, 1, 0), 21);
    EXPECT_EQ(g_log, (std::vector<std::string>{"a:user1", "b:user2"}));
}

TEST_F(Messages, PostedMessagesRunInOrderOnlyWhenPumped) {
    for (int i = 0; i < 3; ++i) {
        ::PostMessageA(a.m_hWnd, WM_USER, i, 0);
        ::PostMessageA(b.m_hWnd, WM_USER, 10 + i, 0);
    }
    EXPECT_TRUE(g_log.empty());
    Pump();
    EXPECT_EQ(g_log, (std::vector<std::string>{"a:user0", "b:user10", "a:user1", "b:user11", "a:user2", "b:user12"}));
}

TEST_F(Messages, DestroyedHandleStaysInvalid) {
    HWND h = a.m_hWnd;
    ::PostMessageA(h, WM_USER, 5, 0);
    a.DestroyWindow();
    EXPECT_FALSE(::IsWindow(h));
    EXPECT_EQ(::SendMessageA(h, WM_USER, 1, 0), 0);
    EXPECT_FALSE(::PostMessageA(h, WM_USER, 1, 0));
    Pump();  // the message posted before the end is dropped
    EXPECT_TRUE(g_log.empty());
}

TEST_F(Messages, RegisteredMessageMatchesTheVariableAtDispatch) {
    EXPECT_EQ(a.SendMessage(0xC123, 4, 0), 0);  // not registered yet: no handler
    g_regMsg = 0xC123;
    EXPECT_EQ(a.SendMessage(0xC123, 4, 0), 77);
    g_regMsg = 0;
    EXPECT_EQ(g_log, (std::vector<std::string>{"reg4"}));
}

struct CommandCase {
    WPARAM wp;
    bool toDerived;
    const char* expect;  // null: not handled
};

TEST_F(Messages, CommandsRouteByIdRangeAndClass) {
    const CommandCase cases[] = {
        {MAKEWPARAM(100, 0), false, "cmd100"},
        {MAKEWPARAM(100, 0), true, "derived100"},  // the derived map wins
        {MAKEWPARAM(200, 0), false, "range200"},
        {MAKEWPARAM(210, 0), true, "range210"},    // base map reached through the chain
        {MAKEWPARAM(211, 0), false, nullptr},
        {MAKEWPARAM(199, 0), false, nullptr},
        {MAKEWPARAM(7, BN_CLICKED), false, "clicked7"},
        {MAKEWPARAM(7, BN_DOUBLECLICKED), false, nullptr},
    };
    for (const auto& c : cases) {
        g_log.clear();
        CWnd& target = c.toDerived ? static_cast<CWnd&>(b) : static_cast<CWnd&>(a);
        // lParam is a colour here, as some library commands carry one: it must not matter.
        target.SendMessage(WM_COMMAND, c.wp, RGB(10, 20, 30));
        if (c.expect) EXPECT_EQ(g_log, std::vector<std::string>{c.expect}) << c.wp;
        else EXPECT_TRUE(g_log.empty()) << c.wp;
    }
}

TEST_F(Messages, UpdateCommandUiAsksTheMap) {
    CCmdUI ui;
    ui.m_nID = 100;
    ui.m_pOther = &top;
    EXPECT_TRUE(ui.DoUpdate(&a, TRUE));
    EXPECT_EQ(g_log, std::vector<std::string>{"update100"});
    EXPECT_FALSE(top.IsWindowEnabled());
    // No state handler but a command handler: the item stays enabled.
    top.EnableWindow(TRUE);
    ui.m_nID = 205;
    EXPECT_FALSE(ui.DoUpdate(&a, TRUE));
    EXPECT_TRUE(top.IsWindowEnabled());
    ui.m_nID = 300;  // nothing handles it: disabled
    ui.DoUpdate(&a, TRUE);
    EXPECT_FALSE(top.IsWindowEnabled());
}

struct NotifyCase {
    UINT code;
    UINT id;
    LRESULT result;
    std::vector<std::string> log;
};

TEST_F(Messages, NotificationsWithExHandlersThatDecline) {
    const NotifyCase cases[] = {
        {NM_CLICK, 3, -5, {"notify3"}},
        {NM_RCLICK, 4, 0, {"ex4"}},
        {NM_RCLICK, 5, 0, {"ex5", "fallback5"}},  // the _EX handler declines: the next entry runs
        {NM_DBLCLK, 3, 0, {}},
    };
    for (const auto& c : cases) {
        g_log.clear();
        NMHDR hdr{nullptr, c.id, c.code};
        EXPECT_EQ(a.SendMessage(WM_NOTIFY, c.id, reinterpret_cast<LPARAM>(&hdr)), c.result);
        EXPECT_EQ(g_log, c.log) << c.id;
    }
}

TEST_F(Messages, ParentReflectsNotificationsToTheChildControl) {
    Reflecting ctl;
    ASSERT_TRUE(ctl.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 10, 10), &a, 7));
    // The child takes the reflected forms first; the parent's own BN handler is not reached.
    a.SendMessage(WM_COMMAND, MAKEWPARAM(7, CBN_DROPDOWN), reinterpret_cast<LPARAM>(ctl.m_hWnd));
    NMHDR hdr{ctl.m_hWnd, 7, NM_CLICK};
    EXPECT_EQ(a.SendMessage(WM_NOTIFY, 7, reinterpret_cast<LPARAM>(&hdr)), 9);
    a.SendMessage(WM_COMMAND, MAKEWPARAM(7, BN_CLICKED), reinterpret_cast<LPARAM>(ctl.m_hWnd));
    EXPECT_EQ(g_log, (std::vector<std::string>{"reflected-dropdown", "reflected-click", "clicked7"}));
}

TEST_F(Messages, UnhandledMessageAnswersZero) {
    EXPECT_EQ(a.SendMessage(WM_USER + 50, 1, 2), 0);
    EXPECT_EQ(::SendMessageA(nullptr, WM_USER, 1, 2), 0);
}

// A window of the main thread, sent to from a worker: the worker waits while the main
// thread pumps and then gets the handler's result.
UINT SendFromWorker(LPVOID p) {
    auto* args = static_cast<std::pair<HWND, LRESULT>*>(p);
    args->second = ::SendMessageA(args->first, WM_USER, 3, 0);
    return 0;
}

TEST_F(Messages, SendFromAnotherThreadRunsOnTheWindowsThread) {
    std::pair<HWND, LRESULT> args{a.m_hWnd, -1};
    CWinThread* t = AfxBeginThread(SendFromWorker, &args, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(t, nullptr);
    t->m_bAutoDelete = FALSE;
    t->ResumeThread();
    while (!t->Join(1)) Pump();
    EXPECT_EQ(args.second, 30);
    EXPECT_EQ(g_log, std::vector<std::string>{"a:user3"});
    delete t;
}

// A worker's queue: it waits in GetMessageA, sees thread messages in order, and ends at
// WM_QUIT with its code.
struct WorkerLog {
    std::vector<UINT> seen;
    int quitCode = -1;
};
UINT WorkerLoop(LPVOID p) {
    auto* log = static_cast<WorkerLog*>(p);
    MSG m;
    BOOL r;
    while ((r = ::GetMessageA(&m, nullptr, 0, 0)) > 0) {
        log->seen.push_back(m.message);
        if (m.message == WM_USER + 2) ::PostQuitMessage(42);
    }
    log->quitCode = static_cast<int>(m.wParam);
    return 0;
}

TEST(WorkerThread, ThreadMessagesAndCleanQuit) {
    WorkerLog log;
    CWinThread* t = AfxBeginThread(WorkerLoop, &log, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(t, nullptr);
    t->m_bAutoDelete = FALSE;
    EXPECT_TRUE(::PostThreadMessageA(t->m_nThreadID, WM_USER, 0, 0));  // queued before it runs
    t->ResumeThread();
    EXPECT_TRUE(t->PostThreadMessage(WM_USER + 1, 0, 0));
    EXPECT_TRUE(t->PostThreadMessage(WM_USER + 2, 0, 0));
    ASSERT_TRUE(t->Join(5000));
    EXPECT_EQ(log.seen, (std::vector<UINT>{WM_USER, WM_USER + 1, WM_USER + 2}));
    EXPECT_EQ(log.quitCode, 42);
    EXPECT_FALSE(::PostThreadMessageA(0x7FFFFFF, WM_USER, 0, 0));
    delete t;
}

TEST_F(Messages, TimersFireInDueOrderOnTheTestClock) {
    a.SetTimer(2762045, 1000, nullptr);  // a large id, as the view uses
    a.SetTimer(1, 300, nullptr);
    orlex::test::AdvanceClock(299);
    EXPECT_TRUE(g_log.empty());
    orlex::test::AdvanceClock(1001);  // t = 1300
    EXPECT_EQ(g_log, (std::vector<std::string>{"timer1", "timer1", "timer1", "timer2762045", "timer1"}));
    g_log.clear();
    a.KillTimer(1);
    orlex::test::AdvanceClock(1000);
    EXPECT_EQ(g_log, std::vector<std::string>{"timer2762045"});
    EXPECT_EQ(::GetTickCount(), static_cast<DWORD>(orlex::test::Now()));
}

std::vector<UINT_PTR> g_procTimers;
void CALLBACK TimerProc(HWND, UINT msg, UINT_PTR id, DWORD) {
    if (msg == WM_TIMER) g_procTimers.push_back(id);
}

TEST_F(Messages, TimerProcedureInsteadOfMessage) {
    g_procTimers.clear();
    ::SetTimer(a.m_hWnd, 9, 25, TimerProc);
    orlex::test::AdvanceClock(50);
    EXPECT_EQ(g_procTimers, (std::vector<UINT_PTR>{9, 9}));
    EXPECT_TRUE(g_log.empty());  // the procedure, not the window, got them
    ::KillTimer(a.m_hWnd, 9);
}

}  // namespace

namespace {

// PreTranslateMessage runs from the message's window up through its ancestors; a parent
// can take a key before the child sees it (Return and Escape in an edit box).
class KeyEater : public CWnd {
public:
    BOOL PreTranslateMessage(MSG* m) override {
        if (m->message == WM_KEYDOWN && m->wParam == VK_RETURN) {
            g_log.push_back("eaten");
            return TRUE;
        }
        return FALSE;
    }
};
class KeyChild : public CWnd {
public:
    void OnKeyDown(UINT vk, UINT, UINT) override { g_log.push_back("key" + std::to_string(vk)); }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(KeyChild, CWnd)
    ON_WM_KEYDOWN()
END_MESSAGE_MAP()

TEST(PreTranslate, AncestorsSeeMessagesFirst) {
    orlex::test::Init();
    g_log.clear();
    KeyEater top;
    KeyChild edit;
    ASSERT_TRUE(top.CreateEx(0, nullptr, "t", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0));
    ASSERT_TRUE(edit.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 50, 20), &top, 1));
    edit.SetFocus();
    orlex::test::Key(VK_RETURN);
    orlex::test::Key(VK_TAB);
    EXPECT_EQ(g_log, (std::vector<std::string>{"eaten", "key9"}));
}

// Default() inside a handler runs the default handling with the message's own parameters:
// here the class pointer of the default child class is set.
class Deferring : public CWnd {
public:
    BOOL OnSetCursor(CWnd* w, UINT hit, UINT msg) override {
        DWORD pos = ::GetMessagePos();  // the point of the mouse event being handled
        g_log.push_back("setcursor " + std::to_string(hit) + " " + std::to_string(msg) + " at " +
                        std::to_string(GET_X_LPARAM(pos)) + "," + std::to_string(GET_Y_LPARAM(pos)));
        return CWnd::OnSetCursor(w, hit, msg);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Deferring, CWnd)
    ON_WM_SETCURSOR()
END_MESSAGE_MAP()

TEST(DefaultHandling, DefaultUsesTheCurrentMessage) {
    orlex::test::Init();
    g_log.clear();
    CWnd top;
    Deferring w;
    ASSERT_TRUE(top.CreateEx(0, nullptr, "t", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0));
    ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 50, 20), &top, 1));
    ::SetCursor(nullptr);
    orlex::test::MouseMove(w.m_hWnd, POINT{2, 2});
    orlex::test::MouseMove(w.m_hWnd, POINT{7, 3});
    EXPECT_EQ(g_log, (std::vector<std::string>{"setcursor 1 512 at 2,2", "setcursor 1 512 at 7,3"}));
    EXPECT_EQ(::GetCursor(), ::LoadCursorA(nullptr, IDC_ARROW));
}

// A window that asks for its pointer itself (WM_SETCURSOR with 0, 0: no hit code) and
// leaves the answer to the default gets the arrow.
TEST(DefaultHandling, APointerRequestWithoutHitCodeGetsTheArrow) {
    orlex::test::Init();
    CWnd top, w;
    ASSERT_TRUE(top.CreateEx(0, nullptr, "t", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0));
    ASSERT_TRUE(w.Create(nullptr, nullptr, WS_VISIBLE, CRect(0, 0, 50, 20), &top, 1));
    ::SetCursor(::LoadCursorA(nullptr, IDC_CROSS));
    w.SendMessage(WM_SETCURSOR, 0, 0);
    EXPECT_EQ(::GetCursor(), ::LoadCursorA(nullptr, IDC_ARROW));
}

// Two threads sending to each other's windows: each waits for its answer while still
// running what the other sends it, so neither blocks the other for ever.
struct PingPong {
    HWND mainWnd = nullptr;
    std::atomic<HWND> workerWnd{nullptr};
    std::atomic<bool> go{false};
    LRESULT result = 0;
    std::atomic<bool> ready{false};
};
class Echo : public CWnd {
public:
    HWND callBack = nullptr;
    LRESULT OnAsk(WPARAM wp, LPARAM) {
        if (callBack && wp < 3) return ::SendMessageA(callBack, WM_USER + 9, wp + 1, 0) + 100;
        return static_cast<LRESULT>(wp);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Echo, CWnd)
    ON_MESSAGE(WM_USER + 9, OnAsk)
END_MESSAGE_MAP()

UINT WorkerWithWindow(LPVOID p) {
    auto* pp = static_cast<PingPong*>(p);
    Echo w;
    w.CreateEx(0, nullptr, "worker", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0);
    w.callBack = pp->mainWnd;
    pp->workerWnd = w.m_hWnd;
    while (!pp->go) std::this_thread::yield();
    pp->result = ::SendMessageA(pp->mainWnd, WM_USER + 9, 0, 0);
    pp->ready = true;
    MSG m;
    while (::GetMessageA(&m, nullptr, 0, 0) > 0) ::DispatchMessageA(&m);
    w.DestroyWindow();
    return 0;
}

TEST(CrossThread, SendsBothWaysDoNotDeadlock) {
    orlex::test::Init();
    Echo mainWnd;
    ASSERT_TRUE(mainWnd.CreateEx(0, nullptr, "main", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0));
    PingPong pp;
    pp.mainWnd = mainWnd.m_hWnd;
    CWinThread* t = AfxBeginThread(WorkerWithWindow, &pp, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(t, nullptr);
    t->m_bAutoDelete = FALSE;
    t->ResumeThread();
    // main asks worker (wp 1), worker asks main (wp 2), main asks worker (wp 3): 3 + 100 + 100 + 100.
    // Real time bounds the waits (the other thread may be slow to start on a busy machine).
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!pp.workerWnd && std::chrono::steady_clock::now() < until) orlex::test::Pump();
    mainWnd.callBack = pp.workerWnd;
    pp.go = true;
    while (!pp.ready && std::chrono::steady_clock::now() < until) orlex::test::Pump();
    EXPECT_EQ(pp.result, 303);
    t->PostThreadMessage(WM_QUIT, 0, 0);
    ASSERT_TRUE(t->Join(5000));
    delete t;
}

}  // namespace

namespace {

// Timers of a worker's window fire on the worker, when the test clock passes their time.
struct WorkerTimer {
    std::atomic<bool> armed{false};
    std::atomic<int> fired{0};
    std::atomic<DWORD> firedOn{0};
};
UINT TimerWorker(LPVOID p) {
    auto* wt = static_cast<WorkerTimer*>(p);
    CWnd w;
    w.CreateEx(0, nullptr, "timer", WS_POPUP, CRect(0, 0, 10, 10), nullptr, 0);
    w.SetTimer(4, 50, nullptr);
    wt->armed = true;
    MSG m;
    while (::GetMessageA(&m, nullptr, 0, 0) > 0) {
        if (m.message == WM_TIMER && m.wParam == 4) {
            wt->firedOn = ::GetCurrentThreadId();
            if (++wt->fired == 1) ::PostQuitMessage(0);
        }
    }
    w.DestroyWindow();
    return 0;
}

TEST(CrossThread, WorkerTimersFollowTheTestClock) {
    orlex::test::Init();
    WorkerTimer wt;
    CWinThread* t = AfxBeginThread(TimerWorker, &wt, 0, 0, CREATE_SUSPENDED);
    ASSERT_NE(t, nullptr);
    t->m_bAutoDelete = FALSE;
    t->ResumeThread();
    auto until = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!wt.armed && std::chrono::steady_clock::now() < until) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(wt.fired, 0);  // real time passing does not move the test clock
    orlex::test::AdvanceClock(60);
    ASSERT_TRUE(t->Join(10000));
    EXPECT_EQ(wt.fired, 1);
    EXPECT_EQ(wt.firedOn, t->m_nThreadID);
    EXPECT_NE(wt.firedOn, ::GetCurrentThreadId());
    delete t;
}

}  // namespace
