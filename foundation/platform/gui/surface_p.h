// Private to the window layer: how device contexts find the pixels of a window.
//
// Every top-level window owns one persistent image (its "virtual screen"); a child window
// is a clipped part of its top-level's image. Painting and GetDC drawing both go there and
// stay until drawn over; Qt only presents the image. The window side (window table,
// stacking, visibility) answers WindowDrawTarget; the drawing side (CDC and GDI objects)
// draws into the target and reports what it touched with SurfaceTouched.
#pragma once

#include <QImage>
#include <QPoint>
#include <QRegion>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

struct DrawTarget {
    QImage* image = nullptr;  // Format_RGB32 pixels of the top-level window; not owned
    QPoint origin;            // device point (0,0) of the context, in image coordinates
    QRegion visible;          // where the context may draw, in image coordinates
};

// The target of a window's client area (client = true) or of its whole window rectangle.
// visible is the area clipped by every ancestor's client area, less the siblings above it
// when it has WS_CLIPSIBLINGS (so overlapping transparent children draw over each other),
// less its own children when it has WS_CLIPCHILDREN. False for
// an invalid or hidden window (the target is then empty).
bool WindowDrawTarget(HWND hwnd, bool client, DrawTarget& out);

// For BeginPaint: the window's update region in client coordinates, validated as it is
// taken (the window then has nothing left to paint). erase tells whether the region was
// invalidated with erasing asked for. Empty for an invalid window.
QRegion TakeUpdateRegion(HWND hwnd, bool* erase);

// Tells the presenter that these pixels of the top-level image changed (image coordinates).
void SurfaceTouched(const QImage* image, const QRect& rect);

}  // namespace orlex::detail
