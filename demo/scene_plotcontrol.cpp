// The plot control as a host uses it: a noisy spectrum with two marker pairs and a
// horizontal marker, and beside it the same plot zoomed in, with its scroll bars and the
// button that goes back to the whole plot.
#include <cmath>
#include <vector>

#include "demo/demo.h"
#include "plot/MarkerMan.h"
#include "plotcontrol/GridControl.h"

namespace {

// A plot control that deletes itself with its window, as a dialog's child would go.
class DemoPlot : public CGridControl {
protected:
    void PostNcDestroy() override { delete this; }
};

const std::vector<float>& Spectrum() {
    static const std::vector<float> data = [] {
        std::vector<float> y(4000);
        unsigned s = 7;
        for (size_t i = 0; i < y.size(); ++i) {
            s = s * 1664525u + 1013904223u;
            const double x = double(i) / 400.0;
            const double peaks = 3.0 * std::exp(-(x - 3.0) * (x - 3.0) * 8.0) + 1.8 * std::exp(-(x - 6.5) * (x - 6.5) * 20.0);
            y[i] = float(peaks + 0.3 * std::sin(x * 2.0) + (double(s >> 8) / 16777216.0 - 0.5) * 0.25);
        }
        return y;
    }();
    return data;
}

DemoPlot* Place(CWnd* parent, const CRect& r, int id) {
    auto* plot = new DemoPlot;
    CRect place(r);
    if (!plot->Create(id, parent, &place)) {
        delete plot;
        return nullptr;
    }
    plot->SetUnits("s", "V", 1.0, 1.0, true, nullptr);
    plot->SetAxisLabels("Time", "Signal");
    std::vector<SET_DATA_STRUCT> records(kMapSlots);
    records[0].y = const_cast<float*>(Spectrum().data());
    records[0].numPoints = int(Spectrum().size());
    records[0].xSpan = 10.0;
    plot->SetData(records.data());
    // Two pairs of vertical markers around the peaks, and a level.
    MapClass* map = plot->GetMap();
    for (double v : {2.6, 3.4, 6.2, 6.8}) map->SetMarker(nullptr, v, 1, 0);
    plot->AddHorzMarker(1.5, 0, 1);
    plot->Invalidate(FALSE);
    plot->UpdateWindow();
    return plot;
}

}  // namespace

bool DemoPlotControlScene(CWnd* parent, const CRect& area) {
    const int half = area.Width() / 2;
    DemoPlot* whole = Place(parent, CRect(area.left + 5, area.top + 5, area.left + half - 5, area.bottom - 5), 0x7400);
    DemoPlot* zoomed = Place(parent, CRect(area.left + half + 5, area.top + 5, area.right - 5, area.bottom - 5), 0x7401);
    if (!whole || !zoomed) return false;
    // The zoomed one as after a rubber band around the first peak.
    zoomed->SetZoomParms(1, DRECT{2.0, 0.5, 4.5, 3.6});
    zoomed->ScrollUpdate = 1;
    zoomed->UpdateZoomBtn();
    zoomed->Invalidate(FALSE);
    zoomed->UpdateWindow();
    return true;
}
