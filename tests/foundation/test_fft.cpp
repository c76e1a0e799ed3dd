#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <vector>

#include "foundation/FFTransform.h"

namespace {

const double kPi = std::acos(-1.0);

TEST(FFTransformSize, LargestPowerOfTwoNotAboveCount)
{
    struct Case {
        int count, n;
    };
    const Case cases[] = {{0, 0}, {1, 1}, {2, 2}, {3, 2}, {7, 4}, {8, 8}, {1000, 512}, {1024, 1024}, {1025, 1024}};
    for (auto const &c : cases) {
        std::vector<float> y(static_cast<size_t>(c.count) + 1, 1.0f);
        FFTransform f(y.data(), c.count);
        EXPECT_EQ(f.GetNumPts(), c.n) << c.count << " points";
        EXPECT_EQ(f.GetNumCurvePts(), c.count);
        for (int i = 0; i < c.n; ++i)
            ASSERT_TRUE(std::isfinite(f.GetMod(i))) << c.count << " points, term " << i;
        EXPECT_EQ(f.GetMod(-1), 0.0);
        EXPECT_EQ(f.GetMod(c.n), 0.0);
    }
}

// Worked by hand: over 4 points the window is 0.08, 0.77, 0.77, 0.08 (sum 1.7).
TEST(FFTransformValues, WorkedFourPointSpectra)
{
    struct Case {
        const char *name;
        std::vector<float> y;
        std::vector<double> mod;
    };
    const Case cases[] = {
        // Offset 0; one term 0.77 gives the flat modulus 0.77 * 2 / 1.7.
        {"impulse", {0, 1, 0, 0}, {0.905882, 0.905882, 0.905882, 0.905882}},
        // Offset -0.5: terms 0.04, 1.155, 0.385, -0.04.
        {"ramp down", {0, 1, 0, -1}, {1.811765, 1.463300, 0.811765, 1.463300}},
        // The ends set the offset: a constant has no spectrum at all.
        {"constant", {5, 5, 5, 5}, {0, 0, 0, 0}},
    };
    for (auto const &c : cases) {
        SCOPED_TRACE(c.name);
        FFTransform f(c.y.data(), static_cast<int>(c.y.size()));
        ASSERT_EQ(f.GetNumPts(), 4);
        for (int k = 0; k < 4; ++k)
            EXPECT_NEAR(f.GetMod(k), c.mod[k], 2e-6) << "term " << k;
    }
}

// The butterflies and the reordering must agree with a plain DFT of the windowed data.
TEST(FFTransformValues, MatchesDirectTransform)
{
    for (int n : {2, 8, 64}) {
        SCOPED_TRACE(n);
        std::vector<float> y(n);
        for (int i = 0; i < n; ++i)
            y[i] = static_cast<float>(std::sin(i * 0.7) * 3 + (i % 5) - 0.25 * i);
        FFTransform f(y.data(), n);

        const double offset = (double(y[0]) + double(y[n - 1])) * 0.5;
        std::vector<double> t(n);
        double wsum = 0;
        for (int i = 0; i < n; ++i) {
            const float w = float(std::cos((i * 2.0 / (n - 1) - 1.0) * 3.14159) * 0.46 + 0.54);
            wsum += w;
            t[i] = (y[i] - offset) * w;
        }
        for (int k = 0; k < n; ++k) {
            std::complex<double> sum = 0;
            for (int i = 0; i < n; ++i)
                sum += t[i] * std::polar(1.0, -2 * kPi * k * i / n);
            EXPECT_NEAR(f.GetMod(k), std::abs(sum) * 2 / wsum, 1e-6) << "term " << k;
        }
    }
}

// A sine of amplitude A on bin b peaks at b (and its mirror N - b) with a modulus of A.
TEST(FFTransformValues, SinePeakAmplitudeAndBin)
{
    struct Case {
        int n, bin;
        double amplitude;
    };
    const Case cases[] = {{256, 16, 2.5}, {1024, 100, 0.01}, {4096, 1000, 1000}};
    for (auto const &c : cases) {
        SCOPED_TRACE(testing::Message() << c.n << " points, bin " << c.bin);
        std::vector<float> y(c.n);
        for (int i = 0; i < c.n; ++i)
            y[i] = static_cast<float>(c.amplitude * std::sin(2 * kPi * c.bin * i / c.n));
        FFTransform f(y.data(), c.n);
        int peak = 0;
        for (int k = 1; k < c.n / 2; ++k)
            if (f.GetMod(k) > f.GetMod(peak))
                peak = k;
        EXPECT_EQ(peak, c.bin);
        EXPECT_NEAR(f.GetMod(c.bin), c.amplitude, c.amplitude * 1e-4);
        EXPECT_NEAR(f.GetMod(c.n - c.bin), c.amplitude, c.amplitude * 1e-4);
        // The Hamming main lobe is two bins wide each side; beyond it the leak is small.
        EXPECT_LT(f.GetMod(c.bin + 3), c.amplitude * 0.01);
    }
}

TEST(FFTransformValues, PointsBeyondThePowerOfTwoAreIgnored)
{
    std::vector<float> a(1000), b(1000);
    for (int i = 0; i < 1000; ++i)
        a[i] = b[i] = static_cast<float>(std::cos(i * 0.3));
    for (int i = 512; i < 1000; ++i)
        b[i] = 1e6f;
    FFTransform fa(a.data(), 1000), fb(b.data(), 1000);
    ASSERT_EQ(fa.GetNumPts(), 512);
    for (int k = 0; k < 512; ++k)
        ASSERT_EQ(fa.GetMod(k), fb.GetMod(k)) << k;
}

} // namespace
