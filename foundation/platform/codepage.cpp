// The ANSI code page: a process-wide number, and conversions through glibc iconv with
// one pair of descriptors per thread (iconv descriptors carry state and are not shared).
#include "foundation/platform/codepage.h"

#include <atomic>
#include <cassert>
#include <cerrno>
#include <cstring>
#include <string>

#include <iconv.h>

namespace {

std::atomic<UINT> g_codePage{1252};

// The iconv name of a Windows code page number.
std::string iconvName(UINT cp)
{
    switch (cp) {
    case 65001: return "UTF-8";
    case 20127: return "ASCII";
    case 20866: return "KOI8-R";
    case 21866: return "KOI8-U";
    case 10000: return "MACINTOSH";
    case 28603: return "ISO-8859-13";
    case 28605: return "ISO-8859-15";
    default: break;
    }
    if (cp >= 28591 && cp <= 28599)
        return "ISO-8859-" + std::to_string(cp - 28590);
    return "CP" + std::to_string(cp);
}

const iconv_t kNoConv = reinterpret_cast<iconv_t>(-1);

// One thread's descriptors for the code page it last converted with.
struct Converters {
    UINT cp = 0;
    iconv_t toUtf8 = kNoConv;
    iconv_t fromUtf8 = kNoConv;
    bool asciiSafe = true; // bytes 0..127 are ASCII both ways, so pure ASCII text is copied

    ~Converters() { close(); }
    void close()
    {
        if (toUtf8 != kNoConv) iconv_close(toUtf8);
        if (fromUtf8 != kNoConv) iconv_close(fromUtf8);
        toUtf8 = fromUtf8 = kNoConv;
    }
    void open(UINT codePage)
    {
        close();
        cp = codePage;
        const std::string name = iconvName(codePage);
        toUtf8 = iconv_open("UTF-8", name.c_str());
        fromUtf8 = iconv_open(name.c_str(), "UTF-8");
        asciiSafe = true;
        if (toUtf8 == kNoConv)
            return;
        char ascii[127];
        for (int i = 0; i < 127; ++i) ascii[i] = char(i + 1);
        char out[512];
        char* in = ascii;
        size_t inLeft = sizeof ascii;
        char* o = out;
        size_t outLeft = sizeof out;
        const size_t r = iconv(toUtf8, &in, &inLeft, &o, &outLeft);
        iconv(toUtf8, nullptr, nullptr, nullptr, nullptr);
        asciiSafe = r != size_t(-1) && inLeft == 0 && size_t(o - out) == sizeof ascii &&
                    std::memcmp(out, ascii, sizeof ascii) == 0;
    }
};

Converters& converters()
{
    thread_local Converters c;
    const UINT cp = g_codePage.load(std::memory_order_relaxed);
    if (c.cp != cp)
        c.open(cp);
    return c;
}

bool isAscii(const char* p, size_t n)
{
    for (size_t i = 0; i < n; ++i)
        if (static_cast<unsigned char>(p[i]) >= 0x80)
            return false;
    return true;
}

void appendUtf8(std::string& out, unsigned cp)
{
    if (cp < 0x80) {
        out += char(cp);
    } else if (cp < 0x800) {
        out += char(0xC0 | (cp >> 6));
        out += char(0x80 | (cp & 0x3F));
    } else {
        out += char(0xE0 | (cp >> 12));
        out += char(0x80 | ((cp >> 6) & 0x3F));
        out += char(0x80 | (cp & 0x3F));
    }
}

// Length of the well-formed UTF-8 sequence at p (1..4), or 0 when malformed or cut.
size_t utf8Length(const unsigned char* p, size_t left)
{
    const unsigned c = p[0];
    size_t n;
    unsigned min;
    if (c < 0x80) return 1;
    if (c >= 0xC2 && c <= 0xDF) { n = 2; min = 0x80; }
    else if (c >= 0xE0 && c <= 0xEF) { n = 3; min = 0x800; }
    else if (c >= 0xF0 && c <= 0xF4) { n = 4; min = 0x10000; }
    else return 0;
    if (left < n) return 0;
    unsigned v = c & (0x7F >> n);
    for (size_t i = 1; i < n; ++i) {
        if ((p[i] & 0xC0) != 0x80) return 0;
        v = (v << 6) | (p[i] & 0x3F);
    }
    if (v < min || v > 0x10FFFF || (v >= 0xD800 && v <= 0xDFFF)) return 0;
    return n;
}

// Runs iconv over the whole input, growing the output; on a byte or character the
// conversion refuses, calls skip(in, inLeft, out) which appends a stand-in and advances.
template <class Skip>
std::string run(iconv_t cd, const char* text, size_t length, Skip skip)
{
    std::string out;
    std::string buf(length * 4 + 16, '\0');
    char* in = const_cast<char*>(text);
    size_t inLeft = length;
    while (inLeft > 0) {
        char* o = buf.data();
        size_t outLeft = buf.size();
        const size_t r = iconv(cd, &in, &inLeft, &o, &outLeft);
        out.append(buf.data(), size_t(o - buf.data()));
        if (r != size_t(-1))
            break;
        if (errno == E2BIG)
            continue;
        // EILSEQ or EINVAL (cut sequence at the end): the stand-in, then go on.
        iconv(cd, nullptr, nullptr, nullptr, nullptr);
        skip(in, inLeft, out);
    }
    // Flush any shift state.
    char* o = buf.data();
    size_t outLeft = buf.size();
    iconv(cd, nullptr, nullptr, &o, &outLeft);
    out.append(buf.data(), size_t(o - buf.data()));
    return out;
}

} // namespace

