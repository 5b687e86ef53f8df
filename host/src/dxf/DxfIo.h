// Reading and writing the objects of a DXF file, class by class.
//
// Each class that the host models in files registers a ClassIo under its
// DXF type name ("LINE", "MTEXT", "FIELD"). The reader hands it the groups
// of one object, one at a time, after the groups every object shares
// (handle, owner, extension dictionary, extended data, for entities the
// layer); the class answers which it took. What it does not take is kept,
// with its place, and written back there. The writer calls the class to
// write its groups in their order; kept groups are merged in by the writer.
//
//     // What a solid keeps between its groups and its finish step.
//     struct SolidRead {
//         bool hadFourthCorner = false;
//         FileNormal normal;
//     };
//     Use ReadSolid(AcDbSolid& solid, SolidRead& read, const Group& group, ObjectReader& in) {
//         switch (group.code) {
//         case 13: read.hadFourthCorner = true; ...
//         ...
//         default: return Use::kKept;
//         }
//     }
//     void FinishSolid(AcDbSolid& solid, SolidRead& read, ObjectReader& in) {
//         if (!read.hadFourthCorner) solid.setPlanePoint(3, solid.planePoint(2));
//     }
//     void WriteSolid(const AcDbObject& object, ObjectWriter& out) {
//         out.Marker("AcDbTrace");
//         out.Point(10, ...);
//     }
//     constexpr ClassIo kLineClasses[] = {{.dxfName = "SOLID", .rxClass = AcDbSolid::desc,
//                                          .create = Make<AcDbSolid>, .read = Reads<ReadSolid>,
//                                          .finish = Finishes<FinishSolid>, .write = WriteSolid,
//                                          .isEntity = true, .markers = "AcDbTrace"}};
//     std::span<const ClassIo> LineClasses() { return kLineClasses; }
//
// and the family's list function is named once, in the registry's list
// (Registry.cpp).
//
// The read and finish functions take the object as its own class and, when
// the class keeps values between its groups, its own read struct (here
// SolidRead); a class that keeps none leaves that parameter out:
// `Use ReadLine(AcDbLine&, const Group&, ObjectReader&)`. Reads and
// Finishes adapt them to the registry's one form. The reader keeps one read
// struct of each kind for the file and makes it new (`= T{}`, or the
// struct's own Reset() where it has one, to keep the room of its lists)
// before each object that uses it.
#pragma once

#include <dbmain.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>

namespace cadhost {
class DatabaseImpl;
struct FileState;
}  // namespace cadhost

