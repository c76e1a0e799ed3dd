// Demo scene of the panel controls as an instrument host wires them: the host registers its
// faces (tools/faces) under its own module, builds its panel and hears every control
// through one message centre, which shows the last texts it heard.
//
// Top row: bitmap buttons (one under the pointer), a slider at a third, and a compound
// value slider zoomed in with a typed value. Below: two groups stacked sideways, one
// folded to a strip with its label running downward, the other open with switches both
// ways, lamps lit and dark, a toggle, a three-state button held down and a drop list open.
#include <deque>
#include <string>

#include "demo/demo.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "panel/Orlex.h"
#include "panel/Orlex2HSlider.h"
#include "panel/Orlex2PtSwitch.h"
#include "panel/Orlex3StateButton.h"
#include "panel/OrlexDropMenu.h"
#include "panel/OrlexGroup.h"
#include "panel/OrlexHorzSlider.h"
#include "panel/OrlexLED.h"
#include "panel/OrlexText.h"
#include "panel/OrlexToggleButton.h"
#include "tools/faces/faces.h"

namespace {

using namespace faces;

constexpr COLORREF kPanel = RGB(214, 218, 224);

class PanelScene : public CWnd, public COrlexMsgCenter {
public:
    bool Build(CWnd* parent, const CRect& area) {
        if (!RegisterFaces()) return false;
        if (!Create(nullptr, "panel scene", WS_CHILD | WS_VISIBLE, area, parent, 0x7300)) return false;
        BuildTopRow();
        BuildGroups();
        // The pointer rests on the middle button; the list is open.
        m_buttons[1].SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
        m_list.Popup();
        return true;
    }

    // The newest text first, six at most, in lines 10 pixels apart.
    void ReceiveCtrlMessage(CString text) override {
        m_lines.push_front("heard: " + std::string(text.GetString()));
        if (m_lines.size() > 6) m_lines.pop_back();
        std::string all;
        for (const std::string& l : m_lines) all += (all.empty() ? "" : "\n") + l;
        m_heard.SetText(all.c_str());
    }

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect rc;
        GetClientRect(&rc);
        dc.FillSolidRect(&rc, kPanel);
    }
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()

private:
    void BuildTopRow() {
        const char* names[3] = {"START", "STOP", "RESET"};
        for (int i = 0; i < 3; ++i) {
            COrlex& b = m_buttons[i];
            b.Create(20 + 60 * i, 20, this);
            b.LoadBitmap(kButtonNormal.id);
            b.LoadRolloverBitmap(kButtonRollover.id);
            b.LoadClickBitmap(kButtonClick.id);
            b.LoadCtrlMessages(this, names[i], "", "");
        }
        m_slider.Create(20, 70, 220, this);
        m_slider.LoadBitmap(kLargeThumb.id, kLargeTrack.id);
        m_slider.SetBackgroundColor(kPanel);
        m_slider.LoadCtrlMessages(this, "GAIN", "GAIN DONE", "");
        m_slider.SetPercentSlide(1.0 / 3.0);

        m_value.Create(270, 20, 300, 10, this);
        m_value.LoadBitmap(kLargeThumb.id, kSmallThumb.id, kLargeTrack.id, kSmallTrack.id);
        m_value.SetBackgroundColor(kPanel);
        m_value.SetLabel("Bias voltage");
        m_value.LoadCtrlMessages(this, "BIAS", "", "");
        // The small slider narrows the range, then a value is typed and committed.
        m_value.m_SmallSlider.SetPercentSlide(0.8);
        m_value.m_ValueEdit.SetWindowText("42.5");
        m_value.m_ValueEdit.SendMessage(WM_KEYUP, 13, 0);
    }

    void Dress(COrlexGroup& g, const char* label) {
        g.LoadBitmap(kGroupCollapsed.id);
        g.LoadClickBitmap(kGroupExpanded.id);
        g.LoadBorderBitmaps(kBorderLeft.id, kBorderRight.id, kBorderTop.id, kBorderBottom.id, kBorderTopLeft.id,
                            kBorderTopRight.id, kBorderBottomLeft.id, kBorderBottomRight.id);
        g.SetBackgroundColor(RGB(236, 238, 242));
        g.SetTextColor(40, 48, 70);
        g.SetLabel(label);
        g.LoadCtrlMessages(this, label, "", "");
    }

