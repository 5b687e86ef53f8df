// Evaluators for tests, built as two modules from this one source:
// QmEchoEvaluators.dbx answers the six evaluator ids of the module with
// success: the value is the code's argument text, stored also as the data
// item "<id> Data"; it withdraws its loader at unload.
// QmFailingEvaluators.dbx answers the same ids and fails every evaluation
// with an invalid code; it also registers a Field dialog hook of one type;
// it leaves loader and hook registered at unload, as a careless module
// would, so that tests see the host drop them.
#include <AcFdEval.h>
#include <AcFdUi.h>
#include <arxHeaders.h>
#include <dbfield.h>

#include <cwchar>
#include <string>

namespace {

const ACHAR* const kIds[] = {L"AcArea", L"AcLength", L"AcBlockCount", L"TextField", L"ExcelCell", L"TableCell"};

class TestEvaluator : public AcFdFieldEvaluator {
public:
    explicit TestEvaluator(const ACHAR* id) : m_id(id) {}
    const ACHAR* evaluatorId() const override { return m_id; }

    Acad::ErrorStatus evaluate(AcDbField* field, int, AcDbDatabase*, AcFdFieldResult* result) override {
#ifdef QM_TEST_EVALUATORS_FAIL
        result->setEvaluationStatus(AcDbField::kInvalidCode, 7, L"the test evaluator refuses every code");
        return Acad::eInvalidInput;
#else
        // The arguments: the stored code less "\Id" and the blank behind it.
        std::wstring code = field->getFieldCode(AcDbField::kFieldCode | AcDbField::kStripOptions);
        size_t blank = code.find(L' ');
        std::wstring arguments = blank == std::wstring::npos ? L"" : code.substr(blank + 1);
        AcFdFieldValue data(arguments.c_str());
        field->setData((std::wstring(m_id) + L" Data").c_str(), &data);
        AcValue value(arguments.c_str());
        result->setFieldValue(&value);
        result->setEvaluationStatus(AcDbField::kSuccess);
        return Acad::eOk;
#endif
    }

private:
    const ACHAR* m_id;
};

class TestLoader : public AcFdFieldEvaluatorLoader {
public:
    AcFdFieldEvaluator* getEvaluator(const ACHAR* id) override {
        for (TestEvaluator& evaluator : m_evaluators) {
            if (id && _wcsicmp(id, evaluator.evaluatorId()) == 0) return &evaluator;
        }
        return nullptr;
    }

private:
    TestEvaluator m_evaluators[6] = {TestEvaluator(kIds[0]), TestEvaluator(kIds[1]), TestEvaluator(kIds[2]),
                                     TestEvaluator(kIds[3]), TestEvaluator(kIds[4]), TestEvaluator(kIds[5])};
};

#ifdef QM_TEST_EVALUATORS_FAIL
class CarelessHook : public CAcFdUiFieldDialogHook {
public:
    BOOL GetCategories(CStringArray& names, CUIntArray& ids) override {
        names.Add(L"Careless");
        ids.Add(900);
        return TRUE;
    }
    BOOL GetFields(UINT, CStringArray& names, CUIntArray& ids, BOOL&) override {
        names.Add(L"Careless Type");
        ids.Add(901);
        return TRUE;
    }
};
CarelessHook* hook = nullptr;
#endif

TestLoader* loader = nullptr;
Adesk::UInt32 apiState = 0;

}  // namespace

ACRX_MODULE_EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode msg, void* pkt) {
    switch (msg) {
    case AcRx::kInitAppMsg:
        acrxDynamicLinker->unlockApplication(pkt);
        loader = new TestLoader;
        acdbGetFieldEngine()->registerEvaluatorLoader(loader);
#ifdef QM_TEST_EVALUATORS_FAIL
        hook = new CarelessHook;
        AcFdUiGetFieldManager()->RegisterFieldDialogHook(hook);
#endif
        break;
    case AcRx::kUnloadAppMsg:
#ifndef QM_TEST_EVALUATORS_FAIL
        acdbGetFieldEngine()->unregisterEvaluatorLoader(loader);
#endif
        delete loader;
        loader = nullptr;
#ifdef QM_TEST_EVALUATORS_FAIL
        delete hook;
        hook = nullptr;
#endif
        break;
    default:
        break;
    }
    return AcRx::kRetOK;
}

ACRX_MODULE_EXPORT Adesk::UInt32 acrxGetApiVersion(Adesk::UInt32 token) {
    Adesk::UInt32 result = apiState == 0 ? ACRX_API_VERSION_18_0 : (apiState ^ token);
    apiState = apiState == 0 ? token ^ ACRX_API_VERSION_18_0 : result;
    if (token == 0) apiState = 0;
    return result;
}
