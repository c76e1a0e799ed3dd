#include "cursors/BaseCursor.h"

#include <algorithm>
#include <cmath>

#include "foundation/ArchiveVersionControl.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxdlgs.h"
#include "imageview/ImageView.h"

using orlex::cursors::CursorMapping;
using orlex::cursors::TruncSat;
using orlex::view::PackPoint;

IMPLEMENT_SERIAL(CBaseCursor, CWnd, VERSIONABLE_SCHEMA | 1)

bool CBaseCursor::m_bCursorTracking = false;
CursorCallbackFn CBaseCursor::m_pCursorCallback = nullptr;
void* CBaseCursor::m_pCursorCallbackData = nullptr;

namespace {

constexpr int kCornerHalf = 3;
constexpr DWORD kColorDialogFullOpen = 2;

}  // namespace

BEGIN_MESSAGE_MAP(CBaseCursor, CWnd)
    ON_WM_LBUTTONDBLCLK()
    ON_WM_RBUTTONUP()
    ON_WM_LBUTTONDOWN()
    ON_WM_MOUSEMOVE()
    ON_WM_PAINT()
    ON_COMMAND(ID_CURSOR_DELETE, OnDeleteCursor)
    ON_COMMAND(ID_CURSOR_CLEAR_ALL, OnClearAll)
    ON_COMMAND(ID_CURSOR_SET_COLOR, OnSetCursorColor)
    ON_COMMAND(ID_CURSOR_SET_COLOR_ALL, OnSetCursorColorAll)
END_MESSAGE_MAP()

CBaseCursor::CBaseCursor() : m_bRealTime(ArchiveVersionControl::GetRealTime()) {}

CBaseCursor::~CBaseCursor()
{
    if (m_hWnd) {
        // A drag in progress ends with its cursor: the mouse goes back to whoever asks.
        if (::GetCapture() == m_hWnd) {
            ::ReleaseCapture();
            m_bCursorTracking = false;
        }
        DestroyWindow();
    }
}

CBaseCursor& CBaseCursor::operator=(const CBaseCursor& other)
{
    if (this == &other) return *this;
    m_bMenuActive = other.m_bMenuActive;
    m_nSelzone = other.m_nSelzone;
    m_dXScale = other.m_dXScale;
    m_dYScale = other.m_dYScale;
    m_hOldCursor = other.m_hOldCursor;
    m_nLinked = other.m_nLinked;
    m_color = other.m_color;
    return *this;
}

CImageView* CBaseCursor::GetView() const
{
    CWnd* parent = m_hWnd ? GetParent() : nullptr;
    return parent ? dynamic_cast<CImageView*>(parent) : nullptr;
}

CursorMapping CBaseCursor::MappingOf(CWnd* wnd)
{
    CursorMapping m;
    auto* view = dynamic_cast<CImageView*>(wnd);
    if (!view || !view->GetSafeHwnd()) return m;
    CRect c;
    view->GetClientRect(&c);
    m.W = c.Width();
    m.H = c.Height();
    const CSize d = view->GetDataSize();
    m.DX = d.cx;
    m.DY = d.cy;
    const DPOINT r = view->GetScaleRatio();
    m.xr = r.x;
    m.yr = r.y;
    m.xo = r.origin.x;
    m.yo = r.origin.y;
    m.S = view->GetScanLen();
    m.A = view->GetAspectRatio();
    const DPOINT& s = view->GetCursorScaleRatio();
    m.cx = s.x;
    m.cy = s.y;
    return m;
}

// Virtual interface defaults ----------------------------------------------------------------

void CBaseCursor::PrintInRect(CDC*, CRect&) {}

int CBaseCursor::PtInRegion(const CPoint& screenPoint) { return PtInBounds(screenPoint); }

int CBaseCursor::GetSubMenuIndex() { return 0; }

void CBaseCursor::CopyCursorMovement(CBaseCursor*) {}

