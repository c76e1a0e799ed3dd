// Reduction of a long rising curve to display points, against a reference pass that only
// sums y per bin over the same points. Mean and maximum should stay within 2x of the
// reference, median within 8x; each rule is checked once against a plain restatement of
// it before timing, so a fast wrong answer fails the run instead of showing a good time.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "bench/reference_loops.h"
#include "plot/Curve.h"

namespace {

constexpr int kOutputs = 8192;

using orlex::bench::LongCurve;

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

// The reference: one pass over the same points that sums y per bin (bench/reference_loops.h).
void BM_CurveBinRef(benchmark::State &state)
{
    orlex::bench::CurveBinPass pass(int(state.range(0)), kOutputs);
    for (auto _ : state) {
        benchmark::DoNotOptimize(pass.Run());
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_CurveBinRef)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMean)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMax)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveConvertMedian)->Arg(10000000)->Unit(benchmark::kMillisecond);
