// The list of colour tables: the embedded resource, the free functions on the process's
// list, the custom table file byte for byte, and files that are cut short or corrupt.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "colour/ColorTable.h"
#include "foundation/OrlexUI.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/resources.h"

using namespace orlex::colour;
using Bytes = std::vector<unsigned char>;

namespace {

Bytes ReadAll(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteAll(const std::string& path, const Bytes& b)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(b.data()), std::streamsize(b.size()));
}

bool Exists(const std::string& path) { return std::ifstream(path).good(); }

int MessageBoxes(const char* text = nullptr)
{
    int n = 0;
    for (const auto& r : orlex::ModalScript::Log())
        if (r.kind == "MessageBox" && (text == nullptr || r.text == text)) ++n;
    return n;
}

// The custom table file, written out field by field.
struct FileBytes {
    Bytes b;
    FileBytes& u8(unsigned v) { b.push_back(BYTE(v)); return *this; }
    FileBytes& u16(unsigned v) { return u8(v & 0xFF).u8(v >> 8); }
    FileBytes& i32(int v) { return u16(unsigned(v) & 0xFFFF).u16(unsigned(v) >> 16); }
    FileBytes& text(const std::string& s) { b.insert(b.end(), s.begin(), s.end()); return *this; }
    FileBytes& header(unsigned schema, int count) { return u16(0xFFFF).u16(schema).u16(10).text("ColorTable").i32(count); }
    // One block: planes from `value(i, plane)`, the label in the archive's string form.
    template <typename F>
    FileBytes& block(bool stepped, const std::string& label, F value, const std::vector<int>& aux, unsigned schema = 2)
    {
        u8(stepped ? 1 : 0).i32(int(label.size()));
        if (!label.empty()) u8(unsigned(label.size())).text(label);
        for (int i = 0; i < 256; ++i) u16(value(i, 0)).u16(value(i, 1)).u16(value(i, 2));
        if (schema >= 2) {
            i32(int(aux.size()));
            for (int a : aux) i32(a);
        }
        return *this;
    }
};

// The planes of the custom tables used below: a ramp, with marks where given.
unsigned RampValue(int i, int plane) { return unsigned((i * (plane + 1)) & 0xFF); }

std::vector<tagRGBQUAD> RampTable()
{
    std::vector<tagRGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = tagRGBQUAD{BYTE(RampValue(i, 2)), BYTE(RampValue(i, 1)), BYTE(RampValue(i, 0)), 0};
    return t;
}

ColorTableEditPointInfo RampPoints()
{
    ColorTableEditPointInfo info;
    info.redPoints = {0, 100, 255};
    info.greenPoints = {0, 255};
    info.bluePoints = {7};
    info.auxPoints = {-5, 70000};
    return info;
}

// The file block of RampTable with RampPoints and a label.
FileBytes& RampBlock(FileBytes& f, const std::string& label, unsigned schema = 2)
{
    return f.block(false, label,
                   [](int i, int plane) {
                       const bool marked = plane == 0 ? (i == 0 || i == 100 || i == 255)
                                           : plane == 1 ? (i == 0 || i == 255)
                                                        : i == 7;
                       return RampValue(i, plane) | (marked ? 0x8000u : 0u);
                   },
                   schema >= 2 ? std::vector<int>{-5, 70000} : std::vector<int>{}, schema);
}

std::string TempFile(const char* name) { return ::testing::TempDir() + "orlex_colour_" + name; }

// Before anything builds the process's list, its file must not hold tables of an
// earlier run.
class ForgetCustomTables : public ::testing::Environment {
public:
    void SetUp() override { std::remove(DefaultCustomTableFile().c_str()); }
};
const auto* const g_forget = ::testing::AddGlobalTestEnvironment(new ForgetCustomTables);

}  // namespace

// The embedded resource -------------------------------------------------------------------------

