// Dialog data exchange: fields to controls and back, with the framework's validation
// messages. A failure marks the exchange (no exceptions), shows the message once and puts
// the focus on the control.
#include <cerrno>
#include <cfloat>
#include <cstdio>
#include <cstdlib>

#include "foundation/platform/gui/ctl_common_p.h"

using orlex::detail::WindowText;

namespace {

constexpr const char* kParseInt = "Please enter an integer.";
constexpr const char* kParseUInt = "Please enter a positive integer.";
constexpr const char* kParseReal = "Please enter a number.";

// Shows the framework's validation message and fails the exchange.
void FailWith(CDataExchange* dx, const std::string& text) {
    AfxMessageBox(text.c_str(), MB_ICONEXCLAMATION);
    dx->Fail();
}

std::string Trimmed(const std::string& s) {
    size_t b = s.find_first_not_of(" \t"), e = s.find_last_not_of(" \t");
    return b == std::string::npos ? std::string() : s.substr(b, e - b + 1);
}

// Whole-text parses: the number must fill the text, blanks around it allowed.
bool ParseSigned(const std::string& text, long long lo, long long hi, long long& out) {
    const std::string t = Trimmed(text);
    if (t.empty()) return false;
    errno = 0;
    char* end = nullptr;
    long long v = std::strtoll(t.c_str(), &end, 10);
    if (*end || errno == ERANGE || v < lo || v > hi) return false;
    out = v;
    return true;
}

bool ParseUnsigned(const std::string& text, unsigned long long hi, unsigned long long& out) {
    const std::string t = Trimmed(text);
    if (t.empty() || t[0] == '-') return false;
    errno = 0;
    char* end = nullptr;
    unsigned long long v = std::strtoull(t.c_str(), &end, 10);
    if (*end || errno == ERANGE || v > hi) return false;
    out = v;
    return true;
}

bool ParseReal(const std::string& text, double& out) {
    const std::string t = Trimmed(text);
    if (t.empty()) return false;
    char* end = nullptr;
    double v = std::strtod(t.c_str(), &end);
    if (*end) return false;
    out = v;
    return true;
}

void SetText(HWND h, const char* text) {
    if (h) ::SetWindowTextA(h, text);
}

template <class T>
void ExchangeSigned(CDataExchange* dx, int id, T& value, long long lo, long long hi, const char* format) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        long long v = 0;
        if (!ParseSigned(WindowText(h), lo, hi, v)) return FailWith(dx, kParseInt);
        value = static_cast<T>(v);
    } else {
        char buf[32];
        std::snprintf(buf, sizeof buf, format, static_cast<long long>(value));
        SetText(h, buf);
    }
}

template <class T>
void ExchangeUnsigned(CDataExchange* dx, int id, T& value, unsigned long long hi) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        unsigned long long v = 0;
        if (!ParseUnsigned(WindowText(h), hi, v)) return FailWith(dx, kParseUInt);
        value = static_cast<T>(v);
    } else {
        char buf[32];
        std::snprintf(buf, sizeof buf, "%llu", static_cast<unsigned long long>(value));
        SetText(h, buf);
    }
}

std::string FormatBetween(const char* kind, const char* lo, const char* hi) {
    return std::string("Please enter ") + kind + " between " + lo + " and " + hi + ".";
}

}  // namespace

CDataExchange::CDataExchange(CWnd* dlg, BOOL saveAndValidate) : m_bSaveAndValidate(saveAndValidate), m_pDlgWnd(dlg) {}

HWND CDataExchange::PrepareCtrl(int id) {
    HWND h = m_pDlgWnd ? ::GetDlgItem(m_pDlgWnd->m_hWnd, id) : nullptr;
    m_idLastControl = h;
    m_bEditLastControl = FALSE;
    return h;
}

HWND CDataExchange::PrepareEditCtrl(int id) {
    HWND h = PrepareCtrl(id);
    m_bEditLastControl = TRUE;
    return h;
}

