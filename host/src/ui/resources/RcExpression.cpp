#include "ui/resources/RcExpression.h"

namespace cadhost::ui::rc {
namespace {

struct Operator {
    const wchar_t* text;
    ExpressionReader::Level level;
};

const Operator kOperators[] = {
    {L"||", ExpressionReader::LogicalOr},   {L"&&", ExpressionReader::LogicalAnd},
    {L"|", ExpressionReader::BitOr},        {L"^", ExpressionReader::BitXor},
    {L"&", ExpressionReader::BitAnd},       {L"==", ExpressionReader::Equality},
    {L"!=", ExpressionReader::Equality},    {L"<", ExpressionReader::Relational},
    {L">", ExpressionReader::Relational},   {L"<=", ExpressionReader::Relational},
    {L">=", ExpressionReader::Relational},  {L"<<", ExpressionReader::Shift},
    {L">>", ExpressionReader::Shift},       {L"+", ExpressionReader::Additive},
    {L"-", ExpressionReader::Additive},     {L"*", ExpressionReader::Multiplicative},
    {L"/", ExpressionReader::Multiplicative}, {L"%", ExpressionReader::Multiplicative},
};

const Operator* Binary(const Token& token) {
    if (token.kind != Token::Kind::Punct) return nullptr;
    for (const Operator& op : kOperators) {
        if (token.text == op.text) return &op;
    }
    return nullptr;
}

// Values are those of 32-bit words, as the resource compiler keeps them.
int64_t Word(int64_t value) { return static_cast<int64_t>(static_cast<int32_t>(static_cast<uint32_t>(value))); }

}  // namespace

std::wstring Describe(const Token& token) {
    switch (token.kind) {
    case Token::Kind::End:
        return L"the end of the file";
    case Token::Kind::String:
        return L"the text \"" + token.text + L"\"";
    case Token::Kind::Directive:
        return L"#" + token.text;
    default:
        return L"\"" + token.text + L"\"";
    }
}

const Token& ExpressionReader::Current() const {
    return m_pos < m_tokens.size() ? m_tokens[m_pos] : m_tokens.back();
}

bool ExpressionReader::Read(int64_t& value, std::wstring& error, Level level) {
    if (++m_depth > 200) {
        error = L"the expression is nested too deeply";
        return false;
    }
    bool ok = ReadUnary(value, error);
    while (ok) {
        const Operator* op = Binary(Current());
        if (!op || op->level < level) break;
        ++m_pos;
        int64_t right = 0;
        ok = Read(right, error, static_cast<Level>(op->level + 1));
        if (!ok) break;
        std::wstring t = op->text;
        if (t == L"||") value = (value || right) ? 1 : 0;
        else if (t == L"&&") value = (value && right) ? 1 : 0;
        else if (t == L"|") value = value | right;
        else if (t == L"^") value = value ^ right;
        else if (t == L"&") value = value & right;
        else if (t == L"==") value = value == right;
        else if (t == L"!=") value = value != right;
        else if (t == L"<") value = value < right;
        else if (t == L">") value = value > right;
        else if (t == L"<=") value = value <= right;
        else if (t == L">=") value = value >= right;
        else if (t == L"<<") value = (right < 0 || right > 31) ? 0 : static_cast<int64_t>(static_cast<uint32_t>(value) << right);
        else if (t == L">>") value = (right < 0 || right > 31) ? 0 : static_cast<int64_t>(static_cast<uint32_t>(value) >> right);
        else if (t == L"+") value = value + right;
        else if (t == L"-") value = value - right;
        else if (t == L"*") value = Word(value) * Word(right);
        else if (t == L"/" || t == L"%") {
            if (right == 0) {
                error = L"division by zero";
                ok = false;
                break;
            }
            value = t == L"/" ? value / right : value % right;
        }
        value = Word(value);
    }
    --m_depth;
    return ok;
}

bool ExpressionReader::ReadUnary(int64_t& value, std::wstring& error) {
    const Token& token = Current();
    if (token.kind == Token::Kind::Punct &&
        (token.text == L"-" || token.text == L"+" || token.text == L"~" || token.text == L"!")) {
        wchar_t op = token.text[0];
        ++m_pos;
        if (++m_depth > 200) {
            error = L"the expression is nested too deeply";
            return false;
        }
        bool ok = ReadUnary(value, error);
        --m_depth;
        if (!ok) return false;
        if (op == L'-') value = Word(-value);
        else if (op == L'~') value = Word(~value);
        else if (op == L'!') value = value ? 0 : 1;
        return true;
    }
    if (token.kind == Token::Kind::Number) {
        value = Word(token.number);
        ++m_pos;
        return true;
    }
    if (token.IsPunct(L"(")) {
        ++m_pos;
        if (!Read(value, error)) return false;
        if (!Current().IsPunct(L")")) {
            error = L"a \")\" is missing before " + Describe(Current());
            return false;
        }
        ++m_pos;
        return true;
    }
    if (token.kind == Token::Kind::Identifier && m_namesAsZero) {
        value = 0;
        ++m_pos;
        return true;
    }
    if (token.kind == Token::Kind::Identifier) {
        error = L"the name " + token.text + L" is not defined";
        return false;
    }
    error = L"a number is expected, not " + Describe(token);
    return false;
}

}  // namespace cadhost::ui::rc