    void BuildGroups() {
        // The stage group folds sideways; the scan group stands right of its strip.
        m_stage.Create(20, 115, 200, 190, this, 1);
        Dress(m_stage, "Stage XY");
        m_stageLamp.Create(20, 50, &m_stage);
        m_stageLamp.LoadOffBitmap(kLampOff.id);
        m_stageLamp.LoadOnBitmap(kLampOn.id);
        m_stage.SetState(0);
        m_scan.Create(0, 115, 470, 190, this, 0);
        m_scan.MoveWindowX(20 + m_stage.GetCollapseWidth() + 10);
        Dress(m_scan, "Scan control");
        m_scan.UpdateSize();  // the window takes its expanded size

        for (int i = 0; i < 2; ++i) {  // one on, one off
            COrlex2PtSwitch& s = m_switches[i];
            s.Create(20 + 50 * i, 45, &m_scan);
            s.LoadOffBitmap(kSwitchOff.id);
            s.LoadOnBitmap(kSwitchOn.id);
            s.LoadCtrlMessages(this, i ? "SWITCH B" : "SWITCH A", "", "");
            s.SetCtrlOption(static_cast<UINT>(i));
        }
        for (int i = 0; i < 2; ++i) {  // one lit, one dark
            COrlexLED& l = m_lamps[i];
            l.Create(130 + 24 * i, 47, &m_scan);
            l.LoadOffBitmap(kLampOff.id);
            l.LoadOnBitmap(kLampOn.id);
            i ? l.TurnOff() : l.TurnOn();
        }
        m_toggle.Create(20, 80, &m_scan);
        m_toggle.LoadBitmap(kToggleNormal.id);
        m_toggle.LoadClickBitmap(kToggleClick.id);
        m_toggle.LoadCtrlMessages(this, "TOGGLE", "", "");
        m_held.Create(80, 80, &m_scan);
        m_held.LoadBitmap(kThreeStateNormal.id);
        m_held.LoadClickBitmap(kThreeStateClick.id);
        m_held.LoadCtrlMessages(this, "HOLD", "", "");
        m_held.Click();

        m_list.Create(200, 45, &m_scan);
        m_list.LoadBitmap(kListSize.id);
        m_list.SetMenuSize(&m_scan, 0, 0);
        for (const char* rate : {"Fast", "Normal", "Slow", "Fine"}) m_list.AddOption(rate, 0);
        m_list.LoadCtrlMessages(this, "RATE", "", "");
        m_list.m_nHoverIndex = 1;

        // What the centre heard, right of the scan group.
        CRect scan;
        m_scan.GetWindowRect(&scan);
        ScreenToClient(&scan);
        m_heard.Create(static_cast<UINT>(scan.left) + m_scan.GetWidth() + 15, 125, 250, 64, this);
        m_heard.SetFont(10, "Arial");
        m_heard.SetTextColor(RGB(40, 40, 90));
        m_heard.SetBackgroundColor(kPanel);  // it shows what was heard before it existed too
    }

    COrlex m_buttons[3] = {COrlex(0, 0, 0), COrlex(0, 0, 0), COrlex(0, 0, 0)};
    COrlexHorzSlider m_slider;
    COrlex2HSlider m_value;
    COrlexGroup m_stage;
    COrlexLED m_stageLamp;
    COrlexGroup m_scan;
    COrlex2PtSwitch m_switches[2] = {COrlex2PtSwitch(0, 0, true), COrlex2PtSwitch(0, 0, true)};
    COrlexLED m_lamps[2];
    COrlexToggleButton m_toggle;
    COrlex3StateButton m_held;
    COrlexDropMenu m_list;
    COrlexText m_heard;
    std::deque<std::string> m_lines;
};

BEGIN_MESSAGE_MAP(PanelScene, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

}  // namespace

// Builds the scene as one child window of `parent` filling `area` (about 830 x 320
// pixels). Deletes itself with its window.
bool DemoPanelScene(CWnd* parent, const CRect& area) {
    auto* scene = new PanelScene;
    if (!scene->Build(parent, area)) {
        if (!scene->GetSafeHwnd()) delete scene;
        return false;
    }
    return true;
}