void CDataExchange::Fail() {
    m_bFailed = TRUE;
    if (!m_bSaveAndValidate || !m_idLastControl) return;
    ::SetFocus(m_idLastControl);
    if (m_bEditLastControl) ::SendMessageA(m_idLastControl, EM_SETSEL, 0, -1);
}

void DDX_Text(CDataExchange* dx, int id, int& value) { ExchangeSigned(dx, id, value, INT32_MIN, INT32_MAX, "%lld"); }
void DDX_Text(CDataExchange* dx, int id, long& value) { ExchangeSigned(dx, id, value, INT32_MIN, INT32_MAX, "%lld"); }
void DDX_Text(CDataExchange* dx, int id, short& value) { ExchangeSigned(dx, id, value, INT16_MIN, INT16_MAX, "%lld"); }
void DDX_Text(CDataExchange* dx, int id, UINT& value) { ExchangeUnsigned(dx, id, value, UINT32_MAX); }
void DDX_Text(CDataExchange* dx, int id, unsigned long& value) { ExchangeUnsigned(dx, id, value, UINT32_MAX); }

void DDX_Text(CDataExchange* dx, int id, BYTE& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        unsigned long long v = 0;
        if (!ParseUnsigned(WindowText(h), UINT32_MAX, v)) return FailWith(dx, kParseUInt);
        if (v > 255) return FailWith(dx, FormatBetween("an integer", "0", "255"));
        value = static_cast<BYTE>(v);
    } else {
        char buf[8];
        std::snprintf(buf, sizeof buf, "%u", static_cast<unsigned>(value));
        SetText(h, buf);
    }
}

void DDX_Text(CDataExchange* dx, int id, double& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        double v = 0;
        if (!ParseReal(WindowText(h), v)) return FailWith(dx, kParseReal);
        value = v;
    } else {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.*g", DBL_DIG, value);
        SetText(h, buf);
    }
}

void DDX_Text(CDataExchange* dx, int id, float& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        double v = 0;
        if (!ParseReal(WindowText(h), v) || v > FLT_MAX || v < -FLT_MAX) return FailWith(dx, kParseReal);
        value = static_cast<float>(v);
    } else {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.*g", FLT_DIG, static_cast<double>(value));
        SetText(h, buf);
    }
}

void DDX_Text(CDataExchange* dx, int id, CString& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareEditCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) value = WindowText(h).c_str();
    else SetText(h, value);
}

void DDX_Check(CDataExchange* dx, int id, int& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        value = static_cast<int>(::SendMessageA(h, BM_GETCHECK, 0, 0));
    } else {
        if (value < 0 || value > 2) value = 0;
        ::SendMessageA(h, BM_SETCHECK, static_cast<WPARAM>(value), 0);
    }
}

void DDX_Radio(CDataExchange* dx, int id, int& value) {
    if (dx->m_bFailed) return;
    HWND first = dx->PrepareCtrl(id);
    if (!first) return;
    if (dx->m_bSaveAndValidate) value = -1;
    int index = 0;
    for (HWND h = first; h; h = ::GetWindow(h, GW_HWNDNEXT)) {
        if (h != first && (orlex::detail::StyleOf(h) & WS_GROUP)) break;
        if (!(::SendMessageA(h, WM_GETDLGCODE, 0, 0) & DLGC_RADIOBUTTON)) continue;
        if (dx->m_bSaveAndValidate) {
            if (::SendMessageA(h, BM_GETCHECK, 0, 0) == BST_CHECKED) value = index;
        } else {
            ::SendMessageA(h, BM_SETCHECK, index == value ? BST_CHECKED : BST_UNCHECKED, 0);
        }
        ++index;
    }
}

void DDX_CBIndex(CDataExchange* dx, int id, int& index) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) index = static_cast<int>(::SendMessageA(h, CB_GETCURSEL, 0, 0));
    else ::SendMessageA(h, CB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void DDX_CBString(CDataExchange* dx, int id, CString& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        value = WindowText(h).c_str();
    } else if (::SendMessageA(h, CB_SELECTSTRING, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.GetString())) ==
               CB_ERR) {
        SetText(h, value);
    }
}

