// The tables of the TABLES section the host models (layers, applications,
// block records) with their TABLE head: each as files of a release write
// it, read, checked, written back the same.
#include <dbobjptr.h>
#include <dbsymtb.h>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR12 = DxfRelease::kR12;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

class SymbolTableRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

// A table as a file of the release writes it: its head (no handle before
// 2000), then its records, each with its handle, owner and markers from
// 2000 on, then ENDTAB.
Groups TableGroups(DxfRelease r, const char* name, const char* handle, const char* marker,
                   const std::vector<std::pair<const char*, Groups>>& records) {
    bool r12 = r == kR12;
    Groups out{{0, "TABLE"}, {2, name}};
    if (!r12) {
        out.insert(out.end(), {{5, handle}, {330, "0"}, {100, "AcDbSymbolTable"}});
    }
    out.push_back({70, std::to_string(records.size())});
    for (const auto& [recordHandle, body] : records) {
        out.insert(out.end(), {{0, name}, {5, recordHandle}});
        if (!r12) out.insert(out.end(), {{330, handle}, {100, "AcDbSymbolTableRecord"}, {100, marker}});
        out.insert(out.end(), body.begin(), body.end());
    }
    out.push_back({0, "ENDTAB"});
    return out;
}

TEST_F(SymbolTableRoundTripTest, Layers) {
    // Layer 0 as every drawing has it; Walls off (its colour negative),
    // Ice frozen and locked; line types, and from 2018 on plotting, line
    // weight and plot style, which the host keeps.
    auto cases = ForReleases(
        "layer", {kR12, kR2000, kR2018}, DxfPlace::kTables,
        [](DxfRelease r) {
            Groups late;
            if (r == kR2018) late = {{290, "1"}, {370, "-3"}, {390, "F"}};
            auto record = [&](const char* name, const char* flags, const char* color) {
                Groups body{{2, name}, {70, flags}, {62, color}, {6, "CONTINUOUS"}};
                body.insert(body.end(), late.begin(), late.end());
                return body;
            };
            return TableGroups(r, "LAYER", "2", "AcDbLayerTableRecord",
                               {{"10", record("0", "0", "7")},
                                {"11", record("Walls", "0", "-5")},
                                {"12", record("Ice", "5", "7")}});
        },
        [](AcDbDatabase& db) {
            AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> walls(L"Walls", &db);
            ASSERT_EQ(walls.openStatus(), Acad::eOk);
            EXPECT_TRUE(walls->isOff());
            EXPECT_FALSE(walls->isFrozen());
            EXPECT_EQ(walls->colorIndex(), 5);
            EXPECT_EQ(walls->objectId(), ObjectByHandle(db, "11"));
            AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> ice(L"ice", &db);
            ASSERT_EQ(ice.openStatus(), Acad::eOk);
            EXPECT_FALSE(ice->isOff());
            EXPECT_TRUE(ice->isFrozen());
            EXPECT_TRUE(ice->isLocked());
        });
    Expect(cases);
}

TEST_F(SymbolTableRoundTripTest, Applications) {
    auto cases = ForReleases(
        "appid", {kR12, kR2000, kR2018}, DxfPlace::kTables,
        [](DxfRelease r) {
            return TableGroups(r, "APPID", "9", "AcDbRegAppTableRecord",
                               {{"20", {{2, "ACAD"}, {70, "0"}}}, {"21", {{2, "QMSAVE"}, {70, "0"}}},
                                {"22", {{2, "OTHER"}, {70, "64"}}}});
        },
        [](AcDbDatabase& db) {
            AcDbSymbolTableRecordPointer<AcDbRegAppTableRecord> app(L"QMSAVE", &db);
            ASSERT_EQ(app.openStatus(), Acad::eOk);
            EXPECT_EQ(app->objectId(), ObjectByHandle(db, "21"));
            AcDbSymbolTableRecordPointer<AcDbRegAppTableRecord> other(L"OTHER", &db);
            ASSERT_EQ(other.openStatus(), Acad::eOk);
            EXPECT_EQ(other->recordFlags(), 64);
        });
    Expect(cases);
}

TEST_F(SymbolTableRoundTripTest, BlockRecords) {
    // The two spaces and a block, with what files from 2000 on give a
    // record (its layout, units, explodability), which the host keeps.
    auto cases = ForReleases(
        "block_record", {kR2000, kR2018}, DxfPlace::kTables,
        [](DxfRelease r) {
            return TableGroups(r, "BLOCK_RECORD", "1", "AcDbBlockTableRecord",
                               {{"1F", {{2, "*Model_Space"}, {340, "22"}, {70, "0"}, {280, "1"}, {281, "0"}}},
                                {"1E", {{2, "*Paper_Space"}, {340, "1E"}, {70, "0"}, {280, "1"}, {281, "0"}}},
                                {"30", {{2, "DOOR"}, {340, "0"}, {70, "4"}, {280, "1"}, {281, "0"}}}});
        },
        [](AcDbDatabase& db) {
            EXPECT_EQ(db.modelSpaceId(), ObjectByHandle(db, "1F"));
            EXPECT_EQ(db.paperSpaceId(), ObjectByHandle(db, "1E"));
            AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> door(L"DOOR", &db);
            ASSERT_EQ(door.openStatus(), Acad::eOk);
            EXPECT_EQ(door->objectId(), ObjectByHandle(db, "30"));
        });
    Expect(cases);
}

}  // namespace
