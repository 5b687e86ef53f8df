#include "SourcePath.h"

#include <shlwapi.h>

#include <cwchar>

namespace {
const int kPathBufferLength = MAX_PATH;
}

BOOL GetSourceFilePath(const CString& path, AcDbDatabase* database, CString& fullPath, CString& message) {
    WCHAR combined[kPathBufferLength];
    if (PathIsRelativeW(path)) {
        const ACHAR* drawing = nullptr;
        if (!database || database->getFilename(drawing) != Acad::eOk || !drawing || !*drawing) {
            message.Format(L"The path %s is relative to the drawing's folder, and the drawing has not been saved yet.",
                           (LPCTSTR)path);
            return FALSE;
        }
        WCHAR folder[kPathBufferLength];
        if (wcslen(drawing) >= static_cast<size_t>(kPathBufferLength)) {
            message.Format(L"The drawing's path is longer than %d characters, so %s cannot be found from it.",
                           kPathBufferLength - 1, (LPCTSTR)path);
            return FALSE;
        }
        wcscpy(folder, drawing);
        PathRemoveFileSpecW(folder);
        if (!PathCombineW(combined, folder, path)) {
            message.Format(L"The path %s, read from the drawing's folder %s, is longer than %d characters.",
                           (LPCTSTR)path, folder, kPathBufferLength - 1);
            return FALSE;
        }
    } else if (!PathCombineW(combined, nullptr, path)) {
        message.Format(L"The path is longer than %d characters: %s", kPathBufferLength - 1,
                       (LPCTSTR)path);
        return FALSE;
    }
    fullPath = combined;
    return TRUE;
}

