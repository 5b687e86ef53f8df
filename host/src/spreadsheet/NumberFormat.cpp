#include "spreadsheet/NumberFormat.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cwctype>

namespace cadhost::spreadsheet {

enum class Kind {
    Literal,
    Zero,      // 0: a digit, or 0 where the number has none
    Hash,      // #: a digit, or nothing
    Question,  // ?: a digit, or a blank
    Point,
    Comma,
    Percent,
    Exponent,  // E+ or E-
    Slash,     // between the numerator and the denominator of a fraction
    At,        // the text of a text value
    General,
    Year,
    Month,
    Day,
    Hour,
    Minute,
    Second,
    SubSecond,  // the digits of ".00" behind the seconds
    AmPm,
    ElapsedHours,
    ElapsedMinutes,
    ElapsedSeconds,
};

struct Token {
    Kind kind;
    std::wstring text;  // a literal's text; the exponent's or AM/PM's letters as written
    int count = 0;      // letters of a date or time part; digits of a subsecond part
};

struct NumberFormat::Section {
    std::vector<Token> tokens;
    bool hasCondition = false;
    std::wstring op;
    double operand = 0;
    bool isDateTime = false;
    bool hasText = false;
};

namespace {

constexpr wchar_t kOverflow[] = L"########";

// The built-in formats that a workbook names by id alone, as the program
// shows them in the United States locale (14 and 22 are the locale's short
// date).
const std::array<std::wstring_view, 50> kBuiltIn = {
    L"General",
    L"0",
    L"0.00",
    L"#,##0",
    L"#,##0.00",
    L"$#,##0_);($#,##0)",
    L"$#,##0_);[Red]($#,##0)",
    L"$#,##0.00_);($#,##0.00)",
    L"$#,##0.00_);[Red]($#,##0.00)",
    L"0%",
    L"0.00%",
    L"0.00E+00",
    L"# ?/?",
    L"# ?\?/??",
    L"m/d/yyyy",
    L"d-mmm-yy",
    L"d-mmm",
    L"mmm-yy",
    L"h:mm AM/PM",
    L"h:mm:ss AM/PM",
    L"h:mm",
    L"h:mm:ss",
    L"m/d/yyyy h:mm",
    L"", L"", L"", L"", L"", L"", L"", L"", L"", L"", L"", L"", L"", L"",
    L"#,##0 ;(#,##0)",
    L"#,##0 ;[Red](#,##0)",
    L"#,##0.00;(#,##0.00)",
    L"#,##0.00;[Red](#,##0.00)",
    L"_(* #,##0_);_(* \\(#,##0\\);_(* \"-\"_);_(@_)",
    L"_(\"$\"* #,##0_);_(\"$\"* \\(#,##0\\);_(\"$\"* \"-\"_);_(@_)",
    L"_(* #,##0.00_);_(* \\(#,##0.00\\);_(* \"-\"??_);_(@_)",
    L"_(\"$\"* #,##0.00_);_(\"$\"* \\(#,##0.00\\);_(\"$\"* \"-\"??_);_(@_)",
    L"mm:ss",
    L"[h]:mm:ss",
    L"mmss.0",
    L"##0.0E+0",
    L"@",
};

const wchar_t* const kMonths[] = {L"January", L"February", L"March",     L"April",   L"May",      L"June",
                                  L"July",    L"August",   L"September", L"October", L"November", L"December"};
const wchar_t* const kDays[] = {L"Sunday", L"Monday", L"Tuesday", L"Wednesday", L"Thursday", L"Friday", L"Saturday"};
const wchar_t* const kColors[] = {L"black", L"blue", L"cyan", L"green", L"magenta", L"red", L"white", L"yellow"};

bool IsDigitPlaceholder(Kind k) { return k == Kind::Zero || k == Kind::Hash || k == Kind::Question; }

bool IsDatePart(Kind k) {
    switch (k) {
    case Kind::Year: case Kind::Month: case Kind::Day: case Kind::Hour: case Kind::Minute: case Kind::Second:
    case Kind::SubSecond: case Kind::AmPm: case Kind::ElapsedHours: case Kind::ElapsedMinutes:
    case Kind::ElapsedSeconds:
        return true;
    default:
        return false;
    }
}

bool StartsWithNoCase(std::wstring_view text, size_t at, std::wstring_view word) {
    if (text.size() - at < word.size()) return false;
    for (size_t i = 0; i < word.size(); ++i)
        if (std::towlower(text[at + i]) != std::towlower(word[i])) return false;
    return true;
}

void AddLiteral(std::vector<Token>& tokens, std::wstring text) {
    if (!tokens.empty() && tokens.back().kind == Kind::Literal) tokens.back().text += text;
    else tokens.push_back(Token{Kind::Literal, std::move(text)});
}

// What stands between brackets: a color, a condition, a currency or
// locale, or elapsed time.
void ReadBracket(std::wstring_view inner, NumberFormat::Section& section) {
    if (inner.empty()) return;
    if (inner[0] == L'$') {
        size_t dash = inner.find(L'-');
        std::wstring_view symbol = inner.substr(1, dash == std::wstring_view::npos ? std::wstring_view::npos : dash - 1);
        if (!symbol.empty()) AddLiteral(section.tokens, std::wstring(symbol));
        return;
    }
    if (inner[0] == L'<' || inner[0] == L'>' || inner[0] == L'=') {
        size_t length = 1;
        if (inner.size() > 1 && (inner[1] == L'=' || (inner[0] == L'<' && inner[1] == L'>'))) length = 2;
        std::wstring number(inner.substr(length));
        wchar_t* end = nullptr;
        double operand = std::wcstod(number.c_str(), &end);
        if (end == number.c_str()) return;
        section.hasCondition = true;
        section.op = std::wstring(inner.substr(0, length));
        section.operand = operand;
        return;
    }
    wchar_t first = static_cast<wchar_t>(std::towlower(inner[0]));
    if (first == L'h' || first == L'm' || first == L's') {
        bool same = std::all_of(inner.begin(), inner.end(),
                                   [&](wchar_t c) { return static_cast<wchar_t>(std::towlower(c)) == first; });
        if (same) {
            Kind kind = first == L'h' ? Kind::ElapsedHours : first == L'm' ? Kind::ElapsedMinutes : Kind::ElapsedSeconds;
            section.tokens.push_back(Token{kind, L"", static_cast<int>(inner.size())});
            return;
        }
    }
    // Colors ([Red], [Color10]) and anything else change nothing of the text.
}

NumberFormat::Section ReadSection(std::wstring_view code) {
    NumberFormat::Section section;
    std::vector<Token>& tokens = section.tokens;
    size_t i = 0;
    while (i < code.size()) {
        wchar_t c = code[i];
        if (c == L'"') {
            size_t close = code.find(L'"', i + 1);
            if (close == std::wstring_view::npos) close = code.size();
            AddLiteral(tokens, std::wstring(code.substr(i + 1, close - i - 1)));
            i = close + 1;
        } else if (c == L'\\' || c == L'!') {
            if (i + 1 < code.size()) AddLiteral(tokens, std::wstring(1, code[i + 1]));
            i += 2;
        } else if (c == L'_') {
            // The width of the next character: one blank stands for it.
            AddLiteral(tokens, L" ");
            i += 2;
        } else if (c == L'*') {
            // Repeats the next character across the cell: nothing here.
            i += 2;
        } else if (c == L'[') {
            size_t close = code.find(L']', i + 1);
            if (close == std::wstring_view::npos) close = code.size();
            ReadBracket(code.substr(i + 1, close - i - 1), section);
            i = close + 1;
        } else if (c == L'0' || c == L'#' || c == L'?') {
            tokens.push_back(Token{c == L'0' ? Kind::Zero : c == L'#' ? Kind::Hash : Kind::Question});
            ++i;
        } else if (c == L'.') {
            tokens.push_back(Token{Kind::Point});
            ++i;
        } else if (c == L',') {
            tokens.push_back(Token{Kind::Comma});
            ++i;
        } else if (c == L'%') {
            tokens.push_back(Token{Kind::Percent});
            ++i;
        } else if ((c == L'E' || c == L'e') && i + 1 < code.size() && (code[i + 1] == L'+' || code[i + 1] == L'-')) {
            tokens.push_back(Token{Kind::Exponent, std::wstring(code.substr(i, 2))});
            i += 2;
        } else if (c == L'/') {
            tokens.push_back(Token{Kind::Slash});
            ++i;
        } else if (c == L'@') {
            tokens.push_back(Token{Kind::At});
            section.hasText = true;
            ++i;
        } else if (StartsWithNoCase(code, i, L"general")) {
            tokens.push_back(Token{Kind::General});
            i += 7;
        } else if (StartsWithNoCase(code, i, L"am/pm")) {
            tokens.push_back(Token{Kind::AmPm, std::wstring(code.substr(i, 5))});
            i += 5;
        } else if (StartsWithNoCase(code, i, L"a/p")) {
            tokens.push_back(Token{Kind::AmPm, std::wstring(code.substr(i, 3))});
            i += 3;
        } else if (std::wcschr(L"yYmMdDhHsS", c) && c != L'\0') {
            wchar_t lower = static_cast<wchar_t>(std::towlower(c));
            size_t n = 1;
            while (i + n < code.size() && static_cast<wchar_t>(std::towlower(code[i + n])) == lower) ++n;
            Kind kind = lower == L'y' ? Kind::Year
                        : lower == L'm' ? Kind::Month
                        : lower == L'd' ? Kind::Day
                        : lower == L'h' ? Kind::Hour
                                        : Kind::Second;
            tokens.push_back(Token{kind, L"", static_cast<int>(n)});
            i += n;
        } else {
            AddLiteral(tokens, std::wstring(1, c));
            ++i;
        }
    }

    for (const Token& t : tokens)
        if (IsDatePart(t.kind)) section.isDateTime = true;
    if (!section.isDateTime) return section;

    // In a date or time, m is the minute next to an hour or a second; a
    // point behind the seconds starts their fraction; other digits are text.
    std::vector<size_t> parts;
    for (size_t k = 0; k < tokens.size(); ++k)
        if (IsDatePart(tokens[k].kind)) parts.push_back(k);
    for (size_t p = 0; p < parts.size(); ++p) {
        Token& t = tokens[parts[p]];
        if (t.kind != Kind::Month) continue;
        bool afterHour = p > 0 && (tokens[parts[p - 1]].kind == Kind::Hour ||
                                   tokens[parts[p - 1]].kind == Kind::ElapsedHours);
        bool beforeSecond = p + 1 < parts.size() && (tokens[parts[p + 1]].kind == Kind::Second ||
                                                     tokens[parts[p + 1]].kind == Kind::ElapsedSeconds);
        if (afterHour || beforeSecond) t.kind = Kind::Minute;
    }
    std::vector<Token> merged;
    for (size_t k = 0; k < tokens.size(); ++k) {
        const Token& t = tokens[k];
        bool afterSeconds = !merged.empty() &&
                            (merged.back().kind == Kind::Second || merged.back().kind == Kind::ElapsedSeconds);
        if (t.kind == Kind::Point && afterSeconds && k + 1 < tokens.size() && tokens[k + 1].kind == Kind::Zero) {
            int digits = 0;
            while (k + 1 < tokens.size() && tokens[k + 1].kind == Kind::Zero) {
                ++digits;
                ++k;
            }
            merged.push_back(Token{Kind::SubSecond, L"", std::min(digits, 3)});
        } else if (t.kind == Kind::Zero || t.kind == Kind::Hash || t.kind == Kind::Question || t.kind == Kind::Point ||
                   t.kind == Kind::Comma || t.kind == Kind::Percent || t.kind == Kind::Slash) {
            const wchar_t* text = t.kind == Kind::Zero       ? L"0"
                                  : t.kind == Kind::Hash     ? L"#"
                                  : t.kind == Kind::Question ? L"?"
                                  : t.kind == Kind::Point    ? L"."
                                  : t.kind == Kind::Comma    ? L","
                                  : t.kind == Kind::Percent  ? L"%"
                                                             : L"/";
            AddLiteral(merged, text);
        } else if (t.kind == Kind::Literal) {
            AddLiteral(merged, t.text);
        } else {
            merged.push_back(t);
        }
    }
    tokens = std::move(merged);
    return section;
}

std::vector<std::wstring_view> SplitSections(std::wstring_view code) {
    std::vector<std::wstring_view> out;
    size_t start = 0;
    bool quoted = false, bracket = false;
    for (size_t i = 0; i < code.size(); ++i) {
        wchar_t c = code[i];
        if (quoted) {
            if (c == L'"') quoted = false;
        } else if (bracket) {
            if (c == L']') bracket = false;
        } else if (c == L'"') {
            quoted = true;
        } else if (c == L'[') {
            bracket = true;
        } else if (c == L'\\' || c == L'_' || c == L'*' || c == L'!') {
            ++i;
        } else if (c == L';') {
            out.push_back(code.substr(start, i - start));
            start = i + 1;
        }
    }
    out.push_back(code.substr(start));
    return out;
}

// ---- Decimal digits ---------------------------------------------------------

// A non-negative number as the program holds it for display: 15
// significant decimal digits, and the power of ten of the first one.
struct Decimal {
    std::string digits;  // 15 digits, the first not 0 unless the number is 0
    int exponent = 0;    // the value is 0.d1d2... * 10^(exponent + 1)
    bool zero = true;
};

Decimal ToDecimal(double value) {
    Decimal d;
    value = std::fabs(value);
    if (value == 0 || !std::isfinite(value)) {
        d.digits = std::string(15, '0');
        return d;
    }
    char buffer[40];
    std::snprintf(buffer, sizeof buffer, "%.14e", value);
    std::string text(buffer);
    size_t e = text.find('e');
    d.digits = text.substr(0, 1) + text.substr(2, e - 2);
    d.exponent = std::atoi(text.c_str() + e + 1);
    d.zero = false;
    return d;
}

// The digits rounded half up to keep `places` digits behind the point:
// the whole part without leading zeros (empty for a number below one) and
// exactly `places` digits of fraction.
void RoundDecimal(const Decimal& d, int places, std::string& whole, std::string& fraction) {
    whole.clear();
    fraction.assign(static_cast<size_t>(std::max(places, 0)), '0');
    if (d.zero) return;
    // Digits kept: those before the point and `places` behind it.
    int pointAt = d.exponent + 1;  // digits before the point (may be <= 0)
    int keep = pointAt + places;
    if (keep < 0) return;
    std::string digits = d.digits;
    if (static_cast<int>(digits.size()) < keep) digits.append(static_cast<size_t>(keep) - digits.size(), '0');
    bool up = keep < static_cast<int>(digits.size()) && digits[static_cast<size_t>(keep)] >= '5';
    std::string kept = digits.substr(0, static_cast<size_t>(keep));
    if (up) {
        int k = keep - 1;
        while (k >= 0 && kept[static_cast<size_t>(k)] == '9') kept[static_cast<size_t>(k--)] = '0';
        if (k >= 0) kept[static_cast<size_t>(k)]++;
        else {
            kept.insert(kept.begin(), '1');
            ++pointAt;
        }
    }
    // Put the point in: pad on the left when the number is below one.
    if (pointAt < 0) {
        kept.insert(0, static_cast<size_t>(-pointAt), '0');
        pointAt = 0;
    }
    whole = kept.substr(0, static_cast<size_t>(pointAt));
    std::string rest = kept.substr(static_cast<size_t>(pointAt));
    rest.resize(static_cast<size_t>(std::max(places, 0)), '0');
    fraction = rest;
    size_t first = whole.find_first_not_of('0');
    whole = first == std::string::npos ? std::string() : whole.substr(first);
}

std::wstring Widen(const std::string& text) { return std::wstring(text.begin(), text.end()); }

std::wstring GroupThousands(const std::wstring& digits) {
    std::wstring out;
    int n = static_cast<int>(digits.size());
    for (int i = 0; i < n; ++i) {
        if (i > 0 && (n - i) % 3 == 0) out += L',';
        out += digits[static_cast<size_t>(i)];
    }
    return out;
}

// ---- Numbers ------------------------------------------------------------------

std::wstring RenderGeneral(double value) {
    Decimal d = ToDecimal(value);
    if (d.zero) return L"0";
    std::wstring sign = value < 0 ? L"-" : L"";
    if (d.exponent >= 11 || d.exponent <= -10) {
        std::string digits = d.digits;
        while (digits.size() > 1 && digits.back() == '0') digits.pop_back();
        std::wstring out = sign + std::wstring(1, static_cast<wchar_t>(digits[0]));
        if (digits.size() > 1) out += L"." + Widen(digits.substr(1));
        wchar_t exponent[16];
        std::swprintf(exponent, 16, L"E%c%02d", d.exponent < 0 ? L'-' : L'+', std::abs(d.exponent));
        return out + exponent;
    }
    std::string whole, fraction;
    RoundDecimal(d, std::max(0, 14 - d.exponent), whole, fraction);
    while (!fraction.empty() && fraction.back() == '0') fraction.pop_back();
    std::wstring out = sign + (whole.empty() ? L"0" : Widen(whole));
    if (!fraction.empty()) out += L"." + Widen(fraction);
    return out;
}

struct Layout {
    int exponentAt = -1;   // token index of E+/E-
    int slashAt = -1;      // token index of a fraction's slash
    int pointAt = -1;      // first point before the exponent
    int numberEnd = 0;     // end of the mantissa's tokens
    std::vector<int> whole, fraction, exponentDigits;
    bool grouping = false;
    int scale = 0;         // thousands the number is divided by
    int percents = 0;
};

Layout Measure(const std::vector<Token>& tokens) {
    Layout l;
    int n = static_cast<int>(tokens.size());
    for (int k = 0; k < n; ++k) {
        if (tokens[static_cast<size_t>(k)].kind == Kind::Exponent && l.exponentAt < 0) l.exponentAt = k;
        if (tokens[static_cast<size_t>(k)].kind == Kind::Percent) ++l.percents;
    }
    l.numberEnd = l.exponentAt >= 0 ? l.exponentAt : n;
    for (int k = 0; k < l.numberEnd; ++k) {
        Kind kind = tokens[static_cast<size_t>(k)].kind;
        if (kind == Kind::Point && l.pointAt < 0) l.pointAt = k;
        else if (IsDigitPlaceholder(kind)) (l.pointAt < 0 ? l.whole : l.fraction).push_back(k);
    }
    if (l.exponentAt >= 0)
        for (int k = l.exponentAt + 1; k < n; ++k)
            if (IsDigitPlaceholder(tokens[static_cast<size_t>(k)].kind)) l.exponentDigits.push_back(k);
    // Commas between two digits of the whole part group thousands; behind
    // the last digit of the number each divides by a thousand.
    int lastDigit = !l.fraction.empty() ? l.fraction.back() : l.whole.empty() ? -1 : l.whole.back();
    for (int k = 0; k < l.numberEnd; ++k) {
        if (tokens[static_cast<size_t>(k)].kind != Kind::Comma) continue;
        if (!l.whole.empty() && k > l.whole.front() && k < l.whole.back()) l.grouping = true;
        else if (lastDigit >= 0 && k > lastDigit) ++l.scale;
    }
    return l;
}

// The text of a fraction format ("# ?/?", "?/8"): the whole number, the
// numerator and the denominator with their placeholders.
std::wstring RenderFraction(const std::vector<Token>& tokens, int slashAt, double value) {
    // Placeholders right before the slash are the numerator; placeholders
    // before those, apart by something else, the whole number.
    int k = slashAt - 1;
    std::vector<int> numerator;
    while (k >= 0 && IsDigitPlaceholder(tokens[static_cast<size_t>(k)].kind)) numerator.insert(numerator.begin(), k--);
    std::vector<int> whole;
    for (int j = 0; j <= k; ++j)
        if (IsDigitPlaceholder(tokens[static_cast<size_t>(j)].kind)) whole.push_back(j);
    // The denominator: placeholders, or a fixed number.
    int n = static_cast<int>(tokens.size());
    std::vector<int> denominator;
    long fixed = 0;
    int j = slashAt + 1;
    if (j < n && tokens[static_cast<size_t>(j)].kind == Kind::Literal) {
        const std::wstring& text = tokens[static_cast<size_t>(j)].text;
        size_t digits = 0;
        while (digits < text.size() && std::iswdigit(text[digits])) ++digits;
        if (digits > 0 && digits <= 6) fixed = std::wcstol(text.substr(0, digits).c_str(), nullptr, 10);
    }
    while (j < n && IsDigitPlaceholder(tokens[static_cast<size_t>(j)].kind)) denominator.push_back(j++);
    int denominatorEnd = j;

    double whole_part = whole.empty() ? 0 : std::floor(value);
    double rest = value - whole_part;
    long num = 0, den = 1;
    if (fixed > 0) {
        den = fixed;
        num = std::lround(rest * static_cast<double>(fixed));
    } else {
        long maxDen = 1;
        for (size_t d = 0; d < std::max<size_t>(denominator.size(), 1) && maxDen < 100000; ++d) maxDen *= 10;
        maxDen -= 1;
        // The closest fraction with a denominator up to maxDen.
        double best = 2;
        for (long q = 1; q <= maxDen; ++q) {
            long p = std::lround(rest * static_cast<double>(q));
            double error = std::fabs(rest - static_cast<double>(p) / static_cast<double>(q));
            if (error < best - 1e-12) {
                best = error;
                num = p;
                den = q;
            }
        }
    }
    if (num == den && !whole.empty()) {
        whole_part += 1;
        num = 0;
    }
    std::wstring out;
    auto pad = [&](const std::vector<int>& places, std::wstring digits, bool left) {
        // Fills the placeholders: digits aligned right (left for a denominator).
        std::wstring text;
        size_t count = places.size();
        if (digits.size() >= count) return digits;
        size_t missing = count - digits.size();
        for (size_t m = 0; m < missing; ++m) {
            Kind kind = tokens[static_cast<size_t>(places[left ? count - 1 - m : m])].kind;
            text += kind == Kind::Zero ? L"0" : kind == Kind::Question ? L" " : L"";
        }
        return left ? digits + text : text + digits;
    };
    bool wholeShown = false;
    for (int t = 0; t < n; ++t) {
        const Token& token = tokens[static_cast<size_t>(t)];
        if (!whole.empty() && t == whole.front()) {
            std::wstring digits = whole_part > 0 ? std::to_wstring(static_cast<long long>(whole_part)) : L"";
            if (digits.empty() && num == 0) digits = L"0";
            out += pad(whole, digits, false);
            wholeShown = !digits.empty();
        } else if (!whole.empty() && t > whole.front() && t <= whole.back()) {
            continue;
        } else if (!numerator.empty() && t == numerator.front()) {
            if (num == 0 && wholeShown) out += std::wstring(numerator.size(), L' ');
            else out += pad(numerator, std::to_wstring(num), false);
        } else if (!numerator.empty() && t > numerator.front() && t <= numerator.back()) {
            continue;
        } else if (t == slashAt) {
            out += num == 0 && wholeShown ? L" " : L"/";
        } else if (t == slashAt + 1 && fixed > 0) {
            out += num == 0 && wholeShown ? std::wstring(token.text.size(), L' ') : token.text;
        } else if (t > slashAt && t < denominatorEnd) {
            if (t == slashAt + 1) {
                if (num == 0 && wholeShown) out += std::wstring(denominator.size(), L' ');
                else out += pad(denominator, std::to_wstring(den), true);
            }
        } else if (token.kind == Kind::Literal) {
            // A blank between the whole number and a hidden fraction stays.
            out += token.text;
        } else if (token.kind == Kind::Percent) {
            out += L"%";
        }
    }
    return out;
}

std::wstring RenderNumber(const NumberFormat::Section& section, double value) {
    const std::vector<Token>& tokens = section.tokens;
    Layout l = Measure(tokens);
    for (int p = 0; p < l.percents; ++p) value *= 100;
    for (int s = 0; s < l.scale; ++s) value /= 1000;
    if (l.exponentAt < 0) {
        for (size_t k = 0; k < tokens.size(); ++k) {
            if (tokens[k].kind == Kind::Slash && k > 0 && IsDigitPlaceholder(tokens[k - 1].kind))
                return RenderFraction(tokens, static_cast<int>(k), value);
        }
    }

    std::wstring whole, fraction, exponentText;
    bool exponentNegative = false;
    if (l.exponentAt >= 0) {
        int wholeCount = std::max<int>(1, static_cast<int>(l.whole.size()));
        bool engineering = false;
        for (int k : l.whole)
            if (tokens[static_cast<size_t>(k)].kind == Kind::Hash) engineering = true;
        Decimal d = ToDecimal(value);
        int exponent = 0;
        std::string w, f;
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (d.zero) {
                exponent = 0;
            } else if (engineering && wholeCount > 1) {
                exponent = static_cast<int>(std::floor(static_cast<double>(d.exponent) / wholeCount)) * wholeCount;
            } else {
                exponent = d.exponent - (wholeCount - 1);
            }
            Decimal shifted = d;
            shifted.exponent = d.exponent - exponent;
            RoundDecimal(shifted, static_cast<int>(l.fraction.size()), w, f);
            // Rounding up may add a digit: the exponent moves once.
            if (!d.zero && static_cast<int>(w.size()) > wholeCount && attempt == 0) {
                d.exponent += 1;
                d.digits = "1" + std::string(14, '0');
                continue;
            }
            break;
        }
        whole = Widen(w);
        fraction = Widen(f);
        exponentNegative = exponent < 0;
        exponentText = std::to_wstring(std::abs(exponent));
        size_t minimum = 0;
        for (int k : l.exponentDigits)
            if (tokens[static_cast<size_t>(k)].kind == Kind::Zero) ++minimum;
        if (exponentText.size() < minimum) exponentText.insert(0, minimum - exponentText.size(), L'0');
    } else {
        std::string w, f;
        RoundDecimal(ToDecimal(value), static_cast<int>(l.fraction.size()), w, f);
        whole = Widen(w);
        fraction = Widen(f);
    }

