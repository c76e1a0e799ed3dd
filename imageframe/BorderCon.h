// The image frame: the control a host places to show an image. A bordered child window
// that holds, as member objects, one image view, one colour bar and six tool buttons, and
// paints everything around the image itself: the background, the title, the x scale, the
// z labels, the mark of the current scan line and the red flag of the adjustment dialog.
//
// Real time or off-line is fixed by the constructor: it goes to the view and the colour
// bar, and decides margins, button styles and how limits are found. The host hears of the
// user through the frame's parent: WM_NOTIFY (-2 at a left press on the frame, every
// notice of the children passed up, the colour change notice), "MESSAGE_COLOR_CTRL_STR",
// pan and zoom events, "MESSAGE_USER_CONTROL_MSG" for a channel change.
#pragma once

#include <vector>

#include "colour/ColorCtrl.h"
#include "foundation/platform/afx.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "imageframe/FrameLayout.h"
#include "imageframe/ImageAttributes.h"
#include "imageview/ImageView.h"
#include "imageview/ImageViewFrame.h"

// A host's source of data for derived frames; the library only passes it on.
class DataSource;

// Ids of the frame's tool buttons (commands to the frame) and of their icons.
constexpr UINT IDC_FRAME_ZOOM = 10060;
constexpr UINT IDC_FRAME_PAN = 10061;
constexpr UINT IDC_FRAME_MEASURE = 10062;
constexpr UINT IDC_FRAME_ZOOM_IN = 10063;
constexpr UINT IDC_FRAME_ZOOM_OUT = 10064;
constexpr UINT IDC_FRAME_3D = 10069;
// Command that opens the scan line marker's configuration.
constexpr UINT ID_CFG_SCANLINE = 35066;

class CBorderCon : public CWnd, public CImageViewFrame {
    DECLARE_SERIAL(CBorderCon)
public:
    // realTime fixes the frame's kind for its life (view, bar, margins); channel is the
    // number shown in the default title (0 first).
    CBorderCon(bool realTime, int channel);
    CBorderCon() : CBorderCon(false, 0) {}
    ~CBorderCon() override;

    // Makes the frame as child `id` of parent: at rect if given; else, sizeable, square in
    // the parent's client area; else over the parent's child `id` (a placeholder, which is
    // destroyed; `square` makes an off-line frame high enough for a square image). Then the
    // view, the colour bar and the buttons. Non-zero when the frame and the view exist.
    virtual int Create(int id, CWnd* parent, int sizeable, CRect* rect, int square);

    // Images ---------------------------------------------------------------------------------
    // Shows rows x cols values of data (the caller's; an off-line frame keeps the pointer
    // while the image shows) through the bar's table. scanLen: width of the scan in metres;
    // aspect: width to height; zScale: the live limits' scale; zRange, units: the z label;
    // invalid: positions row * cols + col, emptied. Bad values get a message box and the
    // frame goes on.
    virtual void DrawImage(int* data, int rows, int cols, double scanLen, double aspect, double zScale,
                           double zRange, const char* units, std::vector<int> invalid);
    // One line of a live scan. 0 done (or bad arguments, after a message box), 1 no image
    // yet, 2 the frame can't take it (size, aspect, resized: DrawImage again), 3 refused.
    int DrawLine(int* line, int lineNumber, int cols, double scanLen, int direction, double aspect, double zScale,
                 double zRange, const char* units, std::vector<int> invalid);
    // The frame's own image while the view has no bitmap block: fills the view's memory
    // bitmap with system colour 17. a and b are for derived frames and are not touched.
    void CreateUiImage(int& a, int& b, bool redraw) override;
    // Off-line: the view redraws from its block; real time: nothing.
    virtual void UpdateImage(DataSource* source, bool redraw);
    // The text at the right end of the x scale: the shown width in engineering form.
    virtual void GetSizeStr(CString& text);
    CImageView* GetImageView() { return &m_imageView; }
    BOOL IsRealTime() const { return m_bRealTime; }

    // Colours -----------------------------------------------------------------------------------
    // Table `index` of the bar (apply: remember it in the profile); the view, the parent
    // ("MESSAGE_COLOR_CTRL_STR" (0, table)) and the colour notice follow.
    void SetColorTable(int index, int apply);
    void SetContrast(int value, int apply);
    void SetOffset(int value, int apply);
    // A host's table replacing or equalising the bar's: only a differing one is taken.
    void ModifyColorTable(tagRGBQUAD* table);
    void EqualizeColorTable(tagRGBQUAD* table);
    void SetColorTableEqualized(bool on);
    void SetColorTableModified(bool on);
    tagRGBQUAD* GetColorTable() { return m_colorCtrl.GetColorTable(); }
    int GetColorTableIdx() const { return m_colorCtrl.GetColorTableIdx(); }
    int GetContrast() const { return m_colorCtrl.GetContrast(); }
    int GetOffset() const { return m_colorCtrl.GetOffset(); }
    CColorCtrl* GetColorCtrl() { return &m_colorCtrl; }
    // WM_NOTIFY with code "MESSAGE_COLOR_CTRL_STR" to the parent and its parent.
    void ColorChangeNotify();
    void UpdateColorBar() { m_colorCtrl.UpdateControl(); }

