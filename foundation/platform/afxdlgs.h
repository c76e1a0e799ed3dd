// Dialogs: CDialog built from the library's dialog resources, the dialog controls drawn
// through the layer (static, button, edit, combo box, list box, scroll bar, trackbar,
// up-down, tooltip), dialog data exchange, and the common dialogs (colour, file, print).
//
// Controls are window classes of the layer ("Static", "Button", "Edit", "ComboBox",
// "ListBox", "ScrollBar", "msctls_trackbar32", "msctls_updown32", "tooltips_class32"):
// their behaviour is in the class's window procedure and their state belongs to the
// window, so a control made by a dialog template and one made by CButton::Create behave
// alike, and a CEdit subclassing a template's edit keeps its text.
//
// Scripting a modal dialog: orlex::SetModalLoopHook (afxwin.h) runs a function inside the
// dialog's modal loop after OnInitDialog, with the dialog as argument. It may type into
// edits, click buttons through the test harness's input simulation, read controls, and
// end the dialog (EndDialog, or a click on OK/Cancel). When it returns without ending the
// dialog, a headless loop with nothing left to do ends with IDCANCEL. Each DoModal also
// logs a record of kind "Dialog" (text: the caption, style: the template id).
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
#include "foundation/platform/afxwin.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/wintypes.h"


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
    LPCCHOOKPROC lpfnHook = nullptr;   // with CC_ENABLEHOOK: the dialog window's messages
    LPCSTR lpTemplateName = nullptr;
};
using CHOOSECOLOR = CHOOSECOLORA;
using LPCHOOSECOLOR = CHOOSECOLORA*;

// Asks for a colour. TRUE with rgbResult set when one was chosen; FALSE on Cancel or a
// null/short structure. Without CC_RGBINIT the dialog starts from black. With
// CC_ENABLEHOOK the hook gets the dialog's window first (WM_INITDIALOG, lParam = cc), also
// when the answer is scripted; the window is gone when ChooseColor returns.
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

// hDevMode and hDevNames are global memory blocks (a DEVMODE; a DEVNAMES with its strings):
// a DEVMODE given in hDevMode starts the chosen printer's settings; the blocks handed back
// are the caller's to free (CPrintDialog frees its own). hDC is the caller's to delete.
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
    LPPRINTHOOKPROC lpfnPrintHook = nullptr;  // with PD_ENABLEPRINTHOOK: the dialog window's messages
    LPPRINTHOOKPROC lpfnSetupHook = nullptr;  // the same with PD_PRINTSETUP and PD_ENABLESETUPHOOK
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
    // Settings of the chosen printer, in the dialog's locked block (null before
    // DoModal/GetDefaults succeeded).
    DEVMODE* GetDevMode() const;
    CString GetDeviceName() const;
    CString GetDriverName() const;
    CString GetPortName() const;
    int GetCopies() const { return m_pd.nCopies; }
    BOOL PrintAll() const { return (m_pd.Flags & (PD_SELECTION | PD_PAGENUMS)) == 0; }

    PRINTDLG m_pd;
};

// Shows the print dialog (or, with PD_RETURNDEFAULT, takes the default printer silently).
// TRUE when a printer was chosen; hDevMode/hDevNames then hold its settings and names, and
// hDC is made with PD_RETURNDC. An enabled hook gets the dialog's window first
// (WM_INITDIALOG, lParam = pd), also when the answer is scripted.
BOOL PrintDlgA(PRINTDLGA* pd);
inline BOOL PrintDlg(PRINTDLGA* pd) { return PrintDlgA(pd); }

