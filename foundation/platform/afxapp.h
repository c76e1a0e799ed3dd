// The application object: the host's one CWinApp, its name, and its profile of settings
// that outlive a run (an INI file). Controls reach it through AfxGetApp(), which is null
// when the host made none; they then use their fallbacks and write nothing.
#pragma once

#include <string>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

class CWinApp {
public:
    // appName: the application's name; null takes the executable's file name without its
    // extension. The object registers itself as the process's application.
    explicit CWinApp(LPCSTR appName = nullptr);
    virtual ~CWinApp();
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;

    // The host's start-up and end; the defaults do nothing (TRUE, 0).
    virtual BOOL InitInstance();
    virtual int ExitInstance();

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
