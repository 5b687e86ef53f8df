// Tests of the module's pages in the host's Field dialog, inside the test
// program: the module's resource script is read from the source tree and
// given to the program's own handle, which stands for the module's instance.
#pragma once

#include <AcFdUi.h>

#include <memory>

#include "support/DialogTestSupport.h"
#include "ui/resources/ResourceScript.h"

namespace qmtest {

// Quillmark.rc with its resource.h; fails the test when it does not read.
std::shared_ptr<const cadhost::ui::ResourceScript> ModuleResourceScript();

// A host with the test's driver, the module's resources, and the test's
// hook registered with the Field dialog for the test's length.
class ModulePagesTest : public HostTest {
protected:
    void SetUp() override;
    void TearDown() override;
    virtual CAcFdUiFieldDialogHook& Hook() = 0;

    TestDriver m_driver;

private:
    HINSTANCE m_instance = nullptr;
};

}  // namespace qmtest
