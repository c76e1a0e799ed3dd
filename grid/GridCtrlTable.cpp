// CGridCtrl: the table of rows and columns, its sizes, automatic sizing and sorting.
#include <algorithm>
#include <climits>
#include <cstdlib>
#include <new>
#include <vector>

#include "foundation/platform/codepage.h"
#include "grid/GridCtrl.h"

namespace {

// What one more row or column costs beside its cells, for the check before a table grows.
constexpr double kSizeEntry = sizeof(UINT);
constexpr double kRowObject = sizeof(GRID_ROW) + sizeof(void*) + 32;
constexpr double kHeapOverhead = 16;

}  // namespace

void CGridCtrl::TableChanged()
{
    if (m_nSortColumn >= 0) {
        InvalidateCellRect(0, m_nSortColumn);
        m_nSortColumn = -1;
    }
    m_bModified = TRUE;
    ResetScrollBars();
}

void CGridCtrl::ClearSelection()
{
    m_PrevSelectedCellMap.RemoveAll();
    SetSelectedRange(-1, -1, -1, -1, FALSE, TRUE);
}

GRID_ROW* CGridCtrl::MakeRow(int nRow)
{
    auto* pRow = new (std::nothrow) GRID_ROW;
    if (!pRow)
        return nullptr;
    try {
        pRow->SetSize(m_nCols);
    } catch (CMemoryException* e) {
        e->Delete();
        delete pRow;
        return nullptr;
    }
    CGridCellBase** cells = reinterpret_cast<CGridCellBase**>(pRow->GetData());
    for (int col = 0; col < m_nCols; ++col) {
        CGridCellBase* pCell = nullptr;
        try {
            pCell = CreateCell(nRow, col);
        } catch (const std::bad_alloc&) {
            pCell = nullptr;
        }
        if (!pCell) {
            for (int c = 0; c < col; ++c)
                delete cells[c];
            delete pRow;
            return nullptr;
        }
        cells[col] = pCell;
    }
    return pRow;
}

void CGridCtrl::DeleteRowCells(int nRow)
{
    for (int col = 0; col < m_nCols; ++col)
        DestroyCell(nRow, col);
    delete m_RowData.GetAt(nRow);
    m_RowData.SetAt(nRow, nullptr);
}

BOOL CGridCtrl::SetRowCount(int nRows)
{
    if (nRows < 0)
        return FALSE;
    if (nRows == m_nRows)
        return TRUE;
    m_idTopLeftCell.row = -1;
    if (nRows < m_nFixedRows)
        m_nFixedRows = nRows;
    if (m_idCurrentCell.row >= nRows)
        SetFocusCell(-1, -1);

    BOOL bResult = TRUE;
    if (nRows < m_nRows) {
        if (!m_bVirtualMode)
            for (int row = m_nRows - 1; row >= nRows; --row)
                DeleteRowCells(row);
        m_nRows = nRows;
        m_arRowHeights.SetSize(nRows, 0);
        if (!m_bVirtualMode)
            m_RowData.SetSize(nRows);
    } else {
        const double perRow =
            kSizeEntry + (m_bVirtualMode ? 0.0
                                         : kRowObject + m_nCols * (sizeof(void*) + m_pRtcDefault->m_nObjectSize +
                                                                   kHeapOverhead));
        try {
            if (!orlex::grid::CanHold(perRow * (static_cast<double>(nRows) - m_nRows)))
                AfxThrowMemoryException();
            const int first = m_nRows;
            m_arRowHeights.SetSize(nRows, static_cast<UINT>(m_cellDefault.GetHeight()));
            if (!m_bVirtualMode) {
                m_RowData.SetSize(nRows);
                for (int row = first; row < nRows; ++row) {
                    GRID_ROW* pRow = MakeRow(row);
                    if (!pRow)
                        AfxThrowMemoryException();
                    m_RowData.SetAt(row, pRow);
                    ++m_nRows;
                }
            }
            m_nRows = nRows;
        } catch (CMemoryException* e) {
            e->ReportError();
            e->Delete();
            // The tables keep the rows completed.
            m_arRowHeights.SetSize(m_nRows, 0);
            if (!m_bVirtualMode)
                m_RowData.SetSize(m_nRows);
            bResult = FALSE;
        }
    }
    TableChanged();
    Refresh();
    return bResult;
}

