// CGridCtrl: the focus cell and the selected cells.
#include <algorithm>
#include <vector>

#include "grid/GridCtrl.h"

CCellID CGridCtrl::SetFocusCell(CCellID cell)
{
    if (cell == m_idCurrentCell)
        return m_idCurrentCell;
    const CCellID idPrev = m_idCurrentCell;
    // The focus never sits in a fixed cell.
    if (cell.row != -1 && cell.row < m_nFixedRows)
        cell.row = m_nFixedRows;
    if (cell.col != -1 && cell.col < m_nFixedCols)
        cell.col = m_nFixedCols;
    m_idCurrentCell = cell;

    auto mark = [&](const CCellID& id, bool on, const CCellID& other) {
        if (!IsValid(id))
            return;
        const UINT state = GetItemState(id.row, id.col);
        SetItemState(id.row, id.col, on ? (state | GVIS_FOCUSED) : (state & ~GVIS_FOCUSED));
        RedrawCell(id.row, id.col);
        if (!m_bTrackFocusCell)
            return;
        // The headers of the row and column show the focus; they change with it.
        if (id.col != other.col)
            for (int row = 0; row < m_nFixedRows; ++row)
                RedrawCell(row, id.col);
        if (id.row != other.row)
            for (int col = 0; col < m_nFixedCols; ++col)
                RedrawCell(id.row, col);
    };
    mark(idPrev, false, m_idCurrentCell);
    mark(m_idCurrentCell, true, idPrev);
    return idPrev;
}

CCellRange CGridCtrl::GetSelectedCellRange() const
{
    CCellRange Selection(m_nRows, m_nCols, -1, -1);
    for (POSITION pos = m_SelectedCellMap.GetStartPosition(); pos;) {
        ULONGLONG key;
        CCellID cell;
        m_SelectedCellMap.GetNextAssoc(pos, key, cell);
        Selection.m_nMinRow = std::min(Selection.m_nMinRow, cell.row);
        Selection.m_nMinCol = std::min(Selection.m_nMinCol, cell.col);
        Selection.m_nMaxRow = std::max(Selection.m_nMaxRow, cell.row);
        Selection.m_nMaxCol = std::max(Selection.m_nMaxCol, cell.col);
    }
    return Selection;
}

void CGridCtrl::SetSelectedRange(const CCellRange& Range, BOOL bForceRepaint, BOOL bSelectCells)
{
    SetSelectedRange(Range.GetMinRow(), Range.GetMinCol(), Range.GetMaxRow(), Range.GetMaxCol(), bForceRepaint,
                     bSelectCells);
}

void CGridCtrl::SetSelectedRange(int nMinRow, int nMinCol, int nMaxRow, int nMaxCol, BOOL bForceRepaint,
                                 BOOL bSelectCells)
{
    if (!m_bEnableSelection)
        return;
    CWaitCursor wait;
    const bool window = ::IsWindow(m_hWnd);
    CDC* pDC = bForceRepaint && window ? GetDC() : nullptr;
    const CCellRange visible = window ? GetVisibleNonFixedCellRange() : CCellRange();
    auto redraw = [&](int row, int col) {
        if (!visible.InRange(row, col))
            return;
        if (pDC)
            RedrawCell(row, col, pDC);
        else
            InvalidateCellRect(row, col);
    };

    if (nMinRow >= 0 && nMinRow < m_nFixedRows)
        nMinRow = m_nFixedRows;
    if (nMaxRow >= 0 && nMaxRow < m_nFixedRows)
        nMaxRow = m_nFixedRows;
    if (nMinCol >= 0 && nMinCol < m_nFixedCols)
        nMinCol = m_nFixedCols;
    if (nMaxCol >= 0 && nMaxCol < m_nFixedCols)
        nMaxCol = m_nFixedCols;
    const CCellRange newRange(nMinRow, nMinCol, nMaxRow, nMaxCol);

    if (bSelectCells) {
        // The entries are taken out first: the map changes while they are worked.
        std::vector<std::pair<ULONGLONG, CCellID>> entries;
        entries.reserve(static_cast<size_t>(m_SelectedCellMap.GetCount()));
        for (POSITION pos = m_SelectedCellMap.GetStartPosition(); pos;) {
            ULONGLONG key;
            CCellID cell;
            m_SelectedCellMap.GetNextAssoc(pos, key, cell);
            entries.emplace_back(key, cell);
        }
        for (const auto& [key, cell] : entries) {
            if (!IsValid(cell)) {
                m_SelectedCellMap.RemoveKey(key);
                continue;
            }
            SetItemState(cell.row, cell.col, GetItemState(cell.row, cell.col) & ~GVIS_SELECTED);
            if (!newRange.InRange(cell))
                redraw(cell.row, cell.col);
        }
    }

    const bool given = nMinRow >= 0 && nMinCol >= 0 && nMaxRow >= 0 && nMaxCol >= 0;
    if (bSelectCells && !GetSingleRowSelection() && given) {
        // A Ctrl-drag adds to what was selected when it began.
        for (POSITION pos = m_PrevSelectedCellMap.GetStartPosition(); pos;) {
            ULONGLONG key;
            CCellID cell;
            m_PrevSelectedCellMap.GetNextAssoc(pos, key, cell);
            if (!IsValid(cell))
                continue;
            SetItemState(cell.row, cell.col, GetItemState(cell.row, cell.col) | GVIS_SELECTED);
            redraw(cell.row, cell.col);
        }
    }

    if (nMinRow >= 0 && IsValid(newRange)) {
        for (int row = nMinRow; row <= nMaxRow; ++row)
            for (int col = nMinCol; col <= nMaxCol; ++col) {
                if (static_cast<bool>(IsCellSelected(row, col)) == static_cast<bool>(bSelectCells))
                    continue;
                const UINT state = GetItemState(row, col);
                SetItemState(row, col, bSelectCells ? (state | GVIS_SELECTED) : (state & ~GVIS_SELECTED));
                redraw(row, col);
            }
    }
    if (pDC)
        ReleaseDC(pDC);
}

