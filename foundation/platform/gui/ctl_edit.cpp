// The edit control: one line (or several with ES_MULTILINE) of text with a caret, a
// selection, typing, clipboard and one level of undo.
#include <algorithm>
#include <cstring>
#include <vector>

#include "foundation/platform/globalmem.h"
#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/gui/ctl_edit_p.h"

namespace orlex::detail {
namespace {

struct EditState {
    EditModel model;
    HFONT font = nullptr;
    bool focus = false;
    bool selecting = false;  // left button held after a press in the text
    bool modified = false;
    int scrollX = 0;         // pixels of text scrolled out on the left
    int topLine = 0;         // first line shown (several lines)
    bool synced = false;     // model filled from the window text once
};
StateTable<EditState> g_edits;

EditState& State(HWND hwnd) {
    EditState& s = g_edits.Get(hwnd);
    if (!s.synced) {
        s.synced = true;
        s.model.SetText(WindowText(hwnd));
    }
    return s;
}

std::string Shown(HWND hwnd, const std::string& text) {
    return (StyleOf(hwnd) & ES_PASSWORD) ? std::string(text.size(), '*') : text;
}

// Widths of every prefix of the shown text.
std::vector<int> PrefixWidths(HWND hwnd, HFONT font, const std::string& shown) {
    std::vector<int> w(shown.size() + 1, 0);
    for (size_t i = 1; i <= shown.size(); ++i) w[i] = TextWidth(font, shown.substr(0, i));
    return w;
}

constexpr int kMargin = 2;
constexpr int kTopMargin = 1;  // above the first line of an edit of several lines

bool Multi(HWND hwnd) { return (StyleOf(hwnd) & ES_MULTILINE) != 0; }

// The model's measure: widths in the edit's font.
TextWidthFn WidthIn(HFONT font) {
    return [font](const std::string& t) { return TextWidth(font, t); };
}

// How many whole lines the client area shows (at least one).
int VisibleLines(HWND hwnd, HFONT font) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    return std::max(1, (static_cast<int>(r.bottom - r.top) - kTopMargin) / std::max(1, LineHeight(font)));
}

// Several lines without ES_AUTOHSCROLL wrap at the client width (less the margins).
bool Wraps(HWND hwnd) {
    const DWORD style = StyleOf(hwnd);
    return (style & ES_MULTILINE) && !(style & ES_AUTOHSCROLL);
}

// Tells the model how wide its lines may be, before anything asks it about lines.
void SyncWrap(HWND hwnd, EditState& s) {
    if (!Multi(hwnd)) return;
    if (!Wraps(hwnd)) {
        s.model.SetWrap(0, nullptr, 0);
        return;
    }
    RECT r;
    ::GetClientRect(hwnd, &r);
    HFONT font = FontOr(s.font);
    s.model.SetWrap(std::max(1, static_cast<int>(r.right - r.left) - 2 * kMargin), WidthIn(font),
                    static_cast<long long>(reinterpret_cast<INT_PTR>(font)));
}

// The first line shown, kept within the text.
void ClampTopLine(EditState& s) { s.topLine = std::max(0, std::min(s.topLine, s.model.LineCount() - 1)); }

// The x of the text's start in client pixels, given alignment and scrolling.
int TextOrigin(HWND hwnd, EditState& s, int textWidth) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    const int room = r.right - r.left - 2 * kMargin;
    const DWORD style = StyleOf(hwnd);
    int x = kMargin;
    if (textWidth < room) {
        if ((style & 3) == ES_CENTER) x += (room - textWidth) / 2;
        else if ((style & 3) == ES_RIGHT) x += room - textWidth;
        s.scrollX = 0;
    }
    return x - s.scrollX;
}

// The x of a line's start when there are several: aligned while nothing is scrolled
// sideways, else where the common scroll puts it.
int LineOrigin(HWND hwnd, const EditState& s, int lineWidth) {
    if (s.scrollX > 0) return kMargin - s.scrollX;
    RECT r;
    ::GetClientRect(hwnd, &r);
    const int room = r.right - r.left - 2 * kMargin;
    const DWORD align = StyleOf(hwnd) & 3;
    if (lineWidth >= room || align == ES_LEFT) return kMargin;
    return kMargin + (align == ES_CENTER ? (room - lineWidth) / 2 : room - lineWidth);
}

