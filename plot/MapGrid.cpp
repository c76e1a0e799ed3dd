// MapClass: the grid in its four forms (rectangular, semi-logarithmic, polar, half polar)
// and the numbers and titles along the axes.
#include <cmath>
#include <cstdio>
#include <cstring>

#include "foundation/platform/afxgdi.h"
#include "plot/MapClass.h"
#include "plot/PlotGeometry.h"
#include "plot/TextFont.h"

using orlex::plot::GuardZero;
using orlex::plot::MinorFactor;
using orlex::plot::MinorSubdivisions;
using orlex::plot::PixelCast;

namespace {

constexpr double kPi = 3.14159265358979323846;

// A vertical line from bottom up to (not including) top, and a horizontal one from left
// to (not including) right: so the top-right pixel of the plot stays open.
void vline(HDC hdc, int x, int bottom, int top)
{
    MoveToEx(hdc, x, bottom, nullptr);
    LineTo(hdc, x, top);
}

void hline(HDC hdc, int y, int left, int right)
{
    MoveToEx(hdc, left, y, nullptr);
    LineTo(hdc, right, y);
}

// A pen of width 1 selected for the life of the object; the one it replaced comes back.
class ScopedPen {
public:
    ScopedPen(HDC hdc, int style, int width, COLORREF colour)
        : hdc_(hdc), pen_(CreatePen(style, width, colour)), old_(SelectObject(hdc, pen_))
    {
    }
    ~ScopedPen()
    {
        SelectObject(hdc_, old_);
        DeleteObject(pen_);
    }
    ScopedPen(const ScopedPen&) = delete;
    ScopedPen& operator=(const ScopedPen&) = delete;

private:
    HDC hdc_;
    HPEN pen_;
    HGDIOBJ old_;
};

// A tick for each degree from 1 to `last`, from radius r1 in to r2 around (cx, cy).
void degreeTicks(HDC hdc, int cx, int cy, int r1, int r2, int last)
{
    for (int deg = 1; deg <= last; ++deg) {
        const double a = deg * kPi / 180.0;
        MoveToEx(hdc, cx + PixelCast(r1 * std::cos(a) + 0.5), cy - PixelCast(r1 * std::sin(a) + 0.5), nullptr);
        LineTo(hdc, cx + PixelCast(r2 * std::cos(a) + 0.5), cy - PixelCast(r2 * std::sin(a) + 0.5));
    }
}

// "%s (%s%c%s%s)" of a title and its unit fields, or the bare title for a unit of one
// blank; "%s%c%s%s" of the unit fields alone when the title is empty. A prefix byte of 0
// ends the text where it stands.
void titleText(char* out, size_t size, const char* label, const char* inverse, char prefix, const char* unit,
               const char* power)
{
    if (label[0] != '\0') {
        if (std::strcmp(unit, " ") == 0)
            std::snprintf(out, size, "%s", label);
        else
            std::snprintf(out, size, "%s (%s%c%s%s)", label, inverse, prefix, unit, power);
    } else {
        std::snprintf(out, size, "%s%c%s%s", inverse, prefix, unit, power);
    }
}

}  // namespace

// ---- grids ----------------------------------------------------------------------------------

void MapClass::RectangularGrid(HDC hdc)
{
    if (AutoScale.OneToOne)
        OneToOneScale(hdc);
    const RECT b = Bound;
    XMajorPixels = double(b.right - b.left) / NumMajorX;
    YMajorPixels = double(b.bottom - b.top) / NumMajorY;
    {
        ScopedPen minor(hdc, PS_SOLID, 1, MinorColor);
        if (MinorLines) {
            if (const int k = MinorSubdivisions(XMajorPixels)) {
                const double f = MinorFactor(k);
                for (int i = 0; i <= NumMajorX * k; ++i)
                    if (i % k != 0)
                        vline(hdc, b.left + PixelCast(i * XMajorPixels * f + 0.5), b.bottom, b.top);
            }
            if (const int k = MinorSubdivisions(YMajorPixels)) {
                const double f = MinorFactor(k);
                for (int i = 0; i <= NumMajorY * k; ++i)
                    if (i % k != 0)
                        hline(hdc, b.top + PixelCast(i * YMajorPixels * f + 0.5), b.left, b.right);
            }
        }
    }
    for (int i = 0; i <= NumMajorX; ++i)
        vline(hdc, b.left + PixelCast(i * XMajorPixels + 0.5), b.bottom, b.top);
    for (int i = 0; i <= NumMajorY; ++i)
        hline(hdc, b.top + PixelCast(i * YMajorPixels + 0.5), b.left, b.right);
}

