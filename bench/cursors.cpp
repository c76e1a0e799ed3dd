// The cost of following the mouse with a cursor, beside a reference copy in the same run:
//   BM_CursorDrag/512 and /4096: one WM_MOUSEMOVE to a dragged cross of arm 100 (a 210 x 210
//     window) on a view of that size, with the paints it causes. Targets: /4096 within 1.5x
//     of /512 (a drag costs what the cursor covers, not the view), and within 4x of
//   BM_Memcpy/300: 300 x 300 x 4 bytes copied (360 KB, twice the cross's window).
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <vector>

#include "cursors/BaseCursor.h"
#include "cursors/CrossCursor.h"
#include "foundation/platform/afxwin.h"
#include "imageview/ImageView.h"

namespace {

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
BENCHMARK(BM_Memcpy)->Arg(300)->Unit(benchmark::kMicrosecond);

// A top-level host with an off-line view of client x client pixels showing a 256 x 256 image.
struct Scene {
    CWnd host;
    CImageView view{false};
    std::vector<int> data = std::vector<int>(256 * 256);
    std::vector<RGBQUAD> table = std::vector<RGBQUAD>(256);

    explicit Scene(int client)
    {
        if (!std::getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "offscreen", 0);
        orlex::EnsureApplication();
        for (int i = 0; i < 256; ++i) table[i] = RGBQUAD{BYTE(i), BYTE(255 - i), BYTE(i * 3), 0};
        for (std::size_t i = 0; i < data.size(); ++i) data[i] = int(i % 251) * 1000;
        host.CreateEx(0, nullptr, "bench", WS_POPUP | WS_VISIBLE, CRect(0, 0, client, client), nullptr, 0);
        view.Create(nullptr, "view", WS_CHILD | WS_VISIBLE, CRect(0, 0, client, client), &host, 1);
        DPOINT scan;
        scan.x = scan.y = 1e-6;
        view.DrawImage(data.data(), 256, 256, scan, table.data(), 1.0, 0, 251000, {});
        orlex::PumpPending();
    }
    ~Scene()
    {
        CBaseCursor::m_bCursorTracking = false;
        view.DestroyWindow();
        host.DestroyWindow();
    }
};

void BM_CursorDrag(benchmark::State& state)
{
    const int n = int(state.range(0));
    Scene s(n);
    s.view.SetCrossCursorSize(100);
    const CPoint centre(n / 2, n / 2);
    CBaseCursor* cross = s.view.AddCursor(nullptr, kCursorCross, 0.0, centre);
    if (!cross) {
        state.SkipWithError("no cross");
        return;
    }
    // The press that starts the drag, at the cross's centre (its client 105, 105).
    cross->SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(105, 105));
    orlex::PumpPending();
    int step = 0;
    for (auto _ : state) {
        // One pixel right, then back: the point in the client of the window as it stands.
        const int dx = (step++ & 1) ? -1 : 1;
        cross->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(105 + dx, 105));
        orlex::PumpPending();
    }
    cross->SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(105, 105));
    orlex::PumpPending();
}
BENCHMARK(BM_CursorDrag)->Arg(512)->Arg(4096)->Unit(benchmark::kMicrosecond);

}  // namespace
