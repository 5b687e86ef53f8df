// The open drawings, the reactors on their life, and the stack of resource
// handles through which templates and strings are found.
#pragma once

#include <acdocman.h>
#include <afxwin.h>
#include <dbmain.h>

#include <memory>
#include <string>
#include <vector>

namespace cadhost {

class Document : public AcApDocument {
public:
    explicit Document(std::unique_ptr<AcDbDatabase> database, std::wstring fileName = L"");
    ~Document() override;
    AcDbDatabase* database() const override { return m_database.get(); }
    const ACHAR* fileName() const override { return m_fileName.c_str(); }
    const ACHAR* docTitle() const override { return m_title.c_str(); }
    void SetFileName(std::wstring fileName);
    // The framework's document of the drawing, which follows its file name.
    CDocument& frameworkDocument() { return m_frameworkDocument; }

private:
    std::unique_ptr<AcDbDatabase> m_database;
    CDocument m_frameworkDocument;
    std::wstring m_fileName;
    std::wstring m_title;
};

class DocumentManager : public AcApDocManager {
public:
    explicit DocumentManager(HINSTANCE hostResources);
    ~DocumentManager() override;

    AcApDocument* curDocument() const override { return m_current; }
    AcApDocument* mdiActiveDocument() const override { return m_current; }
    int documentCount() const override { return static_cast<int>(m_documents.size()); }
    void addReactor(AcApDocManagerReactor* reactor) override;
    void removeReactor(AcApDocManagerReactor* reactor) override;
    void pushResourceHandle(HINSTANCE resourceHandle) override;
    void pushAcadResourceHandle() override;
    void popResourceHandle() override;

    // The handle on top of the resource stack: the host's own when empty.
    HINSTANCE CurrentResourceHandle() const;
    void SetDefaultResourceHandle(HINSTANCE handle) { m_hostResources = handle; }

    // Replaces the current drawing by another; the old one is destroyed.
    Document* Replace(std::unique_ptr<AcDbDatabase> database, std::wstring fileName = L"");
    Document* Current() const { return m_current; }
    void CloseAll();

private:
    void Destroy(Document* document);

    std::vector<std::unique_ptr<Document>> m_documents;
    Document* m_current = nullptr;
    std::vector<AcApDocManagerReactor*> m_reactors;
    std::vector<HINSTANCE> m_resourceStack;
    HINSTANCE m_hostResources;
};

}  // namespace cadhost
