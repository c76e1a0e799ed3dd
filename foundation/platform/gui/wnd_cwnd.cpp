// CWnd: the handle map, dispatch through message maps (commands, notifications,
// reflection), the default handlers, modal loops; CCmdUI; the application object.
#include <QApplication>
#include <QGuiApplication>

#include <cassert>
#include <cctype>
#include <cstdlib>
#include <map>
#include <mutex>
#include <string>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/gui/dlg_modal_p.h"
#include "foundation/platform/gui/gdi_printers_p.h"
#include "foundation/platform/gui/wnd_p.h"

IMPLEMENT_DYNAMIC(CWnd, CCmdTarget)

namespace orlex::detail {

extern thread_local CWnd* t_creating;
const MSG* CurrentMessage();

namespace {
std::function<void(CWnd*)> g_modalHook;

WNDPROC SuperProcOf(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    return w ? w->superProc : nullptr;
}

bool IsCommandKind(UINT message) {
    return message == WM_COMMAND || message == WM_NOTIFY || message == WM_REFLECT_BASE + WM_COMMAND ||
           message == WM_REFLECT_BASE + WM_NOTIFY;
}
}  // namespace

// The procedure of windows that have a CWnd: the object's WindowProc.
LRESULT AfxWndProcBase(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    CWnd* object = CWnd::FromHandlePermanent(hwnd);
    if (!object) return DefWindowProcA(hwnd, msg, wp, lp);
    return object->WindowProc(msg, wp, lp);
}

}  // namespace orlex::detail

using namespace orlex::detail;

namespace orlex {

void EnsureApplication() {
    // Message boxes and common dialogs are shown for real when a display exists, however
    // the library was linked.
    detail::InstallModalPresenters();
    if (!QCoreApplication::instance()) {
        if (!std::getenv("QT_QPA_PLATFORM") && !std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
            setenv("QT_QPA_PLATFORM", "offscreen", 0);
        static int argc = 1;
        static char name[] = "orlexui";
        static char* argv[] = {name, nullptr};
        new QApplication(argc, argv);
    }
    gdi::PublishDefaultPrinter();
}

bool IsHeadless() {
    if (!QCoreApplication::instance()) return true;
    QString p = QGuiApplication::platformName();
    return p == "offscreen" || p == "minimal";
}

void SetModalLoopHook(std::function<void(CWnd*)> hook) { g_modalHook = std::move(hook); }

// Offers the message to PreTranslateMessage of its window and each ancestor up to the
// top-level window; TRUE when one took it.
BOOL PreTranslate(MSG* msg) {
    // Tooltips see the message first, whoever takes it then.
    detail::FilterToolTipMessage(msg);
    for (HWND h = msg->hwnd; h; h = (GetWindowLongPtrA(h, GWL_STYLE) & WS_CHILD) ? GetParent(h) : nullptr) {
        CWnd* w = CWnd::FromHandlePermanent(h);
        if (w && w->PreTranslateMessage(msg)) return TRUE;
    }
    return FALSE;
}

}  // namespace orlex

// CCmdUI ------------------------------------------------------------------------------------------
void CCmdUI::Enable(BOOL on) {
    if (m_pMenu) {
        if (!m_pSubMenu) m_pMenu->EnableMenuItem(m_nIndex, MF_BYPOSITION | (on ? MF_ENABLED : MF_GRAYED));
    } else if (m_pOther) {
        m_pOther->EnableWindow(on);
    }
    m_bEnableChanged = TRUE;
}

void CCmdUI::SetCheck(int check) {
    constexpr UINT kBmSetCheck = 0x00F1;
    if (m_pMenu) {
        if (!m_pSubMenu) m_pMenu->CheckMenuItem(m_nIndex, MF_BYPOSITION | (check ? MF_CHECKED : 0));
    } else if (m_pOther) {
        m_pOther->SendMessage(kBmSetCheck, static_cast<WPARAM>(check), 0);
    }
}

void CCmdUI::SetText(LPCSTR text) {
    if (m_pMenu) {
        if (!m_pSubMenu) {
            UINT state = m_pMenu->GetMenuState(m_nIndex, MF_BYPOSITION);
            m_pMenu->ModifyMenu(m_nIndex, MF_BYPOSITION | MF_STRING | (state & (MF_GRAYED | MF_CHECKED)), m_nID, text);
        }
    } else if (m_pOther) {
        m_pOther->SetWindowText(text);
    }
}

BOOL CCmdUI::DoUpdate(CWnd* target, BOOL disableIfNoHandler) {
    if (!target || m_nID == 0) return TRUE;
    m_bEnableChanged = FALSE;
    BOOL handled = target->OnCmdMsg(m_nID, static_cast<int>(CN_UPDATE_COMMAND_UI), this, nullptr);
    if (!handled && disableIfNoHandler && !m_bEnableChanged) {
        // No state handler: the item is enabled exactly when some map handles its command.
        int probe = 0;
        Enable(target->OnCmdMsg(m_nID, static_cast<int>(CN_COMMAND), nullptr, &probe));
    }
    return handled;
}

// CWnd: handle map ---------------------------------------------------------------------------------
CWnd::CWnd() = default;

const CWnd CWnd::wndTop(HWND_TOP);
const CWnd CWnd::wndBottom(HWND_BOTTOM);
const CWnd CWnd::wndTopMost(HWND_TOPMOST);
const CWnd CWnd::wndNoTopMost(HWND_NOTOPMOST);

HWND CWnd::GetSafeHwnd() const {
    // Called through null pointers by code written for the platform; the compiler must not
    // assume `this` is non-null here, so the address is passed through an opaque step.
    auto self = reinterpret_cast<std::uintptr_t>(this);
    asm volatile("" : "+r"(self));
    return self ? reinterpret_cast<const CWnd*>(self)->m_hWnd : nullptr;
}

CWnd::~CWnd() {
    if (m_hWnd && !m_temporary && FromHandlePermanent(m_hWnd) == this) {
        ::DestroyWindow(m_hWnd);
        // A window already on its way out (a child deleted while its parent is destroyed)
        // outlives this call: it must not keep a pointer to the object.
        if (m_hWnd && FromHandlePermanent(m_hWnd) == this) Detach();
    }
}

CWnd* CWnd::FromHandlePermanent(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    return w ? w->object : nullptr;
}

namespace orlex::detail {
namespace {
std::map<std::string, TemporaryMaker, std::less<>>& TemporaryMakers() {
    static std::map<std::string, TemporaryMaker, std::less<>> makers;
    return makers;
}
std::mutex& TemporaryMakersLock() {
    static std::mutex m;
    return m;
}
// Class names compare without regard to case, as window classes do.
std::string Folded(const std::string& name) {
    std::string f = name;
    for (char& c : f) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return f;
}
std::unique_ptr<CWnd> MakeTemporary(const std::string& className) {
    std::lock_guard<std::mutex> g(TemporaryMakersLock());
    auto it = TemporaryMakers().find(Folded(className));
    return it != TemporaryMakers().end() ? it->second() : std::make_unique<CWnd>();
}
}  // namespace

void RegisterTemporaryClass(const char* className, TemporaryMaker make) {
    if (!className || !make) return;
    std::lock_guard<std::mutex> g(TemporaryMakersLock());
    TemporaryMakers()[Folded(className)] = make;
}
}  // namespace orlex::detail

CWnd* CWnd::FromHandle(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return nullptr;
    if (w->object) return w->object;
    if (!w->temporary) {
        w->temporary = MakeTemporary(w->cls.name);
        w->temporary->m_hWnd = hwnd;
        w->temporary->m_temporary = true;
    }
    return w->temporary.get();
}

BOOL CWnd::Attach(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w || m_hWnd || (w->object && w->object != this)) return FALSE;
    w->object = this;
    m_hWnd = hwnd;
    return TRUE;
}

