#include "panel/OrlexText.h"

#include <string>

#include "panel/PanelMath.h"

IMPLEMENT_DYNAMIC(COrlexText, CWnd)

BEGIN_MESSAGE_MAP(COrlexText, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

COrlexText::COrlexText() = default;
COrlexText::~COrlexText() = default;

int COrlexText::Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent) {
    if (m_bCreated) DestroyWindow();
    const RECT r{static_cast<LONG>(x), static_cast<LONG>(y), static_cast<LONG>(x + nWidth),
                 static_cast<LONG>(y + nHeight)};
    m_bCreated = CWnd::Create(nullptr, nullptr, m_dwStyle, r, pParent, 0);
    return m_bCreated;
}

void COrlexText::SetFont(UINT nHeight, CString strFace) {
    m_nFontHeight = static_cast<int>(nHeight);
    m_strFontFace = strFace;
}

void COrlexText::SetTextColor(COLORREF crText) { m_crTextColor = crText; }

void COrlexText::SetTextWeight(UINT nWeight) { m_nTextWeight = static_cast<int>(nWeight); }

void COrlexText::SetText(CString strText) {
    m_strText = strText;
    Invalidate(FALSE);
}

void COrlexText::SetBackgroundColor(COLORREF crBackground) {
    m_crBackground = crBackground;
    m_bTransparent = 0;
}

void COrlexText::OnPaint() {
    CPaintDC dc(this);
    dc.SetTextColor(m_crTextColor);
    dc.SetBkColor(m_crBackground);
    if (m_bTransparent) {
        dc.SetBkMode(TRANSPARENT);
    } else {
        CRect rc;
        GetClientRect(&rc);
        dc.FillSolidRect(&rc, m_crBackground);
    }
    CFont font;
    CFont* old = nullptr;
    if (font.CreateFont(m_nFontHeight, 0, 0, 0, m_nTextWeight, 0, 0, 0, 0, 0, 0, 0, 0, m_strFontFace))
        old = dc.SelectObject(&font);
    int y = 0;
    for (const std::string& piece : orlex::panel::TextPieces(m_strText)) {
        dc.TextOut(0, y, piece.c_str(), static_cast<int>(piece.size()));
        y += 10;  // a fixed step: a font taller than 10 pixels overlaps the line above
    }
    if (old) dc.SelectObject(old);
}
