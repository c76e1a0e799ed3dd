// Scroll bar controls, trackbars and up-down controls.
#include <algorithm>
#include <cstdlib>

#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/gui/ctl_scroll_p.h"

namespace orlex::detail {
namespace {

// Scroll bar -----------------------------------------------------------------------------------

using Part = ScrollPart;
constexpr Part kNone = kScrollNone, kArrowLow = kScrollArrowLow, kPageLow = kScrollPageLow, kThumb = kScrollThumb,
               kPageHigh = kScrollPageHigh, kArrowHigh = kScrollArrowHigh;

struct ScrollState {
    SCROLLINFO si{sizeof(SCROLLINFO), 0, 0, 100, 0, 0, 0};
    Part pressed = kNone;
    POINT pointer{0, 0};  // where the held button is now
    int grab = 0;  // pointer offset inside the thumb while dragging
    bool focus = false;
};
StateTable<ScrollState> g_scrolls;

bool Vertical(HWND hwnd) { return (StyleOf(hwnd) & SBS_VERT) != 0; }

void AxisOf(HWND hwnd, int& length, int& thickness) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    const bool v = Vertical(hwnd);
    length = v ? r.bottom - r.top : r.right - r.left;
    thickness = v ? r.right - r.left : r.bottom - r.top;
}

ScrollGeometry GeometryOf(HWND hwnd, ScrollState& s) {
    int length = 0, thickness = 0;
    AxisOf(hwnd, length, thickness);
    const int pos = s.pressed == kThumb ? s.si.nTrackPos : s.si.nPos;
    return ComputeScroll(length, thickness, s.si.nMin, s.si.nMax, s.si.nPage, pos);
}

Part HitPart(const ScrollGeometry& g, int coord, int length) { return HitScrollPart(g, coord, length); }

void SendScroll(HWND hwnd, UINT code, int pos) {
    HWND parent = ::GetParent(hwnd);
    if (!parent) return;
    ::SendMessageA(parent, Vertical(hwnd) ? WM_VSCROLL : WM_HSCROLL, MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(pos)),
                   reinterpret_cast<LPARAM>(hwnd));
}

// The part under the held pointer, kNone outside the bar.
Part PartUnderPointer(HWND hwnd, ScrollState& s) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    if (!::PtInRect(&r, s.pointer)) return kNone;
    int length = 0, thickness = 0;
    AxisOf(hwnd, length, thickness);
    return HitPart(GeometryOf(hwnd, s), Vertical(hwnd) ? s.pointer.y : s.pointer.x, length);
}

bool Repeats(Part p) { return ScrollPartRepeats(p); }

UINT StepCode(Part p) { return ScrollStepCode(p); }

// A held arrow or page part looks pressed only while the pointer is on it.
bool ShownPressed(HWND hwnd, ScrollState& s, Part p) { return s.pressed == p && PartUnderPointer(hwnd, s) == p; }

void PaintScroll(HWND hwnd) {
    ScrollState& s = g_scrolls.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    const bool v = Vertical(hwnd);
    const ScrollGeometry g = GeometryOf(hwnd, s);
    // Parts along the axis become rectangles across the whole thickness.
    auto span = [&](int a, int b) {
        return v ? RECT{r.left, r.top + a, r.right, r.top + b} : RECT{r.left + a, r.top, r.left + b, r.bottom};
    };
    const int length = v ? r.bottom - r.top : r.right - r.left;
    RECT track = span(g.trackStart, g.trackEnd);
    dc->FillSolidRect(&track, ::GetSysColor(COLOR_3DLIGHT));
    const bool enabled = ::IsWindowEnabled(hwnd);
    const COLORREF arrowColour = ::GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    RECT low = span(0, g.arrow), high = span(length - g.arrow, length);
    DrawButtonFace(dc, low, ShownPressed(hwnd, s, kArrowLow));
    DrawArrow(dc, low, v ? 0 : 2, arrowColour);
    DrawButtonFace(dc, high, ShownPressed(hwnd, s, kArrowHigh));
    DrawArrow(dc, high, v ? 1 : 3, arrowColour);
    if (ShownPressed(hwnd, s, kPageLow)) {
        RECT p = span(g.trackStart, g.thumbStart);
        dc->FillSolidRect(&p, ::GetSysColor(COLOR_3DDKSHADOW));
    } else if (ShownPressed(hwnd, s, kPageHigh)) {
        RECT p = span(g.thumbEnd, g.trackEnd);
        dc->FillSolidRect(&p, ::GetSysColor(COLOR_3DDKSHADOW));
    }
    if (g.thumbEnd > g.thumbStart && enabled) DrawButtonFace(dc, span(g.thumbStart, g.thumbEnd), false);
    ::EndPaint(hwnd, &ps);
}

int ClampPos(const SCROLLINFO& si, int pos) {
    return std::max(si.nMin, std::min(pos, ScrollMaxPos(si.nMin, si.nMax, si.nPage)));
}

}  // namespace

