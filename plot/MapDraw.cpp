// MapClass: the curves in their eight styles with their points of interest, the colours
// and the colour dialog, the legend, the marked point and the text list.
#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <new>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"
#include "plot/MarkerMan.h"
#include "plot/PlotGeometry.h"
#include "plot/TextFont.h"

namespace {

// Strokes from a to b, the end pixel left out as LineTo leaves it.
void stroke(HDC hdc, int x0, int y0, int x1, int y1)
{
    MoveToEx(hdc, x0, y0, nullptr);
    LineTo(hdc, x1, y1);
}

// A closed outline through the corners, back to the first.
void outline(HDC hdc, std::initializer_list<POINT> corners)
{
    const POINT first = *corners.begin();
    MoveToEx(hdc, first.x, first.y, nullptr);
    for (auto it = corners.begin() + 1; it != corners.end(); ++it)
        LineTo(hdc, it->x, it->y);
    LineTo(hdc, first.x, first.y);
}

// Centres the colour dialog on its owner when it opens.
UINT_PTR centreOnParent(HWND dialog, UINT message, WPARAM, LPARAM)
{
    if (message != WM_INITDIALOG)
        return 0;
    HWND parent = GetParent(dialog);
    RECT pr{}, dr{};
    if (parent == nullptr || !GetWindowRect(parent, &pr) || !GetWindowRect(dialog, &dr))
        return 0;
    const int w = dr.right - dr.left, h = dr.bottom - dr.top;
    MoveWindow(dialog, pr.left + (pr.right - pr.left - w) / 2, pr.top + (pr.bottom - pr.top - h) / 2, w, h, FALSE);
    return 0;
}

template <class T>
bool tryResize(std::vector<T>& v, int n)
{
    try {
        v.assign(size_t(std::max(n, 0)), T{});
        return true;
    } catch (const std::bad_alloc&) {
        std::vector<T>().swap(v);
        return false;
    }
}

}  // namespace

// ---- curves -----------------------------------------------------------------------------------

void MapClass::PrepareSlots()
{
    for (int s = 0; s < kMapSlots; ++s) {
        CURVE_SLOT& slot = Slots[s];
        if (slot.curve == nullptr) {
            std::vector<POINT>().swap(slot.points);
            std::vector<POINT>().swap(slot.poiPoints);
            slot.Drawn = 0;
            slot.POICount = 0;
            continue;
        }
        if (!slot.DrawNew)
            continue;
        std::vector<POINT>().swap(slot.points);
        std::vector<POINT>().swap(slot.poiPoints);
        slot.Drawn = 0;
        slot.POICount = 0;
        Curve* c = slot.curve;
        int n = c->GetNumPts();
        slot.Converted = 0;
        if (n > MaxPoints && ConvertType != 0 && (MapType == 100 || MapType == 300 || (MapType == 0 && s == 0))) {
            // A curve that can't be reduced (falling x) is drawn from its own points rather
            // than from an empty reduction.
            if (c->Convert(0.0f, 0.0f, MaxPoints, ConvertType) > 0) {
                slot.Converted = 1;
                n = MaxPoints;
            }
        }
        slot.NumPoints = n;
        if (!tryResize(slot.points, n))
            slot.NumPoints = 0;
        tryResize(slot.poiPoints, c->GetPOINumPts());
    }
}

