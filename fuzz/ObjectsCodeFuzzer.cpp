// Any text as an AcArea or AcLength code, evaluated against a small drawing:
// circles, polylines with arcs, a line, an arc, a text and an erased circle.
// The first byte chooses the evaluator (bit 0) and whether the text is the
// whole code or only its arguments (bit 1). A success sums, once for each
// listed handle in order, the measure that the curve itself reports, and
// keeps the list it read as its data item; a failure shows "####", says why
// and keeps no data item.
#include <dbents.h>
#include <dbpl.h>
#include <dbsymtb.h>

#include <cmath>
#include <map>
#include <vector>

#include "EvaluatorLoader.h"
#include "FuzzSupport.h"
#include "ObjectListReference.h"
#include "TableCellEvaluator.h"

namespace {

struct Measures {
    double area = -1;    // -1: not measured by AcArea
    double length = -1;  // -1: not measured by AcLength
};

AcDbObjectId Add(AcDbDatabase& db, AcDbEntity* entity) {
    AcDbBlockTableRecord* model = nullptr;
    QM_FUZZ_CHECK(acdbOpenObject(model, db.modelSpaceId(), AcDb::kForWrite) == Acad::eOk);
    AcDbObjectId id;
    QM_FUZZ_CHECK(model->appendAcDbEntity(id, entity) == Acad::eOk);
    entity->close();
    model->close();
    return id;
}

// The drawing, made once, and what its curves report of themselves, by
// handle.
const std::map<Adesk::UInt64, Measures>& Drawing() {
    static std::map<Adesk::UInt64, Measures> measures = [] {
        AcDbDatabase& db = *acdbHostApplicationServices()->workingDatabase();
        std::map<Adesk::UInt64, Measures> m;
        auto curve = [&](AcDbCurve* c, bool area, bool length) {
            double a = 0, end = 0, l = 0;
            QM_FUZZ_CHECK(c->getArea(a) == Acad::eOk && c->getEndParam(end) == Acad::eOk &&
                          c->getDistAtParam(end, l) == Acad::eOk);
            if (auto* circle = AcDbCircle::cast(c)) l = circle->radius() * 6.28318530718;
            AcDbObjectId id = Add(db, c);
            m[id.handle().value()] = {area ? a : -1, length ? l : -1};
            return id;
        };
        curve(new AcDbCircle(AcGePoint3d(1, 2, 0), AcGeVector3d::kZAxis, 2.5), true, true);
        auto* room = new AcDbPolyline;
        room->addVertexAt(0, AcGePoint2d(0, 0), 0.5);
        room->addVertexAt(1, AcGePoint2d(10, 0), 0);
        room->addVertexAt(2, AcGePoint2d(10, 8), -0.25);
        room->addVertexAt(3, AcGePoint2d(0, 8), 0);
        room->setClosed(true);
        curve(room, true, true);
        auto* open = new AcDbPolyline;
        open->addVertexAt(0, AcGePoint2d(-3, 1), 1);
        open->addVertexAt(1, AcGePoint2d(4, 1), 0);
        open->addVertexAt(2, AcGePoint2d(4, 4), 0);
        curve(open, true, true);
        curve(new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(3, 4, 12)), false, true);
        curve(new AcDbArc(AcGePoint3d(5, 5, 0), 2, 0.25, 5.5), false, true);
        AcDbObjectId text = Add(db, new AcDbText(AcGePoint3d(0, 0, 0), L"note"));
        m[text.handle().value()] = {};
        AcDbObjectId gone = curve(new AcDbCircle(AcGePoint3d(9, 9, 0), AcGeVector3d::kZAxis, 1), true, true);
        AcDbEntity* erased = nullptr;
        QM_FUZZ_CHECK(acdbOpenObject(erased, gone, AcDb::kForWrite) == Acad::eOk);
        QM_FUZZ_CHECK(erased->erase() == Acad::eOk);
        erased->close();
        m[gone.handle().value()] = {};
        return m;
    }();
    return measures;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    qmfuzz::RunningHost();
    static const bool registered = RegisterQuillmarkEvaluators() == 1;
    QM_FUZZ_CHECK(registered);
    const std::map<Adesk::UInt64, Measures>& measures = Drawing();
    if (size == 0) return 0;
    bool area = (data[0] & 1) == 0;
    bool whole = (data[0] & 2) != 0;
    std::wstring text = qmfuzz::WideText(data + 1, size - 1);
    std::wstring code = whole ? text : L"%<\\" + std::wstring(area ? L"AcArea " : L"AcLength ") + text + L">%";

    AcDbField field;
    if (field.setFieldCode(code.c_str()) != Acad::eOk) return 0;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    Acad::ErrorStatus es = field.evaluate(AcDbField::kPreview, db);
    std::wstring id = field.evaluatorId();
    bool ours = _wcsicmp(id.c_str(), L"AcArea") == 0 || _wcsicmp(id.c_str(), L"AcLength") == 0;
    if (!ours) return 0;
    area = _wcsicmp(id.c_str(), L"AcArea") == 0;
    const wchar_t* key = area ? L"AcArea Data" : L"AcLength Data";

    CString arguments = GetFieldArguments(&field);
    std::vector<ObjectListHandle> handles;
    CString why;
    bool readable = ReadObjectList(arguments, handles, why) == 1;

    if (es != Acad::eOk) {
        QM_FUZZ_CHECK(field.evaluationStatus() != AcDbField::kSuccess);
        QM_FUZZ_CHECK(std::wstring(field.getValue()) == L"####");
        QM_FUZZ_CHECK(field.getData(key, nullptr) != Acad::eOk);
        ACHAR* message = nullptr;
        field.evaluationStatus(nullptr, &message);
        QM_FUZZ_CHECK(message && *message);
        acutDelBuffer(message);
        // A list that reads fails only for a handle that cannot be measured.
        if (readable) {
            bool unmeasurable = false;
            for (const ObjectListHandle& h : handles) {
                auto found = measures.find(h.handle.value());
                unmeasurable = unmeasurable || found == measures.end() ||
                               (area ? found->second.area : found->second.length) < 0;
            }
            QM_FUZZ_CHECK(unmeasurable);
        }
        return 0;
    }

    // Success: the list read, every object measured, summed in order.
    QM_FUZZ_CHECK(field.evaluationStatus() == AcDbField::kSuccess);
    QM_FUZZ_CHECK(readable);
    double expected = 0;
    for (const ObjectListHandle& h : handles) {
        auto found = measures.find(h.handle.value());
        QM_FUZZ_CHECK(found != measures.end());
        double measure = area ? found->second.area : found->second.length;
        QM_FUZZ_CHECK(measure >= 0);
        expected += measure;
    }
    AcFdFieldValue value;
    double sum = -1;
    QM_FUZZ_CHECK(field.getValue(value) == Acad::eOk && value.get(sum));
    QM_FUZZ_CHECK(sum == expected);
    // The data item is the list as read, and reads back to the same handles.
    AcFdFieldValue item;
    const ACHAR* itemText = nullptr;
    QM_FUZZ_CHECK(field.getData(key, &item) == Acad::eOk && item.get(itemText));
    QM_FUZZ_CHECK(CString(itemText) == ObjectListDataText(arguments, handles));
    std::vector<ObjectListHandle> again;
    QM_FUZZ_CHECK(ReadObjectList(itemText, again, why) == 1 && again.size() == handles.size());
    for (size_t i = 0; i < again.size(); ++i) QM_FUZZ_CHECK(again[i].handle == handles[i].handle);
    return 0;
}