LRESULT ScrollBarProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    ScrollState& s = g_scrolls.Get(hwnd);
    switch (msg) {
    case WM_NCDESTROY:
        g_scrolls.Erase(hwnd);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    case WM_PAINT:
        PaintScroll(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_ENABLE:
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        s.focus = msg == WM_SETFOCUS;
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        const ScrollGeometry g = GeometryOf(hwnd, s);
        int length = 0, thickness = 0;
        AxisOf(hwnd, length, thickness);
        const POINT p = PointOf(lp);
        const int coord = Vertical(hwnd) ? p.y : p.x;
        s.pressed = HitPart(g, coord, length);
        s.pointer = p;
        if (s.pressed == kNone) return 0;
        if ((StyleOf(hwnd) & WS_TABSTOP) && ::GetFocus() != hwnd) ::SetFocus(hwnd);
        ::SetCapture(hwnd);
        if (s.pressed == kThumb) {
            s.grab = coord - g.thumbStart;
            s.si.nTrackPos = s.si.nPos;
        } else {
            SendScroll(hwnd, StepCode(s.pressed), 0);
            if (::IsWindow(hwnd) && s.pressed != kNone) ::SetTimer(hwnd, kRepeatTimer, kScrollRepeatDelay, nullptr);
        }
        if (::IsWindow(hwnd)) Redraw(hwnd);
        return 0;
    }
    case WM_TIMER: {
        if (wp != kRepeatTimer) return 0;
        if (!Repeats(s.pressed)) {
            ::KillTimer(hwnd, kRepeatTimer);
            return 0;
        }
        ::SetTimer(hwnd, kRepeatTimer, kScrollRepeatPeriod, nullptr);
        // Paging stops once the thumb has come under the pointer; an arrow waits while the
        // pointer is off it and goes on when it comes back.
        if (PartUnderPointer(hwnd, s) == s.pressed) SendScroll(hwnd, StepCode(s.pressed), 0);
        if (::IsWindow(hwnd)) Redraw(hwnd);
        return 0;
    }
    case WM_MOUSEMOVE: {
        if (s.pressed == kNone) return 0;
        if (s.pressed != kThumb) {
            const bool was = PartUnderPointer(hwnd, s) == s.pressed;
            s.pointer = PointOf(lp);
            if (was != (PartUnderPointer(hwnd, s) == s.pressed)) Redraw(hwnd);
            return 0;
        }
        const POINT p = PointOf(lp);
        const int coord = Vertical(hwnd) ? p.y : p.x;
        const ScrollGeometry g = GeometryOf(hwnd, s);
        const int pos = ScrollPosFromThumb(g, coord - s.grab, s.si.nMin, s.si.nMax, s.si.nPage);
        if (pos != s.si.nTrackPos) {
            s.si.nTrackPos = pos;
            Redraw(hwnd);
            SendScroll(hwnd, SB_THUMBTRACK, pos);
        }
        return 0;
    }
    case WM_LBUTTONUP: {
        if (s.pressed == kNone) return 0;
        const Part was = s.pressed;
        s.pressed = kNone;
        ::KillTimer(hwnd, kRepeatTimer);
        if (::GetCapture() == hwnd) ::ReleaseCapture();
        if (was == kThumb) SendScroll(hwnd, SB_THUMBPOSITION, s.si.nTrackPos);
        SendScroll(hwnd, SB_ENDSCROLL, 0);
        Redraw(hwnd);
        return 0;
    }
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lp) != hwnd && s.pressed != kNone) {
            s.pressed = kNone;
            ::KillTimer(hwnd, kRepeatTimer);
            Redraw(hwnd);
        }
        return 0;
    case WM_KEYDOWN: {
        UINT code;
        switch (wp) {
        case VK_LEFT: case VK_UP: code = SB_LINEUP; break;
        case VK_RIGHT: case VK_DOWN: code = SB_LINEDOWN; break;
        case VK_PRIOR: code = SB_PAGEUP; break;
        case VK_NEXT: code = SB_PAGEDOWN; break;
        case VK_HOME: code = SB_TOP; break;
        case VK_END: code = SB_BOTTOM; break;
        default: return 0;
        }
        SendScroll(hwnd, code, 0);
        return 0;
    }
    case WM_KEYUP:
        if (wp == VK_LEFT || wp == VK_UP || wp == VK_RIGHT || wp == VK_DOWN || wp == VK_PRIOR || wp == VK_NEXT ||
            wp == VK_HOME || wp == VK_END)
            SendScroll(hwnd, SB_ENDSCROLL, 0);
        return 0;
    case SBM_SETPOS: {
        const int old = s.si.nPos;
        s.si.nPos = ClampPos(s.si, static_cast<int>(wp));
        if (lp) Redraw(hwnd);
        return old;
    }
    case SBM_GETPOS:
        return s.si.nPos;
    case SBM_SETRANGE:
    case SBM_SETRANGEREDRAW: {
        const int old = s.si.nPos;
        s.si.nMin = static_cast<int>(wp);
        s.si.nMax = static_cast<int>(lp);
        s.si.nPos = ClampPos(s.si, s.si.nPos);
        if (msg == SBM_SETRANGEREDRAW) Redraw(hwnd);
        return old;
    }
    case SBM_GETRANGE:
        if (wp) *reinterpret_cast<int*>(wp) = s.si.nMin;
        if (lp) *reinterpret_cast<int*>(lp) = s.si.nMax;
        return 0;
    case SBM_SETSCROLLINFO: {
        const SCROLLINFO* in = reinterpret_cast<const SCROLLINFO*>(lp);
        if (!in) return s.si.nPos;
        if (in->fMask & SIF_RANGE) {
            s.si.nMin = in->nMin;
            s.si.nMax = in->nMax;
        }
        if (in->fMask & SIF_PAGE) s.si.nPage = std::min<UINT>(in->nPage, static_cast<UINT>(std::max(0, s.si.nMax - s.si.nMin + 1)));
        if (in->fMask & SIF_POS) s.si.nPos = in->nPos;
        s.si.nPos = ClampPos(s.si, s.si.nPos);
        if (wp) Redraw(hwnd);
        return s.si.nPos;
    }
    case SBM_GETSCROLLINFO: {
        SCROLLINFO* out = reinterpret_cast<SCROLLINFO*>(lp);
        if (!out) return FALSE;
        if (out->fMask & SIF_RANGE) {
            out->nMin = s.si.nMin;
            out->nMax = s.si.nMax;
        }
        if (out->fMask & SIF_PAGE) out->nPage = s.si.nPage;
        if (out->fMask & SIF_POS) out->nPos = s.si.nPos;
        if (out->fMask & SIF_TRACKPOS) out->nTrackPos = s.pressed == kThumb ? s.si.nTrackPos : s.si.nPos;
        return TRUE;
    }
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

