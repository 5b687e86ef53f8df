// The evaluators' module in the host: its loader comes and goes with the
// module, and the TableCell evaluator reads cells of the drawing's tables.
#include <adslib.h>
#include <dbobjptr.h>
#include <dbsymtb.h>
#include <dbtable.h>

#include "EvaluatorLoader.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;

class TableCellEvaluatorTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true))
            << TakeOutput();
    }

    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    // A table of 3 rows and 30 columns in model space; its handle as text.
    std::wstring AddTable(AcDbObjectId* idOut = nullptr) {
        auto* table = new AcDbTable;
        EXPECT_EQ(table->setSize(3, 30), Acad::eOk);
        table->setTextString(0, 0, L"Title");
        table->setTextString(2, 27, L"{\\fArial|b1;Total} \\P\\C1;42");
        table->setTextString(1, 1, L"\\A1;{\\H2.5x;big}");
        table->setTextString(2, 29, L"last");
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        AcDbObjectId id;
        EXPECT_EQ(model->appendAcDbEntity(id, table), Acad::eOk);
        table->close();
        if (idOut) *idOut = id;
        return Handle(id);
    }

    AcDbObjectId AddLine() {
        AcDbSymbolTableRecordPointer<AcDbBlockTableRecord> model(db()->modelSpaceId(), AcDb::kForWrite);
        AcDbObjectId id;
        auto* line = new AcDbLine(AcGePoint3d(0, 0, 0), AcGePoint3d(1, 0, 0));
        EXPECT_EQ(model->appendAcDbEntity(id, line), Acad::eOk);
        line->close();
        return id;
    }

    static std::wstring Handle(AcDbObjectId id) {
        ACHAR text[32];
        id.handle().getIntoAsciiBuffer(text, 32);
        return text;
    }

    static std::wstring Code(const std::wstring& reference) { return L"%<\\TableCell " + reference + L">%"; }
};

TEST_F(TableCellEvaluatorTest, TheModuleRegistersOneLoaderThatAnswersItsBuiltIds) {
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    ASSERT_EQ(engine->evaluatorLoaderCount(), 1);
    EXPECT_EQ(engine->fieldReactorCount(), 1);  // the reactor that tells the evaluators of each pass
    AcFdFieldEvaluator* evaluator = engine->getEvaluator(L"TableCell");
    ASSERT_NE(evaluator, nullptr);
    EXPECT_STREQ(evaluator->evaluatorId(), L"TableCell");
    EXPECT_EQ(engine->getEvaluator(L"tableCELL"), evaluator);
    // The module answers its six ids; a field of an id it does not know
    // fails with "evaluator not found".
    const QuillmarkEvaluatorSlot* slots = nullptr;
    ASSERT_EQ(GetQuillmarkEvaluatorSlots(slots), 6);
    const wchar_t* ids[] = {L"AcArea", L"AcLength", L"AcBlockCount", L"TextField", L"ExcelCell", L"TableCell"};
    for (int i = 0; i < 6; ++i) {
        EXPECT_STREQ(slots[i].id, ids[i]);
        EXPECT_TRUE(slots[i].built) << ids[i];
        EXPECT_NE(engine->getEvaluator(ids[i]), nullptr) << ids[i];
    }
    AcDbField field(L"%<\\QmNoSuchEvaluator \"a.txt\">%");
    EXPECT_NE(field.evaluate(AcDbField::kPreview, db()), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kEvaluatorNotFound);
    EXPECT_STREQ(field.getValue(), L"####");

    ASSERT_TRUE(host().linker().unloadModule(L"QuillmarkEval.dbx"));
    EXPECT_EQ(engine->evaluatorLoaderCount(), 0);
    EXPECT_EQ(engine->fieldReactorCount(), 0);
    EXPECT_EQ(engine->getEvaluator(L"TableCell"), nullptr);
}

