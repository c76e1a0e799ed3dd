// CGridCtrl: cells to pixels and back, the scroll bars and scrolling.
#include <algorithm>
#include <climits>

#include "grid/GridCtrl.h"

namespace {

int ClampInt(long long v)
{
    return static_cast<int>(std::clamp<long long>(v, INT_MIN, INT_MAX));
}

}  // namespace

CCellRange CGridCtrl::GetCellRange() const
{
    return CCellRange(0, 0, m_nRows - 1, m_nCols - 1);
}

CCellID CGridCtrl::GetTopleftNonFixedCell(BOOL bForceRecalculation)
{
    if (IsValid(m_idTopLeftCell) && !bForceRecalculation)
        return m_idTopLeftCell;
    const int nHorzScroll = GetScrollPos32(SB_HORZ);
    const int nVertScroll = GetScrollPos32(SB_VERT);
    m_idTopLeftCell.col = m_arColWidths.Locate(m_nFixedCols, nHorzScroll);
    m_idTopLeftCell.row = m_arRowHeights.Locate(m_nFixedRows, nVertScroll);
    return m_idTopLeftCell;
}

BOOL CGridCtrl::GetCellOrigin(int nRow, int nCol, LPPOINT p)
{
    if (!p || !IsValid(nRow, nCol))
        return FALSE;
    CCellID idTopLeft;
    if (nCol >= m_nFixedCols || nRow >= m_nFixedRows)
        idTopLeft = GetTopleftNonFixedCell();
    if ((nRow >= m_nFixedRows && nRow < idTopLeft.row) || (nCol >= m_nFixedCols && nCol < idTopLeft.col))
        return FALSE;
    if (nCol < m_nFixedCols)
        p->x = ClampInt(m_arColWidths.Sum(0, nCol));
    else
        p->x = ClampInt(GetFixedColumnWidth() + m_arColWidths.Sum(idTopLeft.col, nCol));
    if (nRow < m_nFixedRows)
        p->y = ClampInt(m_arRowHeights.Sum(0, nRow));
    else
        p->y = ClampInt(GetFixedRowHeight() + m_arRowHeights.Sum(idTopLeft.row, nRow));
    return TRUE;
}

BOOL CGridCtrl::GetCellRect(int nRow, int nCol, LPRECT pRect)
{
    CPoint origin;
    if (!pRect || !GetCellOrigin(nRow, nCol, &origin))
        return FALSE;
    pRect->left = origin.x;
    pRect->top = origin.y;
    pRect->right = ClampInt(static_cast<long long>(origin.x) + GetColumnWidth(nCol) - 1);
    pRect->bottom = ClampInt(static_cast<long long>(origin.y) + GetRowHeight(nRow) - 1);
    return TRUE;
}

BOOL CGridCtrl::GetTextRect(int nRow, int nCol, LPRECT pRect)
{
    CGridCellBase* pCell = GetCell(nRow, nCol);
    if (!pCell || !GetCellRect(nRow, nCol, pRect))
        return FALSE;
    return pCell->GetTextRect(pRect);
}

BOOL CGridCtrl::GetCellRangeRect(const CCellRange& cellRange, LPRECT lpRect)
{
    if (!lpRect)
        return FALSE;
    CPoint MinOrigin, MaxOrigin;
    if (!GetCellOrigin(cellRange.GetMinRow(), cellRange.GetMinCol(), &MinOrigin) ||
        !GetCellOrigin(cellRange.GetMaxRow(), cellRange.GetMaxCol(), &MaxOrigin))
        return FALSE;
    lpRect->left = MinOrigin.x;
    lpRect->top = MinOrigin.y;
    lpRect->right = ClampInt(static_cast<long long>(MaxOrigin.x) + GetColumnWidth(cellRange.GetMaxCol()) - 1);
    lpRect->bottom = ClampInt(static_cast<long long>(MaxOrigin.y) + GetRowHeight(cellRange.GetMaxRow()) - 1);
    return TRUE;
}

