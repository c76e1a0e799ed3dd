#include "foundation/platform/afxstr.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

const char kWhite[] = " \t\n\r\v\f";

inline unsigned char lowerAscii(unsigned char c) { return (c >= 'A' && c <= 'Z') ? c + ('a' - 'A') : c; }
inline unsigned char upperAscii(unsigned char c) { return (c >= 'a' && c <= 'z') ? c - ('a' - 'A') : c; }

int sign(int v) { return (v > 0) - (v < 0); }

int compareBytes(const char* a, const char* b)
{
    return sign(std::strcmp(a ? a : "", b ? b : ""));
}

}  // namespace

CString::CString(const char* text)
{
    if (text)
        m_s = text;
}

CString::CString(const char* text, int length)
{
    if (text && length > 0)
        m_s.assign(text, static_cast<size_t>(length));
}

CString::CString(char ch, int repeat)
{
    if (repeat > 0)
        m_s.assign(static_cast<size_t>(repeat), ch);
}

CString& CString::operator=(const char* text)
{
    if (!text)
        m_s.clear();
    else
        m_s = text;  // std::string copes with a text that points into itself
    return *this;
}

CString& CString::operator=(char ch)
{
    m_s.assign(1, ch);
    return *this;
}

char CString::GetAt(int index) const
{
    if (index < 0 || index >= GetLength())
        return '\0';
    return m_s[static_cast<size_t>(index)];
}

void CString::SetAt(int index, char ch)
{
    if (index >= 0 && index < GetLength())
        m_s[static_cast<size_t>(index)] = ch;
}

CString& CString::operator+=(const char* text)
{
    if (text)
        m_s += text;
    return *this;
}

void CString::Append(const char* text, int length)
{
    if (text && length > 0)
        m_s.append(text, static_cast<size_t>(length));
}

int CString::Compare(const char* text) const
{
    return compareBytes(m_s.c_str(), text);
}

int CString::CompareNoCase(const char* text) const
{
    const auto* a = reinterpret_cast<const unsigned char*>(m_s.c_str());
    const auto* b = reinterpret_cast<const unsigned char*>(text ? text : "");
    for (;; ++a, ++b) {
        const unsigned char ca = lowerAscii(*a), cb = lowerAscii(*b);
        if (ca != cb)
            return ca < cb ? -1 : 1;
        if (ca == 0)
            return 0;
    }
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength());
}

CString CString::Mid(int first, int count) const
{
    const int len = GetLength();
    first = std::clamp(first, 0, len);
    count = std::clamp(count, 0, len - first);
    CString r;
    r.m_s.assign(m_s, static_cast<size_t>(first), static_cast<size_t>(count));
    return r;
}

CString CString::Left(int count) const
{
    return Mid(0, count);
}

CString CString::Right(int count) const
{
    count = std::clamp(count, 0, GetLength());
    return Mid(GetLength() - count, count);
}

CString CString::SpanIncluding(const char* set) const
{
    return Left(static_cast<int>(std::strspn(m_s.c_str(), set ? set : "")));
}

CString CString::SpanExcluding(const char* set) const
{
    return Left(static_cast<int>(std::strcspn(m_s.c_str(), set ? set : "")));
}

int CString::Find(char ch, int start) const
{
    if (start < 0)
        start = 0;
    if (start >= GetLength())
        return -1;
    const size_t p = m_s.find(ch, static_cast<size_t>(start));
    return p == std::string::npos ? -1 : static_cast<int>(p);
}

int CString::Find(const char* sub, int start) const
{
    if (!sub)
        return -1;
    if (start < 0)
        start = 0;
    if (start > GetLength())
        return -1;
    const size_t p = m_s.find(sub, static_cast<size_t>(start));
    return p == std::string::npos ? -1 : static_cast<int>(p);
}

int CString::ReverseFind(char ch) const
{
    const size_t p = m_s.rfind(ch);
    return p == std::string::npos ? -1 : static_cast<int>(p);
}

