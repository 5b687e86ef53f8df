// Reads the sections of a DXF file into a database: header variables,
// classes, tables, blocks, entities, objects, and sections the host keeps
// as they are.
#include <adslib.h>
#include <dbdict.h>
#include <dbents.h>
#include <dbsymtb.h>

#include <cerrno>
#include <cstring>
#include <memory>
#include <unordered_map>
#include <vector>

#include "ads/Resbuf.h"
#include "core/Utf8.h"
#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "db/ObjectExtras.h"
#include "dxf/DxfFiles.h"
#include "dxf/GroupReader.h"
#include "dxf/ReadStates.h"
#include "dxf/TextCodec.h"
#include "dxf/Values.h"
#include "files/RegularFile.h"

namespace cadhost::dxf {
namespace {

enum class Kind { kEntity, kObject, kRecord, kTable };

// Names compare as the tables compare them: without regard to case.
std::wstring Key(std::string_view utf8) { return AcDbSymbolTable::IndexKey(FromUtf8(utf8)); }

// Groups of one object, their values in one buffer.
struct StoredGroup {
    int code;
    int line;
    uint32_t offset;
    uint32_t length;
};

class Reader final : public ObjectReader {
public:
    Reader(std::FILE* file, AcDbDatabase& db)
        : m_in(file), m_db(db), m_impl(db.impl()), m_file(m_impl.file), m_codec(std::make_unique<TextCodec>(false, "")) {}

    void Run();

    // ObjectReader
    double Real(const Group& g) override {
        double value;
        if (!ParseReal(g.value, value)) Fail(g, "group " + std::to_string(g.code) + " needs a number, not \"" + Shown(g.value) + "\"");
        return value;
    }
    long long Integer(const Group& g) override {
        long long value;
        if (!ParseInteger(g.value, value)) {
            // Some writers give whole numbers with a fraction.
            double real;
            if (ParseReal(g.value, real) && real == static_cast<double>(static_cast<long long>(real)))
                return static_cast<long long>(real);
            Fail(g, "group " + std::to_string(g.code) + " needs a whole number, not \"" + Shown(g.value) + "\"");
        }
        return value;
    }
    std::string Text(const Group& g) override { return m_codec->Decode(g.value); }
    std::string Decode(std::string_view raw) override { return m_codec->Decode(raw); }
    AcDbObjectId Id(const Group& g) override {
        uint64_t handle;
        if (!ParseHandle(g.value, handle)) Fail(g, "group " + std::to_string(g.code) + " needs a handle, not \"" + Shown(g.value) + "\"");
        return handle == 0 ? AcDbObjectId() : AcDbObjectId(m_impl.StubFor(handle));
    }
    AcDbObjectId BlockByName(const std::string& utf8Name) override;
    AcDbDatabase& Database() override { return m_db; }
    const FileState& File() const override { return m_file; }
    [[noreturn]] void Fail(const Group& g, const std::string& why) override {
        throw FileError(g.line > 0 ? g.line : m_in.line(), why);
    }
    void Skip(int slots) override { m_count += static_cast<uint32_t>(slots); }
    void PassMarker(std::string_view subclass) override {
        if (m_file.IsR12()) return;
        size_t j = m_nextMarker;
        while (j < m_markers.size() && m_markers[j] != subclass) ++j;
        if (j == m_markers.size()) return;
        m_count += static_cast<uint32_t>(j - m_nextMarker + 1);
        m_nextMarker = j + 1;
    }

private:
    static std::string Shown(std::string_view value) {
        std::string shown(value.substr(0, 40));
        for (char& c : shown)
            if (static_cast<unsigned char>(c) < 0x20) c = '?';
        return value.size() > 40 ? shown + "..." : shown;
    }

    Group Expect(int code, const char* what);
    void ReadHeader();
    void ReadRaw(std::vector<RawGroup>& into);
    void ReadTables();
    void ReadBlocks();
    void ReadEntities();
    void ReadObjects();
    // After the last section: what every drawing has, made where the file
    // lacks it, and the header values the database keeps.
    void Finish();
    AcDbObjectId EnsureDrawingBasics();  // answers layer 0
    void CompleteBlocks(AcDbObjectId layerZero);
    void TakeHeaderValues(AcDbObjectId layerZero);
    void SetCoordinateSystems(const AcGePoint3d (&ucs)[6]);

    // Reads the object that starts with "0 type" (already read); answers it
    // closed, in the database.
    AcDbObject* ReadObject(const std::string& type, Kind kind, int line);
    // What the groups every object shares say of the object being read, and
    // how far its reading has come.
    struct Frame {
        const ClassIo* io = nullptr;  // the class that reads it; none: everything is kept
        AcDbObject* object = nullptr;
        void* state = nullptr;  // the class's read struct, if it keeps one
        bool isEntity = false;
        int handleCode = 5;
        uint64_t handle = 0;
        bool hasHandle = false, handleGroup = false, handleLate = false, layerGroup = false;
        size_t dictionaryGroup = 0;  // the 102 that opens it; the number of groups when there is none
        bool dictionaryLate = false;
        bool layerPending = false, handleSeen = false, markerSeen = false, layerSeen = false;
        bool entityMarkerCounted = false;
    };
    // The framing stage: the object, made for its class or kept whole, where
    // its handle and extension dictionary stand, its markers, and the groups
    // the reader takes itself (extended data, applications' groups, handle,
    // owner, markers, an entity's layer); true when the group was taken.
    AcDbObject* NewObject(const std::string& type, Kind kind, const ClassIo* registered, const ClassIo*& io);
    void FindHandle(Frame& f);
    void FindDictionary(Frame& f);
    void StartMarkers(const Frame& f);
    bool ReadApplicationGroups(size_t& i, const Frame& f);
    bool ReadSharedGroup(const Group& g, Frame& f);
    bool ReadMarker(const Group& g, Frame& f);
    bool ReadEntityGroup(const Group& g, Frame& f);
    // The class stage: the group handed to the object's class, and counted
    // or kept by what it did; answers the code of the last group it took.
    int ReadClassGroup(const Group& g, int previous, const Frame& f);
    // An entity and what follows it up to its SEQEND.
    AcDbObject* ReadEntity(const std::string& type, int line, AcDbObjectId owner, bool ownerFromFile);
    void ReadFollowers(AcDbObject* parent);
    void CollectGroups();
    Group At(size_t i) const {
        const StoredGroup& s = m_groups[i];
        return Group{s.code, std::string_view(m_arena).substr(s.offset, s.length), s.line};
    }
    // Reads the extended data that starts at from, up to the next group of
    // the object's own or its end (end: the index after it), after any the
    // object has already; false, leaving the object alone, when it does not
    // read.
    bool ReadXData(size_t from, size_t& end, AcDbObject& object);
    // The index of the "102 }" that closes the application's group opened
    // at i, or the number of groups when the 102 at i opens nothing that
    // closes.
    size_t ApplicationEnd(size_t i) const;
    AcDbObjectId LayerNamed(std::string_view raw);
    AcDbObjectId NewRecord(AcDbObjectId tableId, AcDbSymbolTableRecord* record, const std::wstring& name);
    AcDbObjectId EnsureTable(AcDbObjectId& tableId, AcDbSymbolTable* table, const char* name);
    void StartCodec();

