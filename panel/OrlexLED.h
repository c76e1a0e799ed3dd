// COrlexLED: a lamp on the switch's faces that only code turns on and off. Clicks do
// nothing; the pointer entering still takes the capture and sends "OrlexHelp", and the
// pointer is the window class's arrow.
#pragma once

#include "panel/Orlex2PtSwitch.h"

class COrlexLED : public COrlex2PtSwitch {
    DECLARE_DYNAMIC(COrlexLED)
public:
    // No faces yet (LoadOffBitmap and LoadOnBitmap give them), polarity true.
    COrlexLED();
    ~COrlexLED() override;

    // Light or darken the lamp, repainted with erase.
    void TurnOn();
    void TurnOff();

protected:
    afx_msg BOOL OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    DECLARE_MESSAGE_MAP()
};
