// The drawing model: a snapshot of what a drawing holds about its blocks
// (definitions with their attribute definitions, references with their
// placement, layer state, attributes and dynamic properties), made of plain
// values that hold no object, pointer or id of the drawing. The Block Count
// page reads one when it opens and asks it for block names, attribute tags
// and attribute values.
#pragma once

#include "StdAfx.h"

#include <gescl3d.h>

#include "ArxUtils/ArxUtils.h"

// The state of one layer; a default layer is all empty and zero.
class AcadLayer : public CObject {
public:
    AcadLayer() = default;
    AcadLayer(const AcadLayer& other) = default;
    AcadLayer& operator=(const AcadLayer& other) = default;
    ~AcadLayer() override;

    CString m_name;
    int m_frozen = 0;
    int m_off = 0;
    int m_locked = 0;
};

// A tag and its value: an attribute of a reference, a dynamic property of a
// reference (its name and formatted value), or a row of the built-in
// property table (title, key and bit).
class AcadAttribute : public CObject {
public:
    AcadAttribute() = default;
    AcadAttribute(const CString& tag, const CString& value, int code);
    AcadAttribute(const AcadAttribute& other) = default;
    AcadAttribute& operator=(const AcadAttribute& other) = default;
    ~AcadAttribute() override;

    CString m_tag;
    CString m_value;
    int m_code = 0;
};

// One thing a block can report about its references: an attribute
// definition, a dynamic property, or one of the eight built-in properties.
class AcadAttributeDef : public CObject {
public:
    AcadAttributeDef() = default;
    AcadAttributeDef(const CString& tag, const CString& prompt, int constant, int invisible, int preset,
                     int verifiable);
    AcadAttributeDef(const AcadAttributeDef& other) = default;
    AcadAttributeDef& operator=(const AcadAttributeDef& other) = default;
    ~AcadAttributeDef() override;

    CString m_tag;
    CString m_prompt;
    int m_constant = 0;
    int m_invisible = 0;
    int m_preset = 0;
    int m_verifiable = 0;
    int m_builtIn = 0;
};

class AcadLayerArray : public CArray<AcadLayer, AcadLayer&> {
public:
    AcadLayerArray() = default;
    AcadLayerArray(const AcadLayerArray& other);
    AcadLayerArray& operator=(const AcadLayerArray& other);
    ~AcadLayerArray() override;
};

class AcadAttributeArray : public CArray<AcadAttribute, AcadAttribute&> {
public:
    AcadAttributeArray() = default;
    AcadAttributeArray(const AcadAttributeArray& other);
    AcadAttributeArray& operator=(const AcadAttributeArray& other);
    ~AcadAttributeArray() override;
};

// The definitions of one block. A new array holds the eight built-in
// properties.
class AcadAttributeDefArray : public CArray<AcadAttributeDef, AcadAttributeDef&> {
public:
    AcadAttributeDefArray();
    AcadAttributeDefArray(const AcadAttributeDefArray& other);
    AcadAttributeDefArray& operator=(const AcadAttributeDefArray& other);
    ~AcadAttributeDefArray() override;

    // Appends the attribute definitions of an open block record in entity
    // order; a tag the array holds already (not minding case) is dropped,
    // so a built-in title wins over an attribute of that tag. 1, or 0 for a
    // null record.
    int ReadDefinitions(AcDbBlockTableRecord* record);
    // The index of the definition of a tag, not minding case; -1 for none.
    INT_PTR FindTag(const CString& tag) const;
};

// One block reference.
class AcadBlockRef : public CObject {
public:
    AcadBlockRef();
    AcadBlockRef(const AcGePoint3d& position, const AcGeScale3d& scale, const AcadLayer& layer, double rotation,
                 const CString& handle);
    AcadBlockRef(const AcadBlockRef& other) = default;
    AcadBlockRef& operator=(const AcadBlockRef& other) = default;
    ~AcadBlockRef() override;

    double m_position[3] = {0, 0, 0};
    AcGeScale3d m_scale;
    AcadLayer m_layer;
    CString m_handle;
    double m_rotation = 0;
    AcadAttributeArray m_attributes;

    // The class-wide table of the built-in properties: title, key and bit.
    static const AcadAttributeArray& BuiltInProperties();

private:
    static void FillBuiltInProperties();
};

class AcadBlockRefArray : public CArray<AcadBlockRef, AcadBlockRef&> {
public:
    AcadBlockRefArray() = default;
    AcadBlockRefArray(const AcadBlockRefArray& other);
    AcadBlockRefArray& operator=(const AcadBlockRefArray& other);
    ~AcadBlockRefArray() override;
};

// One block table record, with its definitions and its direct references.
class AcadBlock : public CObject {
public:
    AcadBlock() = default;
    AcadBlock(const CString& drawingPath, const CString& name, int hasAttributes, int anonymous, int xref, int overlay,
              int layout, int unloaded);
    AcadBlock(const AcadBlock& other) = default;
    AcadBlock& operator=(const AcadBlock& other) = default;
    ~AcadBlock() override;

    AcadAttributeDefArray m_attributeDefs;
    AcadBlockRefArray m_references;
    int m_hasAttributes = 0;
    int m_anonymous = 0;
    int m_xref = 0;
    int m_overlay = 0;
    int m_layout = 0;
    int m_unloaded = 0;
    CString m_name;
    CString m_drawingPath;
};

class AcadBlockArray : public CArray<AcadBlock, AcadBlock&> {
public:
    AcadBlockArray() = default;
    AcadBlockArray(const AcadBlockArray& other);
    AcadBlockArray& operator=(const AcadBlockArray& other);
    ~AcadBlockArray() override;

    // Appends a snapshot of a drawing: the working database for a null or
    // empty path, else the file at path, read with the share mode and code
    // page conversion given. Layouts, unloaded and overlaid blocks are left
    // out; anonymous blocks only stay as copies of a dynamic block, under
    // its name. eOk, or the status of a file that could not be read.
    Acad::ErrorStatus Read(const ACHAR* path, int shareMode, bool allowCodePageConversion);
    // The block names in array order, each once (minding case), appended to
    // names unless it holds them already.
    void GetBlockNames(CStringArrayEx& names) const;
    // The tags of all definitions in array order, each once (minding case);
    // the built-in titles only when includeBuiltIn is non-zero.
    void GetAttributeTags(CStringArrayEx& tags, int includeBuiltIn) const;
    // The values that references show under a tag (not minding case), each
    // once (minding case).
    void GetAttributeValues(CString tag, CStringArrayEx& values) const;

    // Left empty by the reader.
    AcadLayerArray m_layers;
};

// The state of the named layer of a database: name and the three states.
// A name the layer table does not hold is reported on the command line and
// leaves the states as they were.
void ReadLayerState(CString layerName, AcadLayer& layer, AcDbDatabase* database);
