// Writes a database as DXF: the file's header, classes, tables and kept
// sections as they were read, the objects with their kept groups in place.
#include <adslib.h>
#include <dbdict.h>
#include <dbents.h>
#include <dbsymtb.h>

#include <algorithm>

#include <cerrno>
#include <cstring>
#include <set>
#include <unordered_set>

#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "db/ObjectExtras.h"
#include "dxf/DxfFiles.h"
#include "dxf/Values.h"
#include "dxf/Writers.h"
#include "files/FileReplacement.h"

namespace cadhost::dxf {
namespace {

std::string Real(double value) {
    std::string text;
    AppendReal(text, value);
    return text;
}

class Writer {
public:
    Writer(const AcDbDatabase& db, std::FILE* file)
        : m_db(db), m_impl(db.impl()), m_file(m_impl.file), m_out(file),
          m_codec(m_file.IsUtf8(), m_file.codePage) {}

    bool Run();

private:
    void Section(const char* name) {
        m_out.Write(0, "SECTION");
        m_out.Write(2, name);
    }
    void EndSection() { m_out.Write(0, "ENDSEC"); }
    // One more than the largest handle that the file will hold.
    uint64_t WrittenNextHandle() const;
    void Header();
    void Classes();
    void Tables();
    void Blocks();
    void Entities();
    void Objects();

    // The type name an object is written under; empty when no class writes it.
    std::string TypeOf(const AcDbObject& object) const;
    void WriteObject(const AcDbObject& object, const std::string& type);
    void WriteEntity(AcDbObjectId id);
    void WriteXData(const resbuf* chain);
    bool Gone(AcDbObjectId id) const { return id.isNull() || !DatabaseImpl::Peek(id) || id.isEffectivelyErased(); }
    // Before 2000 only files that use handles have them, and never on tables.
    bool WritesHandle(const AcDbObject& object, const std::string& type) const {
        return !m_file.IsR12() || (m_file.handles && !AcDbSymbolTable::cast(&object) && type != "TABLE");
    }

