// The dialog controls' window classes and what they share.
#include "foundation/platform/gui/ctl_common_p.h"
#include "foundation/platform/gui/wnd_p.h"

#include <cstring>
#include <memory>
#include <mutex>

namespace orlex::detail {

void EnsureControlClasses() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct C {
            const char* name;
            WNDPROC proc;
            int brush;
            UINT style;
        };
        const C classes[] = {
            {"Static", StaticProc, COLOR_BTNFACE, CS_PARENTDC},
            {"Button", ButtonProc, COLOR_BTNFACE, CS_PARENTDC | CS_DBLCLKS},
            {"Edit", EditProc, COLOR_WINDOW, CS_PARENTDC | CS_DBLCLKS},
            {"ComboBox", ComboProc, COLOR_WINDOW, CS_PARENTDC | CS_DBLCLKS},
            {"ListBox", ListBoxProc, COLOR_WINDOW, CS_PARENTDC | CS_DBLCLKS},
            {"ComboLBox", ListBoxProc, COLOR_WINDOW, CS_DBLCLKS | CS_SAVEBITS},
            {"ScrollBar", ScrollBarProc, COLOR_SCROLLBAR, CS_PARENTDC | CS_DBLCLKS},
            {"msctls_trackbar32", TrackbarProc, COLOR_BTNFACE, CS_PARENTDC | CS_DBLCLKS},
            {"msctls_updown32", UpDownProc, COLOR_BTNFACE, CS_PARENTDC},
            {"tooltips_class32", ToolTipProc, COLOR_INFOBK, CS_SAVEBITS},
        };
        for (const C& c : classes) {
            WNDCLASSA wc{};
            wc.style = c.style;
            wc.lpfnWndProc = c.proc;
            wc.hCursor = LoadCursorA(nullptr, std::strcmp(c.name, "Edit") == 0 ? IDC_IBEAM : IDC_ARROW);
            wc.hbrBackground = reinterpret_cast<HBRUSH>(static_cast<INT_PTR>(c.brush + 1));
            wc.lpszClassName = c.name;
            AfxRegisterClass(&wc);
        }
        // A control reached through GetDlgItem is an object of its own class.
        RegisterTemporaryClass("Static", [] { return std::unique_ptr<CWnd>(new CStatic); });
        RegisterTemporaryClass("Button", [] { return std::unique_ptr<CWnd>(new CButton); });
        RegisterTemporaryClass("Edit", [] { return std::unique_ptr<CWnd>(new CEdit); });
        RegisterTemporaryClass("ComboBox", [] { return std::unique_ptr<CWnd>(new CComboBox); });
        RegisterTemporaryClass("ListBox", [] { return std::unique_ptr<CWnd>(new CListBox); });
        RegisterTemporaryClass("ComboLBox", [] { return std::unique_ptr<CWnd>(new CListBox); });
        RegisterTemporaryClass("ScrollBar", [] { return std::unique_ptr<CWnd>(new CScrollBar); });
        RegisterTemporaryClass("msctls_trackbar32", [] { return std::unique_ptr<CWnd>(new CSliderCtrl); });
        RegisterTemporaryClass("msctls_updown32", [] { return std::unique_ptr<CWnd>(new CSpinButtonCtrl); });
        RegisterTemporaryClass("tooltips_class32", [] { return std::unique_ptr<CWnd>(new CToolTipCtrl); });
    });
}

// Classes are also there for code that creates controls by class name alone.
namespace {
struct Registrar {
    Registrar() { EnsureControlClasses(); }
} g_registrar;
}  // namespace

LRESULT NotifyParent(HWND control, UINT code) {
    HWND parent = ::GetParent(control);
    if (!parent) return 0;
    const int id = ::GetDlgCtrlID(control);
    return ::SendMessageA(parent, WM_COMMAND, MAKEWPARAM(static_cast<WORD>(id), static_cast<WORD>(code)),
                          reinterpret_cast<LPARAM>(control));
}

