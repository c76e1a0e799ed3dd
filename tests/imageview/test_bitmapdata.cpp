// Data to bitmap: scaling, interpolation, the exact bytes of both block layouts, the
// invalid-data display and every refusal, checked against the rules written out plainly.
#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "foundation/platform/globalmem.h"
#include "imageview/BitmapData.h"
#include "imageview/BitmapKernels.h"

namespace {

using Bytes = std::vector<unsigned char>;

// The whole block as bytes, and it freed.
Bytes TakeBlock(void* dib)
{
    Bytes out(GlobalSize(dib));
    const void* p = GlobalLock(dib);
    std::memcpy(out.data(), p, out.size());
    GlobalUnlock(dib);
    GlobalFree(dib);
    return out;
}

Bytes Le32(std::uint32_t v) { return {BYTE(v), BYTE(v >> 8), BYTE(v >> 16), BYTE(v >> 24)}; }

// The 40-byte header as the layouts give it.
Bytes Header(int rows, int cols, int bits, std::uint32_t imageSize)
{
    Bytes h;
    for (auto part : {Le32(40), Le32(cols), Le32(rows)}) h.insert(h.end(), part.begin(), part.end());
    h.insert(h.end(), {1, 0, BYTE(bits), 0});
    for (auto part : {Le32(0), Le32(imageSize)}) h.insert(h.end(), part.begin(), part.end());
    h.resize(40, 0);
    return h;
}

Bytes Slice(const Bytes& b, std::size_t from, std::size_t n) { return Bytes(b.begin() + from, b.begin() + from + n); }

// A table whose entry i is blue i, green 255 - i, red (i * 7) & 255, reserved 255.
std::vector<RGBQUAD> TestTable()
{
    std::vector<RGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = RGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i * 7), 255};
    return t;
}

// Truncation to 64 bits as exact arithmetic has it (the rule's integers hold any value).
long long Trunc64(double x)
{
    x = std::trunc(x);
    if (std::isnan(x)) return 0;
    return x <= -9.2e18 ? LLONG_MIN : x >= 9.2e18 ? LLONG_MAX : static_cast<long long>(x);
}

// The scaling rule, transcribed.
unsigned char RuleScale(int v, double low, double high, int levels)
{
    const double range = high - low;
    const double factor = range > 0 ? levels / range : 1.0;
    const long long t = Trunc64((double(v) - low) * factor);
    return static_cast<unsigned char>(t < 0 ? 0 : t >= levels ? levels - 1 : t);
}

// The interpolation rule, transcribed.
RGBQUAD RuleFit(const RGBQUAD* table, double v, double low, double high, bool reserveTop)
{
    const long long levels = reserveTop ? 255 : 256;
    const long long n = levels * 4294967295LL;
    const double d = high - low + 1.0;
    const double factor = d > 0 ? double(n) / d : 1.0;
    long long t = Trunc64((v - low) * factor);
    if (t < 0) t = 0;
    if (t >= n) t = static_cast<long long>(std::trunc(double(n) - 1.0));
    long long q = t / 4294967295LL;
    const long long r = t % 4294967295LL;
    const long long top = reserveTop ? 253 : 254;
    q = q < 0 ? 0 : q > top ? top : q;
    if (table == nullptr) return RGBQUAD{0, 0, 0, 255};
    auto ch = [&](BYTE a, BYTE b) {
        return BYTE(BYTE(std::trunc((double(b) - double(a)) / 4294967295.0 * double(r))) + a);
    };
    return RGBQUAD{ch(table[q].rgbBlue, table[q + 1].rgbBlue), ch(table[q].rgbGreen, table[q + 1].rgbGreen),
                   ch(table[q].rgbRed, table[q + 1].rgbRed), 255};
}

bool Contains(const std::vector<int>& list, int p)
{
    for (int x : list)
        if (x == p) return true;
    return false;
}

class BitmapData : public ::testing::Test {
protected:
    void SetUp() override { m_blocks = orlex::LiveGlobalBlocks(); }
    void TearDown() override { EXPECT_EQ(orlex::LiveGlobalBlocks(), m_blocks) << "a block leaked"; }
    std::size_t m_blocks = 0;
};

}  // namespace

