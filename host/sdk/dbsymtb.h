// Symbol tables (blocks, layers, registered applications) and their records.
#pragma once

#include <vector>

#include "dbmain.h"

class AcDbSymbolTableIterator;
class AcDbBlockTableRecordIterator;

class CADHOST_API AcDbSymbolTableRecord : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTableRecord)
    ~AcDbSymbolTableRecord() override;

    // The record's own text; valid while the record is open.
    Acad::ErrorStatus getName(const ACHAR*& name) const;
    // A new copy that the caller frees with acutDelBuffer.
    Acad::ErrorStatus getName(ACHAR*& name) const;
    Acad::ErrorStatus setName(const ACHAR* name);
    const std::wstring& name() const { return m_name; }

protected:
    AcDbSymbolTableRecord() = default;

private:
    std::wstring m_name;
};

class CADHOST_API AcDbSymbolTable : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbSymbolTable)
    ~AcDbSymbolTable() override;

    Acad::ErrorStatus getAt(const ACHAR* name, AcDbSymbolTableRecord*& record, AcDb::OpenMode mode,
                            bool openErased = false) const;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id, bool getErased = false) const;
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    Acad::ErrorStatus newIterator(AcDbSymbolTableIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    Acad::ErrorStatus add(AcDbSymbolTableRecord* record);
    Acad::ErrorStatus add(AcDbObjectId& id, AcDbSymbolTableRecord* record);

    // The records in table order.
    const std::vector<AcDbObjectId>& recordIds() const { return m_records; }

protected:
    AcDbSymbolTable() = default;

private:
    std::vector<AcDbObjectId> m_records;
};

// Walks a table's records in table order; skipping deleted records leaves
// out erased ones.
class CADHOST_API AcDbSymbolTableIterator {
public:
    AcDbSymbolTableIterator(const AcDbSymbolTable* table, bool atBeginning, bool skipDeleted);
    virtual ~AcDbSymbolTableIterator() = default;
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getRecordId(AcDbObjectId& id) const;
    Acad::ErrorStatus getRecord(AcDbSymbolTableRecord*& record, AcDb::OpenMode mode, bool openErased = false) const;

protected:
    void skip(bool forward, bool skipDeleted);
    std::vector<AcDbObjectId> m_ids;
    long m_index = 0;
};

#define QM_TYPED_TABLE(TABLE, RECORD, ITERATOR)                                                         \
    class RECORD;                                                                                       \
    class CADHOST_API ITERATOR : public AcDbSymbolTableIterator {                                       \
    public:                                                                                             \
        using AcDbSymbolTableIterator::AcDbSymbolTableIterator;                                         \
        using AcDbSymbolTableIterator::getRecord;                                                       \
        Acad::ErrorStatus getRecord(RECORD*& record, AcDb::OpenMode mode, bool openErased = false) const; \
    };                                                                                                  \
    class CADHOST_API TABLE : public AcDbSymbolTable {                                                  \
    public:                                                                                             \
        ACRX_DECLARE_MEMBERS(TABLE)                                                                     \
        TABLE() = default;                                                                              \
        using AcDbSymbolTable::getAt;                                                                   \
        using AcDbSymbolTable::newIterator;                                                             \
        Acad::ErrorStatus getAt(const ACHAR* name, RECORD*& record, AcDb::OpenMode mode,                \
                                bool openErased = false) const;                                         \
        Acad::ErrorStatus newIterator(ITERATOR*& iterator, bool atBeginning = true,                     \
                                      bool skipDeleted = true) const;                                   \
    };

QM_TYPED_TABLE(AcDbBlockTable, AcDbBlockTableRecord, AcDbBlockTableIterator)
QM_TYPED_TABLE(AcDbLayerTable, AcDbLayerTableRecord, AcDbLayerTableIterator)
QM_TYPED_TABLE(AcDbRegAppTable, AcDbRegAppTableRecord, AcDbRegAppTableIterator)

#define ACDB_MODEL_SPACE L"*Model_Space"
#define ACDB_PAPER_SPACE L"*Paper_Space"

class CADHOST_API AcDbBlockTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbBlockTableRecord)
    AcDbBlockTableRecord() = default;
    ~AcDbBlockTableRecord() override;

    bool isLayout() const;
    bool isAnonymous() const;
    bool isFromExternalReference() const { return m_xref; }
    bool isFromOverlayReference() const { return m_overlay; }
    bool isUnloaded() const { return m_unloaded; }
    void setIsFromExternalReference(bool value) { m_xref = value; }
    void setIsFromOverlayReference(bool value) { m_overlay = value; }
    void setIsUnloaded(bool value) { m_unloaded = value; }

    // Adds an entity that no database holds yet; the block owns it then.
    Acad::ErrorStatus appendAcDbEntity(AcDbObjectId& id, AcDbEntity* entity);
    Acad::ErrorStatus appendAcDbEntity(AcDbEntity* entity);
    Acad::ErrorStatus newIterator(AcDbBlockTableRecordIterator*& iterator, bool atBeginning = true,
                                  bool skipDeleted = true) const;
    // The references to this block: directly, or also through blocks that
    // hold it when directOnly is false.
    Acad::ErrorStatus getBlockReferenceIds(AcDbObjectIdArray& ids, bool directOnly = true,
                                           bool forceValidity = false) const;

    const std::vector<AcDbObjectId>& entityIds() const { return m_entities; }
    // The host's index of references; kept by the references themselves.
    void noteReference(AcDbObjectId referenceId);
    void forgetReference(AcDbObjectId referenceId);

private:
    std::vector<AcDbObjectId> m_entities;
    std::vector<AcDbObjectId> m_references;
    bool m_xref = false;
    bool m_overlay = false;
    bool m_unloaded = false;
};

class CADHOST_API AcDbBlockTableRecordIterator {
public:
    AcDbBlockTableRecordIterator(const AcDbBlockTableRecord* record, bool atBeginning, bool skipDeleted);
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Acad::ErrorStatus getEntityId(AcDbObjectId& id) const;
    Acad::ErrorStatus getEntity(AcDbEntity*& entity, AcDb::OpenMode mode, bool openErased = false) const;

private:
    void skip(bool forward, bool skipDeleted);
    std::vector<AcDbObjectId> m_ids;
    long m_index = 0;
};

class CADHOST_API AcDbLayerTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbLayerTableRecord)
    AcDbLayerTableRecord() = default;
    bool isFrozen() const { return m_frozen; }
    bool isOff() const { return m_off; }
    bool isLocked() const { return m_locked; }
    void setIsFrozen(bool value) { m_frozen = value; }
    void setIsOff(bool value) { m_off = value; }
    void setIsLocked(bool value) { m_locked = value; }

private:
    bool m_frozen = false;
    bool m_off = false;
    bool m_locked = false;
};

class CADHOST_API AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbRegAppTableRecord)
    AcDbRegAppTableRecord() = default;
};
