// Resources by module: the embedded set equals the files of the manifest, strings load
// and cut as the platform's, host resources are found through the resource handle and
// the extension chain.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"

namespace {

// The repository root, from this file's place (tests/foundation/platform/).
std::string SourceRoot() {
    std::string f = __FILE__;
    for (int i = 0; i < 4; ++i) f = f.substr(0, f.find_last_of('/'));
    return f;
}

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

TEST(EmbeddedResources, EveryManifestEntryHoldsItsFileByteForByte) {
    const std::string root = SourceRoot() + "/resources/";
    std::istringstream manifest(ReadFile(root + "resources.list"));
    ASSERT_FALSE(manifest.str().empty());
    const std::vector<std::pair<std::string, int>> types = {
        {"CURSOR", 1}, {"BITMAP", 2}, {"ICON", 3}, {"MENU", 4}, {"DIALOG", 5}, {"RCDATA", 10}, {"GROUP_ICON", 14}};
    std::string line;
    int checked = 0;
    while (std::getline(manifest, line)) {
        std::istringstream words(line);
        std::string type, name, file;
        if (!(words >> type) || type[0] == '#' || !(words >> name >> file)) continue;
        if (type == "STRING") continue;  // a string table, checked through LoadString
        SCOPED_TRACE(line);
        std::string typeKey = type;
        for (const auto& [word, number] : types)
            if (type == word) typeKey = "#" + std::to_string(number);
        const bool numeric = name.find_first_not_of("0123456789") == std::string::npos;
        const std::string nameKey = numeric ? "#" + name : name;
        HRSRC r = FindResourceA(orlex::LibraryModule(), nameKey.c_str(), typeKey.c_str());
        ASSERT_NE(r, nullptr);
        const std::string bytes = ReadFile(root + file);
        ASSERT_EQ(SizeofResource(orlex::LibraryModule(), r), bytes.size());
        const void* data = LockResource(LoadResource(orlex::LibraryModule(), r));
        ASSERT_NE(data, nullptr);
        EXPECT_EQ(std::memcmp(data, bytes.data(), bytes.size()), 0);
        ++checked;
    }
    EXPECT_GT(checked, 0);
}

TEST(EmbeddedResources, ColourParametersFoundByNameAndType) {
    struct Case {
        LPCSTR name;
        LPCSTR type;
        bool found;
    };
    const Case cases[] = {
        {"color.par", RT_RCDATA, true},
        {"COLOR.PAR", MAKEINTRESOURCE(10), true},
        {"color.par", "#10", true},
        {"color.par", RT_BITMAP, false},
        {"colour.par", RT_RCDATA, false},
        {MAKEINTRESOURCE(10078), RT_MENU, true},
        {"#10078", RT_MENU, true},
        {MAKEINTRESOURCE(10078), RT_DIALOG, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(IS_INTRESOURCE(c.name) ? std::to_string(reinterpret_cast<ULONG_PTR>(c.name)) : c.name);
        EXPECT_EQ(FindResourceA(orlex::LibraryModule(), c.name, c.type) != nullptr, c.found);
    }
}

TEST(Resources, BadHandlesAndNamesAreRefused) {
    int junk[4] = {};
    HRSRC bogus = reinterpret_cast<HRSRC>(junk);
    EXPECT_EQ(LoadResource(nullptr, bogus), nullptr);
    EXPECT_EQ(SizeofResource(nullptr, bogus), 0u);
    EXPECT_EQ(LoadResource(nullptr, nullptr), nullptr);
    EXPECT_EQ(LockResource(nullptr), nullptr);
    EXPECT_EQ(FindResourceA(orlex::LibraryModule(), nullptr, RT_RCDATA), nullptr);
    EXPECT_EQ(FindResourceA(orlex::LibraryModule(), "color.par", nullptr), nullptr);
    EXPECT_EQ(FreeResource(nullptr), FALSE);
}

TEST(StringResources, LoadStringCopiesAndCutsAsThePlatform) {
    const std::string mean = "Mean is the sum of data points divided by the number of data points.";
    struct Case {
        UINT id;
        int size;
        int result;
        std::string text;
    };
    const Case cases[] = {
        {10024, 256, static_cast<int>(mean.size()), mean},
        {10024, 5, 4, "Mean"},
        {10024, 1, 0, ""},
        {35039, 256, 30, "Show\\hide the minor grid lines"},
        {35203, 256, 47, "Edit the data scale and other color info values"},
        {4242, 256, 0, ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.id);
        char buf[256];
        std::memset(buf, '#', sizeof buf);
        EXPECT_EQ(LoadStringA(orlex::LibraryModule(), c.id, buf, c.size), c.result);
        EXPECT_EQ(std::string(buf), c.text);
    }
    char one = 'x';
    EXPECT_EQ(LoadStringA(orlex::LibraryModule(), 10024, &one, 0), 0);
    EXPECT_EQ(one, 'x');
}

TEST(StringResources, CStringLoadsFromTheResourceHandleAndMessageBoxShowsIt) {
    CString s("old");
    EXPECT_TRUE(s.LoadString(10025));
    EXPECT_EQ(std::string(s), "Median is the point where below and above it is an equal number of points.");
    EXPECT_FALSE(s.LoadString(4243));
    EXPECT_TRUE(s.IsEmpty());

    orlex::ModalScript::Reset();
    orlex::ModalScript::Push("MessageBox", IDCANCEL);
    EXPECT_EQ(AfxMessageBox(35000u, MB_OKCANCEL), IDCANCEL);
    ASSERT_EQ(orlex::ModalScript::Log().size(), 1u);
    EXPECT_EQ(orlex::ModalScript::Log()[0].kind, "MessageBox");
    EXPECT_EQ(orlex::ModalScript::Log()[0].text, "Adjust color contrast and offset");
    EXPECT_EQ(orlex::ModalScript::Log()[0].style, MB_OKCANCEL);
    orlex::ModalScript::Reset();
}

TEST(StringTableText, ParsesIdsEscapesAndSkipsWhatIsNotAString) {
    const std::string text =
        "# comment\r\n"
        "10\tplain\r\n"
        "0x1F\thex id\n"
        "\n"
        "11\tline\\nbreak, tab\\t, back\\\\slash, kept \\q\n"
        "12 no tab\n"
        "x13\tbad id\n"
        "70000\ttoo big\n"
        "14\t\n"
        "15\tlast without newline";
    const auto table = orlex::ParseStringTable(text.data(), text.size());
    const std::vector<std::pair<UINT, std::string>> expected = {
        {10, "plain"},
        {31, "hex id"},
        {11, "line\nbreak, tab\t, back\\slash, kept \\q"},
        {14, ""},
        {15, "last without newline"},
    };
    EXPECT_EQ(table, expected);
    EXPECT_TRUE(orlex::ParseStringTable(nullptr, 10).empty());
}

// A second module stands in for a host library: its handle is any address no module uses.
char g_fakeModuleByte;

TEST(ResourceHandles, HostResourcesAreFoundThroughHandleAndChain) {
    const HMODULE program = GetModuleHandleA(nullptr);
    const HMODULE other = reinterpret_cast<HMODULE>(&g_fakeModuleByte);
    const unsigned char bitmap[] = {'B', 'M', 1, 2, 3};
    ASSERT_TRUE(orlex::RegisterResource(program, RT_BITMAP, MAKEINTRESOURCE(30001), bitmap, sizeof bitmap));
    ASSERT_TRUE(orlex::RegisterResource(other, RT_BITMAP, MAKEINTRESOURCE(30002), bitmap, 2));
    ASSERT_TRUE(orlex::RegisterString(other, 30003, "from the other module"));
    EXPECT_FALSE(orlex::RegisterResource(nullptr, RT_BITMAP, MAKEINTRESOURCE(1), bitmap, 1));

    EXPECT_EQ(AfxGetResourceHandle(), program);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(30001), RT_BITMAP), program);
    // Not in the current module nor in the chain: the current handle, where loading fails.
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(30002), RT_BITMAP), program);
    CString s;
    EXPECT_FALSE(s.LoadString(30003));
    {
        CDynLinkLibrary link(other, other);
        EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(30002), RT_BITMAP), other);
        EXPECT_TRUE(s.LoadString(30003));
        EXPECT_EQ(std::string(s), "from the other module");
        HRSRC r = FindResourceA(other, "#30002", RT_BITMAP);
        ASSERT_NE(r, nullptr);
        EXPECT_EQ(SizeofResource(other, r), 2u);
    }
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(30002), RT_BITMAP), program);
    // Switching the resource handle puts the other module first.
    AfxSetResourceHandle(other);
    EXPECT_EQ(AfxFindResourceHandle(MAKEINTRESOURCE(30002), RT_BITMAP), other);
    EXPECT_TRUE(s.LoadString(30003));
    AfxSetResourceHandle(nullptr);
    EXPECT_EQ(AfxGetResourceHandle(), program);

    // A later registration replaces the data for new lookups; the bytes were copied.
    const unsigned char newer[] = {9};
    ASSERT_TRUE(orlex::RegisterResource(program, RT_BITMAP, "#30001", newer, 1));
    HRSRC r = FindResourceA(nullptr, MAKEINTRESOURCE(30001), RT_BITMAP);
    ASSERT_NE(r, nullptr);
    EXPECT_EQ(SizeofResource(nullptr, r), 1u);
    EXPECT_EQ(*static_cast<unsigned char*>(LockResource(LoadResource(nullptr, r))), 9);
}

TEST(ExtensionModules, TermDeletesTheModulesChainEntries) {
    AFX_EXTENSION_MODULE state;
    EXPECT_FALSE(AfxInitExtensionModule(state, nullptr));
    EXPECT_FALSE(state.bInitialized);
    const HMODULE fake = reinterpret_cast<HMODULE>(&g_fakeModuleByte + 1);
    ASSERT_TRUE(AfxInitExtensionModule(state, fake));
    const std::size_t before = orlex::ExtensionChain().size();
    new CDynLinkLibrary(state);
    new CDynLinkLibrary(state);
    EXPECT_EQ(orlex::ExtensionChain().size(), before + 2);
    EXPECT_EQ(orlex::ExtensionChain().front(), fake);
    AfxTermExtensionModule(state);
    EXPECT_EQ(orlex::ExtensionChain().size(), before);
    EXPECT_FALSE(state.bInitialized);
}

}  // namespace
