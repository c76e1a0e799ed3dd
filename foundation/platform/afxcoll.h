// Collections of the window platform: doubly linked lists walked by POSITION, growable
// arrays, hash maps, and their typed-pointer wrappers. Element order, counts and the
// archive forms (count, then the elements) follow the platform. Bad indices and empty
// lists never fault: reads give a default element and writes are ignored.
#pragma once

#include <cassert>
#include <cstring>
#include <type_traits>
#include <utility>
#include <vector>

#include "foundation/platform/afxarchive.h"
#include "foundation/platform/afxobj.h"
#include "foundation/platform/afxstr.h"
#include "foundation/platform/wintypes.h"

// An opaque place in a list or a map; null is "none".
struct __POSITION {};
using POSITION = __POSITION*;
#define BEFORE_START_POSITION (reinterpret_cast<POSITION>(-1L))

namespace orlex::detail {
template <class T, class = void> struct HasArchiveForm : std::false_type {};
template <class T>
struct HasArchiveForm<T, std::void_t<decltype(std::declval<CArchive&>() << std::declval<const T&>()),
                                    decltype(std::declval<CArchive&>() >> std::declval<T&>())>> : std::true_type {};

// A default element handed out by a read with a bad index or on an empty list, so that
// callers get a value instead of a fault. Reset on every use.
template <class T> T& dummyElement()
{
    thread_local T d{};
    d = T{};
    return d;
}
}  // namespace orlex::detail

// Archive forms of elements ------------------------------------------------------------------
// Plain element types are written as their bytes; strings and object pointers by their
// own rules; other types by their archive operators. A type with none of these raises
// CArchiveException genericException (give SerializeElements for it).
template <class TYPE> void SerializeElements(CArchive& ar, TYPE* elements, INT_PTR count)
{
    if (count <= 0)
        return;
    if constexpr (!std::is_trivially_copyable_v<TYPE>) {
        if constexpr (orlex::detail::HasArchiveForm<TYPE>::value) {
            for (INT_PTR i = 0; i < count; ++i) {
                if (ar.IsStoring())
                    ar << static_cast<const TYPE&>(elements[i]);
                else
                    ar >> elements[i];
            }
        } else {
            AfxThrowArchiveException(CArchiveException::genericException, ar.m_strFileName);
        }
        return;
    }
    const ULONGLONG bytes = static_cast<ULONGLONG>(count) * sizeof(TYPE);
    // Written and read in pieces that fit the UINT of the archive's raw calls.
    auto* p = reinterpret_cast<BYTE*>(elements);
    for (ULONGLONG done = 0; done < bytes;) {
        const UINT n = static_cast<UINT>(std::min<ULONGLONG>(bytes - done, 0x40000000u));
        if (ar.IsStoring())
            ar.Write(p + done, n);
        else
            ar.Read(p + done, n);
        done += n;
    }
}
void SerializeElements(CArchive& ar, CString* elements, INT_PTR count);
void SerializeElements(CArchive& ar, CObject** elements, INT_PTR count);

// Hash of a map key. Integers and pointers hash to themselves (pointers without their
// alignment bits), strings by their characters; other types by std::hash.
template <class KEY> UINT HashKey(const KEY& key)
{
    if constexpr (std::is_integral_v<KEY> || std::is_enum_v<KEY>) {
        const auto v = static_cast<unsigned long long>(key);
        return static_cast<UINT>(v ^ (v >> 32));
    } else if constexpr (std::is_pointer_v<KEY>) {
        return static_cast<UINT>(reinterpret_cast<std::uintptr_t>(key) >> 4);
    } else if constexpr (std::is_convertible_v<const KEY&, const char*>) {
        UINT h = 0;
        for (const char* s = static_cast<const char*>(key); *s; ++s)
            h = (h << 5) + h + static_cast<unsigned char>(*s);
        return h;
    } else {
        return static_cast<UINT>(std::hash<KEY>{}(key));
    }
}

// CList ------------------------------------------------------------------------------------

