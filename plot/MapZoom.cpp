// MapClass: the rubber band that zooms a plot, the zoom window that then gives the axes,
// and moving that window.
#include <algorithm>
#include <cmath>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"

namespace {

// Which diagonal pointer the band shows, for all plots of the process: 1 for the
// north-west to south-east one.
int g_diagonal = 1;

HCURSOR systemCursor(int id)
{
    return LoadCursorA(nullptr, ORLEX_INTRESOURCE(id));
}

}  // namespace

void MapClass::DrawBand(HDC hdc) const
{
    // An inverted outline: drawn twice, it is gone.
    const POINT outline[5] = {{BandStartX, BandStartY}, {BandStartX, BandY}, {BandX, BandY}, {BandX, BandStartY},
                              {BandStartX, BandStartY}};
    const int rop = SetROP2(hdc, R2_NOT);
    Polyline(hdc, outline, 5);
    SetROP2(hdc, rop);
}

void MapClass::Zoom(UINT message, LPARAM position)
{
    const int x = short(LOWORD(position)), y = short(HIWORD(position));
    const RECT b = Bound;
    switch (message) {
    case 516: // begin
        if (MarkerDrag || (MapType != 100 && MapType != 300))
            return;
        MarkerDrag = 1;
        BandX = BandStartX = short(x);
        BandY = BandStartY = short(y);
        if (InMap(POINTS{short(x), short(y)})) {
            RubberBand = 1;
            if (m_hWnd != nullptr)
                SetCapture(m_hWnd);
            g_diagonal = 1;
            SavedCursor = SetCursor(systemCursor(32642));
        }
        return;
    case WM_MOUSEMOVE: {
        if (!RubberBand)
            return;
        const bool down = (x > BandStartX && y > BandStartY) || (x < BandStartX && y < BandStartY);
        const bool up = (x < BandStartX && y > BandStartY) || (x > BandStartX && y < BandStartY);
        if (down && g_diagonal == 0) {
            g_diagonal = 1;
            SetCursor(systemCursor(32642));
        } else if (up && g_diagonal == 1) {
            g_diagonal = 0;
            SetCursor(systemCursor(32643));
        }
        const short cx = short(x < b.left ? b.left : x >= b.right ? b.right - 1 : x);
        const short cy = short(y < b.top ? b.top : y >= b.bottom ? b.bottom - 1 : y);
        if (cx == BandX && cy == BandY)
            return;
        HDC dc = m_hWnd != nullptr ? GetDC(m_hWnd) : nullptr;
        if (dc == nullptr)
            return;
        DrawBand(dc);
        BandX = cx;
        BandY = cy;
        DrawBand(dc);
        ReleaseDC(m_hWnd, dc);
        return;
    }
    case 517: { // end
        if (!RubberBand)
            return;
        RubberBand = 0;
        ReleaseCapture();
        SetCursor(SavedCursor);
        // The release point is held inside the plot as the drag held it, so the zoom is
        // the band the user saw.
        const int ex = x < b.left ? b.left : x >= b.right ? b.right - 1 : x;
        const int ey = y < b.top ? b.top : y >= b.bottom ? b.bottom - 1 : y;
        ZoomRect = RECT{std::min<int>(BandStartX, ex), std::min<int>(BandStartY, ey), std::max<int>(BandStartX, ex),
                        std::max<int>(BandStartY, ey)};
        ZoomRect.left = std::max(ZoomRect.left, b.left);
        ZoomRect.top = std::max(ZoomRect.top, b.top);
        ZoomRect.right = std::min(ZoomRect.right, b.right);
        ZoomRect.bottom = std::min(ZoomRect.bottom, b.bottom);
        DoZoom(1);
        BoundDirty = 1;
        MarkerDrag = 0;
        RepaintNow();
        return;
    }
    case WM_LBUTTONDBLCLK:
        if (ZoomState) {
            DoZoom(0);
            BoundDirty = 1;
            RepaintNow();
        }
        if (SavedCursor != nullptr) {
            SetCursor(SavedCursor);
            SavedCursor = nullptr;
        }
        return;
    default:
        return;
    }
}

void MapClass::DoZoom(int on)
{
    const RECT b = Bound;
    const double W = b.right - b.left, H = b.bottom - b.top;
    if (!on) {
        ZoomState = 0;
        ZoomArmed = 1;
    } else if (W <= 0.0 || H <= 0.0) {
        // A plot of no size has no band to turn into data.
        ZoomState = 0;
        ZoomArmed = 1;
    } else {
        if (ZoomArmed) {
            ZoomState = 1;
            ZoomArmed = 0;
            if (MapType == 100)
                MinZoomY = (YEnd - YStart) * H / 214748364.0;
        }
        const RECT& z = ZoomRect;
        const double ySpan = YEnd - YStart;
        if (MapType == 100) {
            const double xSpan = XEnd - XStart;
            ZoomXMin = (z.left - b.left) * xSpan / W + XStart;
            ZoomXMax = (z.right - b.left) * xSpan / W + XStart;
            ZoomYMax = (b.bottom - z.top) * ySpan / H + YStart;
            ZoomYMin = (b.bottom - z.bottom) * ySpan / H + YStart;
            if (ZoomYMax - ZoomYMin < MinZoomY) {
                ZoomXMin = ZoomXMax = ZoomYMin = ZoomYMax = 0.0;
                MessageBeep(UINT(-1));
                ZoomState = 0;
                ZoomArmed = 1;
            }
        } else if (MapType == 300) {
            const double l0 = std::log10(XStart), decades = std::log10(XEnd) - l0;
            ZoomXMin = std::pow(10.0, (z.left - b.left) * decades / W + l0);
            ZoomXMax = std::pow(10.0, (z.right - b.left) * decades / W + l0);
            ZoomYMax = (b.bottom - z.top) * ySpan / H + YStart;
            ZoomYMin = (b.bottom - z.bottom) * ySpan / H + YStart;
        }
    }
    NotifyZoomEvent();
}

void MapClass::PanZoom(double dx, double dy)
{
    BoundDirty = 1;
    XStart += dx;
    XEnd += dx;
    ZoomXMin += dx;
    ZoomXMax += dx;
    YStart += dy;
    YEnd += dy;
    ZoomYMin += dy;
    ZoomYMax += dy;
    RepaintNow();
    NotifyZoomEvent();
}

void MapClass::SetZoomParms(int state, DRECT r)
{
    if (state == 0)
        return;
    ZoomState = 1;
    ZoomXMin = r.left;
    ZoomXMax = r.right;
    ZoomYMin = r.top;
    ZoomYMax = r.bottom;
    BoundDirty = 1;
    RepaintNow();
}

void MapClass::SetZoomOffset(double d)
{
    if (!ZoomState)
        return;
    ZoomXMin += d;
    ZoomXMax += d;
}

void MapClass::SetZoomRange(double d)
{
    if (!ZoomState)
        return;
    ZoomYMin += d;
    ZoomYMax += d;
}
