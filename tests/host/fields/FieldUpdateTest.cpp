// Bringing a drawing's fields up to date: which fields are evaluated, what
// is counted and reported, what the texts show afterwards.
#include <adslib.h>
#include <dbmtext.h>
#include <dbobjptr.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include "TableCellEvaluator.h"
#include "fields/FieldUpdate.h"
#include "host/fields/FieldTestSupport.h"
#include "support/FieldDrawings.h"
#include "support/TestHost.h"

namespace {

using qmtest::FixturePath;

// The module's Table Cell evaluator alone, so that the fixture's AcArea
// field has no evaluator and shows what becomes of such a field.
class TableCellOnly : public AcFdFieldEvaluatorLoader {
public:
    AcFdFieldEvaluator* getEvaluator(const ACHAR* id) override {
        return id && _wcsicmp(id, L"TableCell") == 0 ? &m_tableCell : nullptr;
    }

private:
    AsdkTableCellEvaluator m_tableCell;
};

class FieldUpdateTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        std::wstring error;
        ASSERT_TRUE(host().OpenDrawing(FixturePath("tablecell_fields.dxf"), error)) << cadhost::ToUtf8(error);
        ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&m_loader), Acad::eOk);
        m_texts = qmtest::ReadFieldFixture();
    }
    void TearDown() override {
        host().fieldEngine().unregisterEvaluatorLoader(&m_loader);
        HostTest::TearDown();
    }
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }
    AcDbObjectId Id(const std::string& handle) { return qmtest::IdOfHandle(db(), cadhost::FromUtf8(handle)); }
    AcDbObjectId Text(const char* name) { return Id(m_texts.at(name).text); }
    std::wstring Shown(const char* name) { return qmtest::MTextContents(Text(name)); }
    std::wstring Handle(const char* name) { return cadhost::FromUtf8(m_texts.at(name).text); }

    void SetCell(const char* table, int row, int column, const wchar_t* text) {
        AcDbObjectPointer<AcDbTable> pointer(Id(m_texts.at(table).text), AcDb::kForWrite);
        ASSERT_EQ(pointer.openStatus(), Acad::eOk);
        ASSERT_EQ(pointer->setTextString(row, column, text), Acad::eOk);
    }

    std::map<std::string, qmtest::FieldFixtureText> m_texts;
    TableCellOnly m_loader;
};

TEST_F(FieldUpdateTest, EveryTextsFieldsAreEvaluatedCountedAndShown) {
    cadhost::FieldUpdateReport report = cadhost::UpdateFields(*db());
    EXPECT_EQ(report.texts, 6);
    EXPECT_EQ(report.evaluated, 5);  // the AcArea field has no evaluator
    EXPECT_EQ(report.changed, 3);    // stale, not_a_table, gone
    EXPECT_EQ(report.textsChanged, 3);
    EXPECT_EQ(Shown("up_to_date"), L"Tag");
    EXPECT_EQ(Shown("stale"), L"Load: 12.5 kW");
    EXPECT_EQ(Shown("not_a_table"), L"####");
    EXPECT_EQ(Shown("paper_table"), L"Ground floor plan");
    EXPECT_EQ(Shown("gone"), L"####");
    EXPECT_EQ(Shown("area"), L"12.00");
    ASSERT_EQ(report.failed.size(), 2u);
    EXPECT_EQ(report.failed[0].text, Text("not_a_table"));
    EXPECT_EQ(report.failed[0].field, Id(m_texts.at("not_a_table").child));
    EXPECT_EQ(report.failed[0].code, L"%<\\TableCell " + cadhost::FromUtf8(m_texts.at("not_a_table").arguments) + L">%");
    EXPECT_EQ(report.failed[0].status, AcDbField::kInvalidCode);
    EXPECT_EQ(report.failed[0].message, L"No table has the handle " + cadhost::FromUtf8(m_texts.at("line").text) +
                                            L" in the drawing.");
    EXPECT_EQ(report.failed[1].text, Text("gone"));
    EXPECT_EQ(report.failed[1].message, L"No table has the handle FFFF in the drawing.");
    ASSERT_EQ(report.skipped.size(), 1u);
    EXPECT_EQ(report.skipped[0].text, Text("area"));
    EXPECT_EQ(report.skipped[0].message, L"No evaluator is registered for \"AcArea\".");
    // The field without evaluator keeps its value and its option.
    AcDbObjectPointer<AcDbField> area(Id(m_texts.at("area").child), AcDb::kForRead);
    EXPECT_EQ(area->evaluationStatus(), AcDbField::kSuccess);
    EXPECT_STREQ(area->getValue(), L"12.00");
    EXPECT_EQ(area->evaluationOption(), AcDbField::kAutomatic);
}

TEST_F(FieldUpdateTest, ASecondUpdateChangesNothing) {
    cadhost::UpdateFields(*db());
    cadhost::FieldUpdateReport again = cadhost::UpdateFields(*db());
    EXPECT_EQ(again.evaluated, 5);
    EXPECT_EQ(again.changed, 0);
    EXPECT_EQ(again.textsChanged, 0);
    EXPECT_EQ(again.failed.size(), 2u);
}

