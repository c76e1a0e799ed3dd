// MapClass: construction, the setters of the plot's look and data, the engineering scale
// of the axes and the engine's number conversions.
#include "plot/MapClass.h"

#include <algorithm>
#include <cassert>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstdarg>
#include <cstring>
#include <string>

#include "foundation/Convert2Eng.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/codepage.h"
#include "foundation/platform/process.h"
#include "plot/MarkerMan.h"
#include "plot/PlotGeometry.h"

namespace {

using orlex::plot::kAxisX;
using orlex::plot::kAxisY;
constexpr int kMapTextMax = 128;

// Copies at most size - 1 bytes and terminates.
void copyCut(char* dest, std::size_t size, const char* src)
{
    std::size_t n = std::strlen(src);
    if (n >= size)
        n = size - 1;
    std::memcpy(dest, src, n);
    dest[n] = '\0';
}

int significantBits(unsigned long long v)
{
    int n = 0;
    while (v != 0) {
        ++n;
        v >>= 1;
    }
    return n;
}

bool validSlot(int slot)
{
    return slot >= 0 && slot < kMapSlots;
}

// One of a face colour's bytes raised by `by`, capped at 255.
COLORREF raised(COLORREF c, int by)
{
    auto up = [by](int v) { return BYTE(std::min(255, v + by)); };
    return RGB(up(GetRValue(c)), up(GetGValue(c)), up(GetBValue(c)));
}

} // namespace

DEFCOLOR DefaultPlotColors()
{
    DEFCOLOR d;
    static const COLORREF kCurves[6] = {0xFF0000, 0x0000FF, 0x008000, 0xFF00FF, 0xFFFF00, 0x0096FF};
    for (int i = 0; i < kMapSlots; ++i)
        d.Curve[i] = i < 6 ? kCurves[i] : 0xFFFF00;
    const COLORREF face = GetSysColor(COLOR_3DFACE) & 0xFFFFFF;
    d.Grid = face;
    d.Text = 0x000000;
    d.Minor = raised(face, 16);
    d.Background = raised(face, 24);
    d.MarkerActive = 0x0000FF;
    d.MarkerNormal = 0x000000;
    for (int p = 0; p < 6; ++p)
        d.Marker[2 * p] = d.Marker[2 * p + 1] = kCurves[p];
    return d;
}

CURVE_SLOT& CURVE_SLOT::operator=(const CURVE_SLOT& other)
{
    if (this == &other)
        return *this;
    // The pixel arrays stay this slot's own and are remade at the next drawing.
    curve = other.curve;
    Converted = other.Converted;
    NumPoints = other.NumPoints;
    DrawStyle = other.DrawStyle;
    Color = other.Color;
    DrawNew = 1;
    POICount = 0;
    Drawn = 0;
    return *this;
}

MarkerManagerHolder::MarkerManagerHolder(MapClass* map) : p_(new CMarkerMan(map))
{
}

MarkerManagerHolder::~MarkerManagerHolder()
{
    delete p_;
}

char* MapClass::Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks)
{
    thread_local char result[kMapTextMax];
    orlex::FormatEngineering(result, sizeof result, value, unit, decimals, leadingBlanks,
                             orlex::EngFloor::NanoForAll);
    return result;
}

double MapClass::Convert2Num(char* text)
{
    if (text == nullptr)
        return 0.0;
    const std::size_t length = std::strlen(text);
    std::size_t last = 0;
    for (std::size_t i = 0; i < length; ++i)
        if (text[i] >= '0' && text[i] <= '9')
            last = i;
    // The number runs up to the last digit (so an exponent stays with it). It is read
    // whole, whatever its length.
    const std::size_t n = std::min(last + 1, length);
    const std::string number(text, n);
    const double v = std::strtod(number.c_str(), nullptr);

    unsigned char prefix = 0;
    for (std::size_t i = n; i < length; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == 'u') {
            text[i] = '\xB5';
            prefix = 0xB5;
            break;
        }
        if (c == 0xB5 || (c < 0x80 && std::isalpha(c))) {
            prefix = c;
            break;
        }
    }
    if (prefix == 0 || prefix == ' ')
        return v;
    const char* hit = std::strchr(orlex::kEngPrefix1252, char(prefix));
    if (hit == nullptr)
        return v;
    const int e = 3 * (int(hit - orlex::kEngPrefix1252) - 6);
    return v * orlex::PowerOfTen(e);
}

