// A host window for grid tests: it records every notice the grid sends (with a copy of its
// record) and every WM_COMMAND, answers the notices as a test asks, and can supply the
// cells of a virtual grid.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "grid/GridCtrl.h"
#include "support/orlex_test.h"

namespace gridtest {

struct Notice {
    UINT code = 0;
    int row = -1;
    int col = -1;
    CCellRange range;  // GVN_ODCACHEHINT
    GV_ITEM item;      // GVN_GETDISPINFO as it came in, and GVN_ENDLABELEDIT
    UINT_PTR id = 0;
    HWND from = nullptr;
};

class Host : public CWnd {
public:
    std::vector<Notice> notices;
    std::vector<std::pair<WPARAM, LPARAM>> commands;
    std::map<UINT, LRESULT> answers;                 // by notice code; 0 when absent
    std::function<void(GV_ITEM&)> supply;            // fills display requests

    // A top-level window of this client size.
    bool Make(int w, int h);
    // The codes in order, for a compact comparison.
    std::vector<int> Codes() const;
    std::vector<Notice> Of(UINT code) const;
    void Clear()
    {
        notices.clear();
        commands.clear();
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// A grid that notes the scroll messages it receives (message, code), in order.
class RecordingGrid : public CGridCtrl {
public:
    std::vector<std::pair<UINT, UINT>> scrolls;
    int Count(UINT message, UINT code) const;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_VSCROLL || message == WM_HSCROLL)
            scrolls.emplace_back(message, LOWORD(wParam));
        return CGridCtrl::WindowProc(message, wParam, lParam);
    }
};

// A grid in a host, made at the start of each test.
class GridFixture : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    // Makes the grid window of this client size at the host's top left.
    void MakeGrid(int w, int h, DWORD style = WS_CHILD | WS_VISIBLE);
    HWND hwnd() const { return grid.m_hWnd; }

    Host host;
    RecordingGrid grid;
};

// The size the default cell takes for its font, measured as the grid's default does.
CSize DefaultCellSize();
// The extent of text in the system message font on the screen.
CSize MessageFontExtent(const char* text);

}  // namespace gridtest
