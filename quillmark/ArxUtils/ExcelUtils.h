// The module's session with Excel for the length of one user action:
// attach to the Excel that runs or start one, always visible, open the
// workbook without a second copy, bind what is active, and let go of every
// reference at the end. Excel stays open for the user; the module never
// closes a workbook and never quits it.
#pragma once

#include "StdAfx.h"

#include "ArxUtils/ExcelAutomation.h"

#define QM_EXCEL_PROGRAM_ID L"Excel.Application"
#define QM_MESSAGE_SAME_NAME                                                                                        \
    L"A document with the name '%s' is already open. You cannot open two documents with the same name, even if " \
    L"the documents are in different folders.\nTo open the second document, either close the document that's "   \
    L"currently open, or rename one of the documents."
#define QM_MESSAGE_NO_EXCEL L"Failed to get an instance of Excel!"

// Operations answer 1 for done and 0 for not done. Each catches what leaves
// its body: a _com_error silently, a CException after reporting its status.
class ExcelUtils {
public:
    virtual ~ExcelUtils();

    // Attaches to the running Excel, makes it visible, and with a path
    // opens the workbook there; 1 when an Excel was attached, and opened
    // then holds the outcome of the open (1 without a path).
    static int AttachRunning(LPCTSTR path, int readOnly, int& opened);
    // Starts a new Excel and makes it visible.
    static int StartExcel();
    // Adds a workbook and holds it as m_workbook.
    static int NewWorkbook();
    // Makes the workbook of the path available: the one open from that very
    // path, or opened now; refused with a message when one of the same file
    // name is open from another folder.
    static int OpenWorkbook(LPCTSTR path, int readOnly);
    // Binds m_workbook and m_worksheet to what Excel calls active, adding a
    // workbook when none is open.
    static int BindActive();
    // Binds m_worksheet to the sheet of that name (without regard to case)
    // in the active workbook, shows and activates it; 0 without a message
    // when there is none.
    static int SelectSheet(LPCTSTR name);
    // Lets go of all three references.
    static void ReleaseAll();
    // 1 is A, 26 Z, 27 AA, 702 ZZ; not above 0 gives A; beyond ZZ there is
    // no name and the text is empty.
    static CString ColumnLetters(int column);
    // Reads "$AB$12" into row 12 and column 28; 0 when it cannot be read.
    // Letters are expected in capitals, as ColumnLetters writes them.
    static int ParseCellReference(LPCTSTR reference, int& row, int& column);
    // Shows the system's text for a status code, or where it has none the
    // code itself.
    static void ReportOleError(SCODE code);

    static CApplication m_application;
    static CWorkbook m_workbook;
    static CWorksheet m_worksheet;
};

// One session: the constructor opens it, the end of the scope closes it,
// also when an exception leaves the scope. opened is 1 when Excel is there
// with the workbook (or with the active one, without a path).
class ExcelSessionScope {
public:
    ExcelSessionScope(int& opened, LPCTSTR path, int readOnly);
    ~ExcelSessionScope();
    ExcelSessionScope(const ExcelSessionScope&) = delete;
    ExcelSessionScope& operator=(const ExcelSessionScope&) = delete;
};
