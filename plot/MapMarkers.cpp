// MapClass: the markers as the plot offers them: value and pixel, the mouse gesture that
// makes, picks, drags and drops them, and the setters a host calls. Everything a drag
// draws goes straight onto the window, clipped like the repaint, never by a repaint.
#include <algorithm>
#include <cmath>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"
#include "plot/MarkerMan.h"
#include "plot/PlotGeometry.h"

using orlex::plot::PixelCast;

namespace {

// The window's own device for the time of one gesture step, clipped as the repaint clips
// the curves and markers (Bound enlarged by one pixel to the right and bottom).
class WindowDevice {
public:
    WindowDevice(HWND wnd, const RECT& b) : wnd_(wnd), dc_(wnd != nullptr ? GetDC(wnd) : nullptr)
    {
        if (dc_ == nullptr)
            return;
        HRGN clip = CreateRectRgn(b.left, b.top, b.right + 1, b.bottom + 1);
        SelectClipRgn(dc_, clip);
        DeleteObject(clip);
    }
    ~WindowDevice() { Release(); }
    WindowDevice(const WindowDevice&) = delete;
    WindowDevice& operator=(const WindowDevice&) = delete;
    void Release()
    {
        if (dc_ != nullptr)
            ReleaseDC(wnd_, dc_);
        dc_ = nullptr;
    }
    operator HDC() const { return dc_; }

private:
    HWND wnd_;
    HDC dc_;
};

HCURSOR systemCursor(int id)
{
    return LoadCursorA(nullptr, ORLEX_INTRESOURCE(id));
}

bool within(int v, int lo, int hi)
{
    return v >= lo && v <= hi;
}

}  // namespace

// ---- value and pixel ----------------------------------------------------------------------------

int MapClass::MarkerDbl2Pix(double value, int kind) const
{
    const RECT& b = Bound;
    if (kind == 2) {
        const double w = b.right - b.left;
        if (MapType == 100) {
            const double span = XEnd - XStart;
            return span != 0.0 ? b.left + PixelCast((value - XStart) * w / span + 0.5) : 0;
        }
        if (MapType == 300) {
            const double decades = std::log10(XEnd / XStart);
            return XStart != 0.0 && decades != 0.0 ? b.left + PixelCast(std::log10(value / XStart) * w / decades + 0.5) : 0;
        }
        return 0;
    }
    if (MapType != 100 && MapType != 300)
        return 0;
    const double span = YEnd - YStart;
    return span != 0.0 ? b.top + PixelCast((YEnd - value) * (b.bottom - b.top) / span + 0.5) : 0;
}

double MapClass::MarkerPix2Dbl(int pixel, int kind) const
{
    const RECT& b = Bound;
    if (kind == 2) {
        const double w = b.right - b.left;
        if (w == 0.0)
            return 0.0;
        if (MapType == 100)
            return (XEnd - XStart) * (pixel - b.left) / w + XStart;
        if (MapType == 300)
            return std::pow(10.0, (std::log10(XEnd) - std::log10(XStart)) * (pixel - b.left) / w + std::log10(XStart));
        return 0.0;
    }
    const double h = b.bottom - b.top;
    if ((MapType != 100 && MapType != 300) || h == 0.0)
        return 0.0;
    return (YEnd - YStart) * (b.bottom - pixel) / h + YStart;
}

int MapClass::InMap(POINTS p) const
{
    return within(p.x, Bound.left, Bound.right) && within(p.y, Bound.top, Bound.bottom) ? 1 : 0;
}

// ---- the mouse --------------------------------------------------------------------------------------

void MapClass::NotifyGrid(WPARAM what, const GRID_NOTIFY& note, bool alsoMouse) const
{
    HWND parent = m_hWnd != nullptr ? GetParent(m_hWnd) : nullptr;
    if (parent == nullptr)
        return;
    // The record stays on this stack: the parent reads it during the send.
    GRID_NOTIFY copy = note;
    SendMessageA(parent, MESSAGE_GRID_NOTIFY, what, LPARAM(&copy));
    if (alsoMouse)
        SendMessageA(parent, MESSAGE_CURSOR_MOUSE_STR, 0, LPARAM(&copy));
}

