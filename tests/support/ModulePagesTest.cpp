#include "support/ModulePagesTest.h"

#include <filesystem>

#include "plugin/ModuleState.h"
#include "support/DxfGroups.h"
#include "ui/resources/ModuleResources.h"

namespace qmtest {

std::shared_ptr<const cadhost::ui::ResourceScript> ModuleResourceScript() {
    const std::filesystem::path folder = std::filesystem::path(QM_SOURCE_DIR) / "quillmark" / "resources";
    cadhost::ui::ParseResult parsed = cadhost::ui::ParseResourceScript(
        {{L"Quillmark.rc", ReadText(folder / "Quillmark.rc")}, {L"resource.h", ReadText(folder / "resource.h")}});
    EXPECT_TRUE(parsed.script) << cadhost::ToUtf8(parsed.error);
    return parsed.script;
}

void ModulePagesTest::SetUp() {
    HostTest::SetUp();
    auto script = ModuleResourceScript();
    ASSERT_TRUE(script);
    cadhost::ui::AttachResources(TestModule(), script);
    m_instance = _hdllInstance;
    _hdllInstance = TestModule();
    host().desktop().SetDriver(&m_driver);
    ASSERT_TRUE(AcFdUiGetFieldManager()->RegisterFieldDialogHook(&Hook()));
}

void ModulePagesTest::TearDown() {
    AcFdUiGetFieldManager()->UnregisterFieldDialogHook(&Hook());
    host().desktop().SetDriver(nullptr);
    _hdllInstance = m_instance;
    cadhost::ui::AttachResources(TestModule(), nullptr);
    HostTest::TearDown();
}

}  // namespace qmtest
