// A host of the installed library: starts it, shares its registered messages, reads its
// resources, registers one of its own, and stops it. Exit status 0 when all is well.
#include <orlexui.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

int g_failures = 0;

void Check(bool ok, const char* what) {
    if (!ok) {
        std::fprintf(stderr, "host: FAILED: %s\n", what);
        ++g_failures;
    }
}

// A switch shows its pointing hand (10050) through the running application: the library's
// own while the host has none, the host's own once it has one.
void SwitchHand(CWnd& panel) {
    COrlex2PtSwitch sw(0, 0, true);
    Check(sw.Create(80, 10, &panel) == TRUE, "switch made");
    sw.MoveWindow(80, 10, 40, 20);
    auto shown = [&] {
        ::SetCursor(nullptr);
        sw.SendMessage(WM_SETCURSOR, reinterpret_cast<WPARAM>(sw.m_hWnd), MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        return ::GetCursor();
    };
    const HMODULE library = orlex::LibraryModule();
    const HCURSOR libraryHand = ::LoadCursor(library, MAKEINTRESOURCE(10050));
    Check(libraryHand && shown() == libraryHand, "the switch shows the library's hand");
    HRSRC res = FindResourceA(library, MAKEINTRESOURCE(10050), RT_CURSOR);
    orlex::RegisterResource(GetModuleHandleA(nullptr), RT_CURSOR, MAKEINTRESOURCE(10050),
                            LockResource(LoadResource(library, res)), SizeofResource(library, res));
    const HCURSOR own = ::LoadCursor(GetModuleHandleA(nullptr), MAKEINTRESOURCE(10050));
    Check(own && own != libraryHand && shown() == own, "the switch shows the host's own hand");
}

// A panel button built from a face of the host's own: the BMP file `path`, registered as
// bitmap 20001 of the program. The button takes the face's size and shows its centre pixel.
void PanelButtonFromItsFace(const char* path) {
    std::ifstream in(path, std::ios::binary);
    const std::vector<unsigned char> bmp((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    Check(bmp.size() > 54 && bmp[0] == 'B' && bmp[1] == 'M', "the face file reads as a BMP");
    if (bmp.size() <= 54) return;
    auto le32 = [&](std::size_t at) { return int(bmp[at] | bmp[at + 1] << 8 | bmp[at + 2] << 16 | bmp[at + 3] << 24); };
    const int w = le32(18), h = le32(22), stride = (w * 3 + 3) & ~3;
    const std::size_t centre = std::size_t(le32(10)) + std::size_t(h - 1 - h / 2) * stride + std::size_t(w / 2) * 3;
    Check(centre + 2 < bmp.size(), "the face's pixels are all there");
    if (centre + 2 >= bmp.size()) return;
    const COLORREF expected = RGB(bmp[centre + 2], bmp[centre + 1], bmp[centre]);

    orlex::EnsureApplication();
    Check(orlex::RegisterResource(GetModuleHandleA(nullptr), RT_BITMAP, MAKEINTRESOURCE(20001), bmp.data(),
                                  DWORD(bmp.size())) == TRUE, "face registered");
    CWnd panel;
    Check(panel.CreateEx(0, nullptr, "host panel", WS_POPUP | WS_VISIBLE, CRect(40, 40, 240, 120), nullptr, 0) == TRUE,
          "panel window made");
    COrlex button(0, 0, 0);
    Check(button.Create(10, 10, &panel) == TRUE, "button made");
    button.LoadBitmap(20001);
    CRect r;
    button.GetClientRect(&r);
    Check(r.Width() == w && r.Height() == h, "the button takes its face's size");
    button.UpdateWindow();
    CClientDC dc(&button);
    Check(dc.GetPixel(w / 2, h / 2) == expected, "the button shows its face");
    SwitchHand(panel);
}

}  // namespace

int main(int argc, char** argv) {
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

    Check(argc > 1, "a panel face is given");
    if (argc > 1) PanelButtonFromItsFace(argv[1]);

    OrlexUI::Shutdown();
    std::printf("host: %s\n", g_failures ? "failed" : "ok");
    return g_failures ? 1 : 0;
}
