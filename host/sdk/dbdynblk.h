// Dynamic blocks: a block definition with properties whose values each
// reference sets. A reference whose values differ from the definition's
// points at an anonymous copy of the block; the copy is tied to its dynamic
// block by the extended data "AcDbBlockRepBTag" (1070 version, 1005 handle
// of the dynamic block's record) or "AcDbDynamicBlockTrueName" (1000 its
// name), and a reference may name it itself in its representation data.
#pragma once

#include "AcString.h"
#include "acarray.h"
#include "acdb.h"
#include "adsdef.h"
#include "dbid.h"
#include "gepnt2d.h"
#include "gepnt3d.h"

// A typed value; restype holds the group code of its type: 1 text, 40 real,
// 70 16-bit integer, 90 32-bit integer, 10 point, 5000 (RTNONE) none.
class CADHOST_API AcDbEvalVariant : public resbuf {
public:
    AcDbEvalVariant();
    AcDbEvalVariant(const AcDbEvalVariant& other);
    AcDbEvalVariant& operator=(const AcDbEvalVariant& other);
    ~AcDbEvalVariant();
    explicit AcDbEvalVariant(double value);
    explicit AcDbEvalVariant(short value);
    explicit AcDbEvalVariant(Adesk::Int32 value);
    explicit AcDbEvalVariant(const ACHAR* value);
    explicit AcDbEvalVariant(const AcGePoint2d& value);
    explicit AcDbEvalVariant(const AcGePoint3d& value);

    AcDb::DwgDataType getType() const;
    bool isEmpty() const { return restype == RTNONE; }
    void clear();
    bool operator==(const AcDbEvalVariant& other) const;
    bool operator!=(const AcDbEvalVariant& other) const { return !(*this == other); }
};

class CADHOST_API AcDbDynBlockReferenceProperty {
public:
    AcDbDynBlockReferenceProperty() = default;

    AcString propertyName() const { return m_name; }
    AcString description() const { return m_description; }
    AcDbEvalVariant value() const { return m_value; }
    // Sets the reference's value; refused for a read-only property and for a
    // value of another type.
    Acad::ErrorStatus setValue(const AcDbEvalVariant& value);
    AcDb::DwgDataType propertyType() const { return m_value.getType(); }
    bool readOnly() const { return m_readOnly; }
    bool show() const { return m_show; }
    AcDbObjectId blockId() const { return m_reference; }

    // The host fills a property from its definition and the reference.
    AcDbDynBlockReferenceProperty(AcDbObjectId reference, AcString name, AcString description,
                                  AcDbEvalVariant value, bool readOnly, bool show)
        : m_reference(reference), m_name(std::move(name)), m_description(std::move(description)),
          m_value(std::move(value)), m_readOnly(readOnly), m_show(show) {}

private:
    AcDbObjectId m_reference;
    AcString m_name;
    AcString m_description;
    AcDbEvalVariant m_value;
    bool m_readOnly = false;
    bool m_show = true;
};

typedef AcArray<AcDbDynBlockReferenceProperty> AcDbDynBlockReferencePropertyArray;

// A view of one block reference as a reference to a dynamic block.
class CADHOST_API AcDbDynBlockReference {
public:
    explicit AcDbDynBlockReference(AcDbObjectId blockReferenceId);
    ~AcDbDynBlockReference();

    // The record is a dynamic block, or an anonymous copy of one.
    static bool isDynamicBlock(AcDbObjectId blockTableRecordId);
    bool isDynamicBlock() const;
    AcDbObjectId blockId() const { return m_reference; }
    // The dynamic block's own record; null for a reference to another block.
    AcDbObjectId dynamicBlockTableRecord() const;
    // The anonymous copy that the reference points at, if it does.
    AcDbObjectId anonymousBlockTableRecord() const;
    // The properties of the dynamic block with the reference's values, in
    // the order of the definition; empty for a reference to another block.
    void getBlockProperties(AcDbDynBlockReferencePropertyArray& properties) const;
    // Sets every property back to the definition's value.
    Acad::ErrorStatus resetBlock();

private:
    AcDbObjectId m_reference;
};
