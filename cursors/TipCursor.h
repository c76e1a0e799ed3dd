// The tip marker (type 8): where the instrument's tip stands, a cross in a circle. One per
// view, a member of the view, made with the view's window; the host moves it and shows or
// hides it. It is not in the view's cursor list, no press picks it, and it has no button
// handling of its own.
#pragma once

#include "cursors/BaseCursor.h"

class CTipCursor : public CBaseCursor {
    DECLARE_SERIAL(CTipCursor)
public:
    CTipCursor();

    using CBaseCursor::Create;
    using CBaseCursor::GetCursorData;
    // The centre in data pixels (rounded, through the zoom) and metres; no second point.
    void GetCursorData(CWnd* view, CURSOR_POS* pos) override;
    // "[x, y]" in metres, in a buffer of the marker (80 bytes).
    char* GetText() override;
    // A child window of the view (id 0) around centre (view client), visible only with
    // `visible`; then shown or hidden by the marker's own switch (hidden when new).
    virtual int Create(CWnd* view, CPoint centre, int visible);

    // x, y in metres on the sample: placed in the shown part of the image (outside it the
    // window falls out of sight).
    void SetTipPosition(double x, double y);
    // A point in view pixels of the whole image, placed through the zoom.
    void SetTipPosition(CPoint p);
    // Non-zero shows the window, 0 hides it.
    void ShowTipCursor(int show);
    int IsTipShown() const { return m_nShow; }
    // Radius in pixels (default 5); takes effect with the next move.
    void SetCrossSize(int size) { m_nSize = orlex::cursors::LimitCoord(size); }
    CPoint GetCenterPos() const { return m_ptPos; }

    // The base record, then the centre (view pixels, raw) and the show switch.
    void Serialize(CArchive& ar) override;

protected:
    void OnPaint() override;
    DECLARE_MESSAGE_MAP()

private:
    CRect WindowRect() const;
    // Step 4 of a move: the window to its new place, the view repainted there.
    void MoveToCentre();

    char m_szText[80] = {};
    int m_nSize = 5;
    CPoint m_ptPos{0, 0};
    int m_nShow = 0;
};
