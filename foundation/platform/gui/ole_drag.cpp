// Drag and drop: drop targets registered on windows, and the modal loop of a drag.
//
// The loop owns the mouse capture through a hidden window of its own, so every pointer
// message — taken by the loop itself, or dispatched by whoever pumps (the harness inside
// the modal hook) — comes to it. The decisions read the key state as of the message last
// retrieved (GetKeyState), which keeps queued input and its key state in step.
#include <cassert>
#include <map>
#include <mutex>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxole.h"

namespace {

// Registered targets by window.
struct Registry {
    std::mutex mu;
    std::map<HWND, COleDropTarget*> targets;
};
Registry& Targets() {
    static Registry* r = new Registry;
    return *r;
}

// The target of a window, or of its nearest ancestor that has one (null when none).
COleDropTarget* FindTarget(HWND hit, HWND* where) {
    *where = nullptr;
    Registry& r = Targets();
    for (HWND h = hit; h; h = (GetWindowLongPtrA(h, GWL_STYLE) & WS_CHILD) ? ::GetParent(h) : nullptr) {
        std::lock_guard lock(r.mu);
        auto it = r.targets.find(h);
        if (it != r.targets.end()) {
            *where = h;
            return it->second;
        }
    }
    return nullptr;
}

bool IsRegistered(HWND h, const COleDropTarget* t) {
    if (!h || !t || !::IsWindow(h)) return false;
    Registry& r = Targets();
    std::lock_guard lock(r.mu);
    auto it = r.targets.find(h);
    return it != r.targets.end() && it->second == t;
}

// Key state as of the message last retrieved, in the flags targets are given.
DWORD KeyStateNow() {
    DWORD k = 0;
    if (GetKeyState(VK_LBUTTON) & 0x8000) k |= MK_LBUTTON;
    if (GetKeyState(VK_RBUTTON) & 0x8000) k |= MK_RBUTTON;
    if (GetKeyState(VK_MBUTTON) & 0x8000) k |= MK_MBUTTON;
    if (GetKeyState(VK_SHIFT) & 0x8000) k |= MK_SHIFT;
    if (GetKeyState(VK_CONTROL) & 0x8000) k |= MK_CONTROL;
    if (GetKeyState(VK_MENU) & 0x8000) k |= MK_ALT;
    return k;
}

constexpr UINT kNcMButtonDblClk = 0x00A9;  // the last non-client mouse message

bool IsPointerMessage(UINT m) {
    return (m >= WM_MOUSEFIRST && m <= WM_MOUSELAST) || (m >= WM_NCMOUSEMOVE && m <= kNcMButtonDblClk);
}
bool IsKeyMessage(UINT m) { return m >= WM_KEYFIRST && m <= WM_KEYLAST; }

// The standard pointer of an effect; a move shows before a copy when a target offers both.
LPCSTR PointerOf(DROPEFFECT e) {
    if (e & DROPEFFECT_MOVE) return IDC_SIZEALL;
    if (e & DROPEFFECT_COPY) return IDC_CROSS;
    if (e & DROPEFFECT_LINK) return IDC_HAND;
    return IDC_NO;
}

constexpr UINT_PTR kPollTimer = 1;
constexpr UINT kPollMs = 50;

thread_local bool t_dragging = false;

// One drag, from the call to its end.
struct DragSession {
    COleDataObject object;
    DWORD allowed = 0;
    COleDropSource* source = nullptr;
    RECT startRect{};
    bool started = false;
    bool done = false;
    DROPEFFECT result = DROPEFFECT_NONE;
    HWND targetWnd = nullptr;
    COleDropTarget* target = nullptr;
    DROPEFFECT effect = DROPEFFECT_NONE;
    POINT lastPt{};
    DWORD lastKeys = 0;
    SHORT escapeToggle = 0;

    // Escape pressed since the drag began, also when its key message went to another window.
    bool EscapeSeen() const {
        const SHORT k = GetKeyState(VK_ESCAPE);
        return (k & 0x8000) || (k & 1) != escapeToggle;
    }

