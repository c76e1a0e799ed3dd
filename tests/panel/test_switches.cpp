// Switches, lamps, toggle and three-state buttons, clicked as a user clicks them.
#include "panel/Orlex2PtSwitch.h"
#include "panel/Orlex3StateButton.h"
#include "panel/OrlexLED.h"
#include "panel/OrlexToggleButton.h"
#include "panel_test_util.h"

namespace {

using namespace panel_test;
using namespace orlex::test;
using namespace faces;

class Switches : public PanelTest {
protected:
    // Creates, gives the faces (normal, click; a switch: off, on) and wires to the log.
    template <class T>
    void Make(T& c, int x, int y, const Face& normal, const Face& other, const char* m1) {
        ASSERT_TRUE(c.Create(x, y, &host));
        if constexpr (std::is_base_of_v<COrlex2PtSwitch, T>) {
            c.LoadOffBitmap(normal.id), c.LoadOnBitmap(other.id);
        } else {
            c.LoadBitmap(normal.id), c.LoadClickBitmap(other.id);
        }
        c.LoadCtrlMessages(&log, m1, "", "");
        Pump();
    }
    static COLORREF Centre(CWnd& w, const Face& f) { return At(w, f.width / 2, f.height / 2); }
};

TEST_F(Switches, TheClickedHalfSetsThePositionAndTheOptionFollowsThePolarity) {
    const int mid = kSwitchOff.width / 2;
    for (bool polarity : {true, false}) {
        COrlex2PtSwitch sw(0, 0, polarity);
        Make(sw, 20, 20, kSwitchOff, kSwitchOn, "s1");
        log.onText = [&](const std::string&) { log.texts.back() += std::to_string(sw.GetCtrlOptionIndex()); };
        for (const auto& [x, on] : {std::pair{0, true}, {mid + 1, false}, {mid, true}, {kSwitchOff.width - 1, false}}) {
            Later();
            MouseDown(sw.m_hWnd, POINT{x, 10});
            EXPECT_EQ(Centre(sw, kSwitchOff), on ? kSwitchOff.marker : kSwitchOn.marker) << "no pressed face";
            MouseUp(sw.m_hWnd, POINT{x, 10});
            EXPECT_EQ(Centre(sw, kSwitchOff), on ? kSwitchOn.marker : kSwitchOff.marker) << x;
            EXPECT_EQ(log.texts.back(), "s1" + std::to_string(on == polarity ? 0 : 1)) << x;
        }
        EXPECT_EQ(::GetCapture(), sw.m_hWnd);  // the hover's capture stays until the pointer leaves
        log.Take();
        sw.SetCtrlOption(0u);
        EXPECT_EQ(sw.m_bSwitchOn, polarity);
        static char a[] = "a", b[] = "b";
        static char* opts[] = {a, b, nullptr};
        sw.LoadCtrlOptions(nullptr, opts);
        sw.SetCtrlOption(CString("b"));
        EXPECT_EQ(sw.m_bSwitchOn, !polarity);
        EXPECT_TRUE(log.Take().empty());
        log.onText = nullptr;
    }
}

TEST_F(Switches, LampsShowWhatCodeSaysAndIgnoreClicks) {
    COrlexLED lamp;
    Make(lamp, 20, 20, kLampOff, kLampOn, "never");
    for (bool on : {true, false, true}) {
        on ? lamp.TurnOn() : lamp.TurnOff();
        Later();
        Click(lamp.m_hWnd, POINT{4, 4});
        EXPECT_EQ(Centre(lamp, kLampOn), on ? kLampOn.marker : kLampOff.marker);
    }
    EXPECT_EQ(log.Take(), Texts{"OrlexHelp"});
    EXPECT_EQ(::GetCursor(), ::LoadCursor(nullptr, IDC_ARROW));
}

TEST_F(Switches, ToggleFlipsThenTells) {
    COrlexToggleButton t;
    Make(t, 20, 20, kToggleNormal, kToggleClick, "t1");
    log.onText = [&](const std::string&) { log.texts.back() += std::to_string(t.GetState()); };
    EXPECT_EQ(Centre(t, kToggleNormal), kToggleClick.marker);  // state 1 at the start
    for (const auto& [before, after] : {std::pair{1, 0}, {0, 1}, {2, 1}, {-3, 1}}) {
        t.SetState(before);
        Later();
        Click(t.m_hWnd, POINT{10, 10});
        EXPECT_EQ(log.texts.back(), "t1" + std::to_string(after));
        EXPECT_EQ(Centre(t, kToggleNormal), after ? kToggleClick.marker : kToggleNormal.marker);
    }
}

TEST_F(Switches, ThreeStateStaysPressedUntilCodeTakesItBack) {
    COrlex3StateButton b, bare;
    Make(b, 20, 20, kThreeStateNormal, kThreeStateClick, "p1");
    ASSERT_TRUE(bare.Create(100, 20, &host));
    bare.LoadBitmap(kThreeStateNormal.id);
    MouseMove(b.m_hWnd, POINT{10, 10});
    EXPECT_EQ(::GetCapture(), nullptr);  // no hover
    MouseDown(b.m_hWnd, POINT{10, 10});
    MouseMove(b.m_hWnd, POINT{300, 200});  // dragged out: not cancelled
    MouseUp(b.m_hWnd, POINT{300, 200});
    EXPECT_EQ(log.Take(), Texts{"p1"});
    EXPECT_TRUE(b.IsClicked());
    EXPECT_EQ(Centre(b, kThreeStateNormal), kThreeStateClick.marker);
    b.UnClick();
    Pump();
    EXPECT_EQ(Centre(b, kThreeStateNormal), kThreeStateNormal.marker);
    // Click and UnClick take the capture from whichever window holds it.
    host.SetCapture();
    b.Click();
    EXPECT_EQ(::GetCapture(), nullptr);
    bare.Click();
    EXPECT_FALSE(bare.IsClicked());
}

}  // namespace