TEST_F(BitmapData, ScaleWorkedExamples)
{
    struct Case {
        int v;
        double scale;
        int levels;
        int index;
    } cases[] = {
        {0, 1.0, 256, 128}, {INT_MIN, 1.0, 256, 0}, {INT_MAX, 1.0, 256, 255},
        {0, 1.0, 255, 127}, {INT_MIN, 1.0, 255, 0}, {INT_MAX, 1.0, 255, 254},
        {1 << 30, 0.5, 256, 255}, {-(1 << 30), 0.5, 256, 0}, {1 << 29, 0.5, 256, 192},
    };
    for (const Case& c : cases) {
        int v = c.v;
        unsigned char out = 0xAA;
        Scale8BitData(&v, &out, 1, 1, c.scale, c.levels);
        EXPECT_EQ(out, c.index) << c.v << " scale " << c.scale << " levels " << c.levels;
    }
}

TEST_F(BitmapData, ScaleLimitsAndOddLevels)
{
    struct Case {
        std::vector<int> data;
        double low, high;
        int levels;
        Bytes out;
    } cases[] = {
        {{-5, 0, 10, 20, 29, 30, 31}, 0, 30, 30, {0, 0, 10, 20, 29, 29, 29}},
        // high == low: factor 1, pixels are v - low clamped.
        {{99, 100, 101, 200, 400}, 100, 100, 256, {0, 0, 1, 100, 255}},
        // high < low also takes factor 1.
        {{5, 6, 300}, 5, 0, 256, {0, 1, 255}},
        // More than 256 levels: the index's low byte.
        {{0, 299, 400}, 0, 300, 300, {0, 43, 43}},
        // No level at all: the factor is 0, so every value is levels - 1, as a byte.
        {{-3, 0, 7}, 0, 10, 0, {255, 255, 255}},
        {{-3, 0, 7}, 0, 10, 1, {0, 0, 0}},
    };
    for (const Case& c : cases) {
        std::vector<int> data = c.data;
        Bytes out(data.size(), 0xAA);
        Scale8BitData(data.data(), out.data(), 1, int(data.size()), c.low, c.high, c.levels);
        EXPECT_EQ(out, c.out) << c.low << ".." << c.high << " levels " << c.levels;
    }
    // Fewer than one row or column: nothing is written.
    int v = 5;
    unsigned char out = 0xAA;
    Scale8BitData(&v, &out, 0, 1, 0.0, 10.0, 256);
    Scale8BitData(&v, &out, -1, 1, 0.0, 10.0, 256);
    Scale8BitData(&v, &out, 1, 0, 0.0, 10.0, 256);
    EXPECT_EQ(out, 0xAA);
}

// The random comparisons run with the vector loops and with the plain ones.
class BitmapKernelForms : public BitmapData, public ::testing::WithParamInterface<bool> {
protected:
    void SetUp() override
    {
        BitmapData::SetUp();
        orlex::bitmap::UseVectorKernels(GetParam());
    }
    void TearDown() override
    {
        orlex::bitmap::UseVectorKernels(true);
        BitmapData::TearDown();
    }
};
INSTANTIATE_TEST_SUITE_P(VectorAndPlain, BitmapKernelForms, ::testing::Bool());

TEST_P(BitmapKernelForms, ScaleMatchesTheRuleOnRandomData)
{
    std::mt19937 rng(11);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    std::uniform_int_distribution<int> small(-1000, 1000);
    for (int trial = 0; trial < 40; ++trial) {
        const int n = 1 + trial * 13;  // lengths that end off the vector width too
        std::vector<int> data(n);
        for (int& v : data) v = (trial % 2) ? any(rng) : small(rng);
        double low = (trial % 2) ? double(any(rng)) : small(rng);
        double high = low + ((trial % 2) ? std::ldexp(double(rng() % 1000), 22) : double(rng() % 3000));
        const int levels = trial % 3 == 0 ? 255 : 256;
        Bytes out(n);
        Scale8BitData(data.data(), out.data(), 1, n, low, high, levels);
        for (int i = 0; i < n; ++i)
            ASSERT_EQ(out[i], RuleScale(data[i], low, high, levels)) << "trial " << trial << " i " << i;
    }
}