void MapClass::SemiLogGrid(HDC hdc)
{
    const RECT b = Bound;
    const double decades = std::log10(XEnd) - std::log10(XStart);
    XMajorPixels = decades != 0.0 ? double(b.right - b.left) / decades : 0.0;
    YMajorPixels = double(b.bottom - b.top) / NumMajorY;
    const double logStart = std::log10(XStart);
    {
        ScopedPen minor(hdc, PS_SOLID, 1, MinorColor);
        if (MinorLines) {
            if (const int k = MinorSubdivisions(YMajorPixels)) {
                const double f = MinorFactor(k);
                for (int i = 0; i <= NumMajorY * k; ++i)
                    hline(hdc, b.top + PixelCast(i * YMajorPixels * f + 0.5), b.left, b.right);
            }
            orlex::plot::WalkLogAxis(XStart, XEnd, 1e-9, [&](double x, double s) {
                DrawMinorLines(hdc, x, (std::log10(x + s) - std::log10(x)) * XMajorPixels, s);
            });
        }
    }
    orlex::plot::WalkLogAxis(XStart, XEnd, 0.0, [&](double x, double) {
        vline(hdc, b.left + PixelCast((std::log10(x) - logStart) * XMajorPixels + 0.5), b.bottom, b.top);
    });
    vline(hdc, b.right, b.bottom, b.top);
    for (int i = 0; i <= NumMajorY; ++i)
        hline(hdc, b.top + PixelCast(i * YMajorPixels + 0.5), b.left, b.right);
}

void MapClass::DrawMinorLines(HDC hdc, double x, double pixels, double step)
{
    const int k = MinorSubdivisions(pixels, DotScale);
    if (k == 0)
        return;
    const double d = step * 0.1;
    const double logStart = std::log10(XStart);
    for (int i = 1; i <= 9; ++i) {
        if (i % (10 / k) != 0)
            continue;
        const double v = x + i * d;
        vline(hdc, Bound.left + PixelCast((std::log10(v) - logStart) * XMajorPixels + 0.5), Bound.bottom,
              Bound.top);
    }
}

