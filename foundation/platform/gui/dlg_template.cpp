#include "foundation/platform/gui/dlg_template_p.h"

#include <map>

#include "foundation/platform/gui/dlg_restext_p.h"

namespace orlex::detail {
namespace {

constexpr DWORD kChild = 0x40000000, kVisible = 0x10000000, kTabStop = 0x00010000,
                kGroup = 0x00020000, kBorder = 0x00800000;

const std::map<std::string, DWORD>& StyleNames() {
    static const std::map<std::string, DWORD> names = {
        {"WS_POPUP", 0x80000000}, {"WS_CHILD", kChild}, {"WS_VISIBLE", kVisible},
        {"WS_DISABLED", 0x08000000}, {"WS_CLIPSIBLINGS", 0x04000000}, {"WS_CLIPCHILDREN", 0x02000000},
        {"WS_CAPTION", 0x00C00000}, {"WS_BORDER", kBorder}, {"WS_DLGFRAME", 0x00400000},
        {"WS_VSCROLL", 0x00200000}, {"WS_HSCROLL", 0x00100000}, {"WS_SYSMENU", 0x00080000},
        {"WS_THICKFRAME", 0x00040000}, {"WS_GROUP", kGroup}, {"WS_TABSTOP", kTabStop},
        {"DS_MODALFRAME", 0x80}, {"DS_SETFONT", 0x40}, {"DS_CENTER", 0x0800},
        {"SS_LEFT", 0}, {"SS_CENTER", 1}, {"SS_RIGHT", 2}, {"SS_NOPREFIX", 0x80},
        {"SS_SUNKEN", 0x1000}, {"SS_LEFTNOWORDWRAP", 0xC},
        {"BS_PUSHBUTTON", 0}, {"BS_DEFPUSHBUTTON", 1}, {"BS_CHECKBOX", 2}, {"BS_AUTOCHECKBOX", 3},
        {"BS_RADIOBUTTON", 4}, {"BS_3STATE", 5}, {"BS_GROUPBOX", 7}, {"BS_AUTORADIOBUTTON", 9},
        {"BS_LEFTTEXT", 0x20}, {"BS_ICON", 0x40}, {"BS_PUSHLIKE", 0x1000},
        {"ES_LEFT", 0}, {"ES_CENTER", 1}, {"ES_RIGHT", 2}, {"ES_MULTILINE", 4},
        {"ES_AUTOVSCROLL", 0x40}, {"ES_AUTOHSCROLL", 0x80}, {"ES_READONLY", 0x800},
        {"ES_WANTRETURN", 0x1000}, {"ES_NUMBER", 0x2000},
        {"CBS_SIMPLE", 1}, {"CBS_DROPDOWN", 2}, {"CBS_DROPDOWNLIST", 3}, {"CBS_AUTOHSCROLL", 0x40},
        {"CBS_SORT", 0x100}, {"CBS_HASSTRINGS", 0x200},
        {"LBS_NOTIFY", 1}, {"LBS_SORT", 2}, {"LBS_NOINTEGRALHEIGHT", 0x100},
        {"SBS_HORZ", 0}, {"SBS_VERT", 1},
        {"TBS_AUTOTICKS", 1}, {"TBS_VERT", 2}, {"TBS_HORZ", 0}, {"TBS_BOTH", 8}, {"TBS_NOTICKS", 0x10},
        {"UDS_WRAP", 1}, {"UDS_SETBUDDYINT", 2}, {"UDS_ALIGNRIGHT", 4}, {"UDS_ALIGNLEFT", 8},
        {"UDS_AUTOBUDDY", 0x10}, {"UDS_ARROWKEYS", 0x20}, {"UDS_HORZ", 0x40}, {"UDS_NOTHOUSANDS", 0x80},
    };
    return names;
}

struct Kind {
    const char* className;
    DWORD style;
};

const std::map<std::string, Kind>& Kinds() {
    static const std::map<std::string, Kind> kinds = {
        {"LTEXT", {"Static", kGroup | 0}},
        {"RTEXT", {"Static", kGroup | 2}},
        {"CTEXT", {"Static", kGroup | 1}},
        {"GROUPBOX", {"Button", 7}},
        {"PUSHBUTTON", {"Button", kTabStop | 0}},
        {"DEFPUSHBUTTON", {"Button", kTabStop | 1}},
        {"CHECKBOX", {"Button", kTabStop | 2}},
        {"AUTOCHECKBOX", {"Button", kTabStop | 3}},
        {"RADIOBUTTON", {"Button", 4}},
        {"AUTORADIOBUTTON", {"Button", 9}},
        {"EDITTEXT", {"Edit", kTabStop | kBorder}},
        {"COMBOBOX", {"ComboBox", kTabStop}},
        {"LISTBOX", {"ListBox", kTabStop | kBorder | 1}},
        {"SCROLLBAR", {"ScrollBar", 0}},
        {"SLIDER", {"msctls_trackbar32", kTabStop}},
        {"SPIN", {"msctls_updown32", 0}},
        {"CONTROL", {"", 0}},
    };
    return kinds;
}

// Style words to the end of the line; false on an unknown name.
bool ReadStyles(TextTokens& tok, int line, DWORD& style) {
    while (tok.Peek().kind != Token::End && tok.Peek().line == line) {
        Token t = tok.Next();
        if (t.kind == Token::Number) {
            style |= static_cast<DWORD>(t.number);
            continue;
        }
        if (t.kind == Token::Symbol && t.text == "|") continue;
        if (t.kind != Token::Word) return false;
        bool remove = false;
        if (t.text == "NOT") {
            remove = true;
            t = tok.Next();
            if (t.kind != Token::Word || t.line != line) return false;
        }
        auto it = StyleNames().find(t.text);
        if (it == StyleNames().end()) return false;
        if (remove) style &= ~it->second;
        else style |= it->second;
    }
    return true;
}

bool ReadInts(TextTokens& tok, int* out, int n) {
    for (int i = 0; i < n; ++i) {
        Token t = tok.Next();
        if (t.kind != Token::Number || t.number < -32768 || t.number > 65535) return false;
        out[i] = static_cast<int>(t.number);
    }
    return true;
}

}  // namespace

bool ParseDialogText(const std::string& text, DialogTemplate& out) {
    TextTokens tok(text);
    DialogTemplate dlg;
    bool sawHeader = false;
    while (true) {
        Token t = tok.Next();
        if (t.kind == Token::End) break;
        if (t.kind != Token::Word) return false;
        if (t.text == "DIALOG") {
            Token id = tok.Next();
            if (id.kind != Token::Number || id.number < 0) return false;
            dlg.id = static_cast<UINT>(id.number);
            sawHeader = true;
        } else if (t.text == "SIZE") {
            int v[2];
            if (!ReadInts(tok, v, 2) || v[0] <= 0 || v[1] <= 0) return false;
            dlg.cx = v[0];
            dlg.cy = v[1];
        } else if (t.text == "STYLE") {
            if (!ReadStyles(tok, t.line, dlg.style)) return false;
        } else if (t.text == "CAPTION") {
            Token s = tok.Next();
            if (s.kind != Token::String) return false;
            dlg.caption = s.text;
        } else if (t.text == "FONT") {
            Token size = tok.Next(), face = tok.Next();
            if (size.kind != Token::Number || face.kind != Token::String || size.number <= 0 || size.number > 72)
                return false;
            dlg.fontSize = static_cast<int>(size.number);
            dlg.fontFace = face.text;
        } else {
            auto kind = Kinds().find(t.text);
            if (kind == Kinds().end()) return false;
            DialogItemTemplate item;
            Token caption = tok.Next();
            Token id = tok.Next();
            if (caption.kind != Token::String || id.kind != Token::Number) return false;
            item.text = caption.text;
            item.id = static_cast<int>(id.number);
            item.className = kind->second.className;
            if (t.text == "CONTROL") {
                Token cls = tok.Next();
                if (cls.kind != Token::String || cls.text.empty()) return false;
                item.className = cls.text;
            }
            int r[4];
            if (!ReadInts(tok, r, 4) || r[2] < 0 || r[3] < 0) return false;
            item.x = r[0];
            item.y = r[1];
            item.cx = r[2];
            item.cy = r[3];
            item.style = kChild | kVisible | kind->second.style;
            if (!ReadStyles(tok, t.line, item.style)) return false;
            dlg.items.push_back(std::move(item));
        }
    }
    if (!sawHeader || dlg.cx <= 0 || dlg.cy <= 0) return false;
    out = std::move(dlg);
    return true;
}

bool LoadDialogTemplate(UINT id, DialogTemplate& out) {
    std::string text;
    constexpr UINT kDialogType = 5;
    if (!LoadResourceText(kDialogType, id, text)) return false;
    return ParseDialogText(text, out);
}

CRect DialogUnitsToPixels(int x, int y, int cx, int cy, int baseX, int baseY) {
    auto h = [baseX](int v) { return (v * baseX + (v >= 0 ? 2 : -2)) / 4; };
    auto v = [baseY](int u) { return (u * baseY + (u >= 0 ? 4 : -4)) / 8; };
    // Each edge is converted on its own, as the platform's MapDialogRect does.
    return CRect(h(x), v(y), h(x + cx), v(y + cy));
}

}  // namespace orlex::detail
