// Script commands of the user's settings store: a value put there before
// the module reads it, and a value shown as the module left it. A section
// is a key path below HKEY_CURRENT_USER, its keys separated by backslashes
// ("software\\Norvo\\NorvoTest\\Quillmark").
#include <winreg.h>

#include <cstdint>
#include <cstring>
#include <vector>

#include "ScriptRunner.h"
#include "ui/ControlView.h"

namespace cadhost::script {
namespace {

// An unquoted whole number that fits a 32-bit value.
bool ReadWholeNumber(const Word& word, DWORD& value) {
    if (word.quoted || word.text.empty()) return false;
    size_t start = word.text[0] == L'-' ? 1 : 0;
    if (start == word.text.size() || word.text.size() - start > 10) return false;
    for (size_t i = start; i < word.text.size(); ++i)
        if (word.text[i] < L'0' || word.text[i] > L'9') return false;
    long long number = std::stoll(word.text);
    if (number < INT32_MIN || number > UINT32_MAX) return false;
    value = static_cast<DWORD>(number);
    return true;
}

class Key {
public:
    Key(const std::wstring& section, bool create) {
        LONG result = create ? RegCreateKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS,
                                               nullptr, &m_key, nullptr)
                             : RegOpenKeyExW(HKEY_CURRENT_USER, section.c_str(), 0, KEY_READ, &m_key);
        if (result != ERROR_SUCCESS) m_key = nullptr;
    }
    ~Key() {
        if (m_key) RegCloseKey(m_key);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    HKEY get() const { return m_key; }

private:
    HKEY m_key = nullptr;
};

}  // namespace

void DefineSettingCommands(ScriptRunner& runner) {
    // A number (unquoted) is stored as an integer, anything else as a string.
    runner.Define(L"setting", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 3, 3, L"setting SECTION NAME VALUE");
        Key key(a[0].text, true);
        if (!key.get()) throw ScriptError(L"the settings store has no place for the section " + ui::Quoted(a[0].text));
        DWORD number = 0;
        LONG result;
        if (ReadWholeNumber(a[2], number)) {
            result = RegSetValueExW(key.get(), a[1].text.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                                    sizeof number);
        } else {
            const std::wstring& text = a[2].text;
            result = RegSetValueExW(key.get(), a[1].text.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                    static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
        }
        if (result != ERROR_SUCCESS) throw ScriptError(L"the settings store refused the value " + ui::Quoted(a[1].text));
    });
    // NAME = "text", NAME = 5 for an integer, or NAME is not set.
    runner.DefinePrint(L"setting", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"print setting SECTION NAME");
        Key key(a[0].text, false);
        DWORD type = 0, size = 0;
        if (!key.get() || RegQueryValueExW(key.get(), a[1].text.c_str(), nullptr, &type, nullptr, &size) != ERROR_SUCCESS) {
            r.Show(a[1].text + L" is not set");
            return;
        }
        std::vector<BYTE> data(size + sizeof(wchar_t), 0);
        RegQueryValueExW(key.get(), a[1].text.c_str(), nullptr, &type, data.data(), &size);
        if (type == REG_DWORD && size == sizeof(DWORD)) {
            DWORD number = 0;
            std::memcpy(&number, data.data(), sizeof number);
            r.Show(a[1].text + L" = " + std::to_wstring(static_cast<int32_t>(number)));
        } else if (type == REG_SZ) {
            r.Show(a[1].text + L" = " + ui::Quoted(reinterpret_cast<const wchar_t*>(data.data())));
        } else {
            r.Show(a[1].text + L" holds " + std::to_wstring(size) + L" bytes of type " + std::to_wstring(type));
        }
    });
}

}  // namespace cadhost::script
