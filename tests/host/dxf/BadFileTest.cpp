// Files that are no drawing, or broken drawings: a clear error naming the
// file and, for a fault of the file, its line; the drawing that was open
// stays as it was.
#include <adslib.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbtable.h>

#include "db/DatabaseImpl.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

// DXF text from groups, one code and one value a line.
std::string Dxf(std::initializer_list<std::pair<int, std::string>> groups) {
    std::string text;
    for (const auto& [code, value] : groups) text += std::to_string(code) + "\n" + value + "\n";
    return text;
}

const std::string kLine = Dxf({{0, "LINE"}, {8, "0"}, {10, "0"}, {20, "0"}, {11, "1"}, {21, "1"}});

std::string Entities(const std::string& body) {
    return Dxf({{0, "SECTION"}, {2, "ENTITIES"}}) + body + Dxf({{0, "ENDSEC"}, {0, "EOF"}});
}

class BadFileTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    // A line in the drawing that is open before each bad file.
    AcDbObjectId m_marker;
    void SetUp() override {
        qmtest::HostTest::SetUp();
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(3, 4, 0));
        model->appendAcDbEntity(m_marker, line);
        line->close();
    }

    std::filesystem::path Write(const std::string& name, const std::string& text) {
        std::filesystem::path path = m_folder.path() / name;
        qmtest::WriteText(path, text);
        return path;
    }
    // Opens a file of the text, saves it, opens what it saved and saves
    // again: both saves must be the same. Answers the first.
    std::string SavedTwice(const std::string& stem, const std::string& text) {
        std::filesystem::path path = Write(stem + ".dxf", text), first = m_folder.path() / (stem + "_first.dxf"),
                              second = m_folder.path() / (stem + "_second.dxf");
        std::wstring error;
        EXPECT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
        EXPECT_TRUE(host().SaveDrawing(first, error)) << cadhost::ToUtf8(error);
        EXPECT_TRUE(host().OpenDrawing(first, error)) << cadhost::ToUtf8(error);
        EXPECT_TRUE(host().SaveDrawing(second, error)) << cadhost::ToUtf8(error);
        std::string written = qmtest::ReadText(first);
        EXPECT_EQ(written, qmtest::ReadText(second));
        return written;
    }
};

struct Case {
    const char* name;
    std::string text;
    Acad::ErrorStatus status;
    const char* message;  // what the message says after the file's name
};

