// "Configure Scan Line Marker" (dialog resource 10017): the style and colour of the marker
// that a live scan draws at the edge of each new strip. The settings are the process-wide
// ones of the image view; a radio click takes effect at once, for the next strip.
#pragma once

#include "foundation/platform/afxdlgs.h"

constexpr UINT IDD_SCANLINE_CFG = 10017;
constexpr int IDC_SCANLINE_NONE = 10080;   // then solid 10081, dash 10082, left tick 10083
constexpr int IDC_SCANLINE_TICK = 10083;
constexpr int IDC_SCANLINE_COLOR = 10084;

class CScanLineCfgDlg : public CDialog {
public:
    explicit CScanLineCfgDlg(CWnd* parent = nullptr);

    // The four radios stand for the marker types 0 to 3.
    void DoDataExchange(CDataExchange* dx) override;

protected:
    void OnMarkerStyle(UINT id);
    // The colour dialog (fully open) on the marker's colour; OK stores the choice.
    void OnSetColor();
    DECLARE_MESSAGE_MAP()
};
