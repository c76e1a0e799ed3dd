// Drawing on the window platform: device contexts, pens, brushes, fonts, bitmaps, regions,
// palettes, device-independent bitmaps, system colours and metrics, the clipboard and
// printing. Pixels follow the original platform's rules: aliased one-pixel lines that
// leave out their end pixel, cosmetic dash rhythms, rectangles and ellipses that leave out
// their right and bottom edges, 16 line raster operations and the ternary blit operations.
//
// Handles (HDC, HPEN, ...) are the drawing layer's own objects; the C++ wrappers (CDC,
// CPen, ...) own a handle they created and delete it in their destructors. Every context
// draws into pixels that stay: a memory bitmap, a window's part of its top-level surface,
// or a printer page. Public header: no Qt types here.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

class CWnd;
class CDC;
class CPrintDialog;
BOOL DrawIcon(HDC hdc, int x, int y, HICON icon);

// Raster operations of lines and fills (SetROP2) -----------------------------------------
constexpr int R2_BLACK = 1;
constexpr int R2_NOTMERGEPEN = 2;
constexpr int R2_MASKNOTPEN = 3;
constexpr int R2_NOTCOPYPEN = 4;
constexpr int R2_MASKPENNOT = 5;
constexpr int R2_NOT = 6;
constexpr int R2_XORPEN = 7;
constexpr int R2_NOTMASKPEN = 8;
constexpr int R2_MASKPEN = 9;
constexpr int R2_NOTXORPEN = 10;
constexpr int R2_NOP = 11;
constexpr int R2_MERGENOTPEN = 12;
constexpr int R2_COPYPEN = 13;
constexpr int R2_MERGEPENNOT = 14;
constexpr int R2_MERGEPEN = 15;
constexpr int R2_WHITE = 16;

// Ternary raster operations of blits: the high word's low byte is the truth table over
// pattern (bit 2), source (bit 1) and destination (bit 0).
constexpr DWORD SRCCOPY = 0x00CC0020;
constexpr DWORD SRCPAINT = 0x00EE0086;
constexpr DWORD SRCAND = 0x008800C6;
constexpr DWORD SRCINVERT = 0x00660046;
constexpr DWORD SRCERASE = 0x00440328;
constexpr DWORD NOTSRCCOPY = 0x00330008;
constexpr DWORD NOTSRCERASE = 0x001100A6;
constexpr DWORD MERGECOPY = 0x00C000CA;
constexpr DWORD MERGEPAINT = 0x00BB0226;
constexpr DWORD PATCOPY = 0x00F00021;
constexpr DWORD PATPAINT = 0x00FB0A09;
constexpr DWORD PATINVERT = 0x005A0049;
constexpr DWORD DSTINVERT = 0x00550009;
constexpr DWORD BLACKNESS = 0x00000042;
constexpr DWORD WHITENESS = 0x00FF0062;

// Stretch modes ---------------------------------------------------------------------------
constexpr int BLACKONWHITE = 1;
constexpr int WHITEONBLACK = 2;
constexpr int COLORONCOLOR = 3;
constexpr int HALFTONE = 4;
constexpr int STRETCH_ANDSCANS = BLACKONWHITE;
constexpr int STRETCH_ORSCANS = WHITEONBLACK;
constexpr int STRETCH_DELETESCANS = COLORONCOLOR;
constexpr int STRETCH_HALFTONE = HALFTONE;

// Background modes, polygon fill modes, arc direction ---------------------------------------
constexpr int TRANSPARENT = 1;
constexpr int OPAQUE = 2;
constexpr int ALTERNATE = 1;
constexpr int WINDING = 2;
constexpr int AD_COUNTERCLOCKWISE = 1;
constexpr int AD_CLOCKWISE = 2;

// Pens -------------------------------------------------------------------------------------
constexpr int PS_SOLID = 0;
constexpr int PS_DASH = 1;
constexpr int PS_DOT = 2;
constexpr int PS_DASHDOT = 3;
constexpr int PS_DASHDOTDOT = 4;
constexpr int PS_NULL = 5;
constexpr int PS_INSIDEFRAME = 6;
constexpr int PS_USERSTYLE = 7;
constexpr int PS_ALTERNATE = 8;
constexpr int PS_STYLE_MASK = 0x0000000F;
constexpr int PS_ENDCAP_ROUND = 0x00000000;
constexpr int PS_ENDCAP_SQUARE = 0x00000100;
constexpr int PS_ENDCAP_FLAT = 0x00000200;
constexpr int PS_ENDCAP_MASK = 0x00000F00;
constexpr int PS_JOIN_ROUND = 0x00000000;
constexpr int PS_JOIN_BEVEL = 0x00001000;
constexpr int PS_JOIN_MITER = 0x00002000;
constexpr int PS_JOIN_MASK = 0x0000F000;
constexpr int PS_COSMETIC = 0x00000000;
constexpr int PS_GEOMETRIC = 0x00010000;
constexpr int PS_TYPE_MASK = 0x000F0000;

// Brushes ----------------------------------------------------------------------------------
constexpr UINT BS_SOLID = 0;
constexpr UINT BS_NULL = 1;
constexpr UINT BS_HOLLOW = BS_NULL;
constexpr UINT BS_HATCHED = 2;
constexpr UINT BS_PATTERN = 3;
constexpr UINT BS_DIBPATTERN = 5;
constexpr int HS_HORIZONTAL = 0;
constexpr int HS_VERTICAL = 1;
constexpr int HS_FDIAGONAL = 2;
constexpr int HS_BDIAGONAL = 3;
constexpr int HS_CROSS = 4;
constexpr int HS_DIAGCROSS = 5;

// Stock objects ----------------------------------------------------------------------------
constexpr int WHITE_BRUSH = 0;
constexpr int LTGRAY_BRUSH = 1;
constexpr int GRAY_BRUSH = 2;
constexpr int DKGRAY_BRUSH = 3;
constexpr int BLACK_BRUSH = 4;
constexpr int NULL_BRUSH = 5;
constexpr int HOLLOW_BRUSH = NULL_BRUSH;
constexpr int WHITE_PEN = 6;
constexpr int BLACK_PEN = 7;
constexpr int NULL_PEN = 8;
constexpr int OEM_FIXED_FONT = 10;
constexpr int ANSI_FIXED_FONT = 11;
constexpr int ANSI_VAR_FONT = 12;
constexpr int SYSTEM_FONT = 13;
constexpr int DEVICE_DEFAULT_FONT = 14;
constexpr int DEFAULT_PALETTE = 15;
constexpr int SYSTEM_FIXED_FONT = 16;
constexpr int DEFAULT_GUI_FONT = 17;
constexpr int DC_BRUSH = 18;
constexpr int DC_PEN = 19;

// Object kinds (GetObjectType, GetCurrentObject) --------------------------------------------
constexpr UINT OBJ_PEN = 1;
constexpr UINT OBJ_BRUSH = 2;
constexpr UINT OBJ_DC = 3;
constexpr UINT OBJ_PAL = 5;
constexpr UINT OBJ_FONT = 6;
constexpr UINT OBJ_BITMAP = 7;
constexpr UINT OBJ_REGION = 8;
constexpr UINT OBJ_MEMDC = 10;

// Regions ----------------------------------------------------------------------------------
constexpr int ERROR = 0;
constexpr int NULLREGION = 1;
constexpr int SIMPLEREGION = 2;
constexpr int COMPLEXREGION = 3;
constexpr int RGN_ERROR = ERROR;
constexpr int RGN_AND = 1;
constexpr int RGN_OR = 2;
constexpr int RGN_XOR = 3;
constexpr int RGN_DIFF = 4;
constexpr int RGN_COPY = 5;

// Text alignment (SetTextAlign) -------------------------------------------------------------
constexpr UINT TA_NOUPDATECP = 0;
constexpr UINT TA_UPDATECP = 1;
constexpr UINT TA_LEFT = 0;
constexpr UINT TA_RIGHT = 2;
constexpr UINT TA_CENTER = 6;
constexpr UINT TA_TOP = 0;
constexpr UINT TA_BOTTOM = 8;
constexpr UINT TA_BASELINE = 24;
constexpr UINT TA_RTLREADING = 256;
constexpr UINT GDI_ERROR = 0xFFFFFFFF;

// ExtTextOut options --------------------------------------------------------------------------
constexpr UINT ETO_OPAQUE = 0x0002;
constexpr UINT ETO_CLIPPED = 0x0004;

