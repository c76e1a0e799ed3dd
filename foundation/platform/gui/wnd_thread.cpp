// Threads with message queues: CWinThread, AfxBeginThread and the message loop.
#include <condition_variable>
#include <mutex>
#include <thread>

#include "foundation/platform/gui/wnd_p.h"

struct CWinThread::Impl {
    std::thread thread;
    std::mutex m;
    std::condition_variable cv;
    bool started = false;  // the queue exists and the id is known
    bool resumed = true;
    bool finished = false;
};

namespace {
thread_local CWinThread* t_threadObject = nullptr;
}

CWinThread::CWinThread() : m_impl(new Impl) {}

CWinThread::CWinThread(AFX_THREADPROC proc, LPVOID param) : m_proc(proc), m_param(param), m_impl(new Impl) {}

CWinThread::~CWinThread() {
    if (m_impl->thread.joinable()) {
        if (m_impl->thread.get_id() == std::this_thread::get_id()) m_impl->thread.detach();
        else m_impl->thread.join();
    }
    delete m_impl;
}

BOOL CWinThread::CreateThread(DWORD flags, UINT) {
    if (m_impl->thread.joinable()) return FALSE;
    m_impl->resumed = (flags & CREATE_SUSPENDED) == 0;
    m_impl->thread = std::thread([this] {
        t_threadObject = this;
        DWORD id = orlex::detail::CurrentThread();
        {
            std::lock_guard<std::mutex> g(orlex::detail::Lock());
            orlex::detail::QueueOf(id);  // a queue from the start, so posts are never lost
        }
        {
            std::unique_lock<std::mutex> lk(m_impl->m);
            m_nThreadID = id;
            m_hThread = reinterpret_cast<HANDLE>(static_cast<std::uintptr_t>(id));
            m_impl->started = true;
            m_impl->cv.notify_all();
            m_impl->cv.wait(lk, [this] { return m_impl->resumed; });
        }
        if (m_proc) {
            m_proc(m_param);
        } else if (InitInstance()) {
            Run();
        } else {
            ExitInstance();
        }
        bool autoDelete;
        {
            std::lock_guard<std::mutex> lk(m_impl->m);
            m_impl->finished = true;
            autoDelete = m_bAutoDelete != FALSE;
            m_impl->cv.notify_all();
        }
        if (autoDelete) delete this;  // the destructor detaches from this running thread
    });
    std::unique_lock<std::mutex> lk(m_impl->m);
    m_impl->cv.wait(lk, [this] { return m_impl->started; });
    return TRUE;
}

DWORD CWinThread::ResumeThread() {
    std::lock_guard<std::mutex> lk(m_impl->m);
    DWORD was = m_impl->resumed ? 0 : 1;
    m_impl->resumed = true;
    m_impl->cv.notify_all();
    return was;
}

BOOL CWinThread::Join(DWORD timeoutMs) {
    {
        std::unique_lock<std::mutex> lk(m_impl->m);
        if (timeoutMs == 0xFFFFFFFF) m_impl->cv.wait(lk, [this] { return m_impl->finished; });
        else if (!m_impl->cv.wait_for(lk, std::chrono::milliseconds(timeoutMs), [this] { return m_impl->finished; }))
            return FALSE;
    }
    if (m_impl->thread.joinable() && m_impl->thread.get_id() != std::this_thread::get_id()) m_impl->thread.join();
    return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* msg) { return orlex::PreTranslate(msg); }

BOOL CWinThread::PumpMessage() {
    MSG m;
    if (!::GetMessageA(&m, nullptr, 0, 0)) return FALSE;
    if (!PreTranslateMessage(&m)) {
        ::TranslateMessage(&m);
        ::DispatchMessageA(&m);
    }
    return TRUE;
}

int CWinThread::Run() {
    LONG idle = 0;
    for (;;) {
        MSG peek;
        while (!::PeekMessageA(&peek, nullptr, 0, 0, PM_NOREMOVE) && OnIdle(idle++)) {
        }
        if (!PumpMessage()) return ExitInstance();
        idle = 0;
    }
}

int CWinThread::ExitInstance() {
    std::lock_guard<std::mutex> g(orlex::detail::Lock());
    return static_cast<int>(orlex::detail::QueueOf(orlex::detail::CurrentThread())->quitCode);
}

BOOL CWinThread::PostThreadMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::PostThreadMessageA(m_nThreadID, message, wParam, lParam);
}

CWinThread* AfxBeginThread(AFX_THREADPROC proc, LPVOID param, int, UINT stackSize, DWORD flags, void*) {
    if (!proc) return nullptr;
    auto* t = new CWinThread(proc, param);
    if (!t->CreateThread(flags, stackSize)) {
        delete t;
        return nullptr;
    }
    return t;
}

CWinThread* AfxGetThread() {
    if (!t_threadObject) {
        // Threads not started by the layer (the main thread) get an object that lives on.
        static thread_local CWinThread own;
        own.m_nThreadID = orlex::detail::CurrentThread();
        own.m_bAutoDelete = FALSE;
        t_threadObject = &own;
    }
    return t_threadObject;
}

BOOL AfxPumpMessage() { return AfxGetThread()->PumpMessage(); }