BOOL CGridCtrl::SetColumnCount(int nCols)
{
    if (nCols < 0)
        return FALSE;
    if (nCols == m_nCols)
        return TRUE;
    m_idTopLeftCell.col = -1;
    if (nCols < m_nFixedCols)
        m_nFixedCols = nCols;
    if (m_idCurrentCell.col >= nCols)
        SetFocusCell(-1, -1);

    BOOL bResult = TRUE;
    if (nCols < m_nCols) {
        if (!m_bVirtualMode)
            for (int row = 0; row < m_nRows; ++row) {
                for (int col = nCols; col < m_nCols; ++col)
                    DestroyCell(row, col);
                m_RowData.GetAt(row)->SetSize(nCols);
            }
        m_nCols = nCols;
        m_arColWidths.SetSize(nCols, 0);
    } else {
        const int oldCols = m_nCols;
        const double perCol =
            kSizeEntry +
            (m_bVirtualMode ? 0.0 : m_nRows * (sizeof(void*) + m_pRtcDefault->m_nObjectSize + kHeapOverhead));
        int rowsDone = 0;
        try {
            if (!orlex::grid::CanHold(perCol * (static_cast<double>(nCols) - oldCols)))
                AfxThrowMemoryException();
            m_arColWidths.SetSize(nCols, static_cast<UINT>(m_cellFixedColDef.GetWidth()));
            if (!m_bVirtualMode) {
                for (; rowsDone < m_nRows; ++rowsDone) {
                    GRID_ROW* pRow = m_RowData.GetAt(rowsDone);
                    pRow->SetSize(nCols);
                    for (int col = oldCols; col < nCols; ++col) {
                        CGridCellBase* pCell = CreateCell(rowsDone, col);
                        if (!pCell)
                            AfxThrowMemoryException();
                        pRow->SetAt(col, pCell);
                    }
                }
            }
            m_nCols = nCols;
        } catch (CMemoryException* e) {
            e->ReportError();
            e->Delete();
            bResult = FALSE;
        } catch (const std::bad_alloc&) {
            ReportOutOfMemory();
            bResult = FALSE;
        }
        if (!bResult) {
            // Back to the old columns in every row, so that the table stays square.
            if (!m_bVirtualMode)
                for (int row = 0; row <= std::min(rowsDone, m_nRows - 1); ++row) {
                    GRID_ROW* pRow = m_RowData.GetAt(row);
                    for (int col = oldCols; col < pRow->GetSize(); ++col)
                        delete pRow->GetAt(col);
                    pRow->SetSize(oldCols);
                }
            m_nCols = oldCols;
            m_arColWidths.SetSize(oldCols, 0);
        }
    }
    TableChanged();
    Refresh();
    return bResult;
}

BOOL CGridCtrl::SetFixedRowCount(int nFixedRows)
{
    if (nFixedRows < 0)
        return FALSE;
    if (nFixedRows == m_nFixedRows)
        return TRUE;
    if (nFixedRows > m_nRows && !SetRowCount(nFixedRows))
        return FALSE;
    ClearSelection();
    if (m_idCurrentCell.row < nFixedRows)
        SetFocusCell(-1, -1);
    if (!m_bVirtualMode) {
        const int from = std::min(nFixedRows, m_nFixedRows), to = std::max(nFixedRows, m_nFixedRows);
        for (int row = from; row < to; ++row)
            for (int col = 0; col < m_nCols; ++col) {
                CGridCellBase* pCell = GetCell(row, col);
                if (!pCell)
                    continue;
                DWORD state = pCell->GetState();
                if (nFixedRows > m_nFixedRows) {
                    state |= GVIS_FIXED | GVIS_FIXEDROW;
                } else if (col < m_nFixedCols) {
                    state &= ~GVIS_FIXEDROW;
                } else {
                    state &= ~(GVIS_FIXED | GVIS_FIXEDROW);
                }
                pCell->SetState(state);
                if (nFixedRows > m_nFixedRows || col >= m_nFixedCols) {
                    pCell->SetTextClr(CLR_DEFAULT);
                    pCell->SetBackClr(CLR_DEFAULT);
                }
            }
    }
    m_nFixedRows = nFixedRows;
    m_arRowHeights.ForgetPlace();
    TableChanged();
    Refresh();
    return TRUE;
}

