// Profile files: exact file contents after writes, reading files written by hand, the
// application object's profile and the system profile's printer setting.
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>

#include "foundation/platform/afxapp.h"
#include "foundation/platform/profile.h"

namespace {

class ProfileTest : public ::testing::Test {
protected:
    void SetUp() override {
        char tmpl[] = "/tmp/orlex-profile-XXXXXX";
        ASSERT_NE(mkdtemp(tmpl), nullptr);
        m_dir = tmpl;
    }
    void TearDown() override {
        const std::string cmd = "rm -rf '" + m_dir + "'";
        ASSERT_EQ(std::system(cmd.c_str()), 0);
    }
    std::string Path(const char* name) const { return m_dir + "/" + name; }
    static std::string Read(const std::string& path) {
        std::ifstream f(path, std::ios::binary);
        std::stringstream s;
        s << f.rdbuf();
        return s.str();
    }
    static void Write(const std::string& path, const std::string& text) {
        std::ofstream f(path, std::ios::binary);
        f << text;
    }
    std::string m_dir;
};

TEST_F(ProfileTest, WritesGiveTheseExactFileContents) {
    struct Step {
        const char* section;
        const char* key;
        const char* value;
        const char* file;
    };
    const Step steps[] = {
        {"GridControl", "Color0", "255", "[GridControl]\nColor0=255\n"},
        {"ColorControl", "ColorTable", "12", "[GridControl]\nColor0=255\n[ColorControl]\nColorTable=12\n"},
        {"GridControl", "Reduction", "-3",
         "[GridControl]\nColor0=255\nReduction=-3\n[ColorControl]\nColorTable=12\n"},
        {"gridcontrol", "COLOR0", "16", "[GridControl]\nColor0=16\nReduction=-3\n[ColorControl]\nColorTable=12\n"},
        {"GridControl", "Color0", nullptr, "[GridControl]\nReduction=-3\n[ColorControl]\nColorTable=12\n"},
        {"GridControl", nullptr, nullptr, "[ColorControl]\nColorTable=12\n"},
        {"Missing", "Key", nullptr, "[ColorControl]\nColorTable=12\n"},
    };
    const std::string file = Path("sub/dir/app.ini");  // directories are made
    for (const Step& s : steps) {
        SCOPED_TRACE(s.file);
        EXPECT_TRUE(WritePrivateProfileStringA(s.section, s.key, s.value, file.c_str()));
        EXPECT_EQ(Read(file), s.file);
    }
}

TEST_F(ProfileTest, HandWrittenFilesAreReadAndTheirOtherLinesKept) {
    const std::string file = Path("hand.ini");
    Write(file,
          "; settings\r\n[View]\r\n  Zoom = 4 \r\n\r\n[GridControl]\r\nTitle=\"Scan 1\"\r\nNote='x'\r\nplain\r\n\r\n"
          "[Other]\r\nk=v\r\n");
    char buf[64];
    struct Case {
        const char* section;
        const char* key;
        const char* expected;
    };
    const Case cases[] = {
        {"View", "Zoom", "4"},
        {"VIEW", "zoom", "4"},
        {"GridControl", "Title", "Scan 1"},
        {"GridControl", "Note", "x"},
        {"GridControl", "plain", "fallback"},
        {"Other", "k", "v"},
        {"Nowhere", "k", "fallback"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.section) + "/" + c.key);
        const DWORD n = GetPrivateProfileStringA(c.section, c.key, "fallback  ", buf, sizeof buf, file.c_str());
        EXPECT_STREQ(buf, c.expected);
        EXPECT_EQ(n, std::string(c.expected).size());
    }
    // A new key goes after the section's last entry, before its blank separator.
    EXPECT_TRUE(WritePrivateProfileStringA("View", "Pan", "1", file.c_str()));
    EXPECT_EQ(Read(file),
              "; settings\n[View]\n  Zoom = 4 \nPan=1\n\n[GridControl]\nTitle=\"Scan 1\"\nNote='x'\nplain\n\n"
              "[Other]\nk=v\n");
}

TEST_F(ProfileTest, IntegersAreReadAsTheDecimalPrefix) {
    const std::string file = Path("ints.ini");
    Write(file, "[S]\na=12\nb= -5\nc=+7\nd=12abc\ne=abc\nf=\ng=4294967297\n");
    struct Case {
        const char* key;
        UINT expected;
    };
    const Case cases[] = {
        {"a", 12u}, {"b", static_cast<UINT>(-5)}, {"c", 7u}, {"d", 12u}, {"e", 0u}, {"f", 0u}, {"g", 1u},
        {"missing", 99u},
    };
    for (const Case& c : cases) EXPECT_EQ(GetPrivateProfileIntA("S", c.key, 99, file.c_str()), c.expected) << c.key;
}

