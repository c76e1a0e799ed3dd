// The spreadsheet grid holds run logs of a million lines and more; its table operations must
// cost about what the same work on plain strings costs. Each is measured beside its
// reference in the same run:
//   BM_GridSetRowCount/1000000 (a 2-column grid grown from 1 row to a million and back)
//     within 3x of BM_StdSortKeys/1000000 (std::sort by strcmp of a million 8-letter keys);
//   BM_GridSortText/1000000 (SortTextItems on a column of the same keys, shuffled outside
//     the timing) within 4x of BM_StdSortKeys/1000000.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "foundation/platform/afxwin.h"
#include "grid/GridCtrl.h"

namespace {

std::vector<std::string> RandomKeys(size_t n)
{
    std::mt19937 gen(1234);
    std::uniform_int_distribution<int> letter('a', 'z');
    std::vector<std::string> keys(n);
    for (std::string& k : keys) {
        k.resize(8);
        for (char& c : k)
            c = static_cast<char>(letter(gen));
    }
    return keys;
}

void BM_StdSortKeys(benchmark::State& state)
{
    const std::vector<std::string> keys = RandomKeys(static_cast<size_t>(state.range(0)));
    std::vector<std::string> work;
    for (auto _ : state) {
        state.PauseTiming();
        work = keys;
        state.ResumeTiming();
        std::sort(work.begin(), work.end(),
                  [](const std::string& a, const std::string& b) { return std::strcmp(a.c_str(), b.c_str()) < 0; });
        benchmark::DoNotOptimize(work.data());
    }
}
BENCHMARK(BM_StdSortKeys)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_GridSetRowCount(benchmark::State& state)
{
    orlex::EnsureApplication();
    CGridCtrl grid(1, 2);
    const int rows = static_cast<int>(state.range(0));
    for (auto _ : state) {
        grid.SetRowCount(rows);
        benchmark::DoNotOptimize(grid.GetCell(rows - 1, 1));
        grid.SetRowCount(1);
    }
}
BENCHMARK(BM_GridSetRowCount)->Arg(1000000)->Unit(benchmark::kMillisecond);

void BM_GridSortText(benchmark::State& state)
{
    orlex::EnsureApplication();
    const int rows = static_cast<int>(state.range(0));
    std::vector<std::string> keys = RandomKeys(static_cast<size_t>(rows));
    CGridCtrl grid(rows, 2);
    std::mt19937 gen(99);
    for (auto _ : state) {
        state.PauseTiming();
        std::shuffle(keys.begin(), keys.end(), gen);
        for (int r = 0; r < rows; ++r)
            grid.GetCell(r, 0)->SetText(keys[static_cast<size_t>(r)].c_str());
        state.ResumeTiming();
        grid.SortTextItems(0, TRUE);
        benchmark::DoNotOptimize(grid.GetCell(0, 0));
    }
}
BENCHMARK(BM_GridSortText)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
