// The cell model: what a cell inherits from the default cell of its position, how it
// measures itself, and what a copy carries.
#include <gtest/gtest.h>

#include <cstring>

#include "grid_test_util.h"

namespace {

using gridtest::GridFixture;

class Cells : public GridFixture {
protected:
    void SetUp() override
    {
        GridFixture::SetUp();
        MakeGrid(400, 300);
        dc = grid.GetDC();
    }
    void TearDown() override
    {
        grid.ReleaseDC(dc);
        GridFixture::TearDown();
    }
    // The extent of text in a font on the grid's context, as the layer measures it.
    CSize Measure(const LOGFONT& lf, const char* text, int len = -1)
    {
        CFont font;
        font.CreateFontIndirect(&lf);
        CFont* old = dc->SelectObject(&font);
        const CSize s = dc->GetTextExtent(text, len < 0 ? static_cast<int>(std::strlen(text)) : len);
        dc->SelectObject(old);
        return s;
    }
    CDC* dc = nullptr;
};

TEST_F(Cells, PositionPicksItsDefaultAndUnsetValuesFollowIt)
{
    // A cell takes its default's format when it is made.
    grid.GetDefaultCell(FALSE, FALSE)->SetFormat(DT_RIGHT | DT_SINGLELINE);
    grid.GetDefaultCell(TRUE, FALSE)->SetMargin(7);
    grid.SetRowCount(3);
    grid.SetColumnCount(3);
    grid.SetFixedRowCount(1);
    grid.SetFixedColumnCount(1);
    struct Case {
        int row, col;
        DWORD bits;
        CGridDefaultCell* def;
    };
    const Case cases[] = {{1, 1, 0, grid.GetDefaultCell(FALSE, FALSE)},
                          {0, 1, 0x30, grid.GetDefaultCell(TRUE, FALSE)},
                          {1, 0, 0x50, grid.GetDefaultCell(FALSE, TRUE)},
                          {0, 0, 0x70, grid.GetDefaultCell(TRUE, TRUE)}};
    for (const Case& c : cases) {
        CGridCellBase* cell = grid.GetCell(c.row, c.col);
        ASSERT_NE(cell, nullptr);
        EXPECT_EQ(cell->GetState() & 0x70, c.bits);
        EXPECT_EQ(cell->GetDefaultCell(), c.def);
        // Every cell was made before the fixed counts and took the normal default's format;
        // changing side rewrites bits and colours, not the format. Unset, it follows.
        EXPECT_EQ(cell->GetFormat(), DWORD(DT_RIGHT | DT_SINGLELINE));
        cell->SetFormat(0xFFFFFFFF);
        c.def->SetFormat(DT_CENTER);
        EXPECT_EQ(cell->GetFormat(), DWORD(DT_CENTER));
        EXPECT_EQ(cell->GetMargin(), c.def->GetMargin());
        // Colours never fall back: drawing decides.
        EXPECT_EQ(cell->GetTextClr(), CLR_DEFAULT);
        EXPECT_EQ(cell->GetBackClr(), CLR_DEFAULT);
        EXPECT_EQ(cell->GetFont(), c.def->GetFont());
    }
    EXPECT_EQ(grid.GetDefaultCell(FALSE, FALSE)->GetFormat(), DWORD(DT_CENTER));
    CGridDefaultCell fresh;
    EXPECT_EQ(fresh.GetFormat(), 0x8824u);
}

TEST_F(Cells, DefaultCellSizeComesFromItsFont)
{
    CGridDefaultCell* def = grid.GetDefaultCell(FALSE, FALSE);
    LOGFONT lf = *def->GetFont();
    lf.lfHeight = -20;
    def->SetFont(&lf);
    const CSize x = Measure(lf, " XXXXXXXXXXXX ");
    EXPECT_EQ(def->GetMargin(), UINT(Measure(lf, " ").cx));
    EXPECT_EQ(def->GetWidth(), x.cx);
    EXPECT_EQ(def->GetHeight(), x.cy * 3 / 2);
    LOGFONT shown{};
    def->GetFontObject()->GetLogFont(&shown);
    EXPECT_EQ(shown.lfHeight, -20);

    // Null is ignored by a default cell; on a cell it goes back to the default's font.
    def->SetFont(nullptr);
    EXPECT_EQ(def->GetFont()->lfHeight, -20);
    CGridCell* cell = static_cast<CGridCell*>(grid.GetCell(0, 0));
    grid.SetRowCount(1);
    grid.SetColumnCount(1);
    cell = static_cast<CGridCell*>(grid.GetCell(0, 0));
    LOGFONT own = lf;
    own.lfHeight = -30;
    cell->SetFont(&own);
    EXPECT_FALSE(cell->IsDefaultFont());
    EXPECT_EQ(cell->GetFont()->lfHeight, -30);
    cell->SetFont(nullptr);
    EXPECT_TRUE(cell->IsDefaultFont());
    EXPECT_EQ(cell->GetFont(), def->GetFont());
}

TEST_F(Cells, TextExtentByFormatAndEscapement)
{
    grid.SetRowCount(1);
    grid.SetColumnCount(1);
    CGridCellBase* cell = grid.GetCell(0, 0);
    LOGFONT lf = *cell->GetFont();
    const int m = static_cast<int>(cell->GetMargin());
    ASSERT_GT(m, 0);
    const CSize one = Measure(lf, "Hello grid");

    // One line.
    EXPECT_EQ(cell->GetTextExtent("Hello grid", dc), CSize(one.cx + 2 * m, one.cy + 2 * m));
    // A measure without a context fetches the grid's own.
    EXPECT_EQ(cell->GetTextExtent("Hello grid"), CSize(one.cx + 2 * m, one.cy + 2 * m));
    // Null text: the default size.
    EXPECT_EQ(cell->GetTextExtent(nullptr, dc),
              CSize(grid.GetDefaultCell(FALSE, FALSE)->GetWidth(), grid.GetDefaultCell(FALSE, FALSE)->GetHeight()));

    // Broken lines: the widest line + 1 is the width DrawText breaks within.
    cell->SetFormat(DT_WORDBREAK | DT_LEFT);
    const char* text = "short\na rather longer line\nmid";
    CFont font;
    font.CreateFontIndirect(&lf);
    CFont* old = dc->SelectObject(&font);
    CRect calc(0, 0, dc->GetTextExtent("a rather longer line", 20).cx + 1, 0);
    dc->DrawText(text, -1, &calc, DT_WORDBREAK | DT_LEFT | DT_CALCRECT);
    dc->SelectObject(old);
    EXPECT_EQ(cell->GetTextExtent(text, dc), CSize(calc.Width() + 2 * m, calc.Height() + 2 * m));
    // DT_SINGLELINE wins over DT_WORDBREAK.
    cell->SetFormat(DT_WORDBREAK | DT_SINGLELINE);
    EXPECT_EQ(cell->GetTextExtent("Hello grid", dc).cx, one.cx + 2 * m);

    // Turned fonts swap: width the height with its margins, height the width + 4 margins.
    cell->SetFormat(DT_SINGLELINE);
    for (int esc : {900, -900}) {
        LOGFONT turned = lf;
        turned.lfEscapement = esc;
        cell->SetFont(&turned);
        const CSize measured = Measure(turned, "Hello grid");
        EXPECT_EQ(cell->GetTextExtent("Hello grid", dc), CSize(measured.cy + 2 * m, measured.cx + 4 * m)) << esc;
    }
}

TEST_F(Cells, CellExtentWithImagesAndFixedEdge)
{
    CImageList images;
    ASSERT_TRUE(images.Create(12, 9, ILC_COLOR24, 2, 1));
    CBitmap bmp;
    bmp.CreateBitmap(24, 9, 1, 32, nullptr);
    ASSERT_EQ(images.Add(&bmp, static_cast<CBitmap*>(nullptr)), 0);
    grid.SetImageList(&images);
    grid.SetRowCount(2);
    grid.SetColumnCount(1);
    grid.SetFixedRowCount(1);
    const int m = static_cast<int>(grid.GetCell(1, 0)->GetMargin());
    struct Case {
        int row;
        const char* text;
        int image;
        int extraW, extraH;  // what the image and the edge add beside the text extent
    };
    const Case cases[] = {
        {1, "abc", -1, 1, 1},           // no image: + 1
        {1, "abc", 0, 12 + m + 1, 1},   // image and text: w + margin
        {1, "", 1, 12 + 1, 1},          // no text: the image alone
        {1, "abc", 5, 1, 1},            // an image the list does not know is none
        {0, "abc", 0, 12 + m + 2, 2},   // a fixed cell: one more each way
    };
    for (const Case& c : cases) {
        CGridCellBase* cell = grid.GetCell(c.row, 0);
        cell->SetText(c.text);
        cell->SetImage(c.image);
        const CSize text = cell->GetTextExtent(c.text, dc);
        const CSize got = cell->GetCellExtent(dc);
        EXPECT_EQ(got.cx, text.cx + c.extraW) << c.text << " " << c.image;
        const int imageH = c.image >= 0 && c.image < 2 ? 9 + 2 * m : 0;
        EXPECT_EQ(got.cy, std::max<int>(text.cy, imageH) + c.extraH) << c.text << " " << c.image;
    }
    // The text starts right of a known image.
    grid.GetCell(1, 0)->SetImage(1);
    CRect r(10, 0, 100, 20);
    grid.GetCell(1, 0)->GetTextRect(&r);
    EXPECT_EQ(r.left, 10 + 12 + 1 + m);
    grid.SetImageList(nullptr);
}

TEST_F(Cells, OneSharedFontObjectRemadeForTheAskingCell)
{
    grid.SetRowCount(1);
    grid.SetColumnCount(2);
    LOGFONT a = *grid.GetCell(0, 0)->GetFont(), b = a;
    a.lfHeight = -11;
    b.lfHeight = -23;
    grid.GetCell(0, 0)->SetFont(&a);
    grid.GetCell(0, 1)->SetFont(&b);
    CFont* fa = grid.GetCell(0, 0)->GetFontObject();
    LOGFONT got{};
    fa->GetLogFont(&got);
    EXPECT_EQ(got.lfHeight, -11);
    CFont* fb = grid.GetCell(0, 1)->GetFontObject();
    EXPECT_EQ(fa, fb);
    fb->GetLogFont(&got);
    EXPECT_EQ(got.lfHeight, -23);
    // A cell without a font of its own hands out its default's object.
    grid.GetCell(0, 0)->SetFont(nullptr);
    EXPECT_EQ(grid.GetCell(0, 0)->GetFontObject(), grid.GetDefaultCell(FALSE, FALSE)->GetFontObject());
}

TEST_F(Cells, CopyCarriesEveryValueAndStateBits)
{
    grid.SetRowCount(2);
    grid.SetColumnCount(2);
    grid.SetFixedRowCount(1);
    CGridCell* src = static_cast<CGridCell*>(grid.GetCell(0, 1));
    src->SetText("head");
    src->SetImage(3);
    src->SetData(77);
    src->SetState(src->GetState() | GVIS_SELECTED | GVIS_READONLY);
    src->SetTextClr(RGB(1, 2, 3));
    src->SetBackClr(RGB(4, 5, 6));
    src->SetMargin(9);
    CGridCell copy;
    copy = *src;
    EXPECT_EQ(copy.GetGrid(), &grid);
    EXPECT_STREQ(copy.GetText(), "head");
    EXPECT_EQ(copy.GetImage(), 3);
    EXPECT_EQ(copy.GetData(), 77);
    EXPECT_EQ(copy.GetState(), src->GetState());
    EXPECT_TRUE(copy.IsFixedRow());
    EXPECT_EQ(copy.GetFormat(), src->GetFormat());
    EXPECT_EQ(copy.GetTextClr(), RGB(1, 2, 3));
    EXPECT_EQ(copy.GetBackClr(), RGB(4, 5, 6));
    EXPECT_TRUE(copy.IsDefaultFont());  // the source's default font is not copied in
    EXPECT_EQ(copy.GetMargin(), 9u);
    copy = copy;  // itself: nothing changes
    EXPECT_STREQ(copy.GetText(), "head");

    // Reset forgets the grid too: nothing left to inherit.
    copy.Reset();
    EXPECT_EQ(copy.GetGrid(), nullptr);
    EXPECT_EQ(copy.GetDefaultCell(), nullptr);
    EXPECT_EQ(copy.GetFormat(), 0u);
    EXPECT_EQ(copy.GetMargin(), 0u);
    EXPECT_EQ(copy.GetFont(), nullptr);
    EXPECT_EQ(copy.GetFontObject(), nullptr);
    EXPECT_EQ(copy.GetState(), 0u);
}

}  // namespace