BOOL CGridCtrl::SetFixedColumnCount(int nFixedCols)
{
    if (nFixedCols < 0)
        return FALSE;
    if (nFixedCols == m_nFixedCols)
        return TRUE;
    if (nFixedCols > m_nCols && !SetColumnCount(nFixedCols))
        return FALSE;
    ClearSelection();
    if (m_idCurrentCell.col < nFixedCols)
        SetFocusCell(-1, -1);
    if (!m_bVirtualMode) {
        const int from = std::min(nFixedCols, m_nFixedCols), to = std::max(nFixedCols, m_nFixedCols);
        for (int row = 0; row < m_nRows; ++row)
            for (int col = from; col < to; ++col) {
                CGridCellBase* pCell = GetCell(row, col);
                if (!pCell)
                    continue;
                DWORD state = pCell->GetState();
                if (nFixedCols > m_nFixedCols) {
                    state |= GVIS_FIXED | GVIS_FIXEDCOL;
                } else if (row < m_nFixedRows) {
                    state &= ~GVIS_FIXEDCOL;
                } else {
                    state &= ~(GVIS_FIXED | GVIS_FIXEDCOL);
                }
                pCell->SetState(state);
                if (nFixedCols > m_nFixedCols || row >= m_nFixedRows) {
                    pCell->SetTextClr(CLR_DEFAULT);
                    pCell->SetBackClr(CLR_DEFAULT);
                }
            }
    }
    m_nFixedCols = nFixedCols;
    m_arColWidths.ForgetPlace();
    TableChanged();
    Refresh();
    return TRUE;
}

// Sizes -------------------------------------------------------------------------------------

int CGridCtrl::GetRowHeight(int nRow) const
{
    return nRow >= 0 && nRow < m_arRowHeights.GetSize() ? static_cast<int>(m_arRowHeights.GetAt(nRow)) : -1;
}

int CGridCtrl::GetColumnWidth(int nCol) const
{
    return nCol >= 0 && nCol < m_arColWidths.GetSize() ? static_cast<int>(m_arColWidths.GetAt(nCol)) : -1;
}

BOOL CGridCtrl::SetRowHeight(int nRow, int height)
{
    if (nRow < 0 || nRow >= m_nRows || height < 0)
        return FALSE;
    m_arRowHeights.SetAt(nRow, static_cast<UINT>(height));
    ResetScrollBars();
    return TRUE;
}

BOOL CGridCtrl::SetColumnWidth(int nCol, int width)
{
    if (nCol < 0 || nCol >= m_nCols || width < 0)
        return FALSE;
    m_arColWidths.SetAt(nCol, static_cast<UINT>(width));
    ResetScrollBars();
    return TRUE;
}

int CGridCtrl::GetFixedRowHeight() const
{
    return static_cast<int>(std::min<long long>(m_arRowHeights.Sum(0, m_nFixedRows), INT_MAX));
}

int CGridCtrl::GetFixedColumnWidth() const
{
    return static_cast<int>(std::min<long long>(m_arColWidths.Sum(0, m_nFixedCols), INT_MAX));
}

int CGridCtrl::GetVirtualWidth() const
{
    return static_cast<int>(std::min<long long>(m_arColWidths.Total(), INT_MAX));
}

int CGridCtrl::GetVirtualHeight() const
{
    return static_cast<int>(std::min<long long>(m_arRowHeights.Total(), INT_MAX));
}

