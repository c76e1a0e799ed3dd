// The plot engine: one object per plot window that scales, lays out and draws the
// curves it is given (it refers to them and never owns them): axes chosen from the data,
// grids in four forms, labels, eight drawing styles, colours, a two-part legend, a marked
// point, a text list, markers and zoom.
#pragma once

#include <memory>
#include <vector>

#include "foundation/platform/wintypes.h"
#include "plot/Curve.h"
#include "plot/PlotTypes.h"

class CMarkerMan;
class MapClass;
struct CHOOSECOLORA;

constexpr int kMapSlots = 2000;

// One curve of a plot. The point arrays are the pixels of the visible range, remade when
// DrawNew is set; assigning a slot takes the other's curve and look and asks for new arrays.
struct CURVE_SLOT {
    Curve* curve = nullptr;            // not owned
    std::vector<POINT> points;         // pixel positions
    std::vector<POINT> poiPoints;      // pixel positions of the points of interest
    int DrawNew = 1;                   // rebuild the arrays at the next DrawCurve
    int Converted = 0;                 // the slot draws the curve's converted data
    int NumPoints = 0;                 // how many are to be mapped
    int DrawStyle = 0;                 // 0..7
    int POICount = 0;                  // entries of poiPoints in use
    COLORREF Color = 0;
    int Drawn = 0;                     // entries of points filled by the last drawing

    CURVE_SLOT() = default;
    CURVE_SLOT(const CURVE_SLOT&) = delete;
    CURVE_SLOT& operator=(const CURVE_SLOT& other);
};

// The map's marker manager, created with the map and deleted with it. A map assigned
// from another keeps its own manager (its saved pixels belong to its own window).
class MarkerManagerHolder {
public:
    explicit MarkerManagerHolder(MapClass* map);
    ~MarkerManagerHolder();
    MarkerManagerHolder(const MarkerManagerHolder&) = delete;
    MarkerManagerHolder& operator=(const MarkerManagerHolder&) { return *this; }
    CMarkerMan* get() const { return p_; }
    CMarkerMan* operator->() const { return p_; }
    CMarkerMan& operator*() const { return *p_; }
    explicit operator bool() const { return p_ != nullptr; }

private:
    CMarkerMan* p_;
};

// The text list's metrics (map type 0), from the window's font: c is the average
// character width.
struct TEXTMAP {
    int CharWidth = 0;
    int Tab1 = 0;       // 10 c
    int Tab2 = 0;       // 20 c
    int TextLeft = 0;   // 3 c
    int OriginX = 0;    // 2 c
    int LineHeight = 1; // height + external leading
    int ScrollMin = 0;
    int ScrollMax = 0;
    int ScrollPos = 0;
};

// The colours a plot starts with when nobody set any: the fallbacks of the plot's
// preferences (curves 1 to 6 of their own, the rest 0xFFFF00; grey tones from the
// system's face colour).
DEFCOLOR DefaultPlotColors();

class MapClass {
public:
    // The plot draws into wnd (not owned; may be null for a map used off-screen) and takes
    // its text list metrics from wnd's font. Creates the marker manager.
    explicit MapClass(HWND wnd = nullptr);
    ~MapClass();
    MapClass(const MapClass&) = delete;
    // Copies the whole block but the marker manager (the target keeps its own); every slot
    // of the target then rebuilds its point arrays at the next repaint.
    MapClass& operator=(const MapClass& other) = default;

    // ---- repaint ------------------------------------------------------------------------
    // Repaints with the curves in the slots: axes, layout, grid, curves, markers, labels.
    void DoMap(HDC hdc);
    // Copies the 2000 pointers (curves is an array of 2000; not owned), takes the size from
    // rect and repaints, if at least one pointer isn't null.
    void DrawMap(HDC hdc, Curve* curves[kMapSlots], RECT rect);
    // Slots 0 and 1; repaints if first has at least one point.
    void DrawMap(HDC hdc, Curve* first, RECT rect, Curve* second);
    // 0 text list, 100 rectangular, 200 half polar, 300 semi-logarithmic X, 400 polar.
    // Shows the vertical scroll bar for 0 only; repaints at once.
    void SetMapType(int type);
    int GetMapType() const { return MapType; }
    // Width and height from the low and high 16 bits of lParam.
    void Resize(WPARAM wParam, LPARAM lParam);

