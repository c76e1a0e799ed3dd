// Private: the text model of an edit control, apart from its window and drawing.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

// Width in pixels of a piece of text, as the view measures it.
using TextWidthFn = std::function<int(const std::string&)>;

// Text with a selection from anchor to caret (either order) and one level of undo.
// Positions are byte offsets of the 8-bit text, 0..size. Lines end at "\r\n" (two
// positions, the caret never between them) or a lone "\n", and, when wrapping, where a
// line grows wider than the wrap width: after the last blank that fits, else after the
// last character that fits. With one line the model is the single-line edit's.
class EditModel {
public:
    const std::string& Text() const { return m_text; }
    int Caret() const { return m_caret; }
    int SelStart() const { return m_anchor < m_caret ? m_anchor : m_caret; }
    int SelEnd() const { return m_anchor < m_caret ? m_caret : m_anchor; }
    bool HasSelection() const { return m_anchor != m_caret; }
    int Limit() const { return m_limit; }
    // 0 lifts the limit (to the platform's largest).
    void SetLimit(int limit) { m_limit = limit > 0 ? limit : 0x7FFFFFFE; }

    // Replaces everything; the caret goes to the start, undo is forgotten.
    void SetText(const std::string& text);
    // Start -1 takes the selection away (the caret stays); end -1 or past the end means the
    // end; start > end selects backwards (the caret at end).
    void SetSel(int start, int end);
    // Replaces the selection with text, cut to the limit; false (nothing changes) when no
    // character of it fits and the selection was empty. Keeps an undo step when asked.
    bool ReplaceSel(const std::string& text, bool keepUndo = true);
    // As ReplaceSel, for an edit that shows at most maxLines lines and does not scroll up
    // or down: text after which the lines would be more than maxLines (and more than before,
    // so text set longer can still be edited) is refused whole, nothing changes. maxLines
    // <= 0: no cap.
    enum class Fit { Replaced, Unchanged, TooManyLines };
    Fit ReplaceSelWithin(const std::string& text, int maxLines, bool keepUndo = true);
    // Backspace / Delete: the selection, else the character before / after the caret.
    bool Backspace();
    bool DeleteForward();
    // Moves the caret by one character (a line break counts as one step) or to an end;
    // extend keeps the anchor.
    void MoveLeft(bool extend);
    void MoveRight(bool extend);
    void Home(bool extend);
    void End(bool extend);
    // Start / end of the caret's line (before its break).
    void LineHome(bool extend);
    void LineEnd(bool extend);
    // Moves the caret `lines` lines down (negative: up), clamped to the first and last line,
    // to the position nearest the caret's present x; width measures a line's prefixes.
    void MoveLines(int lines, bool extend, const TextWidthFn& width);

    // Wraps lines wider than width pixels as measured by `width` (0: no wrapping). `key`
    // names the measure (the font): the lines are laid out again when it or width changes.
    void SetWrap(int width, const TextWidthFn& measure, long long key);
    // Lines: their count (at least 1), the line holding a position (0..size; a position
    // where a wrapped line ends belongs to the next), where a line starts (-1 past the last
    // line) and how long it is without its break.
    int LineCount() const;
    int LineOf(int pos) const;
    int LineStart(int line) const;
    int LineLength(int line) const;
    // The position in the line nearest to x pixels from its start.
    int PosAtX(int line, int x, const TextWidthFn& width) const;
    // Pixels from its line's start to pos.
    int XOf(int pos, const TextWidthFn& width) const;
    // Puts the caret at pos (extend: keeping the anchor).
    void PlaceCaret(int pos, bool extend);
    bool CanUndo() const { return m_canUndo; }
    // Swaps in the text before the last change (an undo can be undone).
    bool Undo();
    void EmptyUndo() { m_canUndo = false; }

private:
    struct Line {
        int start, length;
    };
    // A position moved out of the middle of a "\r\n" to the break's start.
    int Snap(int p) const;
    // The lines, laid out again after the text or the wrap changed.
    const std::vector<Line>& Lines() const;
    void Changed() { m_linesValid = false; }
    mutable std::vector<Line> m_lines;
    mutable bool m_linesValid = false;
    int m_wrapWidth = 0;
    long long m_wrapKey = 0;
    TextWidthFn m_measure;
    int Clamp(int p) const { return p < 0 ? 0 : (p > static_cast<int>(m_text.size()) ? static_cast<int>(m_text.size()) : p); }
    void Remember();
    std::string m_text;
    int m_anchor = 0, m_caret = 0;
    int m_limit = 30000;
    bool m_canUndo = false;
    std::string m_undoText;
    int m_undoAnchor = 0, m_undoCaret = 0;
};

// The caret position for a pointer at x (pixels from the text's start), given the pixel
// offset of the end of each prefix: offsets[i] is the width of the first i characters.
// The nearer of the two character edges wins.
int HitTestOffsets(const int* offsets, int count, int x);

}  // namespace orlex::detail