    GroupReader m_in;
    AcDbDatabase& m_db;
    DatabaseImpl& m_impl;
    FileState& m_file;
    std::unique_ptr<TextCodec> m_codec;
    bool m_sawHeader = false;
    bool m_sawMarkers = false;

    std::vector<StoredGroup> m_groups;
    std::string m_arena;
    uint32_t m_count = 0;
    KeptGroups m_kept;
    ReadStates m_states;
    std::vector<std::string_view> m_markers;  // of the object being read
    size_t m_nextMarker = 0;
    // What the object's shared groups said.
    AcDbObjectId m_owner;
    bool m_hadOwner = false;
    bool m_attributesFollow = false;

    std::unordered_map<std::wstring, AcDbObjectId> m_layers;  // by Key
    std::unordered_map<std::wstring, AcDbObjectId> m_blocks;
    std::string m_lastLayerRaw;
    AcDbObjectId m_lastLayer;
    std::vector<std::pair<std::string, std::string>> m_headerValues;  // name, first value
};

Group Reader::Expect(int code, const char* what) {
    Group g;
    if (!m_in.Next(g)) throw FileError(m_in.line(), std::string("the file ends where ") + what + " was expected");
    if (g.code != code) throw FileError(g.line, std::string(what) + " was expected, not group " + std::to_string(g.code) + " \"" + Shown(g.value) + "\"");
    return g;
}

void Reader::StartCodec() { m_codec = std::make_unique<TextCodec>(m_file.IsUtf8(), m_file.codePage); }

void Reader::Run() {
    Group g;
    bool sawEof = false;
    while (m_in.Next(g)) {
        if (g.code == 999) continue;  // a comment
        if (g.code != 0) throw FileError(g.line, "a section was expected, not group " + std::to_string(g.code) + " \"" + Shown(g.value) + "\"");
        if (g.value == "EOF") {
            sawEof = true;
            break;
        }
        if (g.value != "SECTION") throw FileError(g.line, "a section was expected, not \"" + Shown(g.value) + "\"");
        Group name = Expect(2, "the name of the section");
        std::string section(name.value);
        if (section == "HEADER") ReadHeader();
        else if (section == "CLASSES") {
            m_file.hasClasses = true;
            ReadRaw(m_file.classes);
        } else if (section == "TABLES") ReadTables();
        else if (section == "BLOCKS") ReadBlocks();
        else if (section == "ENTITIES") ReadEntities();
        else if (section == "OBJECTS") {
            m_file.hasObjects = true;
            ReadObjects();
        } else {
            KeptSection kept;
            kept.name = section;
            ReadRaw(kept.groups);
            m_file.sections.push_back(std::move(kept));
        }
    }
    if (!sawEof) throw FileError(m_in.line(), "the file ends without its end marker (0 EOF): it is cut short");
    Finish();
}

void Reader::ReadRaw(std::vector<RawGroup>& into) {
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside a section");
        if (g.code == 0 && g.value == "ENDSEC") return;
        if (g.code == 0 && (g.value == "SECTION" || g.value == "EOF"))
            throw FileError(g.line, "a section ends without ENDSEC");
        into.push_back(RawGroup{g.code, std::string(g.value)});
    }
}

void Reader::ReadHeader() {
    m_sawHeader = true;
    Group g;
    HeaderVariable* current = nullptr;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside its header");
        if (g.code == 0) {
            if (g.value == "ENDSEC") break;
            throw FileError(g.line, "the header ends without ENDSEC");
        }
        if (g.code == 9) {
            m_file.header.push_back(HeaderVariable{std::string(g.value), {}});
            current = &m_file.header.back();
            continue;
        }
        if (!current) throw FileError(g.line, "a header value comes before any variable name");
        current->groups.push_back(RawGroup{g.code, std::string(g.value)});
    }
    for (const HeaderVariable& v : m_file.header) {
        if (v.groups.empty()) continue;
        if (v.name == "$ACADVER") m_file.version = v.groups[0].value;
        else if (v.name == "$DWGCODEPAGE") m_file.codePage = v.groups[0].value;
        else if (v.name == "$HANDLING") {
            long long handling = 1;
            if (ParseInteger(v.groups[0].value, handling)) m_file.handles = handling != 0;
        } else if (v.name == "$HANDSEED") {
            uint64_t next;
            if (ParseHandle(v.groups[0].value, next)) m_file.nextHandle = next;
        }
    }
    // Releases before 2000 may name no handles: $HANDLING says so.
    if (!m_file.IsR12()) m_file.handles = true;
    StartCodec();
}

void Reader::CollectGroups() {
    m_groups.clear();
    m_arena.clear();
    Group g;
    while (m_in.Next(g)) {
        if (g.code == 0) {
            m_in.PushBack();
            return;
        }
        if (m_arena.size() + g.value.size() > 0xFFFFFFF0u) throw FileError(g.line, "an object is too large");
        m_groups.push_back(StoredGroup{g.code, g.line, static_cast<uint32_t>(m_arena.size()),
                                       static_cast<uint32_t>(g.value.size())});
        m_arena.append(g.value);
    }
    throw FileError(m_in.line(), "the file ends inside an object: it is cut short");
}

