// Field objects: codes in and out under the flags, bad codes, evaluation
// and its statuses, options, values, data items, text fields and fields in
// a drawing.
#include <adslib.h>
#include <dbapserv.h>
#include <dbdict.h>

#include <memory>

#include "host/fields/FieldTestSupport.h"
#include "support/TestHost.h"

namespace {

using qmtest::ScriptedEvaluator;
using qmtest::ScriptedLoader;
using qmtest::Succeeds;

std::wstring Code(const AcDbField& field, int flags) { return field.getFieldCode(flags); }

class FieldTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        m_loader.Add(&m_area);
        m_loader.Add(&m_text);
        m_loader.Add(&m_failing);
        ASSERT_EQ(host().fieldEngine().registerEvaluatorLoader(&m_loader), Acad::eOk);
    }
    void TearDown() override {
        host().fieldEngine().unregisterEvaluatorLoader(&m_loader);
        HostTest::TearDown();
    }
    AcDbDatabase* Db() { return acdbHostApplicationServices()->workingDatabase(); }

    ScriptedEvaluator m_area{L"AcArea", Succeeds(12.5)};
    ScriptedEvaluator m_text{L"TextField", Succeeds(L"hello")};
    ScriptedEvaluator m_failing{L"ExcelCell", [](AcDbField*, int, AcFdFieldResult* result) {
                                    result->setEvaluationStatus(AcDbField::kInvalidCode, 42, L"no such sheet");
                                    return Acad::eInvalidInput;
                                }};
    ScriptedLoader m_loader;
};

TEST(FieldCode, RoundTripsUnderTheFlags) {
    struct Case {
        const wchar_t* code;
        const wchar_t* withMarkers;  // flags 17
        const wchar_t* plain;        // flags 1
        const wchar_t* stripped;     // flags 0x41
        const wchar_t* format;
        const wchar_t* id;
    } cases[] = {
        {L"%<\\AcArea Object(<2F1;2F5>)>%", L"%<\\AcArea Object(<2F1;2F5>)>%", L"\\AcArea Object(<2F1;2F5>)",
         L"\\AcArea Object(<2F1;2F5>)", L"", L"AcArea"},
        {L"%<\\AcLength Object(<2F1>) \\f \"%lu2%pr2\">%", L"%<\\AcLength Object(<2F1>) \\f \"%lu2%pr2\">%",
         L"\\AcLength Object(<2F1>) \\f \"%lu2%pr2\"", L"\\AcLength Object(<2F1>)", L"%lu2%pr2", L"AcLength"},
        {L"%<\\AcBlockCount >%", L"%<\\AcBlockCount >%", L"\\AcBlockCount ", L"\\AcBlockCount ", L"",
         L"AcBlockCount"},
        // An empty option stays, so that an earlier \f of the arguments is not taken for it.
        {L"%<\\AcVar a \\f \"x\" \\f \"\">%", L"%<\\AcVar a \\f \"x\" \\f \"\">%",
         L"\\AcVar a \\f \"x\" \\f \"\"", L"\\AcVar a \\f \"x\"", L"", L"AcVar"},
        {L"\\TextField C:\\data\\notes.txt", L"%<\\TextField C:\\data\\notes.txt>%", L"\\TextField C:\\data\\notes.txt",
         L"\\TextField C:\\data\\notes.txt", L"", L"TextField"},
    };
    for (const Case& c : cases) {
        AcDbField field;
        ASSERT_EQ(field.setFieldCode(c.code, 0, nullptr), Acad::eOk) << c.code;
        EXPECT_EQ(Code(field, 17), c.withMarkers);
        EXPECT_EQ(Code(field, AcDbField::kFieldCode), c.plain);
        EXPECT_EQ(Code(field, 0), c.plain);
        EXPECT_EQ(Code(field, AcDbField::kFieldCode | AcDbField::kStripOptions), c.stripped);
        EXPECT_STREQ(field.getFormat(), c.format);
        EXPECT_STREQ(field.evaluatorId(), c.id);
        EXPECT_EQ(field.evaluationStatus(), AcDbField::kNotYetEvaluated);
    }
}