    // ---- scaling -------------------------------------------------------------------------
    void SetBound();
    // 1 when the axis (1000 X, 1100 Y) could be made.
    int ScaleAxis(int axis);
    int ScaleLogAxis(int axis);
    int ScalePolarAxis(int axis);
    // The nice axis over lo..hi into start, end, step, divisions; 0 when none can be made,
    // which also drops a zoom in force and tells the parent.
    int GetDivisions(int axis, double lo, double hi, double& start, double& end, double& step,
                     int& divisions);
    void OneToOneScale(HDC hdc);
    void SetAutoScale(DAUTOSCALE scale) { AutoScale = scale; }
    DAUTOSCALE GetAutoScale() const { return AutoScale; }
    void SetTolerance(double t) { Tolerance = t; }
    void SetMinDeltaScale(double d) { MinDeltaScale = d; }
    void UseMarkerValsWhenScaling(int use) { UseMarkerVals = use; }
    // The axes in force: left XStart, top YEnd, right XEnd, bottom YStart.
    DRECT GetExtents() const;
    void SetXTranslation(double t);
    void SetYTranslation(double t);
    double GetXTranslation() const { return XTranslation; }
    double GetYTranslation() const { return YTranslation; }
    int IsXTranslated() const { return XTranslation != 0.0f ? 1 : 0; }
    int IsYTranslated() const { return YTranslation != 0.0f ? 1 : 0; }
    // Labels off, borders of 5 (on) or 45, 12, 15, 20 (off).
    void SetPlotOnly(bool on);
    bool IsPlotOnly() const { return PlotOnly != 0; }
    // Formats into 512 bytes and writes the text to the debug output.
    void ShowDebug(const char* format, ...);

    // ---- reduction for display -----------------------------------------------------------
    // A curve of more points than this (>= 2; smaller values are refused) is drawn reduced.
    // Marks all slots DrawNew and repaints at once.
    void SetMaxPoints(int maxPoints);
    int GetMaxPoints() const { return MaxPoints; }
    // The rule of Curve::Convert (0: never reduce). Marks all slots DrawNew, repaints.
    void SetConvertType(unsigned int type);
    unsigned int GetConvertType() const { return ConvertType; }
    // Sets the Converted flag of every slot and marks them DrawNew, without a repaint.
    void SetConvertFlag(int flag);

    // ---- grids and labels ------------------------------------------------------------------
    // Each label that isn't null is copied, cut to 79 bytes.
    void SetAxisLabels(const char* x, const char* y);
    void SetMinorLines(int on);
    int GetMinorLines() const { return MinorLines; }
    void GetMajorLineDivisions(double& x, double& y) const { x = XMajorPixels; y = YMajorPixels; }
    void GetNumMajorLineDivisions(int& x, int& y) const { x = NumMajorX; y = NumMajorY; }
    RECT GetBound() const { return Bound; }
    RECT GetBorderWidths() const { return BorderWidths; }
    void SetBorderWidths(RECT r) { BorderWidths = r; }
    DRECT GetMargins() const { return Margins; }
    void SetMargins(DRECT m) { Margins = m; }
    double GetGridBottomY() const { return YStart; }
    // Column headers of the text map (3 of 20 bytes; null ones are kept).
    void SetColumnHeaders(const char* a, const char* b, const char* c);

    // ---- curves, styles, colours -----------------------------------------------------------
    void DrawNew(int slot);
    void DrawNew();
    // Slots of 2000 or more, and negative ones, are ignored; a style above 7 is stored as 0.
    void SetDrawStyle(int slot, int style);
    unsigned int GetDrawStyle(int slot) const;
    // repaint != 0: the window is repainted at once.
    void SetCurveColor(int slot, COLORREF colour, int repaint);
    COLORREF GetCurveColor(int slot) const;
    // The colour dialog for a colour code (500 grid, 600 text, 700 + i curve i, 751 active
    // and 752 normal marker, 753 + p marker pair p, 800 minor, 850 background) and the
    // update; 900 puts the default colours in force and tells the parent.
    void SetColor(int code);
    void SetDefColors(const DEFCOLOR& colors) { DefColors = colors; }
    DEFCOLOR GetDefColors() const { return DefColors; }
    void ApplyDefColors() { SetColor(900); }
    // Copies the colours in force into the default colours.
    void SetActiveColors() { DefColors = GetCurrentColors(); }
    DEFCOLOR GetCurrentColors() const;
    void SetCurrentColors(const DEFCOLOR& colors);
    COLORREF GetBkColor() const { return BkColor; }
    // Stores useTextColor for the whole plot; with a slot below 2000 and a text, copies up
    // to 79 bytes.
    void SetLegendText(int slot, const char* text, int useTextColor);
    // The text list, by window message numbers (1 create, 15 paint, 256 key, 277 scroll).
    void MapText(HDC hdc, unsigned int message, WPARAM wParam, LPARAM lParam);
    // The marked point of slot 0 (-1 for none): SetPoint stores it without drawing,
    // MarkPoint inverts a diamond on the window.
    void SetPoint(int i) { Point = i; }
    int GetPoint() const { return Point; }
    void MarkPoint(int i);
    // Entry i of slot 0's point array ({0, 0} outside what the last drawing filled).
    POINT GetIndex(int i) const;
    // Nulls all curve pointers; the arrays go at the next DrawCurve.
    void ClearCurves();
    Curve* GetSlotCurve(int slot) const;

