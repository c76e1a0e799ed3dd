// Dialog controls driven as a user drives them: the notifications their parent gets, with
// their parameters, and what they show.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

struct Note {
    UINT msg;
    UINT id;    // control id (WM_COMMAND, WM_NOTIFY) or 0
    UINT code;  // notification or scroll code
    int pos;    // scroll position, or the up-down's iPos
    int delta;  // the up-down's iDelta
    bool operator==(const Note& o) const {
        return msg == o.msg && id == o.id && code == o.code && pos == o.pos && delta == o.delta;
    }
};

std::ostream& operator<<(std::ostream& os, const Note& n) {
    return os << "{" << n.msg << "," << n.id << "," << static_cast<int>(n.code) << "," << n.pos << "," << n.delta << "}";
}

// A host window that records what its controls tell it.
class Host : public CWnd {
public:
    std::vector<Note> notes;
    LRESULT refuseDelta = 0;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_COMMAND) {
            notes.push_back({m, LOWORD(wp), HIWORD(wp), 0, 0});
        } else if (m == WM_HSCROLL || m == WM_VSCROLL) {
            notes.push_back({m, static_cast<UINT>(::GetDlgCtrlID(reinterpret_cast<HWND>(lp))), LOWORD(wp),
                             static_cast<short>(HIWORD(wp)), 0});
        } else if (m == WM_NOTIFY) {
            const NMHDR* h = reinterpret_cast<const NMHDR*>(lp);
            if (h->code == UDN_DELTAPOS) {
                const NMUPDOWN* ud = reinterpret_cast<const NMUPDOWN*>(lp);
                notes.push_back({m, static_cast<UINT>(h->idFrom), h->code, ud->iPos, ud->iDelta});
                return refuseDelta;
            }
            notes.push_back({m, static_cast<UINT>(h->idFrom), h->code, 0, 0});
        }
        return CWnd::WindowProc(m, wp, lp);
    }
    std::vector<Note> Codes(UINT msg) const {
        std::vector<Note> out;
        for (const Note& n : notes)
            if (n.msg == msg) out.push_back(n);
        return out;
    }
};

class Controls : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "controls", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 500, 400), nullptr, 0));
        Pump();
    }
    Host host;
};

TEST_F(Controls, TypingIntoAnEditNotifiesAndEdits) {
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_VISIBLE | WS_BORDER | ES_AUTOHSCROLL, CRect(10, 10, 150, 32), &host, 40));
    Click(edit.m_hWnd, POINT{5, 5});
    host.notes.clear();
    TypeText("ab");
    CString text;
    edit.GetWindowText(text);
    EXPECT_STREQ(text, "ab");
    // Each typed character: EN_UPDATE before the new look, EN_CHANGE after it.
    const std::vector<Note> want = {{WM_COMMAND, 40, EN_UPDATE, 0, 0}, {WM_COMMAND, 40, EN_CHANGE, 0, 0},
                                    {WM_COMMAND, 40, EN_UPDATE, 0, 0}, {WM_COMMAND, 40, EN_CHANGE, 0, 0}};
    EXPECT_EQ(host.Codes(WM_COMMAND), want);

    struct Step {
        const char* what;
        std::vector<int> keys;  // virtual keys pressed in turn, with Shift held for negative ones
        const char* type;
        const char* expect;
        int selStart, selEnd;
    };
    const Step steps[] = {
        {"home then type", {VK_HOME}, "x", "xab", 1, 1},
        {"shift+end selects, typing replaces", {-VK_END}, "Z", "xZ", 2, 2},
        {"backspace", {VK_BACK}, "", "x", 1, 1},
        {"left then delete", {VK_LEFT, VK_DELETE}, "", "", 0, 0},
    };
    for (const Step& s : steps) {
        for (int k : s.keys) {
            if (k < 0) KeyDown(VK_SHIFT);
            Key(k < 0 ? -k : k);
            if (k < 0) KeyUp(VK_SHIFT);
        }
        TypeText(s.type);
        edit.GetWindowText(text);
        EXPECT_STREQ(text, s.expect) << s.what;
        int a = -1, b = -1;
        edit.GetSel(a, b);
        EXPECT_EQ(a, s.selStart) << s.what;
        EXPECT_EQ(b, s.selEnd) << s.what;
    }
    EXPECT_TRUE(edit.Undo());  // the last change comes back
    edit.GetWindowText(text);
    EXPECT_STREQ(text, "x");
}

