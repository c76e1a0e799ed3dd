// "Color Adjustment" driven by keyboard and mouse: what each edit does to the bar, range
// messages, Color Reset, Return and Escape in an edit, closing, focus notices to a frame,
// and the modal form.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "colour/ColorCtrl.h"
#include "colour/ColorTable.h"
#include "colour/ImageAdjust.h"
#include "foundation/MessageCatalogue.h"
#include "support/orlex_test.h"

namespace {

// Records the messages that reach a window, then lets it handle them.
struct Recorder {
    struct Note {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
    };
    std::vector<Note> notes;
    int Count(UINT message, WPARAM wParam) const
    {
        int n = 0;
        for (const Note& x : notes) n += x.message == message && x.wParam == wParam;
        return n;
    }
    int Count(UINT message) const
    {
        int n = 0;
        for (const Note& x : notes) n += x.message == message;
        return n;
    }
};

class Host : public CWnd, public Recorder {
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == MESSAGE_COLOR_CTRL_STR || (message == WM_COMMAND && LOWORD(wParam) == ID_COLOR_SCALE))
            notes.push_back({message, wParam, lParam});
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

}  // namespace

// A stand-in for the image frame, known to the bar and the dialog by its class name.
class CBorderCon : public CWnd, public Recorder {
    DECLARE_DYNAMIC(CBorderCon)
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == MESSAGE_BORDERCON_ADJUST_FOCUS_STR || message == MESSAGE_COLOR_CTRL_STR ||
            message == WM_COMMAND)
            notes.push_back({message, wParam, lParam});
        return CWnd::WindowProc(message, wParam, lParam);
    }
};
IMPLEMENT_DYNAMIC(CBorderCon, CWnd)

namespace {

class SpyBar : public CColorCtrl, public Recorder {
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == MESSAGE_BORDERCON_DIALOG_DELETED_STR) notes.push_back({message, wParam, lParam});
        return CColorCtrl::WindowProc(message, wParam, lParam);
    }
};

class AdjustDialog : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        InitializeColorTables();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_POPUP | WS_VISIBLE, CRect(50, 50, 250, 350), nullptr, 0));
        CRect r(10, 10, 32, 268);
        bar.Create(r, &host, 5);
        bar.SetColorTable(25, 0);
        orlex::test::Pump();
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }

    CImageAdjust* Open()
    {
        orlex::test::AdvanceClock(2000);
        orlex::test::Click(bar.m_hWnd, POINT{5, 100});
        CImageAdjust* dlg = bar.m_pDialog;
        if (dlg) dlg->SetWindowPos(nullptr, 400, 400, 0, 0, SWP_NOSIZE | SWP_NOZORDER);  // off the bar
        return dlg;
    }
    std::string Text(CImageAdjust* dlg, int id)
    {
        char buf[32] = {};
        ::GetDlgItemTextA(dlg->m_hWnd, id, buf, sizeof buf);
        return buf;
    }
    // Types into an edit as a user does: focus, select all, type, Tab away.
    static void Enter(CImageAdjust* dlg, int id, const char* text)
    {
        CWnd* edit = dlg->GetDlgItem(id);
        ASSERT_NE(edit, nullptr);
        edit->SetFocus();
        edit->SendMessage(EM_SETSEL, 0, -1);
        orlex::test::TypeText(text);
        orlex::test::Key(VK_TAB);
        orlex::test::Pump();
    }

    Host host;
    SpyBar bar;
};

TEST_F(AdjustDialog, StartsFromTheBar)
{
    bar.SetContrast(-3);
    bar.SetOffset(17);
    bar.SetColorTable(4, 0);
    CImageAdjust* dlg = Open();
    ASSERT_NE(dlg, nullptr);
    EXPECT_EQ(Text(dlg, IDC_ADJUST_CONTRAST), "-3");
    EXPECT_EQ(Text(dlg, IDC_ADJUST_OFFSET), "17");
    EXPECT_EQ(Text(dlg, IDC_ADJUST_TABLE), "4");
    EXPECT_EQ(dlg->m_pColorCtrl, &bar);
}

