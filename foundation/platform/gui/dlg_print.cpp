// The print dialog: the printer chosen through the modal script, its settings and context.
#include <cstring>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/gui/dlg_hook_p.h"
#include "foundation/platform/gui/dlg_modal_p.h"

// Print -----------------------------------------------------------------------------------

namespace {

std::string DefaultPrinterName() {
    char name[256] = {};
    DWORD size = sizeof name;
    if (!GetDefaultPrinterA(name, &size)) return std::string();
    return name;
}

// The printer's settings, starting from `initial` when the caller gave some, and the
// DEVNAMES record (driver "WINSPOOL", the device, port "PDF:") with its strings.
bool DescribePrinter(const std::string& printer, const DEVMODE* initial, DEVMODE& devMode, std::string& names) {
    HANDLE handle = nullptr;
    std::string device = printer;
    if (!OpenPrinterA(device.data(), &handle, nullptr)) return false;
    DEVMODE dm{};
    LONG r = DocumentPropertiesA(nullptr, handle, device.data(), &dm, initial,
                                 DM_OUT_BUFFER | (initial ? DM_IN_BUFFER : 0));
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

// Puts bytes into the caller's block when it is large enough, else into a new block (the
// old one is freed). The block is the caller's to free, as the platform hands it out.
HGLOBAL StoreBlock(HGLOBAL block, const void* data, size_t size) {
    if (block && ::GlobalSize(block) < size) {
        ::GlobalFree(block);
        block = nullptr;
    }
    if (!block) block = ::GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, size);
    if (!block) return nullptr;
    void* p = ::GlobalLock(block);
    if (!p) return block;
    std::memcpy(p, data, size);
    ::GlobalUnlock(block);
    return block;
}

// The settings a caller prepared in pd->hDevMode (the library's plot printing does), or null.
bool CallerSettings(const PRINTDLGA* pd, DEVMODE& out) {
    if (!pd->hDevMode || ::GlobalSize(pd->hDevMode) < sizeof(DEVMODE)) return false;
    const void* p = ::GlobalLock(pd->hDevMode);
    if (!p) return false;
    std::memcpy(&out, p, sizeof out);
    ::GlobalUnlock(pd->hDevMode);
    return true;
}

std::string NameAt(HGLOBAL names, size_t which) {
    std::string out;
    const SIZE_T size = names ? ::GlobalSize(names) : 0;
    if (size < sizeof(DEVNAMES)) return out;
    const char* p = static_cast<const char*>(::GlobalLock(names));
    if (!p) return out;
    DEVNAMES dn;
    std::memcpy(&dn, p, sizeof dn);
    const WORD offs[3] = {dn.wDriverOffset, dn.wDeviceOffset, dn.wOutputOffset};
    if (offs[which] < size) out.assign(p + offs[which], strnlen(p + offs[which], size - offs[which]));
    ::GlobalUnlock(names);
    return out;
}

}  // namespace

BOOL PrintDlgA(PRINTDLGA* pd) {
    if (!pd || pd->lStructSize < sizeof(PRINTDLGA)) return FALSE;
    std::string printer = DefaultPrinterName();
    if (!(pd->Flags & PD_RETURNDEFAULT)) {
        orlex::detail::InstallModalPresenters();
        orlex::ModalRecord req{"PrintDialog", printer, pd->Flags, 0, {}};
        const bool setup = (pd->Flags & PD_PRINTSETUP) != 0;
        LPPRINTHOOKPROC hook = setup ? ((pd->Flags & PD_ENABLESETUPHOOK) ? pd->lpfnSetupHook : nullptr)
                                     : ((pd->Flags & PD_ENABLEPRINTHOOK) ? pd->lpfnPrintHook : nullptr);
        orlex::detail::HookedDialogWindow window(pd->hwndOwner, setup ? "Print Setup" : "Print",
                                                 SIZE{setup ? 434 : 426, setup ? 280 : 344}, hook,
                                                 reinterpret_cast<LPARAM>(pd));
        orlex::ModalAnswer answer = orlex::ModalScript::Ask(req, orlex::ModalAnswer{IDCANCEL, {}});
        if (answer.value != IDOK) return FALSE;
        if (!answer.text.empty()) printer = answer.text;
    }
    DEVMODE initial{}, devMode{};
    const bool given = CallerSettings(pd, initial);
    std::string names;
    if (printer.empty() || !DescribePrinter(printer, given ? &initial : nullptr, devMode, names)) return FALSE;
    HGLOBAL dm = StoreBlock(pd->hDevMode, &devMode, sizeof devMode);
    HGLOBAL dn = StoreBlock(pd->hDevNames, names.data(), names.size());
    if (!dm || !dn) return FALSE;
    pd->hDevMode = dm;
    pd->hDevNames = dn;
    if (pd->Flags & (PD_RETURNDC | PD_RETURNIC)) {
        pd->hDC = (pd->Flags & PD_RETURNDC) ? CreateDCA("WINSPOOL", printer.c_str(), nullptr, &devMode)
                                            : CreateICA("WINSPOOL", printer.c_str(), nullptr, &devMode);
    }
    return TRUE;
}

CPrintDialog::CPrintDialog(BOOL printSetup, DWORD flags, CWnd*) {
    m_pd.Flags = flags | (printSetup ? PD_PRINTSETUP : 0);
    m_pd.nFromPage = m_pd.nToPage = 0xFFFF;
    m_pd.nMinPage = 1;
    m_pd.nMaxPage = 0xFFFF;
}

CPrintDialog::~CPrintDialog() {
    for (HGLOBAL block : {m_pd.hDevMode, m_pd.hDevNames}) {
        if (!block) continue;
        // GetDevMode leaves its block locked; it goes now.
        while (::GlobalFlags(block) & GMEM_LOCKCOUNT) ::GlobalUnlock(block);
        ::GlobalFree(block);
    }
}

INT_PTR CPrintDialog::DoModal() { return PrintDlgA(&m_pd) ? IDOK : IDCANCEL; }

BOOL CPrintDialog::GetDefaults() {
    const DWORD saved = m_pd.Flags;
    m_pd.Flags |= PD_RETURNDEFAULT;
    BOOL ok = PrintDlgA(&m_pd);
    m_pd.Flags = saved;
    return ok;
}

HDC CPrintDialog::GetPrinterDC() const {
    if (m_pd.hDC) return m_pd.hDC;
    const std::string device = NameAt(m_pd.hDevNames, 1);
    if (device.empty()) return nullptr;
    DEVMODE dm{};
    const bool have = CallerSettings(&m_pd, dm);
    return CreateDCA("WINSPOOL", device.c_str(), nullptr, have ? &dm : nullptr);
}

DEVMODE* CPrintDialog::GetDevMode() const {
    // The block stays locked once, as the platform's framework leaves it.
    return m_pd.hDevMode ? static_cast<DEVMODE*>(::GlobalLock(m_pd.hDevMode)) : nullptr;
}

CString CPrintDialog::GetDriverName() const { return CString(NameAt(m_pd.hDevNames, 0).c_str()); }
CString CPrintDialog::GetDeviceName() const { return CString(NameAt(m_pd.hDevNames, 1).c_str()); }
CString CPrintDialog::GetPortName() const { return CString(NameAt(m_pd.hDevNames, 2).c_str()); }