// Trackbar ---------------------------------------------------------------------------------------

namespace {

struct TrackState {
    int minPos = 0, maxPos = 100, pos = 0;
    int page = -1;  // -1: a fifth of the range
    int line = 1;
    int ticFreq = 1;
    std::vector<int> tics;
    bool dragging = false;
    int paging = 0;     // +1 paging down (towards the maximum), -1 up, 0 not
    int pagingTo = 0;   // the pointer's coordinate along the axis while paging
    int grab = 0;
    bool focus = false;
};
StateTable<TrackState> g_tracks;

bool TrackVertical(HWND hwnd) { return (StyleOf(hwnd) & TBS_VERT) != 0; }
int PageOf(const TrackState& s) { return s.page >= 0 ? s.page : std::max(1, (s.maxPos - s.minPos) / 5); }

int TrackLength(HWND hwnd) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    return TrackVertical(hwnd) ? r.bottom - r.top : r.right - r.left;
}

void TrackNotify(HWND hwnd, UINT code, int pos) {
    HWND parent = ::GetParent(hwnd);
    if (!parent) return;
    const bool thumb = code == TB_THUMBTRACK || code == TB_THUMBPOSITION;
    ::SendMessageA(parent, TrackVertical(hwnd) ? WM_VSCROLL : WM_HSCROLL,
                   MAKEWPARAM(static_cast<WORD>(code), static_cast<WORD>(thumb ? pos : 0)), reinterpret_cast<LPARAM>(hwnd));
}

void SetTrackPos(HWND hwnd, TrackState& s, int pos) {
    pos = std::max(s.minPos, std::min(pos, s.maxPos));
    if (pos != s.pos) {
        s.pos = pos;
        Redraw(hwnd);
    }
}

// One page towards the held pointer, unless the thumb has reached it: then the paging waits
// (it goes on if the pointer moves further along).
void PageTowardsPointer(HWND hwnd, TrackState& s) {
    const int c = TrackbarThumbCenter(TrackLength(hwnd), s.minPos, s.maxPos, s.pos);
    const bool reached = s.paging > 0 ? s.pagingTo <= c + kTrackThumb / 2 : s.pagingTo >= c - kTrackThumb / 2;
    if (reached) return;
    SetTrackPos(hwnd, s, s.pos + s.paging * PageOf(s));
    TrackNotify(hwnd, s.paging > 0 ? TB_PAGEDOWN : TB_PAGEUP, s.pos);
}

