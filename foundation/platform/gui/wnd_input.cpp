// Input: capture, focus, key state, the pointer (position, clipping, shape, leave tracking)
// and the translation of raw input into the platform's mouse and keyboard messages.
#include <QGuiApplication>
#include <QImage>

#include <algorithm>
#include <climits>
#include <cstring>
#include <map>

#include "foundation/platform/gui/wnd_p.h"
#include "foundation/platform/resources.h"

namespace orlex::detail {

InputState& Input() {
    static InputState s;
    return s;
}

void UpdateSyncKeyState(const MSG& m) {
    auto& in = Input();
    auto setDown = [&](int vk, bool down) {
        BYTE& k = in.syncKeys[vk & 0xFF];
        if (down && !(k & 0x80)) k ^= 0x01;  // each press toggles
        k = static_cast<BYTE>(down ? (k | 0x80) : (k & ~0x80));
    };
    switch (m.message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN: setDown(static_cast<int>(m.wParam), true); break;
    case WM_KEYUP:
    case WM_SYSKEYUP: setDown(static_cast<int>(m.wParam), false); break;
    default:
        if ((m.message >= WM_MOUSEFIRST && m.message <= WM_MOUSELAST) ||
            (m.message >= WM_NCMOUSEMOVE && m.message <= WM_NCMBUTTONUP)) {
            // Buttons as the message was made: the async state when it was queued is not
            // kept per message, so the button transitions of the message decide.
            switch (m.message) {
            case WM_LBUTTONDOWN: case WM_LBUTTONDBLCLK: case WM_NCLBUTTONDOWN: setDown(VK_LBUTTON, true); break;
            case WM_LBUTTONUP: case WM_NCLBUTTONUP: setDown(VK_LBUTTON, false); break;
            case WM_RBUTTONDOWN: case WM_RBUTTONDBLCLK: case WM_NCRBUTTONDOWN: setDown(VK_RBUTTON, true); break;
            case WM_RBUTTONUP: case WM_NCRBUTTONUP: setDown(VK_RBUTTON, false); break;
            case WM_MBUTTONDOWN: case WM_MBUTTONDBLCLK: case WM_NCMBUTTONDOWN: setDown(VK_MBUTTON, true); break;
            case WM_MBUTTONUP: case WM_NCMBUTTONUP: setDown(VK_MBUTTON, false); break;
            default: break;
            }
        }
        break;
    }
}

void ForgetInputOf(HWND hwnd) {
    auto& in = Input();
    if (in.capture == hwnd) in.capture = nullptr;
    if (in.focus == hwnd) in.focus = nullptr;
    if (in.active == hwnd) in.active = nullptr;
    if (in.hover == hwnd) in.hover = nullptr;
    if (in.trackLeave == hwnd) in.trackLeave = nullptr;
    if (in.trackHover == hwnd) in.trackHover = nullptr;
    if (in.focusHeld == hwnd) in.focusHeld = nullptr;
    if (in.lastDownWnd == hwnd) in.lastDownWnd = nullptr;
}

namespace {

bool Down(const BYTE* keys, int vk) { return (keys[vk] & 0x80) != 0; }

WPARAM MouseKeyFlags(const BYTE* keys) {
    WPARAM f = 0;
    if (Down(keys, VK_LBUTTON)) f |= MK_LBUTTON;
    if (Down(keys, VK_RBUTTON)) f |= MK_RBUTTON;
    if (Down(keys, VK_SHIFT)) f |= MK_SHIFT;
    if (Down(keys, VK_CONTROL)) f |= MK_CONTROL;
    if (Down(keys, VK_MBUTTON)) f |= MK_MBUTTON;
    return f;
}

QPoint ClampToClip(QPoint p) {
    auto& in = Input();
    if (in.clipOn) {
        p.setX(std::clamp(p.x(), in.clip.left(), in.clip.right()));
        p.setY(std::clamp(p.y(), in.clip.top(), in.clip.bottom()));
    }
    return p;
}

LPARAM Pack(QPoint p) { return MAKELPARAM(static_cast<WORD>(p.x()), static_cast<WORD>(p.y())); }

// The platform's hover rectangle: 4 by 4 pixels about the pointer; its default hover time.
constexpr int kHoverHalf = 2;
constexpr UINT kHoverDefaultMs = 400;

// Starts the hover wait again at a pointer position (lock held).
void RestartHover(InputState& in, QPoint screen) {
    in.hoverRect = QRect(screen - QPoint(kHoverHalf, kHoverHalf), QSize(2 * kHoverHalf + 1, 2 * kHoverHalf + 1));
    in.hoverDue = orlex::ClockMs() + in.hoverMs;
}

// Mouse input reached `target` at a screen point: hover tracking ends when the pointer is
// over another window, and waits again when it left the hover rectangle (lock held).
void FollowHover(InputState& in, HWND target, QPoint screen) {
    if (!in.trackHover) return;
    if (target != in.trackHover) {
        in.trackHover = nullptr;
        return;
    }
    if (!in.hoverRect.contains(screen)) RestartHover(in, screen);
}

bool EnabledChain(HWND h) {
    for (WindowRec* w = Find(h); w; w = w->IsChild() ? Find(w->parent) : nullptr)
        if (w->style & WS_DISABLED) return false;
    return true;
}

// The message numbers of a button: down, up, double click, and their non-client forms.
struct ButtonMsgs {
    UINT down, up, dbl, ncDown, ncUp, ncDbl;
    int vk;
};
ButtonMsgs MsgsOf(MouseButton b) {
    switch (b) {
    case MouseButton::Right: return {WM_RBUTTONDOWN, WM_RBUTTONUP, WM_RBUTTONDBLCLK, WM_NCRBUTTONDOWN, WM_NCRBUTTONUP, 0x00A6, VK_RBUTTON};
    case MouseButton::Middle: return {WM_MBUTTONDOWN, WM_MBUTTONUP, WM_MBUTTONDBLCLK, WM_NCMBUTTONDOWN, WM_NCMBUTTONUP, 0x00A9, VK_MBUTTON};
    default: return {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_NCLBUTTONDOWN, WM_NCLBUTTONUP, WM_NCLBUTTONDBLCLK, VK_LBUTTON};
    }
}

// Delivers one mouse event: finds the receiver (capture, else the window under the point),
// asks its hit code, sends WM_SETCURSOR, ends mouse-leave tracking and posts the message.
// clientMsg is the client form; ncMsg the non-client one. dblMsg/ncDbl: the double-click
// forms, used when the press repeats the last one in time and place on a CS_DBLCLKS window.
void DeliverMouse(QPoint screen, UINT clientMsg, UINT ncMsg, UINT dblMsg, UINT ncDbl, bool isPress) {
    HWND target = nullptr, leaveTo = nullptr;
    bool captured = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        if (in.capture && Find(in.capture)) {
            target = in.capture;
            captured = true;
        } else {
            target = WindowAtScreenPoint(screen);
        }
        if (in.trackLeave && in.trackLeave != target) {
            leaveTo = in.trackLeave;
            in.trackLeave = nullptr;
        }
        FollowHover(in, target, screen);
        in.hover = target;
    }
    if (leaveTo) PostInput(leaveTo, WM_MOUSELEAVE, 0, 0, screen);
    if (!target) return;
    if (isPress && !captured) {
        // A press in an inactive top-level window activates it first.
        HWND top = GetAncestor(target, GA_ROOT);
        if (top && top != GetActiveWindow() && !(GetWindowLongPtrA(top, GWL_EXSTYLE) & WS_EX_TOOLWINDOW))
            SetActiveWindow(top);
        if (!IsWindow(target)) return;
    }
    LRESULT hit = HTCLIENT;
    if (!captured) {
        if (!IsWindowEnabled(target) || !EnabledChain(target)) {
            // A disabled window takes no input; the platform answers with a beep at most.
            return;
        }
        hit = SendMessageA(target, WM_NCHITTEST, 0, Pack(screen));
        if (hit == HTTRANSPARENT) {
            HWND parent = GetParent(target);
            if (!parent || !(GetWindowLongPtrA(target, GWL_STYLE) & WS_CHILD)) return;
            target = parent;
            hit = SendMessageA(target, WM_NCHITTEST, 0, Pack(screen));
        }
        if (!IsWindow(target)) return;
        {
            // The platform asks for the pointer shape while the mouse message is being
            // taken, so GetMessagePos and GetMessageTime already tell this event.
            std::lock_guard<std::mutex> g(Lock());
            WindowRec* w = Find(target);
            if (!w) return;
            ThreadQueue* q = QueueOf(w->thread);
            q->last.pt = POINT{screen.x(), screen.y()};
            q->last.time = static_cast<DWORD>(orlex::ClockMs());
        }
        SendMessageA(target, WM_SETCURSOR, reinterpret_cast<WPARAM>(target),
                     MAKELPARAM(static_cast<WORD>(static_cast<short>(hit)), static_cast<WORD>(clientMsg)));
        if (!IsWindow(target)) return;
    }
    const bool client = captured || hit == HTCLIENT;
    UINT msg = client ? clientMsg : ncMsg;
    WPARAM wp;
    LPARAM lp;
    QPoint clientPt = screen;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        WindowRec* w = Find(target);
        if (!w) return;
        if (client) {
            QMargins nc = NonClient(*w);
            QPoint org = w->rect.topLeft() + QPoint(nc.left(), nc.top());
            for (WindowRec* p = w->IsChild() ? Find(w->parent) : nullptr; p; p = p->IsChild() ? Find(p->parent) : nullptr) {
                QMargins pn = NonClient(*p);
                org += p->rect.topLeft() + QPoint(pn.left(), pn.top());
            }
            clientPt = screen - org;
        }
        if (isPress) {
            ULONGLONG now = orlex::ClockMs();
            QPoint d = screen - in.lastDownPt;
            bool repeat = in.lastDownMsg == msg && in.lastDownWnd == target &&
                          now - in.lastDownTime <= in.dblClickMs && std::abs(d.x()) <= 2 && std::abs(d.y()) <= 2;
            if (repeat && (w->cls.wc.style & CS_DBLCLKS) && (client ? dblMsg : ncDbl)) {
                msg = client ? dblMsg : ncDbl;
                in.lastDownMsg = 0;  // a third press starts again
            } else {
                in.lastDownMsg = msg;
                in.lastDownWnd = target;
                in.lastDownTime = now;
                in.lastDownPt = screen;
            }
        }
        wp = client ? MouseKeyFlags(in.asyncKeys) : static_cast<WPARAM>(hit);
        lp = client ? Pack(clientPt) : Pack(screen);
    }
    PostInput(target, msg, wp, lp, screen);
}

