#include "ExcelCellEvaluator.h"

#include "EvaluatorIds.h"
#include "ExcelCellCode.h"
#include "SourcePath.h"
#include "TableCellEvaluator.h"

namespace {

// What the workbooks of one pass may hold in memory together, by the size
// of their files; a pass over more reads the rest for each field.
const size_t kPassBudget = 512u << 20;

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

}  // namespace

size_t CWorkbookContent::Weight() const { return (file ? file->GetByteCount() : 0) + why.GetLength(); }

CWorkbookContent ReadWorkbookFile(const std::wstring& fullPath) {
    CWorkbookContent content;
    content.file.reset(CWorkbookFile::Open(fullPath.c_str(), content.why));
    return content;
}

AsdkExcelCellEvaluator::AsdkExcelCellEvaluator() : m_workbooks(kPassBudget) {}
AsdkExcelCellEvaluator::~AsdkExcelCellEvaluator() = default;

const ACHAR* AsdkExcelCellEvaluator::evaluatorId() const { return QM_EVAL_EXCEL_CELL; }

Acad::ErrorStatus AsdkExcelCellEvaluator::evaluate(AcDbField* field, int, AcDbDatabase* database,
                                                   AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    CString arguments = GetFieldArguments(field);
    arguments.Trim();
    ExcelCellArguments parts;
    if (!SplitExcelCellArguments(arguments, parts)) {
        CString message;
        if (arguments.IsEmpty()) message = L"The field names no workbook, sheet and cell.";
        else message.Format(L"\"%s\" is not a workbook's path, a sheet and a cell, joined by colons.", (const ACHAR*)arguments);
        return Fail(result, AcDbField::kSyntaxError, message);
    }
    // What the code names, also when it cannot be shown now.
    AcFdFieldValue data((const ACHAR*)arguments);
    field->setData(QM_EXCEL_CELL_DATA, &data);

    long long row = 0, column = 0;
    CString why;
    if (!ReadExcelCellName(parts.cell, row, column, why)) {
        CString message;
        message.Format(L"The cell \"%s\" of the field cannot be read: %s.", (const ACHAR*)parts.cell, (const ACHAR*)why);
        return Fail(result, AcDbField::kSyntaxError, message);
    }
    if (!database) database = field->database();
    CString path, message;
    if (!GetSourceFilePath(parts.path, database, path, message)) return Fail(result, AcDbField::kOtherError, message);
    const CWorkbookContent& content = m_workbooks.Get(path.str(), ReadWorkbookFile);
    std::shared_ptr<CWorkbookFile> book = content.file;
    why = content.why;
    if (!book) {
        CString message;
        message.Format(L"The workbook %s cannot be read: %s.", (const ACHAR*)path, (const ACHAR*)why);
        return Fail(result, AcDbField::kOtherError, message);
    }
    int sheet = book->FindWorksheet(parts.sheet);
    if (sheet < 0) {
        CString message;
        message.Format(L"The workbook %s has no worksheet \"%s\".", (const ACHAR*)path, (const ACHAR*)parts.sheet);
        return Fail(result, AcDbField::kInvalidCode, message);
    }
    if (column > book->GetMaxColumns()) {
        message.Format(L"The cell %s lies beyond the %d columns of the sheet \"%s\" of %s.", (const ACHAR*)parts.cell,
                       book->GetMaxColumns(), (const ACHAR*)book->GetSheetName(sheet), (const ACHAR*)path);
        return Fail(result, AcDbField::kInvalidCode, message);
    }
    if (row > book->GetMaxRows()) {
        message.Format(L"The cell %s lies beyond the %ld rows of the sheet \"%s\" of %s.", (const ACHAR*)parts.cell,
                       static_cast<long>(book->GetMaxRows()), (const ACHAR*)book->GetSheetName(sheet),
                       (const ACHAR*)path);
        return Fail(result, AcDbField::kInvalidCode, message);
    }
    CString text;
    if (!book->GetCellText(sheet, static_cast<long>(row), static_cast<int>(column), text, why)) {
        message.Format(L"The sheet \"%s\" of %s cannot be read: %s.", (const ACHAR*)book->GetSheetName(sheet),
                       (const ACHAR*)path, (const ACHAR*)why);
        return Fail(result, AcDbField::kOtherError, message);
    }
    AcValue value((const ACHAR*)text);
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