// -----------------------------------------------------------------------------------------
// Control styles
constexpr DWORD DS_SETFONT = 0x40;
constexpr DWORD DS_MODALFRAME = 0x80;
constexpr DWORD DS_CENTER = 0x0800;
constexpr DWORD SS_LEFT = 0x0;
constexpr DWORD SS_CENTER = 0x1;
constexpr DWORD SS_RIGHT = 0x2;
constexpr DWORD SS_LEFTNOWORDWRAP = 0xC;
constexpr DWORD SS_NOPREFIX = 0x80;
constexpr DWORD SS_NOTIFY = 0x100;
constexpr DWORD SS_SUNKEN = 0x1000;
constexpr DWORD BS_PUSHBUTTON = 0x0;
constexpr DWORD BS_DEFPUSHBUTTON = 0x1;
constexpr DWORD BS_CHECKBOX = 0x2;
constexpr DWORD BS_AUTOCHECKBOX = 0x3;
constexpr DWORD BS_RADIOBUTTON = 0x4;
constexpr DWORD BS_3STATE = 0x5;
constexpr DWORD BS_AUTO3STATE = 0x6;
constexpr DWORD BS_GROUPBOX = 0x7;
constexpr DWORD BS_OWNERDRAW = 0xB;
constexpr DWORD BS_AUTORADIOBUTTON = 0x9;
constexpr DWORD BS_TYPEMASK = 0xF;
constexpr DWORD BS_LEFTTEXT = 0x20;
constexpr DWORD BS_ICON = 0x40;
constexpr DWORD BS_BITMAP = 0x80;
constexpr DWORD BS_PUSHLIKE = 0x1000;
constexpr DWORD ES_LEFT = 0x0;
constexpr DWORD ES_CENTER = 0x1;
constexpr DWORD ES_RIGHT = 0x2;
constexpr DWORD ES_MULTILINE = 0x4;
constexpr DWORD ES_UPPERCASE = 0x8;
constexpr DWORD ES_LOWERCASE = 0x10;
constexpr DWORD ES_PASSWORD = 0x20;
constexpr DWORD ES_AUTOVSCROLL = 0x40;
constexpr DWORD ES_AUTOHSCROLL = 0x80;
constexpr DWORD ES_NOHIDESEL = 0x100;
constexpr DWORD ES_READONLY = 0x800;
constexpr DWORD ES_WANTRETURN = 0x1000;
constexpr DWORD ES_NUMBER = 0x2000;
constexpr DWORD CBS_SIMPLE = 0x1;
constexpr DWORD CBS_DROPDOWN = 0x2;
constexpr DWORD CBS_DROPDOWNLIST = 0x3;
constexpr DWORD CBS_AUTOHSCROLL = 0x40;
constexpr DWORD CBS_SORT = 0x100;
constexpr DWORD CBS_HASSTRINGS = 0x200;
constexpr DWORD LBS_NOTIFY = 0x1;
constexpr DWORD LBS_SORT = 0x2;
constexpr DWORD LBS_NOINTEGRALHEIGHT = 0x100;
constexpr DWORD LBS_STANDARD = 0xA00003;
constexpr DWORD SBS_HORZ = 0x0;
constexpr DWORD SBS_VERT = 0x1;
constexpr DWORD TBS_AUTOTICKS = 0x1;
constexpr DWORD TBS_VERT = 0x2;
constexpr DWORD TBS_HORZ = 0x0;
constexpr DWORD TBS_BOTH = 0x8;
constexpr DWORD TBS_NOTICKS = 0x10;
constexpr DWORD UDS_WRAP = 0x1;
constexpr DWORD UDS_SETBUDDYINT = 0x2;
constexpr DWORD UDS_ALIGNRIGHT = 0x4;
constexpr DWORD UDS_ALIGNLEFT = 0x8;
constexpr DWORD UDS_AUTOBUDDY = 0x10;
constexpr DWORD UDS_ARROWKEYS = 0x20;
constexpr DWORD UDS_HORZ = 0x40;
constexpr DWORD UDS_NOTHOUSANDS = 0x80;
constexpr DWORD TTS_ALWAYSTIP = 0x1;
constexpr DWORD TTS_NOPREFIX = 0x2;

// Control messages ------------------------------------------------------------------------
constexpr UINT BM_GETCHECK = 0x00F0;
constexpr UINT BM_SETCHECK = 0x00F1;
constexpr UINT BM_GETSTATE = 0x00F2;
constexpr UINT BM_SETSTATE = 0x00F3;
constexpr UINT BM_SETSTYLE = 0x00F4;
constexpr UINT BM_CLICK = 0x00F5;
constexpr UINT BM_GETIMAGE = 0x00F6;
constexpr UINT BM_SETIMAGE = 0x00F7;
constexpr WPARAM BST_UNCHECKED = 0;
constexpr WPARAM BST_CHECKED = 1;
constexpr WPARAM BST_INDETERMINATE = 2;
constexpr WPARAM BST_PUSHED = 4;
constexpr WPARAM BST_FOCUS = 8;

