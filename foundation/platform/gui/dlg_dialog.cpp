// CDialog: dialogs made from the library's templates, modal and modeless, the dialog
// keys (Tab, Enter, Escape, arrows in radio groups) and the dialog helpers.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/gui/dlg_modal_p.h"
#include "foundation/platform/gui/dlg_template_p.h"

namespace orlex::detail {
namespace {

const char kDialogClass[] = "OrlexDialog";

void EnsureDialogClass() {
    static bool done = false;
    if (done) return;
    done = true;
    WNDCLASSA wc{};
    wc.style = CS_DBLCLKS | CS_SAVEBITS;
    wc.lpfnWndProc = DefWindowProcA;
    wc.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(COLOR_BTNFACE + 1));
    wc.lpszClassName = kDialogClass;
    AfxRegisterClass(&wc);
}

bool IsClass(HWND hwnd, const char* name) {
    char cls[32] = {};
    ::GetClassNameA(hwnd, cls, sizeof cls);
    return std::strcmp(cls, name) == 0;
}

UINT DlgCode(HWND hwnd, MSG* msg) {
    return static_cast<UINT>(::SendMessageA(hwnd, WM_GETDLGCODE, msg ? msg->wParam : 0, reinterpret_cast<LPARAM>(msg)));
}

// The control's own visibility counts: a dialog being built is still hidden.
bool Focusable(HWND h) {
    const DWORD style = StyleOf(h);
    return (style & WS_VISIBLE) && !(style & WS_DISABLED) && (style & WS_TABSTOP);
}

// The control of the dialog that holds hwnd (hwnd itself, or the child of the dialog that
// is its ancestor, as for the edit inside a combo box).
HWND DialogChildOf(HWND dlg, HWND hwnd) {
    while (hwnd && ::GetParent(hwnd) != dlg) hwnd = ::GetParent(hwnd);
    return hwnd;
}

// The push button that Enter presses: a focused push button, else the default push button.
int DefaultCommand(HWND dlg, HWND focus) {
    if (focus && IsClass(focus, "Button")) {
        const DWORD k = StyleOf(focus) & BS_TYPEMASK;
        if (k == BS_PUSHBUTTON || k == BS_DEFPUSHBUTTON) return ::GetDlgCtrlID(focus);
    }
    for (HWND h = ::GetWindow(dlg, GW_CHILD); h; h = ::GetWindow(h, GW_HWNDNEXT))
        if (IsClass(h, "Button") && (StyleOf(h) & BS_TYPEMASK) == BS_DEFPUSHBUTTON) return ::GetDlgCtrlID(h);
    return IDOK;
}

void FocusControl(HWND ctl) {
    if (!ctl) return;
    ::SetFocus(ctl);
    if (DlgCode(ctl, nullptr) & DLGC_HASSETSEL) ::SendMessageA(ctl, EM_SETSEL, 0, -1);
}

}  // namespace
}  // namespace orlex::detail

using namespace orlex::detail;

// Dialog helpers ----------------------------------------------------------------------------

BOOL SetDlgItemTextA(HWND dlg, int id, LPCSTR text) {
    HWND h = ::GetDlgItem(dlg, id);
    return h ? ::SetWindowTextA(h, text) : FALSE;
}

UINT GetDlgItemTextA(HWND dlg, int id, LPSTR buffer, int size) {
    HWND h = ::GetDlgItem(dlg, id);
    if (!h) {
        if (buffer && size > 0) buffer[0] = '\0';
        return 0;
    }
    return static_cast<UINT>(::GetWindowTextA(h, buffer, size));
}

BOOL SetDlgItemInt(HWND dlg, int id, UINT value, BOOL isSigned) {
    char text[16];
    if (isSigned) std::snprintf(text, sizeof text, "%d", static_cast<int>(value));
    else std::snprintf(text, sizeof text, "%u", value);
    return SetDlgItemTextA(dlg, id, text);
}

UINT GetDlgItemInt(HWND dlg, int id, BOOL* translated, BOOL isSigned) {
    if (translated) *translated = FALSE;
    HWND h = ::GetDlgItem(dlg, id);
    if (!h) return 0;
    const std::string text = WindowText(h);
    const char* p = text.c_str();
    while (*p == ' ' || *p == '\t') ++p;
    if (!*p || (!isSigned && *p == '-')) return 0;
    errno = 0;
    char* end = nullptr;
    long long v = std::strtoll(p, &end, 10);
    if (end == p) return 0;
    while (*end == ' ' || *end == '\t') ++end;
    if (*end || errno == ERANGE) return 0;
    if (isSigned ? (v < INT32_MIN || v > INT32_MAX) : (v < 0 || v > UINT32_MAX)) return 0;
    if (translated) *translated = TRUE;
    return static_cast<UINT>(v);
}

