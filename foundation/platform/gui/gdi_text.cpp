// Fonts and text: logical fonts turned into aliased Qt fonts (faces mapped onto the
// metric-compatible families), metrics, TextOut/ExtTextOut with alignment, background mode
// and escapement, TabbedTextOut and DrawText's layout. 8-bit text is in the process's code
// page; it becomes Unicode only here.
#include <QFontInfo>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <mutex>

#include "foundation/platform/afxwin.h"
#include "foundation/platform/codepage.h"
#include "foundation/platform/gui/gdi_dc_p.h"

namespace orlex {

std::string ResolvedFontFamily(const char* face) {
    std::string f = face ? face : "";
    std::string low;
    for (char c : f) low += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    static const std::pair<const char*, const char*> map[] = {
        {"arial", "Liberation Sans"}, {"helvetica", "Liberation Sans"}, {"ms sans serif", "Liberation Sans"},
        {"microsoft sans serif", "Liberation Sans"}, {"ms shell dlg", "Liberation Sans"},
        {"ms shell dlg 2", "Liberation Sans"}, {"tahoma", "Liberation Sans"}, {"verdana", "Liberation Sans"},
        {"segoe ui", "Liberation Sans"}, {"system", "Liberation Sans"}, {"", "Liberation Sans"},
        {"courier new", "Liberation Mono"}, {"courier", "Liberation Mono"}, {"lucida console", "Liberation Mono"},
        {"consolas", "Liberation Mono"}, {"fixedsys", "Liberation Mono"}, {"terminal", "Liberation Mono"},
        {"times new roman", "Liberation Serif"}, {"times", "Liberation Serif"}, {"ms serif", "Liberation Serif"},
        {"georgia", "Liberation Serif"}};
    for (const auto& [from, to] : map)
        if (low == from) return to;
    return f;
}

}  // namespace orlex

