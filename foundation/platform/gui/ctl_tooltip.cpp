// The tooltip control: a small top-level window that shows the text of the tool under
// the pointer after a delay, and tracking tips placed by their owner.
#include <algorithm>
#include <cstring>
#include <unordered_map>
#include <vector>

#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/resources.h"

namespace orlex::detail {
namespace {

constexpr UINT_PTR kShowTimer = 1;
constexpr UINT_PTR kPopTimer = 2;

struct Tool {
    UINT flags = 0;
    HWND hwnd = nullptr;
    UINT_PTR id = 0;
    RECT rect{0, 0, 0, 0};
    bool callback = false;
    std::string text;
    HINSTANCE hinst = nullptr;
    UINT textId = 0;
    LPARAM param = 0;
};

struct TipState {
    std::vector<Tool> tools;
    bool active = true;
    int initial = 500, autopop = 5000, reshow = 100;
    int maxWidth = -1;
    int hover = -1;     // the tool under the pointer
    int shown = -1;     // the tool whose tip shows
    std::string shownText;
    bool tracking = false;
    POINT trackAt{0, 0};
    HFONT font = nullptr;
};
StateTable<TipState> g_tips;

int FindTool(TipState& s, HWND hwnd, UINT_PTR id) {
    for (size_t i = 0; i < s.tools.size(); ++i)
        if (s.tools[i].hwnd == hwnd && s.tools[i].id == id) return static_cast<int>(i);
    return -1;
}

// The window a tool stands for (TTF_IDISHWND: uId is that window).
HWND ToolWindow(const Tool& t) { return (t.flags & TTF_IDISHWND) ? reinterpret_cast<HWND>(t.id) : t.hwnd; }

void FillTool(Tool& t, const TOOLINFOA* ti) {
    t.flags = ti->uFlags;
    t.hwnd = ti->hwnd;
    t.id = ti->uId;
    t.rect = ti->rect;
    t.param = ti->lParam;
    t.callback = ti->lpszText == LPSTR_TEXTCALLBACKA;
    t.hinst = nullptr;
    t.textId = 0;
    t.text.clear();
    if (t.callback) return;
    if (ti->lpszText && OrlexIsIntResource(ti->lpszText)) {
        t.hinst = ti->hinst;
        t.textId = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(ti->lpszText));
    } else if (ti->lpszText) {
        t.text = ti->lpszText;
    }
}

std::string ToolText(HWND tip, Tool& t) {
    if (t.textId) {
        char buf[1024] = {};
        if (::LoadStringA(t.hinst ? t.hinst : AfxGetResourceHandle(), t.textId, buf, sizeof buf) == 0)
            ::LoadStringA(orlex::LibraryModule(), t.textId, buf, sizeof buf);
        return buf;
    }
    if (!t.callback) return t.text;
    NMTTDISPINFOA info{};
    info.hdr = NMHDR{tip, t.id, TTN_NEEDTEXTA};
    info.uFlags = t.flags;
    info.lParam = t.param;
    ::SendMessageA(t.hwnd, WM_NOTIFY, t.id, reinterpret_cast<LPARAM>(&info));
    if (info.lpszText && OrlexIsIntResource(info.lpszText)) {
        char buf[1024] = {};
        ::LoadStringA(info.hinst ? info.hinst : AfxGetResourceHandle(),
                      static_cast<UINT>(reinterpret_cast<ULONG_PTR>(info.lpszText)), buf, sizeof buf);
        return buf;
    }
    if (info.lpszText) return info.lpszText;
    return std::string(info.szText, strnlen(info.szText, sizeof info.szText));
}

void Hide(HWND tip, TipState& s) {
    ::KillTimer(tip, kPopTimer);
    if (s.shown < 0 && s.shownText.empty()) return;
    s.shown = -1;
    s.shownText.clear();
    ::ShowWindow(tip, SW_HIDE);
}

// Shows the text at a screen point: sized to the text (lines broken at the maximum width).
void ShowAt(HWND tip, TipState& s, const std::string& text, POINT at) {
    s.shownText = text;
    // The window text is what shows, so that the tip can be read like any window.
    ::SetWindowTextA(tip, text.c_str());
    if (text.empty()) {
        ::ShowWindow(tip, SW_HIDE);
        return;
    }
    HFONT font = FontOr(s.font);
    int width = 0, lines = 0;
    size_t start = 0;
    while (start <= text.size()) {
        size_t nl = text.find('\n', start);
        if (nl == std::string::npos) nl = text.size();
        width = std::max(width, TextWidth(font, text.substr(start, nl - start)));
        ++lines;
        start = nl + 1;
    }
    if (s.maxWidth > 0) width = std::min(width, s.maxWidth);
    const int w = width + 8, h = lines * LineHeight(font) + 4;
    ::SetWindowPos(tip, HWND_TOP, at.x, at.y, w, h, SWP_NOACTIVATE | SWP_SHOWWINDOW);
    Redraw(tip);
}

void Paint(HWND tip) {
    TipState& s = g_tips.Get(tip);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(tip, &ps));
    RECT r;
    ::GetClientRect(tip, &r);
    dc->FillSolidRect(&r, ::GetSysColor(COLOR_INFOBK));
    dc->Draw3dRect(&r, ::GetSysColor(COLOR_INFOTEXT), ::GetSysColor(COLOR_INFOTEXT));
    HGDIOBJ old = dc->SelectObject(static_cast<HGDIOBJ>(FontOr(s.font)));
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(::GetSysColor(COLOR_INFOTEXT));
    RECT tr{r.left + 4, r.top + 2, r.right - 4, r.bottom - 2};
    dc->DrawText(s.shownText.c_str(), static_cast<int>(s.shownText.size()), &tr, DT_LEFT | DT_NOPREFIX | DT_WORDBREAK);
    dc->SelectObject(old);
    ::EndPaint(tip, &ps);
}

