// Contexts of windows: GetDC/GetWindowDC/ReleaseDC, painting sessions (BeginPaint takes the
// window's update region as the clip and has the background erased through WM_ERASEBKGND),
// the C++ context classes of windows, and the window members that hand out contexts and
// fonts.
#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/gui/surface_p.h"

namespace orlex::gdi {
HDC NewWindowDc(HWND hwnd, bool client, bool paint);
HDC NewScreenDc();
CDC* TempDcWrapper(HDC h);
}  // namespace orlex::gdi

using namespace orlex::gdi;

HDC GetDC(HWND hwnd) {
    if (!hwnd) return NewScreenDc();
    if (!IsWindow(hwnd)) return nullptr;
    return NewWindowDc(hwnd, true, false);
}

HDC GetWindowDC(HWND hwnd) {
    if (!hwnd) return NewScreenDc();
    if (!IsWindow(hwnd)) return nullptr;
    return NewWindowDc(hwnd, false, false);
}

int ReleaseDC(HWND, HDC hdc) {
    Dc* dc = LookupDc(hdc);
    if (!dc || (dc->kind != DcKind::Window && dc->kind != DcKind::Screen) || dc->paint) return 0;
    DestroyDc(hdc);
    return 1;
}

HWND WindowFromDC(HDC hdc) {
    Dc* dc = LookupDc(hdc);
    return dc && dc->kind == DcKind::Window ? dc->hwnd : nullptr;
}

HDC BeginPaint(HWND hwnd, LPPAINTSTRUCT ps) {
    if (!ps || !IsWindow(hwnd)) return nullptr;
    *ps = PAINTSTRUCT{};
    bool erase = false;
    const QRegion update = orlex::detail::TakeUpdateRegion(hwnd, &erase);
    HDC hdc = NewWindowDc(hwnd, true, true);
    Dc* dc = LookupDc(hdc);
    dc->paintClip = update;
    const QRect b = update.boundingRect();
    ps->hdc = hdc;
    ps->rcPaint = update.isEmpty() ? RECT{0, 0, 0, 0} : RECT{b.left(), b.top(), b.right() + 1, b.bottom() + 1};
    ps->fErase = FALSE;
    if (erase && !update.isEmpty()) {
        // The window erases its background now; if it does not, painting must.
        ps->fErase = ::SendMessageA(hwnd, WM_ERASEBKGND, reinterpret_cast<WPARAM>(hdc), 0) ? FALSE : TRUE;
    }
    return hdc;
}

BOOL EndPaint(HWND, const PAINTSTRUCT* ps) {
    if (!ps) return FALSE;
    Dc* dc = LookupDc(ps->hdc);
    if (!dc || !dc->paint) return FALSE;
    DestroyDc(ps->hdc);
    return TRUE;
}

// Context classes of windows ------------------------------------------------------------------------
CClientDC::CClientDC(CWnd* wnd) : m_hWnd(wnd ? wnd->m_hWnd : nullptr) {
    if (Attach(::GetDC(m_hWnd))) m_release = 2;
}
CClientDC::~CClientDC() {
    if (m_hDC) ::ReleaseDC(m_hWnd, Detach());
}

CWindowDC::CWindowDC(CWnd* wnd) : m_hWnd(wnd ? wnd->m_hWnd : nullptr) {
    if (Attach(::GetWindowDC(m_hWnd))) m_release = 2;
}
CWindowDC::~CWindowDC() {
    if (m_hDC) ::ReleaseDC(m_hWnd, Detach());
}

CPaintDC::CPaintDC(CWnd* wnd) : m_hWnd(wnd ? wnd->m_hWnd : nullptr) {
    if (Attach(::BeginPaint(m_hWnd, &m_ps))) m_release = 3;
}
CPaintDC::~CPaintDC() {
    if (m_hDC) {
        Detach();
        ::EndPaint(m_hWnd, &m_ps);
    }
}

CWnd* CDC::GetWindow() const { return CWnd::FromHandle(WindowFromDC(m_hDC)); }

// Window members of the drawing side ------------------------------------------------------------------
CDC* CWnd::GetDC() { return TempDcWrapper(::GetDC(m_hWnd)); }
CDC* CWnd::GetWindowDC() { return TempDcWrapper(::GetWindowDC(m_hWnd)); }
int CWnd::ReleaseDC(CDC* dc) { return dc ? ::ReleaseDC(m_hWnd, dc->m_hDC) : 0; }
CDC* CWnd::DCFromHandle(HDC hdc) { return CDC::FromHandle(hdc); }

void CWnd::SetFont(CFont* font, BOOL redraw) {
    ::SendMessageA(m_hWnd, WM_SETFONT, reinterpret_cast<WPARAM>(font ? font->m_hObject : nullptr), redraw);
}

CFont* CWnd::GetFont() const {
    return CFont::FromHandle(reinterpret_cast<HFONT>(::SendMessageA(m_hWnd, WM_GETFONT, 0, 0)));
}
