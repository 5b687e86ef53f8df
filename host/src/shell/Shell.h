// The desktop's shell as the host offers it: each target handed to it is
// shown to the user and kept as the last one; when the host launches, the
// target also goes to the desktop's opener (xdg-open), as one argument of
// a program started without a shell, so that quotes, semicolons, "$()" or
// a line break in it reach the opener as they stand.
#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cadhost {

struct ShellTarget {
    std::wstring verb;
    std::wstring target;
    std::wstring parameters;
    std::wstring directory;
    int show = 0;
};

class Shell {
public:
    explicit Shell(std::function<void(const std::wstring&)> show) : m_show(std::move(show)) {}
    ~Shell();
    Shell(const Shell&) = delete;
    Shell& operator=(const Shell&) = delete;

    // Whether targets are opened on the desktop, and with which program.
    void SetLaunching(bool launching) { m_launching = launching; }
    bool Launching() const { return m_launching; }
    void SetOpener(std::string program) { m_opener = std::move(program); }

    // Shows and keeps the target, and opens it when launching. Answers
    // empty when it was handed on, else why not.
    std::wstring Open(const ShellTarget& target);
    const std::optional<ShellTarget>& Last() const { return m_last; }
    size_t Count() const { return m_count; }

    // Waits until every opener started so far has ended, at most for the
    // given milliseconds; answers whether all have.
    bool WaitForOpeners(int milliseconds);

private:
    std::wstring Spawn(const std::wstring& target);
    void Reap(bool wait);

    std::function<void(const std::wstring&)> m_show;
    bool m_launching = false;
    std::string m_opener = "xdg-open";
    std::optional<ShellTarget> m_last;
    size_t m_count = 0;
    std::vector<pid_t> m_running;
};

}  // namespace cadhost
