#include "panel/OrlexDropMenu.h"

#include "panel/PanelMath.h"

using orlex::panel::kListRowHeight;
using orlex::panel::ListRow;

IMPLEMENT_DYNAMIC(COrlexDropMenu, COrlex)

BEGIN_MESSAGE_MAP(COrlexDropMenu, COrlex)
    ON_WM_PAINT()
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONUP()
    ON_WM_LBUTTONDOWN()
    ON_WM_SETCURSOR()
END_MESSAGE_MAP()

COrlexDropMenu::COrlexDropMenu() : COrlex(0, 0, 0) {
    m_dwStyle = WS_CHILD;
    m_Font.CreateFont(12, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
}

COrlexDropMenu::~COrlexDropMenu() = default;

void COrlexDropMenu::AddOption(CString strText, UINT nValue) {
    if (m_nOptionTotal >= kOrlexListOptions) return;
    m_strOptions[m_nOptionTotal] = strText;
    m_nValues[m_nOptionTotal] = nValue;
    ++m_nOptionTotal;
}

void COrlexDropMenu::SetValue(UINT nValue) {
    for (UINT i = 0; i < m_nOptionTotal; ++i) {
        if (m_nValues[i] != nValue) continue;
        m_nValueIndex = i;
        if (::IsWindow(m_hWnd)) Invalidate(FALSE);
    }
}

UINT COrlexDropMenu::GetValue() { return ValueAt(m_nValueIndex); }

UINT COrlexDropMenu::GetLastValue() { return ValueAt(m_nLastValueIndex); }

void COrlexDropMenu::SetMenuSize(CWnd* pOwner, UINT nWidth, UINT nHeight) {
    m_pOwnerCtrl = pOwner;
    SizeInPlace(m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight);
}

void COrlexDropMenu::Popup() {
    ::SetCursor(AppStandardCursor(IDC_ARROW));
    SetCapture();
    ShowWindow(SW_SHOW);
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    if (!GetWindowPlacement(&wp)) return;
    const CRect r(wp.rcNormalPosition);
    SetWindowPos(&CWnd::wndBottom, r.left, r.top, r.Width(), r.Height(), 0);
}

void COrlexDropMenu::OnMouseMove(UINT nFlags, CPoint point) {
    if (HitTest(point)) {
        SetCapture();
        m_nHoverIndex = static_cast<UINT>(ListRow(point.y));
        Invalidate(FALSE);
    } else {
        ::ReleaseCapture();
        ShowWindow(SW_HIDE);
    }
    // The list's own capture leaves m_bMouseCaptured alone: the base sees the entry and
    // sends "OrlexHelp".
    COrlex::OnMouseMove(nFlags, point);
}

void COrlexDropMenu::OnLButtonUp(UINT nFlags, CPoint point) {
    if (HitTest(point)) {
        // A row below the last option (a list higher than its rows, or y at the height,
        // which counts inside) chooses nothing.
        const int row = ListRow(point.y);
        if (row >= 0 && static_cast<UINT>(row) < m_nOptionTotal) {
            m_nLastValueIndex = m_nValueIndex;
            m_nValueIndex = static_cast<UINT>(row);
        }
        ::ReleaseCapture();
        ShowWindow(SW_HIDE);
        if (m_pOwnerCtrl) {
            m_pOwnerCtrl->SetCapture();
            m_pOwnerCtrl->Invalidate(FALSE);
        }
    }
    // The platform's release is not per window: this one takes the capture from the owner
    // again, so after a choice no window holds it.
    COrlex::OnLButtonUp(nFlags, point);
}

void COrlexDropMenu::OnPaint() {
    CPaintDC dc(this);
    CRect rc;
    GetClientRect(&rc);
    dc.FillSolidRect(&rc, RGB(255, 255, 255));
    CPen pen(PS_SOLID, 1, kOrlexListColour);
    CPen* oldPen = dc.SelectObject(&pen);
    dc.Rectangle(&rc);
    dc.SelectObject(oldPen);
    const int hoverTop = static_cast<int>(m_nHoverIndex) * kListRowHeight;
    dc.FillSolidRect(0, hoverTop, rc.Width(), kListRowHeight + 1, kOrlexListColour);
    CFont* oldFont = dc.SelectObject(&m_Font);
    for (UINT i = 0; i < m_nOptionTotal; ++i) {
        const bool hover = i == m_nHoverIndex;
        dc.SetTextColor(hover ? RGB(255, 255, 255) : kOrlexListColour);
        dc.SetBkColor(hover ? kOrlexListColour : RGB(255, 255, 255));
        dc.TextOut(2, 2 + kListRowHeight * static_cast<int>(i), m_strOptions[i]);
    }
    dc.SelectObject(oldFont);
}

BOOL COrlexDropMenu::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    ::SetCursor(AppStandardCursor(IDC_ARROW));
    return TRUE;
}
