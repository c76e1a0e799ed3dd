// The demo host: a top-level window with the library's scenes as child windows. Headless
// (no display), it writes PNG screenshots into a folder it prints (demo-out/, or --out DIR);
// with a display it shows the window and runs the message loop until it is closed.
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "demo/demo.h"
#include "foundation/OrlexUI.h"
#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/afxgdi.h"

namespace {

// The main window: it ends the message loop when it goes.
class MainWindow : public CWnd {
protected:
    void OnDestroy() override {
        CWnd::OnDestroy();
        PostQuitMessage(0);
    }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(MainWindow, CWnd)
    ON_WM_DESTROY()
END_MESSAGE_MAP()

struct Scene {
    const char* name;
    bool (*build)(CWnd*, const CRect&);
    CRect area;
};

// The scenes and where they stand in the main window's client area. A new scene is one
// more line here.
const Scene kScenes[] = {
    {"image view", DemoImageViewScenes, CRect(0, 0, 640, 330)},
    {"plot", DemoPlotScene, CRect(650, 5, 1270, 325)},
    {"colour tables", DemoColourTablesScene, CRect(5, 335, 640, 560)},
    {"controls", DemoControlsScene, CRect(650, 335, 1135, 560)},
    {"colour bar", DemoColourBarScene, CRect(1280, 5, 1640, 325)},
};

// Scenes with a top-level window and a screenshot of their own (the main window's layout
// stays as it is). A new one is one more line here; `size` is the client size.
struct WindowScene {
    const char* file;
    const char* title;
    bool (*build)(CWnd*, const CRect&);
    CSize size;
};
const WindowScene kWindowScenes[] = {
    {"frame.png", "image frames", DemoFrameScene, CSize(900, 470)},
    {"plot-control.png", "plot control", DemoPlotControlScene, CSize(900, 380)},
    {"panel.png", "orlexUI panel controls", DemoPanelScene, CSize(830, 320)},
    {"spreadsheet.png", "spreadsheet grid", DemoSpreadsheetScene, CSize(900, 300)},
};

// Lets timers and paints run for a while on the real clock.
void RunFor(int ms) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    while (std::chrono::steady_clock::now() < end) {
        orlex::PumpPending();
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    orlex::PumpPending();
}

}  // namespace

int main(int argc, char** argv) {
    std::string out = "demo-out";
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--out") == 0 && i + 1 < argc) out = argv[++i];
        else if (std::strcmp(argv[i], "--help") == 0) {
            std::printf("usage: %s [--out DIR]\n", argv[0]);
            return 0;
        }
    }
    orlex::EnsureApplication();
    OrlexUI::Initialize(false);

    MainWindow main;
    LPCSTR cls = AfxRegisterWndClass(CS_DBLCLKS, nullptr, reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1)));
    if (!main.CreateEx(0, cls, "orlexUI demo", WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN, CRect(20, 20, 1300, 620), nullptr, 0)) {
        std::fprintf(stderr, "the main window could not be made\n");
        return 1;
    }
    CRect wr, cr;
    main.GetWindowRect(&wr);
    main.GetClientRect(&cr);
    main.MoveWindow(wr.left, wr.top, 1645 + wr.Width() - cr.Width(), 565 + wr.Height() - cr.Height());
    for (const Scene& s : kScenes)
        if (!s.build(&main, s.area)) std::fprintf(stderr, "scene \"%s\" could not be built\n", s.name);

    // The scenes with windows of their own, stacked below the main window.
    std::vector<std::unique_ptr<CWnd>> own;
    std::vector<const char*> ownFiles;
    int top = 640;
    for (const WindowScene& s : kWindowScenes) {
        if (!s.build) continue;
        auto w = std::make_unique<CWnd>();
        if (!w->CreateEx(0, cls, s.title, WS_OVERLAPPEDWINDOW | WS_VISIBLE | WS_CLIPCHILDREN,
                         CRect(20, top, 20 + s.size.cx, top + s.size.cy), nullptr, 0)) {
            std::fprintf(stderr, "the window of scene \"%s\" could not be made\n", s.title);
            continue;
        }
        w->GetWindowRect(&wr);
        w->GetClientRect(&cr);
        w->MoveWindow(wr.left, wr.top, s.size.cx + wr.Width() - cr.Width(), s.size.cy + wr.Height() - cr.Height());
        if (!s.build(w.get(), CRect(0, 0, s.size.cx, s.size.cy)))
            std::fprintf(stderr, "scene \"%s\" could not be built\n", s.title);
        w->UpdateWindow();
        top += 40;
        own.push_back(std::move(w));
        ownFiles.push_back(s.file);
    }

    // The colour adjustment dialog, modeless, beside the main window.
    CDialog adjust;
    if (adjust.Create(10005u, &main)) {
        adjust.SetDlgItemInt(10042, 2);
        adjust.SetDlgItemInt(10043, static_cast<UINT>(-16));
        adjust.SetDlgItemInt(10040, 12);
        adjust.SetWindowPos(nullptr, 1700, 40, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        adjust.ShowWindow(SW_SHOW);
    }
    // The line style dialog, as the plot fills it: five curves and their styles.
    CDialog style;
    if (style.Create(10006u, &main)) {
        static const char* const kStyles[] = {"Solid", "Dash", "Dot", "Dash Dot", "Dash Dot Dot", "Points", "Bars", "Steps"};
        const int labels[5] = {10013, 10014, 10015, 10020, 10021}, combos[5] = {10051, 10052, 10053, 10055, 10056};
        for (int i = 0; i < 5; ++i) {
            char text[16];
            std::snprintf(text, sizeof text, "Curve%d:", i + 1);
            style.SetDlgItemText(labels[i], text);
            CWnd* combo = style.GetDlgItem(combos[i]);
            for (const char* s : kStyles) combo->SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(s));
            combo->SendMessage(CB_SETCURSEL, static_cast<WPARAM>(i % 3), 0);
        }
        style.SetWindowPos(nullptr, 1700, 220, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        style.ShowWindow(SW_SHOW);
    }
    main.UpdateWindow();

    if (!orlex::IsHeadless()) {
        while (AfxPumpMessage()) {
        }
        return 0;
    }

    RunFor(1200);  // the live scan moves on a timer
    std::error_code ec;
    std::filesystem::create_directories(out, ec);
    const std::string dir = std::filesystem::absolute(out, ec).string();
    struct Shot { CWnd* wnd; const char* file; };
    std::vector<Shot> shots = {{&main, "main.png"}, {&adjust, "color-adjustment.png"}, {&style, "grid-style.png"}};
    for (std::size_t i = 0; i < own.size(); ++i) shots.push_back({own[i].get(), ownFiles[i]});
    int written = 0;
    for (const Shot& s : shots) {
        const std::string path = dir + "/" + s.file;
        if (SaveWindowPng(s.wnd, path)) ++written;
        else std::fprintf(stderr, "could not write %s\n", path.c_str());
    }
    std::printf("orlexUI demo: %d screenshots in %s\n", written, dir.c_str());
    for (auto& w : own) w->DestroyWindow();
    style.DestroyWindow();
    adjust.DestroyWindow();
    main.DestroyWindow();
    OrlexUI::Shutdown();
    return written == static_cast<int>(shots.size()) ? 0 : 1;
}
