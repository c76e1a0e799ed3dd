// What the panel controls compute apart from their windows: thumb positions and fractions
// of a slider's run, the zoom window of the compound slider, its child layout, the line
// pieces of a text, and numbers to and from text with '.' whatever the process's locale.
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

namespace orlex::panel {

// The run of a slider's thumb: the slide width less the thumb's width (0 or less when the
// thumb is as wide as the slide or wider).
long long SlideRun(int slideMin, int slideMax, int thumbWidth);

// A thumb's left edge for a wanted x: above slideMax - thumbWidth it takes that bound, then
// below slideMin it takes slideMin (so with no run the thumb stands at slideMin).
int ClampThumb(long long x, int slideMin, int slideMax, int thumbWidth);

// (thumbPos - slideMin) / run: 0.0 at the left end, exactly 1.0 at the right end. 0.0
// when there is no run.
double SlideFraction(int thumbPos, int slideMin, int slideMax, int thumbWidth);

// The thumb position for a fraction of the run: the integer part of run * fraction plus
// slideMin, clamped as ClampThumb. A fraction read from SlideFraction gives the same
// position back. NaN keeps `current`; infinities and huge values go to an end.
int ThumbFromFraction(double fraction, int slideMin, int slideMax, int thumbWidth, int current);

// The option a fraction falls on when the run is cut into `count` equal parts: 0 ..
// count - 1 (the right end is the last). 0xFFFFFFFF for an empty table.
UINT SlideIndex(double fraction, UINT count);

// The thumb position of option `option` of `count`: option / count of the slide width,
// truncated; slideMin is not added and nothing is clamped. `current` when count is 0.
int OptionThumb(UINT option, UINT count, int slideMin, int slideMax, int current);

// The compound slider's current range around `value`, for the small slider at `fraction`
// of its run: k = 1 - fraction * 0.99 of the whole range, centred on the value, pushed
// back by k times its overshoot and clamped to the whole range. `span` is the width before
// the push and the clamping (the divisor of the large slider's fraction).
struct ZoomWindow {
    double rangeMin;
    double rangeMax;
    double span;
};
ZoomWindow ZoomAround(double fraction, double value, double absMin, double absMax);

// A typed number held to absMin .. absMax; NaN (text that reads as no number) counts as 0.
double ClampTyped(double x, double absMin, double absMax);

// atof in the C locale: leading white space, sign, decimal or hexadecimal digits with '.',
// exponent, "inf", "nan"; 0.0 for text without a number or for null.
double ParseNumber(const char* text);

// printf's "%0.<decimals>f" in the C locale ('.' as the decimal point).
CString FormatFixed(double value, int decimals);

// The pieces a text is drawn in, one per line 10 pixels apart: the text is cut at each line
// feed until one stands at position 0 or 1 of the rest, which is then drawn whole (line
// feed included); the last piece is the rest.
std::vector<std::string> TextPieces(const char* text);

// Where the compound slider puts its children in its client area of width W, from their
// present sizes: the label across the top, the range texts below it over the large
// slider's ends, the large slider W - edit width - 5 wide (not less than 0), the small
// slider flush with its right end and as wide as the small track, the edit 5 pixels right
// of the large slider.
struct CompoundLayout {
    RECT label;
    RECT minText;
    RECT large;
    RECT small;
    RECT edit;
    RECT maxText;
};
CompoundLayout LayoutCompound(int width, SIZE label, SIZE minText, SIZE maxText, SIZE edit, int largeHeight,
                              int smallHeight, int smallTrackWidth);

// A switch's click: on when x lies in the left half of its face, the middle pixel
// (width / 2, integer) included.
bool OnLeftHalf(int x, int faceWidth);

// The drop list's row under client y: rows are 15 pixels, the first one pixel short.
constexpr int kListRowHeight = 15;
inline int ListRow(int y) { return (y + 1) / kListRowHeight; }

// The group's collapse button area: from the window's top left corner to the button's
// bottom right, both included (a pointer above or left of the window counts too).
bool OverGroupButton(POINT p, POINT button, int buttonWidth, int buttonHeight);

// Where line k of a group's label starts. Horizontal: right of the button, lines one font
// height apart, the first centred on the button's middle. Vertical (collapsed sideways,
// the text running downward): columns one font height apart below the button.
POINT GroupLabelLine(int k, bool vertical, POINT button, int buttonWidth, int buttonHeight, int fontHeight);

// The group's window size: expanded, or the strip it collapses to (its width for a group
// that collapses sideways, else its height), each held to 0 .. 32767.
SIZE GroupSize(bool expanded, bool vertical, UINT width, UINT height, UINT collapseWidth, UINT collapseHeight);

}  // namespace orlex::panel
