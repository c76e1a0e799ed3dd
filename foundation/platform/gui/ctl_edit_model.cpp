#include "foundation/platform/gui/ctl_edit_p.h"

#include <algorithm>
#include <cassert>
#include <vector>

namespace orlex::detail {

void EditModel::SetText(const std::string& text) {
    m_text = text;
    Changed();
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
    m_anchor = Snap(start);
    m_caret = Snap(end);
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
    if (room < static_cast<long>(put.size())) {
        put.resize(room > 0 ? static_cast<size_t>(room) : 0);
        // A line break is kept whole or not at all.
        if (!put.empty() && put.back() == '\r' && text[put.size()] == '\n') put.pop_back();
    }
    if (put.empty() && s == e) return false;
    if (keepUndo) Remember();
    m_text.replace(static_cast<size_t>(s), static_cast<size_t>(e - s), put);
    Changed();
    m_anchor = m_caret = s + static_cast<int>(put.size());
    assert(m_caret <= static_cast<int>(m_text.size()));
    return true;
}

EditModel::Fit EditModel::ReplaceSelWithin(const std::string& text, int maxLines, bool keepUndo) {
    if (maxLines <= 0) return ReplaceSel(text, keepUndo) ? Fit::Replaced : Fit::Unchanged;
    // Everything the replacement touches, to put back as it was when the lines overflow;
    // the laid-out lines come back too, so a refusal costs no second layout.
    const int before = LineCount();
    std::string text0 = m_text, undo0 = m_undoText;
    std::vector<Line> lines0 = m_lines;
    const int anchor0 = m_anchor, caret0 = m_caret, undoAnchor0 = m_undoAnchor, undoCaret0 = m_undoCaret;
    const bool canUndo0 = m_canUndo;
    if (!ReplaceSel(text, keepUndo)) return Fit::Unchanged;
    const int after = LineCount();
    if (after <= maxLines || after <= before) return Fit::Replaced;
    m_text.swap(text0);
    m_undoText.swap(undo0);
    m_lines.swap(lines0);
    m_linesValid = true;
    m_anchor = anchor0;
    m_caret = caret0;
    m_undoAnchor = undoAnchor0;
    m_undoCaret = undoCaret0;
    m_canUndo = canUndo0;
    assert(LineCount() == before);
    return Fit::TooManyLines;
}

bool EditModel::Backspace() {
    int s = SelStart(), e = SelEnd();
    if (s == e) {
        if (m_caret == 0) return false;
        s = m_caret - 1;
        // A line break goes as a whole.
        if (s > 0 && m_text[static_cast<size_t>(s)] == '\n' && m_text[static_cast<size_t>(s) - 1] == '\r') --s;
    }
    Remember();  // before anything moves, so that undo puts the caret back too
    m_text.erase(static_cast<size_t>(s), static_cast<size_t>(e - s));
    Changed();
    m_anchor = m_caret = s;
    return true;
}

bool EditModel::DeleteForward() {
    int s = SelStart(), e = SelEnd();
    if (s == e) {
        if (m_caret >= static_cast<int>(m_text.size())) return false;
        e = m_caret + 1;
        if (m_text[static_cast<size_t>(m_caret)] == '\r' && e < static_cast<int>(m_text.size()) &&
            m_text[static_cast<size_t>(e)] == '\n')
            ++e;
    }
    Remember();
    m_text.erase(static_cast<size_t>(s), static_cast<size_t>(e - s));
    Changed();
    m_anchor = m_caret = s;
    return true;
}

int EditModel::Snap(int p) const {
    p = Clamp(p);
    if (p > 0 && p < static_cast<int>(m_text.size()) && m_text[static_cast<size_t>(p) - 1] == '\r' &&
        m_text[static_cast<size_t>(p)] == '\n')
        --p;
    return p;
}

void EditModel::PlaceCaret(int pos, bool extend) {
    m_caret = Snap(pos);
    if (!extend) m_anchor = m_caret;
    assert(Snap(m_caret) == m_caret && m_anchor >= 0 && m_anchor <= static_cast<int>(m_text.size()));
}

void EditModel::MoveLeft(bool extend) {
    // Without extending, a selection collapses to its start.
    if (!extend && HasSelection()) PlaceCaret(SelStart(), false);
    else PlaceCaret(m_caret - 1, extend);  // from after "\r\n" the snap lands before the '\r'
}

void EditModel::MoveRight(bool extend) {
    if (!extend && HasSelection()) {
        PlaceCaret(SelEnd(), false);
        return;
    }
    const bool crlf = m_caret + 1 < static_cast<int>(m_text.size()) && m_text[static_cast<size_t>(m_caret)] == '\r' &&
                      m_text[static_cast<size_t>(m_caret) + 1] == '\n';
    PlaceCaret(m_caret + (crlf ? 2 : 1), extend);
}

void EditModel::SetWrap(int width, const TextWidthFn& measure, long long key) {
    width = measure ? std::max(0, width) : 0;
    if (width == m_wrapWidth && key == m_wrapKey && static_cast<bool>(m_measure) == static_cast<bool>(measure)) return;
    m_wrapWidth = width;
    m_wrapKey = key;
    m_measure = measure;
    Changed();
}

const std::vector<EditModel::Line>& EditModel::Lines() const {
    if (m_linesValid) return m_lines;
    m_lines.clear();
    const int n = static_cast<int>(m_text.size());
    int at = 0;
    for (;;) {
        // One hard line: [at, end) before its break.
        const size_t nl = m_text.find('\n', static_cast<size_t>(at));
        const int brk = nl == std::string::npos ? n : static_cast<int>(nl);
        const int end = (brk > at && brk < n && m_text[static_cast<size_t>(brk) - 1] == '\r') ? brk - 1 : brk;
        int from = at;
        while (m_wrapWidth > 0 && from < end &&
               m_measure(m_text.substr(static_cast<size_t>(from), static_cast<size_t>(end - from))) > m_wrapWidth) {
            // The most characters that fit (widths grow with length), at least one.
            int lo = 1, hi = end - from;
            while (lo < hi) {
                const int mid = (lo + hi + 1) / 2;
                if (m_measure(m_text.substr(static_cast<size_t>(from), static_cast<size_t>(mid))) <= m_wrapWidth) lo = mid;
                else hi = mid - 1;
            }
            int cut = from + lo;
            // Words stay whole: the line ends after the last blank that fits, blanks after
            // it stay on this line.
            if (m_text[static_cast<size_t>(cut)] != ' ') {
                int blank = cut;
                while (blank > from && m_text[static_cast<size_t>(blank) - 1] != ' ') --blank;
                if (blank > from) cut = blank;
            }
            while (cut < end && m_text[static_cast<size_t>(cut)] == ' ') ++cut;
            m_lines.push_back({from, cut - from});
            from = cut;
        }
        // What is left after the last wrap; an empty hard line is a line of its own.
        if (from < end || from == at) m_lines.push_back({from, end - from});
        if (nl == std::string::npos) break;
        at = static_cast<int>(nl) + 1;
    }
    m_linesValid = true;
    return m_lines;
}

int EditModel::LineCount() const { return static_cast<int>(Lines().size()); }

int EditModel::LineOf(int pos) const {
    pos = Clamp(pos);
    const std::vector<Line>& lines = Lines();
    // The last line starting at or before pos.
    auto it = std::upper_bound(lines.begin(), lines.end(), pos, [](int p, const Line& l) { return p < l.start; });
    return std::max(0, static_cast<int>(it - lines.begin()) - 1);
}

int EditModel::LineStart(int line) const {
    const std::vector<Line>& lines = Lines();
    return line < 0 || line >= static_cast<int>(lines.size()) ? -1 : lines[static_cast<size_t>(line)].start;
}

int EditModel::LineLength(int line) const {
    const std::vector<Line>& lines = Lines();
    return line < 0 || line >= static_cast<int>(lines.size()) ? 0 : lines[static_cast<size_t>(line)].length;
}

void EditModel::LineHome(bool extend) { PlaceCaret(LineStart(LineOf(m_caret)), extend); }

void EditModel::LineEnd(bool extend) {
    const int line = LineOf(m_caret);
    PlaceCaret(LineStart(line) + LineLength(line), extend);
}

int EditModel::PosAtX(int line, int x, const TextWidthFn& width) const {
    const int start = LineStart(line);
    if (start < 0) return static_cast<int>(m_text.size());
    const int n = LineLength(line);
    const std::string text = m_text.substr(static_cast<size_t>(start), static_cast<size_t>(n));
    std::vector<int> offsets(static_cast<size_t>(n) + 1, 0);
    for (int i = 1; i <= n; ++i) offsets[static_cast<size_t>(i)] = width(text.substr(0, static_cast<size_t>(i)));
    return start + HitTestOffsets(offsets.data(), n, x);
}

int EditModel::XOf(int pos, const TextWidthFn& width) const {
    pos = Clamp(pos);
    const int start = LineStart(LineOf(pos));
    return width(m_text.substr(static_cast<size_t>(start), static_cast<size_t>(pos - start)));
}

void EditModel::MoveLines(int lines, bool extend, const TextWidthFn& width) {
    const int from = LineOf(m_caret);
    const int to = std::max(0, std::min(from + lines, LineCount() - 1));
    if (to == from) {
        if (!extend) m_anchor = m_caret;
        return;
    }
    PlaceCaret(PosAtX(to, XOf(m_caret, width), width), extend);
}

void EditModel::Home(bool extend) { PlaceCaret(0, extend); }
void EditModel::End(bool extend) { PlaceCaret(static_cast<int>(m_text.size()), extend); }

bool EditModel::Undo() {
    if (!m_canUndo) return false;
    std::swap(m_text, m_undoText);
    Changed();
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