// Scan codes of the keys whose codes matter to handlers (bits 16-23 of the key lParam).
BYTE ScanCodeOf(int vk) {
    static const std::map<int, BYTE> codes = {
        {VK_ESCAPE, 0x01}, {VK_BACK, 0x0E}, {VK_TAB, 0x0F}, {VK_RETURN, 0x1C}, {VK_CONTROL, 0x1D},
        {VK_SHIFT, 0x2A}, {VK_MENU, 0x38}, {VK_SPACE, 0x39}, {VK_CAPITAL, 0x3A}, {VK_F1, 0x3B},
        {VK_F2, 0x3C}, {VK_HOME, 0x47}, {VK_UP, 0x48}, {VK_PRIOR, 0x49}, {VK_LEFT, 0x4B},
        {VK_RIGHT, 0x4D}, {VK_END, 0x4F}, {VK_DOWN, 0x50}, {VK_NEXT, 0x51}, {VK_INSERT, 0x52},
        {VK_DELETE, 0x53}};
    auto it = codes.find(vk);
    if (it != codes.end()) return it->second;
    static const char row[] = "QWERTYUIOP\0\0\0\0ASDFGHJKL\0\0\0\0\0ZXCVBNM";
    if (vk >= 'A' && vk <= 'Z')
        for (int i = 0; i < static_cast<int>(sizeof row); ++i)
            if (row[i] == vk) return static_cast<BYTE>(0x10 + i);
    if (vk >= '1' && vk <= '9') return static_cast<BYTE>(0x02 + vk - '1');
    if (vk == '0') return 0x0B;
    return 0;
}

