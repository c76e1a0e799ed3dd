// The table: counts, fixed parts, inserting and deleting, sizing, sorting, and what bad
// indices and sizes that can't be held get.
#include <gtest/gtest.h>

#include <climits>
#include <cstdlib>
#include <random>
#include <string>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

// A host's own cell type, to show that SetCellType keeps every value.
class CMarkedCell : public CGridCell {
    DECLARE_DYNCREATE(CMarkedCell)
};
IMPLEMENT_DYNCREATE(CMarkedCell, CGridCell)

class Table : public GridFixture {
protected:
    void Fill(int rows, int cols, int fixedRows = 0, int fixedCols = 0)
    {
        grid.SetRowCount(rows);
        grid.SetColumnCount(cols);
        grid.SetFixedRowCount(fixedRows);
        grid.SetFixedColumnCount(fixedCols);
        for (int r = 0; r < rows; ++r)
            for (int c = 0; c < cols; ++c)
                grid.SetItemText(r, c, (std::to_string(r) + "," + std::to_string(c)).c_str());
    }
    // Every row has one cell per column and one height; every cell its grid.
    void ExpectConsistent()
    {
        ASSERT_EQ(grid.m_RowData.GetSize(), grid.GetRowCount());
        EXPECT_EQ(grid.m_arRowHeights.GetSize(), grid.GetRowCount());
        EXPECT_EQ(grid.m_arColWidths.GetSize(), grid.GetColumnCount());
        for (int r = 0; r < grid.GetRowCount(); ++r) {
            ASSERT_EQ(grid.m_RowData.GetAt(r)->GetSize(), grid.GetColumnCount());
            for (int c = 0; c < grid.GetColumnCount(); ++c) {
                ASSERT_NE(grid.GetCell(r, c), nullptr);
                const DWORD fixed = (r < grid.GetFixedRowCount() ? 0x30u : 0u) | (c < grid.GetFixedColumnCount() ? 0x50u : 0u);
                EXPECT_EQ(grid.GetItemState(r, c) & 0x70u, fixed) << r << "," << c;
            }
        }
    }
};

TEST_F(Table, FixedCountsRewriteBitsAndColours)
{
    MakeGrid(300, 200);
    Fill(5, 4);
    grid.SetItemBkColour(1, 2, RGB(9, 9, 9));
    grid.SetItemFgColour(1, 0, RGB(8, 8, 8));
    grid.SetFixedRowCount(2);
    grid.SetFixedColumnCount(1);
    ExpectConsistent();
    EXPECT_EQ(grid.GetItemBkColour(1, 2), CLR_DEFAULT);  // gained a side: colours reset
    EXPECT_EQ(grid.GetItemFgColour(1, 0), CLR_DEFAULT);
    grid.SetItemBkColour(1, 0, RGB(7, 7, 7));
    grid.SetItemBkColour(1, 2, RGB(6, 6, 6));
    grid.SetFixedRowCount(1);
    ExpectConsistent();
    EXPECT_EQ(grid.GetItemBkColour(1, 0), RGB(7, 7, 7));  // still fixed by column: kept
    EXPECT_EQ(grid.GetItemBkColour(1, 2), CLR_DEFAULT);
    // Shrinking below the fixed count lowers it; a fixed count past the table grows it.
    grid.SetFixedRowCount(4);
    grid.SetRowCount(3);
    EXPECT_EQ(grid.GetFixedRowCount(), 3);
    grid.SetFixedColumnCount(6);
    EXPECT_EQ(grid.GetColumnCount(), 6);
    ExpectConsistent();
    EXPECT_STREQ(grid.GetItemText(2, 3), "2,3");
}

