// The settings registry: one SQLite file per hive (the user's and the
// machine's), each a tree of keys with named integer, string and binary
// values. Key and value names compare without regard to case.
#pragma once

#include <winreg.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <chrono>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;

namespace cadhost {

class Hive {
public:
    explicit Hive(std::filesystem::path file);
    ~Hive();
    Hive(const Hive&) = delete;
    Hive& operator=(const Hive&) = delete;

    static constexpr long long kRoot = 0;

    // The key below parent at a backslash-separated path, made if create.
    std::optional<long long> Key(long long parent, const std::wstring& path, bool create, bool* created = nullptr);
    bool DeleteKey(long long parent, const std::wstring& path, LONG& error);

    struct Value {
        DWORD type = REG_NONE;
        std::vector<BYTE> data;  // as the interface hands it out
    };
    std::optional<Value> Get(long long key, const std::wstring& name);
    bool Set(long long key, const std::wstring& name, DWORD type, const BYTE* data, DWORD size);
    bool Delete(long long key, const std::wstring& name);

    // Why the file cannot be used, or empty.
    const std::wstring& Problem() const { return m_problem; }

private:
    bool Ready();
    std::optional<long long> Child(long long parent, const std::wstring& name, bool create, bool* created);
    // Forgets what was read when the file changed since: another program
    // (or this one) committed to it.
    void DropStaleCache();
    // Notes the file's state after this hive's own change.
    void NoteOwnChange();
    std::optional<Value> Read(long long key, const std::string& folded);

    std::filesystem::path m_file;
    sqlite3* m_db = nullptr;
    bool m_tried = false;
    std::wstring m_problem;

    // What was read, by parent key and folded name: the child keys found,
    // and the values found or found missing. Valid while the file's change
    // counter stays as it was when they were read.
    std::unordered_map<std::string, long long> m_keys;
    std::unordered_map<std::wstring, long long> m_paths;  // whole paths below a key
    std::unordered_map<std::string, std::optional<Value>> m_values;
    int m_counterFile = -1;  // the database file, read for its change counter
    std::optional<std::uint32_t> m_counter;
    std::chrono::steady_clock::time_point m_checked;
};

class SettingsStore {
public:
    explicit SettingsStore(std::filesystem::path folder);
    ~SettingsStore();

    // HKEY_CURRENT_USER or HKEY_LOCAL_MACHINE; null for any other.
    Hive* HiveOf(HKEY predefined);
    const std::filesystem::path& Folder() const { return m_folder; }

    // Open keys are handles that the store owns until RegCloseKey.
    HKEY OpenHandle(Hive* hive, long long key);
    bool Resolve(HKEY handle, Hive*& hive, long long& key) const;
    bool CloseHandle(HKEY handle);

    // The default folder: $XDG_CONFIG_HOME/cadhost, else ~/.config/cadhost.
    static std::filesystem::path DefaultFolder();

private:
    struct OpenKey;
    std::filesystem::path m_folder;
    std::unique_ptr<Hive> m_user, m_machine;
    std::vector<std::unique_ptr<OpenKey>> m_open;
};

}  // namespace cadhost
