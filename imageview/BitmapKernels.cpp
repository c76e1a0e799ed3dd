#include "imageview/BitmapKernels.h"

#include <cassert>
#include <cmath>
#include <cstring>

#include "imageview/BitmapData.h"

// The scaling loop is written with the compiler's vector types so it needs no
// auto-vectoriser; on x86-64 it is built for AVX-512, AVX2 and the baseline, picked at
// load time. The arithmetic is the same IEEE double arithmetic in every clone, so the
// results are bit-identical to the scalar rule.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__SANITIZE_ADDRESS__)
#define ORLEX_KERNEL_CLONES __attribute__((target_clones("avx512f", "avx2", "default")))
#else
#define ORLEX_KERNEL_CLONES
#endif

namespace orlex::bitmap {

namespace {

typedef int V8i __attribute__((vector_size(32)));
typedef double V8d __attribute__((vector_size(64)));
typedef unsigned char V8b __attribute__((vector_size(8)));

// Truncation towards zero to 64 bits, saturating where the rule's integer would not
// hold the value; NaN counts as below zero.
long long TruncSaturated(double x)
{
    if (!(x > -9.2233720368547758e18)) return x == x ? INT64_MIN : -1;
    if (x >= 9.2233720368547758e18) return INT64_MAX;
    return static_cast<long long>(x);
}

// The rule exactly as stated, for level counts that the fast form doesn't cover.
void ScaleValuesGeneral(const int* src, unsigned char* dst, std::size_t n, double low, double factor, int levels)
{
    for (std::size_t i = 0; i < n; ++i) {
        const long long t = TruncSaturated((double(src[i]) - low) * factor);
        dst[i] = static_cast<unsigned char>(t < 0 ? 0 : t >= levels ? levels - 1 : t);
    }
}

// For levels >= 1 clamping before the truncation gives the same result:
// x <= 0 -> 0, x >= levels - 1 -> levels - 1, and trunc(x) in between.
ORLEX_KERNEL_CLONES
void ScaleValuesClamped(const int* src, unsigned char* dst, std::size_t n, double low, double factor, double top)
{
    const V8d zero = {};
    const V8d vlow = zero + low;
    const V8d vfactor = zero + factor;
    const V8d vtop = zero + top;
    std::size_t i = 0;
    for (; i + 8 <= n; i += 8) {
        V8i v;
        std::memcpy(&v, src + i, sizeof v);
        V8d x = (__builtin_convertvector(v, V8d) - vlow) * vfactor;
        x = x > zero ? x : zero;
        x = x < vtop ? x : vtop;
        const V8b b = __builtin_convertvector(__builtin_convertvector(x, V8i), V8b);
        std::memcpy(dst + i, &b, sizeof b);
    }
    for (; i < n; ++i) {
        double x = (double(src[i]) - low) * factor;
        x = x > 0.0 ? x : 0.0;
        x = x < top ? x : top;
        dst[i] = static_cast<unsigned char>(static_cast<int>(x));
    }
}

}  // namespace

void ScaleValues(const int* src, unsigned char* dst, std::size_t n, double low, double factor, int levels)
{
    if (levels < 1)
        ScaleValuesGeneral(src, dst, n, low, factor, levels);
    else
        ScaleValuesClamped(src, dst, n, low, factor, double(levels - 1));
}

void PrepareFit24(const RGBQUAD* table, double low, double high, bool reserveTop, Fit24Plan& plan)
{
    const std::uint64_t n = (reserveTop ? 255u : 256u) * kFitSteps;
    const double d = high - low + 1.0;
    plan.low = low;
    plan.factor = d > 0 ? double(n) / d : 1.0;
    plan.lastStep = double(n) - 1.0;
    plan.top = reserveTop ? 253 : 254;
    plan.black = table == nullptr;
    if (plan.black) return;
    for (std::uint32_t q = 0; q <= plan.top; ++q) {
        const BYTE a[3] = {table[q].rgbBlue, table[q].rgbGreen, table[q].rgbRed};
        const BYTE b[3] = {table[q + 1].rgbBlue, table[q + 1].rgbGreen, table[q + 1].rgbRed};
        for (int c = 0; c < 3; ++c) {
            // Same expression as the per-value rule, (b - a) / steps, so that the
            // product with the remainder rounds identically.
            plan.spans[q].slope[c] = (double(b[c]) - double(a[c])) / 4294967295.0;
            plan.spans[q].base[c] = a[c];
        }
    }
}

void Fit24Values(const int* src, unsigned char* dst, std::size_t n, const Fit24Plan& plan)
{
    if (plan.black) {
        std::memset(dst, 0, n * 3);
        return;
    }
    const double low = plan.low;
    const double factor = plan.factor;
    const double last = plan.lastStep;
    const std::uint64_t top = plan.top;
    const Fit24Plan::Span* spans = plan.spans;
    for (std::size_t i = 0; i < n; ++i, dst += 3) {
        double x = (double(src[i]) - low) * factor;
        x = x > 0.0 ? x : 0.0;
        x = x < last ? x : last;
        const std::uint64_t t = static_cast<std::uint64_t>(static_cast<long long>(x));
        std::uint64_t q = t / kFitSteps;
        const double r = double(static_cast<long long>(t - q * kFitSteps));
        q = q < top ? q : top;  // the remainder stays as it is
        const Fit24Plan::Span& s = spans[q];
        dst[0] = static_cast<unsigned char>(static_cast<int>(s.slope[0] * r) + s.base[0]);
        dst[1] = static_cast<unsigned char>(static_cast<int>(s.slope[1] * r) + s.base[1]);
        dst[2] = static_cast<unsigned char>(static_cast<int>(s.slope[2] * r) + s.base[2]);
    }
}

void MarkInvalid8(unsigned char* pixels, std::size_t count, const std::vector<int>& positions)
{
    for (int p : positions)
        if (p >= 0 && std::size_t(p) < count) pixels[p] = 255;
}

void MarkInvalid24(unsigned char* pixels, std::size_t count, const std::vector<int>& positions, RGBQUAD colour)
{
    for (int p : positions) {
        if (p < 0 || std::size_t(p) >= count) continue;
        unsigned char* px = pixels + std::size_t(p) * 3;
        px[0] = colour.rgbBlue;
        px[1] = colour.rgbGreen;
        px[2] = colour.rgbRed;
    }
}

}  // namespace orlex::bitmap

