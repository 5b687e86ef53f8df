// The help file: a compiled help file beside the module that holds every
// page, and pages whose links all lead somewhere.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

namespace {

const std::filesystem::path kHelpSources = std::filesystem::path(QM_SOURCE_DIR) / "quillmark" / "help";

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The files the help project compiles.
std::set<std::string> ProjectFiles() {
    std::istringstream project(ReadAll(kHelpSources / "Quillmark.hhp"));
    std::set<std::string> files;
    bool inFiles = false;
    for (std::string line; std::getline(project, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (!line.empty() && line[0] == '[') inFiles = line == "[FILES]";
        else if (inFiles && !line.empty()) files.insert(line);
    }
    return files;
}

TEST(HelpFileTest, TheCompiledFileBesideTheModuleHoldsEveryPage) {
    std::string chm = ReadAll(std::filesystem::path(QM_OUTPUT_DIR) / "Quillmark.chm");
    ASSERT_GT(chm.size(), 0x60u);
    EXPECT_EQ(chm.substr(0, 4), "ITSF");  // the compiled help format's signature
    EXPECT_EQ(static_cast<unsigned char>(chm[4]), 3u);
    EXPECT_NE(chm.find("/#SYSTEM"), std::string::npos);
    std::set<std::string> files = ProjectFiles();
    EXPECT_GE(files.size(), 10u);
    for (const std::string& file : files) EXPECT_NE(chm.find("/" + file), std::string::npos) << file;
}

TEST(HelpFileTest, EveryLinkLeadsToAPageOfTheProject) {
    std::set<std::string> files = ProjectFiles();
    std::regex link(R"re((?:href|value)="([^"#:]+\.(?:html|css))")re");
    int links = 0;
    for (const std::string& file : files) {
        ASSERT_TRUE(std::filesystem::exists(kHelpSources / file)) << file;
        std::string text = ReadAll(kHelpSources / file);
        for (std::sregex_iterator it(text.begin(), text.end(), link), end; it != end; ++it, ++links)
            EXPECT_TRUE(files.count((*it)[1].str())) << file << " links to " << (*it)[1].str();
    }
    std::string contents = ReadAll(kHelpSources / "Quillmark.hhc");
    for (std::sregex_iterator it(contents.begin(), contents.end(), link), end; it != end; ++it, ++links)
        EXPECT_TRUE(files.count((*it)[1].str())) << "the contents link to " << (*it)[1].str();
    EXPECT_GT(links, 20);
}

TEST(HelpFileTest, ThePagesTellEachFieldTypeEachCommandAndTheSettings) {
    std::string all;
    for (const std::string& file : ProjectFiles()) all += ReadAll(kHelpSources / file);
    for (const char* title : {"QM Objects Area", "QM Objects Length", "QM Block Count", "QM Excel Cell",
                              "QM Text File", "QM Table Cell"})
        EXPECT_NE(all.find(title), std::string::npos) << title;
    for (const char* command : {"Quillmark_Website", "Quillmark_Faq", "Quillmark_New", "Quillmark_Demo",
                                "Quillmark_Help", "Quillmark_Support", "Quillmark_Live_Update", "Quillmark_Test",
                                "Quillmark_About"})
        EXPECT_NE(all.find(command), std::string::npos) << command;
    for (const char* key : {"HKEY_CURRENT_USER\\software\\Norvo", "Quillmark\\AreaField", "Quillmark\\LengthField",
                            "BlockSource", "IncNestedBlock", "Recent File List"})
        EXPECT_NE(all.find(key), std::string::npos) << key;
}

}  // namespace
