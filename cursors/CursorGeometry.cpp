#include "cursors/CursorGeometry.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orlex::cursors {

namespace {

constexpr double kPi = 3.14159265358979323846;

double Hypot(double dx, double dy) { return std::sqrt(dx * dx + dy * dy); }

// Within the rectangle that a and b span, as PtInRect sees it (right and bottom outside).
bool InSpan(double x, double y, POINT a, POINT b)
{
    const double l = std::min(a.x, b.x), r = std::max(a.x, b.x);
    const double t = std::min(a.y, b.y), bt = std::max(a.y, b.y);
    return x >= l && x < r && y >= t && y < bt;
}

}  // namespace

int TruncSat(double v)
{
    if (!(v == v)) return 0;
    if (v >= 2147483647.0) return std::numeric_limits<int>::max();
    if (v <= -2147483648.0) return std::numeric_limits<int>::min();
    return static_cast<int>(v);
}

float CursorMapping::DataX(double px) const { return static_cast<float>(px * (DX * xr) / W + xo); }
float CursorMapping::DataY(double py) const { return static_cast<float>(py * (DY * yr) / H + yo); }
double CursorMapping::UnitsX(double fx) const { return fx * S / DX; }
double CursorMapping::UnitsY(double fy) const { return fy * S / DY / A; }

void CursorMapping::FillPoint(CURSOR_POS& pos, POINT p, bool second) const
{
    const float fx = DataX(p.x), fy = DataY(p.y);
    if (second) {
        pos.fX2 = fx;
        pos.fY2 = fy;
        pos.x2 = TruncSat(fx);
        pos.y2 = TruncSat(fy);
        pos.dX2 = UnitsX(fx);
        pos.dY2 = UnitsY(fy);
    } else {
        pos.fX1 = fx;
        pos.fY1 = fy;
        pos.x1 = TruncSat(fx);
        pos.y1 = TruncSat(fy);
        pos.dX1 = UnitsX(fx);
        pos.dY1 = UnitsY(fy);
    }
}

bool CursorMapping::ViewPoint(POINT data, POINT& out) const
{
    if (!Usable() || xr == 0.0 || yr == 0.0) return false;
    const double px = TruncSat((data.x - xo) / xr + 0.5);
    const double py = TruncSat((data.y - yo) / yr + 0.5);
    const double sx = DX * cx, sy = DY * cy;
    if (sx == 0.0 || sy == 0.0) return false;
    // Left to right in double: the cursor scale multiplies after the division.
    out.x = TruncSat(W * px / DX * cx + 0.5);
    out.y = TruncSat(H * py / DY * cy + 0.5);
    return true;
}

double AngleDegrees(double dx, double dy) { return std::atan2(dy, dx) * 180.0 / kPi; }

UINT RoundedDistance(POINT a, POINT b)
{
    return static_cast<UINT>(TruncSat(Hypot(double(b.x) - a.x, double(b.y) - a.y) + 0.5));
}

double LineDistance(POINT p, POINT a, POINT b)
{
    if (a.x == b.x) {
        const int lo = std::min(a.y, b.y), hi = std::max(a.y, b.y);
        if (p.y >= lo && p.y <= hi) return std::fabs(double(p.x) - a.x);
        const POINT& end = std::abs(p.y - a.y) <= std::abs(p.y - b.y) ? a : b;
        return Hypot(double(p.x) - end.x, double(p.y) - end.y);
    }
    const double m = (double(a.y) - b.y) / (double(a.x) - b.x);
    return std::fabs(p.x * m - p.y + (a.y - a.x * m)) / std::sqrt(m * m + 1.0);
}

double SegmentDistance(POINT p, POINT a, POINT b)
{
    const UINT da = RoundedDistance(p, a), db = RoundedDistance(p, b);
    const double nearer = std::min(da, db);
    if (a.x == b.x) {
        const int lo = std::min(a.y, b.y), hi = std::max(a.y, b.y);
        return p.y >= lo && p.y <= hi ? std::fabs(double(p.x) - a.x) : nearer;
    }
    if (a.y == b.y) {
        const int lo = std::min(a.x, b.x), hi = std::max(a.x, b.x);
        return p.x >= lo && p.x <= hi ? std::fabs(double(p.y) - a.y) : nearer;
    }
    const double m = (double(a.y) - b.y) / (double(a.x) - b.x);
    const double c = a.y - a.x * m;
    const double x0 = TruncSat((p.x / m + p.y - c) * m / (m * m + 1.0));
    const double y0 = TruncSat(x0 * m + c);
    if (InSpan(x0, y0, a, b)) return std::fabs(p.x * m - p.y + c) / std::sqrt(m * m + 1.0);
    return nearer;
}

void RotatePoints(POINT c, POINT* points, int count, double angle)
{
    if (!points) return;
    const double r = angle * kPi / 180.0;
    const double cs = std::cos(r), sn = std::sin(r);
    for (int i = 0; i < count; ++i) {
        const double dx = double(points[i].x) - c.x, dy = double(points[i].y) - c.y;
        points[i].x = TruncSat(c.x + std::floor(dx * cs - dy * sn + 0.5));
        points[i].y = TruncSat(c.y - std::floor(dy * cs + dx * sn + 0.5));
    }
}

int LimitCoord(long long v)
{
    return static_cast<int>(std::clamp<long long>(v, -kCursorCoordLimit, kCursorCoordLimit));
}

RECT RectAround(POINT c, long long reach)
{
    reach = std::clamp<long long>(reach, 0, kCursorCoordLimit);
    return RECT{LimitCoord(c.x - reach), LimitCoord(c.y - reach), LimitCoord(c.x + reach), LimitCoord(c.y + reach)};
}

RECT KeepWindowNearView(RECT w, RECT client, int selzone)
{
    const long long z = selzone;
    auto keep = [z](LONG& lo, LONG& hi, LONG clientHi) {
        const long long size = static_cast<long long>(hi) - lo;
        long long a = lo, b = hi;
        if (a < -z) {
            a = -z;
            b = a + size;
        } else if (b > clientHi + z) {
            b = clientHi + z - 1;
            a = b - size;
        }
        lo = LimitCoord(a);
        hi = LimitCoord(b);
    };
    keep(w.top, w.bottom, client.bottom);
    keep(w.left, w.right, client.right);
    return w;
}

}  // namespace orlex::cursors