    void Finish(DROPEFFECT r) {
        assert(!done && !target);  // a drag ends once, with its target let go
        done = true;
        result = r;
    }

    // Forgets a target that was revoked or whose window went (it is owed no leave).
    void CheckTarget() {
        if (target && !IsRegistered(targetWnd, target)) {
            target = nullptr;
            targetWnd = nullptr;
            effect = DROPEFFECT_NONE;
        }
    }

    void Leave() {
        CheckTarget();
        COleDropTarget* t = target;
        HWND w = targetWnd;
        target = nullptr;
        targetWnd = nullptr;
        effect = DROPEFFECT_NONE;
        if (t) t->OnDragLeave(CWnd::FromHandle(w));
    }

    void Cancel() {
        if (done) return;
        Leave();
        Finish(DROPEFFECT_NONE);
    }

    DROPEFFECT Allowed(DROPEFFECT e) const { return e & (allowed | DROPEFFECT_SCROLL); }

    void Feedback() {
        if (source->GiveFeedback(effect) == DRAGDROP_S_USEDEFAULTCURSORS)
            ::SetCursor(::LoadCursorA(nullptr, PointerOf(effect & ~DROPEFFECT_SCROLL)));
    }

    void Track(POINT pt, DWORD keys) {
        assert(started && !done);
        HWND w = nullptr;
        COleDropTarget* t = FindTarget(::WindowFromPoint(pt), &w);
        CheckTarget();
        const bool moved = pt.x != lastPt.x || pt.y != lastPt.y || keys != lastKeys;
        lastPt = pt;
        lastKeys = keys;
        if (w != targetWnd || t != target) {
            Leave();
            if (t) {
                targetWnd = w;
                target = t;
                CPoint cp(pt);
                ::ScreenToClient(w, &cp);
                const DROPEFFECT e = t->OnDragEnter(CWnd::FromHandle(w), &object, keys, cp);
                CheckTarget();
                if (target) effect = Allowed(e);
            }
        } else if (t && moved) {
            CPoint cp(pt);
            ::ScreenToClient(w, &cp);
            CWnd* wnd = CWnd::FromHandle(w);
            DROPEFFECT e = t->OnDragScroll(wnd, keys, cp);
            CheckTarget();
            if (target && !(e & DROPEFFECT_SCROLL)) {
                e = t->OnDragOver(wnd, &object, keys, cp);
                CheckTarget();
            }
            if (target) effect = Allowed(e);
        }
        Feedback();
    }

    void Drop(POINT pt) {
        CheckTarget();
        const DROPEFFECT e = effect & ~DROPEFFECT_SCROLL;
        if (!target || e == DROPEFFECT_NONE) {
            Cancel();
            return;
        }
        COleDropTarget* t = target;
        HWND w = targetWnd;
        target = nullptr;  // the drop ends the target's part: no leave follows
        targetWnd = nullptr;
        CPoint cp(pt);
        ::ScreenToClient(w, &cp);
        CWnd* wnd = CWnd::FromHandle(w);
        DROPEFFECT r = t->OnDropEx(wnd, &object, e, allowed, cp);
        if (r == static_cast<DROPEFFECT>(-1)) r = t->OnDrop(wnd, &object, e, cp) ? e : DROPEFFECT_NONE;
        Finish(r);
    }

