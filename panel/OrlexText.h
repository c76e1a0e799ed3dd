// COrlexText: a static text without a frame, drawn in lines 10 pixels apart whatever the
// font's height. Transparent until a background colour is set; a changed text is drawn
// over the old one without erasing it.
#pragma once

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/afxwin.h"

class COrlexText : public CWnd {
    DECLARE_DYNAMIC(COrlexText)
public:
    COrlexText();
    ~COrlexText() override;

    // Makes the window in x, y, x + nWidth, y + nHeight of the parent (style m_dwStyle,
    // id 0), first destroying the one made before; the result goes into m_bCreated.
    virtual int Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent);
    // Font height in pixels and face; used from the next paint.
    virtual void SetFont(UINT nHeight, CString strFace);
    virtual void SetTextColor(COLORREF crText);
    // Font weight, 0 .. 1000 (default 700, bold).
    virtual void SetTextWeight(UINT nWeight);
    // Stores the text and repaints without erase.
    virtual void SetText(CString strText);
    // Stores the colour and turns the text opaque (there is no way back).
    virtual void SetBackgroundColor(COLORREF crBackground);

    BOOL m_bCreated = 0;
    int m_nFontHeight = 12;
    CString m_strFontFace = "Arial";
    COLORREF m_crTextColor = 0;
    int m_nTextWeight = 700;
    COLORREF m_crBackground = RGB(255, 255, 255);
    BOOL m_bTransparent = 1;
    CString m_strText;
    DWORD m_dwStyle = WS_CHILD | WS_VISIBLE;

protected:
    afx_msg void OnPaint() override;
    DECLARE_MESSAGE_MAP()
};
