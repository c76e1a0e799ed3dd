// CGridCtrl: the keyboard, and the way into an edit.
#include <algorithm>

#include "grid/GridCtrl.h"

namespace {

bool KeyDown(int vk)
{
    return (::GetKeyState(vk) & 0x8000) != 0;
}

}  // namespace

void CGridCtrl::OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (!IsValid(m_idCurrentCell)) {
        CWnd::OnKeyDown(nChar, nRepCnt, nFlags);
        return;
    }
    const bool ctrl = KeyDown(VK_CONTROL), shift = KeyDown(VK_SHIFT);
    CCellID next = m_idCurrentCell;
    bool bChangeLine = false;
    // Every scroll message the step sends, itself or through EnsureVisible, is ended.
    const unsigned hScrolls = m_nScrollsReceived[SB_HORZ], vScrolls = m_nScrollsReceived[SB_VERT];

    if (ctrl) {
        switch (nChar) {
        case 'A':
            OnEditSelectAll();
            break;
        case 'X':
            OnEditCut();
            break;
        case VK_INSERT:
        case 'C':
            OnEditCopy();
            break;
        case 'V':
            OnEditPaste();
            break;
        default:
            break;
        }
    }
    if (shift && nChar == VK_INSERT) {
        OnEditPaste();
        CWnd::OnKeyDown(nChar, nRepCnt, nFlags);
        return;
    }

    // The nearest shown row or column from `from` in the step's direction, not into the fixed
    // part; -1 when there is none.
    auto shownRow = [&](int from, int step) {
        for (int r = from; r >= m_nFixedRows && r < m_nRows; r += step)
            if (GetRowHeight(r) > 0)
                return r;
        return -1;
    };
    auto shownCol = [&](int from, int step) {
        for (int c = from; c >= m_nFixedCols && c < m_nCols; c += step)
            if (GetColumnWidth(c) > 0)
                return c;
        return -1;
    };

    const bool tab = nChar == VK_TAB;
    if (nChar == VK_DELETE) {
        CutSelectedText();
    } else if (nChar == VK_DOWN || nChar == VK_UP) {
        const int r = shownRow(next.row + (nChar == VK_DOWN ? 1 : -1), nChar == VK_DOWN ? 1 : -1);
        if (r >= 0)
            next.row = r;
    } else if (nChar == VK_RIGHT || (tab && !shift)) {
        int c = shownCol(next.col + 1, 1);
        if (tab && c < 0) {
            // Past the last column: the first column of the next shown row.
            const int r = shownRow(next.row + 1, 1);
            if (r >= 0) {
                next.row = r;
                c = shownCol(m_nFixedCols, 1);
                bChangeLine = c >= 0;
            }
        }
        if (c >= 0)
            next.col = c;
        if (tab && !bChangeLine)
            CWnd::OnKeyDown(nChar, nRepCnt, nFlags);
    } else if (nChar == VK_LEFT || (tab && shift)) {
        int c = shownCol(next.col - 1, -1);
        if (tab && c < 0) {
            const int r = shownRow(next.row - 1, -1);
            if (r >= 0) {
                next.row = r;
                c = shownCol(m_nCols - 1, -1);
                bChangeLine = c >= 0;
            }
        }
        if (c >= 0)
            next.col = c;
        if (tab && !bChangeLine)
            CWnd::OnKeyDown(nChar, nRepCnt, nFlags);
    } else if (nChar == VK_NEXT || nChar == VK_PRIOR) {
        const bool down = nChar == VK_NEXT;
        const CCellID before = GetTopleftNonFixedCell();
        SendMessage(WM_VSCROLL, down ? SB_PAGEDOWN : SB_PAGEUP, 0);
        const int moved = GetTopleftNonFixedCell().row - before.row;
        if (moved)
            next.row = std::clamp(next.row + moved, m_nFixedRows, m_nRows - 1);
        else
            next.row = down ? m_nRows - 1 : m_nFixedRows;
    } else if (nChar == VK_HOME) {
        if (ctrl) {
            SendMessage(WM_VSCROLL, SB_TOP, 0);
            next.row = m_nFixedRows;
        }
        SendMessage(WM_HSCROLL, SB_LEFT, 0);
        next.col = m_nFixedCols;
        while (next.col < m_nCols - 1 && GetColumnWidth(next.col) < 1)
            ++next.col;
        while (next.row < m_nRows - 1 && GetRowHeight(next.row) < 1)
            ++next.row;
    } else if (nChar == VK_END) {
        if (ctrl) {
            SendMessage(WM_VSCROLL, SB_BOTTOM, 0);
            next.row = m_nRows - 1;
        }
        SendMessage(WM_HSCROLL, SB_RIGHT, 0);
        next.col = m_nCols - 1;
        while (next.col > m_nFixedCols + 1 && GetColumnWidth(next.col) < 1)
            --next.col;
        while (next.row > m_nFixedRows + 1 && GetRowHeight(next.row) < 1)
            --next.row;
    } else if (nChar == VK_F2) {
        OnEditCell(m_idCurrentCell.row, m_idCurrentCell.col, CPoint(-1, -1), VK_LBUTTON);
    } else {
        CWnd::OnKeyDown(nChar, nRepCnt, nFlags);
        return;
    }

    if (next == m_idCurrentCell)
        return;
    if (m_MouseMode == MouseIdle) {
        // A step selects the cell moved to, or with Shift extends from the anchor.
        m_PrevSelectedCellMap.RemoveAll();
        m_MouseMode = m_bListMode ? MouseSelectRows : MouseSelectCells;
        if (!shift || tab)
            m_SelectionStartCell = next;
        SendMessageToParent(next.row, next.col, static_cast<int>(GVN_SELCHANGING));
        OnSelecting(next);
        SendMessageToParent(next.row, next.col, static_cast<int>(GVN_SELCHANGED));
        m_MouseMode = MouseIdle;
    }
    SetFocusCell(next);
    if (!IsCellVisible(next)) {
        switch (nChar) {
        case VK_RIGHT:
            SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
            break;
        case VK_LEFT:
            SendMessage(WM_HSCROLL, SB_LINELEFT, 0);
            break;
        case VK_DOWN:
            SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
            break;
        case VK_UP:
            SendMessage(WM_VSCROLL, SB_LINEUP, 0);
            break;
        case VK_TAB:
            if (bChangeLine) {
                SendMessage(WM_VSCROLL, shift ? SB_LINEUP : SB_LINEDOWN, 0);
                SetScrollPos32(SB_HORZ, shift ? m_nHScrollMax : 0);
            } else {
                SendMessage(WM_HSCROLL, shift ? SB_LINELEFT : SB_LINERIGHT, 0);
            }
            break;
        default:
            break;
        }
        EnsureVisible(next);
        Refresh();
    }
    EnsureVisible(next);
    if (m_nScrollsReceived[SB_HORZ] != hScrolls)
        SendMessage(WM_HSCROLL, SB_ENDSCROLL, 0);
    if (m_nScrollsReceived[SB_VERT] != vScrolls)
        SendMessage(WM_VSCROLL, SB_ENDSCROLL, 0);
}

