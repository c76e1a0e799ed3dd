// What the panel tests share: a receiver that logs the texts, a host window of a known
// colour, and a fixture that registers the faces of tools/faces as a host does.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "foundation/platform/resources.h"
#include "panel/OrlexMsgCenter.h"
#include "support/orlex_test.h"
#include "tools/faces/faces.h"

namespace panel_test {

using Texts = std::vector<std::string>;

// A receiver that keeps every text in order; `onText` runs after it is logged.
class Log : public COrlexMsgCenter {
public:
    Texts texts;
    std::function<void(const std::string&)> onText;
    void ReceiveCtrlMessage(CString text) override {
        texts.emplace_back(text.GetString());
        if (onText) onText(texts.back());
    }
    Texts Take() {
        Texts t;
        t.swap(texts);
        return t;
    }
};

constexpr COLORREF kHostColour = RGB(222, 218, 205);

// A top-level window without a frame that paints itself kHostColour.
class Host : public CWnd {
protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect rc;
        GetClientRect(&rc);
        dc.FillSolidRect(&rc, kHostColour);
    }
    DECLARE_MESSAGE_MAP()
};

class PanelTest : public ::testing::Test {
protected:
    // The host's client area starts at screen (x, y).
    void MakeHost(int x, int y, int w, int h) {
        orlex::test::Init();
        ASSERT_TRUE(faces::RegisterFaces());
        ASSERT_TRUE(host.CreateEx(0, nullptr, "panel host", WS_POPUP | WS_VISIBLE, CRect(x, y, x + w, y + h),
                                  nullptr, 0));
        orlex::test::Pump();
    }
    void SetUp() override { MakeHost(100, 100, 420, 260); }

    // Moves on: the next press is not taken for the second half of a double click.
    static void Later() { orlex::test::AdvanceClock(1000); }
    static COLORREF At(const CWnd& w, int x, int y) { return orlex::test::Pixel(w.m_hWnd, POINT{x, y}); }

    Host host;
    Log log;
};

}  // namespace panel_test

// Rectangles and points in failure messages.
inline void PrintTo(const CRect& r, std::ostream* os) { *os << "(" << r.left << "," << r.top << ")-(" << r.right << "," << r.bottom << ")"; }
inline void PrintTo(const CPoint& p, std::ostream* os) { *os << "(" << p.x << "," << p.y << ")"; }
inline void PrintTo(const CSize& s, std::ostream* os) { *os << s.cx << "x" << s.cy; }
