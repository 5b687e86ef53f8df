#include "ObjectsEvaluator.h"

#include <vector>

#include "EvaluatorIds.h"
#include "ObjectListReference.h"
#include "TableCellEvaluator.h"

const ObjectsMeasure kAreaMeasure = {QM_EVAL_AREA, QM_AREA_DATA, L"a circle or a polyline",
                                     L"the areas of circles and polylines", &MeasureArea};
const ObjectsMeasure kLengthMeasure = {QM_EVAL_LENGTH, QM_LENGTH_DATA, L"a line, an arc, a circle or a polyline",
                                       L"the lengths of lines, arcs, circles and polylines", &MeasureLength};

namespace {

// An object list in a message is cut to this many characters.
const int kQuotedListLength = 60;

CString QuotedList(const CString& text) {
    CString shown = text;
    shown.Trim();
    if (shown.GetLength() > kQuotedListLength) shown = shown.Left(kQuotedListLength) + L"...";
    return shown;
}

// Why the object of one listed handle cannot be measured; empty when it
// was, with its measure in value.
CString MeasureOne(const ObjectsMeasure& measure, AcDbDatabase* database, const ObjectListHandle& listed,
                   const CString& listText, double& value) {
    CString why;
    // The handle as the code wrote it, made only for a message.
    auto handleText = [&] { return listText.Mid(listed.start, listed.length); };
    AcDbObjectId id;
    if (database->getAcDbObjectId(id, false, listed.handle) != Acad::eOk) {
        why.Format(L"No object has the handle %s in the drawing.", (const ACHAR*)handleText());
        return why;
    }
    AcDbObject* object = nullptr;
    Acad::ErrorStatus es = acdbOpenAcDbObject(object, id, AcDb::kForRead);
    if (es == Acad::eWasErased) {
        why.Format(L"The object %s was erased from the drawing.", (const ACHAR*)handleText());
        return why;
    }
    if (es == Acad::eKeyNotFound) {
        why.Format(L"No object has the handle %s in the drawing.", (const ACHAR*)handleText());
        return why;
    }
    if (es != Acad::eOk) {
        why.Format(L"The object %s cannot be opened.", (const ACHAR*)handleText());
        return why;
    }
    MeasureResult result = measure.measure(object, value);
    object->close();
    if (result == kNotMeasured)
        why.Format(L"The object %s is not %s; the field sums %s.", (const ACHAR*)handleText(), measure.kinds,
                   measure.quantity);
    else if (result == kNoGeometry)
        why.Format(L"The object %s has no vertices to measure.", (const ACHAR*)handleText());
    return why;
}

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    if (result) result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

}  // namespace

int SumObjectList(const ObjectsMeasure& measure, const CString& listText, AcDbDatabase* database, double& sum,
                  CString& data, CString& why) {
    std::vector<ObjectListHandle> handles;
    CString fault;
    if (!ReadObjectList(listText, handles, fault)) {
        why.Format(L"The object list \"%s\" cannot be read: %s.", (const ACHAR*)QuotedList(listText),
                   (const ACHAR*)fault);
        return AcDbField::kSyntaxError;
    }
    if (!database && !handles.empty()) {
        why = L"The field belongs to no drawing, so its objects cannot be found.";
        return AcDbField::kInvalidCode;
    }
    double total = 0;
    for (const ObjectListHandle& listed : handles) {
        double value = 0;
        CString fault = MeasureOne(measure, database, listed, listText, value);
        if (!fault.IsEmpty()) {
            why = fault;
            return AcDbField::kInvalidCode;
        }
        total += value;
    }
    sum = total;
    data = ObjectListDataText(listText, handles);
    return AcDbField::kSuccess;
}

AsdkObjectsEvaluator::AsdkObjectsEvaluator(const ObjectsMeasure& measure) : m_measure(measure) {}

AsdkObjectsEvaluator::~AsdkObjectsEvaluator() = default;

const ACHAR* AsdkObjectsEvaluator::evaluatorId() const { return m_measure.evaluatorId; }

Acad::ErrorStatus AsdkObjectsEvaluator::evaluate(AcDbField* field, int, AcDbDatabase* database,
                                                 AcFdFieldResult* result) {
    if (!field || !result) return Acad::eNullObjectPointer;
    if (!database) database = field->database();
    double sum = 0;
    CString data, why;
    int status = SumObjectList(m_measure, GetFieldArguments(field), database, sum, data, why);
    if (status != AcDbField::kSuccess) return Fail(result, status, why);

    AcFdFieldValue item((const ACHAR*)data);
    field->setData(m_measure.dataKey, &item);
    AcValue value(sum);
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
