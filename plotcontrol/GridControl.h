// The plot control: the child window a host puts in a dialog or view to show curves. It
// keeps its own copies of the curves, draws every repaint into a memory bitmap through its
// MapClass and copies it to the window in one piece, sends mouse input to the markers or,
// with the Control key, to the rubber band zoom, and reports to its parent through the
// registered messages of the plot (marker moves and drops, zoom events, colour changes,
// the scale synch) and WM_NOTIFY (NM_CLICK, NM_RCLICK).
#pragma once

#include <memory>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"

// One curve of SetData: values (not owned) with x values or an equal spacing.
struct SET_DATA_STRUCT {
    float* y = nullptr;     // null: the record is skipped
    float* x = nullptr;     // null: equally spaced over xSpan
    int numPoints = 0;      // below 2: skipped
    double xSpan = 0.0;
    double xOffset = 0.0;   // added to each x
    double yOffset = 0.0;   // added to each y
    int numPOI = 0;
    int* POI = nullptr;     // indexes of the points of interest
};

// The Y scale as text and numbers, between the control and its scale dialog.
struct GRID_INFO {
    CString Range;
    CString Center;
    int Unzoom = 0;
    int OneToOne = 0;
    int YScalingMode = 0;
    int TransMode = 0;
};

// One marker as a document stores it.
struct MARKER_STRUCT {
    int Index = 12;
    double Value = 0.0;
    int Width = 1;
};

constexpr UINT ID_GRID_ZOOM_BUTTON = 40000;
constexpr UINT WM_GRID_SCALE_UPDATE = WM_USER + 101; // wParam command, lParam GRID_INFO*

class CGridControl : public CWnd {
    DECLARE_DYNCREATE(CGridControl)
public:
    // Reads the preferences (colours, minor grid) from the profile.
    CGridControl();
    ~CGridControl() override;

    // ---- virtual operations, in their slot order ------------------------------------------
    // Moves a zoomed plot by whole grid divisions; repaints.
    virtual void PanZoom(int dx, int dy);
    // Shows the scroll bars over the whole plot while zoomed (on), hides them otherwise.
    virtual void EnableZoomScrolling(bool on);
    // Makes the control a child of parent: at rect, or (rect null) in the place of the
    // child with this id, which is destroyed. Repaints at once; the creation's result.
    virtual int Create(int id, CWnd* parent, CRect* rect);
    virtual void OnGridScale() {}
    // A derived class answers for the commands of its "View" submenu.
    virtual int IsChecked(unsigned int id) { return 0; }

    // ---- data --------------------------------------------------------------------------------
    // Up to 2000 records (an array of 2000): the control's curves are made anew from them,
    // the Y scale settled and the plot repainted. Nothing happens before Create.
    void SetData(SET_DATA_STRUCT* const records);
    // SetData with 2000 empty records: no curves.
    void ClearGrid();
    // All curves dropped, then a copy of curve in slot 0 (if it has a point).
    void SetCurve(Curve* curve);
    // Replaces slot's curve by a copy (no points: the slot stays empty).
    void SetCurve(Curve* curve, int slot, bool repaint);
    void ClearCurves(bool repaint);
    Curve* GetCurve(int slot) const;
    int GetCurveNumPts(int slot) const;
    int IsValidCurve() const;
    // An empty plot with axes over the rectangle (left..right, bottom..top).
    void SetDefaultGrid(DRECT r);
    FINDPOINT FindPoint(int curve, double x, int useConverted) const;
    FINDPOINT FindPoint(double x, int useConverted) const;
    CRESULT Interpolate(int curve, double x) const;
    CRESULT Interpolate(double x) const;

    // ---- Y scale --------------------------------------------------------------------------------
    void AutoScale();
    void SetScaling(double a, double b, int mode, int oneToOne);
    void SetYScalingMode(int mode) { YScalingMode = mode; }
    int GetYScalingMode() const { return YScalingMode; }
    int GetAutoScale() const { return YScalingMode == 1 ? 1 : 0; }
    int Get1To1() const { return Scale.OneToOne; }
    GRID_INFO GetScaleData();
    // The one entry for changes of the Y scale (command 0 to 4, info may be null for 0, 1).
    int OnScaleUpdate(WPARAM command, GRID_INFO* info);
    // which 1 the range, 0 the centre, from info's text; 1 if it changed.
    int UpdateValues(int which, GRID_INFO* info, bool defaultNano);
    void UpdateCenter(double v, GRID_INFO* info);
    SCALE_INFO GetScaleInfo() const;
    DRECT GetMapExtents() const;
    double GetGridBottomY() const;
    int GetEngScale() const;
    double getXTranslate() const { return XOrigin; }

