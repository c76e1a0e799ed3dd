// The menu table behind HMENU handles, the handle functions and the CMenu wrapper, and
// the parser of the text form in which the library keeps its menu resources.
#include <cassert>
#include <cctype>
#include <cstring>
#include <map>
#include <unordered_map>

#include "foundation/platform/gui/menu_model_p.h"
#include "foundation/platform/gui/dlg_restext_p.h"

namespace orlex::detail {
namespace {

struct MenuTable {
    std::unordered_map<HMENU, std::unique_ptr<MenuData>> menus;
    std::unordered_map<HMENU, CMenu*> attached;              // caller-owned wrappers
    std::unordered_map<HMENU, std::unique_ptr<CMenu>> temps;  // wrappers made by FromHandle
    UINT_PTR next = 0x7A0010;
};

MenuTable& Table() {
    static MenuTable t;
    return t;
}

HMENU NewMenu(bool popup) {
    MenuTable& t = Table();
    // Handles step by 4 so they never look like small command ids or null.
    HMENU h = reinterpret_cast<HMENU>(t.next);
    t.next += 4;
    auto data = std::make_unique<MenuData>();
    data->isPopup = popup;
    t.menus.emplace(h, std::move(data));
    return h;
}

void ForgetWrappers(HMENU h) {
    MenuTable& t = Table();
    auto a = t.attached.find(h);
    if (a != t.attached.end()) {
        a->second->m_hMenu = nullptr;
        t.attached.erase(a);
    }
    auto tmp = t.temps.find(h);
    if (tmp != t.temps.end()) {
        tmp->second->m_hMenu = nullptr;
        t.temps.erase(tmp);
    }
}

void DestroyTree(HMENU h) {
    MenuTable& t = Table();
    auto it = t.menus.find(h);
    if (it == t.menus.end()) return;
    std::unique_ptr<MenuData> data = std::move(it->second);
    t.menus.erase(it);
    ForgetWrappers(h);
    for (MenuItem& item : data->items)
        if (item.popup) DestroyTree(item.popup);
}

MenuItem MakeItem(UINT flags, UINT_PTR id, const char* text) {
    MenuItem item;
    item.flags = flags & ~MF_BYPOSITION;  // MF_APPEND and friends share bits with item flags
    if (flags & MF_POPUP) {
        item.popup = reinterpret_cast<HMENU>(id);
        item.id = 0xFFFFFFFFu;
    } else if (flags & MF_SEPARATOR) {
        item.id = 0;
    } else {
        item.id = static_cast<UINT>(id);
    }
    if (flags & MF_OWNERDRAW)
        item.data = reinterpret_cast<UINT_PTR>(text);
    else if (text && !(flags & (MF_SEPARATOR | MF_BITMAP)))
        item.text = text;
    return item;
}

bool ValidPopupArgument(UINT flags, UINT_PTR id) {
    return !(flags & MF_POPUP) || LookupMenu(reinterpret_cast<HMENU>(id)) != nullptr;
}

}  // namespace

MenuData* LookupMenu(HMENU menu) {
    auto it = Table().menus.find(menu);
    return it == Table().menus.end() ? nullptr : it->second.get();
}

bool LocateItem(HMENU menu, UINT item, UINT flags, HMENU& holder, size_t& index) {
    MenuData* data = LookupMenu(menu);
    if (!data) return false;
    if (flags & MF_BYPOSITION) {
        if (item >= data->items.size()) return false;
        holder = menu;
        index = item;
        return true;
    }
    for (size_t i = 0; i < data->items.size(); ++i) {
        const MenuItem& it = data->items[i];
        if (!it.popup && !(it.flags & MF_SEPARATOR) && it.id == item) {
            holder = menu;
            index = i;
            return true;
        }
        if (it.popup && LocateItem(it.popup, item, flags, holder, index)) return true;
    }
    return false;
}

void CollectPopups(HMENU menu, std::vector<HMENU>& out) {
    MenuData* data = LookupMenu(menu);
    if (!data) return;
    out.push_back(menu);
    for (const MenuItem& it : data->items)
        if (it.popup) CollectPopups(it.popup, out);
}

bool IsChoosableCommand(HMENU menu, UINT id) {
    MenuData* data = LookupMenu(menu);
    if (!data || id == 0) return false;
    for (const MenuItem& it : data->items) {
        if (it.flags & (MF_GRAYED | MF_DISABLED)) continue;
        if (it.popup) {
            if (IsChoosableCommand(it.popup, id)) return true;
        } else if (!(it.flags & MF_SEPARATOR) && it.id == id) {
            return true;
        }
    }
    return false;
}

}  // namespace orlex::detail