AcDbObject* Reader::ReadObject(const std::string& type, Kind kind, int line) {
    CollectGroups();
    m_count = 0;
    m_kept.clear();
    m_owner = AcDbObjectId();
    m_hadOwner = false;
    m_attributesFollow = false;

    Frame f;
    const ClassIo* registered = FindClass(type);
    std::unique_ptr<AcDbObject> owned(NewObject(type, kind, registered, f.io));
    f.object = owned.get();
    f.state = m_states.Fresh(f.io ? f.io->StateKind() : nullptr);
    f.isEntity = kind == Kind::kEntity;
    f.handleCode = registered ? registered->handleCode : 5;
    // Its handle first, so that it has an id while its groups are read.
    FindHandle(f);
    FindDictionary(f);

    AcDbObjectId id;
    Acad::ErrorStatus es = f.hasHandle ? m_impl.Add(id, f.object, f.handle) : m_impl.AddUnnamed(id, f.object);
    if (es == Acad::eDuplicateKey)
        throw FileError(line, "handle " + FormatHandle(f.handle) + " of this " + type + " is used by an object before it");
    if (es != Acad::eOk) throw FileError(line, "the " + type + " cannot be added: " + ToUtf8(acadErrorStatusText(es)));
    AcDbObject* object = owned.release();
    id.stub()->fromFile = true;

    StartMarkers(f);
    // The writer writes a handle and an entity's layer also where the file
    // had none, and a late handle ahead: they are counted where they will
    // stand.
    bool writesHandle = !m_file.IsR12() || (m_file.handles && kind != Kind::kTable);
    if (writesHandle && (!f.handleGroup || f.handleLate)) ++m_count;
    if (f.dictionaryGroup != m_groups.size() && f.dictionaryLate) m_count += 3;
    f.layerPending = f.isEntity && !f.layerGroup;
    // The code of the last group the class took, else -1: a Y or a text's
    // next part continues it across groups kept or taken by the reader in
    // between, as its writer writes them together.
    int lastTaken = -1;
    for (size_t i = 0; i < m_groups.size(); ++i) {
        if (ReadApplicationGroups(i, f)) continue;
        Group g = At(i);
        if (ReadSharedGroup(g, f)) continue;
        lastTaken = ReadClassGroup(g, lastTaken, f);
    }
    if (f.io && f.io->finish) f.io->finish.call(*object, f.state, *this);
    if (!m_kept.empty()) object->mutableExtras().kept = std::move(m_kept);
    m_kept = KeptGroups();
    if (!m_hadOwner && !m_file.IsR12()) object->setFileGroups(object->fileGroups() | 0x8000);
    if (f.isEntity && !f.layerSeen) static_cast<AcDbEntity*>(object)->setLayer(LayerNamed("0"));
    object->setOwnerId(m_owner);
    object->close();
    return object;
}

AcDbObject* Reader::NewObject(const std::string& type, Kind kind, const ClassIo* registered, const ClassIo*& io) {
    // The class that reads it, or none: then everything is kept.
    io = nullptr;
    AcDbObject* object = nullptr;
    if (kind == Kind::kTable) {
        // A table the host models is named by the type of its records.
        const ClassIo* records = nullptr;
        for (size_t i = 0; i < m_groups.size() && !records; ++i)
            if (m_groups[i].code == 2) {
                records = FindClass(At(i).value);
                if (!records) break;
            }
        if (records && records->createTable && !(records->recordsFrom2000 && m_file.IsR12()))
            object = records->createTable();
        if (object) io = registered;
        else object = new KeptObject("TABLE");
        return object;
    }
    io = registered;
    bool fits = io && io->create && io->read &&
                (kind == Kind::kEntity ? io->isEntity
                                       : !io->isEntity && (kind == Kind::kRecord) == (io->createTable != nullptr));
    if (!fits) io = nullptr;
    if (io) object = io->create();
    if (!object) {
        io = nullptr;
        object = kind == Kind::kEntity ? static_cast<AcDbObject*>(new KeptEntity(type))
                                       : static_cast<AcDbObject*>(new KeptObject(type));
    }
    return object;
}

void Reader::FindHandle(Frame& f) {
    // A handle after the owner or an application's group is late: the
    // writer puts it before them.
    bool markerPassed = false, ownerOrApplication = false;
    for (size_t i = 0; i < m_groups.size(); ++i) {
        if (m_groups[i].code == 8) f.layerGroup = true;
        if (m_groups[i].code == 100) markerPassed = true;
        if (markerPassed || f.handleGroup) continue;
        if (m_groups[i].code == 330 || m_groups[i].code == 102) ownerOrApplication = true;
        if (m_groups[i].code == f.handleCode) {
            f.handleLate = ownerOrApplication;
            Group g = At(i);
            if (!ParseHandle(g.value, f.handle)) Fail(g, "a handle was expected, not \"" + Shown(g.value) + "\"");
            f.hasHandle = f.handle != 0;
            f.handleGroup = true;
        }
    }
}

void Reader::FindDictionary(Frame& f) {
    // The writer gives the extension dictionary as three groups after the
    // handle and the applications' groups, ahead of the owner and the first
    // marker; the first group of a file ahead of its first marker that names
    // one is it, and late when other groups come before it. One after a
    // marker is not the object's header and is kept as it stands.
    f.dictionaryGroup = m_groups.size();
    f.dictionaryLate = false;
    if (m_file.IsR12()) return;
    bool other = false, handleMet = false;
    for (size_t i = 0; i < m_groups.size() && f.dictionaryGroup == m_groups.size(); ++i) {
        int code = m_groups[i].code;
        if (code == 100) break;
        if (code == 102) {
            size_t end = ApplicationEnd(i);
            if (end == m_groups.size()) {
                other = true;
                continue;
            }
            if (At(i).value == "{ACAD_XDICTIONARY") {
                for (size_t k = i + 1; k < end; ++k)
                    if (m_groups[k].code == 360) f.dictionaryGroup = i;
                f.dictionaryLate = other;
            }
            i = end;
            continue;
        }
        if (code == f.handleCode && !handleMet) {
            handleMet = true;
            continue;
        }
        other = true;
    }
}

