// The fixture drawings (made with ezdxf by tests/fixtures/make_fixtures.py)
// open with the figures ezdxf computes for them, and save back unchanged.
#include <adslib.h>
#include <dbdict.h>
#include <dbdynblk.h>
#include <dbents.h>
#include <dbobjptr.h>
#include <dbtable.h>

#include <cmath>
#include <map>
#include <sstream>

#include "db/DatabaseImpl.h"
#include "db/KeptObjects.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

using qmtest::FigureRecord;

std::string Utf8(const wchar_t* text) { return cadhost::ToUtf8(text ? text : L""); }

std::string TakeText(ACHAR* text) {
    std::string out = Utf8(text);
    acutDelBuffer(text);
    return out;
}

class FixtureTest : public qmtest::HostTest, public ::testing::WithParamInterface<const char*> {
protected:
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    void Open(const std::filesystem::path& path) {
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(path, error)) << cadhost::ToUtf8(error);
    }

    AcDbObjectId Id(const std::string& hex) {
        AcDbObjectId id;
        EXPECT_EQ(db()->getAcDbObjectId(id, false, AcDbHandle(cadhost::FromUtf8(hex).c_str())), Acad::eOk) << hex;
        return id;
    }

    AcDbObjectId BlockNamed(const std::string& name) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(cadhost::FromUtf8(name).c_str(), db());
        EXPECT_EQ(block.openStatus(), Acad::eOk) << name;
        return block.openStatus() == Acad::eOk ? block->objectId() : AcDbObjectId();
    }

    static void ExpectClose(double actual, const std::string& expected, const std::string& what) {
        double value = std::stod(expected);
        double tolerance = 1e-9 * std::fabs(value) + 1e-12;
        EXPECT_NEAR(actual, value, tolerance) << what;
    }

    void CheckEntity(const FigureRecord& r) {
        std::string where = "entity " + r[1] + " (" + r[2] + ")";
        AcDbObjectPointer<AcDbEntity> entity(Id(r[1]));
        ASSERT_EQ(entity.openStatus(), Acad::eOk) << where;
        EXPECT_EQ(cadhost::ToUtf8(cadhost::DxfNameOf(entity.object())), r[2]) << where;
        EXPECT_EQ(entity->ownerId() == db()->modelSpaceId() ? "model" : "paper", r[3]) << where;
        EXPECT_EQ(entity->ownerId() == db()->modelSpaceId() || entity->ownerId() == db()->paperSpaceId(), true) << where;
        EXPECT_EQ(TakeText(entity->layer()), r[4]) << where;
        auto* curve = AcDbCurve::cast(entity.object());
        if (r[5] != "-") {
            ASSERT_NE(curve, nullptr) << where;
            double area = -1, end = 0, length = -1;
            EXPECT_EQ(curve->getArea(area), Acad::eOk) << where;
            EXPECT_EQ(curve->getEndParam(end), Acad::eOk) << where;
            EXPECT_EQ(curve->getDistAtParam(end, length), Acad::eOk) << where;
            ExpectClose(area, r[5], where + " area");
            ExpectClose(length, r[6], where + " length");
        }
    }

    void CheckAttributes(const std::string& handle, const std::vector<std::pair<std::string, std::string>>& expected) {
        AcDbObjectPointer<AcDbBlockReference> reference(Id(handle));
        ASSERT_EQ(reference.openStatus(), Acad::eOk) << handle;
        std::vector<std::pair<std::string, std::string>> found;
        std::unique_ptr<AcDbObjectIterator> it(reference->attributeIterator());
        for (; !it->done(); it->step()) {
            AcDbObjectPointer<AcDbAttribute> attribute(it->objectId());
            ASSERT_EQ(attribute.openStatus(), Acad::eOk);
            found.emplace_back(TakeText(attribute->tag()), TakeText(attribute->textString()));
        }
        EXPECT_EQ(found, expected) << "attributes of " << handle;
    }

    size_t CountEntities(AcDbObjectId spaceId) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> space(spaceId);
        std::unique_ptr<AcDbBlockTableRecordIterator> it;
        AcDbBlockTableRecordIterator* raw = nullptr;
        space->newIterator(raw);
        it.reset(raw);
        size_t count = 0;
        for (; !it->done(); it->step()) ++count;
        return count;
    }

    void CheckBlock(const FigureRecord& r) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(cadhost::FromUtf8(r[1]).c_str(), db());
        ASSERT_EQ(block.openStatus(), Acad::eOk) << r[1];
        AcDbObjectIdArray ids;
        block->getBlockReferenceIds(ids);
        int inserts = 0;
        for (AcDbObjectId id : ids) {
            AcDbObjectPointer<AcDbEntity> reference(id);
            if (reference.openStatus() == Acad::eOk && cadhost::DxfNameOf(reference.object()) == L"INSERT") ++inserts;
        }
        EXPECT_EQ(std::to_string(inserts), r[2]) << "references of " << r[1];
        EXPECT_EQ(block->hasAttributeDefinitions() ? "1" : "0", r[3]) << r[1];
        EXPECT_EQ(block->isAnonymous() ? "1" : "0", r[4]) << r[1];
    }

    void CheckDefinition(const FigureRecord& r) {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> block(cadhost::FromUtf8(r[1]).c_str(), db());
        ASSERT_EQ(block.openStatus(), Acad::eOk);
        bool found = false;
        for (AcDbObjectId id : block->entityIds()) {
            AcDbObjectPointer<AcDbAttributeDefinition> definition(id);
            if (definition.openStatus() != Acad::eOk || TakeText(definition->tag()) != r[2]) continue;
            found = true;
            EXPECT_EQ(TakeText(definition->prompt()), r[3]) << r[2];
            EXPECT_EQ(definition->isConstant() ? "1" : "0", r[4]) << r[2];
            EXPECT_EQ(definition->isInvisible() ? "1" : "0", r[5]) << r[2];
            EXPECT_EQ(definition->isPreset() ? "1" : "0", r[6]) << r[2];
            EXPECT_EQ(definition->isVerifiable() ? "1" : "0", r[7]) << r[2];
        }
        EXPECT_TRUE(found) << "attribute definition " << r[2] << " of " << r[1];
    }

    void CheckFigures(const std::string& name) {
        std::vector<FigureRecord> figures = qmtest::ReadFigures(qmtest::FixturePath(name + ".figures.tsv"));
        ASSERT_GT(figures.size(), 5u) << "figures of " << name;
        std::map<std::string, std::vector<std::pair<std::string, std::string>>> attributes;
        std::vector<std::string> attributeOrder;
        for (const FigureRecord& r : figures) {
            const std::string& kind = r[0];
            if (kind == "entity") {
                CheckEntity(r);
                if (r[2] == "INSERT") {
                    attributes[r[1]];
                    attributeOrder.push_back(r[1]);
                }
            } else if (kind == "attrib") {
                attributes[r[1]].emplace_back(r[2], r.size() > 3 ? r[3] : "");
            } else if (kind == "count") {
                AcDbObjectId space = r[1] == "model" ? db()->modelSpaceId() : db()->paperSpaceId();
                EXPECT_EQ(std::to_string(CountEntities(space)), r[2]) << "entities in " << r[1];
            } else if (kind == "layer") {
                AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(cadhost::FromUtf8(r[1]).c_str(), db());
                ASSERT_EQ(layer.openStatus(), Acad::eOk) << r[1];
                EXPECT_EQ(layer->isFrozen() ? "1" : "0", r[2]) << r[1] << " frozen";
                EXPECT_EQ(layer->isOff() ? "1" : "0", r[3]) << r[1] << " off";
                EXPECT_EQ(layer->isLocked() ? "1" : "0", r[4]) << r[1] << " locked";
            } else if (kind == "block") {
                CheckBlock(r);
            } else if (kind == "attdef") {
                CheckDefinition(r);
            } else if (kind == "header") {
                std::string value;
                if (r[1] == "$LUNITS") value = std::to_string(db()->lunits());
                if (r[1] == "$LUPREC") value = std::to_string(db()->luprec());
                if (r[1] == "$TILEMODE") value = db()->tilemode() ? "1" : "0";
                if (r[1] == "$ACADVER") value = db()->impl().file.version;
                if (r[1] == "$CLAYER") {
                    AcDbSymbolTableRecordPointer<AcDbLayerTableRecord> layer(db()->clayer());
                    value = cadhost::ToUtf8(layer->name());
                }
                EXPECT_EQ(value, r[2]) << r[1];
            } else if (kind == "table") {
                AcDbObjectPointer<AcDbTable> table(Id(r[1]));
                ASSERT_EQ(table.openStatus(), Acad::eOk);
                EXPECT_EQ(std::to_string(table->numRows()), r[2]);
                EXPECT_EQ(std::to_string(table->numColumns()), r[3]);
                std::stringstream h(r[4]), w(r[5]);
                std::string part;
                for (int i = 0; std::getline(h, part, ';'); ++i) ExpectClose(table->rowHeight(i), part, "row height");
                for (int i = 0; std::getline(w, part, ';'); ++i) ExpectClose(table->columnWidth(i), part, "column width");
            } else if (kind == "cell") {
                AcDbObjectPointer<AcDbTable> table(Id(r[1]));
                ASSERT_EQ(table.openStatus(), Acad::eOk);
                AcString text;
                ASSERT_EQ(table->textString(std::stoi(r[2]), std::stoi(r[3]), AcDbTable::kIgnoreMtextFormat, text),
                          Acad::eOk);
                EXPECT_EQ(cadhost::ToUtf8(text.str()), r.size() > 4 ? r[4] : "") << "cell " << r[2] << "," << r[3];
            } else if (kind == "hit") {
                AcDbObjectPointer<AcDbTable> table(Id(r[1]));
                ASSERT_EQ(table.openStatus(), Acad::eOk);
                int row = -1, column = -1;
                bool hit = table->hitTest(AcGePoint3d(std::stod(r[2]), std::stod(r[3]), 0), AcGeVector3d::kZAxis, 0,
                                          0, row, column);
                EXPECT_EQ(hit, r[4] != "-1") << "hit at " << r[2] << "," << r[3];
                if (hit) {
                    EXPECT_EQ(std::to_string(row), r[4]);
                    EXPECT_EQ(std::to_string(column), r[5]);
                }
            } else if (kind == "dynamic") {
                AcDbObjectId block = BlockNamed(r[1]);
                AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> record(block);
                AcDbObjectIdArray references;
                record->getBlockReferenceIds(references);
                ASSERT_FALSE(references.isEmpty()) << r[1];
                AcDbDynBlockReference dynamic(references[0]);
                EXPECT_EQ(dynamic.isDynamicBlock(), r[2] != "-") << r[1];
                AcDbObjectId expected = r[2] != "-" ? BlockNamed(r[2]) : AcDbObjectId();
                EXPECT_EQ(dynamic.dynamicBlockTableRecord(), expected) << r[1];
            } else if (kind == "field") {
                AcDbObjectPointer<AcDbEntity> text(Id(r[1]));
                ASSERT_EQ(text.openStatus(), Acad::eOk);
                AcDbObjectPointer<AcDbDictionary> extension(text->extensionDictionary());
                ASSERT_EQ(extension.openStatus(), Acad::eOk);
                AcDbObjectId fieldsId, textFieldId;
                ASSERT_EQ(extension->getAt(L"ACAD_FIELD", fieldsId), Acad::eOk);
                AcDbObjectPointer<AcDbDictionary> fields(fieldsId);
                ASSERT_EQ(fields.openStatus(), Acad::eOk);
                ASSERT_EQ(fields->getAt(L"TEXT", textFieldId), Acad::eOk);
                EXPECT_EQ(textFieldId, Id(r[2]));
                for (const std::string& handle : {r[2], r[3]}) {
                    AcDbObjectPointer<AcDbObject> field(Id(handle));
                    ASSERT_EQ(field.openStatus(), Acad::eOk);
                    EXPECT_EQ(cadhost::DxfNameOf(field.object()), L"FIELD");
                }
            } else {
                ADD_FAILURE() << "unknown figure " << kind;
            }
        }
        for (const std::string& handle : attributeOrder) CheckAttributes(handle, attributes[handle]);
    }
};

