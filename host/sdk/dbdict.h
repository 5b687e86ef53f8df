// Dictionaries: objects filed under names (the named object dictionary,
// extension dictionaries).
#pragma once

#include <string>
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
    // The name under which an object is filed.
    Acad::ErrorStatus nameAt(AcDbObjectId id, ACHAR*& name) const;
    // Whether the entries are owned by the dictionary (erased with it).
    bool isTreatElementsAsHard() const { return m_hardOwner; }
    void setTreatElementsAsHard(bool value) { m_hardOwner = value; }

    struct Entry {
        std::wstring name;
        AcDbObjectId id;
        bool hardOwned = true;  // files write the entry as an owner (360) or as a soft owner (350)
    };
    const std::vector<Entry>& entries() const { return m_entries; }
    // The host's own: files an entry as a drawing file lists it.
    void adoptEntry(std::wstring name, AcDbObjectId id, bool hardOwned) {
        m_entries.push_back(Entry{std::move(name), id, hardOwned});
    }

private:
    std::vector<Entry>::const_iterator find(const ACHAR* name) const;
    std::vector<Entry> m_entries;
    bool m_hardOwner = false;
};
