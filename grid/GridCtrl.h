// CGridCtrl: a spreadsheet-like table of cell objects in a child window. The first rows and
// columns can be fixed (they stay as headers while the rest scrolls); a row or column of size
// 0 is hidden. Sizes, hit tests and scrolling all start from one cached top left scrolled
// cell, so they cost what is visible, not the size of the table. In virtual mode the grid
// holds no cells and asks its owner (or a callback) for each one it needs.
//
// The owner (m_hWndOwner, else the parent) hears of what happens by WM_NOTIFY (wParam the
// control id) with an NM_GRIDVIEW (row and column), a GV_DISPINFO or a GV_CACHEHINT; see the
// GVN_ codes in GridTypes.h.
#pragma once

#include "foundation/platform/afxcmn.h"
#include "foundation/platform/afxcoll.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "grid/GridAxis.h"
#include "grid/GridCell.h"
#include "grid/GridDefaultCell.h"
#include "grid/GridTypes.h"

// One row of the table: a cell pointer per column.
using GRID_ROW = CTypedPtrArray<CObArray, CGridCellBase*>;

class CGridCtrl : public CWnd {
    DECLARE_DYNCREATE(CGridCtrl)
public:
    // The counts are set as by SetRowCount, SetColumnCount and the fixed counts.
    CGridCtrl(int nRows = 0, int nCols = 0, int nFixedRows = 0, int nFixedCols = 0);
    ~CGridCtrl() override;

    // Makes the window (class "MFCGridCtrl") and gives every row and column the default
    // height and width. FALSE when the window can't be made or the sizes can't be held.
    BOOL Create(const RECT& rect, CWnd* parent, UINT nID,
                DWORD dwStyle = WS_CHILD | WS_BORDER | WS_TABSTOP | WS_VISIBLE);

    // Counts --------------------------------------------------------------------------------
    int GetRowCount() const { return m_nRows; }
    int GetColumnCount() const { return m_nCols; }
    int GetFixedRowCount() const { return m_nFixedRows; }
    int GetFixedColumnCount() const { return m_nFixedCols; }
    // Grow or shrink the table (new rows take the default height, new columns the fixed
    // column default's width). FALSE on failure: a size that can't be held is reported and
    // refused, leaving the rows or columns completed so far.
    BOOL SetRowCount(int nRows = 10);
    BOOL SetColumnCount(int nCols = 10);
    // Rows or columns that change side get their fixed bits and default colours rewritten.
    BOOL SetFixedRowCount(int nFixedRows = 1);
    BOOL SetFixedColumnCount(int nFixedCols = 1);

    // Sizes (pixels; 0 hides) -------------------------------------------------------------
    // -1 for a bad index.
    int GetRowHeight(int nRow) const;
    int GetColumnWidth(int nCol) const;
    // FALSE for a bad index or a negative size.
    BOOL SetRowHeight(int nRow, int height);
    BOOL SetColumnWidth(int nCol, int width);
    int GetFixedRowHeight() const;
    int GetFixedColumnWidth() const;
    // All rows or columns; at most INT_MAX.
    int GetVirtualWidth() const;
    int GetVirtualHeight() const;

    // Colours -------------------------------------------------------------------------------
    void SetGridBkColor(COLORREF clr) { m_crGridBkColour = clr; }
    COLORREF GetGridBkColor() const { return m_crGridBkColour; }
    void SetBkColor(COLORREF clr) { m_crGridBkColour = clr; }
    COLORREF GetBkColor() const { return m_crGridBkColour; }
    void SetGridLineColor(COLORREF clr) { m_crGridLineColour = clr; }
    COLORREF GetGridLineColor() const { return m_crGridLineColour; }
    void SetGridColor(COLORREF clr) { m_crGridLineColour = clr; }
    COLORREF GetGridColor() const { return m_crGridLineColour; }
    void SetTitleTipBackClr(COLORREF clr = CLR_DEFAULT) { m_crTTipBackClr = clr; }
    COLORREF GetTitleTipBackClr() const { return m_crTTipBackClr; }
    void SetTitleTipTextClr(COLORREF clr = CLR_DEFAULT) { m_crTTipTextClr = clr; }
    COLORREF GetTitleTipTextClr() const { return m_crTTipTextClr; }
    // Normal cells' defaults.
    void SetTextColor(COLORREF clr) { m_cellDefault.SetTextClr(clr); }
    COLORREF GetTextColor() const { return m_cellDefault.GetTextClr(); }
    void SetTextBkColor(COLORREF clr) { m_cellDefault.SetBackClr(clr); }
    COLORREF GetTextBkColor() const { return m_cellDefault.GetBackClr(); }
    // Fixed cells' defaults (the three fixed defaults; read from the fixed row default).
    void SetFixedTextColor(COLORREF clr);
    COLORREF GetFixedTextColor() const { return m_cellFixedRowDef.GetTextClr(); }
    void SetFixedBkColor(COLORREF clr);
    COLORREF GetFixedBkColor() const { return m_cellFixedRowDef.GetBackClr(); }

