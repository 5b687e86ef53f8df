#include "AcadDatabase.h"

#include <dbdynblk.h>
#include <dbents.h>
#include <dbobjptr.h>

#include <string>
#include <unordered_map>
#include <unordered_set>

namespace {

const ACHAR kSourceName[] = L"AcadDatabase";
// The line that the layer report names, as the module has always given it.
const int kLayerReportLine = 92;

// The built-in properties: title, key and bit, in the order every block
// lists them.
struct BuiltInRow {
    const ACHAR* title;
    const ACHAR* key;
    int bit;
};
const BuiltInRow kBuiltIns[] = {
    {L"X insertion point", L"XIns", 1}, {L"Y insertion point", L"YIns", 2}, {L"Z insertion point", L"ZIns", 4},
    {L"X scale", L"XScale", 8},         {L"Y scale", L"YScale", 16},        {L"Z scale", L"ZScale", 32},
    {L"Rotation", L"Rotation", 64},     {L"Layer", L"Layer", 128},
};

// ReadLayerState without its report: the status of the look-up.
Acad::ErrorStatus ReadLayerStateOf(const CString& layerName, AcadLayer& layer, AcDbDatabase* database);

AcadAttributeArray& BuiltInTable() {
    static AcadAttributeArray table;
    return table;
}

// Texts already in a list, so that appending "unless the list holds it"
// stays a hash look-up however long the list grows.
class SeenTexts {
public:
    explicit SeenTexts(const CStringArray& list) {
        for (INT_PTR i = 0; i < list.GetSize(); ++i) m_seen.insert(Key(list[i]));
    }
    void AddUnlessSeen(CStringArray& list, const CString& text) {
        if (m_seen.insert(Key(text)).second) list.Add(text);
    }

private:
    static std::wstring Key(const CString& text) {
        return std::wstring(static_cast<const wchar_t*>(text), static_cast<size_t>(text.GetLength()));
    }