// Inserting and deleting ---------------------------------------------------------------------

int CGridCtrl::InsertColumn(LPCTSTR strHeading, UINT nFormat, int nColumn)
{
    if (nColumn < -1 || (nColumn >= 0 && nColumn < m_nFixedCols) || nColumn > m_nCols)
        return -1;
    ClearSelection();
    if (m_nRows < 1 && !SetRowCount(1))
        return -1;
    if (nColumn < 0)
        nColumn = m_nCols;
    try {
        m_arColWidths.InsertAt(nColumn, 0);
        if (!m_bVirtualMode)
            for (int row = 0; row < m_nRows; ++row)
                m_RowData.GetAt(row)->InsertAt(nColumn, static_cast<CGridCellBase*>(nullptr));
    } catch (...) {
        ReportOutOfMemory();
        return -1;
    }
    ++m_nCols;
    if (!m_bVirtualMode)
        for (int row = 0; row < m_nRows; ++row)
            SetCell(row, nColumn, CreateCell(row, nColumn));
    SetItemText(0, nColumn, strHeading);
    for (int row = 0; row < m_nRows; ++row)
        SetItemFormat(row, nColumn, nFormat);
    CGridCellBase* pHeading = GetCell(0, nColumn);
    SetColumnWidth(nColumn, pHeading ? pHeading->GetTextExtent(strHeading).cx : 0);
    if (m_idCurrentCell.col != -1 && nColumn < m_idCurrentCell.col)
        ++m_idCurrentCell.col;
    TableChanged();
    return nColumn;
}

int CGridCtrl::InsertRow(LPCTSTR strHeading, int nRow)
{
    if (nRow < -1 || (nRow >= 0 && nRow < m_nFixedRows) || nRow >= m_nRows)
        return -1;
    ClearSelection();
    if (m_nCols < 1 && !SetColumnCount(1))
        return -1;
    if (nRow < 0)
        nRow = m_nRows;
    GRID_ROW* pRow = nullptr;
    try {
        if (!m_bVirtualMode) {
            pRow = MakeRow(nRow);
            if (!pRow)
                AfxThrowMemoryException();
            m_RowData.InsertAt(nRow, pRow);
        }
        m_arRowHeights.InsertAt(nRow, 0);
    } catch (...) {
        ReportOutOfMemory();
        return -1;
    }
    ++m_nRows;
    SetItemText(nRow, 0, strHeading);
    int height = m_cellFixedRowDef.GetHeight();
    if (strHeading && *strHeading) {
        if (CGridCellBase* pCell = GetCell(nRow, 0))
            height = pCell->GetTextExtent(strHeading).cy;
    }
    SetRowHeight(nRow, height);
    if (m_idCurrentCell.row != -1 && nRow < m_idCurrentCell.row)
        ++m_idCurrentCell.row;
    TableChanged();
    return nRow;
}

BOOL CGridCtrl::DeleteColumn(int nColumn)
{
    if (nColumn < 0 || nColumn >= m_nCols)
        return FALSE;
    ClearSelection();
    if (!m_bVirtualMode)
        for (int row = 0; row < m_nRows; ++row) {
            DestroyCell(row, nColumn);
            m_RowData.GetAt(row)->RemoveAt(nColumn);
        }
    m_arColWidths.RemoveAt(nColumn);
    --m_nCols;
    if (nColumn < m_nFixedCols)
        --m_nFixedCols;
    if (m_idCurrentCell.col == nColumn)
        m_idCurrentCell = CCellID();
    else if (m_idCurrentCell.col > nColumn)
        --m_idCurrentCell.col;
    TableChanged();
    return TRUE;
}

BOOL CGridCtrl::DeleteRow(int nRow)
{
    if (nRow < 0 || nRow >= m_nRows)
        return FALSE;
    ClearSelection();
    if (!m_bVirtualMode) {
        DeleteRowCells(nRow);
        m_RowData.RemoveAt(nRow);
    }
    m_arRowHeights.RemoveAt(nRow);
    --m_nRows;
    if (nRow < m_nFixedRows)
        --m_nFixedRows;
    if (m_idCurrentCell.row == nRow)
        m_idCurrentCell = CCellID();
    else if (m_idCurrentCell.row > nRow)
        --m_idCurrentCell.row;
    TableChanged();
    return TRUE;
}