TEST_F(BitmapData, LinearFitWorkedExamples)
{
    std::vector<RGBQUAD> grey(256);
    for (int i = 0; i < 256; ++i) grey[i] = RGBQUAD{BYTE(i), BYTE(i), BYTE(i), 0};
    std::vector<RGBQUAD> steep = grey;
    steep[10] = RGBQUAD{200, 100, 0, 0};
    steep[11] = RGBQUAD{10, 50, 255, 0};
    const double full = 2147483647.0;
    struct Case {
        const RGBQUAD* table;
        double v, low, high;
        bool reserveTop;
        RGBQUAD out;
    } cases[] = {
        // At low: entry 0.
        {grey.data(), -full - 1, -full - 1, full, true, {0, 0, 0, 255}},
        {grey.data(), -full - 1, -full - 1, full, false, {0, 0, 0, 255}},
        // At high: just below the last entry of the span (254, or 255 with "None").
        {grey.data(), full, -full - 1, full, true, {253, 253, 253, 255}},
        {grey.data(), full, -full - 1, full, false, {254, 254, 254, 255}},
        // One entry per unit (d = 255): whole values hit entries, halves interpolate;
        // a falling step wraps in 8 bits to the right value.
        {steep.data(), 10.0, 0, 254, true, {200, 100, 0, 255}},
        {steep.data(), 10.5, 0, 254, true, {106, 76, 127, 255}},
        {grey.data(), 100.25, 0, 254, true, {100, 100, 100, 255}},
        // Below low and far above high: clamped.
        {grey.data(), -1e30, 0, 254, true, {0, 0, 0, 255}},
        {grey.data(), 1e30, 0, 254, false, {254, 254, 254, 255}},
        // Null table: black.
        {nullptr, 17.0, 0, 254, true, {0, 0, 0, 255}},
    };
    for (const Case& c : cases) {
        const RGBQUAD got = TableInterpolation::LinearFit24Bit(const_cast<RGBQUAD*>(c.table), c.v, c.low, c.high,
                                                               c.reserveTop);
        SCOPED_TRACE(std::to_string(c.v) + (c.reserveTop ? " reserve" : " full"));
        EXPECT_EQ(got.rgbBlue, c.out.rgbBlue);
        EXPECT_EQ(got.rgbGreen, c.out.rgbGreen);
        EXPECT_EQ(got.rgbRed, c.out.rgbRed);
        EXPECT_EQ(got.rgbReserved, 255);
    }
}

TEST_F(BitmapData, LinearFitMatchesTheRuleOnRandomValues)
{
    const std::vector<RGBQUAD> table = TestTable();
    std::mt19937 rng(5);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    for (int k = 0; k < 20000; ++k) {
        const double low = (k % 4 == 0) ? -2147483648.0 : double(any(rng) / 2);
        const double high = low + ((k % 3 == 0) ? 4294967295.0 : double(rng() % 100000));
        const double v = (k % 5 == 0) ? low + double(rng() % 256) : double(any(rng));
        const bool reserve = k % 2;
        const RGBQUAD a = TableInterpolation::LinearFit24Bit(const_cast<RGBQUAD*>(table.data()), v, low, high, reserve);
        const RGBQUAD b = RuleFit(table.data(), v, low, high, reserve);
        ASSERT_EQ(std::memcmp(&a, &b, 4), 0) << "v " << v << " low " << low << " high " << high;
    }
}

TEST(BitmapKernels, StepByReciprocalRoundsAsTheDivision)
{
    // The vector interpolation multiplies a table step by the reciprocal of 4294967295
    // instead of dividing; that holds only because every step rounds the same.
    const double inverse = 1.0 / 4294967295.0;
    for (int d = -255; d <= 255; ++d) ASSERT_EQ(double(d) / 4294967295.0, double(d) * inverse) << d;
}

TEST_F(BitmapData, EightBitBlockBytes)
{
    // 2 rows x 4 columns, limits 0..8 with 256 levels: index 32 per unit.
    std::vector<int> data = {0, 1, 2, 3, 4, 5, 6, 8};
    std::vector<RGBQUAD> table = TestTable();
    void* dib = reinterpret_cast<void*>(1);
    ASSERT_EQ(CreateBitmap8Bit(dib, 256, data.data(), 2, 4, table.data(), 0.0, 8.0, 0, {}), 1);
    ASSERT_NE(dib, nullptr);
    const Bytes b = TakeBlock(dib);
    ASSERT_EQ(b.size(), 1064u + 8u);
    EXPECT_EQ(Slice(b, 0, 40), Header(2, 4, 8, 8));
    EXPECT_EQ(std::memcmp(b.data() + 40, table.data(), 1024), 0);
    EXPECT_EQ(Slice(b, 1064, 8), (Bytes{0, 32, 64, 96, 128, 160, 192, 255}));
}