TEST(FieldCode, EscapesBackslashesWhenAsked) {
    AcDbField field(L"%<\\TextField C:\\a.txt>%");
    EXPECT_EQ(Code(field, AcDbField::kFieldCode | AcDbField::kEscapeBackslash), L"\\\\TextField C:\\\\a.txt");
    ACHAR* copy = nullptr;
    ASSERT_EQ(field.getFieldCode(copy, AcDbField::kAddMarkers), Acad::eOk);
    EXPECT_STREQ(copy, L"%<\\TextField C:\\a.txt>%");
    acutDelBuffer(copy);
}

TEST(FieldCode, BadTextLeavesTheFieldAsItWas) {
    AcDbField field(L"%<\\AcLength Object(<2F1>) \\f \"%lu2\">%");
    const wchar_t* bad[] = {L"", L"hello", L"%<\\AcArea Object(<1>)", L"%<\\>%", L"%<\\AcArea x \\f \"a\" y>%",
                            L"%<\\AcArea x>% and more"};
    for (const wchar_t* text : bad) {
        EXPECT_EQ(field.setFieldCode(text, 0, nullptr), Acad::eInvalidInput) << text;
        EXPECT_EQ(Code(field, 17), L"%<\\AcLength Object(<2F1>) \\f \"%lu2\">%");
        EXPECT_STREQ(field.evaluatorId(), L"AcLength");
        EXPECT_STREQ(field.getFormat(), L"%lu2");
    }
    EXPECT_EQ(field.setFieldCode(static_cast<const ACHAR*>(nullptr), 0, nullptr), Acad::eNullObjectPointer);
    EXPECT_STREQ(field.evaluatorId(), L"AcLength");
}

TEST(FieldCode, FormatAndEvaluatorIdCanBeSetApart) {
    AcDbField field(L"%<\\AcArea Object(<1>)>%");
    ASSERT_EQ(field.setFormat(L"%lu2%pr3"), Acad::eOk);
    EXPECT_EQ(Code(field, 17), L"%<\\AcArea Object(<1>) \\f \"%lu2%pr3\">%");
    ASSERT_EQ(field.setEvaluatorId(L"AcLength"), Acad::eOk);
    EXPECT_EQ(Code(field, 17), L"%<\\AcLength Object(<1>) \\f \"%lu2%pr3\">%");
    EXPECT_EQ(field.setEvaluatorId(L"bad id"), Acad::eInvalidInput);
    EXPECT_EQ(field.setEvaluatorId(L""), Acad::eInvalidInput);
    EXPECT_STREQ(field.evaluatorId(), L"AcLength");
    ACHAR* format = nullptr;
    field.getFormat(format);
    EXPECT_STREQ(format, L"%lu2%pr3");
    acutDelBuffer(format);
}

TEST(FieldEvaluation, WithoutARunningHostNoEvaluatorIsFound) {
    AcDbField field(L"%<\\AcArea Object(<1>)>%");
    EXPECT_NE(field.evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kEvaluatorNotFound);
    EXPECT_STREQ(field.getValue(), L"####");
}

TEST_F(FieldTest, ANewFieldShowsNoValueAndCannotEvaluate) {
    AcDbField field;
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kNotYetEvaluated);
    EXPECT_STREQ(field.getValue(), L"####");
    EXPECT_STREQ(field.evaluatorId(), L"");
    EXPECT_EQ(field.evaluate(AcDbField::kPreview, Db()), Acad::eInvalidInput);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidCode);
    AcFdFieldValue value;
    EXPECT_NE(field.getValue(value), Acad::eOk);
    EXPECT_EQ(field.state() & AcDbField::kInitialized, 0);
}

TEST_F(FieldTest, AnIdThatNoLoaderAnswersIsNotFound) {
    AcDbField field(L"%<\\AcBlockCount \"DOOR\">%");
    int found = -1, evaluated = -1;
    EXPECT_NE(field.evaluate(AcDbField::kPreview, Db(), &found, &evaluated), Acad::eOk);
    int errorCode = -1;
    ACHAR* message = nullptr;
    EXPECT_EQ(field.evaluationStatus(&errorCode, &message), AcDbField::kEvaluatorNotFound);
    EXPECT_NE(std::wstring(message).find(L"AcBlockCount"), std::wstring::npos);
    acutDelBuffer(message);
    EXPECT_EQ(found, 1);
    EXPECT_EQ(evaluated, 0);
    EXPECT_STREQ(field.getValue(), L"####");
    EXPECT_EQ(m_loader.asked, std::vector<std::wstring>{L"AcBlockCount"});
}

