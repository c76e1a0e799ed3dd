// Menus: the handle functions of the platform (CreatePopupMenu, AppendMenu, ...) and the
// CMenu wrapper. Menus live in a process-wide table of handles; a menu of the library's
// resources is loaded by id from its text description. Popup menus are tracked through
// the modal script (kind "PopupMenu"), so headless runs and tests choose the command.
#pragma once

#include <string>

#include "foundation/platform/wintypes.h"

class CWnd;
class CBitmap;

// Item flags ------------------------------------------------------------------------------
constexpr UINT MF_INSERT = 0x0000;
constexpr UINT MF_CHANGE = 0x0080;
constexpr UINT MF_APPEND = 0x0100;
constexpr UINT MF_DELETE = 0x0200;
constexpr UINT MF_REMOVE = 0x1000;
constexpr UINT MF_BYCOMMAND = 0x0000;
constexpr UINT MF_BYPOSITION = 0x0400;
constexpr UINT MF_SEPARATOR = 0x0800;
constexpr UINT MF_ENABLED = 0x0000;
constexpr UINT MF_GRAYED = 0x0001;
constexpr UINT MF_DISABLED = 0x0002;
constexpr UINT MF_UNCHECKED = 0x0000;
constexpr UINT MF_CHECKED = 0x0008;
constexpr UINT MF_USECHECKBITMAPS = 0x0200;
constexpr UINT MF_STRING = 0x0000;
constexpr UINT MF_BITMAP = 0x0004;
constexpr UINT MF_OWNERDRAW = 0x0100;
constexpr UINT MF_POPUP = 0x0010;
constexpr UINT MF_MENUBARBREAK = 0x0020;
constexpr UINT MF_MENUBREAK = 0x0040;
constexpr UINT MF_UNHILITE = 0x0000;
constexpr UINT MF_HILITE = 0x0080;
constexpr UINT MF_DEFAULT = 0x1000;
constexpr UINT MF_RIGHTJUSTIFY = 0x4000;
constexpr UINT MFT_RADIOCHECK = 0x0200;

// TrackPopupMenu flags --------------------------------------------------------------------
constexpr UINT TPM_LEFTBUTTON = 0x0000;
constexpr UINT TPM_RIGHTBUTTON = 0x0002;
constexpr UINT TPM_LEFTALIGN = 0x0000;
constexpr UINT TPM_CENTERALIGN = 0x0004;
constexpr UINT TPM_RIGHTALIGN = 0x0008;
constexpr UINT TPM_TOPALIGN = 0x0000;
constexpr UINT TPM_VCENTERALIGN = 0x0010;
constexpr UINT TPM_BOTTOMALIGN = 0x0020;
constexpr UINT TPM_NONOTIFY = 0x0080;
constexpr UINT TPM_RETURNCMD = 0x0100;

// Resource type of menus, for FindResource.
constexpr UINT ORLEX_RT_MENU = 4;

// Handle functions ------------------------------------------------------------------------
// A new empty menu bar / popup menu; owned by the caller until DestroyMenu or until it is
// appended as a popup of another menu (then the parent destroys it).
HMENU CreateMenu();
HMENU CreatePopupMenu();
// Destroys the menu and every popup it holds. FALSE for an unknown handle.
BOOL DestroyMenu(HMENU menu);
BOOL IsMenu(HMENU menu);
// Loads a menu of the library's resources by id (10000, 10001, 10078, 10079); a menu bar
// whose popups hold the items. Null when there is no such resource or it doesn't parse.
HMENU LoadMenuA(HINSTANCE instance, UINT id);
inline HMENU LoadMenu(HINSTANCE instance, UINT id) { return LoadMenuA(instance, id); }
// Adds an item at the end. With MF_POPUP, id is the HMENU of the popup, which the menu
// then owns. text may be null for separators. FALSE for an unknown menu.
BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR id, const char* text);
// Inserts before the item at `position` (MF_BYPOSITION; -1 or past the end appends) or
// before the item with that command id (MF_BYCOMMAND, searched in popups too).
BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text);
// Replaces the item's kind, id and text; a popup replaced by something else is destroyed.
BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text);
// Removes the item; DeleteMenu also destroys a popup it held, RemoveMenu leaves it alive.
BOOL DeleteMenu(HMENU menu, UINT position, UINT flags);
BOOL RemoveMenu(HMENU menu, UINT position, UINT flags);
// Number of items, -1 for an unknown menu.
int GetMenuItemCount(HMENU menu);
// Command id of the item at the position; 0xFFFFFFFF for a popup or no item, 0 for a
// separator.
UINT GetMenuItemID(HMENU menu, int position);
// The popup at the position, or null.
HMENU GetSubMenu(HMENU menu, int position);
// Copies the item's text (with its '&' marks) into buffer (at most maxCount - 1 chars and
// a terminator) and returns its length; with a null buffer just the length. 0 if no item.
int GetMenuStringA(HMENU menu, UINT item, char* buffer, int maxCount, UINT flags);
// Sets or clears the check mark; returns the former state (MF_CHECKED/MF_UNCHECKED) or
// 0xFFFFFFFF when there is no such item.
DWORD CheckMenuItem(HMENU menu, UINT item, UINT check);
// Checks `check` with a radio mark and unchecks the other items from first to last.
BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags);
// Sets MF_ENABLED, MF_GRAYED or MF_DISABLED; returns the former of these or 0xFFFFFFFF.
BOOL EnableMenuItem(HMENU menu, UINT item, UINT enable);
// The item's flags; for a popup, the number of its items in the high byte of the low word.
// 0xFFFFFFFF when there is no such item.
UINT GetMenuState(HMENU menu, UINT item, UINT flags);
// Shows the popup at screen point (x, y) for owner; modal. With TPM_RETURNCMD returns the
// chosen command (0 when none); otherwise posts WM_COMMAND(command, 0) to the owner and
// returns non-zero when something was chosen. Before showing, the owner gets
// WM_INITMENUPOPUP for the popup and each nested popup, and the owner's command-update
// handlers run for every command item.
BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int reserved, HWND owner, const RECT* rect);

