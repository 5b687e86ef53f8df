// Dictionaries: objects filed under names (the named object dictionary,
// extension dictionaries).
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "dbmain.h"

class CADHOST_API AcDbDictionary : public AcDbObject {
public:
    ACRX_DECLARE_MEMBERS(AcDbDictionary)
    AcDbDictionary() = default;
    ~AcDbDictionary() override;

    // Names compare without regard to case; entries keep the order in
    // which they were filed.
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObjectId& id) const;
    Acad::ErrorStatus getAt(const ACHAR* name, AcDbObject*& object, AcDb::OpenMode mode) const;
    bool has(const ACHAR* name) const;
    bool has(AcDbObjectId id) const;
    Adesk::UInt32 numEntries() const { return static_cast<Adesk::UInt32>(m_entries.size()); }
    // Files an object under a name. One that no database holds yet is added
    // to this dictionary's database and owned by the dictionary.
    Acad::ErrorStatus setAt(const ACHAR* name, AcDbObject* object, AcDbObjectId& id);
    Acad::ErrorStatus remove(const ACHAR* name);
    Acad::ErrorStatus remove(const ACHAR* name, AcDbObjectId& id);

    const std::vector<std::pair<std::wstring, AcDbObjectId>>& entries() const { return m_entries; }

private:
    std::vector<std::pair<std::wstring, AcDbObjectId>>::const_iterator find(const ACHAR* name) const;
    std::vector<std::pair<std::wstring, AcDbObjectId>> m_entries;
};