BOOL CheckDlgButton(HWND dlg, int id, UINT check) {
    HWND h = ::GetDlgItem(dlg, id);
    if (!h) return FALSE;
    ::SendMessageA(h, BM_SETCHECK, check, 0);
    return TRUE;
}

UINT IsDlgButtonChecked(HWND dlg, int id) {
    HWND h = ::GetDlgItem(dlg, id);
    return h ? static_cast<UINT>(::SendMessageA(h, BM_GETCHECK, 0, 0)) : 0;
}

BOOL CheckRadioButton(HWND dlg, int first, int last, int check) {
    BOOL found = FALSE;
    for (int id = first; id <= last; ++id) {
        HWND h = ::GetDlgItem(dlg, id);
        if (!h) continue;
        ::SendMessageA(h, BM_SETCHECK, id == check ? BST_CHECKED : BST_UNCHECKED, 0);
        if (id == check) found = TRUE;
    }
    return found;
}

HWND GetNextDlgTabItem(HWND dlg, HWND ctl, BOOL previous) {
    std::vector<HWND> stops;
    for (HWND h = ::GetWindow(dlg, GW_CHILD); h; h = ::GetWindow(h, GW_HWNDNEXT))
        if (Focusable(h)) stops.push_back(h);
    if (stops.empty()) return nullptr;
    ctl = DialogChildOf(dlg, ctl);
    auto it = std::find(stops.begin(), stops.end(), ctl);
    if (it == stops.end()) return previous ? stops.back() : stops.front();
    const size_t i = static_cast<size_t>(it - stops.begin());
    return previous ? stops[(i + stops.size() - 1) % stops.size()] : stops[(i + 1) % stops.size()];
}

BOOL IsDialogMessageA(HWND dlg, MSG* msg) {
    if (!msg || !::IsWindow(dlg)) return FALSE;
    if (msg->hwnd != dlg && !::IsChild(dlg, msg->hwnd)) return FALSE;
    if (msg->message != WM_KEYDOWN) return FALSE;
    const UINT code = DlgCode(msg->hwnd, msg);
    switch (msg->wParam) {
    case VK_TAB:
        if (code & (DLGC_WANTTAB | DLGC_WANTALLKEYS)) return FALSE;
        FocusControl(::GetNextDlgTabItem(dlg, ::GetFocus(), ::GetKeyState(VK_SHIFT) < 0));
        return TRUE;
    case VK_RETURN: {
        if (code & DLGC_WANTALLKEYS) return FALSE;
        const int id = DefaultCommand(dlg, ::GetFocus());
        HWND button = ::GetDlgItem(dlg, id);
        if (button && !::IsWindowEnabled(button)) {
            ::MessageBeep(0);
            return TRUE;
        }
        ::SendMessageA(dlg, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return TRUE;
    }
    case VK_ESCAPE: {
        if (code & DLGC_WANTALLKEYS) return FALSE;
        HWND button = ::GetDlgItem(dlg, IDCANCEL);
        ::SendMessageA(dlg, WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(button));
        return TRUE;
    }
    case VK_LEFT:
    case VK_UP:
    case VK_RIGHT:
    case VK_DOWN: {
        if (code & DLGC_WANTARROWS) return FALSE;
        if (!(code & DLGC_RADIOBUTTON)) return TRUE;
        // Arrows move within the radio group and check the button reached.
        const bool back = msg->wParam == VK_LEFT || msg->wParam == VK_UP;
        HWND h = msg->hwnd;
        for (;;) {
            HWND next = back ? ((StyleOf(h) & WS_GROUP) ? nullptr : ::GetWindow(h, GW_HWNDPREV))
                             : ::GetWindow(h, GW_HWNDNEXT);
            if (!next || (!back && (StyleOf(next) & WS_GROUP))) break;
            h = next;
            if ((DlgCode(h, nullptr) & DLGC_RADIOBUTTON) && ::IsWindowEnabled(h)) {
                ::SetFocus(h);
                if ((StyleOf(h) & BS_TYPEMASK) == BS_AUTORADIOBUTTON) ::SendMessageA(h, BM_CLICK, 0, 0);
                break;
            }
        }
        return TRUE;
    }
    default:
        return FALSE;
    }
}

BOOL EndDialog(HWND dlg, INT_PTR result) {
    CDialog* d = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(dlg));
    if (!d) return FALSE;
    d->EndDialog(static_cast<int>(result));
    return TRUE;
}