TEST_F(Table, InsertAndDeleteIndexRulesAndFocus)
{
    MakeGrid(300, 200);
    // An empty grid: a column makes the heading row, a row makes a column.
    EXPECT_EQ(grid.InsertColumn("Name"), 0);
    EXPECT_EQ(grid.GetRowCount(), 1);
    EXPECT_STREQ(grid.GetItemText(0, 0), "Name");
    EXPECT_TRUE(grid.GetModified(0, 0));
    EXPECT_EQ(grid.GetColumnWidth(0), grid.GetCell(0, 0)->GetTextExtent("Name").cx);
    EXPECT_EQ(grid.InsertColumn("Value", DT_RIGHT, 1), 1);  // the count appends
    EXPECT_EQ(grid.GetItemFormat(0, 1), UINT(DT_RIGHT));
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    EXPECT_EQ(grid.InsertColumn("x", DT_LEFT, 0), -1);  // into the fixed part
    EXPECT_EQ(grid.InsertColumn("x", DT_LEFT, 3), -1);  // past the count

    EXPECT_EQ(grid.InsertRow("a"), 1);
    EXPECT_EQ(grid.InsertRow(""), 2);
    EXPECT_EQ(grid.InsertRow("b"), 3);
    EXPECT_EQ(grid.InsertRow("x", 4), -1);  // at the count: refused
    EXPECT_EQ(grid.InsertRow("x", 0), -1);  // into the fixed rows
    EXPECT_EQ(grid.GetRowHeight(1), grid.GetCell(1, 0)->GetTextExtent("a").cy);
    EXPECT_EQ(grid.GetRowHeight(2), grid.GetDefaultCell(TRUE, FALSE)->GetHeight());

    struct Step {
        const char* what;
        int index;
        CCellID focusBefore, focusAfter;
    };
    const Step steps[] = {
        {"insert row", 2, CCellID(3, 1), CCellID(4, 1)},  // below: moves down
        {"insert row", 2, CCellID(2, 1), CCellID(2, 1)},  // on the index: stays
        {"delete row", 2, CCellID(4, 1), CCellID(3, 1)},  // after: moves back
        {"delete row", 2, CCellID(2, 1), CCellID(-1, -1)},
        {"insert column", 1, CCellID(1, 1), CCellID(1, 1)},
        {"insert column", 1, CCellID(1, 2), CCellID(1, 3)},
        {"delete column", 1, CCellID(1, 1), CCellID(-1, -1)},
    };
    for (const Step& s : steps) {
        grid.SetFocusCell(s.focusBefore);
        ASSERT_EQ(grid.GetFocusCell(), s.focusBefore);
        const std::string what = s.what;
        if (what == "insert row")
            EXPECT_EQ(grid.InsertRow("n", s.index), s.index);
        else if (what == "delete row")
            EXPECT_TRUE(grid.DeleteRow(s.index));
        else if (what == "insert column")
            EXPECT_EQ(grid.InsertColumn("n", DT_LEFT, s.index), s.index);
        else
            EXPECT_TRUE(grid.DeleteColumn(s.index));
        EXPECT_EQ(grid.GetFocusCell(), s.focusAfter) << what;
        ExpectConsistent();
    }
    EXPECT_TRUE(grid.DeleteRow(0));  // a fixed row: the fixed count follows
    EXPECT_EQ(grid.GetFixedRowCount(), 0);
    const int cols = grid.GetColumnCount();
    EXPECT_TRUE(grid.DeleteNonFixedRows());
    EXPECT_EQ(grid.GetRowCount(), 0);
    EXPECT_EQ(grid.GetColumnCount(), cols);
    EXPECT_TRUE(grid.DeleteAllItems());
    EXPECT_EQ(grid.GetColumnCount() + grid.GetFixedColumnCount() + grid.GetFixedRowCount(), 0);
}

TEST_F(Table, ChangesClearTheSortMarkAndMarkModified)
{
    MakeGrid(300, 200);
    Fill(4, 3, 1, 0);
    grid.SortTextItems(1, TRUE);
    ASSERT_EQ(grid.GetSortColumn(), 1);
    grid.SetModified(FALSE);
    EXPECT_NE(grid.InsertRow("r"), -1);
    EXPECT_EQ(grid.GetSortColumn(), -1);
    EXPECT_TRUE(grid.GetModified());
}