    // Layout -------------------------------------------------------------------------------
    // The image area in client coordinates (see orlex::frame::ImageArea).
    CRect GetImageWndSize();
    // Fits the view to an aspect ratio (width to height) inside the image area; non-zero
    // when it was moved or sized.
    BOOL SetWindowSize(double aspect) override;
    BOOL SetWindowSize() override { return SetWindowSize(m_dAspect); }
    // Follow WM_SIZE from now on, and lay out at the present size.
    void SetSizeable();
    void SetZoomButsShow(int show);
    int IsZoomButsShow() const { return m_bZoomButsShow; }
    // How much higher than wide a frame must be to hold a square image.
    int GetSquareFactor() const { return m_margins.bottom - m_margins.right - m_margins.left + m_margins.top; }
    double GetAspectRatio() const override { return m_dAspect; }
    BOOL IsSquareImage() const { return orlex::frame::IsSquareAspect(m_dAspect); }
    const orlex::frame::Margins& GetMargins() const { return m_margins; }

    // Labels ------------------------------------------------------------------------------------
    void SetTitle(const char* title) { m_strTitle = title ? title : ""; }
    void SetShowTitle(int show) { m_bShowTitle = show; }
    void ShowTitle(int show) { m_bShowTitle = show; }
    void SetShowXScale(int show) { m_bShowXScale = show; }
    void SetChannelNum(int channels) { m_nChannels = channels; }
    int GetCurChannel() const { return m_nCurChannel; }
    // A new channel repaints; with notify the parent gets "MESSAGE_USER_CONTROL_MSG" (100, frame).
    void SetCurChannel(int channel, bool notify);
    // The z label's value (taken only below the largest float) and units; repaint: now.
    void ResetZScale(double range, const char* units, bool repaint);
    // Labels and limits of the data scale mode; nothing is repainted.
    void SetDataScaleMode(double min, double max, double ratio, __int64 low, __int64 high);
    // The tip's scale and the x scale's strip repainted.
    void SetScale(double scanLen);
    // A new scan width (clear: delete the cursors when it changed).
    void SetScanLen(double length, bool clear);
    // The bar shows a relative range; the parent gets WM_SIZE to lay out again.
    void SetRelativeColorBar(bool on);
    void SetSelected(int selected) { m_nSelected = selected; }
    // The red flag of the adjustment dialog, repainted at once.
    void SetAdjustFocus(int value);
    void SetClearOnChange(int on) { m_bClearOnChange = on; }
    int GetCurrentLine() const override { return m_nCurrentLine; }

    // Live scan ---------------------------------------------------------------------------------
    // Moves the mark of the current line (drawn by a client context, erasing the old one).
    void DrawLineMark() override;
    BOOL IsScanLineShown() const override { return m_attributes.m_bScanLine; }
    void EnableScanLine(int on) { m_attributes.m_bScanLine = on; }
    IMAGE_ATTRIBUTES GetImageAttributes() const { return m_attributes; }

    // Buttons ----------------------------------------------------------------------------------
    int GetMeasState() const { return m_btnMeasure.m_hWnd ? m_btnMeasure.GetCheck() : 0; }
    int GetPanState() const { return m_btnPan.m_hWnd ? m_btnPan.GetCheck() : 0; }
    int GetZoomState() const { return m_btnZoom.m_hWnd ? m_btnZoom.GetCheck() : 0; }
    void SetMeasState(int on) { SetCheckOf(m_btnMeasure, on); }
    void SetPanState(int on) { SetCheckOf(m_btnPan, on); }
    void SetZoomState(int on) { SetCheckOf(m_btnZoom, on); }
    // Check states of the optional tool buttons of a derived frame (0 without them).
    int GetRtZoomState() const override;
    int GetRtOffSetState() const override;
    void EnablePan(int on);
    void Enable3dLighting(bool on);
    void EnableColorCtrl(int on);
    // Press a tool button from code: nothing if it is checked already.
    void PushMeasure() override;
    void PushPan();
    void PushZoom();
    // One zoom step (1 in, -1 out); notify: tell the host (off-line).
    void OnPbZoomInOut(int step, bool notify);

