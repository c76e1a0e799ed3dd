// Process services of the platform: module handles and file names, path splitting, the
// millisecond tick, sleeping, the debug output, the last-error code and the version record.
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

// Path buffer sizes. Linux paths reach PATH_MAX, so buffers sized by these hold any path.
#ifndef MAX_PATH
#define MAX_PATH 4096
#endif
#ifndef _MAX_PATH
#define _MAX_PATH 4096
#endif
#ifndef _MAX_DRIVE
#define _MAX_DRIVE 3
#endif
#ifndef _MAX_DIR
#define _MAX_DIR 4096
#endif
#ifndef _MAX_FNAME
#define _MAX_FNAME 256
#endif
#ifndef _MAX_EXT
#define _MAX_EXT 256
#endif

// Last-error codes used by the layer.
constexpr DWORD ERROR_SUCCESS = 0;
constexpr DWORD NO_ERROR = 0;
constexpr DWORD ERROR_FILE_NOT_FOUND = 2;
constexpr DWORD ERROR_NOT_ENOUGH_MEMORY = 8;
constexpr DWORD ERROR_INVALID_PARAMETER = 87;
constexpr DWORD ERROR_INSUFFICIENT_BUFFER = 122;
constexpr DWORD ERROR_MOD_NOT_FOUND = 126;
constexpr DWORD ERROR_INVALID_HANDLE = 6;
constexpr DWORD ERROR_NOT_LOCKED = 158;
constexpr DWORD ERROR_RESOURCE_DATA_NOT_FOUND = 1812;
constexpr DWORD ERROR_RESOURCE_TYPE_NOT_FOUND = 1813;
constexpr DWORD ERROR_RESOURCE_NAME_NOT_FOUND = 1814;

// The calling thread's last-error code, set by the layer's functions that fail.
DWORD GetLastError();
void SetLastError(DWORD code);

// Module handles --------------------------------------------------------------------------
// A module handle is the address at which a loaded object (the program or a shared
// library) starts. Null name: the running program. Otherwise the file name of a loaded
// shared library, with or without its directory ("liborlexui.so.0"); null if none.
HMODULE GetModuleHandleA(LPCSTR name);
inline HMODULE GetModuleHandle(LPCSTR name) { return GetModuleHandleA(name); }

// Full path of the module's file into buf (size bytes). Null module: the running program
// (its executable, through /proc/self/exe). Returns the length copied without the
// terminator; a path that doesn't fit is cut to size-1 characters and the result is size
// (ERROR_INSUFFICIENT_BUFFER). 0 for an unknown module or a null/empty buffer.
DWORD GetModuleFileNameA(HMODULE module, LPSTR buf, DWORD size);
inline DWORD GetModuleFileName(HMODULE module, LPSTR buf, DWORD size) { return GetModuleFileNameA(module, buf, size); }

namespace orlex {

// The module that holds the code at this address (its handle), or null.
HMODULE ModuleOfAddress(const void* address);
// Full path of the module's file; empty for an unknown module.
std::string ModuleFileName(HMODULE module);

}  // namespace orlex

// Paths ------------------------------------------------------------------------------------
// Splits a path into drive ("C:" when present, else empty), directory (with its trailing
// separator), file name and extension (with its dot). Both '/' and '\\' separate. Any
// output may be null. Each part is cut to its _MAX_ size less one, so buffers of those
// sizes are never overrun.
void _splitpath(const char* path, char* drive, char* dir, char* fname, char* ext);
// As _splitpath with explicit buffer sizes; returns 0, or 22 (EINVAL) for a null path and
// 34 (ERANGE) when a part doesn't fit (that part is then empty).
int _splitpath_s(const char* path, char* drive, size_t driveSize, char* dir, size_t dirSize, char* fname,
                 size_t fnameSize, char* ext, size_t extSize);
// Joins the parts into path (at most _MAX_PATH bytes): a separator is added after a
// directory that lacks one, a dot before an extension that lacks one. Null parts are empty.
void _makepath(char* path, const char* drive, const char* dir, const char* fname, const char* ext);

// Time ---------------------------------------------------------------------------------------
// Milliseconds since an arbitrary start, wrapping at 2^32 (about 49.7 days).
DWORD GetTickCount();
ULONGLONG GetTickCount64();
// Suspends the calling thread for at least ms milliseconds (0 yields).
void Sleep(DWORD ms);

namespace orlex {

// Replaces the clock behind GetTickCount/GetTickCount64 (a test's clock); null restores
// the real one. The function must be callable from any thread.
using TickSource = ULONGLONG (*)();
void SetTickSource(TickSource source);
// Replaces what Sleep does (a test can advance its clock instead of waiting); null
// restores real sleeping.
using SleepHook = void (*)(DWORD ms);
void SetSleepHook(SleepHook hook);

}  // namespace orlex

// Debug output ---------------------------------------------------------------------------------
// Sends text to the debug output: it is kept in a sink that tests read and, when the
// environment variable ORLEXUI_DEBUG_OUTPUT is set to anything but "0", written to stderr.
// Null text is ignored.
void OutputDebugStringA(LPCSTR text);
inline void OutputDebugString(LPCSTR text) { OutputDebugStringA(text); }

namespace orlex {

// The texts sent to the debug output since the last clear, oldest first (the last 1024).
std::vector<std::string> DebugOutput();
void ClearDebugOutput();

}  // namespace orlex

// Version ----------------------------------------------------------------------------------------
constexpr DWORD VER_PLATFORM_WIN32s = 0;
constexpr DWORD VER_PLATFORM_WIN32_WINDOWS = 1;
constexpr DWORD VER_PLATFORM_WIN32_NT = 2;

struct OSVERSIONINFOA {
    DWORD dwOSVersionInfoSize;
    DWORD dwMajorVersion;
    DWORD dwMinorVersion;
    DWORD dwBuildNumber;
    DWORD dwPlatformId;
    char szCSDVersion[128];
};
using OSVERSIONINFO = OSVERSIONINFOA;
using LPOSVERSIONINFOA = OSVERSIONINFOA*;

// Fills the record for an NT-family platform of version 10.0 (the layer's behaviour); the
// caller sets dwOSVersionInfoSize to sizeof(OSVERSIONINFOA) first, else FALSE.
BOOL GetVersionExA(OSVERSIONINFOA* info);
inline BOOL GetVersionEx(OSVERSIONINFOA* info) { return GetVersionExA(info); }
