// Dialog tests: a running host whose user interface the test answers, and
// resource scripts given as text to the test program's own module handle.
#pragma once

#include <afxwin.h>

#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "support/TestHost.h"
#include "ui/Desktop.h"
#include "ui/UiDriver.h"

namespace qmtest {

// The test program's module handle.
HINSTANCE TestModule();
// Gives the test program the resources of a script; fails the test when the
// script does not read.
HINSTANCE AttachScript(const std::string& script);

// A user interface that the test answers.
class TestDriver : public cadhost::ui::UiDriver {
public:
    // What the user does while a modal dialog is open.
    std::function<void(HWND)> onModal;
    std::deque<int> answers;  // for message boxes; the default button without
    std::vector<cadhost::ui::MessageBoxRequest> boxes;
    std::optional<std::wstring> file;
    std::vector<cadhost::ui::FileDialogRequest> fileDialogs;
    int menuChoice = -1;
    std::vector<cadhost::ui::PopupMenuRequest> menus;
    int modalRuns = 0;

    void RunModal(HWND dialog) override;
    int AnswerMessageBox(const cadhost::ui::MessageBoxRequest& request) override;
    std::optional<std::wstring> AnswerFileDialog(const cadhost::ui::FileDialogRequest& request) override;
    int AnswerPopupMenu(const cadhost::ui::PopupMenuRequest& request) override;
};

// A host with the test's driver and a resource script of test dialogs
// pushed on the resource stack.
class DialogTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;
    cadhost::ui::Desktop& desktop() { return host().desktop(); }

    TestDriver m_driver;
    HINSTANCE m_resources = nullptr;
};

// The test dialogs' script: template 500 holds one control of each kind.
extern const char* const kTestDialogs;

// A dialog that writes down every notification of its controls, as
// "change 10", "selchange 12", "clicked 18"...
class Recorder : public CDialog {
public:
    explicit Recorder(UINT id = 500, CWnd* parent = nullptr) : CDialog(id, parent) {}
    std::vector<std::string> events;
    // The events since the last call, joined by ", ".
    std::string Take();

protected:
    void Note(const char* what, UINT id) { events.push_back(std::string(what) + " " + std::to_string(id)); }
    void OnClicked(UINT id) { Note("clicked", id); }
    void OnSelChange(UINT id) { Note("selchange", id); }
    void OnEditChange(UINT id) { Note("editchange", id); }
    void OnEditUpdate(UINT id) { Note("editupdate", id); }
    void OnDropDown(UINT id) { Note("dropdown", id); }
    void OnCloseUp(UINT id) { Note("closeup", id); }
    void OnChange(UINT id) { Note("change", id); }
    void OnUpdate(UINT id) { Note("update", id); }
    void OnCheckChange(UINT id) { Note("chkchange", id); }
    DECLARE_MESSAGE_MAP()
};

}  // namespace qmtest
