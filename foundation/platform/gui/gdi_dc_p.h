// Private to the drawing layer: where a context's pixels are for one drawing call, and the
// sink that writes pixels through the clip and a raster operation.
#pragma once

#include <QImage>
#include <QRegion>

#include <vector>

#include "foundation/platform/gui/gdi_p.h"

namespace orlex::gdi {

// The pixels a context draws on during one call. Coordinates in `clip` and `bound` are image
// coordinates; device point (0,0) is image point `origin`.
struct Target {
    QImage* img = nullptr;
    QPoint origin;
    std::vector<QRect> rects;  // the clip as rectangles, image coordinates
    QRect bound;               // their bounding box
    bool window = false;       // a window surface: report touched pixels
    QRect touched;             // grows as pixels are written
    Bitmap* dib = nullptr;     // a DIB section drawn on: its block follows at Release

    bool Contains(int ix, int iy) const {
        if (!bound.contains(ix, iy)) return false;
        if (rects.size() == 1) return true;
        for (const QRect& r : rects)
            if (r.contains(ix, iy)) return true;
        return false;
    }
    std::uint32_t* Row(int iy) const { return reinterpret_cast<std::uint32_t*>(img->scanLine(iy)); }
    void Touch(const QRect& r) { touched = touched.isNull() ? r : touched.united(r); }
};

// Finds the pixels of the context and its clip for this call; false when there is nothing
// to draw on (invalid or hidden window, empty clip).
bool Acquire(Dc& dc, Target& t);
// Reports touched window pixels to the presenter.
void Release(Target& t);

// Device <-> logical transforms of a context.
POINT LpToDp(const Dc& dc, POINT p);
POINT DpToLp(const Dc& dc, POINT p);
int ScaleLenX(const Dc& dc, int len);  // a logical x length in device pixels
int ScaleLenY(const Dc& dc, int len);

// Colour of a COLORREF in this context (palette index colours looked up).
std::uint32_t ResolveColor(const Dc& dc, COLORREF c);

// Writes a mask (Grayscale8, non-zero = covered) placed with its (0,0) at device point `at`
// in one colour through a line raster operation.
void BlendMask(Target& t, const QImage& mask, QPoint at, std::uint32_t color, const Rop2& rop);
// Fills device-coordinate spans with a brush through the context's raster operation.
void FillSpansWithBrush(Dc& dc, Target& t, const std::vector<Span>& spans, HBRUSH brush, int rop2);
// Fills a device rectangle with a solid colour, raster operation copy (fast path).
void FillSolidDevice(Target& t, QRect r, std::uint32_t color);

}  // namespace orlex::gdi
