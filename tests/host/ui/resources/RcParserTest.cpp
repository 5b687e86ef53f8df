#include "ui/resources/ResourceScript.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "core/Utf8.h"

namespace {

using cadhost::ui::ControlTemplate;
using cadhost::ui::DialogTemplate;
using cadhost::ui::ParseResourceScript;
using cadhost::ui::ParseResult;
using cadhost::ui::ResourceName;
using cadhost::ui::SourceFile;

ParseResult Parse(const std::string& script, const std::string& header = "") {
    std::vector<SourceFile> files{{L"Test.rc", script}};
    if (!header.empty()) files.push_back({L"ids.h", header});
    return ParseResourceScript(files);
}

const ControlTemplate* Control(const DialogTemplate& dialog, int id) {
    for (const ControlTemplate& control : dialog.controls) {
        if (control.id == id) return &control;
    }
    return nullptr;
}

const char* kHeader = R"(#pragma once
#define IDD_PAGE 104
#define IDC_LIST 101
#define IDC_BASE 200
#define IDC_NEXT (IDC_BASE + 1)
#define IDS_HELLO 7
)";

const char* kScript = R"rc(// A script as an editor writes it.
#include "ids.h"
#include "afxres.h"
#include <windows.h>
#pragma code_page(65001)
LANGUAGE 9, 1

#ifdef APSTUDIO_INVOKED
1 TEXTINCLUDE
BEGIN
    "ids.h\0"
END
#endif

#if !defined(AFX_RESOURCE_DLL) || defined(AFX_TARG_ENU)
IDD_PAGE DIALOGEX 0, 0, 192, 183
STYLE DS_SETFONT | DS_CONTROL | WS_CHILD
FONT 8, "Microsoft Sans Serif", 400, 0, 0x1
BEGIN
    LTEXT           "Object Handle:",IDC_STATIC,7,7,48,8
    LISTBOX         IDC_LIST,7,19,84,105,LBS_SORT | NOT LBS_NOTIFY | WS_VSCROLL
    PUSHBUTTON      "Select",IDC_BASE,7,137,36,14,NOT WS_TABSTOP
    CONTROL         "Window",IDC_NEXT,"button",BS_AUTORADIOBUTTON | WS_GROUP,105,7,40,10,WS_EX_CLIENTEDGE
    COMBOBOX        203,105,138,80,75,CBS_DROPDOWN | CBS_SORT | WS_VSCROLL | WS_TABSTOP
    EDITTEXT        204,106,19,79,14,ES_AUTOHSCROLL | ES_READONLY
    DEFPUSHBUTTON   "OK",IDOK,10,160,50,14
END
#endif

"50FC3BF2-28F7-46F4-A3C8-B7739A3F67CE" DIALOG DISCARDABLE 0, 0, 188, 95
CAPTION "Check for ""Update"""
BEGIN
    LTEXT "Click\tit.",211,7,7,174,16
END

named MENU
BEGIN
    POPUP "_MRU_"
    BEGIN
        MENUITEM "Recent file", 32769, INACTIVE
        MENUITEM SEPARATOR
        MENUITEM "&Two", 32770, CHECKED, GRAYED
    END
END

STRINGTABLE
BEGIN
    IDS_HELLO "Hello\nthere"
    8, L"wide"
END

1 VERSIONINFO
 FILEVERSION 2,7,1,0
BEGIN
    BLOCK "StringFileInfo"
    BEGIN
        VALUE "CompanyName", "Norvo"
    END
END
2 ICON "app.ico"
)rc";