TEST_F(Controls, NumberOnlyAndLimitedEdits) {
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_VISIBLE | ES_NUMBER, CRect(10, 10, 150, 32), &host, 41));
    edit.LimitText(3);
    Click(edit.m_hWnd, POINT{5, 5});
    host.notes.clear();
    TypeText("1a2-34");
    CString text;
    edit.GetWindowText(text);
    EXPECT_STREQ(text, "123");
    int maxText = 0;
    for (const Note& n : host.notes) maxText += n.code == EN_MAXTEXT;
    EXPECT_EQ(maxText, 1);  // the '4' that didn't fit
    // Read-only refuses typing but keeps the caret moving.
    edit.SetReadOnly(TRUE);
    Key(VK_HOME);
    TypeText("9");
    edit.GetWindowText(text);
    EXPECT_STREQ(text, "123");
}

TEST_F(Controls, EditShowsSelectionAndCaret) {
    CEdit edit;
    ASSERT_TRUE(edit.Create(WS_VISIBLE, CRect(10, 10, 150, 32), &host, 42));
    edit.SetWindowText("        ");  // blanks: the selection colour shows without glyphs over it
    edit.SetFocus();
    edit.SetSel(0, -1);
    Pump();
    // The selection is highlighted from the text's start; outside the text the edit is white.
    EXPECT_EQ(Pixel(edit.m_hWnd, POINT{3, 11}), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(Pixel(edit.m_hWnd, POINT{135, 11}), GetSysColor(COLOR_WINDOW));
    edit.SetSel(0, 0);
    Pump();
    EXPECT_EQ(Pixel(edit.m_hWnd, POINT{2, 11}), GetSysColor(COLOR_WINDOWTEXT));  // the caret at the start
}

TEST_F(Controls, ButtonsClickedWithTheMouse) {
    CButton push, check, r1, r2, r3;
    ASSERT_TRUE(push.Create("Go", WS_VISIBLE | BS_PUSHBUTTON, CRect(10, 10, 90, 34), &host, 50));
    ASSERT_TRUE(check.Create("Check", WS_VISIBLE | BS_AUTOCHECKBOX, CRect(10, 40, 120, 56), &host, 51));
    ASSERT_TRUE(r1.Create("One", WS_VISIBLE | WS_GROUP | BS_AUTORADIOBUTTON, CRect(10, 60, 120, 76), &host, 52));
    ASSERT_TRUE(r2.Create("Two", WS_VISIBLE | BS_AUTORADIOBUTTON, CRect(10, 80, 120, 96), &host, 53));
    ASSERT_TRUE(r3.Create("Three", WS_VISIBLE | BS_AUTORADIOBUTTON, CRect(10, 100, 120, 116), &host, 54));
    Pump();
    host.notes.clear();

    struct Case { CButton* button; POINT at; int check, r1, r2, r3; };
    const Case cases[] = {
        {&push, {40, 12}, 0, 0, 0, 0},
        {&check, {5, 8}, 1, 0, 0, 0},
        {&r2, {5, 8}, 1, 0, 1, 0},
        {&r3, {5, 8}, 1, 0, 0, 1},
        {&check, {5, 8}, 0, 0, 0, 1},
        {&r1, {5, 8}, 0, 1, 0, 0},
    };
    std::vector<Note> want;
    for (const Case& c : cases) {
        Click(c.button->m_hWnd, c.at);
        want.push_back({WM_COMMAND, static_cast<UINT>(c.button->GetDlgCtrlID()), BN_CLICKED, 0, 0});
        EXPECT_EQ(check.GetCheck(), c.check);
        EXPECT_EQ(r1.GetCheck(), c.r1);
        EXPECT_EQ(r2.GetCheck(), c.r2);
        EXPECT_EQ(r3.GetCheck(), c.r3);
    }
    EXPECT_EQ(host.Codes(WM_COMMAND), want);

    // A press released outside the button is no click.
    host.notes.clear();
    MouseDown(push.m_hWnd, POINT{40, 12});
    MouseMove(push.m_hWnd, POINT{200, 12});
    MouseUp(push.m_hWnd, POINT{200, 12});
    EXPECT_TRUE(host.Codes(WM_COMMAND).empty());
    // The space bar clicks the focused button.
    push.SetFocus();
    Key(VK_SPACE);
    EXPECT_EQ(host.Codes(WM_COMMAND).size(), 1u);
}

TEST_F(Controls, CheckMarkIsDrawn) {
    CButton check;
    ASSERT_TRUE(check.Create("", WS_VISIBLE | BS_CHECKBOX, CRect(10, 10, 40, 30), &host, 60));
    Pump();
    // The box (13 pixels, centred vertically) is white; checking draws the mark inside it.
    const POINT inside{3 + 2, (20 - 13) / 2 + 3 + 4 + 1};
    EXPECT_EQ(Pixel(check.m_hWnd, inside), GetSysColor(COLOR_WINDOW));
    check.SetCheck(BST_CHECKED);
    Pump();
    EXPECT_EQ(Pixel(check.m_hWnd, inside), GetSysColor(COLOR_WINDOWTEXT));
    // BS_CHECKBOX (not auto) doesn't change by itself when clicked.
    Click(check.m_hWnd, POINT{5, 10});
    EXPECT_EQ(check.GetCheck(), 1);
}

TEST_F(Controls, DropListSelectsWithMouseAndKeys) {
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_VISIBLE | CBS_DROPDOWNLIST | WS_VSCROLL, CRect(10, 10, 150, 150), &host, 70));
    for (const char* s : {"Solid", "Dash", "Dot", "DashDot"}) combo.AddString(s);
    combo.SetItemData(2, 77);
    EXPECT_EQ(combo.GetCount(), 4);
    EXPECT_EQ(combo.FindStringExact(-1, "dot"), 2);
    EXPECT_EQ(combo.FindString(-1, "Dash"), 1);
    EXPECT_EQ(combo.FindString(1, "Dash"), 3);
    EXPECT_EQ(combo.GetItemData(2), 77u);
    host.notes.clear();

    Click(combo.m_hWnd, POINT{20, 5});  // drops the list
    ASSERT_TRUE(combo.GetDroppedState());
    HWND list = ::GetCapture();
    ASSERT_NE(list, nullptr);
    const int h = static_cast<int>(combo.SendMessage(CB_GETITEMHEIGHT, 0));
    Click(list, POINT{10, 2 * h + h / 2});  // the third item
    EXPECT_FALSE(combo.GetDroppedState());
    EXPECT_EQ(combo.GetCurSel(), 2);
    CString text;
    combo.GetWindowText(text);
    EXPECT_STREQ(text, "Dot");
    const std::vector<Note> want = {{WM_COMMAND, 70, CBN_SETFOCUS, 0, 0},   {WM_COMMAND, 70, CBN_DROPDOWN, 0, 0},
                                    {WM_COMMAND, 70, CBN_SELENDOK, 0, 0},   {WM_COMMAND, 70, CBN_CLOSEUP, 0, 0},
                                    {WM_COMMAND, 70, CBN_SELCHANGE, 0, 0}};
    EXPECT_EQ(host.Codes(WM_COMMAND), want);

    host.notes.clear();
    Key(VK_DOWN);
    Key(VK_DOWN);  // already the last: nothing changes
    EXPECT_EQ(combo.GetCurSel(), 3);
    EXPECT_EQ(host.Codes(WM_COMMAND), (std::vector<Note>{{WM_COMMAND, 70, CBN_SELCHANGE, 0, 0}}));
    // SetCurSel from code sends nothing; -1 clears the selection.
    host.notes.clear();
    EXPECT_EQ(combo.SetCurSel(-1), CB_ERR);
    EXPECT_EQ(combo.GetCurSel(), -1);
    EXPECT_TRUE(host.notes.empty());
}

