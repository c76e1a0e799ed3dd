// Image view: zoom records, one-zoom steps, pan, and the mouse gestures that drive them.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/resources.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewFrame.h"

using Gdiplus::RectF;
namespace geo = orlex::view;

namespace {

// Pointer shapes of the library: open hand over a view with the pan button down, closed
// hand while panning.
constexpr int kOpenHandPointer = 10032;
constexpr int kClosedHandPointer = 10033;

void ShowPointer(int id)
{
    HCURSOR h = LoadCursor(AfxGetResourceHandle(), ORLEX_INTRESOURCE(id));
    if (h) SetCursor(h);
}

int Trunc(double v)
{
    if (!(v == v)) return 0;
    if (v >= 2147483647.0) return 2147483647;
    if (v <= -2147483648.0) return -2147483647 - 1;
    return static_cast<int>(v);
}

}  // namespace

// Records ---------------------------------------------------------------------------------------

void CImageView::ClearZoomList()
{
    while (!m_zoomList.IsEmpty()) delete m_zoomList.RemoveTail();
    m_curZoom = nullptr;
}

int CImageView::AddZoomRecord(CRect& rect, int relative)
{
    if (m_bOneZoom) return AddZoomRecordF(geo::RectFFromRecord(rect), relative);
    // A new zoom from the middle of the history drops what came after.
    while (!m_zoomList.IsEmpty() && m_zoomList.GetTailPosition() != m_curZoom) delete m_zoomList.RemoveTail();
    if (relative && !m_zoomList.IsEmpty()) {
        const CRect first = m_zoomList.GetHead()->m_rect;
        const CRect current = m_zoomList.GetAt(m_curZoom)->m_rect;
        if (!geo::MapRelativeRecord(rect, first, current)) return 0;
    }
    m_curZoom = m_zoomList.AddTail(new CZoomRecord(rect));
    assert(m_zoomList.GetTailPosition() == m_curZoom);
    return 1;
}

int CImageView::AddZoomRecordF(RectF rect, int relative)
{
    if (m_nCols < 1 && m_nRows < 1) return 0;
    if (m_curZoom && rect.Equals(m_zoomRectF)) return 0;
    const RectF whole(0.0f, 0.0f, float(m_nCols), float(m_nRows));
    if (!m_zoomList.IsEmpty() && geo::IsRectFSet(m_zoomRectF)) {
        if (relative && !m_zoomRectF.Equals(whole) && m_nCols > 0 && m_nRows > 0)
            rect = geo::MapRelativeRectF(rect, m_zoomRectF, m_nCols, m_nRows);
        while (m_zoomList.GetCount() > 1) delete m_zoomList.RemoveTail();
        m_curZoom = m_zoomList.GetHeadPosition();
        if (m_curZoom && rect.Equals(whole)) {
            m_zoomRectF = rect;
            m_zoomList.GetHead()->m_rect = geo::RecordFromRectF(rect);
            return 1;
        }
    }
    const bool inside = rect.X >= 0.0f && rect.Y >= 0.0f && rect.X + rect.Width <= float(m_nCols) &&
                        rect.Y + rect.Height <= float(m_nRows);
    if (!inside) rect = whole;
    if (rect.Width < 1.0f || rect.Height < 1.0f) return 0;
    m_zoomRectF = m_zoomList.IsEmpty() ? whole : rect;
    m_curZoom = m_zoomList.AddTail(new CZoomRecord(geo::RecordFromRectF(m_zoomRectF)));
    return 1;
}

void CImageView::AddInitialRecord()
{
    ClearZoomList();
    CRect whole(0, 0, m_nCols, m_nRows);
    AddZoomRecord(whole, 1);
}

unsigned CImageView::GetZoomIndex() const
{
    unsigned index = 0;
    for (POSITION p = m_zoomList.GetHeadPosition(); p && p != m_curZoom; m_zoomList.GetNext(p)) ++index;
    return m_curZoom ? index : 0;
}

bool CImageView::ZoomPositionValid() const
{
    for (POSITION p = m_zoomList.GetHeadPosition(); p; m_zoomList.GetNext(p))
        if (p == m_curZoom) return true;
    return m_curZoom == nullptr;
}