    // Default cells -------------------------------------------------------------------------
    // The default of normal cells (0, 0), fixed columns (0, 1), fixed rows (1, 0), both (1, 1).
    CGridDefaultCell* GetDefaultCell(BOOL bFixedRow, BOOL bFixedCol) const;
    // Read m_cellDefault; the setters write all four and change no existing size.
    int GetDefCellWidth() const { return m_cellDefault.GetWidth(); }
    int GetDefCellHeight() const { return m_cellDefault.GetHeight(); }
    int GetDefCellMargin() const { return static_cast<int>(m_cellDefault.GetMargin()); }
    void SetDefCellWidth(int nWidth);
    void SetDefCellHeight(int nHeight);
    void SetDefCellMargin(int nMargin);

    // Behaviour -----------------------------------------------------------------------------
    void SetGridLines(int nWhichLines = GVL_BOTH);
    int GetGridLines() const { return m_nGridLines; }
    void SetEditable(BOOL bEditable = TRUE) { m_bEditable = bEditable; }
    BOOL IsEditable() const { return m_bEditable; }
    void EnableDragAndDrop(BOOL bAllow = TRUE) { m_bAllowDragAndDrop = bAllow; }
    BOOL GetDragAndDrop() const { return m_bAllowDragAndDrop; }
    // Clears selection, focus and sort column, stores the flag, turns fixed-row selection off.
    void SetListMode(BOOL bEnableListMode = TRUE);
    BOOL GetListMode() const { return m_bListMode; }
    void SetSingleRowSelection(BOOL bSing = TRUE) { m_bSingleRowSelection = bSing; }
    BOOL GetSingleRowSelection() const { return m_bSingleRowSelection && m_bListMode; }
    void SetSingleColSelection(BOOL bSing = TRUE) { m_bSingleColSelection = bSing; }
    BOOL GetSingleColSelection() const { return m_bSingleColSelection; }
    // Resets the selection, stores the flag, resets again.
    void EnableSelection(BOOL bEnable = TRUE);
    BOOL IsSelectable() const { return m_bEnableSelection; }
    void SetFixedRowSelection(BOOL bSelect) { m_bFixedRowSelection = bSelect; }
    BOOL GetFixedRowSelection() const { return m_bFixedRowSelection; }
    void SetFixedColumnSelection(BOOL bSelect) { m_bFixedColumnSelection = bSelect; }
    BOOL GetFixedColumnSelection() const { return m_bFixedColumnSelection; }
    void SetHeaderSort(BOOL bSortOnClick = TRUE) { m_bHeaderSort = bSortOnClick; }
    BOOL GetHeaderSort() const { return m_bHeaderSort; }
    void SetHandleTabKey(BOOL bHandleTab = TRUE) { m_bHandleTabKey = bHandleTab; }
    BOOL GetHandleTabKey() const { return m_bHandleTabKey; }
    void SetDoubleBuffering(BOOL bBuffer = TRUE) { m_bDoubleBuffer = bBuffer; }
    BOOL GetDoubleBuffering() const { return m_bDoubleBuffer; }
    void EnableTitleTips(BOOL bEnable = TRUE) { m_bTitleTips = bEnable; }
    BOOL GetTitleTips() const { return m_bTitleTips; }
    void EnableWysiwygPrinting(BOOL bEnable = TRUE) { m_bWysiwygPrinting = bEnable; }
    BOOL GetWysiwygPrinting() const { return m_bWysiwygPrinting; }
    void EnableHiddenColUnhide(BOOL bEnable = TRUE) { m_bHiddenColUnhide = bEnable; }
    BOOL GetHiddenColUnhide() const { return m_bHiddenColUnhide; }
    void EnableHiddenRowUnhide(BOOL bEnable = TRUE) { m_bHiddenRowUnhide = bEnable; }
    BOOL GetHiddenRowUnhide() const { return m_bHiddenRowUnhide; }
    void EnableColumnHide(BOOL bEnable = TRUE) { m_bAllowColHide = bEnable; }
    BOOL GetColumnHide() const { return m_bAllowColHide; }
    void EnableRowHide(BOOL bEnable = TRUE) { m_bAllowRowHide = bEnable; }
    BOOL GetRowHide() const { return m_bAllowRowHide; }
    void SetTrackFocusCell(BOOL bTrack) { m_bTrackFocusCell = bTrack; }
    BOOL GetTrackFocusCell() const { return m_bTrackFocusCell; }
    void SetFrameFocusCell(BOOL bFrame) { m_bFrameFocusCell = bFrame; }
    BOOL GetFrameFocusCell() const { return m_bFrameFocusCell; }
    void SetAutoSizeStyle(int nStyle = GVS_BOTH) { m_nAutoSizeStyle = nStyle; }
    int GetAutoSizeStyle() const { return m_nAutoSizeStyle; }
    void SetRowResize(BOOL bResize = TRUE) { m_bAllowRowResize = bResize; }
    BOOL GetRowResize() const { return m_bAllowRowResize; }
    void SetColumnResize(BOOL bResize = TRUE) { m_bAllowColumnResize = bResize; }
    BOOL GetColumnResize() const { return m_bAllowColumnResize; }
    void SetShadedPrintOut(BOOL bEnable = TRUE) { m_bShadedPrintOut = bEnable; }
    BOOL GetShadedPrintOut() const { return m_bShadedPrintOut; }
    BOOL IsVisibleHScroll() const { return (m_nBarState & 1) != 0; }
    BOOL IsVisibleVScroll() const { return (m_nBarState & 2) != 0; }
    // Not owned; the list must outlive its use by the grid.
    void SetImageList(CImageList* pList) { m_pImageList = pList; }
    CImageList* GetImageList() const { return m_pImageList; }
    int GetMouseMode() const { return m_MouseMode; }
    // Returns the old mode.
    int SetMouseMode(int nMode);

