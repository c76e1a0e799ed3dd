#include "cursors/CursorKinds.h"

#include "cursors/CrossCursor.h"
#include "imageview/ImageView.h"

namespace {

CBaseCursor* MakeCross(CImageView* view, const CursorRequest& r)
{
    auto* c = new CCrossCursor;
    if (r.crossSize > 0) c->SetCrossSize(r.crossSize);
    c->Create(view, r.p0);
    return c;
}

// One row per type id the view may be asked for. Kinds still to come have their class
// names (typed queries find nothing until the class exists) and no maker.
const CursorKind kKinds[] = {
    {kCursorBox, "CBoxCursor", nullptr, nullptr},
    {kCursorVertLine, "CLineCursor", nullptr, nullptr},
    {kCursorHorzLine, "CLineCursor", nullptr, nullptr},
    {kCursorRotBox, "CRBoxCursor", nullptr, nullptr},
    {kCursorRotLine, "CRotLine", nullptr, nullptr},
    {kCursorCross, "CCrossCursor", MakeCross, nullptr},
    {kCursorDiagonalBox, "CBoxCursor", nullptr, nullptr},
    {kCursorSquareBox, "CSquareBox", nullptr, nullptr},
    {kCursorCrossBox, "CBoxCursor", nullptr, nullptr},
    {kCursorPolyline, "CPolylineCursor", nullptr, nullptr},
    {kCursorPolygon, "CPolylineCursor", nullptr, nullptr},
    {kCursorHorzCalibrate, "CCalibrateLine", nullptr, nullptr},
    {kCursorVertCalibrate, "CCalibrateLine", nullptr, nullptr},
    {kCursorTextBox, "CTextBox", nullptr, nullptr},
    {kCursorRoi, "CBoxCursor", nullptr, nullptr},
    {kCursorPanZoomBox, "CSquareBox", nullptr, nullptr},
    {kCursorVertLinked, nullptr, nullptr, nullptr},
    {kCursorHorzLinked, nullptr, nullptr, nullptr},
};

}  // namespace

const CursorKind* FindCursorKind(int type)
{
    for (const CursorKind& k : kKinds)
        if (k.type == type) return &k;
    return nullptr;
}

const CRuntimeClass* CursorQueryClass(int type)
{
    const CursorKind* k = FindCursorKind(type);
    return k && k->className ? CRuntimeClass::FromName(k->className) : nullptr;
}