int CString::FindOneOf(const char* set) const
{
    if (!set || !*set)
        return -1;
    const size_t p = m_s.find_first_of(set);
    return p == std::string::npos ? -1 : static_cast<int>(p);
}

int CString::Replace(char oldCh, char newCh)
{
    int n = 0;
    if (oldCh == newCh)
        return 0;
    for (char& c : m_s)
        if (c == oldCh) {
            c = newCh;
            ++n;
        }
    return n;
}

int CString::Replace(const char* oldText, const char* newText)
{
    if (!oldText || !*oldText)
        return 0;
    const std::string from(oldText), to(newText ? newText : "");
    std::string out;
    int n = 0;
    size_t pos = 0;
    for (;;) {
        const size_t hit = m_s.find(from, pos);
        if (hit == std::string::npos)
            break;
        out.append(m_s, pos, hit - pos);
        out += to;
        pos = hit + from.size();
        ++n;
    }
    if (n) {
        out.append(m_s, pos, std::string::npos);
        m_s.swap(out);
    }
    return n;
}

int CString::Remove(char ch)
{
    const size_t before = m_s.size();
    m_s.erase(std::remove(m_s.begin(), m_s.end(), ch), m_s.end());
    return static_cast<int>(before - m_s.size());
}

int CString::Insert(int index, char ch)
{
    index = std::clamp(index, 0, GetLength());
    m_s.insert(static_cast<size_t>(index), 1, ch);
    return GetLength();
}

int CString::Insert(int index, const char* text)
{
    index = std::clamp(index, 0, GetLength());
    if (text)
        m_s.insert(static_cast<size_t>(index), text);
    return GetLength();
}

int CString::Delete(int index, int count)
{
    const int len = GetLength();
    if (index < 0)
        index = 0;
    if (count > 0 && index < len)
        m_s.erase(static_cast<size_t>(index), static_cast<size_t>(std::min(count, len - index)));
    return GetLength();
}

CString& CString::MakeUpper()
{
    for (char& c : m_s)
        c = static_cast<char>(upperAscii(static_cast<unsigned char>(c)));
    return *this;
}

CString& CString::MakeLower()
{
    for (char& c : m_s)
        c = static_cast<char>(lowerAscii(static_cast<unsigned char>(c)));
    return *this;
}

CString& CString::MakeReverse()
{
    std::reverse(m_s.begin(), m_s.end());
    return *this;
}

CString& CString::Trim() { return TrimRight().TrimLeft(); }
CString& CString::Trim(char target) { return TrimRight(target).TrimLeft(target); }
CString& CString::Trim(const char* targets) { return TrimRight(targets).TrimLeft(targets); }
CString& CString::TrimLeft() { return TrimLeft(kWhite); }
CString& CString::TrimRight() { return TrimRight(kWhite); }

CString& CString::TrimLeft(char target)
{
    const char set[2] = {target, '\0'};
    return TrimLeft(set);
}

CString& CString::TrimRight(char target)
{
    const char set[2] = {target, '\0'};
    return TrimRight(set);
}

CString& CString::TrimLeft(const char* targets)
{
    if (!targets || !*targets)
        return *this;
    const size_t p = m_s.find_first_not_of(targets);
    m_s.erase(0, p == std::string::npos ? m_s.size() : p);
    return *this;
}

CString& CString::TrimRight(const char* targets)
{
    if (!targets || !*targets)
        return *this;
    const size_t p = m_s.find_last_not_of(targets);
    m_s.erase(p == std::string::npos ? 0 : p + 1);
    return *this;
}

CString CString::Tokenize(const char* tokens, int& start) const
{
    if (start < 0 || start >= GetLength() || !tokens) {
        start = -1;
        return CString();
    }
    if (!*tokens) {
        CString r = Mid(start);
        start = GetLength();
        return r;
    }
    const size_t from = m_s.find_first_not_of(tokens, static_cast<size_t>(start));
    if (from == std::string::npos) {
        start = -1;
        return CString();
    }
    size_t to = m_s.find_first_of(tokens, from);
    if (to == std::string::npos)
        to = m_s.size();
    start = static_cast<int>(std::min(to + 1, m_s.size()));
    return Mid(static_cast<int>(from), static_cast<int>(to - from));
}

