// The spreadsheet program as automation meets it, member by dispatch id:
// started by CreateDispatch, its workbooks real files, what is active, the
// refusals of a busy program and of one that is not installed, and the
// references that callers take and end.
#include <gtest/gtest.h>

#include <afxdisp.h>

#include "core/Utf8.h"
#include "spreadsheet/ProgramObjects.h"
#include "spreadsheet/SpreadsheetProgram.h"

using namespace cadhost::spreadsheet;

namespace {

const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

const VARIANT kMissing = [] {
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_ERROR;
    v.scode = DISP_E_PARAMNOTFOUND;
    return v;
}();

// A driver with the calls of the members, each one InvokeHelper.
struct Object : COleDispatchDriver {
    Object() = default;
    explicit Object(LPDISPATCH dispatch) : COleDispatchDriver(dispatch) {}
    LPDISPATCH Get(DISPID id) {
        LPDISPATCH result = nullptr;
        InvokeHelper(id, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, nullptr);
        return result;
    }
    LONG Number(DISPID id) {
        LONG result = -1;
        InvokeHelper(id, DISPATCH_PROPERTYGET, VT_I4, &result, nullptr);
        return result;
    }
    CString Text(DISPID id) {
        CString result;
        InvokeHelper(id, DISPATCH_PROPERTYGET, VT_BSTR, &result, nullptr);
        return result;
    }
    LPDISPATCH Item(LONG index) {
        static const BYTE types[] = VTS_VARIANT;
        COleVariant value(index);
        LPDISPATCH result = nullptr;
        InvokeHelper(kMemberItem, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, types, static_cast<VARIANT*>(&value));
        return result;
    }
    LPDISPATCH Open(const std::wstring& path, LONG readOnly) {
        static const BYTE types[] =
            VTS_BSTR VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT
                VTS_VARIANT VTS_VARIANT VTS_VARIANT VTS_VARIANT;
        COleVariant links(static_cast<LONG>(1)), reading(readOnly);
        LPDISPATCH result = nullptr;
        const VARIANT* m = &kMissing;
        InvokeHelper(kMemberOpen, DISPATCH_METHOD, VT_DISPATCH, &result, types, path.c_str(),
                     static_cast<VARIANT*>(&links), static_cast<VARIANT*>(&reading), m, m, m, m, m, m, m, m, m, m);
        return result;
    }
    LPDISPATCH Add() {
        static const BYTE types[] = VTS_VARIANT;
        LPDISPATCH result = nullptr;
        InvokeHelper(kMemberAdd, DISPATCH_METHOD, VT_DISPATCH, &result, types, &kMissing);
        return result;
    }
    LPDISPATCH Range(const wchar_t* cell) {
        static const BYTE types[] = VTS_VARIANT VTS_VARIANT;
        COleVariant first(cell);
        LPDISPATCH result = nullptr;
        InvokeHelper(kMemberRange, DISPATCH_PROPERTYGET, VT_DISPATCH, &result, types, static_cast<VARIANT*>(&first),
                     &kMissing);
        return result;
    }
    void Call(DISPID id) {
        VARIANT result;
        VariantInit(&result);
        InvokeHelper(id, DISPATCH_METHOD, VT_VARIANT, &result, nullptr);
        VariantClear(&result);
    }
    void PutVisible(LONG value) {
        static const BYTE types[] = VTS_I4;
        InvokeHelper(kMemberVisible, DISPATCH_PROPERTYPUT, VT_EMPTY, nullptr, types, value);
    }
};

// The description of the program's error that a call raises, or what else.
template <class F>
std::wstring Refusal(F call) {
    try {
        call();
    } catch (COleDispatchException* e) {
        std::wstring text = e->m_strDescription.str();
        e->Delete();
        return text;
    } catch (COleException* e) {
        wchar_t code[32];
        std::swprintf(code, 32, L"status 0x%08X", static_cast<unsigned>(e->m_sc));
        e->Delete();
        return code;
    }
    return L"(no exception)";
}

class SpreadsheetProgramTest : public ::testing::Test {
protected:
    void SetUp() override { SpreadsheetProgram::Instance().Reset(); }
    void TearDown() override {
        EXPECT_EQ(SpreadsheetProgram::Instance().ClientReferences(), 0) << "a reference was not released";
        SpreadsheetProgram::Instance().Reset();
    }
    SpreadsheetProgram& program() { return SpreadsheetProgram::Instance(); }
};

}  // namespace

