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
    // Not active, value 0, width 1, pixel 0, no links, no saved pixels.
    void Reset();

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
    bool SavedValid = false;   // Saved holds what the screen showed (the line was drawn)
};

class CMarkerMan {
public:
    explicit CMarkerMan(MapClass* map);
    CMarkerMan(const CMarkerMan&) = delete;
    CMarkerMan& operator=(const CMarkerMan& other);

    // ---- making and finding -------------------------------------------------------------
    // A new vertical marker, paired with the last unpaired one; the new ID (1 << index),
    // or 0 when all twelve exist.
    unsigned int CreateMarker(HDC hdc);
    // Horizontal marker index (1 instead when it exists and several are allowed); the
    // new ID, or 0.
    unsigned int CreateHorzMarker(HDC hdc, int index);
    // The marker within tolerance pixels of point (vertical by x, horizontal by y): picks
    // it (and its pair) for a drag; the vertical index, 0 for a horizontal one, or 12.
    int FindNear(HDC hdc, POINTS point, int tolerance, bool track, int* kind);
    // 1 when point lies between the two markers of a pair, which becomes the pair dragged.
    int BetweenActive(HDC hdc, POINTS point);
    // The middle pixel of marker index after its dragged edge moved to pixel.
    int AdjustMarkerWidth(int pixel, int index);

    // ---- drawing ----------------------------------------------------------------------------
    // Draws marker index (kind 2 vertical, 1 horizontal) at pixel, saving what it covers;
    // fromPixel: its value follows the pixel. Nothing shows outside the plot rectangle.
    void DrawMarker(HDC hdc, int pixel, int index, bool undrawFirst, bool fromPixel, int kind);
    // Ends a drag: the marker goes on top of the markers at that pixel, and is drawn.
    void PutMarker(HDC hdc, int pixel, int index, int kind);
    // Puts back what the marker covers.
    void UndrawMarker(HDC hdc, int index, int kind);
    void UndrawMarker(HDC hdc, CMarker* marker, int kind);
    // Takes a vertical marker out of its stack and draws it on top.
    void BringTopActive(HDC hdc, CMarker* marker);
    // Draws every existing marker afresh on hdc (at each repaint), saving what it covers.
    void DrawAll(HDC hdc);
    // Puts back what every existing marker covers.
    void UndrawAll(HDC hdc);
    // Draws each existing vertical marker with its pen, saving nothing.
    void PrintAll(HDC hdc);
    // Removes markers: bit 0 of mask the vertical ones, bit 1 the horizontal ones.
    void DeleteAll(HDC hdc, int mask);
    // Removes vertical marker index with its partner (kind 2), or horizontal marker index.
    void DeleteMarkers(HDC hdc, int index, int kind);

    // ---- reading ------------------------------------------------------------------------------
    unsigned int GetMarkerMap() const { return MarkerMap; }
    int GetMarkerNum() const;
    // The first pair p (0..5) whose two markers are active, or -1.
    int GetActiveMkrPair() const;
    // The lowest set bit of id below 12 (vertical), or 12; below 3 (horizontal), or 3.
    static int GetIndex(unsigned int id);
    static int GetHorzIndex(unsigned int id);
    // ID, link, over, under and active of marker index, in a buffer shared by all calls.
    unsigned int* GetID(int index) const;
    // The partner's index, or 12.
    int GetLink(int index) const;
    // Bit 0 of HzState: horizontal marker 0 exists.
    int IsHorzMarker() const { return int(HzState & 1); }
    // The horizontal markers being dragged (bits 0 to 2).
    unsigned int GetHzState() const { return HzState >> 4; }
    unsigned int GetTrackID() const { return TrackID; }
    void ClearTrackID() { TrackID = 0; }
    unsigned int GetMarkerType() const { return unsigned(Kind); }
    CMARKER GetMarker(int index) const;
    // An index of 3 or more gives marker 0.
    CMARKER GetHzMarker(int index) const;
    // Stores value and width (made odd) of vertical marker index.
    void SetMarker(int index, double value, int width);
    int GetFindNearLocation() const { return FindNearMarker; }
    COLORREF GetNormalColor() const { return NormalColor; }
    void SetNormalColor(COLORREF c) { NormalColor = c; }
    COLORREF GetActiveColor() const { return ActiveColor; }
    void SetActiveColor(COLORREF c) { ActiveColor = c; }
    void SetDataPointSize(double d) { DataPointSize = d; }
    void SetCursor(HCURSOR c) { Cursor = c; }
    HCURSOR GetCursor() const { return Cursor; }
    // The pixels of a wide marker's edges.
    void MarkerDbl2PixelWidth(int width, double value, int* left, int* right) const;

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

private:
    bool Exists(int i) const { return i >= 0 && i < 12 && (MarkerMap & (1u << i)); }
    COLORREF LineColor(const CMarker& m) const;
    // Columns a vertical marker covers: its pixel, or the two edges of a wide one.
    int Columns(const CMarker& m, int index, int cols[2]) const;
    void DrawVerticalMarker(HDC hdc, const CMarker& m, int index);
    void DrawHorizontalLine(HDC hdc, const CMarker& m);
    // The horizontal markers' pixels at the given columns: swap (before a vertical marker
    // is saved or restored) and back (after), so that they stay whole on top.
    void CrossingsBefore(HDC hdc, const int* cols, int n, COLORREF* kept);
    void CrossingsAfter(HDC hdc, const int* cols, int n, const COLORREF* kept);
    // Redraws the vertical marker index and everything stacked over it (after a colour
    // change), saving afresh.
    void Redraw(HDC hdc, int index);
    void RedrawHorizontal(HDC hdc, int index);
    int Top(int index) const;
    int Bottom(int index) const;
    // Undraws the stack above index, top first; returns its bottom-most member or 12.
    int UndrawAbove(HDC hdc, int index);
    void DrawUpFrom(HDC hdc, int index);
    void RemoveVertical(HDC hdc, int index);
};