TEST_F(Controls, DropDownComboHasItsEdit) {
    CComboBox combo;
    ASSERT_TRUE(combo.Create(WS_VISIBLE | CBS_DROPDOWN | CBS_AUTOHSCROLL, CRect(10, 10, 150, 150), &host, 71));
    CWnd* edit = combo.GetDlgItem(ORLEX_COMBO_EDIT_ID);
    ASSERT_NE(edit, nullptr);
    combo.AddString("alpha");
    combo.AddString("beta");
    EXPECT_EQ(combo.SelectString(-1, "BE"), 1);
    CString text;
    edit->GetWindowText(text);
    EXPECT_STREQ(text, "beta");
    edit->SetFocus();
    Key(VK_END);
    host.notes.clear();
    TypeText("x");
    combo.GetWindowText(text);
    EXPECT_STREQ(text, "betax");
    EXPECT_EQ(host.Codes(WM_COMMAND), (std::vector<Note>{{WM_COMMAND, 71, CBN_EDITUPDATE, 0, 0},
                                                          {WM_COMMAND, 71, CBN_EDITCHANGE, 0, 0}}));
}

TEST_F(Controls, TrackbarMovesItselfAndTellsTheParent) {
    CSliderCtrl slider;
    ASSERT_TRUE(slider.Create(WS_VISIBLE | TBS_AUTOTICKS, CRect(10, 10, 206, 40), &host, 80));
    slider.SetRange(0, 180);
    slider.SetPageSize(20);
    slider.SetPos(90);
    Pump();
    host.notes.clear();
    struct Case { int key; UINT code; int pos; };
    const Case keys[] = {{VK_RIGHT, TB_LINEDOWN, 91}, {VK_PRIOR, TB_PAGEUP, 71}, {VK_HOME, TB_TOP, 0},
                         {VK_LEFT, TB_LINEUP, 0},     {VK_END, TB_BOTTOM, 180}};
    slider.SetFocus();
    std::vector<Note> want;
    for (const Case& k : keys) {
        Key(k.key);
        EXPECT_EQ(slider.GetPos(), k.pos);
        want.push_back({WM_HSCROLL, 80, k.code, 0, 0});
        want.push_back({WM_HSCROLL, 80, TB_ENDTRACK, 0, 0});
    }
    EXPECT_EQ(host.Codes(WM_HSCROLL), want);

    // A drag of the thumb: track positions, then the final position, then the end.
    slider.SetPos(0);
    host.notes.clear();
    // The channel runs from 8 to 188 on a 196-pixel trackbar: one pixel per degree.
    Drag(slider.m_hWnd, POINT{8, 12}, POINT{98, 12}, 2);
    EXPECT_EQ(slider.GetPos(), 90);
    const std::vector<Note> drag = {{WM_HSCROLL, 80, TB_THUMBTRACK, 45, 0},
                                    {WM_HSCROLL, 80, TB_THUMBTRACK, 90, 0},
                                    {WM_HSCROLL, 80, TB_THUMBPOSITION, 90, 0},
                                    {WM_HSCROLL, 80, TB_ENDTRACK, 0, 0}};
    EXPECT_EQ(host.Codes(WM_HSCROLL), drag);
    // A click on the channel pages towards it.
    host.notes.clear();
    Click(slider.m_hWnd, POINT{180, 12});
    EXPECT_EQ(slider.GetPos(), 110);
    EXPECT_EQ(host.Codes(WM_HSCROLL).front(), (Note{WM_HSCROLL, 80, TB_PAGEDOWN, 0, 0}));
}

