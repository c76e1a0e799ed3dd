#include "imageview/BitmapData.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <cstring>
#include <memory>

#include "foundation/platform/globalmem.h"
#include "imageview/BitmapKernels.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

constexpr UINT kZeroInit = 0x40;  // GMEM_ZEROINIT
constexpr int kPaletteEntries = 256;

// Pixel count of a rows x cols image, if the sizes are usable: not negative, and the
// image size fits the header's 32-bit field at `bytesPerPixel`.
bool PixelCount(int rows, int cols, std::size_t bytesPerPixel, std::size_t& count)
{
    if (rows < 0 || cols < 0) return false;
    const unsigned long long n = static_cast<unsigned long long>(rows) * static_cast<unsigned long long>(cols);
    if (n * bytesPerPixel > 0xFFFFFFFFull) return false;
    count = static_cast<std::size_t>(n);
    return true;
}

void WriteHeader(BYTE* block, int rows, int cols, WORD bits, DWORD imageSize)
{
    BITMAPINFOHEADER h{};
    h.biSize = sizeof(BITMAPINFOHEADER);
    h.biWidth = cols;
    h.biHeight = rows;
    h.biPlanes = 1;
    h.biBitCount = bits;
    h.biCompression = BI_RGB;
    h.biSizeImage = imageSize;
    std::memcpy(block, &h, sizeof h);
}

// A large image block is fresh memory that the pixel loop touches once from end to end;
// asking for huge pages there saves a page fault every 4 kB (a third of the time of a
// 24-bit image). Only advice: nothing changes if the system declines.
void AdviseLargeBlock(BYTE* p, std::size_t bytes)
{
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    constexpr std::size_t kLarge = std::size_t(4) << 20;
    constexpr std::uintptr_t kPage = 4096;
    if (bytes < kLarge) return;
    const std::uintptr_t first = (reinterpret_cast<std::uintptr_t>(p) + kPage - 1) & ~(kPage - 1);
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(p) + bytes) & ~(kPage - 1);
    if (end > first) madvise(reinterpret_cast<void*>(first), end - first, MADV_HUGEPAGE);
#else
    (void)p;
    (void)bytes;
#endif
}

// A zeroed, locked block of `bytes`; null (and nothing held) when either step fails.
BYTE* AllocateLocked(std::size_t bytes, HGLOBAL& handle)
{
    handle = GlobalAlloc(kZeroInit, bytes);
    if (handle == nullptr) return nullptr;
    auto* p = static_cast<BYTE*>(GlobalLock(handle));
    if (p == nullptr) {
        GlobalFree(handle);
        handle = nullptr;
        return nullptr;
    }
    AdviseLargeBlock(p, bytes);
    return p;
}

// The 8-bit forms: header, palette (or grey ramp), scaled pixels, and the invalid
// positions on entry 255 when `marking` holds a display that marks.
int Build8Bit(void*& dib, int numColors, const int* data, int rows, int cols, const tagRGBQUAD* table,
              double low, double high, int levels, int marking, const std::vector<int>& invalid)
{
    std::size_t count = 0;
    const bool sized = PixelCount(rows, cols, 1, count);
    assert(sized);
    (void)sized;
    // The palette copy is always 256 entries, so the block has room for them whatever
    // `numColors` says; the pixels start after 256 of them.
    const std::size_t paletteBytes = std::size_t(std::max(numColors, kPaletteEntries)) * sizeof(RGBQUAD);
    HGLOBAL handle = nullptr;
    BYTE* block = AllocateLocked(paletteBytes + sizeof(BITMAPINFOHEADER) + count, handle);
    if (block == nullptr) {
        dib = nullptr;
        return 0;
    }
    WriteHeader(block, rows, cols, 8, static_cast<DWORD>(count));
    auto* palette = reinterpret_cast<RGBQUAD*>(block + sizeof(BITMAPINFOHEADER));
    if (table != nullptr) {
        std::memcpy(palette, table, kPaletteEntries * sizeof(RGBQUAD));
    } else {
        for (int i = 0; i < kPaletteEntries; ++i) palette[i] = RGBQUAD{BYTE(i), BYTE(i), BYTE(i), 0};
    }
    unsigned char* pixels = block + kBitmap8BitPixelOffset;
    if (count > 0) {
        const double range = high - low;
        const double factor = range > 0 ? levels / range : 1.0;
        orlex::bitmap::ScaleValues(data, pixels, count, low, factor, levels);
    }
    if (InvalidDataDispMarks(marking)) {
        palette[255] = InvalidDataDispColour(marking);
        orlex::bitmap::MarkInvalid8(pixels, count, invalid);
    }
    GlobalUnlock(handle);
    dib = handle;
    return 1;
}

}  // namespace

int CreateBitmap(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double scale)
{
    std::size_t count = 0;
    if (data == nullptr || !(scale > 0) || !PixelCount(rows, cols, 1, count)) return 0;
    const double h = scale * kDataFullScale * 0.5;
    return Build8Bit(dib, numColors, data, rows, cols, table, -h, h, numColors, kInvalidDispFill, {});
}

int CreateBitmap8Bit(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double low,
                     double high, int invalidDisp, std::vector<int> invalidPoints)
{
    dib = nullptr;
    std::size_t count = 0;
    int result = 0;
    if (data != nullptr && high >= low && PixelCount(rows, cols, 1, count)) {
        // "None" keeps the top index free; every other display lets valid data reach it.
        const int levels = invalidDisp == kInvalidDispNone ? numColors - 1 : numColors;
        result = Build8Bit(dib, numColors, data, rows, cols, table, low, high, levels, invalidDisp, invalidPoints);
    }
    invalidPoints.clear();
    return result;
}

int CreateBitmap(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double low,
                 double high, int invalidDisp, std::vector<int> invalidPoints)
{
    std::size_t count = 0;
    if (data == nullptr || !(high > low) || !PixelCount(rows, cols, 3, count)) {
        invalidPoints.clear();
        return 0;
    }
    HGLOBAL handle = nullptr;
    BYTE* block = AllocateLocked(count * 3 + kBitmap24BitPixelOffset, handle);
    if (block == nullptr) {
        dib = nullptr;
        invalidPoints.clear();
        return 0;
    }
    WriteHeader(block, rows, cols, 24, static_cast<DWORD>(count * 3));
    unsigned char* pixels = block + kBitmap24BitPixelOffset;
    if (count > 0) {
        // The plan is large (a few kB) and built once an image.
        auto plan = std::make_unique<orlex::bitmap::Fit24Plan>();
        orlex::bitmap::PrepareFit24(table, low, high, invalidDisp != kInvalidDispNone, *plan);
        orlex::bitmap::Fit24Values(data, pixels, count, *plan);
    }
    if (InvalidDataDispMarks(invalidDisp))
        orlex::bitmap::MarkInvalid24(pixels, count, invalidPoints, InvalidDataDispColour(invalidDisp));
    GlobalUnlock(handle);
    dib = handle;
    invalidPoints.clear();
    return 1;
}
