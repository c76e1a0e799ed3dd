// Device-independent bitmaps: StretchDIBits and SetDIBitsToDevice (drawing a DIB through
// precomputed column and row maps), GetDIBits/SetDIBits, and bitmaps from resources.
//
// Stretch modes: every mode picks the nearest source pixel. HALFTONE does not average here:
// as on those versions of the platform that have no halftone filter, it stretches as
// COLORONCOLOR does, which keeps each data pixel of an image exact on screen and keeps a
// shrinking stretch to one read per destination pixel instead of a pass over the source.
//
// Row pitch: the platform's rule, rows padded to a multiple of 4 bytes. The library's own
// bitmap blocks do not pad their rows; they agree with this rule exactly when the row's
// byte count is a multiple of 4, which is where the library relies on it. For any other
// width, biSizeImage (which those blocks set to their real size) bounds what is read, so a
// short block is never read past its end.
#include <algorithm>
#include <cstring>

#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/resources.h"

namespace orlex::gdi {

void BlitMapped(Dc& dst, Target& t, const QRect& dr, const QImage& src, const std::vector<int>& colMap,
                const std::vector<int>& rowMap, DWORD rop);

namespace {

// What a BITMAPINFO says, checked.
struct DibLayout {
    int width = 0, height = 0;  // height > 0
    bool bottomUp = true;
    int bpp = 0;
    std::size_t pitch = 0;
    std::size_t limit = 0;      // readable bytes of the pixels (SIZE_MAX when unknown)
    std::uint32_t lut[256] = {};
};

bool ReadLayout(const Dc* dc, const BITMAPINFO* info, UINT usage, DibLayout& L) {
    if (!info) return false;
    const BITMAPINFOHEADER& h = info->bmiHeader;
    if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biWidth <= 0 || h.biHeight == 0) return false;
    if (h.biCompression != BI_RGB) return false;
    if (h.biBitCount != 1 && h.biBitCount != 4 && h.biBitCount != 8 && h.biBitCount != 24 && h.biBitCount != 32)
        return false;
    if (h.biWidth > (1 << 20) || h.biHeight > (1 << 20) || h.biHeight < -(1 << 20)) return false;
    L.width = h.biWidth;
    L.bottomUp = h.biHeight > 0;
    L.height = h.biHeight > 0 ? h.biHeight : -h.biHeight;
    L.bpp = h.biBitCount;
    L.pitch = ((static_cast<std::size_t>(L.width) * L.bpp + 31) / 32) * 4;
    L.limit = h.biSizeImage ? h.biSizeImage : SIZE_MAX;
    if (L.bpp <= 8) {
        const unsigned maxN = 1u << L.bpp;
        unsigned n = h.biClrUsed ? h.biClrUsed : maxN;
        if (n > maxN) n = maxN;
        const auto* table = reinterpret_cast<const unsigned char*>(info) + h.biSize;
        Palette* pal = dc ? AsPalette(dc->a.palette) : nullptr;
        for (unsigned i = 0; i < 256; ++i) L.lut[i] = kAlpha;
        for (unsigned i = 0; i < n; ++i) {
            if (usage == DIB_PAL_COLORS) {
                WORD idx;
                std::memcpy(&idx, table + i * 2, 2);
                if (pal && idx < pal->entries.size()) {
                    const auto& e = pal->entries[idx];
                    L.lut[i] = ToPixel(RGB(e.peRed, e.peGreen, e.peBlue));
                }
            } else {
                const unsigned char* q = table + i * 4;  // blue, green, red, reserved
                L.lut[i] = kAlpha | (q[2] << 16) | (q[1] << 8) | q[0];
            }
        }
    }
    return true;
}

// The address of memory row `r`, or null when the row reaches past the readable bytes.
const unsigned char* RowAt(const unsigned char* bits, const DibLayout& L, int r) {
    if (r < 0 || r >= L.height) return nullptr;
    const std::size_t off = static_cast<std::size_t>(r) * L.pitch;
    const std::size_t need = (static_cast<std::size_t>(L.width) * L.bpp + 7) / 8;
    if (L.limit != SIZE_MAX && off + need > L.limit) return nullptr;
    return bits + off;
}

std::uint32_t PixelAt(const unsigned char* row, const DibLayout& L, int x) {
    switch (L.bpp) {
    case 1: return L.lut[(row[x >> 3] >> (7 - (x & 7))) & 1];
    case 4: return L.lut[(row[x >> 1] >> ((x & 1) ? 0 : 4)) & 0xF];
    case 8: return L.lut[row[x]];
    case 24: { const unsigned char* p = row + 3 * x; return kAlpha | (p[2] << 16) | (p[1] << 8) | p[0]; }
    default: { const unsigned char* p = row + 4 * x; return kAlpha | (p[2] << 16) | (p[1] << 8) | p[0]; }
    }
}

}  // namespace

