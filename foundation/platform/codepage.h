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
