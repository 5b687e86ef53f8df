// The directives of a field's format text (the text of its \f option):
// %lu<n> units, %pr<n> precision, %ps[prefix,suffix], %ct8[factor], %ct4,
// %qf<n>, %zs<n>, %ds<n>, %th<n>. Text that is no directive is kept, in
// order, to be shown behind the number.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace cadhost::format {

struct FormatDirectives {
    std::optional<int> units;      // 1 to 5, or 6 for the drawing's units
    std::optional<int> precision;  // 0 to 8; more reads as 8
    bool hasPrefixSuffix = false;
    std::wstring prefix, suffix;   // unescaped
    std::optional<double> factor;  // %ct8[f], finite
    bool squareInchesToFeet = false;  // %ct4: divide by 144
    int quantity = 0;                 // %qf<n>: 1 marks an area
    std::optional<int> zeroSuppression;  // bits: 1 zero feet, 2 zero inches, 4 leading, 8 trailing
    wchar_t decimalSeparator = 0;   // 0: not given
    wchar_t thousandsSeparator = 0;
    std::wstring literal;  // the text outside directives
};

// Reads any text. A directive that is cut short or unknown stays in the
// literal text as it stands; one with an operand out of range is dropped.
// A later directive of a kind replaces an earlier one.
FormatDirectives ParseFormatText(std::wstring_view text);

}  // namespace cadhost::format
