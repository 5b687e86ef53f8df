// Extension modules of the framework: a module that joins keeps a
// CDynLinkLibrary for as long as it is attached.
#include <afxwin.h>

#include <algorithm>
#include <vector>

#include "app/Modules.h"

IMPLEMENT_DYNAMIC(CDynLinkLibrary, CObject)

namespace {
// The framework's chain, process-wide as the loader is; never destroyed,
// since a module mapped to the end of the process leaves it at its detach,
// after this library's static objects are gone.
std::vector<CDynLinkLibrary*>& Libraries() {
    static auto* libraries = new std::vector<CDynLinkLibrary*>;
    return *libraries;
}
}  // namespace

CDynLinkLibrary::CDynLinkLibrary(AFX_EXTENSION_MODULE& state, BOOL system)
    : m_hModule(state.hModule), m_hResource(state.hResource), m_bSystem(system) {
    Libraries().push_back(this);
}

CDynLinkLibrary::~CDynLinkLibrary() { std::erase(Libraries(), this); }

extern "C" {

BOOL AfxInitExtensionModule(AFX_EXTENSION_MODULE& state, HMODULE module) {
    if (!module || !cadhost::ModuleTable::Instance().Find(module)) return FALSE;
    state.bInitialized = TRUE;
    state.hModule = module;
    state.hResource = module;
    state.pFirstSharedClass = nullptr;
    state.pFirstSharedFactory = nullptr;
    return TRUE;
}

void AfxTermExtensionModule(AFX_EXTENSION_MODULE& state, BOOL) {
    // The libraries of a module end with it.
    std::vector<CDynLinkLibrary*> ending;
    for (CDynLinkLibrary* library : Libraries()) {
        if (library->m_hModule == state.hModule) ending.push_back(library);
    }
    for (CDynLinkLibrary* library : ending) delete library;
    state.bInitialized = FALSE;
}
}
