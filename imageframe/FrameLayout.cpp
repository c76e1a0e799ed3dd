#include "imageframe/FrameLayout.h"

#include <algorithm>
#include <climits>
#include <cmath>

#include "foundation/Convert2Eng.h"

namespace orlex::frame {

Margins DefaultMargins(bool realTime)
{
    Margins m;
    m.right = realTime ? 30 : 52;
    m.bottom = realTime ? 38 : 55;
    return m;
}

int TruncSat(double v)
{
    if (!(v == v)) return 0;
    if (v >= double(INT_MAX)) return INT_MAX;
    if (v <= double(INT_MIN)) return INT_MIN;
    return static_cast<int>(v);
}

CRect SizeableFrameRect(const CRect& parentClient, const Margins& m)
{
    CRect r = parentClient;
    r.DeflateRect(m.left, m.top);
    if (r.Width() > r.Height())
        r.right = r.left + r.Height();
    else
        r.bottom = r.top + r.Width();
    return r;
}

CRect SquaredFrameRect(const CRect& placeholder, const Margins& m)
{
    CRect r = placeholder;
    r.bottom = r.top + r.Width() - m.right - m.left + m.bottom + m.top;
    return r;
}

bool IsSquareAspect(double v) { return std::fabs(v - 1.0) < 1e-15; }

CRect ImageArea(const CSize& client, const Margins& m, bool barDisabled, double aspect)
{
    CRect g(m.left, m.top, client.cx - m.right - 1, client.cy - m.bottom - 1);
    if (g.right < g.left) g.right = g.left;
    if (g.bottom < g.top) g.bottom = g.top;
    if (barDisabled && IsSquareAspect(aspect)) {
        const int side = TruncSat(g.Width() * 0.25 + 0.5) * 4;
        g.right = g.left + side;
        g.bottom = g.top + side;
    }
    return g;
}

CRect FitAspect(const CRect& g, double aspect, const Margins& m)
{
    if (IsSquareAspect(aspect)) return g;
    if (aspect > 1.0) {
        const int h = std::clamp(TruncSat(g.Height() / aspect + 0.5), 0, g.Height());
        const int top = (g.Height() - h) / 2 + m.top;
        return CRect(m.left, top, m.left + g.Width(), top + h);
    }
    // Below 1.0, and whatever isn't a number: a tall image, never wider than the area.
    const int w = std::clamp(TruncSat(g.Width() * aspect + 0.5), 0, g.Width());
    const int left = (g.Width() - w) / 2 + m.left;
    return CRect(left, m.top, left + w, m.top + g.Height());
}

CRect ColorBarCreateRect(const CSize& client, const Margins& m)
{
    CRect r(client.cx - m.left - 21, m.top, client.cx - m.left - 1, client.cy - m.top);
    if (r.bottom < r.top) r.bottom = r.top;
    return r;
}

CRect ColorBarLayoutRect(const CSize& client, const Margins& m, bool fullHeight)
{
    const int left = client.cx - m.left - 21;
    int top = m.top, height = client.cy - 2 * m.top;
    if (!fullHeight) {
        top = m.top + 30;
        height = client.cy - m.top - 60 - top;
    }
    return CRect(left, top, left + 20, top + std::max(height, 0));
}

int RightMargin(bool fullHeightBar, const Margins& m, const CString& labelMin, const CString& labelMax)
{
    if (fullHeightBar) return m.left * 2 + 20;
    return 4 * std::max(labelMin.GetLength(), labelMax.GetLength()) + 20;
}

bool NoUnits(const CString& units) { return units.IsEmpty() || units == "UNIT"; }

CString ZLabel(double v, const CString& units)
{
    CString s;
    if (NoUnits(units)) {
        s.Format("%.3f", v);
    } else {
        char buf[64] = {};
        orlex::Convert2Eng(buf, sizeof buf, v, units.GetString(), 1, 0);
        s = buf;
    }
    return s;
}

CString TitleText(const CString& title, int channel, int channels)
{
    CString s;
    if (!title.IsEmpty()) {
        if (channels > 1) s.Format("%d: ", channel + 1);
        s += title;
    } else if (channels > 1) {
        s.Format("Channel %d of %d", channel + 1, channels);
    } else {
        s.Format("Channel %d", channel + 1);
    }
    return s;
}

TitlePlace PlaceTitle(int viewWidth, bool zoomButtonsShown, long long textWidth)
{
    if (viewWidth >= 161 || (zoomButtonsShown && textWidth < viewWidth)) return TitlePlace::Below;
    return zoomButtonsShown ? TitlePlace::None : TitlePlace::Top;
}

int LineMarkY(int rows, long long line, const CRect& z, const CRect& r)
{
    const double scale = z.Height() != 0 ? double(r.Height()) / z.Height() : 0.0;
    // In doubles: a line number far outside the image must not wrap around into it.
    const double y = std::trunc((double(rows) - double(line) - z.top - 1) * scale + scale + 0.5) + r.top;
    if (!(y > r.top)) return r.top;
    if (y >= r.bottom) return r.bottom;
    return static_cast<int>(y);
}

void LineMarkTriangle(int y, const CRect& r, const Margins& m, int direction, POINT out[3])
{
    out[0] = POINT{r.left - m.left, y};
    out[1] = POINT{r.left - 1, y};
    out[2] = POINT{r.left - m.left, direction ? y - 10 : y + 10};
}

}  // namespace orlex::frame
