// Dialogs: the common dialogs (colour, file, print) and, with the window layer, CDialog
// built from the library's dialog resources, its controls and dialog data exchange.
//
// Every common dialog goes through the modal script (orlex::ModalScript, modal.h), so a
// test or a headless run chooses the answer:
//   "ColorDialog": request text = initial colour as "0x00BBGGRR", style = CC_ flags;
//                  answer value = the chosen COLORREF, or -1 for Cancel (the default).
//   "FileDialog":  request text = "Open" or "Save", default extension, file name and
//                  filter ("Text (*.txt)|*.txt||"), one per line; style = OFN_ flags;
//                  answer value = IDOK with the path in text, or IDCANCEL (the default).
//   "PrintDialog": request text = the default printer's name; style = PD_ flags;
//                  answer value = IDOK (text: a printer name, empty = the default printer)
//                  or IDCANCEL (the default when nothing is scripted).
#pragma once

#include <string>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/wintypes.h"

class CWnd;

// Colour dialog ---------------------------------------------------------------------------
constexpr DWORD CC_RGBINIT = 0x0001;
constexpr DWORD CC_FULLOPEN = 0x0002;
constexpr DWORD CC_PREVENTFULLOPEN = 0x0004;
constexpr DWORD CC_SHOWHELP = 0x0008;
constexpr DWORD CC_ENABLEHOOK = 0x0010;
constexpr DWORD CC_ENABLETEMPLATE = 0x0020;
constexpr DWORD CC_SOLIDCOLOR = 0x0080;
constexpr DWORD CC_ANYCOLOR = 0x0100;

using LPCCHOOKPROC = UINT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

struct CHOOSECOLORA {
    DWORD lStructSize = sizeof(CHOOSECOLORA);
    HWND hwndOwner = nullptr;
    HWND hInstance = nullptr;
    COLORREF rgbResult = 0;
    COLORREF* lpCustColors = nullptr;  // 16 entries, read and written
    DWORD Flags = 0;
    LPARAM lCustData = 0;
    LPCCHOOKPROC lpfnHook = nullptr;   // the dialog has no window of the layer: not called
    LPCSTR lpTemplateName = nullptr;
};
using CHOOSECOLOR = CHOOSECOLORA;
using LPCHOOSECOLOR = CHOOSECOLORA*;

// Asks for a colour. TRUE with rgbResult set when one was chosen; FALSE on Cancel or a
// null/short structure. Without CC_RGBINIT the dialog starts from black.
BOOL ChooseColorA(CHOOSECOLORA* cc);
inline BOOL ChooseColor(CHOOSECOLORA* cc) { return ChooseColorA(cc); }

class CColorDialog {
public:
    // clrInit: the starting colour (CC_RGBINIT is added); parent: owner, not owned.
    explicit CColorDialog(COLORREF clrInit = 0, DWORD flags = 0, CWnd* parent = nullptr);
    virtual ~CColorDialog() = default;
    // IDOK when a colour was chosen, else IDCANCEL.
    virtual INT_PTR DoModal();
    COLORREF GetColor() const { return m_cc.rgbResult; }
    void SetCurrentColor(COLORREF c) { m_cc.rgbResult = c; }
    // The 16 custom colours shared by all colour dialogs of the process.
    static COLORREF* GetSavedCustomColors();

    CHOOSECOLOR m_cc;
};

// File dialog -----------------------------------------------------------------------------
constexpr DWORD OFN_READONLY = 0x00000001;
constexpr DWORD OFN_OVERWRITEPROMPT = 0x00000002;
constexpr DWORD OFN_HIDEREADONLY = 0x00000004;
constexpr DWORD OFN_NOCHANGEDIR = 0x00000008;
constexpr DWORD OFN_SHOWHELP = 0x00000010;
constexpr DWORD OFN_ENABLEHOOK = 0x00000020;
constexpr DWORD OFN_NOVALIDATE = 0x00000100;
constexpr DWORD OFN_ALLOWMULTISELECT = 0x00000200;
constexpr DWORD OFN_EXTENSIONDIFFERENT = 0x00000400;
constexpr DWORD OFN_PATHMUSTEXIST = 0x00000800;
constexpr DWORD OFN_FILEMUSTEXIST = 0x00001000;
constexpr DWORD OFN_CREATEPROMPT = 0x00002000;
constexpr DWORD OFN_NOREADONLYRETURN = 0x00008000;
constexpr DWORD OFN_NOTESTFILECREATE = 0x00010000;
constexpr DWORD OFN_EXPLORER = 0x00080000;
constexpr DWORD OFN_ENABLESIZING = 0x00800000;

