#include <dbdict.h>

#include <tchar.h>

#include <algorithm>

#include "db/DatabaseImpl.h"

ACRX_DEFINE_MEMBERS(AcDbDictionary, AcDbObject)

AcDbDictionary::~AcDbDictionary() = default;

std::vector<std::pair<std::wstring, AcDbObjectId>>::const_iterator AcDbDictionary::find(const ACHAR* name) const {
    if (!name) return m_entries.end();
    return std::find_if(m_entries.begin(), m_entries.end(),
                        [name](const auto& entry) { return _wcsicmp(entry.first.c_str(), name) == 0; });
}

Acad::ErrorStatus AcDbDictionary::getAt(const ACHAR* name, AcDbObjectId& id) const {
    auto it = find(name);
    if (it == m_entries.end() || it->second.isErased()) return Acad::eKeyNotFound;
    id = it->second;
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
    return std::any_of(m_entries.begin(), m_entries.end(), [id](const auto& entry) { return entry.second == id; });
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
        m_entries[static_cast<size_t>(it - m_entries.begin())].second = id;
    } else {
        m_entries.emplace_back(name, id);
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
    id = it->second;
    m_entries.erase(it);
    return Acad::eOk;
}