void Reader::StartMarkers(const Frame& f) {
    // The subclass markers the object's writer writes, in order; from 2000
    // on the reader counts them, and counts one the file left out where a
    // later one shows that it was passed.
    m_markers.clear();
    if (f.isEntity) m_markers.push_back("AcDbEntity");
    for (std::string_view list = f.io ? f.io->markers : std::string_view(); !list.empty();) {
        size_t bar = list.find('|');
        m_markers.push_back(list.substr(0, bar));
        list = bar == std::string_view::npos ? std::string_view() : list.substr(bar + 1);
    }
    m_nextMarker = 0;
}

bool Reader::ReadApplicationGroups(size_t& i, const Frame& f) {
    Group g = At(i);
    if (g.code >= 1000) {
        if (g.code == 1001 || g.code == 999) {
            // The object's own groups after extended data are still its
            // own; extended data is written after them.
            size_t end = i;
            if (ReadXData(i, end, *f.object)) {
                i = end - 1;
                return true;
            }
            // Extended data that does not read is kept as it stands.
            size_t k = i;
            for (; k < m_groups.size() && m_groups[k].code >= 1000; ++k) {
                Group x = At(k);
                m_kept.Add(m_count, x.code, x.value);
            }
            i = k - 1;
            return true;
        }
        m_kept.Add(m_count, g.code, g.value);
        return true;
    }
    if (g.code != 102) return false;
    // An application's group, "{NAME" to "}": the extension dictionary is
    // the host's; any other is kept whole. A 102 that opens nothing, or
    // opens and never closes, is kept alone.
    size_t end = ApplicationEnd(i);
    if (end == m_groups.size()) {
        m_kept.Add(m_count, g.code, g.value);
        return true;
    }
    if (i == f.dictionaryGroup) {
        for (size_t k = i + 1; k < end; ++k) {
            Group inner = At(k);
            if (inner.code == 360) f.object->mutableExtras().extensionDictionary = Id(inner);
        }
        if (!f.dictionaryLate) m_count += 3;
    } else {
        for (size_t k = i; k <= end; ++k) {
            Group inner = At(k);
            m_kept.Add(m_count, inner.code, inner.value);
        }
    }
    i = end;
    return true;
}

bool Reader::ReadSharedGroup(const Group& g, Frame& f) {
    if (!f.markerSeen && !f.handleSeen && g.code == f.handleCode) {
        f.handleSeen = true;
        if (!f.handleLate) ++m_count;
        return true;
    }
    if (!f.markerSeen && !m_hadOwner && g.code == 330 && !m_file.IsR12()) {  // files before 2000 name no owners
        m_hadOwner = true;
        m_owner = Id(g);
        ++m_count;
        return true;
    }
    if (f.layerPending && !(g.code == 100 && g.value == "AcDbEntity")) {
        ++m_count;
        f.layerPending = false;
    }
    if (g.code == 100) {
        f.markerSeen = true;
        m_sawMarkers = true;
        if (!m_file.IsR12()) return ReadMarker(g, f);
    }
    if (f.isEntity) return ReadEntityGroup(g, f);
    return false;
}

bool Reader::ReadMarker(const Group& g, Frame& f) {
    if (f.entityMarkerCounted && g.value == "AcDbEntity") {
        f.entityMarkerCounted = false;  // counted at the layer that came first
        return true;
    }
    size_t j = m_nextMarker;
    while (j < m_markers.size() && m_markers[j] != g.value) ++j;
    if (j == m_markers.size()) {
        m_kept.Add(m_count, g.code, g.value);  // a subclass the host does not read
        return true;
    }
    m_count += static_cast<uint32_t>(j - m_nextMarker);
    m_nextMarker = j + 1;
    // The class still sees its markers, which open its parts.
    if (f.io && !(f.isEntity && j == 0)) f.io->read.call(*f.object, f.state, g, *this);
    ++m_count;
    return true;
}

bool Reader::ReadEntityGroup(const Group& g, Frame& f) {
    if (g.code == 100 && g.value == "AcDbEntity") return true;  // files before 2000 write no markers
    if (g.code == 66 && g.value.find('1') != std::string_view::npos) {
        long long follow = 0;
        if (ParseInteger(g.value, follow) && follow == 1) m_attributesFollow = true;
    }
    if (g.code == 8 && !f.layerSeen) {
        // The writer puts the entity's marker ahead of its layer, where a
        // file may have none or give it later.
        if (m_nextMarker == 0 && !m_file.IsR12()) {
            PassMarker("AcDbEntity");
            f.entityMarkerCounted = true;
        }
        f.layerSeen = true;
        static_cast<AcDbEntity*>(f.object)->setLayer(LayerNamed(g.value));
        ++m_count;
        return true;
    }
    return false;
}

int Reader::ReadClassGroup(const Group& g, int previous, const Frame& f) {
    previousTaken = previous;
    Use use = f.io ? f.io->read.call(*f.object, f.state, g, *this) : Use::kKept;
    if (g.code == 100 && use == Use::kKnown) use = Use::kCounted;  // a marker in a file before 2000: none is written
    // A continuation that does not follow its first part counts on its
    // own, as its writer will count it.
    if (use == Use::kContinued && !ContinuesGroup(previous, g.code)) use = Use::kKnown;
    if (use == Use::kKnown) ++m_count;  // kCounted and kContinued stand in places counted before
    else if (use == Use::kKept) m_kept.Add(m_count, g.code, g.value);
    else if (use == Use::kKeptAtEnd) m_kept.Add(KeptGroups::kAtEnd, g.code, g.value);
    return use != Use::kKept && use != Use::kKeptAtEnd ? g.code : previous;
}

