#include "cursors/CursorTypes.h"

namespace {

// Type id of each position, in flag order.
constexpr int kTypeOfKind[IMAGE_CURSOR_TYPES::kCount] = {0, 7, 3, 6, 11, 1, 2, 129, 130, 4, 12, 13, 5, 14, 15, 16, 17, 18};

constexpr const char* kDefaultLabels[IMAGE_CURSOR_TYPES::kCount] = {
    "&Box",           "&Square Box",       "&Rotating Box",       "&Diagonal Box",       "&Cross Box",
    "&Vertical Line", "&Horizontal Line",  "&Vert Linked Line",   "&Horz Linked Line",   "&Rotating Line",
    "P&olyline",      "N-sided Polygon",   "&Cross",              "Horz Calibrate Line", "Vert Calibrate Line",
    "Text Box",       "New Sorvane ROI",   "New Pan&Zoom Box",
};

}  // namespace

IMAGE_CURSOR_TYPES::IMAGE_CURSOR_TYPES()
{
    for (int i = 0; i < IMAGE_CURSOR_TYPES::kCount; ++i) {
        m_nTypes[i] = 0;
        m_strLabels[i] = kDefaultLabels[i];
    }
}

int IMAGE_CURSOR_TYPES::FlagIndex(int type)
{
    for (int i = 0; i < IMAGE_CURSOR_TYPES::kCount; ++i)
        if (kTypeOfKind[i] == type) return i;
    return -1;
}

int IMAGE_CURSOR_TYPES::IsCursorTypeSet(int type) const
{
    const int i = FlagIndex(type);
    return i < 0 ? 0 : m_nTypes[i];
}

void IMAGE_CURSOR_TYPES::Reset()
{
    for (int& f : m_nTypes) f = 0;
}
