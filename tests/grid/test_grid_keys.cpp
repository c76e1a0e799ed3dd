// The keyboard on the grid: every key of the table at both ends of a grid with a hidden row
// and column, the selection a step makes, scroll ends, list mode, and keys without a focus.
#include <gtest/gtest.h>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

constexpr int kShift = 1, kCtrl = 2;

// Rows 0..29 with row 0 fixed and row 5 hidden; columns 0..9 with column 0 fixed and
// column 3 hidden; rows of 20, columns of 50 (the fixed one 40) in a 300 x 200 window.
class Keys : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(300, 200);
        grid.SetRowCount(30);
        grid.SetColumnCount(10);
        grid.SetFixedRowCount(1);
        grid.SetFixedColumnCount(1);
        for (int r = 0; r < 30; ++r)
            grid.SetRowHeight(r, 20);
        for (int c = 0; c < 10; ++c)
            grid.SetColumnWidth(c, c == 0 ? 40 : 50);
        grid.SetRowHeight(5, 0);
        grid.SetColumnWidth(3, 0);
        grid.SetFocus();
        orlex::test::Pump();
    }
    void Press(int vk, int mods)
    {
        if (mods & kShift)
            orlex::test::KeyDown(VK_SHIFT);
        if (mods & kCtrl)
            orlex::test::KeyDown(VK_CONTROL);
        orlex::test::Key(vk);
        if (mods & kCtrl)
            orlex::test::KeyUp(VK_CONTROL);
        if (mods & kShift)
            orlex::test::KeyUp(VK_SHIFT);
    }
    // Focus on a cell with the view scrolled home, as a click there would leave it.
    void Start(CCellID cell)
    {
        grid.SendMessage(WM_VSCROLL, SB_TOP, 0);
        grid.SendMessage(WM_HSCROLL, SB_LEFT, 0);
        grid.ResetSelectedRange();
        grid.SetFocusCell(cell);
        grid.EnsureVisible(cell);
        grid.m_SelectionStartCell = cell;
        grid.SetSelectedRange(cell.row, cell.col, cell.row, cell.col);
        grid.scrolls.clear();
        host.Clear();
    }
};

TEST_F(Keys, EveryKeyOfTheTableAtBothEnds)
{
    struct Case {
        CCellID start;
        int vk, mods;
        CCellID next;
    };
    const Case cases[] = {
        {CCellID(4, 2), VK_DOWN, 0, CCellID(6, 2)},     // past the hidden row
        {CCellID(6, 2), VK_UP, 0, CCellID(4, 2)},
        {CCellID(1, 2), VK_UP, 0, CCellID(1, 2)},       // not into the fixed row
        {CCellID(29, 2), VK_DOWN, 0, CCellID(29, 2)},
        {CCellID(4, 2), VK_RIGHT, 0, CCellID(4, 4)},    // past the hidden column
        {CCellID(4, 4), VK_LEFT, 0, CCellID(4, 2)},
        {CCellID(4, 1), VK_LEFT, 0, CCellID(4, 1)},
        {CCellID(4, 9), VK_RIGHT, 0, CCellID(4, 9)},
        {CCellID(4, 2), VK_TAB, 0, CCellID(4, 4)},
        {CCellID(4, 9), VK_TAB, 0, CCellID(6, 1)},      // wraps to the next shown row
        {CCellID(6, 1), VK_TAB, kShift, CCellID(4, 9)},
        {CCellID(29, 9), VK_TAB, 0, CCellID(29, 9)},    // the last cell: the focus stays
        {CCellID(1, 1), VK_TAB, kShift, CCellID(1, 1)},
        {CCellID(4, 6), VK_HOME, 0, CCellID(4, 1)},
        {CCellID(4, 6), VK_HOME, kCtrl, CCellID(1, 1)},
        {CCellID(4, 2), VK_END, 0, CCellID(4, 9)},
        {CCellID(4, 2), VK_END, kCtrl, CCellID(29, 9)},
        // A page is 163 pixels: the top left row goes from 1 to 11, and the focus with it.
        {CCellID(2, 2), VK_NEXT, 0, CCellID(12, 2)},
        {CCellID(29, 2), VK_NEXT, 0, CCellID(29, 2)},
        {CCellID(2, 2), VK_PRIOR, 0, CCellID(1, 2)},    // the view did not move: the first row
    };
    for (const Case& c : cases) {
        Start(c.start);
        Press(c.vk, c.mods);
        SCOPED_TRACE(testing::Message() << c.start.row << "," << c.start.col << " key " << c.vk << " mods " << c.mods);
        EXPECT_EQ(grid.GetFocusCell(), c.next);
        EXPECT_TRUE(grid.IsCellVisible(c.next));
        if (c.next != c.start) {
            // The step selects the cell moved to, between the two selection notices.
            EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(c.next.row, c.next.col, c.next.row, c.next.col));
            const auto changing = host.Of(GVN_SELCHANGING), changed = host.Of(GVN_SELCHANGED);
            ASSERT_EQ(changing.size(), 1u);
            ASSERT_EQ(changed.size(), 1u);
            EXPECT_EQ(changing[0].row, c.next.row);
        }
    }
    // A page from the middle moves the focus as far as the view moved.
    Start(CCellID(12, 2));
    grid.SendMessage(WM_VSCROLL, SB_PAGEDOWN, 0);
    grid.scrolls.clear();
    Press(VK_PRIOR, 0);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(2, 2));
    EXPECT_EQ(grid.Count(WM_VSCROLL, SB_PAGEUP), 1);
    EXPECT_EQ(grid.Count(WM_VSCROLL, SB_ENDSCROLL), 1);
}

