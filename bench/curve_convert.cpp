// Reduction of a long rising curve to display points, against a reference pass that only
// sums y per bin over the same points. Mean and maximum should stay within 2x of the
// reference, median within 8x; each rule is checked once against a plain restatement of
// it before timing, so a fast wrong answer fails the run instead of showing a good time.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "plot/Curve.h"

namespace {

constexpr int kOutputs = 8192;

// One curve per size, built once: x rising by 1 (exact in float up to 2^24), y noisy.
Curve &LongCurve(int n)
{
    static int builtFor = -1;
    static Curve curve;
    if (builtFor != n) {
        curve = Curve(n);
        std::uint32_t s = 12345u;
        for (int i = 0; i < n; ++i) {
            s = s * 1664525u + 1013904223u;
            const float noise = static_cast<float>(s >> 8) * (1.0f / 16777216.0f) - 0.5f;
            curve.AddPoint(static_cast<float>(i), static_cast<float>(i % 5000) * 0.001f + noise);
        }
        builtFor = n;
    }
    return curve;
}

// The rules restated plainly: bins by the same float edges, each bin's values gathered,
// mean summed in index order, median by a full sort. Returns false on the first output
// that differs.
bool MatchesRule(Curve &c, unsigned type)
{
    const auto &pts = c.CurveData;
    const size_t n = pts.size();
    const float xFrom = pts.front().first, xTo = pts.back().first;
    const float step = (xTo - xFrom) / float(kOutputs - 1);
    const float halfFrom = step * 0.5f + xFrom;
    size_t k = 0;
    std::vector<double> bin;
    for (int i = 0; i < kOutputs; ++i) {
        bin.clear();
        const bool last = i == kOutputs - 1;
        const float edge = float(i) * step + halfFrom;
        while (k < n && (edge > pts[k].first || (last && type != 32)))
            bin.push_back(pts[k++].second);
        if (bin.empty())
            return false; // every bin of this curve holds points
        float expected;
        if (type == 16) {
            double sum = 0.0;
            for (double v : bin)
                sum += v;
            expected = float(sum / double(bin.size()));
        } else if (type == 4) {
            expected = float(*std::max_element(bin.begin(), bin.end()));
        } else {
            std::sort(bin.begin(), bin.end());
            const size_t m = bin.size() / 2;
            expected = bin.size() % 2 ? float(bin[m]) : float((bin[m - 1] + bin[m]) * 0.5);
        }
        if (c.ConvertedData[size_t(i)].second != expected)
            return false;
    }
    return true;
}

void RunConvert(benchmark::State &state, unsigned type)
{
    Curve &c = LongCurve(int(state.range(0)));
    if (c.Convert(0, 0, kOutputs, 1 | type) != kOutputs || !MatchesRule(c, type)) {
        state.SkipWithError("reduction differs from the rule");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(c.Convert(0, 0, kOutputs, 1 | type));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CurveConvertMean(benchmark::State &state) { RunConvert(state, 16); }
void BM_CurveConvertMax(benchmark::State &state) { RunConvert(state, 4); }
void BM_CurveConvertMedian(benchmark::State &state) { RunConvert(state, 32); }

// The reference: one pass over the same points that sums y per bin, the bins cut by
// index into equal counts, the sums written to a result array like the converted data.
void BM_CurveBinRef(benchmark::State &state)
{
    Curve &c = LongCurve(int(state.range(0)));
    const Curve::Point *pts = c.CurveData.data();
    const size_t n = c.CurveData.size();
    std::vector<size_t> ends(kOutputs);
    for (int b = 0; b < kOutputs; ++b)
        ends[size_t(b)] = (size_t(b) + 1) * n / kOutputs;
    std::vector<double> sums(kOutputs);
    for (auto _ : state) {
        const Curve::Point *p = pts;
        for (int b = 0; b < kOutputs; ++b) {
            const Curve::Point *e = pts + ends[size_t(b)];
            double sum = 0.0;
            for (; p < e; ++p)
                sum += p->second;
            sums[size_t(b)] = sum;
        }
        benchmark::DoNotOptimize(sums.data());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_CurveBinRef)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMean)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMax)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMedian)->Arg(10000000)->Unit(benchmark::kMillisecond);
