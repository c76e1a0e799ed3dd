// Image view: hosting of the measuring cursors. The view makes cursors by type id through the
// kind table of the cursor folder, keeps them in creation order (which decides hit tests),
// passes their notices upward, removes them on request, converts between the host's units
// and pixels, and keeps the cursor tooltip.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "cursors/BaseCursor.h"
#include "cursors/CursorKinds.h"
#include "foundation/MessageCatalogue.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewEventNotifier.h"
#include "imageview/ImageViewFrame.h"

using orlex::cursors::TruncSat;

namespace {

constexpr UINT_PTR kCursorTipTimer = 29836;
constexpr UINT kTipPeriodMs = 1000;
constexpr int kTipOffset = 15;
// The text of a cursor's tooltip is cut to this buffer.
constexpr int kTipTextChars = 144;

double UnitFactor(eConvertUnits unit)
{
    switch (unit) {
    case eMillimeters: return 1000.0;
    case eMicrometers: return 1e6;
    case eNanometers: return 1e9;
    case eAngstrom: return 1e10;
    default: return 1.0;
    }
}

// Bounds of a point list (the box of the outermost points), empty without points.
CRect PointBounds(const CPoint* points, int count)
{
    if (!points || count < 1) return CRect(0, 0, 0, 0);
    CRect r(points[0], points[0]);
    for (int i = 1; i < count; ++i) {
        r.left = std::min(r.left, points[i].x);
        r.top = std::min(r.top, points[i].y);
        r.right = std::max(r.right, points[i].x);
        r.bottom = std::max(r.bottom, points[i].y);
    }
    return r;
}

}  // namespace

// Making and removing --------------------------------------------------------------------------

CBaseCursor* CImageView::AddCursor(CRect* rect, int type, double angle, CPoint* points, int count)
{
    CursorRequest req;
    req.type = type;
    req.rect = rect ? *rect : PointBounds(points, count);
    req.angle = angle;
    req.points = points;
    req.count = points ? std::max(count, 0) : 0;
    req.p0 = req.count > 0 ? points[0] : CPoint(0, 0);
    req.style = static_cast<DWORD>(m_nCursorStyle);
    req.crossSize = m_nCrossCursorSize;
    req.rotCursor = m_hRotCursor;

    if (m_nAllowableCursors == 1 && m_bDeleteLastOnNew) {
        if (DeleteCursors(1)) SendClearedNotice();
    } else if (m_nAllowableCursors > 0 && m_cursors.GetCount() >= m_nAllowableCursors) {
        // A negative allowance (the frame's "not set") limits nothing, as 0 doesn't.
        return nullptr;
    }

    const CursorKind* kind = FindCursorKind(type);
    if (!kind || !kind->make) return nullptr;
    CBaseCursor::m_pCursorCallback = m_cursorCallback;
    CBaseCursor::m_pCursorCallbackData = m_cursorCallbackData;
    CBaseCursor* cursor = kind->make(this, req);
    CBaseCursor::m_pCursorCallback = nullptr;
    CBaseCursor::m_pCursorCallbackData = nullptr;
    if (!cursor) return nullptr;
    if (!cursor->GetSafeHwnd()) {
        delete cursor;
        return nullptr;
    }
    m_cursors.AddTail(cursor);
    CRect c;
    GetClientRect(&c);
    if (!c.IsRectEmpty()) cursor->SetScale(m_scanLen.x / c.Width(), m_scanLen.y / c.Height(), m_scanLen.x, m_scanLen.y);
    // The region of interest keeps a colour of its own.
    if (type != kCursorRoi) cursor->SetColor(m_cursorColor, true);
    cursor->SetDirectionMark(m_nDirectionMark);
    return cursor;
}

CBaseCursor* CImageView::AddCursor(CRect* rect, int type, double angle, CPoint point)
{
    return AddCursor(rect, type, angle, &point, 1);
}