    std::unordered_set<std::wstring> m_seen;
};

// The formatted value of a dynamic property, by its type; false for a type
// that has no text form here (a point).
bool FormatPropertyValue(const AcDbEvalVariant& value, CString& text) {
    switch (value.restype) {
    case AcDb::kDxfText: text.Format(L"%s", value.resval.rstring ? value.resval.rstring : L""); return true;
    case AcDb::kDxfReal: text.Format(L"%g", value.resval.rreal); return true;
    case AcDb::kDxfInt16: text.Format(L"%d", static_cast<int>(value.resval.rint)); return true;
    case AcDb::kDxfInt32: text.Format(L"%ld", static_cast<long>(value.resval.rlong)); return true;
    default: return false;
    }
}

void ReadProperties(AcDbObjectId referenceId, AcadBlock& block, AcadBlockRef& reference) {
    AcDbDynBlockReference dynamic(referenceId);
    AcDbDynBlockReferencePropertyArray properties;
    dynamic.getBlockProperties(properties);
    for (int i = 0; i < properties.length(); ++i) {
        const AcDbDynBlockReferenceProperty& property = properties[i];
        CString text;
        if (!FormatPropertyValue(property.value(), text)) continue;
        CString name = property.propertyName().kwszPtr();
        AcadAttribute attribute(name, text, 0);
        reference.m_attributes.Add(attribute);
        if (block.m_anonymous && block.m_attributeDefs.FindTag(name) < 0) {
            AcadAttributeDef definition(name, name, property.readOnly() ? 1 : 0, property.show() ? 1 : 0, 0, 0);
            block.m_attributeDefs.Add(definition);
        }
    }
    if (!block.m_anonymous) return;
    // The first readable reference of an anonymous copy names the copy after
    // its dynamic block.
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(dynamic.dynamicBlockTableRecord());
    if (record.openStatus() != Acad::eOk) return;
    const ACHAR* name = nullptr;
    if (record->getName(name) == Acad::eOk && name) {
        block.m_name = name;
        block.m_anonymous = 0;
    }
}

void ReadAttributes(const AcDbBlockReference& source, AcadBlockRef& reference) {
    AcDbObjectIterator* iterator = source.attributeIterator();
    if (!iterator) return;
    // The slots are made at once and filled in place.
    INT_PTR count = 0;
    for (; !iterator->done(); iterator->step(false, true)) ++count;
    AcadAttributeArray& attributes = reference.m_attributes;
    INT_PTR filled = attributes.GetSize();
    attributes.SetSize(filled + count);
    for (iterator->start(); !iterator->done(); iterator->step(false, true)) {
        AcDbObjectPointer<AcDbAttribute> attribute(iterator->objectId());
        if (attribute.openStatus() != Acad::eOk) continue;
        AcadAttribute& read = attributes[filled++];
        read.m_tag = attribute->tagConst();
        read.m_value = attribute->textStringConst();
        read.m_code = 0;
    }
    attributes.SetSize(filled);
    delete iterator;
}

// What one reading of a drawing keeps while it runs: the state of each
// layer met, read once and reported again for every reference on a layer
// that the table cannot find.
struct ReadingContext {
    AcDbDatabase* database;
    CString drawingPath;
    struct LayerState {
        AcadLayer layer;
        Acad::ErrorStatus status;
    };
    std::unordered_map<Adesk::UInt64, LayerState> layers;  // by the layer's handle
};

Adesk::UInt64 IdKey(AcDbObjectId id) {
    AcDbHandle handle = id.handle();
    return (Adesk::UInt64(handle.high()) << 32) | handle.low();
}

const AcadLayer& LayerOf(const AcDbBlockReference& source, ReadingContext& context) {
    Adesk::UInt64 key = IdKey(source.layerId());
    auto found = context.layers.find(key);
    if (found != context.layers.end()) {
        if (found->second.status != Acad::eOk) ReportArxError(found->second.status, kSourceName, kLayerReportLine);
        return found->second.layer;
    }
    ACHAR* layerName = source.layer();
    ReadingContext::LayerState state{AcadLayer(), Acad::eOk};
    state.status = ReadLayerStateOf(layerName, state.layer, context.database);
    acutDelBuffer(layerName);
    ReportArxError(state.status, kSourceName, kLayerReportLine);
    return context.layers.emplace(key, state).first->second.layer;
}

// Reads one reference into a slot of the block's array; false when it does
// not open.
bool ReadReference(AcDbObjectId id, ReadingContext& context, AcadBlock& block, AcadBlockRef& reference) {
    AcDbObjectPointer<AcDbBlockReference> source(id);
    if (source.openStatus() != Acad::eOk) return false;
    AcGePoint3d position = source->position();
    reference.m_position[0] = position.x;
    reference.m_position[1] = position.y;
    reference.m_position[2] = position.z;
    reference.m_scale = source->scaleFactors();
    reference.m_rotation = source->rotation();
    reference.m_layer = LayerOf(*source.object(), context);
    GetObjectHandleText(source.object(), reference.m_handle);
    AcDbDynBlockReference dynamic(id);
    if (dynamic.isDynamicBlock()) ReadProperties(id, block, reference);
    else ReadAttributes(*source.object(), reference);
    return true;
}

// Reads one block record into a slot of the array; false when the record is
// left out of the snapshot.
bool ReadBlock(AcDbBlockTableRecord* record, ReadingContext& context, AcadBlock& block) {
    const ACHAR* name = nullptr;
    record->getName(name);
    if (record->isLayout() || record->isUnloaded() || record->isFromOverlayReference()) return false;
    block = AcadBlock(context.drawingPath, name ? name : L"", record->hasAttributeDefinitions() ? 1 : 0,
                      record->isAnonymous() ? 1 : 0, record->isFromExternalReference() ? 1 : 0,
                      record->isFromOverlayReference() ? 1 : 0, record->isLayout() ? 1 : 0,
                      record->isUnloaded() ? 1 : 0);
    block.m_attributeDefs.ReadDefinitions(record);

    AcDbObjectIdArray ids;
    record->getBlockReferenceIds(ids, true, false);
    // The slots are made at once and filled in place, so that no reference
    // is copied on the way; the ones that did not open are cut off after.
    AcadBlockRefArray& references = block.m_references;
    references.SetSize(ids.length());
    INT_PTR filled = 0;
    for (int i = 0; i < ids.length(); ++i) {
        if (ids[i].isEffectivelyErased()) continue;
        if (ReadReference(ids[i], context, block, references[filled])) ++filled;
    }
    references.SetSize(filled);
    return !block.m_anonymous;
}

}  // namespace

// ---- Elements ------------------------------------------------------------------

AcadLayer::~AcadLayer() = default;

AcadAttribute::AcadAttribute(const CString& tag, const CString& value, int code)
    : m_tag(tag), m_value(value), m_code(code) {}
AcadAttribute::~AcadAttribute() = default;

AcadAttributeDef::AcadAttributeDef(const CString& tag, const CString& prompt, int constant, int invisible, int preset,
                                   int verifiable)
    : m_tag(tag),
      m_prompt(prompt),
      m_constant(constant),
      m_invisible(invisible),
      m_preset(preset),
      m_verifiable(verifiable) {}
AcadAttributeDef::~AcadAttributeDef() = default;

