// Loading the text of a menu or dialog resource: from the module that the resource chain
// names (a host may carry its own), else from the library's embedded set.
#include "foundation/platform/gui/dlg_restext_p.h"
#include "foundation/platform/resources.h"

namespace orlex::detail {

bool LoadResourceText(UINT type, UINT id, std::string& text) {
    LPCSTR name = MAKEINTRESOURCE(id);
    LPCSTR rtype = MAKEINTRESOURCE(type);
    HMODULE modules[2] = {AfxFindResourceHandle(name, rtype), orlex::LibraryModule()};
    for (HMODULE module : modules) {
        HRSRC res = FindResourceA(module, name, rtype);
        if (!res) continue;
        const void* data = LockResource(LoadResource(module, res));
        DWORD size = SizeofResource(module, res);
        if (!data) continue;
        text.assign(static_cast<const char*>(data), size);
        return true;
    }
    return false;
}

}  // namespace orlex::detail