TEST(RcParser, ReadsDialogsMenusAndStringsOfAnEditorsScript) {
    ParseResult result = Parse(kScript, kHeader);
    ASSERT_TRUE(result.script) << cadhost::ToUtf8(result.error);
    const auto& script = *result.script;
    EXPECT_EQ(script.DialogCount(), 2u);
    EXPECT_EQ(script.MenuCount(), 1u);
    EXPECT_EQ(script.StringCount(), 2u);

    const DialogTemplate* page = script.FindDialog(ResourceName::Number(104));
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->extended);
    EXPECT_EQ(page->cx, 192);
    EXPECT_EQ(page->cy, 183);
    EXPECT_EQ(page->style, static_cast<DWORD>(DS_SETFONT | DS_CONTROL | WS_CHILD));
    ASSERT_TRUE(page->font);
    EXPECT_EQ(page->font->pointSize, 8);
    EXPECT_EQ(page->font->face, L"Microsoft Sans Serif");
    ASSERT_EQ(page->controls.size(), 7u);

    struct Case {
        int id;
        const wchar_t* className;
        const wchar_t* text;
        int x, y, cx, cy;
        DWORD style;
        DWORD exStyle;
    };
    const DWORD child = WS_CHILD | WS_VISIBLE;
    const Case cases[] = {
        {-1, L"Static", L"Object Handle:", 7, 7, 48, 8, child | SS_LEFT | WS_GROUP, 0},
        // NOT takes the default's LBS_NOTIFY away; the border stays.
        {101, L"ListBox", L"", 7, 19, 84, 105, child | WS_BORDER | LBS_SORT | WS_VSCROLL, 0},
        {200, L"Button", L"Select", 7, 137, 36, 14, child | BS_PUSHBUTTON, 0},
        {201, L"Button", L"Window", 105, 7, 40, 10, child | BS_AUTORADIOBUTTON | WS_GROUP, WS_EX_CLIENTEDGE},
        // The style's type takes the place of the default CBS_SIMPLE.
        {203, L"ComboBox", L"", 105, 138, 80, 75, child | CBS_DROPDOWN | CBS_SORT | WS_VSCROLL | WS_TABSTOP, 0},
        {204, L"Edit", L"", 106, 19, 79, 14, child | WS_BORDER | WS_TABSTOP | ES_AUTOHSCROLL | ES_READONLY, 0},
        {IDOK, L"Button", L"OK", 10, 160, 50, 14, child | BS_DEFPUSHBUTTON | WS_TABSTOP, 0},
    };
    for (const Case& c : cases) {
        const ControlTemplate* control = Control(*page, c.id);
        ASSERT_NE(control, nullptr) << c.id;
        EXPECT_EQ(control->className, c.className) << c.id;
        EXPECT_EQ(control->text, c.text) << c.id;
        EXPECT_EQ(control->x, c.x) << c.id;
        EXPECT_EQ(control->y, c.y) << c.id;
        EXPECT_EQ(control->cx, c.cx) << c.id;
        EXPECT_EQ(control->cy, c.cy) << c.id;
        EXPECT_EQ(control->style, c.style) << c.id << std::hex << " style " << control->style;
        EXPECT_EQ(control->exStyle, c.exStyle) << c.id;
    }

    // A named template is found by its name in any case of letters.
    const DialogTemplate* update = script.FindDialog(ResourceName::Text(L"50fc3bf2-28f7-46f4-a3c8-b7739a3f67ce"));
    ASSERT_NE(update, nullptr);
    EXPECT_FALSE(update->extended);
    EXPECT_EQ(update->caption, L"Check for \"Update\"");
    EXPECT_EQ(update->style, static_cast<DWORD>(WS_POPUP | WS_BORDER | WS_SYSMENU | WS_CAPTION));
    EXPECT_EQ(update->controls.at(0).text, L"Click\tit.");

    const auto* menu = script.FindMenu(ResourceName::Text(L"NAMED"));
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->items.size(), 1u);
    const auto& popup = menu->items[0];
    EXPECT_EQ(popup.text, L"_MRU_");
    EXPECT_TRUE(popup.flags & MF_POPUP);
    ASSERT_EQ(popup.items.size(), 3u);
    EXPECT_EQ(popup.items[0].id, 32769u);
    EXPECT_EQ(popup.items[0].flags, static_cast<UINT>(MF_DISABLED));
    EXPECT_EQ(popup.items[1].flags, static_cast<UINT>(MF_SEPARATOR));
    EXPECT_EQ(popup.items[2].flags, static_cast<UINT>(MF_CHECKED | MF_GRAYED));

    ASSERT_NE(script.FindString(7), nullptr);
    EXPECT_EQ(*script.FindString(7), L"Hello\nthere");
    EXPECT_EQ(*script.FindString(8), L"wide");
    EXPECT_EQ(script.FindString(9), nullptr);
    // Strings come in blocks of sixteen: block 1 holds the ids 0 to 15.
    EXPECT_TRUE(script.Has(ResourceName::Number(1), ResourceName::Number(6)));
    EXPECT_FALSE(script.Has(ResourceName::Number(2), ResourceName::Number(6)));
}