    const AcDbDatabase& m_db;
    const DatabaseImpl& m_impl;
    const FileState& m_file;
    GroupWriter m_out;
    TextCodec m_codec;
    SharedTexts m_shared;
    std::unordered_set<const AcDbStub*> m_tableObjects;  // written in TABLES, not in OBJECTS
};

std::string Writer::TypeOf(const AcDbObject& object) const {
    if (auto* kept = KeptObject::cast(&object)) return kept->type();
    if (auto* kept = KeptEntity::cast(&object)) return kept->type();
    if (AcDbSymbolTable::cast(&object)) return "TABLE";
    const ClassIo* io = FindClassOf(object.isA());
    return io ? std::string(io->dxfName) : std::string();
}

void Writer::WriteXData(const resbuf* chain) {
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) {
        int code = rb->restype;
        switch (code) {
        case 1000: case 1001: case 1002: case 1003: case 1005:
            m_out.Write(code, m_codec.Encode(ToUtf8(rb->resval.rstring ? rb->resval.rstring : L"")));
            break;
        case 1004: {
            static const char* hex = "0123456789ABCDEF";
            std::string text;
            for (short i = 0; i < rb->resval.rbinary.clen; ++i) {
                auto byte = static_cast<unsigned char>(rb->resval.rbinary.buf[i]);
                text += hex[byte >> 4];
                text += hex[byte & 15];
            }
            m_out.Write(code, text);
            break;
        }
        case 1010: case 1011: case 1012: case 1013:
            for (int axis = 0; axis < 3; ++axis) m_out.Write(code + 10 * axis, Real(rb->resval.rpoint[axis]));
            break;
        case 1040: case 1041: case 1042: m_out.Write(code, Real(rb->resval.rreal)); break;
        case 1070: m_out.Write(code, std::to_string(rb->resval.rint)); break;
        case 1071: m_out.Write(code, std::to_string(rb->resval.rlong)); break;
        default: break;
        }
    }
}

void Writer::WriteObject(const AcDbObject& object, const std::string& type) {
    if (type.empty()) return;
    bool r12 = m_file.IsR12();
    m_out.Write(0, type);
    ObjectWriterImpl out(m_out, object, m_file, m_codec, m_shared);
    auto* table = AcDbSymbolTable::cast(&object);
    if (table) {
        const char* name = AcDbLayerTable::cast(&object) ? "LAYER" : AcDbBlockTable::cast(&object) ? "BLOCK_RECORD" : "APPID";
        out.Known(2, name);
    }
    if (WritesHandle(object, type)) {
        AcDbHandle handle;
        object.getAcDbHandle(handle);
        const ClassIo* io = FindClass(type);
        out.Known(io ? io->handleCode : 5, FormatHandle(handle.value()));
    }
    bool entity = AcDbEntity::cast(&object) != nullptr;
    AcDbObjectId owner = object.ownerId();
    if (!r12 && !out.FromFile() && !entity && !owner.isNull() && !AcDbSymbolTableRecord::cast(&object)) {
        out.Extra(102, "{ACAD_REACTORS");
        out.Extra(330, FormatHandle(owner.handle().value()));
        out.Extra(102, "}");
    }
    AcDbObjectId dictionary = object.extensionDictionary();
    if (!r12 && !Gone(dictionary)) {
        out.Known(102, "{ACAD_XDICTIONARY");
        out.Known(360, FormatHandle(dictionary.handle().value()));
        out.Known(102, "}");
    } else if (!r12 && !dictionary.isNull()) {
        out.Skip(3);  // its places, as the file that named it counted them
    }
    AcDbObjectId named = object.extras() && !object.extras()->fileOwner.isNull() ? object.extras()->fileOwner : owner;
    if (!r12 && !(object.fileGroups() & 0x8000)) out.Known(330, FormatHandle(named.isNull() ? 0 : named.handle().value()));
    if (entity) {
        out.Marker("AcDbEntity");
        auto* space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(owner));
        if (space && space->isLayout() && owner != m_impl.modelSpace && !out.FromFile() && !out.HasKept(67))
            out.Extra(67, "1");
        auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(static_cast<const AcDbEntity&>(object).layerId()));
        out.Known(8, m_codec.Encode(layer ? ToUtf8(layer->name()) : std::string("0")));
    }
    const ClassIo* io = KeptObject::cast(&object) || KeptEntity::cast(&object) ? nullptr
                        : table                                               ? FindClass("TABLE")
                                                                              : FindClassOf(object.isA());
    if (io && io->write) io->write(object, out);
    out.FlushKept(true);
    if (ObjectExtras* extras = object.extras(); extras && extras->xdata) WriteXData(extras->xdata);
}

void Writer::WriteEntity(AcDbObjectId id) {
    if (Gone(id)) return;
    AcDbObject* object = DatabaseImpl::Peek(id);
    WriteObject(*object, TypeOf(*object));
    if (auto* reference = AcDbBlockReference::cast(object)) {
        bool any = false;
        for (AcDbObjectId attribute : reference->attributeIds()) {
            if (Gone(attribute)) continue;
            WriteObject(*DatabaseImpl::Peek(attribute), "ATTRIB");
            any = true;
        }
        if (any && !Gone(reference->sequenceEnd())) WriteObject(*DatabaseImpl::Peek(reference->sequenceEnd()), "SEQEND");
    } else if (auto* kept = KeptEntity::cast(object)) {
        for (AcDbObjectId child : kept->children())
            if (!Gone(child)) WriteObject(*DatabaseImpl::Peek(child), TypeOf(*DatabaseImpl::Peek(child)));
    }
}

