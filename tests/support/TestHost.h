// A running host for one test: settings in a fresh folder, the command
// line captured, modules found in the build's output folder.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "app/Host.h"
#include "core/Utf8.h"

namespace qmtest {

// A folder of its own for one test, removed afterwards.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

class HostTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    cadhost::Host& host() { return *m_host; }
    // What the command line showed since the last call.
    std::string TakeOutput();
    // Starts the host anew over the same settings folder.
    void RestartHost();

    TempFolder m_folder;
    std::ostringstream m_output;
    // Where the Internet classes connect, from the next RestartHost on;
    // every test host reaches only this machine.
    cadhost::internet::InternetOptions m_internet;
    std::unique_ptr<cadhost::Host> m_host;
};

}  // namespace qmtest