CCellID CGridCtrl::GetCellFromPt(CPoint point, BOOL bAllowFixedCellCheck)
{
    CCellID cellID;
    const CCellID idTopLeft = GetTopleftNonFixedCell();
    if (!bAllowFixedCellCheck && !IsValid(idTopLeft))
        return cellID;

    // One axis: the fixed part from 0, the rest from the top left one on.
    auto find = [](const orlex::grid::Axis& axis, int fixedCount, int fixedSize, int first, int count, int x,
                   BOOL allowFixed) {
        if (x < 0 || (!allowFixed && x < fixedSize))
            return -1;
        long long pos;
        int i;
        if (x < fixedSize) {
            pos = 0;
            i = 0;
            while (i < fixedCount) {
                pos += axis.GetAt(i);
                if (pos > x)
                    break;
                ++i;
            }
            return i;
        }
        pos = fixedSize;
        i = std::max(first, fixedCount);
        while (i < count) {
            pos += axis.GetAt(i);
            if (pos > x)
                break;
            ++i;
        }
        return i >= count ? -1 : i;
    };
    cellID.col = find(m_arColWidths, m_nFixedCols, GetFixedColumnWidth(), idTopLeft.col, m_nCols, point.x,
                      bAllowFixedCellCheck);
    cellID.row = find(m_arRowHeights, m_nFixedRows, GetFixedRowHeight(), idTopLeft.row, m_nRows, point.y,
                      bAllowFixedCellCheck);
    return cellID;
}

CCellRange CGridCtrl::GetVisibleNonFixedCellRange(LPRECT pRect, BOOL bForceRecalculation)
{
    const CRect rect = ClientRect();
    const CCellID idTopLeft = GetTopleftNonFixedCell(bForceRecalculation);

    long long bottom = GetFixedRowHeight();
    int i = idTopLeft.row;
    for (; i < m_nRows; ++i) {
        bottom += m_arRowHeights.GetAt(i);
        if (bottom >= rect.bottom) {
            bottom = rect.bottom;
            break;
        }
    }
    const int maxVisibleRow = std::min(i, m_nRows - 1);

    long long right = GetFixedColumnWidth();
    i = idTopLeft.col;
    for (; i < m_nCols; ++i) {
        right += m_arColWidths.GetAt(i);
        if (right >= rect.right) {
            right = rect.right;
            break;
        }
    }
    const int maxVisibleCol = std::min(i, m_nCols - 1);
    if (pRect) {
        pRect->left = pRect->top = 0;
        pRect->right = ClampInt(right);
        pRect->bottom = ClampInt(bottom);
    }
    return CCellRange(idTopLeft.row, idTopLeft.col, maxVisibleRow, maxVisibleCol);
}

CCellRange CGridCtrl::GetUnobstructedNonFixedCellRange(BOOL bForceRecalculation)
{
    const CRect rect = ClientRect();
    const CCellID idTopLeft = GetTopleftNonFixedCell(bForceRecalculation);

    long long bottom = GetFixedRowHeight();
    int i = idTopLeft.row;
    for (; i < m_nRows; ++i) {
        bottom += m_arRowHeights.GetAt(i);
        if (bottom >= rect.bottom)
            break;
    }
    int maxVisibleRow = std::min(i, m_nRows - 1);
    if (maxVisibleRow > 0 && bottom > rect.bottom)
        --maxVisibleRow;

    long long right = GetFixedColumnWidth();
    i = idTopLeft.col;
    for (; i < m_nCols; ++i) {
        right += m_arColWidths.GetAt(i);
        if (right >= rect.right)
            break;
    }
    int maxVisibleCol = std::min(i, m_nCols - 1);
    if (maxVisibleCol > 0 && right > rect.right)
        --maxVisibleCol;
    return CCellRange(idTopLeft.row, idTopLeft.col, maxVisibleRow, maxVisibleCol);
}