// Decodes a whole DIB into an RGB32 image (top row first); false on a bad header or a
// block shorter than its rows.
bool DecodeDib(const BITMAPINFO* info, const void* bits, std::size_t avail, QImage& out) {
    DibLayout L;
    if (!ReadLayout(nullptr, info, DIB_RGB_COLORS, L) || !bits) return false;
    if (L.limit == SIZE_MAX || L.limit > avail) L.limit = avail;
    out = QImage(L.width, L.height, QImage::Format_RGB32);
    for (int y = 0; y < L.height; ++y) {
        const unsigned char* row = RowAt(static_cast<const unsigned char*>(bits), L, L.bottomUp ? L.height - 1 - y : y);
        if (!row) return false;
        auto* d = reinterpret_cast<std::uint32_t*>(out.scanLine(y));
        for (int x = 0; x < L.width; ++x) d[x] = PixelAt(row, L, x);
    }
    return true;
}

}  // namespace orlex::gdi

using namespace orlex::gdi;

int StretchDIBits(HDC hdc, int xD, int yD, int wD, int hD, int xS, int yS, int wS, int hS, const void* bits,
                  const BITMAPINFO* info, UINT usage, DWORD rop) {
    Dc* dc = LookupDc(hdc);
    DibLayout L;
    if (!dc || !bits || !ReadLayout(dc, info, usage, L)) return 0;
    if (wD == 0 || hD == 0 || wS == 0 || hS == 0) return 0;
    // Device rectangle of the destination; a sign difference between the sides mirrors.
    const POINT d0 = LpToDp(*dc, POINT{xD, yD}), d1 = LpToDp(*dc, POINT{xD + wD, yD + hD});
    const bool mirrorX = (d1.x < d0.x) != (wS < 0), mirrorY = (d1.y < d0.y) != (hS < 0);
    if (wS < 0) { xS += wS; wS = -wS; }
    if (hS < 0) { yS += hS; hS = -hS; }
    const QRect dr(std::min(d0.x, d1.x), std::min(d0.y, d1.y), std::abs(d1.x - d0.x), std::abs(d1.y - d0.y));
    if (dr.isEmpty()) return 0;
    Target t;
    if (!Acquire(*dc, t)) return hS;
    const QRect area = dr.translated(t.origin);
    // Column map to source x; the valid destination columns are one run since the map is
    // monotonic.
    std::vector<int> cols, rows;
    StretchMap(dr.width(), wS, mirrorX, cols);
    StretchMap(dr.height(), hS, mirrorY, rows);
    for (int& c : cols) {
        c += xS;
        if (c < 0 || c >= L.width) c = -1;
    }
    // Row map: destination row (top first) -> memory row. Source y counts from the bottom
    // row of a bottom-up DIB, so the top of the source rectangle is row yS + hS - 1.
    std::vector<const unsigned char*> rowPtr(rows.size());
    const auto* base = static_cast<const unsigned char*>(bits);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const int j = rows[i];
        const int mem = L.bottomUp ? yS + hS - 1 - j : yS + j;
        rowPtr[i] = RowAt(base, L, mem);
    }
    const Rop3 op(rop);
    const bool copy = op.table == 0xCC;
    std::vector<int> byteOff(cols.size());
    const int bytesPer = L.bpp >= 8 ? L.bpp / 8 : 0;
    for (std::size_t i = 0; i < cols.size(); ++i) byteOff[i] = cols[i] < 0 ? -1 : cols[i] * (bytesPer ? bytesPer : 1);
    for (const QRect& c : t.rects) {
        const QRect q = area & c;
        if (q.isEmpty()) continue;
        int i0 = q.left() - area.left(), i1 = q.right() - area.left() + 1;
        while (i0 < i1 && cols[static_cast<std::size_t>(i0)] < 0) ++i0;
        while (i1 > i0 && cols[static_cast<std::size_t>(i1 - 1)] < 0) --i1;
        if (i0 >= i1) continue;
        const int* off = byteOff.data();
        const std::uint32_t* lut = L.lut;
        const unsigned char* prevSrc = nullptr;
        std::uint32_t* prevDst = nullptr;
        for (int y = q.top(); y <= q.bottom(); ++y) {
            const unsigned char* s = rowPtr[static_cast<std::size_t>(y - area.top())];
            if (!s) { prevSrc = nullptr; continue; }
            std::uint32_t* d = t.Row(y) + area.left();
            if (copy && s == prevSrc) {
                // Enlarging repeats source rows: copy the row just made.
                std::memcpy(d + i0, prevDst + i0, static_cast<std::size_t>(i1 - i0) * 4);
                prevDst = d;
                continue;
            }
            if (copy) {
                switch (L.bpp) {
                case 8:
                    for (int i = i0; i < i1; ++i) d[i] = lut[s[off[i]]];
                    break;
                case 24:
                    for (int i = i0; i < i1; ++i) {
                        const unsigned char* p = s + off[i];
                        d[i] = kAlpha | (p[2] << 16) | (p[1] << 8) | p[0];
                    }
                    break;
                case 32:
                    for (int i = i0; i < i1; ++i) {
                        const unsigned char* p = s + off[i];
                        d[i] = kAlpha | (p[2] << 16) | (p[1] << 8) | p[0];
                    }
                    break;
                default:
                    for (int i = i0; i < i1; ++i) d[i] = PixelAt(s, L, cols[static_cast<std::size_t>(i)]);
                }
            } else {
                Brush* br = AsBrush(dc->a.brush);
                const std::uint32_t p = br && br->style != BS_NULL ? ResolveColor(*dc, br->color) : 0;
                for (int i = i0; i < i1; ++i) d[i] = op.Apply(p, PixelAt(s, L, cols[static_cast<std::size_t>(i)]), d[i]);
            }
            prevSrc = s;
            prevDst = d;
        }
        t.Touch(q);
    }
    Release(t);
    return hS;
}

