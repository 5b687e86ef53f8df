// Numeric expressions of a resource script, with the operators and
// precedence of C: the preprocessor's conditions and the parser's numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ui/resources/RcLexer.h"

namespace cadhost::ui::rc {

class ExpressionReader {
public:
    // Binding levels, loosest first; Read(level) reads operators of that
    // level and the tighter ones.
    enum Level { LogicalOr, LogicalAnd, BitOr, BitXor, BitAnd, Equality, Relational, Shift, Additive, Multiplicative, Unary };

    // Reads from tokens[pos] on. With names as zero (the preprocessor's
    // rule) a name that is left counts 0; otherwise it is an error.
    ExpressionReader(const std::vector<Token>& tokens, size_t& pos, bool namesAsZero)
        : m_tokens(tokens), m_pos(pos), m_namesAsZero(namesAsZero) {}

    bool Read(int64_t& value, std::wstring& error, Level level = LogicalOr);

private:
    bool ReadUnary(int64_t& value, std::wstring& error);
    const Token& Current() const;

    const std::vector<Token>& m_tokens;
    size_t& m_pos;
    bool m_namesAsZero;
    int m_depth = 0;
};

// What a token shows in a message.
std::wstring Describe(const Token& token);

}  // namespace cadhost::ui::rc