DWORD StyleOf(HWND hwnd) { return static_cast<DWORD>(::GetWindowLongPtrA(hwnd, GWL_STYLE)); }

HFONT DefaultDialogFont() {
    static HFONT font = [] {
        LOGFONTA lf{};
        lf.lfHeight = -11;  // 8 points at 96 dots per inch
        lf.lfWeight = FW_NORMAL;
        lf.lfCharSet = ANSI_CHARSET;
        std::strncpy(lf.lfFaceName, "MS Sans Serif", sizeof lf.lfFaceName - 1);
        return ::CreateFontIndirectA(&lf);
    }();
    return font;
}

void Redraw(HWND hwnd) {
    ::InvalidateRect(hwnd, nullptr, TRUE);
    ::UpdateWindow(hwnd);
}

std::string WindowText(HWND hwnd) {
    int n = ::GetWindowTextLengthA(hwnd);
    std::string s(static_cast<size_t>(n > 0 ? n : 0) + 1, '\0');
    int got = ::GetWindowTextA(hwnd, s.data(), static_cast<int>(s.size()));
    s.resize(static_cast<size_t>(got > 0 ? got : 0));
    return s;
}

namespace {
// A memory context for measuring text outside painting.
struct MeasureDC {
    CDC dc;
    MeasureDC() { dc.CreateCompatibleDC(nullptr); }
};
CDC& Measurer() {
    static MeasureDC m;
    return m.dc;
}
}  // namespace

int LineHeight(HFONT font) {
    CDC& dc = Measurer();
    HGDIOBJ old = dc.SelectObject(static_cast<HGDIOBJ>(FontOr(font)));
    TEXTMETRICA tm{};
    dc.GetTextMetrics(&tm);
    dc.SelectObject(old);
    return tm.tmHeight > 0 ? tm.tmHeight : 13;
}

int TextWidth(HFONT font, const std::string& text) {
    if (text.empty()) return 0;
    CDC& dc = Measurer();
    HGDIOBJ old = dc.SelectObject(static_cast<HGDIOBJ>(FontOr(font)));
    CSize s = dc.GetTextExtent(text.c_str(), static_cast<int>(text.size()));
    dc.SelectObject(old);
    return s.cx;
}

void DrawArrow(CDC* dc, const RECT& r, int dir, COLORREF colour) {
    const int cx = (r.left + r.right) / 2, cy = (r.top + r.bottom) / 2;
    const int w = std::max(2, std::min(r.right - r.left, r.bottom - r.top) / 4);
    // A filled triangle drawn as rows of pixels so that it stays crisp at any size.
    for (int i = 0; i < w; ++i) {
        const int half = w - 1 - i;
        switch (dir) {
        // Row (or column) i from the tip: the tip is narrow, the base wide.
        case 0: dc->FillSolidRect(cx - i, cy - w / 2 + i, 2 * i + 1, 1, colour); break;
        case 1: dc->FillSolidRect(cx - half, cy - w / 2 + i, 2 * half + 1, 1, colour); break;
        case 2: dc->FillSolidRect(cx - w / 2 + i, cy - i, 1, 2 * i + 1, colour); break;
        default: dc->FillSolidRect(cx - w / 2 + i, cy - half, 1, 2 * half + 1, colour); break;
        }
    }
}

void DrawButtonFace(CDC* dc, RECT r, bool pressed) {
    dc->FillSolidRect(&r, ::GetSysColor(COLOR_BTNFACE));
    if (pressed) {
        dc->Draw3dRect(&r, ::GetSysColor(COLOR_BTNSHADOW), ::GetSysColor(COLOR_BTNSHADOW));
    } else {
        dc->Draw3dRect(&r, ::GetSysColor(COLOR_BTNHIGHLIGHT), ::GetSysColor(COLOR_3DDKSHADOW));
        ::InflateRect(&r, -1, -1);
        dc->Draw3dRect(&r, ::GetSysColor(COLOR_3DLIGHT), ::GetSysColor(COLOR_BTNSHADOW));
    }
}

}  // namespace orlex::detail