TEST_F(Table, CellTypeKeepsEveryValue)
{
    MakeGrid(300, 200);
    Fill(3, 3, 1, 1);
    grid.SetItemData(1, 1, 42);
    grid.SetItemImage(1, 1, 2);
    grid.SetItemBkColour(1, 1, RGB(1, 2, 3));
    grid.SetSelectedRange(1, 1, 2, 2);
    const UINT state = grid.GetItemState(1, 1);
    ASSERT_TRUE(grid.SetCellType(1, 1, RUNTIME_CLASS(CMarkedCell)));
    CGridCellBase* cell = grid.GetCell(1, 1);
    EXPECT_TRUE(cell->IsKindOf(RUNTIME_CLASS(CMarkedCell)));
    EXPECT_STREQ(cell->GetText(), "1,1");
    EXPECT_EQ(cell->GetData(), 42);
    EXPECT_EQ(cell->GetImage(), 2);
    EXPECT_EQ(cell->GetBackClr(), RGB(1, 2, 3));
    EXPECT_EQ(cell->GetState(), state);
    EXPECT_EQ(grid.GetSelectedCount(), 4);
    // Refused: not a cell class, the abstract base, a bad index.
    EXPECT_FALSE(grid.SetCellType(1, 1, RUNTIME_CLASS(CGridCtrl)));
    EXPECT_FALSE(grid.SetCellType(1, 1, RUNTIME_CLASS(CGridCellBase)));
    EXPECT_FALSE(grid.SetCellType(3, 1, RUNTIME_CLASS(CMarkedCell)));
    EXPECT_FALSE(grid.SetCellType(1, 1, nullptr));
    EXPECT_FALSE(grid.SetDefaultCellType(RUNTIME_CLASS(CGridCtrl)));
    EXPECT_TRUE(grid.SetDefaultCellType(RUNTIME_CLASS(CMarkedCell)));
    grid.InsertRow("new");
    EXPECT_TRUE(grid.GetCell(3, 2)->IsKindOf(RUNTIME_CLASS(CMarkedCell)));
}

TEST_F(Table, AutoSizeMeasuresShownCellsOnly)
{
    MakeGrid(300, 200);
    Fill(4, 3, 1, 1);
    grid.SetItemText(2, 1, "a much longer text than the others");
    grid.SetRowHeight(3, 0);
    grid.SetItemText(3, 2, "hidden row hidden row hidden row hidden row");
    grid.SetColumnWidth(0, 0);
    CDC* dc = grid.GetDC();
    auto extent = [&](int r, int c) { return grid.GetCell(r, c)->GetCellExtent(dc); };
    const int w1 = std::max({extent(0, 1).cx, extent(1, 1).cx, extent(2, 1).cx});
    const int h2 = std::max(extent(2, 1).cy, extent(2, 2).cy);
    grid.AutoSize();
    EXPECT_EQ(grid.GetColumnWidth(0), 0);  // hidden column stays hidden
    EXPECT_EQ(grid.GetRowHeight(3), 0);
    EXPECT_EQ(grid.GetColumnWidth(1), w1);
    EXPECT_EQ(grid.GetColumnWidth(2), std::max({extent(0, 2).cx, extent(1, 2).cx, extent(2, 2).cx}));
    EXPECT_EQ(grid.GetRowHeight(2), h2);
    // Headers only: the data rows are not measured.
    grid.SetColumnWidth(1, 5);
    EXPECT_TRUE(grid.AutoSizeColumn(1, GVS_HEADER));
    EXPECT_EQ(grid.GetColumnWidth(1), extent(0, 1).cx);
    EXPECT_FALSE(grid.AutoSizeColumn(0));  // hidden: refused
    EXPECT_TRUE(grid.SetRowHeight(3, 12));  // and back in view
    grid.ReleaseDC(dc);
}