size_t Reader::ApplicationEnd(size_t i) const {
    std::string_view opening = At(i).value;
    if (opening.empty() || opening[0] != '{') return m_groups.size();
    for (size_t k = i + 1; k < m_groups.size(); ++k) {
        if (m_groups[k].code == 102) return At(k).value == "}" ? k : m_groups.size();
    }
    return m_groups.size();
}

bool Reader::ReadXData(size_t from, size_t& end, AcDbObject& object) {
    // Groups from the first 1001 on, application by application.
    resbuf* head = nullptr;
    resbuf** tail = &head;
    auto fail = [&] {
        if (head) acutRelRb(head);
        return false;
    };
    size_t i = from;
    for (; i < m_groups.size(); ++i) {
        Group g = At(i);
        if (g.code < 1000) break;
        if (g.code > 1071) return fail();
        resbuf* rb = acutNewRb(g.code);
        *tail = rb;
        tail = &rb->rbnext;
        switch (g.code) {
        case 1000: case 1001: case 1002: case 1003: case 1005:
            rb->resval.rstring = DuplicateText(FromUtf8(Text(g)).c_str());
            break;
        case 1004: {
            // Binary data as hexadecimal text.
            std::string bytes;
            for (size_t k = 0; k + 1 < g.value.size(); k += 2) {
                int hi = std::isxdigit(static_cast<unsigned char>(g.value[k])) ? std::stoi(std::string(g.value.substr(k, 1)), nullptr, 16) : -1;
                int lo = std::isxdigit(static_cast<unsigned char>(g.value[k + 1])) ? std::stoi(std::string(g.value.substr(k + 1, 1)), nullptr, 16) : -1;
                if (hi < 0 || lo < 0) return fail();
                bytes += static_cast<char>(hi * 16 + lo);
            }
            if (g.value.size() % 2 != 0 || bytes.size() > 32767) return fail();
            rb->resval.rbinary.clen = static_cast<short>(bytes.size());
            rb->resval.rbinary.buf = static_cast<char*>(std::malloc(bytes.size() + 1));
            if (!rb->resval.rbinary.buf) return fail();
            std::memcpy(rb->resval.rbinary.buf, bytes.data(), bytes.size());
            break;
        }
        case 1010: case 1011: case 1012: case 1013: {
            double v[3] = {0, 0, 0};
            if (!ParseReal(g.value, v[0])) return fail();
            // Y and Z follow under codes 10 and 20 higher.
            for (int axis = 1; axis < 3 && i + 1 < m_groups.size() && m_groups[i + 1].code == g.code + 10 * axis; ++axis) {
                if (!ParseReal(At(i + 1).value, v[axis])) return fail();
                ++i;
            }
            for (int k = 0; k < 3; ++k) rb->resval.rpoint[k] = v[k];
            break;
        }
        case 1040: case 1041: case 1042:
            if (!ParseReal(g.value, rb->resval.rreal)) return fail();
            break;
        case 1070: {
            long long v;
            if (!ParseInteger(g.value, v) || v < -32768 || v > 32767) return fail();
            rb->resval.rint = static_cast<short>(v);
            break;
        }
        case 1071: {
            long long v;
            if (!ParseInteger(g.value, v)) return fail();
            rb->resval.rlong = static_cast<Adesk::Int32>(v);
            break;
        }
        default: return fail();  // a Y or Z without its X, or a code extended data has not
        }
    }
    if (!head || head->restype != 1001) return fail();
    // A second run, parted from the first by the object's own groups, joins
    // it: the writer writes all of an object's extended data as one run
    // after its groups, and that run must read back to the same data.
    resbuf** last = &object.mutableExtras().xdata;
    while (*last) last = &(*last)->rbnext;
    *last = head;
    end = i;
    return true;
}

AcDbObjectId Reader::NewRecord(AcDbObjectId tableId, AcDbSymbolTableRecord* record, const std::wstring& name) {
    record->setName(name.c_str());
    AcDbObjectId id;
    m_impl.AddUnnamed(id, record);
    record->setOwnerId(tableId);
    record->close();
    if (auto* table = AcDbSymbolTable::cast(DatabaseImpl::Peek(tableId))) table->adoptRecord(id, name);
    return id;
}

AcDbObjectId Reader::EnsureTable(AcDbObjectId& tableId, AcDbSymbolTable* table, const char*) {
    if (!tableId.isNull()) {
        delete table;
        return tableId;
    }
    m_impl.AddUnnamed(tableId, table);
    table->close();
    return tableId;
}

AcDbObjectId Reader::LayerNamed(std::string_view raw) {
    if (!m_lastLayer.isNull() && raw == m_lastLayerRaw) return m_lastLayer;
    std::string name = Decode(raw);
    if (name.empty()) name = "0";
    std::wstring key = Key(name);
    auto it = m_layers.find(key);
    AcDbObjectId id;
    if (it != m_layers.end()) {
        id = it->second;
    } else {
        // An entity on a layer the file does not define: the layer is made.
        EnsureTable(m_impl.layerTable, new AcDbLayerTable, "LAYER");
        id = NewRecord(m_impl.layerTable, new AcDbLayerTableRecord, FromUtf8(name));
        m_layers.emplace(key, id);
    }
    m_lastLayerRaw.assign(raw);
    m_lastLayer = id;
    return id;
}

AcDbObjectId Reader::BlockByName(const std::string& utf8Name) {
    std::wstring key = Key(utf8Name);
    if (m_file.IsR12() && (key == Key(m_file.r12ModelSpace) || key == L"$MODEL_SPACE")) key = L"*MODEL_SPACE";
    if (m_file.IsR12() && (key == Key(m_file.r12PaperSpace) || key == L"$PAPER_SPACE")) key = L"*PAPER_SPACE";
    auto it = m_blocks.find(key);
    if (it != m_blocks.end()) return it->second;
    EnsureTable(m_impl.blockTable, new AcDbBlockTable, "BLOCK_RECORD");
    std::wstring name = key == L"*MODEL_SPACE" ? std::wstring(ACDB_MODEL_SPACE)
                        : key == L"*PAPER_SPACE" ? std::wstring(ACDB_PAPER_SPACE)
                                                 : FromUtf8(utf8Name);
    AcDbObjectId id = NewRecord(m_impl.blockTable, new AcDbBlockTableRecord, name);
    m_blocks.emplace(key, id);
    return id;
}

