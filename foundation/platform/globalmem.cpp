#include "foundation/platform/globalmem.h"

#include <cassert>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "foundation/platform/process.h"

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace {

struct Block {
    void* data = nullptr;
    SIZE_T size = 0;
    SIZE_T capacity = 0;  // of a mapped block, the whole mapping
    bool moveable = false;
    UINT locks = 0;
    bool mapped = false;  // from MapLarge, released by munmap
};

// Handles of moveable blocks are odd numbers, which no allocation address can be, so a
// fixed block's address never collides with a moveable handle.
class BlockTable {
public:
    std::mutex lock;
    std::unordered_map<HGLOBAL, Block> blocks;
    std::unordered_map<const void*, HGLOBAL> byAddress;
    std::uintptr_t nextHandle = 1;

    HGLOBAL NewMoveableHandle() {
        HGLOBAL h;
        do {
            h = reinterpret_cast<HGLOBAL>((nextHandle++ << 4) | 1);
        } while (blocks.count(h));
        return h;
    }
    Block* Find(HGLOBAL h) {
        auto it = blocks.find(h);
        return it == blocks.end() ? nullptr : &it->second;
    }
};

BlockTable& Table() {
    static BlockTable* table = new BlockTable;
    return *table;
}

// Blocks of this size and more (the bitmaps of large images) are mapped from the system
// on 2 MB boundaries with huge pages asked for: such a block is fresh memory that its
// maker writes once from end to end, which then costs one page fault every 2 MB instead
// of every 4 kB. The system's pages come zeroed, so GMEM_ZEROINIT costs nothing more.
// Smaller blocks stay with the heap, which maps blocks of up to this size once and then
// hands their memory out again, cheaper than fresh pages.
constexpr SIZE_T kMappedBlock = SIZE_T(32) << 20;
constexpr SIZE_T kHugePage = SIZE_T(2) << 20;

// A zeroed mapping of at least `bytes` (its length in `length`) on a huge-page boundary,
// or null when the system has none to give (the caller then takes the heap's).
void* MapLarge(SIZE_T bytes, SIZE_T& length) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (bytes > SIZE_MAX - 2 * kHugePage) return nullptr;
    length = (bytes + kHugePage - 1) & ~(kHugePage - 1);
    void* raw = mmap(nullptr, length + kHugePage, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (raw == MAP_FAILED) return nullptr;
    // Trim the slack before and after the aligned part; only that part stays mapped.
    const std::uintptr_t first = reinterpret_cast<std::uintptr_t>(raw);
    const std::uintptr_t start = (first + kHugePage - 1) & ~std::uintptr_t(kHugePage - 1);
    const SIZE_T head = start - first;
    if (head) munmap(raw, head);
    munmap(reinterpret_cast<void*>(start + length), kHugePage - head);
    madvise(reinterpret_cast<void*>(start), length, MADV_HUGEPAGE);  // advice only
    return reinterpret_cast<void*>(start);
#else
    (void)bytes;
    length = 0;
    return nullptr;
#endif
}

// Every block owns at least one byte, so a zero-sized block still has an address.
// `mapped` and `capacity` tell how the memory must be released.
void* Allocate(SIZE_T bytes, bool zero, bool& mapped, SIZE_T& capacity) {
    if (bytes >= kMappedBlock) {
        if (void* p = MapLarge(bytes, capacity)) {
            mapped = true;
            return p;
        }
    }
    mapped = false;
    const SIZE_T n = bytes ? bytes : 1;
    capacity = n;
    return zero ? std::calloc(n, 1) : std::malloc(n);
}

void Release(void* data, bool mapped, SIZE_T capacity) {
#if defined(__linux__) && defined(MADV_HUGEPAGE)
    if (mapped) {
        munmap(data, capacity);
        return;
    }
#else
    (void)mapped;
    (void)capacity;
#endif
    std::free(data);
}

}  // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
    bool mapped = false;
    SIZE_T capacity = 0;
    void* data = Allocate(bytes, (flags & GMEM_ZEROINIT) != 0, mapped, capacity);
    if (!data) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    const bool moveable = (flags & GMEM_MOVEABLE) != 0;
    HGLOBAL h = moveable ? t.NewMoveableHandle() : static_cast<HGLOBAL>(data);
    t.blocks[h] = Block{data, bytes, capacity, moveable, 0, mapped};
    t.byAddress[data] = h;
    return h;
}

HGLOBAL GlobalReAlloc(HGLOBAL h, SIZE_T bytes, UINT flags) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    Block* b = t.Find(h);
    if (!b) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    if (flags & GMEM_MODIFY) return h;
    const bool zero = (flags & GMEM_ZEROINIT) != 0;
    if (bytes <= b->capacity) {
        if (zero && bytes > b->size) std::memset(static_cast<char*>(b->data) + b->size, 0, bytes - b->size);
        b->size = bytes;
        return h;
    }
    const bool mayMove = (b->moveable && b->locks == 0) || (flags & GMEM_MOVEABLE);
    if (!mayMove) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    void* data = nullptr;
    bool mapped = false;
    SIZE_T capacity = bytes;
    if (b->mapped || bytes >= kMappedBlock) {
        // A new block of its own kind for the new size; the old contents move over.
        data = Allocate(bytes, zero, mapped, capacity);
        if (data) {
            std::memcpy(data, b->data, b->size);
            Release(b->data, b->mapped, b->capacity);
        }
    } else {
        data = std::realloc(b->data, bytes);
        if (data && zero) std::memset(static_cast<char*>(data) + b->size, 0, bytes - b->size);
    }
    if (!data) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    t.byAddress.erase(b->data);
    Block moved = *b;
    moved.data = data;
    moved.size = bytes;
    moved.capacity = capacity;
    moved.mapped = mapped;
    HGLOBAL result = h;
    if (!moved.moveable) {
        t.blocks.erase(h);
        result = static_cast<HGLOBAL>(data);
    }
    t.blocks[result] = moved;
    t.byAddress[data] = result;
    return result;
}