void CGridCtrl::OnChar(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    if (!KeyDown(VK_CONTROL) && m_MouseMode == MouseIdle && nChar != VK_ESCAPE) {
        if (m_bHandleTabKey && nChar == VK_TAB) {
            CWnd::OnChar(nChar, nRepCnt, nFlags);
            return;
        }
        OnEditCell(m_idCurrentCell.row, m_idCurrentCell.col, CPoint(-1, -1), nChar);
    }
    CWnd::OnChar(nChar, nRepCnt, nFlags);
}

LRESULT CGridCtrl::OnImeChar(WPARAM wCharCode, LPARAM)
{
    if (!KeyDown(VK_CONTROL) && m_MouseMode == MouseIdle && wCharCode != VK_ESCAPE)
        OnEditCell(m_idCurrentCell.row, m_idCurrentCell.col, CPoint(-1, -1), static_cast<UINT>(wCharCode));
    return 0;
}

void CGridCtrl::OnSysKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags)
{
    CWnd::OnSysKeyDown(nChar, nRepCnt, nFlags);
}

void CGridCtrl::OnEditCell(int nRow, int nCol, CPoint point, UINT nChar)
{
    HideTitleTip();
    if (!IsValid(nRow, nCol) || !IsCellEditable(nRow, nCol))
        return;
    EnsureVisible(nRow, nCol);
    CRect rect;
    if (!IsCellVisible(nRow, nCol) || !GetCellRect(nRow, nCol, &rect))
        return;
    if (SendMessageToParent(nRow, nCol, static_cast<int>(GVN_BEGINLABELEDIT)) < 0)
        return;
    if (CGridCellBase* pCell = GetCell(nRow, nCol))
        pCell->Edit(nRow, nCol, rect, point, kInPlaceControlId, nChar);
}

void CGridCtrl::EndEditing()
{
    if (!IsValid(m_idCurrentCell))
        return;
    if (CGridCellBase* pCell = GetCell(m_idCurrentCell.row, m_idCurrentCell.col))
        pCell->EndEdit();
}

void CGridCtrl::OnEditSelectAll()
{
    SendMessageToParent(m_LeftClickDownCell.row, m_LeftClickDownCell.col, static_cast<int>(GVN_SELCHANGING));
    if (m_bEnableSelection)
        SetSelectedRange(m_nFixedRows, m_nFixedCols, m_nRows - 1, m_nCols - 1, FALSE, TRUE);
    SendMessageToParent(m_idCurrentCell.row, m_idCurrentCell.col, static_cast<int>(GVN_SELCHANGED));
}