void Reader::ReadTables() {
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside its tables");
        if (g.code != 0) throw FileError(g.line, "a table was expected, not group " + std::to_string(g.code));
        if (g.value == "ENDSEC") return;
        if (g.value != "TABLE") throw FileError(g.line, "a table was expected, not \"" + Shown(g.value) + "\"");
        AcDbObject* tableObject = ReadObject("TABLE", Kind::kTable, g.line);
        AcDbObjectId tableId = tableObject->objectId();
        auto* modelled = AcDbSymbolTable::cast(tableObject);
        bool layers = AcDbLayerTable::cast(tableObject) != nullptr;
        bool blocks = AcDbBlockTable::cast(tableObject) != nullptr;
        bool apps = AcDbRegAppTable::cast(tableObject) != nullptr;
        AcDbObjectId& slot = layers ? m_impl.layerTable : blocks ? m_impl.blockTable : m_impl.regAppTable;
        if (modelled && !slot.isNull()) throw FileError(g.line, "a second table of the same kind");
        if (modelled) slot = tableId;
        m_file.tables.push_back(tableId);
        for (;;) {
            if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside a table");
            if (g.code != 0) throw FileError(g.line, "a table record was expected, not group " + std::to_string(g.code));
            if (g.value == "ENDTAB") {
                CollectGroups();  // nothing is expected after ENDTAB
                break;
            }
            if (g.value == "ENDSEC" || g.value == "TABLE") throw FileError(g.line, "a table ends without ENDTAB");
            std::string type(g.value);
            AcDbObject* record = ReadObject(type, modelled ? Kind::kRecord : Kind::kObject, g.line);
            record->setOwnerId(tableId);
            if (modelled) {
                auto* named = AcDbSymbolTableRecord::cast(record);
                bool right = named && ((layers && AcDbLayerTableRecord::cast(record)) ||
                                       (blocks && AcDbBlockTableRecord::cast(record)) ||
                                       (apps && AcDbRegAppTableRecord::cast(record)));
                if (!right) throw FileError(g.line, "a " + type + " record does not belong in this table");
                if (named->name().empty()) throw FileError(g.line, "a " + type + " record has no name");
                modelled->adoptRecord(record->objectId(), named->name());
                std::wstring key = AcDbSymbolTable::IndexKey(named->name());
                if (layers) m_layers.emplace(key, record->objectId());
                if (blocks) m_blocks.emplace(key, record->objectId());
            } else {
                static_cast<KeptObject*>(tableObject)->children().push_back(record->objectId());
            }
        }
    }
}

void Reader::ReadBlocks() {
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside its blocks");
        if (g.code != 0) throw FileError(g.line, "a block was expected, not group " + std::to_string(g.code));
        if (g.value == "ENDSEC") return;
        if (g.value != "BLOCK") throw FileError(g.line, "a block was expected, not \"" + Shown(g.value) + "\"");
        int blockLine = g.line;
        AcDbObject* begin = ReadObject("BLOCK", Kind::kEntity, g.line);
        static const BlockBeginRead kNone;
        const BlockBeginRead* read = m_states.Current<BlockBeginRead>();
        if (!read) read = &kNone;
        std::string name = read->name;
        int flags = read->flags;
        AcGePoint3d origin = read->origin;
        std::wstring path = FromUtf8(read->path);
        if (name.empty()) throw FileError(blockLine, "a block has no name");
        // The record: the block's owner in files from 2000 on, else by name.
        AcDbBlockTableRecord* record = nullptr;
        AcDbObjectId recordId;
        if (!m_owner.isNull()) {
            record = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(m_owner));
            if (record) recordId = m_owner;
        }
        if (!record) {
            recordId = BlockByName(name);
            record = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(recordId));
        }
        if (!record) throw FileError(blockLine, "the block " + name + " has no record");
        if (!record->blockBeginId().isNull())
            throw FileError(blockLine, "the block " + name + " is defined twice");
        if (m_file.IsR12()) {
            std::wstring key = Key(name);
            auto model = m_blocks.find(L"*MODEL_SPACE"), paper = m_blocks.find(L"*PAPER_SPACE");
            if (model != m_blocks.end() && recordId == model->second && key != L"*MODEL_SPACE") m_file.r12ModelSpace = name;
            if (paper != m_blocks.end() && recordId == paper->second && key != L"*PAPER_SPACE") m_file.r12PaperSpace = name;
        }
        AcDbObject* writable = nullptr;
        if (DatabaseImpl::Open(writable, recordId, AcDb::kForWrite, true, nullptr) != Acad::eOk)
            throw FileError(blockLine, "the record of the block " + name + " is in use");
        record->setBlockFlags(static_cast<Adesk::Int16>(flags));
        record->setIsUnloaded((flags & 4) && !(flags & 32));
        record->setOrigin(origin);
        record->setPathName(path.c_str());
        record->setBlockBeginId(begin->objectId());
        record->close();
        begin->setOwnerId(recordId);
        for (;;) {
            if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside the block " + name);
            if (g.code != 0) throw FileError(g.line, "an entity was expected, not group " + std::to_string(g.code));
            if (g.value == "ENDBLK") {
                AcDbObject* end = ReadObject("ENDBLK", Kind::kEntity, g.line);
                end->setOwnerId(recordId);
                record->setBlockEndId(end->objectId());
                break;
            }
            if (g.value == "ENDSEC" || g.value == "BLOCK" || g.value == "EOF")
                throw FileError(g.line, "the block " + name + " ends without ENDBLK");
            AcDbObject* entity = ReadEntity(std::string(g.value), g.line, recordId, false);
            record->adoptEntity(entity->objectId());
        }
    }
}