    // One turn of the drag: the pointer is at `pt` (screen), the keys are `keys`.
    void Step(POINT pt, DWORD keys, bool escape) {
        assert(source);
        if (done) return;
        const SCODE sc = source->QueryContinueDrag((escape || EscapeSeen()) ? TRUE : FALSE, keys);
        if (!started) {
            // Released or cancelled before the pointer went far enough: no drag at all.
            if (sc != S_OK) {
                Finish(DROPEFFECT_NONE);
                return;
            }
            if (::PtInRect(&startRect, pt)) return;
            started = true;
        }
        if (sc == DRAGDROP_S_CANCEL) {
            Cancel();
        } else if (sc == DRAGDROP_S_DROP) {
            Drop(pt);
        } else {
            Track(pt, keys);
        }
    }
};

// The loop's hidden window: it holds the capture, polls the keys by timer and gives the
// modal-loop hook its one chance to act.
class DragWnd : public CWnd {
public:
    DragSession* session = nullptr;

    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        DragSession* s = session;
        if (s && !s->done) {
            if (IsPointerMessage(m)) {
                const DWORD pos = ::GetMessagePos();
                s->Step(POINT{GET_X_LPARAM(pos), GET_Y_LPARAM(pos)}, KeyStateNow(), false);
                return 0;
            }
            if (IsKeyMessage(m)) {
                s->Step(s->lastPt, KeyStateNow(), m == WM_KEYDOWN && wp == VK_ESCAPE);
                return 0;
            }
            if (m == WM_TIMER && wp == kPollTimer) {
                POINT p;
                ::GetCursorPos(&p);
                s->Step(p, KeyStateNow(), false);
                return 0;
            }
            if (m == WM_CAPTURECHANGED) {
                // Another window took the mouse: the drag can't go on.
                s->Cancel();
                return 0;
            }
        }
        return CWnd::WindowProc(m, wp, lp);
    }

    // Runs the layer's modal loop for one turn: when idle it calls the modal-loop hook (if
    // a test set one) and then returns; headless without a hook it returns at once.
    void RunHookTurn() {
        nested_ = true;
        turns_ = 0;
        RunModalLoop(0);
        nested_ = false;
    }

    BOOL ContinueModal() override {
        if (!nested_) return CWnd::ContinueModal();
        return (session && !session->done && turns_++ == 0) ? TRUE : FALSE;
    }

private:
    bool nested_ = false;
    int turns_ = 0;
};

}  // namespace

// COleDataSource::DoDragDrop ----------------------------------------------------------------------
DROPEFFECT COleDataSource::DoDragDrop(DWORD allowed, LPCRECT startRect, COleDropSource* source) {
    // One drag at a time on a thread: a target can't start another inside the loop.
    if (t_dragging) return DROPEFFECT_NONE;
    t_dragging = true;

    COleDropSource standard;
    DragSession s;
    s.allowed = allowed;
    s.source = source ? source : &standard;
    s.object.Attach(this, FALSE);
    // The pointer now, as the platform takes it; a caller whose input may run ahead of
    // the message being handled passes the rectangle about the press instead.
    POINT p0{};
    ::GetCursorPos(&p0);
    if (startRect) {
        s.startRect = *startRect;
    } else {
        const int dx = GetSystemMetrics(SM_CXDRAG), dy = GetSystemMetrics(SM_CYDRAG);
        s.startRect = RECT{p0.x - dx, p0.y - dy, p0.x + dx, p0.y + dy};
    }
    const DWORD keys0 = KeyStateNow();
    // The button held now drops the data; pressing another cancels.
    DWORD drop = MK_LBUTTON;
    if (!(keys0 & MK_LBUTTON)) {
        if (keys0 & MK_RBUTTON) drop = MK_RBUTTON;
        else if (keys0 & MK_MBUTTON) drop = MK_MBUTTON;
    }
    s.source->m_dwButtonDrop = drop;
    s.source->m_dwButtonCancel = (MK_LBUTTON | MK_RBUTTON | MK_MBUTTON) & ~drop;
    s.escapeToggle = static_cast<SHORT>(GetKeyState(VK_ESCAPE) & 1);
    s.lastPt = p0;
    s.lastKeys = keys0;

    DragWnd wnd;
    const HCURSOR before = ::GetCursor();
    if (!wnd.CreateEx(0, AfxRegisterWndClass(0), "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr)) {
        t_dragging = false;
        return DROPEFFECT_NONE;
    }
    wnd.session = &s;
    ::SetCapture(wnd.m_hWnd);
    ::SetTimer(wnd.m_hWnd, kPollTimer, kPollMs, nullptr);

    // With no button down (or it already went up) the first turn ends the drag.
    s.Step(p0, keys0, false);
    bool hookTurn = false;
    while (!s.done) {
        MSG m;
        bool got = ::PeekMessageA(&m, nullptr, 0, 0, PM_REMOVE) != FALSE;
        if (!got) {
            if (!hookTurn) {
                hookTurn = true;
                wnd.RunHookTurn();
                continue;
            }
            if (orlex::IsHeadless()) {
                // No display and no more input: nobody can end the drag but us.
                s.Cancel();
                break;
            }
            if (!::GetMessageA(&m, nullptr, 0, 0)) {
                ::PostQuitMessage(static_cast<int>(m.wParam));
                s.Cancel();
                break;
            }
        }
        if (m.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(m.wParam));
            s.Cancel();
            break;
        }
        if (IsPointerMessage(m.message)) {
            s.Step(m.pt, KeyStateNow(), false);
        } else if (IsKeyMessage(m.message)) {
            // Keys belong to the drag while it runs; the focus window doesn't see them.
            s.Step(s.lastPt, KeyStateNow(), m.message == WM_KEYDOWN && m.wParam == VK_ESCAPE);
        } else {
            ::TranslateMessage(&m);
            ::DispatchMessageA(&m);
        }
    }

    wnd.session = nullptr;
    ::KillTimer(wnd.m_hWnd, kPollTimer);
    if (::GetCapture() == wnd.m_hWnd) ::ReleaseCapture();
    wnd.DestroyWindow();
    ::SetCursor(before ? before : ::LoadCursorA(nullptr, IDC_ARROW));
    s.object.Release();
    t_dragging = false;
    return s.result;
}

