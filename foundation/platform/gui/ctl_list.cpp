// List boxes and combo boxes (drop-down list and drop-down with an edit), and the list
// that a combo box drops.
#include <algorithm>
#include <cstring>

#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/gui/ctl_list_p.h"

namespace orlex::detail {
namespace {

struct ListState {
    ListModel own;
    ListModel* model = &own;  // a dropped combo list shows its combo's items
    HWND combo = nullptr;     // set for the list of a combo box
    HFONT font = nullptr;
    int itemHeight = 0;       // 0: the font's line height
    int top = 0;
    int hot = -1;             // the item under the pointer in a dropped list
    bool focus = false;
};
StateTable<ListState> g_lists;

struct ComboState {
    ListModel model;
    HFONT font = nullptr;
    HWND edit = nullptr;
    HWND list = nullptr;
    bool dropped = false;
    bool focus = false;
    bool settingEdit = false;  // the combo writes its edit: no CBN_EDIT* for that
    int fieldHeight = 0;       // 0: from the font
    int itemHeight = 0;
    int dropHeight = 100;      // height of the whole control when dropped (template height)
    int droppedWidth = 0;
};
StateTable<ComboState> g_combos;

int ItemHeightOf(ListState& s) { return s.itemHeight > 0 ? s.itemHeight : LineHeight(FontOr(s.font)); }

int VisibleRows(HWND hwnd, ListState& s) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    return std::max(1, static_cast<int>(r.bottom - r.top) / std::max(1, ItemHeightOf(s)));
}

void EnsureVisible(HWND hwnd, ListState& s, int index) {
    if (index < 0) return;
    const int rows = VisibleRows(hwnd, s);
    if (index < s.top) s.top = index;
    if (index >= s.top + rows) s.top = index - rows + 1;
    s.top = std::max(0, std::min(s.top, std::max(0, s.model->Count() - rows)));
}

int IndexAt(HWND hwnd, ListState& s, POINT p) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    if (!::PtInRect(&r, p)) return -1;
    const int i = s.top + p.y / std::max(1, ItemHeightOf(s));
    return i < s.model->Count() ? i : -1;
}

