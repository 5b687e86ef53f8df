#include "ScriptDriver.h"

#include <algorithm>
#include <filesystem>

#include "ScriptRunner.h"
#include "core/Utf8.h"
#include "ui/ControlView.h"

namespace cadhost::script {
namespace {

// Message boxes that come without an answer, one after another within one
// line, before the script is taken to be caught in a loop of them.
constexpr int kMaxUnansweredBoxes = 1000;

}  // namespace

const wchar_t* ScriptDriver::ButtonName(int button) {
    switch (button) {
    case IDOK: return L"OK";
    case IDCANCEL: return L"Cancel";
    case IDABORT: return L"Abort";
    case IDRETRY: return L"Retry";
    case IDIGNORE: return L"Ignore";
    case IDYES: return L"Yes";
    case IDNO: return L"No";
    case IDTRYAGAIN: return L"TryAgain";
    case IDCONTINUE: return L"Continue";
    default: return L"?";
    }
}

bool ScriptDriver::Abandoning() const { return m_runner.Failed(); }

void ScriptDriver::RunModal(HWND dialog) {
    ui::Desktop& desktop = m_runner.host().desktop();
    int opener = m_runner.CurrentLine();
    std::wstring name = desktop.IsWindow(dialog) ? ui::DescribeDialog(dialog) : L"dialog";
    desktop.DeliverPosted();  // what the dialog posted while it opened, before the user acts
    bool ended = m_runner.RunUntil([&desktop, dialog] { return desktop.ModalEnded(dialog); });
    if (!ended && !m_runner.Failed())
        m_runner.Fail(2, opener, L"the script ended while the " + name + L" that this line opened was still open");
}

int ScriptDriver::AnswerMessageBox(const ui::MessageBoxRequest& request) {
    auto cancel = std::find(request.buttons.begin(), request.buttons.end(), IDCANCEL);
    if (Abandoning()) return cancel != request.buttons.end() ? IDCANCEL : request.defaultButton;
    if (m_answers.empty()) {
        int line = m_runner.CurrentLine();
        if (line != m_unansweredLine) {
            m_unansweredLine = line;
            m_unansweredCount = 0;
        }
        if (++m_unansweredCount > kMaxUnansweredBoxes)
            m_runner.Fail(2, line, L"more than " + std::to_wstring(kMaxUnansweredBoxes) +
                                       L" message boxes came up without an answer");
        return request.defaultButton;
    }
    int answer = m_answers.front();
    m_answers.pop_front();
    if (std::find(request.buttons.begin(), request.buttons.end(), answer) == request.buttons.end()) {
        std::wstring buttons;
        for (int button : request.buttons) buttons += (buttons.empty() ? L"" : L", ") + std::wstring(ButtonName(button));
        m_runner.Fail(2, m_runner.CurrentLine(),
                      L"the answer " + std::wstring(ButtonName(answer)) + L" fits no button of the message box " +
                          ui::Quoted(request.text) + L" (" + buttons + L")");
        return request.defaultButton;
    }
    return answer;
}

std::optional<std::wstring> ScriptDriver::AnswerFileDialog(const ui::FileDialogRequest& request) {
    if (Abandoning() || m_files.empty()) return std::nullopt;
    std::optional<std::wstring> path = m_files.front();
    m_files.pop_front();
    if (!path) return std::nullopt;
    std::error_code ec;
    std::filesystem::path file(ToUtf8(*path));
    if ((request.flags & OFN_FILEMUSTEXIST) && !std::filesystem::exists(file, ec)) {
        m_runner.Fail(2, m_runner.CurrentLine(), L"the file dialog asks for a file that exists, and " + *path + L" does not");
        return std::nullopt;
    }
    return path;
}

int ScriptDriver::AnswerPopupMenu(const ui::PopupMenuRequest& request) {
    if (Abandoning() || m_menus.empty()) return -1;
    int index = m_menus.front();
    m_menus.pop_front();
    if (index < 0) return -1;
    if (static_cast<size_t>(index) >= request.items.size()) {
        m_runner.Fail(2, m_runner.CurrentLine(),
                      L"the menu has no item " + std::to_wstring(index) + L" (it has " +
                          std::to_wstring(request.items.size()) + L")");
        return -1;
    }
    const ui::PopupMenuLine& item = request.items[static_cast<size_t>(index)];
    std::wstring why;
    if (item.flags & MF_SEPARATOR) why = L"is a separator";
    else if (item.flags & MF_POPUP) why = L"opens a submenu";
    else if (item.flags & (MF_GRAYED | MF_DISABLED)) why = L"is inactive";
    if (!why.empty()) {
        m_runner.Fail(2, m_runner.CurrentLine(), L"item " + std::to_wstring(index) + L" of the menu " + why);
        return -1;
    }
    return index;
}

std::wstring ScriptDriver::UnusedAnswers() const {
    std::wstring left;
    auto add = [&left](const std::wstring& what) { left += (left.empty() ? L"" : L", ") + what; };
    for (int answer : m_answers) add(L"answer " + std::wstring(ButtonName(answer)));
    for (const auto& file : m_files) add(L"file " + (file ? *file : std::wstring(L"cancel")));
    for (int menu : m_menus) add(L"menu " + (menu < 0 ? std::wstring(L"cancel") : std::to_wstring(menu)));
    return left.empty() ? left : L"the script ended with answers that nothing asked for: " + left;
}

}  // namespace cadhost::script
