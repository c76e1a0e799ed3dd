// The integer forms behind the fast 24-bit interpolation, held against the double
// expression they replace, and the whole loop (vector and plain) against the rule on
// values crowded at the places where rounding could tell them apart.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <iterator>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include "imageview/BitmapData.h"
#include "imageview/BitmapKernels.h"

namespace {

using orlex::bitmap::kFitSteps;

// One channel as the interpolation rule writes it, in doubles.
BYTE RuleChannel(BYTE a, BYTE b, std::uint32_t r)
{
    const double step = std::trunc((double(b) - double(a)) / 4294967295.0 * double(r));
    return static_cast<BYTE>(static_cast<BYTE>(static_cast<long long>(step)) + a);
}

// floor(d * r / 4294967295) in exact integers.
std::uint32_t ExactStep(std::uint32_t d, std::uint32_t r) { return std::uint32_t(std::uint64_t(d) * r / kFitSteps); }

// Remainders next to every place where floor(d * r / 4294967295) steps: r = ceil(k * K / d)
// for k = 0..d, and two either side, within 0..K-1.
template <class Check>
void ForEachStepEdge(std::uint32_t d, Check check)
{
    for (std::uint64_t k = 0; k <= d; ++k) {
        const std::uint64_t edge = (k * kFitSteps + d - 1) / d;
        for (std::int64_t off = -2; off <= 2; ++off) {
            const std::int64_t r = std::int64_t(edge) + off;
            if (r >= 0 && r < std::int64_t(kFitSteps)) check(std::uint32_t(r));
        }
    }
}

}  // namespace

TEST(Fit24Integer, ExactOnEveryWholeMultiple)
{
    // The one case the error bound leaves open: d * r a multiple of 4294967295. Each d
    // has gcd(d, K) such remainders; all of them, rising and falling, from several bases.
    int cases = 0;
    for (std::uint32_t d = 1; d <= 255; ++d) {
        const std::uint64_t g = std::gcd(std::uint64_t(d), kFitSteps);
        for (std::uint64_t j = 0; j < g; ++j) {
            const auto r = std::uint32_t(j * (kFitSteps / g));
            for (int a : {0, 255 - int(d), int(d)}) {
                const BYTE lo = BYTE(a), hi = BYTE(a + int(d));
                if (a + int(d) <= 255) ASSERT_EQ(orlex::bitmap::Fit24ChannelExact(lo, hi, r), RuleChannel(lo, hi, r));
                if (a >= int(d)) {
                    const BYTE down = BYTE(a - int(d));
                    ASSERT_EQ(orlex::bitmap::Fit24ChannelExact(BYTE(a), down, r), RuleChannel(BYTE(a), down, r))
                        << "d " << d << " r " << r;
                }
            }
            ++cases;
        }
    }
    EXPECT_EQ(cases, 1485);
}

TEST(Fit24Integer, ExactAtEveryStepEdge)
{
    for (std::uint32_t d = 0; d <= 255; ++d) {
        ForEachStepEdge(d ? d : 1, [&](std::uint32_t r) {
            ASSERT_EQ(orlex::bitmap::Fit24ChannelExact(0, BYTE(d), r), RuleChannel(0, BYTE(d), r)) << d << " " << r;
            ASSERT_EQ(orlex::bitmap::Fit24ChannelExact(255, BYTE(255 - d), r), RuleChannel(255, BYTE(255 - d), r))
                << d << " " << r;
        });
    }
}

TEST(Fit24Integer, ExactOnRandomChannels)
{
    std::mt19937_64 rng(24);
    for (int k = 0; k < 4000000; ++k) {
        const std::uint64_t bits = rng();
        const BYTE a = BYTE(bits), b = BYTE(bits >> 8);
        const auto r = std::uint32_t((bits >> 16) % kFitSteps);
        ASSERT_EQ(orlex::bitmap::Fit24ChannelExact(a, b, r), RuleChannel(a, b, r))
            << int(a) << " " << int(b) << " " << r;
    }
}