// DrawText formats --------------------------------------------------------------------------
constexpr UINT DT_TOP = 0x00000000;
constexpr UINT DT_LEFT = 0x00000000;
constexpr UINT DT_CENTER = 0x00000001;
constexpr UINT DT_RIGHT = 0x00000002;
constexpr UINT DT_VCENTER = 0x00000004;
constexpr UINT DT_BOTTOM = 0x00000008;
constexpr UINT DT_WORDBREAK = 0x00000010;
constexpr UINT DT_SINGLELINE = 0x00000020;
constexpr UINT DT_EXPANDTABS = 0x00000040;
constexpr UINT DT_TABSTOP = 0x00000080;
constexpr UINT DT_NOCLIP = 0x00000100;
constexpr UINT DT_EXTERNALLEADING = 0x00000200;
constexpr UINT DT_CALCRECT = 0x00000400;
constexpr UINT DT_NOPREFIX = 0x00000800;
constexpr UINT DT_INTERNAL = 0x00001000;
constexpr UINT DT_EDITCONTROL = 0x00002000;
constexpr UINT DT_PATH_ELLIPSIS = 0x00004000;
constexpr UINT DT_END_ELLIPSIS = 0x00008000;
constexpr UINT DT_MODIFYSTRING = 0x00010000;
constexpr UINT DT_RTLREADING = 0x00020000;
constexpr UINT DT_WORD_ELLIPSIS = 0x00040000;
constexpr UINT DT_NOFULLWIDTHCHARBREAK = 0x00080000;
constexpr UINT DT_HIDEPREFIX = 0x00100000;
constexpr UINT DT_PREFIXONLY = 0x00200000;

// Map modes -------------------------------------------------------------------------------------
constexpr int MM_TEXT = 1;
constexpr int MM_LOMETRIC = 2;
constexpr int MM_HIMETRIC = 3;
constexpr int MM_LOENGLISH = 4;
constexpr int MM_HIENGLISH = 5;
constexpr int MM_TWIPS = 6;
constexpr int MM_ISOTROPIC = 7;
constexpr int MM_ANISOTROPIC = 8;

// Device capabilities (GetDeviceCaps) ---------------------------------------------------------
constexpr int DRIVERVERSION = 0;
constexpr int TECHNOLOGY = 2;
constexpr int HORZSIZE = 4;
constexpr int VERTSIZE = 6;
constexpr int HORZRES = 8;
constexpr int VERTRES = 10;
constexpr int BITSPIXEL = 12;
constexpr int PLANES = 14;
constexpr int NUMBRUSHES = 16;
constexpr int NUMPENS = 18;
constexpr int NUMFONTS = 22;
constexpr int NUMCOLORS = 24;
constexpr int ASPECTX = 40;
constexpr int ASPECTY = 42;
constexpr int ASPECTXY = 44;
constexpr int RASTERCAPS = 38;
constexpr int LOGPIXELSX = 88;
constexpr int LOGPIXELSY = 90;
constexpr int SIZEPALETTE = 104;
constexpr int NUMRESERVED = 106;
constexpr int COLORRES = 108;
constexpr int PHYSICALWIDTH = 110;
constexpr int PHYSICALHEIGHT = 111;
constexpr int PHYSICALOFFSETX = 112;
constexpr int PHYSICALOFFSETY = 113;
constexpr int DT_PLOTTER = 0;
constexpr int DT_RASDISPLAY = 1;
constexpr int DT_RASPRINTER = 2;
constexpr int RC_BITBLT = 1;
constexpr int RC_BANDING = 2;
constexpr int RC_SCALING = 4;
constexpr int RC_BITMAP64 = 8;
constexpr int RC_DI_BITMAP = 0x0080;
constexpr int RC_PALETTE = 0x0100;
constexpr int RC_DIBTODEV = 0x0200;
constexpr int RC_STRETCHBLT = 0x0800;
constexpr int RC_STRETCHDIB = 0x2000;

// Edges and frame controls ------------------------------------------------------------------------
constexpr UINT BDR_RAISEDOUTER = 0x0001;
constexpr UINT BDR_SUNKENOUTER = 0x0002;
constexpr UINT BDR_RAISEDINNER = 0x0004;
constexpr UINT BDR_SUNKENINNER = 0x0008;
constexpr UINT BDR_OUTER = 0x0003;
constexpr UINT BDR_INNER = 0x000C;
constexpr UINT EDGE_RAISED = BDR_RAISEDOUTER | BDR_RAISEDINNER;
constexpr UINT EDGE_SUNKEN = BDR_SUNKENOUTER | BDR_SUNKENINNER;
constexpr UINT EDGE_ETCHED = BDR_SUNKENOUTER | BDR_RAISEDINNER;
constexpr UINT EDGE_BUMP = BDR_RAISEDOUTER | BDR_SUNKENINNER;
constexpr UINT BF_LEFT = 0x0001;
constexpr UINT BF_TOP = 0x0002;
constexpr UINT BF_RIGHT = 0x0004;
constexpr UINT BF_BOTTOM = 0x0008;
constexpr UINT BF_TOPLEFT = BF_TOP | BF_LEFT;
constexpr UINT BF_BOTTOMRIGHT = BF_BOTTOM | BF_RIGHT;
constexpr UINT BF_RECT = BF_LEFT | BF_TOP | BF_RIGHT | BF_BOTTOM;
constexpr UINT BF_MIDDLE = 0x0800;
constexpr UINT BF_SOFT = 0x1000;
constexpr UINT BF_ADJUST = 0x2000;
constexpr UINT BF_FLAT = 0x4000;
constexpr UINT BF_MONO = 0x8000;
constexpr UINT DFC_CAPTION = 1;
constexpr UINT DFC_MENU = 2;
constexpr UINT DFC_SCROLL = 3;
constexpr UINT DFC_BUTTON = 4;
constexpr UINT DFCS_SCROLLUP = 0x0000;
constexpr UINT DFCS_SCROLLDOWN = 0x0001;
constexpr UINT DFCS_SCROLLLEFT = 0x0002;
constexpr UINT DFCS_SCROLLRIGHT = 0x0003;
constexpr UINT DFCS_SCROLLCOMBOBOX = 0x0005;
constexpr UINT DFCS_BUTTONCHECK = 0x0000;
constexpr UINT DFCS_BUTTONRADIO = 0x0004;
constexpr UINT DFCS_BUTTONPUSH = 0x0010;
constexpr UINT DFCS_INACTIVE = 0x0100;
constexpr UINT DFCS_PUSHED = 0x0200;
constexpr UINT DFCS_CHECKED = 0x0400;
constexpr UINT DFCS_FLAT = 0x4000;
constexpr UINT DFCS_MONO = 0x8000;

// System colours (GetSysColor) ------------------------------------------------------------------
constexpr int COLOR_SCROLLBAR = 0;
constexpr int COLOR_BACKGROUND = 1;
constexpr int COLOR_DESKTOP = 1;
constexpr int COLOR_ACTIVECAPTION = 2;
constexpr int COLOR_INACTIVECAPTION = 3;
constexpr int COLOR_MENU = 4;
constexpr int COLOR_WINDOW = 5;
constexpr int COLOR_WINDOWFRAME = 6;
constexpr int COLOR_MENUTEXT = 7;
constexpr int COLOR_WINDOWTEXT = 8;
constexpr int COLOR_CAPTIONTEXT = 9;
constexpr int COLOR_ACTIVEBORDER = 10;
constexpr int COLOR_INACTIVEBORDER = 11;
constexpr int COLOR_APPWORKSPACE = 12;
constexpr int COLOR_HIGHLIGHT = 13;
constexpr int COLOR_HIGHLIGHTTEXT = 14;
constexpr int COLOR_BTNFACE = 15;
constexpr int COLOR_3DFACE = 15;
constexpr int COLOR_BTNSHADOW = 16;
constexpr int COLOR_3DSHADOW = 16;
constexpr int COLOR_GRAYTEXT = 17;
constexpr int COLOR_BTNTEXT = 18;
constexpr int COLOR_INACTIVECAPTIONTEXT = 19;
constexpr int COLOR_BTNHIGHLIGHT = 20;
constexpr int COLOR_3DHIGHLIGHT = 20;
constexpr int COLOR_3DHILIGHT = 20;
constexpr int COLOR_BTNHILIGHT = 20;
constexpr int COLOR_3DDKSHADOW = 21;
constexpr int COLOR_3DLIGHT = 22;
constexpr int COLOR_INFOTEXT = 23;
constexpr int COLOR_INFOBK = 24;
constexpr int COLOR_HOTLIGHT = 26;
constexpr int COLOR_GRADIENTACTIVECAPTION = 27;
constexpr int COLOR_GRADIENTINACTIVECAPTION = 28;
constexpr int COLOR_MENUHILIGHT = 29;
constexpr int COLOR_MENUBAR = 30;

