#include "imageview/BitmapSamples.h"

#include <cmath>
#include <cstdio>
#include <cstring>

#include "colour/ColorTable.h"
#include "foundation/platform/globalmem.h"
#include "imageview/BitmapData.h"

namespace orlex {

namespace {

void Put16(std::vector<unsigned char>& out, unsigned v)
{
    out.push_back(static_cast<unsigned char>(v));
    out.push_back(static_cast<unsigned char>(v >> 8));
}

void Put32(std::vector<unsigned char>& out, unsigned v)
{
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}

// A BMP file of a bitmap block: the file header, the block's first `headerBytes` (header
// and palette), and the pixel rows from `pixelOffset` padded to 4 bytes as the file
// format wants (the block has no padding).
bool WriteBlockAsBmp(const std::string& path, const unsigned char* block, std::size_t headerBytes,
                     std::size_t pixelOffset, int rows, int cols, int bytesPerPixel)
{
    const std::size_t rowBytes = std::size_t(cols) * bytesPerPixel;
    const std::size_t stride = (rowBytes + 3) & ~std::size_t(3);
    const std::size_t pixels = stride * std::size_t(rows);
    std::vector<unsigned char> file;
    file.reserve(14 + headerBytes + pixels);
    file.push_back('B');
    file.push_back('M');
    Put32(file, unsigned(14 + headerBytes + pixels));
    Put32(file, 0);
    Put32(file, unsigned(14 + headerBytes));
    file.insert(file.end(), block, block + headerBytes);
    const unsigned imageSize = unsigned(pixels);  // the header's image size, with the padding
    std::memcpy(file.data() + 14 + 20, &imageSize, 4);
    const unsigned char* src = block + pixelOffset;
    for (int y = 0; y < rows; ++y, src += rowBytes) {
        file.insert(file.end(), src, src + rowBytes);
        file.resize(file.size() + (stride - rowBytes), 0);
    }
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (f == nullptr) return false;
    const bool ok = std::fwrite(file.data(), 1, file.size(), f) == file.size();
    return std::fclose(f) == 0 && ok;
}

std::string Join(const std::string& directory, const std::string& name)
{
    if (directory.empty() || directory.back() == '/' || directory.back() == '\\') return directory + name;
    return directory + "/" + name;
}

}  // namespace

std::vector<int> SyntheticScan(int rows, int cols)
{
    if (rows < 1 || cols < 1) return {};
    std::vector<int> data(std::size_t(rows) * std::size_t(cols));
    struct Bump {
        double x, y, width, height;
    } const bumps[] = {{0.30, 0.65, 0.10, 0.55}, {0.70, 0.30, 0.07, -0.45}, {0.62, 0.75, 0.05, 0.35}};
    for (int r = 0; r < rows; ++r) {
        const double v = (r + 0.5) / rows;
        int* row = data.data() + std::size_t(r) * cols;
        for (int c = 0; c < cols; ++c) {
            const double u = (c + 0.5) / cols;
            double z = 0.5 * (u - 0.5) + 0.1 * (v - 0.5);
            for (const Bump& b : bumps) {
                const double d2 = ((u - b.x) * (u - b.x) + (v - b.y) * (v - b.y)) / (b.width * b.width);
                z += b.height * std::exp(-d2);
            }
            row[c] = static_cast<int>(std::lround(z * 2147483647.0 * 0.9));
        }
    }
    return data;
}

bool WriteDataBmp(const std::string& path, const std::vector<int>& data, int rows, int cols, int table, double low,
                  double high, bool realTime)
{
    if (rows < 1 || cols < 1 || data.size() < std::size_t(rows) * std::size_t(cols)) return false;
    tagRGBQUAD colours[256];
    CreateColorTable(table < 0 ? 0 : table, 256, colours);
    void* dib = nullptr;
    int* values = const_cast<int*>(data.data());
    const int made = realTime ? CreateBitmap8Bit(dib, 256, values, rows, cols, colours, low, high, 6, {})
                              : CreateBitmap(dib, 256, values, rows, cols, colours, low, high, 6, {});
    if (!made) return false;
    const auto* block = static_cast<const unsigned char*>(GlobalLock(dib));
    const bool ok = block != nullptr &&
                    WriteBlockAsBmp(path, block, realTime ? kBitmap8BitPixelOffset : 40,
                                    realTime ? kBitmap8BitPixelOffset : kBitmap24BitPixelOffset, rows, cols,
                                    realTime ? 1 : 3);
    GlobalUnlock(dib);
    GlobalFree(dib);
    return ok;
}

std::vector<std::string> WriteColourSamples(const std::string& directory)
{
    std::vector<std::string> written;
    const int rows = 192, cols = 256;
    const std::vector<int> scan = SyntheticScan(rows, cols);
    const double full = 2147483647.0;
    for (int table : {0, 1, 3, 12, 15, 22, 25}) {
        for (bool realTime : {true, false}) {
            const std::string name = "scan-table" + std::to_string(table) + (realTime ? "-8bit.bmp" : "-24bit.bmp");
            const std::string path = Join(directory, name);
            if (WriteDataBmp(path, scan, rows, cols, table, -full, full, realTime)) written.push_back(path);
        }
    }
    // The sheet: one band of 8 rows per table, table 0 at the top, entry i in column i.
    InitializeColorTables();
    const int tables = GetNumberOfColorTables();
    const int band = 8;
    std::vector<unsigned char> sheet(40 + std::size_t(tables) * band * 256 * 3, 0);
    BITMAPINFOHEADER h{};
    h.biSize = 40;
    h.biWidth = 256;
    h.biHeight = tables * band;
    h.biPlanes = 1;
    h.biBitCount = 24;
    h.biSizeImage = DWORD(tables) * band * 256 * 3;
    std::memcpy(sheet.data(), &h, sizeof h);
    for (int t = 0; t < tables; ++t) {
        tagRGBQUAD colours[256];
        CreateColorTable(t, 256, colours);
        for (int k = 0; k < band; ++k) {
            unsigned char* row = sheet.data() + 40 + std::size_t((tables - 1 - t) * band + k) * 256 * 3;
            for (int i = 0; i < 256; ++i) {
                row[i * 3 + 0] = colours[i].rgbBlue;
                row[i * 3 + 1] = colours[i].rgbGreen;
                row[i * 3 + 2] = colours[i].rgbRed;
            }
        }
    }
    const std::string sheetPath = Join(directory, "colour-tables.bmp");
    if (WriteBlockAsBmp(sheetPath, sheet.data(), 40, 40, tables * band, 256, 3)) written.push_back(sheetPath);
    return written;
}

}  // namespace orlex
