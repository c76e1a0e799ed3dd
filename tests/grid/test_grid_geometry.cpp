// Geometry and scrolling: hit tests against cell rectangles at every pixel, the searches
// of GetNextItem, the window's scroll bars driven by the pointer, the wheel and EnsureVisible.
#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "foundation/platform/gui/ctl_scroll_p.h"
#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

class Geometry : public GridFixture {
protected:
    // Two fixed rows and columns, a hidden row and column among the scrolled ones, sizes
    // that differ, in a window smaller than the table.
    void MakeSmallGrid()
    {
        MakeGrid(180, 130);
        grid.SetRowCount(14);
        grid.SetColumnCount(9);
        grid.SetFixedRowCount(2);
        grid.SetFixedColumnCount(2);
        const int heights[] = {14, 11, 13, 0, 17, 9, 21, 12, 15, 10, 16, 0, 18, 11};
        const int widths[] = {21, 15, 30, 0, 25, 40, 33, 27, 31};
        for (int r = 0; r < 14; ++r)
            grid.SetRowHeight(r, heights[r]);
        for (int c = 0; c < 9; ++c)
            grid.SetColumnWidth(c, widths[c]);
        orlex::test::Pump();
    }
    CRect Client()
    {
        CRect r;
        grid.GetClientRect(&r);
        return r;
    }
    // Every client pixel: the cell whose rectangle holds it is the one the hit test finds.
    void ExpectHitTestsMatchRects()
    {
        const CRect client = Client();
        std::vector<CCellID> owner(static_cast<size_t>(client.Width() * client.Height()));
        for (int r = 0; r < grid.GetRowCount(); ++r)
            for (int c = 0; c < grid.GetColumnCount(); ++c) {
                CRect rect;
                if (!grid.GetCellRect(r, c, &rect))
                    continue;
                for (int y = std::max<int>(rect.top, 0); y <= std::min<int>(rect.bottom, client.bottom - 1); ++y)
                    for (int x = std::max<int>(rect.left, 0); x <= std::min<int>(rect.right, client.right - 1); ++x) {
                        CCellID& o = owner[static_cast<size_t>(y * client.Width() + x)];
                        ASSERT_FALSE(o.IsValid()) << "rects overlap at " << x << "," << y;
                        o = CCellID(r, c);
                    }
            }
        const int fixedW = grid.GetFixedColumnWidth(), fixedH = grid.GetFixedRowHeight();
        for (int y = 0; y < client.Height(); ++y)
            for (int x = 0; x < client.Width(); ++x) {
                const CCellID expect = owner[static_cast<size_t>(y * client.Width() + x)];
                const CCellID got = grid.GetCellFromPt(CPoint(x, y), TRUE);
                if (expect.IsValid())
                    ASSERT_EQ(got, expect) << x << "," << y;
                else
                    ASSERT_FALSE(grid.IsValid(got)) << x << "," << y;
                const CCellID scrolledOnly = grid.GetCellFromPt(CPoint(x, y), FALSE);
                if (x < fixedW || y < fixedH)
                    ASSERT_FALSE(grid.IsValid(scrolledOnly)) << x << "," << y;
                else
                    ASSERT_EQ(scrolledOnly, got) << x << "," << y;
            }
    }
};