TEST(ColorParResource, SamplesAndMarkCounts)
{
    struct Sample {
        int table;
        int rgb[5][3];
        int marks[3];
    } samples[] = {
        {4, {{5, 9, 9}, {0, 0, 0}, {103, 0, 0}, {222, 192, 191}, {225, 225, 226}}, {5, 7, 7}},
        {5, {{14, 16, 16}, {110, 131, 50}, {198, 173, 4}, {106, 153, 149}, {227, 234, 225}}, {6, 4, 7}},
        {6, {{0, 0, 0}, {113, 52, 177}, {218, 117, 186}, {249, 181, 173}, {246, 245, 254}}, {4, 2, 4}},
        {7, {{0, 0, 0}, {0, 0, 0}, {119, 119, 119}, {250, 250, 250}, {255, 255, 255}}, {4, 4, 4}},
        {8, {{0, 0, 1}, {105, 25, 20}, {37, 142, 158}, {150, 215, 0}, {225, 232, 230}}, {11, 7, 12}},
        {9, {{226, 0, 0}, {255, 141, 0}, {127, 255, 12}, {26, 64, 89}, {255, 0, 250}}, {5, 4, 3}},
        {10, {{0, 0, 0}, {31, 0, 0}, {144, 0, 0}, {255, 117, 255}, {255, 254, 255}}, {2, 2, 2}},
        {11, {{221, 221, 0}, {247, 230, 39}, {228, 115, 97}, {127, 0, 156}, {0, 0, 213}}, {3, 3, 2}},
        {12, {{0, 0, 0}, {50, 0, 0}, {118, 48, 0}, {186, 152, 70}, {253, 255, 253}}, {2, 2, 2}},
        {13, {{50, 183, 0}, {43, 36, 112}, {63, 161, 207}, {134, 194, 218}, {239, 103, 173}}, {3, 4, 3}},
        {14, {{69, 6, 8}, {29, 91, 0}, {31, 149, 0}, {107, 156, 61}, {228, 129, 188}}, {3, 3, 3}},
        {15, {{101, 101, 101}, {78, 78, 78}, {103, 103, 103}, {240, 240, 240}, {0, 0, 0}}, {13, 13, 13}},
        {16, {{0, 0, 0}, {3, 0, 189}, {188, 46, 109}, {227, 149, 199}, {255, 250, 255}}, {6, 2, 6}},
        {17, {{255, 40, 0}, {255, 0, 0}, {50, 255, 14}, {113, 0, 100}, {172, 1, 255}}, {4, 6, 3}},
        {18, {{31, 26, 37}, {116, 20, 139}, {93, 141, 151}, {125, 166, 28}, {213, 255, 255}}, {7, 7, 5}},
        {19, {{0, 0, 0}, {0, 0, 0}, {124, 124, 124}, {196, 196, 196}, {248, 248, 248}}, {4, 4, 4}},
        {20, {{0, 1, 2}, {152, 44, 46}, {150, 99, 101}, {40, 171, 172}, {255, 251, 250}}, {4, 3, 3}},
        {21, {{138, 119, 29}, {143, 153, 52}, {164, 117, 142}, {205, 55, 224}, {253, 55, 0}}, {4, 5, 5}},
    };
    ColorTableStore store;
    ASSERT_TRUE(store.Parse());
    const WORD* v = store.Values();
    const int entries[5] = {0, 60, 120, 180, 239};
    for (const Sample& s : samples) {
        SCOPED_TRACE("table " + std::to_string(s.table));
        const WORD* t = v + (s.table - 4) * 720;
        for (int k = 0; k < 5; ++k)
            for (int c = 0; c < 3; ++c) EXPECT_EQ(t[entries[k] * 3 + c] & 0xFF, s.rgb[k][c]) << entries[k];
        for (int c = 0; c < 3; ++c) {
            int marked = 0;
            for (int e = 0; e < 240; ++e) {
                marked += (t[e * 3 + c] & 0x8000) != 0;
                ASSERT_EQ(t[e * 3 + c] & 0x7F00, 0) << "a value above 255";
            }
            EXPECT_EQ(marked, s.marks[c]) << "plane " << c;
        }
    }
    // The documented opening of table 4.
    const WORD opening[12] = {5, 9, 9, 4, 6, 6, 0x8003, 0x8003, 0x8004, 1, 0, 1};
    for (int k = 0; k < 12; ++k) EXPECT_EQ(v[k], opening[k]);
}

