// The common dialogs: colour, file and print, answered through the modal script.
#include <cstdio>
#include <cstring>

#include "foundation/platform/afxdlgs.h"
#include "foundation/platform/gui/dlg_hook_p.h"
#include "foundation/platform/gui/dlg_modal_p.h"

namespace {

// Custom colours of the colour dialog: a grey ramp until someone changes them.
COLORREF g_customColours[16] = {
    0xFFFFFF, 0xEFEFEF, 0xDFDFDF, 0xCFCFCF, 0xBFBFBF, 0xAFAFAF, 0x9F9F9F, 0x8F8F8F,
    0x7F7F7F, 0x6F6F6F, 0x5F5F5F, 0x4F4F4F, 0x3F3F3F, 0x2F2F2F, 0x1F1F1F, 0x0F0F0F};

// "Text (*.txt)|*.txt||" -> "Text (*.txt)\0*.txt\0\0".
std::string FilterToNulForm(const char* filter) {
    std::string out = filter ? filter : "";
    for (char& c : out)
        if (c == '|') c = '\0';
    out.push_back('\0');
    out.push_back('\0');
    return out;
}

// The NUL-separated filter back to the "a|b||" form for the request text.
std::string FilterToBarForm(const char* filter) {
    std::string out;
    if (!filter) return out;
    while (*filter) {
        size_t n = std::strlen(filter);
        out.append(filter, n);
        out += '|';
        filter += n + 1;
    }
    if (!out.empty()) out += '|';
    return out;
}

// Where the name starts (after the last separator) and where its extension starts (after
// the last dot of the name; 0 when there is none).
void SplitOffsets(const std::string& path, WORD& nameAt, WORD& extAt) {
    size_t slash = path.find_last_of("/\\");
    size_t name = slash == std::string::npos ? 0 : slash + 1;
    size_t dot = path.find_last_of('.');
    nameAt = static_cast<WORD>(std::min<size_t>(name, 0xFFFF));
    extAt = (dot == std::string::npos || dot < name) ? 0 : static_cast<WORD>(std::min<size_t>(dot + 1, 0xFFFF));
}

BOOL RunFileDialog(OPENFILENAMEA* ofn, bool open) {
    if (!ofn || ofn->lStructSize < sizeof(OPENFILENAMEA) || !ofn->lpstrFile || ofn->nMaxFile == 0) return FALSE;
    orlex::detail::InstallModalPresenters();
    std::string initial(ofn->lpstrFile, strnlen(ofn->lpstrFile, ofn->nMaxFile));
    const std::string defExt = ofn->lpstrDefExt ? ofn->lpstrDefExt : "";
    orlex::ModalRecord req{"FileDialog",
                           std::string(open ? "Open" : "Save") + "\n" + defExt + "\n" + initial + "\n" +
                               FilterToBarForm(ofn->lpstrFilter),
                           ofn->Flags, 0, {}};
    orlex::ModalAnswer answer = orlex::ModalScript::Ask(req, orlex::ModalAnswer{IDCANCEL, {}});
    if (answer.value != IDOK || answer.text.empty()) return FALSE;
    std::string path = answer.text;
    WORD nameAt = 0, extAt = 0;
    SplitOffsets(path, nameAt, extAt);
    if (extAt == 0 && !defExt.empty()) {
        path += "." + defExt;
        SplitOffsets(path, nameAt, extAt);
    }
    if (path.size() + 1 > ofn->nMaxFile) return FALSE;
    std::memcpy(ofn->lpstrFile, path.c_str(), path.size() + 1);
    ofn->nFileOffset = nameAt;
    ofn->nFileExtension = extAt;
    if (ofn->lpstrFileTitle && ofn->nMaxFileTitle > 0) {
        std::snprintf(ofn->lpstrFileTitle, ofn->nMaxFileTitle, "%s", path.c_str() + nameAt);
    }
    if (extAt && !defExt.empty() && path.compare(extAt, std::string::npos, defExt) != 0)
        ofn->Flags |= OFN_EXTENSIONDIFFERENT;
    else
        ofn->Flags &= ~OFN_EXTENSIONDIFFERENT;
    return TRUE;
}

}  // namespace

// Colour ----------------------------------------------------------------------------------

