// The clipboard: a store of this process (format -> global memory block, owned by the
// clipboard once set), so that what was put can be read back exactly, mirrored to the
// toolkit's clipboard: CF_TEXT as text in the process's code page, CF_DIB as a picture.
// Data that another program put on the system clipboard is offered in the same formats.
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

#include <cstring>
#include <map>
#include <mutex>

#include "foundation/platform/codepage.h"
#include "foundation/platform/globalmem.h"
#include "foundation/platform/gui/gdi_p.h"

namespace orlex::gdi {
bool DecodeDib(const BITMAPINFO* info, const void* bits, std::size_t avail, QImage& out);
}

using namespace orlex::gdi;

namespace {

struct Clipboard {
    std::recursive_mutex mu;
    bool open = false;
    HWND opener = nullptr;
    HWND owner = nullptr;
    std::map<UINT, HGLOBAL> data;
    bool ours = false;  // the system clipboard holds what this process put there
};
Clipboard& Clip() {
    static Clipboard* c = new Clipboard;
    return *c;
}

QClipboard* SystemClipboard() {
    return QGuiApplication::instance() ? QGuiApplication::clipboard() : nullptr;
}

void FreeAll(Clipboard& c) {
    for (auto& [fmt, mem] : c.data) GlobalFree(mem);
    c.data.clear();
}

// A packed DIB (header, colour table, pixels) as a picture.
QImage ImageOfDib(HGLOBAL mem) {
    const SIZE_T size = GlobalSize(mem);
    const auto* p = static_cast<const unsigned char*>(GlobalLock(mem));
    QImage img;
    if (p && size >= sizeof(BITMAPINFOHEADER)) {
        BITMAPINFOHEADER h;
        std::memcpy(&h, p, sizeof h);
        std::size_t table = 0;
        if (h.biBitCount <= 8) table = (h.biClrUsed ? h.biClrUsed : (1u << h.biBitCount)) * 4;
        const std::size_t off = h.biSize + table;
        if (h.biSize >= sizeof h && off <= size) {
            std::vector<unsigned char> head(p, p + off);
            head.resize(std::max(head.size(), sizeof(BITMAPINFO)));
            DecodeDib(reinterpret_cast<const BITMAPINFO*>(head.data()), p + off, size - off, img);
        }
    }
    if (p) GlobalUnlock(mem);
    return img;
}

// A 24-bit bottom-up packed DIB of a picture, in a new block.
HGLOBAL DibOfImage(const QImage& src) {
    const QImage img = src.convertToFormat(QImage::Format_RGB32);
    const int w = img.width(), h = img.height();
    const std::size_t pitch = ((static_cast<std::size_t>(w) * 24 + 31) / 32) * 4;
    HGLOBAL mem = GlobalAlloc(GHND, sizeof(BITMAPINFOHEADER) + pitch * h);
    auto* p = static_cast<unsigned char*>(GlobalLock(mem));
    if (!p) return mem;
    BITMAPINFOHEADER hd{};
    hd.biSize = sizeof hd;
    hd.biWidth = w;
    hd.biHeight = h;
    hd.biPlanes = 1;
    hd.biBitCount = 24;
    hd.biSizeImage = static_cast<DWORD>(pitch * h);
    std::memcpy(p, &hd, sizeof hd);
    for (int y = 0; y < h; ++y) {
        const auto* s = reinterpret_cast<const std::uint32_t*>(img.constScanLine(h - 1 - y));
        unsigned char* d = p + sizeof hd + pitch * y;
        for (int x = 0; x < w; ++x) {
            d[x * 3] = s[x] & 0xFF;
            d[x * 3 + 1] = (s[x] >> 8) & 0xFF;
            d[x * 3 + 2] = (s[x] >> 16) & 0xFF;
        }
    }
    GlobalUnlock(mem);
    return mem;
}

void Mirror(Clipboard& c, UINT fmt, HGLOBAL mem) {
    QClipboard* sys = SystemClipboard();
    if (!sys || !mem) return;
    if (fmt == CF_TEXT) {
        const SIZE_T size = GlobalSize(mem);
        const auto* p = static_cast<const char*>(GlobalLock(mem));
        if (p) {
            const std::size_t n = strnlen(p, size);
            sys->setText(QString::fromStdString(orlex::AnsiToUtf8(p, static_cast<int>(n))));
            GlobalUnlock(mem);
            c.ours = true;
        }
    } else if (fmt == CF_DIB) {
        const QImage img = ImageOfDib(mem);
        if (!img.isNull()) {
            sys->setImage(img);
            c.ours = true;
        }
    }
}

// Brings in what another program put on the system clipboard, in the asked format.
HGLOBAL FromSystem(Clipboard& c, UINT fmt) {
    QClipboard* sys = SystemClipboard();
    if (!sys || c.ours) return nullptr;
    if (fmt == CF_TEXT) {
        const QString t = sys->text();
        if (t.isEmpty()) return nullptr;
        const std::string a = orlex::Utf8ToAnsi(t.toStdString());
        HGLOBAL mem = GlobalAlloc(GHND, a.size() + 1);
        if (auto* p = static_cast<char*>(GlobalLock(mem))) {
            std::memcpy(p, a.c_str(), a.size() + 1);
            GlobalUnlock(mem);
        }
        return mem;
    }
    if (fmt == CF_DIB) {
        const QImage img = sys->image();
        return img.isNull() ? nullptr : DibOfImage(img);
    }
    return nullptr;
}

}  // namespace

BOOL OpenClipboard(HWND owner) {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (c.open) return FALSE;
    c.open = true;
    c.opener = owner;
    return TRUE;
}

BOOL CloseClipboard() {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (!c.open) return FALSE;
    c.open = false;
    c.opener = nullptr;
    return TRUE;
}

BOOL EmptyClipboard() {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (!c.open) return FALSE;
    FreeAll(c);
    c.owner = c.opener;
    c.ours = true;
    if (QClipboard* sys = SystemClipboard()) sys->clear();
    return TRUE;
}

HANDLE SetClipboardData(UINT format, HANDLE mem) {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (!c.open || !mem || GlobalSize(mem) == 0) return nullptr;
    auto it = c.data.find(format);
    if (it != c.data.end() && it->second != mem) GlobalFree(it->second);
    c.data[format] = mem;
    Mirror(c, format, mem);
    return mem;
}

HANDLE GetClipboardData(UINT format) {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (!c.open) return nullptr;
    auto it = c.data.find(format);
    if (it != c.data.end()) return it->second;
    HGLOBAL mem = FromSystem(c, format);
    if (mem) c.data[format] = mem;
    return mem;
}

BOOL IsClipboardFormatAvailable(UINT format) {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    if (c.data.count(format)) return TRUE;
    QClipboard* sys = SystemClipboard();
    if (!sys || c.ours) return FALSE;
    if (format == CF_TEXT) return !sys->text().isEmpty();
    if (format == CF_DIB) return !sys->image().isNull();
    return FALSE;
}

HWND GetClipboardOwner() {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    return c.owner;
}

UINT EnumClipboardFormats(UINT format) {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    auto it = format == 0 ? c.data.begin() : c.data.upper_bound(format);
    return it == c.data.end() ? 0 : it->first;
}

int CountClipboardFormats() {
    Clipboard& c = Clip();
    std::lock_guard lock(c.mu);
    return static_cast<int>(c.data.size());
}
