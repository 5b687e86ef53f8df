// The spreadsheet program that the module reaches as "Excel.Application":
// one instance for the host's process, which the user starts or automation
// starts, and which stays until the user quits it. Its workbooks are real
// files, read with the host's workbook reader; what it answers through
// automation is in ProgramObjects.
#pragma once

#include <objbase.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

struct IDispatch;

namespace cadhost::spreadsheet {

extern const wchar_t kProgramId[];      // "Excel.Application"
extern const CLSID kApplicationClsid;  // the class it registers

// A sheet of an open workbook: its name, whether it is a worksheet, its
// visibility as the program numbers it (-1 visible, 0 hidden, 2 very
// hidden) and its selected cell.
struct OpenSheet {
    std::wstring name;
    bool worksheet = true;
    int visibility = -1;
    std::uint32_t row = 1;
    std::uint32_t column = 1;
};

struct OpenWorkbook {
    std::wstring name;      // the file's name, or "Book1" for a new one
    std::wstring fullName;  // the file's full path, or the name of a new one
    bool readOnly = false;
    std::vector<OpenSheet> sheets;
    int activeSheet = 0;
    std::uint32_t maxRows = 1048576;
    std::uint32_t maxColumns = 16384;
};

// Why the program refused a request: the description it gives, for an
// automation error or for the user's own actions in a script.
struct ProgramError {
    std::wstring description;
};

class SpreadsheetProgram {
public:
    // The one program of the process.
    static SpreadsheetProgram& Instance();

    bool installed() const;
    // Installs the program on the machine or takes it off; a running
    // program cannot be taken off.
    void SetInstalled(bool installed);
    bool running() const { return m_application != nullptr; }
    bool visible() const { return m_visible; }
    void SetVisible(bool visible) { m_visible = visible; }
    // While busy, every call into the program is rejected.
    bool busy() const { return m_busy; }
    void SetBusy(bool busy) { m_busy = busy; }

    // Starts the program with no workbook open, hidden as automation starts
    // it or visible as the user does; its application object goes into the
    // table of running objects.
    void Start(bool visible);
    // The user closes the program: its workbooks close, its objects that
    // others still hold answer no more.
    void Quit();
    // Which run of the program is the present one; objects of a former run
    // are disconnected.
    std::uint64_t run() const { return m_run; }
    // The application object of the running program (no reference taken).
    IDispatch* application() const { return m_application; }

    const std::vector<std::shared_ptr<OpenWorkbook>>& workbooks() const { return m_workbooks; }
    std::shared_ptr<OpenWorkbook> activeWorkbook() const;
    void ActivateWorkbook(const std::shared_ptr<OpenWorkbook>& workbook);
    // A new workbook that was never saved: "Book1", "Book2", ... with three
    // sheets; it becomes the active one.
    std::shared_ptr<OpenWorkbook> AddWorkbook();
    // Opens a workbook file and makes it the active one. The workbook open
    // from that very path (without regard to case) is activated instead;
    // one of the same file name from another folder is refused, as the
    // program cannot hold two.
    std::shared_ptr<OpenWorkbook> OpenFile(const std::filesystem::path& path, bool readOnly);
    // The user brings an open workbook to the front by its name.
    void ActivateByName(const std::wstring& name);
    // The user activates a sheet of the active workbook and selects a cell.
    void Select(const std::wstring& sheet, const std::wstring& cell);

    // What "print excel" shows: whether it runs and is visible, its
    // workbooks in order, the active workbook, sheet and cell, and the
    // references to its objects that others hold.
    std::wstring Describe() const;

    // References to the program's objects, counted by the objects: all
    // that are held, and those held by others than the table of running
    // objects.
    void CountReference(int delta) { m_references += delta; }
    int ClientReferences() const;

    // Back to the state of a machine just booted: not running, installed,
    // not busy; the book numbers start again. For tests.
    void Reset();

private:
    SpreadsheetProgram() = default;

    IDispatch* m_application = nullptr;  // held by the table of running objects
    DWORD m_registration = 0;
    bool m_visible = false;
    bool m_busy = false;
    std::uint64_t m_run = 0;
    int m_nextBook = 1;
    int m_references = 0;
    std::vector<std::shared_ptr<OpenWorkbook>> m_workbooks;
    std::weak_ptr<OpenWorkbook> m_active;
};

// The program's class factory: the application object of the running
// program, started hidden when it does not run; RPC_E_CALL_REJECTED while
// it is busy.
HRESULT CreateApplicationObject(REFIID riid, void** object);

}  // namespace cadhost::spreadsheet
