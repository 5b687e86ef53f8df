#include "db/DynamicBlocks.h"

#include <adslib.h>
#include <dbents.h>
#include <dbdict.h>
#include <dbsymtb.h>
#include <tchar.h>

#include <cstdlib>
#include <cstring>
#include <cwchar>

#include "ads/Resbuf.h"
#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "db/ObjectExtras.h"

// Typed values -------------------------------------------------------------

namespace {
void CopyInto(resbuf& to, const resbuf& from) {
    to.rbnext = nullptr;
    to.restype = from.restype;
    to.resval = from.resval;
    if (from.restype == AcDb::kDxfText) to.resval.rstring = cadhost::DuplicateText(from.resval.rstring);
}
}  // namespace

AcDbEvalVariant::AcDbEvalVariant() {
    rbnext = nullptr;
    restype = RTNONE;
    resval.rreal = 0;
}

AcDbEvalVariant::AcDbEvalVariant(const AcDbEvalVariant& other) : AcDbEvalVariant() { CopyInto(*this, other); }

AcDbEvalVariant& AcDbEvalVariant::operator=(const AcDbEvalVariant& other) {
    if (this != &other) {
        clear();
        CopyInto(*this, other);
    }
    return *this;
}

AcDbEvalVariant::~AcDbEvalVariant() { clear(); }

void AcDbEvalVariant::clear() {
    if (restype == AcDb::kDxfText) std::free(resval.rstring);
    restype = RTNONE;
    resval.rreal = 0;
}

AcDbEvalVariant::AcDbEvalVariant(double value) : AcDbEvalVariant() {
    restype = AcDb::kDxfReal;
    resval.rreal = value;
}

AcDbEvalVariant::AcDbEvalVariant(short value) : AcDbEvalVariant() {
    restype = AcDb::kDxfInt16;
    resval.rint = value;
}

AcDbEvalVariant::AcDbEvalVariant(Adesk::Int32 value) : AcDbEvalVariant() {
    restype = AcDb::kDxfInt32;
    resval.rlong = value;
}

AcDbEvalVariant::AcDbEvalVariant(const ACHAR* value) : AcDbEvalVariant() {
    restype = AcDb::kDxfText;
    resval.rstring = cadhost::DuplicateText(value ? value : L"");
}

AcDbEvalVariant::AcDbEvalVariant(const AcGePoint2d& value) : AcDbEvalVariant() {
    restype = AcDb::kDxfXCoord;
    resval.rpoint[0] = value.x;
    resval.rpoint[1] = value.y;
    resval.rpoint[2] = 0;
}

AcDbEvalVariant::AcDbEvalVariant(const AcGePoint3d& value) : AcDbEvalVariant() {
    restype = AcDb::kDxfXCoord;
    resval.rpoint[0] = value.x;
    resval.rpoint[1] = value.y;
    resval.rpoint[2] = value.z;
}

AcDb::DwgDataType AcDbEvalVariant::getType() const {
    switch (restype) {
    case AcDb::kDxfText: return AcDb::kDwgText;
    case AcDb::kDxfReal: return AcDb::kDwgReal;
    case AcDb::kDxfInt16: return AcDb::kDwgInt16;
    case AcDb::kDxfInt32: return AcDb::kDwgInt32;
    case AcDb::kDxfXCoord: return AcDb::kDwg3Real;
    case RTNONE: return AcDb::kDwgNull;
    default: return AcDb::kDwgNotRecognized;
    }
}

bool AcDbEvalVariant::operator==(const AcDbEvalVariant& other) const {
    if (restype != other.restype) return false;
    switch (restype) {
    case AcDb::kDxfText:
        return std::wcscmp(resval.rstring ? resval.rstring : L"", other.resval.rstring ? other.resval.rstring : L"") ==
               0;
    case AcDb::kDxfReal: return resval.rreal == other.resval.rreal;
    case AcDb::kDxfInt16: return resval.rint == other.resval.rint;
    case AcDb::kDxfInt32: return resval.rlong == other.resval.rlong;
    case AcDb::kDxfXCoord:
        return resval.rpoint[0] == other.resval.rpoint[0] && resval.rpoint[1] == other.resval.rpoint[1] &&
               resval.rpoint[2] == other.resval.rpoint[2];
    default: return true;
    }
}

