#include "spreadsheet/ProgramObjects.h"

#include <oleauto.h>
#include <tchar.h>

#include "core/Utf8.h"
#include "spreadsheet/Workbook.h"

namespace cadhost::spreadsheet {
namespace {

SpreadsheetProgram& Program() { return SpreadsheetProgram::Instance(); }

// A call that fails with a status code of its own (not the program's error).
struct Failure {
    HRESULT hr;
};

// One call's arguments as the caller passed them: positional ones last
// first, the value of a property put as a named argument.
class Call {
public:
    Call(DISPID id, WORD flags, DISPPARAMS* parameters, VARIANT* result)
        : id(id), m_flags(flags), m_parameters(parameters), m_result(result) {}

    DISPID id;
    bool Get() const { return m_flags & DISPATCH_PROPERTYGET; }
    bool Put() const { return m_flags & DISPATCH_PROPERTYPUT; }
    bool Method() const { return m_flags & DISPATCH_METHOD; }

    UINT Count() const {
        if (!m_parameters) return 0;
        return m_parameters->cArgs - std::min(m_parameters->cNamedArgs, m_parameters->cArgs);
    }
    // The positional argument i (from 0), or null when it was left out or
    // passed as the missing argument.
    const VARIANT* Argument(UINT i) const {
        if (i >= Count()) return nullptr;
        const VARIANT* v = &m_parameters->rgvarg[m_parameters->cArgs - 1 - i];
        while (v->vt == (VT_VARIANT | VT_BYREF) && v->pvarVal) v = v->pvarVal;
        if (v->vt == VT_ERROR && v->scode == DISP_E_PARAMNOTFOUND) return nullptr;
        return v;
    }
    const VARIANT* PutValue() const {
        if (!m_parameters) return nullptr;
        for (UINT k = 0; k < m_parameters->cNamedArgs && k < m_parameters->cArgs; ++k)
            if (m_parameters->rgdispidNamedArgs && m_parameters->rgdispidNamedArgs[k] == DISPID_PROPERTYPUT)
                return &m_parameters->rgvarg[k];
        return nullptr;
    }

    void Answer(IDispatch* object) {
        // A new object reaches the caller with one reference, or ends here.
        if (object) object->AddRef();
        if (!m_result) {
            if (object) object->Release();
            return;
        }
        m_result->vt = VT_DISPATCH;
        m_result->pdispVal = object;
    }
    void Answer(LONG value) {
        if (!m_result) return;
        m_result->vt = VT_I4;
        m_result->lVal = value;
    }
    void AnswerBool(bool value) {
        if (!m_result) return;
        m_result->vt = VT_BOOL;
        m_result->boolVal = value ? VARIANT_TRUE : VARIANT_FALSE;
    }
    void Answer(const std::wstring& text) {
        if (!m_result) return;
        m_result->vt = VT_BSTR;
        m_result->bstrVal = SysAllocString(text.c_str());
        if (!m_result->bstrVal) throw Failure{E_OUTOFMEMORY};
    }

private:
    WORD m_flags;
    DISPPARAMS* m_parameters;
    VARIANT* m_result;
};

LONG WholeOf(const VARIANT* value) {
    if (!value) throw Failure{DISP_E_PARAMNOTOPTIONAL};
    VARIANT converted;
    VariantInit(&converted);
    HRESULT hr = VariantChangeType(&converted, value, 0, VT_I4);
    if (FAILED(hr)) throw Failure{hr};
    return converted.lVal;
}

std::wstring TextOf(const VARIANT* value) {
    if (!value) throw Failure{DISP_E_PARAMNOTOPTIONAL};
    VARIANT converted;
    VariantInit(&converted);
    HRESULT hr = VariantChangeType(&converted, value, 0, VT_BSTR);
    if (FAILED(hr)) throw Failure{hr};
    std::wstring text = converted.bstrVal ? converted.bstrVal : L"";
    VariantClear(&converted);
    return text;
}

bool SameNoCase(const std::wstring& a, const std::wstring& b) { return _wcsicmp(a.c_str(), b.c_str()) == 0; }

// What every object of the program does: references, the check that the
// program runs and is not busy, and the program's errors as exceptions of
// the call.
class ProgramObject : public IDispatch {
public:
    ProgramObject() : m_run(Program().run()) {}
    virtual ~ProgramObject() = default;

    STDMETHODIMP QueryInterface(REFIID riid, void** object) override {
        if (!object) return E_POINTER;
        if (IsEqualIID(riid, IID_IUnknown) || IsEqualIID(riid, IID_IDispatch)) {
            *object = static_cast<IDispatch*>(this);
            AddRef();
            return S_OK;
        }
        *object = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        Program().CountReference(1);
        return ++m_references;
    }
    STDMETHODIMP_(ULONG) Release() override {
        Program().CountReference(-1);
        ULONG left = --m_references;
        if (left == 0) delete this;
        return left;
    }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override {
        if (count) *count = 0;
        return S_OK;
    }
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return DISP_E_BADINDEX; }
    // The program is reached by dispatch id only.
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override { return DISP_E_UNKNOWNNAME; }

