// Demo scene of the dialog controls, each set up as a host would set it up.
#include "demo/demo.h"
#include "foundation/platform/afxdlgs.h"

namespace {

// A panel that owns its controls and deletes itself with its window.
class ControlsPanel : public CWnd {
public:
    bool Build(CWnd* parent, const CRect& area) {
        if (!Create(nullptr, nullptr, WS_CHILD | WS_VISIBLE | WS_BORDER | WS_CLIPCHILDREN, area, parent, 0x7400)) return false;
        const DWORD v = WS_CHILD | WS_VISIBLE;
        m_title.Create("Scan settings", v | SS_LEFT, CRect(12, 8, 300, 26), this);
        m_rateLabel.Create("Rate (lines/s):", v | SS_LEFT, CRect(12, 36, 110, 54), this);
        m_rate.Create(v | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL, CRect(116, 32, 190, 54), this, 10);
        m_rate.SetWindowText("12.5");
        m_spin.Create(v | UDS_SETBUDDYINT | UDS_ALIGNRIGHT | UDS_ARROWKEYS, CRect(0, 0, 16, 22), this, 11);
        m_lines.Create(v | WS_BORDER | ES_NUMBER, CRect(200, 32, 280, 54), this, 12);
        m_spin.SetBuddy(&m_lines);
        m_spin.SetRange32(16, 4096);
        m_spin.SetPos32(512);
        m_live.Create("Live scan", v | BS_AUTOCHECKBOX | WS_TABSTOP, CRect(12, 64, 140, 82), this, 13);
        m_live.SetCheck(BST_CHECKED);
        m_group.Create("Direction", v | BS_GROUPBOX, CRect(150, 60, 300, 120), this, 14);
        m_up.Create("Upwards", v | BS_AUTORADIOBUTTON | WS_GROUP, CRect(160, 78, 290, 96), this, 15);
        m_down.Create("Downwards", v | BS_AUTORADIOBUTTON, CRect(160, 98, 290, 116), this, 16);
        m_down.SetCheck(BST_CHECKED);
        m_style.Create(v | CBS_DROPDOWNLIST | WS_VSCROLL | WS_TABSTOP, CRect(12, 92, 140, 200), this, 17);
        for (const char* s : {"Solid", "Dash", "Dot", "Dash dot"}) m_style.AddString(s);
        m_style.SetCurSel(1);
        m_slider.Create(v | TBS_AUTOTICKS | WS_TABSTOP, CRect(12, 128, 300, 158), this, 18);
        m_slider.SetRange(0, 180);
        m_slider.SetTicFreq(20);
        m_slider.SetPageSize(20);
        m_slider.SetPos(60);
        m_scroll.Create(v | SBS_HORZ, CRect(12, 166, 300, 183), this, 19);
        m_scroll.SetScrollRange(-100, 100);
        m_scroll.SetScrollPos(30);
        m_list.Create(v | WS_BORDER | LBS_NOTIFY, CRect(316, 8, 470, 120), this, 20);
        for (const char* s : {"Channel A", "Channel B", "Topography", "Phase", "Amplitude"}) m_list.AddString(s);
        m_list.SetCurSel(2);
        m_apply.Create("&Apply", v | BS_DEFPUSHBUTTON | WS_TABSTOP, CRect(316, 130, 392, 156), this, IDOK);
        m_close.Create("Close", v | BS_PUSHBUTTON | WS_TABSTOP, CRect(398, 130, 470, 156), this, IDCANCEL);
        m_rate.SetFocus();
        m_rate.SetSel(0, -1);
        // A tracking tip beside the trackbar, as a view shows its coordinates.
        if (m_tip.Create(this)) {
            TOOLINFOA ti;
            ti.uFlags = TTF_TRACK | TTF_ABSOLUTE | TTF_IDISHWND;
            ti.hwnd = m_hWnd;
            ti.uId = reinterpret_cast<UINT_PTR>(m_slider.m_hWnd);
            ti.lpszText = const_cast<LPSTR>("Pitch 60\xBA");
            m_tip.SendMessage(TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&ti));
            CPoint at(120, 190);
            ClientToScreen(&at);
            m_tip.SendMessage(TTM_TRACKPOSITION, 0, MAKELPARAM(static_cast<WORD>(at.x), static_cast<WORD>(at.y)));
            m_tip.SendMessage(TTM_TRACKACTIVATE, TRUE, reinterpret_cast<LPARAM>(&ti));
        }
        return true;
    }

protected:
    void OnPaint() override {
        CPaintDC dc(this);
        CRect r;
        GetClientRect(&r);
        dc.FillSolidRect(&r, GetSysColor(COLOR_BTNFACE));
    }
    BOOL OnEraseBkgnd(CDC*) override { return TRUE; }
    void PostNcDestroy() override { delete this; }
    DECLARE_MESSAGE_MAP()

private:
    CStatic m_title, m_rateLabel;
    CEdit m_rate, m_lines;
    CSpinButtonCtrl m_spin;
    CButton m_live, m_group, m_up, m_down, m_apply, m_close;
    CComboBox m_style;
    CSliderCtrl m_slider;
    CScrollBar m_scroll;
    CListBox m_list;
    CToolTipCtrl m_tip;
};

BEGIN_MESSAGE_MAP(ControlsPanel, CWnd)
    ON_WM_PAINT()
    ON_WM_ERASEBKGND()
END_MESSAGE_MAP()

}  // namespace

bool DemoControlsScene(CWnd* parent, const CRect& area) {
    auto* panel = new ControlsPanel;
    if (!panel->Build(parent, area)) {
        if (!panel->GetSafeHwnd()) delete panel;
        return false;
    }
    return true;
}
