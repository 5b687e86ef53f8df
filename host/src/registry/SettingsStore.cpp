#include "registry/SettingsStore.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <cwctype>

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

constexpr std::chrono::milliseconds kCheckInterval{1};

// A cache entry's name: the parent key's id and the folded name.
std::string CacheName(long long parent, const std::string& folded) {
    return std::to_string(parent) + '\n' + folded;
}

// The file change counter of an SQLite database, which every commit in the
// rollback journal mode advances: four bytes at offset 24.
std::optional<std::uint32_t> ChangeCounter(int file) {
    unsigned char bytes[4];
    if (file < 0 || ::pread(file, bytes, sizeof bytes, 24) != static_cast<ssize_t>(sizeof bytes)) return std::nullopt;
    return (std::uint32_t{bytes[0]} << 24) | (std::uint32_t{bytes[1]} << 16) | (std::uint32_t{bytes[2]} << 8) |
           std::uint32_t{bytes[3]};
}

}  // namespace

Hive::Hive(std::filesystem::path file) : m_file(std::move(file)) {}

Hive::~Hive() {
    if (m_counterFile >= 0) ::close(m_counterFile);
    if (m_db) sqlite3_close(m_db);
}

void Hive::DropStaleCache() {
    // The file is looked at once a millisecond at most: a program reads the
    // same value a thousand times in a loop, and a change that another
    // program commits is seen within that time.
    auto now = std::chrono::steady_clock::now();
    if (m_counter && now - m_checked < kCheckInterval) return;
    m_checked = now;
    if (m_counterFile < 0) m_counterFile = ::open(m_file.c_str(), O_RDONLY | O_CLOEXEC);
    std::optional<std::uint32_t> counter = ChangeCounter(m_counterFile);
    if (counter && counter == m_counter) return;
    m_keys.clear();
    m_paths.clear();
    m_values.clear();
    m_counter = counter;  // unknown (a file too short yet): nothing is kept
}

void Hive::NoteOwnChange() {
    // One commit of this hive's advances the counter by one; more means
    // another program committed as well, whose changes are not known here.
    std::optional<std::uint32_t> counter = ChangeCounter(m_counterFile);
    if (!counter || !m_counter || *counter != *m_counter + 1) {
        m_keys.clear();
        m_paths.clear();
        m_values.clear();
    }
    m_counter = counter;
}

bool Hive::Ready() {
    if (m_db) return true;
    if (m_tried) return false;
    m_tried = true;
    std::error_code ec;
    std::filesystem::create_directories(m_file.parent_path(), ec);
    if (sqlite3_open_v2(m_file.c_str(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) != SQLITE_OK) {
        m_problem = L"cannot open " + FromUtf8(m_file.string()) + L": " + FromUtf8(sqlite3_errmsg(m_db));
        sqlite3_close(m_db);
        m_db = nullptr;
        return false;
    }
    sqlite3_busy_timeout(m_db, 2000);
    const char* schema =
        "CREATE TABLE IF NOT EXISTS keys(id INTEGER PRIMARY KEY, parent INTEGER NOT NULL, name TEXT NOT NULL,"
        " folded TEXT NOT NULL, UNIQUE(parent, folded));"
        "CREATE TABLE IF NOT EXISTS vals(key INTEGER NOT NULL, name TEXT NOT NULL, folded TEXT NOT NULL,"
        " type INTEGER NOT NULL, data BLOB, PRIMARY KEY(key, folded));";
    char* error = nullptr;
    // Like the platform's hives, each starts with its software branch.
    const char* software = "INSERT OR IGNORE INTO keys(parent, name, folded) VALUES(0, 'Software', 'software');";
    if (sqlite3_exec(m_db, schema, nullptr, nullptr, &error) != SQLITE_OK ||
        sqlite3_exec(m_db, software, nullptr, nullptr, &error) != SQLITE_OK) {
        m_problem = L"cannot use " + FromUtf8(m_file.string()) + L": " + FromUtf8(error ? error : "unknown error");
        sqlite3_free(error);
        sqlite3_close(m_db);
        m_db = nullptr;
        return false;
    }
    return true;
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
        if (m_counter) m_keys.emplace(cacheName, id);
        return id;
    }
    if (!create) return std::nullopt;
    Statement insert(m_db, "INSERT INTO keys(parent, name, folded) VALUES(?1, ?2, ?3)");
    insert.Bind(1, parent).Bind(2, ToUtf8(name)).Bind(3, folded);
    if (insert.Step() != SQLITE_DONE) return std::nullopt;
    if (created) *created = true;
    long long id = sqlite3_last_insert_rowid(m_db);
    NoteOwnChange();
    if (m_counter) m_keys.emplace(cacheName, id);
    return id;
}

