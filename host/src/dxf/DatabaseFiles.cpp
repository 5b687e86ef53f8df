// The database's files: reading a drawing, saving it, and the new drawing
// the host starts from.
#include <dbmain.h>

#include <cstdio>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "dxf/DxfFiles.h"

namespace cadhost {

bool BuildFromTemplate(AcDbDatabase& database) {
    std::string_view text = dxf::NewDrawingTemplate();
    std::FILE* file = fmemopen(const_cast<char*>(text.data()), text.size(), "rb");
    if (!file) return false;
    std::wstring error;
    Acad::ErrorStatus es = dxf::ReadStream(file, L"the new drawing", database, error);
    std::fclose(file);
    return es == Acad::eOk;
}

}  // namespace cadhost

Acad::ErrorStatus AcDbDatabase::readDwgFile(const ACHAR* fileName, int, bool, const wchar_t*) {
    if (!fileName || !*fileName) {
        m_impl->lastError = L"no file name was given";
        return Acad::eInvalidInput;
    }
    std::wstring error;
    Acad::ErrorStatus es = cadhost::dxf::ReadFile(std::filesystem::path(cadhost::ToUtf8(fileName)), *this, error);
    m_impl->lastError = es == Acad::eOk ? std::wstring() : error;
    return es;
}

Acad::ErrorStatus AcDbDatabase::dxfIn(const ACHAR* fileName, const ACHAR*) { return readDwgFile(fileName); }

Acad::ErrorStatus AcDbDatabase::saveAs(const ACHAR* fileName) {
    if (!fileName || !*fileName) {
        m_impl->lastError = L"no file name was given";
        return Acad::eInvalidInput;
    }
    std::wstring error;
    Acad::ErrorStatus es = cadhost::dxf::WriteFile(*this, std::filesystem::path(cadhost::ToUtf8(fileName)), error);
    m_impl->lastError = es == Acad::eOk ? std::wstring() : error;
    if (es == Acad::eOk) m_impl->fileName = fileName;
    return es;
}

Acad::ErrorStatus AcDbDatabase::dxfOut(const ACHAR* fileName, int, bool) { return saveAs(fileName); }
