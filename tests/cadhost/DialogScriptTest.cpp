// Session scripts that work dialogs, run in-process: what a script cannot
// do ends it with status 2 and a message naming the line; an expectation
// that fails ends it with status 1.
#include <filesystem>
#include <fstream>
#include <sstream>

#include <afxdlgs.h>

#include "ScriptDriver.h"
#include "ScriptRunner.h"
#include "support/TestHost.h"

namespace {

class DialogScripts : public qmtest::HostTest {
protected:
    struct Result {
        int status;
        std::string errors;
        std::string output;
    };

    Result Run(const std::string& script) {
        cadhost::script::ScriptRunner runner(host(), false);
        cadhost::script::DefineHostCommands(runner);
        cadhost::script::DefineDialogCommands(runner);
        cadhost::script::DefineDrawingCommands(runner);
        std::ostringstream errors;
        TakeOutput();
        int status = runner.RunText(script, "t.qms", errors);
        return {status, errors.str(), TakeOutput()};
    }
};

TEST_F(DialogScripts, WhatAScriptCannotDoEndsItNamingTheLine) {
    const std::string lab = "appload DialogLab.arx\ncommand LABDIALOG\n";
    struct Case {
        std::string script;
        int status;
        const char* error;
    };
    const Case cases[] = {
        {"click 5\n", 2, "t.qms:1: no dialog is open"},
        {"ok\n", 2, "t.qms:1: no dialog is open"},
        {"print page\n", 2, "t.qms:1: no dialog is open"},
        // before any box has come up in this host
        {lab + "expect message \"x\"\n", 1, "t.qms:3: expectation failed: no message box came up, so none showed \"x\""},
        {lab + "click 999\n", 2, "t.qms:3: the dialog 300 \"Dialog Lab\" has no control 999"},
        {lab + "settext 1001 \"x\"\n", 2,
         "t.qms:2: the script ended while the dialog 300 \"Dialog Lab\" that this line opened was still open"},
        {lab + "click 1017\n", 2, "t.qms:3: control 1017 is disabled"},
        {lab + "click 1016\n", 2, "t.qms:3: control 1016 is hidden"},
        {lab + "click 1001\n", 2, "t.qms:3: control 1001 is an edit box, not a button"},
        {lab + "settext 1002 \"x\"\n", 2, "t.qms:3: control 1002 is read-only"},
        {lab + "settext 1005 \"x\"\n", 2, "t.qms:3: control 1005 is a combo box with no text to type into"},
        {lab + "tick 1003 0 on\n", 2, "t.qms:3: control 1003 is no check list box"},
        {lab + "tick 1004 0 maybe\n", 2, "t.qms:3: a tick is on or off, not \"maybe\""},
        {lab + "choose 1003 \"kiwi\"\n", 2, "t.qms:3: control 1003 has no entry \"kiwi\""},
        {lab + "choose 1003 9\n", 2, "t.qms:3: control 1003 has no entry 9 (it has 4 entries)"},
        {lab + "choose 1001 0\n", 2, "t.qms:3: control 1001 is no list or combo box"},
        {lab + "dropdown 1005\ndropdown 1003\n", 2, "t.qms:4: control 1003 is a list box with no list to drop down"},
        {lab + "click \"1\"\n", 2, "t.qms:3: a control id is a number, not \"1\""},
        {lab + "answer OK\nclick 1012\n", 2,
         "t.qms:4: the answer OK fits no button of the message box \"Keep the changes?\" (Yes, No, Cancel)"},
        {lab + "answer Maybe\n", 2, "t.qms:3: \"Maybe\" is no button of a message box (OK, Cancel, Yes, No...)"},
        {lab + "menu 3\nclick 1014\n", 2, "t.qms:4: item 3 of the menu is inactive"},
        {lab + "menu 1\nclick 1014\n", 2, "t.qms:4: item 1 of the menu is a separator"},
        {lab + "menu 9\nclick 1014\n", 2, "t.qms:4: the menu has no item 9 (it has 4)"},
        {lab + "menu -1\n", 2, "t.qms:3: a menu item's place counts from 0"},
        {lab + "new\n", 2, "t.qms:3: new cannot come while a dialog is open; close it with ok or cancel"},
        {lab + "arxunload DialogLab.arx\n", 2,
         "t.qms:3: arxunload cannot come while a dialog is open; close it with ok or cancel"},
        {lab + "open drawing.dxf\n", 2, "t.qms:3: open cannot come while a dialog is open; close it with ok or cancel"},
        {lab + "save drawing.dxf\n", 2, "t.qms:3: save cannot come while a dialog is open; close it with ok or cancel"},
        {lab + "cancel\nanswer Yes\nfile cancel\n", 2,
         "t.qms:5: the script ended with answers that nothing asked for: answer Yes, file cancel"},
        {lab + "expect control 1001 \"x\"\n", 1, "t.qms:3: expectation failed: control 1001 shows \"\", not \"x\""},
        {lab + "click 1012\nexpect message \"Keep the changes\"\n", 1,
         "t.qms:4: expectation failed: the last message box showed \"Keep the changes?\", not \"Keep the changes\""},
        {lab + "click 1011\nclick 999\nok\nok\n", 2, "t.qms:4: the dialog 301 \"Nested\" has no control 999"},
    };
    for (const Case& c : cases) {
        Result result = Run(c.script);
        EXPECT_EQ(result.status, c.status) << c.script;
        EXPECT_EQ(result.errors, std::string(c.error) + "\n") << c.script;
    }
}

TEST_F(DialogScripts, EchoNarratesWithoutTouchingWhatTheCommandLineShowed) {
    struct Case {
        std::string script;
        int status;
        std::string output, error;
    };
    const Case cases[] = {
        {"echo \"Setting the units:\"\nsetvar LUNITS 4\necho \"a \\\"quoted\\\" word\"\n", 0,
         "Setting the units:\na \"quoted\" word\n", ""},
        // What the command before printed is still there to expect.
        {"command _.menuload\necho \"done\"\nexpect printed \"needs the name\"\n", 0,
         "MENULOAD needs the name of a customization file.\ndone\n", ""},
        {"\xEF\xBB\xBF" "echo \"after the mark\"\n", 0, "after the mark\n", ""},
        {"echo \"one\"\n\xEF\xBB\xBF" "echo \"two\"\n", 2, "one\n", "t.qms:2: unknown command \"\xEF\xBB\xBF" "echo\"\n"},
        {"echo\n", 2, "", "t.qms:1: usage: echo \"TEXT\"\n"},
        {"echo \"a\" \"b\"\n", 2, "", "t.qms:1: usage: echo \"TEXT\"\n"},
    };
    for (const Case& c : cases) {
        Result result = Run(c.script);
        EXPECT_EQ(result.status, c.status) << c.script;
        EXPECT_EQ(result.output, c.output) << c.script;
        EXPECT_EQ(result.errors, c.error) << c.script;
    }
}

TEST_F(DialogScripts, AFailureInsideADialogGivesUpEveryOpenDialogAndRunsNothingMore) {
    Result result = Run(
        "appload DialogLab.arx\n"
        "command LABDIALOG\n"
        "click 1011\n"
        "settext 1101 \"inner\"\n"
        "frobnicate\n"
        "ok\n"
        "ok\n"
        "command LABDIALOG\n");
    EXPECT_EQ(result.status, 2);
    EXPECT_EQ(result.errors, "t.qms:5: unknown command \"frobnicate\"\n");
    // The nested and the outer dialog were cancelled; nothing of lines 6 on ran.
    EXPECT_NE(result.output.find("Nested ended 2 \"\""), std::string::npos) << result.output;
    EXPECT_NE(result.output.find("Lab ended 2"), std::string::npos) << result.output;
    EXPECT_EQ(result.output.find("OnInitDialog", result.output.find("Lab ended 2")), std::string::npos);
    EXPECT_EQ(host().desktop().ModalDepth(), 0u);
}

TEST_F(DialogScripts, LinesAfterAModalActionWorkTheDialogUntilItEnds) {
    Result result = Run(
        "appload DialogLab.arx\n"
        "command LABDIALOG\n"
        "settext 1001 \"Anna\"\n"
        "expect control 1002 \"Anna\"\n"
        "click 1011\n"
        "expect control 1101 \"Anna\"\n"
        "cancel\n"
        "expect control 1001 \"Anna\"\n"
        "click 2\n"
        "expect printed \"Lab ended 2\"\n");
    EXPECT_EQ(result.status, 0) << result.errors;
    EXPECT_NE(result.output.find("Nested ended 2 \"Anna\"\nCancel\nLab ended 2"), std::string::npos) << result.output;
}

TEST_F(DialogScripts, TheScriptsAnswersMustFitWhatAsksForThem) {
    cadhost::script::ScriptRunner runner(host(), false);
    std::filesystem::path existing = m_folder.path() / "there.txt";
    std::ofstream(existing) << "x";
    runner.driver().QueueFile(cadhost::FromUtf8(existing.string()));
    runner.driver().QueueFile(cadhost::FromUtf8((m_folder.path() / "missing.txt").string()));
    CFileDialog open(TRUE, nullptr, nullptr, OFN_FILEMUSTEXIST);
    EXPECT_EQ(open.DoModal(), IDOK);
    EXPECT_EQ(open.GetPathName(), cadhost::FromUtf8(existing.string()).c_str());
    EXPECT_FALSE(runner.Failed());
    EXPECT_EQ(open.DoModal(), IDCANCEL);  // the user cannot open a file that is not there
    EXPECT_TRUE(runner.Failed());
    // Once failed, every question takes its way out and nothing is shown.
    TakeOutput();
    EXPECT_EQ(::MessageBoxW(nullptr, L"later", L"c", MB_YESNOCANCEL), IDCANCEL);
    EXPECT_EQ(TakeOutput(), "");
}

TEST_F(DialogScripts, MessageBoxesWithoutEndAreCaughtAsALoop) {
    cadhost::script::ScriptRunner runner(host(), false);
    int boxes = 0;
    while (!runner.Failed() && boxes < 5000) {
        ::MessageBoxW(nullptr, L"Again?", L"c", MB_YESNO);
        ++boxes;
    }
    EXPECT_EQ(boxes, 1001);
}

}  // namespace
