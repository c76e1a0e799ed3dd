#include "foundation/platform/kernel.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <ctime>
#include <mutex>
#include <set>
#include <string>

#include "foundation/platform/process.h"

namespace {

// Time ------------------------------------------------------------------------------------

SYSTEMTIME FromTm(const std::tm& t, long usec)
{
    SYSTEMTIME s{};
    s.wYear = static_cast<WORD>(t.tm_year + 1900);
    s.wMonth = static_cast<WORD>(t.tm_mon + 1);
    s.wDayOfWeek = static_cast<WORD>(t.tm_wday);
    s.wDay = static_cast<WORD>(t.tm_mday);
    s.wHour = static_cast<WORD>(t.tm_hour);
    s.wMinute = static_cast<WORD>(t.tm_min);
    s.wSecond = static_cast<WORD>(t.tm_sec);
    s.wMilliseconds = static_cast<WORD>(usec / 1000);
    return s;
}

SYSTEMTIME Now(bool local)
{
    timeval tv{};
    gettimeofday(&tv, nullptr);
    std::tm t{};
    const time_t secs = tv.tv_sec;
    if (local) localtime_r(&secs, &t);
    else gmtime_r(&secs, &t);
    return FromTm(t, tv.tv_usec);
}

const char* const kDayNames[7] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};
const char* const kMonthNames[12] = {"January", "February", "March",     "April",   "May",      "June",
                                     "July",    "August",   "September", "October", "November", "December"};

bool IsLeap(int y) { return (y % 4 == 0 && y % 100 != 0) || y % 400 == 0; }

bool ValidDate(const SYSTEMTIME& t)
{
    static const int kDays[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (t.wYear < 1601 || t.wYear > 30827 || t.wMonth < 1 || t.wMonth > 12 || t.wDay < 1) return false;
    return t.wDay <= kDays[t.wMonth - 1] + (t.wMonth == 2 && IsLeap(t.wYear) ? 1 : 0);
}

bool ValidTime(const SYSTEMTIME& t) { return t.wHour < 24 && t.wMinute < 60 && t.wSecond < 60 && t.wMilliseconds < 1000; }

// Day of the week of a valid date (0 = Sunday), so a caller's wDayOfWeek need not be right.
int DayOfWeek(int y, int m, int d)
{
    static const int kOffset[12] = {0, 3, 2, 5, 0, 3, 5, 1, 4, 6, 2, 4};
    if (m < 3) y -= 1;
    return (y + y / 4 - y / 100 + y / 400 + kOffset[m - 1] + d) % 7;
}

std::string Number(int v, int digits)
{
    std::string s = std::to_string(v);
    while (static_cast<int>(s.size()) < digits) s.insert(s.begin(), '0');
    return s;
}

// Expands a picture: runs of one letter are fields that `field` writes (false: the letters
// are not a field and stay as they are); text in single quotes is copied, '' is a quote.
template <class Field>
std::string Expand(const char* picture, Field field)
{
    std::string out;
    for (const char* p = picture; *p;) {
        if (p[0] == '\'' && p[1] == '\'') {
            out.push_back('\'');
            p += 2;
            continue;
        }
        if (*p == '\'') {
            ++p;
            while (*p) {
                if (*p == '\'') {
                    if (p[1] == '\'') { out.push_back('\''); p += 2; continue; }
                    ++p;
                    break;
                }
                out.push_back(*p++);
            }
            continue;
        }
        const char c = *p;
        int n = 0;
        while (p[n] == c) ++n;
        if (!field(c, n, out)) out.append(p, static_cast<size_t>(n));
        p += n;
    }
    return out;
}

int CopyOut(const std::string& text, LPSTR out, int size)
{
    const int need = static_cast<int>(text.size()) + 1;
    if (size == 0) return need;
    if (!out || size < need) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    std::memcpy(out, text.c_str(), static_cast<size_t>(need));
    return need;
}

// Files -----------------------------------------------------------------------------------

// Handles are the descriptor plus one, so that no open file is ever the null handle, kept
// in a set so that a stale or made-up handle is refused instead of closing someone's fd.
std::mutex g_filesLock;
std::set<int> g_files;

int FdOf(HANDLE h)
{
    const auto v = reinterpret_cast<LONG_PTR>(h);
    if (v <= 0 || v > 0x7FFFFFFF) return -1;
    std::lock_guard<std::mutex> g(g_filesLock);
    return g_files.count(static_cast<int>(v - 1)) ? static_cast<int>(v - 1) : -1;
}

DWORD ErrorOf(int err)
{
    switch (err) {
    case ENOENT: case ENOTDIR: return ERROR_FILE_NOT_FOUND;
    case EACCES: case EPERM: case EROFS: case EISDIR: return ERROR_ACCESS_DENIED;
    case EEXIST: return ERROR_FILE_EXISTS;
    default: return ERROR_INVALID_PARAMETER;
    }
}

}  // namespace

