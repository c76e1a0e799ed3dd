// The computed tables and the parse of the resource text, without the list around them.
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>
#include <vector>

#include "colour/ColorTableMath.h"

using namespace orlex::colour;

namespace {

TablePlanes Built(int n, const WORD* store = nullptr)
{
    TablePlanes t;
    FillBuiltInTable(n, store, t);
    return t;
}

std::vector<int> Marks(const WORD* plane)
{
    std::vector<int> out;
    for (int i = 0; i < kTableEntries; ++i)
        if (plane[i] & kEditMark) out.push_back(i);
    return out;
}

// Formulas of the built-in tables written out independently, per entry.
int Trunc8(double v) { return int(std::trunc(v)) & 0xFF; }
int Grey(int i) { return Trunc8(std::exp(3.4 + i * ((std::log(256.0) - 3.4) / 256.0))); }
int Rise170(int i) { return i > 170 ? Trunc8((i - 170) * 2.04) : 0; }
int Held(int i) { return i <= 85 ? 0 : i >= 170 ? 173 : Trunc8((i - 85) * 2.04); }
int Lin(int i) { return Trunc8(i * 0.66 + 60.0); }

struct Expect {
    int table, entry, red, green, blue;
};

}  // namespace

TEST(BuiltInTables, ValuesAtNamedEntries)
{
    const Expect cases[] = {
        // Grey curve: the worked values 29, 30, 35, 87, 239, 253.
        {0, 0, 29, 29, 29}, {0, 1, 30, 30, 30}, {0, 20, 35, 35, 35},
        {0, 128, 87, 87, 87}, {0, 248, 239, 239, 239}, {0, 255, 253, 253, 253},
        // Table 1: red rises from 170 and ends at 173; green held at 173 from 170.
        {1, 0, 0, 0, 60}, {1, 85, 0, 0, 116}, {1, 86, 0, 2, 116}, {1, 170, 0, 173, 172},
        {1, 171, 2, 173, 172}, {1, 213, 87, 173, 200}, {1, 255, 173, 173, 228},
        // Table 2: red and blue of table 1 swapped.
        {2, 0, 60, 0, 0}, {2, 170, 172, 173, 0}, {2, 255, 228, 173, 173},
        // Table 3: the ten bands and their edges.
        {3, 0, 210, 0, 20}, {3, 25, 210, 0, 20}, {3, 26, 210, 84, 0}, {3, 51, 210, 84, 0},
        {3, 52, 210, 168, 0}, {3, 102, 152, 210, 0}, {3, 103, 0, 180, 0}, {3, 204, 162, 0, 210},
        {3, 205, 210, 0, 189}, {3, 230, 210, 0, 189}, {3, 231, 210, 0, 89}, {3, 255, 210, 0, 89},
        // Single-plane and grey ramps.
        {22, 0, 0, 0, 0}, {22, 200, 200, 0, 0}, {23, 77, 0, 77, 0}, {24, 255, 0, 0, 255}, {25, 128, 128, 128, 128},
    };
    for (const Expect& c : cases) {
        const TablePlanes t = Built(c.table);
        SCOPED_TRACE("table " + std::to_string(c.table) + " entry " + std::to_string(c.entry));
        EXPECT_EQ(t.red[c.entry] & 0xFF, c.red);
        EXPECT_EQ(t.green[c.entry] & 0xFF, c.green);
        EXPECT_EQ(t.blue[c.entry] & 0xFF, c.blue);
    }
}

TEST(BuiltInTables, EditPoints)
{
    using V = std::vector<int>;
    struct Case {
        int table;
        V red, green, blue;
    } cases[] = {
        {0, {0, 20, 128, 248, 255}, {0, 20, 128, 248, 255}, {0, 20, 128, 248, 255}},
        {1, {0, 170, 213, 255}, {0, 85, 171, 213, 255}, {0, 255}},
        {2, {0, 255}, {0, 85, 171, 213, 255}, {0, 170, 213, 255}},
        {22, {0, 255}, {0, 255}, {0, 255}},
        {25, {0, 255}, {0, 255}, {0, 255}},
    };
    for (const Case& c : cases) {
        const TablePlanes t = Built(c.table);
        SCOPED_TRACE(c.table);
        EXPECT_EQ(Marks(t.red), c.red);
        EXPECT_EQ(Marks(t.green), c.green);
        EXPECT_EQ(Marks(t.blue), c.blue);
        EXPECT_FALSE(t.stepped);
    }
    const V bands = {0, 25, 26, 51, 52, 76, 77, 102, 103, 127, 128, 153, 154, 179, 180, 204, 205, 230, 231, 255};
    const TablePlanes t3 = Built(3);
    EXPECT_TRUE(t3.stepped);
    EXPECT_EQ(Marks(t3.red), bands);
    EXPECT_EQ(Marks(t3.green), bands);
    EXPECT_EQ(Marks(t3.blue), bands);
}

