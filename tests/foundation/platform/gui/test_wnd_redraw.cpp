// RedrawWindow with an update region: the region (not the rectangle) says what repaints,
// an empty region repaints nothing, children follow RDW_ALLCHILDREN / RDW_NOCHILDREN, and
// RDW_VALIDATE takes the region away from what was pending.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// Fills its client area with its colour when painted and counts its paints.
class Painter : public CWnd {
public:
    explicit Painter(COLORREF c) : colour(c) {}
    COLORREF colour;
    int paints = 0;
    CRect lastPaint;
    void OnPaint() {
        CPaintDC dc(this);
        ++paints;
        lastPaint = dc.m_ps.rcPaint;
        CRect c;
        GetClientRect(&c);
        dc.FillSolidRect(&c, colour);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(Painter, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

enum class Area { None, Box, TwoBoxes, Empty, OverChild, LeftHalf };

struct RedrawCase {
    const char* name;
    Area area;
    bool pendingAll;        // the whole parent is invalid (no erase) before the call
    UINT flags;
    int parentPaints, childPaints;
    CRect lastPaint;        // of the parent, when it paints
    std::vector<POINT> red, white;  // parent pixels after painting
};

constexpr UINT kNow = RDW_INVALIDATE | RDW_UPDATENOW;

// The parent is 100 x 60 without WS_CLIPCHILDREN; the child covers (50,0)-(100,30). A rect
// of (0,0)-(100,60) is passed beside every region, which must not widen it.
const RedrawCase kCases[] = {
    {"a region, not the rectangle", Area::Box, false, kNow, 1, 0, {10, 10, 20, 20},
     {{10, 10}, {19, 19}}, {{9, 10}, {20, 20}, {40, 40}}},
    {"two pieces, nothing between", Area::TwoBoxes, false, kNow, 1, 0, {0, 0, 40, 50},
     {{5, 5}, {35, 45}}, {{20, 20}, {5, 45}, {35, 5}}},
    {"an empty region repaints nothing", Area::Empty, false, kNow, 0, 0, {}, {}, {{5, 5}, {45, 45}}},
    {"children under the region repaint", Area::OverChild, false, kNow, 1, 1, {40, 0, 100, 30},
     {{45, 5}}, {{45, 35}, {5, 5}}},
    {"RDW_NOCHILDREN leaves them", Area::OverChild, false, kNow | RDW_NOCHILDREN, 1, 0, {40, 0, 100, 30},
     {{45, 5}}, {{45, 35}}},
    {"RDW_ALLCHILDREN takes them", Area::OverChild, false, kNow | RDW_ALLCHILDREN | RDW_ERASE, 1, 1,
     {40, 0, 100, 30}, {{45, 5}}, {{45, 35}}},
    {"no region, no rectangle: all", Area::None, false, kNow | RDW_NOCHILDREN, 1, 0, {0, 0, 100, 60},
     {{5, 5}, {45, 55}}, {}},
    {"RDW_VALIDATE takes the region away", Area::LeftHalf, true, RDW_VALIDATE | RDW_UPDATENOW | RDW_NOCHILDREN,
     1, 0, {50, 0, 100, 60}, {{60, 40}}, {{10, 10}, {49, 59}}},
};

TEST(Redraw, RegionSaysWhatRepaints) {
    orlex::test::Init();
    LPCSTR cls = AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW));
    for (const auto& c : kCases) {
        SCOPED_TRACE(c.name);
        Painter parent(kRed), child(kBlue);
        ASSERT_TRUE(parent.CreateEx(0, cls, "parent", WS_POPUP | WS_VISIBLE, 0, 0, 100, 60, nullptr, nullptr));
        ASSERT_TRUE(child.CreateEx(0, cls, nullptr, WS_CHILD | WS_VISIBLE, CRect(50, 0, 100, 30), &parent, 1));
        orlex::test::Pump();
        {
            CClientDC dc(&parent);
            dc.FillSolidRect(0, 0, 100, 60, kWhite);
        }
        if (c.pendingAll) parent.InvalidateRect(nullptr, FALSE);
        const int p0 = parent.paints, c0 = child.paints;

        CRgn rgn, other;
        switch (c.area) {
        case Area::None: break;
        case Area::Box: rgn.CreateRectRgn(10, 10, 20, 20); break;
        case Area::TwoBoxes:
            rgn.CreateRectRgn(0, 0, 10, 10);
            other.CreateRectRgn(30, 40, 40, 50);
            rgn.CombineRgn(&rgn, &other, RGN_OR);
            break;
        case Area::Empty: rgn.CreateRectRgn(0, 0, 0, 0); break;
        case Area::OverChild: rgn.CreateRectRgn(40, 0, 100, 30); break;
        case Area::LeftHalf: rgn.CreateRectRgn(0, 0, 50, 60); break;
        }
        CRect all(0, 0, 100, 60);
        ASSERT_TRUE(parent.RedrawWindow(c.area == Area::None ? nullptr : &all,
                                        c.area == Area::None ? nullptr : &rgn, c.flags));
        EXPECT_EQ(parent.paints - p0, c.parentPaints);
        EXPECT_EQ(child.paints - c0, c.childPaints);
        if (c.parentPaints) EXPECT_EQ(parent.lastPaint, c.lastPaint);
        for (POINT p : c.red) EXPECT_EQ(orlex::test::Pixel(parent.m_hWnd, p), kRed) << p.x << "," << p.y;
        for (POINT p : c.white) EXPECT_EQ(orlex::test::Pixel(parent.m_hWnd, p), kWhite) << p.x << "," << p.y;
        // Nothing more is left pending: the queue paints nothing afterwards.
        orlex::test::Pump();
        EXPECT_EQ(parent.paints - p0, c.parentPaints);
        parent.DestroyWindow();
    }
}

TEST(Redraw, WithoutUpdateNowTheRegionWaitsForTheQueue) {
    orlex::test::Init();
    LPCSTR cls = AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW));
    Painter w(kRed);
    ASSERT_TRUE(w.CreateEx(0, cls, "queued", WS_POPUP | WS_VISIBLE, 0, 0, 100, 60, nullptr, nullptr));
    orlex::test::Pump();
    const int before = w.paints;
    CRgn rgn;
    rgn.CreateEllipticRgn(20, 10, 60, 50);
    ASSERT_TRUE(w.RedrawWindow(nullptr, &rgn, RDW_INVALIDATE));
    EXPECT_EQ(w.paints, before);
    CRect pending;
    EXPECT_TRUE(w.GetUpdateRect(&pending));
    EXPECT_EQ(pending, CRect(20, 10, 60, 50));
    orlex::test::Pump();
    EXPECT_EQ(w.paints, before + 1);
    EXPECT_FALSE(w.GetUpdateRect(&pending));
    w.DestroyWindow();
}

}  // namespace