HWND CWnd::Detach() {
    HWND h = m_hWnd;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(h);
        if (w && w->object == this) w->object = nullptr;
    }
    m_hWnd = nullptr;
    return h;
}

BOOL CWnd::SubclassWindow(HWND hwnd) {
    if (!Attach(hwnd)) return FALSE;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (w->proc != AfxWndProcBase) {
            w->superProc = w->proc;
            w->proc = AfxWndProcBase;
        }
    }
    PreSubclassWindow();
    return TRUE;
}

BOOL CWnd::SubclassDlgItem(UINT id, CWnd* parent) {
    HWND h = parent ? ::GetDlgItem(parent->m_hWnd, static_cast<int>(id)) : nullptr;
    return h ? SubclassWindow(h) : FALSE;
}

HWND CWnd::UnsubclassWindow() {
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(m_hWnd);
        if (w && w->superProc) {
            w->proc = w->superProc;
            w->superProc = nullptr;
        }
    }
    return Detach();
}

// Creation -------------------------------------------------------------------------------------
BOOL CWnd::PreCreateWindow(CREATESTRUCT& cs) {
    if (!cs.lpszClass) cs.lpszClass = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursorA(nullptr, IDC_ARROW));
    return TRUE;
}

BOOL CWnd::Create(LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                  void*) {
    // Without a parent the creation fails as any other: the object hears PostNcDestroy.
    return CreateEx(0, className, windowName, (style | WS_CHILD) & ~WS_POPUP, rect, parent, id, nullptr);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect, CWnd* parent,
                    UINT id, LPVOID param) {
    HWND hp = parent ? parent->GetSafeHwnd() : nullptr;
    HMENU idOrMenu = (style & WS_CHILD) ? reinterpret_cast<HMENU>(static_cast<UINT_PTR>(id)) : nullptr;
    return CreateEx(exStyle, className, windowName, style, rect.left, rect.top, rect.right - rect.left,
                    rect.bottom - rect.top, hp, idOrMenu, param);
}

