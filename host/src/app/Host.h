// The running host: everything that the platform's interface makes global,
// owned by one object for the life of a session.
#pragma once

#include <AcFdEval.h>

#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
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
#include "editor/EditorInput.h"
#include "editor/SelectionSets.h"
#include "internet/HttpTransfer.h"
#include "registry/SettingsStore.h"
#include "shell/Shell.h"
#include "system/SystemVersion.h"
#include "ui/Desktop.h"

class CAcFdUiFieldManager;

namespace cadhost {

struct HostOptions {
    std::filesystem::path moduleFolder;  // empty: the folder of the host's library
    std::filesystem::path settingsFolder;  // empty: the user's configuration folder
    std::ostream* output = &std::cout;
    internet::InternetOptions internet;  // where the Internet classes connect
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
    // The user's answers at the editor's prompts, and the selection sets
    // the editor handed out for the current drawing.
    EditorInput& input() { return m_input; }
    SelectionSets& selections() { return m_selections; }
    ui::Desktop& desktop() { return *m_desktop; }
    AcFdFieldEngine& fieldEngine() { return *m_fieldEngine; }
    CAcFdUiFieldManager& fieldManager() { return *m_fieldManager; }
    const std::filesystem::path& moduleFolder() const { return m_moduleFolder; }
    // The desktop's shell (ShellExecuteW), the Internet classes' options,
    // and the system that GetVersionExW answers for.
    Shell& shell() { return *m_shell; }
    const internet::InternetOptions& internet() const { return m_internet; }
    SystemVersion& systemVersion();

    // A new empty drawing replaces the current one.
    void NewDrawing();
    // The viewport of the current layout's sheet being worked in (its
    // number), or 0 for the sheet itself (CVPORT).
    short currentViewport() const { return m_viewport; }
    // A drawing read from a DXF file replaces the current one; on failure
    // the current one stays and error says why, naming the file.
    bool OpenDrawing(const std::filesystem::path& path, std::wstring& error);
    // Writes the current drawing as DXF; the document takes the new name.
    bool SaveDrawing(const std::filesystem::path& path, std::wstring& error);

private:
    void DefineCommands();
    void DefineVariables();
    void ConnectModules();
    void ReplaceDrawing(std::unique_ptr<AcDbDatabase> database, std::wstring fileName);
    void DefineDrawingVariables();

    std::filesystem::path m_moduleFolder;
    internet::InternetOptions m_internet;
    std::optional<SystemVersion> m_systemVersion;  // read on first use
    short m_viewport = 0;
    EditorInput m_input;
    SelectionSets m_selections;
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
    std::unique_ptr<ui::Desktop> m_desktop;  // outlives the modules, whose windows it holds
    std::unique_ptr<Shell> m_shell;
    std::unique_ptr<AcFdFieldEngine> m_fieldEngine;
    std::unique_ptr<CAcFdUiFieldManager> m_fieldManager;
    std::unique_ptr<DynamicLinker> m_linker;  // last: modules go before what they use
};

}  // namespace cadhost
