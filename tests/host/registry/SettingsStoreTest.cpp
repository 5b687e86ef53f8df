// The settings store under pressure: two hosts writing thousands of values
// at once lose none, and a store that cannot be used says so once while
// every read gives its default.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>
#include <winreg.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "registry/SettingsStore.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;

// Values each writer stores, spread over keys that both make.
constexpr int kValues = 2500;
constexpr int kKeys = 25;

std::wstring Section(int i) { return L"Software\\Writers\\K" + std::to_wstring(i % kKeys); }

// A session script that stores the writer's values, one a line.
fs::path WriterScript(const fs::path& folder, char writer, int base) {
    fs::path path = folder / (std::string("writer-") + writer + ".qms");
    std::ofstream out(path);
    for (int i = 0; i < kValues; ++i)
        out << "setting " << cadhost::ToUtf8(Section(i)) << " " << writer << i << " " << base + i << "\n";
    return path;
}

pid_t Spawn(const std::vector<std::string>& arguments, const fs::path& log) {
    std::vector<char*> argv;
    for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, log.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    posix_spawn_file_actions_adddup2(&actions, 1, 2);
    pid_t pid = -1;
    int error = posix_spawn(&pid, argv[0], &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    return error == 0 ? pid : -1;
}

int ExitStatus(pid_t pid) {
    int status = 0;
    if (waitpid(pid, &status, 0) != pid) return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

TEST(SettingsStore, TwoHostsWritingAtOnceLoseNoValue) {
    qmtest::TempFolder folder;
    fs::path settings = folder.path() / "settings";
    const std::string cadhost = std::string(QM_OUTPUT_DIR) + "/cadhost";
    const struct {
        char name;
        int base;
    } writers[] = {{'A', 0}, {'B', 1000000}};
    std::vector<pid_t> running;
    for (const auto& writer : writers) {
        fs::path script = WriterScript(folder.path(), writer.name, writer.base);
        running.push_back(Spawn({cadhost, "--no-module", "--settings", settings.string(), "--script", script.string()},
                                folder.path() / (std::string("writer-") + writer.name + ".log")));
        ASSERT_GT(running.back(), 0);
    }
    for (size_t i = 0; i < running.size(); ++i) {
        fs::path log = folder.path() / (std::string("writer-") + writers[i].name + ".log");
        EXPECT_EQ(ExitStatus(running[i]), 0) << qmtest::ReadText(log);
    }

    cadhost::Hive store(settings / "user.db");
    int found = 0;
    for (const auto& writer : writers) {
        for (int i = 0; i < kValues; ++i) {
            std::optional<long long> key = store.Key(cadhost::Hive::kRoot, Section(i), false);
            std::optional<cadhost::Hive::Value> value =
                key ? store.Get(*key, std::wstring(1, writer.name) + std::to_wstring(i)) : std::nullopt;
            DWORD number = 0;
            if (value && value->type == REG_DWORD && value->data.size() == sizeof number) {
                std::memcpy(&number, value->data.data(), sizeof number);
                if (number == static_cast<DWORD>(writer.base + i)) ++found;
            }
        }
    }
    EXPECT_EQ(found, 2 * kValues);
    // Each key was made once, though both made it.
    for (int k = 0; k < kKeys; ++k) EXPECT_TRUE(store.Key(cadhost::Hive::kRoot, Section(k), false)) << k;
}

// Starts a host over the settings folder and works the store as the module
// does, three times; answers what the command line showed.
std::string UseStore(const fs::path& settings) {
    std::ostringstream output;
    {
        cadhost::HostOptions options;
        options.settingsFolder = settings;
        options.output = &output;
        cadhost::Host host(options);
        for (int round = 0; round < 3; ++round) {
            HKEY key = nullptr;
            EXPECT_NE(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Norvo\\NorvoTest", 0, nullptr, 0, KEY_ALL_ACCESS,
                                      nullptr, &key, nullptr),
                      ERROR_SUCCESS);
            EXPECT_EQ(key, nullptr);
            EXPECT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Norvo", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
        }
    }
    return output.str();
}

const char kDefaults[] = "; settings keep their defaults in this session.\n";

TEST(SettingsStore, AStoreThatCannotBeUsedSaysSoOnceAndGivesDefaults) {
    qmtest::TempFolder folder;
    fs::path garbage = folder.path() / "garbage";
    fs::create_directories(garbage);
    qmtest::WriteText(garbage / "user.db", std::string(4096, 'x'));
    qmtest::WriteText(folder.path() / "plain", "a file, not a folder");
    fs::path impossible = folder.path() / "plain" / "settings";
    struct Case {
        fs::path settings;
        std::string said;
    };
    const Case cases[] = {
        {garbage, "The settings store " + (garbage / "user.db").string() + " cannot be used (file is not a database)"},
        {impossible, "The settings folder " + impossible.string() + " cannot be used (Not a directory)"},
    };
    for (const Case& c : cases) EXPECT_EQ(UseStore(c.settings), c.said + kDefaults) << c.settings;
}

TEST(SettingsStore, AReadOnlyFolderSaysSoOnce) {
    if (::geteuid() == 0) GTEST_SKIP() << "no folder is read-only to the superuser";
    qmtest::TempFolder folder;
    fs::path readOnly = folder.path() / "read-only";
    fs::create_directories(readOnly);
    fs::permissions(readOnly, fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(UseStore(readOnly),
              "The settings store " + (readOnly / "user.db").string() + " cannot be used (unable to open database file)" +
                  kDefaults);
    fs::permissions(readOnly, fs::perms::owner_all);
}

}  // namespace
