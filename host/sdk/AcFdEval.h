// The field engine and its evaluators. A module that evaluates fields
// registers one loader with the engine when it loads and withdraws it when it
// unloads; the engine asks the loaders, in the order they came, for the
// evaluator of a field's evaluator id.
#pragma once

#include "AcValue.h"
#include "dbmain.h"

class AcDbField;
class AcFdFieldReactor;

// What an evaluator reports of one evaluation: the value and the status.
class CADHOST_API AcFdFieldResult : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldResult)
    ~AcFdFieldResult() override;
    virtual Acad::ErrorStatus setFieldValue(const AcValue* value);
    // A status of AcDbField::EvalStatus, an error code of the evaluator's
    // own, and a message for the user.
    virtual Acad::ErrorStatus setEvaluationStatus(int status, int errorCode = 0, const ACHAR* message = nullptr);

protected:
    AcFdFieldResult() = default;
};

// Turns the code of a field into a value. One evaluator may serve several ids.
class CADHOST_API AcFdFieldEvaluator : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldEvaluator)
    AcFdFieldEvaluator() = default;
    ~AcFdFieldEvaluator() override;

    virtual const ACHAR* evaluatorId() const;
    virtual const ACHAR* evaluatorId(AcDbField* field);
    // Called before a field's first evaluation and after its code changes.
    virtual Acad::ErrorStatus initialize(AcDbField* field);
    virtual Acad::ErrorStatus compile(AcDbField* field, AcDbDatabase* database, AcFdFieldResult* result);
    // Sets the value and status through the result; data items go into the
    // field with setData.
    virtual Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                                       AcFdFieldResult* result);
    // The display text of the field's value, when the evaluator shapes it
    // itself (a new text the engine frees with acutDelBuffer); the default
    // answers eNotImplementedYet and the host formats the value.
    virtual Acad::ErrorStatus format(AcDbField* field, ACHAR*& valueText);
};

// A module's way to its evaluators. Evaluator ids compare without regard to
// case: the engine hands a loader the id as the code wrote it, and a loader
// answers for its ids in any case.
class CADHOST_API AcFdFieldEvaluatorLoader : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldEvaluatorLoader)
    AcFdFieldEvaluatorLoader() = default;
    ~AcFdFieldEvaluatorLoader() override;

    virtual AcFdFieldEvaluator* getEvaluator(const ACHAR* evaluatorId);
    // The evaluator for a field; the default asks getEvaluator with the
    // field's id and gives that id back.
    virtual AcFdFieldEvaluator* findEvaluator(AcDbField* field, const ACHAR*& evaluatorId);
};

// The one field engine of the session.
class CADHOST_API AcFdFieldEngine : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldEngine)
    AcFdFieldEngine();
    ~AcFdFieldEngine() override;
    AcFdFieldEngine(const AcFdFieldEngine&) = delete;
    AcFdFieldEngine& operator=(const AcFdFieldEngine&) = delete;

    // eDuplicateKey for a loader that is registered already.
    Acad::ErrorStatus registerEvaluatorLoader(AcFdFieldEvaluatorLoader* loader);
    // eKeyNotFound for a loader that is not registered.
    Acad::ErrorStatus unregisterEvaluatorLoader(AcFdFieldEvaluatorLoader* loader);
    int evaluatorLoaderCount() const;
    AcFdFieldEvaluatorLoader* getEvaluatorLoader(int index);

    // The evaluator of an id, asking the loaders in registration order
    // (and the host's own evaluators first); null when none answers.
    AcFdFieldEvaluator* getEvaluator(const ACHAR* evaluatorId);
    AcFdFieldEvaluator* findEvaluator(AcDbField* field, const ACHAR*& evaluatorId);

    // Used by the host: forgets the loaders whose code lies in a module that
    // is going away, so that no evaluation reaches into unmapped code.
    // Answers how many were dropped. Field reactors of the module go too.
    int dropLoadersOfModule(HMODULE module);

    // Used by the host: the field reactors, and the bracket around a set
    // of evaluations that tells them.
    Acad::ErrorStatus addFieldReactor(AcFdFieldReactor* reactor);
    Acad::ErrorStatus removeFieldReactor(AcFdFieldReactor* reactor);
    int fieldReactorCount() const;
    void beginEvaluateFields(int context, AcDbDatabase* database);
    void endEvaluateFields(int context, AcDbDatabase* database);

private:
    struct Impl;
    Impl* m_impl;
};

// Hears when the host begins and ends evaluating a set of fields, such as
// all the fields of a drawing that it brings up to date, so that what an
// evaluator reads for one field can serve the others of the set.
class CADHOST_API AcFdFieldReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcFdFieldReactor)
    AcFdFieldReactor() = default;
    ~AcFdFieldReactor() override;
    virtual Acad::ErrorStatus beginEvaluateFields(int context, AcDbDatabase* database);
    virtual Acad::ErrorStatus endEvaluateFields(int context, AcDbDatabase* database);
};

// The field engine of the running host; null when no host runs.
CADHOST_API AcFdFieldEngine* acdbGetFieldEngine();

// eDuplicateKey for a reactor that is added already; eKeyNotFound when
// removing one that is not.
CADHOST_API Acad::ErrorStatus acdbAddFieldReactor(AcFdFieldReactor* reactor);
CADHOST_API Acad::ErrorStatus acdbRemoveFieldReactor(AcFdFieldReactor* reactor);