TEST_F(BadFileTest, BrokenFilesGiveClearErrors) {
    std::string full = qmtest::ReadText(qmtest::FixturePath("drawing_r2010.dxf"));
    std::string withoutEof = full.substr(0, full.rfind("EOF"));
    const Case cases[] = {
        {"empty.dxf", "", Acad::eBadDxfFile, ": the file is empty"},
        {"drawing.dwg", std::string("AC1032\0\0\0\0\0\x1f\x01\x02\x03", 15), Acad::eBadDxfFile,
         ": the file is a binary drawing (DWG); only DXF files can be opened"},
        {"binary.dxf", std::string("AutoCAD Binary DXF\r\n\x1a\0\0\0SECTION", 30), Acad::eBadDxfFile,
         ": the file is a binary DXF; only ASCII DXF files can be opened"},
        {"nul.dxf", std::string("0\nSECTION\n\0\0", 12), Acad::eBadDxfFile,
         ": the file is not a DXF file (it holds binary data)"},
        {"late-nul.dxf", Entities(Dxf({{0, "LINE"}, {8, std::string("wa\0ll", 5)}})), Acad::eBadDxfFile,
         ": line 8: the value of group 8 holds a zero byte: the file is not a text DXF file"},
        {"words.dxf", "hello world\nthis is no drawing\n", Acad::eBadDxfFile,
         ": line 1: a group code was expected, not \"hello world\""},
        {"cut.dxf", full.substr(0, full.size() / 2), Acad::eBadDxfFile, "cut short"},
        {"no-eof.dxf", withoutEof.substr(0, withoutEof.rfind('\n', withoutEof.size() - 2) + 1), Acad::eBadDxfFile,
         "the file ends without its end marker (0 EOF): it is cut short"},
        {"no-value.dxf", "0\nSECTION\n2", Acad::eBadDxfFile, ": line 3: the file ends after group code 2: it is cut short"},
        {"not-a-number.dxf", Entities(Dxf({{0, "CIRCLE"}, {8, "0"}, {10, "1"}, {20, "2"}, {40, "wide"}})),
         Acad::eBadDxfFile, ": line 13: group 40 needs a number, not \"wide\""},
        {"negative-radius.dxf", Entities(Dxf({{0, "CIRCLE"}, {8, "0"}, {40, "-2"}})), Acad::eBadDxfFile,
         ": line 9: a radius cannot be negative"},
        {"twice.dxf", Entities(Dxf({{0, "LINE"}, {5, "2A"}, {8, "0"}}) + Dxf({{0, "LINE"}, {5, "2a"}, {8, "0"}})),
         Acad::eBadDxfFile, ": line 11: handle 2A of this LINE is used by an object before it"},
        {"bad-handle.dxf", Entities(Dxf({{0, "LINE"}, {5, "XYZ"}, {8, "0"}})), Acad::eBadDxfFile,
         ": line 7: a handle was expected, not \"XYZ\""},
        {"no-section.dxf", Dxf({{0, "LINE"}, {8, "0"}}), Acad::eBadDxfFile,
         ": line 1: a section was expected, not \"LINE\""},
        {"no-endsec.dxf", Dxf({{0, "SECTION"}, {2, "ENTITIES"}}) + kLine + Dxf({{0, "EOF"}}), Acad::eBadDxfFile,
         "the entities end without ENDSEC"},
        {"no-endtab.dxf",
         Dxf({{0, "SECTION"}, {2, "TABLES"}, {0, "TABLE"}, {2, "LAYER"}, {70, "1"}, {0, "LAYER"}, {2, "A"},
              {70, "0"}, {62, "7"}, {0, "ENDSEC"}, {0, "EOF"}}),
         Acad::eBadDxfFile, ": line 19: a table ends without ENDTAB"},
        {"block-twice.dxf",
         Dxf({{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {2, "B"}, {70, "0"}, {0, "ENDBLK"}, {0, "BLOCK"},
              {2, "b"}, {70, "0"}, {0, "ENDBLK"}, {0, "ENDSEC"}, {0, "EOF"}}),
         Acad::eBadDxfFile, ": line 13: the block b is defined twice"},
        {"no-endblk.dxf",
         Dxf({{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {2, "B"}, {0, "LINE"}, {8, "0"}, {0, "ENDSEC"},
              {0, "EOF"}}),
         Acad::eBadDxfFile, ": line 13: the block B ends without ENDBLK"},
        {"nameless-block.dxf",
         Dxf({{0, "SECTION"}, {2, "BLOCKS"}, {0, "BLOCK"}, {70, "0"}, {0, "ENDBLK"}, {0, "ENDSEC"}, {0, "EOF"}}),
         Acad::eBadDxfFile, ": line 5: a block has no name"},
        {"insert-without-block.dxf", Entities(Dxf({{0, "INSERT"}, {8, "0"}, {2, ""}})), Acad::eBadDxfFile,
         ": line 9: a block reference needs a block name"},
        {"insert-without-name.dxf", Entities(Dxf({{0, "INSERT"}, {8, "0"}, {10, "1"}})), Acad::eBadDxfFile,
         "a block reference needs a block name"},
        {"table-cells.dxf",
         Entities(Dxf({{0, "ACAD_TABLE"}, {8, "0"}, {100, "AcDbBlockReference"}, {2, "*T1"}, {100, "AcDbTable"},
                       {91, "1"}, {92, "1"}, {141, "1"}, {142, "1"}, {171, "1"}, {1, "a"}, {171, "1"}, {1, "b"}})),
         Acad::eBadDxfFile, "a table of 1 rows and 1 columns lists 2 cells"},
        {"table-heights.dxf",
         Entities(Dxf({{0, "ACAD_TABLE"}, {8, "0"}, {100, "AcDbBlockReference"}, {2, "*T1"}, {100, "AcDbTable"},
                       {91, "1"}, {92, "1"}, {141, "1"}, {141, "2"}, {142, "1"}})),
         Acad::eBadDxfFile, "a table of 1 rows lists 2 row heights"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::filesystem::path path = Write(c.name, c.text);
        std::wstring error;
        EXPECT_FALSE(host().OpenDrawing(path, error));
        std::string message = cadhost::ToUtf8(error);
        EXPECT_EQ(message.rfind(path.string(), 0), 0u) << message;  // the file's name first
        EXPECT_NE(message.find(c.message), std::string::npos) << message;
        // The open drawing is the one from before.
        AcDbObjectPointer<AcDbLine> marker(m_marker);
        EXPECT_EQ(marker.openStatus(), Acad::eOk);

        AcDbDatabase fresh(false);
        EXPECT_EQ(fresh.readDwgFile(cadhost::FromUtf8(path.string()).c_str()), c.status);
        EXPECT_EQ(fresh.approxNumObjects(), 0);  // nothing half read is left
    }
}

TEST_F(BadFileTest, MissingFilesAndFolders) {
    std::wstring error;
    std::filesystem::path missing = m_folder.path() / "nowhere.dxf";
    EXPECT_FALSE(host().OpenDrawing(missing, error));
    EXPECT_EQ(cadhost::ToUtf8(error), missing.string() + ": no such file");
    AcDbDatabase fresh(false);
    EXPECT_EQ(fresh.readDwgFile(cadhost::FromUtf8(missing.string()).c_str()), Acad::eFileNotFound);
    EXPECT_EQ(fresh.readDwgFile(cadhost::FromUtf8(m_folder.path().string()).c_str()), Acad::eCantOpenFile);
    EXPECT_EQ(fresh.readDwgFile(L""), Acad::eInvalidInput);
    EXPECT_EQ(fresh.readDwgFile(nullptr), Acad::eInvalidInput);
}

TEST_F(BadFileTest, WhatTheHostCanReadOfOddFiles) {
    // Only entities, no header: release 12 rules; a layer that no table
    // defines is made; a section the host does not know is kept.
    std::string text = Dxf({{999, "a comment"}, {0, "SECTION"}, {2, "ENTITIES"}}) +
                       Dxf({{0, "LINE"}, {8, "Nowhere"}, {10, "1"}, {20, "2"}, {11, "4"}, {21, "6"}}) +
                       Dxf({{0, "ENDSEC"}, {0, "SECTION"}, {2, "OWNDATA"}, {1, "kept"}, {90, "7"}, {0, "ENDSEC"},
                            {0, "EOF"}});
    std::filesystem::path path = Write("odd.dxf", text);
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    ASSERT_EQ(model->entityIds().size(), 1u);
    AcDbObjectPointer<AcDbLine> line(model->entityIds()[0]);
    ASSERT_EQ(line.openStatus(), Acad::eOk);
    EXPECT_EQ(line->endPoint(), AcGePoint3d(4, 6, 0));
    ACHAR* layer = line->layer();
    EXPECT_STREQ(layer, L"Nowhere");
    acutDelBuffer(layer);
    line.close();
    model.close();
    std::filesystem::path saved = m_folder.path() / "odd.saved.dxf";
    ASSERT_TRUE(host().SaveDrawing(saved, error)) << cadhost::ToUtf8(error);
    std::string written = qmtest::ReadText(saved);
    EXPECT_NE(written.find("OWNDATA\n  1\nkept\n 90\n7\n  0\nENDSEC"), std::string::npos);
    EXPECT_NE(written.find("LAYER\n  5\n"), std::string::npos);  // the layer is in the file now
    ASSERT_TRUE(host().OpenDrawing(saved, error)) << cadhost::ToUtf8(error);
}

TEST_F(BadFileTest, AnEmbeddedObjectAheadOfItsTextGoesBehindIt) {
    // A text's embedded object (101) closes it; one that a file gives first
    // keeps its groups, and the text's own groups after it are kept with
    // it. Saved, the text's groups come first, and the file opens again the
    // same.
    std::string text = Entities(Dxf({{0, "MTEXT"}, {8, "0"}, {101, "Embedded Object"}, {70, "1"}, {10, "2"},
                                     {20, "3"}, {40, "1"}, {71, "5"}, {1, "abc"}}));
    std::string written = SavedTwice("embedded", text);
    size_t own = written.find(" 71\n1\n  1\n\n"), embedded = written.find("101\nEmbedded Object\n 70\n1\n 10\n2\n");
    EXPECT_NE(own, std::string::npos) << written;
    EXPECT_NE(embedded, std::string::npos) << written;
    EXPECT_LT(own, embedded);
}

TEST_F(BadFileTest, AnEntityWithoutMarkersInANewerFileKeepsItsGroupsInOrder) {
    // A 2000 file whose entity comes without subclass markers and with a
    // second layer group, and one whose marker follows its layer: saved,
    // the marker goes ahead of the layer, the second layer group stays
    // behind the first, and the file opens again the same.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "LINE"}, {5, "2A"}, {8, "A"}, {8, "B"}, {10, "1"}, {20, "2"}, {11, "3"},
                                     {21, "4"}}) +
                                Dxf({{0, "LINE"}, {5, "2B"}, {8, "C"}, {100, "AcDbEntity"}, {100, "AcDbLine"},
                                     {10, "1"}, {20, "2"}, {11, "3"}, {21, "4"}}));
    std::string written = SavedTwice("markerless", text);
    EXPECT_NE(written.find("100\nAcDbEntity\n  8\nA\n  8\nB\n100\nAcDbLine\n"), std::string::npos) << written;
    // A marker that comes after the layer is the one the layer counted.
    EXPECT_NE(written.find("100\nAcDbEntity\n  8\nC\n100\nAcDbLine\n"), std::string::npos) << written;
}