void PaintTrack(HWND hwnd) {
    TrackState& s = g_tracks.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    dc->FillSolidRect(&r, ::GetSysColor(COLOR_BTNFACE));
    const bool v = TrackVertical(hwnd);
    const int length = v ? r.bottom - r.top : r.right - r.left;
    const int across = v ? r.right - r.left : r.bottom - r.top;
    const int thumbAcross = std::max(6, std::min(across - 8, 20));
    const int mid = 2 + thumbAcross / 2;
    auto box = [&](int a0, int a1, int c0, int c1) {
        return v ? RECT{r.left + c0, r.top + a0, r.left + c1, r.top + a1} : RECT{r.left + a0, r.top + c0, r.left + a1, r.top + c1};
    };
    RECT channel = box(kTrackMargin - 2, length - kTrackMargin + 2, mid - 2, mid + 2);
    dc->FillSolidRect(&channel, ::GetSysColor(COLOR_WINDOW));
    dc->Draw3dRect(&channel, ::GetSysColor(COLOR_BTNSHADOW), ::GetSysColor(COLOR_BTNHIGHLIGHT));
    if (!(StyleOf(hwnd) & TBS_NOTICKS)) {
        std::vector<int> at{s.minPos, s.maxPos};
        if ((StyleOf(hwnd) & TBS_AUTOTICKS) && s.ticFreq > 0)
            for (long long p = s.minPos + s.ticFreq; p < s.maxPos; p += s.ticFreq) at.push_back(static_cast<int>(p));
        at.insert(at.end(), s.tics.begin(), s.tics.end());
        const COLORREF tic = ::GetSysColor(COLOR_BTNTEXT);
        for (int p : at) {
            const int c = TrackbarThumbCenter(length, s.minPos, s.maxPos, p);
            RECT t = box(c, c + 1, thumbAcross + 4, thumbAcross + 7);
            dc->FillSolidRect(&t, tic);
        }
    }
    const int c = TrackbarThumbCenter(length, s.minPos, s.maxPos, s.pos);
    RECT thumb = box(c - kTrackThumb / 2, c - kTrackThumb / 2 + kTrackThumb, 2, 2 + thumbAcross);
    DrawButtonFace(dc, thumb, s.dragging);
    if (s.focus) {
        RECT f = r;
        dc->DrawFocusRect(&f);
    }
    ::EndPaint(hwnd, &ps);
}

}  // namespace

