// Kernel calls of the platform that the library makes besides memory and modules: the local
// time and its formatting for print headers, files by handle (the BMP writer), and the
// registry, which this platform does not have. Plain C++ over POSIX.
#pragma once

#include "foundation/platform/wintypes.h"

// Time ------------------------------------------------------------------------------------
struct SYSTEMTIME {
    WORD wYear, wMonth, wDayOfWeek, wDay, wHour, wMinute, wSecond, wMilliseconds;
};
using LPSYSTEMTIME = SYSTEMTIME*;

// The current time in the local time zone / in UTC. Day of week 0 = Sunday.
void GetLocalTime(SYSTEMTIME* st);
void GetSystemTime(SYSTEMTIME* st);

using LCID = DWORD;
constexpr LCID LOCALE_SYSTEM_DEFAULT = 0x0800;
constexpr LCID LOCALE_USER_DEFAULT = 0x0400;
constexpr DWORD DATE_SHORTDATE = 0x1;
constexpr DWORD DATE_LONGDATE = 0x2;
constexpr DWORD TIME_NOSECONDS = 0x2;
constexpr DWORD TIME_FORCE24HOURFORMAT = 0x8;

// Writes a date by a picture (d dd ddd dddd, M MM MMM MMMM, y yy yyyy, text in single
// quotes, '' for a quote), e.g. "ddd MMM dd yyyy" -> "Mon Nov 23 2026". Names are English.
// time null: now. format null: "M/d/yyyy" (DATE_LONGDATE: "dddd, MMMM d, yyyy"). Returns
// the characters written with the NUL, or with size 0 the number needed; 0 on failure
// (ERROR_INSUFFICIENT_BUFFER, ERROR_INVALID_PARAMETER for a date out of range).
int GetDateFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR out, int size);
// Writes a time by a picture (h hh 12-hour, H HH 24-hour, m mm, s ss, t tt "A"/"AM",
// quotes as above), e.g. "hh':'mm':'ss tt" -> "02:05:09 PM". format null: "h:mm:ss tt".
// Counts and failures as GetDateFormatA.
int GetTimeFormatA(LCID locale, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR out, int size);
inline int GetDateFormat(LCID l, DWORD f, const SYSTEMTIME* t, LPCSTR fmt, LPSTR out, int n) { return GetDateFormatA(l, f, t, fmt, out, n); }
inline int GetTimeFormat(LCID l, DWORD f, const SYSTEMTIME* t, LPCSTR fmt, LPSTR out, int n) { return GetTimeFormatA(l, f, t, fmt, out, n); }

// Files by handle -------------------------------------------------------------------------
constexpr DWORD GENERIC_READ = 0x80000000;
constexpr DWORD GENERIC_WRITE = 0x40000000;
constexpr DWORD FILE_SHARE_READ = 1;
constexpr DWORD FILE_SHARE_WRITE = 2;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;
constexpr DWORD INVALID_FILE_SIZE = 0xFFFFFFFF;
constexpr DWORD INVALID_SET_FILE_POINTER = 0xFFFFFFFF;
constexpr DWORD ERROR_ACCESS_DENIED = 5;
constexpr DWORD ERROR_FILE_EXISTS = 80;
constexpr DWORD ERROR_WRITE_FAULT = 29;
constexpr DWORD ERROR_READ_FAULT = 30;
inline HANDLE const INVALID_HANDLE_VALUE = reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1));

// Opens or makes a file as the disposition says (share modes, security and attributes are
// accepted and have no effect here). INVALID_HANDLE_VALUE on failure, with GetLastError.
// The handle is the caller's until CloseHandle.
HANDLE CreateFileA(LPCSTR name, DWORD access, DWORD share, void* security, DWORD disposition, DWORD flags,
                   HANDLE templateFile);
inline HANDLE CreateFile(LPCSTR n, DWORD a, DWORD s, void* sec, DWORD d, DWORD f, HANDLE t) { return CreateFileA(n, a, s, sec, d, f, t); }
// Write/read `count` bytes at the file position; *done gets what was moved (may be null
// only with an overlapped argument on the platform; here it may always be null).
BOOL WriteFile(HANDLE file, LPCVOID data, DWORD count, LPDWORD done, void* overlapped);
BOOL ReadFile(HANDLE file, LPVOID data, DWORD count, LPDWORD done, void* overlapped);
// Size of the file (low 32 bits; the high part in *high when given).
DWORD GetFileSize(HANDLE file, LPDWORD high);
DWORD SetFilePointer(HANDLE file, LONG distance, LPLONG high, DWORD method);
// Closes a file handle; FALSE (ERROR_INVALID_HANDLE) for one that isn't open.
BOOL CloseHandle(HANDLE h);

// Registry ------------------------------------------------------------------------------
// This platform keeps no registry: keys are never found, and callers take their defaults
// (the library reads it only on a system branch that does not occur here).
inline HKEY const HKEY_CLASSES_ROOT = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000000));
inline HKEY const HKEY_CURRENT_USER = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000001));
inline HKEY const HKEY_LOCAL_MACHINE = reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(0x80000002));
constexpr DWORD KEY_QUERY_VALUE = 0x0001;
constexpr DWORD KEY_READ = 0x20019;
constexpr DWORD REG_SZ = 1;
constexpr DWORD REG_DWORD = 4;
using PHKEY = HKEY*;
// ERROR_FILE_NOT_FOUND with *result null for every key.
LONG RegOpenKeyExA(HKEY key, LPCSTR subKey, DWORD options, DWORD access, PHKEY result);
// ERROR_INVALID_HANDLE: no key can have been opened.
LONG RegQueryValueExA(HKEY key, LPCSTR name, LPDWORD reserved, LPDWORD type, LPBYTE data, LPDWORD size);
LONG RegCloseKey(HKEY key);
inline LONG RegOpenKeyEx(HKEY k, LPCSTR s, DWORD o, DWORD a, PHKEY r) { return RegOpenKeyExA(k, s, o, a, r); }
inline LONG RegQueryValueEx(HKEY k, LPCSTR n, LPDWORD r, LPDWORD t, LPBYTE d, LPDWORD s) { return RegQueryValueExA(k, n, r, t, d, s); }
