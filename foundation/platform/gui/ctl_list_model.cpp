#include <algorithm>
#include <cctype>
#include <strings.h>

#include "foundation/platform/gui/ctl_list_p.h"

namespace orlex::detail {

int ListModel::SetCurrent(int index) {
    m_current = (index >= 0 && index < Count()) ? index : -1;
    return m_current;
}

int ListModel::Add(const std::string& text) {
    if (!sorted) return Insert(-1, text);
    int at = 0;
    while (at < Count() && strcasecmp(m_items[static_cast<size_t>(at)].text.c_str(), text.c_str()) <= 0) ++at;
    return Insert(at, text);
}

int ListModel::Insert(int index, const std::string& text) {
    if (index < -1 || index > Count()) return -1;
    if (index == -1) index = Count();
    m_items.insert(m_items.begin() + index, Item{text, 0});
    if (m_current >= index) ++m_current;
    return index;
}

int ListModel::Remove(int index) {
    if (index < 0 || index >= Count()) return -1;
    m_items.erase(m_items.begin() + index);
    if (m_current == index) m_current = -1;
    else if (m_current > index) --m_current;
    return Count();
}

void ListModel::Clear() {
    m_items.clear();
    m_current = -1;
}

const ListModel::Item* ListModel::At(int index) const {
    return index >= 0 && index < Count() ? &m_items[static_cast<size_t>(index)] : nullptr;
}

ListModel::Item* ListModel::At(int index) {
    return index >= 0 && index < Count() ? &m_items[static_cast<size_t>(index)] : nullptr;
}

int ListModel::Find(int startAfter, const std::string& text, bool exact) const {
    const int n = Count();
    if (n == 0) return -1;
    const int start = (startAfter < 0 || startAfter >= n) ? 0 : startAfter + 1;
    for (int k = 0; k < n; ++k) {
        const int i = (start + k) % n;
        const std::string& t = m_items[static_cast<size_t>(i)].text;
        const bool match = exact ? strcasecmp(t.c_str(), text.c_str()) == 0
                                 : (t.size() >= text.size() && strncasecmp(t.c_str(), text.c_str(), text.size()) == 0);
        if (match) return i;
    }
    return -1;
}

}  // namespace orlex::detail