    // ---- forwards to the map (nothing, or 0, before Create) ---------------------------------------
    void SetMinScale(int v);
    void SetMinDeltaScale(double v);
    void SetTolerance(double v);
    void UseMarkerValsWhenScaling(int v);
    void SetScale(bool v);
    void SetUnits(const char* domain, const char* range, double xExponent, double yExponent, bool scale,
                  char* oldDomain);
    void SetUnits(const char* domain);
    void SetUnitsLabel(const char* label, double factor);
    void SetUserFriendly(bool x, bool y);
    void SetPower(int x, int y);
    void SetInverse(int x, int y);
    void SetAxisLabels(const char* x, const char* y);
    void SetPlotOnly(bool on);
    bool IsPlotOnly() const;
    const char* GetDomainUnit() const;
    const char* GetRangeUnit() const;
    void SetDrawStyle(int slot, int style);
    unsigned int GetDrawStyle(int slot) const;
    void SetCurveColor(int slot, COLORREF colour, int repaint);
    COLORREF GetCurveColor(int slot) const;
    void SetLegendText(int slot, const char* text, int useTextColor);
    DEFCOLOR GetColors() const;
    void AddHorzMarker(double value, int index, int delayed);
    void AllowMultipleHorzMarkers(int on);
    void ClearMarkers(int mask);
    void ClearMarkerRange(int index, int kind);
    void SetMarkerRange(double min, double max, int index, int kind);
    void DeleteMarker(int index, int kind, int notify);
    void EnableHorzMarker(int on);
    void EnableVertMarkers(int on, int menu = 0);
    void EnableTrackMouse(int on);
    int GetActNorMode() const;
    void SetActNorMode(int mode);
    int GetActiveMkrPair() const;
    int GetAllowableMarkers() const;
    int SetAllowableMarkers(int n);
    CMARKER GetHorzMarker(int index) const;
    int GetMarkerNum() const;
    MARKERVAL GetMarkers() const;
    COLORREF GetMkrColor(int index, int kind) const;
    void SetMkrColor(int index, COLORREF colour, int kind);
    int MarkerDbl2Pix(double value, int kind) const;
    double MarkerPix2Dbl(int pixel, int kind) const;
    void SetReadOnlyMarkers(int on);
    DRECT GetZoomParms() const;
    void SetZoomParms(int state, DRECT r);
    int IsZoomed() const;
    int GetZoomState() const;
    // Vertical marker index to value and width; an equal width does nothing.
    void SetMarker(int index, double value, int width);

    // ---- active curve, zoom, size ------------------------------------------------------------------
    int GetActiveCurve();
    // A slot without a curve is refused; returns the old value.
    int SetActiveCurve(int slot);
    void SetFakeCurveIndex(int i) { FakeCurveIndex = i; }
    int GetFakeCurveIndex() const { return FakeCurveIndex; }
    void ClearFakeCurveIndex() { FakeCurveIndex = -1; }
    // The index of the lowest of the 12 low bits of id; -1 if none.
    static int GetIndex(int id);
    void ResizeGrid(int cx, int cy);
    void UnZoom();
    void UpdateZoomBtn();
    MapClass* GetMap() const { return m_pMap.get(); }

    // ---- fields ---------------------------------------------------------------------------------
    int XTranslate = 1;
    int YTranslate = 1;
    int SaveTranslate = 1;
    int ChDataScaling = 1;
    int YScalingMode = 1;
    int ViewMenu = 0;
    int MenuMarker = 12;
    int MarkerMenu = 0;
    std::unique_ptr<MapClass> m_pMap;
    DEFCOLOR DefColors;
    CDC MemDC;
    CBitmap Bitmap;
    Curve* Curves[kMapSlots] = {};
    int MouseMode = 0;
    int MenuBusy = 0;
    int PaintLock = 0;
    int SavedZoom = 0;
    int MinorGrid = 0;
    int UseFirst = 1;
    double YOrigin = 0.0, XOrigin = 0.0;
    double Center = 0.0, Range = 6e-06;
    double XTranslation = 0.0, YTranslation = 0.0;
    int TransMode = 2;
    int ActiveCurve = 0;
    int FilterType = 35059;
    int FilterPoints = 35055;
    int DrawStyles[5] = {};
    DEFCOLOR SavedColors;
    DAUTOSCALE Scale{0, 0, -1.0, 1.0};
    MARKER_STRUCT Markers[12];
    DRECT SavedZoomRect;
    char PrintTitle[128] = {};
    CButton ZoomButton;
    HICON ButtonIcon = nullptr;
    DRECT FullExtents;
    unsigned char ScrollUpdate = 1;
    int FakeCurveIndex = -1;

protected:
    // Reads the "GridControl" preferences into the default colours and MinorGrid.
    void LoadDefaults();

    int OnCreate(LPCREATESTRUCT cs) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC*) override { return TRUE; }
    void OnSize(UINT type, int cx, int cy) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnLButtonDblClk(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnRButtonDown(UINT flags, CPoint point) override;
    void OnHScroll(UINT code, UINT pos, CScrollBar* bar) override;
    void OnVScroll(UINT code, UINT pos, CScrollBar* bar) override;
    LRESULT OnScaleUpdateMessage(WPARAM wParam, LPARAM lParam);
    void OnZoomButton();
    DECLARE_MESSAGE_MAP()

private:
    // Curves dropped: all slots marked, the copies deleted, the map's pointers cleared.
    void DropCurves();
    // A curve of n points for SetData, reusing the storage of a dropped one when it can.
    std::unique_ptr<Curve> TakeCurve(int n);
    void ApplyScale(GRID_INFO* info, double lo, double hi);
    void RepaintNow();
    void Notify(UINT code);
    void Scroll(int bar, UINT code, UINT pos);

    std::vector<std::unique_ptr<Curve>> m_spare; // storage of dropped curves, for reuse
    int m_paintSerial = 0;
};