CRect CImageView::GetZoomRect() const
{
    assert(ZoomPositionValid());
    return m_curZoom ? m_zoomList.GetAt(m_curZoom)->m_rect : CRect(0, 0, 0, 0);
}

RectF CImageView::GetZoomRectF()
{
    if (!geo::IsRectFSet(m_zoomRectF)) m_zoomRectF = RectF(0.0f, 0.0f, float(m_nCols), float(m_nRows));
    return m_zoomRectF;
}

void CImageView::SetZoomRect(CRect& r)
{
    if (m_curZoom) m_zoomList.GetAt(m_curZoom)->m_rect = r;
}

void CImageView::SnapToNext2DigitRect(RectF& rect, int steps, float ratio)
{
    geo::SnapToNext2DigitRect(rect, steps, ratio, m_nCols, m_nRows, m_scanLen.x);
}

DPOINT CImageView::GetScaleRatio()
{
    DPOINT d;
    d.x = 1.0;
    d.y = 1.0;
    if (m_bOneZoom && m_nRows >= 1 && m_nCols >= 1) {
        const RectF r = GetZoomRectF();
        d.x = double(r.Width) / m_nCols;
        d.y = double(r.Height) / m_nRows;
        d.origin = CPoint(Trunc(r.X), Trunc(r.Y));
        d.valid = 1;
        return d;
    }
    if (!m_curZoom) return d;
    const CRect h = m_zoomList.GetHead()->m_rect;
    const CRect c = m_zoomList.GetAt(m_curZoom)->m_rect;
    if (h.IsRectEmpty() || c.IsRectEmpty()) return d;
    d.x = double(c.Width()) / h.Width();
    d.y = double(c.Height()) / h.Height();
    d.origin = CPoint(c.left, c.top);
    d.valid = 1;
    return d;
}

int CImageView::GetPanMode() const
{
    CImageViewFrame* f = Frame();
    return f ? f->GetPanButtonState() : 0;
}

int CImageView::GetZoomState() const
{
    CImageViewFrame* f = Frame();
    return f ? f->GetZoomButtonState() : 0;
}

void CImageView::ShowOpenHand() { ShowPointer(kOpenHandPointer); }

// One-zoom steps ----------------------------------------------------------------------------------

void CImageView::ZoomAt(int steps, CPoint* at, int notify, bool centre)
{
    if (m_bZooming || m_nRows < 1 || m_nCols < 1 || !m_hWnd) return;
    CRect c;
    GetClientRect(&c);
    if (at && !c.PtInRect(*at)) return;
    RectF r = GetZoomRectF();
    if (!geo::ZoomStepRect(r, steps, at, c, GetAspectRatio(), centre, m_nCols, m_nRows, m_scanLen.x)) return;
    // A host that zooms other views while it hears of this zoom must not re-enter here.
    m_bZooming = 1;
    if (AddZoomRecordF(r, 0)) {
        if (m_bDelCursorsOnPanZoom) ClearAllCursors(1, 0);
        UpdateImage();
        if (CImageViewFrame* f = Frame()) {
            f->EnablePanButton(GetZoomCount() >= 2);
            if (notify)
                f->GetFrameWnd()->SendMessage(MESSAGE_ZOOM_EVENT_STR, 0, reinterpret_cast<LPARAM>(this));
        }
    }
    m_bZooming = 0;
}

void CImageView::ZoomTo(int index, int notify)
{
    if (m_bOneZoom) {
        if (index != 0) {
            ZoomAt(index * 4, nullptr, notify, false);
        } else {
            ClearAllCursors(1, 0);
            DisableZoomState(notify);
        }
        return;
    }
    const POSITION p = index >= 0 ? m_zoomList.FindIndex(index) : nullptr;
    if (p) {
        m_curZoom = p;
        UpdateImage();
    }
    if (notify && m_hWnd) {
        if (CWnd* parent = GetParent()) parent->PostMessage(MESSAGE_ZOOM_EVENT_STR, static_cast<WPARAM>(index), 0);
    }
}