// Scrolls so that the caret is inside the client area: sideways, and with several lines
// up or down to the caret's line.
void KeepCaretVisible(HWND hwnd, EditState& s) {
    HFONT font = FontOr(s.font);
    int caretX;
    if (Multi(hwnd)) {
        const int line = s.model.LineOf(s.model.Caret());
        const int visible = VisibleLines(hwnd, font);
        if (line < s.topLine) s.topLine = line;
        if (line >= s.topLine + visible) s.topLine = line - visible + 1;
        ClampTopLine(s);
        caretX = s.model.XOf(s.model.Caret(), WidthIn(font));
        if (Wraps(hwnd)) {
            s.scrollX = 0;  // wrapped lines never reach past the right edge
            return;
        }
    } else {
        const std::string shown = Shown(hwnd, s.model.Text());
        caretX = TextWidth(font, shown.substr(0, static_cast<size_t>(s.model.Caret())));
    }
    RECT r;
    ::GetClientRect(hwnd, &r);
    const int room = std::max(1, static_cast<int>(r.right - r.left) - 2 * kMargin);
    if (caretX - s.scrollX > room) s.scrollX = caretX - room + room / 4;
    if (caretX - s.scrollX < 0) s.scrollX = std::max(0, caretX - room / 4);
}

// Several lines: each from the first shown down to the bottom, with the part of the
// selection on it highlighted and the caret on its line.
void PaintLines(HWND hwnd, EditState& s, CDC* dc, HFONT font, const RECT& r) {
    const DWORD style = StyleOf(hwnd);
    const bool enabled = ::IsWindowEnabled(hwnd);
    const int h = LineHeight(font);
    const std::string& text = s.model.Text();
    const bool showSel = s.model.HasSelection() && (s.focus || (style & ES_NOHIDESEL));
    const int selA = s.model.SelStart(), selB = s.model.SelEnd();
    const int caretLine = s.model.LineOf(s.model.Caret());
    const COLORREF textColour = ::GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
    const COLORREF selFill = ::GetSysColor(COLOR_HIGHLIGHT), selText = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
    const int count = s.model.LineCount();
    for (int line = s.topLine, y = r.top + kTopMargin; line < count && y < r.bottom; ++line, y += h) {
        const int start = s.model.LineStart(line);
        const int len = s.model.LineLength(line);
        const std::string piece = text.substr(static_cast<size_t>(start), static_cast<size_t>(len));
        std::vector<int> widths = PrefixWidths(hwnd, font, piece);
        const int x0 = LineOrigin(hwnd, s, widths.back());
        dc->SetTextColor(textColour);
        dc->TextOut(x0, y, piece.c_str(), len);
        const int a = std::max(selA, start) - start, b = std::min(selB, start + len) - start;
        if (showSel && a < b) {
            RECT sel{x0 + widths[static_cast<size_t>(a)], y, x0 + widths[static_cast<size_t>(b)], y + h};
            dc->FillSolidRect(&sel, selFill);
            dc->SetTextColor(selText);
            dc->TextOut(sel.left, y, piece.c_str() + a, b - a);
        }
        if (s.focus && line == caretLine)
            dc->FillSolidRect(x0 + widths[static_cast<size_t>(std::min(s.model.Caret() - start, len))], y, 1, h,
                              ::GetSysColor(COLOR_WINDOWTEXT));
    }
}

