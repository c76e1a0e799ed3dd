// The window table: classes, creation and destruction, hierarchy, geometry, styles, text.
#include <algorithm>
#include <cassert>
#include <cstring>
#include <map>

#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {

namespace {

// Non-client sizes; the drawing side reports the same through GetSystemMetrics.
constexpr int kBorder = 1;       // WS_BORDER
constexpr int kDlgFrame = 3;     // WS_DLGFRAME without caption
constexpr int kThickFrame = 4;   // WS_THICKFRAME
constexpr int kCaption = 20;     // caption bar height below the frame
constexpr int kClientEdge = 2;   // WS_EX_CLIENTEDGE
constexpr int kStaticEdge = 1;   // WS_EX_STATICEDGE
constexpr int kScrollBar = 17;   // window scroll bar thickness
constexpr QRect kScreen(0, 0, 1920, 1080);

struct Table {
    std::unordered_map<std::uintptr_t, std::unique_ptr<WindowRec>> windows;
    std::vector<HWND> topLevel;  // topmost first
    std::map<std::string, ClassRec> classes;  // by lower-case name
    std::uintptr_t next = 0x10000;
    HWND desktop = nullptr;
    int cascade = 0;
};

Table& T() {
    static Table t;
    return t;
}

std::string Lower(const char* s) {
    std::string r = s ? s : "";
    for (char& c : r) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return r;
}

HWND NewHandle() {
    auto h = reinterpret_cast<HWND>(T().next);
    T().next += 4;
    return h;
}

void EnsureDesktop() {
    if (T().desktop) return;
    auto w = std::make_unique<WindowRec>();
    w->hwnd = NewHandle();
    w->rect = kScreen;
    w->style = WS_VISIBLE;
    w->cls.name = "#32769";
    w->proc = DefWindowProcA;
    T().desktop = w->hwnd;
    T().windows[reinterpret_cast<std::uintptr_t>(w->hwnd)] = std::move(w);
}

std::vector<HWND>& SiblingList(WindowRec* w) {
    if (w->IsChild()) {
        WindowRec* p = Find(w->parent);
        assert(p);
        return p->children;
    }
    return T().topLevel;
}

void Unlink(WindowRec* w) {
    auto& list = SiblingList(w);
    list.erase(std::remove(list.begin(), list.end(), w->hwnd), list.end());
}

// Places w among its siblings: HWND_TOP, HWND_BOTTOM or below a sibling. Top-level windows
// without WS_EX_TOPMOST stay below the topmost ones.
void Relink(WindowRec* w, HWND after) {
    auto& list = SiblingList(w);
    list.erase(std::remove(list.begin(), list.end(), w->hwnd), list.end());
    auto pos = list.end();
    if (after == HWND_TOP || after == HWND_TOPMOST || after == HWND_NOTOPMOST) {
        pos = list.begin();
    } else if (after == HWND_BOTTOM) {
        pos = list.end();
    } else {
        auto it = std::find(list.begin(), list.end(), after);
        pos = it == list.end() ? list.begin() : it + 1;
    }
    if (!w->IsChild() && !(w->exStyle & WS_EX_TOPMOST)) {
        // skip past topmost windows
        auto firstNormal = std::find_if(list.begin(), list.end(), [](HWND h) {
            WindowRec* o = Find(h);
            return o && !(o->exStyle & WS_EX_TOPMOST);
        });
        if (pos < firstNormal) pos = firstNormal;
    }
    list.insert(pos, w->hwnd);
}

QPoint ClientOriginScreenLocked(WindowRec* w) {
    QMargins nc = NonClient(*w);
    QPoint p = w->rect.topLeft() + QPoint(nc.left(), nc.top());
    if (w->IsChild()) {
        if (WindowRec* parent = Find(w->parent)) p += ClientOriginScreenLocked(parent);
    }
    return p;
}

void CollectSubtree(WindowRec* w, std::vector<HWND>& out) {
    out.push_back(w->hwnd);
    for (HWND c : w->children)
        if (WindowRec* cw = Find(c)) CollectSubtree(cw, out);
}

HWND DeepestAt(WindowRec* w, QPoint clientPt) {
    for (HWND c : w->children) {
        WindowRec* cw = Find(c);
        if (!cw || !(cw->style & WS_VISIBLE)) continue;
        if (!cw->rect.contains(clientPt)) continue;
        QMargins nc = NonClient(*cw);
        QPoint inner = clientPt - cw->rect.topLeft() - QPoint(nc.left(), nc.top());
        QRect client(0, 0, cw->rect.width() - nc.left() - nc.right(), cw->rect.height() - nc.top() - nc.bottom());
        if (client.contains(inner)) return DeepestAt(cw, inner);
        return cw->hwnd;
    }
    return w->hwnd;
}

// Sends the messages of a size or position change and schedules the repaint.
LRESULT Send(HWND h, UINT m, WPARAM wp, LPARAM lp) { return SendMessageA(h, m, wp, lp); }

}  // namespace

