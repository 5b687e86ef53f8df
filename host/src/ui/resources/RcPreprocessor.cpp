#include "ui/resources/RcPreprocessor.h"

#include <tchar.h>

#include <map>
#include <optional>
#include <set>

#include "core/Utf8.h"
#include "ui/resources/RcExpression.h"
#include "ui/resources/RcSymbols.h"

namespace cadhost::ui::rc {
namespace {

constexpr int kMaxIncludeDepth = 16;
constexpr int kMaxExpansionDepth = 64;
constexpr size_t kMaxTokens = 4'000'000;

struct OpenCondition {
    bool active;     // the lines of this branch count
    bool taken;      // a branch of this #if was taken already
    bool sawElse;
    bool outerActive;
    int file;
    int line;
};

class Preprocessor {
public:
    Preprocessor(const std::vector<SourceFile>& sources, Preprocessed& result)
        : m_sources(sources), m_result(result) {}

    bool Run(std::wstring& error) {
        for (const SourceFile& source : m_sources) m_result.files.push_back(source.name);
        m_tokens.resize(m_sources.size());
        m_lexed.resize(m_sources.size(), false);
        if (m_sources.empty()) {
            error = L"(script): there is no resource script";
            return false;
        }
        if (!File(0, 0)) {
            error = m_error;
            return false;
        }
        Token end;
        end.kind = Token::Kind::End;
        end.line = m_lastLine;
        m_result.tokens.push_back(end);
        return true;
    }

private:
    bool Fail(int file, int line, const std::wstring& why) {
        m_error = m_result.files[static_cast<size_t>(file)] + L":" + std::to_wstring(line) + L": " + why;
        return false;
    }

    bool Lex(int file) {
        if (m_lexed[static_cast<size_t>(file)]) return true;
        std::wstring text = FromUtf8(m_sources[static_cast<size_t>(file)].text);
        std::wstring why;
        int line = 0;
        if (!Tokenize(text, file, m_tokens[static_cast<size_t>(file)], why, line)) return Fail(file, line, why);
        m_lexed[static_cast<size_t>(file)] = true;
        return true;
    }

    bool Active() const { return m_conditions.empty() || m_conditions.back().active; }

    bool File(int file, int depth) {
        if (!Lex(file)) return false;
        size_t conditionsAtStart = m_conditions.size();
        const std::vector<Token>& tokens = m_tokens[static_cast<size_t>(file)];
        for (const Token& token : tokens) {
            if (token.kind == Token::Kind::End) {
                m_lastLine = token.line;
                break;
            }
            if (token.kind == Token::Kind::Directive) {
                if (!Directive(token, depth)) return false;
                continue;
            }
            if (!Active()) continue;
            if (!Emit(token, 0)) return false;
        }
        if (m_conditions.size() > conditionsAtStart) {
            const OpenCondition& open = m_conditions.back();
            return Fail(open.file, open.line, L"this #if has no #endif");
        }
        return true;
    }

    // Puts a token out, with defined names replaced by their definitions.
    bool Emit(const Token& token, int depth) {
        if (m_result.tokens.size() > kMaxTokens) return Fail(token.file, token.line, L"the script is too long");
        if (token.kind != Token::Kind::Identifier) {
            m_result.tokens.push_back(token);
            return true;
        }
        auto user = m_defines.find(token.text);
        if (user != m_defines.end()) {
            if (depth > kMaxExpansionDepth || m_expanding.count(token.text))
                return Fail(token.file, token.line, L"the definition of " + token.text + L" refers to itself");
            m_expanding.insert(token.text);
            for (Token part : user->second) {
                part.file = token.file;
                part.line = token.line;
                if (!Emit(part, depth + 1)) return false;
            }
            m_expanding.erase(token.text);
            return true;
        }
        if (!m_undefined.count(token.text)) {
            const auto& builtins = BuiltinSymbols();
            auto builtin = builtins.find(token.text);
            if (builtin != builtins.end()) {
                Token number = token;
                number.kind = Token::Kind::Number;
                number.number = builtin->second;
                m_result.tokens.push_back(number);
                return true;
            }
        }
        m_result.tokens.push_back(token);
        return true;
    }