using orlex::detail::LookupMenu;
using orlex::detail::MenuData;
using orlex::detail::MenuItem;

HMENU CreateMenu() { return orlex::detail::NewMenu(false); }
HMENU CreatePopupMenu() { return orlex::detail::NewMenu(true); }

BOOL DestroyMenu(HMENU menu) {
    if (!LookupMenu(menu)) return FALSE;
    orlex::detail::DestroyTree(menu);
    return TRUE;
}

BOOL IsMenu(HMENU menu) { return LookupMenu(menu) != nullptr; }

BOOL AppendMenuA(HMENU menu, UINT flags, UINT_PTR id, const char* text) {
    MenuData* data = LookupMenu(menu);
    if (!data || !orlex::detail::ValidPopupArgument(flags, id)) return FALSE;
    if (flags & MF_POPUP && reinterpret_cast<HMENU>(id) == menu) return FALSE;
    data->items.push_back(orlex::detail::MakeItem(flags, id, text));
    return TRUE;
}

BOOL InsertMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text) {
    MenuData* data = LookupMenu(menu);
    if (!data || !orlex::detail::ValidPopupArgument(flags, id)) return FALSE;
    if (flags & MF_BYPOSITION) {
        size_t at = position >= data->items.size() ? data->items.size() : position;
        data->items.insert(data->items.begin() + static_cast<std::ptrdiff_t>(at),
                           orlex::detail::MakeItem(flags, id, text));
        return TRUE;
    }
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, position, MF_BYCOMMAND, holder, index)) return FALSE;
    MenuData* target = LookupMenu(holder);
    target->items.insert(target->items.begin() + static_cast<std::ptrdiff_t>(index),
                         orlex::detail::MakeItem(flags, id, text));
    return TRUE;
}

BOOL ModifyMenuA(HMENU menu, UINT position, UINT flags, UINT_PTR id, const char* text) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, position, flags, holder, index)) return FALSE;
    if (!orlex::detail::ValidPopupArgument(flags, id)) return FALSE;
    MenuItem& item = LookupMenu(holder)->items[index];
    HMENU oldPopup = item.popup;
    item = orlex::detail::MakeItem(flags, id, text);
    if (oldPopup && oldPopup != item.popup) orlex::detail::DestroyTree(oldPopup);
    return TRUE;
}

static BOOL TakeOut(HMENU menu, UINT position, UINT flags, bool destroy) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, position, flags, holder, index)) return FALSE;
    MenuData* data = LookupMenu(holder);
    HMENU popup = data->items[index].popup;
    data->items.erase(data->items.begin() + static_cast<std::ptrdiff_t>(index));
    if (destroy && popup) orlex::detail::DestroyTree(popup);
    return TRUE;
}

BOOL DeleteMenu(HMENU menu, UINT position, UINT flags) { return TakeOut(menu, position, flags, true); }
BOOL RemoveMenu(HMENU menu, UINT position, UINT flags) { return TakeOut(menu, position, flags, false); }

int GetMenuItemCount(HMENU menu) {
    MenuData* data = LookupMenu(menu);
    return data ? static_cast<int>(data->items.size()) : -1;
}

UINT GetMenuItemID(HMENU menu, int position) {
    MenuData* data = LookupMenu(menu);
    if (!data || position < 0 || static_cast<size_t>(position) >= data->items.size()) return 0xFFFFFFFFu;
    return data->items[static_cast<size_t>(position)].id;
}

