// The AcBlockCount evaluator over tests/fixtures/blocks_r2010.dxf agrees
// with the counts that ezdxf gives for the same codes
// (blocks_r2010.counts.tsv, written by make_fixtures.py).
#include <adslib.h>
#include <dbfield.h>

#include <fstream>
#include <string>
#include <vector>

#include "support/TestHost.h"

namespace {

const std::filesystem::path kBin = QM_OUTPUT_DIR;
const std::filesystem::path kFixtures = std::filesystem::path(QM_SOURCE_DIR) / "tests" / "fixtures";

struct CountCase {
    std::wstring arguments;
    std::wstring count;
};

// The fields of the file keep to one line: \\ stands for a backslash.
std::wstring Unescape(const std::string& field) {
    std::string out;
    for (size_t i = 0; i < field.size(); ++i) {
        if (field[i] == '\\' && i + 1 < field.size() && field[i + 1] == '\\') ++i;
        out += field[i];
    }
    return cadhost::FromUtf8(out);
}

std::vector<CountCase> ReadCounts(const std::filesystem::path& path) {
    std::vector<CountCase> cases;
    std::ifstream in(path);
    std::string line;
    while (std::getline(in, line)) {
        if (line.empty() || line[0] == '#') continue;
        size_t tab = line.find('\t');
        if (tab == std::string::npos) continue;
        cases.push_back({Unescape(line.substr(0, tab)), cadhost::FromUtf8(line.substr(tab + 1))});
    }
    return cases;
}

class BlockCountFixtureTest : public qmtest::HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        ASSERT_TRUE(host().linker().loadModule(cadhost::FromUtf8((kBin / "QuillmarkEval.dbx").string()).c_str(), true))
            << TakeOutput();
    }
};

TEST_F(BlockCountFixtureTest, CountsAgreeWithEzdxf) {
    std::vector<CountCase> cases = ReadCounts(kFixtures / "blocks_r2010.counts.tsv");
    ASSERT_GE(cases.size(), 30u);
    AcDbDatabase drawing(false, true);
    ASSERT_EQ(drawing.readDwgFile(cadhost::FromUtf8((kFixtures / "blocks_r2010.dxf").string()).c_str()), Acad::eOk);
    int windows = 0, conditions = 0, nested = 0;
    for (const CountCase& c : cases) {
        AcDbField field;
        ASSERT_EQ(field.setFieldCode((L"%<\\AcBlockCount " + c.arguments + L">%").c_str()), Acad::eOk);
        field.evaluate(AcDbField::kPreview, &drawing);
        ACHAR* message = nullptr;
        AcDbField::EvalStatus status = field.evaluationStatus(nullptr, &message);
        EXPECT_EQ(status, AcDbField::kSuccess) << cadhost::ToUtf8(c.arguments) << ": " << (message ? CString(message).ToUtf8() : "");
        acutDelBuffer(message);
        EXPECT_EQ(std::wstring(field.getValue()), c.count) << cadhost::ToUtf8(c.arguments);
        windows += c.arguments.find(L"\\Window") != std::wstring::npos;
        conditions += c.arguments.find(L"\\op") != std::wstring::npos;
        nested += c.arguments.find(L"\\nested") != std::wstring::npos;
    }
    // The file covers windows, conditions and nesting, in both spaces.
    EXPECT_GE(windows, 8);
    EXPECT_GE(conditions, 10);
    EXPECT_GE(nested, 15);
}

}  // namespace
