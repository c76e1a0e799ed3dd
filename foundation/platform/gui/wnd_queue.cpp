// Message queues per thread, sending and posting, the message loop calls, timers and the
// layer's clock, and the default window procedure.
#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <chrono>
#include <climits>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/gui/wnd_p.h"

namespace orlex::detail {

namespace {

std::unordered_map<DWORD, std::unique_ptr<ThreadQueue>>& Queues() {
    static std::unordered_map<DWORD, std::unique_ptr<ThreadQueue>> q;
    return q;
}

std::atomic<DWORD> g_nextThread{1};
thread_local DWORD t_thread = 0;
thread_local std::vector<MSG> t_current;  // messages being handled, innermost last
thread_local int t_inSend = 0;

// Clock ---------------------------------------------------------------------------------------
std::mutex g_clockLock;
std::function<ULONGLONG()> g_clockSource;
bool g_manual = false;
ULONGLONG g_manualNow = 0;

ULONGLONG RealMs() {
    static const auto start = std::chrono::steady_clock::now();
    return static_cast<ULONGLONG>(
        std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start).count());
}

// Timers -------------------------------------------------------------------------------------
std::vector<Timer>& Timers() {
    static std::vector<Timer> t;
    return t;
}
ULONGLONG g_timerSeq = 0;
UINT_PTR g_nextThreadTimer = 0x7F00;

bool IsGuiThread() {
    auto* app = QCoreApplication::instance();
    return app && app->thread() == QThread::currentThread();
}

bool Matches(const MSG& m, HWND filter, UINT lo, UINT hi) {
    if (filter && m.hwnd != filter) return false;
    if (lo == 0 && hi == 0) return true;
    return m.message >= lo && m.message <= hi;
}

// Runs the sent messages waiting for this thread; the caller holds the lock (it is released
// around each call).
void RunIncomingSends(std::unique_lock<std::mutex>& lk, ThreadQueue* q) {
    while (!q->sent.empty()) {
        SentMessage* s = q->sent.front();
        q->sent.pop_front();
        lk.unlock();
        ++t_inSend;
        LRESULT r = Find(s->hwnd) ? CallProc(s->hwnd, s->msg, s->wp, s->lp) : 0;
        --t_inSend;
        lk.lock();
        s->result = r;
        s->done = true;
        s->from->cv.notify_all();
        WakeThread(s->from);
    }
}

// Looks for the next message: posted, quit, paint, timer. remove takes it off the queue.
bool FindMessage(std::unique_lock<std::mutex>& lk, ThreadQueue* q, MSG* out, HWND filter, UINT lo, UINT hi,
                 bool remove) {
    RunIncomingSends(lk, q);
    for (auto it = q->posted.begin(); it != q->posted.end(); ++it) {
        if (!Matches(*it, filter, lo, hi)) continue;
        *out = *it;
        if (remove) q->posted.erase(it);
        return true;
    }
    if (q->quit && !filter) {
        *out = MSG{nullptr, WM_QUIT, static_cast<WPARAM>(q->quitCode), 0, static_cast<DWORD>(ClockMs()), {}};
        if (remove) q->quit = false;
        return true;
    }
    if (Matches(MSG{filter, WM_PAINT, 0, 0, 0, {}}, filter, lo, hi)) {
        HWND p = NextWindowToPaint(q->id);
        // A window that needs only its frame drawn gets WM_NCPAINT, not WM_PAINT.
        for (int guard = 0; p && guard < 10000; ++guard) {
            WindowRec* w = Find(p);
            if (!w || !w->update.isEmpty() || w->internalPaint || !w->ncDirty) break;
            w->ncDirty = false;
            lk.unlock();
            SendMessageA(p, WM_NCPAINT, 1, 0);
            lk.lock();
            p = NextWindowToPaint(q->id);
        }
        if (p && (!filter || p == filter)) {
            *out = MSG{p, WM_PAINT, 0, 0, static_cast<DWORD>(ClockMs()), {}};
            return true;
        }
    }
    if (Matches(MSG{filter, WM_TIMER, 0, 0, 0, {}}, filter, lo, hi)) {
        ULONGLONG now = ClockMs();
        MSG t{};
        if (NextTimerDue(q->id) <= now && TakeDueTimer(q->id, now, &t)) {
            if (!filter || t.hwnd == filter) {
                *out = t;
                return true;
            }
        }
    }
    if (Input().trackHover && Matches(MSG{Input().trackHover, WM_MOUSEHOVER, 0, 0, 0, {}}, filter, lo, hi)) {
        MSG h{};
        if (TakeDueHover(q->id, ClockMs(), &h, remove)) {
            *out = h;
            return true;
        }
    }
    return false;
}

void Retrieved(ThreadQueue* q, const MSG& m) {
    q->last = m;
    UpdateSyncKeyState(m);
}

}  // namespace

