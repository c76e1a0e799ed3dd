#include "imageview/BitmapKernels.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "imageview/BitmapData.h"

// The two hot loops have a plain form and, on x86 processors that have them, vector
// forms chosen at run time (AVX-512, else AVX2). All forms give bit-identical results:
// the same IEEE double operations in the same order, no fused multiply-add, and integer
// steps only where they provably give the same numbers (see Fit24ChannelExact and
// Fit24StepShort).
#if (defined(__x86_64__) || defined(__i386__)) && (defined(__GNUC__) || defined(__clang__))
#define ORLEX_HAVE_X86_PATHS 1
#include <immintrin.h>
// The compiler's vector headers start some conversions from an undefined register, which
// its own flow analysis then reports; the values are never read.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#else
#define ORLEX_HAVE_X86_PATHS 0
#endif

namespace orlex::bitmap {

namespace {

// Truncation towards zero to 64 bits, saturating where the rule's integer would not
// hold the value; NaN counts as below zero.
long long TruncSaturated(double x)
{
    if (!(x > -9.2233720368547758e18)) return x == x ? INT64_MIN : -1;
    if (x >= 9.2233720368547758e18) return INT64_MAX;
    return static_cast<long long>(x);
}

// The rule exactly as stated, for level counts that the fast forms don't cover.
void ScaleValuesGeneral(const int* src, unsigned char* dst, std::size_t n, double low, double factor, int levels)
{
    for (std::size_t i = 0; i < n; ++i) {
        const long long t = TruncSaturated((double(src[i]) - low) * factor);
        dst[i] = static_cast<unsigned char>(t < 0 ? 0 : t >= levels ? levels - 1 : t);
    }
}

// For levels >= 1 clamping before the truncation gives the same result:
// x <= 0 -> 0 (NaN too), x >= levels - 1 -> levels - 1, and trunc(x) in between.
void ScaleValuesPlain(const int* src, unsigned char* dst, std::size_t n, double low, double factor, double top)
{
    for (std::size_t i = 0; i < n; ++i) {
        double x = (double(src[i]) - low) * factor;
        x = x > 0.0 ? x : 0.0;
        x = x < top ? x : top;
        dst[i] = static_cast<unsigned char>(static_cast<int>(x));
    }
}

void Fit24ValuesPlain(const int* src, unsigned char* dst, std::size_t n, const Fit24Plan& plan)
{
    const double low = plan.low;
    const double factor = plan.factor;
    const double last = plan.lastStep;
    const std::uint64_t top = plan.top;
    const double* slopeB = plan.slope[0];
    const double* slopeG = plan.slope[1];
    const double* slopeR = plan.slope[2];
    const std::uint32_t* base = plan.base;
    for (std::size_t i = 0; i < n; ++i, dst += 3) {
        double x = (double(src[i]) - low) * factor;
        x = x > 0.0 ? x : 0.0;
        x = x < last ? x : last;  // 0..n-1 in double is the rule's clamp of the integer
        const std::uint64_t t = static_cast<std::uint64_t>(static_cast<long long>(x));
        std::uint64_t q = t / kFitSteps;
        const double r = double(static_cast<long long>(t - q * kFitSteps));
        q = q < top ? q : top;  // the remainder stays as it is
        const std::uint32_t b = base[q];
        dst[0] = static_cast<unsigned char>(static_cast<int>(slopeB[q] * r) + int(b & 0xFF));
        dst[1] = static_cast<unsigned char>(static_cast<int>(slopeG[q] * r) + int((b >> 8) & 0xFF));
        dst[2] = static_cast<unsigned char>(static_cast<int>(slopeR[q] * r) + int((b >> 16) & 0xFF));
    }
}

#if ORLEX_HAVE_X86_PATHS

bool g_useVector = true;
bool g_useAvx512 = true;

bool HasAvx2()
{
    static const bool has = __builtin_cpu_supports("avx2");
    return has && g_useVector;
}

__attribute__((target("avx2"))) inline __m128i ScaleFour(__m128i v, __m256d low, __m256d factor, __m256d top)
{
    __m256d x = _mm256_mul_pd(_mm256_sub_pd(_mm256_cvtepi32_pd(v), low), factor);
    x = _mm256_max_pd(x, _mm256_setzero_pd());  // NaN gives the second operand, 0
    x = _mm256_min_pd(x, top);
    // Only the low byte of an index counts (levels may exceed 256): mask, then the
    // saturating packs below change nothing.
    return _mm_and_si128(_mm256_cvttpd_epi32(x), _mm_set1_epi32(0xFF));
}

__attribute__((target("avx2"))) void ScaleValuesAvx2(const int* src, unsigned char* dst, std::size_t n, double low,
                                                      double factor, double top)
{
    const __m256d vlow = _mm256_set1_pd(low);
    const __m256d vfactor = _mm256_set1_pd(factor);
    const __m256d vtop = _mm256_set1_pd(top);
    std::size_t i = 0;
    for (; i + 16 <= n; i += 16) {
        const __m128i* in = reinterpret_cast<const __m128i*>(src + i);
        const __m128i a = ScaleFour(_mm_loadu_si128(in + 0), vlow, vfactor, vtop);
        const __m128i b = ScaleFour(_mm_loadu_si128(in + 1), vlow, vfactor, vtop);
        const __m128i c = ScaleFour(_mm_loadu_si128(in + 2), vlow, vfactor, vtop);
        const __m128i d = ScaleFour(_mm_loadu_si128(in + 3), vlow, vfactor, vtop);
        const __m128i bytes = _mm_packus_epi16(_mm_packus_epi32(a, b), _mm_packus_epi32(c, d));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), bytes);
    }
    ScaleValuesPlain(src + i, dst + i, n - i, low, factor, top);
}

