#include "spreadsheet/SpreadsheetProgram.h"

#include <oleauto.h>
#include <tchar.h>

#include "core/Utf8.h"
#include "ole/ClassRegistry.h"
#include "spreadsheet/ProgramObjects.h"
#include "spreadsheet/Workbook.h"

namespace cadhost::spreadsheet {

const wchar_t kProgramId[] = L"Excel.Application";
const CLSID kApplicationClsid = {0x00024500, 0x0000, 0x0000, {0xC0, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x46}};

namespace {

bool SameNoCase(const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) == 0; }

std::wstring Quoted(const std::wstring& text) { return L"\"" + text + L"\""; }

}  // namespace

SpreadsheetProgram& SpreadsheetProgram::Instance() {
    // Kept to the end of the process: the table of running objects may
    // still hold its application object when static objects go.
    static SpreadsheetProgram* program = new SpreadsheetProgram;
    return *program;
}

bool SpreadsheetProgram::installed() const { return ole::ClassRegistry::Instance().IsInstalled(kProgramId); }

void SpreadsheetProgram::SetInstalled(bool installed) {
    if (!installed && running()) throw ProgramError{L"the program runs; it must be closed first"};
    ole::ClassRegistry::Instance().SetInstalled(kProgramId, installed);
}

void SpreadsheetProgram::Start(bool visible) {
    if (running()) return;
    ++m_run;
    m_nextBook = 1;
    m_visible = visible;
    m_busy = false;
    m_application = NewApplicationObject();
    RegisterActiveObject(m_application, kApplicationClsid, ACTIVEOBJECT_STRONG, &m_registration);
}

void SpreadsheetProgram::Quit() {
    if (!running()) return;
    m_workbooks.clear();
    m_active.reset();
    m_visible = false;
    m_busy = false;
    m_application = nullptr;
    ++m_run;  // what others still hold is disconnected from here on
    RevokeActiveObject(m_registration, nullptr);
    m_registration = 0;
}

void SpreadsheetProgram::Reset() {
    Quit();
    ole::ClassRegistry::Instance().SetInstalled(kProgramId, true);
    m_nextBook = 1;
}

std::shared_ptr<OpenWorkbook> SpreadsheetProgram::activeWorkbook() const {
    auto active = m_active.lock();
    if (!active && !m_workbooks.empty()) return m_workbooks.back();
    return active;
}

void SpreadsheetProgram::ActivateWorkbook(const std::shared_ptr<OpenWorkbook>& workbook) { m_active = workbook; }

std::shared_ptr<OpenWorkbook> SpreadsheetProgram::AddWorkbook() {
    auto book = std::make_shared<OpenWorkbook>();
    book->name = book->fullName = L"Book" + std::to_wstring(m_nextBook++);
    for (int i = 1; i <= 3; ++i) book->sheets.push_back(OpenSheet{L"Sheet" + std::to_wstring(i)});
    m_workbooks.push_back(book);
    m_active = book;
    return book;
}

std::shared_ptr<OpenWorkbook> SpreadsheetProgram::OpenFile(const std::filesystem::path& path, bool readOnly) {
    std::error_code error;
    std::filesystem::path absolute = std::filesystem::absolute(path, error).lexically_normal();
    std::wstring fullName = FromUtf8(absolute.string());
    std::wstring name = FromUtf8(absolute.filename().string());
    for (const auto& book : m_workbooks) {
        if (SameNoCase(book->fullName, fullName)) {
            m_active = book;
            return book;
        }
    }
    for (const auto& book : m_workbooks) {
        if (SameNoCase(book->name, name))
            throw ProgramError{L"A document with the name '" + name +
                               L"' is already open. Two documents of the same name cannot be open at once."};
    }
    std::wstring why;
    std::unique_ptr<Workbook> file = ReadWorkbook(absolute, why);
    if (!file) throw ProgramError{L"Cannot open '" + fullName + L"': " + why + L"."};
    auto book = std::make_shared<OpenWorkbook>();
    book->name = name;
    book->fullName = fullName;
    book->readOnly = readOnly;
    book->maxRows = file->maxRows();
    book->maxColumns = file->maxColumns();
    for (const Sheet& sheet : file->sheets())
        book->sheets.push_back(OpenSheet{sheet.name, sheet.worksheet, sheet.visible ? -1 : 0, sheet.activeRow,
                                         sheet.activeColumn});
    book->activeSheet = file->activeSheet();
    m_workbooks.push_back(book);
    m_active = book;
    return book;
}

