// Script commands of the host itself: drawings, modules, commands, system
// variables and the menu bar.
#include "ScriptRunner.h"

#include <tchar.h>

#include <cstdint>
#include <cstring>
#include <optional>

namespace cadhost::script {
namespace {

std::wstring Quote(const std::wstring& text) {
    std::wstring out = L"\"";
    for (wchar_t c : text) {
        if (c == L'\n') out += L"\\n";
        else if (c == L'"' || c == L'\\') out += std::wstring(1, L'\\') + c;
        else out += c;
    }
    return out + L"\"";
}

// The user's settings store, the hive below HKEY_CURRENT_USER.
Hive& UserSettings(ScriptRunner& r) { return *r.host().settings().HiveOf(HKEY_CURRENT_USER); }

// A value as the script wrote it: a bare whole number is an integer, any
// other word (or a quoted one, digits or not) a string.
std::optional<DWORD> WholeNumber(const Word& word) {
    if (word.quoted || word.text.empty()) return std::nullopt;
    size_t start = word.text[0] == L'-' ? 1 : 0;
    if (start == word.text.size() || word.text.size() - start > 10) return std::nullopt;
    for (size_t i = start; i < word.text.size(); ++i)
        if (word.text[i] < L'0' || word.text[i] > L'9') return std::nullopt;
    long long value = std::stoll(word.text);
    if (value < INT32_MIN || value > UINT32_MAX) return std::nullopt;
    return static_cast<DWORD>(value);
}

std::wstring DescribeSetting(const Hive::Value& value) {
    if (value.type == REG_DWORD && value.data.size() == sizeof(DWORD)) {
        DWORD number;
        std::memcpy(&number, value.data.data(), sizeof number);
        return std::to_wstring(static_cast<int32_t>(number));
    }
    if (value.type == REG_SZ || value.type == REG_EXPAND_SZ) {
        std::wstring text(value.data.size() / sizeof(WCHAR), L'\0');
        std::memcpy(text.data(), value.data.data(), text.size() * sizeof(WCHAR));
        while (!text.empty() && text.back() == L'\0') text.pop_back();
        return Quote(text);
    }
    return L"(" + std::to_wstring(value.data.size()) + L" bytes of type " + std::to_wstring(value.type) + L")";
}

}  // namespace

void DefineHostCommands(ScriptRunner& runner) {
    runner.Define(L"new", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"new");
        r.RequireNoDialog(L"new");
        r.host().NewDrawing();
    });
    runner.Define(L"appload", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"appload PATH");
        r.host().linker().loadModule(a[0].text.c_str(), true);
    });
    runner.Define(L"arxunload", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"arxunload NAME");
        r.RequireNoDialog(L"arxunload");
        r.host().linker().unloadModule(a[0].text.c_str());
    });
    runner.Define(L"menus", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"menus N");
        if (!r.host().linker().Apps().empty())
            throw ScriptError(L"menus must come before any module loads (run cadhost with --no-module)");
        int count = ScriptRunner::ParseInteger(a[0], L"the number of menus");
        if (count < 0 || count > 100) throw ScriptError(L"the number of menus must be between 0 and 100");
        r.host().menus().SetHostMenus(count);
    });
    runner.Define(L"command", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"command NAME");
        r.host().processor().RunCommand(a[0].text);
    });
    runner.Define(L"setvar", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"setvar NAME VALUE");
        std::wstring reason;
        if (r.host().variables().SetFromText(a[0].text, a[1].text, reason) != RTNORM) throw ScriptError(reason);
    });

    // A value in the user's settings store, at a key path below
    // HKEY_CURRENT_USER (Software\Norvo\...).
    runner.Define(L"setting", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 3, 3, L"setting SECTION NAME VALUE");
        Hive& hive = UserSettings(r);
        std::optional<long long> key = hive.Key(Hive::kRoot, a[0].text, true);
        bool stored = false;
        if (key) {
            if (std::optional<DWORD> number = WholeNumber(a[2])) {
                stored = hive.Set(*key, a[1].text, REG_DWORD, reinterpret_cast<const BYTE*>(&*number), sizeof *number);
            } else {
                const std::wstring& text = a[2].text;
                stored = hive.Set(*key, a[1].text, REG_SZ, reinterpret_cast<const BYTE*>(text.c_str()),
                                  static_cast<DWORD>((text.size() + 1) * sizeof(WCHAR)));
            }
        }
        if (!stored) throw ScriptError(hive.Problem().empty() ? L"the setting cannot be stored" : hive.Problem());
    });

    runner.DefinePrint(L"setting", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 2, 2, L"print setting SECTION NAME");
        Hive& hive = UserSettings(r);
        if (!hive.Usable()) throw ScriptError(hive.Problem());
        std::optional<long long> key = hive.Key(Hive::kRoot, a[0].text, false);
        std::optional<Hive::Value> value = key ? hive.Get(*key, a[1].text) : std::nullopt;
        r.Show(a[0].text + L" " + a[1].text + (value ? L" = " + DescribeSetting(*value) : std::wstring(L" is not set")));
    });
    runner.DefinePrint(L"var", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"print var NAME");
        std::wstring text = r.host().variables().Describe(a[0].text);
        if (text.empty()) throw ScriptError(L"unknown system variable " + a[0].text);
        r.Show(text);
    });
    runner.DefinePrint(L"commands", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 1, L"print commands [GROUP]");
        std::wstring text;
        for (const CommandStack::Command& c : r.host().commands().Commands()) {
            if (!a.empty() && _wcsicmp(c.group.c_str(), a[0].text.c_str()) != 0) continue;
            text += c.group + L"  " + c.global + L"  " + c.local + L"\n";
        }
        r.Show(text.empty() ? L"(no commands)" : text);
    });
    runner.DefinePrint(L"menus", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 0, 0, L"print menus");
        r.Show(r.host().menus().Describe());
    });

    runner.DefineExpect(L"printed", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"expect printed \"TEXT\"");
        const std::wstring& seen = r.host().commandLine().SinceMark();
        if (seen.find(a[0].text) == std::wstring::npos)
            throw ExpectationFailed(L"the command line did not show " + Quote(a[0].text) + L"; it showed " +
                                    Quote(seen));
    });
    runner.DefineExpect(L"launched", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"expect launched \"TEXT\"");
        const std::optional<ShellTarget>& last = r.host().shell().Last();
        if (!last) throw ExpectationFailed(L"nothing was handed to the shell, so not " + Quote(a[0].text));
        if (last->target != a[0].text)
            throw ExpectationFailed(L"the last target handed to the shell is " + Quote(last->target) + L", not " +
                                    Quote(a[0].text));
    });
    runner.DefineExpect(L"queued", [](ScriptRunner& r, const Arguments& a) {
        ScriptRunner::RequireCount(a, 1, 1, L"expect queued \"TEXT\"");
        const std::wstring& seen = r.host().processor().LastQueued();
        if (seen != a[0].text)
            throw ExpectationFailed(L"the last queued expression is " +
                                    (seen.empty() ? std::wstring(L"none") : Quote(seen)) + L", not " +
                                    Quote(a[0].text));
    });
}

}  // namespace cadhost::script
