// Saving over a file: through symbolic links to their target, keeping the
// file's mode, owner and group, refusing what is no regular file or is
// read-only, and leaving nothing beside the file, whatever happens.
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <set>

#include "files/FileReplacement.h"
#include "files/RegularFile.h"
#include "support/DxfGroups.h"
#include "support/TestHost.h"

namespace {

namespace fs = std::filesystem;

class FileReplacementTest : public qmtest::HostTest {
protected:
    fs::path Folder() {
        fs::path folder = m_folder.path() / "files";
        fs::create_directories(folder);
        return folder;
    }
    // What the folder holds, by name.
    static std::set<std::string> Names(const fs::path& folder) {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder)) names.insert(entry.path().filename().string());
        return names;
    }
    bool Save(const fs::path& path, std::string& error) {
        std::wstring wide;
        bool saved = host().SaveDrawing(path, wide);
        error = cadhost::ToUtf8(wide);
        return saved;
    }
    static struct stat Status(const fs::path& path) {
        struct stat status {};
        EXPECT_EQ(::lstat(path.c_str(), &status), 0) << path;
        return status;
    }
    static bool IsDrawing(const fs::path& path) {
        std::string text = qmtest::ReadText(path);
        return text.rfind("  0\nSECTION\n", 0) == 0 && text.ends_with("  0\nEOF\n");
    }
};

TEST_F(FileReplacementTest, SymbolicLinksAreFollowedToTheFileTheyName) {
    fs::path folder = Folder();
    fs::create_directories(folder / "real");
    struct Case {
        const char* name;
        std::vector<std::pair<std::string, std::string>> links;  // link, what it names
        std::string saved, target;
    };
    const Case cases[] = {
        {"one link", {{"a.dxf", (folder / "real" / "a.dxf").string()}}, "a.dxf", "real/a.dxf"},
        {"relative", {{"b.dxf", "real/b.dxf"}}, "b.dxf", "real/b.dxf"},
        {"a chain", {{"c.dxf", "c2.dxf"}, {"c2.dxf", "real/c.dxf"}}, "c.dxf", "real/c.dxf"},
        {"relative to the link's folder", {{"real/d.dxf", "../d-target.dxf"}}, "real/d.dxf", "d-target.dxf"},
    };
    for (const Case& c : cases) {
        fs::path target = folder / c.target;
        qmtest::WriteText(target, "old");
        for (const auto& [link, names] : c.links) fs::create_symlink(names, folder / link);
        std::string error;
        EXPECT_TRUE(Save(folder / c.saved, error)) << c.name << ": " << error;
        for (const auto& link : c.links) EXPECT_TRUE(fs::is_symlink(folder / link.first)) << c.name;
        EXPECT_TRUE(IsDrawing(target)) << c.name;
    }
    // A link to a file that is not there yet makes the file.
    fs::create_symlink("real/new.dxf", folder / "new.dxf");
    std::string error;
    EXPECT_TRUE(Save(folder / "new.dxf", error)) << error;
    EXPECT_TRUE(fs::is_symlink(folder / "new.dxf"));
    EXPECT_TRUE(IsDrawing(folder / "real" / "new.dxf"));
    EXPECT_EQ(Names(folder / "real"), (std::set<std::string>{"a.dxf", "b.dxf", "c.dxf", "d.dxf", "new.dxf"}));
}

TEST_F(FileReplacementTest, TheFileKeepsItsModeOwnerAndGroup) {
    fs::path path = Folder() / "kept.dxf";
    const mode_t modes[] = {0600, 0640, 0664, 0604};
    for (mode_t mode : modes) {
        qmtest::WriteText(path, "old");
        ASSERT_EQ(::chmod(path.c_str(), mode), 0);
        std::string error;
        EXPECT_TRUE(Save(path, error)) << error;
        EXPECT_EQ(Status(path).st_mode & 07777, mode);
    }
    // A new file takes the mode the user's mask allows.
    mode_t mask = ::umask(022);
    std::string error;
    EXPECT_TRUE(Save(Folder() / "fresh.dxf", error)) << error;
    EXPECT_EQ(Status(Folder() / "fresh.dxf").st_mode & 07777, 0644u);
    ::umask(mask);
    // Another user's file stays theirs, where this user may give it them.
    if (::geteuid() != 0) GTEST_SKIP() << "only the superuser may give a file to another user";
    qmtest::WriteText(path, "old");
    ASSERT_EQ(::chown(path.c_str(), 4321, 8765), 0);
    EXPECT_TRUE(Save(path, error)) << error;
    EXPECT_EQ(Status(path).st_uid, 4321u);
    EXPECT_EQ(Status(path).st_gid, 8765u);
}