void CImageView::DisableZoomState(int notify)
{
    CImageViewFrame* f = Frame();
    if (!f) return;
    ClearZoomList();
    CRect whole(0, 0, m_nCols, m_nRows);
    AddZoomRecord(whole, 1);
    UpdateImage();
    if (notify) f->GetFrameWnd()->PostMessage(MESSAGE_ZOOM_EVENT_STR, 0, 0);
    if (!m_bOneZoom) {
        const int panDown = f->GetPanButtonState();
        f->EnablePanButton(FALSE);
        if (panDown) f->PushMeasure();
    }
}

// Zoom box --------------------------------------------------------------------------------------

void CImageView::ZoomBoxDone(CURSOR_POS* pos)
{
    CImageViewFrame* f = Frame();
    if (!pos || !f) return;
    CRect rect(pos->x1, pos->y1, pos->x2, pos->y2);
    if (pos->nZoomFlag && !m_bRealTime) {
        // A zoom repeated by the host from a view of another size.
        rect = CRect(Trunc(pos->x1 * m_cursorScale.x), Trunc(pos->y1 * m_cursorScale.y),
                     Trunc(pos->x2 * m_cursorScale.x), Trunc(pos->y2 * m_cursorScale.y));
        m_cursorScale.x = 1.0;
        m_cursorScale.y = 1.0;
    }
    if (!AddZoomRecord(rect, 1)) return;  // too small: the box stays for the user to delete
    UpdateImage();
    PostMessage(MESSAGE_REMOVE_CURSOR_STR, 0, reinterpret_cast<LPARAM>(pos->pCursor));
    f->EnablePanButton(TRUE);
    CWnd* fw = f->GetFrameWnd();
    if (m_bRealTime) {
        fw->PostMessage(MESSAGE_ZOOM_EVENT_STR, 514, reinterpret_cast<LPARAM>(this));
    } else if (!pos->nZoomFlag) {
        // The record lives only while its notice is sent; the posted event can't carry it,
        // and the host gets it at once through the cursor notice below.
        fw->PostMessage(MESSAGE_ZOOM_EVENT_STR, 514, 0);
        if (CWnd* fp = fw->GetParent()) fp->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, 514, reinterpret_cast<LPARAM>(pos));
    }
}

void CImageView::StartZoom(CPoint point)
{
    if (static_cast<long long>(m_nRows) * m_nCols < 1) return;
    ClearAllCursors(1, 0);
    OnLButtonDown(0, point);
}

LRESULT CImageView::OnCursorNotify(WPARAM wParam, LPARAM lParam)
{
    auto* pos = reinterpret_cast<CURSOR_POS*>(lParam);
    if (CImageViewFrame* f = Frame()) {
        if (f->GetZoomButtonState() && wParam == 514) {
            ZoomBoxDone(pos);
        } else {
            CWnd* fw = f->GetFrameWnd();
            const LRESULT r = fw->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, wParam, lParam);
            CWnd* fp = fw->GetParent();
            if (r == 0 && fp) fp->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, wParam, lParam);
        }
    } else if (CWnd* parent = GetParent()) {
        parent->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, wParam, lParam);
    }
    if (pos && pos->type == 0 && wParam == 514) m_bBoxCreating = FALSE;
    return 1;
}

// Pan ----------------------------------------------------------------------------------------------

CSize CImageView::WindowSize() const
{
    CRect w(0, 0, 0, 0);
    if (m_hWnd) GetWindowRect(&w);
    return CSize(w.Width(), w.Height());
}

LPARAM CImageView::DataUnitsPoint(CPoint p) const
{
    const CSize w = WindowSize();
    const int x = w.cx > 0 ? Trunc(double(m_nCols) / w.cx * p.x) : 0;
    const int y = w.cy > 0 ? Trunc(double(m_nRows) / w.cy * p.y) : 0;
    return geo::PackPoint(x, y);
}

void CImageView::SetPanScale()
{
    const CSize w = WindowSize();
    m_panScaleX = w.cx > 0 ? m_panRect.Width / float(w.cx) : 0.0f;
    m_panScaleY = w.cy > 0 ? m_panRect.Height / float(w.cy) : 0.0f;
}