// System metrics (GetSystemMetrics) ---------------------------------------------------------------
constexpr int SM_CXSCREEN = 0;
constexpr int SM_CYSCREEN = 1;
constexpr int SM_CXVSCROLL = 2;
constexpr int SM_CYHSCROLL = 3;
constexpr int SM_CYCAPTION = 4;
constexpr int SM_CXBORDER = 5;
constexpr int SM_CYBORDER = 6;
constexpr int SM_CXDLGFRAME = 7;
constexpr int SM_CYDLGFRAME = 8;
constexpr int SM_CYVTHUMB = 9;
constexpr int SM_CXHTHUMB = 10;
constexpr int SM_CXICON = 11;
constexpr int SM_CYICON = 12;
constexpr int SM_CXCURSOR = 13;
constexpr int SM_CYCURSOR = 14;
constexpr int SM_CYMENU = 15;
constexpr int SM_CXFULLSCREEN = 16;
constexpr int SM_CYFULLSCREEN = 17;
constexpr int SM_CYVSCROLL = 20;
constexpr int SM_CXHSCROLL = 21;
constexpr int SM_CXMIN = 28;
constexpr int SM_CYMIN = 29;
constexpr int SM_CXSIZE = 30;
constexpr int SM_CYSIZE = 31;
constexpr int SM_CXFRAME = 32;
constexpr int SM_CYFRAME = 33;
constexpr int SM_CXDOUBLECLK = 36;
constexpr int SM_CYDOUBLECLK = 37;
constexpr int SM_CXEDGE = 45;
constexpr int SM_CYEDGE = 46;
constexpr int SM_CXSMICON = 49;
constexpr int SM_CYSMICON = 50;
constexpr int SM_CXMENUCHECK = 71;
constexpr int SM_CYMENUCHECK = 72;
constexpr int SM_CXDRAG = 68;
constexpr int SM_CYDRAG = 69;
constexpr int SM_CMOUSEBUTTONS = 43;
constexpr int SM_MOUSEWHEELPRESENT = 75;
constexpr int SM_XVIRTUALSCREEN = 76;
constexpr int SM_YVIRTUALSCREEN = 77;
constexpr int SM_CXVIRTUALSCREEN = 78;
constexpr int SM_CYVIRTUALSCREEN = 79;
constexpr int SM_CMONITORS = 80;

// Fonts -----------------------------------------------------------------------------------------
constexpr int LF_FACESIZE = 32;
constexpr int FW_DONTCARE = 0;
constexpr int FW_THIN = 100;
constexpr int FW_LIGHT = 300;
constexpr int FW_NORMAL = 400;
constexpr int FW_REGULAR = 400;
constexpr int FW_MEDIUM = 500;
constexpr int FW_SEMIBOLD = 600;
constexpr int FW_BOLD = 700;
constexpr int FW_HEAVY = 900;
constexpr BYTE ANSI_CHARSET = 0;
constexpr BYTE DEFAULT_CHARSET = 1;
constexpr BYTE SYMBOL_CHARSET = 2;
constexpr BYTE OEM_CHARSET = 255;
constexpr BYTE OUT_DEFAULT_PRECIS = 0;
constexpr BYTE OUT_STRING_PRECIS = 1;
constexpr BYTE OUT_CHARACTER_PRECIS = 2;
constexpr BYTE OUT_STROKE_PRECIS = 3;
constexpr BYTE OUT_TT_PRECIS = 4;
constexpr BYTE OUT_TT_ONLY_PRECIS = 7;
constexpr BYTE CLIP_DEFAULT_PRECIS = 0;
constexpr BYTE CLIP_CHARACTER_PRECIS = 1;
constexpr BYTE CLIP_STROKE_PRECIS = 2;
constexpr BYTE DEFAULT_QUALITY = 0;
constexpr BYTE DRAFT_QUALITY = 1;
constexpr BYTE PROOF_QUALITY = 2;
constexpr BYTE NONANTIALIASED_QUALITY = 3;
constexpr BYTE ANTIALIASED_QUALITY = 4;
constexpr BYTE DEFAULT_PITCH = 0;
constexpr BYTE FIXED_PITCH = 1;
constexpr BYTE VARIABLE_PITCH = 2;
constexpr BYTE FF_DONTCARE = 0x00;
constexpr BYTE FF_ROMAN = 0x10;
constexpr BYTE FF_SWISS = 0x20;
constexpr BYTE FF_MODERN = 0x30;
constexpr BYTE FF_SCRIPT = 0x40;
constexpr BYTE FF_DECORATIVE = 0x50;
constexpr BYTE TMPF_FIXED_PITCH = 0x01;
constexpr BYTE TMPF_VECTOR = 0x02;
constexpr BYTE TMPF_TRUETYPE = 0x04;

// The 60-byte logical font of the platform (8-bit face name).
struct LOGFONTA {
    LONG lfHeight;  // < 0: character height (em) in logical units; > 0: cell height; 0: default
    LONG lfWidth;   // average character width; 0: from the height
    LONG lfEscapement;  // tenths of a degree, counter-clockwise: 900 reads bottom to top
    LONG lfOrientation;
    LONG lfWeight;  // 0 or 100..900; 400 normal, 700 bold
    BYTE lfItalic;
    BYTE lfUnderline;
    BYTE lfStrikeOut;
    BYTE lfCharSet;
    BYTE lfOutPrecision;
    BYTE lfClipPrecision;
    BYTE lfQuality;
    BYTE lfPitchAndFamily;
    char lfFaceName[LF_FACESIZE];
};
static_assert(sizeof(LOGFONTA) == 60);
using LOGFONT = LOGFONTA;
using LPLOGFONT = LOGFONT*;
using PLOGFONT = LOGFONT*;

struct TEXTMETRICA {
    LONG tmHeight;  // ascent + descent
    LONG tmAscent;
    LONG tmDescent;
    LONG tmInternalLeading;  // cell height less the character height
    LONG tmExternalLeading;  // recommended space between lines
    LONG tmAveCharWidth;
    LONG tmMaxCharWidth;
    LONG tmWeight;
    LONG tmOverhang;
    LONG tmDigitizedAspectX;
    LONG tmDigitizedAspectY;
    BYTE tmFirstChar;
    BYTE tmLastChar;
    BYTE tmDefaultChar;
    BYTE tmBreakChar;
    BYTE tmItalic;
    BYTE tmUnderlined;
    BYTE tmStruckOut;
    BYTE tmPitchAndFamily;
    BYTE tmCharSet;
};
using TEXTMETRIC = TEXTMETRICA;
using LPTEXTMETRIC = TEXTMETRIC*;

struct LOGPEN {
    UINT lopnStyle;
    POINT lopnWidth;  // x is the width
    COLORREF lopnColor;
};
struct EXTLOGPEN {
    DWORD elpPenStyle;
    DWORD elpWidth;
    UINT elpBrushStyle;
    COLORREF elpColor;
    ULONG_PTR elpHatch;
    DWORD elpNumEntries;
    DWORD elpStyleEntry[1];
};
struct LOGBRUSH {
    UINT lbStyle;
    COLORREF lbColor;
    ULONG_PTR lbHatch;  // HS_* for BS_HATCHED; HBITMAP for BS_PATTERN
};

struct RGNDATAHEADER {
    DWORD dwSize;
    DWORD iType;
    DWORD nCount;
    DWORD nRgnSize;
    RECT rcBound;
};

// Palette index colours: PALETTEINDEX(i) picks entry i of the selected palette.
constexpr COLORREF PALETTEINDEX(WORD i) { return 0x01000000u | i; }
constexpr COLORREF PALETTERGB(BYTE r, BYTE g, BYTE b) { return 0x02000000u | RGB(r, g, b); }
constexpr BYTE PC_RESERVED = 0x01;
constexpr BYTE PC_EXPLICIT = 0x02;
constexpr BYTE PC_NOCOLLAPSE = 0x04;

// A painting session (BeginPaint/EndPaint).
struct PAINTSTRUCT {
    HDC hdc;
    BOOL fErase;    // the background still needs erasing
    RECT rcPaint;   // bounding box of the update region, client coordinates
    BOOL fRestore;
    BOOL fIncUpdate;
    BYTE rgbReserved[32];
};
using LPPAINTSTRUCT = PAINTSTRUCT*;

// Printing ------------------------------------------------------------------------------------------
struct DOCINFOA {
    int cbSize;
    LPCSTR lpszDocName;
    LPCSTR lpszOutput;  // a file path: the document goes there instead of the default
    LPCSTR lpszDatatype;
    DWORD fwType;
};
using DOCINFO = DOCINFOA;
using LPDOCINFO = DOCINFO*;
constexpr int SP_ERROR = -1;
constexpr int SP_APPABORT = -2;
constexpr int SP_USERABORT = -3;
constexpr int SP_OUTOFDISK = -4;
constexpr int SP_OUTOFMEMORY = -5;

constexpr int CCHDEVICENAME = 32;
constexpr int CCHFORMNAME = 32;
constexpr DWORD DM_ORIENTATION = 0x00000001;
constexpr DWORD DM_PAPERSIZE = 0x00000002;
constexpr DWORD DM_SCALE = 0x00000010;
constexpr DWORD DM_COPIES = 0x00000100;
constexpr DWORD DM_PRINTQUALITY = 0x00000400;
constexpr DWORD DM_COLOR = 0x00000800;
constexpr short DMORIENT_PORTRAIT = 1;
constexpr short DMORIENT_LANDSCAPE = 2;
constexpr short DMCOLOR_MONOCHROME = 1;
constexpr short DMCOLOR_COLOR = 2;
constexpr short DMPAPER_LETTER = 1;
constexpr short DMPAPER_A4 = 9;
constexpr DWORD DM_UPDATE = 1;
constexpr DWORD DM_COPY = 2;
constexpr DWORD DM_PROMPT = 4;
constexpr DWORD DM_MODIFY = 8;
constexpr DWORD DM_IN_BUFFER = DM_MODIFY;
constexpr DWORD DM_OUT_BUFFER = DM_COPY;