namespace orlex::gdi {

void NeedApplication() {
    if (!QGuiApplication::instance()) orlex::EnsureApplication();
}

QString FromAnsi(const char* s, int count) {
    if (!s || count == 0) return {};
    return QString::fromStdString(orlex::AnsiToUtf8(s, count));
}

const LOGFONTA& StockFontLog(int index) {
    static LOGFONTA fonts[20];
    static std::once_flag once;
    std::call_once(once, [] {
        auto set = [](int i, LONG h, LONG weight, BYTE pitch, const char* face) {
            LOGFONTA& lf = fonts[i];
            lf = LOGFONTA{};
            lf.lfHeight = h;
            lf.lfWeight = weight;
            lf.lfPitchAndFamily = pitch;
            std::strncpy(lf.lfFaceName, face, LF_FACESIZE - 1);
        };
        set(SYSTEM_FONT, 16, FW_BOLD, VARIABLE_PITCH | FF_SWISS, "System");
        set(DEVICE_DEFAULT_FONT, 16, FW_BOLD, VARIABLE_PITCH | FF_SWISS, "System");
        set(ANSI_VAR_FONT, 13, FW_NORMAL, VARIABLE_PITCH | FF_SWISS, "MS Sans Serif");
        set(DEFAULT_GUI_FONT, -11, FW_NORMAL, VARIABLE_PITCH | FF_SWISS, "MS Shell Dlg");
        set(ANSI_FIXED_FONT, 12, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Courier New");
        set(OEM_FIXED_FONT, 12, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Courier New");
        set(SYSTEM_FIXED_FONT, 15, FW_NORMAL, FIXED_PITCH | FF_MODERN, "Courier New");
    });
    return fonts[index >= 0 && index < 20 ? index : SYSTEM_FONT];
}

namespace {

// A font made for one device height, with its metrics.
struct FontEntry {
    QFont font;
    int ascent = 0, descent = 0, em = 0, leading = 0, avg = 0, maxw = 0;
};

std::string FamilyFor(const LOGFONTA& lf) {
    std::string fam = ResolvedFontFamily(lf.lfFaceName);
    if (!lf.lfFaceName[0]) {
        const int family = lf.lfPitchAndFamily & 0xF0;
        if (family == FF_ROMAN) fam = "Liberation Serif";
        else if (family == FF_MODERN || (lf.lfPitchAndFamily & 3) == FIXED_PITCH) fam = "Liberation Mono";
    }
    return fam;
}

QFont BaseFont(const LOGFONTA& lf, int pixelSize) {
    QFont f(QString::fromStdString(FamilyFor(lf)));
    f.setPixelSize(std::max(1, pixelSize));
    int w = lf.lfWeight <= 0 ? 400 : std::clamp<int>(lf.lfWeight, 100, 900);
    f.setWeight(static_cast<QFont::Weight>(w));
    f.setItalic(lf.lfItalic != 0);
    f.setUnderline(lf.lfUnderline != 0);
    f.setStrikeOut(lf.lfStrikeOut != 0);
    f.setStyleStrategy(static_cast<QFont::StyleStrategy>(QFont::NoAntialias | QFont::NoSubpixelAntialias));
    f.setKerning(false);
    return f;
}

// The entry for a logical font whose height is already in device units.
const FontEntry& EntryFor(const LOGFONTA& lf, int deviceHeight) {
    NeedApplication();
    static std::mutex mu;
    static std::map<std::string, FontEntry> cache;
    std::string key(reinterpret_cast<const char*>(&lf), sizeof lf);
    key.append(reinterpret_cast<const char*>(&deviceHeight), sizeof deviceHeight);
    std::lock_guard lock(mu);
    auto it = cache.find(key);
    if (it != cache.end()) return it->second;
    FontEntry e;
    int em;
    if (deviceHeight < 0) {
        em = -deviceHeight;
    } else {
        // A positive height is the cell (ascent + descent): find the em that gives it.
        const int h = deviceHeight == 0 ? 16 : deviceHeight;
        QFontMetricsF m(BaseFont(lf, 100));
        const double cell = m.ascent() + m.descent();
        em = cell > 0 ? static_cast<int>(std::lround(h * 100.0 / cell)) : h;
        while (em > 1) {
            QFontMetrics mm(BaseFont(lf, em));
            if (mm.ascent() + mm.descent() <= h) break;
            --em;
        }
    }
    e.em = std::clamp(em, 1, 4096);
    e.font = BaseFont(lf, e.em);
    if (lf.lfWidth > 0) {
        QFontMetrics m(e.font);
        const int avg = std::max(1, m.averageCharWidth());
        e.font.setStretch(std::clamp(static_cast<int>(lf.lfWidth * 100 / avg), 1, 4000));
    }
    QFontMetrics m(e.font);
    e.ascent = m.ascent();
    e.descent = m.descent();
    e.leading = std::max(0, m.leading());
    e.avg = m.averageCharWidth();
    e.maxw = m.maxWidth();
    return cache.emplace(key, e).first->second;
}

// The selected font of a context at the context's scale.
const FontEntry& DcFont(const Dc& dc, LOGFONTA* lfOut = nullptr) {
    Font* f = AsFont(dc.a.font);
    const LOGFONTA& lf = f ? f->lf : StockFontLog(SYSTEM_FONT);
    if (lfOut) *lfOut = lf;
    int h = lf.lfHeight;
    if (h != 0) h = (h < 0 ? -1 : 1) * std::max(1, ScaleLenY(dc, std::abs(h)));
    return EntryFor(lf, h);
}

int TextWidth(const Dc& dc, const FontEntry& fe, const QString& s) {
    QFontMetrics m(fe.font);
    return m.horizontalAdvance(s) + dc.a.charExtra * static_cast<int>(s.size());
}

// Draws one run of text with its reference point at device point `ref`: escapement,
// alignment (in the text's own frame), background box, optional clip rectangle (device).
void DrawRun(Dc& dc, Target& t, const FontEntry& fe, const LOGFONTA& lf, POINT ref, const QString& s,
             const INT* dx, bool opaqueBox, const QRect* clip) {
    // Advances of the characters: from dx (logical) or the font.
    std::vector<int> adv(static_cast<std::size_t>(s.size()));
    QFontMetrics m(fe.font);
    int width = 0;
    for (int i = 0; i < s.size(); ++i) {
        adv[static_cast<std::size_t>(i)] = dx ? ScaleLenX(dc, dx[i]) : m.horizontalAdvance(s[i]) + dc.a.charExtra;
        width += adv[static_cast<std::size_t>(i)];
    }
    if (!dx && dc.a.charExtra == 0) width = m.horizontalAdvance(s);
    const int height = fe.ascent + fe.descent;
    // Text beyond any surface's size is not drawn (a mask of it could not be made).
    if (width <= 0 || height <= 0 || width > (1 << 15) || height > (1 << 15)) return;
    // Offsets of the box's top left from the reference point, unrotated.
    const UINT al = dc.a.textAlign;
    int ux = 0, uy = 0;
    if ((al & TA_CENTER) == TA_CENTER) ux = -width / 2;
    else if (al & TA_RIGHT) ux = -width;
    if ((al & TA_BASELINE) == TA_BASELINE) uy = -fe.ascent;
    else if (al & TA_BOTTOM) uy = -height;

    QImage glyphs(width, height, QImage::Format_Grayscale8);
    if (glyphs.isNull()) return;
    glyphs.fill(0);
    {
        QPainter p(&glyphs);
        p.setRenderHint(QPainter::TextAntialiasing, false);
        p.setRenderHint(QPainter::Antialiasing, false);
        p.setFont(fe.font);
        p.setPen(Qt::white);
        if (!dx && dc.a.charExtra == 0) {
            p.drawText(QPoint(0, fe.ascent), s);
        } else {
            int x = 0;
            for (int i = 0; i < s.size(); ++i) {
                p.drawText(QPoint(x, fe.ascent), QString(s[i]));
                x += adv[static_cast<std::size_t>(i)];
            }
        }
    }
    // Aliased glyphs: whatever the engine gave, a pixel is on or off.
    for (int y = 0; y < height; ++y) {
        uchar* r = glyphs.scanLine(y);
        for (int x = 0; x < width; ++x) r[x] = r[x] >= 128 ? 255 : 0;
    }
    // Turn the box about the reference point by the escapement (tenths of a degree,
    // counter-clockwise on the screen).
    int esc = lf.lfEscapement % 3600;
    if (esc < 0) esc += 3600;
    QImage fg, bg;
    QPoint at;
    QImage box(width, height, QImage::Format_Grayscale8);
    box.fill(255);
    if (esc == 0) {
        fg = glyphs;
        bg = box;
        at = QPoint(ref.x + ux, ref.y + uy);
    } else if (esc == 900 || esc == 1800 || esc == 2700) {
        // Exact quarter turns: pixel (ux+i, uy+j) goes to (uy+j, -(ux+i)-1) for 90 degrees.
        QTransform tr;
        tr.rotate(esc == 900 ? -90 : esc == 1800 ? 180 : 90);
        fg = glyphs.transformed(tr);
        bg = box.transformed(tr);
        if (esc == 900) at = QPoint(ref.x + uy, ref.y - ux - width);
        else if (esc == 1800) at = QPoint(ref.x - ux - width, ref.y - uy - height);
        else at = QPoint(ref.x - uy - height, ref.y + ux);
    } else {
        const double a = esc * M_PI / 1800.0, c = std::cos(a), sn = std::sin(a);
        // Rotated corners of the box, then each destination pixel sampled back.
        double minx = 1e9, miny = 1e9, maxx = -1e9, maxy = -1e9;
        for (int k = 0; k < 4; ++k) {
            const double px = ux + ((k & 1) ? width : 0), py = uy + ((k & 2) ? height : 0);
            const double rx = px * c + py * sn, ry = -px * sn + py * c;
            minx = std::min(minx, rx); maxx = std::max(maxx, rx);
            miny = std::min(miny, ry); maxy = std::max(maxy, ry);
        }
        const int x0 = static_cast<int>(std::floor(minx)), y0 = static_cast<int>(std::floor(miny));
        const int w = static_cast<int>(std::ceil(maxx)) - x0, h = static_cast<int>(std::ceil(maxy)) - y0;
        fg = QImage(w, h, QImage::Format_Grayscale8);
        bg = QImage(w, h, QImage::Format_Grayscale8);
        fg.fill(0);
        bg.fill(0);
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x) {
                const double rx = x0 + x + 0.5, ry = y0 + y + 0.5;
                const double px = rx * c - ry * sn - ux, py = rx * sn + ry * c - uy;
                const int ix = static_cast<int>(std::floor(px)), iy = static_cast<int>(std::floor(py));
                if (ix < 0 || iy < 0 || ix >= width || iy >= height) continue;
                bg.scanLine(y)[x] = 255;
                fg.scanLine(y)[x] = glyphs.constScanLine(iy)[ix];
            }
        at = QPoint(ref.x + x0, ref.y + y0);
    }
    // An optional clip rectangle narrows the target for this run.
    Target local = t;
    if (clip) {
        const QRect c = clip->translated(t.origin);
        std::vector<QRect> rs;
        for (const QRect& r : t.rects) {
            const QRect q = r & c;
            if (!q.isEmpty()) rs.push_back(q);
        }
        if (rs.empty()) return;
        local.rects = rs;
        local.bound = QRect();
        for (const QRect& r : rs) local.bound = local.bound.united(r);
    }
    const Rop2 copy(R2_COPYPEN);
    if (opaqueBox) BlendMask(local, bg, at, ResolveColor(dc, dc.a.bk), copy);
    BlendMask(local, fg, at, ResolveColor(dc, dc.a.text), copy);
    t.touched = local.touched.isNull() ? t.touched : t.touched.united(local.touched);
}

QRect DeviceRectOf(const Dc& dc, const RECT& r) {
    POINT a = LpToDp(dc, POINT{r.left, r.top}), b = LpToDp(dc, POINT{r.right, r.bottom});
    return QRect(std::min(a.x, b.x), std::min(a.y, b.y), std::abs(b.x - a.x), std::abs(b.y - a.y));
}

BOOL TextOutImpl(HDC hdc, int x, int y, UINT options, const RECT* rc, LPCSTR s, int count, const INT* dx) {
    Dc* dc = LookupDc(hdc);
    if (!dc) return FALSE;
    if (count < 0) count = s ? static_cast<int>(std::strlen(s)) : 0;
    if (count > 0 && !s) return FALSE;
    LOGFONTA lf;
    const FontEntry& fe = DcFont(*dc, &lf);
    const QString text = FromAnsi(s, count);
    POINT ref{x, y};
    const bool updateCp = dc->a.textAlign & TA_UPDATECP;
    if (updateCp) ref = dc->a.cur;
    Target t;
    if (!Acquire(*dc, t)) return TRUE;
    QRect clipRect;
    if (rc) clipRect = DeviceRectOf(*dc, *rc);
    if ((options & ETO_OPAQUE) && rc && !clipRect.isEmpty()) FillSolidDevice(t, clipRect, ResolveColor(*dc, dc->a.bk));
    if (!text.isEmpty())
        DrawRun(*dc, t, fe, lf, LpToDp(*dc, ref), text, dx, dc->a.bkMode == OPAQUE,
                (options & ETO_CLIPPED) && rc ? &clipRect : nullptr);
    Release(t);
    if (updateCp) {
        int w = 0;
        if (dx) for (int i = 0; i < count; ++i) w += dx[i];
        else {
            const POINT d0 = DpToLp(*dc, POINT{0, 0}), d1 = DpToLp(*dc, POINT{TextWidth(*dc, fe, text), 0});
            w = d1.x - d0.x;
        }
        dc->a.cur.x += w;
    }
    return TRUE;
}

// Splits text into lines for DrawText: breaks at CR, LF, CR LF; wraps words to `maxWidth`
// when asked.
std::vector<QString> LayoutLines(const QString& text, UINT fmt, int maxWidth, const QFontMetrics& m,
                                 const std::function<int(const QString&)>& widthOf) {
    std::vector<QString> lines;
    if (fmt & DT_SINGLELINE) {
        QString one = text;
        one.remove(QLatin1Char('\r'));
        one.remove(QLatin1Char('\n'));
        lines.push_back(one);
        return lines;
    }
    QString cur;
    std::vector<QString> hard;
    for (int i = 0; i < text.size(); ++i) {
        const QChar ch = text[i];
        if (ch == QLatin1Char('\r') || ch == QLatin1Char('\n')) {
            hard.push_back(cur);
            cur.clear();
            if (ch == QLatin1Char('\r') && i + 1 < text.size() && text[i + 1] == QLatin1Char('\n')) ++i;
        } else {
            cur += ch;
        }
    }
    hard.push_back(cur);
    (void)m;
    if (!(fmt & DT_WORDBREAK)) return hard;
    for (const QString& h : hard) {
        QString line;
        int i = 0;
        while (i < h.size()) {
            // Next word with the blanks before it.
            int j = i;
            while (j < h.size() && h[j] == QLatin1Char(' ')) ++j;
            while (j < h.size() && h[j] != QLatin1Char(' ')) ++j;
            const QString word = h.mid(i, j - i);
            if (!line.isEmpty() && widthOf(line + word) > maxWidth) {
                lines.push_back(line);
                line = word.trimmed().isEmpty() ? QString() : QString(word).remove(0, word.indexOf(word.trimmed()[0]));
            } else {
                line += word;
            }
            i = j;
        }
        lines.push_back(line);
    }
    return lines;
}

// Marks, inside DrawText's working text, the character that follows as one to underline
// (from a prefix '&'). A private-use code the 8-bit code pages never produce.
constexpr char16_t kUnderlineMark = 0xE000;

// Prefix characters: "&x" shows x (marked for underlining unless hidden), "&&" shows "&",
// a lone '&' at the end shows nothing.
QString ResolvePrefixes(const QString& text, bool mark) {
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != QLatin1Char('&')) {
            out += text[i];
            continue;
        }
        if (++i >= text.size()) break;
        if (mark && text[i] != QLatin1Char('&')) out += QChar(kUnderlineMark);
        out += text[i];
    }
    return out;
}

// A line without its underline marks, and the character spans (start, length in the
// unmarked line) to underline.
QString StripMarks(const QString& line, std::vector<int>* underlined) {
    if (!line.contains(QChar(kUnderlineMark))) return line;
    QString out;
    for (QChar c : line) {
        if (c == QChar(kUnderlineMark)) {
            if (underlined) underlined->push_back(static_cast<int>(out.size()));
        } else {
            out += c;
        }
    }
    return out;
}

QString Ellipsize(const QString& s, int maxWidth, const std::function<int(const QString&)>& widthOf) {
    if (widthOf(s) <= maxWidth) return s;
    const QString dots = QStringLiteral("...");
    for (int n = s.size() - 1; n >= 0; --n) {
        const QString cand = s.left(n) + dots;
        if (widthOf(cand) <= maxWidth || n == 0) return cand;
    }
    return dots;
}

}  // namespace
}  // namespace orlex::gdi

