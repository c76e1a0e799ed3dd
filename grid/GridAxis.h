// The sizes along one side of the grid (row heights or column widths) with their running
// total, so that the virtual size costs nothing however long the table, and a remembered
// place for the walk that finds the first scrolled row or column from a scroll position:
// scrolling by a line moves the place by one instead of walking from the fixed part again.
#pragma once

#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::grid {

class Axis {
public:
    int GetSize() const { return static_cast<int>(m_sizes.size()); }
    // 0 outside the axis.
    UINT GetAt(int i) const { return i >= 0 && i < GetSize() ? m_sizes[static_cast<size_t>(i)] : 0; }
    void SetAt(int i, UINT size);
    // New entries take `fill`. An allocation failure throws CMemoryException and leaves the
    // axis as it was.
    void SetSize(int count, UINT fill);
    void InsertAt(int i, UINT size);
    void RemoveAt(int i);
    void RemoveAll();
    void Swap(int a, int b);

    // The sum of all sizes, and of those in [from, to).
    long long Total() const { return m_total; }
    long long Sum(int from, int to) const;
    // From `first`, while the sizes passed sum to less than pos and the index is not the last,
    // passes one more: the first scrolled row or column of a scroll position. *start gets the
    // sum passed. The answer is the same as a walk from `first`; it starts from the last one.
    int Locate(int first, long long pos, long long* start = nullptr);
    // Drops the remembered place (after the entries moved).
    void ForgetPlace() { m_placeFirst = -1; }

private:
    std::vector<UINT> m_sizes;
    long long m_total = 0;
    int m_placeFirst = -1;  // `first` of the remembered walk; -1: none
    int m_place = 0;
    long long m_placeStart = 0;
};

// Whether a table change needing about `bytes` more memory may go ahead: at most half the
// machine's memory and 4 GiB in one change, so that a size that can't be held is refused
// before anything is allocated.
bool CanHold(double bytes);

}  // namespace orlex::grid
