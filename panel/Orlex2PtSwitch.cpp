#include "panel/Orlex2PtSwitch.h"

#include "panel/PanelMath.h"

IMPLEMENT_DYNAMIC(COrlex2PtSwitch, COrlex)

BEGIN_MESSAGE_MAP(COrlex2PtSwitch, COrlex)
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_PAINT()
    ON_WM_CREATE()
    ON_WM_SETCURSOR()
END_MESSAGE_MAP()

COrlex2PtSwitch::COrlex2PtSwitch(UINT nOffBitmap, UINT nOnBitmap, bool bPolarity)
    : COrlex(nOffBitmap, 0, 0), m_bPolarity(bPolarity) {
    if (nOnBitmap) LoadFace(m_OnBitmap, nOnBitmap);
    if (nOffBitmap) LoadFace(m_OffBitmap, nOffBitmap);
}

COrlex2PtSwitch::~COrlex2PtSwitch() {
    m_OnBitmap.DeleteObject();
    m_OffBitmap.DeleteObject();
}

void COrlex2PtSwitch::LoadOnBitmap(UINT nId) { m_bHasOnBitmap = LoadFace(m_OnBitmap, nId); }

void COrlex2PtSwitch::LoadOffBitmap(UINT nId) {
    LoadFace(m_OffBitmap, nId, m_BitmapInfo);
    SizeInPlace(m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight);
}

void COrlex2PtSwitch::PositionFromOption() {
    m_bSwitchOn = m_nOption == 0 ? m_bPolarity : !m_bPolarity;
    Invalidate(TRUE);
}

void COrlex2PtSwitch::SetCtrlOption(CString strOption) {
    COrlex::SetCtrlOption(strOption);
    PositionFromOption();
}

void COrlex2PtSwitch::SetCtrlOption(UINT nIndex) {
    COrlex::SetCtrlOption(nIndex);
    PositionFromOption();
}

void COrlex2PtSwitch::SetPolarity(bool bPolarity) { m_bPolarity = bPolarity; }

void COrlex2PtSwitch::OnLButtonDown(UINT nFlags, CPoint point) { Default(); }

void COrlex2PtSwitch::OnLButtonUp(UINT nFlags, CPoint point) {
    // No toggling: the half decides, and the receiver reads the new option at once.
    const bool on = orlex::panel::OnLeftHalf(point.x, m_BitmapInfo.bmWidth);
    m_bSwitchOn = on;
    m_nOption = on == m_bPolarity ? 0 : 1;
    Send(m_strMessage1);
    InvalidateFace();
    Default();
}

void COrlex2PtSwitch::OnPaint() {
    CPaintDC dc(this);
    CDC mem;
    if (!mem.CreateCompatibleDC(&dc)) return;
    CRect rc;
    GetClientRect(&rc);
    DrawFace(dc, mem, m_bSwitchOn ? m_OnBitmap : m_OffBitmap, 0, 0, rc.Width(), rc.Height());
}

int COrlex2PtSwitch::OnCreate(LPCREATESTRUCT cs) { return Default() == -1 ? -1 : 0; }

BOOL COrlex2PtSwitch::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    ::SetCursor(AppCursor(IDC_ORLEX_HAND));
    return TRUE;
}
