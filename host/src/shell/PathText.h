// The text of the host's paths, shared by the shell's path functions and
// the runtime's: "/" separates and "." and ".." resolve lexically. In a
// relative path a backslash separates too, as in a path written on the
// platform ("..\data\notes.txt", as a drawing made there holds it); in the
// host's own absolute paths it is a character of a name, as POSIX has it.
#pragma once

#include <string>
#include <vector>

namespace cadhost {

constexpr wchar_t kPathSeparator = L'/';

inline bool IsPathSeparator(wchar_t c) { return c == kPathSeparator; }

// The elements of a path, without empty ones ("a//b" has two).
std::vector<std::wstring> PathElements(const std::wstring& path);

// A relative path with its backslashes written as "/"; any other as it is.
std::wstring HostSeparators(const std::wstring& path);

// "." and ".." resolved, none of the separators doubled and none at the
// end but the root's. ".." above the root stays at the root; at the front
// of a relative path it is kept.
std::wstring CanonicalPath(const std::wstring& path);

}  // namespace cadhost