TEST(Fit24Integer, ShortStepIsExactWhereItSaysSo)
{
    // At every step edge the short form is either exact or says it may not be; where it
    // may not be, the truth is one more at most.
    int unsure = 0;
    for (std::uint32_t d = 0; d <= 255; ++d) {
        ForEachStepEdge(d ? d : 1, [&](std::uint32_t r) {
            bool certain = false;
            const std::uint32_t got = orlex::bitmap::Fit24StepShort(d, r, certain);
            const std::uint32_t want = ExactStep(d, r);
            if (certain) {
                ASSERT_EQ(got, want) << "d " << d << " r " << r;
            } else {
                ++unsure;
                ASSERT_TRUE(got == want || got + 1 == want) << "d " << d << " r " << r;
            }
        });
    }
    EXPECT_GT(unsure, 0);  // the edges are where it has to own up

    // On random remainders the doubt is rare, so the vector loop seldom falls back.
    std::mt19937_64 rng(8);
    int doubts = 0;
    const int trials = 4000000;
    for (int k = 0; k < trials; ++k) {
        const std::uint64_t bits = rng();
        const auto d = std::uint32_t(bits & 0xFF);
        const auto r = std::uint32_t((bits >> 8) % kFitSteps);
        bool certain = false;
        const std::uint32_t got = orlex::bitmap::Fit24StepShort(d, r, certain);
        if (!certain) {
            ++doubts;
            continue;
        }
        ASSERT_EQ(got, ExactStep(d, r)) << "d " << d << " r " << r;
    }
    EXPECT_LT(doubts, trials / 10000);
}

namespace {

struct Fit24Case {
    const char* name;
    std::vector<RGBQUAD> table;
};

std::vector<Fit24Case> Tables()
{
    std::vector<Fit24Case> out;
    std::vector<RGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = RGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i * 7), 255};
    out.push_back({"ramps and a wrapping red", t});
    for (int i = 0; i < 256; ++i) t[i] = (i % 2) ? RGBQUAD{255, 0, 255, 0} : RGBQUAD{0, 255, 0, 0};
    out.push_back({"full steps up and down", t});
    for (int i = 0; i < 256; ++i) t[i] = RGBQUAD{BYTE(i / 16 * 16), 77, BYTE(i < 128 ? 0 : 255), 0};
    out.push_back({"equal neighbours", t});
    std::mt19937 rng(4);
    for (auto& e : t) e = RGBQUAD{BYTE(rng()), BYTE(rng()), BYTE(rng()), BYTE(rng())};
    out.push_back({"random", t});
    return out;
}

// Ints whose steps fall next to each span boundary q * 4294967295 (and next to the
// carry of the low half), the ends of the limits, the ends of the type, then noise.
std::vector<int> CrowdedValues(double low, double high, bool reserveTop, std::mt19937& rng)
{
    const double n = (reserveTop ? 255.0 : 256.0) * 4294967295.0;
    const double d = high - low + 1.0;
    const double factor = d > 0 ? n / d : 1.0;
    std::vector<int> v = {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX};
    auto near = [&](double x) {
        for (int off = -3; off <= 3; ++off) {
            const double y = std::floor(x) + off;
            if (y >= double(INT_MIN) && y <= double(INT_MAX)) v.push_back(int(y));
        }
    };
    near(low);
    near(high);
    for (int q = 0; q <= 256; ++q) {
        near(low + double(q) * 4294967295.0 / factor);
        near(low + (double(q) * 4294967296.0 - 200.0) / factor);
    }
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    while (v.size() % 64 != 37) v.push_back(any(rng));  // a length off every vector width
    return v;
}

// The forms of the interpolation loop a test can pick on this machine: the widest vector
// form, the AVX2 one (the widest where there is no AVX-512) and the plain one.
enum class Form { Widest, Avx2, Plain };

struct VectorForm {
    Form form;
    const char* name;
};
constexpr VectorForm kVectorForms[] = {{Form::Widest, "widest vector form"}, {Form::Avx2, "AVX2 form"}};

// Runs Fit24Values in the given form; `offset` moves the output off any alignment.
std::vector<unsigned char> RunFit(const std::vector<int>& data, const orlex::bitmap::Fit24Plan& plan, Form form,
                                  std::size_t offset)
{
    std::vector<unsigned char> out(data.size() * 3 + offset + 40, 0xEE);
    orlex::bitmap::UseVectorKernels(form != Form::Plain);
    orlex::bitmap::UseAvx512Kernels(form == Form::Widest);
    orlex::bitmap::Fit24Values(data.data(), out.data() + offset, data.size(), plan);
    orlex::bitmap::UseVectorKernels(true);
    orlex::bitmap::UseAvx512Kernels(true);
    for (std::size_t i = 0; i < offset; ++i) EXPECT_EQ(out[i], 0xEE) << "written before the run";
    for (std::size_t i = offset + data.size() * 3; i < out.size(); ++i) EXPECT_EQ(out[i], 0xEE) << "written past it";
    return std::vector<unsigned char>(out.begin() + offset, out.begin() + offset + data.size() * 3);
}

}  // namespace

