#include "app/CommandProcessor.h"

#include <cwctype>
#include <exception>

#include "app/CommandStack.h"
#include "app/DocumentManager.h"
#include "core/Utf8.h"

namespace cadhost {

CommandProcessor::CommandProcessor(CommandStack& commands, DocumentManager& documents,
                                   std::function<void(const std::wstring&)> print)
    : m_commands(commands), m_documents(documents), m_print(std::move(print)) {
    m_lisp.Define(L"command", [this](const std::vector<LispValue>& arguments) {
        if (arguments.empty()) return LispValue::Nil();
        for (size_t i = 1; i < arguments.size(); ++i) {
            const LispValue& a = arguments[i];
            PushInput(a.kind == LispValue::Kind::String ? a.text : a.Echo());
        }
        RunCommand(arguments[0].kind == LispValue::Kind::String ? arguments[0].text : arguments[0].Echo());
        m_input.clear();  // what the command did not read is dropped with it
        return LispValue::Nil();
    });
    m_lisp.Define(L"princ", [this](const std::vector<LispValue>& arguments) {
        if (arguments.empty()) return LispValue{LispValue::Kind::Symbol, L""};
        const LispValue& a = arguments[0];
        m_print(a.kind == LispValue::Kind::String ? a.text : a.Echo());
        return a;
    });
}

std::optional<std::wstring> CommandProcessor::NextInput() {
    if (m_input.empty()) return std::nullopt;
    std::wstring text = std::move(m_input.front());
    m_input.pop_front();
    return text;
}

bool CommandProcessor::RunCommand(const std::wstring& typed) {
    const CommandStack::Command* command = m_commands.Lookup(typed);
    if (!command) {
        std::wstring shown = typed;
        for (wchar_t& c : shown) c = static_cast<wchar_t>(std::towupper(c));
        m_print(L"\nUnknown command \"" + shown + L"\".  Press F1 for help.");
        return false;
    }
    // A module's command finds its resources while it runs.
    bool pushed = command->resource != nullptr;
    if (pushed) m_documents.pushResourceHandle(command->resource);
    std::wstring name = command->global;
    AcRxFunctionPtr function = command->function;
    ++m_depth;
    try {
        function();
    } catch (const std::exception& error) {
        m_print(L"\nCommand " + name + L" failed: " + FromUtf8(error.what()));
    }
    --m_depth;
    if (pushed) m_documents.popResourceHandle();
    return true;
}

void CommandProcessor::Queue(std::wstring expression) {
    m_lastQueued = expression;
    ++m_queuedCount;
    m_queue.push_back(std::move(expression));
}

void CommandProcessor::RunIdle() {
    while (!m_queue.empty() && m_depth == 0) {
        std::wstring expression = std::move(m_queue.front());
        m_queue.pop_front();
        std::optional<LispValue> value = m_lisp.Evaluate(expression, m_print);
        if (value && !(value->kind == LispValue::Kind::Symbol && value->text.empty())) m_print(L"\n" + value->Echo());
    }
}

}  // namespace cadhost
