#include "foundation/platform/monitor.h"

#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/gdi_p.h"

using orlex::gdi::kScreenH;
using orlex::gdi::kScreenW;

namespace {

// The one monitor's handle: any stable non-null value that no other handle takes.
int g_monitor;
HMONITOR Primary() { return reinterpret_cast<HMONITOR>(&g_monitor); }
constexpr RECT kMonitor{0, 0, kScreenW, kScreenH};
constexpr RECT kWork{0, 0, kScreenW, kScreenH - 40};

bool Inside(POINT p) { return p.x >= kMonitor.left && p.x < kMonitor.right && p.y >= kMonitor.top && p.y < kMonitor.bottom; }

HMONITOR ByRule(bool onMonitor, DWORD flags) { return onMonitor || flags != MONITOR_DEFAULTTONULL ? Primary() : nullptr; }

}  // namespace

HMONITOR MonitorFromPoint(POINT pt, DWORD flags) { return ByRule(Inside(pt), flags); }

HMONITOR MonitorFromRect(const RECT* r, DWORD flags)
{
    if (!r) return ByRule(false, flags);
    const bool overlaps = r->left < kMonitor.right && r->right > kMonitor.left && r->top < kMonitor.bottom &&
                          r->bottom > kMonitor.top && r->left < r->right && r->top < r->bottom;
    return ByRule(overlaps, flags);
}

HMONITOR MonitorFromWindow(HWND hwnd, DWORD flags)
{
    RECT r{};
    if (!hwnd || !::GetWindowRect(hwnd, &r)) return ByRule(false, flags);
    return MonitorFromRect(&r, flags);
}

BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO* info)
{
    if (monitor != Primary() || !info || info->cbSize < sizeof(MONITORINFO)) return FALSE;
    info->rcMonitor = kMonitor;
    info->rcWork = kWork;
    info->dwFlags = MONITORINFOF_PRIMARY;
    return TRUE;
}