// Lock and lookup ---------------------------------------------------------------------------------
std::mutex& Lock() {
    static std::mutex m;
    return m;
}

WindowRec* Find(HWND hwnd) {
    if (!hwnd) return nullptr;
    auto& ws = T().windows;
    auto it = ws.find(reinterpret_cast<std::uintptr_t>(hwnd));
    return it == ws.end() ? nullptr : it->second.get();
}

WindowRec* TopLevelOf(WindowRec* w) {
    while (w && w->IsChild()) w = Find(w->parent);
    return w;
}

QMargins NonClient(const WindowRec& w) {
    int edge = 0;
    if ((w.style & WS_CAPTION) == WS_CAPTION) {
        edge = (w.style & WS_THICKFRAME) ? kThickFrame : kDlgFrame;
    } else if (w.style & WS_THICKFRAME) {
        edge = kThickFrame;
    } else if (w.style & WS_DLGFRAME) {
        edge = kDlgFrame;
    } else if (w.style & WS_BORDER) {
        edge = kBorder;
    }
    if (w.exStyle & WS_EX_CLIENTEDGE) edge += kClientEdge;
    if (w.exStyle & WS_EX_STATICEDGE) edge += kStaticEdge;
    QMargins m(edge, edge, edge, edge);
    if ((w.style & WS_CAPTION) == WS_CAPTION) m.setTop(m.top() + kCaption);
    if ((w.style & WS_VSCROLL) || w.bars[SB_VERT].shown) m.setRight(m.right() + kScrollBar);
    if ((w.style & WS_HSCROLL) || w.bars[SB_HORZ].shown) m.setBottom(m.bottom() + kScrollBar);
    // A window too small for its frame has an empty client area, never a negative one.
    if (m.left() + m.right() > w.rect.width()) m.setRight(std::max(0, w.rect.width() - m.left()));
    if (m.top() + m.bottom() > w.rect.height()) m.setBottom(std::max(0, w.rect.height() - m.top()));
    return m;
}

QPoint ScreenOrigin(WindowRec* w) {
    WindowRec* top = TopLevelOf(w);
    return top ? top->rect.topLeft() : QPoint();
}

QRect WindowRectInTop(WindowRec* w) {
    if (!w->IsChild()) return QRect(QPoint(0, 0), w->rect.size());
    WindowRec* top = TopLevelOf(w);
    WindowRec* parent = Find(w->parent);
    QPoint parentClient = ClientOriginScreenLocked(parent) - top->rect.topLeft();
    return w->rect.translated(parentClient);
}

QRect ClientRectInTop(WindowRec* w) {
    QRect r = WindowRectInTop(w);
    return r.marginsRemoved(NonClient(*w));
}

bool VisibleChain(WindowRec* w) {
    for (WindowRec* p = w; p; p = p->IsChild() ? Find(p->parent) : nullptr)
        if (!(p->style & WS_VISIBLE)) return false;
    return w != nullptr;
}

std::vector<HWND> WindowsOfThread(DWORD thread) {
    std::vector<HWND> out;
    std::function<void(WindowRec*)> walk = [&](WindowRec* w) {
        if (w->thread == thread) out.push_back(w->hwnd);
        for (auto it = w->children.rbegin(); it != w->children.rend(); ++it)
            if (WindowRec* c = Find(*it)) walk(c);
    };
    for (auto it = T().topLevel.rbegin(); it != T().topLevel.rend(); ++it)
        if (WindowRec* w = Find(*it)) walk(w);
    return out;
}

std::vector<HWND> TopLevelWindows() { return T().topLevel; }

