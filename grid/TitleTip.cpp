#include "grid/TitleTip.h"

#include "foundation/platform/afxcmn.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

namespace {
constexpr const char* kTitleTipClass = "ZTitleTip";

LPARAM PackPoint(CPoint p)
{
    return MAKELPARAM(static_cast<WORD>(p.x), static_cast<WORD>(p.y));
}
}  // namespace

BEGIN_MESSAGE_MAP(CTitleTip, CWnd)
    ON_WM_MOUSEMOVE()
END_MESSAGE_MAP()

CTitleTip::CTitleTip() : m_dwDblClickMsecs(::GetDoubleClickTime())
{
    WNDCLASS wndcls{};
    HINSTANCE inst = AfxGetInstanceHandle();
    if (!::GetClassInfo(inst, kTitleTipClass, &wndcls)) {
        wndcls.style = CS_SAVEBITS;
        wndcls.lpfnWndProc = ::DefWindowProcA;
        wndcls.hInstance = inst;
        wndcls.hCursor = ::LoadCursor(nullptr, IDC_ARROW);
        wndcls.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_INFOBK + 1));
        wndcls.lpszClassName = kTitleTipClass;
        if (!AfxRegisterClass(&wndcls))
            AfxThrowResourceException();
    }
}

CTitleTip::~CTitleTip()
{
    if (::IsWindow(m_hWnd))
        DestroyWindow();
}

BOOL CTitleTip::Create(CWnd* pParentWnd)
{
    if (m_bCreated)
        return TRUE;
    m_pParentWnd = pParentWnd;
    m_bCreated = CreateEx(WS_EX_TOOLWINDOW | WS_EX_TOPMOST, kTitleTipClass, nullptr, WS_BORDER | WS_POPUP,
                          CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, nullptr, nullptr, nullptr);
    return m_bCreated;
}

BOOL CTitleTip::DestroyWindow()
{
    m_bCreated = FALSE;
    return CWnd::DestroyWindow();
}

void CTitleTip::Show(CRect rectTitle, LPCTSTR lpszTitleText, int xoffset, LPRECT lpHoverRect,
                     const LOGFONT* lpLogFont, COLORREF crTextClr, COLORREF crBackClr)
{
    if (!m_pParentWnd || !::IsWindow(m_pParentWnd->GetSafeHwnd()))
        return;
    if (!::IsWindow(m_hWnd))
        Create(m_pParentWnd);
    if (!::IsWindow(m_hWnd) || rectTitle.IsRectEmpty() || IsWindowVisible())
        return;

    // Where the pointer may go without hiding the tip, on the screen until the tip has its
    // place.
    CRect hover = lpHoverRect ? CRect(*lpHoverRect) : rectTitle;
    hover.right++;
    hover.bottom++;
    m_pParentWnd->ClientToScreen(&hover);
    if (!::GetFocus())
        return;

    m_rectTitle = CRect(-xoffset - 1, -1, rectTitle.Width() - xoffset, rectTitle.Height() + 1);
    m_pParentWnd->ClientToScreen(&rectTitle);

    CClientDC dc(this);
    const CString strTitle = CString(" ") + (lpszTitleText ? lpszTitleText : "") + " ";
    CFont font;
    CFont* pOldFont;
    if (lpLogFont && font.CreateFontIndirect(lpLogFont))
        pOldFont = dc.SelectObject(&font);
    else
        pOldFont = dc.SelectObject(m_pParentWnd->GetFont());
    CSize size = dc.GetTextExtent(strTitle);
    TEXTMETRIC tm{};
    dc.GetTextMetrics(&tm);
    size.cx += tm.tmOverhang;

    CRect rectDisplay = rectTitle;
    rectDisplay.left += xoffset;
    rectDisplay.right = rectDisplay.left + size.cx + xoffset;

    // Only a text that does not fit gets a tip.
    if (rectDisplay.right > rectTitle.right - xoffset) {
        SetWindowPos(&wndTop, rectDisplay.left, rectDisplay.top, rectDisplay.Width(), rectDisplay.Height(),
                     SWP_SHOWWINDOW | SWP_NOACTIVATE);
        ScreenToClient(&hover);
        m_rectHover = hover;
        if (crBackClr != CLR_DEFAULT) {
            CBrush backBrush(crBackClr);
            CBrush* pOldBrush = dc.SelectObject(&backBrush);
            CRect rect;
            dc.GetClipBox(&rect);
            dc.PatBlt(rect.left, rect.top, rect.Width(), rect.Height(), PATCOPY);
            dc.SelectObject(pOldBrush);
        }
        if (crTextClr != CLR_DEFAULT)
            dc.SetTextColor(crTextClr);
        dc.SetBkMode(TRANSPARENT);
        dc.TextOut(0, 0, strTitle);
        SetCapture();
    }
    dc.SelectObject(pOldFont);
}

