// The colour bar: a narrow child window beside an image that shows the working colour
// table as a vertical gradient, entry 0 at the bottom. A left click opens the "Color
// Adjustment" dialog, or, when the host enables it, a sideways drag steps through the
// tables (one table per 40 pixels). The derivation of the table is WorkingTable's.
//
// What the bar tells its parent: WM_NOTIFY NM_CLICK on a left press and NM_RCLICK on a
// right release (wParam the control id), and "MESSAGE_COLOR_CTRL_STR" with the working
// table in lParam whenever the table changes (wParam 512 while the mouse moves it, else 0).
#pragma once

#include "colour/ColorAdjust.h"
#include "foundation/platform/afx.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

class CImageAdjust;
class CDataExchange;

// Command that opens the adjustment dialog (menu 10001, first popup, and a click).
constexpr UINT ID_COLOR_ADJUST = 35000;
// Command sent to the host first: a non-zero answer means the host shows its own dialog.
constexpr UINT ID_COLOR_SCALE = 35203;
constexpr UINT IDR_COLOR_MENU = 10001;
// Steps of a sideways drag: one table per this many pixels.
constexpr int kColorDragPixels = 40;

class CColorCtrl : public CWnd, public orlex::colour::WorkingTable {
    DECLARE_SERIAL(CColorCtrl)
public:
    // The table number comes from the profile ("ColorControl"/"ColorTable", default 12).
    CColorCtrl();
    ~CColorCtrl() override;

    // A visible child with a border and no caption (style 0x50800000) at rect in parent.
    void Create(CRect& rect, CWnd* parent, int id);

    // Derives the working table for `table` (clamped) and redraws the bar; with `save`
    // non-zero the number goes to the profile. Does nothing before the window exists.
    void SetColorTable(int table, int save);
    // Stores the clamped table number, fills the working table from the list and builds
    // the display; dc null draws into the bar's own memory bitmap, else into dc at rect.
    void CreateColorDisplay(int table, CRect& rect, HDC dc);
    // The same from a given table (256 entries copied when not null); m_nTable stays and
    // `index` is not read.
    void CreateColorDisplay(int index, tagRGBQUAD* table, CRect& rect, HDC dc);
    // A memory context and bitmap of the client's size for the bar (replaces the old pair).
    void CreateDestinationBitmap();
    // Stretches the display DIB into the memory bitmap and repaints the bar.
    void UpdateControl();
    // "Table: %d" of the table number, in a buffer of the object (valid until next call).
    char* GetText();
    // Stretches the bar's picture into dest of dc and frames it with dc's pen.
    void PrintInRect(CDC* dc, CRect& dest);
    // Loading direction only: re-derives the table and tells the parent.
    void DoDataExchange(CDataExchange* dx) override;
    // Class record (unless versioning is off), then table, contrast, offset as ints. A
    // stored table number past the list loads as 12. Bad schema: CArchiveException 7.
    void Serialize(CArchive& ar) override;
    // Lets a press and sideways drag step through the tables instead of opening the dialog.
    void EnableModifyColorTableUsingMouse(bool enable) { m_bMouseEdit = enable; }

    // A bar holds the mouse in a table drag (one flag for all bars; the capture is single).
    static bool m_bColorDrag;

    int m_nDragSteps = 0;
    int m_nDragStartX = 0;
    int m_bBitmapValid = 0;
    HGLOBAL m_hDib = nullptr;
    COLORREF m_crBack = 0;
    CDC m_memDC;
    CBitmap m_bitmap;
    char m_szText[124] = {};
    HGDIOBJ m_hOldBitmap = nullptr;
    CImageAdjust* m_pDialog = nullptr;
    HCURSOR m_hSizeCursor;
    bool m_bMouseEdit = false;
    // The bar belongs to a live image (set by the frame that makes it).
    bool m_bRealTime = false;

protected:
    // Clamps and stores the table number and fills the working table; draws nothing.
    void InitColorTable(int table);

    int OnCreate(LPCREATESTRUCT cs) override;
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* dc) override;
    void OnSize(UINT type, int cx, int cy) override;
    BOOL OnSetCursor(CWnd* wnd, UINT hitTest, UINT message) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    void OnRButtonUp(UINT flags, CPoint point) override;
    afx_msg void OnColorAdjust();
    afx_msg LRESULT OnDialogDeleted(WPARAM wParam, LPARAM lParam);

private:
    friend class CImageAdjust;
    void CreateColorDisplay(CRect& rect, HDC dc);
    // Stretches the locked DIB at `block` into rect of dc.
    void StretchDib(HDC dc, const CRect& rect, const BYTE* block) const;
    void ReleaseDestinationBitmap();
    void NotifyParent(UINT code);
    void SendColorMessage(WPARAM kind);

    DECLARE_MESSAGE_MAP()
};

namespace orlex::colour {

// Size of the bar's display DIB for n table entries: header, 256-entry colour table and
// n rows of 4 index bytes.
constexpr std::size_t DisplayDibBytes(int n) { return std::size_t(n) * 4 + 1064; }
// Fills a zeroed block of DisplayDibBytes(n) bytes: the header (width 4, height n, 8 bits),
// the colour table and rows whose four bytes are the row's index.
void FillDisplayDib(BYTE* block, int n, const tagRGBQUAD* table);

}  // namespace orlex::colour
