// Windows around an image view for the tests: a host that records the registered messages
// it receives, and a stand-in for the frame with tool buttons that the test sets.
#pragma once

#include <vector>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxwin.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewFrame.h"
#include "support/orlex_test.h"

namespace ivtest {

// One message as it arrived, with copies of what its pointer parameters showed during the
// call (points and cursor records live on the sender's stack). WM_NOTIFY keeps its code,
// WM_RBUTTONUP its point.
struct Received {
    UINT msg = 0;
    WPARAM wp = 0;
    LPARAM lp = 0;
    CPoint point{0, 0};
    CURSOR_POS pos{};
    UINT code = 0;
};

class Recorder : public CWnd {
public:
    std::vector<Received> log;
    LRESULT wheelAnswer = 0;
    LRESULT dblClickAnswer = 0;
    // The registered messages of one kind, in order.
    std::vector<Received> Of(UINT msg) const;
    void Clear() { log.clear(); }
    // Makes a top-level window at (x, y) of this client size.
    bool CreateHost(int w, int h);

protected:
    LRESULT OnZoomEvent(WPARAM wp, LPARAM lp) { return Note(MESSAGE_ZOOM_EVENT_STR, wp, lp); }
    LRESULT OnPanEvent(WPARAM wp, LPARAM lp) { return Note(MESSAGE_IMAGEVIEW_PAN_EVENT, wp, lp); }
    LRESULT OnPanSrc(WPARAM wp, LPARAM lp) { return Note(UPDATE_PAN_SRC_STR, wp, lp); }
    LRESULT OnActivateView(WPARAM wp, LPARAM lp) { return Note(ACTIVATE_VIEW_STR, wp, lp); }
    LRESULT OnMdcUpdate(WPARAM wp, LPARAM lp) { return Note(MESSAGE_IMAGEVIEW_MDC_UPDATE_EVENT, wp, lp); }
    LRESULT OnDblClick(WPARAM wp, LPARAM lp);
    LRESULT OnWheel(WPARAM wp, LPARAM lp);
    LRESULT OnCursorNotify(WPARAM wp, LPARAM lp);
    LRESULT OnToolTip(WPARAM wp, LPARAM lp);
    LRESULT OnRemoveCursor(WPARAM wp, LPARAM lp) { return Note(MESSAGE_REMOVE_CURSOR_STR, wp, lp); }
    LRESULT OnUserRemoveCursor(WPARAM wp, LPARAM lp) { return Note(MESSAGE_USER_REMOVE_CURSOR_STR, wp, lp); }
    LRESULT OnCursorMouse(WPARAM wp, LPARAM lp) { return Note(MESSAGE_CURSOR_MOUSE_STR, wp, lp); }
    LRESULT OnCreateCursor(WPARAM wp, LPARAM lp);
    BOOL OnNotify(WPARAM wp, LPARAM lp, LRESULT* result) override;
    void OnRButtonUp(UINT flags, CPoint point) override;
    LRESULT Note(UINT msg, WPARAM wp, LPARAM lp);
    DECLARE_MESSAGE_MAP()
};

// The frame as the view sees it: buttons, aspect ratio, scan marker switch; its paint
// ends by painting the view, as the real frame's does.
class StandInFrame : public Recorder, public CImageViewFrame {
public:
    CImageView* view = nullptr;
    int zoomButton = 0;
    int panButton = 0;
    int measureButton = 1;
    int rtZoomButton = 0;
    int rtOffsetButton = 0;
    int panEnabled = -1;
    int pushMeasureCalls = 0;
    int lineMarkCalls = 0;
    int uiImageCalls = 0;
    int currentLine = -1;
    BOOL scanLine = TRUE;
    double aspect = 1.0;

    // A child frame of `host` at rect.
    bool CreateFrame(CWnd* host, const CRect& rect);

    CWnd* GetFrameWnd() override { return this; }
    double GetAspectRatio() const override { return aspect; }
    BOOL SetWindowSize(double) override { return FALSE; }
    BOOL SetWindowSize() override { return FALSE; }
    int GetZoomButtonState() const override { return zoomButton; }
    int GetPanButtonState() const override { return panButton; }
    int GetMeasureButtonState() const override { return measureButton; }
    int GetRtZoomState() const override { return rtZoomButton; }
    int GetRtOffSetState() const override { return rtOffsetButton; }
    void EnablePanButton(BOOL enable) override { panEnabled = enable ? 1 : 0; }
    void PushMeasure() override { ++pushMeasureCalls; }
    void CreateUiImage(int&, int&, bool) override { ++uiImageCalls; }
    int GetCurrentLine() const override { return currentLine; }
    BOOL IsScanLineShown() const override { return scanLine; }
    void DrawLineMark() override { ++lineMarkCalls; }

protected:
    void OnPaint() override;
    DECLARE_MESSAGE_MAP()
};

// A colour table with distinct neighbours: entry i is (blue i, green 255 - i, red 3i).
std::vector<tagRGBQUAD> TestTable(int shift = 0);

}  // namespace ivtest