// A doubly linked list. POSITIONs stay valid until their element is removed.
template <class TYPE, class ARG_TYPE = const TYPE&> class CList : public CObject {
    struct Node {
        Node* next;
        Node* prev;
        TYPE data;
    };
    static Node* node(POSITION p) { return reinterpret_cast<Node*>(p); }
    static POSITION pos(Node* n) { return reinterpret_cast<POSITION>(n); }

public:
    // blockSize is accepted for compatibility; nodes are allocated one by one.
    explicit CList(INT_PTR blockSize = 10) {}
    CList(const CList& other) { AddTail(&other); }
    CList& operator=(const CList& other)
    {
        if (this != &other) {
            RemoveAll();
            AddTail(&other);
        }
        return *this;
    }
    ~CList() override { RemoveAll(); }

    INT_PTR GetCount() const { return m_nCount; }
    INT_PTR GetSize() const { return m_nCount; }
    BOOL IsEmpty() const { return m_nCount == 0; }

    // Head and tail; on an empty list a default element.
    TYPE& GetHead() { return m_pHead ? m_pHead->data : bad(); }
    const TYPE& GetHead() const { return m_pHead ? m_pHead->data : bad(); }
    TYPE& GetTail() { return m_pTail ? m_pTail->data : bad(); }
    const TYPE& GetTail() const { return m_pTail ? m_pTail->data : bad(); }

    // Remove and return the head or tail element (a default element when empty).
    TYPE RemoveHead()
    {
        if (!m_pHead)
            return bad();
        TYPE v = std::move(m_pHead->data);
        RemoveAt(pos(m_pHead));
        return v;
    }
    TYPE RemoveTail()
    {
        if (!m_pTail)
            return bad();
        TYPE v = std::move(m_pTail->data);
        RemoveAt(pos(m_pTail));
        return v;
    }

    POSITION AddHead(ARG_TYPE element) { return InsertBefore(pos(m_pHead), element); }
    POSITION AddTail(ARG_TYPE element) { return InsertAfter(pos(m_pTail), element); }
    // Appends (prepends) copies of another list's elements.
    void AddHead(const CList* other)
    {
        if (!other)
            return;
        for (Node* n = other->m_pTail; n; n = n->prev)
            AddHead(n->data);
    }
    void AddTail(const CList* other)
    {
        if (!other)
            return;
        for (Node* n = other->m_pHead; n; n = n->next)
            AddTail(n->data);
    }
    void RemoveAll()
    {
        for (Node* n = m_pHead; n;) {
            Node* next = n->next;
            delete n;
            n = next;
        }
        m_pHead = m_pTail = nullptr;
        m_nCount = 0;
    }

    POSITION GetHeadPosition() const { return pos(m_pHead); }
    POSITION GetTailPosition() const { return pos(m_pTail); }
    // The element at `position`, which moves to the next (previous) one, or null.
    TYPE& GetNext(POSITION& position)
    {
        Node* n = node(position);
        if (!n)
            return bad();
        position = pos(n->next);
        return n->data;
    }
    const TYPE& GetNext(POSITION& position) const { return const_cast<CList*>(this)->GetNext(position); }
    TYPE& GetPrev(POSITION& position)
    {
        Node* n = node(position);
        if (!n)
            return bad();
        position = pos(n->prev);
        return n->data;
    }
    const TYPE& GetPrev(POSITION& position) const { return const_cast<CList*>(this)->GetPrev(position); }
    TYPE& GetAt(POSITION position) { return position ? node(position)->data : bad(); }
    const TYPE& GetAt(POSITION position) const { return position ? node(position)->data : bad(); }
    void SetAt(POSITION position, ARG_TYPE element)
    {
        if (position)
            node(position)->data = element;
    }
    void RemoveAt(POSITION position)
    {
        Node* n = node(position);
        if (!n)
            return;
        (n->prev ? n->prev->next : m_pHead) = n->next;
        (n->next ? n->next->prev : m_pTail) = n->prev;
        delete n;
        --m_nCount;
    }
    // Inserts before (after) `position`; a null position means the head (the tail).
    POSITION InsertBefore(POSITION position, ARG_TYPE element)
    {
        Node* at = node(position);
        if (!at)
            at = m_pHead;
        Node* n = new Node{at, at ? at->prev : nullptr, element};
        if (!at)
            m_pTail = n;
        (n->prev ? n->prev->next : m_pHead) = n;
        if (at)
            at->prev = n;
        ++m_nCount;
        return pos(n);
    }
    POSITION InsertAfter(POSITION position, ARG_TYPE element)
    {
        Node* at = node(position);
        if (!at)
            at = m_pTail;
        Node* n = new Node{at ? at->next : nullptr, at, element};
        if (!at)
            m_pHead = n;
        (n->next ? n->next->prev : m_pTail) = n;
        if (at)
            at->next = n;
        ++m_nCount;
        return pos(n);
    }
    // The first element equal to `value` after `startAfter` (from the head when null).
    POSITION Find(ARG_TYPE value, POSITION startAfter = nullptr) const
    {
        for (Node* n = startAfter ? node(startAfter)->next : m_pHead; n; n = n->next)
            if (n->data == value)
                return pos(n);
        return nullptr;
    }
    // The position of the index-th element (from 0), or null.
    POSITION FindIndex(INT_PTR index) const
    {
        if (index < 0 || index >= m_nCount)
            return nullptr;
        Node* n = m_pHead;
        while (index--)
            n = n->next;
        return pos(n);
    }

    // Count, then the elements.
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar.WriteCount(static_cast<DWORD_PTR>(m_nCount));
            for (Node* n = m_pHead; n; n = n->next)
                SerializeElements(ar, &n->data, 1);
        } else {
            for (DWORD_PTR count = ar.ReadCount(); count; --count) {
                TYPE v{};
                SerializeElements(ar, &v, 1);
                AddTail(v);
            }
        }
    }

