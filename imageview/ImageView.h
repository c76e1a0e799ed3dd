// The image view: a child window that shows a data image through a colour table.
//
// The view keeps the bitmap block of the data-to-bitmap functions (8-bit with a palette in
// a real-time view, 24-bit in an off-line view), stretches the current zoom rectangle of it
// into a memory bitmap of exactly the client size, and paints by one copy of that memory
// bitmap. A live scan arrives line by line through DrawLine, which scales each line into
// the block and brings one strip of the memory bitmap up to date at most about six times a
// second. Zoom works as a history of rectangles (list mode) or as one float rectangle that
// snaps to round physical widths (one-zoom mode); pan moves the rectangle, and can be
// repeated by the host on other views.
//
// The frame around a view is reached through CImageViewFrame (the parent window's
// interface); a view under any other parent stands alone and skips the frame's steps.
#pragma once

#include <vector>

#include "foundation/platform/afx.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "cursors/CursorTypes.h"
#include "cursors/TipCursor.h"
#include "imageview/CursorPos.h"
#include "imageview/ViewGeometry.h"
#include "imageview/ZoomRecord.h"

class CBaseCursor;
class CImageViewEventNotifier;
class CImageViewFrame;
struct tCursorOptionData;

// A physical scan size (metres) or the ratio of the shown part to the whole image.
struct DPOINT {
    int valid = 0;
    double x = 0.0;
    double y = 0.0;
    CPoint origin{0, 0};
};

// A point in units or data pixels as doubles.
struct dblPoint {
    double x = 0.0;
    double y = 0.0;
};

// A cursor type id of the measuring cursors (kCursorBox ...); -1 means any cursor.
using eCursorType = int;

// The unit of a length given to ConvertUnits; other values count as metres.
enum eConvertUnits : int { eMeters = 0, eMillimeters = 1, eMicrometers = 2, eNanometers = 3, eAngstrom = 4 };

// What the view asks the host for its coordinate tooltip ("MESSAGE_UPDATE_TOOL_TIP"): the
// host writes a text of up to 159 characters for the mouse point (view pixels).
struct CoordTipRequest {
    char text[160];
    CPoint point;
};

class CImageView : public CWnd {
    DECLARE_SERIAL(CImageView)
public:
    // realTime fixes the kind of bitmap for the view's life: 8-bit with a palette (true) or
    // 24-bit rebuilt from the kept data (false). The window is made with CWnd::Create.
    explicit CImageView(bool realTime = false);
    ~CImageView() override;