void GetLocalTime(SYSTEMTIME* st)
{
    if (st) *st = Now(true);
}

void GetSystemTime(SYSTEMTIME* st)
{
    if (st) *st = Now(false);
}

int GetDateFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR out, int size)
{
    if (size < 0) { SetLastError(ERROR_INVALID_PARAMETER); return 0; }
    const SYSTEMTIME t = time ? *time : Now(true);
    if (!ValidDate(t)) { SetLastError(ERROR_INVALID_PARAMETER); return 0; }
    const int dow = DayOfWeek(t.wYear, t.wMonth, t.wDay);
    const char* picture = format ? format : (flags & DATE_LONGDATE) ? "dddd, MMMM d, yyyy" : "M/d/yyyy";
    const std::string text = Expand(picture, [&](char c, int n, std::string& o) {
        switch (c) {
        case 'd':
            if (n <= 2) o += Number(t.wDay, n);
            else o += n == 3 ? std::string(kDayNames[dow], 3) : std::string(kDayNames[dow]);
            return true;
        case 'M':
            if (n <= 2) o += Number(t.wMonth, n);
            else o += n == 3 ? std::string(kMonthNames[t.wMonth - 1], 3) : std::string(kMonthNames[t.wMonth - 1]);
            return true;
        case 'y':
            // y: the year in the century without a leading zero, yy with one, more: whole.
            if (n == 1) o += std::to_string(t.wYear % 100);
            else if (n == 2) o += Number(t.wYear % 100, 2);
            else o += Number(t.wYear, 4);
            return true;
        case 'g':
            o += "A.D.";
            return true;
        default:
            return false;
        }
    });
    return CopyOut(text, out, size);
}

int GetTimeFormatA(LCID, DWORD flags, const SYSTEMTIME* time, LPCSTR format, LPSTR out, int size)
{
    if (size < 0) { SetLastError(ERROR_INVALID_PARAMETER); return 0; }
    const SYSTEMTIME t = time ? *time : Now(true);
    if (!ValidTime(t)) { SetLastError(ERROR_INVALID_PARAMETER); return 0; }
    const char* picture = format ? format : (flags & TIME_NOSECONDS) ? "h:mm tt" : "h:mm:ss tt";
    const bool force24 = flags & TIME_FORCE24HOURFORMAT;
    const int h12 = t.wHour % 12 == 0 ? 12 : t.wHour % 12;
    const std::string text = Expand(picture, [&](char c, int n, std::string& o) {
        const int w = n > 2 ? 2 : n;
        switch (c) {
        case 'h': o += Number(force24 ? t.wHour : h12, w); return true;
        case 'H': o += Number(t.wHour, w); return true;
        case 'm': o += Number(t.wMinute, w); return true;
        case 's': o += Number(t.wSecond, w); return true;
        case 't': o += n == 1 ? (t.wHour < 12 ? "A" : "P") : (t.wHour < 12 ? "AM" : "PM"); return true;
        default: return false;
        }
    });
    return CopyOut(text, out, size);
}

HANDLE CreateFileA(LPCSTR name, DWORD access, DWORD, void*, DWORD disposition, DWORD, HANDLE)
{
    if (!name || !*name) {
        SetLastError(ERROR_FILE_NOT_FOUND);
        return INVALID_HANDLE_VALUE;
    }
    int mode = (access & GENERIC_READ) && (access & GENERIC_WRITE) ? O_RDWR : (access & GENERIC_WRITE) ? O_WRONLY : O_RDONLY;
    switch (disposition) {
    case CREATE_NEW: mode |= O_CREAT | O_EXCL; break;
    case CREATE_ALWAYS: mode |= O_CREAT | O_TRUNC; break;
    case OPEN_EXISTING: break;
    case OPEN_ALWAYS: mode |= O_CREAT; break;
    case TRUNCATE_EXISTING: mode |= O_TRUNC; break;
    default: SetLastError(ERROR_INVALID_PARAMETER); return INVALID_HANDLE_VALUE;
    }
    const int fd = ::open(name, mode | O_CLOEXEC, 0644);
    if (fd < 0) {
        SetLastError(ErrorOf(errno));
        return INVALID_HANDLE_VALUE;
    }
    {
        std::lock_guard<std::mutex> g(g_filesLock);
        g_files.insert(fd);
    }
    SetLastError(ERROR_SUCCESS);
    return reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(fd) + 1);
}

