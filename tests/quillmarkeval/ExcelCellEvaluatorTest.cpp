// The ExcelCell evaluator: a cell of a workbook file as the spreadsheet
// program shows it, paths full and relative (with backslashes too), the
// data item that editing needs, and the failures that name the path and
// what was not found.
#include <dbapserv.h>

#include <fstream>

#include "EvaluatorLoader.h"
#include "ExcelCellCode.h"
#include "ExcelCellEvaluator.h"
#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;
const std::filesystem::path kWorkbooks = std::filesystem::path(QM_SOURCE_DIR) / "tests/fixtures/workbooks";

std::wstring Wide(const std::filesystem::path& path) { return cadhost::FromUtf8(path.string()); }

class ExcelCellEvaluatorTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(Wide(kBin / "QuillmarkEval.dbx").c_str(), true)) << TakeOutput();
    }
    AcDbDatabase* db() { return acdbHostApplicationServices()->workingDatabase(); }

    struct Outcome {
        AcDbField::EvalStatus status;
        std::wstring value, message, data;
    };
    Outcome Evaluate(const std::wstring& arguments) {
        AcDbField field((L"%<\\ExcelCell " + arguments + L">%").c_str());
        field.evaluate(AcDbField::kPreview, db());
        Outcome out;
        int code = 0;
        ACHAR* message = nullptr;
        out.status = field.evaluationStatus(&code, &message);
        out.message = message ? message : L"";
        acutDelBuffer(message);
        out.value = field.getValue();
        AcFdFieldValue data;
        const ACHAR* text = nullptr;
        if (field.getData(L"ExcelCell Data", &data) == Acad::eOk && data.get(text)) out.data = text;
        return out;
    }
};

}  // namespace

TEST_F(ExcelCellEvaluatorTest, ACellShowsAsTheProgramShowsItAndTheFieldKeepsItsArguments) {
    struct Case {
        const char* file;
        const wchar_t* sheet;
        const wchar_t* cell;
        const wchar_t* value;
    };
    const Case cases[] = {
        {"cells.xlsx", L"Data", L"$E$2", L"1,234,567.89"},  {"cells.xls", L"Data", L"$E$2", L"1,234,567.89"},
        {"cells.xlsx", L"Data", L"$F$3", L"Tuesday, March 5, 2024"},
        {"cells.xls", L"data", L"$C$6", L"#DIV/0!"},        {"cells.xlsx", L"Data", L"$B$6", L"abcd"},
        {"cells.xls", L"Data", L"$B$4", L"FALSE"},          {"cells.xlsx", L"Data", L"$AB$12", L"deep"},
        {"cells.xlsx", L"Data", L"$Z$99", L""},             {"cells.xlsx", L"Data", L"$E$6", L""},
        {"cells.xlsx", L"Bob's data", L"$B$2", L"7"},       {"dates1904.xls", L"Sheet1", L"$A$1", L"3/1/2024"},
        {"cells.xls", L"Data", L"$IV$65536", L""},          {"sparse.xlsx", L"S3", L"$XFD$1048576", L"last"},
    };
    for (const Case& c : cases) {
        std::wstring arguments = Wide(kWorkbooks / c.file) + L":" + c.sheet + L":" + c.cell;
        Outcome out = Evaluate(arguments);
        EXPECT_EQ(out.status, AcDbField::kSuccess) << cadhost::ToUtf8(arguments) << ": " << cadhost::ToUtf8(out.message);
        EXPECT_EQ(out.value, c.value) << cadhost::ToUtf8(arguments);
        EXPECT_EQ(out.data, arguments);
    }
}

