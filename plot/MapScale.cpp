// MapClass: the repaint sequence, the layout of the plot rectangle and the choice of the
// axes (linear, logarithmic, polar, one to one).
#include <algorithm>
#include <cmath>
#include <cstring>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/modal.h"
#include "plot/MapClass.h"
#include "plot/MarkerMan.h"
#include "plot/PlotGeometry.h"

using orlex::plot::kAxisX;
using orlex::plot::kAxisY;

// ---- repaint ------------------------------------------------------------------------------

void MapClass::DoMap(HDC hdc)
{
    HPEN pen = CreatePen(PS_SOLID, GridPenWidth, GridColor);
    HGDIOBJ oldPen = SelectObject(hdc, pen);
    if (BoundDirty)
        SetBound();
    const int oldBkMode = SetBkMode(hdc, TRANSPARENT);

    auto rectangular = [&] {
        SetMapMode(hdc, MM_TEXT);
        if (ScaleAxis(kAxisX) && ScaleAxis(kAxisY)) {
            SetBound();
            RectangularGrid(hdc);
            ClipToBound(hdc);
            DrawCurve(hdc);
            DrawMarkers(hdc);
            SelectClipRgn(hdc, nullptr);
            LabelAxis(hdc);
            DrawLegendText(hdc);
        }
    };
    switch (MapType) {
    case 100:
        rectangular();
        break;
    case 200:
    case 400:
        SetMapMode(hdc, MM_TEXT);
        if (ScalePolarAxis(kAxisY)) {
            if (MapType == 200)
                HalfPolarGrid(hdc);
            else
                PolarGrid(hdc);
            RECT b = Bound;
            HRGN clip = CreateRectRgn(b.left, b.top, b.right, b.bottom);
            SelectClipRgn(hdc, clip);
            DeleteObject(clip);
            DrawCurve(hdc);
            SelectClipRgn(hdc, nullptr);
            LabelAxis(hdc);
        } else {
            MapType = 100;
            rectangular();
        }
        break;
    case 300:
        SetMapMode(hdc, MM_TEXT);
        if (ScaleLogAxis(kAxisX) && ScaleAxis(kAxisY)) {
            SemiLogGrid(hdc);
            ClipToBound(hdc);
            DrawCurve(hdc);
            DrawMarkers(hdc);
            SelectClipRgn(hdc, nullptr);
            LabelAxis(hdc);
        } else {
            MapType = 100;
            rectangular();
        }
        break;
    case 0: {
        // The text list maps one logical unit to a line; the device goes back to pixels
        // afterwards, since a repaint's memory bitmap is copied out through it.
        const int saved = SaveDC(hdc);
        SetMapMode(hdc, MM_ANISOTROPIC);
        if (ScaleAxis(kAxisX) && ScaleAxis(kAxisY)) {
            DrawCurve(hdc);
            MapText(hdc, 15, 0, 0);
            SetBound();
        }
        RestoreDC(hdc, saved);
        break;
    }
    default:
        break;
    }
    BoundDirty = 0;
    SetBkMode(hdc, oldBkMode);
    SelectObject(hdc, oldPen);
    DeleteObject(pen);
}

void MapClass::DrawMap(HDC hdc, Curve* curves[kMapSlots], RECT rect)
{
    if (curves == nullptr)
        return;
    bool any = false;
    for (int i = 0; i < kMapSlots; ++i) {
        Slots[i].curve = curves[i];
        any = any || curves[i] != nullptr;
    }
    if (!any)
        return;
    MapWidth = rect.right - rect.left;
    MapHeight = rect.bottom - rect.top;
    DoMap(hdc);
}

void MapClass::DrawMap(HDC hdc, Curve* first, RECT rect, Curve* second)
{
    Slots[0].curve = first;
    Slots[1].curve = second;
    if (first == nullptr || first->GetNumPts() < 1)
        return;
    MapWidth = rect.right - rect.left;
    MapHeight = rect.bottom - rect.top;
    DoMap(hdc);
}

void MapClass::ClipToBound(HDC hdc) const
{
    HRGN clip = CreateRectRgn(Bound.left, Bound.top, Bound.right + 1, Bound.bottom + 1);
    SelectClipRgn(hdc, clip);
    DeleteObject(clip);
}

// ---- layout -------------------------------------------------------------------------------

