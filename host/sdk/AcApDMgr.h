// Per-document data of an application: one record per open document,
// dropped when the document goes.
#pragma once

#include <map>

#include "acdocman.h"

template <class T>
class AcApDataManager : public AcApDocManagerReactor {
public:
    AcApDataManager() {
        if (AcApDocManager* manager = acDocManagerPtr()) manager->addReactor(this);
    }
    ~AcApDataManager() override {
        if (AcApDocManager* manager = acDocManagerPtr()) manager->removeReactor(this);
    }
    AcApDataManager(const AcApDataManager&) = delete;
    AcApDataManager& operator=(const AcApDataManager&) = delete;

    void documentToBeDestroyed(AcApDocument* document) override { m_dataMap.erase(document); }

    T& docData(AcApDocument* document) { return m_dataMap[document]; }
    T& docData() { return docData(acDocManagerPtr()->curDocument()); }
    size_t size() const { return m_dataMap.size(); }
    bool contains(AcApDocument* document) const { return m_dataMap.count(document) != 0; }

private:
    std::map<AcApDocument*, T> m_dataMap;
};