TEST_F(Geometry, HitTestsAgreeWithCellRectsBeforeAndAfterScrolling)
{
    MakeSmallGrid();
    ASSERT_TRUE(grid.IsVisibleVScroll());
    ASSERT_TRUE(grid.IsVisibleHScroll());
    ExpectHitTestsMatchRects();
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);  // row 2 (13 px)
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);  // past hidden row 3: row 4 (17 px)
    grid.SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), 30);
    EXPECT_EQ(grid.GetScrollPos32(SB_HORZ), 30);
    EXPECT_EQ(grid.GetTopleftNonFixedCell(), CCellID(5, 3));
    ExpectHitTestsMatchRects();
    // A position inside a row: the first row starting at or after it is the top left one.
    grid.SetScrollPos32(SB_VERT, 35);
    EXPECT_EQ(grid.GetTopleftNonFixedCell(), CCellID(6, 3));
    ExpectHitTestsMatchRects();
    grid.SendMessage(WM_VSCROLL, SB_LINEUP, 0);
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), 26);
    EXPECT_EQ(grid.GetTopleftNonFixedCell(), CCellID(5, 3));
    // Scrolled cells before the top left one have no place.
    CRect rect;
    EXPECT_FALSE(grid.GetCellRect(4, 4, &rect));
    EXPECT_TRUE(grid.GetCellRect(1, 4, &rect));  // a fixed row cell above the scrolled one
    EXPECT_FALSE(grid.IsCellVisible(2, 2));
    EXPECT_TRUE(grid.IsCellVisible(0, 0));
}

TEST_F(Geometry, NextItemEachWay)
{
    MakeSmallGrid();
    grid.SetItemState(4, 4, grid.GetItemState(4, 4) | GVIS_SELECTED);
    grid.SetItemState(4, 7, grid.GetItemState(4, 7) | GVIS_SELECTED);
    grid.SetItemState(9, 4, grid.GetItemState(9, 4) | GVIS_READONLY);
    grid.SetItemState(2, 6, grid.GetItemState(2, 6) | GVIS_SELECTED);
    grid.SetModified(TRUE, 6, 1);
    struct Case {
        CCellID from;
        int flags;
        CCellID found;
    };
    const Case cases[] = {
        {CCellID(-1, -1), GVNI_ALL | GVNI_SELECTED, CCellID(2, 6)},
        {CCellID(2, 6), GVNI_ALL | GVNI_SELECTED, CCellID(4, 4)},
        {CCellID(4, 4), GVNI_ALL | GVNI_SELECTED, CCellID(4, 7)},
        {CCellID(4, 7), GVNI_ALL | GVNI_SELECTED, CCellID(-1, -1)},
        {CCellID(2, 4), GVNI_AREA | GVNI_SELECTED, CCellID(2, 6)},
        {CCellID(3, 6), GVNI_AREA | GVNI_SELECTED, CCellID(4, 7)},
        {CCellID(9, 4), GVNI_ABOVE | GVNI_SELECTED, CCellID(4, 4)},
        {CCellID(0, 4), GVNI_BELOW | GVNI_READONLY, CCellID(9, 4)},
        {CCellID(4, 8), GVNI_TOLEFT | GVNI_SELECTED, CCellID(4, 7)},
        {CCellID(4, 4), GVNI_TORIGHT | GVNI_SELECTED, CCellID(4, 7)},
        {CCellID(6, 8), GVNI_TOLEFT | GVNI_MODIFIED, CCellID(-1, -1)},  // stops at the fixed part
        {CCellID(6, 8), GVNI_TOLEFT | GVNI_FIXED, CCellID(-1, -1)},
        {CCellID(3, 2), GVNI_ALL, CCellID(-1, -1)},                    // nothing asked for
    };
    for (const Case& c : cases) {
        CCellID from = c.from;
        EXPECT_EQ(grid.GetNextItem(from, c.flags), c.found) << c.from.row << "," << c.from.col << " " << c.flags;
    }
}

