// CGridCtrl: painting the window and redrawing cells outside a paint.
#include <algorithm>

#include "grid/GridCtrl.h"
#include "grid/MemDC.h"

void CGridCtrl::OnPaint()
{
    CPaintDC dc(this);
    if (m_bDoubleBuffer) {
        CMemDC memDC(&dc);
        OnDraw(&memDC);
    } else {
        OnDraw(&dc);
    }
}

BOOL CGridCtrl::OnEraseBkgnd(CDC*)
{
    // The background is painted by OnDraw, into the memory context when buffered.
    return TRUE;
}

void CGridCtrl::EraseBkgnd(CDC* pDC)
{
    CRect clip;
    if (!pDC || pDC->GetClipBox(&clip) == ERROR)
        return;
    CRect vis;
    GetVisibleNonFixedCellRange(&vis);
    const int fixedW = GetFixedColumnWidth(), fixedH = GetFixedRowHeight();
    auto fill = [&](int l, int t, int r, int b, COLORREF clr) {
        CBrush brush;
        if (l < r && t < b && brush.CreateSolidBrush(clr)) {
            const CRect rect(l, t, r, b);
            pDC->FillRect(&rect, &brush);
        }
    };
    if (clip.left < fixedW) {
        fill(clip.left, clip.top, fixedW, fixedH, m_cellFixedRowColDef.GetBackClr());
        if (clip.top < vis.bottom)
            fill(clip.left, clip.top, fixedW, vis.bottom, m_cellFixedColDef.GetBackClr());
    }
    if (clip.top < fixedH && clip.right > fixedW && clip.left < vis.right)
        fill(fixedW - 1, clip.top, vis.right, fixedH, m_cellFixedRowDef.GetBackClr());
    CRect cells;
    if (cells.IntersectRect(&vis, &clip))
        fill(std::max<int>(fixedW, cells.left), std::max<int>(fixedH, cells.top), cells.right, cells.bottom,
             m_cellDefault.GetBackClr());
    if (vis.right < clip.right)
        fill(vis.right, clip.top, clip.right, clip.bottom, m_crGridBkColour);
    if (vis.bottom < clip.bottom && clip.left < vis.right)
        fill(clip.left, vis.bottom, vis.right, clip.bottom, m_crGridBkColour);
}

void CGridCtrl::OnDraw(CDC* pDC)
{
    if (!m_bAllowDraw || !pDC)
        return;
    CRect clip;
    if (pDC->GetClipBox(&clip) == ERROR)
        return;
    EraseBkgnd(pDC);

    const int fixedH = GetFixedRowHeight(), fixedW = GetFixedColumnWidth();
    const CCellID idTopLeft = GetTopleftNonFixedCell();
    CRect visRect;
    const CCellRange visible = GetVisibleNonFixedCellRange(&visRect);
    if (m_bVirtualMode)
        SendCacheHintToParent(visible);

    // One pass: the rows and columns given, from the pixel (x0, y0); cells that lie wholly
    // outside the clip box are passed over, and the first row or column past it ends the pass
    // (the fixed corner is not clipped).
    auto pass = [&](int row0, int row1, int col0, int col1, int x0, int y0, bool clipTest) {
        CRect rect;
        rect.bottom = y0 - 1;
        for (int row = row0; row <= row1; ++row) {
            const int h = GetRowHeight(row);
            if (h <= 0)
                continue;
            rect.top = rect.bottom + 1;
            rect.bottom = rect.top + h - 1;
            if (clipTest && rect.top >= clip.bottom)
                break;
            if (clipTest && rect.bottom < clip.top)
                continue;
            rect.right = x0 - 1;
            for (int col = col0; col <= col1; ++col) {
                const int w = GetColumnWidth(col);
                if (w <= 0)
                    continue;
                rect.left = rect.right + 1;
                rect.right = rect.left + w - 1;
                if (clipTest && rect.left >= clip.right)
                    break;
                if (clipTest && rect.right < clip.left)
                    continue;
                if (CGridCellBase* pCell = GetCell(row, col)) {
                    pCell->SetCoords(row, col);
                    pCell->Draw(pDC, row, col, rect, FALSE);
                }
            }
        }
    };
    pass(0, m_nFixedRows - 1, 0, m_nFixedCols - 1, 0, 0, false);
    pass(idTopLeft.row, visible.GetMaxRow(), 0, m_nFixedCols - 1, 0, fixedH, true);
    pass(0, m_nFixedRows - 1, idTopLeft.col, visible.GetMaxCol(), fixedW, 0, true);
    pass(idTopLeft.row, visible.GetMaxRow(), idTopLeft.col, visible.GetMaxCol(), fixedW, fixedH, true);

    CPen pen;
    if (pen.CreatePen(PS_SOLID, 0, m_crGridLineColour)) {
        pDC->SelectObject(&pen);
        if (m_nGridLines == GVL_BOTH || m_nGridLines == GVL_VERT) {
            int x = fixedW;
            for (int col = idTopLeft.col; col <= visible.GetMaxCol(); ++col) {
                const int w = GetColumnWidth(col);
                if (w <= 0)
                    continue;
                x += w;
                pDC->MoveTo(x - 1, fixedH);
                pDC->LineTo(x - 1, visRect.bottom);
            }
        }
        if (m_nGridLines == GVL_BOTH || m_nGridLines == GVL_HORZ) {
            int y = fixedH;
            for (int row = idTopLeft.row; row <= visible.GetMaxRow(); ++row) {
                const int h = GetRowHeight(row);
                if (h <= 0)
                    continue;
                y += h;
                pDC->MoveTo(fixedW, y - 1);
                pDC->LineTo(visRect.right, y - 1);
            }
        }
    }
    pDC->SelectStockObject(NULL_PEN);
    if (m_bVirtualMode)
        SendCacheHintToParent(CCellRange(-1, -1, -1, -1));
}