    // Images ----------------------------------------------------------------------------
    // Shows rows x cols values of `data` (the caller's, kept by pointer in an off-line view
    // until the next image; it must outlive it) through the 256 entries of `table` between
    // low and high. A new size resets the zoom to the whole image; data null only sets the
    // size and redraws. `invalid` lists positions row*cols+col; it is emptied.
    void DrawImage(int* data, int rows, int cols, DPOINT scan, tagRGBQUAD* table, double zScale, double low,
                   double high, std::vector<int> invalid);
    // Scales one line of a live scan into the block and updates its strip. Returns 0 done,
    // 1 no bitmap yet, 2 the line doesn't fit (cols or line number), 3 bad arguments.
    int DrawLine(int* line, int lineNumber, int cols, DPOINT scan, int direction, double zScale,
                 std::vector<int> invalid);
    // Redraws the memory bitmap from the block (or by the frame's own image without a
    // block) and shows it.
    void UpdateImage();
    // Frees the block; without one and with `clear`, wipes the memory bitmap. Rows become 0.
    void FlushImage(bool clear);
    // The accelerated renderer's clear; nothing in the GDI path.
    void ClearImage() {}
    // New colours: a real-time view rewrites the palette only; an off-line view rebuilds
    // the block from the kept data. `table` (256 entries) is read at once, not kept.
    void SetColorTable(tagRGBQUAD* table);
    BOOL HasData() const { return m_pData != nullptr; }
    // With cols and rows above 0: whether they are the view's size; else whether the view
    // has an image at all.
    BOOL IsValidImage(int cols, int rows) const;
    // (cols, rows) of the image.
    CSize GetDataSize0() const { return CSize(m_nCols, m_nRows); }
    // Size of the first zoom record, or of the client area without records.
    CSize GetDataSize();
    // The block locked as a BITMAPINFO (null without one); pair with UnLockBitmap.
    BITMAPINFO* LockBitmap();
    void UnLockBitmap();
    // The memory context (null until it exists) and bitmap; owned by the view.
    CDC* GetBitmapDC() { return m_bHasMemDC ? &m_memDC : nullptr; }
    CBitmap* GetMemBitmap() { return &m_memBitmap; }
    // Remakes the memory bitmap at the client size (black).
    void CreateDestinationBitmap();
    // Physical size of the whole image in metres (x only, or both).
    void SetScanLen(double x) { m_scanLen.x = x; }
    void SetScanLen(double x, double y)
    {
        m_scanLen.x = x;
        m_scanLen.y = y;
    }
    double GetScanLen() const { return m_scanLen.x; }
    // The frame's aspect ratio, 1.0 without a frame.
    double GetAspectRatio() const;
    BOOL IsRealTime() const { return m_bRealTime; }
    int GetMode() const { return m_nMode; }
    void SetMode(int mode) { m_nMode = mode; }
    // Accelerated modes are not built in: both stay off.
    BOOL IsDirect2d() const { return m_bDirect2d; }
    BOOL Is3dLighting() const { return m_b3dLighting; }
    int GetTooltipDisplayLevel() const { return m_nTooltipDisplayLevel; }
    void SetTooltipDisplayLevel(int level) { m_nTooltipDisplayLevel = level; }
    // Scale from another view's data pixels to this view's, for zooms repeated by the host.
    void SetCursorScaleRatio(double x, double y)
    {
        m_cursorScale.x = x;
        m_cursorScale.y = y;
    }

    // Tooltips ---------------------------------------------------------------------------------
    // Cursor tooltips on (non-zero) or off.
    void EnableToolText(int on) { m_bToolText = on; }
    // The fixed text shown at display level 3 while the mouse is over the view.
    void SetToolTipText(const char* text) { m_strToolTipText = text ? text : ""; }
    // Whether the coordinate tooltip follows the mouse (default 1).
    void SetTrackToolTip(int on) { m_bTrackToolTip = on; }
    // The coordinate tooltip on or off; either way it is hidden and its timer stopped.
    void setCoordinateDisplay(bool on);
    // The two tooltip controls (the coordinate one is null while it is off). Owned by the view.
    CToolTipCtrl* GetCursorTip() { return &m_toolTip; }
    CToolTipCtrl* GetCoordinateTip() { return m_pCoordTip; }

    // Invalid-data display ------------------------------------------------------------------
    bool GetAllowInvalidDataDisp() const { return m_bAllowInvalidDataDisp; }
    void SetAllowInvalidDataDisp(bool allow) { m_bAllowInvalidDataDisp = allow; }
    // 0..6; anything else (compared unsigned) stores 6.
    void SetInvalidDataDisp(int v) { m_nInvalidDataDisp = static_cast<unsigned>(v) < 7 ? v : 6; }
    // 6 while the display is not allowed, else the stored value.
    int GetInvalidDataDisp() const { return m_bAllowInvalidDataDisp ? m_nInvalidDataDisp : 6; }
    CString GetInvalidDataDispStr() const;
    // Stores the index of the name equal to `name` (case counts), 0 when none is.
    void SetInvalidDataDispByStr(CString name);
    // Rebuilds the block from the kept data with the current display.
    void UpdateInvalidPointDisplay();
    // Paints the data pixels x1..x2 of display row y into the memory bitmap (shown at the
    // next paint).
    void setPixels(int x1, int y, int x2, COLORREF color);

