// TextFont: an "Arial" font selected for the lifetime of the object.
#include "plot/TextFont.h"

#include <cstring>

#include "foundation/platform/afxgdi.h"

namespace {

HFONT makeArial(int size, int rotation)
{
    // A negative height asks for the character height; every other attribute is 0.
    return CreateFontA(-size, 0, rotation, rotation, 0, 0, 0, 0, 0, 0, 0, 0, 0, "Arial");
}

// Runs draw() with the background mode transparent, put back afterwards.
template <class Draw>
void transparently(HDC hdc, Draw&& draw)
{
    const int old = GetBkMode(hdc);
    if (old == OPAQUE)
        SetBkMode(hdc, TRANSPARENT);
    draw();
    if (old == OPAQUE)
        SetBkMode(hdc, OPAQUE);
}

}  // namespace

TextFont::TextFont(HDC hdc) : TextFont(hdc, 10, 30, GetTextColor(hdc))
{
}

TextFont::TextFont(HDC hdc, int size, int align, COLORREF colour) : Size(size), Dc(hdc)
{
    Font = makeArial(size, 0);
    OldFont = SelectObject(hdc, Font);
    SetTextAlign(hdc, UINT(align));
    SetTextColor(hdc, colour);
}

TextFont::~TextFont()
{
    if (Dc != nullptr && OldFont != nullptr)
        SelectObject(Dc, OldFont);
    if (Font != nullptr)
        DeleteObject(Font);
}

void TextFont::SetFont(HDC hdc, int size, int align, int rotation)
{
    if (Dc != nullptr && OldFont != nullptr)
        SelectObject(Dc, OldFont);
    if (Font != nullptr)
        DeleteObject(Font);
    Dc = hdc;
    Size = size;
    Font = makeArial(size, rotation);
    OldFont = SelectObject(hdc, Font);
    SetTextAlign(hdc, UINT(align));
}

void TextFont::WriteText(HDC hdc, int x, int y, const char* text)
{
    if (text == nullptr)
        return;
    transparently(hdc, [&] { TextOutA(hdc, x, y, text, int(std::strlen(text))); });
}

void TextFont::WriteText(HDC hdc, int x, int y, const RECT* rect, const char* text)
{
    if (text == nullptr)
        return;
    transparently(hdc, [&] {
        ExtTextOutA(hdc, x, y, ETO_OPAQUE | ETO_CLIPPED, rect, text, UINT(std::strlen(text)), nullptr);
    });
}