CBaseCursor* CImageView::CenterCursor(int width, int height, int type, double angle)
{
    if (!m_hWnd) return nullptr;
    CRect c;
    GetClientRect(&c);
    CRect r(0, 0, c.Width(), c.Height());
    if (width < c.Width() - 1) {
        r.left = c.Width() / 2 - width / 2;
        r.right = r.left + width;
    }
    if (height < c.Height() - 1) {
        r.top = c.Height() / 2 - height / 2;
        r.bottom = r.top + height;
    }
    CPoint centre = r.CenterPoint();
    return AddCursor(&r, type, angle, &centre, 1);
}

CBaseCursor* CImageView::CursorHitTest(CPoint screenPoint)
{
    for (POSITION p = m_cursors.GetHeadPosition(); p;) {
        CBaseCursor* c = m_cursors.GetNext(p);
        if (c->PtInRegion(screenPoint)) return c;
    }
    return nullptr;
}

int CImageView::DeleteCursors(int all)
{
    int gone = 0;
    for (POSITION p = m_cursors.GetHeadPosition(); p;) {
        const POSITION at = p;
        CBaseCursor* c = m_cursors.GetNext(p);
        if (!all && !c->GetUserDelete()) continue;
        if (m_cursorIter == at) m_cursorIter = p;
        m_cursors.RemoveAt(at);
        delete c;
        ++gone;
    }
    return gone;
}

void CImageView::ClearAllCursors(int notify, int all)
{
    if (DeleteCursors(all) && notify) SendClearedNotice();
}

void CImageView::SendClearedNotice()
{
    CURSOR_POS pos{};
    pos.type = kCursorsCleared;
    SendMessage(MESSAGE_CURSOR_NOTIFY_STR, 0, reinterpret_cast<LPARAM>(&pos));
}

void CImageView::CreateCursorWindows()
{
    for (POSITION p = m_cursors.GetHeadPosition(); p;) m_cursors.GetNext(p)->Create(this);
}

void CImageView::ResizeCursors()
{
    for (POSITION p = m_cursors.GetHeadPosition(); p;) {
        CBaseCursor* c = m_cursors.GetNext(p);
        if (!c->GetSafeHwnd()) c->Create(this);
        c->Resize(this);
    }
}

LRESULT CImageView::OnRemoveCursor(WPARAM wParam, LPARAM lParam)
{
    if (!m_bDelCursorsOnPanZoom || !lParam) return 0;
    // The request may name a cursor that is gone already: it is compared by value and read
    // only once found. The inner line of a linked pair is found through its owner.
    const auto* target = reinterpret_cast<const CBaseCursor*>(lParam);
    POSITION at = nullptr;
    CBaseCursor* cursor = nullptr;
    for (POSITION p = m_cursors.GetHeadPosition(); p && !cursor;) {
        const POSITION here = p;
        CBaseCursor* c = m_cursors.GetNext(p);
        if (c == target || (c->IsLinked() && c->GetLink() == target)) {
            at = here;
            cursor = c;
        }
    }
    if (!cursor) return 0;
    if (m_cursorIter == at) m_cursors.GetNext(m_cursorIter);
    m_cursors.RemoveAt(at);
    if (wParam != 1) {
        CURSOR_POS pos{};
        pos.type = kCursorRemoved;
        pos.pCursor = cursor;
        SendMessage(MESSAGE_CURSOR_NOTIFY_STR, 0, reinterpret_cast<LPARAM>(&pos));
    }
    delete cursor;
    return 1;
}

LRESULT CImageView::OnUserRemoveCursor(WPARAM wParam, LPARAM lParam)
{
    CImageViewFrame* f = Frame();
    return f ? f->GetFrameWnd()->SendMessage(MESSAGE_USER_REMOVE_CURSOR_STR, wParam, lParam) : 0;
}

LRESULT CImageView::OnCreateCursor(WPARAM wParam, LPARAM lParam)
{
    if (CWnd* parent = GetParent()) parent->SendMessage(MESSAGE_CREATE_CURSOR_STR, wParam, lParam);
    return 1;
}

LRESULT CImageView::OnCursorMouse(WPARAM wParam, LPARAM lParam)
{
    CWnd* to = !m_bRealTime && Frame() ? FrameParent() : GetParent();
    if (to) to->SendMessage(MESSAGE_CURSOR_MOUSE_STR, wParam, lParam);
    return 1;
}

