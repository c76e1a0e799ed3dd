// The one monitor of the virtual screen: found from points, rectangles and windows by the
// platform's default rules, with the work area that the system parameters report too.
#include <gtest/gtest.h>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/monitor.h"
#include "support/orlex_test.h"

namespace {

TEST(Monitor, FoundByPointRectangleAndWindow)
{
    orlex::test::Init();
    const HMONITOR m = MonitorFromPoint(POINT{10, 10}, MONITOR_DEFAULTTONULL);
    ASSERT_NE(m, nullptr);
    struct Case { POINT p; DWORD flags; bool found; } cases[] = {
        {{0, 0}, MONITOR_DEFAULTTONULL, true},
        {{1919, 1079}, MONITOR_DEFAULTTONULL, true},
        {{1920, 10}, MONITOR_DEFAULTTONULL, false},
        {{-1, 10}, MONITOR_DEFAULTTONULL, false},
        {{5000, 5000}, MONITOR_DEFAULTTONEAREST, true},
        {{-5, -5}, MONITOR_DEFAULTTOPRIMARY, true},
    };
    for (const Case& c : cases)
        EXPECT_EQ(MonitorFromPoint(c.p, c.flags), c.found ? m : nullptr) << c.p.x << "," << c.p.y;
    const RECT off{2000, 0, 2100, 100}, across{1900, 1000, 2100, 1200};
    EXPECT_EQ(MonitorFromRect(&off, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(MonitorFromRect(&across, MONITOR_DEFAULTTONULL), m);

    MONITORINFO info;
    ASSERT_TRUE(GetMonitorInfoA(m, &info));
    EXPECT_EQ(CRect(info.rcMonitor), CRect(0, 0, GetSystemMetrics(SM_CXSCREEN), GetSystemMetrics(SM_CYSCREEN)));
    RECT work{};
    ASSERT_TRUE(SystemParametersInfoA(SPI_GETWORKAREA, 0, &work, 0));
    EXPECT_EQ(CRect(info.rcWork), CRect(work));
    EXPECT_EQ(info.dwFlags, MONITORINFOF_PRIMARY);
    MONITORINFO shortInfo;
    shortInfo.cbSize = 8;
    EXPECT_FALSE(GetMonitorInfoA(m, &shortInfo));
    EXPECT_FALSE(GetMonitorInfoA(nullptr, &info));

    CWnd top;
    ASSERT_TRUE(top.CreateEx(0, AfxRegisterWndClass(0), "monitor", WS_OVERLAPPED, CRect(100, 100, 300, 200), nullptr, 0));
    EXPECT_EQ(MonitorFromWindow(top.m_hWnd, MONITOR_DEFAULTTONULL), m);
    top.MoveWindow(3000, 3000, 50, 50);
    EXPECT_EQ(MonitorFromWindow(top.m_hWnd, MONITOR_DEFAULTTONULL), nullptr);
    EXPECT_EQ(MonitorFromWindow(top.m_hWnd, MONITOR_DEFAULTTONEAREST), m);
    top.DestroyWindow();
}

}  // namespace
