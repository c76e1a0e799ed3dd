#include "grid/GridCell.h"

#include <cstring>
#include <new>

#include "foundation/platform/afxgdi.h"

IMPLEMENT_DYNCREATE(CGridCell, CGridCellBase)

CGridCell::~CGridCell()
{
    delete m_plfFont;
}

void CGridCell::SetFont(const LOGFONT* plf)
{
    if (!plf) {
        delete m_plfFont;
        m_plfFont = nullptr;
        return;
    }
    if (!m_plfFont)
        m_plfFont = new (std::nothrow) LOGFONT;
    if (m_plfFont && m_plfFont != plf)
        std::memcpy(m_plfFont, plf, sizeof(LOGFONT));
}

DWORD CGridCell::GetFormat() const
{
    if (m_nFormat != 0xFFFFFFFF)
        return m_nFormat;
    const CGridCellBase* pDefault = GetDefaultCell();
    return pDefault && pDefault != this ? pDefault->GetFormat() : 0;
}

UINT CGridCell::GetMargin() const
{
    if (m_nMargin != 0xFFFFFFFF)
        return m_nMargin;
    const CGridCellBase* pDefault = GetDefaultCell();
    return pDefault && pDefault != this ? pDefault->GetMargin() : 0;
}

LOGFONT* CGridCell::GetFont() const
{
    if (m_plfFont)
        return m_plfFont;
    const CGridCellBase* pDefault = GetDefaultCell();
    return pDefault && pDefault != this ? pDefault->GetFont() : nullptr;
}

CFont* CGridCell::GetFontObject() const
{
    if (m_plfFont) {
        // One object for every cell with a font of its own; it lives for the process.
        static CFont& shared = *new CFont;
        shared.DeleteObject();
        shared.CreateFontIndirect(m_plfFont);
        return &shared;
    }
    const CGridCellBase* pDefault = GetDefaultCell();
    return pDefault && pDefault != this ? pDefault->GetFontObject() : nullptr;
}

void CGridCell::operator=(const CGridCell& cell)
{
    if (this != &cell)
        CGridCellBase::operator=(cell);
}

void CGridCell::Reset()
{
    CGridCellBase::Reset();
    m_strText.Empty();
    m_lParam = 0;
    m_nImage = -1;
    m_nFormat = 0xFFFFFFFF;
    m_crFgClr = CLR_DEFAULT;
    m_crBkClr = CLR_DEFAULT;
    delete m_plfFont;
    m_plfFont = nullptr;
    m_nMargin = 0xFFFFFFFF;
    m_bEditing = FALSE;
    m_pGrid = nullptr;
    m_pEditWnd = nullptr;
}