BOOL CGridCtrl::IsCellVisible(int nRow, int nCol)
{
    if (!::IsWindow(m_hWnd) || !IsValid(nRow, nCol))
        return FALSE;
    CCellID TopLeft;
    if (nCol >= m_nFixedCols || nRow >= m_nFixedRows) {
        TopLeft = GetTopleftNonFixedCell();
        if (nCol >= m_nFixedCols && nCol < TopLeft.col)
            return FALSE;
        if (nRow >= m_nFixedRows && nRow < TopLeft.row)
            return FALSE;
    }
    const CRect rect = ClientRect();
    // Sizes are added up until the client's edge is reached: what starts past it is unseen.
    auto reaches = [](const orlex::grid::Axis& axis, int from, long long start, int index, int edge) {
        long long pos = start;
        for (int i = from; i <= index; ++i) {
            if (pos >= edge)
                return false;
            pos += axis.GetAt(i);
        }
        return true;
    };
    const bool colSeen = nCol < m_nFixedCols ? reaches(m_arColWidths, 0, 0, nCol, rect.right)
                                             : reaches(m_arColWidths, TopLeft.col, GetFixedColumnWidth(), nCol,
                                                       rect.right);
    const bool rowSeen = nRow < m_nFixedRows ? reaches(m_arRowHeights, 0, 0, nRow, rect.bottom)
                                             : reaches(m_arRowHeights, TopLeft.row, GetFixedRowHeight(), nRow,
                                                       rect.bottom);
    return colSeen && rowSeen;
}

void CGridCtrl::EnsureVisible(int nRow, int nCol)
{
    if (!m_bAllowDraw || !::IsWindow(m_hWnd) || !IsValid(nRow, nCol))
        return;
    CWnd* pFocusWnd = GetFocus();
    const HWND focus = pFocusWnd ? pFocusWnd->GetSafeHwnd() : nullptr;

    const CCellRange visible = GetVisibleNonFixedCellRange();
    long long right = static_cast<long long>(nCol) - visible.GetMaxCol();
    long long left = static_cast<long long>(visible.GetMinCol()) - nCol;
    long long down = static_cast<long long>(nRow) - visible.GetMaxRow();
    long long up = static_cast<long long>(visible.GetMinRow()) - nRow;

    for (int col = visible.GetMaxCol() + 1; right > 0; --right, ++col)
        if (GetColumnWidth(col) > 0)
            SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
    for (int col = visible.GetMinCol() - 1; left > 0; --left, --col)
        if (GetColumnWidth(col) > 0)
            SendMessage(WM_HSCROLL, SB_LINELEFT, 0);
    for (int row = visible.GetMaxRow() + 1; down > 0; --down, ++row)
        if (GetRowHeight(row) > 0)
            SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    for (int row = visible.GetMinRow() - 1; up > 0; --up, --row)
        if (GetRowHeight(row) > 0)
            SendMessage(WM_VSCROLL, SB_LINEUP, 0);

    // A cell that still sticks out gets one line more at a time, while that moves anything.
    CRect rectCell;
    const CRect rectWindow = ClientRect();
    if (GetCellRect(nRow, nCol, &rectCell)) {
        while (rectCell.right > rectWindow.right && rectCell.left > GetFixedColumnWidth() && IsVisibleHScroll()) {
            const int before = GetScrollPos32(SB_HORZ);
            SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
            if (GetScrollPos32(SB_HORZ) == before || !GetCellRect(nRow, nCol, &rectCell))
                break;
        }
        while (rectCell.bottom > rectWindow.bottom && rectCell.top > GetFixedRowHeight() && IsVisibleVScroll()) {
            const int before = GetScrollPos32(SB_VERT);
            SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
            if (GetScrollPos32(SB_VERT) == before || !GetCellRect(nRow, nCol, &rectCell))
                break;
        }
    }
    if (focus && ::IsWindow(focus) && ::GetFocus() != focus)
        ::SetFocus(focus);
}

