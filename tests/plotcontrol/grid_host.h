// A dialog-like host with a plot control made in the place of a placeholder child, and a
// parent that records what the control tells it.
#pragma once

#include <functional>
#include <vector>

#include "foundation/MessageCatalogue.h"
#include "plotcontrol/GridControl.h"
#include "support/orlex_test.h"

namespace grid_test {

struct Note {
    UINT message;
    WPARAM wParam;
    GRID_NOTIFY grid{};
    UINT code = 0; // WM_NOTIFY
};

class Parent : public CWnd {
public:
    std::vector<Note> notes;
    std::function<void(const Note&)> onGrid; // called inside MESSAGE_GRID_NOTIFY
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == MESSAGE_GRID_NOTIFY || message == MESSAGE_CURSOR_MOUSE_STR) {
            notes.push_back({message, wParam, *reinterpret_cast<const GRID_NOTIFY*>(lParam)});
            if (message == MESSAGE_GRID_NOTIFY && onGrid)
                onGrid(notes.back());
            return 0;
        }
        if (message == MESSAGE_COLOR_CHANGE || message == MESSAGE_USER_GRID_SCALE_SYNCH) {
            notes.push_back({message, wParam});
            return 0;
        }
        if (message == WM_NOTIFY) {
            notes.push_back({message, wParam, {}, reinterpret_cast<const NMHDR*>(lParam)->code});
            return 0;
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
    std::vector<Note> Of(UINT message) const
    {
        std::vector<Note> out;
        for (const Note& n : notes)
            if (n.message == message)
                out.push_back(n);
        return out;
    }
};

class Plot : public CGridControl {
public:
    int paints = 0;
    void OnPaint() override
    {
        ++paints;
        CGridControl::OnPaint();
    }
};

constexpr int kId = 77;

// The parent, the control in a 400 x 300 place, and a curve from 0 to 10.
struct Host {
    Parent parent;
    Plot plot;
    std::vector<float> ys;

    explicit Host(int w = 400, int h = 300)
    {
        orlex::test::Init();
        parent.CreateEx(0, nullptr, "host", WS_POPUP | WS_VISIBLE, CRect(20, 20, 60 + w, 60 + h), nullptr, 0);
        CWnd placeholder;
        placeholder.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(10, 10, 10 + w, 10 + h), &parent, kId);
        placeholder.Detach();
        plot.Create(kId, &parent, nullptr);
        orlex::test::Pump();
    }
    ~Host()
    {
        plot.DestroyWindow();
        parent.DestroyWindow();
    }
    // n equally spaced points over 0..span of f(i).
    void Data(int n, double span, const std::function<float(int)>& f)
    {
        ys.resize(size_t(n));
        for (int i = 0; i < n; ++i)
            ys[size_t(i)] = f(i);
        std::vector<SET_DATA_STRUCT> r(kMapSlots);
        r[0].y = ys.data();
        r[0].numPoints = n;
        r[0].xSpan = span;
        plot.SetData(r.data());
        orlex::test::Pump();
    }
    MapClass& map() { return *plot.GetMap(); }
    RECT bound() { return map().GetBound(); }
    COLORREF At(int x, int y) { return orlex::test::Pixel(plot.m_hWnd, POINT{x, y}); }
    std::vector<COLORREF> Column(int x)
    {
        const RECT b = bound();
        return orlex::test::Pixels(plot.m_hWnd, RECT{x, b.top, x + 1, b.bottom + 1});
    }
    std::vector<COLORREF> All()
    {
        CRect c;
        plot.GetClientRect(&c);
        return orlex::test::Pixels(plot.m_hWnd, c);
    }
    // A gesture a while after the last one (so that two presses make no double click).
    void Drag(POINT from, std::initializer_list<POINT> via, POINT to)
    {
        orlex::test::AdvanceClock(1000);
        orlex::test::MouseDown(plot.m_hWnd, from);
        for (POINT p : via)
            orlex::test::MouseMove(plot.m_hWnd, p);
        orlex::test::MouseMove(plot.m_hWnd, to);
        orlex::test::MouseUp(plot.m_hWnd, to);
    }
};

}  // namespace grid_test
