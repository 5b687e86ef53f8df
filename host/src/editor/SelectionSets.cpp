#include "editor/SelectionSets.h"

namespace cadhost {
namespace {
// The second half of a set's name tells it from an entity's.
constexpr Adesk::LongPtr kSetMark = 0x55E7;
}

bool SelectionSets::Create(std::vector<AcDbObjectId> ids, ads_name name) {
    if (m_sets.size() >= kMaxOpen) return false;
    Adesk::LongPtr number = m_next++;
    m_sets.emplace(number, std::move(ids));
    name[0] = number;
    name[1] = kSetMark;
    return true;
}

std::vector<AcDbObjectId>* SelectionSets::Find(const ads_name name) {
    if (!name || name[1] != kSetMark) return nullptr;
    auto it = m_sets.find(name[0]);
    return it == m_sets.end() ? nullptr : &it->second;
}

bool SelectionSets::Free(const ads_name name) {
    if (!name || name[1] != kSetMark) return false;
    return m_sets.erase(name[0]) > 0;
}

}  // namespace cadhost
