// Dialog templates in their text form, and the common dialogs answered by the modal script.
#include <gtest/gtest.h>

#include <map>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/dlg_template_p.h"

using orlex::detail::DialogTemplate;
using orlex::detail::ParseDialogText;

namespace {


const orlex::detail::DialogItemTemplate* Find(const DialogTemplate& t, int id) {
    for (const auto& it : t.items)
        if (it.id == id) return &it;
    return nullptr;
}

struct ControlCase {
    UINT dialog;
    int id;
    const char* cls;
    const char* text;
    DWORD styleBits;  // bits that must be set
};

TEST(DialogTemplateText, EveryDialogHasItsControls) {
    const ControlCase cases[] = {
        {10002, 10023, "Edit", "", 0x00800000},
        {10002, 10024, "Button", "Use curve mean", 9 | 0x00020000},
        {10002, 10068, "Button", "Channel Data Scale", 9},
        {10002, 2, "Button", "Close", 0},
        {10003, 10034, "ScrollBar", "", 0},
        {10003, 10065, "Button", "Reset Offsets", 0},
        {10005, 10042, "Edit", "", 0x80},
        {10005, 10041, "Button", "&Color Reset", 0},
        {10006, 10051, "ComboBox", "", 3},
        {10006, 10022, "Button", "Use first line style for all curves", 3},
        {10006, 1, "Button", "OK", 1},
        {10017, 10083, "Button", "Left Tick", 9},
        {10017, 10084, "Button", "Set Color ...", 0x00020000},
        {11017, 11018, "msctls_trackbar32", "", 0},
        {11017, 11021, "Static",
         "Can also adjust lighting by pressing Ctrl Right-Mouse-Button and moving the mouse", 0},
    };
    const std::map<UINT, const char*> captions = {
        {10002, "Scale"}, {10003, "Scale"}, {10005, "Color Adjustment"}, {10006, "Grid Style"},
        {10017, "Configure Scan Line Marker"}, {11017, "Adjust 3d Lighting"}};
    for (const auto& [id, caption] : captions) {
        DialogTemplate t;
        ASSERT_TRUE(orlex::detail::LoadDialogTemplate(id, t)) << id;
        EXPECT_EQ(t.id, id);
        EXPECT_EQ(t.caption, caption);
    }
    for (const ControlCase& c : cases) {
        DialogTemplate t;
        ASSERT_TRUE(orlex::detail::LoadDialogTemplate(c.dialog, t));
        const auto* item = Find(t, c.id);
        ASSERT_NE(item, nullptr) << c.dialog << "/" << c.id;
        EXPECT_EQ(item->className, c.cls) << c.id;
        EXPECT_EQ(item->text, c.text) << c.id;
        EXPECT_EQ(item->style & (c.styleBits | 0x50000000u), c.styleBits | 0x50000000u) << c.id;
    }
    DialogTemplate t;
    ASSERT_TRUE(orlex::detail::LoadDialogTemplate(10005, t));
    EXPECT_EQ(t.cx, 103);
    EXPECT_EQ(t.cy, 92);
    EXPECT_EQ(t.fontSize, 8);
    EXPECT_EQ(t.fontFace, "MS Sans Serif");
}

TEST(DialogTemplateText, BrokenTextIsRefused) {
    const char* bad[] = {
        "",                                                     // no DIALOG line
        "DIALOG 5\n",                                            // no size
        "DIALOG 5\nSIZE 10 0\n",
        "DIALOG 5\nSIZE 10 10\nEDITTEXT \"\" 1 0 0 10\n",        // short rectangle
        "DIALOG 5\nSIZE 10 10\nEDITTEXT \"\" 1 0 0 10 10 ES_SHINY\n",
        "DIALOG 5\nSIZE 10 10\nGADGET \"\" 1 0 0 10 10\n",
        "DIALOG 5\nSIZE 10 10\nCAPTION \"open\n",
        "DIALOG 5\nSIZE 10 10\nEDITTEXT \"\" 1 0 0 -4 10\n",
        "DIALOG 5\nSIZE 10 10\nFONT 0 \"x\"\n",
    };
    for (const char* text : bad) {
        DialogTemplate t;
        EXPECT_FALSE(ParseDialogText(text, t)) << text;
    }
    DialogTemplate t;
    EXPECT_TRUE(ParseDialogText("DIALOG 5\nSIZE 10 10\nPUSHBUTTON \"a\" 3 0 0 5 5 NOT WS_TABSTOP BS_ICON\n", t));
    EXPECT_EQ(t.items[0].style, 0x50000040u);
}

TEST(DialogTemplateText, DialogUnitsScaleEachEdge) {
    struct Case { int x, y, cx, cy, bx, by; CRect px; };
    const Case cases[] = {
        {5, 3, 93, 84, 6, 13, CRect(8, 5, 147, 141)},
        {0, 0, 4, 8, 7, 16, CRect(0, 0, 7, 16)},
        {1, 1, 1, 1, 6, 13, CRect(2, 2, 3, 3)},  // rounding of the edges, not of the size
    };
    for (const Case& c : cases)
        EXPECT_EQ(orlex::detail::DialogUnitsToPixels(c.x, c.y, c.cx, c.cy, c.bx, c.by), c.px) << c.x;
}

struct ModalFixture : ::testing::Test {
    void SetUp() override { orlex::ModalScript::Reset(); }
    void TearDown() override { orlex::ModalScript::Reset(); }
};

using FileDialog = ModalFixture;

TEST_F(FileDialog, ScriptedPathsComeBackInPieces) {
    struct Case {
        const char* defExt;
        const char* answer;
        const char* path, *name, *ext, *title;
    };
    const Case cases[] = {
        {"txt", "/tmp/out/plot", "/tmp/out/plot.txt", "plot.txt", "txt", "plot"},
        {"jpg", "/tmp/shot.BMP", "/tmp/shot.BMP", "shot.BMP", "BMP", "shot"},
        {"jpg", "/tmp/a.b/shot", "/tmp/a.b/shot.jpg", "shot.jpg", "jpg", "shot"},
        {nullptr, "rel", "rel", "rel", "", "rel"},
    };
    for (const Case& c : cases) {
        orlex::ModalScript::Push("FileDialog", orlex::ModalAnswer{IDOK, c.answer});
        CFileDialog dlg(FALSE, c.defExt, "data", OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT,
                        "Jpeg Files (*.jpg)|*.jpg|Bmp Files (*.bmp)|*.bmp||");
        ASSERT_EQ(dlg.DoModal(), IDOK) << c.answer;
        EXPECT_STREQ(dlg.GetPathName(), c.path);
        EXPECT_STREQ(dlg.GetFileName(), c.name);
        EXPECT_STREQ(dlg.GetFileExt(), c.ext);
        EXPECT_STREQ(dlg.GetFileTitle(), c.title);
    }
    const orlex::ModalRecord& shown = orlex::ModalScript::Log().front();
    EXPECT_EQ(shown.kind, "FileDialog");
    EXPECT_EQ(shown.text, "Save\ntxt\ndata\nJpeg Files (*.jpg)|*.jpg|Bmp Files (*.bmp)|*.bmp||");
    EXPECT_EQ(shown.style & 0x880006u, 0x080006u);  // the explorer form is always asked for
}

TEST_F(FileDialog, UnscriptedIsCancelled) {
    CFileDialog dlg(TRUE, "txt", nullptr, 0x880006, "Text Files (*.txt)|*.txt||");
    EXPECT_EQ(dlg.DoModal(), IDCANCEL);
    EXPECT_EQ(orlex::ModalScript::Log().back().text.substr(0, 5), "Open\n");
    EXPECT_STREQ(dlg.GetPathName(), "");
}

using ColorDialog = ModalFixture;

TEST_F(ColorDialog, ScriptedColourOrCancel) {
    orlex::ModalScript::Push("ColorDialog", RGB(10, 20, 30));
    CColorDialog dlg(RGB(255, 0, 0), CC_FULLOPEN);
    EXPECT_EQ(dlg.DoModal(), IDOK);
    EXPECT_EQ(dlg.GetColor(), RGB(10, 20, 30));
    EXPECT_EQ(orlex::ModalScript::Log().back().text, "0x000000FF");
    EXPECT_EQ(orlex::ModalScript::Log().back().style, CC_FULLOPEN | CC_RGBINIT);

    CColorDialog second(RGB(1, 2, 3));
    EXPECT_EQ(second.DoModal(), IDCANCEL);
    EXPECT_EQ(second.GetColor(), RGB(1, 2, 3));

    // The plot's own call: custom colours and CC_RGBINIT in the structure.
    CHOOSECOLOR cc;
    cc.rgbResult = RGB(0, 0, 255);
    cc.lpCustColors = CColorDialog::GetSavedCustomColors();
    cc.Flags = CC_FULLOPEN | CC_RGBINIT | CC_ENABLEHOOK;
    orlex::ModalScript::Push("ColorDialog", RGB(0, 128, 0));
    EXPECT_TRUE(ChooseColor(&cc));
    EXPECT_EQ(cc.rgbResult, RGB(0, 128, 0));
    EXPECT_EQ(cc.lpCustColors[0], 0xFFFFFFu);
    EXPECT_EQ(cc.lpCustColors[15], 0x0F0F0Fu);
}

}  // namespace
