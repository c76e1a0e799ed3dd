// The application object: the host's one CWinApp, its name, and its profile of settings
// that outlive a run (an INI file). Controls reach it through AfxGetApp(), which is null
// when the host made none; they then use their fallbacks and write nothing.
//
// The application is the thread object of the program's main thread (CWinApp derives from
// CWinThread). The threads' message loops belong to the window layer: it hands them to this
// header through orlex::SetThreadLoop when it is linked in, which keeps this part free of
// the toolkit. Without the layer a thread runs its procedure or InitInstance, and Run
// returns at once.
#pragma once

#include <string>
#include <thread>

#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

class CWnd;   // afxwin.h
struct MSG;   // afxwin.h

using AFX_THREADPROC = UINT (*)(LPVOID);

// A thread with a message queue. AfxBeginThread with a procedure runs it on a new thread;
// the object deletes itself when the thread ends if m_bAutoDelete (default TRUE).
class CWinThread : public CCmdTarget {
public:
    CWnd* m_pMainWnd = nullptr;
    HANDLE m_hThread = nullptr;
    DWORD m_nThreadID = 0;
    BOOL m_bAutoDelete = TRUE;

    CWinThread();
    CWinThread(AFX_THREADPROC proc, LPVOID param);
    ~CWinThread() override;
    CWinThread(const CWinThread&) = delete;
    CWinThread& operator=(const CWinThread&) = delete;
    // Starts the thread (InitInstance, then Run, for a thread without procedure).
    BOOL CreateThread(DWORD flags = 0, UINT stackSize = 0);
    virtual BOOL InitInstance() { return FALSE; }
    // The message loop: GetMessage, PreTranslateMessage, TranslateMessage, DispatchMessage
    // until WM_QUIT, calling OnIdle while the queue is empty; returns ExitInstance's code.
    virtual int Run();
    // The thread's end: the WM_QUIT code (0 without the window layer).
    virtual int ExitInstance();
    // Offers a retrieved message to the windows' PreTranslateMessage (the window and its
    // ancestors); TRUE when one took it.
    virtual BOOL PreTranslateMessage(MSG* msg);
    virtual BOOL OnIdle(LONG count) { return FALSE; }
    // Runs one message; FALSE when it was WM_QUIT (or there is no message loop).
    virtual BOOL PumpMessage();
    BOOL PostThreadMessage(UINT message, WPARAM wParam, LPARAM lParam);
    // Lets a thread started with CREATE_SUSPENDED run; returns the previous suspend count.
    DWORD ResumeThread();
    CWnd* GetMainWnd() { return m_pMainWnd; }
    // Waits for the thread to end; TRUE when it ended within the time (ms; -1 waits).
    BOOL Join(DWORD timeoutMs = 0xFFFFFFFF);

private:
    AFX_THREADPROC m_proc = nullptr;
    LPVOID m_param = nullptr;
    struct Impl;
    Impl* m_impl = nullptr;
};

#ifndef CREATE_SUSPENDED
#define CREATE_SUSPENDED 0x00000004
#endif
// Starts a worker thread running proc(param); the object is deleted when the thread ends
// if m_bAutoDelete is still set then. To keep the object (and Join it), start the thread
// with CREATE_SUSPENDED, clear m_bAutoDelete, then ResumeThread. Null on failure.
CWinThread* AfxBeginThread(AFX_THREADPROC proc, LPVOID param, int priority = 0, UINT stackSize = 0,
                           DWORD flags = 0, void* security = nullptr);
// The thread object of the calling thread: the application on the thread that made it, the
// object of a thread started here, else one made on first use that lives with the thread.
CWinThread* AfxGetThread();
// One message of the calling thread's loop; FALSE at WM_QUIT.
BOOL AfxPumpMessage();

namespace orlex {
// The message loop of the window layer, as the threads above use it. Each function works
// on the calling thread.
struct ThreadLoop {
    DWORD (*enterThread)();  // gives the thread its queue (so no post is lost) and its id
    BOOL (*pumpMessage)(CWinThread* thread);  // one message through thread->PreTranslateMessage
    BOOL (*queueEmpty)();    // nothing waits to be handled (time to idle)
    BOOL (*preTranslate)(MSG* msg);
    BOOL (*postThreadMessage)(DWORD threadId, UINT message, WPARAM wp, LPARAM lp);
    int (*quitCode)();       // the code of the last WM_QUIT
};
// Installs the loop (the layer does, once, before any window exists); the record must
// outlive every thread. Null removes it.
void SetThreadLoop(const ThreadLoop* loop);
const ThreadLoop* GetThreadLoop();
}  // namespace orlex

// The application object: the main thread's CWinThread with the application's name and
// profile. AfxGetApp()->Run() runs the main thread's message loop.
class CWinApp : public CWinThread {
public:
    // appName: the application's name; null takes the executable's file name without its
    // extension. The object registers itself as the process's application, and as the
    // thread object of the thread that makes it.
    explicit CWinApp(LPCSTR appName = nullptr);
    ~CWinApp() override;
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    // The host's start-up and end; the defaults: TRUE, and the WM_QUIT code (0 when the
    // loop never ran).
    BOOL InitInstance() override;
    int ExitInstance() override;

    // Profile values, in the INI file named by m_pszProfileName. A missing value gives the
    // default; a write goes to the file at once and is FALSE when it can't be written.
    UINT GetProfileInt(LPCSTR section, LPCSTR entry, int defaultValue);
    BOOL WriteProfileInt(LPCSTR section, LPCSTR entry, int value);
    CString GetProfileString(LPCSTR section, LPCSTR entry, LPCSTR defaultValue = nullptr);
    // A null value removes the entry, a null entry the whole section.
    BOOL WriteProfileString(LPCSTR section, LPCSTR entry, LPCSTR value);

    // Puts the profile in this file (the host chooses the place). Null or empty goes back
    // to the default, $XDG_CONFIG_HOME/<app name>.ini or ~/.config/<app name>.ini.
    void SetProfilePath(LPCSTR path);
    // The file in use: m_pszProfileName, made from the default rule at first use when null.
    CString GetProfilePath();

    // The application's name, the profile file and the executable's name. They point into
    // strings the object owns; a host may point them elsewhere (at strings that outlive
    // the object), and the object then uses what they point to.
    LPCSTR m_pszAppName = nullptr;
    LPCSTR m_pszProfileName = nullptr;
    LPCSTR m_pszExeName = nullptr;
    // The running program's module.
    HINSTANCE m_hInstance = nullptr;

private:
    friend CWinThread* AfxGetThread();
    std::thread::id m_appThread;  // the thread that made the object
    std::string m_appName;
    std::string m_profileName;
    std::string m_exeName;
};

// The application object, or null when the host made none (or it is gone).
CWinApp* AfxGetApp();

// What the running module knows of itself: the application object and the program's
// module, through which a control loads resources of the host rather than of the library.
struct AFX_MODULE_STATE {
    // The host's application object, AfxGetApp() (null when the host made none).
    CWinApp* m_pCurrentWinApp = nullptr;
    // The running program's module, GetModuleHandleA(nullptr), and where its resources
    // are looked up.
    HINSTANCE m_hCurrentInstanceHandle = nullptr;
    HINSTANCE m_hCurrentResourceHandle = nullptr;
};

// The state of the running module, brought up to date at each call. The record belongs to
// the calling thread and stays valid for the thread's life.
AFX_MODULE_STATE* AfxGetModuleState();
