#include <adslib.h>
#include <dbapserv.h>
#include <dbmain.h>
#include <dbsymtb.h>

#include <cstdlib>
#include <cwchar>
#include <string>

#include "db/DatabaseImpl.h"
#include "db/ObjectExtras.h"
#include "db/XData.h"

ACRX_DEFINE_MEMBERS(AcDbObject, AcRxObject)
ACRX_DEFINE_MEMBERS(AcDbEntity, AcDbObject)

AcDbObject::~AcDbObject() { delete m_extras; }

AcDbObjectId AcDbObject::objectId() const { return AcDbObjectId(m_stub); }

Acad::ErrorStatus AcDbObject::setOwnerId(AcDbObjectId ownerId) {
    m_ownerId = ownerId;
    return Acad::eOk;
}

void AcDbObject::getAcDbHandle(AcDbHandle& handle) const {
    handle = m_stub ? AcDbHandle(m_stub->handle) : AcDbHandle();
}

AcDbDatabase* AcDbObject::database() const { return m_stub ? &m_stub->database->owner() : nullptr; }

Acad::ErrorStatus AcDbObject::close() { return cadhost::DatabaseImpl::Close(this); }
Acad::ErrorStatus AcDbObject::upgradeOpen() { return cadhost::DatabaseImpl::UpgradeOpen(this); }
Acad::ErrorStatus AcDbObject::downgradeOpen() { return cadhost::DatabaseImpl::DowngradeOpen(this); }

bool AcDbObject::isReadEnabled() const { return !m_stub || m_writer || m_readers > 0; }
bool AcDbObject::isWriteEnabled() const { return !m_stub || m_writer; }
bool AcDbObject::isErased() const { return m_stub && m_stub->erased; }

Acad::ErrorStatus AcDbObject::assertReadEnabled() const {
    return isReadEnabled() ? Acad::eOk : Acad::eNotOpenForRead;
}

Acad::ErrorStatus AcDbObject::assertWriteEnabled() {
    return isWriteEnabled() ? Acad::eOk : Acad::eNotOpenForWrite;
}

Acad::ErrorStatus AcDbObject::erase(bool erasing) {
    if (!m_stub) return Acad::eNotInDatabase;
    if (!m_writer) return Acad::eNotOpenForWrite;
    m_stub->erased = erasing;
    return Acad::eOk;
}

cadhost::ObjectExtras& AcDbObject::mutableExtras() {
    if (!m_extras) m_extras = new cadhost::ObjectExtras;
    return *m_extras;
}

resbuf* AcDbObject::xData(const ACHAR* regappName) const {
    if (!m_extras || !m_extras->xdata) return nullptr;
    return cadhost::CopyXData(m_extras->xdata, regappName);
}

Acad::ErrorStatus AcDbObject::setXData(const resbuf* xdata) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    Acad::ErrorStatus es = cadhost::CheckXData(xdata, database());
    if (es != Acad::eOk) return es;
    resbuf* merged = cadhost::MergeXData(m_extras ? m_extras->xdata : nullptr, xdata);
    if (merged || m_extras) {
        cadhost::ObjectExtras& extras = mutableExtras();
        if (extras.xdata) acutRelRb(extras.xdata);
        extras.xdata = merged;
    }
    return Acad::eOk;
}

AcDbObjectId AcDbObject::extensionDictionary() const {
    return m_extras ? m_extras->extensionDictionary : AcDbObjectId();
}

Acad::ErrorStatus AcDbObject::createExtensionDictionary() {
    if (!m_stub) return Acad::eNotInDatabase;
    if (!m_writer) return Acad::eNotOpenForWrite;
    if (!extensionDictionary().isNull()) return Acad::eAlreadyInDb;
    auto* dictionary = new AcDbDictionary;
    AcDbObjectId id;
    Acad::ErrorStatus es = m_stub->database->Add(id, dictionary);
    if (es != Acad::eOk) {
        delete dictionary;
        return es;
    }
    dictionary->setOwnerId(objectId());
    dictionary->close();
    mutableExtras().extensionDictionary = id;
    return Acad::eOk;
}

AcDbExtents::AcDbExtents()
    : m_min(1e300, 1e300, 1e300), m_max(-1e300, -1e300, -1e300) {}

AcDbExtents::AcDbExtents(const AcGePoint3d& minPoint, const AcGePoint3d& maxPoint) : AcDbExtents() {
    addPoint(minPoint);
    addPoint(maxPoint);
}

Acad::ErrorStatus AcDbExtents::set(const AcGePoint3d& minPoint, const AcGePoint3d& maxPoint) {
    if (minPoint.x > maxPoint.x || minPoint.y > maxPoint.y || minPoint.z > maxPoint.z) return Acad::eInvalidExtents;
    m_min = minPoint;
    m_max = maxPoint;
    return Acad::eOk;
}

void AcDbExtents::addPoint(const AcGePoint3d& p) {
    for (unsigned i = 0; i < 3; ++i) {
        if (p[i] < m_min[i]) m_min[i] = p[i];
        if (p[i] > m_max[i]) m_max[i] = p[i];
    }
}

void AcDbExtents::addExt(const AcDbExtents& other) {
    if (other.isEmpty()) return;
    addPoint(other.m_min);
    addPoint(other.m_max);
}

void AcDbExtents::expandBy(const AcGeVector3d& v) {
    if (isEmpty()) return;
    addPoint(m_min + v);
    addPoint(m_max + v);
}

Acad::ErrorStatus AcDbExtents::transformBy(const AcGeMatrix3d& matrix) {
    if (isEmpty()) return Acad::eOk;
    AcGePoint3d lo = m_min, hi = m_max;
    *this = AcDbExtents();
    for (int corner = 0; corner < 8; ++corner) {
        AcGePoint3d p((corner & 1) ? hi.x : lo.x, (corner & 2) ? hi.y : lo.y, (corner & 4) ? hi.z : lo.z);
        addPoint(matrix * p);
    }
    return Acad::eOk;
}

AcDbEntity::~AcDbEntity() = default;

Acad::ErrorStatus AcDbEntity::getGeomExtents(AcDbExtents& extents) const {
    AcDbExtents found;
    addExtentsTo(found, AcGeMatrix3d::kIdentity);
    if (found.isEmpty()) return Acad::eNullExtents;
    extents = found;
    return Acad::eOk;
}

void AcDbEntity::addExtentsTo(AcDbExtents&, const AcGeMatrix3d&, int) const {}

ACHAR* AcDbEntity::layer() const {
    std::wstring name;
    AcDbLayerTableRecord* record = nullptr;
    if (acdbOpenObject(record, m_layerId, AcDb::kForRead, true) == Acad::eOk) {
        name = record->name();
        record->close();
    }
    auto* text = new ACHAR[name.size() + 1];
    std::wmemcpy(text, name.c_str(), name.size() + 1);
    return text;
}

Acad::ErrorStatus AcDbEntity::setLayer(AcDbObjectId layerId) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (layerId.isNull()) return Acad::eNullObjectId;
    m_layerId = layerId;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbEntity::setLayer(const ACHAR* layerName) {
    AcDbDatabase* db = database();
    if (!db) db = m_layerId.database();
    if (!db) db = acdbHostApplicationServices()->workingDatabase();
    if (!db || !layerName) return Acad::eNoDatabase;
    AcDbLayerTable* table = nullptr;
    Acad::ErrorStatus es = db->getSymbolTable(table, AcDb::kForRead);
    if (es != Acad::eOk) return es;
    AcDbObjectId id;
    es = table->getAt(layerName, id);
    table->close();
    if (es != Acad::eOk) return es;
    return setLayer(id);
}