void Paint(HWND hwnd) {
    EditState& s = State(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    const DWORD style = StyleOf(hwnd);
    const bool enabled = ::IsWindowEnabled(hwnd);
    const bool readOnly = (style & ES_READONLY) != 0;
    dc->FillSolidRect(&r, ::GetSysColor(enabled && !readOnly ? COLOR_WINDOW : COLOR_BTNFACE));
    HFONT font = FontOr(s.font);
    HGDIOBJ oldFont = dc->SelectObject(static_cast<HGDIOBJ>(font));
    dc->SetBkMode(TRANSPARENT);
    if (style & ES_MULTILINE) {
        ClampTopLine(s);
        PaintLines(hwnd, s, dc, font, r);
        dc->SelectObject(oldFont);
        ::EndPaint(hwnd, &ps);
        return;
    }
    const std::string shown = Shown(hwnd, s.model.Text());
    const int h = LineHeight(font);
    const int y = std::max(0, (static_cast<int>(r.bottom - r.top) - h) / 2);
    std::vector<int> widths = PrefixWidths(hwnd, font, shown);
    const int x0 = TextOrigin(hwnd, s, widths.back());
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(::GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    dc->TextOut(x0, y, shown.c_str(), static_cast<int>(shown.size()));
    const bool showSel = s.model.HasSelection() && (s.focus || (style & ES_NOHIDESEL));
    if (showSel) {
        const int a = s.model.SelStart(), b = s.model.SelEnd();
        RECT sel{x0 + widths[static_cast<size_t>(a)], y, x0 + widths[static_cast<size_t>(b)], y + h};
        dc->FillSolidRect(&sel, ::GetSysColor(COLOR_HIGHLIGHT));
        dc->SetTextColor(::GetSysColor(COLOR_HIGHLIGHTTEXT));
        dc->TextOut(sel.left, y, shown.c_str() + a, b - a);
    }
    if (s.focus) {
        const int cx = x0 + widths[static_cast<size_t>(s.model.Caret())];
        dc->FillSolidRect(cx, y, 1, h, ::GetSysColor(COLOR_WINDOWTEXT));
    }
    dc->SelectObject(oldFont);
    ::EndPaint(hwnd, &ps);
}

// After a change the user made: the window text follows, then EN_UPDATE, the new look,
// and EN_CHANGE, in the platform's order.
void Changed(HWND hwnd, EditState& s) {
    s.modified = true;
    ::DefWindowProcA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(s.model.Text().c_str()));
    KeepCaretVisible(hwnd, s);
    NotifyParent(hwnd, EN_UPDATE);
    Redraw(hwnd);
    NotifyParent(hwnd, EN_CHANGE);
}

bool Insert(HWND hwnd, EditState& s, std::string text) {
    const DWORD style = StyleOf(hwnd);
    if (style & ES_UPPERCASE)
        for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (style & ES_LOWERCASE)
        for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    const size_t before = s.model.Text().size() - static_cast<size_t>(s.model.SelEnd() - s.model.SelStart());
    const bool overLimit = before + text.size() > static_cast<size_t>(s.model.Limit());
    if (overLimit) {
        NotifyParent(hwnd, EN_MAXTEXT);
        if (before >= static_cast<size_t>(s.model.Limit())) return false;
    }
    // Several lines that don't scroll up and down take only what fits in the client area.
    const bool capped = Multi(hwnd) && !(style & ES_AUTOVSCROLL);
    const int maxLines = capped ? VisibleLines(hwnd, FontOr(s.font)) : 0;
    switch (s.model.ReplaceSelWithin(text, maxLines)) {
    case EditModel::Fit::Unchanged: return false;
    case EditModel::Fit::TooManyLines:
        ::MessageBeep(0);
        if (!overLimit) NotifyParent(hwnd, EN_MAXTEXT);  // the parent hears it once per refusal
        return false;
    case EditModel::Fit::Replaced: break;
    }
    Changed(hwnd, s);
    return true;
}

std::string ClipboardText(HWND hwnd) {
    std::string text;
    if (!::OpenClipboard(hwnd)) return text;
    HANDLE h = ::GetClipboardData(CF_TEXT);
    if (h) {
        const char* p = static_cast<const char*>(::GlobalLock(h));
        if (p) {
            const size_t n = strnlen(p, ::GlobalSize(h));
            text.assign(p, n);
            ::GlobalUnlock(h);
        }
    }
    ::CloseClipboard();
    return text;
}

void CopySelection(HWND hwnd, EditState& s) {
    if (!s.model.HasSelection() || (StyleOf(hwnd) & ES_PASSWORD)) return;
    const std::string sel = s.model.Text().substr(static_cast<size_t>(s.model.SelStart()),
                                                  static_cast<size_t>(s.model.SelEnd() - s.model.SelStart()));
    HGLOBAL mem = ::GlobalAlloc(GMEM_MOVEABLE, sel.size() + 1);
    if (!mem) return;
    char* p = static_cast<char*>(::GlobalLock(mem));
    if (!p) {
        ::GlobalFree(mem);
        return;
    }
    std::memcpy(p, sel.c_str(), sel.size() + 1);
    ::GlobalUnlock(mem);
    if (::OpenClipboard(hwnd)) {
        ::EmptyClipboard();
        if (!::SetClipboardData(CF_TEXT, mem)) ::GlobalFree(mem);
        ::CloseClipboard();
    } else {
        ::GlobalFree(mem);
    }
}

int CaretFromPoint(HWND hwnd, EditState& s, POINT p) {
    HFONT font = FontOr(s.font);
    const int x = p.x;
    if (Multi(hwnd)) {
        const int h = std::max(1, LineHeight(font));
        const int dy = p.y - kTopMargin;
        const int line = std::max(0, std::min(s.topLine + (dy < 0 ? -1 : dy / h), s.model.LineCount() - 1));
        const int start = s.model.LineStart(line);
        const int len = s.model.LineLength(line);
        const int x0 = LineOrigin(hwnd, s, TextWidth(font, s.model.Text().substr(static_cast<size_t>(start), static_cast<size_t>(len))));
        return s.model.PosAtX(line, x - x0, WidthIn(font));
    }
    const std::string shown = Shown(hwnd, s.model.Text());
    std::vector<int> widths = PrefixWidths(hwnd, font, shown);
    const int x0 = TextOrigin(hwnd, s, widths.back());
    return HitTestOffsets(widths.data(), static_cast<int>(shown.size()), x - x0);
}

bool ShiftDown() { return ::GetKeyState(VK_SHIFT) < 0; }

}  // namespace

