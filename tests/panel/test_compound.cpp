// The compound slider at the screen's top left, with its texts and edit box: layout, the
// value by drag, zoom and typing, and what the host hears.
#include <clocale>
#include <cmath>

#include "panel/Orlex2HSlider.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using faces::kLargeThumb;
using faces::kSmallThumb;
using faces::kSmallTrack;

class Compound : public PanelTest {
protected:
    void SetUp() override {
        // At the origin the sliders' requests to repaint their screen rectangles, read as
        // the compound's client coordinates, fall on the sliders themselves.
        MakeHost(0, 0, 420, 260);
        ASSERT_TRUE(c.Create(0, 0, 300, 10, &host));
        c.LoadBitmap(kLargeThumb.id, faces::kSmallThumb.id, faces::kLargeTrack.id, kSmallTrack.id);
        c.LoadCtrlMessages(&log, "", "", "");
        Pump();
        ASSERT_EQ(Pump(), 0);
    }
    static CRect Place(const CWnd& w) {
        CRect r;
        w.GetWindowRect(&r);
        return r;  // the compound's client coordinates, as it stands at the origin
    }
    CString EditText() {
        CString t;
        c.m_ValueEdit.GetWindowText(t);
        return t;
    }
    // Types into the edit and ends with Return. The first click into the box selects all
    // of it; after a Return the text stands selected already.
    void Enter(const char* text) {
        Later();
        if (CWnd::GetFocus() != &c.m_ValueEdit) Click(c.m_ValueEdit.m_hWnd, POINT{5, 5});
        TypeText(text);
        Key(VK_RETURN);
    }
    void ZoomFully() {
        Later();
        Click(c.m_SmallSlider.m_hWnd, POINT{kSmallTrack.width - 1, 5});
    }

    COrlex2HSlider c;
};

TEST_F(Compound, ChildrenStandWhereTheLayoutPutsThem) {
    const int wL = 300 - 60 - 5;
    EXPECT_EQ(Place(c), CRect(0, 0, 300, 20 + kLargeThumb.height + kSmallThumb.height + 20));
    EXPECT_EQ(Place(c.m_LabelText), CRect(0, 0, 300, 20));
    EXPECT_EQ(Place(c.m_MinText), CRect(0, 20, 30, 40));
    EXPECT_EQ(Place(c.m_MaxText), CRect(wL - 30, 20, wL, 40));
    EXPECT_EQ(Place(c.m_LargeSlider), CRect(0, 40, wL, 40 + kLargeThumb.height));
    EXPECT_EQ(Place(c.m_SmallSlider), CRect(wL - kSmallTrack.width, 64, wL, 64 + kSmallThumb.height));
    EXPECT_EQ(Place(c.m_ValueEdit), CRect(wL + 5, 40, wL + 65, 60));
    EXPECT_EQ(c.m_LargeSlider.GetSlideWidth(), UINT(wL));
    for (const auto& [shown, expect] : {std::pair{EditText(), "1.00"}, {c.m_MinText.m_strText, "0.0"},
                                        {c.m_MaxText.m_strText, "100.0"}, {c.m_LabelText.m_strText, "Label"}})
        EXPECT_STREQ(shown, expect);
}

TEST_F(Compound, DraggingTheLargeThumbSetsTheValueAndTheHostHearsEachStep) {
    const HWND large = c.m_LargeSlider.m_hWnd;
    Drag(large, POINT{10, 5}, POINT{219 / 2, 5}, 2);
    EXPECT_EQ(Pump(), 0);  // every repaint came to an end
    EXPECT_STREQ(EditText(), "49.77");  // 109 of a run of 219 pixels
    EXPECT_EQ(log.Take(), (Texts{"OrlexHelp", "SET PARM VALUE", "SET PARM VALUE", "SET PARM VALUE",
                                 "SET VALUE UPDATE", "SET PARM VALUE"}));
    c.ReceiveCtrlMessage("unknown");  // passed on, nothing else
    EXPECT_EQ(log.Take(), Texts{"unknown"});
}

TEST_F(Compound, ZoomNarrowsTheRangeAroundTheValue) {
    const struct {
        const char* typed;
        double lo, hi;
        const char* shown;
    } cases[] = {{"50", 49.5, 50.5, "50.00"}, {"0.2", 0.0, 0.703, "0.20"}, {"99.9", 99.396, 100.0, "99.90"}};
    ZoomFully();
    log.Take();
    for (const auto& k : cases) {
        Enter(k.typed);
        EXPECT_NEAR(c.m_dRangeMin, k.lo, 1e-9) << k.typed;
        EXPECT_NEAR(c.m_dRangeMax, k.hi, 1e-9) << k.typed;
        EXPECT_STREQ(EditText(), k.shown);
        EXPECT_EQ(c.m_SmallSlider.GetPercentSlide(), 1.0);  // Return leaves the small thumb
        EXPECT_EQ(log.Take(), (Texts{"SET PARM VALUE", "SET ZOOM RANGE", "SET PARM VALUE"}));
    }
    // Zoomed out with the value kept, the thumb's pixel does not move the value.
    Later();
    Click(c.m_SmallSlider.m_hWnd, POINT{0, 5});
    EXPECT_STREQ(c.m_MaxText.m_strText, "100.0");
    EXPECT_STREQ(EditText(), "99.90");
}

TEST_F(Compound, TypedValuesAreClampedAndCommittedOnlyByReturn) {
    // Under a decimal-comma locale when the machine has one: '.' is still the point.
    const std::string saved = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"})
        if (std::setlocale(LC_NUMERIC, name)) break;
    const std::pair<const char*, const char*> cases[] = {{"150", "100.00"}, {"abc", "0.00"}, {"1e999", "100.00"},
                                                         {"nan", "0.00"},   {"-4", "0.00"},  {"12.345", "12.35"}};
    for (const auto& [typed, shown] : cases) {
        Enter(typed);
        EXPECT_STREQ(EditText(), shown) << typed;
        int from = -1, to = -1;
        c.m_ValueEdit.GetSel(from, to);
        EXPECT_EQ(to - from, EditText().GetLength()) << "the value stands selected";
        EXPECT_EQ(CWnd::GetFocus(), &c.m_ValueEdit);
    }
    std::setlocale(LC_NUMERIC, saved.c_str());
    log.Take();
    TypeText("42");
    host.SetFocus();
    EXPECT_DOUBLE_EQ(c.m_dValue, 12.345);
    EXPECT_TRUE(log.texts.empty());
    // The host's own texts take the edit's text, clamped, and redraw nothing.
    for (const char* text : {"WM_KEYUP", "WM_KILLFOCUS"}) {
        c.m_ValueEdit.SetWindowText("250");
        c.ReceiveCtrlMessage(text);
        EXPECT_EQ(c.m_dValue, 100.0);
        EXPECT_STREQ(EditText(), "250");
    }
    EXPECT_EQ(log.Take(), (Texts{"WM_KEYUP", "WM_KILLFOCUS"}));
}

TEST_F(Compound, TooNarrowForItsEditStillWorks) {
    COrlex2HSlider thin;
    ASSERT_TRUE(thin.Create(0, 120, 40, 10, &host));
    thin.LoadBitmap(kLargeThumb.id, kSmallThumb.id, faces::kLargeTrack.id, kSmallTrack.id);
    Click(thin.m_LargeSlider.m_hWnd, POINT{0, 5});
    Key(VK_RETURN);
    EXPECT_EQ(thin.m_LargeSlider.GetPercentSlide(), 0.0);
    EXPECT_TRUE(std::isfinite(thin.m_dValue));
}

}  // namespace