using namespace orlex::gdi;

std::string orlex::ActualFontFamily(const LOGFONTA& lf) {
    const int h = lf.lfHeight ? lf.lfHeight : -16;
    const FontEntry& fe = EntryFor(lf, h);
    return QFontInfo(fe.font).family().toStdString();
}

BOOL TextOutA(HDC hdc, int x, int y, LPCSTR s, int count) { return TextOutImpl(hdc, x, y, 0, nullptr, s, count, nullptr); }

BOOL ExtTextOutA(HDC hdc, int x, int y, UINT options, const RECT* r, LPCSTR s, UINT count, const INT* dx) {
    return TextOutImpl(hdc, x, y, options, r, s, static_cast<int>(count), dx);
}

BOOL GetTextExtentPoint32A(HDC hdc, LPCSTR s, int count, LPSIZE size) {
    Dc* dc = LookupDc(hdc);
    if (!dc || !size || count < 0 || (count > 0 && !s)) return FALSE;
    const FontEntry& fe = DcFont(*dc);
    const int w = TextWidth(*dc, fe, FromAnsi(s, count));
    // Device sizes back to logical units.
    const POINT o = DpToLp(*dc, POINT{0, 0}), p = DpToLp(*dc, POINT{w, fe.ascent + fe.descent});
    size->cx = std::abs(p.x - o.x);
    size->cy = std::abs(p.y - o.y);
    return TRUE;
}