long MapClass::MultMultDivDiv(int a, int b, int c, int d, int e)
{
    long long N = (long long)b * c;
    long long D = (long long)d * e;
    long long A = a;
    int bits = significantBits((unsigned long long)std::llabs(N)) +
               significantBits((unsigned long long)std::llabs(A));
    if (D < 0) {
        D = -D;
        N = -N;
    }
    // Shed bits in a fixed rotation until a * N fits in 31 bits.
    int turn = 0;
    while (bits > 31) {
        if (turn < 2)
            N >>= 1;
        else
            A >>= 1;
        D >>= 1;
        --bits;
        turn = (turn + 1) % 3;
    }
    const long long P = A * N;
    if (D == 0)
        return P < 0 ? long(INT_MIN) : long(INT_MAX);
    return long(std::int32_t((P + D / 2) / D));
}

void MapClass::SetUnits(const char* domain, const char* range, double xExponent,
                        double yExponent, bool scale, char* oldDomain)
{
    if (oldDomain != nullptr)
        std::memcpy(oldDomain, DomainUnit, sizeof DomainUnit);
    if (domain != nullptr)
        copyCut(DomainUnit, sizeof DomainUnit, domain);
    if (range != nullptr)
        copyCut(RangeUnit, sizeof RangeUnit, range);
    XExponent = xExponent;
    YExponent = yExponent;
    ScaleUnits = scale ? 1 : 0;
}

void MapClass::SetUnits(const char* domain)
{
    if (domain != nullptr)
        copyCut(DomainUnit, sizeof DomainUnit, domain);
}

void MapClass::SetInverse(int x, int y)
{
    copyCut(XInverse, sizeof XInverse, x ? "/" : "");
    copyCut(YInverse, sizeof YInverse, y ? "/" : "");
}

void MapClass::SetPower(int x, int y)
{
    auto mark = [](int p) { return p == 2 ? "\xB2" : p == 3 ? "\xB3" : ""; };
    copyCut(XPower, sizeof XPower, mark(x));
    copyCut(YPower, sizeof YPower, mark(y));
}

void MapClass::SetUserFriendly(bool x, bool y)
{
    UserFriendlyX = x ? 1 : 0;
    UserFriendlyY = y ? 1 : 0;
}

void MapClass::SetUnitsLabel(const char* label, double factor)
{
    XFactor = factor;
    UnitsLabelSet = 1;
    HasUnitsLabel = label != nullptr;
    copyCut(UnitsLabel, sizeof UnitsLabel, label ? label : "");
}

void MapClass::CalculateScale(double value, int axis)
{
    const bool x = axis == kAxisX;
    const char* unit = x ? DomainUnit : RangeUnit;
    const bool friendly = x ? UserFriendlyX != 0 : UserFriendlyY != 0;
    if (std::strcmp(unit, "%") == 0 || !friendly) {
        EngScale = 0;
        return;
    }
    const double p = x ? XExponent : YExponent;
    const double k = (p == 0.0 || value == 0.0)
                         ? NAN
                         : std::floor((std::log10(std::fabs(value)) / p + 1e-9) / 3.0);
    if (std::isnan(k))
        EngScale = std::max(0, MinScale);
    else
        EngScale = std::max(int(std::clamp(k, -6.0, 6.0)), MinScale);
    // Beyond the table (-6..6) there is no prefix to show, so the choice stays at its
    // ends and prefix and factor always agree.
    EngScale = std::clamp(EngScale, -6, 6);
}

void MapClass::ScaleNum(double value, int axis)
{
    CalculateScale(value, axis);
    assert(EngScale >= -6 && EngScale <= 6);
    const char* table = orlex::EngPrefixTable();
    if (axis == kAxisX) {
        if (UnitsLabelSet && HasUnitsLabel) {
            XPrefix = UnitsLabel[0] == '~' ? table[4] : UnitsLabel[0];
            return;
        }
        XPrefix = std::strcmp(DomainUnit, " ") == 0 ? ' ' : table[EngScale + 6];
        XFactor = ScaleUnits ? std::pow(10.0, -EngScale * 3 * XExponent) : 1.0;
    } else if (axis == kAxisY) {
        YPrefix = std::strcmp(RangeUnit, " ") == 0 ? ' ' : table[EngScale + 6];
        YFactor = std::pow(10.0, -EngScale * 3 * YExponent);
    }
}

