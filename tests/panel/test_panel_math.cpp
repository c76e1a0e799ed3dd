// The panel's arithmetic alone: round trips of thumb positions through fractions, and
// numbers to and from text.
#include <gtest/gtest.h>

#include "panel/PanelMath.h"

namespace {

using namespace orlex::panel;

TEST(PanelMath, EveryThumbPositionOfASmallRunSurvivesARoundTrip) {
    // pos / run * run truncates to pos - 1 for some pairs (run 49, pos 1); the thumb keeps
    // its pixel when a fraction read from it is set again (Return, SetSlideRange).
    for (int slideMin : {0, 7})
        for (int run = 1; run <= 200; ++run)
            for (int pos = 0; pos <= run; ++pos) {
                const int thumb = slideMin + pos, max = slideMin + run + 16;
                const double f = SlideFraction(thumb, slideMin, max, 16);
                ASSERT_EQ(ThumbFromFraction(f, slideMin, max, 16, -1), thumb) << run << " " << pos;
                ASSERT_EQ(SlideIndex(f, UINT(run)), UINT(pos == run ? run - 1 : pos));
            }
}

TEST(PanelMath, NumbersReadAndWrittenAsTheCLocaleDoes) {
    const struct {
        const char* text;
        double value;
    } reads[] = {{" \t+12.5e1x", 125.0}, {"0x1p3", 8.0}, {"-.5", -0.5}, {"", 0.0}, {nullptr, 0.0}, {"1,5", 1.0}};
    for (const auto& r : reads) EXPECT_EQ(ParseNumber(r.text), r.value) << (r.text ? r.text : "null");
    EXPECT_STREQ(FormatFixed(2.675, 2), "2.67");  // the nearest double lies below: as printf
    EXPECT_STREQ(FormatFixed(0.05, 1), "0.1");
    EXPECT_STREQ(FormatFixed(-0.0, 1), "-0.0");
}

}  // namespace
