// A slider drag paints on every mouse move, and the thumb must follow the pointer however
// wide the slider. One 1-pixel move of a drag with its paints, against a bare window that
// invalidates the same two thumb rectangles and copies the thumb twice:
//   BM_SliderDrag/N within 2.5x of BM_ThumbRepaintRef/N at each width;
//   BM_SliderDrag/4096 within 1.25x of BM_SliderDrag/256.
// The host window stands at (20, 300) of the screen, as hosts do away from its corner.
//
// Folding a group hides and shows its children and repaints it once, not once a child:
//   BM_GroupToggle/64 (collapse and expand, with the paints) within 1.5x of
//   BM_ShowHideRef/64 (the same buttons hidden and shown in a plain window, with the paints).
#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/process.h"
#include "foundation/platform/resources.h"
#include "panel/OrlexGroup.h"
#include "panel/OrlexHorzSlider.h"
#include "tools/faces/faces.h"

namespace {

using faces::kLargeThumb;
using faces::kLargeTrack;

class Logger : public COrlexMsgCenter {
public:
    void ReceiveCtrlMessage(CString text) override {
        if (texts.size() > 4096) texts.clear();
        texts.push_back(text);
    }
    std::vector<CString> texts;
};

// A top-level host of the given client size.
std::unique_ptr<CWnd> MakeHost(int width, int height = 40) {
    orlex::EnsureApplication();
    faces::RegisterFaces();
    auto host = std::make_unique<CWnd>();
    host->CreateEx(0, nullptr, "bench host", WS_POPUP | WS_VISIBLE, CRect(20, 300, 20 + width + 8, 300 + height),
                   nullptr, 0);
    orlex::PumpPending();
    return host;
}

// The next x of a drag that walks the run one pixel at a time, back and forth.
int Walk(int& x, int& step, int run) {
    if (x + step < 0 || x + step > run) step = -step;
    x += step;
    return x;
}

void BM_SliderDrag(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    auto host = MakeHost(width);
    Logger log;
    COrlexHorzSlider slider;
    slider.Create(0, 0, static_cast<UINT>(width), host.get());
    slider.LoadBitmap(kLargeThumb.id, kLargeTrack.id);
    slider.LoadCtrlMessages(&log, "MOVE", "END", "");
    orlex::PumpPending();
    slider.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(0, 5));
    orlex::PumpPending();
    int x = 0, step = 1;
    const int run = width - kLargeThumb.width;
    for (auto _ : state) {
        slider.SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(Walk(x, step, run), 5));
        orlex::PumpPending();
    }
    slider.SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(x, 5));
    if (slider.m_nThumbPos != x) state.SkipWithError("the thumb did not follow");
}
BENCHMARK(BM_SliderDrag)->Arg(256)->Arg(4096);

// The least a thumb repaint costs on this layer: the same two rectangles invalidated with
// erase, and a paint that copies the thumb to its old and new places.
class ThumbWindow : public CWnd {
public:
    CBitmap thumb;
    int oldX = 0, newX = 0;

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CDC mem;
        if (!mem.CreateCompatibleDC(&dc)) return;
        CBitmap* old = mem.SelectObject(&thumb);
        dc.BitBlt(oldX, 0, kLargeThumb.width, kLargeThumb.height, &mem, 0, 0, SRCCOPY);
        dc.BitBlt(newX, 0, kLargeThumb.width, kLargeThumb.height, &mem, 0, 0, SRCCOPY);
        mem.SelectObject(old);
    }
    DECLARE_MESSAGE_MAP()
};
BEGIN_MESSAGE_MAP(ThumbWindow, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

void BM_ThumbRepaintRef(benchmark::State& state) {
    const int width = static_cast<int>(state.range(0));
    auto host = MakeHost(width);
    ThumbWindow w;
    w.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(0, 0, width, kLargeThumb.height), host.get(), 0);
    w.thumb.Attach(::LoadBitmap(GetModuleHandleA(nullptr), MAKEINTRESOURCE(kLargeThumb.id)));
    orlex::PumpPending();
    int x = 0, step = 1;
    const int run = width - kLargeThumb.width;
    for (auto _ : state) {
        w.oldX = x;
        w.newX = Walk(x, step, run);
        const RECT a{w.oldX, 0, w.oldX + kLargeThumb.width, kLargeThumb.height};
        const RECT b{w.newX, 0, w.newX + kLargeThumb.width, kLargeThumb.height};
        w.InvalidateRect(&a, TRUE);
        w.InvalidateRect(&b, TRUE);
        orlex::PumpPending();
    }
}
BENCHMARK(BM_ThumbRepaintRef)->Arg(256)->Arg(4096);

// n buttons in rows of eight inside `parent`, below a 40-pixel title strip.
std::vector<std::unique_ptr<COrlex>> Buttons(CWnd* parent, int n) {
    std::vector<std::unique_ptr<COrlex>> out;
    for (int i = 0; i < n; ++i) {
        auto b = std::make_unique<COrlex>(0, 0, 0);
        b->Create(static_cast<UINT>(10 + (i % 8) * 52), static_cast<UINT>(40 + (i / 8) * 28), parent);
        b->LoadBitmap(faces::kButtonNormal.id);
        out.push_back(std::move(b));
    }
    return out;
}

constexpr int kGroupWidth = 8 * 52 + 20, kGroupHeight = 8 * 28 + 50;

void BM_GroupToggle(benchmark::State& state) {
    auto host = MakeHost(kGroupWidth + 20, kGroupHeight + 20);
    COrlexGroup group;
    group.Create(10, 10, kGroupWidth, kGroupHeight, host.get(), 0);
    group.LoadBitmap(faces::kGroupCollapsed.id);
    group.LoadClickBitmap(faces::kGroupExpanded.id);
    group.LoadBorderBitmaps(faces::kBorderLeft.id, faces::kBorderRight.id, faces::kBorderTop.id, faces::kBorderBottom.id,
                            faces::kBorderTopLeft.id, faces::kBorderTopRight.id, faces::kBorderBottomLeft.id,
                            faces::kBorderBottomRight.id);
    group.SetLabel("Group");
    auto buttons = Buttons(&group, static_cast<int>(state.range(0)));
    group.UpdateSize();
    orlex::PumpPending();
    for (auto _ : state) {
        group.SetState(0);
        orlex::PumpPending();
        group.SetState(1);
        orlex::PumpPending();
    }
    if (!buttons.back()->IsWindowVisible()) state.SkipWithError("the children did not come back");
}
BENCHMARK(BM_GroupToggle)->Arg(64);

void BM_ShowHideRef(benchmark::State& state) {
    auto host = MakeHost(kGroupWidth + 20, kGroupHeight + 20);
    CWnd plain;
    plain.Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE, CRect(10, 10, 10 + kGroupWidth, 10 + kGroupHeight), host.get(), 0);
    auto buttons = Buttons(&plain, static_cast<int>(state.range(0)));
    orlex::PumpPending();
    for (auto _ : state) {
        for (auto& b : buttons) b->ShowWindow(SW_HIDE);
        orlex::PumpPending();
        for (auto& b : buttons) b->ShowWindow(SW_SHOW);
        orlex::PumpPending();
    }
}
BENCHMARK(BM_ShowHideRef)->Arg(64);

}  // namespace