TEST_F(TableCellEvaluatorTest, RegisteringTwiceIsRefusedAndWithdrawingAnswersWhetherItWasThere) {
    // The module's own functions, linked into the test: a second loader of
    // the same module code beside the loaded module's.
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    EXPECT_EQ(RegisterQuillmarkEvaluators(), 1);
    EXPECT_EQ(RegisterQuillmarkEvaluators(), 0);
    EXPECT_EQ(engine->evaluatorLoaderCount(), 2);
    EXPECT_EQ(UnregisterQuillmarkEvaluators(), 1);
    EXPECT_EQ(UnregisterQuillmarkEvaluators(), 0);
    EXPECT_EQ(engine->evaluatorLoaderCount(), 1);
}

TEST_F(TableCellEvaluatorTest, ACellGivesItsTextWithoutFormattingAndKeepsItsReference) {
    std::wstring handle = AddTable();
    struct Case {
        std::wstring cell;
        const wchar_t* value;
    };
    const Case cases[] = {
        {L"$A$1", L"Title"},
        {L"$AB$3", L"Total \n42"},
        {L"$B$2", L"big"},
        {L"$AD$3", L"last"},
        {L"$C$2", L""},  // an empty cell
        {L"$ab$3", L"Total \n42"},
    };
    for (const Case& c : cases) {
        std::wstring reference = L"Table(<" + handle + L">)." + c.cell;
        AcDbField field(Code(reference).c_str());
        ASSERT_EQ(field.evaluate(AcDbField::kPreview, db()), Acad::eOk) << reference;
        EXPECT_EQ(field.evaluationStatus(), AcDbField::kSuccess);
        EXPECT_STREQ(field.getValue(), c.value) << reference;
        AcFdFieldValue value;
        ASSERT_EQ(field.getValue(value), Acad::eOk);
        EXPECT_EQ(value.dataType(), AcValue::kString);
        AcFdFieldValue data;
        ASSERT_EQ(field.getData(L"TableCell Data", &data), Acad::eOk) << reference;
        EXPECT_EQ(data.dataType(), AcValue::kString);
        const ACHAR* text = nullptr;
        ASSERT_TRUE(data.get(text));
        EXPECT_EQ(std::wstring(text), reference);
        EXPECT_EQ(field.dataCount(), 1);
    }
}

TEST_F(TableCellEvaluatorTest, TheReferenceIsKeptAsItStandsInTheCode) {
    std::wstring handle = AddTable();
    // Blanks around the reference are read past, and kept in the data item.
    const std::wstring references[] = {L"  Table(<" + handle + L">).$A$1", L"Table(<" + handle + L">).$A$1 \t",
                                       L" Table(<" + handle + L">).$a$1  "};
    for (const std::wstring& reference : references) {
        AcDbField field(Code(reference).c_str());
        ASSERT_EQ(field.evaluate(AcDbField::kPreview, db()), Acad::eOk) << cadhost::ToUtf8(reference);
        EXPECT_STREQ(field.getValue(), L"Title");
        AcFdFieldValue data;
        ASSERT_EQ(field.getData(L"TableCell Data", &data), Acad::eOk);
        const ACHAR* text = nullptr;
        ASSERT_TRUE(data.get(text));
        EXPECT_EQ(std::wstring(text), reference);
    }
}

