// Demo scene of the panel controls as an instrument host wires them: the host registers its
// faces (tools/faces) under its own module, builds bitmap buttons, a slider and a compound
// value slider, and hears every control through one message centre, which shows the last
// texts it heard. The scene starts with a button under the pointer, the slider at a third
// and the compound zoomed in with a typed value.
#include <deque>
#include <string>

#include "demo/demo.h"
#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxwin.h"
#include "panel/Orlex.h"
#include "panel/Orlex2HSlider.h"
#include "panel/OrlexHorzSlider.h"
#include "panel/OrlexText.h"
#include "tools/faces/faces.h"

namespace {

constexpr COLORREF kPanel = RGB(214, 218, 224);

class PanelScene : public CWnd, public COrlexMsgCenter {
public:
    bool Build(CWnd* parent, const CRect& area) {
        if (!faces::RegisterFaces()) return false;
        if (!Create(nullptr, "panel scene", WS_CHILD | WS_VISIBLE, area, parent, 0x7300)) return false;
        const char* names[3] = {"START", "STOP", "RESET"};
        for (int i = 0; i < 3; ++i) {
            COrlex& b = m_buttons[i];
            b.Create(20 + 60 * i, 20, this);
            b.LoadBitmap(faces::kButtonNormal.id);
            b.LoadRolloverBitmap(faces::kButtonRollover.id);
            b.LoadClickBitmap(faces::kButtonClick.id);
            b.LoadCtrlMessages(this, names[i], "", "");
        }
        m_slider.Create(20, 70, 220, this);
        m_slider.LoadBitmap(faces::kLargeThumb.id, faces::kLargeTrack.id);
        m_slider.SetBackgroundColor(kPanel);
        m_slider.LoadCtrlMessages(this, "GAIN", "GAIN DONE", "");
        m_slider.SetPercentSlide(1.0 / 3.0);

        m_value.Create(270, 20, 300, 10, this);
        m_value.LoadBitmap(faces::kLargeThumb.id, faces::kSmallThumb.id, faces::kLargeTrack.id, faces::kSmallTrack.id);
        m_value.SetBackgroundColor(kPanel);
        m_value.SetLabel("Bias voltage");
        m_value.LoadCtrlMessages(this, "BIAS", "", "");

        m_heard.Create(20, 110, 230, 64, this);
        m_heard.SetFont(10, "Arial");
        m_heard.SetTextColor(RGB(40, 40, 90));
        m_heard.SetBackgroundColor(kPanel);

        // The small slider narrows the range, then a value is typed and committed.
        m_value.m_SmallSlider.SetPercentSlide(0.8);
        m_value.m_ValueEdit.SetWindowText("42.5");
        m_value.m_ValueEdit.SendMessage(WM_KEYUP, 13, 0);
        // The pointer rests on the middle button.
        m_buttons[1].SendMessage(WM_MOUSEMOVE, 0, MAKELPARAM(10, 10));
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
    COrlex m_buttons[3] = {COrlex(0, 0, 0), COrlex(0, 0, 0), COrlex(0, 0, 0)};
    COrlexHorzSlider m_slider;
    COrlex2HSlider m_value;
    COrlexText m_heard;
    std::deque<std::string> m_lines;
};

BEGIN_MESSAGE_MAP(PanelScene, CWnd)
    ON_WM_PAINT()
END_MESSAGE_MAP()

}  // namespace

// Builds the scene as one child window of `parent` filling `area` (about 590 x 190
// pixels). Deletes itself with its window.
bool DemoPanelScene(CWnd* parent, const CRect& area) {
    auto* scene = new PanelScene;
    if (!scene->Build(parent, area)) {
        if (!scene->GetSafeHwnd()) delete scene;
        return false;
    }
    return true;
}
