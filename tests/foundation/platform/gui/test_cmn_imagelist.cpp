// Image lists: counts and image rectangles, pixel-exact draws through a colour mask and a
// mask bitmap (the AND/XOR rule), the drawing styles, clipping, removal and the handle class.
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "foundation/platform/afxcmn.h"
#include "support/orlex_test.h"

namespace {

constexpr COLORREF kMagenta = RGB(255, 0, 255);
constexpr COLORREF kBack = RGB(16, 32, 48);

const std::map<char, COLORREF> kColours = {
    {'M', kMagenta},           {'r', RGB(255, 0, 0)},   {'g', RGB(0, 255, 0)}, {'b', RGB(0, 0, 255)},
    {'w', RGB(255, 255, 255)}, {'k', RGB(0, 0, 0)},     {'y', RGB(200, 180, 20)},
};

// A bitmap whose pixels are given as rows of colour letters.
void Paint(CBitmap& bmp, const std::vector<std::string>& rows) {
    CDC screen;
    screen.Attach(::GetDC(nullptr));
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(&screen, static_cast<int>(rows[0].size()), static_cast<int>(rows.size())));
    ::ReleaseDC(nullptr, screen.Detach());
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    CBitmap* old = mem.SelectObject(&bmp);
    for (size_t y = 0; y < rows.size(); ++y)
        for (size_t x = 0; x < rows[y].size(); ++x)
            mem.SetPixel(static_cast<int>(x), static_cast<int>(y), kColours.at(rows[y][x]));
    mem.SelectObject(old);
}

// A memory context of w x h pixels filled with the background colour.
class Canvas {
public:
    Canvas(int w, int h) : w_(w), h_(h) {
        dc.CreateCompatibleDC(nullptr);
        CDC screen;
        screen.Attach(::GetDC(nullptr));
        bmp.CreateCompatibleBitmap(&screen, w, h);
        ::ReleaseDC(nullptr, screen.Detach());
        old_ = dc.SelectObject(&bmp);
        dc.FillSolidRect(0, 0, w, h, kBack);
    }
    ~Canvas() { dc.SelectObject(old_); }
    // The pixels as rows of letters ('.' for the background, '?' for others).
    std::vector<std::string> Rows() {
        std::vector<std::string> out;
        for (int y = 0; y < h_; ++y) {
            std::string row;
            for (int x = 0; x < w_; ++x) {
                const COLORREF c = dc.GetPixel(x, y);
                char ch = c == kBack ? '.' : '?';
                for (const auto& [k, v] : kColours)
                    if (v == c && c != kBack) ch = k;
                row += ch;
            }
            out.push_back(row);
        }
        return out;
    }
    CDC dc;
    CBitmap bmp;

private:
    int w_, h_;
    CBitmap* old_ = nullptr;
};

using Rows = std::vector<std::string>;

class ImageListTest : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        // Two images of 4 x 3: a framed red one and a green diagonal, magenta around.
        Paint(two, {"MrrMgMMM",
                    "rbbrMgMM",
                    "MrrMMMgM"});
        ASSERT_TRUE(list.Create(4, 3, ILC_MASK | ILC_COLOR24, 1, 1));
    }
    CBitmap two;
    CImageList list;
};

TEST_F(ImageListTest, CountsAndImageRectangles) {
    EXPECT_EQ(list.GetImageCount(), 0);
    EXPECT_EQ(list.Add(&two, kMagenta), 0);
    CBitmap one;
    Paint(one, {"yyyy", "yyyy", "yyyy"});
    EXPECT_EQ(list.Add(&one, kMagenta), 2);
    EXPECT_EQ(list.GetImageCount(), 3);
    int cx = 0, cy = 0;
    ASSERT_TRUE(ImageList_GetIconSize(list, &cx, &cy));
    EXPECT_EQ(cx, 4);
    EXPECT_EQ(cy, 3);

    struct Case {
        int i;
        BOOL ok;
        RECT rc;
    } cases[] = {
        {0, TRUE, {0, 0, 4, 3}}, {1, TRUE, {4, 0, 8, 3}}, {2, TRUE, {8, 0, 12, 3}},
        {3, FALSE, {}},          {-1, FALSE, {}},
    };
    for (const Case& c : cases) {
        IMAGEINFO info{};
        EXPECT_EQ(ImageList_GetImageInfo(list, c.i, &info), c.ok) << c.i;
        if (!c.ok) continue;
        EXPECT_EQ(CRect(info.rcImage), CRect(c.rc)) << c.i;
        EXPECT_NE(info.hbmImage, nullptr);
        EXPECT_NE(info.hbmMask, nullptr);
        // The rectangle's pixels in the list's bitmap are the image's.
        BITMAP bm{};
        ASSERT_TRUE(::GetObjectA(info.hbmImage, sizeof bm, &bm));
        EXPECT_GE(bm.bmWidth, info.rcImage.right);
        EXPECT_EQ(bm.bmHeight, 3);
    }
}