TEST_F(SpreadsheetProgramTest, CreateDispatchStartsItHiddenWithoutAWorkbook) {
    EXPECT_FALSE(program().running());
    {
        Object application;
        COleException error;
        ASSERT_TRUE(application.CreateDispatch(kProgramId, &error));
        EXPECT_TRUE(program().running());
        EXPECT_FALSE(program().visible());
        BOOL visible = TRUE;
        application.InvokeHelper(kMemberVisible, DISPATCH_PROPERTYGET, VT_BOOL, &visible, nullptr);
        EXPECT_FALSE(visible);
        application.PutVisible(1);
        EXPECT_TRUE(program().visible());
        Object books(application.Get(kMemberWorkbooks));
        EXPECT_EQ(books.Number(kMemberCount), 0);
        EXPECT_EQ(application.Get(kMemberActiveWorkbook), nullptr);
        EXPECT_EQ(application.Get(kMemberActiveCell), nullptr);
        EXPECT_EQ(program().ClientReferences(), 2);
        // Found while it runs, the same program.
        IUnknown* unknown = nullptr;
        ASSERT_EQ(GetActiveObject(kApplicationClsid, nullptr, &unknown), S_OK);
        EXPECT_EQ(unknown, static_cast<IUnknown*>(application.m_lpDispatch));
        unknown->Release();
    }
    EXPECT_TRUE(program().running());  // letting go of it leaves it running
}

TEST_F(SpreadsheetProgramTest, NewWorkbooksCountUpAndOpenOnTheirFirstSheet) {
    Object application;
    ASSERT_TRUE(application.CreateDispatch(kProgramId));
    Object books(application.Get(kMemberWorkbooks));
    for (const wchar_t* name : {L"Book1", L"Book2"}) {
        Object book(books.Add());
        EXPECT_EQ(book.Text(kMemberName), name);
        EXPECT_EQ(book.Text(kMemberFullName), name);
        Object sheet(application.Get(kMemberActiveSheet));
        EXPECT_EQ(sheet.Text(kMemberName), L"Sheet1");
        Object cell(application.Get(kMemberActiveCell));
        EXPECT_EQ(cell.Number(kMemberRow), 1);
        EXPECT_EQ(cell.Number(kMemberColumn), 1);
    }
    EXPECT_EQ(books.Number(kMemberCount), 2);
    Object first(books.Item(1));
    EXPECT_EQ(first.Text(kMemberName), L"Book1");
    EXPECT_EQ(Refusal([&] { Object(books.Item(3)); }), L"status 0x8002000B");
    EXPECT_EQ(Refusal([&] { Object(books.Item(0)); }), L"status 0x8002000B");
}

TEST_F(SpreadsheetProgramTest, AnOpenedWorkbookComesWithTheSheetAndCellItWasSavedWith) {
    for (const char* name : {"cells.xlsx", "cells.xls"}) {
        SCOPED_TRACE(name);
        program().Reset();
        Object application;
        ASSERT_TRUE(application.CreateDispatch(kProgramId));
        Object books(application.Get(kMemberWorkbooks));
        std::wstring path = cadhost::FromUtf8((kWorkbooks / name).string());
        Object book(books.Open(path, 1));
        EXPECT_EQ(book.Text(kMemberName).str(), cadhost::FromUtf8(name));
        EXPECT_EQ(book.Text(kMemberFullName).str(), path);
        EXPECT_TRUE(program().workbooks().back()->readOnly);
        Object sheet(application.Get(kMemberActiveSheet));
        EXPECT_EQ(sheet.Text(kMemberName), L"Second");
        Object cell(application.Get(kMemberActiveCell));
        EXPECT_EQ(cell.Number(kMemberColumn), 3);
        EXPECT_EQ(cell.Number(kMemberRow), 7);
        Object sheets(book.Get(kMemberWorksheets));
        EXPECT_EQ(sheets.Number(kMemberCount), 4);
        Object fourth(sheets.Item(4));
        EXPECT_EQ(fourth.Text(kMemberName), L"Bob's data");
    }
}