bool IsExtendedKey(int vk) {
    return (vk >= VK_PRIOR && vk <= VK_DOWN) || vk == VK_INSERT || vk == VK_DELETE || vk == VK_RCONTROL ||
           vk == VK_RMENU || vk == VK_DIVIDE;
}

// Characters of the unshifted and shifted OEM keys and digits (US layout).
struct OemKey {
    int vk;
    char plain, shifted;
};
constexpr OemKey kOem[] = {{VK_OEM_1, ';', ':'},  {VK_OEM_PLUS, '=', '+'},   {VK_OEM_COMMA, ',', '<'},
                           {VK_OEM_MINUS, '-', '_'}, {VK_OEM_PERIOD, '.', '>'}, {VK_OEM_2, '/', '?'},
                           {VK_OEM_3, '`', '~'},  {VK_OEM_4, '[', '{'},     {VK_OEM_5, '\\', '|'},
                           {VK_OEM_6, ']', '}'},  {VK_OEM_7, '\'', '"'}};
constexpr char kShiftedDigits[] = ")!@#$%^&*(";

// The character a key types with the key state (0: none).
int CharOfKey(int vk, const BYTE* keys) {
    const bool shift = Down(keys, VK_SHIFT);
    const bool ctrl = Down(keys, VK_CONTROL);
    const bool caps = (keys[VK_CAPITAL] & 0x01) != 0;
    if (vk >= 'A' && vk <= 'Z') {
        if (ctrl) return vk - 'A' + 1;  // control characters, as the platform types them
        bool upper = shift != caps;
        return upper ? vk : vk + ('a' - 'A');
    }
    if (ctrl) {
        if (vk == VK_RETURN) return 0x0A;
        if (vk == VK_BACK) return 0x7F;
        if (vk == VK_OEM_4) return 0x1B;
        return 0;
    }
    if (vk >= '0' && vk <= '9') return shift ? kShiftedDigits[vk - '0'] : vk;
    if (vk >= VK_NUMPAD0 && vk <= VK_NUMPAD9) return '0' + (vk - VK_NUMPAD0);
    switch (vk) {
    case VK_SPACE: return ' ';
    case VK_RETURN: return '\r';
    case VK_BACK: return '\b';
    case VK_TAB: return '\t';
    case VK_ESCAPE: return 0x1B;
    case VK_MULTIPLY: return '*';
    case VK_ADD: return '+';
    case VK_SUBTRACT: return '-';
    case VK_DECIMAL: return '.';
    case VK_DIVIDE: return '/';
    default: break;
    }
    for (const OemKey& k : kOem)
        if (k.vk == vk) return shift ? k.shifted : k.plain;
    return 0;
}

