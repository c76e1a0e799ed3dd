// A host of the installed library: starts it, shares its registered messages, reads its
// resources, registers one of its own, and stops it. Exit status 0 when all is well.
#include <orlexui.h>

#include <cstdio>
#include <cstring>
#include <string>

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
    if (!ok) {
        std::fprintf(stderr, "host: FAILED: %s\n", what);
        ++g_failures;
    }
}

}  // namespace

int main() {
    OrlexUI::Initialize(false);

    // The literal is the contract: the host's own registration gives the library's number.
    const UINT notify = RegisterWindowMessageA("MESSAGE_CURSOR_NOTIFY_STR");
    Check(notify >= 0xC000 && notify <= 0xFFFF, "message number in the registered range");
    Check(notify == MESSAGE_CURSOR_NOTIFY_STR, "host and library agree on MESSAGE_CURSOR_NOTIFY_STR");
    Check(RegisterWindowMessageA("MESSAGE_GRID_NOTIFY") == MESSAGE_GRID_NOTIFY, "MESSAGE_GRID_NOTIFY agrees");
    const UINT own = RegisterWindowMessageA("HOST_ONLY_MESSAGE");
    Check(orlex::RegisteredMessageName(own) == "HOST_ONLY_MESSAGE", "one table for host and library");

    // The library's strings are reachable from the host after Initialize.
    CString tip;
    Check(tip.LoadString(10024) == TRUE, "library string 10024 loads");
    Check(std::strcmp(tip, "Mean is the sum of data points divided by the number of data points.") == 0,
          "library string 10024 text");

    // The colour parameters, found by name through the extension chain.
    HINSTANCE module = AfxFindResourceHandle("color.par", RT_RCDATA);
    HRSRC res = FindResourceA(module, "color.par", RT_RCDATA);
    Check(res != nullptr, "color.par found");
    const char* data = static_cast<const char*>(LockResource(LoadResource(module, res)));
    Check(data && SizeofResource(module, res) > 13 && std::strncmp(data, "Color Table 4", 13) == 0,
          "color.par starts with its first title");

    // A resource of the host's own, found first.
    const unsigned char bits[] = {1, 2, 3};
    orlex::RegisterResource(GetModuleHandleA(nullptr), RT_BITMAP, MAKEINTRESOURCE(501), bits, sizeof bits);
    Check(AfxFindResourceHandle(MAKEINTRESOURCE(501), RT_BITMAP) == GetModuleHandleA(nullptr), "host bitmap found");
    Check(orlex::LibraryModule() != GetModuleHandleA(nullptr), "the library is a module of its own");

    OrlexUI::Shutdown();
    std::printf("host: %s\n", g_failures ? "failed" : "ok");
    return g_failures ? 1 : 0;
}