BOOL GetTextMetricsA(HDC hdc, TEXTMETRICA* tm) {
    Dc* dc = LookupDc(hdc);
    if (!dc || !tm) return FALSE;
    LOGFONTA lf;
    const FontEntry& fe = DcFont(*dc, &lf);
    // Metrics in logical units of the context.
    auto ly = [&](int v) {
        const POINT o = DpToLp(*dc, POINT{0, 0}), p = DpToLp(*dc, POINT{0, v});
        return static_cast<LONG>(std::abs(p.y - o.y));
    };
    auto lx = [&](int v) {
        const POINT o = DpToLp(*dc, POINT{0, 0}), p = DpToLp(*dc, POINT{v, 0});
        return static_cast<LONG>(std::abs(p.x - o.x));
    };
    *tm = TEXTMETRICA{};
    tm->tmAscent = ly(fe.ascent);
    tm->tmDescent = ly(fe.descent);
    tm->tmHeight = ly(fe.ascent + fe.descent);
    tm->tmInternalLeading = std::max<LONG>(0, ly(fe.ascent + fe.descent - fe.em));
    tm->tmExternalLeading = ly(fe.leading);
    tm->tmAveCharWidth = lx(fe.avg);
    tm->tmMaxCharWidth = lx(fe.maxw);
    tm->tmWeight = lf.lfWeight ? lf.lfWeight : FW_NORMAL;
    tm->tmOverhang = 0;
    tm->tmDigitizedAspectX = tm->tmDigitizedAspectY = GetDeviceCaps(hdc, LOGPIXELSX);
    tm->tmFirstChar = 0x20;
    tm->tmLastChar = 0xFF;
    tm->tmDefaultChar = 0x1F;
    tm->tmBreakChar = 0x20;
    tm->tmItalic = lf.lfItalic;
    tm->tmUnderlined = lf.lfUnderline;
    tm->tmStruckOut = lf.lfStrikeOut;
    QFontInfo info(fe.font);
    // The platform's flag is set for a variable pitch font.
    tm->tmPitchAndFamily = static_cast<BYTE>((info.fixedPitch() ? 0 : TMPF_FIXED_PITCH) | TMPF_VECTOR | TMPF_TRUETYPE |
                                             (lf.lfPitchAndFamily & 0xF0));
    tm->tmCharSet = ANSI_CHARSET;
    return TRUE;
}