// Pointer shapes: the standard ones are fixed handles; the library's own are loaded from
// resources once and kept.
struct CursorTable {
    std::map<std::uintptr_t, int> standard;  // handle -> IDC id
    std::map<std::pair<std::uintptr_t, WORD>, HCURSOR> loaded;
    std::map<std::uintptr_t, std::pair<QImage, QPoint>> images;
    std::uintptr_t next = 0x30000;
};
CursorTable& Cursors() {
    static CursorTable t;
    return t;
}

}  // namespace

KeyStroke KeyForChar(BYTE ch) {
    if (ch >= 'a' && ch <= 'z') return {ch - 'a' + 'A', false};
    if (ch >= 'A' && ch <= 'Z') return {ch, true};
    if (ch >= '0' && ch <= '9') return {ch, false};
    for (int i = 0; i < 10; ++i)
        if (kShiftedDigits[i] == ch) return {'0' + i, true};
    switch (ch) {
    case ' ': return {VK_SPACE, false};
    case '\r': case '\n': return {VK_RETURN, false};
    case '\t': return {VK_TAB, false};
    case '\b': return {VK_BACK, false};
    case 0x1B: return {VK_ESCAPE, false};
    default: break;
    }
    for (const OemKey& k : kOem) {
        if (k.plain == static_cast<char>(ch)) return {k.vk, false};
        if (k.shifted == static_cast<char>(ch)) return {k.vk, true};
    }
    return {};
}

void InjectMouseMove(QPoint screen) {
    {
        std::lock_guard<std::mutex> g(Lock());
        screen = ClampToClip(screen);
        Input().cursor = screen;
    }
    DeliverMouse(screen, WM_MOUSEMOVE, WM_NCMOUSEMOVE, 0, 0, false);
}