    // The view's settings ------------------------------------------------------------------------
    void DisableZoomState(int notify) { m_imageView.DisableZoomState(notify); }
    void EnableToolText(int on) { m_imageView.EnableToolText(on); }
    void FlushImage(bool clear) { m_imageView.FlushImage(clear); }
    int GetPanMode() const { return m_imageView.GetPanMode(); }
    unsigned GetZoomIndex() const { return m_imageView.GetZoomIndex(); }
    CRect GetZoomRect() const { return m_imageView.GetZoomRect(); }
    int GetInvalidDataDisp() const { return m_imageView.GetInvalidDataDisp(); }
    CString GetInvalidDataDispStr() const { return m_imageView.GetInvalidDataDispStr(); }
    void SetInvalidDataDisp(int v) { m_imageView.SetInvalidDataDisp(v); }
    void SetInvalidDataDispByStr(CString name) { m_imageView.SetInvalidDataDispByStr(name); }
    void SetAllowInvalidDataDisp(bool allow) { m_imageView.SetAllowInvalidDataDisp(allow); }
    void SetTooltipDisplayLevel(int level) { m_imageView.SetTooltipDisplayLevel(level); }
    int GetTooltipDisplayLevel() const { return m_imageView.GetTooltipDisplayLevel(); }
    void SetTrackToolTip(int on) { m_imageView.SetTrackToolTip(on); }
    double GetScanLen() const { return m_imageView.GetScanLen(); }
    void SetMode(int mode)
    {
        m_imageView.SetMode(mode);
        m_attributes.m_nMode = mode;
    }
    void SetAllowableCursors(int n)
    {
        m_imageView.SetAllowableCursors(n);
        m_attributes.m_nAllowableCursors = n;
    }
    void SetDeleteLastOnNew(int on)
    {
        m_imageView.SetDeleteLastOnNew(on);
        m_attributes.m_bDeleteLastOnNew = on;
    }
    // The record's copy, and the view's limit, delete-last and mode from it.
    void SetImageAttributes(IMAGE_ATTRIBUTES& attributes);

    // Cursors and the tip marker, as the view has them ----------------------------------------
    void ClearAllCursors(int notify, int all) { m_imageView.ClearAllCursors(notify, all); }
    int ConvertUnits(dblPoint* units, POINT* pixels, int count, int toPixels, eConvertUnits unit)
    {
        return m_imageView.ConvertUnits(units, pixels, count, toPixels, unit);
    }
    POSITION GetCursorHeadPosition() const { return m_imageView.GetCursorHeadPosition(); }
    POSITION GetCursorPosition(int index) const { return m_imageView.GetCursorPosition(index); }
    CBaseCursor* GetCursorNextPosition(POSITION& pos, IMAGE_CURSOR_TYPES& types)
    {
        return m_imageView.GetCursorNextPosition(pos, types);
    }
    CBaseCursor* GetCursorNextPosition(POSITION& pos, const CRuntimeClass* cls)
    {
        return m_imageView.GetCursorNextPosition(pos, cls);
    }
    CBaseCursor* GetCursorNextPosition(POSITION& pos, eCursorType type)
    {
        return m_imageView.GetCursorNextPosition(pos, type);
    }
    CURSOR_POS GetFirstCursorPos() { return m_imageView.GetFirstCursorPos(); }
    CURSOR_POS GetNextCursorPos() { return m_imageView.GetNextCursorPos(); }
    int GetNumCursors(IMAGE_CURSOR_TYPES& types) { return m_imageView.GetNumCursors(types); }
    int GetNumCursors(eCursorType type) { return m_imageView.GetNumCursors(type); }
    void RegisterCursorCallback(int (*fn)(int, int, tCursorOptionData&, void*), void* data)
    {
        m_imageView.RegisterCursorCallback(fn, data);
    }
    void SetCrossCursorSize(int size) { m_imageView.SetCrossCursorSize(size); }
    void SetCursorStyle(int style) { m_imageView.SetCursorStyle(style); }
    void SetDirectionMark(int on) { m_imageView.SetDirectionMark(on); }
    void SetSelectColor(COLORREF c) { m_imageView.SetSelectColor(c); }
    void SetTipColor(COLORREF c) { m_imageView.SetTipColor(c); }
    void SetTipCursorPos(double x, double y) { m_imageView.SetTipCursorPos(x, y); }
    void SetTipCursorPos(CPoint p) { m_imageView.SetTipCursorPos(p); }
    void ShowTipCursor(int show) { m_imageView.ShowTipCursor(show); }

