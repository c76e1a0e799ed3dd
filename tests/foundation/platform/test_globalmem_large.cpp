// Global memory blocks large enough to be mapped from the system on their own (whole
// 24-bit images): zeroed, resized with their contents, and given back when freed.
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <vector>

#include "foundation/platform/globalmem.h"

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace {

constexpr SIZE_T kLarge = SIZE_T(48) << 20;  // a 4096 x 4096 bitmap of 24 bits

// Every 4093rd byte and the last one: a sparse look that still sees every page.
bool LooksZero(const unsigned char* p, SIZE_T n) {
    for (SIZE_T i = 0; i < n; i += 4093)
        if (p[i]) return false;
    return n == 0 || p[n - 1] == 0;
}

#if defined(__linux__)
// Whether any page of [p, p + n) is still mapped into the process.
bool AnyPageMapped(const void* p, SIZE_T n) {
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(p) & ~(page - 1);
    const std::uintptr_t end = reinterpret_cast<std::uintptr_t>(p) + n;
    unsigned char resident = 0;
    for (std::uintptr_t a = first; a < end; a += page)
        if (mincore(reinterpret_cast<void*>(a), page, &resident) == 0 || errno != ENOMEM) return true;
    return false;
}
#endif

}  // namespace

TEST(GlobalAllocLarge, ZeroedWithOrWithoutTheFlagAndFreedWhole) {
    const std::size_t live = orlex::LiveGlobalBlocks();
    for (UINT flags : {GMEM_ZEROINIT, GMEM_FIXED, GHND}) {
        SCOPED_TRACE(flags);
        HGLOBAL h = GlobalAlloc(flags, kLarge);
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(GlobalSize(h), kLarge);
        auto* p = static_cast<unsigned char*>(GlobalLock(h));
        ASSERT_NE(p, nullptr);
        EXPECT_TRUE(LooksZero(p, kLarge));
        EXPECT_EQ(GlobalHandle(p), h);
        p[0] = 1;
        p[kLarge - 1] = 2;  // the whole size is writable
        GlobalUnlock(h);
        EXPECT_EQ(GlobalFree(h), nullptr);
#if defined(__linux__)
        EXPECT_FALSE(AnyPageMapped(p, kLarge)) << "the block's memory went back to the system";
#endif
        EXPECT_EQ(GlobalHandle(p), nullptr);
    }
    EXPECT_EQ(orlex::LiveGlobalBlocks(), live);
}

TEST(GlobalAllocLarge, ResizeKeepsContentsAndZeroesWhatGrows) {
    struct Case {
        const char* what;
        SIZE_T from, to;
        UINT flags;
    } cases[] = {
        {"large grows", kLarge, kLarge + 5000000, GMEM_MOVEABLE | GMEM_ZEROINIT},
        {"small grows large", 1000, kLarge, GMEM_MOVEABLE | GMEM_ZEROINIT},
        {"large shrinks", kLarge, 1000, GMEM_ZEROINIT},
        {"large shrinks and grows back", kLarge, kLarge / 2, GMEM_ZEROINIT},
    };
    const std::size_t live = orlex::LiveGlobalBlocks();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, c.from);
        ASSERT_NE(h, nullptr);
        auto* p = static_cast<unsigned char*>(GlobalLock(h));
        for (SIZE_T i = 0; i < c.from; i += 4093) p[i] = static_cast<unsigned char>(i % 251 + 1);
        GlobalUnlock(h);
        HGLOBAL r = GlobalReAlloc(h, c.to, c.flags);
        ASSERT_EQ(r, h) << "a moveable block keeps its handle";
        if (std::strcmp(c.what, "large shrinks and grows back") == 0) {
            r = GlobalReAlloc(h, kLarge, GMEM_ZEROINIT);
            ASSERT_EQ(r, h);
        }
        const SIZE_T size = GlobalSize(h);
        p = static_cast<unsigned char*>(GlobalLock(h));
        ASSERT_NE(p, nullptr);
        const SIZE_T kept = std::min(c.from, std::min(c.to, size));
        for (SIZE_T i = 0; i < kept; i += 4093) ASSERT_EQ(p[i], static_cast<unsigned char>(i % 251 + 1)) << i;
        // Beyond what was kept, zero: the grown part, or what a shrink dropped.
        const SIZE_T zeroFrom = (kept / 4093 + 1) * 4093;
        if (size > zeroFrom) EXPECT_TRUE(LooksZero(p + zeroFrom, size - zeroFrom));
        GlobalUnlock(h);
        EXPECT_EQ(GlobalFree(h), nullptr);
    }
    EXPECT_EQ(orlex::LiveGlobalBlocks(), live);
}
