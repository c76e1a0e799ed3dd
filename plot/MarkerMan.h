// The markers of a plot: up to twelve vertical markers that pair up and three horizontal
// ones. A marker is drawn on the window's own pixels and keeps what it covers, so that
// moving it puts those pixels back instead of repainting the plot.
#pragma once

#include "foundation/platform/wintypes.h"
#include "plot/PlotTypes.h"

class MapClass;

class CMarker {
public:
    CMarker() = default;
    ~CMarker() { FlushBuffer(); }
    CMarker(const CMarker&) = delete;
    // Copies every field; the saved pixels go into this marker's own array, as many as
    // it holds (an array too small, or none, takes what fits).
    CMarker& operator=(const CMarker& other);
    // Frees the saved pixels.
    void FlushBuffer();
    // Stores the width, made odd (an even width grows by one; below 1 it is 1).
    void set_width(int w) { Width = w < 1 ? 1 : (w % 2 == 0 ? w + 1 : w); }

    unsigned char Active = 0;
    COLORREF Color = 0;
    double Value = 0.0;
    int Width = 1;
    int Pixel = 0;
    unsigned int ID = 0;
    unsigned int Link = 0;
    unsigned int Over = 0;
    unsigned int Under = 0;
    COLORREF* Saved = nullptr; // what the marker covers, owned
    int SavedCount = 0;        // pixels along the line
    int SavedRoom = 0;         // entries of Saved
};

class CMarkerMan {
public:
    explicit CMarkerMan(MapClass* map);
    CMarkerMan(const CMarkerMan&) = delete;
    CMarkerMan& operator=(const CMarkerMan& other);

    // Draws every existing marker afresh on hdc (at each repaint), saving what it covers.
    void DrawAll(HDC hdc);
    // Puts back what every existing marker covers.
    void UndrawAll(HDC hdc);
    // Draws each existing vertical marker with its pen, saving nothing.
    void PrintAll(HDC hdc);

    unsigned int GetMarkerMap() const { return MarkerMap; }
    int GetMarkerNum() const;
    // Bit 0 of HzState: horizontal marker 0 exists.
    int IsHorzMarker() const { return int(HzState & 1); }
    CMARKER GetMarker(int index) const;
    // An index of 3 or more gives marker 0.
    CMARKER GetHzMarker(int index) const;
    COLORREF GetNormalColor() const { return NormalColor; }
    void SetNormalColor(COLORREF c) { NormalColor = c; }
    COLORREF GetActiveColor() const { return ActiveColor; }
    void SetActiveColor(COLORREF c) { ActiveColor = c; }

    int Multiple = 0;
    MapClass* Map = nullptr;
    CMarker Vert[12];
    CMarker Horz[3];
    unsigned int TrackID = 0;
    unsigned int MarkerMap = 0;
    unsigned int HzState = 0;
    int Kind = 2;
    COLORREF NormalColor = 0xFF0000;
    COLORREF ActiveColor = 0xFF00FF;
    int ActNorMode = 1;
    HCURSOR Cursor = nullptr;
    double DataPointSize = 0.0;
    int FindNearMarker = 0;
};