BOOL CGridCtrl::RedrawCell(int nRow, int nCol, CDC* pDC)
{
    if (!m_bAllowDraw || !IsCellVisible(nRow, nCol))
        return FALSE;
    CRect rect;
    if (!GetCellRect(nRow, nCol, &rect))
        return FALSE;
    CDC* pFetched = nullptr;
    if (!pDC)
        pDC = pFetched = GetDC();
    if (!pDC) {
        InvalidateRect(&rect, TRUE);
        return TRUE;
    }
    BOOL bResult = FALSE;
    if (CGridCellBase* pCell = GetCell(nRow, nCol))
        bResult = pCell->Draw(pDC, nRow, nCol, rect, TRUE);
    if (nRow >= m_nFixedRows && nCol >= m_nFixedCols) {
        // The background went over the cell's own grid lines: they come back.
        CPen pen;
        if (pen.CreatePen(PS_SOLID, 0, m_crGridLineColour)) {
            CPen* pOldPen = pDC->SelectObject(&pen);
            if (m_nGridLines == GVL_BOTH || m_nGridLines == GVL_HORZ) {
                pDC->MoveTo(rect.left, rect.bottom);
                pDC->LineTo(rect.right + 1, rect.bottom);
            }
            if (m_nGridLines == GVL_BOTH || m_nGridLines == GVL_VERT) {
                pDC->MoveTo(rect.right, rect.top);
                pDC->LineTo(rect.right, rect.bottom + 1);
            }
            pDC->SelectObject(pOldPen);
        }
    }
    if (pFetched)
        ReleaseDC(pFetched);
    return bResult;
}

BOOL CGridCtrl::RedrawRow(int row)
{
    if (row < 0 || row >= m_nRows || !::IsWindow(m_hWnd))
        return FALSE;
    BOOL bResult = TRUE;
    CDC* pDC = GetDC();
    for (int col = 0; col < m_nCols; ++col)
        bResult = RedrawCell(row, col, pDC) && bResult;
    if (pDC)
        ReleaseDC(pDC);
    return bResult;
}

BOOL CGridCtrl::RedrawColumn(int col)
{
    if (col < 0 || col >= m_nCols || !::IsWindow(m_hWnd))
        return FALSE;
    BOOL bResult = TRUE;
    CDC* pDC = GetDC();
    for (int row = 0; row < m_nRows; ++row)
        bResult = RedrawCell(row, col, pDC) && bResult;
    if (pDC)
        ReleaseDC(pDC);
    return bResult;
}