BOOL CWnd::CreateEx(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int w, int h,
                    HWND parent, HMENU idOrMenu, LPVOID param) {
    if (m_hWnd) return FALSE;  // one window per object
    CREATESTRUCT cs{param, nullptr, idOrMenu, parent, h, w, y, x, static_cast<LONG>(style), windowName, className, exStyle};
    if (!PreCreateWindow(cs)) {
        PostNcDestroy();
        return FALSE;
    }
    t_creating = this;
    HWND hwnd = ::CreateWindowExA(cs.dwExStyle, cs.lpszClass, cs.lpszName, static_cast<DWORD>(cs.style), cs.x, cs.y,
                                  cs.cx, cs.cy, cs.hwndParent, cs.hMenu, cs.hInstance, cs.lpCreateParams);
    if (t_creating == this) {
        // Never attached (bad class or parent): the object hears the end at once.
        t_creating = nullptr;
        PostNcDestroy();
        return FALSE;
    }
    return hwnd != nullptr;
}

BOOL CWnd::DestroyWindow() {
    if (!m_hWnd) return FALSE;
    return ::DestroyWindow(m_hWnd);
}

// Dispatch -------------------------------------------------------------------------------------
const AFX_MSGMAP* CWnd::GetMessageMap() const { return GetThisMessageMap(); }

const AFX_MSGMAP* CWnd::GetThisMessageMap() {
    using ThisClass = CWnd;
    static const AFX_MSGMAP_ENTRY _messageEntries[] = {
        ON_WM_NCDESTROY()
        ON_WM_CTLCOLOR()
        {0, 0, 0, 0, nullptr, nullptr}};
    static const AFX_MSGMAP messageMap = {nullptr, &_messageEntries[0]};
    return &messageMap;
}

BOOL CWnd::DispatchMap(UINT message, UINT code, UINT id, WPARAM wp, LPARAM lp, LRESULT* result) {
    const bool command = IsCommandKind(message);
    const bool reflected = message >= WM_REFLECT_BASE;
    for (const AFX_MSGMAP* map = GetMessageMap(); map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr) {
        for (const AFX_MSGMAP_ENTRY* e = map->lpEntries; e && e->pfn; ++e) {
            if (e->pRegistered) {
                if (message == 0 || *e->pRegistered != message) continue;
            } else if (e->nMessage != message) {
                continue;
            }
            if (command) {
                if (e->nCode != code) continue;
                if (!reflected && (id < e->nID || id > e->nLastID)) continue;
            }
            bool handled = true;
            LRESULT r = e->pfn(this, wp, lp, &handled);
            if (handled) {
                if (result) *result = r;
                return TRUE;
            }
        }
    }
    return FALSE;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    LRESULT r = 0;
    if (!OnWndMsg(message, wParam, lParam, &r)) r = DefWindowProc(message, wParam, lParam);
    return r;
}

BOOL CWnd::OnWndMsg(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    LRESULT r = 0;
    if (message == WM_COMMAND) {
        if (!OnCommand(wParam, lParam)) return FALSE;
        if (result) *result = 1;
        return TRUE;
    }
    if (message == WM_NOTIFY) {
        if (!OnNotify(wParam, lParam, &r)) return FALSE;
        if (result) *result = r;
        return TRUE;
    }
    if (message >= WM_CTLCOLORMSGBOX && message <= WM_CTLCOLORSTATIC) {
        AFX_CTLCOLOR ctl{reinterpret_cast<HWND>(lParam), reinterpret_cast<HDC>(wParam), message - WM_CTLCOLORMSGBOX};
        if (!DispatchMap(WM_CTLCOLOR, 0, 0, wParam, reinterpret_cast<LPARAM>(&ctl), &r)) return FALSE;
        if (result) *result = r;
        return TRUE;
    }
    if (!DispatchMap(message, 0, 0, wParam, lParam, &r)) return FALSE;
    if (result) *result = r;
    return TRUE;
}

LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    WNDPROC super = SuperProcOf(m_hWnd);
    if (super && super != AfxWndProcBase) return ::CallWindowProcA(super, m_hWnd, message, wParam, lParam);
    return ::DefWindowProcA(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PreTranslateMessage(MSG*) { return FALSE; }

BOOL CWnd::OnCommand(WPARAM wParam, LPARAM lParam) {
    UINT id = LOWORD(wParam);
    UINT code = HIWORD(wParam);
    HWND ctrl = reinterpret_cast<HWND>(lParam);
    if (!ctrl) {
        if (id == 0) return FALSE;
        code = CN_COMMAND;
    } else {
        // lParam may be any value (a colour, a flag) in the library's own commands; only a
        // live window with an object reflects.
        if (ReflectLastMsg(ctrl)) return TRUE;
        if (id == 0) return FALSE;
    }
    return OnCmdMsg(id, static_cast<int>(code), nullptr, nullptr);
}

BOOL CWnd::OnNotify(WPARAM, LPARAM lParam, LRESULT* result) {
    auto* hdr = reinterpret_cast<NMHDR*>(lParam);
    if (!hdr) return FALSE;
    if (hdr->hwndFrom && ReflectLastMsg(hdr->hwndFrom, result)) return TRUE;
    // The map entry is chosen by the sender's control id, as the framework does: a
    // tooltip's TTN_NEEDTEXT carries the tool (a window handle) in idFrom, yet reaches
    // ON_NOTIFY_EX(TTN_NEEDTEXT, 0, ...) through the tooltip's id 0.
    const UINT id = ::IsWindow(hdr->hwndFrom) ? static_cast<UINT>(::GetDlgCtrlID(hdr->hwndFrom))
                                              : static_cast<UINT>(hdr->idFrom);
    return DispatchMap(WM_NOTIFY, hdr->code, id, reinterpret_cast<WPARAM>(hdr),
                       reinterpret_cast<LPARAM>(result), nullptr);
}

BOOL CWnd::OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) {
    if (handlerInfo) {
        // Only asks whether some entry would take the command.
        for (const AFX_MSGMAP* map = GetMessageMap(); map; map = map->pfnGetBaseMap ? map->pfnGetBaseMap() : nullptr)
            for (const AFX_MSGMAP_ENTRY* e = map->lpEntries; e && e->pfn; ++e)
                if (e->nMessage == WM_COMMAND && e->nCode == static_cast<UINT>(code) && id >= e->nID && id <= e->nLastID)
                    return TRUE;
        return FALSE;
    }
    if (static_cast<UINT>(code) == CN_UPDATE_COMMAND_UI) {
        auto* ui = static_cast<CCmdUI*>(extra);
        if (ui) ui->m_bContinueRouting = FALSE;
        BOOL done = DispatchMap(WM_COMMAND, CN_UPDATE_COMMAND_UI, id, id, reinterpret_cast<LPARAM>(extra), nullptr);
        return done && !(ui && ui->m_bContinueRouting);
    }
    return DispatchMap(WM_COMMAND, static_cast<UINT>(code), id, id, reinterpret_cast<LPARAM>(extra), nullptr);
}

BOOL CWnd::OnChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    return ReflectChildNotify(message, wParam, lParam, result);
}

BOOL CWnd::ReflectChildNotify(UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
    LRESULT r = 0;
    switch (message) {
    case WM_COMMAND: {
        UINT code = HIWORD(wParam);
        if (!DispatchMap(WM_REFLECT_BASE + WM_COMMAND, code, 0, 0, 0, &r)) return FALSE;
        if (result) *result = 1;
        return TRUE;
    }
    case WM_NOTIFY: {
        auto* hdr = reinterpret_cast<NMHDR*>(lParam);
        if (!hdr) return FALSE;
        LRESULT nr = 0;
        if (!DispatchMap(WM_REFLECT_BASE + WM_NOTIFY, hdr->code, 0, reinterpret_cast<WPARAM>(hdr),
                         reinterpret_cast<LPARAM>(&nr), &r))
            return FALSE;
        if (result) *result = nr;
        return TRUE;
    }
    case WM_CTLCOLORMSGBOX: case WM_CTLCOLOREDIT: case WM_CTLCOLORLISTBOX: case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG: case WM_CTLCOLORSCROLLBAR: case WM_CTLCOLORSTATIC: {
        AFX_CTLCOLOR ctl{m_hWnd, reinterpret_cast<HDC>(wParam), message - WM_CTLCOLORMSGBOX};
        if (!DispatchMap(WM_REFLECT_BASE + WM_CTLCOLOR, 0, 0, wParam, reinterpret_cast<LPARAM>(&ctl), &r)) return FALSE;
        if (!r) return FALSE;  // a null brush lets the parent answer
        if (result) *result = r;
        return TRUE;
    }
    default:
        return OnWndMsg(WM_REFLECT_BASE + message, wParam, lParam, result);
    }
}

BOOL CWnd::ReflectLastMsg(HWND child, LRESULT* result) {
    CWnd* obj = FromHandlePermanent(child);
    const MSG* m = CurrentMessage();
    if (!obj || !m) return FALSE;
    return obj->OnChildNotify(m->message, m->wParam, m->lParam, result);
}

LRESULT CWnd::Default() {
    const MSG* m = CurrentMessage();
    if (!m || m->hwnd != m_hWnd) return 0;
    return DefWindowProc(m->message, m->wParam, m->lParam);
}

const MSG* CWnd::GetCurrentMessage() { return CurrentMessage(); }

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam) const {
    return ::SendMessageA(m_hWnd, message, wParam, lParam);
}

BOOL CWnd::PostMessage(UINT message, WPARAM wParam, LPARAM lParam) const {
    return m_hWnd ? ::PostMessageA(m_hWnd, message, wParam, lParam) : FALSE;
}

void CWnd::SendMessageToDescendants(UINT message, WPARAM wParam, LPARAM lParam, BOOL deep, BOOL onlyPermanent) const {
    for (HWND c = ::GetWindow(m_hWnd, GW_CHILD); c; c = ::GetWindow(c, GW_HWNDNEXT)) {
        CWnd* obj = onlyPermanent ? FromHandlePermanent(c) : FromHandle(c);
        if (obj) ::SendMessageA(c, message, wParam, lParam);
        if (deep && obj) obj->SendMessageToDescendants(message, wParam, lParam, deep, onlyPermanent);
        else if (deep) {
            CWnd tmp;
            tmp.m_hWnd = c;
            tmp.m_temporary = true;
            tmp.SendMessageToDescendants(message, wParam, lParam, deep, onlyPermanent);
        }
    }
}