TEST_F(SpreadsheetProgramTest, OpeningTheSamePathActivatesItAndTheSameNameIsRefused) {
    Object application;
    ASSERT_TRUE(application.CreateDispatch(kProgramId));
    Object books(application.Get(kMemberWorkbooks));
    std::wstring path = cadhost::FromUtf8((kWorkbooks / "cells.xlsx").string());
    Object first(books.Open(path, 0));
    Object other(books.Add());
    // The same file in another case of letters is the open one.
    std::wstring upper = path;
    upper.replace(upper.size() - 10, 10, L"CELLS.XLSX");
    Object again(books.Open(upper, 0));
    EXPECT_EQ(books.Number(kMemberCount), 2);
    Object active(application.Get(kMemberActiveWorkbook));
    EXPECT_EQ(active.Text(kMemberName), L"cells.xlsx");
    std::wstring twin = cadhost::FromUtf8((kWorkbooks / "same" / "cells.xlsx").string());
    EXPECT_EQ(Refusal([&] { Object(books.Open(twin, 0)); }),
              L"A document with the name 'cells.xlsx' is already open. Two documents of the same name cannot be open "
              L"at once.");
    std::wstring gone = cadhost::FromUtf8((kWorkbooks / "gone.xlsx").string());
    EXPECT_EQ(Refusal([&] { Object(books.Open(gone, 0)); }), L"Cannot open '" + gone + L"': the file is not there.");
    EXPECT_EQ(books.Number(kMemberCount), 2);
}

TEST_F(SpreadsheetProgramTest, ARangeIsSelectedOnTheActiveSheetOnly) {
    Object application;
    ASSERT_TRUE(application.CreateDispatch(kProgramId));
    Object books(application.Get(kMemberWorkbooks));
    Object book(books.Open(cadhost::FromUtf8((kWorkbooks / "cells.xlsx").string()), 0));
    Object sheets(book.Get(kMemberWorksheets));
    Object data(sheets.Item(1));
    EXPECT_EQ(data.Text(kMemberName), L"Data");
    Object range(data.Range(L"$AB$12"));
    EXPECT_EQ(range.Number(kMemberColumn), 28);
    EXPECT_EQ(range.Number(kMemberRow), 12);
    EXPECT_EQ(Refusal([&] { range.Call(kMemberSelect); }),
              L"A range can be selected only on the active sheet of the active workbook.");
    data.PutVisible(1);
    data.Call(kMemberActivate);
    range.Call(kMemberSelect);
    Object cell(application.Get(kMemberActiveCell));
    EXPECT_EQ(cell.Number(kMemberColumn), 28);
    EXPECT_EQ(cell.Number(kMemberRow), 12);
    for (const wchar_t* bad : {L"A0", L"IV", L"$A$1048577", L"junk", L""})
        EXPECT_NE(Refusal([&] { Object(data.Range(bad)); }), L"(no exception)") << cadhost::ToUtf8(bad);
    // A hidden sheet is shown before it is activated; activating it hidden fails.
    Object hidden(sheets.Item(3));
    EXPECT_EQ(Refusal([&] { hidden.Call(kMemberActivate); }), L"The hidden sheet 'Hidden' cannot be activated.");
    hidden.PutVisible(1);
    hidden.Call(kMemberActivate);
    Object sheet(application.Get(kMemberActiveSheet));
    EXPECT_EQ(sheet.Text(kMemberName), L"Hidden");
}

