// Virtual mode, notices and grid-wide settings: what the owner is asked and told.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

class Virtual : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(300, 200);
        grid.SetVirtualMode(TRUE);
        grid.SetRowCount(10);
        grid.SetColumnCount(4);
        grid.SetFixedRowCount(1);
        grid.SetFixedColumnCount(1);
        host.supply = [](GV_ITEM& item) {
            item.strText = (std::to_string(item.row) + "," + std::to_string(item.col)).c_str();
            if (item.row == 3)
                item.crBkClr = RGB(10, 20, 30);
        };
        host.Clear();
    }
};

TEST_F(Virtual, RequestsCarryThePositionsDefaultsAndState)
{
    grid.SetSelectedRange(2, 2, 2, 3);
    grid.SetFocusCell(2, 3);
    struct Case {
        int row, col;
        UINT state;
        CGridDefaultCell* def;
    };
    const Case cases[] = {
        {2, 3, GVIS_SELECTED | GVIS_FOCUSED, grid.GetDefaultCell(FALSE, FALSE)},
        {2, 1, 0, grid.GetDefaultCell(FALSE, FALSE)},
        {0, 2, GVIS_FIXED | GVIS_FIXEDROW, grid.GetDefaultCell(TRUE, FALSE)},
        {4, 0, GVIS_FIXED | GVIS_FIXEDCOL, grid.GetDefaultCell(FALSE, TRUE)},
        {0, 0, GVIS_FIXED | GVIS_FIXEDROW | GVIS_FIXEDCOL, grid.GetDefaultCell(TRUE, TRUE)},
        {3, 2, 0, grid.GetDefaultCell(FALSE, FALSE)},
    };
    for (const Case& c : cases) {
        host.Clear();
        CGridCellBase* cell = grid.GetCell(c.row, c.col);
        ASSERT_NE(cell, nullptr);
        ASSERT_EQ(host.notices.size(), 1u);
        const gridtest::Notice& n = host.notices[0];
        EXPECT_EQ(n.code, GVN_GETDISPINFO);
        EXPECT_EQ(n.id, 1234u);
        EXPECT_EQ(n.from, grid.m_hWnd);
        const GV_ITEM& item = n.item;
        EXPECT_EQ(item.row, c.row);
        EXPECT_EQ(item.col, c.col);
        EXPECT_EQ(item.mask, 0xFFFFFFFFu);
        EXPECT_EQ(item.nState, c.state) << c.row << "," << c.col;
        EXPECT_EQ(item.nFormat, c.def->GetFormat());
        EXPECT_EQ(item.crBkClr, c.def->GetBackClr());
        EXPECT_EQ(item.crFgClr, c.def->GetTextClr());
        EXPECT_EQ(item.nMargin, c.def->GetMargin());
        EXPECT_EQ(std::memcmp(&item.lfFont, c.def->GetFont(), sizeof(LOGFONT)), 0);
        EXPECT_STREQ(item.strText, "");
        // The cell handed back is what the owner filled in.
        EXPECT_STREQ(cell->GetText(), (std::to_string(c.row) + "," + std::to_string(c.col)).c_str());
        EXPECT_EQ(cell->GetState(), c.state);
        EXPECT_EQ(cell->GetBackClr(), c.row == 3 ? RGB(10, 20, 30) : c.def->GetBackClr());
        EXPECT_EQ(cell->GetGrid(), &grid);
    }
    EXPECT_EQ(grid.GetCell(10, 0), nullptr);
    EXPECT_EQ(grid.GetCell(0, 4), nullptr);
}

int SupplyByCallback(GV_DISPINFO* info, LPARAM lParam)
{
    info->item.strText.Format("cb%d:%d", static_cast<int>(lParam), info->item.row);
    return TRUE;
}

TEST_F(Virtual, ACallbackTakesThePlaceOfTheNotice)
{
    grid.SetCallbackFunc(SupplyByCallback, 77);
    EXPECT_STREQ(grid.GetItemText(5, 2), "cb77:5");
    EXPECT_TRUE(host.Of(GVN_GETDISPINFO).empty());
}