TEST_F(BadFileTest, AnOwnerGroupInAFileBefore2000IsKeptWhereItStood) {
    // Files before 2000 name no owners: a 330 of an entity there is not its
    // owner, and stays behind the groups it followed.
    std::string written =
        SavedTwice("r12_owner", Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1009"}, {0, "ENDSEC"}}) +
                                    Entities(Dxf({{0, "LINE"}, {8, "0"}, {10, "1"}, {20, "2"}, {11, "3"}, {21, "4"},
                                                  {5, "2C"}, {330, "1F"}})));
    EXPECT_NE(written.find(" 21\n4.0\n 31\n0.0\n330\n1F\n  0\n"), std::string::npos) << written;
}

TEST_F(BadFileTest, ATableWithPartsMissingOrDoubledKeepsItsOtherGroupsInPlace) {
    // A table without its direction, a cell with a second text after a
    // style group, and a cell whose style comes before its text; a table
    // without its marker, point and direction, whose first table group is
    // one the host keeps: the tables read, the direction is written where
    // it belongs, the second text and the style groups stay with their
    // cells, and the file saves the same twice.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "ACAD_TABLE"}, {5, "3C"}, {100, "AcDbEntity"}, {8, "0"},
                                     {100, "AcDbBlockReference"}, {2, "*T1"}, {10, "0"}, {20, "2"}, {30, "0"},
                                     {100, "AcDbTable"}, {91, "1"}, {92, "2"}, {141, "1"}, {142, "2"}, {142, "2"},
                                     {171, "1"}, {1, "a"}, {170, "1"}, {1, "c"}, {171, "1"}, {170, "2"}, {1, "b"}}) +
                                Dxf({{0, "ACAD_TABLE"}, {5, "3D"}, {100, "AcDbEntity"}, {8, "0"},
                                     {100, "AcDbBlockReference"}, {2, "*T2"}, {90, "4"}, {91, "1"}, {92, "1"},
                                     {141, "1"}, {142, "1"}, {171, "1"}, {1, "z"}}));
    std::string written = SavedTwice("table_parts", text);
    EXPECT_NE(written.find("100\nAcDbTable\n 11\n1.0\n 21\n0.0\n 31\n0.0\n 91\n1\n 92\n2\n"), std::string::npos)
        << written;
    EXPECT_NE(written.find("171\n1\n  1\na\n170\n1\n  1\nc\n171\n1\n  1\nb\n170\n2\n"), std::string::npos)
        << written;
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    ASSERT_EQ(model->entityIds().size(), 2u);
    AcDbObjectPointer<AcDbTable> table(model->entityIds()[0]);
    ASSERT_EQ(table.openStatus(), Acad::eOk);
    AcString first, second;
    EXPECT_EQ(table->textString(0, 0, 0, first), Acad::eOk);
    EXPECT_EQ(table->textString(0, 1, 0, second), Acad::eOk);
    EXPECT_STREQ(first.kwszPtr(), L"a");
    EXPECT_STREQ(second.kwszPtr(), L"b");
}

