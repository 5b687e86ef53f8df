#include "ObjectsEvaluator.h"

#include <cwchar>
#include <vector>

#include "EvaluatorIds.h"
#include "ObjectListReference.h"

const ObjectsMeasure kAreaMeasure = {QM_EVAL_AREA, QM_AREA_DATA, L"a circle or a polyline",
                                     L"the areas of circles and polylines", &MeasureArea};
const ObjectsMeasure kLengthMeasure = {QM_EVAL_LENGTH, QM_LENGTH_DATA, L"a line, an arc, a circle or a polyline",
                                       L"the lengths of lines, arcs, circles and polylines", &MeasureLength};

namespace {

// An object list in a message is cut to this many characters.
const int kQuotedListLength = 60;

bool IsBlank(ACHAR c) { return c == L' ' || c == L'\t' || c == L'\r' || c == L'\n'; }

CString QuotedList(const ACHAR* text, int length) {
    int begin = 0, end = length;
    while (begin < end && IsBlank(text[begin])) ++begin;
    while (end > begin && IsBlank(text[end - 1])) --end;
    if (end - begin <= kQuotedListLength) return CString(text + begin, end - begin);
    return CString(text + begin, kQuotedListLength) + L"...";
}

// Why the object of one listed handle cannot be measured; empty when it
// was, with its measure in value.
CString MeasureOne(const ObjectsMeasure& measure, AcDbDatabase* database, const ObjectListHandle& listed,
                   const ACHAR* listText, double& value) {
    CString why;
    // The handle as the code wrote it, made only for a message.
    auto handleText = [&] { return CString(listText + listed.start, listed.length); };
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

int SumObjectList(const ObjectsMeasure& measure, const ACHAR* listText, int length, AcDbDatabase* database,
                  double& sum, CString& data, CString& why) {
    std::vector<ObjectListHandle> handles;
    CString fault;
    if (!ReadObjectList(listText, length, handles, fault)) {
        why.Format(L"The object list \"%s\" cannot be read: %s.", (const ACHAR*)QuotedList(listText, length),
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
    // The arguments are read where the field keeps its code: a list of a
    // hundred thousand handles is not copied to be read.
    const ACHAR* code = field->getFieldCode(AcDbField::kFieldCode | AcDbField::kStripOptions);
    const ACHAR* arguments = code ? wcspbrk(code, L" \t\r\n") : nullptr;
    arguments = arguments ? arguments + 1 : L"";
    double sum = 0;
    CString data, why;
    int status =
        SumObjectList(m_measure, arguments, static_cast<int>(wcslen(arguments)), database, sum, data, why);
    if (status != AcDbField::kSuccess) return Fail(result, status, why);

    AcFdFieldValue item((const ACHAR*)data);
    field->setData(m_measure.dataKey, &item);
    AcValue value(sum);
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
