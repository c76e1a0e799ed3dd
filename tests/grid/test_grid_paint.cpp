// The grid's picture: cells, fixed edges, grid lines, focus and selection, the pressed
// headers, images, the sort arrow; buffered or not; what a key step repaints; a virtual
// grid's requests between its hints.
#include <gtest/gtest.h>

#include <set>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;
using orlex::test::Pixel;

class Paint : public GridFixture {
protected:
    // Two fixed rows and columns, four scrolled rows (one hidden) and columns, no texts.
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(260, 160);
        grid.SetRowCount(6);
        grid.SetColumnCount(6);
        grid.SetFixedRowCount(2);
        grid.SetFixedColumnCount(2);
        for (int r = 0; r < 6; ++r)
            grid.SetRowHeight(r, r < 2 ? 18 : 20);
        for (int c = 0; c < 6; ++c)
            grid.SetColumnWidth(c, c < 2 ? 30 : 40);
        grid.SetRowHeight(3, 0);
        Repaint();
    }
    void Repaint()
    {
        grid.Invalidate();
        orlex::test::Pump();
    }
    CRect Rect(int r, int c)
    {
        CRect rect;
        EXPECT_TRUE(grid.GetCellRect(r, c, &rect));
        return rect;
    }
    COLORREF At(int x, int y) { return Pixel(hwnd(), POINT{x, y}); }
    static COLORREF Sys(int i) { return ::GetSysColor(i); }
};

TEST_F(Paint, CellsEdgesAndLinesByTheGridLinesSetting)
{
    const CRect fixedCell = Rect(0, 3), cell = Rect(2, 3);
    struct Case {
        int lines;
        bool vert, horz;
    };
    for (const Case& c : {Case{GVL_BOTH, true, true}, Case{GVL_HORZ, false, true}, Case{GVL_VERT, true, false},
                          Case{GVL_NONE, false, false}}) {
        grid.SetGridLines(c.lines);
        Repaint();
        SCOPED_TRACE(c.lines);
        const COLORREF back = grid.GetDefaultCell(FALSE, FALSE)->GetBackClr();
        EXPECT_EQ(At(cell.left + 5, cell.top + 5), back);
        EXPECT_EQ(At(cell.right, cell.top + 5), c.vert ? grid.GetGridLineColor() : back);
        EXPECT_EQ(At(cell.left + 5, cell.bottom), c.horz ? grid.GetGridLineColor() : back);
        // Fixed cells have their own raised edge, as long as there are lines.
        const COLORREF face = grid.GetDefaultCell(TRUE, FALSE)->GetBackClr();
        const bool edge = c.lines != GVL_NONE;
        EXPECT_EQ(At(fixedCell.left, fixedCell.top + 5), edge ? Sys(COLOR_3DHIGHLIGHT) : face);
        EXPECT_EQ(At(fixedCell.left + 5, fixedCell.top), edge ? Sys(COLOR_3DHIGHLIGHT) : face);
        EXPECT_EQ(At(fixedCell.right, fixedCell.top + 5), edge ? Sys(COLOR_3DDKSHADOW) : face);
        EXPECT_EQ(At(fixedCell.left + 5, fixedCell.bottom), edge ? Sys(COLOR_3DDKSHADOW) : face);
        // Outside the cells: the grid's background colour.
        CRect client;
        grid.GetClientRect(&client);
        EXPECT_EQ(At(client.right - 1, client.bottom - 1), grid.GetGridBkColor());
    }
}

TEST_F(Paint, SelectionFocusAndPressedHeaders)
{
    grid.SetItemBkColour(2, 2, RGB(0, 200, 0));
    grid.SetItemBkColour(4, 3, RGB(0, 0, 200));
    grid.SetSelectedRange(2, 2, 2, 3);
    grid.SetFocusCell(4, 3);
    Repaint();
    const CRect sel = Rect(2, 2), own = Rect(4, 3);
    // A selected cell shows the system highlight over its own colour.
    EXPECT_EQ(At(sel.left + 5, sel.top + 5), Sys(COLOR_HIGHLIGHT));
    EXPECT_EQ(At(own.left + 5, own.top + 5), RGB(0, 0, 200));
    // The focus frame in the text colour, inside the grid line.
    const COLORREF text = grid.GetDefaultCell(FALSE, FALSE)->GetTextClr();
    EXPECT_EQ(At(own.left, own.top + 5), text);
    EXPECT_EQ(At(own.right - 1, own.top + 5), text);
    EXPECT_EQ(At(own.right, own.top + 5), grid.GetGridLineColor());
    // The headers of the focus row and column look pressed: the layer's sunken edge.
    for (const CRect& h : {Rect(0, 3), Rect(1, 3), Rect(4, 0), Rect(4, 1)}) {
        CRect edge(h.left, h.top, h.right + 1, h.bottom + 1);
        const auto expected = gridtest::DrawnPixels(300, 200, [&](CDC& dc) {
            dc.FillSolidRect(&edge, grid.GetDefaultCell(TRUE, TRUE)->GetBackClr());
            dc.DrawEdge(&edge, BDR_SUNKENINNER, BF_RECT);
        }, CRect(h.left, h.top, h.right + 1, h.top + 1));
        for (int x = h.left; x <= h.right; ++x)
            EXPECT_EQ(At(x, h.top), expected[static_cast<size_t>(x - h.left)]) << x;
        EXPECT_NE(At(h.left, h.top), Sys(COLOR_3DHIGHLIGHT));
    }
    // Not pressed elsewhere.
    EXPECT_EQ(At(Rect(0, 2).left, Rect(0, 2).top + 5), Sys(COLOR_3DHIGHLIGHT));
    // A focused and selected cell keeps its frame in the highlight text colour.
    grid.SetSelectedRange(4, 3, 4, 3);
    Repaint();
    EXPECT_EQ(At(own.left + 5, own.top + 5), Sys(COLOR_HIGHLIGHT));
    EXPECT_EQ(At(own.left, own.top + 5), Sys(COLOR_HIGHLIGHTTEXT));
    // Without lines the frame lies one pixel further out, and the headers are not pressed.
    grid.SetGridLines(GVL_NONE);
    Repaint();
    EXPECT_EQ(At(own.right, own.top + 5), Sys(COLOR_HIGHLIGHTTEXT));
    EXPECT_EQ(At(Rect(0, 3).left, Rect(0, 3).top + 5), grid.GetDefaultCell(TRUE, FALSE)->GetBackClr());
}

