// Private: what the dialog controls share: their window classes, per-window state, the
// notifications they send and the look they are drawn with.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>

#include "foundation/platform/afxdlgs.h"

namespace orlex::detail {

// Registers the control classes once ("Static", "Button", "Edit", "ComboBox", "ListBox",
// "ComboLBox", "ScrollBar", "msctls_trackbar32", "msctls_updown32", "tooltips_class32").
void EnsureControlClasses();

LRESULT StaticProc(HWND, UINT, WPARAM, LPARAM);
LRESULT ButtonProc(HWND, UINT, WPARAM, LPARAM);
LRESULT EditProc(HWND, UINT, WPARAM, LPARAM);
LRESULT ComboProc(HWND, UINT, WPARAM, LPARAM);
LRESULT ListBoxProc(HWND, UINT, WPARAM, LPARAM);
LRESULT ScrollBarProc(HWND, UINT, WPARAM, LPARAM);
LRESULT TrackbarProc(HWND, UINT, WPARAM, LPARAM);
LRESULT UpDownProc(HWND, UINT, WPARAM, LPARAM);
LRESULT ToolTipProc(HWND, UINT, WPARAM, LPARAM);

// State kept per window of a control class, made on first use, dropped at WM_NCDESTROY.
template <class S>
class StateTable {
public:
    S& Get(HWND h) {
        auto& slot = m_states[h];
        if (!slot) slot = std::make_unique<S>();
        return *slot;
    }
    S* Find(HWND h) {
        auto it = m_states.find(h);
        return it == m_states.end() ? nullptr : it->second.get();
    }
    void Erase(HWND h) { m_states.erase(h); }

private:
    std::unordered_map<HWND, std::unique_ptr<S>> m_states;
};

// WM_COMMAND(MAKEWPARAM(id, code), control) to the control's parent; its answer.
LRESULT NotifyParent(HWND control, UINT code);
// The window's style bits.
DWORD StyleOf(HWND hwnd);
// The font of the dialogs ("MS Sans Serif" 8 points as the drawing layer maps it); the
// controls draw with it until WM_SETFONT gives another. Lives for the process.
HFONT DefaultDialogFont();
// The font of a control: the one it was given, else the default.
inline HFONT FontOr(HFONT f) { return f ? f : DefaultDialogFont(); }
// Repaints the control now (invalidate and update).
void Redraw(HWND hwnd);
// The window's text.
std::string WindowText(HWND hwnd);
// Height of a line of text in the font (the font's tmHeight).
int LineHeight(HFONT font);
// Width of the text in the font.
int TextWidth(HFONT font, const std::string& text);
// The point of a mouse message.
inline POINT PointOf(LPARAM lp) { return POINT{GET_X_LPARAM(lp), GET_Y_LPARAM(lp)}; }
// Down-pointing or other small arrow glyph, centred in r (dir: 0 up, 1 down, 2 left, 3 right).
void DrawArrow(CDC* dc, const RECT& r, int dir, COLORREF colour);
// The raised face of a push button or scroll arrow: pressed draws it sunken.
void DrawButtonFace(CDC* dc, RECT r, bool pressed);

}  // namespace orlex::detail
