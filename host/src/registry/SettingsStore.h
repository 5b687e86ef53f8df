// The settings registry: one SQLite file per hive (the user's and the
// machine's), each a tree of keys with named integer, string and binary
// values. Key and value names compare without regard to case.
//
// Several hosts may use one store at once: the files are kept in
// write-ahead logging, and a write waits for another process's write to end
// (and is tried again from its start while the file stays busy), so that
// no value is lost. A store that cannot be used at all says so once, through
// the report function, and every read gives its default from then on.
#pragma once

#include <winreg.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

struct sqlite3;

namespace cadhost {

// Told of what the user should know about the store: why it cannot be used.
using SettingsReport = std::function<void(const std::wstring& message)>;

class Hive {
public:
    explicit Hive(std::filesystem::path file, SettingsReport report = {});
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

    // Whether the file can be used (opening it on first use).
    bool Usable() { return Ready(); }
    // Why the file cannot be used, or why the last write failed, as a
    // sentence for the user; empty when nothing went wrong.
    const std::wstring& Problem() const { return m_problem; }
    const std::filesystem::path& File() const { return m_file; }

private:
    bool Ready();
    // Runs body in one write transaction, begun at once so that writers
    // queue; tried again from its start while another process keeps the
    // file busy. Answers whether it was committed.
    bool Write(const std::function<bool()>& body);
    void Report(const std::wstring& message);
    std::optional<long long> Child(long long parent, const std::wstring& name, bool create, bool* created);
    std::optional<Value> Read(long long key, const std::string& folded);
    // Forgets what was read once another connection has committed since.
    void DropStaleCache();
    void DropCache();

    std::filesystem::path m_file;
    SettingsReport m_report;
    sqlite3* m_db = nullptr;
    bool m_tried = false;
    std::wstring m_problem;

    // What was read, by parent key and folded name: programs read the same
    // few values again and again (a selection's filter, once per object).
    // Valid while SQLite's data version, which moves on when another
    // connection commits, stays as it was; this hive's own writes keep it.
    std::unordered_map<std::string, long long> m_keys;
    std::unordered_map<std::string, std::optional<Value>> m_values;
    long long m_dataVersion = -1;
    std::chrono::steady_clock::time_point m_checked;
};

class SettingsStore {
public:
    // report hears once of the first problem of either hive.
    explicit SettingsStore(std::filesystem::path folder, SettingsReport report = {});
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
    void Report(const std::wstring& message);

    std::filesystem::path m_folder;
    SettingsReport m_report;
    bool m_reported = false;
    std::unique_ptr<Hive> m_user, m_machine;
    std::vector<std::unique_ptr<OpenKey>> m_open;
};

}  // namespace cadhost