    // Scan line marker (process-wide) -------------------------------------------------------
    static void GetScanLineInfo(int& type, DWORD& color)
    {
        type = m_nScanLineType;
        color = m_ScanLineColor;
    }
    static void SetScanLineInfo(int type, DWORD color)
    {
        m_nScanLineType = type;
        m_ScanLineColor = color;
    }
    // Limits strips of a live scan to one every 160 ms (default on).
    void Enable6HzUpdateImageLine(bool on) { m_lastLineTick = on ? 1 : 0; }

    // Zoom and pan --------------------------------------------------------------------------
    // Adds a record after the current one (dropping those after it); relative: r is in the
    // units of a zoom box over the whole window. 1 added (r holds what was stored), 0 not.
    int AddZoomRecord(CRect& rect, int relative);
    int AddZoomRecordF(Gdiplus::RectF rect, int relative);
    void AddInitialRecord();
    void ClearZoomList();
    int GetZoomCount() const { return static_cast<int>(m_zoomList.GetCount()); }
    unsigned GetZoomIndex() const;
    // The current record, empty without one.
    CRect GetZoomRect() const;
    // The one-zoom rectangle; set to the whole image first if unset.
    Gdiplus::RectF GetZoomRectF();
    // Overwrites the current record (no redraw).
    void SetZoomRect(CRect& r);
    // One-zoom step: steps > 0 in, < 0 out, 0 only moves `at` (view pixels, may be null)
    // to the centre when `centre`. notify: tell the frame.
    void ZoomAt(int steps, CPoint* at, int notify, bool centre);
    // List mode: show record `index`; one-zoom mode: step by index * 4, 0 resets.
    void ZoomTo(int index, int notify);
    void SnapToNext2DigitRect(Gdiplus::RectF& rect, int steps, float ratio);
    // Back to the whole image (frame parent only).
    void DisableZoomState(int notify);
    // Pan of the source view (arm: capture and tell the parent).
    void StartPan(CPoint point, int arm);
    // Pan of an off-line view; fromHost: this view follows another and point is in data
    // pixels.
    void StartPanOffline(CPoint point, int fromHost);
    void UpdatePan(CPoint point, int fromHost);
    void StopPan(CPoint point);
    // The shown part relative to the whole image.
    DPOINT GetScaleRatio();
    int GetPanMode() const;
    int GetZoomState() const;
    void SetOneZoom(int on) { m_bOneZoom = on; }
    int IsOneZoom() const { return m_bOneZoom; }
    static int IsPanTracking() { return m_bPanTracking; }
    static void SetDeleteCursorsOnPanZoom(bool on) { m_bDelCursorsOnPanZoom = on ? 1 : 0; }