BOOL MapDialogRect(HWND dlg, RECT* rect) {
    CDialog* d = dynamic_cast<CDialog*>(CWnd::FromHandlePermanent(dlg));
    if (!d || !rect) return FALSE;
    d->MapDialogRect(rect);
    return TRUE;
}

// CDialog -------------------------------------------------------------------------------------

BEGIN_MESSAGE_MAP(CDialog, CWnd)
    ON_COMMAND(IDOK, OnOK)
    ON_COMMAND(IDCANCEL, OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog() = default;

CDialog::CDialog(UINT templateId, CWnd* parent) : m_nTemplateId(templateId), m_pParentWnd(parent) {}

CDialog::CDialog(LPCSTR templateName, CWnd* parent) : m_lpszTemplateName(templateName), m_pParentWnd(parent) {
    if (templateName && OrlexIsIntResource(templateName))
        m_nTemplateId = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(templateName));
    else if (templateName && templateName[0] == '#')
        m_nTemplateId = static_cast<UINT>(std::strtoul(templateName + 1, nullptr, 10));
}

CDialog::~CDialog() {
    if (m_hWnd) DestroyWindow();
    if (m_hFont) ::DeleteObject(m_hFont);
}

BOOL CDialog::CreateFromTemplate(CWnd* parent, bool modal) {
    EnsureControlClasses();
    EnsureDialogClass();
    InstallModalPresenters();
    DialogTemplate t;
    if (!LoadDialogTemplate(m_nTemplateId, t)) return FALSE;

    // The template's font and its base units, which turn dialog units into pixels.
    if (!m_hFont) {
        LOGFONTA lf{};
        lf.lfHeight = -::MulDiv(t.fontSize, 96, 72);
        lf.lfWeight = FW_NORMAL;
        lf.lfCharSet = ANSI_CHARSET;
        std::strncpy(lf.lfFaceName, t.fontFace.c_str(), sizeof lf.lfFaceName - 1);
        m_hFont = ::CreateFontIndirectA(&lf);
    }
    static const char kAlphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
    const int alphabet = TextWidth(m_hFont, kAlphabet);
    m_baseX = alphabet > 0 ? (alphabet / 26 + 1) / 2 : 6;
    m_baseY = LineHeight(m_hFont);

    const CRect client = DialogUnitsToPixels(0, 0, t.cx, t.cy, m_baseX, m_baseY);
    DWORD style = (t.style | WS_POPUP) & ~(WS_CHILD | WS_VISIBLE);
    CWnd* owner = parent ? parent->GetTopLevelParent() : nullptr;
    if (!owner && parent) owner = parent;
    if (!CWnd::CreateEx(0, kDialogClass, t.caption.c_str(), style, CRect(0, 0, client.Width(), client.Height()), owner,
                        0, nullptr))
        return FALSE;
    m_pParentWnd = parent;
    // The template gives the client size; the frame comes on top of it.
    CRect wr, cr;
    GetWindowRect(&wr);
    GetClientRect(&cr);
    MoveWindow(wr.left, wr.top, client.Width() + (wr.Width() - cr.Width()), client.Height() + (wr.Height() - cr.Height()),
               FALSE);
    CenterWindow(owner);
    SendMessage(WM_SETFONT, reinterpret_cast<WPARAM>(m_hFont), FALSE);

    std::vector<HWND> groupBoxes;
    for (const DialogItemTemplate& item : t.items) {
        const CRect r = DialogUnitsToPixels(item.x, item.y, item.cx, item.cy, m_baseX, m_baseY);
        const bool groupBox = item.className == "Button" && (item.style & BS_TYPEMASK) == BS_GROUPBOX;
        HWND h = ::CreateWindowExA(groupBox ? WS_EX_TRANSPARENT : 0, item.className.c_str(), item.text.c_str(),
                                   item.style, r.left, r.top, r.Width(), r.Height(), m_hWnd,
                                   reinterpret_cast<HMENU>(static_cast<INT_PTR>(item.id)), nullptr, nullptr);
        if (!h) continue;  // a class the layer doesn't know: the rest of the dialog still works
        ::SendMessageA(h, WM_SETFONT, reinterpret_cast<WPARAM>(m_hFont), FALSE);
        if (groupBox) groupBoxes.push_back(h);
    }
    // Group boxes lie under the controls they frame, whatever their place in the template.
    for (HWND g : groupBoxes) ::SetWindowPos(g, HWND_BOTTOM, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);

    m_modal = modal;
    HWND first = ::GetNextDlgTabItem(m_hWnd, nullptr, FALSE);
    if (SendMessage(WM_INITDIALOG, reinterpret_cast<WPARAM>(first), 0) && ::IsWindow(m_hWnd)) FocusControl(first);
    if (!::IsWindow(m_hWnd)) return FALSE;
    HWND focus = ::GetFocus();
    m_hWndLastFocus = (focus && ::IsChild(m_hWnd, focus)) ? focus : first;
    return TRUE;
}

