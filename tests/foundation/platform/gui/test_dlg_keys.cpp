// The dialog keys and the remaining exchanges: tab order, radio groups under the arrows,
// Enter on a focused or disabled button, combo boxes worked from the keyboard, exchanges
// of combo boxes and check boxes, owner-drawn menu items and tooltip texts asked for.
#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxmenu.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

// A dialog that records its commands instead of closing on them.
class Recording : public CDialog {
public:
    explicit Recording(UINT id) : CDialog(id) {}
    std::vector<UINT> commands;
    std::function<void(CDataExchange*)> exchange;
    BOOL OnCommand(WPARAM wp, LPARAM lp) override {
        if (HIWORD(wp) == BN_CLICKED) commands.push_back(LOWORD(wp));
        return CDialog::OnCommand(wp, lp);
    }
    void OnOK() override { commands.push_back(9001); }
    void OnCancel() override { commands.push_back(9002); }
    void DoDataExchange(CDataExchange* dx) override {
        if (exchange) exchange(dx);
    }
};

class Keys : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        orlex::SetModalLoopHook({});
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }
    void Run(CDialog& dlg, std::function<void(CDialog&)> act) {
        orlex::SetModalLoopHook([&dlg, act](CWnd*) {
            act(dlg);
            dlg.EndDialog(IDCANCEL);
        });
        dlg.DoModal();
    }
};

int FocusId() { return ::GetDlgCtrlID(::GetFocus()); }

TEST_F(Keys, TabWalksTheTabStopsAndArrowsWalkARadioGroup) {
    Recording dlg(10002u);
    std::vector<int> forward, backward;
    Run(dlg, [&](CDialog& d) {
        // Tab stops of the scale dialog: the range edit, the first radio of each group,
        // the centre edit and the Close button.
        for (int i = 0; i < 6; ++i) {
            forward.push_back(FocusId());
            Key(VK_TAB);
        }
        KeyDown(VK_SHIFT);
        for (int i = 0; i < 3; ++i) {
            Key(VK_TAB);
            backward.push_back(FocusId());
        }
        KeyUp(VK_SHIFT);
        // Down the first group with the arrows: each button reached is checked.
        d.GetDlgItem(10024)->SetFocus();
        Key(VK_DOWN);
        EXPECT_EQ(FocusId(), 10025);
        EXPECT_EQ(d.IsDlgButtonChecked(10025), 1u);
        Key(VK_DOWN);
        Key(VK_DOWN);  // the group ends at the edit with WS_GROUP: it stays on the last radio
        EXPECT_EQ(FocusId(), 10026);
        EXPECT_EQ(d.IsDlgButtonChecked(10025), 0u);
        Key(VK_UP);
        EXPECT_EQ(FocusId(), 10025);
    });
    EXPECT_EQ(forward, (std::vector<int>{10023, 10024, 10031, 10066, 2, 10023}));
    EXPECT_EQ(backward, (std::vector<int>{10023, 2, 10066}));
}

TEST_F(Keys, EnterPressesTheFocusedButtonOrTheDefault) {
    Recording dlg(10006u);
    Run(dlg, [&](CDialog& d) {
        Key(VK_RETURN);  // the default button is OK
        d.GetDlgItem(IDCANCEL)->SetFocus();
        Key(VK_RETURN);  // a focused push button is the one pressed
        d.GetDlgItem(10051)->SetFocus();
        d.GetDlgItem(IDOK)->EnableWindow(FALSE);
        Key(VK_RETURN);  // a disabled default does nothing
        Key(VK_ESCAPE);
    });
    EXPECT_EQ(dlg.commands, (std::vector<UINT>{IDOK, 9001, IDCANCEL, 9002, IDCANCEL, 9002}));
}