// Which tool is under the message's point (client point of msg->hwnd).
int ToolAt(TipState& s, const MSG* msg) {
    const POINT p{GET_X_LPARAM(msg->lParam), GET_Y_LPARAM(msg->lParam)};
    for (size_t i = 0; i < s.tools.size(); ++i) {
        const Tool& t = s.tools[i];
        if (t.flags & TTF_TRACK) continue;
        if (t.flags & TTF_IDISHWND) {
            if (reinterpret_cast<HWND>(t.id) == msg->hwnd) return static_cast<int>(i);
        } else if (t.hwnd == msg->hwnd && ::PtInRect(&t.rect, p)) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void Relay(HWND tip, TipState& s, const MSG* msg) {
    if (!msg) return;
    switch (msg->message) {
    case WM_MOUSEMOVE: {
        const int tool = s.active ? ToolAt(s, msg) : -1;
        if (tool == s.hover) return;
        s.hover = tool;
        const bool wasShown = s.shown >= 0;
        Hide(tip, s);
        ::KillTimer(tip, kShowTimer);
        if (tool >= 0) ::SetTimer(tip, kShowTimer, static_cast<UINT>(wasShown ? s.reshow : s.initial), nullptr);
        return;
    }
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN:
    case WM_LBUTTONUP:
    case WM_RBUTTONUP:
    case WM_MBUTTONUP:
        ::KillTimer(tip, kShowTimer);
        Hide(tip, s);
        return;
    default:
        return;
    }
}

// Tools added with TTF_SUBCLASS: their windows' procedures are wrapped so that their mouse
// messages reach the tooltips without RelayEvent.
struct Subclassed {
    WNDPROC old = nullptr;
    std::vector<HWND> tips;
};
std::unordered_map<HWND, Subclassed>& SubclassTable() {
    static std::unordered_map<HWND, Subclassed> t;
    return t;
}

LRESULT SubclassProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    auto it = SubclassTable().find(hwnd);
    if (it == SubclassTable().end()) return ::DefWindowProcA(hwnd, msg, wp, lp);
    const WNDPROC old = it->second.old;
    if ((msg >= WM_MOUSEFIRST && msg <= WM_MOUSELAST) && msg != WM_MOUSEWHEEL) {
        MSG m{hwnd, msg, wp, lp, 0, {0, 0}};
        const std::vector<HWND> tips = it->second.tips;
        for (HWND tip : tips)
            if (::IsWindow(tip)) ::SendMessageA(tip, TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(&m));
    }
    if (msg == WM_NCDESTROY) {
        ::SetWindowLongPtrA(hwnd, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(old));
        SubclassTable().erase(hwnd);
    }
    return ::CallWindowProcA(old, hwnd, msg, wp, lp);
}

void WatchTool(HWND tip, HWND target) {
    if (!target || !::IsWindow(target)) return;
    auto it = SubclassTable().find(target);
    if (it == SubclassTable().end()) {
        Subclassed s;
        s.old = reinterpret_cast<WNDPROC>(::SetWindowLongPtrA(target, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(SubclassProc)));
        if (!s.old) return;
        it = SubclassTable().emplace(target, std::move(s)).first;
    }
    if (std::find(it->second.tips.begin(), it->second.tips.end(), tip) == it->second.tips.end()) it->second.tips.push_back(tip);
}

void ForgetTip(HWND tip) {
    for (auto& [h, s] : SubclassTable()) s.tips.erase(std::remove(s.tips.begin(), s.tips.end(), tip), s.tips.end());
}

}  // namespace

