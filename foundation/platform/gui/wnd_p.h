// Private to the window layer: the window table, the per-thread queues and the shared
// state of input. One lock (Lock()) guards all of it; window procedures are never called
// while it is held, so a handler may call anything.
#pragma once

#include <QImage>
#include <QMargins>
#include <QPoint>
#include <QRect>
#include <QRegion>

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "foundation/platform/afxwin.h"

class QWidget;

namespace orlex::detail {

struct ScrollBarState {
    SCROLLINFO info{sizeof(SCROLLINFO), 0, 0, 100, 0, 0, 0};
    bool shown = false;
    bool disabled = false;
};

// FromHandle gives a window that has no object of its own a temporary object. Control
// classes register the object type of their window class here, so the framework's idiom
// of treating GetDlgItem's result as the control's class (a scroll bar, a button) is
// sound: the temporary object really is of that class.
using TemporaryMaker = std::unique_ptr<CWnd> (*)();
void RegisterTemporaryClass(const char* className, TemporaryMaker make);

struct ClassRec {
    std::string name;
    WNDCLASSA wc{};
};

// One window. rect is the window rectangle in the parent's client coordinates (child) or in
// screen coordinates (top-level). Children are kept topmost first.
struct WindowRec {
    HWND hwnd = nullptr;
    DWORD thread = 0;
    ClassRec cls;
    WNDPROC proc = nullptr;
    WNDPROC superProc = nullptr;     // what CWnd::DefWindowProc calls (the class's procedure)
    CWnd* object = nullptr;          // the permanent object, if any
    std::unique_ptr<CWnd> temporary; // FromHandle's object for a window without one
    DWORD style = 0;
    DWORD exStyle = 0;
    UINT_PTR id = 0;
    HWND parent = nullptr;  // child windows only
    HWND owner = nullptr;   // top-level windows: the owner given at creation
    std::vector<HWND> children;
    QRect rect;
    std::string text;
    QRegion update;          // client coordinates
    bool erase = false;
    bool internalPaint = false;
    bool ncDirty = false;
    unsigned paintSerial = 0; // counts BeginPaint's takings of the update region    // the frame (border, edges, scroll bars) needs drawing
    bool destroying = false;
    bool created = false;    // WM_CREATE answered
    LONG_PTR userData = 0;
    ScrollBarState bars[2];
    int trackBar = -1;       // scroll bar being dragged by its thumb (SB_HORZ/SB_VERT), or -1
    int trackGrab = 0;       // pointer offset within the thumb at the press
    std::unique_ptr<QImage> surface;  // top-level windows: the persistent pixels
    QWidget* presenter = nullptr;     // top-level windows with a toolkit window
    HMENU menu = nullptr;

