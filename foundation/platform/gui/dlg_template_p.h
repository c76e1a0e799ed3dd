// Private: dialog templates of the library's resources, parsed from their text form.
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

// One control of a template. Geometry is in dialog units.
struct DialogItemTemplate {
    std::string className;  // "Button", "Edit", "Static", "ComboBox", "ListBox", "ScrollBar",
                            // "msctls_trackbar32", "msctls_updown32"
    int id = -1;
    std::string text;
    int x = 0, y = 0, cx = 0, cy = 0;
    DWORD style = 0;        // WS_CHILD | WS_VISIBLE are always in it
};

struct DialogTemplate {
    UINT id = 0;
    std::string caption;
    int cx = 0, cy = 0;     // client size in dialog units
    DWORD style = 0;
    int fontSize = 8;
    std::string fontFace = "MS Sans Serif";
    std::vector<DialogItemTemplate> items;
};

// Parses the text form of resources/dialogs/*.dlg:
//   DIALOG 10005
//   SIZE 103 92
//   STYLE DS_MODALFRAME WS_POPUP WS_CAPTION
//   CAPTION "Color Adjustment"
//   FONT 8 "MS Sans Serif"
//   GROUPBOX "Color" -1 5 3 93 84
//   EDITTEXT "" 10042 50 14 40 12 ES_AUTOHSCROLL
//   CONTROL "" 11018 "msctls_trackbar32" 60 7 120 15 TBS_AUTOTICKS
// Kinds: LTEXT RTEXT CTEXT GROUPBOX PUSHBUTTON DEFPUSHBUTTON CHECKBOX AUTOCHECKBOX
// RADIOBUTTON AUTORADIOBUTTON EDITTEXT COMBOBOX LISTBOX SCROLLBAR SLIDER SPIN CONTROL.
// Style names on the rest of a line are or-ed into the kind's default; "NOT name" takes
// one out. False (and out untouched) for anything that doesn't parse.
bool ParseDialogText(const std::string& text, DialogTemplate& out);

// The template of the library's dialog resource id; false when missing or broken.
bool LoadDialogTemplate(UINT id, DialogTemplate& out);

// Dialog units to pixels with the dialog font's base units (average character width of
// the alphabet, and the font's height): each edge
// x * baseX / 4, y * baseY / 8, rounded to nearest.
CRect DialogUnitsToPixels(int x, int y, int cx, int cy, int baseX, int baseY);

}  // namespace orlex::detail
