#include "app/DynamicLinker.h"

#include <dlfcn.h>
#include <tchar.h>

#include <algorithm>

#include "app/Modules.h"
#include "core/Utf8.h"

namespace cadhost {
namespace {
// The token of the version handshake: any word whose answer the module
// folds into its state; 0 afterwards resets that state.
constexpr Adesk::UInt32 kHandshakeToken = 0x5A17u;

std::wstring Wide(const std::filesystem::path& path) { return FromUtf8(path.string()); }
}  // namespace

DynamicLinker::DynamicLinker(std::filesystem::path moduleFolder, std::function<void(const std::wstring&)> print)
    : m_moduleFolder(std::move(moduleFolder)), m_print(std::move(print)) {}

DynamicLinker::~DynamicLinker() { UnloadAll(); }

std::filesystem::path DynamicLinker::Resolve(const std::wstring& fileName) const {
    std::filesystem::path path(ToUtf8(fileName));
    if (!path.has_parent_path()) path = m_moduleFolder / path;
    std::error_code ec;
    auto absolute = std::filesystem::absolute(path, ec);
    return (ec ? path : absolute).lexically_normal();
}

DynamicLinker::App* DynamicLinker::FindApp(const std::wstring& nameOrPath) const {
    std::filesystem::path path(ToUtf8(nameOrPath));
    bool bare = !path.has_parent_path();
    for (const auto& app : m_apps) {
        if (bare ? _wcsicmp(app->name.c_str(), nameOrPath.c_str()) == 0 : app->path == Resolve(nameOrPath))
            return app.get();
    }
    return nullptr;
}

const DynamicLinker::App* DynamicLinker::Find(const std::wstring& nameOrPath) const { return FindApp(nameOrPath); }

DynamicLinker::App* DynamicLinker::ById(void* appId) const {
    for (const auto& app : m_apps) {
        if (app.get() == appId) return app.get();
    }
    return nullptr;
}

bool DynamicLinker::loadModule(const ACHAR* fileName, bool printIt, bool) {
    if (!fileName || !*fileName) return false;
    auto report = [&](const std::wstring& text) {
        if (printIt) m_print(text);
    };
    std::filesystem::path path = Resolve(fileName);
    std::wstring name = Wide(path.filename());
    if (FindApp(Wide(path)) || FindApp(name)) {
        report(L"\n" + name + L" is already loaded.");
        return false;
    }
    std::error_code ec;
    if (!std::filesystem::is_regular_file(path, ec)) {
        report(L"\nUnable to load " + Wide(path) + L": no such file.");
        return false;
    }
    void* library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library) {
        const char* why = dlerror();
        report(L"\nUnable to load " + Wide(path) + L": " + FromUtf8(why ? why : "unknown error") + L".");
        return false;
    }
    auto version = reinterpret_cast<AcRxGetApiVersionFunction>(dlsym(library, "acrxGetApiVersion"));
    auto entry = reinterpret_cast<AcRxEntryPointFunction>(dlsym(library, "acrxEntryPoint"));
    if (!version || !entry) {
        report(L"\n" + name + L" is not a module of this host: it lacks " +
               (version ? L"acrxEntryPoint" : L"acrxGetApiVersion") + L".");
        dlclose(library);
        return false;
    }
    Adesk::UInt32 answer = version(kHandshakeToken);
    version(0);
    if ((answer >> 16) != (ACRX_API_VERSION_18_0 >> 16)) {
        wchar_t text[64];
        swprintf(text, 64, L"%u.%u", answer >> 16, answer & 0xFFFF);
        report(L"\n" + name + L" was built for interface version " + text + L", not 18.");
        dlclose(library);
        return false;
    }
    auto app = std::make_unique<App>();
    app->path = path;
    app->name = name;
    app->library = library;
    app->module = ModuleTable::Instance().FromAddress(reinterpret_cast<const void*>(entry));
    app->entryPoint = entry;
    App* raw = app.get();
    m_apps.push_back(std::move(app));
    if (Send(*raw, AcRx::kInitAppMsg, raw) == AcRx::kRetError) {
        report(L"\n" + name + L" refused to load.");
        Send(*raw, AcRx::kUnloadAppMsg, raw);
        Unmap(*raw);
        Erase(raw);
        return false;
    }
    report(L"\n" + name + L" successfully loaded.");
    if (m_loadListener) m_loadListener(*raw);
    return true;
}

