// Script commands of drawings: opening and saving them, and the answers
// the user gives at the editor's next prompts.
#include "ScriptRunner.h"

#include <dbid.h>

#include "core/Utf8.h"

namespace cadhost::script {

void DefineDrawingCommands(ScriptRunner& runner) {
    runner.Define(L"open", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"open PATH");
        // A modal dialog works on the drawing; none can be opened over it.
        r.RequireNoDialog(L"open");
        std::wstring error;
        if (!r.host().OpenDrawing(std::filesystem::path(ToUtf8(a[0].text)), error)) throw ScriptError(error);
    });
    runner.Define(L"save", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"save PATH");
        r.RequireNoDialog(L"save");
        std::wstring error;
        if (!r.host().SaveDrawing(std::filesystem::path(ToUtf8(a[0].text)), error)) throw ScriptError(error);
    });
    // Objects the user picks at the next object selection, by handle.
    runner.Define(L"pick", [](ScriptRunner& r, const Arguments& a) {
        std::vector<std::wstring> handles;
        for (const Word& word : a) {
            if (AcDbHandle(word.text.c_str()).isNull())
                throw ScriptError(L"\"" + word.text + L"\" is no handle (hexadecimal, not 0)");
            handles.push_back(word.text);
        }
        r.host().input().Pick(std::move(handles));
    });
    runner.Define(L"point", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"point X,Y[,Z]");
        Point p = ScriptRunner::ParsePointWord(a[0]);
        r.host().input().Point(p.x, p.y, p.z);
    });
    runner.Define(L"escape", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"escape");
        r.host().input().Escape();
    });
}

}  // namespace cadhost::script