TEST_F(ProfileTest, BuffersAreNeverOverrunAndListsAreDoubleTerminated) {
    const std::string file = Path("list.ini");
    Write(file, "[One]\na=abcdef\nbb=1\n[Two]\n");
    char buf[16];
    std::memset(buf, '#', sizeof buf);
    EXPECT_EQ(GetPrivateProfileStringA("One", "a", "", buf, 4, file.c_str()), 3u);
    EXPECT_STREQ(buf, "abc");
    EXPECT_EQ(buf[4], '#');
    EXPECT_EQ(GetPrivateProfileStringA("One", nullptr, "", buf, sizeof buf, file.c_str()), 5u);
    EXPECT_EQ(std::string(buf, 6), std::string("a\0bb\0\0", 6));
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buf, sizeof buf, file.c_str()), 8u);
    EXPECT_EQ(std::string(buf, 9), std::string("One\0Two\0\0", 9));
    EXPECT_EQ(GetPrivateProfileStringA(nullptr, nullptr, "", buf, 5, file.c_str()), 3u);
    EXPECT_EQ(std::string(buf, 5), std::string("One\0\0", 5));
    EXPECT_EQ(GetPrivateProfileStringA("One", "a", "", nullptr, 0, file.c_str()), 0u);
}

TEST_F(ProfileTest, UnwritablePlaceFailsWithoutHarm) {
    const std::string blocker = Path("file");
    Write(blocker, "x");
    const std::string inside = blocker + "/app.ini";  // a directory that is a file
    EXPECT_FALSE(WritePrivateProfileStringA("S", "k", "v", inside.c_str()));
    EXPECT_FALSE(WritePrivateProfileStringA(nullptr, "k", "v", Path("a.ini").c_str()));
    EXPECT_EQ(Read(blocker), "x");
}

TEST_F(ProfileTest, ApplicationObjectOwnsTheProfile) {
    EXPECT_EQ(AfxGetApp(), nullptr);
    const std::string config = Path("config");
    setenv("XDG_CONFIG_HOME", config.c_str(), 1);
    {
        CWinApp app("ScanHost");
        EXPECT_EQ(AfxGetApp(), &app);
        EXPECT_STREQ(app.m_pszAppName, "ScanHost");
        EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", 12), 12u);
        EXPECT_TRUE(app.WriteProfileInt("ColorControl", "ColorTable", 7));
        EXPECT_TRUE(app.WriteProfileString("GridControl", "Title", "Scan"));
        EXPECT_EQ(std::string(app.GetProfilePath()), config + "/ScanHost.ini");
        EXPECT_EQ(Read(config + "/ScanHost.ini"), "[ColorControl]\nColorTable=7\n[GridControl]\nTitle=Scan\n");
        EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", 12), 7u);
        EXPECT_EQ(std::string(app.GetProfileString("GridControl", "Title")), "Scan");
        EXPECT_EQ(std::string(app.GetProfileString("GridControl", "None", "dflt")), "dflt");

        // The host moves the profile; the old file is left alone.
        const std::string moved = Path("elsewhere/host.ini");
        app.SetProfilePath(moved.c_str());
        EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", 12), 12u);
        EXPECT_TRUE(app.WriteProfileInt("View", "Zoom", 2));
        EXPECT_EQ(Read(moved), "[View]\nZoom=2\n");
    }
    EXPECT_EQ(AfxGetApp(), nullptr);
    unsetenv("XDG_CONFIG_HOME");
}

TEST_F(ProfileTest, SystemProfileGivesThePrinterSetting) {
    const std::string winIni = Path("win.ini");
    Write(winIni, "[windows]\ndevice=Lab Printer,winspool,Ne00:\n");
    orlex::SetSystemProfilePath(winIni);
    char buf[128];
    GetProfileStringA("windows", "device", ",,,", buf, sizeof buf);
    EXPECT_STREQ(buf, "Lab Printer,winspool,Ne00:");
    // A value the layer supplies hides the file's and is never written.
    orlex::SetSystemProfileValue("Windows", "Device", "Default,qt,local");
    GetProfileString("windows", "device", ",,,", buf, sizeof buf);
    EXPECT_STREQ(buf, "Default,qt,local");
    EXPECT_TRUE(WriteProfileStringA("windows", "other", "1"));
    EXPECT_EQ(Read(winIni), "[windows]\ndevice=Lab Printer,winspool,Ne00:\nother=1\n");
    orlex::SetSystemProfileValue("windows", "device", nullptr);
    GetProfileStringA("windows", "device", ",,,", buf, sizeof buf);
    EXPECT_STREQ(buf, "Lab Printer,winspool,Ne00:");
    EXPECT_EQ(GetProfileIntA("windows", "other", 5), 1u);
    orlex::SetSystemProfilePath(Path("none.ini"));
    GetProfileStringA("windows", "device", ",,,", buf, sizeof buf);
    EXPECT_STREQ(buf, ",,,");  // no printer: the caller's default
    orlex::SetSystemProfilePath("");
}

}  // namespace
