// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace orvane
{

/// The platform's half of ZFile: an open file, which the object owns, and operations on paths.
/// Paths are UTF-8. A call that a signal interrupts is repeated, and bytes are read and written
/// until all are done. One thread uses an object at a time. [any thread but the audio thread]
class ZNativeFile
{
public:
    using Handle = int;
    static constexpr Handle kClosed = -1;
    enum class Access
    {
        kRead,
        kWrite,
        kReadWrite,
    };
    /// The result of the operations on paths: 0, or the errno of the failure.
    using Error = std::int32_t;

    ZNativeFile() = default;
    ZNativeFile(const ZNativeFile&) = delete;
    ZNativeFile& operator=(const ZNativeFile&) = delete;
    ~ZNativeFile() { Close(); }

    /// Opens the file at path, which is made when it is missing; with cut it is emptied. Returns
    /// false for a folder and without permission. The object must be closed.
    [[nodiscard]] bool Open(const std::string& path, Access access, bool cut);
    void Close();
    [[nodiscard]] bool IsOpen() const { return mHandle != kClosed; }
    [[nodiscard]] Handle GetHandle() const { return mHandle; }

    /// In bytes; 0 when closed.
    [[nodiscard]] std::int64_t GetSize() const;
    /// In bytes from the start; 0 when closed.
    [[nodiscard]] std::int64_t GetPosition() const;
    /// Sets the position, in bytes from the start. Returns false on a failure.
    [[nodiscard]] bool Seek(std::int64_t position);
    /// Fills out. Gives the number of bytes read, which is less only at the end of the file; no
    /// value on a failure.
    [[nodiscard]] std::optional<std::size_t> Read(std::span<std::byte> out);
    /// Returns false when not all bytes could be written.
    [[nodiscard]] bool Write(std::span<const std::byte> bytes);

    /// False when the system answers that there is no such file. A file that cannot be looked at
    /// counts as existing.
    [[nodiscard]] static bool Exists(const std::string& path);
    static Error Delete(const std::string& path);
    /// Copies a file's bytes. A file cannot be copied onto itself.
    [[nodiscard]] static Error Copy(const std::string& from, const std::string& to, bool overwrite);
    /// Moves a file, also to another volume, replaces the target and waits until the result is on
    /// the disk. The target is at all times the old file or the whole new one. A source on another
    /// volume that cannot be deleted stays.
    [[nodiscard]] static Error Move(const std::string& from, const std::string& to);
    /// Gives the file at path a new content, or makes it, and waits until it is on the disk. The
    /// path names at all times the old file or the whole new one, also after a failure. Follows
    /// links. Keeps the mode and, where the user may, owner and group. What cannot be replaced is
    /// written in place: a device, or a file in a folder where the user may make none.
    [[nodiscard]] static Error Replace(const std::string& path, std::string_view content);
    /// Makes the folder of path, with the folders above it, where they are missing.
    [[nodiscard]] static Error MakeFolderOf(const std::string& path);
    /// Makes an empty file with a unique name, made of prefix, some letters and suffix, that only
    /// this user can read. Gives its path; no value on a failure.
    [[nodiscard]] static std::optional<std::string>
    MakeUnique(const std::string& folder, const std::string& prefix, const std::string& suffix);
    /// The system's folder for temporary files; no value when there is none.
    [[nodiscard]] static std::optional<std::string> GetTempFolder();
    /// The folder of the user's settings; no value when the user has no home folder.
    [[nodiscard]] static std::optional<std::string> GetSettingsFolder();

private:
    Handle mHandle = kClosed;
};

}  // namespace orvane
