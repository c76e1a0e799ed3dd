#include "foundation/platform/globalmem.h"

#include <cassert>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>

#include "foundation/platform/process.h"

namespace {

struct Block {
    void* data = nullptr;
    SIZE_T size = 0;
    SIZE_T capacity = 0;
    bool moveable = false;
    UINT locks = 0;
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

// Every block owns at least one byte, so a zero-sized block still has an address.
void* Allocate(SIZE_T bytes, bool zero) {
    const SIZE_T n = bytes ? bytes : 1;
    return zero ? std::calloc(n, 1) : std::malloc(n);
}

}  // namespace

HGLOBAL GlobalAlloc(UINT flags, SIZE_T bytes) {
    void* data = Allocate(bytes, (flags & GMEM_ZEROINIT) != 0);
    if (!data) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    BlockTable& t = Table();
    std::lock_guard<std::mutex> guard(t.lock);
    const bool moveable = (flags & GMEM_MOVEABLE) != 0;
    HGLOBAL h = moveable ? t.NewMoveableHandle() : static_cast<HGLOBAL>(data);
    t.blocks[h] = Block{data, bytes, bytes ? bytes : 1, moveable, 0};
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
    void* data = std::realloc(b->data, bytes);
    if (!data) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    if (zero) std::memset(static_cast<char*>(data) + b->size, 0, bytes - b->size);
    t.byAddress.erase(b->data);
    Block moved = *b;
    moved.data = data;
    moved.size = bytes;
    moved.capacity = bytes;
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
    void* data = nullptr;
    {
        BlockTable& t = Table();
        std::lock_guard<std::mutex> guard(t.lock);
        Block* b = t.Find(h);
        if (!b) {
            SetLastError(ERROR_INVALID_HANDLE);
            return h;
        }
        data = b->data;
        t.byAddress.erase(data);
        t.blocks.erase(h);
    }
    std::free(data);
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
