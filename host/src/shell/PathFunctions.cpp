#include <shlwapi.h>

#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

#include "core/Utf8.h"

namespace {

constexpr wchar_t kSeparator = L'/';

bool Fits(const std::wstring& text) { return text.size() < MAX_PATH; }

// Resolves "." and ".." lexically, as the shell's canonicalisation does.
std::wstring Canonical(const std::wstring& path) {
    bool absolute = !path.empty() && path[0] == kSeparator;
    std::vector<std::wstring> parts;
    std::wstring part;
    auto flush = [&] {
        if (part == L"..") {
            if (!parts.empty() && parts.back() != L"..") parts.pop_back();
            else if (!absolute) parts.push_back(part);
        } else if (!part.empty() && part != L".") {
            parts.push_back(part);
        }
        part.clear();
    };
    for (wchar_t c : path) {
        if (c == kSeparator) flush();
        else part += c;
    }
    flush();
    std::wstring out = absolute ? L"/" : L"";
    for (size_t i = 0; i < parts.size(); ++i) out += (i ? L"/" : L"") + parts[i];
    return out;
}

}  // namespace

extern "C" {

BOOL WINAPI PathRemoveFileSpecW(LPWSTR path) {
    if (!path || !*path) return FALSE;
    size_t length = std::wcslen(path);
    const wchar_t* last = std::wcsrchr(path, kSeparator);
    if (!last) {
        path[0] = L'\0';
        return TRUE;
    }
    size_t cut = static_cast<size_t>(last - path);
    if (cut == 0) {  // the root keeps its separator
        if (length == 1) return FALSE;
        path[1] = L'\0';
        return TRUE;
    }
    path[cut] = L'\0';
    return TRUE;
}

LPWSTR WINAPI PathAddBackslashW(LPWSTR path) {
    if (!path) return nullptr;
    size_t length = std::wcslen(path);
    if (length > 0 && path[length - 1] != kSeparator) {
        if (length + 1 >= MAX_PATH) return nullptr;
        path[length++] = kSeparator;
        path[length] = L'\0';
    }
    return path + length;
}

LPWSTR WINAPI PathCombineW(LPWSTR destination, LPCWSTR folder, LPCWSTR file) {
    if (!destination || (!folder && !file)) return nullptr;
    std::wstring first = folder ? folder : L"", second = file ? file : L"";
    std::wstring joined;
    if (!second.empty() && second[0] == kSeparator) joined = second;
    else if (first.empty()) joined = second;
    else if (second.empty()) joined = first;
    else joined = first + (first.back() == kSeparator ? L"" : L"/") + second;
    joined = Canonical(joined);
    if (!Fits(joined)) {
        destination[0] = L'\0';
        return nullptr;
    }
    std::wmemcpy(destination, joined.c_str(), joined.size() + 1);
    return destination;
}

BOOL WINAPI PathFileExistsW(LPCWSTR path) {
    if (!path || !*path) return FALSE;
    std::error_code ec;
    return std::filesystem::exists(std::filesystem::path(cadhost::ToUtf8(path)), ec) ? TRUE : FALSE;
}

LPWSTR WINAPI PathFindFileNameW(LPCWSTR path) {
    if (!path) return nullptr;
    const wchar_t* last = std::wcsrchr(path, kSeparator);
    return const_cast<LPWSTR>(last && last[1] ? last + 1 : (last && last != path ? last : path));
}

BOOL WINAPI PathIsRelativeW(LPCWSTR path) { return !(path && path[0] == kSeparator); }
}
