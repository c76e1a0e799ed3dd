// Reads image view archives from arbitrary bytes into a view without a window: the view's
// record (cursors, zoom list, settings) or its cursors alone. Every input must end in a clean
// read or a CArchiveException; what was read must store, read again and store to the same
// bytes.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "cursors/BaseCursor.h"
#include "fuzz/view_input.h"
#include "imageview/ZoomRecord.h"

namespace {

std::vector<BYTE> Store(CImageView& view, const fuzzview::Header& h)
{
    CMemFile file;
    {
        CArchive ar(&file, CArchive::store);
        fuzzview::Serialize(ar, view, h);
        ar.Close();
    }
    std::vector<BYTE> out(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    if (!out.empty()) file.Read(out.data(), static_cast<UINT>(out.size()));
    return out;
}

bool Load(CImageView& view, const fuzzview::Header& h, const BYTE* data, size_t size)
{
    std::vector<BYTE> copy(data, data + size);
    CMemFile file(copy.empty() ? nullptr : copy.data(), static_cast<UINT>(copy.size()));
    try {
        CArchive ar(&file, CArchive::load);
        fuzzview::Serialize(ar, view, h);
        ar.Close();
        return true;
    } catch (CArchiveException* e) {
        if (e->m_cause < CArchiveException::none || e->m_cause > CArchiveException::badSchema) std::abort();
        e->Delete();
        return false;
    }
}

}  // namespace

// Only what a view owns may be made from a file here: the cursor kinds and zoom records.
// Other classes of the library would be objects nobody frees.
extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    std::vector<CRuntimeClass*> others;
    for (CRuntimeClass* c = AfxGetFirstRuntimeClass(); c; c = c->m_pNextClass)
        if (!c->IsDerivedFrom(RUNTIME_CLASS(CBaseCursor)) && c != RUNTIME_CLASS(CZoomRecord)) others.push_back(c);
    for (CRuntimeClass* c : others) AfxUnregisterRuntimeClass(c);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1) return 0;
    const fuzzview::Header h = fuzzview::DecodeHeader(data[0]);
    fuzzview::Apply(h);
    CImageView view(false);
    if (!Load(view, h, data + 1, size - 1)) return 0;
    const std::vector<BYTE> first = Store(view, h);
    CImageView again(false);
    if (!Load(again, h, first.data(), first.size())) std::abort();  // what was stored must read
    if (Store(again, h) != first) std::abort();                      // and store to the same bytes
    return 0;
}
