#include "foundation/platform/gui/ctl_edit_p.h"

#include <cassert>

namespace orlex::detail {

void EditModel::SetText(const std::string& text) {
    m_text = text;
    m_anchor = m_caret = 0;
    m_canUndo = false;
}

void EditModel::SetSel(int start, int end) {
    const int n = static_cast<int>(m_text.size());
    if (start == -1) {
        m_anchor = m_caret;
        return;
    }
    if (end < 0 || end > n) end = n;
    if (start < 0 || start > n) start = n;
    m_anchor = start;
    m_caret = end;
}

void EditModel::Remember() {
    m_undoText = m_text;
    m_undoAnchor = m_anchor;
    m_undoCaret = m_caret;
    m_canUndo = true;
}

bool EditModel::ReplaceSel(const std::string& text, bool keepUndo) {
    const int s = SelStart(), e = SelEnd();
    const long room = static_cast<long>(m_limit) - (static_cast<long>(m_text.size()) - (e - s));
    std::string put = text;
    if (room < static_cast<long>(put.size())) put.resize(room > 0 ? static_cast<size_t>(room) : 0);
    if (put.empty() && s == e) return false;
    if (keepUndo) Remember();
    m_text.replace(static_cast<size_t>(s), static_cast<size_t>(e - s), put);
    m_anchor = m_caret = s + static_cast<int>(put.size());
    assert(m_caret <= static_cast<int>(m_text.size()));
    return true;
}

bool EditModel::Backspace() {
    int s = SelStart(), e = SelEnd();
    if (s == e) {
        if (m_caret == 0) return false;
        s = m_caret - 1;
    }
    Remember();  // before anything moves, so that undo puts the caret back too
    m_text.erase(static_cast<size_t>(s), static_cast<size_t>(e - s));
    m_anchor = m_caret = s;
    return true;
}

bool EditModel::DeleteForward() {
    int s = SelStart(), e = SelEnd();
    if (s == e) {
        if (m_caret >= static_cast<int>(m_text.size())) return false;
        e = m_caret + 1;
    }
    Remember();
    m_text.erase(static_cast<size_t>(s), static_cast<size_t>(e - s));
    m_anchor = m_caret = s;
    return true;
}

void EditModel::PlaceCaret(int pos, bool extend) {
    m_caret = Clamp(pos);
    if (!extend) m_anchor = m_caret;
}

void EditModel::MoveLeft(bool extend) {
    // Without extending, a selection collapses to its start.
    if (!extend && HasSelection()) PlaceCaret(SelStart(), false);
    else PlaceCaret(m_caret - 1, extend);
}

void EditModel::MoveRight(bool extend) {
    if (!extend && HasSelection()) PlaceCaret(SelEnd(), false);
    else PlaceCaret(m_caret + 1, extend);
}

void EditModel::Home(bool extend) { PlaceCaret(0, extend); }
void EditModel::End(bool extend) { PlaceCaret(static_cast<int>(m_text.size()), extend); }

bool EditModel::Undo() {
    if (!m_canUndo) return false;
    std::swap(m_text, m_undoText);
    std::swap(m_anchor, m_undoAnchor);
    std::swap(m_caret, m_undoCaret);
    m_anchor = Clamp(m_anchor);
    m_caret = Clamp(m_caret);
    return true;
}

int HitTestOffsets(const int* offsets, int count, int x) {
    if (count <= 0 || x <= 0) return 0;
    for (int i = 1; i <= count; ++i) {
        if (x < offsets[i]) return (x - offsets[i - 1] < offsets[i] - x) ? i - 1 : i;
    }
    return count;
}

}  // namespace orlex::detail
