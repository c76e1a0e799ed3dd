#include "imageframe/ScanLineCfgDlg.h"

#include "imageview/ImageView.h"

BEGIN_MESSAGE_MAP(CScanLineCfgDlg, CDialog)
    ON_CONTROL_RANGE(BN_CLICKED, IDC_SCANLINE_NONE, IDC_SCANLINE_TICK, OnMarkerStyle)
    ON_BN_CLICKED(IDC_SCANLINE_COLOR, OnSetColor)
END_MESSAGE_MAP()

CScanLineCfgDlg::CScanLineCfgDlg(CWnd* parent) : CDialog(IDD_SCANLINE_CFG, parent) {}

void CScanLineCfgDlg::DoDataExchange(CDataExchange* dx)
{
    CDialog::DoDataExchange(dx);
    DDX_Radio(dx, IDC_SCANLINE_NONE, CImageView::m_nScanLineType);
}

void CScanLineCfgDlg::OnMarkerStyle(UINT) { UpdateData(TRUE); }

void CScanLineCfgDlg::OnSetColor()
{
    CColorDialog dlg(CImageView::m_ScanLineColor, CC_FULLOPEN);
    if (dlg.DoModal() == IDOK) CImageView::m_ScanLineColor = dlg.GetColor();
}
