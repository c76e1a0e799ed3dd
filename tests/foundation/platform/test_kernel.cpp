// Kernel calls: date and time pictures, files by handle, the absent registry, wide-character
// conversions in the code page, and the resource exception.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

#include "foundation/platform/afxobj.h"
#include "foundation/platform/codepage.h"
#include "foundation/platform/kernel.h"
#include "foundation/platform/process.h"

namespace {

// Monday 23 November 2026, 14:05:09.
const SYSTEMTIME kAfternoon{2026, 11, 1, 23, 14, 5, 9, 250};
// Sunday 1 February 2004, 00:07:30 (wDayOfWeek deliberately wrong: it is worked out).
const SYSTEMTIME kMidnight{2004, 2, 5, 1, 0, 7, 30, 0};

std::string Date(const SYSTEMTIME& t, const char* picture, DWORD flags = 0)
{
    char buf[128];
    const int n = GetDateFormatA(LOCALE_USER_DEFAULT, flags, &t, picture, buf, sizeof buf);
    return n ? std::string(buf, static_cast<size_t>(n - 1)) : "<fail>";
}

std::string Time(const SYSTEMTIME& t, const char* picture, DWORD flags = 0)
{
    char buf[128];
    const int n = GetTimeFormatA(LOCALE_USER_DEFAULT, flags, &t, picture, buf, sizeof buf);
    return n ? std::string(buf, static_cast<size_t>(n - 1)) : "<fail>";
}

TEST(KernelTime, DatePictures)
{
    struct Case { const SYSTEMTIME* t; const char* picture; DWORD flags; const char* want; } cases[] = {
        {&kAfternoon, "ddd MMM dd yyyy", 0, "Mon Nov 23 2026"},  // the plot's print header
        {&kMidnight, "ddd MMM dd yyyy", 0, "Sun Feb 01 2004"},
        {&kMidnight, "d/M/y", 0, "1/2/4"},
        {&kMidnight, "dddd, MMMM d, yy", 0, "Sunday, February 1, 04"},
        {&kAfternoon, "'Day' d 'of' MMMM", 0, "Day 23 of November"},
        {&kAfternoon, "dd''MM", 0, "23'11"},
        {&kAfternoon, "yyyy-MM-dd (x)", 0, "2026-11-23 (x)"},
        {&kAfternoon, nullptr, 0, "11/23/2026"},
        {&kAfternoon, nullptr, DATE_LONGDATE, "Monday, November 23, 2026"},
    };
    for (const Case& c : cases) EXPECT_EQ(Date(*c.t, c.picture, c.flags), c.want) << (c.picture ? c.picture : "(default)");
}

TEST(KernelTime, TimePictures)
{
    struct Case { const SYSTEMTIME* t; const char* picture; DWORD flags; const char* want; } cases[] = {
        {&kAfternoon, "hh':'mm':'ss tt", 0, "02:05:09 PM"},  // the plot's print header
        {&kMidnight, "hh':'mm':'ss tt", 0, "12:07:30 AM"},
        {&kMidnight, "H:m:s t", 0, "0:7:30 A"},
        {&kAfternoon, "HH.mm", 0, "14.05"},
        {&kAfternoon, "h:mm tt", TIME_FORCE24HOURFORMAT, "14:05 PM"},
        {&kAfternoon, nullptr, 0, "2:05:09 PM"},
        {&kAfternoon, nullptr, TIME_NOSECONDS, "2:05 PM"},
    };
    for (const Case& c : cases) EXPECT_EQ(Time(*c.t, c.picture, c.flags), c.want) << (c.picture ? c.picture : "(default)");
}

TEST(KernelTime, CountsBuffersAndBadDates)
{
    // Size 0 asks for the size, with the NUL; a buffer one short is refused untouched.
    EXPECT_EQ(GetDateFormatA(0, 0, &kAfternoon, "yyyy", nullptr, 0), 5);
    char buf[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(GetDateFormatA(0, 0, &kAfternoon, "yyyy", buf, 4), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(buf[0], 'x');
    SYSTEMTIME bad = kAfternoon;
    bad.wMonth = 2, bad.wDay = 29, bad.wYear = 2025;  // not a leap year
    EXPECT_EQ(GetDateFormatA(0, 0, &bad, "d", buf, 4), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    bad.wYear = 2024;
    EXPECT_NE(GetDateFormatA(0, 0, &bad, "d", buf, 4), 0);
    bad.wHour = 24;
    EXPECT_EQ(GetTimeFormatA(0, 0, &bad, "H", buf, 4), 0);
    // Now, local: a plausible date that formats.
    SYSTEMTIME now{};
    GetLocalTime(&now);
    EXPECT_GE(now.wYear, 2024);
    EXPECT_NE(GetDateFormatA(0, 0, nullptr, "ddd MMM dd yyyy", nullptr, 0), 0);
}

TEST(KernelFiles, WriteReadSeekAndClose)
{
    char path[] = "/tmp/orlex-kernel-XXXXXX";
    const int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    // The BMP writer's call: write access, no sharing, always created, sequential.
    HANDLE h = CreateFileA(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0x8000080, nullptr);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    DWORD done = 99;
    EXPECT_TRUE(WriteFile(h, "BM\x36\0\0\0", 6, &done, nullptr));
    EXPECT_EQ(done, 6u);
    EXPECT_TRUE(CloseHandle(h));
    EXPECT_FALSE(CloseHandle(h));  // closed once only
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);

    h = CreateFileA(path, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    ASSERT_NE(h, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetFileSize(h, nullptr), 6u);
    EXPECT_EQ(SetFilePointer(h, 1, nullptr, FILE_BEGIN), 1u);
    char got[8] = {};
    EXPECT_TRUE(ReadFile(h, got, 8, &done, nullptr));  // past the end: success, fewer bytes
    EXPECT_EQ(done, 5u);
    EXPECT_EQ(std::memcmp(got, "M\x36\0\0\0", 5), 0);
    EXPECT_FALSE(WriteFile(h, "x", 1, &done, nullptr));  // opened for reading
    EXPECT_TRUE(CloseHandle(h));
    std::remove(path);

    struct Refusal { const char* name; DWORD disposition; DWORD error; } refusals[] = {
        {"/nonexistent-dir/x.bmp", CREATE_ALWAYS, ERROR_FILE_NOT_FOUND},
        {"/tmp/orlex-kernel-missing", OPEN_EXISTING, ERROR_FILE_NOT_FOUND},
        {"", CREATE_ALWAYS, ERROR_FILE_NOT_FOUND},
        {"/tmp/orlex-kernel-x", 99, ERROR_INVALID_PARAMETER},
    };
    for (const Refusal& r : refusals) {
        EXPECT_EQ(CreateFileA(r.name, GENERIC_WRITE, 0, nullptr, r.disposition, 0, nullptr), INVALID_HANDLE_VALUE) << r.name;
        EXPECT_EQ(GetLastError(), r.error) << r.name;
    }
    // Handles never made are refused, not taken for some descriptor.
    for (HANDLE bogus : {static_cast<HANDLE>(nullptr), INVALID_HANDLE_VALUE, reinterpret_cast<HANDLE>(LONG_PTR{3})}) {
        EXPECT_FALSE(WriteFile(bogus, "x", 1, &done, nullptr));
        EXPECT_FALSE(CloseHandle(bogus));
    }
}

TEST(KernelRegistry, NoKeyIsEverFound)
{
    HKEY key = reinterpret_cast<HKEY>(LONG_PTR{1});
    EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_QUERY_VALUE, &key),
              static_cast<LONG>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(key, nullptr);
    DWORD type = 0, size = 4;
    BYTE data[4];
    EXPECT_NE(RegQueryValueExA(key, "WheelScrollLines", nullptr, &type, data, &size), static_cast<LONG>(ERROR_SUCCESS));
}

struct WideCase {
    UINT acp;
    const char* ansi;
    std::u16string wide;
};

TEST(KernelCodePage, WideConversionsGoThroughTheCodePage)
{
    const WideCase cases[] = {
        {1252, "5 \xB5m at 20\xB0", u"5 \u00B5m at 20\u00B0"},
        {1252, "x\xB2 + y\xB3 \x80", u"x\u00B2 + y\u00B3 \u20AC"},
        {1251, "\xC0\xE1", u"\u0410\u0431"},
        {65001, "\xC2\xB5m \xF0\x9F\x93\x88", u"\u00B5m \U0001F4C8"},
    };
    for (const WideCase& c : cases) {
        orlex::SetACP(c.acp);
        WCHAR w[32];
        const int n = MultiByteToWideChar(CP_THREAD_ACP, 0, c.ansi, -1, w, 32);
        ASSERT_EQ(n, static_cast<int>(c.wide.size()) + 1) << c.acp;  // with the NUL
        EXPECT_EQ(std::u16string(w, static_cast<size_t>(n - 1)), c.wide) << c.acp;
        EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, c.ansi, -1, nullptr, 0), n);
        char back[64];
        const int m = WideCharToMultiByte(CP_ACP, 0, w, -1, back, 64, nullptr, nullptr);
        EXPECT_EQ(std::string(back, static_cast<size_t>(m - 1)), c.ansi) << c.acp;
    }
    orlex::SetACP(1252);
    // What the code page lacks: '?' (or the caller's default), and usedDefault tells.
    const WCHAR text[] = u"a\u0410?";
    char out[8];
    BOOL used = FALSE;
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, text, 3, out, 8, nullptr, &used), 3);
    EXPECT_EQ(std::string(out, 3), "a??");
    EXPECT_TRUE(used);
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, text, 3, out, 8, "#", &used), 3);
    EXPECT_EQ(std::string(out, 3), "a#?");
    const WCHAR plain[] = u"a?";
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, plain, 2, out, 8, "#", &used), 2);
    EXPECT_FALSE(used);
    // Refusals: a short buffer, a code page that isn't the process's.
    WCHAR tiny[2];
    EXPECT_EQ(MultiByteToWideChar(CP_ACP, 0, "abc", 3, tiny, 2), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(MultiByteToWideChar(437, 0, "abc", 3, tiny, 2), 0);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST(KernelCodePage, MultibyteCompareIsByUnsignedBytes)
{
    const auto u = [](const char* s) { return reinterpret_cast<const unsigned char*>(s); };
    EXPECT_EQ(_mbscmp(u("Arial"), u("Arial")), 0);
    EXPECT_LT(_mbscmp(u("Arial"), u("Arial Black")), 0);
    EXPECT_GT(_mbscmp(u("\xB5m"), u("zm")), 0);  // 0xB5 sorts after 'z', unsigned
    EXPECT_LT(_mbscmp(u("arial"), u("b")), 0);
}

TEST(KernelExceptions, ResourceExceptionIsThrownByPointerAndKnowsItsClass)
{
    try {
        AfxThrowResourceException();
    } catch (CException* e) {
        EXPECT_TRUE(e->IsKindOf(RUNTIME_CLASS(CResourceException)));
        char text[64];
        EXPECT_TRUE(e->GetErrorMessage(text, sizeof text));
        EXPECT_STREQ(text, "A required resource was unavailable.");
        e->Delete();
        return;
    }
    FAIL() << "nothing was thrown";
}

}  // namespace