namespace cadhost::dxf {

// One group of a file: its code, its value as the file wrote it, and the
// line of its code.
struct Group {
    int code = 0;
    std::string_view value;
    int line = 0;
};

// What a class did with a group: kept it (the reader keeps it for saving),
// kept it for after the class's own groups (a part that closes the object,
// whose groups mean other things), took it, took it at a place the class
// counted before with Skip, or took it as the continuation of the group
// before (the Y and Z of a point, the later parts of a long text), which
// counts as one.
enum class Use { kKept, kKeptAtEnd, kKnown, kCounted, kContinued };

// Whether a group that its class took as a continuation really continues
// the group the class took just before (-1: none), as its writer counts it:
// Y and Z after X, the later parts of a long text after its first.
bool ContinuesGroup(int previousTaken, int code);

class ObjectReader;
class ObjectWriter;

// The values one class keeps between the groups of one object and its
// finish step, as a struct of the class's own: how the reader makes one for
// the file being read, makes it new before each object, and frees it.
struct ReadStateKind {
    void* (*make)() = nullptr;
    void (*reset)(void* state) = nullptr;
    void (*free)(void* state) = nullptr;
};

template <class S>
inline constexpr ReadStateKind kReadStateKind{
    .make = []() -> void* { return new S{}; },
    .reset =
        [](void* state) {
            S& s = *static_cast<S*>(state);
            if constexpr (requires { s.Reset(); }) s.Reset();
            else s = S{};
        },
    .free = [](void* state) { delete static_cast<S*>(state); },
};

// A class's read and finish functions in the registry's one form; state is
// the class's read struct (null for classes that keep none) and kind says
// which struct that is.
struct ReadFunction {
    Use (*call)(AcDbObject& object, void* state, const Group& group, ObjectReader& in) = nullptr;
    const ReadStateKind* kind = nullptr;
    explicit operator bool() const { return call != nullptr; }
};
struct FinishFunction {
    void (*call)(AcDbObject& object, void* state, ObjectReader& in) = nullptr;
    const ReadStateKind* kind = nullptr;
    explicit operator bool() const { return call != nullptr; }
};

namespace detail {
// Deduces the object's class and the read struct from the function.
template <auto F>
struct ReadAdapter;
template <class T, Use (*F)(T&, const Group&, ObjectReader&)>
struct ReadAdapter<F> {
    static Use Call(AcDbObject& object, void*, const Group& group, ObjectReader& in) {
        return F(static_cast<T&>(object), group, in);
    }
    static constexpr const ReadStateKind* kKind = nullptr;
};
template <class T, class S, Use (*F)(T&, S&, const Group&, ObjectReader&)>
struct ReadAdapter<F> {
    static Use Call(AcDbObject& object, void* state, const Group& group, ObjectReader& in) {
        return F(static_cast<T&>(object), *static_cast<S*>(state), group, in);
    }
    static constexpr const ReadStateKind* kKind = &kReadStateKind<S>;
};

template <auto F>
struct FinishAdapter;
template <class T, void (*F)(T&, ObjectReader&)>
struct FinishAdapter<F> {
    static void Call(AcDbObject& object, void*, ObjectReader& in) { F(static_cast<T&>(object), in); }
    static constexpr const ReadStateKind* kKind = nullptr;
};
template <class T, class S, void (*F)(T&, S&, ObjectReader&)>
struct FinishAdapter<F> {
    static void Call(AcDbObject& object, void* state, ObjectReader& in) {
        F(static_cast<T&>(object), *static_cast<S*>(state), in);
    }
    static constexpr const ReadStateKind* kKind = &kReadStateKind<S>;
};
}  // namespace detail

template <auto F>
inline constexpr ReadFunction Reads{detail::ReadAdapter<F>::Call, detail::ReadAdapter<F>::kKind};
template <auto F>
inline constexpr FinishFunction Finishes{detail::FinishAdapter<F>::Call, detail::FinishAdapter<F>::kKind};

struct ClassIo {
    std::string_view dxfName;             // the type name in files
    AcRxClass* (*rxClass)() = nullptr;    // the class written under that name
    AcDbObject* (*create)() = nullptr;    // a new, empty object of the class
    ReadFunction read;                    // Reads<ReadX>
    // After the object's last group: checks and derived values; may fail
    // the file through in.Fail.
    FinishFunction finish;                // Finishes<FinishX>
    void (*write)(const AcDbObject& object, ObjectWriter& out) = nullptr;
    // The class's record in the CLASSES section of files from 2000 on, for
    // classes that files list there (empty for the built-in types).
    std::string_view cppName;             // "AcDbField"
    std::string_view appName;             // "ObjectDBX Classes"
    int proxyFlags = 0;
    bool isEntity = false;
    // The subclass markers the write function writes, in order, separated
    // by "|" ("AcDbCircle|AcDbArc"). The reader counts them itself (the read
    // function still sees them), also where a file left one out, so that
    // kept groups keep their place.
    std::string_view markers;
    // The group that holds an object's handle (a dimension style's is 105).
    int handleCode = 5;
    // For records of a table the host models: a new, empty table of them,
    // made for a TABLE whose name is this type; such records are read only
    // inside their table. recordsFrom2000: files before 2000 have no such
    // table that the host models (their blocks have no records).
    AcDbObject* (*createTable)() = nullptr;
    bool recordsFrom2000 = false;

