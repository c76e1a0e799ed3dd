#include "cursors/CursorTypes.h"

namespace {

// Type id of each flag position, and the label the position starts with.
struct Row {
    int type;
    const char* label;
};
constexpr Row kRows[IMAGE_CURSOR_TYPES::kCount] = {
    {kCursorBox, "&Box"},
    {kCursorSquareBox, "&Square Box"},
    {kCursorRotBox, "&Rotating Box"},
    {kCursorDiagonalBox, "&Diagonal Box"},
    {kCursorCrossBox, "&Cross Box"},
    {kCursorVertLine, "&Vertical Line"},
    {kCursorHorzLine, "&Horizontal Line"},
    {kCursorVertLinked, "&Vert Linked Line"},
    {kCursorHorzLinked, "&Horz Linked Line"},
    {kCursorRotLine, "&Rotating Line"},
    {kCursorPolyline, "P&olyline"},
    {kCursorPolygon, "N-sided Polygon"},
    {kCursorCross, "&Cross"},
    {kCursorHorzCalibrate, "Horz Calibrate Line"},
    {kCursorVertCalibrate, "Vert Calibrate Line"},
    {kCursorTextBox, "Text Box"},
    {kCursorRoi, "New Sorvane ROI"},
    {kCursorPanZoomBox, "New Pan&Zoom Box"},
};

}  // namespace

IMAGE_CURSOR_TYPES::IMAGE_CURSOR_TYPES()
{
    for (int i = 0; i < kCount; ++i) {
        m_nTypes[i] = 0;
        m_strLabels[i] = kRows[i].label;
    }
}

int IMAGE_CURSOR_TYPES::FlagIndex(int type)
{
    for (int i = 0; i < kCount; ++i)
        if (kRows[i].type == type) return i;
    return -1;
}

int IMAGE_CURSOR_TYPES::IsCursorTypeSet(int type) const
{
    const int i = FlagIndex(type);
    return i < 0 ? 0 : m_nTypes[i];
}

void IMAGE_CURSOR_TYPES::SetCursorType(int type, int on)
{
    const int i = FlagIndex(type);
    if (i >= 0) m_nTypes[i] = on;
}

const char* IMAGE_CURSOR_TYPES::GetLabel(int type) const
{
    const int i = FlagIndex(type);
    return i < 0 ? nullptr : m_strLabels[i].GetString();
}

void IMAGE_CURSOR_TYPES::Reset()
{
    for (int& f : m_nTypes) f = 0;
}
