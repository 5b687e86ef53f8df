// The inside of a drawing database: objects by handle (a hash look-up), the
// open states, the tables and the header values.
#pragma once

#include <dbdict.h>
#include <dbsymtb.h>

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/FileState.h"
#include "db/HandleIndex.h"
#include "db/Stub.h"

namespace cadhost {

struct UserCoordinates {
    AcGePoint3d origin;
    AcGeVector3d xAxis = AcGeVector3d::kXAxis;
    AcGeVector3d yAxis = AcGeVector3d::kYAxis;
};

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
    // The next handle that no object has taken.
    Adesk::UInt64 NextHandle() const { return m_nextHandle; }
    size_t ObjectCount() const { return m_byHandle.size(); }
    // Objects that are no entities, in the order they were added: what
    // files write in their OBJECTS section.
    const std::vector<AcDbObjectId>& ObjectOrder() const { return m_objectOrder; }
    // Adds an object without a handle yet (what a file gave none);
    // NameUnnamed then gives each such object the next free handle.
    Acad::ErrorStatus AddUnnamed(AcDbObjectId& id, AcDbObject* object);
    void NameUnnamed();

    // Builds model space, one paper space, layer "0", the registered
    // application "ACAD" and the named object dictionary.
    void BuildDefaultDrawing();
    void BuildMinimalDrawing();
    void Clear();
    // Takes everything of another database, which is left empty; ids of its
    // objects stay valid and now name objects of this one.
    void TakeFrom(DatabaseImpl& other);

    static Acad::ErrorStatus Open(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased,
                                  const AcRxClass* rxClass);
    static Acad::ErrorStatus Close(AcDbObject* object);
    static Acad::ErrorStatus UpgradeOpen(AcDbObject* object);
    static Acad::ErrorStatus DowngradeOpen(AcDbObject* object);
    static AcDbStub* StubOf(const AcDbObject* object) { return object->m_stub; }
    // The object behind an id without opening it (for the host's walks).
    static AcDbObject* Peek(AcDbObjectId id) { return id.stub() ? id.stub()->object : nullptr; }

    // Table and dictionary ids.
    AcDbObjectId blockTable, layerTable, regAppTable, namedObjects;
    AcDbObjectId modelSpace, paperSpace, currentSpace, clayer;

    // Header values.
    Adesk::Int16 lunits = 2;
    Adesk::Int16 luprec = 4;
    Adesk::Int16 dimzin = 0;
    UserCoordinates ucs, pucs;
    std::wstring fileName;
    // What the file held besides its objects; a new drawing has the state of
    // the host's template.
    FileState file;
    // Why the last read or write failed, naming file and line.
    std::wstring lastError;

private:
    AcDbDatabase& m_owner;
    std::deque<AcDbStub> m_stubs;
    HandleIndex m_byHandle;
    std::vector<AcDbObjectId> m_objectOrder;
    std::vector<AcDbStub*> m_unnamed;
    Adesk::UInt64 m_nextHandle = 1;
};

}  // namespace cadhost