bool HasAvx512()
{
    static const bool has = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
                            __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi");
    return has && g_useVector && g_useAvx512;
}

// Sixteen values a step. The top is clamped in doubles, the bottom in integers: an x
// below zero, below the 32-bit range or NaN (which the operand order carries through
// the minimum) truncates to a negative int or to 0x80000000, and the maximum with 0 then
// gives 0 for all of them, as the plain form does. The store keeps each int's low byte.
// Runs longer than the caches go around them (a fresh block of a whole image would
// otherwise be read in before it is overwritten); shorter ones stay in cache for the
// reader that follows.
__attribute__((target("avx512f"))) void ScaleValuesAvx512(const int* src, unsigned char* dst, std::size_t n,
                                                          double low, double factor, double top)
{
    constexpr std::size_t kStreamFrom = std::size_t(4) << 20;
    const bool stream = n >= kStreamFrom;
    const __m512d vlow = _mm512_set1_pd(low);
    const __m512d vfactor = _mm512_set1_pd(factor);
    const __m512d vtop = _mm512_set1_pd(top);
    // Streaming stores want 16-byte aligned places: the first few values go the plain way.
    std::size_t i = stream ? std::min<std::size_t>(n, (16 - (reinterpret_cast<std::uintptr_t>(dst) & 15)) & 15) : 0;
    ScaleValuesPlain(src, dst, i, low, factor, top);
    for (; i + 16 <= n; i += 16) {
        const __m256i* in = reinterpret_cast<const __m256i*>(src + i);
        const __m512d a = _mm512_mul_pd(_mm512_sub_pd(_mm512_cvtepi32_pd(_mm256_loadu_si256(in)), vlow), vfactor);
        const __m512d b = _mm512_mul_pd(_mm512_sub_pd(_mm512_cvtepi32_pd(_mm256_loadu_si256(in + 1)), vlow), vfactor);
        const __m256i ia = _mm512_cvttpd_epi32(_mm512_min_pd(vtop, a));
        const __m256i ib = _mm512_cvttpd_epi32(_mm512_min_pd(vtop, b));
        const __m512i both = _mm512_inserti64x4(_mm512_castsi256_si512(ia), ib, 1);
        const __m128i bytes = _mm512_cvtepi32_epi8(_mm512_max_epi32(both, _mm512_setzero_si512()));
        if (stream)
            _mm_stream_si128(reinterpret_cast<__m128i*>(dst + i), bytes);
        else
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i), bytes);
    }
    if (stream) _mm_sfence();  // streamed bytes are ordered before whatever comes next
    ScaleValuesPlain(src + i, dst + i, n - i, low, factor, top);
}

