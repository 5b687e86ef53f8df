#include "format/FormatText.h"

#include <algorithm>
#include <charconv>
#include <climits>
#include <cmath>

namespace cadhost::format {
namespace {

bool IsDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

class Reader {
public:
    explicit Reader(std::wstring_view text) : m_text(text) {}

    bool AtEnd() const { return m_at >= m_text.size(); }
    wchar_t Peek() const { return m_text[m_at]; }
    size_t Position() const { return m_at; }
    void Seek(size_t at) { m_at = at; }
    void Skip(size_t count) { m_at = std::min(m_at + count, m_text.size()); }
    bool StartsWith(std::wstring_view word) const { return m_text.substr(m_at).starts_with(word); }

    // Digits at the reading position, saturated at INT_MAX; none: nothing.
    std::optional<int> Number() {
        if (AtEnd() || !IsDigit(Peek())) return std::nullopt;
        long long value = 0;
        while (!AtEnd() && IsDigit(Peek())) {
            value = std::min<long long>(value * 10 + (Peek() - L'0'), INT_MAX);
            ++m_at;
        }
        return static_cast<int>(value);
    }

    std::wstring_view Slice(size_t from, size_t to) const { return m_text.substr(from, to - from); }

    // Where a search for a closing bracket ran to the end in vain: a later
    // search from further on would too, so it need not run again.
    size_t m_noBracketFrom = std::wstring_view::npos;
    size_t m_noUnescapedBracketFrom = std::wstring_view::npos;
    size_t m_noCommaBracketFrom = std::wstring_view::npos;  // no comma with a bracket behind it

private:
    std::wstring_view m_text;
    size_t m_at = 0;
};

// A factor as decimal text, blanks around it allowed; nothing for text that
// is no finite number.
std::optional<double> ReadFactor(std::wstring_view text) {
    while (!text.empty() && (text.front() == L' ' || text.front() == L'\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == L' ' || text.back() == L'\t')) text.remove_suffix(1);
    if (text.empty() || text.size() > 64) return std::nullopt;
    std::string narrow;
    for (wchar_t c : text) {
        if (c > 0x7F) return std::nullopt;
        narrow += static_cast<char>(c);
    }
    const char* first = narrow.data();
    if (*first == '+') ++first;  // from_chars takes no plus sign
    double value = 0;
    auto result = std::from_chars(first, narrow.data() + narrow.size(), value, std::chars_format::general);
    if (result.ec != std::errc() || result.ptr != narrow.data() + narrow.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

// A separator given by its character code: a printable character.
wchar_t SeparatorCode(int code) {
    if (code < 0x20 || code == 0x7F || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return 0;
    return static_cast<wchar_t>(code);
}

// The escapes of %ps[...]: a backslash before a backslash, comma or bracket
// stands for that character; any other backslash is itself.
std::wstring Unescape(std::wstring_view text) {
    std::wstring out;
    for (size_t i = 0; i < text.size(); ++i) {
        wchar_t c = text[i];
        if (c == L'\\' && i + 1 < text.size()) {
            wchar_t next = text[i + 1];
            if (next == L'\\' || next == L',' || next == L'[' || next == L']') {
                out += next;
                ++i;
                continue;
            }
        }
        out += c;
    }
    return out;
}

// Reads "[prefix,suffix]" at the reading position. The first unescaped
// closing bracket behind an unescaped comma ends it, and the last such comma
// parts the two; without one, the first unescaped closing bracket ends a
// prefix alone.
bool ReadPrefixSuffix(Reader& reader, FormatDirectives& out) {
    const size_t npos = std::wstring_view::npos;
    size_t start = reader.Position();
    if (start >= reader.m_noUnescapedBracketFrom) return false;
    bool pairsLeft = start < reader.m_noCommaBracketFrom;
    size_t comma = npos, firstBracket = npos;
    size_t backslashes = 0;
    while (!reader.AtEnd()) {
        wchar_t c = reader.Peek();
        bool escaped = backslashes % 2 == 1;
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        if (!escaped && c == L',') comma = reader.Position();
        if (!escaped && c == L']') {
            if (comma != npos) {
                out.prefix = Unescape(reader.Slice(start, comma));
                out.suffix = Unescape(reader.Slice(comma + 1, reader.Position()));
                out.hasPrefixSuffix = true;
                reader.Skip(1);
                return true;
            }
            if (firstBracket == npos) firstBracket = reader.Position();
            if (!pairsLeft) break;
        }
        reader.Skip(1);
    }
    if (reader.AtEnd()) reader.m_noCommaBracketFrom = std::min(reader.m_noCommaBracketFrom, start);
    if (firstBracket == npos) {
        reader.m_noUnescapedBracketFrom = start;
        return false;
    }
    out.prefix = Unescape(reader.Slice(start, firstBracket));
    out.suffix.clear();
    out.hasPrefixSuffix = true;
    reader.Seek(firstBracket + 1);
    return true;
}

// Reads one directive behind a percent sign; false leaves the reader where
// it was, and the text counts as literal.
bool ReadDirective(Reader& reader, FormatDirectives& out) {
    size_t start = reader.Position();
    auto fail = [&] {
        reader.Seek(start);
        return false;
    };
    auto numbered = [&](std::wstring_view name) -> std::optional<int> {
        if (!reader.StartsWith(name)) return std::nullopt;
        reader.Skip(name.size());
        std::optional<int> n = reader.Number();
        if (!n) reader.Seek(start);
        return n;
    };
    if (std::optional<int> n = numbered(L"lu")) {
        if (*n >= 1 && *n <= 6) out.units = *n;
        return true;
    }
    if (std::optional<int> n = numbered(L"pr")) {
        out.precision = std::min(*n, 8);
        return true;
    }
    if (std::optional<int> n = numbered(L"zs")) {
        out.zeroSuppression = *n & 15;
        return true;
    }
    if (std::optional<int> n = numbered(L"ds")) {
        if (wchar_t c = SeparatorCode(*n)) out.decimalSeparator = c;
        return true;
    }
    if (std::optional<int> n = numbered(L"th")) {
        if (wchar_t c = SeparatorCode(*n)) out.thousandsSeparator = c;
        return true;
    }
    if (std::optional<int> n = numbered(L"qf")) {
        out.quantity = *n;
        return true;
    }
    if (reader.StartsWith(L"ct4")) {
        reader.Skip(3);
        out.squareInchesToFeet = true;
        return true;
    }
    if (reader.StartsWith(L"ct8[")) {
        reader.Skip(4);
        size_t from = reader.Position();
        if (from >= reader.m_noBracketFrom) return fail();
        while (!reader.AtEnd() && reader.Peek() != L']') reader.Skip(1);
        if (reader.AtEnd()) {
            reader.m_noBracketFrom = from;
            return fail();
        }
        if (std::optional<double> factor = ReadFactor(reader.Slice(from, reader.Position()))) out.factor = factor;
        reader.Skip(1);
        return true;
    }
    if (reader.StartsWith(L"ps[")) {
        reader.Skip(3);
        if (!ReadPrefixSuffix(reader, out)) return fail();
        return true;
    }
    return fail();
}

}  // namespace

FormatDirectives ParseFormatText(std::wstring_view text) {
    FormatDirectives out;
    Reader reader(text);
    while (!reader.AtEnd()) {
        wchar_t c = reader.Peek();
        reader.Skip(1);
        if (c == L'%' && ReadDirective(reader, out)) continue;
        out.literal += c;
    }
    return out;
}

}  // namespace cadhost::format