    bool IsChild() const { return (style & WS_CHILD) != 0 && parent != nullptr; }
};

std::mutex& Lock();
// Lookup under the lock; null for unknown or destroyed handles.
WindowRec* Find(HWND hwnd);
// The top-level window of a window (itself when top-level).
WindowRec* TopLevelOf(WindowRec* w);
// Client area insets of a window (borders, edges, caption, scroll bars).
QMargins NonClient(const WindowRec& w);
// The window's rectangle and client rectangle in the coordinates of its top-level image.
QRect WindowRectInTop(WindowRec* w);
QRect ClientRectInTop(WindowRec* w);
// Screen position of the top-level window's (0,0).
QPoint ScreenOrigin(WindowRec* w);
// Windows of the table in paint order (parents before children, bottom to top) for a thread.
std::vector<HWND> WindowsOfThread(DWORD thread);
// Every window, top-level windows topmost first.
std::vector<HWND> TopLevelWindows();
// The deepest visible window under a screen point (null: none), its hit code answered by
// WM_NCHITTEST is left to the caller.
HWND WindowAtScreenPoint(QPoint screen);
bool VisibleChain(WindowRec* w);

// Queues ---------------------------------------------------------------------------------------
struct ThreadQueue;
struct SentMessage {
    ThreadQueue* from = nullptr;
    HWND hwnd = nullptr;
    UINT msg = 0;
    WPARAM wp = 0;
    LPARAM lp = 0;
    LRESULT result = 0;
    bool done = false;
};

struct ThreadQueue {
    DWORD id = 0;
    std::deque<MSG> posted;
    std::deque<SentMessage*> sent;
    std::condition_variable cv;
    bool quit = false;
    int quitCode = 0;
    bool gui = false;  // the toolkit's thread: waits run its event loop
    MSG last{};        // the message last retrieved (time, point)
};

ThreadQueue* QueueOf(DWORD thread);  // under the lock; made on first use
DWORD CurrentThread();
// Gives CWinThread and CWinApp (afxapp.h) this layer's message loop.
void InstallThreadLoop();
// Wakes a thread waiting for messages (its condition, and the toolkit loop for the GUI thread).
void WakeThread(ThreadQueue* q);
// Posts an input message; the caller holds no lock.
void PostInput(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, QPoint screen);

// Timers ---------------------------------------------------------------------------------------
struct Timer {
    HWND hwnd;
    UINT_PTR id;
    UINT period;
    ULONGLONG due;
    TIMERPROC proc;
    DWORD thread;
    ULONGLONG seq;  // ties broken by order of setting
};
// The earliest due time of the thread's timers (ULLONG_MAX when none).
ULONGLONG NextTimerDue(DWORD thread);
// Takes the first timer of the thread due at `now`, reschedules it, and fills *out.
bool TakeDueTimer(DWORD thread, ULONGLONG now, MSG* out);
void KillTimersOf(HWND hwnd);
bool ManualClock();
// Gives the clock to the test harness: a manual clock at `startMs` (true), or the real one.
void SetManualClock(bool manual, ULONGLONG startMs);
void SetManualTime(ULONGLONG ms);

// Input state ----------------------------------------------------------------------------------
struct InputState {
    QPoint cursor{0, 0};
    bool clipOn = false;
    QRect clip;
    HWND capture = nullptr;
    HWND focus = nullptr;
    HWND active = nullptr;
    HWND hover = nullptr;        // the window under the pointer at the last mouse input
    HWND trackLeave = nullptr;   // _TrackMouseEvent(TME_LEAVE) asked by this window
    // _TrackMouseEvent(TME_HOVER): the window, its hover time, the screen rectangle the
    // pointer must rest in and when the rest is long enough (layer clock).
    HWND trackHover = nullptr;
    UINT hoverMs = 400;
    QRect hoverRect;
    ULONGLONG hoverDue = 0;
    // The window that heard WM_SETFOCUS and not yet WM_KILLFOCUS (null while a focus change
    // is under way), and the windows inside their WM_KILLFOCUS now.
    HWND focusHeld = nullptr;
    std::vector<HWND> losingFocus;
    BYTE asyncKeys[256]{};       // as input arrives
    BYTE syncKeys[256]{};        // as messages are retrieved
    HCURSOR cursorShape = nullptr;
    // Double-click detection.
    UINT lastDownMsg = 0;
    HWND lastDownWnd = nullptr;
    ULONGLONG lastDownTime = 0;
    QPoint lastDownPt;
    UINT dblClickMs = 500;
};
InputState& Input();  // under the lock
// Applied when a thread retrieves an input message: the key state GetKeyState reports.
void UpdateSyncKeyState(const MSG& m);
// Forget per-window input state of a window being destroyed (capture, focus, hover).
void ForgetInputOf(HWND hwnd);
// The earliest hover notice due for a thread's window (ULLONG_MAX: none), and taking it
// when due: WM_MOUSEHOVER for the tracking window, which then stops tracking.
ULONGLONG HoverDue(DWORD thread);
bool TakeDueHover(DWORD thread, ULONGLONG now, MSG* out, bool remove = true);
// The focus leaves windows that go: WM_KILLFOCUS to the one that held it, if one of them.
void DropFocusOf(const std::vector<HWND>& windows);

// Input injection: the one road of toolkit events and of simulated input. Points are in
// screen coordinates; the message goes to the thread queue of the window that gets it.
enum class MouseButton { Left, Right, Middle };
void InjectMouseMove(QPoint screen);
void InjectMouseButton(MouseButton button, bool down, QPoint screen);
void InjectWheel(int delta, QPoint screen);
// A key going down or up (virtual key code); the character comes from TranslateMessage.
void InjectKey(int vk, bool down);
// A typed character that no key of the layout gives (posted as WM_CHAR to the focus).
void InjectChar(BYTE ch);
// The virtual key and shift need of an 8-bit character (US layout); vk 0 when none.
struct KeyStroke {
    int vk = 0;
    bool shift = false;
};
KeyStroke KeyForChar(BYTE ch);

// Painting -------------------------------------------------------------------------------------
// Adds (or removes, when validate) a client region (null: all) to the update region;
// includes children unless the window clips them, as the platform does: allChildren takes
// them whether clipped or not, noChildren leaves them out.
void Invalidate(HWND hwnd, const QRegion* clientRegion, bool erase, bool validate, bool allChildren,
                bool noChildren = false);
// Sends WM_PAINT to the window (and its children when asked) if they have something to paint.
void PaintNow(HWND hwnd, bool children);
// The first window of this thread with an update region, in paint order.
HWND NextWindowToPaint(DWORD thread);
// Makes or resizes the top-level surface to the window size, keeping the old pixels.
void EnsureSurface(WindowRec* w);
// The virtual screen's pixels in a screen rectangle: every visible top-level window's
// surface in stacking order over black (screen capture, GetDC of the screen).
QImage ComposeScreen(const QRect& screenRect);
// Shows or hides, moves the presenter of a top-level window.
void SyncPresenter(HWND hwnd);
void DestroyPresenter(WindowRec* w);

// The HCURSOR of a standard shape id, and the toolkit shape it shows.
int CursorShapeOf(HCURSOR h);
// The picture and hot spot of a pointer loaded from a module's CURSOR resource; false
// (and nothing written) for a standard shape or an unknown handle.
bool CursorImageOf(HCURSOR h, QImage* image, QPoint* hotSpot);

// Runs a window procedure with the thread's current-message record kept for Default().
LRESULT CallProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);

// Tooltips of windows that enabled them: sees each retrieved mouse and key message before
// it is dispatched (PreTranslate calls it), and forgets a window that goes.
void FilterToolTipMessage(const MSG* msg);
void ForgetToolTipsOf(HWND hwnd);

}  // namespace orlex::detail

namespace orlex {
// Offers a retrieved message to PreTranslateMessage of its window and its ancestors.
BOOL PreTranslate(MSG* msg);
}  // namespace orlex