TEST_F(Paint, ImagesThatFitAndTheSortArrow)
{
    CImageList images;
    ASSERT_TRUE(images.Create(8, 8, ILC_COLOR24, 2, 1));
    CBitmap red, wide;
    std::vector<DWORD> bits(8 * 8, 0x00FF0000);
    red.CreateBitmap(8, 8, 1, 32, bits.data());
    ASSERT_EQ(images.Add(&red, static_cast<CBitmap*>(nullptr)), 0);
    grid.SetImageList(&images);
    grid.SetItemImage(2, 2, 0);
    grid.SetColumnWidth(4, 7);  // narrower than the image
    grid.SetItemImage(2, 4, 0);
    Repaint();
    const int m = static_cast<int>(grid.GetDefCellMargin());
    const CRect withImage = Rect(2, 2), narrow = Rect(2, 4);
    EXPECT_EQ(At(withImage.left + m, withImage.top + m), RGB(255, 0, 0));
    EXPECT_EQ(At(withImage.left + m + 7, withImage.top + m + 7), RGB(255, 0, 0));
    for (int x = narrow.left; x < narrow.right; ++x)
        EXPECT_NE(At(x, narrow.top + m + 2), RGB(255, 0, 0));
    grid.SetImageList(nullptr);

    // The arrow in row 0 of the sorted column: s = height of "M" - 4, at the right.
    const int s0 = gridtest::MessageFontExtent("M").cy - 4;
    struct Case {
        BOOL ascending;
        int escapement;
    };
    for (const Case& c : {Case{TRUE, 0}, Case{FALSE, 0}, Case{TRUE, 900}}) {
        SCOPED_TRACE(testing::Message() << c.ascending << " " << c.escapement);
        LOGFONT lf = *grid.GetDefaultCell(TRUE, FALSE)->GetFont();
        lf.lfEscapement = c.escapement;
        grid.SetItemFont(0, 3, &lf);
        grid.SetRowHeight(0, 40);
        grid.SetSortColumn(3);
        grid.SetSortAscending(c.ascending);
        Repaint();
        const CRect cell = Rect(0, 3);
        // The rectangle inside the edge and the margin, one wider at right and bottom.
        const CRect inner(cell.left + 1 + m, cell.top + 1 + m, cell.right - m, cell.bottom - m);
        int s = s0;
        if (s >= inner.Height())
            s = inner.Height() - 4;
        const int top = inner.bottom - s - 2;
        const int left = c.escapement == 900 ? (inner.left - s + inner.right) / 2 : inner.right - s;
        if (c.ascending) {
            EXPECT_EQ(At(left + s / 2, top), Sys(COLOR_3DSHADOW));
            EXPECT_EQ(At(left, top + s), Sys(COLOR_3DSHADOW));
            EXPECT_EQ(At(left + s + 1, top + s + 1), Sys(COLOR_3DHIGHLIGHT));
        } else {
            EXPECT_EQ(At(left + s / 2, top + s), Sys(COLOR_3DSHADOW));
            EXPECT_EQ(At(left + s + 1, top + 1), Sys(COLOR_3DHIGHLIGHT));
        }
        // Only row 0 carries it.
        const CRect below = Rect(1, 3);
        EXPECT_EQ(At(below.right - 1 - m - s / 2, below.bottom - 1 - m - 2), grid.GetDefaultCell(TRUE, FALSE)->GetBackClr());
    }
}