    // Virtual mode --------------------------------------------------------------------------
    // Deletes every cell and stores the flag; on: auto-size style 1, not editable, no fixed
    // row or column selection, no header sort.
    void SetVirtualMode(BOOL bVirtual);
    BOOL GetVirtualMode() const { return m_bVirtualMode; }
    void SetCallbackFunc(GRIDCALLBACK pCallback, LPARAM lParam)
    {
        m_pfnCallback = pCallback;
        m_lCallbackParam = lParam;
    }
    GRIDCALLBACK GetCallbackFunc() const { return m_pfnCallback; }

    // Cells ---------------------------------------------------------------------------------
    // Null for a bad index. In virtual mode one static cell, filled afresh by each call (also
    // for another grid): good only until the next GetCell.
    CGridCellBase* GetCell(int nRow, int nCol) const;
    // Replaces a cell by one of another class, copying the old values; FALSE in virtual mode,
    // for a bad index or a class not derived from CGridCellBase.
    BOOL SetCellType(int nRow, int nCol, CRuntimeClass* pRuntimeClass);
    BOOL SetDefaultCellType(CRuntimeClass* pRuntimeClass);

    BOOL GetItem(GV_ITEM* pItem);
    BOOL SetItem(const GV_ITEM* pItem);
    CString GetItemText(int nRow, int nCol) const;
    BOOL SetItemText(int nRow, int nCol, LPCTSTR str);
    // printf-style text; the ID form loads its format from the string resources.
    BOOL SetItemTextFmt(int nRow, int nCol, LPCTSTR szFmt, ...);
    BOOL SetItemTextFmtID(int nRow, int nCol, UINT nID, ...);
    BOOL SetItemData(int nRow, int nCol, LPARAM lParam);
    LPARAM GetItemData(int nRow, int nCol) const;
    BOOL SetItemImage(int nRow, int nCol, int iImage);
    int GetItemImage(int nRow, int nCol) const;
    // Keeps the selection map in step with bit 0x02; in virtual mode only the map (and 0).
    BOOL SetItemState(int nRow, int nCol, UINT state);
    UINT GetItemState(int nRow, int nCol) const;
    BOOL SetItemFormat(int nRow, int nCol, UINT nFormat);
    UINT GetItemFormat(int nRow, int nCol) const;
    BOOL SetItemBkColour(int nRow, int nCol, COLORREF cr = CLR_DEFAULT);
    COLORREF GetItemBkColour(int nRow, int nCol) const;
    BOOL SetItemFgColour(int nRow, int nCol, COLORREF cr = CLR_DEFAULT);
    COLORREF GetItemFgColour(int nRow, int nCol) const;
    BOOL SetItemFont(int nRow, int nCol, const LOGFONT* lf);
    // The position's default cell's font when there is no cell.
    const LOGFONT* GetItemFont(int nRow, int nCol);
    BOOL IsItemEditing(int nRow, int nCol);
    // A negative index: the whole grid's flag; else the cell's bit 0x80.
    BOOL GetModified(int nRow = -1, int nCol = -1);
    void SetModified(BOOL bModified = TRUE, int nRow = -1, int nCol = -1);
    BOOL IsCellEditable(int nRow, int nCol) const;
    BOOL IsCellEditable(const CCellID& cell) const { return IsCellEditable(cell.row, cell.col); }
    BOOL IsCellFixed(int nRow, int nCol);
    BOOL IsCellSelected(int nRow, int nCol) const;
    BOOL IsCellSelected(const CCellID& cell) const { return IsCellSelected(cell.row, cell.col); }
    BOOL IsCellVisible(int nRow, int nCol);
    BOOL IsCellVisible(const CCellID& cell) { return IsCellVisible(cell.row, cell.col); }
    BOOL IsValid(int nRow, int nCol) const;
    BOOL IsValid(const CCellID& cell) const { return IsValid(cell.row, cell.col); }
    BOOL IsValid(const CCellRange& range) const;
    // The extent of the cell's own text in its font.
    CSize GetCellTextExtent(int nRow, int nCol);
    // The point relative to the cell's origin, (0, 0) when it has none.
    CPoint GetPointClicked(int nRow, int nCol, const CPoint& point);

