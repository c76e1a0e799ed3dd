// CGridCtrl: the mouse: presses, moves and releases by the mouse modes, sizing rows and
// columns by their dividers, the selection timer, the pointer shape.
#include <algorithm>
#include <cstdlib>

#include "grid/GridCtrl.h"

namespace {

void SetStandardCursor(LPCSTR id)
{
    ::SetCursor(::LoadCursor(nullptr, id));
}

}  // namespace

BOOL CGridCtrl::MouseOverColumnResizeArea(CPoint point)
{
    if (point.y >= GetFixedRowHeight())
        return FALSE;
    const CCellID cell = GetCellFromPt(point);
    CPoint start;
    if (!GetCellOrigin(cell, &start))
        return FALSE;
    const int endx = start.x + GetColumnWidth(cell.col);
    return (point.x - start.x < m_nResizeCaptureRange && cell.col != 0) || endx - point.x < m_nResizeCaptureRange;
}

BOOL CGridCtrl::MouseOverRowResizeArea(CPoint point)
{
    if (point.x >= GetFixedColumnWidth())
        return FALSE;
    const CCellID cell = GetCellFromPt(point);
    CPoint start;
    if (!GetCellOrigin(cell, &start))
        return FALSE;
    const int endy = start.y + GetRowHeight(cell.row);
    return (point.y - start.y < m_nResizeCaptureRange && cell.row != 0) || endy - point.y < m_nResizeCaptureRange;
}

void CGridCtrl::OnSelecting(const CCellID& currentCell)
{
    if (!m_bEnableSelection)
        return;
    switch (m_MouseMode) {
    case MouseSelectAll:
        SelectAllCells();
        break;
    case MouseSelectColumns:
        SelectColumns(currentCell, FALSE, TRUE);
        break;
    case MouseSelectRows:
        SelectRows(currentCell, FALSE, TRUE);
        break;
    case MouseSelectCells:
        SelectCells(currentCell, FALSE, TRUE);
        break;
    default:
        break;
    }
}

void CGridCtrl::OnFixedRowClick(CCellID& cell)
{
    if (!IsValid(cell))
        return;
    if (m_bHeaderSort) {
        CWaitCursor wait;
        SortItems(cell.col, cell.col == m_nSortColumn ? !m_bAscending : TRUE);
        Refresh();
    }
    if (m_bFixedColumnSelection) {
        m_MouseMode = cell.col < m_nFixedCols ? MouseSelectAll : MouseSelectColumns;
        OnSelecting(cell);
    }
}

void CGridCtrl::OnFixedColumnClick(CCellID& cell)
{
    if (!IsValid(cell))
        return;
    if (m_bFixedRowSelection) {
        m_MouseMode = cell.row < m_nFixedRows ? MouseSelectAll : MouseSelectRows;
        OnSelecting(cell);
    }
}

void CGridCtrl::InvertTrackLine(int pos, BOOL bVertical)
{
    CDC* pDC = GetDC();
    if (!pDC)
        return;
    const CRect client = ClientRect();
    const CRect line = bVertical ? CRect(pos, client.top, pos + 2, client.bottom)
                                 : CRect(client.left, pos, client.right, pos + 2);
    pDC->InvertRect(&line);
    ReleaseDC(pDC);
}

void CGridCtrl::StartSizing(CPoint point, BOOL bColumn)
{
    m_MouseMode = bColumn ? MouseSizingColumn : MouseSizingRow;
    int& index = bColumn ? m_LeftClickDownCell.col : m_LeftClickDownCell.row;
    const int count = bColumn ? m_nCols : m_nRows;
    const int at = bColumn ? point.x : point.y;
    auto size = [&](int i) { return bColumn ? GetColumnWidth(i) : GetRowHeight(i); };
    auto origin = [&](CPoint& start) {
        return bColumn ? GetCellOrigin(0, m_LeftClickDownCell.col, &start) : GetCellOrigin(m_LeftClickDownCell, &start);
    };

    // A last one narrower than the capture range is grabbed at the visible area's edge.
    if (size(count - 1) < m_nResizeCaptureRange) {
        CRect vis;
        GetVisibleNonFixedCellRange(&vis);
        if (std::abs(at - (bColumn ? vis.right : vis.bottom)) < m_nResizeCaptureRange)
            index = count - 1;
    }
    CPoint start;
    if (!origin(start))
        return;
    const int startAt = bColumn ? start.x : start.y;
    const BOOL bUnhide = bColumn ? m_bHiddenColUnhide : m_bHiddenRowUnhide;
    if (!bUnhide) {
        // Hidden ones stay hidden: the divider belongs to the nearest shown one to the left.
        const bool rightBorder = at - startAt >= m_nResizeCaptureRange;
        if (!(rightBorder && index + 1 >= count)) {
            const int offset = rightBorder ? 0 : 1;
            bool found = false;
            while (index - offset >= 0) {
                if (size(index - offset) > 0) {
                    found = true;
                    break;
                }
                --index;
            }
            if (!found)
                return;
        }
    }
    InvertTrackLine(at, bColumn);
    // Near the left edge the divider is the one before, unless this is a tiny last one.
    if (at - startAt < m_nResizeCaptureRange && (index < count - 1 || size(count - 1) >= m_nResizeCaptureRange)) {
        --index;
        if (!origin(start))
            return;
    }
    CRect rect = ClientRect();
    if (bColumn) {
        const int maxWidth = rect.Width() - GetFixedColumnWidth();
        rect.left = start.x + 1;
        rect.right = rect.left + maxWidth;
    } else {
        const int maxHeight = rect.Height() - GetFixedRowHeight();
        rect.top = start.y + 1;
        rect.bottom = rect.top + maxHeight;
    }
    ClientToScreen(&rect);
    ::ClipCursor(&rect);
}

