// Image frame: construction, creation of the children, layout, the tool buttons, notices
// and the settings that pass on to the view. Painting is in BorderConPaint.cpp, images and
// colours in BorderConImage.cpp.
#include "imageframe/BorderCon.h"

#include <cmath>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/resources.h"
#include "imageframe/ScanLineCfgDlg.h"

IMPLEMENT_SERIAL(CBorderCon, CWnd, VERSIONABLE_SCHEMA | 1)

namespace {

// The frame's window: a visible child with a border that clips its children.
constexpr DWORD kFrameStyle = 0x52800000;
constexpr DWORD kViewStyle = 0x50000000;
// Tool buttons: a check box that looks like a push button, or a push button; both show an icon.
constexpr DWORD kToolStyle = WS_VISIBLE | BS_PUSHLIKE | BS_ICON | BS_AUTOCHECKBOX;
constexpr DWORD kStepStyle = WS_VISIBLE | BS_ICON | BS_PUSHBUTTON;

// The buttons in the order they are made, with their x span, ids and icons.
struct ButtonSpec {
    int left, right;
    UINT id;
    int icon;
};
constexpr ButtonSpec kButtons[6] = {
    {5, 30, IDC_FRAME_MEASURE, 10010},  {31, 56, IDC_FRAME_PAN, 10009},      {57, 82, IDC_FRAME_ZOOM, 10007},
    {83, 108, IDC_FRAME_ZOOM_IN, 10011}, {109, 134, IDC_FRAME_ZOOM_OUT, 10012}, {135, 160, IDC_FRAME_3D, 10016},
};

// Tooltip delays of the frame's children: quick to show, three seconds to read.
constexpr int kTipInitialMs = 20;
constexpr int kTipAutoPopMs = 3000;

}  // namespace

