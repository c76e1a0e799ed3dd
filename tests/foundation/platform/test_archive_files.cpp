#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>

#include "foundation/platform/afx.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

namespace {

class TempDir : public ::testing::Test {
protected:
    void SetUp() override
    {
        char tmpl[] = "/tmp/orlex-files-XXXXXX";
        ASSERT_NE(::mkdtemp(tmpl), nullptr);
        m_dir = tmpl;
    }
    void TearDown() override { std::system(("rm -rf '" + m_dir + "'").c_str()); }
    std::string Path(const char* name) const { return m_dir + "/" + name; }
    std::string m_dir;
};

TEST_F(TempDir, FileWriteSeekReadAndNames)
{
    const std::string path = Path("CustomColorTables.bin");
    CFile f;
    ASSERT_TRUE(f.Open(path.c_str(), CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary));
    f.Write("abcdef", 6);
    EXPECT_EQ(f.GetLength(), 6u);
    EXPECT_EQ(f.GetPosition(), 6u);
    EXPECT_EQ(f.Seek(-2, CFile::end), 4u);
    char two[3] = {};
    EXPECT_EQ(f.Read(two, 5), 2u);  // only two were left
    EXPECT_STREQ(two, "ef");
    EXPECT_EQ(f.Read(two, 1), 0u);
    EXPECT_STREQ(f.GetFileName(), "CustomColorTables.bin");
    EXPECT_STREQ(f.GetFileTitle(), "CustomColorTables");
    EXPECT_STREQ(f.GetFilePath(), path.c_str());
    f.Close();
    EXPECT_FALSE(f.IsOpen());

    // Reopening with modeCreate truncates unless modeNoTruncate.
    ASSERT_TRUE(f.Open(path.c_str(), CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite));
    EXPECT_EQ(f.GetLength(), 6u);
    f.Close();
    ASSERT_TRUE(f.Open(path.c_str(), CFile::modeCreate | CFile::modeWrite));
    EXPECT_EQ(f.GetLength(), 0u);
}

TEST_F(TempDir, OpenFailuresGiveTheirCause)
{
    struct {
        std::string path;
        UINT flags;
        int cause;
    } rows[] = {
        {Path("missing.bin"), CFile::modeRead, CFileException::fileNotFound},
        {Path("no/such/dir/x.bin"), CFile::modeCreate | CFile::modeWrite, CFileException::fileNotFound},
        {m_dir, CFile::modeRead, CFileException::accessDenied},  // a folder is not a file
        {"", CFile::modeRead, CFileException::badPath},
    };
    for (const auto& r : rows) {
        CFile f;
        CFileException e;
        EXPECT_FALSE(f.Open(r.path.c_str(), r.flags, &e)) << r.path;
        EXPECT_EQ(e.m_cause, r.cause) << r.path;
        EXPECT_STREQ(e.m_strFileName, r.path.c_str());
    }
    try {
        CFile f(Path("missing.bin").c_str(), CFile::modeRead);
        ADD_FAILURE() << "no exception";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::fileNotFound);
        e->Delete();
    }
}

TEST_F(TempDir, TextFileReadsLongLinesInPieces)
{
    const std::string path = Path("grid.txt");
    {
        CStdioFile out;
        ASSERT_TRUE(out.Open(path.c_str(), 20481));  // modeCreate | modeWrite | typeText
        out.WriteString("a,b,c\n");
        out.WriteString("0123456789ABCDEF\n");
        out.WriteString("\n");
        out.WriteString("dos line\r\n");
        out.WriteString("last");
    }
    CStdioFile in;
    ASSERT_TRUE(in.Open(path.c_str(), 16384));  // typeText
    const char* expect[] = {"a,b,c\n", "0123456", "789ABCD", "EF\n", "\n", "dos lin", "e\n", "last"};
    char buf[8];
    for (const char* e : expect)
        EXPECT_STREQ(in.ReadString(buf, sizeof buf), e);
    EXPECT_EQ(in.ReadString(buf, sizeof buf), nullptr);

    in.SeekToBegin();
    CString line;
    const char* lines[] = {"a,b,c", "0123456789ABCDEF", "", "dos line", "last"};
    for (const char* e : lines) {
        EXPECT_TRUE(in.ReadString(line));
        EXPECT_STREQ(line, e);
    }
    EXPECT_FALSE(in.ReadString(line));
    EXPECT_TRUE(line.IsEmpty());
}

TEST_F(TempDir, ArchiveOnAFileCarriesItsName)
{
    const std::string path = Path("doc.bin");
    {
        CFile f(path.c_str(), CFile::modeCreate | CFile::modeWrite);
        CArchive ar(&f, CArchive::store);
        ar << 1 << CString("x");
        // Closed by the archive's destructor, which flushes.
    }
    CFile f(path.c_str(), CFile::modeRead);
    EXPECT_EQ(f.GetLength(), 6u);
    CArchive ar(&f, CArchive::load);
    int n;
    CString s;
    ar >> n >> s;
    EXPECT_EQ(n, 1);
    EXPECT_STREQ(s, "x");
    try {
        ar >> n;
        ADD_FAILURE() << "no exception";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::endOfFile);
        EXPECT_STREQ(e->m_strFileName, path.c_str());
        e->Delete();
    }
}

TEST(MemFile, GrowsAttachesAndDetaches)
{
    CMemFile grow(16);
    const Bytes data(40, 0xAB);
    grow.Write(data.data(), 40);
    grow.Seek(50, CFile::begin);
    grow.Write("z", 1);  // leaves a gap of zeros
    EXPECT_EQ(grow.GetLength(), 51u);
    grow.SeekToBegin();
    Bytes back(51);
    EXPECT_EQ(grow.Read(back.data(), 100), 51u);
    EXPECT_EQ(back[39], 0xAB);
    EXPECT_EQ(back[45], 0);
    EXPECT_EQ(back[50], 'z');
    grow.SetLength(10);
    EXPECT_EQ(grow.GetLength(), 10u);
    EXPECT_EQ(grow.GetPosition(), 10u);
    BYTE* mem = grow.Detach();
    ASSERT_NE(mem, nullptr);
    EXPECT_EQ(mem[0], 0xAB);
    std::free(mem);
    EXPECT_EQ(grow.GetLength(), 0u);

    // A caller's buffer without growth: its bytes are the file, and it cannot grow.
    BYTE fixed[4] = {1, 2, 3, 4};
    CMemFile view(fixed, 4);
    EXPECT_EQ(view.GetLength(), 4u);
    view.Seek(3, CFile::begin);
    view.Write("\x09", 1);
    EXPECT_EQ(fixed[3], 9);
    try {
        view.Write("\x09", 1);
        ADD_FAILURE() << "no exception";
    } catch (CMemoryException* e) {
        e->Delete();
    }
    EXPECT_EQ(view.Detach(), fixed);

    try {
        view.Seek(-1, CFile::begin);
        ADD_FAILURE() << "no exception";
    } catch (CFileException* e) {
        EXPECT_EQ(e->m_cause, CFileException::badSeek);
        e->Delete();
    }
}

}  // namespace
