// The view's side of the cursors: the popup menu and what its commands reach, presses that
// belong to zoom and pan, the notifier, the right button, the limits of AddCursor, clearing,
// removal requests, the cursor tooltip and unit conversion.
#include <climits>

#include "cursor_test_util.h"
#include "cursors/CrossCursor.h"
#include "imageview/ImageViewEventNotifier.h"

using curtest::CursorScene;
using orlex::test::Button;

namespace {

class HostingTest : public CursorScene {
protected:
    ProbeCursor* Probe(CRect r) { return static_cast<ProbeCursor*>(view->AddCursor(&r, ProbeCursor::kType, 0.0, nullptr, 0)); }
};

constexpr COLORREF kMagenta = RGB(255, 0, 255);

int NoticesOfType(const ivtest::Recorder& r, int type)
{
    int n = 0;
    for (const auto& m : r.Of(MESSAGE_CURSOR_NOTIFY_STR)) n += m.pos.type == type;
    return n;
}

// Notifier that logs its registrations and answers left presses as told.
struct Watcher : CImageViewEventNotifier {
    std::vector<std::pair<CImageView*, int>>* log;
    int takeLeft = 0;
    explicit Watcher(std::vector<std::pair<CImageView*, int>>* l) : log(l) {}
    void OnRegister(CImageView* v, int on) override { log->push_back({v, on}); }
    int OnLButtonDown(UINT, CPoint) override { return takeLeft; }
};

}  // namespace

TEST_F(HostingTest, TheMenuDeletesRecoloursAndHonoursTheUsersRightToDelete)
{
    struct Case {
        const char* what;
        int userDelete;
        UINT command;
        long long colour;  // the colour dialog's answer, -1 cancel
        size_t cursorsLeft;
        COLORREF first, second;
    };
    const Case cases[] = {
        {"delete", 1, ID_CURSOR_DELETE, 0, 1, 0, kMagenta},
        {"delete refused", 0, ID_CURSOR_DELETE, 0, 2, kMagenta, kMagenta},
        {"set colour", 1, ID_CURSOR_SET_COLOR, 0x123456, 2, 0x123456, kMagenta},
        {"set colour of all", 1, ID_CURSOR_SET_COLOR_ALL, 0x00AA00, 2, 0x00AA00, 0x00AA00},
        {"colour cancelled", 1, ID_CURSOR_SET_COLOR, -1, 2, kMagenta, kMagenta},
    };
    for (const Case& c : cases) {
        Show(64, 128, true);
        CBaseCursor* first = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(30, 30));
        CBaseCursor* second = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(90, 90));
        first->SetUserDelete(c.userDelete);
        Settle();
        orlex::ModalScript::Reset();
        orlex::test::ScriptAnswer("PopupMenu", c.command);
        orlex::test::ScriptAnswer("ColorDialog", c.colour);
        orlex::test::Click(V(), CPoint(31, 30), Button::Right);
        orlex::test::Pump();
        const auto& modal = orlex::test::ModalLog();
        ASSERT_GE(modal.size(), 1u) << c.what;
        const bool grey = c.userDelete == 0;
        EXPECT_EQ(modal[0].text.find("&Delete #35037 [grayed]") != std::string::npos, grey) << c.what;
        EXPECT_EQ(modal[0].text.find("&Clear All #35064 [grayed]") != std::string::npos, grey) << c.what;
        ASSERT_EQ(Cursors().size(), c.cursorsLeft) << c.what;
        if (c.cursorsLeft == 2) EXPECT_EQ(first->GetColor(), c.first) << c.what;
        EXPECT_EQ(second->GetColor(), c.second) << c.what;
        if (c.command == ID_CURSOR_DELETE && !grey) {
            // The frame hears of the user's removal, the host of the removal (type 9).
            const auto users = frame.Of(MESSAGE_USER_REMOVE_CURSOR_STR);
            ASSERT_EQ(users.size(), 1u);
            EXPECT_EQ(users[0].wp, WPARAM(kCursorCross));
            EXPECT_EQ(NoticesOfType(host, kCursorRemoved), 1);
        }
        if (c.command != ID_CURSOR_DELETE) {
            ASSERT_EQ(modal.size(), 2u) << c.what;
            EXPECT_EQ(modal[1].kind, "ColorDialog");
            EXPECT_TRUE(modal[1].style & 2) << "full open";
        }
        delete view;
        view = nullptr;
        frame.DestroyWindow();
    }
}