AcDbObject* Reader::ReadEntity(const std::string& type, int line, AcDbObjectId owner, bool ownerFromFile) {
    AcDbObject* entity = ReadObject(type, Kind::kEntity, line);
    if (!ownerFromFile) entity->setOwnerId(owner);
    if (auto* reference = AcDbBlockReference::cast(entity)) {
        if (auto* block = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(reference->blockTableRecord())))
            block->noteReference(entity->objectId());
    }
    // Only block references and entities kept as they came hold followers;
    // what follows any other entity stands on its own.
    if (m_attributesFollow && (AcDbBlockReference::cast(entity) || KeptEntity::cast(entity))) ReadFollowers(entity);
    return entity;
}

void Reader::ReadFollowers(AcDbObject* parent) {
    auto* reference = AcDbBlockReference::cast(parent);
    auto* kept = KeptEntity::cast(parent);
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends before the end of an entity's attributes");
        if (g.code != 0) throw FileError(g.line, "an entity was expected, not group " + std::to_string(g.code));
        std::string type(g.value);
        bool end = type == "SEQEND";
        bool fits = end || (reference && type == "ATTRIB") || (kept && type != "ENDSEC" && type != "ENDBLK" &&
                                                               type != "EOF" && type != "BLOCK");
        if (!fits) {
            // A sequence without its end marker: what follows is on its own.
            m_in.PushBack();
            return;
        }
        AcDbObject* child = ReadObject(type, Kind::kEntity, g.line);
        if (!child->ownerId().isNull() && child->ownerId() != parent->objectId())
            child->mutableExtras().fileOwner = child->ownerId();
        child->setOwnerId(parent->objectId());
        if (reference && end) reference->setSequenceEnd(child->objectId());
        else if (reference) reference->adoptAttribute(child->objectId());
        else kept->children().push_back(child->objectId());
        if (end) return;
    }
}

void Reader::ReadEntities() {
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside its entities");
        if (g.code != 0) throw FileError(g.line, "an entity was expected, not group " + std::to_string(g.code));
        if (g.value == "ENDSEC") return;
        if (g.value == "EOF" || g.value == "SECTION") throw FileError(g.line, "the entities end without ENDSEC");
        // Entities of this section lie in model space or, with 67 set, in
        // the current paper space; from 2000 on their owner says which.
        std::string type(g.value);
        AcDbObject* entity = ReadEntity(type, g.line, AcDbObjectId(), true);
        AcDbObjectId owner = entity->ownerId();
        auto* space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(owner));
        if (!space || !space->isLayout()) {
            bool paper = false;
            if (ObjectExtras* extras = entity->extras()) {
                KeptGroups::Cursor cursor(extras->kept);
                KeptGroup kg;
                while (cursor.Next(kg))
                    if (kg.code == 67) {
                        long long v = 0;
                        paper = ParseInteger(kg.value, v) && v == 1;
                    }
            }
            owner = BlockByName(paper ? "*Paper_Space" : "*Model_Space");
            entity->setOwnerId(owner);
            space = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(owner));
        }
        space->adoptEntity(entity->objectId());
    }
}

void Reader::ReadObjects() {
    Group g;
    for (;;) {
        if (!m_in.Next(g)) throw FileError(m_in.line(), "the file ends inside its objects");
        if (g.code != 0) throw FileError(g.line, "an object was expected, not group " + std::to_string(g.code));
        if (g.value == "ENDSEC") return;
        if (g.value == "EOF" || g.value == "SECTION") throw FileError(g.line, "the objects end without ENDSEC");
        AcDbObject* object = ReadObject(std::string(g.value), Kind::kObject, g.line);
        // The first dictionary that nothing owns is the named object
        // dictionary.
        if (m_impl.namedObjects.isNull() && object->ownerId().isNull() && AcDbDictionary::cast(object))
            m_impl.namedObjects = object->objectId();
    }
}

void Reader::Finish() {
    if (!m_sawHeader) {
        // A file without a header says nothing of its release: one that
        // marks subclasses is from 2000 on.
        m_file.version = m_sawMarkers ? "AC1015" : "AC1009";
        m_file.handles = true;
    }
    AcDbObjectId layerZero = EnsureDrawingBasics();
    CompleteBlocks(layerZero);
    TakeHeaderValues(layerZero);
    // Objects that came without a handle get one that no object has.
    m_impl.NameUnnamed();
}

AcDbObjectId Reader::EnsureDrawingBasics() {
    // What every drawing has, made where the file lacks it.
    EnsureTable(m_impl.blockTable, new AcDbBlockTable, "BLOCK_RECORD");
    EnsureTable(m_impl.layerTable, new AcDbLayerTable, "LAYER");
    EnsureTable(m_impl.regAppTable, new AcDbRegAppTable, "APPID");
    m_impl.modelSpace = BlockByName("*Model_Space");
    m_impl.paperSpace = BlockByName("*Paper_Space");
    AcDbObjectId layerZero = LayerNamed("0");
    if (m_impl.namedObjects.isNull()) {
        auto* dictionary = new AcDbDictionary;
        m_impl.AddUnnamed(m_impl.namedObjects, dictionary);
        dictionary->close();
    }
    if (auto* apps = AcDbRegAppTable::cast(DatabaseImpl::Peek(m_impl.regAppTable)); apps && !apps->has(L"ACAD")) {
        NewRecord(m_impl.regAppTable, new AcDbRegAppTableRecord, L"ACAD");
    }
    return layerZero;
}

void Reader::CompleteBlocks(AcDbObjectId layerZero) {
    // Blocks without a definition in the file get begin and end entities.
    auto* blocks = AcDbBlockTable::cast(DatabaseImpl::Peek(m_impl.blockTable));
    for (AcDbObjectId id : blocks->recordIds()) {
        auto* record = AcDbBlockTableRecord::cast(DatabaseImpl::Peek(id));
        if (!record) continue;
        if (record->blockBeginId().isNull()) {
            AcDbObjectId begin;
            auto* entity = new AcDbBlockBegin;
            m_impl.AddUnnamed(begin, entity);
            entity->setLayer(layerZero);
            entity->setOwnerId(id);
            entity->close();
            record->setBlockBeginId(begin);
        }
        if (record->blockEndId().isNull()) {
            AcDbObjectId end;
            auto* entity = new AcDbBlockEnd;
            m_impl.AddUnnamed(end, entity);
            entity->setLayer(layerZero);
            entity->setOwnerId(id);
            entity->close();
            record->setBlockEndId(end);
        }
    }
}