CCellID CGridCtrl::GetNextItem(CCellID& cell, int nFlags) const
{
    auto matches = [&](int row, int col) {
        const UINT state = GetItemState(row, col);
        return ((nFlags & GVNI_FOCUSED) && (state & GVIS_FOCUSED)) ||
               ((nFlags & GVNI_SELECTED) && (state & GVIS_SELECTED)) ||
               ((nFlags & GVNI_DROPHILITED) && (state & GVIS_DROPHILITED)) ||
               ((nFlags & GVNI_READONLY) && (state & GVIS_READONLY)) ||
               ((nFlags & GVNI_FIXED) && (state & GVIS_FIXED)) ||
               ((nFlags & GVNI_MODIFIED) && (state & GVIS_MODIFIED));
    };
    if ((nFlags & GVNI_ALL) == GVNI_ALL) {
        // Reading order after the start, each row from the first scrolled column.
        long long row = std::max(cell.row, m_nFixedRows);
        long long col = std::max<long long>(cell.col + 1LL, m_nFixedCols);
        for (; row < m_nRows; ++row, col = m_nFixedCols)
            for (; col < m_nCols; ++col)
                if (matches(static_cast<int>(row), static_cast<int>(col)))
                    return CCellID(static_cast<int>(row), static_cast<int>(col));
        return CCellID();
    }
    if ((nFlags & GVNI_AREA) == GVNI_AREA) {
        for (long long row = std::max(cell.row, 0); row < m_nRows; ++row)
            for (long long col = std::max<long long>(cell.col + 1LL, 0); col < m_nCols; ++col)
                if (matches(static_cast<int>(row), static_cast<int>(col)))
                    return CCellID(static_cast<int>(row), static_cast<int>(col));
        return CCellID();
    }
    if (!IsValid(cell))
        return CCellID();
    if (nFlags & GVNI_ABOVE) {
        for (int row = cell.row - 1; row >= m_nFixedRows; --row)
            if (matches(row, cell.col))
                return CCellID(row, cell.col);
    } else if (nFlags & GVNI_BELOW) {
        for (int row = cell.row + 1; row < m_nRows; ++row)
            if (matches(row, cell.col))
                return CCellID(row, cell.col);
    } else if (nFlags & GVNI_TOLEFT) {
        for (int col = cell.col - 1; col >= m_nFixedCols; --col)
            if (matches(cell.row, col))
                return CCellID(cell.row, col);
    } else if (nFlags & GVNI_TORIGHT) {
        for (int col = cell.col + 1; col < m_nCols; ++col)
            if (matches(cell.row, col))
                return CCellID(cell.row, col);
    }
    return CCellID();
}

// Scroll bars ---------------------------------------------------------------------------------

int CGridCtrl::GetScrollPos32(int nBar, BOOL bGetTrackPos)
{
    if (!::IsWindow(m_hWnd))
        return 0;
    SCROLLINFO si{};
    si.cbSize = sizeof(SCROLLINFO);
    si.fMask = bGetTrackPos ? SIF_TRACKPOS : SIF_POS;
    if (!GetScrollInfo(nBar, &si, si.fMask))
        return 0;
    return bGetTrackPos ? si.nTrackPos : si.nPos;
}

BOOL CGridCtrl::SetScrollPos32(int nBar, int nPos, BOOL bRedraw)
{
    m_idTopLeftCell.row = -1;
    if (!::IsWindow(m_hWnd))
        return FALSE;
    SCROLLINFO si{};
    si.cbSize = sizeof(SCROLLINFO);
    si.fMask = SIF_POS;
    si.nPos = nPos;
    return SetScrollInfo(nBar, &si, bRedraw);
}

void CGridCtrl::EnableScrollBars(int nBar, BOOL bEnable)
{
    if (!::IsWindow(m_hWnd))
        return;
    auto one = [&](int bar, int bit) {
        const bool shown = (m_nBarState & bit) != 0 || (GetStyle() & (bar == SB_HORZ ? WS_HSCROLL : WS_VSCROLL));
        if (bEnable)
            m_nBarState |= bit;
        else
            m_nBarState &= ~bit;
        if (shown != static_cast<bool>(bEnable))
            ShowScrollBar(static_cast<UINT>(bar), bEnable);
    };
    if (nBar == SB_HORZ || nBar == SB_BOTH)
        one(SB_HORZ, 1);
    if (nBar == SB_VERT || nBar == SB_BOTH)
        one(SB_VERT, 2);
}