namespace {

// Moves count bytes through `io` (read or write) until done, the end of the file, or an
// error; interrupted calls are repeated.
template <class Buffer, class Io>
BOOL Transfer(HANDLE file, Buffer data, DWORD count, LPDWORD done, Io io, DWORD fault)
{
    if (done) *done = 0;
    const int fd = FdOf(file);
    if (fd < 0) { SetLastError(ERROR_INVALID_HANDLE); return FALSE; }
    if (count && !data) { SetLastError(ERROR_INVALID_PARAMETER); return FALSE; }
    DWORD left = count;
    while (left) {
        const ssize_t n = io(fd, data, left);
        if (n < 0) {
            if (errno == EINTR) continue;
            SetLastError(fault);
            return FALSE;
        }
        if (n == 0) break;  // end of file: success with fewer bytes
        data += n;
        left -= static_cast<DWORD>(n);
        if (done) *done += static_cast<DWORD>(n);
    }
    return TRUE;
}

}  // namespace

BOOL WriteFile(HANDLE file, LPCVOID data, DWORD count, LPDWORD done, void*)
{
    return Transfer(file, static_cast<const char*>(data), count, done,
                    [](int fd, const char* p, DWORD n) { return ::write(fd, p, n); }, ERROR_WRITE_FAULT);
}

BOOL ReadFile(HANDLE file, LPVOID data, DWORD count, LPDWORD done, void*)
{
    return Transfer(file, static_cast<char*>(data), count, done,
                    [](int fd, char* p, DWORD n) { return ::read(fd, p, n); }, ERROR_READ_FAULT);
}

DWORD GetFileSize(HANDLE file, LPDWORD high)
{
    const int fd = FdOf(file);
    struct stat st {};
    if (fd < 0 || ::fstat(fd, &st) != 0) {
        SetLastError(ERROR_INVALID_HANDLE);
        return INVALID_FILE_SIZE;
    }
    const auto size = static_cast<unsigned long long>(st.st_size);
    if (high) *high = static_cast<DWORD>(size >> 32);
    return static_cast<DWORD>(size);
}

DWORD SetFilePointer(HANDLE file, LONG distance, LPLONG high, DWORD method)
{
    const int fd = FdOf(file);
    if (fd < 0) { SetLastError(ERROR_INVALID_HANDLE); return INVALID_SET_FILE_POINTER; }
    const long long move = high ? (static_cast<long long>(*high) << 32) | static_cast<DWORD>(distance) : distance;
    const int whence = method == FILE_BEGIN ? SEEK_SET : method == FILE_CURRENT ? SEEK_CUR : method == FILE_END ? SEEK_END : -1;
    const off_t at = whence < 0 ? -1 : ::lseek(fd, static_cast<off_t>(move), whence);
    if (at < 0) { SetLastError(ERROR_INVALID_PARAMETER); return INVALID_SET_FILE_POINTER; }
    if (high) *high = static_cast<LONG>(static_cast<unsigned long long>(at) >> 32);
    SetLastError(ERROR_SUCCESS);
    return static_cast<DWORD>(at);
}

BOOL CloseHandle(HANDLE h)
{
    const int fd = FdOf(h);
    if (fd < 0) { SetLastError(ERROR_INVALID_HANDLE); return FALSE; }
    {
        std::lock_guard<std::mutex> g(g_filesLock);
        g_files.erase(fd);
    }
    return ::close(fd) == 0 ? TRUE : FALSE;
}

LONG RegOpenKeyExA(HKEY, LPCSTR, DWORD, DWORD, PHKEY result)
{
    if (result) *result = nullptr;
    return static_cast<LONG>(ERROR_FILE_NOT_FOUND);
}

LONG RegQueryValueExA(HKEY, LPCSTR, LPDWORD, LPDWORD, LPBYTE, LPDWORD) { return static_cast<LONG>(ERROR_INVALID_HANDLE); }

LONG RegCloseKey(HKEY) { return static_cast<LONG>(ERROR_INVALID_HANDLE); }