// Printer settings (the printer part of the platform's device mode).
struct DEVMODEA {
    BYTE dmDeviceName[CCHDEVICENAME];
    WORD dmSpecVersion;
    WORD dmDriverVersion;
    WORD dmSize;
    WORD dmDriverExtra;
    DWORD dmFields;  // DM_* bits of the fields that are offered
    short dmOrientation;
    short dmPaperSize;
    short dmPaperLength;  // tenths of a millimetre
    short dmPaperWidth;
    short dmScale;
    short dmCopies;
    short dmDefaultSource;
    short dmPrintQuality;  // dots per inch when positive
    short dmColor;
    short dmDuplex;
    short dmYResolution;
    short dmTTOption;
    short dmCollate;
    BYTE dmFormName[CCHFORMNAME];
    WORD dmLogPixels;
    DWORD dmBitsPerPel;
    DWORD dmPelsWidth;
    DWORD dmPelsHeight;
    DWORD dmDisplayFlags;
    DWORD dmDisplayFrequency;
};
using DEVMODE = DEVMODEA;
using LPDEVMODE = DEVMODE*;

// A printing job's page state, as the framework passes it to printing code.
struct CPrintInfo {
    CPrintDialog* m_pPD = nullptr;  // not owned
    BOOL m_bDocObject = FALSE;
    BOOL m_bPreview = FALSE;
    BOOL m_bDirect = FALSE;
    BOOL m_bContinuePrinting = TRUE;
    UINT m_nCurPage = 1;
    UINT m_nNumPreviewPages = 1;
    void* m_lpUserData = nullptr;
    CRect m_rectDraw;  // printable area of the page in logical units
    UINT m_nMinPage = 1;
    UINT m_nMaxPage = 0xFFFF;
    UINT m_nFromPage = 1;
    UINT m_nToPage = 0xFFFF;

    void SetMinPage(UINT n) { m_nMinPage = n; }
    void SetMaxPage(UINT n) { m_nMaxPage = n; }
    UINT GetMinPage() const { return m_nMinPage; }
    UINT GetMaxPage() const { return m_nMaxPage; }
    UINT GetFromPage() const { return m_nFromPage; }
    UINT GetToPage() const { return m_nToPage; }
};

// Clipboard formats --------------------------------------------------------------------------------
constexpr UINT CF_TEXT = 1;
constexpr UINT CF_BITMAP = 2;
constexpr UINT CF_DIB = 8;
constexpr UINT CF_UNICODETEXT = 13;

// ---------------------------------------------------------------------------------------------
// Drawing objects. A wrapper owns the handle it created (DeleteObject in its destructor);
// FromHandle gives a temporary wrapper that lives as long as the handle and owns nothing.
class CGdiObject {
public:
    HGDIOBJ m_hObject = nullptr;

    CGdiObject() = default;
    virtual ~CGdiObject();
    CGdiObject(const CGdiObject&) = delete;
    CGdiObject& operator=(const CGdiObject&) = delete;

    // The temporary wrapper of any drawing object handle; null for null.
    static CGdiObject* FromHandle(HGDIOBJ h);
    HGDIOBJ GetSafeHandle() const { return m_hObject; }
    operator HGDIOBJ() const { return m_hObject; }
    BOOL Attach(HGDIOBJ h);
    HGDIOBJ Detach();
    // Deletes the handle (refused for stock objects and objects selected into a context,
    // as the platform refuses them). TRUE if a handle was deleted.
    BOOL DeleteObject();
    // Copies the logical description (LOGPEN, LOGBRUSH, LOGFONT, BITMAP, WORD count of a
    // palette) into buf; returns bytes written, or the size needed when buf is null.
    int GetObject(int count, void* buf) const;
    UINT GetObjectType() const;
    BOOL CreateStockObject(int index);
    BOOL UnrealizeObject() { return m_hObject != nullptr; }
};

class CPen : public CGdiObject {
public:
    CPen() = default;
    // Width 0 or 1 is a cosmetic one-pixel pen; wider pens draw solid (styles other than
    // PS_SOLID, PS_NULL and PS_INSIDEFRAME turn solid above width 1).
    CPen(int style, int width, COLORREF color);
    CPen(int style, int width, const LOGBRUSH* brush, int styleCount = 0, const DWORD* styles = nullptr);
    static CPen* FromHandle(HPEN h);
    operator HPEN() const { return static_cast<HPEN>(m_hObject); }
    BOOL CreatePen(int style, int width, COLORREF color);
    BOOL CreatePen(int style, int width, const LOGBRUSH* brush, int styleCount = 0, const DWORD* styles = nullptr);
    BOOL CreatePenIndirect(const LOGPEN* pen);
    int GetLogPen(LOGPEN* pen) const;
    int GetExtLogPen(EXTLOGPEN* pen) const;
};

class CBrush : public CGdiObject {
public:
    CBrush() = default;
    explicit CBrush(COLORREF color);
    CBrush(int hatchIndex, COLORREF color);
    explicit CBrush(class CBitmap* pattern);
    static CBrush* FromHandle(HBRUSH h);
    operator HBRUSH() const { return static_cast<HBRUSH>(m_hObject); }
    BOOL CreateSolidBrush(COLORREF color);
    BOOL CreateHatchBrush(int index, COLORREF color);
    BOOL CreateBrushIndirect(const LOGBRUSH* brush);
    // The pattern is copied (an 8x8 corner of it, as the platform uses).
    BOOL CreatePatternBrush(class CBitmap* bitmap);
    BOOL CreateSysColorBrush(int index);
    int GetLogBrush(LOGBRUSH* brush) const;
};

class CFont : public CGdiObject {
public:
    CFont() = default;
    static CFont* FromHandle(HFONT h);
    operator HFONT() const { return static_cast<HFONT>(m_hObject); }
    BOOL CreateFontIndirect(const LOGFONT* lf);
    BOOL CreateFont(int height, int width, int escapement, int orientation, int weight, BYTE italic,
                    BYTE underline, BYTE strikeOut, BYTE charSet, BYTE outPrecision, BYTE clipPrecision,
                    BYTE quality, BYTE pitchAndFamily, LPCSTR faceName);
    // pointSize in tenths of a point, measured on dc (the screen when null).
    BOOL CreatePointFont(int pointSize, LPCSTR faceName, CDC* dc = nullptr);
    BOOL CreatePointFontIndirect(const LOGFONT* lf, CDC* dc = nullptr);
    int GetLogFont(LOGFONT* lf) const;
};

class CBitmap : public CGdiObject {
public:
    CBitmap() = default;
    static CBitmap* FromHandle(HBITMAP h);
    operator HBITMAP() const { return static_cast<HBITMAP>(m_hObject); }
    // bits: rows of width * bitsPerPixel bits, each padded to 2 bytes (the platform's rule
    // for device-dependent bitmaps); null leaves the pixels black.
    BOOL CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);
    BOOL CreateBitmapIndirect(const BITMAP* bm);
    // A colour bitmap of the device's format (32 bits a pixel), black.
    BOOL CreateCompatibleBitmap(CDC* dc, int width, int height);
    BOOL CreateDiscardableBitmap(CDC* dc, int width, int height) { return CreateCompatibleBitmap(dc, width, height); }
    // A bitmap of the application's resources by id (a BMP file resource).
    BOOL LoadBitmap(UINT id);
    BOOL LoadBitmap(LPCSTR name);
    BOOL LoadOEMBitmap(UINT id);
    int GetBitmap(BITMAP* bm) const;
    // Pixels as rows of bmWidthBytes (32-bit: blue, green, red, 0 per pixel).
    DWORD GetBitmapBits(DWORD count, void* bits) const;
    DWORD SetBitmapBits(DWORD count, const void* bits);
    CSize SetBitmapDimension(int w, int h);
    CSize GetBitmapDimension() const;
};

class CRgn : public CGdiObject {
public:
    CRgn() = default;
    static CRgn* FromHandle(HRGN h);
    operator HRGN() const { return static_cast<HRGN>(m_hObject); }
    BOOL CreateRectRgn(int x1, int y1, int x2, int y2);
    BOOL CreateRectRgnIndirect(LPCRECT r);
    BOOL CreateEllipticRgn(int x1, int y1, int x2, int y2);
    BOOL CreateEllipticRgnIndirect(LPCRECT r);
    // mode ALTERNATE or WINDING.
    BOOL CreatePolygonRgn(const POINT* points, int count, int mode);
    BOOL CreatePolyPolygonRgn(const POINT* points, const INT* counts, int polygons, int mode);
    BOOL CreateRoundRectRgn(int x1, int y1, int x2, int y2, int w, int h);
    void SetRectRgn(int x1, int y1, int x2, int y2);
    void SetRectRgn(LPCRECT r);
    // This = a op b (RGN_AND, RGN_OR, RGN_XOR, RGN_DIFF, RGN_COPY with a only). Returns the
    // kind of the result (NULLREGION, SIMPLEREGION, COMPLEXREGION) or ERROR.
    int CombineRgn(const CRgn* a, const CRgn* b, int mode);
    int CopyRgn(const CRgn* src);
    BOOL EqualRgn(const CRgn* other) const;
    int OffsetRgn(int dx, int dy);
    int OffsetRgn(POINT p);
    int GetRgnBox(LPRECT r) const;
    BOOL PtInRegion(int x, int y) const;
    BOOL PtInRegion(POINT p) const;
    BOOL RectInRegion(LPCRECT r) const;
};