using LPOFNHOOKPROC = UINT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

struct OPENFILENAMEA {
    DWORD lStructSize = sizeof(OPENFILENAMEA);
    HWND hwndOwner = nullptr;
    HINSTANCE hInstance = nullptr;
    LPCSTR lpstrFilter = nullptr;      // pairs of NUL-terminated strings, ended by an empty one
    LPSTR lpstrCustomFilter = nullptr;
    DWORD nMaxCustFilter = 0;
    DWORD nFilterIndex = 0;
    LPSTR lpstrFile = nullptr;         // in: initial name; out: the chosen path
    DWORD nMaxFile = 0;
    LPSTR lpstrFileTitle = nullptr;    // out: the name without its folder
    DWORD nMaxFileTitle = 0;
    LPCSTR lpstrInitialDir = nullptr;
    LPCSTR lpstrTitle = nullptr;
    DWORD Flags = 0;
    WORD nFileOffset = 0;              // out: where the name starts in lpstrFile
    WORD nFileExtension = 0;           // out: where the extension starts (after the dot), or 0
    LPCSTR lpstrDefExt = nullptr;
    LPARAM lCustData = 0;
    LPOFNHOOKPROC lpfnHook = nullptr;  // not called
    LPCSTR lpTemplateName = nullptr;
};
using OPENFILENAME = OPENFILENAMEA;
using LPOPENFILENAME = OPENFILENAMEA*;

// Ask for a file to open or a name to save under. TRUE with lpstrFile filled when chosen;
// FALSE on Cancel, or when the path doesn't fit in nMaxFile.
BOOL GetOpenFileNameA(OPENFILENAMEA* ofn);
BOOL GetSaveFileNameA(OPENFILENAMEA* ofn);
inline BOOL GetOpenFileName(OPENFILENAMEA* ofn) { return GetOpenFileNameA(ofn); }
inline BOOL GetSaveFileName(OPENFILENAMEA* ofn) { return GetSaveFileNameA(ofn); }

class CFileDialog {
public:
    // open: an open dialog, else a save dialog. defExt (without the dot) is added to a name
    // typed without extension. filter in the "Text Files (*.txt)|*.txt||" form.
    CFileDialog(BOOL open, LPCSTR defExt = nullptr, LPCSTR fileName = nullptr,
                DWORD flags = OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT, LPCSTR filter = nullptr,
                CWnd* parent = nullptr);
    virtual ~CFileDialog() = default;
    virtual INT_PTR DoModal();
    // The chosen path; its file name with extension; the extension without the dot (as
    // typed, case kept); the file name without extension.
    CString GetPathName() const;
    CString GetFileName() const;
    CString GetFileExt() const;
    CString GetFileTitle() const;
    CString GetFolderPath() const;

    OPENFILENAME m_ofn;
    BOOL m_bOpenFileDialog;

private:
    std::string m_filter;  // NUL-separated form that m_ofn points at
    std::string m_defExt;
    char m_fileName[4096] = {};
    char m_fileTitle[256] = {};
};

// Print dialog ----------------------------------------------------------------------------
constexpr DWORD PD_ALLPAGES = 0x00000000;
constexpr DWORD PD_SELECTION = 0x00000001;
constexpr DWORD PD_PAGENUMS = 0x00000002;
constexpr DWORD PD_NOSELECTION = 0x00000004;
constexpr DWORD PD_NOPAGENUMS = 0x00000008;
constexpr DWORD PD_COLLATE = 0x00000010;
constexpr DWORD PD_PRINTTOFILE = 0x00000020;
constexpr DWORD PD_PRINTSETUP = 0x00000040;
constexpr DWORD PD_NOWARNING = 0x00000080;
constexpr DWORD PD_RETURNDC = 0x00000100;
constexpr DWORD PD_RETURNIC = 0x00000200;
constexpr DWORD PD_RETURNDEFAULT = 0x00000400;
constexpr DWORD PD_SHOWHELP = 0x00000800;
constexpr DWORD PD_ENABLEPRINTHOOK = 0x00001000;
constexpr DWORD PD_ENABLESETUPHOOK = 0x00002000;
constexpr DWORD PD_USEDEVMODECOPIES = 0x00040000;
constexpr DWORD PD_DISABLEPRINTTOFILE = 0x00080000;
constexpr DWORD PD_HIDEPRINTTOFILE = 0x00100000;