void PaintList(HWND hwnd) {
    ListState& s = g_lists.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    dc->FillSolidRect(&r, ::GetSysColor(COLOR_WINDOW));
    HGDIOBJ oldFont = dc->SelectObject(static_cast<HGDIOBJ>(FontOr(s.font)));
    dc->SetBkMode(TRANSPARENT);
    const int h = ItemHeightOf(s);
    const int mark = s.combo ? s.hot : s.model->Current();
    for (int i = s.top, y = 0; i < s.model->Count() && y < r.bottom; ++i, y += h) {
        RECT row{r.left, y, r.right, y + h};
        const bool selected = i == mark;
        if (selected) dc->FillSolidRect(&row, ::GetSysColor(COLOR_HIGHLIGHT));
        dc->SetTextColor(::GetSysColor(selected ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        RECT tr = row;
        tr.left += 2;
        const std::string& text = s.model->At(i)->text;
        dc->DrawText(text.c_str(), static_cast<int>(text.size()), &tr, DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        if (selected && s.focus && !s.combo) dc->DrawFocusRect(&row);
    }
    dc->SelectObject(oldFont);
    ::EndPaint(hwnd, &ps);
}

void CloseCombo(HWND combo, bool take);

// A new current item chosen by the user in a list box.
void UserSelect(HWND hwnd, ListState& s, int index) {
    if (index < 0 || index >= s.model->Count() || index == s.model->Current()) return;
    s.model->SetCurrent(index);
    EnsureVisible(hwnd, s, index);
    Redraw(hwnd);
    if (StyleOf(hwnd) & LBS_NOTIFY) NotifyParent(hwnd, LBN_SELCHANGE);
}

LRESULT ListCommon(HWND hwnd, ListState& s, UINT msg, WPARAM wp, LPARAM lp, bool& handled) {
    handled = true;
    ListModel& m = *s.model;
    switch (msg) {
    case LB_ADDSTRING: {
        int i = m.Add(lp ? reinterpret_cast<const char*>(lp) : "");
        Redraw(hwnd);
        return i;
    }
    case LB_INSERTSTRING: {
        int i = m.Insert(static_cast<int>(static_cast<INT_PTR>(wp)), lp ? reinterpret_cast<const char*>(lp) : "");
        Redraw(hwnd);
        return i < 0 ? LB_ERR : i;
    }
    case LB_DELETESTRING: {
        int n = m.Remove(static_cast<int>(static_cast<INT_PTR>(wp)));
        Redraw(hwnd);
        return n < 0 ? LB_ERR : n;
    }
    case LB_RESETCONTENT:
        m.Clear();
        s.top = 0;
        Redraw(hwnd);
        return 0;
    case LB_GETCOUNT:
        return m.Count();
    case LB_GETCURSEL:
        return m.Current();
    case LB_SETCURSEL: {
        const int i = static_cast<int>(static_cast<INT_PTR>(wp));
        m.SetCurrent(i);
        EnsureVisible(hwnd, s, m.Current());
        Redraw(hwnd);
        return (i >= 0 && i < m.Count()) ? i : LB_ERR;
    }
    case LB_GETTEXT: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        if (!it) return LB_ERR;
        if (lp) std::memcpy(reinterpret_cast<char*>(lp), it->text.c_str(), it->text.size() + 1);
        return static_cast<LRESULT>(it->text.size());
    }
    case LB_GETTEXTLEN: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        return it ? static_cast<LRESULT>(it->text.size()) : LB_ERR;
    }
    case LB_GETITEMDATA: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        return it ? static_cast<LRESULT>(it->data) : LB_ERR;
    }
    case LB_SETITEMDATA: {
        ListModel::Item* it = m.At(static_cast<int>(wp));
        if (!it) return LB_ERR;
        it->data = static_cast<DWORD_PTR>(lp);
        return 0;
    }
    case LB_FINDSTRING:
    case LB_FINDSTRINGEXACT:
        return m.Find(static_cast<int>(static_cast<INT_PTR>(wp)), lp ? reinterpret_cast<const char*>(lp) : "",
                      msg == LB_FINDSTRINGEXACT);
    case LB_SELECTSTRING: {
        int i = m.Find(static_cast<int>(static_cast<INT_PTR>(wp)), lp ? reinterpret_cast<const char*>(lp) : "", false);
        if (i < 0) return LB_ERR;
        m.SetCurrent(i);
        EnsureVisible(hwnd, s, i);
        Redraw(hwnd);
        return i;
    }
    case LB_GETTOPINDEX:
        return s.top;
    case LB_SETTOPINDEX: {
        const int i = static_cast<int>(wp);
        if (i < 0 || i >= std::max(1, m.Count())) return LB_ERR;
        s.top = i;
        Redraw(hwnd);
        return 0;
    }
    case LB_GETITEMHEIGHT:
        return ItemHeightOf(s);
    default:
        handled = false;
        return 0;
    }
}

}  // namespace