BOOL CGridCtrl::DeleteNonFixedRows()
{
    ResetSelectedRange();
    for (int nRow = m_nRows - 1; nRow >= m_nFixedRows; --nRow)
        DeleteRow(nRow);
    return TRUE;
}

BOOL CGridCtrl::DeleteAllItems()
{
    ResetSelectedRange();
    m_arColWidths.RemoveAll();
    m_arRowHeights.RemoveAll();
    if (!m_bVirtualMode)
        for (int row = m_nRows - 1; row >= 0; --row)
            if (m_RowData.GetAt(row))
                DeleteRowCells(row);
    m_RowData.RemoveAll();
    m_nRows = m_nCols = m_nFixedRows = m_nFixedCols = 0;
    m_idTopLeftCell = CCellID();
    TableChanged();
    return TRUE;
}

void CGridCtrl::ClearCells(CCellRange Selection)
{
    for (int row = std::max(Selection.GetMinRow(), 0); row <= std::min(Selection.GetMaxRow(), m_nRows - 1); ++row) {
        if (GetRowHeight(row) <= 0)
            continue;
        for (int col = std::max(Selection.GetMinCol(), 0); col <= std::min(Selection.GetMaxCol(), m_nCols - 1);
             ++col)
            if (GetColumnWidth(col) > 0)
                ValidateAndModifyCellContents(row, col, "");
    }
    Refresh();
}

// Virtual mode -------------------------------------------------------------------------------

void CGridCtrl::SetVirtualMode(BOOL bVirtual)
{
    DeleteAllItems();
    m_bVirtualMode = bVirtual;
    if (bVirtual) {
        m_nAutoSizeStyle = GVS_HEADER;
        m_bEditable = FALSE;
        m_bFixedRowSelection = FALSE;
        m_bFixedColumnSelection = FALSE;
        m_bHeaderSort = FALSE;
    }
}

// Automatic sizing ----------------------------------------------------------------------------

namespace {

struct RowBlock {
    int first;
    int last;
};

RowBlock MeasuredRows(int style, int fixedRows, int rows)
{
    return {(style & GVS_HEADER) ? 0 : fixedRows, (style & GVS_DATA) ? rows - 1 : fixedRows - 1};
}

}  // namespace

BOOL CGridCtrl::AutoSizeColumn(int nCol, UINT nAutoSizeStyle, BOOL bResetScroll)
{
    if (nCol < 0 || nCol >= m_nCols || GetColumnWidth(nCol) <= 0)
        return FALSE;
    const int style = nAutoSizeStyle ? static_cast<int>(nAutoSizeStyle) : m_nAutoSizeStyle;
    const RowBlock block = MeasuredRows(style, m_nFixedRows, m_nRows);
    CDC* pDC = ::IsWindow(m_hWnd) ? GetDC() : nullptr;
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(block.first, nCol, block.last, nCol));
    int width = 0;
    for (int row = block.first; row <= block.last; ++row) {
        if (GetRowHeight(row) <= 0)
            continue;
        if (CGridCellBase* pCell = GetCell(row, nCol))
            width = std::max<int>(width, pCell->GetCellExtent(pDC).cx);
    }
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(-1, -1, -1, -1));
    m_arColWidths.SetAt(nCol, static_cast<UINT>(width));
    if (pDC)
        ReleaseDC(pDC);
    if (bResetScroll)
        ResetScrollBars();
    return TRUE;
}

