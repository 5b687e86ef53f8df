#include "BlockCountEvaluator.h"

#include "BlockCounter.h"
#include "BlockCountQuery.h"
#include "EvaluatorIds.h"
#include "TableCellEvaluator.h"

namespace {

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    if (result) result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

}  // namespace

AsdkBlockCountEvaluator::AsdkBlockCountEvaluator() = default;
AsdkBlockCountEvaluator::~AsdkBlockCountEvaluator() = default;

const ACHAR* AsdkBlockCountEvaluator::evaluatorId() const { return QM_EVAL_BLOCK_COUNT; }

Acad::ErrorStatus AsdkBlockCountEvaluator::evaluate(AcDbField* field, int, AcDbDatabase* database,
                                                    AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    CString arguments = GetFieldArguments(field);
    arguments.Trim();
    BlockCountQuery query;
    CString why;
    if (!ReadBlockCountQuery(arguments, query, why)) {
        return Fail(result, AcDbField::kSyntaxError, L"The block count code cannot be read: " + why);
    }
    if (!database) database = field->database();
    if (!database) database = acdbHostApplicationServices()->workingDatabase();
    if (!database) return Fail(result, AcDbField::kInvalidContext, L"There is no drawing to count blocks in.");

    CBlockCounter counter(database, query);
    Adesk::Int32 count = 0;
    CString message;
    switch (counter.Count(count)) {
    case CBlockCounter::kCounted: break;
    case CBlockCounter::kNoSuchSpace:
        if (query.spaceHandle.IsEmpty()) message = L"The window of the block count names no space.";
        else message.Format(L"No space of the drawing has the handle %s.", (const ACHAR*)query.spaceHandle);
        return Fail(result, AcDbField::kInvalidCode, message);
    case CBlockCounter::kTooMany:
        return Fail(result, AcDbField::kOtherError, L"The block count is larger than 2147483647.");
    }

    AcFdFieldValue data((const ACHAR*)arguments);
    field->setData(QM_BLOCK_COUNT_DATA, &data);
    AcValue value(count);
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
