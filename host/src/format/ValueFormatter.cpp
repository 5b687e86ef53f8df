#include "format/ValueFormatter.h"

#include <algorithm>

#include "format/FormatText.h"

namespace cadhost::format {
namespace {

NumberStyle ResolveStyle(const FormatDirectives& directives, const DrawingUnits& drawing, bool whole) {
    int lunits = drawing.lunits >= kScientific && drawing.lunits <= kFractional ? drawing.lunits : kDecimal;
    int luprec = std::clamp(drawing.luprec, 0, kMaxPrecision);
    NumberStyle style;
    if (directives.units) {
        style.units = *directives.units == 6 ? lunits : *directives.units;
        style.precision = directives.precision.value_or(luprec);
    } else {
        style.units = whole ? kDecimal : lunits;
        style.precision = directives.precision.value_or(whole ? 0 : luprec);
    }
    if (directives.quantity == 1 && (style.units == kEngineering || style.units == kArchitectural))
        style.units = kDecimal;
    int zeros = directives.zeroSuppression.value_or(0);
    style.suppressZeroFeet = (zeros & 1) != 0;
    style.suppressZeroInches = (zeros & 2) != 0;
    style.suppressLeadingZeros = (zeros & 4) != 0;
    style.suppressTrailingZeros = (zeros & 8) != 0;
    if (directives.decimalSeparator) style.decimalSeparator = directives.decimalSeparator;
    style.thousandsSeparator = directives.thousandsSeparator;
    return style;
}

std::wstring Compose(double value, const FormatDirectives& directives, const NumberStyle& style) {
    if (directives.factor) value *= *directives.factor;
    if (directives.squareInchesToFeet) value /= 144.0;
    std::optional<std::wstring> number = NumberText(value, style);
    if (!number) return kNoValueText;
    return directives.prefix + *number + directives.literal + directives.suffix;
}

}  // namespace

std::wstring FormatReal(double value, std::wstring_view format, const DrawingUnits& drawing) {
    FormatDirectives directives = ParseFormatText(format);
    return Compose(value, directives, ResolveStyle(directives, drawing, false));
}

std::wstring FormatWhole(long long value, std::wstring_view format, const DrawingUnits& drawing) {
    FormatDirectives directives = ParseFormatText(format);
    return Compose(static_cast<double>(value), directives, ResolveStyle(directives, drawing, true));
}

std::wstring FormatPoint(const double* coordinates, int count, std::wstring_view format,
                         const DrawingUnits& drawing) {
    FormatDirectives directives = ParseFormatText(format);
    NumberStyle style = ResolveStyle(directives, drawing, false);
    std::wstring text = L"(";
    for (int i = 0; i < count; ++i) {
        std::optional<std::wstring> number = NumberText(coordinates[i], style);
        if (!number) return kNoValueText;
        if (i > 0) text += L",";
        text += *number;
    }
    return text + L")";
}

}  // namespace cadhost::format
