// Contrast, offset and equalisation of a colour table: the derivation of the working table
// that the colour bar keeps and the image view paints with.
//
// The free functions work on plain 256-entry arrays in the table's own fixed-point steps
// (1/128 of an entry, 16-bit products), so a drag on the bar can derive a table per mouse
// move. `WorkingTable` holds the state the derivation reads (table number, contrast,
// offset, the host's modified and equalised tables and segment bounds) and the working
// table itself; the colour bar window derives from it and adds the drawing.
#pragma once

#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::colour {

constexpr int kWorkingEntries = 256;
constexpr int kMinContrast = -10;
constexpr int kMaxContrast = 10;
constexpr int kDefaultColorTable = 12;
// The application profile value that remembers the last table chosen on a bar.
constexpr const char* kProfileSection = "ColorControl";
constexpr const char* kProfileEntry = "ColorTable";

// The stretch factor of each contrast step, indexed by contrast + 10.
extern const double kContrastFactors[21];

// Factor of a contrast step; steps outside -10..10 take the nearest end.
double ContrastFactor(int contrast);

// Contrast on the whole table of n entries (1..256): a stretch about the middle. Nothing
// for contrast 0. Red, green and blue only; reserved bytes stay.
void StretchTable(tagRGBQUAD* table, int n, int contrast);
// StretchTable(table, 256, contrast) followed by ShiftTable(table, 256, offset), computed
// in one pass from precomputed steps; the derivation's path for a whole table.
void StretchAndShiftTable(tagRGBQUAD* table, int contrast, int offset);
// The same within entries start..end of a 256-entry table (the segment's own rules for
// its ends); nothing for contrast 0 or end - start < 1. 0 <= start <= end <= 255.
void StretchSegment(tagRGBQUAD* table, int contrast, int start, int end);
// Offset on the whole table: positive moves the colours toward low indices repeating the
// top entry, negative the other way repeating entry 0. Any offset is allowed.
void ShiftTable(tagRGBQUAD* table, int n, int offset);
// The same within entries start..end-1. 0 <= start <= end <= 256.
void ShiftSegment(tagRGBQUAD* table, int offset, int start, int end);
// Straightens red, green and blue on the entries within 5 of `position` (0..255) to the
// line through the two outer entries, rounded.
void SmoothAround(tagRGBQUAD* table, int position);

// A table number limited to the process's list: below 0 gives 0, at or above the count
// the last. Builds the list first if it isn't built.
int ClampTableNumber(int table);
// The profile's "ColorControl"/"ColorTable", or 12 without an application object.
int ProfileColorTable();
// Writes the table number to the profile; nothing without an application object.
void StoreProfileColorTable(int table);

// The state of a derived colour table and the working table it gives. Field names are
// those of the colour bar, which derives from this class.
class WorkingTable {
public:
    WorkingTable();
    virtual ~WorkingTable();
    WorkingTable(const WorkingTable&) = delete;
    WorkingTable& operator=(const WorkingTable&) = delete;

    // Steps 2 to 4 and 6 to 9 of a table change: clears the host's tables when `table`
    // differs from m_nTable, clamps and stores the number, rebuilds m_pColorTable from the
    // list and applies the host's tables, contrast and offset.
    void DeriveWorkingTable(int table);

    void AdjustForContrast();
    void AdjustForOffset();
    // The host's modified table replaces the colours if it was given for this table number.
    void AdjustForCustomColorTable();
    // The host's equalised table replaces the colours if one is set.
    void AdjustForEqualizedColorTable();

    // Copies 256 entries (all four bytes) as the host's table for the current number.
    // Takes effect at the next derivation. Null is ignored.
    void ModifyColorTable(tagRGBQUAD* table);
    // Copies 256 entries as the host's equalised table. Null is ignored.
    void EqualizeColorTable(tagRGBQUAD* table);
    // Segment bounds, ascending indices 0..255; the argument's storage is released.
    void SetEqualizedCursors(std::vector<int> cursors);
    void GetEqualizedCursors(std::vector<int>* cursors) const;

    // The working table: 256 entries owned by this object, valid for its life.
    tagRGBQUAD* GetColorTable() { return m_pColorTable; }
    int GetColorTableIdx() const { return m_nTable; }
    int GetContrast() const { return m_nContrast; }
    int GetOffset() const { return m_nOffset; }
    bool IsColorTableModified() const { return m_bModified; }
    bool IsColorTableEqualized() const { return m_bEqualized; }
    // Store only; they count at the next derivation.
    void SetColorTableModified(bool modified) { m_bModified = modified; }
    void SetColorTableEqualized(bool equalized) { m_bEqualized = equalized; }
    // -10..10 is the caller's to keep; values outside act as the nearest end.
    void SetContrast(int contrast) { m_nContrast = contrast; }
    void SetOffset(int offset) { m_nOffset = offset; }

    int m_nColors = kWorkingEntries;
    int m_nTable;
    int m_nOffset = 0;
    int m_nContrast = 0;
    tagRGBQUAD* m_pColorTable;
    bool m_bModified = false;
    bool m_bEqualized = false;
    int m_nModifiedTable = 0;
    tagRGBQUAD m_ModifiedTable[kWorkingEntries];
    tagRGBQUAD m_EqualizedTable[kWorkingEntries];
    std::vector<int> m_vEqualizedCursors;

protected:
    void AdjustForContrastPiecewise(int start, int end);
    void AdjustForOffsetPiecewise(int start, int end);
    void SmoothPiecewiseEdges(int position);
};

}  // namespace orlex::colour
