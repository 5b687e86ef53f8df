#include "ui/resources/RcLexer.h"

#include <cwctype>

namespace cadhost::ui::rc {
namespace {

bool IsNameStart(wchar_t c) { return (c >= L'A' && c <= L'Z') || (c >= L'a' && c <= L'z') || c == L'_'; }
bool IsNamePart(wchar_t c) { return IsNameStart(c) || (c >= L'0' && c <= L'9'); }

class Lexer {
public:
    Lexer(const std::wstring& text, int file, std::vector<Token>& tokens)
        : m_text(text), m_file(file), m_tokens(tokens) {}

    bool Run(std::wstring& error, int& errorLine) {
        while (m_pos < m_text.size()) {
            wchar_t c = m_text[m_pos];
            if (c == L'\n') {
                ++m_line;
                ++m_pos;
                m_lineStart = true;
            } else if (c == L' ' || c == L'\t' || c == L'\r' || c == L'\f' || c == L'\v' || c == 0xFEFF) {
                ++m_pos;
            } else if (c == L'/' && Peek(1) == L'/') {
                while (m_pos < m_text.size() && m_text[m_pos] != L'\n') ++m_pos;
            } else if (c == L'/' && Peek(1) == L'*') {
                if (!SkipBlockComment()) return Fail(L"a comment that starts here is never closed", error, errorLine);
            } else if (c == L'#' && m_lineStart) {
                if (!Directive()) return Fail(m_why, error, errorLine);
            } else {
                m_lineStart = false;
                if (!Word()) return Fail(m_why, error, errorLine);
            }
        }
        Token end;
        end.kind = Token::Kind::End;
        end.file = m_file;
        end.line = m_line;
        m_tokens.push_back(end);
        return true;
    }

private:
    wchar_t Peek(size_t ahead) const {
        return m_pos + ahead < m_text.size() ? m_text[m_pos + ahead] : L'\0';
    }

    bool Fail(const std::wstring& why, std::wstring& error, int& errorLine) {
        error = why;
        errorLine = m_failLine ? m_failLine : m_line;
        return false;
    }

    bool SkipBlockComment() {
        m_failLine = m_line;
        m_pos += 2;
        while (m_pos < m_text.size()) {
            if (m_text[m_pos] == L'*' && Peek(1) == L'/') {
                m_pos += 2;
                m_failLine = 0;
                return true;
            }
            if (m_text[m_pos] == L'\n') ++m_line;
            ++m_pos;
        }
        return false;
    }

    // A directive takes the rest of its line, and the lines that a
    // backslash at the end continues it on.
    bool Directive() {
        Token token;
        token.kind = Token::Kind::Directive;
        token.file = m_file;
        token.line = m_line;
        ++m_pos;
        while (m_pos < m_text.size() && (m_text[m_pos] == L' ' || m_text[m_pos] == L'\t')) ++m_pos;
        while (m_pos < m_text.size() && IsNamePart(m_text[m_pos])) token.text += m_text[m_pos++];
        std::wstring rest;
        bool quoted = false;
        while (m_pos < m_text.size()) {
            wchar_t c = m_text[m_pos];
            if (c == L'\\' && (Peek(1) == L'\n' || (Peek(1) == L'\r' && Peek(2) == L'\n'))) {
                m_pos += Peek(1) == L'\r' ? 3 : 2;
                ++m_line;
                rest += L' ';
                continue;
            }
            if (c == L'\n') break;
            if (!quoted && c == L'/' && Peek(1) == L'/') {
                while (m_pos < m_text.size() && m_text[m_pos] != L'\n') ++m_pos;
                break;
            }
            if (!quoted && c == L'/' && Peek(1) == L'*') {
                if (!SkipBlockComment()) {
                    m_why = L"a comment that starts here is never closed";
                    return false;
                }
                rest += L' ';
                continue;
            }
            if (c == L'"') quoted = !quoted;
            if (c != L'\r') rest += c;
            ++m_pos;
        }
        token.rest = rest;
        m_tokens.push_back(std::move(token));
        return true;
    }

    bool Word() {
        wchar_t c = m_text[m_pos];
        Token token;
        token.file = m_file;
        token.line = m_line;
        if ((c == L'L' || c == L'l') && Peek(1) == L'"') {
            ++m_pos;
            return String(token);
        }
        if (c == L'"') return String(token);
        if (c >= L'0' && c <= L'9') return Number(token);
        if (IsNameStart(c)) {
            token.kind = Token::Kind::Identifier;
            while (m_pos < m_text.size() && IsNamePart(m_text[m_pos])) token.text += m_text[m_pos++];
            m_tokens.push_back(std::move(token));
            return true;
        }
        static const wchar_t* const pairs[] = {L"<<", L">>", L"<=", L">=", L"==", L"!=", L"&&", L"||"};
        for (const wchar_t* pair : pairs) {
            if (c == pair[0] && Peek(1) == pair[1]) {
                token.kind = Token::Kind::Punct;
                token.text = pair;
                m_pos += 2;
                m_tokens.push_back(std::move(token));
                return true;
            }
        }
        if (std::wstring(L",|&+-~!(){}*/%<>^=").find(c) != std::wstring::npos) {
            token.kind = Token::Kind::Punct;
            token.text = std::wstring(1, c);
            ++m_pos;
            m_tokens.push_back(std::move(token));
            return true;
        }
        m_why = L"unexpected character '" + std::wstring(1, c) + L"'";
        return false;
    }

