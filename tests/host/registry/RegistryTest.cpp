#include <winreg.h>

#include <chrono>
#include <cstring>
#include <thread>

#include "registry/SettingsStore.h"

#include "support/TestHost.h"

namespace {

class RegistryTest : public qmtest::HostTest {};

DWORD ReadDword(HKEY key, const wchar_t* name, LONG* status = nullptr) {
    DWORD value = 0, size = sizeof value, type = 0;
    LONG r = RegQueryValueExW(key, name, nullptr, &type, reinterpret_cast<LPBYTE>(&value), &size);
    if (status) *status = r;
    return value;
}

TEST_F(RegistryTest, HivesStartWithTheirSoftwareBranch) {
    HKEY key = nullptr;
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"software", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(key);
    ASSERT_EQ(RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE", 0, KEY_READ, &key), ERROR_SUCCESS);
    RegCloseKey(key);
    EXPECT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Missing", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(key, nullptr);
}

TEST_F(RegistryTest, ValuesKeepTypeAndSurviveARestart) {
    HKEY key = nullptr;
    DWORD disposition = 0;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\Norvo\\NorvoTest\\Quillmark", 0, nullptr, 0, KEY_ALL_ACCESS,
                              nullptr, &key, &disposition),
              ERROR_SUCCESS);
    EXPECT_EQ(disposition, static_cast<DWORD>(REG_CREATED_NEW_KEY));
    DWORD one = 1;
    ASSERT_EQ(RegSetValueExW(key, L"BlockSource", 0, REG_DWORD, reinterpret_cast<BYTE*>(&one), sizeof one),
              ERROR_SUCCESS);
    const wchar_t path[] = L"/data/b\u00FCcher.xls";
    ASSERT_EQ(RegSetValueExW(key, L"File1", 0, REG_SZ, reinterpret_cast<const BYTE*>(path), sizeof path), ERROR_SUCCESS);
    const wchar_t empty[] = L"";
    ASSERT_EQ(RegSetValueExW(key, L"File2", 0, REG_SZ, reinterpret_cast<const BYTE*>(empty), sizeof empty),
              ERROR_SUCCESS);
    RegCloseKey(key);

    RestartHost();
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\norvo\\NORVOTEST\\quillmark", 0, KEY_READ, &key),
              ERROR_SUCCESS);
    EXPECT_EQ(ReadDword(key, L"blocksource"), 1u);

    DWORD type = 0, size = 0;
    ASSERT_EQ(RegQueryValueExW(key, L"File1", nullptr, &type, nullptr, &size), ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_SZ));
    EXPECT_EQ(size, sizeof path);
    wchar_t small[4];
    DWORD smallSize = sizeof small;
    EXPECT_EQ(RegQueryValueExW(key, L"File1", nullptr, &type, reinterpret_cast<LPBYTE>(small), &smallSize),
              ERROR_MORE_DATA);
    EXPECT_EQ(smallSize, sizeof path);
    wchar_t buffer[64];
    size = sizeof buffer;
    ASSERT_EQ(RegQueryValueExW(key, L"File1", nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &size), ERROR_SUCCESS);
    EXPECT_STREQ(buffer, path);
    size = sizeof buffer;
    ASSERT_EQ(RegQueryValueExW(key, L"File2", nullptr, &type, reinterpret_cast<LPBYTE>(buffer), &size), ERROR_SUCCESS);
    EXPECT_STREQ(buffer, L"");  // an empty string is a value, not its absence

    EXPECT_EQ(RegDeleteValueW(key, L"File2"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteValueW(key, L"File2"), ERROR_FILE_NOT_FOUND);
    LONG status = 0;
    ReadDword(key, L"Nothing", &status);
    EXPECT_EQ(status, ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
}

TEST_F(RegistryTest, OnlyKeysWithoutSubkeysAreDeleted) {
    HKEY key = nullptr;
    ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Software\\A\\B", 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                              nullptr),
              ERROR_SUCCESS);
    RegCloseKey(key);
    ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_ALL_ACCESS, &key), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(key, L"A"), ERROR_ACCESS_DENIED);
    EXPECT_EQ(RegDeleteKeyW(key, L"A\\B"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(key, L"A"), ERROR_SUCCESS);
    EXPECT_EQ(RegDeleteKeyW(key, L"A"), ERROR_FILE_NOT_FOUND);
    RegCloseKey(key);
}

