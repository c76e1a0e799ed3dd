// The plot control's two costs, each beside a reference of the same run:
//   BM_MarkerDrag/768/1024 and /768/4096 (one mouse move of a dragged vertical marker, a
//     pixel to and fro across a horizontal marker, tracking on, in a plot 768 high and
//     1024 or 4096 wide) within 30x of BM_ColumnStripCopy/768 (a memcpy of the 768 cache
//     lines one column touches), and /4096 within 1.3x of /1024: a move never repaints
//   BM_SetData/10000000 (one equally spaced record of 10 M floats into a painted plot,
//     autoscaled and reduced to 8192 points, to the end of its paint) within 8x of
//     BM_CurveBinRef/10000000
// Each checks its picture before it is timed.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstring>
#include <memory>
#include <vector>

#include "bench/reference_loops.h"
#include "foundation/platform/afxwin.h"
#include "plot/MarkerMan.h"
#include "plotcontrol/GridControl.h"

namespace {

// A top-level host with one plot control whose client area is w x h.
struct Host {
    CWnd parent;
    CGridControl plot;
    std::vector<float> y;

    Host(int w, int h)
    {
        orlex::EnsureApplication();
        parent.CreateEx(0, nullptr, "bench", WS_POPUP | WS_VISIBLE, CRect(0, 0, w + 40, h + 40), nullptr, 0);
        CRect r(10, 10, 10 + w + 2, 10 + h + 2); // the border around the client area
        plot.Create(1, &parent, &r);
        orlex::PumpPending();
    }
    ~Host()
    {
        plot.DestroyWindow();
        parent.DestroyWindow();
    }
    void Data(int n, double span, float (*f)(int, int))
    {
        y.resize(size_t(n));
        for (int i = 0; i < n; ++i)
            y[size_t(i)] = f(i, n);
        std::vector<SET_DATA_STRUCT> r(kMapSlots);
        r[0].y = y.data();
        r[0].numPoints = n;
        r[0].xSpan = span;
        plot.SetData(r.data());
        orlex::PumpPending();
    }
    COLORREF At(int x, int yy) const
    {
        HDC dc = GetDC(plot.m_hWnd);
        const COLORREF c = GetPixel(dc, x, yy);
        ReleaseDC(plot.m_hWnd, dc);
        return c;
    }
};

float Wave(int i, int n)
{
    return float(std::sin(6.0 * M_PI * i / n));
}

void BM_ColumnStripCopy(benchmark::State& state)
{
    const size_t bytes = size_t(state.range(0)) * 64;
    std::vector<char> a(bytes, 1), b(bytes);
    for (auto _ : state) {
        std::memcpy(b.data(), a.data(), bytes);
        benchmark::DoNotOptimize(b.data());
        benchmark::ClobberMemory();
    }
}

void BM_MarkerDrag(benchmark::State& state)
{
    Host h(int(state.range(1)), int(state.range(0)));
    h.Data(2000, 10.0, Wave);
    MapClass& m = *h.plot.GetMap();
    h.plot.EnableTrackMouse(1);
    m.SetMarker(nullptr, 5.0, 1, 0);
    h.plot.AddHorzMarker(0.0, 0, 1);
    h.plot.Invalidate(FALSE);
    h.plot.UpdateWindow();
    const RECT b = m.GetBound();
    const int x = m.MarkerDbl2Pix(5.0, 2), yMid = m.GetHorzMarker(0).Pixel;
    h.plot.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(x, (b.top + b.bottom) / 2 + 7));
    orlex::PumpPending();
    const COLORREF crossing = h.At(x + 1, yMid); // the level, normal once the marker is taken
    const COLORREF line = h.At(x, b.top);
    h.plot.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + 1, (b.top + b.bottom) / 2 + 7));
    orlex::PumpPending();
    // The marker moved by a pixel, its old column is the plot again, the level is whole.
    if (h.At(x + 1, b.top) != line || h.At(x, b.top) == line || h.At(x + 1, yMid) != crossing) {
        state.SkipWithError("the marker doesn't follow the mouse");
        return;
    }
    int step = 0;
    for (auto _ : state) {
        h.plot.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(x + (step++ & 1), (b.top + b.bottom) / 2 + 7));
        orlex::PumpPending();
    }
    h.plot.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(x, (b.top + b.bottom) / 2 + 7));
}

void BM_CurveBinRef(benchmark::State& state)
{
    orlex::bench::CurveBinPass pass(int(state.range(0)), 8192);
    for (auto _ : state) {
        benchmark::DoNotOptimize(pass.Run());
        benchmark::ClobberMemory();
    }
}

void BM_SetData(benchmark::State& state)
{
    Host h(1024, 768);
    const int n = int(state.range(0));
    h.Data(n, 10.0, Wave);
    MapClass& m = *h.plot.GetMap();
    const RECT b = m.GetBound();
    // The three periods reach the top and bottom of the scale once each: the reduced
    // curve's top shows in the plot's first row.
    int top = 0;
    for (int x = b.left; x <= b.right; ++x)
        top += h.At(x, b.top + 1) == m.GetCurveColor(0);
    if (m.Slots[0].Converted != 1 || top == 0) {
        state.SkipWithError("the plot doesn't show the reduced data");
        return;
    }
    std::vector<SET_DATA_STRUCT> r(kMapSlots);
    r[0].y = h.y.data();
    r[0].numPoints = n;
    r[0].xSpan = 10.0;
    for (auto _ : state) {
        h.plot.SetData(r.data());
        orlex::PumpPending();
    }
}

}  // namespace

BENCHMARK(BM_ColumnStripCopy)->Arg(768);
BENCHMARK(BM_MarkerDrag)->Args({768, 1024})->Args({768, 4096});
BENCHMARK(BM_CurveBinRef)->Arg(10000000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SetData)->Arg(10000000)->Unit(benchmark::kMillisecond);
