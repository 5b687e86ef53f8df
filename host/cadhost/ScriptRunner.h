// Runs a session script: one command a line, each acting on the host as a
// user would, or checking what the user would see.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
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
using Arguments = std::vector<Word>;
using Handler = std::function<void(ScriptRunner& runner, const Arguments& arguments)>;

class ScriptRunner {
public:
    ScriptRunner(Host& host, bool launch);

    // Commands that act; the command line's record starts anew before each.
    void Define(const std::wstring& name, Handler handler);
    // Subjects of "print" and "expect", which only look.
    void DefinePrint(const std::wstring& subject, Handler handler);
    void DefineExpect(const std::wstring& subject, Handler handler);

    // Runs a script file; answers the exit status, reporting on errors.
    int RunFile(const std::filesystem::path& file, std::ostream& errors);

    Host& host() { return m_host; }
    bool launch() const { return m_launch; }
    // Shows what a print asked for.
    void Show(const std::wstring& text) { m_host.commandLine().Show(text); }
    // The command processor has come to rest after an action.
    void Settle() { m_host.processor().RunIdle(); }

    // Argument helpers that raise a script error naming what is wrong.
    static void RequireCount(const Arguments& arguments, size_t minimum, size_t maximum, const wchar_t* usage);
    static int ParseInteger(const Word& word, const wchar_t* what);
    static Point ParsePointWord(const Word& word);

private:
    void RunLine(const Arguments& words);

    Host& m_host;
    bool m_launch;
    std::map<std::wstring, Handler> m_commands;
    std::map<std::wstring, Handler> m_prints;
    std::map<std::wstring, Handler> m_expects;
};

// The groups of script commands, each defined where its subject lives.
void DefineHostCommands(ScriptRunner& runner);
void DefineDrawingCommands(ScriptRunner& runner);

}  // namespace cadhost::script