bool DynamicLinker::unloadModule(const ACHAR* fileName, bool) {
    App* app = fileName ? FindApp(fileName) : nullptr;
    if (!app) {
        m_print(L"\n" + std::wstring(fileName ? fileName : L"") + L" is not loaded.");
        return false;
    }
    if (!app->unlocked) {
        m_print(L"\nUnable to unload " + app->name + L": the application is locked.");
        return false;
    }
    if (Send(*app, AcRx::kUnloadAppMsg, app) == AcRx::kRetError) {
        m_print(L"\n" + app->name + L" declined to unload.");
        return false;
    }
    std::wstring name = app->name;
    Unmap(*app);
    Erase(app);
    m_print(L"\n" + name + L" successfully unloaded.");
    return true;
}

bool DynamicLinker::loadApp(const ACHAR* appName, int, bool printIt, bool asCmd) {
    return loadModule(appName, printIt, asCmd);
}

bool DynamicLinker::unloadApp(const ACHAR* appName, bool asCmd) { return unloadModule(appName, asCmd); }

bool DynamicLinker::unlockApplication(void* appId) const {
    App* app = ById(appId);
    if (app) app->unlocked = true;
    return app != nullptr;
}

bool DynamicLinker::lockApplication(void* appId) const {
    App* app = ById(appId);
    if (app) app->unlocked = false;
    return app != nullptr;
}

bool DynamicLinker::isApplicationLocked(const ACHAR* appName) const {
    const App* app = appName ? FindApp(appName) : nullptr;
    return app && !app->unlocked;
}

bool DynamicLinker::registerAppMDIAware(void* appId) const {
    App* app = ById(appId);
    if (app) app->mdiAware = true;
    return app != nullptr;
}

bool DynamicLinker::registerAppNotMDIAware(void* appId) const {
    App* app = ById(appId);
    if (app) app->mdiAware = false;
    return app != nullptr;
}

void* DynamicLinker::getModuleHandle(const ACHAR* fileName) const {
    const App* app = fileName ? FindApp(fileName) : nullptr;
    return app ? app->module : nullptr;
}

void DynamicLinker::Broadcast(AcRx::AppMsgCode message, void* packet) {
    // A module may load or unload others while it answers: walk a copy.
    std::vector<App*> apps;
    for (auto& app : m_apps) apps.push_back(app.get());
    for (App* app : apps) {
        if (ById(app)) Send(*app, message, packet);
    }
}

AcRx::AppRetCode DynamicLinker::Send(App& app, AcRx::AppMsgCode message, void* packet) {
    m_dispatching.push_back(&app);
    AcRx::AppRetCode result = app.entryPoint(message, packet);
    m_dispatching.pop_back();
    return result;
}

void DynamicLinker::UnloadAll() {
    while (!m_apps.empty()) {
        App* app = m_apps.back().get();
        Send(*app, AcRx::kUnloadAppMsg, app);
        Unmap(*app);
        Erase(app);
    }
}

void DynamicLinker::Unmap(App& app) {
    if (m_unloadListener) m_unloadListener(app);
    if (app.library) dlclose(app.library);
    app.library = nullptr;
    // The image is gone unless something else still maps it.
    if (!app.module) return;
    if (void* still = dlopen(app.path.c_str(), RTLD_NOW | RTLD_NOLOAD)) dlclose(still);
    else ModuleTable::Instance().Forget(app.module);
}

void DynamicLinker::Erase(App* app) {
    std::erase_if(m_apps, [app](const auto& owned) { return owned.get() == app; });
}

}  // namespace cadhost
