// The new drawing: the template file the build embeds is the one in the
// source tree, byte for byte, and a new drawing saved is that file again,
// every group where it stood.
#include <dbmain.h>

#include <algorithm>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "dxf/DxfFiles.h"
#include "support/TestHost.h"

namespace {

std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::filesystem::path TemplatePath() {
    return std::filesystem::path(QM_SOURCE_DIR) / "host" / "resources" / "NewDrawing.dxf";
}

TEST(NewDrawingTest, TheEmbeddedTemplateIsTheFileOfTheSourceTree) {
    std::string file = ReadBytes(TemplatePath());
    ASSERT_FALSE(file.empty()) << TemplatePath();
    std::string_view embedded = cadhost::dxf::NewDrawingTemplate();
    EXPECT_EQ(embedded.size(), file.size());
    EXPECT_TRUE(embedded == file);
}

TEST(NewDrawingTest, ANewDrawingSavesAsTheTemplate) {
    qmtest::TempFolder folder;
    std::filesystem::path saved = folder.path() / "new.dxf";
    {
        AcDbDatabase db(true);
        std::wstring error;
        ASSERT_EQ(cadhost::dxf::WriteFile(db, saved, error), Acad::eOk) << cadhost::ToUtf8(error);
    }
    std::string written = ReadBytes(saved), expected = ReadBytes(TemplatePath());
    ASSERT_FALSE(expected.empty());
    if (written != expected) {
        // Name the first line that differs, so that a failure says where.
        size_t at = 0;
        while (at < written.size() && at < expected.size() && written[at] == expected[at]) ++at;
        size_t line = 1 + static_cast<size_t>(std::count(expected.begin(), expected.begin() + at, '\n'));
        ADD_FAILURE() << "a new drawing saved differs from the template from line " << line << " on ("
                      << written.size() << " bytes written, " << expected.size() << " in the template)";
    }
}

}  // namespace