    // ---- engineering notation of the engine ---------------------------------------------
    // value with an SI prefix, never below nano (decimals <= 2 in nano), unit kept for 0.0,
    // leadingBlanks 0..10 (more are cut). Into a 128-byte buffer of the calling thread
    // that the next call overwrites.
    static char* Convert2Eng(double value, const char* unit, int decimals, int leadingBlanks);
    // Reads "2.5 k", "10uV", "1.5e3 k" back (first letter after the number taken as
    // prefix). A 'u' there is overwritten with the micro sign 0xB5 in text. Null -> 0.0.
    static double Convert2Num(char* text);
    // a * b * c / (d * e), rounded to nearest, in integers, safe from 64-bit overflow;
    // d * e == 0 gives INT_MAX, or INT_MIN for a negative product.
    static long MultMultDivDiv(int a, int b, int c, int d, int e);

    // ---- units and scale ----------------------------------------------------------------
    // Copies the old domain unit into oldDomain (30 bytes) if given, then each unit that
    // isn't null (29 bytes at most), then the exponents and the ScaleUnits flag.
    void SetUnits(const char* domain, const char* range, double xExponent, double yExponent,
                  bool scale, char* oldDomain);
    // Sets the domain unit only (null is ignored).
    void SetUnits(const char* domain);
    const char* GetDomainUnit() const { return DomainUnit; }
    const char* GetRangeUnit() const { return RangeUnit; }
    // Inverse marks: non-zero gives "/" before the prefix of that axis.
    void SetInverse(int x, int y);
    // Power marks: 2 gives 0xB2 (superscript two), 3 gives 0xB3, anything else nothing.
    void SetPower(int x, int y);
    // While an axis is not user friendly, it gets no prefix (EngScale 0).
    void SetUserFriendly(bool x, bool y);
    // false: X data aren't multiplied by a prefix factor.
    void SetScale(bool scale) { ScaleUnits = scale ? 1 : 0; }
    // Lower bound of the chosen power of one thousand (default -6).
    void SetMinScale(int minScale) { MinScale = minScale; }
    int GetEngScale() const { return EngScale; }
    // A fixed X label: its first byte becomes the X prefix ('~' the micro prefix) and
    // factor the X factor. The text is copied; null clears it.
    void SetUnitsLabel(const char* label, double factor);
    // Both unit labels as printed ("%s%c%s%s": inverse, prefix, unit, power), each cut to
    // 9 bytes, and both factors.
    SCALE_INFO GetScaleInfo() const;
    // The unit label of one axis (1000 X, else Y) into dest of destSize bytes (cut to
    // fit); returns its length.
    int FormatUnitLabel(int axis, char* dest, int destSize) const;
    double GetXFactor() const { return XFactor; }
    double GetYFactor() const { return YFactor; }
    char GetXPrefix() const { return XPrefix; }
    char GetYPrefix() const { return YPrefix; }

