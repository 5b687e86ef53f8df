#include "system/SystemVersion.h"

#include <sys/utsname.h>

#include <cctype>
#include <cwchar>
#include <fstream>
#include <sstream>

#include "core/Utf8.h"

namespace cadhost {
namespace {

// Where the system describes itself; the second is the fallback that the
// format names.
const char* const kOsReleaseFiles[] = {"/etc/os-release", "/usr/lib/os-release"};

std::string ReadFile(const char* path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// A shell-style value: in double or single quotes, or bare; a backslash
// takes the next character as it is (not inside single quotes).
std::string Unquote(std::string_view value) {
    std::string out;
    char quote = 0;
    for (size_t i = 0; i < value.size(); ++i) {
        char c = value[i];
        if (quote == '\'') {
            if (c == '\'') quote = 0;
            else out += c;
        } else if (c == '\\' && i + 1 < value.size()) {
            out += value[++i];
        } else if (quote == '"') {
            if (c == '"') quote = 0;
            else out += c;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else {
            out += c;
        }
    }
    return out;
}

}  // namespace

std::wstring PrettyNameOf(std::string_view osRelease) {
    std::string_view rest = osRelease;
    std::string found;
    while (!rest.empty()) {
        size_t end = rest.find('\n');
        std::string_view line = rest.substr(0, end);
        rest = end == std::string_view::npos ? std::string_view() : rest.substr(end + 1);
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.front()))) line.remove_prefix(1);
        while (!line.empty() && std::isspace(static_cast<unsigned char>(line.back()))) line.remove_suffix(1);
        constexpr std::string_view key = "PRETTY_NAME=";
        if (line.substr(0, key.size()) == key) found = Unquote(line.substr(key.size()));  // the last one counts
    }
    return FromUtf8(found);
}

void KernelNumbersOf(std::string_view release, DWORD& major, DWORD& minor, DWORD& patch) {
    DWORD* parts[] = {&major, &minor, &patch};
    for (DWORD* part : parts) *part = 0;
    size_t at = 0;
    for (DWORD* part : parts) {
        if (at >= release.size() || !std::isdigit(static_cast<unsigned char>(release[at]))) return;
        unsigned long long value = 0;
        while (at < release.size() && std::isdigit(static_cast<unsigned char>(release[at]))) {
            value = value * 10 + static_cast<unsigned>(release[at] - '0');
            if (value > 0xFFFFFFFFull) value = 0xFFFFFFFFull;
            ++at;
        }
        *part = static_cast<DWORD>(value);
        if (at >= release.size() || release[at] != '.') return;
        ++at;
    }
}

SystemVersion RunningSystemVersion() {
    SystemVersion version;
    OSVERSIONINFOEXW& record = version.record;
    record.dwOSVersionInfoSize = sizeof(OSVERSIONINFOEXW);
    record.dwPlatformId = VER_PLATFORM_WIN32_NT;
    record.wProductType = VER_NT_WORKSTATION;
    utsname system{};
    if (uname(&system) == 0)
        KernelNumbersOf(system.release, record.dwMajorVersion, record.dwMinorVersion, record.dwBuildNumber);
    std::wstring name;
    for (const char* file : kOsReleaseFiles) {
        name = PrettyNameOf(ReadFile(file));
        if (!name.empty()) break;
    }
    if (name.empty()) name = FromUtf8(system.sysname[0] ? system.sysname : "Linux");
    std::wcsncpy(record.szCSDVersion, name.c_str(), 127);
    record.szCSDVersion[127] = L'\0';
    return version;
}

}  // namespace cadhost
