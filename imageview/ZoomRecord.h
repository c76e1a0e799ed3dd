// One entry of an image view's zoom history: a rectangle of data pixels (left, top, right,
// bottom, rows counted from the top of the shown image).
#pragma once

#include "foundation/platform/afx.h"

class CZoomRecord : public CObject {
    DECLARE_SERIAL(CZoomRecord)
public:
    CZoomRecord() = default;
    explicit CZoomRecord(const CRect& r) : m_rect(r) {}

    // The rectangle, by reference: callers may change it in place. Lives with the record.
    CRect& GetRecord() { return m_rect; }
    // Copies r into the record.
    void SetRecord(CRect& r) { m_rect = r; }

    // Version step (schema 1), then the four ints as one raw block of 16 bytes. A short
    // read raises CArchiveException endOfFile; a schema other than 1 raises badSchema.
    void Serialize(CArchive& ar) override;

    CRect m_rect;
};
