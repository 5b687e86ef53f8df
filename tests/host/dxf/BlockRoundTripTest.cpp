// Block references with their attributes and sequence end, viewports, and
// block definitions (BLOCK, the block's entities, ENDBLK): each class's
// groups as files of a release write them, read, checked, written back.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include <cmath>

#include "support/DxfRoundTrip.h"

namespace {

using namespace qmtest;
constexpr auto kR12 = DxfRelease::kR12;
constexpr auto kR2000 = DxfRelease::kR2000;
constexpr auto kR2018 = DxfRelease::kR2018;

class BlockRoundTripTest : public HostTest {
protected:
    void Expect(const std::vector<RoundTripCase>& cases) { ExpectRoundTrips(host(), m_folder.path(), cases); }
};

// An entity that follows another and is owned by it (an attribute, the
// sequence end): from 2000 on its owner is the entity it follows.
Groups Follower(DxfRelease r, const char* type, const char* handle, const char* owner, const Groups& body) {
    Groups out = EntityGroups(r, type, handle, {{8, "0"}}, body);
    if (r != kR12) out[2].value = owner;
    return out;
}

std::wstring BlockName(AcDbObjectId blockId) {
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(blockId);
    return block.openStatus() == Acad::eOk ? block->name() : L"(none)";
}

TEST_F(BlockRoundTripTest, BlockReferences) {
    auto plain = ForReleases(
        "insert", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "INSERT", "A0", {{8, "0"}},
                                {{100, "AcDbBlockReference"}, {2, "DOOR"}, {10, "10.0"}, {20, "5.0"}, {30, "0.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbBlockReference> reference(ObjectByHandle(db, "A0"));
            ASSERT_EQ(reference.openStatus(), Acad::eOk);
            EXPECT_EQ(BlockName(reference->blockTableRecord()), L"DOOR");
            EXPECT_EQ(reference->position(), AcGePoint3d(10, 5, 0));
            EXPECT_EQ(reference->scaleFactors(), AcGeScale3d(1, 1, 1));
            EXPECT_EQ(reference->rotation(), 0.0);
        });
    // Scales, rotation and normal, some holding their defaults, "no
    // attributes follow" said, and a column count the host keeps.
    auto optional = ForReleases(
        "insert_optional", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "INSERT", "A1", {{8, "0"}},
                                {{100, "AcDbBlockReference"}, {66, "0"}, {2, "DOOR"}, {10, "1.0"}, {20, "2.0"},
                                 {30, "3.0"}, {41, "2.0"}, {42, "1.0"}, {43, "0.5"}, {50, "30.0"}, {70, "1"},
                                 {210, "0.0"}, {220, "0.0"}, {230, "1.0"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbBlockReference> reference(ObjectByHandle(db, "A1"));
            ASSERT_EQ(reference.openStatus(), Acad::eOk);
            EXPECT_EQ(reference->scaleFactors(), AcGeScale3d(2, 1, 0.5));
            EXPECT_NEAR(reference->rotation(), M_PI / 6, 1e-15);
            EXPECT_EQ(reference->normal(), AcGeVector3d::kZAxis);
            EXPECT_TRUE(reference->attributeIds().empty());
        });
    Expect(plain);
    Expect(optional);
}

TEST_F(BlockRoundTripTest, AttributesAndTheirSequenceEnd) {
    auto cases = ForReleases(
        "insert_attributes", {kR12, kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            Groups out = EntityGroups(r, "INSERT", "B0", {{8, "0"}},
                                      {{100, "AcDbBlockReference"}, {66, "1"}, {2, "DOOR"}, {10, "10.0"},
                                       {20, "5.0"}, {30, "0.0"}});
            for (const Groups& part :
                 {Follower(r, "ATTRIB", "B1", "B0",
                           {{100, "AcDbText"}, {10, "10.0"}, {20, "4.0"}, {30, "0.0"}, {40, "0.25"}, {1, "120"},
                            {100, "AcDbAttribute"}, {2, "SIZE"}, {70, "0"}}),
                  // A second one with its optional groups: rotation, width,
                  // alignment, vertical mode, a style the host keeps.
                  Follower(r, "ATTRIB", "B2", "B0",
                           {{100, "AcDbText"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "oak"},
                            {50, "90.0"}, {41, "1.0"}, {7, "Standard"}, {72, "1"}, {11, "1.0"}, {21, "2.0"},
                            {31, "0.0"}, {100, "AcDbAttribute"}, {2, "WOOD"}, {70, "1"}, {74, "0"}}),
                  Follower(r, "SEQEND", "B3", "B0", {})})
                out.insert(out.end(), part.begin(), part.end());
            return out;
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbBlockReference> reference(ObjectByHandle(db, "B0"));
            ASSERT_EQ(reference.openStatus(), Acad::eOk);
            ASSERT_EQ(reference->attributeIds().size(), 2u);
            EXPECT_EQ(reference->sequenceEnd(), ObjectByHandle(db, "B3"));
            AcDbObjectPointer<AcDbAttribute> size(reference->attributeIds()[0]);
            ASSERT_EQ(size.openStatus(), Acad::eOk);
            EXPECT_EQ(size->ownerId(), reference->objectId());
            EXPECT_EQ(std::wstring(size->tagConst()), L"SIZE");
            EXPECT_EQ(std::wstring(size->textStringConst()), L"120");
            EXPECT_EQ(size->height(), 0.25);
            AcDbObjectPointer<AcDbAttribute> wood(reference->attributeIds()[1]);
            ASSERT_EQ(wood.openStatus(), Acad::eOk);
            EXPECT_EQ(std::wstring(wood->tagConst()), L"WOOD");
            EXPECT_TRUE(wood->isInvisible());
            EXPECT_EQ(wood->horizontalMode(), AcDb::kTextCenter);
            EXPECT_EQ(wood->planeAlignmentPoint(), AcGePoint3d(1, 2, 0));
        });
    Expect(cases);
}

TEST_F(BlockRoundTripTest, Viewports) {
    auto cases = ForReleases(
        "viewport", {kR2000, kR2018}, DxfPlace::kEntities,
        [](DxfRelease r) {
            return EntityGroups(r, "VIEWPORT", "C0", {{8, "0"}},
                                {{100, "AcDbViewport"}, {10, "5.0"}, {20, "4.0"}, {30, "0.0"}, {40, "10.0"},
                                 {41, "8.0"}, {68, "1"}, {69, "2"}, {12, "50.0"}, {22, "40.0"}, {16, "0.0"},
                                 {26, "0.0"}, {36, "1.0"}, {17, "0.0"}, {27, "0.0"}, {37, "0.0"}, {45, "80.0"},
                                 {51, "0.0"}, {90, "32864"}});
        },
        [](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbViewport> viewport(ObjectByHandle(db, "C0"));
            ASSERT_EQ(viewport.openStatus(), Acad::eOk);
            EXPECT_EQ(viewport->centerPoint(), AcGePoint3d(5, 4, 0));
            EXPECT_EQ(viewport->width(), 10.0);
            EXPECT_EQ(viewport->height(), 8.0);
            EXPECT_EQ(viewport->number(), 2);
            EXPECT_EQ(viewport->viewCenter(), AcGePoint2d(50, 40));
            EXPECT_EQ(viewport->viewDirection(), AcGeVector3d::kZAxis);
            EXPECT_EQ(viewport->viewHeight(), 80.0);
            EXPECT_EQ(viewport->twistDegrees(), 0.0);
        });
    Expect(cases);
}

std::string CellText(const AcDbTable& table, int row, int column) {
    ACHAR* text = table.textString(row, column);
    std::string out = cadhost::ToUtf8(text ? text : L"");
    acutDelBuffer(text);
    return out;
}

TEST_F(BlockRoundTripTest, Tables) {
    // A table of two rows and two columns drawn by block *T1: a cell with a
    // text and a style, one with a text only, one with a style only (its
    // text's place is counted), one with a text longer than one group.
    std::string chunk(250, 'x');
    auto cases = ForReleases(
        "acad_table", {kR2018}, DxfPlace::kEntities,
        [&](DxfRelease r) {
            return EntityGroups(r, "ACAD_TABLE", "F0", {{8, "0"}},
                                {{100, "AcDbBlockReference"}, {2, "*T1"}, {10, "0.0"}, {20, "50.0"}, {30, "0.0"},
                                 {100, "AcDbTable"}, {280, "0"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"}, {91, "2"},
                                 {92, "2"}, {141, "1.5"}, {141, "2.5"}, {142, "4.0"}, {142, "6.0"}, {171, "1"},
                                 {1, "A1"}, {7, "Standard"}, {171, "1"}, {1, "B1"}, {171, "1"}, {7, "Standard"},
                                 {171, "1"}, {2, chunk}, {1, "tail"}});
        },
        [&](AcDbDatabase& db) {
            AcDbObjectPointer<AcDbTable> table(ObjectByHandle(db, "F0"));
            ASSERT_EQ(table.openStatus(), Acad::eOk);
            EXPECT_EQ(BlockName(table->blockTableRecord()), L"*T1");
            EXPECT_EQ(table->position(), AcGePoint3d(0, 50, 0));
            ASSERT_EQ(table->numRows(), 2u);
            ASSERT_EQ(table->numColumns(), 2u);
            EXPECT_EQ(table->rowHeight(1), 2.5);
            EXPECT_EQ(table->columnWidth(1), 6.0);
            EXPECT_EQ(CellText(*table, 0, 0), "A1");
            EXPECT_EQ(CellText(*table, 0, 1), "B1");
            EXPECT_EQ(CellText(*table, 1, 0), "");
            EXPECT_EQ(CellText(*table, 1, 1), chunk + "tail");
        });
    Expect(cases);
}

TEST_F(BlockRoundTripTest, BlockDefinitions) {
    // BLOCK, one entity, ENDBLK; from 2000 on the block's record stands in
    // its table, ahead of the block.
    auto cases = ForReleases(
        "block", {kR12, kR2000, kR2018}, DxfPlace::kBlocks,
        [](DxfRelease r) {
            Groups out = EntityGroups(r, "BLOCK", "D0", {{8, "0"}},
                                      {{100, "AcDbBlockBegin"}, {2, "DOOR"}, {70, "2"}, {10, "1.0"}, {20, "2.0"},
                                       {30, "0.0"}, {3, "DOOR"}, {1, ""}});
            Groups line = EntityGroups(r, "LINE", "D1", {{8, "0"}, {62, "2"}},
                                       {{100, "AcDbLine"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"},
                                        {21, "0.0"}, {31, "0.0"}});
            Groups end = EntityGroups(r, "ENDBLK", "D2", {{8, "0"}}, {{100, "AcDbBlockEnd"}});
            for (Groups* part : {&out, &line, &end})
                if (r != kR12) (*part)[2].value = "D3";
            out.insert(out.end(), line.begin(), line.end());
            out.insert(out.end(), end.begin(), end.end());
            return out;
        },
        [](AcDbDatabase& db) {
            AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(L"DOOR", &db);
            ASSERT_EQ(block.openStatus(), Acad::eOk);
            EXPECT_EQ(block->origin(), AcGePoint3d(1, 2, 0));
            EXPECT_EQ(block->blockFlags(), 2);
            EXPECT_EQ(block->blockBeginId(), ObjectByHandle(db, "D0"));
            EXPECT_EQ(block->blockEndId(), ObjectByHandle(db, "D2"));
            ASSERT_EQ(block->entityIds().size(), 1u);
            EXPECT_EQ(block->entityIds()[0], ObjectByHandle(db, "D1"));
        });
    // The block's record, handle D3, in the table that the file gives.
    for (RoundTripCase& c : cases) c.blockRecords = {{"DOOR", "D3"}};
    Expect(cases);
}

}  // namespace
