// Private to the menu code: the table of menus behind the HMENU handles.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "foundation/platform/afxmenu.h"

namespace orlex::detail {

struct MenuItem {
    UINT flags = 0;       // MF_ kind and state bits (MF_POPUP, MF_SEPARATOR, MF_CHECKED, ...)
    UINT id = 0;          // command id; 0xFFFFFFFF for a popup
    std::string text;
    HMENU popup = nullptr;  // owned: destroyed with the item by DeleteMenu/DestroyMenu
    UINT_PTR data = 0;      // owner-draw item data
};

struct MenuData {
    bool isPopup = true;
    std::vector<MenuItem> items;
};

// The menu behind a handle, or null.
MenuData* LookupMenu(HMENU menu);

// Locates an item by position or command id (searching popups depth first for commands).
// Returns the menu that holds it and its index; false when there is none.
bool LocateItem(HMENU menu, UINT item, UINT flags, HMENU& holder, size_t& index);

// Every command item of the menu and its popups, depth first, with the popups met.
void CollectPopups(HMENU menu, std::vector<HMENU>& out);

// True when `id` is an enabled command item somewhere in the menu tree.
bool IsChoosableCommand(HMENU menu, UINT id);

}  // namespace orlex::detail