TEST_F(ExcelCellEvaluatorTest, ARelativePathIsReadFromTheDrawingsFolder) {
    std::filesystem::path folder = m_folder.path() / "site";
    std::filesystem::create_directories(folder / "data");
    std::filesystem::copy_file(kWorkbooks / "cells.xlsx", folder / "data" / "cells.xlsx");
    // A drawing never saved has no folder to read it from.
    Outcome unsaved = Evaluate(L"./data/cells.xlsx:Data:$A$1");
    EXPECT_EQ(unsaved.status, AcDbField::kOtherError);
    EXPECT_EQ(unsaved.message, L"The path ./data/cells.xlsx is relative to the drawing's folder, and the drawing has "
                               L"not been saved yet.");
    EXPECT_EQ(unsaved.data, L"./data/cells.xlsx:Data:$A$1");
    std::wstring error;
    ASSERT_TRUE(host().SaveDrawing(folder / "plan.dxf", error)) << cadhost::ToUtf8(error);
    for (const wchar_t* path : {L"./data/cells.xlsx", L".\\data\\cells.xlsx", L"data/cells.xlsx",
                                L"..\\site\\data\\cells.xlsx"}) {
        Outcome out = Evaluate(std::wstring(path) + L":Data:$A$1");
        EXPECT_EQ(out.status, AcDbField::kSuccess) << cadhost::ToUtf8(path) << ": " << cadhost::ToUtf8(out.message);
        EXPECT_EQ(out.value, L"Item") << cadhost::ToUtf8(path);
        EXPECT_EQ(out.data, std::wstring(path) + L":Data:$A$1");  // as the code gave it
    }
}

TEST_F(ExcelCellEvaluatorTest, FailuresNameThePathAndWhatWasNotFound) {
    std::wstring cells = Wide(kWorkbooks / "cells.xlsx");
    std::wstring xls = Wide(kWorkbooks / "cells.xls");
    std::wstring gone = Wide(kWorkbooks / "gone.xlsx");
    std::wstring bomb = Wide(kWorkbooks / "bomb.xlsx");
    struct Case {
        std::wstring arguments;
        AcDbField::EvalStatus status;
        std::wstring message;
        bool data;  // the data item is kept
    };
    const Case cases[] = {
        {gone + L":Data:$A$1", AcDbField::kOtherError,
         L"The workbook " + gone + L" cannot be read: the file is not there.", true},
        {Wide(kWorkbooks / "password.xlsx") + L":Data:$A$1", AcDbField::kOtherError,
         L"The workbook " + Wide(kWorkbooks / "password.xlsx") + L" cannot be read: it is protected by a password.", true},
        {Wide(kWorkbooks / "cells.xls.cells.tsv") + L":Data:$A$1", AcDbField::kOtherError,
         L"The workbook " + Wide(kWorkbooks / "cells.xls.cells.tsv") +
             L" cannot be read: it is neither an .xls nor an .xlsx workbook.",
         true},
        {cells + L":Gone:$A$1", AcDbField::kInvalidCode, L"The workbook " + cells + L" has no worksheet \"Gone\".", true},
        {xls + L":Data:$IW$1", AcDbField::kInvalidCode,
         L"The cell $IW$1 lies beyond the 256 columns of the sheet \"Data\" of " + xls + L".", true},
        {xls + L":Data:$A$65537", AcDbField::kInvalidCode,
         L"The cell $A$65537 lies beyond the 65536 rows of the sheet \"Data\" of " + xls + L".", true},
        {cells + L":Data:$A$1000000000000", AcDbField::kInvalidCode,
         L"The cell $A$1000000000000 lies beyond the 1048576 rows of the sheet \"Data\" of " + cells + L".", true},
        {cells + L":Data:$A$0", AcDbField::kSyntaxError,
         L"The cell \"$A$0\" of the field cannot be read: rows count from 1.", true},
        {cells + L":Data:$1$1", AcDbField::kSyntaxError,
         L"The cell \"$1$1\" of the field cannot be read: it begins with no column letters.", true},
        {cells + L":Data:$A$1x", AcDbField::kSyntaxError,
         L"The cell \"$A$1x\" of the field cannot be read: its row is no number.", true},
        {bomb + L":Sheet1:$A$1", AcDbField::kOtherError,
         L"The sheet \"Sheet1\" of " + bomb + L" cannot be read: its part xl/worksheets/sheet1.xml inflates to more "
                                               L"than 256 MB.",
         true},
        {L"", AcDbField::kSyntaxError, L"The field names no workbook, sheet and cell.", false},
        {L"book.xlsx:$A$1", AcDbField::kSyntaxError,
         L"\"book.xlsx:$A$1\" is not a workbook's path, a sheet and a cell, joined by colons.", false},
    };
    for (const Case& c : cases) {
        Outcome out = Evaluate(c.arguments);
        EXPECT_EQ(out.status, c.status) << cadhost::ToUtf8(c.arguments);
        EXPECT_EQ(out.message, c.message) << cadhost::ToUtf8(c.arguments);
        EXPECT_EQ(out.value, L"####") << cadhost::ToUtf8(c.arguments);
        EXPECT_EQ(out.data, c.data ? c.arguments : L"") << cadhost::ToUtf8(c.arguments);
    }
}