void MapClass::Markers(UINT message, LPARAM lParam)
{
    if (ReadOnlyMarkers || !MarkerMan)
        return;
    CMarkerMan& mm = *MarkerMan;
    const int x = short(LOWORD(lParam)), y = short(HIWORD(lParam));
    const RECT b = Bound;
    WindowDevice dc(m_hWnd, b);
    if (message == WM_LBUTTONDOWN) {
        if (MarkerDrag)
            return;
        MarkerDrag = 1;
        PairDrag = 0;
        PairOffset = 0;
        HCURSOR cursor = nullptr;
        if (x < b.left - 5 || x > b.right + 5) {
            if (VertMarkersEnabled && mm.GetMarkerNum() < AllowableMarkers && mm.CreateMarker(dc))
                cursor = systemCursor(32644);
        } else if (y < b.top - 5 || y > b.bottom + 5) {
            if (HorzMarkerEnabled && mm.CreateHorzMarker(dc, 0))
                cursor = systemCursor(32645);
        } else {
            int kind = 0;
            if (mm.FindNear(dc, POINTS{short(x), short(y)}, 5, true, &kind) != 12) {
                cursor = systemCursor(kind == 2 ? 32644 : 32645);
            } else {
                if (!mm.BetweenActive(dc, POINTS{short(x), short(y)}))
                    return;
                PairDrag = 1;
                const int i = CMarkerMan::GetIndex(mm.TrackID);
                const int j = mm.GetLink(i);
                PairOffset = x - mm.Vert[i].Pixel;
                PairGap = j < 12 ? mm.Vert[j].Pixel - mm.Vert[i].Pixel : 0;
                cursor = mm.Cursor != nullptr ? mm.Cursor : systemCursor(32648);
            }
        }
        if (cursor == nullptr)
            return;
        SavedCursor = SetCursor(cursor);
        if (m_hWnd != nullptr)
            SetCapture(m_hWnd);
        return;
    }
    if (message != WM_MOUSEMOVE && message != WM_LBUTTONUP)
        return;
    const bool up = message == WM_LBUTTONUP;
    GRID_NOTIFY note{};
    note.Wnd = m_hWnd;

    if (mm.Kind != 2) {
        const unsigned dragged = mm.GetHzState() & 7;
        if (dragged != 0) {
            const int i = dragged & 1 ? 0 : dragged & 2 ? 1 : 2;
            int pixel = y;
            if (HorzRangeOn[i]) {
                const double v = MarkerPix2Dbl(y, 1);
                if (v < HorzRangeMin[i])
                    pixel = MarkerDbl2Pix(HorzRangeMin[i], 1);
                else if (v > HorzRangeMax[i])
                    pixel = MarkerDbl2Pix(HorzRangeMax[i], 1);
            }
            dc.Release();
            if (up)
                MarkerDrag = 0;
            SetHorzMarker(pixel, message, i);
            if (!up && TrackMouseOn && MarkerDrag) {
                note.Kind = 1;
                note.Index = i;
                note.Value = MarkerPix2Dbl(pixel, 1);
                NotifyGrid(512, note, true);
            }
            return;
        }
    } else {
        const int i = CMarkerMan::GetIndex(mm.TrackID);
        if (i < 12) {
            const int j = mm.GetLink(i);
            CMarker& m = mm.Vert[i];
            if (within(m.Pixel, b.left, b.right))
                mm.UndrawMarker(dc, i, 2);
            int p = x;
            if (PairDrag) {
                p = short(x - PairOffset);
                if (j < 12 && within(mm.Vert[j].Pixel, b.left, b.right))
                    mm.UndrawMarker(dc, j, 2);
            }
            auto place = [&](int index, int pixel) {
                if (up)
                    mm.PutMarker(dc, pixel, index, 2);
                else
                    mm.DrawMarker(dc, pixel, index, false, true, 2);
            };
            if (within(p, b.left, b.right)) {
                if (m.Width > 1 && mm.FindNearMarker != 0)
                    p = mm.AdjustMarkerWidth(p, i);
                place(i, p);
            }
            const int q = p + PairGap;
            if (PairDrag && j < 12 && within(q, b.left, b.right))
                place(j, q);
            note.Pair = PairDrag;
            note.Kind = 2;
            note.Index = i;
            note.Value = MarkerPix2Dbl(p, 2);
            if (PairDrag && j < 12) {
                note.Index2 = j;
                note.Value2 = MarkerPix2Dbl(q, 2);
            }
            if (!up) {
                dc.Release();
                if (TrackMouseOn)
                    NotifyGrid(512, note, true);
                return;
            }
            SetCursor(SavedCursor);
            ReleaseCapture();
            mm.HzState &= 0x0F;
            mm.TrackID = 0;
            // Dropped outside the plot, the marker goes with its partner.
            if (!within(p, b.left, b.right) || (PairDrag && !within(q, b.left, b.right))) {
                mm.DeleteMarkers(dc, i, 2);
                note.Deleted = 1;
            }
            dc.Release();
            MarkerDrag = 0;
            if (PairDrag)
                RepaintNow();
            NotifyGrid(514, note, false);
            return;
        }
        if (up) {
            SetCursor(SavedCursor);
            ReleaseCapture();
            MarkerDrag = 0;
            return;
        }
    }
    // No drag: the release ends the gesture, a move shows what a press would do there.
    if (up) {
        MarkerDrag = 0;
        return;
    }
    HCURSOR hint = nullptr;
    if (x < b.left - 5 || x > b.right + 5) {
        if (mm.GetMarkerNum() < AllowableMarkers)
            hint = systemCursor(32644);
    } else if ((y < b.top - 5 || y > b.bottom + 5) && HorzMarkerEnabled && !(mm.HzState & 1)) {
        hint = systemCursor(32645);
    }
    if (hint != nullptr) {
        HCURSOR old = SetCursor(hint);
        if (SavedCursor == nullptr)
            SavedCursor = old;
    }
}

