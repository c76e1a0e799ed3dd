#include "panel/OrlexTextEdit.h"

// The layer's edit control has no runtime class of its own: the chain goes on at CWnd.
IMPLEMENT_DYNAMIC(COrlexTextEdit, CWnd)

BEGIN_MESSAGE_MAP(COrlexTextEdit, CEdit)
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
    ON_WM_KEYDOWN()
    ON_WM_KEYUP()
    ON_WM_SETFOCUS()
    ON_WM_KILLFOCUS()
    ON_WM_SETCURSOR()
END_MESSAGE_MAP()

COrlexTextEdit::COrlexTextEdit() = default;
COrlexTextEdit::~COrlexTextEdit() = default;

int COrlexTextEdit::Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent) {
    if (m_bCreated) DestroyWindow();
    const RECT r{static_cast<LONG>(x), static_cast<LONG>(y), static_cast<LONG>(x + nWidth),
                 static_cast<LONG>(y + nHeight)};
    m_bCreated = CEdit::Create(m_dwStyle, r, pParent, 0);
    if (m_bCreated) ModifyStyleEx(0, WS_EX_STATICEDGE);
    return m_bCreated;
}

void COrlexTextEdit::SetFont(UINT nHeight, CString strFace) {
    m_nFontHeight = static_cast<int>(nHeight);
    m_strFontFace = strFace;
}

void COrlexTextEdit::SetTextColor(COLORREF crText) { m_crTextColor = crText; }

void COrlexTextEdit::SetTextWeight(UINT nWeight) { m_nTextWeight = static_cast<int>(nWeight); }

void COrlexTextEdit::SetText(CString strText) {
    m_strText = strText;
    SetWindowText(m_strText);
    Invalidate(FALSE);
}

CString COrlexTextEdit::GetText() { return m_strText; }

BOOL COrlexTextEdit::PreTranslateMessage(MSG* pMsg) {
    if (pMsg->message == WM_KEYDOWN && (pMsg->wParam == 13 || pMsg->wParam == 27)) pMsg->wParam = 0;
    return CEdit::PreTranslateMessage(pMsg);
}

void COrlexTextEdit::OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags) {
    Default();
    GetWindowText(m_strText);
    CWnd* parent = GetParent();
    if (parent) parent->SendMessage(WM_KEYUP, nChar, 0);
    if (nChar == 13) {
        if (parent) parent->SetFocus();
        // A press and release of its own bring the focus back and select the whole text,
        // ready to be typed over.
        SendMessage(WM_LBUTTONDOWN, 0, 0);
        SendMessage(WM_LBUTTONUP, 0, 0);
    }
}

void COrlexTextEdit::OnLButtonDown(UINT nFlags, CPoint point) {
    const bool hadFocus = GetFocus() == this;
    Default();
    if (!hadFocus) {
        SendMessage(EM_SETSEL, 0, -1);
        SendMessage(EM_SCROLLCARET, 0, 0);
    }
}

void COrlexTextEdit::OnKillFocus(CWnd* pNewWnd) {
    Default();
    if (CWnd* parent = GetParent()) parent->SendMessage(WM_KILLFOCUS, 0, 0);
}

BOOL COrlexTextEdit::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    ::SetCursor(::LoadCursor(nullptr, IDC_IBEAM));
    return TRUE;
}
