// Image view: the cursor tooltip (with the fixed text of display level 3) and the
// coordinate tooltip, whose text the host writes for each mouse point.
#include <cstring>

#include "foundation/MessageCatalogue.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewFrame.h"

namespace {

// Tracking tool of the whole window at an absolute screen position.
constexpr UINT kTipToolFlags = TTF_IDISHWND | TTF_TRACK | TTF_ABSOLUTE;  // 0xA1
constexpr UINT_PTR kCursorTipTimer = 29836;
constexpr UINT_PTR kCoordTipTimer = 2762045;
constexpr UINT kTipPeriodMs = 1000;
constexpr int kTipOffset = 15;

}  // namespace

bool CImageView::MakeTip(CToolTipCtrl& tip)
{
    if (!tip.Create(this)) return false;
    TOOLINFO ti;
    ti.uFlags = kTipToolFlags;
    ti.hwnd = m_hWnd;
    ti.uId = reinterpret_cast<UINT_PTR>(m_hWnd);
    char blank[] = " ";
    ti.lpszText = blank;
    if (!tip.SendMessage(TTM_ADDTOOL, 0, reinterpret_cast<LPARAM>(&ti))) return false;
    tip.SendMessage(TTM_SETMAXTIPWIDTH, 0, 32767);
    return true;
}

void CImageView::TrackTip(CToolTipCtrl& tip, const char* text, POINT screen)
{
    if (!tip.GetSafeHwnd()) return;
    TOOLINFO ti;
    ti.uFlags = kTipToolFlags;
    ti.hwnd = m_hWnd;
    ti.uId = reinterpret_cast<UINT_PTR>(m_hWnd);
    ti.lpszText = const_cast<LPSTR>(text);
    tip.SendMessage(TTM_ACTIVATE, TRUE, 0);
    tip.SendMessage(TTM_UPDATETIPTEXT, 0, reinterpret_cast<LPARAM>(&ti));
    tip.SendMessage(TTM_TRACKPOSITION, 0, MAKELPARAM(WORD(screen.x), WORD(screen.y)));
    tip.SendMessage(TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&ti));
}

void CImageView::HideTip(CToolTipCtrl& tip, bool activate)
{
    if (!tip.GetSafeHwnd()) return;
    TOOLINFO ti;
    ti.uFlags = kTipToolFlags;
    ti.hwnd = m_hWnd;
    ti.uId = reinterpret_cast<UINT_PTR>(m_hWnd);
    tip.SendMessage(TTM_TRACKACTIVATE, FALSE, reinterpret_cast<LPARAM>(&ti));
    if (activate) tip.SendMessage(TTM_ACTIVATE, FALSE, 0);
}

int CImageView::OnCreate(LPCREATESTRUCT cs)
{
    if (CWnd::OnCreate(cs) == -1) return -1;
    CreateTipMarker();
    // A failed tooltip leaves the view usable without it.
    MakeTip(m_toolTip);
    return 0;
}

void CImageView::setCoordinateDisplay(bool on)
{
    if (m_coordTimer && m_hWnd) KillTimer(m_coordTimer);
    m_coordTimer = 0;
    m_bCoordTipShown = 0;
    delete m_pCoordTip;
    m_pCoordTip = nullptr;
    if (!on || !m_hWnd) return;
    m_pCoordTip = new CToolTipCtrl;
    MakeTip(*m_pCoordTip);
}

void CImageView::CoordTipOnMouseMove(UINT flags, CPoint point)
{
    if (!m_pCoordTip || !GetParent()) return;
    // With one button or one key alone held (a drag, a click) the tip stays out of the way.
    if (flags == MK_LBUTTON || flags == MK_RBUTTON || flags == MK_SHIFT || flags == MK_CONTROL || flags == MK_MBUTTON) {
        if (m_bCoordTipShown) {
            HideTip(*m_pCoordTip, false);
            m_bCoordTipShown = 0;
        }
        return;
    }
    CPoint tip = point;
    ClientToScreen(&tip);
    tip.Offset(kTipOffset, kTipOffset);
    CoordTipRequest request{};
    request.point = point;
    if (CWnd* fp = FrameParent())
        fp->SendMessage(MESSAGE_UPDATE_TOOL_TIP, flags, reinterpret_cast<LPARAM>(&request));
    request.text[sizeof request.text - 1] = '\0';
    if (m_bTrackToolTip) TrackTip(*m_pCoordTip, request.text, tip);
    m_bCoordTipShown = 1;
    if (!m_coordTimer) m_coordTimer = SetTimer(kCoordTipTimer, kTipPeriodMs);
}

void CImageView::FixedTipOnMouseMove()
{
    if (m_nTooltipDisplayLevel == 3 && !m_strToolTipText.IsEmpty()) {
        if (m_bTipShown) return;
        CRect w;
        GetWindowRect(&w);
        TrackTip(m_toolTip, m_strToolTipText.GetString(), w.TopLeft());
        m_bTipShown = 1;
        if (!m_tipTimer) m_tipTimer = SetTimer(kCursorTipTimer, kTipPeriodMs);
        return;
    }
    if (m_bTipShown) {
        HideTip(m_toolTip, false);
        m_bTipShown = 0;
    }
}

void CImageView::OnTimer(UINT_PTR id)
{
    CPoint mouse;
    GetCursorPos(&mouse);
    CRect w;
    GetWindowRect(&w);
    const bool inside = w.PtInRect(mouse) != FALSE;
    if (id == kCursorTipTimer) {
        if (!inside) {
            KillTimer(kCursorTipTimer);
            m_tipTimer = 0;
            HideTip(m_toolTip, true);
            m_bTipShown = 0;
        }
        return;
    }
    if (id == kCoordTipTimer) {
        if (!m_pCoordTip || !inside) {
            KillTimer(kCoordTipTimer);
            m_coordTimer = 0;
            if (m_pCoordTip) HideTip(*m_pCoordTip, true);
            m_bCoordTipShown = 0;
        }
        return;
    }
    CWnd::OnTimer(id);
}