TEST_F(Table, ExpandColumnsSpreadsTheDifference)
{
    MakeGrid(300, 200);
    Fill(2, 5);
    const int client = [&] {
        CRect r;
        grid.GetClientRect(&r);
        return r.Width();
    }();
    // Wider than the client by 7 over four shown columns and one hidden: -1 each (-7 / 4
    // truncated), and 7 % 4 = 3 turns of one more from the first listed; the hidden column
    // uses one of them, so the sum ends one pixel over.
    grid.SetColumnWidth(0, 50);
    grid.SetColumnWidth(1, 0);
    grid.SetColumnWidth(2, 50);
    grid.SetColumnWidth(3, 50);
    grid.SetColumnWidth(4, client - 150 + 7);
    grid.ExpandColumnsToFit();
    EXPECT_EQ(grid.GetColumnWidth(0), 48);
    EXPECT_EQ(grid.GetColumnWidth(1), 0);
    EXPECT_EQ(grid.GetColumnWidth(2), 48);
    EXPECT_EQ(grid.GetColumnWidth(3), 49);
    EXPECT_EQ(grid.GetColumnWidth(4), client - 150 + 7 - 1);
    EXPECT_EQ(grid.GetVirtualWidth(), client + 1);
    // Narrower by 10 over 3 shown scrolled columns, the fixed one left out: +3 each, and the
    // one turn left goes to the hidden column 1.
    grid.SetFixedColumnCount(1);
    grid.SetColumnWidth(0, 40);
    grid.SetColumnWidth(2, 30);
    grid.SetColumnWidth(3, 30);
    grid.SetColumnWidth(4, client - 40 - 60 - 10);
    grid.ExpandColumnsToFit(FALSE);
    EXPECT_EQ(grid.GetColumnWidth(0), 40);
    EXPECT_EQ(grid.GetColumnWidth(1), 0);
    EXPECT_EQ(grid.GetColumnWidth(2), 33);
    EXPECT_EQ(grid.GetColumnWidth(3), 33);
    EXPECT_EQ(grid.GetColumnWidth(4), client - 110 + 3);
    EXPECT_EQ(grid.GetVirtualWidth(), client - 1);
}

TEST_F(Table, AutoFillCountsFromTheDefaultSize)
{
    MakeGrid(300, 200);
    grid.AutoFill();
    CRect r;
    grid.GetClientRect(&r);
    EXPECT_EQ(grid.GetColumnCount(), r.Width() / grid.GetDefCellWidth() + 1);
    EXPECT_EQ(grid.GetRowCount(), r.Height() / grid.GetDefCellHeight() + 1);
    EXPECT_EQ(grid.GetFixedRowCount(), 1);
    EXPECT_EQ(grid.GetFixedColumnCount(), 1);
    EXPECT_EQ(grid.GetVirtualWidth(), r.Width());
    EXPECT_EQ(grid.GetVirtualHeight(), r.Height());
}

TEST_F(Table, SortMovesRowsWithTheirHeights)
{
    MakeGrid(300, 200);
    const char* keys[] = {"pear", "10", "apple", "9", "fig"};
    grid.SetRowCount(6);
    grid.SetColumnCount(2);
    grid.SetFixedRowCount(1);
    for (int r = 1; r <= 5; ++r) {
        grid.SetItemText(r, 0, keys[r - 1]);
        grid.SetItemData(r, 1, r);
        grid.SetRowHeight(r, 10 + r);
    }
    grid.SetFocusCell(2, 1);
    ASSERT_TRUE(grid.SortTextItems(0, TRUE));
    const char* byText[] = {"10", "9", "apple", "fig", "pear"};
    for (int r = 1; r <= 5; ++r) {
        EXPECT_STREQ(grid.GetItemText(r, 0), byText[r - 1]);
        EXPECT_EQ(grid.GetRowHeight(r), 10 + static_cast<int>(grid.GetItemData(r, 1)));
    }
    EXPECT_EQ(grid.GetFocusCell(), CCellID(-1, -1));
    EXPECT_EQ(grid.GetSortColumn(), 0);
    grid.SetCompareFunction(CGridCtrl::pfnCellNumericCompare);
    ASSERT_TRUE(grid.SortItems(0, FALSE));
    EXPECT_FALSE(grid.GetSortAscending());
    EXPECT_STREQ(grid.GetItemText(1, 0), "10");
    EXPECT_STREQ(grid.GetItemText(2, 0), "9");
    EXPECT_EQ(grid.GetRowHeight(1), 10 + static_cast<int>(grid.GetItemData(1, 1)));
    EXPECT_FALSE(grid.SortItems(2, TRUE));
    EXPECT_FALSE(grid.SortItems(-1, TRUE));
}