HWND WindowAtScreenPoint(QPoint screen) {
    for (HWND h : T().topLevel) {
        WindowRec* w = Find(h);
        if (!w || !(w->style & WS_VISIBLE) || !w->rect.contains(screen)) continue;
        QPoint client = screen - ClientOriginScreenLocked(w);
        QMargins nc = NonClient(*w);
        QRect clientRect(0, 0, w->rect.width() - nc.left() - nc.right(), w->rect.height() - nc.top() - nc.bottom());
        if (!clientRect.contains(client)) return h;
        return DeepestAt(w, client);
    }
    return nullptr;
}

}  // namespace orlex::detail

using namespace orlex::detail;

// Classes ---------------------------------------------------------------------------------------
ATOM RegisterClassA(const WNDCLASSA* wc) {
    if (!wc || !wc->lpszClassName || !*wc->lpszClassName) return 0;
    std::lock_guard<std::mutex> g(Lock());
    std::string key = Lower(wc->lpszClassName);
    if (T().classes.count(key)) return 0;
    ClassRec rec;
    rec.name = wc->lpszClassName;
    rec.wc = *wc;
    if (!rec.wc.lpfnWndProc) rec.wc.lpfnWndProc = DefWindowProcA;
    rec.wc.lpszClassName = nullptr;  // the copy keeps its own name
    rec.wc.lpszMenuName = nullptr;
    T().classes[key] = rec;
    return static_cast<ATOM>(0xC000 + T().classes.size());
}

BOOL AfxRegisterClass(WNDCLASSA* wc) {
    if (!wc || !wc->lpszClassName) return FALSE;
    WNDCLASSA existing{};
    if (GetClassInfoA(nullptr, wc->lpszClassName, &existing)) return TRUE;
    return RegisterClassA(wc) != 0;
}

BOOL GetClassInfoA(HINSTANCE, LPCSTR className, WNDCLASSA* wc) {
    if (!className || !wc) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    auto it = T().classes.find(Lower(className));
    if (it == T().classes.end()) return FALSE;
    *wc = it->second.wc;
    wc->lpszClassName = it->second.name.c_str();
    return TRUE;
}

LPCSTR AfxRegisterWndClass(UINT classStyle, HCURSOR cursor, HBRUSH background, HICON icon) {
    // One class per combination, named after it, as the framework does.
    static std::mutex m;
    static std::map<std::string, std::string> names;
    char buf[96];
    std::snprintf(buf, sizeof buf, "Afx:%x:%llx:%llx:%llx", classStyle,
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(cursor)),
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(background)),
                  static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(icon)));
    std::lock_guard<std::mutex> g(m);
    auto it = names.find(buf);
    if (it != names.end()) return it->second.c_str();
    WNDCLASSA wc{};
    wc.style = classStyle;
    wc.lpfnWndProc = DefWindowProcA;
    wc.hCursor = cursor;
    wc.hbrBackground = background;
    wc.hIcon = icon;
    wc.lpszClassName = buf;
    AfxRegisterClass(&wc);
    return names.emplace(buf, buf).first->second.c_str();
}

