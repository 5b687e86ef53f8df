// The runtime's system registry: named services of the host.
#pragma once

#include <rxdict.h>

#include <map>
#include <string>

namespace cadhost {

class SystemRegistry : public AcRxDictionary {
public:
    AcRxObject* at(const ACHAR* key) const override;
    AcRxObject* atPut(const ACHAR* key, AcRxObject* object) override;
    AcRxObject* remove(const ACHAR* key) override;
    Adesk::UInt32 numEntries() const override { return static_cast<Adesk::UInt32>(m_entries.size()); }

private:
    std::map<std::wstring, AcRxObject*> m_entries;  // the host owns the services
};

}  // namespace cadhost
