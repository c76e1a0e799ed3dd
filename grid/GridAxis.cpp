#include "grid/GridAxis.h"

#include <unistd.h>

#include <algorithm>
#include <new>
#include <stdexcept>

#include "foundation/platform/afxobj.h"

namespace orlex::grid {

void Axis::SetAt(int i, UINT size)
{
    if (i < 0 || i >= GetSize())
        return;
    UINT& s = m_sizes[static_cast<size_t>(i)];
    const long long delta = static_cast<long long>(size) - s;
    m_total += delta;
    // A place past the changed entry starts elsewhere now; one at or before it does not, nor
    // does one counted from past it.
    if (m_placeFirst >= 0 && i >= m_placeFirst && i < m_place)
        m_placeStart += delta;
    s = size;
}

void Axis::SetSize(int count, UINT fill)
{
    count = std::max(count, 0);
    const int old = GetSize();
    try {
        m_sizes.resize(static_cast<size_t>(count), fill);
    } catch (const std::bad_alloc&) {
        AfxThrowMemoryException();
    } catch (const std::length_error&) {
        AfxThrowMemoryException();
    }
    if (count > old) {
        m_total += static_cast<long long>(count - old) * fill;
    } else if (count < old) {
        m_total = 0;
        for (UINT s : m_sizes)
            m_total += s;
    }
    if (m_placeFirst >= 0 && m_place >= count)
        m_placeFirst = -1;
}

void Axis::InsertAt(int i, UINT size)
{
    if (i < 0 || i > GetSize())
        return;
    m_sizes.insert(m_sizes.begin() + i, size);
    m_total += size;
    m_placeFirst = -1;
}

void Axis::RemoveAt(int i)
{
    if (i < 0 || i >= GetSize())
        return;
    m_total -= m_sizes[static_cast<size_t>(i)];
    m_sizes.erase(m_sizes.begin() + i);
    m_placeFirst = -1;
}

void Axis::RemoveAll()
{
    m_sizes.clear();
    m_total = 0;
    m_placeFirst = -1;
}

void Axis::Swap(int a, int b)
{
    if (a == b || a < 0 || b < 0 || a >= GetSize() || b >= GetSize())
        return;
    std::swap(m_sizes[static_cast<size_t>(a)], m_sizes[static_cast<size_t>(b)]);
    m_placeFirst = -1;
}

long long Axis::Sum(int from, int to) const
{
    from = std::max(from, 0);
    to = std::min(to, GetSize());
    long long s = 0;
    for (int i = from; i < to; ++i)
        s += m_sizes[static_cast<size_t>(i)];
    return s;
}

int Axis::Locate(int first, long long pos, long long* start)
{
    const int n = GetSize();
    if (first >= n || first < 0) {
        if (start)
            *start = 0;
        return first;
    }
    if (m_placeFirst != first || m_place < first || m_place >= n) {
        m_placeFirst = first;
        m_place = first;
        m_placeStart = 0;
    }
    int r = m_place;
    long long s = m_placeStart;
    // The walk from `first` passes entry r - 1 exactly when its start is below pos, so back
    // up while that is not so, then go on as the walk would.
    while (r > first && s - m_sizes[static_cast<size_t>(r - 1)] >= pos) {
        --r;
        s -= m_sizes[static_cast<size_t>(r)];
    }
    while (s < pos && r < n - 1) {
        s += m_sizes[static_cast<size_t>(r)];
        ++r;
    }
    m_place = r;
    m_placeStart = s;
    if (start)
        *start = s;
    return r;
}

bool CanHold(double bytes)
{
    if (bytes <= 0)
        return true;
    constexpr double kMaxChange = 4.0 * 1024 * 1024 * 1024;
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGESIZE);
    double half = pages > 0 && pageSize > 0 ? static_cast<double>(pages) * pageSize / 2 : kMaxChange;
    return bytes <= std::min(half, kMaxChange);
}

}  // namespace orlex::grid