void InjectMouseButton(MouseButton button, bool down, QPoint screen) {
    ButtonMsgs m = MsgsOf(button);
    {
        std::lock_guard<std::mutex> g(Lock());
        screen = ClampToClip(screen);
        auto& in = Input();
        in.cursor = screen;
        BYTE& k = in.asyncKeys[m.vk];
        if (down && !(k & 0x80)) k ^= 0x01;
        k = static_cast<BYTE>(down ? (k | 0x80) : (k & ~0x80));
    }
    if (down) DeliverMouse(screen, m.down, m.ncDown, m.dbl, m.ncDbl, true);
    else DeliverMouse(screen, m.up, m.ncUp, 0, 0, false);
}

void InjectWheel(int delta, QPoint screen) {
    HWND target;
    WPARAM wp;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        screen = ClampToClip(screen);
        in.cursor = screen;
        // The wheel turns the window under the pointer (or the capture), not the focus.
        target = in.capture && Find(in.capture) ? in.capture : WindowAtScreenPoint(screen);
        wp = MAKEWPARAM(static_cast<WORD>(MouseKeyFlags(in.asyncKeys)), static_cast<WORD>(static_cast<short>(delta)));
    }
    if (target && IsWindowEnabled(target)) PostInput(target, WM_MOUSEWHEEL, wp, Pack(screen), screen);
}

void InjectKey(int vk, bool down) {
    HWND target;
    LPARAM lp;
    bool alt;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        vk &= 0xFF;
        BYTE& k = in.asyncKeys[vk];
        bool wasDown = (k & 0x80) != 0;
        if (down && !wasDown) k ^= 0x01;
        k = static_cast<BYTE>(down ? (k | 0x80) : (k & ~0x80));
        alt = Down(in.asyncKeys, VK_MENU);
        target = in.focus && Find(in.focus) ? in.focus : (in.active && Find(in.active) ? in.active : nullptr);
        DWORD bits = 1u | (static_cast<DWORD>(ScanCodeOf(vk)) << 16);
        if (IsExtendedKey(vk)) bits |= 1u << 24;
        if (alt) bits |= 1u << 29;
        if (wasDown) bits |= 1u << 30;
        if (!down) bits |= (1u << 30) | (1u << 31);
        lp = static_cast<LPARAM>(static_cast<LONG>(bits));
    }
    if (!target) {
        // Nobody hears the key, yet the key state follows it.
        std::lock_guard<std::mutex> g(Lock());
        UpdateSyncKeyState(MSG{nullptr, down ? WM_KEYDOWN : WM_KEYUP, static_cast<WPARAM>(vk), lp, 0, {}});
        return;
    }
    // With Alt held (and no Ctrl), keys are system keys, as on the platform.
    const bool sys = alt && !(GetAsyncKeyState(VK_CONTROL) & 0x8000);
    UINT msg = down ? (sys ? WM_SYSKEYDOWN : WM_KEYDOWN) : (sys ? WM_SYSKEYUP : WM_KEYUP);
    if (vk == VK_MENU) msg = down ? WM_SYSKEYDOWN : WM_SYSKEYUP;
    PostInput(target, msg, static_cast<WPARAM>(vk), lp, Input().cursor);
}

void InjectChar(BYTE ch) {
    HWND target;
    {
        std::lock_guard<std::mutex> g(Lock());
        target = Input().focus;
    }
    if (target) PostInput(target, WM_CHAR, ch, 1, Input().cursor);
}

int CursorShapeOf(HCURSOR h) {
    std::lock_guard<std::mutex> g(Lock());
    auto it = Cursors().standard.find(reinterpret_cast<std::uintptr_t>(h));
    return it == Cursors().standard.end() ? 0 : it->second;
}

// The image and hot spot of a pointer loaded from resources (false for standard shapes).
bool CursorImageOf(HCURSOR h, QImage* image, QPoint* hotSpot) {
    std::lock_guard<std::mutex> g(Lock());
    auto it = Cursors().images.find(reinterpret_cast<std::uintptr_t>(h));
    if (it == Cursors().images.end()) return false;
    *image = it->second.first;
    *hotSpot = it->second.second;
    return true;
}

ULONGLONG HoverDue(DWORD thread) {
    auto& in = Input();
    if (!in.trackHover) return ULLONG_MAX;
    WindowRec* w = Find(in.trackHover);
    return w && w->thread == thread ? in.hoverDue : ULLONG_MAX;
}