void CImageView::StartPan(CPoint point, int arm)
{
    if (m_bDelCursorsOnPanZoom) ClearAllCursors(1, 0);
    m_panStart = point;
    m_panRect = m_bOneZoom ? GetZoomRectF() : geo::RectFFromRecord(GetZoomRect());
    SetPanScale();
    if (!arm) return;
    if (CWnd* parent = m_hWnd ? GetParent() : nullptr)
        parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 513, geo::PackPoint(point.x, point.y));
    m_bPanTracking = 1;
    if (m_hWnd) SetCapture();
    ShowPointer(kClosedHandPointer);
}

void CImageView::StartPanOffline(CPoint point, int fromHost)
{
    ClearAllCursors(1, 0);
    if (fromHost) {
        const CSize w = WindowSize();
        if (m_nCols > 0) point.x = Trunc(double(w.cx) / m_nCols * point.x);
        if (m_nRows > 0) point.y = Trunc(double(w.cy) / m_nRows * point.y);
        m_panStart = point;
        m_panRect = geo::RectFFromRecord(GetZoomRect());
        m_bPanTracking = 1;
    } else {
        m_panStart = point;
        m_panRect = geo::RectFFromRecord(GetZoomRect());
        m_bPanTracking = 1;
        if (CWnd* fp = FrameParent()) fp->SendMessage(UPDATE_PAN_SRC_STR, 513, DataUnitsPoint(point));
        if (m_hWnd) SetCapture();
        ShowPointer(kClosedHandPointer);
    }
    SetPanScale();
}

void CImageView::UpdatePan(CPoint point, int fromHost)
{
    point.x = geo::UnwrapPackedCoord(point.x);
    point.y = geo::UnwrapPackedCoord(point.y);
    if (fromHost && !m_bRealTime) {
        const CSize w = WindowSize();
        if (m_nCols > 0) point.x = Trunc(double(w.cx) / m_nCols * point.x);
        if (m_nRows > 0) point.y = Trunc(double(w.cy) / m_nRows * point.y);
    }
    m_zoomRectF = geo::PanRect(m_panRect, m_panStart, point, m_panScaleX, m_panScaleY, m_nCols, m_nRows);
    if (m_curZoom) m_zoomList.GetAt(m_curZoom)->m_rect = geo::RecordFromRectF(m_zoomRectF);
    UpdateImage();
}

void CImageView::StopPan(CPoint point)
{
    UpdatePan(point, 1);
    m_bPanTracking = 0;
    if (m_hWnd && GetCapture() == this) ReleaseCapture();
}

// Mouse ---------------------------------------------------------------------------------------------
// (The left and right buttons and the mouse move of the view are its cursor state machine,
// in ImageViewMouse.cpp.)

void CImageView::OnLButtonDblClk(UINT flags, CPoint point)
{
    if (m_bOneZoom) {
        CWnd* parent = GetParent();
        const LRESULT handled =
            parent ? parent->SendMessage(MESSAGE_IMAGEVIEW_DBL_CLICK_STR, flags, reinterpret_cast<LPARAM>(&point)) : 0;
        if (!handled) ZoomAt(0, &point, 1, true);
    } else if (GetZoomCount() > 1) {
        ClearAllCursors(1, 0);
        DisableZoomState(1);
    }
    Default();
}

void CImageView::OnMButtonDown(UINT flags, CPoint point)
{
    (void)flags;
    if (m_bOneZoom) StartPan(point, 1);
    Default();
}

void CImageView::OnMButtonUp(UINT flags, CPoint point)
{
    (void)flags;
    if (m_bOneZoom && IsPanSource()) {
        UpdatePan(point, 0);
        if (CWnd* parent = GetParent())
            parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 514, geo::PackPoint(point.x, point.y));
        m_bPanTracking = 0;
        ReleaseCapture();
    }
    Default();
}

BOOL CImageView::OnMouseWheel(UINT flags, short delta, CPoint screenPoint)
{
    (void)flags;
    CWnd* parent = GetParent();
    if (!m_bOneZoom || m_bPanTracking || !parent) return FALSE;
    CPoint p = screenPoint;
    ScreenToClient(&p);
    const LRESULT handled =
        parent->SendMessage(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR, delta >= 1 ? 1 : 0, reinterpret_cast<LPARAM>(&p));
    if (!handled) ZoomAt(delta / WHEEL_DELTA, &p, 1, false);
    return TRUE;
}
