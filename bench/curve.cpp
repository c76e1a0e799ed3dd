// Statistics of a large curve against a loop that only sums its y values: the mean
// should cost about what the plain sum costs (target: within 3x).
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "plot/Curve.h"

namespace {

// One curve per size, built once outside the timed loops (a sine plus a ramp, so the
// values are not all alike).
const Curve& curveOf(int n)
{
    static std::unique_ptr<Curve> curve;
    static int size = -1;
    if (size != n) {
        curve = std::make_unique<Curve>(n);
        for (int i = 0; i < n; ++i)
            curve->AddPoint(float(i), float(std::sin(i * 0.001) * 100.0 + i * 1e-4));
        curve->SetYTranslation(0.25f);
        size = n;
    }
    return *curve;
}

void BM_CurveSumRef(benchmark::State& state)
{
    const Curve& c = curveOf(int(state.range(0)));
    const auto& data = c.GetCurveData();
    for (auto _ : state) {
        double sum = 0.0;
        for (const auto& p : data)
            sum += p.second;
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CurveStats(benchmark::State& state)
{
    const Curve& c = curveOf(int(state.range(0)));
    for (auto _ : state) {
        double mean = c.ComputeMean();
        benchmark::DoNotOptimize(mean);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The median needs a copy and a selection; shown for scale, not held to the target.
void BM_CurveMedian(benchmark::State& state)
{
    const Curve& c = curveOf(int(state.range(0)));
    for (auto _ : state) {
        double median = c.ComputeMedian();
        benchmark::DoNotOptimize(median);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CurveFindPoint(benchmark::State& state)
{
    const Curve& c = curveOf(int(state.range(0)));
    double x = 0.0;
    const double step = double(state.range(0)) / 1021.0;
    for (auto _ : state) {
        FINDPOINT r = c.FindPoint(x, 0);
        benchmark::DoNotOptimize(r);
        x += step;
        if (x >= double(state.range(0)))
            x -= double(state.range(0));
    }
}

} // namespace

BENCHMARK(BM_CurveSumRef)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveStats)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveMedian)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_CurveFindPoint)->Arg(10000000);