void Scale8BitData(int* data, unsigned char* out, int rows, int cols, double low, double high, int levels)
{
    if (rows < 1 || cols < 1 || data == nullptr || out == nullptr) return;
    const double range = high - low;
    const double factor = range > 0 ? levels / range : 1.0;
    // Rows carry no padding, so the image is one run; the factor is fixed for all of it.
    orlex::bitmap::ScaleValues(data, out, std::size_t(rows) * std::size_t(cols), low, factor, levels);
}

void Scale8BitData(int* data, unsigned char* out, int rows, int cols, double scale, int levels)
{
    const double h = scale * kDataFullScale * 0.5;
    Scale8BitData(data, out, rows, cols, -h, h, levels);
}

RGBQUAD TableInterpolation::LinearFit24Bit(RGBQUAD* table, double v, double low, double high, bool reserveTop)
{
    using orlex::bitmap::kFitSteps;
    const std::uint64_t n = (reserveTop ? 255u : 256u) * kFitSteps;
    const double d = high - low + 1.0;
    const double factor = d > 0 ? double(n) / d : 1.0;
    // Clamping to 0..n-1 in double first is the rule's truncate-then-clamp, as n < 2^53.
    double x = (v - low) * factor;
    x = x > 0.0 ? x : 0.0;
    x = x < double(n) - 1.0 ? x : double(n) - 1.0;
    const std::uint64_t t = static_cast<std::uint64_t>(static_cast<long long>(x));
    std::uint64_t q = t / kFitSteps;
    const std::uint64_t r = t % kFitSteps;
    const std::uint64_t top = reserveTop ? 253 : 254;
    if (q > top) q = top;
    RGBQUAD out{0, 0, 0, 255};
    if (table == nullptr) return out;
    const RGBQUAD& a = table[q];
    const RGBQUAD& b = table[q + 1];
    auto step = [r](BYTE lo, BYTE hi) {
        const int delta = static_cast<int>((double(hi) - double(lo)) / 4294967295.0 * double(r));
        return static_cast<BYTE>(static_cast<BYTE>(delta) + lo);
    };
    out.rgbBlue = step(a.rgbBlue, b.rgbBlue);
    out.rgbGreen = step(a.rgbGreen, b.rgbGreen);
    out.rgbRed = step(a.rgbRed, b.rgbRed);
    return out;
}

const char* const g_invalidDataDispNames[kInvalidDataDispCount] = {"Fill", "Red", "Blue", "Green",
                                                                   "White", "Black", "None"};

const char* GetInvalidDataDispName(int v)
{
    return v >= 0 && v < kInvalidDataDispCount ? g_invalidDataDispNames[v] : "";
}

int FindInvalidDataDisp(const char* name)
{
    if (name == nullptr) return 0;
    for (int i = 0; i < kInvalidDataDispCount; ++i)
        if (std::strcmp(name, g_invalidDataDispNames[i]) == 0) return i;
    return 0;
}

bool InvalidDataDispMarks(int v) { return v >= kInvalidDispRed && v <= kInvalidDispBlack; }

RGBQUAD InvalidDataDispColour(int v)
{
    // Blue, green, red, reserved of each display; the non-marking ones read black.
    static const RGBQUAD colours[kInvalidDataDispCount] = {
        {0, 0, 0, 0}, {0, 0, 255, 0}, {255, 0, 0, 0}, {0, 255, 0, 0}, {255, 255, 255, 0}, {0, 0, 0, 0}, {0, 0, 0, 0},
    };
    return v >= 0 && v < kInvalidDataDispCount ? colours[v] : RGBQUAD{0, 0, 0, 0};
}
