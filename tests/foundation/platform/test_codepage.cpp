// The ANSI code page switch and the 8-bit <-> UTF-8 conversions.
#include <gtest/gtest.h>

#include <string>

#include "foundation/platform/codepage.h"

namespace {

// Restores the default code page after each case.
class CodePage : public ::testing::Test {
protected:
    void TearDown() override { orlex::SetACP(1252); }
};

TEST_F(CodePage, DefaultsTo1252AndFollowsSetACP)
{
    EXPECT_EQ(GetACP(), 1252u);
    orlex::SetACP(1251);
    EXPECT_EQ(GetACP(), 1251u);
    orlex::SetACP(932);
    EXPECT_EQ(GetACP(), 932u);
}

struct ByteCase {
    UINT cp;
    std::string ansi;
    std::string utf8;
};

// Both ways for bytes that exist in the code page.
TEST_F(CodePage, RoundTripsDefinedText)
{
    const ByteCase cases[] = {
        {1252, "plain ASCII 123", "plain ASCII 123"},
        {1252, "2.5 \xB5m", "2.5 \xC2\xB5m"},          // micro sign
        {1252, "10 \xBA", "10 \xC2\xBA"},              // masculine ordinal (one-byte degree unit)
        {1252, "m\xB2 m\xB3", "m\xC2\xB2 m\xC2\xB3"},  // superscripts two and three
        {1252, "45\xB0", "45\xC2\xB0"},                // degree sign
        {1252, "\x80\x99", "\xE2\x82\xAC\xE2\x84\xA2"}, // euro, trade mark
        {1251, "\xC0\xE1", "\xD0\x90\xD0\xB1"},        // Cyrillic A, be
        {932, "\x82\xA0", "\xE3\x81\x82"},             // hiragana a (two bytes)
        {65001, "\xC2\xB5", "\xC2\xB5"},
    };
    for (const ByteCase& c : cases) {
        orlex::SetACP(c.cp);
        EXPECT_EQ(orlex::AnsiToUtf8(c.ansi.c_str()), c.utf8) << c.cp << " " << c.ansi;
        EXPECT_EQ(orlex::Utf8ToAnsi(c.utf8), c.ansi) << c.cp << " " << c.utf8;
    }
}

TEST_F(CodePage, MissingCharactersBecomeQuestionMarks)
{
    const ByteCase cases[] = {
        {1252, "a?b", "a\xD0\x90" "b"},            // Cyrillic A not in 1252
        {1251, "?", "\xC3\xA9"},                    // e acute not in 1251
        {1252, "x?y", "x\xFFy"},                    // malformed byte
        {1252, "x??", "x\xE2\x82"},                 // cut sequence: one mark per byte
    };
    for (const ByteCase& c : cases) {
        orlex::SetACP(c.cp);
        EXPECT_EQ(orlex::Utf8ToAnsi(c.utf8), c.ansi) << c.cp << " " << c.utf8;
    }
    orlex::SetACP(1252);
    // Emoji (4 bytes) is one character: one mark; the euro sign converts.
    EXPECT_EQ(orlex::Utf8ToAnsi("\xF0\x9F\x98\x80\xE2\x82\xAC"), "?\x80");
}

TEST_F(CodePage, UndefinedBytesAndLengths)
{
    orlex::SetACP(1252);
    // The holes of 1252 pass through as C1 controls and come back.
    EXPECT_EQ(orlex::AnsiToUtf8("\x81"), "\xC2\x81");
    EXPECT_EQ(orlex::Utf8ToAnsi("\xC2\x81"), "\x81");
    // Explicit length stops early and may include NULs.
    EXPECT_EQ(orlex::AnsiToUtf8("\xB5\xB5\xB5", 1), "\xC2\xB5");
    EXPECT_EQ(orlex::AnsiToUtf8("a\0b", 3), std::string("a\0b", 3));
    EXPECT_EQ(orlex::AnsiToUtf8(nullptr), "");
    EXPECT_EQ(orlex::AnsiToUtf8("", 0), "");
    // A cut double-byte character of 932 gives the replacement character.
    orlex::SetACP(932);
    EXPECT_EQ(orlex::AnsiToUtf8("a\x82"), "a\xEF\xBF\xBD");
    // An unknown code page keeps ASCII and replaces the rest.
    orlex::SetACP(4711);
    EXPECT_EQ(GetACP(), 4711u);
    EXPECT_EQ(orlex::AnsiToUtf8("a\xB5"), "a\xEF\xBF\xBD");
    EXPECT_EQ(orlex::Utf8ToAnsi("a\xC2\xB5"), "a?");
}

TEST_F(CodePage, LongTextConvertsWhole)
{
    orlex::SetACP(1252);
    std::string ansi(100000, '\xB5');
    const std::string utf8 = orlex::AnsiToUtf8(ansi.c_str(), int(ansi.size()));
    ASSERT_EQ(utf8.size(), 200000u);
    EXPECT_EQ(orlex::Utf8ToAnsi(utf8), ansi);
}

} // namespace
