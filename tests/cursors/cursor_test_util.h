// A scene for the cursor tests: a host window, optionally a stand-in frame, and an image view
// showing a test image; and a probe kind of cursor whose text and distance the test sets,
// registered under a type id of its own.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cursors/BaseCursor.h"
#include "cursors/CursorKinds.h"
#include "imageview/test_imageview_util.h"

// A kind that measures nothing: a rectangle window with the base's handlers (the tooltip
// of OnMouseMove, the menu, CursorManager), a text and a distance the test sets, and a log
// of the presses handed to it.
class ProbeCursor : public CBaseCursor {
    DECLARE_DYNAMIC(ProbeCursor)
public:
    static constexpr int kType = 200;
    std::string text = "probe";
    double distance = 1.0;
    int presses = 0;
    // The callback pair as the maker saw it while the view made the cursor.
    CursorCallbackFn seenCallback = nullptr;
    void* seenData = nullptr;

    BOOL CreateAt(CWnd* view, const CRect& r)
    {
        m_nType = kType;
        return CreateCursorWindow(view, r);
    }
    char* GetText() override { return text.data(); }
    double GetDistanceToCursor(CPoint) override { return distance; }
    void GetCursorData(CWnd*, CURSOR_POS* pos) override
    {
        pos->type = kType;
        pos->pCursor = this;
    }
    void LButtonHandler(UINT, CPoint) override { ++presses; }
    // Draws the smart corners of the client rectangle less the selection zone.
    void DrawCursor(CDC* dc, CRect r, bool) override
    {
        r.DeflateRect(m_nSelzone, m_nSelzone);
        DrawSmartCorners(dc, r);
    }
};

namespace curtest {

// Registers the probe kind for the life of the object.
struct ProbeKind {
    ProbeKind();
    ~ProbeKind() { UnregisterCursorKind(ProbeCursor::kType); }
};

class CursorScene : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // A size x size image in a view of client x client pixels at (10, 10) of the host, inside
    // the stand-in frame when framed. Off-line unless realTime.
    void Show(int size, int client, bool framed, bool realTime = false);
    // Pumps and forgets what the host and frame heard.
    void Settle();
    HWND V() const { return view->GetSafeHwnd(); }
    // The cursors of the view in list order.
    std::vector<CBaseCursor*> Cursors();
    // The view client pixels of a rectangle (the screen as it shows them).
    std::vector<COLORREF> Shot(const CRect& r) { return orlex::test::Pixels(V(), r); }

    ivtest::Recorder host;
    ivtest::StandInFrame frame;
    CImageView* view = nullptr;
    std::vector<int> data;
    std::vector<tagRGBQUAD> table;
};

// Pixels of a shot (w wide) that differ from a baseline, as points.
std::vector<CPoint> Changed(const std::vector<COLORREF>& before, const std::vector<COLORREF>& after, const CRect& r);

}  // namespace curtest
