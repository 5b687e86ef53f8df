// cadhost update: what it prints, what it writes, and that it writes nothing
// but the fields' values, nor anything at all for bad input.
#include <set>
#include <sstream>

#include "UpdateCommand.h"
#include "support/FieldDrawings.h"
#include "support/TestHost.h"

namespace {

using qmtest::DxfGroup;
using qmtest::FixturePath;

class UpdateCommandTest : public ::testing::Test {
protected:
    std::filesystem::path Copy(const std::string& fixture, const std::string& name) {
        std::filesystem::path path = m_folder.path() / name;
        std::filesystem::copy_file(FixturePath(fixture), path, std::filesystem::copy_options::overwrite_existing);
        return path;
    }
    int Update(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"--settings", (m_folder.path() / "settings").string()});
        m_out.str("");
        m_errors.str("");
        return cadhost::RunUpdate(arguments, m_out, m_errors);
    }
    // Replaces the first occurrence of a text in a file.
    static void Edit(const std::filesystem::path& path, const std::string& from, const std::string& to) {
        std::string text = qmtest::ReadText(path);
        size_t at = text.find(from);
        ASSERT_NE(at, std::string::npos) << from;
        text.replace(at, from.size(), to);
        qmtest::WriteText(path, text);
    }
    // The objects that differ between two files, with the codes of the
    // groups that differ; objects that only one file has are named with the
    // code -1.
    static std::map<std::string, std::set<int>> Differences(const std::filesystem::path& a,
                                                            const std::filesystem::path& b) {
        std::map<std::string, std::set<int>> out;
        auto first = qmtest::DxfObjectsByHandle(a), second = qmtest::DxfObjectsByHandle(b);
        for (const auto& [handle, groups] : first) {
            auto it = second.find(handle);
            if (it == second.end()) {
                out[handle].insert(-1);
                continue;
            }
            const std::vector<DxfGroup>& other = it->second;
            for (size_t i = 0; i < groups.size() || i < other.size(); ++i) {
                if (i >= groups.size() || i >= other.size()) {
                    out[handle].insert(-1);
                    break;
                }
                if (groups[i].code != other[i].code || groups[i].value != other[i].value)
                    out[handle].insert(groups[i].code);
            }
        }
        for (const auto& [handle, groups] : second)
            if (!first.count(handle)) out[handle].insert(-1);
        return out;
    }

    qmtest::TempFolder m_folder;
    std::ostringstream m_out, m_errors;
};

TEST_F(UpdateCommandTest, UpdatesInPlaceAndReportsEachFailure) {
    std::filesystem::path path = Copy("tablecell_fields.dxf", "drawing.dxf");
    auto texts = qmtest::ReadFieldFixture();
    EXPECT_EQ(Update({path.string()}), 1);
    EXPECT_EQ(m_errors.str(), "");
    EXPECT_EQ(m_out.str(),
              "Updated " + path.string() + ": 6 fields evaluated, 4 changed, 3 failed.\n"
              "  failed: text " + texts.at("not_a_table").text + " %<\\TableCell " + texts.at("not_a_table").arguments +
                  ">%: No table has the handle " + texts.at("line").text + " in the drawing.\n"
              "  failed: text " + texts.at("gone").text + " %<\\TableCell " + texts.at("gone").arguments +
                  ">%: No table has the handle FFFF in the drawing.\n"
              "  failed: text " + texts.at("area").text + " %<\\AcArea " + texts.at("area").arguments +
                  " \\f \"%lu2%pr2\">%: The object " + texts.at("line").text +
                  " is not a circle or a polyline; the field sums the areas of circles and polylines.\n");
    // No temporary file is left beside the drawing.
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(m_folder.path()))
        if (entry.is_regular_file()) ++files;
    EXPECT_EQ(files, 1);
    // The second time round nothing changes, in the file either.
    std::string once = qmtest::ReadText(path);
    EXPECT_EQ(Update({path.string()}), 1);
    EXPECT_NE(m_out.str().find(": 6 fields evaluated, 0 changed, 3 failed.\n"), std::string::npos)
        << m_out.str();
    EXPECT_EQ(qmtest::ReadText(path), once);
}

TEST_F(UpdateCommandTest, AChangedCellChangesItsFieldsValuesAndNothingElse) {
    std::filesystem::path before = Copy("tablecell_fields.dxf", "before.dxf");
    ASSERT_EQ(Update({before.string()}), 1);  // brought up to date once
    // The cell $A$1 of the schedule, as a user would edit the file.
    Edit(before, "171\n1\n172\n0\n173\n0\n174\n0\n175\n1\n176\n1\n 91\n0\n178\n0\n145\n0.0\n  1\nTag\n",
         "171\n1\n172\n0\n173\n0\n174\n0\n175\n1\n176\n1\n 91\n0\n178\n0\n145\n0.0\n  1\n{\\C1;Tag} 7\n");
    std::filesystem::path after = m_folder.path() / "after.dxf";
    EXPECT_EQ(Update({before.string(), "-o", after.string()}), 1);
    EXPECT_NE(m_out.str().find("Updated " + after.string() + ": 6 fields evaluated, 1 changed, 3 failed"),
              std::string::npos)
        << m_out.str();

    auto texts = qmtest::ReadFieldFixture();
    const qmtest::FieldFixtureText& t = texts.at("up_to_date");
    std::map<std::string, std::set<int>> expected = {
        {t.text, {1}},            // the text shows the value
        {t.textField, {1, 302}},  // the cached value of the text's field, and the text shown
        {t.child, {1, 302}},      // the cached value of the cell's field
    };
    EXPECT_EQ(Differences(before, after), expected);
    auto objects = qmtest::DxfObjectsByHandle(after);
    bool shows = false;
    for (const DxfGroup& group : objects.at(t.text))
        if (group.code == 1 && group.value == "Tag 7") shows = true;
    EXPECT_TRUE(shows);
}

