// Private: the geometry and arithmetic of scroll bars, trackbars and up-down controls,
// apart from their windows and drawing. Lengths run along the control's axis.
#pragma once

#include <string>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

// Parts of a scroll bar along its axis, in pixels from its start.
struct ScrollGeometry {
    int arrow = 0;                    // length of each arrow button
    int trackStart = 0, trackEnd = 0; // the track between the arrows
    int thumbStart = 0, thumbEnd = 0; // empty when the bar is too short for a thumb
};

// The bar's parts for a range minPos..maxPos, page size (0: none) and position.
// The thumb is at least 8 pixels long; its travel spans the positions minPos to
// maxPos - (page - 1).
ScrollGeometry ComputeScroll(int length, int thickness, int minPos, int maxPos, UINT page, int pos);
// The parts of a scroll bar a press can hit, in order along the axis.
enum ScrollPart { kScrollNone, kScrollArrowLow, kScrollPageLow, kScrollThumb, kScrollPageHigh, kScrollArrowHigh };
// The part at coord (pixels from the bar's start) of a bar `length` long; kScrollNone on the
// track of a bar too short for a thumb, where a press does nothing.
ScrollPart HitScrollPart(const ScrollGeometry& g, int coord, int length);
// Arrows and page parts step again while held; the thumb drags instead.
inline bool ScrollPartRepeats(ScrollPart p) {
    return p == kScrollArrowLow || p == kScrollArrowHigh || p == kScrollPageLow || p == kScrollPageHigh;
}
// The step an arrow or page part repeats (SB_LINEUP .. SB_PAGEDOWN); 0 for the others.
UINT ScrollStepCode(ScrollPart p);

// The position whose thumb would start at thumbStart (pixels), rounded and clamped.
int ScrollPosFromThumb(const ScrollGeometry& g, int thumbStart, int minPos, int maxPos, UINT page);
// The largest position the bar can take.
int ScrollMaxPos(int minPos, int maxPos, UINT page);

// Trackbars: the channel runs from kTrackMargin to length - kTrackMargin.
constexpr int kTrackMargin = 8;
constexpr int kTrackThumb = 11;  // thumb width along the axis
int TrackbarThumbCenter(int length, int minPos, int maxPos, int pos);
// The position nearest to the pixel, clamped to the range.
int TrackbarPosFromPoint(int length, int minPos, int maxPos, int coord);

// Holding the mouse on a scroll arrow, a page area or an up-down half repeats the step: the
// first repeat after the delay, then one each period (milliseconds on the layer clock).
constexpr UINT kScrollRepeatDelay = 200;
constexpr UINT kScrollRepeatPeriod = 50;
constexpr UINT kSpinRepeatDelay = 500;
constexpr UINT kSpinRepeatPeriod = 100;
// The id of the repeat timer a control sets on its own window.
constexpr UINT_PTR kRepeatTimer = 0x5C01;
// The id of the repeat timer a window's own scroll bars set on the window; its WM_TIMER goes
// to the layer's timer procedure, never to the window's procedure.
constexpr UINT_PTR kFrameRepeatTimer = 0x5C02;
// The up-down's step after the button has been held heldMs: 1, from 2 s on 5, from 5 s on 20
// (the platform's default accelerations).
int UpDownAcceleration(ULONGLONG heldMs);

// Up-down: the position after a step of delta within lower..upper (either order), wrapping
// around with wrap, else held at the ends.
int UpDownStep(int pos, int lower, int upper, int delta, bool wrap);
// The text a buddy shows: decimal, with thousands separated by ',' unless told not to.
std::string BuddyText(int value, bool thousands);

}  // namespace orlex::detail