void CGridCtrl::OnLButtonDown(UINT nFlags, CPoint point)
{
    SetFocus();
    m_bLMouseButtonDown = TRUE;
    m_LeftClickDownPoint = point;
    m_LeftClickDownCell = GetCellFromPt(point);
    if (!IsValid(m_LeftClickDownCell))
        return;

    if (nFlags & MK_SHIFT) {
        if (!IsValid(m_SelectionStartCell))
            m_SelectionStartCell = m_idCurrentCell;
    } else {
        m_SelectionStartCell = m_LeftClickDownCell;
    }
    EndEditing();
    CGridCellBase* pCell = GetCell(m_LeftClickDownCell.row, m_LeftClickDownCell.col);
    if (pCell)
        pCell->OnClickDown(GetPointClicked(m_LeftClickDownCell.row, m_LeftClickDownCell.col, point));

    BOOL bInTextArea = FALSE;
    if (pCell) {
        CRect rectCell;
        if (GetCellRect(m_LeftClickDownCell, &rectCell) && pCell->GetTextRect(&rectCell))
            bInTextArea = rectCell.PtInRect(point);
    }
    if (m_LeftClickDownCell == m_idCurrentCell && !(nFlags & MK_CONTROL) && bInTextArea &&
        IsCellEditable(m_LeftClickDownCell)) {
        // The release opens the editor; no capture meanwhile.
        m_MouseMode = MousePrepareEdit;
        return;
    }
    if (IsCellSelected(m_LeftClickDownCell)) {
        SetFocusCell(m_LeftClickDownCell);
        if (nFlags & MK_CONTROL) {
            if (m_bListMode)
                SelectRows(m_LeftClickDownCell, TRUE, FALSE);
            else
                SelectCells(m_LeftClickDownCell, TRUE, FALSE);
            return;
        }
        if (m_bAllowDragAndDrop)
            m_MouseMode = MousePrepareDrag;
    } else if (m_MouseMode != MouseOverColumnDivider && m_MouseMode != MouseOverRowDivider) {
        if (m_LeftClickDownCell.row >= m_nFixedRows && m_LeftClickDownCell.col >= m_nFixedCols)
            SetFocusCell(m_LeftClickDownCell);
        else
            SetFocusCell(-1, -1);
    }

    SetCapture();
    if (m_MouseMode == MouseIdle) {
        if (m_bAllowColumnResize && MouseOverColumnResizeArea(point)) {
            SetStandardCursor(IDC_SIZEWE);
            m_MouseMode = MouseOverColumnDivider;
        } else if (m_bAllowRowResize && MouseOverRowResizeArea(point)) {
            SetStandardCursor(IDC_SIZENS);
            m_MouseMode = MouseOverRowDivider;
        }
    }

    if (m_MouseMode == MouseOverColumnDivider) {
        StartSizing(point, TRUE);
    } else if (m_MouseMode == MouseOverRowDivider) {
        StartSizing(point, FALSE);
    } else if (m_MouseMode != MousePrepareDrag) {
        SendMessageToParent(m_LeftClickDownCell.row, m_LeftClickDownCell.col, static_cast<int>(GVN_SELCHANGING));
        // With Ctrl the earlier selection stays and the new one is added to it.
        m_PrevSelectedCellMap.RemoveAll();
        if (nFlags & MK_CONTROL)
            m_PrevSelectedCellMap = m_SelectedCellMap;
        if (m_LeftClickDownCell.row < m_nFixedRows) {
            OnFixedRowClick(m_LeftClickDownCell);
        } else if (m_LeftClickDownCell.col < m_nFixedCols) {
            OnFixedColumnClick(m_LeftClickDownCell);
        } else {
            m_MouseMode = m_bListMode ? MouseSelectRows : MouseSelectCells;
            OnSelecting(m_LeftClickDownCell);
            m_nTimerID = SetTimer(WM_LBUTTONDOWN, static_cast<UINT>(m_nTimerInterval), nullptr);
        }
    }
    m_LastMousePoint = point;
}

