#include "pages/PathType.h"

#include <direct.h>
#include <tchar.h>

#include "Product.h"
#include "resources/resource.h"

namespace {

const int kPathBufferLength = MAX_PATH;

CComboBox* PathTypeOf(CWnd* page) { return page ? static_cast<CComboBox*>(page->GetDlgItem(IDC_PATH_TYPE)) : nullptr; }

}  // namespace

void FillPathTypes(CComboBox& pathType) {
    pathType.AddString(L"Full Path");
    pathType.AddString(L"Relative Path");
    pathType.SetCurSel(QM_PATH_TYPE_FULL);
}

CString GetDrawingPath() {
    CDocument* document = acedGetAcadDoc();
    return document ? document->GetPathName() : CString();
}

CString MakeRelativePath(CWnd* page, const CString& path) {
    WCHAR relative[kPathBufferLength];
    relative[0] = L'\0';
    CString drawing = GetDrawingPath();
    if (PathRelativePathToW(relative, drawing, FILE_ATTRIBUTE_NORMAL, path, FILE_ATTRIBUTE_NORMAL))
        return CString(relative);
    CString message;
    message.Format(QM_MESSAGE_NO_RELATIVE_PATH, (LPCTSTR)drawing, (LPCTSTR)path);
    if (page) page->MessageBox(message, QM_MESSAGE_TITLE, MB_OK | MB_ICONINFORMATION);
    if (CComboBox* pathType = PathTypeOf(page)) pathType->SetCurSel(QM_PATH_TYPE_FULL);
    return path;
}

BOOL ResolveRelativePath(const CString& path, CString& fullPath) {
    AcDbDatabase* database = acdbHostApplicationServices()->workingDatabase();
    const ACHAR* fileName = nullptr;
    if (!database || database->getFilename(fileName) != Acad::eOk || !fileName) return FALSE;
    WCHAR folder[kPathBufferLength];
    if (wcslen(fileName) >= static_cast<size_t>(kPathBufferLength)) return FALSE;
    wcscpy(folder, fileName);
    PathRemoveFileSpecW(folder);

    WCHAR previous[kPathBufferLength];
    previous[0] = L'\0';
    _wgetcwd(previous, kPathBufferLength);
    if (_wchdir(folder) != 0) return FALSE;
    WCHAR full[kPathBufferLength];
    // The current directory comes back whether or not the path resolves.
    BOOL resolved = _wfullpath(full, path, kPathBufferLength) != nullptr;
    _wchdir(previous);
    if (!resolved) return FALSE;
    fullPath = full;
    return TRUE;
}

void ChangePathType(CAcFdUiFieldOptionDialog* page) {
    CComboBox* pathType = PathTypeOf(page);
    if (!pathType) return;
    if (pathType->GetCurSel() == QM_PATH_TYPE_RELATIVE && GetDrawingPath().IsEmpty()) {
        page->MessageBox(QM_MESSAGE_SAVE_DRAWING_FIRST, QM_MESSAGE_TITLE, MB_OK);
        pathType->SetCurSel(QM_PATH_TYPE_FULL);
        return;
    }
    if (CAcFdUiFieldDialogHook* hook = page->GetFieldDialogHook()) hook->UpdateFieldCode();
}