TEST(ColorParResource, TextForm)
{
    const HMODULE module = orlex::LibraryModule();
    HRSRC r = FindResourceA(module, "color.par", RT_RCDATA);
    ASSERT_NE(r, nullptr);
    const char* text = static_cast<const char*>(LockResource(LoadResource(module, r)));
    const std::string s(text, SizeofResource(module, r));
    EXPECT_EQ(s.size(), 48576u);
    EXPECT_EQ(s.substr(0, 17), "Color Table 4\r\n\r\n");
    EXPECT_EQ(s.back(), '\x1a');
    int lines = 0;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\n') continue;
        ASSERT_TRUE(i > 0 && s[i - 1] == '\r') << "bare line feed at " << i;
        ++lines;
    }
    EXPECT_EQ(lines, 18 * 242);
    for (int n = 5; n <= 21; ++n) EXPECT_NE(s.find("\r\nColor Table " + std::to_string(n) + "\r\n\r\n"), std::string::npos) << n;
}

// The process's list ------------------------------------------------------------------------------

class ProcessTables : public ::testing::Test {
protected:
    void SetUp() override { orlex::ModalScript::Reset(); }
    void TearDown() override
    {
        while (GetNumberOfColorTables() > kFirstCustomTable) DeleteCustomColorTable(kFirstCustomTable);
        std::remove(DefaultCustomTableFile().c_str());
    }
    static std::vector<tagRGBQUAD> Table(int n)
    {
        std::vector<tagRGBQUAD> t(256);
        CreateColorTable(n, 256, t.data());
        return t;
    }
    static bool SameColours(const std::vector<tagRGBQUAD>& a, const std::vector<tagRGBQUAD>& b)
    {
        for (int i = 0; i < 256; ++i)
            if (a[i].rgbRed != b[i].rgbRed || a[i].rgbGreen != b[i].rgbGreen || a[i].rgbBlue != b[i].rgbBlue) return false;
        return true;
    }
};

TEST_F(ProcessTables, BuiltOnFirstUseWithTheBuiltInTables)
{
    // Counting does not build (unless an earlier test of this program built the list).
    if (!ProcessColorTables().m_bInitialized) EXPECT_EQ(GetNumberOfColorTables(), 0);
    OrlexUI::Initialize(false);  // its third step builds the list
    EXPECT_EQ(GetNumberOfColorTables(), 26);
    InitializeColorTables();                 // once only
    EXPECT_EQ(GetNumberOfColorTables(), 26);
    EXPECT_EQ(MessageBoxes(), 0);
    EXPECT_FALSE(IsCustomColorTable(25));
    EXPECT_FALSE(IsCustomColorTable(26));
    EXPECT_EQ(GetColorTableLabel(3), CString(""));
}

TEST_F(ProcessTables, EntriesAndLimits)
{
    // Past the end: the last table. Every reserved byte 255.
    EXPECT_TRUE(SameColours(Table(5000), Table(25)));
    for (int n : {0, 3, 12, 25})
        for (const tagRGBQUAD& e : Table(n)) ASSERT_EQ(e.rgbReserved, 255);
    const ColorTableEditPointInfo last = GetColorTableEditPoints(5000);
    EXPECT_EQ(last.redPoints, (std::vector<int>{0, 255}));

    // Table 3: stepped, bands change between 25 and 26, 20 points in every plane.
    const std::vector<tagRGBQUAD> t3 = Table(3);
    EXPECT_NE(t3[25].rgbGreen, t3[26].rgbGreen);
    const ColorTableEditPointInfo p3 = GetColorTableEditPoints(3);
    EXPECT_TRUE(p3.stepped);
    EXPECT_EQ(p3.redPoints.size(), 20u);
    EXPECT_EQ(p3.greenPoints.size(), 20u);
    EXPECT_EQ(p3.bluePoints, p3.redPoints);

    // Table 1: green held at 173 from 170, red ends at 173.
    const std::vector<tagRGBQUAD> t1 = Table(1);
    for (int i = 170; i < 256; ++i) ASSERT_EQ(t1[i].rgbGreen, 173);
    EXPECT_EQ(t1[255].rgbRed, 173);

    // Table 12 from the resource: both ends stretched over eight entries and marked.
    ColorTableStore store;
    ASSERT_TRUE(store.Parse());
    const WORD* raw = store.Values() + (12 - 4) * 720;
    const std::vector<tagRGBQUAD> t12 = Table(12);
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(t12[i].rgbRed, raw[0] & 0xFF);
        EXPECT_EQ(t12[248 + i].rgbRed, raw[239 * 3] & 0xFF);
        EXPECT_EQ(t12[248 + i].rgbGreen, raw[239 * 3 + 1] & 0xFF);
    }
    const ColorTableEditPointInfo p12 = GetColorTableEditPoints(12);
    for (int e : {0, 7, 248, 255}) {
        EXPECT_TRUE(std::count(p12.redPoints.begin(), p12.redPoints.end(), e)) << e;
        EXPECT_TRUE(std::count(p12.bluePoints.begin(), p12.bluePoints.end(), e)) << e;
    }
    // "-32765" in table 4: colour 3 and a point at its place (resource entry 2 = entry 10).
    const std::vector<tagRGBQUAD> t4 = Table(4);
    EXPECT_EQ(t4[10].rgbRed, 3);
    EXPECT_EQ(t4[10].rgbBlue, 4);
    const ColorTableEditPointInfo p4 = GetColorTableEditPoints(4);
    EXPECT_TRUE(std::count(p4.greenPoints.begin(), p4.greenPoints.end(), 10));
}

