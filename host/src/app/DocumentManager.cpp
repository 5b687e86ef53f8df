#include "app/DocumentManager.h"

#include <algorithm>
#include <filesystem>

#include "core/Utf8.h"

namespace cadhost {

Document::Document(std::unique_ptr<AcDbDatabase> database, std::wstring fileName) : m_database(std::move(database)) {
    SetFileName(std::move(fileName));
}

Document::~Document() = default;

void Document::SetFileName(std::wstring fileName) {
    m_fileName = std::move(fileName);
    m_title = m_fileName.empty() ? L"Drawing1.dxf"
                                 : FromUtf8(std::filesystem::path(ToUtf8(m_fileName)).filename().string());
    m_frameworkDocument.SetPathName(m_fileName.c_str(), FALSE);
    m_frameworkDocument.SetTitle(m_title.c_str());
}

DocumentManager::DocumentManager(HINSTANCE hostResources) : m_hostResources(hostResources) {}

DocumentManager::~DocumentManager() { CloseAll(); }

void DocumentManager::addReactor(AcApDocManagerReactor* reactor) {
    if (reactor && std::find(m_reactors.begin(), m_reactors.end(), reactor) == m_reactors.end())
        m_reactors.push_back(reactor);
}

void DocumentManager::removeReactor(AcApDocManagerReactor* reactor) { std::erase(m_reactors, reactor); }

void DocumentManager::pushResourceHandle(HINSTANCE resourceHandle) { m_resourceStack.push_back(resourceHandle); }

void DocumentManager::pushAcadResourceHandle() { m_resourceStack.push_back(m_hostResources); }

void DocumentManager::popResourceHandle() {
    if (!m_resourceStack.empty()) m_resourceStack.pop_back();
}

HINSTANCE DocumentManager::CurrentResourceHandle() const {
    return m_resourceStack.empty() ? m_hostResources : m_resourceStack.back();
}

Document* DocumentManager::Replace(std::unique_ptr<AcDbDatabase> database, std::wstring fileName) {
    if (m_current) Destroy(m_current);
    m_documents.push_back(std::make_unique<Document>(std::move(database), std::move(fileName)));
    m_current = m_documents.back().get();
    std::vector<AcApDocManagerReactor*> reactors = m_reactors;
    for (AcApDocManagerReactor* reactor : reactors) {
        if (std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end())
            reactor->documentCreated(m_current);
    }
    return m_current;
}

void DocumentManager::Destroy(Document* document) {
    // Reactors may remove themselves while told: tell a copy of the list.
    std::vector<AcApDocManagerReactor*> reactors = m_reactors;
    for (AcApDocManagerReactor* reactor : reactors) {
        if (std::find(m_reactors.begin(), m_reactors.end(), reactor) != m_reactors.end())
            reactor->documentToBeDestroyed(document);
    }
    if (m_current == document) m_current = nullptr;
    std::erase_if(m_documents, [document](const auto& owned) { return owned.get() == document; });
}

void DocumentManager::CloseAll() {
    while (!m_documents.empty()) Destroy(m_documents.back().get());
}

}  // namespace cadhost
