// The input form of the image view fuzzer, shared with the test that checks its seeds: one
// header byte (bit 0: no versioning, bit 1: cursors made in real time, bit 2: the cursors
// alone rather than the whole view), then the archive bytes.
#pragma once

#include "foundation/ArchiveVersionControl.h"
#include "imageview/ImageView.h"

namespace fuzzview {

struct Header {
    bool noVersioning;
    bool realTime;
    bool cursorsOnly;
};

inline Header DecodeHeader(BYTE b) { return Header{(b & 1) != 0, (b & 2) != 0, (b & 4) != 0}; }

inline BYTE EncodeHeader(const Header& h)
{
    return BYTE((h.noVersioning ? 1 : 0) | (h.realTime ? 2 : 0) | (h.cursorsOnly ? 4 : 0));
}

// Sets the process-wide switches the header names.
inline void Apply(const Header& h)
{
    ArchiveVersionControl::SetNoVersioning(h.noVersioning);
    ArchiveVersionControl::SetRealTime(h.realTime);
}

// Reads or writes a view (without a window) as the header says.
inline void Serialize(CArchive& ar, CImageView& view, const Header& h)
{
    if (h.cursorsOnly)
        view.SerializeCursors(ar);
    else
        view.Serialize(ar);
}

}  // namespace fuzzview
