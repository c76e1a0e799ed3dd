// The mouse on the grid, through the layer's input: selecting by clicks and drags, headers,
// sorting, sizing by the dividers, double and right clicks, and what stray input gets.
#include <gtest/gtest.h>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

// Row r, column c of the grid below: fixed row 0 (20 high) and column 0 (40 wide), then
// rows of 20 and columns of 50.
class Mouse : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(300, 200);
        grid.SetRowCount(30);
        grid.SetColumnCount(8);
        grid.SetFixedRowCount(1);
        grid.SetFixedColumnCount(1);
        for (int r = 0; r < 30; ++r)
            grid.SetRowHeight(r, 20);
        grid.SetColumnWidth(0, 40);
        for (int c = 1; c < 8; ++c)
            grid.SetColumnWidth(c, 50);
        for (int r = 1; r < 30; ++r)
            grid.SetItemText(r, 1, std::to_string(100 - r).c_str());
        orlex::test::Pump();
        host.Clear();
    }
    static POINT At(int r, int c) { return POINT{(c == 0 ? 0 : 40 + (c - 1) * 50) + 25, r * 20 + 10}; }
    // A click well after the last one, so that the two never make a double click.
    void Click(POINT p, orlex::test::Button b = orlex::test::Button::Left)
    {
        orlex::test::AdvanceClock(1000);
        orlex::test::Click(hwnd(), p, b);
    }
    void ClickWith(int vk, POINT p)
    {
        orlex::test::KeyDown(vk);
        Click(p);
        orlex::test::KeyUp(vk);
    }
    static std::vector<int> Codes(std::initializer_list<UINT> c) { return std::vector<int>(c.begin(), c.end()); }
};

TEST_F(Mouse, ClicksShiftAndCtrlBuildTheSelection)
{
    Click(At(3, 2));
    EXPECT_EQ(host.Codes(), Codes({GVN_SELCHANGING, GVN_SELCHANGED, NM_CLICK}));
    EXPECT_EQ(host.notices[0].row, 3);
    EXPECT_EQ(host.notices[2].col, 2);
    orlex::test::Pump();
    ASSERT_EQ(host.commands.size(), 1u);
    EXPECT_EQ(host.commands[0].first, MAKEWPARAM(1234, 0));
    EXPECT_EQ(host.commands[0].second, reinterpret_cast<LPARAM>(hwnd()));
    EXPECT_EQ(grid.GetFocusCell(), CCellID(3, 2));
    EXPECT_EQ(grid.GetSelectedCount(), 1);

    ClickWith(VK_SHIFT, At(5, 4));  // from the anchor (3, 2)
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(3, 2, 5, 4));
    EXPECT_EQ(grid.GetSelectedCount(), 9);
    ClickWith(VK_CONTROL, At(1, 1));  // adds
    EXPECT_EQ(grid.GetSelectedCount(), 10);
    ClickWith(VK_CONTROL, At(4, 3));  // takes a selected cell out
    EXPECT_EQ(grid.GetSelectedCount(), 9);
    EXPECT_FALSE(grid.IsCellSelected(4, 3));
    // A Ctrl-drag adds its block to what was there.
    orlex::test::KeyDown(VK_CONTROL);
    orlex::test::Drag(hwnd(), At(7, 1), At(8, 2), 3);
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_EQ(grid.GetSelectedCount(), 13);
    // A plain drag starts again.
    orlex::test::Drag(hwnd(), At(6, 5), At(8, 5), 3);
    EXPECT_EQ(grid.GetSelectedCount(), 3);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(8, 5));
    // A plain press on a selected cell with drag off: a new selection of that cell.
    Click(At(7, 5));
    EXPECT_EQ(grid.GetSelectedCount(), 1);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(7, 5));
}

TEST_F(Mouse, APressOnTheFocusTextThenAMoveClearsTheSelection)
{
    Click(At(3, 2));
    host.Clear();
    orlex::test::AdvanceClock(1000);
    // Mode 10 waits for the release; a move turns it into mode 11 even with drag off.
    orlex::test::MouseDown(hwnd(), At(3, 2));
    EXPECT_EQ(grid.GetMouseMode(), int(MousePrepareEdit));
    EXPECT_EQ(::GetCapture(), nullptr);
    orlex::test::MouseMove(hwnd(), POINT{At(3, 2).x + 3, At(3, 2).y});
    EXPECT_EQ(grid.GetMouseMode(), int(MousePrepareDrag));
    orlex::test::MouseUp(hwnd(), POINT{At(3, 2).x + 3, At(3, 2).y});
    EXPECT_EQ(host.Codes(), Codes({NM_CLICK, GVN_SELCHANGING, GVN_SELCHANGED}));
    EXPECT_EQ(host.notices[2].row, -1);
    EXPECT_EQ(grid.GetSelectedCount(), 0);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(-1, -1));
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));
}