void SpreadsheetProgram::ActivateByName(const std::wstring& name) {
    for (const auto& book : m_workbooks) {
        if (SameNoCase(book->name, name)) {
            m_active = book;
            return;
        }
    }
    throw ProgramError{L"no workbook named " + Quoted(name) + L" is open"};
}

void SpreadsheetProgram::Select(const std::wstring& sheetName, const std::wstring& cell) {
    auto book = activeWorkbook();
    if (!book) throw ProgramError{L"no workbook is open"};
    for (size_t i = 0; i < book->sheets.size(); ++i) {
        OpenSheet& sheet = book->sheets[i];
        if (!SameNoCase(sheet.name, sheetName)) continue;
        if (!sheet.worksheet) throw ProgramError{L"the sheet " + Quoted(sheet.name) + L" is not a worksheet"};
        if (sheet.visibility != -1) throw ProgramError{L"the sheet " + Quoted(sheet.name) + L" is hidden"};
        std::uint32_t row = 0, column = 0;
        if (!ParseCellName(cell, row, column) || row > book->maxRows || column > book->maxColumns)
            throw ProgramError{Quoted(cell) + L" is no cell of the sheet"};
        book->activeSheet = static_cast<int>(i);
        sheet.row = row;
        sheet.column = column;
        return;
    }
    throw ProgramError{L"the workbook " + Quoted(book->name) + L" has no sheet " + Quoted(sheetName)};
}

int SpreadsheetProgram::ClientReferences() const { return m_references - (running() ? 1 : 0); }

std::wstring SpreadsheetProgram::Describe() const {
    if (!installed()) return L"spreadsheet program: not installed";
    std::wstring text;
    if (!running()) {
        text = L"spreadsheet program: not running";
    } else {
        text = L"spreadsheet program: running, ";
        text += m_visible ? L"visible" : L"hidden";
        if (m_busy) text += L", busy";
        if (m_workbooks.empty()) text += L"\n  no workbook open";
        for (size_t i = 0; i < m_workbooks.size(); ++i) {
            const OpenWorkbook& book = *m_workbooks[i];
            text += L"\n  workbook " + std::to_wstring(i + 1) + L": " + Quoted(book.name) + L" " +
                    Quoted(book.fullName) + (book.readOnly ? L" read-only" : L" read-write");
        }
        if (auto active = activeWorkbook()) {
            text += L"\n  active: " + Quoted(active->name);
            if (active->activeSheet >= 0 && static_cast<size_t>(active->activeSheet) < active->sheets.size()) {
                const OpenSheet& sheet = active->sheets[static_cast<size_t>(active->activeSheet)];
                text += L", sheet " + Quoted(sheet.name);
                if (sheet.worksheet) text += L", cell " + CellName(sheet.row, sheet.column);
            }
        }
    }
    text += L"\n  references held by others: " + std::to_wstring(ClientReferences());
    return text;
}

HRESULT CreateApplicationObject(REFIID riid, void** object) {
    SpreadsheetProgram& program = SpreadsheetProgram::Instance();
    // A program that runs serves every request itself; a busy one refuses
    // this one as it refuses calls.
    if (program.running() && program.busy()) return RPC_E_CALL_REJECTED;
    if (!program.running()) program.Start(false);
    return program.application()->QueryInterface(riid, object);
}

}  // namespace cadhost::spreadsheet
