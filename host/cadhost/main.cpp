// cadhost: the host program. It opens a drawing (or a new one), loads the
// module from beside itself, and runs a session script.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <iostream>
#include <optional>

#include "ScriptRunner.h"
#ifdef QM_WITH_WINDOWS
#include "GuiMain.h"
#endif
#include "UpdateCommand.h"
#include "app/HugePageHeap.h"
#include "app/Modules.h"
#include "core/Utf8.h"

namespace {

const char* const kUsage =
    "usage: cadhost --script FILE [--no-module] [--settings DIR] [--launch]\n"
    "               [--connect-to HOST:PORT:ADDRESS:PORT2]... [DRAWING]\n"
    "       cadhost [--gui] [--snapshot PNG [--size WxH]] [--no-module] [--settings DIR] [DRAWING]\n"
    "       cadhost update DRAWING [-o OUT] [--settings DIR]\n"
    "       cadhost --help | --version\n"
    "\n"
    "  --script FILE    run a session script (the language is in docs/scripts.md)\n"
    "  --gui            open the drawing in a window (the default without a script\n"
    "                   where a display is there)\n"
    "  --snapshot PNG   draw the window's first view into PNG and end (--size, default\n"
    "                   1100x760)\n"
    "  --no-module      load no module before the script; its appload does\n"
    "  --settings DIR   keep the settings stores in DIR\n"
    "  --launch         hand web pages, mail and files to the desktop (xdg-open) as well\n"
    "                   as printing them\n"
    "  --connect-to HOST:PORT:ADDRESS:PORT2\n"
    "                   send what is meant for HOST:PORT to ADDRESS:PORT2 (repeatable)\n"
    "  update           re-evaluate the drawing's fields and write it back (or to OUT)\n"
    "  --version        print the product and its version\n"
    "\n"
    "The options and the session-script language are described in docs/cadhost.md\n"
    "and docs/scripts.md of the source tree.\n";

struct Options {
    std::optional<std::filesystem::path> script;
    std::optional<std::filesystem::path> drawing;
    std::filesystem::path settings;
    bool module = true;
    bool launch = false;
    bool gui = false;
    std::optional<std::filesystem::path> snapshot;
    int width = 1100, height = 760;
    std::vector<std::string> connectTo;
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
        } else if (arg == "--version") {
            std::cout << "cadhost (Quillmark) " << QM_VERSION << "\n";
            return 0;
        } else if (arg == "--script") {
            auto v = value("--script");
            if (!v) return 2;
            options.script = *v;
        } else if (arg == "--settings") {
            auto v = value("--settings");
            if (!v) return 2;
            options.settings = *v;
        } else if (arg == "--gui") {
            options.gui = true;
        } else if (arg == "--snapshot") {
            auto v = value("--snapshot");
            if (!v) return 2;
            options.snapshot = *v;
            options.gui = true;
        } else if (arg == "--size") {
            auto v = value("--size");
            if (!v) return 2;
            if (std::sscanf(v->c_str(), "%dx%d", &options.width, &options.height) != 2 || options.width < 16 ||
                options.height < 16 || options.width > 8192 || options.height > 8192) {
                std::cerr << "cadhost: --size takes WIDTHxHEIGHT in pixels, 16 to 8192 each\n" << kUsage;
                return 2;
            }
        } else if (arg == "--no-module") {
            options.module = false;
        } else if (arg == "--launch") {
            options.launch = true;
        } else if (arg == "--connect-to") {
            auto v = value("--connect-to");
            if (!v) return 2;
            std::wstring why = cadhost::internet::CheckConnectTo(*v);
            if (!why.empty()) {
                std::cerr << "cadhost: --connect-to: " << cadhost::ToUtf8(why) << "\n" << kUsage;
                return 2;
            }
            options.connectTo.push_back(*v);
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
    cadhost::StartWithHugePageHeap(argv);
    if (argc >= 2 && std::strcmp(argv[1], "update") == 0)
        return cadhost::RunUpdate(std::vector<std::string>(argv + 2, argv + argc), std::cout, std::cerr);
    Options options;
    if (std::optional<int> status = ParseArguments(argc, argv, options)) return *status;
    // Without a script the host opens its window where a display is there.
    if (!options.script && !options.gui) options.gui = std::getenv("DISPLAY") || std::getenv("WAYLAND_DISPLAY");
    // Refused before the host starts, so that nothing is read or made.
    if (options.script && options.gui) {
        std::cerr << "cadhost: scripts do not drive the window yet; run the script without --gui\n" << kUsage;
        return 2;
    }
    if (!options.script && !options.gui) {
        std::cerr << "cadhost: no script given and no display to open a window on\n" << kUsage;
        return 2;
    }
#ifndef QM_WITH_WINDOWS
    if (options.gui) {
        std::cerr << "cadhost: this build has no window (wxWidgets was not found when it was built)\n";
        return 2;
    }
#endif
    cadhost::HostOptions hostOptions;
    hostOptions.settingsFolder = options.settings;
    hostOptions.internet.connectTo = options.connectTo;
    cadhost::Host host(hostOptions);
    host.shell().SetLaunching(options.launch);
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
#ifdef QM_WITH_WINDOWS
    if (options.gui) {
        cadhost::gui::GuiOptions gui;
        gui.snapshot = options.snapshot;
        gui.width = options.width;
        gui.height = options.height;
        return cadhost::gui::RunGui(host, gui, std::cerr);
    }
#endif
    cadhost::script::ScriptRunner runner(host, options.launch);
    cadhost::script::DefineHostCommands(runner);
    cadhost::script::DefineDialogCommands(runner);
    cadhost::script::DefineDrawingCommands(runner);
    cadhost::script::DefineFieldCommands(runner);
    cadhost::script::DefineSpreadsheetCommands(runner);
    return runner.RunFile(*options.script, std::cerr);
}
