// The cross driven as a user drives it: made by a press on the image, dragged, chosen among
// overlapping cursors, clicked at the access levels, read back by pixel and by the notices
// the host hears.
#include <set>

#include "cursor_test_util.h"
#include "cursors/CrossCursor.h"

using curtest::CursorScene;
using ivtest::Received;

namespace {

constexpr COLORREF kMagenta = RGB(255, 0, 255);

class CrossTest : public CursorScene {};

// The messages of a log, in order, by kind (WM_NOTIFY codes told apart).
std::vector<UINT> Kinds(const std::vector<Received>& log)
{
    std::vector<UINT> out;
    for (const Received& r : log) out.push_back(r.msg == WM_NOTIFY ? r.code : r.msg);
    return out;
}

}  // namespace

TEST_F(CrossTest, APressMakesACrossThatFollowsTheDragAndTheHostHearsEachStep)
{
    Show(64, 128, false);
    const CRect area(0, 0, 128, 128);
    const auto before = Shot(area);
    orlex::test::Drag(V(), CPoint(30, 40), CPoint(60, 70), 3);
    ASSERT_EQ(Cursors().size(), 1u);
    auto* cross = dynamic_cast<CCrossCursor*>(Cursors()[0]);
    ASSERT_NE(cross, nullptr);
    EXPECT_EQ(cross->GetCenterPos(), CPoint(60, 70));
    EXPECT_FALSE(CBaseCursor::m_bCursorTracking);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);

    // The press notice, the new cursor, a mouse notice per move, the release.
    const std::vector<UINT> expected{NM_CLICK, MESSAGE_CREATE_CURSOR_STR, MESSAGE_CURSOR_MOUSE_STR,
                                      MESSAGE_CURSOR_MOUSE_STR, MESSAGE_CURSOR_MOUSE_STR, MESSAGE_CURSOR_NOTIFY_STR};
    EXPECT_EQ(Kinds(host.log), expected);
    const Received& created = host.log[1];
    EXPECT_EQ(created.wp, reinterpret_cast<WPARAM>(view));
    EXPECT_EQ(created.pos.pCursor, cross);
    EXPECT_EQ(created.pos.x1, 15);
    EXPECT_EQ(created.pos.y1, 20);
    EXPECT_EQ(host.log[2].wp, reinterpret_cast<WPARAM>(cross));
    const Received& done = host.log.back();
    EXPECT_EQ(done.wp, 514u);
    EXPECT_EQ(done.pos.type, kCursorCross);
    EXPECT_EQ(done.pos.x1, 30);
    EXPECT_EQ(done.pos.y1, 35);
    EXPECT_DOUBLE_EQ(done.pos.dX1, 30 * 1e-6 / 64);
    EXPECT_DOUBLE_EQ(done.pos.dY1, 35 * 1e-6 / 64);

    // On screen: the image everywhere but on the arms of the new cross, which are dotted
    // in the cursor colour; nothing is left where the cross was.
    const auto after = Shot(area);
    std::set<std::pair<int, int>> lit;
    for (const CPoint& p : curtest::Changed(before, after, area)) {
        EXPECT_EQ(orlex::test::Pixel(V(), p), kMagenta) << p.x << "," << p.y;
        const bool onArm = (p.x == 60 && std::abs(p.y - 70) <= 5) || (p.y == 70 && std::abs(p.x - 60) <= 5);
        EXPECT_TRUE(onArm) << p.x << "," << p.y;
        lit.insert({p.x, p.y});
    }
    EXPECT_GE(lit.size(), 8u);
    for (const auto& [x, y] : lit) EXPECT_FALSE(lit.count({x, y + 1}) && x == 60) << "dotted";
}

