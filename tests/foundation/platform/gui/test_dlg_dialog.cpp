// Dialogs built from the library's templates: controls where the template puts them, the
// dialog keys, data exchange with its validation messages, scripted modal runs.
#include <gtest/gtest.h>

#include <functional>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/dlg_template_p.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

// The colour adjustment dialog's fields, as the colour bar's dialog exchanges them.
class AdjustDialog : public CDialog {
public:
    AdjustDialog() : CDialog(10005u) {}
    int contrast = 3, offset = -20, table = 12;
    void DoDataExchange(CDataExchange* dx) override {
        DDX_Text(dx, 10042, contrast);
        DDV_MinMaxInt(dx, contrast, -10, 10);
        DDX_Text(dx, 10043, offset);
        DDV_MinMaxInt(dx, offset, -128, 128);
        DDX_Text(dx, 10040, table);
        DDV_MinMaxInt(dx, table, 0, 21);
    }
};

class Dialogs : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        orlex::SetModalLoopHook({});
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }
    // Runs the dialog modally with `act` inside its loop.
    INT_PTR RunWith(CDialog& dlg, std::function<void(CDialog&)> act) {
        orlex::SetModalLoopHook([&dlg, act](CWnd*) { act(dlg); });
        return dlg.DoModal();
    }
};

std::string TextOf(CWnd* w) {
    CString s;
    w->GetWindowText(s);
    return s.GetString();
}

TEST_F(Dialogs, ControlsStandWhereTheTemplateSaysInDialogUnits) {
    orlex::detail::DialogTemplate t;
    ASSERT_TRUE(orlex::detail::LoadDialogTemplate(10005, t));
    AdjustDialog dlg;
    INT_PTR r = RunWith(dlg, [&t](CDialog& d) {
        CString caption;
        d.GetWindowText(caption);
        EXPECT_STREQ(caption, "Color Adjustment");
        CRect client;
        d.GetClientRect(&client);
        CRect size(0, 0, 103, 92);
        d.MapDialogRect(&size);
        EXPECT_EQ(client.Size(), size.Size());
        for (const auto& item : t.items) {
            if (item.id == -1) continue;
            CWnd* c = d.GetDlgItem(item.id);
            ASSERT_NE(c, nullptr) << item.id;
            CRect want(item.x, item.y, item.x + item.cx, item.y + item.cy);
            d.MapDialogRect(&want);
            CRect got;
            c->GetWindowRect(&got);
            d.ScreenToClient(&got);
            EXPECT_EQ(got, want) << item.id;
            char cls[32] = {};
            ::GetClassNameA(c->m_hWnd, cls, sizeof cls);
            EXPECT_EQ(std::string(cls), item.className) << item.id;
        }
        // The first tab stop has the focus, its text selected; OnInitDialog filled the edits.
        EXPECT_EQ(CWnd::GetFocus(), d.GetDlgItem(10042));
        EXPECT_EQ(TextOf(d.GetDlgItem(10042)), "3");
        EXPECT_EQ(TextOf(d.GetDlgItem(10043)), "-20");
        EXPECT_EQ(TextOf(d.GetDlgItem(10040)), "12");
        // The group box frame is drawn along its left edge, under the controls.
        CRect frame(5, 3, 98, 87);
        d.MapDialogRect(&frame);
        EXPECT_EQ(Pixel(d.m_hWnd, POINT{frame.left, (frame.top + frame.bottom) / 2}), GetSysColor(COLOR_BTNSHADOW));
        d.EndDialog(IDCANCEL);
    });
    EXPECT_EQ(r, IDCANCEL);
    const orlex::ModalRecord& shown = ModalLog().back();
    EXPECT_EQ(shown.kind, "Dialog");
    EXPECT_EQ(shown.text, "Color Adjustment");
    EXPECT_EQ(shown.style, 10005u);
}

TEST_F(Dialogs, EnterSavesValidFieldsAndEnds) {
    AdjustDialog dlg;
    INT_PTR r = RunWith(dlg, [](CDialog& d) {
        // Typing over the selected text, Tab to the next edit, Enter to finish.
        TypeText("-7");
        Key(VK_TAB);
        EXPECT_EQ(CWnd::GetFocus(), d.GetDlgItem(10043));
        TypeText("128");
        Key(VK_RETURN);
    });
    EXPECT_EQ(r, IDOK);
    EXPECT_EQ(dlg.contrast, -7);
    EXPECT_EQ(dlg.offset, 128);
    EXPECT_EQ(dlg.table, 12);
}

TEST_F(Dialogs, RangeFailureShowsTheMessageAndKeepsTheDialog) {
    // The exchange writes the field before the range check refuses it (callers put the old
    // value back themselves); text that isn't a number never reaches the field.
    struct Case { const char* typed; const char* message; int field; };
    const Case cases[] = {
        {"11", "Please enter an integer between -10 and 10.", 11},
        {"-11", "Please enter an integer between -10 and 10.", -11},
        {"1x", "Please enter an integer.", 3},
        {"", "Please enter an integer.", 3},
    };
    for (const Case& c : cases) {
        orlex::ModalScript::Reset();
        AdjustDialog dlg;
        bool stillOpen = false;
        HWND focusAfter = nullptr;
        INT_PTR r = RunWith(dlg, [&](CDialog& d) {
            Key(VK_DELETE);  // the selected text goes
            TypeText(c.typed);
            Key(VK_TAB);
            Key(VK_RETURN);
            stillOpen = d.IsWindowVisible() != 0;
            focusAfter = ::GetFocus();
        });
        EXPECT_TRUE(stillOpen) << c.typed;
        EXPECT_EQ(r, IDCANCEL) << c.typed;  // nobody closed it: the headless loop ends it
        EXPECT_EQ(dlg.contrast, c.field) << c.typed;
        ASSERT_GE(ModalLog().size(), 2u);
        const orlex::ModalRecord& box = ModalLog().back();
        EXPECT_EQ(box.kind, "MessageBox");
        EXPECT_EQ(box.text, c.message);
        EXPECT_EQ(box.style, MB_ICONEXCLAMATION);
        EXPECT_NE(focusAfter, nullptr);
    }
}

