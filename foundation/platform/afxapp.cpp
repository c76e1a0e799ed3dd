#include "foundation/platform/afxapp.h"

#include <atomic>
#include <cassert>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

#include "foundation/platform/process.h"
#include "foundation/platform/profile.h"

namespace {

std::atomic<CWinApp*> g_app{nullptr};
std::atomic<const orlex::ThreadLoop*> g_loop{nullptr};
thread_local CWinThread* t_threadObject = nullptr;  // set for threads started here

DWORD EnterThread() {
    const orlex::ThreadLoop* loop = g_loop.load();
    return loop && loop->enterThread ? loop->enterThread() : 0;
}

}  // namespace

namespace orlex {
void SetThreadLoop(const ThreadLoop* loop) { g_loop.store(loop); }
const ThreadLoop* GetThreadLoop() { return g_loop.load(); }
}  // namespace orlex

// Threads ------------------------------------------------------------------------------------------
struct CWinThread::Impl {
    std::thread thread;
    std::mutex m;
    std::condition_variable cv;
    bool started = false;  // the queue exists and the id is known
    bool resumed = true;
    bool finished = false;
};

CWinThread::CWinThread() : m_impl(new Impl) {}

CWinThread::CWinThread(AFX_THREADPROC proc, LPVOID param) : m_proc(proc), m_param(param), m_impl(new Impl) {}

CWinThread::~CWinThread() {
    if (m_impl->thread.joinable()) {
        if (m_impl->thread.get_id() == std::this_thread::get_id()) m_impl->thread.detach();
        else m_impl->thread.join();
    }
    if (t_threadObject == this) t_threadObject = nullptr;
    delete m_impl;
}

BOOL CWinThread::CreateThread(DWORD flags, UINT) {
    if (m_impl->thread.joinable()) return FALSE;
    m_impl->resumed = (flags & CREATE_SUSPENDED) == 0;
    m_impl->thread = std::thread([this] {
        t_threadObject = this;
        const DWORD id = EnterThread();  // a queue from the start, so posts are never lost
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
        t_threadObject = nullptr;
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
        if (!m_impl->thread.joinable() && !m_impl->started) return TRUE;  // never started
        if (timeoutMs == 0xFFFFFFFF) m_impl->cv.wait(lk, [this] { return m_impl->finished; });
        else if (!m_impl->cv.wait_for(lk, std::chrono::milliseconds(timeoutMs), [this] { return m_impl->finished; }))
            return FALSE;
    }
    if (m_impl->thread.joinable() && m_impl->thread.get_id() != std::this_thread::get_id()) m_impl->thread.join();
    return TRUE;
}

BOOL CWinThread::PreTranslateMessage(MSG* msg) {
    const orlex::ThreadLoop* loop = g_loop.load();
    return loop && loop->preTranslate ? loop->preTranslate(msg) : FALSE;
}

BOOL CWinThread::PumpMessage() {
    const orlex::ThreadLoop* loop = g_loop.load();
    return loop && loop->pumpMessage ? loop->pumpMessage(this) : FALSE;
}

int CWinThread::Run() {
    const orlex::ThreadLoop* loop = g_loop.load();
    LONG idle = 0;
    for (;;) {
        while (loop && loop->queueEmpty && loop->queueEmpty() && OnIdle(idle++)) {
        }
        if (!PumpMessage()) return ExitInstance();
        idle = 0;
    }
}

int CWinThread::ExitInstance() {
    const orlex::ThreadLoop* loop = g_loop.load();
    return loop && loop->quitCode ? loop->quitCode() : 0;
}

BOOL CWinThread::PostThreadMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const orlex::ThreadLoop* loop = g_loop.load();
    return loop && loop->postThreadMessage ? loop->postThreadMessage(m_nThreadID, message, wParam, lParam) : FALSE;
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
    if (t_threadObject) return t_threadObject;
    CWinApp* app = AfxGetApp();
    if (app && app->m_appThread == std::this_thread::get_id()) {
        if (!app->m_nThreadID) app->m_nThreadID = EnterThread();
        return app;
    }
    // Other threads not started here get an object that lives with the thread.
    thread_local CWinThread own;
    if (!own.m_nThreadID) own.m_nThreadID = EnterThread();
    own.m_bAutoDelete = FALSE;
    return &own;
}