// Bytes 0 and 2 of each 32-bit lane of the result are table[bytes 0 and 2 of the lane's
// index], the other bytes 0, for a 256-byte table held in four registers: two
// permutations over 128 bytes each, chosen by each index byte's top bit (`upperHalf`).
__attribute__((target("avx512f,avx512bw,avx512vbmi"))) inline __m512i Lookup256(const __m512i table[4],
                                                                                 __m512i index,
                                                                                 __mmask64 upperHalf)
{
    const __mmask64 wordStarts = 0x5555555555555555ull;
    const __m512i lower = _mm512_maskz_permutex2var_epi8(wordStarts, table[0], index, table[1]);
    const __m512i upper = _mm512_maskz_permutex2var_epi8(wordStarts, table[2], index, table[3]);
    return _mm512_mask_blend_epi8(upperHalf, lower, upper);
}

// Eight values: x clamped to 0..n-1 and truncated, t, an integer below 2^40.
__attribute__((target("avx512f,avx512dq"))) inline __m512i TruncatedSteps(__m256i v, __m512d low, __m512d factor,
                                                                         __m512d last)
{
    __m512d x = _mm512_mul_pd(_mm512_sub_pd(_mm512_cvtepi32_pd(v), low), factor);
    x = _mm512_max_pd(x, _mm512_setzero_pd());  // NaN gives the second operand, 0
    x = _mm512_min_pd(x, last);
    return _mm512_cvttpd_epi64(x);
}

// Sixteen values at a time, all in integers after the one truncation of the rule:
//  - t = h * 2^32 + l = h * 4294967295 + (h + l), so q = h and r = h + l unless h + l
//    reaches 4294967295, which needs l >= 2^32 - 256;
//  - each channel is a +- floor(d * r / 4294967295) with d = |b - a| (Fit24ChannelExact),
//    and floor(d * r / 4294967295) = (d * (r >> 8)) >> 24 unless bits 8..23 of that
//    product are all set (Fit24StepShort).
// A group of sixteen in which either exception may occur is left to the plain form:
// about one group in two thousand on a scan image over the full range. The table entries at both ends of each
// span come from registers by byte permutation (gathers are slow on some processors).
__attribute__((target("avx512f,avx512dq,avx512bw,avx512vbmi"))) void Fit24ValuesAvx512(const int* src,
                                                                                        unsigned char* dst,
                                                                                        std::size_t n,
                                                                                        const Fit24Plan& plan)
{
    const __m512d low = _mm512_set1_pd(plan.low);
    const __m512d factor = _mm512_set1_pd(plan.factor);
    const __m512d last = _mm512_set1_pd(plan.lastStep);
    const __m512i riseOfPair = _mm512_set1_epi32(0x0001FFFF);  // words -1, +1
    const __m512i nearCarry = _mm512_set1_epi32(int(0xFFFFFF00u));
    const __m512i middleBits = _mm512_set1_epi32(0x00FFFF00);
    __m512i tables[3][4];
    for (int c = 0; c < 3; ++c)
        for (int k = 0; k < 4; ++k) tables[c][k] = _mm512_load_si512(plan.entries[c] + 64 * k);
    // The high and the low halves of sixteen 64-bit steps held in two registers.
    alignas(64) std::int32_t highIndex[16];
    alignas(64) std::int32_t lowIndex[16];
    // Byte 0 of each 32-bit lane of blue, then green (second source), then red: 48 bytes.
    alignas(64) unsigned char blueGreenIndex[64] = {};
    alignas(64) unsigned char addRedIndex[64] = {};
    for (int p = 0; p < 16; ++p) {
        lowIndex[p] = 2 * p;
        highIndex[p] = 2 * p + 1;
        blueGreenIndex[3 * p] = static_cast<unsigned char>(4 * p);
        blueGreenIndex[3 * p + 1] = static_cast<unsigned char>(64 + 4 * p);
        addRedIndex[3 * p] = static_cast<unsigned char>(3 * p);
        addRedIndex[3 * p + 1] = static_cast<unsigned char>(3 * p + 1);
        addRedIndex[3 * p + 2] = static_cast<unsigned char>(64 + 4 * p);
    }
    // Byte 4 of each 64-bit step (its span, below 256) to bytes 0 and 2 of a 32-bit lane.
    alignas(64) unsigned char spanBytesIndex[64] = {};
    for (int p = 0; p < 16; ++p) {
        spanBytesIndex[4 * p] = static_cast<unsigned char>(8 * p + 4);
        spanBytesIndex[4 * p + 2] = static_cast<unsigned char>(8 * p + 4);
    }
    const __m512i spanBytes = _mm512_load_si512(spanBytesIndex);
    const __m512i topPair = _mm512_set1_epi32(int(plan.top * 0x10001u));
    const __m512i nextOfPair = _mm512_set1_epi32(0x10000);
    const __m512i highHalves = _mm512_load_si512(highIndex);
    const __m512i lowHalves = _mm512_load_si512(lowIndex);
    const __m512i blueGreen = _mm512_load_si512(blueGreenIndex);
    const __m512i addRed = _mm512_load_si512(addRedIndex);
    std::size_t i = 0;
    // Each step stores 64 bytes of which the last 16 belong to the next step, so the loop
    // stops while six more pixels are left for the plain form.
    for (; i + 22 <= n; i += 16, dst += 48) {
        const __m512i stepsLo = TruncatedSteps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i)), low,
                                               factor, last);
        const __m512i stepsHi = TruncatedSteps(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src + i + 8)), low,
                                               factor, last);
        const __m512i span = _mm512_permutex2var_epi32(stepsLo, highHalves, stepsHi);
        const __m512i l = _mm512_permutex2var_epi32(stepsLo, lowHalves, stepsHi);
        __mmask16 unsure = _mm512_cmpge_epu32_mask(l, nearCarry);
        const __m512i restHigh = _mm512_srli_epi32(_mm512_add_epi32(l, span), 8);
        // Both ends of the span in one index: q in byte 0, q + 1 in byte 2, the span
        // limited to the top one (the remainder stays as it is).
        const __m512i spanTwice = _mm512_maskz_permutex2var_epi8(0x5555555555555555ull, stepsLo, spanBytes, stepsHi);
        const __m512i ends = _mm512_add_epi32(_mm512_min_epu16(spanTwice, topPair), nextOfPair);
        const __mmask64 upperHalf = _mm512_movepi8_mask(ends);
        __m512i channel[3];
        for (int c = 0; c < 3; ++c) {
            // `both` holds a in its low word and b in its high word, so that one
            // multiply-add of the words gives b - a; only byte 0 of the result counts.
            const __m512i both = Lookup256(tables[c], ends, upperHalf);
            const __m512i delta = _mm512_madd_epi16(both, riseOfPair);
            const __m512i product = _mm512_mullo_epi32(_mm512_abs_epi32(delta), restHigh);
            unsure |= _mm512_cmpeq_epi32_mask(_mm512_and_si512(product, middleBits), middleBits);
            const __m512i step = _mm512_srli_epi32(product, 24);
            channel[c] = _mm512_mask_sub_epi32(_mm512_add_epi32(both, step), _mm512_movepi32_mask(delta), both, step);
        }
        if (unsure != 0) {
            Fit24ValuesPlain(src + i, dst, 16, plan);
            continue;
        }
        const __m512i bg = _mm512_permutex2var_epi8(channel[0], blueGreen, channel[1]);
        _mm512_storeu_si512(dst, _mm512_permutex2var_epi8(bg, addRed, channel[2]));
    }
    Fit24ValuesPlain(src + i, dst, n - i, plan);
}

