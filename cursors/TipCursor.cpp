#include "cursors/TipCursor.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "foundation/Convert2Eng.h"
#include "imageview/ImageView.h"

using orlex::cursors::LimitCoord;
using orlex::cursors::TruncSat;

IMPLEMENT_SERIAL(CTipCursor, CBaseCursor, 1)

// Chained past the base's map: the marker takes no press, no drag and no menu of its own.
BEGIN_MESSAGE_MAP(CTipCursor, CWnd)
    ON_WM_PAINT()
    ON_WM_LBUTTONDBLCLK()
END_MESSAGE_MAP()

CTipCursor::CTipCursor() { m_nType = kCursorTip; }

CRect CTipCursor::WindowRect() const
{
    return orlex::cursors::RectAround(m_ptPos, static_cast<long long>(m_nSize) + m_nSelzone);
}

int CTipCursor::Create(CWnd* view, CPoint centre, int visible)
{
    m_ptPos = CPoint(LimitCoord(centre.x), LimitCoord(centre.y));
    m_nType = kCursorTip;
    if (!view || !view->GetSafeHwnd()) return FALSE;
    const DWORD style = WS_CHILD | (visible ? WS_VISIBLE : 0);
    const BOOL made = CWnd::Create(nullptr, nullptr, style, WindowRect(), view, 0);
    if (made) ShowWindow(m_nShow > 0 ? SW_SHOW : SW_HIDE);
    return made;
}

void CTipCursor::ShowTipCursor(int show)
{
    m_nShow = show;
    if (m_hWnd) ShowWindow(show ? SW_SHOW : SW_HIDE);
}

void CTipCursor::GetCursorData(CWnd* view, CURSOR_POS* pos)
{
    const orlex::cursors::CursorMapping m = MappingOf(view);
    if (!pos || !m.Usable()) return;
    pos->type = kCursorTip;
    pos->pCursor = this;
    // Whole data pixels: rounded over the whole image, then through the zoom.
    const int ax = TruncSat(m_ptPos.x * m.DX / m.W + 0.5);
    const int ay = TruncSat(m_ptPos.y * m.DY / m.H + 0.5);
    pos->x1 = TruncSat(ax * m.xr + 0.5) + m.xo;
    pos->y1 = TruncSat(ay * m.yr + 0.5) + m.yo;
    pos->dX1 = m.UnitsX(pos->x1);
    pos->dY1 = m.UnitsY(pos->y1);
}

char* CTipCursor::GetText()
{
    CURSOR_POS pos{};
    GetCursorData(GetView(), &pos);
    char x[CONVERT2ENG_MAX], y[CONVERT2ENG_MAX];
    Convert2Eng(x, pos.dX1, "m", 1, 0);
    Convert2Eng(y, pos.dY1, "m", 1, 0);
    char full[2 * CONVERT2ENG_MAX + 8];
    std::snprintf(full, sizeof full, "[%s, %s]", x, y);
    // The text keeps what fits its 80 bytes.
    std::strncpy(m_szText, full, sizeof m_szText - 1);
    m_szText[sizeof m_szText - 1] = '\0';
    return m_szText;
}

void CTipCursor::SetTipPosition(double x, double y)
{
    CImageView* view = GetView();
    if (!view) return;
    const double S = view->GetScanLen(), A = view->GetAspectRatio();
    const CSize d = view->GetDataSize();
    const double DX = float(d.cx), DY = float(d.cy);
    CRect w;
    view->GetWindowRect(&w);
    const DPOINT r = view->GetScaleRatio();
    const double xr = float(r.x), yr = float(r.y);
    const double fx = DX * x / S, fy = DY * y / S * A;
    const double rx = (fx - r.origin.x) / xr, ry = (fy - r.origin.y) / yr;
    m_ptPos.x = LimitCoord(TruncSat(w.Width() * rx / DX + 0.5));
    m_ptPos.y = LimitCoord(TruncSat(w.Height() * ry / DY + 0.5));
    MoveToCentre();
}

void CTipCursor::SetTipPosition(CPoint p)
{
    CImageView* view = GetView();
    if (!view) return;
    const CSize d = view->GetDataSize();
    CRect w;
    view->GetWindowRect(&w);
    const DPOINT r = view->GetScaleRatio();
    // The products wrap in 32 bits as ints do; the division is in double.
    const auto px = static_cast<std::int32_t>(static_cast<std::uint32_t>(d.cx) * static_cast<std::uint32_t>(p.x));
    const auto py = static_cast<std::int32_t>(static_cast<std::uint32_t>(d.cy) * static_cast<std::uint32_t>(p.y));
    const double a = double(px) / w.Width(), b = double(py) / w.Height();
    m_ptPos.x = LimitCoord(TruncSat(float(r.x) * a + r.origin.x + 0.5));
    m_ptPos.y = LimitCoord(TruncSat(float(r.y) * b + r.origin.y + 0.5));
    MoveToCentre();
}

void CTipCursor::MoveToCentre()
{
    CImageView* view = GetView();
    if (!m_hWnd || !view) return;
    CRect r = WindowRect();
    SetWindowPos(nullptr, r.left, r.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    view->InvalidateRect(&r);
    view->UpdateWindow();
}

void CTipCursor::OnPaint()
{
    CPaintDC dc(this);
    CRect rect;
    GetClientRect(&rect);
    dc.SetBkMode(TRANSPARENT);
    CPen pen(static_cast<int>(m_dwStyle & PS_STYLE_MASK), 0, m_color);
    CPen* old = dc.SelectObject(&pen);
    rect.DeflateRect(m_nSelzone, m_nSelzone);
    rect.right += 1;
    rect.bottom += 1;
    const int mx = TruncSat((rect.right - rect.left) * 0.5 + rect.left);
    const int my = TruncSat((rect.bottom - rect.top) * 0.5 + rect.top);
    dc.MoveTo(mx, rect.top);
    dc.LineTo(mx, rect.bottom + 1);
    dc.MoveTo(rect.left, my);
    dc.LineTo(rect.right + 1, my);
    // Equal start and end: the whole circle.
    dc.Arc(&rect, CPoint(mx, rect.top), CPoint(mx, rect.top));
    dc.SelectObject(old);
}

void CTipCursor::Serialize(CArchive& ar)
{
    CBaseCursor::Serialize(ar);
    if (ar.IsStoring()) {
        const POINT p = m_ptPos;
        ar << p << m_nShow;
        return;
    }
    POINT p{};
    int show = 0;
    ar >> p >> show;
    m_ptPos = CPoint(LimitCoord(p.x), LimitCoord(p.y));
    m_nShow = show;
}