TEST_F(Geometry, ScrollRangesAndPages)
{
    MakeGrid(300, 200);
    struct Case {
        int rows, colWidth;  // fixed row 20, rows of 20; fixed column 50, three of colWidth
        bool vert, horz;
        int vMax, vPage, hMax, hPage;
    };
    const int bar = ::GetSystemMetrics(SM_CXVSCROLL);
    const Case cases[] = {
        {5, 60, false, false, 0, 0, 0, 0},                     // all fits: no bars, no pages
        {21, 60, true, false, 399, 180, 0, 0},                 // 400 rows of pixels in 180
        // The vertical bar leaves too little width. The client is taken one border wider
        // than it is for each bar shown: 301 x 201 when both show.
        {21, 80, true, true, 399, 181 - bar, 239, 251 - bar},
        {5, 90, false, true, 0, 0, 269, 250},
    };
    for (const Case& c : cases) {
        grid.SetRowCount(c.rows);
        grid.SetColumnCount(4);
        grid.SetFixedRowCount(1);
        grid.SetFixedColumnCount(1);
        for (int r = 0; r < c.rows; ++r)
            grid.SetRowHeight(r, 20);
        grid.SetColumnWidth(0, 50);
        for (int col = 1; col < 4; ++col)
            grid.SetColumnWidth(col, c.colWidth);
        SCROLLINFO v{sizeof(SCROLLINFO), SIF_ALL}, h{sizeof(SCROLLINFO), SIF_ALL};
        grid.GetScrollInfo(SB_VERT, &v);
        grid.GetScrollInfo(SB_HORZ, &h);
        SCOPED_TRACE(testing::Message() << c.rows << " rows, columns of " << c.colWidth);
        EXPECT_EQ(bool(grid.IsVisibleVScroll()), c.vert);
        EXPECT_EQ(bool(grid.IsVisibleHScroll()), c.horz);
        EXPECT_EQ(bool(grid.GetStyle() & WS_VSCROLL), c.vert);
        EXPECT_EQ(v.nMax, c.vMax);
        EXPECT_EQ(v.nPage, UINT(c.vPage));
        EXPECT_EQ(h.nMax, c.hMax);
        EXPECT_EQ(h.nPage, UINT(c.hPage));
        EXPECT_EQ(grid.m_nVScrollMax, c.vMax);
    }
}

TEST_F(Geometry, TheWindowsBarsScrollTheTable)
{
    MakeGrid(300, 200);
    grid.SetRowCount(41);
    grid.SetColumnCount(2);
    grid.SetFixedRowCount(1);
    for (int r = 0; r < 41; ++r)
        grid.SetRowHeight(r, 20);
    grid.SetColumnWidth(0, 50);
    grid.SetColumnWidth(1, 100);
    orlex::test::Pump();
    const CRect client = Client();
    const int x = client.right + 8;  // on the vertical bar
    SCROLLINFO si{sizeof(SCROLLINFO), SIF_ALL};

    orlex::test::Click(hwnd(), POINT{x, client.bottom - 8});  // the down arrow
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), 20);
    EXPECT_EQ(grid.GetTopleftNonFixedCell().row, 2);
    orlex::test::Click(hwnd(), POINT{x, 8});  // the up arrow
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), 0);
    orlex::test::Click(hwnd(), POINT{x, client.bottom - 30});  // the track below the thumb
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), client.Height() - 20);
    EXPECT_EQ(grid.Count(WM_VSCROLL, SB_ENDSCROLL), 3);

    // The thumb dragged down by 40 pixels lands where the bar's arithmetic says.
    grid.GetScrollInfo(SB_VERT, &si);
    const auto g = orlex::detail::ComputeScroll(client.Height(), 17, si.nMin, si.nMax, si.nPage, si.nPos);
    const int mid = (g.thumbStart + g.thumbEnd) / 2;
    orlex::test::Drag(hwnd(), POINT{x, mid}, POINT{x, mid + 40}, 4);
    const int expected = orlex::detail::ScrollPosFromThumb(g, g.thumbStart + 40, si.nMin, si.nMax, si.nPage);
    EXPECT_EQ(grid.GetScrollPos32(SB_VERT), expected);
    EXPECT_GT(grid.Count(WM_VSCROLL, SB_THUMBTRACK), 0);
    const int expectRow = 1 + (expected + 19) / 20;  // the first row starting at or after it
    EXPECT_EQ(grid.GetTopleftNonFixedCell().row, expectRow);
    EXPECT_EQ(grid.GetTopleftNonFixedCell(TRUE).row, expectRow);
}