int GetTextFaceA(HDC hdc, int count, LPSTR face) {
    Dc* dc = LookupDc(hdc);
    if (!dc) return 0;
    Font* f = AsFont(dc->a.font);
    const char* name = f ? f->lf.lfFaceName : "System";
    const int len = static_cast<int>(std::strlen(name));
    if (!face) return len + 1;
    if (count <= 0) return 0;
    const int n = std::min(len, count - 1);
    std::memcpy(face, name, static_cast<std::size_t>(n));
    face[n] = 0;
    return n;
}

LONG TabbedTextOutA(HDC hdc, int x, int y, LPCSTR s, int count, int tabs, const INT* stops, int origin) {
    Dc* dc = LookupDc(hdc);
    if (!dc) return 0;
    if (count < 0) count = s ? static_cast<int>(std::strlen(s)) : 0;
    const FontEntry& fe = DcFont(*dc);
    // Tab stops in logical units from `origin`; none: every 8 average characters; one:
    // every that many.
    auto nextStop = [&](int pos) {
        const int rel = pos - origin;
        if (tabs <= 1 || !stops) {
            const int step = (tabs == 1 && stops && stops[0] > 0) ? stops[0] : std::max(1, 8 * fe.avg);
            return origin + (rel / step + 1) * step;
        }
        for (int i = 0; i < tabs; ++i)
            if (stops[i] > rel) return origin + stops[i];
        return pos;
    };
    int px = x;
    int start = 0;
    const UINT oldAlign = dc->a.textAlign;
    dc->a.textAlign = (oldAlign & ~(TA_CENTER | TA_UPDATECP));
    for (int i = 0; i <= count; ++i) {
        if (i == count || s[i] == '\t') {
            if (i > start) {
                TextOutA(hdc, px, y, s + start, i - start);
                SIZE sz{0, 0};
                GetTextExtentPoint32A(hdc, s + start, i - start, &sz);
                px += sz.cx;
            }
            if (i < count) px = nextStop(px);
            start = i + 1;
        }
    }
    dc->a.textAlign = oldAlign;
    TEXTMETRICA tm;
    GetTextMetricsA(hdc, &tm);
    return MAKELONG(static_cast<WORD>(px - x), static_cast<WORD>(tm.tmHeight));
}