LRESULT ToolTipProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    TipState& s = g_tips.Get(hwnd);
    switch (msg) {
    case WM_NCDESTROY:
        ::KillTimer(hwnd, kShowTimer);
        ::KillTimer(hwnd, kPopTimer);
        ForgetTip(hwnd);
        g_tips.Erase(hwnd);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    case WM_PAINT:
        Paint(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_NCHITTEST:
        return HTTRANSPARENT;
    case WM_SETFONT:
        s.font = reinterpret_cast<HFONT>(wp);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(s.font);
    case WM_TIMER:
        if (wp == kShowTimer) {
            ::KillTimer(hwnd, kShowTimer);
            if (s.hover < 0 || !s.active || s.hover >= static_cast<int>(s.tools.size())) return 0;
            POINT at{0, 0};
            ::GetCursorPos(&at);
            at.y += 20;  // below the pointer
            const std::string text = ToolText(hwnd, s.tools[static_cast<size_t>(s.hover)]);
            if (!::IsWindow(hwnd)) return 0;
            s.shown = s.hover;
            ShowAt(hwnd, s, text, at);
            if (s.autopop > 0) ::SetTimer(hwnd, kPopTimer, static_cast<UINT>(s.autopop), nullptr);
        } else if (wp == kPopTimer) {
            Hide(hwnd, s);
        }
        return 0;
    case TTM_ACTIVATE:
        s.active = wp != 0;
        if (!s.active) {
            ::KillTimer(hwnd, kShowTimer);
            Hide(hwnd, s);
        }
        return 0;
    case TTM_SETDELAYTIME: {
        const int v = static_cast<short>(LOWORD(lp));
        switch (wp) {
        case TTDT_AUTOMATIC:
            s.initial = v >= 0 ? v : 500;
            s.autopop = s.initial * 10;
            s.reshow = s.initial / 5;
            break;
        case TTDT_INITIAL: s.initial = v >= 0 ? v : 500; break;
        case TTDT_AUTOPOP: s.autopop = v >= 0 ? v : 5000; break;
        case TTDT_RESHOW: s.reshow = v >= 0 ? v : 100; break;
        default: break;
        }
        return 0;
    }
    case TTM_GETDELAYTIME:
        switch (wp) {
        case TTDT_INITIAL: return s.initial;
        case TTDT_AUTOPOP: return s.autopop;
        case TTDT_RESHOW: return s.reshow;
        default: return s.initial;
        }
    case TTM_ADDTOOLA: {
        const auto* ti = reinterpret_cast<const TOOLINFOA*>(lp);
        if (!ti) return FALSE;
        Tool t;
        FillTool(t, ti);
        const int at = FindTool(s, t.hwnd, t.id);
        if (at >= 0) s.tools[static_cast<size_t>(at)] = t;
        else s.tools.push_back(t);
        if (t.flags & TTF_SUBCLASS) WatchTool(hwnd, ToolWindow(t));
        return TRUE;
    }
    case TTM_DELTOOLA: {
        const auto* ti = reinterpret_cast<const TOOLINFOA*>(lp);
        if (!ti) return 0;
        const int at = FindTool(s, ti->hwnd, ti->uId);
        if (at >= 0) {
            // The tool under the pointer may be another one (the framework adds the next
            // tool before it removes the last): only indices past the removed one move.
            if (s.shown == at) Hide(hwnd, s);
            if (s.hover == at) {
                s.hover = -1;
                ::KillTimer(hwnd, kShowTimer);
            }
            s.tools.erase(s.tools.begin() + at);
            if (s.hover > at) --s.hover;
            if (s.shown > at) --s.shown;
        }
        return 0;
    }
    case TTM_SETTOOLINFOA:
    case TTM_UPDATETIPTEXTA: {
        const auto* ti = reinterpret_cast<const TOOLINFOA*>(lp);
        if (!ti) return 0;
        const int at = FindTool(s, ti->hwnd, ti->uId);
        if (at < 0) return 0;
        Tool& t = s.tools[static_cast<size_t>(at)];
        if (msg == TTM_SETTOOLINFOA) {
            FillTool(t, ti);
        } else {
            Tool fresh = t;
            FillTool(fresh, ti);
            t.callback = fresh.callback;
            t.text = fresh.text;
            t.textId = fresh.textId;
            t.hinst = fresh.hinst;
        }
        if (s.shown == at || (s.tracking && (t.flags & TTF_TRACK))) {
            RECT wr;
            ::GetWindowRect(hwnd, &wr);
            ShowAt(hwnd, s, ToolText(hwnd, t), POINT{wr.left, wr.top});
        }
        return 0;
    }
    case TTM_GETTOOLINFOA: {
        auto* ti = reinterpret_cast<TOOLINFOA*>(lp);
        if (!ti) return FALSE;
        const int at = FindTool(s, ti->hwnd, ti->uId);
        if (at < 0) return FALSE;
        const Tool& t = s.tools[static_cast<size_t>(at)];
        ti->uFlags = t.flags;
        ti->rect = t.rect;
        ti->lParam = t.param;
        return TRUE;
    }
    case TTM_GETTEXTA: {
        auto* ti = reinterpret_cast<TOOLINFOA*>(lp);
        if (!ti || !ti->lpszText) return 0;
        const int at = FindTool(s, ti->hwnd, ti->uId);
        const std::string text = at >= 0 ? ToolText(hwnd, s.tools[static_cast<size_t>(at)]) : std::string();
        // The caller's buffer holds 80 characters, as the platform assumes.
        const size_t n = std::min<size_t>(text.size(), 79);
        std::memcpy(ti->lpszText, text.c_str(), n);
        ti->lpszText[n] = '\0';
        return 0;
    }
    case TTM_RELAYEVENT:
        Relay(hwnd, s, reinterpret_cast<const MSG*>(lp));
        return 0;
    case TTM_TRACKACTIVATE: {
        const auto* ti = reinterpret_cast<const TOOLINFOA*>(lp);
        s.tracking = wp != 0;
        if (!s.tracking || !ti) {
            Hide(hwnd, s);
            return 0;
        }
        const int at = FindTool(s, ti->hwnd, ti->uId);
        if (at < 0) return 0;
        s.shown = at;
        ShowAt(hwnd, s, ToolText(hwnd, s.tools[static_cast<size_t>(at)]), s.trackAt);
        return 0;
    }
    case TTM_TRACKPOSITION:
        s.trackAt = POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
        if (s.tracking && s.shown >= 0)
            ::SetWindowPos(hwnd, HWND_TOP, s.trackAt.x, s.trackAt.y, 0, 0, SWP_NOSIZE | SWP_NOACTIVATE);
        return 0;
    case TTM_SETMAXTIPWIDTH: {
        const int old = s.maxWidth;
        s.maxWidth = static_cast<int>(lp);
        return old;
    }
    case TTM_POP:
        ::KillTimer(hwnd, kShowTimer);
        Hide(hwnd, s);
        return 0;
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

// The text a tooltip shows now (for CToolTipCtrl::GetShownText).
std::string ShownTipText(HWND tip) {
    TipState* s = g_tips.Find(tip);
    return s && ::IsWindowVisible(tip) ? s->shownText : std::string();
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL CToolTipCtrl::Create(CWnd* parent, DWORD style) {
    EnsureControlClasses();
    CWnd* owner = parent ? parent->GetTopLevelParent() : nullptr;
    return CWnd::CreateEx(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, "tooltips_class32", nullptr, WS_POPUP | style,
                          CRect(0, 0, 0, 0), owner ? owner : parent, 0, nullptr);
}

LRESULT CToolTipCtrl::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return ToolTipProc(m_hWnd, m, w, l); }

BOOL CToolTipCtrl::AddTool(CWnd* wnd, LPCSTR text, LPCRECT rect, UINT_PTR id) {
    if (!wnd) return FALSE;
    TOOLINFOA ti;
    ti.hwnd = wnd->m_hWnd;
    if (rect) {
        ti.rect = *rect;
        ti.uId = id;
    } else {
        // A whole window: the parent owns the tool, the window is its id.
        ti.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
        ti.hwnd = ::GetParent(wnd->m_hWnd) ? ::GetParent(wnd->m_hWnd) : wnd->m_hWnd;
        ti.uId = reinterpret_cast<UINT_PTR>(wnd->m_hWnd);
    }
    ti.lpszText = const_cast<LPSTR>(text);
    return static_cast<BOOL>(SendMessage(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&ti)));
}

BOOL CToolTipCtrl::AddTool(CWnd* wnd, UINT textId, LPCRECT rect, UINT_PTR id) {
    return AddTool(wnd, reinterpret_cast<LPCSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(textId))), rect, id);
}

