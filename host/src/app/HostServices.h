// The host application services object: the working database and the
// host's release and names.
#pragma once

#include <dbapserv.h>

namespace cadhost {

class DocumentManager;

class HostServices : public AcDbHostApplicationServices {
public:
    explicit HostServices(DocumentManager& documents) : m_documents(documents) {}

    // The current document's database unless one was set explicitly.
    AcDbDatabase* workingDatabase() const override;
    void setWorkingDatabase(AcDbDatabase* database) override { m_working = database; }
    int releaseMajorVersion() const override { return m_releaseMajor; }
    int releaseMinorVersion() const override { return 0; }
    const ACHAR* versionString() const override { return L"18.0 (cadhost)"; }
    const ACHAR* product() const override { return L"cadhost"; }
    const ACHAR* program() const override { return L"cadhost"; }
    const ACHAR* companyName() const override { return L"Quillmark"; }

    // A test may stand in for an older release of the host.
    void SetReleaseMajorVersion(int release) { m_releaseMajor = release; }

private:
    DocumentManager& m_documents;
    AcDbDatabase* m_working = nullptr;
    int m_releaseMajor = 18;
};

}  // namespace cadhost
