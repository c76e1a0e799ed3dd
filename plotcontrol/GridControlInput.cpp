// CGridControl: the repaint into a memory bitmap, the mouse (markers, or with the Control
// key the rubber band zoom), the zoom button and the scroll bars of a zoomed plot.
#include <algorithm>
#include <cmath>

#include "foundation/MessageCatalogue.h"
#include "plot/PlotGeometry.h"
#include "plotcontrol/GridControl.h"

BEGIN_MESSAGE_MAP(CGridControl, CWnd)
    ON_WM_CREATE()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SIZE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_LBUTTONDBLCLK()
    ON_WM_MOUSEMOVE()
    ON_WM_RBUTTONDOWN()
    ON_WM_HSCROLL()
    ON_WM_VSCROLL()
    ON_MESSAGE(WM_GRID_SCALE_UPDATE, OnScaleUpdateMessage)
    ON_BN_CLICKED(ID_GRID_ZOOM_BUTTON, OnZoomButton)
END_MESSAGE_MAP()

namespace {

LPARAM packed(CPoint p)
{
    return MAKELPARAM(WORD(short(p.x)), WORD(short(p.y)));
}

}  // namespace

void CGridControl::OnPaint()
{
    if (PaintLock)
        return;
    CPaintDC dc(this);
    if (!m_pMap)
        return;
    // A repaint that runs inside this one (a zoom the axes dropped) shows a newer picture;
    // this one's copy then stays off the screen.
    const int serial = ++m_paintSerial;
    CRect client;
    GetClientRect(&client);
    Bitmap.DeleteObject();
    Bitmap.CreateCompatibleBitmap(&dc, client.Width(), client.Height());
    CBitmap* old = MemDC.SelectObject(&Bitmap);
    MemDC.FillSolidRect(&client, m_pMap->GetBkColor());
    m_pMap->DrawMap(MemDC.m_hDC, Curves, client);
    EnableZoomScrolling(m_pMap->GetZoomState() != 0);
    if (serial == m_paintSerial)
        dc.BitBlt(0, 0, client.Width(), client.Height(), &MemDC, 0, 0, SRCCOPY);
    MemDC.SelectObject(old);
    Bitmap.DeleteObject();
    // The picture covers the whole client area, the zoom button's place too.
    if (ZoomButton.m_hWnd != nullptr && ZoomButton.IsWindowVisible())
        ZoomButton.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

void CGridControl::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    if (ZoomButton.m_hWnd == nullptr)
        return;
    CRect client;
    GetClientRect(&client);
    ZoomButton.SetWindowPos(nullptr, client.left, client.bottom - 20, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
}

void CGridControl::ResizeGrid(int cx, int cy)
{
    if (!m_pMap)
        return;
    m_pMap->Resize(0, MAKELPARAM(WORD(cx), WORD(cy)));
    RepaintNow();
}

// ---- mouse -----------------------------------------------------------------------------------------

void CGridControl::OnLButtonDown(UINT flags, CPoint point)
{
    if (!m_pMap)
        return;
    const bool control = (flags & MK_CONTROL) != 0;
    MouseMode = control ? 516 : 513;
    if (control) {
        if (m_pMap->InMap(POINTS{short(point.x), short(point.y)})) {
            PaintLock = 1;
            m_pMap->Zoom(516, packed(point));
        }
    } else {
        m_pMap->Markers(WM_LBUTTONDOWN, packed(point));
    }
    CWnd::OnLButtonDown(flags, point);
    Notify(NM_CLICK);
}

void CGridControl::OnLButtonUp(UINT flags, CPoint point)
{
    if (!m_pMap)
        return;
    if (MouseMode == 516) {
        m_pMap->Zoom(517, packed(point));
        PaintLock = 0;
        UpdateZoomBtn();
        ScrollUpdate = 1;
        // The map's repaint came while painting was locked: the zoomed plot shows now.
        RepaintNow();
    } else if (MouseMode == 513) {
        m_pMap->Markers(WM_LBUTTONUP, packed(point));
    }
    MouseMode = 0;
}

void CGridControl::OnMouseMove(UINT flags, CPoint point)
{
    if (!m_pMap)
        return;
    if (MouseMode == 516)
        m_pMap->Zoom(WM_MOUSEMOVE, packed(point));
    else
        m_pMap->Markers(WM_MOUSEMOVE, packed(point));
}

void CGridControl::OnLButtonDblClk(UINT flags, CPoint point)
{
    if (!m_pMap)
        return;
    m_pMap->Zoom(WM_LBUTTONDBLCLK, packed(point));
    UpdateZoomBtn();
    ScrollUpdate = 1;
}

void CGridControl::OnRButtonDown(UINT flags, CPoint point)
{
    CWnd::OnRButtonDown(flags, point);
    Notify(UINT(-5));
}

LRESULT CGridControl::OnScaleUpdateMessage(WPARAM wParam, LPARAM lParam)
{
    return OnScaleUpdate(wParam, reinterpret_cast<GRID_INFO*>(lParam));
}

// ---- zoom button and scroll bars --------------------------------------------------------------------

void CGridControl::OnZoomButton()
{
    if (!m_pMap)
        return;
    m_pMap->Zoom(WM_LBUTTONDBLCLK, 0);
    ZoomButton.ShowWindow(SW_HIDE);
    ScrollUpdate = 1;
}

void CGridControl::UnZoom()
{
    if (m_pMap && m_pMap->GetZoomState())
        OnZoomButton();
}

void CGridControl::UpdateZoomBtn()
{
    if (m_pMap && ZoomButton.m_hWnd != nullptr)
        ZoomButton.ShowWindow(m_pMap->GetZoomState() ? SW_SHOW : SW_HIDE);
}

void CGridControl::EnableZoomScrolling(bool on)
{
    if (!m_pMap)
        return;
    MapClass& m = *m_pMap;
    if (!m.GetZoomState())
        FullExtents = m.GetExtents();
    if (!ScrollUpdate)
        return;
    ScrollUpdate = 0;
    int h = 0, v = 0, hp = 0, vp = 0;
    if (on && GetCurve(GetActiveCurve()) != nullptr) {
        const DRECT& F = FullExtents;
        const DRECT E = m.GetExtents();
        int nx = 0, ny = 0;
        m.GetNumMajorLineDivisions(nx, ny);
        auto nonZero = [](double d) { return d != 0.0 ? d : 1.0; };
        const double fx = nonZero(F.right - F.left), fy = nonZero(F.top - F.bottom);
        const double mx = nonZero((E.right - E.left) / (nx != 0 ? nx : 1));
        const double my = nonZero((E.top - E.bottom) / (ny != 0 ? ny : 1));
        // Positions reach the control in 16 bits: the ranges stay below 32768.
        auto range = [](double r) { return std::clamp(orlex::plot::PixelCast(r), 0, 32767); };
        h = range(fx / mx * 1.5);
        v = range(fy / my * 1.5);
        hp = std::clamp(orlex::plot::PixelCast(((E.left + E.right) / 2 - F.left) / fx * h + 0.5), 0, h);
        vp = std::clamp(orlex::plot::PixelCast((F.top - (E.bottom + E.top) / 2) / fy * v + 0.5), 0, v);
    }
    SetScrollRange(SB_HORZ, 0, h, FALSE);
    SetScrollPos(SB_HORZ, hp, TRUE);
    SetScrollRange(SB_VERT, 0, v, FALSE);
    SetScrollPos(SB_VERT, vp, TRUE);
    ShowScrollBar(SB_BOTH, on);
}

void CGridControl::Scroll(int bar, UINT code, UINT pos)
{
    if (GetFocus() != this)
        SetFocus();
    const int current = GetScrollPos(bar);
    int d = 0;
    switch (code) {
    case SB_LINEUP:
    case SB_PAGEUP:
        d = -1;
        break;
    case SB_LINEDOWN:
    case SB_PAGEDOWN:
        d = 1;
        break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK:
        d = int(short(pos)) - current;
        break;
    default:
        break;
    }
    int lo = 0, hi = 0;
    GetScrollRange(bar, &lo, &hi);
    if (d == 0 || current + d < lo || current + d > hi)
        return;
    if (bar == SB_HORZ)
        PanZoom(d, 0);
    else
        PanZoom(0, -d);
    SetScrollPos(bar, current + d, TRUE);
}

void CGridControl::OnHScroll(UINT code, UINT pos, CScrollBar*)
{
    Scroll(SB_HORZ, code, pos);
}

void CGridControl::OnVScroll(UINT code, UINT pos, CScrollBar*)
{
    Scroll(SB_VERT, code, pos);
}

void CGridControl::PanZoom(int dx, int dy)
{
    if (!m_pMap || !m_pMap->GetZoomState())
        return;
    const DRECT z = m_pMap->GetZoomParms();
    int nx = 0, ny = 0;
    m_pMap->GetNumMajorLineDivisions(nx, ny);
    m_pMap->PanZoom((z.right - z.left) / (nx != 0 ? nx : 1) * dx, (z.bottom - z.top) / (ny != 0 ? ny : 1) * dy);
    RepaintNow();
}