TEST_F(Controls, ScrollBarAsksAndTheParentMovesIt) {
    CScrollBar bar;
    ASSERT_TRUE(bar.Create(WS_VISIBLE | SBS_HORZ, CRect(10, 10, 210, 27), &host, 90));
    bar.SetScrollRange(-100, 100);
    bar.SetScrollPos(0);
    Pump();
    host.notes.clear();
    Click(bar.m_hWnd, POINT{5, 8});    // left arrow
    Click(bar.m_hWnd, POINT{195, 8});  // right arrow
    Click(bar.m_hWnd, POINT{30, 8});   // track left of the thumb
    const std::vector<Note> want = {{WM_HSCROLL, 90, SB_LINELEFT, 0, 0},  {WM_HSCROLL, 90, SB_ENDSCROLL, 0, 0},
                                    {WM_HSCROLL, 90, SB_LINERIGHT, 0, 0}, {WM_HSCROLL, 90, SB_ENDSCROLL, 0, 0},
                                    {WM_HSCROLL, 90, SB_PAGELEFT, 0, 0},  {WM_HSCROLL, 90, SB_ENDSCROLL, 0, 0}};
    EXPECT_EQ(host.Codes(WM_HSCROLL), want);
    EXPECT_EQ(bar.GetScrollPos(), 0);  // nobody answered

    host.notes.clear();
    // Thumb of 17 pixels centred at position 0: the track is 166 pixels from 17 to 183.
    Drag(bar.m_hWnd, POINT{100, 8}, POINT{183, 8}, 1);
    const std::vector<Note> got = host.Codes(WM_HSCROLL);
    ASSERT_EQ(got.size(), 3u);
    EXPECT_EQ(got[0].code, SB_THUMBTRACK);
    EXPECT_EQ(got[0].pos, 100);
    EXPECT_EQ(got[1], (Note{WM_HSCROLL, 90, SB_THUMBPOSITION, 100, 0}));
    EXPECT_EQ(got[2].code, SB_ENDSCROLL);
}