INT_PTR CDialog::DoModal() {
    orlex::ModalRecord rec{"Dialog", {}, m_nTemplateId, 0, {}};
    CWnd* parent = m_pParentWnd;
    if (!CreateFromTemplate(parent, true)) {
        orlex::ModalScript::Record(rec);
        return -1;
    }
    CString caption;
    GetWindowText(caption);
    rec.text = caption.GetString();
    orlex::ModalScript::Record(rec);
    HWND owner = ::GetWindow(m_hWnd, GW_OWNER);
    if (owner && ::IsWindowEnabled(owner)) {
        ::EnableWindow(owner, FALSE);
        m_hWndOwnerDisabled = owner;
    }
    ShowWindow(SW_SHOW);
    RestoreFocus();
    const int result = RunModalLoop(0);
    if (m_hWndOwnerDisabled) {
        ::EnableWindow(m_hWndOwnerDisabled, TRUE);
        m_hWndOwnerDisabled = nullptr;
    }
    if (m_hWnd) DestroyWindow();
    m_modal = false;
    return result;
}

BOOL CDialog::Create(UINT templateId, CWnd* parent) {
    m_nTemplateId = templateId;
    if (!CreateFromTemplate(parent, false)) return FALSE;
    DialogTemplate t;
    if (LoadDialogTemplate(templateId, t) && (t.style & WS_VISIBLE)) ShowWindow(SW_SHOW);
    return TRUE;
}

BOOL CDialog::Create(LPCSTR templateName, CWnd* parent) {
    UINT id = 0;
    if (templateName && OrlexIsIntResource(templateName)) id = static_cast<UINT>(reinterpret_cast<ULONG_PTR>(templateName));
    else if (templateName && templateName[0] == '#') id = static_cast<UINT>(std::strtoul(templateName + 1, nullptr, 10));
    m_lpszTemplateName = templateName;
    return Create(id, parent);
}

void CDialog::EndDialog(int result) {
    if (m_modal) EndModalLoop(result);
    else ShowWindow(SW_HIDE);
}

BOOL CDialog::OnInitDialog() {
    UpdateData(FALSE);
    return TRUE;
}

void CDialog::OnOK() {
    if (!UpdateData(TRUE)) return;
    EndDialog(IDOK);
}

void CDialog::OnCancel() { EndDialog(IDCANCEL); }

BOOL CDialog::PreTranslateMessage(MSG* msg) {
    if (msg->message >= WM_KEYFIRST && msg->message <= WM_KEYLAST && m_hWnd &&
        (msg->hwnd == m_hWnd || ::IsChild(m_hWnd, msg->hwnd)))
        return ::IsDialogMessageA(m_hWnd, msg);
    return CWnd::PreTranslateMessage(msg);
}

LRESULT CDialog::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_INITDIALOG:
        return OnInitDialog();
    case WM_CLOSE:
        // Closing a dialog's window is its Cancel.
        SendMessage(WM_COMMAND, MAKEWPARAM(IDCANCEL, BN_CLICKED), reinterpret_cast<LPARAM>(::GetDlgItem(m_hWnd, IDCANCEL)));
        return 0;
    case WM_ACTIVATE: {
        if (LOWORD(wParam) == WA_INACTIVE) {
            HWND f = ::GetFocus();
            if (f && ::IsChild(m_hWnd, f)) m_hWndLastFocus = f;
        }
        const LRESULT r = CWnd::WindowProc(message, wParam, lParam);
        if (LOWORD(wParam) != WA_INACTIVE && m_hWnd) RestoreFocus();
        return r;
    }
    case WM_SETFONT:
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(m_hFont);
    default:
        return CWnd::WindowProc(message, wParam, lParam);
    }
}