uint64_t Writer::WrittenNextHandle() const {
    if (!m_file.IsR12()) return m_impl.NextHandle();
    // Before 2000 tables, block records and dictionaries are not written,
    // and their handles need not be counted.
    uint64_t largest = 0;
    auto take = [&](AcDbObjectId id) {
        if (Gone(id) || id.handle().value() <= largest) return;
        const AcDbObject& object = *DatabaseImpl::Peek(id);
        if (WritesHandle(object, TypeOf(object))) largest = id.handle().value();
    };
    std::vector<AcDbObjectId> tables = m_file.tables;
    tables.push_back(m_impl.layerTable);
    tables.push_back(m_impl.regAppTable);
    for (AcDbObjectId tableId : tables) {
        AcDbObject* table = Gone(tableId) ? nullptr : DatabaseImpl::Peek(tableId);
        if (auto* modelled = AcDbSymbolTable::cast(table))
            for (AcDbObjectId id : modelled->recordIds()) take(id);
        else if (auto* kept = KeptObject::cast(table))
            for (AcDbObjectId id : kept->children()) take(id);
    }
    if (auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(m_impl.blockTable))) {
        for (AcDbObjectId blockId : blocks->recordIds()) {
            auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
            if (!block || Gone(blockId)) continue;
            // As Blocks() writes them: the spaces' markers only when the
            // file had them.
            bool space = blockId == m_impl.modelSpace || blockId == m_impl.paperSpace;
            AcDbObject* begin = Gone(block->blockBeginId()) ? nullptr : DatabaseImpl::Peek(block->blockBeginId());
            if (begin && (!space || DatabaseImpl::StubOf(begin)->fromFile)) {
                take(block->blockBeginId());
                take(block->blockEndId());
            }
            for (AcDbObjectId id : block->entityIds()) {
                take(id);
                AcDbObject* entity = Gone(id) ? nullptr : DatabaseImpl::Peek(id);
                if (auto* reference = AcDbBlockReference::cast(entity)) {
                    for (AcDbObjectId attribute : reference->attributeIds()) take(attribute);
                    take(reference->sequenceEnd());
                } else if (auto* kept = KeptEntity::cast(entity)) {
                    for (AcDbObjectId child : kept->children()) take(child);
                }
            }
        }
    }
    return largest + 1;
}

void Writer::Header() {
    Section("HEADER");
    auto clayer = [&] {
        auto* layer = AcDbLayerTableRecord::cast(DatabaseImpl::Peek(m_impl.clayer));
        return m_codec.Encode(layer ? ToUtf8(layer->name()) : std::string("0"));
    };
    uint64_t next = WrittenNextHandle();
    if (m_file.nextHandle > next) next = m_file.nextHandle;
    std::set<std::string> written;
    for (const HeaderVariable& v : m_file.header) {
        written.insert(v.name);
        m_out.Write(9, v.name);
        const UserCoordinates& ucs = v.name.size() > 1 && v.name[1] == 'P' ? m_impl.pucs : m_impl.ucs;
        auto coordinates = [&](const AcGePoint3d& p) {
            m_out.Write(10, Real(p.x));
            m_out.Write(20, Real(p.y));
            m_out.Write(30, Real(p.z));
        };
        if (v.name == "$ACADVER") m_out.Write(1, m_file.version);
        else if (v.name == "$HANDSEED") m_out.Write(5, FormatHandle(next));
        else if (v.name == "$LUNITS") m_out.Write(70, std::to_string(m_impl.lunits));
        else if (v.name == "$LUPREC") m_out.Write(70, std::to_string(m_impl.luprec));
        else if (v.name == "$DIMZIN") m_out.Write(70, std::to_string(m_impl.dimzin));
        else if (v.name == "$TILEMODE") m_out.Write(70, m_db.tilemode() ? "1" : "0");
        else if (v.name == "$CLAYER") m_out.Write(8, clayer());
        else if (v.name == "$UCSORG" || v.name == "$PUCSORG") coordinates(ucs.origin);
        else if (v.name == "$UCSXDIR" || v.name == "$PUCSXDIR")
            coordinates(AcGePoint3d(ucs.xAxis.x, ucs.xAxis.y, ucs.xAxis.z));
        else if (v.name == "$UCSYDIR" || v.name == "$PUCSYDIR")
            coordinates(AcGePoint3d(ucs.yAxis.x, ucs.yAxis.y, ucs.yAxis.z));
        else
            for (const RawGroup& g : v.groups) m_out.Write(g.code, g.value);
    }
    // What the host keeps and the file did not say, when it is not the
    // default.
    if (!written.count("$ACADVER")) {
        m_out.Write(9, "$ACADVER");
        m_out.Write(1, m_file.version);
    }
    if (!written.count("$HANDSEED") && m_file.handles) {
        m_out.Write(9, "$HANDSEED");
        m_out.Write(5, FormatHandle(next));
    }
    auto extra = [&](const char* name, int code, const std::string& value, bool isDefault) {
        if (written.count(name) || isDefault) return;
        m_out.Write(9, name);
        m_out.Write(code, value);
    };
    extra("$LUNITS", 70, std::to_string(m_impl.lunits), m_impl.lunits == 2);
    extra("$LUPREC", 70, std::to_string(m_impl.luprec), m_impl.luprec == 4);
    extra("$DIMZIN", 70, std::to_string(m_impl.dimzin), m_impl.dimzin == 0);
    extra("$TILEMODE", 70, m_db.tilemode() ? "1" : "0", m_db.tilemode());
    extra("$CLAYER", 8, clayer(), m_impl.clayer.isNull() || clayer() == "0");
    EndSection();
}

