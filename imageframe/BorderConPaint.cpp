// Image frame: painting of everything around the image, and the mark of the scan line.
#include <cstring>

#include "foundation/Convert2Eng.h"
#include "imageframe/BorderCon.h"

namespace {

constexpr COLORREF kWhite = 0xFFFFFF;
constexpr COLORREF kRed = 0x0000FF;
// The background of a selected off-line frame.
constexpr COLORREF kSelectedOffline = 0xFFD2D2;
constexpr int kColourHighlight = 13;
constexpr int kColourHighlightText = 14;
constexpr int kColourWindowText = 8;
// The view's wipe colour while it has no image.
constexpr int kColourNoImage = 17;

// An Arial font of this height and weight for the frame's texts.
bool MakeArial(CFont& font, int height, int weight)
{
    return font.CreateFont(height, 0, 0, 0, weight, 0, 0, 0, ANSI_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                           DEFAULT_QUALITY, DEFAULT_PITCH | FF_SWISS, "Arial") != FALSE;
}

}  // namespace

BOOL CBorderCon::OnEraseBkgnd(CDC*) { return TRUE; }

COLORREF CBorderCon::BackgroundColour() const
{
    if (m_nSelected) return m_bRealTime ? GetSysColor(kColourHighlight) : kSelectedOffline;
    return m_pBkColor ? *m_pBkColor : kWhite;
}

void CBorderCon::OnPaint()
{
    CPaintDC dc(this);
    const int saved = dc.SaveDC();
    CRect client;
    GetClientRect(&client);
    const COLORREF back = BackgroundColour();
    dc.FillSolidRect(&client, back);
    dc.SetBkColor(back);
    dc.SetTextColor(GetSysColor(m_nSelected && m_bRealTime ? kColourHighlightText : kColourWindowText));
    dc.SelectStockObject(DEFAULT_GUI_FONT);
    if (m_nSelected) dc.SetBkMode(TRANSPARENT);

    const CRect r = ViewRect();
    const CRect g = GetImageWndSize();
    PaintXScale(dc, r, g);
    CString sizeText;
    if (m_bShowXScale) {
        dc.TextOut(g.left, r.bottom + 16, "0.0", 3);
        dc.SetTextAlign(TA_RIGHT);
        GetSizeStr(sizeText);
        if (!sizeText.IsEmpty()) dc.TextOut(g.right, r.bottom + 16, sizeText.GetString(), sizeText.GetLength());
    }
    if (m_bShowTitle) PaintTitle(dc, r, sizeText);
    PaintZLabels(dc, client);
    if (m_nCurrentLine >= 0 && m_nImageRows != 1 && m_imageView.m_hWnd)
        DrawLineMark(orlex::frame::LineMarkY(m_nImageRows, m_nCurrentLine, GetZoomRect(), r), dc, r, false);
    EnableZoomButtons();
    if (m_bAdjustFocus) dc.FillSolidRect(CRect(0, 0, m_margins.left, m_margins.top), kRed);
    dc.RestoreDC(saved);
    // The view paints over the frame: its picture reaches the screen after the frame's.
    if (m_imageView.m_hWnd) {
        m_imageView.Invalidate(TRUE);
        m_imageView.UpdateWindow();
    }
}

void CBorderCon::PaintXScale(CDC& dc, const CRect& r, const CRect& g)
{
    const int y = r.bottom + 8;
    if (m_dAspect >= 1.0 || GetZoomIndex() != 0) {
        if (!m_bShowXScale) return;
        // A bracket over the whole width of the scan.
        dc.MoveTo(g.left, r.bottom + 15);
        dc.LineTo(g.left, y);
        dc.LineTo(g.right, y);
        dc.LineTo(g.right, r.bottom + 16);
        return;
    }
    // A narrower image: arrows from the area's edges to the view's, drawn even without the scale.
    for (int side = 0; side < 2; ++side) {
        const int edge = side == 0 ? g.left : g.right;
        const int view = side == 0 ? r.left : r.right;
        const int s = side == 0 ? 1 : -1;  // toward the view
        dc.MoveTo(edge, r.bottom + 15);
        dc.LineTo(edge, y);
        dc.LineTo(view - 4 * s, y);
        const POINT head[3] = {{view - s, y}, {view - 5 * s, y + 2}, {view - 5 * s, y - 2}};
        dc.MoveTo(head[0].x, head[0].y);
        dc.LineTo(head[1].x, head[1].y);
        dc.LineTo(head[2].x, head[2].y);
        dc.LineTo(head[0].x, head[0].y);
        dc.MoveTo(view, r.bottom + 14);
        dc.LineTo(view, r.bottom + 1);
    }
}

