// Script commands of the user's settings store: a value stored before the
// module reads it, and a value shown after the module wrote it. SECTION is
// a key path below HKEY_CURRENT_USER\Software, as a module's sections are
// (Norvo\NorvoTest\Quillmark\AreaField). An unquoted whole number is stored
// as an integer, any other value as a text.
#include <winreg.h>

#include <cstring>
#include <cwctype>
#include <string>
#include <vector>

#include "ScriptRunner.h"

namespace cadhost::script {
namespace {

std::wstring KeyPath(const Word& section) {
    if (section.text.empty()) throw ScriptError(L"a setting needs a section");
    return L"Software\\" + section.text;
}

// A number, with or without a sign, is stored as an integer.
bool IsNumber(const std::wstring& text) {
    size_t i = !text.empty() && (text[0] == L'-' || text[0] == L'+') ? 1 : 0;
    if (i >= text.size() || text.size() - i > 9) return false;
    for (; i < text.size(); ++i)
        if (!std::iswdigit(text[i])) return false;
    return true;
}

std::wstring Quote(const std::wstring& text) {
    std::wstring out = L"\"";
    for (wchar_t c : text) {
        if (c == L'\n') out += L"\\n";
        else if (c == L'"' || c == L'\\') out += std::wstring(1, L'\\') + c;
        else out += c;
    }
    return out + L"\"";
}

}  // namespace

void DefineSettingCommands(ScriptRunner& runner) {
    runner.Define(L"setting", [](ScriptRunner&, const Arguments& a) {
        ScriptRunner::RequireCount(a, 3, 3, L"setting SECTION NAME VALUE");
        HKEY key = nullptr;
        if (RegCreateKeyExW(HKEY_CURRENT_USER, KeyPath(a[0]).c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key,
                            nullptr) != ERROR_SUCCESS)
            throw ScriptError(L"the settings store cannot be written");
        LONG result;
        if (!a[2].quoted && IsNumber(a[2].text)) {
            DWORD number = static_cast<DWORD>(std::stol(a[2].text));
            result = RegSetValueExW(key, a[1].text.c_str(), 0, REG_DWORD, reinterpret_cast<const BYTE*>(&number),
                                    sizeof number);
        } else {
            result = RegSetValueExW(key, a[1].text.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE*>(a[2].text.c_str()),
                                    static_cast<DWORD>((a[2].text.size() + 1) * sizeof(wchar_t)));
        }
        RegCloseKey(key);
        if (result != ERROR_SUCCESS) throw ScriptError(L"the settings store cannot be written");
    });
    runner.DefinePrint(L"setting", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"print setting SECTION NAME");
        std::wstring shown = a[0].text + L" " + a[1].text + L" = ";
        HKEY key = nullptr;
        if (RegOpenKeyExW(HKEY_CURRENT_USER, KeyPath(a[0]).c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) {
            r.Show(shown + L"(not set)");
            return;
        }
        DWORD type = 0, size = 0;
        std::wstring text = L"(not set)";
        if (RegQueryValueExW(key, a[1].text.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS) {
            std::vector<BYTE> data(size + sizeof(wchar_t), 0);
            if (RegQueryValueExW(key, a[1].text.c_str(), nullptr, &type, data.data(), &size) == ERROR_SUCCESS) {
                if (type == REG_DWORD && size == sizeof(DWORD)) {
                    DWORD number = 0;
                    std::memcpy(&number, data.data(), sizeof number);
                    text = std::to_wstring(static_cast<int>(number));
                } else if (type == REG_SZ || type == REG_EXPAND_SZ) {
                    text = Quote(reinterpret_cast<const wchar_t*>(data.data()));
                } else {
                    text = L"(" + std::to_wstring(size) + L" bytes)";
                }
            }
        }
        RegCloseKey(key);
        r.Show(shown + text);
    });
}

}  // namespace cadhost::script