TEST_F(FieldTest, SuccessKeepsTheTypedValueAndShowsItsText) {
    AcDbField field(L"%<\\TextField C:\\a.txt>%");
    int found = 0, evaluated = 0;
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, Db(), &found, &evaluated), Acad::eOk);
    EXPECT_EQ(evaluated, 1);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kSuccess);
    AcFdFieldValue value;
    ASSERT_EQ(field.getValue(value), Acad::eOk);
    EXPECT_EQ(value.dataType(), AcValue::kString);
    EXPECT_STREQ(field.getValue(), L"hello");
    EXPECT_EQ(m_text.contexts, std::vector<int>{AcDbField::kPreview});
    EXPECT_NE(field.state() & AcDbField::kHasCache, 0);

    AcDbField area(L"%<\\AcArea Object(<1>)>%");
    ASSERT_EQ(area.evaluate(AcDbField::kPreview, Db()), Acad::eOk);
    ASSERT_EQ(area.getValue(value), Acad::eOk);
    double number = 0;
    ASSERT_TRUE(value.get(number));
    EXPECT_EQ(number, 12.5);
}

TEST_F(FieldTest, TheEvaluatorsOwnDisplayWins) {
    m_text.ownText = L"shaped";
    AcDbField field(L"%<\\TextField x>%");
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, Db()), Acad::eOk);
    EXPECT_STREQ(field.getValue(), L"shaped");
    EXPECT_NE(field.state() & AcDbField::kHasFormattedString, 0);
}

TEST_F(FieldTest, AFailureKeepsTheEvaluatorsStatusCodeAndMessage) {
    AcDbField field(L"%<\\ExcelCell C:\\b.xls:S:$A$1>%");
    EXPECT_EQ(field.evaluate(AcDbField::kPreview, Db()), Acad::eInvalidInput);
    int code = 0;
    ACHAR* message = nullptr;
    EXPECT_EQ(field.evaluationStatus(&code, &message), AcDbField::kInvalidCode);
    EXPECT_EQ(code, 42);
    EXPECT_STREQ(message, L"no such sheet");
    acutDelBuffer(message);
    EXPECT_STREQ(field.getValue(), L"####");
}

TEST_F(FieldTest, ABrokenReportCountsAsAnErrorOfItsOwn) {
    struct Case {
        int status;  // 0: none reported
        Acad::ErrorStatus answer;
        AcDbField::EvalStatus expected;
    } cases[] = {
        {0, Acad::eOk, AcDbField::kSuccess},
        {0, Acad::eInvalidInput, AcDbField::kOtherError},
        {AcDbField::kSuccess, Acad::eInvalidInput, AcDbField::kOtherError},
        {3, Acad::eOk, AcDbField::kOtherError},
        {0x80, Acad::eOk, AcDbField::kOtherError},
        {-1, Acad::eOk, AcDbField::kOtherError},
        {AcDbField::kSyntaxError, Acad::eOk, AcDbField::kSyntaxError},
    };
    for (const Case& c : cases) {
        ScriptedEvaluator odd(L"Odd", [c](AcDbField*, int, AcFdFieldResult* result) {
            if (c.status != 0) result->setEvaluationStatus(c.status);
            return c.answer;
        });
        m_loader.Add(&odd);
        AcDbField field(L"%<\\Odd x>%");
        Acad::ErrorStatus es = field.evaluate(AcDbField::kPreview, Db());
        EXPECT_EQ(field.evaluationStatus(), c.expected) << c.status << " " << c.answer;
        EXPECT_EQ(es == Acad::eOk, c.expected == AcDbField::kSuccess);
        host().fieldEngine().unregisterEvaluatorLoader(&m_loader);
        m_loader = ScriptedLoader();
        m_loader.Add(&m_area);
        m_loader.Add(&m_text);
        m_loader.Add(&m_failing);
        host().fieldEngine().registerEvaluatorLoader(&m_loader);
    }
}

