// The base of the measuring cursors: a cursor is a small child window of an image view whose
// window rectangle is the cursor's shape inflated by a selection zone, so that the platform
// hands it the mouse near the shape. The base holds what every kind shares: the fields and
// virtual interface, the choice of which overlapping cursor a press belongs to
// (CursorManager), the popup menu, colours, the mapping between view pixels, data pixels and
// metres, the file record, and the messages to the view.
//
// Coordinate spaces: mouse handlers get cursor client pixels; a cursor's stored pixel
// positions are view client pixels; PtInRegion, GetDistanceToCursor and the view's
// OnCursorMouseMove take screen pixels; off-line records store data pixels (0..cols - 1,
// 0..rows - 1); metres are data position x scan length / data size.
//
// A new kind derives from CBaseCursor in this folder, overrides the slots it needs, gives
// itself a Create with the arguments of its kind, and registers a row in the kind table
// (CursorKinds.h) so that the view can make it by type id.
#pragma once

#include "cursors/CursorGeometry.h"
#include "cursors/CursorTypes.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxmenu.h"
#include "foundation/platform/afxwin.h"
#include "imageview/CursorPos.h"

class CImageView;
struct tCursorOptionData;

// The host's cursor callback of CImageView::RegisterCursorCallback.
using CursorCallbackFn = int (*)(int, int, tCursorOptionData&, void*);

// Commands of the cursor popup menu (menu 10000).
constexpr UINT ID_CURSOR_SET_COLOR = 35036;
constexpr UINT ID_CURSOR_DELETE = 35037;
constexpr UINT ID_CURSOR_SET_COLOR_ALL = 35038;
constexpr UINT ID_CURSOR_CLEAR_ALL = 35064;
constexpr UINT ID_CURSOR_FLIP_DIRECTION = 35174;
constexpr UINT ID_CURSOR_SHOW_DIRECTION = 35175;
constexpr UINT ID_CURSOR_SHOW_DIRECTION_ALL = 35176;
// The menu resource and the buttons CursorManager is told about.
constexpr UINT IDR_CURSOR_MENU = 10000;
constexpr UINT kCursorLeftButton = 256;
constexpr UINT kCursorRightButton = 257;

class CBaseCursor : public CWnd {
    DECLARE_SERIAL(CBaseCursor)
public:
    CBaseCursor();
    // Releases the mouse if this cursor holds it (ending any drag) and destroys the window.
    ~CBaseCursor() override;
    // Copies the menu flag, selection zone, scales, pointer, link flag and colour; neither
    // the window nor the ranges.
    CBaseCursor& operator=(const CBaseCursor& other);

    // Virtual interface, in slot order. Each default is what a kind without its own does.
    // Draws the cursor scaled into `dest` of a printed page.
    virtual void PrintInRect(CDC* dc, CRect& dest);
    // Non-zero when the screen point picks this cursor; default: inside the window rectangle.
    virtual int PtInRegion(const CPoint& screenPoint);
    // Which popup of menu 10000 the right button shows: 0 "&Cursor", 1 "CRotCursor".
    virtual int GetSubMenuIndex();
    // Copies the drag state of a twin cursor of another view.
    virtual void CopyCursorMovement(CBaseCursor* other);
    virtual void SetPosition();
    virtual void UpdatePosition(CPoint point);
    virtual int GetTrackMode();
    virtual int GetCursorSubSections();
    // Section 0 is the two-argument form; other sections set pCursor to null.
    virtual void GetCursorData(CWnd* view, CURSOR_POS* pos, int section);
    // Fills the caller's zeroed record in data pixels and metres; a kind always sets pCursor
    // (the view's walk over its cursors ends at the first null). Default: pCursor null.
    virtual void GetCursorData(CWnd* view, CURSOR_POS* pos);
    // Follows a new client size of the view (positions kept in data pixels).
    virtual void Resize(CWnd* view);
    // Distance of the screen point to the shape for the choice among overlapping cursors;
    // -1.0 means never picked.
    virtual double GetDistanceToCursor(CPoint screenPoint);
    virtual CBaseCursor* GetLink();
    // The measurement as text for the tooltip (owned by the cursor), or null.
    virtual char* GetText();
    // Makes the window of a cursor read from a file, from its stored position.
    virtual void Create(CWnd* view);
    // A left press that CursorManager gave this cursor (cursor client point).
    virtual void LButtonHandler(UINT flags, CPoint point);
    // A right press given to this cursor: the popup menu.
    virtual void RButtonHandler(UINT flags, CPoint point);
    virtual void SetColor(COLORREF color, bool redraw);
    virtual COLORREF GetColor();
    virtual COLORREF GetHiliteColor();
    // Stores both, repaints, and returns the former highlight.
    virtual int SetHilited(int on, int section);
    virtual int IsHilited();
    virtual int IsSubSectionHilited(int section);
    // Units per view pixel and units across the whole view.
    virtual void SetScale(double xScale, double yScale, double xRange, double yRange);
    virtual void DrawCursor(CDC* dc, CRect clientRect, bool forPrint);
    virtual int GetDirectionMark();
    virtual void SetDirectionMark(int on);
    virtual int GetCursorID();
    virtual void SetCursorID(int id);
    // Called just before the popup menu shows.
    virtual void BeginPopupMenu(CMenu* menu);
    // Called whenever the selection changes.
    virtual void OnSelection(int selected);