// Creation and destruction ------------------------------------------------------------------------
namespace orlex::detail {
// Set by CWnd::CreateEx so that the object sees its window's first messages.
thread_local CWnd* t_creating = nullptr;
LRESULT AfxWndProcBase(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
}  // namespace orlex::detail

HWND CreateWindowExA(DWORD exStyle, LPCSTR className, LPCSTR windowName, DWORD style, int x, int y, int width,
                     int height, HWND parent, HMENU menuOrId, HINSTANCE inst, LPVOID param) {
    HWND hwnd = nullptr;
    CWnd* object = t_creating;
    {
        std::lock_guard<std::mutex> g(Lock());
        EnsureDesktop();
        std::string key = Lower(className ? (OrlexIsIntResource(className) ? "" : className) : "");
        auto cit = T().classes.find(key);
        if (cit == T().classes.end()) return nullptr;
        WindowRec* parentRec = nullptr;
        if (parent && parent != T().desktop) {
            parentRec = Find(parent);
            if (!parentRec) return nullptr;
        }
        if ((style & WS_CHILD) && !parentRec) return nullptr;

        auto w = std::make_unique<WindowRec>();
        w->hwnd = NewHandle();
        w->thread = CurrentThread();
        w->cls = cit->second;
        w->proc = object ? AfxWndProcBase : w->cls.wc.lpfnWndProc;
        w->superProc = w->cls.wc.lpfnWndProc;
        w->object = object;
        w->style = style;
        w->exStyle = exStyle;
        w->text = windowName ? windowName : "";
        if (style & WS_CHILD) {
            w->parent = parent;
            w->id = reinterpret_cast<UINT_PTR>(menuOrId);
        } else {
            if (parentRec) w->owner = TopLevelOf(parentRec)->hwnd;
            w->menu = menuOrId;
            if (x == CW_USEDEFAULT) {
                x = y = 40 + 24 * (T().cascade++ % 10);
            }
        }
        if (width == CW_USEDEFAULT) { width = 480; height = 360; }
        w->rect = QRect(x, y, std::max(0, width), std::max(0, height));
        hwnd = w->hwnd;
        t_creating = nullptr;  // attached: the creator can tell
        WindowRec* raw = w.get();
        T().windows[reinterpret_cast<std::uintptr_t>(hwnd)] = std::move(w);
        if (raw->IsChild()) parentRec->children.push_back(hwnd);  // new children go to the bottom
        else Relink(raw, HWND_TOP);
        if (!raw->IsChild()) EnsureSurface(raw);
    }
    if (object) object->m_hWnd = hwnd;

    CREATESTRUCTA cs{param, inst, menuOrId, parent, height, width, y, x, static_cast<LONG>(style), windowName,
                     className, exStyle};
    if (!Send(hwnd, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&cs))) {
        DestroyWindow(hwnd);
        return nullptr;
    }
    if (Send(hwnd, WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs)) == -1) {
        DestroyWindow(hwnd);
        return nullptr;
    }
    RECT rc;
    if (!IsWindow(hwnd)) return nullptr;
    GetClientRect(hwnd, &rc);
    {
        std::lock_guard<std::mutex> g(Lock());
        if (WindowRec* w = Find(hwnd)) w->created = true;
    }
    Send(hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(static_cast<WORD>(rc.right), static_cast<WORD>(rc.bottom)));
    POINT org{0, 0};
    ClientToScreen(hwnd, &org);
    if (style & WS_CHILD) ScreenToClient(parent, &org);
    Send(hwnd, WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(org.x), static_cast<WORD>(org.y)));
    if ((style & WS_CHILD) && !(exStyle & WS_EX_NOPARENTNOTIFY) && IsWindow(parent))
        Send(parent, WM_PARENTNOTIFY, MAKEWPARAM(WM_CREATE, static_cast<WORD>(reinterpret_cast<UINT_PTR>(menuOrId))),
             reinterpret_cast<LPARAM>(hwnd));
    if ((style & WS_VISIBLE) && IsWindow(hwnd)) {
        Send(hwnd, WM_SHOWWINDOW, TRUE, 0);
        RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
        SyncPresenter(hwnd);
        if (!(style & WS_CHILD) && !(exStyle & WS_EX_TOOLWINDOW)) SetActiveWindow(hwnd);
    }
    return IsWindow(hwnd) ? hwnd : nullptr;
}

namespace {

void SendDestroyTree(HWND h) {
    SendMessageA(h, WM_DESTROY, 0, 0);
    std::vector<HWND> kids;
    {
        std::lock_guard<std::mutex> g(Lock());
        if (WindowRec* w = Find(h)) kids = w->children;
    }
    for (HWND c : kids)
        if (IsWindow(c)) SendDestroyTree(c);
}

void FreeTree(HWND h) {
    std::vector<HWND> kids;
    {
        std::lock_guard<std::mutex> g(Lock());
        if (WindowRec* w = Find(h)) kids = w->children;
    }
    for (HWND c : kids) FreeTree(c);
    SendMessageA(h, WM_NCDESTROY, 0, 0);
    std::unique_ptr<WindowRec> gone;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(h);
        if (!w) return;
        if (w->object && w->object->m_hWnd == h) w->object->m_hWnd = nullptr;
        Unlink(w);
        auto it = T().windows.find(reinterpret_cast<std::uintptr_t>(h));
        gone = std::move(it->second);
        T().windows.erase(it);
    }
    DestroyPresenter(gone.get());
    KillTimersOf(h);
}

}  // namespace

