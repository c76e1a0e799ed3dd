// COrlex2PtSwitch: a two-position switch. The half of the face that is clicked decides the
// position (the left half, middle pixel included, is on); there is no pressed look. The
// option index follows the position through the polarity: with polarity true the left half
// is option 0, with polarity false option 1. m1 goes out after each click; SetCtrlOption
// moves the switch silently. The hover capture of the base stays until the pointer leaves.
#pragma once

#include "panel/Orlex.h"

class COrlex2PtSwitch : public COrlex {
    DECLARE_DYNAMIC(COrlex2PtSwitch)
public:
    // nOffBitmap is also the base's normal face; non-zero ids are loaded here but only
    // LoadOffBitmap sizes the window.
    COrlex2PtSwitch(UINT nOffBitmap, UINT nOnBitmap, bool bPolarity);
    ~COrlex2PtSwitch() override;

    // The on face; m_bHasOnBitmap tells whether it loaded.
    virtual void LoadOnBitmap(UINT nId);
    // The off face; the window takes its size at its present place.
    virtual void LoadOffBitmap(UINT nId);
    // As the base, then the position from the option and the polarity, repainted with erase.
    void SetCtrlOption(CString strOption) override;
    void SetCtrlOption(UINT nIndex) override;
    // Takes effect at the next SetCtrlOption.
    void SetPolarity(bool bPolarity);

    BOOL m_bSwitchOn = 0;
    BOOL m_bHasOnBitmap = 0;
    bool m_bPolarity;
    CBitmap m_OnBitmap;
    CBitmap m_OffBitmap;

protected:
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    afx_msg void OnPaint() override;
    afx_msg int OnCreate(LPCREATESTRUCT cs) override;
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    // Follows the option and the polarity, and repaints.
    void PositionFromOption();
    DECLARE_MESSAGE_MAP()
};
