// How a cell paints itself.
#include "grid/GridCellBase.h"
#include "grid/GridCtrl.h"

namespace {

// The small triangle of the sorted column's header, s pixels a side, at (left, top).
void DrawSortArrow(CDC* pDC, int left, int top, int s, BOOL bAscending)
{
    CPen penShadow(PS_SOLID, 0, ::GetSysColor(COLOR_3DSHADOW));
    CPen penLight(PS_SOLID, 0, ::GetSysColor(COLOR_3DHIGHLIGHT));
    CPen* pOldPen = pDC->SelectObject(&penLight);
    if (bAscending) {
        // Point up: the light copy one pixel right and down, then the shadow.
        pDC->MoveTo(left + 1, top + s + 1);
        pDC->LineTo(left + s / 2 + 1, top + 1);
        pDC->LineTo(left + s + 1, top + s + 1);
        pDC->LineTo(left + 1, top + s + 1);
        pDC->SelectObject(&penShadow);
        pDC->MoveTo(left, top + s);
        pDC->LineTo(left + s / 2, top);
        pDC->LineTo(left + s, top + s);
        pDC->LineTo(left, top + s);
    } else {
        pDC->MoveTo(left + 1, top + 1);
        pDC->LineTo(left + s / 2 + 1, top + s + 1);
        pDC->LineTo(left + s + 1, top + 1);
        pDC->LineTo(left + 1, top + 1);
        pDC->SelectObject(&penShadow);
        pDC->MoveTo(left, top);
        pDC->LineTo(left + s / 2, top + s);
        pDC->LineTo(left + s, top);
        pDC->LineTo(left, top);
    }
    pDC->SelectObject(pOldPen);
}

void FillWithBrush(CDC* pDC, const CRect& rect, COLORREF clr)
{
    CBrush brush;
    if (brush.CreateSolidBrush(clr))
        pDC->FillRect(&rect, &brush);
}

}  // namespace

BOOL CGridCellBase::Draw(CDC* pDC, int nRow, int nCol, CRect rect, BOOL bEraseBkgnd)
{
    CGridCtrl* pGrid = GetGrid();
    if (!pGrid || !pDC || rect.Width() < 1 || rect.Height() < 1)
        return FALSE;
    const int nSavedDC = pDC->SaveDC();
    pDC->SetBkMode(TRANSPARENT);
    CGridCellBase* pDefaultCell = GetDefaultCell();
    if (!pDefaultCell) {
        pDC->RestoreDC(nSavedDC);
        return FALSE;
    }

    // An own back colour always paints; the default one only when asked to.
    COLORREF TextClr = GetTextClr() != CLR_DEFAULT ? GetTextClr() : pDefaultCell->GetTextClr();
    COLORREF TextBkClr = pDefaultCell->GetBackClr();
    if (GetBackClr() != CLR_DEFAULT) {
        TextBkClr = GetBackClr();
        bEraseBkgnd = TRUE;
    }
    const BOOL bGridLines = pGrid->GetGridLines() != GVL_NONE;

    if (!IsFocused() && !IsDropHighlighted()) {
        CRect fill(rect.left, rect.top, rect.right + 1, rect.bottom + 1);
        if (IsSelected()) {
            pDC->FillSolidRect(&fill, ::GetSysColor(COLOR_HIGHLIGHT));
            TextClr = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
        } else if (bEraseBkgnd) {
            FillWithBrush(pDC, fill, TextBkClr);
        }
        pDC->SetTextColor(TextClr);
    } else {
        if (IsSelected()) {
            TextBkClr = ::GetSysColor(COLOR_HIGHLIGHT);
            TextClr = ::GetSysColor(COLOR_HIGHLIGHTTEXT);
            bEraseBkgnd = TRUE;
        }
        rect.right++;
        rect.bottom++;
        if (bEraseBkgnd)
            FillWithBrush(pDC, rect, TextBkClr);
        // The frame lies inside the grid line, or on the cell's edge without lines.
        if (bGridLines) {
            rect.right--;
            rect.bottom--;
        }
        if (pGrid->GetFrameFocusCell()) {
            CBrush brush;
            if (brush.CreateSolidBrush(TextClr))
                pDC->FrameRect(&rect, &brush);
        }
        pDC->SetTextColor(TextClr);
        if (!bGridLines) {
            rect.right--;
            rect.bottom--;
        }
    }

    if (IsFixed() && bGridLines) {
        const CCellID focus = pGrid->GetFocusCell();
        if (pGrid->GetTrackFocusCell() && pGrid->IsValid(focus) && (focus.row == nRow || focus.col == nCol)) {
            // The headers of the focus row and column look pressed.
            rect.right++;
            rect.bottom++;
            pDC->DrawEdge(&rect, BDR_SUNKENINNER, BF_RECT);
            rect.DeflateRect(1, 1);
        } else {
            CPen lightpen(PS_SOLID, 1, ::GetSysColor(COLOR_3DHIGHLIGHT));
            CPen darkpen(PS_SOLID, 1, ::GetSysColor(COLOR_3DDKSHADOW));
            CPen* pOldPen = pDC->SelectObject(&lightpen);
            pDC->MoveTo(rect.right, rect.top);
            pDC->LineTo(rect.left, rect.top);
            pDC->LineTo(rect.left, rect.bottom);
            pDC->SelectObject(&darkpen);
            pDC->MoveTo(rect.right, rect.top);
            pDC->LineTo(rect.right, rect.bottom);
            pDC->LineTo(rect.left, rect.bottom);
            pDC->SelectObject(pOldPen);
            rect.DeflateRect(1, 1);
        }
    }

    if (!pDC->IsPrinting()) {
        if (CFont* pFont = GetFontObject())
            pDC->SelectObject(pFont);
    }

    const int margin = static_cast<int>(GetMargin());
    rect.DeflateRect(margin, margin);
    rect.right++;
    rect.bottom++;

    CImageList* pImageList = pGrid->GetImageList();
    IMAGEINFO info{};
    if (pImageList && GetImage() >= 0 && pImageList->GetImageInfo(GetImage(), &info)) {
        const int w = info.rcImage.right - info.rcImage.left, h = info.rcImage.bottom - info.rcImage.top;
        if (rect.left + w <= rect.right && rect.top + h <= rect.bottom)
            pImageList->Draw(pDC, GetImage(), rect.TopLeft(), ILD_NORMAL);
    }

    if (nRow == 0 && pGrid->GetSortColumn() == nCol) {
        int s = pDC->GetTextExtent("M", 1).cy - 4;
        if (s >= rect.Height())
            s = rect.Height() - 4;
        const LOGFONT* plf = GetFont();
        const bool vertical = plf && plf->lfEscapement == 900;
        if (rect.left + s < rect.right) {
            const int top = rect.bottom - s - 2;
            const int left = vertical ? (rect.left - s + rect.right) / 2 : rect.right - s;
            DrawSortArrow(pDC, left, top, s, pGrid->GetSortAscending());
            if (!vertical)
                rect.right -= s;
        }
    }

    GetTextRect(&rect);
    rect.right++;
    rect.bottom++;
    pDC->DrawText(GetText(), -1, &rect, GetFormat() | DT_NOPREFIX);
    pDC->RestoreDC(nSavedDC);
    return TRUE;
}
