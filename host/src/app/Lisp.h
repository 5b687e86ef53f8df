// The few expressions of the command processor's language that the host
// understands: strings, numbers, symbols and lists, and the functions that
// the host registers (command, princ, menucmd, ...).
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace cadhost {

struct LispValue {
    enum class Kind { Nil, True, String, Number, Symbol, List } kind = Kind::Nil;
    std::wstring text;  // string, symbol, or number as written
    double number = 0.0;
    std::vector<LispValue> items;

    static LispValue Nil() { return {}; }
    static LispValue True() { return {Kind::True}; }
    static LispValue String(std::wstring s) { return {Kind::String, std::move(s)}; }
    // What the command line echoes for the value.
    std::wstring Echo() const;
};

class Lisp {
public:
    using Function = std::function<LispValue(const std::vector<LispValue>& arguments)>;

    void Define(const std::wstring& name, Function function);
    // Answers a call of a name that no defined function has, or nothing.
    using Fallback = std::function<std::optional<LispValue>(const std::wstring& name,
                                                             const std::vector<LispValue>& arguments)>;
    void SetFallback(Fallback fallback) { m_fallback = std::move(fallback); }
    // Evaluates every expression of the text in turn. Returns the value of
    // the last, or nothing after an error, which is reported through print.
    std::optional<LispValue> Evaluate(const std::wstring& text, const std::function<void(const std::wstring&)>& print);

private:
    std::map<std::wstring, Function> m_functions;  // upper-case names
    Fallback m_fallback;
};

}  // namespace cadhost
