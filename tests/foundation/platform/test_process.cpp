// Process services: module names and handles, path splitting, the tick clock, sleeping,
// the debug output and the version record.
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

namespace {

std::string Executable() {
    char buf[PATH_MAX];
    const ssize_t n = readlink("/proc/self/exe", buf, sizeof buf);
    return n > 0 ? std::string(buf, static_cast<size_t>(n)) : std::string();
}

TEST(Paths, SplitPathAsThePlatform) {
    struct Case {
        const char* path;
        const char* drive;
        const char* dir;
        const char* fname;
        const char* ext;
    };
    const Case cases[] = {
        {"C:\\Program Files\\Scan\\host.exe", "C:", "\\Program Files\\Scan\\", "host", ".exe"},
        {"/opt/scan/bin/host", "", "/opt/scan/bin/", "host", ""},
        {"/a.b/c", "", "/a.b/", "c", ""},
        {"archive.tar.gz", "", "", "archive.tar", ".gz"},
        {".hidden", "", "", "", ".hidden"},
        {"dir/", "", "dir/", "", ""},
        {"mixed\\sep/x.y", "", "mixed\\sep/", "x", ".y"},
        {"", "", "", "", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        char drive[_MAX_DRIVE], dir[_MAX_DIR], fname[_MAX_FNAME], ext[_MAX_EXT];
        _splitpath(c.path, drive, dir, fname, ext);
        EXPECT_STREQ(drive, c.drive);
        EXPECT_STREQ(dir, c.dir);
        EXPECT_STREQ(fname, c.fname);
        EXPECT_STREQ(ext, c.ext);
    }
}

TEST(Paths, SplitPathNeverOverrunsItsBuffers) {
    const std::string longName = "/d/" + std::string(400, 'n') + "." + std::string(300, 'e');
    char fname[_MAX_FNAME + 8], ext[_MAX_EXT + 8];
    std::memset(fname, '#', sizeof fname);
    std::memset(ext, '#', sizeof ext);
    _splitpath(longName.c_str(), nullptr, nullptr, fname, ext);
    EXPECT_EQ(std::strlen(fname), static_cast<size_t>(_MAX_FNAME - 1));
    EXPECT_EQ(fname[_MAX_FNAME], '#');
    EXPECT_EQ(std::strlen(ext), static_cast<size_t>(_MAX_EXT - 1));

    char small[4];
    char dir[64];
    EXPECT_EQ(_splitpath_s("/dir/file.txt", nullptr, 0, dir, sizeof dir, small, sizeof small, nullptr, 0), ERANGE);
    EXPECT_STREQ(small, "");
    EXPECT_STREQ(dir, "/dir/");
    EXPECT_EQ(_splitpath_s(nullptr, nullptr, 0, dir, sizeof dir, nullptr, 0, nullptr, 0), EINVAL);
}

TEST(Paths, MakePathJoinsTheParts) {
    struct Case {
        const char* drive;
        const char* dir;
        const char* fname;
        const char* ext;
        const char* path;
    };
    const Case cases[] = {
        {"", "/opt/scan/", "CustomColorTables", ".bin", "/opt/scan/CustomColorTables.bin"},
        {nullptr, "/opt/scan", "tables", "bin", "/opt/scan/tables.bin"},
        {"C", "\\Scan", "host", "exe", "C:\\Scan\\host.exe"},
        {"D:", "", "a", nullptr, "D:a"},
        {nullptr, nullptr, nullptr, nullptr, ""},
    };
    for (const Case& c : cases) {
        char path[_MAX_PATH];
        _makepath(path, c.drive, c.dir, c.fname, c.ext);
        EXPECT_STREQ(path, c.path);
    }
}

TEST(Modules, TheCustomTableFileLiesBesideTheExecutable) {
    char exe[_MAX_PATH], drive[_MAX_DRIVE], dir[_MAX_DIR], file[_MAX_PATH];
    ASSERT_GT(GetModuleFileNameA(nullptr, exe, sizeof exe), 0u);
    _splitpath(exe, drive, dir, nullptr, nullptr);
    std::snprintf(file, sizeof file, "%s%sCustomColorTables.bin", drive, dir);
    const std::string expected = Executable().substr(0, Executable().find_last_of('/') + 1) + "CustomColorTables.bin";
    EXPECT_EQ(file, expected);
}

TEST(Modules, FileNameIsCutToTheBufferAsThePlatform) {
    const std::string exe = Executable();
    ASSERT_FALSE(exe.empty());
    char buf[8];
    std::memset(buf, '#', sizeof buf);
    EXPECT_EQ(GetModuleFileNameA(nullptr, buf, 5), 5u);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(std::string(buf), exe.substr(0, 4));
    EXPECT_EQ(buf[5], '#');
    EXPECT_EQ(GetModuleFileNameA(nullptr, buf, 0), 0u);
    EXPECT_EQ(GetModuleFileNameA(nullptr, nullptr, 10), 0u);
    char full[PATH_MAX];
    EXPECT_EQ(GetModuleFileNameA(nullptr, full, sizeof full), exe.size());
    EXPECT_EQ(full, exe);
}

TEST(Modules, HandlesNameTheLoadedObjects) {
    // The test carries the library's archives, so the library is the program here; both
    // ways of finding a module must agree on its handle.
    EXPECT_EQ(GetModuleHandleA(nullptr), orlex::LibraryModule());
    EXPECT_EQ(orlex::ModuleFileName(orlex::LibraryModule()), Executable());
    EXPECT_EQ(AfxGetInstanceHandle(), GetModuleHandleA(nullptr));

    const HMODULE libc = GetModuleHandleA("libc.so.6");
    ASSERT_NE(libc, nullptr);
    void* loaded = dlopen("libc.so.6", RTLD_NOW | RTLD_NOLOAD);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(libc, orlex::ModuleOfAddress(dlsym(loaded, "getpid")));  // not taken over by sanitizers
    dlclose(loaded);
    const std::string libcPath = orlex::ModuleFileName(libc);
    EXPECT_EQ(libcPath.substr(libcPath.find_last_of('/') + 1), "libc.so.6");
    EXPECT_EQ(GetModuleHandleA(libcPath.c_str()), libc);

    EXPECT_EQ(GetModuleHandleA("libnothing.so"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    char buf[16];
    int local = 0;
    EXPECT_EQ(GetModuleFileNameA(reinterpret_cast<HMODULE>(&local), buf, sizeof buf), 0u);
}

ULONGLONG g_fakeNow = 0;
ULONGLONG FakeClock() { return g_fakeNow; }

TEST(Time, TickCountFollowsAReplacedClockAndWraps) {
    struct Case {
        ULONGLONG now;
        DWORD tick;
    };
    const Case cases[] = {
        {0, 0}, {160, 160}, {0xFFFFFFFFull, 0xFFFFFFFFu}, {0x100000005ull, 5u},
    };
    orlex::SetTickSource(&FakeClock);
    for (const Case& c : cases) {
        g_fakeNow = c.now;
        EXPECT_EQ(GetTickCount(), c.tick);
        EXPECT_EQ(GetTickCount64(), c.now);
    }
    // The 160 ms rate limit compares unsigned differences, which survive the wrap.
    g_fakeNow = 0xFFFFFF00ull;
    const DWORD before = GetTickCount();
    g_fakeNow += 0x150;
    EXPECT_EQ(GetTickCount() - before, 0x150u);
    orlex::SetTickSource(nullptr);
    const ULONGLONG a = GetTickCount64();
    EXPECT_GE(GetTickCount64(), a);
}

DWORD g_slept = 0;
void RecordSleep(DWORD ms) { g_slept += ms; }

TEST(Time, SleepCanBeTakenOverByATest) {
    orlex::SetSleepHook(&RecordSleep);
    Sleep(1000);
    Sleep(0);
    EXPECT_EQ(g_slept, 1000u);
    orlex::SetSleepHook(nullptr);
    Sleep(1);
    EXPECT_EQ(g_slept, 1000u);
}

TEST(DebugOutput, CollectsTheLatestTexts) {
    orlex::ClearDebugOutput();
    OutputDebugStringA("scale: 1.5\n");
    OutputDebugString(nullptr);
    OutputDebugString("");
    EXPECT_EQ(orlex::DebugOutput(), (std::vector<std::string>{"scale: 1.5\n", ""}));
    for (int i = 0; i < 1100; ++i) OutputDebugStringA(std::to_string(i).c_str());
    const std::vector<std::string> kept = orlex::DebugOutput();
    ASSERT_EQ(kept.size(), 1024u);
    EXPECT_EQ(kept.front(), "76");
    EXPECT_EQ(kept.back(), "1099");
    orlex::ClearDebugOutput();
}

TEST(Version, ReportsAnNtFamilyPlatform) {
    OSVERSIONINFOA info{};
    EXPECT_FALSE(GetVersionExA(&info));  // size not set
    info.dwOSVersionInfoSize = sizeof info;
    ASSERT_TRUE(GetVersionEx(&info));
    EXPECT_EQ(info.dwPlatformId, VER_PLATFORM_WIN32_NT);
    EXPECT_FALSE(info.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS && info.dwMinorVersion == 0);
}

}  // namespace
