#include "support/TestHost.h"

#include <atomic>
#include <unistd.h>

namespace qmtest {

TempFolder::TempFolder() {
    static std::atomic<int> counter{0};
    m_path = std::filesystem::temp_directory_path() /
             ("qmtest-" + std::to_string(::getpid()) + "-" + std::to_string(counter++));
    std::filesystem::remove_all(m_path);
    std::filesystem::create_directories(m_path);
}

TempFolder::~TempFolder() {
    std::error_code ec;
    std::filesystem::remove_all(m_path, ec);
}

void HostTest::SetUp() { RestartHost(); }

void HostTest::TearDown() { m_host.reset(); }

void HostTest::RestartHost() {
    m_host.reset();
    cadhost::HostOptions options;
    options.moduleFolder = QM_OUTPUT_DIR;
    options.settingsFolder = m_folder.path() / "settings";
    options.output = &m_output;
    options.internet = m_internet;
    options.internet.loopbackOnly = true;  // no test reaches beyond this machine
    m_host = std::make_unique<cadhost::Host>(options);
}

std::string HostTest::TakeOutput() {
    std::string text = m_output.str();
    m_output.str("");
    return text;
}

}  // namespace qmtest