constexpr UINT EM_GETSEL = 0x00B0;
constexpr UINT EM_SETSEL = 0x00B1;
constexpr UINT EM_SCROLLCARET = 0x00B7;
constexpr UINT EM_GETMODIFY = 0x00B8;
constexpr UINT EM_SETMODIFY = 0x00B9;
constexpr UINT EM_GETLINECOUNT = 0x00BA;
constexpr UINT EM_LINESCROLL = 0x00B6;
constexpr UINT EM_LINEINDEX = 0x00BB;
constexpr UINT EM_LINELENGTH = 0x00C1;
constexpr UINT EM_LINEFROMCHAR = 0x00C9;
constexpr UINT EM_GETFIRSTVISIBLELINE = 0x00CE;
constexpr UINT EM_REPLACESEL = 0x00C2;
constexpr UINT EM_LIMITTEXT = 0x00C5;
constexpr UINT EM_SETLIMITTEXT = EM_LIMITTEXT;
constexpr UINT EM_CANUNDO = 0x00C6;
constexpr UINT EM_UNDO = 0x00C7;
constexpr UINT EM_EMPTYUNDOBUFFER = 0x00CD;
constexpr UINT EM_SETREADONLY = 0x00CF;
constexpr UINT EM_GETLIMITTEXT = 0x00D5;

constexpr UINT CB_GETEDITSEL = 0x0140;
constexpr UINT CB_LIMITTEXT = 0x0141;
constexpr UINT CB_SETEDITSEL = 0x0142;
constexpr UINT CB_ADDSTRING = 0x0143;
constexpr UINT CB_DELETESTRING = 0x0144;
constexpr UINT CB_GETCOUNT = 0x0146;
constexpr UINT CB_GETCURSEL = 0x0147;
constexpr UINT CB_GETLBTEXT = 0x0148;
constexpr UINT CB_GETLBTEXTLEN = 0x0149;
constexpr UINT CB_INSERTSTRING = 0x014A;
constexpr UINT CB_RESETCONTENT = 0x014B;
constexpr UINT CB_FINDSTRING = 0x014C;
constexpr UINT CB_SELECTSTRING = 0x014D;
constexpr UINT CB_SETCURSEL = 0x014E;
constexpr UINT CB_SHOWDROPDOWN = 0x014F;
constexpr UINT CB_GETITEMDATA = 0x0150;
constexpr UINT CB_SETITEMDATA = 0x0151;
constexpr UINT CB_GETDROPPEDCONTROLRECT = 0x0152;
constexpr UINT CB_SETITEMHEIGHT = 0x0153;
constexpr UINT CB_GETITEMHEIGHT = 0x0154;
constexpr UINT CB_GETDROPPEDSTATE = 0x0157;
constexpr UINT CB_FINDSTRINGEXACT = 0x0158;
constexpr UINT CB_SETHORIZONTALEXTENT = 0x015E;
constexpr UINT CB_GETDROPPEDWIDTH = 0x015F;
constexpr UINT CB_SETDROPPEDWIDTH = 0x0160;
constexpr int CB_OKAY = 0;
constexpr int CB_ERR = -1;

constexpr UINT LB_ADDSTRING = 0x0180;
constexpr UINT LB_INSERTSTRING = 0x0181;
constexpr UINT LB_DELETESTRING = 0x0182;
constexpr UINT LB_RESETCONTENT = 0x0184;
constexpr UINT LB_SETCURSEL = 0x0186;
constexpr UINT LB_GETCURSEL = 0x0188;
constexpr UINT LB_GETTEXT = 0x0189;
constexpr UINT LB_GETTEXTLEN = 0x018A;
constexpr UINT LB_GETCOUNT = 0x018B;
constexpr UINT LB_SELECTSTRING = 0x018C;
constexpr UINT LB_GETTOPINDEX = 0x018E;
constexpr UINT LB_FINDSTRING = 0x018F;
constexpr UINT LB_SETTOPINDEX = 0x0197;
constexpr UINT LB_GETITEMDATA = 0x0199;
constexpr UINT LB_SETITEMDATA = 0x019A;
constexpr UINT LB_GETITEMHEIGHT = 0x01A1;
constexpr UINT LB_FINDSTRINGEXACT = 0x01A2;
constexpr int LB_OKAY = 0;
constexpr int LB_ERR = -1;

constexpr UINT SBM_SETPOS = 0x00E0;
constexpr UINT SBM_GETPOS = 0x00E1;
constexpr UINT SBM_SETRANGE = 0x00E2;
constexpr UINT SBM_SETRANGEREDRAW = 0x00E6;
constexpr UINT SBM_GETRANGE = 0x00E3;
constexpr UINT SBM_SETSCROLLINFO = 0x00E9;
constexpr UINT SBM_GETSCROLLINFO = 0x00EA;

