// The single slider driven by the mouse and by its host: thumb position, texts, pixels.
#include <cmath>
#include <limits>

#include "panel/OrlexHorzSlider.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using faces::kLargeThumb;
using faces::kLargeTrack;

constexpr int kWidth = 200;
constexpr int kEnd = kWidth - kLargeThumb.width;  // the thumb's right end

class Slider : public PanelTest {
protected:
    void SetUp() override {
        PanelTest::SetUp();
        ASSERT_TRUE(s.Create(20, 100, kWidth, &host));
        s.LoadBitmap(kLargeThumb.id, kLargeTrack.id);
        s.LoadCtrlMessages(&log, "v1", "v2", "");
        Pump();
    }
    COrlexHorzSlider s;
};

TEST_F(Slider, ThumbJumpsToThePressAndFollowsADragToTheEnds) {
    const struct {
        int x, y;  // slider client point; y far off the slider still drags
        int thumb;
        Texts texts;
    } steps[] = {{50, 5, 50, {"OrlexHelp", "v1"}}, {120, 400, 120, {"v1"}}, {-900, -300, 0, {"v1"}},
                          {-950, 5, 0, {"v1"}},             {3000, 5, kEnd, {"v1"}}};
    MouseDown(s.m_hWnd, POINT{steps[0].x, steps[0].y});
    for (const auto& st : steps) {
        if (&st != steps) MouseMove(s.m_hWnd, POINT{st.x, st.y});
        EXPECT_EQ(s.m_nThumbPos, st.thumb) << st.x;
        EXPECT_EQ(log.Take(), st.texts) << st.x;
    }
    MouseUp(s.m_hWnd, POINT{3000, 400});
    EXPECT_EQ(log.Take(), (Texts{"v2", "v1"}));
    EXPECT_EQ(s.GetPercentSlide(), 1.0);
    EXPECT_EQ(::GetCapture(), nullptr);
    // Only the thumb's rectangles were painted again: no thumb is left where it passed.
    EXPECT_EQ(At(s, 58, kLargeThumb.height / 2), RGB(255, 255, 255));
    EXPECT_EQ(At(s, kEnd + 8, kLargeThumb.height / 2), kLargeThumb.marker);
}

TEST_F(Slider, PaintsBackgroundStretchedTrackAndThumb) {
    s.SetBackgroundColor(RGB(10, 20, 30));
    s.SetPercentSlide(1.0);
    Pump();
    // The track's 64 columns stretched to 200: the layer takes the source column under each
    // destination column's centre, so the track's halves meet between columns 99 and 100.
    const int row = kLargeTrack.height / 2;
    EXPECT_EQ(At(s, 0, row), kLargeTrack.marker);
    EXPECT_EQ(At(s, 99, row), kLargeTrack.marker);
    EXPECT_EQ(At(s, 100, row), kLargeTrack.accent);
    EXPECT_EQ(At(s, kEnd - 1, row), kLargeTrack.accent);
    EXPECT_EQ(At(s, 50, kLargeTrack.height + 2), RGB(10, 20, 30));
    EXPECT_EQ(At(s, kEnd + kLargeThumb.width / 2, kLargeThumb.height / 2), kLargeThumb.marker);
    CRect r;
    s.GetClientRect(&r);
    EXPECT_EQ(r, CRect(0, 0, kWidth, kLargeThumb.height));
}

TEST_F(Slider, OptionsRangesAndFractions) {
    static char a[] = "lo", b[] = "mid", c[] = "hi", d[] = "max";
    static char* opts[] = {a, b, c, d, nullptr};
    s.LoadCtrlOptions(nullptr, opts);
    const std::pair<double, UINT> cases[] = {{0.0, 0}, {0.25, 1}, {0.5, 2}, {0.74, 2}, {0.75, 3}, {1.0, 3}};
    for (const auto& [fraction, index] : cases) {
        s.SetPercentSlide(fraction);
        EXPECT_EQ(s.GetIndexSlide(), index) << fraction;
    }
    EXPECT_EQ(log.Take().size(), 6u);
    // By text: option / count of the slide width, silently; by index the thumb stays.
    s.SetCtrlOption(CString("hi"));
    s.SetCtrlOption(1u);
    EXPECT_EQ(s.m_nThumbPos, kWidth / 2);
    // New ends keep the fraction, and the window its width.
    s.SetPercentSlide(0.5);
    s.SetSlideRange(20, 120);
    EXPECT_EQ(s.m_nThumbPos, 20 + (100 - kLargeThumb.width) / 2);
    EXPECT_EQ(log.Take(), (Texts{"v1", "v1"}));
    CRect r;
    s.GetWindowRect(&r);
    EXPECT_EQ(r.Width(), kWidth);
}

TEST_F(Slider, NoRunAndBadFractionsStayFinite) {
    COrlexHorzSlider narrow;  // the thumb as wide as the slide
    ASSERT_TRUE(narrow.Create(20, 150, kLargeThumb.width, &host));
    narrow.LoadBitmap(kLargeThumb.id, kLargeTrack.id);
    Click(narrow.m_hWnd, POINT{8, 8});
    EXPECT_EQ(narrow.m_nThumbPos, 0);
    EXPECT_EQ(narrow.GetPercentSlide(), 0.0);
    narrow.SetCtrlOption(CString("x"));  // empty table: the thumb stays
    EXPECT_EQ(narrow.m_nThumbPos, 0);
    const double inf = std::numeric_limits<double>::infinity();
    const std::pair<double, int> cases[] = {{0.5, kEnd / 2}, {std::nan(""), kEnd / 2}, {inf, kEnd},
                                            {-inf, 0},       {1e300, kEnd},            {-1e300, 0}};
    for (const auto& [fraction, thumb] : cases) {
        s.SetPercentSlide(fraction);
        EXPECT_EQ(s.m_nThumbPos, thumb) << fraction;
    }
    EXPECT_EQ(s.GetIndexSlide(), 0xFFFFFFFFu);  // no options
}

}  // namespace
