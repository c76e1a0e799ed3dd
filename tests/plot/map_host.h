// A plot window for the tests, painting as the plot control does (background, DrawMap to
// a memory bitmap, one copy), under a parent that records what the plot tells it.
#pragma once

#include <memory>
#include <vector>

#include "foundation/MessageCatalogue.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "plot/MapClass.h"
#include "support/orlex_test.h"

namespace plot_test {

// Opens the engine's protected steps to the tests.
class TestMap : public MapClass {
public:
    using MapClass::MapClass;
    using MapClass::DrawCurve;
    using MapClass::HalfPolarGrid;
    using MapClass::PolarGrid;
    using MapClass::RectangularGrid;
    using MapClass::SemiLogGrid;
};

struct Note {
    UINT message;
    WPARAM wParam;
    GRID_NOTIFY grid{};
    COLOR_CHANGE colours{};
    int paintsBefore = 0; // paints of the plot when the note came
};

class Recorder : public CWnd {
public:
    std::vector<Note> notes;
    int* paints = nullptr;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == MESSAGE_GRID_NOTIFY || message == MESSAGE_CURSOR_MOUSE_STR) {
            Note n{message, wParam};
            n.grid = *reinterpret_cast<const GRID_NOTIFY*>(lParam);
            n.paintsBefore = paints ? *paints : 0;
            notes.push_back(n);
            return 0;
        }
        if (message == MESSAGE_COLOR_CHANGE) {
            Note n{message, wParam};
            n.colours = *reinterpret_cast<const COLOR_CHANGE*>(lParam);
            n.paintsBefore = paints ? *paints : 0;
            notes.push_back(n);
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

class Host : public CWnd {
public:
    std::unique_ptr<TestMap> map;
    Curve* curves[kMapSlots] = {};
    int paints = 0;

    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_ERASEBKGND)
            return 1;
        if (message == WM_PAINT) {
            const int serial = ++paints;
            PAINTSTRUCT ps;
            HDC dc = BeginPaint(m_hWnd, &ps);
            CRect rc;
            GetClientRect(&rc);
            HDC mem = CreateCompatibleDC(dc);
            HBITMAP bmp = CreateCompatibleBitmap(dc, rc.Width(), rc.Height());
            HGDIOBJ old = SelectObject(mem, bmp);
            HBRUSH bk = CreateSolidBrush(map->GetBkColor());
            FillRect(mem, &rc, bk);
            DeleteObject(bk);
            map->DrawMap(mem, curves, rc);
            // A repaint that ran inside this one (a zoom dropped) has shown a newer picture.
            if (serial == paints)
                BitBlt(dc, 0, 0, rc.Width(), rc.Height(), mem, 0, 0, SRCCOPY);
            SelectObject(mem, old);
            DeleteObject(bmp);
            DeleteDC(mem);
            EndPaint(m_hWnd, &ps);
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

// A recording parent with a plot child of the given client size, map type 100 and the
// plot control's borders.
struct Scene {
    Recorder parent;
    Host host;

    explicit Scene(int w = 400, int h = 300, int mapType = 100)
    {
        orlex::test::Init();
        parent.CreateEx(0, nullptr, "parent", WS_POPUP | WS_VISIBLE, CRect(10, 10, 30 + w, 30 + h), nullptr, 0);
        host.CreateEx(0, nullptr, "plot", WS_CHILD | WS_VISIBLE, CRect(5, 5, 5 + w, 5 + h), &parent, 1);
        host.map = std::make_unique<TestMap>(host.m_hWnd);
        parent.paints = &host.paints;
        host.map->SetBorderWidths(RECT{45, 12, 15, 20});
        host.map->MapType = mapType;
        host.map->BoundDirty = 1;
    }
    ~Scene()
    {
        host.DestroyWindow();
        parent.DestroyWindow();
    }
    TestMap& map() { return *host.map; }
    void Show(int slot, Curve* c)
    {
        host.curves[slot] = c;
        map().DrawNew();
    }
    void Repaint()
    {
        host.Invalidate(FALSE);
        host.UpdateWindow();
        orlex::test::Pump();
    }
    COLORREF At(int x, int y) { return orlex::test::Pixel(host.m_hWnd, POINT{x, y}); }
};

}  // namespace plot_test
