// Replacing a file so that nothing is lost: the new content is written into
// a file of its own in the target's folder, which has no name until it is
// whole (an unnamed file where the file system allows one, so that a process
// killed while writing leaves nothing behind), and which then takes the
// target's place in one step. Until then the old file is as it was.
//
// The target is the file that the path names, through any symbolic links; it
// keeps its mode and, where the user may set them, its owner and group. What
// is not a regular file (a folder, a device, a pipe) is never replaced, nor is
// a file marked read-only. Other hard links to the old file keep the old
// content: the name that was saved to is the only one that takes the new.
//
// New content that is the old file's byte for byte leaves the file as it was
// (its time, its links): while the content written so far matches the old
// file it is only compared, and it goes to the new file from the first byte
// that differs, with the old file's equal part before it.
#pragma once

#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

namespace cadhost {

class FileReplacement {
public:
    // Prepares to replace what path names; when that cannot be done, Stream()
    // is null and Error() says why, naming the path as given.
    explicit FileReplacement(const std::filesystem::path& path);
    // A replacement that was not committed leaves nothing behind.
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;

    // Where the new content goes; null when the replacement cannot be made.
    std::FILE* Stream() const { return m_stream; }
    // Makes the new content durable and puts it in the target's place;
    // answers whether it did. On failure the old file is untouched.
    bool Commit();

    const std::wstring& Error() const { return m_error; }
    // The file that is replaced: the path with its symbolic links followed.
    const std::filesystem::path& Target() const { return m_target; }
    // Whether the new content has no name while it is written (false where
    // the file system has no unnamed files and a hidden name stands in).
    bool Unnamed() const { return m_unnamed; }
    // After a commit: whether the new content was the old file's, which was
    // then left untouched.
    bool Unchanged() const { return m_unchanged; }

private:
    bool Prepare();
    bool OpenNewFile();
    bool CopyOwnership();
    bool PutInPlace();
    void Fail(const std::wstring& why);
    void Discard();
    // The stream's writes: compared with the old file while they match it.
    static ssize_t WriteToStream(void* self, const char* data, size_t size);
    bool Matches(const char* data, size_t size);
    // Writes the old file's first bytes, which the new content shares, into
    // the new file; from then on the content is written, not compared.
    bool StopComparing();

    std::filesystem::path m_given;
    std::filesystem::path m_target;
    std::filesystem::path m_folder;
    std::optional<struct stat> m_old;  // the file replaced, when there is one
    std::FILE* m_stream = nullptr;
    int m_fd = -1;
    int m_oldFd = -1;        // the old file, read while comparing
    bool m_comparing = false;
    off_t m_same = 0;        // how much of the new content is the old file's
    std::string m_oldBytes;  // a piece of the old file, to compare with
    bool m_unchanged = false;
    bool m_unnamed = false;
    std::filesystem::path m_hiddenName;  // the fallback's named new file
    bool m_committed = false;
    std::wstring m_error;
};

// The file that path names with its symbolic links followed; path itself when
// it is no link. On a loop of links, or a link whose folder cannot be read,
// answers nothing and error says why.
std::optional<std::filesystem::path> FollowLinks(const std::filesystem::path& path, std::wstring& error);

}  // namespace cadhost
