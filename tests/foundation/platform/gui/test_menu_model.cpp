// Menus: the handle table, the text form of the library's menus, and what a menu reports.
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "foundation/platform/afxmenu.h"

namespace {


struct MenuFixture : ::testing::Test {
    int liveBefore = 0;
    void SetUp() override { liveBefore = orlex::LiveMenuCount(); }
    void TearDown() override { EXPECT_EQ(orlex::LiveMenuCount(), liveBefore) << "menus leaked"; }
};

using MenuResource = MenuFixture;

TEST_F(MenuResource, RotatingCursorMenuReadsAsWritten) {
    HMENU bar = LoadMenuA(nullptr, 10000);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(GetMenuItemCount(bar), 2);
    EXPECT_EQ(orlex::DescribeMenu(GetSubMenu(bar, 1)),
              "&Delete #35037\n"
              "&Flip Direction #35174\n"
              "S&how Direction >\n"
              "  &Cursor #35175\n"
              "  &All #35176\n"
              "Set &Color >\n"
              "  &Cursor #35036\n"
              "  &All #35038\n"
              "Clear &All #35064\n");
    DestroyMenu(bar);
}

// (menu, path of popups from the bar, position) -> (command id, text)
struct ItemCase {
    UINT menu;
    std::vector<int> path;
    int position;
    UINT id;
    const char* text;
};

TEST_F(MenuResource, ItemsSitWhereThePartsLookForThem) {
    const ItemCase cases[] = {
        {10000, {0}, 0, 35037, "&Delete"},
        {10000, {0, 1}, 1, 35038, "&All"},
        {10000, {0}, 2, 35064, "&Clear All"},
        {10001, {0}, 0, 35000, "&Color Scale..."},
        {10001, {1}, 0, 35203, "&Color Scale..."},
        {10078, {0, 0, 0}, 9, 35082, "1&0"},
        {10078, {0, 0, 5}, 2, 35246, "Pair 1"},
        {10078, {0, 1, 1}, 3, 35057, "&32K"},
        {10078, {0}, 2, 35039, "&Minor Grid"},
        {10078, {0, 7, 1}, 1, 35331, "Retrace"},
        {10078, {0, 8}, 0, 35111, "&Restore"},
        {10078, {0, 11}, 1, 35142, "&XZ Data"},
        {10079, {0, 0}, 5, 35072, "&Custom"},
    };
    for (const ItemCase& c : cases) {
        HMENU bar = LoadMenuA(nullptr, c.menu);
        ASSERT_NE(bar, nullptr) << c.menu;
        HMENU m = bar;
        for (int p : c.path) m = GetSubMenu(m, p);
        ASSERT_NE(m, nullptr) << c.menu;
        EXPECT_EQ(GetMenuItemID(m, c.position), c.id) << c.menu << " " << c.text;
        char buf[64];
        EXPECT_EQ(GetMenuStringA(m, c.id, buf, sizeof buf, MF_BYCOMMAND), int(strlen(c.text)));
        EXPECT_STREQ(buf, c.text);
        DestroyMenu(bar);
    }
}

TEST_F(MenuResource, MalformedTextIsRefusedWithoutLeaks) {
    const char* bad[] = {
        "POPUP \"a\"\n MENUITEM \"x\", 1\n",          // no END
        "POPUP \"a\"\n MENUITEM \"x\"\nEND\n",          // no id
        "POPUP \"a\"\n MENUITEM \"x\", 1, SHINY\nEND\n",  // unknown option
        "END\n",                                       // END at the top
        "POPUP \"unterminated\n END\n",
        "MENUITEM \"x\", 99999999999\n",              // id beyond 32 bits
        "POPUP 5\nEND\n",
        "WIDGET \"x\"\n",
    };
    for (const char* text : bad) EXPECT_EQ(orlex::ParseMenuText(text), nullptr) << text;
}

using MenuEdit = MenuFixture;

TEST_F(MenuEdit, ChecksAndEnablingReturnTheFormerState) {
    CMenu menu;
    ASSERT_TRUE(menu.CreatePopupMenu());
    menu.AppendMenu(MF_STRING, 100, "a");
    menu.AppendMenu(MF_STRING | MF_CHECKED, 101, "b");
    HMENU sub = CreatePopupMenu();
    AppendMenuA(sub, MF_STRING, 200, "deep");
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "sub");

