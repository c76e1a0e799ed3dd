// Reads object graphs from arbitrary bytes through the archive. Every input must end in
// a clean read or a CArchiveException; a graph that was read must store, load and store
// again to the same bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "fuzz/fuzz_graph.h"

namespace {

std::vector<BYTE> StoreGraph(const fuzzgraph::InputHeader& h, const std::vector<CObject*>& top)
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store, h.bufSize);
        fuzzgraph::WriteGraph(ar, h, top);
        ar.Close();
    }
    std::vector<BYTE> out(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!out.empty())
        file.Read(out.data(), static_cast<UINT>(out.size()));
    return out;
}

// Reads the bytes; true and the top objects on success, false on an archive exception.
bool LoadGraph(const fuzzgraph::InputHeader& h, const BYTE* data, size_t size, std::vector<CObject*>& top)
{
    std::vector<BYTE> copy(data, data + size);
    CMemFile file(copy.empty() ? nullptr : copy.data(), static_cast<UINT>(copy.size()));
    try {
        CArchive ar(&file, CArchive::load, h.bufSize);
        top = fuzzgraph::ReadGraph(ar, h);
        ar.Close();
        return true;
    } catch (CArchiveException* e) {
        if (e->m_cause < CArchiveException::none || e->m_cause > CArchiveException::badSchema)
            std::abort();
        e->Delete();
        return false;
    }
}

}  // namespace

// Only the graph classes may be made from a file here: anything else the program links
// (collections, classes of the library) would be objects the run cannot free.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    std::vector<CRuntimeClass*> others;
    for (CRuntimeClass* c = AfxGetFirstRuntimeClass(); c; c = c->m_pNextClass)
        if (std::strncmp(c->m_lpszClassName, "Fz", 2) != 0)
            others.push_back(c);
    for (CRuntimeClass* c : others)
        AfxUnregisterRuntimeClass(c);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const fuzzgraph::InputHeader h = fuzzgraph::DecodeHeader(data[0]);
    ArchiveVersionControl::SetNoVersioning(h.noVersioning);
    std::vector<CObject*> top;
    const bool ok = LoadGraph(h, data + 1, size - 1, top);
    if (ok && h.kind != 3) {
        const std::vector<BYTE> first = StoreGraph(h, top);
        fuzzgraph::FreeAllGraphObjects();
        std::vector<CObject*> again;
        if (!LoadGraph(h, first.data(), first.size(), again))
            std::abort();  // what was stored must read
        if (StoreGraph(h, again) != first)
            std::abort();  // and store to the same bytes
    }
    fuzzgraph::FreeAllGraphObjects();
    return 0;
}