int DrawTextA(HDC hdc, LPCSTR s, int count, LPRECT rc, UINT fmt) {
    Dc* dc = LookupDc(hdc);
    if (!dc || !rc) return 0;
    if (count < 0) count = s ? static_cast<int>(std::strlen(s)) : 0;
    QString text = FromAnsi(s, count);
    if (!(fmt & DT_NOPREFIX)) text = ResolvePrefixes(text, !(fmt & DT_HIDEPREFIX));
    if (fmt & DT_EXPANDTABS) {
        QString out;
        for (QChar c : text) out += c == QLatin1Char('\t') ? QStringLiteral("        ") : QString(c);
        text = out;
    }
    LOGFONTA lf;
    const FontEntry& fe = DcFont(*dc, &lf);
    QFontMetrics m(fe.font);
    // Widths and heights in logical units; underline marks take no room.
    auto widthOf = [&](const QString& q) {
        const POINT o = DpToLp(*dc, POINT{0, 0}), p = DpToLp(*dc, POINT{TextWidth(*dc, fe, StripMarks(q, nullptr)), 0});
        return static_cast<int>(std::abs(p.x - o.x));
    };
    TEXTMETRICA tm;
    GetTextMetricsA(hdc, &tm);
    const int lineH = tm.tmHeight + ((fmt & DT_EXTERNALLEADING) ? tm.tmExternalLeading : 0);
    const int boxW = rc->right - rc->left;
    std::vector<QString> lines = LayoutLines(text, fmt, boxW, m, widthOf);
    if (fmt & (DT_END_ELLIPSIS | DT_PATH_ELLIPSIS | DT_WORD_ELLIPSIS))
        for (QString& l : lines) l = Ellipsize(l, boxW, widthOf);
    int maxW = 0;
    for (const QString& l : lines) maxW = std::max(maxW, widthOf(l));
    const int totalH = lineH * static_cast<int>(lines.size());
    if (fmt & DT_CALCRECT) {
        // The box shrinks or grows to the widest line, wrapped or not.
        rc->right = rc->left + maxW;
        rc->bottom = rc->top + totalH;
        return totalH;
    }
    int y = rc->top;
    if (fmt & DT_SINGLELINE) {
        if (fmt & DT_VCENTER) y = rc->top + (rc->bottom - rc->top - totalH) / 2;
        else if (fmt & DT_BOTTOM) y = rc->bottom - totalH;
    }
    const UINT oldAlign = dc->a.textAlign;
    dc->a.textAlign = TA_LEFT | TA_TOP;
    const UINT opts = (fmt & DT_NOCLIP) ? 0 : ETO_CLIPPED;
    // The underline of a prefixed character: one device row a pixel below the baseline
    // (on the baseline's next row when the font has no room under it), in the text colour.
    const int underlineDy = tm.tmAscent + (tm.tmDescent > 1 ? 1 : 0);
    const QRect clipDevice = DeviceRectOf(*dc, *rc);
    std::vector<int> underlined;
    for (const QString& marked : lines) {
        underlined.clear();
        const QString l = StripMarks(marked, &underlined);
        const int w = widthOf(l);
        int x = rc->left;
        if (fmt & DT_CENTER) x = rc->left + (boxW - w) / 2;
        else if (fmt & DT_RIGHT) x = rc->right - w;
        if (!(fmt & DT_PREFIXONLY)) {
            const std::string bytes = orlex::Utf8ToAnsi(l.toStdString());
            TextOutImpl(hdc, x, y, opts, rc, bytes.c_str(), static_cast<int>(bytes.size()), nullptr);
        }
        Target t;
        if (!underlined.empty() && Acquire(*dc, t)) {
            const std::uint32_t colour = ResolveColor(*dc, dc->a.text);
            for (int at : underlined) {
                if (at >= l.size()) continue;
                const POINT a = LpToDp(*dc, POINT{x + widthOf(l.left(at)), y + underlineDy});
                const POINT b = LpToDp(*dc, POINT{x + widthOf(l.left(at + 1)), y + underlineDy});
                QRect bar(std::min(a.x, b.x), a.y, std::abs(b.x - a.x), 1);
                if (opts & ETO_CLIPPED) bar &= clipDevice;
                if (!bar.isEmpty()) FillSolidDevice(t, bar, colour);
            }
            Release(t);
        }
        y += lineH;
    }
    dc->a.textAlign = oldAlign;
    if (fmt & (DT_VCENTER | DT_BOTTOM)) return y - rc->top;
    return totalH;
}