int SetDIBitsToDevice(HDC hdc, int xD, int yD, DWORD w, DWORD h, int xS, int yS, UINT startScan, UINT scanLines,
                      const void* bits, const BITMAPINFO* info, UINT usage) {
    if (!info || !bits || scanLines == 0) return 0;
    // The given rows are scan lines startScan.. of the whole picture (from the bottom for a
    // bottom-up DIB): a header of just those rows, with the source y moved to match.
    const BITMAPINFOHEADER& ih = info->bmiHeader;
    if (ih.biSize < sizeof(BITMAPINFOHEADER) || ih.biSize > 1024) return 0;
    std::size_t table = 0;
    if (ih.biBitCount <= 8) {
        const std::size_t n = std::min<std::size_t>(ih.biClrUsed ? ih.biClrUsed : (1u << ih.biBitCount), 256);
        table = n * (usage == DIB_PAL_COLORS ? 2 : 4);
    }
    std::vector<unsigned char> hdr(ih.biSize + 256 * 4, 0);
    std::memcpy(hdr.data(), info, ih.biSize + table);
    auto* bi = reinterpret_cast<BITMAPINFO*>(hdr.data());
    const bool bottomUp = info->bmiHeader.biHeight > 0;
    bi->bmiHeader.biHeight = bottomUp ? static_cast<LONG>(scanLines) : -static_cast<LONG>(scanLines);
    bi->bmiHeader.biSizeImage = 0;
    const int ys = yS - static_cast<int>(startScan);
    StretchDIBits(hdc, xD, yD, static_cast<int>(w), static_cast<int>(h), xS, ys, static_cast<int>(w), static_cast<int>(h),
                  bits, bi, usage, SRCCOPY);
    return static_cast<int>(scanLines);
}

