// DIB sections: what a memory context draws shows in the caller's block, and what the caller
// writes into the block shows in reads and blits, for 8, 24 and 32 bits in both row orders.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

namespace {

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kBlack = RGB(0, 0, 0);

// A header with room for a full colour table.
struct Info {
    BITMAPINFOHEADER header{};
    RGBQUAD colours[256]{};
    const BITMAPINFO* get() const { return reinterpret_cast<const BITMAPINFO*>(this); }
};

// Black, white, red, green, blue, then greys.
Info MakeInfo(int w, int h, int bpp) {
    Info i;
    i.header.biSize = sizeof(BITMAPINFOHEADER);
    i.header.biWidth = w;
    i.header.biHeight = h;
    i.header.biPlanes = 1;
    i.header.biBitCount = static_cast<WORD>(bpp);
    i.header.biCompression = BI_RGB;
    const RGBQUAD first[5] = {{0, 0, 0, 0}, {255, 255, 255, 0}, {0, 0, 255, 0}, {0, 255, 0, 0}, {255, 0, 0, 0}};
    for (int k = 0; k < 256; ++k) {
        const BYTE g = static_cast<BYTE>(k);
        i.colours[k] = k < 5 ? first[k] : RGBQUAD{g, g, g, 0};
    }
    return i;
}

// The caller's view of a section: pixel addresses by the platform's layout.
struct Block {
    unsigned char* bits;
    int w, h, bpp;
    bool topDown;
    int Stride() const { return ((w * bpp + 31) / 32) * 4; }
    unsigned char* At(int x, int y) const {
        const int row = topDown ? y : h - 1 - y;
        return bits + row * Stride() + x * bpp / 8;
    }
    COLORREF Get(int x, int y, const Info& info) const {
        const unsigned char* p = At(x, y);
        if (bpp == 8) return RGB(info.colours[*p].rgbRed, info.colours[*p].rgbGreen, info.colours[*p].rgbBlue);
        return RGB(p[2], p[1], p[0]);
    }
    void Set(int x, int y, COLORREF c) const {
        unsigned char* p = At(x, y);
        if (bpp == 8) {
            *p = c == kBlue ? 4 : c == kRed ? 2 : c == kWhite ? 1 : 0;  // table indexes
            return;
        }
        p[0] = GetBValue(c);
        p[1] = GetGValue(c);
        p[2] = GetRValue(c);
    }
};

struct Case {
    int bpp;
    bool topDown;
};

std::string Name(const Case& c) { return std::to_string(c.bpp) + (c.topDown ? " top-down" : " bottom-up"); }

const Case kCases[] = {{8, false}, {8, true}, {24, false}, {24, true}, {32, false}, {32, true}};

TEST(GdiDibSection, DrawingShowsInTheBlock) {
    orlex::EnsureApplication();
    for (const Case& c : kCases) {
        SCOPED_TRACE(Name(c));
        const int w = 9, h = 5;  // a width whose rows need padding at 8 and 24 bits
        Info info = MakeInfo(w, c.topDown ? -h : h, c.bpp);
        void* bits = nullptr;
        HBITMAP bmp = CreateDIBSection(nullptr, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(bmp, nullptr);
        ASSERT_NE(bits, nullptr);
        const Block block{static_cast<unsigned char*>(bits), w, h, c.bpp, c.topDown};
        BITMAP bm{};
        ASSERT_EQ(GetObject(bmp, sizeof bm, &bm), static_cast<int>(sizeof bm));
        EXPECT_EQ(bm.bmBits, bits);
        EXPECT_EQ(bm.bmWidthBytes, block.Stride());
        EXPECT_EQ(bm.bmBitsPixel, c.bpp);

        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(dc.m_hDC, bmp);
        dc.FillSolidRect(2, 1, 3, 2, kRed);  // x 2..4, y 1..2
        // Only the rectangle changed; row 0 is the image's top whatever the order.
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const bool in = x >= 2 && x <= 4 && y >= 1 && y <= 2;
                EXPECT_EQ(block.Get(x, y, info), in ? kRed : kBlack) << x << "," << y;
            }
        // A near colour in 8 bits lands on the table's nearest entry, in both views.
        dc.SetPixel(8, 4, RGB(250, 8, 8));
        EXPECT_EQ(block.Get(8, 4, info), c.bpp == 8 ? kRed : RGB(250, 8, 8));
        EXPECT_EQ(dc.GetPixel(8, 4), c.bpp == 8 ? kRed : RGB(250, 8, 8));
        SelectObject(dc.m_hDC, old);
        EXPECT_TRUE(DeleteObject(bmp));
    }
}

TEST(GdiDibSection, WritesToTheBlockShowInReadsAndBlits) {
    orlex::EnsureApplication();
    for (const Case& c : kCases) {
        SCOPED_TRACE(Name(c));
        const int w = 7, h = 4;
        Info info = MakeInfo(w, c.topDown ? -h : h, c.bpp);
        void* bits = nullptr;
        HBITMAP bmp = CreateDIBSection(nullptr, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(bmp, nullptr);
        const Block block{static_cast<unsigned char*>(bits), w, h, c.bpp, c.topDown};
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        HGDIOBJ old = SelectObject(dc.m_hDC, bmp);
        dc.FillSolidRect(0, 0, w, h, kWhite);
        // Written behind the context's back, after it drew.
        block.Set(6, 3, kBlue);
        block.Set(0, 0, kRed);
        EXPECT_EQ(dc.GetPixel(6, 3), kBlue);
        EXPECT_EQ(dc.GetPixel(0, 0), kRed);
        EXPECT_EQ(dc.GetPixel(1, 0), kWhite);
        // Blitted into an ordinary bitmap.
        CDC plain;
        plain.CreateCompatibleDC(nullptr);
        CBitmap target;
        target.CreateCompatibleBitmap(&plain, w, h);
        CBitmap* oldTarget = plain.SelectObject(&target);
        plain.BitBlt(0, 0, w, h, &dc, 0, 0, SRCCOPY);
        EXPECT_EQ(plain.GetPixel(6, 3), kBlue);
        EXPECT_EQ(plain.GetPixel(0, 0), kRed);
        // And back: an ordinary bitmap blitted into the section reaches the block.
        plain.FillSolidRect(0, 0, w, h, kBlue);
        dc.BitBlt(1, 1, 2, 2, &plain, 0, 0, SRCCOPY);
        EXPECT_EQ(block.Get(1, 1, info), kBlue);
        EXPECT_EQ(block.Get(2, 2, info), kBlue);
        EXPECT_EQ(block.Get(3, 2, info), kWhite);
        plain.SelectObject(oldTarget);
        SelectObject(dc.m_hDC, old);
        DeleteObject(bmp);
    }
}

TEST(GdiDibSection, GetAndSetDIBitsSeeTheBlock) {
    orlex::EnsureApplication();
    for (const Case& c : {Case{24, false}, Case{32, true}}) {
        SCOPED_TRACE(Name(c));
        const int w = 4, h = 2;
        Info info = MakeInfo(w, c.topDown ? -h : h, c.bpp);
        void* bits = nullptr;
        HBITMAP bmp = CreateDIBSection(nullptr, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(bmp, nullptr);
        const Block block{static_cast<unsigned char*>(bits), w, h, c.bpp, c.topDown};
        CDC dc;
        dc.CreateCompatibleDC(nullptr);
        // Written into the block, read back through GetDIBits (32 bits, bottom-up rows).
        block.Set(3, 0, kBlue);
        BITMAPINFO read{};
        read.bmiHeader = BITMAPINFOHEADER{40, w, h, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
        std::vector<unsigned char> got(static_cast<std::size_t>(w) * h * 4);
        ASSERT_EQ(GetDIBits(dc.m_hDC, bmp, 0, h, got.data(), &read, DIB_RGB_COLORS), h);
        const unsigned char* topRight = got.data() + (static_cast<std::size_t>(h - 1) * w + 3) * 4;
        EXPECT_EQ(RGB(topRight[2], topRight[1], topRight[0]), kBlue);
        // Set through SetDIBits (24 bits, bottom-up: the first row given is the bottom),
        // seen in the block.
        BITMAPINFO put{};
        put.bmiHeader = BITMAPINFOHEADER{40, w, h, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
        std::vector<unsigned char> row(12, 0);
        row[2] = 255;  // red at x 0
        ASSERT_EQ(SetDIBits(dc.m_hDC, bmp, 0, 1, row.data(), &put, DIB_RGB_COLORS), 1);
        EXPECT_EQ(block.Get(0, h - 1, info), kRed);
        EXPECT_EQ(block.Get(3, 0, info), kBlue);  // the block's own write survived
        DeleteObject(bmp);
    }
}

TEST(GdiDibSection, TextAndLinesInTheBlockMatchAnOrdinaryBitmap) {
    orlex::EnsureApplication();
    const int w = 60, h = 24;
    for (const Case& c : {Case{24, false}, Case{32, false}, Case{32, true}}) {
        SCOPED_TRACE(Name(c));
        Info info = MakeInfo(w, c.topDown ? -h : h, c.bpp);
        void* bits = nullptr;
        HBITMAP bmp = CreateDIBSection(nullptr, info.get(), DIB_RGB_COLORS, &bits, nullptr, 0);
        ASSERT_NE(bmp, nullptr);
        const Block block{static_cast<unsigned char*>(bits), w, h, c.bpp, c.topDown};
        CDC dc, plain;
        dc.CreateCompatibleDC(nullptr);
        plain.CreateCompatibleDC(nullptr);
        CBitmap ordinary;
        ordinary.CreateCompatibleBitmap(&plain, w, h);
        HGDIOBJ old = SelectObject(dc.m_hDC, bmp);
        CBitmap* oldOrdinary = plain.SelectObject(&ordinary);
        for (CDC* d : {&dc, &plain}) {
            d->FillSolidRect(0, 0, w, h, kWhite);
            d->SetBkMode(TRANSPARENT);
            d->TextOut(2, 2, "Ag", 2);
            d->MoveTo(0, h - 1);
            d->LineTo(w, 0);
        }
        int differ = 0, ink = 0;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const COLORREF want = plain.GetPixel(x, y);
                ink += want != kWhite;
                differ += block.Get(x, y, info) != want;
            }
        EXPECT_GT(ink, 20);
        EXPECT_EQ(differ, 0);
        plain.SelectObject(oldOrdinary);
        SelectObject(dc.m_hDC, old);
        DeleteObject(bmp);
    }
}

TEST(GdiDibSection, BadRequestsAreRefused) {
    orlex::EnsureApplication();
    struct Bad {
        const char* what;
        void (*spoil)(Info&);
        UINT usage;
        bool section;
    };
    const Bad cases[] = {
        {"16 bits", [](Info& i) { i.header.biBitCount = 16; }, DIB_RGB_COLORS, false},
        {"compressed", [](Info& i) { i.header.biCompression = 3; }, DIB_RGB_COLORS, false},
        {"no width", [](Info& i) { i.header.biWidth = 0; }, DIB_RGB_COLORS, false},
        {"no height", [](Info& i) { i.header.biHeight = 0; }, DIB_RGB_COLORS, false},
        {"huge", [](Info& i) { i.header.biWidth = 1 << 20; i.header.biHeight = 1 << 20; }, DIB_RGB_COLORS, false},
        {"short header", [](Info& i) { i.header.biSize = 12; }, DIB_RGB_COLORS, false},
        {"too many colours", [](Info& i) { i.header.biClrUsed = 300; }, DIB_RGB_COLORS, false},
        {"palette indexes", [](Info&) {}, 1, false},
        {"file section", [](Info&) {}, DIB_RGB_COLORS, true},
    };
    for (const Bad& b : cases) {
        Info info = MakeInfo(4, 4, 8);
        b.spoil(info);
        void* bits = reinterpret_cast<void*>(1);
        HANDLE section = b.section ? reinterpret_cast<HANDLE>(0x10) : nullptr;
        EXPECT_EQ(CreateDIBSection(nullptr, info.get(), b.usage, &bits, section, 0), nullptr) << b.what;
        EXPECT_EQ(bits, nullptr) << b.what;
    }
    EXPECT_EQ(CreateDIBSection(nullptr, nullptr, DIB_RGB_COLORS, nullptr, nullptr, 0), nullptr);
}

}  // namespace
