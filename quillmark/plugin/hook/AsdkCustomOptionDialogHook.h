// The module's hook into the Field dialog: the category "Quillmark" with
// its six field types, a page for each type, the field code that moves
// between the pages and the dialog's code box, the field to edit, and the
// field that the user confirms.
#pragma once

#include "StdAfx.h"

#include <AcFdUi.h>

#include "plugin/hook/FieldTypes.h"

class AsdkLengthOptionDialog;
class AsdkAreaOptionDialog;
class AsdkBlockCntOptionDialog;
class AsdkTextFileFieldOptionDialog;
class AsdkExcelRangeOptionDialog;
class AsdkTableCellFieldOptionDialog;

// The texts the user sees when a confirmed field does not evaluate.
#define QM_MESSAGE_NO_EVALUATOR L"Evaluator is not found to evaluate the field"
#define QM_MESSAGE_INVALID_CODE L"Invalid field code"

class AsdkCustomOptionDialogHook : public CAcFdUiFieldDialogHook {
    DECLARE_DYNAMIC(AsdkCustomOptionDialogHook)
public:
    AsdkCustomOptionDialogHook();
    // Frees no page: the pages live from BeginFieldDialog to EndFieldDialog.
    ~AsdkCustomOptionDialogHook() override;

    int GetEvaluatorIds(CStringArray& evaluatorIds) override;
    BOOL BeginFieldDialog(CAcFdUiFieldDialog* dialog, AcDbDatabase* database, int context) override;
    BOOL EndFieldDialog(int result) override;
    BOOL SetFieldToEdit(AcDbField* field) override;
    int GetCategoriesFor(UINT context, CStringArray& names, CUIntArray& ids) override;
    int GetFieldsFor(UINT categoryId, UINT context, CStringArray& names, CUIntArray& ids, BOOL& sort) override;
    BOOL GetOptionDialog(UINT fieldId, CAcFdUiFieldOptionDialog*& page) override;
    BOOL UpdateFieldCode() override;
    BOOL OnFieldSelected(UINT fieldId) override;
    BOOL CreateField(UINT fieldId, AcDbField*& field) override;
    BOOL GetCategories(CStringArray& names, CUIntArray& ids) override;
    BOOL GetFields(UINT categoryId, CStringArray& names, CUIntArray& ids, BOOL& sort) override;

    // The text that stands for a type now: what the user typed into the
    // dialog's code box, unless it is blank, else the page's code.
    CString ComposeFieldCode(FieldTypeId fieldId);

    // The open dialog and the pages; null outside a dialog's life.
    CAcFdUiFieldDialog* FieldDialog() const { return m_fieldDialog; }
    CAcFdUiFieldOptionDialog* Page(FieldTypeId fieldId) const;

private:
    // The page's own code, empty for an id that is none of the six.
    CString PageFieldCode(FieldTypeId fieldId);

    CAcFdUiFieldDialog* m_fieldDialog;
    AsdkLengthOptionDialog* m_lengthPage;
    AsdkAreaOptionDialog* m_areaPage;
    AsdkBlockCntOptionDialog* m_blockCountPage;
    AsdkTextFileFieldOptionDialog* m_textFilePage;
    AsdkExcelRangeOptionDialog* m_excelPage;
    AsdkTableCellFieldOptionDialog* m_tableCellPage;
};
