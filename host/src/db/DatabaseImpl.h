// The inside of a drawing database: objects by handle (a hash look-up), the
// open states, the tables and the header values.
#pragma once

#include <dbdict.h>
#include <dbsymtb.h>

#include <deque>
#include <string>
#include <unordered_map>

#include "db/Stub.h"

namespace cadhost {

class DatabaseImpl {
public:
    explicit DatabaseImpl(AcDbDatabase& owner);
    ~DatabaseImpl();
    DatabaseImpl(const DatabaseImpl&) = delete;
    DatabaseImpl& operator=(const DatabaseImpl&) = delete;

    AcDbDatabase& owner() const { return m_owner; }

    // The stub of a handle, made if absent; handle 0 takes the next free one.
    AcDbStub* StubFor(Adesk::UInt64 handle);
    AcDbStub* Find(Adesk::UInt64 handle) const;
    // Puts an object that no database holds under a stub of its own.
    Acad::ErrorStatus Add(AcDbObjectId& id, AcDbObject* object, Adesk::UInt64 handle = 0);
    Adesk::UInt64 HandSeed() const { return m_handSeed; }
    size_t ObjectCount() const { return m_byHandle.size(); }

    // Builds model space, one paper space, layer "0", the registered
    // application "ACAD" and the named object dictionary.
    void BuildDefaultDrawing();
    void Clear();

    static Acad::ErrorStatus Open(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased,
                                  const AcRxClass* rxClass);
    static Acad::ErrorStatus Close(AcDbObject* object);
    static Acad::ErrorStatus UpgradeOpen(AcDbObject* object);
    static Acad::ErrorStatus DowngradeOpen(AcDbObject* object);
    static AcDbStub* StubOf(const AcDbObject* object) { return object->m_stub; }

    // Table and dictionary ids.
    AcDbObjectId blockTable, layerTable, regAppTable, namedObjects;
    AcDbObjectId modelSpace, paperSpace, currentSpace, clayer;

    // Header values.
    Adesk::Int16 lunits = 2;
    Adesk::Int16 luprec = 4;
    Adesk::Int16 dimzin = 0;
    std::wstring fileName;

private:
    AcDbDatabase& m_owner;
    std::deque<AcDbStub> m_stubs;
    std::unordered_map<Adesk::UInt64, AcDbStub*> m_byHandle;
    Adesk::UInt64 m_handSeed = 1;
};

}  // namespace cadhost
