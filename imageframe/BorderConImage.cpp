// Image frame: the host's drawing calls, and the colour tables that the bar derives and
// the frame passes on to the view and the host.
#include <cmath>
#include <cstring>

#include "foundation/MessageCatalogue.h"
#include "imageframe/BorderCon.h"
#include "imageview/DrawParameters.h"

namespace {

// The largest single-precision value: a z range from here up is not taken.
constexpr double kMaxFloat = 3.4028234663852886e+38;
// Half the range of the data type: the live limits are +-zScale times this.
constexpr double kHalfRange = 4294967295.0 * 0.5;
constexpr double kScanLenEpsilon = 1e-15;

DPOINT ScanPoint(double scanLen, double aspect)
{
    DPOINT d;
    d.x = scanLen;
    d.y = scanLen / aspect;
    return d;
}

}  // namespace

void CBorderCon::DrawImage(int* data, int rows, int cols, double scanLen, double aspect, double zScale,
                           double zRange, const char* units, std::vector<int> invalid)
{
    // Bad values are told to the user; the image is shown as far as it goes.
    orlex::view::CheckDrawImageParameters(cols, zScale, aspect, scanLen);
    const double oldAspect = m_dAspect;
    m_dAspect = aspect;
    m_nImageRows = rows;
    if (aspect != 0.0 || oldAspect != 0.0) SetWindowSize(aspect);
    const DPOINT scan = ScanPoint(scanLen, aspect);
    if (std::fabs(scanLen - m_imageView.GetScanLen()) >= kScanLenEpsilon) {
        SetScale(scanLen);
        if (m_bClearOnChange) m_imageView.ClearAllCursors(1, 1);
    }
    if (zRange < kMaxFloat) m_dZRange = zRange;
    m_strUnits = units ? units : "";
    if (m_dScaleRatio == 0.0) m_dScaleRatio = 1.0;
    double low, high;
    if (!m_bDataScaleMode) {
        high = zScale * kHalfRange;
        low = -high;
    } else {
        low = double(m_nScaleLow);
        high = double(m_nScaleHigh);
    }
    m_imageView.DrawImage(data, rows, cols, scan, m_colorCtrl.GetColorTable(), zScale, low, high, std::move(invalid));
}

int CBorderCon::DrawLine(int* line, int lineNumber, int cols, double scanLen, int direction, double aspect,
                         double zScale, double zRange, const char* units, std::vector<int> invalid)
{
    if (orlex::view::CheckDrawLineParameters(line, cols, zScale, aspect, scanLen)) {
        invalid.clear();
        return 0;
    }
    // Stored before the view looks at the line: its rate limit compares with it.
    m_nCurrentLine = lineNumber;
    m_nDirection = direction;
    if (aspect != m_dAspect || m_bResized) {
        m_bResized = 0;
        invalid.clear();
        return 2;
    }
    const DPOINT scan = ScanPoint(scanLen, aspect);
    if (std::fabs(scanLen - m_imageView.GetScanLen()) >= kScanLenEpsilon) {
        SetScale(scanLen);
        m_imageView.ClearAllCursors(1, 1);
    }
    if (zRange != 0.0) {
        if (zRange != m_dZRange && zRange < kMaxFloat) {
            m_dZRange = zRange;
            if (m_hWnd) {
                Invalidate(TRUE);
                UpdateWindow();
            }
        }
        m_strUnits = units ? units : "";
    }
    return m_imageView.DrawLine(line, lineNumber, cols, scan, direction, zScale, std::move(invalid));
}

void CBorderCon::UpdateImage(DataSource*, bool)
{
    if (!m_bRealTime) m_imageView.UpdateImage();
}

// Colours ------------------------------------------------------------------------------------------

void CBorderCon::ColorChangeNotify()
{
    CWnd* parent = m_hWnd ? GetParent() : nullptr;
    if (!parent) return;
    const UINT id = static_cast<UINT>(GetDlgCtrlID());
    NMHDR nm{m_hWnd, id, MESSAGE_COLOR_CTRL_STR};
    parent->SendMessage(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&nm));
    if (CWnd* grand = parent->GetParent()) grand->SendMessage(WM_NOTIFY, id, reinterpret_cast<LPARAM>(&nm));
}

void CBorderCon::PassOnColorTable()
{
    tagRGBQUAD* table = m_colorCtrl.GetColorTable();
    m_imageView.SetColorTable(table);
    if (CWnd* parent = m_hWnd ? GetParent() : nullptr)
        parent->SendMessage(MESSAGE_COLOR_CTRL_STR, 0, reinterpret_cast<LPARAM>(table));
    ColorChangeNotify();
}

void CBorderCon::SetColorTable(int index, int apply)
{
    m_colorCtrl.SetColorTable(index, apply);
    PassOnColorTable();
}

LRESULT CBorderCon::OnColorCtrlMessage(WPARAM wParam, LPARAM lParam)
{
    m_imageView.SetColorTable(reinterpret_cast<tagRGBQUAD*>(lParam));
    if (CWnd* parent = GetParent()) parent->SendMessage(MESSAGE_COLOR_CTRL_STR, wParam, lParam);
    ColorChangeNotify();
    return 1;
}

void CBorderCon::SetContrast(int value, int apply)
{
    if (value == m_colorCtrl.GetContrast()) return;
    m_colorCtrl.SetContrast(value);
    if (apply) SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}

void CBorderCon::SetOffset(int value, int apply)
{
    if (value == m_colorCtrl.GetOffset()) return;
    m_colorCtrl.SetOffset(value);
    if (apply) SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}

void CBorderCon::ModifyColorTable(tagRGBQUAD* table)
{
    if (!table || std::memcmp(table, m_colorCtrl.GetColorTable(), 256 * sizeof(tagRGBQUAD)) == 0) return;
    m_colorCtrl.ModifyColorTable(table);
    SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}

void CBorderCon::EqualizeColorTable(tagRGBQUAD* table)
{
    if (!table || std::memcmp(table, m_colorCtrl.GetColorTable(), 256 * sizeof(tagRGBQUAD)) == 0) return;
    m_colorCtrl.EqualizeColorTable(table);
    SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}

void CBorderCon::SetColorTableEqualized(bool on)
{
    if (m_colorCtrl.IsColorTableEqualized() == on) return;
    m_colorCtrl.SetColorTableEqualized(on);
    SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}

void CBorderCon::SetColorTableModified(bool on)
{
    if (m_colorCtrl.IsColorTableModified() == on) return;
    m_colorCtrl.SetColorTableModified(on);
    SetColorTable(m_colorCtrl.GetColorTableIdx(), 0);
}
