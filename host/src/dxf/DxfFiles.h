// Reading a drawing from a DXF file and writing one to it.
#pragma once

#include <dbmain.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <string_view>

namespace cadhost::dxf {

// Reads a whole file into an empty database (one made without a default
// drawing). On failure the database is left as it was and error names the
// file and, for a fault of the file, its line.
Acad::ErrorStatus ReadFile(const std::filesystem::path& path, AcDbDatabase& into, std::wstring& error);
// The same from an open stream; name is what errors call it.
Acad::ErrorStatus ReadStream(std::FILE* file, const std::wstring& name, AcDbDatabase& into, std::wstring& error);

// Writes the database as DXF into a new file beside path, then puts it in
// place of path; a failed write leaves what was at path untouched.
Acad::ErrorStatus WriteFile(const AcDbDatabase& database, const std::filesystem::path& path, std::wstring& error);
Acad::ErrorStatus WriteStream(const AcDbDatabase& database, std::FILE* file);

// The host's template of a new drawing, as DXF text.
std::string_view NewDrawingTemplate();

}  // namespace cadhost::dxf
