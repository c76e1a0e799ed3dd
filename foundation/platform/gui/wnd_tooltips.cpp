// Tooltips of windows that enabled them: the window's tools are found by OnToolHitTest as
// the pointer moves over the window and its children, and a tooltip control owned by the
// layer (one per such window) is told when the tool under the pointer changes. The control
// asks the window for the text (WM_NOTIFY TTN_NEEDTEXT) when its initial delay has run.
#include <cassert>
#include <memory>
#include <mutex>
#include <unordered_map>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {

namespace {

// One window with tooltips on. The last tool is what OnToolHitTest found at the last
// mouse message, so that a move within the same tool changes nothing.
struct TipOwner {
    std::unique_ptr<CToolTipCtrl> tip;
    bool haveLast = false;
    INT_PTR lastHit = -1;
    TOOLINFOA lastInfo;
};

std::mutex g_ownersLock;  // the table only; never held while a message is sent
std::unordered_map<HWND, std::unique_ptr<TipOwner>>& Owners() {
    static std::unordered_map<HWND, std::unique_ptr<TipOwner>> t;
    return t;
}
// The window whose tool the pointer was last over, per thread: when the pointer moves to
// a window outside it, its tool ends.
thread_local HWND t_lastOwner = nullptr;

TipOwner* OwnerRec(HWND hwnd) {
    std::lock_guard<std::mutex> g(g_ownersLock);
    auto it = Owners().find(hwnd);
    return it == Owners().end() ? nullptr : it->second.get();
}

bool AnyOwner() {
    std::lock_guard<std::mutex> g(g_ownersLock);
    return !Owners().empty();
}

// The nearest window, from hwnd up through its parents, with tooltips on.
HWND OwnerFor(HWND hwnd) {
    for (HWND h = hwnd; h; h = (::GetWindowLongPtrA(h, GWL_STYLE) & WS_CHILD) ? ::GetParent(h) : nullptr)
        if (OwnerRec(h)) return h;
    return nullptr;
}

bool IsMouseMessage(UINT m) {
    return (m >= WM_MOUSEFIRST && m <= WM_MOUSELAST && m != WM_MOUSEWHEEL) || (m >= WM_NCMOUSEMOVE && m <= 0x00A9);
}
bool IsPress(UINT m) {
    return m == WM_LBUTTONDOWN || m == WM_RBUTTONDOWN || m == WM_MBUTTONDOWN || m == WM_LBUTTONDBLCLK ||
           m == WM_RBUTTONDBLCLK || m == WM_MBUTTONDBLCLK || m == WM_NCLBUTTONDOWN || m == WM_NCRBUTTONDOWN ||
           m == WM_NCMBUTTONDOWN || m == WM_NCLBUTTONDBLCLK;
}
bool AnyButtonDown() {
    return (::GetKeyState(VK_LBUTTON) | ::GetKeyState(VK_RBUTTON) | ::GetKeyState(VK_MBUTTON)) & 0x8000;
}

// The window a tool's mouse messages are about: the tool window itself (TTF_IDISHWND), or
// the window whose client rectangle holds the tool.
HWND ToolWindowOf(const TOOLINFOA& ti) { return (ti.uFlags & TTF_IDISHWND) ? reinterpret_cast<HWND>(ti.uId) : ti.hwnd; }

// Hands the control a mouse message as if it came to the tool's window, at the screen point.
void RelayAt(CToolTipCtrl* tip, const TOOLINFOA& ti, UINT message, WPARAM wp, POINT screen) {
    HWND target = ToolWindowOf(ti);
    if (!::IsWindow(target)) return;
    POINT p = screen;
    ::ScreenToClient(target, &p);
    MSG m{target, message, wp, MAKELPARAM(static_cast<WORD>(p.x), static_cast<WORD>(p.y)), ::GetMessageTime(), screen};
    tip->RelayEvent(&m);
}

// Ends the tool the pointer was over in an owner (its tip hides).
void DropLastTool(HWND owner) {
    TipOwner* rec = OwnerRec(owner);
    if (!rec || !rec->haveLast || !rec->tip || !rec->tip->m_hWnd) return;
    rec->haveLast = false;
    rec->lastHit = -1;
    TOOLINFOA last = rec->lastInfo;
    rec->tip->SendMessage(TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&last));
}

