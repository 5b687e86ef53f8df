#include "db/KeptGroups.h"

namespace cadhost {
namespace {

void PutVarint(std::string& out, uint64_t value) {
    while (value >= 0x80) {
        out.push_back(static_cast<char>((value & 0x7F) | 0x80));
        value >>= 7;
    }
    out.push_back(static_cast<char>(value));
}

uint64_t GetVarint(std::string_view data, size_t& position) {
    uint64_t value = 0;
    int shift = 0;
    while (position < data.size()) {
        auto byte = static_cast<unsigned char>(data[position++]);
        value |= static_cast<uint64_t>(byte & 0x7F) << shift;
        if (!(byte & 0x80)) break;
        shift += 7;
    }
    return value;
}

}  // namespace

void KeptGroups::Add(uint32_t anchor, int code, std::string_view value) {
    PutVarint(m_data, anchor);
    auto zigzag = static_cast<uint64_t>((static_cast<int64_t>(code) << 1) ^ (static_cast<int64_t>(code) >> 63));
    PutVarint(m_data, zigzag);
    PutVarint(m_data, value.size());
    m_data.append(value);
}

bool KeptGroups::Cursor::Next(KeptGroup& group) {
    if (done()) return false;
    group.anchor = static_cast<uint32_t>(GetVarint(m_data, m_position));
    uint64_t zigzag = GetVarint(m_data, m_position);
    group.code = static_cast<int>(static_cast<int64_t>(zigzag >> 1) ^ -static_cast<int64_t>(zigzag & 1));
    size_t length = GetVarint(m_data, m_position);
    if (length > m_data.size() - m_position) length = m_data.size() - m_position;
    group.value = m_data.substr(m_position, length);
    m_position += length;
    return true;
}

uint32_t KeptGroups::Cursor::PeekAnchor() const {
    size_t position = m_position;
    return static_cast<uint32_t>(GetVarint(m_data, position));
}

}  // namespace cadhost
