// The title tip: a small popup that shows a cell's whole text over the cell when the text
// does not fit. It takes the mouse while it shows, yet passes every move and press on to the
// window under the pointer, so the cell below is what the user reaches.
#pragma once

#include "foundation/platform/afxcmn.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

class CTitleTip : public CWnd {
public:
    // Registers the window class "ZTitleTip" if it is missing (a resource exception when it
    // can't be).
    CTitleTip();
    ~CTitleTip() override;

    // Makes the popup once for the parent whose cells it shows (not owned).
    virtual BOOL Create(CWnd* pParentWnd);
    // Shows lpszTitleText over rectTitle (the parent's client coordinates) in the font, only
    // when it is wider than rectTitle; the tip hides when the pointer leaves lpHoverRect (or
    // rectTitle). Colours CLR_DEFAULT: the class's.
    void Show(CRect rectTitle, LPCTSTR lpszTitleText, int xoffset = 0, LPRECT lpHoverRect = nullptr,
              const LOGFONT* lpLogFont = nullptr, COLORREF crTextClr = CLR_DEFAULT, COLORREF crBackClr = CLR_DEFAULT);
    void Hide();
    BOOL DestroyWindow() override;
    BOOL PreTranslateMessage(MSG* pMsg) override;

    CWnd* m_pParentWnd = nullptr;
    CRect m_rectTitle;
    CRect m_rectHover;
    DWORD m_dwLastLButtonDown = 0xFFFFFFFF;
    DWORD m_dwDblClickMsecs;
    BOOL m_bCreated = FALSE;

protected:
    void OnMouseMove(UINT nFlags, CPoint point) override;
    DECLARE_MESSAGE_MAP()

private:
    // Posts a pointer message to the window under the screen point (this tip counts as the
    // parent), in its client form or, off its client area, the non-client one.
    void Forward(UINT clientMsg, UINT ncMsg, WPARAM flags, CPoint screen);
};