void MapClass::PolarGrid(HDC hdc)
{
    const RECT b = Bound;
    const int D = b.right - b.left;
    const int rings = PolarRings < 1 ? 1 : PolarRings;
    const int g = D / (2 * rings);
    const int cx = b.left + D / 2, cy = b.top + D / 2;
    HGDIOBJ oldBrush = SelectObject(hdc, GetStockObject(HOLLOW_BRUSH));
    Ellipse(hdc, b.left, b.top, b.left + D, b.top + D);
    {
        ScopedPen inner(hdc, Printing ? PS_SOLID : PS_DOT, Printing ? GridPenWidth : 1, GridColor);
        const int inset = int(g * 0.3), size = int(D - g * 0.6);
        Ellipse(hdc, b.left + inset, b.top + inset, b.left + inset + size, b.top + inset + size);
        if (Printing)
            degreeTicks(hdc, cx, cy, D / 2, D / 2 - g, 359);
    }
    for (int i = 1; i <= rings - 2; ++i)
        Ellipse(hdc, b.left + i * g, b.top + i * g, b.left + i * g + (D - 2 * i * g), b.top + i * g + (D - 2 * i * g));
    for (int i = 0; i < 36; ++i) {
        const double a = i * kPi / 18.0;
        // x truncates, y rounds, as the spoke ends have always been placed.
        SpokeEnds[i] = POINT{cx - PixelCast(std::cos(a) * (D * -0.5)), cy - PixelCast(std::sin(a) * D / 2 + 0.5)};
        MoveToEx(hdc, cx, cy, nullptr);
        LineTo(hdc, SpokeEnds[i].x, SpokeEnds[i].y);
    }
    const int inset = rings < 2 ? g / 2 : (rings - 1) * g;
    const int size = rings < 2 ? D - g : D - 2 * inset;
    {
        HBRUSH bk = CreateSolidBrush(BkColor);
        SelectObject(hdc, bk);
        Ellipse(hdc, b.left + inset, b.top + inset, b.left + inset + size, b.top + inset + size);
        SelectObject(hdc, oldBrush);
        DeleteObject(bk);
    }
    ScopedPen cross(hdc, PS_SOLID, 1, GridColor);
    const int r = size / 2;
    hline(hdc, cy, cx - r, cx + r);
    vline(hdc, cx, cy + r, cy - r);
}

void MapClass::HalfPolarGrid(HDC hdc)
{
    const RECT b = Bound;
    const int D = b.right - b.left;
    const int rings = PolarRings < 1 ? 1 : PolarRings;
    const int g = D / (2 * rings);
    const int cx = b.left + D / 2, cy = b.bottom;
    // Arcs run counter-clockwise from the right end of the base line to its left end:
    // the upper half of each circle.
    auto arc = [&](int inset, bool chord) {
        const int x0 = b.left + inset, y0 = cy - D / 2 + inset, x1 = b.left + D - inset, y1 = cy + D / 2 - inset;
        if (chord)
            Chord(hdc, x0, y0, x1, y1, b.right, cy, b.left, cy);
        else
            Arc(hdc, x0, y0, x1, y1, b.right, cy, b.left, cy);
    };
    HGDIOBJ oldBrush = SelectObject(hdc, GetStockObject(HOLLOW_BRUSH));
    arc(0, true);
    {
        ScopedPen inner(hdc, Printing ? PS_SOLID : PS_DOT, Printing ? GridPenWidth : 1, GridColor);
        arc(int(g * 0.3), false);
        if (Printing)
            degreeTicks(hdc, cx, cy, D / 2, D / 2 - g, 179);
    }
    for (int i = 1; i <= rings - 2; ++i)
        arc(i * g, false);
    for (int i = 1; i <= 17; ++i) {
        const double a = i * kPi / 18.0;
        SpokeEnds[i] = POINT{cx - PixelCast(std::cos(a) * (D * -0.5)), cy - PixelCast(std::sin(a) * D / 2 + 0.5)};
        MoveToEx(hdc, cx, cy, nullptr);
        LineTo(hdc, SpokeEnds[i].x, SpokeEnds[i].y);
    }
    {
        HBRUSH bk = CreateSolidBrush(BkColor);
        SelectObject(hdc, bk);
        arc(rings < 2 ? g / 2 : (rings - 1) * g, true);
        SelectObject(hdc, oldBrush);
        DeleteObject(bk);
    }
    vline(hdc, cx, cy, cy - (rings < 2 ? int(g * 0.6) : g));
}

// ---- labels ---------------------------------------------------------------------------------

void MapClass::LabelAxis(HDC hdc)
{
    if (PlotOnly)
        return;
    const int oldMode = SetBkMode(hdc, TRANSPARENT);
    switch (MapType) {
    case 100:
        LabelRectangular(hdc);
        break;
    case 200:
        LabelHalfPolar(hdc);
        break;
    case 300:
        LabelSemiLog(hdc);
        break;
    case 400:
        LabelPolar(hdc);
        break;
    default:
        break;
    }
    SetBkMode(hdc, oldMode);
}