BOOL CGridCtrl::AutoSizeRow(int nRow, BOOL bResetScroll)
{
    if (nRow < 0 || nRow >= m_nRows || GetRowHeight(nRow) <= 0)
        return FALSE;
    CDC* pDC = ::IsWindow(m_hWnd) ? GetDC() : nullptr;
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(nRow, 0, nRow, m_nCols - 1));
    int height = 0;
    for (int col = 0; col < m_nCols; ++col) {
        if (GetColumnWidth(col) <= 0)
            continue;
        if (CGridCellBase* pCell = GetCell(nRow, col))
            height = std::max<int>(height, pCell->GetCellExtent(pDC).cy);
    }
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(-1, -1, -1, -1));
    m_arRowHeights.SetAt(nRow, static_cast<UINT>(height));
    if (pDC)
        ReleaseDC(pDC);
    if (bResetScroll)
        ResetScrollBars();
    return TRUE;
}

void CGridCtrl::AutoSizeColumns(UINT nAutoSizeStyle)
{
    for (int col = 0; col < m_nCols; ++col)
        if (GetColumnWidth(col) > 0)
            AutoSizeColumn(col, nAutoSizeStyle, FALSE);
    ResetScrollBars();
}

void CGridCtrl::AutoSizeRows()
{
    for (int row = 0; row < m_nRows; ++row)
        if (GetRowHeight(row) > 0)
            AutoSizeRow(row, FALSE);
    ResetScrollBars();
}

void CGridCtrl::AutoSize(UINT nAutoSizeStyle)
{
    const int style = nAutoSizeStyle ? static_cast<int>(nAutoSizeStyle) : m_nAutoSizeStyle;
    const RowBlock block = MeasuredRows(style, m_nFixedRows, m_nRows);
    CDC* pDC = ::IsWindow(m_hWnd) ? GetDC() : nullptr;
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(block.first, 0, block.last, m_nCols - 1));
    // Only what shows is measured: hidden rows and columns stay hidden.
    for (int row = block.first; row <= block.last; ++row)
        if (GetRowHeight(row) > 0)
            m_arRowHeights.SetAt(row, 1);
    std::vector<char> shown(static_cast<size_t>(m_nCols), 0);
    for (int col = 0; col < m_nCols; ++col)
        if (GetColumnWidth(col) > 0) {
            shown[static_cast<size_t>(col)] = 1;
            m_arColWidths.SetAt(col, 0);
        }
    for (int col = 0; col < m_nCols; ++col) {
        if (!shown[static_cast<size_t>(col)])
            continue;
        for (int row = block.first; row <= block.last; ++row) {
            if (GetRowHeight(row) <= 0)
                continue;
            CGridCellBase* pCell = GetCell(row, col);
            if (!pCell)
                continue;
            const CSize size = pCell->GetCellExtent(pDC);
            if (size.cx > GetColumnWidth(col))
                m_arColWidths.SetAt(col, static_cast<UINT>(size.cx));
            if (size.cy > GetRowHeight(row))
                m_arRowHeights.SetAt(row, static_cast<UINT>(size.cy));
        }
    }
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(-1, -1, -1, -1));
    if (pDC)
        ReleaseDC(pDC);
    ResetScrollBars();
    Refresh();
}

namespace {

// Spreads d pixels over the entries of non-zero size from `first` on: d / n each (truncated
// toward zero), the rest one pixel at a time from `first`, hidden entries using up a turn.
// No entry goes below one pixel.
void Spread(orlex::grid::Axis& axis, int first, long long d)
{
    int n = 0;
    for (int i = first; i < axis.GetSize(); ++i)
        n += axis.GetAt(i) > 0;
    if (n <= 0)
        return;
    const long long each = d / n;
    const long long rest = d > 0 ? d % n : (-d) % n;
    const long long step = d > 0 ? 1 : -1;
    for (int i = first, turn = 0; i < axis.GetSize(); ++i, ++turn) {
        const long long size = axis.GetAt(i);
        if (size <= 0)
            continue;
        long long s = size + each + (turn < rest ? step : 0);
        axis.SetAt(i, static_cast<UINT>(std::clamp<long long>(s, 1, UINT_MAX)));
    }
}

}  // namespace