TEST_F(Geometry, ALineScrollInvalidatesOnlyTheScrollingPart)
{
    MakeGrid(300, 200);
    grid.SetRowCount(40);
    grid.SetColumnCount(8);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    orlex::test::Pump();
    const CRect client = Client();
    grid.SendMessage(WM_VSCROLL, SB_LINEDOWN, 0);
    CRect update;
    ASSERT_TRUE(grid.GetUpdateRect(&update));
    EXPECT_EQ(update, CRect(0, grid.GetFixedRowHeight(), client.right, client.bottom));
    orlex::test::Pump();
    grid.SendMessage(WM_HSCROLL, SB_LINERIGHT, 0);
    ASSERT_TRUE(grid.GetUpdateRect(&update));
    EXPECT_EQ(update, CRect(grid.GetFixedColumnWidth(), 0, client.right, client.bottom));
    orlex::test::Pump();
    grid.SendMessage(WM_VSCROLL, SB_ENDSCROLL, 0);
    EXPECT_FALSE(grid.GetUpdateRect(&update));
}

TEST_F(Geometry, WheelPostsLinesOrPages)
{
    MakeGrid(300, 200);
    grid.SetRowCount(100);
    grid.SetColumnCount(2);
    orlex::test::Pump();
    struct Case {
        int lines, delta;
        UINT code;
        int count;
    };
    const Case cases[] = {
        {3, 60, SB_LINEUP, 1},    {3, 120, SB_LINEUP, 3},    {3, -240, SB_LINEDOWN, 6}, {1, 60, SB_LINEUP, 0},
        {1, -120, SB_LINEDOWN, 1}, {-1, 60, SB_PAGEUP, 0},    {-1, 120, SB_PAGEUP, 1},   {-1, -240, SB_PAGEDOWN, 2},
    };
    for (const Case& c : cases) {
        grid.m_nRowsPerWheelNotch = c.lines;
        grid.scrolls.clear();
        orlex::test::Wheel(hwnd(), POINT{100, 100}, c.delta);
        EXPECT_EQ(grid.scrolls.size(), size_t(c.count)) << c.lines << " " << c.delta;
        EXPECT_EQ(grid.Count(WM_VSCROLL, c.code), c.count) << c.lines << " " << c.delta;
    }
}

TEST_F(Geometry, EnsureVisibleSendsALineScrollPerRowPassed)
{
    MakeGrid(300, 200);
    grid.SetRowCount(60);
    grid.SetColumnCount(12);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    for (int r = 0; r < 60; ++r)
        grid.SetRowHeight(r, 20);
    for (int c = 0; c < 12; ++c)
        grid.SetColumnWidth(c, 60);
    grid.SetRowHeight(20, 0);
    grid.SetColumnWidth(6, 0);
    const CCellRange before = grid.GetVisibleNonFixedCellRange();
    grid.scrolls.clear();
    grid.EnsureVisible(30, 9);
    // One message per row and column that is not hidden past the visible range, and one
    // more each because the cell then sticks out at the far edge.
    EXPECT_EQ(grid.Count(WM_VSCROLL, SB_LINEDOWN), 30 - before.GetMaxRow() - 1 + 1);
    EXPECT_EQ(grid.Count(WM_HSCROLL, SB_LINERIGHT), 9 - before.GetMaxCol() - 1 + 1);
    EXPECT_TRUE(grid.IsCellVisible(30, 9));
    CRect rect, client = Client();
    ASSERT_TRUE(grid.GetCellRect(30, 9, &rect));
    EXPECT_LE(rect.bottom, client.bottom);
    EXPECT_LE(rect.right, client.right);
    grid.scrolls.clear();
    grid.EnsureVisible(2, 1);
    EXPECT_GT(grid.Count(WM_VSCROLL, SB_LINEUP), 0);
    EXPECT_EQ(grid.GetTopleftNonFixedCell(), CCellID(2, 1));
    // Drawing off: nothing moves.
    grid.SetRedraw(FALSE);
    grid.scrolls.clear();
    grid.EnsureVisible(50, 11);
    EXPECT_TRUE(grid.scrolls.empty());
    grid.SetRedraw(TRUE);
}

}  // namespace