HMENU GetSubMenu(HMENU menu, int position) {
    MenuData* data = LookupMenu(menu);
    if (!data || position < 0 || static_cast<size_t>(position) >= data->items.size()) return nullptr;
    return data->items[static_cast<size_t>(position)].popup;
}

int GetMenuStringA(HMENU menu, UINT item, char* buffer, int maxCount, UINT flags) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (buffer && maxCount > 0) buffer[0] = '\0';
    if (!orlex::detail::LocateItem(menu, item, flags, holder, index)) return 0;
    const std::string& text = LookupMenu(holder)->items[index].text;
    if (!buffer) return static_cast<int>(text.size());
    if (maxCount <= 0) return 0;
    size_t n = std::min(text.size(), static_cast<size_t>(maxCount - 1));
    std::memcpy(buffer, text.data(), n);
    buffer[n] = '\0';
    return static_cast<int>(n);
}

DWORD CheckMenuItem(HMENU menu, UINT item, UINT check) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, item, check, holder, index)) return 0xFFFFFFFFu;
    MenuItem& it = LookupMenu(holder)->items[index];
    DWORD old = it.flags & MF_CHECKED;
    it.flags = (it.flags & ~MF_CHECKED) | (check & MF_CHECKED);
    return old;
}

BOOL CheckMenuRadioItem(HMENU menu, UINT first, UINT last, UINT check, UINT flags) {
    MenuData* data = LookupMenu(menu);
    if (!data) return FALSE;
    bool found = false;
    if (flags & MF_BYPOSITION) {
        if (first > last || last >= data->items.size() || check < first || check > last) return FALSE;
        for (UINT i = first; i <= last; ++i) {
            MenuItem& it = data->items[i];
            it.flags &= ~(MF_CHECKED | MFT_RADIOCHECK);
            if (i == check) it.flags |= MF_CHECKED | MFT_RADIOCHECK, found = true;
        }
        return found;
    }
    // By command: the range is of ids within the one menu that holds `check`.
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, check, MF_BYCOMMAND, holder, index)) return FALSE;
    for (MenuItem& it : LookupMenu(holder)->items) {
        if (it.popup || (it.flags & MF_SEPARATOR) || it.id < first || it.id > last) continue;
        it.flags &= ~(MF_CHECKED | MFT_RADIOCHECK);
        if (it.id == check) it.flags |= MF_CHECKED | MFT_RADIOCHECK, found = true;
    }
    return found;
}

BOOL EnableMenuItem(HMENU menu, UINT item, UINT enable) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, item, enable, holder, index)) return -1;
    MenuItem& it = LookupMenu(holder)->items[index];
    UINT old = it.flags & (MF_GRAYED | MF_DISABLED);
    it.flags = (it.flags & ~(MF_GRAYED | MF_DISABLED)) | (enable & (MF_GRAYED | MF_DISABLED));
    return static_cast<BOOL>(old);
}

UINT GetMenuState(HMENU menu, UINT item, UINT flags) {
    HMENU holder = nullptr;
    size_t index = 0;
    if (!orlex::detail::LocateItem(menu, item, flags, holder, index)) return 0xFFFFFFFFu;
    const MenuItem& it = LookupMenu(holder)->items[index];
    UINT state = it.flags & ~MF_POPUP & 0xFFFF;
    if (it.popup) {
        MenuData* sub = LookupMenu(it.popup);
        UINT count = sub ? static_cast<UINT>(sub->items.size()) : 0;
        state = (count << 8) | (it.flags & 0xFF);
    }
    return state;
}

// Text form of menus ----------------------------------------------------------------------
//   POPUP "&Cursor"            a popup; its items follow up to END
//     MENUITEM "&Delete", 35037
//     MENUITEM "&Wide", 35070, CHECKED, GRAYED
//     MENUITEM SEPARATOR
//   END
// '#' starts a comment. Top-level MENUITEMs are allowed too.