void CGridCtrl::OnMouseMove(UINT nFlags, CPoint point)
{
    const CRect rect = ClientRect();
    if (m_MouseMode != MouseDragging && !rect.PtInRect(point))
        return;

    if (m_bLMouseButtonDown && m_MouseMode != MouseIdle) {
        if (!IsValid(m_LeftClickDownCell) || m_MouseMode == MouseSelectAll || m_MouseMode == MouseDragging) {
            m_LastMousePoint = point;
            return;
        }
        switch (m_MouseMode) {
        case MouseSelectColumns:
        case MouseSelectRows:
        case MouseSelectCells: {
            const CCellID cell = GetCellFromPt(point);
            if (!IsValid(cell))
                return;
            if (cell != m_idCurrentCell) {
                OnSelecting(cell);
                if ((cell.row >= m_nFixedRows && cell.col >= m_nFixedCols) || m_MouseMode == MouseSelectColumns ||
                    m_MouseMode == MouseSelectRows)
                    SetFocusCell(cell);
            }
            break;
        }
        case MouseSizingColumn:
            InvertTrackLine(m_LastMousePoint.x, TRUE);
            InvertTrackLine(point.x, TRUE);
            break;
        case MouseSizingRow:
            InvertTrackLine(m_LastMousePoint.y, FALSE);
            InvertTrackLine(point.y, FALSE);
            break;
        case MousePrepareEdit:
        case MousePrepareDrag:
            // A move ends the wait for an edit: this is a drag now, or nothing.
            m_MouseMode = MousePrepareDrag;
            OnBeginDrag();
            break;
        default:
            break;
        }
        m_LastMousePoint = point;
        return;
    }

    // The pointer is only passing.
    if (m_bAllowColumnResize && MouseOverColumnResizeArea(point)) {
        if (m_MouseMode != MouseOverColumnDivider) {
            SetStandardCursor(IDC_SIZEWE);
            m_MouseMode = MouseOverColumnDivider;
        }
        m_LastMousePoint = point;
        return;
    }
    if (m_bAllowRowResize && MouseOverRowResizeArea(point)) {
        if (m_MouseMode != MouseOverRowDivider) {
            SetStandardCursor(IDC_SIZENS);
            m_MouseMode = MouseOverRowDivider;
        }
        m_LastMousePoint = point;
        return;
    }
    if (m_MouseMode != MouseIdle) {
        SetStandardCursor(IDC_ARROW);
        m_MouseMode = MouseIdle;
    }
    if (!m_bVirtualMode || m_bTitleTips) {
        const CCellID cell = GetCellFromPt(point);
        if (CGridCellBase* pCell = GetCell(cell.row, cell.col)) {
            pCell->OnMouseOver();
            ShowTitleTip(cell, pCell);
        }
    }
    m_LastMousePoint = point;
}