TEST_F(FieldTest, TheOptionDecidesWhichMomentsEvaluate) {
    AcDbField field(L"%<\\AcArea Object(<1>)>%");
    EXPECT_EQ(field.evaluationOption(), AcDbField::kDisable);
    int evaluated = -1;
    EXPECT_EQ(field.evaluate(AcDbField::kDemand, Db(), nullptr, &evaluated), Acad::eOk);
    EXPECT_EQ(evaluated, 0);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kNotYetEvaluated);

    ASSERT_EQ(field.setEvaluationOption(63), Acad::eOk);
    EXPECT_EQ(field.evaluationOption(), AcDbField::kAutomatic);
    for (int context : {1, 2, 4, 8, 16, 32, 64}) {
        EXPECT_EQ(field.evaluate(context, Db(), nullptr, &evaluated), Acad::eOk) << context;
        EXPECT_EQ(evaluated, 1) << context;
    }
    ASSERT_EQ(field.setEvaluationOption(AcDbField::kOnSave), Acad::eOk);
    EXPECT_EQ(field.evaluate(AcDbField::kRegen, Db(), nullptr, &evaluated), Acad::eOk);
    EXPECT_EQ(evaluated, 0);

    EXPECT_EQ(field.setEvaluationOption(64), Acad::eInvalidInput);
    EXPECT_EQ(field.setEvaluationOption(-1), Acad::eInvalidInput);
    EXPECT_EQ(field.evaluationOption(), AcDbField::kOnSave);
    EXPECT_NE(field.evaluate(0, Db()), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidContext);
    EXPECT_NE(field.evaluate(0x100, Db()), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidContext);
}

TEST_F(FieldTest, ANewCodeForgetsTheLastValue) {
    AcDbField field(L"%<\\TextField a>%");
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, Db()), Acad::eOk);
    ASSERT_STREQ(field.getValue(), L"hello");
    ASSERT_EQ(field.setFieldCode(L"%<\\TextField b>%", 0, nullptr), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kNotYetEvaluated);
    EXPECT_STREQ(field.getValue(), L"####");
}

TEST_F(FieldTest, DataItemsAreNamedValues) {
    AcDbField field(L"%<\\AcArea Object(<1>)>%");
    AcFdFieldValue out;
    EXPECT_EQ(field.getData(L"AcArea Data", &out), Acad::eKeyNotFound);
    AcFdFieldValue first(L"Object(<1>)");
    AcFdFieldValue second(Adesk::Int32(7));
    ASSERT_EQ(field.setData(L"AcArea Data", &first), Acad::eOk);
    ASSERT_EQ(field.setData(L"Count", &second), Acad::eOk);
    ASSERT_EQ(field.getData(L"AcArea Data", &out), 0);
    const ACHAR* text = nullptr;
    ASSERT_TRUE(out.get(text));
    EXPECT_STREQ(text, L"Object(<1>)");
    EXPECT_EQ(field.getData(L"acarea data", &out), Acad::eKeyNotFound);  // keys are exact

    AcFdFieldValue replaced(L"Object(<2>)");
    ASSERT_EQ(field.setData(L"AcArea Data", &replaced), Acad::eOk);
    ASSERT_EQ(field.dataCount(), 2);
    EXPECT_STREQ(field.dataKey(0), L"AcArea Data");
    EXPECT_STREQ(field.dataKey(1), L"Count");
    EXPECT_EQ(field.dataKey(2), nullptr);
    EXPECT_EQ(field.dataKey(-1), nullptr);
    ASSERT_EQ(field.getData(L"AcArea Data", &out), Acad::eOk);
    EXPECT_EQ(out, replaced);

    EXPECT_EQ(field.setData(L"Count", nullptr), Acad::eOk);
    EXPECT_EQ(field.setData(L"Count", nullptr), Acad::eKeyNotFound);
    EXPECT_EQ(field.dataCount(), 1);
    EXPECT_EQ(field.setData(nullptr, &first), Acad::eInvalidInput);
    EXPECT_EQ(field.setData(L"", &first), Acad::eInvalidInput);
    EXPECT_EQ(field.getData(nullptr, &out), Acad::eInvalidInput);
}

TEST_F(FieldTest, EvaluatorsStoreDataItems) {
    ScriptedEvaluator storing(L"Storing", [](AcDbField* field, int, AcFdFieldResult* result) {
        AcFdFieldValue data(L"args");
        field->setData(L"Storing Data", &data);
        result->setEvaluationStatus(AcDbField::kSuccess);
        return Acad::eOk;
    });
    m_loader.Add(&storing);
    AcDbField field(L"%<\\Storing args>%");
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, Db()), Acad::eOk);
    EXPECT_EQ(field.getData(L"Storing Data", nullptr), Acad::eOk);
}