TEST_F(FileReplacementTest, WhatIsNoRegularFileOrIsReadOnlyIsLeftAsItWas) {
    fs::path folder = Folder();
    ASSERT_EQ(::mkfifo((folder / "pipe.dxf").c_str(), 0644), 0);
    qmtest::WriteText(folder / "locked.dxf", "old");
    ASSERT_EQ(::chmod((folder / "locked.dxf").c_str(), 0444), 0);
    fs::create_symlink("locked.dxf", folder / "to-locked.dxf");
    fs::create_symlink("loop2.dxf", folder / "loop1.dxf");
    fs::create_symlink("loop1.dxf", folder / "loop2.dxf");
    fs::create_directories(folder / "folder.dxf");
    struct Case {
        fs::path path;
        std::string error;
    };
    const std::string at = folder.string() + "/";
    const Case cases[] = {
        {folder / "pipe.dxf", at + "pipe.dxf: is not a regular file (a device, pipe or socket), and is left as it was"},
        {"/dev/full", "/dev/full: is not a regular file (a device, pipe or socket), and is left as it was"},
        {"/dev/null", "/dev/null: is not a regular file (a device, pipe or socket), and is left as it was"},
        {folder / "locked.dxf", at + "locked.dxf: is read-only, and is left as it was"},
        {folder / "to-locked.dxf", at + "to-locked.dxf (a link to " + at + "locked.dxf): is read-only, and is left as it was"},
        {folder / "loop1.dxf", at + "loop1.dxf: the symbolic links form a loop"},
        {folder / "folder.dxf", at + "folder.dxf: is a folder"},
        {folder / "no" / "such.dxf", at + "no/such.dxf: cannot write in its folder (No such file or directory)"},
    };
    std::set<std::string> before = Names(folder);
    for (const Case& c : cases) {
        std::string error;
        EXPECT_FALSE(Save(c.path, error)) << c.path;
        EXPECT_EQ(error, c.error);
    }
    EXPECT_EQ(Names(folder), before);
    EXPECT_TRUE(S_ISFIFO(Status(folder / "pipe.dxf").st_mode));
    EXPECT_EQ(qmtest::ReadText(folder / "locked.dxf"), "old");
    EXPECT_TRUE(S_ISCHR(Status("/dev/full").st_mode));
}

TEST_F(FileReplacementTest, AHardLinkKeepsTheOldContent) {
    fs::path folder = Folder();
    qmtest::WriteText(folder / "drawing.dxf", "old");
    fs::create_hard_link(folder / "drawing.dxf", folder / "other-name.dxf");
    std::string error;
    EXPECT_TRUE(Save(folder / "drawing.dxf", error)) << error;
    EXPECT_TRUE(IsDrawing(folder / "drawing.dxf"));
    EXPECT_EQ(qmtest::ReadText(folder / "other-name.dxf"), "old");
    EXPECT_EQ(Status(folder / "drawing.dxf").st_nlink, 1u);
}

