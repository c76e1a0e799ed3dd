// The frame's remembered settings: which cursor kinds and menu offers a host allows, the
// scan line marker switch, and what new cursors of the view get. Copied by value; a host
// reads and writes the fields directly.
#pragma once

#include "cursors/CursorTypes.h"

struct IMAGE_ATTRIBUTES : public IMAGE_CURSOR_TYPES {
    // Replaces the menu label of one cursor type id; an id without a label does nothing.
    // text null gives an empty label.
    void SetString(int type, const char* text);

    int m_bDeleteLastOnNew = 0;
    int m_bMenuCopy = 1;
    int m_bMenuExport = 0;
    int m_bMenuChannel = 0;
    // Offer the marker's configuration and draw the marker of a live scan.
    int m_bScanLine = 0;
    int m_nReserved = 0;
    int m_nMode = 4;
    int m_nAllowableCursors = -1;
};