BOOL DestroyWindow(HWND hwnd) {
    std::vector<HWND> subtree, owned;
    HWND parent = nullptr, activateAfter = nullptr;
    QRect oldRect;
    bool wasVisibleChild = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || w->destroying || hwnd == T().desktop) return FALSE;
        CollectSubtree(w, subtree);
        for (HWND s : subtree) Find(s)->destroying = true;
        for (auto& [k, o] : T().windows)
            if (o->owner == hwnd && !o->destroying) owned.push_back(o->hwnd);
        wasVisibleChild = w->IsChild() && (w->style & WS_VISIBLE);
        parent = w->parent;
        if (!w->IsChild() && Input().active == hwnd) activateAfter = w->owner;
        oldRect = w->rect;
    }
    // Tooltip controls of the windows go before the windows (and their owned windows).
    for (HWND s : subtree) ForgetToolTipsOf(s);
    for (HWND o : owned) DestroyWindow(o);
    // Input leaves the windows before they hear of their end.
    DropFocusOf(subtree);
    HWND cap = GetCapture();
    if (cap && std::find(subtree.begin(), subtree.end(), cap) != subtree.end()) ReleaseCapture();
    if (wasVisibleChild && IsWindow(parent)) {
        RECT r{oldRect.left(), oldRect.top(), oldRect.right() + 1, oldRect.bottom() + 1};
        InvalidateRect(parent, &r, TRUE);
    }
    SendDestroyTree(hwnd);
    FreeTree(hwnd);
    {
        std::lock_guard<std::mutex> g(Lock());
        for (HWND s : subtree) ForgetInputOf(s);
    }
    // The owner of an active window that goes becomes active again (a dialog's owner).
    if (activateAfter && IsWindow(activateAfter)) SetActiveWindow(activateAfter);
    return TRUE;
}

BOOL IsWindow(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    return Find(hwnd) != nullptr;
}

BOOL IsChild(HWND parent, HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    while (w && w->IsChild()) {
        if (w->parent == parent) return TRUE;
        w = Find(w->parent);
    }
    return FALSE;
}

HWND GetParent(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return nullptr;
    if (w->IsChild()) return w->parent;
    return (w->style & WS_POPUP) ? w->owner : nullptr;
}

HWND GetAncestor(HWND hwnd, UINT flags) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return nullptr;
    if (flags == GA_PARENT) return w->IsChild() ? w->parent : T().desktop;
    WindowRec* top = TopLevelOf(w);
    if (flags == GA_ROOTOWNER)
        while (top && top->owner) top = Find(top->owner);
    return top ? top->hwnd : nullptr;
}

HWND SetParent(HWND child, HWND newParent) {
    HWND old = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(child);
        WindowRec* p = Find(newParent);
        if (!w || !w->IsChild() || !p) return nullptr;
        for (WindowRec* a = p; a; a = a->IsChild() ? Find(a->parent) : nullptr)
            if (a == w) return nullptr;  // a window can't become its own descendant
        old = w->parent;
        Unlink(w);
        w->parent = newParent;
        p->children.insert(p->children.begin(), child);
        w->thread = p->thread;
    }
    InvalidateRect(old, nullptr, TRUE);
    InvalidateRect(child, nullptr, TRUE);
    return old;
}

HWND GetWindow(HWND hwnd, UINT cmd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return nullptr;
    if (cmd == GW_CHILD) return w->children.empty() ? nullptr : w->children.front();
    if (cmd == GW_OWNER) return w->IsChild() ? nullptr : w->owner;
    const auto& list = SiblingList(w);
    auto it = std::find(list.begin(), list.end(), hwnd);
    if (it == list.end()) return nullptr;
    switch (cmd) {
    case GW_HWNDFIRST: return list.front();
    case GW_HWNDLAST: return list.back();
    case GW_HWNDNEXT: return it + 1 == list.end() ? nullptr : *(it + 1);
    case GW_HWNDPREV: return it == list.begin() ? nullptr : *(it - 1);
    default: return nullptr;
    }
}

HWND GetTopWindow(HWND hwnd) {
    if (!hwnd) {
        std::lock_guard<std::mutex> g(Lock());
        return T().topLevel.empty() ? nullptr : T().topLevel.front();
    }
    return GetWindow(hwnd, GW_CHILD);
}

