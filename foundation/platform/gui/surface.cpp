// The window side of the virtual screen: update regions and painting order, the draw
// targets of windows, the frame (borders, edges, caption, scroll bars) and the toolkit
// widget that presents a top-level window's pixels.
#include <QApplication>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QThread>
#include <QWheelEvent>
#include <QWidget>

#include <algorithm>
#include <cassert>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/codepage.h"
#include "foundation/platform/gui/ctl_scroll_p.h"
#include "foundation/platform/gui/gdi_p.h"
#include "foundation/platform/gui/surface_p.h"
#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {

namespace {

constexpr int kScrollBar = 17;

QRect ClientRectOf(const WindowRec& w) {
    QMargins nc = NonClient(w);
    return QRect(0, 0, std::max(0, w.rect.width() - nc.left() - nc.right()),
                 std::max(0, w.rect.height() - nc.top() - nc.bottom()));
}

// The part of the window (whole = window rectangle, else client) that may be drawn, in
// top-level image coordinates, before its own children are taken out.
QRegion BaseVisible(WindowRec* w, bool whole) {
    QRegion r = whole ? QRegion(WindowRectInTop(w)) : QRegion(ClientRectInTop(w));
    if (w->IsChild()) {
        WindowRec* parent = Find(w->parent);
        r &= BaseVisible(parent, false);
        if (w->style & WS_CLIPSIBLINGS) {
            for (HWND s : parent->children) {
                if (s == w->hwnd) break;  // only the ones above
                WindowRec* sw = Find(s);
                if (sw && (sw->style & WS_VISIBLE)) r -= WindowRectInTop(sw);
            }
        }
    }
    return r;
}

// Key code of the toolkit to the platform's virtual key (0: none).
int VirtualKeyOf(int key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9)) return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F12) return VK_F1 + (key - Qt::Key_F1);
    switch (key) {
    case Qt::Key_Space: return VK_SPACE;
    case Qt::Key_Escape: return VK_ESCAPE;
    case Qt::Key_Tab: case Qt::Key_Backtab: return VK_TAB;
    case Qt::Key_Backspace: return VK_BACK;
    case Qt::Key_Return: case Qt::Key_Enter: return VK_RETURN;
    case Qt::Key_Insert: return VK_INSERT;
    case Qt::Key_Delete: return VK_DELETE;
    case Qt::Key_Home: return VK_HOME;
    case Qt::Key_End: return VK_END;
    case Qt::Key_Left: return VK_LEFT;
    case Qt::Key_Up: return VK_UP;
    case Qt::Key_Right: return VK_RIGHT;
    case Qt::Key_Down: return VK_DOWN;
    case Qt::Key_PageUp: return VK_PRIOR;
    case Qt::Key_PageDown: return VK_NEXT;
    case Qt::Key_Shift: return VK_SHIFT;
    case Qt::Key_Control: return VK_CONTROL;
    case Qt::Key_Alt: return VK_MENU;
    case Qt::Key_CapsLock: return VK_CAPITAL;
    case Qt::Key_Pause: return VK_PAUSE;
    case Qt::Key_Semicolon: case Qt::Key_Colon: return VK_OEM_1;
    case Qt::Key_Equal: case Qt::Key_Plus: return VK_OEM_PLUS;
    case Qt::Key_Comma: case Qt::Key_Less: return VK_OEM_COMMA;
    case Qt::Key_Minus: case Qt::Key_Underscore: return VK_OEM_MINUS;
    case Qt::Key_Period: case Qt::Key_Greater: return VK_OEM_PERIOD;
    case Qt::Key_Slash: case Qt::Key_Question: return VK_OEM_2;
    case Qt::Key_QuoteLeft: case Qt::Key_AsciiTilde: return VK_OEM_3;
    case Qt::Key_BracketLeft: case Qt::Key_BraceLeft: return VK_OEM_4;
    case Qt::Key_Backslash: case Qt::Key_Bar: return VK_OEM_5;
    case Qt::Key_BracketRight: case Qt::Key_BraceRight: return VK_OEM_6;
    case Qt::Key_Apostrophe: case Qt::Key_QuoteDbl: return VK_OEM_7;
    default: return 0;
    }
}

// Shows a top-level window's pixels and turns the toolkit's input into the platform's.
class Presenter : public QWidget {
public:
    explicit Presenter(HWND hwnd) : m_hwnd(hwnd) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setMouseTracking(true);
        setFocusPolicy(Qt::StrongFocus);
    }

