#include "grid/GridCellBase.h"

#include <algorithm>
#include <cstring>

#include "grid/GridCtrl.h"

IMPLEMENT_DYNAMIC(CGridCellBase, CObject)

CGridCellBase* CGridCellBase::GetDefaultCell() const
{
    CGridCtrl* pGrid = GetGrid();
    if (!pGrid)
        return nullptr;
    return pGrid->GetDefaultCell(IsFixedRow(), IsFixedCol());
}

void CGridCellBase::operator=(const CGridCellBase& cell)
{
    SetGrid(cell.GetGrid());
    SetText(cell.GetText());
    SetImage(cell.GetImage());
    SetData(cell.GetData());
    SetState(cell.GetState());
    SetFormat(cell.GetFormat());
    SetTextClr(cell.GetTextClr());
    SetBackClr(cell.GetBackClr());
    SetFont(cell.IsDefaultFont() ? nullptr : cell.GetFont());
    SetMargin(cell.GetMargin());
}

namespace {

// The image's rectangle in the grid's list, when the cell has one that the list knows.
bool KnownImage(const CGridCellBase& cell, IMAGEINFO& info)
{
    const int nImage = cell.GetImage();
    CGridCtrl* pGrid = cell.GetGrid();
    CImageList* pList = pGrid ? pGrid->GetImageList() : nullptr;
    return nImage >= 0 && pList && pList->GetImageInfo(nImage, &info);
}

}  // namespace

BOOL CGridCellBase::GetTextRect(LPRECT pRect)
{
    IMAGEINFO info{};
    if (pRect && KnownImage(*this, info))
        pRect->left += info.rcImage.right - info.rcImage.left + 1 + static_cast<int>(GetMargin());
    return TRUE;
}

CSize CGridCellBase::GetTextExtent(LPCTSTR szText, CDC* pDC)
{
    CGridCtrl* pGrid = GetGrid();
    auto* pDefCell = dynamic_cast<CGridDefaultCell*>(GetDefaultCell());
    const CSize defaultSize = pDefCell ? CSize(pDefCell->GetWidth(), pDefCell->GetHeight()) : CSize(0, 0);
    CDC* pFetched = nullptr;
    if (szText && !pDC && pGrid && ::IsWindow(pGrid->GetSafeHwnd()))
        pDC = pFetched = pGrid->GetDC();
    if (!szText || !pDC)
        return defaultSize;

    CFont* pOldFont = nullptr;
    if (CFont* pFont = GetFontObject())
        pOldFont = pDC->SelectObject(pFont);

    const DWORD nFormat = GetFormat();
    CSize size;
    if (!(nFormat & DT_WORDBREAK) || (nFormat & DT_SINGLELINE)) {
        size = pDC->GetTextExtent(szText, static_cast<int>(std::strlen(szText)));
    } else {
        // The widest line sets the width within which the text is broken.
        int widest = 0;
        for (const char* line = szText;;) {
            const char* end = std::strchr(line, '\n');
            const int len = end ? static_cast<int>(end - line) : static_cast<int>(std::strlen(line));
            widest = std::max<int>(widest, pDC->GetTextExtent(line, len).cx);
            if (!end)
                break;
            line = end + 1;
        }
        CRect rect(0, 0, widest + 1, 0);
        pDC->DrawText(szText, -1, &rect, nFormat | DT_CALCRECT);
        size = rect.Size();
    }
    if (pOldFont)
        pDC->SelectObject(pOldFont);

    const int margin = static_cast<int>(GetMargin());
    const int measuredWidth = size.cx;
    size.cx += 2 * margin;
    size.cy += 2 * margin;
    if (const LOGFONT* plf = GetFont(); plf && (plf->lfEscapement == 900 || plf->lfEscapement == -900))
        size = CSize(size.cy, measuredWidth + 4 * margin);
    if (pFetched)
        pGrid->ReleaseDC(pFetched);
    return size;
}

CSize CGridCellBase::GetCellExtent(CDC* pDC)
{
    const CSize text = GetTextExtent(GetText(), pDC);
    const int margin = static_cast<int>(GetMargin());
    CSize image(0, 0);
    IMAGEINFO info{};
    if (KnownImage(*this, info)) {
        const int w = info.rcImage.right - info.rcImage.left;
        const int h = info.rcImage.bottom - info.rcImage.top;
        // A cell without text has no margin between image and text.
        image.cx = text.cx > 2 * margin ? w + margin : w;
        image.cy = h + 2 * margin;
    }
    CSize size(text.cx + image.cx + 1, std::max(text.cy, image.cy) + 1);
    if (IsFixed())
        size += CSize(1, 1);
    return size;
}

BOOL CGridCellBase::OnSetCursor()
{
    ::SetCursor(::LoadCursor(nullptr, IDC_ARROW));
    return TRUE;
}
