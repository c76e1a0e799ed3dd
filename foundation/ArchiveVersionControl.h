// The two process-wide switches of Serialize, and the version rule that every
// versionable class's Serialize follows.
#pragma once

#include <initializer_list>

#include "foundation/platform/afx.h"

class ArchiveVersionControl {
public:
    // true: Serialize functions of versionable classes write and read no class record
    // and take the newest schema. Default false; only the host sets it.
    static bool GetNoVersioning() { return m_noVersioning; }
    static void SetNoVersioning(bool noVersioning) { m_noVersioning = noVersioning; }
    // The argument of OrlexUI::Initialize; default false. New cursors copy it.
    static bool GetRealTime() { return m_realTime; }
    static void SetRealTime(bool realTime) { m_realTime = realTime; }

    // Plain flags without a lock: set once before controls exist.
    static bool m_noVersioning;
    static bool m_realTime;
};

namespace orlex {

// The version step at the start of a versionable class's Serialize. Unless versioning is
// off, a storing archive gets the class record of `cls` and a loading one reads it.
// Returns the schema whose field list follows: `newest` when storing or when versioning
// is off, else the schema of the record read, which must be one of `known` (or equal
// `newest` when `known` is empty); any other raises CArchiveException badSchema.
UINT SerializeVersion(CArchive& ar, const CRuntimeClass* cls, UINT newest, std::initializer_list<UINT> known = {});

}  // namespace orlex