void CGridCtrl::OnLButtonUp(UINT nFlags, CPoint point)
{
    CWnd::OnLButtonUp(nFlags, point);
    m_bLMouseButtonDown = FALSE;
    ::ClipCursor(nullptr);
    if (::GetCapture() == m_hWnd) {
        ::ReleaseCapture();
        KillTimer(m_nTimerID);
        m_nTimerID = 0;
    }
    const CPoint relative = GetPointClicked(m_idCurrentCell.row, m_idCurrentCell.col, point);

    if (m_MouseMode == MousePrepareEdit) {
        OnEditCell(m_idCurrentCell.row, m_idCurrentCell.col, relative, VK_LBUTTON);
    } else if (m_MouseMode == MousePrepareDrag) {
        // A press on a selected cell and no drag: a click that clears the selection.
        if (CGridCellBase* pCell = GetCell(m_idCurrentCell.row, m_idCurrentCell.col))
            pCell->OnClick(relative);
        SendMessageToParent(m_LeftClickDownCell.row, m_LeftClickDownCell.col, NM_CLICK);
        SendMessageToParent(m_LeftClickDownCell.row, m_LeftClickDownCell.col, static_cast<int>(GVN_SELCHANGING));
        ResetSelectedRange();
        SendMessageToParent(m_idCurrentCell.row, m_idCurrentCell.col, static_cast<int>(GVN_SELCHANGED));
    } else if (m_MouseMode == MouseSizingColumn || m_MouseMode == MouseSizingRow) {
        const BOOL bColumn = m_MouseMode == MouseSizingColumn;
        InvertTrackLine(bColumn ? m_LastMousePoint.x : m_LastMousePoint.y, bColumn);
        CPoint start;
        if (m_LeftClickDownPoint != point && (point.x != 0 || point.y != 0) &&
            GetCellOrigin(m_LeftClickDownCell, &start)) {
            if (bColumn)
                SetColumnWidth(m_LeftClickDownCell.col, std::max<int>(point.x - start.x, m_bAllowColHide ? 0 : 1));
            else
                SetRowHeight(m_LeftClickDownCell.row, std::max<int>(point.y - start.y, m_bAllowRowHide ? 0 : 1));
            ResetScrollBars();
            Refresh();
        }
    } else {
        SendMessageToParent(m_idCurrentCell.row, m_idCurrentCell.col, static_cast<int>(GVN_SELCHANGED));
        if (CGridCellBase* pCell = GetCell(m_idCurrentCell.row, m_idCurrentCell.col))
            pCell->OnClick(relative);
        SendMessageToParent(m_LeftClickDownCell.row, m_LeftClickDownCell.col, NM_CLICK);
    }
    m_MouseMode = MouseIdle;
    SetStandardCursor(IDC_ARROW);
    if (!IsValid(m_LeftClickDownCell) || !::IsWindow(m_hWnd))
        return;
    const HWND owner = m_hWndOwner && ::IsWindow(m_hWndOwner) ? m_hWndOwner : ::GetParent(m_hWnd);
    if (owner)
        ::PostMessage(owner, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(GetDlgCtrlID()), 0),
                      reinterpret_cast<LPARAM>(m_hWnd));
}

void CGridCtrl::OnLButtonDblClk(UINT nFlags, CPoint point)
{
    CCellID cell = GetCellFromPt(point);
    if (!IsValid(cell))
        return;
    if (m_MouseMode == MouseOverColumnDivider || m_MouseMode == MouseOverRowDivider) {
        const BOOL bColumn = m_MouseMode == MouseOverColumnDivider;
        CPoint start;
        const BOOL known = bColumn ? GetCellOrigin(0, cell.col, &start) : GetCellOrigin(cell, &start);
        if (known) {
            int& index = bColumn ? cell.col : cell.row;
            if ((bColumn ? point.x - start.x : point.y - start.y) < m_nResizeCaptureRange)
                --index;
            while (index >= 0 && (bColumn ? GetColumnWidth(index) : GetRowHeight(index)) <= 0)
                --index;
            if (index >= 0) {
                if (bColumn)
                    AutoSizeColumn(index, static_cast<UINT>(m_nAutoSizeStyle), TRUE);
                else
                    AutoSizeRow(index, TRUE);
                Refresh();
            }
        }
    } else if (m_MouseMode == MouseIdle) {
        const CPoint relative = GetPointClicked(cell.row, cell.col, point);
        CGridCellBase* pCell = GetCell(cell.row, cell.col);
        BOOL bInTextArea = FALSE;
        if (pCell) {
            CRect rectCell;
            if (GetCellRect(cell, &rectCell) && pCell->GetTextRect(&rectCell))
                bInTextArea = rectCell.PtInRect(point);
        }
        if (cell.row >= m_nFixedRows && cell.col >= m_nFixedCols && bInTextArea &&
            (m_bListMode || IsValid(m_LeftClickDownCell)))
            OnEditCell(cell.row, cell.col, relative, VK_LBUTTON);
        if ((pCell = GetCell(cell.row, cell.col)) != nullptr)
            pCell->OnDblClick(relative);
        SendMessageToParent(cell.row, cell.col, NM_DBLCLK);
    }
    CWnd::OnLButtonDblClk(nFlags, point);
}

void CGridCtrl::OnRButtonDown(UINT nFlags, CPoint point)
{
    CWnd::OnRButtonDown(nFlags, point);
    m_bRMouseButtonDown = TRUE;
}

