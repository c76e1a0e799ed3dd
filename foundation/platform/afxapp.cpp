#include "foundation/platform/afxapp.h"

#include <atomic>
#include <cassert>
#include <cstdlib>
#include <string>

#include "foundation/platform/process.h"
#include "foundation/platform/profile.h"

namespace {

std::atomic<CWinApp*> g_app{nullptr};

}  // namespace

CWinApp* AfxGetApp() { return g_app.load(); }

AFX_MODULE_STATE* AfxGetModuleState() {
    thread_local AFX_MODULE_STATE state;
    state.m_pCurrentWinApp = AfxGetApp();
    state.m_hCurrentInstanceHandle = GetModuleHandleA(nullptr);
    state.m_hCurrentResourceHandle = state.m_hCurrentInstanceHandle;
    return &state;
}

CWinApp::CWinApp(LPCSTR appName) {
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
int CWinApp::ExitInstance() { return 0; }

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