TEST_P(FixtureTest, OpensWithTheFiguresOfEzdxf) {
    std::string name = GetParam();
    Open(qmtest::FixturePath(name + ".dxf"));
    CheckFigures(name);
}

TEST_P(FixtureTest, SavesEveryGroupBackAndOpensAgain) {
    std::string name = GetParam();
    std::filesystem::path original = qmtest::FixturePath(name + ".dxf");
    std::filesystem::path saved = m_folder.path() / (name + ".saved.dxf");
    Open(original);
    std::wstring error;
    ASSERT_TRUE(host().SaveDrawing(saved, error)) << cadhost::ToUtf8(error);
    EXPECT_EQ(qmtest::CompareDxf(original, saved), "");
    Open(saved);
    CheckFigures(name);
    // A second save of the saved drawing is the same file again.
    std::filesystem::path again = m_folder.path() / (name + ".again.dxf");
    ASSERT_TRUE(host().SaveDrawing(again, error)) << cadhost::ToUtf8(error);
    EXPECT_EQ(qmtest::ReadText(saved), qmtest::ReadText(again));
}

INSTANTIATE_TEST_SUITE_P(Fixtures, FixtureTest,
                         ::testing::Values("drawing_r2010", "drawing_r2000", "drawing_r2018", "drawing_r12",
                                           "dynamic_r2010", "tables_r2010", "fields_r2010"));

}  // namespace
