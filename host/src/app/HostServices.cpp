#include "app/HostServices.h"

#include "app/DocumentManager.h"

namespace cadhost {

AcDbDatabase* HostServices::workingDatabase() const {
    if (m_working) return m_working;
    AcApDocument* document = m_documents.curDocument();
    return document ? document->database() : nullptr;
}

}  // namespace cadhost