TEST(Fit24Loops, MatchTheRuleAtSpanBoundariesAndLimits)
{
    struct Limits {
        double low, high;
    } limits[] = {
        {-2147483648.0, 2147483647.0},                 // the type's whole range
        {-1000.0, 1000.0},                             // a few values per span
        {0.0, 254.0},                                  // one entry per unit
        {5.0, 5.0},                                    // equal limits: d = 1
        {-3e9, 3e9},                                   // wider than the type
        {100.0, -100.0},                               // reversed: factor 1
        {-2147483648.0, -2147483648.0 + 4278190079.00390625 - 1.0},  // factor exactly 256
        {12345.678, 9.87654321e8},
        {-INFINITY, 0.0},                              // every x NaN: entry 0
        {0.0, INFINITY},                               // factor 0
    };
    std::mt19937 rng(9);
    for (const Fit24Case& table : Tables()) {
        for (const Limits& lim : limits) {
            for (bool reserveTop : {true, false}) {
                SCOPED_TRACE(std::string(table.name) + " " + std::to_string(lim.low) + ".." +
                             std::to_string(lim.high) + (reserveTop ? " reserved top" : " full"));
                auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
                orlex::bitmap::PrepareFit24(table.table.data(), lim.low, lim.high, reserveTop, *plan);
                const std::vector<int> data = CrowdedValues(lim.low, lim.high, reserveTop, rng);
                const std::vector<unsigned char> plain = RunFit(data, *plan, Form::Plain, 0);
                std::vector<unsigned char> fast[std::size(kVectorForms)];
                for (std::size_t f = 0; f < std::size(kVectorForms); ++f)
                    fast[f] = RunFit(data, *plan, kVectorForms[f].form, 1 + f);
                for (std::size_t i = 0; i < data.size(); ++i) {
                    const RGBQUAD want = TableInterpolation::LinearFit24Bit(
                        const_cast<RGBQUAD*>(table.table.data()), double(data[i]), lim.low, lim.high, reserveTop);
                    const unsigned char bgr[3] = {want.rgbBlue, want.rgbGreen, want.rgbRed};
                    ASSERT_EQ(std::memcmp(plain.data() + 3 * i, bgr, 3), 0) << "plain, value " << data[i];
                    for (std::size_t f = 0; f < std::size(kVectorForms); ++f)
                        ASSERT_EQ(std::memcmp(fast[f].data() + 3 * i, bgr, 3), 0)
                            << kVectorForms[f].name << ", value " << data[i];
                }
            }
        }
    }
}

TEST(Fit24Loops, VectorMatchesPlainOnMillionsOfValuesPerTable)
{
    std::mt19937 rng(17);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    std::vector<int> data(1 << 21);
    for (const Fit24Case& table : Tables()) {
        for (int round = 0; round < 2; ++round) {
            // The full range, then a narrow window in which the remainders move in
            // small steps through every span.
            const double low = round == 0 ? -2147483648.0 : -300000.0;
            const double high = round == 0 ? 2147483647.0 : 300000.0;
            for (int& v : data) v = round == 0 ? any(rng) : int(rng() % 640000) - 320000;
            auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
            orlex::bitmap::PrepareFit24(table.table.data(), low, high, round == 0, *plan);
            const std::vector<unsigned char> plain = RunFit(data, *plan, Form::Plain, 0);
            for (const VectorForm& f : kVectorForms)
                ASSERT_EQ(RunFit(data, *plan, f.form, 3), plain) << f.name << ", " << table.name << " round " << round;
        }
    }
}

TEST(Fit24Loops, VectorMatchesPlainOnSmoothScans)
{
    // A scan's neighbouring pixels share a span or lie in the ones either side, which the
    // vector forms take a shorter way; ramps over the whole range with noise from none to
    // wider than a span put every lane of a group below, in or above the first lane's
    // span, at both ends of the table too.
    std::mt19937 rng(21);
    std::vector<int> data(1 << 20);
    for (const Fit24Case& table : Tables()) {
        for (int noiseBits : {0, 16, 21, 23, 25}) {
            std::uniform_int_distribution<int> noise(-(1 << noiseBits) + 1, (1 << noiseBits) - 1);
            for (std::size_t i = 0; i < data.size(); ++i) {
                const double ramp = -2147483648.0 + 4294967295.0 * double(i) / double(data.size() - 1);
                data[i] = int(std::clamp(ramp + double(noise(rng)), -2147483648.0, 2147483647.0));
            }
            for (bool reserveTop : {true, false}) {
                auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
                orlex::bitmap::PrepareFit24(table.table.data(), -2147483648.0, 2147483647.0, reserveTop, *plan);
                const std::vector<unsigned char> plain = RunFit(data, *plan, Form::Plain, 0);
                for (const VectorForm& f : kVectorForms)
                    ASSERT_EQ(RunFit(data, *plan, f.form, 2), plain)
                        << f.name << ", " << table.name << " noise 2^" << noiseBits << (reserveTop ? " reserved" : "");
            }
        }
    }
}