protected:
    void paintEvent(QPaintEvent* e) override {
        QPainter p(this);
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(m_hwnd);
        if (w && w->surface) p.drawImage(e->rect(), *w->surface, e->rect());
    }
    QPoint Screen(QPointF local) const {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(m_hwnd);
        QPoint o = w ? w->rect.topLeft() : QPoint();
        return o + local.toPoint();
    }
    static bool ButtonOf(Qt::MouseButton b, MouseButton* out) {
        switch (b) {
        case Qt::LeftButton: *out = MouseButton::Left; return true;
        case Qt::RightButton: *out = MouseButton::Right; return true;
        case Qt::MiddleButton: *out = MouseButton::Middle; return true;
        default: return false;
        }
    }
    // Shift and Ctrl as the toolkit saw them with the event, so MK_ flags agree.
    static void SyncModifiers(Qt::KeyboardModifiers mods) {
        bool shift = mods & Qt::ShiftModifier, ctrl = mods & Qt::ControlModifier;
        if (((GetAsyncKeyState(VK_SHIFT) & 0x8000) != 0) != shift) InjectKey(VK_SHIFT, shift);
        if (((GetAsyncKeyState(VK_CONTROL) & 0x8000) != 0) != ctrl) InjectKey(VK_CONTROL, ctrl);
    }
    void mousePressEvent(QMouseEvent* e) override {
        MouseButton b;
        SyncModifiers(e->modifiers());
        if (ButtonOf(e->button(), &b)) InjectMouseButton(b, true, Screen(e->position()));
    }
    // The toolkit's own double clicks are presses here: the layer decides double clicks.
    void mouseDoubleClickEvent(QMouseEvent* e) override { mousePressEvent(e); }
    void mouseReleaseEvent(QMouseEvent* e) override {
        MouseButton b;
        SyncModifiers(e->modifiers());
        if (ButtonOf(e->button(), &b)) InjectMouseButton(b, false, Screen(e->position()));
    }
    void mouseMoveEvent(QMouseEvent* e) override {
        SyncModifiers(e->modifiers());
        InjectMouseMove(Screen(e->position()));
    }
    void wheelEvent(QWheelEvent* e) override {
        SyncModifiers(e->modifiers());
        int delta = e->angleDelta().y();
        if (delta) InjectWheel(delta, Screen(e->position()));
    }
    void keyPressEvent(QKeyEvent* e) override {
        int vk = VirtualKeyOf(e->key());
        if (vk) {
            InjectKey(vk, true);
            return;
        }
        // A character no key of the layout gives: typed in the code page.
        std::string bytes = orlex::Utf8ToAnsi(e->text().toStdString());
        for (char c : bytes) InjectChar(static_cast<BYTE>(c));
    }
    void keyReleaseEvent(QKeyEvent* e) override {
        int vk = VirtualKeyOf(e->key());
        if (vk) InjectKey(vk, false);
    }
    void closeEvent(QCloseEvent* e) override {
        e->ignore();
        PostMessageA(m_hwnd, WM_CLOSE, 0, 0);
    }

private:
    HWND m_hwnd;
};

QCursor ToolkitCursor(HCURSOR h) {
    QImage img;
    QPoint hot;
    if (CursorImageOf(h, &img, &hot)) return QCursor(QPixmap::fromImage(img), hot.x(), hot.y());
    switch (CursorShapeOf(h)) {
    case 32513: return QCursor(Qt::IBeamCursor);
    case 32514: return QCursor(Qt::WaitCursor);
    case 32515: return QCursor(Qt::CrossCursor);
    case 32516: return QCursor(Qt::UpArrowCursor);
    case 32642: return QCursor(Qt::SizeFDiagCursor);
    case 32643: return QCursor(Qt::SizeBDiagCursor);
    case 32644: return QCursor(Qt::SizeHorCursor);
    case 32645: return QCursor(Qt::SizeVerCursor);
    case 32646: return QCursor(Qt::SizeAllCursor);
    case 32648: return QCursor(Qt::ForbiddenCursor);
    case 32649: return QCursor(Qt::PointingHandCursor);
    case 32650: return QCursor(Qt::BusyCursor);
    case 32651: return QCursor(Qt::WhatsThisCursor);
    default: return QCursor(Qt::ArrowCursor);
    }
}

// Widgets exist only with a widget application and only on its thread; windows of other
// threads keep their surfaces without a presenter.
bool HasWidgets() {
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    return app && app->thread() == QThread::currentThread();
}

}  // namespace

// Surface contract -------------------------------------------------------------------------------
bool WindowDrawTarget(HWND hwnd, bool client, DrawTarget& out) {
    out = DrawTarget{};
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w || !VisibleChain(w)) return false;
    WindowRec* top = TopLevelOf(w);
    if (!top->surface) return false;
    out.image = top->surface.get();
    out.origin = client ? ClientRectInTop(w).topLeft() : WindowRectInTop(w).topLeft();
    QRegion vis = BaseVisible(w, !client);
    if (w->style & WS_CLIPCHILDREN) {
        for (HWND c : w->children) {
            WindowRec* cw = Find(c);
            if (cw && (cw->style & WS_VISIBLE)) vis -= WindowRectInTop(cw);
        }
    }
    out.visible = vis & QRect(QPoint(0, 0), top->surface->size());
    return true;
}

QRegion TakeUpdateRegion(HWND hwnd, bool* erase) {
    // The frame is drawn first, as painting begins (the platform's BeginPaint does so).
    bool frame = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (w && w->ncDirty) {
            w->ncDirty = false;
            frame = !NonClient(*w).isNull();
        }
    }
    if (frame) SendMessageA(hwnd, WM_NCPAINT, 1, 0);
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (erase) *erase = false;
    if (!w) return QRegion();
    QRegion r = w->update & ClientRectOf(*w);
    if (erase) *erase = w->erase;
    w->update = QRegion();
    w->erase = false;
    w->internalPaint = false;
    ++w->paintSerial;
    return r;
}

QImage ComposeScreen(const QRect& screenRect) {
    QImage out(screenRect.size(), QImage::Format_RGB32);
    out.fill(Qt::black);
    std::lock_guard<std::mutex> g(Lock());
    std::vector<HWND> tops = TopLevelWindows();
    QPainter p(&out);
    for (auto it = tops.rbegin(); it != tops.rend(); ++it) {  // bottom first
        WindowRec* w = Find(*it);
        if (!w || !(w->style & WS_VISIBLE) || !w->surface) continue;
        p.drawImage(w->rect.topLeft() - screenRect.topLeft(), *w->surface);
    }
    return out;
}

void SurfaceTouched(const QImage* image, const QRect& rect) {
    QWidget* widget = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        for (HWND h : TopLevelWindows()) {
            WindowRec* w = Find(h);
            if (w && w->surface.get() == image) {
                widget = w->presenter;
                break;
            }
        }
    }
    if (widget) widget->update(rect);
}