TEST_F(Table, EqualRowsLandWhereTheQuicksortPutsThem)
{
    // Keys b, b, a: the pivot is the middle b; the first b and the a swap, and the two b rows
    // end the other way round. A stable sort would keep them.
    MakeGrid(300, 200);
    grid.SetRowCount(3);
    grid.SetColumnCount(2);
    const char* keys[] = {"b", "b", "a"};
    for (int r = 0; r < 3; ++r) {
        grid.SetItemText(r, 0, keys[r]);
        grid.SetItemText(r, 1, std::to_string(r).c_str());
    }
    grid.SortTextItems(0, TRUE);
    EXPECT_STREQ(grid.GetItemText(0, 1), "2");
    EXPECT_STREQ(grid.GetItemText(1, 1), "1");
    EXPECT_STREQ(grid.GetItemText(2, 1), "0");
}

int RandomCompare(LPARAM, LPARAM, LPARAM data)
{
    auto* gen = reinterpret_cast<std::mt19937*>(data);
    return static_cast<int>((*gen)() % 3) - 1;
}

TEST_F(Table, ARandomCompareEndsInsideTheTable)
{
    MakeGrid(300, 200);
    Fill(500, 2, 1, 0);
    std::mt19937 gen(5);
    EXPECT_TRUE(grid.SortItems(RandomCompare, 0, TRUE, reinterpret_cast<LPARAM>(&gen)));
    EXPECT_TRUE(grid.SortItems(RandomCompare, 1, FALSE, reinterpret_cast<LPARAM>(&gen)));
    ExpectConsistent();
    EXPECT_STREQ(grid.GetItemText(0, 0), "0,0");  // the fixed row stays
}

TEST_F(Table, BadIndicesGetNothing)
{
    MakeGrid(300, 200);
    for (BOOL virtualMode : {FALSE, TRUE}) {
        grid.SetVirtualMode(virtualMode);
        grid.SetRowCount(3);
        grid.SetColumnCount(3);
        grid.SetFixedRowCount(1);
        for (int bad : {-1, 3, INT_MIN, INT_MAX}) {
            for (int good : {0, 1}) {
                for (auto [r, c] : {std::pair{bad, good}, std::pair{good, bad}}) {
                    SCOPED_TRACE(testing::Message() << virtualMode << " " << r << "," << c);
                    EXPECT_EQ(grid.GetCell(r, c), nullptr);
                    EXPECT_STREQ(grid.GetItemText(r, c), "");
                    EXPECT_FALSE(grid.SetItemText(r, c, "x"));
                    EXPECT_FALSE(grid.SetItemState(r, c, GVIS_SELECTED));
                    EXPECT_EQ(grid.GetItemState(r, c), 0u);
                    EXPECT_EQ(grid.GetItemImage(r, c), -1);
                    EXPECT_EQ(grid.GetItemFont(r, c), nullptr);
                    EXPECT_FALSE(grid.IsCellSelected(r, c));
                    EXPECT_FALSE(grid.IsCellVisible(r, c));
                    EXPECT_FALSE(grid.IsCellEditable(r, c));
                    EXPECT_FALSE(grid.SetCellType(r, c, RUNTIME_CLASS(CGridCell)));
                    CRect rect;
                    EXPECT_FALSE(grid.GetCellRect(r, c, &rect));
                    EXPECT_EQ(grid.GetCellTextExtent(r, c), CSize(0, 0));
                    grid.EnsureVisible(r, c);
                    grid.InvalidateCellRect(r, c);
                    EXPECT_FALSE(grid.RedrawCell(r, c));
                    grid.SetFocusCell(r, c);
                    CCellID from(r, c);
                    grid.GetNextItem(from, GVNI_BELOW | GVNI_SELECTED);
                    grid.GetNextItem(from, GVNI_ALL | GVNI_SELECTED);
                    grid.GetNextItem(from, GVNI_AREA | GVNI_SELECTED);
                    grid.SetSelectedRange(r, c, r, c);
                    grid.SetSelectedRange(c, r, good, good);
                }
            }
            EXPECT_EQ(grid.GetRowHeight(bad), -1);
            EXPECT_EQ(grid.GetColumnWidth(bad), -1);
            EXPECT_FALSE(grid.SetRowHeight(bad, 5));
            EXPECT_FALSE(grid.SetColumnWidth(bad, 5));
            EXPECT_FALSE(grid.DeleteRow(bad));
            EXPECT_FALSE(grid.DeleteColumn(bad));
            EXPECT_FALSE(grid.AutoSizeRow(bad));
            EXPECT_FALSE(grid.AutoSizeColumn(bad));
            EXPECT_FALSE(grid.SortTextItems(bad, TRUE));
            if (bad != 3)
                EXPECT_EQ(grid.InsertRow("x", bad == -1 ? 3 : bad), -1);
            EXPECT_EQ(grid.InsertColumn("x", DT_LEFT, bad == 3 ? 4 : (bad == -1 ? -2 : bad)), -1);
            grid.ClearCells(CCellRange(bad, bad, bad, bad));
        }
        EXPECT_FALSE(grid.SetRowCount(-1));
        EXPECT_FALSE(grid.SetFixedColumnCount(INT_MIN));
        EXPECT_FALSE(grid.SetRowHeight(0, -1));
        EXPECT_EQ(grid.GetSelectedCount(), 0);
        EXPECT_EQ(grid.GetRowCount(), 3);
        EXPECT_EQ(grid.GetColumnCount(), 3);
    }
}

