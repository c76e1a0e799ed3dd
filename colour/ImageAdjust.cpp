#include "colour/ImageAdjust.h"

#include <strings.h>

#include "colour/ColorCtrl.h"
#include "colour/ColorTable.h"
#include "foundation/MessageCatalogue.h"

BEGIN_MESSAGE_MAP(CImageAdjust, CDialog)
    ON_WM_DESTROY()
    ON_WM_HELPINFO()
    ON_WM_ACTIVATE()
    ON_COMMAND(IDC_ADJUST_RESET, OnAdjustmentReset)
    ON_EN_KILLFOCUS(IDC_ADJUST_CONTRAST, UpdateContrast)
    ON_EN_KILLFOCUS(IDC_ADJUST_OFFSET, UpdateOffset)
    ON_EN_KILLFOCUS(IDC_ADJUST_TABLE, UpdateClrTable)
END_MESSAGE_MAP()

namespace {

bool IsFrame(const CWnd* wnd)
{
    const CRuntimeClass* frame = CRuntimeClass::FromName("CBorderCon");
    return wnd != nullptr && frame != nullptr && wnd->IsKindOf(frame);
}

}  // namespace

CImageAdjust::CImageAdjust(CWnd* colorCtrl, int modal)
    : CDialog(IDD_COLOR_ADJUST, colorCtrl), m_bModal(modal), m_pColorCtrl(dynamic_cast<CColorCtrl*>(colorCtrl))
{
    if (m_bModal) {
        DoModal();
        return;
    }
    if (Create(IDD_COLOR_ADJUST, colorCtrl)) ShowWindow(SW_SHOW);
}

CImageAdjust::~CImageAdjust() = default;

BOOL CImageAdjust::OnInitDialog()
{
    if (m_pColorCtrl) {
        m_nContrast = m_pColorCtrl->GetContrast();
        m_nOffset = m_pColorCtrl->GetOffset();
        m_nTable = m_pColorCtrl->GetColorTableIdx();
    }
    CDialog::OnInitDialog();
    return TRUE;
}

void CImageAdjust::DoDataExchange(CDataExchange* dx)
{
    CDialog::DoDataExchange(dx);
    DDX_Text(dx, IDC_ADJUST_CONTRAST, m_nContrast);
    DDX_Text(dx, IDC_ADJUST_OFFSET, m_nOffset);
    DDX_Text(dx, IDC_ADJUST_TABLE, m_nTable);
    DDV_MinMaxInt(dx, m_nContrast, orlex::colour::kMinContrast, orlex::colour::kMaxContrast);
    DDV_MinMaxInt(dx, m_nOffset, -128, 128);
    DDV_MinMaxInt(dx, m_nTable, 0, GetNumberOfColorTables() - 1);
}

int* CImageAdjust::FieldOf(UINT id)
{
    switch (id) {
    case IDC_ADJUST_CONTRAST: return &m_nContrast;
    case IDC_ADJUST_OFFSET: return &m_nOffset;
    case IDC_ADJUST_TABLE: return &m_nTable;
    default: return nullptr;
    }
}

void CImageAdjust::UpdateControl(UINT id)
{
    // A failed check moves the focus back to its edit, which takes it from another edit
    // whose own kill-focus update would check the same bad text again, and so on.
    if (m_bInUpdate) return;
    struct Busy {
        bool& flag;
        explicit Busy(bool& f) : flag(f) { flag = true; }
        ~Busy() { flag = false; }
    } busy(m_bInUpdate);
    int* field = FieldOf(id);
    const int kept = field ? *field : 0;
    if (UpdateData(TRUE)) {
        UpdateParent();
        return;
    }
    if (field) *field = kept;
    UpdateData(FALSE);
    if (CWnd* edit = GetDlgItem(static_cast<int>(id))) edit->SetFocus();
}

void CImageAdjust::UpdateParent()
{
    CColorCtrl* bar = m_pColorCtrl;
    if (bar == nullptr) return;
    bool changed = false;
    if (bar->GetContrast() != m_nContrast) {
        bar->SetContrast(m_nContrast);
        changed = true;
    }
    if (bar->GetOffset() != m_nOffset) {
        bar->SetOffset(m_nOffset);
        changed = true;
    }
    // Stored before SetColorTable, which then sees no change of table and keeps the
    // host's modified or equalised table.
    if (bar->m_nTable != m_nTable) {
        bar->m_nTable = m_nTable;
        changed = true;
    }
    if (!changed) return;
    bar->SetColorTable(m_nTable, 0);
    if (CWnd* parent = bar->GetParent())
        parent->SendMessage(MESSAGE_COLOR_CTRL_STR, 0, reinterpret_cast<LPARAM>(bar->GetColorTable()));
}

void CImageAdjust::OnAdjustmentReset()
{
    m_nContrast = 0;
    m_nOffset = 0;
    UpdateData(FALSE);
    if (UpdateData(TRUE)) UpdateParent();
}

void CImageAdjust::OnOK()
{
    if (m_bModal) {
        CDialog::OnCancel();
        return;
    }
    if (m_pColorCtrl && m_pColorCtrl->m_hWnd)
        m_pColorCtrl->PostMessage(MESSAGE_BORDERCON_DIALOG_DELETED_STR, 0, 0);
    DestroyWindow();
}

void CImageAdjust::OnCancel()
{
    OnOK();
}

void CImageAdjust::OnDestroy()
{
    // However the window goes (closed here, or with its bar), the bar must not keep
    // pointing at an object that is about to delete itself.
    if (m_pColorCtrl && m_pColorCtrl->m_pDialog == this) m_pColorCtrl->m_pDialog = nullptr;
    CDialog::OnDestroy();
}

void CImageAdjust::PostNcDestroy()
{
    if (!m_bModal) delete this;
}

void CImageAdjust::OnActivate(UINT state, CWnd* other, BOOL minimized)
{
    CDialog::OnActivate(state, other, minimized);
    if (m_pColorCtrl == nullptr || !m_pColorCtrl->m_hWnd) return;
    CWnd* frame = m_pColorCtrl->GetParent();
    if (IsFrame(frame)) frame->PostMessage(MESSAGE_BORDERCON_ADJUST_FOCUS_STR, state != 0 ? 1 : 0, 0);
}

BOOL CImageAdjust::PreTranslateMessage(MSG* msg)
{
    if (msg->message == WM_KEYDOWN && (msg->wParam == VK_RETURN || msg->wParam == VK_ESCAPE)) {
        const HWND focus = ::GetFocus();
        char name[16] = {};
        // Five characters with the terminator: the class is "edit" exactly, in any case.
        if (focus && ::GetClassNameA(focus, name, sizeof name) > 0 && strncasecmp(name, "edit", 5) == 0) {
            if (msg->wParam == VK_ESCAPE)
                ::SendMessageA(focus, EM_UNDO, 0, 0);
            else
                ::SetFocus(::GetWindow(focus, GW_HWNDNEXT));
            msg->wParam = 0;
            return TRUE;
        }
    }
    return CDialog::PreTranslateMessage(msg);
}
