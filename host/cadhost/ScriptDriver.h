// The user interface of a script session: a modal dialog runs the script's
// next lines until it ends; message boxes, file dialogs and popup menus
// take the answers that the script queued for them before the action.
#pragma once

#include <deque>
#include <optional>
#include <string>

#include "ui/UiDriver.h"

namespace cadhost::script {

class ScriptRunner;

class ScriptDriver : public ui::UiDriver {
public:
    explicit ScriptDriver(ScriptRunner& runner) : m_runner(runner) {}

    void RunModal(HWND dialog) override;
    int AnswerMessageBox(const ui::MessageBoxRequest& request) override;
    std::optional<std::wstring> AnswerFileDialog(const ui::FileDialogRequest& request) override;
    int AnswerPopupMenu(const ui::PopupMenuRequest& request) override;
    bool Abandoning() const override;

    // "answer": IDOK, IDCANCEL, IDYES... for the next message box.
    void QueueAnswer(int button) { m_answers.push_back(button); }
    // "file": a path, or nothing to cancel the next file dialog.
    void QueueFile(std::optional<std::wstring> path) { m_files.push_back(std::move(path)); }
    // "menu": the place of an item, or -1 to dismiss the next popup menu.
    void QueueMenu(int index) { m_menus.push_back(index); }
    // What was queued and never taken, as a script's fault; empty if none.
    std::wstring UnusedAnswers() const;

    static const wchar_t* ButtonName(int button);

private:
    ScriptRunner& m_runner;
    std::deque<int> m_answers;
    std::deque<std::optional<std::wstring>> m_files;
    std::deque<int> m_menus;
    int m_unansweredLine = 0;
    int m_unansweredCount = 0;
};

}  // namespace cadhost::script