bool TakeDueHover(DWORD thread, ULONGLONG now, MSG* out, bool remove) {
    auto& in = Input();
    if (HoverDue(thread) > now) return false;
    WindowRec* w = Find(in.trackHover);
    if (!w) return false;
    const QPoint origin = ScreenOrigin(w) + ClientRectInTop(w).topLeft();
    *out = MSG{in.trackHover, WM_MOUSEHOVER, MouseKeyFlags(in.asyncKeys), Pack(in.cursor - origin),
               static_cast<DWORD>(now), POINT{in.cursor.x(), in.cursor.y()}};
    // One notice per request: the window asks again to hear of the next rest.
    if (remove) in.trackHover = nullptr;
    return true;
}

void DropFocusOf(const std::vector<HWND>& windows) {
    HWND held = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        auto among = [&](HWND h) { return h && std::find(windows.begin(), windows.end(), h) != windows.end(); };
        if (among(in.focus)) in.focus = nullptr;
        if (among(in.focusHeld)) {
            held = in.focusHeld;
            in.focusHeld = nullptr;
        }
    }
    if (held) SendMessageA(held, WM_KILLFOCUS, 0, 0);
}

void ApplyCursorToPresenters(HCURSOR h);  // surface side

}  // namespace orlex::detail

using namespace orlex::detail;

// Capture and focus ---------------------------------------------------------------------------
HWND SetCapture(HWND hwnd) {
    HWND old;
    {
        std::lock_guard<std::mutex> g(Lock());
        if (hwnd && !Find(hwnd)) return nullptr;
        old = Input().capture;
        Input().capture = hwnd;
    }
    if (old && old != hwnd && IsWindow(old)) SendMessageA(old, WM_CAPTURECHANGED, 0, reinterpret_cast<LPARAM>(hwnd));
    return old;
}

BOOL ReleaseCapture() {
    HWND old;
    {
        std::lock_guard<std::mutex> g(Lock());
        old = Input().capture;
        Input().capture = nullptr;
    }
    if (old && IsWindow(old)) SendMessageA(old, WM_CAPTURECHANGED, 0, 0);
    return TRUE;
}

HWND GetCapture() {
    std::lock_guard<std::mutex> g(Lock());
    return Input().capture;
}

HWND SetFocus(HWND hwnd) {
    HWND old, losing = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        if (hwnd && !Find(hwnd)) return nullptr;
        auto& in = Input();
        old = in.focus;
        if (old == hwnd) return old;
        in.focus = hwnd;
        if (WindowRec* w = Find(hwnd)) in.active = TopLevelOf(w)->hwnd;
        // Only the window that really holds the focus hears that it loses it, and not again
        // while it is still taking that news: a SetFocus from a WM_KILLFOCUS handler moves
        // the focus without sending the window a second WM_KILLFOCUS, and a window whose
        // WM_SETFOCUS is still to come never hears WM_KILLFOCUS.
        if (in.focusHeld && std::find(in.losingFocus.begin(), in.losingFocus.end(), in.focusHeld) == in.losingFocus.end())
            losing = in.focusHeld;
        in.focusHeld = nullptr;
        if (losing) in.losingFocus.push_back(losing);
    }
    if (losing) {
        if (IsWindow(losing)) SendMessageA(losing, WM_KILLFOCUS, reinterpret_cast<WPARAM>(hwnd), 0);
        std::lock_guard<std::mutex> g(Lock());
        auto& lf = Input().losingFocus;
        auto it = std::find(lf.begin(), lf.end(), losing);
        if (it != lf.end()) lf.erase(it);
    }
    // A handler of WM_KILLFOCUS may have moved the focus elsewhere; then that move stands.
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        if (!hwnd || in.focus != hwnd || in.focusHeld || !Find(hwnd)) return old;
        in.focusHeld = hwnd;
    }
    SendMessageA(hwnd, WM_SETFOCUS, reinterpret_cast<WPARAM>(old), 0);
    return old;
}

HWND GetFocus() {
    std::lock_guard<std::mutex> g(Lock());
    return Input().focus;
}

HWND GetActiveWindow() {
    std::lock_guard<std::mutex> g(Lock());
    return Input().active;
}

