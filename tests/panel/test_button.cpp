// The bitmap push button as a user meets it: faces under the pointer, texts to the host.
#include "panel/Orlex.h"
#include "foundation/platform/resources.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using faces::kButtonClick;
using faces::kButtonNormal;
using faces::kButtonRollover;

class Button : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        Make(btn, true);
    }
    void Make(COrlex& b, bool allFaces, int x = 20, int y = 30) {
        ASSERT_TRUE(b.Create(x, y, &host));
        b.LoadBitmap(kButtonNormal.id);
        if (allFaces) {
            b.LoadRolloverBitmap(kButtonRollover.id);
            b.LoadClickBitmap(kButtonClick.id);
        }
        b.LoadCtrlMessages(&log, "m1", "m2", "m3");
        Pump();
    }
    COLORREF Face(COrlex& b) { return At(b, kButtonNormal.width / 2, kButtonNormal.height / 2); }

    enum class Act { Move, Down, Up, HostMove, HostDown, HostUp };
    struct Step {
        Act act;
        COLORREF face;
        Texts texts;
    };
    // Each step at (10, 10) of the button or at (200, 200) of the host, then the face and
    // the texts it brought.
    void Run(const std::vector<Step>& steps) {
        for (std::size_t i = 0; i < steps.size(); ++i) {
            const POINT in{10, 10}, out{200, 200};
            switch (steps[i].act) {
            case Act::Move: MouseMove(btn.m_hWnd, in); break;
            case Act::Down: Later(), MouseDown(btn.m_hWnd, in); break;
            case Act::Up: MouseUp(btn.m_hWnd, in); break;
            case Act::HostMove: MouseMove(host.m_hWnd, out); break;
            case Act::HostDown: MouseDown(host.m_hWnd, out); break;
            case Act::HostUp: MouseUp(host.m_hWnd, out); break;
            }
            EXPECT_EQ(Face(btn), steps[i].face) << "step " << i;
            EXPECT_EQ(log.Take(), steps[i].texts) << "step " << i;
        }
    }

    COrlex btn{0, 0, 0};
};

TEST_F(Button, FacesAndTextsFollowTheMouse) {
    const COLORREF N = kButtonNormal.marker, R = kButtonRollover.marker, C = kButtonClick.marker;
    // Hover, press, release (the rollover face stays), a second entry, leave; then a press
    // that slides off and is released outside (nothing sent); then a press begun on the
    // host and released on the button (sent).
    Run({{Act::Move, R, {"OrlexHelp"}}, {Act::Down, C, {}}, {Act::Up, R, {"m1"}}, {Act::Move, R, {"OrlexHelp"}},
         {Act::HostMove, N, {}}, {Act::Down, C, {"OrlexHelp"}}, {Act::HostMove, N, {}}, {Act::HostUp, N, {}},
         {Act::HostDown, N, {}}, {Act::Move, R, {"OrlexHelp"}}, {Act::Up, R, {"m1"}}});
}

TEST_F(Button, FacesComeOnlyThroughTheirLoadCalls) {
    // No click face: the press shows the rollover face and the release still sends. Faces
    // given to the constructor show only the normal one.
    COrlex plain(0, 0, 0), built(kButtonNormal.id, kButtonRollover.id, kButtonClick.id);
    Make(plain, false, 100, 30);
    ASSERT_TRUE(built.Create(180, 30, &host));
    built.LoadBitmap(kButtonNormal.id);
    built.LoadCtrlMessages(&log, "b1", "", "");
    Pump();
    const COLORREF N = kButtonNormal.marker;
    for (COrlex* b : {&plain, &built}) {
        Later();
        MouseDown(b->m_hWnd, POINT{10, 10});
        EXPECT_EQ(Face(*b), N);
        MouseUp(b->m_hWnd, POINT{10, 10});
        EXPECT_EQ(Face(*b), N);
    }
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "m1", "OrlexHelp", "b1"}));
    EXPECT_FALSE(built.m_bHasRollover || built.m_bHasClick);
}

TEST_F(Button, HitTestCountsTheFarEdgesInsideAndTheHandShows) {
    MouseMove(btn.m_hWnd, POINT{0, 0});
    EXPECT_EQ(::GetCursor(), ::LoadCursor(orlex::LibraryModule(), MAKEINTRESOURCE(IDC_ORLEX_HAND)));
    MouseMove(btn.m_hWnd, POINT{kButtonNormal.width, kButtonNormal.height});
    EXPECT_EQ(::GetCapture(), btn.m_hWnd);
    EXPECT_EQ(Face(btn), kButtonRollover.marker);
    MouseMove(btn.m_hWnd, POINT{kButtonNormal.width + 1, kButtonNormal.height});
    EXPECT_EQ(::GetCapture(), nullptr);
    EXPECT_EQ(Face(btn), kButtonNormal.marker);
    EXPECT_EQ(log.Take(), Texts{"OrlexHelp"});
}

