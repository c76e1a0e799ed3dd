// Global memory blocks and the shared memory file.
#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <vector>

#include "foundation/platform/globalmem.h"
#include "foundation/platform/process.h"

namespace {

bool AllZero(const void* p, SIZE_T n) {
    const auto* b = static_cast<const unsigned char*>(p);
    for (SIZE_T i = 0; i < n; ++i)
        if (b[i]) return false;
    return true;
}

TEST(GlobalAlloc, FlagsDecideHandleAndContents) {
    struct Case {
        const char* what;
        UINT flags;
        SIZE_T size;
        bool handleIsAddress;
        bool zeroed;
    };
    const Case cases[] = {
        {"fixed", GMEM_FIXED, 100, true, false},
        {"GPTR", GPTR, 100, true, true},
        {"moveable", GMEM_MOVEABLE, 100, false, false},
        {"GHND (bitmap export)", GHND, 1064, false, true},
        {"zeroinit fixed (bitmap block)", GMEM_ZEROINIT, 44 + 3 * 16, true, true},
        {"clipboard text 0x2042", 0x2042, 4096, false, true},
        {"empty moveable", GMEM_MOVEABLE, 0, false, true},
    };
    const std::size_t live = orlex::LiveGlobalBlocks();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HGLOBAL h = GlobalAlloc(c.flags, c.size);
        ASSERT_NE(h, nullptr);
        EXPECT_EQ(GlobalSize(h), c.size);
        void* p = GlobalLock(h);
        ASSERT_NE(p, nullptr);
        EXPECT_EQ(h == p, c.handleIsAddress);
        EXPECT_EQ(GlobalHandle(p), h);
        if (c.zeroed) EXPECT_TRUE(AllZero(p, c.size));
        std::memset(p, 0xAB, c.size);  // the whole size is writable
        GlobalUnlock(h);
        EXPECT_EQ(GlobalFree(h), nullptr);
    }
    EXPECT_EQ(orlex::LiveGlobalBlocks(), live);
}

TEST(GlobalLock, MoveableBlocksCountTheirLocks) {
    HGLOBAL h = GlobalAlloc(GHND, 16);
    EXPECT_EQ(GlobalFlags(h), 0u);
    void* a = GlobalLock(h);
    void* b = GlobalLock(h);
    EXPECT_EQ(a, b);
    EXPECT_EQ(GlobalFlags(h), 2u);
    EXPECT_TRUE(GlobalUnlock(h));  // still locked once
    SetLastError(12345);
    EXPECT_FALSE(GlobalUnlock(h));
    EXPECT_EQ(GetLastError(), NO_ERROR);
    EXPECT_FALSE(GlobalUnlock(h));
    EXPECT_EQ(GetLastError(), ERROR_NOT_LOCKED);
    EXPECT_EQ(GlobalFlags(h), 0u);
    GlobalFree(h);
}