void DDX_CBStringExact(CDataExchange* dx, int id, CString& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) {
        value = WindowText(h).c_str();
        return;
    }
    LRESULT i = ::SendMessageA(h, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(value.GetString()));
    if (i == CB_ERR) SetText(h, value);
    else ::SendMessageA(h, CB_SETCURSEL, static_cast<WPARAM>(i), 0);
}

void DDX_LBIndex(CDataExchange* dx, int id, int& index) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) index = static_cast<int>(::SendMessageA(h, LB_GETCURSEL, 0, 0));
    else ::SendMessageA(h, LB_SETCURSEL, static_cast<WPARAM>(index), 0);
}

void DDX_Scroll(CDataExchange* dx, int id, int& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) value = static_cast<int>(::SendMessageA(h, SBM_GETPOS, 0, 0));
    else ::SendMessageA(h, SBM_SETPOS, static_cast<WPARAM>(value), TRUE);
}

void DDX_Slider(CDataExchange* dx, int id, int& value) {
    if (dx->m_bFailed) return;
    HWND h = dx->PrepareCtrl(id);
    if (!h) return;
    if (dx->m_bSaveAndValidate) value = static_cast<int>(::SendMessageA(h, TBM_GETPOS, 0, 0));
    else ::SendMessageA(h, TBM_SETPOS, TRUE, value);
}

void DDX_Control(CDataExchange* dx, int id, CWnd& control) {
    if (dx->m_bFailed || control.m_hWnd) return;
    HWND h = dx->PrepareCtrl(id);
    if (h) control.SubclassWindow(h);
}

void DDV_MinMaxInt(CDataExchange* dx, int value, int minVal, int maxVal) {
    if (dx->m_bFailed || !dx->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    FailWith(dx, FormatBetween("an integer", std::to_string(minVal).c_str(), std::to_string(maxVal).c_str()));
}

void DDV_MinMaxLong(CDataExchange* dx, long value, long minVal, long maxVal) {
    if (dx->m_bFailed || !dx->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    FailWith(dx, FormatBetween("an integer", std::to_string(minVal).c_str(), std::to_string(maxVal).c_str()));
}

void DDV_MinMaxUInt(CDataExchange* dx, UINT value, UINT minVal, UINT maxVal) {
    if (dx->m_bFailed || !dx->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    FailWith(dx, FormatBetween("an integer", std::to_string(minVal).c_str(), std::to_string(maxVal).c_str()));
}

static void RealRange(CDataExchange* dx, double value, double minVal, double maxVal, int digits) {
    if (dx->m_bFailed || !dx->m_bSaveAndValidate || (value >= minVal && value <= maxVal)) return;
    char lo[64], hi[64];
    std::snprintf(lo, sizeof lo, "%.*g", digits, minVal);
    std::snprintf(hi, sizeof hi, "%.*g", digits, maxVal);
    FailWith(dx, FormatBetween("a number", lo, hi));
}

void DDV_MinMaxDouble(CDataExchange* dx, const double& value, double minVal, double maxVal) {
    RealRange(dx, value, minVal, maxVal, DBL_DIG);
}

void DDV_MinMaxFloat(CDataExchange* dx, const float& value, float minVal, float maxVal) {
    RealRange(dx, value, minVal, maxVal, FLT_DIG);
}

void DDV_MaxChars(CDataExchange* dx, const CString& value, int count) {
    if (dx->m_bFailed) return;
    if (!dx->m_bSaveAndValidate) {
        if (dx->m_idLastControl) ::SendMessageA(dx->m_idLastControl, EM_LIMITTEXT, static_cast<WPARAM>(count), 0);
        return;
    }
    if (value.GetLength() > count)
        FailWith(dx, "Please enter no more than " + std::to_string(count) + " characters.");
}

// Any window may exchange data with its child controls (dialogs, and controls such as
// the colour bar that keep fields of their own).
BOOL CWnd::UpdateData(BOOL saveAndValidate) {
    if (!m_hWnd) return TRUE;
    CDataExchange dx(this, saveAndValidate);
    DoDataExchange(&dx);
    return dx.m_bFailed ? FALSE : TRUE;
}
