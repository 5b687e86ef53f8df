// How a number is written: the linear unit notation, the precision, which
// zeros are left out, and the separators.
#pragma once

#include <optional>
#include <string>

namespace cadhost::format {

enum LinearUnits {
    kScientific = 1,     // 1.5500E+01
    kDecimal = 2,        // 15.5000
    kEngineering = 3,    // 1'-3.5000"
    kArchitectural = 4,  // 1'-3 1/2"
    kFractional = 5,     // 15 1/2
};

constexpr int kMaxPrecision = 8;

struct NumberStyle {
    int units = kDecimal;
    // Decimals, or for architectural and fractional units the power of two
    // of the denominator (3 gives eighths).
    int precision = 4;
    bool suppressZeroFeet = false;    // 0'-6" becomes 6"
    bool suppressZeroInches = false;  // 1'-0" becomes 1'
    bool suppressLeadingZeros = false;   // 0.5000 becomes .5000
    bool suppressTrailingZeros = false;  // 12.5000 becomes 12.5
    wchar_t decimalSeparator = L'.';
    wchar_t thousandsSeparator = 0;  // 0: digits are not grouped
};

// The style that the DIMZIN system variable gives: its two low bits choose
// which of zero feet and zero inches show (0 neither, 1 both, 2 only zero
// feet, 3 only zero inches), 4 and 8 leave out leading and trailing zeros.
NumberStyle StyleForDimzin(int units, int precision, int dimzin);

// The value in the style; nothing for a value that is not a finite number
// or units outside 1 to 5. A value that rounds to zero has no sign.
std::optional<std::wstring> NumberText(double value, const NumberStyle& style);

}  // namespace cadhost::format