TEST_F(ImageListTest, MaskColourIsTransparentPixelForPixel) {
    ASSERT_EQ(ImageList_AddMasked(list, two, kMagenta), 0);
    Canvas c(10, 5);
    ASSERT_TRUE(ImageList_Draw(list, 0, c.dc.m_hDC, 1, 1, ILD_NORMAL));
    ASSERT_TRUE(ImageList_Draw(list, 1, c.dc.m_hDC, 5, 2, ILD_TRANSPARENT));
    EXPECT_EQ(c.Rows(), (Rows{"..........",
                              "..rr......",
                              ".rbbrg....",
                              "..rr..g...",
                              ".......g.."}));
    // The caller's bitmap keeps its mask colour.
    Canvas again(8, 3);
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    CBitmap* old = mem.SelectObject(&two);
    again.dc.BitBlt(0, 0, 8, 3, &mem, 0, 0, SRCCOPY);
    mem.SelectObject(old);
    EXPECT_EQ(again.Rows()[0], "MrrMgMMM");
}

TEST_F(ImageListTest, DrawingStyles) {
    ASSERT_EQ(list.Add(&two, kMagenta), 0);
    struct Case {
        UINT style;
        Rows want;
    } cases[] = {
        {ILD_NORMAL, {".rr.", "rbbr", ".rr."}},
        // The list's copy of the image is black where the mask colour was.
        {ILD_IMAGE, {"krrk", "rbbr", "krrk"}},
        {ILD_MASK, {"wkkw", "kkkk", "wkkw"}},
    };
    for (const Case& k : cases) {
        Canvas c(4, 3);
        ASSERT_TRUE(list.Draw(&c.dc, 0, POINT{0, 0}, k.style));
        EXPECT_EQ(c.Rows(), k.want) << k.style;
    }
}

TEST_F(ImageListTest, MaskBitmapXorsTheImageWhereTransparent) {
    CBitmap image, mask;
    Paint(image, {"rgbk"});
    Paint(mask, {"wwkk"});  // white: transparent
    CImageList masked;
    ASSERT_TRUE(masked.Create(4, 1, ILC_MASK, 1, 1));
    ASSERT_EQ(masked.Add(&image, &mask), 0);
    Canvas c(4, 1);
    c.dc.FillSolidRect(0, 0, 4, 1, RGB(255, 0, 0));
    ASSERT_TRUE(masked.Draw(&c.dc, 0, POINT{0, 0}, ILD_NORMAL));
    // red ^ red = black, red ^ green = yellow; then the opaque blue and black.
    EXPECT_EQ(c.dc.GetPixel(0, 0), RGB(0, 0, 0));
    EXPECT_EQ(c.dc.GetPixel(1, 0), RGB(255, 255, 0));
    EXPECT_EQ(c.dc.GetPixel(2, 0), RGB(0, 0, 255));
    EXPECT_EQ(c.dc.GetPixel(3, 0), RGB(0, 0, 0));
}

TEST_F(ImageListTest, ListWithoutMasksDrawsOpaque) {
    CImageList plain;
    ASSERT_TRUE(plain.Create(4, 3, ILC_COLOR32, 2, 2));
    ASSERT_EQ(plain.Add(&two, kMagenta), 0);
    IMAGEINFO info{};
    ASSERT_TRUE(plain.GetImageInfo(1, &info));
    EXPECT_EQ(info.hbmMask, nullptr);
    Canvas c(4, 3);
    ASSERT_TRUE(plain.Draw(&c.dc, 0, POINT{0, 0}, ILD_NORMAL));
    EXPECT_EQ(c.Rows(), (Rows{"MrrM", "rbbr", "MrrM"}));
}

TEST_F(ImageListTest, ClippedAtTheEdgesAndThroughTheOrigin) {
    ASSERT_EQ(list.Add(&two, kMagenta), 0);
    Canvas c(3, 2);
    ASSERT_TRUE(ImageList_Draw(list, 0, c.dc.m_hDC, -1, -1, ILD_NORMAL));
    EXPECT_EQ(c.Rows(), (Rows{"bbr", "rr."}));
    Canvas moved(4, 3);
    moved.dc.SetViewportOrg(2, 1);
    ASSERT_TRUE(ImageList_Draw(list, 1, moved.dc.m_hDC, -2, -1, ILD_NORMAL));
    moved.dc.SetViewportOrg(0, 0);  // read back in device pixels
    EXPECT_EQ(moved.Rows(), (Rows{"g...", ".g..", "..g."}));
}