TEST_F(BitmapData, TwentyFourBitBlockBytes)
{
    // 1 row x 3 columns, limits 0..254: one table entry per unit.
    std::vector<int> data = {0, 7, 300};
    std::vector<RGBQUAD> table = TestTable();
    void* dib = nullptr;
    ASSERT_EQ(CreateBitmap(dib, 256, data.data(), 1, 3, table.data(), 0.0, 254.0, 0, {}), 1);
    const Bytes b = TakeBlock(dib);
    ASSERT_EQ(b.size(), 44u + 9u);
    EXPECT_EQ(Slice(b, 0, 40), Header(1, 3, 24, 9));
    EXPECT_EQ(Slice(b, 40, 4), (Bytes{0, 0, 0, 0}));
    // Entry 0, entry 7 (blue 7, green 248, red 49), and the top: reserved span ends at
    // 253 + almost one step.
    const RGBQUAD top = RuleFit(table.data(), 300, 0, 254, true);
    EXPECT_EQ(Slice(b, 44, 9), (Bytes{0, 255, 0, 7, 248, 49, top.rgbBlue, top.rgbGreen, top.rgbRed}));
}

TEST_F(BitmapData, InvalidDisplayOnEightBit)
{
    // Full-range data: 0 and INT_MAX, then the same; positions 1 and 2 listed invalid,
    // with a position past the end and a negative one that must be ignored.
    std::vector<int> data = {0, INT_MAX, INT_MIN, INT_MAX};
    const double h = 2147483647.5;
    struct Case {
        int disp;
        Bytes pixels;
        RGBQUAD entry255;
    } cases[] = {
        {0, {128, 255, 0, 255}, {255, 0, 1, 255}},      // "Fill": nothing marked, list still emptied
        {1, {128, 255, 255, 255}, {0, 0, 255, 0}},      // "Red": entry 255 red, so valid 255s show red too
        {2, {128, 255, 255, 255}, {255, 0, 0, 0}},
        {3, {128, 255, 255, 255}, {0, 255, 0, 0}},
        {4, {128, 255, 255, 255}, {255, 255, 255, 0}},
        {5, {128, 255, 255, 255}, {0, 0, 0, 0}},
        {6, {127, 254, 0, 254}, {255, 0, 1, 255}},      // "None": top index 254, nothing marked
    };
    std::vector<RGBQUAD> table = TestTable();
    table[255] = RGBQUAD{255, 0, 1, 255};
    for (const Case& c : cases) {
        SCOPED_TRACE(g_invalidDataDispNames[c.disp]);
        void* dib = nullptr;
        ASSERT_EQ(CreateBitmap8Bit(dib, 256, data.data(), 2, 2, table.data(), -h, h, c.disp, {2, 1, 4, -1, 2}), 1);
        const Bytes b = TakeBlock(dib);
        EXPECT_EQ(Slice(b, 1064, 4), c.pixels);
        EXPECT_EQ(std::memcmp(b.data() + 40 + 255 * 4, &c.entry255, 4), 0);
        EXPECT_EQ(std::memcmp(b.data() + 40, table.data(), 255 * 4), 0);
    }
}