    STDMETHODIMP Invoke(DISPID id, REFIID riid, LCID, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* exception, UINT*) override {
        if (!IsEqualIID(riid, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
        SpreadsheetProgram& program = Program();
        if (!program.running() || program.run() != m_run) return RPC_E_DISCONNECTED;
        if (program.busy()) return RPC_E_CALL_REJECTED;
        if (result) VariantInit(result);
        Call call(id, flags, parameters, result);
        try {
            if (!Answer(call)) return DISP_E_MEMBERNOTFOUND;
            return S_OK;
        } catch (const Failure& failure) {
            if (result) VariantClear(result);
            return failure.hr;
        } catch (const ProgramError& error) {
            if (result) VariantClear(result);
            if (exception) {
                *exception = EXCEPINFO{};
                exception->bstrSource = SysAllocString(L"Excel");
                exception->bstrDescription = SysAllocString(error.description.c_str());
                exception->scode = kProgramErrorCode;
            }
            return DISP_E_EXCEPTION;
        }
    }

protected:
    // Answers a member; false for a member (or kind of call) it has not.
    virtual bool Answer(Call& call) = 0;

private:
    std::uint64_t m_run;
    ULONG m_references = 0;
};

class RangeObject : public ProgramObject {
public:
    RangeObject(std::shared_ptr<OpenWorkbook> book, int sheet, std::uint32_t row, std::uint32_t column)
        : m_book(std::move(book)), m_sheet(sheet), m_row(row), m_column(column) {}

protected:
    bool Answer(Call& call) override {
        switch (call.id) {
        case kMemberColumn:
            if (!call.Get()) return false;
            call.Answer(static_cast<LONG>(m_column));
            return true;
        case kMemberRow:
            if (!call.Get()) return false;
            call.Answer(static_cast<LONG>(m_row));
            return true;
        case kMemberSelect:
            if (!call.Method()) return false;
            // Only a range on the sheet in front can be selected.
            if (Program().activeWorkbook() != m_book || m_book->activeSheet != m_sheet)
                throw ProgramError{L"A range can be selected only on the active sheet of the active workbook."};
            m_book->sheets[static_cast<size_t>(m_sheet)].row = m_row;
            m_book->sheets[static_cast<size_t>(m_sheet)].column = m_column;
            call.AnswerBool(true);
            return true;
        default: return false;
        }
    }

private:
    std::shared_ptr<OpenWorkbook> m_book;
    int m_sheet;
    std::uint32_t m_row, m_column;
};

class SheetObject : public ProgramObject {
public:
    SheetObject(std::shared_ptr<OpenWorkbook> book, int sheet) : m_book(std::move(book)), m_sheet(sheet) {}

protected:
    bool Answer(Call& call) override {
        OpenSheet& sheet = m_book->sheets[static_cast<size_t>(m_sheet)];
        switch (call.id) {
        case kMemberName:
            if (!call.Get()) return false;
            call.Answer(sheet.name);
            return true;
        case kMemberVisible:
            if (call.Put()) {
                LONG value = WholeOf(call.PutValue());
                sheet.visibility = value == 0 ? 0 : value == 2 ? 2 : -1;
                return true;
            }
            if (!call.Get()) return false;
            call.Answer(static_cast<LONG>(sheet.visibility));
            return true;
        case kMemberActivate:
            if (!call.Method()) return false;
            if (sheet.visibility != -1) throw ProgramError{L"The hidden sheet '" + sheet.name + L"' cannot be activated."};
            Program().ActivateWorkbook(m_book);
            m_book->activeSheet = m_sheet;
            return true;
        case kMemberRange: {
            if (!call.Get() || !sheet.worksheet) return false;
            std::wstring text = TextOf(call.Argument(0));
            std::wstring first = text.substr(0, text.find(L':'));
            std::uint32_t row = 0, column = 0;
            if (!ParseCellName(first, row, column) || row > m_book->maxRows || column > m_book->maxColumns)
                throw ProgramError{L"'" + text + L"' names no range of the sheet '" + sheet.name + L"'."};
            call.Answer(new RangeObject(m_book, m_sheet, row, column));
            return true;
        }
        default: return false;
        }
    }

private:
    std::shared_ptr<OpenWorkbook> m_book;
    int m_sheet;
};

class WorksheetsObject : public ProgramObject {
public:
    explicit WorksheetsObject(std::shared_ptr<OpenWorkbook> book) : m_book(std::move(book)) {}

protected:
    bool Answer(Call& call) override {
        std::vector<int> worksheets;
        for (size_t i = 0; i < m_book->sheets.size(); ++i)
            if (m_book->sheets[i].worksheet) worksheets.push_back(static_cast<int>(i));
        switch (call.id) {
        case kMemberCount:
            if (!call.Get()) return false;
            call.Answer(static_cast<LONG>(worksheets.size()));
            return true;
        case kMemberItem: {
            if (!call.Get()) return false;
            const VARIANT* index = call.Argument(0);
            if (index && index->vt == VT_BSTR) {
                std::wstring name = TextOf(index);
                for (int i : worksheets) {
                    if (SameNoCase(m_book->sheets[static_cast<size_t>(i)].name, name)) {
                        call.Answer(new SheetObject(m_book, i));
                        return true;
                    }
                }
                throw Failure{DISP_E_BADINDEX};
            }
            LONG n = WholeOf(index);
            if (n < 1 || static_cast<size_t>(n) > worksheets.size()) throw Failure{DISP_E_BADINDEX};
            call.Answer(new SheetObject(m_book, worksheets[static_cast<size_t>(n - 1)]));
            return true;
        }
        default: return false;
        }
    }

private:
    std::shared_ptr<OpenWorkbook> m_book;
};

class WorkbookObject : public ProgramObject {
public:
    explicit WorkbookObject(std::shared_ptr<OpenWorkbook> book) : m_book(std::move(book)) {}

protected:
    bool Answer(Call& call) override {
        switch (call.id) {
        case kMemberName:
            if (!call.Get()) return false;
            call.Answer(m_book->name);
            return true;
        case kMemberFullName:
            if (!call.Get()) return false;
            call.Answer(m_book->fullName);
            return true;
        case kMemberWorksheets:
            if (!call.Get()) return false;
            call.Answer(new WorksheetsObject(m_book));
            return true;
        default: return false;
        }
    }

private:
    std::shared_ptr<OpenWorkbook> m_book;
};

class WorkbooksObject : public ProgramObject {
protected:
    bool Answer(Call& call) override {
        SpreadsheetProgram& program = Program();
        const auto& books = program.workbooks();
        switch (call.id) {
        case kMemberCount:
            if (!call.Get()) return false;
            call.Answer(static_cast<LONG>(books.size()));
            return true;
        case kMemberItem: {
            if (!call.Get()) return false;
            const VARIANT* index = call.Argument(0);
            if (index && index->vt == VT_BSTR) {
                std::wstring name = TextOf(index);
                for (const auto& book : books) {
                    if (SameNoCase(book->name, name)) {
                        call.Answer(new WorkbookObject(book));
                        return true;
                    }
                }
                throw Failure{DISP_E_BADINDEX};
            }
            LONG n = WholeOf(index);
            if (n < 1 || static_cast<size_t>(n) > books.size()) throw Failure{DISP_E_BADINDEX};
            call.Answer(new WorkbookObject(books[static_cast<size_t>(n - 1)]));
            return true;
        }
        case kMemberAdd:
            if (!call.Method()) return false;
            if (call.Argument(0)) throw ProgramError{L"A workbook cannot be made from a template here."};
            call.Answer(new WorkbookObject(program.AddWorkbook()));
            return true;
        case kMemberOpen: {
            if (!call.Method()) return false;
            std::wstring file = TextOf(call.Argument(0));
            const VARIANT* readOnly = call.Argument(2);
            bool forReading = readOnly && WholeOf(readOnly) != 0;
            auto book = program.OpenFile(std::filesystem::path(ToUtf8(file)), forReading);
            call.Answer(new WorkbookObject(book));
            return true;
        }
        default: return false;
        }
    }
};

class ApplicationObject : public ProgramObject {
protected:
    bool Answer(Call& call) override {
        SpreadsheetProgram& program = Program();
        auto book = program.activeWorkbook();
        bool hasSheet = book && book->activeSheet >= 0 && static_cast<size_t>(book->activeSheet) < book->sheets.size();
        switch (call.id) {
        case kMemberActiveCell:
            if (!call.Get()) return false;
            // With no workbook, or a sheet in front that has no cells, there
            // is no active cell: nothing comes back.
            if (hasSheet && book->sheets[static_cast<size_t>(book->activeSheet)].worksheet) {
                const OpenSheet& sheet = book->sheets[static_cast<size_t>(book->activeSheet)];
                call.Answer(new RangeObject(book, book->activeSheet, sheet.row, sheet.column));
            } else {
                call.Answer(static_cast<IDispatch*>(nullptr));
            }
            return true;
        case kMemberActiveSheet:
            if (!call.Get()) return false;
            call.Answer(hasSheet ? static_cast<IDispatch*>(new SheetObject(book, book->activeSheet)) : nullptr);
            return true;
        case kMemberActiveWorkbook:
            if (!call.Get()) return false;
            call.Answer(book ? static_cast<IDispatch*>(new WorkbookObject(book)) : nullptr);
            return true;
        case kMemberWorkbooks:
            if (!call.Get()) return false;
            call.Answer(new WorkbooksObject);
            return true;
        case kMemberVisible:
            if (call.Put()) {
                const VARIANT* value = call.PutValue();
                program.SetVisible(WholeOf(value) != 0);
                return true;
            }
            if (!call.Get()) return false;
            call.AnswerBool(program.visible());
            return true;
        default: return false;
        }
    }
};

}  // namespace

IDispatch* NewApplicationObject() { return new ApplicationObject; }

}  // namespace cadhost::spreadsheet
