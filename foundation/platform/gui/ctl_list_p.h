// Private: the item list of list boxes and combo boxes, apart from windows and drawing.
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

class ListModel {
public:
    struct Item {
        std::string text;
        DWORD_PTR data = 0;
    };
    bool sorted = false;

    int Count() const { return static_cast<int>(m_items.size()); }
    int Current() const { return m_current; }
    // -1 (or any index out of range) clears the selection; returns the index or -1.
    int SetCurrent(int index);
    // Adds at the end, or at its sorted place (case-insensitive) when sorted; the index.
    int Add(const std::string& text);
    // Inserts before index (-1: at the end); -1 when index is beyond the end.
    int Insert(int index, const std::string& text);
    // Removes the item; the count left, or -1 for a bad index. The selection follows.
    int Remove(int index);
    void Clear();
    const Item* At(int index) const;
    Item* At(int index);
    // The first item after `startAfter` (wrapping around the end; -1 searches from the start)
    // whose text begins with `text` (exact: equals it), ignoring case; -1 when none.
    int Find(int startAfter, const std::string& text, bool exact) const;

private:
    std::vector<Item> m_items;
    int m_current = -1;
};

}  // namespace orlex::detail
