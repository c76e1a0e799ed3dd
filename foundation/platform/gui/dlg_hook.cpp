// Hooked common dialogs: a dialog window of the layer for the hook procedure to work on.
#include <unordered_map>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/dlg_hook_p.h"

namespace orlex::detail {
namespace {

const char kHookedDialogClass[] = "OrlexCommonDialog";

// The hook of each live hooked dialog window. Modal UI belongs to the windows' thread.
std::unordered_map<HWND, CommonDialogHook>& Hooks() {
    static std::unordered_map<HWND, CommonDialogHook> hooks;
    return hooks;
}

// A hook that answers non-zero has handled the message; otherwise the window's default.
LRESULT CALLBACK HookedDialogProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    auto it = Hooks().find(hwnd);
    if (it != Hooks().end() && it->second) {
        const CommonDialogHook hook = it->second;
        if (msg == WM_NCDESTROY) Hooks().erase(it);
        if (hook(hwnd, msg, wp, lp) && msg != WM_NCDESTROY && msg != WM_INITDIALOG) return 0;
    }
    return ::DefWindowProcA(hwnd, msg, wp, lp);
}

void EnsureClass() {
    static bool done = false;
    if (done) return;
    done = true;
    WNDCLASSA wc{};
    wc.style = CS_DBLCLKS | CS_SAVEBITS;
    wc.lpfnWndProc = HookedDialogProc;
    wc.hCursor = ::LoadCursorA(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    wc.lpszClassName = kHookedDialogClass;
    AfxRegisterClass(&wc);
}

}  // namespace

HookedDialogWindow::HookedDialogWindow(HWND owner, const char* title, SIZE size, CommonDialogHook hook, LPARAM initParam) {
    if (!hook) return;
    EnsureClass();
    RECT at{0, 0, 0, 0};
    if (owner && ::IsWindow(owner)) ::GetWindowRect(owner, &at);
    // The hook is a dialog procedure: it starts with WM_INITDIALOG, not the creation messages.
    m_hwnd = ::CreateWindowExA(WS_EX_DLGMODALFRAME, kHookedDialogClass, title,
                               WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, at.left, at.top, size.cx, size.cy,
                               owner, nullptr, nullptr, nullptr);
    if (!m_hwnd) return;
    Hooks()[m_hwnd] = hook;
    ::SendMessageA(m_hwnd, WM_INITDIALOG, 0, initParam);
}

HookedDialogWindow::~HookedDialogWindow() {
    if (m_hwnd && ::IsWindow(m_hwnd)) ::DestroyWindow(m_hwnd);
    if (m_hwnd) Hooks().erase(m_hwnd);
}

}  // namespace orlex::detail
