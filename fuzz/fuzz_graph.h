// Serial classes of the archive fuzzer and of the tests that make its seeds: strings,
// counts, nested object pointers, lists, arrays, shared objects, a versionable class and
// raw blocks. Objects never own each other (graphs share and cycle); every object is
// tracked, and FreeAllGraphObjects deletes whatever a run made.
//
// Defines runtime classes: include it in one translation unit of a program only.
#pragma once

#include <set>

#include "foundation/ArchiveVersionControl.h"
#include "foundation/platform/afx.h"

namespace fuzzgraph {

inline std::set<CObject*>& LiveObjects()
{
    static std::set<CObject*> live;
    return live;
}

inline void FreeAllGraphObjects()
{
    while (!LiveObjects().empty())
        delete *LiveObjects().begin();
}

}  // namespace fuzzgraph

// A fixed class of schema 1: numbers and a string.
class FzLeaf : public CObject {
    DECLARE_SERIAL(FzLeaf)
public:
    FzLeaf() { fuzzgraph::LiveObjects().insert(this); }
    ~FzLeaf() override { fuzzgraph::LiveObjects().erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_n << m_d << m_text << m_flag;
        else
            ar >> m_n >> m_d >> m_text >> m_flag;
    }
    int m_n = 0;
    double m_d = 0;
    CString m_text;
    bool m_flag = false;
};
IMPLEMENT_SERIAL(FzLeaf, CObject, 1)

// A fixed class of schema 2: a name, two pointers, a list of objects, counted arrays.
class FzNode : public CObject {
    DECLARE_SERIAL(FzNode)
public:
    FzNode() { fuzzgraph::LiveObjects().insert(this); }
    ~FzNode() override { fuzzgraph::LiveObjects().erase(this); }
    void Serialize(CArchive& ar) override
    {
        if (ar.IsStoring())
            ar << m_name << m_a << m_b;
        else
            ar >> m_name >> m_a >> m_b;
        m_kids.Serialize(ar);
        m_values.Serialize(ar);
        m_words.Serialize(ar);
    }
    CString m_name;
    CObject* m_a = nullptr;
    CObject* m_b = nullptr;
    CObList m_kids;
    CDWordArray m_values;
    CStringArray m_words;
};
IMPLEMENT_SERIAL(FzNode, CObject, 2)

// A versionable class of schema 3 that follows the version rule (class record inside its
// own list unless versioning is off) and reads schemas 1 to 3; a rectangle as a raw block.
class FzZoom : public CObject {
    DECLARE_SERIAL(FzZoom)
public:
    FzZoom() { fuzzgraph::LiveObjects().insert(this); }
    ~FzZoom() override { fuzzgraph::LiveObjects().erase(this); }
    void Serialize(CArchive& ar) override
    {
        const UINT schema = orlex::SerializeVersion(ar, RUNTIME_CLASS(FzZoom), 3, {1, 2, 3});
        if (ar.IsStoring()) {
            ar.Write(&m_rect, sizeof m_rect);
            ar << m_scale << m_next;
            return;
        }
        ar.Read(&m_rect, sizeof m_rect);
        if (schema >= 2)
            ar >> m_scale;
        if (schema >= 3)
            ar >> m_next;
    }
    CRect m_rect;
    double m_scale = 1.0;
    CObject* m_next = nullptr;
};
IMPLEMENT_SERIAL(FzZoom, CObject, VERSIONABLE_SCHEMA | 3)

namespace fuzzgraph {

// The first byte of a fuzz input selects the reading: bit 0 versioning off, bits 1-2 the
// archive buffer size, bits 3-4 what the rest is read as (0-1 objects until the end, 2 a
// list, 3 a mix of primitives).
struct InputHeader {
    bool noVersioning;
    int bufSize;
    int kind;
};

inline InputHeader DecodeHeader(BYTE b)
{
    static const int kSizes[4] = {4096, 128, 509, 1024};
    return InputHeader{(b & 1) != 0, kSizes[(b >> 1) & 3], (b >> 3) & 3};
}

// Reads the rest of an input as the header says. Returns the objects read at the top
// level (owned by the live set). Raises the archive's exceptions.
inline std::vector<CObject*> ReadGraph(CArchive& ar, const InputHeader& h)
{
    std::vector<CObject*> top;
    switch (h.kind) {
    case 2: {
        CObList list;
        list.Serialize(ar);
        for (POSITION p = list.GetHeadPosition(); p;)
            top.push_back(list.GetNext(p));
        break;
    }
    case 3: {
        CString s;
        int n;
        double d;
        BYTE b;
        ar >> s >> n >> d >> b;
        const DWORD_PTR count = ar.ReadCount();
        for (DWORD_PTR i = 0; i < count; ++i)
            top.push_back(ar.ReadObject(RUNTIME_CLASS(CObject)));
        char line[16];
        while (ar.ReadString(line, sizeof line)) {
        }
        break;
    }
    default:
        while (ar.GetBytesLeft() > 0)
            top.push_back(ar.ReadObject(nullptr));
        break;
    }
    return top;
}

// Writes what ReadGraph read, in the same form.
inline void WriteGraph(CArchive& ar, const InputHeader& h, const std::vector<CObject*>& top)
{
    if (h.kind == 2) {
        CObList list;
        for (CObject* o : top)
            list.AddTail(o);
        list.Serialize(ar);
        return;
    }
    for (CObject* o : top)
        ar << o;
}

}  // namespace fuzzgraph
