// Opening a file for reading only when it is a regular file: a pipe, a
// device or a socket is refused before it is opened (reading one would
// block, or never end), and a loop of symbolic links is named as such.
#pragma once

#include <cstdio>
#include <filesystem>
#include <string>

namespace cadhost {

// What became of an attempt to open a file for reading.
enum class OpenResult { kOpened, kMissing, kFolder, kNotRegular, kRefused };

// Opens path for reading into file; on anything but kOpened, file is null
// and error says why, naming the path and, for a file of another kind, what
// was wanted ("a drawing").
OpenResult OpenRegularFile(const std::filesystem::path& path, const std::wstring& wanted, std::FILE*& file,
                           std::wstring& error);

}  // namespace cadhost