int MapClass::FormatUnitLabel(int axis, char* dest, int destSize) const
{
    if (dest == nullptr || destSize <= 0)
        return 0;
    const bool x = axis == kAxisX;
    // "%s%c%s%s": inverse mark, prefix, unit, power mark. A prefix byte of 0 ends the
    // text where it stands, as it does in the printed form.
    const char prefix[2] = {x ? XPrefix : YPrefix, '\0'};
    const char* parts[] = {x ? XInverse : YInverse, prefix, x ? DomainUnit : RangeUnit,
                           x ? XPower : YPower};
    const std::size_t room = std::size_t(destSize) - 1;
    std::size_t n = 0;
    for (const char* part : parts) {
        if (part == prefix && prefix[0] == '\0')
            break;
        for (; *part != '\0' && n < room; ++part)
            dest[n++] = *part;
    }
    dest[n] = '\0';
    return int(n);
}

SCALE_INFO MapClass::GetScaleInfo() const
{
    SCALE_INFO info;
    FormatUnitLabel(kAxisX, info.XLabel, int(sizeof info.XLabel));
    FormatUnitLabel(kAxisY, info.YLabel, int(sizeof info.YLabel));
    info.XFactor = XFactor;
    info.YFactor = YFactor;
    return info;
}

// ---- construction -------------------------------------------------------------------------

MapClass::MapClass(HWND wnd) : MarkerMan(this), m_hWnd(wnd)
{
    Margins = DRECT{0.25, 0.25, 0.25, 0.25};
    DefColors = DefaultPlotColors();
    SetCurrentColors(DefColors);
    TextMetricsFromWindow();
}

MapClass::~MapClass() = default;

void MapClass::TextMetricsFromWindow()
{
    HDC dc = GetDC(m_hWnd);
    TEXTMETRIC tm{};
    if (dc != nullptr) {
        GetTextMetrics(dc, &tm);
        ReleaseDC(m_hWnd, dc);
    }
    const int c = tm.tmAveCharWidth;
    TextMap.CharWidth = c;
    TextMap.Tab1 = 10 * c;
    TextMap.Tab2 = 20 * c;
    TextMap.TextLeft = 3 * c;
    TextMap.OriginX = 2 * c;
    TextMap.LineHeight = std::max(1, int(tm.tmHeight + tm.tmExternalLeading));
}

void MapClass::ShowDebug(const char* format, ...)
{
    if (format == nullptr)
        return;
    char text[512];
    va_list args;
    va_start(args, format);
    std::vsnprintf(text, sizeof text, format, args);
    va_end(args);
    OutputDebugStringA(text);
}

void MapClass::RepaintNow() const
{
    if (m_hWnd == nullptr)
        return;
    InvalidateRect(m_hWnd, nullptr, FALSE);
    UpdateWindow(m_hWnd);
}

void MapClass::NotifyZoomEvent() const
{
    HWND parent = m_hWnd != nullptr ? GetParent(m_hWnd) : nullptr;
    if (parent == nullptr)
        return;
    GRID_NOTIFY note{};
    note.Wnd = m_hWnd;
    SendMessageA(parent, MESSAGE_GRID_NOTIFY, WPARAM(MESSAGE_GRID_ZOOM_EVENT), LPARAM(&note));
}

// ---- map type, size, layout switches ------------------------------------------------------

void MapClass::SetMapType(int type)
{
    if (m_hWnd != nullptr)
        ShowScrollBar(m_hWnd, SB_VERT, type == 0 ? TRUE : FALSE);
    MapType = type;
    BoundDirty = 1;
    RepaintNow();
}

void MapClass::Resize(WPARAM, LPARAM lParam)
{
    MapWidth = int(LOWORD(lParam));
    MapHeight = int(HIWORD(lParam));
    BoundDirty = 1;
}

void MapClass::SetPlotOnly(bool on)
{
    PlotOnly = on ? 1 : 0;
    BorderWidths = on ? RECT{5, 5, 5, 5} : RECT{45, 12, 15, 20};
}

void MapClass::SetMaxPoints(int maxPoints)
{
    // Fewer than two display points can't be spaced over a curve.
    if (maxPoints < 2)
        return;
    MaxPoints = maxPoints;
    DrawNew();
    RepaintNow();
}

void MapClass::SetConvertType(unsigned int type)
{
    ConvertType = type;
    DrawNew();
    RepaintNow();
}

void MapClass::SetConvertFlag(int flag)
{
    for (CURVE_SLOT& s : Slots) {
        s.Converted = flag;
        s.DrawNew = 1;
    }
}