TEST_F(BadFileTest, FollowersOfAnEntityThatHoldsNoneStandOnTheirOwn) {
    // A line that says attributes follow (66 1), and a sequence end after
    // it: the line reads, the end is kept as an entity of its own.
    std::string written = SavedTwice(
        "line_followers", Entities(Dxf({{0, "LINE"}, {8, "0"}, {66, "1"}, {10, "1"}, {20, "2"}, {11, "3"}, {21, "4"}}) +
                                   Dxf({{0, "SEQEND"}, {8, "0"}})));
    EXPECT_NE(written.find("  0\nLINE\n"), std::string::npos) << written;
    EXPECT_NE(written.find("  0\nSEQEND\n"), std::string::npos) << written;
}

TEST_F(BadFileTest, AnExtensionDictionaryGivenLateIsWrittenAfterTheHandle) {
    // An entity the host does not know, whose extension dictionary comes
    // after its owner; one whose dictionary group comes after its marker,
    // where no object header has it; and one with an empty dictionary
    // group: the first is written right after the handle, the others are
    // kept where they stood, and the file saves the same twice.
    std::string text =
        Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
        Dxf({{0, "SECTION"}, {2, "ENTITIES"}}) +
        Dxf({{0, "WIDGET"}, {5, "3C"}, {330, "1F"}, {102, "{ACAD_XDICTIONARY"}, {360, "51"}, {102, "}"},
             {100, "AcDbEntity"}, {8, "0"}, {1, "kept"}}) +
        Dxf({{0, "WIDGET"}, {5, "3E"}, {100, "AcDbEntity"}, {8, "0"}, {1, "kept"}, {102, "{ACAD_XDICTIONARY"},
             {360, "52"}, {102, "}"}, {2, "also kept"}}) +
        Dxf({{0, "WIDGET"}, {5, "3D"}, {102, "{ACAD_XDICTIONARY"}, {102, "}"}, {100, "AcDbEntity"}, {8, "0"}}) +
        Dxf({{0, "ENDSEC"}, {0, "SECTION"}, {2, "OBJECTS"}, {0, "DICTIONARY"}, {5, "C"}, {100, "AcDbDictionary"},
             {0, "DICTIONARY"}, {5, "51"}, {330, "3C"}, {100, "AcDbDictionary"}, {0, "DICTIONARY"}, {5, "52"},
             {330, "3E"}, {100, "AcDbDictionary"}, {0, "ENDSEC"}, {0, "EOF"}});
    std::string written = SavedTwice("late_dictionary", text);
    EXPECT_NE(written.find("WIDGET\n  5\n3C\n102\n{ACAD_XDICTIONARY\n360\n51\n102\n}\n330\n"),
              std::string::npos)
        << written;
    EXPECT_NE(written.find("  8\n0\n  1\nkept\n102\n{ACAD_XDICTIONARY\n360\n52\n102\n}\n  2\nalso kept\n"),
              std::string::npos)
        << written;
    EXPECT_NE(written.find("WIDGET\n  5\n3D\n102\n{ACAD_XDICTIONARY\n102\n}\n"), std::string::npos) << written;
    for (auto [handle, hasDictionary] : {std::pair{0x3C, true}, std::pair{0x3E, false}}) {
        AcDbObjectId widget;
        ASSERT_EQ(db()->getAcDbObjectId(widget, false, AcDbHandle(handle)), Acad::eOk);
        AcDbObjectPointer<AcDbObject> object(widget);
        ASSERT_EQ(object.openStatus(), Acad::eOk);
        EXPECT_EQ(object->extensionDictionary().isNull(), !hasDictionary) << handle;
    }
}

