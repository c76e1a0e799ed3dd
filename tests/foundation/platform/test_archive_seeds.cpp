// The seeds of the archive fuzzer are archives of its graph classes, made here. The test
// checks that the committed seeds are exactly what these graphs store to, and that each
// reads back to a graph that stores the same. ORLEXUI_WRITE_SEEDS=<dir> writes them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

#include "fuzz/fuzz_graph.h"
#include "tests/foundation/platform/archive_test_util.h"

using namespace archive_test;

namespace {

struct Seed {
    const char* file;
    BYTE header;
    std::function<std::vector<CObject*>()> build;
};

FzLeaf* Leaf(int n, const char* text)
{
    auto* l = new FzLeaf;
    l->m_n = n;
    l->m_d = n / 4.0;
    l->m_text = text;
    l->m_flag = n % 2 != 0;
    return l;
}

FzZoom* Zoom(int l, int t, int r, int b, FzZoom* next)
{
    auto* z = new FzZoom;
    z->m_rect = CRect(l, t, r, b);
    z->m_scale = 0.5;
    z->m_next = next;
    return z;
}

std::vector<CObject*> SharedGraph()
{
    auto* root = new FzNode;
    FzLeaf* leaf = Leaf(3, "three");
    FzZoom* z = Zoom(0, 0, 511, 255, Zoom(10, 20, 30, 40, nullptr));
    root->m_name = "root";
    root->m_a = leaf;
    root->m_b = root;
    root->m_kids.AddTail(leaf);
    root->m_kids.AddTail(z);
    root->m_kids.AddTail(static_cast<CObject*>(nullptr));
    root->m_kids.AddTail(leaf);
    for (DWORD v : {1u, 2u, 0xFFFFFFFFu})
        root->m_values.Add(v);
    root->m_words.Add("a");
    root->m_words.Add(CString('w', 300));
    auto* second = new FzNode;
    second->m_name = "second";
    second->m_a = z;
    second->m_b = leaf;
    return {root, second, leaf};
}

const Seed kSeeds[] = {
    {"graph_shared.bin", 0x00, SharedGraph},
    {"graph_list_smallbuffer.bin", 0x12, SharedGraph},  // kind 2 (a list), buffer 128
    {"zoom_noversioning.bin", 0x01,
     [] { return std::vector<CObject*>{Zoom(1, 2, 3, 4, nullptr), Zoom(5, 6, 7, 8, nullptr)}; }},
    {"leaves_long_strings.bin", 0x06,
     [] {
         std::vector<CObject*> v;
         for (int i = 0; i < 16; ++i)
             v.push_back(Leaf(i, CString(static_cast<char>('a' + i), 250 + i)));
         return v;
     }},
};

Bytes StoreSeed(const Seed& s, const std::vector<CObject*>& top)
{
    const fuzzgraph::InputHeader h = fuzzgraph::DecodeHeader(s.header);
    ArchiveVersionControl::SetNoVersioning(h.noVersioning);
    Bytes b = Store([&](CArchive& ar) { fuzzgraph::WriteGraph(ar, h, top); }, h.bufSize);
    b.insert(b.begin(), s.header);
    return b;
}

TEST(FuzzSeeds, CommittedSeedsAreTheGraphsAndReadBack)
{
    const char* outDir = std::getenv("ORLEXUI_WRITE_SEEDS");
    // The seeds lie in fuzz/seeds of the source tree, three folders above this file.
    std::string seedDir = __FILE__;
    seedDir = seedDir.substr(0, seedDir.size() - std::string("tests/foundation/platform/test_archive_seeds.cpp").size()) +
              "fuzz/seeds/";
    for (const Seed& s : kSeeds) {
        SCOPED_TRACE(s.file);
        const Bytes made = StoreSeed(s, s.build());
        fuzzgraph::FreeAllGraphObjects();
        if (outDir) {
            std::ofstream(std::string(outDir) + "/" + s.file, std::ios::binary)
                .write(reinterpret_cast<const char*>(made.data()), static_cast<std::streamsize>(made.size()));
            continue;
        }
        std::ifstream in(seedDir + s.file, std::ios::binary);
        const Bytes committed((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        EXPECT_EQ(Hex(committed), Hex(made));

        const fuzzgraph::InputHeader h = fuzzgraph::DecodeHeader(made[0]);
        std::vector<CObject*> top;
        Load(Bytes(made.begin() + 1, made.end()), [&](CArchive& ar) { top = fuzzgraph::ReadGraph(ar, h); },
             h.bufSize);
        EXPECT_EQ(Hex(StoreSeed(s, top)), Hex(made));
        fuzzgraph::FreeAllGraphObjects();
    }
    ArchiveVersionControl::SetNoVersioning(false);
}

TEST(FuzzSeeds, SharedGraphKeepsItsSharing)
{
    const Seed& s = kSeeds[0];
    const Bytes made = StoreSeed(s, s.build());
    fuzzgraph::FreeAllGraphObjects();
    std::vector<CObject*> top;
    Load(Bytes(made.begin() + 1, made.end()), [&](CArchive& ar) { top = fuzzgraph::ReadGraph(ar, fuzzgraph::DecodeHeader(0)); });
    ASSERT_EQ(top.size(), 3u);
    auto* root = dynamic_cast<FzNode*>(top[0]);
    auto* second = dynamic_cast<FzNode*>(top[1]);
    ASSERT_TRUE(root && second);
    EXPECT_EQ(root->m_b, root);
    EXPECT_EQ(root->m_a, top[2]);
    EXPECT_EQ(second->m_b, top[2]);
    auto* z = dynamic_cast<FzZoom*>(second->m_a);
    ASSERT_NE(z, nullptr);
    EXPECT_EQ(z->m_rect, CRect(0, 0, 511, 255));
    ASSERT_NE(dynamic_cast<FzZoom*>(z->m_next), nullptr);
    EXPECT_EQ(root->m_values.GetSize(), 3);
    EXPECT_EQ(root->m_values[2], 0xFFFFFFFFu);
    EXPECT_EQ(root->m_words[1].GetLength(), 300);
    fuzzgraph::FreeAllGraphObjects();
}

}  // namespace
