// Pure arithmetic of the image view: zoom rectangles in data pixels, the snapping of a zoom
// to round physical widths, pan offsets, the nearest-neighbour stretch of a zoom rectangle
// over the window and the strips of a live scan. Nothing here touches a window; the view
// feeds these functions its state and draws with the results.
//
// Data pixels: x from 0 to cols, y from 0 to rows, y counted from the top of the shown
// image. Records are left, top, right, bottom (CRect); the one-zoom rectangle is x, y,
// width, height in floats (Gdiplus::RectF).
#pragma once

#include "foundation/platform/wintypes.h"

#ifndef ORLEX_GDIPLUS_RECTF_DEFINED
#define ORLEX_GDIPLUS_RECTF_DEFINED
namespace Gdiplus {
// A plain float rectangle: origin and size.
struct RectF {
    float X = 0.0f;
    float Y = 0.0f;
    float Width = 0.0f;
    float Height = 0.0f;
    RectF() = default;
    RectF(float x, float y, float w, float h) : X(x), Y(y), Width(w), Height(h) {}
    bool Equals(const RectF& o) const { return X == o.X && Y == o.Y && Width == o.Width && Height == o.Height; }
};
}  // namespace Gdiplus
#endif

namespace orlex::view {

// Single-precision machine epsilon: a one-zoom rectangle with a width or height not above
// it counts as unset.
constexpr float kZoomEpsilon = 1.1920929e-7f;

// One decade of round mantissas that a one-zoom step snaps the scan width to.
constexpr int kSnapCount = 19;
extern const double kSnapTable[kSnapCount];

// True when the rectangle has a width and height above kZoomEpsilon.
bool IsRectFSet(const Gdiplus::RectF& r);

// A record from a one-zoom rectangle: left/top rounded (trunc(v + 0.5)), right/bottom the
// truncated size added to them.
CRect RecordFromRectF(const Gdiplus::RectF& r);
// The record as x, y, width, height.
Gdiplus::RectF RectFFromRecord(const CRect& r);

// Moves r back inside 0..cols x 0..rows without changing its size (left/top edge wins).
void CheckPan(Gdiplus::RectF& r, int cols, int rows);

// Changes r's width to the next round physical size (steps > 0 smaller, < 0 larger, |steps|
// limited to 5 and used as a stride through the snap table) and its height to ratio times
// it, about r's centre; then limits the size to the image and moves it inside. scanLenX is
// the physical width of the whole image in metres. No change for cols < 1, steps 0 or a
// width not above 0.
void SnapToNext2DigitRect(Gdiplus::RectF& r, int steps, float ratio, int cols, int rows, double scanLenX);

// A zoom box reported in units in which the whole window spans first.right x first.bottom,
// turned into data pixels of the current record. False (r unchanged) when the result is
// less than 3 wide or 3 high; then r is left as computed.
bool MapRelativeRecord(CRect& r, const CRect& first, const CRect& current);

// A one-zoom rectangle given relative to the whole image, mapped into the stored rectangle s.
Gdiplus::RectF MapRelativeRectF(const Gdiplus::RectF& r, const Gdiplus::RectF& s, int cols, int rows);

// One zoom step of the one-zoom mode (wheel, double click, buttons). r is the rectangle
// shown now (set), `at` the mouse point in view pixels or null, client the view's client
// rectangle, aspect the frame's aspect ratio (1.0 without a frame). On true, r holds the
// rectangle to show; false means the step is refused (at the closest zoom, or too small).
bool ZoomStepRect(Gdiplus::RectF& r, int steps, const POINT* at, const RECT& client, double aspect, bool centre,
                  int cols, int rows, double scanLenX);

// The rectangle of a running pan: panRect moved by the mouse's way from start to point
// (dragging right moves the rectangle left), kept inside the image.
Gdiplus::RectF PanRect(const Gdiplus::RectF& panRect, POINT start, POINT point, float scaleX, float scaleY, int cols,
                       int rows);

// A coordinate unpacked from a message word: values above 32767 were negative 16-bit
// values and lose 65535 (so 0xFFFF gives 0).
constexpr int UnwrapPackedCoord(int v) { return v > 32767 ? v - 65535 : v; }
// A point packed into a message parameter: (y << 16) | (x & 0xFFFF).
constexpr LPARAM PackPoint(int x, int y)
{
    return static_cast<LPARAM>(static_cast<DWORD>((static_cast<DWORD>(y) << 16) | (static_cast<DWORD>(x) & 0xFFFF)));
}

// Source index of destination index i when srcLen items are stretched over dstLen by
// nearest neighbour, sampling each destination pixel at its centre. 0 <= i < dstLen.
constexpr int NearestSource(int i, int dstLen, int srcLen)
{
    const long long j = ((2LL * i + 1) * srcLen) / (2LL * dstLen);
    return static_cast<int>(j >= srcLen ? srcLen - 1 : j);
}

// The screen block that setPixels paints for the data run x1..x2 of display row y, with
// zoom record z and client rectangle c; false when the run is outside the zoom.
bool PixelRunBlock(int x1, int y, int x2, const CRect& z, const CRect& c, CRect& block);

// The strip of a live scan (bitmap rows count from the bottom). zLo..zHi are the block rows
// shown, `lines` the rows the strip covers, `direction` non-zero when the strip ends at
// `line` and reaches down. Fills the clamped block rows first..last and the client rows
// yTop..yBot that they cover.
struct ScanStrip {
    int first = 0;
    int last = 0;
    int yTop = 0;
    int yBot = 0;
};
ScanStrip ComputeScanStrip(int line, int lines, int direction, int zLo, int zHi, const CRect& client);

}  // namespace orlex::view
