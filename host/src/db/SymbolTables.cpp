#include <dbsymtb.h>

#include <adslib.h>
#include <tchar.h>

#include <algorithm>
#include <cwchar>

#include "db/DatabaseImpl.h"

ACRX_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject)
ACRX_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject)
ACRX_DEFINE_MEMBERS(AcDbBlockTable, AcDbSymbolTable)
ACRX_DEFINE_MEMBERS(AcDbLayerTable, AcDbSymbolTable)
ACRX_DEFINE_MEMBERS(AcDbRegAppTable, AcDbSymbolTable)
ACRX_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord)
ACRX_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord)
ACRX_DEFINE_MEMBERS(AcDbRegAppTableRecord, AcDbSymbolTableRecord)

AcDbSymbolTableRecord::~AcDbSymbolTableRecord() = default;

Acad::ErrorStatus AcDbSymbolTableRecord::getName(const ACHAR*& name) const {
    name = m_name.c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::getName(ACHAR*& name) const {
    name = new ACHAR[m_name.size() + 1];
    std::wmemcpy(name, m_name.c_str(), m_name.size() + 1);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableRecord::setName(const ACHAR* name) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!name) return Acad::eInvalidInput;
    m_name = name;
    return Acad::eOk;
}

AcDbSymbolTable::~AcDbSymbolTable() = default;

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id, bool getErased) const {
    if (!name) return Acad::eInvalidInput;
    // Records are few next to the entities of a drawing; tables are searched
    // by name only on the user's demand.
    for (AcDbObjectId recordId : m_records) {
        if (!getErased && recordId.isErased()) continue;
        AcDbStub* stub = recordId.stub();
        auto* record = stub && stub->object ? AcDbSymbolTableRecord::cast(stub->object) : nullptr;
        if (record && _wcsicmp(record->name().c_str(), name) == 0) {
            id = recordId;
            return Acad::eOk;
        }
    }
    return Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                                         bool openErased) const {
    record = nullptr;
    AcDbObjectId id;
    Acad::ErrorStatus es = getAt(name, id, openErased);
    if (es != Acad::eOk) return es;
    return acdbOpenObject(record, id, mode, openErased);
}

bool AcDbSymbolTable::has(const ACHAR* name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

bool AcDbSymbolTable::has(AcDbObjectId id) const {
    return !id.isErased() && std::find(m_records.begin(), m_records.end(), id) != m_records.end();
}

Acad::ErrorStatus AcDbSymbolTable::newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning,
                                               bool skipDeleted) const {
    iterator = new AcDbSymbolTableIterator(this, atBeginning, skipDeleted);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbSymbolTableRecord* record) {
    AcDbObjectId id;
    return add(id, record);
}

Acad::ErrorStatus AcDbSymbolTable::add(AcDbObjectId& id, AcDbSymbolTableRecord* record) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!record) return Acad::eNullObjectPointer;
    if (record->name().empty()) return Acad::eInvalidInput;
    if (has(record->name().c_str())) return Acad::eDuplicateRecordName;
    AcDbStub* stub = cadhost::DatabaseImpl::StubOf(this);
    if (!stub) return Acad::eNotInDatabase;
    Acad::ErrorStatus es = stub->database->Add(id, record);
    if (es != Acad::eOk) return es;
    record->setOwnerId(objectId());
    m_records.push_back(id);
    return Acad::eOk;
}

AcDbSymbolTableIterator::AcDbSymbolTableIterator(const AcDbSymbolTable* table, bool atBeginning, bool skipDeleted)
    : m_ids(table ? table->recordIds() : std::vector<AcDbObjectId>()) {
    start(atBeginning, skipDeleted);
}

void AcDbSymbolTableIterator::start(bool atBeginning, bool skipDeleted) {
    m_index = atBeginning ? 0 : static_cast<long>(m_ids.size()) - 1;
    skip(atBeginning, skipDeleted);
}

bool AcDbSymbolTableIterator::done() const { return m_index < 0 || m_index >= static_cast<long>(m_ids.size()); }

void AcDbSymbolTableIterator::skip(bool forward, bool skipDeleted) {
    while (skipDeleted && !done() && m_ids[static_cast<size_t>(m_index)].isErased()) m_index += forward ? 1 : -1;
}

void AcDbSymbolTableIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_index += forward ? 1 : -1;
    skip(forward, skipDeleted);
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecordId(AcDbObjectId& id) const {
    if (done()) return Acad::eInvalidIndex;
    id = m_ids[static_cast<size_t>(m_index)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbSymbolTableIterator::getRecord(AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                                                     bool openErased) const {
    record = nullptr;
    AcDbObjectId id;
    Acad::ErrorStatus es = getRecordId(id);
    if (es != Acad::eOk) return es;
    return acdbOpenObject(record, id, mode, openErased);
}

#define QM_TYPED_TABLE_BODY(TABLE, RECORD, ITERATOR)                                                      \
    Acad::ErrorStatus ITERATOR::getRecord(RECORD*& record, AcDb::OpenMode mode, bool openErased) const {  \
        record = nullptr;                                                                                 \
        AcDbObjectId id;                                                                                  \
        Acad::ErrorStatus es = getRecordId(id);                                                           \
        if (es != Acad::eOk) return es;                                                                   \
        return acdbOpenObject(record, id, mode, openErased);                                              \
    }                                                                                                     \
    Acad::ErrorStatus TABLE::getAt(const ACHAR* name, RECORD*& record, AcDb::OpenMode mode,               \
                                   bool openErased) const {                                               \
        record = nullptr;                                                                                 \
        AcDbObjectId id;                                                                                  \
        Acad::ErrorStatus es = AcDbSymbolTable::getAt(name, id, openErased);                              \
        if (es != Acad::eOk) return es;                                                                   \
        return acdbOpenObject(record, id, mode, openErased);                                              \
    }                                                                                                     \
    Acad::ErrorStatus TABLE::newIterator(ITERATOR*& iterator, bool atBeginning, bool skipDeleted) const { \
        iterator = new ITERATOR(this, atBeginning, skipDeleted);                                          \
        return Acad::eOk;                                                                                 \
    }

QM_TYPED_TABLE_BODY(AcDbBlockTable, AcDbBlockTableRecord, AcDbBlockTableIterator)
QM_TYPED_TABLE_BODY(AcDbLayerTable, AcDbLayerTableRecord, AcDbLayerTableIterator)
QM_TYPED_TABLE_BODY(AcDbRegAppTable, AcDbRegAppTableRecord, AcDbRegAppTableIterator)

AcDbBlockTableRecord::~AcDbBlockTableRecord() = default;

bool AcDbBlockTableRecord::isLayout() const {
    return _wcsnicmp(name().c_str(), ACDB_MODEL_SPACE, 12) == 0 || _wcsnicmp(name().c_str(), ACDB_PAPER_SPACE, 12) == 0;
}

bool AcDbBlockTableRecord::isAnonymous() const { return !name().empty() && name()[0] == L'*' && !isLayout(); }

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!entity) return Acad::eNullEntityPointer;
    AcDbStub* stub = cadhost::DatabaseImpl::StubOf(this);
    if (!stub) return Acad::eNotInDatabase;
    if (entity->layerId().isNull()) {
        Acad::ErrorStatus es = entity->setLayer(stub->database->clayer);
        if (es != Acad::eOk) return es;
    }
    Acad::ErrorStatus es = stub->database->Add(id, entity);
    if (es != Acad::eOk) return es;
    entity->setOwnerId(objectId());
    m_entities.push_back(id);
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const {
    iterator = new AcDbBlockTableRecordIterator(this, atBeginning, skipDeleted);
    return Acad::eOk;
}

void AcDbBlockTableRecord::noteReference(AcDbObjectId referenceId) { m_references.push_back(referenceId); }

void AcDbBlockTableRecord::forgetReference(AcDbObjectId referenceId) { std::erase(m_references, referenceId); }

Acad::ErrorStatus AcDbBlockTableRecord::getBlockReferenceIds(AcDbObjectIdArray& ids, bool directOnly,
                                                             bool forceValidity) const {
    for (AcDbObjectId id : m_references) {
        if (!id.isErased()) ids.append(id);
    }
    if (directOnly) return Acad::eOk;
    // Through nesting: the references to every block that holds one of ours.
    std::vector<AcDbObjectId> pending(m_references.begin(), m_references.end());
    std::vector<AcDbObjectId> seenBlocks{objectId()};
    while (!pending.empty()) {
        AcDbObjectId reference = pending.back();
        pending.pop_back();
        if (reference.isErased() || !reference.stub()->object) continue;
        AcDbObjectId owner = reference.stub()->object->ownerId();
        if (std::find(seenBlocks.begin(), seenBlocks.end(), owner) != seenBlocks.end()) continue;
        seenBlocks.push_back(owner);
        auto* block = owner.stub() && owner.stub()->object ? AcDbBlockTableRecord::cast(owner.stub()->object) : nullptr;
        if (!block || block->isLayout()) continue;
        for (AcDbObjectId outer : block->m_references) {
            if (outer.isErased()) continue;
            if (!ids.contains(outer)) ids.append(outer);
            pending.push_back(outer);
        }
    }
    return Acad::eOk;
}

AcDbBlockTableRecordIterator::AcDbBlockTableRecordIterator(const AcDbBlockTableRecord* record, bool atBeginning,
                                                           bool skipDeleted)
    : m_ids(record ? record->entityIds() : std::vector<AcDbObjectId>()) {
    start(atBeginning, skipDeleted);
}

void AcDbBlockTableRecordIterator::start(bool atBeginning, bool skipDeleted) {
    m_index = atBeginning ? 0 : static_cast<long>(m_ids.size()) - 1;
    skip(atBeginning, skipDeleted);
}

bool AcDbBlockTableRecordIterator::done() const {
    return m_index < 0 || m_index >= static_cast<long>(m_ids.size());
}

void AcDbBlockTableRecordIterator::skip(bool forward, bool skipDeleted) {
    while (skipDeleted && !done() && m_ids[static_cast<size_t>(m_index)].isErased()) m_index += forward ? 1 : -1;
}

void AcDbBlockTableRecordIterator::step(bool forward, bool skipDeleted) {
    if (done()) return;
    m_index += forward ? 1 : -1;
    skip(forward, skipDeleted);
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntityId(AcDbObjectId& id) const {
    if (done()) return Acad::eInvalidIndex;
    id = m_ids[static_cast<size_t>(m_index)];
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecordIterator::getEntity(AcDbEntity*& entity, AcDb::OpenMode mode,
                                                          bool openErased) const {
    entity = nullptr;
    AcDbObjectId id;
    Acad::ErrorStatus es = getEntityId(id);
    if (es != Acad::eOk) return es;
    return acdbOpenObject(entity, id, mode, openErased);
}