    bool Number(Token& token) {
        token.kind = Token::Kind::Number;
        size_t start = m_pos;
        uint64_t value = 0;
        bool hex = m_text[m_pos] == L'0' && (Peek(1) == L'x' || Peek(1) == L'X');
        if (hex) {
            m_pos += 2;
            size_t digits = 0;
            while (m_pos < m_text.size() && std::iswxdigit(m_text[m_pos])) {
                wchar_t d = m_text[m_pos++];
                value = value * 16 + static_cast<uint64_t>(std::iswdigit(d) ? d - L'0' : std::towlower(d) - L'a' + 10);
                if (value > 0xFFFFFFFFull) return TooLarge(start);
                ++digits;
            }
            if (digits == 0) return Malformed(start);
        } else {
            while (m_pos < m_text.size() && m_text[m_pos] >= L'0' && m_text[m_pos] <= L'9') {
                value = value * 10 + static_cast<uint64_t>(m_text[m_pos++] - L'0');
                if (value > 0xFFFFFFFFull) return TooLarge(start);
            }
        }
        while (m_pos < m_text.size() && (m_text[m_pos] == L'L' || m_text[m_pos] == L'l' || m_text[m_pos] == L'U' ||
                                         m_text[m_pos] == L'u'))
            ++m_pos;
        if (m_pos < m_text.size() && IsNamePart(m_text[m_pos])) return Malformed(start);
        token.number = static_cast<int64_t>(value);
        token.text = m_text.substr(start, m_pos - start);
        m_tokens.push_back(std::move(token));
        return true;
    }

    bool Malformed(size_t start) {
        size_t end = start;
        while (end < m_text.size() && (IsNamePart(m_text[end]) || m_text[end] == L'-')) ++end;
        m_why = L"\"" + m_text.substr(start, end - start) +
                L"\" is no number (a name that starts with a digit needs double quotes)";
        return false;
    }

    bool TooLarge(size_t start) {
        size_t end = start;
        while (end < m_text.size() && IsNamePart(m_text[end])) ++end;
        m_why = L"the number " + m_text.substr(start, end - start) + L" is too large";
        return false;
    }

    // A quoted text: "" and \" are a double quote; \n, \t, \r, \a, \\, octal
    // and \x escapes as the resource compiler reads them.
    bool String(Token& token) {
        token.kind = Token::Kind::String;
        ++m_pos;
        std::wstring value;
        while (true) {
            if (m_pos >= m_text.size() || m_text[m_pos] == L'\n') {
                m_why = L"a text in double quotes is not closed on its line";
                return false;
            }
            wchar_t c = m_text[m_pos++];
            if (c == L'"') {
                if (m_pos < m_text.size() && m_text[m_pos] == L'"') {
                    value += L'"';
                    ++m_pos;
                    continue;
                }
                break;
            }
            if (c != L'\\') {
                if (c != L'\r') value += c;
                continue;
            }
            if (m_pos >= m_text.size()) continue;
            wchar_t e = m_text[m_pos++];
            switch (e) {
            case L'n': value += L'\n'; break;
            case L't': value += L'\t'; break;
            case L'r': value += L'\r'; break;
            case L'a': value += L'\a'; break;
            case L'\\': value += L'\\'; break;
            case L'"': value += L'"'; break;
            case L'x':
            case L'X': {
                unsigned code = 0;
                int digits = 0;
                while (digits < 4 && m_pos < m_text.size() && std::iswxdigit(m_text[m_pos])) {
                    wchar_t d = m_text[m_pos++];
                    code = code * 16 + static_cast<unsigned>(std::iswdigit(d) ? d - L'0' : std::towlower(d) - L'a' + 10);
                    ++digits;
                }
                value += static_cast<wchar_t>(code);
                break;
            }
            default:
                if (e >= L'0' && e <= L'7') {
                    unsigned code = static_cast<unsigned>(e - L'0');
                    for (int digits = 1; digits < 3 && m_pos < m_text.size() && m_text[m_pos] >= L'0' &&
                                         m_text[m_pos] <= L'7';
                         ++digits)
                        code = code * 8 + static_cast<unsigned>(m_text[m_pos++] - L'0');
                    if (code != 0) value += static_cast<wchar_t>(code);  // "\0" ends texts of TEXTINCLUDE
                } else {
                    value += L'\\';
                    value += e;
                }
            }
        }
        token.text = std::move(value);
        m_tokens.push_back(std::move(token));
        return true;
    }

    const std::wstring& m_text;
    int m_file;
    std::vector<Token>& m_tokens;
    size_t m_pos = 0;
    int m_line = 1;
    int m_failLine = 0;
    bool m_lineStart = true;
    std::wstring m_why;
};

}  // namespace

bool Token::IsWord(const wchar_t* word) const {
    if (kind != Kind::Identifier) return false;
    size_t i = 0;
    for (; word[i] && i < text.size(); ++i) {
        if (std::towupper(text[i]) != std::towupper(word[i])) return false;
    }
    return !word[i] && i == text.size();
}

bool Tokenize(const std::wstring& text, int file, std::vector<Token>& tokens, std::wstring& error, int& errorLine) {
    return Lexer(text, file, tokens).Run(error, errorLine);
}

}  // namespace cadhost::ui::rc