private:
    static TYPE& bad() { return orlex::detail::dummyElement<TYPE>(); }

    Node* m_pHead = nullptr;
    Node* m_pTail = nullptr;
    INT_PTR m_nCount = 0;
};

class CPtrList : public CList<void*, void*> {
    DECLARE_DYNAMIC(CPtrList)
public:
    explicit CPtrList(INT_PTR blockSize = 10) : CList<void*, void*>(blockSize) {}
    // Pointers have no archive form.
    void Serialize(CArchive&) override {}
};

class CObList : public CList<CObject*, CObject*> {
    DECLARE_SERIAL(CObList)
public:
    explicit CObList(INT_PTR blockSize = 10) : CList<CObject*, CObject*>(blockSize) {}
    // Count, then each element as an object (class record or back-reference). Reading
    // appends to the list.
    void Serialize(CArchive& ar) override;
};

// CArray -----------------------------------------------------------------------------------

// A growable array. Indices are INT_PTR; elements are contiguous (GetData).
template <class TYPE, class ARG_TYPE = const TYPE&> class CArray : public CObject {
public:
    CArray() = default;
    CArray(const CArray& other) : CObject(), m_data(other.m_data) {}
    CArray& operator=(const CArray& other)
    {
        m_data = other.m_data;
        return *this;
    }

    INT_PTR GetSize() const { return static_cast<INT_PTR>(m_data.size()); }
    INT_PTR GetCount() const { return GetSize(); }
    BOOL IsEmpty() const { return m_data.empty(); }
    INT_PTR GetUpperBound() const { return GetSize() - 1; }
    // Sets the number of elements; new ones are value-initialised. growBy is accepted
    // for compatibility. A negative size empties; an allocation failure throws
    // CMemoryException.
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1)
    {
        try {
            m_data.resize(newSize > 0 ? static_cast<size_t>(newSize) : 0);
        } catch (const std::bad_alloc&) {
            AfxThrowMemoryException();
        } catch (const std::length_error&) {
            AfxThrowMemoryException();
        }
    }
    void FreeExtra() { m_data.shrink_to_fit(); }
    void RemoveAll() { m_data.clear(); }

    const TYPE& GetAt(INT_PTR i) const { return ok(i) ? m_data[static_cast<size_t>(i)] : bad(); }
    void SetAt(INT_PTR i, ARG_TYPE element)
    {
        if (ok(i))
            m_data[static_cast<size_t>(i)] = element;
    }
    TYPE& ElementAt(INT_PTR i) { return ok(i) ? m_data[static_cast<size_t>(i)] : bad(); }
    const TYPE* GetData() const { return m_data.data(); }
    TYPE* GetData() { return m_data.data(); }
    // Sets the element, growing the array to hold it (a negative index is ignored).
    void SetAtGrow(INT_PTR i, ARG_TYPE element)
    {
        if (i < 0)
            return;
        if (i >= GetSize()) {
            TYPE copy = element;  // the element may live in this array
            SetSize(i + 1);
            m_data[static_cast<size_t>(i)] = std::move(copy);
        } else {
            m_data[static_cast<size_t>(i)] = element;
        }
    }
    // Appends and returns the new element's index.
    INT_PTR Add(ARG_TYPE element)
    {
        m_data.push_back(element);
        return GetSize() - 1;
    }
    // Appends the other array's elements; returns the index of the first one.
    INT_PTR Append(const CArray& other)
    {
        const INT_PTR first = GetSize();
        const std::vector<TYPE> copy = other.m_data;  // other may be *this
        m_data.insert(m_data.end(), copy.begin(), copy.end());
        return first;
    }
    void Copy(const CArray& other)
    {
        if (this != &other)
            m_data = other.m_data;
    }
    const TYPE& operator[](INT_PTR i) const { return GetAt(i); }
    TYPE& operator[](INT_PTR i) { return ElementAt(i); }

    // Inserts `count` copies at `index`; past the end the array grows to reach it.
    void InsertAt(INT_PTR index, ARG_TYPE element, INT_PTR count = 1)
    {
        if (index < 0 || count <= 0)
            return;
        TYPE copy = element;
        if (index >= GetSize())
            SetSize(index);
        m_data.insert(m_data.begin() + index, static_cast<size_t>(count), copy);
    }
    void InsertAt(INT_PTR start, const CArray* other)
    {
        if (!other || start < 0 || other->IsEmpty())
            return;
        const std::vector<TYPE> copy = other->m_data;
        if (start >= GetSize())
            SetSize(start);
        m_data.insert(m_data.begin() + start, copy.begin(), copy.end());
    }
    // Removes `count` elements from `index` (clamped to the array).
    void RemoveAt(INT_PTR index, INT_PTR count = 1)
    {
        if (index < 0 || index >= GetSize() || count <= 0)
            return;
        const INT_PTR n = std::min(count, GetSize() - index);
        m_data.erase(m_data.begin() + index, m_data.begin() + index + n);
    }

    // Count, then the elements.
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring()) {
            ar.WriteCount(static_cast<DWORD_PTR>(m_data.size()));
        } else {
            const DWORD_PTR n = ar.ReadCount();
            if (static_cast<ULONGLONG>(n) * sizeof(TYPE) / sizeof(TYPE) != n)
                AfxThrowArchiveException(CArchiveException::endOfFile, ar.m_strFileName);
            SetSize(static_cast<INT_PTR>(n));
        }
        SerializeElements(ar, m_data.data(), GetSize());
    }

