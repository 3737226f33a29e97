// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace orvane
{

/// Whether a path is "-", which stands for standard input or output.
[[nodiscard]] bool isStandardStream(const std::filesystem::path& path);

/// A file that is written completely or not at all: the data goes to a temporary file in the same
/// folder, which Commit renames. Without Commit the destructor removes it. For standard output the
/// temporary file is in the system's folder for such files, and Commit copies it.
class TargetFile
{
public:
    /// Throws ZException with the reason when path cannot be written.
    explicit TargetFile(std::filesystem::path path);
    ~TargetFile();
    TargetFile(const TargetFile&) = delete;
    TargetFile& operator=(const TargetFile&) = delete;

    /// The file to write to.
    [[nodiscard]] const std::filesystem::path& TemporaryPath() const { return mTemporary; }
    /// The path as the user gave it, or "standard output", for messages.
    [[nodiscard]] std::string Name() const;
    /// Moves the file to its place and replaces what was there; a symbolic link is kept and leads
    /// to the new file. Throws ZException.
    void Commit();

private:
    std::filesystem::path mPath;
    std::filesystem::path mPlace;      // mPath with symbolic links resolved
    std::filesystem::path mTemporary;  // empty after Commit
};

}  // namespace orvane
