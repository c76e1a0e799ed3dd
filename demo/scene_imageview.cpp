// Demo scenes of the image view: a zoomed off-line image carrying two measuring crosses
// (one added by the host, one made and dragged by the mouse) beside a live view in the
// middle of its scan, which goes on line by line on a timer.
#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "colour/ColorTable.h"
#include "cursors/CursorTypes.h"
#include "demo/demo.h"
#include "foundation/platform/afxwin.h"
#include "imageview/ImageView.h"

namespace {

constexpr int kSize = 256;          // data pixels a side
constexpr int kViewSide = 300;      // window pixels a side
constexpr UINT_PTR kScanTimer = 1;  // one line every 40 ms
constexpr double kZScale = 0.5;

// A surface with a tilt, two bumps and fine ripples, over half the range of the type.
std::vector<int> Surface(int n, double phase)
{
    std::vector<int> d(std::size_t(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double u = double(x) / n, v = double(y) / n;
            const double z = 0.3 * (u - 0.5) + 0.5 * std::exp(-30 * ((u - 0.35) * (u - 0.35) + (v - 0.6) * (v - 0.6))) -
                             0.4 * std::exp(-50 * ((u - 0.7) * (u - 0.7) + (v - 0.3) * (v - 0.3))) +
                             0.05 * std::sin(40 * u + phase) * std::cos(35 * v);
            d[std::size_t(y) * n + x] = int(z * 0.5 * 2147483647.0);
        }
    return d;
}

std::vector<tagRGBQUAD> Table(int index)
{
    std::vector<tagRGBQUAD> t(256);
    if (GetNumberOfColorTables() > index) {
        CreateColorTable(index, 256, t.data());
    } else {
        // Without the library's tables: black through red and yellow to white.
        for (int i = 0; i < 256; ++i) {
            const int r = std::min(255, 3 * i), g = std::clamp(3 * i - 255, 0, 255), b = std::clamp(3 * i - 510, 0, 255);
            t[i] = tagRGBQUAD{BYTE(b), BYTE(g), BYTE(r), 0};
        }
    }
    return t;
}

DPOINT Scan()
{
    DPOINT d;
    d.x = d.y = 1e-6;
    return d;
}

// Owns the two views and their data; goes with its window.
class ImageViewScene : public CWnd {
public:
    ImageViewScene() : m_offlineData(Surface(kSize, 0.0)), m_liveData(Surface(kSize, 1.3)) {}

    bool Build(CWnd* parent, const CRect& area)
    {
        if (!Create(nullptr, "image view scene", WS_CHILD | WS_VISIBLE, area, parent, 0x7100)) return false;
        const std::vector<tagRGBQUAD> table = Table(1), liveTable = Table(2);
        m_offline.Create(nullptr, "off-line", WS_CHILD | WS_VISIBLE, CRect(10, 10, 10 + kViewSide, 10 + kViewSide), this,
                         1);
        const double h = kZScale * 4294967295.0 * 0.5;
        std::vector<tagRGBQUAD> t = table;
        m_offline.DrawImage(m_offlineData.data(), kSize, kSize, Scan(), t.data(), kZScale, -h, h, {});
        // Zoomed on the left bump.
        CRect zoom(40, 40, 140, 140);
        m_offline.AddZoomRecord(zoom, 0);
        m_offline.UpdateImage();
        AddCrosses();

        m_live.Create(nullptr, "live", WS_CHILD | WS_VISIBLE,
                      CRect(20 + kViewSide, 10, 20 + 2 * kViewSide, 10 + kViewSide), this, 2);
        std::vector<int> blank(std::size_t(kSize) * kSize, -2147483647 - 1);
        t = liveTable;
        m_live.DrawImage(blank.data(), kSize, kSize, Scan(), t.data(), kZScale, -h, h, {});
        m_live.Enable6HzUpdateImageLine(false);
        while (m_line < kSize / 2) NextLine();
        m_live.Enable6HzUpdateImageLine(true);
        SetTimer(kScanTimer, 40);
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
    // One cross placed by the host on the bump, one made by a press on the image and
    // dragged, as the mouse would.
    void AddCrosses()
    {
        m_offline.SetCursorColor(RGB(255, 255, 255));
        m_offline.SetCrossCursorSize(8);
        m_offline.AddCursor(nullptr, kCursorCross, 0.0, CPoint(kViewSide / 2 - 20, kViewSide / 2 + 40));
        m_offline.SetMode(kCursorCross);
        const CPoint from(60, 60), to(200, 90);
        m_offline.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(from.x, from.y));
        if (CWnd* dragged = CWnd::GetCapture()) {
            for (int i = 1; i <= 4; ++i) {
                CPoint p = from + CSize((to.x - from.x) * i / 4, (to.y - from.y) * i / 4);
                m_offline.MapWindowPoints(dragged, &p, 1);
                dragged->SendMessage(WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(p.x, p.y));
            }
            CPoint end = to;
            m_offline.MapWindowPoints(dragged, &end, 1);
            dragged->SendMessage(WM_LBUTTONUP, 0, MAKELPARAM(end.x, end.y));
        }
    }

    void NextLine()
    {
        if (m_line >= kSize) m_line = 0;
        // Lines go upwards; each strip reaches down over the lines the rate limit skipped.
        m_live.DrawLine(m_liveData.data() + std::size_t(m_line) * kSize, m_line, kSize, Scan(), 1, kZScale, {});
        ++m_line;
    }

    std::vector<int> m_offlineData;
    std::vector<int> m_liveData;
    CImageView m_offline{false};
    CImageView m_live{true};
    int m_line = 0;
};

BEGIN_MESSAGE_MAP(ImageViewScene, CWnd)
    ON_WM_TIMER()
END_MESSAGE_MAP()

}  // namespace

// Builds the image view scenes as one child window of `parent` filling `area` (about
// 630 x 320 pixels): a zoomed off-line image and a live view mid-scan. The scene deletes
// itself with its window. False when the window can't be made.
bool DemoImageViewScenes(CWnd* parent, const CRect& area)
{
    auto* scene = new ImageViewScene;
    if (!scene->Build(parent, area)) {
        if (!scene->GetSafeHwnd()) delete scene;
        return false;
    }
    return true;
}
