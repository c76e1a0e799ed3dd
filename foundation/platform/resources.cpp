#include "foundation/platform/resources.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <tuple>
#include <unordered_set>

#include "foundation/platform/afxstr.h"
#include "foundation/platform/modal.h"
#include "foundation/platform/process.h"

// The table generated from resources/resources.list at build time.
namespace orlex::detail {
extern const EmbeddedResource kEmbeddedResources[];
extern const std::size_t kEmbeddedResourceCount;
}  // namespace orlex::detail

namespace {

// A type or a name as a lookup key: "#<decimal>" for an id, else the upper-cased name.
std::string KeyOfId(UINT id) { return "#" + std::to_string(id & 0xFFFF); }

std::string KeyOf(LPCSTR p) {
    if (IS_INTRESOURCE(p)) return KeyOfId(static_cast<UINT>(reinterpret_cast<ULONG_PTR>(p)));
    if (p[0] == '#' && p[1]) {
        char* end = nullptr;
        const unsigned long v = std::strtoul(p + 1, &end, 10);
        if (*end == '\0' && v <= 0xFFFF) return KeyOfId(static_cast<UINT>(v));
    }
    std::string key(p);
    for (char& c : key)
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    return key;
}

struct Entry {
    HMODULE module;
    const unsigned char* data;
    DWORD size;
    std::unique_ptr<unsigned char[]> owned;
};

using Key = std::tuple<HMODULE, std::string, std::string>;  // module, type, name

class Registry {
public:
    std::mutex lock;
    std::deque<Entry> entries;  // never shrinks: handles stay valid for the process
    std::map<Key, Entry*> index;
    std::unordered_set<const Entry*> valid;
    std::deque<std::string> stringPool;
    std::map<std::pair<HMODULE, UINT>, const std::string*> strings;

    void Add(HMODULE module, std::string type, std::string name, const unsigned char* data, DWORD size,
             std::unique_ptr<unsigned char[]> owned) {
        entries.push_back(Entry{module, data, size, std::move(owned)});
        Entry* e = &entries.back();
        valid.insert(e);
        index[Key(module, std::move(type), std::move(name))] = e;
    }
    void AddString(HMODULE module, UINT id, std::string text) {
        stringPool.push_back(std::move(text));
        strings[{module, id & 0xFFFF}] = &stringPool.back();
    }
    const Entry* Find(HMODULE module, const std::string& type, const std::string& name) const {
        auto it = index.find(Key(module, type, name));
        return it == index.end() ? nullptr : it->second;
    }
    const std::string* FindString(HMODULE module, UINT id) const {
        auto it = strings.find({module, id & 0xFFFF});
        return it == strings.end() ? nullptr : it->second;
    }
};

void LoadEmbedded(Registry& r) {
    const HMODULE library = orlex::LibraryModule();
    const std::string stringType = KeyOfId(6);
    for (std::size_t i = 0; i < orlex::detail::kEmbeddedResourceCount; ++i) {
        const orlex::EmbeddedResource& res = orlex::detail::kEmbeddedResources[i];
        std::string type = res.typeName ? KeyOf(res.typeName) : KeyOfId(res.typeId);
        if (type == stringType) {
            for (auto& [id, text] :
                 orlex::ParseStringTable(reinterpret_cast<const char*>(res.data), res.size))
                r.AddString(library, id, std::move(text));
            continue;
        }
        std::string name = res.name ? KeyOf(res.name) : KeyOfId(res.id);
        r.Add(library, std::move(type), std::move(name), res.data, static_cast<DWORD>(res.size), nullptr);
    }
}

// Never destroyed: resources may be looked up from other statics' destructors.
Registry& Resources() {
    static Registry* registry = [] {
        auto* r = new Registry;
        LoadEmbedded(*r);
        return r;
    }();
    return *registry;
}

HMODULE OrProgram(HMODULE module) { return module ? module : GetModuleHandleA(nullptr); }

// The extension chain.
struct Chain {
    std::mutex lock;
    std::list<CDynLinkLibrary*> libraries;
};

Chain& Extensions() {
    static Chain* chain = new Chain;
    return *chain;
}

std::atomic<HINSTANCE> g_resourceHandle{nullptr};

const std::string* FindStringAnywhere(UINT id) {
    Registry& r = Resources();
    std::vector<HINSTANCE> order{AfxGetResourceHandle()};
    for (HINSTANCE h : orlex::ExtensionChain()) order.push_back(h);
    std::lock_guard<std::mutex> guard(r.lock);
    for (HINSTANCE h : order)
        if (const std::string* s = r.FindString(h, id)) return s;
    return nullptr;
}

}  // namespace

