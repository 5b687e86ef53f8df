// The workbooks that ExcelCell fields read. Within one pass of bringing the
// fields of a drawing up to date each workbook is read once, however many
// fields name it; outside a pass every evaluation reads the file anew, so
// that a field made or edited shows the file as it is now.
#pragma once

#include "StdAfx.h"

#include <WorkbookFile.h>

#include <map>
#include <memory>
#include <string>

class CWorkbookCache {
public:
    // The workbook at an absolute path, or null with why when it cannot be
    // read (a failure is kept for the pass as well).
    std::shared_ptr<CWorkbookFile> Open(const CString& path, CString& why);
    // A pass begins and ends; passes may nest, the outermost counts.
    void BeginPass();
    void EndPass();
    // How many times a file was read; for tests.
    int Reads() const { return m_reads; }

private:
    struct Entry {
        std::shared_ptr<CWorkbookFile> file;
        CString why;
    };
    int m_depth = 0;
    int m_reads = 0;
    std::map<std::wstring, Entry> m_entries;
};