// Geometry and state ---------------------------------------------------------------------------
BOOL CWnd::SetWindowPos(const CWnd* insertAfter, int x, int y, int cx, int cy, UINT flags) {
    HWND ia = insertAfter ? insertAfter->m_hWnd : nullptr;
    return ::SetWindowPos(m_hWnd, ia, x, y, cx, cy, flags);
}
void CWnd::MoveWindow(int x, int y, int width, int height, BOOL repaint) { ::MoveWindow(m_hWnd, x, y, width, height, repaint); }
void CWnd::MoveWindow(LPCRECT rect, BOOL repaint) {
    if (rect) ::MoveWindow(m_hWnd, rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, repaint);
}
BOOL CWnd::ShowWindow(int cmd) { return ::ShowWindow(m_hWnd, cmd); }
BOOL CWnd::IsWindowVisible() const { return ::IsWindowVisible(m_hWnd); }
BOOL CWnd::EnableWindow(BOOL enable) { return ::EnableWindow(m_hWnd, enable); }
BOOL CWnd::IsWindowEnabled() const { return ::IsWindowEnabled(m_hWnd); }
void CWnd::GetClientRect(LPRECT rect) const { ::GetClientRect(m_hWnd, rect); }
void CWnd::GetWindowRect(LPRECT rect) const { ::GetWindowRect(m_hWnd, rect); }
void CWnd::ClientToScreen(LPPOINT pt) const { ::ClientToScreen(m_hWnd, pt); }
void CWnd::ClientToScreen(LPRECT rect) const {
    if (!rect) return;
    ::ClientToScreen(m_hWnd, reinterpret_cast<POINT*>(&rect->left));
    ::ClientToScreen(m_hWnd, reinterpret_cast<POINT*>(&rect->right));
}
void CWnd::ScreenToClient(LPPOINT pt) const { ::ScreenToClient(m_hWnd, pt); }
void CWnd::ScreenToClient(LPRECT rect) const {
    if (!rect) return;
    ::ScreenToClient(m_hWnd, reinterpret_cast<POINT*>(&rect->left));
    ::ScreenToClient(m_hWnd, reinterpret_cast<POINT*>(&rect->right));
}
void CWnd::MapWindowPoints(CWnd* to, LPPOINT pts, UINT count) const {
    ::MapWindowPoints(m_hWnd, to ? to->m_hWnd : nullptr, pts, count);
}
void CWnd::MapWindowPoints(CWnd* to, LPRECT rect) const {
    ::MapWindowPoints(m_hWnd, to ? to->m_hWnd : nullptr, reinterpret_cast<POINT*>(rect), 2);
}
BOOL CWnd::GetWindowPlacement(WINDOWPLACEMENT* wp) const { return ::GetWindowPlacement(m_hWnd, wp); }
CWnd* CWnd::GetParent() const { return FromHandle(::GetParent(m_hWnd)); }
CWnd* CWnd::SetParent(CWnd* newParent) { return FromHandle(::SetParent(m_hWnd, newParent ? newParent->m_hWnd : nullptr)); }
CWnd* CWnd::GetOwner() const { return m_hWndOwner ? FromHandle(m_hWndOwner) : GetParent(); }
CWnd* CWnd::GetDlgItem(int id) const { return FromHandle(::GetDlgItem(m_hWnd, id)); }
void CWnd::GetDlgItem(int id, HWND* out) const {
    if (out) *out = ::GetDlgItem(m_hWnd, id);
}
int CWnd::GetDlgCtrlID() const { return ::GetDlgCtrlID(m_hWnd); }
int CWnd::SetDlgCtrlID(int id) { return static_cast<int>(::SetWindowLongPtrA(m_hWnd, GWL_ID, id)); }
CWnd* CWnd::GetWindow(UINT cmd) const { return FromHandle(::GetWindow(m_hWnd, cmd)); }
CWnd* CWnd::GetTopWindow() const { return FromHandle(::GetTopWindow(m_hWnd)); }
CWnd* CWnd::GetTopLevelParent() const { return FromHandle(::GetAncestor(m_hWnd, GA_ROOT)); }
CWnd* CWnd::ChildWindowFromPoint(POINT pt) const { return FromHandle(::ChildWindowFromPoint(m_hWnd, pt)); }
CWnd* CWnd::ChildWindowFromPoint(POINT pt, UINT flags) const {
    return FromHandle(::ChildWindowFromPointEx(m_hWnd, pt, flags));
}
CWnd* CWnd::WindowFromPoint(POINT pt) { return FromHandle(::WindowFromPoint(pt)); }
CWnd* CWnd::GetDesktopWindow() { return FromHandle(::GetDesktopWindow()); }
BOOL CWnd::IsChild(const CWnd* wnd) const { return wnd && ::IsChild(m_hWnd, wnd->m_hWnd); }

