#include "imageview/ViewGeometry.h"

#include <algorithm>
#include <cassert>
#include <cmath>

namespace orlex::view {

const double kSnapTable[kSnapCount] = {1.0, 1.1, 1.2, 1.4, 1.6, 1.8, 2.0, 2.3, 2.5, 2.8,
                                       3.0, 3.5, 4.0, 4.5, 5.0, 6.0, 7.0, 8.0, 9.0};

namespace {

// Truncation towards zero to int, saturating so that absurd inputs stay defined.
int TruncInt(double v)
{
    if (!(v == v)) return 0;
    if (v >= 2147483647.0) return 2147483647;
    if (v <= -2147483648.0) return -2147483647 - 1;
    return static_cast<int>(v);
}

}  // namespace

bool IsRectFSet(const Gdiplus::RectF& r) { return r.Width > kZoomEpsilon && r.Height > kZoomEpsilon; }

CRect RecordFromRectF(const Gdiplus::RectF& r)
{
    const int left = TruncInt(double(r.X) + 0.5);
    const int top = TruncInt(double(r.Y) + 0.5);
    return CRect(left, top, TruncInt(r.Width) + left, TruncInt(r.Height) + top);
}

Gdiplus::RectF RectFFromRecord(const CRect& r)
{
    return Gdiplus::RectF(float(r.left), float(r.top), float(r.right - r.left), float(r.bottom - r.top));
}

void CheckPan(Gdiplus::RectF& r, int cols, int rows)
{
    if (r.X < 0.0f)
        r.X = 0.0f;
    else if (r.X + r.Width > float(cols))
        r.X -= r.X + r.Width - float(cols);
    if (r.Y < 0.0f)
        r.Y = 0.0f;
    else if (r.Y + r.Height > float(rows))
        r.Y -= r.Y + r.Height - float(rows);
}

void SnapToNext2DigitRect(Gdiplus::RectF& r, int steps, float ratio, int cols, int rows, double scanLenX)
{
    if (cols < 1 || steps == 0 || !(r.Width > 0.0f)) return;
    const double nmPerPixel = scanLenX * 1e9 / cols;
    const double size = double(r.Width) * nmPerPixel;
    if (!(size > 0.0) || !std::isfinite(size)) return;
    int e = TruncInt(std::log10(size) + 0.001);
    const double m = size * std::pow(10.0, -e);
    const int s = std::clamp(steps, -5, 5);
    double value;
    if (s > 0) {
        int index = 18;
        while (index >= 0 && kSnapTable[index] > m - 0.001) index -= s;
        if (index < 0) {
            value = kSnapTable[kSnapCount + index];
            --e;
        } else {
            value = kSnapTable[index];
        }
    } else {
        int index = 1;
        while (index < kSnapCount && m + 0.001 > kSnapTable[index]) index -= s;
        if (index >= kSnapCount) {
            value = kSnapTable[index - kSnapCount];
            ++e;
        } else {
            value = kSnapTable[index];
        }
    }
    const float newWidth = static_cast<float>(std::pow(10.0, e) * value / nmPerPixel);
    const float newHeight = newWidth * ratio;
    const float dw = (newWidth - r.Width) * 0.5f;
    const float dh = (newHeight - r.Height) * 0.5f;
    r.X -= dw;
    r.Y -= dh;
    r.Width += 2.0f * dw;
    r.Height += 2.0f * dh;
    if (r.Width > float(cols)) r.Width = float(cols);
    if (r.Height > float(rows)) r.Height = float(rows);
    CheckPan(r, cols, rows);
}

bool MapRelativeRecord(CRect& r, const CRect& first, const CRect& current)
{
    if (first.right == 0 || first.bottom == 0) return false;
    const double kx = double(current.Width()) / first.right;
    const double ky = double(current.Height()) / first.bottom;
    r.left = TruncInt(r.left * kx + 0.5) + current.left;
    r.right = TruncInt(r.right * kx + 0.5) + current.left;
    r.top = TruncInt(r.top * ky + 0.5) + current.top;
    r.bottom = TruncInt(r.bottom * ky + 0.5) + current.top;
    return r.Width() >= 3 && r.Height() >= 3;
}

Gdiplus::RectF MapRelativeRectF(const Gdiplus::RectF& r, const Gdiplus::RectF& s, int cols, int rows)
{
    assert(cols > 0 && rows > 0);
    Gdiplus::RectF o;
    o.X = r.X * s.Width / float(cols) + s.X;
    o.Y = r.Y * s.Height / float(rows) + s.Y;
    o.Width = s.Width / float(cols) * r.Width;
    o.Height = s.Height / float(rows) * r.Height;
    return o;
}

bool ZoomStepRect(Gdiplus::RectF& r, int steps, const POINT* at, const RECT& client, double aspect, bool centre,
                  int cols, int rows, double scanLenX)
{
    if (cols < 1 || rows < 1) return false;
    if (steps > 0 && (r.Width <= 1.0f || r.Height <= 1.0f)) return false;
    const bool whole = r.X == 0.0f && r.Y == 0.0f && r.Width == float(cols) && r.Height == float(rows);
    if (steps > 0 && whole && aspect > 1.0) {
        // The first zoom of a wide image only narrows it to the frame's shape.
        r.Width = static_cast<float>(1.0 / aspect * r.Height * cols / rows);
        if (at) {
            r.X = static_cast<float>(at->x - r.Width * 0.5);
            if (r.X < 0.0f)
                r.X = 0.0f;
            else if (r.X > cols - r.Width * 0.5f)
                r.X = static_cast<float>(cols - 1.0 - r.Width * 0.5);
        } else {
            r.X = (float(cols) - r.Width) * 0.5f;
        }
        return true;
    }
    const int cw = client.right - client.left;
    const int ch = client.bottom - client.top;
    POINT d{0, 0};
    if (at && cw > 0 && ch > 0) {
        d.x = at->x - (client.left + client.right) / 2;
        d.y = at->y - (client.top + client.bottom) / 2;
        r.X += float(d.x) * r.Width / float(cw);
        r.Y += float(d.y) * r.Height / float(ch);
    }
    if (steps != 0) SnapToNext2DigitRect(r, steps, 1.0f, cols, rows, scanLenX);
    if (at && !centre && cw > 0 && ch > 0) {
        // Keep the data under the mouse under the mouse.
        r.X -= float(d.x) * r.Width / float(cw);
        r.Y -= float(d.y) * r.Height / float(ch);
    }
    r.Height = static_cast<float>(aspect * r.Width * rows / cols);
    if (r.Width < 1.0f || r.Height < 1.0f) return false;
    if (r.Width > float(cols) || r.Height > float(rows))
        r = Gdiplus::RectF(0.0f, 0.0f, float(cols), float(rows));
    else
        CheckPan(r, cols, rows);
    return true;
}

Gdiplus::RectF PanRect(const Gdiplus::RectF& panRect, POINT start, POINT point, float scaleX, float scaleY, int cols,
                       int rows)
{
    Gdiplus::RectF r = panRect;
    r.X += float(start.x - point.x) * scaleX;
    r.Y += float(start.y - point.y) * scaleY;
    CheckPan(r, cols, rows);
    return r;
}

bool PixelRunBlock(int x1, int y, int x2, const CRect& z, const CRect& c, CRect& block)
{
    if (x1 > z.right || x2 < z.left || y < z.top || y > z.bottom) return false;
    if (z.Width() == 0 || z.Height() == 0) return false;
    const double sx = double(c.Width()) / z.Width();
    const double sy = double(c.Height()) / z.Height();
    const int a = std::max(x1, int(z.left));
    const int b = std::min(x2, int(z.right));
    const int w = TruncInt((b - a) * sx + 1.0 + 0.5);
    const int h = TruncInt(sy + 1.0);
    const int px = std::max(0, TruncInt((a - z.left) * sx + c.left + 0.5));
    const int py = std::max(0, TruncInt((y - z.top) * sy + c.top + 0.5));
    block = CRect(px, py, std::min(px + w, int(c.right)), py + h);
    return true;
}

ScanStrip ComputeScanStrip(int line, int lines, int direction, int zLo, int zHi, const CRect& client)
{
    ScanStrip s;
    if (direction) {
        s.last = line + 1;
        s.first = line + 1 - lines;
    } else {
        s.first = line;
        s.last = line + lines;
    }
    s.first = std::max(s.first, zLo);
    s.last = std::min(s.last, zHi);
    const int shown = zHi - zLo;
    const int clientH = client.Height();
    assert(shown > 0);
    s.yTop = client.bottom - (s.last - zLo) * clientH / shown - client.top;
    s.yBot = client.bottom - (s.first - zLo) * clientH / shown - client.top;
    return s;
}

}  // namespace orlex::view