void MapClass::SetHorzMarker(int pixel, UINT message, int index)
{
    if (!MarkerMan || MarkerMan->HzState < 16 || index < 0 || index >= 3)
        return;
    CMarkerMan& mm = *MarkerMan;
    const RECT b = Bound;
    GRID_NOTIFY note{};
    {
        WindowDevice dc(m_hWnd, b);
        if (within(mm.Horz[index].Pixel, b.top, b.bottom))
            mm.UndrawMarker(dc, index, 1);
        if (within(pixel, b.top, b.bottom)) {
            mm.DrawMarker(dc, pixel, index, false, true, 1);
            if (message == WM_MOUSEMOVE)
                return;
        }
        if (message == WM_LBUTTONUP) {
            SetCursor(SavedCursor);
            ReleaseCapture();
        } else if (message != 0) {
            return;
        }
        mm.HzState %= 16;
        mm.TrackID = 0;
        note.Kind = 1;
        note.Index = index;
        note.Value = MarkerPix2Dbl(pixel, 1);
        note.Wnd = m_hWnd;
        if (!within(pixel, b.top, b.bottom)) {
            mm.DeleteMarkers(dc, index, 1);
            note.Deleted = 1;
        }
    }
    if (message == WM_LBUTTONUP)
        NotifyGrid(514, note, false);
}

// ---- setters ------------------------------------------------------------------------------------------