void CTitleTip::Hide()
{
    if (!::IsWindow(m_hWnd))
        return;
    if (::GetCapture() == m_hWnd)
        ::ReleaseCapture();
    ShowWindow(SW_HIDE);
}

void CTitleTip::Forward(UINT clientMsg, UINT ncMsg, WPARAM flags, CPoint screen)
{
    CWnd* pWnd = CWnd::WindowFromPoint(screen);
    if (!pWnd || pWnd == this)
        pWnd = m_pParentWnd;
    if (!pWnd || !::IsWindow(pWnd->GetSafeHwnd()))
        return;
    const LRESULT hit = pWnd->SendMessage(WM_NCHITTEST, 0, PackPoint(screen));
    if (hit == HTCLIENT) {
        CPoint client = screen;
        pWnd->ScreenToClient(&client);
        pWnd->PostMessage(clientMsg, flags, PackPoint(client));
    } else {
        pWnd->PostMessage(ncMsg, static_cast<WPARAM>(hit), PackPoint(screen));
    }
}

void CTitleTip::OnMouseMove(UINT nFlags, CPoint point)
{
    if (m_rectHover.PtInRect(point))
        return;
    Hide();
    ClientToScreen(&point);
    Forward(WM_MOUSEMOVE, WM_NCMOUSEMOVE, nFlags, point);
}

BOOL CTitleTip::PreTranslateMessage(MSG* pMsg)
{
    switch (pMsg->message) {
    case WM_KEYDOWN:
    case WM_SYSKEYDOWN:
        Hide();
        if (m_pParentWnd)
            m_pParentWnd->PostMessage(pMsg->message, pMsg->wParam, pMsg->lParam);
        return TRUE;
    case WM_LBUTTONDOWN:
    case WM_RBUTTONDOWN:
    case WM_MBUTTONDOWN: {
        UINT message = pMsg->message;
        if (message == WM_LBUTTONDOWN) {
            // Two presses within the double-click time are a double click of the cell below.
            const DWORD now = ::GetTickCount();
            if (now - m_dwLastLButtonDown <= m_dwDblClickMsecs)
                message = WM_LBUTTONDBLCLK;
            m_dwLastLButtonDown = now;
        }
        CPoint point(GET_X_LPARAM(pMsg->lParam), GET_Y_LPARAM(pMsg->lParam));
        ClientToScreen(&point);
        Hide();
        CWnd* pWnd = CWnd::WindowFromPoint(point);
        if (!pWnd)
            return CWnd::PreTranslateMessage(pMsg);
        if (pWnd == this)
            pWnd = m_pParentWnd;
        if (!pWnd || !::IsWindow(pWnd->GetSafeHwnd()))
            return TRUE;
        const LRESULT hit = pWnd->SendMessage(WM_NCHITTEST, 0, PackPoint(point));
        if (hit == HTCLIENT) {
            pWnd->ScreenToClient(&point);
            pWnd->PostMessage(message, pMsg->wParam, PackPoint(point));
        } else {
            const UINT nc = message == WM_RBUTTONDOWN ? WM_NCRBUTTONDOWN
                            : message == WM_MBUTTONDOWN ? WM_NCMBUTTONDOWN
                                                        : WM_NCLBUTTONDOWN;
            pWnd->PostMessage(nc, static_cast<WPARAM>(hit), PackPoint(point));
        }
        return TRUE;
    }
    default:
        if (!::GetFocus()) {
            Hide();
            return TRUE;
        }
        return CWnd::PreTranslateMessage(pMsg);
    }
}