void CBaseCursor::SetPosition() {}

void CBaseCursor::UpdatePosition(CPoint) {}

int CBaseCursor::GetTrackMode() { return -1; }

int CBaseCursor::GetCursorSubSections() { return 1; }

void CBaseCursor::GetCursorData(CWnd* view, CURSOR_POS* pos, int section)
{
    if (section == 0)
        GetCursorData(view, pos);
    else if (pos)
        pos->pCursor = nullptr;
}

void CBaseCursor::GetCursorData(CWnd*, CURSOR_POS* pos)
{
    if (pos) pos->pCursor = nullptr;
}

void CBaseCursor::Resize(CWnd*) {}

double CBaseCursor::GetDistanceToCursor(CPoint) { return -1.0; }

CBaseCursor* CBaseCursor::GetLink() { return nullptr; }

char* CBaseCursor::GetText() { return nullptr; }

void CBaseCursor::Create(CWnd*) {}

void CBaseCursor::LButtonHandler(UINT, CPoint) {}

void CBaseCursor::RButtonHandler(UINT flags, CPoint point)
{
    (void)flags;
    if (m_bMenuActive || !m_hWnd) return;
    m_bMenuActive = 1;
    CMenu menu;
    if (menu.LoadMenu(IDR_CURSOR_MENU)) {
        if (CMenu* popup = menu.GetSubMenu(GetSubMenuIndex())) {
            if (!m_nUserDelete) {
                popup->EnableMenuItem(ID_CURSOR_DELETE, MF_BYCOMMAND | MF_DISABLED | MF_GRAYED);
                popup->EnableMenuItem(ID_CURSOR_CLEAR_ALL, MF_BYCOMMAND | MF_DISABLED | MF_GRAYED);
            }
            ClientToScreen(&point);
            BeginPopupMenu(popup);
            popup->TrackPopupMenu(TPM_LEFTALIGN | TPM_RIGHTBUTTON, point.x, point.y, this);
        }
        menu.DestroyMenu();
    }
    m_bMenuActive = 0;
}

void CBaseCursor::SetColor(COLORREF color, bool redraw)
{
    m_color = color;
    if (redraw && m_hWnd) {
        Invalidate();
        UpdateWindow();
    }
}

COLORREF CBaseCursor::GetColor() { return m_color; }

COLORREF CBaseCursor::GetHiliteColor() { return 0x00FF00; }

int CBaseCursor::SetHilited(int on, int section)
{
    const int old = m_nHilited;
    m_nHilited = on;
    m_nHiliteSection = section;
    if (m_hWnd) {
        Invalidate();
        UpdateWindow();
    }
    return old;
}

int CBaseCursor::IsHilited() { return m_nHilited; }

int CBaseCursor::IsSubSectionHilited(int section)
{
    if (!m_nHilited) return 0;
    return section == -1 || m_nHiliteSection == -1 || section <= m_nHiliteSection ? 1 : 0;
}

void CBaseCursor::SetScale(double xScale, double yScale, double xRange, double yRange)
{
    m_dXScale = xScale;
    m_dYScale = yScale;
    m_dXRange = xRange;
    m_dYRange = yRange;
}

void CBaseCursor::DrawCursor(CDC*, CRect, bool) {}

int CBaseCursor::GetDirectionMark() { return 0; }

void CBaseCursor::SetDirectionMark(int) {}

int CBaseCursor::GetCursorID() { return m_nCursorID; }

void CBaseCursor::SetCursorID(int id) { m_nCursorID = id; }

void CBaseCursor::BeginPopupMenu(CMenu*) {}

void CBaseCursor::OnSelection(int) {}

// Selection ----------------------------------------------------------------------------------

void CBaseCursor::SetSelected(int selected)
{
    m_nSelected = selected;
    OnSelection(selected);
}