int MapClass::SetMarker(HDC hdc, double value, int width, int deleteMask)
{
    if (!MarkerMan)
        return 0;
    CMarkerMan& mm = *MarkerMan;
    if (deleteMask)
        mm.DeleteAll(hdc, deleteMask);
    if (mm.CreateMarker(hdc) == 0)
        return 0;
    const int i = CMarkerMan::GetIndex(mm.TrackID);
    CMarker& m = i < 12 ? mm.Vert[i] : mm.Horz[0];
    m.Value = value;
    m.set_width(width);
    mm.HzState &= 0x0F;
    mm.TrackID = 0;
    return 1;
}

void MapClass::SetMarker(int index, double value, int width)
{
    if (!MarkerMan || index < 0 || index >= 12)
        return;
    CMarkerMan& mm = *MarkerMan;
    if (mm.Vert[index].Width == width)
        return;
    {
        WindowDevice dc(m_hWnd, Bound);
        mm.UndrawMarker(dc, index, 2);
        mm.SetMarker(index, value, width);
        mm.DrawMarker(dc, MarkerDbl2Pix(value, 2), index, false, false, 2);
    }
    GRID_NOTIFY note{};
    note.Kind = 2;
    note.Index = index;
    note.Value = value;
    note.Wnd = m_hWnd;
    NotifyGrid(514, note, false);
}

int MapClass::AddHorzMarker(double value, int index)
{
    if (!MarkerMan || !HorzMarkerEnabled)
        return 0;
    const int pixel = MarkerDbl2Pix(value, 1);
    if (YEnd - YStart == 0.0 || pixel == 0)
        return 0;
    unsigned id;
    {
        WindowDevice dc(m_hWnd, Bound);
        id = MarkerMan->CreateHorzMarker(dc, index);
    }
    if (id == 0)
        return 0;
    // With several allowed, the marker made may be another than the one asked for.
    SetHorzMarker(pixel, 0, CMarkerMan::GetHorzIndex(id));
    return 1;
}

void MapClass::DelayAddHorzMarker(double value, int index)
{
    if (index < 0 || index >= 3)
        return;
    DelayedHorzValue[index] = value;
    DelayedHorzFlag[index] = 1;
}

void MapClass::DeleteMarker(int index, int kind, int notify)
{
    if (!MarkerMan)
        return;
    {
        WindowDevice dc(m_hWnd, Bound);
        MarkerMan->DeleteMarkers(dc, index, kind);
    }
    if (!notify)
        return;
    GRID_NOTIFY note{};
    note.Deleted = 1;
    note.Kind = 2;
    note.Index = index;
    note.Wnd = m_hWnd;
    NotifyGrid(0, note, false);
}

void MapClass::ClearMarkers(HDC hdc, int mask)
{
    if (!MarkerMan)
        return;
    if (hdc != nullptr) {
        MarkerMan->DeleteAll(hdc, mask);
        return;
    }
    WindowDevice dc(m_hWnd, Bound);
    MarkerMan->DeleteAll(dc, mask);
}

void MapClass::SetMarkerRange(double min, double max, int index, int kind)
{
    if (kind == 1 && index >= 0 && index < 3) {
        HorzRangeMin[index] = min;
        HorzRangeMax[index] = max;
        HorzRangeOn[index] = 1;
    } else if (kind == 2 && index >= 0 && index < 12) {
        VertRangeMin[index] = min;
        VertRangeMax[index] = max;
        VertRangeOn[index] = 1;
    }
}

void MapClass::ClearMarkerRange(int index, int kind)
{
    if (kind == 1 && index >= 0 && index < 3)
        HorzRangeOn[index] = 0;
    else if (kind == 2 && index >= 0 && index < 12)
        VertRangeOn[index] = 0;
}

bool MapClass::FindNear(POINTS point, int tolerance, int* index, int* kind)
{
    if (!MarkerMan)
        return false;
    WindowDevice dc(m_hWnd, Bound);
    int k = 0;
    const int i = MarkerMan->FindNear(dc, point, tolerance, false, &k);
    if (i == 12)
        return false;
    if (index != nullptr)
        *index = i;
    if (kind != nullptr)
        *kind = k;
    return true;
}

