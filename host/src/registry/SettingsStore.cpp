#include "registry/SettingsStore.h"

#include <sqlite3.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <cwctype>
#include <thread>

#include "core/Utf8.h"

namespace cadhost {
namespace {

std::string Folded(const std::wstring& name) {
    std::wstring lower = name;
    for (wchar_t& c : lower) c = static_cast<wchar_t>(std::towlower(c));
    return ToUtf8(lower);
}

// A prepared statement that finalises itself.
class Statement {
public:
    Statement(sqlite3* db, const char* sql) { sqlite3_prepare_v2(db, sql, -1, &m_stmt, nullptr); }
    ~Statement() { sqlite3_finalize(m_stmt); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    explicit operator bool() const { return m_stmt != nullptr; }
    Statement& Bind(int i, long long v) {
        sqlite3_bind_int64(m_stmt, i, v);
        return *this;
    }
    Statement& Bind(int i, const std::string& v) {
        sqlite3_bind_text(m_stmt, i, v.data(), static_cast<int>(v.size()), SQLITE_TRANSIENT);
        return *this;
    }
    Statement& BindBlob(int i, const void* data, size_t size) {
        sqlite3_bind_blob(m_stmt, i, data, static_cast<int>(size), SQLITE_TRANSIENT);
        return *this;
    }
    int Step() { return m_stmt ? sqlite3_step(m_stmt) : SQLITE_ERROR; }
    sqlite3_stmt* get() const { return m_stmt; }

private:
    sqlite3_stmt* m_stmt = nullptr;
};

// How long one write waits for another process's write before it is tried
// again, and how often it is tried.
constexpr int kBusyTimeoutMs = 5000;
constexpr int kWriteAttempts = 12;

bool Busy(int code) {
    int primary = code & 0xFF;
    return primary == SQLITE_BUSY || primary == SQLITE_LOCKED;
}

// A little longer before each new attempt, none before the first.
void WaitBeforeAttempt(int attempt) {
    if (attempt > 0) std::this_thread::sleep_for(std::chrono::milliseconds(5 * attempt));
}

std::vector<std::wstring> SplitPath(const std::wstring& path) {
    std::vector<std::wstring> parts;
    std::wstring part;
    for (wchar_t c : path) {
        if (c == L'\\') {
            if (!part.empty()) parts.push_back(part);
            part.clear();
        } else {
            part += c;
        }
    }
    if (!part.empty()) parts.push_back(part);
    return parts;
}

}  // namespace

Hive::Hive(std::filesystem::path file, SettingsReport report) : m_file(std::move(file)), m_report(std::move(report)) {}

Hive::~Hive() {
    if (m_db) sqlite3_close(m_db);
}

namespace {

// How often the cache asks whether another program wrote: a program that
// reads a value a thousand times in a loop asks once, and a change that
// another one commits is seen a millisecond later at the latest.
constexpr std::chrono::milliseconds kCacheCheckInterval{1};

std::string CacheName(long long parent, const std::string& folded) {
    return std::to_string(parent) + '\n' + folded;
}

}  // namespace

void Hive::DropCache() {
    m_keys.clear();
    m_values.clear();
}

void Hive::DropStaleCache() {
    auto now = std::chrono::steady_clock::now();
    if (m_dataVersion >= 0 && now - m_checked < kCacheCheckInterval) return;
    m_checked = now;
    Statement version(m_db, "PRAGMA data_version");
    long long current = version && version.Step() == SQLITE_ROW ? sqlite3_column_int64(version.get(), 0) : -1;
    if (current < 0 || current != m_dataVersion) DropCache();
    m_dataVersion = current;
}

void Hive::Report(const std::wstring& message) {
    m_problem = message;
    if (m_report) m_report(message);
}

bool Hive::Ready() {
    if (m_db) return true;
    if (m_tried) return false;
    m_tried = true;
    std::wstring file = FromUtf8(m_file.string());
    auto unusable = [&](const std::wstring& why) {
        if (m_db) sqlite3_close(m_db);
        m_db = nullptr;
        Report(L"The settings store " + file + L" cannot be used (" + why +
               L"); settings keep their defaults in this session.");
        return false;
    };
    std::error_code ec;
    std::filesystem::create_directories(m_file.parent_path(), ec);
    if (ec) {
        Report(L"The settings folder " + FromUtf8(m_file.parent_path().string()) + L" cannot be used (" +
               FromUtf8(ec.message()) + L"); settings keep their defaults in this session.");
        return false;
    }
    if (sqlite3_open_v2(m_file.c_str(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK)
        return unusable(FromUtf8(m_db ? sqlite3_errmsg(m_db) : "out of memory"));
    sqlite3_busy_timeout(m_db, kBusyTimeoutMs);
    // Readers never wait for a writer, and writers only for each other. A
    // commit is safe from a killed process at once, and on the disk at the
    // log's next checkpoint.
    // Two hosts that start at once on a new store both turn its log on; the
    // one that comes second is told the store is busy without waiting for
    // it, and tries again.
    char* error = nullptr;
    int code = SQLITE_OK;
    for (int attempt = 0; attempt < kWriteAttempts; ++attempt) {
        WaitBeforeAttempt(attempt);
        sqlite3_free(error);
        error = nullptr;
        code = sqlite3_exec(m_db, "PRAGMA journal_mode=WAL; PRAGMA synchronous=NORMAL", nullptr, nullptr, &error);
        if (code == SQLITE_OK || !Busy(sqlite3_extended_errcode(m_db))) break;
    }
    if (code != SQLITE_OK) {
        std::wstring why = FromUtf8(error ? error : sqlite3_errmsg(m_db));
        sqlite3_free(error);
        return unusable(why);
    }
    const char* schema =
        "CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, name TEXT NOT NULL,"
        " folded TEXT NOT NULL, UNIQUE(parent, folded));"
        "CREATE TABLE IF NOT EXISTS vals(key INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,"
        " type INTEGER NOT NULL, data BLOB, PRIMARY KEY(key, folded));"
        // Like the platform's hives, each starts with its software branch.
        "INSERT OR IGNORE INTO keys(parent, name, folded) VALUES(0, 'Software', 'software');";
    bool made = Write([this, schema] { return sqlite3_exec(m_db, schema, nullptr, nullptr, nullptr) == SQLITE_OK; });
    if (!made) return unusable(m_problem);
    m_problem.clear();
    return true;
}

bool Hive::Write(const std::function<bool()>& body) {
    int code = SQLITE_OK;
    for (int attempt = 0; attempt < kWriteAttempts; ++attempt) {
        WaitBeforeAttempt(attempt);
        code = sqlite3_exec(m_db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr);
        if (code != SQLITE_OK) {
            code = sqlite3_extended_errcode(m_db);
            if (Busy(code)) continue;
            break;
        }
        bool done = body();
        if (done) {
            code = sqlite3_exec(m_db, "COMMIT", nullptr, nullptr, nullptr);
            if (code == SQLITE_OK) return true;
        }
        code = sqlite3_extended_errcode(m_db);
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        DropCache();  // keys the rolled-back write made never were
        if (!Busy(code)) break;
    }
    m_problem = FromUtf8(sqlite3_errstr(code));
    return false;
}

std::optional<long long> Hive::Child(long long parent, const std::wstring& name, bool create, bool* created) {
    std::string folded = Folded(name);
    std::string cacheName = CacheName(parent, folded);
    if (auto cached = m_keys.find(cacheName); cached != m_keys.end()) return cached->second;
    Statement find(m_db, "SELECT id FROM keys WHERE parent=?1 AND folded=?2");
    if (!find) return std::nullopt;
    find.Bind(1, parent).Bind(2, folded);
    if (find.Step() == SQLITE_ROW) {
        long long id = sqlite3_column_int64(find.get(), 0);
        m_keys.emplace(std::move(cacheName), id);
        return id;
    }
    if (!create) return std::nullopt;
    Statement insert(m_db, "INSERT INTO keys(parent, name, folded) VALUES(?1, ?2, ?3)");
    insert.Bind(1, parent).Bind(2, ToUtf8(name)).Bind(3, folded);
    if (insert.Step() != SQLITE_DONE) return std::nullopt;
    if (created) *created = true;
    long long id = sqlite3_last_insert_rowid(m_db);
    m_keys.emplace(std::move(cacheName), id);
    return id;
}

std::optional<long long> Hive::Key(long long parent, const std::wstring& path, bool create, bool* created) {
    if (created) *created = false;
    if (!Ready()) return std::nullopt;
    DropStaleCache();
    std::vector<std::wstring> parts = SplitPath(path);
    auto walk = [&](bool make) -> std::optional<long long> {
        long long key = parent;
        for (const std::wstring& part : parts) {
            std::optional<long long> child = Child(key, part, make, created);
            if (!child) return std::nullopt;
            key = *child;
        }
        return key;
    };
    // Keys that may be missing are looked up and made in one write, so that
    // two processes making the same key make it once.
    std::optional<long long> key = walk(false);
    if (key || !create) return key;
    if (!Write([&] {
            if (created) *created = false;
            key = walk(true);
            return key.has_value();
        })) {
        Report(L"A setting could not be stored in " + FromUtf8(m_file.string()) + L" (" + m_problem + L").");
        return std::nullopt;
    }
    return key;
}

bool Hive::DeleteKey(long long parent, const std::wstring& path, LONG& error) {
    std::optional<long long> key = Key(parent, path, false);
    if (!key || *key == kRoot || SplitPath(path).empty()) {
        error = ERROR_FILE_NOT_FOUND;
        return false;
    }
    error = ERROR_SUCCESS;
    bool removed = Write([&] {
        Statement children(m_db, "SELECT 1 FROM keys WHERE parent=?1 LIMIT 1");
        children.Bind(1, *key);
        int step = children.Step();
        if (step == SQLITE_ROW) {  // as the platform: only a key without subkeys goes
            error = ERROR_ACCESS_DENIED;
            return true;
        }
        if (step != SQLITE_DONE) return false;
        Statement values(m_db, "DELETE FROM vals WHERE key=?1");
        if (values.Bind(1, *key).Step() != SQLITE_DONE) return false;
        Statement remove(m_db, "DELETE FROM keys WHERE id=?1");
        return remove.Bind(1, *key).Step() == SQLITE_DONE;
    });
    DropCache();  // the key's id, and those of its values, may come again
    if (!removed) error = ERROR_ACCESS_DENIED;
    return removed && error == ERROR_SUCCESS;
}

std::optional<Hive::Value> Hive::Get(long long key, const std::wstring& name) {
    if (!Ready()) return std::nullopt;
    DropStaleCache();
    std::string folded = Folded(name);
    std::string cacheName = CacheName(key, folded);
    if (auto cached = m_values.find(cacheName); cached != m_values.end()) return cached->second;
    std::optional<Value> found = Read(key, folded);
    m_values.emplace(std::move(cacheName), found);
    return found;
}

std::optional<Hive::Value> Hive::Read(long long key, const std::string& folded) {
    Statement find(m_db, "SELECT type, data FROM vals WHERE key=?1 AND folded=?2");
    find.Bind(1, key).Bind(2, folded);
    if (find.Step() != SQLITE_ROW) return std::nullopt;
    Value value;
    value.type = static_cast<DWORD>(sqlite3_column_int64(find.get(), 0));
    if (value.type == REG_SZ || value.type == REG_EXPAND_SZ) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(find.get(), 1));
        std::wstring wide = FromUtf8(text ? text : "");
        const auto* bytes = reinterpret_cast<const BYTE*>(wide.c_str());
        value.data.assign(bytes, bytes + (wide.size() + 1) * sizeof(WCHAR));
    } else if (value.type == REG_DWORD) {
        auto number = static_cast<DWORD>(sqlite3_column_int64(find.get(), 1));
        const auto* bytes = reinterpret_cast<const BYTE*>(&number);
        value.data.assign(bytes, bytes + sizeof number);
    } else {
        const auto* bytes = static_cast<const BYTE*>(sqlite3_column_blob(find.get(), 1));
        value.data.assign(bytes, bytes + sqlite3_column_bytes(find.get(), 1));
    }
    return value;
}

bool Hive::Set(long long key, const std::wstring& name, DWORD type, const BYTE* data, DWORD size) {
    if (!Ready()) return false;
    std::string folded = Folded(name), utf8 = ToUtf8(name);
    std::optional<long long> number;
    std::string text;
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        size_t count = data ? size / sizeof(WCHAR) : 0;
        const auto* wide = reinterpret_cast<const WCHAR*>(data);
        size_t length = 0;
        while (length < count && wide[length] != L'\0') ++length;
        text = ToUtf8(std::wstring_view(wide ? wide : L"", length));
    } else if (type == REG_DWORD) {
        if (!data || size != sizeof(DWORD)) return false;
        DWORD value;
        std::memcpy(&value, data, sizeof value);
        number = static_cast<long long>(value);
    }
    bool stored = Write([&] {
        Statement put(m_db, "INSERT OR REPLACE INTO vals(key, name, folded, type, data) VALUES(?1, ?2, ?3, ?4, ?5)");
        put.Bind(1, key).Bind(2, utf8).Bind(3, folded).Bind(4, static_cast<long long>(type));
        if (type == REG_SZ || type == REG_EXPAND_SZ) put.Bind(5, text);
        else if (number) put.Bind(5, *number);
        else put.BindBlob(5, data, data ? size : 0);
        return put.Step() == SQLITE_DONE;
    });
    if (!stored) Report(L"A setting could not be stored in " + FromUtf8(m_file.string()) + L" (" + m_problem + L").");
    m_values.erase(CacheName(key, folded));  // read back as stored, in its own type
    return stored;
}

bool Hive::Delete(long long key, const std::wstring& name) {
    if (!Ready()) return false;
    bool removed = false;
    bool written = Write([&] {
        Statement remove(m_db, "DELETE FROM vals WHERE key=?1 AND folded=?2");
        remove.Bind(1, key).Bind(2, Folded(name));
        if (remove.Step() != SQLITE_DONE) return false;
        removed = sqlite3_changes(m_db) > 0;
        return true;
    });
    m_values.erase(CacheName(key, Folded(name)));
    return written && removed;
}

struct SettingsStore::OpenKey {
    Hive* hive;
    long long key;
};

SettingsStore::SettingsStore(std::filesystem::path folder, SettingsReport report)
    : m_folder(std::move(folder)), m_report(std::move(report)) {
    auto told = [this](const std::wstring& message) { Report(message); };
    m_user = std::make_unique<Hive>(m_folder / "user.db", told);
    m_machine = std::make_unique<Hive>(m_folder / "machine.db", told);
}

SettingsStore::~SettingsStore() = default;

void SettingsStore::Report(const std::wstring& message) {
    if (m_reported) return;
    m_reported = true;
    if (m_report) m_report(message);
}

Hive* SettingsStore::HiveOf(HKEY predefined) {
    if (predefined == HKEY_CURRENT_USER) return m_user.get();
    if (predefined == HKEY_LOCAL_MACHINE) return m_machine.get();
    return nullptr;
}

HKEY SettingsStore::OpenHandle(Hive* hive, long long key) {
    m_open.push_back(std::make_unique<OpenKey>(OpenKey{hive, key}));
    return reinterpret_cast<HKEY>(m_open.back().get());
}

bool SettingsStore::Resolve(HKEY handle, Hive*& hive, long long& key) const {
    if (Hive* predefined = const_cast<SettingsStore*>(this)->HiveOf(handle)) {
        hive = predefined;
        key = Hive::kRoot;
        return true;
    }
    for (const auto& open : m_open) {
        if (reinterpret_cast<HKEY>(open.get()) == handle) {
            hive = open->hive;
            key = open->key;
            return true;
        }
    }
    return false;
}

bool SettingsStore::CloseHandle(HKEY handle) {
    return std::erase_if(m_open, [handle](const auto& open) { return reinterpret_cast<HKEY>(open.get()) == handle; }) >
           0;
}

std::filesystem::path SettingsStore::DefaultFolder() {
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
        return std::filesystem::path(config) / "cadhost";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::filesystem::path(home) / ".config" / "cadhost";
    return std::filesystem::temp_directory_path() / "cadhost-settings";
}

}  // namespace cadhost