LRESULT TrackbarProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    TrackState& s = g_tracks.Get(hwnd);
    switch (msg) {
    case WM_NCDESTROY:
        g_tracks.Erase(hwnd);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    case WM_PAINT:
        PaintTrack(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_ENABLE:
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_WANTARROWS;
    case WM_SETFOCUS:
    case WM_KILLFOCUS:
        s.focus = msg == WM_SETFOCUS;
        Redraw(hwnd);
        return 0;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        if (::GetFocus() != hwnd) ::SetFocus(hwnd);
        const POINT p = PointOf(lp);
        const int coord = TrackVertical(hwnd) ? p.y : p.x;
        const int length = TrackLength(hwnd);
        const int c = TrackbarThumbCenter(length, s.minPos, s.maxPos, s.pos);
        ::SetCapture(hwnd);
        if (std::abs(coord - c) <= kTrackThumb / 2) {
            s.dragging = true;
            s.grab = coord - c;
            Redraw(hwnd);
        } else {
            s.paging = coord > c ? 1 : -1;
            s.pagingTo = coord;
            PageTowardsPointer(hwnd, s);
            if (::IsWindow(hwnd) && s.paging) ::SetTimer(hwnd, kRepeatTimer, kScrollRepeatDelay, nullptr);
        }
        return 0;
    }
    case WM_TIMER:
        if (wp != kRepeatTimer) return 0;
        if (!s.paging) {
            ::KillTimer(hwnd, kRepeatTimer);
            return 0;
        }
        ::SetTimer(hwnd, kRepeatTimer, kScrollRepeatPeriod, nullptr);
        PageTowardsPointer(hwnd, s);
        return 0;
    case WM_MOUSEMOVE: {
        if (s.paging) {
            const POINT p = PointOf(lp);
            s.pagingTo = TrackVertical(hwnd) ? p.y : p.x;
            return 0;
        }
        if (!s.dragging) return 0;
        const POINT p = PointOf(lp);
        const int coord = (TrackVertical(hwnd) ? p.y : p.x) - s.grab;
        const int pos = TrackbarPosFromPoint(TrackLength(hwnd), s.minPos, s.maxPos, coord);
        if (pos != s.pos) {
            SetTrackPos(hwnd, s, pos);
            TrackNotify(hwnd, TB_THUMBTRACK, s.pos);
        }
        return 0;
    }
    case WM_LBUTTONUP: {
        if (!s.dragging && !s.paging) return 0;
        const bool dragged = s.dragging;
        s.dragging = false;
        s.paging = 0;
        ::KillTimer(hwnd, kRepeatTimer);
        if (::GetCapture() == hwnd) ::ReleaseCapture();
        Redraw(hwnd);
        if (dragged) TrackNotify(hwnd, TB_THUMBPOSITION, s.pos);
        TrackNotify(hwnd, TB_ENDTRACK, s.pos);
        return 0;
    }
    case WM_KEYDOWN: {
        UINT code;
        int to = s.pos;
        switch (wp) {
        case VK_LEFT: case VK_UP: code = TB_LINEUP; to -= s.line; break;
        case VK_RIGHT: case VK_DOWN: code = TB_LINEDOWN; to += s.line; break;
        case VK_PRIOR: code = TB_PAGEUP; to -= PageOf(s); break;
        case VK_NEXT: code = TB_PAGEDOWN; to += PageOf(s); break;
        case VK_HOME: code = TB_TOP; to = s.minPos; break;
        case VK_END: code = TB_BOTTOM; to = s.maxPos; break;
        default: return 0;
        }
        SetTrackPos(hwnd, s, to);
        TrackNotify(hwnd, code, s.pos);
        return 0;
    }
    case WM_KEYUP:
        if (wp == VK_LEFT || wp == VK_UP || wp == VK_RIGHT || wp == VK_DOWN || wp == VK_PRIOR || wp == VK_NEXT ||
            wp == VK_HOME || wp == VK_END)
            TrackNotify(hwnd, TB_ENDTRACK, s.pos);
        return 0;
    case TBM_GETPOS:
        return s.pos;
    case TBM_SETPOS:
        s.pos = std::max(s.minPos, std::min(static_cast<int>(lp), s.maxPos));
        if (wp) Redraw(hwnd);
        return 0;
    case TBM_GETRANGEMIN:
        return s.minPos;
    case TBM_GETRANGEMAX:
        return s.maxPos;
    case TBM_SETRANGE:
        s.minPos = static_cast<short>(LOWORD(lp));
        s.maxPos = static_cast<short>(HIWORD(lp));
        s.pos = std::max(s.minPos, std::min(s.pos, s.maxPos));
        if (wp) Redraw(hwnd);
        return 0;
    case TBM_SETRANGEMIN:
        s.minPos = static_cast<int>(lp);
        s.pos = std::max(s.minPos, s.pos);
        if (wp) Redraw(hwnd);
        return 0;
    case TBM_SETRANGEMAX:
        s.maxPos = static_cast<int>(lp);
        s.pos = std::min(s.maxPos, s.pos);
        if (wp) Redraw(hwnd);
        return 0;
    case TBM_SETTICFREQ:
        s.ticFreq = static_cast<int>(wp);
        Redraw(hwnd);
        return 0;
    case TBM_SETTIC:
        if (static_cast<int>(lp) <= s.minPos || static_cast<int>(lp) >= s.maxPos) return FALSE;
        s.tics.push_back(static_cast<int>(lp));
        Redraw(hwnd);
        return TRUE;
    case TBM_SETPAGESIZE: {
        const int old = PageOf(s);
        s.page = static_cast<int>(lp);
        return old;
    }
    case TBM_GETPAGESIZE:
        return PageOf(s);
    case TBM_SETLINESIZE: {
        const int old = s.line;
        s.line = static_cast<int>(lp);
        return old;
    }
    case TBM_GETLINESIZE:
        return s.line;
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

// Up-down ------------------------------------------------------------------------------------------

namespace {

struct UpDownState {
    int lower = 100, upper = 0;  // the platform's default range runs downwards
    int pos = 0;
    HWND buddy = nullptr;
    int pressed = 0;  // +1 the up (or right) half, -1 the down (or left) half
    bool over = false;  // the pointer is on the pressed half
    ULONGLONG pressedAt = 0;
};
StateTable<UpDownState> g_updowns;

bool Horizontal(HWND hwnd) { return (StyleOf(hwnd) & UDS_HORZ) != 0; }

void WriteBuddy(HWND hwnd, UpDownState& s) {
    if (s.buddy && (StyleOf(hwnd) & UDS_SETBUDDYINT))
        ::SetWindowTextA(s.buddy, BuddyText(s.pos, !(StyleOf(hwnd) & UDS_NOTHOUSANDS)).c_str());
}

// The position the buddy's text gives, when it holds a number in the range.
bool ReadBuddy(HWND hwnd, UpDownState& s, int& out) {
    if (!s.buddy || !(StyleOf(hwnd) & UDS_SETBUDDYINT)) return false;
    std::string t = WindowText(s.buddy);
    t.erase(std::remove(t.begin(), t.end(), ','), t.end());
    if (t.empty()) return false;
    char* end = nullptr;
    const long v = std::strtol(t.c_str(), &end, 10);
    if (*end) return false;
    if (v < std::min(s.lower, s.upper) || v > std::max(s.lower, s.upper)) return false;
    out = static_cast<int>(v);
    return true;
}

void AttachBuddy(HWND hwnd, UpDownState& s, HWND buddy) {
    s.buddy = buddy;
    if (!buddy) return;
    const DWORD style = StyleOf(hwnd);
    if (!(style & (UDS_ALIGNRIGHT | UDS_ALIGNLEFT))) return;
    // Sits inside the buddy's right (or left) edge, as tall as the buddy.
    HWND parent = ::GetParent(hwnd);
    RECT br, me;
    ::GetWindowRect(buddy, &br);
    ::GetWindowRect(hwnd, &me);
    POINT tl{br.left, br.top};
    ::ScreenToClient(parent, &tl);
    const int w = me.right - me.left, bw = br.right - br.left, bh = br.bottom - br.top;
    const int newBuddyW = std::max(0, bw - w);
    if (style & UDS_ALIGNRIGHT) {
        ::MoveWindow(buddy, tl.x, tl.y, newBuddyW, bh, TRUE);
        ::MoveWindow(hwnd, tl.x + newBuddyW, tl.y, w, bh, TRUE);
    } else {
        ::MoveWindow(hwnd, tl.x, tl.y, w, bh, TRUE);
        ::MoveWindow(buddy, tl.x + w, tl.y, newBuddyW, bh, TRUE);
    }
}

// The half (+1 up or right, -1 down or left) under a client point; 0 outside.
int HalfAt(HWND hwnd, POINT p) {
    RECT r;
    ::GetClientRect(hwnd, &r);
    if (!::PtInRect(&r, p)) return 0;
    // Up and right are the increasing halves.
    return Horizontal(hwnd) ? (p.x >= (r.left + r.right) / 2 ? 1 : -1) : (p.y < (r.top + r.bottom) / 2 ? 1 : -1);
}

// A step of `step` towards the half (+1 / -1), asked of the parent first.
void Step(HWND hwnd, UpDownState& s, int half, int step = 1) {
    int current = s.pos;
    if (ReadBuddy(hwnd, s, current)) s.pos = current;
    const int delta = (s.upper >= s.lower ? 1 : -1) * half * step;
    NMUPDOWN nm{{hwnd, static_cast<UINT_PTR>(::GetDlgCtrlID(hwnd)), UDN_DELTAPOS}, s.pos, delta};
    HWND parent = ::GetParent(hwnd);
    if (parent && ::SendMessageA(parent, WM_NOTIFY, nm.hdr.idFrom, reinterpret_cast<LPARAM>(&nm)) != 0) return;
    if (!::IsWindow(hwnd)) return;
    s.pos = UpDownStep(s.pos, s.lower, s.upper, nm.iDelta, (StyleOf(hwnd) & UDS_WRAP) != 0);
    WriteBuddy(hwnd, s);
    if (parent)
        ::SendMessageA(parent, Horizontal(hwnd) ? WM_HSCROLL : WM_VSCROLL,
                       MAKEWPARAM(SB_THUMBPOSITION, static_cast<WORD>(s.pos)), reinterpret_cast<LPARAM>(hwnd));
}

void PaintUpDown(HWND hwnd) {
    UpDownState& s = g_updowns.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    const bool h = Horizontal(hwnd);
    RECT a = r, b = r;
    if (h) a.right = b.left = (r.left + r.right) / 2;
    else a.bottom = b.top = (r.top + r.bottom) / 2;
    // a is the up (or left, decreasing) half.
    const int shown = s.over ? s.pressed : 0;
    DrawButtonFace(dc, a, shown == (h ? -1 : 1));
    DrawButtonFace(dc, b, shown == (h ? 1 : -1));
    const COLORREF c = ::GetSysColor(::IsWindowEnabled(hwnd) ? COLOR_BTNTEXT : COLOR_GRAYTEXT);
    DrawArrow(dc, a, h ? 2 : 0, c);
    DrawArrow(dc, b, h ? 3 : 1, c);
    ::EndPaint(hwnd, &ps);
}

}  // namespace

LRESULT UpDownProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    UpDownState& s = g_updowns.Get(hwnd);
    switch (msg) {
    case WM_CREATE: {
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        if (StyleOf(hwnd) & UDS_AUTOBUDDY) AttachBuddy(hwnd, s, ::GetWindow(hwnd, GW_HWNDPREV));
        return r;
    }
    case WM_NCDESTROY:
        g_updowns.Erase(hwnd);
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    case WM_PAINT:
        PaintUpDown(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        s.pressed = HalfAt(hwnd, PointOf(lp));
        if (!s.pressed) return 0;
        s.over = true;
        s.pressedAt = orlex::ClockMs();
        ::SetCapture(hwnd);
        Redraw(hwnd);
        Step(hwnd, s, s.pressed);
        if (::IsWindow(hwnd) && s.pressed) ::SetTimer(hwnd, kRepeatTimer, kSpinRepeatDelay, nullptr);
        return 0;
    }
    case WM_MOUSEMOVE:
        if (s.pressed) {
            const bool over = HalfAt(hwnd, PointOf(lp)) == s.pressed;
            if (over != s.over) {
                s.over = over;
                Redraw(hwnd);
            }
        }
        return 0;
    case WM_TIMER:
        if (wp != kRepeatTimer) return 0;
        if (!s.pressed) {
            ::KillTimer(hwnd, kRepeatTimer);
            return 0;
        }
        ::SetTimer(hwnd, kRepeatTimer, kSpinRepeatPeriod, nullptr);
        if (s.over) Step(hwnd, s, s.pressed, UpDownAcceleration(orlex::ClockMs() - s.pressedAt));
        return 0;
    case WM_CAPTURECHANGED:
        if (reinterpret_cast<HWND>(lp) != hwnd && s.pressed) {
            s.pressed = 0;
            ::KillTimer(hwnd, kRepeatTimer);
            Redraw(hwnd);
        }
        return 0;
    case WM_LBUTTONUP:
        if (!s.pressed) return 0;
        s.pressed = 0;
        ::KillTimer(hwnd, kRepeatTimer);
        if (::GetCapture() == hwnd) ::ReleaseCapture();
        Redraw(hwnd);
        if (HWND parent = ::GetParent(hwnd))
            ::SendMessageA(parent, Horizontal(hwnd) ? WM_HSCROLL : WM_VSCROLL, MAKEWPARAM(SB_ENDSCROLL, static_cast<WORD>(s.pos)),
                           reinterpret_cast<LPARAM>(hwnd));
        return 0;
    case UDM_SETRANGE:
        s.upper = static_cast<short>(LOWORD(lp));
        s.lower = static_cast<short>(HIWORD(lp));
        return 0;
    case UDM_GETRANGE:
        return MAKELONG(static_cast<WORD>(s.upper), static_cast<WORD>(s.lower));
    case UDM_SETRANGE32:
        s.lower = static_cast<int>(wp);
        s.upper = static_cast<int>(lp);
        return 0;
    case UDM_GETRANGE32:
        if (wp) *reinterpret_cast<int*>(wp) = s.lower;
        if (lp) *reinterpret_cast<int*>(lp) = s.upper;
        return 0;
    case UDM_SETPOS:
    case UDM_SETPOS32: {
        const int old = s.pos;
        const int want = msg == UDM_SETPOS ? static_cast<short>(LOWORD(lp)) : static_cast<int>(lp);
        s.pos = std::max(std::min(s.lower, s.upper), std::min(want, std::max(s.lower, s.upper)));
        WriteBuddy(hwnd, s);
        return old;
    }
    case UDM_GETPOS: {
        int v = s.pos;
        const bool ok = !s.buddy || !(StyleOf(hwnd) & UDS_SETBUDDYINT) || ReadBuddy(hwnd, s, v);
        if (ok) s.pos = v;
        return MAKELONG(static_cast<WORD>(s.pos), ok ? 0 : 1);
    }
    case UDM_GETPOS32: {
        int v = s.pos;
        const bool ok = !s.buddy || !(StyleOf(hwnd) & UDS_SETBUDDYINT) || ReadBuddy(hwnd, s, v);
        if (ok) s.pos = v;
        if (lp) *reinterpret_cast<BOOL*>(lp) = ok ? FALSE : TRUE;
        return s.pos;
    }
    case UDM_SETBUDDY: {
        HWND old = s.buddy;
        AttachBuddy(hwnd, s, reinterpret_cast<HWND>(wp));
        return reinterpret_cast<LRESULT>(old);
    }
    case UDM_GETBUDDY:
        return reinterpret_cast<LRESULT>(s.buddy);
    default:
        return ::DefWindowProcA(hwnd, msg, wp, lp);
    }
}

}  // namespace orlex::detail