TEST_F(Virtual, SettersAnswerZeroAndTheMapAloneSelects)
{
    EXPECT_FALSE(grid.IsEditable());
    EXPECT_FALSE(grid.GetHeaderSort());
    EXPECT_FALSE(grid.GetFixedRowSelection());
    EXPECT_FALSE(grid.GetFixedColumnSelection());
    EXPECT_EQ(grid.GetAutoSizeStyle(), int(GVS_HEADER));
    GV_ITEM item;
    item.row = 2;
    item.col = 2;
    item.mask = GVIF_TEXT;
    item.strText = "x";
    LOGFONT lf{};
    EXPECT_FALSE(grid.SetItem(&item));
    EXPECT_FALSE(grid.SetItemText(2, 2, "x"));
    EXPECT_FALSE(grid.SetItemData(2, 2, 1));
    EXPECT_FALSE(grid.SetItemImage(2, 2, 1));
    EXPECT_FALSE(grid.SetItemFormat(2, 2, DT_LEFT));
    EXPECT_FALSE(grid.SetItemBkColour(2, 2, 0));
    EXPECT_FALSE(grid.SetItemFgColour(2, 2, 0));
    EXPECT_FALSE(grid.SetItemFont(2, 2, &lf));
    EXPECT_FALSE(grid.SetCellType(2, 2, RUNTIME_CLASS(CGridCell)));
    EXPECT_FALSE(grid.SetItemState(2, 2, GVIS_SELECTED));
    EXPECT_TRUE(grid.IsCellSelected(2, 2));
    EXPECT_EQ(grid.GetSelectedCount(), 1);
    EXPECT_EQ(grid.GetItemState(2, 2) & GVIS_SELECTED, GVIS_SELECTED);
    EXPECT_FALSE(grid.SetItemState(2, 2, 0));
    EXPECT_EQ(grid.GetSelectedCount(), 0);
    // Sorting marks the column; the rows are the owner's.
    EXPECT_TRUE(grid.SortTextItems(2, FALSE));
    EXPECT_EQ(grid.GetSortColumn(), 2);
    EXPECT_FALSE(grid.GetSortAscending());
}

TEST_F(Virtual, SizingHintsFrameTheRequests)
{
    grid.SetAutoSizeStyle(GVS_BOTH);
    ASSERT_TRUE(grid.AutoSizeColumn(2));
    // The sizing's own notices come first (a paint may follow when a bar comes or goes).
    const auto& n = host.notices;
    ASSERT_GE(n.size(), 12u);
    EXPECT_EQ(n[0].code, GVN_ODCACHEHINT);
    EXPECT_EQ(n[0].range, CCellRange(0, 2, 9, 2));
    for (size_t i = 1; i < 11; ++i) {
        EXPECT_EQ(n[i].code, GVN_GETDISPINFO);
        EXPECT_EQ(n[i].row, int(i - 1));
    }
    EXPECT_EQ(n[11].code, GVN_ODCACHEHINT);
    EXPECT_EQ(n[11].range, CCellRange(-1, -1, -1, -1));
    // The widest text measured sets the width.
    int widest = 0;
    for (int r = 0; r < 10; ++r)
        widest = std::max<int>(widest, grid.GetCell(r, 2)->GetCellExtent(nullptr).cx);
    EXPECT_EQ(grid.GetColumnWidth(2), widest);
}

TEST_F(Virtual, ALongLogHoldsOnlyItsSizes)
{
    ASSERT_TRUE(grid.SetRowCount(10000000));
    EXPECT_EQ(grid.m_RowData.GetSize(), 0);
    const int h = grid.GetDefCellHeight();
    EXPECT_EQ(grid.GetVirtualHeight(), 10000000 * h);
    grid.SetScrollPos32(SB_VERT, 5000000 * h);
    EXPECT_EQ(grid.GetTopleftNonFixedCell().row, 5000001);
    // A line scroll moves on from there.
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    EXPECT_EQ(grid.GetTopleftNonFixedCell().row, 5000002);
    host.Clear();
    EXPECT_STREQ(grid.GetItemText(9999999, 3), "9999999,3");
}

TEST_F(Virtual, NoticesGoToTheOwnerElseTheParent)
{
    gridtest::Host other;
    ASSERT_TRUE(other.Make(50, 50));
    EXPECT_EQ(grid.SendMessageToParent(4, 2, NM_CLICK), 0);
    host.answers[GVN_BEGINLABELEDIT] = -1;
    EXPECT_EQ(grid.SendMessageToParent(1, 1, static_cast<int>(GVN_BEGINLABELEDIT)), -1);
    ASSERT_EQ(host.notices.size(), 2u);
    EXPECT_EQ(host.notices[0].code, NM_CLICK);
    EXPECT_EQ(host.notices[0].row, 4);
    EXPECT_EQ(host.notices[0].col, 2);
    grid.SetOwner(&other);
    grid.SendMessageToParent(3, 1, NM_DBLCLK);
    EXPECT_EQ(host.notices.size(), 2u);
    ASSERT_EQ(other.notices.size(), 1u);
    EXPECT_EQ(other.notices[0].code, NM_DBLCLK);
    EXPECT_EQ(other.notices[0].id, 1234u);
    grid.SetOwner(nullptr);
    other.DestroyWindow();
}

TEST_F(Virtual, SetFontReachesTheFourDefaults)
{
    LOGFONT lf = *grid.GetDefaultCell(FALSE, FALSE)->GetFont();
    lf.lfHeight = -19;
    CFont font;
    font.CreateFontIndirect(&lf);
    grid.SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(font.GetSafeHandle()), TRUE);
    for (BOOL fr : {FALSE, TRUE})
        for (BOOL fc : {FALSE, TRUE})
            EXPECT_EQ(grid.GetDefaultCell(fr, fc)->GetFont()->lfHeight, -19);
    const auto handle = reinterpret_cast<HGDIOBJ>(grid.SendMessage(WM_GETFONT, 0, 0));
    EXPECT_EQ(handle, grid.GetDefaultCell(FALSE, FALSE)->GetFontObject()->GetSafeHandle());
}

}  // namespace