TEST_F(FileReplacementTest, NothingIsLeftBesideTheFileWhetherOrNotItIsReplaced) {
    fs::path folder = Folder();
    fs::path path = folder / "drawing.dxf";
    qmtest::WriteText(path, "old");
    {
        cadhost::FileReplacement replacement(path);
        ASSERT_NE(replacement.Stream(), nullptr) << cadhost::ToUtf8(replacement.Error());
        std::fputs("half", replacement.Stream());
        std::fflush(replacement.Stream());
        // While it is written, the new content has no name in the folder
        // (a hidden one where the file system has no unnamed files).
        std::set<std::string> names = Names(folder);
        if (replacement.Unnamed()) {
            EXPECT_EQ(names, std::set<std::string>{"drawing.dxf"});
        } else {
            EXPECT_EQ(names.size(), 2u);
        }
    }  // given up
    EXPECT_EQ(qmtest::ReadText(path), "old");
    EXPECT_EQ(Names(folder), std::set<std::string>{"drawing.dxf"});
    {
        cadhost::FileReplacement replacement(path);
        ASSERT_NE(replacement.Stream(), nullptr);
        std::fputs("new", replacement.Stream());
        EXPECT_TRUE(replacement.Commit()) << cadhost::ToUtf8(replacement.Error());
        EXPECT_FALSE(replacement.Commit());  // once only
    }
    EXPECT_EQ(qmtest::ReadText(path), "new");
    EXPECT_EQ(Names(folder), std::set<std::string>{"drawing.dxf"});
}

// New content is compared with the old file while it matches, and written
// from the first byte that differs, the old file's equal part first: the
// file ends with exactly the new content, whichever piece differs and in
// whatever pieces it comes; content the file holds already leaves it alone.
TEST_F(FileReplacementTest, ContentTheFileHoldsLeavesItAloneAndAnyOtherReplacesIt) {
    fs::path path = Folder() / "drawing.dxf";
    std::string old;
    for (int i = 0; old.size() < 300000; ++i) old += "line " + std::to_string(i) + "\n";
    auto changedAt = [&](size_t at) {
        std::string text = old;
        text[at] = '#';
        return text;
    };
    struct Case {
        const char* name;
        std::string old, content;
        bool unchanged;
    };
    const Case cases[] = {
        {"the same", old, old, true},
        {"the first byte differs", old, changedAt(0), false},
        {"a byte in the middle differs", old, changedAt(150001), false},
        {"the last byte differs", old, changedAt(old.size() - 1), false},
        {"shorter by a byte", old, old.substr(0, old.size() - 1), false},
        {"longer by a byte", old, old + "x", false},
        {"empty", old, "", false},
        {"into an empty file", "", old, false},
        {"empty into an empty file", "", "", true},
    };
    for (const size_t piece : {size_t{1}, size_t{4096}, size_t{65537}, size_t{1} << 20}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(std::string(c.name) + ", in pieces of " + std::to_string(piece));
            qmtest::WriteText(path, c.old);
            struct stat before = Status(path);
            {
                cadhost::FileReplacement replacement(path);
                ASSERT_NE(replacement.Stream(), nullptr) << cadhost::ToUtf8(replacement.Error());
                for (size_t at = 0; at < c.content.size(); at += piece)
                    ASSERT_EQ(std::fwrite(c.content.data() + at, 1, std::min(piece, c.content.size() - at),
                                          replacement.Stream()),
                              std::min(piece, c.content.size() - at));
                ASSERT_TRUE(replacement.Commit()) << cadhost::ToUtf8(replacement.Error());
                EXPECT_EQ(replacement.Unchanged(), c.unchanged && !c.old.empty());
            }
            EXPECT_EQ(qmtest::ReadText(path), c.content);
            // A file left alone is the same file; a replaced one a new one.
            EXPECT_EQ(Status(path).st_ino == before.st_ino, c.unchanged && !c.old.empty());
            EXPECT_EQ(Names(path.parent_path()), std::set<std::string>{"drawing.dxf"});
        }
    }
}

// A drawing saved again without a change keeps its file and its time.
TEST_F(FileReplacementTest, SavingAnUnchangedDrawingKeepsItsFile) {
    fs::path path = Folder() / "drawing.dxf";
    std::string error;
    ASSERT_TRUE(Save(path, error)) << error;
    struct stat first = Status(path);
    ASSERT_TRUE(Save(path, error)) << error;
    struct stat second = Status(path);
    EXPECT_EQ(second.st_ino, first.st_ino);
    EXPECT_EQ(second.st_mtim.tv_sec, first.st_mtim.tv_sec);
    EXPECT_EQ(second.st_mtim.tv_nsec, first.st_mtim.tv_nsec);
}

