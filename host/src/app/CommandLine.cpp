#include "app/CommandLine.h"

#include "core/Utf8.h"

namespace cadhost {

void CommandLine::Print(std::wstring_view text) {
    if (text.empty()) return;
    m_sinceMark += text;
    // Messages open with a line break to leave the line of the prompt; at
    // the start of a line there is none to leave.
    if (m_atLineStart && text.front() == L'\n') text.remove_prefix(1);
    if (text.empty()) return;
    *m_out << ToUtf8(text);
    m_out->flush();
    m_atLineStart = text.back() == L'\n';
}

void CommandLine::Show(std::wstring_view text) {
    FinishLine();
    if (text.empty()) return;
    *m_out << ToUtf8(text);
    if (text.back() != L'\n') *m_out << '\n';
    m_out->flush();
    m_atLineStart = true;
}

void CommandLine::FinishLine() {
    if (!m_atLineStart) Print(L"\n");
}

}  // namespace cadhost
