// Static texts and buttons: push, default push, check boxes, radio buttons and group boxes.
#include <algorithm>
#include <vector>

#include "foundation/platform/gui/ctl_common_p.h"

namespace orlex::detail {
namespace {

struct StaticState {
    HFONT font = nullptr;
};
StateTable<StaticState> g_statics;

struct ButtonState {
    HFONT font = nullptr;
    int check = 0;
    bool pushed = false;    // drawn pressed
    bool tracking = false;  // the left button went down on it and is held
    bool spaceDown = false;
    bool focus = false;
    HANDLE image = nullptr;
    UINT imageType = IMAGE_BITMAP;  // of image, as BM_SETIMAGE was told
};
StateTable<ButtonState> g_buttons;

constexpr int kBox = 13;  // check box and radio circle size

void PaintStatic(HWND hwnd) {
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    dc->FillSolidRect(&r, ::GetSysColor(COLOR_BTNFACE));
    const DWORD style = StyleOf(hwnd);
    HGDIOBJ oldFont = dc->SelectObject(static_cast<HGDIOBJ>(FontOr(g_statics.Get(hwnd).font)));
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(::GetSysColor(::IsWindowEnabled(hwnd) ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT));
    UINT format = DT_WORDBREAK;
    switch (style & 0x1F) {
    case SS_CENTER: format = DT_CENTER | DT_WORDBREAK; break;
    case SS_RIGHT: format = DT_RIGHT | DT_WORDBREAK; break;
    case SS_LEFTNOWORDWRAP: format = DT_LEFT | DT_SINGLELINE; break;
    default: break;
    }
    if (style & SS_NOPREFIX) format |= DT_NOPREFIX;
    const std::string text = WindowText(hwnd);
    dc->DrawText(text.c_str(), static_cast<int>(text.size()), &r, format);
    dc->SelectObject(oldFont);
    ::EndPaint(hwnd, &ps);
}

UINT Kind(HWND hwnd) { return StyleOf(hwnd) & BS_TYPEMASK; }
bool IsCheckKind(UINT k) { return k == BS_CHECKBOX || k == BS_AUTOCHECKBOX || k == BS_3STATE || k == BS_AUTO3STATE; }
bool IsRadioKind(UINT k) { return k == BS_RADIOBUTTON || k == BS_AUTORADIOBUTTON; }

// The auto radio buttons of the group: from the control with WS_GROUP at or before it to
// the control before the next WS_GROUP.
void UncheckGroupExcept(HWND self) {
    HWND first = self;
    while (!(StyleOf(first) & WS_GROUP)) {
        HWND prev = ::GetWindow(first, GW_HWNDPREV);
        if (!prev) break;
        first = prev;
    }
    for (HWND h = first; h; h = ::GetWindow(h, GW_HWNDNEXT)) {
        if (h != first && (StyleOf(h) & WS_GROUP)) break;
        if (h == self) continue;
        char cls[16] = {};
        ::GetClassNameA(h, cls, sizeof cls);
        if (std::string(cls) == "Button" && (StyleOf(h) & BS_TYPEMASK) == BS_AUTORADIOBUTTON)
            ::SendMessageA(h, BM_SETCHECK, BST_UNCHECKED, 0);
    }
}

void Click(HWND hwnd) {
    ButtonState& s = g_buttons.Get(hwnd);
    switch (Kind(hwnd)) {
    case BS_AUTOCHECKBOX: s.check = s.check ? 0 : 1; break;
    case BS_AUTO3STATE: s.check = (s.check + 1) % 3; break;
    case BS_AUTORADIOBUTTON:
        s.check = 1;
        UncheckGroupExcept(hwnd);
        break;
    default: break;
    }
    Redraw(hwnd);
    NotifyParent(hwnd, BN_CLICKED);
}

// Size of the button's picture; false when there is none to draw (no picture, a handle of
// another kind, or a style that shows text).
bool ImageSize(const ButtonState& s, DWORD style, SIZE* size) {
    if (!s.image || !(style & (BS_ICON | BS_BITMAP))) return false;
    if (s.imageType == IMAGE_ICON) return ::GetIconSize(static_cast<HICON>(s.image), size) != FALSE;
    BITMAP bm{};
    if (::GetObjectA(s.image, sizeof bm, &bm) != sizeof bm) return false;
    size->cx = bm.bmWidth;
    size->cy = bm.bmHeight;
    return true;
}

// Where the picture has ink, row by row: an icon where it covers, a bitmap where it is not
// white (as the platform turns a picture monochrome).
std::vector<bool> PictureInk(CDC* dc, const ButtonState& s, SIZE size) {
    std::vector<bool> ink;
    HDC mem = ::CreateCompatibleDC(dc->GetSafeHdc());
    if (!mem) return ink;
    HBITMAP canvas = ::CreateCompatibleBitmap(dc->GetSafeHdc(), size.cx, size.cy);
    HGDIOBJ oldCanvas = canvas ? ::SelectObject(mem, canvas) : nullptr;
    if (oldCanvas) {
        const RECT all{0, 0, size.cx, size.cy};
        ::FillRect(mem, &all, static_cast<HBRUSH>(::GetStockObject(WHITE_BRUSH)));
        if (s.imageType == IMAGE_ICON) {
            ::DrawIconEx(mem, 0, 0, static_cast<HICON>(s.image), size.cx, size.cy, 0, nullptr, DI_MASK);
        } else if (HDC src = ::CreateCompatibleDC(mem)) {
            if (HGDIOBJ old = ::SelectObject(src, s.image)) {
                ::BitBlt(mem, 0, 0, size.cx, size.cy, src, 0, 0, SRCCOPY);
                ::SelectObject(src, old);
            }
            ::DeleteDC(src);
        }
        ink.resize(static_cast<size_t>(size.cx) * size.cy);
        for (int y = 0; y < size.cy; ++y)
            for (int x = 0; x < size.cx; ++x) ink[static_cast<size_t>(y) * size.cx + x] = (::GetPixel(mem, x, y) & 0xFFFFFF) != 0xFFFFFF;
        ::SelectObject(mem, oldCanvas);
    }
    if (canvas) ::DeleteObject(canvas);
    ::DeleteDC(mem);
    return ink;
}

// A disabled button's picture is embossed: its ink in the highlight colour one pixel down
// and right, then in the shadow colour in place.
void DrawDisabledImage(CDC* dc, const ButtonState& s, SIZE size, int x, int y) {
    const std::vector<bool> ink = PictureInk(dc, s, size);
    if (ink.empty()) return;
    const COLORREF colours[2] = {::GetSysColor(COLOR_BTNHIGHLIGHT), ::GetSysColor(COLOR_BTNSHADOW)};
    for (int pass = 0; pass < 2; ++pass) {
        const int off = pass == 0 ? 1 : 0;
        for (int j = 0; j < size.cy; ++j)
            for (int i = 0; i < size.cx; ++i)
                if (ink[static_cast<size_t>(j) * size.cx + i]) dc->FillSolidRect(x + i + off, y + j + off, 1, 1, colours[pass]);
    }
}

// Draws the picture with its top-left corner at (x, y). A bitmap is copied as it is; an icon
// blends over the face.
void DrawImage(CDC* dc, const ButtonState& s, SIZE size, int x, int y, bool enabled) {
    if (!enabled) {
        DrawDisabledImage(dc, s, size, x, y);
        return;
    }
    if (s.imageType == IMAGE_ICON) {
        ::DrawIconEx(dc->GetSafeHdc(), x, y, static_cast<HICON>(s.image), size.cx, size.cy, 0, nullptr, DI_NORMAL);
        return;
    }
    HDC mem = ::CreateCompatibleDC(dc->GetSafeHdc());
    if (!mem) return;
    HGDIOBJ old = ::SelectObject(mem, s.image);
    if (old) {
        ::BitBlt(dc->GetSafeHdc(), x, y, size.cx, size.cy, mem, 0, 0, SRCCOPY);
        ::SelectObject(mem, old);
    }
    ::DeleteDC(mem);
}

// The face's content, text or picture, centred in r.
void DrawFaceContent(CDC* dc, const ButtonState& s, DWORD style, RECT r, const std::string& text, bool enabled) {
    SIZE size{};
    if (ImageSize(s, style, &size)) {
        DrawImage(dc, s, size, (r.left + r.right - size.cx) / 2, (r.top + r.bottom - size.cy) / 2, enabled);
        return;
    }
    dc->DrawText(text.c_str(), static_cast<int>(text.size()), &r, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

void PaintButton(HWND hwnd) {
    ButtonState& s = g_buttons.Get(hwnd);
    PAINTSTRUCT ps;
    CDC* dc = CDC::FromHandle(::BeginPaint(hwnd, &ps));
    RECT r;
    ::GetClientRect(hwnd, &r);
    const DWORD style = StyleOf(hwnd);
    const UINT kind = style & BS_TYPEMASK;
    const bool enabled = ::IsWindowEnabled(hwnd);
    HFONT font = FontOr(s.font);
    HGDIOBJ oldFont = dc->SelectObject(static_cast<HGDIOBJ>(font));
    dc->SetBkMode(TRANSPARENT);
    dc->SetTextColor(::GetSysColor(enabled ? COLOR_BTNTEXT : COLOR_GRAYTEXT));
    const std::string text = WindowText(hwnd);
    const COLORREF face = ::GetSysColor(COLOR_BTNFACE);

    if (kind == BS_GROUPBOX) {
        // Only the frame and the caption: the controls of the group show through.
        const int h = LineHeight(font);
        RECT frame = r;
        frame.top += h / 2;
        dc->Draw3dRect(&frame, ::GetSysColor(COLOR_BTNSHADOW), ::GetSysColor(COLOR_BTNHIGHLIGHT));
        ::InflateRect(&frame, -1, -1);
        dc->Draw3dRect(&frame, ::GetSysColor(COLOR_BTNHIGHLIGHT), ::GetSysColor(COLOR_BTNSHADOW));
        if (!text.empty()) {
            RECT tr{r.left + 8, r.top, r.left + 8 + TextWidth(font, text) + 4, r.top + h};
            dc->FillSolidRect(&tr, face);
            tr.left += 2;
            dc->DrawText(text.c_str(), static_cast<int>(text.size()), &tr, DT_LEFT | DT_SINGLELINE);
        }
    } else if (IsCheckKind(kind) || IsRadioKind(kind)) {
        if (style & BS_PUSHLIKE) {
            DrawButtonFace(dc, r, s.pushed || s.check == 1);
            RECT tr = r;
            if (s.pushed || s.check == 1) ::OffsetRect(&tr, 1, 1);
            DrawFaceContent(dc, s, style, tr, text, enabled);
        } else {
            dc->FillSolidRect(&r, face);
            const int top = (r.top + r.bottom - kBox) / 2;
            const bool leftText = (style & BS_LEFTTEXT) != 0;
            RECT box{leftText ? r.right - kBox : r.left, top, 0, top + kBox};
            box.right = box.left + kBox;
            const COLORREF well = ::GetSysColor(s.pushed || !enabled ? COLOR_BTNFACE : COLOR_WINDOW);
            const COLORREF mark = ::GetSysColor(enabled ? COLOR_WINDOWTEXT : COLOR_GRAYTEXT);
            if (IsRadioKind(kind)) {
                CBrush wellBrush(well);
                CPen edge(PS_SOLID, 1, ::GetSysColor(COLOR_BTNSHADOW));
                CBrush* ob = dc->SelectObject(&wellBrush);
                CPen* op = dc->SelectObject(&edge);
                dc->Ellipse(box.left, box.top, box.right - 1, box.bottom - 1);
                if (s.check) {
                    CBrush dot(mark);
                    CPen dotPen(PS_SOLID, 1, mark);
                    dc->SelectObject(&dot);
                    dc->SelectObject(&dotPen);
                    dc->Ellipse(box.left + 4, box.top + 4, box.right - 5, box.bottom - 5);
                }
                dc->SelectObject(ob);
                dc->SelectObject(op);
            } else {
                dc->FillSolidRect(&box, s.check == 2 ? face : well);
                dc->Draw3dRect(&box, ::GetSysColor(COLOR_BTNSHADOW), ::GetSysColor(COLOR_BTNHIGHLIGHT));
                if (s.check) {
                    // A check mark of columns three pixels high: down to the right, then up.
                    static const int kDrop[7] = {2, 3, 4, 3, 2, 1, 0};
                    const COLORREF c = s.check == 2 ? ::GetSysColor(COLOR_BTNSHADOW) : mark;
                    for (int i = 0; i < 7; ++i) dc->FillSolidRect(box.left + 3 + i, box.top + 3 + kDrop[i], 1, 3, c);
                }
            }
            RECT tr = r;
            if (leftText) tr.right = box.left - 4;
            else tr.left = box.right + 4;
            SIZE size{};
            if (ImageSize(s, style, &size)) {
                // The picture stands where the text would, on the box's side of the rest.
                DrawImage(dc, s, size, leftText ? tr.right - size.cx : tr.left, (r.top + r.bottom - size.cy) / 2, enabled);
            } else {
                dc->DrawText(text.c_str(), static_cast<int>(text.size()), &tr,
                         (leftText ? DT_RIGHT : DT_LEFT) | DT_VCENTER | DT_SINGLELINE);
            }
            if (s.focus && !text.empty() && !ImageSize(s, style, &size)) {
                RECT fr{tr.left - 1, (r.top + r.bottom - LineHeight(font)) / 2 - 1, 0, 0};
                fr.right = fr.left + TextWidth(font, text) + 2;
                fr.bottom = fr.top + LineHeight(font) + 2;
                dc->DrawFocusRect(&fr);
            }
        }
    } else {
        const bool isDefault = kind == BS_DEFPUSHBUTTON;
        RECT face3d = r;
        if (isDefault) {
            dc->Draw3dRect(&r, ::GetSysColor(COLOR_WINDOWFRAME), ::GetSysColor(COLOR_WINDOWFRAME));
            ::InflateRect(&face3d, -1, -1);
        }
        DrawButtonFace(dc, face3d, s.pushed);
        RECT tr = face3d;
        if (s.pushed) ::OffsetRect(&tr, 1, 1);
        DrawFaceContent(dc, s, style, tr, text, enabled);
        if (s.focus) {
            RECT fr = face3d;
            ::InflateRect(&fr, -3, -3);
            dc->DrawFocusRect(&fr);
        }
    }
    dc->SelectObject(oldFont);
    ::EndPaint(hwnd, &ps);
}

}  // namespace

LRESULT StaticProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    switch (msg) {
    case WM_NCDESTROY:
        g_statics.Erase(hwnd);
        break;
    case WM_PAINT:
        PaintStatic(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        g_statics.Get(hwnd).font = reinterpret_cast<HFONT>(wp);
        if (lp) Redraw(hwnd);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(g_statics.Get(hwnd).font);
    case WM_SETTEXT: {
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        Redraw(hwnd);
        return r;
    }
    case WM_ENABLE:
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE:
        return DLGC_STATIC;
    case WM_LBUTTONDOWN:
        if (StyleOf(hwnd) & SS_NOTIFY) NotifyParent(hwnd, STN_CLICKED);
        return 0;
    case WM_NCHITTEST:
        // A static lets the pointer through to what lies under it unless it notifies.
        if (!(StyleOf(hwnd) & SS_NOTIFY)) return HTTRANSPARENT;
        break;
    default:
        break;
    }
    return ::DefWindowProcA(hwnd, msg, wp, lp);
}

LRESULT ButtonProc(HWND hwnd, UINT msg, WPARAM wp, LPARAM lp) {
    switch (msg) {
    case WM_NCDESTROY:
        g_buttons.Erase(hwnd);
        break;
    case WM_PAINT:
        PaintButton(hwnd);
        return 0;
    case WM_ERASEBKGND:
        return 1;
    case WM_SETFONT:
        g_buttons.Get(hwnd).font = reinterpret_cast<HFONT>(wp);
        if (lp) Redraw(hwnd);
        return 0;
    case WM_GETFONT:
        return reinterpret_cast<LRESULT>(g_buttons.Get(hwnd).font);
    case WM_SETTEXT: {
        LRESULT r = ::DefWindowProcA(hwnd, msg, wp, lp);
        Redraw(hwnd);
        return r;
    }
    case WM_ENABLE:
        Redraw(hwnd);
        return 0;
    case WM_GETDLGCODE: {
        const UINT k = Kind(hwnd);
        if (k == BS_GROUPBOX) return DLGC_STATIC;
        if (IsRadioKind(k)) return DLGC_BUTTON | DLGC_RADIOBUTTON;
        if (IsCheckKind(k)) return DLGC_BUTTON;
        return DLGC_BUTTON | (k == BS_DEFPUSHBUTTON ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    }
    case WM_NCHITTEST:
        if (Kind(hwnd) == BS_GROUPBOX) return HTTRANSPARENT;
        break;
    case WM_SETFOCUS:
        g_buttons.Get(hwnd).focus = true;
        Redraw(hwnd);
        return 0;
    case WM_KILLFOCUS: {
        ButtonState& s = g_buttons.Get(hwnd);
        s.focus = false;
        s.spaceDown = false;
        if (!s.tracking) s.pushed = false;
        Redraw(hwnd);
        return 0;
    }
    case WM_LBUTTONDOWN:
    case WM_LBUTTONDBLCLK: {
        if (Kind(hwnd) == BS_GROUPBOX) return 0;
        ButtonState& s = g_buttons.Get(hwnd);
        ::SetCapture(hwnd);
        if (::GetFocus() != hwnd) ::SetFocus(hwnd);
        s.tracking = true;
        s.pushed = true;
        Redraw(hwnd);
        return 0;
    }
    case WM_MOUSEMOVE: {
        ButtonState& s = g_buttons.Get(hwnd);
        if (!s.tracking) return 0;
        RECT r;
        ::GetClientRect(hwnd, &r);
        const bool inside = ::PtInRect(&r, PointOf(lp));
        if (inside != s.pushed) {
            s.pushed = inside;
            Redraw(hwnd);
        }
        return 0;
    }
    case WM_LBUTTONUP: {
        ButtonState& s = g_buttons.Get(hwnd);
        if (!s.tracking) return 0;
        const bool clicked = s.pushed;
        s.tracking = false;
        s.pushed = false;
        if (::GetCapture() == hwnd) ::ReleaseCapture();
        Redraw(hwnd);
        if (clicked) Click(hwnd);
        return 0;
    }
    case WM_CAPTURECHANGED: {
        ButtonState* s = g_buttons.Find(hwnd);
        if (s && s->tracking && reinterpret_cast<HWND>(lp) != hwnd) {
            s->tracking = false;
            s->pushed = false;
            Redraw(hwnd);
        }
        return 0;
    }
    case WM_KEYDOWN:
        if (wp == VK_SPACE) {
            ButtonState& s = g_buttons.Get(hwnd);
            s.spaceDown = true;
            s.pushed = true;
            Redraw(hwnd);
            return 0;
        }
        break;
    case WM_KEYUP:
        if (wp == VK_SPACE) {
            ButtonState& s = g_buttons.Get(hwnd);
            if (s.spaceDown) {
                s.spaceDown = false;
                s.pushed = false;
                Redraw(hwnd);
                Click(hwnd);
            }
            return 0;
        }
        break;
    case WM_CHAR:
        if (wp == ' ') return 0;
        break;
    case BM_GETCHECK: {
        const UINT k = Kind(hwnd);
        return (IsCheckKind(k) || IsRadioKind(k)) ? g_buttons.Get(hwnd).check : 0;
    }
    case BM_SETCHECK: {
        const UINT k = Kind(hwnd);
        ButtonState& s = g_buttons.Get(hwnd);
        int v = static_cast<int>(wp);
        if (v == 2 && !(k == BS_3STATE || k == BS_AUTO3STATE)) v = 1;
        if (v < 0 || v > 2) v = 0;
        if (s.check != v) {
            s.check = v;
            Redraw(hwnd);
        }
        return 0;
    }
    case BM_GETSTATE: {
        ButtonState& s = g_buttons.Get(hwnd);
        return s.check | (s.pushed ? BST_PUSHED : 0) | (s.focus ? BST_FOCUS : 0);
    }
    case BM_SETSTATE: {
        ButtonState& s = g_buttons.Get(hwnd);
        if (s.pushed != (wp != 0)) {
            s.pushed = wp != 0;
            Redraw(hwnd);
        }
        return 0;
    }
    case BM_SETSTYLE: {
        const DWORD style = (StyleOf(hwnd) & ~BS_TYPEMASK) | (static_cast<DWORD>(wp) & BS_TYPEMASK);
        ::SetWindowLongPtrA(hwnd, GWL_STYLE, static_cast<LONG_PTR>(style));
        if (lp) Redraw(hwnd);
        return 0;
    }
    case BM_CLICK:
        if (::IsWindowEnabled(hwnd)) Click(hwnd);
        return 0;
    case BM_SETIMAGE: {
        // The button keeps the handle, not a copy: the caller still owns and destroys it.
        if (wp != IMAGE_BITMAP && wp != IMAGE_ICON) return 0;
        ButtonState& s = g_buttons.Get(hwnd);
        HANDLE old = s.image;
        s.image = reinterpret_cast<HANDLE>(lp);
        s.imageType = static_cast<UINT>(wp);
        Redraw(hwnd);
        return reinterpret_cast<LRESULT>(old);
    }
    case BM_GETIMAGE:
        if (wp != IMAGE_BITMAP && wp != IMAGE_ICON) return 0;
        return reinterpret_cast<LRESULT>(g_buttons.Get(hwnd).image);
    default:
        break;
    }
    return ::DefWindowProcA(hwnd, msg, wp, lp);
}

}  // namespace orlex::detail

// Wrappers ----------------------------------------------------------------------------------

using namespace orlex::detail;

BOOL CStatic::Create(LPCSTR text, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("Static", text, style, rect, parent, id);
}
LRESULT CStatic::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return StaticProc(m_hWnd, m, w, l); }

BOOL CButton::Create(LPCSTR caption, DWORD style, const RECT& rect, CWnd* parent, UINT id) {
    EnsureControlClasses();
    return CWnd::Create("Button", caption, style, rect, parent, id);
}
LRESULT CButton::DefWindowProc(UINT m, WPARAM w, LPARAM l) { return ButtonProc(m_hWnd, m, w, l); }
int CButton::GetCheck() const { return static_cast<int>(SendMessage(BM_GETCHECK)); }
void CButton::SetCheck(int check) { SendMessage(BM_SETCHECK, static_cast<WPARAM>(check)); }
UINT CButton::GetState() const { return static_cast<UINT>(SendMessage(BM_GETSTATE)); }
void CButton::SetState(BOOL highlight) { SendMessage(BM_SETSTATE, highlight ? 1 : 0); }
UINT CButton::GetButtonStyle() const { return static_cast<UINT>(GetStyle() & 0xFFFF); }
void CButton::SetButtonStyle(UINT style, BOOL redraw) { SendMessage(BM_SETSTYLE, style, redraw); }
HICON CButton::SetIcon(HICON icon) {
    return reinterpret_cast<HICON>(SendMessage(BM_SETIMAGE, IMAGE_ICON, reinterpret_cast<LPARAM>(icon)));
}
HICON CButton::GetIcon() const { return reinterpret_cast<HICON>(SendMessage(BM_GETIMAGE, IMAGE_ICON)); }
HBITMAP CButton::SetBitmap(HBITMAP bitmap) {
    return reinterpret_cast<HBITMAP>(SendMessage(BM_SETIMAGE, IMAGE_BITMAP, reinterpret_cast<LPARAM>(bitmap)));
}
HBITMAP CButton::GetBitmap() const { return reinterpret_cast<HBITMAP>(SendMessage(BM_GETIMAGE, IMAGE_BITMAP)); }
