// The process's 8-bit ("ANSI") code page and conversions between its text and UTF-8.
// All 8-bit text of the library is in this code page; the drawing layer converts at its
// boundary. Plain C++ (glibc iconv underneath).
#pragma once

#include <string>

#include "foundation/platform/wintypes.h"

// The current ANSI code page number: 1252 unless a host or test chose another with
// orlex::SetACP. Safe to call from any thread.
UINT GetACP();

namespace orlex {

// Chooses the code page that GetACP reports and that the conversions below use, e.g.
// 1252 (Western), 1251 (Cyrillic), 932 (Japanese), 65001 (UTF-8). A number that the
// system cannot convert still becomes GetACP's answer; conversions then keep ASCII and
// turn every other byte into U+FFFD (to UTF-8) or '?' (from UTF-8).
void SetACP(UINT codePage);

// 8-bit text of the current code page -> UTF-8. length < 0: up to the first NUL.
// Bytes the code page does not define come out as U+FFFD (under 1252, the five
// unassigned bytes come out as the C1 controls of the same value). null text -> "".
std::string AnsiToUtf8(const char* text, int length = -1);

// UTF-8 -> 8-bit text of the current code page; '?' for each character the code page
// lacks and for each byte of malformed UTF-8.
std::string Utf8ToAnsi(const std::string& text);

} // namespace orlex

// UTF-16 text as the platform's wide-character calls take it.
using WCHAR = char16_t;
using LPWSTR = WCHAR*;
using LPCWSTR = const WCHAR*;

constexpr UINT CP_ACP = 0;
constexpr UINT CP_OEMCP = 1;
constexpr UINT CP_THREAD_ACP = 3;
constexpr UINT CP_UTF8 = 65001;

// 8-bit text of `codePage` (CP_ACP and CP_THREAD_ACP: the current code page; CP_UTF8; or
// the current code page's own number) -> UTF-16. srcLen -1: up to and with the NUL.
// Returns the WCHARs written, or with dstLen 0 the number needed; 0 on failure with
// GetLastError ERROR_INSUFFICIENT_BUFFER (too small) or ERROR_INVALID_PARAMETER.
int MultiByteToWideChar(UINT codePage, DWORD flags, const char* src, int srcLen, LPWSTR dst, int dstLen);
// UTF-16 -> 8-bit text of `codePage`, '?' for what it lacks (defaultChar and usedDefault
// as the platform has them; usedDefault may be null). Counts as MultiByteToWideChar.
int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR src, int srcLen, char* dst, int dstLen,
                        const char* defaultChar, BOOL* usedDefault);

// Compares two NUL-terminated multibyte strings byte by byte (unsigned): < 0, 0, > 0. Every
// code page the library meets is single-byte or compares in byte order.
int _mbscmp(const unsigned char* a, const unsigned char* b);