BEGIN_MESSAGE_MAP(CBorderCon, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_SIZE()
    ON_WM_LBUTTONDOWN()
    ON_REGISTERED_MESSAGE(MESSAGE_IMAGEVIEW_PAN_EVENT, OnPanEvent)
    ON_REGISTERED_MESSAGE(MESSAGE_ZOOM_EVENT_STR, OnZoomEvent)
    ON_REGISTERED_MESSAGE(MESSAGE_COLOR_CTRL_STR, OnColorCtrlMessage)
    ON_REGISTERED_MESSAGE(MESSAGE_BORDERCON_ADJUST_FOCUS_STR, OnSetAdjustFocus)
    ON_NOTIFY_EX_RANGE(TTN_NEEDTEXT, 0, 0xFFFF, OnToolTipNotify)
    ON_BN_CLICKED(IDC_FRAME_MEASURE, OnPbMeasure)
    ON_BN_CLICKED(IDC_FRAME_PAN, OnPbPan)
    ON_BN_CLICKED(IDC_FRAME_ZOOM, OnPbZoom)
    ON_BN_CLICKED(IDC_FRAME_ZOOM_IN, OnPbZoomIn)
    ON_BN_CLICKED(IDC_FRAME_ZOOM_OUT, OnPbZoomOut)
    ON_COMMAND(ID_CFG_SCANLINE, OnCfgScanLine)
END_MESSAGE_MAP()

// The view is the first member and is made before m_bRealTime has its value: it, the bar,
// the margins and the data scale mode take the argument.
CBorderCon::CBorderCon(bool realTime, int channel)
    : m_imageView(realTime),
      m_bDataScaleMode(!realTime),
      m_nCurChannel(channel),
      m_bRealTime(realTime),
      m_margins(orlex::frame::DefaultMargins(realTime))
{
    m_colorCtrl.m_bRealTime = realTime;
}

CBorderCon::~CBorderCon()
{
    // The window goes first, while the children and this class's handlers still exist.
    if (m_hWnd) DestroyWindow();
    for (HICON& icon : m_hIcons) {
        if (icon) DestroyIcon(icon);
        icon = nullptr;
    }
    delete m_pBkColor;
    m_pBkColor = nullptr;
}

int CBorderCon::Create(int id, CWnd* parent, int sizeable, CRect* rect, int square)
{
    m_bSizeable = sizeable;
    if (!parent || !parent->GetSafeHwnd()) return 0;
    CRect r;
    if (rect) {
        r = *rect;
    } else if (sizeable) {
        CRect client;
        parent->GetClientRect(&client);
        r = orlex::frame::SizeableFrameRect(client, m_margins);
    } else {
        CWnd* placeholder = parent->GetDlgItem(id);
        if (!placeholder) return 0;
        placeholder->GetWindowRect(&r);
        parent->ScreenToClient(&r);
        if (square && !m_bRealTime) r = orlex::frame::SquaredFrameRect(r, m_margins);
        placeholder->DestroyWindow();
    }
    LPCSTR cls = AfxRegisterWndClass(CS_DBLCLKS, ::LoadCursor(nullptr, IDC_ARROW));
    if (!CWnd::Create(cls, nullptr, kFrameStyle, r, parent, static_cast<UINT>(id))) return 0;
    if (!m_imageView.Create(nullptr, nullptr, kViewStyle, GetImageWndSize(), this, static_cast<UINT>(id))) return 0;
    CreateChildren(id);
    return 1;
}

void CBorderCon::CreateChildren(int id)
{
    CRect c;
    GetClientRect(&c);
    CRect bar = orlex::frame::ColorBarCreateRect(c.Size(), m_margins);
    m_colorCtrl.m_bRealTime = m_bRealTime;
    m_colorCtrl.Create(bar, this, id);
    if (m_colorCtrl.m_hWnd) m_colorCtrl.UpdateControl();
    CreateButtons();
    SetZoomButsShow(m_bZoomButsShow);
    EnableToolTips(TRUE);
}

void CBorderCon::CreateButtons()
{
    CButton* buttons[6] = {&m_btnMeasure, &m_btnPan, &m_btnZoom, &m_btnZoomIn, &m_btnZoomOut, &m_btn3d};
    const int bottom = m_margins.top - 1;
    for (int i = 0; i < 6; ++i) {
        const ButtonSpec& s = kButtons[i];
        const bool tool = i < 3 || (i == 5 && !m_bRealTime);
        buttons[i]->Create(nullptr, tool ? kToolStyle : kStepStyle, CRect(s.left, 2, s.right, bottom), this, s.id);
        m_hIcons[i] = static_cast<HICON>(
            LoadImage(orlex::LibraryModule(), MAKEINTRESOURCE(s.icon), IMAGE_ICON, 16, 16, LR_DEFAULTCOLOR));
        if (buttons[i]->m_hWnd && m_hIcons[i]) buttons[i]->SetIcon(m_hIcons[i]);
    }
    const int checks[3] = {m_bInitMeasure, m_bInitPan, m_bInitZoom};
    const int enables[3] = {m_bEnableMeasure, m_bEnablePan, m_bEnableZoom};
    for (int i = 0; i < 3; ++i) {
        if (!buttons[i]->m_hWnd) continue;
        buttons[i]->SetCheck(checks[i]);
        buttons[i]->EnableWindow(enables[i]);
    }
    if (m_btnZoomIn.m_hWnd) m_btnZoomIn.EnableWindow(FALSE);
    if (m_btnZoomOut.m_hWnd) m_btnZoomOut.EnableWindow(FALSE);
    if (m_btn3d.m_hWnd && m_bRealTime) {
        m_btn3d.EnableWindow(FALSE);
        m_btn3d.ShowWindow(SW_HIDE);
    }
}

// Layout -------------------------------------------------------------------------------------------

CRect CBorderCon::GetImageWndSize()
{
    CRect c(0, 0, 0, 0);
    if (m_hWnd) GetClientRect(&c);
    const bool barDisabled = m_colorCtrl.m_hWnd && !m_colorCtrl.IsWindowEnabled();
    return orlex::frame::ImageArea(c.Size(), m_margins, barDisabled, m_dAspect);
}

BOOL CBorderCon::SetWindowSize(double aspect)
{
    if (!m_imageView.m_hWnd) return FALSE;
    const CRect v = orlex::frame::FitAspect(GetImageWndSize(), aspect, m_margins);
    CRect now;
    m_imageView.GetClientRect(&now);
    if (v.Width() == now.Width() && v.Height() == now.Height()) return FALSE;
    m_imageView.SetWindowPos(nullptr, v.left, v.top, v.Width(), v.Height(), SWP_NOZORDER | SWP_NOACTIVATE);
    return TRUE;
}

void CBorderCon::SetSizeable()
{
    m_bSizeable = 1;
    if (!m_hWnd) return;
    CRect c;
    GetClientRect(&c);
    SetWindowPos(nullptr, 0, 0, c.Width(), c.Height(), SWP_NOMOVE | SWP_NOZORDER);
}

int CBorderCon::ComputeRightMargin() const
{
    using orlex::frame::ZLabel;
    const bool full = m_bRealTime || m_bRelativeColorBar;
    return orlex::frame::RightMargin(full, m_margins, ZLabel(m_dScaleMin, m_strUnits), ZLabel(m_dScaleMax, m_strUnits));
}

void CBorderCon::OnSize(UINT type, int cx, int cy)
{
    CWnd::OnSize(type, cx, cy);
    ResizeControls(cx, cy);
}

void CBorderCon::ResizeControls(int cx, int cy)
{
    if (!m_bSizeable || !m_hWnd || !m_imageView.m_hWnd || !m_colorCtrl.m_hWnd) return;
    m_bResized = 1;
    m_margins.right = ComputeRightMargin();
    m_rect = CRect(0, 0, cx, cy);
    const CRect g = GetImageWndSize();
    m_imageView.SetWindowPos(nullptr, 0, 0, g.Width(), g.Height(), SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    m_imageView.UpdateImage();
    const CRect bar = orlex::frame::ColorBarLayoutRect(CSize(cx, cy), m_margins, m_bRealTime || m_bRelativeColorBar);
    m_colorCtrl.MoveWindow(&bar);
    m_colorCtrl.UpdateControl();
}

void CBorderCon::SetZoomButsShow(int show)
{
    m_bZoomButsShow = show;
    if (!m_btnZoom.m_hWnd) return;
    const int cmd = show ? SW_SHOW : SW_HIDE;
    for (CButton* b : {&m_btnMeasure, &m_btnPan, &m_btnZoom, &m_btnZoomIn, &m_btnZoomOut})
        if (b->m_hWnd) b->ShowWindow(cmd);
    if (!m_bRealTime && m_btn3d.m_hWnd) m_btn3d.ShowWindow(cmd);
}

void CBorderCon::SetRelativeColorBar(bool on)
{
    m_bRelativeColorBar = on;
    if (on || !m_bRealTime) m_margins.right = ComputeRightMargin();
    CWnd* parent = m_hWnd ? GetParent() : nullptr;
    if (!parent) return;
    CRect c;
    parent->GetClientRect(&c);
    parent->SendMessage(WM_SIZE, 0, MAKELPARAM(c.Width(), c.Height()));
}

CRect CBorderCon::ViewRect()
{
    CRect r(0, 0, 0, 0);
    if (!m_imageView.m_hWnd) return r;
    m_imageView.GetWindowRect(&r);
    ScreenToClient(&r);
    return r;
}

void CBorderCon::SetImageAttributes(IMAGE_ATTRIBUTES& attributes)
{
    m_attributes = attributes;
    m_imageView.SetAllowableCursors(m_attributes.m_nAllowableCursors);
    m_imageView.SetDeleteLastOnNew(m_attributes.m_bDeleteLastOnNew);
    m_imageView.SetMode(m_attributes.m_nMode);
}

// Labels ---------------------------------------------------------------------------------------------

void CBorderCon::SetCurChannel(int channel, bool notify)
{
    if (channel == m_nCurChannel) return;
    m_nCurChannel = channel;
    if (!m_hWnd) return;
    Invalidate(FALSE);
    UpdateWindow();
    if (notify) {
        if (CWnd* parent = GetParent())
            parent->PostMessage(MESSAGE_USER_CONTROL_MSG, 100, reinterpret_cast<LPARAM>(this));
    }
}

void CBorderCon::ResetZScale(double range, const char* units, bool repaint)
{
    if (range < 3.4028234663852886e+38) m_dZRange = range;
    m_strUnits = units ? units : "";
    if (repaint && m_hWnd) {
        Invalidate(TRUE);
        UpdateWindow();
    }
}

void CBorderCon::SetDataScaleMode(double min, double max, double ratio, __int64 low, __int64 high)
{
    m_dScaleMin = min;
    m_dScaleMax = max;
    m_dScaleRatio = ratio;
    m_nScaleLow = low;
    m_nScaleHigh = high;
}

void CBorderCon::SetScale(double scanLen)
{
    m_imageView.SetTipCursorScale(scanLen);
    if (!m_hWnd) return;
    CRect c;
    GetClientRect(&c);
    CRect strip(c.left, c.bottom - m_margins.bottom, c.right, c.bottom);
    InvalidateRect(&strip, TRUE);
    UpdateWindow();
}

void CBorderCon::SetScanLen(double length, bool clear)
{
    if (std::fabs(length - m_imageView.GetScanLen()) >= 1e-15) {
        SetScale(length);
        if (clear) m_imageView.ClearAllCursors(1, 1);
    }
    m_imageView.SetScanLen(length, length / m_dAspect);
}

void CBorderCon::SetAdjustFocus(int value)
{
    m_bAdjustFocus = value;
    if (!m_hWnd) return;
    CRect flag(0, 0, m_margins.left, m_margins.top);
    InvalidateRect(&flag, TRUE);
    UpdateWindow();
}

LRESULT CBorderCon::OnSetAdjustFocus(WPARAM wParam, LPARAM)
{
    SetAdjustFocus(wParam != 0);
    return wParam != 0;
}

// Buttons -----------------------------------------------------------------------------------------------

int CBorderCon::GetRtZoomState() const { return m_pRtZoomBtn && m_pRtZoomBtn->m_hWnd ? m_pRtZoomBtn->GetCheck() : 0; }

int CBorderCon::GetRtOffSetState() const
{
    return m_pRtOffsetBtn && m_pRtOffsetBtn->m_hWnd ? m_pRtOffsetBtn->GetCheck() : 0;
}

void CBorderCon::EnablePan(int on)
{
    if (m_btnPan.m_hWnd) m_btnPan.EnableWindow(on ? TRUE : FALSE);
}

void CBorderCon::Enable3dLighting(bool on)
{
    if (m_btn3d.m_hWnd) m_btn3d.EnableWindow(on ? TRUE : FALSE);
}

void CBorderCon::EnableColorCtrl(int on)
{
    if (m_colorCtrl.m_hWnd) m_colorCtrl.EnableWindow(on ? TRUE : FALSE);
}

void CBorderCon::PushMeasure()
{
    if (m_btnMeasure.m_hWnd && !m_btnMeasure.GetCheck()) {
        m_btnMeasure.SetCheck(1);
        OnPbMeasure();
    }
}

void CBorderCon::PushPan()
{
    if (m_btnPan.m_hWnd && !m_btnPan.GetCheck()) {
        m_btnPan.SetCheck(1);
        OnPbPan();
    }
}

void CBorderCon::PushZoom()
{
    if (m_btnZoom.m_hWnd && !m_btnZoom.GetCheck()) {
        m_btnZoom.SetCheck(1);
        OnPbZoom();
    }
}

void CBorderCon::OnPbMeasure() { OnToolButton(m_btnMeasure, 1); }
void CBorderCon::OnPbPan() { OnToolButton(m_btnPan, 2); }
void CBorderCon::OnPbZoom() { OnToolButton(m_btnZoom, 3); }

void CBorderCon::OnToolButton(CButton& button, int code)
{
    CWnd* parent = GetParent();
    if (parent) parent->SendMessage(ACTIVATE_VIEW_STR, 0, 0);
    if (button.GetCheck()) {
        for (CButton* other : {&m_btnMeasure, &m_btnPan, &m_btnZoom})
            if (other != &button && other->m_hWnd && other->GetCheck()) other->SetCheck(0);
        SetRtZO_Off();
    } else {
        // The click released the button: a tool stays chosen.
        button.SetCheck(1);
    }
    if (parent) parent->PostMessage(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT, static_cast<WPARAM>(code), reinterpret_cast<LPARAM>(this));
}

int CBorderCon::SetRtZO_Off()
{
    if (!m_pRtZoomBtn || !m_pRtOffsetBtn) return 0;
    if (m_pRtZoomBtn->GetCheck())
        m_pRtZoomBtn->SetCheck(0);
    else if (m_pRtOffsetBtn->GetCheck())
        m_pRtOffsetBtn->SetCheck(0);
    else
        return 0;
    m_imageView.ClearAllCursors(1, 1);
    Invalidate(TRUE);
    return 1;
}

void CBorderCon::OnPbZoomInOut(int step, bool notify)
{
    m_imageView.ClearAllCursors(1, 0);
    if (!m_imageView.IsOneZoom()) {
        const int index = step + static_cast<int>(m_imageView.GetZoomIndex());
        EnablePan(index != 0);
        m_imageView.ZoomTo(index, 1);
    } else {
        m_imageView.ZoomTo(step, 1);
    }
    CWnd* parent = m_hWnd ? GetParent() : nullptr;
    if (!m_bRealTime && notify && parent) {
        parent->SendMessage(ACTIVATE_VIEW_STR, 0, 0);
        parent->PostMessage(ZOOM_OUT_STR, 0, static_cast<LPARAM>(step & 0xFFFF));
    }
}

void CBorderCon::OnCfgScanLine()
{
    CScanLineCfgDlg dlg;
    dlg.DoModal();
}

// Notices ------------------------------------------------------------------------------------------------

LRESULT CBorderCon::OnPanEvent(WPARAM wParam, LPARAM lParam)
{
    if (CWnd* parent = GetParent()) parent->PostMessage(MESSAGE_IMAGEVIEW_PAN_EVENT, wParam, lParam);
    return 0;
}

LRESULT CBorderCon::OnZoomEvent(WPARAM wParam, LPARAM lParam)
{
    if (CWnd* parent = GetParent()) parent->PostMessage(MESSAGE_ZOOM_EVENT_STR, wParam, lParam);
    return 0;
}

void CBorderCon::OnLButtonDown(UINT flags, CPoint point)
{
    Default();
    CWnd* parent = GetParent();
    if (!parent) return;
    const UINT id = static_cast<UINT>(GetDlgCtrlID());
    NMHDR nm{m_hWnd, id, static_cast<UINT>(-2)};
    parent->SendMessage(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&nm));
}

BOOL CBorderCon::OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result)
{
    // The host hears every notice of the children before the frame handles any.
    if (CWnd* parent = GetParent()) parent->SendMessage(WM_NOTIFY, wParam, lParam);
    return CWnd::OnNotify(wParam, lParam, result);
}

BOOL CBorderCon::OnToolTipNotify(UINT, NMHDR* nm, LRESULT* result)
{
    if (result) *result = 0;
    if (!nm) return FALSE;
    if (m_bSetTipDelay) {
        m_bSetTipDelay = 0;
        ::SendMessage(nm->hwndFrom, TTM_SETDELAYTIME, TTDT_INITIAL, kTipInitialMs);
        ::SendMessage(nm->hwndFrom, TTM_SETDELAYTIME, TTDT_AUTOPOP, kTipAutoPopMs);
    }
    auto* info = reinterpret_cast<TOOLTIPTEXT*>(nm);
    if (m_colorCtrl.m_hWnd && nm->idFrom == reinterpret_cast<UINT_PTR>(m_colorCtrl.m_hWnd))
        info->lpszText = m_colorCtrl.GetText();
    return TRUE;
}
