// Start and stop of the library. A host calls OrlexUI::Initialize once before it creates
// a control, and OrlexUI::Shutdown at the end of its work with the controls.
#pragma once

#include "foundation/platform/resources.h"
#include "foundation/platform/wintypes.h"

namespace OrlexUI {

// In this order: puts the library in the extension chain (one CDynLinkLibrary on the heap,
// so the host finds its resources and classes), sets ArchiveVersionControl's real-time
// flag to realTime, and builds the colour tables. Each step runs even if an earlier one
// could not. realTime: a live scan (true) or stored data (false).
void Initialize(bool realTime);

// Releases the process-wide rendering objects, each only if it exists, in this order:
// Direct2D factory, imaging factory, DirectWrite factory, stroke styles 0, 2 and 1.
// Touches nothing else; with nothing registered it does nothing.
void Shutdown();

// The library's module record, set up when the module is attached.
AFX_EXTENSION_MODULE& ExtensionModule();

namespace detail {

// The third step of Initialize: the colour module registers its table builder here from
// a static initialiser, so the core archive links without it. Null clears it; when none
// is registered the step is skipped.
using InitStep = void (*)();
void SetColorTablesStep(InitStep step);

// The process-wide objects that Shutdown releases, in the order it releases them.
enum class ReleaseSlot {
    Direct2DFactory = 0,
    ImagingFactory,
    DirectWriteFactory,
    StrokeStyle0,
    StrokeStyle2,
    StrokeStyle1,
    Count
};
// Registers what releases one slot's object: it must release it only if it exists and set
// its pointer back to null, so that a second Shutdown does nothing. Replaces an earlier
// function of the slot; null clears the slot.
using ReleaseFn = void (*)();
void SetShutdownRelease(ReleaseSlot slot, ReleaseFn release);

}  // namespace detail

}  // namespace OrlexUI
