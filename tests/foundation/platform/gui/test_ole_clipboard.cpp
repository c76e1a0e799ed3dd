// Data sources and data objects on the clipboard: the exact bytes of a grid's text, what
// the raw clipboard and the toolkit's clipboard see, and who frees which block when.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>

#include <cstring>
#include <string>
#include <thread>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxole.h"
#include "support/orlex_test.h"

namespace {

int g_sourcesDeleted = 0;

class CountedSource : public COleDataSource {
public:
    ~CountedSource() override { ++g_sourcesDeleted; }
};

HGLOBAL BlockOf(const std::string& bytes) {
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE | GMEM_ZEROINIT, bytes.size());
    std::memcpy(GlobalLock(h), bytes.data(), bytes.size());
    GlobalUnlock(h);
    return h;
}

std::string BytesOf(HGLOBAL h) {
    const SIZE_T n = GlobalSize(h);
    const char* p = static_cast<const char*>(GlobalLock(h));
    std::string s(p, p + n);
    GlobalUnlock(h);
    return s;
}

// Empties the clipboard and lets go of any source this process left there.
void ClearClipboard() {
    COleDataSource::FlushClipboard();
    ASSERT_TRUE(::OpenClipboard(nullptr));
    ::EmptyClipboard();
    ::CloseClipboard();
}

class OleClipboard : public ::testing::Test {
protected:
    void SetUp() override {
        orlex::test::Init();
        ASSERT_TRUE(AfxOleInit());
        ClearClipboard();
        g_sourcesDeleted = 0;
        base = orlex::LiveGlobalBlocks();
    }
    void TearDown() override {
        ClearClipboard();
        EXPECT_EQ(orlex::LiveGlobalBlocks(), base) << "a block leaked";
    }
    std::size_t base = 0;
};

// Two rows of two cells as the grid copies them: TAB between fields, CR LF between lines,
// one NUL at the end.
const std::string kGridText("A1\tB1\r\nA2\tB2\0", 13);

TEST_F(OleClipboard, GridTextRoundTripsByteForByte) {
    auto* source = new COleDataSource;
    source->CacheGlobalData(CF_TEXT, BlockOf(kGridText));
    source->SetClipboard();
    EXPECT_TRUE(::IsClipboardFormatAvailable(CF_TEXT));
    EXPECT_FALSE(::IsClipboardFormatAvailable(CF_DIB));

    COleDataObject data;
    ASSERT_TRUE(data.AttachClipboard());
    EXPECT_TRUE(data.IsDataAvailable(CF_TEXT));
    EXPECT_FALSE(data.IsDataAvailable(CF_DIB));
    HGLOBAL copy = data.GetGlobalData(CF_TEXT);
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(BytesOf(copy), kGridText);
    EXPECT_EQ(GlobalFree(copy), nullptr);
    EXPECT_EQ(data.GetGlobalData(CF_DIB), nullptr);

    // The raw clipboard holds the very bytes; other programs get the text up to the NUL.
    ASSERT_TRUE(::OpenClipboard(nullptr));
    HANDLE held = ::GetClipboardData(CF_TEXT);
    ASSERT_NE(held, nullptr);
    EXPECT_EQ(BytesOf(held), kGridText);
    ::CloseClipboard();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), "A1\tB1\r\nA2\tB2");
}

TEST_F(OleClipboard, AfxOleInitIsOncePerThreadAndAlwaysSucceeds) {
    EXPECT_TRUE(orlex::IsOleInitialized());
    EXPECT_TRUE(AfxOleInit());
    BOOL other = TRUE;
    std::thread([&] { other = orlex::IsOleInitialized(); }).join();
    EXPECT_FALSE(other);
}

TEST_F(OleClipboard, ClipboardOwnsTheSourceUntilReplacedOrFlushed) {
    auto* first = new CountedSource;
    first->CacheGlobalData(CF_TEXT, BlockOf(std::string("one\0", 4)));
    first->SetClipboard();
    EXPECT_EQ(COleDataSource::GetClipboardOwner(), first);
    EXPECT_EQ(orlex::LiveGlobalBlocks(), base + 1);

    // A second source replaces the first: the first object and its block go.
    auto* second = new CountedSource;
    second->CacheGlobalData(CF_TEXT, BlockOf(std::string("two\0", 4)));
    second->SetClipboard();
    EXPECT_EQ(g_sourcesDeleted, 1);
    EXPECT_EQ(COleDataSource::GetClipboardOwner(), second);
    EXPECT_EQ(orlex::LiveGlobalBlocks(), base + 1);

    // Flushing lets go of the object and leaves the data on the clipboard.
    COleDataSource::FlushClipboard();
    EXPECT_EQ(g_sourcesDeleted, 2);
    EXPECT_EQ(COleDataSource::GetClipboardOwner(), nullptr);
    COleDataObject data;
    data.AttachClipboard();
    HGLOBAL copy = data.GetGlobalData(CF_TEXT);
    EXPECT_EQ(BytesOf(copy), std::string("two\0", 4));
    GlobalFree(copy);
}

