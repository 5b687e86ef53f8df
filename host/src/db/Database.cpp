#include <dbapserv.h>
#include <dbdict.h>
#include <dbsymtb.h>

#include <cmath>

#include "db/DatabaseImpl.h"

ACRX_DEFINE_MEMBERS(AcDbDatabase, AcRxObject)

AcDbDatabase::AcDbDatabase(bool buildDefaultDrawing, bool) : m_impl(new cadhost::DatabaseImpl(*this)) {
    if (buildDefaultDrawing) m_impl->BuildDefaultDrawing();
}

AcDbDatabase::~AcDbDatabase() { delete m_impl; }

Acad::ErrorStatus AcDbDatabase::getFilename(const ACHAR*& fileName) const {
    fileName = m_impl->fileName.c_str();
    return Acad::eOk;
}

namespace {
template <class T>
Acad::ErrorStatus OpenTable(T*& table, AcDbObjectId id, AcDb::OpenMode mode) {
    table = nullptr;
    if (id.isNull()) return Acad::eNullObjectId;
    return acdbOpenObject(table, id, mode);
}
}  // namespace

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode) {
    return OpenTable(table, m_impl->blockTable, mode);
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode) {
    return OpenTable(table, m_impl->layerTable, mode);
}

Acad::ErrorStatus AcDbDatabase::getSymbolTable(AcDbRegAppTable*& table, AcDb::OpenMode mode) {
    return OpenTable(table, m_impl->regAppTable, mode);
}

Acad::ErrorStatus AcDbDatabase::getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode) {
    return OpenTable(dictionary, m_impl->namedObjects, mode);
}

AcDbObjectId AcDbDatabase::blockTableId() const { return m_impl->blockTable; }
AcDbObjectId AcDbDatabase::layerTableId() const { return m_impl->layerTable; }
AcDbObjectId AcDbDatabase::regAppTableId() const { return m_impl->regAppTable; }
AcDbObjectId AcDbDatabase::namedObjectsDictionaryId() const { return m_impl->namedObjects; }
AcDbObjectId AcDbDatabase::modelSpaceId() const { return m_impl->modelSpace; }
AcDbObjectId AcDbDatabase::paperSpaceId() const { return m_impl->paperSpace; }
AcDbObjectId AcDbDatabase::currentSpaceId() const { return m_impl->currentSpace; }
AcDbObjectId AcDbDatabase::clayer() const { return m_impl->clayer; }

