#include "panel/Orlex2HSlider.h"

#include "panel/PanelMath.h"

using namespace orlex::panel;

IMPLEMENT_DYNAMIC(COrlex2HSlider, COrlex)

BEGIN_MESSAGE_MAP(COrlex2HSlider, COrlex)
    ON_WM_MOUSEMOVE()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SETCURSOR()
    ON_WM_KEYUP()
END_MESSAGE_MAP()

namespace {

constexpr COLORREF kTextGrey = 0x646464;
constexpr COLORREF kValueBlue = RGB(0x1E, 0x1E, 0xFF);

CSize WindowSize(const CWnd& w) {
    CRect r;
    w.GetWindowRect(&r);
    return r.Size();
}

}  // namespace

COrlex2HSlider::COrlex2HSlider() : COrlex(0, 0, 0) {}

COrlex2HSlider::~COrlex2HSlider() {
    // The children go with the window while the whole object still stands.
    if (::IsWindow(m_hWnd)) DestroyWindow();
}

int COrlex2HSlider::Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent) {
    if (m_bCreated) DestroyWindow();
    const RECT r{static_cast<LONG>(x), static_cast<LONG>(y), static_cast<LONG>(x + nWidth),
                 static_cast<LONG>(y + nHeight)};
    m_bCreated = COrlex::Create(nullptr, nullptr, m_dwStyle, r, pParent, 0, nullptr);
    m_dAbsMin = m_dRangeMin = 0.0;
    m_dValue = 1.0;
    m_dAbsMax = m_dRangeMax = 100.0;
    if (!m_bCreated) return 0;
    const bool children = m_LargeSlider.Create(0, 0, 1, this) && m_SmallSlider.Create(0, 0, 1, this) &&
                          m_LabelText.Create(0, 0, 40, 20, this) && m_ValueEdit.Create(0, 0, 60, 20, this) &&
                          m_MinText.Create(0, 0, 30, 20, this) && m_MaxText.Create(0, 0, 30, 20, this);
    if (!children) m_bCreated = 0;
    m_LabelText.SetFont(18, "Arial");
    m_LabelText.SetTextColor(kTextGrey);
    m_LabelText.SetText("Label");
    m_ValueEdit.SetFont(18, "Arial");
    m_ValueEdit.SetTextColor(kValueBlue);
    for (COrlexText* t : {&m_MaxText, &m_MinText}) {
        t->SetFont(14, "Arial");
        t->SetTextColor(kTextGrey);
    }
    UpdateDisplay();
    return m_bCreated;
}

void COrlex2HSlider::LoadBitmap(UINT nLargeThumbId, UINT nSmallThumbId, UINT nLargeBackgroundId,
                                UINT nSmallBackgroundId) {
    char** const none = const_cast<char**>(s_emptyOptions);
    m_LargeSlider.LoadBitmap(nLargeThumbId, nLargeBackgroundId);
    m_LargeSlider.LoadCtrlOptions(none, none);
    m_LargeSlider.LoadCtrlMessages(this, "SET PARM VALUE", "SET VALUE UPDATE", "");
    m_SmallSlider.LoadBitmap(nSmallThumbId, nSmallBackgroundId);
    m_SmallSlider.LoadCtrlOptions(none, none);
    m_SmallSlider.LoadCtrlMessages(this, "SET ZOOM RANGE", "SET ZOOM UPDATE", "");
    CRect r;
    GetWindowRect(&r);
    if (CWnd* parent = GetParent()) parent->ScreenToClient(&r);
    r.bottom = r.top + WindowSize(m_LabelText).cy + WindowSize(m_LargeSlider).cy + WindowSize(m_SmallSlider).cy +
               WindowSize(m_MinText).cy;
    MoveWindow(&r, TRUE);
}

void COrlex2HSlider::MoveWindow(const RECT* pRect, int bRepaint) {
    if (!pRect) return;
    CWnd::MoveWindow(pRect, bRepaint);
    const CompoundLayout l =
        LayoutCompound(pRect->right - pRect->left, WindowSize(m_LabelText), WindowSize(m_MinText),
                       WindowSize(m_MaxText), WindowSize(m_ValueEdit), WindowSize(m_LargeSlider).cy,
                       WindowSize(m_SmallSlider).cy, m_SmallSlider.GetBackGroundBitmapInfo().bmWidth);
    m_LabelText.MoveWindow(&l.label, TRUE);
    m_MinText.MoveWindow(&l.minText, TRUE);
    // The sliders' own MoveWindow: it moves their slide's right end with the width.
    m_LargeSlider.MoveWindow(&l.large, TRUE);
    m_SmallSlider.MoveWindow(&l.small, TRUE);
    m_ValueEdit.MoveWindow(&l.edit, TRUE);
    m_MaxText.MoveWindow(&l.maxText, TRUE);
    Invalidate(TRUE);
}