// Eight values: x clamped to 0..n-1 and truncated, t below 2^40, held in the low 52 bits
// of each 64-bit lane (the bit pattern of the double t + 2^52, exact as t < 2^52): the
// lane's low word is l, the low byte of its high word is h. Four values per call.
__attribute__((target("avx2"))) inline __m256i TruncatedStepsAvx2(__m128i v, __m256d low, __m256d factor,
                                                                  __m256d last)
{
    __m256d x = _mm256_mul_pd(_mm256_sub_pd(_mm256_cvtepi32_pd(v), low), factor);
    x = _mm256_max_pd(x, _mm256_setzero_pd());  // NaN gives the second operand, 0
    x = _mm256_min_pd(x, last);
    x = _mm256_round_pd(x, _MM_FROUND_TO_ZERO | _MM_FROUND_NO_EXC);
    return _mm256_castpd_si256(_mm256_add_pd(x, _mm256_set1_pd(4503599627370496.0)));
}

// The constants of the AVX2 interpolation, made once per run.
struct Fit24Avx2Constants {
    __m256d low, factor, last;
    __m256i nearCarry, middleBits, spanByte, spanOfStep, greenByte, splitHalves, packPixels, joinHalves;
    const long long* ends;
};

// What the steps of eight values give before the channels: l, the remainder's top 24 bits
// (`restHigh`) and the lower and upper entry of each value's span as blue, green, red
// bytes of its lane, all in value order.
struct Fit24Avx2Spans {
    __m256i l, restHigh, lower, upper;
};