TEST_F(ProcessTables, AddDeleteAndTheFileBytes)
{
    const std::string file = DefaultCustomTableFile();
    std::vector<tagRGBQUAD> ramp = RampTable();
    ColorTableEditPointInfo info = RampPoints();
    EXPECT_EQ(AddCustomColorTable(ramp.data(), info), 26);
    FileBytes one;
    one.header(2, 27);
    RampBlock(one, "26");
    EXPECT_EQ(ReadAll(file), one.b);

    ColorTableEditPointInfo stepped = info;
    stepped.stepped = true;
    EXPECT_EQ(AddCustomColorTable(ramp.data(), stepped), 27);
    EXPECT_TRUE(IsCustomColorTable(27));
    EXPECT_EQ(GetColorTableEditPoints(26).redPoints, info.redPoints);
    EXPECT_EQ(GetColorTableEditPoints(26).auxPoints, info.auxPoints);
    EXPECT_TRUE(GetColorTableEditPoints(27).stepped);

    // Deleting 26 moves 27 down; its label stays "27".
    DeleteCustomColorTable(26);
    EXPECT_EQ(GetNumberOfColorTables(), 27);
    EXPECT_TRUE(GetColorTableEditPoints(26).stepped);
    Bytes two = ReadAll(file);
    ASSERT_GT(two.size(), 25u);
    EXPECT_EQ(Bytes(two.begin() + 20, two.begin() + 27), (Bytes{1, 2, 0, 0, 0, 2, '2'}));
    EXPECT_EQ(two[27], '7');

    // Out of the custom range: nothing changes and the file is not written.
    std::remove(file.c_str());
    DeleteCustomColorTable(25);
    DeleteCustomColorTable(GetNumberOfColorTables());
    DeleteCustomColorTable(-1);
    EXPECT_EQ(GetNumberOfColorTables(), 27);
    EXPECT_FALSE(Exists(file));

    // Deleting the last custom table leaves a file of the header and the count 26.
    DeleteCustomColorTable(26);
    EXPECT_EQ(ReadAll(file), FileBytes().header(2, 26).b);
    EXPECT_EQ(MessageBoxes(), 0);
}

TEST_F(ProcessTables, MatchingCustomTables)
{
    std::vector<tagRGBQUAD> ramp = RampTable();
    ColorTableEditPointInfo info = RampPoints();
    int index = -7;
    EXPECT_FALSE(MatchesCustomColorTable(ramp.data(), info, &index));  // no custom tables
    AddCustomColorTable(ramp.data(), info);
    AddCustomColorTable(ramp.data(), info);
    EXPECT_TRUE(MatchesCustomColorTable(ramp.data(), info, &index));
    EXPECT_EQ(index, 26);  // the lower of two equal tables

    struct Case {
        const char* what;
        void (*change)(std::vector<tagRGBQUAD>&, ColorTableEditPointInfo&);
        bool matches;
    } cases[] = {
        {"reserved byte differs", [](std::vector<tagRGBQUAD>& t, ColorTableEditPointInfo&) { t[9].rgbReserved = 77; }, true},
        {"one colour differs", [](std::vector<tagRGBQUAD>& t, ColorTableEditPointInfo&) { t[200].rgbGreen ^= 1; }, false},
        {"one red point more", [](std::vector<tagRGBQUAD>&, ColorTableEditPointInfo& i) { i.redPoints.push_back(200); }, false},
        {"blue point moved", [](std::vector<tagRGBQUAD>&, ColorTableEditPointInfo& i) { i.bluePoints = {8}; }, false},
        {"aux differs", [](std::vector<tagRGBQUAD>&, ColorTableEditPointInfo& i) { i.auxPoints.pop_back(); }, false},
        {"stepped differs", [](std::vector<tagRGBQUAD>&, ColorTableEditPointInfo& i) { i.stepped = true; }, false},
    };
    for (const Case& c : cases) {
        std::vector<tagRGBQUAD> t = ramp;
        ColorTableEditPointInfo p = info;
        c.change(t, p);
        index = -7;
        EXPECT_EQ(MatchesCustomColorTable(t.data(), p, &index), c.matches) << c.what;
        EXPECT_EQ(index, c.matches ? 26 : -7) << c.what;
    }
}