TEST_F(BadFileTest, ATablesNormalIsNotTakenFromItsRowsAndColumns) {
    // The block reference's part of a table gives a normal; the table's
    // part then gives rows and columns. The normal stays the one given.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "ACAD_TABLE"}, {5, "3C"}, {100, "AcDbEntity"}, {8, "0"},
                                     {100, "AcDbBlockReference"}, {2, "*T1"}, {10, "0"}, {20, "2"}, {30, "0"},
                                     {210, "0"}, {220, "0"}, {230, "-1"}, {100, "AcDbTable"}, {91, "2"}, {92, "3"},
                                     {141, "1"}, {141, "1"}, {142, "2"}, {142, "2"}, {142, "2"}}));
    SavedTwice("table_normal", text);
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    ASSERT_EQ(model->entityIds().size(), 1u);
    AcDbObjectPointer<AcDbTable> table(model->entityIds()[0]);
    ASSERT_EQ(table.openStatus(), Acad::eOk);
    EXPECT_EQ(table->normal(), AcGeVector3d(0, 0, -1));
    EXPECT_EQ(table->numRows(), 2u);
    EXPECT_EQ(table->numColumns(), 3u);
}

TEST_F(BadFileTest, ObjectsThatOwnEachOtherAreWrittenAndDoNotHangTheWriter) {
    // Two dictionaries that name each other as owner: saving looks up
    // whether an owner is erased, and must come to an end.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Dxf({{0, "SECTION"}, {2, "OBJECTS"}, {0, "DICTIONARY"}, {5, "C"}, {100, "AcDbDictionary"},
                            {0, "DICTIONARY"}, {5, "51"}, {330, "52"}, {100, "AcDbDictionary"}, {0, "DICTIONARY"},
                            {5, "52"}, {330, "51"}, {100, "AcDbDictionary"}, {0, "ENDSEC"}, {0, "EOF"}});
    std::string written = SavedTwice("owner_ring", text);
    EXPECT_NE(written.find("DICTIONARY\n  5\n51\n330\n52\n"), std::string::npos) << written;
    EXPECT_NE(written.find("DICTIONARY\n  5\n52\n330\n51\n"), std::string::npos) << written;
    AcDbObjectId first, second;
    ASSERT_EQ(db()->getAcDbObjectId(first, false, AcDbHandle(0x51)), Acad::eOk);
    ASSERT_EQ(db()->getAcDbObjectId(second, false, AcDbHandle(0x52)), Acad::eOk);
    EXPECT_FALSE(first.isEffectivelyErased());
    {
        AcDbObjectPointer<AcDbObject> erased(second, AcDb::kForWrite);
        ASSERT_EQ(erased.openStatus(), Acad::eOk);
        ASSERT_EQ(erased->erase(), Acad::eOk);
    }
    EXPECT_TRUE(first.isEffectivelyErased());  // its owner is gone
}

