#include <shlwapi.h>

#include <cwchar>
#include <filesystem>
#include <string>
#include <vector>

#include "core/Utf8.h"
#include "shell/PathText.h"

namespace {

bool Fits(const std::wstring& text) { return text.size() < MAX_PATH; }

bool Copy(const std::wstring& text, LPWSTR destination) {
    if (!Fits(text)) {
        destination[0] = L'\0';
        return false;
    }
    std::wmemcpy(destination, text.c_str(), text.size() + 1);
    return true;
}

}  // namespace

extern "C" {

BOOL WINAPI PathRemoveFileSpecW(LPWSTR path) {
    if (!path || !*path) return FALSE;
    size_t length = std::wcslen(path);
    size_t cut = length;
    while (cut > 0 && !cadhost::IsPathSeparator(path[cut - 1])) --cut;
    if (cut == 0) {
        path[0] = L'\0';
        return TRUE;
    }
    --cut;  // the separator before the last element
    if (cut == 0) {  // the root keeps its separator
        if (length == 1) return FALSE;
        path[0] = L'/';
        path[1] = L'\0';
        return TRUE;
    }
    path[cut] = L'\0';
    return TRUE;
}

LPWSTR WINAPI PathAddBackslashW(LPWSTR path) {
    if (!path) return nullptr;
    size_t length = std::wcslen(path);
    if (length > 0 && !cadhost::IsPathSeparator(path[length - 1])) {
        if (length + 1 >= MAX_PATH) return nullptr;
        path[length++] = cadhost::kPathSeparator;
        path[length] = L'\0';
    }
    return path + length;
}

LPWSTR WINAPI PathCombineW(LPWSTR destination, LPCWSTR folder, LPCWSTR file) {
    if (!destination || (!folder && !file)) return nullptr;
    std::wstring first = folder ? folder : L"", second = cadhost::HostSeparators(file ? file : L"");
    std::wstring joined;
    if (!second.empty() && cadhost::IsPathSeparator(second[0])) joined = second;
    else if (first.empty()) joined = second;
    else if (second.empty()) joined = first;
    else joined = first + L"/" + second;
    return Copy(cadhost::CanonicalPath(joined), destination) ? destination : nullptr;
}

BOOL WINAPI PathFileExistsW(LPCWSTR path) {
    if (!path || !*path) return FALSE;
    std::error_code ec;
    return std::filesystem::exists(std::filesystem::path(cadhost::ToUtf8(path)), ec) ? TRUE : FALSE;
}

BOOL WINAPI PathIsDirectoryW(LPCWSTR path) {
    if (!path || !*path) return FALSE;
    std::error_code ec;
    return std::filesystem::is_directory(std::filesystem::path(cadhost::ToUtf8(path)), ec) ? FILE_ATTRIBUTE_DIRECTORY
                                                                                           : FALSE;
}

LPWSTR WINAPI PathFindFileNameW(LPCWSTR path) {
    if (!path) return nullptr;
    const wchar_t* last = nullptr;
    for (const wchar_t* p = path; *p; ++p)
        if (cadhost::IsPathSeparator(*p)) last = p;
    return const_cast<LPWSTR>(last && last[1] ? last + 1 : (last && last != path ? last : path));
}

BOOL WINAPI PathIsRelativeW(LPCWSTR path) { return !(path && cadhost::IsPathSeparator(path[0])); }

BOOL WINAPI PathRelativePathToW(LPWSTR path, LPCWSTR from, DWORD fromAttributes, LPCWSTR to, DWORD toAttributes) {
    if (!path) return FALSE;
    path[0] = L'\0';
    if (!from || !*from || !to || !*to) return FALSE;
    bool fromAbsolute = cadhost::IsPathSeparator(from[0]), toAbsolute = cadhost::IsPathSeparator(to[0]);
    if (fromAbsolute != toAbsolute) return FALSE;

    std::vector<std::wstring> folder = cadhost::PathElements(from);
    if (!(fromAttributes & FILE_ATTRIBUTE_DIRECTORY) && !folder.empty()) folder.pop_back();
    std::vector<std::wstring> target = cadhost::PathElements(to);
    // A file of the target cannot stand for a folder of the start.
    size_t reach = std::min(folder.size(), (toAttributes & FILE_ATTRIBUTE_DIRECTORY) || target.empty()
                                               ? target.size()
                                               : target.size() - 1);
    size_t common = 0;
    while (common < reach && folder[common] == target[common]) ++common;
    if (common == 0) return FALSE;  // no root in common beyond "/"

    std::wstring relative;
    for (size_t up = common; up < folder.size(); ++up) relative += relative.empty() ? L".." : L"/..";
    if (relative.empty()) relative = L".";
    for (size_t down = common; down < target.size(); ++down) relative += L"/" + target[down];
    return Copy(relative, path) ? TRUE : FALSE;
}
}
