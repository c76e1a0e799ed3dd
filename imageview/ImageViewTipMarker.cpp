// Image view: its tip marker, the one cursor the view owns by value. It is made with the
// view's window, lies under every cursor, and is moved and shown only by the host.
#include "imageview/ImageView.h"

void CImageView::CreateTipMarker()
{
    CRect c;
    GetClientRect(&c);
    m_tipCursor.Create(this, c.CenterPoint(), 0);
    m_tipCursor.SetColor(0xFFFFFF, false);
    m_tipCursor.SetScale(1.0, 1.0, 1.0, 1.0);
    if (m_tipCursor.m_hWnd) m_tipCursor.SetWindowPos(&CWnd::wndBottom, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void CImageView::SetTipCursorScale(double scanLen)
{
    CRect w(0, 0, 0, 0);
    if (m_hWnd) GetWindowRect(&w);
    const double x = w.Width() ? scanLen / w.Width() : 0.0;
    const double y = w.Height() ? scanLen / w.Height() : 0.0;
    m_tipCursor.SetScale(x, y, m_scanLen.x, m_scanLen.y);
}