private:
    bool ok(INT_PTR i) const { return i >= 0 && i < GetSize(); }
    static TYPE& bad() { return orlex::detail::dummyElement<TYPE>(); }

    std::vector<TYPE> m_data;
};

// The named arrays of the platform.
class CPtrArray : public CArray<void*, void*> {
    DECLARE_DYNAMIC(CPtrArray)
public:
    void Serialize(CArchive&) override {}
};

class CObArray : public CArray<CObject*, CObject*> {
    DECLARE_SERIAL(CObArray)
};

class CUIntArray : public CArray<UINT, UINT> {
    DECLARE_DYNAMIC(CUIntArray)
};

class CDWordArray : public CArray<DWORD, DWORD> {
    DECLARE_SERIAL(CDWordArray)
};

class CWordArray : public CArray<WORD, WORD> {
    DECLARE_SERIAL(CWordArray)
};

class CByteArray : public CArray<BYTE, BYTE> {
    DECLARE_SERIAL(CByteArray)
};

class CStringArray : public CArray<CString, const CString&> {
    DECLARE_SERIAL(CStringArray)
public:
    using CArray<CString, const CString&>::Add;
    INT_PTR Add(const char* text) { return CArray<CString, const CString&>::Add(CString(text)); }
};

// CMap -------------------------------------------------------------------------------------

