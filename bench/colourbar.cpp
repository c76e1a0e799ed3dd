// The colour bar derives a whole working table on every mouse move of a table drag and on
// every change in the adjustment dialog, and the image is then rebuilt through that table.
// The derivation must stay negligible beside the image it recolours:
//   BM_DeriveTable against BM_CreateBitmap8Bit/512 (the same run): under 1%.
// BM_DeriveTableSegments is the equalised form (contrast and offset per segment).
#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

#include "colour/ColorAdjust.h"
#include "colour/ColorTable.h"
#include "foundation/platform/globalmem.h"
#include "imageview/BitmapData.h"

namespace {

using orlex::colour::WorkingTable;

// A table drag: the table number alternates as the mouse crosses 40-pixel steps, with a
// contrast and an offset that make every stage of the derivation run.
void BM_DeriveTable(benchmark::State& state)
{
    InitializeColorTables();
    WorkingTable w;
    w.SetContrast(7);
    w.SetOffset(-23);
    int table = 5;
    for (auto _ : state) {
        table = table == 5 ? 6 : 5;
        w.DeriveWorkingTable(table);
        benchmark::DoNotOptimize(w.GetColorTable());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_DeriveTable);

void BM_DeriveTableSegments(benchmark::State& state)
{
    InitializeColorTables();
    WorkingTable w;
    w.SetContrast(-6);
    w.SetOffset(12);
    std::vector<tagRGBQUAD> eq(256);
    for (int i = 0; i < 256; ++i) eq[i] = tagRGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i / 2), 255};
    w.EqualizeColorTable(eq.data());
    w.SetEqualizedCursors({40, 96, 170, 220});
    for (auto _ : state) {
        w.DeriveWorkingTable(w.GetColorTableIdx());  // same number: the equalised table stays
        benchmark::DoNotOptimize(w.GetColorTable());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_DeriveTableSegments);

// The reference: the real-time image of 512 x 512 points through a table, as a table
// change on the bar asks of the view.
void BM_CreateBitmap8Bit(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> data(std::size_t(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x)
            data[std::size_t(y) * n + x] = int(std::sin(x * 0.05) * std::cos(y * 0.03) * 2.0e9);
    WorkingTable w;
    w.DeriveWorkingTable(12);
    for (auto _ : state) {
        void* dib = nullptr;
        CreateBitmap8Bit(dib, 256, data.data(), n, n, w.GetColorTable(), -2.0e9, 2.0e9, 0, {});
        benchmark::DoNotOptimize(dib);
        if (dib) GlobalFree(dib);
    }
}
BENCHMARK(BM_CreateBitmap8Bit)->Arg(512);

}  // namespace