    struct Op { const char* what; UINT item; UINT flags; DWORD expect; };
    const Op checks[] = {
        {"check a", 100, MF_CHECKED, MF_UNCHECKED},
        {"check a again", 100, MF_CHECKED, MF_CHECKED},
        {"uncheck b", 101, MF_UNCHECKED, MF_CHECKED},
        {"check deep by command", 200, MF_CHECKED, MF_UNCHECKED},
        {"check by position 1", 1, MF_BYPOSITION | MF_CHECKED, MF_UNCHECKED},
        {"no such item", 999, MF_CHECKED, 0xFFFFFFFFu},
    };
    for (const Op& o : checks) EXPECT_EQ(menu.CheckMenuItem(o.item, o.flags), o.expect) << o.what;

    const Op enables[] = {
        {"grey a", 100, MF_GRAYED, MF_ENABLED},
        {"disable a", 100, MF_DISABLED, MF_GRAYED},
        {"enable a", 100, MF_ENABLED, MF_DISABLED},
        {"grey deep", 200, MF_GRAYED, MF_ENABLED},
        {"no such item", 999, MF_GRAYED, 0xFFFFFFFFu},
    };
    for (const Op& o : enables) EXPECT_EQ(menu.EnableMenuItem(o.item, o.flags), o.expect) << o.what;

    EXPECT_EQ(orlex::DescribeMenu(menu),
              "a #100 [checked]\n"
              "b #101 [checked]\n"
              "sub >\n"
              "  deep #200 [checked] [grayed]\n");
    // A popup's state carries its item count in the high byte.
    EXPECT_EQ(menu.GetMenuState(2, MF_BYPOSITION) >> 8, 1u);
    EXPECT_EQ(menu.GetMenuState(200, MF_BYCOMMAND), MF_CHECKED | MF_GRAYED);
    EXPECT_EQ(menu.GetMenuItemID(2), 0xFFFFFFFFu);
}

TEST_F(MenuEdit, InsertDeleteRemoveAndRadio) {
    CMenu menu;
    menu.CreatePopupMenu();
    for (UINT id = 1; id <= 4; ++id) menu.AppendMenu(MF_STRING, id, std::to_string(id).c_str());
    // The owner-drawn title and a separator at the head, as the square boxes do it.
    menu.InsertMenu(0, MF_BYPOSITION | MF_OWNERDRAW | MF_DISABLED, 0, nullptr);
    menu.InsertMenu(1, MF_BYPOSITION | MF_SEPARATOR);
    menu.InsertMenu(3, MF_BYCOMMAND | MF_STRING, 9, "nine");  // before command 3
    EXPECT_TRUE(menu.CheckMenuRadioItem(1, 4, 2, MF_BYCOMMAND));
    EXPECT_EQ(orlex::DescribeMenu(menu),
              " #0 [disabled] [ownerdraw]\n"
              "-\n"
              "1 #1\n"
              "2 #2 [checked] [radio]\n"
              "nine #9\n"
              "3 #3\n"
              "4 #4\n");
    EXPECT_TRUE(menu.DeleteMenu(9, MF_BYCOMMAND));
    EXPECT_TRUE(menu.DeleteMenu(0, MF_BYPOSITION));
    EXPECT_FALSE(menu.DeleteMenu(9, MF_BYCOMMAND));
    EXPECT_EQ(menu.GetMenuItemCount(), 5);

    // RemoveMenu hands the popup back alive; DeleteMenu destroys it.
    HMENU sub = CreatePopupMenu();
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "View");
    EXPECT_TRUE(menu.RemoveMenu(5, MF_BYPOSITION));
    EXPECT_TRUE(IsMenu(sub));
    menu.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(sub), "View");
    EXPECT_TRUE(menu.DeleteMenu(5, MF_BYPOSITION));
    EXPECT_FALSE(IsMenu(sub));
}

TEST_F(MenuEdit, WrappersFollowTheirMenus) {
    HMENU bar = LoadMenuA(nullptr, 10001);
    CMenu* sub = CMenu::FromHandle(GetSubMenu(bar, 0));
    ASSERT_NE(sub, nullptr);
    EXPECT_EQ(sub, CMenu::FromHandle(GetSubMenu(bar, 0)));
    EXPECT_EQ(sub->GetMenuItemID(0), 35000u);
    {
        CMenu owner;
        owner.Attach(bar);
        EXPECT_EQ(CMenu::FromHandle(bar), &owner);
    }  // the owner destroys the whole menu
    EXPECT_FALSE(IsMenu(bar));
}

}  // namespace
