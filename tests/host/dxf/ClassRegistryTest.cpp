// The registry of DXF classes: a type name has one class, a second
// registration of it is refused with a message that names it, and the
// host's own lists register without a clash.
#include <dbents.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

#include "dxf/DxfIo.h"
#include "dxf/ReadStates.h"

namespace {

using namespace cadhost::dxf;

Use KeepAll(AcDbObject&, const Group&, ObjectReader&) { return Use::kKept; }
Use TakeAll(AcDbObject&, const Group&, ObjectReader&) { return Use::kKnown; }

// A class's read struct, and read and finish functions that use it.
struct CountRead {
    int groups = 0;
    std::string codes;
    int resets = 0;  // never set by Reset below: a reset struct has 0
};
struct OtherRead {
    bool seen = false;
};
Use CountGroups(AcDbLine& line, CountRead& read, const Group& group, ObjectReader&) {
    ++read.groups;
    read.codes += std::to_string(group.code) + ",";
    line.setStartPoint(AcGePoint3d(read.groups, 0, 0));
    return Use::kKnown;
}
void FinishCount(AcDbLine& line, CountRead& read, ObjectReader&) { line.setEndPoint(AcGePoint3d(0, read.groups, 0)); }
void FinishOther(AcDbLine&, OtherRead& read, ObjectReader&) { read.seen = true; }

// A reader for functions that ask it nothing: asking it anything is a fault.
class SilentReader final : public ObjectReader {
public:
    double Real(const Group&) override { std::abort(); }
    long long Integer(const Group&) override { std::abort(); }
    std::string Text(const Group&) override { std::abort(); }
    AcDbObjectId Id(const Group&) override { std::abort(); }
    std::string Decode(std::string_view) override { std::abort(); }
    AcDbObjectId BlockByName(const std::string&) override { std::abort(); }
    AcDbDatabase& Database() override { std::abort(); }
    const cadhost::FileState& File() const override { std::abort(); }
    [[noreturn]] void Fail(const Group&, const std::string&) override { std::abort(); }
    void Skip(int) override { std::abort(); }
    void PassMarker(std::string_view) override { std::abort(); }
};

// A read struct with a Reset of its own, which keeps its list's room.
struct ListRead {
    std::string list;
    int value = 0;
    void Reset() {
        list.clear();
        value = 0;
    }
};

TEST(ClassRegistryTest, ASecondRegistrationOfANameFails) {
    ClassRegistry registry;
    std::string error;
    ASSERT_TRUE(registry.Add({.dxfName = "POINT", .rxClass = AcDbLine::desc, .read = Reads<KeepAll>}, error)) << error;
    EXPECT_TRUE(error.empty());
    EXPECT_FALSE(registry.Add({.dxfName = "POINT", .rxClass = AcDbCircle::desc, .read = Reads<TakeAll>}, error));
    EXPECT_EQ(error, "the DXF type POINT is registered twice");
    // The first registration stays.
    const ClassIo* found = registry.Find("POINT");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->read.call, Reads<KeepAll>.call);
    EXPECT_NE(found->read.call, Reads<TakeAll>.call);
    EXPECT_EQ(found->rxClass, &AcDbLine::desc);
    // Another name still registers.
    error.clear();
    EXPECT_TRUE(registry.Add({.dxfName = "RAY", .read = Reads<TakeAll>}, error)) << error;
    EXPECT_NE(registry.Find("RAY"), nullptr);
    EXPECT_EQ(registry.Find("XLINE"), nullptr);
}

TEST(ClassRegistryTest, ANamelessClassFails) {
    ClassRegistry registry;
    std::string error;
    EXPECT_FALSE(registry.Add({.read = Reads<KeepAll>}, error));
    EXPECT_EQ(error, "a DXF class needs a type name");
    EXPECT_EQ(registry.Find(""), nullptr);
}

TEST(ClassRegistryTest, TheHostsListsRegisterEachNameOnce) {
    std::set<std::string_view> names;
    size_t listed = 0;
    for (std::span<const ClassIo> family : ClassFamilies()) {
        for (const ClassIo& io : family) {
            ++listed;
            EXPECT_TRUE(names.insert(io.dxfName).second) << io.dxfName << " is listed twice";
            // Each is found under its name as it was listed.
            const ClassIo* found = FindClass(io.dxfName);
            ASSERT_NE(found, nullptr) << io.dxfName;
            EXPECT_EQ(found->read.call, io.read.call) << io.dxfName;
            EXPECT_EQ(found->finish.call, io.finish.call) << io.dxfName;
            EXPECT_EQ(found->StateKind(), io.StateKind()) << io.dxfName;
            EXPECT_EQ(found->write, io.write) << io.dxfName;
        }
    }
    EXPECT_EQ(names.size(), listed);
    // A class of every family.
    for (const char* name : {"LINE", "SOLID", "CIRCLE", "ARC", "POINT", "LWPOLYLINE", "TEXT", "MTEXT", "INSERT", "VIEWPORT",
                             "BLOCK", "SEQEND", "LAYER", "BLOCK_RECORD", "DICTIONARY", "FIELD", "ACAD_TABLE"})
        EXPECT_TRUE(names.count(name)) << name;
}