TEST_F(Button, QuickSecondPressIsADoubleClickWhoseReleaseStillSends) {
    DoubleClick(btn.m_hWnd, POINT{10, 10});
    Texts t = log.Take();
    EXPECT_EQ(std::count(t.begin(), t.end(), "m1"), 2);
}

TEST_F(Button, ReceiversAreReplacedAtOnceAndEmptyTextsStillGo) {
    Log other;
    MouseMove(btn.m_hWnd, POINT{10, 10});
    btn.LoadCtrlMessages(&other, "", "", "");
    Click(btn.m_hWnd, POINT{10, 10});
    EXPECT_EQ(log.Take(), Texts{"OrlexHelp"});
    EXPECT_EQ(other.Take(), Texts{""});
    btn.LoadCtrlMessages(nullptr, "x", "", "");
    Later();
    Click(btn.m_hWnd, POINT{10, 10});
    EXPECT_EQ(Face(btn), kButtonRollover.marker);
    EXPECT_TRUE(other.texts.empty());
}

TEST_F(Button, OptionTable) {
    static char a[] = "A", b[] = "B";
    static char* opts[] = {a, b, a, nullptr};
    btn.LoadCtrlOptions(nullptr, opts);
    EXPECT_EQ(btn.m_nOptionCount, 3u);
    struct Case {
        const char* text;  // null: by index
        UINT index;
        UINT expectIndex;
        const char* expect;
        bool repaints;
    };
    const Case cases[] = {{"B", 0, 1, "B", true},   {"A", 0, 0, "A", true},  {"b", 0, 0, "A", false},
                          {"", 0, 0, "A", false},   {nullptr, 2, 2, "A", true}, {nullptr, 3, 3, "", true},
                          {nullptr, 70000, 70000, "", true}};
    for (const Case& c : cases) {
        Pump();
        if (c.text) btn.SetCtrlOption(CString(c.text));
        else btn.SetCtrlOption(c.index);
        CRect r;
        EXPECT_EQ(btn.GetUpdateRect(&r) != 0, c.repaints) << (c.text ? c.text : "index");
        EXPECT_EQ(btn.GetCtrlOptionIndex(), c.expectIndex);
        EXPECT_STREQ(btn.GetCtrlOption(), c.expect);
    }
    btn.LoadCtrlOptions(nullptr, nullptr);
    btn.SetCtrlOption(CString("A"));
    EXPECT_EQ(btn.m_nOptionCount, 0u);
    EXPECT_STREQ(btn.GetCtrlOption(), "");
}

TEST_F(Button, CreateAgainMakesANewWindowAndKeepsTheFaces) {
    COrlex orphan(0, 0, 0);
    EXPECT_EQ(orphan.Create(nullptr), 0);
    const HWND old = btn.m_hWnd;
    const HGDIOBJ face = btn.m_NormalBitmap.m_hObject;
    ASSERT_TRUE(btn.Create(60, 60, &host));
    EXPECT_FALSE(::IsWindow(old));
    EXPECT_EQ(btn.m_NormalBitmap.m_hObject, face);
    EXPECT_TRUE(btn.m_bHasClick);
}

TEST_F(Button, SetSpriteLocationMovesAndRaises) {
    // Whichever was placed last takes the pointer where the two overlap.
    COrlex over(0, 0, 0);
    Make(over, false, 40, 30);
    Log overLog;
    over.LoadCtrlMessages(&overLog, "o1", "", "");
    over.SetSpriteLocation(40, 30);
    Click(host.m_hWnd, POINT{50, 40});
    btn.SetSpriteLocation(30, 30);
    Later();
    Click(host.m_hWnd, POINT{50, 40});
    EXPECT_EQ(overLog.Take(), (Texts{"OrlexHelp", "o1"}));
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "m1"}));
    CRect r;
    btn.GetWindowRect(&r);
    host.ScreenToClient(&r);
    EXPECT_EQ(r, CRect(30, 30, 30 + kButtonNormal.width, 30 + kButtonNormal.height));
}

TEST_F(Button, AReceiverMayDestroyTheButton) {
    for (const char* text : {"OrlexHelp", "m1"}) {
        Make(btn, true);
        log.onText = [&](const std::string& t) {
            if (t == text) btn.DestroyWindow();
        };
        Later();
        Click(btn.m_hWnd, POINT{10, 10});
        EXPECT_FALSE(btn.Created());
        log.onText = nullptr;
    }
}

}  // namespace