TEST_F(AdjustDialog, EditsChangeTheBarOrRestoreTheLastGoodValue)
{
    const int last = GetNumberOfColorTables() - 1;
    const std::string tableRange = "Please enter an integer between 0 and " + std::to_string(last) + ".";
    struct Case {
        int id;
        const char* typed;
        int contrast, offset, table;  // the bar afterwards
        const char* shown;            // the edit afterwards
        std::string box;              // message box text, empty for none
        int colourMessages;
    };
    const Case cases[] = {
        {IDC_ADJUST_CONTRAST, "5", 5, 0, 25, "5", "", 1},
        {IDC_ADJUST_OFFSET, "-20", 5, -20, 25, "-20", "", 1},
        {IDC_ADJUST_TABLE, "22", 5, -20, 22, "22", "", 1},
        {IDC_ADJUST_TABLE, "22", 5, -20, 22, "22", "", 0},  // nothing changed, nothing sent
        {IDC_ADJUST_CONTRAST, "11", 5, -20, 22, "5", "Please enter an integer between -10 and 10.", 0},
        {IDC_ADJUST_OFFSET, "-129", 5, -20, 22, "-20", "Please enter an integer between -128 and 128.", 0},
        {IDC_ADJUST_TABLE, "999", 5, -20, 22, "22", tableRange, 0},
        {IDC_ADJUST_CONTRAST, "x", 5, -20, 22, "5", "Please enter an integer.", 0},
        {IDC_ADJUST_OFFSET, "128", 5, 128, 22, "128", "", 1},
    };
    CImageAdjust* dlg = Open();
    ASSERT_NE(dlg, nullptr);
    for (const Case& c : cases) {
        const std::string what = std::to_string(c.id) + " <- " + c.typed;
        host.notes.clear();
        orlex::ModalScript::Reset();
        Enter(dlg, c.id, c.typed);
        EXPECT_EQ(bar.GetContrast(), c.contrast) << what;
        EXPECT_EQ(bar.GetOffset(), c.offset) << what;
        EXPECT_EQ(bar.GetColorTableIdx(), c.table) << what;
        EXPECT_EQ(Text(dlg, c.id), c.shown) << what;
        std::vector<std::string> boxes;
        for (const auto& rec : orlex::test::ModalLog())
            if (rec.kind == "MessageBox") boxes.push_back(rec.text);
        if (c.box.empty()) {
            EXPECT_TRUE(boxes.empty()) << what;
        } else {
            ASSERT_FALSE(boxes.empty()) << what;
            EXPECT_EQ(boxes.front(), c.box) << what;
            EXPECT_EQ(::GetFocus(), dlg->GetDlgItem(c.id)->m_hWnd) << what;  // back to the edit
        }
        EXPECT_EQ(host.Count(MESSAGE_COLOR_CTRL_STR, 0), c.colourMessages) << what;
        for (const auto& n : host.notes)
            if (n.message == MESSAGE_COLOR_CTRL_STR) EXPECT_EQ(n.lParam, reinterpret_cast<LPARAM>(bar.GetColorTable()));
    }
    // The bar shows what the dialog set: the red ramp (table 22) at contrast 5 puts entry
    // 128 at 127, and offset 128 brings that entry to the bottom.
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(bar.m_hWnd, POINT{5, 255}), RGB(127, 0, 0));
    EXPECT_EQ(orlex::test::Pixel(bar.m_hWnd, POINT{5, 0}), RGB(255, 0, 0));
}

TEST_F(AdjustDialog, ResetKeepsTheTableAndAHostTable)
{
    bar.SetColorTable(5, 0);
    std::vector<tagRGBQUAD> mine(256, tagRGBQUAD{1, 2, 3, 255});
    bar.ModifyColorTable(mine.data());
    bar.SetContrast(4);
    bar.SetOffset(-9);
    bar.SetColorTable(5, 0);
    CImageAdjust* dlg = Open();
    ASSERT_NE(dlg, nullptr);
    host.notes.clear();
    CRect button;
    dlg->GetDlgItem(IDC_ADJUST_RESET)->GetWindowRect(&button);
    dlg->ScreenToClient(&button);
    orlex::test::Click(dlg->m_hWnd, button.CenterPoint());
    orlex::test::Pump();
    EXPECT_EQ(bar.GetContrast(), 0);
    EXPECT_EQ(bar.GetOffset(), 0);
    EXPECT_EQ(bar.GetColorTableIdx(), 5);
    EXPECT_EQ(Text(dlg, IDC_ADJUST_CONTRAST), "0");
    EXPECT_EQ(Text(dlg, IDC_ADJUST_OFFSET), "0");
    EXPECT_EQ(host.Count(MESSAGE_COLOR_CTRL_STR, 0), 1);
    EXPECT_TRUE(bar.IsColorTableModified());
    EXPECT_EQ(bar.GetColorTable()[100].rgbRed, 3);  // still the host's table
}

TEST_F(AdjustDialog, ReturnAndEscapeInAnEditKeepItOpen)
{
    CImageAdjust* dlg = Open();
    ASSERT_NE(dlg, nullptr);
    HWND hdlg = dlg->m_hWnd;
    CWnd* contrast = dlg->GetDlgItem(IDC_ADJUST_CONTRAST);
    contrast->SetFocus();
    contrast->SendMessage(EM_SETSEL, 0, -1);
    orlex::test::TypeText("7");
    EXPECT_EQ(Text(dlg, IDC_ADJUST_CONTRAST), "7");
    orlex::test::Key(VK_ESCAPE);
    orlex::test::Pump();
    ASSERT_TRUE(::IsWindow(hdlg));
    EXPECT_EQ(Text(dlg, IDC_ADJUST_CONTRAST), "0");  // the typing undone
    EXPECT_EQ(::GetFocus(), contrast->m_hWnd);

    contrast->SendMessage(EM_SETSEL, 0, -1);
    orlex::test::TypeText("2");
    orlex::test::Key(VK_RETURN);
    orlex::test::Pump();
    ASSERT_TRUE(::IsWindow(hdlg));
    EXPECT_EQ(::GetFocus(), ::GetWindow(contrast->m_hWnd, GW_HWNDNEXT));
    EXPECT_EQ(bar.GetContrast(), 2);  // leaving the edit took the value
    EXPECT_EQ(bar.m_pDialog, dlg);
}

