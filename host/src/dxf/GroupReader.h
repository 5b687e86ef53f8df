// Reads the groups of an ASCII DXF file: a code line, then a value line.
#pragma once

#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

#include "dxf/DxfIo.h"

namespace cadhost::dxf {

// A fault of the file being read, at a line of it.
struct FileError : std::runtime_error {
    FileError(int line, std::string message) : std::runtime_error(message), line(line) {}
    int line;
};

class GroupReader {
public:
    // Reads from an open file, which the caller closes.
    explicit GroupReader(std::FILE* file);

    // The next group; false at the end of the file. The value stays valid
    // until the next call. A code that is not a number, or a code without a
    // value, is a FileError.
    bool Next(Group& group);
    // The next Next gives the same group again.
    void PushBack() { m_pushedBack = true; }
    int line() const { return m_line; }

private:
    bool ReadLine(std::string_view& line);
    bool Fill();

    std::FILE* m_file;
    std::vector<char> m_buffer;
    size_t m_begin = 0, m_end = 0;
    bool m_eof = false;
    int m_line = 0;
    Group m_last;
    bool m_pushedBack = false;
};

}  // namespace cadhost::dxf