TEST_F(CrossTest, TheReleaseGivesDataPixelsAndMetresOfTheShownPart)
{
    struct Case {
        const char* what;
        CRect zoom;     // empty: the whole image
        double aspect;
        CPoint at;      // view pixels
        int x, y;
        double dx, dy;  // metres
    };
    const double S = 1e-6;
    const Case cases[] = {
        {"whole image", CRect(), 1.0, CPoint(64, 32), 32, 16, 32 * S / 64, 16 * S / 64},
        {"zoomed, aspect 0.5", CRect(16, 16, 48, 48), 0.5, CPoint(96, 32), 40, 24, 40 * S / 64, 24 * S / 64 / 0.5},
    };
    Show(64, 128, true);
    for (const Case& c : cases) {
        frame.aspect = c.aspect;
        if (!c.zoom.IsRectEmpty()) {
            CRect z = c.zoom;
            view->AddZoomRecord(z, 0);
        }
        Settle();
        orlex::test::Click(V(), c.at);
        const auto notes = host.Of(MESSAGE_CURSOR_NOTIFY_STR);
        ASSERT_EQ(notes.size(), 1u) << c.what;
        EXPECT_EQ(notes[0].pos.x1, c.x) << c.what;
        EXPECT_EQ(notes[0].pos.y1, c.y) << c.what;
        EXPECT_DOUBLE_EQ(notes[0].pos.dX1, c.dx) << c.what;
        EXPECT_DOUBLE_EQ(notes[0].pos.dY1, c.dy) << c.what;
        // The frame hears first; the host hears because the frame didn't answer.
        EXPECT_EQ(frame.Of(MESSAGE_CURSOR_NOTIFY_STR).size(), 1u);
        view->ClearAllCursors(0, 1);
    }
}

TEST_F(CrossTest, APressGoesToTheNearestCentreWhichRisesAndAPressOnNoneMakesANewCross)
{
    Show(64, 200, false);
    view->SetCrossCursorSize(20);
    CBaseCursor* a = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(50, 50));
    CBaseCursor* b = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(70, 50));
    ASSERT_TRUE(a && b);
    // New windows go below the older ones: a lies on top, and a press at 65 is inside both
    // windows and nearer b's centre. (The view's tip marker, hidden, is the first child.)
    auto topShown = [&]() {
        HWND h = ::GetWindow(V(), GW_CHILD);
        while (h && !::IsWindowVisible(h)) h = ::GetWindow(h, GW_HWNDNEXT);
        return CWnd::FromHandle(h);
    };
    ASSERT_EQ(topShown(), a);
    Settle();
    orlex::test::Drag(V(), CPoint(65, 50), CPoint(40, 90), 2);
    EXPECT_EQ(static_cast<CCrossCursor*>(b)->GetCenterPos(), CPoint(40, 90));
    EXPECT_EQ(static_cast<CCrossCursor*>(a)->GetCenterPos(), CPoint(50, 50));
    EXPECT_EQ(topShown(), b);

    // Far from both, inside neither window: the view makes a third cross.
    orlex::test::Click(V(), CPoint(150, 150));
    ASSERT_EQ(Cursors().size(), 3u);
    EXPECT_EQ(static_cast<CCrossCursor*>(Cursors()[2])->GetCenterPos(), CPoint(150, 150));
}

TEST_F(CrossTest, AccessLevelsOneAndTwoOnlyNotifyAndLevelOneTogglesTheSelection)
{
    Show(64, 128, false);
    view->SetSelectColor(RGB(0, 255, 0));
    CBaseCursor* c = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(60, 60));
    for (int level : {1, 2}) {
        c->SetCursorAcLevel(level);
        c->SetSelected(0);
        Settle();
        orlex::test::Drag(V(), CPoint(62, 61), CPoint(90, 90), 2);
        orlex::test::Click(V(), CPoint(62, 61), orlex::test::Button::Right);
        EXPECT_EQ(static_cast<CCrossCursor*>(c)->GetCenterPos(), CPoint(60, 60)) << level;
        EXPECT_EQ(c->IsSelected(), level == 1 ? 1 : 0) << level;
        EXPECT_EQ(c->GetColor(), level == 1 ? RGB(0, 255, 0) : kMagenta) << level;
        const auto notes = host.Of(MESSAGE_CURSOR_NOTIFY_STR);
        ASSERT_EQ(notes.size(), 1u) << level;
        EXPECT_EQ(notes[0].wp, 513u);
        EXPECT_EQ(notes[0].pos.pCursor, c);
        EXPECT_TRUE(orlex::test::ModalLog().empty()) << "no menu at level " << level;
        EXPECT_EQ(Cursors().size(), 1u);
    }
}
