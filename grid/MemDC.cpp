#include "grid/MemDC.h"

CMemDC::CMemDC(CDC* pDC) : m_pDC(pDC), m_bMemDC(!pDC->IsPrinting())
{
    if (m_bMemDC) {
        pDC->GetClipBox(&m_rect);
        CreateCompatibleDC(pDC);
        m_bitmap.CreateCompatibleBitmap(pDC, m_rect.Width(), m_rect.Height());
        m_oldBitmap = SelectObject(&m_bitmap);
        SetWindowOrg(m_rect.left, m_rect.top);
        FillSolidRect(&m_rect, pDC->GetBkColor());
    } else {
        m_bPrinting = pDC->m_bPrinting;
        m_hDC = pDC->m_hDC;
        m_hAttribDC = pDC->m_hAttribDC;
    }
}

CMemDC::~CMemDC()
{
    if (m_bMemDC) {
        m_pDC->BitBlt(m_rect.left, m_rect.top, m_rect.Width(), m_rect.Height(), this, m_rect.left, m_rect.top, SRCCOPY);
        SelectObject(m_oldBitmap);
    } else {
        // The handles are the target's.
        m_hDC = m_hAttribDC = nullptr;
    }
}
