// The message loop that the thread objects (CWinThread, CWinApp: afxapp.h) run: this layer
// gives it to them when it is linked in.
#include <mutex>

#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {

namespace {

DWORD EnterThread() {
    const DWORD id = CurrentThread();
    std::lock_guard<std::mutex> g(Lock());
    QueueOf(id);
    return id;
}

BOOL PumpOne(CWinThread* thread) {
    MSG m;
    if (!::GetMessageA(&m, nullptr, 0, 0)) return FALSE;
    if (!thread || !thread->PreTranslateMessage(&m)) {
        ::TranslateMessage(&m);
        ::DispatchMessageA(&m);
    }
    return TRUE;
}

BOOL QueueEmpty() {
    MSG peek;
    return !::PeekMessageA(&peek, nullptr, 0, 0, PM_NOREMOVE);
}

BOOL PreTranslateHook(MSG* msg) { return orlex::PreTranslate(msg); }

// The wParam of the WM_QUIT that ended the loop, whether PostQuitMessage made it or it was
// posted to the thread.
int QuitCode() {
    std::lock_guard<std::mutex> g(Lock());
    const ThreadQueue* q = QueueOf(CurrentThread());
    return q->last.message == WM_QUIT ? static_cast<int>(q->last.wParam) : q->quitCode;
}

const orlex::ThreadLoop kLoop = {&EnterThread, &PumpOne, &QueueEmpty, &PreTranslateHook, &::PostThreadMessageA, &QuitCode};

// Installed as the library loads (the shared library takes every part whole); the queue
// code also asks for it, so a program linking the archives has it as soon as it has queues.
const bool g_installed = (orlex::SetThreadLoop(&kLoop), true);

}  // namespace

void InstallThreadLoop() {
    (void)g_installed;
    if (orlex::GetThreadLoop() != &kLoop) orlex::SetThreadLoop(&kLoop);
}

}  // namespace orlex::detail
