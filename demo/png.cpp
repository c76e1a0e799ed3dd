// Screenshots of the demo's windows as PNG files: the pixels are read back through the
// layer (a window context blitted to a bitmap, then GetDIBits) and written uncompressed.
#include <cstdio>
#include <cstring>
#include <vector>

#include "demo/demo.h"
#include "foundation/platform/afxgdi.h"

namespace {

unsigned long Crc(const unsigned char* p, size_t n, unsigned long c = 0xFFFFFFFFul) {
    static unsigned long table[256];
    static bool made = false;
    if (!made) {
        for (unsigned long i = 0; i < 256; ++i) {
            unsigned long v = i;
            for (int k = 0; k < 8; ++k) v = (v & 1) ? 0xEDB88320ul ^ (v >> 1) : v >> 1;
            table[i] = v;
        }
        made = true;
    }
    for (size_t i = 0; i < n; ++i) c = table[(c ^ p[i]) & 0xFF] ^ (c >> 8);
    return c;
}

void Be32(std::vector<unsigned char>& out, unsigned long v) {
    for (int s = 24; s >= 0; s -= 8) out.push_back(static_cast<unsigned char>((v >> s) & 0xFF));
}

void Chunk(std::vector<unsigned char>& png, const char* type, const std::vector<unsigned char>& data) {
    Be32(png, static_cast<unsigned long>(data.size()));
    std::vector<unsigned char> body(type, type + 4);
    body.insert(body.end(), data.begin(), data.end());
    png.insert(png.end(), body.begin(), body.end());
    Be32(png, Crc(body.data(), body.size()) ^ 0xFFFFFFFFul);
}

// Rows of RGB with a filter byte each, in stored deflate blocks of a zlib stream.
std::vector<unsigned char> Zlib(const std::vector<unsigned char>& raw) {
    std::vector<unsigned char> z{0x78, 0x01};
    size_t at = 0;
    do {
        const size_t n = std::min<size_t>(65535, raw.size() - at);
        const bool last = at + n == raw.size();
        z.push_back(last ? 1 : 0);
        z.push_back(static_cast<unsigned char>(n & 0xFF));
        z.push_back(static_cast<unsigned char>(n >> 8));
        z.push_back(static_cast<unsigned char>(~n & 0xFF));
        z.push_back(static_cast<unsigned char>((~n >> 8) & 0xFF));
        z.insert(z.end(), raw.begin() + static_cast<long>(at), raw.begin() + static_cast<long>(at + n));
        at += n;
    } while (at < raw.size());
    unsigned long a = 1, b = 0;
    for (unsigned char c : raw) {
        a = (a + c) % 65521;
        b = (b + a) % 65521;
    }
    Be32(z, (b << 16) | a);
    return z;
}

}  // namespace

bool SaveWindowPng(CWnd* wnd, const std::string& path) {
    if (!wnd || !wnd->GetSafeHwnd()) return false;
    CRect wr;
    wnd->GetWindowRect(&wr);
    const int w = wr.Width(), h = wr.Height();
    if (w <= 0 || h <= 0) return false;
    CWindowDC src(wnd);
    CDC mem;
    CBitmap bmp;
    if (!mem.CreateCompatibleDC(&src) || !bmp.CreateCompatibleBitmap(&src, w, h)) return false;
    CBitmap* old = mem.SelectObject(&bmp);
    mem.BitBlt(0, 0, w, h, &src, 0, 0, SRCCOPY);
    mem.SelectObject(old);
    BITMAPINFO bi{};
    bi.bmiHeader.biSize = sizeof(BITMAPINFOHEADER);
    bi.bmiHeader.biWidth = w;
    bi.bmiHeader.biHeight = -h;  // top-down rows
    bi.bmiHeader.biPlanes = 1;
    bi.bmiHeader.biBitCount = 32;
    std::vector<unsigned char> bgrx(static_cast<size_t>(w) * h * 4);
    if (GetDIBits(mem.m_hDC, bmp, 0, static_cast<UINT>(h), bgrx.data(), &bi, DIB_RGB_COLORS) <= 0) return false;

    std::vector<unsigned char> raw;
    raw.reserve(static_cast<size_t>(w * 3 + 1) * h);
    for (int y = 0; y < h; ++y) {
        raw.push_back(0);
        const unsigned char* row = bgrx.data() + static_cast<size_t>(y) * w * 4;
        for (int x = 0; x < w; ++x) {
            raw.push_back(row[4 * x + 2]);
            raw.push_back(row[4 * x + 1]);
            raw.push_back(row[4 * x + 0]);
        }
    }
    std::vector<unsigned char> png{0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};
    std::vector<unsigned char> ihdr;
    Be32(ihdr, static_cast<unsigned long>(w));
    Be32(ihdr, static_cast<unsigned long>(h));
    ihdr.insert(ihdr.end(), {8, 2, 0, 0, 0});  // 8 bits, RGB
    Chunk(png, "IHDR", ihdr);
    Chunk(png, "IDAT", Zlib(raw));
    Chunk(png, "IEND", {});
    FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    const bool ok = std::fwrite(png.data(), 1, png.size(), f) == png.size();
    return std::fclose(f) == 0 && ok;
}