std::optional<long long> Hive::Key(long long parent, const std::wstring& path, bool create, bool* created) {
    if (created) *created = false;
    if (!Ready()) return std::nullopt;
    DropStaleCache();
    // A path found before is found again at once: programs open the same
    // few keys for every value they read.
    std::wstring pathName = std::to_wstring(parent) + L'\n';
    for (wchar_t c : path) pathName += static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    if (auto cached = m_paths.find(pathName); cached != m_paths.end()) return cached->second;
    long long key = parent;
    for (const std::wstring& part : SplitPath(path)) {
        std::optional<long long> child = Child(key, part, create, created);
        if (!child) return std::nullopt;
        key = *child;
    }
    if (m_counter) m_paths.emplace(std::move(pathName), key);
    return key;
}

bool Hive::DeleteKey(long long parent, const std::wstring& path, LONG& error) {
    std::optional<long long> key = Key(parent, path, false);
    if (!key || *key == kRoot || SplitPath(path).empty()) {
        error = ERROR_FILE_NOT_FOUND;
        return false;
    }
    // Ids of keys below it may come again for other keys.
    m_keys.clear();
    m_paths.clear();
    m_values.clear();
    Statement children(m_db, "SELECT 1 FROM keys WHERE parent=?1 LIMIT 1");
    children.Bind(1, *key);
    if (children.Step() == SQLITE_ROW) {  // as the platform: only a key without subkeys goes
        error = ERROR_ACCESS_DENIED;
        return false;
    }
    Statement values(m_db, "DELETE FROM vals WHERE key=?1");
    values.Bind(1, *key).Step();
    Statement remove(m_db, "DELETE FROM keys WHERE id=?1");
    if (remove.Bind(1, *key).Step() != SQLITE_DONE) {
        error = ERROR_ACCESS_DENIED;
        return false;
    }
    error = ERROR_SUCCESS;
    return true;
}

std::optional<Hive::Value> Hive::Get(long long key, const std::wstring& name) {
    if (!Ready()) return std::nullopt;
    DropStaleCache();
    std::string folded = Folded(name);
    std::string cacheName = CacheName(key, folded);
    if (auto cached = m_values.find(cacheName); cached != m_values.end()) return cached->second;
    std::optional<Value> found = Read(key, folded);
    if (m_counter) m_values.emplace(cacheName, found);
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
    DropStaleCache();
    Statement put(m_db, "INSERT OR REPLACE INTO vals(key, name, folded, type, data) VALUES(?1, ?2, ?3, ?4, ?5)");
    put.Bind(1, key).Bind(2, ToUtf8(name)).Bind(3, Folded(name)).Bind(4, static_cast<long long>(type));
    if (type == REG_SZ || type == REG_EXPAND_SZ) {
        size_t count = data ? size / sizeof(WCHAR) : 0;
        const auto* text = reinterpret_cast<const WCHAR*>(data);
        size_t length = 0;
        while (length < count && text[length] != L'\0') ++length;
        put.Bind(5, ToUtf8(std::wstring_view(text ? text : L"", length)));
    } else if (type == REG_DWORD) {
        if (!data || size != sizeof(DWORD)) return false;
        DWORD number;
        std::memcpy(&number, data, sizeof number);
        put.Bind(5, static_cast<long long>(number));
    } else {
        put.BindBlob(5, data, data ? size : 0);
    }
    m_values.erase(CacheName(key, Folded(name)));
    bool written = put.Step() == SQLITE_DONE;
    NoteOwnChange();
    return written;
}

bool Hive::Delete(long long key, const std::wstring& name) {
    if (!Ready()) return false;
    DropStaleCache();
    Statement remove(m_db, "DELETE FROM vals WHERE key=?1 AND folded=?2");
    remove.Bind(1, key).Bind(2, Folded(name));
    m_values.erase(CacheName(key, Folded(name)));
    bool removed = remove.Step() == SQLITE_DONE && sqlite3_changes(m_db) > 0;
    NoteOwnChange();
    return removed;
}

struct SettingsStore::OpenKey {
    Hive* hive;
    long long key;
};

SettingsStore::SettingsStore(std::filesystem::path folder)
    : m_folder(std::move(folder)),
      m_user(std::make_unique<Hive>(m_folder / "user.db")),
      m_machine(std::make_unique<Hive>(m_folder / "machine.db")) {}

SettingsStore::~SettingsStore() = default;

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