TEST_F(Controls, SpinAsksBeforeMovingAndWritesItsBuddy) {
    CEdit buddy;
    CSpinButtonCtrl spin;
    ASSERT_TRUE(buddy.Create(WS_VISIBLE, CRect(10, 10, 90, 32), &host, 100));
    ASSERT_TRUE(spin.Create(WS_VISIBLE | UDS_SETBUDDYINT | UDS_ALIGNRIGHT, CRect(0, 0, 16, 22), &host, 101));
    spin.SetBuddy(&buddy);
    spin.SetRange32(0, 1500);
    spin.SetPos32(999);
    CString text;
    buddy.GetWindowText(text);
    EXPECT_STREQ(text, "999");
    host.notes.clear();
    Click(spin.m_hWnd, POINT{8, 3});  // the up half
    buddy.GetWindowText(text);
    EXPECT_STREQ(text, "1,000");
    const std::vector<Note> want = {{WM_NOTIFY, 101, UDN_DELTAPOS, 999, 1},
                                    {WM_VSCROLL, 101, SB_THUMBPOSITION, 1000, 0},
                                    {WM_VSCROLL, 101, SB_ENDSCROLL, 1000, 0}};
    std::vector<Note> got;  // the buddy's own EN_ notes aside
    for (const Note& n : host.notes)
        if (n.msg != WM_COMMAND) got.push_back(n);
    EXPECT_EQ(got, want);
    // A refusing parent keeps it where it is.
    host.refuseDelta = 1;
    Click(spin.m_hWnd, POINT{8, 18});
    EXPECT_EQ(spin.GetPos32(), 1000);
    // Text typed into the buddy is where the next step starts.
    host.refuseDelta = 0;
    buddy.SetWindowText("7");
    Click(spin.m_hWnd, POINT{8, 18});
    EXPECT_EQ(spin.GetPos32(), 6);
}