__attribute__((target("avx2"))) inline Fit24Avx2Spans Fit24SpansAvx2(const int* src, const Fit24Avx2Constants& k)
{
    const __m256i v =
        _mm256_permutevar8x32_epi32(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(src)), k.splitHalves);
    const __m256i stepsA = TruncatedStepsAvx2(_mm256_castsi256_si128(v), k.low, k.factor, k.last);
    const __m256i stepsB = TruncatedStepsAvx2(_mm256_extracti128_si256(v, 1), k.low, k.factor, k.last);
    const __m256 a = _mm256_castsi256_ps(stepsA);
    const __m256 b = _mm256_castsi256_ps(stepsB);
    Fit24Avx2Spans out;
    out.l = _mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(2, 0, 2, 0)));
    const __m256i span =
        _mm256_and_si256(_mm256_castps_si256(_mm256_shuffle_ps(a, b, _MM_SHUFFLE(3, 1, 3, 1))), k.spanByte);
    out.restHigh = _mm256_srli_epi32(_mm256_add_epi32(out.l, span), 8);
    // Neighbouring pixels of a scan lie in one span or in the spans either side of it:
    // then the entries come from broadcast loads of those three, chosen by lane without a
    // branch, as the choice between one span and several would mispredict at every edge
    // of a span. Groups spread wider take two gathers (which hold values 0, 1 | 4, 5 and
    // 2, 3 | 6, 7).
    const int s0 = _mm256_cvtsi256_si32(span);
    const int below = s0 - (s0 > 0);  // kept inside the table; a repeat matches nothing new
    const int above = s0 + (s0 < 255);
    const __m256i same = _mm256_cmpeq_epi32(span, _mm256_set1_epi32(s0));
    const __m256i isBelow = _mm256_cmpeq_epi32(span, _mm256_set1_epi32(below));
    const __m256i isAbove = _mm256_cmpeq_epi32(span, _mm256_set1_epi32(above));
    if (_mm256_movemask_epi8(_mm256_or_si256(same, _mm256_or_si256(isBelow, isAbove))) == -1) {
        const int* e = reinterpret_cast<const int*>(k.ends);
        out.lower = _mm256_blendv_epi8(
            _mm256_blendv_epi8(_mm256_set1_epi32(e[2 * s0]), _mm256_set1_epi32(e[2 * below]), isBelow),
            _mm256_set1_epi32(e[2 * above]), isAbove);
        out.upper = _mm256_blendv_epi8(
            _mm256_blendv_epi8(_mm256_set1_epi32(e[2 * s0 + 1]), _mm256_set1_epi32(e[2 * below + 1]), isBelow),
            _mm256_set1_epi32(e[2 * above + 1]), isAbove);
    } else {
        const __m256 gotA = _mm256_castsi256_ps(
            _mm256_i64gather_epi64(k.ends, _mm256_srli_epi64(_mm256_and_si256(stepsA, k.spanOfStep), 32), 8));
        const __m256 gotB = _mm256_castsi256_ps(
            _mm256_i64gather_epi64(k.ends, _mm256_srli_epi64(_mm256_and_si256(stepsB, k.spanOfStep), 32), 8));
        out.lower = _mm256_castps_si256(_mm256_shuffle_ps(gotA, gotB, _MM_SHUFFLE(2, 0, 2, 0)));
        out.upper = _mm256_castps_si256(_mm256_shuffle_ps(gotA, gotB, _MM_SHUFFLE(3, 1, 3, 1)));
    }
    return out;
}

