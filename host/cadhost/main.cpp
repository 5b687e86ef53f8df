// cadhost: the host program. It opens a drawing (or a new one), loads the
// module from beside itself, and runs a session script.
#include <cstring>
#include <filesystem>
#include <iostream>
#include <optional>

#include "ScriptRunner.h"
#include "UpdateCommand.h"
#include "app/Modules.h"
#include "core/Utf8.h"

namespace {

const char* const kUsage =
    "usage: cadhost [--script FILE] [--no-module] [--settings DIR] [--launch] [DRAWING]\n"
    "       cadhost update DRAWING [-o OUT] [--settings DIR]\n"
    "\n"
    "  --script FILE    run a session script (the language is in SCRIPTS.md)\n"
    "  --no-module      load no module before the script; its appload does\n"
    "  --settings DIR   keep the settings stores in DIR\n"
    "  --launch         hand web pages and files to the desktop instead of printing them\n"
    "  update           re-evaluate the drawing's fields and write it back (or to OUT)\n";

struct Options {
    std::optional<std::filesystem::path> script;
    std::optional<std::filesystem::path> drawing;
    std::filesystem::path settings;
    bool module = true;
    bool launch = false;
};

// Reads the command line; answers an exit status when the program should
// stop at once.
std::optional<int> ParseArguments(int argc, char** argv, Options& options) {
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        auto value = [&](const char* name) -> std::optional<std::string> {
            if (i + 1 >= argc) {
                std::cerr << "cadhost: " << name << " needs a value\n" << kUsage;
                return std::nullopt;
            }
            return std::string(argv[++i]);
        };
        if (arg == "--help" || arg == "-h") {
            std::cout << kUsage;
            return 0;
        } else if (arg == "--script") {
            auto v = value("--script");
            if (!v) return 2;
            options.script = *v;
        } else if (arg == "--settings") {
            auto v = value("--settings");
            if (!v) return 2;
            options.settings = *v;
        } else if (arg == "--no-module") {
            options.module = false;
        } else if (arg == "--launch") {
            options.launch = true;
        } else if (!arg.empty() && arg[0] == '-') {
            std::cerr << "cadhost: unknown option " << arg << "\n" << kUsage;
            return 2;
        } else if (!options.drawing) {
            options.drawing = arg;
        } else {
            std::cerr << "cadhost: only one drawing can be given\n" << kUsage;
            return 2;
        }
    }
    return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc >= 2 && std::strcmp(argv[1], "update") == 0)
        return cadhost::RunUpdate(std::vector<std::string>(argv + 2, argv + argc), std::cout, std::cerr);
    Options options;
    if (std::optional<int> status = ParseArguments(argc, argv, options)) return *status;
    cadhost::HostOptions hostOptions;
    hostOptions.settingsFolder = options.settings;
    cadhost::Host host(hostOptions);
    if (options.drawing) {
        std::wstring error;
        if (!host.OpenDrawing(*options.drawing, error)) {
            host.commandLine().FinishLine();
            std::cerr << "cadhost: " << cadhost::ToUtf8(error) << "\n";
            return 2;
        }
    }
    if (options.module) {
        host.linker().loadModule(L"Quillmark.arx", true);
        host.processor().RunIdle();
    }
    if (!options.script) {
        host.commandLine().FinishLine();
        std::cerr << "cadhost: no script given; the window of this host is not built yet\n";
        return 2;
    }
    cadhost::script::ScriptRunner runner(host, options.launch);
    cadhost::script::DefineHostCommands(runner);
    cadhost::script::DefineDialogCommands(runner);
    cadhost::script::DefineDrawingCommands(runner);
    cadhost::script::DefineFieldCommands(runner);
    cadhost::script::DefineSettingCommands(runner);
    return runner.RunFile(*options.script, std::cerr);
}
