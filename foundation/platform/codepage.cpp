// The ANSI code page: a process-wide number, and conversions through glibc iconv with
// one pair of descriptors per thread (iconv descriptors carry state and are not shared).
#include "foundation/platform/codepage.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cerrno>
#include <cstring>
#include <string>

#include <iconv.h>

#include "foundation/platform/process.h"

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

namespace {

// UTF-8 -> UTF-16, with surrogate pairs above the basic plane; malformed bytes were already
// replaced by the code page conversion, so each sequence here is whole.
std::u16string Utf8ToUtf16(const std::string& s)
{
    std::u16string out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size();) {
        const unsigned char b = static_cast<unsigned char>(s[i]);
        char32_t c;
        int n;
        if (b < 0x80) { c = b; n = 1; }
        else if ((b >> 5) == 6) { c = b & 0x1F; n = 2; }
        else if ((b >> 4) == 14) { c = b & 0x0F; n = 3; }
        else if ((b >> 3) == 30) { c = b & 0x07; n = 4; }
        else { c = 0xFFFD; n = 1; }
        if (i + n > s.size()) { c = 0xFFFD; n = static_cast<int>(s.size() - i); }
        else
            for (int k = 1; k < n; ++k) c = (c << 6) | (static_cast<unsigned char>(s[i + k]) & 0x3F);
        i += static_cast<size_t>(n);
        if (c >= 0x10000) {
            c -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (c >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (c & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(c));
        }
    }
    return out;
}

// UTF-16 -> UTF-8; an unpaired surrogate becomes U+FFFD.
std::string Utf16ToUtf8(const char16_t* s, size_t n)
{
    std::string out;
    out.reserve(n);
    for (size_t i = 0; i < n; ++i) {
        char32_t c = s[i];
        if (c >= 0xD800 && c < 0xDC00 && i + 1 < n && s[i + 1] >= 0xDC00 && s[i + 1] < 0xE000)
            c = 0x10000 + ((c - 0xD800) << 10) + (s[++i] - 0xDC00);
        else if (c >= 0xD800 && c < 0xE000)
            c = 0xFFFD;
        if (c < 0x80) out.push_back(static_cast<char>(c));
        else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (c >> 6)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (c >> 12)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (c >> 18)));
            out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

// Whether the conversions go through the current code page (false: UTF-8 as it is);
// false in *ok for a code page this process cannot convert.
bool ThroughAnsi(UINT codePage, bool* ok)
{
    *ok = true;
    if (codePage == CP_UTF8) return GetACP() == CP_UTF8;
    if (codePage == CP_ACP || codePage == CP_THREAD_ACP || codePage == GetACP()) return true;
    *ok = false;
    return false;
}

// Copies a converted text out as the platform's counting rules say.
template <class Ch>
int CopyOut(const std::basic_string<Ch>& text, Ch* dst, int dstLen)
{
    const int need = static_cast<int>(text.size());
    if (dstLen == 0) return need;
    if (!dst || dstLen < need) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::copy(text.begin(), text.end(), dst);
    return need;
}

} // namespace

int MultiByteToWideChar(UINT codePage, DWORD, const char* src, int srcLen, LPWSTR dst, int dstLen)
{
    bool ok;
    const bool ansi = ThroughAnsi(codePage, &ok);
    if (!ok || !src || srcLen == 0 || srcLen < -1 || dstLen < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    // -1 counts the NUL too, as the platform does.
    const size_t n = srcLen < 0 ? std::strlen(src) + 1 : size_t(srcLen);
    std::string utf8 = ansi ? orlex::AnsiToUtf8(src, static_cast<int>(n)) : std::string(src, n);
    return CopyOut(Utf8ToUtf16(utf8), dst, dstLen);
}

int WideCharToMultiByte(UINT codePage, DWORD, LPCWSTR src, int srcLen, char* dst, int dstLen, const char* defaultChar,
                        BOOL* usedDefault)
{
    bool ok;
    const bool ansi = ThroughAnsi(codePage, &ok);
    if (!ok || !src || srcLen == 0 || srcLen < -1 || dstLen < 0) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    size_t n = 0;
    if (srcLen < 0) {
        while (src[n]) ++n;
        ++n;
    } else {
        n = size_t(srcLen);
    }
    if (usedDefault) *usedDefault = FALSE;
    if (!ansi) return CopyOut(Utf16ToUtf8(src, n), dst, dstLen);
    // Character by character, so that a substitute can be told from a '?' of the text.
    std::string out;
    out.reserve(n);
    for (size_t i = 0; i < n; ++i) {
        const size_t len = (src[i] >= 0xD800 && src[i] < 0xDC00 && i + 1 < n) ? 2 : 1;
        const std::string one = orlex::Utf8ToAnsi(Utf16ToUtf8(src + i, len));
        i += len - 1;
        if (one == "?" && src[i] != u'?') {
            out.push_back(defaultChar ? *defaultChar : '?');
            if (usedDefault) *usedDefault = TRUE;
        } else {
            out += one;
        }
    }
    return CopyOut(out, dst, dstLen);
}

int _mbscmp(const unsigned char* a, const unsigned char* b)
{
    while (*a && *a == *b) ++a, ++b;
    return int(*a) - int(*b);
}