LPVOID GlobalLock(HGLOBAL h) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    Block* b = t.Find(h);
    if (!b) {
        SetLastError(ERROR_INVALID_HANDLE);
        return nullptr;
    }
    if (b->moveable && b->locks < GMEM_LOCKCOUNT) ++b->locks;
    return b->data;
}

BOOL GlobalUnlock(HGLOBAL h) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    Block* b = t.Find(h);
    if (!b) {
        SetLastError(ERROR_INVALID_HANDLE);
        return FALSE;
    }
    if (!b->moveable) return TRUE;  // a fixed block counts as always locked
    if (b->locks == 0) {
        SetLastError(ERROR_NOT_LOCKED);
        return FALSE;
    }
    if (--b->locks > 0) return TRUE;
    SetLastError(NO_ERROR);
    return FALSE;
}

HGLOBAL GlobalFree(HGLOBAL h) {
    if (!h) return nullptr;
    Block gone;
    {
        BlockTable& t = Table();
        std::lock_guard<std::mutex> guard(t.lock);
        Block* b = t.Find(h);
        if (!b) {
            SetLastError(ERROR_INVALID_HANDLE);
            return h;
        }
        gone = *b;
        t.byAddress.erase(gone.data);
        t.blocks.erase(h);
    }
    Release(gone.data, gone.mapped, gone.capacity);
    return nullptr;
}

SIZE_T GlobalSize(HGLOBAL h) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    Block* b = t.Find(h);
    return b ? b->size : 0;
}

HGLOBAL GlobalHandle(LPCVOID address) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    auto it = t.byAddress.find(address);
    return it == t.byAddress.end() ? nullptr : it->second;
}

UINT GlobalFlags(HGLOBAL h) {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    Block* b = t.Find(h);
    return b ? (b->locks & GMEM_LOCKCOUNT) : GMEM_INVALID_HANDLE;
}

namespace orlex {

std::size_t LiveGlobalBlocks() {
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    return t.blocks.size();
}

}  // namespace orlex

// CSharedFile ---------------------------------------------------------------------------------

CSharedFile::CSharedFile(UINT allocFlags, UINT growBytes)
    : CMemFile(growBytes ? growBytes : 4096), m_nAllocFlags(allocFlags | GMEM_MOVEABLE) {}

// The base destructor would free the block with its own Free; close here while the
// global-memory Free is still the one called.
CSharedFile::~CSharedFile() { CSharedFile::Close(); }

BYTE* CSharedFile::Alloc(size_t bytes) {
    assert(m_hGlobalMemory == nullptr);
    HGLOBAL h = GlobalAlloc(m_nAllocFlags, bytes);
    if (!h) return nullptr;
    m_hGlobalMemory = h;
    return static_cast<BYTE*>(GlobalLock(h));
}

BYTE* CSharedFile::Realloc(BYTE* block, size_t bytes) {
    assert(m_hGlobalMemory != nullptr && block != nullptr);
    GlobalUnlock(m_hGlobalMemory);
    HGLOBAL h = GlobalReAlloc(m_hGlobalMemory, bytes, m_nAllocFlags);
    if (!h) {
        GlobalLock(m_hGlobalMemory);
        return nullptr;
    }
    m_hGlobalMemory = h;
    return static_cast<BYTE*>(GlobalLock(h));
}

void CSharedFile::Free(BYTE*) {
    if (!m_hGlobalMemory) return;
    GlobalUnlock(m_hGlobalMemory);
    GlobalFree(m_hGlobalMemory);
    m_hGlobalMemory = nullptr;
}

void CSharedFile::Close() {
    if (m_lpBuffer && m_bAutoDelete) Free(m_lpBuffer);
    m_lpBuffer = nullptr;
    m_hGlobalMemory = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
}

HGLOBAL CSharedFile::Detach() {
    HGLOBAL h = m_hGlobalMemory;
    if (!h) return nullptr;
    GlobalUnlock(h);
    // Shrinking happens in place, so the handle stays; a failure leaves the larger block.
    if (HGLOBAL cut = GlobalReAlloc(h, m_nFileSize, 0)) h = cut;
    m_hGlobalMemory = nullptr;
    m_lpBuffer = nullptr;
    m_nBufferSize = m_nFileSize = m_nPosition = 0;
    m_bAutoDelete = TRUE;
    return h;
}

void CSharedFile::SetHandle(HGLOBAL block, BOOL allowGrow) {
    assert(m_lpBuffer == nullptr);
    if (m_lpBuffer || !block) return;
    BYTE* data = static_cast<BYTE*>(GlobalLock(block));
    if (!data) return;
    m_hGlobalMemory = block;
    m_lpBuffer = data;
    m_nBufferSize = m_nFileSize = GlobalSize(block);
    m_nPosition = 0;
    m_bAutoDelete = TRUE;
    if (!allowGrow) m_nGrowBytes = 0;
}
