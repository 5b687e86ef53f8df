// Scope pointers: open an object for the life of the pointer. The status of
// the open is kept; after the object is closed the pointer is null and its
// status eNullObjectPointer.
#pragma once

#include "dbsymtb.h"

template <class T>
class AcDbObjectPointerBase {
public:
    AcDbObjectPointerBase() = default;
    virtual ~AcDbObjectPointerBase() { closeInternal(); }
    AcDbObjectPointerBase(const AcDbObjectPointerBase&) = delete;
    AcDbObjectPointerBase& operator=(const AcDbObjectPointerBase&) = delete;

    Acad::ErrorStatus openStatus() const { return m_status; }
    const T* object() const { return m_object; }
    T* object() { return m_object; }
    const T* operator->() const { return m_object; }
    T* operator->() { return m_object; }
    operator T*() { return m_object; }
    operator const T*() const { return m_object; }

    Acad::ErrorStatus open(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) {
        closeInternal();
        T* opened = nullptr;
        m_status = acdbOpenObject(opened, id, mode, openErased);
        if (m_status == Acad::eOk) m_object = opened;
        return m_status;
    }
    // Takes an object that the caller made or opened.
    Acad::ErrorStatus acquire(T*& object) {
        if (!object) return Acad::eNullObjectPointer;
        closeInternal();
        m_object = object;
        m_status = Acad::eOk;
        object = nullptr;
        return Acad::eOk;
    }
    // Hands the object to the caller, who closes or deletes it.
    Acad::ErrorStatus release(T*& object) {
        if (!m_object) return Acad::eNullObjectPointer;
        object = m_object;
        m_object = nullptr;
        m_status = Acad::eNullObjectPointer;
        return Acad::eOk;
    }
    Acad::ErrorStatus close() {
        if (!m_object) return Acad::eNullObjectPointer;
        closeInternal();
        return Acad::eOk;
    }
    Acad::ErrorStatus create() {
        closeInternal();
        m_object = new T;
        m_status = Acad::eOk;
        return Acad::eOk;
    }

protected:
    void closeInternal() {
        if (m_object) {
            // An object in a database is closed; one that no database holds
            // belongs to the pointer.
            if (!m_object->objectId().isNull()) m_object->close();
            else delete m_object;
        }
        m_object = nullptr;
        m_status = Acad::eNullObjectPointer;
    }

    T* m_object = nullptr;
    Acad::ErrorStatus m_status = Acad::eNullObjectPointer;
};

template <class T>
class AcDbObjectPointer : public AcDbObjectPointerBase<T> {
public:
    AcDbObjectPointer() = default;
    AcDbObjectPointer(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) {
        this->open(id, mode, openErased);
    }
};

template <class T>
class AcDbSymbolTableRecordPointer : public AcDbObjectPointerBase<T> {
public:
    AcDbSymbolTableRecordPointer() = default;
    AcDbSymbolTableRecordPointer(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) {
        this->open(id, mode, openErased);
    }
    // Opens a record by name in its table of a database.
    AcDbSymbolTableRecordPointer(const ACHAR* name, AcDbDatabase* database, AcDb::OpenMode mode = AcDb::kForRead,
                                 bool openErased = false) {
        open(name, database, mode, openErased);
    }
    using AcDbObjectPointerBase<T>::open;
    Acad::ErrorStatus open(const ACHAR* name, AcDbDatabase* database, AcDb::OpenMode mode = AcDb::kForRead,
                           bool openErased = false);
};

template <class T>
class AcDbSymbolTablePointer : public AcDbObjectPointerBase<T> {
public:
    AcDbSymbolTablePointer() = default;
    AcDbSymbolTablePointer(AcDbObjectId id, AcDb::OpenMode mode = AcDb::kForRead, bool openErased = false) {
        this->open(id, mode, openErased);
    }
    // Opens the database's table of the pointer's kind.
    AcDbSymbolTablePointer(AcDbDatabase* database, AcDb::OpenMode mode = AcDb::kForRead) {
        this->closeInternal();
        if (!database) {
            this->m_status = Acad::eNullObjectPointer;
            return;
        }
        T* table = nullptr;
        this->m_status = database->getSymbolTable(table, mode);
        if (this->m_status == Acad::eOk) this->m_object = table;
    }
};

namespace cadhost_detail {
template <class T>
struct TableOf;
template <>
struct TableOf<AcDbBlockTableRecord> {
    typedef AcDbBlockTable type;
};
template <>
struct TableOf<AcDbLayerTableRecord> {
    typedef AcDbLayerTable type;
};
template <>
struct TableOf<AcDbRegAppTableRecord> {
    typedef AcDbRegAppTable type;
};
}  // namespace cadhost_detail

template <class T>
Acad::ErrorStatus AcDbSymbolTableRecordPointer<T>::open(const ACHAR* name, AcDbDatabase* database,
                                                        AcDb::OpenMode mode, bool openErased) {
    this->closeInternal();
    if (!database || !name) return this->m_status = Acad::eInvalidInput;
    typename cadhost_detail::TableOf<T>::type* table = nullptr;
    Acad::ErrorStatus es = database->getSymbolTable(table, AcDb::kForRead);
    if (es != Acad::eOk) return this->m_status = es;
    AcDbObjectId id;
    es = table->getAt(name, id, openErased);
    table->close();
    if (es != Acad::eOk) return this->m_status = es;
    return open(id, mode, openErased);
}
