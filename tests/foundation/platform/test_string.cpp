#include <gtest/gtest.h>

#include <cstdarg>
#include <functional>
#include <string>

#include "foundation/platform/afxstr.h"

namespace {

// One edit applied to a start text, and the text and result it must leave.
struct EditCase {
    const char* name;
    const char* start;
    std::function<int(CString&)> edit;
    const char* expectText;
    int expectResult;
};

class StringEdit : public ::testing::TestWithParam<EditCase> {};

TEST_P(StringEdit, LeavesTextAndResult)
{
    const EditCase& c = GetParam();
    CString s(c.start);
    const int r = c.edit(s);
    EXPECT_STREQ(s.GetString(), c.expectText);
    EXPECT_EQ(s.GetLength(), static_cast<int>(std::string(c.expectText).size()));
    EXPECT_EQ(r, c.expectResult);
}

const std::string k600q(600, 'q');

// File names of exports refuse nine characters, and the plot replaces ':' '>' '<' by '-'.
INSTANTIATE_TEST_SUITE_P(
    Edits, StringEdit,
    ::testing::Values(
        EditCase{"ReplaceChar", "a:b>c<d", [](CString& s) { return s.Replace(':', '-') + s.Replace('>', '-') + s.Replace('<', '-'); }, "a-b-c-d", 3},
        EditCase{"ReplaceSameCharCountsNothing", "aaa", [](CString& s) { return s.Replace('a', 'a'); }, "aaa", 0},
        EditCase{"ReplaceTextGrows", "x--y--", [](CString& s) { return s.Replace("--", "+++"); }, "x+++y+++", 2},
        EditCase{"ReplaceTextShrinksToEmpty", "ababab", [](CString& s) { return s.Replace("ab", ""); }, "", 3},
        EditCase{"ReplaceNoOverlap", "aaaa", [](CString& s) { return s.Replace("aa", "b"); }, "bb", 2},
        EditCase{"ReplaceEmptyPatternIsNoop", "abc", [](CString& s) { return s.Replace("", "x"); }, "abc", 0},
        EditCase{"Remove", "a,b,,c", [](CString& s) { return s.Remove(','); }, "abc", 3},
        EditCase{"InsertCharMiddle", "ac", [](CString& s) { return s.Insert(1, 'b'); }, "abc", 3},
        EditCase{"InsertPastEndAppends", "ab", [](CString& s) { return s.Insert(99, "cd"); }, "abcd", 4},
        EditCase{"InsertNegativePrepends", "b", [](CString& s) { return s.Insert(-3, 'a'); }, "ab", 2},
        EditCase{"DeleteClamped", "abcdef", [](CString& s) { return s.Delete(4, 10); }, "abcd", 4},
        EditCase{"DeletePastEnd", "abc", [](CString& s) { return s.Delete(5, 1); }, "abc", 3},
        EditCase{"TrimWhite", " \t a b \r\n", [](CString& s) { s.Trim(); return s.GetLength(); }, "a b", 3},
        EditCase{"TrimLeftSet", "\t,x,", [](CString& s) { s.TrimLeft("\t,"); return 0; }, "x,", 0},
        EditCase{"TrimRightChar", "x...", [](CString& s) { s.TrimRight('.'); return 0; }, "x", 0},
        EditCase{"TrimAllAway", "   ", [](CString& s) { s.TrimRight(); return s.GetLength(); }, "", 0},
        EditCase{"UpperAsciiOnly", "aZ\xe9-1", [](CString& s) { s.MakeUpper(); return 0; }, "AZ\xe9-1", 0},
        EditCase{"LowerAsciiOnly", "AbC\xc9", [](CString& s) { s.MakeLower(); return 0; }, "abc\xc9", 0},
        EditCase{"Reverse", "abc", [](CString& s) { s.MakeReverse(); return 0; }, "cba", 0},
        EditCase{"SetAtOutOfRangeIgnored", "ab", [](CString& s) { s.SetAt(2, 'x'); s.SetAt(-1, 'x'); s.SetAt(0, 'z'); return 0; }, "zb", 0},
        EditCase{"GetBufferRelease", "ab", [](CString& s) { char* p = s.GetBuffer(160); std::snprintf(p, 161, "%s", "hello"); s.ReleaseBuffer(); return s.GetLength(); }, "hello", 5},
        EditCase{"GetBufferKeepsText", "abc", [](CString& s) { char* p = s.GetBuffer(10); p[3] = 'd'; p[4] = 0; s.ReleaseBuffer(); return 0; }, "abcd", 0},
        EditCase{"BufferSetLengthThenRelease", "", [](CString& s) { char* p = s.GetBufferSetLength(3); p[0] = 'x'; p[1] = 'y'; p[2] = 'z'; s.ReleaseBuffer(2); return 0; }, "xy", 0},
        EditCase{"AppendFormat", "n=", [](CString& s) { s.AppendFormat("%d", 42); return 0; }, "n=42", 0},
        EditCase{"FormatReplacesWhole", "old", [](CString& s) { s.Format("Channel %d of %d", 2, 4); return 0; }, "Channel 2 of 4", 0},
        EditCase{"FormatPrecision", "", [](CString& s) { s.Format("%0.2f|%.3f|%.*f %s", 1.005, 2.0, 1, 3.14159, "m"); return 0; }, "1.00|2.000|3.1 m", 0},
        EditCase{"FormatTakesStringsAsText", "abc", [](CString& s) { const CString t(s); s.Format("[%s|%s|%s]", t, std::string("std"), "lit"); return 0; }, "[abc|std|lit]", 0},
        EditCase{"FormatOwnText", "abc", [](CString& s) { s.Format("%s!", s); return 0; }, "abc!", 0},
        EditCase{"AppendFormatOwnLongText", "", [](CString& s) { s = CString('q', 300); s.AppendFormat("%s", s); return s.GetLength(); }, k600q.c_str(), 600},
        EditCase{"AppendFormatOwnText", "x", [](CString& s) { s.AppendFormat("%s%c", CString(s), 'y'); return 0; }, "xxy", 0},
        EditCase{"Concatenation", "title", [](CString& s) { s = " " + s + " "; s += 'x'; s += "yz"; return 0; }, " title xyz", 0}),
    [](const auto& info) { return std::string(info.param.name); });

// Searches and substrings on a fixed text. Result of -1 means "not found".
struct FindCase {
    const char* name;
    std::function<int(const CString&)> find;
    int expect;
};

class StringFind : public ::testing::TestWithParam<FindCase> {};

TEST_P(StringFind, Index)
{
    const CString s("ab\tcd,ef\ngh,");
    EXPECT_EQ(GetParam().find(s), GetParam().expect);
}

INSTANTIATE_TEST_SUITE_P(
    Finds, StringFind,
    ::testing::Values(
        FindCase{"NewLine", [](const CString& s) { return s.Find('\n'); }, 8},
        FindCase{"CharFromStart", [](const CString& s) { return s.Find(',', 6); }, 11},
        FindCase{"CharStartPastEnd", [](const CString& s) { return s.Find('a', 40); }, -1},
        FindCase{"CharNegativeStart", [](const CString& s) { return s.Find('a', -5); }, 0},
        FindCase{"Sub", [](const CString& s) { return s.Find("ef"); }, 6},
        FindCase{"SubMissing", [](const CString& s) { return s.Find("zz"); }, -1},
        FindCase{"SubAtEnd", [](const CString& s) { return s.Find("", 12); }, 12},
        FindCase{"Reverse", [](const CString& s) { return s.ReverseFind(','); }, 11},
        FindCase{"ReverseMissing", [](const CString& s) { return s.ReverseFind('z'); }, -1},
        FindCase{"OneOfSeparators", [](const CString& s) { return s.FindOneOf("\t,"); }, 2},
        FindCase{"OneOfFileNameChars", [](const CString& s) { return s.FindOneOf("\\/:*?\"<>|"); }, -1},
        FindCase{"OneOfEmptySet", [](const CString& s) { return s.FindOneOf(""); }, -1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(StringSubstrings, ClampToTheText)
{
    const CString s("abcdef");
    struct {
        CString got;
        const char* want;
    } rows[] = {
        {s.Mid(2), "cdef"},     {s.Mid(2, 2), "cd"},   {s.Mid(-1, 2), "ab"},  {s.Mid(4, 99), "ef"},
        {s.Mid(9), ""},         {s.Mid(1, -4), ""},    {s.Left(3), "abc"},    {s.Left(99), "abcdef"},
        {s.Left(-1), ""},       {s.Right(2), "ef"},    {s.Right(99), "abcdef"}, {s.Right(0), ""},
        {s.SpanIncluding("cba"), "abc"}, {s.SpanExcluding("d"), "abc"},
    };
    for (const auto& r : rows)
        EXPECT_STREQ(r.got, r.want);
}

TEST(StringCompare, OrderAndCase)
{
    struct {
        const char* a;
        const char* b;
        int cmp;
        int nocase;
    } rows[] = {
        {"abc", "abc", 0, 0},  {"abc", "ABC", 1, 0},  {"ab", "abc", -1, -1},
        {"b", "a", 1, 1},      {"", "", 0, 0},        {"\xe9", "e", 1, 1},  // bytes compare unsigned
        {"Zeta", "alpha", -1, 1},
    };
    for (const auto& r : rows) {
        const CString s(r.a);
        EXPECT_EQ(s.Compare(r.b), r.cmp) << r.a << " vs " << r.b;
        EXPECT_EQ(s.CompareNoCase(r.b), r.nocase) << r.a << " vs " << r.b;
        EXPECT_EQ(s == r.b, r.cmp == 0);
        EXPECT_EQ(r.b == s, r.cmp == 0);
        EXPECT_EQ(s != CString(r.b), r.cmp != 0);
        EXPECT_EQ(s < r.b, r.cmp < 0);
        EXPECT_EQ(r.b > s, r.cmp < 0);
        EXPECT_EQ(s >= CString(r.b), r.cmp >= 0);
    }
}

TEST(StringConstruct, Forms)
{
    EXPECT_STREQ(CString(nullptr), "");
    EXPECT_STREQ(CString('x', 3), "xxx");
    EXPECT_STREQ(CString('x', 0), "");
    EXPECT_EQ(CString("a\0b", 3).GetLength(), 3);
    EXPECT_TRUE(CString().IsEmpty());
    CString s("abc");
    s = static_cast<const char*>(s) + 1;  // assignment from its own tail
    EXPECT_STREQ(s, "bc");
    EXPECT_EQ(s[0], 'b');
    EXPECT_EQ(s.GetAt(5), '\0');
    s.Empty();
    EXPECT_TRUE(s.IsEmpty());
}

TEST(StringFormat, LongOutputIsComplete)
{
    CString s;
    const std::string big(1000, 'q');
    s.Format("[%s]%d", big.c_str(), 7);
    EXPECT_EQ(s.GetLength(), 1003);
    EXPECT_EQ(s.Right(2), CString("]7"));
    EXPECT_EQ(s.GetAt(0), '[');
}

TEST(StringTokenize, SkipsNeighbouringDelimiters)
{
    const CString s(",a,,bc,");
    int pos = 0;
    std::string got;
    for (CString t = s.Tokenize(",", pos); pos != -1; t = s.Tokenize(",", pos))
        got += std::string(t) + "|";
    EXPECT_EQ(got, "a|bc|");
}

}  // namespace