TEST_F(Keys, ShiftExtendsAndListModeTakesRows)
{
    Start(CCellID(2, 2));
    Press(VK_DOWN, kShift);
    Press(VK_RIGHT, kShift);
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(2, 2, 3, 4));
    EXPECT_EQ(grid.GetFocusCell(), CCellID(3, 4));
    grid.SetListMode(TRUE);
    Start(CCellID(2, 2));
    Press(VK_DOWN, 0);
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(3, 1, 3, 9));
    Press(VK_DOWN, kShift);
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(3, 1, 4, 9));
}

TEST_F(Keys, StepsScrollAndEndTheirScrolls)
{
    // Down from the last whole row scrolls one line and ends the scroll.
    const CCellRange visible = grid.GetUnobstructedNonFixedCellRange();
    Start(CCellID(visible.GetMaxRow(), 2));
    Press(VK_DOWN, 0);
    EXPECT_TRUE(grid.IsCellVisible(grid.GetFocusCell()));
    EXPECT_GE(grid.Count(WM_VSCROLL, SB_LINEDOWN), 1);
    EXPECT_EQ(grid.scrolls.back(), std::make_pair(WM_VSCROLL, SB_ENDSCROLL));
    // Right across the whole width ends at the last column, in view.
    Start(CCellID(2, 1));
    for (int i = 0; i < 10; ++i)
        Press(VK_RIGHT, 0);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(2, 9));
    CRect cell, client;
    ASSERT_TRUE(grid.GetCellRect(2, 9, &cell));
    grid.GetClientRect(&client);
    EXPECT_LE(cell.right, client.right);
}

TEST_F(Keys, CommandKeysAndKeysWithoutAFocus)
{
    Start(CCellID(4, 4));
    Press('A', kCtrl);
    EXPECT_EQ(grid.GetSelectedCount(), 29 * 9);
    grid.SetItemText(4, 4, "x");
    Start(CCellID(4, 4));
    Press(VK_DELETE, 0);
    EXPECT_STREQ(grid.GetItemText(4, 4), "");
    EXPECT_EQ(grid.GetFocusCell(), CCellID(4, 4));
    // F2 and a typed character ask to edit the focus cell.
    Start(CCellID(6, 2));
    Press(VK_F2, 0);
    Press('K', 0);
    grid.SendMessage(WM_IME_CHAR, 0xB5, 0);
    const auto asked = host.Of(GVN_BEGINLABELEDIT);
    ASSERT_EQ(asked.size(), 3u);
    EXPECT_EQ(asked[0].row, 6);
    // Without a focus cell the keys do nothing to the grid.
    grid.SetFocusCell(-1, -1);
    grid.ResetSelectedRange();
    for (int vk : {VK_DOWN, VK_RIGHT, VK_NEXT, VK_END, VK_TAB})
        Press(vk, 0);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(-1, -1));
    EXPECT_EQ(grid.GetSelectedCount(), 0);
    // The dialog codes: arrows and characters, and Tab unless Ctrl is down or the grid
    // leaves it.
    EXPECT_EQ(grid.SendMessage(WM_GETDLGCODE, 0, 0), LRESULT(DLGC_WANTARROWS | DLGC_WANTCHARS | DLGC_WANTTAB));
    grid.SetHandleTabKey(FALSE);
    EXPECT_EQ(grid.SendMessage(WM_GETDLGCODE, 0, 0), LRESULT(DLGC_WANTARROWS | DLGC_WANTCHARS));
}

}  // namespace