DWORD CurrentThread() {
    if (!t_thread) {
        // The thread objects' loop comes with the queues (and its part is linked with them).
        static const bool loop = (InstallThreadLoop(), true);
        (void)loop;
        t_thread = g_nextThread++;
    }
    return t_thread;
}

ThreadQueue* QueueOf(DWORD thread) {
    auto& qs = Queues();
    auto it = qs.find(thread);
    if (it != qs.end()) return it->second.get();
    auto q = std::make_unique<ThreadQueue>();
    q->id = thread;
    ThreadQueue* raw = q.get();
    qs[thread] = std::move(q);
    return raw;
}

void WakeThread(ThreadQueue* q) {
    q->cv.notify_all();
    if (q->gui) {
        if (auto* app = QCoreApplication::instance())
            if (auto* d = QAbstractEventDispatcher::instance(app->thread())) d->wakeUp();
    }
}

void PostInput(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp, QPoint screen) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return;
    ThreadQueue* q = QueueOf(w->thread);
    q->posted.push_back(MSG{hwnd, msg, wp, lp, static_cast<DWORD>(ClockMs()), POINT{screen.x(), screen.y()}});
    WakeThread(q);
}

LRESULT CallProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    WNDPROC proc = nullptr;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return 0;
        proc = w->proc;
    }
    t_current.push_back(MSG{hwnd, msg, wp, lp, 0, {}});
    LRESULT r = proc ? proc(hwnd, msg, wp, lp) : 0;
    t_current.pop_back();
    return r;
}

const MSG* CurrentMessage() { return t_current.empty() ? nullptr : &t_current.back(); }

// Timers ---------------------------------------------------------------------------------------
ULONGLONG NextTimerDue(DWORD thread) {
    // A pending hover notice wakes the thread like a timer.
    ULONGLONG best = HoverDue(thread);
    for (const Timer& t : Timers())
        if (t.thread == thread) best = std::min(best, t.due);
    return best;
}

bool TakeDueTimer(DWORD thread, ULONGLONG now, MSG* out) {
    Timer* best = nullptr;
    for (Timer& t : Timers()) {
        if (t.thread != thread || t.due > now) continue;
        if (!best || t.due < best->due || (t.due == best->due && t.seq < best->seq)) best = &t;
    }
    if (!best) return false;
    *out = MSG{best->hwnd, WM_TIMER, best->id, reinterpret_cast<LPARAM>(best->proc), static_cast<DWORD>(best->due),
               POINT{Input().cursor.x(), Input().cursor.y()}};
    best->due = now + best->period;
    best->seq = ++g_timerSeq;
    return true;
}

void KillTimersOf(HWND hwnd) {
    std::lock_guard<std::mutex> g(Lock());
    auto& ts = Timers();
    ts.erase(std::remove_if(ts.begin(), ts.end(), [&](const Timer& t) { return t.hwnd == hwnd; }), ts.end());
}

bool ManualClock() {
    std::lock_guard<std::mutex> g(g_clockLock);
    return g_manual;
}

void SetManualClock(bool manual, ULONGLONG startMs) {
    std::lock_guard<std::mutex> g(g_clockLock);
    g_manual = manual;
    g_manualNow = startMs;
}