TEST_F(HostingTest, ZoomAndPanPressesOnACursorBelongToTheView)
{
    Show(64, 128, true);
    for (int zoom : {1, 0}) {
        view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(40, 40));
        frame.zoomButton = zoom;
        frame.panButton = !zoom;
        Settle();
        orlex::test::MouseDown(V(), CPoint(41, 40));
        // The cursor the press came to is gone; the host heard the cursors were cleared.
        EXPECT_TRUE(Cursors().empty()) << zoom;
        EXPECT_EQ(NoticesOfType(host, kCursorsCleared), 1) << zoom;
        EXPECT_EQ(CImageView::IsPanTracking(), !zoom);
        orlex::test::MouseUp(V(), CPoint(41, 40));
        EXPECT_FALSE(CImageView::IsPanTracking());
    }
    // A one-time cursor with the pan button down: the next press makes a cross, the one
    // after pans.
    CImageView::SetTempCurMode(1);
    orlex::test::Click(V(), CPoint(20, 20));
    EXPECT_EQ(Cursors().size(), 1u);
    EXPECT_EQ(CImageView::m_bTempCurMode, 0);
    orlex::test::MouseDown(V(), CPoint(100, 100));
    EXPECT_TRUE(CImageView::IsPanTracking());
    orlex::test::MouseUp(V(), CPoint(100, 100));
}

TEST_F(HostingTest, TheNotifierSeesPressesFirstAndRegistrationsInOrder)
{
    Show(64, 128, false);
    std::vector<std::pair<CImageView*, int>> log;
    auto* first = new Watcher(&log);
    Watcher second(&log);
    EXPECT_EQ(first->Register(nullptr), 0);
    EXPECT_EQ(first->Register(view), 1);
    EXPECT_EQ(second.Register(view), 1);
    using Entry = std::pair<CImageView*, int>;
    EXPECT_EQ(log, (std::vector<Entry>{{view, 1}, {view, 0}, {view, 1}}));
    // The replaced notifier goes without touching the view's registration.
    delete first;
    EXPECT_EQ(view->GetNotifier(), &second);

    second.takeLeft = 1;
    Settle();
    orlex::test::Click(V(), CPoint(50, 50));
    EXPECT_TRUE(Cursors().empty());
    EXPECT_TRUE(host.Of(WM_NOTIFY).empty());
    second.takeLeft = 0;
    orlex::test::Click(V(), CPoint(60, 60));
    EXPECT_EQ(Cursors().size(), 1u);

    // Right button on the image: -5 at the press, the release to the parent in its client
    // pixels, not with Ctrl.
    Settle();
    orlex::test::Click(V(), CPoint(100, 20), Button::Right);
    auto notes = host.Of(WM_NOTIFY);
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0].code, NM_RCLICK);
    auto ups = host.Of(WM_RBUTTONUP);
    ASSERT_EQ(ups.size(), 1u);
    EXPECT_EQ(ups[0].point, CPoint(110, 30));
    orlex::test::KeyDown(VK_CONTROL);
    orlex::test::Click(V(), CPoint(100, 22), Button::Right);
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_EQ(host.Of(WM_RBUTTONUP).size(), 1u);

    // The view goes first: the notifier, left behind, must not reach it.
    delete view;
    view = nullptr;
    EXPECT_EQ(second.m_pView, nullptr);
}

