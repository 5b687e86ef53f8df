// Script commands of the spreadsheet program, played by the user: install
// state, starting and closing it, its window, its workbooks, the cell the
// user selects, and a busy spell in which it rejects every call.
#include "ScriptRunner.h"
#include "core/Utf8.h"
#include "spreadsheet/SpreadsheetProgram.h"

namespace cadhost::script {
namespace {

using spreadsheet::ProgramError;
using spreadsheet::SpreadsheetProgram;

const wchar_t kUsage[] = L"excel absent|start|hide|open PATH|new|activate NAME|select \"SHEET\" CELL|busy on|off|quit";

SpreadsheetProgram& Running() {
    SpreadsheetProgram& program = SpreadsheetProgram::Instance();
    if (!program.running()) throw ScriptError(L"the spreadsheet program is not running; start it with excel start");
    return program;
}

void Act(const Arguments& a) {
    if (a.empty()) throw ScriptError(std::wstring(L"usage: ") + kUsage);
    const std::wstring& verb = a[0].text;
    SpreadsheetProgram& program = SpreadsheetProgram::Instance();
    auto count = [&](size_t n, const wchar_t* usage) { ScriptRunner::RequireCount(a, n + 1, n + 1, usage); };
    try {
        if (verb == L"absent") {
            count(0, L"excel absent");
            program.SetInstalled(false);
        } else if (verb == L"start") {
            count(0, L"excel start");
            if (!program.installed()) throw ScriptError(L"the spreadsheet program is not installed (excel absent)");
            if (program.running()) throw ScriptError(L"the spreadsheet program runs already");
            program.Start(true);
        } else if (verb == L"hide") {
            count(0, L"excel hide");
            Running().SetVisible(false);
        } else if (verb == L"open") {
            count(1, L"excel open PATH");
            Running().OpenFile(std::filesystem::path(ToUtf8(a[1].text)), false);
        } else if (verb == L"new") {
            count(0, L"excel new");
            Running().AddWorkbook();
        } else if (verb == L"activate") {
            count(1, L"excel activate NAME");
            Running().ActivateByName(a[1].text);
        } else if (verb == L"select") {
            count(2, L"excel select \"SHEET\" CELL");
            Running().Select(a[1].text, a[2].text);
        } else if (verb == L"busy") {
            count(1, L"excel busy on|off");
            if (a[1].text != L"on" && a[1].text != L"off") throw ScriptError(L"usage: excel busy on|off");
            Running().SetBusy(a[1].text == L"on");
        } else if (verb == L"quit") {
            count(0, L"excel quit");
            Running().Quit();
        } else {
            throw ScriptError(L"unknown excel command " + verb + L"; usage: " + kUsage);
        }
    } catch (const ProgramError& error) {
        throw ScriptError(L"the spreadsheet program refuses: " + error.description);
    }
}

}  // namespace

void DefineSpreadsheetCommands(ScriptRunner& runner) {
    runner.Define(L"excel", [](ScriptRunner&, const Arguments& a) { Act(a); });
    runner.DefinePrint(L"excel", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"print excel");
        r.Show(SpreadsheetProgram::Instance().Describe());
    });
}

}  // namespace cadhost::script
