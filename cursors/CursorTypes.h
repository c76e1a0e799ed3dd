// The kinds of cursor a host offers: one flag and one menu label per kind. The frame's
// attribute record derives from it, and the view filters its cursor list by it.
#pragma once

#include "foundation/platform/afxstr.h"

struct IMAGE_CURSOR_TYPES {
    // Number of kinds with a flag and a label (every type id but the tip and the two notices).
    static constexpr int kCount = 18;

    // Flags all 0; labels the kinds' own menu texts ("&Box", "&Square Box", ...).
    IMAGE_CURSOR_TYPES();

    // The flag of a cursor type id; 0 for an id without one (8, 9, 10, unknown ids).
    int IsCursorTypeSet(int type) const;
    // Clears every flag; the labels stay.
    void Reset();
    // The position of a type id among the flags and labels, -1 for an id without one.
    static int FlagIndex(int type);

    int m_nTypes[kCount];
    CString m_strLabels[kCount];
};