    // The read struct that the read and finish functions share, if any.
    const ReadStateKind* StateKind() const { return read.kind ? read.kind : finish.kind; }
};

// The classes of each family, each listed by the file that reads and
// writes them.
std::span<const ClassIo> LineClasses();            // LineIo.cpp
std::span<const ClassIo> CurveClasses();           // CurveIo.cpp
std::span<const ClassIo> PointClasses();           // PointIo.cpp
std::span<const ClassIo> PolylineClasses();        // PolylineIo.cpp
std::span<const ClassIo> TextClasses();            // TextIo.cpp
std::span<const ClassIo> BlockReferenceClasses();  // BlockReferenceIo.cpp
std::span<const ClassIo> ViewportClasses();        // ViewportIo.cpp
std::span<const ClassIo> BlockClasses();           // BlockIo.cpp
// A BLOCK's name, flags, base point and path belong to its block record,
// which the reader fills from them once the BLOCK is read.
struct BlockBeginRead {
    std::string name;  // UTF-8
    int flags = 0;
    AcGePoint3d origin;
    std::string path;  // UTF-8
};
std::span<const ClassIo> SymbolClasses();
std::span<const ClassIo> FieldClasses();
std::span<const ClassIo> TableClasses();

// Classes by type name. A name has one class: registering it again is an
// error, not a replacement.
class ClassRegistry {
public:
    ClassRegistry() = default;
    ClassRegistry(const ClassRegistry&) = delete;
    ClassRegistry& operator=(const ClassRegistry&) = delete;

    // Adds a class; false, saying why in error, when its name has no text
    // or has a class already (which stays).
    bool Add(const ClassIo& io, std::string& error);
    const ClassIo* Find(std::string_view dxfName) const;
    // The registration that writes an object of this class (the nearest
    // registered ancestor); null for classes files do not know.
    const ClassIo* FindOf(const AcRxClass* rxClass) const;

private:
    std::map<std::string, ClassIo, std::less<>> m_byName;
    mutable std::mutex m_mutex;  // for the cache below, filled as it is asked
    mutable std::unordered_map<const AcRxClass*, const ClassIo*> m_byClass;
};

// Every family's list, in the one place that names them (Registry.cpp).
std::span<const std::span<const ClassIo>> ClassFamilies();
// The host's classes, every family's list, registered on first use.
const ClassRegistry& Classes();
inline const ClassIo* FindClass(std::string_view dxfName) { return Classes().Find(dxfName); }
inline const ClassIo* FindClassOf(const AcRxClass* rxClass) { return Classes().FindOf(rxClass); }

// What a class's read function may ask while it reads one object.
class ObjectReader {
public:
    virtual ~ObjectReader() = default;
    // Values of the current group. A value that is not what its code
    // promises fails the file, naming its line.
    virtual double Real(const Group& group) = 0;
    virtual long long Integer(const Group& group) = 0;
    virtual std::string Text(const Group& group) = 0;  // as UTF-8
    virtual AcDbObjectId Id(const Group& group) = 0;   // a handle reference; null for handle 0
    // A text of the file's encoding as UTF-8 (for texts in several groups,
    // joined before they are decoded).
    virtual std::string Decode(std::string_view raw) = 0;
    // The block of that name; a name no block has yet gets an empty block,
    // which a later definition in the file fills.
    virtual AcDbObjectId BlockByName(const std::string& utf8Name) = 0;
    virtual AcDbDatabase& Database() = 0;
    virtual const FileState& File() const = 0;
    [[noreturn]] virtual void Fail(const Group& group, const std::string& why) = 0;
    // Counts groups that the object does not have here but that its writer
    // counts (an optional group it leaves out), so that kept groups after
    // them keep their place when the object later gains one.
    virtual void Skip(int slots) = 0;
    // Says that the object has passed the place of one of its markers (a
    // part the class recognised by its codes, the file having no marker):
    // the marker is counted there, and a late one is kept as it is.
    virtual void PassMarker(std::string_view subclass) = 0;
    // The code of the group the class took just before this one, -1 when
    // the group before was not the class's.
    int previousTaken = -1;