void MapClass::DrawCurve(HDC hdc)
{
    PrepareSlots();
    if (MapType != 100 && MapType != 300)
        return;
    for (int s = 0; s < kMapSlots; ++s) {
        CURVE_SLOT& slot = Slots[s];
        if (slot.curve == nullptr || (MapType == 100 && slot.points.empty()))
            continue;
        HPEN pen = CreatePen(PS_SOLID, CurvePenWidth, slot.Color);
        HGDIOBJ oldPen = SelectObject(hdc, pen);
        const Curve* c = slot.curve;
        const std::vector<Curve::Point>& src = slot.Converted ? c->ConvertedData : c->CurveData;
        // Only what the source and the array both hold is mapped.
        const int n = std::min({slot.NumPoints, int(src.size()), int(slot.points.size())});
        slot.POICount = 0;
        slot.Drawn = 0;
        if (n >= 1) {
            int lo = 0, hi = 0;
            orlex::plot::VisibleRange(src.data(), n, XStart, XEnd, lo, hi);
            const orlex::plot::PixelMap map = orlex::plot::MakePixelMap(
                MapType, XStart, XEnd, YStart, YEnd, MapType == 100 && !slot.Converted, Bound);
            const bool falling = !(src[size_t(n - 1)].first > src[0].first);
            const int poiRoom = std::min(c->GetPOINumPts(), int(slot.poiPoints.size()));
            slot.POICount = orlex::plot::MapPoints(map, src.data(), lo, hi, c->YTranslation, slot.points.data(),
                                                   c->POIList.data(), poiRoom, falling, slot.poiPoints.data());
            slot.Drawn = hi - lo + 1;
            DrawCurvePoints(hdc, s, lo, hi);
        }
        SelectObject(hdc, oldPen);
        DeleteObject(pen);
        slot.DrawNew = 0;
    }
}

void MapClass::DrawCurvePoints(HDC hdc, int slot, int first, int last)
{
    if (slot < 0 || slot >= kMapSlots)
        return;
    CURVE_SLOT& cs = Slots[slot];
    const int count = std::min(last - first + 1, int(cs.points.size()));
    const POINT* p = cs.points.data();
    switch (cs.DrawStyle) {
    case 0:
        if (count >= 2)
            Polyline(hdc, p, count);
        break;
    case 1:
        for (int i = 0; i < count; ++i)
            stroke(hdc, p[i].x, Bound.bottom, p[i].x, p[i].y);
        break;
    case 2:
        for (int i = 0; i < count; ++i)
            SetPixel(hdc, p[i].x, p[i].y, cs.Color);
        break;
    case 3:
        for (int i = 0; i < count; ++i) {
            const int x = p[i].x, y = p[i].y;
            stroke(hdc, x - 1, y - 2, x + 2, y - 2);
            stroke(hdc, x + 2, y - 1, x + 2, y + 2);
            stroke(hdc, x + 1, y + 2, x - 2, y + 2);
            stroke(hdc, x - 2, y + 1, x - 2, y - 2);
        }
        break;
    case 4:
        for (int i = 0; i < count; ++i) {
            const int x = p[i].x, y = p[i].y;
            outline(hdc, {{x - 2, y - 2}, {x + 2, y - 2}, {x + 2, y + 2}, {x - 2, y + 2}});
        }
        break;
    case 5:
        for (int i = 0; i < count; ++i) {
            const int x = p[i].x, y = p[i].y;
            outline(hdc, {{x, y - 1}, {x + 2, y + 1}, {x - 2, y + 1}});
        }
        break;
    case 6:
        for (int i = 0; i < count; ++i)
            DrawDiamond(hdc, p[i]);
        break;
    case 7:
        for (int i = 0; i < count; ++i) {
            const int x = p[i].x, y = p[i].y;
            stroke(hdc, x - 2, y, x + 3, y);
            stroke(hdc, x, y - 2, x, y + 3);
        }
        break;
    default:
        break;
    }
    for (int k = 0; k < cs.POICount; ++k)
        DrawDiamond(hdc, cs.poiPoints[size_t(k)]);
}

void MapClass::DrawDiamond(HDC hdc, POINT pt)
{
    outline(hdc, {{pt.x, pt.y - 3}, {pt.x + 3, pt.y}, {pt.x, pt.y + 3}, {pt.x - 3, pt.y}});
}

// ---- colours ----------------------------------------------------------------------------------

int MapClass::SetColor(COLORREF& colour, CHOOSECOLORA& dialog)
{
    dialog.rgbResult = colour;
    const BOOL ok = ChooseColorA(&dialog);
    if (ok)
        colour = dialog.rgbResult;
    return ok;
}