TEST_F(Paint, BufferedAndDirectPaintsAreTheSame)
{
    grid.SetItemText(2, 2, "Text in a cell that is far too long");
    grid.SetItemText(0, 3, "Head");
    grid.SetSelectedRange(4, 2, 5, 3);
    grid.SetFocusCell(5, 4);
    grid.SetSortColumn(2);
    Repaint();
    const auto buffered = gridtest::ClientPixels(hwnd());
    grid.SetDoubleBuffering(FALSE);
    Repaint();
    EXPECT_EQ(gridtest::ClientPixels(hwnd()), buffered);
    // The text is the layer's DrawText of it in the cell's rectangle.
    const CRect cell = Rect(2, 2);
    const int m = static_cast<int>(grid.GetDefCellMargin());
    CFont* font = grid.GetDefaultCell(FALSE, FALSE)->GetFontObject();
    const CRect textRect(cell.left + m, cell.top + m, cell.right - m + 2, cell.bottom - m + 2);
    const auto expected = gridtest::DrawnPixels(300, 200, [&](CDC& dc) {
        const CRect fill(cell.left, cell.top, cell.right + 1, cell.bottom + 1);
        dc.FillSolidRect(&fill, grid.GetDefaultCell(FALSE, FALSE)->GetBackClr());
        dc.SelectObject(font);
        dc.SetBkMode(TRANSPARENT);
        dc.SetTextColor(grid.GetDefaultCell(FALSE, FALSE)->GetTextClr());
        CRect r = textRect;
        dc.DrawText("Text in a cell that is far too long", -1, &r, grid.GetCell(2, 2)->GetFormat() | DT_NOPREFIX);
    }, CRect(cell.left, cell.top, cell.right, cell.bottom));
    EXPECT_EQ(orlex::test::Pixels(hwnd(), CRect(cell.left, cell.top, cell.right, cell.bottom)), expected);
}

TEST_F(Paint, AKeyStepRepaintsOnlyItsCellsAndRowHeaders)
{
    orlex::test::Click(hwnd(), POINT{Rect(2, 3).left + 5, Rect(2, 3).top + 5});
    orlex::test::Pump();
    const auto before = gridtest::ClientPixels(hwnd());
    grid.paints.clear();
    orlex::test::Key(VK_DOWN);  // past the hidden row 3
    EXPECT_EQ(grid.GetFocusCell(), CCellID(4, 3));
    const auto after = gridtest::ClientPixels(hwnd());
    CRect client;
    grid.GetClientRect(&client);
    std::vector<CRect> allowed;
    for (const CCellID& c : {CCellID(2, 3), CCellID(4, 3), CCellID(2, 0), CCellID(2, 1), CCellID(4, 0), CCellID(4, 1)}) {
        const CRect r = Rect(c.row, c.col);
        allowed.emplace_back(r.left, r.top, r.right + 1, r.bottom + 1);
    }
    int changed = 0;
    for (int y = 0; y < client.Height(); ++y)
        for (int x = 0; x < client.Width(); ++x) {
            const size_t i = static_cast<size_t>(y * client.Width() + x);
            if (before[i] == after[i])
                continue;
            ++changed;
            bool inside = false;
            for (const CRect& r : allowed)
                inside = inside || r.PtInRect(CPoint(x, y));
            EXPECT_TRUE(inside) << x << "," << y;
        }
    EXPECT_GT(changed, 0);
    // One paint, clipped to the two cells whose selection changed.
    ASSERT_EQ(grid.paints.size(), 1u);
    const CRect a = Rect(2, 3), b = Rect(4, 3);
    EXPECT_EQ(grid.paints[0], CRect(a.left, a.top, b.right + 1, b.bottom + 1));
}

TEST_F(Paint, AVirtualGridPaintsFromRequestsBetweenItsHints)
{
    grid.SetVirtualMode(TRUE);
    grid.SetRowCount(1000);
    grid.SetColumnCount(20);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    orlex::test::Pump();
    host.Clear();
    Repaint();
    const auto& n = host.notices;
    ASSERT_GE(n.size(), 3u);
    const CCellRange visible = grid.GetVisibleNonFixedCellRange();
    EXPECT_EQ(n.front().code, GVN_ODCACHEHINT);
    EXPECT_EQ(n.front().range, visible);
    EXPECT_EQ(n.back().code, GVN_ODCACHEHINT);
    EXPECT_EQ(n.back().range, CCellRange(-1, -1, -1, -1));
    std::set<std::pair<int, int>> asked;
    for (size_t i = 1; i + 1 < n.size(); ++i) {
        ASSERT_EQ(n[i].code, GVN_GETDISPINFO);
        asked.emplace(n[i].row, n[i].col);
        EXPECT_TRUE((n[i].row < 1 || (n[i].row >= visible.GetMinRow() && n[i].row <= visible.GetMaxRow())) &&
                    (n[i].col < 1 || (n[i].col >= visible.GetMinCol() && n[i].col <= visible.GetMaxCol())))
            << n[i].row << "," << n[i].col;
    }
    EXPECT_EQ(asked.size(), static_cast<size_t>((visible.GetRowSpan() + 1) * (visible.GetColSpan() + 1)));
}

}  // namespace
