// Engineering notation of the free functions: prefixes, the guards, the code pages, and
// bounded writes whatever the arguments.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <string>

#include "foundation/Convert2Eng.h"
#include "foundation/platform/codepage.h"

namespace {

class Convert2EngTest : public ::testing::Test {
protected:
    void TearDown() override { orlex::SetACP(1252); }
};

struct EngCase {
    UINT codePage;
    double value;
    const char* unit;
    int decimals;
    int leadingBlanks;
    const char* expected;
};

const EngCase kFreeCases[] = {
    // worked examples, unit "V", 2 decimals
    {1252, 1500, "V", 2, 0, "1.50 kV"},
    {1252, 999.9999999, "V", 2, 0, "1.00 kV"},
    {1252, 0.5, "V", 2, 0, "500.00 mV"},
    {1252, 12.5, "V", 2, 0, "12.50 V"},
    {1252, 0.0, "V", 2, 0, "0.00 "},
    {1252, 1e20, "V", 2, 0, "100.00 EV"},
    {1252, 1e21, "V", 2, 0, "1000000000000000000000.00 V"},
    // metres: never below picometres, two decimals at most there
    {1252, 1.5e-12, "m", 3, 0, "1.50 pm"},
    {1252, 1e-15, "m", 3, 0, "0.00 pm"},
    {1252, 1e-300, "m", 3, 0, "0.00 pm"},
    {1252, 1.5e-12, "m", 1, 0, "1.5 pm"},
    {1252, 1.5e-9, "m", 3, 0, "1.500 nm"},
    {1252, 1.5e-12, "mm", 3, 0, "1.500 pmm"},
    {1252, 1.5e-15, "V", 3, 0, "1.500 fV"},
    // the 0.0001 guard on both sides of a prefix
    {1252, 999.75, "V", 2, 0, "999.75 V"},
    {1252, 999.8, "V", 4, 0, "0.9998 kV"},
    {1252, 0.99999, "V", 5, 0, "0.99999 V"},
    {1252, 0.9997, "V", 2, 0, "999.70 mV"},
    // ends of the table: k = 6 is a prefix, k = 7 and k = -7 print unscaled
    {1252, 9.99e20, "V", 2, 0, "999.00 EV"},
    {1252, 1e-18, "V", 2, 0, "1.00 aV"},
    {1252, 1e-19, "V", 2, 0, "0.00 V"},
    // negative values take the prefix of their magnitude
    {1252, -1500, "V", 2, 0, "-1.50 kV"},
    {1252, -0.5, "V", 1, 0, "-500.0 mV"},
    {1252, -2e-12, "m", 3, 0, "-2.00 pm"},
    // micro prefix and the one-byte degree unit by code page
    {1252, 2.5e-6, "V", 1, 0, "2.5 \xB5V"},
    {1251, 2.5e-6, "V", 1, 0, "2.5 uV"},
    {932, 2.5e-6, "V", 1, 0, "2.5 uV"},
    {1251, 45, "\xBA", 1, 0, "45.0 deg"},
    {1251, 4500, "\xBA", 1, 0, "4.5 kdeg"},
    {1252, 45, "\xBA", 1, 0, "45.0 \xBA"},
    {1251, 45, "\xBA\xBA", 0, 0, "45 \xBA\xBA"},
    // leading blanks, up to ten
    {1252, 1500, "V", 2, 3, "   1.50 kV"},
    {1252, 0.0, "V", 1, 2, "  0.0 "},
    {1252, 1500, "V", 2, 10, "          1.50 kV"},
    {1252, 1500, "V", 2, 500, "          1.50 kV"},
    {1252, 1500, "V", 2, -4, "1.50 kV"},
    // no unit
    {1252, 1500, nullptr, 2, 0, "1.50 k"},
    {1252, 1500, "", 0, 0, "2 k"},
};

TEST_F(Convert2EngTest, FreeFormsWriteTheTable)
{
    for (const EngCase& c : kFreeCases) {
        orlex::SetACP(c.codePage);
        char dest[CONVERT2ENG_MAX];
        const int n = Convert2Eng(dest, c.value, c.unit, c.decimals, c.leadingBlanks);
        EXPECT_STREQ(dest, c.expected) << c.value << " " << (c.unit ? c.unit : "(null)");
        EXPECT_EQ(n, int(std::strlen(c.expected))) << c.value;
        // The 4-argument form gives the same text in its own buffer.
        EXPECT_STREQ(Convert2Eng(c.value, c.unit, c.decimals, c.leadingBlanks), c.expected);
    }
}

TEST_F(Convert2EngTest, StaticResultLivesUntilTheNextCall)
{
    char* first = Convert2Eng(1500, "V", 2, 0);
    EXPECT_STREQ(first, "1.50 kV");
    char* second = Convert2Eng(0.5, "V", 2, 0);
    EXPECT_EQ(first, second);
    EXPECT_STREQ(first, "500.00 mV");
}

TEST_F(Convert2EngTest, NonFiniteValuesPrintUnscaled)
{
    EXPECT_STREQ(Convert2Eng(INFINITY, "V", 2, 0), "inf V");
    EXPECT_STREQ(Convert2Eng(-INFINITY, "V", 2, 0), "-inf V");
    EXPECT_STREQ(Convert2Eng(NAN, "V", 2, 0), "nan V");
}

// Bytes past the room of the text stay as they were, whatever the arguments.
TEST_F(Convert2EngTest, HugeArgumentsStayInsideTheRoom)
{
    struct Huge {
        double value;
        const char* unit;
        int decimals;
        int leadingBlanks;
    };
    const std::string longUnit(400, 'U');
    const Huge cases[] = {
        {1.0 / 3.0, "V", 100000, 0},
        {1.0 / 3.0, "V", INT_MAX, INT_MAX},
        {1e300, "V", 50, 10},        // 301 digits unscaled
        {-1.7e308, "m", 2, 10},
        {1500, longUnit.c_str(), 2, 10},
        {0.0, "V", INT_MAX, 10},
    };
    for (const Huge& c : cases) {
        char buf[CONVERT2ENG_MAX + 64];
        std::memset(buf, 0x55, sizeof buf);
        const int n = Convert2Eng(buf, c.value, c.unit, c.decimals, c.leadingBlanks);
        EXPECT_EQ(n, CONVERT2ENG_MAX - 1) << c.value << " " << c.decimals;
        EXPECT_EQ(buf[CONVERT2ENG_MAX - 1], '\0');
        for (int i = CONVERT2ENG_MAX; i < int(sizeof buf); ++i)
            ASSERT_EQ(buf[i], 0x55) << "byte " << i << " written";
        EXPECT_EQ(std::strlen(Convert2Eng(c.value, c.unit, c.decimals, c.leadingBlanks)),
                  size_t(CONVERT2ENG_MAX - 1));
    }
    // The explicit-room form: the digits cut at the room are those of the full text.
    char small[12];
    std::memset(small, 0x55, sizeof small);
    EXPECT_EQ(orlex::Convert2Eng(small, 8, 1.0 / 3.0, "V", 30, 2), 7);
    EXPECT_STREQ(small, "  333.3"); // 333.33333333 mV, cut
    EXPECT_EQ(small[8], 0x55);
    EXPECT_EQ(orlex::Convert2Eng(small, 0, 1.0, "V", 2, 0), 0);
    EXPECT_EQ(small[0], ' ');
    EXPECT_EQ(orlex::Convert2Eng(small, 1, 1.0, "V", 2, 0), 0);
    EXPECT_EQ(small[0], '\0');
}

} // namespace