TEST_F(SpreadsheetProgramTest, ABusyProgramRejectsEveryCallAndEveryNewRequest) {
    Object application;
    ASSERT_TRUE(application.CreateDispatch(kProgramId));
    program().SetBusy(true);
    EXPECT_EQ(Refusal([&] { Object(application.Get(kMemberWorkbooks)); }), L"status 0x80010001");
    Object second;
    COleException error;
    EXPECT_FALSE(second.CreateDispatch(kProgramId, &error));
    EXPECT_EQ(error.m_sc, RPC_E_CALL_REJECTED);
    // Found in the table all the same: the table is not the program.
    IUnknown* unknown = nullptr;
    ASSERT_EQ(GetActiveObject(kApplicationClsid, nullptr, &unknown), S_OK);
    unknown->Release();
    program().SetBusy(false);
    Object books(application.Get(kMemberWorkbooks));
    EXPECT_EQ(books.Number(kMemberCount), 0);
}

TEST_F(SpreadsheetProgramTest, ObjectsOfAProgramThatQuitAnswerNoMore) {
    Object application;
    ASSERT_TRUE(application.CreateDispatch(kProgramId));
    Object books(application.Get(kMemberWorkbooks));
    program().Quit();
    EXPECT_EQ(Refusal([&] { books.Number(kMemberCount); }), L"status 0x80010108");
    IUnknown* unknown = nullptr;
    EXPECT_EQ(GetActiveObject(kApplicationClsid, nullptr, &unknown), MK_E_UNAVAILABLE);
    EXPECT_EQ(program().ClientReferences(), 2);  // still held, by this test
}

TEST_F(SpreadsheetProgramTest, AMachineWithoutTheProgramHasNoClassForIt) {
    program().SetInstalled(false);
    CLSID clsid;
    EXPECT_EQ(CLSIDFromProgID(kProgramId, &clsid), CO_E_CLASSSTRING);
    Object application;
    COleException error;
    EXPECT_FALSE(application.CreateDispatch(kProgramId, &error));
    EXPECT_EQ(error.m_sc, CO_E_CLASSSTRING);
    EXPECT_FALSE(program().running());
    EXPECT_EQ(program().Describe(), L"spreadsheet program: not installed");
    program().SetInstalled(true);
    EXPECT_EQ(CLSIDFromProgID(L"excel.application", &clsid), S_OK);
    EXPECT_TRUE(IsEqualCLSID(clsid, kApplicationClsid));
}

TEST_F(SpreadsheetProgramTest, TheUsersSideAndWhatItPrints) {
    EXPECT_EQ(program().Describe(), L"spreadsheet program: not running\n  references held by others: 0");
    program().Start(true);
    program().OpenFile(kWorkbooks / "cells.xls", false);
    program().AddWorkbook();
    program().ActivateByName(L"CELLS.XLS");
    program().Select(L"data", L"b3");
    std::wstring path = cadhost::FromUtf8((kWorkbooks / "cells.xls").string());
    EXPECT_EQ(program().Describe(), L"spreadsheet program: running, visible\n"
                                    L"  workbook 1: \"cells.xls\" \"" + path + L"\" read-write\n"
                                    L"  workbook 2: \"Book1\" \"Book1\" read-write\n"
                                    L"  active: \"cells.xls\", sheet \"Data\", cell B3\n"
                                    L"  references held by others: 0");
    EXPECT_THROW(program().Select(L"Hidden", L"A1"), ProgramError);
    EXPECT_THROW(program().Select(L"Data", L"IW1"), ProgramError);  // beyond an .xls sheet's 256 columns
    EXPECT_THROW(program().Select(L"Nope", L"A1"), ProgramError);
    EXPECT_THROW(program().ActivateByName(L"Book9"), ProgramError);
    EXPECT_THROW(program().SetInstalled(false), ProgramError);
}
