// Resources by module: data found by type and id (or name), the string table, and the
// extension-module chain through which a host finds the library's resources and its own.
//
// Every loaded module (the program, the library) has its own set. The library's set is
// embedded at build time from resources/resources.list; a host adds its own (bitmaps of
// panel controls, strings, ...) with orlex::RegisterResource and orlex::RegisterString
// under its module handle (GetModuleHandleA(nullptr)).
#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "foundation/platform/wintypes.h"

// Resource ids and types ------------------------------------------------------------------------
// An id in the place of a name: a pointer value below 0x10000.
#ifndef MAKEINTRESOURCEA
#define MAKEINTRESOURCEA(i) (reinterpret_cast<LPSTR>(static_cast<ULONG_PTR>(static_cast<WORD>(i))))
#define MAKEINTRESOURCE(i) MAKEINTRESOURCEA(i)
#define IS_INTRESOURCE(p) ((reinterpret_cast<ULONG_PTR>(p) >> 16) == 0)
#endif

#ifndef RT_RCDATA
#define RT_CURSOR MAKEINTRESOURCE(1)
#define RT_BITMAP MAKEINTRESOURCE(2)
#define RT_ICON MAKEINTRESOURCE(3)
#define RT_MENU MAKEINTRESOURCE(4)
#define RT_DIALOG MAKEINTRESOURCE(5)
#define RT_STRING MAKEINTRESOURCE(6)
#define RT_FONTDIR MAKEINTRESOURCE(7)
#define RT_FONT MAKEINTRESOURCE(8)
#define RT_ACCELERATOR MAKEINTRESOURCE(9)
#define RT_RCDATA MAKEINTRESOURCE(10)
#define RT_MESSAGETABLE MAKEINTRESOURCE(11)
#define RT_GROUP_CURSOR MAKEINTRESOURCE(12)
#define RT_GROUP_ICON MAKEINTRESOURCE(14)
#define RT_VERSION MAKEINTRESOURCE(16)
#endif

// The string resource that holds the application's title.
constexpr UINT AFX_IDS_APP_TITLE = 0xE000;

// Finding and loading -------------------------------------------------------------------------
// Finds a resource of the module. name and type are each an id (MAKEINTRESOURCE, or a
// text "#123") or a name, compared without regard to ASCII case. A null module means the
// running program. Null when there is none (last error ERROR_RESOURCE_*_NOT_FOUND).
// The handle stays valid for the life of the process.
HRSRC FindResourceA(HMODULE module, LPCSTR name, LPCSTR type);
inline HRSRC FindResource(HMODULE module, LPCSTR name, LPCSTR type) { return FindResourceA(module, name, type); }
// The data of a found resource, to be passed to LockResource; null for an unknown handle.
HGLOBAL LoadResource(HMODULE module, HRSRC resource);
// The address of the resource's bytes (read-only, alive for the process); null for null.
LPVOID LockResource(HGLOBAL data);
// Size of the resource's data in bytes; 0 for an unknown handle.
DWORD SizeofResource(HMODULE module, HRSRC resource);
// Resources need no freeing; FALSE as the platform returns.
BOOL FreeResource(HGLOBAL data);

// Loads string `id` of the module into buf: at most size-1 characters and a terminator.
// Returns the number of characters copied, 0 when the string is missing (buf gets "") or
// buf is null or size is 0.
int LoadStringA(HINSTANCE module, UINT id, LPSTR buf, int size);
inline int LoadString(HINSTANCE module, UINT id, LPSTR buf, int size) { return LoadStringA(module, id, buf, size); }

// The resource handle and the extension-module chain ------------------------------------------
// The module searched first for resources: the running program unless a host or the
// library set another with AfxSetResourceHandle.
HINSTANCE AfxGetResourceHandle();
void AfxSetResourceHandle(HINSTANCE module);
// The running program's module.
HINSTANCE AfxGetInstanceHandle();
// The module that has this resource: the current resource handle if it has it, else the
// first module of the extension chain that has it, else the current resource handle.
HINSTANCE AfxFindResourceHandle(LPCSTR name, LPCSTR type);

// What an extension module keeps of itself: its handle and its resource handle.
struct AFX_EXTENSION_MODULE {
    BOOL bInitialized = FALSE;
    HMODULE hModule = nullptr;
    HMODULE hResource = nullptr;
};

// Prepares the module's record at attach; FALSE (a failed attach) for a null module.
BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module);
// At detach: deletes the module's CDynLinkLibrary objects and marks the record unused.
void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL all = FALSE);

// Puts a module in the process's extension chain, which AfxFindResourceHandle and string
// loading search after the current resource handle. Made on the heap by the module's
// start-up; AfxTermExtensionModule deletes it, or the owner does.
class CDynLinkLibrary {
public:
    explicit CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system = FALSE);
    CDynLinkLibrary(HINSTANCE module, HINSTANCE resource);
    virtual ~CDynLinkLibrary();
    CDynLinkLibrary(const CDynLinkLibrary&) = delete;
    CDynLinkLibrary& operator=(const CDynLinkLibrary&) = delete;

    HINSTANCE m_hModule;
    HINSTANCE m_hResource;
    BOOL m_bSystem;
};

namespace orlex {

// The library's own module: the shared library, or the program that carries the library's
// archives. Its resources are the embedded ones.
HMODULE LibraryModule();

// The modules of the extension chain, first searched first.
std::vector<HINSTANCE> ExtensionChain();

// Registers a resource of a module (a host passes GetModuleHandleA(nullptr)). type and
// name as for FindResourceA; the bytes are copied. A later registration of the same type
// and name replaces the earlier one for new lookups. FALSE for a null module or name.
BOOL RegisterResource(HMODULE module, LPCSTR type, LPCSTR name, const void* data, DWORD size);
// Registers string `id` of a module, replacing an earlier one.
BOOL RegisterString(HMODULE module, UINT id, const char* text);

// One resource embedded in the library at build time (generated from resources.list).
// Either typeName or typeId names the type, either name or id the resource.
struct EmbeddedResource {
    const char* typeName;
    UINT typeId;
    const char* name;
    UINT id;
    const unsigned char* data;
    std::size_t size;
};

// Reads a string table text: one string a line, "id<TAB>text"; id decimal or 0x hex;
// blank lines and lines starting with '#' are skipped, as are lines without a valid id
// and tab. In text, \n \t \r \\ stand for newline, tab, return, backslash; any other
// backslash stays as it is. Line ends may be LF or CR LF.
std::vector<std::pair<UINT, std::string>> ParseStringTable(const char* text, std::size_t size);

}  // namespace orlex
