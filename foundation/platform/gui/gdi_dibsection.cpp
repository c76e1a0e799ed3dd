// DIB sections: bitmaps whose pixels are also a block of memory the program reads and
// writes. The drawing code works on the bitmap's RGB32 image; the block follows it.
//
// The rule that keeps the two in step: a 32-bit top-down section is one memory (the image
// is a view of the block, nothing to copy). Every other section exchanges at drawing-call
// boundaries: when a call acquires the bitmap for drawing or reading, the rows of the block
// that differ from the copy taken at the last exchange are converted into the image; when
// the call releases it, the rows it touched are converted back into the block.
#include <algorithm>
#include <cassert>
#include <cstring>

#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/gui/gdi_p.h"

namespace orlex::gdi {
namespace {

// Image row of a block row.
inline int ImageRow(const DibSection& d, int blockRow, int height) { return d.topDown ? blockRow : height - 1 - blockRow; }

// Block row -> image row, one conversion loop per pixel format.
void PullRow(const DibSection& d, const unsigned char* src, std::uint32_t* out, int w) {
    switch (d.bitsPixel) {
    case 32:
        for (int x = 0; x < w; ++x, src += 4) out[x] = kAlpha | src[0] | (src[1] << 8) | (src[2] << 16);
        break;
    case 24:
        for (int x = 0; x < w; ++x, src += 3) out[x] = kAlpha | src[0] | (src[1] << 8) | (src[2] << 16);
        break;
    default:
        for (int x = 0; x < w; ++x) out[x] = d.colours[src[x]];
        break;
    }
}

// The table index of the colour nearest to px (squared distance); exact colours are the
// common case, so the last few answers are kept.
unsigned char NearestIndex(DibSection& d, std::uint32_t px) {
    px |= kAlpha;
    for (const auto& e : d.nearestCache)
        if (e.first == px) return e.second;
    const int r = (px >> 16) & 0xFF, g = (px >> 8) & 0xFF, b = px & 0xFF;
    int best = 0, bestDist = 1 << 30;
    for (int i = 0; i < d.colourCount; ++i) {
        const std::uint32_t c = d.colours[i];
        const int dr = static_cast<int>((c >> 16) & 0xFF) - r, dg = static_cast<int>((c >> 8) & 0xFF) - g,
                  db = static_cast<int>(c & 0xFF) - b;
        const int dist = dr * dr + dg * dg + db * db;
        if (dist < bestDist) {
            bestDist = dist;
            best = i;
            if (dist == 0) break;
        }
    }
    if (d.nearestCache.size() >= 16) d.nearestCache.pop_back();
    d.nearestCache.insert(d.nearestCache.begin(), {px, static_cast<unsigned char>(best)});
    return static_cast<unsigned char>(best);
}

// Image row span [x0, x1) -> block row. An 8-bit section can only hold its table's colours,
// so the image takes the colour the block now has.
void PushRow(DibSection& d, std::uint32_t* in, unsigned char* dst, int x0, int x1) {
    switch (d.bitsPixel) {
    case 32:
        for (int x = x0; x < x1; ++x) std::memcpy(dst + 4 * x, &in[x], 4);
        break;
    case 24:
        for (int x = x0; x < x1; ++x) {
            const std::uint32_t p = in[x];
            dst[3 * x] = p & 0xFF;
            dst[3 * x + 1] = (p >> 8) & 0xFF;
            dst[3 * x + 2] = (p >> 16) & 0xFF;
        }
        break;
    default:
        for (int x = x0; x < x1; ++x) {
            const unsigned char i = NearestIndex(d, in[x]);
            dst[x] = i;
            in[x] = d.colours[i];
        }
        break;
    }
}

// A shared image can only lose its memory by being detached (a copy of it written while
// another reference lived): the pixels go back into the block and the view is made again.
void Rebind(Bitmap& b, DibSection& d) {
    if (b.image.constBits() == d.bits) return;
    const int w = b.image.width(), h = b.image.height();
    for (int y = 0; y < h; ++y) std::memcpy(d.bits + static_cast<size_t>(y) * d.stride, b.image.constScanLine(y), static_cast<size_t>(w) * 4);
    b.image = QImage(d.bits, w, h, d.stride, QImage::Format_RGB32);
}

}  // namespace

void DibPull(Bitmap& b) {
    DibSection* d = b.dib.get();
    if (!d) return;
    if (d->shared) {
        Rebind(b, *d);
        return;
    }
    const int w = b.image.width(), h = b.image.height();
    const size_t rowBytes = static_cast<size_t>(d->stride);
    assert(d->shadow.size() == rowBytes * static_cast<size_t>(h));
    for (int row = 0; row < h; ++row) {
        const unsigned char* src = d->bits + row * rowBytes;
        unsigned char* seen = d->shadow.data() + row * rowBytes;
        if (std::memcmp(src, seen, rowBytes) == 0) continue;
        std::memcpy(seen, src, rowBytes);
        PullRow(*d, src, reinterpret_cast<std::uint32_t*>(b.image.scanLine(ImageRow(*d, row, h))), w);
    }
}

void DibPush(Bitmap& b, const QRect& rows) {
    DibSection* d = b.dib.get();
    if (!d) return;
    if (d->shared) {
        Rebind(b, *d);
        return;
    }
    const QRect area = rows & b.image.rect();
    if (area.isEmpty()) return;
    const int h = b.image.height();
    const size_t rowBytes = static_cast<size_t>(d->stride);
    assert(d->shadow.size() == rowBytes * static_cast<size_t>(h));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const int row = ImageRow(*d, y, h);  // the mapping is its own inverse
        unsigned char* dst = d->bits + row * rowBytes;
        PushRow(*d, reinterpret_cast<std::uint32_t*>(b.image.scanLine(y)), dst, area.left(), area.right() + 1);
        std::memcpy(d->shadow.data() + row * rowBytes, dst, rowBytes);
    }
}

}  // namespace orlex::gdi

