#include "ScriptRunner.h"

#include <fstream>
#include <sstream>

#include "ScriptDriver.h"
#include "core/Utf8.h"

namespace cadhost::script {

ScriptRunner::ScriptRunner(Host& host, bool launch)
    : m_host(host), m_launch(launch), m_driver(std::make_unique<ScriptDriver>(*this)) {
    m_host.desktop().SetDriver(m_driver.get());
    Define(L"print", [](ScriptRunner& runner, const Arguments& arguments) {
        if (arguments.empty()) throw ScriptError(L"print needs a subject");
        auto it = runner.m_prints.find(arguments[0].text);
        if (it == runner.m_prints.end()) throw ScriptError(L"print cannot show \"" + arguments[0].text + L"\"");
        it->second(runner, Arguments(arguments.begin() + 1, arguments.end()));
    });
    // Narration: a line that tells a reader of the transcript what happens.
    Define(L"echo", [](ScriptRunner& runner, const Arguments& arguments) {
        RequireCount(arguments, 1, 1, L"echo \"TEXT\"");
        runner.Show(arguments[0].text);
    });
    Define(L"expect", [](ScriptRunner& runner, const Arguments& arguments) {
        if (arguments.empty()) throw ScriptError(L"expect needs a subject");
        auto it = runner.m_expects.find(arguments[0].text);
        if (it == runner.m_expects.end()) throw ScriptError(L"expect cannot check \"" + arguments[0].text + L"\"");
        it->second(runner, Arguments(arguments.begin() + 1, arguments.end()));
    });
}

ScriptRunner::~ScriptRunner() {
    if (&m_host.desktop().driver() == m_driver.get()) m_host.desktop().SetDriver(nullptr);
}

void ScriptRunner::Define(const std::wstring& name, Handler handler) { m_commands[name] = std::move(handler); }

void ScriptRunner::DefinePrint(const std::wstring& subject, Handler handler) {
    m_prints[subject] = std::move(handler);
}

void ScriptRunner::DefineExpect(const std::wstring& subject, Handler handler) {
    m_expects[subject] = std::move(handler);
}

void ScriptRunner::RequireCount(const Arguments& arguments, size_t minimum, size_t maximum, const wchar_t* usage) {
    if (arguments.size() < minimum || arguments.size() > maximum) throw ScriptError(std::wstring(L"usage: ") + usage);
}

int ScriptRunner::ParseInteger(const Word& word, const wchar_t* what) {
    try {
        size_t used = 0;
        long value = std::stol(word.text, &used);
        if (used != word.text.size() || value < -1000000 || value > 1000000) throw std::invalid_argument("range");
        return static_cast<int>(value);
    } catch (const std::exception&) {
        throw ScriptError(std::wstring(what) + L" must be a whole number, not \"" + word.text + L"\"");
    }
}

Point ScriptRunner::ParsePointWord(const Word& word) {
    std::optional<Point> point = ParsePoint(word.text);
    if (!point) throw ScriptError(L"\"" + word.text + L"\" is no point (X,Y or X,Y,Z)");
    return *point;
}

void ScriptRunner::Settle() {
    m_host.processor().RunIdle();
    m_host.desktop().DeliverPosted();
}

void ScriptRunner::RequireNoDialog(const wchar_t* what) {
    if (m_host.desktop().ModalDepth() > 0)
        throw ScriptError(std::wstring(what) + L" cannot come while a dialog is open; close it with ok or cancel");
}

void ScriptRunner::Fail(int status, int line, std::wstring text) {
    if (!m_failure) m_failure = Failure{status, line, std::move(text)};
}

void ScriptRunner::RunLine(const Arguments& words) {
    const std::wstring& name = words[0].text;
    auto it = m_commands.find(name);
    if (it == m_commands.end() || words[0].quoted) throw ScriptError(L"unknown command \"" + name + L"\"");
    bool looks = name == L"print" || name == L"expect" || name == L"echo";
    if (!looks) m_host.commandLine().Mark();
    it->second(*this, Arguments(words.begin() + 1, words.end()));
    if (!looks) Settle();
}

bool ScriptRunner::RunUntil(const std::function<bool()>& done) {
    while (true) {
        if (m_failure) return false;
        if (done && done()) return true;
        if (m_next >= m_lines.size()) return !done;
        const Line line = m_lines[m_next++];
        m_running.push_back(line.number);
        try {
            std::wstring error;
            std::optional<std::vector<Word>> words = SplitLine(line.text, error);
            if (!words) throw ScriptError(error);
            RunLine(*words);
        } catch (const ScriptError& e) {
            Fail(2, line.number, e.text);
        } catch (const ExpectationFailed& e) {
            Fail(1, line.number, e.text);
        } catch (const std::exception& e) {
            Fail(2, line.number, L"the line failed inside the host: " + FromUtf8(e.what()));
        }
        m_running.pop_back();
    }
}

int ScriptRunner::Run(std::istream& in, const std::string& where, std::ostream& errors) {
    m_lines.clear();
    m_next = 0;
    m_failure.reset();
    std::string raw;
    int lineNumber = 0;
    while (std::getline(in, raw)) {
        ++lineNumber;
        // The byte order mark that some editors put at the start of UTF-8.
        if (lineNumber == 1 && raw.starts_with("\xEF\xBB\xBF")) raw.erase(0, 3);
        if (!raw.empty() && raw.back() == '\r') raw.pop_back();
        std::wstring line = FromUtf8(raw);
        size_t first = line.find_first_not_of(L" \t");
        if (first == std::wstring::npos || line[first] == L'#') continue;
        m_lines.push_back({lineNumber, std::move(line)});
    }
    RunUntil(nullptr);
    if (!m_failure) {
        std::wstring left = m_driver->UnusedAnswers();
        if (!left.empty()) Fail(2, m_lines.empty() ? lineNumber : m_lines.back().number, left);
    }
    if (!m_failure) return 0;
    m_host.commandLine().FinishLine();
    errors << where << ":" << m_failure->line << ": " << (m_failure->status == 1 ? "expectation failed: " : "")
           << ToUtf8(m_failure->text) << "\n";
    return m_failure->status;
}

int ScriptRunner::RunFile(const std::filesystem::path& file, std::ostream& errors) {
    std::ifstream in(file, std::ios::binary);
    if (!in) {
        errors << file.string() << ": cannot read the script\n";
        return 2;
    }
    return Run(in, file.string(), errors);
}

int ScriptRunner::RunText(const std::string& text, const std::string& name, std::ostream& errors) {
    std::istringstream in(text);
    return Run(in, name, errors);
}

}  // namespace cadhost::script
