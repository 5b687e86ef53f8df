// The text of the host's paths, shared by the shell's path functions and
// the runtime's: "/" separates, and so does a backslash, as on the
// platform; "." and ".." resolve lexically.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace cadhost {

constexpr wchar_t kPathSeparator = L'/';

inline bool IsPathSeparator(wchar_t c) { return c == L'/' || c == L'\\'; }

// The elements of a path, without empty ones ("a//b" has two).
std::vector<std::wstring> PathElements(const std::wstring& path);

// "." and ".." resolved, separators written as "/", none doubled and none
// at the end but the root's. ".." above the root stays at the root; at
// the front of a relative path it is kept.
std::wstring CanonicalPath(const std::wstring& path);

// A path as the host's file system takes it: UTF-8, "/" separators.
std::filesystem::path HostPath(const std::wstring& path);

}  // namespace cadhost
