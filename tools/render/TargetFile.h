// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

/// A file that appears whole or not at all: it is written under another name beside its place and
/// moved there by Commit. Without that, nothing is left of it.
class TargetFile
{
public:
    /// Throws ZException that says why, where path cannot be written.
    explicit TargetFile(std::filesystem::path path);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    /// Where to write.
    [[nodiscard]] const std::filesystem::path& TemporaryPath() const { return mTemporary; }
    /// What the user calls it.
    [[nodiscard]] std::string Name() const { return mPath.string(); }
    /// Puts the file in its place, over what was there; a link stays, and leads to it. Throws
    /// ZException.
    void Commit();

private:
    std::filesystem::path mPath;
    std::filesystem::path mPlace;      // the same, but for links
    std::filesystem::path mTemporary;  // empty once it is in its place
};

}  // namespace orvane