void CGridCtrl::ResetScrollBars()
{
    m_idTopLeftCell.row = -1;
    if (!m_bAllowDraw || !::IsWindow(m_hWnd))
        return;
    // Showing or hiding a bar changes the client; the values are taken again once on the
    // client that the decision made.
    for (int pass = 0; pass < 2; ++pass) {
        CRect rect = ClientRect();
        if (rect.left == rect.right || rect.top == rect.bottom)
            return;
        // The decision is taken on the client widened by the bars that show now.
        const DWORD style = GetStyle();
        if (style & WS_VSCROLL)
            rect.right += ::GetSystemMetrics(SM_CXVSCROLL) + ::GetSystemMetrics(SM_CXBORDER);
        if (style & WS_HSCROLL)
            rect.bottom += ::GetSystemMetrics(SM_CYHSCROLL) + ::GetSystemMetrics(SM_CYBORDER);
        const int fixedW = GetFixedColumnWidth(), fixedH = GetFixedRowHeight();
        rect.left += fixedW;
        rect.top += fixedH;
        if (rect.left >= rect.right || rect.top >= rect.bottom) {
            m_nHScrollMax = m_nVScrollMax = 0;
            EnableScrollBars(SB_BOTH, FALSE);
            return;
        }
        long long visibleW = rect.Width(), visibleH = rect.Height();
        const long long virtualW = static_cast<long long>(GetVirtualWidth()) - fixedW;
        const long long virtualH = static_cast<long long>(GetVirtualHeight()) - fixedH;
        if (visibleH < virtualH)
            visibleW -= ::GetSystemMetrics(SM_CXVSCROLL);
        if (visibleW < virtualW)
            visibleH -= ::GetSystemMetrics(SM_CYHSCROLL);

        const bool vert = visibleH < virtualH, horz = visibleW < virtualW;
        EnableScrollBars(SB_VERT, vert);
        EnableScrollBars(SB_HORZ, horz);
        m_nVScrollMax = vert ? ClampInt(virtualH - 1) : 0;
        m_nHScrollMax = horz ? ClampInt(virtualW - 1) : 0;
        if (pass == 0 && GetStyle() != style)
            continue;

        SCROLLINFO si{};
        si.cbSize = sizeof(SCROLLINFO);
        si.fMask = SIF_PAGE | SIF_RANGE;
        si.nMin = 0;
        si.nMax = m_nHScrollMax;
        si.nPage = m_nHScrollMax > 0 ? static_cast<UINT>(std::max<long long>(visibleW, 0)) : 0;
        SetScrollInfo(SB_HORZ, &si, TRUE);
        si.fMask |= SIF_DISABLENOSCROLL;
        si.nMax = m_nVScrollMax;
        si.nPage = m_nVScrollMax > 0 ? static_cast<UINT>(std::max<long long>(visibleH, 0)) : 0;
        SetScrollInfo(SB_VERT, &si, TRUE);
        break;
    }
    m_idTopLeftCell.row = -1;
}

// Scrolling ------------------------------------------------------------------------------------

void CGridCtrl::OnHScroll(UINT nSBCode, UINT, CScrollBar*)
{
    Scroll(SB_HORZ, nSBCode);
}

void CGridCtrl::OnVScroll(UINT nSBCode, UINT, CScrollBar*)
{
    Scroll(SB_VERT, nSBCode);
}

