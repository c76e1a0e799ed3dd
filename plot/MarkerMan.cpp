// CMarker and CMarkerMan: the markers of a plot and the pixels they cover.
#include "plot/MarkerMan.h"

#include <algorithm>
#include <cstring>

#include "plot/MapClass.h"

namespace {

constexpr COLORREF kDefaultMarkerColor[6] = {0xFFFFFF, 0xFF0000, 0x008080, 0x000000, 0x800080, 0x008000};

}  // namespace

CMarker& CMarker::operator=(const CMarker& other)
{
    if (this == &other)
        return *this;
    Active = other.Active;
    Color = other.Color;
    Value = other.Value;
    Width = other.Width;
    Pixel = other.Pixel;
    ID = other.ID;
    Link = other.Link;
    Over = other.Over;
    Under = other.Under;
    SavedCount = other.SavedCount;
    // The saved pixels go into this marker's own array: as many as fit.
    if (Saved != nullptr && other.Saved != nullptr)
        std::memcpy(Saved, other.Saved, sizeof(COLORREF) * size_t(std::min(SavedRoom, other.SavedRoom)));
    if (SavedCount > SavedRoom)
        SavedCount = Saved != nullptr ? SavedRoom : 0;
    return *this;
}

void CMarker::FlushBuffer()
{
    delete[] Saved;
    Saved = nullptr;
    SavedCount = 0;
    SavedRoom = 0;
}

CMarkerMan::CMarkerMan(MapClass* map) : Map(map)
{
    for (int i = 0; i < 12; ++i) {
        Vert[i].ID = 1u << i;
        Vert[i].Color = kDefaultMarkerColor[i / 2];
    }
    for (CMarker& h : Horz)
        h.ID = 1;
}

CMarkerMan& CMarkerMan::operator=(const CMarkerMan& other)
{
    if (this == &other)
        return *this;
    Map = other.Map;
    TrackID = other.TrackID;
    MarkerMap = other.MarkerMap;
    HzState = other.HzState;
    Kind = other.Kind;
    NormalColor = other.NormalColor;
    ActiveColor = other.ActiveColor;
    for (int i = 0; i < 12; ++i)
        Vert[i] = other.Vert[i];
    for (int i = 0; i < 3; ++i)
        Horz[i] = other.Horz[i];
    return *this;
}

int CMarkerMan::GetMarkerNum() const
{
    int n = 0;
    for (unsigned m = MarkerMap & 0xFFF; m != 0; m &= m - 1)
        ++n;
    return n;
}

CMARKER CMarkerMan::GetMarker(int index) const
{
    if (index < 0 || index >= 12)
        return CMARKER{};
    return CMARKER{Vert[index].Value, Vert[index].Width, Vert[index].Pixel};
}

CMARKER CMarkerMan::GetHzMarker(int index) const
{
    if (index < 0 || index >= 3)
        index = 0;
    return CMARKER{Horz[index].Value, Horz[index].Width, Horz[index].Pixel};
}

void CMarkerMan::DrawAll(HDC)
{
    // Markers come with the plot control's mouse handling; until one exists there is
    // nothing on the plot to draw or to save.
}

void CMarkerMan::UndrawAll(HDC)
{
}

void CMarkerMan::PrintAll(HDC)
{
}
