#include "ObjectsEvaluator.h"

#include <algorithm>
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

// A handle as the code wrote it, made only for a message.
CString ListedText(const ACHAR* listText, const ObjectListHandle& listed) {
    return CString(listText + listed.start, listed.length);
}

CString NoObjectText(const ACHAR* listText, const ObjectListHandle& listed) {
    CString why;
    why.Format(L"No object has the handle %s in the drawing.", (const ACHAR*)ListedText(listText, listed));
    return why;
}

// Why the object of a listed handle cannot be opened; empty when it is
// open for read in object.
CString OpenListed(AcDbObjectId id, const ObjectListHandle& listed, const ACHAR* listText, AcDbObject*& object) {
    CString why;
    object = nullptr;
    Acad::ErrorStatus es = acdbOpenAcDbObject(object, id, AcDb::kForRead);
    if (es == Acad::eOk) return why;
    object = nullptr;
    if (es == Acad::eWasErased)
        why.Format(L"The object %s was erased from the drawing.", (const ACHAR*)ListedText(listText, listed));
    else if (es == Acad::eKeyNotFound)
        why = NoObjectText(listText, listed);
    else
        why.Format(L"The object %s cannot be opened.", (const ACHAR*)ListedText(listText, listed));
    return why;
}

// Why an open object cannot be measured; empty when it was, with its
// measure in value.
CString MeasureOpen(const ObjectsMeasure& measure, const AcDbObject* object, const ObjectListHandle& listed,
                    const ACHAR* listText, double& value) {
    CString why;
    MeasureResult result = measure.measure(object, value);
    if (result == kNotMeasured)
        why.Format(L"The object %s is not %s; the field sums %s.", (const ACHAR*)ListedText(listText, listed),
                   measure.kinds, measure.quantity);
    else if (result == kNoGeometry)
        why.Format(L"The object %s has no vertices to measure.", (const ACHAR*)ListedText(listText, listed));
    return why;
}

// The places [0, count) of the list in the order of their handles. Objects
// lie in memory about in the order they were made, which is the order of
// their handles, so visiting them in that order reads memory ahead instead
// of all over it. A radix sort: a list of a hundred thousand handles is
// ordered in a few passes over it.
std::vector<unsigned> PlacesByHandle(const std::vector<ObjectListHandle>& handles, size_t count) {
    const int kDigitBits = 11;
    const size_t kDigits = size_t(1) << kDigitBits;
    std::vector<unsigned> order(count), other(count);
    Adesk::UInt64 highest = 0;
    for (size_t i = 0; i < count; ++i) {
        order[i] = static_cast<unsigned>(i);
        if (handles[i].handle.value() > highest) highest = handles[i].handle.value();
    }
    std::vector<size_t> starts(kDigits);
    for (int shift = 0; shift < 64 && (highest >> shift) != 0; shift += kDigitBits) {
        std::fill(starts.begin(), starts.end(), 0);
        for (size_t i = 0; i < count; ++i) ++starts[(handles[order[i]].handle.value() >> shift) & (kDigits - 1)];
        size_t next = 0;
        for (size_t& start : starts) {
            size_t n = start;
            start = next;
            next += n;
        }
        for (size_t i = 0; i < count; ++i)
            other[starts[(handles[order[i]].handle.value() >> shift) & (kDigits - 1)]++] = order[i];
        order.swap(other);
    }
    return order;
}

// Objects are opened and measured this many at a time, and closed again:
// an object that the list names more than once stays far below the number
// of readers an object may have.
const size_t kBatch = 64;

// Sums the objects of ids[0, count) in list order; the first fault in list
// order goes to why.
bool SumOpened(const ObjectsMeasure& measure, const std::vector<AcDbObjectId>& ids,
               const std::vector<ObjectListHandle>& handles, size_t count, const ACHAR* listText, double& total,
               CString& why) {
    std::vector<unsigned> order = PlacesByHandle(handles, count);
    std::vector<double> values(count, 0.0);
    size_t faultAt = count;  // the first place in list order whose object fails
    CString fault;
    auto failed = [&](size_t at, const CString& text) {
        if (text.IsEmpty()) return false;
        if (at < faultAt) faultAt = at, fault = text;
        return true;
    };
    AcDbObject* objects[kBatch];
    size_t places[kBatch];
    for (size_t first = 0; first < count; first += kBatch) {
        size_t last = first + kBatch < count ? first + kBatch : count;
        size_t opened = 0;
        for (size_t i = first; i < last; ++i) {
            size_t at = order[i];
            if (at > faultAt) continue;  // a fault before it is reported already
            AcDbObject* object = nullptr;
            if (failed(at, OpenListed(ids[at], handles[at], listText, object))) continue;
            objects[opened] = object;
            places[opened++] = at;
        }
        for (size_t k = 0; k < opened; ++k) {
            size_t at = places[k];
            if (at < faultAt) failed(at, MeasureOpen(measure, objects[k], handles[at], listText, values[at]));
            objects[k]->close();
        }
    }
    if (faultAt < count) {
        why = fault;
        return false;
    }
    // Summed in the order of the list, whatever order they were measured in.
    double sum = 0;
    for (double value : values) sum += value;
    total = sum;
    return true;
}

Acad::ErrorStatus Fail(AcFdFieldResult* result, int status, const CString& message) {
    if (result) result->setEvaluationStatus(status, 0, message);
    return Acad::eInvalidInput;
}

}  // namespace

int SumObjectList(const ObjectsMeasure& measure, const ACHAR* listText, int length, AcDbDatabase* database,
                  double& sum, CString& data, CString& why, const ACHAR* keptData, bool* dataKept) {
    if (dataKept) *dataKept = false;
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
    // Ids first, over the whole list, then the objects: the look-ups of
    // a hundred thousand handles overlap when nothing else waits on them.
    // The first fault in list order is the one reported.
    std::vector<AcDbObjectId> ids(handles.size());
    size_t found = 0;
    while (found < handles.size() && database->getAcDbObjectId(ids[found], false, handles[found].handle) == Acad::eOk)
        ++found;
    double total = 0;
    if (!SumOpened(measure, ids, handles, found, listText, total, why)) return AcDbField::kInvalidCode;
    if (found < handles.size()) {
        why = NoObjectText(listText, handles[found]);
        return AcDbField::kInvalidCode;
    }
    sum = total;
    if (dataKept && IsObjectListDataText(keptData, listText, handles)) *dataKept = true;
    else data = ObjectListDataText(listText, handles);
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
    AcFdFieldValue kept;
    const ACHAR* keptText = nullptr;
    if (field->getData(m_measure.dataKey, &kept) != Acad::eOk || !kept.get(keptText)) keptText = nullptr;
    double sum = 0;
    CString data, why;
    bool dataKept = false;
    int status = SumObjectList(m_measure, arguments, static_cast<int>(wcslen(arguments)), database, sum, data, why,
                               keptText, &dataKept);
    if (status != AcDbField::kSuccess) return Fail(result, status, why);

    if (!dataKept) {
        AcFdFieldValue item((const ACHAR*)data);
        field->setData(m_measure.dataKey, &item);
    }
    AcValue value(sum);
    result->setFieldValue(&value);
    result->setEvaluationStatus(AcDbField::kSuccess);
    return Acad::eOk;
}
