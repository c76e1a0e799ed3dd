// The image view's two costs, each beside a reference loop of the same memory traffic in
// the same run:
//   BM_ViewPaint/2048 (a paint of a 2048 x 2048 view: one copy of the memory bitmap)
//     against BM_Memcpy/2048 (2048 x 2048 x 4 bytes copied): within 2x
//   BM_ViewZoom/4096to1024 (UpdateImage after a zoom change: 4096 x 4096 off-line data,
//     1024 x 1024 window) against BM_Ref24/1024 (1024 x 1024 ints read, three bytes
//     written each): within 4x
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "bench/reference_loops.h"
#include "foundation/platform/afxwin.h"
#include "imageview/ImageView.h"

namespace {

std::vector<RGBQUAD> Table()
{
    std::vector<RGBQUAD> t(256);
    for (int i = 0; i < 256; ++i) t[i] = RGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i * 3), 0};
    return t;
}

std::vector<int> Image(int n)
{
    std::vector<int> d(std::size_t(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) d[std::size_t(y) * n + x] = (x * 131 + y * 71) * 977 - 500000000;
    return d;
}

// A top-level host with one off-line view of the given client size showing n x n data.
struct Scene {
    CWnd host;
    CImageView view{false};
    std::vector<int> data;
    std::vector<RGBQUAD> table = Table();

    Scene(int client, int n) : data(Image(n))
    {
        if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
        orlex::EnsureApplication();
        host.CreateEx(0, nullptr, "bench", WS_POPUP | WS_VISIBLE, CRect(0, 0, client, client), nullptr, 0);
        view.Create(nullptr, "view", WS_CHILD | WS_VISIBLE, CRect(0, 0, client, client), &host, 1);
        DPOINT scan;
        scan.x = scan.y = 1e-6;
        view.DrawImage(data.data(), n, n, scan, table.data(), 1.0, -6e8, 6e8, {});
        orlex::PumpPending();
    }
    ~Scene()
    {
        view.DestroyWindow();
        host.DestroyWindow();
    }
};

void BM_Memcpy(benchmark::State& state)
{
    const std::size_t bytes = std::size_t(state.range(0)) * state.range(0) * 4;
    std::vector<unsigned char> a(bytes, 1), b(bytes, 0);
    for (auto _ : state) {
        std::memcpy(b.data(), a.data(), bytes);
        benchmark::DoNotOptimize(b.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * int64_t(bytes));
}
BENCHMARK(BM_Memcpy)->Arg(2048)->Unit(benchmark::kMillisecond);

void BM_ViewPaint(benchmark::State& state)
{
    const int n = int(state.range(0));
    Scene s(n, n);
    for (auto _ : state) {
        s.view.Invalidate(FALSE);
        s.view.UpdateWindow();
    }
    state.SetBytesProcessed(int64_t(state.iterations()) * n * n * 4);
}
BENCHMARK(BM_ViewPaint)->Arg(2048)->Unit(benchmark::kMillisecond);

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
}
BENCHMARK(BM_Ref24)->Arg(1024)->Unit(benchmark::kMillisecond);

void BM_ViewZoom(benchmark::State& state)
{
    Scene s(1024, 4096);
    // Two zoom rectangles, both larger than the window, taken in turn.
    CRect whole(0, 0, 4096, 4096), part(512, 1024, 3584, 4096);
    bool flip = false;
    for (auto _ : state) {
        s.view.SetZoomRect(flip ? whole : part);
        flip = !flip;
        s.view.UpdateImage();
    }
}
BENCHMARK(BM_ViewZoom)->Name("BM_ViewZoom/4096to1024")->Unit(benchmark::kMillisecond);

}  // namespace