TEST(ClassRegistryTest, AnObjectIsWrittenByItsNearestRegisteredClass) {
    const ClassIo* arc = FindClassOf(AcDbArc::desc());
    ASSERT_NE(arc, nullptr);
    EXPECT_EQ(arc->dxfName, "ARC");
    const ClassIo* table = FindClassOf(AcDbTable::desc());
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->dxfName, "ACAD_TABLE");  // not INSERT, its parent's
    const ClassIo* layers = FindClassOf(AcDbLayerTable::desc());
    ASSERT_NE(layers, nullptr);
    EXPECT_EQ(layers->dxfName, "TABLE");  // through AcDbSymbolTable
    EXPECT_EQ(FindClassOf(AcDbEntity::desc()), nullptr);
}

TEST(ClassRegistryTest, ReadFunctionsTellTheirReadStruct) {
    EXPECT_EQ(Reads<KeepAll>.kind, nullptr);
    EXPECT_EQ(Reads<CountGroups>.kind, &kReadStateKind<CountRead>);
    EXPECT_EQ(Finishes<FinishCount>.kind, &kReadStateKind<CountRead>);
    EXPECT_EQ(Finishes<FinishOther>.kind, &kReadStateKind<OtherRead>);
    ClassIo io{.dxfName = "POINT", .read = Reads<KeepAll>, .finish = Finishes<FinishCount>};
    EXPECT_EQ(io.StateKind(), &kReadStateKind<CountRead>);
    io.read = Reads<CountGroups>;
    EXPECT_EQ(io.StateKind(), &kReadStateKind<CountRead>);
}

TEST(ClassRegistryTest, ReadAndFinishOfOneClassShareOneReadStruct) {
    ClassRegistry registry;
    std::string error;
    EXPECT_FALSE(registry.Add({.dxfName = "POINT", .read = Reads<CountGroups>, .finish = Finishes<FinishOther>}, error));
    EXPECT_EQ(error, "the DXF type POINT reads into one struct and finishes from another");
    EXPECT_EQ(registry.Find("POINT"), nullptr);
    error.clear();
    EXPECT_TRUE(registry.Add({.dxfName = "POINT", .read = Reads<CountGroups>, .finish = Finishes<FinishCount>}, error))
        << error;
}

TEST(ClassRegistryTest, TheAdaptedFunctionsSeeTheObjectAndTheStructTyped) {
    ReadStates states;
    const ClassIo io{.dxfName = "POINT", .read = Reads<CountGroups>, .finish = Finishes<FinishCount>};
    void* state = states.Fresh(io.StateKind());
    ASSERT_NE(state, nullptr);
    AcDbLine line;
    SilentReader in;
    for (int code : {10, 20, 30}) EXPECT_EQ(io.read.call(line, state, Group{.code = code, .value = "1"}, in), Use::kKnown);
    io.finish.call(line, state, in);
    const CountRead* read = states.Current<CountRead>();
    ASSERT_EQ(read, state);
    EXPECT_EQ(read->groups, 3);
    EXPECT_EQ(read->codes, "10,20,30,");
    EXPECT_EQ(line.startPoint(), AcGePoint3d(3, 0, 0));
    EXPECT_EQ(line.endPoint(), AcGePoint3d(0, 3, 0));
    EXPECT_EQ(states.Current<OtherRead>(), nullptr);
}

TEST(ClassRegistryTest, EachObjectGetsItsClassesStructNewWithoutANewAllocation) {
    ReadStates states;
    auto* first = static_cast<CountRead*>(states.Fresh(&kReadStateKind<CountRead>));
    ASSERT_NE(first, nullptr);
    first->groups = 7;
    first->codes = "a text longer than any small-string buffer holds";
    first->resets = 2;
    auto* other = static_cast<OtherRead*>(states.Fresh(&kReadStateKind<OtherRead>));
    other->seen = true;
    EXPECT_EQ(states.Current<CountRead>(), nullptr);
    // The next object of the first class: the same struct, as new.
    auto* again = static_cast<CountRead*>(states.Fresh(&kReadStateKind<CountRead>));
    EXPECT_EQ(again, first);
    EXPECT_EQ(again->groups, 0);
    EXPECT_EQ(again->codes, "");
    EXPECT_EQ(again->resets, 0);
    EXPECT_FALSE(static_cast<OtherRead*>(states.Fresh(&kReadStateKind<OtherRead>))->seen);
    // A class that keeps none: no struct, none current.
    EXPECT_EQ(states.Fresh(nullptr), nullptr);
    EXPECT_EQ(states.Current<OtherRead>(), nullptr);
    // A struct's own Reset is used: its list keeps its room.
    auto* list = static_cast<ListRead*>(states.Fresh(&kReadStateKind<ListRead>));
    list->list.assign(1000, 'x');
    list->value = 5;
    size_t room = list->list.capacity();
    auto* listAgain = static_cast<ListRead*>(states.Fresh(&kReadStateKind<ListRead>));
    EXPECT_EQ(listAgain, list);
    EXPECT_TRUE(listAgain->list.empty());
    EXPECT_EQ(listAgain->value, 0);
    EXPECT_EQ(listAgain->list.capacity(), room);
}

}  // namespace
