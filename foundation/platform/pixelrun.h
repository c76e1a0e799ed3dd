// Runs of pixels read or written in one step: a row or a column of a device context,
// with the context's mapping and clip, for code that keeps what it draws over (a plot
// marker saves the column it covers and puts it back when it moves).
#pragma once

#include "foundation/platform/wintypes.h"

namespace orlex {

// Reads count pixels from logical point (x, y) onward, one unit right (vertical false) or
// down (vertical true) each, into out: what GetPixel would give for each, CLR_INVALID
// where the clip or the surface doesn't reach. Returns how many were inside.
int ReadPixelRun(HDC hdc, int x, int y, bool vertical, int count, COLORREF* out);
// Writes in[0..count) along the same run as SetPixel would (entries of CLR_INVALID leave
// their pixel as it is). Returns how many were written.
int WritePixelRun(HDC hdc, int x, int y, bool vertical, int count, const COLORREF* in);

}  // namespace orlex
