// Global memory blocks: memory known by a handle, locked to get its address. Bitmap blocks
// and clipboard data live in them. Fixed blocks have handle == address; moveable blocks
// have a handle of their own and may move when resized while unlocked.
#pragma once

#include <cstddef>

#include "foundation/platform/afxarchive.h"
#include "foundation/platform/wintypes.h"

using SIZE_T = std::size_t;

constexpr UINT GMEM_FIXED = 0x0000;
constexpr UINT GMEM_MOVEABLE = 0x0002;
constexpr UINT GMEM_NOCOMPACT = 0x0010;
constexpr UINT GMEM_NODISCARD = 0x0020;
constexpr UINT GMEM_ZEROINIT = 0x0040;
constexpr UINT GMEM_MODIFY = 0x0080;
constexpr UINT GMEM_DISCARDABLE = 0x0100;
constexpr UINT GMEM_NOT_BANKED = 0x1000;
constexpr UINT GMEM_SHARE = 0x2000;
constexpr UINT GMEM_DDESHARE = 0x2000;
constexpr UINT GMEM_LOCKCOUNT = 0x00FF;
constexpr UINT GMEM_INVALID_HANDLE = 0x8000;
constexpr UINT GHND = GMEM_MOVEABLE | GMEM_ZEROINIT;
constexpr UINT GPTR = GMEM_FIXED | GMEM_ZEROINIT;

// A new block of `bytes` bytes (0 is allowed), zeroed with GMEM_ZEROINIT. Null when memory
// runs out. The caller owns it until GlobalFree (or hands it to the clipboard).
HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes);
// Resizes the block; with GMEM_ZEROINIT the grown part is zeroed. An unlocked moveable
// block may move (its handle stays); a locked moveable block or a fixed block moves only
// with GMEM_MOVEABLE in flags (a fixed block then gets a new handle, its new address), and
// otherwise fails when it can't grow in place. GMEM_MODIFY changes no attribute here and
// returns the handle. Returns the handle to use from now on, or null with the old block
// untouched.
HGLOBAL GlobalReAlloc(HGLOBAL block, SIZE_T bytes, UINT flags);
// The block's address; each lock of a moveable block must be matched by GlobalUnlock.
// Null for an unknown handle.
LPVOID GlobalLock(HGLOBAL block);
// TRUE while the block is still locked after this unlock, FALSE when it is unlocked (last
// error NO_ERROR) or was not locked (ERROR_NOT_LOCKED) or is unknown.
BOOL GlobalUnlock(HGLOBAL block);
// Frees the block. Null on success; the handle itself for an unknown handle. A locked
// block is freed all the same.
HGLOBAL GlobalFree(HGLOBAL block);
// The size asked for in GlobalAlloc/GlobalReAlloc; 0 for an unknown handle.
SIZE_T GlobalSize(HGLOBAL block);
// The handle of the block at this address (the address GlobalLock gave); null if none.
HGLOBAL GlobalHandle(LPCVOID address);
// The lock count in the low byte; GMEM_INVALID_HANDLE for an unknown handle.
UINT GlobalFlags(HGLOBAL block);

// A memory file whose data is one global memory block, for handing data to the clipboard:
// write into it, then Detach gives the block. flags are GlobalAlloc's (moveable is implied),
// growBytes the step in which the block grows (0 means 4096).
class CSharedFile : public CMemFile {
public:
    explicit CSharedFile(UINT allocFlags = GMEM_DDESHARE | GMEM_MOVEABLE, UINT growBytes = 4096);
    ~CSharedFile() override;

    // Gives the caller the block, cut to the file's length, unlocked; the file is empty
    // afterwards. Null when the file never got memory. The caller frees it (GlobalFree) or
    // passes it on (to the clipboard).
    HGLOBAL Detach();
    // Makes an existing block the file's data (its whole size is the file's length); the
    // file owns it from now on and frees it at Close. Without allowGrow a write past the end
    // fails as on a full fixed buffer. The file must be empty.
    void SetHandle(HGLOBAL block, BOOL allowGrow = TRUE);
    void Close() override;

protected:
    BYTE* Alloc(size_t bytes) override;
    BYTE* Realloc(BYTE* block, size_t bytes) override;
    void Free(BYTE* block) override;

    UINT m_nAllocFlags;
    HGLOBAL m_hGlobalMemory = nullptr;
};

namespace orlex {

// Number of blocks alive, for leak checks in tests.
std::size_t LiveGlobalBlocks();

}  // namespace orlex