LRESULT ListBoxProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    ListState& s = g_lists.Get(hwnd);
    if (msg == WM_CREATE) s.own.sorted = (StyleOf(hwnd) & LBS_SORT) != 0;
    bool handled = false;
    LRESULT r = ListCommon(hwnd, s, msg, wp, lp, handled);
    if (handled) return r;
    switch (msg) {
    case WM_NCDESTROY:
        g_lists.Erase(hwnd);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    case WM_PAINT:
        PaintList(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        s.font = reinterpret_cast<HFONT>(wp);
        if (lp) Redraw(hwnd);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(s.font);
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS | DLGC_WANTCHARS;
    case WM_SETFOCUS:
        s.focus = true;
        Redraw(hwnd);
        if (!s.combo && (StyleOf(hwnd) & LBS_NOTIFY)) NotifyParent(hwnd, LBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        s.focus = false;
        Redraw(hwnd);
        if (!s.combo && (StyleOf(hwnd) & LBS_NOTIFY)) NotifyParent(hwnd, LBN_KILLFOCUS);
        return 0;
    case WM_MOUSEMOVE:
        if (s.combo) {
            const int i = IndexAt(hwnd, s, PointOf(lp));
            if (i >= 0 && i != s.hot) {
                s.hot = i;
                Redraw(hwnd);
            }
        }
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        const int i = IndexAt(hwnd, s, PointOf(lp));
        if (s.combo) {
            // With the capture, a press outside the dropped list closes it unchanged.
            if (i < 0) {
                RECT r2;
                ::GetClientRect(hwnd, &r2);
                if (!::PtInRect(&r2, PointOf(lp))) CloseCombo(s.combo, false);
            }
            return 0;
        }
        if (::GetFocus() != hwnd) ::SetFocus(hwnd);
        UserSelect(hwnd, s, i);
        if (msg == WM_LBUTTONDBLCLK && i >= 0 && (StyleOf(hwnd) & LBS_NOTIFY)) NotifyParent(hwnd, LBN_DBLCLK);
        return 0;
    }
    case WM_LBUTTONUP:
        if (s.combo) {
            const int i = IndexAt(hwnd, s, PointOf(lp));
            if (i >= 0) {
                s.hot = i;
                CloseCombo(s.combo, true);
            }
        }
        return 0;
    case WM_MOUSEWHEEL: {
        const int steps = -static_cast<short>(HIWORD(wp)) / 120 * 3;
        s.top = std::max(0, std::min(s.top + steps, std::max(0, s.model->Count() - VisibleRows(hwnd, s))));
        Redraw(hwnd);
        return 0;
    }
    case WM_KEYDOWN: {
        if (s.combo) return 0;
        int i = s.model->Current();
        const int rows = VisibleRows(hwnd, s);
        switch (wp) {
        case VK_UP: i = std::max(0, i - 1); break;
        case VK_DOWN: i = std::min(s.model->Count() - 1, i + 1); break;
        case VK_PRIOR: i = std::max(0, i - rows + 1); break;
        case VK_NEXT: i = std::min(s.model->Count() - 1, std::max(0, i) + rows - 1); break;
        case VK_HOME: i = 0; break;
        case VK_END: i = s.model->Count() - 1; break;
        default: return 0;
        }
        UserSelect(hwnd, s, i);
        return 0;
    }
    case WM_CHAR: {
        if (s.combo) return 0;
        const char c[2] = {static_cast<char>(wp), 0};
        UserSelect(hwnd, s, s.model->Find(s.model->Current(), c, false));
        return 0;
    }
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

namespace {

bool HasEdit(HWND hwnd) { return (StyleOf(hwnd) & 3) != CBS_DROPDOWNLIST; }

int FieldHeight(ComboState& s) { return s.fieldHeight > 0 ? s.fieldHeight : LineHeight(FontOr(s.font)) + 6; }

int ButtonWidth(HWND hwnd) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    return std::min(static_cast<int>(r.right - r.left) / 2, ::GetSystemMetrics(SM_CXVSCROLL));
}

// The window text follows the current item; the edit of a drop-down shows it.
void SyncText(HWND hwnd, ComboState& s) {
    const ListModel::Item* it = s.model.At(s.model.Current());
    const char* text = it ? it->text.c_str() : "";
    ::DefWindowProcA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text));
    if (s.edit) {
        s.settingEdit = true;
        ::SetWindowTextA(s.edit, text);
        ::SendMessageA(s.edit, EM_SETSEL, 0, -1);
        s.settingEdit = false;
    }
}