namespace orlex {

static UINT OptionFlag(const std::string& word, bool& ok) {
    static const std::map<std::string, UINT> names = {
        {"CHECKED", MF_CHECKED}, {"GRAYED", MF_GRAYED}, {"INACTIVE", MF_DISABLED},
        {"DISABLED", MF_DISABLED}, {"MENUBREAK", MF_MENUBREAK}, {"MENUBARBREAK", MF_MENUBARBREAK},
        {"HELP", MF_RIGHTJUSTIFY}, {"DEFAULT", MF_DEFAULT}, {"RADIO", MFT_RADIOCHECK}};
    auto it = names.find(word);
    ok = it != names.end();
    return ok ? it->second : 0;
}

static bool ParseItems(detail::TextTokens& tok, HMENU into, int depth) {
    while (true) {
        detail::Token t = tok.Next();
        if (t.kind == detail::Token::End) return depth == 0;
        if (t.kind != detail::Token::Word) return false;
        if (t.text == "END") return depth > 0;
        if (t.text == "POPUP") {
            detail::Token title = tok.Next();
            if (title.kind != detail::Token::String) return false;
            HMENU sub = ::CreatePopupMenu();
            if (!ParseItems(tok, sub, depth + 1)) {
                ::DestroyMenu(sub);
                return false;
            }
            ::AppendMenuA(into, MF_POPUP, reinterpret_cast<UINT_PTR>(sub), title.text.c_str());
        } else if (t.text == "MENUITEM") {
            detail::Token first = tok.Next();
            if (first.kind == detail::Token::Word && first.text == "SEPARATOR") {
                ::AppendMenuA(into, MF_SEPARATOR, 0, nullptr);
                continue;
            }
            detail::Token id = tok.Next();
            if (first.kind != detail::Token::String || id.kind != detail::Token::Number) return false;
            UINT flags = MF_STRING;
            while (tok.Peek().kind == detail::Token::Word && tok.Peek().line == id.line) {
                bool ok = false;
                flags |= OptionFlag(tok.Next().text, ok);
                if (!ok) return false;
            }
            ::AppendMenuA(into, flags, static_cast<UINT_PTR>(id.number), first.text.c_str());
        } else {
            return false;
        }
    }
}

HMENU ParseMenuText(const std::string& text, bool popupOnly) {
    detail::TextTokens tok(text);
    HMENU menu = popupOnly ? ::CreatePopupMenu() : ::CreateMenu();
    if (!ParseItems(tok, menu, 0)) {
        ::DestroyMenu(menu);
        return nullptr;
    }
    return menu;
}

static void Describe(HMENU menu, int depth, std::string& out) {
    const detail::MenuData* data = detail::LookupMenu(menu);
    if (!data) return;
    for (const detail::MenuItem& it : data->items) {
        out.append(static_cast<size_t>(depth) * 2, ' ');
        if (it.flags & MF_SEPARATOR) {
            out += "-";
        } else if (it.popup) {
            out += it.text + " >";
        } else {
            out += it.text + " #" + std::to_string(it.id);
        }
        if (it.flags & MF_CHECKED) out += " [checked]";
        if (it.flags & MFT_RADIOCHECK && !(it.flags & MF_OWNERDRAW)) out += " [radio]";
        if (it.flags & MF_GRAYED) out += " [grayed]";
        else if (it.flags & MF_DISABLED) out += " [disabled]";
        if (it.flags & MF_OWNERDRAW) out += " [ownerdraw]";
        if (it.flags & MF_DEFAULT) out += " [default]";
        out += "\n";
        if (it.popup) Describe(it.popup, depth + 1, out);
    }
}

std::string DescribeMenu(HMENU menu) {
    std::string out;
    Describe(menu, 0, out);
    return out;
}

int LiveMenuCount() { return static_cast<int>(detail::Table().menus.size()); }

}  // namespace orlex

HMENU LoadMenuA(HINSTANCE, UINT id) {
    std::string text;
    if (!orlex::detail::LoadResourceText(ORLEX_RT_MENU, id, text)) return nullptr;
    return orlex::ParseMenuText(text);
}

// CMenu ---------------------------------------------------------------------------------

CMenu::~CMenu() {
    if (m_hMenu && !m_temporary) {
        HMENU h = m_hMenu;
        Detach();
        ::DestroyMenu(h);
    }
}