constexpr UINT TBM_GETPOS = WM_USER;
constexpr UINT TBM_GETRANGEMIN = WM_USER + 1;
constexpr UINT TBM_GETRANGEMAX = WM_USER + 2;
constexpr UINT TBM_SETTIC = WM_USER + 4;
constexpr UINT TBM_SETPOS = WM_USER + 5;
constexpr UINT TBM_SETRANGE = WM_USER + 6;
constexpr UINT TBM_SETRANGEMIN = WM_USER + 7;
constexpr UINT TBM_SETRANGEMAX = WM_USER + 8;
constexpr UINT TBM_SETTICFREQ = WM_USER + 20;
constexpr UINT TBM_SETPAGESIZE = WM_USER + 21;
constexpr UINT TBM_GETPAGESIZE = WM_USER + 22;
constexpr UINT TBM_SETLINESIZE = WM_USER + 23;
constexpr UINT TBM_GETLINESIZE = WM_USER + 24;
constexpr UINT TB_LINEUP = 0;
constexpr UINT TB_LINEDOWN = 1;
constexpr UINT TB_PAGEUP = 2;
constexpr UINT TB_PAGEDOWN = 3;
constexpr UINT TB_THUMBPOSITION = 4;
constexpr UINT TB_THUMBTRACK = 5;
constexpr UINT TB_TOP = 6;
constexpr UINT TB_BOTTOM = 7;
constexpr UINT TB_ENDTRACK = 8;

constexpr UINT UDM_SETRANGE = WM_USER + 101;
constexpr UINT UDM_GETRANGE = WM_USER + 102;
constexpr UINT UDM_SETPOS = WM_USER + 103;
constexpr UINT UDM_GETPOS = WM_USER + 104;
constexpr UINT UDM_SETBUDDY = WM_USER + 105;
constexpr UINT UDM_GETBUDDY = WM_USER + 106;
constexpr UINT UDM_SETRANGE32 = WM_USER + 111;
constexpr UINT UDM_GETRANGE32 = WM_USER + 112;
constexpr UINT UDM_SETPOS32 = WM_USER + 113;
constexpr UINT UDM_GETPOS32 = WM_USER + 114;
constexpr UINT UDN_DELTAPOS = UINT(-722);
// WM_NOTIFY of an up-down control before it moves: a non-zero answer refuses the move.
struct NMUPDOWN {
    NMHDR hdr;
    int iPos;
    int iDelta;
};

constexpr UINT TTM_ACTIVATE = WM_USER + 1;
constexpr UINT TTM_SETDELAYTIME = WM_USER + 3;
constexpr UINT TTM_ADDTOOLA = WM_USER + 4;
constexpr UINT TTM_DELTOOLA = WM_USER + 5;
constexpr UINT TTM_RELAYEVENT = WM_USER + 7;
constexpr UINT TTM_GETTOOLINFOA = WM_USER + 8;
constexpr UINT TTM_SETTOOLINFOA = WM_USER + 9;
constexpr UINT TTM_GETTEXTA = WM_USER + 11;
constexpr UINT TTM_UPDATETIPTEXTA = WM_USER + 12;
constexpr UINT TTM_TRACKACTIVATE = WM_USER + 17;
constexpr UINT TTM_TRACKPOSITION = WM_USER + 18;
constexpr UINT TTM_GETDELAYTIME = WM_USER + 21;
constexpr UINT TTM_SETMAXTIPWIDTH = WM_USER + 24;
constexpr UINT TTM_POP = WM_USER + 28;
constexpr UINT TTM_ADDTOOL = TTM_ADDTOOLA;
constexpr UINT TTM_DELTOOL = TTM_DELTOOLA;
constexpr UINT TTM_GETTOOLINFO = TTM_GETTOOLINFOA;
constexpr UINT TTM_SETTOOLINFO = TTM_SETTOOLINFOA;
constexpr UINT TTM_UPDATETIPTEXT = TTM_UPDATETIPTEXTA;
constexpr UINT TTF_IDISHWND = 0x0001;
constexpr UINT TTF_CENTERTIP = 0x0002;
constexpr UINT TTF_SUBCLASS = 0x0010;
constexpr UINT TTF_TRACK = 0x0020;
constexpr UINT TTF_ABSOLUTE = 0x0080;
constexpr UINT TTF_TRANSPARENT = 0x0100;
constexpr DWORD TTDT_AUTOMATIC = 0;
constexpr DWORD TTDT_RESHOW = 1;
constexpr DWORD TTDT_AUTOPOP = 2;
constexpr DWORD TTDT_INITIAL = 3;
constexpr UINT TTN_GETDISPINFOA = UINT(-520);
constexpr UINT TTN_NEEDTEXTA = TTN_GETDISPINFOA;
constexpr UINT TTN_NEEDTEXT = TTN_NEEDTEXTA;
constexpr UINT TTN_SHOW = UINT(-521);
constexpr UINT TTN_POP = UINT(-522);
#define LPSTR_TEXTCALLBACKA (reinterpret_cast<LPSTR>(static_cast<INT_PTR>(-1)))
#define LPSTR_TEXTCALLBACK LPSTR_TEXTCALLBACKA