// Painting --------------------------------------------------------------------------------------
void Invalidate(HWND hwnd, const QRegion* clientRegion, bool erase, bool validate, bool allChildren, bool noChildren) {
    WindowRec* w = Find(hwnd);
    if (!w) return;
    QRect client = ClientRectOf(*w);
    QRegion r = clientRegion ? (*clientRegion & client) : QRegion(client);
    if (validate) {
        w->update -= r;
        if (w->update.isEmpty()) w->erase = false;
    } else if (!r.isEmpty()) {
        w->update |= r;
        w->erase = w->erase || erase;
    }
    if (noChildren || (!allChildren && (w->style & WS_CLIPCHILDREN))) return;
    for (HWND c : w->children) {
        WindowRec* cw = Find(c);
        if (!cw || !(cw->style & WS_VISIBLE)) continue;
        QRegion inChild = r & cw->rect;
        if (inChild.isEmpty()) continue;
        QMargins nc = NonClient(*cw);
        QRegion local = inChild.translated(-cw->rect.topLeft() - QPoint(nc.left(), nc.top()));
        if (!validate) cw->ncDirty = true;  // the parent's paint goes over the child's frame too
        Invalidate(c, &local, erase, validate, allChildren);
    }
}

HWND NextWindowToPaint(DWORD thread) {
    for (HWND h : WindowsOfThread(thread)) {
        WindowRec* w = Find(h);
        if (!w || !VisibleChain(w)) continue;
        if (!w->update.isEmpty() || w->internalPaint || w->ncDirty) return h;
    }
    return nullptr;
}

void PaintNow(HWND hwnd, bool children) {
    bool nc = false, paint = false;
    std::vector<HWND> kids;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || !VisibleChain(w)) return;
        nc = w->ncDirty;
        paint = !w->update.isEmpty() || w->internalPaint;
        if (!paint && nc) w->ncDirty = false;
        kids.assign(w->children.rbegin(), w->children.rend());  // bottom first
    }
    if (paint) {
        MSG m{hwnd, WM_PAINT, 0, 0, 0, {}};
        DispatchMessageA(&m);
    } else if (nc) {
        SendMessageA(hwnd, WM_NCPAINT, 1, 0);
    }
    if (children)
        for (HWND c : kids) PaintNow(c, true);
}

void EnsureSurface(WindowRec* w) {
    QSize size(std::max(1, w->rect.width()), std::max(1, w->rect.height()));
    if (w->surface && w->surface->size() == size) return;
    auto img = std::make_unique<QImage>(size, QImage::Format_RGB32);
    img->fill(Qt::white);
    if (w->surface) {
        QPainter p(img.get());
        p.drawImage(0, 0, *w->surface);
    }
    w->surface = std::move(img);
}

void SyncPresenter(HWND hwnd) {
    if (!HasWidgets()) return;
    QWidget* widget;
    bool visible;
    QRect rect;
    QString title;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || w->IsChild()) return;
        if (!w->presenter) w->presenter = new Presenter(hwnd);
        widget = w->presenter;
        visible = (w->style & WS_VISIBLE) != 0;
        rect = w->rect;
        title = QString::fromStdString(orlex::AnsiToUtf8(w->text.c_str()));
    }
    widget->setWindowTitle(title);
    widget->setGeometry(rect);
    widget->setFixedSize(rect.size());
    widget->setVisible(visible);
    widget->update();
}

void DestroyPresenter(WindowRec* w) {
    if (!w || !w->presenter) return;
    // Off the toolkit's thread the widget is handed to its own thread to delete.
    if (HasWidgets()) delete w->presenter;
    else w->presenter->deleteLater();
    w->presenter = nullptr;
}

void ApplyCursorToPresenters(HCURSOR h) {
    if (!HasWidgets()) return;
    QCursor c = ToolkitCursor(h);
    std::vector<QWidget*> widgets;
    {
        std::lock_guard<std::mutex> g(Lock());
        for (HWND t : TopLevelWindows())
            if (WindowRec* w = Find(t); w && w->presenter) widgets.push_back(w->presenter);
    }
    for (QWidget* wd : widgets) wd->setCursor(c);
}

// Scroll bars of the frame ------------------------------------------------------------------------
namespace {

// The bar's rectangle in window coordinates (empty when the window has no such bar).
QRect BarRect(const WindowRec& w, int bar) {
    bool has = bar == SB_VERT ? ((w.style & WS_VSCROLL) || w.bars[SB_VERT].shown)
                              : ((w.style & WS_HSCROLL) || w.bars[SB_HORZ].shown);
    if (!has) return QRect();
    QMargins nc = NonClient(w);
    QRect client(nc.left(), nc.top(), w.rect.width() - nc.left() - nc.right(), w.rect.height() - nc.top() - nc.bottom());
    if (bar == SB_VERT) return QRect(client.right() + 1, client.top(), kScrollBar, client.height());
    return QRect(client.left(), client.bottom() + 1, client.width(), kScrollBar);
}

// The parts of a bar `length` long along its axis, the thumb at the position (or, while
// dragged, the track position): the same geometry as the scroll bar control's.
ScrollGeometry Geometry(const ScrollBarState& s, int length, bool track) {
    const SCROLLINFO& i = s.info;
    return ComputeScroll(length, kScrollBar, i.nMin, i.nMax, i.nPage, track ? i.nTrackPos : i.nPos);
}

// An arrow or a page part held down on a window's own scroll bar. The capture is one, so
// is the hold; guarded by Lock(). Handles are never reused, so a hold left by a window that
// went matches no later window.
struct FrameHold {
    HWND hwnd = nullptr;
    int bar = SB_VERT;
    ScrollPart part = kScrollNone;
    QPoint pointer;  // where the pointer is now, in window coordinates
};
FrameHold g_hold;

// The part of the held bar under the pointer, kScrollNone off the bar.
ScrollPart HeldPartUnderPointer(const WindowRec& w) {
    const QRect br = BarRect(w, g_hold.bar);
    if (!br.contains(g_hold.pointer)) return kScrollNone;
    const bool vert = g_hold.bar == SB_VERT;
    const QPoint p = g_hold.pointer - br.topLeft();
    const int len = vert ? br.height() : br.width();
    return HitScrollPart(Geometry(w.bars[g_hold.bar], len, false), vert ? p.y() : p.x(), len);
}

// Whether a part of a window's bar shows pressed: held, with the pointer on it.
bool ShownPressed(const WindowRec& w, int bar, ScrollPart part) {
    return g_hold.hwnd == w.hwnd && g_hold.bar == bar && g_hold.part == part && HeldPartUnderPointer(w) == part;
}

void FrameRepeatTick(HWND hwnd, UINT, UINT_PTR, DWORD);

// The top-left corner of a window in screen coordinates.
QPoint WindowOrigin(WindowRec* w) {
    return w->IsChild() ? WindowRectInTop(w).topLeft() + TopLevelOf(w)->rect.topLeft() : w->rect.topLeft();
}

}  // namespace

