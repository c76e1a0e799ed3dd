// Buttons that show a picture instead of their text: where it stands on the face, pressed
// or not, and which handle the button gives back.
#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"
#include "support/orlex_test.h"

namespace {

using namespace orlex::test;

constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// A bitmap of one colour, w x h, 32 bits a pixel.
HBITMAP SolidBitmap(int w, int h, COLORREF c) {
    std::vector<DWORD> px(static_cast<size_t>(w) * h, (GetRValue(c) << 16) | (GetGValue(c) << 8) | GetBValue(c));
    return CreateBitmap(w, h, 1, 32, px.data());
}

// An opaque icon of one colour, w x h, registered as a resource of this module and loaded.
HICON SolidIcon(int w, int h, COLORREF c, int id) {
    std::vector<unsigned char> f;
    auto u16 = [&](unsigned v) { f.push_back(v & 0xFF); f.push_back((v >> 8) & 0xFF); };
    auto u32 = [&](unsigned v) { u16(v & 0xFFFF); u16(v >> 16); };
    const unsigned pixels = static_cast<unsigned>(w * h * 4);
    const unsigned maskRow = static_cast<unsigned>(((w + 31) / 32) * 4);
    u16(0); u16(1); u16(1);
    f.push_back(static_cast<unsigned char>(w)); f.push_back(static_cast<unsigned char>(h)); f.push_back(0); f.push_back(0);
    u16(1); u16(32); u32(40 + pixels + maskRow * h); u32(22);
    u32(40); u32(w); u32(2 * h); u16(1); u16(32); u32(0); u32(0); u32(0); u32(0); u32(0); u32(0);
    for (int i = 0; i < w * h; ++i) {
        f.push_back(GetBValue(c)); f.push_back(GetGValue(c)); f.push_back(GetRValue(c)); f.push_back(255);
    }
    f.insert(f.end(), maskRow * h, 0);
    HMODULE self = GetModuleHandleA(nullptr);
    if (!orlex::RegisterResource(self, RT_GROUP_ICON, MAKEINTRESOURCE(id), f.data(), static_cast<DWORD>(f.size())))
        return nullptr;
    return static_cast<HICON>(LoadImageA(self, MAKEINTRESOURCE(id), IMAGE_ICON, 0, 0, 0));
}

class ButtonImages : public ::testing::Test {
protected:
    void SetUp() override {
        Init();
        ASSERT_TRUE(host.CreateEx(0, nullptr, "images", WS_OVERLAPPED | WS_VISIBLE, CRect(100, 100, 400, 300), nullptr, 0));
        Pump();
        red = SolidBitmap(8, 6, kRed);
        ASSERT_NE(red, nullptr);
    }
    void TearDown() override { DeleteObject(red); }
    // The bounding box of the pixels of colour c in the button's client area.
    static RECT Extent(HWND h, COLORREF c) {
        RECT cr;
        GetClientRect(h, &cr);
        const std::vector<COLORREF> px = Pixels(h, cr);
        RECT out{cr.right, cr.bottom, -1, -1};
        for (int y = 0; y < cr.bottom; ++y)
            for (int x = 0; x < cr.right; ++x)
                if (px[static_cast<size_t>(y) * cr.right + x] == c) {
                    out.left = std::min<LONG>(out.left, x);
                    out.top = std::min<LONG>(out.top, y);
                    out.right = std::max<LONG>(out.right, x + 1);
                    out.bottom = std::max<LONG>(out.bottom, y + 1);
                }
        return out;
    }
    CWnd host;
    HBITMAP red = nullptr;
};

TEST_F(ButtonImages, PictureIsCentredAndMovesWhenPressed) {
    struct Case { DWORD style; bool check; RECT idle, pressed; };
    // A 60 x 30 face: the 8 x 6 picture at (26, 12), one pixel down and right when pressed.
    const Case cases[] = {
        {BS_PUSHBUTTON | BS_BITMAP, false, {26, 12, 34, 18}, {27, 13, 35, 19}},
        {BS_DEFPUSHBUTTON | BS_BITMAP, false, {26, 12, 34, 18}, {27, 13, 35, 19}},
        {BS_AUTOCHECKBOX | BS_PUSHLIKE | BS_BITMAP, true, {26, 12, 34, 18}, {27, 13, 35, 19}},
    };
    for (const Case& c : cases) {
        CButton b;
        ASSERT_TRUE(b.Create("Text", WS_VISIBLE | c.style, CRect(10, 10, 70, 40), &host, 20));
        EXPECT_EQ(b.SetBitmap(red), nullptr);
        Pump();
        RECT e = Extent(b.m_hWnd, kRed);
        EXPECT_EQ(CRect(e), CRect(c.idle)) << std::hex << c.style;
        if (c.check) b.SetCheck(BST_CHECKED);
        else b.SetState(TRUE);
        Pump();
        e = Extent(b.m_hWnd, kRed);
        EXPECT_EQ(CRect(e), CRect(c.pressed)) << std::hex << c.style;
        b.DestroyWindow();
    }
}

TEST_F(ButtonImages, PushLikeCheckBoxShowsItsStateAsAPressedFace) {
    CButton b;
    ASSERT_TRUE(b.Create("On", WS_VISIBLE | BS_AUTOCHECKBOX | BS_PUSHLIKE, CRect(10, 10, 70, 40), &host, 21));
    Pump();
    // Raised: light top-left edge; sunken: the shadow all round.
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{0, 0}), GetSysColor(COLOR_BTNHIGHLIGHT));
    Click(b.m_hWnd, POINT{30, 15});
    EXPECT_EQ(b.GetCheck(), BST_CHECKED);
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{0, 0}), GetSysColor(COLOR_BTNSHADOW));
    Click(b.m_hWnd, POINT{30, 15});
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{0, 0}), GetSysColor(COLOR_BTNHIGHLIGHT));
}

