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
ACRX_DEFINE_MEMBERS(AcFdFieldReactor, AcRxObject)

AcFdFieldReactor::~AcFdFieldReactor() = default;
Acad::ErrorStatus AcFdFieldReactor::beginEvaluateFields(int, AcDbDatabase*) { return Acad::eOk; }
Acad::ErrorStatus AcFdFieldReactor::endEvaluateFields(int, AcDbDatabase*) { return Acad::eOk; }

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
    struct Reactor {
        AcFdFieldReactor* reactor;
        HMODULE module;
    };
    std::vector<Entry> loaders;
    std::vector<Reactor> reactors;
    cadhost::TextFieldEvaluator textEvaluator;

    // The module that holds an object's class: its table of virtual
    // functions lies in that module's image.
    static HMODULE ModuleOf(const AcRxObject* object) {
        const void* table = *reinterpret_cast<const void* const*>(object);
        return cadhost::ModuleTable::Instance().FromAddress(table);
    }
    // A copy, so that a reactor may come or go while the others are told.
    std::vector<AcFdFieldReactor*> Reactors() const {
        std::vector<AcFdFieldReactor*> out;
        for (const Reactor& entry : reactors) out.push_back(entry.reactor);
        return out;
    }
    bool HasReactor(const AcFdFieldReactor* reactor) const {
        return std::any_of(reactors.begin(), reactors.end(), [reactor](const Reactor& e) { return e.reactor == reactor; });
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
    std::erase_if(m_impl->reactors, [module](const Impl::Reactor& entry) { return entry.module == module; });
    return static_cast<int>(
        std::erase_if(m_impl->loaders, [module](const Impl::Entry& entry) { return entry.module == module; }));
}

Acad::ErrorStatus AcFdFieldEngine::addFieldReactor(AcFdFieldReactor* reactor) {
    if (!reactor) return Acad::eNullObjectPointer;
    if (m_impl->HasReactor(reactor)) return Acad::eDuplicateKey;
    m_impl->reactors.push_back({reactor, Impl::ModuleOf(reactor)});
    return Acad::eOk;
}

Acad::ErrorStatus AcFdFieldEngine::removeFieldReactor(AcFdFieldReactor* reactor) {
    if (!reactor || !m_impl->HasReactor(reactor)) return Acad::eKeyNotFound;
    std::erase_if(m_impl->reactors, [reactor](const Impl::Reactor& entry) { return entry.reactor == reactor; });
    return Acad::eOk;
}

int AcFdFieldEngine::fieldReactorCount() const { return static_cast<int>(m_impl->reactors.size()); }

void AcFdFieldEngine::beginEvaluateFields(int context, AcDbDatabase* database) {
    for (AcFdFieldReactor* reactor : m_impl->Reactors())
        if (m_impl->HasReactor(reactor)) reactor->beginEvaluateFields(context, database);
}

void AcFdFieldEngine::endEvaluateFields(int context, AcDbDatabase* database) {
    for (AcFdFieldReactor* reactor : m_impl->Reactors())
        if (m_impl->HasReactor(reactor)) reactor->endEvaluateFields(context, database);
}

AcFdFieldEngine* acdbGetFieldEngine() {
    cadhost::Host* host = cadhost::Host::Current();
    return host ? &host->fieldEngine() : nullptr;
}

Acad::ErrorStatus acdbAddFieldReactor(AcFdFieldReactor* reactor) {
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    return engine ? engine->addFieldReactor(reactor) : Acad::eNotApplicable;
}

Acad::ErrorStatus acdbRemoveFieldReactor(AcFdFieldReactor* reactor) {
    AcFdFieldEngine* engine = acdbGetFieldEngine();
    return engine ? engine->removeFieldReactor(reactor) : Acad::eNotApplicable;
}
