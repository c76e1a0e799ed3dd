// The plot engine as a host draws with it: a rectangular plot of eight curves in the eight
// drawing styles with a two-part legend and a marked point, a semi-logarithmic plot, a
// polar and a half polar plot, and the text list of a curve.
#include <cmath>
#include <memory>
#include <vector>

#include "demo/demo.h"
#include "foundation/platform/afxgdi.h"
#include "plot/MapClass.h"

namespace {

// A child window painting one map as the plot control does: background, the map into a
// memory bitmap, one copy. It deletes itself (and its map and curves) with its window.
class MapWindow : public CWnd {
public:
    std::unique_ptr<MapClass> map;
    std::vector<std::unique_ptr<Curve>> curves;
    Curve* slots[kMapSlots] = {};
    int marked = -1;

    Curve* Add(int slot) {
        curves.push_back(std::make_unique<Curve>());
        slots[slot] = curves.back().get();
        return slots[slot];
    }

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        CDC mem;
        mem.CreateCompatibleDC(&dc);
        CBitmap bmp;
        bmp.CreateCompatibleBitmap(&dc, r.Width(), r.Height());
        CBitmap* old = mem.SelectObject(&bmp);
        mem.FillSolidRect(&r, map->GetBkColor());
        map->DrawMap(mem.m_hDC, slots, r);
        dc.BitBlt(0, 0, r.Width(), r.Height(), &mem, 0, 0, SRCCOPY);
        mem.SelectObject(old);
        // The marked point is inverted on the window, so each new picture gets it again.
        if (marked >= 0) {
            map->SetPoint(-1);
            map->MarkPoint(marked);
        }
    }
    BOOL OnEraseBkgnd(CDC*) override { return TRUE; }
    void OnKeyDown(UINT key, UINT, UINT) override { map->MapText(nullptr, WM_KEYDOWN, key, 0); }
    void OnVScroll(UINT code, UINT pos, CScrollBar*) override { map->MapText(nullptr, WM_VSCROLL, code, pos); }
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()
};

BEGIN_MESSAGE_MAP(MapWindow, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
    ON_WM_KEYDOWN()
    ON_WM_VSCROLL()
END_MESSAGE_MAP()

MapWindow* Place(CWnd* parent, const CRect& area, UINT id, int mapType) {
    auto* w = new MapWindow;
    if (!w->Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER, area, parent, id)) {
        delete w;
        return nullptr;
    }
    w->map = std::make_unique<MapClass>(w->m_hWnd);
    MapClass& m = *w->map;
    m.SetBorderWidths(RECT{45, 12, 15, 20});
    m.SetUnits("s", "V", 1.0, 1.0, true, nullptr);
    if (mapType == 0) m.MapText(nullptr, WM_CREATE, 0, 0);
    m.SetMapType(mapType);
    return w;
}

}  // namespace

bool DemoPlotScene(CWnd* parent, const CRect& area) {
    // The rectangular plot on the left; on the right a row of the semi-logarithmic and the
    // polar plot over a row of the half polar plot and the text list.
    const int half = area.Height() / 2, top = area.top, right = area.right;
    const int big = area.Width() - 340, x0 = area.left + big;

    // Eight curves, one per style, stacked; the legend names the first two.
    MapWindow* rect = Place(parent, CRect(area.left, top, x0, area.bottom), 0x7250, 100);
    if (!rect) return false;
    for (int k = 0; k < 8; ++k) {
        Curve* c = rect->Add(k);
        for (int i = 0; i <= 24; ++i) c->AddPoint(i * 0.02f, k * 0.5f + 0.2f * std::sin(i * 0.5f + k));
        rect->map->SetDrawStyle(k, k);
    }
    rect->slots[0]->AddPOI(0.2);
    rect->map->SetCurveColor(6, RGB(160, 0, 160), 0);
    rect->map->SetCurveColor(7, RGB(0, 120, 120), 0);
    rect->map->SetAxisLabels("Time", "Signal");
    rect->map->SetLegendText(0, "Connect", 0);
    rect->map->SetLegendText(1, "Fill Down ... Cross", 0);
    rect->marked = 18;

    // A frequency response over two decades.
    MapWindow* log = Place(parent, CRect(x0, top, x0 + 170, top + half), 0x7251, 300);
    if (!log) return false;
    log->map->SetUnits("Hz", "dB", 1.0, 1.0, false, nullptr);
    log->map->SetBorderWidths(RECT{5, 12, 5, 20});
    Curve* f = log->Add(0);
    for (int i = 0; i <= 40; ++i) {
        const double hz = std::pow(10.0, 1.0 + i * 0.05);
        f->AddPoint(float(hz), float(-10.0 * std::log10(1.0 + (hz / 300.0) * (hz / 300.0))));
    }

    // Antenna patterns in dB over angle (the polar forms take x, at most 0, as the angle).
    MapWindow* polar[2] = {};
    const CRect where[2] = {CRect(x0 + 170, top, right, top + half), CRect(x0, top + half, x0 + 130, area.bottom)};
    for (int k = 0; k < 2; ++k) {
        polar[k] = Place(parent, where[k], 0x7252 + k, k == 0 ? 400 : 200);
        if (!polar[k]) return false;
        polar[k]->map->SetBorderWidths(RECT{14, 14, 14, 14});
        Curve* c = polar[k]->Add(0);
        for (int i = 0; i <= 36; ++i) c->AddPoint(-float(i), -float(40 - 38 * std::abs(std::cos(i * 0.1))));
    }

    // The text list of a curve: index, x and y with their units.
    MapWindow* list = Place(parent, CRect(x0 + 130, top + half, right, area.bottom), 0x7254, 0);
    if (!list) return false;
    Curve* t = list->Add(0);
    for (int i = 0; i < 40; ++i) t->AddPoint(i * 0.5f, 0.25f * i * i);
    // The maps painted empty when their type was set; now they have curves.
    for (MapWindow* w : {rect, log, polar[0], polar[1], list}) w->Invalidate(FALSE);
    return true;
}
