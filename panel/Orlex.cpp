#include "panel/Orlex.h"

#include <cassert>

#include "foundation/platform/resources.h"

IMPLEMENT_DYNAMIC(COrlex, CWnd)

BEGIN_MESSAGE_MAP(COrlex, CWnd)
    ON_WM_MOUSEMOVE()
    ON_WM_PAINT()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_SETCURSOR()
END_MESSAGE_MAP()

char* const COrlex::s_emptyOptions[1] = {nullptr};

COrlex::COrlex(UINT nBitmap, UINT nRolloverBitmap, UINT nClickBitmap)
    : m_ppOptionLabels(s_emptyOptions), m_ppOptions(s_emptyOptions) {
    // The faces are loaded but not announced: m_BitmapInfo and the two flags come only
    // from the Load... calls.
    if (nBitmap) LoadFace(m_NormalBitmap, nBitmap);
    if (nRolloverBitmap) LoadFace(m_RolloverBitmap, nRolloverBitmap);
    if (nClickBitmap) LoadFace(m_ClickBitmap, nClickBitmap);
}

COrlex::~COrlex() {
    m_NormalBitmap.DeleteObject();
    m_RolloverBitmap.DeleteObject();
    m_ClickBitmap.DeleteObject();
    if (::IsWindow(m_hWnd)) {
        m_bCreated = 0;
        DestroyWindow();
        m_hWnd = nullptr;
    }
}

BOOL COrlex::Create(LPCSTR className, LPCSTR windowName, DWORD style, const RECT& rect, CWnd* parent, UINT id,
                    void* context) {
    return CWnd::Create(className, windowName, style, rect, parent, id, context);
}

BOOL COrlex::DestroyWindow() {
    m_bCreated = 0;
    return CWnd::DestroyWindow();
}

int COrlex::Create(UINT x, UINT y, CWnd* pParent) {
    if (m_bCreated) DestroyWindow();
    // right and bottom 1 whatever x and y: LoadBitmap gives the size.
    const RECT r{static_cast<LONG>(x), static_cast<LONG>(y), 1, 1};
    m_bCreated = Create(nullptr, nullptr, m_dwStyle, r, pParent, 0, nullptr);
    return m_bCreated;
}

int COrlex::Create(CWnd* pParent) { return Create(0u, 0u, pParent); }

void COrlex::SetSpriteLocation(UINT x, UINT y) {
    CRect r;
    GetWindowRect(&r);
    SetWindowPos(nullptr, static_cast<int>(x), static_cast<int>(y), r.Width(), r.Height(), 0);
}

int COrlex::Created() { return m_bCreated; }

BOOL COrlex::LoadFace(CBitmap& slot, UINT nId) {
    slot.DeleteObject();
    const LPCSTR name = MAKEINTRESOURCE(nId & 0xFFFF);
    const HINSTANCE module = AfxFindResourceHandle(name, RT_BITMAP);
    return slot.Attach(::LoadBitmap(module, name));
}

void COrlex::LoadFace(CBitmap& slot, UINT nId, BITMAP& info) {
    LoadFace(slot, nId);
    info = BITMAP{};
    if (slot.m_hObject) slot.GetObject(sizeof info, &info);
}

void COrlex::SizeInPlace(int width, int height) {
    WINDOWPLACEMENT wp{};
    wp.length = sizeof wp;
    if (GetWindowPlacement(&wp)) CWnd::MoveWindow(wp.rcNormalPosition.left, wp.rcNormalPosition.top, width, height);
}

void COrlex::LoadBitmap(UINT nId) {
    LoadFace(m_NormalBitmap, nId, m_BitmapInfo);
    SizeInPlace(m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight);
}

void COrlex::LoadRolloverBitmap(UINT nId) { m_bHasRollover = LoadFace(m_RolloverBitmap, nId); }

void COrlex::LoadClickBitmap(UINT nId) { m_bHasClick = LoadFace(m_ClickBitmap, nId); }

void COrlex::LoadCtrlOptions(char** const ppLabels, char** const ppOptions) {
    m_ppOptionLabels = ppLabels;
    // A null table stands for an empty one, so no later walk reads through null.
    m_ppOptions = ppOptions ? ppOptions : s_emptyOptions;
    m_nOptionCount = 0;
    while (m_ppOptions[m_nOptionCount]) ++m_nOptionCount;
}

