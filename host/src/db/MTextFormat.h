// The formatting codes of multiline text.
#pragma once

#include <string>
#include <string_view>

namespace cadhost {

// The text as it reads without its formatting codes: font, height, color,
// width, oblique, tracking and alignment codes and braces go, "\P" becomes
// a line break, "\~" a blank, a stack "\Sa^b;" becomes "a/b", "\\", "\{"
// and "\}" their characters; "%%d", "%%p" and "%%c" become the degree,
// plus-minus and diameter signs.
std::wstring StripMTextCodes(std::wstring_view text);

}  // namespace cadhost
