// The evaluator registry: loaders in order, the host's own text evaluator,
// and modules that go away with their evaluators.
#include "host/fields/FieldTestSupport.h"
#include "support/TestHost.h"

namespace {

using qmtest::ScriptedEvaluator;
using qmtest::ScriptedLoader;
using qmtest::Succeeds;

const std::filesystem::path kBin = QM_OUTPUT_DIR;

class FieldEngineTest : public qmtest::HostTest {
protected:
    AcFdFieldEngine& Engine() { return host().fieldEngine(); }
    bool Load(const char* module) {
        return host().linker().loadModule(cadhost::FromUtf8((kBin / module).string()).c_str(), true);
    }
};

TEST_F(FieldEngineTest, TheHostHasOneEngine) {
    EXPECT_EQ(acdbGetFieldEngine(), &Engine());
    EXPECT_EQ(Engine().evaluatorLoaderCount(), 0);
}

TEST_F(FieldEngineTest, LoadersRegisterOnceAndWithdraw) {
    ScriptedLoader first, second;
    EXPECT_EQ(Engine().registerEvaluatorLoader(&first), Acad::eOk);
    EXPECT_EQ(Engine().registerEvaluatorLoader(&first), Acad::eDuplicateKey);
    EXPECT_EQ(Engine().registerEvaluatorLoader(nullptr), Acad::eNullObjectPointer);
    EXPECT_EQ(Engine().registerEvaluatorLoader(&second), Acad::eOk);
    ASSERT_EQ(Engine().evaluatorLoaderCount(), 2);
    EXPECT_EQ(Engine().getEvaluatorLoader(0), &first);
    EXPECT_EQ(Engine().getEvaluatorLoader(1), &second);
    EXPECT_EQ(Engine().getEvaluatorLoader(2), nullptr);
    EXPECT_EQ(Engine().getEvaluatorLoader(-1), nullptr);
    EXPECT_EQ(Engine().unregisterEvaluatorLoader(&first), Acad::eOk);
    EXPECT_EQ(Engine().unregisterEvaluatorLoader(&first), Acad::eKeyNotFound);
    EXPECT_EQ(Engine().getEvaluatorLoader(0), &second);
    EXPECT_EQ(Engine().unregisterEvaluatorLoader(&second), Acad::eOk);
    EXPECT_EQ(Engine().evaluatorLoaderCount(), 0);
}

TEST_F(FieldEngineTest, TheFirstLoaderThatAnswersWins) {
    ScriptedEvaluator early(L"AcArea", Succeeds(1.0)), late(L"AcArea", Succeeds(2.0)), other(L"AcLength", Succeeds(3.0));
    ScriptedLoader first, second;
    first.Add(&early);
    second.Add(&late);
    second.Add(&other);
    Engine().registerEvaluatorLoader(&first);
    Engine().registerEvaluatorLoader(&second);
    EXPECT_EQ(Engine().getEvaluator(L"AcArea"), &early);
    EXPECT_EQ(Engine().getEvaluator(L"AcLength"), &other);
    EXPECT_EQ(Engine().getEvaluator(L"AcBlockCount"), nullptr);
    EXPECT_EQ(Engine().getEvaluator(nullptr), nullptr);
    EXPECT_EQ(Engine().getEvaluator(L""), nullptr);
    // The id goes to the loaders as the code wrote it.
    EXPECT_EQ(first.asked.back(), L"AcBlockCount");
    EXPECT_EQ(second.asked.back(), L"AcBlockCount");

    AcDbField field(L"%<\\AcLength Object(<1>)>%");
    const ACHAR* id = nullptr;
    EXPECT_EQ(Engine().findEvaluator(&field, id), &other);
    EXPECT_STREQ(id, L"AcLength");
    Engine().unregisterEvaluatorLoader(&first);
    Engine().unregisterEvaluatorLoader(&second);
}

TEST_F(FieldEngineTest, TheTextEvaluatorIsTheHostsOwnAndIgnoresCase) {
    AcFdFieldEvaluator* text = Engine().getEvaluator(L"_text");
    ASSERT_NE(text, nullptr);
    EXPECT_STREQ(text->evaluatorId(), L"_text");
    EXPECT_EQ(Engine().getEvaluator(L"_TEXT"), text);
    AcDbField field(L"plain", true);
    const ACHAR* id = nullptr;
    EXPECT_EQ(Engine().findEvaluator(&field, id), text);
    ASSERT_EQ(field.evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_STREQ(field.getValue(), L"plain");
}

TEST_F(FieldEngineTest, AModulesEvaluatorsAnswerIdsInAnyCase) {
    ASSERT_TRUE(Load("QmEchoEvaluators.dbx")) << TakeOutput();
    ASSERT_EQ(Engine().evaluatorLoaderCount(), 1);
    for (const wchar_t* code : {L"%<\\AcLength Object(<2F1>)>%", L"%<\\aclength Object(<2F1>)>%",
                                L"%<\\ACLENGTH Object(<2F1>)>%"}) {
        AcDbField field(code);
        ASSERT_EQ(field.evaluate(AcDbField::kPreview), Acad::eOk) << code;
        EXPECT_STREQ(field.getValue(), L"Object(<2F1>)");
        EXPECT_EQ(field.getData(L"AcLength Data", nullptr), Acad::eOk);
    }
    ASSERT_TRUE(host().linker().unloadModule(L"QmEchoEvaluators.dbx"));
    EXPECT_EQ(Engine().evaluatorLoaderCount(), 0);
}

TEST_F(FieldEngineTest, AModuleThatGoesWithoutWithdrawingLeavesNothingBehind) {
    ScriptedLoader ours;
    Engine().registerEvaluatorLoader(&ours);
    ASSERT_TRUE(Load("QmFailingEvaluators.dbx")) << TakeOutput();
    ASSERT_EQ(Engine().evaluatorLoaderCount(), 2);
    AcDbField field(L"%<\\TableCell Table(<3A7>).$B$3>%");
    EXPECT_NE(field.evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kInvalidCode);

    ASSERT_TRUE(host().linker().unloadModule(L"QmFailingEvaluators.dbx"));
    ASSERT_EQ(Engine().evaluatorLoaderCount(), 1);
    EXPECT_EQ(Engine().getEvaluatorLoader(0), &ours);
    // Were the module's loader still asked, this would run unmapped code.
    EXPECT_NE(field.evaluate(AcDbField::kPreview), Acad::eOk);
    EXPECT_EQ(field.evaluationStatus(), AcDbField::kEvaluatorNotFound);
    Engine().unregisterEvaluatorLoader(&ours);
}

TEST_F(FieldEngineTest, TheHostsEndUnloadsEvaluatorModulesSafely) {
    ASSERT_TRUE(Load("QmFailingEvaluators.dbx"));
    ASSERT_TRUE(Load("QmEchoEvaluators.dbx"));
    RestartHost();  // unloads both; the failing one never withdraws
    EXPECT_EQ(Engine().evaluatorLoaderCount(), 0);
}

}  // namespace