    bool IsDefined(const std::wstring& name) const {
        if (m_defines.count(name)) return true;
        return !m_undefined.count(name) && BuiltinSymbols().count(name);
    }

    // The value of a condition: "defined NAME" and "defined(NAME)" first,
    // then the definitions, then any name left counts 0.
    bool Evaluate(const Token& directive, bool& value) {
        std::vector<Token> raw;
        std::wstring why;
        int line = 0;
        if (!Tokenize(directive.rest, directive.file, raw, why, line)) return Fail(directive.file, directive.line, why);
        std::vector<Token> resolved;
        for (size_t i = 0; i < raw.size(); ++i) {
            if (raw[i].Is(Token::Kind::Identifier, L"defined")) {
                bool paren = i + 1 < raw.size() && raw[i + 1].IsPunct(L"(");
                size_t nameAt = i + (paren ? 2 : 1);
                if (nameAt >= raw.size() || raw[nameAt].kind != Token::Kind::Identifier ||
                    (paren && (nameAt + 1 >= raw.size() || !raw[nameAt + 1].IsPunct(L")"))))
                    return Fail(directive.file, directive.line, L"\"defined\" needs a name");
                Token number = raw[i];
                number.kind = Token::Kind::Number;
                number.number = IsDefined(raw[nameAt].text) ? 1 : 0;
                resolved.push_back(number);
                i = nameAt + (paren ? 1 : 0);
                continue;
            }
            resolved.push_back(raw[i]);
        }
        // Replace definitions through Emit into a side list.
        std::vector<Token> saved;
        saved.swap(m_result.tokens);
        bool ok = true;
        for (Token& token : resolved) {
            token.line = directive.line;
            if (token.kind == Token::Kind::End) break;
            if (!Emit(token, 0)) {
                ok = false;
                break;
            }
        }
        std::vector<Token> expanded;
        expanded.swap(m_result.tokens);
        m_result.tokens.swap(saved);
        if (!ok) return false;
        if (expanded.empty()) return Fail(directive.file, directive.line, L"#" + directive.text + L" needs a condition");
        Token end;
        end.kind = Token::Kind::End;
        expanded.push_back(end);
        size_t pos = 0;
        int64_t number = 0;
        ExpressionReader reader(expanded, pos, true);
        if (!reader.Read(number, why)) return Fail(directive.file, directive.line, why);
        if (expanded[pos].kind != Token::Kind::End)
            return Fail(directive.file, directive.line, L"the condition goes on after its end at " + Describe(expanded[pos]));
        value = number != 0;
        return true;
    }

    bool NameArgument(const Token& directive, std::wstring& name, std::vector<Token>* rest) {
        std::vector<Token> raw;
        std::wstring why;
        int line = 0;
        if (!Tokenize(directive.rest, directive.file, raw, why, line)) return Fail(directive.file, directive.line, why);
        if (raw.empty() || raw[0].kind != Token::Kind::Identifier)
            return Fail(directive.file, directive.line, L"#" + directive.text + L" needs a name");
        name = raw[0].text;
        if (rest) {
            // "#define F(x)": a parenthesis right after the name.
            size_t after = directive.rest.find(name) + name.size();
            if (after < directive.rest.size() && directive.rest[after] == L'(')
                return Fail(directive.file, directive.line, L"#define of " + name + L" with arguments is not supported");
            for (size_t i = 1; i < raw.size() && raw[i].kind != Token::Kind::End; ++i) {
                raw[i].line = directive.line;
                rest->push_back(raw[i]);
            }
        }
        return true;
    }