void CGridCtrl::ResetSelectedRange()
{
    m_PrevSelectedCellMap.RemoveAll();
    SetSelectedRange(-1, -1, -1, -1, FALSE, TRUE);
    SetFocusCell(-1, -1);
}

void CGridCtrl::SelectAllCells()
{
    if (!m_bEnableSelection)
        return;
    SetSelectedRange(m_nFixedRows, m_nFixedCols, m_nRows - 1, m_nCols - 1, FALSE, TRUE);
}

void CGridCtrl::SelectColumns(CCellID currentCell, BOOL bForceRedraw, BOOL bSelectCells)
{
    if (currentCell.col < m_nFixedCols || !IsValid(currentCell))
        return;
    if (m_bSingleColSelection)
        SetSelectedRange(m_nFixedRows, currentCell.col, m_nRows - 1, currentCell.col, bForceRedraw, bSelectCells);
    else
        SetSelectedRange(m_nFixedRows, std::min(m_SelectionStartCell.col, currentCell.col), m_nRows - 1,
                         std::max(m_SelectionStartCell.col, currentCell.col), bForceRedraw, bSelectCells);
}

void CGridCtrl::SelectRows(CCellID currentCell, BOOL bForceRedraw, BOOL bSelectCells)
{
    if (currentCell.row < m_nFixedRows || !IsValid(currentCell))
        return;
    if (GetSingleRowSelection())
        SetSelectedRange(currentCell.row, m_nFixedCols, currentCell.row, m_nCols - 1, bForceRedraw, bSelectCells);
    else
        SetSelectedRange(std::min(m_SelectionStartCell.row, currentCell.row), m_nFixedCols,
                         std::max(m_SelectionStartCell.row, currentCell.row), m_nCols - 1, bForceRedraw,
                         bSelectCells);
}

void CGridCtrl::SelectCells(CCellID currentCell, BOOL bForceRedraw, BOOL bSelectCells)
{
    const int row = currentCell.row, col = currentCell.col;
    if (row < m_nFixedRows || col < m_nFixedCols || !IsValid(currentCell))
        return;
    SetSelectedRange(std::min(m_SelectionStartCell.row, row), std::min(m_SelectionStartCell.col, col),
                     std::max(m_SelectionStartCell.row, row), std::max(m_SelectionStartCell.col, col), bForceRedraw,
                     bSelectCells);
}

void CGridCtrl::EnableSelection(BOOL bEnable)
{
    ResetSelectedRange();
    m_bEnableSelection = bEnable;
    ResetSelectedRange();
}

void CGridCtrl::SetListMode(BOOL bEnableListMode)
{
    ResetSelectedRange();
    SetSortColumn(-1);
    m_bListMode = bEnableListMode;
    SetFixedRowSelection(FALSE);
    Refresh();
}