static TOOLINFOA ToolKey(CWnd* wnd, UINT_PTR id) {
    TOOLINFOA ti;
    if (id == 0 && wnd && ::GetParent(wnd->m_hWnd)) {
        ti.hwnd = ::GetParent(wnd->m_hWnd);
        ti.uId = reinterpret_cast<UINT_PTR>(wnd->m_hWnd);
    } else {
        ti.hwnd = wnd ? wnd->m_hWnd : nullptr;
        ti.uId = id;
    }
    return ti;
}

void CToolTipCtrl::DelTool(CWnd* wnd, UINT_PTR id) {
    TOOLINFOA ti = ToolKey(wnd, id);
    SendMessage(TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&ti));
}

void CToolTipCtrl::UpdateTipText(LPCSTR text, CWnd* wnd, UINT_PTR id) {
    TOOLINFOA ti = ToolKey(wnd, id);
    ti.lpszText = const_cast<LPSTR>(text);
    SendMessage(TTM_UPDATETIPTEXTA, 0, reinterpret_cast<LPARAM>(&ti));
}

void CToolTipCtrl::GetText(CString& text, CWnd* wnd, UINT_PTR id) const {
    TOOLINFOA ti = ToolKey(wnd, id);
    char buf[80] = {};
    ti.lpszText = buf;
    SendMessage(TTM_GETTEXTA, 0, reinterpret_cast<LPARAM>(&ti));
    text = buf;
}

void CToolTipCtrl::Activate(BOOL activate) { SendMessage(TTM_ACTIVATE, activate); }
void CToolTipCtrl::RelayEvent(LPMSG msg) { SendMessage(TTM_RELAYEVENT, 0, reinterpret_cast<LPARAM>(msg)); }
void CToolTipCtrl::SetDelayTime(UINT delayMs) { SendMessage(TTM_SETDELAYTIME, TTDT_AUTOMATIC, static_cast<LPARAM>(delayMs)); }
void CToolTipCtrl::SetDelayTime(DWORD which, int delayMs) { SendMessage(TTM_SETDELAYTIME, which, delayMs); }
int CToolTipCtrl::GetDelayTime(DWORD which) const { return static_cast<int>(SendMessage(TTM_GETDELAYTIME, which)); }
int CToolTipCtrl::SetMaxTipWidth(int width) { return static_cast<int>(SendMessage(TTM_SETMAXTIPWIDTH, 0, width)); }
void CToolTipCtrl::Pop() { SendMessage(TTM_POP); }
CString CToolTipCtrl::GetShownText() const { return CString(ShownTipText(m_hWnd).c_str()); }