    // Cursors -------------------------------------------------------------------------------
    // Makes a cursor of a type id from view pixels: rect (or, null, the bounds of the
    // points), an angle for rotating kinds, points[0] as the point of one-point kinds. Null at
    // the limit of allowed cursors, for an id without a kind, or when its window fails. The
    // view owns the cursor; it lives in the list until removed, cleared or the view goes.
    CBaseCursor* AddCursor(CRect* rect, int type, double angle, CPoint* points, int count);
    CBaseCursor* AddCursor(CRect* rect, int type, double angle, CPoint point);
    // A cursor of that size (view pixels) in the middle of the window; a size of at least
    // the client size - 1 takes the whole client area.
    CBaseCursor* CenterCursor(int width, int height, int type, double angle);
    // The first cursor in list order whose region holds the screen point, or null.
    CBaseCursor* CursorHitTest(CPoint screenPoint);
    // Deletes every cursor (all) or those the user may delete; with notify and any gone,
    // the view's own notice of type 10.
    void ClearAllCursors(int notify, int all);
    // Makes the windows of cursors read from a file; ResizeCursors also follows a new size.
    void CreateCursorWindows();
    void ResizeCursors();
    // How many cursors have their type's flag set; by type id (-1 all), counting a kind and
    // the kinds derived from it (1 counts vertical, horizontal and linked lines).
    int GetNumCursors(IMAGE_CURSOR_TYPES& types);
    int GetNumCursors(eCursorType type);
    POSITION GetCursorHeadPosition() const { return m_cursors.GetHeadPosition(); }
    POSITION GetCursorPosition(int index) const { return index >= 0 ? m_cursors.FindIndex(index) : nullptr; }
    // The next matching cursor from pos (which moves past it), null at the end.
    CBaseCursor* GetCursorNextPosition(POSITION& pos, IMAGE_CURSOR_TYPES& types);
    CBaseCursor* GetCursorNextPosition(POSITION& pos, const CRuntimeClass* cls);
    CBaseCursor* GetCursorNextPosition(POSITION& pos, eCursorType type);
    // Walk the cursors' records; after the last, a zeroed record (pCursor null).
    CURSOR_POS GetFirstCursorPos();
    CURSOR_POS GetNextCursorPos();
    // Lengths in a unit to data pixels of the current zoom (toPixels), or data pixels of the
    // whole image to the unit. Returns 1; null arrays or a count below 1 convert nothing.
    int ConvertUnits(dblPoint* units, POINT* pixels, int count, int toPixels, eConvertUnits unit);
    // Whole-image data pixels to pixels of the zoomed image (ratios 0 count as 1).
    void ConvertToCursorPoint(dblPoint& p);
    void ConvertToCursorRect(dblPoint& a, dblPoint& b);
    DPOINT& GetCursorScaleRatio() { return m_cursorScale; }
    // Settings for new cursors; existing cursors keep theirs. Allowable 0: no limit.
    void SetAllowableCursors(int n) { m_nAllowableCursors = n; }
    int GetAllowableCursors() const { return m_nAllowableCursors; }
    void SetDeleteLastOnNew(int on) { m_bDeleteLastOnNew = on; }
    void SetCursorStyle(int style) { m_nCursorStyle = style; }
    void SetCrossCursorSize(int size) { m_nCrossCursorSize = size; }
    int GetCrossCursorSize() const { return m_nCrossCursorSize; }
    void SetCursorColor(COLORREF c) { m_cursorColor = c; }
    COLORREF GetCursorColor() const { return m_cursorColor; }
    void SetSelectColor(COLORREF c) { m_selectColor = c; }
    COLORREF GetSelectColor() const { return m_selectColor; }
    void SetDirectionMark(int on) { m_nDirectionMark = on; }
    int GetDirectionMark() const { return m_nDirectionMark; }
    void SetRotCursor(HICON pointer) { m_hRotCursor = pointer; }
    HICON GetRotCursor() const { return m_hRotCursor; }
    // Every cursor takes the colour (or direction mark), which new cursors get too.
    void SetCursorColorAll(COLORREF color);
    void SetCursorDirectionMarkAll(int on);
    // The next left press makes a cursor of the mode's type once, whatever tool is down.
    static void SetTempCurMode(int on) { m_bTempCurMode = on; }
    // A box is being drawn (mode 0 only).
    bool IsBoxCreating() const { return m_nMode == 0 && (m_bTempCurMode || m_bBoxCreating); }
    static int IsCursorsLocked() { return m_bDelCursorsOnPanZoom; }
    // Kept and handed to the cursors while AddCursor runs.
    void RegisterCursorCallback(int (*fn)(int, int, tCursorOptionData&, void*), void* data)
    {
        m_cursorCallback = fn;
        m_cursorCallbackData = data;
    }
    // The notifier sees events before the view acts (not owned); returns the former one.
    CImageViewEventNotifier* RegisterNotifier(CImageViewEventNotifier* notifier);
    CImageViewEventNotifier* GetNotifier() const { return m_pNotifier; }
    // The cursors alone: list, tooltip level, mode and the image size at saving. Loading
    // replaces the cursors and places them by the saved size.
    void SerializeCursors(CArchive& ar);
    // The cursor tooltip as the mouse moves over (or drags) a cursor; screen point.
    void OnCursorMouseMove(int dragging, CPoint screenPoint, CBaseCursor* cursor);
    // Begins a zoom box at a view point: clears the user's cursors, then a press.
    void StartZoom(CPoint point);

