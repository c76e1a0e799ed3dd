#include "panel/OrlexToggleButton.h"

IMPLEMENT_DYNAMIC(COrlexToggleButton, COrlex)

BEGIN_MESSAGE_MAP(COrlexToggleButton, COrlex)
    ON_WM_PAINT()
    ON_WM_LBUTTONUP()
END_MESSAGE_MAP()

COrlexToggleButton::COrlexToggleButton() : COrlex(0, 0, 0) {}
COrlexToggleButton::~COrlexToggleButton() = default;

int COrlexToggleButton::GetState() { return m_nToggleState; }

void COrlexToggleButton::SetState(int nState) {
    m_nToggleState = nState;
    InvalidateFace();
}

void COrlexToggleButton::OnLButtonUp(UINT nFlags, CPoint point) {
    m_nToggleState = m_nToggleState == 1 ? 0 : 1;
    InvalidateFace();
    COrlex::OnLButtonUp(nFlags, point);
}

void COrlexToggleButton::OnPaint() {
    CPaintDC dc(this);
    CDC mem;
    if (!mem.CreateCompatibleDC(&dc)) return;
    CRect rc;
    GetClientRect(&rc);
    // The state alone picks the face, whether or not a click face was announced.
    DrawFace(dc, mem, m_nToggleState ? m_ClickBitmap : m_NormalBitmap, 0, 0, rc.Width(), rc.Height());
}
