// COrlexToggleButton: a button that flips with each click. State 1 (the start) shows the
// click face, any other state the normal face; a click turns 1 into 0 and anything else
// into 1, then m1 goes out.
#pragma once

#include "panel/Orlex.h"

class COrlexToggleButton : public COrlex {
    DECLARE_DYNAMIC(COrlexToggleButton)
public:
    COrlexToggleButton();
    ~COrlexToggleButton() override;

    virtual int GetState();
    // Stores the state (any value) and repaints the face.
    virtual void SetState(int nState);

    int m_nToggleState = 1;

protected:
    afx_msg void OnPaint() override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    DECLARE_MESSAGE_MAP()
};
