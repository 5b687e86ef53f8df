// Evaluators whose behaviour a test sets, and a loader that offers them.
#pragma once

#include <AcFdEval.h>
#include <dbfield.h>
#include <tchar.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace qmtest {

class ScriptedEvaluator : public AcFdFieldEvaluator {
public:
    using Body = std::function<Acad::ErrorStatus(AcDbField*, int, AcFdFieldResult*)>;
    ScriptedEvaluator(std::wstring id, Body body) : m_id(std::move(id)), m_body(std::move(body)) {}
    const ACHAR* evaluatorId() const override { return m_id.c_str(); }
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase*, AcFdFieldResult* result) override {
        ++calls;
        contexts.push_back(context);
        return m_body(field, context, result);
    }
    Acad::ErrorStatus format(AcDbField* field, ACHAR*& text) override {
        if (ownText.empty()) return Acad::eNotImplementedYet;
        text = new ACHAR[ownText.size() + 1];
        std::wcscpy(text, ownText.c_str());
        return Acad::eOk;
    }

    int calls = 0;
    std::vector<int> contexts;
    std::wstring ownText;  // when set, the evaluator shapes the display itself

private:
    std::wstring m_id;
    Body m_body;
};

// Answers the ids of its evaluators, ignoring case as loaders do; records
// the ids it was asked for.
class ScriptedLoader : public AcFdFieldEvaluatorLoader {
public:
    void Add(ScriptedEvaluator* evaluator) { m_evaluators.push_back(evaluator); }
    AcFdFieldEvaluator* getEvaluator(const ACHAR* id) override {
        asked.push_back(id ? id : L"(null)");
        for (ScriptedEvaluator* evaluator : m_evaluators) {
            if (id && _wcsicmp(id, evaluator->evaluatorId()) == 0) return evaluator;
        }
        return nullptr;
    }
    std::vector<std::wstring> asked;

private:
    std::vector<ScriptedEvaluator*> m_evaluators;
};

// An evaluator body that succeeds with a value.
template <class T>
ScriptedEvaluator::Body Succeeds(T value) {
    return [value](AcDbField*, int, AcFdFieldResult* result) {
        AcValue v(value);
        result->setFieldValue(&v);
        result->setEvaluationStatus(AcDbField::kSuccess);
        return Acad::eOk;
    };
}

}  // namespace qmtest
