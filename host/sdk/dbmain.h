// Objects, entities and the drawing database.
#pragma once

#include "acdb.h"
#include "adsdef.h"
#include "dbid.h"
#include "gemat3d.h"
#include "rxobject.h"

#ifndef _SH_DENYRW
#define _SH_DENYRW 0x10
#define _SH_DENYWR 0x20
#define _SH_DENYRD 0x30
#define _SH_DENYNO 0x40
#endif

namespace cadhost {
struct ObjectExtras;
class DatabaseImpl;
}  // namespace cadhost

class AcDbBlockTable;
class AcDbLayerTable;
class AcDbRegAppTable;
class AcDbSymbolTable;
class AcDbDictionary;

// An object of a drawing. Objects in a database belong to it and are reached
// by opening them through their id; every open is paired with close().
class CADHOST_API AcDbObject : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbObject)
    ~AcDbObject() override;
    AcDbObject(const AcDbObject&) = delete;
    AcDbObject& operator=(const AcDbObject&) = delete;

    AcDbObjectId objectId() const;
    AcDbObjectId ownerId() const { return m_ownerId; }
    virtual Acad::ErrorStatus setOwnerId(AcDbObjectId ownerId);
    void getAcDbHandle(AcDbHandle& handle) const;
    AcDbDatabase* database() const;

    Acad::ErrorStatus close();
    Acad::ErrorStatus upgradeOpen();
    Acad::ErrorStatus downgradeOpen();
    bool isReadEnabled() const;
    bool isWriteEnabled() const;
    bool isErased() const;
    Acad::ErrorStatus erase(bool erasing = true);

    // Extended data: the chain of one registered application (with its 1001
    // head), or of all when the name is null. The caller frees it with
    // acutRelRb. setXData replaces the data of each application in the chain.
    resbuf* xData(const ACHAR* regappName = nullptr) const;
    Acad::ErrorStatus setXData(const resbuf* xdata);

    AcDbObjectId extensionDictionary() const;
    Acad::ErrorStatus createExtensionDictionary();

    // The host's extra state of an object (extended data, kept file data).
    cadhost::ObjectExtras* extras() const { return m_extras; }
    cadhost::ObjectExtras& mutableExtras();
    // The host's own: optional groups that the drawing file wrote although
    // they held their defaults, one bit each as the object's class counts
    // them, so that saving writes them again.
    Adesk::UInt16 fileGroups() const { return m_fileGroups; }
    void setFileGroups(Adesk::UInt16 bits) { m_fileGroups = bits; }

protected:
    AcDbObject() = default;
    Acad::ErrorStatus assertReadEnabled() const;
    Acad::ErrorStatus assertWriteEnabled();

private:
    friend class cadhost::DatabaseImpl;
    AcDbStub* m_stub = nullptr;
    AcDbObjectId m_ownerId;
    cadhost::ObjectExtras* m_extras = nullptr;
    unsigned short m_readers = 0;
    bool m_writer = false;
    Adesk::UInt16 m_fileGroups = 0;
};

// A box aligned with the world axes. A new one is empty: it takes the
// first point added as it is.
class CADHOST_API AcDbExtents {
public:
    AcDbExtents();
    AcDbExtents(const AcGePoint3d& minPoint, const AcGePoint3d& maxPoint);

    const AcGePoint3d& minPoint() const { return m_min; }
    const AcGePoint3d& maxPoint() const { return m_max; }
    // Refuses corners that are not ordered (eInvalidExtents).
    Acad::ErrorStatus set(const AcGePoint3d& minPoint, const AcGePoint3d& maxPoint);
    void addPoint(const AcGePoint3d& point);
    void addExt(const AcDbExtents& other);
    void expandBy(const AcGeVector3d& vector);
    // The box around the transformed box.
    Acad::ErrorStatus transformBy(const AcGeMatrix3d& matrix);
    // No point added yet (not a call of the platform).
    bool isEmpty() const { return m_min.x > m_max.x; }

private:
    AcGePoint3d m_min, m_max;
};

// An object with graphics: it lies in a block and on a layer.
class CADHOST_API AcDbEntity : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbEntity)
    ~AcDbEntity() override;

    // The layer's name as a new text that the caller frees with acutDelBuffer.
    ACHAR* layer() const;
    AcDbObjectId layerId() const { return m_layerId; }
    // Sets the layer by name; the database must hold it.
    Acad::ErrorStatus setLayer(const ACHAR* layerName);
    Acad::ErrorStatus setLayer(AcDbObjectId layerId);
    AcDbObjectId blockId() const { return ownerId(); }

    // The box around the entity's geometry in world coordinates;
    // eNullExtents for an entity that has no geometry.
    virtual Acad::ErrorStatus getGeomExtents(AcDbExtents& extents) const;
    // The host's own: adds the entity's geometry carried by a transformation
    // (the placement of the block that holds it) to extents; depth counts the
    // blocks passed through, so that a block that holds itself ends.
    virtual void addExtentsTo(AcDbExtents& extents, const AcGeMatrix3d& transform, int depth = 0) const;

protected:
    AcDbEntity() = default;

private:
    AcDbObjectId m_layerId;
};