void MapClass::SetColor(int code)
{
    HWND parent = m_hWnd != nullptr ? GetParent(m_hWnd) : nullptr;
    auto tell = [&](WPARAM wParam, COLORREF chosen) {
        if (parent == nullptr)
            return;
        COLOR_CHANGE change{GetCurrentColors(), chosen, m_hWnd};
        SendMessageA(parent, MESSAGE_COLOR_CHANGE, wParam, LPARAM(&change));
    };
    if (code == 900) {
        SetCurrentColors(DefColors);
        tell(900, 0);
        return;
    }
    COLORREF* target = nullptr;
    COLORREF colour = 0;
    const bool curve = code >= 700 && code < 750;
    const bool pair = code >= 753 && code <= 799;
    const int p = code - 753;
    if (code == 500)
        target = &GridColor;
    else if (code == 600)
        target = &TextColor;
    else if (curve)
        target = &Slots[code - 700].Color;
    else if (code == 751)
        target = &MarkerMan->ActiveColor;
    else if (code == 752)
        target = &MarkerMan->NormalColor;
    else if (code == 800)
        target = &MinorColor;
    else if (code == 850)
        target = &BkColor;
    else if (!pair)
        return; // not a colour of the plot
    // Only the first six pairs have marker colours; the others start from "no colour".
    colour = target != nullptr ? *target : (p < 6 ? MarkerMan->Vert[2 * p].Color : 0xFFFFFFFF);

    COLORREF custom[16];
    for (int i = 0; i < 16; ++i)
        custom[i] = COLORREF(0xFFFFFF - 0x101010 * i);
    CHOOSECOLORA dialog{};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = m_hWnd;
    dialog.lpCustColors = custom;
    dialog.Flags = CC_FULLOPEN | CC_RGBINIT | CC_ENABLEHOOK;
    dialog.lpfnHook = centreOnParent;
    if (!SetColor(colour, dialog))
        return;

    auto redrawMarkers = [&] {
        HDC dc = GetDC(m_hWnd);
        if (dc == nullptr)
            return;
        MarkerMan->UndrawAll(dc);
        MarkerMan->DrawAll(dc);
        ReleaseDC(m_hWnd, dc);
    };
    if (code == 751 || code == 752) {
        *target = colour;
        redrawMarkers();
        return;
    }
    if (pair) {
        if (p < 6)
            MarkerMan->Vert[2 * p].Color = MarkerMan->Vert[2 * p + 1].Color = colour;
        redrawMarkers();
    } else {
        *target = colour;
    }
    RepaintNow();
    tell(WPARAM(code), colour);
}

// ---- legend, marked point -------------------------------------------------------------------------

void MapClass::DrawLegendText(HDC hdc)
{
    if (MapType != 100)
        return;
    const int ts = TextScale;
    for (int s = 0; s < 2; ++s) {
        if (LegendText[s][0] == '\0')
            continue;
        TextFont font(hdc, 11 * ts, s == 0 ? 8 : 10, UseTextColorForLegend ? TextColor : Slots[s].Color);
        font.WriteText(hdc, s == 0 ? Bound.left : Bound.right, Bound.top - ts, LegendText[s]);
    }
}

void MapClass::MarkPoint(int i)
{
    HDC dc = m_hWnd != nullptr ? GetDC(m_hWnd) : nullptr;
    auto invert = [&](int index) {
        const CURVE_SLOT& s = Slots[0];
        // The array holds the pixels of the visible range of the last drawing only.
        if (dc == nullptr || index < 0 || index >= s.Drawn || size_t(index) >= s.points.size())
            return;
        DrawDiamond(dc, s.points[size_t(index)]);
    };
    const int oldRop = dc != nullptr ? SetROP2(dc, R2_NOT) : 0;
    if (i == -1) {
        if (Point >= 0)
            invert(Point);
        Point = -1;
    } else if (i != Point) {
        if (Point >= 0)
            invert(Point);
        Point = i;
        invert(i);
    } else {
        invert(i);
    }
    if (dc != nullptr) {
        SetROP2(dc, oldRop);
        ReleaseDC(m_hWnd, dc);
    }
}

// ---- text list ----------------------------------------------------------------------------------------