// A mouse move (or release) over the owner: find the tool there and tell the control.
void TrackTool(HWND owner, TipOwner* rec, const MSG* msg) {
    CWnd* wnd = CWnd::FromHandle(owner);
    if (!wnd || !rec->tip || !rec->tip->m_hWnd) return;
    CToolTipCtrl* tip = rec->tip.get();
    POINT client = msg->pt;
    ::ScreenToClient(owner, &client);
    TOOLINFOA hit;
    hit.uFlags = 0;
    const INT_PTR code = wnd->OnToolHitTest(CPoint(client), &hit);
    if (!::IsWindow(owner) || OwnerRec(owner) != rec) return;  // the hit test may end the window
    if (code != -1 && !hit.hwnd) hit.hwnd = owner;
    const bool same = rec->haveLast && code != -1 && code == rec->lastHit && hit.hwnd == rec->lastInfo.hwnd &&
                      hit.uId == rec->lastInfo.uId;
    if (same) {
        RelayAt(tip, hit, WM_MOUSEMOVE, msg->wParam, msg->pt);
        return;
    }
    // The next tool goes in before the last one comes out, so the control sees the pointer
    // pass from one tool to the next (it shows the next after the short reshow delay when
    // a tip was showing).
    const bool hadLast = rec->haveLast;
    const TOOLINFOA last = rec->lastInfo;
    if (code != -1) {
        TOOLINFOA add = hit;
        tip->SendMessage(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&add));
        tip->SendMessage(TTM_ACTIVATE, TRUE);
        RelayAt(tip, hit, WM_MOUSEMOVE, msg->wParam, msg->pt);
    }
    if (hadLast && !(code != -1 && last.hwnd == hit.hwnd && last.uId == hit.uId)) {
        TOOLINFOA del = last;
        tip->SendMessage(TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&del));
    }
    if (code != -1 && hit.lpszText != LPSTR_TEXTCALLBACKA && hit.lpszText && !OrlexIsIntResource(hit.lpszText)) {
        // The control copied a text given by the hit test; the key is all that is kept.
        hit.lpszText = nullptr;
    }
    rec->haveLast = code != -1;
    rec->lastHit = code;
    rec->lastInfo = hit;
}

}  // namespace

void FilterToolTipMessage(const MSG* msg) {
    if (!msg || !msg->hwnd || !AnyOwner()) return;
    const UINT m = msg->message;
    const bool mouse = IsMouseMessage(m);
    const bool key = m >= WM_KEYFIRST && m <= WM_KEYLAST;
    if (!mouse && !key) return;
    const HWND owner = OwnerFor(msg->hwnd);
    if (mouse && t_lastOwner && t_lastOwner != owner) {
        DropLastTool(t_lastOwner);
        t_lastOwner = nullptr;
    }
    if (!owner) return;
    TipOwner* rec = OwnerRec(owner);
    if (!rec || !rec->tip || !rec->tip->m_hWnd) return;
    if (key || IsPress(m)) {
        // A press or a key puts the tip away; it comes again only for another tool.
        rec->tip->Pop();
        if (rec->haveLast && IsPress(m)) RelayAt(rec->tip.get(), rec->lastInfo, m, msg->wParam, msg->pt);
        return;
    }
    if (AnyButtonDown()) return;  // no tips while dragging
    t_lastOwner = owner;
    TrackTool(owner, rec, msg);
}

void ForgetToolTipsOf(HWND hwnd) {
    std::unique_ptr<TipOwner> gone;
    {
        std::lock_guard<std::mutex> g(g_ownersLock);
        auto it = Owners().find(hwnd);
        if (it == Owners().end()) return;
        gone = std::move(it->second);
        Owners().erase(it);
    }
    if (t_lastOwner == hwnd) t_lastOwner = nullptr;
    // Deleting the control destroys its window.
    gone.reset();
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL CWnd::EnableToolTips(BOOL enable) {
    if (!::IsWindow(m_hWnd)) return FALSE;
    if (!enable) {
        m_nFlags &= ~WF_TOOLTIPS;
        ForgetToolTipsOf(m_hWnd);
        return TRUE;
    }
    m_nFlags |= WF_TOOLTIPS;
    if (OwnerRec(m_hWnd)) return TRUE;
    auto rec = std::make_unique<TipOwner>();
    rec->tip = std::make_unique<CToolTipCtrl>();
    if (!rec->tip->Create(this, TTS_ALWAYSTIP)) return FALSE;
    std::lock_guard<std::mutex> g(g_ownersLock);
    Owners().emplace(m_hWnd, std::move(rec));
    return TRUE;
}

INT_PTR CWnd::OnToolHitTest(CPoint point, TOOLINFOA* ti) const {
    if (!m_hWnd) return -1;
    HWND child = ::ChildWindowFromPointEx(m_hWnd, point, CWP_SKIPINVISIBLE);
    if (!child || child == m_hWnd) return -1;
    if (ti) {
        ti->hwnd = m_hWnd;
        ti->uId = reinterpret_cast<UINT_PTR>(child);
        ti->uFlags |= TTF_IDISHWND;
        ti->lpszText = LPSTR_TEXTCALLBACKA;
    }
    return ::GetDlgCtrlID(child);
}