BOOL CDialog::OnCommand(WPARAM wParam, LPARAM lParam) { return CWnd::OnCommand(wParam, lParam); }

// An activated dialog gives the focus back to the control that had it.
void CDialog::RestoreFocus() {
    HWND f = ::GetFocus();
    if (f && ::IsChild(m_hWnd, f)) return;
    if (m_hWndLastFocus && ::IsWindow(m_hWndLastFocus) && ::IsChild(m_hWnd, m_hWndLastFocus)) ::SetFocus(m_hWndLastFocus);
}

void CDialog::SetDlgItemText(int id, LPCSTR text) { ::SetDlgItemTextA(m_hWnd, id, text); }
int CDialog::GetDlgItemText(int id, LPSTR buffer, int size) const {
    return static_cast<int>(::GetDlgItemTextA(m_hWnd, id, buffer, size));
}
int CDialog::GetDlgItemText(int id, CString& text) const {
    HWND h = ::GetDlgItem(m_hWnd, id);
    text = h ? WindowText(h).c_str() : "";
    return text.GetLength();
}
void CDialog::SetDlgItemInt(int id, UINT value, BOOL isSigned) { ::SetDlgItemInt(m_hWnd, id, value, isSigned); }
UINT CDialog::GetDlgItemInt(int id, BOOL* translated, BOOL isSigned) const {
    return ::GetDlgItemInt(m_hWnd, id, translated, isSigned);
}
void CDialog::CheckDlgButton(int id, UINT check) { ::CheckDlgButton(m_hWnd, id, check); }
UINT CDialog::IsDlgButtonChecked(int id) const { return ::IsDlgButtonChecked(m_hWnd, id); }
void CDialog::CheckRadioButton(int first, int last, int check) { ::CheckRadioButton(m_hWnd, first, last, check); }
int CDialog::GetCheckedRadioButton(int first, int last) const {
    for (int id = first; id <= last; ++id)
        if (::IsDlgButtonChecked(m_hWnd, id) == BST_CHECKED) return id;
    return 0;
}
CWnd* CDialog::GetNextDlgTabItem(CWnd* ctl, BOOL previous) const {
    return CWnd::FromHandle(::GetNextDlgTabItem(m_hWnd, ctl ? ctl->m_hWnd : nullptr, previous));
}
void CDialog::NextDlgCtrl() const { FocusControl(::GetNextDlgTabItem(m_hWnd, ::GetFocus(), FALSE)); }
void CDialog::PrevDlgCtrl() const { FocusControl(::GetNextDlgTabItem(m_hWnd, ::GetFocus(), TRUE)); }
void CDialog::GotoDlgCtrl(CWnd* ctl) {
    if (ctl) FocusControl(ctl->m_hWnd);
}
void CDialog::MapDialogRect(LPRECT rect) const {
    if (!rect) return;
    *rect = DialogUnitsToPixels(rect->left, rect->top, rect->right - rect->left, rect->bottom - rect->top, m_baseX, m_baseY);
}
DWORD CDialog::GetDefID() const { return static_cast<DWORD>(DefaultCommand(m_hWnd, nullptr)); }
void CDialog::SetDefID(UINT id) {
    for (HWND h = ::GetWindow(m_hWnd, GW_CHILD); h; h = ::GetWindow(h, GW_HWNDNEXT)) {
        if (!IsClass(h, "Button")) continue;
        const DWORD k = StyleOf(h) & BS_TYPEMASK;
        if (k == BS_DEFPUSHBUTTON && static_cast<UINT>(::GetDlgCtrlID(h)) != id)
            ::SendMessageA(h, BM_SETSTYLE, BS_PUSHBUTTON, TRUE);
        else if (k == BS_PUSHBUTTON && static_cast<UINT>(::GetDlgCtrlID(h)) == id)
            ::SendMessageA(h, BM_SETSTYLE, BS_DEFPUSHBUTTON, TRUE);
    }
}