TEST_F(BadFileTest, APointsYAfterAGroupKeptBetweenIsStillPartOfThePoint) {
    // A line whose start point has a group the host keeps between its X
    // and its Y, and another kept group before the end point: the point
    // reads whole, the first kept group goes behind it, the second stays
    // ahead of the end point, the same on every save.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "LINE"}, {5, "2A"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbLine"},
                                     {10, "1"}, {22, "9"}, {20, "2"}, {30, "0"}, {280, "1"}, {11, "3"}, {21, "4"},
                                     {31, "0"}}));
    std::string written = SavedTwice("split_point", text);
    // Both kept groups stay ahead of the end point, where the file had them.
    EXPECT_NE(written.find(" 10\n1.0\n 20\n2.0\n 30\n0.0\n 22\n9\n280\n1\n 11\n3.0\n"), std::string::npos)
        << written;
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    ASSERT_EQ(model->entityIds().size(), 1u);
    AcDbObjectPointer<AcDbLine> line(model->entityIds()[0]);
    ASSERT_EQ(line.openStatus(), Acad::eOk);
    EXPECT_EQ(line->startPoint(), AcGePoint3d(1, 2, 0));
}

TEST_F(BadFileTest, PolylineVerticesWithGroupsOutOfPlaceSaveTheSameTwice) {
    // A vertex whose width comes between its X and Y and a kept group after
    // it; and, in a file before 2000, a polyline with subclass markers
    // (which such files do not write) and vertex groups before any vertex.
    std::string newer =
        Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
        Entities(Dxf({{0, "LWPOLYLINE"}, {5, "30"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPolyline"}, {90, "2"},
                      {70, "0"}, {10, "0"}, {40, "2"}, {20, "1"}, {71, "1"}, {10, "5"}, {20, "5"}}));
    std::string written = SavedTwice("vertex_width_first", newer);
    EXPECT_NE(written.find(" 10\n0.0\n 20\n1.0\n 40\n2.0\n 41\n0.0\n 71\n1\n 10\n5.0\n"), std::string::npos)
        << written;
    std::string older =
        Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1009"}, {0, "ENDSEC"}}) +
        Entities(Dxf({{0, "LWPOLYLINE"}, {5, "30"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbPolyline"}, {90, "2"},
                      {70, "1"}, {20, "7"}, {42, "1"}, {10, "2"}, {20, "0"}, {40, "0.1"}, {41, "0.2"}, {10, "2"},
                      {20, "2"}}));
    written = SavedTwice("r12_markers", older);
    EXPECT_EQ(written.find("AcDbPolyline"), std::string::npos) << written;
}

TEST_F(BadFileTest, ATableWithoutInsertionPointKeepsAStrayTextPartBehindItsCell) {
    // The writer gives a table's insertion point where the file had none;
    // a text part after the last cell's text stays behind that text.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1015"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "ACAD_TABLE"}, {5, "3C"}, {100, "AcDbEntity"}, {8, "0"},
                                     {100, "AcDbBlockReference"}, {2, "*T1"}, {100, "AcDbTable"}, {91, "1"},
                                     {92, "1"}, {141, "1"}, {142, "2"}, {171, "1"}, {1, "d"}, {2, " 96"}}));
    std::string written = SavedTwice("table_without_point", text);
    EXPECT_NE(written.find("171\n1\n  1\nd\n  2\n 96\n"), std::string::npos) << written;
}

