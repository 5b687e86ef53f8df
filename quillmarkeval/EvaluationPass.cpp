#include "EvaluationPass.h"

AsdkEvaluationPassReactor::AsdkEvaluationPassReactor() = default;
AsdkEvaluationPassReactor::~AsdkEvaluationPassReactor() = default;

void AsdkEvaluationPassReactor::AddCache(CPassCache* cache) {
    if (cache) m_caches.push_back(cache);
}

Acad::ErrorStatus AsdkEvaluationPassReactor::beginEvaluateFields(int, AcDbDatabase*) {
    for (CPassCache* cache : m_caches) cache->BeginPass();
    return Acad::eOk;
}

Acad::ErrorStatus AsdkEvaluationPassReactor::endEvaluateFields(int, AcDbDatabase*) {
    for (CPassCache* cache : m_caches) cache->EndPass();
    return Acad::eOk;
}