namespace orlex {
// A readable account of a menu, one line per item, two blanks of indent per level:
// "-" for a separator, "text >" for a popup, "text #id" for a command, followed by
// " [checked]", " [radio]", " [grayed]", " [disabled]", " [ownerdraw]", " [default]" as
// they apply. This is the text that a tracked popup menu logs in the modal script.
std::string DescribeMenu(HMENU menu);
// Builds a menu from its text description (the form of resources/menus/*.menu); null
// when the text doesn't parse. `popupOnly` makes the top level a popup menu.
HMENU ParseMenuText(const std::string& text, bool popupOnly = false);
// Number of menus alive in the table (for leak checks in tests).
int LiveMenuCount();
}  // namespace orlex

// CMenu -----------------------------------------------------------------------------------
// Wraps a menu handle. A CMenu made by the caller destroys its menu in its destructor; the
// objects that FromHandle and GetSubMenu return are owned by the layer and stay valid until
// their menu is destroyed.
class CMenu {
public:
    CMenu() = default;
    virtual ~CMenu();
    CMenu(const CMenu&) = delete;
    CMenu& operator=(const CMenu&) = delete;

    HMENU m_hMenu = nullptr;

    // A wrapper of the handle (the attached CMenu if there is one); null for a null handle.
    static CMenu* FromHandle(HMENU menu);
    BOOL Attach(HMENU menu);
    HMENU Detach();
    HMENU GetSafeHmenu() const { return m_hMenu; }
    operator HMENU() const { return m_hMenu; }

    BOOL CreateMenu();
    BOOL CreatePopupMenu();
    BOOL LoadMenu(UINT id);
    BOOL DestroyMenu();

    BOOL AppendMenu(UINT flags, UINT_PTR id = 0, const char* text = nullptr);
    BOOL InsertMenu(UINT position, UINT flags, UINT_PTR id = 0, const char* text = nullptr);
    BOOL ModifyMenu(UINT position, UINT flags, UINT_PTR id = 0, const char* text = nullptr);
    BOOL DeleteMenu(UINT position, UINT flags);
    BOOL RemoveMenu(UINT position, UINT flags);

    CMenu* GetSubMenu(int position) const;
    int GetMenuItemCount() const;
    UINT GetMenuItemID(int position) const;
    int GetMenuString(UINT item, char* buffer, int maxCount, UINT flags) const;
    int GetMenuString(UINT item, std::string& text, UINT flags) const;
    UINT CheckMenuItem(UINT item, UINT check);
    BOOL CheckMenuRadioItem(UINT first, UINT last, UINT check, UINT flags);
    UINT EnableMenuItem(UINT item, UINT enable);
    UINT GetMenuState(UINT item, UINT flags) const;
    // Check-mark bitmaps are not drawn by the layer; the call is accepted and remembered.
    BOOL SetMenuItemBitmaps(UINT position, UINT flags, const CBitmap* unchecked, const CBitmap* checked);

    BOOL TrackPopupMenu(UINT flags, int x, int y, CWnd* owner, const RECT* rect = nullptr);

private:
    bool m_temporary = false;  // a wrapper made by FromHandle
    friend struct MenuWrapperAccess;
};

// The menu bar of a top-level window (not drawn by the layer); null when it has none.
HMENU GetMenu(HWND hwnd);
BOOL SetMenu(HWND hwnd, HMENU menu);