// The host's model --------------------------------------------------------

namespace cadhost {
namespace {

AcDbBlockTableRecord* PeekBlock(AcDbObjectId id) {
    AcDbObject* object = DatabaseImpl::Peek(id);
    return object && !id.isErased() ? AcDbBlockTableRecord::cast(object) : nullptr;
}

// The record's tie to its dynamic block: the 1005 handle of its
// AcDbBlockRepBTag data.
AcDbObjectId TiedBlock(const AcDbBlockTableRecord* record) {
    ObjectExtras* extras = record->extras();
    if (!extras || !extras->xdata) return {};
    bool inTie = false;
    for (const resbuf* rb = extras->xdata; rb; rb = rb->rbnext) {
        if (rb->restype == 1001) {
            inTie = rb->resval.rstring && _wcsicmp(rb->resval.rstring, kBlockRepresentationApp) == 0;
        } else if (inTie && rb->restype == 1005 && rb->resval.rstring) {
            AcDbHandle handle(rb->resval.rstring);
            AcDbObjectId id;
            AcDbDatabase* db = record->database();
            if (db && !handle.isNull() && db->getAcDbObjectId(id, false, handle) == Acad::eOk) return id;
        }
    }
    return {};
}

// The text of the first 1000 group of an application's extended data.
std::wstring XDataText(const AcDbObject* object, const wchar_t* app) {
    ObjectExtras* extras = object ? object->extras() : nullptr;
    if (!extras || !extras->xdata) return {};
    bool inApp = false;
    for (const resbuf* rb = extras->xdata; rb; rb = rb->rbnext) {
        if (rb->restype == 1001) inApp = rb->resval.rstring && _wcsicmp(rb->resval.rstring, app) == 0;
        else if (inApp && rb->restype == 1000 && rb->resval.rstring) return rb->resval.rstring;
    }
    return {};
}

// An anonymous copy named after its dynamic block by the extended data
// "AcDbDynamicBlockTrueName".
AcDbObjectId TrueNamedBlock(const AcDbBlockTableRecord* record) {
    std::wstring name = XDataText(record, kTrueNameApp);
    AcDbDatabase* db = record->database();
    if (name.empty() || !db) return {};
    auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(db->blockTableId()));
    AcDbObjectId id;
    return blocks && blocks->getAt(name.c_str(), id) == Acad::eOk ? id : AcDbObjectId();
}

DynamicBlockData& DataOf(AcDbObject& object) {
    ObjectExtras& extras = object.mutableExtras();
    if (!extras.dynamic) extras.dynamic = std::make_unique<DynamicBlockData>();
    return *extras.dynamic;
}

}  // namespace

bool IsDynamicDefinition(AcDbObjectId blockId) {
    AcDbBlockTableRecord* record = PeekBlock(blockId);
    if (!record) return false;
    ObjectExtras* extras = record->extras();
    if (extras && extras->dynamic && extras->dynamic->definition) return true;
    // A block from a file is dynamic when its extension dictionary holds
    // the evaluation graph of its parameters.
    AcDbObjectId dictionaryId = record->extensionDictionary();
    auto* dictionary = dictionaryId.isNull() ? nullptr : AcDbDictionary::cast(DatabaseImpl::Peek(dictionaryId));
    return dictionary && dictionary->has(kEnhancedBlockEntry);
}

AcDbObjectId DynamicBlockOf(AcDbObjectId blockId) {
    AcDbBlockTableRecord* record = PeekBlock(blockId);
    if (!record) return {};
    if (IsDynamicDefinition(blockId)) return blockId;
    AcDbObjectId tied = TiedBlock(record);
    if (tied.isNull()) tied = TrueNamedBlock(record);
    return !tied.isNull() && tied != blockId && IsDynamicDefinition(tied) ? tied : AcDbObjectId();
}

