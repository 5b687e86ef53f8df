// Runs a session script: one command a line, each acting on the host as a
// user would, or checking what the user would see.
//
// The runner is re-entrant: when a line opens a modal dialog, the dialog's
// run asks the runner for the lines that follow (RunUntil), until the
// dialog has ended; then the line that opened it goes on. A line that fails
// fails the whole script: nothing more runs, open dialogs are given up, and
// the first failure is what the script reports.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "ScriptLexer.h"
#include "app/Host.h"

namespace cadhost::script {

// A line that cannot run: exit status 2.
struct ScriptError : std::runtime_error {
    explicit ScriptError(std::wstring message) : std::runtime_error("script error"), text(std::move(message)) {}
    std::wstring text;
};

// An expectation that does not hold: exit status 1.
struct ExpectationFailed : std::runtime_error {
    explicit ExpectationFailed(std::wstring message) : std::runtime_error("expect failed"), text(std::move(message)) {}
    std::wstring text;
};

class ScriptRunner;
class ScriptDriver;
using Arguments = std::vector<Word>;
using Handler = std::function<void(ScriptRunner& runner, const Arguments& arguments)>;

class ScriptRunner {
public:
    // The runner answers the host's user interface while it lives.
    ScriptRunner(Host& host, bool launch);
    ~ScriptRunner();
    ScriptRunner(const ScriptRunner&) = delete;
    ScriptRunner& operator=(const ScriptRunner&) = delete;

    // Commands that act; the command line's record starts anew before each.
    void Define(const std::wstring& name, Handler handler);
    // Subjects of "print" and "expect", which only look.
    void DefinePrint(const std::wstring& subject, Handler handler);
    void DefineExpect(const std::wstring& subject, Handler handler);

    // Runs a script file; answers the exit status, reporting on errors.
    int RunFile(const std::filesystem::path& file, std::ostream& errors);
    // Runs script text as if it were a file of that name.
    int RunText(const std::string& text, const std::string& name, std::ostream& errors);

    // Runs the next lines until done() holds (with no done, to the end);
    // answers whether it holds. False also when the script failed.
    bool RunUntil(const std::function<bool()>& done);
    bool Failed() const { return m_failure.has_value(); }
    // Fails the script at a line; the first failure stays.
    void Fail(int status, int line, std::wstring text);
    // The number of the line that runs now, the innermost; 0 before any.
    int CurrentLine() const { return m_running.empty() ? 0 : m_running.back(); }

    Host& host() { return m_host; }
    bool launch() const { return m_launch; }
    ScriptDriver& driver() { return *m_driver; }
    // Shows what a print asked for.
    void Show(const std::wstring& text) { m_host.commandLine().Show(text); }
    // The host has come to rest after an action: queued expressions run and
    // posted messages are delivered.
    void Settle();
    // A script error when a modal dialog is open: what would pull the
    // ground from under it (a new drawing, an unloaded module).
    void RequireNoDialog(const wchar_t* what);

    // Argument helpers that raise a script error naming what is wrong.
    static void RequireCount(const Arguments& arguments, size_t minimum, size_t maximum, const wchar_t* usage);
    static int ParseInteger(const Word& word, const wchar_t* what);
    static Point ParsePointWord(const Word& word);

private:
    struct Line {
        int number;
        std::wstring text;
    };
    struct Failure {
        int status;
        int line;
        std::wstring text;
    };

    int Run(std::istream& in, const std::string& where, std::ostream& errors);
    void RunLine(const Arguments& words);

    Host& m_host;
    bool m_launch;
    std::map<std::wstring, Handler> m_commands;
    std::map<std::wstring, Handler> m_prints;
    std::map<std::wstring, Handler> m_expects;
    std::vector<Line> m_lines;
    size_t m_next = 0;
    std::vector<int> m_running;
    std::optional<Failure> m_failure;
    std::unique_ptr<ScriptDriver> m_driver;
};

// The groups of script commands, each defined where its subject lives.
void DefineHostCommands(ScriptRunner& runner);
void DefineDialogCommands(ScriptRunner& runner);
void DefineDrawingCommands(ScriptRunner& runner);
void DefineFieldCommands(ScriptRunner& runner);
void DefineSettingCommands(ScriptRunner& runner);

}  // namespace cadhost::script