    // Texts that many objects of the file may hold alike (the values of
    // fields that name one source, the texts that show them): what make
    // gives for a raw text is made once while the file is read, and the
    // objects that hold it share it. kind tells apart what different classes
    // make of the same raw text. Beyond a budget, texts are made each time.
    template <class T, class Make>
    std::shared_ptr<const T> Shared(char kind, std::string_view raw, Make&& make) {
        // Looked up by the raw text where it lies: a text that is found
        // again, the common case, is neither copied nor allocated.
        SharedOfKind& texts = m_shared[kind];
        auto found = texts.find(raw);
        if (found != texts.end()) return std::static_pointer_cast<const T>(found->second);
        auto made = std::make_shared<const T>(make());
        if (m_sharedBytes + raw.size() + 1 <= kSharedBudget) {
            m_sharedBytes += raw.size() + 1;  // with its kind, as it was counted
            texts.emplace(std::string(raw), made);
        }
        return made;
    }

private:
    struct TextHash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    using SharedOfKind = std::unordered_map<std::string, std::shared_ptr<const void>, TextHash, std::equal_to<>>;
    static constexpr size_t kSharedBudget = 64u << 20;
    std::unordered_map<char, SharedOfKind> m_shared;  // by kind, then by raw text
    size_t m_sharedBytes = 0;
};

// What a class's write function writes with. Every group it writes is one
// of the groups its read function took, in the same order.
class ObjectWriter {
public:
    virtual ~ObjectWriter() = default;
    virtual void Marker(std::string_view subclass) = 0;  // 100, not in files before 2000
    virtual void Integer(int code, long long value) = 0;
    virtual void Real(int code, double value) = 0;
    virtual void Text(int code, std::string_view utf8) = 0;
    // A text of any length: leading chunks of 250 characters under
    // chunkCode, the rest under code; counted as one group.
    virtual void LongText(int chunkCode, int code, std::string_view utf8) = 0;
    // The other order of long texts: the first 250 characters under
    // firstCode, the rest in chunks of 250 under restCode; counted as one.
    virtual void SplitText(int firstCode, int restCode, std::string_view utf8) = 0;
    // A group as a file wrote it, counted or (as the continuation of the
    // group before) not, for objects written back as they were read.
    virtual void Raw(int code, std::string_view raw, bool counted) = 0;
    virtual void Point(int code, const AcGePoint3d& point) = 0;  // code, code+10, code+20 as one
    virtual void Point2d(int code, double x, double y) = 0;
    virtual void Vector(int code, const AcGeVector3d& vector) = 0;
    virtual void Id(int code, AcDbObjectId id) = 0;
    // A group that the file did not have: written without being counted,
    // for what new objects need in files.
    virtual void Extra(int code, std::string_view raw) = 0;
    // Counts groups left out, as the reader's Skip did.
    virtual void Skip(int slots) = 0;
    // Whether the object came from the file being saved over (false for
    // objects made in this session), and the file's release.
    virtual bool FromFile() const = 0;
    virtual const FileState& File() const = 0;
    virtual bool R12() const = 0;
    // The file's form of a text that many objects may share (one value held
    // by many fields), made by make once a save for each shared text: key is
    // the shared text's address, which its objects keep alive while the file
    // is written. Beyond a budget, texts are made each time.
    virtual std::string_view Shared(const void* key, const std::function<std::string()>& make) = 0;
};

// Reading helpers for classes.
inline bool IsMarker(const Group& group, std::string_view subclass) {
    return group.code == 100 && group.value == subclass;
}

}  // namespace cadhost::dxf
