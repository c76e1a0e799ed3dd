// A demo scene drawn through the layer's drawing calls: a synthetic sample shown through
// several colour tables.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <vector>

#include "colour/ColorTable.h"
#include "demo/demo.h"
#include "foundation/platform/afxgdi.h"

namespace {

// A child window that paints itself with one function; it deletes itself with its window.
class PaintedScene : public CWnd {
public:
    using Painter = void (*)(CDC& dc, const CRect& client);
    explicit PaintedScene(Painter p) : m_paint(p) {}

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        m_paint(dc, r);
    }
    BOOL OnEraseBkgnd(CDC*) override { return TRUE; }  // the painter covers everything
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()

private:
    Painter m_paint;
};

BEGIN_MESSAGE_MAP(PaintedScene, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

bool Place(PaintedScene::Painter painter, CWnd* parent, const CRect& area, UINT id) {
    auto* scene = new PaintedScene(painter);
    if (!scene->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, area, parent, id)) {
        delete scene;
        return false;
    }
    return true;
}

void Label(CDC& dc, int x, int y, const char* text, int height = 14, int escapement = 0, int weight = FW_NORMAL) {
    CFont font;
    font.CreateFont(-height, 0, escapement, escapement, weight, 0, 0, 0, ANSI_CHARSET, 0, 0, 0, 0, "Arial");
    CFont* old = dc.SelectObject(&font);
    dc.SetBkMode(TRANSPARENT);
    dc.TextOut(x, y, text, static_cast<int>(std::strlen(text)));
    dc.SelectObject(old);
}

constexpr int kSample = 128;

// A sample of a few bumps on a tilt, scaled to 0..255, rows stored bottom-up.
const std::vector<BYTE>& Sample() {
    static std::vector<BYTE> data = [] {
        std::vector<double> z(static_cast<size_t>(kSample) * kSample);
        double lo = 1e9, hi = -1e9;
        for (int y = 0; y < kSample; ++y)
            for (int x = 0; x < kSample; ++x) {
                const double u = double(x) / kSample, v = double(y) / kSample;
                auto bump = [&](double cx, double cy, double s, double a) {
                    return a * std::exp(-((u - cx) * (u - cx) + (v - cy) * (v - cy)) / (s * s));
                };
                const double h = 0.4 * u + 0.2 * v + bump(0.3, 0.7, 0.12, 0.8) + bump(0.7, 0.3, 0.08, 0.6) -
                                 bump(0.65, 0.75, 0.1, 0.5);
                z[static_cast<size_t>(y) * kSample + x] = h;
                lo = std::min(lo, h);
                hi = std::max(hi, h);
            }
        std::vector<BYTE> out(z.size());
        for (size_t i = 0; i < z.size(); ++i) out[i] = static_cast<BYTE>(255.0 * (z[i] - lo) / (hi - lo));
        return out;
    }();
    return data;
}

void PaintTables(CDC& dc, const CRect& r) {
    dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    InitializeColorTables();
    const int tables = GetNumberOfColorTables();
    const int picks[4] = {0, 4, 12, 20};
    std::vector<BYTE> info(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD));
    auto* bi = reinterpret_cast<BITMAPINFO*>(info.data());
    bi->bmiHeader = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), kSample, kSample, 1, 8, BI_RGB, 0, 0, 0, 256, 0};
    const int side = std::min((r.Width() - 50) / 5, r.Height() - 60);
    dc.SetTextColor(RGB(0, 0, 0));
    Label(dc, r.left + 10, r.top + 6, "One sample through four colour tables (8-bit blocks) and a 24-bit block", 13);
    for (int k = 0; k < 4; ++k) {
        const int index = std::min(picks[k], std::max(0, tables - 1));
        CreateColorTable(index, 256, bi->bmiColors);
        const int x = r.left + 10 + k * (side + 8);
        StretchDIBits(dc.m_hDC, x, r.top + 28, side, side, 0, 0, kSample, kSample, Sample().data(), bi, DIB_RGB_COLORS,
                      SRCCOPY);
        char text[32];
        std::snprintf(text, sizeof text, "Table %d", index);
        Label(dc, x, r.top + 32 + side, text, 12);
    }
    // The same sample as a 24-bit block: height in red, slope across in blue.
    std::vector<BYTE> rgb(static_cast<size_t>(kSample) * kSample * 3);
    const std::vector<BYTE>& s = Sample();
    for (int y = 0; y < kSample; ++y)
        for (int x = 0; x < kSample; ++x) {
            const size_t i = static_cast<size_t>(y) * kSample + x;
            const int dx = x + 1 < kSample ? s[i + 1] - s[i] : 0;
            rgb[3 * i + 0] = static_cast<BYTE>(std::clamp(128 + 8 * dx, 0, 255));
            rgb[3 * i + 1] = static_cast<BYTE>(s[i] / 2);
            rgb[3 * i + 2] = s[i];
        }
    BITMAPINFO bi24{};
    bi24.bmiHeader = BITMAPINFOHEADER{sizeof(BITMAPINFOHEADER), kSample, kSample, 1, 24, BI_RGB, 0, 0, 0, 0, 0};
    const int x = r.left + 10 + 4 * (side + 8);
    StretchDIBits(dc.m_hDC, x, r.top + 28, side, side, 0, 0, kSample, kSample, rgb.data(), &bi24, DIB_RGB_COLORS, SRCCOPY);
    Label(dc, x, r.top + 32 + side, "24-bit", 12);
}

}  // namespace

bool DemoColourTablesScene(CWnd* parent, const CRect& area) { return Place(PaintTables, parent, area, 0x7300); }