HWND GetDlgItem(HWND parent, int id) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(parent);
    if (!w) return nullptr;
    for (HWND c : w->children) {
        WindowRec* cw = Find(c);
        if (cw && static_cast<int>(cw->id) == id) return c;
    }
    return nullptr;
}

int GetDlgCtrlID(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    return (w && w->IsChild()) ? static_cast<int>(w->id) : 0;
}

HWND GetDesktopWindow() {
    std::lock_guard<std::mutex> g(Lock());
    EnsureDesktop();
    return T().desktop;
}

// Geometry -----------------------------------------------------------------------------------------
BOOL GetClientRect(HWND hwnd, RECT* rect) {
    if (!rect) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    QMargins nc = NonClient(*w);
    *rect = RECT{0, 0, std::max(0, w->rect.width() - nc.left() - nc.right()),
                 std::max(0, w->rect.height() - nc.top() - nc.bottom())};
    return TRUE;
}

BOOL GetWindowRect(HWND hwnd, RECT* rect) {
    if (!rect) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    QPoint o = w->rect.topLeft();
    if (w->IsChild()) o += ClientOriginScreenLocked(Find(w->parent));
    *rect = RECT{o.x(), o.y(), o.x() + w->rect.width(), o.y() + w->rect.height()};
    return TRUE;
}

BOOL ClientToScreen(HWND hwnd, POINT* pt) {
    if (!pt) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    QPoint o = ClientOriginScreenLocked(w);
    pt->x += o.x();
    pt->y += o.y();
    return TRUE;
}

BOOL ScreenToClient(HWND hwnd, POINT* pt) {
    if (!pt) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    QPoint o = ClientOriginScreenLocked(w);
    pt->x -= o.x();
    pt->y -= o.y();
    return TRUE;
}

int MapWindowPoints(HWND from, HWND to, POINT* pts, UINT count) {
    QPoint d;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* f = Find(from);
        WindowRec* t = Find(to);
        if ((from && !f) || (to && !t)) return 0;
        if (f) d += ClientOriginScreenLocked(f);
        if (t) d -= ClientOriginScreenLocked(t);
    }
    for (UINT i = 0; pts && i < count; ++i) {
        pts[i].x += d.x();
        pts[i].y += d.y();
    }
    return MAKELONG(static_cast<WORD>(d.x()), static_cast<WORD>(d.y()));
}

HWND WindowFromPoint(POINT screenPt) {
    std::lock_guard<std::mutex> g(Lock());
    return WindowAtScreenPoint(QPoint(screenPt.x, screenPt.y));
}

HWND ChildWindowFromPointEx(HWND parent, POINT clientPt, UINT flags) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(parent);
    if (!w) return nullptr;
    QMargins nc = NonClient(*w);
    QRect client(0, 0, w->rect.width() - nc.left() - nc.right(), w->rect.height() - nc.top() - nc.bottom());
    if (!client.contains(clientPt.x, clientPt.y)) return nullptr;
    for (HWND c : w->children) {
        WindowRec* cw = Find(c);
        if (!cw) continue;
        if ((flags & CWP_SKIPINVISIBLE) && !(cw->style & WS_VISIBLE)) continue;
        if ((flags & CWP_SKIPDISABLED) && (cw->style & WS_DISABLED)) continue;
        if ((flags & CWP_SKIPTRANSPARENT) && (cw->exStyle & WS_EX_TRANSPARENT)) continue;
        if (cw->rect.contains(clientPt.x, clientPt.y)) return c;
    }
    return parent;
}

HWND ChildWindowFromPoint(HWND parent, POINT clientPt) { return ChildWindowFromPointEx(parent, clientPt, CWP_ALL); }

BOOL GetWindowPlacement(HWND hwnd, WINDOWPLACEMENT* wp) {
    if (!wp) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    wp->flags = 0;
    wp->showCmd = (w->style & WS_VISIBLE) ? SW_SHOWNORMAL : SW_HIDE;
    wp->ptMinPosition = POINT{-1, -1};
    wp->ptMaxPosition = POINT{-1, -1};
    wp->rcNormalPosition = RECT{w->rect.left(), w->rect.top(), w->rect.left() + w->rect.width(),
                                w->rect.top() + w->rect.height()};
    return TRUE;
}

