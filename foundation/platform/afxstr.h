// CString: the 8-bit string of the window platform. Text is single-byte, in the system
// code page; case operations touch ASCII letters only. Lengths and indices are int, as
// the platform declares them; an index out of range is clamped, never a fault.
#pragma once

#include <cstdarg>
#include <string>
#include <type_traits>

#include "foundation/platform/wintypes.h"

class CString {
public:
    // Empty string.
    CString() = default;
    // Copy of a NUL-terminated text; null gives an empty string.
    CString(const char* text);  // NOLINT(google-explicit-constructor): the platform converts freely
    // The first `length` bytes of `text` (NULs included); null or length <= 0 gives empty.
    CString(const char* text, int length);
    // `repeat` copies of one character (repeat <= 0 gives empty).
    explicit CString(char ch, int repeat = 1);
    // Copy of a standard string.
    explicit CString(const std::string& s) : m_s(s) {}
    CString(const CString&) = default;
    CString(CString&&) noexcept = default;
    CString& operator=(const CString&) = default;
    CString& operator=(CString&&) noexcept = default;
    CString& operator=(const char* text);
    CString& operator=(char ch);

    // Number of bytes, not counting the terminator.
    int GetLength() const { return static_cast<int>(m_s.size()); }
    bool IsEmpty() const { return m_s.empty(); }
    void Empty() { m_s.clear(); }
    // Pointer to the NUL-terminated text; valid until the string is next changed.
    const char* GetString() const { return m_s.c_str(); }
    operator const char*() const { return m_s.c_str(); }  // NOLINT
    // The standard string view of the same bytes.
    const std::string& str() const { return m_s; }

    // Character access; an index outside 0..length-1 reads as NUL and writes nothing.
    char GetAt(int index) const;
    void SetAt(int index, char ch);
    char operator[](int index) const { return GetAt(index); }

    CString& operator+=(const CString& s) { m_s += s.m_s; return *this; }
    CString& operator+=(const char* text);
    CString& operator+=(char ch) { m_s += ch; return *this; }
    // Appends `length` bytes of `text`.
    void Append(const char* text, int length);
    void AppendChar(char ch) { m_s += ch; }

    // strcmp order: <0, 0, >0. Bytes compare as unsigned.
    int Compare(const char* text) const;
    // As Compare, ASCII letters folded to lower case.
    int CompareNoCase(const char* text) const;
    int Collate(const char* text) const { return Compare(text); }
    int CollateNoCase(const char* text) const { return CompareNoCase(text); }

    // Substrings; the arguments are clamped to the string, so they never fail.
    CString Mid(int first) const;
    CString Mid(int first, int count) const;
    CString Left(int count) const;
    CString Right(int count) const;
    // The leading run of characters that are (or are not) in `set`.
    CString SpanIncluding(const char* set) const;
    CString SpanExcluding(const char* set) const;

    // Searches return the zero-based index or -1. `start` below 0 counts as 0.
    int Find(char ch, int start = 0) const;
    int Find(const char* sub, int start = 0) const;
    int ReverseFind(char ch) const;
    int FindOneOf(const char* set) const;

    // Edits; each returns the number of changes or the new length as the platform does.
    int Replace(char oldCh, char newCh);
    int Replace(const char* oldText, const char* newText);
    int Remove(char ch);
    int Insert(int index, char ch);
    int Insert(int index, const char* text);
    int Delete(int index, int count = 1);
    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();

    // Trimming: without an argument, white space (space, \t, \n, \r, \v, \f).
    CString& Trim();
    CString& Trim(char target);
    CString& Trim(const char* targets);
    CString& TrimLeft();
    CString& TrimLeft(char target);
    CString& TrimLeft(const char* targets);
    CString& TrimRight();
    CString& TrimRight(char target);
    CString& TrimRight(const char* targets);

    // The next token of the string from `start` that is delimited by any of `tokens`;
    // `start` moves past it, and becomes -1 when no token is left.
    CString Tokenize(const char* tokens, int& start) const;

    // printf formatting (the C library's rules). A CString argument is passed as its
    // text, so Format("%s", str) works as the platform's code expects; other class
    // types are refused at compile time.
    template <class... Args> void Format(const char* format, const Args&... args)
    {
        FormatC(format, formatArg(args)...);
    }
    template <class... Args> void AppendFormat(const char* format, const Args&... args)
    {
        AppendFormatC(format, formatArg(args)...);
    }
    void FormatV(const char* format, va_list args);
    void AppendFormatV(const char* format, va_list args);
    // The C-variadic forms behind Format and AppendFormat.
    void FormatC(const char* format, ...);
    void AppendFormatC(const char* format, ...);

    // Loads a string resource of the library by id; false (and empty) when there is none.
    // Defined with the resources of the library.
    BOOL LoadString(UINT id);

    // A writable buffer of at least `minLength` bytes plus a terminator, holding the
    // current text. Valid until the next change; end with ReleaseBuffer, which sets the
    // length to the text up to the first NUL (or to `newLength` when not -1).
    char* GetBuffer(int minLength = 0);
    char* GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);
    void FreeExtra() { m_s.shrink_to_fit(); }

private:
    static const char* formatArg(const CString& s) { return s.GetString(); }
    static const char* formatArg(const std::string& s) { return s.c_str(); }
    template <class T> static auto formatArg(const T& v)
    {
        static_assert(!std::is_class_v<T>, "pass a class through Format by its text or numbers");
        if constexpr (std::is_array_v<T>)
            return static_cast<const std::remove_extent_t<T>*>(v);
        else
            return v;
    }

    std::string m_s;
};

CString operator+(const CString& a, const CString& b);
CString operator+(const CString& a, const char* b);
CString operator+(const char* a, const CString& b);
CString operator+(const CString& a, char b);
CString operator+(char a, const CString& b);

bool operator==(const CString& a, const CString& b);
bool operator==(const CString& a, const char* b);
bool operator==(const char* a, const CString& b);
bool operator!=(const CString& a, const CString& b);
bool operator!=(const CString& a, const char* b);
bool operator!=(const char* a, const CString& b);
bool operator<(const CString& a, const CString& b);
bool operator<(const CString& a, const char* b);
bool operator<(const char* a, const CString& b);
bool operator>(const CString& a, const CString& b);
bool operator>(const CString& a, const char* b);
bool operator>(const char* a, const CString& b);
bool operator<=(const CString& a, const CString& b);
bool operator<=(const CString& a, const char* b);
bool operator<=(const char* a, const CString& b);
bool operator>=(const CString& a, const CString& b);
bool operator>=(const CString& a, const char* b);
bool operator>=(const char* a, const CString& b);