// Files read by a list of its own ---------------------------------------------------------------

namespace {

struct LoadCase {
    const char* what;
    Bytes bytes;
    int tables;        // in the list after the build
    int boxes;         // message boxes shown
};

std::vector<LoadCase> LoadCases()
{
    auto withRamp = [](unsigned schema, int count, int blocks) {
        FileBytes f;
        f.header(schema, count);
        for (int k = 0; k < blocks; ++k) RampBlock(f, std::to_string(40 + k), schema);
        return f.b;
    };
    std::vector<LoadCase> cases;
    cases.push_back({"two tables", withRamp(2, 28, 2), 28, 0});
    cases.push_back({"schema 1", withRamp(1, 27, 1), 27, 0});
    cases.push_back({"count 26", withRamp(2, 26, 0), 26, 0});
    cases.push_back({"count 0 with a block after it", withRamp(2, 0, 1), 26, 0});
    cases.push_back({"empty file", {}, 26, 0});
    Bytes cut = withRamp(2, 28, 2);
    cut.resize(cut.size() - 700);
    cases.push_back({"cut inside the second block", cut, 27, 1});
    Bytes header = withRamp(2, 28, 0);
    header.resize(10);
    cases.push_back({"cut inside the class record", header, 26, 1});
    Bytes name = withRamp(2, 27, 1);
    name[15] = 'X';  // "ColorTablX": a class nobody knows
    cases.push_back({"unknown class name", name, 26, 1});
    Bytes tag = withRamp(2, 27, 1);
    tag[0] = 0x01;
    tag[1] = 0x00;  // a reference to an object in place of the class record
    cases.push_back({"bad class tag", tag, 26, 1});
    cases.push_back({"schema 3", withRamp(3, 27, 1), 26, 1});
    cases.push_back({"absurd count", withRamp(2, 0x7FFFFFFF, 2), 28, 1});
    cases.push_back({"negative count", withRamp(2, -5, 1), 26, 0});
    FileBytes hugeLabel;
    hugeLabel.header(2, 27).u8(0).i32(100000).u8(0xFF).u16(0xFFFF).i32(0x7FFFFFFF).text("abc");
    cases.push_back({"label longer than the file", hugeLabel.b, 26, 1});
    FileBytes hugeAux;
    hugeAux.header(2, 27).block(false, "26", RampValue, {});
    hugeAux.b.resize(hugeAux.b.size() - 4);
    hugeAux.i32(0x40000000).i32(1);
    cases.push_back({"aux count beyond the file", hugeAux.b, 26, 1});
    FileBytes negAux;
    negAux.header(2, 27).block(false, "26", RampValue, {});
    negAux.b.resize(negAux.b.size() - 4);
    negAux.i32(-1);
    cases.push_back({"negative aux count", negAux.b, 26, 1});
    // The wide string form: FF FE FF, a length, two bytes a character.
    FileBytes wide;
    wide.header(2, 27).u8(1).i32(2).u8(0xFF).u16(0xFFFE).u8(2).text(std::string("2\0" "9\0", 4));
    for (int i = 0; i < 256; ++i) wide.u16(i).u16(0).u16(0x8000 | 5);
    wide.i32(0);
    cases.push_back({"wide label", wide.b, 27, 0});
    return cases;
}

}  // namespace

