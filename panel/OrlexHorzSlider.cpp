#include "panel/OrlexHorzSlider.h"

#include <algorithm>
#include <climits>

#include "panel/PanelMath.h"

using namespace orlex::panel;

IMPLEMENT_DYNAMIC(COrlexHorzSlider, COrlex)

BEGIN_MESSAGE_MAP(COrlexHorzSlider, COrlex)
    ON_WM_MOUSEMOVE()
    ON_WM_LBUTTONDOWN()
    ON_WM_LBUTTONUP()
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

COrlexHorzSlider::COrlexHorzSlider() : COrlex(0, 0, 0) {}

COrlexHorzSlider::~COrlexHorzSlider() { m_BackgroundBitmap.DeleteObject(); }

int COrlexHorzSlider::Create(UINT x, UINT y, UINT nWidth, CWnd* pParent) {
    m_nSlideMax = static_cast<int>(nWidth);
    m_nThumbPos = 0;
    m_nSlideMin = 0;
    return COrlex::Create(x, y, pParent);
}

void COrlexHorzSlider::LoadBitmap(UINT nThumbId, UINT nBackgroundId) {
    LoadFace(m_NormalBitmap, nThumbId, m_BitmapInfo);
    LoadFace(m_BackgroundBitmap, nBackgroundId, m_BackgroundInfo);
    const long long width = static_cast<long long>(m_nSlideMax) - m_nSlideMin;
    SizeInPlace(static_cast<int>(std::clamp<long long>(width, 0, INT_MAX)), m_BitmapInfo.bmHeight);
}

void COrlexHorzSlider::SetBackgroundColor(COLORREF crBackground) { m_crBackground = crBackground; }

void COrlexHorzSlider::MoveWindow(int x, int y, int nWidth, int nHeight, int bRepaint) {
    const RECT r{x, y, x + nWidth, y + nHeight};
    MoveWindow(&r, bRepaint);
}

void COrlexHorzSlider::MoveWindow(const RECT* pRect, int bRepaint) {
    if (!pRect) return;
    CWnd::MoveWindow(pRect, bRepaint);
    m_nSlideMax = pRect->right - pRect->left;
}

double COrlexHorzSlider::GetPercentSlide() {
    return SlideFraction(m_nThumbPos, m_nSlideMin, m_nSlideMax, m_BitmapInfo.bmWidth);
}

void COrlexHorzSlider::SetPercentSlide(double dPercent) {
    m_nThumbPos = ThumbFromFraction(dPercent, m_nSlideMin, m_nSlideMax, m_BitmapInfo.bmWidth, m_nThumbPos);
    Invalidate(TRUE);
    Send(m_strMessage1);
}

UINT COrlexHorzSlider::GetIndexSlide() { return SlideIndex(GetPercentSlide(), m_nOptionCount); }

UINT COrlexHorzSlider::GetSlideWidth() {
    return static_cast<UINT>(static_cast<long long>(m_nSlideMax) - m_nSlideMin);
}

void COrlexHorzSlider::SetSlideRange(int nMin, int nMax) {
    const double fraction = GetPercentSlide();
    m_nSlideMin = nMin;
    m_nSlideMax = nMax;
    SetPercentSlide(fraction);
}

BITMAP COrlexHorzSlider::GetBackGroundBitmapInfo() { return m_BackgroundInfo; }

void COrlexHorzSlider::SetCtrlOption(CString strOption) {
    COrlex::SetCtrlOption(strOption);
    m_nThumbPos = OptionThumb(m_nOption, m_nOptionCount, m_nSlideMin, m_nSlideMax, m_nThumbPos);
}

int COrlexHorzSlider::HitTest(CPoint point) { return m_bDragging ? 1 : COrlex::HitTest(point); }

void COrlexHorzSlider::InvalidateThumb(int x) {
    const RECT r{x, 0, x + m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight};
    InvalidateRect(&r, TRUE);
}

void COrlexHorzSlider::TrackTo(int x) {
    // Track and background never change under a moving thumb: only where the thumb was
    // and where it is now are painted again.
    InvalidateThumb(m_nThumbPos);
    m_nThumbPos = ClampThumb(x, m_nSlideMin, m_nSlideMax, m_BitmapInfo.bmWidth);
    InvalidateThumb(m_nThumbPos);
}

void COrlexHorzSlider::OnLButtonDown(UINT nFlags, CPoint point) {
    m_bDragging = true;
    TrackTo(point.x);  // the left edge jumps to the pointer: no grab offset
    Send(m_strMessage1);
    COrlex::OnLButtonDown(nFlags, point);
}

void COrlexHorzSlider::OnMouseMove(UINT nFlags, CPoint point) {
    if (HitTest(point) && m_bDragging) {
        TrackTo(point.x);
        Send(m_strMessage1);
    }
    COrlex::OnMouseMove(nFlags, point);
}

void COrlexHorzSlider::OnLButtonUp(UINT nFlags, CPoint point) {
    m_bDragging = false;
    Send(m_strMessage2);
    COrlex::OnLButtonUp(nFlags, point);
}

BOOL COrlexHorzSlider::OnEraseBkgnd(CDC* pDC) {
    // The parent is asked to repaint the slider's screen rectangle, read as its client
    // coordinates. A parent without WS_CLIPCHILDREN passes that to its children with
    // erase, and where the rectangle falls on a slider (a parent near the screen's top
    // left) each such paint would ask for another without end. So the request is made
    // once for each place and thumb position: the erase that the request itself brings
    // back asks for nothing more.
    CRect screen;
    GetWindowRect(&screen);
    const EchoKey key{screen, m_nThumbPos, m_nSlideMin, m_nSlideMax, true};
    const EchoKey& last = m_lastParentErase;
    const bool same = last.valid && EqualRect(&last.screen, &key.screen) && last.thumb == key.thumb &&
                      last.slideMin == key.slideMin && last.slideMax == key.slideMax;
    if (!same) {
        m_lastParentErase = key;
        if (CWnd* parent = GetParent()) parent->InvalidateRect(&screen, TRUE);
    }
    return static_cast<BOOL>(Default());
}

void COrlexHorzSlider::OnPaint() {
    CPaintDC dc(this);
    CDC mem;
    if (!mem.CreateCompatibleDC(&dc)) return;
    CRect rc;
    GetClientRect(&rc);
    dc.SetBkColor(m_crBackground);
    dc.FillSolidRect(&rc, m_crBackground);
    // The track is stretched sideways to the window's width, never in height.
    if (m_BackgroundBitmap.m_hObject) {
        CBitmap* old = mem.SelectObject(&m_BackgroundBitmap);
        dc.StretchBlt(0, 0, rc.Width(), m_BackgroundInfo.bmHeight, &mem, 0, 0, m_BackgroundInfo.bmWidth,
                      m_BackgroundInfo.bmHeight, SRCCOPY);
        mem.SelectObject(old);
    }
    if (m_NormalBitmap.m_hObject) {
        CBitmap* old = mem.SelectObject(&m_NormalBitmap);
        dc.StretchBlt(m_nThumbPos, 0, m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight, &mem, 0, 0, m_BitmapInfo.bmWidth,
                      m_BitmapInfo.bmHeight, SRCCOPY);
        mem.SelectObject(old);
    }
}