int CBaseCursor::ToggleSelection()
{
    m_nSelected = !m_nSelected;
    OnSelection(m_nSelected);
    return m_nSelected;
}

// The choice of the cursor a press means ---------------------------------------------------------

void CBaseCursor::CursorManager(UINT flags, CPoint point, UINT button, int press)
{
    CImageView* view = GetView();
    if (!view) return;
    CPoint screen = point;
    ClientToScreen(&screen);
    CPoint inView = screen;
    view->ScreenToClient(&inView);

    // Zoom and pan presses belong to the view; both may delete this cursor, so nothing of
    // it is touched after them.
    if (view->GetZoomState()) {
        view->StartZoom(inView);
        return;
    }
    if (view->GetPanMode() && !view->IsOneZoom()) {
        if (m_bRealTime)
            view->StartPan(inView, 1);
        else
            view->StartPanOffline(inView, 0);
        return;
    }

    CBaseCursor* best = nullptr;
    double bestDistance = 0.0;
    auto consider = [&](CBaseCursor* c) {
        if (!c || !c->PtInRegion(screen)) return;
        const double d = c->GetDistanceToCursor(screen);
        if (d == -1.0) return;
        // An equal distance keeps the cursor found first.
        if (!best || bestDistance > d) {
            best = c;
            bestDistance = d;
        }
    };
    for (CURSOR_POS pos = view->GetFirstCursorPos(); pos.pCursor; pos = view->GetNextCursorPos()) {
        consider(pos.pCursor);
        if (pos.pCursor->IsLinked()) consider(pos.pCursor->GetLink());
    }

    if (!best) {
        view->SetFocus();
        const UINT msg = button == kCursorRightButton ? WM_RBUTTONUP : WM_LBUTTONDOWN;
        view->PostMessage(msg, flags, PackPoint(inView.x, inView.y));
        return;
    }
    best->SetWindowPos(&CWnd::wndTop, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE);
    CPoint inBest = screen;
    best->ScreenToClient(&inBest);
    if (button == kCursorRightButton) {
        if (best->m_nCursorAcLevel == 0) best->RButtonHandler(flags, inBest);
        return;
    }
    switch (best->m_nCursorAcLevel) {
    case 0:
        best->LButtonHandler(flags, inBest);
        return;
    case 1:
        best->ToggleSelection();
        break;
    case 2:
        break;
    default:
        return;
    }
    best->NotifyView(press ? WM_LBUTTONDOWN : WM_LBUTTONUP);
}

void CBaseCursor::NotifyView(WPARAM gesture)
{
    CImageView* view = GetView();
    if (!view) return;
    CURSOR_POS pos{};
    GetCursorData(view, &pos);
    view->SendMessage(MESSAGE_CURSOR_NOTIFY_STR, gesture, reinterpret_cast<LPARAM>(&pos));
}

// Places -----------------------------------------------------------------------------------------

void CBaseCursor::CheckPoint(CPoint* point)
{
    CImageView* view = GetView();
    if (!point || !view) return;
    MapWindowPoints(view, point, 1);
    CRect w;
    view->GetWindowRect(&w);
    point->x = std::max(0, std::min(point->x, int(w.Width()) - 1));
    point->y = std::max(0, std::min(point->y, int(w.Height()) - 1));
    view->MapWindowPoints(this, point, 1);
}

void CBaseCursor::CheckWindow(CRect* rect)
{
    CImageView* view = GetView();
    if (!rect || !view) return;
    CRect client;
    view->GetClientRect(&client);
    *rect = orlex::cursors::KeepWindowNearView(*rect, client, m_nSelzone);
}

void CBaseCursor::ConvertToScreenCoords(CWnd* view, CPoint data, CPoint* out)
{
    if (!view || !out) return;
    POINT p;
    if (MappingOf(view).ViewPoint(data, p)) *out = p;
}