// CDC text members ---------------------------------------------------------------------------------
BOOL CDC::TextOut(int x, int y, LPCSTR s, int count) { return TextOutA(m_hDC, x, y, s, count); }
BOOL CDC::ExtTextOut(int x, int y, UINT options, LPCRECT r, LPCSTR s, UINT count, const INT* dx) {
    return ExtTextOutA(m_hDC, x, y, options, r, s, count, dx);
}
CSize CDC::TabbedTextOut(int x, int y, LPCSTR s, int count, int tabs, const INT* stops, int origin) {
    const LONG r = TabbedTextOutA(m_hDC, x, y, s, count, tabs, stops, origin);
    return CSize(LOWORD(r), HIWORD(r));
}
int CDC::DrawText(LPCSTR s, int count, LPRECT r, UINT format) { return DrawTextA(m_hDC, s, count, r, format); }
CSize CDC::GetTextExtent(LPCSTR s, int count) const {
    SIZE sz{0, 0};
    GetTextExtentPoint32A(m_hDC, s, count, &sz);
    return CSize(sz);
}
CSize CDC::GetTabbedTextExtent(LPCSTR s, int count, int tabs, const INT* stops) const {
    Dc* dc = LookupDc(m_hDC);
    if (!dc || !s) return CSize();
    if (count < 0) count = static_cast<int>(std::strlen(s));
    const FontEntry& fe = DcFont(*dc);
    int px = 0, start = 0;
    for (int i = 0; i <= count; ++i) {
        if (i == count || s[i] == '\t') {
            px += GetTextExtent(s + start, i - start).cx;
            if (i < count) {
                const int step = (tabs >= 1 && stops && stops[0] > 0) ? stops[0] : std::max(1, 8 * fe.avg);
                if (tabs > 1 && stops) {
                    int k = 0;
                    while (k < tabs && stops[k] <= px) ++k;
                    px = k < tabs ? stops[k] : px;
                } else {
                    px = (px / step + 1) * step;
                }
            }
            start = i + 1;
        }
    }
    TEXTMETRICA tm;
    GetTextMetricsA(m_hDC, &tm);
    return CSize(px, tm.tmHeight);
}
BOOL CDC::GetTextMetrics(LPTEXTMETRIC tm) const { return GetTextMetricsA(m_hDC, tm); }
int CDC::GetTextFace(int count, LPSTR face) const { return GetTextFaceA(m_hDC, count, face); }
BOOL CDC::GetCharWidth(UINT first, UINT last, INT* widths) const {
    if (!widths || last < first) return FALSE;
    for (UINT c = first; c <= last; ++c) {
        const char ch = static_cast<char>(c);
        widths[c - first] = GetTextExtent(&ch, 1).cx;
    }
    return TRUE;
}
