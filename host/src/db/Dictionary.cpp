#include <dbdict.h>

#include <tchar.h>

#include <algorithm>
#include <cwchar>

#include "db/DatabaseImpl.h"

ACRX_DXF_DEFINE_MEMBERS(AcDbDictionary, AcDbObject, L"DICTIONARY")

AcDbDictionary::~AcDbDictionary() = default;

std::vector<AcDbDictionary::Entry>::const_iterator AcDbDictionary::find(const ACHAR* name) const {
    if (!name) return m_entries.end();
    // A live entry wins over an erased one of the same name.
    auto erased = m_entries.end();
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it) {
        if (_wcsicmp(it->name.c_str(), name) != 0) continue;
        if (!it->id.isErased()) return it;
        if (erased == m_entries.end()) erased = it;
    }
    return erased;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* name, AcDbObjectId& id) const {
    auto it = find(name);
    if (it == m_entries.end() || it->id.isErased()) return Acad::eKeyNotFound;
    id = it->id;
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* name, AcDbObject*& object, AcDb::OpenMode mode) const {
    object = nullptr;
    AcDbObjectId id;
    Acad::ErrorStatus es = getAt(name, id);
    if (es != Acad::eOk) return es;
    return acdbOpenAcDbObject(object, id, mode);
}

bool AcDbDictionary::has(const ACHAR* name) const {
    AcDbObjectId id;
    return getAt(name, id) == Acad::eOk;
}

bool AcDbDictionary::has(AcDbObjectId id) const {
    return std::any_of(m_entries.begin(), m_entries.end(), [id](const Entry& entry) { return entry.id == id; });
}

Acad::ErrorStatus AcDbDictionary::nameAt(AcDbObjectId id, ACHAR*& name) const {
    for (const Entry& entry : m_entries) {
        if (entry.id != id) continue;
        name = new ACHAR[entry.name.size() + 1];
        std::wmemcpy(name, entry.name.c_str(), entry.name.size() + 1);
        return Acad::eOk;
    }
    return Acad::eKeyNotFound;
}

Acad::ErrorStatus AcDbDictionary::setAt(const ACHAR* name, AcDbObject* object, AcDbObjectId& id) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    if (!name || !*name) return Acad::eInvalidInput;
    if (!object) return Acad::eNullObjectPointer;
    if (object->objectId().isNull()) {
        AcDbStub* stub = cadhost::DatabaseImpl::StubOf(this);
        if (!stub) return Acad::eNotInDatabase;
        Acad::ErrorStatus es = stub->database->Add(id, object);
        if (es != Acad::eOk) return es;
    } else {
        id = object->objectId();
    }
    object->setOwnerId(objectId());
    auto it = find(name);
    if (it != m_entries.end()) {
        m_entries[static_cast<size_t>(it - m_entries.begin())].id = id;
    } else {
        m_entries.push_back(Entry{name, id, true});
    }
    return Acad::eOk;
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* name) {
    AcDbObjectId id;
    return remove(name, id);
}

Acad::ErrorStatus AcDbDictionary::remove(const ACHAR* name, AcDbObjectId& id) {
    if (!isWriteEnabled()) return Acad::eNotOpenForWrite;
    auto it = find(name);
    if (it == m_entries.end()) return Acad::eKeyNotFound;
    id = it->id;
    m_entries.erase(it);
    return Acad::eOk;
}
