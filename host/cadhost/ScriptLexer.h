// The words of one line of a session script.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace cadhost::script {

struct Word {
    std::wstring text;
    bool quoted = false;
};

// Splits a line into words; a quoted word may hold blanks and the escapes
// \" \\ and \n. Returns nothing for a line that does not parse, with why.
std::optional<std::vector<Word>> SplitLine(const std::wstring& line, std::wstring& error);

struct Point {
    double x = 0, y = 0, z = 0;
};

// "X,Y" or "X,Y,Z" without blanks.
std::optional<Point> ParsePoint(const std::wstring& text);

}  // namespace cadhost::script
