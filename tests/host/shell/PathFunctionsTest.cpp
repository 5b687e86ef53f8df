// The shell's path functions and the runtime's path calls on the host's
// POSIX paths, with the platform's contracts: relative paths as the
// platform writes them, failure without a common root, MAX_PATH buffers,
// and backslashes that separate in a relative path written on the platform
// but belong to names in the host's own paths.
#include <direct.h>
#include <shlwapi.h>
#include <sys/stat.h>
#include <tchar.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "core/Utf8.h"
#include "support/TestHost.h"

namespace {

const DWORD kFile = FILE_ATTRIBUTE_NORMAL;
const DWORD kFolder = FILE_ATTRIBUTE_DIRECTORY;

// The current directory of the test process, put back at the end.
class KeepCurrentDirectory {
public:
    KeepCurrentDirectory() : m_path(std::filesystem::current_path()) {}
    ~KeepCurrentDirectory() { std::filesystem::current_path(m_path); }

private:
    std::filesystem::path m_path;
};

TEST(PathRelativePathTo, GivesThePathFromTheFirstEndsFolderInThePlatformsForm) {
    struct Case {
        const wchar_t* from;
        DWORD fromAttributes;
        const wchar_t* to;
        DWORD toAttributes;
        const wchar_t* relative;  // null: fails
    };
    const Case cases[] = {
        {L"/proj/site/site.dxf", kFile, L"/proj/site/notes.txt", kFile, L"./notes.txt"},
        {L"/proj/site/site.dxf", kFile, L"/proj/site/sub/notes.txt", kFile, L"./sub/notes.txt"},
        {L"/proj/site/site.dxf", kFile, L"/proj/data/notes.txt", kFile, L"../data/notes.txt"},
        {L"/proj/site/a/b/site.dxf", kFile, L"/proj/data/notes.txt", kFile, L"../../../data/notes.txt"},
        {L"/proj/site/site.dxf", kFile, L"/proj/notes.txt", kFile, L"../notes.txt"},
        {L"/proj/site", kFolder, L"/proj/site/notes.txt", kFile, L"./notes.txt"},
        {L"/proj/site", kFile, L"/proj/site/notes.txt", kFile, L"./site/notes.txt"},
        {L"/proj/site/site.dxf", kFile, L"/proj/site", kFolder, L"."},
        {L"/proj/site/site.dxf", kFile, L"/proj", kFolder, L".."},
        // The names compare with regard to case, as the host's files do.
        {L"/proj/Site/site.dxf", kFile, L"/proj/site/notes.txt", kFile, L"../site/notes.txt"},
        // Separators: doubled ones count once; a backslash belongs to a name.
        {L"/proj//site/site.dxf", kFile, L"/proj/site//notes.txt", kFile, L"./notes.txt"},
        {L"/proj/back\\slash/site.dxf", kFile, L"/proj/back\\slash/notes.txt", kFile, L"./notes.txt"},
        {L"/proj/back\\slash/site.dxf", kFile, L"/proj/back/notes.txt", kFile, L"../back/notes.txt"},
        // A file's name cannot stand for a folder of the start.
        {L"/proj/site/site.dxf", kFile, L"/proj/site", kFile, L"../site"},
        // Two relative paths that share their first folder.
        {L"proj/site/site.dxf", kFile, L"proj/data/notes.txt", kFile, L"../data/notes.txt"},
        // No common root: nothing shared but "/", as two drives on the platform.
        {L"/proj/site/site.dxf", kFile, L"/data/notes.txt", kFile, nullptr},
        {L"/site.dxf", kFile, L"/notes.txt", kFile, nullptr},
        {L"/proj/site/site.dxf", kFile, L"notes.txt", kFile, nullptr},
        {L"/proj/site/site.dxf", kFile, L"./notes.txt", kFile, nullptr},
        {L"/proj/site/site.dxf", kFile, L"C:\\data\\notes.txt", kFile, nullptr},
        {L"site.dxf", kFile, L"/proj/notes.txt", kFile, nullptr},
        {L"", kFile, L"/proj/notes.txt", kFile, nullptr},
        {L"/proj/site/site.dxf", kFile, L"", kFile, nullptr},
    };
    for (const Case& c : cases) {
        WCHAR buffer[MAX_PATH];
        std::wmemset(buffer, L'#', MAX_PATH);
        BOOL made = PathRelativePathToW(buffer, c.from, c.fromAttributes, c.to, c.toAttributes);
        std::string what = cadhost::ToUtf8(std::wstring(c.from) + L" -> " + c.to);
        if (c.relative) {
            EXPECT_TRUE(made) << what;
            EXPECT_STREQ(buffer, c.relative) << what;
        } else {
            EXPECT_FALSE(made) << what;
            EXPECT_STREQ(buffer, L"") << what;  // a failure leaves an empty text, never the old buffer
        }
    }
    EXPECT_FALSE(PathRelativePathToW(nullptr, L"/a/b.dxf", kFile, L"/a/c.txt", kFile));
}

TEST(PathRelativePathTo, FailsWhereTheResultWouldNotFitMaxPath) {
    std::wstring folder = L"/proj/" + std::wstring(250, L'd');
    WCHAR buffer[MAX_PATH];
    // ./ plus 250 plus /n.txt is 258 characters: it fits with its end.
    EXPECT_TRUE(PathRelativePathToW(buffer, L"/proj/site.dxf", kFile, (folder + L"/n.txt").c_str(), kFile));
    EXPECT_EQ(std::wcslen(buffer), 258u);
    // With two more characters it would need 261 with its end.
    EXPECT_FALSE(PathRelativePathToW(buffer, L"/proj/site.dxf", kFile, (folder + L"/nnn.txt").c_str(), kFile));
    EXPECT_FALSE(PathRelativePathToW(buffer, L"/proj/site.dxf", kFile, (L"/proj/" + std::wstring(10000, L'x')).c_str(),
                                     kFile));
}

TEST(PathFunctions, CombineRemoveFileSpecFindNameAndIsRelative) {
    struct Combine {
        const wchar_t* folder;
        const wchar_t* file;
        const wchar_t* joined;
    };
    const Combine combines[] = {
        {L"/proj/site", L"notes.txt", L"/proj/site/notes.txt"},
        {L"/proj/site", L"./notes.txt", L"/proj/site/notes.txt"},
        {L"/proj/site", L"../data/notes.txt", L"/proj/data/notes.txt"},
        {L"/proj/site", L"..\\data\\notes.txt", L"/proj/data/notes.txt"},
        {L"/proj/site/", L".\\sub\\notes.txt", L"/proj/site/sub/notes.txt"},
        {L"/proj/site", L"/etc/notes.txt", L"/etc/notes.txt"},
        {L"/proj", L"../../../notes.txt", L"/notes.txt"},
        {nullptr, L"/a/./b/../c.txt", L"/a/c.txt"},
        {L"/proj/back\\slash", L"notes.txt", L"/proj/back\\slash/notes.txt"},
        {L"/proj", L"/abs\\name.txt", L"/abs\\name.txt"},
    };
    for (const Combine& c : combines) {
        WCHAR buffer[MAX_PATH];
        ASSERT_NE(PathCombineW(buffer, c.folder, c.file), nullptr) << cadhost::ToUtf8(c.file);
        EXPECT_STREQ(buffer, c.joined) << cadhost::ToUtf8(c.file);
    }
    WCHAR buffer[MAX_PATH];
    EXPECT_EQ(PathCombineW(buffer, L"/proj", std::wstring(300, L'x').c_str()), nullptr);
    EXPECT_STREQ(buffer, L"");

    struct Remove {
        const wchar_t* path;
        BOOL result;
        const wchar_t* left;
    };
    const Remove removes[] = {
        {L"/proj/site/site.dxf", TRUE, L"/proj/site"}, {L"/site.dxf", TRUE, L"/"},      {L"site.dxf", TRUE, L""},
        {L"/", FALSE, L"/"},                           {L"", FALSE, L""},
        {L"/proj/back\\slash/a.dxf", TRUE, L"/proj/back\\slash"},
    };
    for (const Remove& r : removes) {
        WCHAR path[MAX_PATH];
        std::wcscpy(path, r.path);
        EXPECT_EQ(PathRemoveFileSpecW(path), r.result) << cadhost::ToUtf8(r.path);
        EXPECT_STREQ(path, r.left) << cadhost::ToUtf8(r.path);
    }
    EXPECT_STREQ(PathFindFileNameW(L"/proj/site/notes.txt"), L"notes.txt");
    EXPECT_STREQ(PathFindFileNameW(L"/proj/back\\slash"), L"back\\slash");
    EXPECT_STREQ(PathFindFileNameW(L"notes.txt"), L"notes.txt");

    EXPECT_FALSE(PathIsRelativeW(L"/proj/notes.txt"));
    EXPECT_TRUE(PathIsRelativeW(L"\\proj\\notes.txt"));
    EXPECT_TRUE(PathIsRelativeW(L"./notes.txt"));
    EXPECT_TRUE(PathIsRelativeW(L"..\\data\\notes.txt"));
    EXPECT_TRUE(PathIsRelativeW(L"notes.txt"));
    EXPECT_TRUE(PathIsRelativeW(L"C:\\data\\notes.txt"));  // no drive letters here
}

class PathRuntimeTest : public ::testing::Test {
protected:
    qmtest::TempFolder m_folder;
    KeepCurrentDirectory m_keep;
};

TEST_F(PathRuntimeTest, FullPathReadsFromTheCurrentDirectory) {
    std::filesystem::create_directories(m_folder.path() / "site" / "sub");
    std::wstring root = cadhost::FromUtf8(std::filesystem::canonical(m_folder.path()).string());
    ASSERT_EQ(_wchdir((root + L"/site").c_str()), 0);
    struct Case {
        const wchar_t* relative;
        std::wstring full;
    };
    const Case cases[] = {
        {L"notes.txt", root + L"/site/notes.txt"},
        {L"./sub/notes.txt", root + L"/site/sub/notes.txt"},
        {L"../data/notes.txt", root + L"/data/notes.txt"},
        {L"..\\data\\notes.txt", root + L"/data/notes.txt"},
        {L"/etc/./x/../notes.txt", L"/etc/notes.txt"},
        {L"/etc/back\\slash/notes.txt", L"/etc/back\\slash/notes.txt"},
        {L"", root + L"/site"},
    };
    for (const Case& c : cases) {
        WCHAR buffer[MAX_PATH];
        ASSERT_NE(_wfullpath(buffer, c.relative, MAX_PATH), nullptr) << cadhost::ToUtf8(c.relative);
        EXPECT_EQ(std::wstring(buffer), c.full) << cadhost::ToUtf8(c.relative);
    }
    // Into a buffer the caller frees, or refused when the given one is short.
    wchar_t* owned = _wfullpath(nullptr, L"notes.txt", 0);
    ASSERT_NE(owned, nullptr);
    EXPECT_EQ(std::wstring(owned), root + L"/site/notes.txt");
    std::free(owned);
    WCHAR small[8];
    EXPECT_EQ(_wfullpath(small, L"notes.txt", 8), nullptr);
}

TEST_F(PathRuntimeTest, TheCurrentDirectoryChangesAndComesBack) {
    std::filesystem::create_directories(m_folder.path() / "a b");
    std::wstring folder = cadhost::FromUtf8(std::filesystem::canonical(m_folder.path() / "a b").string());
    ASSERT_EQ(_wchdir(folder.c_str()), 0);
    WCHAR current[MAX_PATH];
    ASSERT_NE(_wgetcwd(current, MAX_PATH), nullptr);
    EXPECT_EQ(std::wstring(current), folder);
    wchar_t* owned = _wgetcwd(nullptr, 0);
    ASSERT_NE(owned, nullptr);
    EXPECT_EQ(std::wstring(owned), folder);
    std::free(owned);
    WCHAR tiny[4];
    EXPECT_EQ(_wgetcwd(tiny, 4), nullptr);

    EXPECT_EQ(_wchdir((folder + L"/missing").c_str()), -1);
    EXPECT_EQ(_wchdir(L""), -1);
    EXPECT_EQ(_wchdir(nullptr), -1);
    ASSERT_NE(_wgetcwd(current, MAX_PATH), nullptr);
    EXPECT_EQ(std::wstring(current), folder);  // a failed change leaves it
}

TEST_F(PathRuntimeTest, AttributesTellFilesFoldersDevicesAndNothing) {
    std::filesystem::path file = m_folder.path() / "notes.txt";
    std::ofstream(file) << "x";
    std::filesystem::path pipe = m_folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::wstring folder = cadhost::FromUtf8(m_folder.path().string());

    EXPECT_EQ(GetFileAttributesW((folder + L"/notes.txt").c_str()) & (kFolder | FILE_ATTRIBUTE_DEVICE), 0u);
    EXPECT_NE(GetFileAttributesW((folder + L"/notes.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(folder.c_str()) & kFolder, kFolder);
    EXPECT_EQ(GetFileAttributesW((folder + L"/pipe").c_str()) & FILE_ATTRIBUTE_DEVICE,
              static_cast<DWORD>(FILE_ATTRIBUTE_DEVICE));
    EXPECT_EQ(GetFileAttributesW((folder + L"/missing.txt").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(GetFileAttributesW(L""), INVALID_FILE_ATTRIBUTES);

    EXPECT_EQ(PathIsDirectoryW(folder.c_str()), static_cast<BOOL>(kFolder));
    EXPECT_FALSE(PathIsDirectoryW((folder + L"/notes.txt").c_str()));
    EXPECT_TRUE(PathFileExistsW((folder + L"/notes.txt").c_str()));
    EXPECT_FALSE(PathFileExistsW((folder + L"\\notes.txt").c_str()));  // a name of its own here

    FILE* opened = _wfopen((folder + L"/notes.txt").c_str(), L"rb");
    ASSERT_NE(opened, nullptr);
    EXPECT_EQ(std::fgetc(opened), 'x');
    std::fclose(opened);
    EXPECT_EQ(_wfopen((folder + L"/missing.txt").c_str(), L"rb"), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

}  // namespace
