// COrlex3StateButton: a button whose pressed look stays after the release until code takes
// it away (UnClick). It ignores mouse moves altogether: no rollover, no "OrlexHelp", and a
// press released anywhere counts and sends m1.
#pragma once

#include "panel/Orlex.h"

class COrlex3StateButton : public COrlex {
    DECLARE_DYNAMIC(COrlex3StateButton)
public:
    COrlex3StateButton();
    ~COrlex3StateButton() override;

    // Put on or take off the pressed look, silently. Both release the mouse capture,
    // whichever window holds it.
    void Click();
    void UnClick();
    // True while pressed, if a click face was loaded.
    bool IsClicked();

protected:
    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    void SetClicked(bool clicked);
    DECLARE_MESSAGE_MAP()
};