TEST_F(Keys, ComboFromTheKeyboard) {
    Recording dlg(10006u);
    Run(dlg, [&](CDialog& d) {
        CComboBox combo;
        combo.Attach(d.GetDlgItem(10051)->m_hWnd);
        for (const char* s : {"Solid", "Dash", "Dot"}) combo.AddString(s);
        combo.SetCurSel(0);
        combo.SetFocus();
        Key(VK_F4);
        EXPECT_TRUE(combo.GetDroppedState());
        Key(VK_DOWN);
        Key(VK_DOWN);
        EXPECT_EQ(combo.GetCurSel(), 0);  // moving in the open list changes nothing yet
        Key(VK_RETURN);                   // the combo wants Enter while open: the dialog doesn't end
        EXPECT_FALSE(combo.GetDroppedState());
        EXPECT_EQ(combo.GetCurSel(), 2);
        Key(VK_F4);
        Key(VK_UP);
        Key(VK_ESCAPE);
        EXPECT_EQ(combo.GetCurSel(), 2);
        // Typing a letter picks the next item that starts with it.
        TypeText("d");
        EXPECT_EQ(combo.GetCurSel(), 1);
        // A press outside the open list closes it unchanged.
        Key(VK_F4);
        Click(d.m_hWnd, POINT{2, 2});
        EXPECT_FALSE(combo.GetDroppedState());
        EXPECT_EQ(combo.GetCurSel(), 1);
        combo.Detach();
    });
    EXPECT_TRUE(dlg.commands.empty());
}

TEST_F(Keys, ExchangesOfCombosChecksAndRanges) {
    struct Fields {
        int style = 1;
        CString name = "Dot";
        int useFirst = 1;
        double gain = 2.5;
        BYTE level = 7;
        CString label = "abc";
    } f;
    Recording dlg(10006u);
    bool okSave = false;
    std::vector<std::string> messages;
    dlg.exchange = [&f](CDataExchange* dx) {
        DDX_CBIndex(dx, 10051, f.style);
        DDX_CBString(dx, 10052, f.name);
        DDX_Check(dx, 10022, f.useFirst);
        DDX_Text(dx, 10013, f.gain);
        DDV_MinMaxDouble(dx, f.gain, 0.5, 4.0);
        DDX_Text(dx, 10014, f.level);
        DDX_Text(dx, 10015, f.label);
        DDV_MaxChars(dx, f.label, 5);
    };
    Run(dlg, [&](CDialog& d) {
        for (int id : {10051, 10052})
            for (const char* s : {"Solid", "Dash", "Dot"}) d.GetDlgItem(id)->SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(s));
        d.UpdateData(FALSE);
        EXPECT_EQ(d.GetDlgItem(10051)->SendMessage(CB_GETCURSEL), 1);
        EXPECT_EQ(d.GetDlgItem(10052)->SendMessage(CB_GETCURSEL), 2);
        EXPECT_EQ(d.IsDlgButtonChecked(10022), 1u);
        d.GetDlgItem(10051)->SendMessage(CB_SETCURSEL, 0);
        d.GetDlgItem(10052)->SendMessage(CB_SETCURSEL, 1);
        d.CheckDlgButton(10022, 0);
        d.SetDlgItemText(10013, "3.75");
        d.SetDlgItemText(10014, "255");
        okSave = d.UpdateData(TRUE);
        struct Bad { int id; const char* text; const char* message; };
        const Bad bad[] = {
            {10013, "4.5", "Please enter a number between 0.5 and 4."},
            {10013, "four", "Please enter a number."},
            {10014, "256", "Please enter an integer between 0 and 255."},
            {10014, "-1", "Please enter a positive integer."},
            {10015, "toolong", "Please enter no more than 5 characters."},
        };
        for (const Bad& b : bad) {
            const CString keep = [&] { CString s; d.GetDlgItemText(b.id, s); return s; }();
            d.SetDlgItemText(b.id, b.text);
            EXPECT_FALSE(d.UpdateData(TRUE)) << b.text;
            messages.push_back(ModalLog().back().text);
            EXPECT_EQ(FocusId(), b.id) << b.text;
            d.SetDlgItemText(b.id, keep);
        }
    });
    EXPECT_TRUE(okSave);
    EXPECT_EQ(f.style, 0);
    EXPECT_STREQ(f.name, "Dash");
    EXPECT_EQ(f.useFirst, 0);
    EXPECT_EQ(f.gain, 3.75);
    EXPECT_EQ(f.level, 255);
    EXPECT_EQ(messages, (std::vector<std::string>{"Please enter a number between 0.5 and 4.", "Please enter a number.",
                                                  "Please enter an integer between 0 and 255.",
                                                  "Please enter a positive integer.",
                                                  "Please enter no more than 5 characters."}));
}