TEST_F(UpdateCommandTest, ATableErasedFromTheFileShowsHashesAndIsReported) {
    std::filesystem::path before = Copy("tablecell_fields.dxf", "before.dxf");
    ASSERT_EQ(Update({before.string()}), 1);
    auto texts = qmtest::ReadFieldFixture();
    // The sheet index goes from the file: its entity, up to the next one.
    std::string text = qmtest::ReadText(before);
    size_t start = text.find("  0\nACAD_TABLE\n  5\n" + texts.at("index").text + "\n");
    ASSERT_NE(start, std::string::npos);
    size_t end = text.find("  0\n", start + 4);
    text.erase(start, end - start);
    qmtest::WriteText(before, text);

    std::filesystem::path after = m_folder.path() / "after.dxf";
    EXPECT_EQ(Update({before.string(), "-o", after.string()}), 1);
    const qmtest::FieldFixtureText& t = texts.at("paper_table");
    EXPECT_NE(m_out.str().find("  failed: text " + t.text + " %<\\TableCell " + t.arguments +
                               ">%: No table has the handle " + texts.at("index").text + " in the drawing.\n"),
              std::string::npos)
        << m_out.str();
    auto differences = Differences(before, after);
    ASSERT_EQ(differences.size(), 3u) << m_out.str();
    EXPECT_EQ(differences.at(t.text), std::set<int>({1}));
    // The cell's field: its state, status, message and the cleared cache.
    EXPECT_EQ(differences.count(t.child), 1u);
    EXPECT_EQ(differences.count(t.textField), 1u);
    bool hashes = false;
    auto objects = qmtest::DxfObjectsByHandle(after);
    for (const DxfGroup& group : objects.at(t.text))
        if (group.code == 1 && group.value == "####") hashes = true;
    EXPECT_TRUE(hashes);
}

TEST_F(UpdateCommandTest, ADrawingWithoutFieldsStaysAsItWas) {
    std::filesystem::path path = Copy("tables_r2010.dxf", "tables.dxf");
    std::string before = qmtest::ReadText(path);
    EXPECT_EQ(Update({path.string()}), 0);
    EXPECT_EQ(m_out.str(), "Updated " + path.string() + ": 0 fields evaluated, 0 changed, 0 failed.\n");
    EXPECT_EQ(qmtest::ReadText(path), before);
}

TEST_F(UpdateCommandTest, AnOutputElsewhereLeavesTheDrawingAlone) {
    std::filesystem::path path = Copy("tablecell_fields.dxf", "drawing.dxf");
    std::string before = qmtest::ReadText(path);
    std::filesystem::path out = m_folder.path() / "out.dxf";
    EXPECT_EQ(Update({"-o", out.string(), path.string()}), 1);
    EXPECT_EQ(qmtest::ReadText(path), before);
    EXPECT_TRUE(std::filesystem::exists(out));
    EXPECT_NE(qmtest::ReadText(out), before);
}

TEST_F(UpdateCommandTest, BadArgumentsAndDrawingsWriteNothing) {
    std::filesystem::path broken = Copy("broken_cut.dxf", "broken.dxf");
    std::filesystem::path good = Copy("tablecell_fields.dxf", "good.dxf");
    std::string brokenText = qmtest::ReadText(broken), goodText = qmtest::ReadText(good);
    struct Case {
        std::vector<std::string> arguments;
        std::string error;
    };
    std::string missing = (m_folder.path() / "missing.dxf").string();
    std::string folder = (m_folder.path() / "no such folder" / "out.dxf").string();
    const Case cases[] = {
        {{}, "cadhost update: no drawing was given\n"},
        {{"-o"}, "cadhost update: -o needs a value\n"},
        {{"--fast", good.string()}, "cadhost update: unknown option --fast\n"},
        {{good.string(), broken.string()}, "cadhost update: only one drawing can be given\n"},
        {{missing}, "cadhost update: " + missing + ": no such file\n"},
        {{broken.string()}, "cadhost update: " + broken.string() + ": line "},
        {{m_folder.path().string()}, "cadhost update: " + m_folder.path().string() + ": is a folder, not a drawing\n"},
        {{good.string(), "-o", folder}, "cadhost update: " + folder + ": cannot write in its folder"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(Update(c.arguments), 2) << c.error;
        EXPECT_EQ(m_errors.str().substr(0, c.error.size()), c.error);
        EXPECT_EQ(m_out.str().find("Updated"), std::string::npos) << m_out.str();
    }
    EXPECT_EQ(qmtest::ReadText(broken), brokenText);
    EXPECT_EQ(qmtest::ReadText(good), goodText);
    EXPECT_FALSE(std::filesystem::exists(missing));
}

}  // namespace
