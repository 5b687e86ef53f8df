#include "ui/Desktop.h"

#include <algorithm>
#include <cwctype>

#include "app/Host.h"

namespace cadhost::ui {
namespace {

// How many posted messages one round delivers, so that a window that posts
// to itself on every message cannot hold the host.
constexpr size_t kMaxDeliveredPerRound = 10000;

std::vector<int> Buttons(UINT type) {
    switch (type & MB_TYPEMASK) {
    case MB_OKCANCEL: return {IDOK, IDCANCEL};
    case MB_ABORTRETRYIGNORE: return {IDABORT, IDRETRY, IDIGNORE};
    case MB_YESNOCANCEL: return {IDYES, IDNO, IDCANCEL};
    case MB_YESNO: return {IDYES, IDNO};
    case MB_RETRYCANCEL: return {IDRETRY, IDCANCEL};
    case MB_CANCELTRYCONTINUE: return {IDCANCEL, IDTRYAGAIN, IDCONTINUE};
    default: return {IDOK};
    }
}

}  // namespace

Desktop::Desktop(std::function<void(const std::wstring&)> show) : m_show(std::move(show)) {}

Desktop::~Desktop() {
    // What is left goes without telling modules, which are gone by now:
    // the objects only let go of their windows.
    for (auto& [handle, window] : m_windows) {
        if (window->attached) window->attached->m_hWnd = nullptr;
        if (window->temporary) window->temporary->m_hWnd = nullptr;
        window->attached = nullptr;
    }
}

Desktop* Desktop::Current() {
    Host* host = Host::Current();
    return host ? &host->desktop() : nullptr;
}

Desktop& Desktop::Require() { return Host::Require().desktop(); }

HWND Desktop::NewWindow(WindowKind kind, const std::wstring& className) {
    auto window = std::make_unique<HWND__>();
    window->kind = kind;
    window->className = className;
    HWND handle = window.get();
    m_windows.emplace(handle, std::move(window));
    return handle;
}

void Desktop::SetParent(HWND window, HWND parent) {
    if (!IsWindow(window)) return;
    for (HWND up = parent; IsWindow(up); up = up->parent) {
        if (up == window) return;  // a window cannot go under itself
    }
    if (window->parent) std::erase(window->parent->children, window);
    window->parent = nullptr;
    if (IsWindow(parent)) {
        window->parent = parent;
        window->owner = nullptr;
        parent->children.push_back(window);
    }
}

void Desktop::Destroy(HWND window) {
    if (!IsWindow(window) || window->destroying) return;
    window->destroying = true;
    if (window->attached) window->attached->SendMessage(WM_DESTROY, 0, 0);
    if (!IsWindow(window)) return;

    std::vector<HWND> owned;
    for (auto& [handle, other] : m_windows) {
        if (other->owner == window) owned.push_back(handle);
    }
    for (HWND other : owned) Destroy(other);
    while (!window->children.empty()) {
        HWND child = window->children.back();
        Destroy(child);
        if (!window->children.empty() && window->children.back() == child) window->children.pop_back();
    }
    if (m_focus == window) m_focus = nullptr;
    m_mouse.Forget(window);
    std::erase(m_invalid, window);
    if (window->parent && IsWindow(window->parent)) std::erase(window->parent->children, window);
    window->parent = nullptr;
    for (Posted& posted : m_posted) {
        if (posted.window == window) posted.window = nullptr;
    }

    CWnd* object = window->attached;
    if (object) object->WindowProc(WM_NCDESTROY, 0, 0);  // detaches the object, which may delete itself
    if (IsWindow(window) && window->attached && window->attached == object) {
        object->m_hWnd = nullptr;
        window->attached = nullptr;
    }
    if (window->temporary) window->temporary->m_hWnd = nullptr;
    if (window->ownsFont) m_gdi.DeleteFont(window->font);
    m_windows.erase(window);
}

void Desktop::PushModal(HWND dialog) { m_modal.push_back(dialog); }

void Desktop::PopModal(HWND dialog) {
    auto it = std::find(m_modal.rbegin(), m_modal.rend(), dialog);
    if (it != m_modal.rend()) m_modal.erase(std::next(it).base());
}

HWND Desktop::InnermostModal() const {
    for (auto it = m_modal.rbegin(); it != m_modal.rend(); ++it) {
        if (IsWindow(*it) && !(*it)->ended) return *it;
    }
    return nullptr;
}

void Desktop::Post(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    m_posted.push_back({window, message, wParam, lParam});
}

size_t Desktop::DeliverPosted() {
    size_t delivered = 0;
    while (!m_posted.empty() && delivered < kMaxDeliveredPerRound) {
        Posted posted = m_posted.front();
        m_posted.pop_front();
        if (!IsWindow(posted.window)) continue;
        ::SendMessageW(posted.window, posted.message, posted.wParam, posted.lParam);
        ++delivered;
    }
    PaintInvalid();
    return delivered;
}

void Desktop::Invalidate(HWND window) {
    if (!IsWindow(window) || window->kind != WindowKind::Window) return;
    if (!window->invalid) m_invalid.push_back(window);
    window->invalid = true;
}

size_t Desktop::PaintInvalid() {
    size_t painted = 0;
    std::vector<HWND> waiting;
    waiting.swap(m_invalid);
    for (HWND window : waiting) {
        if (!IsWindow(window) || !window->invalid) continue;
        if (!::IsWindowVisible(window)) {
            m_invalid.push_back(window);  // painted once it shows
            continue;
        }
        ::SendMessageW(window, WM_PAINT, 0, 0);
        if (IsWindow(window) && window->invalid) window->invalid = false;  // a window that does not paint is done all the same
        ++painted;
    }
    return painted;
}

UINT Desktop::RegisterMessage(const std::wstring& name) {
    std::wstring key = name;
    for (wchar_t& c : key) c = static_cast<wchar_t>(std::towupper(c));
    auto it = m_registered.find(key);
    if (it != m_registered.end()) return it->second;
    if (m_nextRegistered > 0xFFFF) return 0;
    UINT number = m_nextRegistered++;
    m_registered.emplace(key, number);
    return number;
}

void Desktop::Show(const std::wstring& text) {
    if (m_show) m_show(text);
}

int Desktop::ShowMessageBox(const std::wstring& caption, const std::wstring& text, UINT type) {
    MessageBoxRequest request;
    request.caption = caption;
    request.text = text;
    request.type = type;
    request.buttons = Buttons(type);
    size_t defaultIndex = (type & MB_DEFMASK) >> 8;
    request.defaultButton = request.buttons[defaultIndex < request.buttons.size() ? defaultIndex : 0];
    UiDriver& answerer = driver();
    // A box shows no line break at the end of its text, as the system's
    // texts have one.
    std::wstring shownText = text;
    while (!shownText.empty() && (shownText.back() == L'\n' || shownText.back() == L'\r')) shownText.pop_back();
    if (!answerer.Abandoning()) Show(L"[" + caption + L"] " + shownText);
    ShownMessage shown{caption, shownText, type, request.defaultButton};
    m_lastMessage = shown;
    ++m_messageCount;
    int answer = answerer.AnswerMessageBox(request);
    if (std::find(request.buttons.begin(), request.buttons.end(), answer) == request.buttons.end())
        answer = request.defaultButton;
    m_lastMessage->answer = answer;
    return answer;
}

}  // namespace cadhost::ui
