// The preview of a field code: its value text, evaluated in the preview
// context of a drawing.
#pragma once

#include <dbmain.h>

#include <string>

namespace cadhost {

// Empty for a blank code, "####" for one that does not evaluate.
std::wstring PreviewFieldCode(const wchar_t* fieldCode, const wchar_t* format, AcDbDatabase* database);

}  // namespace cadhost