void CImageView::OnClearAll() { ClearAllCursors(1, 0); }

LRESULT CImageView::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    // These commands carry a colour or a flag in lParam, which the framework would take for
    // a control's handle; they are handled before any routing.
    if (message == WM_COMMAND && HIWORD(wParam) == 0) {
        if (LOWORD(wParam) == ID_CURSOR_SET_COLOR_ALL) {
            SetCursorColorAll(static_cast<COLORREF>(lParam));
            return 0;
        }
        if (LOWORD(wParam) == ID_CURSOR_SHOW_DIRECTION_ALL) {
            SetCursorDirectionMarkAll(static_cast<int>(lParam));
            return 0;
        }
    }
    return CWnd::WindowProc(message, wParam, lParam);
}

void CImageView::SetCursorColorAll(COLORREF color)
{
    m_cursorColor = color;
    for (POSITION p = m_cursors.GetHeadPosition(); p;) m_cursors.GetNext(p)->SetColor(color, true);
    if (!m_cursors.IsEmpty() && m_hWnd) {
        Invalidate(FALSE);
        UpdateWindow();
    }
}

void CImageView::SetCursorDirectionMarkAll(int on)
{
    m_nDirectionMark = on;
    for (POSITION p = m_cursors.GetHeadPosition(); p;) m_cursors.GetNext(p)->SetDirectionMark(on);
    if (!m_cursors.IsEmpty() && m_hWnd) {
        Invalidate(FALSE);
        UpdateWindow();
    }
}

// Queries ------------------------------------------------------------------------------------------

int CImageView::GetNumCursors(IMAGE_CURSOR_TYPES& types)
{
    int n = 0;
    for (POSITION p = m_cursors.GetHeadPosition(); p;)
        if (types.IsCursorTypeSet(m_cursors.GetNext(p)->GetType())) ++n;
    return n;
}

int CImageView::GetNumCursors(eCursorType type)
{
    if (type == -1) return static_cast<int>(m_cursors.GetCount());
    const CRuntimeClass* cls = CursorQueryClass(type);
    if (!cls) return 0;
    int n = 0;
    for (POSITION p = m_cursors.GetHeadPosition(); p;)
        if (m_cursors.GetNext(p)->IsKindOf(cls)) ++n;
    return n;
}

CBaseCursor* CImageView::GetCursorNextPosition(POSITION& pos, IMAGE_CURSOR_TYPES& types)
{
    while (pos) {
        CBaseCursor* c = m_cursors.GetNext(pos);
        if (types.IsCursorTypeSet(c->GetType())) return c;
    }
    return nullptr;
}

CBaseCursor* CImageView::GetCursorNextPosition(POSITION& pos, const CRuntimeClass* cls)
{
    while (pos) {
        CBaseCursor* c = m_cursors.GetNext(pos);
        if (cls && c->IsKindOf(cls)) return c;
    }
    return nullptr;
}

CBaseCursor* CImageView::GetCursorNextPosition(POSITION& pos, eCursorType type)
{
    if (type == -1) return pos ? m_cursors.GetNext(pos) : nullptr;
    const CRuntimeClass* cls = CursorQueryClass(type);
    if (!cls) {
        pos = nullptr;
        return nullptr;
    }
    return GetCursorNextPosition(pos, cls);
}

CURSOR_POS CImageView::GetFirstCursorPos()
{
    m_cursorIter = m_cursors.GetHeadPosition();
    return GetNextCursorPos();
}

CURSOR_POS CImageView::GetNextCursorPos()
{
    CURSOR_POS pos{};
    if (m_cursorIter) m_cursors.GetNext(m_cursorIter)->GetCursorData(this, &pos);
    return pos;
}

// Units ----------------------------------------------------------------------------------------------

