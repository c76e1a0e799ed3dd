// The cross (type 5): one point of the image marked by a small cross that the user drags.
// A press moves the centre to the mouse at once; the drag cannot leave the view; the release
// reports the point. A cross is never too small to keep.
#pragma once

#include "cursors/BaseCursor.h"

class CCrossCursor : public CBaseCursor {
    DECLARE_SERIAL(CCrossCursor)
public:
    CCrossCursor();
    // The base's fields, then the text, arm length, centre and data point.
    CCrossCursor& operator=(const CCrossCursor& other);

    using CBaseCursor::Create;
    using CBaseCursor::GetCursorData;
    void PrintInRect(CDC* dc, CRect& dest) override;
    void CopyCursorMovement(CBaseCursor* other) override;
    void SetPosition() override;
    void UpdatePosition(CPoint point) override;
    void GetCursorData(CWnd* view, CURSOR_POS* pos) override;
    void Resize(CWnd* view) override;
    double GetDistanceToCursor(CPoint screenPoint) override;
    char* GetText() override;
    // From a file: off-line records place the window from their data point.
    void Create(CWnd* view) override;
    void LButtonHandler(UINT flags, CPoint point) override;
    void DrawCursor(CDC* dc, CRect clientRect, bool forPrint) override;
    void OnSelection(int selected) override;
    // A visible window (id 0) of the centre (view client) inflated by arm + selection zone.
    virtual int Create(CWnd* view, CPoint centre);

    // Arm length in pixels (default 5); takes effect with the next window.
    void SetCrossSize(int size) { m_nSize = orlex::cursors::LimitCoord(size); }
    int GetCrossSize() const { return m_nSize; }
    // Centre in view client pixels, and in data pixels as last reported.
    CPoint GetCenterPos() const { return m_ptPos; }
    CPoint GetDataPos() const { return m_ptData; }

    // The base record, then the centre as a raw point: view pixels in real time, data
    // pixels off-line.
    void Serialize(CArchive& ar) override;

protected:
    int OnCreate(LPCREATESTRUCT cs) override;
    void OnLButtonUp(UINT flags, CPoint point) override;
    void OnMouseMove(UINT flags, CPoint point) override;
    DECLARE_MESSAGE_MAP()

private:
    CRect WindowRect() const;
    // The centre's data point from the record, when the view could give one.
    void TakeDataPoint();

    char m_szText[80] = {};
    int m_nSize = 5;
    CPoint m_ptPos{0, 0};
    CPoint m_ptData{0, 0};
};