TEST_F(BadFileTest, ABlockRecordTableInAFileBefore2000IsKeptAsItCame) {
    // Files before 2000 give blocks no records: a BLOCK_RECORD table there
    // is not the drawing's block table, and it and its record are written
    // back as they came.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1009"}, {0, "ENDSEC"}}) +
                       Dxf({{0, "SECTION"}, {2, "TABLES"}, {0, "TABLE"}, {2, "BLOCK_RECORD"}, {70, "1"},
                            {0, "BLOCK_RECORD"}, {2, "DOOR"}, {70, "0"}, {0, "ENDTAB"}, {0, "ENDSEC"}}) +
                       Entities(kLine);
    std::string written = SavedTwice("r12_block_records", text);
    EXPECT_NE(written.find("  0\nTABLE\n  2\nBLOCK_RECORD\n 70\n1\n  0\nBLOCK_RECORD\n"), std::string::npos) << written;
    EXPECT_NE(written.find("  2\nDOOR\n 70\n0\n  0\nENDTAB\n"), std::string::npos) << written;
    AcDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db()->getSymbolTable(blocks, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(blocks->has(L"DOOR"));
    EXPECT_TRUE(blocks->has(ACDB_MODEL_SPACE));
    blocks->close();
}

TEST_F(BadFileTest, ExtendedDataInTwoRunsIsOneRunAfterTheObjectsGroups) {
    // Two runs of extended data parted by the line's own groups, the second
    // naming its application with a byte of the file's code page: both are
    // the line's, written as one run after its groups, the same on every
    // save, and the code page's byte comes back as its character.
    std::string text = Dxf({{0, "SECTION"}, {2, "HEADER"}, {9, "$ACADVER"}, {1, "AC1024"}, {0, "ENDSEC"}}) +
                       Entities(Dxf({{0, "LINE"}, {5, "2A"}, {100, "AcDbEntity"}, {8, "0"}, {100, "AcDbLine"},
                                     {10, "0"}, {20, "0"}, {1001, "QMONE"}, {1000, "one"}, {11, "1"},
                                     {1001, "QMTWO\xd7"}, {1000, "two"}, {21, "1"}}));
    std::string written = SavedTwice("xdata_two_runs", text);
    EXPECT_NE(written.find(" 11\n1.0\n 21\n1.0\n 31\n0.0\n1001\nQMONE\n1000\none\n1001\nQMTWO\xc3\x97\n1000\ntwo\n  0\n"),
              std::string::npos)
        << written;
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId());
    ASSERT_EQ(model->entityIds().size(), 1u);
    AcDbObjectPointer<AcDbLine> line(model->entityIds()[0]);
    ASSERT_EQ(line.openStatus(), Acad::eOk);
    EXPECT_EQ(line->endPoint(), AcGePoint3d(1, 1, 0));
    resbuf* data = line->xData(L"QMTWO\u00d7");
    ASSERT_NE(data, nullptr);
    ASSERT_NE(data->rbnext, nullptr);
    EXPECT_STREQ(data->rbnext->resval.rstring, L"two");
    acutRelRb(data);
}

}  // namespace