TEST_F(OleClipboard, OtherDataOnTheClipboardEndsOwnership) {
    auto* source = new CountedSource;
    source->CacheGlobalData(CF_TEXT, BlockOf(std::string("mine\0", 5)));
    source->SetClipboard();
    ASSERT_TRUE(::OpenClipboard(nullptr));
    ::EmptyClipboard();
    ::SetClipboardData(CF_TEXT, BlockOf(std::string("theirs\0", 7)));
    ::CloseClipboard();
    EXPECT_EQ(COleDataSource::GetClipboardOwner(), nullptr);
    EXPECT_EQ(g_sourcesDeleted, 1);
    EXPECT_EQ(orlex::LiveGlobalBlocks(), base + 1);
}

TEST_F(OleClipboard, SourceOwnsItsBlocksUntilHandedOn) {
    {
        CountedSource source;
        source.CacheGlobalData(CF_TEXT, BlockOf("a"));
        source.CacheGlobalData(CF_DIB, BlockOf("bb"));
        // The same format again: the earlier block is freed.
        source.CacheGlobalData(CF_TEXT, BlockOf("ccc"));
        EXPECT_EQ(orlex::LiveGlobalBlocks(), base + 2);
        // Not a block: ignored, and nothing is freed for it later.
        int notABlock = 0;
        source.CacheGlobalData(CF_UNICODETEXT, reinterpret_cast<HGLOBAL>(&notABlock));
        source.CacheGlobalData(CF_UNICODETEXT, nullptr);
        EXPECT_FALSE(source.IsDataAvailable(CF_UNICODETEXT));

        COleDataObject data;
        data.Attach(&source);
        EXPECT_TRUE(data.IsDataAvailable(CF_TEXT));
        EXPECT_TRUE(data.IsDataAvailable(CF_DIB));
        HGLOBAL copy = data.GetGlobalData(CF_TEXT);
        EXPECT_EQ(BytesOf(copy), "ccc");
        GlobalFree(copy);
        EXPECT_EQ(data.Detach(), &source);
        EXPECT_FALSE(data.IsDataAvailable(CF_TEXT));
    }
    EXPECT_EQ(g_sourcesDeleted, 1);
    EXPECT_EQ(orlex::LiveGlobalBlocks(), base);
}

TEST_F(OleClipboard, AutoReleasedSourceGoesWithTheDataObject) {
    auto* source = new CountedSource;
    source->CacheGlobalData(CF_TEXT, BlockOf("x"));
    {
        COleDataObject data;
        data.Attach(source, TRUE);
        EXPECT_TRUE(data.IsDataAvailable(CF_TEXT));
    }
    EXPECT_EQ(g_sourcesDeleted, 1);
}

TEST_F(OleClipboard, UnattachedOrBlockedReadsGiveNothing) {
    COleDataObject data;
    EXPECT_FALSE(data.IsDataAvailable(CF_TEXT));
    EXPECT_EQ(data.GetGlobalData(CF_TEXT), nullptr);

    auto* source = new COleDataSource;
    source->CacheGlobalData(CF_TEXT, BlockOf(std::string("t\0", 2)));
    source->SetClipboard();
    data.AttachClipboard();
    // Someone holds the clipboard open: the read fails instead of waiting.
    ASSERT_TRUE(::OpenClipboard(nullptr));
    EXPECT_EQ(data.GetGlobalData(CF_TEXT), nullptr);
    ::CloseClipboard();
    HGLOBAL copy = data.GetGlobalData(CF_TEXT);
    EXPECT_NE(copy, nullptr);
    GlobalFree(copy);
}

TEST_F(OleClipboard, SetClipboardWhileTheClipboardIsOpenDropsTheSource) {
    ASSERT_TRUE(::OpenClipboard(nullptr));
    auto* source = new CountedSource;
    source->CacheGlobalData(CF_TEXT, BlockOf("lost"));
    source->SetClipboard();
    ::CloseClipboard();
    EXPECT_EQ(g_sourcesDeleted, 1);
    EXPECT_EQ(COleDataSource::GetClipboardOwner(), nullptr);
}

}  // namespace
