// The display text of a number under a field's format text. The drawing's
// units come in as plain values, so that this needs no drawing.
#pragma once

#include <string>
#include <string_view>

#include "format/NumberStyle.h"

namespace cadhost::format {

// LUNITS and LUPREC of the drawing the value belongs to.
struct DrawingUnits {
    int lunits = kDecimal;
    int luprec = 4;
};

// What a field shows for a number that cannot be written.
inline constexpr const wchar_t* kNoValueText = L"####";

// A real under a format text: the number, multiplied by the %ct8 factor and
// divided by 144 for %ct4, in the units and precision of %lu and %pr (the
// drawing's where absent, %lu6 its units), with the zeros of %zs left out
// and the separators of %ds and %th; then the %ps prefix before it and,
// behind it, the text outside directives and the %ps suffix. %qf1 marks an
// area, which has no feet-and-inches form: engineering and architectural
// units write it in decimal.
std::wstring FormatReal(double value, std::wstring_view format, const DrawingUnits& drawing);

// A whole number (a count): as a real, except that without a %lu it stays
// in decimal with the precision of %pr, or none.
std::wstring FormatWhole(long long value, std::wstring_view format, const DrawingUnits& drawing);

// A point as "(x,y)" or "(x,y,z)", each coordinate in the units, precision,
// zeros and separators that the format text gives.
std::wstring FormatPoint(const double* coordinates, int count, std::wstring_view format,
                         const DrawingUnits& drawing);

}  // namespace cadhost::format
