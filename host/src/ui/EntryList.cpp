#include "ui/EntryList.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <tuple>

namespace cadhost::ui {
namespace {

constexpr size_t kBlock = 256;  // a block splits when it holds twice this

}  // namespace

std::pair<size_t, size_t> EntryList::Locate(size_t index) const {
    auto after = std::upper_bound(m_starts.begin(), m_starts.end(), index);
    size_t block = static_cast<size_t>(after - m_starts.begin()) - 1;
    return {block, index - m_starts[block]};
}

void EntryList::Restart(size_t fromBlock) {
    m_starts.resize(m_blocks.size());
    size_t start = fromBlock == 0 ? 0 : m_starts[fromBlock - 1] + m_blocks[fromBlock - 1].size();
    for (size_t b = fromBlock; b < m_blocks.size(); ++b) {
        m_starts[b] = start;
        start += m_blocks[b].size();
    }
}

ListEntry& EntryList::operator[](size_t index) {
    if (index >= m_size) throw std::out_of_range("list entry");
    auto [block, offset] = Locate(index);
    return m_blocks[block][offset];
}

const ListEntry& EntryList::operator[](size_t index) const {
    if (index >= m_size) throw std::out_of_range("list entry");
    auto [block, offset] = Locate(index);
    return m_blocks[block][offset];
}

void EntryList::insert(size_t index, ListEntry entry) {
    if (index > m_size) throw std::out_of_range("list entry");
    if (m_blocks.empty()) {
        m_blocks.emplace_back();
        m_starts.push_back(0);
    }
    size_t block = 0;
    size_t offset = 0;
    if (index == m_size) {
        block = m_blocks.size() - 1;
        offset = m_blocks[block].size();
    } else {
        std::tie(block, offset) = Locate(index);
    }
    std::vector<ListEntry>& entries = m_blocks[block];
    entries.insert(entries.begin() + static_cast<std::ptrdiff_t>(offset), std::move(entry));
    ++m_size;
    if (entries.size() >= 2 * kBlock) {
        std::vector<ListEntry> upper(std::make_move_iterator(entries.begin() + kBlock),
                                     std::make_move_iterator(entries.end()));
        entries.resize(kBlock);
        m_blocks.insert(m_blocks.begin() + static_cast<std::ptrdiff_t>(block) + 1, std::move(upper));
    }
    Restart(block);
}

void EntryList::erase(size_t index) {
    if (index >= m_size) throw std::out_of_range("list entry");
    auto [block, offset] = Locate(index);
    std::vector<ListEntry>& entries = m_blocks[block];
    entries.erase(entries.begin() + static_cast<std::ptrdiff_t>(offset));
    --m_size;
    if (entries.empty()) m_blocks.erase(m_blocks.begin() + static_cast<std::ptrdiff_t>(block));
    Restart(std::min(block, m_blocks.size()));
}

void EntryList::clear() {
    m_blocks.clear();
    m_starts.clear();
    m_size = 0;
}

}  // namespace cadhost::ui
