// Image view: the mouse handlers as one state machine. The state lies in the capture, the
// running pan (m_bPanTracking) and the cursors' drag flag (CBaseCursor::m_bCursorTracking).
// A left press on a free part of the image starts a pan, a zoom box or a new cursor by the
// frame's tool buttons; a view without a frame behaves as if the measure button were down.
// Presses on cursors reach the view only when the cursors give them back.
#include "cursors/BaseCursor.h"
#include "cursors/CursorKinds.h"
#include "foundation/MessageCatalogue.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewEventNotifier.h"
#include "imageview/ImageViewFrame.h"

namespace geo = orlex::view;

namespace {

bool CtrlDown() { return (GetKeyState(VK_CONTROL) & 0x8000) != 0; }

}  // namespace

bool CImageView::IsPanSource() const { return m_bPanTracking && m_hWnd && GetCapture() == this; }

void CImageView::NotifyParent(UINT code)
{
    CWnd* parent = GetParent();
    if (!parent) return;
    NMHDR nm{m_hWnd, static_cast<UINT_PTR>(GetDlgCtrlID()), code};
    parent->SendMessage(WM_NOTIFY, nm.idFrom, reinterpret_cast<LPARAM>(&nm));
}

void CImageView::HideCoordTip()
{
    if (m_pCoordTip && m_bCoordTipShown) {
        HideTip(*m_pCoordTip, false);
        m_bCoordTipShown = 0;
    }
}

void CImageView::OnLButtonDown(UINT flags, CPoint point)
{
    int temp = m_bTempCurMode;
    m_bTempCurMode = 0;
    if (m_bOneZoom && CtrlDown()) {
        ClearAllCursors(1, 0);
        temp = 1;
    }
    if (m_pNotifier && m_pNotifier->OnLButtonDown(flags, point)) {
        Default();
        return;
    }
    HideCoordTip();

    int mode = m_nMode;
    if (CImageViewFrame* f = Frame()) {
        bool tool = false;
        if (static_cast<long long>(m_nRows) * m_nCols >= 1) {
            // The zoom box is a square box cursor; it reports its end through OnCursorNotify.
            if (f->GetZoomButtonState()) {
                mode = kCursorSquareBox;
                tool = true;
            } else if (f->GetRtZoomState()) {
                mode = kCursorCrossBox;
                tool = true;
            } else if (f->GetRtOffSetState()) {
                mode = kCursorCross;
                tool = true;
            }
            if (tool) ClearAllCursors(1, 0);
        }
        if (!tool && !temp) {
            if (f->GetPanButtonState()) {
                if (CWnd* fp = FrameParent()) fp->SendMessage(ACTIVATE_VIEW_STR, 0, 0);
                if (m_bRealTime)
                    StartPan(point, 1);
                else
                    StartPanOffline(point, 0);
                Default();
                return;
            }
            if (!f->GetMeasureButtonState()) {
                Default();
                return;
            }
        }
    }

    // One-point kinds are made from the point alone, the others from a rectangle of zero
    // size there.
    const bool onePoint = mode == kCursorVertLine || mode == kCursorHorzLine || mode == kCursorCross ||
                          mode == kCursorVertLinked || mode == kCursorHorzLinked;
    CRect at(point, point);
    CBaseCursor* made = AddCursor(onePoint ? nullptr : &at, mode, 0.0, &point, 1);
    if (made) {
        // The press that made the cursor already drags it.
        made->SetCapture();
        CBaseCursor::m_bCursorTracking = true;
        const CursorKind* kind = FindCursorKind(mode);
        if (kind && kind->preset) kind->preset(made);
    }
    if (mode == kCursorBox) m_bBoxCreating = TRUE;
    NotifyParent(NM_CLICK);
    // The host may have removed the cursor while it heard of the press.
    if (made && m_cursors.Find(made)) {
        CURSOR_POS pos{};
        made->GetCursorData(this, &pos);
        if (CWnd* parent = GetParent())
            parent->SendMessage(MESSAGE_CREATE_CURSOR_STR, reinterpret_cast<WPARAM>(this), reinterpret_cast<LPARAM>(&pos));
    }
    Default();
}

void CImageView::OnMouseMove(UINT flags, CPoint point)
{
    if (m_bOneZoom && m_hWnd) {
        if (GetFocus() != this) SetFocus();
        TRACKMOUSEEVENT tme{sizeof(TRACKMOUSEEVENT), TME_LEAVE, m_hWnd, 0};
        _TrackMouseEvent(&tme);
    }
    CoordTipOnMouseMove(flags, point);
    if (!m_pNotifier || !m_pNotifier->OnMouseMove(flags, point)) {
        if (IsPanSource()) {
            UpdatePan(point, 0);
            CImageViewFrame* f = Frame();
            if (m_bRealTime) {
                if (CWnd* parent = GetParent())
                    parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 512, geo::PackPoint(point.x, point.y));
            } else if (CWnd* fp = FrameParent()) {
                fp->SendMessage(UPDATE_PAN_SRC_STR, reinterpret_cast<WPARAM>(f->GetFrameWnd()), DataUnitsPoint(point));
            }
        } else if (GetPanMode() && !(flags & MK_LBUTTON)) {
            ShowOpenHand();
        }
    }
    if (GetPanMode() && !(flags & MK_LBUTTON) && !m_bOneZoom) ShowOpenHand();
    FixedTipOnMouseMove();
    Default();
}

void CImageView::OnLButtonUp(UINT flags, CPoint point)
{
    if (m_pNotifier && m_pNotifier->OnLButtonUp(flags, point)) {
        Default();
        return;
    }
    if (IsPanSource()) {
        UpdatePan(point, 0);
        CWnd* parent = GetParent();
        if (m_bRealTime) {
            if (parent) parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 514, geo::PackPoint(point.x, point.y));
        } else {
            if (parent) parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, 0, 0);
            if (CWnd* fp = FrameParent()) fp->SendMessage(UPDATE_PAN_SRC_STR, 514, DataUnitsPoint(point));
        }
        m_bPanTracking = 0;
        ReleaseCapture();
    }
    Default();
}

void CImageView::OnRButtonDown(UINT flags, CPoint point)
{
    Default();
    if (m_pNotifier && m_pNotifier->OnRButtonDown(flags, point)) return;
    HideCoordTip();
    NotifyParent(NM_RCLICK);
}

void CImageView::OnRButtonUp(UINT flags, CPoint point)
{
    if (m_hWnd && GetCapture() == this) ReleaseCapture();
    if (m_pNotifier && m_pNotifier->OnRButtonUp(flags, point)) {
        Default();
        return;
    }
    if (CtrlDown()) return;
    // The frame opens its menu on this.
    if (CWnd* parent = GetParent()) {
        MapWindowPoints(parent, &point, 1);
        parent->SendMessage(WM_RBUTTONUP, flags, geo::PackPoint(point.x, point.y));
    }
}