using namespace orlex::detail;

BOOL CScrollBar::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("ScrollBar", nullptr, style, rect, parent, id);
}
LRESULT CScrollBar::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return ScrollBarProc(m_hWnd, m, w, l); }
int CScrollBar::GetScrollPos() const { return static_cast<int>(SendMessage(SBM_GETPOS)); }
int CScrollBar::SetScrollPos(int pos, BOOL redraw) { return static_cast<int>(SendMessage(SBM_SETPOS, static_cast<WPARAM>(pos), redraw)); }
void CScrollBar::GetScrollRange(int* minPos, int* maxPos) const {
    SendMessage(SBM_GETRANGE, reinterpret_cast<WPARAM>(minPos), reinterpret_cast<LPARAM>(maxPos));
}
void CScrollBar::SetScrollRange(int minPos, int maxPos, BOOL redraw) {
    SendMessage(redraw ? SBM_SETRANGEREDRAW : SBM_SETRANGE, static_cast<WPARAM>(minPos), maxPos);
}
BOOL CScrollBar::SetScrollInfo(LPSCROLLINFO info, BOOL redraw) {
    SendMessage(SBM_SETSCROLLINFO, redraw, reinterpret_cast<LPARAM>(info));
    return TRUE;
}
BOOL CScrollBar::GetScrollInfo(LPSCROLLINFO info, UINT mask) {
    if (!info) return FALSE;
    info->fMask = mask;
    return static_cast<BOOL>(SendMessage(SBM_GETSCROLLINFO, 0, reinterpret_cast<LPARAM>(info)));
}
int CScrollBar::GetScrollLimit() {
    SCROLLINFO si{sizeof si, SIF_RANGE | SIF_PAGE, 0, 0, 0, 0, 0};
    GetScrollInfo(&si, SIF_RANGE | SIF_PAGE);
    return ScrollMaxPos(si.nMin, si.nMax, si.nPage);
}