int MapClass::GetActNorMode() const
{
    return MarkerMan ? MarkerMan->ActNorMode : 0;
}

void MapClass::SetActNorMode(int mode)
{
    if (MarkerMan)
        MarkerMan->ActNorMode = mode;
}

int MapClass::GetActiveMarkerNum() const
{
    int n = 0;
    for (int i = 0; i < 12; ++i)
        n += (MarkerMan->MarkerMap & (1u << i)) && MarkerMan->Vert[i].Active;
    return n;
}

int MapClass::GetActiveMkrPair() const
{
    return MarkerMan ? MarkerMan->GetActiveMkrPair() : -1;
}

int MapClass::GetMarkerNum() const
{
    return MarkerMan ? MarkerMan->GetMarkerNum() : 0;
}

MARKERVAL MapClass::GetMarkers() const
{
    MARKERVAL v;
    const CMarkerMan& mm = *MarkerMan;
    v.MarkerMap = mm.MarkerMap;
    for (int i = 0; i < 12; ++i) {
        const CMarker& m = mm.Vert[i];
        v.Pixel[i] = m.Pixel;
        v.ID[i] = m.ID;
        v.Link[i] = m.Link;
        v.Over[i] = m.Over;
        v.Under[i] = m.Under;
        v.Active[i] = m.Active;
        v.Width[i] = m.Width;
        v.Value[i] = m.Value;
    }
    v.HorzValue = mm.Horz[0].Value;
    v.HorzPixel = (mm.HzState & 1) ? mm.Horz[0].Pixel : 0;
    return v;
}

COLORREF MapClass::GetMkrColor(int index, int kind) const
{
    if (kind == 1)
        return index >= 0 && index < 12 ? MarkerMan->Vert[index].Color : COLORREF(0);
    return index >= 0 && index < 3 ? MarkerMan->Horz[index].Color : COLORREF(0);
}

void MapClass::SetMkrColor(int index, COLORREF colour, int kind)
{
    if (kind == 1 && index >= 0 && index < 12)
        MarkerMan->Vert[index].Color = colour;
    else if (kind != 1 && index >= 0 && index < 3)
        MarkerMan->Horz[index].Color = colour;
}

void MapClass::SetDataPointSize(double size)
{
    MarkerMan->DataPointSize = size;
}

void MapClass::SetMarkerCursor(HCURSOR cursor)
{
    MarkerMan->Cursor = cursor;
}

int MapClass::AllowMultipledHorzMarkers() const
{
    return MarkerMan->Multiple;
}

void MapClass::AllowMultipledHorzMarkers(int on)
{
    MarkerMan->Multiple = on;
}

int MapClass::SetAllowableMarkers(int n)
{
    if (n >= 0 && n <= 12)
        AllowableMarkers = n;
    return AllowableMarkers;
}

CMARKER MapClass::GetMarker(int index) const
{
    return MarkerMan->GetMarker(index);
}

CMARKER MapClass::GetHorzMarker(int index) const
{
    return MarkerMan->GetHzMarker(index);
}

void MapClass::DrawMarkers(HDC hdc)
{
    if (!MarkerMan)
        return;
    // Horizontal markers asked for before the plot had a scale are made now, where the
    // repaint draws them with the others.
    for (int i = 0; i < 3; ++i) {
        if (!DelayedHorzFlag[i])
            continue;
        DelayedHorzFlag[i] = 0;
        if (!HorzMarkerEnabled)
            continue;
        const unsigned id = MarkerMan->CreateHorzMarker(hdc, i);
        if (id == 0)
            continue;
        MarkerMan->Horz[CMarkerMan::GetHorzIndex(id)].Value = DelayedHorzValue[i];
        MarkerMan->HzState &= 0x0F;
    }
    if (Printing)
        MarkerMan->PrintAll(hdc);
    else
        MarkerMan->DrawAll(hdc);
}