AcadBlockRef::AcadBlockRef() { FillBuiltInProperties(); }

AcadBlockRef::AcadBlockRef(const AcGePoint3d& position, const AcGeScale3d& scale, const AcadLayer& layer,
                           double rotation, const CString& handle)
    : m_position{position.x, position.y, position.z},
      m_scale(scale),
      m_layer(layer),
      m_handle(handle),
      m_rotation(rotation) {
    FillBuiltInProperties();
}

AcadBlockRef::~AcadBlockRef() = default;

void AcadBlockRef::FillBuiltInProperties() {
    AcadAttributeArray& table = BuiltInTable();
    if (!table.IsEmpty()) return;
    for (const BuiltInRow& row : kBuiltIns) {
        AcadAttribute attribute(row.title, row.key, row.bit);
        table.Add(attribute);
    }
}

const AcadAttributeArray& AcadBlockRef::BuiltInProperties() { return BuiltInTable(); }

AcadBlock::AcadBlock(const CString& drawingPath, const CString& name, int hasAttributes, int anonymous, int xref,
                     int overlay, int layout, int unloaded)
    : m_hasAttributes(hasAttributes),
      m_anonymous(anonymous),
      m_xref(xref),
      m_overlay(overlay),
      m_layout(layout),
      m_unloaded(unloaded),
      m_name(name),
      m_drawingPath(drawingPath) {}

AcadBlock::~AcadBlock() = default;

// ---- Arrays ----------------------------------------------------------------------

AcadLayerArray::AcadLayerArray(const AcadLayerArray& other) { Copy(other); }
AcadLayerArray& AcadLayerArray::operator=(const AcadLayerArray& other) {
    Copy(other);
    return *this;
}
AcadLayerArray::~AcadLayerArray() = default;

AcadAttributeArray::AcadAttributeArray(const AcadAttributeArray& other) { Copy(other); }
AcadAttributeArray& AcadAttributeArray::operator=(const AcadAttributeArray& other) {
    Copy(other);
    return *this;
}
AcadAttributeArray::~AcadAttributeArray() = default;

AcadAttributeDefArray::AcadAttributeDefArray() {
    for (const BuiltInRow& row : kBuiltIns) {
        AcadAttributeDef definition(row.title, L"", 0, 0, 0, 0);
        definition.m_builtIn = 1;
        Add(definition);
    }
}
AcadAttributeDefArray::AcadAttributeDefArray(const AcadAttributeDefArray& other) { Copy(other); }
AcadAttributeDefArray& AcadAttributeDefArray::operator=(const AcadAttributeDefArray& other) {
    Copy(other);
    return *this;
}
AcadAttributeDefArray::~AcadAttributeDefArray() = default;

INT_PTR AcadAttributeDefArray::FindTag(const CString& tag) const {
    for (INT_PTR i = 0; i < GetSize(); ++i) {
        if (GetAt(i).m_tag.CompareNoCase(tag) == 0) return i;
    }
    return -1;
}

int AcadAttributeDefArray::ReadDefinitions(AcDbBlockTableRecord* record) {
    if (!record) return 0;
    AcDbBlockTableRecordIterator* iterator = nullptr;
    if (record->newIterator(iterator, true, true) != Acad::eOk || !iterator) return 1;
    for (; !iterator->done(); iterator->step(true, true)) {
        AcDbEntity* entity = nullptr;
        if (iterator->getEntity(entity, AcDb::kForRead) != Acad::eOk || !entity) continue;
        if (AcDbAttributeDefinition* source = AcDbAttributeDefinition::cast(entity)) {
            AcadAttributeDef definition(source->tagConst(), source->promptConst(), source->isConstant() ? 1 : 0,
                                        source->isInvisible() ? 1 : 0, source->isPreset() ? 1 : 0,
                                        source->isVerifiable() ? 1 : 0);
            // The first definition of a tag stays.
            if (FindTag(definition.m_tag) < 0) Add(definition);
        }
        entity->close();
    }
    delete iterator;
    return 1;
}

AcadBlockRefArray::AcadBlockRefArray(const AcadBlockRefArray& other) { Copy(other); }
AcadBlockRefArray& AcadBlockRefArray::operator=(const AcadBlockRefArray& other) {
    Copy(other);
    return *this;
}
AcadBlockRefArray::~AcadBlockRefArray() = default;

AcadBlockArray::AcadBlockArray(const AcadBlockArray& other) : m_layers(other.m_layers) { Copy(other); }
AcadBlockArray& AcadBlockArray::operator=(const AcadBlockArray& other) {
    Copy(other);
    m_layers = other.m_layers;
    return *this;
}
AcadBlockArray::~AcadBlockArray() = default;