BOOL CSliderCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("msctls_trackbar32", nullptr, style, rect, parent, id);
}
LRESULT CSliderCtrl::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return TrackbarProc(m_hWnd, m, w, l); }
int CSliderCtrl::GetPos() const { return static_cast<int>(SendMessage(TBM_GETPOS)); }
void CSliderCtrl::SetPos(int pos) { SendMessage(TBM_SETPOS, TRUE, pos); }
void CSliderCtrl::GetRange(int& minPos, int& maxPos) const {
    minPos = GetRangeMin();
    maxPos = GetRangeMax();
}
int CSliderCtrl::GetRangeMin() const { return static_cast<int>(SendMessage(TBM_GETRANGEMIN)); }
int CSliderCtrl::GetRangeMax() const { return static_cast<int>(SendMessage(TBM_GETRANGEMAX)); }
void CSliderCtrl::SetRange(int minPos, int maxPos, BOOL redraw) {
    SendMessage(TBM_SETRANGEMIN, FALSE, minPos);
    SendMessage(TBM_SETRANGEMAX, redraw, maxPos);
}
void CSliderCtrl::SetRangeMin(int minPos, BOOL redraw) { SendMessage(TBM_SETRANGEMIN, redraw, minPos); }
void CSliderCtrl::SetRangeMax(int maxPos, BOOL redraw) { SendMessage(TBM_SETRANGEMAX, redraw, maxPos); }
void CSliderCtrl::SetTicFreq(int freq) { SendMessage(TBM_SETTICFREQ, static_cast<WPARAM>(freq)); }
BOOL CSliderCtrl::SetTic(int pos) { return static_cast<BOOL>(SendMessage(TBM_SETTIC, 0, pos)); }
int CSliderCtrl::SetPageSize(int size) { return static_cast<int>(SendMessage(TBM_SETPAGESIZE, 0, size)); }
int CSliderCtrl::GetPageSize() const { return static_cast<int>(SendMessage(TBM_GETPAGESIZE)); }
int CSliderCtrl::SetLineSize(int size) { return static_cast<int>(SendMessage(TBM_SETLINESIZE, 0, size)); }
int CSliderCtrl::GetLineSize() const { return static_cast<int>(SendMessage(TBM_GETLINESIZE)); }