HWND SetActiveWindow(HWND hwnd) {
    HWND old;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return nullptr;
        hwnd = TopLevelOf(w)->hwnd;
        old = Input().active;
        if (old == hwnd) return old;
        Input().active = hwnd;
    }
    if (old && IsWindow(old)) SendMessageA(old, WM_ACTIVATE, WA_INACTIVE, reinterpret_cast<LPARAM>(hwnd));
    SendMessageA(hwnd, WM_ACTIVATE, WA_ACTIVE, reinterpret_cast<LPARAM>(old));
    return old;
}

HWND GetForegroundWindow() { return GetActiveWindow(); }
BOOL SetForegroundWindow(HWND hwnd) { return SetActiveWindow(hwnd) != nullptr || GetActiveWindow() == hwnd; }

// Keys and pointer ----------------------------------------------------------------------------
SHORT GetKeyState(int vk) {
    std::lock_guard<std::mutex> g(Lock());
    BYTE k = Input().syncKeys[vk & 0xFF];
    return static_cast<SHORT>(((k & 0x80) ? 0x8000 : 0) | (k & 0x01));
}

SHORT GetAsyncKeyState(int vk) {
    std::lock_guard<std::mutex> g(Lock());
    BYTE k = Input().asyncKeys[vk & 0xFF];
    return static_cast<SHORT>((k & 0x80) ? 0x8000 : 0);
}

BOOL GetCursorPos(POINT* pt) {
    if (!pt) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    pt->x = Input().cursor.x();
    pt->y = Input().cursor.y();
    return TRUE;
}

BOOL SetCursorPos(int x, int y) {
    // Moving the pointer is input like any other: the window under it hears WM_MOUSEMOVE.
    InjectMouseMove(QPoint(x, y));
    return TRUE;
}

BOOL ClipCursor(const RECT* rect) {
    QPoint moved;
    bool move = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        if (!rect) {
            in.clipOn = false;
            return TRUE;
        }
        in.clipOn = true;
        in.clip = QRect(QPoint(rect->left, rect->top), QPoint(rect->right - 1, rect->bottom - 1));
        moved = ClampToClip(in.cursor);
        move = moved != in.cursor;
    }
    if (move) InjectMouseMove(moved);
    return TRUE;
}

BOOL GetClipCursor(RECT* rect) {
    if (!rect) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    auto& in = Input();
    if (in.clipOn) *rect = RECT{in.clip.left(), in.clip.top(), in.clip.right() + 1, in.clip.bottom() + 1};
    else *rect = RECT{-32768, -32768, 32767, 32767};
    return TRUE;
}

HCURSOR LoadCursorA(HINSTANCE inst, LPCSTR name) {
    if (!name || !OrlexIsIntResource(name)) return nullptr;
    WORD id = static_cast<WORD>(reinterpret_cast<ULONG_PTR>(name));
    auto key = std::make_pair(reinterpret_cast<std::uintptr_t>(inst), id);
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& t = Cursors();
        auto it = t.loaded.find(key);
        if (it != t.loaded.end()) return it->second;
        if (!inst) {
            static const WORD known[] = {32512, 32513, 32514, 32515, 32516, 32642, 32643,
                                         32644, 32645, 32646, 32648, 32649, 32650, 32651};
            if (std::find(std::begin(known), std::end(known), id) == std::end(known)) return nullptr;
            auto h = reinterpret_cast<HCURSOR>(t.next);
            t.next += 4;
            t.standard[reinterpret_cast<std::uintptr_t>(h)] = id;
            t.loaded[key] = h;
            return h;
        }
    }
    // A pointer of a module: resource type CURSOR; its data is the hot spot (two 16-bit
    // little-endian words, x then y) followed by a PNG image.
    HRSRC res = FindResourceA(inst, name, RT_CURSOR);
    if (!res) return nullptr;
    DWORD size = SizeofResource(inst, res);
    auto* bytes = static_cast<const BYTE*>(LockResource(LoadResource(inst, res)));
    if (!bytes || size < 5) return nullptr;
    QPoint hot(bytes[0] | (bytes[1] << 8), bytes[2] | (bytes[3] << 8));
    QImage img = QImage::fromData(bytes + 4, static_cast<int>(size - 4), "PNG");
    if (img.isNull()) return nullptr;
    std::lock_guard<std::mutex> g(Lock());
    auto& t = Cursors();
    auto h = reinterpret_cast<HCURSOR>(t.next);
    t.next += 4;
    t.images[reinterpret_cast<std::uintptr_t>(h)] = {img, hot};
    t.loaded[key] = h;
    return h;
}

