// The registry of DXF classes: a type name has one class, a second
// registration of it is refused with a message that names it, and the
// host's own lists register without a clash.
#include <dbents.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include <gtest/gtest.h>

#include <set>
#include <string>

#include "dxf/DxfIo.h"

namespace {

using namespace cadhost::dxf;

Use KeepAll(AcDbObject&, const Group&, ObjectReader&) { return Use::kKept; }
Use TakeAll(AcDbObject&, const Group&, ObjectReader&) { return Use::kKnown; }

TEST(ClassRegistryTest, ASecondRegistrationOfANameFails) {
    ClassRegistry registry;
    std::string error;
    ASSERT_TRUE(registry.Add({.dxfName = "POINT", .rxClass = AcDbLine::desc, .read = KeepAll}, error)) << error;
    EXPECT_TRUE(error.empty());
    EXPECT_FALSE(registry.Add({.dxfName = "POINT", .rxClass = AcDbCircle::desc, .read = TakeAll}, error));
    EXPECT_EQ(error, "the DXF type POINT is registered twice");
    // The first registration stays.
    const ClassIo* found = registry.Find("POINT");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->read, &KeepAll);
    EXPECT_EQ(found->rxClass, &AcDbLine::desc);
    // Another name still registers.
    error.clear();
    EXPECT_TRUE(registry.Add({.dxfName = "RAY", .read = TakeAll}, error)) << error;
    EXPECT_NE(registry.Find("RAY"), nullptr);
    EXPECT_EQ(registry.Find("XLINE"), nullptr);
}

TEST(ClassRegistryTest, ANamelessClassFails) {
    ClassRegistry registry;
    std::string error;
    EXPECT_FALSE(registry.Add({.read = KeepAll}, error));
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
            EXPECT_EQ(found->read, io.read) << io.dxfName;
            EXPECT_EQ(found->write, io.write) << io.dxfName;
        }
    }
    EXPECT_EQ(names.size(), listed);
    // A class of every family.
    for (const char* name : {"LINE", "SOLID", "CIRCLE", "ARC", "LWPOLYLINE", "TEXT", "MTEXT", "INSERT", "VIEWPORT",
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

}  // namespace
