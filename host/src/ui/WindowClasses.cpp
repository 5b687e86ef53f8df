#include "ui/WindowClasses.h"

#include <cwctype>

#include "ui/Desktop.h"

namespace cadhost::ui {
namespace {

std::wstring Key(const std::wstring& name) {
    std::wstring key = name;
    for (wchar_t& c : key) c = static_cast<wchar_t>(std::towupper(c));
    return key;
}

}  // namespace

ATOM WindowClasses::Register(const WNDCLASSW& description) {
    if (!description.lpszClassName || !*description.lpszClassName || m_nextAtom == 0xFFFF) return 0;
    std::wstring name = description.lpszClassName;
    auto key = std::make_pair(Key(name), description.hInstance);
    if (m_classes.count(key)) return 0;
    WindowClass added{name,
                      description.hInstance,
                      description.style,
                      description.lpfnWndProc,
                      description.hCursor,
                      description.hbrBackground,
                      m_nextAtom++};
    m_classes.emplace(key, added);
    return added.atom;
}

bool WindowClasses::Unregister(const std::wstring& name, HINSTANCE instance) {
    return m_classes.erase(std::make_pair(Key(name), instance)) > 0;
}

const WindowClass* WindowClasses::Find(const std::wstring& name, HINSTANCE instance) const {
    auto it = m_classes.find(std::make_pair(Key(name), instance));
    return it == m_classes.end() ? nullptr : &it->second;
}

const WindowClass* WindowClasses::FindAny(const std::wstring& name) const {
    const WindowClass* found = nullptr;
    std::wstring key = Key(name);
    for (auto it = m_classes.lower_bound(std::make_pair(key, HINSTANCE{})); it != m_classes.end() && it->first.first == key;
         ++it) {
        if (!found || it->second.atom > found->atom) found = &it->second;
    }
    return found;
}

}  // namespace cadhost::ui

using cadhost::ui::Desktop;

extern "C" {

ATOM WINAPI RegisterClassW(const WNDCLASSW* windowClass) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !windowClass) return 0;
    return desktop->classes().Register(*windowClass);
}

BOOL WINAPI GetClassInfoW(HINSTANCE instance, LPCWSTR className, LPWNDCLASSW windowClass) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !className || !windowClass) return FALSE;
    const cadhost::ui::WindowClass* found = desktop->classes().Find(className, instance);
    if (!found) return FALSE;
    *windowClass = WNDCLASSW{};
    windowClass->style = found->style;
    windowClass->lpfnWndProc = found->procedure;
    windowClass->hInstance = found->instance;
    windowClass->hCursor = found->cursor;
    windowClass->hbrBackground = found->background;
    windowClass->lpszClassName = className;
    return TRUE;
}

BOOL WINAPI UnregisterClassW(LPCWSTR className, HINSTANCE instance) {
    Desktop* desktop = Desktop::Current();
    return desktop && className && desktop->classes().Unregister(className, instance);
}

int WINAPI GetClassNameW(HWND window, LPWSTR buffer, int bufferMax) {
    Desktop* desktop = Desktop::Current();
    if (!desktop || !desktop->IsWindow(window) || !buffer || bufferMax <= 0) return 0;
    size_t n = std::min<size_t>(window->className.size(), static_cast<size_t>(bufferMax) - 1);
    window->className.copy(buffer, n);
    buffer[n] = L'\0';
    return static_cast<int>(n);
}
}
