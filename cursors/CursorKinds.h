// The table of cursor kinds by type id: how the view makes a cursor of an id, how it presets
// the drag of a cursor made by a press, and which class its typed queries count. The view
// reaches the kinds only through this table and never names a concrete class; each kind of
// this folder has its row in CursorKinds.cpp, the one place that names them all.
//
// The table also keeps every kind linked into a program that uses the view: a static archive
// drops object files nothing refers to, and with them their runtime classes, which reading a
// file needs. The rows refer to every kind.
//
// Adding a kind: write its class in this folder; in CursorKinds.cpp add a maker (new object,
// its own Create from the request, return the object whether or not its window exists) and,
// if a press should already drag it, a preset; fill in the rows of its type ids.
#pragma once

#include "foundation/platform/afxwin.h"

class CBaseCursor;
class CImageView;

// What AddCursor asks for, in view client pixels.
struct CursorRequest {
    int type = 0;
    CRect rect{0, 0, 0, 0};       // the given rectangle, or the bounds of the points
    double angle = 0.0;           // rotating kinds
    const CPoint* points = nullptr;  // count points (may be null with count 0)
    int count = 0;
    CPoint p0{0, 0};              // points[0], or (0, 0)
    DWORD style = 2;              // the view's style for new cursors
    int crossSize = 0;            // the view's cross size, used when above 0
    HICON rotCursor = nullptr;    // the view's pointer for rotating boxes
};

// Makes the object and its window; returns the object (the view deletes one without a
// window) or null when nothing was made.
using CursorMaker = CBaseCursor* (*)(CImageView* view, const CursorRequest& request);
// Sets the drag state of a cursor that a press has just made and given the mouse.
using CursorPreset = void (*)(CBaseCursor* cursor);

struct CursorKind {
    int type;
    // The class that typed queries count by kind (IsKindOf), by its runtime class name;
    // null: such queries count nothing.
    const char* className;
    // Null: the id makes nothing.
    CursorMaker make;
    CursorPreset preset;
};

// Adds the row of a kind the library doesn't make (a host's own kind, or a test's) for a
// type id without a maker of the library; replaces an earlier added row of the id. False
// when the library makes that id.
bool RegisterCursorKind(const CursorKind& kind);
// Removes an added row.
void UnregisterCursorKind(int type);

// The row of a type id (added rows first), or null for an id that has none.
const CursorKind* FindCursorKind(int type);
// The runtime class that typed queries of the id count, or null.
const CRuntimeClass* CursorQueryClass(int type);