TEST_F(FieldUpdateTest, AChangedCellAndAnErasedTableShowInTheirTexts) {
    SetCell("schedule", 0, 0, L"{\\fArial|b1;TAG}\\Pline two");
    {
        AcDbObjectPointer<AcDbTable> index(Id(m_texts.at("index").text), AcDb::kForWrite);
        ASSERT_EQ(index.openStatus(), Acad::eOk);
        ASSERT_EQ(index->erase(), Acad::eOk);
    }
    cadhost::FieldUpdateReport report = cadhost::UpdateFields(*db());
    EXPECT_EQ(Shown("up_to_date"), L"TAG\\Pline two");
    EXPECT_EQ(Shown("paper_table"), L"####");
    EXPECT_EQ(report.changed, 5);  // these two besides stale, not_a_table and gone
    ASSERT_EQ(report.failed.size(), 3u);
    EXPECT_EQ(report.failed[1].text, Text("paper_table"));
    EXPECT_EQ(report.failed[1].message,
              L"No table has the handle " + cadhost::FromUtf8(m_texts.at("index").text) + L" in the drawing.");
}

TEST_F(FieldUpdateTest, OnlyFieldsWhoseOptionHoldsTheMomentAreEvaluated) {
    AcDbObjectId child = Id(m_texts.at("stale").child);
    {
        AcDbObjectPointer<AcDbField> field(child, AcDb::kForWrite);
        ASSERT_EQ(field->setEvaluationOption(AcDbField::kOnOpen | AcDbField::kOnDemand), Acad::eOk);
    }
    cadhost::FieldUpdateReport report = cadhost::UpdateFields(*db(), AcDbField::kRegen);
    EXPECT_EQ(report.evaluated, 4);
    EXPECT_EQ(Shown("stale"), L"Load: old");
    report = cadhost::UpdateFields(*db(), AcDbField::kDemand);
    EXPECT_EQ(Shown("stale"), L"Load: 12.5 kW");
    // A text whose own field does not take the moment keeps showing what it
    // showed.
    AcDbObjectId textField = Id(m_texts.at("up_to_date").textField);
    {
        AcDbObjectPointer<AcDbField> field(textField, AcDb::kForWrite);
        field->setEvaluationOption(AcDbField::kDisable);
    }
    SetCell("schedule", 0, 0, L"changed");
    cadhost::UpdateFields(*db(), AcDbField::kRegen);
    EXPECT_EQ(Shown("up_to_date"), L"Tag");
}

TEST_F(FieldUpdateTest, SingleLineTextsAndFieldsOfOtherPropertiesCountToo) {
    // A text whose field is filed under a property other than TEXT is
    // evaluated but its text is left alone.
    qmtest::ScriptedEvaluator probe(L"Probe", qmtest::Succeeds(L"probe\nvalue"));
    qmtest::ScriptedLoader loader;
    loader.Add(&probe);
    host().fieldEngine().registerEvaluatorLoader(&loader);
    AcDbObjectId textId;
    {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        auto* text = new AcDbText(AcGePoint3d(0, 0, 0), L"before");
        ASSERT_EQ(model->appendAcDbEntity(textId, text), Acad::eOk);
        auto* field = new AcDbField(L"%<\\Probe p>%", true);
        field->setEvaluationOption(AcDbField::kAutomatic);
        ASSERT_EQ(field->setInObject(text, L"TEXT"), Acad::eOk);
        AcDbField* child = nullptr;
        field->getChild(0, child, AcDb::kForWrite);
        child->setEvaluationOption(AcDbField::kAutomatic);
        child->close();
        field->close();
        auto* other = new AcDbField(L"%<\\Probe q>%");
        other->setEvaluationOption(AcDbField::kAutomatic);
        ASSERT_EQ(other->setInObject(text, L"Height"), Acad::eOk);
        other->close();
        text->close();
    }
    cadhost::FieldUpdateReport report = cadhost::UpdateFields(*db());
    EXPECT_EQ(report.texts, 7);
    EXPECT_EQ(report.evaluated, 7);
    EXPECT_EQ(probe.calls, 2);
    AcDbObjectPointer<AcDbText> text(textId);
    ACHAR* shown = text->textString();
    EXPECT_STREQ(shown, L"probe value");
    acutDelBuffer(shown);
    host().fieldEngine().unregisterEvaluatorLoader(&loader);
}

TEST(FieldUpdateText, LineBreaksBecomeParagraphsOrBlanks) {
    EXPECT_EQ(cadhost::ShownInMText(L"a\nb\r\nc\rd"), L"a\\Pb\\Pc\\Pd");
    EXPECT_EQ(cadhost::ShownInMText(L"plain"), L"plain");
    EXPECT_EQ(cadhost::ShownInText(L"a\nb\r\nc"), L"a b  c");
}

}  // namespace
