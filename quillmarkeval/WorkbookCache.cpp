#include "WorkbookCache.h"

std::shared_ptr<CWorkbookFile> CWorkbookCache::Open(const CString& path, CString& why) {
    if (m_depth > 0) {
        auto found = m_entries.find(path.str());
        if (found != m_entries.end()) {
            why = found->second.why;
            return found->second.file;
        }
    }
    ++m_reads;
    std::shared_ptr<CWorkbookFile> file(CWorkbookFile::Open(path, why));
    if (m_depth > 0) m_entries[path.str()] = Entry{file, why};
    return file;
}

void CWorkbookCache::BeginPass() { ++m_depth; }

void CWorkbookCache::EndPass() {
    if (m_depth > 0 && --m_depth == 0) m_entries.clear();
}