TEST_F(BitmapData, InvalidDisplayOnTwentyFourBit)
{
    std::vector<int> data = {0, 1, 2, 3};
    std::vector<RGBQUAD> table = TestTable();
    struct Case {
        int disp;
        Bytes marked;  // blue, green, red of positions 1 and 3
    } cases[] = {
        {0, {1, 254, 7, 3, 252, 21}}, {1, {0, 0, 255, 0, 0, 255}}, {2, {255, 0, 0, 255, 0, 0}},
        {3, {0, 255, 0, 0, 255, 0}},  {4, {255, 255, 255, 255, 255, 255}}, {5, {0, 0, 0, 0, 0, 0}},
        {6, {1, 254, 7, 3, 252, 21}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(g_invalidDataDispNames[c.disp]);
        void* dib = nullptr;
        ASSERT_EQ(CreateBitmap(dib, 256, data.data(), 2, 2, table.data(), 0.0, 254.0, c.disp, {3, 1, 99}), 1);
        const Bytes b = TakeBlock(dib);
        EXPECT_EQ(Slice(b, 44, 3), (Bytes{0, 255, 0}));
        EXPECT_EQ(Slice(b, 47, 3), Slice(c.marked, 0, 3));
        EXPECT_EQ(Slice(b, 50, 3), (Bytes{2, 253, 14}));
        EXPECT_EQ(Slice(b, 53, 3), Slice(c.marked, 3, 3));
    }
}

TEST_F(BitmapData, NullTables)
{
    std::vector<int> data = {0, 100};
    void* dib = nullptr;
    ASSERT_EQ(CreateBitmap8Bit(dib, 256, data.data(), 1, 2, nullptr, 0.0, 100.0, 0, {}), 1);
    Bytes b = TakeBlock(dib);
    for (int i = 0; i < 256; ++i) ASSERT_EQ(Slice(b, 40 + i * 4, 4), (Bytes{BYTE(i), BYTE(i), BYTE(i), 0})) << i;
    ASSERT_EQ(CreateBitmap(dib, 256, data.data(), 1, 2, nullptr, 1.0), 1);
    b = TakeBlock(dib);
    EXPECT_EQ(Slice(b, 40 + 77 * 4, 4), (Bytes{77, 77, 77, 0}));
    ASSERT_EQ(CreateBitmap(dib, 256, data.data(), 1, 2, nullptr, 0.0, 100.0, 1, {1}), 1);
    b = TakeBlock(dib);
    EXPECT_EQ(Slice(b, 44, 6), (Bytes{0, 0, 0, 0, 0, 255}));  // black, then the marked red
}

TEST_F(BitmapData, SingleScaleBlock)
{
    std::vector<int> data = {0, INT_MAX, INT_MIN};
    std::vector<RGBQUAD> table = TestTable();
    void* dib = nullptr;
    ASSERT_EQ(CreateBitmap(dib, 256, data.data(), 1, 3, table.data(), 1.0), 1);
    const Bytes b = TakeBlock(dib);
    ASSERT_EQ(b.size(), 1064u + 3u);
    EXPECT_EQ(Slice(b, 0, 40), Header(1, 3, 8, 3));
    EXPECT_EQ(Slice(b, 1064, 3), (Bytes{128, 255, 0}));
}

TEST_F(BitmapData, Refusals)
{
    std::vector<int> data = {1, 2, 3, 4};
    std::vector<RGBQUAD> table = TestTable();
    void* const sentinel = reinterpret_cast<void*>(0x1234);
    struct Case {
        const char* what;
        int (*call)(void*&, int*, RGBQUAD*);
        bool dibCleared;  // the 8-bit form with limits clears dib before it checks
    } cases[] = {
        {"scale 0", [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 2, 2, t, 0.0); }, false},
        {"scale < 0", [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 2, 2, t, -1.0); }, false},
        {"scale NaN", [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 2, 2, t, NAN); }, false},
        {"scale, no data", [](void*& d, int*, RGBQUAD* t) { return CreateBitmap(d, 256, nullptr, 2, 2, t, 1.0); }, false},
        {"scale, rows < 0", [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, -2, -2, t, 1.0); }, false},
        {"8-bit high < low",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap8Bit(d, 256, p, 2, 2, t, 5.0, 4.0, 1, {0}); }, true},
        {"8-bit no data",
         [](void*& d, int*, RGBQUAD* t) { return CreateBitmap8Bit(d, 256, nullptr, 2, 2, t, 0.0, 4.0, 1, {0}); }, true},
        {"8-bit NaN", [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap8Bit(d, 256, p, 2, 2, t, NAN, 4.0, 1, {}); },
         true},
        {"8-bit cols < 0",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap8Bit(d, 256, p, 2, -2, t, 0.0, 4.0, 1, {}); }, true},
        {"8-bit too large",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap8Bit(d, 256, p, 65536, 65536, t, 0.0, 4.0, 1, {}); },
         true},
        {"24-bit high == low",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 2, 2, t, 4.0, 4.0, 1, {0}); }, false},
        {"24-bit high < low",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 2, 2, t, 4.0, 3.0, 1, {0}); }, false},
        {"24-bit no data",
         [](void*& d, int*, RGBQUAD* t) { return CreateBitmap(d, 256, nullptr, 2, 2, t, 0.0, 4.0, 1, {0}); }, false},
        {"24-bit too large",
         [](void*& d, int* p, RGBQUAD* t) { return CreateBitmap(d, 256, p, 40000, 40000, t, 0.0, 4.0, 1, {}); }, false},
    };
    for (const Case& c : cases) {
        void* dib = sentinel;
        EXPECT_EQ(c.call(dib, data.data(), table.data()), 0) << c.what;
        EXPECT_EQ(dib, c.dibCleared ? nullptr : sentinel) << c.what;
    }
}

