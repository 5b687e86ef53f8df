// The path type of the pages that point a field at a file: the combo with
// "Full Path" and "Relative Path" (control IDC_PATH_TYPE on each page), and
// the steps that make a path relative to the current drawing and resolve
// one against the drawing's folder.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "fieldcode/FieldCodeForms.h"

// The combo's entries, by index.
#define QM_PATH_TYPE_FULL 0
#define QM_PATH_TYPE_RELATIVE 1

#define QM_MESSAGE_SAVE_DRAWING_FIRST                                                                            \
    L"Current drawing must be saved before attaching a file with a relative path. The file will be assigned a " \
    L"Full path."
#define QM_MESSAGE_NO_RELATIVE_PATH L"Failed to create a relative path from %s to %s."

// Fills the combo with "Full Path" and "Relative Path" and selects the first.
void FillPathTypes(CComboBox& pathType);

// The full path of the current drawing's file; empty while it was never saved.
CString GetDrawingPath();

// The path relative to the current drawing, for a field code composed with
// "Relative Path". Where none can be made (no common root, a drawing never
// saved, a path that is relative already or too long) the page shows why,
// its combo goes back to "Full Path", and the path comes back as it was.
CString MakeRelativePath(CWnd* page, const CString& path);

// The absolute form of a relative path, read from the folder of the working
// drawing's file; FALSE, leaving fullPath alone, when it cannot be had.
BOOL ResolveRelativePath(const CString& path, CString& fullPath);

// The user chose a path type. "Relative Path" for a drawing that was never
// saved is refused with a message and the combo goes back to "Full Path";
// otherwise the page's hook composes the field code anew.
void ChangePathType(CAcFdUiFieldOptionDialog* page);

// The relative path step as the composers take it.
class CRelativePathStep : public CFieldPathStep {
public:
    explicit CRelativePathStep(CWnd* page) : m_page(page) {}
    CString Apply(const CString& path) override { return MakeRelativePath(m_page, path); }

private:
    CWnd* m_page;
};