    // Rows and columns ----------------------------------------------------------------------
    // nRow -1 appends; below the fixed rows or at or past the count: -1. Returns the index.
    int InsertRow(LPCTSTR strHeading, int nRow = -1);
    // nColumn -1 or the count appends; below the fixed columns or past the count: -1.
    int InsertColumn(LPCTSTR strHeading, UINT nFormat = DT_CENTER | DT_VCENTER | DT_SINGLELINE,
                     int nColumn = -1);
    BOOL DeleteRow(int nRow);
    BOOL DeleteColumn(int nColumn);
    BOOL DeleteNonFixedRows();
    BOOL DeleteAllItems();
    // Empties the text of the range's cells that are not hidden, as a paste would.
    void ClearCells(CCellRange Selection);

    // Automatic sizing (style 0: m_nAutoSizeStyle) --------------------------------------------
    void AutoSize(UINT nAutoSizeStyle = GVS_DEFAULT);
    BOOL AutoSizeColumn(int nCol, UINT nAutoSizeStyle = GVS_DEFAULT, BOOL bResetScroll = TRUE);
    void AutoSizeColumns(UINT nAutoSizeStyle = GVS_DEFAULT);
    BOOL AutoSizeRow(int nRow, BOOL bResetScroll = TRUE);
    void AutoSizeRows();
    void ExpandColumnsToFit(BOOL bExpandFixed = TRUE);
    void ExpandRowsToFit(BOOL bExpandFixed = TRUE);
    void ExpandLastColumn();
    void ExpandToFit(BOOL bExpandFixed = TRUE);
    void AutoFill();

