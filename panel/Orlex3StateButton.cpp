#include "panel/Orlex3StateButton.h"

IMPLEMENT_DYNAMIC(COrlex3StateButton, COrlex)

BEGIN_MESSAGE_MAP(COrlex3StateButton, COrlex)
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONUP()
    ON_WM_LBUTTONDOWN()
END_MESSAGE_MAP()

COrlex3StateButton::COrlex3StateButton() : COrlex(0, 0, 0) {}
COrlex3StateButton::~COrlex3StateButton() = default;

void COrlex3StateButton::SetClicked(bool clicked) {
    m_bMouseCaptured = 0;
    m_bClicked = clicked;
    ::ReleaseCapture();
    InvalidateFace();
}

void COrlex3StateButton::Click() { SetClicked(true); }

void COrlex3StateButton::UnClick() { SetClicked(false); }

bool COrlex3StateButton::IsClicked() { return m_bClicked && m_bHasClick; }

void COrlex3StateButton::OnMouseMove(UINT nFlags, CPoint point) {
    // Nothing at all, not even default handling: no hover, and a press is never cancelled.
}

void COrlex3StateButton::OnLButtonUp(UINT nFlags, CPoint point) {
    SetClicked(true);
    Send(m_strMessage1);
    Default();
}