TEST_F(ButtonImages, IconIsDrawnOnlyWithTheIconStyle) {
    HICON icon = SolidIcon(4, 4, kBlue, 5301);
    ASSERT_NE(icon, nullptr);
    CButton withStyle, without;
    ASSERT_TRUE(withStyle.Create("", WS_VISIBLE | BS_PUSHBUTTON | BS_ICON, CRect(10, 10, 50, 30), &host, 22));
    ASSERT_TRUE(without.Create("", WS_VISIBLE | BS_PUSHBUTTON, CRect(10, 40, 50, 60), &host, 23));
    withStyle.SetIcon(icon);
    without.SetIcon(icon);
    Pump();
    // 40 x 20: the 4 x 4 icon at (18, 8).
    EXPECT_EQ(CRect(Extent(withStyle.m_hWnd, kBlue)), CRect(18, 8, 22, 12));
    EXPECT_EQ(Extent(without.m_hWnd, kBlue).right, -1);  // kept, not shown
    EXPECT_EQ(without.GetIcon(), icon);
    DestroyIcon(icon);
}

TEST_F(ButtonImages, CheckBoxPictureStandsWhereTheTextWould) {
    CButton right, left;
    ASSERT_TRUE(right.Create("", WS_VISIBLE | BS_AUTOCHECKBOX | BS_BITMAP, CRect(10, 10, 80, 30), &host, 24));
    ASSERT_TRUE(left.Create("", WS_VISIBLE | BS_AUTOCHECKBOX | BS_BITMAP | BS_LEFTTEXT, CRect(10, 40, 80, 60), &host, 25));
    right.SetBitmap(red);
    left.SetBitmap(red);
    Pump();
    // The 13-pixel box, a gap of 4, then the picture; with the text on the left it ends
    // 4 pixels before the box at the right edge.
    EXPECT_EQ(CRect(Extent(right.m_hWnd, kRed)), CRect(17, 7, 25, 13));
    EXPECT_EQ(CRect(Extent(left.m_hWnd, kRed)), CRect(70 - 13 - 4 - 8, 7, 70 - 13 - 4, 13));
}

TEST_F(ButtonImages, DisabledPictureIsEmbossed) {
    CButton b;
    ASSERT_TRUE(b.Create("", WS_VISIBLE | WS_DISABLED | BS_PUSHBUTTON | BS_BITMAP, CRect(10, 10, 70, 40), &host, 27));
    b.SetBitmap(red);
    Pump();
    // No colour of its own: its shape in the shadow colour where it stands, and the
    // highlight showing one pixel further down and right.
    EXPECT_EQ(Extent(b.m_hWnd, kRed).right, -1);
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{26, 12}), GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{33, 17}), GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{34, 18}), GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{27, 18}), GetSysColor(COLOR_BTNHIGHLIGHT));
    EXPECT_EQ(Pixel(b.m_hWnd, POINT{25, 12}), GetSysColor(COLOR_BTNFACE));
    b.EnableWindow(TRUE);
    Pump();
    EXPECT_EQ(CRect(Extent(b.m_hWnd, kRed)), CRect(26, 12, 34, 18));
}

TEST_F(ButtonImages, SetImageAnswersTheOldHandle) {
    CButton b;
    ASSERT_TRUE(b.Create("", WS_VISIBLE | BS_PUSHBUTTON | BS_BITMAP, CRect(10, 10, 50, 30), &host, 26));
    HBITMAP blue = SolidBitmap(2, 2, kBlue);
    struct Step { UINT msg; WPARAM type; HANDLE arg; HANDLE answer; };
    const Step steps[] = {
        {BM_SETIMAGE, IMAGE_BITMAP, red, nullptr},
        {BM_GETIMAGE, IMAGE_BITMAP, nullptr, red},
        {BM_SETIMAGE, IMAGE_BITMAP, blue, red},
        {BM_SETIMAGE, IMAGE_CURSOR, red, nullptr},  // no such kind for a button: nothing changes
        {BM_GETIMAGE, IMAGE_BITMAP, nullptr, blue},
        {BM_GETIMAGE, IMAGE_CURSOR, nullptr, nullptr},
        {BM_SETIMAGE, IMAGE_BITMAP, nullptr, blue},
        {BM_GETIMAGE, IMAGE_BITMAP, nullptr, nullptr},
    };
    for (const Step& s : steps)
        EXPECT_EQ(reinterpret_cast<HANDLE>(b.SendMessage(s.msg, s.type, reinterpret_cast<LPARAM>(s.arg))), s.answer)
            << s.msg << " " << s.type;
    // The picture is gone again: the face is plain.
    Pump();
    EXPECT_EQ(Extent(b.m_hWnd, kBlue).right, -1);
    DeleteObject(blue);
}

}  // namespace