TEST_F(Table, SizesThatCannotBeHeldAreReported)
{
    MakeGrid(300, 200);
    for (BOOL virtualMode : {FALSE, TRUE}) {
        grid.SetVirtualMode(virtualMode);
        grid.SetRowCount(4);
        grid.SetColumnCount(3);
        orlex::ModalScript::Reset();
        EXPECT_FALSE(grid.SetRowCount(INT_MAX));
        EXPECT_FALSE(grid.SetColumnCount(INT_MAX));
        const auto& log = orlex::test::ModalLog();
        ASSERT_EQ(log.size(), 2u);
        for (const auto& rec : log) {
            EXPECT_EQ(rec.kind, "MessageBox");
            EXPECT_EQ(rec.text, "Out of memory.");
        }
        EXPECT_EQ(grid.GetRowCount(), 4);
        EXPECT_EQ(grid.GetColumnCount(), 3);
        EXPECT_EQ(grid.GetRowHeight(3), grid.GetDefCellHeight());
        EXPECT_EQ(grid.GetRowHeight(4), -1);
        if (!virtualMode)
            ExpectConsistent();
        else
            EXPECT_NE(grid.GetCell(3, 2), nullptr);
    }
}

TEST_F(Table, SizesPastTheIntRangeDoNotWrap)
{
    MakeGrid(300, 200);
    grid.SetRowCount(3);
    grid.SetColumnCount(3);
    for (int i = 0; i < 3; ++i) {
        grid.SetRowHeight(i, 1500000000);
        grid.SetColumnWidth(i, 1500000000);
    }
    EXPECT_EQ(grid.GetVirtualHeight(), INT_MAX);
    EXPECT_EQ(grid.GetVirtualWidth(), INT_MAX);
    SCROLLINFO si{sizeof(SCROLLINFO), SIF_ALL};
    ASSERT_TRUE(grid.GetScrollInfo(SB_VERT, &si));
    EXPECT_GT(si.nMax, 0);
    grid.SendMessage(WM_VSCROLL, SB_BOTTOM, 0);
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_GE(grid.GetScrollPos32(SB_VERT), 0);
    EXPECT_GE(grid.GetTopleftNonFixedCell().row, 0);
}

}  // namespace
