#include "app/Lisp.h"

#include <cwchar>
#include <cwctype>
#include <stdexcept>

namespace cadhost {
namespace {

struct LispError : std::runtime_error {
    explicit LispError(std::wstring message) : std::runtime_error("lisp"), text(std::move(message)) {}
    std::wstring text;
};

std::wstring Upper(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(c));
    return text;
}

class Reader {
public:
    explicit Reader(const std::wstring& text) : m_text(text) {}

    bool AtEnd() {
        SkipBlanks();
        return m_pos >= m_text.size();
    }

    LispValue Read(int depth = 0) {
        if (depth > 200) throw LispError(L"too many nested lists");
        SkipBlanks();
        if (m_pos >= m_text.size()) throw LispError(L"malformed list on input");
        wchar_t c = m_text[m_pos];
        if (c == L'(') {
            ++m_pos;
            LispValue list{LispValue::Kind::List};
            for (;;) {
                SkipBlanks();
                if (m_pos >= m_text.size()) throw LispError(L"malformed list on input");
                if (m_text[m_pos] == L')') {
                    ++m_pos;
                    return list;
                }
                list.items.push_back(Read(depth + 1));
            }
        }
        if (c == L')') throw LispError(L"extra right paren on input");
        if (c == L'"') return ReadString();
        return ReadAtom();
    }

private:
    void SkipBlanks() {
        while (m_pos < m_text.size()) {
            if (std::iswspace(m_text[m_pos])) {
                ++m_pos;
            } else if (m_text[m_pos] == L';') {
                while (m_pos < m_text.size() && m_text[m_pos] != L'\n') ++m_pos;
            } else {
                break;
            }
        }
    }

    LispValue ReadString() {
        ++m_pos;
        std::wstring value;
        while (m_pos < m_text.size()) {
            wchar_t c = m_text[m_pos++];
            if (c == L'"') return LispValue::String(std::move(value));
            if (c == L'\\' && m_pos < m_text.size()) {
                wchar_t e = m_text[m_pos++];
                switch (e) {
                case L'n': value += L'\n'; break;
                case L'r': value += L'\r'; break;
                case L't': value += L'\t'; break;
                case L'e': value += L'\x1B'; break;
                default: value += e; break;
                }
            } else {
                value += c;
            }
        }
        throw LispError(L"malformed string on input");
    }

    LispValue ReadAtom() {
        size_t start = m_pos;
        while (m_pos < m_text.size() && !std::iswspace(m_text[m_pos]) && m_text[m_pos] != L'(' &&
               m_text[m_pos] != L')' && m_text[m_pos] != L'"' && m_text[m_pos] != L';')
            ++m_pos;
        std::wstring atom = m_text.substr(start, m_pos - start);
        wchar_t* end = nullptr;
        double number = std::wcstod(atom.c_str(), &end);
        if (end && *end == L'\0' && !atom.empty() && (std::iswdigit(atom[0]) || atom[0] == L'-' || atom[0] == L'.'))
            return LispValue{LispValue::Kind::Number, atom, number};
        std::wstring upper = Upper(atom);
        if (upper == L"NIL") return LispValue::Nil();
        if (upper == L"T") return LispValue::True();
        return LispValue{LispValue::Kind::Symbol, upper};
    }

    const std::wstring& m_text;
    size_t m_pos = 0;
};

}  // namespace

std::wstring LispValue::Echo() const {
    switch (kind) {
    case Kind::Nil: return L"nil";
    case Kind::True: return L"T";
    case Kind::String: return L"\"" + text + L"\"";
    case Kind::Number:
    case Kind::Symbol: return text;
    case Kind::List: {
        std::wstring out = L"(";
        for (size_t i = 0; i < items.size(); ++i) out += (i ? L" " : L"") + items[i].Echo();
        return out + L")";
    }
    }
    return {};
}

void Lisp::Define(const std::wstring& name, Function function) { m_functions[Upper(name)] = std::move(function); }

std::optional<LispValue> Lisp::Evaluate(const std::wstring& text,
                                        const std::function<void(const std::wstring&)>& print) {
    std::function<LispValue(const LispValue&)> eval = [&](const LispValue& form) -> LispValue {
        if (form.kind != LispValue::Kind::List) {
            if (form.kind == LispValue::Kind::Symbol) return LispValue::Nil();  // unbound
            return form;
        }
        if (form.items.empty()) return LispValue::Nil();
        const LispValue& head = form.items[0];
        if (head.kind != LispValue::Kind::Symbol) throw LispError(L"bad function: " + head.Echo());
        std::vector<LispValue> arguments;
        for (size_t i = 1; i < form.items.size(); ++i) arguments.push_back(eval(form.items[i]));
        auto it = m_functions.find(head.text);
        if (it != m_functions.end()) return it->second(arguments);
        if (m_fallback) {
            if (std::optional<LispValue> value = m_fallback(head.text, arguments)) return *value;
        }
        throw LispError(L"no function definition: " + head.text);
    };
    try {
        Reader reader(text);
        LispValue last;
        while (!reader.AtEnd()) last = eval(reader.Read());
        return last;
    } catch (const LispError& error) {
        print(L"\n; error: " + error.text);
        return std::nullopt;
    }
}

}  // namespace cadhost
