// The values of DXF groups: what type each group code holds, reading
// numbers and handles from their text, and writing them back.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cadhost::dxf {

enum class ValueType { kText, kReal, kInteger, kHandle, kBinary };

// The type of value a group code holds, as the DXF reference assigns them.
ValueType ValueTypeOf(int code);

// Each answers false for text that is not wholly such a value (blanks
// around it are allowed).
bool ParseReal(std::string_view text, double& value);
bool ParseInteger(std::string_view text, long long& value);
bool ParseHandle(std::string_view text, uint64_t& value);

// The shortest text that reads back as the same double, with ".0" on whole
// numbers.
void AppendReal(std::string& out, double value);
std::string FormatHandle(uint64_t value);

}  // namespace cadhost::dxf