// A hash map from KEY to VALUE with chained buckets (17 at first, more as entries come).
template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE> class CMap : public CObject {
    struct Assoc {
        Assoc* next;
        UINT hash;
        KEY key;
        VALUE value;
    };

public:
    explicit CMap(INT_PTR blockSize = 10) {}
    CMap(const CMap& other) : CObject() { copyFrom(other); }
    CMap& operator=(const CMap& other)
    {
        if (this != &other) {
            RemoveAll();
            copyFrom(other);
        }
        return *this;
    }
    ~CMap() override { RemoveAll(); }

    INT_PTR GetCount() const { return m_nCount; }
    INT_PTR GetSize() const { return m_nCount; }
    BOOL IsEmpty() const { return m_nCount == 0; }
    UINT GetHashTableSize() const { return m_nHashTableSize; }

    // Sets the number of buckets (at least 1); the entries are kept.
    void InitHashTable(UINT hashSize, BOOL allocNow = TRUE)
    {
        if (hashSize == 0)
            hashSize = 1;
        std::vector<Assoc*> table(hashSize, nullptr);
        for (Assoc* head : m_table)
            for (Assoc* a = head; a;) {
                Assoc* next = a->next;
                Assoc*& slot = table[a->hash % hashSize];
                a->next = slot;
                slot = a;
                a = next;
            }
        m_table.swap(table);
        m_nHashTableSize = hashSize;
    }

    // Copies the value of `key` into `value`; false when absent (value untouched).
    BOOL Lookup(ARG_KEY key, VALUE& value) const
    {
        const Assoc* a = find(key);
        if (!a)
            return FALSE;
        value = a->value;
        return TRUE;
    }
    // The value of `key`, made (value-initialised) when absent.
    VALUE& operator[](ARG_KEY key)
    {
        if (Assoc* a = find(key))
            return a->value;
        if (m_table.empty())
            InitHashTable(m_nHashTableSize);
        // The table grows with the entries (about two to a bucket at most), so that lookups
        // stay short however many there are.
        if (m_nCount >= 2 * static_cast<INT_PTR>(m_nHashTableSize) && m_nHashTableSize < 0x40000000u)
            InitHashTable(m_nHashTableSize * 2 + 1);
        const UINT h = HashKey<KEY>(key);
        Assoc*& slot = m_table[h % m_nHashTableSize];
        slot = new Assoc{slot, h, key, VALUE{}};
        ++m_nCount;
        return slot->value;
    }
    void SetAt(ARG_KEY key, ARG_VALUE value) { (*this)[key] = value; }
    // Removes the key; false when absent.
    BOOL RemoveKey(ARG_KEY key)
    {
        if (m_table.empty())
            return FALSE;
        const UINT h = HashKey<KEY>(key);
        for (Assoc** link = &m_table[h % m_nHashTableSize]; *link; link = &(*link)->next)
            if ((*link)->key == key) {
                Assoc* dead = *link;
                *link = dead->next;
                delete dead;
                --m_nCount;
                return TRUE;
            }
        return FALSE;
    }
    void RemoveAll()
    {
        for (Assoc*& head : m_table) {
            for (Assoc* a = head; a;) {
                Assoc* next = a->next;
                delete a;
                a = next;
            }
            head = nullptr;
        }
        m_nCount = 0;
    }

    // Walking: GetStartPosition, then GetNextAssoc until the position is null. The map
    // must not change during the walk.
    POSITION GetStartPosition() const { return reinterpret_cast<POSITION>(firstFrom(0)); }
    void GetNextAssoc(POSITION& position, KEY& key, VALUE& value) const
    {
        const Assoc* a = reinterpret_cast<const Assoc*>(position);
        if (!a)
            return;
        key = a->key;
        value = a->value;
        const Assoc* next = a->next ? a->next : firstFrom(a->hash % m_nHashTableSize + 1);
        position = reinterpret_cast<POSITION>(const_cast<Assoc*>(next));
    }

private:
    Assoc* find(ARG_KEY key) const
    {
        if (m_table.empty())
            return nullptr;
        const UINT h = HashKey<KEY>(key);
        for (Assoc* a = m_table[h % m_nHashTableSize]; a; a = a->next)
            if (a->key == key)
                return a;
        return nullptr;
    }
    Assoc* firstFrom(size_t bucket) const
    {
        for (; bucket < m_table.size(); ++bucket)
            if (m_table[bucket])
                return m_table[bucket];
        return nullptr;
    }
    void copyFrom(const CMap& other)
    {
        InitHashTable(other.m_nHashTableSize);
        for (POSITION p = other.GetStartPosition(); p;) {
            KEY k;
            VALUE v;
            other.GetNextAssoc(p, k, v);
            (*this)[k] = v;
        }
    }

    std::vector<Assoc*> m_table;
    UINT m_nHashTableSize = 17;
    INT_PTR m_nCount = 0;
};