BOOL SetWindowPos(HWND hwnd, HWND insertAfter, int x, int y, int cx, int cy, UINT flags) {
    WINDOWPOS pos{hwnd, insertAfter, x, y, cx, cy, flags};
    QRect old;
    bool child = false, wasVisible = false;
    HWND parent = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || hwnd == T().desktop) return FALSE;
        old = w->rect;
        if (flags & SWP_NOMOVE) { pos.x = old.x(); pos.y = old.y(); }
        if (flags & SWP_NOSIZE) { pos.cx = old.width(); pos.cy = old.height(); }
    }
    if (!(flags & SWP_NOSENDCHANGING)) SendMessageA(hwnd, WM_WINDOWPOSCHANGING, 0, reinterpret_cast<LPARAM>(&pos));
    bool moved = false, sized = false, zchanged = false, shown = false, hidden = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return FALSE;
        child = w->IsChild();
        parent = w->parent;
        wasVisible = (w->style & WS_VISIBLE) != 0;
        QRect nr(pos.x, pos.y, std::max(0, pos.cx), std::max(0, pos.cy));
        moved = nr.topLeft() != old.topLeft();
        sized = nr.size() != old.size();
        w->rect = nr;
        if (!(pos.flags & SWP_NOZORDER)) {
            HWND ia = pos.hwndInsertAfter;
            if (!child && ia == HWND_TOPMOST) w->exStyle |= WS_EX_TOPMOST;
            if (!child && ia == HWND_NOTOPMOST) w->exStyle &= ~WS_EX_TOPMOST;
            auto& list = SiblingList(w);
            auto before = list;
            Relink(w, ia);
            zchanged = before != list;
        }
        if ((pos.flags & SWP_SHOWWINDOW) && !wasVisible) { w->style |= WS_VISIBLE; shown = true; }
        if ((pos.flags & SWP_HIDEWINDOW) && wasVisible) { w->style &= ~WS_VISIBLE; hidden = true; }
        if (!child && sized) EnsureSurface(w);
    }
    pos.flags &= ~(SWP_NOMOVE | SWP_NOSIZE);
    if (!moved) pos.flags |= SWP_NOMOVE;
    if (!sized) pos.flags |= SWP_NOSIZE;
    SendMessageA(hwnd, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&pos));
    if (!(flags & SWP_NOREDRAW)) {
        if (child && (moved || sized || hidden) && (wasVisible)) {
            RECT r{old.left(), old.top(), old.left() + old.width(), old.top() + old.height()};
            InvalidateRect(parent, &r, TRUE);
        }
        if ((moved || sized || zchanged || shown || (flags & SWP_FRAMECHANGED)) && !hidden)
            RedrawWindow(hwnd, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
    }
    if (!child) SyncPresenter(hwnd);
    return TRUE;
}

BOOL MoveWindow(HWND hwnd, int x, int y, int width, int height, BOOL repaint) {
    return SetWindowPos(hwnd, nullptr, x, y, width, height,
                        SWP_NOZORDER | SWP_NOACTIVATE | (repaint ? 0 : SWP_NOREDRAW));
}

BOOL ShowWindow(HWND hwnd, int cmd) {
    bool was;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return FALSE;
        was = (w->style & WS_VISIBLE) != 0;
    }
    bool show = cmd != SW_HIDE;
    if (show == was) return was;
    SendMessageA(hwnd, WM_SHOWWINDOW, show, 0);
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0,
                 SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | (show ? SWP_SHOWWINDOW : SWP_HIDEWINDOW));
    const bool activate = show && cmd != SW_SHOWNA && cmd != SW_SHOWNOACTIVATE && cmd != SW_SHOWMINNOACTIVE &&
                          !(GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_CHILD) &&
                          !(GetWindowLongPtrA(hwnd, GWL_EXSTYLE) & WS_EX_TOOLWINDOW);
    if (activate) SetActiveWindow(hwnd);
    if (!show) {
        // A hidden window gives up the focus and the capture of itself and its children.
        HWND f = GetFocus();
        if (f && (f == hwnd || IsChild(hwnd, f))) {
            HWND p = GetParent(hwnd);
            SetFocus(p);
        }
    }
    return was;
}

BOOL IsWindowVisible(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    return VisibleChain(Find(hwnd));
}