void CGridCtrl::ExpandColumnsToFit(BOOL bExpandFixed)
{
    if (m_nCols <= 0 || !::IsWindow(m_hWnd))
        return;
    EnableScrollBars(SB_HORZ, FALSE);
    const CRect rect = ClientRect();
    Spread(m_arColWidths, bExpandFixed ? 0 : m_nFixedCols, rect.Width() - m_arColWidths.Total());
    Refresh();
    ResetScrollBars();
}

void CGridCtrl::ExpandRowsToFit(BOOL bExpandFixed)
{
    if (m_nRows <= 0 || !::IsWindow(m_hWnd))
        return;
    EnableScrollBars(SB_VERT, FALSE);
    const CRect rect = ClientRect();
    Spread(m_arRowHeights, bExpandFixed ? 0 : m_nFixedRows, rect.Height() - m_arRowHeights.Total());
    Refresh();
    ResetScrollBars();
}

void CGridCtrl::ExpandLastColumn()
{
    if (m_nCols <= 0 || !::IsWindow(m_hWnd))
        return;
    int last = m_nCols - 1;
    while (last > 0 && GetColumnWidth(last) <= 0)
        --last;
    if (last <= 0)
        return;
    EnableScrollBars(SB_HORZ, FALSE);
    const long long d = ClientRect().Width() - m_arColWidths.Total();
    if (d > 0) {
        m_arColWidths.SetAt(last, static_cast<UINT>(std::min<long long>(GetColumnWidth(last) + d, INT_MAX)));
        Refresh();
    }
    ResetScrollBars();
}

void CGridCtrl::ExpandToFit(BOOL bExpandFixed)
{
    ExpandColumnsToFit(bExpandFixed);
    ExpandRowsToFit(bExpandFixed);
    ExpandColumnsToFit(bExpandFixed);
    Refresh();
}

void CGridCtrl::AutoFill()
{
    if (!::IsWindow(m_hWnd))
        return;
    const CRect rect = ClientRect();
    const int w = std::max(m_cellDefault.GetWidth(), 1), h = std::max(m_cellDefault.GetHeight(), 1);
    SetColumnCount(rect.Width() / w + 1);
    SetRowCount(rect.Height() / h + 1);
    SetFixedRowCount(1);
    SetFixedColumnCount(1);
    ExpandToFit(TRUE);
}

// Sorting -------------------------------------------------------------------------------------

int CGridCtrl::pfnCellTextCompare(LPARAM lParam1, LPARAM lParam2, LPARAM)
{
    const auto* pCell1 = reinterpret_cast<const CGridCellBase*>(lParam1);
    const auto* pCell2 = reinterpret_cast<const CGridCellBase*>(lParam2);
    if (!pCell1 || !pCell2)
        return 0;
    return _mbscmp(reinterpret_cast<const unsigned char*>(pCell1->GetText()),
                   reinterpret_cast<const unsigned char*>(pCell2->GetText()));
}

int CGridCtrl::pfnCellNumericCompare(LPARAM lParam1, LPARAM lParam2, LPARAM)
{
    const auto* pCell1 = reinterpret_cast<const CGridCellBase*>(lParam1);
    const auto* pCell2 = reinterpret_cast<const CGridCellBase*>(lParam2);
    if (!pCell1 || !pCell2)
        return 0;
    const long n1 = std::atol(pCell1->GetText()), n2 = std::atol(pCell2->GetText());
    return n1 < n2 ? -1 : (n1 == n2 ? 0 : 1);
}

BOOL CGridCtrl::SortTextItems(int nCol, BOOL bAscending, LPARAM data)
{
    return SortItems(pfnCellTextCompare, nCol, bAscending, data);
}

BOOL CGridCtrl::SortItems(int nCol, BOOL bAscending, LPARAM data)
{
    return SortItems(m_pfnCompare ? m_pfnCompare : pfnCellTextCompare, nCol, bAscending, data);
}

void CGridCtrl::SetSortColumn(int nCol)
{
    if (m_nSortColumn >= 0)
        InvalidateCellRect(0, m_nSortColumn);
    m_nSortColumn = nCol;
    if (nCol >= 0)
        InvalidateCellRect(0, nCol);
}

