// Private: the tokenizer of the text forms in which the library keeps its menus and dialog
// templates (resources/menus/*.menu, resources/dialogs/*.dlg), and the loading of such a
// text from the library's resources.
#pragma once

#include <string>

#include "foundation/platform/wintypes.h"

namespace orlex::detail {

struct Token {
    enum Kind { End, Word, String, Number, Symbol } kind = End;
    std::string text;     // word, string contents (escapes resolved) or symbol character
    long long number = 0;
    int line = 0;
};

// Splits text into words ([A-Za-z_][A-Za-z0-9_]*), "strings" (with \" \\ \t \n escapes),
// numbers (decimal, 0x hex, with an optional minus sign) and single-character symbols.
// Commas are skipped; '#' comments run to the end of the line. A string that doesn't end
// on its line is a Symbol token with text "\"" so that parsers refuse it.
class TextTokens {
public:
    explicit TextTokens(const std::string& text) : m_text(text) {}
    Token Next();
    const Token& Peek();

private:
    Token Scan();
    const std::string& m_text;
    size_t m_pos = 0;
    int m_line = 1;
    bool m_peeked = false;
    Token m_peek;
};

// The text of the library's resource of this type and id; false when there is none.
bool LoadResourceText(UINT type, UINT id, std::string& text);

}  // namespace orlex::detail