TEST(GlobalReAlloc, MovesOnlyWhenAllowed) {
    struct Case {
        const char* what;
        UINT allocFlags;
        bool locked;
        UINT reallocFlags;
        bool succeeds;
    };
    const Case cases[] = {
        {"unlocked moveable grows", GMEM_MOVEABLE, false, 0, true},
        {"locked moveable stays put", GMEM_MOVEABLE, true, 0, false},
        {"locked moveable may move when asked", GMEM_MOVEABLE, true, GMEM_MOVEABLE, true},
        {"fixed stays put", GMEM_FIXED, false, 0, false},
        {"fixed may move when asked", GMEM_FIXED, false, GMEM_MOVEABLE, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        HGLOBAL h = GlobalAlloc(c.allocFlags, 8);
        auto* p = static_cast<char*>(GlobalLock(h));
        std::memcpy(p, "ABCDEFGH", 8);
        if (!c.locked) GlobalUnlock(h);
        HGLOBAL r = GlobalReAlloc(h, 1 << 20, c.reallocFlags | GMEM_ZEROINIT);
        if (!c.succeeds) {
            EXPECT_EQ(r, nullptr);
            EXPECT_EQ(GlobalSize(h), 8u);  // the old block is untouched
            EXPECT_EQ(std::memcmp(GlobalLock(h), "ABCDEFGH", 8), 0);
            GlobalFree(h);
            continue;
        }
        ASSERT_NE(r, nullptr);
        if (c.allocFlags & GMEM_MOVEABLE) EXPECT_EQ(r, h);  // moveable handles survive a move
        auto* q = static_cast<char*>(GlobalLock(r));
        if (!(c.allocFlags & GMEM_MOVEABLE)) EXPECT_EQ(static_cast<void*>(q), r);
        EXPECT_EQ(GlobalSize(r), 1u << 20);
        EXPECT_EQ(std::memcmp(q, "ABCDEFGH", 8), 0);
        EXPECT_TRUE(AllZero(q + 8, (1 << 20) - 8));
        EXPECT_EQ(GlobalFree(r), nullptr);
    }
}

TEST(GlobalReAlloc, ShrinkingKeepsTheAddressAndRegrowingZeroes) {
    HGLOBAL h = GlobalAlloc(GMEM_FIXED, 64);
    std::memset(h, 0x55, 64);
    EXPECT_EQ(GlobalReAlloc(h, 10, 0), h);
    EXPECT_EQ(GlobalSize(h), 10u);
    EXPECT_EQ(GlobalReAlloc(h, 64, GMEM_ZEROINIT), h);  // within the block it had
    EXPECT_TRUE(AllZero(static_cast<char*>(h) + 10, 54));
    EXPECT_EQ(static_cast<unsigned char*>(h)[9], 0x55);
    GlobalFree(h);
}

TEST(GlobalMemory, UnknownHandlesAreRefusedNotFollowed) {
    int notABlock = 0;
    HGLOBAL bogus = &notABlock;
    EXPECT_EQ(GlobalLock(bogus), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(GlobalUnlock(bogus));
    EXPECT_EQ(GlobalSize(bogus), 0u);
    EXPECT_EQ(GlobalFlags(bogus), GMEM_INVALID_HANDLE);
    EXPECT_EQ(GlobalReAlloc(bogus, 10, 0), nullptr);
    EXPECT_EQ(GlobalFree(bogus), bogus);
    EXPECT_EQ(GlobalHandle(&notABlock), nullptr);
    EXPECT_EQ(GlobalFree(nullptr), nullptr);
    HGLOBAL h = GlobalAlloc(GHND, 4);
    EXPECT_EQ(GlobalFree(h), nullptr);
    EXPECT_EQ(GlobalFree(h), h);  // a second free is refused
}

std::string Text(HGLOBAL h) {
    const auto* p = static_cast<const char*>(GlobalLock(h));
    std::string s(p, GlobalSize(h));
    GlobalUnlock(h);
    return s;
}

TEST(CSharedFile, DetachGivesTheWrittenBytesAsOneBlock) {
    const std::size_t live = orlex::LiveGlobalBlocks();
    CSharedFile file(0x2042, 4096);
    const char text[] = "a\tb\r\n1\t2\r\n";
    file.Write(text, sizeof text);  // with its terminating NUL, as clipboard text
    EXPECT_EQ(file.GetLength(), sizeof text);
    HGLOBAL h = file.Detach();
    ASSERT_NE(h, nullptr);
    EXPECT_EQ(GlobalSize(h), sizeof text);
    EXPECT_EQ(Text(h), std::string(text, sizeof text));
    EXPECT_EQ(GlobalFlags(h), 0u);  // handed over unlocked
    EXPECT_EQ(file.GetLength(), 0u);
    EXPECT_EQ(file.Detach(), nullptr);
    GlobalFree(h);
    EXPECT_EQ(orlex::LiveGlobalBlocks(), live);
}

TEST(CSharedFile, GrowsPastItsStepAndFreesWhatIsNotDetached) {
    const std::size_t live = orlex::LiveGlobalBlocks();
    {
        CSharedFile file(GMEM_MOVEABLE, 16);
        std::string expected;
        for (int i = 0; i < 100; ++i) {
            const std::string line = "row " + std::to_string(i) + "\n";
            file.Write(line.data(), static_cast<UINT>(line.size()));
            expected += line;
        }
        EXPECT_EQ(orlex::LiveGlobalBlocks(), live + 1);
        file.SeekToBegin();
        std::vector<char> back(expected.size());
        EXPECT_EQ(file.Read(back.data(), static_cast<UINT>(back.size())), expected.size());
        EXPECT_EQ(std::string(back.begin(), back.end()), expected);
    }
    EXPECT_EQ(orlex::LiveGlobalBlocks(), live);
}

TEST(CSharedFile, ReadsABlockItIsGiven) {
    HGLOBAL h = GlobalAlloc(GHND, 5);
    std::memcpy(GlobalLock(h), "x\ty\0", 5);
    GlobalUnlock(h);
    CSharedFile file;
    file.SetHandle(h, FALSE);
    EXPECT_EQ(file.GetLength(), 5u);
    char buf[8] = {};
    EXPECT_EQ(file.Read(buf, sizeof buf), 5u);
    EXPECT_STREQ(buf, "x\ty");
    EXPECT_EQ(file.Detach(), h);
    GlobalFree(h);
}

}  // namespace
