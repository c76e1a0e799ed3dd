// Icons (pictures with transparency, drawn blended over what is there), LoadImage, and the
// system parameters that describe fonts and the work area.
#include <QImage>

#include <algorithm>
#include <cstring>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/gui/gdi_dc_p.h"
#include "foundation/platform/resources.h"

using namespace orlex::gdi;

namespace {

HICON NewIcon(QImage img, int cx, int cy) {
    if (img.isNull()) return nullptr;
    if (cx > 0 && cy > 0 && (img.width() != cx || img.height() != cy))
        img = img.scaled(cx, cy, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    auto* icon = new Icon;
    icon->image = img.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    return static_cast<HICON>(Register(icon));
}

// The bytes of an icon resource: the group's entry, or the single picture.
QImage IconResource(HINSTANCE inst, LPCSTR name) {
    for (LPCSTR type : {RT_GROUP_ICON, RT_ICON}) {
        HINSTANCE module = inst ? inst : AfxFindResourceHandle(name, type);
        HRSRC res = FindResourceA(module, name, type);
        if (!res && !inst) {
            module = orlex::LibraryModule();
            res = FindResourceA(module, name, type);
        }
        if (!res) continue;
        const auto* p = static_cast<const uchar*>(LockResource(LoadResource(module, res)));
        const DWORD size = SizeofResource(module, res);
        if (!p || !size) continue;
        QImage img = QImage::fromData(p, static_cast<int>(size));
        if (!img.isNull()) return img;
    }
    return {};
}

}  // namespace

HANDLE LoadImageA(HINSTANCE inst, LPCSTR name, UINT type, int cx, int cy, UINT flags) {
    if (!name) return nullptr;
    if (type == IMAGE_CURSOR) return LoadCursorA(inst, name);
    if (flags & LR_DEFAULTSIZE) {
        if (cx == 0) cx = GetSystemMetrics(SM_CXICON);
        if (cy == 0) cy = GetSystemMetrics(SM_CYICON);
    }
    QImage img;
    if (flags & LR_LOADFROMFILE) {
        img = QImage(QString::fromLocal8Bit(name));
    } else if (type == IMAGE_BITMAP) {
        HBITMAP b = LoadBitmapA(inst, name);
        Bitmap* bm = AsBitmap(b);
        if (bm && cx > 0 && cy > 0) bm->image = bm->image.scaled(cx, cy, Qt::IgnoreAspectRatio, Qt::FastTransformation);
        return b;
    } else {
        img = IconResource(inst, name);
    }
    if (img.isNull()) return nullptr;
    if (type == IMAGE_BITMAP) {
        Bitmap* b = NewBitmap(img.width(), img.height(), 32);
        b->image = (cx > 0 && cy > 0 ? img.scaled(cx, cy, Qt::IgnoreAspectRatio, Qt::FastTransformation) : img)
                       .convertToFormat(QImage::Format_RGB32);
        return Register(b);
    }
    return type == IMAGE_ICON ? NewIcon(img, cx, cy) : nullptr;
}

HICON LoadIconA(HINSTANCE inst, LPCSTR name) {
    return static_cast<HICON>(LoadImageA(inst, name, IMAGE_ICON, 0, 0, LR_DEFAULTSIZE));
}

BOOL DestroyIcon(HICON icon) {
    return AsIcon(icon) ? DeleteObject(icon) : FALSE;
}

BOOL GetIconSize(HICON icon, SIZE* size) {
    Icon* i = AsIcon(icon);
    if (!i || !size) return FALSE;
    *size = SIZE{i->image.width(), i->image.height()};
    return TRUE;
}

BOOL DrawIconEx(HDC hdc, int x, int y, HICON hicon, int cx, int cy, UINT, HBRUSH flicker, UINT flags) {
    Dc* dc = LookupDc(hdc);
    Icon* icon = AsIcon(hicon);
    if (!dc || !icon) return FALSE;
    QImage img = icon->image;
    if (flags & DI_DEFAULTSIZE) {
        if (cx == 0) cx = GetSystemMetrics(SM_CXICON);
        if (cy == 0) cy = GetSystemMetrics(SM_CYICON);
    }
    if (cx > 0 && cy > 0 && (cx != img.width() || cy != img.height()))
        img = img.scaled(cx, cy, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    if (flicker) {
        RECT r{x, y, x + img.width(), y + img.height()};
        FillRect(hdc, &r, flicker);
    }
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    const POINT d = LpToDp(*dc, POINT{x, y});
    const QRect area(d.x + t.origin.x(), d.y + t.origin.y(), img.width(), img.height());
    const bool image = flags & DI_IMAGE, mask = flags & DI_MASK;
    for (const QRect& c : t.rects) {
        const QRect q = area & c;
        if (q.isEmpty()) continue;
        for (int yy = q.top(); yy <= q.bottom(); ++yy) {
            const auto* s = reinterpret_cast<const std::uint32_t*>(img.constScanLine(yy - area.top())) - area.left();
            std::uint32_t* p = t.Row(yy);
            for (int xx = q.left(); xx <= q.right(); ++xx) {
                const std::uint32_t sp = s[xx];
                const std::uint32_t a = sp >> 24;
                if (image && !mask) {
                    p[xx] = kAlpha | (sp & 0xFFFFFF);  // the colours alone, opaque
                } else if (mask && !image) {
                    p[xx] = a ? kAlpha : 0xFFFFFFFFu;  // the mask: black where the icon is
                } else if (a == 255) {
                    p[xx] = kAlpha | (sp & 0xFFFFFF);
                } else if (a) {
                    // Premultiplied source over the destination.
                    const std::uint32_t dp = p[xx], inv = 255 - a;
                    const std::uint32_t r = ((sp >> 16) & 0xFF) + (((dp >> 16) & 0xFF) * inv + 127) / 255;
                    const std::uint32_t g = ((sp >> 8) & 0xFF) + (((dp >> 8) & 0xFF) * inv + 127) / 255;
                    const std::uint32_t b = (sp & 0xFF) + ((dp & 0xFF) * inv + 127) / 255;
                    p[xx] = kAlpha | (std::min<std::uint32_t>(r, 255) << 16) | (std::min<std::uint32_t>(g, 255) << 8) |
                            std::min<std::uint32_t>(b, 255);
                }
            }
        }
        t.Touch(q);
    }
    Release(t);
    return TRUE;
}

BOOL DrawIcon(HDC hdc, int x, int y, HICON icon) { return DrawIconEx(hdc, x, y, icon, 0, 0, 0, nullptr, DI_NORMAL | DI_DEFAULTSIZE); }

BOOL SystemParametersInfoA(UINT action, UINT, void* data, UINT) {
    if (!data) return FALSE;
    switch (action) {
    case SPI_GETWHEELSCROLLLINES:
        *static_cast<UINT*>(data) = 3;
        return TRUE;
    case SPI_GETWORKAREA:
        *static_cast<RECT*>(data) = RECT{0, 0, kScreenW, kScreenH - 40};
        return TRUE;
    case SPI_GETNONCLIENTMETRICS: {
        auto* m = static_cast<NONCLIENTMETRICSA*>(data);
        const UINT size = m->cbSize;
        if (size != sizeof(NONCLIENTMETRICSA) && size != sizeof(NONCLIENTMETRICSA) - sizeof(int)) return FALSE;
        NONCLIENTMETRICSA n{};
        n.cbSize = size;
        n.iBorderWidth = 1;
        n.iScrollWidth = n.iScrollHeight = GetSystemMetrics(SM_CXVSCROLL);
        n.iCaptionWidth = n.iCaptionHeight = 18;
        n.iSmCaptionWidth = n.iSmCaptionHeight = 12;
        n.iMenuWidth = n.iMenuHeight = 18;
        auto font = [](LOGFONTA& lf, LONG weight) {
            lf = LOGFONTA{};
            lf.lfHeight = -12;
            lf.lfWeight = weight;
            lf.lfCharSet = DEFAULT_CHARSET;
            std::strncpy(lf.lfFaceName, "Segoe UI", LF_FACESIZE - 1);
        };
        font(n.lfCaptionFont, FW_BOLD);
        font(n.lfSmCaptionFont, FW_BOLD);
        font(n.lfMenuFont, FW_NORMAL);
        font(n.lfStatusFont, FW_NORMAL);
        font(n.lfMessageFont, FW_NORMAL);
        std::memcpy(m, &n, size);
        return TRUE;
    }
    default:
        return FALSE;
    }
}