// Typed pointer wrappers ---------------------------------------------------------------------

// A CObList or CPtrList that hands out TYPE pointers.
template <class BASE_CLASS, class TYPE> class CTypedPtrList : public BASE_CLASS {
public:
    explicit CTypedPtrList(INT_PTR blockSize = 10) : BASE_CLASS(blockSize) {}

    TYPE GetHead() const { return static_cast<TYPE>(BASE_CLASS::GetHead()); }
    TYPE GetTail() const { return static_cast<TYPE>(BASE_CLASS::GetTail()); }
    TYPE RemoveHead() { return static_cast<TYPE>(BASE_CLASS::RemoveHead()); }
    TYPE RemoveTail() { return static_cast<TYPE>(BASE_CLASS::RemoveTail()); }
    TYPE GetNext(POSITION& position) const { return static_cast<TYPE>(BASE_CLASS::GetNext(position)); }
    TYPE GetPrev(POSITION& position) const { return static_cast<TYPE>(BASE_CLASS::GetPrev(position)); }
    TYPE GetAt(POSITION position) const { return static_cast<TYPE>(BASE_CLASS::GetAt(position)); }
    void SetAt(POSITION position, TYPE element) { BASE_CLASS::SetAt(position, element); }
    POSITION AddHead(TYPE element) { return BASE_CLASS::AddHead(element); }
    POSITION AddTail(TYPE element) { return BASE_CLASS::AddTail(element); }
    void AddHead(const CTypedPtrList* other) { BASE_CLASS::AddHead(other); }
    void AddTail(const CTypedPtrList* other) { BASE_CLASS::AddTail(other); }
    POSITION InsertBefore(POSITION position, TYPE element) { return BASE_CLASS::InsertBefore(position, element); }
    POSITION InsertAfter(POSITION position, TYPE element) { return BASE_CLASS::InsertAfter(position, element); }
    POSITION Find(TYPE element, POSITION startAfter = nullptr) const { return BASE_CLASS::Find(element, startAfter); }
};

// A CObArray or CPtrArray that hands out TYPE pointers.
template <class BASE_CLASS, class TYPE> class CTypedPtrArray : public BASE_CLASS {
public:
    TYPE GetAt(INT_PTR i) const { return static_cast<TYPE>(BASE_CLASS::GetAt(i)); }
    // A reference to the stored pointer itself (the element types are pointers to classes
    // with single inheritance from the base's element type).
    TYPE& ElementAt(INT_PTR i) { return reinterpret_cast<TYPE&>(BASE_CLASS::ElementAt(i)); }
    void SetAt(INT_PTR i, TYPE element) { BASE_CLASS::SetAt(i, element); }
    void SetAtGrow(INT_PTR i, TYPE element) { BASE_CLASS::SetAtGrow(i, element); }
    INT_PTR Add(TYPE element) { return BASE_CLASS::Add(element); }
    INT_PTR Append(const CTypedPtrArray& other) { return BASE_CLASS::Append(other); }
    void Copy(const CTypedPtrArray& other) { BASE_CLASS::Copy(other); }
    void InsertAt(INT_PTR index, TYPE element, INT_PTR count = 1) { BASE_CLASS::InsertAt(index, element, count); }
    void InsertAt(INT_PTR start, CTypedPtrArray* other) { BASE_CLASS::InsertAt(start, other); }
    TYPE operator[](INT_PTR i) const { return GetAt(i); }
    TYPE& operator[](INT_PTR i) { return ElementAt(i); }
};
