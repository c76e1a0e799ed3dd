#include "panel/OrlexLED.h"

IMPLEMENT_DYNAMIC(COrlexLED, COrlex2PtSwitch)

BEGIN_MESSAGE_MAP(COrlexLED, COrlex2PtSwitch)
    ON_WM_SETCURSOR()
    ON_WM_LBUTTONUP()
END_MESSAGE_MAP()

COrlexLED::COrlexLED() : COrlex2PtSwitch(0, 0, true) {}
COrlexLED::~COrlexLED() = default;

void COrlexLED::TurnOn() {
    m_bSwitchOn = 1;
    Invalidate(TRUE);
}

void COrlexLED::TurnOff() {
    m_bSwitchOn = 0;
    Invalidate(TRUE);
}

BOOL COrlexLED::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) { return static_cast<BOOL>(Default()); }

void COrlexLED::OnLButtonUp(UINT nFlags, CPoint point) { Default(); }
