// The colour bar as a user and its host meet it: its pixels, a click, the sideways drag,
// the context menu, the notices to the parent, and its record in an archive.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "colour/ColorCtrl.h"
#include "colour/ColorTable.h"
#include "colour/ImageAdjust.h"
#include "foundation/ArchiveVersionControl.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxapp.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/archive_test_util.h"
#include "support/orlex_test.h"

namespace {

using archive_test::Bytes;

// A top-level host window that records what the bar tells it.
class Host : public CWnd {
public:
    struct Note {
        UINT message;
        WPARAM wParam;
        LPARAM lParam;
        UINT code;  // WM_NOTIFY: the header's code
    };
    std::vector<Note> notes;
    LRESULT answer35203 = 0;

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_NOTIFY) {
            const auto* nm = reinterpret_cast<const NMHDR*>(lParam);
            notes.push_back({message, wParam, LPARAM(nm->idFrom), nm->code});
            return 0;
        }
        if (message == MESSAGE_COLOR_CTRL_STR) {
            notes.push_back({message, wParam, lParam, 0});
            return 0;
        }
        if (message == WM_COMMAND && LOWORD(wParam) == ID_COLOR_SCALE) {
            notes.push_back({message, wParam, lParam, 0});
            return answer35203;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
    int Count(UINT message) const
    {
        int n = 0;
        for (const Note& x : notes) n += x.message == message;
        return n;
    }
};

constexpr int kBarId = 77;

class ColourBar : public ::testing::Test {
protected:
    void SetUp() override
    {
        orlex::test::Init();
        InitializeColorTables();
        CColorCtrl::m_bColorDrag = false;
        ASSERT_TRUE(host.CreateEx(0, nullptr, "host", WS_POPUP | WS_VISIBLE, CRect(50, 50, 250, 350), nullptr, 0));
        // A one-pixel border around a 20 x 256 client: one row of pixels per table entry.
        CRect r(10, 10, 10 + 22, 10 + 258);
        bar.Create(r, &host, kBarId);
        ASSERT_NE(bar.m_hWnd, nullptr);
        orlex::test::Pump();
    }
    void TearDown() override { orlex::SetModalLoopHook({}); }

    // The colour of table entry e as the bar shows it (entry 0 on the lowest row).
    COLORREF Shown(int e, int x = 10) { return orlex::test::Pixel(bar.m_hWnd, POINT{x, 255 - e}); }
    static COLORREF Colour(const tagRGBQUAD& q) { return RGB(q.rgbRed, q.rgbGreen, q.rgbBlue); }
    CImageAdjust* OpenDialog() { return bar.m_pDialog; }

