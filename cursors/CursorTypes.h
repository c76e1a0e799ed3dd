// The kinds of measuring cursor as a host names them: one flag and one menu label per kind.
// The view takes the record as a filter on a cursor's type id (GetNumCursors,
// GetCursorNextPosition); the frame's attributes derive from it and build their menu rows
// from the flags and labels.
#pragma once

#include "foundation/platform/afxstr.h"

// Type ids of cursors. 9 and 10 occur only in the view's own notices (a cursor removed,
// cursors cleared); 8 is the view's tip marker; 129 and 130 make linked lines, which then
// count as 1 and 2.
enum : int {
    kCursorBox = 0,
    kCursorVertLine = 1,
    kCursorHorzLine = 2,
    kCursorRotBox = 3,
    kCursorRotLine = 4,
    kCursorCross = 5,
    kCursorDiagonalBox = 6,
    kCursorSquareBox = 7,
    kCursorTip = 8,
    kCursorRemoved = 9,
    kCursorsCleared = 10,
    kCursorCrossBox = 11,
    kCursorPolyline = 12,
    kCursorPolygon = 13,
    kCursorHorzCalibrate = 14,
    kCursorVertCalibrate = 15,
    kCursorTextBox = 16,
    kCursorRoi = 17,
    kCursorPanZoomBox = 18,
    kCursorVertLinked = 129,
    kCursorHorzLinked = 130,
};

struct IMAGE_CURSOR_TYPES {
    static constexpr int kCount = 18;

    // Made with every flag 0 and the standard labels.
    IMAGE_CURSOR_TYPES();

    // The flag position of a type id (0..17), -1 for an id without one (8, 9, 10, others).
    static int FlagIndex(int type);
    // The flag of a type id; 0 for an id without a flag.
    int IsCursorTypeSet(int type) const;
    // Sets the flag of a type id; an id without a flag does nothing.
    void SetCursorType(int type, int on);
    // The label of a type id, null for an id without one.
    const char* GetLabel(int type) const;
    // Clears every flag; the labels stay.
    void Reset();

    int m_nTypes[kCount];
    CString m_strLabels[kCount];
};