    // The whole part's placeholders, filled from the right.
    std::vector<std::wstring> wholeText(l.whole.size());
    if (l.grouping) {
        size_t zeros = 0;
        for (int k : l.whole)
            if (tokens[static_cast<size_t>(k)].kind == Kind::Zero) ++zeros;
        std::wstring digits = whole;
        if (digits.size() < zeros) digits.insert(0, zeros - digits.size(), L'0');
        if (!wholeText.empty()) wholeText[0] = GroupThousands(digits);
    } else {
        size_t count = l.whole.size();
        for (size_t r = 0; r < count; ++r) {
            size_t slot = count - 1 - r;
            Kind kind = tokens[static_cast<size_t>(l.whole[slot])].kind;
            if (r < whole.size()) wholeText[slot] = std::wstring(1, whole[whole.size() - 1 - r]);
            else wholeText[slot] = kind == Kind::Zero ? L"0" : kind == Kind::Question ? L" " : L"";
        }
        if (count > 0 && whole.size() > count) wholeText[0] = whole.substr(0, whole.size() - count + 1);
    }
    // The fraction's placeholders: trailing zeros fall away under # and ?.
    std::vector<std::wstring> fractionText(l.fraction.size());
    bool trailing = true;
    for (size_t r = l.fraction.size(); r-- > 0;) {
        Kind kind = tokens[static_cast<size_t>(l.fraction[r])].kind;
        wchar_t digit = r < fraction.size() ? fraction[r] : L'0';
        if (trailing && digit == L'0' && kind != Kind::Zero) {
            fractionText[r] = kind == Kind::Question ? L" " : L"";
        } else {
            trailing = false;
            fractionText[r] = std::wstring(1, digit);
        }
    }

