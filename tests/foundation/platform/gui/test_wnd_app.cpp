// The application object as the main thread's CWinThread: AfxGetApp()->Run() pumps this
// thread's messages through the application's PreTranslateMessage and OnIdle until WM_QUIT,
// and worker threads made from CWinThread classes run the same loop.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxapp.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

constexpr UINT kSwallowed = WM_USER + 5;
constexpr UINT kDelivered = WM_USER + 6;

// Records what its window receives.
class Target : public CWnd {
public:
    std::vector<UINT> got;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m >= WM_USER) got.push_back(m);
        return CWnd::WindowProc(m, wp, lp);
    }
};

// An application whose first idle time ends the loop, and which keeps one message from its
// window.
class App : public CWinApp {
public:
    App() : CWinApp("apploop") {}
    std::vector<UINT> seen;
    std::vector<LONG> idles;
    int quitWith = 7;
    BOOL PreTranslateMessage(MSG* msg) override {
        if (msg->message >= WM_USER) seen.push_back(msg->message);
        if (msg->message == kSwallowed) return TRUE;
        return CWinApp::PreTranslateMessage(msg);
    }
    bool posted = false;
    BOOL OnIdle(LONG count) override {
        idles.push_back(count);
        if (!posted) {
            // The first idle time brings one more message; the round after it asks for a
            // second idle call, which ends the loop.
            posted = true;
            ::PostMessageA(m_pMainWnd->m_hWnd, kDelivered, 0, 0);
            return TRUE;
        }
        if (count == 0) return TRUE;
        ::PostQuitMessage(quitWith);
        return FALSE;
    }
};

TEST(App, TheApplicationIsTheMainThreadsThreadObject) {
    orlex::test::Init();
    App app;
    EXPECT_EQ(AfxGetApp(), &app);
    EXPECT_EQ(AfxGetThread(), static_cast<CWinThread*>(&app));
    EXPECT_EQ(app.m_nThreadID, ::GetCurrentThreadId());
    EXPECT_FALSE(app.m_bAutoDelete);
}

TEST(App, RunPumpsTheMainThreadUntilQuit) {
    orlex::test::Init();
    App app;
    Target wnd;
    ASSERT_TRUE(wnd.CreateEx(0, nullptr, "main", WS_OVERLAPPED, CRect(0, 0, 50, 50), nullptr, 0));
    app.m_pMainWnd = &wnd;
    ::PostMessageA(wnd.m_hWnd, kSwallowed, 0, 0);
    ::PostMessageA(wnd.m_hWnd, kDelivered, 0, 0);
    EXPECT_EQ(AfxGetApp()->Run(), 7);  // ExitInstance gives the WM_QUIT code
    EXPECT_EQ(app.seen, (std::vector<UINT>{kSwallowed, kDelivered, kDelivered}));
    EXPECT_EQ(wnd.got, (std::vector<UINT>{kDelivered, kDelivered}));
    // Idle counts start again after each message.
    EXPECT_EQ(app.idles, (std::vector<LONG>{0, 0, 1}));
}

// A worker made from a class: InitInstance, then the loop until WM_QUIT, then ExitInstance.
class Worker : public CWinThread {
public:
    std::vector<UINT> seen;
    int exitCode = -1;
    BOOL InitInstance() override { return TRUE; }
    BOOL PreTranslateMessage(MSG* msg) override {
        if (!msg->hwnd && msg->message >= WM_USER) seen.push_back(msg->message);
        return CWinThread::PreTranslateMessage(msg);
    }
    int ExitInstance() override {
        exitCode = CWinThread::ExitInstance();
        return exitCode;
    }
};

TEST(App, AThreadClassRunsTheLoopOnItsOwnThread) {
    orlex::test::Init();
    Worker w;
    w.m_bAutoDelete = FALSE;
    ASSERT_TRUE(w.CreateThread(CREATE_SUSPENDED));
    EXPECT_NE(w.m_nThreadID, ::GetCurrentThreadId());
    EXPECT_TRUE(w.PostThreadMessage(WM_USER + 1, 0, 0));  // queued before it runs
    EXPECT_EQ(w.ResumeThread(), 1u);
    EXPECT_TRUE(w.PostThreadMessage(WM_USER + 2, 0, 0));
    EXPECT_TRUE(w.PostThreadMessage(WM_QUIT, 42, 0));
    ASSERT_TRUE(w.Join(5000));
    EXPECT_EQ(w.seen, (std::vector<UINT>{WM_USER + 1, WM_USER + 2}));
    EXPECT_EQ(w.exitCode, 42);
}

TEST(App, AThreadThatRefusesToStartSkipsTheLoop) {
    orlex::test::Init();
    struct Refuser : CWinThread {
        bool exited = false;
        BOOL InitInstance() override { return FALSE; }
        int ExitInstance() override {
            exited = true;
            return CWinThread::ExitInstance();
        }
    } r;
    r.m_bAutoDelete = FALSE;
    ASSERT_TRUE(r.CreateThread());
    ASSERT_TRUE(r.Join(5000));
    EXPECT_TRUE(r.exited);
}

}  // namespace