void Writer::Classes() {
    if (m_file.IsR12()) return;
    // Classes of objects made in this session that the file's list lacks.
    std::set<std::string> listed, used;
    for (size_t i = 0; i + 1 < m_file.classes.size(); ++i)
        if (m_file.classes[i].code == 0 && m_file.classes[i + 1].code == 1) listed.insert(m_file.classes[i + 1].value);
    for (AcDbObjectId id : m_impl.ObjectOrder())
        if (!Gone(id)) used.insert(TypeOf(*DatabaseImpl::Peek(id)));
    if (auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(m_impl.blockTable))) {
        for (AcDbObjectId blockId : blocks->recordIds()) {
            auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
            if (!block || blockId.isErased()) continue;
            for (AcDbObjectId id : block->entityIds())
                if (!Gone(id)) used.insert(TypeOf(*DatabaseImpl::Peek(id)));
        }
    }
    std::vector<const ClassIo*> added;
    for (const std::string& type : used) {
        const ClassIo* io = FindClass(type);
        if (io && !io->cppName.empty() && !listed.count(type)) added.push_back(io);
    }
    if (!m_file.hasClasses && added.empty()) return;
    Section("CLASSES");
    for (const RawGroup& g : m_file.classes) m_out.Write(g.code, g.value);
    for (const ClassIo* io : added) {
        m_out.Write(0, "CLASS");
        m_out.Write(1, io->dxfName);
        m_out.Write(2, io->cppName);
        m_out.Write(3, io->appName);
        m_out.Write(90, std::to_string(io->proxyFlags));
        if (m_file.version >= "AC1018") m_out.Write(91, "0");
        m_out.Write(280, "0");
        m_out.Write(281, io->isEntity ? "1" : "0");
    }
    EndSection();
}

void Writer::Tables() {
    Section("TABLES");
    std::vector<AcDbObjectId> tables = m_file.tables;
    for (AcDbObjectId id : {m_impl.layerTable, m_impl.regAppTable, m_impl.blockTable})
        if (std::find(tables.begin(), tables.end(), id) == tables.end()) tables.push_back(id);
    for (AcDbObjectId tableId : tables) {
        if (Gone(tableId)) continue;
        AcDbObject* table = DatabaseImpl::Peek(tableId);
        m_tableObjects.insert(tableId.stub());
        // Releases before 2000 have no block records.
        if (m_file.IsR12() && AcDbBlockTable::cast(table)) continue;
        WriteObject(*table, "TABLE");
        std::vector<AcDbObjectId> records;
        if (auto* modelled = AcDbSymbolTable::cast(table)) records = modelled->recordIds();
        else if (auto* kept = KeptObject::cast(table)) records = kept->children();
        for (AcDbObjectId record : records) {
            m_tableObjects.insert(record.stub());
            if (!Gone(record)) WriteObject(*DatabaseImpl::Peek(record), TypeOf(*DatabaseImpl::Peek(record)));
        }
        m_out.Write(0, "ENDTAB");
    }
    EndSection();
}

