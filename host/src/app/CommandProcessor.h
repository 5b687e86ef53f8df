// The command processor: runs commands by name, holds the input that
// commands read, and runs the expressions queued for its next idle moment.
#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <string>

#include "app/Lisp.h"

namespace cadhost {

class CommandStack;
class DocumentManager;

class CommandProcessor {
public:
    CommandProcessor(CommandStack& commands, DocumentManager& documents,
                     std::function<void(const std::wstring&)> print);

    // Runs a command as the user would type it; unknown names are reported.
    bool RunCommand(const std::wstring& typed);
    bool Busy() const { return m_depth > 0; }

    // Input for the command that runs next, in order.
    void PushInput(std::wstring text) { m_input.push_back(std::move(text)); }
    std::optional<std::wstring> NextInput();

    void Queue(std::wstring expression);
    const std::wstring& LastQueued() const { return m_lastQueued; }
    // How many expressions were queued in this session.
    size_t QueuedCount() const { return m_queuedCount; }
    // The processor has come to rest: run what was queued, in order.
    void RunIdle();

    Lisp& lisp() { return m_lisp; }

private:
    CommandStack& m_commands;
    DocumentManager& m_documents;
    std::function<void(const std::wstring&)> m_print;
    Lisp m_lisp;
    std::deque<std::wstring> m_queue;
    std::deque<std::wstring> m_input;
    std::wstring m_lastQueued;
    int m_depth = 0;
    size_t m_queuedCount = 0;
};

}  // namespace cadhost