TEST_F(ExcelCellEvaluatorTest, APassReadsEachWorkbookOnceAndTheNextPassReadsItAnew) {
    std::filesystem::path copy = m_folder.path() / "book.xlsx";
    std::filesystem::copy_file(kWorkbooks / "cells.xlsx", copy);
    auto* loader = static_cast<AsdkQuillmarkEvaluatorLoader*>(acdbGetFieldEngine()->getEvaluatorLoader(0));
    ASSERT_NE(loader, nullptr);
    CPassFileCache<CWorkbookContent>& cache = loader->ExcelCell()->Workbooks();
    int before = cache.Loads();
    // Outside a pass every evaluation reads the file.
    Evaluate(Wide(copy) + L":Data:$A$1");
    Evaluate(Wide(copy) + L":Data:$B$1");
    EXPECT_EQ(cache.Loads(), before + 2);
    cache.BeginPass();
    for (const wchar_t* cell : {L"$A$1", L"$A$2", L"$E$2", L"$AB$12"}) Evaluate(Wide(copy) + L":Data:" + cell);
    Evaluate(Wide(m_folder.path() / "gone.xlsx") + L":Data:$A$1");
    Evaluate(Wide(m_folder.path() / "gone.xlsx") + L":Data:$A$2");
    EXPECT_EQ(cache.Loads(), before + 4);  // the book once, the missing file once
    // The file changes within the pass: the pass keeps what it read.
    std::filesystem::copy_file(kWorkbooks / "second.xlsx", copy, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(Evaluate(Wide(copy) + L":Data:$A$1").value, L"Item");
    cache.EndPass();
    Outcome after = Evaluate(Wide(copy) + L":Other:$B$2");
    EXPECT_EQ(after.value, L"other");
}

TEST(ExcelCellCodeTest, ArgumentsAreCutFromTheEnd) {
    struct Case {
        const wchar_t* text;
        bool ok;
        const wchar_t *path, *sheet, *cell;
    };
    const Case cases[] = {
        {L"C:\\data\\book.xls:Sheet1:$B$3", true, L"C:\\data\\book.xls", L"Sheet1", L"$B$3"},
        {L"/a:b/book.xlsx:Data:$AB$12", true, L"/a:b/book.xlsx", L"Data", L"$AB$12"},
        {L"book.xlsx:Bob's data:$A$1", true, L"book.xlsx", L"Bob's data", L"$A$1"},
        {L"book.xlsx:Sheet1:", false},
        {L"book.xlsx::$A$1", false},
        {L":Sheet1:$A$1", false},
        {L"$A$1", false},
        {L"", false},
    };
    for (const Case& c : cases) {
        ExcelCellArguments parts;
        EXPECT_EQ(SplitExcelCellArguments(c.text, parts), c.ok ? 1 : 0) << cadhost::ToUtf8(c.text);
        if (!c.ok) continue;
        EXPECT_EQ(parts.path, c.path);
        EXPECT_EQ(parts.sheet, c.sheet);
        EXPECT_EQ(parts.cell, c.cell);
    }
    long long row = 0, column = 0;
    CString why;
    EXPECT_EQ(ReadExcelCellName(L"$ab$3", row, column, why), 1);
    EXPECT_EQ(row, 3);
    EXPECT_EQ(column, 28);
    EXPECT_EQ(ReadExcelCellName(L"XFD1048576", row, column, why), 1);
    EXPECT_EQ(column, 16384);
    EXPECT_EQ(ReadExcelCellName(L"$A$", row, column, why), 0);
    EXPECT_EQ(ReadExcelCellName(L"$A$-1", row, column, why), 0);
}