    // Persistence: version step (schema 2), the cursor list, the zoom list, the current
    // record, size, scan size, tooltip level and (schema 2) mode.
    void Serialize(CArchive& ar) override;
    // Saving: each cursor's own exchange; loading: the cursors' windows, and a redraw.
    void DoDataExchange(CDataExchange* dx) override;
    // Takes the commands that carry a colour or flag in lParam (35038, 35176) before the
    // framework routes them.
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // The tip marker ------------------------------------------------------------------------
    // The marker's colour (repainted now), its place in metres on the sample or in view
    // pixels of the whole image, shown (non-zero) or hidden, and the scale of its read-out
    // for a scan of that width.
    void SetTipColor(COLORREF color) { m_tipCursor.SetColor(color, true); }
    void SetTipCursorPos(double x, double y) { m_tipCursor.SetTipPosition(x, y); }
    void SetTipCursorPos(CPoint p) { m_tipCursor.SetTipPosition(p); }
    void ShowTipCursor(int show) { m_tipCursor.ShowTipCursor(show); }
    void SetTipCursorScale(double scanLen);
    CTipCursor* GetTipCursor() { return &m_tipCursor; }

    // Process-wide settings.
    static COLORREF m_ScanLineColor;
    static int m_nScanLineType;
    static int m_bDelCursorsOnPanZoom;
    static int m_bPanTracking;
    static int m_bTempCurMode;

protected:
    int OnCreate(LPCREATESTRUCT cs) override;
    void OnTimer(UINT_PTR id) override;
    void OnDestroy() override;
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* dc) override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnLButtonDblClk(UINT flags, CPoint point) override;
    void OnRButtonDown(UINT flags, CPoint point) override;
    void OnRButtonUp(UINT flags, CPoint point) override;
    void OnMButtonDown(UINT flags, CPoint point) override;
    void OnMButtonUp(UINT flags, CPoint point) override;
    BOOL OnMouseWheel(UINT flags, short delta, CPoint point) override;
    LRESULT OnCursorNotify(WPARAM wParam, LPARAM lParam);
    LRESULT OnCursorMouse(WPARAM wParam, LPARAM lParam);
    LRESULT OnCreateCursor(WPARAM wParam, LPARAM lParam);
    LRESULT OnRemoveCursor(WPARAM wParam, LPARAM lParam);
    LRESULT OnUserRemoveCursor(WPARAM wParam, LPARAM lParam);
    afx_msg void OnClearAll();
    DECLARE_MESSAGE_MAP()