    std::wstring out;
    size_t wholeIndex = 0, fractionIndex = 0;
    bool exponentShown = false;
    for (int k = 0; k < static_cast<int>(tokens.size()); ++k) {
        const Token& t = tokens[static_cast<size_t>(k)];
        switch (t.kind) {
        case Kind::Literal: out += t.text; break;
        case Kind::Zero: case Kind::Hash: case Kind::Question:
            if (k < l.numberEnd) {
                if (l.pointAt < 0 || k < l.pointAt) out += wholeText[wholeIndex++];
                else out += fractionText[fractionIndex++];
            } else if (!exponentShown) {
                out += exponentText;
                exponentShown = true;
            }
            break;
        case Kind::Point:
            if (k == l.pointAt) out += L".";
            break;
        case Kind::Percent: out += L"%"; break;
        case Kind::Exponent:
            out += std::wstring(1, t.text[0]);
            if (exponentNegative) out += L"-";
            else if (t.text[1] == L'+') out += L"+";
            if (l.exponentDigits.empty()) {
                out += exponentText;
                exponentShown = true;
            }
            break;
        case Kind::General: out += RenderGeneral(value); break;
        case Kind::Slash: out += L"/"; break;
        default: break;
        }
    }
    return out;
}

// ---- Dates and times ------------------------------------------------------------

struct Civil {
    int year, month, day;
};

// Days since 1970-01-01 to a calendar date (proleptic Gregorian).
Civil CivilFromDays(long long z) {
    z += 719468;
    long long era = (z >= 0 ? z : z - 146096) / 146097;
    long long doe = z - era * 146097;
    long long yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
    long long y = yoe + era * 400;
    long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    long long mp = (5 * doy + 2) / 153;
    long long d = doy - (153 * mp + 2) / 5 + 1;
    long long m = mp < 10 ? mp + 3 : mp - 9;
    return Civil{static_cast<int>(y + (m <= 2)), static_cast<int>(m), static_cast<int>(d)};
}

constexpr long long kDaysTo1899_12_30 = -25569;  // 1899-12-30 from 1970-01-01
constexpr long long kDaysTo1904_01_01 = -24107;

std::wstring Padded(long long number, int width) {
    std::wstring text = std::to_wstring(number);
    if (static_cast<int>(text.size()) < width) text.insert(0, static_cast<size_t>(width) - text.size(), L'0');
    return text;
}

std::wstring RenderDateTime(const NumberFormat::Section& section, double value, bool date1904) {
    if (!std::isfinite(value) || value < 0 || value >= (date1904 ? 2957004.0 : 2958466.0)) return kOverflow;
    int subDigits = 0;
    bool twelveHours = false;
    for (const Token& t : section.tokens) {
        if (t.kind == Kind::SubSecond) subDigits = std::max(subDigits, t.count);
        if (t.kind == Kind::AmPm) twelveHours = true;
    }
    // The time, rounded to what the format shows of it.
    long long days = static_cast<long long>(std::floor(value));
    long long unit = 1;
    for (int k = subDigits; k < 3; ++k) unit *= 10;
    long long millis = std::llround((value - static_cast<double>(days)) * 86400000.0);
    millis = (millis + unit / 2) / unit * unit;
    if (millis >= 86400000) {
        days += 1;
        millis -= 86400000;
    }
    long long totalMillis = days * 86400000 + millis;

    Civil date{};
    int weekday = 0;
    if (date1904) {
        date = CivilFromDays(kDaysTo1904_01_01 + days);
        weekday = static_cast<int>((days + 5) % 7);
    } else {
        // The program's calendar counts 29 February 1900, day 60, which
        // never was; days before it stand one later than the real calendar.
        if (days == 0) date = Civil{1900, 1, 0};
        else if (days == 60) date = Civil{1900, 2, 29};
        else date = CivilFromDays(kDaysTo1899_12_30 + days + (days < 60 ? 1 : 0));
        weekday = static_cast<int>((days + 6) % 7);
    }
    if (date.year > 9999) return kOverflow;
    long long hour = millis / 3600000, minute = millis / 60000 % 60, second = millis / 1000 % 60;
    long long fraction = millis % 1000;

    std::wstring out;
    bool elapsedHours = false, elapsedMinutes = false;
    for (const Token& t : section.tokens) {
        switch (t.kind) {
        case Kind::Literal: out += t.text; break;
        case Kind::Year: out += t.count <= 2 ? Padded(date.year % 100, 2) : Padded(date.year, 4); break;
        case Kind::Month:
            if (t.count == 1) out += std::to_wstring(date.month);
            else if (t.count == 2) out += Padded(date.month, 2);
            else if (t.count == 3) out += std::wstring(kMonths[date.month - 1], 3);
            else if (t.count == 5) out += std::wstring(kMonths[date.month - 1], 1);
            else out += kMonths[date.month - 1];
            break;
        case Kind::Day:
            if (t.count == 1) out += std::to_wstring(date.day);
            else if (t.count == 2) out += Padded(date.day, 2);
            else if (t.count == 3) out += std::wstring(kDays[weekday], 3);
            else out += kDays[weekday];
            break;
        case Kind::Hour: {
            long long h = hour;
            if (twelveHours) h = h % 12 == 0 ? 12 : h % 12;
            out += Padded(h, t.count >= 2 ? 2 : 1);
            break;
        }
        case Kind::Minute: out += Padded(minute, t.count >= 2 ? 2 : 1); break;
        case Kind::Second: out += Padded(second, t.count >= 2 ? 2 : 1); break;
        case Kind::SubSecond: {
            std::wstring digits = Padded(fraction, 3).substr(0, static_cast<size_t>(t.count));
            out += L"." + digits;
            break;
        }
        case Kind::AmPm: {
            bool pm = hour >= 12;
            if (t.text.size() == 5) {
                std::wstring word = pm ? L"PM" : L"AM";
                if (std::iswlower(t.text[0])) word = pm ? L"pm" : L"am";
                out += word;
            } else {
                wchar_t letter = pm ? L'P' : L'A';
                if (std::iswlower(t.text[pm ? 2 : 0])) letter = static_cast<wchar_t>(std::towlower(letter));
                out += letter;
            }
            break;
        }
        case Kind::ElapsedHours:
            elapsedHours = true;
            out += Padded(totalMillis / 3600000, t.count);
            break;
        case Kind::ElapsedMinutes:
            elapsedMinutes = true;
            out += Padded(elapsedHours ? minute : totalMillis / 60000, t.count);
            break;
        case Kind::ElapsedSeconds:
            out += Padded(elapsedHours || elapsedMinutes ? second : totalMillis / 1000, t.count);
            break;
        default: break;
        }
    }
    return out;
}

bool Holds(const NumberFormat::Section& s, double value) {
    if (s.op == L"<") return value < s.operand;
    if (s.op == L">") return value > s.operand;
    if (s.op == L"=") return value == s.operand;
    if (s.op == L"<=") return value <= s.operand;
    if (s.op == L">=") return value >= s.operand;
    if (s.op == L"<>") return value != s.operand;
    return false;
}

}  // namespace

