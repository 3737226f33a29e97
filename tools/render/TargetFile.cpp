// SPDX-License-Identifier: GPL-3.0-or-later
#include "tools/render/TargetFile.h"

#include "tools/render/Failure.h"

#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cassert>
#include <cerrno>
#include <cstdlib>
#include <cstring>
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
    const std::filesystem::path folder = path.has_parent_path() ? path.parent_path() : ".";
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

}  // namespace

TargetFile::TargetFile(std::filesystem::path path)
    : mPath(std::move(path))
{
    requireFileOrNothing(mPath);
    mPlace = withoutLinks(mPath);
    mTemporary = makeTemporary(mPlace);
}

TargetFile::~TargetFile()
{
    std::error_code ignored;
    if (!mTemporary.empty())
        std::filesystem::remove(mTemporary, ignored);
}

void TargetFile::Commit()
{
    assert(!mTemporary.empty());
    std::error_code error;
    std::filesystem::rename(mTemporary, mPlace, error);
    if (error)
        refuse(mPath, error.message());
    mTemporary.clear();
}

}  // namespace orvane