void CString::FormatC(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    FormatV(format, args);
    va_end(args);
}

void CString::FormatV(const char* format, va_list args)
{
    // Formatted aside first: an argument may be this string's own text.
    CString out;
    out.AppendFormatV(format, args);
    m_s.swap(out.m_s);
}

void CString::AppendFormatC(const char* format, ...)
{
    va_list args;
    va_start(args, format);
    AppendFormatV(format, args);
    va_end(args);
}

void CString::AppendFormatV(const char* format, va_list args)
{
    if (!format)
        return;
    char small[256];
    va_list again;
    va_copy(again, args);
    const int n = std::vsnprintf(small, sizeof small, format, args);
    if (n >= 0 && static_cast<size_t>(n) < sizeof small) {
        m_s.append(small, static_cast<size_t>(n));
    } else if (n > 0) {
        // Into a buffer of its own, as an argument may point into m_s.
        std::string big(static_cast<size_t>(n), '\0');
        std::vsnprintf(big.data(), static_cast<size_t>(n) + 1, format, again);
        m_s += big;
    }
    va_end(again);
}

char* CString::GetBuffer(int minLength)
{
    if (minLength > GetLength())
        m_s.resize(static_cast<size_t>(minLength), '\0');
    return m_s.data();
}

char* CString::GetBufferSetLength(int length)
{
    m_s.resize(static_cast<size_t>(std::max(length, 0)), '\0');
    return m_s.data();
}

void CString::ReleaseBuffer(int newLength)
{
    if (newLength < 0)
        m_s.resize(::strnlen(m_s.c_str(), m_s.size()));
    else
        m_s.resize(static_cast<size_t>(newLength), '\0');
}

CString operator+(const CString& a, const CString& b) { CString r(a); r += b; return r; }
CString operator+(const CString& a, const char* b) { CString r(a); r += b; return r; }
CString operator+(const char* a, const CString& b) { CString r(a); r += b; return r; }
CString operator+(const CString& a, char b) { CString r(a); r += b; return r; }
CString operator+(char a, const CString& b) { CString r(a); r += b; return r; }

bool operator==(const CString& a, const CString& b) { return a.str() == b.str(); }
bool operator==(const CString& a, const char* b) { return a.Compare(b) == 0; }
bool operator==(const char* a, const CString& b) { return b.Compare(a) == 0; }
bool operator!=(const CString& a, const CString& b) { return !(a == b); }
bool operator!=(const CString& a, const char* b) { return !(a == b); }
bool operator!=(const char* a, const CString& b) { return !(a == b); }
bool operator<(const CString& a, const CString& b) { return a.Compare(b) < 0; }
bool operator<(const CString& a, const char* b) { return a.Compare(b) < 0; }
bool operator<(const char* a, const CString& b) { return b.Compare(a) > 0; }
bool operator>(const CString& a, const CString& b) { return a.Compare(b) > 0; }
bool operator>(const CString& a, const char* b) { return a.Compare(b) > 0; }
bool operator>(const char* a, const CString& b) { return b.Compare(a) < 0; }
bool operator<=(const CString& a, const CString& b) { return a.Compare(b) <= 0; }
bool operator<=(const CString& a, const char* b) { return a.Compare(b) <= 0; }
bool operator<=(const char* a, const CString& b) { return b.Compare(a) >= 0; }
bool operator>=(const CString& a, const CString& b) { return a.Compare(b) >= 0; }
bool operator>=(const CString& a, const char* b) { return a.Compare(b) >= 0; }
bool operator>=(const char* a, const CString& b) { return b.Compare(a) <= 0; }