Acad::ErrorStatus AcDbDatabase::setCurrentSpaceId(AcDbObjectId spaceId) {
    AcDbBlockTableRecord* record = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(record, spaceId, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    bool layout = record->isLayout() && spaceId.database() == this;
    record->close();
    if (!layout) return Acad::eInvalidInput;
    m_impl->currentSpace = spaceId;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setClayer(AcDbObjectId layerId) {
    AcDbLayerTableRecord* record = nullptr;
    Acad::ErrorStatus es = acdbOpenObject(record, layerId, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    record->close();
    m_impl->clayer = layerId;
    return Acad::eOk;
}

Adesk::Int16 AcDbDatabase::lunits() const { return m_impl->lunits; }
Adesk::Int16 AcDbDatabase::luprec() const { return m_impl->luprec; }
Adesk::Int16 AcDbDatabase::dimzin() const { return m_impl->dimzin; }

Acad::ErrorStatus AcDbDatabase::setLunits(Adesk::Int16 units) {
    if (units < 1 || units > 5) return Acad::eInvalidInput;
    m_impl->lunits = units;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setLuprec(Adesk::Int16 precision) {
    if (precision < 0 || precision > 8) return Acad::eInvalidInput;
    m_impl->luprec = precision;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::setDimzin(Adesk::Int16 value) {
    if (value < 0 || value > 15) return Acad::eInvalidInput;
    m_impl->dimzin = value;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDatabase::addAcDbObject(AcDbObjectId& id, AcDbObject* object) {
    return m_impl->Add(id, object);
}

Acad::ErrorStatus AcDbDatabase::getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound, const AcDbHandle& handle,
                                                Adesk::UInt32) {
    if (handle.isNull()) return Acad::eNullHandle;
    AcDbStub* stub = createIfNotFound ? m_impl->StubFor(handle.value()) : m_impl->Find(handle.value());
    if (!stub) return Acad::eUnknownHandle;
    id = AcDbObjectId(stub);
    return Acad::eOk;
}

Acad::ErrorStatus acdbOpenObjectOfClass(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased,
                                        const AcRxClass* rxClass) {
    return cadhost::DatabaseImpl::Open(object, id, mode, openErased, rxClass);
}

Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased) {
    return cadhost::DatabaseImpl::Open(object, id, mode, openErased, nullptr);
}

Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode, bool openErased) {
    return acdbOpenObject(entity, id, mode, openErased);
}

extern "C" {

Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name) {
    if (!name || name[0] == 0) return Acad::eInvalidAdsName;
    id = AcDbObjectId(reinterpret_cast<AcDbStub*>(name[0]));
    return Acad::eOk;
}

Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id) {
    if (!name) return Acad::eInvalidAdsName;
    if (id.isNull()) return Acad::eNullObjectId;
    name[0] = reinterpret_cast<Adesk::LongPtr>(id.stub());
    name[1] = 0;
    return Acad::eOk;
}

int acdbHandEnt(const ACHAR* handle, ads_name name) {
    if (!handle || !name) return RTERROR;
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    AcDbHandle h(handle);
    AcDbObjectId id;
    if (!db || h.isNull() || db->getAcDbObjectId(id, false, h) != Acad::eOk || !id.stub()->object || id.isErased())
        return RTERROR;
    return acdbGetAdsName(name, id) == Acad::eOk ? RTNORM : RTERROR;
}

int acdbRegApp(const ACHAR* appName) {
    AcDbDatabase* db = acdbHostApplicationServices()->workingDatabase();
    if (!db || !appName || !*appName) return RTERROR;
    AcDbRegAppTable* table = nullptr;
    if (db->getSymbolTable(table, AcDb::kForWrite) != Acad::eOk) return RTERROR;
    // Registering a name twice is refused, as the platform does; the name
    // stays registered.
    int result = RTERROR;
    if (!table->has(appName)) {
        result = RTNORM;
        auto* record = new AcDbRegAppTableRecord;
        record->setName(appName);
        if (table->add(record) != Acad::eOk) {
            delete record;
            result = RTERROR;
        } else {
            record->close();
        }
    }
    table->close();
    return result;
}
}

bool AcDbDatabase::tilemode() const { return m_impl->currentSpace.isNull() || m_impl->currentSpace == m_impl->modelSpace; }

Acad::ErrorStatus AcDbDatabase::setTilemode(bool modelSpace) {
    AcDbObjectId space = modelSpace ? m_impl->modelSpace : m_impl->paperSpace;
    if (space.isNull()) return Acad::eNotApplicable;
    m_impl->currentSpace = space;
    return Acad::eOk;
}

AcGePoint3d AcDbDatabase::ucsorg() const { return m_impl->ucs.origin; }
AcGeVector3d AcDbDatabase::ucsxdir() const { return m_impl->ucs.xAxis; }
AcGeVector3d AcDbDatabase::ucsydir() const { return m_impl->ucs.yAxis; }
AcGePoint3d AcDbDatabase::pucsorg() const { return m_impl->pucs.origin; }
AcGeVector3d AcDbDatabase::pucsxdir() const { return m_impl->pucs.xAxis; }
AcGeVector3d AcDbDatabase::pucsydir() const { return m_impl->pucs.yAxis; }

namespace {
Acad::ErrorStatus SetSystem(cadhost::UserCoordinates& ucs, const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                            const AcGeVector3d& yAxis) {
    if (xAxis.isZeroLength() || yAxis.isZeroLength()) return Acad::eInvalidInput;
    if (std::fabs(xAxis.normal().dotProduct(yAxis.normal())) > 1e-9) return Acad::eInvalidInput;
    ucs.origin = origin;
    ucs.xAxis = xAxis.normal();
    ucs.yAxis = yAxis.normal();
    return Acad::eOk;
}
}  // namespace

Acad::ErrorStatus AcDbDatabase::setUcs(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                       const AcGeVector3d& yAxis) {
    return SetSystem(m_impl->ucs, origin, xAxis, yAxis);
}

Acad::ErrorStatus AcDbDatabase::setPucs(const AcGePoint3d& origin, const AcGeVector3d& xAxis,
                                        const AcGeVector3d& yAxis) {
    return SetSystem(m_impl->pucs, origin, xAxis, yAxis);
}

Adesk::Int32 AcDbDatabase::approxNumObjects() const { return static_cast<Adesk::Int32>(m_impl->ObjectCount()); }