TEST_F(RegistryTest, BadHandlesAreRefused) {
    HKEY bogus = reinterpret_cast<HKEY>(static_cast<uintptr_t>(0x1234));
    DWORD size = 0;
    EXPECT_EQ(RegQueryValueExW(bogus, L"x", nullptr, nullptr, nullptr, &size), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegCloseKey(bogus), ERROR_INVALID_HANDLE);
    HKEY key = nullptr;
    EXPECT_EQ(RegOpenKeyExW(HKEY_CLASSES_ROOT, L"x", 0, KEY_READ, &key), ERROR_INVALID_HANDLE);
}

// Two stores over one folder stand for two programs sharing the user's
// settings: what one writes or deletes the other reads a millisecond later
// at the latest, though it keeps what it read in memory; its own writes it
// reads at once.
TEST(SettingsStoreTest, AnotherProgramsChangesAreSeenAtTheNextRead) {
    auto later = [] { std::this_thread::sleep_for(std::chrono::milliseconds(2)); };
    qmtest::TempFolder folder;
    cadhost::SettingsStore first(folder.path()), second(folder.path());
    cadhost::Hive& a = *first.HiveOf(HKEY_CURRENT_USER);
    cadhost::Hive& b = *second.HiveOf(HKEY_CURRENT_USER);
    auto number = [](std::optional<cadhost::Hive::Value> value) -> long long {
        if (!value) return -1;
        DWORD n = 0;
        std::memcpy(&n, value->data.data(), sizeof n);
        return n;
    };
    auto put = [](cadhost::Hive& hive, long long key, const wchar_t* name, DWORD n) {
        return hive.Set(key, name, REG_DWORD, reinterpret_cast<const BYTE*>(&n), sizeof n);
    };
    std::optional<long long> keyA = a.Key(cadhost::Hive::kRoot, L"Software\\Norvo\\Q", true);
    ASSERT_TRUE(keyA);
    std::optional<long long> keyB = b.Key(cadhost::Hive::kRoot, L"software\\norvo\\q", false);
    ASSERT_TRUE(keyB);
    EXPECT_EQ(*keyA, *keyB);
    EXPECT_EQ(number(b.Get(*keyB, L"Circle")), -1);  // read as missing, and kept so
    ASSERT_TRUE(put(a, *keyA, L"Circle", 0));
    EXPECT_EQ(number(a.Get(*keyA, L"Circle")), 0);
    later();
    EXPECT_EQ(number(b.Get(*keyB, L"circle")), 0);
    for (DWORD n : {5u, 6u, 7u}) {
        ASSERT_TRUE(put(b, *keyB, L"Circle", n));
        EXPECT_EQ(number(b.Get(*keyB, L"CIRCLE")), n);
        later();
        EXPECT_EQ(number(a.Get(*keyA, L"CIRCLE")), n);
    }
    ASSERT_TRUE(a.Delete(*keyA, L"Circle"));
    later();
    EXPECT_EQ(number(b.Get(*keyB, L"Circle")), -1);
    // A key deleted and made again by one is found anew by the other.
    LONG error = 0;
    ASSERT_TRUE(b.DeleteKey(cadhost::Hive::kRoot, L"Software\\Norvo\\Q", error));
    later();
    EXPECT_FALSE(a.Key(cadhost::Hive::kRoot, L"Software\\Norvo\\Q", false));
    std::optional<long long> again = b.Key(cadhost::Hive::kRoot, L"Software\\Norvo\\Q", true);
    ASSERT_TRUE(again);
    ASSERT_TRUE(put(b, *again, L"Arc", 3));
    later();
    std::optional<long long> seen = a.Key(cadhost::Hive::kRoot, L"Software\\Norvo\\Q", false);
    ASSERT_TRUE(seen);
    EXPECT_EQ(*seen, *again);
    EXPECT_EQ(number(a.Get(*seen, L"Arc")), 3);
}

}  // namespace
