// The dynamic linker: maps modules by path, speaks the version handshake,
// sends them their load and unload messages, and keeps their flags.
#pragma once

#include <rxregsvc.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace cadhost {

class DynamicLinker : public AcRxDynamicLinker {
public:
    struct App {
        std::filesystem::path path;
        std::wstring name;  // the file name, by which the user names it
        void* library = nullptr;
        HMODULE module = nullptr;
        AcRxEntryPointFunction entryPoint = nullptr;
        bool unlocked = false;
        bool mdiAware = false;
    };

    // Where bare module names are looked up; messages go to print.
    DynamicLinker(std::filesystem::path moduleFolder, std::function<void(const std::wstring&)> print);
    ~DynamicLinker() override;

    bool loadModule(const ACHAR* fileName, bool printIt, bool asCmd = false) override;
    bool unloadModule(const ACHAR* fileName, bool asCmd = false) override;
    bool loadApp(const ACHAR* appName, int loadReasons, bool printIt, bool asCmd = false) override;
    bool unloadApp(const ACHAR* appName, bool asCmd = false) override;
    bool unlockApplication(void* appId) const override;
    bool lockApplication(void* appId) const override;
    bool isApplicationLocked(const ACHAR* appName) const override;
    bool registerAppMDIAware(void* appId) const override;
    bool registerAppNotMDIAware(void* appId) const override;
    void* getModuleHandle(const ACHAR* fileName) const override;

    // Sends a message to every loaded module, in load order.
    void Broadcast(AcRx::AppMsgCode message, void* packet);
    // Sends a message to one module.
    AcRx::AppRetCode Send(App& app, AcRx::AppMsgCode message, void* packet);
    // The module whose entry point is running, or null.
    void* Dispatching() const { return m_dispatching.empty() ? nullptr : m_dispatching.back(); }
    // Heard when a module has answered its unload message, before it goes.
    void SetUnloadListener(std::function<void(App&)> listener) { m_unloadListener = std::move(listener); }
    // Heard when a module has initialised.
    void SetLoadListener(std::function<void(App&)> listener) { m_loadListener = std::move(listener); }
    // Unloads every module, the last loaded first, whether locked or not.
    void UnloadAll();
    const std::vector<std::unique_ptr<App>>& Apps() const { return m_apps; }
    const App* Find(const std::wstring& nameOrPath) const;
    // The loaded module of an application id, or null.
    App* FindById(void* appId) const { return ById(appId); }
    std::filesystem::path Resolve(const std::wstring& fileName) const;

private:
    App* FindApp(const std::wstring& nameOrPath) const;
    App* ById(void* appId) const;
    void Unmap(App& app);
    void Erase(App* app);

    std::filesystem::path m_moduleFolder;
    std::function<void(const std::wstring&)> m_print;
    std::vector<std::unique_ptr<App>> m_apps;
    std::vector<App*> m_dispatching;
    std::function<void(App&)> m_unloadListener;
    std::function<void(App&)> m_loadListener;
};

}  // namespace cadhost
