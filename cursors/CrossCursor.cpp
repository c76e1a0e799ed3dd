#include "cursors/CrossCursor.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "foundation/Convert2Eng.h"
#include "foundation/MessageCatalogue.h"
#include "imageview/ImageView.h"

using orlex::cursors::LimitCoord;
using orlex::cursors::TruncSat;

IMPLEMENT_SERIAL(CCrossCursor, CBaseCursor, 1)

BEGIN_MESSAGE_MAP(CCrossCursor, CBaseCursor)
    ON_WM_CREATE()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
END_MESSAGE_MAP()

CCrossCursor::CCrossCursor() { m_nType = kCursorCross; }

CCrossCursor& CCrossCursor::operator=(const CCrossCursor& other)
{
    if (this == &other) return *this;
    CBaseCursor::operator=(other);
    std::memcpy(m_szText, other.m_szText, sizeof m_szText);
    m_nSize = other.m_nSize;
    m_ptPos = other.m_ptPos;
    m_ptData = other.m_ptData;
    return *this;
}

CRect CCrossCursor::WindowRect() const
{
    return orlex::cursors::RectAround(m_ptPos, static_cast<long long>(m_nSize) + m_nSelzone);
}

int CCrossCursor::Create(CWnd* view, CPoint centre)
{
    m_ptPos = CPoint(LimitCoord(centre.x), LimitCoord(centre.y));
    m_nType = kCursorCross;
    return CreateCursorWindow(view, WindowRect());
}

void CCrossCursor::Create(CWnd* view)
{
    // A real-time record holds the centre in view pixels already; the window derives the
    // data point from it (OnCreate).
    if (!m_bRealTime) ConvertToScreenCoords(view, m_ptData, &m_ptPos);
    Create(view, m_ptPos);
}

int CCrossCursor::OnCreate(LPCREATESTRUCT cs)
{
    if (CBaseCursor::OnCreate(cs) == -1) return -1;
    TakeDataPoint();
    return 0;
}

void CCrossCursor::TakeDataPoint()
{
    CURSOR_POS pos{};
    GetCursorData(GetView(), &pos);
    if (pos.pCursor) m_ptData = CPoint(pos.x1, pos.y1);
}

void CCrossCursor::GetCursorData(CWnd* view, CURSOR_POS* pos)
{
    const orlex::cursors::CursorMapping m = MappingOf(view);
    if (!pos || !m.Usable()) return;
    pos->type = kCursorCross;
    pos->pCursor = this;
    // The view-to-data division runs in float for the cross.
    const float fx = float(m_ptPos.x * (m.DX * m.xr)) / float(m.W) + float(m.xo);
    const float fy = float(m_ptPos.y * (m.DY * m.yr)) / float(m.H) + float(m.yo);
    pos->fX1 = fx;
    pos->fY1 = fy;
    pos->x1 = TruncSat(fx);
    pos->y1 = TruncSat(fy);
    pos->dX1 = m.UnitsX(fx);
    pos->dY1 = m.UnitsY(fy);
}

