#include "support/ModuleDialogTest.h"

#include "plugin/ModuleState.h"
#include "support/ModulePagesTest.h"
#include "ui/ControlView.h"
#include "ui/Controls.h"
#include "ui/resources/ModuleResources.h"

namespace qmtest {

void ModuleDialogTest::SetUp() {
    HostTest::SetUp();
    auto script = ModuleResourceScript();
    ASSERT_TRUE(script);
    cadhost::ui::AttachResources(TestModule(), script);
    m_instance = _hdllInstance;
    _hdllInstance = TestModule();
    host().desktop().SetDriver(&m_driver);
}

void ModuleDialogTest::TearDown() {
    host().desktop().SetDriver(nullptr);
    _hdllInstance = m_instance;
    cadhost::ui::AttachResources(TestModule(), nullptr);
    HostTest::TearDown();
}

std::wstring ModuleDialogTest::Shown(HWND window, int id) {
    HWND control = ::GetDlgItem(window, id);
    return control ? cadhost::ui::ShownText(control) : L"(no control " + std::to_wstring(id) + L")";
}

std::string ModuleDialogTest::Described(HWND window, int id) {
    HWND control = ::GetDlgItem(window, id);
    return control ? cadhost::ToUtf8(cadhost::ui::DescribeControl(control)) : "(no control)";
}

}  // namespace qmtest