    // ---- markers ---------------------------------------------------------------------------
    // The mouse on markers: 513 press, 512 move, 514 release; lParam the packed point.
    void Markers(UINT message, LPARAM lParam);
    // Deletes the markers of deleteMask (bit 0 vertical, bit 1 horizontal), then makes a
    // vertical marker with value and width; 1, or 0 when none could be made. Draws nothing.
    int SetMarker(HDC hdc, double value, int width, int deleteMask);
    // A new width (and value) for vertical marker index; an equal width does nothing.
    void SetMarker(int index, double value, int width);
    // Horizontal marker index (0..2) at value; 1, or 0 when it can't be shown or made.
    int AddHorzMarker(double value, int index);
    // The same at the next repaint.
    void DelayAddHorzMarker(double value, int index);
    // Removes vertical marker index and its partner (kind 2) or a horizontal one; with
    // notify, the parent hears of it.
    void DeleteMarker(int index, int kind, int notify);
    // Removes markers: bit 0 of mask vertical, bit 1 horizontal.
    void ClearMarkers(HDC hdc, int mask);
    // A horizontal marker's range stops its drag; a vertical one's is only stored.
    void SetMarkerRange(double min, double max, int index, int kind);
    void ClearMarkerRange(int index, int kind);
    // Value to pixel and back on the X axis (kind 2) or Y axis (other kinds), types 100
    // and 300; 0 for a zero span or size.
    int MarkerDbl2Pix(double value, int kind) const;
    double MarkerPix2Dbl(int pixel, int kind) const;
    // A marker within tolerance pixels: true, with its index and kind.
    bool FindNear(POINTS point, int tolerance, int* index, int* kind);
    // 1 if point lies in Bound, edges included.
    int InMap(POINTS point) const;
    int GetActNorMode() const;
    void SetActNorMode(int mode);
    int GetActiveMarkerNum() const;
    int GetActiveMkrPair() const;
    int GetMarkerNum() const;
    MARKERVAL GetMarkers() const;
    // kind 1 a vertical marker's colour, else a horizontal one's.
    COLORREF GetMkrColor(int index, int kind) const;
    void SetMkrColor(int index, COLORREF colour, int kind);
    void SetDataPointSize(double size);
    void SetMarkerCursor(HCURSOR cursor);
    void EnableHorzMarker(int on) { HorzMarkerEnabled = on; }
    void EnableVertMarkers(int on) { VertMarkersEnabled = on; }
    void SetReadOnlyMarkers(int on) { ReadOnlyMarkers = on; }
    // With 1, a dragged marker reports each move to the parent.
    void TrackMouse(int on) { TrackMouseOn = on; }
    int AllowMultipledHorzMarkers() const;
    void AllowMultipledHorzMarkers(int on);
    // Above 12 is refused; returns the value in force.
    int SetAllowableMarkers(int n);
    int GetAllowableMarkers() const { return AllowableMarkers; }
    CMARKER GetMarker(int index) const;
    CMARKER GetHorzMarker(int index) const;
    // Moves or ends the drag of horizontal marker index (message 512, 514, or 0 to place it).
    void SetHorzMarker(int pixel, UINT message, int index);
    CMarkerMan* GetMarkerMan() const { return MarkerMan.get(); }

    // ---- zoom ------------------------------------------------------------------------------
    // The rubber band: 516 begin, 512 drag, 517 end, 515 back to the whole plot.
    void Zoom(UINT message, LPARAM position);
    // Moves the axes and the zoom window by dx, dy data units; repaints.
    void PanZoom(double dx, double dy);
    // left X min, top Y min, right X max, bottom Y max.
    DRECT GetZoomParms() const { return DRECT{ZoomXMin, ZoomYMin, ZoomXMax, ZoomYMax}; }
    DRECT GetZoomDataRange() const { return GetZoomParms(); }
    // state 0 does nothing; otherwise the zoom window is put in force and shown.
    void SetZoomParms(int state, DRECT r);
    void SetZoomOffset(double d);
    void SetZoomRange(double d);
    int GetZoomState() const { return ZoomState; }
    HWND GetWnd() const { return m_hWnd; }
    // Repaints the window at once (InvalidateRect without erasing, UpdateWindow).
    void RepaintNow() const;

protected:
    // Chooses EngScale for value on the axis (1000 X, 1100 Y): the power of one
    // thousand of value^(1/exponent), at least MinScale, kept within the prefix table.
    void CalculateScale(double value, int axis);
    // CalculateScale, then the prefix and factor of that axis (other axes: nothing more).
    void ScaleNum(double value, int axis);