void CCrossCursor::Resize(CWnd* view)
{
    ConvertToScreenCoords(view, m_ptData, &m_ptPos);
    if (!m_hWnd) return;
    const CRect r = WindowRect();
    SetWindowPos(nullptr, r.left, r.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void CCrossCursor::SetPosition()
{
    if (!m_hWnd) return;
    CImageView* view = GetView();
    CRect old;
    GetWindowRect(&old);
    if (view) view->ScreenToClient(&old);
    const CRect r = WindowRect();
    // The move repaints nothing by itself: the view repaints the old and the new place in
    // one go, and the cross (a child the view doesn't clip) paints over it.
    SetWindowPos(nullptr, r.left, r.top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | (view ? SWP_NOREDRAW : 0));
    TakeDataPoint();
    if (view) {
        CRect both;
        both.UnionRect(&old, &r);
        view->InvalidateRect(&both);
        view->UpdateWindow();
    }
}

void CCrossCursor::UpdatePosition(CPoint point)
{
    CImageView* view = GetView();
    if (!view) return;
    MapWindowPoints(view, &point, 1);
    CRect w;
    view->GetWindowRect(&w);
    point.x = point.x < 0 ? 0 : std::min(point.x, int(w.Width()) - 1);
    point.y = point.y < 0 ? 0 : std::min(point.y, int(w.Height()) - 1);
    m_ptPos = point;
    SetPosition();
}

void CCrossCursor::CopyCursorMovement(CBaseCursor* other)
{
    auto* cross = other && other->IsKindOf(RUNTIME_CLASS(CCrossCursor)) ? static_cast<CCrossCursor*>(other) : nullptr;
    if (!cross) return;
    m_nSize = cross->m_nSize;
    m_ptPos = cross->m_ptPos;
}

double CCrossCursor::GetDistanceToCursor(CPoint screen)
{
    CPoint c = m_ptPos;
    if (CImageView* view = GetView()) view->ClientToScreen(&c);
    // The squares are summed in 32 bits, as the distance has always been measured.
    const auto dx = static_cast<std::uint32_t>(screen.x - c.x), dy = static_cast<std::uint32_t>(screen.y - c.y);
    const auto sum = static_cast<std::int32_t>(dx * dx + dy * dy);
    return std::sqrt(static_cast<double>(sum));
}

char* CCrossCursor::GetText()
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

void CCrossCursor::LButtonHandler(UINT flags, CPoint point)
{
    (void)flags;
    SetCapture();
    m_bCursorTracking = true;
    UpdatePosition(point);
    Default();
}

void CCrossCursor::OnMouseMove(UINT flags, CPoint point)
{
    (void)flags;
    if (m_bCursorTracking && m_nCanMove) {
        const LPARAM packed = orlex::view::PackPoint(point.x, point.y);
        UpdatePosition(point);
        if (CImageView* view = GetView())
            view->SendMessage(MESSAGE_CURSOR_MOUSE_STR, reinterpret_cast<WPARAM>(this), packed);
    }
    Default();
}

void CCrossCursor::OnLButtonUp(UINT flags, CPoint point)
{
    (void)flags;
    const HWND self = m_hWnd;
    if (m_bCursorTracking) {
        if (m_nCanMove) UpdatePosition(point);
        ReleaseCapture();
        m_bCursorTracking = false;
        CURSOR_POS pos{};
        CImageView* view = GetView();
        GetCursorData(view, &pos);
        // The host may delete the cursor while it hears of the release.
        if (view) view->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, WM_LBUTTONUP, reinterpret_cast<LPARAM>(&pos));
    }
    if (::IsWindow(self)) Default();
}

void CCrossCursor::OnSelection(int selected)
{
    (void)selected;
    if (CImageView* view = GetView()) m_color = m_nSelected ? view->GetSelectColor() : view->GetCursorColor();
    if (m_hWnd) {
        Invalidate(TRUE);
        UpdateWindow();
    }
}

void CCrossCursor::DrawCursor(CDC* dc, CRect rect, bool forPrint)
{
    (void)forPrint;
    CImageView* view = GetView();
    if (!dc || (view && view->IsDirect2d())) return;
    dc->SetBkMode(TRANSPARENT);
    CPen pen(static_cast<int>(m_dwStyle & PS_STYLE_MASK), 0, m_color);
    CPen* old = dc->SelectObject(&pen);
    rect.DeflateRect(m_nSelzone, m_nSelzone);
    const int mx = TruncSat((rect.right - rect.left) * 0.5 + rect.left);
    const int my = TruncSat((rect.bottom - rect.top) * 0.5 + rect.top);
    dc->MoveTo(mx, rect.top);
    dc->LineTo(mx, rect.bottom + 1);
    dc->MoveTo(rect.left, my);
    dc->LineTo(rect.right + 1, my);
    dc->SelectObject(old);
}

void CCrossCursor::PrintInRect(CDC* dc, CRect& dest)
{
    CImageView* view = GetView();
    if (!dc || !view || !m_hWnd) return;
    CRect client;
    view->GetClientRect(&client);
    if (client.Width() < 1 || client.Height() < 1) return;
    const double sx = double(dest.Width()) / client.Width();
    const double sy = double(dest.Height()) / client.Height();
    CRect r;
    GetWindowRect(&r);
    view->ScreenToClient(&r);
    r.DeflateRect(m_nSelzone, m_nSelzone);
    CRect s(TruncSat(r.left * sx + 0.5), TruncSat(r.top * sy + 0.5), TruncSat(r.right * sx + 0.5),
            TruncSat(r.bottom * sy + 0.5));
    s.OffsetRect(dest.left, dest.top);
    CPen pen(static_cast<int>(m_dwStyle & PS_STYLE_MASK), TruncSat(sx + 0.5), GetColor());
    CPen* old = dc->SelectObject(&pen);
    const int mx = TruncSat((s.right - s.left) * 0.5 + s.left);
    const int my = TruncSat((s.bottom - s.top) * 0.5 + s.top);
    dc->MoveTo(mx, s.top);
    dc->LineTo(mx, s.bottom + 1);
    dc->MoveTo(s.left, my);
    dc->LineTo(s.right + 1, my);
    dc->SelectObject(old);
}

void CCrossCursor::Serialize(CArchive& ar)
{
    CBaseCursor::Serialize(ar);
    if (ar.IsStoring()) {
        const POINT p = m_bRealTime ? m_ptPos : m_ptData;
        ar << p;
        return;
    }
    POINT p{};
    ar >> p;
    const CPoint limited(LimitCoord(p.x), LimitCoord(p.y));
    if (m_bRealTime)
        m_ptPos = limited;
    else
        m_ptData = limited;
}
