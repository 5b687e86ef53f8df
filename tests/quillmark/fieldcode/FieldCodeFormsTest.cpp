// The six field code forms: every example code, the conditions of each
// form, the pieces of the block count code in order, column names, and the
// path step.
#include <gtest/gtest.h>

#include <dbfield.h>

#include <initializer_list>
#include <vector>

#include "fieldcode/FieldCodeForms.h"

namespace {

void Fill(CStringArray& array, std::initializer_list<const wchar_t*> texts) {
    array.RemoveAll();
    for (const wchar_t* text : texts) array.Add(text);
}

TEST(ObjectsFieldCode, ExamplesAndEmptyList) {
    CStringArray handles;
    Fill(handles, {L"2F1", L"2F5"});
    EXPECT_EQ(ComposeObjectsFieldCode(QM_EVALUATOR_AREA, handles, L""), L"%<\\AcArea Object(<2F1;2F5>)>%");
    Fill(handles, {L"2F1"});
    EXPECT_EQ(ComposeObjectsFieldCode(QM_EVALUATOR_LENGTH, handles, L"%lu2%pr2"),
              L"%<\\AcLength Object(<2F1>) \\f \"%lu2%pr2\">%");
    Fill(handles, {});
    EXPECT_EQ(ComposeObjectsFieldCode(QM_EVALUATOR_AREA, handles, L""), L"%<\\AcArea Object(<>)>%");
    EXPECT_EQ(ComposeObjectsFieldCode(QM_EVALUATOR_LENGTH, handles, L"%pr0"), L"%<\\AcLength Object(<>) \\f \"%pr0\">%");
    // No escaping of any kind: a quote in the format goes in as it stands.
    Fill(handles, {L"A", L"B", L"C"});
    EXPECT_EQ(ComposeObjectsFieldCode(QM_EVALUATOR_AREA, handles, L"%ps[\",]"),
              L"%<\\AcArea Object(<A;B;C>) \\f \"%ps[\",]\">%");
}

struct BlockCountCase {
    const char* name;
    void (*setUp)(BlockCountCodeState&);
    const wchar_t* code;
};

void Names(BlockCountCodeState& s) { Fill(s.blockNames, {L"DOOR", L"WIN"}); }

const BlockCountCase kBlockCountCases[] = {
    {"nothing ticked", [](BlockCountCodeState&) {}, L"%<\\AcBlockCount >%"},
    {"filter but no tick",
     [](BlockCountCodeState& s) {
         Fill(s.layers, {L"0", L"WALL"});
         s.tag = L"TYPE";
         s.value = L"A";
         s.nested = TRUE;
         s.windowMode = TRUE;
         s.spaceHandle = L"1F";
         s.format = L"%ps[,pcs]";
     },
     L"%<\\AcBlockCount >%"},
    {"names only", Names, L"%<\\AcBlockCount \"DOOR;WIN\">%"},
    {"layers",
     [](BlockCountCodeState& s) {
         Names(s);
         Fill(s.layers, {L"0", L"WALL"});
         s.nested = TRUE;
     },
     L"%<\\AcBlockCount \"DOOR;WIN\" \\layer \"0;WALL\" \\nested>%"},
    {"every piece in order",
     [](BlockCountCodeState& s) {
         Names(s);
         Fill(s.layers, {L"0", L"WALL"});
         s.op = L"=";
         s.tag = L"TYPE";
         s.value = L"A";
         s.nested = TRUE;
         s.windowMode = TRUE;
         s.spaceHandle = L"1F";
         s.secondCorner[0] = 100;
         s.secondCorner[1] = 50;
         s.format = L"%ps[,pcs]";
     },
     L"%<\\AcBlockCount \"DOOR;WIN\" \\layer \"0;WALL\" \\op \"=\" \\tag \"TYPE\" \\value \"A\" \\nested "
     L"\\Space(1F) \\Window(0,0,0:100,50,0) \\f \"%ps[,pcs]\">%"},
    {"tag only",
     [](BlockCountCodeState& s) {
         Fill(s.blockNames, {L"B"});
         s.tag = L"T";
     },
     L"%<\\AcBlockCount \"B\" \\op \"\" \\tag \"T\" \\value \"\">%"},
    {"value without tag",
     [](BlockCountCodeState& s) {
         Fill(s.blockNames, {L"B"});
         s.op = L"=";
         s.value = L"A";
     },
     L"%<\\AcBlockCount \"B\">%"},
    {"corner cut by %g",
     [](BlockCountCodeState& s) {
         Fill(s.blockNames, {L"B"});
         s.windowMode = TRUE;
         s.spaceHandle = L"22";
         s.firstCorner[0] = 1234567.25;
         s.firstCorner[1] = -0.5;
         s.firstCorner[2] = 0.000012345;
         s.secondCorner[0] = 12.5;
         s.secondCorner[1] = 100000;
         s.secondCorner[2] = 1e20;
     },
     L"%<\\AcBlockCount \"B\" \\Space(22) \\Window(1.23457e+006,-0.5,1.2345e-005:12.5,100000,1e+020)>%"},
    {"space that could not be opened",
     [](BlockCountCodeState& s) {
         Fill(s.blockNames, {L"B"});
         s.windowMode = TRUE;
     },
     L"%<\\AcBlockCount \"B\" \\Space() \\Window(0,0,0:0,0,0)>%"},
    {"format only",
     [](BlockCountCodeState& s) {
         Fill(s.blockNames, {L"B\"Q"});
         s.format = L"%ct8[2]";
     },
     L"%<\\AcBlockCount \"B\"Q\" \\f \"%ct8[2]\">%"},
};

class BlockCountFieldCode : public ::testing::TestWithParam<BlockCountCase> {};

TEST_P(BlockCountFieldCode, WritesThePiecesThatApply) {
    BlockCountCodeState state;
    GetParam().setUp(state);
    EXPECT_EQ(ComposeBlockCountFieldCode(state), GetParam().code) << GetParam().name;
}

INSTANTIATE_TEST_SUITE_P(FieldCodeForms, BlockCountFieldCode, ::testing::ValuesIn(kBlockCountCases));

// Records what it was given and answers a path of its own.
class RecordingPathStep : public CFieldPathStep {
public:
    CString Apply(const CString& path) override {
        seen.push_back(path);
        return L"..\\data\\notes.txt";
    }
    std::vector<CString> seen;
};

TEST(TextFileFieldCode, ThePathGoesInBareThroughTheStep) {
    EXPECT_EQ(ComposeTextFileFieldCode(L"C:\\data\\notes.txt"), L"%<\\TextField C:\\data\\notes.txt>%");
    EXPECT_EQ(ComposeTextFileFieldCode(L""), L"%<\\TextField >%");
    EXPECT_EQ(ComposeTextFileFieldCode(L"C:\\my files\\a>%b.txt"), L"%<\\TextField C:\\my files\\a>%b.txt>%");
    RecordingPathStep step;
    EXPECT_EQ(ComposeTextFileFieldCode(L"C:\\data\\notes.txt", &step), L"%<\\TextField ..\\data\\notes.txt>%");
    ASSERT_EQ(step.seen.size(), 1u);
    EXPECT_EQ(step.seen[0], L"C:\\data\\notes.txt");
}

TEST(ExcelCellFieldCode, NeedsAllFourBoxes) {
    EXPECT_EQ(ComposeExcelCellFieldCode(L"C:\\data\\book.xls", L"Sheet1", L"B", L"3"),
              L"%<\\ExcelCell C:\\data\\book.xls:Sheet1:$B$3>%");
    RecordingPathStep step;
    const wchar_t* boxes[4] = {L"C:\\b.xls", L"S", L"B", L"3"};
    for (int empty = 0; empty < 4; ++empty) {
        CString box[4];
        for (int i = 0; i < 4; ++i) box[i] = i == empty ? L"" : boxes[i];
        EXPECT_EQ(ComposeExcelCellFieldCode(box[0], box[1], box[2], box[3], &step), L"%<\\ExcelCell >%") << empty;
    }
    EXPECT_TRUE(step.seen.empty());  // an incomplete page takes no path step
    EXPECT_EQ(ComposeExcelCellFieldCode(L"C:\\b.xls", L"S", L"B", L"3", &step), L"%<\\ExcelCell ..\\data\\notes.txt:S:$B$3>%");
    EXPECT_EQ(step.seen.size(), 1u);
}

TEST(ExcelCellFieldCode, ANumberInTheColumnBoxBecomesLetters) {
    struct Case {
        const wchar_t* column;
        const wchar_t* inCode;
    } cases[] = {{L"1", L"A"},      {L"26", L"Z"},   {L"27", L"AA"},  {L"28", L"AB"},   {L"52", L"AZ"},
                 {L"53", L"BA"},    {L"702", L"ZZ"}, {L"ab", L"ab"},  {L"AB", L"AB"},   {L"0", L"0"},
                 {L"-3", L"-3"},    {L"3x", L"C"},   {L" 28", L"AB"}, {L"703", L"703"}, {L"x1", L"x1"}};
    for (const Case& c : cases) {
        CString expected;
        expected.Format(L"%%<\\ExcelCell b.xls:S:$%s$7>%%", c.inCode);
        EXPECT_EQ(ComposeExcelCellFieldCode(L"b.xls", L"S", c.column, L"7"), expected) << c.column;
    }
}

TEST(ColumnNames, LettersAndCellNames) {
    struct Case {
        int column;
        const wchar_t* letters;
        const wchar_t* cellName;  // row 3
    } cases[] = {{1, L"A", L"$A$3"},    {2, L"B", L"$B$3"},      {26, L"Z", L"$Z$3"},   {27, L"AA", L"$AA$3"},
                 {28, L"AB", L"$AB$3"}, {52, L"AZ", L"$AZ$3"},   {53, L"BA", L"$BA$3"}, {702, L"ZZ", L"$ZZ$3"},
                 {703, L"", L""},       {100000, L"", L""},      {0, L"A", L""},        {-5, L"A", L""}};
    for (const Case& c : cases) {
        EXPECT_EQ(ColumnLetters(c.column), c.letters) << c.column;
        EXPECT_EQ(MakeCellName(3, c.column), c.cellName) << c.column;
    }
    EXPECT_EQ(MakeCellName(0, 1), L"");
    EXPECT_EQ(MakeCellName(-1, 1), L"");
    EXPECT_EQ(MakeCellName(123456, 2), L"$B$123456");
}

TEST(TableCellFieldCode, ReferenceAndCode) {
    CString reference = ComposeTableCellReference(L"3A7", MakeCellName(3, 2));
    EXPECT_EQ(reference, L"Table(<3A7>).$B$3");
    EXPECT_EQ(ComposeTableCellFieldCode(reference), L"%<\\TableCell Table(<3A7>).$B$3>%");
    EXPECT_EQ(ComposeTableCellFieldCode(L""), L"%<\\TableCell >%");
}

// The host reads every composed code back into the pieces that the pages
// and the evaluators rely on.
TEST(ComposedCodes, ReadBackIntoAFieldUnchanged) {
    CStringArray handles;
    Fill(handles, {L"2F1"});
    BlockCountCodeState every;
    kBlockCountCases[4].setUp(every);
    struct Case {
        CString code;
        const wchar_t* evaluatorId;
        const wchar_t* format;
    } cases[] = {
        {ComposeObjectsFieldCode(QM_EVALUATOR_LENGTH, handles, L"%lu2%pr2"), L"AcLength", L"%lu2%pr2"},
        {ComposeObjectsFieldCode(QM_EVALUATOR_AREA, handles, L""), L"AcArea", L""},
        {ComposeBlockCountFieldCode(every), L"AcBlockCount", L"%ps[,pcs]"},
        {ComposeBlockCountFieldCode(BlockCountCodeState()), L"AcBlockCount", L""},
        {ComposeTextFileFieldCode(L"C:\\data\\notes.txt"), L"TextField", L""},
        {ComposeExcelCellFieldCode(L"C:\\data\\book.xls", L"Sheet1", L"2", L"3"), L"ExcelCell", L""},
        {ComposeExcelCellFieldCode(L"", L"", L"", L""), L"ExcelCell", L""},
        {ComposeTableCellFieldCode(L"Table(<3A7>).$B$3"), L"TableCell", L""},
    };
    for (const Case& c : cases) {
        AcDbField field;
        ASSERT_EQ(field.setFieldCode(c.code, 0, nullptr), Acad::eOk) << c.code.ToUtf8();
        EXPECT_STREQ(field.evaluatorId(), c.evaluatorId);
        EXPECT_STREQ(field.getFormat(), c.format);
        EXPECT_EQ(CString(field.getFieldCode(17, nullptr, AcDb::kForRead)), c.code);
    }
}

}  // namespace