int GetDIBits(HDC hdc, HBITMAP hbmp, UINT start, UINT lines, void* bits, BITMAPINFO* info, UINT usage) {
    Dc* dc = LookupDc(hdc);
    Bitmap* b = AsBitmap(hbmp);
    if (!dc || !b || !info || info->bmiHeader.biSize < sizeof(BITMAPINFOHEADER)) return 0;
    BITMAPINFOHEADER& h = info->bmiHeader;
    const int w = b->image.width(), ht = b->image.height();
    if (h.biBitCount == 0) {
        h.biBitCount = 32;
        h.biWidth = w;
        h.biHeight = ht;
        h.biPlanes = 1;
        h.biCompression = BI_RGB;
    }
    if (h.biBitCount != 8 && h.biBitCount != 24 && h.biBitCount != 32) return 0;
    DibPull(*b);  // a DIB section's block may hold changes the image hasn't seen
    if (h.biWidth != w) h.biWidth = w;
    const bool bottomUp = h.biHeight >= 0;
    h.biHeight = bottomUp ? ht : -ht;
    h.biPlanes = 1;
    h.biCompression = BI_RGB;
    const std::size_t pitch = ((static_cast<std::size_t>(w) * h.biBitCount + 31) / 32) * 4;
    h.biSizeImage = static_cast<DWORD>(pitch * ht);
    Palette* pal = AsPalette(dc->a.palette);
    if (h.biBitCount == 8) {
        const std::size_t n = pal ? std::min<std::size_t>(256, pal->entries.size()) : 0;
        h.biClrUsed = static_cast<DWORD>(n);
        for (std::size_t i = 0; i < n; ++i) {
            const auto& e = pal->entries[i];
            info->bmiColors[i] = RGBQUAD{e.peBlue, e.peGreen, e.peRed, 0};
        }
    } else {
        h.biClrUsed = 0;
    }
    if (!bits) return ht;
    if (start >= static_cast<UINT>(ht)) return 0;
    const UINT n = std::min<UINT>(lines, static_cast<UINT>(ht) - start);
    auto* out = static_cast<unsigned char*>(bits);
    for (UINT k = 0; k < n; ++k) {
        // Scan line start + k counts from the bottom of a bottom-up DIB.
        const int dibRow = static_cast<int>(start + k);
        const int imgRow = bottomUp ? ht - 1 - dibRow : dibRow;
        const auto* s = reinterpret_cast<const std::uint32_t*>(b->image.constScanLine(imgRow));
        unsigned char* d = out + static_cast<std::size_t>(k) * pitch;
        std::memset(d, 0, pitch);
        for (int x = 0; x < w; ++x) {
            const std::uint32_t p = s[x];
            if (h.biBitCount == 32) {
                d[x * 4] = p & 0xFF; d[x * 4 + 1] = (p >> 8) & 0xFF; d[x * 4 + 2] = (p >> 16) & 0xFF; d[x * 4 + 3] = 0;
            } else if (h.biBitCount == 24) {
                d[x * 3] = p & 0xFF; d[x * 3 + 1] = (p >> 8) & 0xFF; d[x * 3 + 2] = (p >> 16) & 0xFF;
            } else {
                // Nearest entry of the palette.
                int best = 0;
                long bestD = 1L << 30;
                for (DWORD i = 0; i < h.biClrUsed; ++i) {
                    const RGBQUAD& e = info->bmiColors[i];
                    const long dr = e.rgbRed - long((p >> 16) & 0xFF), dg = e.rgbGreen - long((p >> 8) & 0xFF),
                               db = e.rgbBlue - long(p & 0xFF);
                    const long dd = dr * dr + dg * dg + db * db;
                    if (dd < bestD) { bestD = dd; best = static_cast<int>(i); }
                }
                d[x] = static_cast<unsigned char>(best);
            }
        }
    }
    return static_cast<int>(n);
}

