// COrlexGroup: a framed, labelled panel section that folds away to a strip with a small
// button in its top left corner. It is a toggle button whose state means expanded (1, the
// start): collapsed, its child windows are hidden and it takes the strip's size (its full
// height for a group that collapses sideways, with the label then running downward; else
// its full width). A click on the button folds or unfolds it; every click sends m1. The
// group does not move its neighbours: a host that stacks groups moves them itself
// (GetWidth, GetCollapseWidth, MoveWindowX).
#pragma once

#include "foundation/platform/afxgdi.h"
#include "panel/OrlexToggleButton.h"

class COrlexGroup : public COrlexToggleButton {
    DECLARE_DYNAMIC(COrlexGroup)
public:
    COrlexGroup();
    ~COrlexGroup() override;

    // Keeps the expanded size and the way it collapses, and makes the window at (x, y);
    // the size comes with UpdateSize (or SetState, or a Set...Width/Height).
    virtual int Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent, int bVertical);
    // The eight frame pieces. The collapsed size becomes the button's width plus twice its
    // x, by the top piece's height less one (set them afterwards to choose others).
    virtual void LoadBorderBitmaps(UINT nLeft, UINT nRight, UINT nTop, UINT nBottom, UINT nTopLeft,
                                   UINT nTopRight, UINT nBottomLeft, UINT nBottomRight);
    // The label's font height in pixels, face, colour and weight, and the background:
    // stored, shown at the next paint.
    virtual void SetFont(UINT nHeight, CString strFace);
    virtual void SetTextColor(UINT nRed, UINT nGreen, UINT nBlue);
    virtual void SetTextWeight(UINT nWeight);
    virtual void SetBackgroundColor(COLORREF crBackground);
    virtual UINT GetWidth();
    virtual UINT GetHeight();
    virtual UINT GetCollapseWidth();
    virtual UINT GetCollapseHeight();
    // The collapse button's face size.
    virtual UINT GetImageWidth();
    virtual UINT GetImageHeight();
    // Store a size and apply it at once.
    virtual void SetWidth(UINT nWidth);
    virtual void SetHeight(UINT nHeight);
    virtual void SetCollapseWidth(UINT nWidth);
    virtual void SetCollapseHeight(UINT nHeight);
    // Gives the window, where it stands, the size of its state (each side at most 32767).
    virtual void UpdateSize();
    // Moves the window to x of its parent's client area, keeping y and size.
    virtual void MoveWindowX(UINT x);

    // Shows every child window for a state above 0 and hides them otherwise, stores the
    // state, then takes the state's size.
    void SetState(int nState) override;
    // The collapse button's collapsed (normal) and expanded (click) faces.
    void LoadBitmap(UINT nId) override;
    void LoadClickBitmap(UINT nId) override;
    // Line feeds break the label into lines.
    void SetLabel(CString strLabel);

    BOOL m_bOverButton = 0;
    BOOL m_bHasButton = 0;
    CPoint m_ptButton{10, 8};
    CString m_strLabel;
    BOOL m_bVertical = 0;
    int m_nFontHeight = 12;
    CString m_strFontFace = "Arial";
    int m_nTextRed = 0;
    int m_nTextGreen = 0;
    int m_nTextBlue = 0;
    int m_nTextWeight = 700;
    COLORREF m_crBackground = RGB(255, 255, 255);
    CBitmap m_BorderBitmaps[8];
    BITMAP m_BorderInfo[8] = {};
    BOOL m_bHasBorder = 0;
    UINT m_nWidth = 0;
    UINT m_nHeight = 0;
    UINT m_nCollapseWidth = 20;
    UINT m_nCollapseHeight = 20;

protected:
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    afx_msg void OnPaint() override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    void DrawBorder(CDC& dc, CDC& mem, int width, int height);
    void DrawLabel(CDC& dc);
    DECLARE_MESSAGE_MAP()
};
