// Contrast, offset and equalisation: worked examples on the grey ramp (table 25, entry i
// holds i in every channel), host tables and table switches, the profile value.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "colour/ColorAdjust.h"
#include "colour/ColorTable.h"
#include "foundation/platform/afxapp.h"

using namespace orlex::colour;

namespace {

constexpr int kGrey = 25;

std::vector<tagRGBQUAD> Ramp(bool rising)
{
    std::vector<tagRGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) {
        const BYTE v = BYTE(rising ? i : 255 - i);
        t[i] = tagRGBQUAD{v, v, v, 255};
    }
    return t;
}

std::vector<int> Reds(const tagRGBQUAD* t)
{
    std::vector<int> r(256);
    for (int i = 0; i < 256; ++i) r[i] = t[i].rgbRed;
    return r;
}

// Expected red values given as runs: (first entry, last entry, value at first, step).
struct Run {
    int first, last, value, step;
};
std::vector<int> FromRuns(std::initializer_list<Run> runs)
{
    std::vector<int> v(256, -1);
    for (const Run& r : runs)
        for (int e = r.first; e <= r.last; ++e) v[e] = r.value + (e - r.first) * r.step;
    return v;
}

// A derivation object on the grey ramp with the given settings.
struct Derived : WorkingTable {
    explicit Derived(int contrast = 0, int offset = 0)
    {
        m_nContrast = contrast;
        m_nOffset = offset;
        m_nTable = kGrey;
    }
};

TEST(ContrastStretch, WorkedExamplesOnTheRamp)
{
    struct Case {
        const char* what;
        bool rising;
        int contrast;
        std::vector<std::pair<int, int>> entries;  // (entry, red)
    };
    const Case cases[] = {
        {"+10 squeezes into 86..170", true, 10, {{0, 0}, {86, 0}, {87, 3}, {88, 6}, {169, 249}, {170, 255}, {255, 255}}},
        {"-10 shows 115..138", true, -10, {{0, 115}, {1, 115}, {255, 138}}},
        {"+5: span 142 from 57, step 229", true, 5, {{57, 0}, {58, 1}, {59, 3}, {198, 252}, {199, 255}}},
        {"-1: from 19, step 108", true, -1, {{0, 19}, {1, 19}, {2, 20}, {255, 234}}},
        // A falling channel rounds toward minus infinity (arithmetic shift of the product).
        {"-10 on a falling ramp", false, -10, {{0, 140}, {1, 139}, {255, 116}}},
    };
    for (const Case& c : cases) {
        std::vector<tagRGBQUAD> t = Ramp(c.rising);
        StretchTable(t.data(), 256, c.contrast);
        for (auto [e, red] : c.entries) {
            EXPECT_EQ(t[e].rgbRed, red) << c.what << " entry " << e;
            EXPECT_EQ(t[e].rgbGreen, red) << c.what << " entry " << e;
            EXPECT_EQ(t[e].rgbBlue, red) << c.what << " entry " << e;
            EXPECT_EQ(t[e].rgbReserved, 255) << c.what;
        }
    }
}

TEST(ContrastStretch, WholeTableAtPlusTenIsExact)
{
    std::vector<tagRGBQUAD> t = Ramp(true);
    StretchTable(t.data(), 256, 10);
    EXPECT_EQ(Reds(t.data()), FromRuns({{0, 86, 0, 0}, {87, 169, 3, 3}, {170, 255, 255, 0}}));
}

TEST(ContrastStretch, OnePassFormEqualsStretchThenShift)
{
    // Tables with every kind of step: ramps both ways, noise with large jumps, and reserved
    // bytes that must survive; every contrast step with offsets around and past the ends.
    std::vector<std::vector<tagRGBQUAD>> tables = {Ramp(true), Ramp(false)};
    std::uint32_t seed = 12345;
    for (int t = 0; t < 3; ++t) {
        std::vector<tagRGBQUAD> noise(256);
        for (tagRGBQUAD& q : noise) {
            seed = seed * 1664525u + 1013904223u;
            q = tagRGBQUAD{BYTE(seed >> 24), BYTE(seed >> 16), BYTE(seed >> 8), BYTE(seed)};
        }
        tables.push_back(noise);
    }
    for (const auto& base : tables)
        for (int c = -10; c <= 10; ++c)
            for (int off : {-300, -256, -255, -128, -37, -1, 0, 1, 5, 128, 254, 255, 256, 300}) {
                std::vector<tagRGBQUAD> a = base, b = base;
                StretchTable(a.data(), 256, c);
                ShiftTable(a.data(), 256, off);
                StretchAndShiftTable(b.data(), c, off);
                ASSERT_EQ(std::memcmp(a.data(), b.data(), 1024), 0) << "contrast " << c << " offset " << off;
            }
}

