// The selection sets handed out by the editor, named by ads_name, until
// they are freed. As on the platform, at most 128 are open at a time.
#pragma once

#include <adsdef.h>
#include <dbid.h>

#include <map>
#include <vector>

namespace cadhost {

class SelectionSets {
public:
    static constexpr size_t kMaxOpen = 128;

    // A new set; false when too many are open.
    bool Create(std::vector<AcDbObjectId> ids, ads_name name);
    std::vector<AcDbObjectId>* Find(const ads_name name);
    bool Free(const ads_name name);
    size_t open() const { return m_sets.size(); }

private:
    std::map<Adesk::LongPtr, std::vector<AcDbObjectId>> m_sets;
    Adesk::LongPtr m_next = 1;
};

}  // namespace cadhost
