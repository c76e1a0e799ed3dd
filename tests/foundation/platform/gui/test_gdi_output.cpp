// Output: the clipboard gives back exactly what was put and owns the blocks; printer
// contexts answer for the printer, keep to the document's order of calls and write PDF.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/profile.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/gui/gdi_printers_p.h"

namespace {

HGLOBAL Block(const void* data, std::size_t n) {
    HGLOBAL h = GlobalAlloc(GMEM_MOVEABLE, n);
    std::memcpy(GlobalLock(h), data, n);
    GlobalUnlock(h);
    return h;
}

std::vector<unsigned char> Bytes(HGLOBAL h) {
    const auto* p = static_cast<const unsigned char*>(GlobalLock(h));
    std::vector<unsigned char> v(p, p + GlobalSize(h));
    GlobalUnlock(h);
    return v;
}

struct GdiClipboard : ::testing::Test {
    void SetUp() override {
        orlex::EnsureApplication();
        ASSERT_TRUE(OpenClipboard(nullptr));
        EmptyClipboard();
        CloseClipboard();
    }
};

TEST_F(GdiClipboard, TextAndPictureComeBackByteForByte) {
    const char text[] = "1.5\t\xB5m\r\n20\t\xB0\x43";  // NUL at the end, as the grid puts it
    std::vector<unsigned char> dib(40 + 2 * 12, 0);
    BITMAPINFOHEADER h{40, 3, 2, 1, 24, 0, 24, 0, 0, 0, 0};
    std::memcpy(dib.data(), &h, 40);
    for (std::size_t i = 40; i < dib.size(); ++i) dib[i] = static_cast<unsigned char>(i * 7);
    const std::pair<UINT, std::vector<unsigned char>> cases[] = {
        {CF_TEXT, std::vector<unsigned char>(text, text + sizeof text)},
        {CF_DIB, dib},
    };
    for (const auto& [fmt, bytes] : cases) {
        ASSERT_TRUE(OpenClipboard(nullptr));
        EXPECT_TRUE(EmptyClipboard());
        HGLOBAL mem = Block(bytes.data(), bytes.size());
        EXPECT_EQ(SetClipboardData(fmt, mem), mem);
        EXPECT_TRUE(CloseClipboard());
        EXPECT_TRUE(IsClipboardFormatAvailable(fmt)) << fmt;
        ASSERT_TRUE(OpenClipboard(nullptr));
        HGLOBAL got = GetClipboardData(fmt);
        ASSERT_NE(got, nullptr) << fmt;
        EXPECT_EQ(Bytes(got), bytes) << fmt;
        CloseClipboard();
    }
}

TEST_F(GdiClipboard, TheClipboardOwnsAndFreesItsBlocks) {
    const char a[] = "first", b[] = "second";
    ASSERT_TRUE(OpenClipboard(nullptr));
    EmptyClipboard();
    HGLOBAL first = Block(a, sizeof a);
    SetClipboardData(CF_TEXT, first);
    HGLOBAL second = Block(b, sizeof b);
    SetClipboardData(CF_TEXT, second);
    EXPECT_EQ(GlobalSize(first), 0u);  // replaced: freed by the clipboard
    EXPECT_EQ(CountClipboardFormats(), 1);
    EmptyClipboard();
    EXPECT_EQ(GlobalSize(second), 0u);
    EXPECT_FALSE(IsClipboardFormatAvailable(CF_TEXT));
    CloseClipboard();
    // Closed: nothing is taken or given.
    HGLOBAL third = Block(a, sizeof a);
    EXPECT_EQ(SetClipboardData(CF_TEXT, third), nullptr);
    EXPECT_EQ(GetClipboardData(CF_TEXT), nullptr);
    GlobalFree(third);
    EXPECT_FALSE(CloseClipboard());
    ASSERT_TRUE(OpenClipboard(nullptr));
    EXPECT_FALSE(OpenClipboard(nullptr));  // already open
    CloseClipboard();
}

struct GdiPrint : ::testing::Test {
    std::string dir;
    void SetUp() override {
        orlex::EnsureApplication();
        char tmpl[] = "/tmp/orlex_print_XXXXXX";
        dir = mkdtemp(tmpl);
        orlex::PrinterSettings s;
        s.outputPath = dir + "/";
        s.dpi = 150;
        orlex::SetPrinterSettings(s);
    }
    void TearDown() override { orlex::SetPrinterSettings(orlex::PrinterSettings{}); }
    static bool FileStartsWith(const std::string& path, const std::string& head) {
        std::ifstream f(path, std::ios::binary);
        std::string got(head.size(), '\0');
        return f.read(got.data(), static_cast<std::streamsize>(head.size())) && got == head;
    }
};

TEST_F(GdiPrint, DeviceCapsAnswerForThePrinter) {
    CDC dc;
    ASSERT_TRUE(dc.CreateDC(nullptr, "PDF", nullptr, nullptr));
    EXPECT_TRUE(dc.IsPrinting());
    struct Case { int index; int value; };
    const Case cases[] = {{LOGPIXELSX, 150}, {LOGPIXELSY, 150}, {HORZRES, 1240}, {VERTRES, 1754},
                          {HORZSIZE, 210}, {VERTSIZE, 297}, {TECHNOLOGY, DT_RASPRINTER}, {NUMCOLORS, -1}};
    for (const Case& c : cases) EXPECT_EQ(dc.GetDeviceCaps(c.index), c.value) << c.index;
    // A memory context made for the printer measures in its dots.
    CDC mem;
    ASSERT_TRUE(mem.CreateCompatibleDC(&dc));
    EXPECT_EQ(mem.GetDeviceCaps(LOGPIXELSY), 150);
    // The device mode turns the paper and takes colour away.
    DEVMODEA dm{};
    dm.dmFields = DM_ORIENTATION | DM_COLOR;
    dm.dmOrientation = DMORIENT_LANDSCAPE;
    dm.dmColor = DMCOLOR_MONOCHROME;
    CDC mono;
    ASSERT_TRUE(mono.CreateDC(nullptr, "PDF", nullptr, &dm));
    EXPECT_EQ(mono.GetDeviceCaps(HORZRES), 1754);
    EXPECT_EQ(mono.GetDeviceCaps(NUMCOLORS), 2);
    // The screen for comparison.
    HDC screen = GetDC(nullptr);
    EXPECT_EQ(GetDeviceCaps(screen, LOGPIXELSX), 96);
    EXPECT_EQ(GetDeviceCaps(screen, HORZRES), GetSystemMetrics(SM_CXSCREEN));
    ReleaseDC(nullptr, screen);
}

TEST_F(GdiPrint, PagesGoIntoAPdfInTheOrderOfTheCalls) {
    CDC dc;
    ASSERT_TRUE(dc.CreateDC(nullptr, "PDF", nullptr, nullptr));
    EXPECT_EQ(dc.StartPage(), SP_ERROR);  // no document yet
    DOCINFO di{static_cast<int>(sizeof(DOCINFO)), "MapClass", nullptr, nullptr, 0};
    ASSERT_GT(dc.StartDoc(&di), 0);
    EXPECT_EQ(dc.StartDoc(&di), SP_ERROR);
    EXPECT_EQ(dc.EndPage(), SP_ERROR);  // no page yet
    for (int page = 0; page < 2; ++page) {
        ASSERT_GT(dc.StartPage(), 0);
        dc.FillSolidRect(100, 200, 50, 20, RGB(255, 0, 0));
        dc.MoveTo(0, 0);
        dc.LineTo(10, 0);
        EXPECT_EQ(dc.GetPixel(120, 210), RGB(255, 0, 0));
        ASSERT_GT(dc.EndPage(), 0);
    }
    ASSERT_GT(dc.EndDoc(), 0);
    const std::string path = dir + "/MapClass.pdf";
    EXPECT_TRUE(FileStartsWith(path, "%PDF"));
    ASSERT_FALSE(orlex::PrintedDocuments().empty());
    EXPECT_EQ(orlex::PrintedDocuments().back(), path);
    std::vector<DWORD> px;
    int w = 0, h = 0;
    ASSERT_TRUE(orlex::LastPrintedPage(px, w, h));
    EXPECT_EQ(w, 1240);
    EXPECT_EQ(px[static_cast<std::size_t>(210) * w + 120] & 0xFFFFFF, 0xFF0000u);
    EXPECT_EQ(px[9] & 0xFFFFFF, 0u);   // the line's last pixel
    EXPECT_EQ(px[10] & 0xFFFFFF, 0xFFFFFFu);  // its end pixel left out
    std::remove(path.c_str());
}

TEST_F(GdiPrint, AbortDocLeavesNoFile) {
    CDC dc;
    ASSERT_TRUE(dc.CreateDC(nullptr, "PDF", nullptr, nullptr));
    DOCINFO di{static_cast<int>(sizeof(DOCINFO)), "Aborted", nullptr, nullptr, 0};
    ASSERT_GT(dc.StartDoc(&di), 0);
    ASSERT_GT(dc.StartPage(), 0);
    ASSERT_GT(dc.EndPage(), 0);
    ASSERT_GT(dc.AbortDoc(), 0);
    EXPECT_FALSE(FileStartsWith(dir + "/Aborted.pdf", "%"));
    EXPECT_EQ(dc.EndDoc(), SP_ERROR);
}

TEST(GdiPrinters, DocumentPropertiesMergeTheCallersFields) {
    HANDLE printer = nullptr;
    char name[] = "PDF";
    ASSERT_TRUE(OpenPrinterA(name, &printer, nullptr));
    EXPECT_EQ(DocumentPropertiesA(nullptr, printer, name, nullptr, nullptr, 0), static_cast<LONG>(sizeof(DEVMODEA)));
    DEVMODEA in{}, out{};
    in.dmFields = DM_ORIENTATION | DM_SCALE;
    in.dmOrientation = DMORIENT_LANDSCAPE;
    in.dmScale = 100;
    EXPECT_EQ(DocumentPropertiesA(nullptr, printer, name, &out, &in, DM_IN_BUFFER | DM_OUT_BUFFER), IDOK);
    EXPECT_EQ(out.dmOrientation, DMORIENT_LANDSCAPE);
    EXPECT_TRUE(out.dmFields & DM_COLOR);
    EXPECT_TRUE(ClosePrinter(printer));
}

TEST(GdiPrinters, TheSystemsDefaultPrinterElseItsFirstElsePdf) {
    using orlex::gdi::SystemPrinters;
    struct Case { SystemPrinters system; const char* want; };
    const Case cases[] = {
        {{{}, ""}, "PDF"},
        {{{}, "Gone"}, "PDF"},                       // a default the system no longer lists
        {{{"Laser", "Ink"}, "Ink"}, "Ink"},
        {{{"Laser", "Ink"}, ""}, "Laser"},
        {{{"Laser", "Ink"}, "Gone"}, "Laser"},
    };
    for (const Case& c : cases) EXPECT_EQ(orlex::gdi::PickDefaultPrinter(c.system), c.want) << c.system.defaultName;
    const SystemPrinters two{{"Laser", "Ink"}, "Ink"};
    struct Known { const char* name; bool known, system; };
    const Known names[] = {{"PDF", true, false}, {"Laser", true, true}, {"laser", false, false}, {"", false, false}};
    for (const Known& k : names) {
        EXPECT_EQ(orlex::gdi::IsKnownPrinter(two, k.name), k.known) << k.name;
        EXPECT_EQ(orlex::gdi::IsSystemPrinter(two, k.name), k.system) << k.name;
    }
}

TEST(GdiPrinters, OnlyPrintersThatAreThereOpen) {
    orlex::EnsureApplication();
    char name[256] = {};
    DWORD size = sizeof name;
    ASSERT_TRUE(GetDefaultPrinterA(name, &size));
    // Headless machines list no printer of their own: the PDF writer is the default.
    EXPECT_EQ(std::string(name), orlex::gdi::PickDefaultPrinter(orlex::gdi::QuerySystemPrinters()));
    if (orlex::gdi::QuerySystemPrinters().names.empty()) EXPECT_STREQ(name, "PDF");
    HANDLE printer = reinterpret_cast<HANDLE>(1);
    char missing[] = "No such printer";
    EXPECT_FALSE(OpenPrinterA(missing, &printer, nullptr));
    EXPECT_EQ(printer, nullptr);
    EXPECT_EQ(CreateDCA("WINSPOOL", missing, nullptr, nullptr), nullptr);
    // No name: the default printer.
    ASSERT_TRUE(OpenPrinterA(nullptr, &printer, nullptr));
    DEVMODEA dm{};
    ASSERT_EQ(DocumentPropertiesA(nullptr, printer, nullptr, &dm, nullptr, DM_OUT_BUFFER), IDOK);
    EXPECT_STREQ(reinterpret_cast<const char*>(dm.dmDeviceName), name);
    EXPECT_TRUE(ClosePrinter(printer));
    HDC dc = CreateDCA("WINSPOOL", name, nullptr, nullptr);
    EXPECT_NE(dc, nullptr);
    DeleteDC(dc);
    // Programs that look the default printer up in the system profile find it there, as
    // "name,driver,port".
    char device[256] = {};
    GetProfileStringA("windows", "device", "", device, sizeof device);
    EXPECT_EQ(std::string(device).substr(0, std::string(device).find(',')), name);
    EXPECT_NE(std::string(device).find(",winspool,"), std::string::npos);
}

}  // namespace
