// The plot engine drawing a long curve into a 1024 x 768 memory bitmap (rectangular plot,
// Connect, minor lines, labels, mean reduction to 8192 points), beside references of the
// same run:
//   BM_DrawMap/10000000 (the noisy saw of the reduction benchmarks taken in anew each time:
//     reduction, grid, labels and a dense line) within 2.5x of BM_CurveBinRef/10000000
//   BM_PlotRedraw/10000000 (a smooth curve reduced once, then repainted) within 5x of
//     BM_BitmapCopy/1024/768 (a memcpy of the bitmap's pixels)
// Each checks the picture before it is timed, so a wrong one fails instead of timing well.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "bench/reference_loops.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"
#include "plot/PlotGeometry.h"

namespace {

constexpr int kW = 1024, kH = 768;

// A screen-compatible memory bitmap and a map drawing into it, as a plot control paints.
struct Canvas {
    HDC dc = nullptr;
    HBITMAP bmp = nullptr;
    HGDIOBJ old = nullptr;
    std::unique_ptr<MapClass> map = std::make_unique<MapClass>(nullptr);
    Curve* curves[kMapSlots] = {};

    explicit Canvas(Curve* c)
    {
        orlex::EnsureApplication();
        HDC screen = GetDC(nullptr);
        dc = CreateCompatibleDC(screen);
        bmp = CreateCompatibleBitmap(screen, kW, kH);
        ReleaseDC(nullptr, screen);
        old = SelectObject(dc, bmp);
        map->SetBorderWidths(RECT{45, 12, 15, 20});
        map->SetUnits("s", "V", 1.0, 1.0, true, nullptr);
        map->SetAxisLabels("Time", "Signal");
        map->MapType = 100;
        curves[0] = c;
    }
    ~Canvas()
    {
        SelectObject(dc, old);
        DeleteObject(bmp);
        DeleteDC(dc);
    }
    void Paint()
    {
        RECT r{0, 0, kW, kH};
        HBRUSH bk = CreateSolidBrush(map->GetBkColor());
        FillRect(dc, &r, bk);
        DeleteObject(bk);
        map->DrawMap(dc, curves, r);
    }
    // The picture shows the reduced curve where its points map, the frame of the plot in
    // the grid colour and text below it.
    bool Looks() const
    {
        const Curve& c = *curves[0];
        if (map->Slots[0].Converted != 1 || c.CGetNumPts() != 8192)
            return false;
        const RECT b = map->GetBound();
        const auto pm = orlex::plot::MakePixelMap(100, map->XStart, map->XEnd, map->YStart, map->YEnd, false, b);
        const COLORREF curve = map->GetCurveColor(0);
        for (int i : {0, 1000, 4096, 8000}) {
            POINT p;
            orlex::plot::MapPoints(pm, c.ConvertedData.data(), i, i, 0.0f, &p, nullptr, 0, false, nullptr);
            if (GetPixel(dc, p.x, p.y) != curve)
                return false;
        }
        const COLORREF edge = GetPixel(dc, b.right, b.top + 1);
        if (GetPixel(dc, b.right, b.top) != map->GetBkColor() || (edge != map->GridColor && edge != curve))
            return false;
        int text = 0;
        for (int x = b.left; x < b.right; ++x)
            for (int y = b.bottom + 2; y < kH; ++y)
                text += GetPixel(dc, x, y) == map->TextColor;
        return text > 20;
    }
};

void BM_CurveBinRef(benchmark::State& state)
{
    orlex::bench::CurveBinPass pass(int(state.range(0)), 8192);
    for (auto _ : state) {
        benchmark::DoNotOptimize(pass.Run());
        benchmark::ClobberMemory();
    }
}

void BM_BitmapCopy(benchmark::State& state)
{
    const size_t n = size_t(state.range(0)) * size_t(state.range(1));
    std::vector<std::uint32_t> a(n, 0x00ABCDEFu), b(n);
    for (auto _ : state) {
        std::memcpy(b.data(), a.data(), n * 4);
        benchmark::DoNotOptimize(b.data());
        benchmark::ClobberMemory();
    }
}

void BM_DrawMap(benchmark::State& state)
{
    Canvas canvas(&orlex::bench::LongCurve(int(state.range(0))));
    canvas.Paint();
    if (!canvas.Looks()) {
        state.SkipWithError("the plot doesn't show the reduced curve");
        return;
    }
    for (auto _ : state) {
        canvas.map->DrawNew();
        canvas.Paint();
    }
}

Curve& SmoothCurve(int n)
{
    static int builtFor = -1;
    static Curve curve;
    if (builtFor != n) {
        curve = Curve(n);
        for (int i = 0; i < n; ++i)
            curve.AddPoint(float(i) * 1e-6f, float(std::sin(6.0 * M_PI * i / n)));
        builtFor = n;
    }
    return curve;
}

void BM_PlotRedraw(benchmark::State& state)
{
    Canvas canvas(&SmoothCurve(int(state.range(0))));
    canvas.Paint();
    if (!canvas.Looks()) {
        state.SkipWithError("the plot doesn't show the reduced curve");
        return;
    }
    for (auto _ : state)
        canvas.Paint();
}

}  // namespace

BENCHMARK(BM_CurveBinRef)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawMap)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_BitmapCopy)->Args({1024, 768})->Unit(benchmark::kMillisecond);
BENCHMARK(BM_PlotRedraw)->Arg(10000000)->Unit(benchmark::kMillisecond);
