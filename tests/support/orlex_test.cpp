#include "support/orlex_test.h"

#include <QImage>
#include <QWidget>

#include <algorithm>
#include <climits>

#include "foundation/platform/gui/surface_p.h"
#include "foundation/platform/gui/wnd_p.h"
#include "foundation/platform/process.h"

namespace orlex::test {

namespace {

ULONGLONG Ticks() { return orlex::ClockMs(); }
void SleepAdvances(DWORD ms) { orlex::detail::SetManualTime(orlex::ClockMs() + ms); }

QPoint ToScreen(HWND hwnd, POINT client) {
    ::ClientToScreen(hwnd, &client);
    return QPoint(client.x, client.y);
}

orlex::detail::MouseButton Map(Button b) {
    switch (b) {
    case Button::Right: return orlex::detail::MouseButton::Right;
    case Button::Middle: return orlex::detail::MouseButton::Middle;
    default: return orlex::detail::MouseButton::Left;
    }
}

}  // namespace

void Init(ULONGLONG startMs) {
    orlex::EnsureApplication();
    orlex::detail::SetManualClock(true, startMs);
    orlex::SetTickSource(&Ticks);
    orlex::SetSleepHook(&SleepAdvances);
    {
        std::lock_guard<std::mutex> g(orlex::detail::Lock());
        auto& in = orlex::detail::Input();
        std::fill(std::begin(in.asyncKeys), std::end(in.asyncKeys), 0);
        std::fill(std::begin(in.syncKeys), std::end(in.syncKeys), 0);
        in.clipOn = false;
        in.lastDownMsg = 0;
        in.trackLeave = nullptr;
        in.trackHover = nullptr;
        in.losingFocus.clear();
        in.hover = nullptr;
        in.cursor = QPoint(0, 0);
    }
    ::ReleaseCapture();
    ::SetFocus(nullptr);
    orlex::SetModalLoopHook({});
    orlex::ModalScript::Reset();
    Pump();
}

int Pump() { return orlex::PumpPending(); }

ULONGLONG Now() { return orlex::ClockMs(); }

void AdvanceClock(ULONGLONG ms) {
    const ULONGLONG target = Now() + ms;
    const DWORD thread = ::GetCurrentThreadId();
    Pump();
    for (;;) {
        ULONGLONG due;
        {
            std::lock_guard<std::mutex> g(orlex::detail::Lock());
            due = orlex::detail::NextTimerDue(thread);
        }
        if (due == ULLONG_MAX || due > target) break;
        orlex::detail::SetManualTime(std::max(due, Now()));
        Pump();
    }
    orlex::detail::SetManualTime(target);
    Pump();
}

void MouseMove(HWND hwnd, POINT client) {
    orlex::detail::InjectMouseMove(ToScreen(hwnd, client));
    Pump();
}

void MouseDown(HWND hwnd, POINT client, Button b) {
    QPoint s = ToScreen(hwnd, client);
    orlex::detail::InjectMouseMove(s);
    orlex::detail::InjectMouseButton(Map(b), true, s);
    Pump();
}

void MouseUp(HWND hwnd, POINT client, Button b) {
    orlex::detail::InjectMouseButton(Map(b), false, ToScreen(hwnd, client));
    Pump();
}

void Click(HWND hwnd, POINT client, Button b) {
    MouseDown(hwnd, client, b);
    if (::IsWindow(hwnd)) MouseUp(hwnd, client, b);
}

void DoubleClick(HWND hwnd, POINT client, Button b) {
    Click(hwnd, client, b);
    orlex::detail::SetManualTime(Now() + 50);
    if (::IsWindow(hwnd)) Click(hwnd, client, b);
}

void Drag(HWND hwnd, POINT from, POINT to, int steps, Button b) {
    // Screen points are fixed at the start, so a window that moves under the pointer
    // does not change the path.
    QPoint s0 = ToScreen(hwnd, from), s1 = ToScreen(hwnd, to);
    orlex::detail::InjectMouseMove(s0);
    orlex::detail::InjectMouseButton(Map(b), true, s0);
    Pump();
    steps = std::max(1, steps);
    for (int i = 1; i <= steps; ++i) {
        QPoint p = s0 + (s1 - s0) * i / steps;
        orlex::detail::InjectMouseMove(p);
        Pump();
    }
    orlex::detail::InjectMouseButton(Map(b), false, s1);
    Pump();
}

void Wheel(HWND hwnd, POINT client, int delta) {
    QPoint s = ToScreen(hwnd, client);
    orlex::detail::InjectMouseMove(s);
    orlex::detail::InjectWheel(delta, s);
    Pump();
}

void KeyDown(int vk) {
    orlex::detail::InjectKey(vk, true);
    Pump();
}

void KeyUp(int vk) {
    orlex::detail::InjectKey(vk, false);
    Pump();
}

void Key(int vk) {
    KeyDown(vk);
    KeyUp(vk);
}

void TypeText(const char* text) {
    for (const char* p = text; p && *p; ++p) {
        auto ch = static_cast<BYTE>(*p);
        orlex::detail::KeyStroke k = orlex::detail::KeyForChar(ch);
        if (!k.vk) {
            orlex::detail::InjectChar(ch);
            Pump();
            continue;
        }
        if (k.shift) KeyDown(VK_SHIFT);
        Key(k.vk);
        if (k.shift) KeyUp(VK_SHIFT);
    }
}

COLORREF Pixel(HWND hwnd, POINT client) {
    orlex::detail::DrawTarget t;
    if (!orlex::detail::WindowDrawTarget(hwnd, true, t) || !t.image) return CLR_INVALID;
    QPoint p = t.origin + QPoint(client.x, client.y);
    if (!t.image->rect().contains(p)) return CLR_INVALID;
    QRgb c = t.image->pixel(p);
    return RGB(static_cast<BYTE>(qRed(c)), static_cast<BYTE>(qGreen(c)), static_cast<BYTE>(qBlue(c)));
}

std::vector<COLORREF> Pixels(HWND hwnd, const RECT& client) {
    std::vector<COLORREF> out;
    for (LONG y = client.top; y < client.bottom; ++y)
        for (LONG x = client.left; x < client.right; ++x) out.push_back(Pixel(hwnd, POINT{x, y}));
    return out;
}

bool SaveScreenshot(HWND hwnd, const std::string& path, const RECT* client) {
    orlex::detail::DrawTarget t;
    HWND top = client ? hwnd : ::GetAncestor(hwnd, GA_ROOT);
    if (!orlex::detail::WindowDrawTarget(top, client != nullptr, t) || !t.image) return false;
    QImage img = client ? t.image->copy(QRect(t.origin + QPoint(client->left, client->top),
                                              QSize(client->right - client->left, client->bottom - client->top)))
                        : t.image->copy();
    return img.save(QString::fromStdString(path), "PNG");
}

QWidget* PresenterOf(HWND topLevel) {
    std::lock_guard<std::mutex> g(orlex::detail::Lock());
    orlex::detail::WindowRec* w = orlex::detail::Find(topLevel);
    return w ? w->presenter : nullptr;
}

}  // namespace orlex::test