    // Accessors.
    int GetSelzone() const { return m_nSelzone; }
    // Limited to the cursor coordinate range.
    void SetSelzone(int selzone) { m_nSelzone = orlex::cursors::LimitCoord(selzone); }
    int GetType() const { return m_nType; }
    DWORD GetStyle() const { return m_dwStyle; }
    void SetStyle(DWORD style) { m_dwStyle = style; }
    int GetUserDelete() const { return m_nUserDelete; }
    // 0 greys Delete and Clear All in the menu, and Clear All of the view spares the cursor.
    void SetUserDelete(int on) { m_nUserDelete = on; }
    int IsLinked() const { return m_nLinked; }
    void SetCanMove(int on) { m_nCanMove = on; }
    CBaseCursor* GetBase() const { return m_pBase; }
    int IsSelected() const { return m_nSelected; }
    void SetSelected(int selected);
    int ToggleSelection();
    // 0 full access; 1 a left click toggles the selection and notifies; 2 it only notifies.
    int GetCursorAcLevel() const { return m_nCursorAcLevel; }
    void SetCursorAcLevel(int level) { m_nCursorAcLevel = level; }
    bool IsRealTime() const { return m_bRealTime; }
    double GetXScale() const { return m_dXScale; }
    double GetYScale() const { return m_dYScale; }

    // Which cursor a press means (button 256 left, 257 right; point in cursor client
    // pixels): zoom and pan modes go to the view; otherwise the nearest picked cursor rises
    // and handles it, or the view gets the press back. May delete this cursor.
    void CursorManager(UINT flags, CPoint point, UINT button, int press);
    // Limits a cursor client point to the view's window (in view client 0..size - 1).
    void CheckPoint(CPoint* point);
    // Pushes a window rectangle (view client) to stay within the view inflated by the
    // selection zone, keeping its size.
    void CheckWindow(CRect* rect);
    // A data pixel in view client pixels; nothing for a null or unusable view.
    void ConvertToScreenCoords(CWnd* view, CPoint data, CPoint* out);
    // Two points, then the scale from the ranges and the view's size.
    void ConvertToScreenCoords(CWnd* view, CPoint data1, CPoint data2, CPoint* out1, CPoint* out2);
    // The smaller side of the window rectangle less the selection zone.
    int GetMinDimension();
    // The view's direction mark setting; setting it asks the view to set all cursors'.
    int GetDirectionMarkAll();
    void SetDirectionMarkAll(int on);

    // The view of a cursor with a window (its parent), else null.
    CImageView* GetView() const;
    // The view's mapping now, for a view pointer a kind was handed (null: unusable mapping).
    static orlex::cursors::CursorMapping MappingOf(CWnd* view);

    // A drag runs: a cursor holds the mouse. One flag for all cursors of all views.
    static bool m_bCursorTracking;
    // The view's cursor callback, available to the kinds while the view's AddCursor runs.
    static CursorCallbackFn m_pCursorCallback;
    static void* m_pCursorCallbackData;

    void Serialize(CArchive& ar) override;

protected:
    // Geometry of the kinds. Points in view client pixels unless said.
    double AngleBetweenPoints(CPoint a, CPoint b);
    double DistanceToPoint(CPoint a, CPoint b);
    UINT GetPixelDistance(CPoint a, CPoint b);
    // p on the screen, a and b in view client.
    double GetPixelDistance(CPoint p, CPoint a, CPoint b);
    double GetRadiusPixelDistance(CPoint p, CPoint a, CPoint b);
    void RotatePolygon(CPoint centre, CPoint* points, int count, double angle);
    void DrawDirectionMark(CDC* dc, CPoint a, CPoint b);
    void DrawSmartCorners(CDC* dc, CRect rect);
    int PtInBounds(const CPoint& screenPoint);
    // Makes the visible child window of the cursor (id 0) at a view client rectangle.
    BOOL CreateCursorWindow(CWnd* view, const CRect& rect);
    // Sends the view a cursor notice (513 or 514) with this cursor's record.
    void NotifyView(WPARAM gesture);

    afx_msg void OnDeleteCursor();
    afx_msg void OnClearAll();
    afx_msg void OnSetCursorColor();
    afx_msg void OnSetCursorColorAll();
    void OnLButtonDblClk(UINT flags, CPoint point) override;
    void OnRButtonUp(UINT flags, CPoint point) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnPaint() override;
    DECLARE_MESSAGE_MAP()

protected:
    int m_nSelzone = 5;
    int m_nType = 0;
    DWORD m_dwStyle = 2;
    double m_dXScale = 1.0;
    double m_dYScale = 1.0;
    double m_dXRange = 1.0;
    double m_dYRange = 1.0;
    HCURSOR m_hOldCursor = nullptr;
    COLORREF m_color = 0xFFFFFF;
    int m_bMenuActive = 0;
    int m_nUserDelete = 1;
    int m_nLinked = 0;
    int m_nCanMove = 1;
    CBaseCursor* m_pBase = this;
    int m_nSelected = 0;
    int m_nHilited = 0;
    int m_nHiliteSection = -1;
    int m_nCursorAcLevel = 0;
    bool m_bRealTime;
    int m_nCursorID = 0;
};