// A tool of a tooltip control: a window (TTF_IDISHWND: uId is its HWND) or a rectangle of
// a window with an id; the text is copied, or a string resource id (hinst set), or
// LPSTR_TEXTCALLBACK to ask the window with TTN_NEEDTEXT each time.
struct TOOLINFOA {
    UINT cbSize = sizeof(TOOLINFOA);
    UINT uFlags = 0;
    HWND hwnd = nullptr;
    UINT_PTR uId = 0;
    RECT rect{0, 0, 0, 0};
    HINSTANCE hinst = nullptr;
    LPSTR lpszText = nullptr;
    LPARAM lParam = 0;
    void* lpReserved = nullptr;
};
using TOOLINFO = TOOLINFOA;
using LPTOOLINFO = TOOLINFOA*;

// TTN_NEEDTEXT: the owner fills lpszText (a pointer it keeps alive), or szText, or gives a
// string id in lpszText with hinst.
struct NMTTDISPINFOA {
    NMHDR hdr;
    LPSTR lpszText;
    char szText[80];
    HINSTANCE hinst;
    UINT uFlags;
    LPARAM lParam;
};
using NMTTDISPINFO = NMTTDISPINFOA;
using TOOLTIPTEXTA = NMTTDISPINFOA;
using TOOLTIPTEXT = NMTTDISPINFOA;

// The inner edit of a drop-down combo box.
constexpr int ORLEX_COMBO_EDIT_ID = 1001;

// Dialog helpers on any window that has children with ids.
BOOL SetDlgItemTextA(HWND dlg, int id, LPCSTR text);
UINT GetDlgItemTextA(HWND dlg, int id, LPSTR buffer, int size);
// Writes the number in decimal (signed or unsigned).
BOOL SetDlgItemInt(HWND dlg, int id, UINT value, BOOL isSigned);
// Reads the control's text as a decimal number (leading and trailing blanks allowed);
// *translated tells whether it was one. 0 when not.
UINT GetDlgItemInt(HWND dlg, int id, BOOL* translated, BOOL isSigned);
BOOL CheckDlgButton(HWND dlg, int id, UINT check);
UINT IsDlgButtonChecked(HWND dlg, int id);
// Checks `check` and unchecks the other buttons with ids first..last.
BOOL CheckRadioButton(HWND dlg, int first, int last, int check);
// The next (or previous) control with WS_TABSTOP after ctl, wrapping around; ctl null
// starts at the first.
HWND GetNextDlgTabItem(HWND dlg, HWND ctl, BOOL previous);
// Handles the dialog keys of a message for the dialog (Tab, Enter, Escape, arrows in radio
// groups); TRUE when it took the message.
BOOL IsDialogMessageA(HWND dlg, MSG* msg);
inline BOOL IsDialogMessage(HWND dlg, MSG* msg) { return IsDialogMessageA(dlg, msg); }
BOOL EndDialog(HWND dlg, INT_PTR result);
BOOL MapDialogRect(HWND dlg, RECT* rect);

// Data exchange ---------------------------------------------------------------------------
class CDialog;

// One exchange between the fields of a dialog and its controls. A failed validation marks
// the exchange failed (there are no exceptions): later DDX_/DDV_ calls of the same
// exchange do nothing, UpdateData returns FALSE and the failing control gets the focus.
class CDataExchange {
public:
    CDataExchange(CWnd* dlg, BOOL saveAndValidate);
    BOOL m_bSaveAndValidate;
    CWnd* m_pDlgWnd;
    HWND m_idLastControl = nullptr;
    BOOL m_bEditLastControl = FALSE;
    BOOL m_bFailed = FALSE;
    // The control with that id (made the last control); null when missing.
    HWND PrepareCtrl(int id);
    HWND PrepareEditCtrl(int id);
    // Marks the exchange failed and gives the last control the focus (its text selected).
    void Fail();
};