BOOL CGridCtrl::SortItems(PFNLVCOMPARE pfnCompare, int nCol, BOOL bAscending, LPARAM data)
{
    if (nCol < 0 || nCol >= m_nCols || !pfnCompare)
        return FALSE;
    SetSortColumn(nCol);
    m_bAscending = bAscending;
    ResetSelectedRange();
    SetFocusCell(-1, -1);
    // A virtual grid holds no rows: the owner orders its own and the header shows the order.
    if (m_bVirtualMode)
        return TRUE;
    return SortItems(pfnCompare, nCol, bAscending, data, m_nFixedRows, -1);
}

BOOL CGridCtrl::SortItems(PFNLVCOMPARE pfnCompare, int nCol, BOOL bAscending, LPARAM data, int low, int high)
{
    if (nCol < 0 || nCol >= m_nCols || !pfnCompare || m_bVirtualMode)
        return FALSE;
    if (high == -1)
        high = m_nRows - 1;
    low = std::max(low, 0);
    high = std::min(high, m_nRows - 1);
    if (high <= low)
        return FALSE;
    // The key column's cells in one array that moves with the rows: the compares walk it
    // instead of each row's own array.
    std::vector<CGridCellBase*> keys(static_cast<size_t>(m_nRows));
    for (int row = low; row <= high; ++row)
        keys[static_cast<size_t>(row)] = GetCell(row, nCol);
    QuickSortRows(pfnCompare, bAscending, data, low, high, keys.data());
    m_arRowHeights.ForgetPlace();
    return TRUE;
}

void CGridCtrl::SwapRows(int a, int b, CGridCellBase** keys)
{
    std::swap(keys[a], keys[b]);
    CObject** rows = m_RowData.GetData();
    std::swap(rows[a], rows[b]);
    if (m_arRowHeights.GetAt(a) != m_arRowHeights.GetAt(b))
        m_arRowHeights.Swap(a, b);
}

void CGridCtrl::QuickSortRows(PFNLVCOMPARE pfnCompare, BOOL bAscending, LPARAM data, int low, int high,
                              CGridCellBase** keys)
{
    // The parts after a pass are disjoint, so sorting the smaller one by recursion and the
    // larger one by the loop gives the order of recursing on both, with a bounded depth.
    while (high > low) {
        int lo = low, hi = high;
        const LPARAM pivot = reinterpret_cast<LPARAM>(keys[low + (high - low) / 2]);
        // Ascending: up past cells before the pivot, down past cells after it; descending the
        // other way round.
        // The cells a few steps ahead are asked for early: the walks go through cells spread
        // over the heap.
        constexpr int kAhead = 8;
        auto before = [&](int row) {
            if (row + kAhead <= high)
                __builtin_prefetch(keys[row + kAhead]);
            const int c = pfnCompare(reinterpret_cast<LPARAM>(keys[row]), pivot, data);
            return bAscending ? c < 0 : c > 0;
        };
        auto after = [&](int row) {
            if (row - kAhead >= low)
                __builtin_prefetch(keys[row - kAhead]);
            const int c = pfnCompare(reinterpret_cast<LPARAM>(keys[row]), pivot, data);
            return bAscending ? c > 0 : c < 0;
        };
        while (lo <= hi) {
            while (lo < high && before(lo))
                ++lo;
            while (hi > low && after(hi))
                --hi;
            if (lo <= hi) {
                if (pfnCompare(reinterpret_cast<LPARAM>(keys[lo]), reinterpret_cast<LPARAM>(keys[hi]), data) != 0)
                    SwapRows(lo, hi, keys);
                ++lo;
                --hi;
            }
        }
        if (hi - low < high - lo) {
            if (low < hi)
                QuickSortRows(pfnCompare, bAscending, data, low, hi, keys);
            low = lo;
        } else {
            if (lo < high)
                QuickSortRows(pfnCompare, bAscending, data, lo, high, keys);
            high = hi;
        }
    }
}
