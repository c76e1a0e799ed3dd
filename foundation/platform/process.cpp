#include "foundation/platform/process.h"

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <mutex>
#include <thread>

namespace {

thread_local DWORD t_lastError = 0;

}  // namespace

DWORD GetLastError() { return t_lastError; }
void SetLastError(DWORD code) { t_lastError = code; }

// Module handles ---------------------------------------------------------------------------------

namespace {

// An address inside the running program: its first loaded segment. dl_iterate_phdr visits
// the program first.
int FirstObjectCallback(dl_phdr_info* info, size_t, void* data) {
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        if (info->dlpi_phdr[i].p_type == PT_LOAD) {
            *static_cast<const void**>(data) = reinterpret_cast<const void*>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
            break;
        }
    }
    return 1;  // the program alone
}

HMODULE MainModule() {
    static const HMODULE main = [] {
        const void* address = nullptr;
        dl_iterate_phdr(&FirstObjectCallback, &address);
        HMODULE module = orlex::ModuleOfAddress(address);
        return module ? module : reinterpret_cast<HMODULE>(const_cast<void*>(address));
    }();
    return main;
}

std::string ExecutablePath() {
    std::string path(256, '\0');
    for (;;) {
        const ssize_t n = readlink("/proc/self/exe", path.data(), path.size());
        if (n < 0) return std::string();
        if (static_cast<size_t>(n) < path.size()) {
            path.resize(static_cast<size_t>(n));
            return path;
        }
        path.resize(path.size() * 2);
    }
}

struct NameSearch {
    const char* name;
    bool withDirectory;
    const void* address = nullptr;
};

int NameCallback(dl_phdr_info* info, size_t, void* data) {
    auto* search = static_cast<NameSearch*>(data);
    const char* file = info->dlpi_name;
    if (!file || !*file) return 0;
    const char* base = std::strrchr(file, '/');
    base = base ? base + 1 : file;
    if (std::strcmp(search->withDirectory ? file : base, search->name) != 0) return 0;
    for (int i = 0; i < info->dlpi_phnum; ++i) {
        if (info->dlpi_phdr[i].p_type == PT_LOAD) {
            search->address = reinterpret_cast<const void*>(info->dlpi_addr + info->dlpi_phdr[i].p_vaddr);
            return 1;
        }
    }
    return 0;
}

}  // namespace

namespace orlex {

HMODULE ModuleOfAddress(const void* address) {
    if (!address) return nullptr;
    Dl_info info{};
    if (!dladdr(address, &info) || !info.dli_fbase) return nullptr;
    return static_cast<HMODULE>(info.dli_fbase);
}

std::string ModuleFileName(HMODULE module) {
    if (!module || module == MainModule()) return ExecutablePath();
    Dl_info info{};
    if (!dladdr(module, &info) || info.dli_fbase != static_cast<void*>(module) || !info.dli_fname) return std::string();
    return info.dli_fname;
}

}  // namespace orlex

HMODULE GetModuleHandleA(LPCSTR name) {
    if (!name) return MainModule();
    NameSearch search{name, std::strchr(name, '/') != nullptr};
    dl_iterate_phdr(&NameCallback, &search);
    HMODULE module = orlex::ModuleOfAddress(search.address);
    if (!module) SetLastError(ERROR_MOD_NOT_FOUND);
    return module;
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buf, DWORD size) {
    if (!buf || size == 0) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return 0;
    }
    const std::string path = orlex::ModuleFileName(module);
    if (path.empty()) {
        buf[0] = '\0';
        SetLastError(ERROR_MOD_NOT_FOUND);
        return 0;
    }
    if (path.size() >= size) {
        std::memcpy(buf, path.data(), size - 1);
        buf[size - 1] = '\0';
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return size;
    }
    std::memcpy(buf, path.c_str(), path.size() + 1);
    SetLastError(NO_ERROR);
    return static_cast<DWORD>(path.size());
}

// Paths --------------------------------------------------------------------------------------------

namespace {

struct PathParts {
    const char* drive;
    size_t driveLen;
    const char* dir;
    size_t dirLen;
    const char* fname;
    size_t fnameLen;
    const char* ext;
    size_t extLen;
};

PathParts SplitPath(const char* path) {
    PathParts p{path, 0, path, 0, path, 0, path, 0};
    const char* s = path;
    if (s[0] && s[1] == ':') {
        p.driveLen = 2;
        s += 2;
    }
    const char* lastSep = nullptr;
    const char* lastDot = nullptr;
    for (const char* c = s; *c; ++c) {
        if (*c == '/' || *c == '\\') {
            lastSep = c;
            lastDot = nullptr;
        } else if (*c == '.') {
            lastDot = c;
        }
    }
    const char* end = s + std::strlen(s);
    p.dir = s;
    p.dirLen = lastSep ? static_cast<size_t>(lastSep + 1 - s) : 0;
    p.fname = s + p.dirLen;
    const char* extStart = lastDot ? lastDot : end;
    p.fnameLen = static_cast<size_t>(extStart - p.fname);
    p.ext = extStart;
    p.extLen = static_cast<size_t>(end - extStart);
    return p;
}

// Copies at most size-1 characters; returns false when the part had to be cut.
bool CopyPart(char* out, size_t size, const char* part, size_t len) {
    if (!out || size == 0) return true;
    const bool fits = len < size;
    const size_t n = fits ? len : size - 1;
    std::memcpy(out, part, n);
    out[n] = '\0';
    return fits;
}

}  // namespace

