// Evaluation passes: the host tells its field reactors when it begins and
// ends evaluating a set of fields (all those of a drawing it brings up to
// date). What an evaluator reads from a file for one field of the pass
// serves the others, and is let go when the pass ends, so that the next
// pass reads a changed file anew.
#pragma once

#include "StdAfx.h"

#include <vector>

// What an evaluator keeps for the length of a pass.
class CPassCache {
public:
    virtual ~CPassCache() = default;
    virtual void BeginPass() = 0;
    virtual void EndPass() = 0;
};

// The module's field reactor: tells its evaluators' caches of each pass.
class AsdkEvaluationPassReactor : public AcFdFieldReactor {
public:
    AsdkEvaluationPassReactor();
    ~AsdkEvaluationPassReactor() override;

    // A cache to tell; it must outlive the reactor's registration.
    void AddCache(CPassCache* cache);

    Acad::ErrorStatus beginEvaluateFields(int context, AcDbDatabase* database) override;
    Acad::ErrorStatus endEvaluateFields(int context, AcDbDatabase* database) override;

private:
    std::vector<CPassCache*> m_caches;
};