void CBaseCursor::ConvertToScreenCoords(CWnd* view, CPoint data1, CPoint data2, CPoint* out1, CPoint* out2)
{
    if (!view || !view->GetSafeHwnd()) return;
    ConvertToScreenCoords(view, data1, out1);
    ConvertToScreenCoords(view, data2, out2);
    CRect c;
    view->GetClientRect(&c);
    if (c.Width() > 0 && c.Height() > 0)
        SetScale(m_dXRange / c.Width(), m_dYRange / c.Height(), m_dXRange, m_dYRange);
}

int CBaseCursor::GetMinDimension()
{
    if (!m_hWnd) return 0;
    CRect w;
    GetWindowRect(&w);
    w.DeflateRect(m_nSelzone, m_nSelzone);
    return std::min(w.Width(), w.Height());
}

int CBaseCursor::GetDirectionMarkAll()
{
    CImageView* view = GetView();
    return view ? view->GetDirectionMark() : 0;
}

void CBaseCursor::SetDirectionMarkAll(int on)
{
    if (CImageView* view = GetView()) view->PostMessage(WM_COMMAND, ID_CURSOR_SHOW_DIRECTION_ALL, on);
}

int CBaseCursor::PtInBounds(const CPoint& screenPoint)
{
    if (!m_hWnd) return 0;
    CRect w;
    GetWindowRect(&w);
    return w.PtInRect(screenPoint) ? 1 : 0;
}

BOOL CBaseCursor::CreateCursorWindow(CWnd* view, const CRect& rect)
{
    if (!view || !view->GetSafeHwnd()) return FALSE;
    return CWnd::Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, rect, view, 0);
}

// Geometry ---------------------------------------------------------------------------------------

double CBaseCursor::AngleBetweenPoints(CPoint a, CPoint b)
{
    double x = double(b.x) - a.x;
    double y = double(a.y) - b.y;
    if (CImageView* view = GetView()) {
        const DPOINT r = view->GetScaleRatio();
        if (r.valid) {
            x = x * m_dXScale * r.x;
            y = y * m_dYScale * r.y;
        }
    }
    return orlex::cursors::AngleDegrees(x, y);
}

double CBaseCursor::DistanceToPoint(CPoint a, CPoint b)
{
    double x = double(b.x) - a.x;
    double y = double(a.y) - b.y;
    if (CImageView* view = GetView()) {
        const DPOINT r = view->GetScaleRatio();
        x = x * m_dXScale * r.x;
        y = y * m_dYScale * r.y;
    }
    return std::sqrt(x * x + y * y);
}

UINT CBaseCursor::GetPixelDistance(CPoint a, CPoint b) { return orlex::cursors::RoundedDistance(a, b); }

double CBaseCursor::GetPixelDistance(CPoint p, CPoint a, CPoint b)
{
    if (CImageView* view = GetView()) {
        view->ClientToScreen(&a);
        view->ClientToScreen(&b);
    }
    return orlex::cursors::LineDistance(p, a, b);
}

double CBaseCursor::GetRadiusPixelDistance(CPoint p, CPoint a, CPoint b)
{
    if (CImageView* view = GetView()) {
        view->ClientToScreen(&a);
        view->ClientToScreen(&b);
    }
    return orlex::cursors::SegmentDistance(p, a, b);
}

void CBaseCursor::RotatePolygon(CPoint centre, CPoint* points, int count, double angle)
{
    orlex::cursors::RotatePoints(centre, points, count, angle);
}

void CBaseCursor::DrawDirectionMark(CDC* dc, CPoint a, CPoint b)
{
    if (!dc) return;
    const CPoint saved = dc->GetCurrentPosition();
    const CPoint m(a.x + (b.x - a.x) / 2, a.y + (b.y - a.y) / 2);
    const double t = AngleBetweenPoints(a, b);
    for (double turn : {t - 135.0, t + 135.0}) {
        CPoint head(m.x + 7, m.y);
        RotatePolygon(m, &head, 1, turn);
        dc->MoveTo(m);
        dc->LineTo(head);
    }
    dc->MoveTo(saved);
}