TEST_F(Mouse, ADragBelowTheGridScrollsOnTheClock)
{
    orlex::test::MouseDown(hwnd(), At(3, 2));
    orlex::test::MouseMove(hwnd(), POINT{At(3, 2).x, 250});
    const int before = grid.GetScrollPos32(SB_VERT);
    orlex::test::AdvanceClock(25 * 6);
    EXPECT_GT(grid.GetScrollPos32(SB_VERT), before);
    const CCellRange sel = grid.GetSelectedCellRange();
    EXPECT_EQ(sel.GetMinRow(), 3);
    EXPECT_EQ(sel.GetMaxRow(), grid.GetVisibleNonFixedCellRange().GetMaxRow());
    EXPECT_EQ(sel.GetMinCol(), 2);
    EXPECT_EQ(sel.GetMaxCol(), 2);
    orlex::test::MouseUp(hwnd(), POINT{At(3, 2).x, 250});
    const int after = grid.GetScrollPos32(SB_VERT);
    orlex::test::AdvanceClock(200);
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), after);
    EXPECT_EQ(grid.m_nTimerID, 0u);
}

TEST_F(Mouse, HeadersSelectAndSortByTheirFlags)
{
    struct Case {
        POINT at;
        CCellRange selected;  // (-1..) nothing
    };
    const Case cases[] = {
        {At(0, 3), CCellRange(1, 3, 29, 3)},
        {At(4, 0), CCellRange(4, 1, 4, 7)},
        {At(0, 0), CCellRange(1, 1, 29, 7)},
    };
    for (const Case& c : cases) {
        Click(c.at);
        EXPECT_EQ(grid.GetSelectedCellRange(), c.selected);
        EXPECT_EQ(grid.GetSelectedCount(), c.selected.Count());
    }
    // With the flags clear a header press selects nothing new and takes the focus away.
    grid.SetFixedColumnSelection(FALSE);
    grid.SetFixedRowSelection(FALSE);
    grid.SetSelectedRange(2, 2, 2, 2);
    for (const Case& c : cases) {
        Click(c.at);
        EXPECT_EQ(grid.GetSelectedCount(), 1);
        EXPECT_EQ(grid.GetFocusCell(), CCellID(-1, -1));
    }
    // Header sort: ascending first, then the other way on the same column.
    grid.SetHeaderSort(TRUE);
    Click(At(0, 1));
    EXPECT_EQ(grid.GetSortColumn(), 1);
    EXPECT_TRUE(grid.GetSortAscending());
    EXPECT_STREQ(grid.GetItemText(1, 1), "71");
    Click(At(0, 1));
    EXPECT_FALSE(grid.GetSortAscending());
    EXPECT_STREQ(grid.GetItemText(1, 1), "99");
}

TEST_F(Mouse, DividersSizeHideAndOpenColumns)
{
    HCURSOR sizeWE = ::LoadCursor(nullptr, IDC_SIZEWE), arrow = ::LoadCursor(nullptr, IDC_ARROW);
    // The right edge of column 1 in the header is a divider; in the scrolled cells it is not.
    orlex::test::MouseMove(hwnd(), POINT{88, 10});
    EXPECT_EQ(grid.GetMouseMode(), int(MouseOverColumnDivider));
    EXPECT_EQ(::GetCursor(), sizeWE);
    orlex::test::MouseMove(hwnd(), POINT{88, 50});
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));
    EXPECT_EQ(::GetCursor(), arrow);
    orlex::test::MouseMove(hwnd(), POINT{1, 10});  // the left edge of column 0 is none
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));

    // Drag the divider: an inverted line follows, the pointer is held right of column 1's start.
    const COLORREF under = orlex::test::Pixel(hwnd(), POINT{120, 100});
    orlex::test::MouseMove(hwnd(), POINT{88, 10});
    orlex::test::MouseDown(hwnd(), POINT{88, 10});
    EXPECT_EQ(grid.GetMouseMode(), int(MouseSizingColumn));
    RECT clip;
    ASSERT_TRUE(::GetClipCursor(&clip));
    POINT origin{41, 0};
    ::ClientToScreen(hwnd(), &origin);
    EXPECT_EQ(clip.left, origin.x);
    orlex::test::MouseMove(hwnd(), POINT{120, 10});
    EXPECT_EQ(orlex::test::Pixel(hwnd(), POINT{120, 100}), under ^ 0xFFFFFF);
    EXPECT_EQ(orlex::test::Pixel(hwnd(), POINT{88, 100}), orlex::test::Pixel(hwnd(), POINT{88, 101}));
    orlex::test::MouseUp(hwnd(), POINT{120, 10});
    EXPECT_EQ(grid.GetColumnWidth(1), 80);
    EXPECT_FALSE(::GetClipCursor(&clip) && clip.right - clip.left < 1000);
    EXPECT_NE(orlex::test::Pixel(hwnd(), POINT{120, 100}), under ^ 0xFFFFFF);

    // The pointer is held one pixel right of the column's start: a drag leaves a column of
    // at least one pixel, whether hiding is allowed or not.
    orlex::test::MouseMove(hwnd(), POINT{168, 10});
    orlex::test::Drag(hwnd(), POINT{168, 10}, POINT{100, 10}, 3);
    EXPECT_EQ(grid.GetColumnWidth(2), 1);
    // A hidden column is grabbed open again at its divider.
    grid.SetColumnWidth(2, 0);
    orlex::test::MouseMove(hwnd(), POINT{121, 10});
    orlex::test::Drag(hwnd(), POINT{121, 10}, POINT{150, 10}, 3);
    EXPECT_EQ(grid.GetColumnWidth(2), 30);
    // A release at the press point changes nothing.
    orlex::test::MouseMove(hwnd(), POINT{118, 10});
    Click(POINT{118, 10});
    EXPECT_EQ(grid.GetColumnWidth(1), 80);
    // A hidden column stays hidden when it may not be opened: the one before is sized.
    grid.SetColumnWidth(2, 0);
    grid.EnableHiddenColUnhide(FALSE);
    orlex::test::MouseMove(hwnd(), POINT{121, 10});
    orlex::test::Drag(hwnd(), POINT{121, 10}, POINT{140, 10}, 3);
    EXPECT_EQ(grid.GetColumnWidth(2), 0);
    EXPECT_EQ(grid.GetColumnWidth(1), 100);
    // A double click on a divider fits the column to its texts.
    grid.EnableHiddenColUnhide(TRUE);
    orlex::test::MouseMove(hwnd(), POINT{139, 10});
    orlex::test::DoubleClick(hwnd(), POINT{139, 10});
    int widest = 0;
    for (int r = 0; r < 30; ++r)
        widest = std::max<int>(widest, grid.GetCell(r, 1)->GetCellExtent(nullptr).cx);
    EXPECT_EQ(grid.GetColumnWidth(1), widest);
}

