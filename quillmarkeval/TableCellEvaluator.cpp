#include "TableCellEvaluator.h"

#include <dbtable.h>

#include "EvaluatorIds.h"
#include "TableCellReference.h"

namespace {

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    if (result) result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

}  // namespace

CString GetFieldArguments(const AcDbField* field) {
    CString code = field->getFieldCode(AcDbField::kFieldCode | AcDbField::kStripOptions);
    int blank = code.FindOneOf(L" \t\r\n");
    if (blank < 0) return CString();
    return code.Mid(blank + 1);
}

AsdkTableCellEvaluator::AsdkTableCellEvaluator() = default;
AsdkTableCellEvaluator::~AsdkTableCellEvaluator() = default;

const ACHAR* AsdkTableCellEvaluator::evaluatorId() const { return QM_EVAL_TABLE_CELL; }

Acad::ErrorStatus AsdkTableCellEvaluator::evaluate(AcDbField* field, int, AcDbDatabase* database,
                                                   AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    // The reference is read with blanks around it allowed, and kept in the
    // data item as it stands in the code.
    CString reference = GetFieldArguments(field);
    AcDbHandle handle;
    int row = 0, column = 0;
    CString why;
    if (!ReadTableCellReference(reference, handle, row, column, why)) {
        CString message;
        message.Format(L"The table cell reference \"%s\" cannot be read: %s.", (const ACHAR*)reference,
                       (const ACHAR*)why);
        return Fail(result, AcDbField::kSyntaxError, message);
    }
    ACHAR handleText[32];
    handle.getIntoAsciiBuffer(handleText, 32);

    if (!database) database = field->database();
    AcDbObjectId tableId;
    AcDbTable* table = nullptr;
    if (!database || database->getAcDbObjectId(tableId, false, handle) != Acad::eOk ||
        acdbOpenObject(table, tableId, AcDb::kForRead) != Acad::eOk) {
        CString message;
        message.Format(L"No table has the handle %s in the drawing.", handleText);
        return Fail(result, AcDbField::kInvalidCode, message);
    }
    int rows = static_cast<int>(table->numRows());
    int columns = static_cast<int>(table->numColumns());
    AcString text;
    Acad::ErrorStatus es = Acad::eInvalidIndex;
    if (row <= rows && column <= columns) es = table->textString(row - 1, column - 1, AcDbTable::kIgnoreMtextFormat, text);
    table->close();
    if (es != Acad::eOk) {
        CString message;
        message.Format(L"The table %s has %d rows and %d columns; the cell in row %d and column %d is outside it.",
                       handleText, rows, columns, row, column);
        return Fail(result, AcDbField::kInvalidCode, message);
    }

    AcFdFieldValue data((const ACHAR*)reference);
    field->setData(QM_TABLE_CELL_DATA, &data);
    AcValue value(text.kwszPtr());
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