void CBorderCon::PaintTitle(CDC& dc, const CRect& r, const CString& sizeText)
{
    const CString text = orlex::frame::TitleText(m_strTitle, m_nCurChannel, m_nChannels);
    if (text.IsEmpty()) return;
    CFont font;
    if (!MakeArial(font, 16, FW_BOLD)) return;
    CFont* old = dc.SelectObject(&font);
    TEXTMETRIC tm{};
    dc.GetTextMetrics(&tm);
    const long long ave = tm.tmAveCharWidth;
    const long long L = m_bShowXScale ? ave * 3 : 0;
    const long long S = m_bShowXScale ? ave * sizeText.GetLength() : 0;
    const long long T = ave * text.GetLength();
    switch (orlex::frame::PlaceTitle(r.Width(), m_bZoomButsShow != 0, L + S + T)) {
    case orlex::frame::TitlePlace::Below: {
        CRect box(r.left + int(L), r.bottom + 16, r.right - int(S), r.bottom + 16 + tm.tmHeight);
        dc.SetTextAlign(TA_LEFT);
        dc.DrawText(text, &box, DT_CENTER);
        break;
    }
    case orlex::frame::TitlePlace::Top:
        dc.SetTextAlign(TA_LEFT);
        dc.TextOut(r.left, 4, text.GetString(), text.GetLength());
        break;
    case orlex::frame::TitlePlace::None:
        break;
    }
    dc.SelectObject(old);
}

void CBorderCon::PaintZLabels(CDC& dc, const CRect& client)
{
    using orlex::frame::ZLabel;
    CFont font;
    if (!MakeArial(font, 14, FW_NORMAL)) return;
    CFont* old = dc.SelectObject(&font);
    dc.SetTextAlign(TA_RIGHT);
    const int x = client.right - m_margins.left;
    auto out = [&](int y, const CString& s) { dc.TextOut(x, y, s.GetString(), s.GetLength()); };
    if (m_bRelativeColorBar) {
        out(4, ZLabel(m_dScaleMax - m_dScaleMin, m_strUnits));
    } else if (m_bDataScaleMode) {
        out(34, ZLabel(m_dScaleMax, m_strUnits));
        out(client.bottom - m_margins.top - 52, ZLabel(m_dScaleMin, m_strUnits));
    } else {
        out(4, ZLabel(m_dZRange, m_strUnits));
    }
    dc.SelectObject(old);
}

void CBorderCon::EnableZoomButtons()
{
    const int count = m_imageView.GetZoomCount();
    const unsigned index = m_imageView.GetZoomIndex();
    if (m_btnZoomOut.m_hWnd) m_btnZoomOut.EnableWindow(count >= 2 && index != 0);
    if (m_btnZoomIn.m_hWnd) {
        const bool in = m_imageView.IsOneZoom() || (count >= 2 && index != unsigned(count - 1));
        m_btnZoomIn.EnableWindow(in);
    }
}

void CBorderCon::GetSizeStr(CString& text)
{
    char buf[CONVERT2ENG_MAX] = {};
    orlex::Convert2Eng(buf, sizeof buf, m_imageView.GetScanLen() * m_imageView.GetScaleRatio().x, "m", 1, 0);
    text = buf;
}

// The line mark ------------------------------------------------------------------------------------

void CBorderCon::DrawLineMark(int y, CDC& dc, const CRect& r, bool erase)
{
    // White, whatever the background: the column the old mark stood in.
    if (erase) dc.FillSolidRect(CRect(0, r.top - 10, r.left, r.bottom + 10), kWhite);
    POINT tri[3];
    orlex::frame::LineMarkTriangle(y, r, m_margins, m_nDirection, tri);
    CPen pen(PS_SOLID, 1, kRed);
    CBrush brush(kRed);
    CPen* oldPen = dc.SelectObject(&pen);
    CBrush* oldBrush = dc.SelectObject(&brush);
    dc.Polygon(tri, 3);
    dc.SelectObject(oldBrush);
    dc.SelectObject(oldPen);
}

void CBorderCon::DrawLineMark()
{
    if (!m_hWnd || !m_imageView.m_hWnd) return;
    // A client context: invalidating the frame would repaint the whole view for each strip.
    CClientDC dc(this);
    const CRect r = ViewRect();
    DrawLineMark(orlex::frame::LineMarkY(m_nImageRows, m_nCurrentLine, GetZoomRect(), r), dc, r, true);
}

void CBorderCon::CreateUiImage(int&, int&, bool)
{
    if (m_imageView.IsDirect2d()) {
        m_imageView.ClearImage();
        return;
    }
    if (CDC* mem = m_imageView.GetBitmapDC()) {
        CRect c;
        m_imageView.GetClientRect(&c);
        mem->FillSolidRect(&c, GetSysColor(kColourNoImage));
    }
}