TEST(BuiltInTables, RandomEntriesFollowTheFormulas)
{
    std::mt19937 rng(7);
    std::uniform_int_distribution<int> entry(0, 255);
    const TablePlanes t0 = Built(0), t1 = Built(1), t2 = Built(2), t3 = Built(3);
    const TablePlanes t22 = Built(22), t23 = Built(23), t24 = Built(24), t25 = Built(25);
    for (int k = 0; k < 200; ++k) {
        const int i = entry(rng);
        SCOPED_TRACE(i);
        ASSERT_EQ(t0.red[i] & 0xFF, Grey(i));
        ASSERT_EQ(t1.red[i] & 0xFF, Rise170(i));
        ASSERT_EQ(t1.green[i] & 0xFF, Held(i));
        ASSERT_EQ(t1.blue[i] & 0xFF, Lin(i));
        ASSERT_EQ(t2.red[i] & 0xFF, Lin(i));
        ASSERT_EQ(t2.green[i] & 0xFF, Held(i));
        ASSERT_EQ(t2.blue[i] & 0xFF, Rise170(i));
        const BandColour& b = kTable3Bands[i * 10 / 256];
        ASSERT_EQ(t3.red[i] & 0xFF, b.red);
        ASSERT_EQ(t3.blue[i] & 0xFF, b.blue);
        ASSERT_EQ(t22.red[i], i | ((i == 0 || i == 255) ? kEditMark : 0));
        ASSERT_EQ(t22.green[i] & 0xFF, 0);
        ASSERT_EQ(t23.green[i] & 0xFF, i);
        ASSERT_EQ(t24.blue[i] & 0xFF, i);
        ASSERT_EQ(t25.red[i] & 0xFF, i);
        ASSERT_EQ(t25.blue[i] & 0xFF, i);
    }
    // No stored value carries bits other than the value byte and the mark.
    for (const TablePlanes* t : {&t0, &t1, &t2, &t3})
        for (int i = 0; i < 256; ++i) ASSERT_EQ((t->red[i] | t->green[i] | t->blue[i]) & 0x7F00, 0);
}

namespace {

// A resource text of 18 tables whose values are (table*7 + entry + plane) % 256, with
// the first three lines of the first table replaced by `opening`.
std::string SyntheticPar(const std::string& opening = {})
{
    std::string s;
    for (int t = 0; t < kResourceTables; ++t) {
        s += "Color Table " + std::to_string(t + 4) + "\r\n\r\n";
        for (int e = 0; e < kResourceEntries; ++e) {
            if (t == 0 && e == 0 && !opening.empty()) {
                s += opening;
                e += 3;
                continue;
            }
            for (int c = 0; c < 3; ++c)
                s += std::to_string((t * 7 + e + c) % 256) + (c < 2 ? " " : "\r\n");
        }
    }
    return s + "\x1a";
}

}  // namespace

TEST(ResourceParse, ValuesMarksAndMapping)
{
    // The documented start of table 4: "-32765" is value 3 with the edit mark.
    const std::string text = SyntheticPar("5 9 9\r\n4 6 6\r\n-32765 -32765 -32764\r\n1 0 1\r\n");
    std::vector<WORD> store(kResourceValues, 0xEEEE);
    ASSERT_TRUE(ParseColorParText(text.data(), text.size(), store.data()));
    const WORD opening[12] = {5, 9, 9, 4, 6, 6, 0x8003, 0x8003, 0x8004, 1, 0, 1};
    for (int k = 0; k < 12; ++k) EXPECT_EQ(store[k], opening[k]) << k;
    EXPECT_EQ(store[kResourceValues - 1], (17 * 7 + 239 + 2) % 256);

    const TablePlanes t4 = Built(4, store.data());
    for (int i = 0; i < 8; ++i) EXPECT_EQ(t4.red[i] & 0xFF, 5);  // first value stretched
    EXPECT_EQ(t4.red[10], 0x8003);                              // resource entry 2, mark kept
    EXPECT_EQ(t4.blue[10], 0x8004);
    EXPECT_EQ(Marks(t4.red), (std::vector<int>{0, 7, 10, 248, 255}));
    const TablePlanes t21 = Built(21, store.data());
    const int last = (17 * 7 + 239) % 256;
    for (int i = 247; i < 256; ++i) EXPECT_EQ(t21.red[i] & 0xFF, last) << i;
    EXPECT_EQ(t21.green[8], (17 * 7 + 1) % 256);
}

TEST(ResourceParse, EndsAndOddNumbers)
{
    const std::string full = SyntheticPar();
    std::vector<WORD> store(kResourceValues);
    struct Case {
        std::string text;
        bool ok;
    } cases[] = {
        {full, true},
        {full.substr(0, full.size() - 1), true},                      // no closing Ctrl-Z
        {full.substr(0, full.size() - 3), true},                      // ends right after the last digit
        {full.substr(0, full.size() - 6), false},                     // one value short
        {full.substr(0, full.size() / 2), false},                     // half a file
        {full.substr(0, full.rfind("Color Table 21")), false},        // a table missing
        {"", false},
        {"Color Table 4\r\n\r\n", false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.text.size());
        EXPECT_EQ(ParseColorParText(c.text.data(), c.text.size(), store.data()), c.ok);
    }
    // Only the low 16 bits of a value count, whatever its size or sign.
    std::string big = SyntheticPar("65537 -1 +7\r\n99999999999 -32768 32767\r\n1 2 3\r\n4 5 6\r\n");
    ASSERT_TRUE(ParseColorParText(big.data(), big.size(), store.data()));
    EXPECT_EQ(store[0], 1);
    EXPECT_EQ(store[1], 0xFFFF);
    EXPECT_EQ(store[2], 7);
    EXPECT_EQ(store[3], WORD(99999999999ull & 0xFFFF));
    EXPECT_EQ(store[4], 0x8000);
    EXPECT_EQ(store[5], 0x7FFF);
}

TEST(ResourceParse, FailedParseLeavesResourceTablesBlack)
{
    for (int n = kFirstResourceTable; n < kFirstResourceTable + kResourceTables; ++n) {
        const TablePlanes t = Built(n, nullptr);
        for (int i = 0; i < 256; ++i) ASSERT_EQ(t.red[i] | t.green[i] | t.blue[i], 0);
        EXPECT_FALSE(t.stepped);
    }
}