std::wstring_view BuiltInFormatCode(unsigned id) { return id < kBuiltIn.size() ? kBuiltIn[id] : std::wstring_view(); }

std::wstring GeneralNumber(double value) { return RenderGeneral(value); }

NumberFormat::NumberFormat(std::wstring_view code) {
    std::wstring_view trimmed = code;
    if (trimmed.empty() || (trimmed.size() == 7 && StartsWithNoCase(trimmed, 0, L"general"))) return;
    for (std::wstring_view part : SplitSections(code)) {
        if (m_sections.size() == 4) break;
        m_sections.push_back(ReadSection(part));
    }
    m_general = false;
}

NumberFormat::~NumberFormat() = default;
NumberFormat::NumberFormat(NumberFormat&&) noexcept = default;
NumberFormat& NumberFormat::operator=(NumberFormat&&) noexcept = default;

bool NumberFormat::IsDateTime() const { return !m_sections.empty() && m_sections[0].isDateTime; }

std::wstring NumberFormat::Format(double value, bool date1904) const {
    if (m_general || m_sections.empty()) return RenderGeneral(value);
    if (!std::isfinite(value)) return L"#NUM!";
    // Which section shows the number, and whether a minus sign goes in front.
    size_t count = m_sections.size();
    const Section* section = &m_sections[0];
    bool minus = false;
    bool conditional = m_sections[0].hasCondition || (count > 1 && m_sections[1].hasCondition);
    if (conditional) {
        if (m_sections[0].hasCondition && Holds(m_sections[0], value)) section = &m_sections[0];
        else if (count > 1 && m_sections[1].hasCondition && Holds(m_sections[1], value)) section = &m_sections[1];
        else if (count > 2) section = &m_sections[2];
        else if (count > 1 && !m_sections[1].hasCondition) section = &m_sections[1];
        else return std::wstring(kOverflow);
        minus = value < 0;
    } else if (count == 1 || value > 0 || (value == 0 && count < 3)) {
        section = &m_sections[0];
        minus = value < 0;
    } else if (value < 0) {
        section = &m_sections[1];
    } else {
        section = &m_sections[2];
    }
    if (section->tokens.empty()) return std::wstring();
    if (section->hasText && !section->isDateTime) {
        bool digits = false;
        for (const Token& t : section->tokens)
            if (IsDigitPlaceholder(t.kind) || t.kind == Kind::General) digits = true;
        if (!digits) return RenderGeneral(value);
    }
    // A date or time before the calendar's start cannot be shown.
    if (section->isDateTime) return value < 0 ? std::wstring(kOverflow) : RenderDateTime(*section, value, date1904);
    std::wstring text = RenderNumber(*section, std::fabs(value));
    return minus ? L"-" + text : text;
}

std::wstring NumberFormat::FormatText(const std::wstring& text) const {
    const Section* section = nullptr;
    if (m_sections.size() == 4) section = &m_sections[3];
    else
        for (const Section& s : m_sections)
            if (s.hasText) {
                section = &s;
                break;
            }
    if (!section) return text;
    std::wstring out;
    for (const Token& t : section->tokens) {
        if (t.kind == Kind::Literal) out += t.text;
        else if (t.kind == Kind::At) out += text;
    }
    return out;
}

}  // namespace cadhost::spreadsheet
