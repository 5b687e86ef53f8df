// Any text as the arguments of an AcBlockCount code, evaluated against a
// small drawing that nests blocks three deep, holds blocks that contain
// themselves, a dynamic block with anonymous copies, attributes and two
// spaces. The evaluation ends with a count and its data item, or with "####"
// and a message; what the reader accepts is never called unreadable, and a
// count is the same through the field and straight through the counter.
#include <dbdynblk.h>
#include <dbents.h>
#include <dbfield.h>
#include <dbobjptr.h>
#include <dbsymtb.h>

#include <cwctype>
#include <string>

#include "BlockCountQuery.h"
#include "BlockCounter.h"
#include "EvaluatorLoader.h"
#include "FuzzSupport.h"
#include "db/DynamicBlocks.h"

namespace {

AcDbObjectId AddBlock(AcDbDatabase* db, const wchar_t* name) {
    AcDbSymbolTablePointer<AcDbBlockTable> table(db, AcDb::kForWrite);
    auto* record = new AcDbBlockTableRecord;
    record->setName(name);
    AcDbObjectId id;
    QM_FUZZ_CHECK(table->add(id, record) == Acad::eOk);
    auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 1, 0));
    record->appendAcDbEntity(line);
    line->close();
    record->close();
    return id;
}

AcDbObjectId AddLayer(AcDbDatabase* db, const wchar_t* name) {
    AcDbSymbolTablePointer<AcDbLayerTable> table(db, AcDb::kForWrite);
    auto* record = new AcDbLayerTableRecord;
    record->setName(name);
    AcDbObjectId id;
    QM_FUZZ_CHECK(table->add(id, record) == Acad::eOk);
    record->close();
    return id;
}

AcDbObjectId Insert(AcDbObjectId owner, AcDbObjectId block, double x, double y, const wchar_t* layer,
                    const wchar_t* tag = nullptr, const wchar_t* value = nullptr) {
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(owner, AcDb::kForWrite);
    auto* reference = new AcDbBlockReference(AcGePoint3d(x, y, 0), block);
    reference->setLayer(layer);
    AcDbObjectId id;
    QM_FUZZ_CHECK(record->appendAcDbEntity(id, reference) == Acad::eOk);
    if (tag) {
        auto* attribute = new AcDbAttribute(AcGePoint3d(x, y + 0.5, 0), value, tag);
        attribute->setHeight(0.1);
        reference->appendAttribute(attribute);
        attribute->close();
    }
    reference->close();
    return id;
}

AcDbDatabase* Drawing() {
    static AcDbDatabase* db = [] {
        qmfuzz::RunningHost();
        auto* d = acdbHostApplicationServices()->workingDatabase();
        AddLayer(d, L"A");
        AddLayer(d, L"B");
        AcDbObjectId door = AddBlock(d, L"DOOR"), room = AddBlock(d, L"ROOM"), floor = AddBlock(d, L"FLOOR"),
                     self = AddBlock(d, L"SELF"), ping = AddBlock(d, L"PING"), pong = AddBlock(d, L"PONG"),
                     dynamic = AddBlock(d, L"DYN"), copy = AddBlock(d, L"*U1");
        Insert(room, door, 0, 0, L"A", L"SIZE", L"90");
        Insert(room, door, 2, 0, L"B", L"SIZE", L"wide");
        Insert(floor, room, 0, 0, L"0");
        Insert(floor, room, 10, 0, L"0");
        Insert(self, self, 0, 0, L"0");
        Insert(self, door, 0, 0, L"A", L"SIZE", L"70");
        Insert(ping, pong, 0, 0, L"0");
        Insert(pong, ping, 0, 0, L"0");
        Insert(pong, door, 0, 0, L"B");
        cadhost::AddDynamicProperty(dynamic, {L"Width", L"", AcDbEvalVariant(0.9), true, false});
        cadhost::TieAnonymousCopy(copy, dynamic);
        AcDbObjectId model = d->modelSpaceId(), paper = d->paperSpaceId();
        Insert(model, door, 0, 0, L"A", L"SIZE", L"100");
        Insert(model, floor, 0, 10, L"0");
        Insert(model, self, 20, 0, L"0");
        Insert(model, ping, 30, 0, L"0");
        Insert(model, copy, 40, 0, L"B");
        Insert(paper, door, 1, 1, L"0", L"SIZE", L"1e400");
        Insert(paper, room, 5, 5, L"A");
        return d;
    }();
    return db;
}

bool IsCount(const std::wstring& text) {
    if (text.empty()) return false;
    for (wchar_t c : text) {
        if (!std::iswdigit(static_cast<wint_t>(c))) return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    AcDbDatabase* db = Drawing();
    static const bool registered = RegisterQuillmarkEvaluators() == 1;
    QM_FUZZ_CHECK(registered);
    std::wstring arguments = qmfuzz::WideText(data, size);

    // Straight through the reader and the counter.
    BlockCountQuery query;
    CString why;
    bool readable = ReadBlockCountQuery(CString(arguments.c_str()), query, why);
    QM_FUZZ_CHECK(readable == why.IsEmpty());
    Adesk::Int32 direct = -1;
    if (readable) {
        CBlockCounter counter(db, query);
        CBlockCounter::Result result = counter.Count(direct);
        QM_FUZZ_CHECK(direct >= 0);
        if (result != CBlockCounter::kCounted) direct = -1;
    }

    // Through a field, as the page and cadhost update evaluate it.
    AcDbField field;
    if (field.setFieldCode((L"%<\\AcBlockCount " + arguments + L">%").c_str()) != Acad::eOk) return 0;
    if (std::wstring(field.evaluatorId()) != L"AcBlockCount") return 0;
    field.evaluate(AcDbField::kPreview, db);
    ACHAR* message = nullptr;
    AcDbField::EvalStatus status = field.evaluationStatus(nullptr, &message);
    std::wstring said = message ? message : L"";
    acutDelBuffer(message);
    std::wstring value = field.getValue();
    AcFdFieldValue item;
    bool stored = field.getData(L"AcBlockCount Data", &item) == Acad::eOk;
    if (status == AcDbField::kSuccess) {
        // A format of the code's own (\f) shapes the text; without one the
        // text is the count alone.
        if (std::wstring(field.getFormat()).empty()) QM_FUZZ_CHECK(IsCount(value));
        QM_FUZZ_CHECK(stored && item.dataType() == AcValue::kString);
    } else {
        QM_FUZZ_CHECK(status == AcDbField::kSyntaxError || status == AcDbField::kInvalidCode ||
                      status == AcDbField::kOtherError);
        QM_FUZZ_CHECK(value == L"####");
        QM_FUZZ_CHECK(!said.empty());
        QM_FUZZ_CHECK(!stored);
    }
    // The field hands the evaluator the code without its \f option: when the
    // text had none and reads, the field counts what the counter counted.
    if (arguments.find(L"\\f") == std::wstring::npos && arguments.find(L"\\F") == std::wstring::npos &&
        arguments.find(L'%') == std::wstring::npos && std::wstring(field.getFormat()).empty()) {
        if (direct >= 0) {
            QM_FUZZ_CHECK(status == AcDbField::kSuccess);
            QM_FUZZ_CHECK(value == std::to_wstring(direct));
        }
        if (!readable) QM_FUZZ_CHECK(status == AcDbField::kSyntaxError);
    }
    return 0;
}
