#include "dxf/GroupReader.h"

#include <cstring>

#include "dxf/Values.h"

namespace cadhost::dxf {

namespace {
constexpr size_t kChunk = 1 << 20;
}

GroupReader::GroupReader(std::FILE* file) : m_file(file), m_buffer(kChunk) {}

bool GroupReader::Fill() {
    if (m_eof) return false;
    // Keep what is left of the line being read at the front.
    if (m_begin > 0) {
        std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
        m_end -= m_begin;
        m_begin = 0;
    }
    if (m_end == m_buffer.size()) m_buffer.resize(m_buffer.size() * 2);
    size_t got = std::fread(m_buffer.data() + m_end, 1, m_buffer.size() - m_end, m_file);
    if (got == 0) {
        m_eof = true;
        return false;
    }
    m_end += got;
    return true;
}

bool GroupReader::ReadLine(std::string_view& line) {
    for (;;) {
        const char* start = m_buffer.data() + m_begin;
        const void* newline = std::memchr(start, '\n', m_end - m_begin);
        if (newline) {
            size_t length = static_cast<const char*>(newline) - start;
            line = std::string_view(start, length);
            m_begin += length + 1;
            break;
        }
        if (!Fill()) {
            if (m_begin == m_end) return false;
            // The last line of the file, without a line break.
            line = std::string_view(m_buffer.data() + m_begin, m_end - m_begin);
            m_begin = m_end;
            break;
        }
    }
    if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
    ++m_line;
    return true;
}

bool GroupReader::Next(Group& group) {
    if (m_pushedBack) {
        m_pushedBack = false;
        group = m_last;
        return true;
    }
    // The lines are views into the buffer, valid until the next fill, which
    // only the next call makes: the code is done with before the value's
    // line is read.
    std::string_view codeText;
    if (!ReadLine(codeText)) return false;
    int codeLine = m_line;
    if (codeLine == 1 && codeText.starts_with("\xEF\xBB\xBF")) codeText.remove_prefix(3);  // a UTF-8 mark
    long long code = 0;
    if (!ParseInteger(codeText, code) || code < -32768 || code > 32767) {
        std::string shown = codeText.size() > 40 ? std::string(codeText.substr(0, 40)) + "..." : std::string(codeText);
        for (char& c : shown)
            if (static_cast<unsigned char>(c) < 0x20) c = '?';
        throw FileError(codeLine, "a group code was expected, not \"" + shown + "\"");
    }
    std::string_view value;
    if (!ReadLine(value)) throw FileError(codeLine, "the file ends after group code " + std::to_string(code) + ": it is cut short");
    // A text DXF never holds a zero byte; one that a value took along would
    // be written back where it makes the file unreadable.
    if (std::memchr(value.data(), '\0', value.size()))
        throw FileError(m_line, "the value of group " + std::to_string(code) +
                                    " holds a zero byte: the file is not a text DXF file");
    m_last.code = static_cast<int>(code);
    m_last.value = value;
    m_last.line = codeLine;
    group = m_last;
    return true;
}

}  // namespace cadhost::dxf
