// Pure arithmetic of the image frame: where the frame, the image, the colour bar and the
// line mark go, and the texts of the title and the z labels. Nothing here touches a
// window; CBorderCon feeds these functions its state and draws with the results.
//
// Rectangles are in the frame's client coordinates unless said otherwise; right and bottom
// are exclusive as in every CRect.
#pragma once

#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

namespace orlex::frame {

// Space between the frame's client rectangle and the image.
struct Margins {
    int left = 5;
    int top = 23;
    int right = 52;
    int bottom = 55;
};

// The margins a frame starts with: right 30 and bottom 38 in real time, 52 and 55 off-line.
Margins DefaultMargins(bool realTime);

// Truncation toward zero that saturates at the ends of int; NaN gives 0.
int TruncSat(double v);

// The frame's rectangle of a sizeable frame given no rectangle: the parent's client
// rectangle less the left margin in x and the top margin in y, made square by cutting the
// longer side (right edge when wider than high, else the bottom edge).
CRect SizeableFrameRect(const CRect& parentClient, const Margins& m);
// A placeholder's rectangle made high enough for a square image of its width.
CRect SquaredFrameRect(const CRect& placeholder, const Margins& m);

// The image area of a frame of this client size. The right and bottom edges keep one pixel
// of the margin more (width - right margin - 1). A disabled colour bar with a square image
// makes the area a square whose side is the nearest multiple of 4 of its width. A frame
// smaller than its margins gets an empty area at the top left margin corner.
CRect ImageArea(const CSize& client, const Margins& m, bool barDisabled, double aspect);

// The view's rectangle for an image of width-to-height `aspect` inside image area g: the
// whole area for 1.0, else centred across the narrower side. Any aspect (0, negative, NaN,
// huge) gives a size between 0 and g's.
CRect FitAspect(const CRect& g, double aspect, const Margins& m);

// True when v is within 1e-15 of 1.0 (a square image).
bool IsSquareAspect(double v);

// The colour bar: as made by Create (full height between the top margins), and as laid out
// on a resize (full height with a real-time frame or a relative bar, else leaving 30 pixels
// above and below for the z labels). Sizes are not below 0.
CRect ColorBarCreateRect(const CSize& client, const Margins& m);
CRect ColorBarLayoutRect(const CSize& client, const Margins& m, bool fullHeight);

// The right margin of a frame: real-time frame or relative bar 2 * left + 20; else room for
// the longer of the two data scale labels, 4 per character + 20.
int RightMargin(bool fullHeightBar, const Margins& m, const CString& labelMin, const CString& labelMax);

// The z label of a value: the engineering form with one decimal in `units`, or "%.3f"
// without units (empty or "UNIT").
bool NoUnits(const CString& units);
CString ZLabel(double v, const CString& units);

// The title text: the host's title (with "%d: " of channel + 1 before it when there is more
// than one channel), or "Channel %d" / "Channel %d of %d" without a title.
CString TitleText(const CString& title, int channel, int channels);

// Where the title goes: below the image, at the top left over the margin, or nowhere.
// viewWidth is the view's width, textWidth the widths of "0.0", the size text and the
// title together.
enum class TitlePlace { Below, Top, None };
TitlePlace PlaceTitle(int viewWidth, bool zoomButtonsShown, long long textWidth);

// The y of the mark of line `line` (block rows count from the bottom) of an image of `rows`
// rows, with zoom record z (rows from the top) shown in the view rectangle r; limited to
// r.top .. r.bottom. Any line number is taken (the frame stores it before the view checks it).
int LineMarkY(int rows, long long line, const CRect& z, const CRect& r);

// The triangle of the line mark at y: from the frame's left edge to the view, pointing up
// with a non-zero direction, else down.
void LineMarkTriangle(int y, const CRect& r, const Margins& m, int direction, POINT out[3]);

}  // namespace orlex::frame