class CPalette : public CGdiObject {
public:
    CPalette() = default;
    static CPalette* FromHandle(HPALETTE h);
    operator HPALETTE() const { return static_cast<HPALETTE>(m_hObject); }
    BOOL CreatePalette(const LOGPALETTE* lp);
    BOOL CreateHalftonePalette(CDC* dc);
    int GetEntryCount() const;
    UINT GetPaletteEntries(UINT start, UINT count, PALETTEENTRY* out) const;
    UINT SetPaletteEntries(UINT start, UINT count, const PALETTEENTRY* in);
    UINT GetNearestPaletteIndex(COLORREF c) const;
    BOOL ResizePalette(UINT entries);
    void AnimatePalette(UINT start, UINT count, const PALETTEENTRY* in) { SetPaletteEntries(start, count, in); }
};

// ---------------------------------------------------------------------------------------------
// A device context. Coordinates given to drawing calls are logical; the map mode, window and
// viewport turn them into device pixels. A CDC that created or attached its handle deletes it
// in its destructor (memory and printer contexts), or releases it (CClientDC, CWindowDC,
// CPaintDC).
class CDC {
public:
    HDC m_hDC = nullptr;
    HDC m_hAttribDC = nullptr;
    BOOL m_bPrinting = FALSE;

    CDC() = default;
    virtual ~CDC();
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;

    // The temporary wrapper of a context handle; it lives as long as the handle.
    static CDC* FromHandle(HDC h);
    static void DeleteTempMap() {}
    HDC GetSafeHdc() const { return m_hDC; }
    operator HDC() const { return m_hDC; }
    BOOL Attach(HDC h);
    HDC Detach();
    void SetAttribDC(HDC h) { m_hAttribDC = h; }
    void SetOutputDC(HDC h) { m_hDC = h; }
    void ReleaseAttribDC() { m_hAttribDC = nullptr; }
    void ReleaseOutputDC() { m_hDC = nullptr; }
    BOOL IsPrinting() const { return m_bPrinting; }
    CWnd* GetWindow() const;

    // A memory context for dc's device (the screen when null), with a 1x1 bitmap selected.
    BOOL CreateCompatibleDC(CDC* dc);
    // driver "DISPLAY" gives a screen context; any other name a printer context.
    BOOL CreateDC(LPCSTR driver, LPCSTR device, LPCSTR port, const void* initData);
    BOOL CreateIC(LPCSTR driver, LPCSTR device, LPCSTR port, const void* initData);
    BOOL DeleteDC();
    int SaveDC();
    // level > 0: back to that saved state; < 0: relative (-1 the last one).
    BOOL RestoreDC(int level);
    int GetDeviceCaps(int index) const;

    // Objects ---------------------------------------------------------------------------------
    CPen* SelectObject(CPen* pen);
    CBrush* SelectObject(CBrush* brush);
    CFont* SelectObject(CFont* font);
    CBitmap* SelectObject(CBitmap* bitmap);
    // A region is copied in as the clip region; returns the region kind.
    int SelectObject(CRgn* rgn);
    CGdiObject* SelectObject(CGdiObject* obj);
    HGDIOBJ SelectObject(HGDIOBJ h);
    CGdiObject* SelectStockObject(int index);
    CPalette* SelectPalette(CPalette* pal, BOOL forceBackground);
    UINT RealizePalette();
    CPen* GetCurrentPen() const;
    CBrush* GetCurrentBrush() const;
    CFont* GetCurrentFont() const;
    CBitmap* GetCurrentBitmap() const;
    CPalette* GetCurrentPalette() const;

    // Attributes ------------------------------------------------------------------------------
    COLORREF GetBkColor() const;
    COLORREF SetBkColor(COLORREF c);
    int GetBkMode() const;
    int SetBkMode(int mode);
    COLORREF GetTextColor() const;
    COLORREF SetTextColor(COLORREF c);
    int GetROP2() const;
    int SetROP2(int mode);
    int GetStretchBltMode() const;
    int SetStretchBltMode(int mode);
    int GetPolyFillMode() const;
    int SetPolyFillMode(int mode);
    UINT GetTextAlign() const;
    UINT SetTextAlign(UINT flags);
    int GetTextCharacterExtra() const;
    int SetTextCharacterExtra(int extra);
    int GetArcDirection() const;
    int SetArcDirection(int dir);
    CPoint GetBrushOrg() const;
    CPoint SetBrushOrg(int x, int y);
    CPoint SetBrushOrg(POINT p) { return SetBrushOrg(p.x, p.y); }
    COLORREF GetNearestColor(COLORREF c) const { return c & 0x00FFFFFF; }

    // Coordinates -----------------------------------------------------------------------------
    int GetMapMode() const;
    int SetMapMode(int mode);
    CPoint GetViewportOrg() const;
    CPoint SetViewportOrg(int x, int y);
    CPoint SetViewportOrg(POINT p) { return SetViewportOrg(p.x, p.y); }
    CPoint OffsetViewportOrg(int dx, int dy);
    CSize GetViewportExt() const;
    CSize SetViewportExt(int cx, int cy);
    CSize SetViewportExt(SIZE s) { return SetViewportExt(s.cx, s.cy); }
    CSize ScaleViewportExt(int xNum, int xDenom, int yNum, int yDenom);
    CPoint GetWindowOrg() const;
    CPoint SetWindowOrg(int x, int y);
    CPoint SetWindowOrg(POINT p) { return SetWindowOrg(p.x, p.y); }
    CPoint OffsetWindowOrg(int dx, int dy);
    CSize GetWindowExt() const;
    CSize SetWindowExt(int cx, int cy);
    CSize SetWindowExt(SIZE s) { return SetWindowExt(s.cx, s.cy); }
    CSize ScaleWindowExt(int xNum, int xDenom, int yNum, int yDenom);
    void DPtoLP(LPPOINT pts, int count = 1) const;
    void DPtoLP(LPRECT r) const;
    void DPtoLP(LPSIZE s) const;
    void LPtoDP(LPPOINT pts, int count = 1) const;
    void LPtoDP(LPRECT r) const;
    void LPtoDP(LPSIZE s) const;
    // HIMETRIC (0.01 mm) to and from logical units.
    void HIMETRICtoLP(LPSIZE s) const;
    void LPtoHIMETRIC(LPSIZE s) const;
    void DPtoHIMETRIC(LPSIZE s) const;
    void HIMETRICtoDP(LPSIZE s) const;

    // Clipping ---------------------------------------------------------------------------------
    // Logical coordinates of the box around what may be drawn; returns the region kind
    // (NULLREGION when nothing can be drawn, ERROR without a context).
    int GetClipBox(LPRECT r) const;
    BOOL PtVisible(int x, int y) const;
    BOOL PtVisible(POINT p) const { return PtVisible(p.x, p.y); }
    BOOL RectVisible(LPCRECT r) const;
    // The region is in device coordinates and copied; null removes the clip region.
    int SelectClipRgn(CRgn* rgn);
    int SelectClipRgn(CRgn* rgn, int mode);
    int ExcludeClipRect(int x1, int y1, int x2, int y2);
    int ExcludeClipRect(LPCRECT r);
    int IntersectClipRect(int x1, int y1, int x2, int y2);
    int IntersectClipRect(LPCRECT r);
    int OffsetClipRgn(int dx, int dy);
    int GetClipRgn(CRgn* rgn) const;

