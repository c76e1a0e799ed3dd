// The print dialog: the printer chosen through the modal script, its settings and context.
#include <cstring>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/dlg_modal_p.h"

// Print -----------------------------------------------------------------------------------

namespace {

std::string DefaultPrinterName() {
    char name[256] = {};
    DWORD size = sizeof name;
    if (!GetDefaultPrinterA(name, &size)) return std::string();
    return name;
}

// The process-wide records that PrintDlgA hands out.
struct PrintRecords {
    DEVMODE devMode{};
    std::string names;
};
PrintRecords& SharedRecords() {
    static PrintRecords r;
    return r;
}

// Fills devMode and the DEVNAMES record (with driver "WINSPOOL", the device and port
// "PDF:") for the printer; false when the printer doesn't answer.
bool DescribePrinter(const std::string& printer, DEVMODE& devMode, std::string& names) {
    HANDLE handle = nullptr;
    std::string device = printer;
    if (!OpenPrinterA(device.data(), &handle, nullptr)) return false;
    DEVMODE dm{};
    LONG r = DocumentPropertiesA(nullptr, handle, device.data(), &dm, nullptr, DM_OUT_BUFFER);
    ClosePrinter(handle);
    if (r < 0) return false;
    devMode = dm;
    const std::string driver = "WINSPOOL", port = "PDF:";
    DEVNAMES dn{};
    dn.wDriverOffset = sizeof(DEVNAMES);
    dn.wDeviceOffset = static_cast<WORD>(dn.wDriverOffset + driver.size() + 1);
    dn.wOutputOffset = static_cast<WORD>(dn.wDeviceOffset + device.size() + 1);
    dn.wDefault = printer == DefaultPrinterName() ? 1 : 0;
    names.assign(reinterpret_cast<const char*>(&dn), sizeof dn);
    names += driver + '\0' + device + '\0' + port + '\0';
    return true;
}

// Runs the dialog for pd and fills the given records. TRUE when a printer was chosen.
BOOL RunPrintDialog(PRINTDLGA* pd, DEVMODE& devMode, std::string& names) {
    if (!pd || pd->lStructSize < sizeof(PRINTDLGA)) return FALSE;
    std::string printer = DefaultPrinterName();
    if (!(pd->Flags & PD_RETURNDEFAULT)) {
        orlex::detail::InstallModalPresenters();
        orlex::ModalRecord req{"PrintDialog", printer, pd->Flags, 0, {}};
        orlex::ModalAnswer answer = orlex::ModalScript::Ask(req, orlex::ModalAnswer{IDCANCEL, {}});
        if (answer.value != IDOK) return FALSE;
        if (!answer.text.empty()) printer = answer.text;
    }
    if (printer.empty() || !DescribePrinter(printer, devMode, names)) return FALSE;
    pd->hDevMode = &devMode;
    pd->hDevNames = names.data();
    if (pd->Flags & (PD_RETURNDC | PD_RETURNIC)) {
        pd->hDC = (pd->Flags & PD_RETURNDC) ? CreateDCA("WINSPOOL", printer.c_str(), nullptr, &devMode)
                                            : CreateICA("WINSPOOL", printer.c_str(), nullptr, &devMode);
    }
    return TRUE;
}

}  // namespace

BOOL PrintDlgA(PRINTDLGA* pd) {
    PrintRecords& r = SharedRecords();
    return RunPrintDialog(pd, r.devMode, r.names);
}

CPrintDialog::CPrintDialog(BOOL printSetup, DWORD flags, CWnd*) {
    m_pd.Flags = flags | (printSetup ? PD_PRINTSETUP : 0);
    m_pd.nFromPage = m_pd.nToPage = 0xFFFF;
    m_pd.nMinPage = 1;
    m_pd.nMaxPage = 0xFFFF;
}

CPrintDialog::~CPrintDialog() = default;

INT_PTR CPrintDialog::DoModal() { return RunPrintDialog(&m_pd, m_devMode, m_names) ? IDOK : IDCANCEL; }

BOOL CPrintDialog::GetDefaults() {
    const DWORD saved = m_pd.Flags;
    m_pd.Flags |= PD_RETURNDEFAULT;
    BOOL ok = RunPrintDialog(&m_pd, m_devMode, m_names);
    m_pd.Flags = saved;
    return ok;
}

HDC CPrintDialog::GetPrinterDC() const {
    if (m_pd.hDC) return m_pd.hDC;
    if (m_names.empty()) return nullptr;
    return CreateDCA("WINSPOOL", GetDeviceName(), nullptr, &m_devMode);
}

DEVMODE* CPrintDialog::GetDevMode() const {
    return m_names.empty() ? nullptr : const_cast<DEVMODE*>(&m_devMode);
}

static CString NameAt(const std::string& names, size_t which) {
    if (names.size() < sizeof(DEVNAMES)) return CString();
    DEVNAMES dn;
    std::memcpy(&dn, names.data(), sizeof dn);
    const WORD offs[3] = {dn.wDriverOffset, dn.wDeviceOffset, dn.wOutputOffset};
    if (offs[which] >= names.size()) return CString();
    return CString(names.c_str() + offs[which]);
}

CString CPrintDialog::GetDriverName() const { return NameAt(m_names, 0); }
CString CPrintDialog::GetDeviceName() const { return NameAt(m_names, 1); }
CString CPrintDialog::GetPortName() const { return NameAt(m_names, 2); }
