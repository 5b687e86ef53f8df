#include "plugin/hook/AsdkCustomOptionDialogHook.h"

#include "fieldcode/FieldCodeForms.h"
#include "pages/AsdkAreaOptionDialog.h"
#include "pages/AsdkBlockCntOptionDialog.h"
#include "pages/AsdkExcelRangeOptionDialog.h"
#include "pages/AsdkLengthOptionDialog.h"
#include "pages/AsdkTableCellFieldOptionDialog.h"
#include "pages/AsdkTextFileFieldOptionDialog.h"
#include "plugin/ModuleState.h"

IMPLEMENT_DYNAMIC(AsdkCustomOptionDialogHook, CAcFdUiFieldDialogHook)

namespace {

// The six types in the order of the dialog's list.
struct FieldTypeRow {
    FieldTypeId id;
    const ACHAR* evaluatorId;
    const ACHAR* title;
};
const FieldTypeRow kFieldTypes[] = {
    {QM_FIELD_LENGTH, QM_EVALUATOR_LENGTH, L"QM Objects Length"},
    {QM_FIELD_AREA, QM_EVALUATOR_AREA, L"QM Objects Area"},
    {QM_FIELD_BLOCK_COUNT, QM_EVALUATOR_BLOCK_COUNT, L"QM Block Count"},
    {QM_FIELD_TEXT_FILE, QM_EVALUATOR_TEXT_FILE, L"QM Text File"},
    {QM_FIELD_EXCEL_CELL, QM_EVALUATOR_EXCEL_CELL, L"QM Excel Cell"},
    {QM_FIELD_TABLE_CELL, QM_EVALUATOR_TABLE_CELL, L"QM Table Cell"},
};

// The order in which a stored field's evaluator id is matched.
const FieldTypeRow kEditOrder[] = {
    {QM_FIELD_LENGTH, QM_EVALUATOR_LENGTH, nullptr},         {QM_FIELD_AREA, QM_EVALUATOR_AREA, nullptr},
    {QM_FIELD_BLOCK_COUNT, QM_EVALUATOR_BLOCK_COUNT, nullptr}, {QM_FIELD_TEXT_FILE, QM_EVALUATOR_TEXT_FILE, nullptr},
    {QM_FIELD_TABLE_CELL, QM_EVALUATOR_TABLE_CELL, nullptr},   {QM_FIELD_EXCEL_CELL, QM_EVALUATOR_EXCEL_CELL, nullptr},
};

template <class Page>
void DeletePage(Page*& page) {
    delete page;
    page = nullptr;
}

}  // namespace

AsdkCustomOptionDialogHook::AsdkCustomOptionDialogHook()
    : m_fieldDialog(nullptr),
      m_lengthPage(nullptr),
      m_areaPage(nullptr),
      m_blockCountPage(nullptr),
      m_textFilePage(nullptr),
      m_excelPage(nullptr),
      m_tableCellPage(nullptr) {}

AsdkCustomOptionDialogHook::~AsdkCustomOptionDialogHook() = default;

int AsdkCustomOptionDialogHook::GetEvaluatorIds(CStringArray& evaluatorIds) {
    evaluatorIds.Add(QM_EVALUATOR_AREA);
    evaluatorIds.Add(QM_EVALUATOR_LENGTH);
    evaluatorIds.Add(QM_EVALUATOR_BLOCK_COUNT);
    evaluatorIds.Add(QM_EVALUATOR_TEXT_FILE);
    evaluatorIds.Add(QM_EVALUATOR_EXCEL_CELL);
    evaluatorIds.Add(QM_EVALUATOR_TABLE_CELL);
    return static_cast<int>(evaluatorIds.GetSize());
}

