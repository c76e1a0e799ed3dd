// The arithmetic of a plot, apart from any drawing: the choice of a nice axis, where grid
// lines and labels stand, which points of a curve are visible and where they fall in
// pixels. MapClass draws with these; the tests check them alone.
#pragma once

#include <cmath>

#include "foundation/platform/wintypes.h"
#include "plot/Curve.h"

namespace orlex::plot {

constexpr int kAxisX = 1000;
constexpr int kAxisY = 1100;

// Pixel values are held within this before they are cast to int, so that deep zooms,
// narrow fixed scales and NaN never cast out of range; lines towards such points are
// clipped by the device anyway.
constexpr double kPixelLimit = 536870912.0; // 2^29

// (int)v for any double: NaN gives -kPixelLimit, values beyond the limit give the limit.
inline int PixelCast(double v)
{
    return int(std::fmin(std::fmax(v, -kPixelLimit), kPixelLimit));
}

// A linear axis from lo to hi as the plot shows it: first and last labelled values, the
// step of the major lines and their number. ok is false when no axis can be made (an
// empty, reversed, infinite or NaN span).
struct Divisions {
    bool ok = false;
    double start = 0.0;
    double end = 0.0;
    double step = 0.0;
    int count = 0;
};
// X (kAxisX) and Y (any other axis) choose their steps from different tables.
Divisions ChooseDivisions(int axis, double lo, double hi);

// A logarithmic axis: lo rounded down and hi rounded up to one significant digit. ok is
// false for lo <= 0 or a limit that isn't finite.
struct LogLimits {
    bool ok = false;
    double start = 0.0;
    double end = 0.0;
};
LogLimits ChooseLogLimits(double lo, double hi);

// Rings of 10 dB that a polar axis over span dB needs: ceil(span / 10 - 1e-9), at least 1
// (a flat curve shows one ring; a reversed or NaN span one too). Spans beyond 10 rings
// give 11, which the caller refuses.
int PolarRingCount(double span);

// Minor sub-divisions of a major division p pixels wide (dotScale times 10, 25, 50 are
// the thresholds): 0 for none, else 2, 5 or 10. MinorFactor(k) is 1 / k as the constant
// the lines are placed with (0.5, 0.2, 0.1).
int MinorSubdivisions(double pixels, double dotScale = 1.0);
double MinorFactor(int k);

// A label value v on an axis with step s: 0 where -0.9 s < v < 0.9 s (cleans 1e-17 off
// the zero line), v elsewhere.
double GuardZero(double v, double step);

// Whether the semi-logarithmic X axis labels the leading digit d of a value at p pixels
// per decade (dotScale: device pixels per screen pixel).
bool SemiLogLabelled(int digit, double pixelsPerDecade, double dotScale);

// The walk over a logarithmic axis from start: every 1, 2, ... 9 of each decade while
// the value stays below end - eps. visit(x, s) gets the value and the decade's step.
// Bounded by a fixed number of steps, so an absurd range ends.
template <class Visit>
void WalkLogAxis(double start, double end, double eps, Visit&& visit)
{
    double x = start;
    double s = std::pow(10.0, std::floor(std::log10(start) + 1e-9));
    for (int guard = 0; end - eps > x && guard < 100000; ++guard) {
        const double a = std::log10(x);
        if (s * 10.0 - 1e-9 > std::pow(10.0, std::floor(a + 1e-9))) {
            visit(x, s);
            x = x + s;
        } else {
            s = s * 10.0;
        }
    }
}

// Where the points of a curve fall in a plot rectangle: type 100 maps x linearly,
// type 300 by its logarithm; y is clamped into the rectangle for stored data only.
struct PixelMap {
    double xStart = 0.0;
    double xScale = 0.0; // 1 / span of the axis (of its logarithms on type 300), 0 for none
    double logXStart = 0.0;
    bool logX = false;
    double yStart = 0.0;
    double yScale = 0.0;
    bool clampY = false;
    RECT bound{};
};
PixelMap MakePixelMap(int mapType, double xStart, double xEnd, double yStart, double yEnd,
                      bool clampY, const RECT& bound);

// The visible index range of points[0..n): from the first point on, the one at or beyond
// the far edge of the axis is hi; back from hi, the one at or before the near edge is lo,
// so one point beyond each edge is included. On data that don't rise the edges change
// roles. n >= 1.
void VisibleRange(const Curve::Point* points, int n, double xStart, double xEnd, int& lo, int& hi);

// Maps points[lo..hi] into out[0..hi-lo], y plus yTranslation (in float, as the curve
// reads it). Each POI (sorted like the curve) is stored in poiOut at the first point at or
// beyond it (beyond in the direction of the data: rising unless `falling`), one per point;
// returns how many POIs were placed (at most poiRoom).
int MapPoints(const PixelMap& map, const Curve::Point* points, int lo, int hi, float yTranslation,
              POINT* out, const double* pois, int poiRoom, bool falling, POINT* poiOut);

}  // namespace orlex::plot
