// The image frame's live road, each beside a reference of the same work in the same run:
//   BM_FrameDrawLine/4096 (one frame-level DrawLine of a 4096 x 4096 live image on a 1024
//     view, rate limit on, real clock, fixed z range) against BM_Scale8BitLine/4096 (the
//     scaling of one line alone): within 1.5x
//   BM_FrameScanStrip/1024 (a 1024 image on a 1024 view, limit off, marker on: every line
//     a strip, its paint and the frame's line mark) against BM_MemcpyStrip/1024 (1024 x 5
//     plus 5 x 1044 pixels of 4 bytes: the strip and the mark's column): within 40x
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "foundation/OrlexUI.h"
#include "foundation/platform/afxwin.h"
#include "imageframe/BorderCon.h"
#include "imageview/BitmapData.h"

namespace {

constexpr double kZScale = 1.0;

std::vector<int> Line(int n, int k)
{
    std::vector<int> d(static_cast<std::size_t>(n));
    for (int x = 0; x < n; ++x) d[std::size_t(x)] = (x * 131 + k * 71) * 977 - 500000000;
    return d;
}

// A top-level host with a live frame whose view is `view` pixels a side, showing an n x n
// image; the marker is drawn.
struct Scene {
    CWnd host;
    CBorderCon frame{true, 0};
    std::vector<int> image;
    int n;

    Scene(int view, int n_) : n(n_)
    {
        if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
        orlex::EnsureApplication();
        OrlexUI::Initialize(true);
        const int w = view + 5 + 30 + 1 + 2, h = view + 23 + 38 + 1 + 2;
        host.CreateEx(0, nullptr, "bench", WS_POPUP | WS_VISIBLE, CRect(0, 0, w + 10, h + 10), nullptr, 0);
        CRect rect(0, 0, w, h);
        frame.Create(1, &host, 0, &rect, 0);
        frame.EnableScanLine(1);
        image.assign(std::size_t(n) * n, 0);
        frame.DrawImage(image.data(), n, n, 1e-5, 1.0, kZScale, 1.0, "V", {});
        orlex::PumpPending();
    }
    ~Scene()
    {
        frame.DestroyWindow();
        host.DestroyWindow();
    }
};

void BM_Scale8BitLine(benchmark::State& state)
{
    const int n = int(state.range(0));
    std::vector<int> line = Line(n, 3);
    std::vector<unsigned char> out(static_cast<std::size_t>(n));
    for (auto _ : state) {
        Scale8BitData(line.data(), out.data(), 1, n, kZScale, 255);
        benchmark::DoNotOptimize(out.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_Scale8BitLine)->Arg(4096)->Unit(benchmark::kMicrosecond);

void BM_FrameDrawLine(benchmark::State& state)
{
    const int n = int(state.range(0));
    Scene s(1024, n);
    std::vector<int> line = Line(n, 3);
    int k = 0;
    for (auto _ : state) {
        s.frame.DrawLine(line.data(), k, n, 1e-5, 1, 1.0, kZScale, 1.0, "V", {});
        k = k + 1 < n ? k + 1 : 0;
    }
}
BENCHMARK(BM_FrameDrawLine)->Arg(4096)->Unit(benchmark::kMicrosecond);

void BM_MemcpyStrip(benchmark::State& state)
{
    const std::size_t n = std::size_t(state.range(0));
    const std::size_t bytes = (n * 5 + 5 * (n + 20)) * 4;
    std::vector<unsigned char> a(bytes, 1), b(bytes, 0);
    for (auto _ : state) {
        std::memcpy(b.data(), a.data(), bytes);
        benchmark::DoNotOptimize(b.data());
        benchmark::ClobberMemory();
    }
}
BENCHMARK(BM_MemcpyStrip)->Arg(1024)->Unit(benchmark::kMicrosecond);

void BM_FrameScanStrip(benchmark::State& state)
{
    const int n = int(state.range(0));
    Scene s(n, n);
    s.frame.GetImageView()->Enable6HzUpdateImageLine(false);
    std::vector<int> line = Line(n, 5);
    int k = 0;
    for (auto _ : state) {
        s.frame.DrawLine(line.data(), k, n, 1e-5, 1, 1.0, kZScale, 1.0, "V", {});
        k = k + 1 < n ? k + 1 : 0;
    }
}
BENCHMARK(BM_FrameScanStrip)->Arg(1024)->Unit(benchmark::kMicrosecond);

}  // namespace