// The channels of eight values into 24 bytes at dst (32 written, the last 8 to be
// overwritten after), or false, writing nothing, where the integer form is in doubt.
__attribute__((target("avx2"))) inline bool Fit24ChannelsAvx2(const Fit24Avx2Spans& s, unsigned char* dst,
                                                              const Fit24Avx2Constants& k)
{
    // All three channels at once: |b - a| and whether the step rises, by byte.
    const __m256i larger = _mm256_max_epu8(s.lower, s.upper);
    const __m256i distance = _mm256_sub_epi8(larger, _mm256_min_epu8(s.lower, s.upper));
    const __m256i rising = _mm256_cmpeq_epi8(larger, s.upper);
    // Byte 3 of every lane is 0, so red needs no mask after its shift.
    const __m256i productB = _mm256_mullo_epi32(_mm256_and_si256(distance, k.spanByte), s.restHigh);
    const __m256i productG =
        _mm256_mullo_epi32(_mm256_and_si256(_mm256_srli_epi32(distance, 8), k.spanByte), s.restHigh);
    const __m256i productR = _mm256_mullo_epi32(_mm256_srli_epi32(distance, 16), s.restHigh);
    // Each doubt shows as a zero among the bits a value lacks of its pattern (bits 8..31
    // of l, bits 8..23 of a product): one minimum finds a zero among all four.
    const __m256i lacking = _mm256_min_epu32(
        _mm256_min_epu32(_mm256_andnot_si256(s.l, k.nearCarry), _mm256_andnot_si256(productB, k.middleBits)),
        _mm256_min_epu32(_mm256_andnot_si256(productG, k.middleBits), _mm256_andnot_si256(productR, k.middleBits)));
    if (_mm256_movemask_epi8(_mm256_cmpeq_epi32(lacking, _mm256_setzero_si256())) != 0) return false;
    // The steps (each product's top byte) to bytes 0, 1, 2 of the lane, then a + step or
    // a - step by byte.
    const __m256i blueRed =
        _mm256_blend_epi16(_mm256_srli_epi32(productB, 24), _mm256_srli_epi32(productR, 8), 0xAA);
    const __m256i steps = _mm256_blendv_epi8(blueRed, _mm256_srli_epi32(productG, 16), k.greenByte);
    const __m256i bgr =
        _mm256_blendv_epi8(_mm256_sub_epi8(s.lower, steps), _mm256_add_epi8(s.lower, steps), rising);
    const __m256i packed = _mm256_permutevar8x32_epi32(_mm256_shuffle_epi8(bgr, k.packPixels), k.joinHalves);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(dst), packed);
    return true;
}

// The integer method of Fit24ValuesAvx512 on eight values a step, for processors with
// AVX2 only: the same two exceptions send a group to the plain form. Both ends of a span,
// all three channels, come from the plan's `ends` (whose spans above the top already
// repeat the top one) by broadcast loads or 64-bit gathers; the distances, directions and
// steps are then worked by byte for all channels at once.
__attribute__((target("avx2"))) void Fit24ValuesAvx2(const int* src, unsigned char* dst, std::size_t n,
                                                     const Fit24Plan& plan)
{
    Fit24Avx2Constants k;
    k.low = _mm256_set1_pd(plan.low);
    k.factor = _mm256_set1_pd(plan.factor);
    k.last = _mm256_set1_pd(plan.lastStep);
    k.nearCarry = _mm256_set1_epi32(int(0xFFFFFF00u));
    k.middleBits = _mm256_set1_epi32(0x00FFFF00);
    k.spanByte = _mm256_set1_epi32(0xFF);
    k.spanOfStep = _mm256_set1_epi64x(0xFF00000000ll);
    k.greenByte = _mm256_set1_epi32(0x0000FF00);
    // Values 0, 1, 4, 5 to the low half and 2, 3, 6, 7 to the high half, so that taking
    // the even and odd words of the two step registers gives l and h in value order.
    k.splitHalves = _mm256_setr_epi32(0, 1, 4, 5, 2, 3, 6, 7);
    // Blue, green, red of four pixels to the first 12 bytes of each half, then the two
    // halves' 12 bytes together.
    k.packPixels = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, 0, 1, 2, 4, 5, 6, 8, 9,
                                    10, 12, 13, 14, -1, -1, -1, -1);
    k.joinHalves = _mm256_setr_epi32(0, 1, 2, 4, 5, 6, 7, 7);
    k.ends = reinterpret_cast<const long long*>(plan.ends);
    // Each group stores 32 bytes of which the last 8 belong to the next group, so a group
    // is done the vector way only while three more pixels follow it.
    std::size_t i = 0;
    for (; i + 11 <= n; i += 8, dst += 24)
        if (!Fit24ChannelsAvx2(Fit24SpansAvx2(src + i, k), dst, k)) Fit24ValuesPlain(src + i, dst, 8, plan);
    Fit24ValuesPlain(src + i, dst, n - i, plan);
}

#endif

}  // namespace

void UseVectorKernels(bool use)
{
#if ORLEX_HAVE_X86_PATHS
    g_useVector = use;
#else
    (void)use;
#endif
}

