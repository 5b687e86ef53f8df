// Conversion between the host's wide text and UTF-8 at its edges: files,
// the console and process arguments.
#pragma once

#include <string>
#include <string_view>

namespace cadhost {

std::string ToUtf8(std::wstring_view text);
// Malformed sequences become U+FFFD, so that no input is ever refused.
std::wstring FromUtf8(std::string_view text);
// The same into a buffer of at least text.size() characters (never more
// characters than bytes come out); answers how many were written, without a
// terminating zero.
size_t FromUtf8(std::string_view text, wchar_t* out);
// Wide text as a round trip through UTF-8 leaves it: what is no character
// (a surrogate, a value beyond U+10FFFF) becomes U+FFFD.
std::wstring ValidText(std::wstring_view text);

}  // namespace cadhost