    Host host;
    CColorCtrl bar;
};

TEST_F(ColourBar, PixelsAreTheWorkingTableBottomUp)
{
    struct Case {
        int table, contrast, offset;
    };
    const Case cases[] = {{25, 0, 0}, {22, 0, 0}, {12, 0, 0}, {25, 10, 0}, {0, -4, 30}, {3, 0, -20}};
    for (const Case& c : cases) {
        bar.SetContrast(c.contrast);
        bar.SetOffset(c.offset);
        bar.SetColorTable(c.table, 0);
        orlex::test::Pump();
        const tagRGBQUAD* w = bar.GetColorTable();
        for (int e = 0; e < 256; ++e) {
            ASSERT_EQ(Shown(e), Colour(w[e])) << "table " << c.table << " entry " << e;
            ASSERT_EQ(Shown(e, 0), Shown(e, 19));
        }
    }
    // The grey ramp: black at the bottom, white at the top.
    bar.SetContrast(0);
    bar.SetOffset(0);
    bar.SetColorTable(25, 0);
    orlex::test::Pump();
    EXPECT_EQ(orlex::test::Pixel(bar.m_hWnd, POINT{3, 255}), RGB(0, 0, 0));
    EXPECT_EQ(orlex::test::Pixel(bar.m_hWnd, POINT{3, 0}), RGB(255, 255, 255));
    EXPECT_EQ(orlex::test::Pixel(bar.m_hWnd, POINT{3, 255 - 100}), RGB(100, 100, 100));
}

TEST_F(ColourBar, DisplayDibBytes)
{
    bar.SetColorTable(22, 0);
    ASSERT_NE(bar.m_hDib, nullptr);
    ASSERT_EQ(GlobalSize(bar.m_hDib), 256u * 4 + 1064);
    const auto* b = static_cast<const BYTE*>(GlobalLock(bar.m_hDib));
    const Bytes header(b, b + 24);
    GlobalUnlock(bar.m_hDib);
    EXPECT_EQ(archive_test::Hex(header),
              "28 00 00 00 04 00 00 00 00 01 00 00 01 00 08 00 00 00 00 00 00 04 00 00");
    b = static_cast<const BYTE*>(GlobalLock(bar.m_hDib));
    for (int e : {0, 1, 128, 255}) {
        EXPECT_EQ(b[40 + 4 * e + 2], e) << "red of entry " << e;       // table 22: a red ramp
        EXPECT_EQ(b[40 + 4 * e + 3], 255);
        for (int x = 0; x < 4; ++x) EXPECT_EQ(b[1064 + 4 * e + x], e);  // row e holds index e
    }
    GlobalUnlock(bar.m_hDib);
}

TEST_F(ColourBar, NoWindowNoChange)
{
    CColorCtrl loose;
    const int before = loose.GetColorTableIdx();
    loose.SetColorTable(before == 3 ? 4 : 3, 1);
    EXPECT_EQ(loose.GetColorTableIdx(), before);
    EXPECT_EQ(loose.m_hDib, nullptr);
}

TEST_F(ColourBar, ClickOpensTheDialogOnceAndTellsTheParent)
{
    orlex::test::Click(bar.m_hWnd, POINT{5, 100});
    ASSERT_GE(host.notes.size(), 2u);
    EXPECT_EQ(host.notes[0].message, UINT(WM_NOTIFY));
    EXPECT_EQ(host.notes[0].code, NM_CLICK);
    EXPECT_EQ(host.notes[0].wParam, WPARAM(kBarId));
    EXPECT_EQ(host.notes[0].lParam, LPARAM(kBarId));
    EXPECT_EQ(host.Count(WM_COMMAND), 1);  // asked first whether it shows its own
    CImageAdjust* dlg = OpenDialog();
    ASSERT_NE(dlg, nullptr);
    char caption[64] = {};
    ::GetWindowTextA(dlg->m_hWnd, caption, sizeof caption);
    EXPECT_STREQ(caption, "Color Adjustment");
    EXPECT_TRUE(::IsWindowVisible(dlg->m_hWnd));

    dlg->SetWindowPos(nullptr, 600, 600, 0, 0, SWP_NOSIZE | SWP_NOZORDER);  // off the bar
    orlex::test::AdvanceClock(2000);  // a second click, not a double click
    orlex::test::Click(bar.m_hWnd, POINT{5, 100});
    EXPECT_EQ(OpenDialog(), dlg);  // still the one dialog
    EXPECT_EQ(host.Count(WM_COMMAND), 2);
}

TEST_F(ColourBar, HostWithItsOwnDialogGetsTheCommandOnly)
{
    host.answer35203 = 1;
    orlex::test::Click(bar.m_hWnd, POINT{5, 100});
    EXPECT_EQ(host.Count(WM_COMMAND), 1);
    EXPECT_EQ(OpenDialog(), nullptr);
}

TEST_F(ColourBar, SidewaysDragStepsThroughTables)
{
    struct Case {
        const char* what;
        int start;
        std::vector<int> xs;      // client x of the moves after a press at x = 10
        std::vector<int> tables;  // table after each move
        int messages;             // "MESSAGE_COLOR_CTRL_STR" with wParam 512
    };
    const int last = GetNumberOfColorTables() - 1;
    const Case cases[] = {
        {"39 pixels change nothing", 5, {49, -29}, {5, 5}, 0},
        {"40 right, then 40 left of the press", 5, {50, -30}, {6, 4}, 2},
        {"several steps at once", 5, {10 + 3 * 40 + 5}, {8}, 1},
        {"left end clamps, the count goes on", 0, {-30, 10}, {0, 1}, 2},
        {"right end clamps", last, {50, 90}, {last, last}, 2},
    };
    bar.EnableModifyColorTableUsingMouse(true);
    for (const Case& c : cases) {
        bar.SetColorTable(c.start, 0);
        host.notes.clear();
        orlex::test::AdvanceClock(2000);  // each press on its own, not a double click
        orlex::test::MouseDown(bar.m_hWnd, POINT{10, 50});
        EXPECT_TRUE(CColorCtrl::m_bColorDrag) << c.what;
        EXPECT_EQ(::GetCapture(), bar.m_hWnd) << c.what;
        for (std::size_t i = 0; i < c.xs.size(); ++i) {
            orlex::test::MouseMove(bar.m_hWnd, POINT{c.xs[i], 50});
            EXPECT_EQ(bar.GetColorTableIdx(), c.tables[i]) << c.what << " move " << i;
        }
        orlex::test::MouseUp(bar.m_hWnd, POINT{c.xs.back(), 50});
        EXPECT_FALSE(CColorCtrl::m_bColorDrag) << c.what;
        EXPECT_EQ(::GetCapture(), nullptr) << c.what;
        int moving = 0;
        for (const Host::Note& n : host.notes) {
            if (n.message != MESSAGE_COLOR_CTRL_STR) continue;
            EXPECT_EQ(n.wParam, WPARAM(512)) << c.what;
            EXPECT_EQ(n.lParam, reinterpret_cast<LPARAM>(bar.GetColorTable())) << c.what;
            ++moving;
        }
        EXPECT_EQ(moving, c.messages) << c.what;
        EXPECT_EQ(host.Count(WM_COMMAND), 0) << c.what;  // no dialog in this mode
        EXPECT_EQ(OpenDialog(), nullptr) << c.what;
    }
    // The bar shows the table the drag reached.
    bar.SetColorTable(24, 0);
    orlex::test::AdvanceClock(2000);
    orlex::test::Drag(bar.m_hWnd, POINT{10, 50}, POINT{-30, 50}, 2);
    EXPECT_EQ(bar.GetColorTableIdx(), 23);
    orlex::test::Pump();
    EXPECT_EQ(Shown(200), RGB(0, 200, 0));  // table 23: a green ramp
}

TEST_F(ColourBar, RightClickMenuOpensTheDialog)
{
    orlex::test::ScriptAnswer("PopupMenu", ID_COLOR_ADJUST);
    orlex::test::Click(bar.m_hWnd, POINT{5, 30}, orlex::test::Button::Right);
    orlex::test::Pump();
    ASSERT_FALSE(host.notes.empty());
    EXPECT_EQ(host.notes[0].code, NM_RCLICK);
    EXPECT_EQ(host.notes[0].wParam, WPARAM(kBarId));
    const auto& log = orlex::test::ModalLog();
    ASSERT_FALSE(log.empty());
    EXPECT_EQ(log.back().kind, "PopupMenu");
    EXPECT_EQ(log.back().text, "&Color Scale... #35000\n");
    EXPECT_NE(OpenDialog(), nullptr);
}

TEST_F(ColourBar, PointerOverTheBarIsTheSidewaysArrow)
{
    orlex::test::MouseMove(bar.m_hWnd, POINT{5, 5});
    EXPECT_EQ(::GetCursor(), LoadCursor(nullptr, IDC_SIZEWE));
}

TEST_F(ColourBar, TextAndDataExchange)
{
    struct Case {
        int table;
        const char* text;
    };
    for (const Case& c : {Case{3, "Table: 3"}, Case{0, "Table: 0"}, Case{25, "Table: 25"}}) {
        bar.SetColorTable(c.table, 0);
        EXPECT_STREQ(bar.GetText(), c.text);
    }
    host.notes.clear();
    bar.m_nTable = 22;
    CDataExchange save(&bar, TRUE);
    bar.DoDataExchange(&save);
    EXPECT_TRUE(host.notes.empty());
    EXPECT_EQ(bar.GetColorTable()[200].rgbGreen, 200);  // still table 25
    CDataExchange load(&bar, FALSE);
    bar.DoDataExchange(&load);
    ASSERT_EQ(host.notes.size(), 1u);
    EXPECT_EQ(host.notes[0].message, MESSAGE_COLOR_CTRL_STR);
    EXPECT_EQ(host.notes[0].wParam, WPARAM(0));
    EXPECT_EQ(bar.GetColorTable()[200].rgbGreen, 0);  // table 22 now
}

TEST_F(ColourBar, SavedTableGoesToTheProfile)
{
    CWinApp app("colorctrl_test");
    const std::string path = ::testing::TempDir() + "colorctrl_profile.ini";
    std::remove(path.c_str());
    app.SetProfilePath(path.c_str());
    bar.SetColorTable(9, 0);
    EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", -1), UINT(-1));
    bar.SetColorTable(-4, 1);
    EXPECT_EQ(app.GetProfileInt("ColorControl", "ColorTable", -1), 0u);
    EXPECT_EQ(CColorCtrl().GetColorTableIdx(), 0);
    std::remove(path.c_str());
}

TEST_F(ColourBar, PrintInRectStretchesAndFrames)
{
    bar.SetColorTable(25, 0);
    CDC mem;
    ASSERT_TRUE(mem.CreateCompatibleDC(nullptr));
    CBitmap bmp;
    ASSERT_TRUE(bmp.CreateCompatibleBitmap(&mem, 40, 600));
    mem.SelectObject(&bmp);
    mem.FillSolidRect(0, 0, 40, 600, RGB(9, 9, 9));
    CPen red(PS_SOLID, 1, RGB(255, 0, 0));
    mem.SelectObject(&red);
    CRect dest(5, 10, 25, 522);  // two rows of pixels per entry
    bar.PrintInRect(&mem, dest);
    EXPECT_EQ(mem.GetPixel(15, 521 - 1), RGB(0, 0, 0));
    EXPECT_EQ(mem.GetPixel(15, 11), RGB(255, 255, 255));
    EXPECT_EQ(mem.GetPixel(15, 522 - 2 * 100 - 1), RGB(100, 100, 100));
    EXPECT_EQ(mem.GetPixel(5, 300), RGB(255, 0, 0));   // left edge of the frame
    EXPECT_EQ(mem.GetPixel(25, 300), RGB(255, 0, 0));  // right edge
    EXPECT_EQ(mem.GetPixel(15, 10), RGB(255, 0, 0));   // top edge
    EXPECT_EQ(mem.GetPixel(15, 522), RGB(255, 0, 0));  // bottom edge
    EXPECT_EQ(mem.GetPixel(30, 300), RGB(9, 9, 9));
}

// The record -------------------------------------------------------------------------------------

Bytes Ints(std::initializer_list<int> v)
{
    Bytes b;
    for (int x : v)
        for (int k = 0; k < 4; ++k) b.push_back(BYTE(std::uint32_t(x) >> (8 * k)));
    return b;
}

const Bytes kClassRecord = archive_test::Cat(
    {{0xFF, 0xFF, 0x01, 0x00, 0x0A, 0x00}, archive_test::Text("CColorCtrl")});

TEST(ColourBarRecord, StoredBytes)
{
    struct Case {
        bool noVersioning;
        int table, contrast, offset;
        Bytes want;
    };
    const Case cases[] = {
        {false, 7, -3, 40, archive_test::Cat({kClassRecord, Ints({7, -3, 40})})},
        {true, 25, 10, -128, Ints({25, 10, -128})},
    };
    for (const Case& c : cases) {
        ArchiveVersionControl::SetNoVersioning(c.noVersioning);
        CColorCtrl bar;
        bar.m_nTable = c.table;
        bar.SetContrast(c.contrast);
        bar.SetOffset(c.offset);
        const Bytes got = archive_test::Store([&](CArchive& ar) { bar.Serialize(ar); });
        EXPECT_EQ(archive_test::Hex(got), archive_test::Hex(c.want)) << c.noVersioning;
    }
    ArchiveVersionControl::SetNoVersioning(false);
}

TEST(ColourBarRecord, LoadingChecksSchemaAndTableNumber)
{
    InitializeColorTables();
    const int count = GetNumberOfColorTables();
    const Bytes schema2 = archive_test::Cat({{0xFF, 0xFF, 0x02, 0x00, 0x0A, 0x00}, archive_test::Text("CColorCtrl")});
    struct Case {
        const char* what;
        Bytes bytes;
        int cause;  // -1: loads
        int table, contrast, offset;
    };
    const Case cases[] = {
        {"plain", archive_test::Cat({kClassRecord, Ints({3, 2, -1})}), -1, 3, 2, -1},
        {"table past the list", archive_test::Cat({kClassRecord, Ints({count + 24, 0, 0})}), -1, 12, 0, 0},
        {"last table", archive_test::Cat({kClassRecord, Ints({count - 1, 0, 0})}), -1, count - 1, 0, 0},
        {"schema 2", archive_test::Cat({schema2, Ints({3, 2, -1})}), CArchiveException::badSchema, 9, 1, 1},
        {"cut short", archive_test::Cat({kClassRecord, Ints({3, 2})}), CArchiveException::endOfFile, 9, 1, 1},
    };
    for (const Case& c : cases) {
        CColorCtrl bar;
        bar.m_nTable = 9;
        bar.SetContrast(1);
        bar.SetOffset(1);
        const int cause = archive_test::ArchiveCause(
            [&] { archive_test::Load(c.bytes, [&](CArchive& ar) { bar.Serialize(ar); }); });
        EXPECT_EQ(cause, c.cause) << c.what;
        EXPECT_EQ(bar.GetColorTableIdx(), c.table) << c.what;
        EXPECT_EQ(bar.GetContrast(), c.contrast) << c.what;
        EXPECT_EQ(bar.GetOffset(), c.offset) << c.what;
    }
    // Without versioning the three ints alone are read.
    ArchiveVersionControl::SetNoVersioning(true);
    CColorCtrl bar;
    archive_test::Load(Ints({4, -2, 9}), [&](CArchive& ar) { bar.Serialize(ar); });
    ArchiveVersionControl::SetNoVersioning(false);
    EXPECT_EQ(bar.GetColorTableIdx(), 4);
    EXPECT_EQ(bar.GetContrast(), -2);
    EXPECT_EQ(bar.GetOffset(), 9);
}

}  // namespace
