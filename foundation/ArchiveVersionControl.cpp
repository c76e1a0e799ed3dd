#include "foundation/ArchiveVersionControl.h"

#include <algorithm>

bool ArchiveVersionControl::m_noVersioning = false;
bool ArchiveVersionControl::m_realTime = false;

namespace orlex {

UINT SerializeVersion(CArchive& ar, const CRuntimeClass* cls, UINT newest, std::initializer_list<UINT> known)
{
    const bool versioned = !ArchiveVersionControl::GetNoVersioning();
    if (versioned)
        ar.SerializeClass(cls);
    if (ar.IsStoring() || !versioned)
        return newest;
    const UINT schema = ar.GetObjectSchema();
    const bool accepted = known.size() == 0 ? schema == newest
                                            : std::find(known.begin(), known.end(), schema) != known.end();
    if (!accepted)
        AfxThrowArchiveException(CArchiveException::badSchema, ar.m_strFileName);
    return schema;
}

}  // namespace orlex