TEST_F(FieldTest, ATextFieldShowsItsTextWithTheValuesOfItsChildren) {
    AcDbField field(L"Area %<\\AcArea Object(<1>) \\f \"%lu2\">% and %<\\ExcelCell b.xls:S:$A$1>%!", true);
    EXPECT_TRUE(field.isTextField());
    EXPECT_STREQ(field.evaluatorId(), L"_text");
    ASSERT_EQ(field.childCount(), 2);
    EXPECT_EQ(Code(field, AcDbField::kFieldCode),
              L"Area %<\\AcArea Object(<1>) \\f \"%lu2\">% and %<\\ExcelCell b.xls:S:$A$1>%!");
    EXPECT_EQ(Code(field, AcDbField::kFieldCode | AcDbField::kPreserveFields),
              L"Area %<\\_FldIdx 0>% and %<\\_FldIdx 1>%!");
    AcDbField* child = nullptr;
    ASSERT_EQ(field.getChild(0, child, AcDb::kForRead), Acad::eOk);
    EXPECT_STREQ(child->getFormat(), L"%lu2");
    EXPECT_EQ(field.getChild(2, child, AcDb::kForRead), Acad::eInvalidIndex);
    AcDbFieldArray children;
    field.getFieldCode(AcDbField::kFieldCode, &children);
    EXPECT_EQ(children.length(), 2);

    int found = 0, evaluated = 0;
    ASSERT_EQ(field.evaluate(AcDbField::kPreview, Db(), &found, &evaluated), Acad::eOk);
    EXPECT_EQ(found, 3);
    EXPECT_EQ(evaluated, 3);
    ACHAR* areaText = nullptr;
    field.getChild(0, child, AcDb::kForRead);
    child->getValue(areaText);
    EXPECT_EQ(std::wstring(field.getValue()), L"Area " + std::wstring(areaText) + L" and ####!");
    acutDelBuffer(areaText);
    EXPECT_EQ(Code(field, AcDbField::kEvaluatedText), field.getValue());
}