TEST(RcParser, ResourceNamesComeAsNumbersNumberTextsAndTexts) {
    EXPECT_EQ(ResourceName::FromPointer(MAKEINTRESOURCE(104)), ResourceName::Number(104));
    EXPECT_EQ(ResourceName::FromPointer(L"#104"), ResourceName::Number(104));
    EXPECT_EQ(ResourceName::FromPointer(L"#70000"), ResourceName::Text(L"#70000"));
    EXPECT_EQ(ResourceName::FromPointer(L"Named"), ResourceName::Text(L"NAMED"));
    EXPECT_FALSE(ResourceName::FromPointer(nullptr));
    EXPECT_EQ(ResourceName::Text(L"x").Describe(), L"\"X\"");
    EXPECT_EQ(ResourceName::Number(7).Describe(), L"7");
}

TEST(RcParser, MalformedScriptsAreRefusedWithFileAndLine) {
    struct Case {
        const char* script;
        const char* error;  // the start of the message
    };
    const Case cases[] = {
        {"1 DIALOGEX 0, 0, 10\nBEGIN\nEND\n", "Test.rc:2: a comma is expected before the dialog's height, not \"BEGIN\""},
        {"1 DIALOG 0, 0, 10, 10\nBEGIN\n  PUSHBUTTON OK, 1, 0, 0, 1, 1\nEND\n",
         "Test.rc:3: PUSHBUTTON needs its caption in double quotes"},
        {"1 DIALOG 0,0,1,1\nBEGIN\n  LTEXT \"a\", NOSUCH, 0, 0, 1, 1\nEND\n",
         "Test.rc:3: the name NOSUCH is not defined (in the control's id)"},
        {"1 DIALOG 0,0,1,1\nBEGIN\n  LTEXT \"a\", 1, 0, 0, 1, 1\n", "Test.rc:1: the dialog 1 is not closed with END"},
        {"1 DIALOG 0,0,1,1\nBEGIN\nLTEXT \"open\n", "Test.rc:3: a text in double quotes is not closed on its line"},
        {"1 DIALOG 0,0,1,1\nBEGIN\nEND\n1 DIALOG 0,0,1,1\nBEGIN\nEND\n", "Test.rc:4: the dialog 1 is defined twice"},
        {"50FC3BF2-28F7 DIALOG 0,0,1,1\n", "Test.rc:1: \"50FC3BF2-28F7\" is no number"},
        {"#include \"missing.h\"\n", "Test.rc:1: cannot find the file missing.h to include"},
        {"#if 1\n1 DIALOG 0,0,1,1 BEGIN END\n", "Test.rc:1: this #if has no #endif"},
        {"#endif\n", "Test.rc:1: #endif without #if"},
        {"#define A B\n#define B A\n1 DIALOG A,0,1,1\n", "Test.rc:3: the definition of A refers to itself"},
        {"#define F(x) x\n", "Test.rc:1: #define of F with arguments is not supported"},
        {"#error stop here\n", "Test.rc:1: #error stop here"},
        {"#frobnicate\n", "Test.rc:1: unknown directive #frobnicate"},
        {"STRINGTABLE\nBEGIN\n 1 \"a\"\n 1 \"b\"\nEND\n", "Test.rc:4: the string 1 is defined twice"},
        {"1 MENU\nBEGIN\n  MENUITEM \"a\" 5\nEND\n", "Test.rc:3: a comma is expected before the item's id"},
        {"1 MENUEX\nBEGIN\nEND\n", "Test.rc:1: MENUEX is not supported"},
        {"/* open\n\n", "Test.rc:1: a comment that starts here is never closed"},
        {"1 DIALOG 0,0,1,1\nFONT 0, \"x\"\nBEGIN\nEND\n", "Test.rc:2: a font size must be between 1 and 144 points"},
        {"1 DIALOG 0,0,1,1\nBEGIN\n  LTEXT \"a\", 1, 0, 0, 1, 1/0\nEND\n", "Test.rc:3: division by zero"},
        {"70000 DIALOG 0,0,1,1\nBEGIN\nEND\n", "Test.rc:1: a resource number must be between 1 and 65535"},
        {"1 DIALOG 0,0,1,1\nBEGIN\n  BUTTON \"a\", 1, 0, 0, 1, 1\nEND\n",
         "Test.rc:3: a control statement or END is expected, not \"BUTTON\""},
        {"1 WEIRD\n", "Test.rc:1: this resource has no BEGIN ... END block"},
        {"DIALOG 0,0,1,1\n", "Test.rc:1: a resource name or statement is expected, not \"DIALOG\""},
        {"1 DIALOG 0,0,1,1 BEGIN\n LTEXT \"a\", 1, 0, 0, 99999999999, 1\nEND\n", "Test.rc:2: the number 99999999999 is too large"},
        {"1 DIALOG 0,0,1,1 BEGIN\n LTEXT \"a\", 1, 0, 0, 1, 1 @\nEND\n", "Test.rc:2: unexpected character '@'"},
    };
    for (const Case& c : cases) {
        ParseResult result = Parse(c.script);
        EXPECT_FALSE(result.script) << c.script;
        EXPECT_EQ(cadhost::ToUtf8(result.error).rfind(c.error, 0), 0u)
            << "script:\n" << c.script << "\nerror: " << cadhost::ToUtf8(result.error);
    }
}

