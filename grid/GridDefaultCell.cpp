#include "grid/GridDefaultCell.h"

IMPLEMENT_DYNAMIC(CGridDefaultCell, CGridCell)

CGridDefaultCell::CGridDefaultCell()
{
    m_nFormat = DT_LEFT | DT_VCENTER | DT_SINGLELINE | DT_NOPREFIX | DT_END_ELLIPSIS;
    NONCLIENTMETRICS ncm{};
    ncm.cbSize = sizeof(NONCLIENTMETRICS);
    if (SystemParametersInfo(SPI_GETNONCLIENTMETRICS, sizeof(NONCLIENTMETRICS), &ncm, 0))
        SetFont(&ncm.lfMessageFont);
}

CGridDefaultCell::~CGridDefaultCell() = default;

CFont* CGridDefaultCell::GetFontObject() const
{
    return const_cast<CFont*>(&m_Font);
}

void CGridDefaultCell::SetFont(const LOGFONT* plf)
{
    if (!plf)
        return;
    // The copy first: plf may be this cell's own font.
    CGridCell::SetFont(plf);
    m_Font.DeleteObject();
    m_Font.CreateFontIndirect(m_plfFont ? m_plfFont : plf);

    HDC hdc = ::GetDC(nullptr);
    if (!hdc) {
        SetMargin(3);
        m_Size = CSize(40, 16);
        return;
    }
    CDC* pDC = CDC::FromHandle(hdc);
    CFont* pOldFont = pDC->SelectObject(&m_Font);
    SetMargin(static_cast<UINT>(pDC->GetTextExtent(" ", 1).cx));
    m_Size = pDC->GetTextExtent(" XXXXXXXXXXXX ", 14);
    m_Size.cy = (m_Size.cy * 3) / 2;
    pDC->SelectObject(pOldFont);
    ::ReleaseDC(nullptr, hdc);
}