TEST(Offset, ShiftsAndLimits)
{
    struct Case {
        int offset;
        int (*expect)(int e);
    };
    const Case cases[] = {
        {0, [](int e) { return e; }},
        {10, [](int e) { return std::min(e + 10, 255); }},
        {-10, [](int e) { return std::max(e - 10, 0); }},
        {300, [](int) { return 255; }},
        {-300, [](int) { return 0; }},
        {255, [](int) { return 255; }},
    };
    for (const Case& c : cases) {
        std::vector<tagRGBQUAD> t = Ramp(true);
        ShiftTable(t.data(), 256, c.offset);
        for (int e = 0; e < 256; ++e) {
            ASSERT_EQ(t[e].rgbBlue, c.expect(e)) << c.offset << " entry " << e;
            ASSERT_EQ(t[e].rgbReserved, 255);
        }
    }
}

TEST(Segments, OneCursorAtTheMiddleWorkedExample)
{
    Derived d(10, 0);
    d.EqualizeColorTable(Ramp(true).data());
    d.SetEqualizedCursors({128});
    d.DeriveWorkingTable(kGrey);
    EXPECT_EQ(Reds(d.GetColorTable()), FromRuns({{0, 43, 0, 0},
                                                 {44, 84, 3, 3},
                                                 {85, 127, 127, 0},
                                                 {128, 170, 128, 0},
                                                 {171, 211, 131, 3},
                                                 {212, 255, 255, 0}}));
}

TEST(Segments, OffsetStaysInsideEachSegment)
{
    struct Case {
        int offset;
        std::vector<int> cursors;
        std::vector<int> want;
    };
    const Case cases[] = {
        {10, {128}, FromRuns({{0, 117, 10, 1}, {118, 127, 127, 0}, {128, 244, 138, 1}, {245, 254, 254, 0}, {255, 255, 255, 0}})},
        {-10, {128}, FromRuns({{0, 9, 0, 0}, {10, 127, 0, 1}, {128, 137, 128, 0}, {138, 254, 128, 1}, {255, 255, 255, 0}})},
        // Two bounds: three segments, each shifted on its own.
        {300, {50, 100}, FromRuns({{0, 49, 49, 0}, {50, 99, 99, 0}, {100, 254, 254, 0}, {255, 255, 255, 0}})},
    };
    for (const Case& c : cases) {
        Derived d(0, c.offset);
        d.EqualizeColorTable(Ramp(true).data());
        d.SetEqualizedCursors(c.cursors);
        d.DeriveWorkingTable(kGrey);
        EXPECT_EQ(Reds(d.GetColorTable()), c.want) << c.offset;
    }
}

TEST(Segments, EmptySegmentsAreSkipped)
{
    // Bounds at 0 and twice at 200 make segments of no length; the rest stretch as usual.
    std::vector<tagRGBQUAD> direct = Ramp(true);
    StretchSegment(direct.data(), 10, 0, 200);
    StretchSegment(direct.data(), 10, 200, 255);
    Derived d(10, 0);
    d.EqualizeColorTable(Ramp(true).data());
    d.SetEqualizedCursors({0, 200, 200});
    d.DeriveWorkingTable(kGrey);
    EXPECT_EQ(Reds(d.GetColorTable()), Reds(direct.data()));
}

TEST(Derivation, NeutralSettingsGiveTheStoredTables)
{
    for (int n = 0; n < 26; ++n) {
        std::vector<tagRGBQUAD> stored(256);
        CreateColorTable(n, 256, stored.data());
        Derived d;
        d.DeriveWorkingTable(n);
        const tagRGBQUAD* w = d.GetColorTable();
        for (int e = 0; e < 256; ++e)
            ASSERT_EQ(std::memcmp(&w[e], &stored[e], 4), 0) << "table " << n << " entry " << e;
    }
}

TEST(Derivation, TableNumbersAreClamped)
{
    InitializeColorTables();
    const int last = GetNumberOfColorTables() - 1;
    const std::pair<int, int> cases[] = {{-5, 0}, {0, 0}, {13, 13}, {last, last}, {last + 1, last}, {5000, last}};
    for (auto [asked, got] : cases) {
        Derived d;
        d.DeriveWorkingTable(asked);
        EXPECT_EQ(d.GetColorTableIdx(), got) << asked;
    }
}

