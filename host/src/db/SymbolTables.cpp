#include <dbsymtb.h>

#include <adslib.h>
#include <tchar.h>

#include <algorithm>
#include <cwchar>
#include <cwctype>
#include <unordered_set>

#include <dbents.h>
#include <dbtable.h>

#include "db/CaseFold.h"
#include "db/DatabaseImpl.h"

ACRX_DEFINE_MEMBERS(AcDbSymbolTableRecord, AcDbObject)
ACRX_DEFINE_MEMBERS(AcDbSymbolTable, AcDbObject)
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockTable, AcDbSymbolTable, L"TABLE")
ACRX_DXF_DEFINE_MEMBERS(AcDbLayerTable, AcDbSymbolTable, L"TABLE")
ACRX_DXF_DEFINE_MEMBERS(AcDbRegAppTable, AcDbSymbolTable, L"TABLE")
ACRX_DXF_DEFINE_MEMBERS(AcDbBlockTableRecord, AcDbSymbolTableRecord, L"BLOCK_RECORD")
ACRX_DXF_DEFINE_MEMBERS(AcDbLayerTableRecord, AcDbSymbolTableRecord, L"LAYER")
ACRX_DXF_DEFINE_MEMBERS(AcDbRegAppTableRecord, AcDbSymbolTableRecord, L"APPID")

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
    if (!name || !*name) return Acad::eInvalidInput;
    // A record in a table keeps the table's index in step.
    auto* table = AcDbSymbolTable::cast(cadhost::DatabaseImpl::Peek(ownerId()));
    if (table && table->has(objectId())) {
        AcDbObjectId other;
        if (table->getAt(name, other) == Acad::eOk && other != objectId()) return Acad::eDuplicateRecordName;
        table->noteRename(objectId(), m_name, name);
    }
    m_name = name;
    return Acad::eOk;
}

AcDbSymbolTable::~AcDbSymbolTable() = default;

std::wstring AcDbSymbolTable::IndexKey(const std::wstring& name) {
    std::wstring key = name;
    for (wchar_t& c : key) c = cadhost::UpperLetter(c);
    return key;
}

void AcDbSymbolTable::adoptRecord(AcDbObjectId id, const std::wstring& name) {
    m_records.push_back(id);
    m_index[IndexKey(name)].push_back(id);
}

void AcDbSymbolTable::noteRename(AcDbObjectId id, const std::wstring& oldName, const std::wstring& newName) {
    auto it = m_index.find(IndexKey(oldName));
    if (it != m_index.end()) {
        std::erase(it->second, id);
        if (it->second.empty()) m_index.erase(it);
    }
    m_index[IndexKey(newName)].push_back(id);
}

