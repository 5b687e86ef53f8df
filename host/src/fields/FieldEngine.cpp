#include <AcFdEval.h>
#include <dbfield.h>
#include <tchar.h>

#include <algorithm>
#include <vector>

#include "app/Host.h"
#include "app/Modules.h"
#include "fields/FieldCodeText.h"
#include "fields/TextFieldEvaluator.h"

ACRX_DEFINE_MEMBERS(AcFdFieldEvaluator, AcRxObject)
ACRX_DEFINE_MEMBERS(AcFdFieldEvaluatorLoader, AcRxObject)
ACRX_DEFINE_MEMBERS(AcFdFieldEngine, AcRxObject)

AcFdFieldEvaluator::~AcFdFieldEvaluator() = default;
const ACHAR* AcFdFieldEvaluator::evaluatorId() const { return L""; }
const ACHAR* AcFdFieldEvaluator::evaluatorId(AcDbField*) { return evaluatorId(); }
Acad::ErrorStatus AcFdFieldEvaluator::initialize(AcDbField*) { return Acad::eOk; }
Acad::ErrorStatus AcFdFieldEvaluator::compile(AcDbField*, AcDbDatabase*, AcFdFieldResult*) { return Acad::eOk; }
Acad::ErrorStatus AcFdFieldEvaluator::evaluate(AcDbField*, int, AcDbDatabase*, AcFdFieldResult* result) {
    if (result) result->setEvaluationStatus(AcDbField::kOtherError, 0, L"The evaluator does not evaluate.");
    return Acad::eNotImplementedYet;
}
Acad::ErrorStatus AcFdFieldEvaluator::format(AcDbField*, ACHAR*&) { return Acad::eNotImplementedYet; }

AcFdFieldEvaluatorLoader::~AcFdFieldEvaluatorLoader() = default;
AcFdFieldEvaluator* AcFdFieldEvaluatorLoader::getEvaluator(const ACHAR*) { return nullptr; }
AcFdFieldEvaluator* AcFdFieldEvaluatorLoader::findEvaluator(AcDbField* field, const ACHAR*& evaluatorId) {
    if (!field) return nullptr;
    evaluatorId = field->evaluatorId();
    return getEvaluator(evaluatorId);
}

struct AcFdFieldEngine::Impl {
    struct Entry {
        AcFdFieldEvaluatorLoader* loader;
        HMODULE module;  // whose code the loader runs
    };
    std::vector<Entry> loaders;
    cadhost::TextFieldEvaluator textEvaluator;

    // The module that holds a loader's class: its table of virtual
    // functions lies in that module's image.
    static HMODULE ModuleOf(const AcFdFieldEvaluatorLoader* loader) {
        const void* table = *reinterpret_cast<const void* const*>(loader);
        return cadhost::ModuleTable::Instance().FromAddress(table);
    }
    // A copy, so that a loader may register or withdraw while it is asked.
    std::vector<AcFdFieldEvaluatorLoader*> Snapshot() const {
        std::vector<AcFdFieldEvaluatorLoader*> out;
        out.reserve(loaders.size());
        for (const Entry& entry : loaders) out.push_back(entry.loader);
        return out;
    }
    bool IsText(const ACHAR* id) const { return id && _wcsicmp(id, cadhost::kTextEvaluatorId) == 0; }
};

AcFdFieldEngine::AcFdFieldEngine() : m_impl(new Impl) {}

AcFdFieldEngine::~AcFdFieldEngine() { delete m_impl; }

Acad::ErrorStatus AcFdFieldEngine::registerEvaluatorLoader(AcFdFieldEvaluatorLoader* loader) {
    if (!loader) return Acad::eNullObjectPointer;
    auto& loaders = m_impl->loaders;
    if (std::any_of(loaders.begin(), loaders.end(), [loader](const Impl::Entry& e) { return e.loader == loader; }))
        return Acad::eDuplicateKey;
    loaders.push_back({loader, Impl::ModuleOf(loader)});
    return Acad::eOk;
}

Acad::ErrorStatus AcFdFieldEngine::unregisterEvaluatorLoader(AcFdFieldEvaluatorLoader* loader) {
    auto& loaders = m_impl->loaders;
    auto it = std::find_if(loaders.begin(), loaders.end(), [loader](const Impl::Entry& e) { return e.loader == loader; });
    if (!loader || it == loaders.end()) return Acad::eKeyNotFound;
    loaders.erase(it);
    return Acad::eOk;
}

int AcFdFieldEngine::evaluatorLoaderCount() const { return static_cast<int>(m_impl->loaders.size()); }

AcFdFieldEvaluatorLoader* AcFdFieldEngine::getEvaluatorLoader(int index) {
    if (index < 0 || index >= evaluatorLoaderCount()) return nullptr;
    return m_impl->loaders[static_cast<size_t>(index)].loader;
}

AcFdFieldEvaluator* AcFdFieldEngine::getEvaluator(const ACHAR* evaluatorId) {
    if (!evaluatorId || !*evaluatorId) return nullptr;
    if (m_impl->IsText(evaluatorId)) return &m_impl->textEvaluator;
    for (AcFdFieldEvaluatorLoader* loader : m_impl->Snapshot()) {
        if (AcFdFieldEvaluator* evaluator = loader->getEvaluator(evaluatorId)) return evaluator;
    }
    return nullptr;
}

AcFdFieldEvaluator* AcFdFieldEngine::findEvaluator(AcDbField* field, const ACHAR*& evaluatorId) {
    if (!field || !*field->evaluatorId()) return nullptr;
    if (m_impl->IsText(field->evaluatorId())) {
        evaluatorId = field->evaluatorId();
        return &m_impl->textEvaluator;
    }
    for (AcFdFieldEvaluatorLoader* loader : m_impl->Snapshot()) {
        const ACHAR* id = field->evaluatorId();
        if (AcFdFieldEvaluator* evaluator = loader->findEvaluator(field, id)) {
            evaluatorId = id;
            return evaluator;
        }
    }
    return nullptr;
}

int AcFdFieldEngine::dropLoadersOfModule(HMODULE module) {
    if (!module) return 0;
    return static_cast<int>(
        std::erase_if(m_impl->loaders, [module](const Impl::Entry& entry) { return entry.module == module; }));
}

AcFdFieldEngine* acdbGetFieldEngine() {
    cadhost::Host* host = cadhost::Host::Current();
    return host ? &host->fieldEngine() : nullptr;
}
