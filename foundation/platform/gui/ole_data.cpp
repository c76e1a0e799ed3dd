// Data sources and data objects, and the data source that this process keeps on the
// clipboard. The clipboard itself is the layer's (gdi_clipboard.cpp): the blocks of a source
// pass to it at SetClipboard, so that the raw clipboard functions, other programs (through
// the toolkit's clipboard) and data objects all read the same bytes.
#include <cassert>
#include <cstring>
#include <mutex>

#include "foundation/platform/afxgdi.h"
#include "foundation/platform/afxole.h"

namespace {

thread_local bool t_oleInitialized = false;

// The source on the clipboard and the hidden window that owns the clipboard for it: the
// clipboard's owner tells whether the data put there is still ours.
struct OleClipboard {
    std::recursive_mutex mu;
    COleDataSource* current = nullptr;
    HWND ownerWnd = nullptr;
};
OleClipboard& State() {
    static OleClipboard* s = new OleClipboard;  // lives to the end of the process
    return *s;
}

HWND OwnerWindow(OleClipboard& s) {
    if (!s.ownerWnd || !::IsWindow(s.ownerWnd))
        s.ownerWnd = ::CreateWindowExA(0, AfxRegisterWndClass(0), "", WS_POPUP, 0, 0, 0, 0, nullptr, nullptr,
                                       nullptr, nullptr);
    return s.ownerWnd;
}

// TRUE when the clipboard still holds what the current source put there (lock held).
bool CurrentStillOwns(OleClipboard& s) {
    return s.current && s.ownerWnd && ::IsWindow(s.ownerWnd) && ::GetClipboardOwner() == s.ownerWnd;
}

// A copy of a block in a new shareable block; null for an unknown or empty block.
HGLOBAL CopyBlock(HGLOBAL block) {
    const SIZE_T size = GlobalSize(block);
    if (size == 0) return nullptr;
    const void* src = GlobalLock(block);
    if (!src) return nullptr;
    HGLOBAL copy = GlobalAlloc(GMEM_MOVEABLE | GMEM_DDESHARE, size);
    if (void* dst = copy ? GlobalLock(copy) : nullptr) {
        std::memcpy(dst, src, size);
        GlobalUnlock(copy);
    }
    GlobalUnlock(block);
    return copy;
}

}  // namespace

BOOL AfxOleInit() {
    // The layer's clipboard and drag loop need the toolkit's application object.
    orlex::EnsureApplication();
    t_oleInitialized = true;
    return TRUE;
}

namespace orlex {
BOOL IsOleInitialized() { return t_oleInitialized ? TRUE : FALSE; }
}  // namespace orlex

// COleDropSource ---------------------------------------------------------------------------------
SCODE COleDropSource::QueryContinueDrag(BOOL escapePressed, DWORD keyState) {
    if (escapePressed || (keyState & m_dwButtonCancel)) return DRAGDROP_S_CANCEL;
    if (!(keyState & m_dwButtonDrop)) return DRAGDROP_S_DROP;
    return S_OK;
}

SCODE COleDropSource::GiveFeedback(DROPEFFECT) { return DRAGDROP_S_USEDEFAULTCURSORS; }

// COleDataSource ---------------------------------------------------------------------------------
COleDataSource::~COleDataSource() {
    OleClipboard& s = State();
    {
        std::lock_guard lock(s.mu);
        if (s.current == this) s.current = nullptr;
    }
    Empty();
}

void COleDataSource::CacheGlobalData(CLIPFORMAT format, HGLOBAL block) {
    if (!block || GlobalFlags(block) == GMEM_INVALID_HANDLE) return;
    for (Entry& e : m_entries) {
        if (e.format != format) continue;
        if (e.block != block) GlobalFree(e.block);
        e.block = block;
        return;
    }
    m_entries.push_back(Entry{format, block});
}

void COleDataSource::Empty() {
    for (Entry& e : m_entries) GlobalFree(e.block);
    m_entries.clear();
}

BOOL COleDataSource::IsDataAvailable(CLIPFORMAT format) const {
    for (const Entry& e : m_entries)
        if (e.format == format) return TRUE;
    return FALSE;
}

HGLOBAL COleDataSource::GetGlobalData(CLIPFORMAT format) const {
    for (const Entry& e : m_entries)
        if (e.format == format) return CopyBlock(e.block);
    return nullptr;
}

void COleDataSource::SetClipboard() {
    OleClipboard& s = State();
    COleDataSource* previous = nullptr;
    {
        std::lock_guard lock(s.mu);
        HWND owner = OwnerWindow(s);
        if (!owner || !::OpenClipboard(owner)) {
            // Handed over all the same: the caller has let go of the object.
            if (s.current == this) s.current = nullptr;
            previous = this;
        } else {
            ::EmptyClipboard();
            for (Entry& e : m_entries) {
                // A block the clipboard refuses (empty) stays ours and goes with Empty().
                if (::SetClipboardData(e.format, e.block)) e.block = nullptr;
            }
            ::CloseClipboard();
            std::erase_if(m_entries, [](const Entry& e) { return e.block == nullptr; });
            if (s.current != this) previous = s.current;
            s.current = this;
        }
    }
    // Deleted outside the lock's scope of this call: its destructor takes the lock again.
    delete previous;
}

COleDataSource* COleDataSource::GetClipboardOwner() {
    OleClipboard& s = State();
    COleDataSource* stale = nullptr;
    COleDataSource* owner = nullptr;
    {
        std::lock_guard lock(s.mu);
        if (CurrentStillOwns(s)) {
            owner = s.current;
        } else {
            // Other data replaced ours: the clipboard no longer needs the source.
            stale = s.current;
            s.current = nullptr;
        }
    }
    delete stale;
    return owner;
}

void COleDataSource::FlushClipboard() {
    OleClipboard& s = State();
    COleDataSource* gone = nullptr;
    {
        std::lock_guard lock(s.mu);
        gone = s.current;
        s.current = nullptr;
    }
    // The data is in the clipboard's own store already; only the object goes.
    delete gone;
}

// COleDataObject ---------------------------------------------------------------------------------
COleDataObject::~COleDataObject() { Release(); }

BOOL COleDataObject::AttachClipboard() {
    Release();
    m_bClipboard = TRUE;
    return TRUE;
}

void COleDataObject::Attach(COleDataSource* source, BOOL autoRelease) {
    Release();
    m_pSource = source;
    m_bAutoRelease = source ? autoRelease : FALSE;
}

COleDataSource* COleDataObject::Detach() {
    COleDataSource* source = m_pSource;
    m_pSource = nullptr;
    m_bAutoRelease = FALSE;
    m_bClipboard = FALSE;
    return source;
}

void COleDataObject::Release() {
    if (m_bAutoRelease) delete m_pSource;
    m_pSource = nullptr;
    m_bAutoRelease = FALSE;
    m_bClipboard = FALSE;
}

BOOL COleDataObject::IsDataAvailable(CLIPFORMAT format) const {
    if (m_pSource) return m_pSource->IsDataAvailable(format);
    if (m_bClipboard) return ::IsClipboardFormatAvailable(format);
    return FALSE;
}

HGLOBAL COleDataObject::GetGlobalData(CLIPFORMAT format) const {
    if (m_pSource) return m_pSource->GetGlobalData(format);
    if (!m_bClipboard || !::OpenClipboard(nullptr)) return nullptr;
    HGLOBAL copy = nullptr;
    if (HANDLE held = ::GetClipboardData(format)) copy = CopyBlock(held);
    ::CloseClipboard();
    return copy;
}