TEST_F(Dialogs, EscapeAndTheCloseButtonCancel) {
    AdjustDialog adjust;
    EXPECT_EQ(RunWith(adjust, [](CDialog&) { Key(VK_ESCAPE); }), IDCANCEL);

    // The scan line dialog: its "Close" button has id 1, the radio group exchanges an index.
    class ScanLine : public CDialog {
    public:
        ScanLine() : CDialog(10017u) {}
        int type = 2;
        void DoDataExchange(CDataExchange* dx) override { DDX_Radio(dx, 10080, type); }
    } scan;
    INT_PTR r = RunWith(scan, [](CDialog& d) {
        EXPECT_EQ(d.IsDlgButtonChecked(10082), 1u);
        EXPECT_EQ(d.IsDlgButtonChecked(10080), 0u);
        Click(d.GetDlgItem(10083)->m_hWnd, POINT{4, 4});
        EXPECT_EQ(d.IsDlgButtonChecked(10082), 0u);
        Click(d.GetDlgItem(IDOK)->m_hWnd, POINT{10, 5});
    });
    EXPECT_EQ(r, IDOK);
    EXPECT_EQ(scan.type, 3);
}

TEST_F(Dialogs, ModelessDialogLivesUntilDestroyed) {
    CWnd host;
    ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 400, 300), nullptr, 0));
    CDialog dlg;
    ASSERT_TRUE(dlg.Create(10006u, &host));
    EXPECT_FALSE(dlg.IsWindowVisible());
    dlg.ShowWindow(SW_SHOW);
    CWnd* combo = dlg.GetDlgItem(10051);
    ASSERT_NE(combo, nullptr);
    EXPECT_EQ(combo->SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>("Solid")), 0);
    dlg.SetDlgItemText(10013, "Curve1:");
    CString label;
    dlg.GetDlgItemText(10013, label);
    EXPECT_STREQ(label, "Curve1:");
    dlg.SetDlgItemInt(10013, static_cast<UINT>(-42));
    BOOL ok = FALSE;
    EXPECT_EQ(static_cast<int>(dlg.GetDlgItemInt(10013, &ok)), -42);
    EXPECT_TRUE(ok);
    dlg.SetDlgItemText(10013, "4 2");
    dlg.GetDlgItemInt(10013, &ok);
    EXPECT_FALSE(ok);
    dlg.CheckRadioButton(10022, 10022, 10022);
    EXPECT_EQ(dlg.IsDlgButtonChecked(10022), 1u);
    EXPECT_EQ(dlg.GetDefID(), 1u);
    EXPECT_TRUE(dlg.DestroyWindow());
    EXPECT_EQ(dlg.m_hWnd, nullptr);
}

TEST_F(Dialogs, MissingTemplateFailsWithoutAWindow) {
    CDialog dlg(4242u);
    EXPECT_EQ(dlg.DoModal(), -1);
    EXPECT_EQ(dlg.m_hWnd, nullptr);
}

TEST_F(Dialogs, DataExchangeRoundTripsEveryKind) {
    class All : public CDialog {
    public:
        All() : CDialog(11017u) {}
        double d = 0.1;
        float f = 2.5f;
        UINT u = 7;
        CString s = "abc";
        int slider = 45;
        void DoDataExchange(CDataExchange* dx) override {
            DDX_Text(dx, 11016, d);
            DDX_Text(dx, 11019, s);
            DDX_Slider(dx, 11018, slider);
            DDX_Text(dx, 11021, f);
        }
    } dlg;
    INT_PTR r = RunWith(dlg, [](CDialog& d) {
        EXPECT_EQ(TextOf(d.GetDlgItem(11016)), "0.1");
        EXPECT_EQ(TextOf(d.GetDlgItem(11019)), "abc");
        EXPECT_EQ(TextOf(d.GetDlgItem(11021)), "2.5");
        d.GetDlgItem(11018)->SendMessage(TBM_SETRANGE, TRUE, MAKELPARAM(0, 180));
        EXPECT_EQ(d.GetDlgItem(11018)->SendMessage(TBM_GETPOS), 45);
        d.SetDlgItemText(11016, " 1e3 ");
        d.SetDlgItemText(11019, "x y");
        d.GetDlgItem(11018)->SendMessage(TBM_SETPOS, TRUE, 120);
        d.SetDlgItemText(11021, "-0.25");
        d.OnOK();
    });
    EXPECT_EQ(r, IDOK);
    EXPECT_EQ(dlg.d, 1000.0);
    EXPECT_STREQ(dlg.s, "x y");
    EXPECT_EQ(dlg.slider, 120);
    EXPECT_EQ(dlg.f, -0.25f);
}

}  // namespace