int SetDIBits(HDC hdc, HBITMAP hbmp, UINT start, UINT lines, const void* bits, const BITMAPINFO* info, UINT usage) {
    Dc* dc = LookupDc(hdc);
    Bitmap* b = AsBitmap(hbmp);
    DibLayout L;
    if (!b || !bits || !ReadLayout(dc, info, usage, L)) return 0;
    DibPull(*b);
    const int w = std::min(L.width, b->image.width());
    UINT done = 0;
    for (UINT k = 0; k < lines; ++k) {
        const int dibRow = static_cast<int>(start + k);  // from the bottom when bottom-up
        const int imgRow = L.bottomUp ? b->image.height() - 1 - dibRow : dibRow;
        if (imgRow < 0 || imgRow >= b->image.height()) break;
        const auto* row = static_cast<const unsigned char*>(bits) + static_cast<std::size_t>(k) * L.pitch;
        auto* d = reinterpret_cast<std::uint32_t*>(b->image.scanLine(imgRow));
        for (int x = 0; x < w; ++x) d[x] = PixelAt(row, L, x);
        ++done;
    }
    if (done) DibPush(*b, b->image.rect());  // and a DIB section's block follows the image
    return static_cast<int>(done);
}

HBITMAP LoadBitmapA(HINSTANCE inst, LPCSTR name) {
    if (!name) return nullptr;
    HINSTANCE module = inst ? inst : AfxFindResourceHandle(name, RT_BITMAP);
    HRSRC res = FindResourceA(module, name, RT_BITMAP);
    if (!res && !inst) res = FindResourceA(orlex::LibraryModule(), name, RT_BITMAP);
    if (!res) return nullptr;
    HGLOBAL data = LoadResource(module, res);
    const auto* p = static_cast<const unsigned char*>(LockResource(data));
    std::size_t size = SizeofResource(module, res);
    if (!p || size < sizeof(BITMAPINFOHEADER)) return nullptr;
    // A packed DIB, or a whole BMP file with its 14-byte file header.
    std::size_t pixelsAt = 0;
    if (size >= 14 + sizeof(BITMAPINFOHEADER) && p[0] == 'B' && p[1] == 'M') {
        DWORD off;
        std::memcpy(&off, p + 10, 4);
        p += 14;
        size -= 14;
        pixelsAt = off >= 14 ? off - 14 : 0;
    }
    BITMAPINFOHEADER h;
    std::memcpy(&h, p, sizeof h);
    if (h.biSize < sizeof h || h.biSize > size) return nullptr;
    if (!pixelsAt) {
        std::size_t colours = 0;
        if (h.biBitCount <= 8) colours = h.biClrUsed ? h.biClrUsed : (1u << h.biBitCount);
        pixelsAt = h.biSize + colours * 4;
    }
    if (pixelsAt > size) return nullptr;
    // The header and colour table must be aligned for reading as a BITMAPINFO.
    std::vector<unsigned char> head(p, p + pixelsAt);
    head.resize(std::max<std::size_t>(head.size(), sizeof(BITMAPINFO)));
    QImage img;
    if (!DecodeDib(reinterpret_cast<const BITMAPINFO*>(head.data()), p + pixelsAt, size - pixelsAt, img)) return nullptr;
    Bitmap* b = NewBitmap(img.width(), img.height(), h.biBitCount == 1 ? 1 : 32);
    b->image = img.convertToFormat(QImage::Format_RGB32);
    return static_cast<HBITMAP>(Register(b));
}
