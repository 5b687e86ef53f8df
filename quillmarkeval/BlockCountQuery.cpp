#include "BlockCountQuery.h"

#include <cerrno>
#include <cmath>
#include <cstdlib>
#include <cwchar>
#include <cwctype>
#include <string>

namespace {

const int kShownLength = 40;

// White space as the host's texts trim it, so that what the evaluator trims
// off a code reads the same as what stands between its options.
bool IsBlank(wchar_t c) { return std::iswspace(static_cast<wint_t>(c)) != 0; }

// A piece of the code for a message, cut when it is long.
CString Shown(const std::wstring& text) {
    if (text.size() <= static_cast<size_t>(kShownLength)) return CString(text.c_str());
    return CString(text.substr(0, kShownLength).c_str()) + L"...";
}

// Walks the arguments from left to right.
class ArgumentReader {
public:
    explicit ArgumentReader(const CString& text)
        : m_text(static_cast<const wchar_t*>(text), static_cast<size_t>(text.GetLength())) {}

    void SkipBlanks() {
        while (m_at < m_text.size() && IsBlank(m_text[m_at])) ++m_at;
    }
    bool AtEnd() const { return m_at >= m_text.size(); }
    wchar_t Peek() const { return AtEnd() ? L'\0' : m_text[m_at]; }
    void Skip() { ++m_at; }
    std::wstring Rest() const { return m_text.substr(m_at); }

