// The evaluator of TextField codes: the value is the text of the file the
// code names, in full or relative to the drawing's folder.
#pragma once

#include "StdAfx.h"

#include <string>

#include "PassFileCache.h"

// The largest file a Text File field shows, in bytes.
#define QM_TEXT_FILE_LIMIT (static_cast<size_t>(1024 * 1024))

// What reading one file gave: its text, or why there is none.
struct CTextFileContent {
    bool read = false;
    // The lines joined by "\n", as a text value: every field that shows the
    // file is handed this one value, whose copies share its text.
    AcValue value;
    std::wstring reason;  // "does not exist.", "is a folder, not a text file." ...
    size_t Weight() const {
        const ACHAR* text = nullptr;
        return (value.get(text) ? wcslen(text) : 0) + reason.size();
    }
};

// Reads a text file by its full path (see TextDecoding.h for the text).
CTextFileContent ReadTextFile(const std::wstring& fullPath);

class AsdkTextFileEvaluator : public AcFdFieldEvaluator {
public:
    AsdkTextFileEvaluator();
    ~AsdkTextFileEvaluator() override;

    const ACHAR* evaluatorId() const override;
    // The data item "TextField Data" holds the path as the code wrote it,
    // whenever the code names one, so that the field can be edited even
    // when its file is gone. The value is the file's text; a file that is
    // missing, a folder, unreadable, not text (it holds a NUL) or larger
    // than QM_TEXT_FILE_LIMIT fails with a message that names the path.
    Acad::ErrorStatus evaluate(AcDbField* field, int context, AcDbDatabase* database,
                               AcFdFieldResult* result) override;

    // The files read, kept for the length of an evaluation pass.
    CPassFileCache<CTextFileContent>& Files() { return m_files; }

private:
    CPassFileCache<CTextFileContent> m_files;
};
