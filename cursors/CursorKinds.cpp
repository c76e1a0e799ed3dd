#include "cursors/CursorKinds.h"

#include <vector>

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
    // The view makes its tip marker itself; AddCursor makes none.
    {kCursorTip, "CTipCursor", nullptr, nullptr},
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

const CursorKind* BuiltInKind(int type)
{
    for (const CursorKind& k : kKinds)
        if (k.type == type) return &k;
    return nullptr;
}

// Rows added at run time; window thread only, like the views that read them.
std::vector<CursorKind>& AddedKinds()
{
    static std::vector<CursorKind> added;
    return added;
}

}  // namespace

bool RegisterCursorKind(const CursorKind& kind)
{
    const CursorKind* own = BuiltInKind(kind.type);
    if (own && own->make) return false;
    UnregisterCursorKind(kind.type);
    AddedKinds().push_back(kind);
    return true;
}

void UnregisterCursorKind(int type)
{
    auto& added = AddedKinds();
    for (auto it = added.begin(); it != added.end();) it = it->type == type ? added.erase(it) : it + 1;
}

const CursorKind* FindCursorKind(int type)
{
    for (const CursorKind& k : AddedKinds())
        if (k.type == type) return &k;
    return BuiltInKind(type);
}

const CRuntimeClass* CursorQueryClass(int type)
{
    const CursorKind* k = FindCursorKind(type);
    return k && k->className ? CRuntimeClass::FromName(k->className) : nullptr;
}
