#include "ScriptRunner.h"

#include <fstream>
#include <sstream>

#include "core/Utf8.h"

namespace cadhost::script {

ScriptRunner::ScriptRunner(Host& host, bool launch) : m_host(host), m_launch(launch) {
    Define(L"print", [](ScriptRunner& runner, const Arguments& arguments) {
        if (arguments.empty()) throw ScriptError(L"print needs a subject");
        auto it = runner.m_prints.find(arguments[0].text);
        if (it == runner.m_prints.end()) throw ScriptError(L"print cannot show \"" + arguments[0].text + L"\"");
        it->second(runner, Arguments(arguments.begin() + 1, arguments.end()));
    });
    Define(L"expect", [](ScriptRunner& runner, const Arguments& arguments) {
        if (arguments.empty()) throw ScriptError(L"expect needs a subject");
        auto it = runner.m_expects.find(arguments[0].text);
        if (it == runner.m_expects.end()) throw ScriptError(L"expect cannot check \"" + arguments[0].text + L"\"");
        it->second(runner, Arguments(arguments.begin() + 1, arguments.end()));
    });
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

void ScriptRunner::RunLine(const Arguments& words) {
    const std::wstring& name = words[0].text;
    auto it = m_commands.find(name);
    if (it == m_commands.end() || words[0].quoted) throw ScriptError(L"unknown command \"" + name + L"\"");
    bool looks = name == L"print" || name == L"expect";
    if (!looks) m_host.commandLine().Mark();
    it->second(*this, Arguments(words.begin() + 1, words.end()));
    if (!looks) Settle();
}

int ScriptRunner::RunFile(const std::filesystem::path& file, std::ostream& errors) {
    std::ifstream in(file, std::ios::binary);
    std::string where = file.string();
    if (!in) {
        errors << where << ": cannot read the script\n";
        return 2;
    }
    std::string raw;
    int lineNumber = 0;
    while (std::getline(in, raw)) {
        ++lineNumber;
        if (!raw.empty() && raw.back() == '\r') raw.pop_back();
        std::wstring line = FromUtf8(raw);
        size_t first = line.find_first_not_of(L" \t");
        if (first == std::wstring::npos || line[first] == L'#') continue;
        std::wstring error;
        try {
            std::optional<std::vector<Word>> words = SplitLine(line, error);
            if (!words) throw ScriptError(error);
            RunLine(*words);
        } catch (const ScriptError& e) {
            m_host.commandLine().FinishLine();
            errors << where << ":" << lineNumber << ": " << ToUtf8(e.text) << "\n";
            return 2;
        } catch (const ExpectationFailed& e) {
            m_host.commandLine().FinishLine();
            errors << where << ":" << lineNumber << ": expectation failed: " << ToUtf8(e.text) << "\n";
            return 1;
        }
    }
    return 0;
}

}  // namespace cadhost::script