void MapClass::SetAxisLabels(const char* x, const char* y)
{
    if (x != nullptr)
        copyCut(XLabel, sizeof XLabel, x);
    if (y != nullptr)
        copyCut(YLabel, sizeof YLabel, y);
}

void MapClass::SetMinorLines(int on)
{
    MinorLines = on;
    RepaintNow();
}

void MapClass::SetColumnHeaders(const char* a, const char* b, const char* c)
{
    const char* in[3] = {a, b, c};
    for (int i = 0; i < 3; ++i)
        if (in[i] != nullptr)
            copyCut(ColumnHeaders[i], sizeof ColumnHeaders[i], in[i]);
}

DRECT MapClass::GetExtents() const
{
    return DRECT{XStart, YEnd, XEnd, YStart};
}

void MapClass::SetXTranslation(double t)
{
    XTranslation = float(t);
    for (CURVE_SLOT& s : Slots)
        if (s.curve != nullptr)
            s.curve->SetXTranslation(float(t));
}

void MapClass::SetYTranslation(double t)
{
    YTranslation = float(t);
    for (CURVE_SLOT& s : Slots)
        if (s.curve != nullptr)
            s.curve->SetYTranslation(float(t));
    // The fixed scale moves with the data, and back by exactly what it moved.
    if (t != 0.0) {
        YShift = t;
        AutoScale.MinY += t;
        AutoScale.MaxY += t;
    } else {
        AutoScale.MinY -= YShift;
        AutoScale.MaxY -= YShift;
        YShift = 0.0;
    }
}

// ---- curves, styles, colours ----------------------------------------------------------------

void MapClass::DrawNew(int slot)
{
    if (validSlot(slot))
        Slots[slot].DrawNew = 1;
}

void MapClass::DrawNew()
{
    for (CURVE_SLOT& s : Slots)
        s.DrawNew = 1;
}

void MapClass::ClearCurves()
{
    for (CURVE_SLOT& s : Slots)
        s.curve = nullptr;
}

Curve* MapClass::GetSlotCurve(int slot) const
{
    return validSlot(slot) ? Slots[slot].curve : nullptr;
}

void MapClass::SetDrawStyle(int slot, int style)
{
    if (validSlot(slot))
        Slots[slot].DrawStyle = (style >= 0 && style <= 7) ? style : 0;
}

unsigned int MapClass::GetDrawStyle(int slot) const
{
    return validSlot(slot) ? unsigned(Slots[slot].DrawStyle) : 0u;
}

void MapClass::SetCurveColor(int slot, COLORREF colour, int repaint)
{
    if (!validSlot(slot))
        return;
    Slots[slot].Color = colour;
    if (repaint)
        RepaintNow();
}

COLORREF MapClass::GetCurveColor(int slot) const
{
    return validSlot(slot) ? Slots[slot].Color : COLORREF(0);
}

DEFCOLOR MapClass::GetCurrentColors() const
{
    DEFCOLOR d;
    for (int i = 0; i < kMapSlots; ++i)
        d.Curve[i] = Slots[i].Color;
    d.Grid = GridColor;
    d.Text = TextColor;
    d.Minor = MinorColor;
    d.Background = BkColor;
    d.MarkerActive = MarkerMan->ActiveColor;
    d.MarkerNormal = MarkerMan->NormalColor;
    for (int i = 0; i < 12; ++i)
        d.Marker[i] = MarkerMan->Vert[i].Color;
    return d;
}

void MapClass::SetCurrentColors(const DEFCOLOR& d)
{
    for (int i = 0; i < kMapSlots; ++i)
        Slots[i].Color = d.Curve[i];
    GridColor = d.Grid;
    TextColor = d.Text;
    MinorColor = d.Minor;
    BkColor = d.Background;
    MarkerMan->ActiveColor = d.MarkerActive;
    MarkerMan->NormalColor = d.MarkerNormal;
    for (int i = 0; i < 12; ++i)
        MarkerMan->Vert[i].Color = d.Marker[i];
}

void MapClass::SetLegendText(int slot, const char* text, int useTextColor)
{
    UseTextColorForLegend = useTextColor;
    if (validSlot(slot) && text != nullptr)
        copyCut(LegendText[slot], sizeof LegendText[slot], text);
}

POINT MapClass::GetIndex(int i) const
{
    const CURVE_SLOT& s = Slots[0];
    if (i < 0 || i >= s.Drawn || size_t(i) >= s.points.size())
        return POINT{0, 0};
    return s.points[size_t(i)];
}