    bool Directive(const Token& directive, int depth) {
        const std::wstring& name = directive.text;
        int file = directive.file;
        int line = directive.line;
        if (name == L"if" || name == L"ifdef" || name == L"ifndef") {
            bool outer = Active();
            bool value = false;
            if (outer) {
                if (name == L"if") {
                    if (!Evaluate(directive, value)) return false;
                } else {
                    std::wstring symbol;
                    if (!NameArgument(directive, symbol, nullptr)) return false;
                    value = IsDefined(symbol) == (name == L"ifdef");
                }
            }
            m_conditions.push_back({outer && value, value, false, outer, file, line});
            return true;
        }
        if (name == L"elif" || name == L"else" || name == L"endif") {
            if (m_conditions.empty()) return Fail(file, line, L"#" + name + L" without #if");
            OpenCondition& open = m_conditions.back();
            if (name == L"endif") {
                m_conditions.pop_back();
                return true;
            }
            if (open.sawElse) return Fail(file, line, L"#" + name + L" after #else");
            if (name == L"else") {
                open.sawElse = true;
                open.active = open.outerActive && !open.taken;
                open.taken = true;
                return true;
            }
            bool value = false;
            if (open.outerActive && !open.taken && !Evaluate(directive, value)) return false;
            OpenCondition& again = m_conditions.back();
            again.active = again.outerActive && !again.taken && value;
            again.taken = again.taken || value;
            return true;
        }
        if (!Active()) return true;
        if (name == L"include") return Include(directive, depth);
        if (name == L"define") {
            std::wstring symbol;
            std::vector<Token> value;
            if (!NameArgument(directive, symbol, &value)) return false;
            m_defines[symbol] = std::move(value);
            m_undefined.erase(symbol);
            return true;
        }
        if (name == L"undef") {
            std::wstring symbol;
            if (!NameArgument(directive, symbol, nullptr)) return false;
            m_defines.erase(symbol);
            m_undefined.insert(symbol);
            return true;
        }
        if (name == L"pragma" || name == L"line") return true;
        if (name == L"error") return Fail(file, line, L"#error" + directive.rest);
        return Fail(file, line, L"unknown directive #" + name);
    }

    bool Include(const Token& directive, int depth) {
        std::wstring text = directive.rest;
        size_t first = text.find_first_not_of(L" \t");
        if (first == std::wstring::npos) return Fail(directive.file, directive.line, L"#include needs a file name");
        wchar_t open = text[first];
        wchar_t close = open == L'<' ? L'>' : open == L'"' ? L'"' : 0;
        size_t end = close ? text.find(close, first + 1) : std::wstring::npos;
        if (!close || end == std::wstring::npos)
            return Fail(directive.file, directive.line, L"#include needs a file name in double quotes or angle brackets");
        std::wstring name = text.substr(first + 1, end - first - 1);
        size_t slash = name.find_last_of(L"/\\");
        std::wstring base = slash == std::wstring::npos ? name : name.substr(slash + 1);
        for (size_t i = 1; i < m_sources.size(); ++i) {
            if (_wcsicmp(m_sources[i].name.c_str(), base.c_str()) == 0) {
                if (depth + 1 > kMaxIncludeDepth)
                    return Fail(directive.file, directive.line, L"#include goes deeper than " +
                                                                    std::to_wstring(kMaxIncludeDepth) + L" files");
                return File(static_cast<int>(i), depth + 1);
            }
        }
        if (IsSystemHeader(name) || open == L'<') return true;
        return Fail(directive.file, directive.line, L"cannot find the file " + name + L" to include");
    }

    const std::vector<SourceFile>& m_sources;
    Preprocessed& m_result;
    std::vector<std::vector<Token>> m_tokens;
    std::vector<bool> m_lexed;
    std::vector<OpenCondition> m_conditions;
    std::map<std::wstring, std::vector<Token>> m_defines;
    std::set<std::wstring> m_undefined;
    std::set<std::wstring> m_expanding;
    std::wstring m_error;
    int m_lastLine = 1;
};

}  // namespace

bool Preprocess(const std::vector<SourceFile>& sources, Preprocessed& result, std::wstring& error) {
    result = Preprocessed();
    return Preprocessor(sources, result).Run(error);
}

}  // namespace cadhost::ui::rc