TEST_F(HostingTest, AddCursorKeepsToTheLimitAndMakesOnlyKindsItKnows)
{
    struct Case {
        int allowable, deleteLast;
        int made;        // of three crosses asked for
        size_t kept;
        int clearedNotices;
    };
    const Case cases[] = {{0, 0, 3, 3, 0}, {1, 0, 1, 1, 0}, {1, 1, 3, 1, 2}, {2, 1, 2, 2, 0}, {-1, 0, 3, 3, 0}};
    Show(64, 128, false);
    for (const Case& c : cases) {
        view->ClearAllCursors(0, 1);
        view->SetAllowableCursors(c.allowable);
        view->SetDeleteLastOnNew(c.deleteLast);
        Settle();
        int made = 0;
        for (int i = 0; i < 3; ++i) made += view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(20 + 30 * i, 40)) != nullptr;
        EXPECT_EQ(made, c.made) << c.allowable << c.deleteLast;
        EXPECT_EQ(Cursors().size(), c.kept);
        EXPECT_EQ(NoticesOfType(host, kCursorsCleared), c.clearedNotices);
    }
    view->SetAllowableCursors(0);
    EXPECT_EQ(view->AddCursor(nullptr, 99, 0.0, CPoint(5, 5)), nullptr);
    CImageView windowless(false);
    EXPECT_EQ(windowless.AddCursor(nullptr, kCursorCross, 0.0, CPoint(5, 5)), nullptr);

    // The callback reaches a kind only while the view makes it.
    curtest::ProbeKind probe;
    int tag = 0;
    auto fn = [](int, int, tCursorOptionData&, void*) { return 0; };
    view->RegisterCursorCallback(fn, &tag);
    auto* p = Probe(CRect(10, 10, 30, 30));
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(p->seenCallback, static_cast<CursorCallbackFn>(fn));
    EXPECT_EQ(p->seenData, &tag);
    EXPECT_EQ(CBaseCursor::m_pCursorCallback, nullptr);
    EXPECT_EQ(view->GetNumCursors(ProbeCursor::kType), 1);
    EXPECT_EQ(view->GetNumCursors(kCursorCross), 3);
    EXPECT_EQ(view->GetNumCursors(-1), 4);

    // Clearing spares what the user may not delete, unless all go; no notice for nothing.
    p->SetUserDelete(0);
    Settle();
    view->ClearAllCursors(1, 0);
    EXPECT_EQ(Cursors().size(), 1u);
    view->ClearAllCursors(1, 0);
    EXPECT_EQ(NoticesOfType(host, kCursorsCleared), 1);
    view->ClearAllCursors(1, 1);
    EXPECT_TRUE(Cursors().empty());
    EXPECT_EQ(NoticesOfType(host, kCursorsCleared), 2);
}

TEST_F(HostingTest, RemovalRequestsAndColourCommandsReachOnlyLiveCursors)
{
    Show(64, 128, false);
    CBaseCursor* c = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(30, 30));
    CBaseCursor* d = view->AddCursor(nullptr, kCursorCross, 0.0, CPoint(60, 60));
    // A colour that is also a live window's handle is still a colour.
    const auto handleColour = static_cast<COLORREF>(reinterpret_cast<UINT_PTR>(host.GetSafeHwnd()));
    view->SendMessage(WM_COMMAND, ID_CURSOR_SET_COLOR_ALL, handleColour);
    EXPECT_EQ(c->GetColor(), handleColour);
    EXPECT_EQ(view->GetCursorColor(), handleColour);
    Settle();
    // The walk of the view's records moves past a cursor removed under it.
    EXPECT_EQ(view->GetFirstCursorPos().pCursor, c);
    EXPECT_EQ(view->SendMessage(MESSAGE_REMOVE_CURSOR_STR, 1, reinterpret_cast<LPARAM>(d)), 1);
    EXPECT_EQ(view->GetNextCursorPos().pCursor, nullptr);
    EXPECT_EQ(NoticesOfType(host, kCursorRemoved), 0);
    EXPECT_EQ(view->SendMessage(MESSAGE_REMOVE_CURSOR_STR, 0, reinterpret_cast<LPARAM>(d)), 0);
    CImageView::SetDeleteCursorsOnPanZoom(false);
    EXPECT_EQ(view->SendMessage(MESSAGE_REMOVE_CURSOR_STR, 0, reinterpret_cast<LPARAM>(c)), 0);
    CImageView::SetDeleteCursorsOnPanZoom(true);
    EXPECT_EQ(view->SendMessage(MESSAGE_REMOVE_CURSOR_STR, 0, reinterpret_cast<LPARAM>(c)), 1);
    const auto notes = host.Of(MESSAGE_CURSOR_NOTIFY_STR);
    ASSERT_EQ(notes.size(), 1u);
    EXPECT_EQ(notes[0].pos.type, kCursorRemoved);
    EXPECT_EQ(notes[0].pos.pCursor, c);
}

