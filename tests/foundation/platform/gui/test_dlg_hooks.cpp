// Hook procedures of the colour and print dialogs: they get the dialog's window with
// WM_INITDIALOG and the caller's structure, scripted answers or not, and a hook that moves
// the dialog (centring it on its owner, as the plot's hooks do) changes nothing else.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/globalmem.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

struct Seen {
    HWND hwnd;
    UINT msg;
    LPARAM lp;
    bool alive;
    HWND parent;
    RECT rect;  // after the hook's own move at WM_INITDIALOG
    std::string caption;
};
std::vector<Seen> g_seen;

// Centres the dialog on its owner at WM_INITDIALOG.
UINT_PTR CALLBACK CentringHook(HWND hdlg, UINT msg, WPARAM, LPARAM lp) {
    // Recorded on arrival: what the hook does itself (reading the caption, moving) sends
    // messages that come back to it.
    const size_t at = g_seen.size();
    g_seen.push_back(Seen{hdlg, msg, lp, ::IsWindow(hdlg) != FALSE, ::GetParent(hdlg), {}, {}});
    if (msg == WM_INITDIALOG) {
        char caption[32] = {};
        ::GetWindowTextA(hdlg, caption, sizeof caption);
        RECT me, owner;
        ::GetWindowRect(hdlg, &me);
        ::GetWindowRect(g_seen[at].parent, &owner);
        const int w = me.right - me.left, h = me.bottom - me.top;
        ::MoveWindow(hdlg, (owner.left + owner.right - w) / 2, (owner.top + owner.bottom - h) / 2, w, h, FALSE);
        ::GetWindowRect(hdlg, &g_seen[at].rect);
        g_seen[at].caption = caption;
    }
    return 0;
}

class DialogHooks : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        g_seen.clear();
        ASSERT_TRUE(owner.CreateEx(0, nullptr, "owner", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 900, 700), nullptr, 0));
        Pump();
    }
    void TearDown() override { orlex::ModalScript::Reset(); }
    // The messages the hook saw, and checks common to every hooked dialog.
    void ExpectOpenedAndClosed(LPARAM structure, const char* title) {
        ASSERT_FALSE(g_seen.empty());
        const Seen& first = g_seen.front();
        EXPECT_EQ(first.msg, static_cast<UINT>(WM_INITDIALOG));
        EXPECT_EQ(first.lp, structure);
        EXPECT_TRUE(first.alive);
        EXPECT_EQ(first.parent, owner.m_hWnd);
        EXPECT_EQ(first.caption, title);
        // Gone when the call returned, after telling the hook.
        EXPECT_FALSE(::IsWindow(first.hwnd));
        bool destroyed = false;
        for (const Seen& s : g_seen) {
            EXPECT_EQ(s.hwnd, first.hwnd);
            destroyed |= s.msg == WM_DESTROY;
        }
        EXPECT_TRUE(destroyed);
        // Centred on the owner by the hook.
        const RECT& r = first.rect;
        EXPECT_EQ((r.left + r.right) / 2, 500);
        EXPECT_EQ((r.top + r.bottom) / 2, 400);
    }
    CWnd owner;
};

TEST_F(DialogHooks, ColourHookRunsWithScriptedAnswerAndCancel) {
    CHOOSECOLOR cc;
    COLORREF custom[16] = {};
    cc.hwndOwner = owner.m_hWnd;
    cc.lpCustColors = custom;
    cc.rgbResult = RGB(10, 20, 30);
    cc.Flags = CC_FULLOPEN | CC_RGBINIT | CC_ENABLEHOOK;
    cc.lpfnHook = CentringHook;
    ScriptAnswer("ColorDialog", RGB(1, 2, 3));
    ASSERT_TRUE(ChooseColor(&cc));
    EXPECT_EQ(cc.rgbResult, RGB(1, 2, 3));
    ExpectOpenedAndClosed(reinterpret_cast<LPARAM>(&cc), "Color");
    EXPECT_EQ(ModalLog().back().kind, "ColorDialog");
    EXPECT_EQ(ModalLog().back().text, "0x001E140A");

    // Unscripted: cancelled, and the hook still saw the dialog open.
    g_seen.clear();
    EXPECT_FALSE(ChooseColor(&cc));
    EXPECT_EQ(cc.rgbResult, RGB(1, 2, 3));
    EXPECT_FALSE(g_seen.empty());

    // Without CC_ENABLEHOOK the hook is not called.
    g_seen.clear();
    cc.Flags &= ~CC_ENABLEHOOK;
    ScriptAnswer("ColorDialog", RGB(4, 5, 6));
    EXPECT_TRUE(ChooseColor(&cc));
    EXPECT_TRUE(g_seen.empty());
}

TEST_F(DialogHooks, PrintHookRunsAndTheContextIsStillMade) {
    PRINTDLG pd;
    pd.hwndOwner = owner.m_hWnd;
    pd.Flags = PD_RETURNDC | PD_ENABLEPRINTHOOK;
    pd.lpfnPrintHook = CentringHook;
    pd.lpfnSetupHook = nullptr;
    ScriptAnswer("PrintDialog", IDOK);
    ASSERT_TRUE(PrintDlg(&pd));
    ExpectOpenedAndClosed(reinterpret_cast<LPARAM>(&pd), "Print");
    EXPECT_NE(pd.hDC, nullptr);
    DeleteDC(pd.hDC);
    pd.hDC = nullptr;

    struct Case { const char* what; DWORD flags; LPPRINTHOOKPROC print, setup; bool called; };
    const Case cases[] = {
        {"hook not enabled", PD_RETURNDC, CentringHook, nullptr, false},
        {"set-up form uses the set-up hook", PD_PRINTSETUP | PD_ENABLESETUPHOOK, nullptr, CentringHook, true},
        {"set-up form ignores the print hook", PD_PRINTSETUP | PD_ENABLEPRINTHOOK, CentringHook, nullptr, false},
        {"no dialog, no hook", PD_RETURNDEFAULT | PD_ENABLEPRINTHOOK, CentringHook, nullptr, false},
    };
    for (const Case& c : cases) {
        g_seen.clear();
        pd.Flags = c.flags;
        pd.lpfnPrintHook = c.print;
        pd.lpfnSetupHook = c.setup;
        ScriptAnswer("PrintDialog", IDOK);
        EXPECT_TRUE(PrintDlg(&pd)) << c.what;
        EXPECT_EQ(!g_seen.empty(), c.called) << c.what;
        if (pd.hDC) DeleteDC(pd.hDC);
        pd.hDC = nullptr;
    }
    orlex::ModalScript::Reset();
    GlobalFree(pd.hDevMode);
    GlobalFree(pd.hDevNames);
}

}  // namespace
