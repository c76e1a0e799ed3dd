// COrlex2HSlider: a panel element that sets one real number in 0.0 .. 100.0, coarsely,
// finely or by typing. A label across the top; below it the current range's ends over a
// large slider that sets the value within that range; a small slider under its right end
// that narrows the range around the value (to a hundredth at its right end); an edit box
// right of the large slider where a value is typed and committed with Return.
//
// The compound is the receiver of its own sliders. It acts on their texts and then passes
// every one of them on to its own receiver, unchanged: the host sees "SET PARM VALUE" when
// the value moves, "SET ZOOM RANGE" when the range moves, "SET VALUE UPDATE" and "SET ZOOM
// UPDATE" at the ends of drags, and the sliders' "OrlexHelp". The host may itself send
// "WM_KEYUP" or "WM_KILLFOCUS" to have the typed text taken (clamped) without a redraw.
#pragma once

#include "panel/Orlex.h"
#include "panel/OrlexHorzSlider.h"
#include "panel/OrlexMsgCenter.h"
#include "panel/OrlexText.h"
#include "panel/OrlexTextEdit.h"

class COrlex2HSlider : public COrlex, public COrlexMsgCenter {
    DECLARE_DYNAMIC(COrlex2HSlider)
public:
    COrlex2HSlider();
    ~COrlex2HSlider() override;

    // Makes the window (x, y, nWidth x nHeight in the parent) and its six children, dressed
    // and showing value 1.00 in the range 0.0 .. 100.0. 0 if the window or a child failed.
    // A second call starts over with those values.
    virtual int Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent);
    // Thumbs first, large before small, then both tracks. Wires the sliders to the compound
    // and sets its height to the children's (label, range text, both sliders). After Create.
    virtual void LoadBitmap(UINT nLargeThumbId, UINT nSmallThumbId, UINT nLargeBackgroundId,
                            UINT nSmallBackgroundId);
    // Moves the compound and lays its children out for the new width.
    virtual void MoveWindow(const RECT* pRect, int bRepaint);
    virtual void SetLabel(CString strLabel);
    virtual void SetLabelFont(UINT nHeight, CString strFace);
    virtual void SetLabelColor(COLORREF crLabel);
    // The panel colour, given to the sliders and the three texts (which turn opaque), not
    // to the edit.
    virtual void SetBackgroundColor(COLORREF crBackground);
    // Slide ends of either slider (its thumb keeps its fraction; its text goes out).
    virtual void SetLargeSlideRange(int nMin, int nMax);
    virtual void SetSmallSlideRange(int nMin, int nMax);

    void ReceiveCtrlMessage(CString strMessage) override;

    COrlexHorzSlider m_LargeSlider;
    COrlexHorzSlider m_SmallSlider;
    COrlexTextEdit m_ValueEdit;
    COrlexText m_LabelText;
    COrlexText m_MaxText;
    COrlexText m_MinText;
    double m_dValue = 0.0;
    double m_dRangeMax = 100.0;
    double m_dRangeMin = 0.0;
    double m_dAbsMax = 100.0;
    double m_dAbsMin = 0.0;
    // White until SetBackgroundColor.
    COLORREF m_crBackground = RGB(255, 255, 255);

protected:
    // The value with two decimals in the edit, the range's ends with one in the texts.
    void UpdateDisplay();
    // The edit's text as a number in the whole range (text without a number reads 0.0).
    double TypedValue();

    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    afx_msg void OnPaint() override;
    afx_msg BOOL OnEraseBkgnd(CDC* pDC) override;
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    afx_msg void OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags) override;
    DECLARE_MESSAGE_MAP()
};