void MapClass::SetBound()
{
    const int W = MapWidth, H = MapHeight;
    RECT& bw = BorderWidths;
    switch (MapType) {
    case 100:
    case 300:
        if (!PlotOnly)
            bw.left = bw.right * 4;
        bw.bottom = int(bw.top * (XLabel[0] != '\0' ? 2.4 : 1.4));
        Bound = RECT{bw.left, bw.top, W - bw.right, H - bw.bottom};
        break;
    case 200: {
        const int AH = H - bw.bottom - bw.top;
        const int AW = (W - bw.left - bw.right) / 2;
        if (AH > AW) {
            const int o = (AH - AW) / 2;
            Bound = RECT{bw.left, bw.top + o, bw.left + 2 * AW, bw.top + o + AW};
            OuterRect = RECT{0, o, W, Bound.bottom + bw.bottom};
        } else {
            Bound.top = bw.top;
            Bound.bottom = H - bw.bottom;
            Bound.left = bw.left - AH + AW;
            Bound.right = Bound.left + 2 * AH;
            OuterRect = RECT{Bound.left - bw.left, 0, Bound.right + bw.right, H};
        }
        break;
    }
    case 400: {
        const int AH = H - bw.bottom - bw.top;
        const int AW = W - bw.left - bw.right;
        if (AH > AW) {
            const int o = (AH - AW) / 2;
            Bound = RECT{bw.left, bw.top + o, W - bw.right, bw.top + o + AW};
            OuterRect = RECT{0, o, W, Bound.bottom + bw.bottom};
        } else {
            const int o = (AW - AH) / 2;
            Bound = RECT{bw.left + o, bw.top, bw.left + o + AH, H - bw.bottom};
            OuterRect = RECT{o, 0, Bound.right + bw.right, H};
        }
        break;
    }
    case 0: {
        const int lh = std::max(1, TextMap.LineHeight);
        const int n = Slots[0].curve != nullptr ? Slots[0].NumPoints : 0;
        TextMap.ScrollMax = std::max(0, n - H / lh);
        if (TextMap.ScrollPos > TextMap.ScrollMax)
            TextMap.ScrollPos = TextMap.ScrollMax;
        if (m_hWnd != nullptr) {
            SCROLLINFO si{};
            si.cbSize = sizeof si;
            si.fMask = SIF_RANGE | SIF_POS;
            si.nMin = TextMap.ScrollMin;
            si.nMax = TextMap.ScrollMax;
            si.nPos = TextMap.ScrollPos;
            SetScrollInfo(m_hWnd, SB_VERT, &si, TRUE);
        }
        break;
    }
    default:
        break;
    }
}

// ---- axes -----------------------------------------------------------------------------------

int MapClass::GetDivisions(int axis, double lo, double hi, double& start, double& end, double& step,
                           int& divisions)
{
    ScaleNum(std::fabs(lo) > std::fabs(hi) ? lo : hi, axis);
    const orlex::plot::Divisions d = orlex::plot::ChooseDivisions(axis, lo, hi);
    if (!d.ok) {
        // No axis: a zoom window that led here is dropped, and the plot drawn whole.
        if (ZoomState) {
            ZoomState = 0;
            ZoomArmed = 1;
            NotifyZoomEvent();
            BoundDirty = 1;
            RepaintNow();
        }
        if (SavedCursor != nullptr) {
            SetCursor(SavedCursor);
            SavedCursor = nullptr;
        }
        return 0;
    }
    start = d.start;
    end = d.end;
    step = d.step;
    divisions = d.count;
    return 1;
}

namespace {

// The limits of the curves in the slots: domain (X) or range (Y). False without a curve.
bool curveLimits(const CURVE_SLOT* slots, bool x, double& lo, double& hi)
{
    bool any = false;
    for (int i = 0; i < kMapSlots; ++i) {
        const Curve* c = slots[i].curve;
        if (c == nullptr)
            continue;
        const double a = x ? c->GetMinDomain() : c->GetMinRange();
        const double b = x ? c->GetMaxDomain() : c->GetMaxRange();
        if (!any) {
            lo = a;
            hi = b;
            any = true;
        } else {
            lo = std::min(lo, a);
            hi = std::max(hi, b);
        }
    }
    return any;
}

}  // namespace

int MapClass::ScaleAxis(int axis)
{
    double lo = 0.0, hi = 0.0;
    if (axis == kAxisY) {
        if (ZoomState) {
            lo = ZoomYMin;
            hi = ZoomYMax;
        } else if (AutoScale.AutoScale) {
            if (!curveLimits(Slots, false, lo, hi))
                return 0;
            if (UseMarkerVals && MarkerMan) {
                for (int i = 0; i < 3; ++i) {
                    if (!(MarkerMan->HzState & (1u << i)))
                        continue;
                    lo = std::min(lo, MarkerMan->Horz[i].Value);
                    hi = std::max(hi, MarkerMan->Horz[i].Value);
                }
            }
            if (hi == lo) {
                hi = lo + Tolerance * 0.5;
                lo = lo - Tolerance * 0.5;
            } else if (MinDeltaScale > std::fabs(hi - lo)) {
                const double m = (lo + hi) * 0.5;
                hi = m + MinDeltaScale * 0.5;
                lo = m - MinDeltaScale * 0.5;
            }
        } else {
            lo = AutoScale.MinY;
            hi = AutoScale.MaxY;
        }
        return GetDivisions(kAxisY, lo, hi, YStart, YEnd, YStep, NumMajorY);
    }
    if (axis == kAxisX) {
        if (ZoomState) {
            lo = ZoomXMin;
            hi = ZoomXMax;
        } else if (!curveLimits(Slots, true, lo, hi)) {
            return 0;
        }
        return GetDivisions(kAxisX, lo, hi, XStart, XEnd, XStep, NumMajorX);
    }
    return 0;
}

