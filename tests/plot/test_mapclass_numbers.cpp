// The number side of the plot engine: its engineering form, the reader, the choice of
// the axis scale with prefixes, factors and unit labels, and the integer scaling.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>

#include "foundation/platform/codepage.h"
#include "plot/MapClass.h"

namespace {

// Opens the scale choice to the tests.
class ScaledMap : public MapClass {
public:
    using MapClass::CalculateScale;
    using MapClass::ScaleNum;
};

class MapNumbers : public ::testing::Test {
protected:
    void TearDown() override { orlex::SetACP(1252); }
};

TEST_F(MapNumbers, Convert2EngNeverGoesBelowNano)
{
    const struct {
        UINT cp;
        double value;
        const char* unit;
        int decimals;
        int blanks;
        const char* expected;
    } cases[] = {
        {1252, 1.5e-10, "m", 3, 0, "0.15 nm"},
        {1252, 0.0, "V", 2, 0, "0.00 V"},
        {1252, 1e-12, "V", 3, 0, "0.00 nV"},
        {1252, 2.5e-9, "A", 3, 0, "2.50 nA"},
        {1252, 2.5e-8, "A", 3, 0, "25.00 nA"},
        {1252, 2.5e-5, "A", 3, 0, "25.000 \xB5" "A"},
        {1252, 1500, "V", 2, 0, "1.50 kV"},
        {1252, -0.5, "V", 2, 0, "-500.00 mV"},
        {1252, 2.5e-6, "V", 1, 0, "2.5 \xB5V"},
        {1251, 2.5e-6, "V", 1, 0, "2.5 uV"},
        {1251, 0.0, "\xBA", 1, 0, "0.0 deg"},
        {1252, 1e21, "V", 0, 0, "1000000000000000000000 V"},
        {1252, 1500, "V", 2, 4, "    1.50 kV"},
        {1252, 1500, "V", 2, 99, "          1.50 kV"},
    };
    for (const auto& c : cases) {
        orlex::SetACP(c.cp);
        EXPECT_STREQ(MapClass::Convert2Eng(c.value, c.unit, c.decimals, c.blanks), c.expected)
            << c.value << " " << c.unit;
    }
}

TEST_F(MapNumbers, Convert2EngResultIsCutAt128Bytes)
{
    const std::string unit(300, 'U');
    const char* text = MapClass::Convert2Eng(1e300, unit.c_str(), INT_MAX, INT_MAX);
    EXPECT_EQ(std::strlen(text), 127u);
    EXPECT_EQ(std::string(text, 10), std::string(10, ' '));
}

TEST_F(MapNumbers, Convert2NumReadsPrefixes)
{
    const struct {
        const char* text;
        double expected;
        const char* textAfter;
    } cases[] = {
        {"2.5 k", 2500.0, "2.5 k"},
        {"10uV", 1e-5, "10\xB5V"},
        {"3 Hz", 3.0, "3 Hz"},
        {"7", 7.0, "7"},
        {"", 0.0, ""},
        {"5 m", 0.005, "5 m"},
        {"5 V", 5.0, "5 V"},
        {"1.5e3 k", 1.5e6, "1.5e3 k"},
        {"2 \xB5", 2e-6, "2 \xB5"},
        {"4 M", 4e6, "4 M"},
        {"1 E", 1e18, "1 E"},
        {"1 a", 1e-18, "1 a"},
        {"-3.5 m", -0.0035, "-3.5 m"},
        {"12 $ k", 12000.0, "12 $ k"},
        {"abc", 0.0, "abc"},
        {"6 u u", 6e-6, "6 \xB5 u"},       // only the first letter counts
        {"8 x k", 8.0, "8 x k"},           // a letter that is no prefix ends the search
        // a numeric part far beyond 19 bytes is read whole
        {"0.000000000000000000012345 k", 1.2345e-17, "0.000000000000000000012345 k"},
        {"123456789012345678901234567890", 1.2345678901234568e29, "123456789012345678901234567890"},
    };
    for (const auto& c : cases) {
        char text[64];
        std::strcpy(text, c.text);
        EXPECT_DOUBLE_EQ(MapClass::Convert2Num(text), c.expected) << c.text;
        EXPECT_STREQ(text, c.textAfter);
    }
    EXPECT_EQ(MapClass::Convert2Num(nullptr), 0.0);
    // The reader's table is that of 1252 under every code page.
    orlex::SetACP(1251);
    char micro[] = "3 \xB5V";
    EXPECT_DOUBLE_EQ(MapClass::Convert2Num(micro), 3e-6);
}

TEST_F(MapNumbers, Convert2NumOfAVeryLongText)
{
    std::string text(5000, '1');
    text += " k";
    const double v = MapClass::Convert2Num(text.data());
    EXPECT_TRUE(std::isinf(v)); // 5000 digits times a thousand: beyond double, but read safely
    std::string blanks(5000, ' ');
    EXPECT_EQ(MapClass::Convert2Num(blanks.data()), 0.0);
}

TEST(MultMultDivDiv, WorkedExamplesAndOverflow)
{
    const struct {
        int a, b, c, d, e;
        long expected;
    } cases[] = {
        {3, 10, 10, 7, 1, 43},
        {-3, 10, 10, 7, 1, -42},          // (P + D/2) / D truncates toward zero
        {3, 10, 10, -7, 1, -42},          // a negative divisor moves its sign to the product
        {1, 1, 1, 0, 5, INT_MAX},
        {-1, 1, 1, 0, 5, INT_MIN},
        {0, 1, 1, 0, 1, INT_MAX},
        {600, 1000, 96, 600, 1, 96000},
        {1 << 30, 1 << 30, 4, 1 << 20, 1 << 20, 4194304},
        // 51 significant bits: twenty shifts in the rotation N, N, a lose a little
        {100000, 100000, 100000, 100000, 100000, 99976},
    };
    for (const auto& c : cases)
        EXPECT_EQ(MapClass::MultMultDivDiv(c.a, c.b, c.c, c.d, c.e), c.expected)
            << c.a << "*" << c.b << "*" << c.c << "/(" << c.d << "*" << c.e << ")";
}

struct ScaleCase {
    const char* name;
    UINT cp;
    const char* domain;
    const char* range;
    double xExp, yExp;
    int minScale;
    bool friendlyX, friendlyY, scaleUnits;
    double value;
    int axis;
    int engScale;
    char prefix;   // of the axis scaled (X for 1000, Y for 1100)
    double factor; // of that axis
};

const ScaleCase kScaleCases[] = {
    {"micrometres", 1252, "m", "V", 1, 1, -6, true, true, true, 1.5e-6, 1000, -2, '\xB5', 1e6},
    {"micro elsewhere", 1251, "m", "V", 1, 1, -6, true, true, true, 1.5e-6, 1000, -2, 'u', 1e6},
    {"kilovolts", 1252, "m", "V", 1, 1, -6, true, true, true, 2500, 1100, 1, 'k', 1e-3},
    {"negative", 1252, "m", "V", 1, 1, -6, true, true, true, -2500, 1100, 1, 'k', 1e-3},
    {"per cent", 1252, "%", "V", 1, 1, -6, true, true, true, 1e9, 1000, 0, ' ', 1.0},
    {"per cent Y", 1252, "m", "%", 1, 1, -6, true, true, true, 1e-9, 1100, 0, ' ', 1.0},
    {"not friendly", 1252, "m", "V", 1, 1, -6, true, false, true, 1e-5, 1100, 0, ' ', 1.0},
    {"min scale 0", 1252, "m", "V", 1, 1, 0, true, true, true, 1e-5, 1100, 0, ' ', 1.0},
    {"min scale -1", 1252, "m", "V", 1, 1, -1, true, true, true, 1e-5, 1100, -1, 'm', 1e3},
    {"square metres", 1252, "m", "m", 2, 2, -6, true, true, true, 1e-6, 1100, -1, 'm', 1e6},
    {"zero value", 1252, "m", "V", 1, 1, -6, true, true, true, 0.0, 1000, 0, ' ', 1.0},
    {"zero, min 2", 1252, "m", "V", 1, 1, 2, true, true, true, 0.0, 1000, 2, 'M', 1e-6},
    {"zero exponent", 1252, "m", "V", 0, 0, -6, true, true, true, 5e6, 1100, 0, ' ', 1.0},
    {"no X factor", 1252, "m", "V", 1, 1, -6, true, true, false, 5e6, 1000, 2, 'M', 1.0},
    {"Y ignores ScaleUnits", 1252, "m", "V", 1, 1, -6, true, true, false, 5e6, 1100, 2, 'M', 1e-6},
    {"guard 1e-9 lifts", 1252, "m", "V", 1, 1, -6, true, true, true, 999.9999999, 1100, 1, 'k', 1e-3},
    {"guard is small", 1252, "m", "V", 1, 1, -6, true, true, true, 999.99, 1100, 0, ' ', 1.0},
    {"blank unit", 1252, " ", "V", 1, 1, -6, true, true, true, 5e6, 1000, 2, ' ', 1e-6},
    {"beyond the table", 1252, "m", "V", 1, 1, -6, true, true, true, 1e24, 1100, 6, 'E', 1e-18},
    {"below the table", 1252, "m", "V", 1, 1, -9, true, true, true, 1e-24, 1100, -6, 'a', 1e18},
};

TEST_F(MapNumbers, ScaleNumChoosesPrefixAndFactor)
{
    for (const ScaleCase& c : kScaleCases) {
        orlex::SetACP(c.cp);
        ScaledMap map;
        map.SetUnits(c.domain, c.range, c.xExp, c.yExp, c.scaleUnits, nullptr);
        map.SetMinScale(c.minScale);
        map.SetUserFriendly(c.friendlyX, c.friendlyY);
        map.ScaleNum(c.value, c.axis);
        EXPECT_EQ(map.GetEngScale(), c.engScale) << c.name;
        const bool x = c.axis == 1000;
        EXPECT_EQ(x ? map.GetXPrefix() : map.GetYPrefix(), c.prefix) << c.name;
        EXPECT_DOUBLE_EQ(x ? map.GetXFactor() : map.GetYFactor(), c.factor) << c.name;
    }
}

TEST_F(MapNumbers, EngScaleIsSharedByBothAxes)
{
    ScaledMap map;
    map.SetUnits("s", "V", 1, 1, true, nullptr);
    map.ScaleNum(2e-3, 1000);
    map.ScaleNum(3e6, 1100);
    EXPECT_EQ(map.GetEngScale(), 2); // the axis scaled last
    EXPECT_EQ(map.GetXPrefix(), 'm');
    EXPECT_DOUBLE_EQ(map.GetXFactor(), 1e3);
    EXPECT_EQ(map.GetYPrefix(), 'M');
    // Any other axis only chooses the scale, with the Y tests.
    map.ScaleNum(5e3, 1200);
    EXPECT_EQ(map.GetEngScale(), 1);
    EXPECT_EQ(map.GetYPrefix(), 'M');
    EXPECT_DOUBLE_EQ(map.GetYFactor(), 1e-6);
    map.SetUnits(nullptr, "%", 1, 1, true, nullptr);
    map.CalculateScale(5e3, 1200);
    EXPECT_EQ(map.GetEngScale(), 0);
}

TEST_F(MapNumbers, UnitsLabelFixesTheXPrefix)
{
    const struct {
        UINT cp;
        const char* label;
        char prefix;
    } cases[] = {{1252, "kHz", 'k'}, {1252, "~s", '\xB5'}, {1251, "~s", 'u'}, {1252, "", '\0'}};
    for (const auto& c : cases) {
        orlex::SetACP(c.cp);
        ScaledMap map;
        map.SetUnits("s", "V", 1, 1, true, nullptr);
        map.SetUnitsLabel(c.label, 2.5);
        map.ScaleNum(5e-3, 1000);
        EXPECT_EQ(map.GetXPrefix(), c.prefix) << c.label;
        EXPECT_DOUBLE_EQ(map.GetXFactor(), 2.5);
        EXPECT_EQ(map.GetEngScale(), -1);
    }
    // A null label is set but not used: the prefix comes from the scale again.
    ScaledMap map;
    map.SetUnits("s", "V", 1, 1, true, nullptr);
    map.SetUnitsLabel(nullptr, 2.5);
    map.ScaleNum(5e-3, 1000);
    EXPECT_EQ(map.GetXPrefix(), 'm');
    EXPECT_DOUBLE_EQ(map.GetXFactor(), 1e3);
}

TEST_F(MapNumbers, ScaleInfoLabelsAndFactors)
{
    ScaledMap map;
    map.SetUnits("m", "V", 1, 1, true, nullptr);
    map.SetInverse(1, 0);
    map.SetPower(2, 7);
    map.ScaleNum(1e-3, 1000);
    map.ScaleNum(2000, 1100);
    SCALE_INFO info = map.GetScaleInfo();
    EXPECT_STREQ(info.XLabel, "/mm\xB2");
    EXPECT_STREQ(info.YLabel, "kV");
    EXPECT_DOUBLE_EQ(info.XFactor, 1e3);
    EXPECT_DOUBLE_EQ(info.YFactor, 1e-3);

    map.SetPower(3, 2);
    map.SetInverse(0, 1);
    info = map.GetScaleInfo();
    EXPECT_STREQ(info.XLabel, "mm\xB3");
    EXPECT_STREQ(info.YLabel, "/kV\xB2");

    // Labels are cut to their 10 bytes; units to their 30.
    map.SetUnits("abcdefghijklmnopqrstuvwxyz0123456789", "V", 1, 1, true, nullptr);
    EXPECT_EQ(std::strlen(map.GetDomainUnit()), 29u);
    info = map.GetScaleInfo();
    EXPECT_STREQ(info.XLabel, "mabcdefgh");
    char wide[64];
    EXPECT_EQ(map.FormatUnitLabel(1000, wide, sizeof wide), 1 + 29 + 1);
}

TEST_F(MapNumbers, SetUnitsKeepsTheOldDomainAndSkipsNulls)
{
    MapClass map;
    map.SetUnits("m", "V", 2, 3, false, nullptr);
    char old[30];
    std::memset(old, 'x', sizeof old);
    map.SetUnits("s", nullptr, 1, 1, true, old);
    EXPECT_STREQ(old, "m");
    EXPECT_STREQ(map.GetDomainUnit(), "s");
    EXPECT_STREQ(map.GetRangeUnit(), "V");
    EXPECT_EQ(map.XExponent, 1.0);
    EXPECT_EQ(map.ScaleUnits, 1);
    map.SetUnits("Hz");
    EXPECT_STREQ(map.GetDomainUnit(), "Hz");
    map.SetUnits(nullptr);
    EXPECT_STREQ(map.GetDomainUnit(), "Hz");
}

} // namespace