void MapClass::LabelRectangular(HDC hdc)
{
    const int ts = TextScale;
    const RECT b = Bound;
    char text[256];
    TextFont font(hdc, 11 * ts, 6, TextColor);
    for (int i = 1; i <= NumMajorX - 1; ++i) {
        const double v = GuardZero(i * XStep + XStart, XStep);
        std::snprintf(text, sizeof text, "%.7g", v * XFactor);
        font.WriteText(hdc, b.left + PixelCast(i * XMajorPixels), b.bottom + ts, text);
    }
    TEXTMETRIC tm{};
    GetTextMetrics(hdc, &tm);
    const int ascent = tm.tmAscent, height = tm.tmHeight;
    font.SetFont(hdc, 11 * ts, 0, 0);
    for (int i = 1; i <= NumMajorY; ++i) {
        const double v = GuardZero(i * YStep + YStart, YStep);
        std::snprintf(text, sizeof text, "%.7g", v * YFactor);
        RECT measure{0, 0, 0, 0};
        DrawTextA(hdc, text, -1, &measure, DT_CALCRECT | DT_NOCLIP | DT_SINGLELINE);
        const int width = measure.right - measure.left;
        RECT r;
        r.left = 0;
        r.right = b.left;
        r.bottom = b.bottom + ts + ascent / 2 - PixelCast(i * YMajorPixels);
        r.top = r.bottom - height;
        // A number wider than the margin starts at the window's edge, so its beginning shows.
        DrawTextA(hdc, text, -1, &r, DT_SINGLELINE | (width <= b.left ? DT_RIGHT : DT_LEFT));
    }
    if (XLabel[0] != '\0') {
        font.SetFont(hdc, 13 * ts, 14, 0);
        titleText(text, sizeof text, XLabel, XInverse, XPrefix, DomainUnit, XPower);
        font.WriteText(hdc, (b.right + b.left) / 2, b.bottom + BorderWidths.bottom, text);
    } else {
        font.SetFont(hdc, 13 * ts, 6, 0);
        if (ScaleUnits)
            titleText(text, sizeof text, "", XInverse, XPrefix, DomainUnit, XPower);
        else
            std::snprintf(text, sizeof text, "%s", DomainUnit);
        font.WriteText(hdc, b.right - 5, b.bottom + ts, text);
    }
    if (YLabel[0] != '\0') {
        font.SetFont(hdc, 13 * ts, 6, 900);
        titleText(text, sizeof text, YLabel, YInverse, YPrefix, RangeUnit, YPower);
        font.WriteText(hdc, 0, (b.top + b.bottom) / 2, text);
    } else {
        font.SetFont(hdc, 13 * ts, 2, 0);
        titleText(text, sizeof text, "", YInverse, YPrefix, RangeUnit, YPower);
        font.WriteText(hdc, b.left - PixelCast(DotScale * 5.0), b.bottom - ascent / 2 - ts, text);
    }
}

void MapClass::LabelSemiLog(HDC hdc)
{
    const int ts = TextScale;
    const double ds = DotScale;
    const RECT b = Bound;
    char text[256];
    const double decades = std::log10(XEnd) - std::log10(XStart);
    const double perDecade = decades != 0.0 ? double(b.right - b.left) / decades : 0.0;
    const double logStart = std::log10(XStart);
    TextFont font(hdc, 11 * ts, 6, TextColor);
    orlex::plot::WalkLogAxis(XStart, XEnd, 1e-9, [&](double x, double s) {
        const int digit = PixelCast(std::floor(x / s + 1e-9));
        if (!orlex::plot::SemiLogLabelled(digit, perDecade, ds))
            return;
        std::snprintf(text, sizeof text, "%g", x * XFactor);
        font.WriteText(hdc, b.left + PixelCast((std::log10(x) - logStart) * XMajorPixels + 0.5), b.bottom + ts, text);
    });
    font.SetFont(hdc, 11 * ts, 0, 0);
    for (int i = 1; i <= NumMajorY; ++i) {
        const double v = GuardZero(i * YStep + YStart, YStep);
        std::snprintf(text, sizeof text, "%.7g", v * YFactor);
        font.WriteText(hdc, b.left + PixelCast(ds * 5), b.bottom + ts - PixelCast(i * YMajorPixels), text);
    }
    font.SetFont(hdc, 13 * ts, 0, 0);
    titleText(text, sizeof text, "", YInverse, YPrefix, RangeUnit, YPower);
    font.WriteText(hdc, b.left + PixelCast(ds * 5), b.top + ts + PixelCast(YMajorPixels * 0.5), text);
    font.SetFont(hdc, 13 * ts, 6, 0);
    titleText(text, sizeof text, "", XInverse, XPrefix, DomainUnit, XPower);
    font.WriteText(hdc, b.right, b.bottom + ts, text);
}

