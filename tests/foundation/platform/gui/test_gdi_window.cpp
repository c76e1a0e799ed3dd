// Contexts of windows: drawing outside painting stays on the window's surface and reads
// back, inverting drawings undo themselves, a child's context is clipped to the child,
// painting is clipped to the update region, blits go both ways between memory and window.
#include <gtest/gtest.h>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "support/orlex_test.h"

namespace {

constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr COLORREF kRed = RGB(255, 0, 0);
constexpr COLORREF kBlue = RGB(0, 0, 255);

// A top-level window whose paint handler fills its client area red and notes what it got.
class PaintWnd : public CWnd {
public:
    int paints = 0;
    CRect lastPaint;
    BOOL lastErase = FALSE;
    void OnPaint() {
        CPaintDC dc(this);
        ++paints;
        lastPaint = dc.m_ps.rcPaint;
        lastErase = dc.m_ps.fErase;
        CRect c;
        GetClientRect(&c);
        dc.FillSolidRect(&c, kRed);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(PaintWnd, CWnd)
ON_WM_PAINT()
END_MESSAGE_MAP()

struct GdiWindow : ::testing::Test {
    CWnd top;
    void SetUp() override {
        orlex::test::Init();
        LPCSTR cls = AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW));
        ASSERT_TRUE(top.CreateEx(0, cls, "canvas", WS_POPUP | WS_VISIBLE, 0, 0, 120, 80, nullptr, nullptr));
        orlex::test::Pump();
    }
    void TearDown() override {
        if (top.m_hWnd) top.DestroyWindow();
    }
    COLORREF At(HWND h, int x, int y) { return orlex::test::Pixel(h, POINT{x, y}); }
};

TEST_F(GdiWindow, ClientDrawingStaysAndReadsBack) {
    ASSERT_EQ(At(top.m_hWnd, 5, 5), kWhite);
    {
        CClientDC dc(&top);
        dc.SetPixel(10, 10, kBlue);
        dc.FillSolidRect(20, 20, 5, 5, kRed);
        EXPECT_EQ(dc.GetPixel(10, 10), kBlue);
        EXPECT_EQ(dc.GetPixel(24, 24), kRed);
        EXPECT_EQ(dc.GetPixel(25, 25), kWhite);
        EXPECT_EQ(dc.GetPixel(500, 5), CLR_INVALID);  // outside the window
    }
    orlex::test::Pump();
    EXPECT_EQ(At(top.m_hWnd, 10, 10), kBlue);
    EXPECT_EQ(At(top.m_hWnd, 22, 22), kRed);
    // The raw calls reach the same pixels.
    HDC hdc = GetDC(top.m_hWnd);
    EXPECT_EQ(GetPixel(hdc, 10, 10), kBlue);
    EXPECT_EQ(ReleaseDC(top.m_hWnd, hdc), 1);
}

TEST_F(GdiWindow, RubberBandDrawnTwiceWithNotIsGone) {
    const auto before = orlex::test::Pixels(top.m_hWnd, RECT{0, 0, 120, 80});
    auto band = [&] {
        CDC* dc = top.GetDC();
        ASSERT_NE(dc, nullptr);
        dc->SetROP2(R2_NOT);
        dc->SelectStockObject(HOLLOW_BRUSH);
        dc->MoveTo(10, 10);
        dc->LineTo(60, 10);
        dc->LineTo(60, 40);
        dc->LineTo(10, 40);
        dc->LineTo(10, 10);
        top.ReleaseDC(dc);
    };
    band();
    EXPECT_EQ(At(top.m_hWnd, 10, 10), RGB(0, 0, 0));
    EXPECT_EQ(At(top.m_hWnd, 60, 40), RGB(0, 0, 0));
    EXPECT_EQ(At(top.m_hWnd, 35, 25), kWhite);
    band();
    EXPECT_EQ(orlex::test::Pixels(top.m_hWnd, RECT{0, 0, 120, 80}), before);
    // A divider tracker by InvertRect, twice.
    CClientDC dc(&top);
    RECT bar{30, 0, 32, 80};
    dc.InvertRect(&bar);
    EXPECT_EQ(At(top.m_hWnd, 31, 50), RGB(0, 0, 0));
    dc.InvertRect(&bar);
    EXPECT_EQ(orlex::test::Pixels(top.m_hWnd, RECT{0, 0, 120, 80}), before);
}

TEST_F(GdiWindow, ChildContextIsClippedToTheChild) {
    CWnd child;
    ASSERT_TRUE(child.Create(nullptr, "child", WS_CHILD | WS_VISIBLE, CRect(10, 20, 50, 40), &top, 7));
    orlex::test::Pump();
    {
        CClientDC dc(&child);
        RECT box;
        EXPECT_NE(dc.GetClipBox(&box), NULLREGION);
        EXPECT_EQ(CRect(box), CRect(0, 0, 40, 20));
        dc.FillSolidRect(-100, -100, 400, 400, kBlue);
    }
    EXPECT_EQ(At(top.m_hWnd, 10, 20), kBlue);
    EXPECT_EQ(At(top.m_hWnd, 49, 39), kBlue);
    EXPECT_EQ(At(top.m_hWnd, 9, 20), kWhite);
    EXPECT_EQ(At(top.m_hWnd, 50, 39), kWhite);
    EXPECT_EQ(At(top.m_hWnd, 49, 40), kWhite);
    child.DestroyWindow();
}

TEST(GdiPaint, PaintingIsClippedToTheUpdateRegion) {
    orlex::test::Init();
    PaintWnd w;
    LPCSTR cls = AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW));
    ASSERT_TRUE(w.CreateEx(0, cls, "paint", WS_POPUP | WS_VISIBLE, 0, 0, 100, 60, nullptr, nullptr));
    orlex::test::Pump();
    EXPECT_GE(w.paints, 1);
    {
        // Back to white outside painting, then a partial invalidation repaints only its part.
        CClientDC dc(&w);
        dc.FillSolidRect(0, 0, 100, 60, kWhite);
    }
    const int before = w.paints;
    CRect part(10, 10, 30, 20);
    w.InvalidateRect(&part, FALSE);
    w.UpdateWindow();
    EXPECT_EQ(w.paints, before + 1);
    EXPECT_EQ(w.lastPaint, part);
    EXPECT_FALSE(w.lastErase);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{10, 10}), kRed);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{29, 19}), kRed);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{30, 19}), kWhite);
    EXPECT_EQ(orlex::test::Pixel(w.m_hWnd, POINT{9, 10}), kWhite);
    // With erasing asked for, the class brush paints the background first.
    w.InvalidateRect(&part, TRUE);
    w.UpdateWindow();
    EXPECT_FALSE(w.lastErase);  // the default handler erased
    w.DestroyWindow();
}