    // Sorting -------------------------------------------------------------------------------
    // Sorts the scrolled rows by column nCol (m_pfnCompare, else by text); FALSE for a
    // column past the count. A virtual grid's rows are the owner's: it marks the column only.
    BOOL SortItems(int nCol, BOOL bAscending, LPARAM data = 0);
    BOOL SortTextItems(int nCol, BOOL bAscending, LPARAM data = 0);
    BOOL SortItems(PFNLVCOMPARE pfnCompare, int nCol, BOOL bAscending, LPARAM data = 0);
    void SetCompareFunction(PFNLVCOMPARE pfnCompare) { m_pfnCompare = pfnCompare; }
    void SetSortColumn(int nCol);
    int GetSortColumn() const { return m_nSortColumn; }
    void SetSortAscending(BOOL bAscending) { m_bAscending = bAscending; }
    BOOL GetSortAscending() const { return m_bAscending; }
    // By GetText with the code page's byte order; 0 when a cell is null.
    static int pfnCellTextCompare(LPARAM lParam1, LPARAM lParam2, LPARAM lParamSort);
    // By atol of the texts: -1, 0 or 1; 0 when a cell is null.
    static int pfnCellNumericCompare(LPARAM lParam1, LPARAM lParam2, LPARAM lParamSort);

    // Geometry (client pixels) ------------------------------------------------------------
    // FALSE for a bad index and for a scrolled cell before the top left one.
    BOOL GetCellOrigin(int nRow, int nCol, LPPOINT p);
    BOOL GetCellOrigin(const CCellID& cell, LPPOINT p) { return GetCellOrigin(cell.row, cell.col, p); }
    BOOL GetCellRect(int nRow, int nCol, LPRECT pRect);
    BOOL GetCellRect(const CCellID& cell, LPRECT pRect) { return GetCellRect(cell.row, cell.col, pRect); }
    BOOL GetCellRangeRect(const CCellRange& cellRange, LPRECT lpRect);
    BOOL GetTextRect(int nRow, int nCol, LPRECT pRect);
    BOOL GetTextRect(const CCellID& cell, LPRECT pRect) { return GetTextRect(cell.row, cell.col, pRect); }
    CCellID GetCellFromPt(CPoint point, BOOL bAllowFixedCellCheck = TRUE);
    // The whole table as a range.
    CCellRange GetCellRange() const;
    CCellID GetTopleftNonFixedCell(BOOL bForceRecalculation = FALSE);
    CCellRange GetVisibleNonFixedCellRange(LPRECT pRect = nullptr, BOOL bForceRecalculation = FALSE);
    CCellRange GetUnobstructedNonFixedCellRange(BOOL bForceRecalculation = FALSE);
    // Scrolls by lines until the cell shows (a message per row or column passed).
    void EnsureVisible(int nRow, int nCol);
    void EnsureVisible(const CCellID& cell) { EnsureVisible(cell.row, cell.col); }
    // The next cell from `cell` in the directions of nFlags with the state it names;
    // (-1, -1) when none.
    CCellID GetNextItem(CCellID& cell, int nFlags) const;

    // Scroll bars ---------------------------------------------------------------------------
    void ResetScrollBars();
    int GetScrollPos32(int nBar, BOOL bGetTrackPos = FALSE);
    BOOL SetScrollPos32(int nBar, int nPos, BOOL bRedraw = TRUE);

    // Drawing -------------------------------------------------------------------------------
    // Going from off to on repaints the whole window (and with bResetScrollBars resets the
    // bars); while off nothing paints, invalidates, scrolls into view or resets the bars.
    void SetRedraw(BOOL bAllowDraw, BOOL bResetScrollBars = FALSE);
    void Refresh();
    // Deferred: the cell's rectangle one pixel larger right and bottom, with erase.
    void InvalidateCellRect(int row, int col);
    void InvalidateCellRect(const CCellID& cell) { InvalidateCellRect(cell.row, cell.col); }
    // The range clipped to the visible scrolled cells.
    void InvalidateCellRect(const CCellRange& cellRange);
    // Draws the cell at once (with a context of the window when pDC is null), then its own
    // right and bottom grid lines; FALSE when it is not visible or drawing is off.
    BOOL RedrawCell(int nRow, int nCol, CDC* pDC = nullptr);
    BOOL RedrawCell(const CCellID& cell, CDC* pDC = nullptr) { return RedrawCell(cell.row, cell.col, pDC); }
    // Every cell of the row or column on one context; TRUE only if each was drawn.
    BOOL RedrawRow(int row);
    BOOL RedrawColumn(int col);
    // The whole picture: background, the four passes (fixed corner, fixed columns, fixed
    // rows, scrolled cells) within the clip box, grid lines.
    virtual void OnDraw(CDC* pDC);
    // The areas outside and behind the cells, within the clip box.
    void EraseBkgnd(CDC* pDC);