// int, UINT, long, DWORD, short, BYTE, double, float and CString with an edit (or any
// control with text). Saving: text that isn't a number shows "Please enter an integer."
// (or "Please enter a positive integer." / "Please enter a number.") and fails.
void DDX_Text(CDataExchange* dx, int id, int& value);
void DDX_Text(CDataExchange* dx, int id, UINT& value);
void DDX_Text(CDataExchange* dx, int id, long& value);
void DDX_Text(CDataExchange* dx, int id, unsigned long& value);
void DDX_Text(CDataExchange* dx, int id, short& value);
void DDX_Text(CDataExchange* dx, int id, BYTE& value);
void DDX_Text(CDataExchange* dx, int id, double& value);
void DDX_Text(CDataExchange* dx, int id, float& value);
void DDX_Text(CDataExchange* dx, int id, CString& value);
void DDX_Check(CDataExchange* dx, int id, int& value);
// value: index of the checked button in the group that starts with control id (-1: none).
void DDX_Radio(CDataExchange* dx, int id, int& value);
void DDX_CBIndex(CDataExchange* dx, int id, int& index);
void DDX_CBString(CDataExchange* dx, int id, CString& value);
void DDX_CBStringExact(CDataExchange* dx, int id, CString& value);
void DDX_LBIndex(CDataExchange* dx, int id, int& index);
void DDX_Scroll(CDataExchange* dx, int id, int& value);
void DDX_Slider(CDataExchange* dx, int id, int& value);
// Attaches the control object to the dialog's control (once).
void DDX_Control(CDataExchange* dx, int id, CWnd& control);
// Range checks, when saving: "Please enter an integer between %1 and %2." /
// "Please enter a number between %1 and %2." / "Please enter no more than %1 characters."
void DDV_MinMaxInt(CDataExchange* dx, int value, int minVal, int maxVal);
void DDV_MinMaxUInt(CDataExchange* dx, UINT value, UINT minVal, UINT maxVal);
void DDV_MinMaxLong(CDataExchange* dx, long value, long minVal, long maxVal);
void DDV_MinMaxDouble(CDataExchange* dx, const double& value, double minVal, double maxVal);
void DDV_MinMaxFloat(CDataExchange* dx, const float& value, float minVal, float maxVal);
void DDV_MaxChars(CDataExchange* dx, const CString& value, int count);

// CDialog ---------------------------------------------------------------------------------
// A dialog made from a template of the library's resources (or the running resource
// chain). Modal: DoModal creates it owned by the parent's top-level window, disables that
// window, runs the modal loop and destroys the dialog; it returns EndDialog's result, or
// -1 when the template is missing. Modeless: Create(id, parent) makes it (hidden unless
// the template has WS_VISIBLE); DestroyWindow ends it.
class CDialog : public CWnd {
public:
    CDialog();
    explicit CDialog(UINT templateId, CWnd* parent = nullptr);
    explicit CDialog(LPCSTR templateName, CWnd* parent = nullptr);
    ~CDialog() override;

    virtual INT_PTR DoModal();
    virtual BOOL Create(UINT templateId, CWnd* parent = nullptr);
    BOOL Create(LPCSTR templateName, CWnd* parent = nullptr);
    // Ends a modal dialog with the result (DoModal returns it); a modeless dialog is hidden.
    void EndDialog(int result);

    // Called at WM_INITDIALOG: the default exchanges data into the controls
    // (UpdateData(FALSE)). TRUE gives the focus to the first tab stop.
    virtual BOOL OnInitDialog();
    // Enter and the OK button: UpdateData(TRUE) and, when it succeeds, EndDialog(IDOK).
    virtual void OnOK();
    // Escape and the Cancel button: EndDialog(IDCANCEL).
    virtual void OnCancel();
    void DoDataExchange(CDataExchange* dx) override {}
    BOOL PreTranslateMessage(MSG* msg) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // Helpers on the dialog's controls.
    void SetDlgItemText(int id, LPCSTR text);
    int GetDlgItemText(int id, LPSTR buffer, int size) const;
    int GetDlgItemText(int id, CString& text) const;
    void SetDlgItemInt(int id, UINT value, BOOL isSigned = TRUE);
    UINT GetDlgItemInt(int id, BOOL* translated = nullptr, BOOL isSigned = TRUE) const;
    void CheckDlgButton(int id, UINT check);
    UINT IsDlgButtonChecked(int id) const;
    void CheckRadioButton(int first, int last, int check);
    int GetCheckedRadioButton(int first, int last) const;
    CWnd* GetNextDlgTabItem(CWnd* ctl, BOOL previous = FALSE) const;
    void NextDlgCtrl() const;
    void PrevDlgCtrl() const;
    void GotoDlgCtrl(CWnd* ctl);
    void MapDialogRect(LPRECT rect) const;
    // The push button that Enter presses (its id), IDOK when there is none.
    DWORD GetDefID() const;
    void SetDefID(UINT id);

