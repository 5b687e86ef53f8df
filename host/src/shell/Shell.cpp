#include "shell/Shell.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "core/Utf8.h"
#include "ui/ControlView.h"

extern char** environ;

namespace cadhost {

Shell::~Shell() { Reap(false); }

std::wstring Shell::Open(const ShellTarget& target) {
    m_last = target;
    ++m_count;
    if (m_show) {
        std::wstring line = L"[shell] " + (target.verb.empty() ? std::wstring(L"open") : target.verb) + L" " +
                            ui::Quoted(target.target);
        if (!target.parameters.empty()) line += L" " + ui::Quoted(target.parameters);
        line += L", show " + std::to_wstring(target.show);
        m_show(line);
    }
    if (!m_launching) return L"";
    return Spawn(target.target);
}

std::wstring Shell::Spawn(const std::wstring& target) {
    Reap(false);
    std::string argument = ToUtf8(target);
    if (argument.find('\0') != std::string::npos) return L"the target holds a zero character";
    std::vector<char*> argv{m_opener.data(), argument.data(), nullptr};
    pid_t child = 0;
    int error = posix_spawnp(&child, m_opener.c_str(), nullptr, nullptr, argv.data(), environ);
    if (error != 0) return FromUtf8(m_opener + ": " + std::strerror(error));
    m_running.push_back(child);
    return L"";
}

void Shell::Reap(bool wait) {
    std::erase_if(m_running, [wait](pid_t child) {
        int status = 0;
        pid_t done = waitpid(child, &status, wait ? 0 : WNOHANG);
        return done == child || (done < 0 && errno == ECHILD);
    });
}

bool Shell::WaitForOpeners(int milliseconds) {
    auto until = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    while (true) {
        Reap(false);
        if (m_running.empty()) return true;
        if (std::chrono::steady_clock::now() >= until) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

}  // namespace cadhost
