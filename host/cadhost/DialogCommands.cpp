// Script commands of dialogs: confirming and cancelling the innermost open
// dialog, working its controls as a user would, answering the platform's
// message boxes, file dialogs and popup menus, and looking at what a dialog
// shows.
#include <tchar.h>

#include <cwctype>

#include <filesystem>

#include "ScriptDriver.h"
#include "ScriptRunner.h"
#include "core/Utf8.h"
#include "ui/ControlView.h"
#include "ui/Controls.h"
#include "ui/UserInput.h"

namespace cadhost::script {
namespace {

ui::Desktop& DesktopOf(ScriptRunner& runner) { return runner.host().desktop(); }

HWND InnermostDialog(ScriptRunner& runner) {
    HWND dialog = DesktopOf(runner).InnermostModal();
    if (!dialog) throw ScriptError(L"no dialog is open");
    return dialog;
}

// The window whose controls the script works: the dialog's ScriptTarget,
// the current page of a dialog that shows pages.
HWND TargetOf(ScriptRunner& runner, HWND dialog) {
    CWnd* object = CWnd::FromHandlePermanent(dialog);
    if (object && object->IsKindOf(RUNTIME_CLASS(CDialog))) {
        CWnd* target = static_cast<CDialog*>(object)->ScriptTarget();
        if (target && DesktopOf(runner).IsWindow(target->m_hWnd)) return target->m_hWnd;
    }
    return dialog;
}

int ControlId(const Word& word) {
    if (word.quoted) throw ScriptError(L"a control id is a number, not \"" + word.text + L"\"");
    return ScriptRunner::ParseInteger(word, L"a control id");
}

// A control named by a word: in the innermost dialog, or in the Field
// dialog under the innermost page's dialog.
HWND NamedControl(ScriptRunner& runner, const Word& word) {
    HWND dialog = InnermostDialog(runner);
    CWnd* object = CWnd::FromHandlePermanent(dialog);
    CWnd* control = object && object->IsKindOf(RUNTIME_CLASS(CDialog))
                        ? static_cast<CDialog*>(object)->ScriptControl(word.text.c_str())
                        : nullptr;
    if (!control || !DesktopOf(runner).IsWindow(control->m_hWnd))
        throw ScriptError(L"the " + ui::DescribeDialog(dialog) + L" has no control named " + ui::Quoted(word.text));
    return control->m_hWnd;
}

HWND FindControl(ScriptRunner& runner, const Word& word) {
    if (!word.quoted && !word.text.empty() && iswalpha(word.text[0])) return NamedControl(runner, word);
    int id = ControlId(word);
    HWND dialog = InnermostDialog(runner);
    HWND target = TargetOf(runner, dialog);
    HWND control = ::GetDlgItem(target, id);
    // The dialog's own OK and Cancel stay in reach from a page.
    if (!control && target != dialog && (id == IDOK || id == IDCANCEL)) control = ::GetDlgItem(dialog, id);
    if (!control) throw ScriptError(L"the " + ui::DescribeDialog(target) + L" has no control " + std::to_wstring(id));
    return control;
}

void Check(const std::wstring& why) {
    if (!why.empty()) throw ScriptError(why);
}

// An entry by its place (a number) or its caption (in double quotes).
int EntryIndex(HWND control, const Word& word) {
    if (!word.quoted) return ScriptRunner::ParseInteger(word, L"an entry's place");
    int count = ui::EntryCount(control);
    for (int i = 0; i < count; ++i) {
        if (ui::Entry(control, i)->text == word.text) return i;
    }
    throw ScriptError(ui::ControlName(control) + L" has no entry " + ui::Quoted(word.text));
}

void Command(ScriptRunner& runner, int id) {
    HWND dialog = InnermostDialog(runner);
    HWND button = ::GetDlgItem(dialog, id);
    ::SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(id, BN_CLICKED), reinterpret_cast<LPARAM>(button));
}

int ParseButton(const Word& word) {
    static const int buttons[] = {IDOK, IDCANCEL, IDYES, IDNO, IDABORT, IDRETRY, IDIGNORE, IDTRYAGAIN, IDCONTINUE};
    for (int button : buttons) {
        if (_wcsicmp(word.text.c_str(), ScriptDriver::ButtonName(button)) == 0) return button;
    }
    throw ScriptError(L"\"" + word.text + L"\" is no button of a message box (OK, Cancel, Yes, No...)");
}

}  // namespace