// ---- Reading ---------------------------------------------------------------------

namespace {
Acad::ErrorStatus ReadLayerStateOf(const CString& layerName, AcadLayer& layer, AcDbDatabase* database) {
    if (layerName.IsEmpty() || !database) return Acad::eOk;
    layer.m_name = layerName;
    AcDbLayerTable* table = nullptr;
    if (database->getSymbolTable(table, AcDb::kForRead) != Acad::eOk) return Acad::eOk;
    AcDbLayerTableRecord* record = nullptr;
    Acad::ErrorStatus es = table->getAt(layerName, record, AcDb::kForRead);
    if (es == Acad::eOk && record) {
        layer.m_frozen = record->isFrozen() ? 1 : 0;
        layer.m_off = record->isOff() ? 1 : 0;
        layer.m_locked = record->isLocked() ? 1 : 0;
        record->close();
    }
    table->close();
    return es == Acad::eOk && !record ? Acad::eKeyNotFound : es;
}
}  // namespace

void ReadLayerState(CString layerName, AcadLayer& layer, AcDbDatabase* database) {
    ReportArxError(ReadLayerStateOf(layerName, layer, database), kSourceName, kLayerReportLine);
}

Acad::ErrorStatus AcadBlockArray::Read(const ACHAR* path, int shareMode, bool allowCodePageConversion) {
    AcDbDatabase* database = nullptr;
    bool ownDatabase = false;
    CString drawingPath;
    if (!path || !*path) {
        database = acdbHostApplicationServices()->workingDatabase();
    } else {
        database = new AcDbDatabase(false, true);
        Acad::ErrorStatus es = database->readDwgFile(path, shareMode, allowCodePageConversion, nullptr);
        if (es != Acad::eOk) {
            delete database;
            return es;
        }
        drawingPath = path;
        ownDatabase = true;
    }
    if (!database) return Acad::eOk;
    ReadingContext context{database, drawingPath, {}};

    AcDbBlockTable* table = nullptr;
    if (database->getSymbolTable(table, AcDb::kForRead) == Acad::eOk) {
        AcDbBlockTableIterator* iterator = nullptr;
        if (table->newIterator(iterator, true, true) == Acad::eOk && iterator) {
            // One slot for each record at most, filled in place; a record that
            // is left out gives its slot to the next.
            INT_PTR records = 0;
            for (; !iterator->done(); iterator->step(true, true)) ++records;
            iterator->start(true, true);
            INT_PTR first = GetSize(), filled = first;
            SetSize(first + records);
            for (; !iterator->done(); iterator->step(true, true)) {
                AcDbBlockTableRecord* record = nullptr;
                if (iterator->getRecord(record, AcDb::kForRead) != Acad::eOk || !record) continue;
                if (filled >= GetSize()) SetSize(filled + 1);
                if (ReadBlock(record, context, ElementAt(filled))) ++filled;
                else ElementAt(filled) = AcadBlock();
                record->close();
            }
            SetSize(filled);
            delete iterator;
        }
        table->close();
    }
    if (ownDatabase) delete database;
    return Acad::eOk;
}

void AcadBlockArray::GetBlockNames(CStringArrayEx& names) const {
    SeenTexts seen(names);
    for (INT_PTR i = 0; i < GetSize(); ++i) seen.AddUnlessSeen(names, GetAt(i).m_name);
}

void AcadBlockArray::GetAttributeTags(CStringArrayEx& tags, int includeBuiltIn) const {
    SeenTexts seen(tags);
    for (INT_PTR i = 0; i < GetSize(); ++i) {
        const AcadAttributeDefArray& definitions = GetAt(i).m_attributeDefs;
        for (INT_PTR j = 0; j < definitions.GetSize(); ++j) {
            const AcadAttributeDef& definition = definitions[j];
            if (includeBuiltIn || !definition.m_builtIn) seen.AddUnlessSeen(tags, definition.m_tag);
        }
    }
}

void AcadBlockArray::GetAttributeValues(CString tag, CStringArrayEx& values) const {
    SeenTexts seen(values);
    for (INT_PTR i = 0; i < GetSize(); ++i) {
        const AcadBlockRefArray& references = GetAt(i).m_references;
        for (INT_PTR j = 0; j < references.GetSize(); ++j) {
            const AcadAttributeArray& attributes = references[j].m_attributes;
            for (INT_PTR k = 0; k < attributes.GetSize(); ++k) {
                if (attributes[k].m_tag.CompareNoCase(tag) == 0) seen.AddUnlessSeen(values, attributes[k].m_value);
            }
        }
    }
}
