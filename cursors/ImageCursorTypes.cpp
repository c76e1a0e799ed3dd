#include "cursors/ImageCursorTypes.h"

namespace {

// Type id of each position, in flag order.
constexpr int kTypeOfKind[kCursorKindCount] = {0, 7, 3, 6, 11, 1, 2, 129, 130, 4, 12, 13, 5, 14, 15, 16, 17, 18};

constexpr const char* kDefaultLabels[kCursorKindCount] = {
    "&Box",           "&Square Box",       "&Rotating Box",       "&Diagonal Box",       "&Cross Box",
    "&Vertical Line", "&Horizontal Line",  "&Vert Linked Line",   "&Horz Linked Line",   "&Rotating Line",
    "P&olyline",      "N-sided Polygon",   "&Cross",              "Horz Calibrate Line", "Vert Calibrate Line",
    "Text Box",       "New Sorvane ROI",   "New Pan&Zoom Box",
};

}  // namespace

IMAGE_CURSOR_TYPES::IMAGE_CURSOR_TYPES()
{
    for (int i = 0; i < kCursorKindCount; ++i) {
        m_nCursorTypes[i] = 0;
        m_strCursorTypes[i] = kDefaultLabels[i];
    }
}

int IMAGE_CURSOR_TYPES::KindIndex(int type)
{
    for (int i = 0; i < kCursorKindCount; ++i)
        if (kTypeOfKind[i] == type) return i;
    return -1;
}

int IMAGE_CURSOR_TYPES::IsCursorTypeSet(int type) const
{
    const int i = KindIndex(type);
    return i < 0 ? 0 : m_nCursorTypes[i];
}

void IMAGE_CURSOR_TYPES::Reset()
{
    for (int& f : m_nCursorTypes) f = 0;
}