void CGridCtrl::Scroll(int nBar, UINT nSBCode)
{
    EndEditing();
    const bool vert = nBar == SB_VERT;
    orlex::grid::Axis& axis = vert ? m_arRowHeights : m_arColWidths;
    const int count = vert ? m_nRows : m_nCols;
    const int fixedCount = vert ? m_nFixedRows : m_nFixedCols;
    const int scrollMax = vert ? m_nVScrollMax : m_nHScrollMax;
    const int scrollPos = GetScrollPos32(nBar);
    const CCellID idTopLeft = GetTopleftNonFixedCell();
    const int topLeft = vert ? idTopLeft.row : idTopLeft.col;

    // The scrolling part: the client from the fixed part on.
    CRect rect = ClientRect();
    const int fixedSize = vert ? GetFixedRowHeight() : GetFixedColumnWidth();
    if (vert)
        rect.top = fixedSize;
    else
        rect.left = fixedSize;
    const int page = vert ? rect.Height() : rect.Width();

    switch (nSBCode) {
    case SB_LINEDOWN:  // SB_LINERIGHT
        if (scrollPos < scrollMax) {
            int i = topLeft;
            while (i < count && axis.GetAt(i) == 0)
                ++i;
            if (i >= count)
                break;
            SetScrollPos32(nBar, ClampInt(static_cast<long long>(scrollPos) + axis.GetAt(i)));
            if (GetScrollPos32(nBar) != scrollPos)
                InvalidateIfAllowed(&rect);
        }
        break;
    case SB_LINEUP:  // SB_LINELEFT
        if (scrollPos > 0 && topLeft > fixedCount) {
            int i = topLeft - 1;
            while (i > fixedCount && axis.GetAt(i) == 0)
                --i;
            SetScrollPos32(nBar, ClampInt(std::max<long long>(0, static_cast<long long>(scrollPos) - axis.GetAt(i))));
            InvalidateIfAllowed(&rect);
        }
        break;
    case SB_PAGEDOWN:  // SB_PAGERIGHT
        if (scrollPos < scrollMax) {
            SetScrollPos32(nBar, ClampInt(std::min<long long>(scrollMax, static_cast<long long>(scrollPos) + page)));
            InvalidateIfAllowed(&rect);
        }
        break;
    case SB_PAGEUP:  // SB_PAGELEFT
        if (scrollPos > 0) {
            SetScrollPos32(nBar, ClampInt(std::max<long long>(0, static_cast<long long>(scrollPos) - page)));
            InvalidateIfAllowed(&rect);
        }
        break;
    case SB_THUMBPOSITION:
    case SB_THUMBTRACK: {
        SetScrollPos32(nBar, GetScrollPos32(nBar, TRUE));
        const CCellID idNewTopLeft = GetTopleftNonFixedCell();
        if (idNewTopLeft != idTopLeft)
            InvalidateIfAllowed(&rect);
        break;
    }
    case SB_TOP:  // SB_LEFT
        if (scrollPos > 0) {
            SetScrollPos32(nBar, 0);
            InvalidateIfAllowed(nullptr);
        }
        break;
    case SB_BOTTOM:  // SB_RIGHT
        if (scrollPos < scrollMax) {
            SetScrollPos32(nBar, scrollMax);
            InvalidateIfAllowed(nullptr);
        }
        break;
    default:
        break;
    }
}

BOOL CGridCtrl::OnMouseWheel(UINT, short zDelta, CPoint)
{
    if (m_nRowsPerWheelNotch == -1) {
        // Page scrolling.
        const int n = zDelta / WHEEL_DELTA;
        for (int i = 0; i < std::abs(n); ++i)
            PostMessage(WM_VSCROLL, MAKEWPARAM(static_cast<WORD>(n > 0 ? SB_PAGEUP : SB_PAGEDOWN), 0), 0);
    } else {
        const long long n = static_cast<long long>(zDelta) * m_nRowsPerWheelNotch / WHEEL_DELTA;
        for (long long i = 0; i < std::abs(n); ++i)
            PostMessage(WM_VSCROLL, MAKEWPARAM(static_cast<WORD>(n > 0 ? SB_LINEUP : SB_LINEDOWN), 0), 0);
    }
    return TRUE;
}

// Deferred and immediate redrawing -------------------------------------------------------------

void CGridCtrl::InvalidateCellRect(int row, int col)
{
    if (!::IsWindow(m_hWnd) || !m_bAllowDraw || !IsValid(row, col) || !IsCellVisible(row, col))
        return;
    CRect rect;
    if (!GetCellRect(row, col, &rect))
        return;
    rect.right++;
    rect.bottom++;
    InvalidateRect(&rect, TRUE);
}

void CGridCtrl::InvalidateCellRect(const CCellRange& cellRange)
{
    if (!::IsWindow(m_hWnd) || !m_bAllowDraw || !IsValid(cellRange))
        return;
    const CCellRange visible = GetVisibleNonFixedCellRange().Intersect(cellRange);
    CRect rect;
    if (!IsValid(visible) || !GetCellRangeRect(visible, &rect))
        return;
    rect.right++;
    rect.bottom++;
    InvalidateRect(&rect, TRUE);
}
