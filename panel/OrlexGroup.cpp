#include "panel/OrlexGroup.h"

#include <string>

#include "panel/PanelMath.h"

using namespace orlex::panel;

IMPLEMENT_DYNAMIC(COrlexGroup, COrlexToggleButton)

BEGIN_MESSAGE_MAP(COrlexGroup, COrlexToggleButton)
    ON_WM_SETCURSOR()
    ON_WM_PAINT()
    ON_WM_LBUTTONUP()
    ON_WM_MOUSEMOVE()
END_MESSAGE_MAP()

namespace {
// The frame pieces, in the order LoadBorderBitmaps takes them.
enum Piece { kLeft, kRight, kTop, kBottom, kTopLeft, kTopRight, kBottomLeft, kBottomRight };
}  // namespace

COrlexGroup::COrlexGroup() {
    // The collapse button's size until a face is loaded.
    m_BitmapInfo.bmWidth = 10;
    m_BitmapInfo.bmHeight = 10;
}

COrlexGroup::~COrlexGroup() {
    for (CBitmap& b : m_BorderBitmaps) b.DeleteObject();
}

int COrlexGroup::Create(UINT x, UINT y, UINT nWidth, UINT nHeight, CWnd* pParent, int bVertical) {
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_bVertical = bVertical;
    return COrlex::Create(x, y, pParent);
}

void COrlexGroup::LoadBitmap(UINT nId) {
    COrlex::LoadBitmap(nId);
    m_bHasButton = 1;
}

void COrlexGroup::LoadClickBitmap(UINT nId) {
    COrlex::LoadClickBitmap(nId);
    m_bHasButton = 1;
}

void COrlexGroup::LoadBorderBitmaps(UINT nLeft, UINT nRight, UINT nTop, UINT nBottom, UINT nTopLeft, UINT nTopRight,
                                    UINT nBottomLeft, UINT nBottomRight) {
    const UINT ids[8] = {nLeft, nRight, nTop, nBottom, nTopLeft, nTopRight, nBottomLeft, nBottomRight};
    for (int i = 0; i < 8; ++i) LoadFace(m_BorderBitmaps[i], ids[i], m_BorderInfo[i]);
    m_nCollapseWidth = static_cast<UINT>(m_BitmapInfo.bmWidth + 2 * m_ptButton.x);
    m_nCollapseHeight = static_cast<UINT>(m_BorderInfo[kTop].bmHeight - 1);
    m_bHasBorder = 1;
}

void COrlexGroup::SetFont(UINT nHeight, CString strFace) {
    m_nFontHeight = static_cast<int>(nHeight);
    m_strFontFace = strFace;
}

void COrlexGroup::SetTextColor(UINT nRed, UINT nGreen, UINT nBlue) {
    m_nTextRed = static_cast<int>(nRed);
    m_nTextGreen = static_cast<int>(nGreen);
    m_nTextBlue = static_cast<int>(nBlue);
}

void COrlexGroup::SetTextWeight(UINT nWeight) { m_nTextWeight = static_cast<int>(nWeight); }
void COrlexGroup::SetBackgroundColor(COLORREF crBackground) { m_crBackground = crBackground; }
void COrlexGroup::SetLabel(CString strLabel) { m_strLabel = strLabel; }

UINT COrlexGroup::GetWidth() { return m_nWidth; }
UINT COrlexGroup::GetHeight() { return m_nHeight; }
UINT COrlexGroup::GetCollapseWidth() { return m_nCollapseWidth; }
UINT COrlexGroup::GetCollapseHeight() { return m_nCollapseHeight; }
UINT COrlexGroup::GetImageWidth() { return static_cast<UINT>(m_BitmapInfo.bmWidth); }
UINT COrlexGroup::GetImageHeight() { return static_cast<UINT>(m_BitmapInfo.bmHeight); }

void COrlexGroup::SetWidth(UINT nWidth) {
    m_nWidth = nWidth;
    UpdateSize();
}

void COrlexGroup::SetHeight(UINT nHeight) {
    m_nHeight = nHeight;
    UpdateSize();
}

void COrlexGroup::SetCollapseWidth(UINT nWidth) {
    m_nCollapseWidth = nWidth;
    UpdateSize();
}

void COrlexGroup::SetCollapseHeight(UINT nHeight) {
    m_nCollapseHeight = nHeight;
    UpdateSize();
}

void COrlexGroup::UpdateSize() {
    // Expanded means a state above 0, as SetState shows the children.
    const SIZE s = GroupSize(m_nToggleState > 0, m_bVertical != 0, m_nWidth, m_nHeight, m_nCollapseWidth,
                             m_nCollapseHeight);
    SetWindowPos(nullptr, 0, 0, s.cx, s.cy, SWP_NOMOVE | SWP_NOZORDER);
}

