// COrlexTextEdit: a one-line edit box that commits on Return. It tells its parent of every
// key-up (WM_KEYUP with the key code) and of the loss of the focus (WM_KILLFOCUS); Return
// sends the focus to the parent and back, leaving the whole text selected. Return and
// Escape key-downs never reach a dialog around it.
#pragma once

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/afxwin.h"

class COrlexTextEdit : public CEdit {
    DECLARE_DYNAMIC(COrlexTextEdit)
public:
    COrlexTextEdit();
    ~COrlexTextEdit() override;

    // Makes the edit in x, y, x + nWidth, y + nHeight of the parent (style m_dwStyle, id
    // 0, a static edge), first destroying the one made before; the result in m_bCreated.
    virtual int Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent);
    // Stored only: the box draws with the font the system gives it.
    virtual void SetFont(UINT nHeight, CString strFace);
    virtual void SetTextColor(COLORREF crText);
    virtual void SetTextWeight(UINT nWeight);
    // Stores the text, shows it and repaints without erase.
    virtual void SetText(CString strText);
    // What the box held at the last key-up (or the last SetText).
    CString GetText();

    BOOL PreTranslateMessage(MSG* pMsg) override;

    BOOL m_bCreated = 0;
    int m_nFontHeight = 12;
    CString m_strFontFace = "Arial";
    COLORREF m_crTextColor = 0;
    int m_nTextWeight = 700;
    CString m_strText;
    DWORD m_dwStyle = WS_CHILD | WS_VISIBLE | WS_BORDER;

protected:
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point) override;
    afx_msg void OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    afx_msg void OnKillFocus(CWnd* pNewWnd) override;
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    DECLARE_MESSAGE_MAP()
};