void MapClass::MapText(HDC hdc, unsigned int message, WPARAM wParam, LPARAM lParam)
{
    TEXTMAP& tm = TextMap;
    switch (message) {
    case 1: // WM_CREATE
        TextMetricsFromWindow();
        tm.ScrollMin = 0;
        tm.ScrollPos = 0;
        if (m_hWnd != nullptr)
            ShowScrollBar(m_hWnd, SB_VERT, FALSE);
        break;
    case 15: { // WM_PAINT
        const int lh = std::max(1, tm.LineHeight);
        SetViewportExtEx(hdc, 1, lh, nullptr);
        SetViewportOrgEx(hdc, tm.OriginX, 0, nullptr);
        SetWindowOrgEx(hdc, 0, tm.ScrollPos, nullptr);
        SetTextColor(hdc, TextColor);
        const CURVE_SLOT& slot = Slots[0];
        if (slot.curve == nullptr)
            break;
        const std::vector<Curve::Point>& src = slot.Converted ? slot.curve->ConvertedData : slot.curve->CurveData;
        const int n = std::min(slot.NumPoints, int(src.size()));
        const int end = int(std::min<long long>(n, (long long)tm.ScrollPos + 50));
        // The rows stand one logical unit apart; they are written at the window font's
        // own size, so the text goes out in device pixels at the places the mapping gives.
        POINT origin{0, 0};
        LPtoDP(hdc, &origin, 1);
        std::vector<POINT> at;
        for (int i = tm.ScrollPos; i < end; ++i) {
            POINT p{tm.TextLeft, i};
            LPtoDP(hdc, &p, 1);
            at.push_back(p);
        }
        const int saved = SaveDC(hdc);
        SetMapMode(hdc, MM_TEXT);
        SetViewportOrgEx(hdc, 0, 0, nullptr);
        SetWindowOrgEx(hdc, 0, 0, nullptr);
        const INT tabs[2] = {tm.Tab1, tm.Tab2};
        const float yShift = slot.curve->YTranslation;
        char row[128];
        for (int i = tm.ScrollPos; i < end; ++i) {
            const Curve::Point& pt = src[size_t(i)];
            std::snprintf(row, sizeof row, "%ld \t% 14.6f%s%c%s%s \t% 14.6f%s%c%s%s", long(i),
                          double(pt.first) * XFactor, XInverse, XPrefix, DomainUnit, XPower,
                          double(pt.second + yShift) * YFactor, YInverse, YPrefix, RangeUnit, YPower);
            const POINT& p = at[size_t(i - tm.ScrollPos)];
            TabbedTextOutA(hdc, p.x, p.y, row, int(std::strlen(row)), 2, tabs, origin.x);
        }
        RestoreDC(hdc, saved);
        break;
    }
    case 256: { // WM_KEYDOWN
        switch (wParam) {
        case 33:
            MapText(hdc, 277, 2, 0);
            break;
        case 34:
            MapText(hdc, 277, 3, 0);
            break;
        case 35:
            MapText(hdc, 277, 40000, LPARAM(tm.ScrollMax));
            break;
        case 36:
            MapText(hdc, 277, 5, LPARAM(tm.ScrollMin));
            break;
        case 38:
            MapText(hdc, 277, 0, 0);
            break;
        case 40:
            MapText(hdc, 277, 1, 0);
            break;
        default:
            break;
        }
        break;
    }
    case 277: { // WM_VSCROLL
        const long long old = tm.ScrollPos;
        long long pos = old;
        switch (wParam) {
        case 0:
            pos = old - 1;
            break;
        case 1:
            pos = old + 1;
            break;
        case 2:
            pos = old - 20;
            break;
        case 3:
            pos = old + 20;
            break;
        case 5:
            pos = lParam & 0xFFFF;
            break;
        case 40000:
            pos = (long long)lParam;
            break;
        default:
            break;
        }
        pos = std::clamp<long long>(pos, 0, tm.ScrollMax);
        if (pos == old)
            break;
        const long long dy = (old - pos) * std::max(1, tm.LineHeight);
        if (m_hWnd != nullptr)
            ScrollWindow(m_hWnd, 0, int(std::clamp<long long>(dy, INT_MIN, INT_MAX)), nullptr, nullptr);
        tm.ScrollPos = int(pos);
        if (m_hWnd != nullptr)
            SetScrollPos(m_hWnd, SB_VERT, tm.ScrollPos, TRUE);
        break;
    }
    default:
        break;
    }
}
