#include "db/DatabaseImpl.h"

#include <adslib.h>

#include "db/DynamicBlocks.h"
#include "db/ObjectExtras.h"

namespace cadhost {

ObjectExtras::ObjectExtras() = default;

ObjectExtras::~ObjectExtras() {
    if (xdata) acutRelRb(xdata);
}

DatabaseImpl::DatabaseImpl(AcDbDatabase& owner) : m_owner(owner) {}

DatabaseImpl::~DatabaseImpl() { Clear(); }

void DatabaseImpl::Clear() {
    for (AcDbStub& stub : m_stubs) {
        delete stub.object;
        stub.object = nullptr;
    }
    m_stubs.clear();
    m_byHandle.clear();
    m_objectOrder.clear();
    m_unnamed.clear();
    m_nextHandle = 1;
    blockTable = layerTable = regAppTable = namedObjects = AcDbObjectId();
    modelSpace = paperSpace = currentSpace = clayer = AcDbObjectId();
}

AcDbStub* DatabaseImpl::Find(Adesk::UInt64 handle) const {
    return m_byHandle.Find(handle);
}

AcDbStub* DatabaseImpl::StubFor(Adesk::UInt64 handle) {
    if (handle == 0) {
        while (m_byHandle.Contains(m_nextHandle)) ++m_nextHandle;
        handle = m_nextHandle++;
    } else if (AcDbStub* existing = Find(handle)) {
        return existing;
    }
    AcDbStub& stub = m_stubs.emplace_back();
    stub.database = this;
    stub.handle = handle;
    m_byHandle.Insert(handle, &stub);
    return &stub;
}

Acad::ErrorStatus DatabaseImpl::Add(AcDbObjectId& id, AcDbObject* object, Adesk::UInt64 handle) {
    if (!object) return Acad::eNullObjectPointer;
    if (object->m_stub) return Acad::eAlreadyInDb;
    AcDbStub* stub = StubFor(handle);
    if (stub->object) return Acad::eDuplicateKey;
    // Only an object moves the next handle on: a reference to a handle that
    // names nothing does not (new objects pass over its stub all the same).
    if (stub->handle >= m_nextHandle) m_nextHandle = stub->handle + 1;
    stub->object = object;
    object->m_stub = stub;
    // As on the platform, whoever adds an object holds it open for write
    // until closing it.
    object->m_writer = true;
    object->m_readers = 0;
    id = AcDbObjectId(stub);
    if (!object->isKindOf(AcDbEntity::desc())) m_objectOrder.push_back(id);
    return Acad::eOk;
}

Acad::ErrorStatus DatabaseImpl::AddUnnamed(AcDbObjectId& id, AcDbObject* object) {
    if (!object) return Acad::eNullObjectPointer;
    if (object->m_stub) return Acad::eAlreadyInDb;
    AcDbStub& stub = m_stubs.emplace_back();
    stub.database = this;
    stub.object = object;
    object->m_stub = &stub;
    object->m_writer = true;
    object->m_readers = 0;
    m_unnamed.push_back(&stub);
    id = AcDbObjectId(&stub);
    if (!object->isKindOf(AcDbEntity::desc())) m_objectOrder.push_back(id);
    return Acad::eOk;
}

void DatabaseImpl::NameUnnamed() {
    for (AcDbStub* stub : m_unnamed) {
        while (m_byHandle.Contains(m_nextHandle)) ++m_nextHandle;
        stub->handle = m_nextHandle++;
        m_byHandle.Insert(stub->handle, stub);
    }
    m_unnamed.clear();
}

void DatabaseImpl::TakeFrom(DatabaseImpl& other) {
    Clear();
    m_stubs = std::move(other.m_stubs);
    m_byHandle = std::move(other.m_byHandle);
    m_objectOrder = std::move(other.m_objectOrder);
    m_unnamed = std::move(other.m_unnamed);
    m_nextHandle = other.m_nextHandle;
    for (AcDbStub& stub : m_stubs) stub.database = this;
    blockTable = other.blockTable;
    layerTable = other.layerTable;
    regAppTable = other.regAppTable;
    namedObjects = other.namedObjects;
    modelSpace = other.modelSpace;
    paperSpace = other.paperSpace;
    currentSpace = other.currentSpace;
    clayer = other.clayer;
    lunits = other.lunits;
    luprec = other.luprec;
    dimzin = other.dimzin;
    ucs = other.ucs;
    pucs = other.pucs;
    fileName = std::move(other.fileName);
    file = std::move(other.file);
    other.m_stubs.clear();
    other.m_byHandle.clear();
    other.m_objectOrder.clear();
    other.Clear();
}

namespace {
template <class T>
AcDbObjectId AddOwned(DatabaseImpl& db, T* object, AcDbObjectId owner) {
    AcDbObjectId id;
    db.Add(id, object);
    object->setOwnerId(owner);
    object->close();
    return id;
}

template <class Record>
AcDbObjectId AddRecord(DatabaseImpl& db, AcDbObjectId tableId, const wchar_t* name) {
    auto* record = new Record;
    record->setName(name);
    AcDbSymbolTable* table = nullptr;
    AcDbObjectId id;
    if (acdbOpenObject(table, tableId, AcDb::kForWrite) == Acad::eOk) {
        if (table->add(id, record) == Acad::eOk) record->close();
        else delete record;
        table->close();
    } else {
        delete record;
    }
    return id;
}
}  // namespace

bool BuildFromTemplate(AcDbDatabase& database);

void DatabaseImpl::BuildDefaultDrawing() {
    // The host's template drawing; should it ever fail to read, the bare
    // minimum is built instead.
    if (BuildFromTemplate(m_owner)) return;
    BuildMinimalDrawing();
}

void DatabaseImpl::BuildMinimalDrawing() {
    namedObjects = AddOwned(*this, new AcDbDictionary, AcDbObjectId());
    blockTable = AddOwned(*this, new AcDbBlockTable, AcDbObjectId());
    layerTable = AddOwned(*this, new AcDbLayerTable, AcDbObjectId());
    regAppTable = AddOwned(*this, new AcDbRegAppTable, AcDbObjectId());
    modelSpace = AddRecord<AcDbBlockTableRecord>(*this, blockTable, ACDB_MODEL_SPACE);
    paperSpace = AddRecord<AcDbBlockTableRecord>(*this, blockTable, ACDB_PAPER_SPACE);
    clayer = AddRecord<AcDbLayerTableRecord>(*this, layerTable, L"0");
    AddRecord<AcDbRegAppTableRecord>(*this, regAppTable, L"ACAD");
    currentSpace = modelSpace;
}

Acad::ErrorStatus DatabaseImpl::Open(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased,
                                     const AcRxClass* rxClass) {
    object = nullptr;
    AcDbStub* stub = id.stub();
    if (!stub) return Acad::eNullObjectId;
    if (!stub->object) return Acad::eKeyNotFound;
    if (stub->erased && !openErased) return Acad::eWasErased;
    AcDbObject* candidate = stub->object;
    if (rxClass && !candidate->isKindOf(rxClass)) return Acad::eNotThatKindOfClass;
    if (mode == AcDb::kForWrite) {
        if (candidate->m_writer) return Acad::eWasOpenForWrite;
        if (candidate->m_readers > 0) return Acad::eWasOpenForRead;
        candidate->m_writer = true;
    } else {
        if (candidate->m_writer) return Acad::eWasOpenForWrite;
        if (candidate->m_readers >= 256) return Acad::eAtMaxReaders;
        ++candidate->m_readers;
    }
    object = candidate;
    return Acad::eOk;
}

Acad::ErrorStatus DatabaseImpl::Close(AcDbObject* object) {
    if (!object->m_stub) return Acad::eOk;  // not in a database: nothing is open
    if (object->m_writer) {
        object->m_writer = false;
        return Acad::eOk;
    }
    if (object->m_readers > 0) {
        --object->m_readers;
        return Acad::eOk;
    }
    return Acad::eNotOpenForRead;
}

Acad::ErrorStatus DatabaseImpl::UpgradeOpen(AcDbObject* object) {
    if (!object->m_stub || object->m_writer) return Acad::eOk;
    if (object->m_readers == 0) return Acad::eNotOpenForRead;
    if (object->m_readers > 1) return Acad::eHadMultipleReaders;
    object->m_readers = 0;
    object->m_writer = true;
    return Acad::eOk;
}

Acad::ErrorStatus DatabaseImpl::DowngradeOpen(AcDbObject* object) {
    if (!object->m_stub) return Acad::eOk;
    if (!object->m_writer) return Acad::eNotOpenForWrite;
    object->m_writer = false;
    object->m_readers = 1;
    return Acad::eOk;
}

}  // namespace cadhost