void COrlex2HSlider::SetLabel(CString strLabel) { m_LabelText.SetText(strLabel); }

void COrlex2HSlider::SetLabelFont(UINT nHeight, CString strFace) { m_LabelText.SetFont(nHeight, strFace); }

void COrlex2HSlider::SetLabelColor(COLORREF crLabel) { m_LabelText.SetTextColor(crLabel); }

void COrlex2HSlider::SetBackgroundColor(COLORREF crBackground) {
    m_crBackground = crBackground;
    m_LargeSlider.SetBackgroundColor(crBackground);
    m_SmallSlider.SetBackgroundColor(crBackground);
    m_LabelText.SetBackgroundColor(crBackground);
    m_MinText.SetBackgroundColor(crBackground);
    m_MaxText.SetBackgroundColor(crBackground);
}

void COrlex2HSlider::SetLargeSlideRange(int nMin, int nMax) { m_LargeSlider.SetSlideRange(nMin, nMax); }

void COrlex2HSlider::SetSmallSlideRange(int nMin, int nMax) { m_SmallSlider.SetSlideRange(nMin, nMax); }

void COrlex2HSlider::UpdateDisplay() {
    m_ValueEdit.SetText(FormatFixed(m_dValue, 2));
    m_MinText.SetText(FormatFixed(m_dRangeMin, 1));
    m_MaxText.SetText(FormatFixed(m_dRangeMax, 1));
}

double COrlex2HSlider::TypedValue() {
    CString text;
    m_ValueEdit.GetWindowText(text);
    return ClampTyped(ParseNumber(text), m_dAbsMin, m_dAbsMax);
}

void COrlex2HSlider::ReceiveCtrlMessage(CString strMessage) {
    if (strMessage.Compare("SET PARM VALUE") == 0 || strMessage.Compare("SET PARM UPDATE") == 0) {
        m_dValue = m_LargeSlider.GetPercentSlide() * (m_dRangeMax - m_dRangeMin) + m_dRangeMin;
        UpdateDisplay();
    } else if (strMessage.Compare("SET ZOOM RANGE") == 0 || strMessage.Compare("SET ZOOM UPDATE") == 0) {
        const ZoomWindow z = ZoomAround(m_SmallSlider.GetPercentSlide(), m_dValue, m_dAbsMin, m_dAbsMax);
        m_dRangeMin = z.rangeMin;
        m_dRangeMax = z.rangeMax;
        // The large thumb follows, and its "SET PARM VALUE" comes back here and reaches the
        // host; the value it computes from the thumb's pixel is then put back.
        const double kept = m_dValue;
        m_LargeSlider.SetPercentSlide((kept - m_dRangeMin) / z.span);
        m_dValue = kept;
        UpdateDisplay();
    } else if (strMessage.Compare("WM_KEYUP") == 0 || strMessage.Compare("WM_KILLFOCUS") == 0) {
        m_dValue = TypedValue();
    }
    if (m_pMsgCenter) m_pMsgCenter->ReceiveCtrlMessage(strMessage);
}

void COrlex2HSlider::OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags) {
    if (nChar != 13) return;
    m_dValue = TypedValue();
    // The small thumb stays; its text recentres the range around the typed value.
    m_SmallSlider.SetPercentSlide(m_SmallSlider.GetPercentSlide());
    const double typed = m_dValue;
    m_LargeSlider.SetPercentSlide((typed - m_dRangeMin) / (m_dRangeMax - m_dRangeMin));
    m_dValue = typed;
    UpdateDisplay();
}

void COrlex2HSlider::OnMouseMove(UINT nFlags, CPoint point) { Default(); }

void COrlex2HSlider::OnPaint() {
    CPaintDC dc(this);
    CRect rc;
    GetClientRect(&rc);
    dc.FillSolidRect(&rc, m_crBackground);
}

BOOL COrlex2HSlider::OnEraseBkgnd(CDC* pDC) { return static_cast<BOOL>(Default()); }

BOOL COrlex2HSlider::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    ::SetCursor(::LoadCursor(nullptr, IDC_ARROW));
    return TRUE;
}