    // Selection and focus -------------------------------------------------------------------
    // Returns the previous focus cell; a cell in the fixed part is raised out of it.
    CCellID SetFocusCell(CCellID cell);
    CCellID SetFocusCell(int nRow, int nCol) { return SetFocusCell(CCellID(nRow, nCol)); }
    CCellID GetFocusCell() const { return m_idCurrentCell; }
    // The bounding range of the selected cells; (rows, cols, -1, -1) when none.
    CCellRange GetSelectedCellRange() const;
    int GetSelectedCount() const { return static_cast<int>(m_SelectedCellMap.GetCount()); }
    void SetSelectedRange(const CCellRange& Range, BOOL bForceRepaint = FALSE, BOOL bSelectCells = TRUE);
    void SetSelectedRange(int nMinRow, int nMinCol, int nMaxRow, int nMaxCol, BOOL bForceRepaint = FALSE,
                          BOOL bSelectCells = TRUE);
    void ResetSelectedRange();
    void SelectAllCells();

    // Notices: WM_NOTIFY to the owner, or the parent; the answer.
    LRESULT SendMessageToParent(int nRow, int nCol, int nMessage) const;
    LRESULT SendDisplayRequestToParent(GV_DISPINFO* pDisplayInfo) const;
    LRESULT SendCacheHintToParent(const CCellRange& range) const;

    // The key of a cell in the selection map: row and column whole, so that a table of more
    // than 65536 rows or columns selects each cell by itself.
    static ULONGLONG SelectionKey(int nRow, int nCol);

protected:
    // The classes of cells made by the grid.
    virtual CGridCellBase* CreateCell(int nRow, int nCol);
    virtual void DestroyCell(int nRow, int nCol);
    BOOL SetCell(int nRow, int nCol, CGridCellBase* pCell);
    // Cut and paste go this way: editable, not read-only, not refused by the owner.
    BOOL ValidateAndModifyCellContents(int nRow, int nCol, LPCTSTR strText);
    virtual BOOL ValidateEdit(int nRow, int nCol, LPCTSTR str);
    virtual void EndEditing() {}

    // The quicksort of rows low to high (-1: the last row) by the cells of column nCol.
    BOOL SortItems(PFNLVCOMPARE pfnCompare, int nCol, BOOL bAscending, LPARAM data, int low, int high);
    void SelectRows(CCellID currentCell, BOOL bForceRedraw = FALSE, BOOL bSelectCells = TRUE);
    void SelectColumns(CCellID currentCell, BOOL bForceRedraw = FALSE, BOOL bSelectCells = TRUE);
    void SelectCells(CCellID currentCell, BOOL bForceRedraw = FALSE, BOOL bSelectCells = TRUE);

