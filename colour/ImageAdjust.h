// "Color Adjustment" (dialog resource 10005): contrast, offset and table number of one
// colour bar. Every edit takes effect when it loses the focus; a wrong entry brings the
// range message and restores the last good value.
#pragma once

#include "foundation/platform/afxdlgs.h"

class CColorCtrl;

constexpr UINT IDD_COLOR_ADJUST = 10005;
constexpr int IDC_ADJUST_TABLE = 10040;
constexpr int IDC_ADJUST_RESET = 10041;
constexpr int IDC_ADJUST_CONTRAST = 10042;
constexpr int IDC_ADJUST_OFFSET = 10043;

class CImageAdjust : public CDialog {
public:
    // colorCtrl: the bar (the dialog's parent; may be null for no bar). modal non-zero runs
    // the dialog modally inside the constructor; otherwise it is created and shown, and
    // deletes itself when its window goes (allocate it with new).
    CImageAdjust(CWnd* colorCtrl, int modal);
    ~CImageAdjust() override;

    BOOL OnInitDialog() override;
    void DoDataExchange(CDataExchange* dx) override;
    void OnOK() override;
    void OnCancel() override;
    void PostNcDestroy() override;
    // Return and Escape in an edit move the focus on or undo the typing; they never close.
    BOOL PreTranslateMessage(MSG* msg) override;

    // Reads the edit `id` (10042, 10043, 10040) and passes good values to the bar.
    void UpdateControl(UINT id);
    void UpdateContrast() { UpdateControl(IDC_ADJUST_CONTRAST); }
    void UpdateOffset() { UpdateControl(IDC_ADJUST_OFFSET); }
    void UpdateClrTable() { UpdateControl(IDC_ADJUST_TABLE); }
    // Gives contrast, offset and table to the bar and tells the bar's parent, when any changed.
    void UpdateParent();

    int m_nContrast = 0;
    int m_nOffset = 0;
    int m_nTable = 0;
    int m_bModal;
    CColorCtrl* m_pColorCtrl;

protected:
    void OnActivate(UINT state, CWnd* other, BOOL minimized) override;
    void OnDestroy() override;
    afx_msg void OnAdjustmentReset();

private:
    int* FieldOf(UINT id);
    bool m_bInUpdate = false;

    DECLARE_MESSAGE_MAP()
};
