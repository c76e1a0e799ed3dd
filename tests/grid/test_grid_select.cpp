// The selection as a host drives it: ranges that are not valid, cells past 65535 rows, a
// virtual log selected whole, entries of rows that went away, and a cell's drawing refusals.
#include <gtest/gtest.h>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

class Selection : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(300, 200);
    }
};

TEST_F(Selection, RangesThatAreNotValidSelectNothing)
{
    grid.SetRowCount(10);
    grid.SetColumnCount(5);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    const CCellRange bad[] = {CCellRange(5, 3, 2, 1), CCellRange(-3, 1, 4, 4), CCellRange(1, 1, 12, 3),
                              CCellRange(1, 1, 3, 5), CCellRange(INT_MIN, INT_MIN, INT_MAX, INT_MAX)};
    for (const CCellRange& r : bad) {
        grid.SetSelectedRange(r);
        EXPECT_EQ(grid.GetSelectedCount(), 0) << r.m_nMinRow << "," << r.m_nMaxRow;
    }
    // Fixed rows and columns are raised out of: the scrolled part only.
    grid.SetSelectedRange(0, 0, 2, 2);
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(1, 1, 2, 2));
    // The focus too.
    EXPECT_EQ(grid.SetFocusCell(0, 0), CCellID(-1, -1));
    EXPECT_EQ(grid.GetFocusCell(), CCellID(1, 1));
    EXPECT_TRUE(grid.GetItemState(1, 1) & GVIS_FOCUSED);
    // Selection off: nothing is taken.
    grid.EnableSelection(FALSE);
    grid.SetSelectedRange(2, 2, 3, 3);
    EXPECT_EQ(grid.GetSelectedCount(), 0);
}

TEST_F(Selection, RowsPast65535AreSelectedEachByThemselves)
{
    grid.SetRowCount(70000);
    grid.SetColumnCount(2);
    grid.SetSelectedRange(0, 1, 1, 1);
    grid.m_PrevSelectedCellMap = grid.m_SelectedCellMap;
    grid.SetSelectedRange(65536, 1, 65537, 1);
    EXPECT_EQ(grid.GetSelectedCount(), 4);
    EXPECT_TRUE(grid.IsCellSelected(0, 1));
    EXPECT_TRUE(grid.IsCellSelected(65536, 1));
    EXPECT_FALSE(grid.IsCellSelected(65538, 1));
    EXPECT_FALSE(grid.IsCellSelected(2, 1));
    grid.ResetSelectedRange();
    EXPECT_EQ(grid.GetSelectedCount(), 0);
    for (int row : {0, 1, 65536, 65537})
        EXPECT_FALSE(grid.GetItemState(row, 1) & GVIS_SELECTED) << row;
}

TEST_F(Selection, AWholeVirtualLogIsRefusedAsMoreThanCanBeHeld)
{
    grid.SetVirtualMode(TRUE);
    grid.SetRowCount(10000000);
    grid.SetColumnCount(20);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    grid.SetFocusCell(5, 5);
    orlex::ModalScript::Reset();
    grid.SetFocus();
    orlex::test::KeyDown(VK_CONTROL);
    orlex::test::Key('A');
    orlex::test::KeyUp(VK_CONTROL);
    EXPECT_EQ(grid.GetSelectedCount(), 0);
    ASSERT_EQ(orlex::test::ModalLog().size(), 1u);
    EXPECT_EQ(orlex::test::ModalLog()[0].text, "Out of memory.");
    // A block that can be held is taken.
    host.Clear();
    grid.SetSelectedRange(1, 1, 20000, 19);
    EXPECT_EQ(grid.GetSelectedCount(), 20000 * 19);
    EXPECT_TRUE(grid.IsCellSelected(19999, 7));
    // The owner is asked only for what is drawn, not for every cell selected.
    EXPECT_LT(host.Of(GVN_GETDISPINFO).size(), 1000u);
    // Rows cut off leave entries that the next selection drops.
    grid.SetRowCount(50000);
    grid.SetSelectedRange(2, 2, 2, 2);
    EXPECT_EQ(grid.GetSelectedCount(), 1);
    EXPECT_EQ(grid.GetSelectedCellRange(), CCellRange(2, 2, 2, 2));
}

TEST_F(Selection, DrawRefusesWhatItCannotDraw)
{
    grid.SetRowCount(2);
    grid.SetColumnCount(2);
    CDC* dc = grid.GetDC();
    CGridCellBase* cell = grid.GetCell(1, 1);
    EXPECT_FALSE(cell->Draw(nullptr, 1, 1, CRect(0, 0, 10, 10)));
    EXPECT_FALSE(cell->Draw(dc, 1, 1, CRect(0, 0, 0, 10)));
    EXPECT_FALSE(cell->Draw(dc, 1, 1, CRect(5, 5, 10, 5)));
    CGridCell orphan;
    EXPECT_FALSE(orphan.Draw(dc, 0, 0, CRect(0, 0, 10, 10)));
    EXPECT_TRUE(cell->Draw(dc, 1, 1, CRect(0, 0, 10, 10)));
    grid.ReleaseDC(dc);
    // An image the list does not know draws nothing: the cell looks as without one.
    grid.SetColumnWidth(1, 60);
    grid.Invalidate();
    orlex::test::Pump();
    CRect rect;
    ASSERT_TRUE(grid.GetCellRect(1, 1, &rect));
    const auto plain = orlex::test::Pixels(hwnd(), rect);
    CImageList images;
    images.Create(8, 8, ILC_COLOR24, 1, 1);
    grid.SetImageList(&images);
    grid.SetItemImage(1, 1, 3);
    grid.Invalidate();
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixels(hwnd(), rect), plain);
    grid.SetImageList(nullptr);
}

}  // namespace