// A drawing: its objects by handle, its tables and its header values.
class CADHOST_API AcDbDatabase : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDatabase)
    // With buildDefaultDrawing the database holds model space, one paper
    // space, layer "0" and the named object dictionary; without, nothing
    // until a file is read into it.
    explicit AcDbDatabase(bool buildDefaultDrawing = true, bool noDocument = false);
    ~AcDbDatabase() override;
    AcDbDatabase(const AcDbDatabase&) = delete;
    AcDbDatabase& operator=(const AcDbDatabase&) = delete;

    Acad::ErrorStatus readDwgFile(const ACHAR* fileName, int shareMode = _SH_DENYWR,
                                  bool allowCPConversion = false, const wchar_t* password = nullptr);
    // Writes the drawing as DXF, in the release that it was read from (a new
    // drawing in the 2010 release); the file is replaced only when the whole
    // drawing was written.
    Acad::ErrorStatus saveAs(const ACHAR* fileName);
    Acad::ErrorStatus dxfIn(const ACHAR* fileName, const ACHAR* logFilename = nullptr);
    Acad::ErrorStatus dxfOut(const ACHAR* fileName, int precision = 16, bool saveThumbnailImage = false);
    Acad::ErrorStatus getFilename(const ACHAR*& fileName) const;
    // The objects of the drawing, erased ones included.
    Adesk::Int32 approxNumObjects() const;

    Acad::ErrorStatus getSymbolTable(AcDbBlockTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbLayerTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getSymbolTable(AcDbRegAppTable*& table, AcDb::OpenMode mode);
    Acad::ErrorStatus getBlockTable(AcDbBlockTable*& table, AcDb::OpenMode mode) { return getSymbolTable(table, mode); }
    Acad::ErrorStatus getLayerTable(AcDbLayerTable*& table, AcDb::OpenMode mode) { return getSymbolTable(table, mode); }
    Acad::ErrorStatus getRegAppTable(AcDbRegAppTable*& table, AcDb::OpenMode mode) { return getSymbolTable(table, mode); }
    Acad::ErrorStatus getNamedObjectsDictionary(AcDbDictionary*& dictionary, AcDb::OpenMode mode);

    AcDbObjectId blockTableId() const;
    AcDbObjectId layerTableId() const;
    AcDbObjectId regAppTableId() const;
    AcDbObjectId namedObjectsDictionaryId() const;
    AcDbObjectId modelSpaceId() const;
    AcDbObjectId paperSpaceId() const;
    // The block record of the space being worked in: model space, or the
    // paper space of the current layout.
    AcDbObjectId currentSpaceId() const;
    Acad::ErrorStatus setCurrentSpaceId(AcDbObjectId spaceId);
    AcDbObjectId clayer() const;
    Acad::ErrorStatus setClayer(AcDbObjectId layerId);

    // Header values that system variables read.
    Adesk::Int16 lunits() const;
    Acad::ErrorStatus setLunits(Adesk::Int16 units);
    Adesk::Int16 luprec() const;
    Acad::ErrorStatus setLuprec(Adesk::Int16 precision);
    Adesk::Int16 dimzin() const;
    Acad::ErrorStatus setDimzin(Adesk::Int16 value);
    // Model space is current (true) or the paper space of the current layout.
    bool tilemode() const;
    Acad::ErrorStatus setTilemode(bool modelSpace);
    // The user coordinate system of model space (ucs...) and of paper space
    // (pucs...): origin and axes in world coordinates.
    AcGePoint3d ucsorg() const;
    AcGeVector3d ucsxdir() const;
    AcGeVector3d ucsydir() const;
    AcGePoint3d pucsorg() const;
    AcGeVector3d pucsxdir() const;
    AcGeVector3d pucsydir() const;
    // Sets a space's system; the axes must be perpendicular and not zero.
    Acad::ErrorStatus setUcs(const AcGePoint3d& origin, const AcGeVector3d& xAxis, const AcGeVector3d& yAxis);
    Acad::ErrorStatus setPucs(const AcGePoint3d& origin, const AcGeVector3d& xAxis, const AcGeVector3d& yAxis);

    // Adds an object that no database holds yet; the database owns it then.
    Acad::ErrorStatus addAcDbObject(AcDbObjectId& id, AcDbObject* object);
    Acad::ErrorStatus getAcDbObjectId(AcDbObjectId& id, bool createIfNotFound, const AcDbHandle& handle,
                                      Adesk::UInt32 xRefId = 0);

    cadhost::DatabaseImpl& impl() const { return *m_impl; }

private:
    cadhost::DatabaseImpl* m_impl;
};

// Opening by id. An erased object opens only when asked for; an object of
// another class than the one asked for gives eNotThatKindOfClass.
CADHOST_API Acad::ErrorStatus acdbOpenAcDbObject(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                                  bool openErased = false);
CADHOST_API Acad::ErrorStatus acdbOpenAcDbEntity(AcDbEntity*& entity, AcDbObjectId id, AcDb::OpenMode mode,
                                                  bool openErased = false);
CADHOST_API Acad::ErrorStatus acdbOpenObjectOfClass(AcDbObject*& object, AcDbObjectId id, AcDb::OpenMode mode,
                                                     bool openErased, const AcRxClass* rxClass);

template <class T>
inline Acad::ErrorStatus acdbOpenObject(T*& object, AcDbObjectId id, AcDb::OpenMode mode, bool openErased = false) {
    AcDbObject* opened = nullptr;
    Acad::ErrorStatus es = acdbOpenObjectOfClass(opened, id, mode, openErased, T::desc());
    object = es == Acad::eOk ? static_cast<T*>(opened) : nullptr;
    return es;
}

// Entity names of the editor interface and object ids.
extern "C" {
CADHOST_API Acad::ErrorStatus acdbGetObjectId(AcDbObjectId& id, const ads_name name);
CADHOST_API Acad::ErrorStatus acdbGetAdsName(ads_name name, AcDbObjectId id);
CADHOST_API int acdbHandEnt(const ACHAR* handle, ads_name name);
CADHOST_API int acdbRegApp(const ACHAR* appName);
}