    // Lines and shapes ---------------------------------------------------------------------------
    CPoint GetCurrentPosition() const;
    CPoint MoveTo(int x, int y);
    CPoint MoveTo(POINT p) { return MoveTo(p.x, p.y); }
    // Draws from the current position up to, but not including, (x, y); moves there.
    BOOL LineTo(int x, int y);
    BOOL LineTo(POINT p) { return LineTo(p.x, p.y); }
    BOOL Polyline(const POINT* pts, int count);
    BOOL PolylineTo(const POINT* pts, int count);
    BOOL PolyPolyline(const POINT* pts, const DWORD* counts, int polylines);
    BOOL Polygon(const POINT* pts, int count);
    BOOL PolyPolygon(const POINT* pts, const INT* counts, int polygons);
    BOOL Rectangle(int x1, int y1, int x2, int y2);
    BOOL Rectangle(LPCRECT r) { return Rectangle(r->left, r->top, r->right, r->bottom); }
    BOOL RoundRect(int x1, int y1, int x2, int y2, int w, int h);
    BOOL RoundRect(LPCRECT r, POINT p) { return RoundRect(r->left, r->top, r->right, r->bottom, p.x, p.y); }
    BOOL Ellipse(int x1, int y1, int x2, int y2);
    BOOL Ellipse(LPCRECT r) { return Ellipse(r->left, r->top, r->right, r->bottom); }
    // The ellipse in the box, counter-clockwise from the ray through (x3,y3) to the ray
    // through (x4,y4); equal rays draw the whole ellipse.
    BOOL Arc(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    BOOL Arc(LPCRECT r, POINT start, POINT end) { return Arc(r->left, r->top, r->right, r->bottom, start.x, start.y, end.x, end.y); }
    BOOL ArcTo(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    BOOL Chord(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    BOOL Chord(LPCRECT r, POINT start, POINT end) { return Chord(r->left, r->top, r->right, r->bottom, start.x, start.y, end.x, end.y); }
    BOOL Pie(int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
    BOOL Pie(LPCRECT r, POINT start, POINT end) { return Pie(r->left, r->top, r->right, r->bottom, start.x, start.y, end.x, end.y); }

    // Fills --------------------------------------------------------------------------------------
    void FillRect(LPCRECT r, CBrush* brush);
    void FillSolidRect(LPCRECT r, COLORREF c);
    void FillSolidRect(int x, int y, int cx, int cy, COLORREF c);
    void FrameRect(LPCRECT r, CBrush* brush);
    void InvertRect(LPCRECT r);
    BOOL FillRgn(CRgn* rgn, CBrush* brush);
    BOOL FrameRgn(CRgn* rgn, CBrush* brush, int w, int h);
    BOOL InvertRgn(CRgn* rgn);
    BOOL PaintRgn(CRgn* rgn);
    void Draw3dRect(LPCRECT r, COLORREF topLeft, COLORREF bottomRight);
    void Draw3dRect(int x, int y, int cx, int cy, COLORREF topLeft, COLORREF bottomRight);
    void DrawFocusRect(LPCRECT r);
    BOOL DrawEdge(LPRECT r, UINT edge, UINT flags);
    BOOL DrawFrameControl(LPRECT r, UINT type, UINT state);

    // Pixels and blits -----------------------------------------------------------------------------
    COLORREF GetPixel(int x, int y) const;
    COLORREF GetPixel(POINT p) const { return GetPixel(p.x, p.y); }
    COLORREF SetPixel(int x, int y, COLORREF c);
    COLORREF SetPixel(POINT p, COLORREF c) { return SetPixel(p.x, p.y, c); }
    BOOL SetPixelV(int x, int y, COLORREF c);
    BOOL SetPixelV(POINT p, COLORREF c) { return SetPixelV(p.x, p.y, c); }
    BOOL PatBlt(int x, int y, int w, int h, DWORD rop);
    BOOL BitBlt(int x, int y, int w, int h, CDC* src, int xSrc, int ySrc, DWORD rop);
    BOOL StretchBlt(int x, int y, int w, int h, CDC* src, int xSrc, int ySrc, int wSrc, int hSrc, DWORD rop);
    BOOL FloodFill(int x, int y, COLORREF border);
    BOOL DrawIcon(int x, int y, HICON icon) { return ::DrawIcon(m_hDC, x, y, icon); }
    BOOL DrawIcon(POINT p, HICON icon) { return ::DrawIcon(m_hDC, p.x, p.y, icon); }

    // Text -----------------------------------------------------------------------------------------
    // Strings are 8-bit in the system code page.
    BOOL TextOut(int x, int y, LPCSTR s, int count);
    BOOL TextOut(int x, int y, const CString& s) { return TextOut(x, y, s.GetString(), s.GetLength()); }
    BOOL ExtTextOut(int x, int y, UINT options, LPCRECT r, LPCSTR s, UINT count, const INT* dx);
    BOOL ExtTextOut(int x, int y, UINT options, LPCRECT r, const CString& s, const INT* dx)
    { return ExtTextOut(x, y, options, r, s.GetString(), static_cast<UINT>(s.GetLength()), dx); }
    CSize TabbedTextOut(int x, int y, LPCSTR s, int count, int tabs, const INT* tabStops, int tabOrigin);
    CSize TabbedTextOut(int x, int y, const CString& s, int tabs, const INT* tabStops, int tabOrigin)
    { return TabbedTextOut(x, y, s.GetString(), s.GetLength(), tabs, tabStops, tabOrigin); }
    // count -1: up to the NUL. Returns the height of the text (the rectangle's new size with
    // DT_CALCRECT, which draws nothing). Unless DT_NOPREFIX, "&x" draws x underlined (one
    // row below the baseline; DT_HIDEPREFIX: not underlined, DT_PREFIXONLY: the underline
    // alone) and "&&" draws "&".
    int DrawText(LPCSTR s, int count, LPRECT r, UINT format);
    int DrawText(const CString& s, LPRECT r, UINT format) { return DrawText(s.GetString(), s.GetLength(), r, format); }
    CSize GetTextExtent(LPCSTR s, int count) const;
    CSize GetTextExtent(const CString& s) const { return GetTextExtent(s.GetString(), s.GetLength()); }
    CSize GetOutputTextExtent(LPCSTR s, int count) const { return GetTextExtent(s, count); }
    CSize GetOutputTextExtent(const CString& s) const { return GetTextExtent(s); }
    CSize GetTabbedTextExtent(LPCSTR s, int count, int tabs, const INT* tabStops) const;
    CSize GetTabbedTextExtent(const CString& s, int tabs, const INT* tabStops) const
    { return GetTabbedTextExtent(s.GetString(), s.GetLength(), tabs, tabStops); }
    BOOL GetTextMetrics(LPTEXTMETRIC tm) const;
    BOOL GetOutputTextMetrics(LPTEXTMETRIC tm) const { return GetTextMetrics(tm); }
    int GetTextFace(int count, LPSTR face) const;
    BOOL GetCharWidth(UINT first, UINT last, INT* widths) const;

    // Printing --------------------------------------------------------------------------------------
    int StartDoc(LPDOCINFO info);
    int StartDoc(LPCSTR docName);
    int StartPage();
    int EndPage();
    int EndDoc();
    int AbortDoc();
    int SetAbortProc(BOOL (*)(HDC, int)) { return 1; }

protected:
    // How the destructor gives the handle back: 0 nothing, 1 DeleteDC, 2 ReleaseDC, 3 EndPaint.
    int m_release = 0;
    HWND m_hWndRelease = nullptr;
};

// Drawing into a window's client area outside painting (GetDC/ReleaseDC).
class CClientDC : public CDC {
public:
    explicit CClientDC(CWnd* wnd);
    ~CClientDC() override;
    HWND m_hWnd = nullptr;
};

// Drawing into a window's whole rectangle, frame included (GetWindowDC/ReleaseDC).
class CWindowDC : public CDC {
public:
    explicit CWindowDC(CWnd* wnd);
    ~CWindowDC() override;
    HWND m_hWnd = nullptr;
};

// Painting: BeginPaint in the constructor, EndPaint in the destructor. The clip region is the
// window's update region.
class CPaintDC : public CDC {
public:
    explicit CPaintDC(CWnd* wnd);
    ~CPaintDC() override;
    HWND m_hWnd = nullptr;
    PAINTSTRUCT m_ps{};
};

// ---------------------------------------------------------------------------------------------
// The C interface. Functions on an invalid handle fail quietly (FALSE, 0, null, CLR_INVALID).
HDC GetDC(HWND hwnd);  // hwnd null: the screen
HDC GetWindowDC(HWND hwnd);
int ReleaseDC(HWND hwnd, HDC hdc);
HDC BeginPaint(HWND hwnd, LPPAINTSTRUCT ps);
BOOL EndPaint(HWND hwnd, const PAINTSTRUCT* ps);
HWND WindowFromDC(HDC hdc);
HDC CreateCompatibleDC(HDC hdc);
HDC CreateDCA(LPCSTR driver, LPCSTR device, LPCSTR port, const DEVMODEA* init);
inline HDC CreateDC(LPCSTR driver, LPCSTR device, LPCSTR port, const DEVMODEA* init) { return CreateDCA(driver, device, port, init); }
HDC CreateICA(LPCSTR driver, LPCSTR device, LPCSTR port, const DEVMODEA* init);
BOOL DeleteDC(HDC hdc);
int SaveDC(HDC hdc);
BOOL RestoreDC(HDC hdc, int level);
int GetDeviceCaps(HDC hdc, int index);

HGDIOBJ GetStockObject(int index);
HGDIOBJ SelectObject(HDC hdc, HGDIOBJ h);
BOOL DeleteObject(HGDIOBJ h);
HGDIOBJ GetCurrentObject(HDC hdc, UINT type);
DWORD GetObjectType(HGDIOBJ h);
int GetObjectA(HANDLE h, int count, LPVOID buf);
inline int GetObject(HANDLE h, int count, LPVOID buf) { return GetObjectA(h, count, buf); }

HPEN CreatePen(int style, int width, COLORREF color);
HPEN CreatePenIndirect(const LOGPEN* pen);
HPEN ExtCreatePen(DWORD style, DWORD width, const LOGBRUSH* brush, DWORD styleCount, const DWORD* styles);
HBRUSH CreateSolidBrush(COLORREF color);
HBRUSH CreateHatchBrush(int index, COLORREF color);
HBRUSH CreateBrushIndirect(const LOGBRUSH* brush);
HBRUSH CreatePatternBrush(HBITMAP bitmap);
HFONT CreateFontA(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                  DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                  DWORD quality, DWORD pitchAndFamily, LPCSTR faceName);
inline HFONT CreateFont(int height, int width, int escapement, int orientation, int weight, DWORD italic,
                        DWORD underline, DWORD strikeOut, DWORD charSet, DWORD outPrecision, DWORD clipPrecision,
                        DWORD quality, DWORD pitchAndFamily, LPCSTR faceName) {
    return CreateFontA(height, width, escapement, orientation, weight, italic, underline, strikeOut, charSet,
                       outPrecision, clipPrecision, quality, pitchAndFamily, faceName);
}
HFONT CreateFontIndirectA(const LOGFONTA* lf);
inline HFONT CreateFontIndirect(const LOGFONT* lf) { return CreateFontIndirectA(lf); }
HBITMAP CreateBitmap(int width, int height, UINT planes, UINT bitsPerPixel, const void* bits);
HBITMAP CreateCompatibleBitmap(HDC hdc, int width, int height);
HBITMAP LoadBitmapA(HINSTANCE inst, LPCSTR name);
inline HBITMAP LoadBitmap(HINSTANCE inst, LPCSTR name) { return LoadBitmapA(inst, name); }
LONG GetBitmapBits(HBITMAP bmp, LONG count, LPVOID bits);
LONG SetBitmapBits(HBITMAP bmp, DWORD count, const void* bits);
HRGN CreateRectRgn(int x1, int y1, int x2, int y2);
HRGN CreateRectRgnIndirect(const RECT* r);
HRGN CreateEllipticRgn(int x1, int y1, int x2, int y2);
HRGN CreatePolygonRgn(const POINT* pts, int count, int mode);
int CombineRgn(HRGN dst, HRGN a, HRGN b, int mode);
int OffsetRgn(HRGN rgn, int dx, int dy);
int GetRgnBox(HRGN rgn, LPRECT r);
BOOL PtInRegion(HRGN rgn, int x, int y);
BOOL RectInRegion(HRGN rgn, const RECT* r);
BOOL EqualRgn(HRGN a, HRGN b);
BOOL SetRectRgn(HRGN rgn, int x1, int y1, int x2, int y2);
HPALETTE CreatePalette(const LOGPALETTE* lp);
HPALETTE SelectPalette(HDC hdc, HPALETTE pal, BOOL forceBackground);
UINT RealizePalette(HDC hdc);
UINT GetPaletteEntries(HPALETTE pal, UINT start, UINT count, PALETTEENTRY* out);
UINT SetPaletteEntries(HPALETTE pal, UINT start, UINT count, const PALETTEENTRY* in);
// A true-colour display has no system palette: 0 entries.
UINT GetSystemPaletteEntries(HDC hdc, UINT start, UINT count, PALETTEENTRY* out);

int SetROP2(HDC hdc, int mode);
int GetROP2(HDC hdc);
int SetBkMode(HDC hdc, int mode);
int GetBkMode(HDC hdc);
COLORREF SetBkColor(HDC hdc, COLORREF c);
COLORREF GetBkColor(HDC hdc);
COLORREF SetTextColor(HDC hdc, COLORREF c);
COLORREF GetTextColor(HDC hdc);
UINT SetTextAlign(HDC hdc, UINT flags);
UINT GetTextAlign(HDC hdc);
int SetStretchBltMode(HDC hdc, int mode);
int GetStretchBltMode(HDC hdc);
int SetPolyFillMode(HDC hdc, int mode);
int SetMapMode(HDC hdc, int mode);
int GetMapMode(HDC hdc);
BOOL SetViewportExtEx(HDC hdc, int cx, int cy, LPSIZE old);
BOOL SetViewportOrgEx(HDC hdc, int x, int y, LPPOINT old);
BOOL SetWindowExtEx(HDC hdc, int cx, int cy, LPSIZE old);
BOOL SetWindowOrgEx(HDC hdc, int x, int y, LPPOINT old);
BOOL OffsetWindowOrgEx(HDC hdc, int dx, int dy, LPPOINT old);
BOOL OffsetViewportOrgEx(HDC hdc, int dx, int dy, LPPOINT old);
BOOL GetViewportExtEx(HDC hdc, LPSIZE s);
BOOL GetViewportOrgEx(HDC hdc, LPPOINT p);
BOOL GetWindowExtEx(HDC hdc, LPSIZE s);
BOOL GetWindowOrgEx(HDC hdc, LPPOINT p);
BOOL DPtoLP(HDC hdc, LPPOINT pts, int count);
BOOL LPtoDP(HDC hdc, LPPOINT pts, int count);
int SelectClipRgn(HDC hdc, HRGN rgn);
int ExtSelectClipRgn(HDC hdc, HRGN rgn, int mode);
int IntersectClipRect(HDC hdc, int x1, int y1, int x2, int y2);
int ExcludeClipRect(HDC hdc, int x1, int y1, int x2, int y2);
int GetClipBox(HDC hdc, LPRECT r);
int GetClipRgn(HDC hdc, HRGN rgn);

BOOL MoveToEx(HDC hdc, int x, int y, LPPOINT old);
BOOL LineTo(HDC hdc, int x, int y);
BOOL Polyline(HDC hdc, const POINT* pts, int count);
BOOL Polygon(HDC hdc, const POINT* pts, int count);
BOOL Rectangle(HDC hdc, int x1, int y1, int x2, int y2);
BOOL Ellipse(HDC hdc, int x1, int y1, int x2, int y2);
BOOL Arc(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
BOOL Chord(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
BOOL Pie(HDC hdc, int x1, int y1, int x2, int y2, int x3, int y3, int x4, int y4);
int FillRect(HDC hdc, const RECT* r, HBRUSH brush);
int FrameRect(HDC hdc, const RECT* r, HBRUSH brush);
BOOL InvertRect(HDC hdc, const RECT* r);
BOOL DrawFocusRect(HDC hdc, const RECT* r);
BOOL DrawEdge(HDC hdc, LPRECT r, UINT edge, UINT flags);
BOOL DrawFrameControl(HDC hdc, LPRECT r, UINT type, UINT state);
COLORREF GetPixel(HDC hdc, int x, int y);
COLORREF SetPixel(HDC hdc, int x, int y, COLORREF c);
BOOL SetPixelV(HDC hdc, int x, int y, COLORREF c);
BOOL PatBlt(HDC hdc, int x, int y, int w, int h, DWORD rop);
BOOL FloodFill(HDC hdc, int x, int y, COLORREF border);
BOOL BitBlt(HDC dst, int x, int y, int w, int h, HDC src, int xSrc, int ySrc, DWORD rop);
BOOL StretchBlt(HDC dst, int x, int y, int w, int h, HDC src, int xSrc, int ySrc, int wSrc, int hSrc, DWORD rop);
// Draws a device-independent bitmap: 8 bits with a colour table of biClrUsed (0: 256)
// entries, or 24 or 32 bits. Rows are stored bottom-up when biHeight > 0 and each row is
// padded to a multiple of 4 bytes (the platform's rule); when biSizeImage is set, no byte at
// or past it is read: rows that would reach past it are left undrawn. The
// source rectangle's y counts from the bottom row for bottom-up bitmaps; a negative width or
// height on one side mirrors. Every stretch mode samples the nearest pixel, enlarging and
// shrinking (HALFTONE has no averaging filter here). Returns the number of scan lines
// drawn, 0 on failure.
int StretchDIBits(HDC hdc, int xDest, int yDest, int wDest, int hDest, int xSrc, int ySrc, int wSrc, int hSrc,
                  const void* bits, const BITMAPINFO* info, UINT usage, DWORD rop);
int SetDIBitsToDevice(HDC hdc, int xDest, int yDest, DWORD w, DWORD h, int xSrc, int ySrc, UINT startScan,
                      UINT scanLines, const void* bits, const BITMAPINFO* info, UINT usage);
// Reads a bitmap (not selected into a context, as the platform asks) as a DIB of the header's
// bit count (24 or 32; 8 with a grey colour table). With bits null, fills in the header
// (biSizeImage, biClrUsed) only. Returns the number of scan lines.
int GetDIBits(HDC hdc, HBITMAP bmp, UINT start, UINT lines, void* bits, BITMAPINFO* info, UINT usage);
int SetDIBits(HDC hdc, HBITMAP bmp, UINT start, UINT lines, const void* bits, const BITMAPINFO* info, UINT usage);
// A bitmap whose pixels are also a block of memory the caller reads and writes at *bits:
// 8 bits (colour table of biClrUsed entries, 0: 256), 24 or 32 bits, BI_RGB, rows padded to
// 4 bytes, bottom-up when biHeight > 0. It selects into a memory context like any bitmap.
// What the context draws shows in the block when the drawing call returns, and what the
// caller wrote into the block is seen by the next drawing call on the bitmap (GetDIBits
// and GetBitmapBits included): 32-bit top-down sections share the very memory, the others
// are compared and copied at those call boundaries. 8-bit drawing takes the nearest colour
// of the table. The block lives until DeleteObject. Null (and *bits null) for a bad header,
// DIB_PAL_COLORS or a section handle. hdc is unused.
HBITMAP CreateDIBSection(HDC hdc, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD offset);
// Drawing is never batched here: every call has reached the bitmaps when it returns.
inline BOOL GdiFlush() { return TRUE; }

BOOL TextOutA(HDC hdc, int x, int y, LPCSTR s, int count);
inline BOOL TextOut(HDC hdc, int x, int y, LPCSTR s, int count) { return TextOutA(hdc, x, y, s, count); }
BOOL ExtTextOutA(HDC hdc, int x, int y, UINT options, const RECT* r, LPCSTR s, UINT count, const INT* dx);
inline BOOL ExtTextOut(HDC hdc, int x, int y, UINT options, const RECT* r, LPCSTR s, UINT count, const INT* dx) {
    return ExtTextOutA(hdc, x, y, options, r, s, count, dx);
}
LONG TabbedTextOutA(HDC hdc, int x, int y, LPCSTR s, int count, int tabs, const INT* tabStops, int tabOrigin);
int DrawTextA(HDC hdc, LPCSTR s, int count, LPRECT r, UINT format);
inline int DrawText(HDC hdc, LPCSTR s, int count, LPRECT r, UINT format) { return DrawTextA(hdc, s, count, r, format); }
BOOL GetTextExtentPoint32A(HDC hdc, LPCSTR s, int count, LPSIZE size);
inline BOOL GetTextExtentPoint32(HDC hdc, LPCSTR s, int count, LPSIZE size) { return GetTextExtentPoint32A(hdc, s, count, size); }
BOOL GetTextMetricsA(HDC hdc, TEXTMETRICA* tm);
inline BOOL GetTextMetrics(HDC hdc, LPTEXTMETRIC tm) { return GetTextMetricsA(hdc, tm); }
int GetTextFaceA(HDC hdc, int count, LPSTR face);

// Printing on a printer context.
int StartDocA(HDC hdc, const DOCINFOA* info);
inline int StartDoc(HDC hdc, const DOCINFO* info) { return StartDocA(hdc, info); }
int StartPage(HDC hdc);
int EndPage(HDC hdc);
int EndDoc(HDC hdc);
int AbortDoc(HDC hdc);
// Printers of the system. The default printer writes PDF files.
BOOL OpenPrinterA(LPSTR name, HANDLE* printer, void* defaults);
BOOL ClosePrinter(HANDLE printer);
// Fills out (DM_OUT_BUFFER) with the printer's settings merged with in (DM_IN_BUFFER). With
// mode 0 returns the size of the settings. IDOK on success, a negative value on failure.
LONG DocumentPropertiesA(HWND hwnd, HANDLE printer, LPSTR device, DEVMODEA* out, const DEVMODEA* in, DWORD mode);
BOOL GetDefaultPrinterA(LPSTR buffer, LPDWORD size);

// Icons and images --------------------------------------------------------------------------------
// Kinds of image, for LoadImage and a button's BM_SETIMAGE / BM_GETIMAGE (as its wParam).
constexpr UINT IMAGE_BITMAP = 0;
constexpr UINT IMAGE_ICON = 1;
constexpr UINT IMAGE_CURSOR = 2;
constexpr UINT LR_DEFAULTCOLOR = 0x0000;
constexpr UINT LR_LOADFROMFILE = 0x0010;
constexpr UINT LR_DEFAULTSIZE = 0x0040;
constexpr UINT LR_SHARED = 0x8000;
constexpr UINT DI_MASK = 0x0001;
constexpr UINT DI_IMAGE = 0x0002;
constexpr UINT DI_NORMAL = 0x0003;
constexpr UINT DI_DEFAULTSIZE = 0x0008;
// A bitmap (as LoadBitmap) or an icon of the module's resources, or of a file with
// LR_LOADFROMFILE. An icon resource (RT_GROUP_ICON, else RT_ICON) holds an icon file, a PNG
// or a BMP; cx, cy scale it (0: its own size, or the system size with LR_DEFAULTSIZE).
// Cursors are handed to LoadCursorA. The caller destroys what it loaded (DestroyIcon,
// DeleteObject) unless LR_SHARED.
HANDLE LoadImageA(HINSTANCE inst, LPCSTR name, UINT type, int cx, int cy, UINT flags);
inline HANDLE LoadImage(HINSTANCE inst, LPCSTR name, UINT type, int cx, int cy, UINT flags) {
    return LoadImageA(inst, name, type, cx, cy, flags);
}
HICON LoadIconA(HINSTANCE inst, LPCSTR name);
BOOL DestroyIcon(HICON icon);
// Draws the icon blended by its transparency at (x, y), scaled to cx x cy (0: its size).
BOOL DrawIconEx(HDC hdc, int x, int y, HICON icon, int cx, int cy, UINT step, HBRUSH flicker, UINT flags);
BOOL DrawIcon(HDC hdc, int x, int y, HICON icon);
// Width and height of an icon made by this layer; false for another handle.
BOOL GetIconSize(HICON icon, SIZE* size);

// System parameters: SPI_GETNONCLIENTMETRICS (the fonts of captions, menus, status and
// messages), SPI_GETWHEELSCROLLLINES (3), SPI_GETWORKAREA.
constexpr UINT SPI_GETWORKAREA = 0x0030;
constexpr UINT SPI_GETNONCLIENTMETRICS = 0x0029;
constexpr UINT SPI_GETWHEELSCROLLLINES = 0x0068;
struct NONCLIENTMETRICSA {
    UINT cbSize;  // 344 (or 340 without the padded border width)
    int iBorderWidth;
    int iScrollWidth;
    int iScrollHeight;
    int iCaptionWidth;
    int iCaptionHeight;
    LOGFONTA lfCaptionFont;
    int iSmCaptionWidth;
    int iSmCaptionHeight;
    LOGFONTA lfSmCaptionFont;
    int iMenuWidth;
    int iMenuHeight;
    LOGFONTA lfMenuFont;
    LOGFONTA lfStatusFont;
    LOGFONTA lfMessageFont;
    int iPaddedBorderWidth;
};
static_assert(sizeof(NONCLIENTMETRICSA) == 344);
using NONCLIENTMETRICS = NONCLIENTMETRICSA;
BOOL SystemParametersInfoA(UINT action, UINT param, void* data, UINT winIni);
inline BOOL SystemParametersInfo(UINT action, UINT param, void* data, UINT winIni) {
    return SystemParametersInfoA(action, param, data, winIni);
}

// System colours, metrics -----------------------------------------------------------------------
DWORD GetSysColor(int index);
// A stock brush of the system colour; never delete it.
HBRUSH GetSysColorBrush(int index);
int GetSystemMetrics(int index);
// n * numerator / denominator in 64 bits, rounded half away from zero; -1 on a zero divisor.
int MulDiv(int n, int numerator, int denominator);

// The clipboard ------------------------------------------------------------------------------------
// The clipboard is this process's own store, mirrored to the system clipboard where one is
// present (text in the code page, a DIB as a picture).
BOOL OpenClipboard(HWND owner);
BOOL CloseClipboard();
BOOL EmptyClipboard();
// Takes ownership of the global memory block: the clipboard frees it when emptied.
HANDLE SetClipboardData(UINT format, HANDLE mem);
// The block stays the clipboard's: the caller locks it and must not free it.
HANDLE GetClipboardData(UINT format);
BOOL IsClipboardFormatAvailable(UINT format);
HWND GetClipboardOwner();
UINT EnumClipboardFormats(UINT format);
int CountClipboardFormats();

namespace orlex {

// Printing of the process: where the default printer writes its PDF (a file path, or a folder
// in which "<document>.pdf" is written), the resolution it reports and renders at (default
// 300 dots per inch), the paper in tenths of a millimetre (default A4, 2100 x 2970) and
// whether it prints in colour. The settings take effect for contexts created afterwards.
struct PrinterSettings {
    std::string outputPath;  // empty: "<document>.pdf" in the working folder
    int dpi = 300;
    int paperWidth = 2100;
    int paperHeight = 2970;
    bool landscape = false;
    bool colour = true;
};
void SetPrinterSettings(const PrinterSettings& s);
PrinterSettings GetPrinterSettings();
// The files written by EndDoc so far in this process, oldest first.
std::vector<std::string> PrintedDocuments();
// Tells whether the last page ended on the given printer context (for tests): its pixels as
// 32-bit BGRX rows, width, height. False when no page was ended.
bool LastPrintedPage(std::vector<DWORD>& pixels, int& width, int& height);

// The face the drawing layer asks the font system for when a face name is asked for (for
// example "Arial" -> a metric-compatible sans face).
std::string ResolvedFontFamily(const char* faceName);
// The family the font system really gives for a logical font (after its own substitutions);
// empty when no font can be had.
std::string ActualFontFamily(const LOGFONTA& lf);

}  // namespace orlex