void CWnd::SetWindowText(LPCSTR text) { ::SetWindowTextA(m_hWnd, text); }
int CWnd::GetWindowText(LPSTR buffer, int size) const { return ::GetWindowTextA(m_hWnd, buffer, size); }
void CWnd::GetWindowText(CString& text) const {
    int n = ::GetWindowTextLengthA(m_hWnd);
    std::string buf(static_cast<size_t>(n) + 1, '\0');
    int got = ::GetWindowTextA(m_hWnd, buf.data(), n + 1);
    text = CString(buf.data(), got);
}
int CWnd::GetWindowTextLength() const { return ::GetWindowTextLengthA(m_hWnd); }
DWORD CWnd::GetStyle() const { return static_cast<DWORD>(::GetWindowLongPtrA(m_hWnd, GWL_STYLE)); }
DWORD CWnd::GetExStyle() const { return static_cast<DWORD>(::GetWindowLongPtrA(m_hWnd, GWL_EXSTYLE)); }

BOOL CWnd::ModifyStyle(HWND hwnd, DWORD remove, DWORD add, UINT flags) {
    if (!::IsWindow(hwnd)) return FALSE;
    DWORD style = static_cast<DWORD>(::GetWindowLongPtrA(hwnd, GWL_STYLE));
    DWORD next = (style & ~remove) | add;
    if (style == next) return FALSE;
    ::SetWindowLongPtrA(hwnd, GWL_STYLE, static_cast<LONG_PTR>(next));
    if (flags) ::SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    return TRUE;
}
BOOL CWnd::ModifyStyleEx(HWND hwnd, DWORD remove, DWORD add, UINT flags) {
    if (!::IsWindow(hwnd)) return FALSE;
    DWORD style = static_cast<DWORD>(::GetWindowLongPtrA(hwnd, GWL_EXSTYLE));
    DWORD next = (style & ~remove) | add;
    if (style == next) return FALSE;
    ::SetWindowLongPtrA(hwnd, GWL_EXSTYLE, static_cast<LONG_PTR>(next));
    if (flags) ::SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | flags);
    return TRUE;
}
BOOL CWnd::ModifyStyle(DWORD remove, DWORD add, UINT flags) { return ModifyStyle(m_hWnd, remove, add, flags); }
BOOL CWnd::ModifyStyleEx(DWORD remove, DWORD add, UINT flags) { return ModifyStyleEx(m_hWnd, remove, add, flags); }

// Painting -------------------------------------------------------------------------------------
void CWnd::Invalidate(BOOL erase) { ::InvalidateRect(m_hWnd, nullptr, erase); }
void CWnd::InvalidateRect(LPCRECT rect, BOOL erase) { ::InvalidateRect(m_hWnd, rect, erase); }
void CWnd::ValidateRect(LPCRECT rect) { ::ValidateRect(m_hWnd, rect); }
void CWnd::UpdateWindow() { ::UpdateWindow(m_hWnd); }
BOOL CWnd::RedrawWindow(LPCRECT rect, CRgn* region, UINT flags) {
    return ::RedrawWindow(m_hWnd, rect, region ? static_cast<HRGN>(*region) : nullptr, flags);
}
BOOL CWnd::GetUpdateRect(LPRECT rect, BOOL erase) { return ::GetUpdateRect(m_hWnd, rect, erase); }
void CWnd::ScrollWindow(int dx, int dy, LPCRECT scroll, LPCRECT clip) { ::ScrollWindow(m_hWnd, dx, dy, scroll, clip); }
void CWnd::SetRedraw(BOOL redraw) { SendMessage(WM_SETREDRAW, redraw, 0); }
CWnd* CWnd::CtlColorWindow(LPARAM lp) {
    auto* c = reinterpret_cast<const AFX_CTLCOLOR*>(lp);
    return c ? FromHandle(c->hWnd) : nullptr;
}
UINT CWnd::CtlColorKind(LPARAM lp) {
    auto* c = reinterpret_cast<const AFX_CTLCOLOR*>(lp);
    return c ? c->nCtlType : 0;
}

// Scroll bars ----------------------------------------------------------------------------------
int CWnd::GetScrollPos(int bar) const { return ::GetScrollPos(m_hWnd, bar); }
int CWnd::SetScrollPos(int bar, int pos, BOOL redraw) { return ::SetScrollPos(m_hWnd, bar, pos, redraw); }
void CWnd::GetScrollRange(int bar, int* minPos, int* maxPos) const { ::GetScrollRange(m_hWnd, bar, minPos, maxPos); }
void CWnd::SetScrollRange(int bar, int minPos, int maxPos, BOOL redraw) { ::SetScrollRange(m_hWnd, bar, minPos, maxPos, redraw); }
BOOL CWnd::SetScrollInfo(int bar, LPSCROLLINFO info, BOOL redraw) {
    if (!info) return FALSE;
    ::SetScrollInfo(m_hWnd, bar, info, redraw);
    return TRUE;
}
BOOL CWnd::GetScrollInfo(int bar, LPSCROLLINFO info, UINT mask) {
    if (!info) return FALSE;
    info->fMask = mask;
    return ::GetScrollInfo(m_hWnd, bar, info);
}
int CWnd::GetScrollLimit(int bar) {
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE, 0, 0, 0, 0, 0};
    if (!::GetScrollInfo(m_hWnd, bar, &si)) return 0;
    return si.nMax - std::max<int>(static_cast<int>(si.nPage) - 1, 0);
}
void CWnd::ShowScrollBar(UINT bar, BOOL show) { ::ShowScrollBar(m_hWnd, static_cast<int>(bar), show); }
void CWnd::EnableScrollBarCtrl(int bar, BOOL enable) {
    ::EnableScrollBar(m_hWnd, static_cast<UINT>(bar), enable ? ESB_ENABLE_BOTH : ESB_DISABLE_BOTH);
    if (enable) ::ShowScrollBar(m_hWnd, bar, TRUE);
}
BOOL CWnd::EnableScrollBar(int bar, UINT arrows) { return ::EnableScrollBar(m_hWnd, static_cast<UINT>(bar), arrows); }

