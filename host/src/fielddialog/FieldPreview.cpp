#include "fielddialog/FieldPreview.h"

#include <dbfield.h>

namespace cadhost {

std::wstring PreviewFieldCode(const wchar_t* fieldCode, const wchar_t* format, AcDbDatabase* database) {
    std::wstring code = fieldCode ? fieldCode : L"";
    if (code.find_first_not_of(L" \t\r\n") == std::wstring::npos) return std::wstring();
    AcDbField field;
    if (field.setFieldCode(code.c_str(), AcDbField::FieldCodeFlag(0)) == Acad::eOk) {
        if (format && *format) field.setFormat(format);
        field.evaluate(AcDbField::kPreview, database);
    }
    return field.getValue();
}

}  // namespace cadhost