void DefNcPaint(HWND hwnd) {
    // System colours are fetched before the table is locked: the drawing side may use it.
    constexpr int kFrame = 6, kFace = 15, kShadow = 16, kHilight = 20, kDkShadow = 21, kLight = 22,
                  kCaption = 2, kCaptionText = 9, kScrollbar = 0, kBtnText = 18;
    QColor colours[32];
    for (int i : {kFrame, kFace, kShadow, kHilight, kDkShadow, kLight, kCaption, kCaptionText, kScrollbar, kBtnText}) {
        COLORREF c = GetSysColor(i);
        colours[i] = QColor(GetRValue(c), GetGValue(c), GetBValue(c));
    }
    auto col = [&](int index) { return colours[index]; };
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w || !VisibleChain(w)) return;
    w->ncDirty = false;
    QMargins nc = NonClient(*w);
    if (nc.isNull()) return;
    WindowRec* top = TopLevelOf(w);
    if (!top->surface) return;
    QRect win = WindowRectInTop(w);
    QRegion clip = BaseVisible(w, true) - ClientRectInTop(w);
    QPainter p(top->surface.get());
    p.setClipRegion(clip);
    QRect r(0, 0, win.width(), win.height());
    p.translate(win.topLeft());
    // Outer frame.
    auto frame = [&](QColor tl, QColor br) {
        p.fillRect(QRect(r.left(), r.top(), r.width(), 1), tl);
        p.fillRect(QRect(r.left(), r.top(), 1, r.height()), tl);
        p.fillRect(QRect(r.left(), r.bottom(), r.width(), 1), br);
        p.fillRect(QRect(r.right(), r.top(), 1, r.height()), br);
        r.adjust(1, 1, -1, -1);
    };
    if ((w->style & WS_CAPTION) == WS_CAPTION || (w->style & (WS_DLGFRAME | WS_THICKFRAME))) {
        int n = (w->style & WS_THICKFRAME) ? 4 : 3;
        frame(col(kLight), col(kDkShadow));
        frame(col(kHilight), col(kShadow));
        for (int i = 2; i < n; ++i) frame(col(kFace), col(kFace));
    } else if (w->style & WS_BORDER) {
        frame(col(kFrame), col(kFrame));
    }
    if ((w->style & WS_CAPTION) == WS_CAPTION) {
        QRect cap(r.left(), r.top(), r.width(), 20);
        p.fillRect(cap, col(kCaption));
        p.setPen(col(kCaptionText));
        p.drawText(cap.adjusted(4, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft,
                   QString::fromStdString(orlex::AnsiToUtf8(w->text.c_str())));
        r.setTop(r.top() + 20);
    }
    if (w->exStyle & WS_EX_CLIENTEDGE) {
        frame(col(kShadow), col(kHilight));
        frame(col(kDkShadow), col(kLight));
    }
    if (w->exStyle & WS_EX_STATICEDGE) frame(col(kShadow), col(kHilight));
    // Scroll bars: track, two arrow buttons, thumb.
    for (int bar = 0; bar < 2; ++bar) {
        QRect br = BarRect(*w, bar);
        if (br.isEmpty()) continue;
        const bool vert = bar == SB_VERT;
        p.fillRect(br, col(kScrollbar));
        int len = vert ? br.height() : br.width();
        auto button = [&](QRect b, int dir, bool pressed) {
            p.fillRect(b, col(pressed ? kShadow : kFace));
            p.setPen(col(kShadow));
            p.drawRect(b.adjusted(0, 0, -1, -1));
            if (w->bars[bar].disabled) return;
            p.setPen(col(kBtnText));
            QPoint c = b.center();
            for (int i = 0; i < 4; ++i) {  // a small triangle pointing along dir
                if (vert) p.drawLine(c.x() - i, c.y() + dir * (i - 1), c.x() + i, c.y() + dir * (i - 1));
                else p.drawLine(c.x() + dir * (i - 1), c.y() - i, c.x() + dir * (i - 1), c.y() + i);
            }
        };
        QRect first = vert ? QRect(br.left(), br.top(), br.width(), std::min(kScrollBar, len / 2))
                           : QRect(br.left(), br.top(), std::min(kScrollBar, len / 2), br.height());
        QRect last = vert ? QRect(br.left(), br.bottom() - first.height() + 1, br.width(), first.height())
                          : QRect(br.right() - first.width() + 1, br.top(), first.width(), br.height());
        button(first, -1, ShownPressed(*w, bar, kScrollArrowLow));
        button(last, 1, ShownPressed(*w, bar, kScrollArrowHigh));
        if (w->bars[bar].disabled) continue;
        const ScrollGeometry tg = Geometry(w->bars[bar], len, w->trackBar == bar);
        // A held page part darkens from the thumb to the arrow on its side.
        auto along = [&](int from, int to) {
            return vert ? QRect(br.left(), br.top() + from, br.width(), to - from)
                        : QRect(br.left() + from, br.top(), to - from, br.height());
        };
        if (ShownPressed(*w, bar, kScrollPageLow)) p.fillRect(along(tg.trackStart, tg.thumbStart), col(kDkShadow));
        if (ShownPressed(*w, bar, kScrollPageHigh)) p.fillRect(along(tg.thumbEnd, tg.trackEnd), col(kDkShadow));
        if (tg.thumbEnd <= tg.thumbStart) continue;
        QRect th = along(tg.thumbStart, tg.thumbEnd);
        p.fillRect(th, col(kFace));
        p.setPen(col(kShadow));
        p.drawRect(th.adjusted(0, 0, -1, -1));
    }
    p.end();
    QRect touched = win & QRect(QPoint(0, 0), top->surface->size());
    QWidget* widget = top->presenter;
    if (widget) widget->update(touched);
}

