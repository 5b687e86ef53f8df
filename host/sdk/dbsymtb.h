// Symbol tables (blocks, layers, registered applications) and their records.
#pragma once

#include <string>
#include <unordered_map>
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
    // Renames the record; its table's index follows, and a name that another
    // record of the table holds is refused.
    Acad::ErrorStatus setName(const ACHAR* name);
    const std::wstring& name() const { return m_name; }
    // The host's own: the record's flags as drawing files keep them (group 70).
    Adesk::Int16 recordFlags() const { return m_flags; }
    void setRecordFlags(Adesk::Int16 flags) { m_flags = flags; }

protected:
    AcDbSymbolTableRecord() = default;

private:
    std::wstring m_name;
    Adesk::Int16 m_flags = 0;
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
    // The host's own: files a record that is already in the database under
    // its name, without the checks of add (a drawing file is taken as it is).
    void adoptRecord(AcDbObjectId id, const std::wstring& name);
    // Keeps the name index in step with a renamed record.
    void noteRename(AcDbObjectId id, const std::wstring& oldName, const std::wstring& newName);
    static std::wstring IndexKey(const std::wstring& name);

protected:
    AcDbSymbolTable() = default;

private:
    std::vector<AcDbObjectId> m_records;
    // Upper-case name to the records of that name, oldest first.
    std::unordered_map<std::wstring, std::vector<AcDbObjectId>> m_index;
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
    bool isFromExternalReference() const { return (m_blockFlags & 4) != 0; }
    bool isFromOverlayReference() const { return (m_blockFlags & 8) != 0; }
    bool isUnloaded() const { return m_unloaded; }
    void setIsFromExternalReference(bool value) { setBlockFlag(4, value); }
    void setIsFromOverlayReference(bool value) { setBlockFlag(8, value); }
    void setIsUnloaded(bool value) { m_unloaded = value; }
    // Whether the block holds attribute definitions.
    bool hasAttributeDefinitions() const;
    AcGePoint3d origin() const { return m_origin; }
    Acad::ErrorStatus setOrigin(const AcGePoint3d& origin);
    // The file of an external reference; empty for other blocks.
    Acad::ErrorStatus pathName(const ACHAR*& path) const;
    Acad::ErrorStatus setPathName(const ACHAR* path);

    // The host's own: the block's flags as drawing files keep them (1
    // anonymous, 2 attribute definitions, 4 external reference, 8 overlay,
    // ...), and the begin and end entities that carry the block's handles in
    // files.
    Adesk::Int16 blockFlags() const { return m_blockFlags; }
    void setBlockFlags(Adesk::Int16 flags) { m_blockFlags = flags; }
    AcDbObjectId blockBeginId() const { return m_begin; }
    AcDbObjectId blockEndId() const { return m_end; }
    void setBlockBeginId(AcDbObjectId id) { m_begin = id; }
    void setBlockEndId(AcDbObjectId id) { m_end = id; }
    // Files an entity that is already in the database as the block's last.
    void adoptEntity(AcDbObjectId id) { m_entities.push_back(id); }

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
    // Forgetting is lazy: a reference that points elsewhere now is dropped
    // from the index when it is next read.
    void noteReference(AcDbObjectId referenceId);
    void forgetReference(AcDbObjectId referenceId);

private:
    void setBlockFlag(Adesk::Int16 bit, bool value) { m_blockFlags = value ? (m_blockFlags | bit) : (m_blockFlags & ~bit); }
    void compactReferences() const;

    std::vector<AcDbObjectId> m_entities;
    mutable std::vector<AcDbObjectId> m_references;
    mutable size_t m_staleReferences = 0;
    std::wstring m_path;
    AcGePoint3d m_origin;
    AcDbObjectId m_begin, m_end;
    Adesk::Int16 m_blockFlags = 0;
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
    bool isFrozen() const { return (recordFlags() & 1) != 0; }
    bool isOff() const { return m_off; }
    bool isLocked() const { return (recordFlags() & 4) != 0; }
    void setIsFrozen(bool value) { setRecordFlags(value ? (recordFlags() | 1) : (recordFlags() & ~1)); }
    void setIsOff(bool value) { m_off = value; }
    void setIsLocked(bool value) { setRecordFlags(value ? (recordFlags() | 4) : (recordFlags() & ~4)); }
    // The color number, 1 to 255 (7 by default); an off layer keeps its color.
    Adesk::Int16 colorIndex() const { return m_color; }
    void setColorIndex(Adesk::Int16 color) { m_color = color; }

private:
    Adesk::Int16 m_color = 7;
    bool m_off = false;
};

class CADHOST_API AcDbRegAppTableRecord : public AcDbSymbolTableRecord {
public:
    ACRX_DECLARE_MEMBERS(AcDbRegAppTableRecord)
    AcDbRegAppTableRecord() = default;
};