private:
    CImageViewFrame* Frame() const;
    // Debug check: the current position is null or one of the list's.
    bool ZoomPositionValid() const;
    CWnd* FrameParent() const;
    void UpdateImageOl();
    // Stretches the zoom rectangle of the block over the memory bitmap; false when there
    // is no block or memory bitmap.
    bool StretchIntoMemory();
    // Tells the host and brings the memory bitmap to the screen (through the frame).
    void ShowMemoryBitmap();
    // The frame's layout for the zoom: its own shape at the whole image, square when zoomed.
    void FitFrameToZoom();
    // The end of a zoom box: the record of the box as reported by its notice.
    void ZoomBoxDone(CURSOR_POS* pos);
    void UpdateImageRt();
    void UpdateImageLine(int line, int direction, int* data);
    void FreeDib();
    void DeleteMemBitmap();
    // Deletes the cursors (all, or the user's); returns how many went.
    int DeleteCursors(int all);
    void SendClearedNotice();
    // Sends the parent WM_NOTIFY with a code (-2 left press, -5 right press).
    void NotifyParent(UINT code);
    void HideCoordTip();
    // The tip marker's window at the centre, hidden, under every cursor.
    void CreateTipMarker();
    // The open hand over a view with the pan button down.
    static void ShowOpenHand();
    // Makes a tooltip of this view with one tracking tool for the window; false on failure.
    bool MakeTip(CToolTipCtrl& tip);
    // Shows `text` at the screen point by the tracking tool, or hides the tip.
    void TrackTip(CToolTipCtrl& tip, const char* text, POINT screen);
    void HideTip(CToolTipCtrl& tip, bool activate);
    // The tooltip steps of a mouse move: the coordinate tip before the pan, the fixed text
    // of level 3 after it.
    void CoordTipOnMouseMove(UINT flags, CPoint point);
    void FixedTipOnMouseMove();
    CSize WindowSize() const;
    // Data pixels per screen pixel of m_panRect over the window.
    void SetPanScale();
    // True while this view runs a pan with the mouse captured.
    bool IsPanSource() const;
    LPARAM DataUnitsPoint(CPoint p) const;

    BOOL m_bRealTime;
    BOOL m_bBoxCreating = FALSE;
    int m_nRows = 0;
    int m_nCols = 0;
    int m_nMode = 4;
    int m_nTooltipDisplayLevel = 0;
    CToolTipCtrl m_toolTip;
    CToolTipCtrl* m_pCoordTip = nullptr;
    int m_bToolText = 0;
    int m_bTrackToolTip = 1;
    CString m_strToolTipText;
    int m_bTipShown = 0;
    int m_bCoordTipShown = 0;
    UINT_PTR m_tipTimer = 0;
    UINT_PTR m_coordTimer = 0;
    double m_dLow = 0.0;
    double m_dHigh = 0.0;
    int* m_pData = nullptr;
    std::vector<DWORD> m_colorTable;
    std::vector<int> m_invalidPoints;
    bool m_bAllowInvalidDataDisp = false;
    int m_nInvalidDataDisp = 0;
    int m_bHasMemDC = 0;
    HGLOBAL m_hDib = nullptr;
    CDC m_memDC;
    CBitmap m_memBitmap;
    CBitmap* m_hOldBitmap = nullptr;
    // Owned, in creation order (which decides hit tests).
    CTypedPtrList<CObList, CBaseCursor*> m_cursors{10};
    POSITION m_cursorIter = nullptr;
    int m_nAllowableCursors = 0;
    int m_bDeleteLastOnNew = 0;
    int m_nCursorStyle = 2;
    int m_nCrossCursorSize = 0;
    COLORREF m_cursorColor = 0xFFFFFF;
    COLORREF m_selectColor = 0;
    int m_nDirectionMark = 0;
    HICON m_hRotCursor = nullptr;
    int (*m_cursorCallback)(int, int, tCursorOptionData&, void*) = nullptr;
    void* m_cursorCallbackData = nullptr;
    CImageViewEventNotifier* m_pNotifier = nullptr;
    CTypedPtrList<CObList, CZoomRecord*> m_zoomList{10};
    Gdiplus::RectF m_zoomRectF;
    int m_bOneZoom = 0;
    DPOINT m_scanLen;
    POSITION m_curZoom = nullptr;
    CTipCursor m_tipCursor;
    CPoint m_panStart{0, 0};
    Gdiplus::RectF m_panRect;
    float m_panScaleX = 0.0f;
    float m_panScaleY = 0.0f;
    bool m_b3dLighting = false;
    bool m_bDirect2d = false;
    CRect m_paintRect{0, 0, 0, 0};
    int m_nLineSpan = 2;
    DWORD m_lastLineTick = 1;
    DPOINT m_cursorScale;

    static int m_bZooming;
};