LRESULT DefNcHitTest(HWND hwnd, POINT screen) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return HTNOWHERE;
    QPoint top = w->IsChild() ? WindowRectInTop(w).topLeft() + TopLevelOf(w)->rect.topLeft() : w->rect.topLeft();
    QPoint p = QPoint(screen.x, screen.y) - top;
    QRect r(QPoint(0, 0), w->rect.size());
    if (!r.contains(p)) return HTNOWHERE;
    QMargins nc = NonClient(*w);
    if (r.marginsRemoved(nc).contains(p)) return HTCLIENT;
    if (BarRect(*w, SB_VERT).contains(p)) return HTVSCROLL;
    if (BarRect(*w, SB_HORZ).contains(p)) return HTHSCROLL;
    if ((w->style & WS_CAPTION) == WS_CAPTION && p.y() < nc.top()) return HTCAPTION;
    return HTBORDER;
}

// A press on a window's own scroll bar, as the platform answers it: an arrow scrolls a
// line and a page part a page at once, then again while the button stays down (after
// kScrollRepeatDelay, then every kScrollRepeatPeriod, on the layer clock); the thumb starts
// a drag that follows the pointer (SB_THUMBTRACK) until the release (SB_THUMBPOSITION).
// The window holds the capture until the release, which sends SB_ENDSCROLL.
LRESULT DefScrollBarMouse(HWND hwnd, UINT msg, WPARAM hit, POINT screen) {
    if (hit != HTVSCROLL && hit != HTHSCROLL) return 0;
    const int bar = hit == HTVSCROLL ? SB_VERT : SB_HORZ;
    const UINT scrollMsg = bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL;
    ScrollPart part;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || w->bars[bar].disabled) return 0;
        const QRect br = BarRect(*w, bar);
        const QPoint inWindow = QPoint(screen.x, screen.y) - WindowOrigin(w);
        const QPoint p = inWindow - br.topLeft();
        const int along = bar == SB_VERT ? p.y() : p.x();
        const int len = bar == SB_VERT ? br.height() : br.width();
        const ScrollGeometry geo = Geometry(w->bars[bar], len, false);
        part = HitScrollPart(geo, along, len);
        if (part == kScrollNone) return 0;  // the track of a bar with no room for a thumb
        if (part == kScrollThumb) {
            w->trackBar = bar;
            w->trackGrab = along - geo.thumbStart;
            w->bars[bar].info.nTrackPos = w->bars[bar].info.nPos;
        } else {
            g_hold = FrameHold{hwnd, bar, part, inWindow};
            assert(ScrollPartRepeats(part));
            w->ncDirty = true;
        }
    }
    SetCapture(hwnd);
    if (part == kScrollThumb) return 0;
    SendMessageA(hwnd, scrollMsg, ScrollStepCode(part), 0);
    // The window may have gone, or the hold ended, while it scrolled.
    bool holding;
    {
        std::lock_guard<std::mutex> g(Lock());
        holding = g_hold.hwnd == hwnd && Find(hwnd) != nullptr;
    }
    if (!holding) return 0;
    SetTimer(hwnd, kFrameRepeatTimer, kScrollRepeatDelay, FrameRepeatTick);
    PaintNow(hwnd, false);
    return 0;
}

namespace {

// The repeat timer of a held arrow or page part: steps again while the pointer is on the
// part, so an arrow waits while the pointer is off it and paging stops once the thumb has
// come under the pointer. A window that lost the capture ends the gesture here.
void FrameRepeatTick(HWND hwnd, UINT, UINT_PTR, DWORD) {
    bool held, ended = false, step = false;
    UINT scrollMsg = WM_VSCROLL, code = 0;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        held = w && g_hold.hwnd == hwnd;
        if (held) {
            assert(ScrollPartRepeats(g_hold.part) && (g_hold.bar == SB_VERT || g_hold.bar == SB_HORZ));
            scrollMsg = g_hold.bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL;
            if (Input().capture != hwnd) {
                ended = true;
                g_hold = FrameHold{};
                w->ncDirty = true;
            } else {
                code = ScrollStepCode(g_hold.part);
                // A bar disabled meanwhile (its range no longer needs it) holds still.
                step = !w->bars[g_hold.bar].disabled && HeldPartUnderPointer(*w) == g_hold.part;
            }
        }
    }
    if (!held || ended) {
        KillTimer(hwnd, kFrameRepeatTimer);
        if (ended) {
            SendMessageA(hwnd, scrollMsg, SB_ENDSCROLL, 0);
            PaintNow(hwnd, false);
        }
        return;
    }
    SetTimer(hwnd, kFrameRepeatTimer, kScrollRepeatPeriod, FrameRepeatTick);
    if (step) SendMessageA(hwnd, scrollMsg, code, 0);
}