void _splitpath(const char* path, char* drive, char* dir, char* fname, char* ext) {
    if (!path) {
        for (char* out : {drive, dir, fname, ext})
            if (out) *out = '\0';
        return;
    }
    const PathParts p = SplitPath(path);
    CopyPart(drive, _MAX_DRIVE, p.drive, p.driveLen);
    CopyPart(dir, _MAX_DIR, p.dir, p.dirLen);
    CopyPart(fname, _MAX_FNAME, p.fname, p.fnameLen);
    CopyPart(ext, _MAX_EXT, p.ext, p.extLen);
}

int _splitpath_s(const char* path, char* drive, size_t driveSize, char* dir, size_t dirSize, char* fname,
                 size_t fnameSize, char* ext, size_t extSize) {
    if (!path) return EINVAL;
    const PathParts p = SplitPath(path);
    int result = 0;
    auto put = [&result](char* out, size_t size, const char* part, size_t len) {
        if (!out) return;
        if (size == 0 || len >= size) {
            if (size) *out = '\0';
            result = ERANGE;
            return;
        }
        CopyPart(out, size, part, len);
    };
    put(drive, driveSize, p.drive, p.driveLen);
    put(dir, dirSize, p.dir, p.dirLen);
    put(fname, fnameSize, p.fname, p.fnameLen);
    put(ext, extSize, p.ext, p.extLen);
    return result;
}

void _makepath(char* path, const char* drive, const char* dir, const char* fname, const char* ext) {
    if (!path) return;
    std::string out;
    if (drive && *drive) {
        out += drive[0];
        out += ':';
    }
    if (dir && *dir) {
        out += dir;
        // The separator the directory already uses; '/' when it has none.
        const bool backslashes = std::strchr(dir, '\\') && !std::strchr(dir, '/');
        if (out.back() != '/' && out.back() != '\\') out += backslashes ? '\\' : '/';
    }
    if (fname) out += fname;
    if (ext && *ext) {
        if (*ext != '.') out += '.';
        out += ext;
    }
    CopyPart(path, _MAX_PATH, out.data(), out.size());
}

// Time ---------------------------------------------------------------------------------------------

namespace {

std::atomic<orlex::TickSource> g_tickSource{nullptr};
std::atomic<orlex::SleepHook> g_sleepHook{nullptr};

ULONGLONG RealTicks() {
    using namespace std::chrono;
    return static_cast<ULONGLONG>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

}  // namespace

namespace orlex {

void SetTickSource(TickSource source) { g_tickSource.store(source); }
void SetSleepHook(SleepHook hook) { g_sleepHook.store(hook); }

}  // namespace orlex

ULONGLONG GetTickCount64() {
    const orlex::TickSource source = g_tickSource.load();
    return source ? source() : RealTicks();
}

DWORD GetTickCount() { return static_cast<DWORD>(GetTickCount64()); }

void Sleep(DWORD ms) {
    if (const orlex::SleepHook hook = g_sleepHook.load()) {
        hook(ms);
        return;
    }
    if (ms == 0)
        std::this_thread::yield();
    else
        std::this_thread::sleep_for(std::chrono::milliseconds(ms));
}

// Debug output ---------------------------------------------------------------------------------------

namespace {

constexpr size_t kKeptDebugLines = 1024;

struct DebugSink {
    std::mutex lock;
    std::deque<std::string> lines;
    bool toStderr;
};

DebugSink& Debug() {
    static DebugSink* sink = [] {
        auto* s = new DebugSink;
        const char* env = std::getenv("ORLEXUI_DEBUG_OUTPUT");
        s->toStderr = env && *env && std::strcmp(env, "0") != 0;
        return s;
    }();
    return *sink;
}

}  // namespace

void OutputDebugStringA(LPCSTR text) {
    if (!text) return;
    DebugSink& sink = Debug();
    std::lock_guard<std::mutex> guard(sink.lock);
    if (sink.lines.size() == kKeptDebugLines) sink.lines.pop_front();
    sink.lines.emplace_back(text);
    if (sink.toStderr) std::fputs(text, stderr);
}

namespace orlex {

std::vector<std::string> DebugOutput() {
    DebugSink& sink = Debug();
    std::lock_guard<std::mutex> guard(sink.lock);
    return std::vector<std::string>(sink.lines.begin(), sink.lines.end());
}

void ClearDebugOutput() {
    DebugSink& sink = Debug();
    std::lock_guard<std::mutex> guard(sink.lock);
    sink.lines.clear();
}

}  // namespace orlex

// Version ---------------------------------------------------------------------------------------------

BOOL GetVersionExA(OSVERSIONINFOA* info) {
    if (!info || info->dwOSVersionInfoSize != sizeof(OSVERSIONINFOA)) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return FALSE;
    }
    info->dwMajorVersion = 10;
    info->dwMinorVersion = 0;
    info->dwBuildNumber = 0;
    info->dwPlatformId = VER_PLATFORM_WIN32_NT;
    info->szCSDVersion[0] = '\0';
    return TRUE;
}