int CImageView::ConvertUnits(dblPoint* units, POINT* pixels, int count, int toPixels, eConvertUnits unit)
{
    if (!units || !pixels || count < 1) return 1;
    const double f = UnitFactor(unit);
    const CSize d = GetDataSize();
    if (toPixels) {
        const DPOINT r = GetScaleRatio();
        for (int i = 0; i < count; ++i) {
            pixels[i].x = TruncSat((units[i].x / f / m_scanLen.x * d.cx - r.origin.x) / r.x + 0.5);
            pixels[i].y = TruncSat((units[i].y / f / m_scanLen.y * d.cy - r.origin.y) / r.y + 0.5);
        }
        return 1;
    }
    for (int i = 0; i < count; ++i) {
        units[i].x = pixels[i].x * m_scanLen.x * f / d.cx;
        units[i].y = pixels[i].y * m_scanLen.y * f / d.cy;
    }
    return 1;
}

void CImageView::ConvertToCursorPoint(dblPoint& p)
{
    const DPOINT r = GetScaleRatio();
    const bool unset = r.x == 0.0 || r.y == 0.0;
    p.x = (p.x - r.origin.x) / (unset ? 1.0 : r.x);
    p.y = (p.y - r.origin.y) / (unset ? 1.0 : r.y);
}

void CImageView::ConvertToCursorRect(dblPoint& a, dblPoint& b)
{
    ConvertToCursorPoint(a);
    ConvertToCursorPoint(b);
}

// Notifier ---------------------------------------------------------------------------------------------

CImageViewEventNotifier* CImageView::RegisterNotifier(CImageViewEventNotifier* notifier)
{
    CImageViewEventNotifier* old = m_pNotifier;
    if (old && old != notifier) {
        old->OnRegister(this, 0);
        if (old->m_pView == this) old->m_pView = nullptr;
    }
    m_pNotifier = notifier;
    if (notifier) {
        notifier->m_pView = this;
        notifier->OnRegister(this, 1);
    }
    return old;
}

// The cursor tooltip -------------------------------------------------------------------------------------

void CImageView::OnCursorMouseMove(int dragging, CPoint screenPoint, CBaseCursor* cursor)
{
    if (m_bOneZoom && !dragging && m_hWnd && GetFocus() != this) SetFocus();
    if (!m_bToolText || m_nTooltipDisplayLevel == 3 || !m_toolTip.GetSafeHwnd()) return;
    if (cursor && !dragging && !cursor->PtInRegion(screenPoint)) cursor = CursorHitTest(screenPoint);
    if (!cursor) {
        if (m_bTipShown) {
            HideTip(m_toolTip, false);
            m_bTipShown = 0;
        }
        return;
    }
    CPoint at = screenPoint + CPoint(kTipOffset, kTipOffset);
    if (!m_bTrackToolTip) {
        CRect w;
        GetWindowRect(&w);
        at = CPoint(w.left, w.bottom + 1);
    }
    char text[kTipTextChars] = {};
    if (const char* t = cursor->GetText()) std::strncpy(text, t, sizeof text - 1);

    if (m_bTipShown) {
        char shown[kTipTextChars] = {};
        TOOLINFO ti;
        ti.hwnd = m_hWnd;
        ti.uId = reinterpret_cast<UINT_PTR>(m_hWnd);
        ti.lpszText = shown;
        m_toolTip.SendMessage(TTM_GETTEXTA, 0, reinterpret_cast<LPARAM>(&ti));
        if (!shown[0] || CString(shown).CompareNoCase(text) == 0) return;
        ti.uFlags = TTF_IDISHWND | TTF_TRACK | TTF_ABSOLUTE;
        ti.lpszText = text;
        m_toolTip.SendMessage(TTM_UPDATETIPTEXT, 0, reinterpret_cast<LPARAM>(&ti));
        if (m_bTrackToolTip) m_toolTip.SendMessage(TTM_TRACKPOSITION, 0, MAKELPARAM(WORD(at.x), WORD(at.y)));
        return;
    }
    // A fresh tooltip each time one shows.
    m_toolTip.DestroyWindow();
    if (!MakeTip(m_toolTip)) return;
    TrackTip(m_toolTip, text, at);
    m_bTipShown = 1;
    if (!m_tipTimer) m_tipTimer = SetTimer(kCursorTipTimer, kTipPeriodMs);
}
