// The host's command line: where acutPrintf and the host's own messages go.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace cadhost {

class CommandLine {
public:
    explicit CommandLine(std::ostream& out) : m_out(&out) {}

    void Print(std::wstring_view text);
    // Shows text that is no command-line output (what a script asks to see),
    // on lines of its own.
    void Show(std::wstring_view text);
    // What was printed since the last call of Mark().
    const std::wstring& SinceMark() const { return m_sinceMark; }
    void Mark() { m_sinceMark.clear(); }
    // Ends the output with a line break if the last text did not.
    void FinishLine();
    void SetOutput(std::ostream& out) { m_out = &out; }

private:
    std::ostream* m_out;
    std::wstring m_sinceMark;
    bool m_atLineStart = true;
};

}  // namespace cadhost
