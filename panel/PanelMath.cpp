#include "panel/PanelMath.h"

#include <locale.h>
#include <stdlib.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>
#include <cstring>

namespace orlex::panel {

namespace {

// trunc(v), except that a v a few rounding steps short of an integer (away from zero)
// counts as that integer: pos / run * run is pos - 1 after truncation for some pairs
// (run 49, pos 1), and a thumb must keep its pixel through such a round trip.
double TruncNear(double v) {
    const double nudge = std::fabs(v) * 1e-12 + 1e-12;
    return std::trunc(v + std::copysign(nudge, v));
}

long long ToLongLong(double v) {
    // Past the int range a position is off every window anyway; the bound keeps the
    // conversion defined.
    constexpr double kLimit = 4.0e9;
    return static_cast<long long>(std::clamp(v, -kLimit, kLimit));
}

int ToInt(long long v) { return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX)); }

}  // namespace

long long SlideRun(int slideMin, int slideMax, int thumbWidth) {
    return static_cast<long long>(slideMax) - slideMin - thumbWidth;
}

int ClampThumb(long long x, int slideMin, int slideMax, int thumbWidth) {
    const long long hi = static_cast<long long>(slideMax) - thumbWidth;
    if (x > hi) x = hi;
    if (x < slideMin) x = slideMin;
    return ToInt(x);
}

double SlideFraction(int thumbPos, int slideMin, int slideMax, int thumbWidth) {
    const long long run = SlideRun(slideMin, slideMax, thumbWidth);
    if (run <= 0) return 0.0;
    return static_cast<double>(static_cast<long long>(thumbPos) - slideMin) / static_cast<double>(run);
}

int ThumbFromFraction(double fraction, int slideMin, int slideMax, int thumbWidth, int current) {
    const double v = static_cast<double>(SlideRun(slideMin, slideMax, thumbWidth)) * fraction;
    if (std::isnan(v)) return current;
    return ClampThumb(ToLongLong(TruncNear(v)) + slideMin, slideMin, slideMax, thumbWidth);
}

UINT SlideIndex(double fraction, UINT count) {
    if (count == 0) return 0xFFFFFFFFu;
    const double i = TruncNear(fraction * count);
    if (!(i > 0.0)) return 0;  // NaN too
    return i >= count ? count - 1 : static_cast<UINT>(i);
}

int OptionThumb(UINT option, UINT count, int slideMin, int slideMax, int current) {
    if (count == 0) return current;
    const double width = static_cast<double>(static_cast<long long>(slideMax) - slideMin);
    return ToInt(ToLongLong(std::trunc(static_cast<double>(option) / count * width)));
}

ZoomWindow ZoomAround(double fraction, double value, double absMin, double absMax) {
    const double k = 1.0 - fraction * 0.99;
    const double half = k * (absMax - absMin) * 0.5;
    const double lo = value - half, hi = value + half;
    double shift = 0.0;
    if (hi > absMax)
        shift = absMax - hi;
    else if (absMin > lo)
        shift = absMin - lo;
    // Only k of the overshoot: a narrow window near an end keeps part of its overshoot
    // and is cut by the clamping below.
    shift *= k;
    ZoomWindow z;
    z.rangeMin = lo + shift > absMin ? lo + shift : absMin;
    z.rangeMax = hi + shift < absMax ? hi + shift : absMax;
    z.span = hi - lo;
    return z;
}

double ClampTyped(double x, double absMin, double absMax) {
    if (std::isnan(x)) x = 0.0;
    if (absMin > x) x = absMin;
    if (x > absMax) x = absMax;
    return x;
}

double ParseNumber(const char* text) {
    if (!text) return 0.0;
    // The toolkit's application takes the numeric locale from the environment; a typed
    // value is read as the panel writes it, with '.'.
    static const locale_t c = newlocale(LC_ALL_MASK, "C", static_cast<locale_t>(nullptr));
    return c ? strtod_l(text, nullptr, c) : std::strtod(text, nullptr);
}

CString FormatFixed(double value, int decimals) {
    char buf[400];
    const auto r = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::fixed, decimals);
    if (r.ec != std::errc()) return CString();
    return CString(buf, static_cast<int>(r.ptr - buf));
}

std::vector<std::string> TextPieces(const char* text) {
    std::vector<std::string> out;
    std::string rest = text ? text : "";
    for (;;) {
        const std::size_t lf = rest.find('\n');
        if (lf == std::string::npos || lf <= 1) break;
        out.push_back(rest.substr(0, lf));
        rest.erase(0, lf + 1);
    }
    out.push_back(rest);
    return out;
}

CompoundLayout LayoutCompound(int width, SIZE label, SIZE minText, SIZE maxText, SIZE edit, int largeHeight,
                              int smallHeight, int smallTrackWidth) {
    const int wL = std::max(0, width - static_cast<int>(edit.cx) - 5);
    const int top = label.cy + minText.cy;  // the large slider's and the edit's top
    CompoundLayout l;
    l.label = RECT{0, 0, width, label.cy};
    l.minText = RECT{0, label.cy, minText.cx, label.cy + minText.cy};
    l.large = RECT{0, top, wL, top + largeHeight};
    l.small = RECT{wL - smallTrackWidth, top + largeHeight, wL, top + largeHeight + smallHeight};
    l.edit = RECT{wL + 5, top, wL + 5 + edit.cx, top + edit.cy};
    l.maxText = RECT{wL - maxText.cx, label.cy, wL, label.cy + maxText.cy};
    return l;
}

bool OnLeftHalf(int x, int faceWidth) { return x <= faceWidth / 2; }

bool OverGroupButton(POINT p, POINT button, int buttonWidth, int buttonHeight) {
    return p.x <= static_cast<long long>(button.x) + buttonWidth && p.y <= static_cast<long long>(button.y) + buttonHeight;
}

POINT GroupLabelLine(int k, bool vertical, POINT button, int buttonWidth, int buttonHeight, int fontHeight) {
    // bmHeight / 2 in integers, the rest in doubles, truncated.
    const double lift = fontHeight / 2.4;
    if (vertical) {
        const int x0 = static_cast<int>(std::trunc(button.x + buttonHeight / 2 - lift));
        return POINT{x0 + fontHeight * (k + 1), buttonHeight + 15};
    }
    const int y0 = static_cast<int>(std::trunc(buttonHeight / 2 + button.y - lift));
    return POINT{buttonWidth + 15, y0 + fontHeight * k};
}

SIZE GroupSize(bool expanded, bool vertical, UINT width, UINT height, UINT collapseWidth, UINT collapseHeight) {
    // A window wider or higher than the platform's 16-bit coordinates could not be shown
    // anyway; the bound keeps a stray size from reaching the drawing code.
    const auto held = [](UINT v) { return static_cast<LONG>(std::min<UINT>(v, 32767)); };
    if (expanded) return SIZE{held(width), held(height)};
    return vertical ? SIZE{held(collapseWidth), held(height)} : SIZE{held(width), held(collapseHeight)};
}

}  // namespace orlex::panel
