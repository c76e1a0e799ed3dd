// The bitmap push button as a user meets it: faces under the pointer, texts to the host.
#include "panel/Orlex.h"
#include "panel/OrlexHorzSlider.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using faces::kButtonClick;
using faces::kButtonNormal;
using faces::kButtonRollover;

constexpr int W = kButtonNormal.width, H = kButtonNormal.height;

class Button : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        Make(btn, true);
    }
    void Make(COrlex& b, bool allFaces, int x = 20, int y = 30, const char* m1 = "m1") {
        ASSERT_TRUE(b.Create(x, y, &host));
        b.LoadBitmap(kButtonNormal.id);
        if (allFaces) b.LoadRolloverBitmap(kButtonRollover.id), b.LoadClickBitmap(kButtonClick.id);
        b.LoadCtrlMessages(&log, m1, "m2", "m3");
        Pump();
    }
    static COLORREF Face(COrlex& b) { return At(b, W / 2, H / 2); }
    COrlex btn{0, 0, 0};
};

TEST_F(Button, FacesAndTextsFollowTheMouse) {
    enum Act { Move, Down, Up, QuickDown };
    const POINT in{10, 10}, out{180, 170};  // out lies on the host
    const COLORREF N = kButtonNormal.marker, R = kButtonRollover.marker, C = kButtonClick.marker;
    const struct {
        Act act;
        POINT at;
        COLORREF face;
        Texts texts;
    } steps[] = {
        {Move, {0, 0}, R, {"OrlexHelp"}},  {Move, {W, H}, R, {}},  // the far edges count inside
        {Move, {W + 1, H}, N, {}},         {Down, in, C, {"OrlexHelp"}},
        {Up, in, R, {"m1"}},               {Move, in, R, {"OrlexHelp"}},  // released: rollover stays
        {QuickDown, in, R, {}},            {Up, in, R, {"m1"}},  // an unmapped double click's release
        {Move, out, R, {}},  // not captured after a release: the move is the host's
        {Down, in, C, {"OrlexHelp"}},
        {Move, out, N, {}},                {Up, out, N, {}},  // slid off: nothing sent
        {Down, out, N, {}},                {Move, in, R, {"OrlexHelp"}},
        {Up, in, R, {"m1"}},  // a press begun on the host, released on the button
    };
    for (const auto& s : steps) {
        if (s.act == Move) MouseMove(btn.m_hWnd, s.at);
        if (s.act == Down) Later(), MouseDown(btn.m_hWnd, s.at);
        if (s.act == QuickDown) MouseDown(btn.m_hWnd, s.at);
        if (s.act == Up) MouseUp(btn.m_hWnd, s.at);
        EXPECT_EQ(Face(btn), s.face) << &s - steps;
        EXPECT_EQ(log.Take(), s.texts) << &s - steps;
    }
    MouseMove(btn.m_hWnd, in);
    EXPECT_EQ(::GetCursor(), ::LoadCursor(orlex::LibraryModule(), MAKEINTRESOURCE(IDC_ORLEX_HAND)));
}

TEST_F(Button, FacesShowOnlyWhenLoadedThroughTheirCalls) {
    // Without a click face the press shows no other face and the release still sends;
    // faces given to the constructor show only the normal one.
    COrlex plain(0, 0, 0), built(kButtonNormal.id, kButtonRollover.id, kButtonClick.id);
    Make(plain, false, 100, 30, "p1");
    Make(built, false, 180, 30, "b1");
    for (COrlex* b : {&plain, &built}) {
        Later();
        MouseDown(b->m_hWnd, POINT{10, 10});
        EXPECT_EQ(Face(*b), kButtonNormal.marker);
        MouseUp(b->m_hWnd, POINT{10, 10});
    }
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "p1", "OrlexHelp", "b1"}));
}

TEST_F(Button, ReceiversAreReplacedAtOnceAndEmptyTextsStillGo) {
    Log other;
    MouseMove(btn.m_hWnd, POINT{10, 10});
    btn.LoadCtrlMessages(&other, "", "", "");
    Click(btn.m_hWnd, POINT{10, 10});
    btn.LoadCtrlMessages(nullptr, "x", "", "");
    Later();
    Click(btn.m_hWnd, POINT{10, 10});
    EXPECT_EQ(log.Take(), Texts{"OrlexHelp"});
    EXPECT_EQ(other.Take(), Texts{""});
}

TEST_F(Button, OptionTable) {
    static char a[] = "A", b[] = "B";
    static char* opts[] = {a, b, a, nullptr};
    btn.LoadCtrlOptions(nullptr, opts);
    EXPECT_EQ(btn.m_nOptionCount, 3u);
    const struct {
        const char* text;  // null: by index
        UINT index, expectIndex;
        const char* expect;
        bool repaints;
    } cases[] = {{"B", 0, 1, "B", true},      {"A", 0, 0, "A", true},        {"b", 0, 0, "A", false},
                 {"", 0, 0, "A", false},      {nullptr, 2, 2, "A", true},    {nullptr, 3, 3, "", true},
                 {nullptr, 70000, 70000, "", true}};
    for (const auto& c : cases) {
        Pump();
        c.text ? btn.SetCtrlOption(CString(c.text)) : btn.SetCtrlOption(c.index);
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

TEST_F(Button, CreateAgainAndSetSpriteLocation) {
    COrlex orphan(0, 0, 0);
    EXPECT_EQ(orphan.Create(nullptr), 0);
    const HWND old = btn.m_hWnd;
    const HGDIOBJ face = btn.m_NormalBitmap.m_hObject;
    ASSERT_TRUE(btn.Create(60, 60, &host));  // the old window goes, the faces stay
    EXPECT_FALSE(::IsWindow(old));
    EXPECT_EQ(btn.m_NormalBitmap.m_hObject, face);
    EXPECT_TRUE(btn.m_bHasClick);
    btn.LoadBitmap(kButtonNormal.id);
    // Whichever was placed last takes the pointer where two buttons overlap.
    COrlex over(0, 0, 0);
    Make(over, false, 40, 30, "o1");
    over.SetSpriteLocation(40, 30);
    btn.SetSpriteLocation(30, 30);
    Click(host.m_hWnd, POINT{50, 40});
    CRect r;
    btn.GetWindowRect(&r);
    host.ScreenToClient(&r);
    EXPECT_EQ(r, CRect(30, 30, 30 + W, 30 + H));
    over.SetSpriteLocation(40, 30);
    Later();
    Click(host.m_hWnd, POINT{50, 40});
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "m1", "OrlexHelp", "o1"}));
}

TEST_F(Button, AReceiverMayDestroyTheControl) {
    COrlexHorzSlider slider;
    for (const char* text : {"OrlexHelp", "m1", "s1", "s2"}) {
        COrlex& c = text[0] == 's' ? slider : btn;
        if (&c == &btn) {
            Make(btn, true);
        } else {
            ASSERT_TRUE(slider.Create(20, 80, 100, &host));
            slider.LoadBitmap(faces::kLargeThumb.id, 0);
            slider.LoadCtrlMessages(&log, "s1", "s2", "");
        }
        log.onText = [&](const std::string& t) {
            if (t == text) c.DestroyWindow();
        };
        Later();
        Click(c.m_hWnd, POINT{10, 10});
        EXPECT_FALSE(c.Created());
    }
}

}  // namespace