CMenu* CMenu::FromHandle(HMENU menu) {
    if (!menu) return nullptr;
    auto& t = orlex::detail::Table();
    auto a = t.attached.find(menu);
    if (a != t.attached.end()) return a->second;
    auto& slot = t.temps[menu];
    if (!slot) {
        slot = std::make_unique<CMenu>();
        slot->m_hMenu = menu;
        slot->m_temporary = true;
    }
    return slot.get();
}

BOOL CMenu::Attach(HMENU menu) {
    assert(m_hMenu == nullptr);
    if (!menu) return FALSE;
    m_hMenu = menu;
    orlex::detail::Table().attached[menu] = this;
    return TRUE;
}

HMENU CMenu::Detach() {
    HMENU h = m_hMenu;
    if (h) {
        auto& t = orlex::detail::Table();
        auto a = t.attached.find(h);
        if (a != t.attached.end() && a->second == this) t.attached.erase(a);
    }
    m_hMenu = nullptr;
    return h;
}

BOOL CMenu::CreateMenu() { return Attach(::CreateMenu()); }
BOOL CMenu::CreatePopupMenu() { return Attach(::CreatePopupMenu()); }
BOOL CMenu::LoadMenu(UINT id) { return Attach(::LoadMenuA(nullptr, id)); }

BOOL CMenu::DestroyMenu() {
    if (!m_hMenu) return FALSE;
    HMENU h = m_temporary ? m_hMenu : Detach();
    return ::DestroyMenu(h);  // a temporary wrapper is forgotten by the table as it goes
}

BOOL CMenu::AppendMenu(UINT flags, UINT_PTR id, const char* text) { return ::AppendMenuA(m_hMenu, flags, id, text); }
BOOL CMenu::InsertMenu(UINT position, UINT flags, UINT_PTR id, const char* text) {
    return ::InsertMenuA(m_hMenu, position, flags, id, text);
}
BOOL CMenu::ModifyMenu(UINT position, UINT flags, UINT_PTR id, const char* text) {
    return ::ModifyMenuA(m_hMenu, position, flags, id, text);
}
BOOL CMenu::DeleteMenu(UINT position, UINT flags) { return ::DeleteMenu(m_hMenu, position, flags); }
BOOL CMenu::RemoveMenu(UINT position, UINT flags) { return ::RemoveMenu(m_hMenu, position, flags); }
CMenu* CMenu::GetSubMenu(int position) const { return FromHandle(::GetSubMenu(m_hMenu, position)); }
int CMenu::GetMenuItemCount() const { return ::GetMenuItemCount(m_hMenu); }
UINT CMenu::GetMenuItemID(int position) const { return ::GetMenuItemID(m_hMenu, position); }
int CMenu::GetMenuString(UINT item, char* buffer, int maxCount, UINT flags) const {
    return ::GetMenuStringA(m_hMenu, item, buffer, maxCount, flags);
}
int CMenu::GetMenuString(UINT item, std::string& text, UINT flags) const {
    int n = ::GetMenuStringA(m_hMenu, item, nullptr, 0, flags);
    text.assign(static_cast<size_t>(n), '\0');
    if (n > 0) ::GetMenuStringA(m_hMenu, item, text.data(), n + 1, flags);
    return n;
}
UINT CMenu::CheckMenuItem(UINT item, UINT check) { return ::CheckMenuItem(m_hMenu, item, check); }
BOOL CMenu::CheckMenuRadioItem(UINT first, UINT last, UINT check, UINT flags) {
    return ::CheckMenuRadioItem(m_hMenu, first, last, check, flags);
}
UINT CMenu::EnableMenuItem(UINT item, UINT enable) { return static_cast<UINT>(::EnableMenuItem(m_hMenu, item, enable)); }
UINT CMenu::GetMenuState(UINT item, UINT flags) const { return ::GetMenuState(m_hMenu, item, flags); }
BOOL CMenu::SetMenuItemBitmaps(UINT position, UINT flags, const CBitmap*, const CBitmap*) {
    HMENU holder = nullptr;
    size_t index = 0;
    return orlex::detail::LocateItem(m_hMenu, position, flags, holder, index) ? TRUE : FALSE;
}
