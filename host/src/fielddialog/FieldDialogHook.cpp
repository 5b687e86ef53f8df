#include <AcFdUi.h>

#include "fielddialog/FieldPreview.h"

IMPLEMENT_DYNAMIC(CAcFdUiFieldDialogHook, CObject)

CAcFdUiFieldDialogHook::CAcFdUiFieldDialogHook() : m_pFieldDialog(nullptr), m_pDb(nullptr), m_nContext(0) {}

CAcFdUiFieldDialogHook::~CAcFdUiFieldDialogHook() = default;

BOOL CAcFdUiFieldDialogHook::CreateInstance(CAcFdUiFieldDialogHook*& hook) {
    hook = nullptr;
    return FALSE;
}

int CAcFdUiFieldDialogHook::GetEvaluatorIds(CStringArray&) { return 0; }

BOOL CAcFdUiFieldDialogHook::BeginFieldDialog(CAcFdUiFieldDialog* dialog, AcDbDatabase* database, int context) {
    m_pFieldDialog = dialog;
    m_pDb = database;
    m_nContext = context;
    return TRUE;
}

BOOL CAcFdUiFieldDialogHook::EndFieldDialog(int) {
    // The dialog is going; nothing may reach it through the hook afterwards.
    m_pFieldDialog = nullptr;
    m_pDb = nullptr;
    return TRUE;
}

BOOL CAcFdUiFieldDialogHook::SetFieldToEdit(AcDbField* field) { return field != nullptr; }

int CAcFdUiFieldDialogHook::GetCategoriesFor(UINT, CStringArray& names, CUIntArray& ids) {
    return GetCategories(names, ids);
}

int CAcFdUiFieldDialogHook::GetFieldsFor(UINT categoryId, UINT, CStringArray& names, CUIntArray& ids, BOOL& sort) {
    return GetFields(categoryId, names, ids, sort);
}

BOOL CAcFdUiFieldDialogHook::GetOptionDialog(UINT, CAcFdUiFieldOptionDialog*&) { return FALSE; }

CString CAcFdUiFieldDialogHook::GetPreview(LPCTSTR fieldCode, LPCTSTR format) {
    return CString(cadhost::PreviewFieldCode(fieldCode, format, m_pDb));
}

BOOL CAcFdUiFieldDialogHook::UpdateFieldCode() { return FALSE; }

BOOL CAcFdUiFieldDialogHook::OnFieldSelected(UINT) { return TRUE; }

BOOL CAcFdUiFieldDialogHook::CreateField(UINT, AcDbField*& field) {
    field = nullptr;
    return FALSE;
}

BOOL CAcFdUiFieldDialogHook::GetCategories(CStringArray&, CUIntArray&) { return FALSE; }

BOOL CAcFdUiFieldDialogHook::GetFields(UINT, CStringArray&, CUIntArray&, BOOL&) { return FALSE; }