    // Handlers.
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* pDC) override;
    void OnSize(UINT nType, int cx, int cy) override;
    void OnHScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) override;
    void OnVScroll(UINT nSBCode, UINT nPos, CScrollBar* pScrollBar) override;
    BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) override;
    UINT OnGetDlgCode() override;
    void OnSysColorChange() override;
    // Also reads the wheel setting again; the message map does not route it.
    void OnSettingChange(UINT uFlags, LPCTSTR lpszSection) override;
    LRESULT OnSetFont(WPARAM hFont, LPARAM lParam);
    LRESULT OnGetFont(WPARAM hFont, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

public:
    // Fields, in their order. ----------------------------------------------------------------
    COLORREF m_crGridBkColour;
    COLORREF m_crGridLineColour = RGB(192, 192, 192);
    COLORREF m_crWindowText;
    COLORREF m_crWindowColour;
    COLORREF m_cr3DFace;
    COLORREF m_crShadow;
    COLORREF m_crTTipBackClr = CLR_DEFAULT;
    COLORREF m_crTTipTextClr = CLR_DEFAULT;
    BOOL m_bVirtualMode = FALSE;
    LPARAM m_lCallbackParam = 0;
    GRIDCALLBACK m_pfnCallback = nullptr;
    int m_nGridLines = GVL_BOTH;
    BOOL m_bEditable = TRUE;
    BOOL m_bModified = FALSE;
    BOOL m_bAllowDragAndDrop = FALSE;
    BOOL m_bListMode = FALSE;
    BOOL m_bSingleRowSelection = FALSE;
    BOOL m_bSingleColSelection = FALSE;
    BOOL m_bAllowDraw = TRUE;
    BOOL m_bEnableSelection = TRUE;
    BOOL m_bFixedRowSelection = TRUE;
    BOOL m_bFixedColumnSelection = TRUE;
    BOOL m_bHeaderSort = FALSE;
    BOOL m_bHandleTabKey = TRUE;
    BOOL m_bDoubleBuffer = TRUE;
    BOOL m_bTitleTips = TRUE;
    int m_nBarState = 0;
    BOOL m_bWysiwygPrinting = FALSE;
    BOOL m_bHiddenColUnhide = TRUE;
    BOOL m_bHiddenRowUnhide = TRUE;
    BOOL m_bAllowColHide = TRUE;
    BOOL m_bAllowRowHide = TRUE;
    BOOL m_bTrackFocusCell = TRUE;
    BOOL m_bFrameFocusCell = TRUE;
    int m_nAutoSizeStyle = GVS_BOTH;
    int m_nRows = 0;
    int m_nFixedRows = 0;
    int m_nCols = 0;
    int m_nFixedCols = 0;
    orlex::grid::Axis m_arRowHeights;
    orlex::grid::Axis m_arColWidths;
    int m_nVScrollMax = 0;
    int m_nHScrollMax = 0;
    CRuntimeClass* m_pRtcDefault;
    CGridDefaultCell m_cellDefault;
    CGridDefaultCell m_cellFixedColDef;
    CGridDefaultCell m_cellFixedRowDef;
    CGridDefaultCell m_cellFixedRowColDef;
    CImageList* m_pImageList = nullptr;
    CTypedPtrArray<CObArray, GRID_ROW*> m_RowData;
    int m_MouseMode = 0;
    BOOL m_bLMouseButtonDown = FALSE;
    BOOL m_bRMouseButtonDown = FALSE;
    CPoint m_LeftClickDownPoint;
    CPoint m_LastMousePoint;
    CCellID m_LeftClickDownCell;
    CCellID m_SelectionStartCell;
    CCellID m_idCurrentCell;
    CCellID m_idTopLeftCell;
    UINT_PTR m_nTimerID = 0;
    int m_nTimerInterval = 25;
    int m_nResizeCaptureRange = 3;
    BOOL m_bAllowRowResize = TRUE;
    BOOL m_bAllowColumnResize = TRUE;
    int m_nRowsPerWheelNotch = 3;
    CMap<ULONGLONG, ULONGLONG, CCellID, CCellID&> m_SelectedCellMap;
    CMap<ULONGLONG, ULONGLONG, CCellID, CCellID&> m_PrevSelectedCellMap;
    CCellID m_LastDragOverCell;
    BOOL m_bAscending = TRUE;
    int m_nSortColumn = -1;
    PFNLVCOMPARE m_pfnCompare = nullptr;
    BOOL m_bShadedPrintOut = TRUE;
    int m_nHeaderHeight = 2;
    int m_nFooterHeight = 2;
    int m_nLeftMargin = 4;
    int m_nRightMargin = 4;
    int m_nTopMargin = 1;
    int m_nBottomMargin = 1;
    int m_nGap = 1;

private:
    void RegisterWindowClass();
    void ReadSystemColours();
    int ReadWheelSetting() const;
    // The end of every table change: the sort mark cleared, modified, bars reset.
    void TableChanged();
    // A new row object holding a new cell per column; null (nothing left behind) when out
    // of memory.
    GRID_ROW* MakeRow(int nRow);
    void DeleteRowCells(int nRow);
    // Clears the selection (not the focus), as the table changes do first.
    void ClearSelection();
    // Shows or hides the window's bars, keeping m_nBarState.
    void EnableScrollBars(int nBar, BOOL bEnable);
    // The window's client rectangle (empty without a window).
    CRect ClientRect() const;
    // Scrolling by one of the SB_ codes, for both axes.
    void Scroll(int nBar, UINT nSBCode);
    // Invalidates only while drawing is allowed.
    void InvalidateIfAllowed(const RECT* rect);
    // Shows the memory exception's report.
    static void ReportOutOfMemory();
    void QuickSortRows(PFNLVCOMPARE pfnCompare, BOOL bAscending, LPARAM data, int low, int high,
                       CGridCellBase** keys);
    void SwapRows(int a, int b, CGridCellBase** keys);
};