TEST(ColorTableFile, LoadingGoodAndBadFiles)
{
    const std::string file = TempFile("load.bin");
    for (const LoadCase& c : LoadCases()) {
        SCOPED_TRACE(c.what);
        orlex::ModalScript::Reset();
        WriteAll(file, c.bytes);
        ColorTable list;
        list.SetFileName(file.c_str());
        list.Build();
        EXPECT_EQ(list.Count(), c.tables);
        EXPECT_EQ(MessageBoxes(), c.boxes);
        // The built-in tables are whole whatever the file held.
        EXPECT_EQ(list.Record(0).red[128], 87 | 0x8000);
        EXPECT_EQ(list.Record(25).blue[200], 200);
        EXPECT_TRUE(list.Record(3).stepped);
        for (int n = 26; n < list.Count(); ++n) EXPECT_EQ(list.Record(n).green[3] & 0xFF, c.what == std::string("wide label") ? 0 : 6);
    }
    std::remove(file.c_str());
}

TEST(ColorTableFile, LoadedRecordsAndWritingBack)
{
    const std::string file = TempFile("schema1.bin");
    FileBytes f;
    f.header(1, 27);
    RampBlock(f, "41", 1);
    WriteAll(file, f.b);
    orlex::ModalScript::Reset();
    ColorTable list;
    list.SetFileName(file.c_str());
    list.Build();
    ASSERT_EQ(list.Count(), 27);
    const ColorTableEditPointInfo p = list.EditPoints(26);
    EXPECT_TRUE(p.auxPoints.empty());
    EXPECT_EQ(p.redPoints, (std::vector<int>{0, 100, 255}));
    EXPECT_EQ(list.Record(26).label, CString("41"));  // kept as read, not renumbered

    // Written back whole, as schema 2, after the next change.
    std::vector<tagRGBQUAD> ramp = RampTable();
    EXPECT_EQ(list.AddCustom(ramp.data(), RampPoints()), 27);
    FileBytes back;
    back.header(2, 28);
    RampBlock(back, "41", 1).i32(0);
    RampBlock(back, "27");
    EXPECT_EQ(ReadAll(file), back.b);

    // The wide label is narrowed.
    WriteAll(file, LoadCases().back().bytes);
    ColorTable wide;
    wide.SetFileName(file.c_str());
    wide.Build();
    ASSERT_EQ(wide.Count(), 27);
    EXPECT_EQ(wide.Record(26).label, CString("29"));
    EXPECT_TRUE(wide.Record(26).stepped);
    EXPECT_EQ(wide.EditPoints(26).bluePoints.size(), 256u);
    EXPECT_EQ(MessageBoxes(), 0);
    std::remove(file.c_str());
}

TEST(ColorTableFile, WriteFailureKeepsTheList)
{
    orlex::ModalScript::Reset();
    ColorTable list;
    list.SetFileName((::testing::TempDir() + "no_such_dir/x/CustomColorTables.bin").c_str());
    std::vector<tagRGBQUAD> ramp = RampTable();
    EXPECT_EQ(list.AddCustom(ramp.data(), RampPoints()), 26);
    EXPECT_EQ(list.Count(), 27);
    EXPECT_EQ(MessageBoxes(), 1);
    EXPECT_EQ(list.AddCustom(nullptr, RampPoints()), -1);
    EXPECT_EQ(list.Count(), 27);
}

TEST(ColorTableFile, MissingResourceKeepsTheNumbers)
{
    struct Case {
        const char* what;
        std::string text;
    } cases[] = {
        {"empty", ""},
        {"cut short", "Color Table 4\r\n\r\n1 2 3\r\n"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        orlex::ModalScript::Reset();
        ColorTable list;
        list.SetFileName(TempFile("absent.bin").c_str());
        list.SetResourceOverride(c.text.data(), c.text.size());
        list.Build();
        // Every one of the 18 tables tries again and reports again.
        EXPECT_EQ(MessageBoxes("Error initializing color tables."), 18);
        EXPECT_EQ(MessageBoxes(), 18);
        ASSERT_EQ(list.Count(), 26);
        for (int n = 4; n <= 21; ++n) {
            const ColorTableEditPointInfo p = list.EditPoints(n);
            EXPECT_TRUE(p.redPoints.empty() && p.greenPoints.empty() && p.bluePoints.empty()) << n;
            EXPECT_EQ(list.Record(n).red[100] | list.Record(n).blue[255], 0) << n;
        }
        EXPECT_EQ(list.EditPoints(22).redPoints, (std::vector<int>{0, 255}));
        EXPECT_EQ(list.Record(1).red[255], 173 | 0x8000);
    }
}