void DefineDialogCommands(ScriptRunner& runner) {
    runner.Define(L"ok", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"ok");
        Command(r, IDOK);
    });
    runner.Define(L"cancel", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"cancel");
        Command(r, IDCANCEL);
    });
    runner.Define(L"click", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"click ID");
        Check(ui::UserClick(FindControl(r, a[0])));
    });
    runner.Define(L"settext", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"settext ID \"TEXT\"");
        Check(ui::UserType(FindControl(r, a[0]), a[1].text));
    });
    runner.Define(L"choose", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"choose ID INDEX|\"CAPTION\"");
        HWND control = FindControl(r, a[0]);
        if (control->kind != ui::WindowKind::ListBox && control->kind != ui::WindowKind::ComboBox)
            throw ScriptError(ui::ControlName(control) + L" is no list or combo box");
        Check(ui::UserChoose(control, EntryIndex(control, a[1])));
    });
    runner.Define(L"tick", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 3, 3, L"tick ID INDEX|\"CAPTION\" on|off");
        HWND control = FindControl(r, a[0]);
        if (!ui::IsCheckList(control)) throw ScriptError(ui::ControlName(control) + L" is no check list box");
        int index = EntryIndex(control, a[1]);
        if (a[2].text != L"on" && a[2].text != L"off") throw ScriptError(L"a tick is on or off, not \"" + a[2].text + L"\"");
        Check(ui::UserTick(control, index, a[2].text == L"on"));
    });
    runner.Define(L"dropdown", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"dropdown ID");
        Check(ui::UserDropDown(FindControl(r, a[0])));
    });

    runner.Define(L"hover", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"hover ID|none");
        if (!a[0].quoted && a[0].text == L"none") {
            ui::UserHoverNowhere();
            return;
        }
        Check(ui::UserHover(FindControl(r, a[0])));
    });
    runner.Define(L"answer", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"answer OK|Cancel|Yes|No");
        r.driver().QueueAnswer(ParseButton(a[0]));
    });
    runner.Define(L"file", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"file PATH|cancel");
        if (!a[0].quoted && a[0].text == L"cancel") {
            r.driver().QueueFile(std::nullopt);
            return;
        }
        if (a[0].text.empty()) throw ScriptError(L"file needs a path");
        std::error_code ec;
        std::filesystem::path path(ToUtf8(a[0].text));
        std::filesystem::path absolute = std::filesystem::absolute(path, ec);
        r.driver().QueueFile(FromUtf8((ec ? path : absolute.lexically_normal()).string()));
    });
    runner.Define(L"menu", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"menu INDEX|cancel");
        if (!a[0].quoted && a[0].text == L"cancel") {
            r.driver().QueueMenu(-1);
            return;
        }
        int index = ScriptRunner::ParseInteger(a[0], L"a menu item's place");
        if (index < 0) throw ScriptError(L"a menu item's place counts from 0");
        r.driver().QueueMenu(index);
    });

    runner.DefinePrint(L"page", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"print page");
        r.Show(ui::DescribePage(TargetOf(r, InnermostDialog(r))));
    });
    runner.DefinePrint(L"control", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"print control ID");
        r.Show(ui::DescribeControl(FindControl(r, a[0])));
    });
    runner.DefineExpect(L"control", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"expect control ID \"TEXT\"");
        HWND control = FindControl(r, a[0]);
        std::wstring shown = ui::ShownText(control);
        if (shown != a[1].text)
            throw ExpectationFailed(ui::ControlName(control) + L" shows " + ui::Quoted(shown) + L", not " +
                                    ui::Quoted(a[1].text));
    });
    runner.DefineExpect(L"message", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"expect message \"TEXT\"");
        const auto& last = DesktopOf(r).LastMessage();
        if (!last) throw ExpectationFailed(L"no message box came up, so none showed " + ui::Quoted(a[0].text));
        if (last->text != a[0].text)
            throw ExpectationFailed(L"the last message box showed " + ui::Quoted(last->text) + L", not " +
                                    ui::Quoted(a[0].text));
    });
}

}  // namespace cadhost::script
