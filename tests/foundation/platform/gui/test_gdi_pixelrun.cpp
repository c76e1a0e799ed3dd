// Pixel runs: a row or column read and written in one step gives what GetPixel and
// SetPixel give pixel by pixel, through the mapping and the clip, on windows and bitmaps.
#include <gtest/gtest.h>

#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/pixelrun.h"
#include "support/orlex_test.h"

namespace {

TEST(GdiPixelRun, RunsAgreeWithSinglePixelsThroughMappingAndClip)
{
    orlex::test::Init();
    CWnd wnd;
    ASSERT_TRUE(wnd.CreateEx(0, nullptr, "run", WS_POPUP | WS_VISIBLE, CRect(30, 30, 130, 110), nullptr, 0));
    orlex::test::Pump();
    HDC screen = GetDC(nullptr);
    HDC mem = CreateCompatibleDC(screen);
    HBITMAP bmp = CreateCompatibleBitmap(screen, 100, 80);
    ReleaseDC(nullptr, screen);
    HGDIOBJ old = SelectObject(mem, bmp);
    HDC win = GetDC(wnd.m_hWnd);
    for (HDC dc : {mem, win}) {
        for (bool vertical : {true, false}) {
            SetViewportOrgEx(dc, 3, 2, nullptr); // logical (0, 0) at device (3, 2)
            HRGN clip = CreateRectRgn(0, 0, 60, 50);
            SelectClipRgn(dc, clip);
            DeleteObject(clip);
            std::vector<COLORREF> in(70);
            for (size_t i = 0; i < in.size(); ++i)
                in[i] = i == 5 ? CLR_INVALID : RGB(BYTE(i * 3), BYTE(200 - i), 40);
            const COLORREF under = GetPixel(dc, vertical ? 10 : 15, vertical ? 15 : 10);
            const int written = orlex::WritePixelRun(dc, 10, 10, vertical, 70, in.data());
            // Inside the clip (device 0..59 x 0..49): x from 13, y from 12.
            EXPECT_EQ(written, (vertical ? 50 - 12 : 60 - 13) - 1) << vertical;
            std::vector<COLORREF> out(70);
            EXPECT_EQ(orlex::ReadPixelRun(dc, 10, 10, vertical, 70, out.data()), vertical ? 38 : 47);
            for (int i = 0; i < 70; ++i) {
                const int x = vertical ? 10 : 10 + i, y = vertical ? 10 + i : 10;
                ASSERT_EQ(out[size_t(i)], GetPixel(dc, x, y)) << i;
                if (out[size_t(i)] != CLR_INVALID && i != 5)
                    ASSERT_EQ(out[size_t(i)], in[size_t(i)]) << i;
            }
            EXPECT_EQ(GetPixel(dc, vertical ? 10 : 15, vertical ? 15 : 10), under); // entry 5 left alone
            SelectClipRgn(dc, nullptr);
            SetViewportOrgEx(dc, 0, 0, nullptr);
        }
    }
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(wnd.m_hWnd, POINT{13, 12}), RGB(0, 200, 40));
    EXPECT_EQ(orlex::ReadPixelRun(nullptr, 0, 0, true, 4, std::vector<COLORREF>(4).data()), 0);
    ReleaseDC(wnd.m_hWnd, win);
    SelectObject(mem, old);
    DeleteObject(bmp);
    DeleteDC(mem);
    wnd.DestroyWindow();
}

}  // namespace
