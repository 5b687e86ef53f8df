#include "shell/PathText.h"

namespace cadhost {

std::vector<std::wstring> PathElements(const std::wstring& path) {
    std::vector<std::wstring> elements;
    std::wstring element;
    for (wchar_t c : path) {
        if (!IsPathSeparator(c)) {
            element += c;
        } else if (!element.empty()) {
            elements.push_back(std::move(element));
            element.clear();
        }
    }
    if (!element.empty()) elements.push_back(std::move(element));
    return elements;
}

std::wstring HostSeparators(const std::wstring& path) {
    if (!path.empty() && IsPathSeparator(path[0])) return path;
    std::wstring out = path;
    for (wchar_t& c : out)
        if (c == L'\\') c = kPathSeparator;
    return out;
}

std::wstring CanonicalPath(const std::wstring& path) {
    bool absolute = !path.empty() && IsPathSeparator(path[0]);
    std::vector<std::wstring> kept;
    for (std::wstring& element : PathElements(path)) {
        if (element == L".") continue;
        if (element == L"..") {
            if (!kept.empty() && kept.back() != L"..") kept.pop_back();
            else if (!absolute) kept.push_back(element);
            continue;
        }
        kept.push_back(std::move(element));
    }
    std::wstring out = absolute ? L"/" : L"";
    for (size_t i = 0; i < kept.size(); ++i) out += (i ? L"/" : L"") + kept[i];
    return out;
}

}  // namespace cadhost