TEST_F(Mouse, RowDividersInTheFixedColumn)
{
    orlex::test::MouseMove(hwnd(), POINT{10, 59});  // the bottom of row 2
    EXPECT_EQ(grid.GetMouseMode(), int(MouseOverRowDivider));
    EXPECT_EQ(::GetCursor(), ::LoadCursor(nullptr, IDC_SIZENS));
    orlex::test::Drag(hwnd(), POINT{10, 59}, POINT{10, 75}, 3);
    EXPECT_EQ(grid.GetRowHeight(2), 35);
    orlex::test::MouseMove(hwnd(), POINT{60, 59});
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));
}

TEST_F(Mouse, RightAndDoubleClicks)
{
    grid.SetSelectedRange(2, 2, 3, 3);
    Click(At(6, 3), orlex::test::Button::Right);
    EXPECT_EQ(host.Codes(), Codes({NM_RCLICK}));
    EXPECT_EQ(host.notices[0].row, 6);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(6, 3));
    EXPECT_EQ(grid.GetSelectedCount(), 4);
    host.Clear();
    Click(At(0, 0), orlex::test::Button::Right);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(1, 1));  // raised out of the fixed part
    host.Clear();
    grid.SetColumnCount(3);  // the grid ends at x = 140: beyond it is no cell
    Click(POINT{250, 50}, orlex::test::Button::Right);
    ASSERT_EQ(host.Codes(), Codes({NM_RCLICK}));
    EXPECT_EQ(host.notices[0].row, -1);
    host.Clear();
    orlex::test::DoubleClick(hwnd(), At(5, 2));
    const auto dbl = host.Of(NM_DBLCLK);
    ASSERT_EQ(dbl.size(), 1u);
    EXPECT_EQ(dbl[0].row, 5);
}

TEST_F(Mouse, StrayInputChangesNothing)
{
    grid.SetColumnCount(3);
    grid.SetFocusCell(2, 2);
    grid.SetSelectedRange(2, 2, 2, 2);
    host.Clear();
    // A press beside every cell, a release outside the client: nothing changes and no
    // command is posted.
    Click(POINT{250, 50});
    EXPECT_TRUE(host.Of(GVN_SELCHANGING).empty());
    EXPECT_TRUE(host.commands.empty());
    EXPECT_EQ(grid.GetSelectedCount(), 1);
    EXPECT_EQ(grid.GetFocusCell(), CCellID(2, 2));
    orlex::test::MouseDown(hwnd(), At(4, 1));
    orlex::test::MouseUp(hwnd(), POINT{400, 400});
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));
    // The capture taken away mid-drag ends the timer and the gesture.
    orlex::test::MouseDown(hwnd(), At(6, 1));
    ASSERT_NE(grid.m_nTimerID, 0u);
    host.SetCapture();
    EXPECT_EQ(grid.m_nTimerID, 0u);
    EXPECT_EQ(grid.GetMouseMode(), int(MouseIdle));
    ::ReleaseCapture();
    orlex::test::MouseUp(hwnd(), At(6, 1));
    // A Shift-press with neither a focus nor an anchor selects nothing.
    grid.ResetSelectedRange();
    grid.m_SelectionStartCell = CCellID();
    ClickWith(VK_SHIFT, At(5, 2));
    EXPECT_EQ(grid.GetSelectedCount(), 0);
}

}  // namespace
