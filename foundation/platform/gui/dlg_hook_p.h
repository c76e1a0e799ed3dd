// Private: the window a common dialog with a hook procedure stands on. The dialog itself is
// shown by the modal script's presenter (or answered by a script); the hook still needs a
// dialog window of the layer to work on, as the platform's dialogs give it one.
#pragma once

#include "foundation/platform/afxwin.h"

namespace orlex::detail {

using CommonDialogHook = UINT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

// While it lives, a hidden top-level window (owned by `owner`, captioned `title`, of the
// given size at the owner's top-left corner) whose every message goes to the hook first:
// WM_INITDIALOG with initParam (the caller's dialog structure) is sent when it is made,
// WM_DESTROY when it goes. A null hook makes no window. Not copyable.
class HookedDialogWindow {
public:
    HookedDialogWindow(HWND owner, const char* title, SIZE size, CommonDialogHook hook, LPARAM initParam);
    ~HookedDialogWindow();
    HookedDialogWindow(const HookedDialogWindow&) = delete;
    HookedDialogWindow& operator=(const HookedDialogWindow&) = delete;
    HWND Handle() const { return m_hwnd; }

private:
    HWND m_hwnd = nullptr;
};

}  // namespace orlex::detail