TEST_F(ImageListTest, DrawsOnAWindow) {
    CWnd w;
    ASSERT_TRUE(w.CreateEx(0, nullptr, "images", WS_POPUP | WS_VISIBLE, CRect(10, 10, 50, 50), nullptr, 0));
    orlex::test::Pump();
    ASSERT_EQ(list.Add(&two, kMagenta), 0);
    CDC* dc = w.GetDC();
    dc->FillSolidRect(0, 0, 40, 40, kBack);
    ASSERT_TRUE(list.Draw(dc, 0, POINT{5, 6}, ILD_NORMAL));
    w.ReleaseDC(dc);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{5, 6}), kBack);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{6, 6}), RGB(255, 0, 0));
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{6, 7}), RGB(0, 0, 255));
}

TEST_F(ImageListTest, RemoveMovesLaterImagesDown) {
    ASSERT_EQ(list.Add(&two, kMagenta), 0);
    ASSERT_TRUE(list.Remove(0));
    EXPECT_EQ(list.GetImageCount(), 1);
    Canvas c(4, 3);
    ASSERT_TRUE(list.Draw(&c.dc, 0, POINT{0, 0}, ILD_NORMAL));
    EXPECT_EQ(c.Rows(), (Rows{"g...", ".g..", "..g."}));
    EXPECT_FALSE(list.Remove(1));
    EXPECT_TRUE(list.Remove(-1));
    EXPECT_EQ(list.GetImageCount(), 0);
}

TEST_F(ImageListTest, NarrowBitmapIsPaddedAndGrowsTheList) {
    CBitmap narrow;
    Paint(narrow, {"yy", "yy"});
    for (int k = 0; k < 5; ++k) EXPECT_EQ(list.Add(&narrow, kMagenta), k);
    EXPECT_EQ(list.GetImageCount(), 5);
    Canvas c(4, 3);
    ASSERT_TRUE(list.Draw(&c.dc, 4, POINT{0, 0}, ILD_IMAGE));
    EXPECT_EQ(c.Rows(), (Rows{"yykk", "yykk", "kkkk"}));
}

TEST_F(ImageListTest, BadHandlesAndArgumentsFailQuietly) {
    EXPECT_EQ(ImageList_Create(0, 3, ILC_MASK, 1, 1), nullptr);
    EXPECT_EQ(ImageList_Create(4, -1, ILC_MASK, 1, 1), nullptr);
    HIMAGELIST gone = ImageList_Create(4, 3, ILC_MASK, 1, 1);
    ASSERT_TRUE(ImageList_Destroy(gone));
    EXPECT_FALSE(ImageList_Destroy(gone));
    EXPECT_EQ(ImageList_AddMasked(gone, two, kMagenta), -1);
    EXPECT_EQ(ImageList_GetImageCount(gone), 0);
    Canvas c(4, 3);
    EXPECT_FALSE(ImageList_Draw(gone, 0, c.dc.m_hDC, 0, 0, ILD_NORMAL));
    EXPECT_FALSE(ImageList_Draw(list, 0, c.dc.m_hDC, 0, 0, ILD_NORMAL));  // empty list
    ASSERT_EQ(list.Add(&two, kMagenta), 0);
    EXPECT_FALSE(ImageList_Draw(list, 0, nullptr, 0, 0, ILD_NORMAL));
    EXPECT_EQ(ImageList_Add(list, nullptr, nullptr), -1);
    EXPECT_EQ(ImageList_Add(list, two, reinterpret_cast<HBITMAP>(&c)), -1);
    EXPECT_EQ(list.GetImageCount(), 2);
    EXPECT_FALSE(ImageList_GetImageInfo(list, 0, nullptr));
}

TEST_F(ImageListTest, HandleClassAttachDetach) {
    EXPECT_FALSE(list.Create(4, 3, ILC_MASK, 1, 1));  // holds one already
    HIMAGELIST h = list.Detach();
    EXPECT_EQ(list.GetSafeHandle(), nullptr);
    EXPECT_FALSE(list.DeleteImageList());
    {
        CImageList holder;
        EXPECT_TRUE(holder.Attach(h));
        EXPECT_FALSE(holder.Attach(h));
        EXPECT_EQ(holder.GetSafeHandle(), h);
    }
    // The holder destroyed the list when it went.
    EXPECT_EQ(ImageList_GetImageCount(h), 0);
    EXPECT_FALSE(ImageList_Destroy(h));
}

}  // namespace