BOOL AfxPumpMessage() { return AfxGetThread()->PumpMessage(); }

// The application ------------------------------------------------------------------------------------
CWinApp* AfxGetApp() { return g_app.load(); }

AFX_MODULE_STATE* AfxGetModuleState() {
    thread_local AFX_MODULE_STATE state;
    state.m_pCurrentWinApp = AfxGetApp();
    state.m_hCurrentInstanceHandle = GetModuleHandleA(nullptr);
    state.m_hCurrentResourceHandle = state.m_hCurrentInstanceHandle;
    return &state;
}

CWinApp::CWinApp(LPCSTR appName) {
    // The main thread's object: never deleted by a thread's end. Its thread id comes from
    // the window layer, now or at the first AfxGetThread if the layer starts later.
    m_bAutoDelete = FALSE;
    m_appThread = std::this_thread::get_id();
    m_nThreadID = EnterThread();
    m_hInstance = GetModuleHandleA(nullptr);
    char fname[_MAX_FNAME];
    _splitpath(orlex::ModuleFileName(nullptr).c_str(), nullptr, nullptr, fname, nullptr);
    m_exeName = fname;
    m_pszExeName = m_exeName.c_str();
    m_appName = appName && *appName ? appName : m_exeName;
    m_pszAppName = m_appName.c_str();
    CWinApp* expected = nullptr;
    const bool first = g_app.compare_exchange_strong(expected, this);
    assert(first && "only one application object");
    (void)first;
}

CWinApp::~CWinApp() {
    CWinApp* expected = this;
    g_app.compare_exchange_strong(expected, nullptr);
}

BOOL CWinApp::InitInstance() { return TRUE; }
int CWinApp::ExitInstance() { return CWinThread::ExitInstance(); }

void CWinApp::SetProfilePath(LPCSTR path) {
    m_profileName = path ? path : "";
    m_pszProfileName = m_profileName.empty() ? nullptr : m_profileName.c_str();
}

CString CWinApp::GetProfilePath() {
    if (!m_pszProfileName || !*m_pszProfileName) {
        const char* xdg = std::getenv("XDG_CONFIG_HOME");
        const char* home = std::getenv("HOME");
        std::string dir = xdg && *xdg ? std::string(xdg) : std::string(home && *home ? home : ".") + "/.config";
        const char* name = m_pszAppName && *m_pszAppName ? m_pszAppName : "orlexui";
        m_profileName = dir + "/" + name + ".ini";
        m_pszProfileName = m_profileName.c_str();
    }
    return CString(m_pszProfileName);
}

UINT CWinApp::GetProfileInt(LPCSTR section, LPCSTR entry, int defaultValue) {
    return ::GetPrivateProfileIntA(section, entry, defaultValue, GetProfilePath());
}

BOOL CWinApp::WriteProfileInt(LPCSTR section, LPCSTR entry, int value) {
    return ::WritePrivateProfileStringA(section, entry, std::to_string(value).c_str(), GetProfilePath());
}

CString CWinApp::GetProfileString(LPCSTR section, LPCSTR entry, LPCSTR defaultValue) {
    if (!section || !entry) return CString(defaultValue);
    std::string value;
    if (orlex::ReadProfileValue(GetProfilePath().GetString(), section, entry, value)) return CString(value);
    return CString(defaultValue);
}

BOOL CWinApp::WriteProfileString(LPCSTR section, LPCSTR entry, LPCSTR value) {
    return ::WritePrivateProfileStringA(section, entry, value, GetProfilePath());
}