// The owner of a menu with an owner-drawn title, as the square boxes make it.
class TitleOwner : public CWnd {
public:
    std::vector<UINT> measured, drawn;
    COLORREF seen = CLR_INVALID;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_MEASUREITEM) {
            auto* mis = reinterpret_cast<MEASUREITEMSTRUCT*>(lp);
            EXPECT_EQ(mis->CtlType, ODT_MENU);
            measured.push_back(static_cast<UINT>(mis->itemData));
            mis->itemWidth = 60;
            mis->itemHeight = 18;
            return TRUE;
        }
        if (m == WM_DRAWITEM) {
            auto* dis = reinterpret_cast<DRAWITEMSTRUCT*>(lp);
            drawn.push_back(static_cast<UINT>(dis->itemData));
            EXPECT_EQ(dis->rcItem.right, 60);
            EXPECT_EQ(dis->rcItem.bottom, 18);
            CDC* dc = CDC::FromHandle(dis->hDC);
            dc->FillSolidRect(&dis->rcItem, RGB(0, 0, 128));
            seen = dc->GetPixel(30, 9);
            return TRUE;
        }
        return CWnd::WindowProc(m, wp, lp);
    }
};

TEST_F(Keys, OwnerDrawnMenuItemsAreMeasuredAndDrawnByTheOwner) {
    TitleOwner owner;
    ASSERT_TRUE(owner.CreateEx(0, nullptr, "owner", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 100, 100), nullptr, 0));
    CMenu menu;
    ASSERT_TRUE(menu.LoadMenu(10000));
    CMenu* box = menu.GetSubMenu(0);
    box->InsertMenu(0, MF_BYPOSITION | MF_OWNERDRAW | MF_DISABLED, 0, reinterpret_cast<LPCSTR>(static_cast<UINT_PTR>(77)));
    box->InsertMenu(1, MF_BYPOSITION | MF_SEPARATOR);
    ScriptAnswer("PopupMenu", 0);
    box->TrackPopupMenu(0, 0, 0, &owner);
    EXPECT_EQ(owner.measured, (std::vector<UINT>{77}));
    EXPECT_EQ(owner.drawn, (std::vector<UINT>{77}));
    EXPECT_EQ(owner.seen, RGB(0, 0, 128));
}

// A tool whose text is asked for each time it shows.
class AskingHost : public CWnd {
public:
    int asked = 0;
    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_NOTIFY && reinterpret_cast<NMHDR*>(lp)->code == TTN_NEEDTEXT) {
            auto* info = reinterpret_cast<NMTTDISPINFOA*>(lp);
            ++asked;
            std::snprintf(info->szText, sizeof info->szText, "Table: %d", 11 + asked);
            return 0;
        }
        return CWnd::WindowProc(m, wp, lp);
    }
};

TEST_F(Keys, TooltipAsksItsOwnerForTheText) {
    AskingHost host;
    ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 200, 100), nullptr, 0));
    CToolTipCtrl tip;
    ASSERT_TRUE(tip.Create(&host));
    CRect part(10, 10, 50, 50);
    ASSERT_TRUE(tip.AddTool(&host, LPSTR_TEXTCALLBACK, &part, 5));
    tip.SetDelayTime(TTDT_INITIAL, 20);
    MSG in{host.m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(20, 20), 0, {0, 0}};
    MSG out{host.m_hWnd, WM_MOUSEMOVE, 0, MAKELPARAM(120, 20), 0, {0, 0}};
    tip.RelayEvent(&out);
    AdvanceClock(100);
    EXPECT_EQ(host.asked, 0);  // outside the tool's rectangle
    tip.RelayEvent(&in);
    AdvanceClock(20);
    EXPECT_STREQ(tip.GetShownText(), "Table: 12");
    tip.Pop();
    tip.RelayEvent(&out);
    tip.RelayEvent(&in);
    AdvanceClock(20);
    EXPECT_STREQ(tip.GetShownText(), "Table: 13");
}

}  // namespace
