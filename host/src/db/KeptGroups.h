// Groups of a drawing file that the host does not interpret, kept in one
// compact buffer per object so that saving writes them back where they
// stood. Each group remembers its anchor: the number of interpreted groups
// of its object that came before it in the file.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cadhost {

struct KeptGroup {
    uint32_t anchor = 0;
    int code = 0;
    std::string_view value;
};

class KeptGroups {
public:
    // The anchor of groups that follow all of their object's own groups.
    static constexpr uint32_t kAtEnd = UINT32_MAX;

    void Add(uint32_t anchor, int code, std::string_view value);
    bool empty() const { return m_data.empty(); }
    void clear() { m_data.clear(); }
    size_t bytes() const { return m_data.size(); }

    // Walks the groups in file order.
    class Cursor {
    public:
        explicit Cursor(const KeptGroups& groups) : m_data(groups.m_data) {}
        bool Next(KeptGroup& group);
        bool done() const { return m_position >= m_data.size(); }
        // The anchor of the next group; only valid while !done().
        uint32_t PeekAnchor() const;

    private:
        std::string_view m_data;
        size_t m_position = 0;
    };

private:
    std::string m_data;  // per group: varint anchor, varint zigzag code, varint length, bytes
};

}  // namespace cadhost
