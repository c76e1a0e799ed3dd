#include "foundation/platform/gui/dlg_restext_p.h"

#include <cctype>

namespace orlex::detail {

const Token& TextTokens::Peek() {
    if (!m_peeked) {
        m_peek = Scan();
        m_peeked = true;
    }
    return m_peek;
}

Token TextTokens::Next() {
    if (m_peeked) {
        m_peeked = false;
        return m_peek;
    }
    return Scan();
}

Token TextTokens::Scan() {
    const std::string& s = m_text;
    while (m_pos < s.size()) {
        char c = s[m_pos];
        if (c == '\n') {
            ++m_line;
            ++m_pos;
        } else if (c == ',' || std::isspace(static_cast<unsigned char>(c))) {
            ++m_pos;
        } else if (c == '#') {
            while (m_pos < s.size() && s[m_pos] != '\n') ++m_pos;
        } else {
            break;
        }
    }
    Token t;
    t.line = m_line;
    if (m_pos >= s.size()) return t;
    char c = s[m_pos];
    if (std::isalpha(static_cast<unsigned char>(c)) || c == '_') {
        size_t b = m_pos;
        while (m_pos < s.size() && (std::isalnum(static_cast<unsigned char>(s[m_pos])) || s[m_pos] == '_')) ++m_pos;
        t.kind = Token::Word;
        t.text = s.substr(b, m_pos - b);
        return t;
    }
    if (c == '"') {
        ++m_pos;
        std::string out;
        while (m_pos < s.size() && s[m_pos] != '"' && s[m_pos] != '\n') {
            char ch = s[m_pos++];
            if (ch == '\\' && m_pos < s.size() && s[m_pos] != '\n') {
                char e = s[m_pos++];
                ch = e == 't' ? '\t' : e == 'n' ? '\n' : e;
            }
            out += ch;
        }
        if (m_pos >= s.size() || s[m_pos] != '"') {
            t.kind = Token::Symbol;
            t.text = "\"";
            return t;
        }
        ++m_pos;
        t.kind = Token::String;
        t.text = std::move(out);
        return t;
    }
    bool negative = c == '-' && m_pos + 1 < s.size() && std::isdigit(static_cast<unsigned char>(s[m_pos + 1]));
    if (std::isdigit(static_cast<unsigned char>(c)) || negative) {
        if (negative) ++m_pos;
        int base = 10;
        if (s[m_pos] == '0' && m_pos + 1 < s.size() && (s[m_pos + 1] == 'x' || s[m_pos + 1] == 'X')) {
            base = 16;
            m_pos += 2;
        }
        long long v = 0;
        bool any = false;
        while (m_pos < s.size()) {
            int d = std::isdigit(static_cast<unsigned char>(s[m_pos])) ? s[m_pos] - '0'
                    : (base == 16 && std::isxdigit(static_cast<unsigned char>(s[m_pos])))
                        ? std::tolower(static_cast<unsigned char>(s[m_pos])) - 'a' + 10
                        : -1;
            if (d < 0) break;
            // Resource numbers are 32-bit; anything longer is refused rather than wrapped.
            if (v > 0xFFFFFFFFLL) break;
            v = v * base + d;
            any = true;
            ++m_pos;
        }
        if (!any || v > 0xFFFFFFFFLL) {
            t.kind = Token::Symbol;
            t.text = "?";
            return t;
        }
        t.kind = Token::Number;
        t.number = negative ? -v : v;
        return t;
    }
    ++m_pos;
    t.kind = Token::Symbol;
    t.text = std::string(1, c);
    return t;
}

}  // namespace orlex::detail