void UseAvx512Kernels(bool use)
{
#if ORLEX_HAVE_X86_PATHS
    g_useAvx512 = use;
#else
    (void)use;
#endif
}

void ScaleValues(const int* src, unsigned char* dst, std::size_t n, double low, double factor, int levels)
{
    if (levels < 1) {
        ScaleValuesGeneral(src, dst, n, low, factor, levels);
        return;
    }
#if ORLEX_HAVE_X86_PATHS
    if (HasAvx512()) {
        ScaleValuesAvx512(src, dst, n, low, factor, double(levels - 1));
        return;
    }
    if (HasAvx2()) {
        ScaleValuesAvx2(src, dst, n, low, factor, double(levels - 1));
        return;
    }
#endif
    ScaleValuesPlain(src, dst, n, low, factor, double(levels - 1));
}

// Why the integer form is the double expression. Let d = |b - a| <= 255, s = fl(d / K)
// with K = 4294967295, and p = fl(s * r) for r < K; negating d negates s and p exactly,
// so the sign can be taken out. s * r differs from d * r / K by at most r * (d / K) *
// 2^-53, and p from s * r by at most half an ulp, together below 255 * 2^-52 < 6e-14.
// If d * r is not a multiple of K, d * r / K lies at least 1 / K > 2.3e-10 from every
// integer, so trunc(p) = floor(d * r / K). If it is a multiple (K / gcd(d, K) divides r;
// 1485 cases over all d), trunc(p) equals it too: the tests check every one of them.
BYTE Fit24ChannelExact(BYTE a, BYTE b, std::uint32_t r)
{
    assert(r < kFitSteps);
    const std::uint64_t d = b >= a ? b - a : a - b;
    const auto step = static_cast<BYTE>(d * r / kFitSteps);
    return static_cast<BYTE>(b >= a ? a + step : a - step);
}

// With r = 256 r' + e (e < 256): d * r / K = d * r' / 2^24 + d * e / 2^32 + d * r / (K * 2^32),
// and the last two terms add less than 257 / 2^24. So the floor is (d * r') >> 24, or one
// more only when the low 24 bits of d * r' reach 2^24 - 256, that is bits 8..23 all set.
std::uint32_t Fit24StepShort(std::uint32_t d, std::uint32_t r, bool& certain)
{
    assert(d <= 255 && r < kFitSteps);
    const std::uint32_t product = d * (r >> 8);
    certain = (product & 0x00FFFF00u) != 0x00FFFF00u;
    return product >> 24;
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
        const RGBQUAD& a = table[q];
        const RGBQUAD& b = table[q + 1];
        // Same expression as the per-value rule, (b - a) / steps, so that the product
        // with the remainder rounds identically.
        plan.slope[0][q] = (double(b.rgbBlue) - double(a.rgbBlue)) / 4294967295.0;
        plan.slope[1][q] = (double(b.rgbGreen) - double(a.rgbGreen)) / 4294967295.0;
        plan.slope[2][q] = (double(b.rgbRed) - double(a.rgbRed)) / 4294967295.0;
        plan.base[q] = std::uint32_t(a.rgbBlue) | (std::uint32_t(a.rgbGreen) << 8) | (std::uint32_t(a.rgbRed) << 16);
    }
    for (int e = 0; e < 256; ++e) {
        plan.entries[0][e] = table[e].rgbBlue;
        plan.entries[1][e] = table[e].rgbGreen;
        plan.entries[2][e] = table[e].rgbRed;
    }
    for (std::uint32_t q = 0; q < 256; ++q) {
        const std::uint32_t s = q < plan.top ? q : plan.top;
        std::uint64_t e = 0;
        for (int c = 0; c < 3; ++c)
            e |= (std::uint64_t(plan.entries[c][s]) << (8 * c)) | (std::uint64_t(plan.entries[c][s + 1]) << (32 + 8 * c));
        plan.ends[q] = e;
    }
}

void Fit24Values(const int* src, unsigned char* dst, std::size_t n, const Fit24Plan& plan)
{
    if (plan.black) {
        std::memset(dst, 0, n * 3);
        return;
    }
#if ORLEX_HAVE_X86_PATHS
    if (HasAvx512()) {
        Fit24ValuesAvx512(src, dst, n, plan);
        return;
    }
    if (HasAvx2()) {
        Fit24ValuesAvx2(src, dst, n, plan);
        return;
    }
#endif
    Fit24ValuesPlain(src, dst, n, plan);
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
