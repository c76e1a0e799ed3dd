// Demo scene of the colour bar wired to an image view, as an image frame wires them: the
// bar's "MESSAGE_COLOR_CTRL_STR" hands the working table to the view, which rebuilds its
// image. A press and a sideways drag on the bar step through the tables; a right click
// offers "Color Scale..." for contrast and offset.
#include <cmath>
#include <vector>

#include "colour/ColorCtrl.h"
#include "colour/ColorTable.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxwin.h"
#include "imageview/ImageView.h"

namespace {

constexpr int kSize = 200;      // data pixels a side
constexpr int kViewSide = 300;  // window pixels a side
constexpr int kBarWidth = 24;
constexpr double kZScale = 0.5;

std::vector<int> Rings(int n)
{
    std::vector<int> d(std::size_t(n) * n);
    for (int y = 0; y < n; ++y)
        for (int x = 0; x < n; ++x) {
            const double u = double(x) / n - 0.5, v = double(y) / n - 0.5;
            const double r = std::sqrt(u * u + v * v);
            const double z = 0.8 * std::cos(18.0 * r) * std::exp(-3.0 * r) + 0.3 * u;
            d[std::size_t(y) * n + x] = int(z * 0.5 * 2147483647.0);
        }
    return d;
}

class ColourBarScene : public CWnd {
public:
    ColourBarScene() : m_data(Rings(kSize)) {}

    bool Build(CWnd* parent, const CRect& area)
    {
        if (!Create(nullptr, "colour bar scene", WS_CHILD | WS_VISIBLE, area, parent, 0x7200)) return false;
        InitializeColorTables();
        CRect barRect(20 + kViewSide, 10, 20 + kViewSide + kBarWidth, 10 + kViewSide);
        m_bar.Create(barRect, this, 1);
        m_bar.EnableModifyColorTableUsingMouse(true);
        m_view.Create(nullptr, "image", WS_CHILD | WS_VISIBLE, CRect(10, 10, 10 + kViewSide, 10 + kViewSide), this, 2);
        const double h = kZScale * 4294967295.0 * 0.5;
        m_bar.SetContrast(2);
        m_bar.SetColorTable(5, 0);
        DPOINT scan;
        scan.x = scan.y = 20e-6;  // a 20 micrometre scan
        m_view.DrawImage(m_data.data(), kSize, kSize, scan, m_bar.GetColorTable(), kZScale, -h, h, {});
        m_view.UpdateImage();
        return true;
    }

protected:
    LRESULT OnColorCtrl(WPARAM, LPARAM lParam)
    {
        // The view reads the table at once; an off-line view rebuilds and repaints.
        m_view.SetColorTable(reinterpret_cast<tagRGBQUAD*>(lParam));
        return 0;
    }
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()

private:
    std::vector<int> m_data;
    CColorCtrl m_bar;
    CImageView m_view{false};
};

BEGIN_MESSAGE_MAP(ColourBarScene, CWnd)
    ON_REGISTERED_MESSAGE(MESSAGE_COLOR_CTRL_STR, OnColorCtrl)
END_MESSAGE_MAP()

}  // namespace

// Builds the scene as one child window of `parent` filling `area` (about 360 x 320
// pixels): an image view and its colour bar. Deletes itself with its window.
bool DemoColourBarScene(CWnd* parent, const CRect& area)
{
    auto* scene = new ColourBarScene;
    if (!scene->Build(parent, area)) {
        if (!scene->GetSafeHwnd()) delete scene;
        return false;
    }
    return true;
}