// Input ----------------------------------------------------------------------------------------
CWnd* CWnd::SetCapture() { return FromHandle(::SetCapture(m_hWnd)); }
CWnd* CWnd::GetCapture() { return FromHandle(::GetCapture()); }
CWnd* CWnd::SetFocus() { return FromHandle(::SetFocus(m_hWnd)); }
CWnd* CWnd::GetFocus() { return FromHandle(::GetFocus()); }
CWnd* CWnd::SetActiveWindow() { return FromHandle(::SetActiveWindow(m_hWnd)); }
CWnd* CWnd::GetActiveWindow() { return FromHandle(::GetActiveWindow()); }
BOOL CWnd::SetForegroundWindow() { return ::SetForegroundWindow(m_hWnd); }
UINT_PTR CWnd::SetTimer(UINT_PTR id, UINT elapseMs, TIMERPROC proc) { return ::SetTimer(m_hWnd, id, elapseMs, proc); }
BOOL CWnd::KillTimer(UINT_PTR id) { return ::KillTimer(m_hWnd, id); }

namespace {
int g_waitDepth = 0;
HCURSOR g_beforeWait = nullptr;
}  // namespace
void CWnd::BeginWaitCursor() {
    if (g_waitDepth++ == 0) g_beforeWait = ::SetCursor(::LoadCursorA(nullptr, IDC_WAIT));
}
void CWnd::EndWaitCursor() {
    if (g_waitDepth > 0 && --g_waitDepth == 0) ::SetCursor(g_beforeWait ? g_beforeWait : ::LoadCursorA(nullptr, IDC_ARROW));
}
void CWnd::RestoreWaitCursor() {
    if (g_waitDepth > 0) ::SetCursor(::LoadCursorA(nullptr, IDC_WAIT));
}

