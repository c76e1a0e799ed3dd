// Tracking popup menus: the owner's chance to update the items, the modal choice through
// the modal script (or a real menu on a display), and the command that follows.
#include <mutex>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/gui/dlg_modal_p.h"
#include "foundation/platform/gui/menu_model_p.h"
#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {
namespace {

// The state of a menu item asked of the owner's ON_UPDATE_COMMAND_UI handlers.
class MenuCmdUI : public CCmdUI {
public:
    HMENU menu = nullptr;
    void Enable(BOOL on) override {
        ::EnableMenuItem(menu, m_nIndex, MF_BYPOSITION | (on ? MF_ENABLED : (MF_DISABLED | MF_GRAYED)));
        m_bEnableChanged = TRUE;
    }
    void SetCheck(int check) override {
        ::CheckMenuItem(menu, m_nIndex, MF_BYPOSITION | (check ? MF_CHECKED : MF_UNCHECKED));
    }
    void SetRadio(BOOL on) override {
        ::CheckMenuItem(menu, m_nIndex, MF_BYPOSITION | (on ? MF_CHECKED : MF_UNCHECKED));
    }
    void SetText(LPCSTR text) override {
        const UINT state = ::GetMenuState(menu, m_nIndex, MF_BYPOSITION) & (MF_CHECKED | MF_GRAYED | MF_DISABLED);
        ::ModifyMenuA(menu, m_nIndex, MF_BYPOSITION | MF_STRING | state, m_nID, text);
    }
};

void UpdateItems(CWnd* owner, HMENU popup) {
    MenuData* data = LookupMenu(popup);
    if (!data) return;
    const UINT count = static_cast<UINT>(data->items.size());
    for (UINT i = 0; i < count; ++i) {
        // Handlers may change the menu: read the item afresh each time.
        data = LookupMenu(popup);
        if (!data || i >= data->items.size()) return;
        const MenuItem& item = data->items[i];
        if (item.popup || (item.flags & MF_SEPARATOR) || item.id == 0) continue;
        MenuCmdUI ui;
        ui.menu = popup;
        ui.m_nID = item.id;
        ui.m_nIndex = i;
        ui.m_nIndexMax = count;
        ui.m_pMenu = CMenu::FromHandle(popup);
        ui.DoUpdate(owner, FALSE);
    }
}

// The owner-drawn items get measured and drawn by the owner, as when the menu shows; the
// drawing goes to a scratch bitmap (the menu itself is shown by the presenter).
void OwnerDrawItems(HWND owner, HMENU popup) {
    MenuData* data = LookupMenu(popup);
    if (!data) return;
    for (size_t i = 0; i < data->items.size(); ++i) {
        data = LookupMenu(popup);
        if (!data || i >= data->items.size()) return;
        const MenuItem item = data->items[i];
        if (!(item.flags & MF_OWNERDRAW)) continue;
        MEASUREITEMSTRUCT mis{ODT_MENU, 0, item.id, 0, 0, item.data};
        ::SendMessageA(owner, WM_MEASUREITEM, 0, reinterpret_cast<LPARAM>(&mis));
        const int w = static_cast<int>(std::min<UINT>(mis.itemWidth, 2048)), h = static_cast<int>(std::min<UINT>(mis.itemHeight, 512));
        if (w <= 0 || h <= 0) continue;
        CDC mem;
        if (!mem.CreateCompatibleDC(nullptr)) continue;
        CBitmap bmp;
        CDC* screen = CDC::FromHandle(::GetDC(nullptr));
        bmp.CreateCompatibleBitmap(screen, w, h);
        ::ReleaseDC(nullptr, screen->m_hDC);
        CBitmap* old = mem.SelectObject(&bmp);
        DRAWITEMSTRUCT dis{ODT_MENU, 0, item.id, ODA_DRAWENTIRE, (item.flags & MF_GRAYED) ? ODS_GRAYED : 0u,
                           reinterpret_cast<HWND>(popup), mem.m_hDC, RECT{0, 0, w, h}, item.data};
        ::SendMessageA(owner, WM_DRAWITEM, 0, reinterpret_cast<LPARAM>(&dis));
        mem.SelectObject(old);
    }
}

}  // namespace
}  // namespace orlex::detail

using namespace orlex::detail;

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND owner, const RECT*) {
    if (!LookupMenu(menu) || !::IsWindow(owner)) return FALSE;
    InstallModalPresenters();
    ::SendMessageA(owner, WM_ENTERMENULOOP, TRUE, 0);
    CWnd* ownerWnd = CWnd::FromHandle(owner);
    std::vector<HMENU> popups;
    CollectPopups(menu, popups);
    for (size_t k = 0; k < popups.size(); ++k) {
        if (!LookupMenu(popups[k])) continue;
        ::SendMessageA(owner, WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(popups[k]), MAKELPARAM(0, FALSE));
        if (ownerWnd) UpdateItems(ownerWnd, popups[k]);
        OwnerDrawItems(owner, popups[k]);
    }
    orlex::ModalRecord req{"PopupMenu", orlex::DescribeMenu(menu), flags, 0, {}};
    orlex::ModalAnswer answer = orlex::ModalScript::Ask(req, orlex::ModalAnswer{0, {}});
    UINT command = static_cast<UINT>(answer.value);
    // Only what a user could have picked: an enabled command of this menu.
    if (command && !IsChoosableCommand(menu, command)) command = 0;
    ::SendMessageA(owner, WM_EXITMENULOOP, TRUE, 0);
    (void)x;
    (void)y;
    if (flags & TPM_RETURNCMD) return static_cast<BOOL>(command);
    // The platform posts the command: it arrives after the tracking call has returned.
    if (command && !(flags & TPM_NONOTIFY)) ::PostMessageA(owner, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(command), 0), 0);
    return command != 0;
}

BOOL CMenu::TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const RECT* rect) {
    return ::TrackPopupMenu(m_hMenu, flags, x, y, 0, owner ? owner->m_hWnd : nullptr, rect);
}

HMENU GetMenu(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    return w ? w->menu : nullptr;
}

BOOL SetMenu(HWND hwnd, HMENU menu) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w || w->IsChild()) return FALSE;
    w->menu = menu;
    return TRUE;
}

CMenu* CWnd::GetMenu() const { return CMenu::FromHandle(::GetMenu(m_hWnd)); }
BOOL CWnd::SetMenu(CMenu* menu) { return ::SetMenu(m_hWnd, menu ? menu->m_hMenu : nullptr); }
CMenu* CWnd::MenuFromHandle(HMENU h) { return CMenu::FromHandle(h); }