void COrlex::SetCtrlOption(CString strOption) {
    for (UINT i = 0; m_ppOptions[i]; ++i) {
        if (strOption.Compare(m_ppOptions[i]) == 0) {
            m_nOption = i;
            Invalidate(TRUE);
            return;
        }
    }
}

void COrlex::SetCtrlOption(UINT nIndex) {
    m_nOption = nIndex;
    Invalidate(TRUE);
}

UINT COrlex::GetCtrlOptionIndex() { return m_nOption; }

CString COrlex::GetCtrlOption() { return m_nOption < m_nOptionCount ? CString(m_ppOptions[m_nOption]) : CString(); }

void COrlex::LoadCtrlMessages(COrlexMsgCenter* pCenter, CString strMessage1, CString strMessage2,
                              CString strMessage3) {
    m_pMsgCenter = pCenter;
    m_strMessage1 = strMessage1;
    m_strMessage2 = strMessage2;
    m_strMessage3 = strMessage3;
}

void COrlex::LoadHelpMessages(CString strHelp1, CString strHelp2) {
    m_strHelp1 = strHelp1;
    m_strHelp2 = strHelp2;
}

int COrlex::HitTest(CPoint point) {
    CRect r;
    GetWindowRect(&r);
    return point.x >= 0 && point.x <= r.Width() && point.y >= 0 && point.y <= r.Height() ? 1 : 0;
}

void COrlex::Send(const CString& text) {
    if (m_pMsgCenter) m_pMsgCenter->ReceiveCtrlMessage(text);
}

void COrlex::InvalidateFace() {
    const RECT r{0, 0, m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight};
    InvalidateRect(&r, FALSE);
}

void COrlex::DrawFace(CDC& dc, CDC& mem, CBitmap& face, int x, int y, int w, int h) {
    if (!face.m_hObject) return;
    CBitmap* old = mem.SelectObject(&face);
    dc.BitBlt(x, y, w, h, &mem, 0, 0, SRCCOPY);
    mem.SelectObject(old);
}

void COrlex::OnPaint() {
    CPaintDC dc(this);
    CDC mem;
    if (!mem.CreateCompatibleDC(&dc)) return;
    CBitmap* face = &m_NormalBitmap;
    if (m_bClicked && m_bHasClick)
        face = &m_ClickBitmap;
    else if (m_bRollover && m_bHasRollover)
        face = &m_RolloverBitmap;
    CRect rc;
    GetClientRect(&rc);
    DrawFace(dc, mem, *face, 0, 0, rc.Width(), rc.Height());
}

void COrlex::OnMouseMove(UINT nFlags, CPoint point) {
    const int inside = HitTest(point);
    if (inside && !m_bMouseCaptured && !m_bClicked) {
        m_bRollover = true;
        SetCapture();
        m_bMouseCaptured = 1;
        Send("OrlexHelp");
        InvalidateFace();
    } else if (!inside && m_bMouseCaptured) {
        m_bRollover = false;
        m_bClicked = false;
        ::ReleaseCapture();
        InvalidateFace();
        m_bMouseCaptured = 0;
    }
    Default();
}

void COrlex::OnLButtonDown(UINT nFlags, CPoint point) {
    if (!m_bMouseCaptured) {
        SetCapture();
        m_bMouseCaptured = 1;
    }
    m_bClicked = true;
    InvalidateFace();
    SetFocus();
    Default();
}

void COrlex::OnLButtonUp(UINT nFlags, CPoint point) {
    m_bMouseCaptured = 0;
    m_bClicked = false;
    ::ReleaseCapture();
    InvalidateFace();
    Send(m_strMessage1);
    Default();
}

HCURSOR COrlex::AppCursor(UINT id) {
    const LPCSTR name = MAKEINTRESOURCE(id);
    if (HCURSOR own = ::LoadCursor(AfxFindResourceHandle(name, RT_CURSOR), name)) return own;
    return ::LoadCursor(orlex::LibraryModule(), name);
}

HCURSOR COrlex::AppStandardCursor(LPCSTR id) { return ::LoadCursor(nullptr, id); }

BOOL COrlex::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    ::SetCursor(::LoadCursor(orlex::LibraryModule(), MAKEINTRESOURCE(IDC_ORLEX_HAND)));
    return TRUE;
}
