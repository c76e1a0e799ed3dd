// The image path: data to bitmap blocks, each measured beside a reference loop of the
// same memory traffic in the same run.
//   BM_CreateBitmap8Bit/4096 against BM_Ref8/4096 (read ints, write a byte each): within 1.5x
//   BM_CreateBitmap24/4096 against BM_Ref24/4096 (read ints, write three bytes each): within 3x
//     (BM_CreateBitmap24Avx2/4096 is the same on the AVX2 form, for processors without AVX-512)
//   BM_CreateBitmap8BitInvalid/2048/10000 against BM_CreateBitmap8Bit/2048: within 1.2x
// BM_Fit24Values/4096 is the interpolation loop alone, into memory written before, so
// that the 24-bit figure splits into computing and the fresh block (BM_Fit24ValuesAvx2 the
// same on the AVX2 form).
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include "bench/reference_loops.h"
#include "foundation/platform/globalmem.h"
#include "imageview/BitmapData.h"
#include "imageview/BitmapKernels.h"

namespace {

// A scan-like image: a tilt and a few bumps over the whole range of the type, plus noise.
std::vector<int> Image(int n)
{
    std::vector<int> data(std::size_t(n) * n);
    std::mt19937 rng(1);
    std::uniform_int_distribution<int> noise(-(1 << 20), 1 << 20);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double u = double(x) / n, v = double(y) / n;
            const double z = 0.6 * (u - 0.5) + 0.3 * std::exp(-40 * ((u - 0.3) * (u - 0.3) + (v - 0.6) * (v - 0.6))) -
                             0.3 * std::exp(-60 * ((u - 0.7) * (u - 0.7) + (v - 0.3) * (v - 0.3)));
            data[std::size_t(y) * n + x] = int(z * 2147483647.0) + noise(rng);
        }
    return data;
}

std::vector<RGBQUAD> Table()
{
    std::vector<RGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = RGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i * 3), 255};
    return t;
}

// The 8-bit reference is written with vector instructions where there are some, so that
// it runs at the speed of memory, as a plain loop at this optimisation level would not.

void BM_Ref8(benchmark::State& state)
{
    const int n = int(state.range(0));
    const std::vector<int> data = Image(n);
    std::vector<unsigned char> out(data.size());
    for (auto _ : state) {
        const int* src = data.data();
        unsigned char* dst = out.data();
        std::size_t i = 0;
        const std::size_t m = data.size();
#if defined(__SSE2__)
        for (; i + 16 <= m; i += 16) {
            // The top byte of each int, sign-extended, so the saturating packs keep it whole.
            const __m128i* in = reinterpret_cast<const __m128i*>(src + i);
            const __m128i a = _mm_srai_epi32(_mm_loadu_si128(in + 0), 24);
            const __m128i b = _mm_srai_epi32(_mm_loadu_si128(in + 1), 24);
            const __m128i c = _mm_srai_epi32(_mm_loadu_si128(in + 2), 24);
            const __m128i d = _mm_srai_epi32(_mm_loadu_si128(in + 3), 24);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(dst + i),
                             _mm_packs_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d)));
        }
#endif
        for (; i < m; ++i) dst[i] = static_cast<unsigned char>(src[i] >> 24);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

void BM_Ref24(benchmark::State& state)
{
    const int n = int(state.range(0));
    const std::vector<int> data = Image(n);
    std::vector<unsigned char> out(data.size() * 3);
    for (auto _ : state) {
        orlex::bench::ThreeBytesEach(data.data(), out.data(), data.size());
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

void BM_CreateBitmap8Bit(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> data = Image(n);
    std::vector<RGBQUAD> table = Table();
    for (auto _ : state) {
        void* dib = nullptr;
        if (!CreateBitmap8Bit(dib, 256, data.data(), n, n, table.data(), -2147483648.0, 2147483647.0, 0, {}))
            state.SkipWithError("no bitmap");
        GlobalFree(dib);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

void BM_CreateBitmap8BitInvalid(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> data = Image(n);
    std::vector<RGBQUAD> table = Table();
    std::vector<int> invalid(std::size_t(state.range(1)));
    std::mt19937 rng(2);
    for (int& p : invalid) p = int(rng() % data.size());
    for (auto _ : state) {
        void* dib = nullptr;
        // "Red" marks; the list is copied in as the callers pass it, by value.
        if (!CreateBitmap8Bit(dib, 256, data.data(), n, n, table.data(), -2147483648.0, 2147483647.0,
                              kInvalidDispRed, invalid))
            state.SkipWithError("no bitmap");
        GlobalFree(dib);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

void BM_CreateBitmap24(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> data = Image(n);
    std::vector<RGBQUAD> table = Table();
    for (auto _ : state) {
        void* dib = nullptr;
        if (!CreateBitmap(dib, 256, data.data(), n, n, table.data(), -2147483648.0, 2147483647.0, 0, {}))
            state.SkipWithError("no bitmap");
        GlobalFree(dib);
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

// The same with the AVX-512 forms held back, so that processors with AVX2 only are shown
// on this one too (where there is no AVX2 either, it measures the plain loop).
void BM_CreateBitmap24Avx2(benchmark::State& state)
{
    orlex::bitmap::UseAvx512Kernels(false);
    BM_CreateBitmap24(state);
    orlex::bitmap::UseAvx512Kernels(true);
}

void BM_Fit24Values(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> data = Image(n);
    std::vector<RGBQUAD> table = Table();
    std::vector<unsigned char> out(data.size() * 3);
    auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
    orlex::bitmap::PrepareFit24(table.data(), -2147483648.0, 2147483647.0, true, *plan);
    for (auto _ : state) {
        orlex::bitmap::Fit24Values(data.data(), out.data(), data.size(), *plan);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * std::int64_t(data.size()));
}

void BM_Fit24ValuesAvx2(benchmark::State& state)
{
    orlex::bitmap::UseAvx512Kernels(false);
    BM_Fit24Values(state);
    orlex::bitmap::UseAvx512Kernels(true);
}

}  // namespace

BENCHMARK(BM_Ref8)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CreateBitmap8Bit)->Arg(4096)->Arg(2048)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CreateBitmap8BitInvalid)->Args({2048, 10000})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Ref24)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CreateBitmap24)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CreateBitmap24Avx2)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Fit24Values)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Fit24ValuesAvx2)->Arg(4096)->Unit(benchmark::kMillisecond);