TEST_F(GdiWindow, BlitsBetweenMemoryAndWindow) {
    CClientDC wdc(&top);
    CDC mem;
    mem.CreateCompatibleDC(&wdc);
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(&wdc, 30, 20);
    CBitmap* old = mem.SelectObject(&bmp);
    mem.FillSolidRect(0, 0, 30, 20, kBlue);
    mem.SetPixel(0, 0, kRed);
    wdc.BitBlt(40, 30, 30, 20, &mem, 0, 0, SRCCOPY);
    EXPECT_EQ(At(top.m_hWnd, 40, 30), kRed);
    EXPECT_EQ(At(top.m_hWnd, 69, 49), kBlue);
    EXPECT_EQ(At(top.m_hWnd, 70, 49), kWhite);
    // And back: the window's pixels into the bitmap.
    mem.FillSolidRect(0, 0, 30, 20, kWhite);
    mem.BitBlt(0, 0, 30, 20, &wdc, 39, 29, SRCCOPY);
    EXPECT_EQ(mem.GetPixel(0, 0), kWhite);
    EXPECT_EQ(mem.GetPixel(1, 1), kRed);
    EXPECT_EQ(mem.GetPixel(29, 19), kBlue);
    mem.SelectObject(old);
}

TEST_F(GdiWindow, ScreenContextCapturesWhatTheWindowsShow) {
    {
        CClientDC dc(&top);
        dc.FillSolidRect(5, 6, 3, 2, kRed);
    }
    CRect wr;
    top.GetWindowRect(&wr);
    CPoint origin(0, 0);
    top.ClientToScreen(&origin);
    HDC screen = CreateDCA("DISPLAY", nullptr, nullptr, nullptr);
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(&mem, 10, 10);
    CBitmap* old = mem.SelectObject(&bmp);
    BitBlt(mem.m_hDC, 0, 0, 10, 10, screen, origin.x, origin.y, SRCCOPY);
    EXPECT_EQ(mem.GetPixel(5, 6), kRed);
    EXPECT_EQ(mem.GetPixel(7, 7), kRed);
    EXPECT_EQ(mem.GetPixel(8, 7), kWhite);
    mem.SelectObject(old);
    DeleteDC(screen);
}

}  // namespace
