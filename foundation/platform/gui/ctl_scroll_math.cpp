#include <algorithm>
#include <cstdlib>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/ctl_scroll_p.h"

namespace orlex::detail {

int ScrollMaxPos(int minPos, int maxPos, UINT page) {
    const int m = maxPos - (page > 0 ? static_cast<int>(page) - 1 : 0);
    return std::max(minPos, m);
}

ScrollGeometry ComputeScroll(int length, int thickness, int minPos, int maxPos, UINT page, int pos) {
    ScrollGeometry g;
    g.arrow = std::max(0, std::min(thickness, length / 2));
    g.trackStart = g.arrow;
    g.trackEnd = length - g.arrow;
    const int track = g.trackEnd - g.trackStart;
    const long long range = std::max(1LL, static_cast<long long>(maxPos) - minPos + 1);
    int thumb = page > 0 ? static_cast<int>(std::min<long long>(track, track * static_cast<long long>(page) / range))
                         : std::min(thickness, track);
    thumb = std::max(thumb, 8);
    if (track < 8 || thumb > track) {
        g.thumbStart = g.thumbEnd = g.trackStart;  // no room for a thumb
        return g;
    }
    const int top = ScrollMaxPos(minPos, maxPos, page);
    const long long span = static_cast<long long>(top) - minPos;
    const int clamped = std::max(minPos, std::min(pos, top));
    const int travel = track - thumb;
    g.thumbStart = g.trackStart + (span > 0 ? static_cast<int>((clamped - minPos) * static_cast<long long>(travel) / span) : 0);
    g.thumbEnd = g.thumbStart + thumb;
    return g;
}

ScrollPart HitScrollPart(const ScrollGeometry& g, int coord, int length) {
    if (coord < g.arrow) return kScrollArrowLow;
    if (coord >= length - g.arrow) return kScrollArrowHigh;
    if (g.thumbEnd > g.thumbStart && coord >= g.thumbStart && coord < g.thumbEnd) return kScrollThumb;
    if (g.thumbEnd == g.thumbStart) return kScrollNone;
    return coord < g.thumbStart ? kScrollPageLow : kScrollPageHigh;
}

UINT ScrollStepCode(ScrollPart p) {
    switch (p) {
    case kScrollArrowLow: return SB_LINEUP;
    case kScrollArrowHigh: return SB_LINEDOWN;
    case kScrollPageLow: return SB_PAGEUP;
    case kScrollPageHigh: return SB_PAGEDOWN;
    default: return 0;
    }
}

int ScrollPosFromThumb(const ScrollGeometry& g, int thumbStart, int minPos, int maxPos, UINT page) {
    const int travel = (g.trackEnd - g.trackStart) - (g.thumbEnd - g.thumbStart);
    const int top = ScrollMaxPos(minPos, maxPos, page);
    if (travel <= 0) return minPos;
    const long long off = std::max(0, std::min(thumbStart - g.trackStart, travel));
    const long long span = static_cast<long long>(top) - minPos;
    return minPos + static_cast<int>((off * span + travel / 2) / travel);
}

int TrackbarThumbCenter(int length, int minPos, int maxPos, int pos) {
    const int channel = std::max(1, length - 2 * kTrackMargin);
    const long long span = static_cast<long long>(maxPos) - minPos;
    if (span <= 0) return kTrackMargin;
    const long long p = std::max<long long>(minPos, std::min<long long>(pos, maxPos)) - minPos;
    return kTrackMargin + static_cast<int>((p * channel + span / 2) / span);
}

int TrackbarPosFromPoint(int length, int minPos, int maxPos, int coord) {
    const int channel = std::max(1, length - 2 * kTrackMargin);
    const long long span = static_cast<long long>(maxPos) - minPos;
    if (span <= 0) return minPos;
    const long long off = std::max(0, std::min(coord - kTrackMargin, channel));
    return minPos + static_cast<int>((off * span + channel / 2) / channel);
}

int UpDownStep(int pos, int lower, int upper, int delta, bool wrap) {
    const int lo = std::min(lower, upper), hi = std::max(lower, upper);
    long long p = static_cast<long long>(pos) + delta;
    if (p > hi) p = wrap ? lo : hi;
    if (p < lo) p = wrap ? hi : lo;
    return static_cast<int>(p);
}

int UpDownAcceleration(ULONGLONG heldMs) {
    if (heldMs >= 5000) return 20;
    if (heldMs >= 2000) return 5;
    return 1;
}

std::string BuddyText(int value, bool thousands) {
    std::string digits = std::to_string(std::llabs(static_cast<long long>(value)));
    if (thousands)
        for (int i = static_cast<int>(digits.size()) - 3; i > 0; i -= 3) digits.insert(static_cast<size_t>(i), ",");
    return value < 0 ? "-" + digits : digits;
}

}  // namespace orlex::detail