TEST_F(TableCellEvaluatorTest, TheFieldsOwnDatabaseServesWhenNoneIsGiven) {
    std::wstring handle = AddTable();
    auto* field = new AcDbField(Code(L"Table(<" + handle + L">).$A$1").c_str());
    // Without a database to look in, the evaluator fails cleanly.
    EXPECT_NE(field->evaluate(AcDbField::kPreview, nullptr), Acad::eOk);
    EXPECT_EQ(field->evaluationStatus(), AcDbField::kInvalidCode);
    EXPECT_STREQ(field->getValue(), L"####");
    EXPECT_EQ(field->dataCount(), 0);
    // In the drawing (which owns it then), the drawing serves.
    ASSERT_EQ(field->postInDatabase(db()), Acad::eOk);
    EXPECT_EQ(field->evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_STREQ(field->getValue(), L"Title");
    field->close();
}

TEST_F(TableCellEvaluatorTest, AReferenceThatFindsNoCellFailsWithoutDataItem) {
    AcDbObjectId tableId;
    std::wstring handle = AddTable(&tableId);
    std::wstring line = Handle(AddLine());
    struct Case {
        std::wstring arguments;
        AcDbField::EvalStatus status;
        std::wstring message;  // empty: not looked at
    };
    const Case cases[] = {
        {L"", AcDbField::kSyntaxError, L"The table cell reference \"\" cannot be read: the code names no table cell."},
        {L"Table(<" + handle + L">).B3", AcDbField::kSyntaxError,
         L"The table cell reference \"Table(<" + std::wstring(handle) +
             L">).B3\" cannot be read: the handle is followed by >).$ and the cell."},
        {L"Table(<" + handle + L">).$A$0", AcDbField::kSyntaxError, L""},
        {L"Table(<" + handle + L">).$AAA$1", AcDbField::kSyntaxError, L""},
        {L"Table(<" + line + L">).$A$1", AcDbField::kInvalidCode,
         L"No table has the handle " + std::wstring(line) + L" in the drawing."},
        {L"Table(<FFFFFF>).$A$1", AcDbField::kInvalidCode, L"No table has the handle FFFFFF in the drawing."},
        {L"Table(<" + handle + L">).$A$4", AcDbField::kInvalidCode,
         L"The table " + std::wstring(handle) +
             L" has 3 rows and 30 columns; the cell in row 4 and column 1 is outside it."},
        {L"Table(<" + handle + L">).$AE$1", AcDbField::kInvalidCode,
         L"The table " + std::wstring(handle) +
             L" has 3 rows and 30 columns; the cell in row 1 and column 31 is outside it."},
        {L"Table(<" + handle + L">).$ZZ$999999999", AcDbField::kInvalidCode, L""},
    };
    for (const Case& c : cases) {
        AcDbField field;
        ASSERT_EQ(field.setFieldCode((L"%<\\TableCell " + c.arguments + L">%").c_str()), Acad::eOk) << c.arguments;
        EXPECT_NE(field.evaluate(AcDbField::kPreview, db()), Acad::eOk) << c.arguments;
        EXPECT_EQ(field.evaluationStatus(), c.status) << c.arguments;
        EXPECT_STREQ(field.getValue(), L"####") << c.arguments;
        EXPECT_EQ(field.dataCount(), 0) << c.arguments;
        AcFdFieldValue value;
        EXPECT_NE(field.getValue(value), Acad::eOk);
        if (!c.message.empty()) {
            ACHAR* message = nullptr;
            field.evaluationStatus(nullptr, &message);
            EXPECT_STREQ(message, c.message.c_str());
            acutDelBuffer(message);
        }
    }
}

TEST_F(TableCellEvaluatorTest, AnErasedTableFailsAndTheReferenceStoredBeforeStays) {
    AcDbObjectId tableId;
    std::wstring handle = AddTable(&tableId);
    std::wstring reference = L"Table(<" + handle + L">).$A$1";
    AcDbField field(Code(reference).c_str());
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, db()), Acad::eOk);
    {
        AcDbObjectPointer<AcDbTable> table(tableId, AcDb::kForWrite);
        ASSERT_EQ(table.openStatus(), Acad::eOk);
        ASSERT_EQ(table->erase(), Acad::eOk);
    }
    EXPECT_NE(field.evaluate(AcDbField::kPreview, db()), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidCode);
    EXPECT_STREQ(field.getValue(), L"####");
    AcFdFieldValue data;
    ASSERT_EQ(field.getData(L"TableCell Data", &data), Acad::eOk);
    const ACHAR* text = nullptr;
    ASSERT_TRUE(data.get(text));
    EXPECT_EQ(std::wstring(text), reference);
}

}  // namespace
