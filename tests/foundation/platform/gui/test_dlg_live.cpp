// Dialogs used the way the plot's scale dialog and the grid's in-place list use them:
// handlers by message map for scroll bars, buttons and edits losing the focus, a combo
// box that handles its own drop-down notice, and text through the clipboard.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

// A scale dialog with offsets: its scroll bars move by the step of their code.
class OffsetsDialog : public CDialog {
public:
    OffsetsDialog() : CDialog(10003u) {}
    std::vector<std::string> events;
    bool barsAreScrollBars = true;
    BOOL OnInitDialog() override {
        CDialog::OnInitDialog();
        for (int id : {10034, 10035}) {
            // The control's object is of its own class, so the usual cast is sound.
            barsAreScrollBars = barsAreScrollBars && dynamic_cast<CScrollBar*>(GetDlgItem(id)) != nullptr;
            auto* bar = static_cast<CScrollBar*>(GetDlgItem(id));
            bar->SetScrollRange(-100, 100);
            bar->SetScrollPos(0);
        }
        return TRUE;
    }

protected:
    void OnHScroll(UINT code, UINT pos, CScrollBar* bar) override {
        if (!bar) return;
        int at = bar->GetScrollPos();
        switch (code) {
        case SB_LINELEFT: at -= 1; break;
        case SB_LINERIGHT: at += 1; break;
        case SB_PAGELEFT: at -= 10; break;
        case SB_PAGERIGHT: at += 10; break;
        case SB_THUMBPOSITION:
        case SB_THUMBTRACK: at = static_cast<short>(pos); break;
        default: return;
        }
        bar->SetScrollPos(at);
        events.push_back("scroll " + std::to_string(bar->GetDlgCtrlID()) + " " + std::to_string(bar->GetScrollPos()));
    }
    void OnReset() {
        for (int id : {10034, 10035}) static_cast<CScrollBar*>(GetDlgItem(id))->SetScrollPos(0);
        events.push_back("reset");
    }
    void OnRangeLeft() {
        CString text;
        GetDlgItemText(10023, text);
        events.push_back("range left with \"" + std::string(text.GetString()) + "\"");
    }
    void OnMedian() { events.push_back("median"); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(OffsetsDialog, CDialog)
    ON_WM_HSCROLL()
    ON_BN_CLICKED(10065, OnReset)
    ON_BN_CLICKED(10025, OnMedian)
    ON_EN_KILLFOCUS(10023, OnRangeLeft)
END_MESSAGE_MAP()

class Live : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        orlex::SetModalLoopHook({});
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }
};

TEST_F(Live, ScaleDialogHandlersByMessageMap) {
    OffsetsDialog dlg;
    orlex::SetModalLoopHook([&dlg](CWnd*) {
        TypeText("2.5");
        Key(VK_TAB);  // the range edit loses the focus
        HWND dx = dlg.GetDlgItem(10034)->m_hWnd;
        CRect r;
        ::GetClientRect(dx, &r);
        Click(dx, POINT{r.right - 3, r.bottom / 2});  // right arrow
        Click(dx, POINT{r.right - 3, r.bottom / 2});
        Click(dx, POINT{r.right - 25, r.bottom / 2});  // the track right of the thumb
        Click(dlg.GetDlgItem(10025)->m_hWnd, POINT{4, 4});
        Click(dlg.GetDlgItem(10065)->m_hWnd, POINT{10, 5});
        dlg.EndDialog(IDOK);
    });
    EXPECT_EQ(dlg.DoModal(), IDOK);
    EXPECT_TRUE(dlg.barsAreScrollBars);
    EXPECT_EQ(dlg.events, (std::vector<std::string>{"range left with \"2.5\"", "scroll 10034 1", "scroll 10034 2",
                                                    "scroll 10034 12", "median", "reset"}));
}

// A drop list that fills itself when it is about to drop, as the grid's in-place list does.
class FillingList : public CComboBox {
public:
    int drops = 0;
    void OnDropDown() {
        ++drops;
        if (GetCount() == 0)
            for (const char* s : {"Low", "Medium", "High"}) AddString(s);
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(FillingList, CComboBox)
    ON_CONTROL_REFLECT(CBN_DROPDOWN, OnDropDown)
END_MESSAGE_MAP()

TEST_F(Live, ComboHandlesItsOwnDropDownNotice) {
    CWnd host;
    ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 300, 200), nullptr, 0));
    FillingList list;
    ASSERT_TRUE(list.Create(WS_CHILD | WS_VISIBLE | CBS_DROPDOWNLIST | WS_VSCROLL, CRect(10, 10, 150, 120), &host, 5));
    EXPECT_EQ(list.GetCount(), 0);
    list.ShowDropDown(TRUE);
    EXPECT_EQ(list.drops, 1);
    EXPECT_EQ(list.GetCount(), 3);
    Key(VK_ESCAPE);
    list.ShowDropDown(FALSE);
    // The dropped list is as tall as its items, under the combo.
    list.ShowDropDown(TRUE);
    CRect combo, dropped;
    list.GetWindowRect(&combo);
    ::GetWindowRect(::GetCapture(), &dropped);
    EXPECT_EQ(dropped.top, combo.bottom);
    CRect client;
    ::GetClientRect(::GetCapture(), &client);
    EXPECT_EQ(client.Height(), 3 * static_cast<int>(list.SendMessage(CB_GETITEMHEIGHT, 0)));
    list.ShowDropDown(FALSE);
    EXPECT_EQ(list.drops, 2);
}

TEST_F(Live, EditTextThroughTheClipboard) {
    CWnd host;
    ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 300, 200), nullptr, 0));
    CEdit from, to, password;
    ASSERT_TRUE(from.Create(WS_CHILD | WS_VISIBLE, CRect(10, 10, 200, 30), &host, 1));
    ASSERT_TRUE(to.Create(WS_CHILD | WS_VISIBLE, CRect(10, 40, 200, 60), &host, 2));
    ASSERT_TRUE(password.Create(WS_CHILD | WS_VISIBLE | ES_PASSWORD, CRect(10, 70, 200, 90), &host, 3));
    from.SetWindowText("12.5\r\nsecond line");
    from.SetSel(0, -1);
    from.Copy();
    to.SetWindowText("x=");
    to.SetSel(2, 2);
    to.Paste();  // one line: up to the first line break
    CString text;
    to.GetWindowText(text);
    EXPECT_STREQ(text, "x=12.5");
    // The grid pastes into an open editor with WM_PASTE; Ctrl+V types the same.
    to.SetFocus();
    to.SetSel(0, -1);
    Key(VK_DELETE);
    KeyDown(VK_CONTROL);
    Key('V');
    KeyUp(VK_CONTROL);
    to.GetWindowText(text);
    EXPECT_STREQ(text, "12.5");
    // A password edit gives nothing away; cutting from an edit removes the text.
    password.SetWindowText("secret");
    password.SetSel(0, -1);
    password.Copy();
    to.SetSel(0, -1);
    to.Cut();
    to.GetWindowText(text);
    EXPECT_STREQ(text, "");
    from.SetSel(0, 0);
    from.Paste();
    from.GetWindowText(text);
    EXPECT_STREQ(text, "12.512.5\r\nsecond line");
}

}  // namespace
