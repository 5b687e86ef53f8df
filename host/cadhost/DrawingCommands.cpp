// Script commands of drawings: opening and saving them.
#include "ScriptRunner.h"

#include "core/Utf8.h"

namespace cadhost::script {

void DefineDrawingCommands(ScriptRunner& runner) {
    runner.Define(L"open", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"open PATH");
        std::wstring error;
        if (!r.host().OpenDrawing(std::filesystem::path(ToUtf8(a[0].text)), error)) throw ScriptError(error);
    });
    runner.Define(L"save", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"save PATH");
        std::wstring error;
        if (!r.host().SaveDrawing(std::filesystem::path(ToUtf8(a[0].text)), error)) throw ScriptError(error);
    });
}

}  // namespace cadhost::script
