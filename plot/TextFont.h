// A font selected into a device context for as long as the object lives: the labels of a
// plot and its printed header are written through it.
#pragma once

#include "foundation/platform/wintypes.h"

class TextFont {
public:
    // An "Arial" font of 10 pixels, aligned centre and baseline (30), selected into hdc.
    explicit TextFont(HDC hdc);
    // The same with size pixels (character height) and SetTextAlign value align; sets the
    // text colour too.
    TextFont(HDC hdc, int size, int align, COLORREF colour);
    // Puts the font that was selected before back and deletes its own.
    ~TextFont();
    TextFont(const TextFont&) = delete;
    TextFont& operator=(const TextFont&) = delete;

    // Replaces the font: size pixels, alignment align, rotated by rotation tenths of a degree
    // (escapement and orientation).
    void SetFont(HDC hdc, int size, int align, int rotation);
    // TextOut of text (NUL-terminated) at (x, y), in transparent mode for this call.
    void WriteText(HDC hdc, int x, int y, const char* text);
    // ExtTextOut, opaque and clipped to rect, with the text in transparent mode as above.
    void WriteText(HDC hdc, int x, int y, const RECT* rect, const char* text);

    int Size = 10;
    HDC Dc = nullptr;
    HFONT Font = nullptr;
    HGDIOBJ OldFont = nullptr;
};