// A save killed between naming its new file and the rename leaves it under
// its hidden name; the next save of the same file takes it away, and only
// names of that exact shape.
TEST_F(FileReplacementTest, TheNextSaveRemovesWhatAKilledSaveLeft) {
    fs::path folder = Folder();
    fs::path path = folder / "drawing.dxf";
    qmtest::WriteText(path, "old");
    const char* leftovers[] = {".drawing.dxf.aB3xY9", ".drawing.dxf.000000"};
    const char* others[] = {".drawing.dxf.aB3xY", ".drawing.dxf.aB3xY9z", ".drawing.dxf.aB-xY9", "drawing.dxf.aB3xY9",
                            ".other.dxf.aB3xY9", ".drawing.dxfXaB3xY9"};
    for (const char* name : leftovers) qmtest::WriteText(folder / name, "whole new drawing");
    for (const char* name : others) qmtest::WriteText(folder / name, "someone else's");
    fs::create_directory(folder / ".drawing.dxf.folder");  // the right shape, but no file: kept
    {
        cadhost::FileReplacement replacement(path);
        ASSERT_NE(replacement.Stream(), nullptr) << cadhost::ToUtf8(replacement.Error());
        std::fputs("new", replacement.Stream());
        ASSERT_TRUE(replacement.Commit()) << cadhost::ToUtf8(replacement.Error());
    }
    std::set<std::string> expected{"drawing.dxf", ".drawing.dxf.folder"};
    for (const char* name : others) expected.insert(name);
    EXPECT_EQ(Names(folder), expected);
    EXPECT_EQ(qmtest::ReadText(path), "new");
}

TEST_F(FileReplacementTest, ReadingRefusesWhatIsNoRegularFileBeforeOpeningIt) {
    fs::path folder = Folder();
    ASSERT_EQ(::mkfifo((folder / "pipe.dxf").c_str(), 0644), 0);
    fs::create_symlink("loop2.dxf", folder / "loop1.dxf");
    fs::create_symlink("loop1.dxf", folder / "loop2.dxf");
    fs::create_symlink("gone.dxf", folder / "dangling.dxf");
    qmtest::WriteText(folder / "plain.dxf", "text");
    const std::string at = folder.string() + "/";
    struct Case {
        fs::path path;
        cadhost::OpenResult result;
        std::string error;
    };
    const Case cases[] = {
        {folder / "pipe.dxf", cadhost::OpenResult::kNotRegular, at + "pipe.dxf: is a pipe, not a drawing"},
        {"/dev/null", cadhost::OpenResult::kNotRegular, "/dev/null: is a device, not a drawing"},
        {folder, cadhost::OpenResult::kFolder, folder.string() + ": is a folder, not a drawing"},
        {folder / "loop1.dxf", cadhost::OpenResult::kRefused, at + "loop1.dxf: the symbolic links form a loop"},
        {folder / "dangling.dxf", cadhost::OpenResult::kMissing,
         at + "dangling.dxf: is a symbolic link to a file that does not exist"},
        {folder / "none.dxf", cadhost::OpenResult::kMissing, at + "none.dxf: no such file"},
        {folder / "plain.dxf" / "x", cadhost::OpenResult::kMissing, at + "plain.dxf/x: no such file"},
        {folder / "plain.dxf", cadhost::OpenResult::kOpened, ""},
    };
    for (const Case& c : cases) {
        std::FILE* file = nullptr;
        std::wstring error;
        EXPECT_EQ(cadhost::OpenRegularFile(c.path, L"a drawing", file, error), c.result) << c.path;
        EXPECT_EQ(cadhost::ToUtf8(error), c.error);
        EXPECT_EQ(file != nullptr, c.result == cadhost::OpenResult::kOpened) << c.path;
        if (file) std::fclose(file);
    }
    // Opening the pipe as a drawing comes back at once with the reason (a
    // read that blocked would end the test at the alarm).
    std::wstring error;
    ::alarm(60);
    EXPECT_FALSE(host().OpenDrawing(folder / "pipe.dxf", error));
    ::alarm(0);
    EXPECT_EQ(cadhost::ToUtf8(error), at + "pipe.dxf: is a pipe, not a drawing");
}

}  // namespace