void CBaseCursor::DrawSmartCorners(CDC* dc, CRect rect)
{
    if (!dc) return;
    const COLORREF c = GetColor();
    for (const CPoint& p : {rect.TopLeft(), CPoint(rect.right, rect.top), CPoint(rect.left, rect.bottom),
                            rect.BottomRight()}) {
        CRect corner(p.x - kCornerHalf, p.y - kCornerHalf, p.x + kCornerHalf, p.y + kCornerHalf);
        dc->FillSolidRect(&corner, c);
    }
}

// Handlers -----------------------------------------------------------------------------------------

void CBaseCursor::OnDeleteCursor()
{
    CImageView* view = GetView();
    if (!view) return;
    view->PostMessage(MESSAGE_USER_REMOVE_CURSOR_STR, static_cast<WPARAM>(m_nType), reinterpret_cast<LPARAM>(this));
    view->PostMessage(MESSAGE_REMOVE_CURSOR_STR, 0, reinterpret_cast<LPARAM>(this));
}

void CBaseCursor::OnClearAll()
{
    // The view may delete this cursor while handling it.
    if (CImageView* view = GetView()) view->SendMessage(WM_COMMAND, ID_CURSOR_CLEAR_ALL, 0);
}

void CBaseCursor::OnSetCursorColor()
{
    CColorDialog dlg(m_color, kColorDialogFullOpen, this);
    if (dlg.DoModal() == IDOK && m_pBase) m_pBase->SetColor(dlg.GetColor(), true);
}

void CBaseCursor::OnSetCursorColorAll()
{
    CColorDialog dlg(m_color, kColorDialogFullOpen, this);
    if (dlg.DoModal() != IDOK) return;
    if (CImageView* view = GetView())
        view->SendMessage(WM_COMMAND, ID_CURSOR_SET_COLOR_ALL, static_cast<LPARAM>(dlg.GetColor()));
}

void CBaseCursor::OnLButtonDblClk(UINT flags, CPoint point)
{
    CImageView* view = GetView();
    if (!view) return;
    MapWindowPoints(view, &point, 1);
    view->SendMessage(WM_LBUTTONDBLCLK, flags, PackPoint(point.x, point.y));
}

void CBaseCursor::OnRButtonUp(UINT flags, CPoint point) { CursorManager(flags, point, kCursorRightButton, 1); }

void CBaseCursor::OnLButtonDown(UINT flags, CPoint point)
{
    if (!m_nCanMove) {
        Default();
        return;
    }
    CursorManager(flags, point, kCursorLeftButton, 1);
}

void CBaseCursor::OnMouseMove(UINT flags, CPoint point)
{
    (void)flags;
    CImageView* view = GetView();
    if (!view) return;
    ClientToScreen(&point);
    view->OnCursorMouseMove(m_bCursorTracking ? 1 : 0, point, this);
}

void CBaseCursor::OnPaint()
{
    CPaintDC dc(this);
    CRect r;
    GetClientRect(&r);
    DrawCursor(&dc, r, false);
}

// File record -----------------------------------------------------------------------------------

void CBaseCursor::Serialize(CArchive& ar)
{
    orlex::SerializeVersion(ar, RUNTIME_CLASS(CBaseCursor), 1, {1});
    if (ar.IsStoring()) {
        ar << m_nSelzone << m_dXScale << m_dYScale << static_cast<UINT>(m_color) << static_cast<UINT>(m_dwStyle)
           << m_nUserDelete;
        return;
    }
    UINT color = 0, style = 0;
    int selzone = 0;
    ar >> selzone >> m_dXScale >> m_dYScale >> color >> style >> m_nUserDelete;
    SetSelzone(selzone);
    m_color = color;
    m_dwStyle = style;
}