void MapClass::LabelHalfPolar(HDC hdc)
{
    const int ts = TextScale;
    const RECT b = Bound;
    const int rings = PolarRings < 1 ? 1 : PolarRings;
    const int g = (b.right - b.left) / (2 * rings);
    char text[64];
    TextFont font(hdc, 10 * ts, 6, TextColor);
    if (rings < 2) {
        font.WriteText(hdc, b.right, b.bottom + ts, "0");
    } else {
        for (int i = 0; i <= rings - 2; ++i) {
            std::snprintf(text, sizeof text, "%d", -10 * i);
            font.WriteText(hdc, b.right - i * g, b.bottom + ts, text);
        }
    }
    font.SetFont(hdc, 10 * ts, 30, 0);
    static const struct {
        int spoke;
        const char* text;
        int dx, dy;
    } kAngles[] = {{3, "60\xB0", 10, -2},   {5, "40\xB0", 7, -4},   {7, "20\xB0", 4, -5},
                   {11, "-20\xB0", -4, -5}, {13, "-40\xB0", -7, -4}, {15, "-60\xB0", -10, -2}};
    for (const auto& a : kAngles)
        font.WriteText(hdc, SpokeEnds[a.spoke].x + a.dx * ts, SpokeEnds[a.spoke].y + a.dy * ts, a.text);
    font.SetFont(hdc, 10 * ts, 6, 0);
    if (rings < 2) {
        font.WriteText(hdc, b.right - int(g * 0.5), b.bottom + ts, "-5 dB");
    } else {
        std::snprintf(text, sizeof text, "%d dB", 10 - rings * 10);
        font.WriteText(hdc, b.right - (rings - 1) * g, b.bottom + ts, text);
    }
}

void MapClass::LabelPolar(HDC hdc)
{
    const int ts = TextScale;
    const RECT b = Bound;
    const int rings = PolarRings < 1 ? 1 : PolarRings;
    static const char* const kText[12] = {"90", "60", "30", "0", "330", "300", "270", "240", "210", "180", "150", "120"};
    static const int kDx[12] = {12, 12, 6, 2, -8, -12, -13, -14, -10, 0, 9, 13};
    static const int kDy[12] = {4, 1, -3, -2, -3, 1, 4, 8, 12, 10, 12, 8};
    char text[16];
    TextFont font(hdc, 10 * ts, 30, TextColor);
    for (int i = 0; i < 12; ++i) {
        std::snprintf(text, sizeof text, "%s\xB0", kText[i]);
        font.WriteText(hdc, SpokeEnds[3 * i].x + kDx[i] * ts, SpokeEnds[3 * i].y + kDy[i] * ts, text);
    }
    const int g = (b.right - b.left) / (2 * rings);
    if (rings < 2)
        font.WriteText(hdc, (b.right + b.left) / 2 + ts * 2, b.bottom - ts * 3 - g / 2, "-5 dB");
    else
        font.WriteText(hdc, (b.right + b.left) / 2 - ts, b.bottom - ts * 3 - g, "-10 dB");
}