    // A text in double quotes; the next double quote ends it.
    bool ReadQuoted(CString& out) {
        if (Peek() != L'"') return false;
        size_t end = m_text.find(L'"', m_at + 1);
        if (end == std::wstring::npos) return false;
        out = CString(m_text.substr(m_at + 1, end - m_at - 1).c_str());
        m_at = end + 1;
        return true;
    }
    // The letters of an option's name.
    std::wstring ReadWord() {
        size_t start = m_at;
        while (m_at < m_text.size() && std::iswalpha(static_cast<wint_t>(m_text[m_at]))) ++m_at;
        return m_text.substr(start, m_at - start);
    }
    // What stands between a "(" here and the next ")".
    bool ReadBracketed(std::wstring& out) {
        if (Peek() != L'(') return false;
        size_t end = m_text.find(L')', m_at + 1);
        if (end == std::wstring::npos) return false;
        out = m_text.substr(m_at + 1, end - m_at - 1);
        m_at = end + 1;
        return true;
    }

private:
    std::wstring m_text;
    size_t m_at = 0;
};

// The non-empty elements of a ";"-separated list, blanks around each taken off.
std::vector<CString> SplitList(const CString& text) {
    std::vector<CString> elements;
    int start = 0;
    for (;;) {
        int end = text.Find(L';', start);
        CString element = text.Mid(start, end < 0 ? text.GetLength() - start : end - start);
        element.Trim();
        if (!element.IsEmpty()) elements.push_back(element);
        if (end < 0) break;
        start = end + 1;
    }
    return elements;
}

// "x,y" or "x,y,z" of numbers.
bool ReadCorner(const std::wstring& text, double corner[3]) {
    std::vector<std::wstring> parts;
    size_t start = 0;
    for (;;) {
        size_t comma = text.find(L',', start);
        parts.push_back(text.substr(start, comma == std::wstring::npos ? std::wstring::npos : comma - start));
        if (comma == std::wstring::npos) break;
        start = comma + 1;
    }
    if (parts.size() < 2 || parts.size() > 3) return false;
    corner[2] = 0;
    for (size_t i = 0; i < parts.size(); ++i) {
        if (!ReadDecimalNumber(CString(parts[i].c_str()), corner[i])) return false;
    }
    return true;
}

bool IsHandleText(const std::wstring& text) {
    for (wchar_t c : text) {
        if (!std::iswxdigit(static_cast<wint_t>(c))) return false;
    }
    return true;
}

// A number of at most 15 digits with a point and no exponent, such as
// attribute values are: its digits as a whole number divided by a power of
// ten, both exact in a double, give the nearest double in one rounding, as
// wcstod does, without its cost. False for anything else.
bool ReadShortDecimal(const wchar_t* text, double& value) {
    static const double kPowers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    const wchar_t* p = text;
    bool negative = *p == L'-';
    if (*p == L'+' || *p == L'-') ++p;
    long long digits = 0;
    int count = 0, fraction = 0;
    bool point = false;
    for (;; ++p) {
        if (*p >= L'0' && *p <= L'9') {
            if (++count > 15) return false;
            digits = digits * 10 + (*p - L'0');
            if (point) ++fraction;
        } else if (*p == L'.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    if (count == 0 || (*p != L'\0' && !IsBlank(*p))) return false;
    value = static_cast<double>(digits) / kPowers[fraction];
    if (negative) value = -value;
    return true;
}

bool Fail(CString& why, const CString& message) {
    why = message;
    return false;
}

}  // namespace

bool ReadDecimalNumber(const wchar_t* text, double& number) {
    if (!text) return false;
    // Blanks, a sign, digits with at most one point (a digit on one side at
    // least), an exponent with digits, blanks; read in place.
    const wchar_t* p = text;
    while (IsBlank(*p)) ++p;
    const wchar_t* start = p;
    if (*p == L'+' || *p == L'-') ++p;
    size_t digits = 0;
    while (*p >= L'0' && *p <= L'9') ++p, ++digits;
    if (*p == L'.') {
        ++p;
        while (*p >= L'0' && *p <= L'9') ++p, ++digits;
    }
    if (digits == 0) return false;
    if (*p == L'e' || *p == L'E') {
        ++p;
        if (*p == L'+' || *p == L'-') ++p;
        size_t exponent = 0;
        while (*p >= L'0' && *p <= L'9') ++p, ++exponent;
        if (exponent == 0) return false;
    }
    while (IsBlank(*p)) ++p;
    if (*p != L'\0') return false;
    double value = 0;
    if (!ReadShortDecimal(start, value)) value = std::wcstod(start, nullptr);
    if (!std::isfinite(value)) return false;
    number = value;
    return true;
}

bool ReadDecimalNumber(const CString& text, double& number) {
    // A text with a zero inside reads no further than the zero, which the
    // whole-text rule then refuses.
    if (static_cast<size_t>(text.GetLength()) != std::wcslen(text)) return false;
    return ReadDecimalNumber(static_cast<const wchar_t*>(text), number);
}

bool ReadBlockCountOperator(const CString& text, BlockCountOperator& op) {
    struct Row {
        const wchar_t* text;
        BlockCountOperator op;
    };
    static const Row kRows[] = {
        {L"=", BlockCountOperator::kEqual},         {L">", BlockCountOperator::kGreater},
        {L"<", BlockCountOperator::kLess},          {L">=", BlockCountOperator::kGreaterEqual},
        {L"<=", BlockCountOperator::kLessEqual},    {L"!=", BlockCountOperator::kNotEqual},
    };
    for (const Row& row : kRows) {
        if (text == row.text) {
            op = row.op;
            return true;
        }
    }
    return false;
}

bool ReadBlockCountQuery(const CString& arguments, BlockCountQuery& query, CString& why) {
    query = BlockCountQuery();
    ArgumentReader reader(arguments);
    reader.SkipBlanks();
    if (reader.AtEnd()) return true;

    CString names;
    if (!reader.ReadQuoted(names)) {
        return Fail(why, L"The block names must stand first, in double quotes, as in \"DOOR;WINDOW\".");
    }
    query.names = SplitList(names);

    CString opText;
    bool hasOp = false;
    std::vector<std::wstring> seen;
    for (;;) {
        reader.SkipBlanks();
        if (reader.AtEnd()) break;
        if (reader.Peek() != L'\\') {
            return Fail(why, L"\"" + Shown(reader.Rest()) + L"\" is no option; options begin with a backslash.");
        }
        reader.Skip();
        std::wstring word = reader.ReadWord();
        std::wstring name = word;
        for (wchar_t& c : name) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
        for (const std::wstring& earlier : seen) {
            if (earlier == name) return Fail(why, L"The option \\" + CString(word.c_str()) + L" is given twice.");
        }
        seen.push_back(name);

        CString text;
        std::wstring bracketed;
        if (name == L"layer" || name == L"op" || name == L"tag" || name == L"value") {
            reader.SkipBlanks();
            if (!reader.ReadQuoted(text)) {
                return Fail(why, L"The option \\" + CString(word.c_str()) +
                                     L" needs a text in double quotes behind it.");
            }
            if (name == L"layer") query.layers = SplitList(text);
            else if (name == L"tag") query.tag = text;
            else if (name == L"value") query.value = text;
            else {
                opText = text;
                hasOp = true;
            }
        } else if (name == L"nested") {
            wchar_t next = reader.Peek();
            if (next != L'\0' && next != L'\\' && !IsBlank(next))
                return Fail(why, L"\"" + Shown(L"\\" + word + reader.Rest()) + L"\" is no option.");
            query.nested = true;
        } else if (name == L"space") {
            reader.SkipBlanks();
            if (!reader.ReadBracketed(bracketed))
                return Fail(why, L"The option \\Space needs the handle of a space in brackets, as in \\Space(1F).");
            CString handle(bracketed.c_str());
            handle.Trim();
            if (!IsHandleText(std::wstring(static_cast<const wchar_t*>(handle))))
                return Fail(why, L"\"" + handle + L"\" in \\Space is no handle.");
            query.hasSpace = true;
            query.spaceHandle = handle;
        } else if (name == L"window") {
            reader.SkipBlanks();
            size_t colon = std::wstring::npos;
            if (reader.ReadBracketed(bracketed)) colon = bracketed.find(L':');
            if (colon == std::wstring::npos || !ReadCorner(bracketed.substr(0, colon), query.firstCorner) ||
                !ReadCorner(bracketed.substr(colon + 1), query.secondCorner)) {
                return Fail(why, L"The option \\Window needs two corners of numbers, as in "
                                 L"\\Window(0,0,0:100,50,0).");
            }
            query.hasWindow = true;
        } else {
            return Fail(why, L"\"\\" + Shown(word.empty() ? reader.Rest() : word) + L"\" is no option of a block count.");
        }
    }

    if (query.hasWindow && !query.hasSpace)
        return Fail(why, L"The option \\Window needs the option \\Space, which names the space of the window.");
    // Without a tag there is no condition, and the operator is not looked at.
    if (!query.tag.IsEmpty() && (!hasOp || !ReadBlockCountOperator(opText, query.op))) {
        return Fail(why, L"The operator \"" + opText + L"\" of the attribute condition is none of =, >, <, >=, <=, !=.");
    }
    return true;
}

BlockCountCondition::BlockCountCondition(BlockCountOperator op, const CString& expected)
    : m_op(op), m_expected(expected) {
    m_expectedIsNumber = ReadDecimalNumber(expected, m_expectedNumber);
}

bool BlockCountCondition::Holds(int comparison) const {
    switch (m_op) {
    case BlockCountOperator::kEqual: return comparison == 0;
    case BlockCountOperator::kGreater: return comparison > 0;
    case BlockCountOperator::kLess: return comparison < 0;
    case BlockCountOperator::kGreaterEqual: return comparison >= 0;
    case BlockCountOperator::kLessEqual: return comparison <= 0;
    case BlockCountOperator::kNotEqual: return comparison != 0;
    }
    return false;
}

bool BlockCountCondition::AcceptsNumber(double actual, const CString& actualText) const {
    if (!m_expectedIsNumber || !std::isfinite(actual)) return Holds(actualText.CompareNoCase(m_expected));
    return Holds(Compare(actual));
}

bool BlockCountCondition::Accepts(const wchar_t* actual) const {
    if (!actual) actual = L"";
    double number = 0;
    if (m_expectedIsNumber && ReadDecimalNumber(actual, number)) return Holds(Compare(number));
    int reversed = m_expected.CompareNoCase(actual);  // the expected value against the actual one
    return Holds((reversed < 0) - (reversed > 0));
}

int BlockCountCondition::Compare(double actual) const {
    return actual < m_expectedNumber ? -1 : actual > m_expectedNumber ? 1 : 0;
}