TEST_F(Controls, ListBoxKeysAndClicks) {
    CListBox list;
    ASSERT_TRUE(list.Create(WS_VISIBLE | LBS_NOTIFY | LBS_SORT, CRect(10, 10, 110, 110), &host, 110));
    for (const char* s : {"pear", "Apple", "fig"}) list.AddString(s);
    CString t;
    list.GetText(0, t);
    EXPECT_STREQ(t, "Apple");
    list.GetText(2, t);
    EXPECT_STREQ(t, "pear");
    host.notes.clear();
    const int h = static_cast<int>(list.SendMessage(LB_GETITEMHEIGHT));
    Click(list.m_hWnd, POINT{5, h + 1});
    EXPECT_EQ(list.GetCurSel(), 1);
    Key(VK_DOWN);
    EXPECT_EQ(list.GetCurSel(), 2);
    DoubleClick(list.m_hWnd, POINT{5, 1});
    EXPECT_EQ(list.GetCurSel(), 0);
    std::vector<UINT> codes;
    for (const Note& n : host.Codes(WM_COMMAND))
        if (n.code != LBN_SETFOCUS) codes.push_back(n.code);
    EXPECT_EQ(codes, (std::vector<UINT>{LBN_SELCHANGE, LBN_SELCHANGE, LBN_SELCHANGE, LBN_DBLCLK}));
}

TEST_F(Controls, TooltipShowsAfterTheDelayAndPops) {
    CButton tool;
    ASSERT_TRUE(tool.Create("?", WS_VISIBLE | BS_PUSHBUTTON, CRect(10, 10, 60, 30), &host, 120));
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&host));
    ASSERT_TRUE(tip.AddTool(&tool, "Mean is the sum"));
    tip.SetDelayTime(TTDT_INITIAL, 200);
    tip.SetDelayTime(TTDT_AUTOPOP, 1000);
    tip.Activate(TRUE);
    MSG m{tool.m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(5, 5), 0, {0, 0}};
    tip.RelayEvent(&m);
    AdvanceClock(199);
    EXPECT_STREQ(tip.GetShownText(), "");
    AdvanceClock(1);
    EXPECT_STREQ(tip.GetShownText(), "Mean is the sum");
    EXPECT_TRUE(tip.IsWindowVisible());
    tip.UpdateTipText("Median", &tool);
    EXPECT_STREQ(tip.GetShownText(), "Median");
    AdvanceClock(1000);
    EXPECT_STREQ(tip.GetShownText(), "");
    // A click on the tool hides it at once.
    MSG away{host.m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(200, 200), 0, {0, 0}};
    tip.RelayEvent(&away);
    tip.RelayEvent(&m);
    AdvanceClock(200);
    EXPECT_STREQ(tip.GetShownText(), "Median");
    MSG press{tool.m_hWnd, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5), 0, {0, 0}};
    tip.RelayEvent(&press);
    EXPECT_STREQ(tip.GetShownText(), "");
}

TEST_F(Controls, TooltipOfAWholeWindowWatchesThePointerItself) {
    CButton tool;
    ASSERT_TRUE(tool.Create("?", WS_VISIBLE | BS_PUSHBUTTON, CRect(10, 10, 60, 30), &host, 121));
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&host));
    ASSERT_TRUE(tip.AddTool(&tool, "Reset Offsets"));
    tip.SetDelayTime(TTDT_INITIAL, 100);
    MouseMove(host.m_hWnd, POINT{200, 200});
    MouseMove(tool.m_hWnd, POINT{5, 5});
    AdvanceClock(100);
    EXPECT_STREQ(tip.GetShownText(), "Reset Offsets");
    Click(tool.m_hWnd, POINT{5, 5});  // and the button still works under the watch
    EXPECT_STREQ(tip.GetShownText(), "");
    EXPECT_EQ(host.Codes(WM_COMMAND).back(), (Note{WM_COMMAND, 121, BN_CLICKED, 0, 0}));
}

}  // namespace
