#include "imageview/ZoomRecord.h"

#include <cstdint>
#include <cstring>

#include "foundation/ArchiveVersionControl.h"

IMPLEMENT_SERIAL(CZoomRecord, CObject, VERSIONABLE_SCHEMA | 1)

void CZoomRecord::Serialize(CArchive& ar)
{
    orlex::SerializeVersion(ar, RUNTIME_CLASS(CZoomRecord), 1, {1});
    // The file holds the four ints little-endian, whatever the machine.
    BYTE raw[16];
    if (ar.IsStoring()) {
        const LONG v[4] = {m_rect.left, m_rect.top, m_rect.right, m_rect.bottom};
        for (int i = 0; i < 4; ++i) {
            const auto u = static_cast<std::uint32_t>(v[i]);
            for (int b = 0; b < 4; ++b) raw[i * 4 + b] = static_cast<BYTE>(u >> (8 * b));
        }
        ar.Write(raw, sizeof raw);
        return;
    }
    ar.Read(raw, sizeof raw);  // throws endOfFile when cut short, leaving m_rect as it was
    LONG v[4];
    for (int i = 0; i < 4; ++i) {
        std::uint32_t u = 0;
        for (int b = 0; b < 4; ++b) u |= std::uint32_t(raw[i * 4 + b]) << (8 * b);
        v[i] = static_cast<LONG>(static_cast<std::int32_t>(u));
    }
    m_rect = CRect(v[0], v[1], v[2], v[3]);
}