void Writer::Blocks() {
    Section("BLOCKS");
    auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(m_impl.blockTable));
    for (AcDbObjectId blockId : blocks ? blocks->recordIds() : std::vector<AcDbObjectId>()) {
        auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(blockId));
        if (!block || Gone(blockId)) continue;
        bool space = blockId == m_impl.modelSpace || blockId == m_impl.paperSpace;
        if (Gone(block->blockBeginId()) || Gone(block->blockEndId())) continue;
        AcDbObject* begin = DatabaseImpl::Peek(block->blockBeginId());
        // Before 2000 a file need not define the spaces' blocks.
        if (space && m_file.IsR12() && !DatabaseImpl::StubOf(begin)->fromFile) continue;
        WriteObject(*begin, "BLOCK");
        if (!space)
            for (AcDbObjectId id : block->entityIds()) WriteEntity(id);
        WriteObject(*DatabaseImpl::Peek(block->blockEndId()), "ENDBLK");
    }
    EndSection();
}

void Writer::Entities() {
    Section("ENTITIES");
    for (AcDbObjectId spaceId : {m_impl.modelSpace, m_impl.paperSpace}) {
        auto* space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(spaceId));
        if (!space) continue;
        for (AcDbObjectId id : space->entityIds()) WriteEntity(id);
    }
    EndSection();
}

void Writer::Objects() {
    if (m_file.IsR12()) return;
    Section("OBJECTS");
    if (!Gone(m_impl.namedObjects)) WriteObject(*DatabaseImpl::Peek(m_impl.namedObjects), "DICTIONARY");
    for (AcDbObjectId id : m_impl.ObjectOrder()) {
        if (id == m_impl.namedObjects || Gone(id) || m_tableObjects.count(id.stub())) continue;
        AcDbObject* object = DatabaseImpl::Peek(id);
        if (AcDbSymbolTable::cast(object) || AcDbSymbolTableRecord::cast(object)) continue;
        WriteObject(*object, TypeOf(*object));
    }
    EndSection();
}

bool Writer::Run() {
    Header();
    Classes();
    Tables();
    Blocks();
    Entities();
    Objects();
    for (const KeptSection& section : m_file.sections) {
        Section(section.name.c_str());
        for (const RawGroup& g : section.groups) m_out.Write(g.code, g.value);
        EndSection();
    }
    m_out.Write(0, "EOF");
    return m_out.Flush();
}

}  // namespace

Acad::ErrorStatus WriteStream(const AcDbDatabase& database, std::FILE* file) {
    try {
        Writer writer(database, file);
        if (!writer.Run()) return Acad::eFileSystemErr;
    } catch (const std::bad_alloc&) {
        return Acad::eOutOfMemory;
    }
    return std::fflush(file) == 0 ? Acad::eOk : Acad::eFileSystemErr;
}

Acad::ErrorStatus WriteFile(const AcDbDatabase& database, const std::filesystem::path& path, std::wstring& error) {
    FileReplacement replacement(path);
    if (!replacement.Stream()) {
        error = replacement.Error();
        return Acad::eCantOpenFile;
    }
    Acad::ErrorStatus es = WriteStream(database, replacement.Stream());
    if (es != Acad::eOk) {
        error = FromUtf8(path.string()) + L": the drawing could not be written (" + FromUtf8(std::strerror(errno)) +
                L"); the file is unchanged";
        return es;
    }
    if (!replacement.Commit()) {
        error = replacement.Error();
        return Acad::eFileAccessErr;
    }
    return Acad::eOk;
}

}  // namespace cadhost::dxf