TEST_F(HostingTest, TheTooltipShowsFollowsAndHidesTheTextOfTheCursorUnderTheMouse)
{
    Show(64, 200, false);
    curtest::ProbeKind probe;
    view->EnableToolText(1);
    auto* p = Probe(CRect(20, 20, 80, 80));
    auto* q = Probe(CRect(120, 20, 180, 80));
    q->text = std::string(200, 'q');
    CToolTipCtrl* tip = view->GetCursorTip();
    orlex::test::MouseMove(V(), CPoint(40, 40));
    EXPECT_STREQ(tip->GetShownText().GetString(), "probe");
    // The same text in other case stays as it is; a new text replaces it.
    p->text = "PROBE";
    orlex::test::MouseMove(V(), CPoint(41, 40));
    EXPECT_STREQ(tip->GetShownText().GetString(), "probe");
    p->text = "other";
    orlex::test::MouseMove(V(), CPoint(42, 40));
    EXPECT_STREQ(tip->GetShownText().GetString(), "other");
    // Off every cursor the tip goes; a long text comes cut to its buffer.
    orlex::test::MouseMove(V(), CPoint(100, 150));
    EXPECT_STREQ(tip->GetShownText().GetString(), "");
    orlex::test::MouseMove(V(), CPoint(130, 30));
    EXPECT_EQ(tip->GetShownText(), CString(std::string(143, 'q').c_str()));
    // Once the mouse has left the view, the tip's timer hides it.
    orlex::test::MouseMove(host.GetSafeHwnd(), CPoint(600, 500));
    orlex::test::AdvanceClock(1000);
    EXPECT_STREQ(tip->GetShownText().GetString(), "");
}

TEST_F(HostingTest, UnitsConvertToZoomedPixelsAndBackFromWholeImagePixels)
{
    Show(64, 128, true);
    CRect z(16, 16, 48, 48);
    view->AddZoomRecord(z, 0);
    dblPoint u[2] = {{32e-6 / 64 * 1e6, 8e-6 / 64 * 1e6}, {0, 0}};  // micrometres
    POINT px[2] = {{0, 0}, {0, 0}};
    EXPECT_EQ(view->ConvertUnits(u, px, 1, 1, eMicrometers), 1);
    EXPECT_EQ(px[0].x, 32);  // (32 - 16) / 0.5
    EXPECT_EQ(px[0].y, -15);  // trunc(-16 + 0.5), towards zero
    px[1] = POINT{32, 8};
    EXPECT_EQ(view->ConvertUnits(u + 1, px + 1, 1, 0, eMeters), 1);
    EXPECT_DOUBLE_EQ(u[1].x, 32 * 1e-6 / 64);  // the zoom plays no part
    // Nothing to convert, or no scan length: 1, and pixels that saturate.
    EXPECT_EQ(view->ConvertUnits(nullptr, px, 1, 1, eMeters), 1);
    EXPECT_EQ(view->ConvertUnits(u, px, 0, 1, eMeters), 1);
    DPOINT none;
    view->DrawImage(nullptr, 64, 64, none, table.data(), 1.0, 0, 1, {});
    u[0] = dblPoint{1.0, 0.0};
    view->ConvertUnits(u, px, 1, 1, static_cast<eConvertUnits>(77));
    EXPECT_EQ(px[0].x, INT_MAX);
    EXPECT_EQ(px[0].y, 0);
}
