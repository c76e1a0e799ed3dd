// The library's own mouse pointers: each is a CURSOR resource of the library's module that
// loads with its hot spot, and a 32 by 32 picture in black, white and transparent.
#include <gtest/gtest.h>

#include <QImage>
#include <QPoint>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/wnd_p.h"
#include "foundation/platform/resources.h"
#include "support/orlex_test.h"

namespace {

struct OwnPointer {
    WORD id;
    QPoint hot;
    const char* what;
};

const OwnPointer kPointers[] = {
    {10004, {1, 1}, "polyline end: a press adds a point"},
    {10008, {1, 1}, "polyline end: a release takes it away"},
    {10032, {16, 16}, "open hand"},
    {10033, {16, 16}, "closed hand"},
    {10050, {9, 1}, "pointing hand"},
};

TEST(OwnPointers, LoadFromTheLibraryModuleWithTheirHotSpots) {
    orlex::test::Init();
    for (const auto& p : kPointers) {
        SCOPED_TRACE(p.what);
        HCURSOR h = ::LoadCursorA(orlex::LibraryModule(), MAKEINTRESOURCEA(p.id));
        ASSERT_NE(h, nullptr) << p.id;
        QImage img;
        QPoint hot;
        ASSERT_TRUE(orlex::detail::CursorImageOf(h, &img, &hot)) << p.id;
        EXPECT_EQ(hot, p.hot) << p.id;
        EXPECT_EQ(img.size(), QSize(32, 32)) << p.id;

        // Only opaque black, opaque white and clear pixels; all three are there, and the
        // hot spot lies on the drawing (the tip the user aims with).
        int black = 0, white = 0, clear = 0, other = 0;
        QImage argb = img.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < 32; ++y)
            for (int x = 0; x < 32; ++x) {
                QRgb c = argb.pixel(x, y);
                if (qAlpha(c) == 0) ++clear;
                else if (qAlpha(c) == 255 && (c & 0xFFFFFF) == 0) ++black;
                else if (qAlpha(c) == 255 && (c & 0xFFFFFF) == 0xFFFFFF) ++white;
                else ++other;
            }
        EXPECT_EQ(other, 0) << p.id;
        EXPECT_GT(black, 0) << p.id;
        EXPECT_GT(white, 0) << p.id;
        EXPECT_GT(clear, 32 * 32 / 3) << p.id;
        EXPECT_EQ(qAlpha(argb.pixel(p.hot)), 255) << p.id;
    }
}

TEST(OwnPointers, FoundThroughTheResourceChainNotThroughStandardShapes) {
    orlex::test::Init();
    for (const auto& p : kPointers) {
        // No standard shape has these numbers: without a module there is no pointer.
        EXPECT_EQ(::LoadCursorA(nullptr, MAKEINTRESOURCEA(p.id)), nullptr) << p.id;
        // The module that holds the pointer is the one that the chain finds.
        HINSTANCE mod = ::AfxFindResourceHandle(MAKEINTRESOURCEA(p.id), RT_CURSOR);
        HCURSOR h = ::LoadCursorA(mod, MAKEINTRESOURCEA(p.id));
        EXPECT_NE(h, nullptr) << p.id;
        EXPECT_EQ(::LoadCursorA(orlex::LibraryModule(), MAKEINTRESOURCEA(p.id)), h) << p.id;
    }
}

}  // namespace
