// Wildcard patterns as the platform's editor matches them.
#pragma once

#include <string_view>

namespace cadhost {

bool WildcardMatch(std::wstring_view text, std::wstring_view pattern, bool ignoreCase);

}  // namespace cadhost
