// Speed of the drawing layer's bulk paths against a plain memory copy of the same pixels:
//   BM_Memcpy/2048                 2048 x 2048 pixels of 4 bytes, memcpy (the reference)
//   BM_BitBltFull/2048             a 2048 x 2048 memory context copied to a window
//   BM_StretchDIBits8/1024to2048   an 8-bit 1024 x 1024 block with its palette stretched to
//                                  2048 x 2048 in a memory context
// Targets: the blit within 2x of the reference, the stretch within 4x.
#include <benchmark/benchmark.h>

#include <cstring>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"

namespace {

void BM_Memcpy(benchmark::State& state) {
    const std::size_t n = static_cast<std::size_t>(state.range(0)) * state.range(0) * 4;
    std::vector<unsigned char> src(n, 0x5A), dst(n, 0);
    for (auto _ : state) {
        std::memcpy(dst.data(), src.data(), n);
        benchmark::DoNotOptimize(dst.data());
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(n));
}
BENCHMARK(BM_Memcpy)->Arg(2048)->Unit(benchmark::kMillisecond);

void BM_BitBltFull(benchmark::State& state) {
    const int size = static_cast<int>(state.range(0));
    orlex::EnsureApplication();
    CWnd wnd;
    LPCSTR cls = AfxRegisterWndClass(0, nullptr, GetSysColorBrush(COLOR_WINDOW));
    if (!wnd.CreateEx(0, cls, "bench", WS_POPUP | WS_VISIBLE, 0, 0, size, size, nullptr, nullptr)) {
        state.SkipWithError("no window");
        return;
    }
    orlex::PumpPending();
    CClientDC wdc(&wnd);
    CDC mem;
    mem.CreateCompatibleDC(&wdc);
    CBitmap bmp;
    bmp.CreateCompatibleBitmap(&wdc, size, size);
    CBitmap* old = mem.SelectObject(&bmp);
    mem.FillSolidRect(0, 0, size, size, RGB(10, 200, 30));
    for (auto _ : state) {
        wdc.BitBlt(0, 0, size, size, &mem, 0, 0, SRCCOPY);
        benchmark::ClobberMemory();
    }
    if (wdc.GetPixel(size - 1, size - 1) != RGB(10, 200, 30)) state.SkipWithError("blit did not reach the window");
    mem.SelectObject(old);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * size * size * 4);
    wnd.DestroyWindow();
}
BENCHMARK(BM_BitBltFull)->Arg(2048)->Unit(benchmark::kMillisecond);

void BM_StretchDIBits8(benchmark::State& state, int src, int dst) {
    orlex::EnsureApplication();
    // The library's real-time block: header, 256 colours, one byte a pixel.
    std::vector<unsigned char> block(1064 + static_cast<std::size_t>(src) * src);
    BITMAPINFOHEADER h{40, src, src, 1, 8, 0, static_cast<DWORD>(src * src), 0, 0, 0, 0};
    std::memcpy(block.data(), &h, 40);
    for (int i = 0; i < 256; ++i) {
        block[40 + i * 4] = static_cast<unsigned char>(i);
        block[40 + i * 4 + 1] = static_cast<unsigned char>(255 - i);
        block[40 + i * 4 + 2] = static_cast<unsigned char>(i / 2);
    }
    for (std::size_t i = 1064; i < block.size(); ++i) block[i] = static_cast<unsigned char>(i * 31);
    CDC mem;
    mem.CreateCompatibleDC(nullptr);
    CBitmap bmp;
    bmp.CreateBitmap(dst, dst, 1, 32, nullptr);
    CBitmap* old = mem.SelectObject(&bmp);
    mem.SetStretchBltMode(HALFTONE);
    for (auto _ : state) {
        StretchDIBits(mem.m_hDC, 0, 0, dst, dst, 0, 0, src, src, block.data() + 1064,
                      reinterpret_cast<const BITMAPINFO*>(block.data()), DIB_RGB_COLORS, SRCCOPY);
        benchmark::ClobberMemory();
    }
    mem.SelectObject(old);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * dst * dst * 4);
}

const auto* registered = benchmark::RegisterBenchmark("BM_StretchDIBits8/1024to2048", BM_StretchDIBits8, 1024, 2048)
                             ->Unit(benchmark::kMillisecond);

}  // namespace