TEST(Derivation, HostTablesAndTableSwitches)
{
    std::vector<tagRGBQUAD> host(256);
    for (int i = 0; i < 256; ++i) host[i] = tagRGBQUAD{BYTE(i), 7, BYTE(255 - i), 9};
    auto isHost = [&](WorkingTable& d) {
        for (int e = 0; e < 256; ++e) {
            const tagRGBQUAD& w = d.GetColorTable()[e];
            if (w.rgbBlue != host[e].rgbBlue || w.rgbGreen != 7 || w.rgbRed != host[e].rgbRed) return false;
            if (w.rgbReserved != 255) return false;  // only colours are taken
        }
        return true;
    };

    // Modified for table 5: shown while the number stays; a switch throws it away for good.
    Derived d;
    d.DeriveWorkingTable(5);
    d.ModifyColorTable(host.data());
    EXPECT_TRUE(d.IsColorTableModified());
    EXPECT_EQ(d.m_nModifiedTable, 5);
    d.DeriveWorkingTable(5);
    EXPECT_TRUE(isHost(d));
    d.DeriveWorkingTable(6);
    EXPECT_FALSE(d.IsColorTableModified());
    EXPECT_FALSE(isHost(d));
    d.DeriveWorkingTable(5);
    EXPECT_FALSE(isHost(d));

    // The number stored first and the same number asked for keeps a modified table.
    d.ModifyColorTable(host.data());
    d.m_nTable = 5;
    d.m_nContrast = 0;
    d.DeriveWorkingTable(5);
    EXPECT_TRUE(isHost(d));
    // Stored under another number: the flag stays, the table doesn't apply.
    d.m_nTable = 7;
    d.DeriveWorkingTable(7);
    EXPECT_TRUE(d.IsColorTableModified());
    EXPECT_FALSE(isHost(d));

    // Equalised: applies to any number until a switch, and with no bounds the contrast
    // goes over the whole table.
    Derived e(10, 0);
    e.DeriveWorkingTable(kGrey);
    e.EqualizeColorTable(Ramp(true).data());
    e.m_nTable = 3;
    e.DeriveWorkingTable(3);
    EXPECT_TRUE(e.IsColorTableEqualized());
    EXPECT_EQ(Reds(e.GetColorTable()), FromRuns({{0, 86, 0, 0}, {87, 169, 3, 3}, {170, 255, 255, 0}}));
    e.DeriveWorkingTable(4);
    EXPECT_FALSE(e.IsColorTableEqualized());

    // Both at once: the equalised table wins over the modified one.
    Derived both;
    both.DeriveWorkingTable(kGrey);
    both.ModifyColorTable(host.data());
    both.EqualizeColorTable(Ramp(false).data());
    both.DeriveWorkingTable(kGrey);
    EXPECT_EQ(both.GetColorTable()[0].rgbRed, 255);
    EXPECT_EQ(both.GetColorTable()[0].rgbGreen, 255);
}

TEST(SmoothEdges, StraightensElevenEntries)
{
    struct Case {
        int position;
        std::vector<std::pair<int, int>> entries;
    };
    // A step from 0 to 200 at entry 128, and the same step at entry 3 (window cut at 0).
    const Case cases[] = {
        {128, {{122, 0}, {123, 0}, {125, 40}, {128, 100}, {132, 180}, {133, 200}, {134, 200}}},
        {3, {{0, 0}, {1, 25}, {2, 50}, {4, 100}, {8, 200}, {9, 200}}},
    };
    for (const Case& c : cases) {
        std::vector<tagRGBQUAD> t(256);
        for (int e = 0; e < 256; ++e) {
            const BYTE v = e < c.position ? 0 : 200;
            t[e] = tagRGBQUAD{v, BYTE(255 - v), v, 255};
        }
        SmoothAround(t.data(), c.position);
        for (auto [e, red] : c.entries) {
            EXPECT_EQ(t[e].rgbRed, red) << c.position << " entry " << e;
            EXPECT_EQ(t[e].rgbGreen, 255 - red) << c.position << " entry " << e;
        }
    }
}

TEST(Profile, TableNumberIsRememberedUnderColorControl)
{
    EXPECT_EQ(ProfileColorTable(), 12);  // no application: the default
    StoreProfileColorTable(3);           // and nothing is written
    EXPECT_EQ(ProfileColorTable(), 12);
    {
        CWinApp app("coloradjust_test");
        const std::string path = ::testing::TempDir() + "coloradjust_profile.ini";
        std::remove(path.c_str());
        app.SetProfilePath(path.c_str());
        EXPECT_EQ(ProfileColorTable(), 12);
        StoreProfileColorTable(7);
        EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", -1), 7u);
        EXPECT_EQ(WorkingTable().GetColorTableIdx(), 7);  // a new object starts there
        std::remove(path.c_str());
    }
    EXPECT_EQ(WorkingTable().GetColorTableIdx(), 12);
}

}  // namespace
