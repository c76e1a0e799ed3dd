// Pure arithmetic of the measuring cursors: how a view's client pixels map onto data pixels
// and metres and back, distances of a point to lines and segments, turning point lists, and
// keeping a cursor's window near the view. Nothing here touches a window; CBaseCursor takes
// a view's state into a CursorMapping and draws with the results.
#pragma once

#include "foundation/platform/wintypes.h"
#include "imageview/CursorPos.h"

namespace orlex::cursors {

// trunc(v) limited to the int range; NaN gives 0. Every float-to-int step of the cursors
// goes through here, so that no record, size or view can make an undefined conversion.
int TruncSat(double v);

// A view's mapping at one moment. Data position of a view pixel p (x shown):
//   fx = p * (DX * xr) / W + xo,   units X = fx * S / DX,   Y = fy * S / DY / A.
struct CursorMapping {
    int W = 0, H = 0;             // client size of the view
    double DX = 0.0, DY = 0.0;    // data size: the first zoom record, or the client size
    double xr = 1.0, yr = 1.0;    // shown part / whole image (GetScaleRatio)
    int xo = 0, yo = 0;           // offset of the shown part in data pixels
    double S = 0.0;               // scan length in metres (x; y units use it too)
    double A = 1.0;               // the frame's aspect ratio
    double cx = 1.0, cy = 1.0;    // the view's cursor scale (archives of another size)

    // A view narrower or lower than 2 pixels maps nothing: records and positions stay.
    bool Usable() const { return W >= 2 && H >= 2; }
    // Unrounded data position of a view pixel, rounded to float.
    float DataX(double px) const;
    float DataY(double py) const;
    // Metres of a data position.
    double UnitsX(double fx) const;
    double UnitsY(double fy) const;
    // Fills the first (x1, y1, dX1, dY1, fX1, fY1) or second point of a record from a view
    // pixel: the float position, its truncation and its metres.
    void FillPoint(CURSOR_POS& pos, POINT viewPixel, bool second) const;
    // A data pixel in view client pixels (with the cursor scale applied); false, out
    // untouched, when the view is unusable or a ratio, DX * cx or DY * cy is 0.
    bool ViewPoint(POINT data, POINT& out) const;
};

// Angle in degrees of a way dx, dy (y upward), counter-clockwise from +x: -180..180.
double AngleDegrees(double dx, double dy);
// Rounded pixel distance of two points: trunc(sqrt(dx^2 + dy^2) + 0.5).
UINT RoundedDistance(POINT a, POINT b);
// Distance of p to the infinite line through a and b; a vertical pair measures to the
// segment (|p.x - a.x| between the ends, else to the end of nearer y).
double LineDistance(POINT p, POINT a, POINT b);
// Distance of p to the segment a-b: perpendicular where its foot (truncated) lies in the
// rectangle spanned by a and b, else the smaller rounded distance to an end.
double SegmentDistance(POINT p, POINT a, POINT b);
// Turns the points about c by angle degrees (counter-clockwise on the screen for points on
// c's horizontal): x = c.x + floor(dx cos - dy sin + 0.5), y = c.y - floor(dy cos + dx sin + 0.5).
void RotatePoints(POINT c, POINT* points, int count, double angle);
// Coordinates a cursor keeps: stored and computed positions are limited to this range, so
// that window arithmetic of any record (huge, negative) stays within int.
constexpr int kCursorCoordLimit = 1 << 28;
int LimitCoord(long long v);
// The rectangle of a point inflated by `reach` on every side (negative reach counts as 0),
// limited to the coordinate range.
RECT RectAround(POINT centre, long long reach);

// A window rectangle (view client) pushed, keeping its size, into the client rectangle
// inflated by selzone: a top (left) above -selzone moves down (right) to it; otherwise a
// bottom (right) past the inflated edge moves up (left) to one pixel inside it.
RECT KeepWindowNearView(RECT window, RECT client, int selzone);

}  // namespace orlex::cursors