void COrlexGroup::MoveWindowX(UINT x) {
    CRect r;
    GetWindowRect(&r);
    if (CWnd* parent = GetParent()) parent->ScreenToClient(&r);
    CWnd::MoveWindow(static_cast<int>(x), r.top, r.Width(), r.Height(), TRUE);
}

void COrlexGroup::SetState(int nState) {
    for (CWnd* child = GetWindow(GW_CHILD); child; child = child->GetWindow(GW_HWNDNEXT))
        child->ShowWindow(nState > 0 ? SW_SHOW : SW_HIDE);
    COrlexToggleButton::SetState(nState);
    UpdateSize();
}

void COrlexGroup::OnMouseMove(UINT nFlags, CPoint point) {
    if (!m_bHasButton) return;
    m_bOverButton = OverGroupButton(point, m_ptButton, m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight);
    // No capture and no rollover: only the pointer follows the button.
    SendMessage(WM_SETCURSOR, 0, 0);
}

BOOL COrlexGroup::OnSetCursor(CWnd* pWnd, UINT nHitTest, UINT message) {
    if (m_bOverButton) return COrlex::OnSetCursor(pWnd, nHitTest, message);
    return static_cast<BOOL>(Default());
}

void COrlexGroup::OnLButtonUp(UINT nFlags, CPoint point) {
    if (m_bOverButton) SetState(GetState() ? 0 : 1);
    COrlex::OnLButtonUp(nFlags, point);
}

void COrlexGroup::DrawBorder(CDC& dc, CDC& mem, int width, int height) {
    // Sides first, stretched along the frame, then the corners at their own size over them.
    struct Place {
        Piece piece;
        bool right, bottom, stretchX, stretchY;
    };
    static const Place order[] = {
        {kLeft, false, false, false, true},       {kRight, true, false, false, true},
        {kBottom, false, true, true, false},      {kTop, false, false, true, false},
        {kBottomLeft, false, true, false, false}, {kBottomRight, true, true, false, false},
        {kTopLeft, false, false, false, false},   {kTopRight, true, false, false, false},
    };
    for (const Place& p : order) {
        CBitmap& b = m_BorderBitmaps[p.piece];
        const BITMAP& info = m_BorderInfo[p.piece];
        if (!b.m_hObject) continue;
        const int w = p.stretchX ? width : info.bmWidth, h = p.stretchY ? height : info.bmHeight;
        CBitmap* old = mem.SelectObject(&b);
        dc.StretchBlt(p.right ? width - info.bmWidth : 0, p.bottom ? height - info.bmHeight : 0, w, h, &mem, 0, 0,
                      info.bmWidth, info.bmHeight, SRCCOPY);
        mem.SelectObject(old);
    }
}

void COrlexGroup::DrawLabel(CDC& dc) {
    const bool vertical = m_bVertical == 1 && m_nToggleState == 0;
    dc.SetBkMode(TRANSPARENT);
    dc.SetTextColor(static_cast<COLORREF>(m_nTextRed | m_nTextGreen << 8 | m_nTextBlue << 16));
    CFont font;
    CFont* old = nullptr;
    if (font.CreateFont(m_nFontHeight, 0, vertical ? -900 : 0, 0, m_nTextWeight, 0, 0, 0, 0, 0, 0, 0, 0,
                        m_strFontFace))
        old = dc.SelectObject(&font);
    int k = 0;
    for (const std::string& line : TextPieces(m_strLabel)) {
        const POINT at = GroupLabelLine(k++, vertical, m_ptButton, m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight,
                                        m_nFontHeight);
        dc.TextOut(at.x, at.y, line.c_str(), static_cast<int>(line.size()));
    }
    if (old) dc.SelectObject(old);
}

void COrlexGroup::OnPaint() {
    CPaintDC dc(this);
    CRect wr;
    GetWindowRect(&wr);
    const int width = wr.Width(), height = wr.Height();
    dc.SetBkColor(m_crBackground);
    dc.FillSolidRect(0, 0, width, height, m_crBackground);
    CDC mem;
    if (!mem.CreateCompatibleDC(&dc)) return;
    if (m_bHasBorder) {
        DrawBorder(dc, mem, width, height);
    } else {
        // The context's own brush (white) fills the frame.
        CPen black(PS_SOLID, 1, RGB(0, 0, 0));
        CPen* old = dc.SelectObject(&black);
        dc.Rectangle(0, 0, width, height);
        dc.SelectObject(old);
    }
    if (m_bHasButton)
        DrawFace(dc, mem, m_nToggleState ? m_ClickBitmap : m_NormalBitmap, m_ptButton.x, m_ptButton.y,
                 m_BitmapInfo.bmWidth, m_BitmapInfo.bmHeight);
    DrawLabel(dc);
}