// Finding and loading ------------------------------------------------------------------------------

HRSRC FindResourceA(HMODULE module, LPCSTR name, LPCSTR type) {
    if (!name || !type) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return nullptr;
    }
    Registry& r = Resources();
    const std::string typeKey = KeyOf(type), nameKey = KeyOf(name);
    std::lock_guard<std::mutex> guard(r.lock);
    const Entry* e = r.Find(OrProgram(module), typeKey, nameKey);
    if (!e) {
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return nullptr;
    }
    return reinterpret_cast<HRSRC>(const_cast<Entry*>(e));
}

HGLOBAL LoadResource(HMODULE, HRSRC resource) {
    if (!resource) return nullptr;
    Registry& r = Resources();
    std::lock_guard<std::mutex> guard(r.lock);
    const auto* e = reinterpret_cast<const Entry*>(resource);
    if (!r.valid.count(e)) {
        SetLastError(ERROR_RESOURCE_DATA_NOT_FOUND);
        return nullptr;
    }
    return const_cast<unsigned char*>(e->data);
}

LPVOID LockResource(HGLOBAL data) { return data; }

DWORD SizeofResource(HMODULE, HRSRC resource) {
    if (!resource) return 0;
    Registry& r = Resources();
    std::lock_guard<std::mutex> guard(r.lock);
    const auto* e = reinterpret_cast<const Entry*>(resource);
    return r.valid.count(e) ? e->size : 0;
}

BOOL FreeResource(HGLOBAL) { return FALSE; }

int LoadStringA(HINSTANCE module, UINT id, LPSTR buf, int size) {
    if (!buf || size <= 0) return 0;
    Registry& r = Resources();
    std::lock_guard<std::mutex> guard(r.lock);
    const std::string* s = r.FindString(OrProgram(module), id);
    if (!s) {
        buf[0] = '\0';
        SetLastError(ERROR_RESOURCE_NAME_NOT_FOUND);
        return 0;
    }
    const std::size_t n = std::min<std::size_t>(s->size(), static_cast<std::size_t>(size - 1));
    std::memcpy(buf, s->data(), n);
    buf[n] = '\0';
    return static_cast<int>(n);
}

BOOL CString::LoadString(UINT id) {
    const std::string* s = FindStringAnywhere(id);
    if (!s) {
        Empty();
        return FALSE;
    }
    *this = CString(*s);
    return TRUE;
}

int AfxMessageBox(UINT stringId, UINT type, UINT helpId) {
    CString text;
    text.LoadString(stringId);  // a missing string shows an empty box, as the platform does
    return AfxMessageBox(text.GetString(), type, helpId == UINT(-1) ? stringId : helpId);
}

// The resource handle and the extension chain ---------------------------------------------------------

HINSTANCE AfxGetInstanceHandle() { return GetModuleHandleA(nullptr); }

HINSTANCE AfxGetResourceHandle() {
    HINSTANCE h = g_resourceHandle.load();
    return h ? h : AfxGetInstanceHandle();
}

void AfxSetResourceHandle(HINSTANCE module) { g_resourceHandle.store(module); }

HINSTANCE AfxFindResourceHandle(LPCSTR name, LPCSTR type) {
    const HINSTANCE current = AfxGetResourceHandle();
    if (FindResourceA(current, name, type)) return current;
    for (HINSTANCE h : orlex::ExtensionChain())
        if (FindResourceA(h, name, type)) return h;
    return current;
}

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module) {
    if (!module) return FALSE;
    state.hModule = module;
    state.hResource = module;
    state.bInitialized = TRUE;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL) {
    if (!state.bInitialized) return;
    std::vector<CDynLinkLibrary*> doomed;
    {
        Chain& c = Extensions();
        std::lock_guard<std::mutex> guard(c.lock);
        for (CDynLinkLibrary* lib : c.libraries)
            if (lib->m_hModule == state.hModule) doomed.push_back(lib);
    }
    for (CDynLinkLibrary* lib : doomed) delete lib;  // each unlinks itself
    state.bInitialized = FALSE;
}

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system)
    : m_hModule(state.hModule), m_hResource(state.hResource), m_bSystem(system) {
    assert(state.bInitialized);
    Chain& c = Extensions();
    std::lock_guard<std::mutex> guard(c.lock);
    c.libraries.push_front(this);
}