TEST(Fit24Loops, NullTableIsBlackAndShortRunsWork)
{
    auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
    orlex::bitmap::PrepareFit24(nullptr, 0.0, 10.0, true, *plan);
    const std::vector<int> data(40, 7);
    for (const VectorForm& f : kVectorForms)
        EXPECT_EQ(RunFit(data, *plan, f.form, 2), std::vector<unsigned char>(120, 0)) << f.name;

    // Every length across the last few groups of both widths, at every offset within a
    // pixel and beyond, with values that sweep several spans.
    const std::vector<RGBQUAD> table = Tables()[0].table;
    orlex::bitmap::PrepareFit24(table.data(), -50.0, 50.0, false, *plan);
    for (std::size_t n = 0; n < 72; ++n) {
        std::vector<int> part(n);
        std::iota(part.begin(), part.end(), -36);
        const std::vector<unsigned char> plain = RunFit(part, *plan, Form::Plain, 0);
        for (const VectorForm& f : kVectorForms)
            for (std::size_t offset = 0; offset < 5; ++offset)
                ASSERT_EQ(RunFit(part, *plan, f.form, offset), plain) << f.name << ", " << n << " offset " << offset;
    }
}

TEST(Fit24Loops, GroupsLeftToThePlainFormSitAmongVectorOnes)
{
    // Values whose low half is next to the carry go to the plain form group by group;
    // the vector stores either side of such a group must not spoil it, wherever in the
    // run it falls (first, middle, last group, the tail).
    auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
    const std::vector<RGBQUAD> table = Tables()[3].table;
    orlex::bitmap::PrepareFit24(table.data(), -2147483648.0, 2147483647.0, false, *plan);
    // Factor 256 * K / 2^32 (just below 256): value -2^31 + k lands at t = k * factor.
    // A value with t's low half at 2^32 - 100 sits in the carry window of span 254.
    const double factor = plan->factor;
    const int nearCarry = int(std::floor(-2147483648.0 + (254.0 * 4294967296.0 + 4294967196.0) / factor));
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    for (std::size_t at : {std::size_t(0), std::size_t(7), std::size_t(8), std::size_t(31), std::size_t(47),
                           std::size_t(60), std::size_t(63)}) {
        std::vector<int> data(64);
        for (int& v : data) v = any(rng);
        data[at] = nearCarry;
        const std::vector<unsigned char> plain = RunFit(data, *plan, Form::Plain, 0);
        for (const VectorForm& f : kVectorForms)
            ASSERT_EQ(RunFit(data, *plan, f.form, 1), plain) << f.name << ", at " << at;
    }
}

TEST(ScaleLoops, VectorMatchesPlainOnLongUnalignedRuns)
{
    // Long enough for the streaming stores, started off their alignment, with values
    // and limits that reach every clamp: below, above, beyond the 32-bit range and NaN.
    std::mt19937 rng(33);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    std::vector<int> data((std::size_t(4) << 20) + 37);
    for (int& v : data) v = any(rng);
    data[0] = INT_MIN;
    data[1] = INT_MAX;
    struct Case {
        double low, factor;
        int levels;
    } cases[] = {
        {-2147483648.0, 256.0 / 4294967295.0, 256},
        {-1e9, 255.0 / 2e9, 255},
        {0.0, 300.0 / 1e9, 300},            // more levels than a byte: the low byte
        {-1e6, 1e3, 256},                   // most values far outside the limits
        {-INFINITY, 0.0, 256},              // every x NaN: index 0
    };
    for (const Case& c : cases) {
        for (std::size_t offset : {std::size_t(0), std::size_t(5)}) {
            // The widest vector form, then the AVX2 one.
            std::vector<unsigned char> fast(data.size() + offset), narrower(data.size()), plain(data.size());
            orlex::bitmap::ScaleValues(data.data(), fast.data() + offset, data.size(), c.low, c.factor, c.levels);
            orlex::bitmap::UseAvx512Kernels(false);
            orlex::bitmap::ScaleValues(data.data(), narrower.data(), data.size(), c.low, c.factor, c.levels);
            orlex::bitmap::UseAvx512Kernels(true);
            orlex::bitmap::UseVectorKernels(false);
            orlex::bitmap::ScaleValues(data.data(), plain.data(), data.size(), c.low, c.factor, c.levels);
            orlex::bitmap::UseVectorKernels(true);
            ASSERT_EQ(std::memcmp(fast.data() + offset, plain.data(), plain.size()), 0)
                << "low " << c.low << " factor " << c.factor << " levels " << c.levels << " offset " << offset;
            ASSERT_EQ(narrower, plain) << "AVX2, low " << c.low << " factor " << c.factor << " levels " << c.levels;
        }
    }
}