HCURSOR SetCursor(HCURSOR cursor) {
    HCURSOR old;
    {
        std::lock_guard<std::mutex> g(Lock());
        old = Input().cursorShape;
        Input().cursorShape = cursor;
    }
    if (old != cursor) ApplyCursorToPresenters(cursor);
    return old;
}

HCURSOR GetCursor() {
    std::lock_guard<std::mutex> g(Lock());
    return Input().cursorShape;
}

int ShowCursor(BOOL show) {
    static int count = 0;
    count += show ? 1 : -1;
    return count;
}

BOOL _TrackMouseEvent(TRACKMOUSEEVENT* tme) {
    if (!tme || tme->cbSize < sizeof(TRACKMOUSEEVENT)) return FALSE;
    HWND leaveNow = nullptr;
    ThreadQueue* wake = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        auto& in = Input();
        if (tme->dwFlags & TME_QUERY) {
            // What this thread's tracking is now (the platform answers for one window).
            const HWND w = in.trackLeave ? in.trackLeave : in.trackHover;
            tme->dwFlags = (in.trackLeave && in.trackLeave == w ? TME_LEAVE : 0) |
                           (in.trackHover && in.trackHover == w ? TME_HOVER : 0);
            tme->hwndTrack = w;
            tme->dwHoverTime = in.trackHover == w && w ? in.hoverMs : 0;
            return TRUE;
        }
        WindowRec* w = Find(tme->hwndTrack);
        if (!w) return FALSE;
        if (tme->dwFlags & TME_CANCEL) {
            if ((tme->dwFlags & TME_LEAVE) && in.trackLeave == tme->hwndTrack) in.trackLeave = nullptr;
            if ((tme->dwFlags & TME_HOVER) && in.trackHover == tme->hwndTrack) in.trackHover = nullptr;
            return TRUE;
        }
        const bool over = in.hover == tme->hwndTrack || in.capture == tme->hwndTrack;
        if (tme->dwFlags & TME_LEAVE) {
            // Asked while the pointer is already elsewhere: the leave comes at once.
            if (!over) leaveNow = tme->hwndTrack;
            else in.trackLeave = tme->hwndTrack;
        }
        if ((tme->dwFlags & TME_HOVER) && over) {
            // The wait starts now, about where the pointer is.
            in.trackHover = tme->hwndTrack;
            in.hoverMs = tme->dwHoverTime == HOVER_DEFAULT ? kHoverDefaultMs : tme->dwHoverTime;
            RestartHover(in, in.cursor);
            wake = QueueOf(w->thread);
        }
        if (wake) WakeThread(wake);
    }
    if (leaveNow) PostInput(leaveNow, WM_MOUSELEAVE, 0, 0, Input().cursor);
    return TRUE;
}

UINT GetDoubleClickTime() {
    std::lock_guard<std::mutex> g(Lock());
    return Input().dblClickMs;
}

BOOL SetDoubleClickTime(UINT ms) {
    std::lock_guard<std::mutex> g(Lock());
    Input().dblClickMs = ms ? ms : 500;
    return TRUE;
}

BOOL MessageBeep(UINT) { return TRUE; }

BOOL TranslateMessage(const MSG* msg) {
    if (!msg || (msg->message != WM_KEYDOWN && msg->message != WM_SYSKEYDOWN)) return FALSE;
    int ch;
    {
        std::lock_guard<std::mutex> g(Lock());
        ch = CharOfKey(static_cast<int>(msg->wParam), Input().syncKeys);
        if (!ch) return FALSE;
        WindowRec* w = Find(msg->hwnd);
        if (!w) return FALSE;
        // The character comes next, before anything queued after the key.
        ThreadQueue* q = QueueOf(w->thread);
        q->posted.push_front(MSG{msg->hwnd, msg->message == WM_KEYDOWN ? WM_CHAR : WM_SYSCHAR,
                                 static_cast<WPARAM>(ch), msg->lParam, msg->time, msg->pt});
    }
    return TRUE;
}
