// COrlexHorzSlider: a bitmap thumb on a bitmap track, stretched sideways to the window's
// width. It knows a pixel position (the thumb's left edge) and offers it as a fraction of
// the run, 0.0 at the left end and 1.0 at the right. A press puts the thumb's left edge
// at the pointer; a drag follows the pointer's x however far it strays and stops at the
// ends. Texts: m1 on the press, on each move of a drag and on SetPercentSlide; m2 then m1
// on the release; "OrlexHelp" when the pointer enters.
#pragma once

#include "panel/Orlex.h"

class COrlexHorzSlider : public COrlex {
    DECLARE_DYNAMIC(COrlexHorzSlider)
public:
    COrlexHorzSlider();
    ~COrlexHorzSlider() override;

    // SetCtrlOption(UINT) stays the base's: it leaves the thumb where it is.
    using COrlex::SetCtrlOption;

    // Makes the window at (x, y) with a slide nWidth wide (the thumb at its left end);
    // LoadBitmap gives the window its size.
    virtual int Create(UINT x, UINT y, UINT nWidth, CWnd* pParent);
    // Loads thumb and track and sizes the window to the slide's width and the thumb's
    // height at its present place (the track's height does not count).
    virtual void LoadBitmap(UINT nThumbId, UINT nBackgroundId);
    // The colour behind track and thumb (default white); shows at the next paint.
    virtual void SetBackgroundColor(COLORREF crBackground);
    // Move the window; the slide's right end becomes the new width. The thumb keeps its
    // pixel position.
    virtual void MoveWindow(int x, int y, int nWidth, int nHeight, int bRepaint);
    virtual void MoveWindow(const RECT* pRect, int bRepaint);
    // The thumb's place as a fraction of its run (0.0 .. 1.0; 0.0 when there is no run).
    virtual double GetPercentSlide();
    // Puts the thumb at that fraction of its run (truncated, clamped to the ends; NaN keeps
    // it), repaints and sends m1.
    virtual void SetPercentSlide(double dPercent);
    // The option the thumb stands on, the run cut into as many equal parts as the option
    // table has entries; 0xFFFFFFFF with an empty table.
    virtual UINT GetIndexSlide();
    virtual UINT GetSlideWidth();
    // New slide ends; the thumb keeps its fraction of the run and m1 goes out. The window
    // keeps its size.
    virtual void SetSlideRange(int nMin, int nMax);
    virtual BITMAP GetBackGroundBitmapInfo();

    // Selects the option as the base does and puts the thumb at option / count of the
    // slide width (unclamped, without message); with an empty table the thumb stays.
    void SetCtrlOption(CString strOption) override;
    // While a drag lasts every point is inside, so the drag is never cancelled.
    int HitTest(CPoint point) override;

    bool m_bDragging = false;
    int m_nThumbPos = 0;
    int m_nSlideMin = 0;
    int m_nSlideMax = 0;
    COLORREF m_crBackground = RGB(255, 255, 255);
    CBitmap m_BackgroundBitmap;
    BITMAP m_BackgroundInfo{};

protected:
    afx_msg void OnMouseMove(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonDown(UINT nFlags, CPoint point) override;
    afx_msg void OnLButtonUp(UINT nFlags, CPoint point) override;
    afx_msg void OnPaint() override;
    afx_msg BOOL OnEraseBkgnd(CDC* pDC) override;

    // Moves the thumb to the pointer's x (clamped) and repaints where it was and is.
    void TrackTo(int x);
    // Invalidates, with erase, the thumb's rectangle at left edge x.
    void InvalidateThumb(int x);

    DECLARE_MESSAGE_MAP()

private:
    // What the last request to the parent was made for (see OnEraseBkgnd).
    struct EchoKey {
        RECT screen{};
        int thumb = 0;
        int slideMin = 0;
        int slideMax = 0;
        bool valid = false;
    };
    EchoKey m_lastParentErase;
};
