// Tests of the module's own dialogs outside the Field dialog: the module's
// resource script is given to the test program's handle, which stands for
// the module's instance, and the test answers the user interface.
#pragma once

#include <functional>
#include <string>

#include "support/DialogTestSupport.h"

namespace qmtest {

class ModuleDialogTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;
    cadhost::ui::Desktop& desktop() { return host().desktop(); }

    // What a control of a window shows.
    static std::wstring Shown(HWND window, int id);
    // The host's description of a control, as a script prints it.
    static std::string Described(HWND window, int id);

    TestDriver m_driver;

private:
    HINSTANCE m_instance = nullptr;
};

}  // namespace qmtest
