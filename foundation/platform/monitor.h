// Monitors: the layer's virtual screen is one monitor, the primary, with its work area
// above a 40-pixel task bar (as SPI_GETWORKAREA and SM_CYFULLSCREEN report it).
#pragma once

#include "foundation/platform/wintypes.h"

ORLEX_DECLARE_HANDLE(HMONITOR);

constexpr DWORD MONITOR_DEFAULTTONULL = 0;
constexpr DWORD MONITOR_DEFAULTTOPRIMARY = 1;
constexpr DWORD MONITOR_DEFAULTTONEAREST = 2;
constexpr DWORD MONITORINFOF_PRIMARY = 1;

struct MONITORINFO {
    DWORD cbSize = sizeof(MONITORINFO);
    RECT rcMonitor{};
    RECT rcWork{};
    DWORD dwFlags = 0;
};
using LPMONITORINFO = MONITORINFO*;

// The monitor that holds the point (screen coordinates); outside every monitor: null with
// MONITOR_DEFAULTTONULL, else the nearest (here: the only) one.
HMONITOR MonitorFromPoint(POINT pt, DWORD flags);
// The monitor with the largest part of the rectangle, by the same rule.
HMONITOR MonitorFromRect(const RECT* rect, DWORD flags);
// The monitor of the window's rectangle, by the same rule.
HMONITOR MonitorFromWindow(HWND hwnd, DWORD flags);
// Fills the monitor's rectangle, work area and flags; FALSE for an unknown monitor or a
// cbSize smaller than MONITORINFO.
BOOL GetMonitorInfoA(HMONITOR monitor, MONITORINFO* info);
inline BOOL GetMonitorInfo(HMONITOR monitor, MONITORINFO* info) { return GetMonitorInfoA(monitor, info); }
