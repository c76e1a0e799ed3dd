// The spreadsheet grid holds run logs of a million lines and more; its table operations must
// cost about what the same work on plain strings costs. Each is measured beside its
// reference in the same run:
//   BM_GridSetRowCount/1000000 (a 2-column grid grown from 1 row to a million and back)
//     within 3x of BM_StdSortKeys/1000000 (std::sort by strcmp of a million 8-letter keys);
//   BM_GridSortText/1000000 (SortTextItems on a column of the same keys, shuffled outside
//     the timing) within 4x of BM_StdSortKeys/1000000.
// Painting and the keyboard cost what is visible, not the size of the table:
//   BM_GridPaintVirtual/10000000 within 1.2x of BM_GridPaintVirtual/1000 (a whole paint of a
//     1024 x 768 virtual grid of 20 columns, scrolled to its middle, every text formatted by
//     the callback);
//   BM_GridKeyStep (Down and Up in turn on a 100,000 x 20 grid, each pumped to its end) within
//     5x of BM_GridRedrawTwoCells (RedrawCell of the same two cells); BM_GridPaint, a paint of
//     the whole window, beside them.
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

// A top-level window holding one grid of 1024 x 768 client pixels.
class GridWindow {
public:
    GridWindow()
    {
        orlex::EnsureApplication();
        host.CreateEx(0, nullptr, "bench", WS_POPUP | WS_VISIBLE, CRect(0, 0, 1024, 768), nullptr, 0);
        grid.Create(CRect(0, 0, 1024, 768), &host, 1, WS_CHILD | WS_VISIBLE);
    }
    ~GridWindow()
    {
        grid.DestroyWindow();
        host.DestroyWindow();
    }
    void Paint()
    {
        grid.Invalidate();
        grid.UpdateWindow();
    }
    CWnd host;
    CGridCtrl grid;
};

int FormatLine(GV_DISPINFO* info, LPARAM)
{
    // As long for every row, so that only the number of cells drawn can make a difference.
    info->item.strText.Format("%08d:%02d", info->item.row, info->item.col);
    return TRUE;
}

void BM_GridPaintVirtual(benchmark::State& state)
{
    GridWindow w;
    CGridCtrl& g = w.grid;
    g.SetVirtualMode(TRUE);
    g.SetCallbackFunc(FormatLine, 0);
    g.SetRowCount(static_cast<int>(state.range(0)));
    g.SetColumnCount(20);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    SCROLLINFO si{sizeof(SCROLLINFO), SIF_RANGE | SIF_PAGE};
    g.GetScrollInfo(SB_VERT, &si);
    g.SetScrollPos32(SB_VERT, (si.nMax - static_cast<int>(si.nPage)) / 2);
    g.GetTopleftNonFixedCell();
    orlex::PumpPending();
    for (auto _ : state)
        w.Paint();
    state.counters["top row"] = g.GetTopleftNonFixedCell().row;
}
BENCHMARK(BM_GridPaintVirtual)->Arg(1000)->Arg(10000000)->Unit(benchmark::kMillisecond);

// A 100,000 x 20 grid with a text in every cell and the focus on a cell near the top.
void FillSteppingGrid(CGridCtrl& g)
{
    g.SetRowCount(100000);
    g.SetColumnCount(20);
    g.SetFixedRowCount(1);
    g.SetFixedColumnCount(1);
    for (int r = 1; r < 100000; ++r)
        for (int c = 1; c < 20; ++c)
            g.GetCell(r, c)->SetText("cell");
    g.SetFocusCell(5, 3);
    g.SetSelectedRange(5, 3, 5, 3);
    orlex::PumpPending();
}

void BM_GridKeyStep(benchmark::State& state)
{
    GridWindow w;
    FillSteppingGrid(w.grid);
    bool down = true;
    for (auto _ : state) {
        w.grid.SendMessage(WM_KEYDOWN, down ? VK_DOWN : VK_UP, 0);
        orlex::PumpPending();
        down = !down;
    }
}
BENCHMARK(BM_GridKeyStep)->Unit(benchmark::kMicrosecond);

void BM_GridRedrawTwoCells(benchmark::State& state)
{
    GridWindow w;
    FillSteppingGrid(w.grid);
    for (auto _ : state) {
        w.grid.RedrawCell(5, 3);
        w.grid.RedrawCell(6, 3);
    }
}
BENCHMARK(BM_GridRedrawTwoCells)->Unit(benchmark::kMicrosecond);

void BM_GridPaint(benchmark::State& state)
{
    GridWindow w;
    FillSteppingGrid(w.grid);
    for (auto _ : state)
        w.Paint();
}
BENCHMARK(BM_GridPaint)->Unit(benchmark::kMicrosecond);

}  // namespace
