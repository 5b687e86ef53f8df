// Saving: what the host made in memory reads back the same, texts keep
// their characters in every release, a failed save leaves the old file.
#include <adslib.h>
#include <dbdict.h>
#include <dbdynblk.h>
#include <dbents.h>
#include <dbmtext.h>
#include <dbobjptr.h>
#include <dbpl.h>
#include <dbtable.h>

#include <sys/resource.h>
#include <sys/wait.h>

#include <csignal>
#include <cmath>

#include "db/DatabaseImpl.h"
#include "db/DynamicBlocks.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

std::wstring Take(ACHAR* text) {
    std::wstring out = text ? text : L"";
    acutDelBuffer(text);
    return out;
}

class SaveTest : public qmtest::HostTest {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    AcDbObjectId Append(AcDbObjectId spaceId, AcDbEntity* entity) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> space(spaceId, AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(space->appendAcDbEntity(id, entity), Acad::eOk);
        entity->close();
        return id;
    }

    AcDbObjectId AddLayer(const wchar_t* name, bool frozen, bool off, bool locked) {
        AcDbSymbolTablePointer<AcDbLayerTable> table(db(), AcDb::kForWrite);
        auto* layer = new AcDbLayerTableRecord;
        layer->setName(name);
        layer->setIsFrozen(frozen);
        layer->setIsOff(off);
        layer->setIsLocked(locked);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, layer), Acad::eOk);
        layer->close();
        return id;
    }

    AcDbObjectId AddBlock(const wchar_t* name) {
        AcDbSymbolTablePointer<AcDbBlockTable> table(db(), AcDb::kForWrite);
        auto* block = new AcDbBlockTableRecord;
        block->setName(name);
        AcDbObjectId id;
        EXPECT_EQ(table->add(id, block), Acad::eOk);
        block->close();
        return id;
    }

    std::filesystem::path SaveAndOpen(const std::string& name) {
        std::filesystem::path path = m_folder.path() / name;
        std::wstring error;
        EXPECT_TRUE(host().SaveDrawing(path, error)) << cadhost::ToUtf8(error);
        EXPECT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
        return path;
    }

    struct Made {
        AcDbObjectId door, pline, circle, reference, mtext, table;
    };

    // A drawing of everything the host writes, made through the platform's
    // calls.
    Made BuildSample() {
        AcDbObjectId walls = AddLayer(L"Walls", false, true, false);
        AddLayer(L"Ice", true, false, true);
        AcDbObjectId door = AddBlock(L"DOOR");
        auto* definition = new AcDbAttributeDefinition(AcGePoint3d(0, -1, 0), L"90", L"SIZE", L"Size?");
        definition->setConstant(false);
        definition->setPreset(true);
        Append(door, definition);
        Append(door, new AcDbArc(AcGePoint3d::kOrigin, 1, 0, M_PI / 2));

        auto* pline = new AcDbPolyline;
        pline->addVertexAt(0, AcGePoint2d(0, 0), 0.5);
        pline->addVertexAt(1, AcGePoint2d(4, 0));
        pline->addVertexAt(2, AcGePoint2d(4, 3), 0, 0.1, 0.2);
        pline->setClosed(true);
        pline->setLayer(walls);
        AcDbObjectId plineId = Append(db()->modelSpaceId(), pline);
        AcDbObjectId circleId = Append(db()->modelSpaceId(), new AcDbCircle(AcGePoint3d(1, 2, 3), AcGeVector3d(0, 0, -1), 2));
        auto* reference = new AcDbBlockReference(AcGePoint3d(10, 5, 0), door);
        reference->setRotation(M_PI / 6);
        reference->setScaleFactors(AcGeScale3d(2, 2, 1));
        AcDbObjectId referenceId = Append(db()->paperSpaceId(), reference);
        {
            AcDbObjectPointer<AcDbBlockReference> open(referenceId, AcDb::kForWrite);
            auto* attribute = new AcDbAttribute(AcGePoint3d(10, 4, 0), L"120", L"SIZE");
            EXPECT_EQ(open->appendAttribute(attribute), Acad::eOk);
            attribute->close();
    }
        auto* mtext = new AcDbMText;
        mtext->setLocation(AcGePoint3d(0, 10, 0));
        mtext->setContents(L"Two\\Plines");
        mtext->setTextHeight(0.5);
        mtext->setRotation(M_PI / 4);
        AcDbObjectId mtextId = Append(db()->modelSpaceId(), mtext);
        {
            AcDbObjectPointer<AcDbMText> open(mtextId, AcDb::kForWrite);
            EXPECT_EQ(open->createExtensionDictionary(), Acad::eOk);
            AcDbObjectPointer<AcDbDictionary> extension(open->extensionDictionary(), AcDb::kForWrite);
            auto* inner = new AcDbDictionary;
            AcDbObjectId innerId;
            EXPECT_EQ(extension->setAt(L"ACAD_FIELD", inner, innerId), Acad::eOk);
            inner->close();
            EXPECT_EQ(acdbRegApp(L"QMSAVE"), RTNORM);
            resbuf* data = acutBuildList(1001, L"QMSAVE", 1000, L"text", 1070, 3, 1040, 2.5, 1071, 70000, 0);
            EXPECT_EQ(open->setXData(data), Acad::eOk);
            acutRelRb(data);
    }
        auto* table = new AcDbTable;
        table->setSize(2, 28);
        table->setPosition(AcGePoint3d(0, 50, 0));
        table->setTextString(1, 27, L"{\\C1;red}");
        AcDbObjectId tableId = Append(db()->modelSpaceId(), table);
        AcDbObjectId copy = AddBlock(L"*U5");
        EXPECT_EQ(cadhost::MakeDynamicBlock(door), Acad::eOk);
        EXPECT_EQ(cadhost::TieAnonymousCopy(copy, door), Acad::eOk);
        db()->setLunits(4);
        db()->setLuprec(3);
        db()->setDimzin(8);
        db()->setClayer(walls);
        db()->setUcs(AcGePoint3d(1, 2, 0), AcGeVector3d(0, 1, 0), AcGeVector3d(-1, 0, 0));
        db()->setTilemode(false);

        return Made{door, plineId, circleId, referenceId, mtextId, tableId};
    }

    AcDbObjectId ByHandle(AcDbHandle handle) {
        AcDbObjectId id;
        EXPECT_EQ(db()->getAcDbObjectId(id, false, handle), Acad::eOk);
        return id;
    }
};

