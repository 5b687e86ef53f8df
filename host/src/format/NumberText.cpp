#include <algorithm>
#include <cmath>
#include <numeric>

#include "format/ExactDecimal.h"
#include "format/NumberStyle.h"

namespace cadhost::format {
namespace {

// Beyond 2^52 a double has no fraction, so no inches or fractions to show.
constexpr double kWholeOnly = 4503599627370496.0;

struct Rendered {
    std::wstring text;
    bool zero = false;  // the written value is zero
};

std::wstring Widen(const std::string& text) { return std::wstring(text.begin(), text.end()); }

std::wstring Group(const std::string& integer, wchar_t separator) {
    if (!separator) return Widen(integer);
    std::wstring out;
    for (size_t i = 0; i < integer.size(); ++i) {
        if (i > 0 && (integer.size() - i) % 3 == 0) out += separator;
        out += static_cast<wchar_t>(integer[i]);
    }
    return out;
}

// A decimal number text ("0.5000") under the style's zero and separator rules.
std::wstring StyleDecimal(const std::string& digits, const NumberStyle& style, bool group) {
    size_t point = digits.find('.');
    std::string integer = digits.substr(0, point);
    std::string fraction = point == std::string::npos ? std::string() : digits.substr(point + 1);
    if (style.suppressTrailingZeros) {
        size_t last = fraction.find_last_not_of('0');
        fraction.resize(last == std::string::npos ? 0 : last + 1);
    }
    if (style.suppressLeadingZeros && integer == "0" && !fraction.empty()) integer.clear();
    std::wstring out = group ? Group(integer, style.thousandsSeparator) : Widen(integer);
    if (!fraction.empty()) out += style.decimalSeparator + Widen(fraction);
    return out;
}

Rendered Decimal(double magnitude, const NumberStyle& style) {
    std::string digits = FixedDigits(magnitude, style.precision);
    return {StyleDecimal(digits, style, true), AllZeroDigits(digits)};
}

Rendered Scientific(double magnitude, const NumberStyle& style) {
    ScientificDigits parts = ScientificParts(magnitude, style.precision);
    std::wstring exponent = std::to_wstring(std::abs(parts.exponent));
    if (exponent.size() < 2) exponent.insert(0, 1, L'0');
    std::wstring text = StyleDecimal(parts.mantissa, style, false);
    text += parts.exponent < 0 ? L"E-" : L"E+";
    return {text + exponent, AllZeroDigits(parts.mantissa)};
}

// Feet and inches joined as the zero rules say: 1'-3", 1', 3", 0'-0".
std::wstring JoinFeetInches(const std::wstring& feet, bool feetZero, const std::wstring& inches, bool inchesZero,
                            const NumberStyle& style) {
    bool showFeet = !(feetZero && style.suppressZeroFeet);
    bool showInches = !(inchesZero && style.suppressZeroInches);
    if (!showFeet && !showInches) showInches = true;  // a zero length still shows as 0"
    std::wstring text;
    if (showFeet) text += feet + L"'";
    if (showFeet && showInches) text += L"-";
    if (showInches) text += inches + L"\"";
    return text;
}

// Whole feet and the inches left over; fmod is exact.
void SplitFeet(double magnitude, double& feet, double& inches) {
    inches = std::fmod(magnitude, 12.0);
    feet = std::round((magnitude - inches) / 12.0);
}

Rendered Engineering(double magnitude, const NumberStyle& style) {
    double feet = 0, inches = 0;
    SplitFeet(magnitude, feet, inches);
    std::string inchDigits = FixedDigits(inches, style.precision);
    if (inchDigits.compare(0, 2, "12") == 0 && (inchDigits.size() == 2 || inchDigits[2] == '.')) {
        feet += 1;  // 11.9999 inches rounded up to a whole foot
        inchDigits = FixedDigits(0.0, style.precision);
    }
    std::string feetDigits = FixedDigits(feet, 0);
    bool feetZero = feet == 0, inchesZero = AllZeroDigits(inchDigits);
    std::wstring text = JoinFeetInches(Group(feetDigits, style.thousandsSeparator), feetZero,
                                       StyleDecimal(inchDigits, style, false), inchesZero, style);
    return {text, feetZero && inchesZero};
}

// A whole number and a reduced fraction of 2^precision: "3 1/2", "1/2", "3".
std::wstring WholeAndFraction(const std::wstring& whole, bool wholeZero, long numerator, long denominator,
                              bool dropZeroWhole) {
    if (numerator == 0) return whole;
    long divisor = std::gcd(numerator, denominator);
    std::wstring fraction = std::to_wstring(numerator / divisor) + L"/" + std::to_wstring(denominator / divisor);
    if (wholeZero && dropZeroWhole) return fraction;
    return whole + L" " + fraction;
}

Rendered Architectural(double magnitude, const NumberStyle& style) {
    long denominator = 1L << style.precision;
    double feet = 0, inches = 0;
    SplitFeet(magnitude, feet, inches);
    long units = magnitude >= kWholeOnly ? 0 : static_cast<long>(std::round(inches * static_cast<double>(denominator)));
    if (units >= 12 * denominator) {
        feet += 1;
        units -= 12 * denominator;
    }
    long wholeInches = units / denominator, numerator = units % denominator;
    bool feetZero = feet == 0, inchesZero = units == 0;
    std::wstring feetText = Group(FixedDigits(feet, 0), style.thousandsSeparator);
    // Behind shown feet a fraction of an inch keeps its whole: 0'-0 1/2".
    bool showFeet = !(feetZero && style.suppressZeroFeet);
    std::wstring inchText =
        WholeAndFraction(std::to_wstring(wholeInches), wholeInches == 0, numerator, denominator, !showFeet);
    std::wstring text = JoinFeetInches(feetText, feetZero, inchText, inchesZero, style);
    return {text, feetZero && inchesZero};
}

Rendered Fractional(double magnitude, const NumberStyle& style) {
    double denominator = std::ldexp(1.0, style.precision);
    double whole = magnitude, numerator = 0;
    if (magnitude < kWholeOnly) {
        double units = std::round(magnitude * denominator);
        whole = std::floor(units / denominator);
        numerator = units - whole * denominator;
    }
    std::wstring wholeText = Group(FixedDigits(whole, 0), style.thousandsSeparator);
    std::wstring text = WholeAndFraction(wholeText, whole == 0, static_cast<long>(numerator),
                                         static_cast<long>(denominator), true);
    return {text, whole == 0 && numerator == 0};
}

}  // namespace

NumberStyle StyleForDimzin(int units, int precision, int dimzin) {
    NumberStyle style;
    style.units = units;
    style.precision = precision;
    switch (dimzin & 3) {
    case 0: style.suppressZeroFeet = style.suppressZeroInches = true; break;
    case 1: break;
    case 2: style.suppressZeroInches = true; break;
    case 3: style.suppressZeroFeet = true; break;
    }
    style.suppressLeadingZeros = (dimzin & 4) != 0;
    style.suppressTrailingZeros = (dimzin & 8) != 0;
    return style;
}

std::optional<std::wstring> NumberText(double value, const NumberStyle& given) {
    if (!std::isfinite(value)) return std::nullopt;
    NumberStyle style = given;
    style.precision = std::clamp(style.precision, 0, kMaxPrecision);
    double magnitude = std::fabs(value);
    Rendered rendered;
    switch (style.units) {
    case kScientific: rendered = Scientific(magnitude, style); break;
    case kDecimal: rendered = Decimal(magnitude, style); break;
    case kEngineering: rendered = Engineering(magnitude, style); break;
    case kArchitectural: rendered = Architectural(magnitude, style); break;
    case kFractional: rendered = Fractional(magnitude, style); break;
    default: return std::nullopt;
    }
    if (value < 0 && !rendered.zero) rendered.text.insert(0, 1, L'-');
    return rendered.text;
}

}  // namespace cadhost::format
