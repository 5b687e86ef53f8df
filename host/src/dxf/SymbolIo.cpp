// Files' groups of symbol tables, their records, and dictionaries.
#include <dbdict.h>
#include <dbsymtb.h>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "dxf/GroupTable.h"

namespace cadhost::dxf {
namespace {

enum : Adesk::UInt16 { kHad280 = 1 << 0, kHad62 = 1 << 1 };

// TABLE: the name comes before the handle; the writer puts it there.

Use ReadTable(AcDbObject&, const Group& g, ObjectReader&) {
    if (g.code == 2 || IsMarker(g, "AcDbSymbolTable") || g.code == 70) return Use::kKnown;
    return Use::kKept;
}

void WriteTable(const AcDbObject& object, ObjectWriter& out) {
    auto& table = static_cast<const AcDbSymbolTable&>(object);
    out.Marker("AcDbSymbolTable");
    long long count = 0;
    for (AcDbObjectId id : table.recordIds())
        if (!id.isErased()) ++count;
    out.Integer(70, count);
}

// Records: name and flags belong to every record; a layer adds its color,
// whose sign tells whether it is off.

std::string RecordName(const AcDbSymbolTableRecord& record) { return ToUtf8(record.name()); }
// The name is filed in its table by the reader.
void SetRecordName(AcDbSymbolTableRecord& record, const std::string& name) { record.setName(FromUtf8(name).c_str()); }
const char* RefuseEmptyName(const std::string& name) { return name.empty() ? "a table record needs a name" : nullptr; }
long long RecordFlags(const AcDbSymbolTableRecord& record) { return record.recordFlags(); }
void SetRecordFlags(AcDbSymbolTableRecord& record, long long flags) {
    record.setRecordFlags(static_cast<Adesk::Int16>(flags));
}

template <class T>
constexpr GroupEntry<T> RecordNameEntry() {
    GroupEntry<T> entry = GroupsOf<T>::template Text<RecordName, SetRecordName>(2);
    entry.refuseText = RefuseEmptyName;
    return entry;
}

long long LayerColor(const AcDbLayerTableRecord& layer) {
    Adesk::Int16 color = layer.colorIndex() == 0 ? 7 : layer.colorIndex();
    return layer.isOff() ? -color : color;
}
void SetLayerColor(AcDbLayerTableRecord& layer, long long color) {
    layer.setIsOff(color < 0);
    layer.setColorIndex(static_cast<Adesk::Int16>(color < 0 ? -color : color));
}

using LayerGroups = GroupsOf<AcDbLayerTableRecord>;
constexpr GroupEntry<AcDbLayerTableRecord> kLayerGroups[] = {
    LayerGroups::Marker("AcDbSymbolTableRecord"),
    LayerGroups::Marker("AcDbLayerTableRecord"),
    RecordNameEntry<AcDbLayerTableRecord>(),
    LayerGroups::Integer<RecordFlags, SetRecordFlags>(70),
    LayerGroups::Noted(LayerGroups::Integer<LayerColor, SetLayerColor>(62), kHad62),
};
using LayerIo = ByTable<kLayerGroups>;

// A new layer names its line type, which files need.
void WriteLayer(const AcDbObject& object, ObjectWriter& out) {
    LayerIo::Write(object, out);
    if (!out.FromFile()) out.Extra(6, "Continuous");
}

using AppGroups = GroupsOf<AcDbRegAppTableRecord>;
constexpr GroupEntry<AcDbRegAppTableRecord> kAppGroups[] = {
    AppGroups::Marker("AcDbSymbolTableRecord"),
    AppGroups::Marker("AcDbRegAppTableRecord"),
    RecordNameEntry<AcDbRegAppTableRecord>(),
    AppGroups::Integer<RecordFlags, SetRecordFlags>(70),
};
using AppIo = ByTable<kAppGroups>;

Use ReadRecordPart(AcDbSymbolTableRecord& record, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbSymbolTableRecord")) return Use::kKnown;
    if (g.code == 2) {
        std::string name = in.Text(g);
        if (const char* why = RefuseEmptyName(name)) in.Fail(g, why);
        SetRecordName(record, name);
        return Use::kKnown;
    }
    return Use::kKept;
}

// A block record's flags, base point and path are on its BLOCK entity.
Use ReadBlockRecord(AcDbObject& object, const Group& g, ObjectReader& in) {
    if (IsMarker(g, "AcDbBlockTableRecord")) return Use::kKnown;
    return ReadRecordPart(static_cast<AcDbBlockTableRecord&>(object), g, in);
}

void WriteBlockRecord(const AcDbObject& object, ObjectWriter& out) {
    auto& block = static_cast<const AcDbBlockTableRecord&>(object);
    out.Marker("AcDbSymbolTableRecord");
    out.Marker("AcDbBlockTableRecord");
    out.Text(2, ToUtf8(block.name()));
    if (!out.FromFile()) {
        out.Extra(340, "0");
        out.Extra(70, "0");
        out.Extra(280, "1");
        out.Extra(281, "0");
    }
}

// DICTIONARY: its entries are a name (3) and an owned (360) or referred
// (350) object.
struct DictionaryRead {
    std::string entryName;   // UTF-8, of the entry being read
    bool entryOpen = false;  // its name was read, its object not yet
};

Use ReadDictionary(AcDbDictionary& dictionary, DictionaryRead& read, const Group& g, ObjectReader& in) {
    switch (g.code) {
    case 100: return g.value == "AcDbDictionary" ? Use::kKnown : Use::kKept;
    case 280:
        dictionary.setFileGroups(dictionary.fileGroups() | kHad280);
        dictionary.setTreatElementsAsHard(in.Integer(g) != 0);
        return Use::kKnown;
    case 3:
        read.entryName = in.Text(g);
        read.entryOpen = true;
        return Use::kKnown;
    case 350:
    case 360: {
        if (!read.entryOpen) return Use::kKept;
        read.entryOpen = false;
        AcDbObjectId id = in.Id(g);
        dictionary.adoptEntry(FromUtf8(read.entryName), id, g.code == 360);
        return Use::kKnown;
    }
    default: return Use::kKept;
    }
}

void WriteDictionary(const AcDbObject& object, ObjectWriter& out) {
    auto& dictionary = static_cast<const AcDbDictionary&>(object);
    out.Marker("AcDbDictionary");
    if ((object.fileGroups() & kHad280) || dictionary.isTreatElementsAsHard())
        out.Integer(280, dictionary.isTreatElementsAsHard() ? 1 : 0);
    if (!out.FromFile()) out.Extra(281, "1");
    for (const AcDbDictionary::Entry& entry : dictionary.entries()) {
        // An erased entry goes with its object; its places stay counted.
        if (entry.id.isNull() || entry.id.isErased() || !DatabaseImpl::Peek(entry.id)) {
            out.Skip(2);
            continue;
        }
        out.Text(3, ToUtf8(entry.name));
        out.Id(entry.hardOwned ? 360 : 350, entry.id);
    }
}

constexpr ClassIo kSymbolClasses[] = {
    {.dxfName = "TABLE",
     .rxClass = AcDbSymbolTable::desc,
     .read = Reads<ReadTable>,
     .write = WriteTable,
     .markers = "AcDbSymbolTable"},
    {.dxfName = "LAYER",
     .rxClass = AcDbLayerTableRecord::desc,
     .create = Make<AcDbLayerTableRecord>,
     .read = Reads<LayerIo::Read>,
     .finish = Finishes<LayerIo::Finish>,
     .write = WriteLayer,
     .markers = "AcDbSymbolTableRecord|AcDbLayerTableRecord",
     .createTable = Make<AcDbLayerTable>},
    {.dxfName = "APPID",
     .rxClass = AcDbRegAppTableRecord::desc,
     .create = Make<AcDbRegAppTableRecord>,
     .read = Reads<AppIo::Read>,
     .finish = Finishes<AppIo::Finish>,
     .write = AppIo::Write,
     .markers = "AcDbSymbolTableRecord|AcDbRegAppTableRecord",
     .createTable = Make<AcDbRegAppTable>},
    {.dxfName = "BLOCK_RECORD",
     .rxClass = AcDbBlockTableRecord::desc,
     .create = Make<AcDbBlockTableRecord>,
     .read = Reads<ReadBlockRecord>,
     .write = WriteBlockRecord,
     .markers = "AcDbSymbolTableRecord|AcDbBlockTableRecord",
     .createTable = Make<AcDbBlockTable>,
     .recordsFrom2000 = true},
    // Dimension styles are kept as files have them; their handle is group 105.
    {.dxfName = "DIMSTYLE", .handleCode = 105},
    {.dxfName = "DICTIONARY",
     .rxClass = AcDbDictionary::desc,
     .create = Make<AcDbDictionary>,
     .read = Reads<ReadDictionary>,
     .write = WriteDictionary,
     .markers = "AcDbDictionary"},
};

}  // namespace

std::span<const ClassIo> SymbolClasses() { return kSymbolClasses; }

}  // namespace cadhost::dxf