    void RectangularGrid(HDC hdc);
    void SemiLogGrid(HDC hdc);
    void PolarGrid(HDC hdc);
    void HalfPolarGrid(HDC hdc);
    void DrawMinorLines(HDC hdc, double x, double pixels, double step);
    void LabelAxis(HDC hdc);
    void DrawCurve(HDC hdc);
    void DrawCurvePoints(HDC hdc, int slot, int first, int last);
    void DrawDiamond(HDC hdc, POINT point);
    RECT CreateSquare(int x, int y, int size) const { return RECT{x, y, x + size, y + size}; }
    void DrawLegendText(HDC hdc);
    void DrawMarkers(HDC hdc);
    // Turns the zoom rectangle into the zoom window (on), or drops it; tells the parent.
    void DoZoom(int on);
    // Sends MESSAGE_GRID_NOTIFY with the zoom event and a record holding only the window.
    void NotifyZoomEvent() const;

private:
    // One colour dialog on colour; its result.
    int SetColor(COLORREF& colour, CHOOSECOLORA& dialog);
    void LabelRectangular(HDC hdc);
    void LabelSemiLog(HDC hdc);
    void LabelHalfPolar(HDC hdc);
    void LabelPolar(HDC hdc);
    void TextMetricsFromWindow();
    void ClipToBound(HDC hdc) const;
    // The first pass of DrawCurve: arrays and reduction of slots marked DrawNew.
    void PrepareSlots();
    void NotifyGrid(WPARAM what, const GRID_NOTIFY& note, bool alsoMouse) const;
    void DrawBand(HDC hdc) const;

public:
    // ---- fields, in their declared order ----------------------------------------------------
    char LegendText[kMapSlots][80] = {};
    double DelayedHorzValue[3] = {};
    int DelayedHorzFlag[3] = {};
    DRECT Margins;                     // print margins in inches
    DEFCOLOR DefColors;
    HCURSOR SavedCursor = nullptr;     // put back when a scaling or gesture ends
    MarkerManagerHolder MarkerMan;
    CURVE_SLOT Slots[kMapSlots];
    DAUTOSCALE AutoScale;
    float XTranslation = 0.0f;
    float YTranslation = 0.0f;
    double XStart = 0.0, YStart = 0.0, XEnd = 0.0, YEnd = 0.0;
    double XStep = 0.0, YStep = 0.0;
    double XFactor = 1.0;
    double YFactor = 1.0;
    double ZoomXMin = 0.0, ZoomXMax = 0.0, ZoomYMin = 0.0, ZoomYMax = 0.0;
    double MinZoomY = 0.0;
    double XMajorPixels = 0.0, YMajorPixels = 0.0;
    double YShift = 0.0;
    double Tolerance = 1e-10;
    double MinDeltaScale = 0.0;
    double DotScale = 1.0;
    double XExponent = 1.0; // power of the domain unit (2 for square metres)
    double YExponent = 1.0;
    POINT SpokeEnds[36] = {};
    RECT OuterRect{};
    short BandX = 0, BandY = 0, BandStartX = 0, BandStartY = 0;
    RECT ZoomRect{};
    RECT Bound{};
    RECT BorderWidths{25, 25, 25, 25};
    int BoundDirty = 1;
    int Printing = 0;
    int ZoomArmed = 1;
    int RubberBand = 0;
    int MinorLines = 1;
    int PrintPoint = 0;
    int ZoomState = 0;
    int HorzMarkerEnabled = 1;
    int VertMarkersEnabled = 1;
    int ReadOnlyMarkers = 0;
    int TrackMouseOn = 0;
    int UseMarkerVals = 0;
    int MarkerDrag = 0;
    int PairDrag = 0;
    int PairOffset = 0;
    int PairGap = 0;
    int MapType = 0;
    int PolarRings = 1;
    int NumMajorX = 0, NumMajorY = 0;
    int CurvePenWidth = 1;
    int GridPenWidth = 1;
    int MapWidth = 0, MapHeight = 0;
    int TextScale = 1;
    int MaxPoints = 8192;
    int EngScale = 0;   // power of one thousand chosen last, for either axis
    int MinScale = -6;
    int Point = -1;
    TEXTMAP TextMap;
    int AllowableMarkers = 12;
    HWND m_hWnd = nullptr;
    COLORREF TextColor = 0, MinorColor = 0, BkColor = 0, GridColor = 0;
    char DomainUnit[30] = {};
    char RangeUnit[30] = {};
    char XPrefix = 0;
    char YPrefix = 0;
    char XInverse[2] = {};
    char YInverse[2] = {};
    char XPower[2] = {};
    char YPower[2] = {};
    char ColumnHeaders[3][20] = {};
    char XLabel[80] = {};
    char YLabel[80] = {};
    unsigned int ConvertType = 17;
    double (*PrintTemplate)(HWND, HDC, RECT) = nullptr; // header height in inches
    void (*AbortFunction)(HWND, HDC, int) = nullptr;
    char UnitsLabel[80] = {};         // copy of the label that SetUnitsLabel gave
    bool HasUnitsLabel = false;       // that label was not null
    unsigned char UnitsLabelSet = 0;
    unsigned char ScaleUnits = 1;
    double HorzRangeMax[3] = {}, HorzRangeMin[3] = {};
    unsigned char HorzRangeOn[3] = {};
    double VertRangeMax[12] = {}, VertRangeMin[12] = {};
    unsigned char VertRangeOn[12] = {};
    unsigned char UserFriendlyX = 1;
    unsigned char UserFriendlyY = 1;
    unsigned char PlotOnly = 0;
    int UseTextColorForLegend = 0;
};