// Mouse messages while an arrow or page part is held: moves tell where the pointer is, the
// release ends the gesture. True when the message was the hold's.
bool HoldMouse(const MSG& m) {
    UINT scrollMsg;
    bool release = m.message == WM_LBUTTONUP, repaint;
    {
        std::lock_guard<std::mutex> g(Lock());
        if (g_hold.hwnd != m.hwnd) return false;
        WindowRec* w = Find(m.hwnd);
        if (!w) {
            g_hold = FrameHold{};
            return false;
        }
        scrollMsg = g_hold.bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL;
        // The message point is in client coordinates; the hold keeps window coordinates.
        const QMargins nc = NonClient(*w);
        const bool wasOn = HeldPartUnderPointer(*w) == g_hold.part;
        g_hold.pointer = QPoint(GET_X_LPARAM(m.lParam), GET_Y_LPARAM(m.lParam)) + QPoint(nc.left(), nc.top());
        repaint = release || wasOn != (HeldPartUnderPointer(*w) == g_hold.part);
        if (release) g_hold = FrameHold{};
        if (repaint) w->ncDirty = true;
    }
    if (release) {
        KillTimer(m.hwnd, kFrameRepeatTimer);
        if (GetCapture() == m.hwnd) ReleaseCapture();
        SendMessageA(m.hwnd, scrollMsg, SB_ENDSCROLL, 0);
    }
    if (repaint && IsWindow(m.hwnd)) PaintNow(m.hwnd, false);
    return true;
}

}  // namespace

// Mouse messages of a gesture on a window's own scroll bar, taken before the window's
// procedure; true when used.
bool ScrollTrackMouse(const MSG& m) {
    if (m.message != WM_MOUSEMOVE && m.message != WM_LBUTTONUP) return false;
    if (HoldMouse(m)) return true;
    int bar, pos;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(m.hwnd);
        if (!w || w->trackBar < 0) return false;
        bar = w->trackBar;
        QMargins nc = NonClient(*w);
        QRect br = BarRect(*w, bar);
        // The message point is in client coordinates; the bar is in window coordinates.
        QPoint p = QPoint(GET_X_LPARAM(m.lParam), GET_Y_LPARAM(m.lParam)) + QPoint(nc.left(), nc.top()) - br.topLeft();
        int along = bar == SB_VERT ? p.y() : p.x();
        int len = bar == SB_VERT ? br.height() : br.width();
        ScrollBarState& s = w->bars[bar];
        const ScrollGeometry geo = Geometry(s, len, false);
        pos = ScrollPosFromThumb(geo, along - w->trackGrab, s.info.nMin, s.info.nMax, s.info.nPage);
        s.info.nTrackPos = pos;
        w->ncDirty = true;
        if (m.message == WM_LBUTTONUP) w->trackBar = -1;
    }
    const UINT scrollMsg = bar == SB_VERT ? WM_VSCROLL : WM_HSCROLL;
    if (m.message == WM_MOUSEMOVE) {
        SendMessageA(m.hwnd, scrollMsg, MAKEWPARAM(SB_THUMBTRACK, static_cast<WORD>(pos)), 0);
    } else {
        ReleaseCapture();
        SendMessageA(m.hwnd, scrollMsg, MAKEWPARAM(SB_THUMBPOSITION, static_cast<WORD>(pos)), 0);
        SendMessageA(m.hwnd, scrollMsg, SB_ENDSCROLL, 0);
    }
    PaintNow(m.hwnd, false);
    return true;
}

// The windows that a RedrawWindow reaches besides the window: its children unless they are
// left out (RDW_NOCHILDREN) or clipped away (WS_CLIPCHILDREN without RDW_ALLCHILDREN).
bool RedrawReachesChildren(const WindowRec* w, bool all, bool none) {
    return !none && (all || !(w->style & WS_CLIPCHILDREN));
}

void DropPendingErase(WindowRec* w, bool all, bool none) {
    w->erase = false;
    if (!RedrawReachesChildren(w, all, none)) return;
    for (HWND c : w->children)
        if (WindowRec* cw = Find(c)) DropPendingErase(cw, all, false);
}

// RDW_ERASENOW without RDW_UPDATENOW: the backgrounds that are due are erased now (within
// the update region), the paints come later as usual.
void EraseNow(HWND hwnd, bool all, bool none) {
    QRegion area;
    std::vector<HWND> kids;
    bool due = false;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || !VisibleChain(w)) return;
        due = w->erase && !w->update.isEmpty();
        if (due) {
            area = w->update;
            w->erase = false;
        }
        if (RedrawReachesChildren(w, all, none)) kids.assign(w->children.rbegin(), w->children.rend());
    }
    if (due) {
        HDC dc = ::GetDC(hwnd);
        HRGN clip = ::CreateRectRgn(0, 0, 0, 0);
        if (orlex::gdi::Region* rg = orlex::gdi::AsRegion(clip)) rg->rgn = area;
        ::SelectClipRgn(dc, clip);
        ::SendMessageA(hwnd, WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc), 0);
        ::ReleaseDC(hwnd, dc);
        ::DeleteObject(clip);
    }
    for (HWND c : kids) EraseNow(c, all, false);
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL InvalidateRect(HWND hwnd, const RECT* rect, BOOL erase) {
    if (!hwnd) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    if (!Find(hwnd)) return FALSE;
    if (rect) {
        QRegion r(QRect(QPoint(rect->left, rect->top), QPoint(rect->right - 1, rect->bottom - 1)));
        Invalidate(hwnd, &r, erase, false, false);
    } else {
        Invalidate(hwnd, nullptr, erase, false, false);
    }
    if (WindowRec* w = Find(hwnd)) WakeThread(QueueOf(w->thread));
    return TRUE;
}

