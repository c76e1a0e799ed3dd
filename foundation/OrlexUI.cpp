#include "foundation/OrlexUI.h"

#include <atomic>
#include <cstdlib>
#include <new>

#include "foundation/ArchiveVersionControl.h"
#include "foundation/MessageCatalogue.h"
#include "foundation/platform/process.h"

namespace OrlexUI {

namespace {

constexpr int kSlots = static_cast<int>(detail::ReleaseSlot::Count);

std::atomic<detail::InitStep> g_colorTablesStep{nullptr};
std::atomic<detail::ReleaseFn> g_release[kSlots];

}  // namespace

AFX_EXTENSION_MODULE& ExtensionModule() {
    static AFX_EXTENSION_MODULE state;
    return state;
}

void Initialize(bool realTime) {
    // The chain entry lives until the module detaches (AfxTermExtensionModule deletes it).
    // Without memory the steps after it still run.
    new (std::nothrow) CDynLinkLibrary(ExtensionModule());
    ArchiveVersionControl::SetRealTime(realTime);
    if (detail::InitStep step = g_colorTablesStep.load()) step();
}

void Shutdown() {
    for (int i = 0; i < kSlots; ++i)
        if (detail::ReleaseFn release = g_release[i].load()) release();
}

namespace detail {

void SetColorTablesStep(InitStep step) { g_colorTablesStep.store(step); }

void SetShutdownRelease(ReleaseSlot slot, ReleaseFn release) {
    const int i = static_cast<int>(slot);
    if (i < 0 || i >= kSlots) return;
    g_release[i].store(release);
}

}  // namespace detail

namespace {

// Module attach and detach. The attach runs before the library's ordinary static
// initialisers (they may load resources), right after the message catalogue. A failed
// attach fails the load, as the platform's loader does.
__attribute__((constructor(102))) void AttachModule() {
    RegisterMessageCatalogue();
    if (!AfxInitExtensionModule(ExtensionModule(), orlex::LibraryModule())) {
        OutputDebugStringA("orlexUI: the library's module could not be initialised\n");
        std::abort();
    }
}

__attribute__((destructor(102))) void DetachModule() { AfxTermExtensionModule(ExtensionModule()); }

}  // namespace

}  // namespace OrlexUI