LRESULT EditProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    // Only an edit whose text is known has lines to wrap (the state is made at WM_CREATE).
    if (msg != WM_NCDESTROY) {
        EditState* known = g_edits.Find(hwnd);
        if (known && known->synced) SyncWrap(hwnd, *known);
    }
    switch (msg) {
    case WM_NCDESTROY:
        g_edits.Erase(hwnd);
        break;
    case WM_CREATE: {
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        State(hwnd);
        return r;
    }
    case WM_PAINT:
        Paint(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        g_edits.Get(hwnd).font = reinterpret_cast<HFONT>(wp);
        if (lp) Redraw(hwnd);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(g_edits.Get(hwnd).font);
    case WM_SETTEXT: {
        EditState& s = State(hwnd);
        s.model.SetText(lp ? reinterpret_cast<const char*>(lp) : "");
        s.modified = false;
        s.scrollX = 0;
        s.topLine = 0;
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        NotifyParent(hwnd, EN_UPDATE);
        Redraw(hwnd);
        NotifyParent(hwnd, EN_CHANGE);
        return r ? r : TRUE;
    }
    case WM_ENABLE:
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE: {
        LRESULT code = DLGC_HASSETSEL | DLGC_WANTCHARS | DLGC_WANTARROWS;
        const DWORD style = StyleOf(hwnd);
        if (style & ES_MULTILINE) {
            code |= DLGC_WANTALLKEYS;
            // In a dialog, Escape cancels and Return (without ES_WANTRETURN) presses the
            // default button.
            const MSG* m = reinterpret_cast<const MSG*>(lp);
            if (m && m->message == WM_KEYDOWN &&
                (m->wParam == VK_ESCAPE || (m->wParam == VK_RETURN && !(style & ES_WANTRETURN))))
                code &= ~static_cast<LRESULT>(DLGC_WANTALLKEYS);
        }
        return code;
    }
    case WM_SETFOCUS: {
        EditState& s = State(hwnd);
        s.focus = true;
        KeepCaretVisible(hwnd, s);
        Redraw(hwnd);
        NotifyParent(hwnd, EN_SETFOCUS);
        return 0;
    }
    case WM_KILLFOCUS: {
        EditState& s = State(hwnd);
        s.focus = false;
        s.selecting = false;
        Redraw(hwnd);
        NotifyParent(hwnd, EN_KILLFOCUS);
        return 0;
    }
    case WM_LBUTTONDOWN: {
        EditState& s = State(hwnd);
        if (::GetFocus() != hwnd) ::SetFocus(hwnd);
        s.model.PlaceCaret(CaretFromPoint(hwnd, s, PointOf(lp)), (wp & MK_SHIFT) != 0);
        s.selecting = true;
        ::SetCapture(hwnd);
        Redraw(hwnd);
        return 0;
    }
    case WM_MOUSEMOVE: {
        EditState& s = State(hwnd);
        if (!s.selecting) return 0;
        s.model.PlaceCaret(CaretFromPoint(hwnd, s, PointOf(lp)), true);
        KeepCaretVisible(hwnd, s);
        Redraw(hwnd);
        return 0;
    }
    case WM_LBUTTONUP: {
        EditState& s = State(hwnd);
        if (s.selecting) {
            s.selecting = false;
            if (::GetCapture() == hwnd) ::ReleaseCapture();
        }
        return 0;
    }
    case WM_LBUTTONDBLCLK: {
        EditState& s = State(hwnd);
        s.model.SetSel(0, -1);
        Redraw(hwnd);
        return 0;
    }
    case WM_CHAR: {
        EditState& s = State(hwnd);
        const DWORD style = StyleOf(hwnd);
        const unsigned ch = static_cast<unsigned>(wp) & 0xFF;
        switch (ch) {
        case 1:  // Ctrl+A
            s.model.SetSel(0, -1);
            Redraw(hwnd);
            return 0;
        case 3: CopySelection(hwnd, s); return 0;
        case 22: ::SendMessageA(hwnd, WM_PASTE, 0, 0); return 0;
        case 24: ::SendMessageA(hwnd, WM_CUT, 0, 0); return 0;
        case 26: ::SendMessageA(hwnd, EM_UNDO, 0, 0); return 0;
        default: break;
        }
        if (style & ES_READONLY) {
            ::MessageBeep(0);
            return 0;
        }
        if (ch == VK_BACK) {
            if (s.model.Backspace()) Changed(hwnd, s);
            return 0;
        }
        if (ch == VK_RETURN) {
            // ES_WANTRETURN only decides who gets Return in a dialog; what reaches here breaks the line.
            if (style & ES_MULTILINE) Insert(hwnd, s, "\r\n");
            return 0;
        }
        if (ch < 32 && ch != '\t') return 0;
        if (ch == '\t' && !(style & ES_MULTILINE)) return 0;
        if ((style & ES_NUMBER) && !(ch >= '0' && ch <= '9')) {
            ::MessageBeep(0);
            return 0;
        }
        Insert(hwnd, s, std::string(1, static_cast<char>(ch)));
        return 0;
    }
    case WM_KEYDOWN: {
        EditState& s = State(hwnd);
        const bool shift = ShiftDown();
        const bool multi = Multi(hwnd);
        // With several lines Home and End keep to the caret's line unless Ctrl is down.
        const bool wholeText = !multi || ::GetKeyState(VK_CONTROL) < 0;
        const int page = multi ? VisibleLines(hwnd, FontOr(s.font)) : 0;
        if (wp == VK_F4 || (!multi && (wp == VK_UP || wp == VK_DOWN || wp == VK_PRIOR || wp == VK_NEXT))) {
            // The edit of a drop-down combo box lets the combo choose with these keys.
            HWND parent = ::GetParent(hwnd);
            char cls[16] = {};
            if (parent) ::GetClassNameA(parent, cls, sizeof cls);
            if (std::strcmp(cls, "ComboBox") == 0) ::SendMessageA(parent, WM_KEYDOWN, wp, lp);
            return 0;
        }
        switch (wp) {
        case VK_LEFT: s.model.MoveLeft(shift); break;
        case VK_RIGHT: s.model.MoveRight(shift); break;
        case VK_HOME: wholeText ? s.model.Home(shift) : s.model.LineHome(shift); break;
        case VK_END: wholeText ? s.model.End(shift) : s.model.LineEnd(shift); break;
        case VK_UP:
        case VK_DOWN:
        case VK_PRIOR:
        case VK_NEXT:
            s.model.MoveLines(wp == VK_UP ? -1 : wp == VK_DOWN ? 1 : wp == VK_PRIOR ? -page : page, shift,
                              WidthIn(FontOr(s.font)));
            break;
        case VK_DELETE:
            if (StyleOf(hwnd) & ES_READONLY) return 0;
            if (s.model.DeleteForward()) Changed(hwnd, s);
            return 0;
        default:
            return 0;
        }
        KeepCaretVisible(hwnd, s);
        Redraw(hwnd);
        return 0;
    }
    case EM_GETSEL: {
        EditState& s = State(hwnd);
        if (wp) *reinterpret_cast<DWORD*>(wp) = static_cast<DWORD>(s.model.SelStart());
        if (lp) *reinterpret_cast<DWORD*>(lp) = static_cast<DWORD>(s.model.SelEnd());
        return MAKELONG(static_cast<WORD>(s.model.SelStart()), static_cast<WORD>(s.model.SelEnd()));
    }
    case EM_SETSEL: {
        EditState& s = State(hwnd);
        s.model.SetSel(static_cast<int>(static_cast<INT_PTR>(wp)), static_cast<int>(lp));
        // No scrolling here: EM_SCROLLCARET brings the caret into view when asked.
        Redraw(hwnd);
        return 0;
    }
    case EM_REPLACESEL: {
        EditState& s = State(hwnd);
        if (s.model.ReplaceSel(lp ? reinterpret_cast<const char*>(lp) : "", wp != 0)) Changed(hwnd, s);
        return 0;
    }
    case EM_LIMITTEXT:
        State(hwnd).model.SetLimit(static_cast<int>(wp));
        return 0;
    case EM_GETLIMITTEXT:
        return State(hwnd).model.Limit();
    case EM_SETREADONLY: {
        DWORD style = StyleOf(hwnd);
        style = wp ? (style | ES_READONLY) : (style & ~ES_READONLY);
        ::SetWindowLongPtrA(hwnd, GWL_STYLE, static_cast<LONG_PTR>(style));
        Redraw(hwnd);
        return TRUE;
    }
    case EM_CANUNDO:
        return State(hwnd).model.CanUndo();
    case EM_UNDO:
    case WM_UNDO: {
        EditState& s = State(hwnd);
        if (!s.model.Undo()) return FALSE;
        Changed(hwnd, s);
        return TRUE;
    }
    case EM_EMPTYUNDOBUFFER:
        State(hwnd).model.EmptyUndo();
        return 0;
    case EM_GETMODIFY:
        return State(hwnd).modified;
    case EM_SETMODIFY:
        State(hwnd).modified = wp != 0;
        return 0;
    case EM_SCROLLCARET: {
        EditState& s = State(hwnd);
        KeepCaretVisible(hwnd, s);
        Redraw(hwnd);
        return TRUE;
    }
    case EM_GETLINECOUNT:
        return State(hwnd).model.LineCount();
    case EM_LINEFROMCHAR: {
        // -1: the line of the selection's start, or of the caret without a selection.
        const EditModel& m = State(hwnd).model;
        const int pos = static_cast<int>(static_cast<INT_PTR>(wp));
        return m.LineOf(pos < 0 ? (m.HasSelection() ? m.SelStart() : m.Caret()) : pos);
    }
    case EM_LINEINDEX: {
        const EditModel& m = State(hwnd).model;
        const int line = static_cast<int>(static_cast<INT_PTR>(wp));
        return m.LineStart(line < 0 ? m.LineOf(m.Caret()) : line);
    }
    case EM_LINELENGTH: {
        const EditModel& m = State(hwnd).model;
        const int pos = static_cast<int>(static_cast<INT_PTR>(wp));
        if (pos >= 0) return m.LineLength(m.LineOf(pos));
        // -1: what is left unselected of the lines the selection touches.
        const int first = m.LineOf(m.SelStart()), last = m.LineOf(m.SelEnd());
        return (m.SelStart() - m.LineStart(first)) + (m.LineStart(last) + m.LineLength(last) - m.SelEnd());
    }
    case EM_GETFIRSTVISIBLELINE: {
        EditState& s = State(hwnd);
        if (Multi(hwnd)) return s.topLine;
        // One line: the first character not scrolled out on the left.
        const std::string shown = Shown(hwnd, s.model.Text());
        const std::vector<int> widths = PrefixWidths(hwnd, FontOr(s.font), shown);
        return static_cast<LRESULT>(std::lower_bound(widths.begin(), widths.end(), s.scrollX) - widths.begin());
    }
    case EM_LINESCROLL: {
        EditState& s = State(hwnd);
        if (!Multi(hwnd)) return FALSE;
        s.topLine += static_cast<int>(lp);
        ClampTopLine(s);
        Redraw(hwnd);
        return TRUE;
    }
    case WM_COPY:
        CopySelection(hwnd, State(hwnd));
        return 0;
    case WM_CUT:
    case WM_CLEAR: {
        EditState& s = State(hwnd);
        if (StyleOf(hwnd) & ES_READONLY) return 0;
        if (msg == WM_CUT) CopySelection(hwnd, s);
        if (s.model.HasSelection() && s.model.DeleteForward()) Changed(hwnd, s);
        return 0;
    }
    case WM_PASTE: {
        EditState& s = State(hwnd);
        if (StyleOf(hwnd) & ES_READONLY) return 0;
        std::string text = ClipboardText(hwnd);
        if (!(StyleOf(hwnd) & ES_MULTILINE)) {
            // One line keeps what comes before the first line break.
            const size_t brk = text.find_first_of("\r\n");
            if (brk != std::string::npos) text.resize(brk);
        }
        if (!text.empty()) Insert(hwnd, s, text);
        return 0;
    }
    default:
        break;
    }
    return ::DefWindowProcA(hwnd, msg, wp, lp);
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL CEdit::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("Edit", nullptr, style, rect, parent, id);
}
LRESULT CEdit::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return EditProc(m_hWnd, m, w, l); }
void CEdit::SetSel(int start, int end, BOOL noScroll) {
    SendMessage(EM_SETSEL, static_cast<WPARAM>(static_cast<INT_PTR>(start)), end);
    if (!noScroll) SendMessage(EM_SCROLLCARET);
}
void CEdit::SetSel(DWORD selection, BOOL noScroll) {
    SetSel(static_cast<short>(LOWORD(selection)), static_cast<short>(HIWORD(selection)), noScroll);
}
DWORD CEdit::GetSel() const { return static_cast<DWORD>(SendMessage(EM_GETSEL)); }
void CEdit::GetSel(int& start, int& end) const {
    DWORD a = 0, b = 0;
    SendMessage(EM_GETSEL, reinterpret_cast<WPARAM>(&a), reinterpret_cast<LPARAM>(&b));
    start = static_cast<int>(a);
    end = static_cast<int>(b);
}
void CEdit::ReplaceSel(LPCSTR text, BOOL canUndo) { SendMessage(EM_REPLACESEL, canUndo, reinterpret_cast<LPARAM>(text)); }
void CEdit::LimitText(int max) { SendMessage(EM_LIMITTEXT, static_cast<WPARAM>(max)); }
UINT CEdit::GetLimitText() const { return static_cast<UINT>(SendMessage(EM_GETLIMITTEXT)); }
BOOL CEdit::SetReadOnly(BOOL readOnly) { return static_cast<BOOL>(SendMessage(EM_SETREADONLY, readOnly)); }
BOOL CEdit::CanUndo() const { return static_cast<BOOL>(SendMessage(EM_CANUNDO)); }
BOOL CEdit::Undo() { return static_cast<BOOL>(SendMessage(EM_UNDO)); }
void CEdit::EmptyUndoBuffer() { SendMessage(EM_EMPTYUNDOBUFFER); }
BOOL CEdit::GetModify() const { return static_cast<BOOL>(SendMessage(EM_GETMODIFY)); }
void CEdit::SetModify(BOOL modified) { SendMessage(EM_SETMODIFY, modified); }
void CEdit::Clear() { SendMessage(WM_CLEAR); }
void CEdit::Copy() { SendMessage(WM_COPY); }
void CEdit::Cut() { SendMessage(WM_CUT); }
void CEdit::Paste() { SendMessage(WM_PASTE); }
int CEdit::GetLineCount() const { return static_cast<int>(SendMessage(EM_GETLINECOUNT)); }
int CEdit::LineIndex(int line) const { return static_cast<int>(SendMessage(EM_LINEINDEX, static_cast<WPARAM>(static_cast<INT_PTR>(line)))); }
int CEdit::LineFromChar(int pos) const {
    return static_cast<int>(SendMessage(EM_LINEFROMCHAR, static_cast<WPARAM>(static_cast<INT_PTR>(pos))));
}
int CEdit::LineLength(int pos) const { return static_cast<int>(SendMessage(EM_LINELENGTH, static_cast<WPARAM>(static_cast<INT_PTR>(pos)))); }
int CEdit::GetFirstVisibleLine() const { return static_cast<int>(SendMessage(EM_GETFIRSTVISIBLELINE)); }
BOOL CEdit::LineScroll(int lines, int chars) { return static_cast<BOOL>(SendMessage(EM_LINESCROLL, static_cast<WPARAM>(chars), lines)); }