AcDbObjectId RepresentedBlock(AcDbObjectId referenceId) {
    AcDbObject* reference = DatabaseImpl::Peek(referenceId);
    if (!reference || referenceId.isErased()) return {};
    // Extension dictionary, "AcDbBlockRepresentation", "AcDbRepData": an
    // object whose 340 names the dynamic block.
    auto* extension = AcDbDictionary::cast(DatabaseImpl::Peek(reference->extensionDictionary()));
    AcDbObjectId id;
    if (!extension || extension->getAt(L"AcDbBlockRepresentation", id) != Acad::eOk) return {};
    auto* representation = AcDbDictionary::cast(DatabaseImpl::Peek(id));
    if (!representation || representation->getAt(L"AcDbRepData", id) != Acad::eOk) return {};
    AcDbObject* data = DatabaseImpl::Peek(id);
    ObjectExtras* extras = data ? data->extras() : nullptr;
    if (!extras) return {};
    KeptGroups::Cursor cursor(extras->kept);
    KeptGroup group;
    while (cursor.Next(group)) {
        if (group.code != 340) continue;
        AcDbHandle handle(FromUtf8(group.value).c_str());
        AcDbObjectId block;
        if (!handle.isNull() && reference->database()->getAcDbObjectId(block, false, handle) == Acad::eOk &&
            AcDbBlockTableRecord::cast(DatabaseImpl::Peek(block)) && !block.isErased())
            return block;
    }
    return {};
}

const DynamicBlockData* DynamicDataOf(AcDbObjectId blockId) {
    AcDbBlockTableRecord* record = PeekBlock(blockId);
    ObjectExtras* extras = record ? record->extras() : nullptr;
    return extras && extras->dynamic && extras->dynamic->definition ? extras->dynamic.get() : nullptr;
}