void SetManualTime(ULONGLONG ms) {
    {
        std::lock_guard<std::mutex> g(g_clockLock);
        g_manualNow = ms;
    }
    // Threads waiting in GetMessageA look again: a timer of theirs may be due now.
    std::lock_guard<std::mutex> g(Lock());
    for (auto& [id, q] : Queues()) q->cv.notify_all();
}

}  // namespace orlex::detail

using namespace orlex::detail;

namespace orlex {

ULONGLONG ClockMs() {
    std::lock_guard<std::mutex> g(g_clockLock);
    if (g_manual) return g_manualNow;
    if (g_clockSource) return g_clockSource();
    return RealMs();
}

void SetClockSource(std::function<ULONGLONG()> source) {
    std::lock_guard<std::mutex> g(g_clockLock);
    g_clockSource = std::move(source);
}

int PumpPending() {
    int n = 0;
    MSG m;
    // A bound keeps a handler that posts to itself for ever from hanging the caller.
    for (int guard = 0; guard < 100000 && PeekMessageA(&m, nullptr, 0, 0, PM_REMOVE); ++guard) {
        if (m.message == WM_QUIT) {
            PostQuitMessage(static_cast<int>(m.wParam));
            break;
        }
        if (!PreTranslate(&m)) {
            TranslateMessage(&m);
            DispatchMessageA(&m);
        }
        ++n;
    }
    return n;
}

}  // namespace orlex

DWORD GetCurrentThreadId() { return CurrentThread(); }

DWORD GetWindowThreadProcessId(HWND hwnd, DWORD* processId) {
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (processId) *processId = w ? 1 : 0;
    return w ? w->thread : 0;
}

LRESULT SendMessageA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    DWORD target;
    {
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(hwnd);
        if (!w) return 0;
        target = w->thread;
    }
    DWORD self = CurrentThread();
    if (target == self) return CallProc(hwnd, msg, wp, lp);

    // Another thread's window: its thread runs the procedure; this one waits, running the
    // messages sent to it meanwhile so that two threads sending to each other don't lock.
    SentMessage s;
    std::unique_lock<std::mutex> lk(Lock());
    ThreadQueue* mine = QueueOf(self);
    ThreadQueue* theirs = QueueOf(target);
    s.from = mine;
    s.hwnd = hwnd;
    s.msg = msg;
    s.wp = wp;
    s.lp = lp;
    theirs->sent.push_back(&s);
    WakeThread(theirs);
    while (!s.done) {
        RunIncomingSends(lk, mine);
        if (s.done) break;
        mine->cv.wait(lk);
    }
    return s.result;
}

BOOL InSendMessage() { return t_inSend > 0; }

BOOL PostMessageA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    if (!hwnd) return PostThreadMessageA(CurrentThread(), msg, wp, lp);
    std::lock_guard<std::mutex> g(Lock());
    WindowRec* w = Find(hwnd);
    if (!w) return FALSE;
    ThreadQueue* q = QueueOf(w->thread);
    q->posted.push_back(MSG{hwnd, msg, wp, lp, static_cast<DWORD>(orlex::ClockMs()),
                            POINT{Input().cursor.x(), Input().cursor.y()}});
    WakeThread(q);
    return TRUE;
}

BOOL PostThreadMessageA(DWORD threadId, UINT msg, WPARAM wp, LPARAM lp) {
    std::lock_guard<std::mutex> g(Lock());
    auto& qs = Queues();
    auto it = qs.find(threadId);
    if (it == qs.end()) return FALSE;
    it->second->posted.push_back(MSG{nullptr, msg, wp, lp, static_cast<DWORD>(orlex::ClockMs()),
                                     POINT{Input().cursor.x(), Input().cursor.y()}});
    WakeThread(it->second.get());
    return TRUE;
}

void PostQuitMessage(int exitCode) {
    std::lock_guard<std::mutex> g(Lock());
    ThreadQueue* q = QueueOf(CurrentThread());
    q->quit = true;
    q->quitCode = exitCode;
    WakeThread(q);
}

