// SPDX-License-Identifier: GPL-3.0-or-later
#include "zlib/common/objects/ZNativeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace orvane
{

namespace
{

/// The result of a system call, which is repeated while signals interrupt it.
template <typename Call>
auto uninterrupted(Call call)
{
    auto result = call();
    while (result == -1 && errno == EINTR)
        result = call();
    return result;
}

/// A descriptor, or -1. Programs that the host starts do not inherit it. Opening does not wait, as
/// a pipe would for its other end.
int openPath(const std::string& path, int flags, mode_t mode = 0)
{
    return uninterrupted(
        [&] { return open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode); });
}

/// Opens an existing file, else makes it. Two calls, because in a folder shared by all users the
/// system refuses O_CREAT for another user's file, even one that may be read.
int openOrMake(const std::string& path, int flags, mode_t mode)
{
    const int handle = openPath(path, flags);
    return handle == -1 && errno == ENOENT ? openPath(path, flags | O_CREAT, mode) : handle;
}

/// Closes a descriptor at the end of the scope and preserves errno.
class OpenHandle
{
public:
    explicit OpenHandle(int handle)
        : mHandle(handle)
    {
    }
    OpenHandle(const OpenHandle&) = delete;
    OpenHandle& operator=(const OpenHandle&) = delete;
    ~OpenHandle()
    {
        const int before = errno;
        if (mHandle != -1)
            close(mHandle);
        errno = before;
    }

    [[nodiscard]] int Get() const { return mHandle; }
    [[nodiscard]] bool IsOpen() const { return mHandle != -1; }
    [[nodiscard]] int Release() { return std::exchange(mHandle, -1); }

private:
    int mHandle;
};

bool writeAll(int handle, std::span<const std::byte> bytes)
{
    while (!bytes.empty()) {
        const ssize_t written =
            uninterrupted([&] { return write(handle, bytes.data(), bytes.size()); });
        if (written < 0)
            return false;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

/// Reads until out is full or the file ends: the bytes read, or -1.
ssize_t readAll(int handle, std::span<std::byte> out)
{
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t got =
            uninterrupted([&] { return read(handle, out.data() + done, out.size() - done); });
        if (got < 0)
            return -1;
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return static_cast<ssize_t>(done);
}

bool copyContents(int source, int target)
{
    std::vector<std::byte> chunk(std::size_t{1} << 16);
    for (;;) {
        const ssize_t got = readAll(source, chunk);
        if (got < 0)
            return false;
        if (got == 0)
            return true;
        if (!writeAll(target, std::span(chunk).first(static_cast<std::size_t>(got))))
            return false;
    }
}

bool isSameFile(const struct stat& a, const struct stat& b)
{
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

std::string folderOf(const std::string& path)
{
    const std::string folder = std::filesystem::path(path).parent_path().string();
    return folder.empty() ? "." : folder;
}

/// Waits until the entries of the path's folder are on the disk, if the file system supports it.
void syncFolderOf(const std::string& path)
{
    const OpenHandle folder(openPath(folderOf(path), O_RDONLY | O_DIRECTORY));
    if (folder.IsOpen())
        uninterrupted([&] { return fsync(folder.Get()); });
}

ZNativeFile::Error renameThrough(const std::string& from, const std::string& to)
{
    if (rename(from.c_str(), to.c_str()) != 0)
        return errno;
    syncFolderOf(to);
    return 0;
}

/// A file that was made beside another one.
struct NewFile
{
    std::string path;
    OpenHandle handle;
};

/// Makes an empty file in the folder of path, with a name of its own, for writing. Its mode is the
/// given one without the bits of the user's mask.
NewFile makeBeside(const std::string& path, mode_t mode)
{
    static std::atomic<unsigned> count{0};
    constexpr int kAttempts = 100;
    const std::string start = folderOf(path) + "/.orvane" + std::to_string(getpid()) + ".";
    std::string made;
    int handle = -1;
    for (int i = 0; i < kAttempts && handle == -1; ++i) {
        made = start + std::to_string(count++);
        handle = openPath(made, O_WRONLY | O_CREAT | O_EXCL, mode);
        if (handle == -1 && errno != EEXIST)
            break;
    }
    return {made, OpenHandle(handle)};
}

/// Makes a new file beside path, fills it by fill(descriptor), waits until it is on the disk and
/// renames it to path. On a failure the new file is deleted.
template <typename Fill>
ZNativeFile::Error replaceBy(const std::string& path, mode_t mode, Fill fill)
{
    const NewFile made = makeBeside(path, mode);
    if (!made.handle.IsOpen())
        return errno;
    const int handle = made.handle.Get();
    const bool filled = fill(handle) && uninterrupted([=] { return fsync(handle); }) == 0;
    const ZNativeFile::Error error = filled ? renameThrough(made.path, path) : errno;
    if (error != 0)
        ZNativeFile::Delete(made.path);
    return error;
}

/// The path of the file that a path means, through links at its end. The file may be missing.
std::string followLinks(std::string path)
{
    constexpr int kMostLinks = 40;  // as many as the system follows
    std::error_code error;
    for (int i = 0; i < kMostLinks; ++i) {
        const std::filesystem::path target = std::filesystem::read_symlink(path, error);
        if (error)
            break;
        path = (std::filesystem::path(folderOf(path)) / target).string();
    }
    return path;
}

/// Gives a new file the mode of the one that it replaces, and its owner and group where the user
/// may.
bool takeAttributes(int handle, const struct stat& replaced)
{
    if (fchown(handle, replaced.st_uid, replaced.st_gid) != 0)
        static_cast<void>(fchown(handle, static_cast<uid_t>(-1), replaced.st_gid) == 0);
    return fchmod(handle, replaced.st_mode & 0777) == 0;
}

ZNativeFile::Error overwrite(const std::string& path, std::span<const std::byte> bytes)
{
    const OpenHandle target(openPath(path, O_WRONLY | O_TRUNC));
    return target.IsOpen() && writeAll(target.Get(), bytes) ? 0 : errno;
}

/// True for the failures of a folder that takes no new file: no permission, or a single file that
/// is mounted into it.
bool isRefusedByFolder(ZNativeFile::Error error)
{
    return error == EACCES || error == EPERM || error == EBUSY;
}

/// Opens a regular file for copying and gives its status; -1 on a failure.
int openSource(const std::string& path, struct stat& status)
{
    const int source = openPath(path, O_RDONLY);
    if (source == -1 || fstat(source, &status) != 0 || S_ISREG(status.st_mode))
        return source;
    close(source);
    errno = EINVAL;
    return -1;
}

ZNativeFile::Error moveToOtherVolume(const std::string& from, const std::string& to)
{
    struct stat status
    {
    };
    const OpenHandle source(openSource(from, status));
    if (!source.IsOpen())
        return errno;
    const ZNativeFile::Error error = replaceBy(to, 0600, [&](int target) {
        return copyContents(source.Get(), target) && fchmod(target, status.st_mode & 0777) == 0;
    });
    if (error == 0)
        ZNativeFile::Delete(from);
    return error;
}

/// The value of an environment variable if it is an absolute path, else empty.
std::string folderFromEnvironment(const char* variable)
{
    const char* value = std::getenv(variable);
    return value && *value == '/' ? value : "";
}

}  // namespace

bool ZNativeFile::Open(const std::string& path, Access access, bool cut)
{
    assert(!IsOpen());
    const int flags = access == Access::kRead    ? O_RDONLY
                      : access == Access::kWrite ? O_WRONLY
                                                 : O_RDWR;
    // O_TRUNC also works on a file that is opened for reading, if the user may write it.
    OpenHandle opened(openOrMake(path, flags | (cut ? O_TRUNC : 0), 0666));
    struct stat status
    {
    };
    if (!opened.IsOpen() || fstat(opened.Get(), &status) != 0 || S_ISDIR(status.st_mode))
        return false;
    mHandle = opened.Release();
    return true;
}

void ZNativeFile::Close()
{
    if (IsOpen())
        close(std::exchange(mHandle, kClosed));
}

std::int64_t ZNativeFile::GetSize() const
{
    struct stat status
    {
    };
    return IsOpen() && fstat(mHandle, &status) == 0 ? status.st_size : 0;
}

std::int64_t ZNativeFile::GetPosition() const
{
    return IsOpen() ? std::max<std::int64_t>(lseek(mHandle, 0, SEEK_CUR), 0) : 0;
}

bool ZNativeFile::Seek(std::int64_t position)
{
    return lseek(mHandle, position, SEEK_SET) != -1;
}

std::optional<std::size_t> ZNativeFile::Read(std::span<std::byte> out)
{
    const ssize_t got = readAll(mHandle, out);
    if (got < 0)
        return std::nullopt;
    return static_cast<std::size_t>(got);
}

bool ZNativeFile::Write(std::span<const std::byte> bytes)
{
    return writeAll(mHandle, bytes);
}

bool ZNativeFile::Exists(const std::string& path)
{
    struct stat status
    {
    };
    if (stat(path.c_str(), &status) == 0)
        return true;
    // No such file, no such folder, a loop of links, a file deleted on its server.
    return errno != ENOENT && errno != ENOTDIR && errno != ELOOP && errno != ESTALE;
}

ZNativeFile::Error ZNativeFile::Delete(const std::string& path)
{
    return unlink(path.c_str()) == 0 ? 0 : errno;
}

ZNativeFile::Error ZNativeFile::Copy(const std::string& from, const std::string& to, bool overwrite)
{
    struct stat from_status
    {
    };
    const OpenHandle source(openSource(from, from_status));
    if (!source.IsOpen())
        return errno;

    const mode_t mode = from_status.st_mode & 0777;
    const bool wasThere = Exists(to);
    const OpenHandle target(overwrite ? openOrMake(to, O_WRONLY, mode)
                                      : openPath(to, O_WRONLY | O_CREAT | O_EXCL, mode));
    struct stat to_status
    {
    };
    if (!target.IsOpen() || fstat(target.Get(), &to_status) != 0)
        return errno;
    if (isSameFile(from_status, to_status))
        return EEXIST;

    const bool emptied = to_status.st_size == 0 || ftruncate(target.Get(), 0) == 0;
    if (emptied && copyContents(source.Get(), target.Get()))
        return 0;
    const Error error = errno;
    if (!wasThere)
        Delete(to);
    return error;
}

ZNativeFile::Error ZNativeFile::Move(const std::string& from, const std::string& to)
{
    const Error error = renameThrough(from, to);
    return error == EXDEV ? moveToOtherVolume(from, to) : error;
}

ZNativeFile::Error ZNativeFile::Replace(const std::string& path, std::string_view content)
{
    const auto bytes = std::as_bytes(std::span(content));
    const std::string target = followLinks(path);
    struct stat replaced
    {
    };
    const bool exists = stat(target.c_str(), &replaced) == 0;
    if (exists && !S_ISREG(replaced.st_mode))
        return overwrite(target, bytes);
    if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0)
        return errno;
    const Error error = replaceBy(target, 0666, [&](int handle) {
        return writeAll(handle, bytes) && (!exists || takeAttributes(handle, replaced));
    });
    return exists && isRefusedByFolder(error) ? overwrite(target, bytes) : error;
}

ZNativeFile::Error ZNativeFile::MakeFolderOf(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(folderOf(path), error);
    return error.value();
}

std::optional<std::string> ZNativeFile::MakeUnique(const std::string& folder,
                                                   const std::string& prefix,
                                                   const std::string& suffix)
{
    assert(!folder.empty());
    std::string path = folder + "/" + prefix + "XXXXXX" + suffix;
    const OpenHandle made(mkostemps(path.data(), static_cast<int>(suffix.size()), O_CLOEXEC));
    if (!made.IsOpen())
        return std::nullopt;
    return path;
}

std::optional<std::string> ZNativeFile::GetTempFolder()
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::temp_directory_path(error);
    if (error)
        return std::nullopt;
    return folder.string();
}

std::optional<std::string> ZNativeFile::GetSettingsFolder()
{
    const std::string settings = folderFromEnvironment("XDG_CONFIG_HOME");
    if (!settings.empty())
        return settings;
    const std::string home = folderFromEnvironment("HOME");
    if (home.empty())
        return std::nullopt;
    return home + "/.config";
}

}  // namespace orvane