BOOL ValidateRect(HWND hwnd, const RECT* rect) {
    std::lock_guard<std::mutex> g(Lock());
    if (!Find(hwnd)) return FALSE;
    if (rect) {
        QRegion r(QRect(QPoint(rect->left, rect->top), QPoint(rect->right - 1, rect->bottom - 1)));
        Invalidate(hwnd, &r, false, true, false);
    } else {
        Invalidate(hwnd, nullptr, false, true, false);
    }
    return TRUE;
}

BOOL UpdateWindow(HWND hwnd) {
    if (!IsWindow(hwnd)) return FALSE;
    PaintNow(hwnd, true);
    return TRUE;
}

BOOL RedrawWindow(HWND hwnd, const RECT* rect, HRGN region, UINT flags) {
    if (!IsWindow(hwnd)) return FALSE;
    // The region, when there is one, takes the place of the rectangle; an empty region
    // touches nothing (it is not "the whole window").
    QRegion r;
    bool some = false;
    if (orlex::gdi::Region* rg = region ? orlex::gdi::AsRegion(region) : nullptr) {
        r = rg->rgn;
        some = true;
    } else if (rect) {
        r = QRegion(QRect(QPoint(rect->left, rect->top), QPoint(rect->right - 1, rect->bottom - 1)));
        some = true;
    }
    const bool all = (flags & RDW_ALLCHILDREN) != 0;
    const bool none = (flags & RDW_NOCHILDREN) != 0;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return FALSE;
        const bool erase = (flags & RDW_ERASE) && !(flags & RDW_NOERASE);
        if (flags & RDW_INVALIDATE) Invalidate(hwnd, some ? &r : nullptr, erase, false, all, none);
        if (flags & RDW_VALIDATE) Invalidate(hwnd, some ? &r : nullptr, false, true, all, none);
        // RDW_NOERASE also drops an erase that an earlier invalidation left pending.
        if (flags & RDW_NOERASE) DropPendingErase(w, all, none);
        if (flags & RDW_INTERNALPAINT) w->internalPaint = true;
        if (flags & RDW_NOINTERNALPAINT) w->internalPaint = false;
        if (flags & RDW_FRAME) w->ncDirty = true;
        WakeThread(QueueOf(w->thread));
    }
    if (flags & RDW_UPDATENOW) PaintNow(hwnd, !none);
    else if (flags & RDW_ERASENOW) EraseNow(hwnd, all, none);
    return TRUE;
}

BOOL GetUpdateRect(HWND hwnd, RECT* rect, BOOL) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    QRect b = w->update.boundingRect();
    if (rect) *rect = b.isEmpty() ? RECT{0, 0, 0, 0} : RECT{b.left(), b.top(), b.right() + 1, b.bottom() + 1};
    return !b.isEmpty();
}

BOOL ScrollWindow(HWND hwnd, int dx, int dy, const RECT* scroll, const RECT* clip) {
    // Without a scroll rectangle the children move with the contents (the platform's rule);
    // they hear WM_MOVE once the table is left.
    std::vector<HWND> moved;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w || !VisibleChain(w)) return FALSE;
        WindowRec* top = TopLevelOf(w);
        QRect clientTop = ClientRectInTop(w);
        QRect src = scroll ? QRect(QPoint(scroll->left, scroll->top), QPoint(scroll->right - 1, scroll->bottom - 1))
                           : QRect(QPoint(0, 0), clientTop.size());
        QRect lim = clip ? QRect(QPoint(clip->left, clip->top), QPoint(clip->right - 1, clip->bottom - 1))
                         : QRect(QPoint(0, 0), clientTop.size());
        lim &= QRect(QPoint(0, 0), clientTop.size());
        QRect dst = src.translated(dx, dy) & lim;
        if (!dst.isEmpty() && top->surface) {
            // The copy takes the children's pixels along (the parent's clip is not taken
            // out), which is where moved children are now.
            QImage part = top->surface->copy(dst.translated(-dx, -dy).translated(clientTop.topLeft()));
            QPainter p(top->surface.get());
            p.setClipRegion(BaseVisible(w, false));
            p.drawImage(dst.translated(clientTop.topLeft()).topLeft(), part);
        }
        // Outside the clip rectangle nothing was copied, so there a moved child's old and
        // new places are painted again.
        QRegion outsideClip;
        if (!scroll && (dx || dy)) {
            for (HWND c : w->children) {
                WindowRec* cw = Find(c);
                if (!cw) continue;
                if (cw->style & WS_VISIBLE) outsideClip |= (QRegion(cw->rect) | cw->rect.translated(dx, dy)) - lim;
                cw->rect.translate(dx, dy);
                moved.push_back(c);
            }
        }
        // What the move uncovered is painted again, children there included even under
        // WS_CLIPCHILDREN: a moved child's part in the strip was not in the copy. Each
        // child's own pending paint is in its client coordinates, so it moves along.
        QRegion uncovered = QRegion(src & lim) - dst;
        w->update = w->update.translated(dx, dy) & lim;
        Invalidate(hwnd, &uncovered, true, false, !moved.empty());
        if (!outsideClip.isEmpty()) Invalidate(hwnd, &outsideClip, true, false, true);
        WakeThread(QueueOf(w->thread));
        if (top->presenter) top->presenter->update();
    }
    for (HWND c : moved) {
        if (!::IsWindow(c)) continue;
        // WM_MOVE tells the client area's corner in the parent's client coordinates.
        POINT corner{0, 0};
        ::ClientToScreen(c, &corner);
        ::ScreenToClient(hwnd, &corner);
        ::SendMessageA(c, WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(corner.x), static_cast<WORD>(corner.y)));
    }
    return TRUE;
}

