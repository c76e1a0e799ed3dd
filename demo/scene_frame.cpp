// Demo scene of the image frame: a zoomed off-line frame beside a live frame in the middle
// of its scan: the scan line marker in the view, the red mark of the current line at the
// frame's left edge, and the tip marker where the instrument stands. The scan goes on line
// by line on a timer.
#include <cmath>
#include <vector>

#include "demo/demo.h"
#include "imageframe/BorderCon.h"

namespace {

constexpr int kRows = 256;
constexpr UINT_PTR kScanTimer = 1;  // one line every 200 ms, a slow scan: each line is a strip
constexpr double kScanLen = 5e-6;   // metres across
constexpr double kHeight = 40e-9;   // metres over the whole data range

// A sample surface: grains on a tilt, with fine ripples, in counts of +-2^30.
std::vector<int> Grains(int n, double phase)
{
    std::vector<int> d(std::size_t(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double u = double(x) / n, v = double(y) / n;
            double z = 0.2 * (u + v - 1.0) + 0.04 * std::sin(60 * u + phase);
            for (int k = 0; k < 9; ++k) {
                const double cx = 0.1 + 0.1 * k, cy = 0.5 + 0.35 * std::sin(k * 1.7 + phase);
                z += 0.35 * std::exp(-220 * ((u - cx) * (u - cx) + (v - cy) * (v - cy)));
            }
            d[std::size_t(y) * n + x] = int(std::lround(z * 1073741824.0));
        }
    return d;
}

class FrameScene : public CWnd {
public:
    FrameScene() : m_offData(Grains(kRows, 0.0)), m_liveData(Grains(kRows, 2.0)) {}

    bool Build(CWnd* parent, const CRect& area)
    {
        if (!Create(nullptr, "frame scene", WS_CHILD | WS_VISIBLE, area, parent, 0x7200)) return false;
        const int half = area.Width() / 2;
        CRect left(5, 5, half - 5, area.Height() - 5), right(half + 5, 5, area.Width() - 5, area.Height() - 5);
        if (!m_offline.Create(1, this, 0, &left, 0) || !m_live.Create(2, this, 0, &right, 0)) return false;

        // Off-line: stored data with its own limits and labels, zoomed on a grain.
        m_offline.SetColorTable(12, 0);
        m_offline.SetTitle("Topography");
        m_offline.SetDataScaleMode(-kHeight / 4, kHeight / 2, 1.0, -(1LL << 29), 1LL << 30);
        m_offline.SetSizeable();  // the bar leaves room for the labels over and under it
        m_offline.DrawImage(m_offData.data(), kRows, kRows, kScanLen, 1.0, 1.0, kHeight, "m", {});
        CRect zoom(90, 40, 190, 140);
        m_offline.GetImageView()->AddZoomRecord(zoom, 0);
        m_offline.GetImageView()->UpdateImage();
        m_offline.EnablePan(1);
        m_offline.SetCrossCursorSize(8);
        m_offline.GetImageView()->AddCursor(nullptr, 5, 0.0, CPoint(190, 150));  // a cross on the grain

        // Live: a blank image of the scan's size, then line by line from the top down.
        m_live.SetColorTable(1, 0);
        m_live.SetTitle("Live scan");
        m_live.EnableScanLine(1);
        m_live.SetTipColor(RGB(255, 255, 0));
        m_live.ShowTipCursor(1);
        CImageView::SetScanLineInfo(1, RGB(0, 255, 255));
        std::vector<int> blank(std::size_t(kRows) * kRows, -(1 << 30));
        m_live.DrawImage(blank.data(), kRows, kRows, kScanLen, 1.0, 1.0, kHeight, "m", {});
        m_live.GetImageView()->Enable6HzUpdateImageLine(false);
        while (m_line < kRows * 3 / 5) NextLine();  // three fifths done
        m_live.GetImageView()->Enable6HzUpdateImageLine(true);
        SetTimer(kScanTimer, 200);
        return true;
    }

protected:
    void OnTimer(UINT_PTR id) override
    {
        if (id == kScanTimer) NextLine();
    }
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()

private:
    void NextLine()
    {
        if (m_line >= kRows) m_line = 0;
        // Block rows count from the bottom: the top line is the last row. Going down, each
        // strip reaches up over the lines already scanned (direction 0).
        const int row = kRows - 1 - m_line;
        m_live.DrawLine(m_liveData.data() + std::size_t(row) * kRows, row, kRows, kScanLen, 0, 1.0, 1.0, kHeight, "m",
                        {});
        // The tip stands on the line just scanned, sweeping across as the lines go by.
        const double across = std::fabs(std::fmod(m_line / 40.0, 2.0) - 1.0);
        m_live.SetTipCursorPos(kScanLen * (0.1 + 0.8 * across), kScanLen * m_line / kRows);
        ++m_line;
    }

    std::vector<int> m_offData;
    std::vector<int> m_liveData;
    CBorderCon m_offline{false, 0};
    CBorderCon m_live{true, 1};
    int m_line = 0;
};

BEGIN_MESSAGE_MAP(FrameScene, CWnd)
    ON_WM_TIMER()
END_MESSAGE_MAP()

}  // namespace

// Builds the frame scene as one child window of `parent` filling `area` (about 900 x 470
// pixels). The scene deletes itself with its window. False when a window can't be made.
bool DemoFrameScene(CWnd* parent, const CRect& area)
{
    auto* scene = new FrameScene;
    if (!scene->Build(parent, area)) {
        if (!scene->GetSafeHwnd()) delete scene;
        return false;
    }
    return true;
}
