// The collapsible group: its button, sizes, children, frame pieces and label.
#include "panel/Orlex.h"
#include "panel/OrlexDropMenu.h"
#include "panel/OrlexGroup.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using namespace faces;

constexpr int W = 200, H = 120;
constexpr POINT kOnButton{15, 13};

class Group : public PanelTest {
protected:
    void Make(COrlexGroup& g, bool vertical, bool border = true) {
        ASSERT_TRUE(g.Create(20, 20, W, H, &host, vertical));
        g.LoadBitmap(kGroupCollapsed.id);
        g.LoadClickBitmap(kGroupExpanded.id);
        if (border)
            g.LoadBorderBitmaps(kBorderLeft.id, kBorderRight.id, kBorderTop.id, kBorderBottom.id, kBorderTopLeft.id,
                                kBorderTopRight.id, kBorderBottomLeft.id, kBorderBottomRight.id);
        g.SetLabel("Scan\nScan");
        g.LoadCtrlMessages(&log, "g1", "", "");
        ASSERT_TRUE(child.Create(30, 70, &g));
        child.LoadBitmap(kButtonNormal.id);
        g.UpdateSize();
        Pump();
    }
    static CSize Size(CWnd& w) {
        CRect r;
        w.GetWindowRect(&r);
        return r.Size();
    }
    // The box of the pixels in `area` of w that are none of `ground`.
    static CRect Ink(CWnd& w, const CRect& area, std::initializer_list<COLORREF> ground) {
        CRect box(INT_MAX, INT_MAX, INT_MIN, INT_MIN);
        for (int y = area.top; y < area.bottom; ++y)
            for (int x = area.left; x < area.right; ++x)
                if (std::find(ground.begin(), ground.end(), At(w, x, y)) == ground.end())
                    box.UnionRect(box.IsRectEmpty() ? CRect(x, y, x + 1, y + 1) : box, CRect(x, y, x + 1, y + 1));
        return box;
    }
    // The ink of "Scan" as the layer draws it in the group's font, relative to its point.
    CRect InkOfScan(int escapement) {
        CClientDC dc(&host);
        dc.FillSolidRect(300, 170, 120, 90, kHostColour);
        CFont font;
        font.CreateFont(12, 0, escapement, 0, 700, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
        CFont* old = dc.SelectObject(&font);
        dc.SetBkMode(TRANSPARENT);
        dc.TextOut(340, 200, "Scan", 4);
        dc.SelectObject(old);
        return Ink(host, CRect(300, 170, 420, 260), {kHostColour}) - CPoint(340, 200);
    }
    COrlex child{0, 0, 0};
};

TEST_F(Group, TheButtonFoldsTheGroupToItsStripAndBack) {
    for (bool vertical : {false, true}) {
        COrlexGroup g;
        Make(g, vertical);
        const CSize strip = vertical ? CSize(kGroupExpanded.width + 20, H) : CSize(W, kBorderTop.height - 1);
        for (const auto& [size, face] : {std::pair{CSize(W, H), kGroupExpanded}, {strip, kGroupCollapsed},
                                         {CSize(W, H), kGroupExpanded}}) {
            EXPECT_EQ(Size(g), size) << vertical;
            EXPECT_EQ(At(g, 12, 10), face.marker);
            EXPECT_EQ(child.IsWindowVisible() != 0, face.id == kGroupExpanded.id);
            Later();
            Click(g.m_hWnd, kOnButton);
        }
        EXPECT_EQ(log.Take(), (Texts{"g1", "g1", "g1"}));
    }
}

TEST_F(Group, LabelLinesStandBesideTheButtonOrRunDownwardBelowIt) {
    // Two lines "Scan", one font height apart: below each other, or side by side downward.
    for (bool vertical : {false, true}) {
        COrlexGroup g;
        Make(g, vertical);
        if (vertical) g.SetState(0);
        Pump();
        CRect expect = InkOfScan(vertical ? -900 : 0);
        expect.OffsetRect(vertical ? CPoint(12 + 12, 14 + 15) : CPoint(14 + 15, 7 + 8 - 5));
        (vertical ? expect.right : expect.bottom) += 12;
        const CRect area = vertical ? CRect(8, 22, 34, 112) : CRect(26, 0, 190, 60);
        const auto ground = {kBorderTop.marker, kBorderTopRight.marker, kBorderRight.marker, RGB(255, 255, 255)};
        EXPECT_EQ(Ink(g, area, ground), expect) << vertical;
    }
}

TEST_F(Group, FramePiecesLieInTheirPaintOrder) {
    // Sides, then bottom and top stretched over them, then the corners at their own size.
    COrlexGroup g;
    Make(g, false);
    const std::tuple<int, int, Face> cases[] = {
        {3, 3, kBorderTopLeft},  {7, 3, kBorderTop},          {3, 29, kBorderTop},           {3, 60, kBorderLeft},
        {196, 60, kBorderRight}, {100, 116, kBorderBottom},   {7, 116, kBorderBottom},       {150, 25, kBorderTop},
        {196, 3, kBorderTopRight}, {3, 117, kBorderBottomLeft}, {196, 117, kBorderBottomRight}, {193, 3, kBorderTop}};
    for (const auto& [x, y, piece] : cases) EXPECT_EQ(At(g, x, y), piece.marker) << x << "," << y;
    EXPECT_EQ(At(g, 100, 60), RGB(255, 255, 255));
    g.DestroyWindow();
    // Without pieces a black frame round the white inside; pieces that failed to load: none.
    COrlexGroup plain, missing;
    Make(plain, false, false);
    Make(missing, false, false);
    missing.MoveWindowX(W + 20);
    missing.LoadBorderBitmaps(0, 0, 0, 0, 0, 0, 0, 0);
    missing.SetCollapseHeight(20);
    Pump();
    EXPECT_EQ(At(plain, 0, 60), RGB(0, 0, 0));
    EXPECT_EQ(At(plain, 1, 60), RGB(255, 255, 255));
    EXPECT_EQ(At(missing, 0, 60), RGB(255, 255, 255));
}

TEST_F(Group, OnlyTheButtonAreaFoldsAndShowsTheHand) {
    COrlexGroup g;
    Make(g, false);
    const HCURSOR hand = ::LoadCursor(orlex::LibraryModule(), MAKEINTRESOURCE(IDC_ORLEX_HAND));
    MouseMove(g.m_hWnd, POINT{1, 1});  // the area reaches the window's corner
    EXPECT_TRUE(::GetCursor() == hand && !::GetCapture());
    MouseMove(g.m_hWnd, POINT{150, 80});
    EXPECT_NE(::GetCursor(), hand);
    Click(g.m_hWnd, POINT{150, 80});
    EXPECT_EQ(g.GetState(), 1);
    // A press on the button holds the mouse: a release anywhere above or left counts.
    Later();
    MouseDown(g.m_hWnd, kOnButton);
    MouseMove(g.m_hWnd, POINT{-15, -10});
    MouseUp(g.m_hWnd, POINT{-15, -10});
    EXPECT_EQ(g.GetState(), 0);
    EXPECT_EQ(log.Take(), (Texts{"g1", "g1"}));
}

TEST_F(Group, StatesChildrenAndSizes) {
    COrlexGroup g;
    Make(g, false);
    COrlexDropMenu list;  // a hidden list comes up with the group's children
    ASSERT_TRUE(list.Create(40, 40, &g));
    g.SetState(-1);
    EXPECT_EQ(Size(g), CSize(W, kBorderTop.height - 1));
    EXPECT_FALSE(child.IsWindowVisible());
    Pump();
    EXPECT_EQ(At(g, 12, 10), kGroupExpanded.marker);  // the face follows state != 0
    g.SetState(1);
    EXPECT_TRUE(list.IsWindowVisible() && child.IsWindowVisible());
    for (UINT w : {0u, 0xFFFFFFFFu}) {
        g.SetWidth(w), g.SetHeight(w);
        Pump();
        EXPECT_EQ(Size(g), CSize(std::min(w, 32767u), std::min(w, 32767u)));
    }
    // Without button faces the mouse cannot fold it; SetState still does.
    COrlexGroup bare;
    ASSERT_TRUE(bare.Create(0, 0, 50, 50, &host, 0));
    bare.UpdateSize();
    Click(bare.m_hWnd, POINT{2, 2});
    EXPECT_EQ(bare.GetState(), 1);
    bare.SetState(0);
    EXPECT_EQ(Size(bare), CSize(50, 20));
}

}  // namespace