BOOL EnableWindow(HWND hwnd, BOOL enable) {
    bool wasDisabled;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return FALSE;
        wasDisabled = (w->style & WS_DISABLED) != 0;
        if (wasDisabled == !enable) return wasDisabled;
        if (enable) w->style &= ~WS_DISABLED;
        else w->style |= WS_DISABLED;
    }
    if (!enable) {
        HWND f = GetFocus();
        if (f == hwnd) SetFocus(nullptr);
        if (GetCapture() == hwnd) ReleaseCapture();
    }
    SendMessageA(hwnd, WM_ENABLE, enable, 0);
    return wasDisabled;
}

BOOL IsWindowEnabled(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    return w && !(w->style & WS_DISABLED);
}

// Long values, class names, text ------------------------------------------------------------------
LONG_PTR GetWindowLongPtrA(HWND hwnd, int index) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return 0;
    switch (index) {
    case GWL_STYLE: return static_cast<LONG_PTR>(w->style);
    case GWL_EXSTYLE: return static_cast<LONG_PTR>(w->exStyle);
    case GWL_ID: return static_cast<LONG_PTR>(w->id);
    case GWLP_USERDATA: return w->userData;
    case GWLP_WNDPROC: return reinterpret_cast<LONG_PTR>(w->proc);
    case GWLP_HWNDPARENT: return reinterpret_cast<LONG_PTR>(w->IsChild() ? w->parent : w->owner);
    default: return 0;
    }
}

LONG_PTR SetWindowLongPtrA(HWND hwnd, int index, LONG_PTR value) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return 0;
    LONG_PTR old = 0;
    switch (index) {
    case GWL_STYLE: old = w->style; w->style = static_cast<DWORD>(value); break;
    case GWL_EXSTYLE: old = w->exStyle; w->exStyle = static_cast<DWORD>(value); break;
    case GWL_ID: old = static_cast<LONG_PTR>(w->id); w->id = static_cast<UINT_PTR>(value); break;
    case GWLP_USERDATA: old = w->userData; w->userData = value; break;
    case GWLP_WNDPROC:
        old = reinterpret_cast<LONG_PTR>(w->proc);
        if (value) w->proc = reinterpret_cast<WNDPROC>(value);
        break;
    default: break;
    }
    return old;
}

int GetClassNameA(HWND hwnd, LPSTR buffer, int size) {
    if (!buffer || size <= 0) return 0;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) { buffer[0] = 0; return 0; }
    int n = std::min<int>(size - 1, static_cast<int>(w->cls.name.size()));
    std::memcpy(buffer, w->cls.name.data(), n);
    buffer[n] = 0;
    return n;
}

BOOL SetWindowTextA(HWND hwnd, LPCSTR text) {
    if (!IsWindow(hwnd)) return FALSE;
    return SendMessageA(hwnd, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text ? text : "")) != 0;
}

int GetWindowTextA(HWND hwnd, LPSTR buffer, int size) {
    if (!buffer || size <= 0) return 0;
    buffer[0] = 0;
    if (!IsWindow(hwnd)) return 0;
    return static_cast<int>(SendMessageA(hwnd, WM_GETTEXT, static_cast<WPARAM>(size), reinterpret_cast<LPARAM>(buffer)));
}

int GetWindowTextLengthA(HWND hwnd) {
    return IsWindow(hwnd) ? static_cast<int>(SendMessageA(hwnd, WM_GETTEXTLENGTH, 0, 0)) : 0;
}

namespace orlex::detail {
// Default text handling (DefWindowProc): the table keeps the text.
LRESULT DefText(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return 0;
    switch (msg) {
    case WM_SETTEXT:
        w->text = lp ? reinterpret_cast<const char*>(lp) : "";
        return TRUE;
    case WM_GETTEXT: {
        auto* buf = reinterpret_cast<char*>(lp);
        int size = static_cast<int>(wp);
        if (!buf || size <= 0) return 0;
        int n = std::min<int>(size - 1, static_cast<int>(w->text.size()));
        std::memcpy(buf, w->text.data(), n);
        buf[n] = 0;
        return n;
    }
    case WM_GETTEXTLENGTH: return static_cast<LRESULT>(w->text.size());
    default: return 0;
    }
}
}  // namespace orlex::detail