Acad::ErrorStatus AcDbSymbolTable::getAt(const ACHAR* name, AcDbObjectId& id, bool getErased) const {
    if (!name) return Acad::eInvalidInput;
    auto it = m_index.find(IndexKey(name));
    if (it == m_index.end()) return Acad::eKeyNotFound;
    // A live record wins over an erased one of the same name.
    AcDbObjectId erased;
    for (AcDbObjectId recordId : it->second) {
        if (!recordId.isErased()) {
            id = recordId;
            return Acad::eOk;
        }
        if (erased.isNull()) erased = recordId;
    }
    if (getErased && !erased.isNull()) {
        id = erased;
        return Acad::eOk;
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
    AcDbObject* record = cadhost::DatabaseImpl::Peek(id);
    return record && !id.isErased() && record->ownerId() == objectId() && AcDbSymbolTableRecord::cast(record);
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
    adoptRecord(id, record->name());
    // A block is carried in files by a begin and an end entity with handles
    // of their own.
    if (auto* block = AcDbBlockTableRecord::cast(record)) {
        AcDbObjectId layerZero;
        if (auto* layers = AcDbLayerTable::cast(cadhost::DatabaseImpl::Peek(stub->database->layerTable)))
            layers->getAt(L"0", layerZero);
        for (bool begin : {true, false}) {
            AcDbEntity* marker = begin ? static_cast<AcDbEntity*>(new AcDbBlockBegin) : new AcDbBlockEnd;
            AcDbObjectId markerId;
            if (stub->database->Add(markerId, marker) != Acad::eOk) {
                delete marker;
                continue;
            }
            if (!layerZero.isNull()) marker->setLayer(layerZero);
            marker->setOwnerId(id);
            marker->close();
            if (begin) block->setBlockBeginId(markerId);
            else block->setBlockEndId(markerId);
        }
    }
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

bool AcDbBlockTableRecord::hasAttributeDefinitions() const {
    for (AcDbObjectId id : m_entities) {
        AcDbObject* entity = cadhost::DatabaseImpl::Peek(id);
        if (entity && !id.isErased() && AcDbAttributeDefinition::cast(entity)) return true;
    }
    return false;
}

Acad::ErrorStatus AcDbBlockTableRecord::setOrigin(const AcGePoint3d& origin) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_origin = origin;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::pathName(const ACHAR*& path) const {
    path = m_path.c_str();
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::setPathName(const ACHAR* path) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    m_path = path ? path : L"";
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::appendAcDbEntity(AcDbEntity* entity) {
    AcDbObjectId id;
    return appendAcDbEntity(id, entity);
}

namespace {
// An anonymous block "*T<n>" that no block has taken.
AcDbObjectId NewTableBlock(AcDbDatabase& db) {
    AcDbBlockTable* blocks = nullptr;
    if (db.getSymbolTable(blocks, AcDb::kForWrite) != Acad::eOk) return {};
    AcDbObjectId id;
    for (int n = 1; n < 1000000; ++n) {
        std::wstring name = L"*T" + std::to_wstring(n);
        if (blocks->has(name.c_str())) continue;
        auto* record = new AcDbBlockTableRecord;
        record->setName(name.c_str());
        if (blocks->add(id, record) == Acad::eOk) record->close();
        else delete record;
        break;
    }
    blocks->close();
    return id;
}
}  // namespace

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
    // A table draws itself in an anonymous block of its own.
    if (auto* table = AcDbTable::cast(entity); table && table->blockTableRecord().isNull()) {
        if (AcDbObjectId block = NewTableBlock(stub->database->owner()); !block.isNull()) table->setBlockIdOnly(block);
    }
    // A reference joins its block's index; its attributes join the database.
    if (auto* reference = AcDbBlockReference::cast(entity)) {
        if (auto* block = AcDbBlockTableRecord::cast(cadhost::DatabaseImpl::Peek(reference->blockTableRecord())))
            block->noteReference(id);
        for (AcDbObjectId attribute : reference->attributeIds()) {
            if (AcDbObject* object = cadhost::DatabaseImpl::Peek(attribute)) object->setOwnerId(id);
        }
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbBlockTableRecord::newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const {
    iterator = new AcDbBlockTableRecordIterator(this, atBeginning, skipDeleted);
    return Acad::eOk;
}

void AcDbBlockTableRecord::noteReference(AcDbObjectId referenceId) { m_references.push_back(referenceId); }

void AcDbBlockTableRecord::forgetReference(AcDbObjectId) { ++m_staleReferences; }

namespace {
// A reference in the index that still points at this block.
bool PointsAt(AcDbObjectId reference, AcDbObjectId block) {
    auto* object = AcDbBlockReference::cast(cadhost::DatabaseImpl::Peek(reference));
    return object && object->blockTableRecord() == block;
}
}  // namespace

void AcDbBlockTableRecord::compactReferences() const {
    // Drops what points elsewhere now, and a reference that came back,
    // noted twice, once; linear in the index, and only after a change.
    std::unordered_set<AcDbStub*> seen;
    std::vector<AcDbObjectId> kept;
    kept.reserve(m_references.size());
    for (AcDbObjectId id : m_references) {
        if (PointsAt(id, objectId()) && seen.insert(id.stub()).second) kept.push_back(id);
    }
    m_references.swap(kept);
    m_staleReferences = 0;
}

Acad::ErrorStatus AcDbBlockTableRecord::getBlockReferenceIds(AcDbObjectIdArray& ids, bool directOnly,
                                                             bool forceValidity) const {
    if (m_staleReferences > 0) compactReferences();
    for (AcDbObjectId id : m_references) {
        if (!id.isErased()) ids.append(id);
    }
    if (directOnly) return Acad::eOk;
    // Through nesting: the references to every block that holds one of ours,
    // each once beside the direct ones.
    std::unordered_set<AcDbStub*> listed;
    for (AcDbObjectId id : m_references) listed.insert(id.stub());
    std::vector<AcDbObjectId> pending(m_references.begin(), m_references.end());
    std::unordered_set<AcDbStub*> seenBlocks{objectId().stub()};
    while (!pending.empty()) {
        AcDbObjectId reference = pending.back();
        pending.pop_back();
        if (reference.isErased() || !reference.stub()->object) continue;
        AcDbObjectId owner = reference.stub()->object->ownerId();
        if (!seenBlocks.insert(owner.stub()).second) continue;
        auto* block = AcDbBlockTableRecord::cast(cadhost::DatabaseImpl::Peek(owner));
        if (!block || block->isLayout()) continue;
        if (block->m_staleReferences > 0) block->compactReferences();
        for (AcDbObjectId outer : block->m_references) {
            if (outer.isErased()) continue;
            if (listed.insert(outer.stub()).second) ids.append(outer);
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
