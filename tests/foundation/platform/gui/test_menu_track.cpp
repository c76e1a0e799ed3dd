// Tracking popup menus: what the owner is asked before the menu shows, what the modal
// script sees, and how the chosen command comes back.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxmenu.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

class Owner : public CWnd {
public:
    std::vector<UINT> commands;
    std::vector<HMENU> initialised;
    bool allowClear = false;
    bool showAll = true;

    LRESULT WindowProc(UINT m, WPARAM wp, LPARAM lp) override {
        if (m == WM_INITMENUPOPUP) initialised.push_back(reinterpret_cast<HMENU>(wp));
        if (m == WM_COMMAND) EXPECT_EQ(lp, 0);  // a menu command carries no control
        return CWnd::WindowProc(m, wp, lp);
    }
    void OnCommandId(UINT id) { commands.push_back(id); }
    void OnUpdateClearAll(CCmdUI* ui) { ui->Enable(allowClear); }
    void OnUpdateShowAll(CCmdUI* ui) { ui->SetCheck(showAll ? 1 : 0); }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(Owner, CWnd)
    ON_COMMAND_RANGE(35000, 35999, OnCommandId)
    ON_UPDATE_COMMAND_UI(35064, OnUpdateClearAll)
    ON_UPDATE_COMMAND_UI(35176, OnUpdateShowAll)
END_MESSAGE_MAP()

class Track : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(owner.CreateEx(0, nullptr, "owner", WS_OVERLAPPED | WS_VISIBLE, CRect(0, 0, 200, 200), nullptr, 0));
        ASSERT_TRUE(menu.LoadMenu(10000));
        Pump();
    }
    Owner owner;
    CMenu menu;
};

TEST_F(Track, ChosenCommandIsPostedAfterTheOwnerUpdatedTheItems) {
    CMenu* rot = menu.GetSubMenu(1);
    ASSERT_NE(rot, nullptr);
    // As a cursor without user delete does it.
    rot->EnableMenuItem(35037, MF_BYCOMMAND | MF_GRAYED);
    ScriptAnswer("PopupMenu", 35176);
    EXPECT_TRUE(rot->TrackPopupMenu(0, 50, 60, &owner));
    EXPECT_TRUE(owner.commands.empty());  // posted: it comes with the next messages
    Pump();
    EXPECT_EQ(owner.commands, (std::vector<UINT>{35176}));
    const orlex::ModalRecord& shown = ModalLog().back();
    EXPECT_EQ(shown.kind, "PopupMenu");
    EXPECT_EQ(shown.text,
              "&Delete #35037 [grayed]\n"
              "&Flip Direction #35174\n"
              "S&how Direction >\n"
              "  &Cursor #35175\n"
              "  &All #35176 [checked]\n"
              "Set &Color >\n"
              "  &Cursor #35036\n"
              "  &All #35038\n"
              "Clear &All #35064 [grayed]\n");
    // The menu itself, its two popups, in that order.
    ASSERT_EQ(owner.initialised.size(), 3u);
    EXPECT_EQ(owner.initialised[0], rot->m_hMenu);
    EXPECT_EQ(owner.initialised[1], ::GetSubMenu(rot->m_hMenu, 2));
    EXPECT_EQ(owner.initialised[2], ::GetSubMenu(rot->m_hMenu, 3));
}

TEST_F(Track, WhatCannotBeChosenComesBackAsNothing) {
    CMenu* box = menu.GetSubMenu(0);
    box->EnableMenuItem(35037, MF_BYCOMMAND | MF_GRAYED);
    struct Case { long long scripted; UINT flags; BOOL result; std::vector<UINT> commands; };
    const Case cases[] = {
        {35036, TPM_RETURNCMD, 35036, {}},    // returned, not sent
        {35037, 0, FALSE, {}},                // greyed by the caller
        {35064, 0, FALSE, {}},                // greyed by the owner's update handler
        {99999, 0, FALSE, {}},                // not in the menu
        {35038, TPM_RIGHTBUTTON, TRUE, {35038}},
    };
    for (const Case& c : cases) {
        owner.commands.clear();
        ScriptAnswer("PopupMenu", c.scripted);
        EXPECT_EQ(box->TrackPopupMenu(c.flags, 0, 0, &owner), c.result) << c.scripted;
        Pump();
        EXPECT_EQ(owner.commands, c.commands) << c.scripted;
    }
    // Nothing scripted: the menu is dismissed.
    owner.commands.clear();
    EXPECT_FALSE(box->TrackPopupMenu(0, 0, 0, &owner));
    Pump();
    EXPECT_TRUE(owner.commands.empty());
    EXPECT_EQ(ModalLog().back().answer, 0);
}

TEST_F(Track, PlotMenuEditedAsThePlotDoesIt) {
    CMenu plot;
    ASSERT_TRUE(plot.LoadMenu(10078));
    CMenu* sub = plot.GetSubMenu(0);
    // Find "View" among the top items by its text and delete it; add the active curves.
    for (int i = sub->GetMenuItemCount() - 1; i >= 0; --i) {
        std::string text;
        sub->GetMenuString(static_cast<UINT>(i), text, MF_BYPOSITION);
        if (text == "View") sub->DeleteMenu(static_cast<UINT>(i), MF_BYPOSITION);
    }
    CMenu curves;
    curves.CreatePopupMenu();
    for (int slot = 0; slot < 3; ++slot) curves.AppendMenu(MF_STRING, 40002 + slot, std::to_string(slot + 1).c_str());
    sub->AppendMenu(MF_SEPARATOR);
    sub->AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(curves.Detach()), "&Active Curve");
    sub->CheckMenuItem(40003, MF_BYCOMMAND | MF_CHECKED);
    ScriptAnswer("PopupMenu", 40003, "");
    EXPECT_TRUE(sub->TrackPopupMenu(0, 0, 0, &owner));
    const std::string& text = ModalLog().back().text;
    EXPECT_EQ(text.find("View"), std::string::npos);
    EXPECT_NE(text.find("-\n&Active Curve >\n  1 #40002\n  2 #40003 [checked]\n  3 #40004\n"), std::string::npos);
    EXPECT_EQ(sub->GetMenuItemCount(), 13);
}

}  // namespace