TEST(RcParser, ErrorsInAnIncludedFileNameThatFile) {
    ParseResult result = Parse("#include \"ids.h\"\n", "#define OK 1\n#define BAD (1\n#if BAD\n#endif\n");
    ASSERT_FALSE(result.script);
    EXPECT_EQ(cadhost::ToUtf8(result.error), "ids.h:3: a \")\" is missing before the end of the file");
}

TEST(RcParser, ConditionsChooseTheirBranches) {
    ParseResult result = Parse(R"(
#define LEVEL 2
#if LEVEL > 3
1 DIALOG 0,0,1,1 BEGIN END
#elif LEVEL == 2 && defined LEVEL
2 DIALOG 0,0,1,1 BEGIN END
#else
3 DIALOG 0,0,1,1 BEGIN END
#endif
#ifndef LEVEL
4 DIALOG 0,0,1,1 BEGIN END
#endif
#undef LEVEL
#ifndef LEVEL
5 DIALOG 0,0,1,1 BEGIN END
#endif
#if 0
  this would not parse { at all
#endif
)");
    ASSERT_TRUE(result.script) << cadhost::ToUtf8(result.error);
    for (WORD id : {1, 2, 3, 4, 5}) {
        bool expected = id == 2 || id == 5;
        EXPECT_EQ(result.script->FindDialog(ResourceName::Number(id)) != nullptr, expected) << id;
    }
}

// Every cut of a real script and every byte flipped at random reads or is
// refused with a message; none may crash or hang.
TEST(RcParser, DamagedScriptsNeverCrash) {
    std::ifstream in(std::string(QM_SOURCE_DIR) + "/quillmark/resources/Quillmark.rc", std::ios::binary);
    std::stringstream buffer;
    buffer << in.rdbuf();
    std::string script = buffer.str();
    ASSERT_GT(script.size(), 1000u);
    std::ifstream header(std::string(QM_SOURCE_DIR) + "/quillmark/resources/resource.h", std::ios::binary);
    std::stringstream ids;
    ids << header.rdbuf();
    std::vector<SourceFile> files{{L"Quillmark.rc", script}, {L"resource.h", ids.str()}};
    ASSERT_TRUE(ParseResourceScript(files).script);

    int refused = 0;
    for (size_t cut = 0; cut < script.size(); cut += 7) {
        files[0].text = script.substr(0, cut);
        ParseResult result = ParseResourceScript(files);
        if (!result.script) {
            ++refused;
            EXPECT_FALSE(result.error.empty());
        }
    }
    EXPECT_GT(refused, 0);
    std::mt19937 random(20240601);
    for (int round = 0; round < 300; ++round) {
        std::string damaged = script;
        for (int flips = 0; flips < 4; ++flips)
            damaged[random() % damaged.size()] = static_cast<char>(random() % 256);
        files[0].text = damaged;
        ParseResult result = ParseResourceScript(files);
        EXPECT_TRUE(result.script || !result.error.empty());
    }
}

}  // namespace