using LPPRINTHOOKPROC = UINT_PTR (*)(HWND, UINT, WPARAM, LPARAM);

// The chosen printer's names: offsets (in characters) from the start of the record to the
// driver, device and port strings that follow it.
struct DEVNAMES {
    WORD wDriverOffset;
    WORD wDeviceOffset;
    WORD wOutputOffset;
    WORD wDefault;
};

// hDevMode and hDevNames are the print dialog's own records (a DEVMODE and a DEVNAMES with
// its strings), valid while the CPrintDialog that filled them lives; hDC is the caller's
// to delete (DeleteDC).
struct tagPDA {
    DWORD lStructSize = sizeof(tagPDA);
    HWND hwndOwner = nullptr;
    HGLOBAL hDevMode = nullptr;
    HGLOBAL hDevNames = nullptr;
    HDC hDC = nullptr;
    DWORD Flags = 0;
    WORD nFromPage = 0;
    WORD nToPage = 0;
    WORD nMinPage = 0;
    WORD nMaxPage = 0;
    WORD nCopies = 1;
    HINSTANCE hInstance = nullptr;
    LPARAM lCustData = 0;
    LPPRINTHOOKPROC lpfnPrintHook = nullptr;  // not called
    LPPRINTHOOKPROC lpfnSetupHook = nullptr;
    LPCSTR lpPrintTemplateName = nullptr;
    LPCSTR lpSetupTemplateName = nullptr;
    HGLOBAL hPrintTemplate = nullptr;
    HGLOBAL hSetupTemplate = nullptr;
};
using PRINTDLGA = tagPDA;
using PRINTDLG = tagPDA;
using LPPRINTDLG = tagPDA*;

class CPrintDialog {
public:
    // printSetup: the set-up form of the dialog; flags: PD_ flags; parent not owned.
    explicit CPrintDialog(BOOL printSetup, DWORD flags = PD_ALLPAGES | PD_USEDEVMODECOPIES | PD_NOPAGENUMS |
                                                         PD_HIDEPRINTTOFILE | PD_NOSELECTION,
                          CWnd* parent = nullptr);
    virtual ~CPrintDialog();
    CPrintDialog(const CPrintDialog&) = delete;
    CPrintDialog& operator=(const CPrintDialog&) = delete;
    // IDOK or IDCANCEL. With PD_RETURNDC, m_pd.hDC is a printer context afterwards.
    virtual INT_PTR DoModal();
    // Fills the records of the default printer without showing anything (PD_RETURNDEFAULT);
    // with PD_RETURNDC also makes its context. FALSE when there is no printer.
    BOOL GetDefaults();
    // The printer context made by DoModal/GetDefaults (the caller deletes it), or a new one
    // for the chosen printer. Null when nothing was chosen.
    HDC GetPrinterDC() const;
    // Settings of the chosen printer (null before DoModal/GetDefaults succeeded).
    DEVMODE* GetDevMode() const;
    CString GetDeviceName() const;
    CString GetDriverName() const;
    CString GetPortName() const;
    int GetCopies() const { return m_pd.nCopies; }
    BOOL PrintAll() const { return (m_pd.Flags & (PD_SELECTION | PD_PAGENUMS)) == 0; }

    PRINTDLG m_pd;

private:
    DEVMODE m_devMode{};
    std::string m_names;  // DEVNAMES record followed by its three strings
};

// Shows the print dialog (or, with PD_RETURNDEFAULT, takes the default printer silently).
// TRUE when a printer was chosen; hDevMode/hDevNames then point at process-wide records
// that stay valid until the next call, and hDC is made with PD_RETURNDC.
BOOL PrintDlgA(PRINTDLGA* pd);
inline BOOL PrintDlg(PRINTDLGA* pd) { return PrintDlgA(pd); }