using namespace orlex::gdi;

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT usage, void** bits, HANDLE section, DWORD) {
    if (bits) *bits = nullptr;
    if (!info || usage != DIB_RGB_COLORS || section) return nullptr;
    const BITMAPINFOHEADER& h = info->bmiHeader;
    if (h.biSize < sizeof(BITMAPINFOHEADER) || h.biPlanes != 1 || h.biCompression != BI_RGB) return nullptr;
    const int bpp = h.biBitCount;
    if (bpp != 8 && bpp != 24 && bpp != 32) return nullptr;
    const long long w = h.biWidth, ht = h.biHeight < 0 ? -static_cast<long long>(h.biHeight) : h.biHeight;
    if (w <= 0 || ht <= 0 || w * ht > (1LL << 28)) return nullptr;
    if (bpp == 8 && h.biClrUsed > 256) return nullptr;

    auto d = std::make_unique<DibSection>();
    d->bitsPixel = bpp;
    d->stride = static_cast<int>(((w * bpp + 31) / 32) * 4);
    d->topDown = h.biHeight < 0;
    const size_t size = static_cast<size_t>(d->stride) * static_cast<size_t>(ht);
    d->store.reset(new (std::nothrow) unsigned char[size]());
    if (!d->store) return nullptr;
    d->bits = d->store.get();
    if (bpp == 8) {
        d->colourCount = h.biClrUsed ? static_cast<int>(h.biClrUsed) : 256;
        for (int i = 0; i < d->colourCount; ++i) {
            const RGBQUAD& q = info->bmiColors[i];
            d->colours[i] = kAlpha | (q.rgbRed << 16) | (q.rgbGreen << 8) | q.rgbBlue;
        }
    }
    Bitmap* b = NewBitmap(static_cast<int>(w), static_cast<int>(ht), bpp);
    if (bpp == 32 && d->topDown) {
        // One memory: the image draws straight into the block.
        d->shared = true;
        b->image = QImage(d->bits, static_cast<int>(w), static_cast<int>(ht), d->stride, QImage::Format_RGB32);
    } else {
        // A zeroed block is black (or the table's first colour): pull everything once.
        d->shadow.assign(size, 0xFF);
    }
    b->dib = std::move(d);
    DibPull(*b);
    if (bits) *bits = b->dib->bits;
    return static_cast<HBITMAP>(Register(b));
}