BOOL AsdkCustomOptionDialogHook::BeginFieldDialog(CAcFdUiFieldDialog* dialog, AcDbDatabase* database, int context) {
    CAcFdUiFieldDialogHook::BeginFieldDialog(dialog, database, context);
    // Only the objects: each page makes its window when the dialog first shows it.
    m_lengthPage = new AsdkLengthOptionDialog(this, dialog, _hdllInstance);
    m_areaPage = new AsdkAreaOptionDialog(this, dialog, _hdllInstance);
    m_blockCountPage = new AsdkBlockCntOptionDialog(this, dialog, _hdllInstance);
    m_textFilePage = new AsdkTextFileFieldOptionDialog(this, dialog, _hdllInstance);
    m_excelPage = new AsdkExcelRangeOptionDialog(this, dialog, _hdllInstance);
    m_tableCellPage = new AsdkTableCellFieldOptionDialog(this, dialog, _hdllInstance);
    m_fieldDialog = dialog;
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::EndFieldDialog(int result) {
    CAcFdUiFieldDialogHook::EndFieldDialog(result);
    DeletePage(m_lengthPage);
    DeletePage(m_areaPage);
    DeletePage(m_blockCountPage);
    DeletePage(m_textFilePage);
    DeletePage(m_excelPage);
    DeletePage(m_tableCellPage);
    // The dialog pointer stays: only the pages call UpdateFieldCode, and
    // they are gone with the dialog.
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::SetFieldToEdit(AcDbField* field) {
    if (!CAcFdUiFieldDialogHook::SetFieldToEdit(field)) return FALSE;
    const ACHAR* evaluatorId = field->evaluatorId();
    for (const FieldTypeRow& row : kEditOrder) {
        if (_wcsicmp(evaluatorId, row.evaluatorId) != 0) continue;
        if (!m_fieldDialog) return TRUE;
        m_fieldDialog->SelectField(row.id, QM_FIELD_CATEGORY);
        CAcFdUiFieldOptionDialog* page = m_fieldDialog->GetOptionDialog();
        if (!page) return TRUE;
        // What the reader makes of the field is the page's matter.
        if (page == m_lengthPage) m_lengthPage->LoadField(field);
        else if (page == m_areaPage) m_areaPage->LoadField(field);
        else if (page == m_blockCountPage) m_blockCountPage->LoadField(field);
        else if (page == m_textFilePage) m_textFilePage->LoadField(field);
        else if (page == m_tableCellPage) m_tableCellPage->LoadField(field);
        else if (page == m_excelPage) m_excelPage->LoadField(field);
        return TRUE;
    }
    return FALSE;
}

int AsdkCustomOptionDialogHook::GetCategoriesFor(UINT, CStringArray& names, CUIntArray& ids) {
    return GetCategories(names, ids);
}

int AsdkCustomOptionDialogHook::GetFieldsFor(UINT categoryId, UINT, CStringArray& names, CUIntArray& ids, BOOL& sort) {
    return GetFields(categoryId, names, ids, sort);
}

CAcFdUiFieldOptionDialog* AsdkCustomOptionDialogHook::Page(FieldTypeId fieldId) const {
    switch (fieldId) {
    case QM_FIELD_LENGTH: return m_lengthPage;
    case QM_FIELD_AREA: return m_areaPage;
    case QM_FIELD_BLOCK_COUNT: return m_blockCountPage;
    case QM_FIELD_TEXT_FILE: return m_textFilePage;
    case QM_FIELD_EXCEL_CELL: return m_excelPage;
    case QM_FIELD_TABLE_CELL: return m_tableCellPage;
    default: return nullptr;
    }
}

BOOL AsdkCustomOptionDialogHook::GetOptionDialog(UINT fieldId, CAcFdUiFieldOptionDialog*& page) {
    switch (fieldId) {
    case QM_FIELD_LENGTH:
    case QM_FIELD_AREA:
    case QM_FIELD_BLOCK_COUNT:
    case QM_FIELD_TEXT_FILE:
    case QM_FIELD_EXCEL_CELL:
    case QM_FIELD_TABLE_CELL: page = Page(fieldId); break;
    default: break;
    }
    return TRUE;
}

CString AsdkCustomOptionDialogHook::PageFieldCode(FieldTypeId fieldId) {
    switch (fieldId) {
    case QM_FIELD_LENGTH: return m_lengthPage ? m_lengthPage->GetFieldCode() : CString();
    case QM_FIELD_AREA: return m_areaPage ? m_areaPage->GetFieldCode() : CString();
    case QM_FIELD_BLOCK_COUNT: return m_blockCountPage ? m_blockCountPage->GetFieldCode() : CString();
    case QM_FIELD_TEXT_FILE: return m_textFilePage ? m_textFilePage->GetFieldCode() : CString();
    case QM_FIELD_EXCEL_CELL: return m_excelPage ? m_excelPage->GetFieldCode() : CString();
    case QM_FIELD_TABLE_CELL: return m_tableCellPage ? m_tableCellPage->GetFieldCode() : CString();
    default: return CString();
    }
}

CString AsdkCustomOptionDialogHook::ComposeFieldCode(FieldTypeId fieldId) {
    if (m_fieldDialog && m_fieldDialog->IsFieldCodeDirty()) {
        CString typed = m_fieldDialog->GetFieldCode();
        typed.Trim();
        if (!typed.IsEmpty()) return typed;
    }
    return PageFieldCode(fieldId);
}

BOOL AsdkCustomOptionDialogHook::UpdateFieldCode() {
    if (!m_fieldDialog) return FALSE;
    UINT fieldId = ACFDUI_NO_FIELD;
    m_fieldDialog->GetCurrentField(&fieldId, nullptr);
    if (fieldId == ACFDUI_NO_FIELD) return FALSE;
    m_fieldDialog->SetFieldCode(ComposeFieldCode(fieldId));
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::OnFieldSelected(UINT fieldId) {
    if (CAcFdUiFieldOptionDialog* page = Page(fieldId)) page->OnFieldSelected(fieldId);
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::CreateField(UINT fieldId, AcDbField*& field) {
    CAcFdUiFieldDialogHook::CreateField(fieldId, field);
    // The page alone decides the code of a new field; typed text plays no part.
    CString code = PageFieldCode(fieldId);
    field = new AcDbField;
    field->setFieldCode(code, 0, nullptr);
    if (field->evaluate(AcDbField::kPreview, GetDatabase(), nullptr, nullptr) != Acad::eOk) {
        AcDbField::EvalStatus status = field->evaluationStatus(nullptr, nullptr);
        AfxMessageBox(status == AcDbField::kEvaluatorNotFound ? QM_MESSAGE_NO_EVALUATOR : QM_MESSAGE_INVALID_CODE);
        if (m_fieldDialog) {
            if (CEdit* box = m_fieldDialog->GetFieldCodeEditCtrl()) box->SetFocus();
        }
        delete field;
        field = nullptr;
        return FALSE;
    }
    field->setEvaluationOption(AcDbField::kAutomatic);
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::GetCategories(CStringArray& names, CUIntArray& ids) {
    names.Add(QM_CATEGORY_NAME);
    ids.Add(QM_FIELD_CATEGORY);
    return TRUE;
}

BOOL AsdkCustomOptionDialogHook::GetFields(UINT categoryId, CStringArray& names, CUIntArray& ids, BOOL& sort) {
    if (categoryId != QM_FIELD_CATEGORY && categoryId != ACFDUI_ALL_CATEGORIES) return TRUE;
    for (const FieldTypeRow& row : kFieldTypes) {
        names.Add(row.title);
        ids.Add(row.id);
    }
    sort = TRUE;
    return TRUE;
}
