// The record by which a cursor reports its place, in data pixels and in units. Callers zero
// it before a cursor fills it. The view reads it in its cursor notices and sends its own
// notices with `type` 9 (one cursor removed) or 10 (cursors cleared).
#pragma once

#include "foundation/platform/wintypes.h"

class CBaseCursor;

struct CURSOR_POS {
    int type;
    int x1, y1, x2, y2;
    double dX1, dY1, dX2, dY2;
    CBaseCursor* pCursor;
    CPoint corners[4];
    double dAngle;
    float fX1, fY1, fX2, fY2;
    int nZoomFlag;
};