BOOL PeekMessageA(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax, UINT removeFlags) {
    if (!msg) return FALSE;
    if (IsGuiThread()) QCoreApplication::processEvents();
    std::unique_lock<std::mutex> lk(Lock());
    if (hwnd && !Find(hwnd)) return FALSE;
    ThreadQueue* q = QueueOf(CurrentThread());
    q->gui = IsGuiThread();
    if (!FindMessage(lk, q, msg, hwnd, filterMin, filterMax, (removeFlags & PM_REMOVE) != 0)) return FALSE;
    if (removeFlags & PM_REMOVE) Retrieved(q, *msg);
    return TRUE;
}

BOOL GetMessageA(MSG* msg, HWND hwnd, UINT filterMin, UINT filterMax) {
    if (!msg) return -1;
    const bool gui = IsGuiThread();
    for (;;) {
        if (gui) QCoreApplication::processEvents();
        ULONGLONG due;
        {
            std::unique_lock<std::mutex> lk(Lock());
            if (hwnd && !Find(hwnd)) return -1;
            ThreadQueue* q = QueueOf(CurrentThread());
            q->gui = gui;
            if (FindMessage(lk, q, msg, hwnd, filterMin, filterMax, true)) {
                Retrieved(q, *msg);
                return msg->message != WM_QUIT;
            }
            due = NextTimerDue(q->id);
            if (!gui) {
                // Worker threads wait on their condition until a message or a timer is due.
                if (due == ULLONG_MAX || ManualClock()) {
                    q->cv.wait(lk);
                } else {
                    ULONGLONG now = orlex::ClockMs();
                    if (due > now) q->cv.wait_for(lk, std::chrono::milliseconds(due - now));
                }
                continue;
            }
        }
        // The toolkit's thread waits in the toolkit's loop, which input also wakes.
        QTimer wake;
        wake.setSingleShot(true);
        if (due != ULLONG_MAX && !ManualClock()) {
            ULONGLONG now = orlex::ClockMs();
            wake.start(static_cast<int>(std::min<ULONGLONG>(due > now ? due - now : 0, INT_MAX)));
        }
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

namespace orlex::detail {
bool ScrollTrackMouse(const MSG& m);
}

LRESULT DispatchMessageA(const MSG* msg) {
    if (!msg || !msg->hwnd) return 0;
    if (msg->message == WM_TIMER && msg->lParam) {
        auto proc = reinterpret_cast<TIMERPROC>(msg->lParam);
        proc(msg->hwnd, WM_TIMER, msg->wParam, msg->time);
        return 0;
    }
    if (!IsWindow(msg->hwnd)) return 0;
    if (ScrollTrackMouse(*msg)) return 0;
    QRegion before;
    unsigned serial = 0;
    if (msg->message == WM_PAINT) {
        std::lock_guard<std::mutex> g(Lock());
        if (WindowRec* w = Find(msg->hwnd)) {
            before = w->update;
            serial = w->paintSerial;
        }
    }
    LRESULT r = CallProc(msg->hwnd, msg->message, msg->wParam, msg->lParam);
    if (msg->message == WM_PAINT) {
        // A handler that never began painting must not be asked again for ever: what was to
        // paint when it was called counts as painted; what it invalidated since stays.
        std::lock_guard<std::mutex> g(Lock());
        WindowRec* w = Find(msg->hwnd);
        if (w && w->paintSerial == serial) {
            w->update -= before;
            if (w->update.isEmpty()) w->erase = false;
            w->internalPaint = false;
            w->ncDirty = false;
        }
    }
    return r;
}

LRESULT CallWindowProcA(WNDPROC proc, HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    return proc ? proc(hwnd, msg, wp, lp) : 0;
}

DWORD GetMessageTime() {
    std::lock_guard<std::mutex> g(Lock());
    return QueueOf(CurrentThread())->last.time;
}

DWORD GetMessagePos() {
    std::lock_guard<std::mutex> g(Lock());
    const MSG& m = QueueOf(CurrentThread())->last;
    return static_cast<DWORD>(MAKELONG(static_cast<WORD>(m.pt.x), static_cast<WORD>(m.pt.y)));
}

// Timers ---------------------------------------------------------------------------------------
UINT_PTR SetTimer(HWND hwnd, UINT_PTR id, UINT elapseMs, TIMERPROC proc) {
    std::lock_guard<std::mutex> g(Lock());
    DWORD thread = CurrentThread();
    if (hwnd) {
        WindowRec* w = Find(hwnd);
        if (!w) return 0;
        thread = w->thread;
    } else {
        if (!proc) return 0;
        id = ++g_nextThreadTimer;
    }
    UINT period = std::max<UINT>(elapseMs, 10);  // the platform's shortest period
    auto& ts = Timers();
    ts.erase(std::remove_if(ts.begin(), ts.end(), [&](const Timer& t) { return t.hwnd == hwnd && t.id == id; }),
             ts.end());
    ts.push_back(Timer{hwnd, id, period, orlex::ClockMs() + period, proc, thread, ++g_timerSeq});
    WakeThread(QueueOf(thread));
    return id ? id : 1;
}

BOOL KillTimer(HWND hwnd, UINT_PTR id) {
    std::lock_guard<std::mutex> g(Lock());
    auto& ts = Timers();
    auto it = std::remove_if(ts.begin(), ts.end(), [&](const Timer& t) { return t.hwnd == hwnd && t.id == id; });
    bool found = it != ts.end();
    ts.erase(it, ts.end());
    // A WM_TIMER already queued for it goes too.
    for (auto& [k, q] : Queues()) {
        auto& p = q->posted;
        p.erase(std::remove_if(p.begin(), p.end(),
                               [&](const MSG& m) { return m.message == WM_TIMER && m.hwnd == hwnd && m.wParam == id; }),
                p.end());
    }
    return found;
}

// Default window procedure ----------------------------------------------------------------------
namespace orlex::detail {
LRESULT DefText(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp);
LRESULT DefNcHitTest(HWND hwnd, POINT screen);
void DefNcPaint(HWND hwnd);
LRESULT DefScrollBarMouse(HWND hwnd, UINT msg, WPARAM hit, POINT screen);
}  // namespace orlex::detail

LRESULT DefWindowProcA(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    switch (msg) {
    case WM_NCCREATE:
        return TRUE;
    case WM_SETTEXT:
    case WM_GETTEXT:
    case WM_GETTEXTLENGTH:
        return DefText(hwnd, msg, wp, lp);
    case WM_PAINT: {
        PAINTSTRUCT ps{};
        BeginPaint(hwnd, &ps);
        EndPaint(hwnd, &ps);
        return 0;
    }
    case WM_NCPAINT:
        DefNcPaint(hwnd);
        return 0;
    case WM_ERASEBKGND: {
        HBRUSH brush = nullptr;
        {
            std::lock_guard<std::mutex> g(Lock());
            WindowRec* w = Find(hwnd);
            if (!w) return 0;
            brush = w->cls.wc.hbrBackground;
        }
        if (!brush || !wp) return 0;
        RECT rc;
        GetClientRect(hwnd, &rc);
        FillRect(reinterpret_cast<HDC>(wp), &rc, brush);
        return 1;
    }
    case WM_SETCURSOR: {
        HWND parent = GetParent(hwnd);
        if (parent && (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_CHILD) && SendMessageA(parent, WM_SETCURSOR, wp, lp))
            return TRUE;
        short hit = static_cast<short>(LOWORD(lp));
        if (hit == HTCLIENT) {
            HCURSOR c = nullptr;
            {
                std::lock_guard<std::mutex> g(Lock());
                if (WindowRec* w = Find(hwnd)) c = w->cls.wc.hCursor;
            }
            if (c) SetCursor(c);
        } else if (hit != HTERROR) {
            // Every other hit code, HTNOWHERE too (a window asking for its pointer with
            // WM_SETCURSOR 0, 0), gets the arrow, as on the platform.
            SetCursor(LoadCursorA(nullptr, IDC_ARROW));
        }
        return FALSE;
    }
    case WM_MOUSEACTIVATE: {
        HWND parent = GetParent(hwnd);
        if (parent && (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_CHILD)) {
            LRESULT r = SendMessageA(parent, WM_MOUSEACTIVATE, wp, lp);
            if (r) return r;
        }
        return MA_ACTIVATE;
    }
    case WM_MOUSEWHEEL:
    case WM_CONTEXTMENU: {
        // Unhandled wheel turns and context requests go up to the parent.
        HWND parent = GetParent(hwnd);
        if (parent && (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_CHILD)) return SendMessageA(parent, msg, wp, lp);
        return 0;
    }
    case WM_RBUTTONUP: {
        POINT pt{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)};
        ClientToScreen(hwnd, &pt);
        SendMessageA(hwnd, WM_CONTEXTMENU, reinterpret_cast<WPARAM>(hwnd),
                     MAKELPARAM(static_cast<WORD>(pt.x), static_cast<WORD>(pt.y)));
        return 0;
    }
    case WM_CLOSE:
        DestroyWindow(hwnd);
        return 0;
    case WM_NCHITTEST:
        return DefNcHitTest(hwnd, POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)});
    case WM_NCLBUTTONDOWN:
    case WM_NCLBUTTONDBLCLK:
        return DefScrollBarMouse(hwnd, msg, wp, POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)});
    case WM_WINDOWPOSCHANGED: {
        auto* pos = reinterpret_cast<const WINDOWPOS*>(lp);
        if (!pos) return 0;
        if (!(pos->flags & SWP_NOSIZE)) {
            RECT rc;
            GetClientRect(hwnd, &rc);
            SendMessageA(hwnd, WM_SIZE, SIZE_RESTORED, MAKELPARAM(static_cast<WORD>(rc.right), static_cast<WORD>(rc.bottom)));
        }
        if (!(pos->flags & SWP_NOMOVE)) {
            POINT org{0, 0};
            ClientToScreen(hwnd, &org);
            if (GetWindowLongPtrA(hwnd, GWL_STYLE) & WS_CHILD) ScreenToClient(GetParent(hwnd), &org);
            SendMessageA(hwnd, WM_MOVE, 0, MAKELPARAM(static_cast<WORD>(org.x), static_cast<WORD>(org.y)));
        }
        return 0;
    }
    case WM_SETREDRAW: {
        std::lock_guard<std::mutex> g(Lock());
        if (WindowRec* w = Find(hwnd)) {
            if (wp) w->style |= WS_VISIBLE;
            else w->style &= ~WS_VISIBLE;
        }
        return 0;
    }
    case WM_ACTIVATE: {
        // An activated window takes the focus unless it already holds it in a child.
        if (LOWORD(wp) != WA_INACTIVE) {
            HWND f = GetFocus();
            if (f != hwnd && !IsChild(hwnd, f)) SetFocus(hwnd);
        }
        return 0;
    }
    case WM_CANCELMODE:
        if (GetCapture() == hwnd) ReleaseCapture();
        return 0;
    case WM_CTLCOLORMSGBOX:
    case WM_CTLCOLOREDIT:
    case WM_CTLCOLORLISTBOX:
    case WM_CTLCOLORBTN:
    case WM_CTLCOLORDLG:
    case WM_CTLCOLORSCROLLBAR:
    case WM_CTLCOLORSTATIC: {
        constexpr int kColorWindow = 5, kColorWindowText = 8, kColorBtnFace = 15;
        HDC dc = reinterpret_cast<HDC>(wp);
        bool face = msg == WM_CTLCOLORSTATIC || msg == WM_CTLCOLORDLG || msg == WM_CTLCOLORBTN ||
                    msg == WM_CTLCOLORMSGBOX || msg == WM_CTLCOLORSCROLLBAR;
        if (dc) {
            SetTextColor(dc, GetSysColor(kColorWindowText));
            SetBkColor(dc, GetSysColor(face ? kColorBtnFace : kColorWindow));
        }
        return reinterpret_cast<LRESULT>(GetSysColorBrush(face ? kColorBtnFace : kColorWindow));
    }
    default:
        return 0;
    }
}