void Reader::TakeHeaderValues(AcDbObjectId layerZero) {
    // Header values the host keeps in the database.
    m_impl.clayer = layerZero;
    m_impl.currentSpace = m_impl.modelSpace;
    auto point = [](const HeaderVariable& v, AcGePoint3d& p) {
        bool any = false;
        for (const RawGroup& g : v.groups) {
            double value;
            if (g.code >= 10 && g.code <= 30 && g.code % 10 == 0 && ParseReal(g.value, value)) {
                p[static_cast<unsigned>(g.code / 10 - 1)] = value;
                any = true;
            }
        }
        return any;
    };
    AcGePoint3d ucs[6] = {AcGePoint3d::kOrigin, AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0),
                          AcGePoint3d::kOrigin, AcGePoint3d(1, 0, 0), AcGePoint3d(0, 1, 0)};
    const char* ucsNames[6] = {"$UCSORG", "$UCSXDIR", "$UCSYDIR", "$PUCSORG", "$PUCSXDIR", "$PUCSYDIR"};
    for (const HeaderVariable& v : m_file.header) {
        if (v.groups.empty()) continue;
        long long whole = 0;
        bool isWhole = ParseInteger(v.groups[0].value, whole);
        if (v.name == "$LUNITS" && isWhole && whole >= 1 && whole <= 5) m_impl.lunits = static_cast<Adesk::Int16>(whole);
        else if (v.name == "$LUPREC" && isWhole && whole >= 0 && whole <= 8) m_impl.luprec = static_cast<Adesk::Int16>(whole);
        else if (v.name == "$DIMZIN" && isWhole && whole >= 0 && whole <= 15) m_impl.dimzin = static_cast<Adesk::Int16>(whole);
        else if (v.name == "$TILEMODE" && isWhole && whole == 0) m_impl.currentSpace = m_impl.paperSpace;
        else if (v.name == "$CLAYER") {
            auto it = m_layers.find(Key(Decode(v.groups[0].value)));
            if (it != m_layers.end()) m_impl.clayer = it->second;
        }
        for (int k = 0; k < 6; ++k)
            if (v.name == ucsNames[k]) point(v, ucs[k]);
    }
    SetCoordinateSystems(ucs);
}

void Reader::SetCoordinateSystems(const AcGePoint3d (&ucs)[6]) {
    // Model space's system, then paper space's: origin, X and Y axes; an
    // origin with axes that are not perpendicular keeps the default.
    for (int space = 0; space < 2; ++space) {
        UserCoordinates& system = space == 0 ? m_impl.ucs : m_impl.pucs;
        AcGeVector3d x = ucs[space * 3 + 1].asVector(), y = ucs[space * 3 + 2].asVector();
        if (!x.isZeroLength() && !y.isZeroLength() && std::fabs(x.normal().dotProduct(y.normal())) < 1e-9) {
            system.origin = ucs[space * 3];
            system.xAxis = x.normal();
            system.yAxis = y.normal();
        }
    }
}

}  // namespace

bool ContinuesGroup(int previousTaken, int code) {
    if (previousTaken < 0) return false;
    if (previousTaken == code - 10 || previousTaken == code - 20) return true;  // Y, Z after X
    switch (code) {
    case 1: return previousTaken == 2 || previousTaken == 3;  // the last part of a text in parts
    case 2: return previousTaken == 2;
    case 3: return previousTaken == 2 || previousTaken == 3;  // a field code's overflow
    case 9: return previousTaken == 301 || previousTaken == 9;  // a field format's overflow
    default: return false;
    }
}

Acad::ErrorStatus ReadStream(std::FILE* file, const std::wstring& name, AcDbDatabase& into, std::wstring& error) {
    // The first bytes tell a binary drawing or a binary DXF from text.
    char head[32] = {};
    size_t got = std::fread(head, 1, sizeof head, file);
    std::rewind(file);
    if (got == 0) {
        error = name + L": the file is empty";
        return Acad::eBadDxfFile;
    }
    if (got >= 6 && std::memcmp(head, "AC10", 4) == 0 && std::memchr(head, '\n', got) == nullptr) {
        error = name + L": the file is a binary drawing (DWG); only DXF files can be opened";
        return Acad::eBadDxfFile;
    }
    if (got >= 18 && std::memcmp(head, "AutoCAD Binary DXF", 18) == 0) {
        error = name + L": the file is a binary DXF; only ASCII DXF files can be opened";
        return Acad::eBadDxfFile;
    }
    if (std::memchr(head, '\0', got) != nullptr) {
        error = name + L": the file is not a DXF file (it holds binary data)";
        return Acad::eBadDxfFile;
    }
    // The file is read into a database of its own, which replaces the
    // target's content only when the whole file was read.
    AcDbDatabase staging(false);
    try {
        Reader reader(file, staging);
        reader.Run();
    } catch (const FileError& e) {
        error = name + L": line " + std::to_wstring(e.line) + L": " + FromUtf8(e.what());
        return Acad::eBadDxfFile;
    } catch (const std::bad_alloc&) {
        error = name + L": not enough memory to read the file";
        return Acad::eOutOfMemory;
    }
    if (std::ferror(file)) {
        error = name + L": the file could not be read to its end";
        return Acad::eFileAccessErr;
    }
    into.impl().TakeFrom(staging.impl());
    return Acad::eOk;
}

Acad::ErrorStatus ReadFile(const std::filesystem::path& path, AcDbDatabase& into, std::wstring& error) {
    std::wstring name = FromUtf8(path.string());
    std::FILE* file = nullptr;
    switch (OpenRegularFile(path, L"a drawing", file, error)) {
    case OpenResult::kOpened: break;
    case OpenResult::kMissing: return Acad::eFileNotFound;
    default: return Acad::eCantOpenFile;
    }
    Acad::ErrorStatus es = ReadStream(file, name, into, error);
    std::fclose(file);
    if (es == Acad::eOk) into.impl().fileName = name;
    return es;
}

}  // namespace cadhost::dxf