void CWnd::CenterWindow(CWnd* alternateOwner) {
    RECT me, around;
    GetWindowRect(&me);
    HWND other = alternateOwner ? alternateOwner->m_hWnd : ::GetParent(m_hWnd);
    if (!other) other = ::GetDesktopWindow();
    ::GetWindowRect(other, &around);
    int w = me.right - me.left, h = me.bottom - me.top;
    POINT p{(around.left + around.right - w) / 2, (around.top + around.bottom - h) / 2};
    if (GetStyle() & WS_CHILD) ::ScreenToClient(::GetParent(m_hWnd), &p);
    ::SetWindowPos(m_hWnd, nullptr, p.x, p.y, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// Modal loops ------------------------------------------------------------------------------------
int CWnd::RunModalLoop(DWORD) {
    m_nFlags |= WF_CONTINUEMODAL | WF_MODALLOOP;
    HWND self = m_hWnd;
    bool hooked = false;
    while (ContinueModal()) {
        MSG m;
        if (::PeekMessageA(&m, nullptr, 0, 0, PM_REMOVE)) {
            if (m.message == WM_QUIT) {
                ::PostQuitMessage(static_cast<int>(m.wParam));
                break;
            }
            if (!orlex::PreTranslate(&m)) {
                ::TranslateMessage(&m);
                ::DispatchMessageA(&m);
            }
            if (!::IsWindow(self)) break;
            continue;
        }
        if (!hooked) {
            // The loop is idle for the first time: a scripted test acts now.
            hooked = true;
            if (g_modalHook) {
                g_modalHook(this);
                continue;
            }
        }
        if (orlex::IsHeadless()) {
            // Nobody can answer: the loop ends as if cancelled.
            EndModalLoop(IDCANCEL);
            break;
        }
        if (!::GetMessageA(&m, nullptr, 0, 0)) {
            ::PostQuitMessage(static_cast<int>(m.wParam));
            break;
        }
        if (!orlex::PreTranslate(&m)) {
            ::TranslateMessage(&m);
            ::DispatchMessageA(&m);
        }
        if (!::IsWindow(self)) break;
    }
    m_nFlags &= ~(WF_CONTINUEMODAL | WF_MODALLOOP);
    return m_nModalResult;
}

BOOL CWnd::ContinueModal() { return (m_nFlags & WF_CONTINUEMODAL) != 0; }

void CWnd::EndModalLoop(int result) {
    m_nModalResult = result;
    if (m_nFlags & WF_CONTINUEMODAL) {
        m_nFlags &= ~WF_CONTINUEMODAL;
        PostMessage(WM_NULL);
    }
}

// Default handlers: each runs the default handling of the message being handled ---------------------
int CWnd::OnCreate(LPCREATESTRUCT) { return static_cast<int>(Default()); }
void CWnd::OnDestroy() { Default(); }
void CWnd::OnNcDestroy() {
    Default();
    HWND h = m_hWnd;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(h);
        if (w && w->object == this) w->object = nullptr;
    }
    m_hWnd = nullptr;
    PostNcDestroy();  // may delete this
}
void CWnd::OnMove(int, int) { Default(); }
void CWnd::OnSize(UINT, int, int) { Default(); }
void CWnd::OnActivate(UINT, CWnd*, BOOL) { Default(); }
void CWnd::OnSetFocus(CWnd*) { Default(); }
void CWnd::OnKillFocus(CWnd*) { Default(); }
void CWnd::OnEnable(BOOL) { Default(); }
void CWnd::OnPaint() { Default(); }
void CWnd::OnClose() { Default(); }
BOOL CWnd::OnEraseBkgnd(CDC*) { return static_cast<BOOL>(Default()); }
void CWnd::OnSysColorChange() { Default(); }
void CWnd::OnShowWindow(BOOL, UINT) { Default(); }
void CWnd::OnSettingChange(UINT, LPCSTR) { Default(); }
BOOL CWnd::OnSetCursor(CWnd*, UINT, UINT) { return static_cast<BOOL>(Default()); }
int CWnd::OnMouseActivate(CWnd*, UINT, UINT) { return static_cast<int>(Default()); }
void CWnd::OnGetMinMaxInfo(MINMAXINFO*) { Default(); }
void CWnd::OnDrawItem(int, LPDRAWITEMSTRUCT) { Default(); }
void CWnd::OnMeasureItem(int, LPMEASUREITEMSTRUCT) { Default(); }
void CWnd::OnWindowPosChanged(WINDOWPOS*) { Default(); }
void CWnd::OnWindowPosChanging(WINDOWPOS*) { Default(); }
BOOL CWnd::OnHelpInfo(HELPINFO*) { return static_cast<BOOL>(Default()); }
void CWnd::OnContextMenu(CWnd*, CPoint) { Default(); }
LRESULT CWnd::OnNcHitTest(CPoint) { return Default(); }
UINT CWnd::OnGetDlgCode() { return static_cast<UINT>(Default()); }
void CWnd::OnKeyDown(UINT, UINT, UINT) { Default(); }
void CWnd::OnKeyUp(UINT, UINT, UINT) { Default(); }
void CWnd::OnChar(UINT, UINT, UINT) { Default(); }
void CWnd::OnSysKeyDown(UINT, UINT, UINT) { Default(); }
void CWnd::OnSysKeyUp(UINT, UINT, UINT) { Default(); }
void CWnd::OnSysChar(UINT, UINT, UINT) { Default(); }
void CWnd::OnTimer(UINT_PTR) { Default(); }
void CWnd::OnHScroll(UINT, UINT, CScrollBar*) { Default(); }
void CWnd::OnVScroll(UINT, UINT, CScrollBar*) { Default(); }
void CWnd::OnInitMenuPopup(CMenu*, UINT, BOOL) { Default(); }
void CWnd::OnMouseMove(UINT, CPoint) { Default(); }
void CWnd::OnLButtonDown(UINT, CPoint) { Default(); }
void CWnd::OnLButtonUp(UINT, CPoint) { Default(); }
void CWnd::OnLButtonDblClk(UINT, CPoint) { Default(); }
void CWnd::OnRButtonDown(UINT, CPoint) { Default(); }
void CWnd::OnRButtonUp(UINT, CPoint) { Default(); }
void CWnd::OnRButtonDblClk(UINT, CPoint) { Default(); }
void CWnd::OnMButtonDown(UINT, CPoint) { Default(); }
void CWnd::OnMButtonUp(UINT, CPoint) { Default(); }
void CWnd::OnMButtonDblClk(UINT, CPoint) { Default(); }
BOOL CWnd::OnMouseWheel(UINT, short, CPoint) { return static_cast<BOOL>(Default()); }
void CWnd::OnCaptureChanged(CWnd*) { Default(); }
void CWnd::OnMouseLeave() { Default(); }
void CWnd::OnMouseHover(UINT, CPoint) { Default(); }
void CWnd::OnNcMouseMove(UINT, CPoint) { Default(); }
void CWnd::OnNcLButtonDown(UINT, CPoint) { Default(); }

HBRUSH CWnd::OnCtlColor(CDC*, CWnd* wnd, UINT) {
    // The control answers first (reflection); otherwise the default colours.
    LRESULT r = 0;
    if (wnd && ReflectLastMsg(wnd->m_hWnd, &r) && r) return reinterpret_cast<HBRUSH>(r);
    return reinterpret_cast<HBRUSH>(Default());
}