BOOL CSpinButtonCtrl::Create(DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("msctls_updown32", nullptr, style, rect, parent, id);
}
LRESULT CSpinButtonCtrl::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return UpDownProc(m_hWnd, m, w, l); }
int CSpinButtonCtrl::GetPos() const { return static_cast<int>(SendMessage(UDM_GETPOS)); }
int CSpinButtonCtrl::SetPos(int pos) { return static_cast<int>(SendMessage(UDM_SETPOS, 0, MAKELPARAM(static_cast<WORD>(pos), 0))); }
int CSpinButtonCtrl::GetPos32(BOOL* error) const { return static_cast<int>(SendMessage(UDM_GETPOS32, 0, reinterpret_cast<LPARAM>(error))); }
int CSpinButtonCtrl::SetPos32(int pos) { return static_cast<int>(SendMessage(UDM_SETPOS32, 0, pos)); }
void CSpinButtonCtrl::SetRange(short lower, short upper) {
    SendMessage(UDM_SETRANGE, 0, MAKELPARAM(static_cast<WORD>(upper), static_cast<WORD>(lower)));
}
void CSpinButtonCtrl::SetRange32(int lower, int upper) { SendMessage(UDM_SETRANGE32, static_cast<WPARAM>(lower), upper); }
DWORD CSpinButtonCtrl::GetRange() const { return static_cast<DWORD>(SendMessage(UDM_GETRANGE)); }
void CSpinButtonCtrl::GetRange32(int& lower, int& upper) const {
    SendMessage(UDM_GETRANGE32, reinterpret_cast<WPARAM>(&lower), reinterpret_cast<LPARAM>(&upper));
}
CWnd* CSpinButtonCtrl::SetBuddy(CWnd* buddy) {
    return CWnd::FromHandle(reinterpret_cast<HWND>(SendMessage(UDM_SETBUDDY, reinterpret_cast<WPARAM>(buddy ? buddy->m_hWnd : nullptr))));
}
CWnd* CSpinButtonCtrl::GetBuddy() const { return CWnd::FromHandle(reinterpret_cast<HWND>(SendMessage(UDM_GETBUDDY))); }