TEST_F(BitmapData, EmptyImagesAreHeadersOnly)
{
    int v = 0;
    void* dib = nullptr;
    ASSERT_EQ(CreateBitmap8Bit(dib, 256, &v, 0, 5, nullptr, 0.0, 1.0, 1, {0}), 1);
    Bytes b = TakeBlock(dib);
    EXPECT_EQ(b.size(), 1064u);
    EXPECT_EQ(Slice(b, 0, 40), Header(0, 5, 8, 0));
    ASSERT_EQ(CreateBitmap(dib, 256, &v, 3, 0, nullptr, 0.0, 1.0, 1, {0}), 1);
    b = TakeBlock(dib);
    EXPECT_EQ(b.size(), 44u);
    EXPECT_EQ(Slice(b, 0, 40), Header(3, 0, 24, 0));
}

TEST_P(BitmapKernelForms, WholeImagesMatchThePlainRuleWithInvalidLists)
{
    std::mt19937 rng(3);
    std::uniform_int_distribution<int> any(INT_MIN, INT_MAX);
    const std::vector<RGBQUAD> table = TestTable();
    for (int trial = 0; trial < 14; ++trial) {
        const int rows = 3 + trial % 5, cols = 5 + trial;
        const int n = rows * cols;
        std::vector<int> data(n);
        // Every fourth image: small integers on limits of about one entry a unit, so that
        // values fall exactly on the boundaries between table entries.
        const bool entryGrid = trial % 4 == 3;
        for (int& v : data) v = entryGrid ? int(rng() % 320) - 10 : any(rng) >> (trial % 8);
        std::vector<int> invalid;
        for (int k = 0; k < trial * 3; ++k) invalid.push_back(int(rng() % (n + 10)) - 5);
        const int disp = trial % 7;
        const double low = entryGrid ? 0.0 : -double(1u << 30) * (1 + trial % 3);
        const double high = entryGrid ? 254.0 + trial % 2 : low + std::ldexp(1.0, 28 + trial % 5);
        SCOPED_TRACE("trial " + std::to_string(trial));

        void* dib = nullptr;
        ASSERT_EQ(CreateBitmap8Bit(dib, 256, data.data(), rows, cols, const_cast<RGBQUAD*>(table.data()), low, high,
                                   disp, invalid),
                  1);
        Bytes b = TakeBlock(dib);
        const bool marks = disp != 0 && disp != 6;
        const int levels = disp == 6 ? 255 : 256;
        for (int p = 0; p < n; ++p) {
            const unsigned char want = (marks && Contains(invalid, p)) ? 255 : RuleScale(data[p], low, high, levels);
            ASSERT_EQ(b[1064 + p], want) << p;
        }

        ASSERT_EQ(CreateBitmap(dib, 256, data.data(), rows, cols, const_cast<RGBQUAD*>(table.data()), low, high, disp,
                               invalid),
                  1);
        b = TakeBlock(dib);
        const RGBQUAD mark = InvalidDataDispColour(disp);
        for (int p = 0; p < n; ++p) {
            const RGBQUAD c = (marks && Contains(invalid, p)) ? mark : RuleFit(table.data(), data[p], low, high, disp != 6);
            ASSERT_EQ(Slice(b, 44 + p * 3, 3), (Bytes{c.rgbBlue, c.rgbGreen, c.rgbRed})) << p;
        }
    }
}

TEST(InvalidDataDispNames, NamesAndLookup)
{
    const char* names[] = {"Fill", "Red", "Blue", "Green", "White", "Black", "None"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_STREQ(GetInvalidDataDispName(i), names[i]);
        EXPECT_EQ(FindInvalidDataDisp(names[i]), i);
        EXPECT_EQ(InvalidDataDispMarks(i), i >= 1 && i <= 5);
    }
    struct Case {
        const char* name;
        int index;
    } lookups[] = {{"red", 0}, {"RED", 0}, {"Red ", 0}, {"", 0}, {nullptr, 0}, {"Black", 5}};
    for (const Case& c : lookups) EXPECT_EQ(FindInvalidDataDisp(c.name), c.index) << (c.name ? c.name : "null");
    EXPECT_STREQ(GetInvalidDataDispName(7), "");
    EXPECT_STREQ(GetInvalidDataDispName(-1), "");
}
