// Pixel runs: one lookup of the surface and its clip for a whole row or column. Where a
// logical unit is one device pixel (the usual mapping), the run is cut against each clip
// rectangle once and walked by pointer.
#include "foundation/platform/pixelrun.h"

#include <algorithm>

#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/gui/gdi_raster_p.h"

namespace orlex {

namespace {

// Calls visit(i, pixel) for each entry i of the run that the surface and clip hold; the
// touched box of the run, in image coordinates, goes to `box` (null when none).
template <class Visit>
int walkRun(gdi::Dc& dc, gdi::Target& t, int x, int y, bool vertical, int count, QRect& box, Visit&& visit)
{
    const POINT p0 = gdi::LpToDp(dc, POINT{x, y});
    const POINT p1 = gdi::LpToDp(dc, vertical ? POINT{x, y + 1} : POINT{x + 1, y});
    const bool unit = vertical ? (p1.x == p0.x && p1.y == p0.y + 1) : (p1.y == p0.y && p1.x == p0.x + 1);
    int done = 0;
    if (unit) {
        // Image coordinates of the run's first pixel; the run is [0, count) along it.
        const int ix = p0.x + t.origin.x(), iy = p0.y + t.origin.y();
        const std::ptrdiff_t stride = vertical ? t.img->bytesPerLine() / 4 : 1;
        for (const QRect& r : t.rects) {
            int a, b; // the part of the run inside r
            if (vertical) {
                if (ix < r.left() || ix > r.right())
                    continue;
                a = std::max(0, r.top() - iy);
                b = std::min(count, r.bottom() + 1 - iy);
            } else {
                if (iy < r.top() || iy > r.bottom())
                    continue;
                a = std::max(0, r.left() - ix);
                b = std::min(count, r.right() + 1 - ix);
            }
            if (a >= b)
                continue;
            std::uint32_t* px = t.Row(vertical ? iy + a : iy) + (vertical ? ix : ix + a);
            for (int i = a; i < b; ++i, px += stride)
                done += visit(i, *px);
            const QRect part = vertical ? QRect(ix, iy + a, 1, b - a) : QRect(ix + a, iy, b - a, 1);
            box = box.isNull() ? part : box.united(part);
        }
        return done;
    }
    for (int i = 0; i < count; ++i) {
        const POINT p = gdi::LpToDp(dc, vertical ? POINT{x, y + i} : POINT{x + i, y});
        const int ix = p.x + t.origin.x(), iy = p.y + t.origin.y();
        if (t.Contains(ix, iy) && visit(i, t.Row(iy)[ix])) {
            ++done;
            box = box.isNull() ? QRect(ix, iy, 1, 1) : box.united(QRect(ix, iy, 1, 1));
        }
    }
    return done;
}

}  // namespace

int ReadPixelRun(HDC hdc, int x, int y, bool vertical, int count, COLORREF* out)
{
    if (out == nullptr || count <= 0)
        return 0;
    std::fill(out, out + count, CLR_INVALID);
    gdi::Dc* dc = gdi::LookupDc(hdc);
    gdi::Target t;
    if (dc == nullptr || !gdi::Acquire(*dc, t))
        return 0;
    QRect box;
    return walkRun(*dc, t, x, y, vertical, count, box, [&](int i, std::uint32_t& px) {
        out[i] = gdi::ToColorref(px);
        return 1;
    });
}

int WritePixelRun(HDC hdc, int x, int y, bool vertical, int count, const COLORREF* in)
{
    gdi::Dc* dc = gdi::LookupDc(hdc);
    if (in == nullptr || dc == nullptr || count <= 0)
        return 0;
    gdi::Target t;
    if (!gdi::Acquire(*dc, t))
        return 0;
    QRect box;
    const int written = walkRun(*dc, t, x, y, vertical, count, box, [&](int i, std::uint32_t& px) {
        const COLORREF c = in[i];
        if (c == CLR_INVALID)
            return 0;
        // Plain colours go straight in; palette colours through the context.
        px = (c >> 24) == 0 ? gdi::ToPixel(c) : gdi::ResolveColor(*dc, c);
        return 1;
    });
    if (!box.isNull())
        t.Touch(box);
    gdi::Release(t);
    return written;
}

}  // namespace orlex