TEST_F(AdjustDialog, ClosingTellsTheBarAndAllowsANewOne)
{
    CImageAdjust* dlg = Open();
    ASSERT_NE(dlg, nullptr);
    HWND hdlg = dlg->m_hWnd;
    dlg->GetDlgItem(IDC_ADJUST_RESET)->SetFocus();  // Escape off the edits closes
    orlex::test::Key(VK_ESCAPE);
    orlex::test::Pump();
    EXPECT_FALSE(::IsWindow(hdlg));
    EXPECT_EQ(bar.Count(MESSAGE_BORDERCON_DIALOG_DELETED_STR, 0), 1);
    EXPECT_EQ(bar.m_pDialog, nullptr);
    CImageAdjust* again = Open();
    EXPECT_NE(again, nullptr);
}

TEST_F(AdjustDialog, ABarGoingAwayTakesItsDialog)
{
    auto* other = new CColorCtrl;
    CRect r(40, 10, 62, 268);
    other->Create(r, &host, 6);
    orlex::test::Pump();
    orlex::test::AdvanceClock(2000);
    orlex::test::Click(other->m_hWnd, POINT{5, 100});
    ASSERT_NE(other->m_pDialog, nullptr);
    const HWND hdlg = other->m_pDialog->m_hWnd;
    delete other;
    orlex::test::Pump();
    EXPECT_FALSE(::IsWindow(hdlg));
}

TEST_F(AdjustDialog, ModalFormRunsInTheConstructor)
{
    bar.SetContrast(1);
    std::vector<std::string> seen;
    orlex::SetModalLoopHook([&](CWnd* loop) {
        auto* dlg = static_cast<CImageAdjust*>(loop);
        seen.push_back(dlg->GetDlgItem(IDC_ADJUST_CONTRAST) ? "edits" : "none");
        Enter(dlg, IDC_ADJUST_CONTRAST, "-10");
        dlg->OnOK();  // the modal dialog's end is a cancel
    });
    orlex::ModalScript::Reset();
    CImageAdjust modal(&bar, 1);
    EXPECT_EQ(seen, std::vector<std::string>{"edits"});
    EXPECT_EQ(bar.GetContrast(), -10);
    EXPECT_EQ(bar.Count(MESSAGE_BORDERCON_DIALOG_DELETED_STR), 0);
    EXPECT_EQ(bar.m_pDialog, nullptr);
    const auto& log = orlex::test::ModalLog();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.back().kind, "Dialog");
    EXPECT_EQ(log.back().text, "Color Adjustment");
    EXPECT_EQ(log.back().style, 10005u);
}

// Inside an image frame -------------------------------------------------------------------------

TEST(AdjustDialogInFrame, FocusNoticesGoToTheFrameAndTheHostIsAskedFirst)
{
    orlex::test::Init();
    InitializeColorTables();
    Host host;
    ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_POPUP | WS_VISIBLE, CRect(50, 50, 350, 400), nullptr, 0));
    CBorderCon frame;
    ASSERT_TRUE(frame.Create(nullptr, "frame", WS_CHILD | WS_VISIBLE, CRect(0, 0, 300, 350), &host, 3));
    SpyBar bar;
    CRect r(10, 10, 32, 268);
    bar.Create(r, &frame, 5);
    orlex::test::Pump();

    orlex::test::Click(bar.m_hWnd, POINT{5, 100});
    EXPECT_EQ(host.Count(WM_COMMAND, ID_COLOR_SCALE), 1);  // past the frame, to its parent
    EXPECT_EQ(frame.Count(WM_COMMAND, ID_COLOR_SCALE), 0);
    ASSERT_NE(bar.m_pDialog, nullptr);
    HWND hdlg = bar.m_pDialog->m_hWnd;
    bar.m_pDialog->SetWindowPos(nullptr, 500, 500, 0, 0, SWP_NOSIZE | SWP_NOZORDER);

    ::SetActiveWindow(host.m_hWnd);
    orlex::test::Pump();
    frame.notes.clear();
    ::SetActiveWindow(hdlg);
    orlex::test::Pump();
    ::SetActiveWindow(host.m_hWnd);
    orlex::test::Pump();
    std::vector<WPARAM> focus;
    for (const auto& n : frame.notes)
        if (n.message == MESSAGE_BORDERCON_ADJUST_FOCUS_STR) {
            focus.push_back(n.wParam);
            EXPECT_EQ(n.lParam, 0);
        }
    EXPECT_EQ(focus, (std::vector<WPARAM>{1, 0}));
    ::DestroyWindow(hdlg);
}

}  // namespace
