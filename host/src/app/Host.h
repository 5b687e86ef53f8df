// The running host: everything that the platform's interface makes global,
// owned by one object for the life of a session.
#pragma once

#include <AcFdEval.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <string>

#include "app/CommandLine.h"
#include "app/CommandProcessor.h"
#include "app/CommandStack.h"
#include "app/DocumentManager.h"
#include "app/DynamicLinker.h"
#include "app/ExternalFunctions.h"
#include "app/HostServices.h"
#include "app/MenuBar.h"
#include "app/SystemRegistry.h"
#include "app/SystemVariables.h"
#include "registry/SettingsStore.h"

namespace cadhost {

struct HostOptions {
    std::filesystem::path moduleFolder;  // empty: the folder of the host's library
    std::filesystem::path settingsFolder;  // empty: the user's configuration folder
    std::ostream* output = &std::cout;
};

class Host {
public:
    explicit Host(HostOptions options = {});
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    // The running host; Require() ends the process with a message when a
    // platform call comes without one, which is a fault of the caller.
    static Host* Current();
    static Host& Require();

    CommandLine& commandLine() { return m_commandLine; }
    void Print(const std::wstring& text) { m_commandLine.Print(text); }
    SystemRegistry& sysRegistry() { return m_sysRegistry; }
    DynamicLinker& linker() { return *m_linker; }
    CommandStack& commands() { return m_commands; }
    DocumentManager& documents() { return *m_documents; }
    HostServices& services() { return *m_services; }
    MenuBar& menus() { return m_menus; }
    CommandProcessor& processor() { return *m_processor; }
    SystemVariables& variables() { return m_variables; }
    ExternalFunctions& functions() { return m_functions; }
    SettingsStore& settings() { return *m_settings; }
    AcFdFieldEngine& fieldEngine() { return *m_fieldEngine; }
    const std::filesystem::path& moduleFolder() const { return m_moduleFolder; }

    // A new empty drawing replaces the current one.
    void NewDrawing();

private:
    void DefineCommands();
    void DefineVariables();
    void ConnectModules();

    std::filesystem::path m_moduleFolder;
    CommandLine m_commandLine;
    SystemRegistry m_sysRegistry;
    CommandStack m_commands;
    MenuBar m_menus;
    SystemVariables m_variables;
    ExternalFunctions m_functions;
    std::unique_ptr<SettingsStore> m_settings;
    std::unique_ptr<DocumentManager> m_documents;
    std::unique_ptr<HostServices> m_services;
    std::unique_ptr<CommandProcessor> m_processor;
    std::unique_ptr<AcFdFieldEngine> m_fieldEngine;
    std::unique_ptr<DynamicLinker> m_linker;  // last: modules go before what they use
};

}  // namespace cadhost