// COleDropTarget ---------------------------------------------------------------------------------
COleDropTarget::~COleDropTarget() {
    if (m_hWnd) COleDropTarget::Revoke();
}

BOOL COleDropTarget::Register(CWnd* wnd) {
    if (m_hWnd || !wnd || !::IsWindow(wnd->m_hWnd)) return FALSE;
    Registry& r = Targets();
    std::lock_guard lock(r.mu);
    // Registrations of windows that went are dropped here: their handles may come again.
    std::erase_if(r.targets, [](const auto& e) { return !::IsWindow(e.first); });
    if (r.targets.count(wnd->m_hWnd)) return FALSE;
    r.targets[wnd->m_hWnd] = this;
    m_hWnd = wnd->m_hWnd;
    return TRUE;
}

void COleDropTarget::Revoke() {
    if (!m_hWnd) return;
    Registry& r = Targets();
    std::lock_guard lock(r.mu);
    auto it = r.targets.find(m_hWnd);
    if (it != r.targets.end() && it->second == this) r.targets.erase(it);
    m_hWnd = nullptr;
}

DROPEFFECT COleDropTarget::OnDragEnter(CWnd* wnd, COleDataObject* data, DWORD keyState, CPoint point) {
    return OnDragOver(wnd, data, keyState, point);
}

DROPEFFECT COleDropTarget::OnDragOver(CWnd*, COleDataObject*, DWORD, CPoint) { return DROPEFFECT_NONE; }

BOOL COleDropTarget::OnDrop(CWnd*, COleDataObject*, DROPEFFECT, CPoint) { return FALSE; }

DROPEFFECT COleDropTarget::OnDropEx(CWnd*, COleDataObject*, DROPEFFECT, DROPEFFECT, CPoint) {
    return static_cast<DROPEFFECT>(-1);
}

void COleDropTarget::OnDragLeave(CWnd*) {}

DROPEFFECT COleDropTarget::OnDragScroll(CWnd*, DWORD, CPoint) { return DROPEFFECT_NONE; }
