// The window classes that modules register: a class name per module
// instance, with its class style, window procedure and cursor.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>
#include <utility>

namespace cadhost::ui {

struct WindowClass {
    std::wstring name;
    HINSTANCE instance = nullptr;
    UINT style = 0;
    WNDPROC procedure = nullptr;
    HCURSOR cursor = nullptr;
    HBRUSH background = nullptr;
    ATOM atom = 0;
};

class WindowClasses {
public:
    // The class's atom, or 0 when the instance has a class of that name
    // already or the name is empty.
    ATOM Register(const WNDCLASSW& description);
    bool Unregister(const std::wstring& name, HINSTANCE instance);
    // The class of an instance; with find-any, of whichever instance
    // registered the name last.
    const WindowClass* Find(const std::wstring& name, HINSTANCE instance) const;
    const WindowClass* FindAny(const std::wstring& name) const;

private:
    // Keyed by the upper-cased name, then the instance: names compare
    // without regard to case, as the platform's do.
    std::map<std::pair<std::wstring, HINSTANCE>, WindowClass> m_classes;
    ATOM m_nextAtom = 0xC000;
};

}  // namespace cadhost::ui