void Layout(HWND hwnd, ComboState& s) {
    RECT wr;
    ::GetWindowRect(hwnd, &wr);
    const int h = FieldHeight(s);
    if (wr.bottom - wr.top != h)
        ::SetWindowPos(hwnd, nullptr, 0, 0, wr.right - wr.left, h, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    if (s.edit) {
        RECT r;
        ::GetClientRect(hwnd, &r);
        ::MoveWindow(s.edit, 3, 3, std::max(0, static_cast<int>(r.right) - ButtonWidth(hwnd) - 4), std::max(0, static_cast<int>(r.bottom) - 6), TRUE);
    }
}

void PaintCombo(HWND hwnd) {
    ComboState& s = g_combos.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    const bool enabled = ::IsWindowEnabled(hwnd);
    dc->FillSolidRect(&r, ::GetSysColor(enabled ? COLOR_WINDOW : COLOR_BTNFACE));
    dc->Draw3dRect(&r, ::GetSysColor(COLOR_BTNSHADOW), ::GetSysColor(COLOR_BTNHIGHLIGHT));
    const int bw = ButtonWidth(hwnd);
    RECT button{r.right - bw - 1, r.top + 1, r.right - 1, r.bottom - 1};
    DrawButtonFace(dc, button, s.dropped);
    DrawArrow(dc, button, 1, ::GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    if (!s.edit) {
        RECT field{r.left + 2, r.top + 2, button.left - 1, r.bottom - 2};
        HGDIOBJ oldFont = dc->SelectObject(static_cast<HGDIOBJ>(FontOr(s.font)));
        dc->SetBkMode(TRANSPARENT);
        const bool mark = s.focus && !s.dropped;
        if (mark) dc->FillSolidRect(&field, ::GetSysColor(COLOR_HIGHLIGHT));
        dc->SetTextColor(::GetSysColor(!enabled ? COLOR_GRAYTEXT : mark ? COLOR_HIGHLIGHTTEXT : COLOR_WINDOWTEXT));
        const ListModel::Item* it = s.model.At(s.model.Current());
        if (it) {
            RECT tr = field;
            tr.left += 2;
            dc->DrawText(it->text.c_str(), static_cast<int>(it->text.size()), &tr,
                         DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX);
        }
        if (mark) dc->DrawFocusRect(&field);
        dc->SelectObject(oldFont);
    }
    ::EndPaint(hwnd, &ps);
}

void OpenCombo(HWND hwnd) {
    ComboState& s = g_combos.Get(hwnd);
    if (s.dropped) return;
    NotifyParent(hwnd, CBN_DROPDOWN);
    if (!::IsWindow(hwnd)) return;
    RECT wr;
    ::GetWindowRect(hwnd, &wr);
    const int itemH = s.itemHeight > 0 ? s.itemHeight : LineHeight(FontOr(s.font));
    const int rows = std::max(1, std::min(s.model.Count(), std::max(1, (s.dropHeight - FieldHeight(s)) / std::max(1, itemH))));
    const int width = std::max(static_cast<int>(wr.right - wr.left), s.droppedWidth);
    if (!s.list) {
        HWND top = ::GetAncestor(hwnd, GA_ROOT);
        s.list = ::CreateWindowExA(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, "ComboLBox", "", WS_POPUP | WS_BORDER, wr.left,
                                   wr.bottom, width, rows * itemH + 2, top, nullptr, nullptr, nullptr);
        if (!s.list) return;
    }
    ListState& ls = g_lists.Get(s.list);
    ls.model = &s.model;
    ls.combo = hwnd;
    ls.font = s.font;
    ls.itemHeight = itemH;
    ls.hot = s.model.Current();
    ls.top = 0;
    ::SetWindowPos(s.list, HWND_TOP, wr.left, wr.bottom, width, rows * itemH + 2, SWP_NOACTIVATE);
    // Sized by the frame: the client area holds `rows` items.
    RECT cr;
    ::GetClientRect(s.list, &cr);
    const int extra = rows * itemH - (cr.bottom - cr.top);
    if (extra != 0) ::SetWindowPos(s.list, nullptr, 0, 0, width, rows * itemH + 2 + extra, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    EnsureVisible(s.list, ls, ls.hot);
    s.dropped = true;
    ::ShowWindow(s.list, SW_SHOWNA);
    ::SetCapture(s.list);
    Redraw(hwnd);
    Redraw(s.list);
}

void CloseCombo(HWND hwnd, bool take) {
    ComboState* sp = g_combos.Find(hwnd);
    if (!sp || !sp->dropped) return;
    ComboState& s = *sp;
    s.dropped = false;
    int chosen = -1;
    if (s.list) {
        chosen = g_lists.Get(s.list).hot;
        if (::GetCapture() == s.list) ::ReleaseCapture();
        ::ShowWindow(s.list, SW_HIDE);
    }
    const int before = s.model.Current();
    if (take && chosen >= 0) {
        s.model.SetCurrent(chosen);
        SyncText(hwnd, s);
    }
    Redraw(hwnd);
    NotifyParent(hwnd, take ? CBN_SELENDOK : CBN_SELENDCANCEL);
    NotifyParent(hwnd, CBN_CLOSEUP);
    if (take && chosen >= 0 && chosen != before) NotifyParent(hwnd, CBN_SELCHANGE);
}

// Keyboard choice while closed: the next or previous item at once.
void StepSelection(HWND hwnd, ComboState& s, int to) {
    to = std::max(0, std::min(to, s.model.Count() - 1));
    if (s.model.Count() == 0 || to == s.model.Current()) return;
    s.model.SetCurrent(to);
    SyncText(hwnd, s);
    Redraw(hwnd);
    NotifyParent(hwnd, CBN_SELCHANGE);
}

}  // namespace

LRESULT ComboProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    ComboState& s = g_combos.Get(hwnd);
    ListModel& m = s.model;
    const char* text = reinterpret_cast<const char*>(lp);
    switch (msg) {
    case WM_CREATE: {
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        // Scroll bar styles belong to the dropped list, not to the combo's own frame.
        if (StyleOf(hwnd) & (WS_VSCROLL | WS_HSCROLL)) {
            ::SetWindowLongPtrA(hwnd, GWL_STYLE, static_cast<LONG_PTR>(StyleOf(hwnd) & ~(WS_VSCROLL | WS_HSCROLL)));
            ::SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
        }
        const auto* cs = reinterpret_cast<const CREATESTRUCTA*>(lp);
        if (cs) s.dropHeight = cs->cy;
        m.sorted = (StyleOf(hwnd) & CBS_SORT) != 0;
        if (HasEdit(hwnd)) {
            const DWORD es = WS_CHILD | WS_VISIBLE | ((StyleOf(hwnd) & CBS_AUTOHSCROLL) ? ES_AUTOHSCROLL : 0);
            s.edit = ::CreateWindowExA(0, "Edit", "", es, 3, 3, 10, 10, hwnd,
                                       reinterpret_cast<HMENU>(static_cast<INT_PTR>(ORLEX_COMBO_EDIT_ID)), nullptr, nullptr);
        }
        Layout(hwnd, s);
        return r;
    }
    case WM_NCDESTROY: {
        HWND list = s.list;
        g_combos.Erase(hwnd);
        if (list) ::DestroyWindow(list);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
    case WM_SIZE:
        Layout(hwnd, s);
        return 0;
    case WM_PAINT:
        PaintCombo(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        s.font = reinterpret_cast<HFONT>(wp);
        if (s.edit) ::SendMessageA(s.edit, WM_SETFONT, wp, lp);
        Layout(hwnd, s);
        if (lp) Redraw(hwnd);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(s.font);
    case WM_ENABLE:
        if (s.edit) ::EnableWindow(s.edit, wp != 0);
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE: {
        LRESULT code = DLGC_WANTARROWS | DLGC_WANTCHARS;
        const MSG* m2 = reinterpret_cast<const MSG*>(lp);
        if (s.dropped && m2 && m2->message == WM_KEYDOWN && (m2->wParam == VK_RETURN || m2->wParam == VK_ESCAPE))
            code |= DLGC_WANTMESSAGE;
        return code;
    }
    case WM_SETTEXT:
        if (s.edit) return ::SendMessageA(s.edit, WM_SETTEXT, 0, lp);
        {
            const int i = m.Find(-1, text ? text : "", true);
            if (i < 0) return CB_ERR;
            m.SetCurrent(i);
            SyncText(hwnd, s);
            Redraw(hwnd);
            return TRUE;
        }
    case WM_SETFOCUS:
        if (s.edit) {
            ::SetFocus(s.edit);
            return 0;
        }
        s.focus = true;
        Redraw(hwnd);
        NotifyParent(hwnd, CBN_SETFOCUS);
        return 0;
    case WM_KILLFOCUS:
        if (reinterpret_cast<HWND>(wp) == s.edit && s.edit) return 0;
        if (s.dropped && reinterpret_cast<HWND>(wp) != s.list) CloseCombo(hwnd, false);
        s.focus = false;
        Redraw(hwnd);
        NotifyParent(hwnd, CBN_KILLFOCUS);
        return 0;
    case WM_COMMAND:
        // From the inner edit.
        if (reinterpret_cast<HWND>(lp) == s.edit && s.edit) {
            switch (HIWORD(wp)) {
            case EN_CHANGE:
                if (!s.settingEdit) {
                    ::DefWindowProcA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(WindowText(s.edit).c_str()));
                    NotifyParent(hwnd, CBN_EDITCHANGE);
                }
                break;
            case EN_UPDATE:
                if (!s.settingEdit) NotifyParent(hwnd, CBN_EDITUPDATE);
                break;
            case EN_SETFOCUS:
                NotifyParent(hwnd, CBN_SETFOCUS);
                break;
            case EN_KILLFOCUS:
                if (s.dropped) CloseCombo(hwnd, false);
                NotifyParent(hwnd, CBN_KILLFOCUS);
                break;
            default:
                break;
            }
        }
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK:
        if (!s.edit && ::GetFocus() != hwnd) ::SetFocus(hwnd);
        if (s.dropped) CloseCombo(hwnd, false);
        else OpenCombo(hwnd);
        return 0;
    case WM_KEYDOWN: {
        const bool alt = ::GetKeyState(VK_MENU) < 0;
        if (wp == VK_F4 || (alt && (wp == VK_DOWN || wp == VK_UP))) {
            if (s.dropped) CloseCombo(hwnd, true);
            else OpenCombo(hwnd);
            return 0;
        }
        if (s.dropped) {
            ListState& ls = g_lists.Get(s.list);
            switch (wp) {
            case VK_UP: ls.hot = std::max(0, ls.hot - 1); break;
            case VK_DOWN: ls.hot = std::min(m.Count() - 1, ls.hot + 1); break;
            case VK_RETURN: CloseCombo(hwnd, true); return 0;
            case VK_ESCAPE: CloseCombo(hwnd, false); return 0;
            default: return 0;
            }
            EnsureVisible(s.list, ls, ls.hot);
            Redraw(s.list);
            return 0;
        }
        switch (wp) {
        case VK_UP: StepSelection(hwnd, s, m.Current() - 1); break;
        case VK_DOWN: StepSelection(hwnd, s, m.Current() + 1); break;
        case VK_HOME: StepSelection(hwnd, s, 0); break;
        case VK_END: StepSelection(hwnd, s, m.Count() - 1); break;
        default: break;
        }
        return 0;
    }
    case WM_CHAR:
        if (!s.edit && wp >= 32) {
            const char c[2] = {static_cast<char>(wp), 0};
            const int i = m.Find(m.Current(), c, false);
            if (i >= 0) StepSelection(hwnd, s, i);
        }
        return 0;
    case CB_ADDSTRING: {
        const int i = m.Add(text ? text : "");
        if (s.dropped) Redraw(s.list);
        return i;
    }
    case CB_INSERTSTRING: {
        const int i = m.Insert(static_cast<int>(static_cast<INT_PTR>(wp)), text ? text : "");
        return i < 0 ? CB_ERR : i;
    }
    case CB_DELETESTRING: {
        const int before = m.Current();
        const int n = m.Remove(static_cast<int>(wp));
        if (n < 0) return CB_ERR;
        if (before != m.Current()) SyncText(hwnd, s);
        Redraw(hwnd);
        return n;
    }
    case CB_RESETCONTENT:
        m.Clear();
        SyncText(hwnd, s);
        Redraw(hwnd);
        return CB_OKAY;
    case CB_GETCOUNT:
        return m.Count();
    case CB_GETCURSEL:
        return m.Current();
    case CB_SETCURSEL: {
        const int i = static_cast<int>(static_cast<INT_PTR>(wp));
        m.SetCurrent(i);
        SyncText(hwnd, s);
        Redraw(hwnd);
        return (i >= 0 && i < m.Count()) ? i : CB_ERR;
    }
    case CB_GETLBTEXT: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        if (!it) return CB_ERR;
        if (lp) std::memcpy(reinterpret_cast<char*>(lp), it->text.c_str(), it->text.size() + 1);
        return static_cast<LRESULT>(it->text.size());
    }
    case CB_GETLBTEXTLEN: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        return it ? static_cast<LRESULT>(it->text.size()) : CB_ERR;
    }
    case CB_GETITEMDATA: {
        const ListModel::Item* it = m.At(static_cast<int>(wp));
        return it ? static_cast<LRESULT>(it->data) : CB_ERR;
    }
    case CB_SETITEMDATA: {
        ListModel::Item* it = m.At(static_cast<int>(wp));
        if (!it) return CB_ERR;
        it->data = static_cast<DWORD_PTR>(lp);
        return CB_OKAY;
    }
    case CB_FINDSTRING:
    case CB_FINDSTRINGEXACT:
        return m.Find(static_cast<int>(static_cast<INT_PTR>(wp)), text ? text : "", msg == CB_FINDSTRINGEXACT);
    case CB_SELECTSTRING: {
        const int i = m.Find(static_cast<int>(static_cast<INT_PTR>(wp)), text ? text : "", false);
        if (i < 0) return CB_ERR;
        m.SetCurrent(i);
        SyncText(hwnd, s);
        Redraw(hwnd);
        return i;
    }
    case CB_SHOWDROPDOWN:
        if (wp) OpenCombo(hwnd);
        else CloseCombo(hwnd, false);
        return TRUE;
    case CB_GETDROPPEDSTATE:
        return s.dropped;
    case CB_GETDROPPEDCONTROLRECT: {
        RECT* r = reinterpret_cast<RECT*>(lp);
        if (!r) return CB_ERR;
        ::GetWindowRect(hwnd, r);
        r->bottom = r->top + s.dropHeight;
        return CB_OKAY;
    }
    case CB_SETITEMHEIGHT: {
        const int h = static_cast<int>(lp);
        if (h <= 0 || h > 255) return CB_ERR;
        if (static_cast<int>(static_cast<INT_PTR>(wp)) == -1) {
            s.fieldHeight = h + 6;
            Layout(hwnd, s);
        } else {
            s.itemHeight = h;
        }
        Redraw(hwnd);
        return CB_OKAY;
    }
    case CB_GETITEMHEIGHT:
        return static_cast<int>(static_cast<INT_PTR>(wp)) == -1 ? FieldHeight(s) - 6
                                                                : (s.itemHeight > 0 ? s.itemHeight : LineHeight(FontOr(s.font)));
    case CB_SETDROPPEDWIDTH:
        s.droppedWidth = static_cast<int>(wp);
        return std::max(s.droppedWidth, [&] { RECT r; ::GetWindowRect(hwnd, &r); return static_cast<int>(r.right - r.left); }());
    case CB_GETDROPPEDWIDTH: {
        RECT r;
        ::GetWindowRect(hwnd, &r);
        return std::max(s.droppedWidth, static_cast<int>(r.right - r.left));
    }
    case CB_SETHORIZONTALEXTENT:
        return 0;
    case CB_LIMITTEXT:
        if (!s.edit) return CB_ERR;
        ::SendMessageA(s.edit, EM_LIMITTEXT, wp, 0);
        return TRUE;
    case CB_GETEDITSEL:
        return s.edit ? ::SendMessageA(s.edit, EM_GETSEL, wp, lp) : CB_ERR;
    case CB_SETEDITSEL:
        if (!s.edit) return CB_ERR;
        ::SendMessageA(s.edit, EM_SETSEL, static_cast<WPARAM>(static_cast<short>(LOWORD(lp))),
                       static_cast<short>(HIWORD(lp)));
        return TRUE;
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL CComboBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("ComboBox", nullptr, style, rect, parent, id);
}
LRESULT CComboBox::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return ComboProc(m_hWnd, m, w, l); }
int CComboBox::GetCount() const { return static_cast<int>(SendMessage(CB_GETCOUNT)); }
int CComboBox::GetCurSel() const { return static_cast<int>(SendMessage(CB_GETCURSEL)); }
int CComboBox::SetCurSel(int select) { return static_cast<int>(SendMessage(CB_SETCURSEL, static_cast<WPARAM>(select))); }
int CComboBox::AddString(LPCSTR text) { return static_cast<int>(SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text))); }
int CComboBox::InsertString(int index, LPCSTR text) {
    return static_cast<int>(SendMessage(CB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}
int CComboBox::DeleteString(UINT index) { return static_cast<int>(SendMessage(CB_DELETESTRING, index)); }
void CComboBox::ResetContent() { SendMessage(CB_RESETCONTENT); }
int CComboBox::GetLBText(int index, LPSTR text) const {
    return static_cast<int>(SendMessage(CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}
void CComboBox::GetLBText(int index, CString& text) const {
    const int n = GetLBTextLen(index);
    if (n < 0) {
        text.Empty();
        return;
    }
    std::string buf(static_cast<size_t>(n) + 1, '\0');
    GetLBText(index, buf.data());
    text = buf.c_str();
}
int CComboBox::GetLBTextLen(int index) const { return static_cast<int>(SendMessage(CB_GETLBTEXTLEN, static_cast<WPARAM>(index))); }
DWORD_PTR CComboBox::GetItemData(int index) const { return static_cast<DWORD_PTR>(SendMessage(CB_GETITEMDATA, static_cast<WPARAM>(index))); }
int CComboBox::SetItemData(int index, DWORD_PTR data) {
    return static_cast<int>(SendMessage(CB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}
int CComboBox::FindString(int startAfter, LPCSTR text) const {
    return static_cast<int>(SendMessage(CB_FINDSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
int CComboBox::FindStringExact(int startAfter, LPCSTR text) const {
    return static_cast<int>(SendMessage(CB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
int CComboBox::SelectString(int startAfter, LPCSTR text) {
    return static_cast<int>(SendMessage(CB_SELECTSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
void CComboBox::ShowDropDown(BOOL show) { SendMessage(CB_SHOWDROPDOWN, show); }
BOOL CComboBox::GetDroppedState() const { return static_cast<BOOL>(SendMessage(CB_GETDROPPEDSTATE)); }
int CComboBox::SetItemHeight(int index, UINT height) {
    return static_cast<int>(SendMessage(CB_SETITEMHEIGHT, static_cast<WPARAM>(index), height));
}
int CComboBox::GetItemHeight(int index) const { return static_cast<int>(SendMessage(CB_GETITEMHEIGHT, static_cast<WPARAM>(index))); }
int CComboBox::SetDroppedWidth(UINT width) { return static_cast<int>(SendMessage(CB_SETDROPPEDWIDTH, width)); }
int CComboBox::GetDroppedWidth() const { return static_cast<int>(SendMessage(CB_GETDROPPEDWIDTH)); }
void CComboBox::SetHorizontalExtent(UINT extent) { SendMessage(CB_SETHORIZONTALEXTENT, extent); }
BOOL CComboBox::LimitText(int max) { return static_cast<BOOL>(SendMessage(CB_LIMITTEXT, static_cast<WPARAM>(max))); }

BOOL CListBox::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("ListBox", nullptr, style, rect, parent, id);
}
LRESULT CListBox::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return ListBoxProc(m_hWnd, m, w, l); }
int CListBox::GetCount() const { return static_cast<int>(SendMessage(LB_GETCOUNT)); }
int CListBox::GetCurSel() const { return static_cast<int>(SendMessage(LB_GETCURSEL)); }
int CListBox::SetCurSel(int select) { return static_cast<int>(SendMessage(LB_SETCURSEL, static_cast<WPARAM>(select))); }
int CListBox::AddString(LPCSTR text) { return static_cast<int>(SendMessage(LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text))); }
int CListBox::InsertString(int index, LPCSTR text) {
    return static_cast<int>(SendMessage(LB_INSERTSTRING, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}
int CListBox::DeleteString(UINT index) { return static_cast<int>(SendMessage(LB_DELETESTRING, index)); }
void CListBox::ResetContent() { SendMessage(LB_RESETCONTENT); }
int CListBox::GetText(int index, LPSTR text) const {
    return static_cast<int>(SendMessage(LB_GETTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(text)));
}
void CListBox::GetText(int index, CString& text) const {
    const int n = GetTextLen(index);
    if (n < 0) {
        text.Empty();
        return;
    }
    std::string buf(static_cast<size_t>(n) + 1, '\0');
    GetText(index, buf.data());
    text = buf.c_str();
}
int CListBox::GetTextLen(int index) const { return static_cast<int>(SendMessage(LB_GETTEXTLEN, static_cast<WPARAM>(index))); }
DWORD_PTR CListBox::GetItemData(int index) const { return static_cast<DWORD_PTR>(SendMessage(LB_GETITEMDATA, static_cast<WPARAM>(index))); }
int CListBox::SetItemData(int index, DWORD_PTR data) {
    return static_cast<int>(SendMessage(LB_SETITEMDATA, static_cast<WPARAM>(index), static_cast<LPARAM>(data)));
}
int CListBox::FindString(int startAfter, LPCSTR text) const {
    return static_cast<int>(SendMessage(LB_FINDSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
int CListBox::FindStringExact(int startAfter, LPCSTR text) const {
    return static_cast<int>(SendMessage(LB_FINDSTRINGEXACT, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
int CListBox::SelectString(int startAfter, LPCSTR text) {
    return static_cast<int>(SendMessage(LB_SELECTSTRING, static_cast<WPARAM>(startAfter), reinterpret_cast<LPARAM>(text)));
}
int CListBox::GetTopIndex() const { return static_cast<int>(SendMessage(LB_GETTOPINDEX)); }
int CListBox::SetTopIndex(int index) { return static_cast<int>(SendMessage(LB_SETTOPINDEX, static_cast<WPARAM>(index))); }