    // The view asks ---------------------------------------------------------------------------------
    CWnd* GetFrameWnd() override { return this; }
    int GetZoomButtonState() const override { return GetZoomState(); }
    int GetPanButtonState() const override { return GetPanState(); }
    int GetMeasureButtonState() const override { return GetMeasState(); }
    void EnablePanButton(BOOL enable) override { EnablePan(enable); }

protected:
    virtual LRESULT OnPanEvent(WPARAM wParam, LPARAM lParam);
    virtual LRESULT OnZoomEvent(WPARAM wParam, LPARAM lParam);
    LRESULT OnColorCtrlMessage(WPARAM wParam, LPARAM lParam);
    LRESULT OnSetAdjustFocus(WPARAM wParam, LPARAM lParam);
    void OnPaint() override;
    BOOL OnEraseBkgnd(CDC* dc) override;
    void OnSize(UINT type, int cx, int cy) override;
    void OnLButtonDown(UINT flags, CPoint point) override;
    BOOL OnNotify(WPARAM wParam, LPARAM lParam, LRESULT* result) override;
    BOOL OnToolTipNotify(UINT id, NMHDR* nm, LRESULT* result);
    void OnPbMeasure();
    void OnPbPan();
    void OnPbZoom();
    void OnPbZoomIn() { OnPbZoomInOut(1, true); }
    void OnPbZoomOut() { OnPbZoomInOut(-1, true); }
    void OnCfgScanLine();
    DECLARE_MESSAGE_MAP()

private:
    void SetCheckOf(CButton& b, int on)
    {
        if (b.m_hWnd) b.SetCheck(on);
    }
    // The children after the frame's window: colour bar, buttons, tooltips.
    void CreateChildren(int id);
    void CreateButtons();
    // Lays the children out for a new client size (sizeable frames only).
    void ResizeControls(int cx, int cy);
    // The right margin by the bar's kind and the data scale labels.
    int ComputeRightMargin() const;
    // A tool button's click: the three are a group a click can't empty.
    void OnToolButton(CButton& button, int code);
    // Unchecks the optional real-time zoom or offset button; 1 if one was unchecked.
    int SetRtZO_Off();
    // The view's window rectangle in client coordinates.
    CRect ViewRect();
    void DrawLineMark(int y, CDC& dc, const CRect& r, bool erase);
    // Paint steps.
    COLORREF BackgroundColour() const;
    void PaintXScale(CDC& dc, const CRect& r, const CRect& g);
    void PaintTitle(CDC& dc, const CRect& r, const CString& sizeText);
    void PaintZLabels(CDC& dc, const CRect& client);
    void EnableZoomButtons();
    // After the bar's table changed: the view, the parent and the colour notice.
    void PassOnColorTable();

    CImageView m_imageView;
    IMAGE_ATTRIBUTES m_attributes;
    CButton m_btnZoom, m_btnPan, m_btnMeasure, m_btnZoomIn, m_btnZoomOut, m_btn3d;
    HICON m_hIcons[6] = {};
    CButton* m_pRtZoomBtn = nullptr;
    CButton* m_pRtOffsetBtn = nullptr;
    int m_nSelected = 0;
    int m_nDirection = 0;
    CString m_strUnits = "m";
    double m_dZRange = 1.0;
    double m_dAspect = 1.0;
    double m_dScaleMin = 0.0;
    double m_dScaleMax = 0.0;
    __int64 m_nScaleLow = 0;
    __int64 m_nScaleHigh = 0;
    bool m_bDataScaleMode;
    bool m_bRelativeColorBar = false;
    double m_dScaleRatio = 1.0;
    int m_nImageRows = 1;
    CColorCtrl m_colorCtrl;
    int m_bShowTitle = 1;
    CString m_strTitle;
    int m_bShowXScale = 1;
    int m_bClearOnChange = 1;
    int m_nCurrentLine = -1;
    int m_nCurChannel;
    int m_nChannels = 1;
    int m_bInitMeasure = 1, m_bInitZoom = 0, m_bInitPan = 0;
    COLORREF* m_pBkColor = nullptr;
    bool m_bRealTime;
    int m_bSetTipDelay = 1;
    int m_bSizeable = 0;
    int m_bResized = 0;
    int m_bAdjustFocus = 0;
    int m_bZoomButsShow = 1;
    int m_bEnableMeasure = 1, m_bEnableZoom = 1, m_bEnablePan = 0;
    int m_bDataScaleDialog = 0;
    orlex::frame::Margins m_margins;
    CRect m_rect{0, 0, 0, 0};
};