int MapClass::ScaleLogAxis(int axis)
{
    if (axis != kAxisX && axis != kAxisY)
        return 0;
    const bool x = axis == kAxisX;
    double lo = 0.0, hi = 0.0;
    if (ZoomState) {
        lo = x ? ZoomXMin : ZoomYMin;
        hi = x ? ZoomXMax : ZoomYMax;
    } else if (!curveLimits(Slots, x, lo, hi)) {
        return 0;
    }
    const orlex::plot::LogLimits l = orlex::plot::ChooseLogLimits(lo, hi);
    if (!l.ok)
        return 0;
    ScaleNum(std::pow(10.0, (std::log10(lo) + std::log10(hi)) * 0.5), axis);
    (x ? XStart : YStart) = l.start;
    (x ? XEnd : YEnd) = l.end;
    return 1;
}

int MapClass::ScalePolarAxis(int axis)
{
    if (axis != kAxisX && axis != kAxisY)
        return 1;
    const Curve* c = Slots[0].curve;
    if (c == nullptr)
        return 0;
    if (axis == kAxisY) {
        if (AutoScale.AutoScale) {
            PolarRings = orlex::plot::PolarRingCount(double(c->GetMaxRange() - c->GetMinRange()));
        } else {
            if (c->GetMaxRange() - 1e-9 > AutoScale.MaxY) {
                MessageBoxA(m_hWnd, "Curve range data exceeds scaling maximum.", "Invalid Scaling Parameter",
                            MB_OK | MB_ICONSTOP);
                return 0;
            }
            PolarRings = orlex::plot::PolarRingCount(AutoScale.MaxY - AutoScale.MinY);
        }
    } else {
        if (c->GetMaxDomain() > 1e-9) {
            MessageBoxA(m_hWnd, "Curve domain data contains positive numbers.", "Invalid Data Warning",
                        MB_OK | MB_ICONWARNING);
            return 0;
        }
        PolarRings = orlex::plot::PolarRingCount(std::fabs(double(c->GetMinDomain())));
    }
    if (PolarRings > 10) {
        MessageBeep(UINT(-1));
        MessageBoxA(m_hWnd, "Data exceeds -100dB.", "Data Range Warning", MB_OK | MB_ICONWARNING);
        return 0;
    }
    NumMajorX = axis == kAxisY ? 0 : 1;
    NumMajorY = axis == kAxisY ? 1 : 0;
    return 1;
}

void MapClass::OneToOneScale(HDC)
{
    if (!AutoScale.OneToOne || std::strcmp(DomainUnit, RangeUnit) != 0)
        return;
    const double ph = Bound.bottom - Bound.top;
    const double pw = Bound.right - Bound.left;
    const double dy = YEnd - YStart;
    const double dx = XEnd - XStart;
    if (!(ph > 0.0 && pw > 0.0 && dy > 0.0 && dx > 0.0))
        return;
    const bool yDecides = !(ph / pw > dy / dx);
    // The axis that is too long for its pixels shrinks around its middle, by 1 % a round,
    // until its whole steps fit the plot; the plot then takes their exact size.
    const double s = yDecides ? dy / ph : dx / pw;
    double span = (yDecides ? pw : ph) * s;
    const int axis = yDecides ? kAxisX : kAxisY;
    double& a0 = yDecides ? XStart : YStart;
    double& a1 = yDecides ? XEnd : YEnd;
    const double m = (a0 + a1) * 0.5;
    const int lo = yDecides ? Bound.left : Bound.top;
    const int hi = yDecides ? Bound.right : Bound.bottom;
    const int c = (lo + hi) / 2;
    int g = 0;
    for (int round = 0; round < 4000; ++round) {
        const int ok = yDecides ? GetDivisions(axis, m - span / 2, m + span / 2, XStart, XEnd, XStep, NumMajorX)
                                : GetDivisions(axis, m - span / 2, m + span / 2, YStart, YEnd, YStep, NumMajorY);
        if (!ok)
            return;
        span = span * 0.99;
        const double p = (a1 - a0) / s;
        g = orlex::plot::PixelCast(p * 0.5 + 0.5);
        if (!(c + g > hi || c - g < lo))
            break;
    }
    if (yDecides) {
        Bound.left = c - g;
        Bound.right = c + g;
    } else {
        Bound.top = c - g;
        Bound.bottom = c + g;
    }
}
