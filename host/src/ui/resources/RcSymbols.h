// The names that a resource script knows without including anything: the
// window, dialog and control styles, the standard ids, menu flags and font
// weights, with the platform's values.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

namespace cadhost::ui::rc {

const std::unordered_map<std::wstring, int64_t>& BuiltinSymbols();

// The platform's own headers, which a script includes for the names above.
bool IsSystemHeader(const std::wstring& name);

}  // namespace cadhost::ui::rc
