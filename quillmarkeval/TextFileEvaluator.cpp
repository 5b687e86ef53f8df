#include "TextFileEvaluator.h"

#include <tchar.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <string>

#include "EvaluatorIds.h"
#include "SourcePath.h"
#include "TableCellEvaluator.h"
#include "TextDecoding.h"

namespace {

// What a pass keeps of the files it read, in characters: 16 files at the
// limit, or thousands of ordinary notes.
const size_t kPassBudget = 16 * QM_TEXT_FILE_LIMIT;

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    if (result) result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

CTextFileContent Failed(const std::wstring& reason) {
    CTextFileContent content;
    content.reason = reason;
    return content;
}

std::wstring OpenFailure(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
        return L"cannot be read: access is denied.";
    case ENOENT:
        return L"does not exist.";
    case EISDIR:
        return L"is a folder, not a text file.";
    default:
        return L"cannot be opened (error " + std::to_wstring(error) + L").";
    }
}

}  // namespace

CTextFileContent ReadTextFile(const std::wstring& fullPath) {
    DWORD attributes = GetFileAttributesW(fullPath.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return Failed(GetLastError() == ERROR_ACCESS_DENIED ? L"cannot be reached: access is denied."
                                                            : L"does not exist.");
    if (attributes & FILE_ATTRIBUTE_DIRECTORY) return Failed(L"is a folder, not a text file.");
    // A device or a pipe might never end, or never begin.
    if (attributes & FILE_ATTRIBUTE_DEVICE) return Failed(L"is not a plain file.");

    FILE* file = _wfopen(fullPath.c_str(), L"rb");
    if (!file) return Failed(OpenFailure(errno));
    // Read in pieces up to one byte past the limit: a file's size can
    // change while it is read, and most files are far below the limit.
    std::string bytes;
    char piece[64 * 1024];
    size_t got = 0;
    while (got <= QM_TEXT_FILE_LIMIT) {
        size_t read = std::fread(piece, 1, std::min(sizeof piece, QM_TEXT_FILE_LIMIT + 1 - got), file);
        if (read == 0) break;
        bytes.append(piece, read);
        got += read;
    }
    bool broken = std::ferror(file) != 0;
    int error = errno;
    long size = got > QM_TEXT_FILE_LIMIT && std::fseek(file, 0, SEEK_END) == 0 ? std::ftell(file) : -1;
    std::fclose(file);
    if (broken) return Failed(error == EISDIR ? OpenFailure(error) : L"cannot be read (error " + std::to_wstring(error) + L").");
    if (got > QM_TEXT_FILE_LIMIT) {
        std::wstring length = size > 0 ? std::to_wstring(size) + L" bytes" : L"more than that";
        return Failed(L"is larger than the " + std::to_wstring(QM_TEXT_FILE_LIMIT) +
                      L" bytes (1 MiB) a Text File field shows: " + length + L".");
    }
    DecodedText decoded = DecodeTextFile(bytes);
    if (decoded.nulAt != std::wstring::npos)
        return Failed(L"is not text: it holds a NUL byte at offset " + std::to_wstring(decoded.nulAt) + L".");
    CTextFileContent content;
    content.read = true;
    content.value.set(JoinLines(decoded.text).c_str());
    return content;
}

AsdkTextFileEvaluator::AsdkTextFileEvaluator() : m_files(kPassBudget) {}
AsdkTextFileEvaluator::~AsdkTextFileEvaluator() = default;

const ACHAR* AsdkTextFileEvaluator::evaluatorId() const { return QM_EVAL_TEXT_FILE; }

Acad::ErrorStatus AsdkTextFileEvaluator::evaluate(AcDbField* field, int, AcDbDatabase* database,
                                                  AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    CString path = GetFieldArguments(field);
    path.Trim();
    if (path.IsEmpty()) return Fail(result, AcDbField::kInvalidCode, L"The field names no text file.");
    AcFdFieldValue data((LPCTSTR)path);
    field->setData(QM_TEXT_FILE_DATA, &data);

    if (!database) database = field->database();
    CString fullPath, message;
    if (!GetSourceFilePath(path, database, fullPath, message)) return Fail(result, AcDbField::kInvalidCode, message);
    const CTextFileContent& content = m_files.Get(fullPath.str(), ReadTextFile);
    if (!content.read) {
        CString named = path;
        if (fullPath != path) named.Format(L"%s (%s)", (LPCTSTR)path, (LPCTSTR)fullPath);
        message.Format(L"The file %s %s", (LPCTSTR)named, content.reason.c_str());
        return Fail(result, AcDbField::kInvalidCode, message);
    }
    result->setFieldValue(&content.value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
