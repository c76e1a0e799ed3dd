// The static text's lines and background, and the edit box's colours, as pixels.
#include "panel/OrlexText.h"
#include "panel/OrlexTextEdit.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;

class Text : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        ASSERT_TRUE(t.Create(10, 150, 120, 40, &host));
        t.SetFont(9, "Arial");
        Pump();
    }
    // Which 10-pixel bands of the text hold ink (pixels not of `ground`).
    std::vector<bool> InkBands(COLORREF ground) {
        std::vector<bool> bands(4, false);
        for (int y = 0; y < 40; ++y)
            for (int x = 0; x < 120; ++x)
                if (At(t, x, y) != ground) bands[y / 10] = true;
        return bands;
    }
    COrlexText t;
};

TEST_F(Text, LinesStepTenPixelsUntilALineFeedStandsFirstOrSecond) {
    const std::pair<const char*, std::vector<bool>> cases[] = {
        {"Wg\nWg\nWg", {true, true, true, false}},
        {"W\nWg\nWg", {true, false, false, false}},  // drawn as one piece
        {"Wg\n\nWg", {true, true, false, false}}};   // the rest, "\nWg", is one piece
    for (const auto& [text, bands] : cases) {
        host.Invalidate();  // a fresh background under the text
        t.SetText(text);
        Pump();
        EXPECT_EQ(InkBands(kHostColour), bands) << text;
    }
}

TEST_F(Text, TransparentDrawsOverTheOldTextAndFilledCoversIt) {
    t.SetText("WWW");
    Pump();
    EXPECT_EQ(At(t, 119, 39), kHostColour);
    t.SetText("");  // repainted without erase: the old text stays
    Pump();
    EXPECT_TRUE(InkBands(kHostColour)[0]);
    t.SetBackgroundColor(RGB(0, 90, 0));
    t.SetText("");
    Pump();
    EXPECT_EQ(InkBands(RGB(0, 90, 0)), std::vector<bool>(4, false));
}

TEST_F(Text, EditDrawsWithTheSystemColoursNotItsOwn) {
    COrlexTextEdit edit;
    ASSERT_TRUE(edit.Create(150, 150, 80, 24, &host));
    edit.SetTextColor(RGB(0x1E, 0x1E, 0xFF));
    edit.SetFont(18, "Arial");
    edit.SetText("88888");
    Pump();
    int ink = 0;
    for (COLORREF c : Pixels(edit.m_hWnd, RECT{0, 0, 76, 20})) {
        EXPECT_NE(c, 0xFF1E1Eu);
        ink += c == RGB(0, 0, 0);
    }
    EXPECT_GT(ink, 10);
}

}  // namespace
