// The arithmetic of a plot: axes, grid and label positions, visible ranges, pixels.
#include "plot/PlotGeometry.h"

#include <cassert>
#include <cmath>

namespace orlex::plot {

Divisions ChooseDivisions(int axis, double lo, double hi)
{
    Divisions d;
    const double span = hi - lo;
    if (!(span > 0.0) || !std::isfinite(span))
        return d;
    const double L = std::log10(span);
    const double e = std::floor(L + 1e-9);
    const double m = std::pow(10.0, L - e); // the mantissa of the span, 1 <= m < 10
    const double s = std::pow(10.0, e);
    double step;
    if (m == 1.0)
        step = s * 0.1;
    else if (axis == kAxisX)
        step = m <= 2.0 ? s * 0.2 : m <= 5.0 ? s * 0.5 : s;
    else
        step = m <= 3.0 ? s * 0.5 : s;
    const double start = std::floor(lo / step + 1e-9) * step;
    const double end = std::ceil(hi / step - 1e-9) * step;
    const double count = (end - start) / step + 0.5;
    // A span lost in the magnitude of its limits gives no count an axis could draw.
    if (!(count >= 0.0 && count < 1e6))
        return d;
    d.start = start;
    d.end = end;
    d.step = step;
    d.count = int(count);
    d.ok = d.count != 0;
    return d;
}

LogLimits ChooseLogLimits(double lo, double hi)
{
    LogLimits l;
    if (!(lo > 0.0) || !std::isfinite(lo) || !std::isfinite(hi))
        return l;
    const double a = std::log10(lo);
    const double b = std::log10(hi);
    const double ea = std::floor(a + 1e-9);
    const double eb = std::floor(b + 1e-9);
    l.start = std::floor(std::pow(10.0, a - ea) + 1e-9) * std::pow(10.0, ea);
    l.end = std::ceil(std::pow(10.0, b - eb) - 1e-9) * std::pow(10.0, eb);
    l.ok = std::isfinite(l.start) && std::isfinite(l.end) && l.start > 0.0 && l.end > 0.0;
    return l;
}

int PolarRingCount(double span)
{
    double r = std::ceil(span / 10.0 - 1e-9);
    if (!(r >= 1.0))
        r = 1.0;
    if (r > 11.0)
        r = 11.0;
    return int(r);
}

int MinorSubdivisions(double pixels, double dotScale)
{
    if (!(pixels > dotScale * 10.0))
        return 0;
    if (pixels >= dotScale * 50.0)
        return 10;
    return pixels >= dotScale * 25.0 ? 5 : 2;
}

double MinorFactor(int k)
{
    return k == 10 ? 0.1 : k == 5 ? 0.2 : 0.5;
}

double GuardZero(double v, double step)
{
    return (v - 0.1 * step > -step && step > v + 0.1 * step) ? 0.0 : v;
}

bool SemiLogLabelled(int digit, double p, double ds)
{
    switch (digit) {
    case 1:
    case 3:
        return true;
    case 2:
    case 6:
        return p > ds * 250.0;
    case 4:
    case 8:
        return p > ds * 375.0;
    case 5:
    case 7:
    case 9:
        return p > ds * 500.0;
    default:
        return false;
    }
}

PixelMap MakePixelMap(int mapType, double xStart, double xEnd, double yStart, double yEnd,
                      bool clampY, const RECT& bound)
{
    PixelMap m;
    m.logX = mapType == 300;
    m.xStart = xStart;
    if (m.logX) {
        m.logXStart = std::log10(xStart);
        const double span = std::log10(xEnd) - m.logXStart;
        m.xScale = span != 0.0 ? 1.0 / span : 0.0;
    } else {
        const double span = xEnd - xStart;
        m.xScale = span != 0.0 ? 1.0 / span : 0.0;
    }
    m.yStart = yStart;
    const double ySpan = yEnd - yStart;
    m.yScale = ySpan != 0.0 ? 1.0 / ySpan : 0.0;
    m.clampY = clampY;
    m.bound = bound;
    return m;
}

void VisibleRange(const Curve::Point* points, int n, double xStart, double xEnd, int& lo, int& hi)
{
    assert(n >= 1);
    const int last = n - 1;
    int i = 0;
    if (points[last].first > points[0].first) {
        while (i < last && !(points[i].first >= xEnd))
            ++i;
        hi = i;
        while (i > 0 && !(points[i].first <= xStart))
            --i;
    } else {
        // Walking up falling data meets the start of the axis first.
        while (i < last && !(points[i].first <= xStart))
            ++i;
        hi = i;
        while (i > 0 && !(points[i].first >= xEnd))
            --i;
    }
    lo = i;
}

int MapPoints(const PixelMap& map, const Curve::Point* points, int lo, int hi, float yTranslation,
              POINT* out, const double* pois, int poiRoom, bool falling, POINT* poiOut)
{
    const double w = double(map.bound.right - map.bound.left);
    const double h = double(map.bound.bottom - map.bound.top);
    const int left = map.bound.left;
    const int bottom = map.bound.bottom;
    int k = 0;
    const Curve::Point* p = points + lo;
    for (int i = 0; i <= hi - lo; ++i, ++p) {
        const float x = p->first;
        const double dx = map.logX ? std::log10(double(x)) - map.logXStart : double(x) - map.xStart;
        const float y = p->second + yTranslation;
        double t = (double(y) - map.yStart) * map.yScale;
        if (map.clampY)
            t = std::fmin(std::fmax(t, 0.0), 1.0);
        const POINT pt{left + PixelCast(dx * map.xScale * w + 0.5), bottom - PixelCast(t * h + 0.5)};
        out[i] = pt;
        if (k < poiRoom) {
            const float poi = float(pois[k]);
            if (falling ? x <= poi : x >= poi)
                poiOut[k++] = pt;
        }
    }
    return k;
}

}  // namespace orlex::plot
