// Data to bitmap: a caller's rows x cols array of 32-bit ints and a colour table of 256
// entries become a bottom-up device-independent bitmap in one global memory block.
//
// Two layouts, both with rows of exactly `cols` pixels and no padding:
//   8-bit (real time): 40-byte header, 256-entry palette, one index a pixel at offset 1064.
//   24-bit (off-line):  40-byte header and 4 zero bytes, blue-green-red a pixel at offset 44.
// The block is zero-initialised, unlocked when returned and owned by the caller, who
// frees it with GlobalFree. Data row 0 is the lowest row on screen.
#pragma once

#include <cstddef>
#include <vector>

#include "foundation/platform/wintypes.h"

// Byte offsets of the pixels in the two layouts.
constexpr std::size_t kBitmap8BitPixelOffset = 1064;
constexpr std::size_t kBitmap24BitPixelOffset = 44;

// Full scale of the data type: a physical scale z covers +-z * 4294967295.0 * 0.5 counts.
constexpr double kDataFullScale = 4294967295.0;

// Scales rows*cols values of `data` into one byte each in `out`:
// trunc((v - low) * levels / (high - low)), clamped to 0..levels-1 (factor 1.0 when
// high <= low). Nothing happens for rows < 1 or cols < 1. Neither pointer is kept.
void Scale8BitData(int* data, unsigned char* out, int rows, int cols, double low, double high, int levels);
// The same with symmetric limits -h..+h, h = scale * 4294967295.0 * 0.5.
void Scale8BitData(int* data, unsigned char* out, int rows, int cols, double scale, int levels);

// 8-bit bitmap around zero with limits from `scale` and `numColors` levels. Returns 1 and
// the block in `dib`; 0 with `dib` untouched for null data, scale <= 0 or negative sizes;
// 0 with `dib` null when memory fails. A null `table` gives a grey ramp.
int CreateBitmap(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double scale);

// 8-bit bitmap between `low` and `high` (high >= low). `invalidDisp` 0..6 (see
// InvalidDataDisp); with a marking display the positions row*cols+col of
// `invalidPoints` take palette entry 255, which gets the display's colour. `dib` is set
// null first. Returns 1 or 0 (null data, high < low, negative sizes, no memory). The list
// is emptied on every path.
int CreateBitmap8Bit(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double low,
                     double high, int invalidDisp, std::vector<int> invalidPoints);

// 24-bit bitmap between `low` and `high` (high > low strictly), each value interpolated
// between neighbouring table entries; `numColors` is not used. Listed invalid positions
// take the display's colour when it marks. A null table gives black pixels. Returns 1, or
// 0 with `dib` untouched for bad arguments, or 0 with `dib` null when memory fails. The
// list is emptied on every path.
int CreateBitmap(void*& dib, int numColors, int* data, int rows, int cols, tagRGBQUAD* table, double low,
                 double high, int invalidDisp, std::vector<int> invalidPoints);

class TableInterpolation {
public:
    // Colour of value `v` between `low` and `high`, interpolated linearly between the two
    // table entries around it with a resolution of 4294967295 steps an entry. With
    // `reserveTop` the span ends at entry 254, else at 255. Null `table` gives black.
    // The reserved byte of the result is 255.
    static RGBQUAD LinearFit24Bit(RGBQUAD* table, double v, double low, double high, bool reserveTop);
};

// The invalid-data display: how pixels that the host declares invalid are shown.
enum InvalidDataDisp {
    kInvalidDispFill = 0,   // not marked
    kInvalidDispRed = 1,
    kInvalidDispBlue = 2,
    kInvalidDispGreen = 3,
    kInvalidDispWhite = 4,
    kInvalidDispBlack = 5,
    kInvalidDispNone = 6,   // not marked; the 8-bit forms keep palette entry 255 free
};
constexpr int kInvalidDataDispCount = 7;

// The names of the displays by value: "Fill", "Red", "Blue", "Green", "White", "Black",
// "None". Static storage, for the whole process.
extern const char* const g_invalidDataDispNames[kInvalidDataDispCount];

// Name of display `v`; an empty text for v outside 0..6.
const char* GetInvalidDataDispName(int v);
// Index of the first name that equals `name` exactly (case counts); 0 when none does or
// `name` is null.
int FindInvalidDataDisp(const char* name);
// True for the displays that mark invalid pixels (1..5).
bool InvalidDataDispMarks(int v);
// The colour a marking display gives an invalid pixel, as a table entry (reserved 0);
// black with reserved 0 for a display that doesn't mark or is out of range.
RGBQUAD InvalidDataDispColour(int v);