TEST_F(SaveTest, WhatWasMadeInMemoryReadsBack) {
    Made made = BuildSample();
    AcDbHandle doorHandle = made.door.handle();  // the id goes with the drawing that is closed
    AcDbHandle plineHandle = made.pline.handle(), circleHandle = made.circle.handle(),
               referenceHandle = made.reference.handle(), mtextHandle = made.mtext.handle(),
               tableHandle = made.table.handle();
    SaveAndOpen("made.dxf");

    EXPECT_EQ(db()->lunits(), 4);
    EXPECT_EQ(db()->luprec(), 3);
    EXPECT_EQ(db()->dimzin(), 8);
    EXPECT_FALSE(db()->tilemode());
    EXPECT_EQ(db()->currentSpaceId(), db()->paperSpaceId());
    EXPECT_EQ(db()->ucsorg(), AcGePoint3d(1, 2, 0));
    EXPECT_EQ(db()->ucsxdir(), AcGeVector3d(0, 1, 0));
    {
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> current(db()->clayer());
        EXPECT_EQ(current->name(), L"Walls");
        EXPECT_TRUE(current->isOff());
        AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> ice(L"Ice", db());
        ASSERT_EQ(ice.openStatus(), Acad::eOk);
        EXPECT_TRUE(ice->isFrozen());
        EXPECT_TRUE(ice->isLocked());
        EXPECT_FALSE(ice->isOff());
    }
    {
        AcDbObjectPointer<AcDbPolyline> open(ByHandle(plineHandle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_EQ(open->numVerts(), 3u);
        double bulge, start, end;
        open->getBulgeAt(0, bulge);
        open->getWidthsAt(2, start, end);
        EXPECT_EQ(bulge, 0.5);
        EXPECT_EQ(start, 0.1);
        EXPECT_EQ(end, 0.2);
        EXPECT_TRUE(open->isClosed());
        EXPECT_EQ(Take(open->layer()), L"Walls");
    }
    {
        AcDbObjectPointer<AcDbCircle> open(ByHandle(circleHandle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_TRUE(open->center().isEqualTo(AcGePoint3d(1, 2, 3)));
        EXPECT_EQ(open->normal(), AcGeVector3d(0, 0, -1));
    }
    {
        AcDbObjectPointer<AcDbBlockReference> open(ByHandle(referenceHandle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_EQ(open->ownerId(), db()->paperSpaceId());
        EXPECT_NEAR(open->rotation(), M_PI / 6, 1e-12);
        EXPECT_EQ(open->scaleFactors(), AcGeScale3d(2, 2, 1));
        std::unique_ptr<AcDbObjectIterator> it(open->attributeIterator());
        ASSERT_FALSE(it->done());
        AcDbObjectPointer<AcDbAttribute> attribute(it->objectId());
        EXPECT_EQ(Take(attribute->tag()), L"SIZE");
        EXPECT_EQ(Take(attribute->textString()), L"120");
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(open->blockTableRecord());
        EXPECT_EQ(block->name(), L"DOOR");
        EXPECT_TRUE(block->hasAttributeDefinitions());
    }
    {
        AcDbObjectPointer<AcDbMText> open(ByHandle(mtextHandle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_EQ(Take(open->contents()), L"Two\\Plines");
        EXPECT_NEAR(open->rotation(), M_PI / 4, 1e-12);
        AcDbObjectPointer<AcDbDictionary> extension(open->extensionDictionary());
        ASSERT_EQ(extension.openStatus(), Acad::eOk);
        EXPECT_TRUE(extension->has(L"ACAD_FIELD"));
        resbuf* data = open->xData(L"QMSAVE");
        ASSERT_NE(data, nullptr);
        const resbuf* rb = data->rbnext;
        EXPECT_STREQ(rb->resval.rstring, L"text");
        EXPECT_EQ(rb->rbnext->resval.rint, 3);
        EXPECT_EQ(rb->rbnext->rbnext->resval.rreal, 2.5);
        EXPECT_EQ(rb->rbnext->rbnext->rbnext->resval.rlong, 70000);
        acutRelRb(data);
    }
    {
        AcDbObjectPointer<AcDbTable> open(ByHandle(tableHandle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_EQ(open->numColumns(), 28u);
        AcString text;
        ASSERT_EQ(open->textString(1, 27, AcDbTable::kIgnoreMtextFormat, text), Acad::eOk);
        EXPECT_EQ(text.str(), L"red");
    }
    // The tie of the anonymous copy is in the file; that DOOR is dynamic
    // was the host's model only (files mark it by its parameters, which the
    // host does not write).
    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> anonymous(L"*U5", db());
    ASSERT_EQ(anonymous.openStatus(), Acad::eOk);
    resbuf* tie = anonymous->xData(L"AcDbBlockRepBTag");
    ASSERT_NE(tie, nullptr);
    EXPECT_EQ(tie->rbnext->rbnext->restype, 1005);
    EXPECT_EQ(AcDbHandle(tie->rbnext->rbnext->resval.rstring), doorHandle);
    acutRelRb(tie);
}

TEST_F(SaveTest, AnotherReaderReadsWhatTheHostMade) {
    BuildSample();
    std::filesystem::path path = m_folder.path() / "for_ezdxf.dxf";
    std::wstring error;
    ASSERT_TRUE(host().SaveDrawing(path, error)) << cadhost::ToUtf8(error);
    std::string command = "/usr/bin/python3 " + qmtest::FixturePath("check_with_ezdxf.py").string() + " audit " +
                          path.string() + " 2>&1";
    std::FILE* pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[512];
    while (std::fgets(buffer, sizeof buffer, pipe)) output += buffer;
    int status = pclose(pipe);
    int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    if (code == 77) GTEST_SKIP() << output;
    EXPECT_EQ(code, 0) << output;
    for (const char* line : {"model LWPOLYLINE 1", "model CIRCLE 1", "model MTEXT 1", "model ACAD_TABLE 1",
                             "paper INSERT 1"})
        EXPECT_NE(output.find(line), std::string::npos) << line << " in\n" << output;
}

TEST_F(SaveTest, TextsKeepTheirCharactersInEveryRelease) {
    const wchar_t* text = L"Gr\u00F6\u00DFe \u20AC \u0416 \u65E5";
    struct Case {
        const char* fixture;  // empty: a new drawing
        std::string raw;      // how the text stands in the saved file
    };
    const Case cases[] = {
        // From 2007 on files are UTF-8; a new drawing is a 2010 file.
        {"", "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xD0\x96 \xE6\x97\xA5"},
        {"drawing_r2018.dxf", "Gr\xC3\xB6\xC3\x9F" "e \xE2\x82\xAC \xD0\x96 \xE6\x97\xA5"},
        // Before, in the file's code page (1252), the rest as \U+XXXX.
        {"drawing_r2000.dxf", "Gr\xF6\xDF" "e \x80 \\U+0416 \\U+65E5"},
        {"drawing_r12.dxf", "Gr\xF6\xDF" "e \x80 \\U+0416 \\U+65E5"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.fixture);
        std::wstring error;
        if (*c.fixture) {
            ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath(c.fixture), error));
        }
        else host().NewDrawing();
        AcDbObjectId id = Append(db()->modelSpaceId(), new AcDbText(AcGePoint3d::kOrigin, text, AcDbObjectId::kNull, 1));
        AcDbHandle handle = id.handle();
        std::filesystem::path path = SaveAndOpen("texts.dxf");
        std::string raw = qmtest::ReadText(path);
        EXPECT_NE(raw.find(c.raw), std::string::npos) << raw.substr(raw.find("Gr"), 40);
        AcDbObjectPointer<AcDbText> open(ByHandle(handle));
        ASSERT_EQ(open.openStatus(), Acad::eOk);
        EXPECT_EQ(Take(open->textString()), text);
    }
    // Names compare without regard to case, also beyond ASCII.
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("drawing_r2018.dxf"), error));
    AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(L"GR\u00D6\u00DFE", db());
    EXPECT_EQ(layer.openStatus(), Acad::eOk);
}

TEST_F(SaveTest, AttributeTextsOfEveryLengthReadBack) {
    // Around the few characters that an object keeps inside itself, and
    // beyond ASCII; tags hold no blank.
    const std::wstring letters = L"S\u00D6\u20AC\U0001F600IZEABCDEFGHIJKLMNOPQRSTUVW";
    std::vector<std::wstring> texts;
    for (size_t length = 1; length <= 20; ++length) texts.push_back(letters.substr(0, length));
    texts.push_back(std::wstring(400, L'L'));
    AcDbObjectId block = AddBlock(L"LENGTHS");
    for (const std::wstring& text : texts)
        Append(block, new AcDbAttributeDefinition(AcGePoint3d::kOrigin, text.c_str(), text.c_str(),
                                                  (text + L" prompt").c_str()));
    AcDbObjectId referenceId = Append(db()->modelSpaceId(), new AcDbBlockReference(AcGePoint3d::kOrigin, block));
    {
        AcDbObjectPointer<AcDbBlockReference> open(referenceId, AcDb::kForWrite);
        for (const std::wstring& text : texts) {
            auto* attribute = new AcDbAttribute(AcGePoint3d::kOrigin, (L"value " + text).c_str(), text.c_str());
            EXPECT_EQ(open->appendAttribute(attribute), Acad::eOk);
            attribute->close();
        }
    }
    AcDbHandle referenceHandle = referenceId.handle();
    SaveAndOpen("lengths.dxf");

    AcDbObjectPointer<AcDbBlockReference> open(ByHandle(referenceHandle));
    ASSERT_EQ(open.openStatus(), Acad::eOk);
    std::unique_ptr<AcDbObjectIterator> it(open->attributeIterator());
    std::vector<std::wstring> values, copies;
    for (; !it->done(); it->step()) {
        AcDbObjectPointer<AcDbAttribute> attribute(it->objectId());
        ASSERT_EQ(attribute.openStatus(), Acad::eOk);
        values.push_back(std::wstring(attribute->tagConst()) + L"=" + attribute->textStringConst());
        copies.push_back(Take(attribute->tag()) + L"=" + Take(attribute->textString()));
    }
    std::vector<std::wstring> expected;
    for (const std::wstring& text : texts) expected.push_back(text + L"=value " + text);
    EXPECT_EQ(values, expected);
    EXPECT_EQ(copies, expected);

    AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(open->blockTableRecord());
    ASSERT_EQ(record.openStatus(), Acad::eOk);
    AcDbBlockTableRecordIterator* entities = nullptr;
    ASSERT_EQ(record->newIterator(entities), Acad::eOk);
    std::vector<std::wstring> definitions;
    for (; !entities->done(); entities->step()) {
        AcDbEntity* entity = nullptr;
        ASSERT_EQ(entities->getEntity(entity, AcDb::kForRead), Acad::eOk);
        if (auto* definition = AcDbAttributeDefinition::cast(entity))
            definitions.push_back(std::wstring(definition->tagConst()) + L"|" + definition->promptConst() + L"|" +
                                  definition->textStringConst());
        entity->close();
    }
    delete entities;
    std::vector<std::wstring> expectedDefinitions;
    for (const std::wstring& text : texts) expectedDefinitions.push_back(text + L"|" + text + L" prompt|" + text);
    EXPECT_EQ(definitions, expectedDefinitions);
}

TEST_F(SaveTest, AFailedSaveLeavesTheOldFile) {
    std::filesystem::path path = m_folder.path() / "keep.dxf";
    std::wstring error;
    ASSERT_TRUE(host().SaveDrawing(path, error));
    std::string before = qmtest::ReadText(path);
    // Enough lines that the file outgrows the limit set below.
    for (int i = 0; i < 3000; ++i)
        Append(db()->modelSpaceId(), new AcDbLine(AcGePoint3d(i, 0, 0), AcGePoint3d(i, 1, 0)));
    struct rlimit old;
    getrlimit(RLIMIT_FSIZE, &old);
    auto previous = std::signal(SIGXFSZ, SIG_IGN);
    struct rlimit small = old;
    small.rlim_cur = before.size() + 4096;
    setrlimit(RLIMIT_FSIZE, &small);
    bool saved = host().SaveDrawing(path, error);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, previous);
    EXPECT_FALSE(saved);
    EXPECT_NE(cadhost::ToUtf8(error).find("the file is unchanged"), std::string::npos) << cadhost::ToUtf8(error);
    EXPECT_EQ(qmtest::ReadText(path), before);
    // No half-written file is left beside it.
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
        if (entry.path().extension() != "" || entry.path().filename().string()[0] == '.') ++files;
    EXPECT_EQ(files, 1 + static_cast<int>(std::filesystem::exists(m_folder.path() / "settings")));

    EXPECT_FALSE(host().SaveDrawing(m_folder.path() / "no" / "such" / "folder.dxf", error));
    EXPECT_FALSE(host().SaveDrawing(m_folder.path(), error));
    EXPECT_NE(cadhost::ToUtf8(error).find("is a folder"), std::string::npos);
}

TEST_F(SaveTest, ChangesToAFilesObjectsAreSaved) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("tables_r2010.dxf"), error));
    AcDbObjectId tableId;
    ASSERT_EQ(db()->getAcDbObjectId(tableId, false, AcDbHandle(L"3B")), Acad::eOk);
    {
        AcDbObjectPointer<AcDbTable> table(tableId, AcDb::kForWrite);
        ASSERT_EQ(table.openStatus(), Acad::eOk);
        // A cell that had no text gets one; one that had gets another.
        ASSERT_EQ(table->setTextString(0, 5, L"new"), Acad::eOk);
        ASSERT_EQ(table->setTextString(0, 0, L"Renamed"), Acad::eOk);
    }
    SaveAndOpen("edited.dxf");
    ASSERT_EQ(db()->getAcDbObjectId(tableId, false, AcDbHandle(L"3B")), Acad::eOk);
    AcDbObjectPointer<AcDbTable> table(tableId);
    ASSERT_EQ(table.openStatus(), Acad::eOk);
    AcString text;
    table->textString(0, 5, 0, text);
    EXPECT_EQ(text.str(), L"new");
    table->textString(0, 0, 0, text);
    EXPECT_EQ(text.str(), L"Renamed");
    table->textString(1, 1, AcDbTable::kIgnoreMtextFormat, text);
    EXPECT_EQ(text.str(), L"big");
    table->textString(2, 29, 0, text);
    EXPECT_EQ(text.length(), 349u);  // the long text of two chunks
    // Each cell keeps its own groups: the style of the cell after the new
    // text is still that cell's.
    std::vector<qmtest::DxfGroup> groups = qmtest::ReadDxfGroups(m_folder.path() / "edited.dxf");
    size_t at = 0;
    for (size_t i = 0; i < groups.size(); ++i)
        if (groups[i].code == 1 && groups[i].value == "new") at = i;
    ASSERT_GT(at, 0u);
    EXPECT_EQ(groups[at + 1].code, 7);    // the new text's own cell style follows
    EXPECT_EQ(groups[at + 4].code, 171);  // then the next cell
}

TEST_F(SaveTest, PolylineWidthsAndBulgesStayAsTheFileHadThem) {
    // A tapered vertex (end width 0) among vertices without widths, bulges
    // only where they are not 0, an unknown group after the last vertex.
    std::string text =
        "0\nSECTION\n2\nENTITIES\n0\nLWPOLYLINE\n5\n30\n8\n0\n100\nAcDbEntity\n100\nAcDbPolyline\n90\n3\n70\n0\n"
        "10\n0.0\n20\n0.0\n42\n0.5\n10\n2.0\n20\n0.0\n40\n0.1\n41\n0.0\n10\n4.0\n20\n1.0\n440\n7\n"
        "0\nENDSEC\n0\nEOF\n";
    std::filesystem::path path = m_folder.path() / "tapered.dxf";
    qmtest::WriteText(path, text);
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
    std::filesystem::path saved = SaveAndOpen("tapered.saved.dxf");
    std::vector<qmtest::DxfGroup> groups = qmtest::ReadDxfGroups(saved);
    std::string polyline;
    bool in = false;
    for (const qmtest::DxfGroup& g : groups) {
        if (g.code == 0) in = g.value == "LWPOLYLINE";
        if (in && g.code != 0 && g.code != 5 && g.code != 330 && g.code != 8 && g.code != 100)
            polyline += std::to_string(g.code) + "=" + g.value + " ";
    }
    EXPECT_EQ(polyline, "90=3 70=0 10=0.0 20=0.0 42=0.5 10=2.0 20=0.0 40=0.1 41=0.0 10=4.0 20=1.0 440=7 ");
    // And the host's own file reads back the same.
    std::filesystem::path again = m_folder.path() / "tapered.again.dxf";
    ASSERT_TRUE(host().SaveDrawing(again, error));
    EXPECT_EQ(qmtest::ReadText(again), qmtest::ReadText(saved));
}

TEST_F(SaveTest, ErasedObjectsAreNotWritten) {
    std::wstring error;
    ASSERT_TRUE(host().OpenDrawing(qmtest::FixturePath("fields_r2010.dxf"), error));
    AcDbObjectId mtextId;
    ASSERT_EQ(db()->getAcDbObjectId(mtextId, false, AcDbHandle(L"2F")), Acad::eOk);
    {
        AcDbObjectPointer<AcDbMText> mtext(mtextId, AcDb::kForWrite);
        ASSERT_EQ(mtext->erase(), Acad::eOk);
    }
    std::filesystem::path path = SaveAndOpen("erased.dxf");
    AcDbObjectId id;
    EXPECT_EQ(db()->getAcDbObjectId(id, false, AcDbHandle(L"2F")), Acad::eUnknownHandle);
    // Its extension dictionary and fields went with it.
    std::string raw = qmtest::ReadText(path);
    EXPECT_EQ(raw.find("\nFIELD\n  5\n"), std::string::npos);
    EXPECT_EQ(raw.find("ACAD_FIELD"), std::string::npos);
    EXPECT_NE(raw.find("\nCIRCLE\n"), std::string::npos);
}

}  // namespace