UINT GetACP()
{
    return g_codePage.load(std::memory_order_relaxed);
}

namespace orlex {

void SetACP(UINT codePage)
{
    g_codePage.store(codePage, std::memory_order_relaxed);
}

std::string AnsiToUtf8(const char* text, int length)
{
    if (text == nullptr)
        return {};
    const size_t n = length < 0 ? std::strlen(text) : size_t(length);
    Converters& c = converters();
    if (c.asciiSafe && isAscii(text, n))
        return std::string(text, n);
    const bool is1252 = c.cp == 1252;
    if (c.toUtf8 == kNoConv) {
        std::string out;
        for (size_t i = 0; i < n; ++i) {
            const unsigned b = static_cast<unsigned char>(text[i]);
            appendUtf8(out, b < 0x80 ? b : 0xFFFD);
        }
        return out;
    }
    return run(c.toUtf8, text, n, [is1252](char*& in, size_t& inLeft, std::string& out) {
        const unsigned b = static_cast<unsigned char>(*in);
        // The five holes of 1252 pass through as C1 controls, as the platform does.
        appendUtf8(out, is1252 && b >= 0x80 && b < 0xA0 ? b : 0xFFFD);
        ++in;
        --inLeft;
    });
}

std::string Utf8ToAnsi(const std::string& text)
{
    Converters& c = converters();
    if (c.asciiSafe && isAscii(text.data(), text.size()))
        return text;
    const bool is1252 = c.cp == 1252;
    auto skip = [is1252](char*& in, size_t& inLeft, std::string& out) {
        const auto* p = reinterpret_cast<const unsigned char*>(in);
        size_t len = utf8Length(p, inLeft);
        if (len == 0) {
            len = 1;
            out += '?';
        } else if (is1252 && len == 2 && p[0] == 0xC2 && p[1] >= 0x80 && p[1] < 0xA0) {
            out += char(p[1]); // C1 controls back into the holes of 1252
        } else {
            out += '?';
        }
        in += len;
        inLeft -= len;
    };
    if (c.fromUtf8 == kNoConv) {
        std::string out;
        const char* p = text.data();
        size_t left = text.size();
        while (left > 0) {
            if (static_cast<unsigned char>(*p) < 0x80) {
                out += *p++;
                --left;
            } else {
                char* q = const_cast<char*>(p);
                skip(q, left, out);
                p = q;
            }
        }
        return out;
    }
    return run(c.fromUtf8, text.data(), text.size(), skip);
}

} // namespace orlex