Acad::ErrorStatus MakeDynamicBlock(AcDbObjectId blockId) {
    AcDbBlockTableRecord* record = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(record, blockId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    DataOf(*record).definition = true;
    record->close();
    return Acad::eOk;
}

Acad::ErrorStatus AddDynamicProperty(AcDbObjectId blockId, DynamicPropertyDefinition property) {
    if (property.name.empty() || property.value.isEmpty()) return Acad::eInvalidInput;
    AcDbBlockTableRecord* record = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(record, blockId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    DynamicBlockData& data = DataOf(*record);
    for (const DynamicPropertyDefinition& existing : data.properties) {
        if (_wcsicmp(existing.name.c_str(), property.name.c_str()) == 0) {
            record->close();
            return Acad::eDuplicateKey;
        }
    }
    data.definition = true;
    data.properties.push_back(std::move(property));
    record->close();
    return Acad::eOk;
}

Acad::ErrorStatus TieAnonymousCopy(AcDbObjectId anonymousId, AcDbObjectId dynamicId) {
    AcDbDatabase* db = anonymousId.database();
    if (!db || dynamicId.database() != db) return Acad::eInvalidInput;
    AcDbRegAppTable* apps = nullptr;
    Acad::ErrorStatus es = db->getSymbolTable(apps, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    if (!apps->has(kBlockRepresentationApp)) {
        auto* app = new AcDbRegAppTableRecord;
        app->setName(kBlockRepresentationApp);
        if (apps->add(app) != Acad::eOk) delete app;
        else app->close();
    }
    apps->close();
    AcDbBlockTableRecord* record = nullptr;
    es = acdbOpenObject(record, anonymousId, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    ACHAR handle[17];
    dynamicId.handle().getIntoAsciiBuffer(handle);
    resbuf* tie = acutBuildList(1001, kBlockRepresentationApp, 1070, 1, 1005, handle, 0);
    es = record->setXData(tie);
    acutRelRb(tie);
    record->close();
    return es;
}

}  // namespace cadhost

// The platform's view of a reference -----------------------------------

using cadhost::DatabaseImpl;

AcDbDynBlockReference::AcDbDynBlockReference(AcDbObjectId blockReferenceId) : m_reference(blockReferenceId) {}
AcDbDynBlockReference::~AcDbDynBlockReference() = default;

namespace {
AcDbObjectId BlockOfReference(AcDbObjectId referenceId) {
    AcDbObject* object = DatabaseImpl::Peek(referenceId);
    auto* reference = object && !referenceId.isErased() ? AcDbBlockReference::cast(object) : nullptr;
    return reference ? reference->blockTableRecord() : AcDbObjectId();
}
}  // namespace

bool AcDbDynBlockReference::isDynamicBlock(AcDbObjectId blockTableRecordId) {
    return !cadhost::DynamicBlockOf(blockTableRecordId).isNull();
}

bool AcDbDynBlockReference::isDynamicBlock() const { return !dynamicBlockTableRecord().isNull(); }

AcDbObjectId AcDbDynBlockReference::dynamicBlockTableRecord() const {
    // The reference's own representation data names its dynamic block;
    // else its block says which dynamic block it is, or a copy of.
    AcDbObjectId represented = cadhost::RepresentedBlock(m_reference);
    if (!represented.isNull()) return represented;
    return cadhost::DynamicBlockOf(BlockOfReference(m_reference));
}

AcDbObjectId AcDbDynBlockReference::anonymousBlockTableRecord() const {
    AcDbObjectId block = BlockOfReference(m_reference);
    AcDbObjectId dynamic = cadhost::DynamicBlockOf(block);
    return !dynamic.isNull() && dynamic != block ? block : AcDbObjectId();
}

void AcDbDynBlockReference::getBlockProperties(AcDbDynBlockReferencePropertyArray& properties) const {
    properties.removeAll();
    const cadhost::DynamicBlockData* definition = cadhost::DynamicDataOf(dynamicBlockTableRecord());
    if (!definition) return;
    AcDbObject* reference = DatabaseImpl::Peek(m_reference);
    cadhost::ObjectExtras* extras = reference ? reference->extras() : nullptr;
    const cadhost::DynamicBlockData* own = extras ? extras->dynamic.get() : nullptr;
    for (const cadhost::DynamicPropertyDefinition& property : definition->properties) {
        AcDbEvalVariant value = property.value;
        if (own) {
            for (const auto& [name, set] : own->values) {
                if (_wcsicmp(name.c_str(), property.name.c_str()) == 0) value = set;
            }
        }
        properties.append(AcDbDynBlockReferenceProperty(m_reference, property.name, property.description, value,
                                                        property.readOnly, property.show));
    }
}

Acad::ErrorStatus AcDbDynBlockReference::resetBlock() {
    AcDbBlockReference* reference = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(reference, m_reference, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    if (cadhost::ObjectExtras* extras = reference->extras()) extras->dynamic.reset();
    reference->close();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDynBlockReferenceProperty::setValue(const AcDbEvalVariant& value) {
    if (m_readOnly) return Acad::eNotApplicable;
    if (value.restype != m_value.restype) return Acad::eInvalidInput;
    AcDbBlockReference* reference = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(reference, m_reference, AcDb::kForWrite);
    if (es != Acad::eOk) return es;
    cadhost::ObjectExtras& extras = reference->mutableExtras();
    if (!extras.dynamic) extras.dynamic = std::make_unique<cadhost::DynamicBlockData>();
    auto& values = extras.dynamic->values;
    bool found = false;
    for (auto& [name, set] : values) {
        if (_wcsicmp(name.c_str(), m_name.kwszPtr()) == 0) {
            set = value;
            found = true;
        }
    }
    if (!found) values.emplace_back(m_name.str(), value);
    reference->close();
    m_value = value;
    return Acad::eOk;
}
