#include "test_imageview_util.h"

#include <cstdio>

#include "foundation/platform/afxgdi.h"

namespace ivtest {

BEGIN_MESSAGE_MAP(Recorder, CWnd)
    ON_REGISTERED_MESSAGE(MESSAGE_ZOOM_EVENT_STR, OnZoomEvent)
    ON_REGISTERED_MESSAGE(MESSAGE_IMAGEVIEW_PAN_EVENT, OnPanEvent)
    ON_REGISTERED_MESSAGE(UPDATE_PAN_SRC_STR, OnPanSrc)
    ON_REGISTERED_MESSAGE(ACTIVATE_VIEW_STR, OnActivateView)
    ON_REGISTERED_MESSAGE(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT, OnMdcUpdate)
    ON_REGISTERED_MESSAGE(MESSAGE_IMAGEVIEW_DBL_CLICK_STR, OnDblClick)
    ON_REGISTERED_MESSAGE(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR, OnWheel)
    ON_REGISTERED_MESSAGE(MESSAGE_CURSOR_NOTIFY_STR, OnCursorNotify)
    ON_REGISTERED_MESSAGE(MESSAGE_REMOVE_CURSOR_STR, OnRemoveCursor)
    ON_REGISTERED_MESSAGE(MESSAGE_UPDATE_TOOL_TIP, OnToolTip)
    ON_REGISTERED_MESSAGE(MESSAGE_USER_REMOVE_CURSOR_STR, OnUserRemoveCursor)
    ON_REGISTERED_MESSAGE(MESSAGE_CURSOR_MOUSE_STR, OnCursorMouse)
    ON_REGISTERED_MESSAGE(MESSAGE_CREATE_CURSOR_STR, OnCreateCursor)
    ON_WM_RBUTTONUP()
END_MESSAGE_MAP()

BEGIN_MESSAGE_MAP(StandInFrame, Recorder)
    ON_WM_PAINT()
END_MESSAGE_MAP()

std::vector<Received> Recorder::Of(UINT msg) const
{
    std::vector<Received> out;
    for (const Received& r : log)
        if (r.msg == msg) out.push_back(r);
    return out;
}

bool Recorder::CreateHost(int w, int h)
{
    return CreateEx(0, nullptr, "image view host", WS_POPUP | WS_VISIBLE, CRect(50, 50, 50 + w, 50 + h), nullptr, 0) !=
           FALSE;
}

LRESULT Recorder::Note(UINT msg, WPARAM wp, LPARAM lp)
{
    Received r;
    r.msg = msg;
    r.wp = wp;
    r.lp = lp;
    log.push_back(r);
    return 0;
}

LRESULT Recorder::OnDblClick(WPARAM wp, LPARAM lp)
{
    Note(MESSAGE_IMAGEVIEW_DBL_CLICK_STR, wp, lp);
    if (lp) log.back().point = *reinterpret_cast<CPoint*>(lp);
    return dblClickAnswer;
}

LRESULT Recorder::OnWheel(WPARAM wp, LPARAM lp)
{
    Note(MESSAGE_IMAGEVIEW_MOUSE_WHEEL_STR, wp, lp);
    if (lp) log.back().point = *reinterpret_cast<CPoint*>(lp);
    return wheelAnswer;
}

LRESULT Recorder::OnCursorNotify(WPARAM wp, LPARAM lp)
{
    Note(MESSAGE_CURSOR_NOTIFY_STR, wp, lp);
    if (lp) log.back().pos = *reinterpret_cast<CURSOR_POS*>(lp);
    return 0;
}

LRESULT Recorder::OnCreateCursor(WPARAM wp, LPARAM lp)
{
    Note(MESSAGE_CREATE_CURSOR_STR, wp, lp);
    if (lp) log.back().pos = *reinterpret_cast<CURSOR_POS*>(lp);
    return 0;
}

BOOL Recorder::OnNotify(WPARAM wp, LPARAM lp, LRESULT* result)
{
    Note(WM_NOTIFY, wp, lp);
    if (lp) log.back().code = reinterpret_cast<NMHDR*>(lp)->code;
    return CWnd::OnNotify(wp, lp, result);
}

void Recorder::OnRButtonUp(UINT flags, CPoint point)
{
    Note(WM_RBUTTONUP, flags, 0);
    log.back().point = point;
}

// Answers the coordinate tooltip's request with "x=<x> y=<y>".
LRESULT Recorder::OnToolTip(WPARAM wp, LPARAM lp)
{
    Note(MESSAGE_UPDATE_TOOL_TIP, wp, lp);
    auto* req = reinterpret_cast<CoordTipRequest*>(lp);
    if (req) {
        log.back().point = req->point;
        std::snprintf(req->text, sizeof req->text, "x=%d y=%d", int(req->point.x), int(req->point.y));
    }
    return 0;
}

bool StandInFrame::CreateFrame(CWnd* host, const CRect& rect)
{
    return Create(nullptr, "frame", WS_CHILD | WS_VISIBLE, rect, host, 1) != FALSE;
}

void StandInFrame::OnPaint()
{
    CPaintDC dc(this);
    if (view && view->GetSafeHwnd()) {
        view->Invalidate(FALSE);
        view->UpdateWindow();
    }
}

std::vector<tagRGBQUAD> TestTable(int shift)
{
    std::vector<tagRGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) {
        const int k = (i + shift) & 255;
        t[i].rgbBlue = BYTE(k);
        t[i].rgbGreen = BYTE(255 - k);
        t[i].rgbRed = BYTE(3 * k);
        t[i].rgbReserved = 0;
    }
    return t;
}

}  // namespace ivtest
