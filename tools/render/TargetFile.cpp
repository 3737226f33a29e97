// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/TargetFile.h"

#include "tools/render/Failure.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

namespace orvane
{

namespace
{

[[noreturn]] void refuse(const std::filesystem::path& path, std::string_view reason)
{
    fail("cannot write {}: {}", path.string(), reason);
}

/// Refuses devices, folders and write-protected files, which the rename in Commit would replace.
void requireFileOrNothing(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status))
        refuse(path, "it is a folder; name a file in it");
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status))
        refuse(path, "it is not an ordinary file; name another");
    if (std::filesystem::exists(status) && access(path.c_str(), W_OK) != 0)
        refuse(path, std::strerror(errno));
}

/// Resolves symbolic links, so that the rename in Commit does not replace a link.
std::filesystem::path withoutLinks(const std::filesystem::path& path)
{
    std::error_code error;
    const std::filesystem::path place = std::filesystem::canonical(path, error);
    return error ? path : place;
}

/// Makes an empty file in the folder of path, with the permissions of the user's umask.
std::filesystem::path makeTemporary(const std::filesystem::path& path)
{
    const std::filesystem::path folder = isStandardStream(path)
                                             ? std::filesystem::temp_directory_path()
                                         : path.has_parent_path() ? path.parent_path()
                                                                  : ".";
    std::error_code error;
    if (!std::filesystem::is_directory(folder, error))
        refuse(path, fmt::format("there is no folder {}; make it first", folder.string()));
    std::string name = (folder / ".kestrune-render-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0)
        refuse(path, std::strerror(errno));
    const mode_t mask = umask(0);
    umask(mask);
    fchmod(descriptor, 0666 & ~mask);
    close(descriptor);
    return name;
}

/// Throws ZException when standard output takes no more.
void copyToStandardOutput(const std::filesystem::path& path)
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"),
                                                               std::fclose);
    std::array<char, 65536> piece{};
    std::size_t count = 0;
    while (file && (count = std::fread(piece.data(), 1, piece.size(), file.get())) > 0) {
        if (std::fwrite(piece.data(), 1, count, stdout) != count)
            fail("cannot write to standard output: {}", std::strerror(errno));
    }
    if (!file || std::ferror(file.get()) || std::fflush(stdout) != 0)
        fail("cannot write to standard output: {}", std::strerror(errno));
}

}  // namespace

bool isStandardStream(const std::filesystem::path& path)
{
    return path == "-";
}

TargetFile::TargetFile(std::filesystem::path path)
    : mPath(std::move(path))
{
    if (isStandardStream(mPath)) {
        mPlace = mPath;
    } else {
        requireFileOrNothing(mPath);
        mPlace = withoutLinks(mPath);
    }
    mTemporary = makeTemporary(mPlace);
}

TargetFile::~TargetFile()
{
    std::error_code ignored;
    if (!mTemporary.empty())
        std::filesystem::remove(mTemporary, ignored);
}

std::string TargetFile::Name() const
{
    return isStandardStream(mPath) ? "standard output" : mPath.string();
}

void TargetFile::Commit()
{
    assert(!mTemporary.empty());
    if (isStandardStream(mPath))
        return copyToStandardOutput(mTemporary);
    std::error_code error;
    std::filesystem::rename(mTemporary, mPlace, error);
    if (error)
        refuse(mPath, error.message());
    mTemporary.clear();
}

}  // namespace orvane
