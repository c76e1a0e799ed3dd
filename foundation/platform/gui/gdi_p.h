// Private to the drawing layer: what lies behind the handles. Drawing objects and device
// contexts are heap objects whose addresses are the handles; a registry tells live handles
// from stale or foreign ones, so a call on a bad handle fails instead of crashing.
#pragma once

#include <QFont>
#include <QImage>
#include <QRegion>

#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/gui/gdi_raster_p.h"

class QPrinter;
class QPainter;

namespace orlex::gdi {

enum class Kind { Pen, Brush, Font, Bitmap, Region, Palette, Icon };

struct Object {
    explicit Object(Kind k) : kind(k) {}
    virtual ~Object() = default;
    Kind kind;
    bool stock = false;   // never deleted
    int selectedIn = 0;   // number of contexts it is selected into
};

struct Pen : Object {
    Pen() : Object(Kind::Pen) {}
    int style = PS_SOLID;  // PS_* incl. type, cap and join bits
    int width = 0;
    COLORREF color = 0;
    int Style() const { return style & PS_STYLE_MASK; }
};

struct Bitmap;

struct Brush : Object {
    Brush() : Object(Kind::Brush) {}
    UINT style = BS_SOLID;
    COLORREF color = 0;
    int hatch = 0;
    QImage pattern;  // 8x8 RGB32 for BS_PATTERN
};

struct Font : Object {
    Font() : Object(Kind::Font) {}
    LOGFONTA lf{};
};

// The caller's side of a DIB section: its memory and how to read it. Unless `shared`
// (32-bit top-down: the bitmap's image is a view of `bits`), `shadow` holds the block as it
// was at the last exchange with the image, so that changes the caller made are found.
struct DibSection {
    std::unique_ptr<unsigned char[]> store;  // owns the block
    unsigned char* bits = nullptr;
    int bitsPixel = 32;
    int stride = 0;       // bytes a row
    bool topDown = false;
    bool shared = false;
    std::uint32_t colours[256] = {};  // 8 bits: the table as RGB32 pixels
    int colourCount = 0;
    std::vector<unsigned char> shadow;
    std::vector<std::pair<std::uint32_t, unsigned char>> nearestCache;  // 8 bits: colour -> index, recent first
};

struct Bitmap : Object {
    Bitmap() : Object(Kind::Bitmap) {}
    std::unique_ptr<DibSection> dib;  // before image: the image may view its memory
    QImage image;      // Format_RGB32, the pixels
    int bitsPixel = 32;  // what the creator asked for (1 for monochrome)
    SIZE dimension{0, 0};
};

struct Region : Object {
    Region() : Object(Kind::Region) {}
    QRegion rgn;
};

struct Icon : Object {
    Icon() : Object(Kind::Icon) {}
    QImage image;  // Format_ARGB32_Premultiplied
};

struct Palette : Object {
    Palette() : Object(Kind::Palette) {}
    std::vector<PALETTEENTRY> entries;
};

// Live handle check and lookup; null for a stale, foreign or null handle, or a wrong kind.
Object* Lookup(HGDIOBJ h);
template <class T>
T* As(HGDIOBJ h, Kind k) {
    Object* o = Lookup(h);
    return o && o->kind == k ? static_cast<T*>(o) : nullptr;
}
inline Pen* AsPen(HGDIOBJ h) { return As<Pen>(h, Kind::Pen); }
inline Brush* AsBrush(HGDIOBJ h) { return As<Brush>(h, Kind::Brush); }
inline Font* AsFont(HGDIOBJ h) { return As<Font>(h, Kind::Font); }
inline Bitmap* AsBitmap(HGDIOBJ h) { return As<Bitmap>(h, Kind::Bitmap); }
inline Region* AsRegion(HGDIOBJ h) { return As<Region>(h, Kind::Region); }
inline Palette* AsPalette(HGDIOBJ h) { return As<Palette>(h, Kind::Palette); }
inline Icon* AsIcon(HGDIOBJ h) { return As<Icon>(h, Kind::Icon); }
// Takes ownership and returns the handle.
HGDIOBJ Register(Object* o);
// Forgets the wrapper objects (FromHandle temporaries) of a handle that goes away.
void DropTempWrappers(void* handle);

// A bitmap of w x h pixels (at least 1x1), black.
Bitmap* NewBitmap(int w, int h, int bitsPixel);
// DIB sections: brings into the image the rows of the block the caller changed since the
// last exchange; writes the image's rows of `rows` (image coordinates) into the block.
// Both do nothing for a bitmap that is no section; a section sharing its memory is only
// checked to still share it.
void DibPull(Bitmap& b);
void DibPush(Bitmap& b, const QRect& rows);
// Counts a selection of the object into a context (+1) or out of it (-1); an object deleted
// while selected is freed when the last context lets it go.
void NoteSelected(Object* o, int delta);
HGDIOBJ Stock(int index);
int RegionKindOf(const QRegion& r);
// Pixel sets of shapes, with the right and bottom edges left out.
QRegion EllipseRegion(int x1, int y1, int x2, int y2);
// Only the part within `limit` (when given) is computed; a polygon too large for the limit
// of 16384 x 16384 pixels gives an empty region.
QRegion PolygonRegion(const POINT* pts, const INT* counts, int polys, int mode, const QRect& limit = QRect());

// Device contexts -------------------------------------------------------------------------------
enum class DcKind { Memory, Window, Screen, Printer };

// What SaveDC keeps.
struct DcAttrs {
    HPEN pen = nullptr;
    HBRUSH brush = nullptr;
    HFONT font = nullptr;
    HBITMAP bitmap = nullptr;
    HPALETTE palette = nullptr;
    COLORREF text = 0;
    COLORREF bk = 0x00FFFFFF;
    int bkMode = OPAQUE;
    int rop2 = R2_COPYPEN;
    int stretchMode = BLACKONWHITE;
    int polyFill = ALTERNATE;
    UINT textAlign = 0;
    int charExtra = 0;
    int arcDir = AD_COUNTERCLOCKWISE;
    POINT brushOrg{0, 0};
    POINT cur{0, 0};
    int mapMode = MM_TEXT;
    POINT wOrg{0, 0}, vOrg{0, 0};
    SIZE wExt{1, 1}, vExt{1, 1};
    bool hasClip = false;
    QRegion clip;  // device coordinates
};

struct PrintJob;

struct Dc {
    DcKind kind = DcKind::Memory;
    HWND hwnd = nullptr;
    bool client = true;  // client area (GetDC) or whole window (GetWindowDC)
    bool paint = false;
    QRegion paintClip;   // update region of a painting session, device coordinates
    DcAttrs a;
    std::vector<DcAttrs> saved;
    long long styleStep = 0;  // position in the pen's dash rhythm, kept across a figure
    std::unique_ptr<PrintJob> print;
    CDC* attached = nullptr;  // the permanent wrapper that owns this handle, if any
    int dpi = 0;              // a memory context made for a printer keeps its resolution
    ~Dc();
};

Dc* LookupDc(HDC h);
HDC RegisterDc(Dc* dc);
void DestroyDc(HDC h);

// The printer side (gdi_print.cpp).
struct PrintJob {
    PrinterSettings settings;
    std::string device;
    int pageW = 0, pageH = 0;  // pixels
    QImage page;               // the page being drawn
    bool docStarted = false;
    bool pageStarted = false;
    bool anyPage = false;
    std::string outputFile;
    std::unique_ptr<QPrinter> printer;
    std::unique_ptr<QPainter> painter;
    ~PrintJob();
};
std::unique_ptr<PrintJob> NewPrintJob(const char* device, const DEVMODEA* dm);

// The screen: size and resolution the layer reports.
constexpr int kScreenW = 1920;
constexpr int kScreenH = 1080;
constexpr int kScreenDpi = 96;
QImage& ScreenImage();

// Fonts (gdi_text.cpp): the Qt font of a logical font at a device scale.
QFont MakeQFont(const LOGFONTA& lf, int pixelHeightOverride = 0);
const LOGFONTA& StockFontLog(int index);
// Makes sure a GUI application exists before fonts are used.
void NeedApplication();

// Text code page boundary.
QString FromAnsi(const char* s, int count);

}  // namespace orlex::gdi