BOOL ChooseColorA(CHOOSECOLORA* cc) {
    if (!cc || cc->lStructSize < sizeof(CHOOSECOLORA)) return FALSE;
    orlex::detail::InstallModalPresenters();
    const COLORREF start = (cc->Flags & CC_RGBINIT) ? cc->rgbResult & 0xFFFFFF : 0;
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", start);
    orlex::ModalRecord req{"ColorDialog", text, cc->Flags, 0, {}};
    // The platform's dialog in its two widths: the basic colours alone, or with the mixer.
    const SIZE size{(cc->Flags & CC_FULLOPEN) ? 454 : 228, 326};
    orlex::detail::HookedDialogWindow window(cc->hwndOwner, "Color", size,
                                             (cc->Flags & CC_ENABLEHOOK) ? cc->lpfnHook : nullptr,
                                             reinterpret_cast<LPARAM>(cc));
    orlex::ModalAnswer answer = orlex::ModalScript::Ask(req, orlex::ModalAnswer{-1, {}});
    if (answer.value < 0 || answer.value > 0xFFFFFF) return FALSE;
    cc->rgbResult = static_cast<COLORREF>(answer.value);
    return TRUE;
}

CColorDialog::CColorDialog(COLORREF clrInit, DWORD flags, CWnd*) {
    m_cc.rgbResult = clrInit;
    m_cc.Flags = flags | CC_RGBINIT;
    m_cc.lpCustColors = g_customColours;
}

INT_PTR CColorDialog::DoModal() { return ChooseColorA(&m_cc) ? IDOK : IDCANCEL; }

COLORREF* CColorDialog::GetSavedCustomColors() { return g_customColours; }

// File ------------------------------------------------------------------------------------

BOOL GetOpenFileNameA(OPENFILENAMEA* ofn) { return RunFileDialog(ofn, true); }
BOOL GetSaveFileNameA(OPENFILENAMEA* ofn) { return RunFileDialog(ofn, false); }

CFileDialog::CFileDialog(BOOL open, LPCSTR defExt, LPCSTR fileName, DWORD flags, LPCSTR filter, CWnd*)
    : m_bOpenFileDialog(open) {
    m_filter = FilterToNulForm(filter);
    m_defExt = defExt ? defExt : "";
    if (fileName) std::snprintf(m_fileName, sizeof m_fileName, "%s", fileName);
    m_ofn.lpstrFilter = filter ? m_filter.c_str() : nullptr;
    m_ofn.nFilterIndex = filter ? 1 : 0;
    m_ofn.lpstrFile = m_fileName;
    m_ofn.nMaxFile = sizeof m_fileName;
    m_ofn.lpstrFileTitle = m_fileTitle;
    m_ofn.nMaxFileTitle = sizeof m_fileTitle;
    m_ofn.lpstrDefExt = defExt ? m_defExt.c_str() : nullptr;
    m_ofn.Flags = flags | OFN_EXPLORER | OFN_ENABLEHOOK;
}

INT_PTR CFileDialog::DoModal() {
    BOOL ok = m_bOpenFileDialog ? GetOpenFileNameA(&m_ofn) : GetSaveFileNameA(&m_ofn);
    return ok ? IDOK : IDCANCEL;
}

CString CFileDialog::GetPathName() const { return CString(m_ofn.lpstrFile ? m_ofn.lpstrFile : ""); }

CString CFileDialog::GetFileName() const {
    if (!m_ofn.lpstrFile) return CString();
    return CString(m_ofn.lpstrFile + m_ofn.nFileOffset);
}

CString CFileDialog::GetFileExt() const {
    if (!m_ofn.lpstrFile || m_ofn.nFileExtension == 0) return CString();
    return CString(m_ofn.lpstrFile + m_ofn.nFileExtension);
}

CString CFileDialog::GetFileTitle() const {
    CString name = GetFileName();
    int dot = name.ReverseFind('.');
    return dot < 0 ? name : name.Left(dot);
}

CString CFileDialog::GetFolderPath() const {
    if (!m_ofn.lpstrFile) return CString();
    return CString(m_ofn.lpstrFile, m_ofn.nFileOffset > 0 ? m_ofn.nFileOffset - 1 : 0);
}