void CGridCtrl::OnRButtonUp(UINT nFlags, CPoint point)
{
    CWnd::OnRButtonUp(nFlags, point);
    m_bRMouseButtonDown = FALSE;
    const CCellID cell = GetCellFromPt(point);
    EndEditing();
    if (!IsValid(cell)) {
        SendMessageToParent(-1, -1, NM_RCLICK);
        return;
    }
    SetFocusCell(-1, -1);
    SetFocusCell(cell);
    if (CGridCellBase* pCell = GetCell(cell.row, cell.col))
        pCell->OnRClick(GetPointClicked(cell.row, cell.col, point));
    SendMessageToParent(cell.row, cell.col, NM_RCLICK);
}

BOOL CGridCtrl::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message)
{
    if (nHitTest != HTCLIENT)
        return CWnd::OnSetCursor(pWnd, nHitTest, message);
    switch (m_MouseMode) {
    case MouseOverColumnDivider:
        SetStandardCursor(IDC_SIZEWE);
        break;
    case MouseOverRowDivider:
        SetStandardCursor(IDC_SIZENS);
        break;
    case MouseDragging:
        break;
    default: {
        if (!m_bVirtualMode) {
            const DWORD pos = ::GetMessagePos();
            CPoint pt(static_cast<short>(LOWORD(pos)), static_cast<short>(HIWORD(pos)));
            ScreenToClient(&pt);
            const CCellID cell = GetCellFromPt(pt);
            if (CGridCellBase* pCell = GetCell(cell.row, cell.col))
                return pCell->OnSetCursor();
        }
        SetStandardCursor(IDC_ARROW);
    }
    }
    return TRUE;
}

void CGridCtrl::OnCaptureChanged(CWnd* pWnd)
{
    if (pWnd && pWnd->GetSafeHwnd() == m_hWnd)
        return;
    if (m_nTimerID != 0) {
        KillTimer(m_nTimerID);
        m_nTimerID = 0;
    }
    if (m_MouseMode == MouseDragging)
        m_MouseMode = MouseIdle;
    // Taken away while the button is down: the gesture ends here, sizing lines and pointer
    // clip with it (the release will go elsewhere).
    if (m_bLMouseButtonDown) {
        m_bLMouseButtonDown = FALSE;
        if (m_MouseMode == MouseSizingColumn)
            InvertTrackLine(m_LastMousePoint.x, TRUE);
        else if (m_MouseMode == MouseSizingRow)
            InvertTrackLine(m_LastMousePoint.y, FALSE);
        ::ClipCursor(nullptr);
        m_MouseMode = MouseIdle;
    }
}

void CGridCtrl::OnTimer(UINT_PTR nIDEvent)
{
    if (nIDEvent != WM_LBUTTONDOWN)
        return;
    CPoint origin;
    if (!::GetCursorPos(&origin))
        return;
    ScreenToClient(&origin);
    const CRect rect = ClientRect();
    const int fixedH = GetFixedRowHeight(), fixedW = GetFixedColumnWidth();

    CPoint pt = origin;
    if (pt.y > rect.bottom || pt.y < fixedH) {
        const bool down = pt.y > rect.bottom;
        SendMessage(WM_KEYDOWN, down ? VK_DOWN : VK_UP, 0);
        pt.x = std::clamp<LONG>(pt.x, rect.left, rect.right);
        pt.y = down ? rect.bottom : fixedH + 1;
        OnSelecting(GetCellFromPt(pt));
    }
    pt = origin;
    if (pt.x > rect.right || pt.x < fixedW) {
        const bool right = pt.x > rect.right;
        SendMessage(WM_KEYDOWN, right ? VK_RIGHT : VK_LEFT, 0);
        pt.y = std::clamp<LONG>(pt.y, rect.top, rect.bottom);
        pt.x = right ? rect.right : fixedW + 1;
        OnSelecting(GetCellFromPt(pt));
    }
}

void CGridCtrl::ShowTitleTip(const CCellID& cell, CGridCellBase* pCell)
{
    if (!m_bTitleTips || m_bRMouseButtonDown || !pCell || pCell->IsEditing())
        return;
    const CString tip = pCell->GetTipText();
    if (tip.IsEmpty())
        return;
    CRect cellRect, textRect;
    if (!GetCellRect(cell, &cellRect))
        return;
    textRect = cellRect;
    if (!pCell->GetTipTextRect(&textRect))
        return;
    m_TitleTip.m_pParentWnd = this;
    m_TitleTip.Show(textRect, tip, 0, &cellRect, pCell->GetFont(), m_crTTipTextClr, m_crTTipBackClr);
}

void CGridCtrl::HideTitleTip()
{
    m_TitleTip.Hide();
}