int SetScrollInfo(HWND hwnd, int bar, const SCROLLINFO* si, BOOL redraw) {
    if (!si || (bar != SB_HORZ && bar != SB_VERT)) return 0;
    int pos;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return 0;
        SCROLLINFO& i = w->bars[bar].info;
        if (si->fMask & SIF_RANGE) { i.nMin = si->nMin; i.nMax = si->nMax; }
        if (si->fMask & SIF_PAGE) i.nPage = si->nPage;
        if (si->fMask & SIF_POS) i.nPos = si->nPos;
        // The position stays within min .. max - page + 1, as the platform keeps it.
        long long hi = static_cast<long long>(i.nMax) - std::max<long long>(static_cast<long long>(i.nPage) - 1, 0);
        i.nPage = static_cast<UINT>(std::min<long long>(i.nPage, static_cast<long long>(i.nMax) - i.nMin + 1 < 0 ? 0 : static_cast<long long>(i.nMax) - i.nMin + 1));
        i.nPos = static_cast<int>(std::clamp<long long>(i.nPos, i.nMin, std::max<long long>(hi, i.nMin)));
        bool needed = i.nMax > i.nMin && (i.nPage == 0 || static_cast<long long>(i.nPage) <= static_cast<long long>(i.nMax) - i.nMin);
        ScrollBarState& s = w->bars[bar];
        if (si->fMask & SIF_DISABLENOSCROLL) s.disabled = !needed;
        w->ncDirty = true;
        pos = i.nPos;
    }
    // Redrawing shows the bar now, as the platform does; the client's update waits for its
    // paint (a scroll that invalidates and moves the bar paints the client once, not twice).
    if (redraw) {
        bool frame = false;
        {
            std::lock_guard<std::mutex> g(Lock());
            WindowRec* w = Find(hwnd);
            if (w && w->ncDirty && VisibleChain(w) && !NonClient(*w).isNull()) {
                w->ncDirty = false;
                frame = true;
            }
        }
        if (frame) SendMessageA(hwnd, WM_NCPAINT, 1, 0);
    }
    return pos;
}

BOOL GetScrollInfo(HWND hwnd, int bar, SCROLLINFO* si) {
    if (!si || (bar != SB_HORZ && bar != SB_VERT)) return FALSE;
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    const SCROLLINFO& i = w->bars[bar].info;
    if (si->fMask & SIF_RANGE) { si->nMin = i.nMin; si->nMax = i.nMax; }
    if (si->fMask & SIF_PAGE) si->nPage = i.nPage;
    if (si->fMask & SIF_POS) si->nPos = i.nPos;
    if (si->fMask & SIF_TRACKPOS) si->nTrackPos = w->trackBar == bar ? i.nTrackPos : i.nPos;
    return TRUE;
}

int SetScrollPos(HWND hwnd, int bar, int pos, BOOL redraw) {
    SCROLLINFO si{sizeof si, SIF_POS, 0, 0, 0, 0, 0};
    GetScrollInfo(hwnd, bar, &si);
    int old = si.nPos;
    si.nPos = pos;
    si.fMask = SIF_POS;
    SetScrollInfo(hwnd, bar, &si, redraw);
    return old;
}

int GetScrollPos(HWND hwnd, int bar) {
    SCROLLINFO si{sizeof si, SIF_POS, 0, 0, 0, 0, 0};
    return GetScrollInfo(hwnd, bar, &si) ? si.nPos : 0;
}

BOOL SetScrollRange(HWND hwnd, int bar, int minPos, int maxPos, BOOL redraw) {
    SCROLLINFO si{sizeof si, SIF_RANGE, minPos, maxPos, 0, 0, 0};
    return SetScrollInfo(hwnd, bar, &si, redraw) >= 0 && IsWindow(hwnd);
}

BOOL GetScrollRange(HWND hwnd, int bar, int* minPos, int* maxPos) {
    SCROLLINFO si{sizeof si, SIF_RANGE, 0, 0, 0, 0, 0};
    if (!GetScrollInfo(hwnd, bar, &si)) return FALSE;
    if (minPos) *minPos = si.nMin;
    if (maxPos) *maxPos = si.nMax;
    return TRUE;
}

BOOL ShowScrollBar(HWND hwnd, int bar, BOOL show) {
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return FALSE;
        DWORD bits = 0;
        if (bar == SB_HORZ || bar == SB_BOTH) { bits |= WS_HSCROLL; w->bars[SB_HORZ].shown = show; }
        if (bar == SB_VERT || bar == SB_BOTH) { bits |= WS_VSCROLL; w->bars[SB_VERT].shown = show; }
        DWORD before = w->style;
        if (show) w->style |= bits;
        else w->style &= ~bits;
        if (before == w->style) return TRUE;
    }
    // The client area changed size: the window hears WM_SIZE and repaints.
    SetWindowPos(hwnd, nullptr, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOZORDER | SWP_FRAMECHANGED);
    RECT rc;
    GetClientRect(hwnd, &rc);
    SendMessageA(hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(static_cast<WORD>(rc.right), static_cast<WORD>(rc.bottom)));
    return TRUE;
}

BOOL EnableScrollBar(HWND hwnd, UINT bar, UINT arrows) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    if (bar == SB_HORZ || bar == SB_BOTH) w->bars[SB_HORZ].disabled = arrows == ESB_DISABLE_BOTH;
    if (bar == SB_VERT || bar == SB_BOTH) w->bars[SB_VERT].disabled = arrows == ESB_DISABLE_BOTH;
    w->ncDirty = true;
    return TRUE;
}