    UINT m_nIDHelp = 0;
    LPCSTR m_lpszTemplateName = nullptr;
    UINT m_nTemplateId = 0;
    CWnd* m_pParentWnd = nullptr;

protected:
    // Builds the window and its controls from the template; FALSE when it is missing.
    BOOL CreateFromTemplate(CWnd* parent, bool modal);
    void RestoreFocus();
    bool m_modal = false;
    HFONT m_hFont = nullptr;  // the template's font, shared by its controls; owned
    int m_baseX = 6, m_baseY = 13;
    HWND m_hWndOwnerDisabled = nullptr;  // re-enabled when the modal loop ends
    HWND m_hWndLastFocus = nullptr;      // the control that gets the focus back on activation

    DECLARE_MESSAGE_MAP()
};

// Controls --------------------------------------------------------------------------------
// Thin wrappers: the behaviour is the window class's; unhandled messages of a derived class
// go to it through DefWindowProc.
class CStatic : public CWnd {
public:
    BOOL Create(LPCSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id = 0xFFFF);
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

class CButton : public CWnd {
public:
    BOOL Create(LPCSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetCheck() const;
    void SetCheck(int check);
    UINT GetState() const;
    void SetState(BOOL highlight);
    UINT GetButtonStyle() const;
    void SetButtonStyle(UINT style, BOOL redraw = TRUE);
    HICON SetIcon(HICON icon);
    HICON GetIcon() const;
    HBITMAP SetBitmap(HBITMAP bitmap);
    HBITMAP GetBitmap() const;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

class CEdit : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    // Selection as character positions: start, end (end -1: to the end of the text).
    void SetSel(int start, int end, BOOL noScroll = FALSE);
    void SetSel(DWORD selection, BOOL noScroll = FALSE);
    DWORD GetSel() const;
    void GetSel(int& start, int& end) const;
    void ReplaceSel(LPCSTR text, BOOL canUndo = FALSE);
    void LimitText(int max = 0);
    void SetLimitText(UINT max) { LimitText(static_cast<int>(max)); }
    UINT GetLimitText() const;
    BOOL SetReadOnly(BOOL readOnly = TRUE);
    BOOL CanUndo() const;
    BOOL Undo();
    void EmptyUndoBuffer();
    BOOL GetModify() const;
    void SetModify(BOOL modified = TRUE);
    void Clear();
    void Copy();
    void Cut();
    void Paste();
    // Lines of a multi-line edit (a line break "\r\n" counts two positions). Line and
    // position -1 mean the caret's (the selection's start for LineFromChar).
    int GetLineCount() const;
    int LineIndex(int line = -1) const;         // position of the line's start; -1 past the last
    int LineFromChar(int pos = -1) const;
    int LineLength(int pos = -1) const;         // of the line holding pos, without its break
    int GetFirstVisibleLine() const;
    BOOL LineScroll(int lines, int chars = 0);  // chars: not scrolled sideways
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

class CComboBox : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetCount() const;
    int GetCurSel() const;
    int SetCurSel(int select);
    int AddString(LPCSTR text);
    int InsertString(int index, LPCSTR text);
    int DeleteString(UINT index);
    void ResetContent();
    int GetLBText(int index, LPSTR text) const;
    void GetLBText(int index, CString& text) const;
    int GetLBTextLen(int index) const;
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    int FindString(int startAfter, LPCSTR text) const;
    int FindStringExact(int startAfter, LPCSTR text) const;
    int SelectString(int startAfter, LPCSTR text);
    void ShowDropDown(BOOL show = TRUE);
    BOOL GetDroppedState() const;
    int SetItemHeight(int index, UINT height);
    int GetItemHeight(int index) const;
    int SetDroppedWidth(UINT width);
    int GetDroppedWidth() const;
    void SetHorizontalExtent(UINT extent);
    BOOL LimitText(int max);
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

class CListBox : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetCount() const;
    int GetCurSel() const;
    int SetCurSel(int select);
    int AddString(LPCSTR text);
    int InsertString(int index, LPCSTR text);
    int DeleteString(UINT index);
    void ResetContent();
    int GetText(int index, LPSTR text) const;
    void GetText(int index, CString& text) const;
    int GetTextLen(int index) const;
    DWORD_PTR GetItemData(int index) const;
    int SetItemData(int index, DWORD_PTR data);
    int FindString(int startAfter, LPCSTR text) const;
    int FindStringExact(int startAfter, LPCSTR text) const;
    int SelectString(int startAfter, LPCSTR text);
    int GetTopIndex() const;
    int SetTopIndex(int index);
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// A scroll bar control; it moves only when told to (the parent answers its WM_HSCROLL /
// WM_VSCROLL by setting the position).
class CScrollBar : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetScrollPos() const;
    int SetScrollPos(int pos, BOOL redraw = TRUE);
    void GetScrollRange(int* minPos, int* maxPos) const;
    void SetScrollRange(int minPos, int maxPos, BOOL redraw = TRUE);
    BOOL SetScrollInfo(LPSCROLLINFO info, BOOL redraw = TRUE);
    BOOL GetScrollInfo(LPSCROLLINFO info, UINT mask = SIF_ALL);
    int GetScrollLimit();
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// A trackbar: it moves its thumb itself and tells the parent by WM_HSCROLL (WM_VSCROLL when
// vertical) with TB_ codes and the position.
class CSliderCtrl : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetPos() const;
    void SetPos(int pos);
    void GetRange(int& minPos, int& maxPos) const;
    int GetRangeMin() const;
    int GetRangeMax() const;
    void SetRange(int minPos, int maxPos, BOOL redraw = FALSE);
    void SetRangeMin(int minPos, BOOL redraw = FALSE);
    void SetRangeMax(int maxPos, BOOL redraw = FALSE);
    void SetTicFreq(int freq);
    BOOL SetTic(int pos);
    int SetPageSize(int size);
    int GetPageSize() const;
    int SetLineSize(int size);
    int GetLineSize() const;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// An up-down control: a press on either half asks the parent with UDN_DELTAPOS, moves,
// writes the buddy (UDS_SETBUDDYINT) and sends WM_VSCROLL (WM_HSCROLL with UDS_HORZ).
class CSpinButtonCtrl : public CWnd {
public:
    BOOL Create(DWORD style, const RECT& rect, CWnd* parent, UINT id);
    int GetPos() const;
    int SetPos(int pos);
    int GetPos32(BOOL* error = nullptr) const;
    int SetPos32(int pos);
    void SetRange(short lower, short upper);
    void SetRange32(int lower, int upper);
    DWORD GetRange() const;
    void GetRange32(int& lower, int& upper) const;
    CWnd* SetBuddy(CWnd* buddy);
    CWnd* GetBuddy() const;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};

// A tooltip control: a small top-level window of the layer that shows a tool's text after
// the initial delay while the pointer rests on it (mouse messages passed by RelayEvent, or
// seen by itself for tools added with TTF_SUBCLASS, as AddTool of a whole window does), and
// hides after the auto-pop delay, on a click, or on Pop. Tracking tools (TTF_TRACK) show
// at TTM_TRACKPOSITION while TTM_TRACKACTIVATE is on.
class CToolTipCtrl : public CWnd {
public:
    BOOL Create(CWnd* parent, DWORD style = 0);
    // text: the tool's text, or LPSTR_TEXTCALLBACK; rect/id for a part of the window.
    BOOL AddTool(CWnd* wnd, LPCSTR text = LPSTR_TEXTCALLBACK, LPCRECT rect = nullptr, UINT_PTR id = 0);
    // The text of string resource `textId`.
    BOOL AddTool(CWnd* wnd, UINT textId, LPCRECT rect = nullptr, UINT_PTR id = 0);
    void DelTool(CWnd* wnd, UINT_PTR id = 0);
    void UpdateTipText(LPCSTR text, CWnd* wnd, UINT_PTR id = 0);
    void GetText(CString& text, CWnd* wnd, UINT_PTR id = 0) const;
    void Activate(BOOL activate);
    void RelayEvent(LPMSG msg);
    void SetDelayTime(UINT delayMs);
    void SetDelayTime(DWORD which, int delayMs);
    int GetDelayTime(DWORD which) const;
    int SetMaxTipWidth(int width);
    void Pop();
    // The tool's text shown now, empty when hidden.
    CString GetShownText() const;
    LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
};
