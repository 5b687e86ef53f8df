// Handles and object ids of the drawing database.
#pragma once

#include <cstddef>

#include "acarray.h"
#include "acadstrc.h"

class AcDbDatabase;
class AcRxClass;
struct AcDbStub;

// A handle: the object's permanent 64-bit name in its drawing.
class CADHOST_API AcDbHandle {
public:
    AcDbHandle() = default;
    AcDbHandle(Adesk::UInt64 value) : m_value(value) {}
    // Reads hexadecimal text; text that is not a handle gives the null handle.
    explicit AcDbHandle(const ACHAR* hexText);

    bool isNull() const { return m_value == 0; }
    void setNull() { m_value = 0; }
    Adesk::UInt64 value() const { return m_value; }
    Adesk::UInt32 low() const { return static_cast<Adesk::UInt32>(m_value); }
    Adesk::UInt32 high() const { return static_cast<Adesk::UInt32>(m_value >> 32); }
    AcDbHandle& operator++() {
        ++m_value;
        return *this;
    }
    AcDbHandle operator+(const AcDbHandle& other) const { return AcDbHandle(m_value + other.m_value); }
    bool operator==(const AcDbHandle& other) const { return m_value == other.m_value; }
    bool operator!=(const AcDbHandle& other) const { return m_value != other.m_value; }
    bool operator<(const AcDbHandle& other) const { return m_value < other.m_value; }

    // Upper-case hexadecimal without leading zeros ("2F1"); a buffer of 17
    // characters always suffices.
    void getIntoAsciiBuffer(ACHAR* buffer) const;
    bool getIntoAsciiBuffer(ACHAR* buffer, size_t length) const;

private:
    Adesk::UInt64 m_value = 0;
};

// An id stands for one object of one open database for that database's life.
class CADHOST_API AcDbObjectId {
public:
    AcDbObjectId() = default;
    explicit AcDbObjectId(AcDbStub* stub) : m_stub(stub) {}
    static const AcDbObjectId kNull;

    bool isNull() const { return m_stub == nullptr; }
    void setNull() { m_stub = nullptr; }
    bool isValid() const { return m_stub != nullptr; }
    bool isErased() const;
    // Erased itself, or owned by something erased.
    bool isEffectivelyErased() const;
    AcDbHandle handle() const;
    AcDbDatabase* database() const;
    AcDbDatabase* originalDatabase() const { return database(); }
    AcRxClass* objectClass() const;

    bool operator==(const AcDbObjectId& other) const { return m_stub == other.m_stub; }
    bool operator!=(const AcDbObjectId& other) const { return m_stub != other.m_stub; }
    bool operator<(const AcDbObjectId& other) const { return m_stub < other.m_stub; }
    bool operator!() const { return isNull(); }

    AcDbStub* stub() const { return m_stub; }

private:
    AcDbStub* m_stub = nullptr;
};

typedef AcArray<AcDbObjectId> AcDbObjectIdArray;