CDynLinkLibrary::CDynLinkLibrary(HINSTANCE module, HINSTANCE resource)
    : m_hModule(module), m_hResource(resource), m_bSystem(FALSE) {
    Chain& c = Extensions();
    std::lock_guard<std::mutex> guard(c.lock);
    c.libraries.push_front(this);
}

CDynLinkLibrary::~CDynLinkLibrary() {
    Chain& c = Extensions();
    std::lock_guard<std::mutex> guard(c.lock);
    c.libraries.remove(this);
}

namespace orlex {

HMODULE LibraryModule() {
    static const HMODULE module = ModuleOfAddress(reinterpret_cast<const void*>(&LibraryModule));
    return module;
}

std::vector<HINSTANCE> ExtensionChain() {
    Chain& c = Extensions();
    std::lock_guard<std::mutex> guard(c.lock);
    std::vector<HINSTANCE> out;
    for (CDynLinkLibrary* lib : c.libraries) out.push_back(lib->m_hResource);
    return out;
}

BOOL RegisterResource(HMODULE module, LPCSTR type, LPCSTR name, const void* data, DWORD size) {
    if (!module || !type || !name || (!data && size)) return FALSE;
    auto owned = std::make_unique<unsigned char[]>(size ? size : 1);
    if (size) std::memcpy(owned.get(), data, size);
    const unsigned char* bytes = owned.get();
    Registry& r = Resources();
    std::lock_guard<std::mutex> guard(r.lock);
    r.Add(module, KeyOf(type), KeyOf(name), bytes, size, std::move(owned));
    return TRUE;
}

BOOL RegisterString(HMODULE module, UINT id, const char* text) {
    if (!module || !text) return FALSE;
    Registry& r = Resources();
    std::lock_guard<std::mutex> guard(r.lock);
    r.AddString(module, id, text);
    return TRUE;
}

std::vector<std::pair<UINT, std::string>> ParseStringTable(const char* text, std::size_t size) {
    std::vector<std::pair<UINT, std::string>> out;
    if (!text) return out;
    std::size_t pos = 0;
    while (pos < size) {
        std::size_t end = pos;
        while (end < size && text[end] != '\n') ++end;
        std::size_t lineEnd = end;
        if (lineEnd > pos && text[lineEnd - 1] == '\r') --lineEnd;
        const char* line = text + pos;
        const std::size_t len = lineEnd - pos;
        pos = end + 1;
        if (len == 0 || line[0] == '#') continue;
        // The id: decimal or 0x hex, up to the tab.
        std::size_t i = 0;
        unsigned long id = 0;
        bool digits = false;
        const bool hex = len > 2 && line[0] == '0' && (line[1] == 'x' || line[1] == 'X');
        if (hex) i = 2;
        for (; i < len && line[i] != '\t'; ++i) {
            const char c = line[i];
            int d;
            if (c >= '0' && c <= '9') d = c - '0';
            else if (hex && c >= 'a' && c <= 'f') d = c - 'a' + 10;
            else if (hex && c >= 'A' && c <= 'F') d = c - 'A' + 10;
            else { digits = false; break; }
            id = id * (hex ? 16 : 10) + static_cast<unsigned long>(d);
            digits = id <= 0xFFFF;
            if (!digits) break;
        }
        if (!digits || i >= len || line[i] != '\t') continue;
        std::string s;
        s.reserve(len - i);
        for (++i; i < len; ++i) {
            if (line[i] == '\\' && i + 1 < len) {
                const char n = line[i + 1];
                const char c = n == 'n' ? '\n' : n == 't' ? '\t' : n == 'r' ? '\r' : n == '\\' ? '\\' : 0;
                if (c) {
                    s += c;
                    ++i;
                    continue;
                }
            }
            s += line[i];
        }
        out.emplace_back(static_cast<UINT>(id), std::move(s));
    }
    return out;
}

}  // namespace orlex