TEST_F(FieldTest, ChildrenCanBeHandedIn) {
    auto* given = new AcDbField(L"%<\\TextField c.txt>%");
    AcDbFieldArray children;
    children.append(given);
    AcDbField field;
    ASSERT_EQ(field.setFieldCode(L"<%<\\_FldIdx 0>%>", AcDbField::kTextField, &children), Acad::eOk);
    AcDbField* child = nullptr;
    ASSERT_EQ(field.getChild(0, child, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(child, given);
    EXPECT_EQ(Code(field, AcDbField::kFieldCode), L"<%<\\TextField c.txt>%>");
    // A place whose child is missing, a child in two places, or the field
    // in itself, is refused and changes nothing.
    EXPECT_EQ(field.setFieldCode(L"%<\\_FldIdx 1>%", AcDbField::kTextField, &children), Acad::eInvalidInput);
    EXPECT_EQ(field.setFieldCode(L"%<\\_FldIdx 0>%%<\\_FldIdx 0>%", AcDbField::kTextField, &children),
              Acad::eInvalidInput);
    AcDbFieldArray itself;
    itself.append(&field);
    EXPECT_EQ(field.setFieldCode(L"%<\\_FldIdx 0>%", AcDbField::kTextField, &itself), Acad::eInvalidInput);
    EXPECT_EQ(field.childCount(), 1);
    // A child handed in again stays alive in its new place.
    ASSERT_EQ(field.setFieldCode(L"again %<\\_FldIdx 0>%", AcDbField::kTextField, &children), Acad::eOk);
    ASSERT_EQ(field.getChild(0, child, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(child, given);
    EXPECT_STREQ(child->evaluatorId(), L"TextField");
}

TEST_F(FieldTest, AFieldInAnObjectLivesInTheDrawingWithItsChildren) {
    AcDbDictionary* named = nullptr;
    ASSERT_EQ(Db()->getNamedObjectsDictionary(named, AcDb::kForWrite), Acad::eOk);
    auto* holder = new AcDbDictionary;
    AcDbObjectId holderId;
    ASSERT_EQ(named->setAt(L"HOLDER", holder, holderId), Acad::eOk);
    named->close();  // the holder stays open for write from its adding

    auto* field = new AcDbField(L"Total: %<\\AcArea Object(<1>)>%", true);
    ASSERT_EQ(field->setInObject(holder, L"TEXT"), Acad::eOk);
    AcDbObjectId fieldId = field->objectId();
    ASSERT_FALSE(fieldId.isNull());
    EXPECT_EQ(field->setInObject(holder, L"TEXT"), Acad::eAlreadyInDb);
    AcDbField* child = nullptr;
    ASSERT_EQ(field->getChild(0, child, AcDb::kForRead), Acad::eOk);
    AcDbObjectId childId = child->objectId();
    EXPECT_FALSE(childId.isNull());
    EXPECT_EQ(child->ownerId(), fieldId);
    child->close();
    field->close();
    holder->close();

    // The way from the object: extension dictionary, ACAD_FIELD, TEXT.
    AcDbDictionary* extension = nullptr;
    ASSERT_EQ(acdbOpenObject(extension, holder->extensionDictionary(), AcDb::kForRead), Acad::eOk);
    AcDbObject* fields = nullptr;
    ASSERT_EQ(extension->getAt(L"ACAD_FIELD", fields, AcDb::kForRead), Acad::eOk);
    extension->close();
    AcDbObjectId textId;
    ASSERT_EQ(AcDbDictionary::cast(fields)->getAt(L"TEXT", textId), Acad::eOk);
    fields->close();
    EXPECT_EQ(textId, fieldId);

    // Read-only, it refuses changes and evaluation; open for write it does both.
    ASSERT_EQ(acdbOpenObject(field, fieldId, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(field->setFieldCode(L"x %<\\TextField a>%", AcDbField::kTextField), Acad::eNotOpenForWrite);
    EXPECT_EQ(field->evaluate(AcDbField::kPreview), Acad::eNotOpenForWrite);
    EXPECT_EQ(field->setEvaluationOption(63), Acad::eNotOpenForWrite);
    EXPECT_EQ(field->getFieldCode(AcDbField::kFieldCode), std::wstring(L"Total: %<\\AcArea Object(<1>)>%"));
    field->close();
    ASSERT_EQ(acdbOpenObject(field, fieldId, AcDb::kForWrite), Acad::eOk);
    ASSERT_EQ(field->evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(std::wstring(field->getValue()).rfind(L"Total: ", 0), 0u);
    // A new code puts its children into the drawing and erases the old ones.
    ASSERT_EQ(field->setFieldCode(L"%<\\TextField a>% %<\\TextField b>%", AcDbField::kTextField), Acad::eOk);
    EXPECT_EQ(field->childCount(), 2);
    ASSERT_EQ(field->getChild(1, child, AcDb::kForRead), Acad::eOk);
    EXPECT_FALSE(child->objectId().isNull());
    child->close();
    field->close();
    EXPECT_TRUE(childId.isErased());

    // A second field under the same name replaces the first.
    AcDbObject* opened = nullptr;
    ASSERT_EQ(acdbOpenAcDbObject(opened, holderId, AcDb::kForWrite), Acad::eOk);
    auto* second = new AcDbField(L"%<\\TextField z>%");
    ASSERT_EQ(second->setInObject(opened, L"TEXT"), Acad::eOk);
    opened->close();
    EXPECT_TRUE(fieldId.isErased());
}

TEST_F(FieldTest, SetInObjectNeedsAnObjectInADrawingOpenForWrite) {
    AcDbField field(L"%<\\TextField a>%");
    AcDbDictionary loose;
    EXPECT_EQ(field.setInObject(&loose, L"TEXT"), Acad::eNotInDatabase);
    EXPECT_EQ(field.setInObject(nullptr, L"TEXT"), Acad::eInvalidInput);
    AcDbDictionary* named = nullptr;
    ASSERT_EQ(Db()->getNamedObjectsDictionary(named, AcDb::kForRead), Acad::eOk);
    EXPECT_EQ(field.setInObject(named, L"TEXT"), Acad::eNotOpenForWrite);
    EXPECT_EQ(field.setInObject(named, L""), Acad::eInvalidInput);
    named->close();
    EXPECT_TRUE(field.objectId().isNull());
}

}  // namespace
